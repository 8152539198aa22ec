#include "settingsdialogs.h"
#include "dialogids.h"
#include "form.h"
#include "globals.h"
#include "model.h"

NB_USHORT vga_display_node_dialog(VGA_DIALOG *parent, VGA_NODE *node) {
    return vga_form_open(VGA_UID_NODE_DIALOG, parent, node, nullptr, VGA_FORM_CHANGE) != nullptr;
}

NB_USHORT vga_display_tracing_dialog(VGA_DIALOG *parent, VGA_NODE *node) {
    return vga_form_open(VGA_UID_TRACE_DIALOG, parent, node, nullptr, VGA_FORM_CHANGE) != nullptr;
}

NB_USHORT vga_display_logging_dialog(VGA_DIALOG *parent, VGA_NODE *) {
    return vga_form_open(VGA_UID_LOG_DIALOG, parent, gvga_system, nullptr, VGA_FORM_CHANGE) !=
           nullptr;
}
