#include "nodeconnection.h"
#include "linecolumns.h"

namespace {

NB_VOID write_loss(time_t lost_at, NB_CHAR *text) {
    NB_CHAR when[16] = "";
    struct tm fields;
    if (localtime_r(&lost_at, &fields) != nullptr) {
        strftime(when, sizeof(when), "%H:%M:%S", &fields);
    }
    vga_print_msg(text, VGA_CELL_SIZE, VGA_MSG_NOT_CONNECTED_SINCE, "s", when);
}

NB_VOID write_refusal(NB_USHORT primary_rc, NB_ULONG secondary_rc, NB_CHAR *text) {
    if (primary_rc == NAP_OK) {
        vga_write_word(VGA_MSG_NOT_CONNECTED, text);
    } else if (primary_rc == NAP_COMM_FAILURE && secondary_rc == NAP_NODE_GONE) {
        vga_write_word(VGA_MSG_NOT_CONNECTED_NOT_RUNNING, text);
    } else {
        vga_print_msg(text, VGA_CELL_SIZE, VGA_MSG_NOT_CONNECTED_REFUSED, "x lx",
                      static_cast<NB_ULONG>(primary_rc), secondary_rc);
    }
}

} // namespace

NB_VOID vga_write_connection(const VGA_NODE &node, NB_CHAR *text) {
    text[0] = '\0';
    if (node.connection == VGA_CONNECTING) {
        vga_write_word(VGA_MSG_CONNECTING, text);
    } else if (node.connection == VGA_NOT_CONNECTED && node.lost_at != 0) {
        write_loss(node.lost_at, text);
    } else if (node.connection == VGA_NOT_CONNECTED) {
        write_refusal(node.refusal.primary_rc, node.refusal.secondary_rc, text);
    }
}
