#include "operating.h"
#include "listwindow.h"
#include "operations.h"

static std::vector<VGA_RESOURCE> resources_of(const VGA_LIST_WINDOW *window) {
    const VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    if (root != nullptr && root->select_count != 0) {
        return vga_selected_resources(root);
    }
    std::vector<VGA_RESOURCE> resources;
    if (VGA_NODE *node = vga_listw_node(window)) {
        resources.push_back({VGA_OPERABLE_NODE, node});
    }
    return resources;
}

NB_VOID vga_listw_start(VGA_LIST_WINDOW *window) {
    vga_start_resources(&window->common, resources_of(window));
}

NB_VOID vga_listw_stop(VGA_LIST_WINDOW *window) {
    vga_stop_resources(&window->common, resources_of(window));
}
