#include "progressline.h"
#include "messageline.h"
#include "messages.h"
#include "vganodew.h"
#include "vgasysw.h"

namespace {

constexpr NB_USHORT name_size = 256;

/* The node, or the domain for null, as it is called in the middle of a sentence. */
NB_VOID write_name(const VGA_NODE *node, NB_CHAR (&text)[name_size]) {
    if (node == nullptr) {
        vga_print_msg(text, name_size, VGA_MSG_THE_DOMAIN, "");
    } else {
        vga_print_msg(text, name_size, VGA_MSG_THE_NODE, "cs",
                      static_cast<NB_INT>(sizeof(node->name)), node->name);
    }
}

} // namespace

NB_VOID vga_show_build_progress(const VGA_NODE *node, NB_ULONG resources) {
    NB_ULONG before = 0;
    VGA_LIST_WINDOW *window = vga_nodew_reading(node, &before);
    if (window == nullptr) {
        window = vga_listw_of(gvga_first_dialog);
    }
    if (window == nullptr) {
        return;
    }
    NB_CHAR what[name_size];
    NB_CHAR line[512];
    write_name(node, what);
    vga_print_msg(line, sizeof(line), VGA_MSG_READING, "s l", what, resources - before);
    vga_listw_message_busy(window, line);
}

NB_VOID vga_show_closing(const VGA_NODE *node) {
    NB_CHAR what[name_size];
    NB_CHAR line[512];
    write_name(node, what);
    vga_print_msg(line, sizeof(line), VGA_MSG_CLOSING, "s", what);
    vga_sysw_set_insensitive(gvga_main_dialog, 0);
    vga_nodew_show_closing(gvga_main_dialog);
    if (VGA_LIST_WINDOW *window = vga_listw_of(gvga_main_dialog)) {
        vga_listw_message_busy(window, line);
    }
}
