#include "completions.h"
#include "listwindow.h"
#include "startstop.h"

static NB_VOID operated(const VGA_PROCESS_STATE *work) {
    vga_verb_completed(work);
    auto *dialog = static_cast<VGA_DIALOG *>(nba_validate_handle(work->user_data));
    if (dialog != nullptr && work->vcb->primary_rc != NAP_OK) {
        vga_display_verb_error(dialog, work->vcb);
    }
}

static NB_VOID operate(VGA_LIST_WINDOW *window, VGA_OPERATION operation) {
    const VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    std::vector<VGA_RESOURCE> resources;
    if (root != nullptr && root->select_count != 0) {
        resources = vga_selected_resources(root);
    } else {
        resources.push_back({VGA_OPERABLE_NODE, vga_listw_node(window)});
    }
    const NB_USHORT reason = vga_operate_all(resources, operation, window->common.handle, operated);
    vga_listw_message(window, reason);
}

NB_VOID vga_listw_start(VGA_LIST_WINDOW *window) {
    operate(window, VGA_START);
}

NB_VOID vga_listw_stop(VGA_LIST_WINDOW *window) {
    operate(window, VGA_STOP_ORDERLY);
}
