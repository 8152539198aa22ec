#include "hooks.h"

VGA_HOOKS gvga_hooks;

static NB_VOID tell_who_waits(const NB_VOID *item, VGA_RECORD_CHANGE what) {
    if (gvga_hooks.record_awaited != nullptr) {
        gvga_hooks.record_awaited(item, what);
    }
}

NB_VOID vga_node_list_changed(VGA_NODE *node, VGA_NODE_CHANGE change) {
    if (gvga_hooks.node_list_changed != nullptr) {
        gvga_hooks.node_list_changed(node, change);
    }
    if (change == VGA_NODE_CHANGED) { /* dialogs about the node itself hear of records only */
        vga_record_changed(node, VGA_RECORD_CHANGED);
    } else if (change == VGA_NODE_REMOVED) {
        tell_who_waits(node, VGA_RECORD_GONE);
    }
}

NB_VOID vga_record_changed(NB_VOID *item, VGA_RECORD_CHANGE what) {
    if (gvga_hooks.record_changed != nullptr) {
        gvga_hooks.record_changed(item, what);
    }
    tell_who_waits(item, what);
}
