#include "lineevents.h"

VGA_LIST_WINDOW *vga_listw_from_root(const VGA_VIEWER_ROOT *root) {
    return root != nullptr ? static_cast<VGA_LIST_WINDOW *>(root->window) : nullptr;
}

NB_VOID vga_listw_line_disarm(Widget widget) {
    vga_listw_set_button_states(vga_listw_from_widget(widget));
}

NB_VOID vga_listw_no_drag_cb(NB_VOID *, NB_USHORT, NB_USHORT) {}

NB_VOID vga_listw_arm_line(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item,
                           const XmDrawnButtonCallbackStruct *cbs) {
    if (root == nullptr) {
        return;
    }
    if (item->fixed) {
        vga_clear_outline_selection(root);
        vga_viewer_clear_selection(root);
        return;
    }
    vga_viewer_arm_select(root, item, cbs);
}

NB_VOID vga_listw_activate_line(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item,
                                const XmDrawnButtonCallbackStruct *cbs) {
    VGA_LIST_WINDOW *window = vga_listw_from_root(root);
    if (window != nullptr && !item->fixed && vga_viewer_is_open(cbs) &&
        window->plan->zoom != VGA_LISTW_NO_COMMAND) {
        vga_listw_run(window, window->plan->zoom);
    }
}

NB_VOID vga_nodew_ls_r_title_arm_cb(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs) {
    auto *lu = static_cast<VGA_LU62 *>(data);
    vga_listw_arm_line(&lu->parent->local_lu_root, &lu->routing_title, cbs);
}
