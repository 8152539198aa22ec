#include "panes.h"
#include "rememberedlines.h"

VGA_VIEWER_ROOT *vga_listw_list(const VGA_LIST_WINDOW *window, NB_USHORT pane) {
    const VGA_LISTW_ROW &row = window->plan->lists[pane];
    if (row.of_domain != nullptr) {
        return gvga_system != nullptr ? &(gvga_system->*row.of_domain) : nullptr;
    }
    VGA_NODE *node = vga_listw_node(window);
    return node != nullptr ? &(node->*row.of_node) : nullptr;
}

VGA_VIEWER_ROOT *vga_listw_root(const VGA_LIST_WINDOW *window, NB_USHORT pane) {
    return window->lists_shown != 0 && pane < window->list_count ? vga_listw_list(window, pane)
                                                                 : nullptr;
}

VGA_VIEWER_ROOT *vga_listw_current_root(const VGA_LIST_WINDOW *window) {
    return vga_listw_root(window, window->current_pane);
}

NB_VOID *vga_listw_get_selection(const VGA_LIST_WINDOW *window, NB_SHORT *type, NB_LONG *count) {
    const VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    NB_SHORT selected_type = VGA_VIEWER_SELECT_NONE;
    NB_VOID *data = root != nullptr ? vga_viewer_get_selection(root, &selected_type) : nullptr;
    if (type != nullptr) {
        *type = selected_type;
    }
    if (count != nullptr) {
        *count = data != nullptr ? root->select_count : 0;
    }
    return data;
}

/* The current pane. */

static NB_VOID set_border(VGA_LIST_WINDOW *window, NB_USHORT pane, Pixel colour) {
    if (pane < window->list_count) {
        XtVaSetValues(window->panes[pane].form, XmNborderColor, colour, nullptr);
    }
}

static NB_VOID clear_pane(VGA_VIEWER_ROOT *root) {
    vga_clear_outline_selection(root);
    vga_viewer_clear_selection(root);
}

static VGA_VIEWER_ITEM *first_selectable(const VGA_VIEWER_ROOT *root) {
    VGA_VIEWER_ITEM *item = vga_viewer_find_line(root, 0);
    while (item != nullptr && vga_viewer_can_select(root, item) == 0) {
        item = vga_viewer_get_next_item(root, item);
    }
    return item;
}

/* In a list that was scrolled the keyboard would work on a line out of sight.  Where a line is
 * pressed the pointer is in view, and must not point at another one. */
static NB_VOID bring_into_view(const VGA_LIST_WINDOW *window, VGA_VIEWER_ROOT *root) {
    const XEvent *event = XtLastEventProcessed(XtDisplay(window->common.widget));
    const VGA_VIEWER_ITEM *line = vga_viewer_get_selected_viewer(root);
    if (line != nullptr && (event == nullptr || event->type != ButtonPress)) {
        if (line == first_selectable(root)) {
            vga_viewer_set_view(root, vga_viewer_find_line(root, 0)); /* and what stands above it */
        }
        vga_viewer_set_view(root, line);
    }
}

NB_VOID vga_listw_forget_pane(VGA_LIST_WINDOW *window) {
    set_border(window, window->current_pane, window->normal_border);
    window->current_pane = VGA_LISTW_NO_LIST;
}

NB_VOID vga_listw_select_pane(VGA_LIST_WINDOW *window, NB_USHORT pane, NB_USHORT take_focus) {
    VGA_VIEWER_ROOT *root = vga_listw_root(window, pane);
    if (root == nullptr || window->current_pane == pane) {
        return;
    }
    /* The keyboard comes back before the lines that were selected. */
    const bool selected_lines_come = vga_listw_remembered_pane(window) == pane;
    if (!selected_lines_come) {
        vga_listw_forget_selection(window);
    }
    vga_listw_forget_pane(window);
    window->current_pane = pane;
    set_border(window, pane, window->current_border);
    if (take_focus && vga_listw_focus_pane(window) != pane) {
        XmProcessTraversal(window->panes[pane].draw_area, XmTRAVERSE_CURRENT);
    }
    for (NB_USHORT other = 0; other < window->list_count; other++) {
        if (other != pane) {
            clear_pane(vga_listw_root(window, other));
        }
    }
    VGA_VIEWER_ITEM *item = first_selectable(root);
    if (item != nullptr && root->select_count == 0 && !selected_lines_come) {
        vga_viewer_select(item, root, 0, 0, 1, 0);
    }
    bring_into_view(window, root);
    vga_listw_set_button_states(window);
}

NB_VOID vga_listw_select_nothing(VGA_LIST_WINDOW *window) {
    vga_listw_forget_selection(window);
    vga_listw_forget_pane(window);
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        if (VGA_VIEWER_ROOT *root = vga_listw_root(window, pane)) {
            clear_pane(root);
        }
    }
    vga_listw_set_button_states(window);
}

NB_USHORT vga_listw_focus_pane(const VGA_LIST_WINDOW *window) {
    Widget focus = XmGetFocusWidget(window->common.widget);
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        for (Widget widget = focus; widget != nullptr; widget = XtParent(widget)) {
            if (widget == window->panes[pane].form) {
                return pane;
            }
        }
    }
    return VGA_LISTW_NO_LIST;
}

/* The focus is on its way when the callback tells of it; to move it again would confuse the
 * toolkit. */
NB_VOID vga_listw_pane_called(Widget widget, NB_USHORT pane, XtPointer call_data) {
    const auto *cbs = static_cast<const XmAnyCallbackStruct *>(call_data);
    if (VGA_LIST_WINDOW *window = vga_listw_from_widget(widget)) {
        vga_listw_select_pane(window, pane, cbs == nullptr || cbs->reason != XmCR_FOCUS);
    }
}

static NB_VOID pane_called(Widget widget, XtPointer pane, XtPointer call_data) {
    vga_listw_pane_called(widget, static_cast<NB_USHORT>(reinterpret_cast<uintptr_t>(pane)),
                          call_data);
}

NB_VOID vga_listw_prepare_panes(VGA_LIST_WINDOW *window) {
    for (NB_USHORT at = 0; at < window->list_count; at++) {
        const VGA_LISTW_PANE &pane = window->panes[at];
        if (window->plan->lists[at].selects == 0) {
            const auto number = reinterpret_cast<XtPointer>(uintptr_t{at});
            XtAddCallback(pane.form, XmNfocusCallback, pane_called, number);
            XtAddCallback(pane.draw_area, XmNarmCallback, pane_called, number);
        }
    }
}
