#include "nbbase.h"
#include "vgaglob.h"
#include "vgagraph.h"
#include "vgaviewi.h"
#include <Xm/DrawnB.h>
#include <Xm/ScrollBar.h>
#include <Xm/ScrolledW.h>
#include <algorithm>

const VGA_VIEWER_DESC *gvga_viewer_desc;
VGA_VIEWER_WINDOW_ACTION gvga_viewer_window_action;

namespace {

NB_USHORT type_count;
const VGA_VIEWER_DESC empty_type = {};

/* Attaching. */

struct CALLBACK {
    Widget VGA_VIEWER_ROOT::*widget;
    const NB_CHAR *name;
    XtCallbackProc proc;
};
struct HANDLER {
    EventMask mask;
    XtEventHandler proc;
};

NB_VOID vga_viewer_destroyed(Widget widget, XtPointer client_data, XtPointer call_data);

const CALLBACK callbacks[] = {
    {&VGA_VIEWER_ROOT::draw_widget, XmNresizeCallback, vga_viewer_resize},
    {&VGA_VIEWER_ROOT::draw_widget, XmNexposeCallback, vga_viewer_expose},
    {&VGA_VIEWER_ROOT::draw_widget, XmNarmCallback, vga_viewer_arm},
    {&VGA_VIEWER_ROOT::draw_widget, XmNdisarmCallback, vga_viewer_disarm},
    {&VGA_VIEWER_ROOT::draw_widget, XmNactivateCallback, vga_viewer_activate},
    {&VGA_VIEWER_ROOT::draw_widget, XmNdestroyCallback, vga_viewer_destroyed},
    {&VGA_VIEWER_ROOT::hscroll, XmNdragCallback, vga_viewer_scroll_drag},
    {&VGA_VIEWER_ROOT::hscroll, XmNvalueChangedCallback, vga_viewer_scroll},
    {&VGA_VIEWER_ROOT::vscroll, XmNdragCallback, vga_viewer_scroll_drag},
    {&VGA_VIEWER_ROOT::vscroll, XmNvalueChangedCallback, vga_viewer_scroll},
};
const HANDLER handlers[] = {
    {Button1MotionMask, vga_viewer_motion},        {EnterWindowMask, vga_viewer_enter_hierarchy},
    {LeaveWindowMask, vga_viewer_leave_hierarchy}, {ButtonPressMask, vga_viewer_wheel},
    {KeyPressMask, vga_viewer_key_input},
};

NB_VOID detach(VGA_VIEWER_ROOT *root) {
    vga_viewer_end_drag(root);
    if (root->update_timer != 0) {
        XtRemoveTimeOut(root->update_timer);
    }
    if (root->line_pixmap != 0) {
        XFreePixmap(XtDisplay(root->draw_widget), root->line_pixmap);
    }
    root->displayed = root->vscroll_shown = root->bars_due = root->dirty_count = 0;
    root->update_timer = 0;
    root->line_pixmap = root->line_pixmap_width = 0;
    root->draw_widget = root->hscroll = root->vscroll = nullptr;
    root->armed = root->clicked = nullptr;
    root->armed_type = VGA_VIEWER_SELECT_NONE;
}

NB_VOID vga_viewer_destroyed(Widget, XtPointer client_data, XtPointer) {
    VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(client_data);
    detach(root);
    vga_viewer_content_changed(root);
}

/* Selection changes of a call are told to the window at its end. */
class SELECTION_WATCH {
public:
    explicit SELECTION_WATCH(VGA_VIEWER_ROOT *watched)
        : root(watched), type(root->select_type), count(root->select_count) {}
    SELECTION_WATCH(const SELECTION_WATCH &) = delete;
    SELECTION_WATCH &operator=(const SELECTION_WATCH &) = delete;
    ~SELECTION_WATCH() {
        if (root->select_count != count || root->select_type != type) {
            vga_viewer_notify(root, type != VGA_VIEWER_SELECT_NONE ? type : root->select_type);
        }
    }

private:
    VGA_VIEWER_ROOT *root;
    NB_SHORT type;
    NB_LONG count;
};

/* What is below a line that was taken off went with it: a whole branch goes as fast as its top. */
NB_USHORT went_with_parent(const VGA_VIEWER_ITEM *item) {
    while (item->parent != nullptr && item->parent->in_list != 0) {
        item = item->parent;
    }
    return item->parent != nullptr;
}

} // namespace

NB_VOID vga_viewer_set_types(const VGA_VIEWER_DESC *table, NB_USHORT count) {
    gvga_viewer_desc = table;
    type_count = table != nullptr ? count : 0;
}

const VGA_VIEWER_DESC *vga_viewer_type(const VGA_VIEWER_ITEM *item) {
    return item->type < type_count ? &gvga_viewer_desc[item->type] : &empty_type;
}

NB_USHORT vga_viewer_init_root(VGA_VIEWER_ROOT *root) {
    *root = VGA_VIEWER_ROOT();
    vga_viewer_tree_init(root);
    root->armed_type = VGA_VIEWER_SELECT_NONE;
    root->handle = nba_create_handle(root);
    return root->handle != 0;
}

NB_VOID vga_viewer_destroy_root(VGA_VIEWER_ROOT *root) {
    vga_viewer_undisplay(root);
    nba_destroy_handle(root->handle);
    root->handle = 0;
}

NB_VOID vga_viewer_display_root(VGA_VIEWER_ROOT *root, Widget draw_widget, Widget hscroll,
                                Widget vscroll) {
    vga_viewer_undisplay(root);
    if (!XmIsDrawnButton(draw_widget)) {
        v0_assert_fatal(__FILE__, __LINE__, "XmIsDrawnButton(draw_widget)");
        return;
    }
    root->draw_widget = draw_widget;
    root->hscroll = hscroll;
    root->vscroll = vscroll;
    root->displayed = 1;
    for (const CALLBACK &callback : callbacks) {
        XtAddCallback(root->*callback.widget, callback.name, callback.proc, root);
    }
    for (const HANDLER &handler : handlers) {
        XtAddEventHandler(draw_widget, handler.mask, False, handler.proc, root);
    }
    if (XmIsScrolledWindow(XtParent(draw_widget))) {
        XmScrolledWindowSetAreas(XtParent(draw_widget), hscroll, vscroll, draw_widget);
    }
    root->window_width = root->window_height = 0;
    vga_viewer_read_size(root);
    vga_viewer_content_changed(root);
    vga_viewer_mark_all(root);
    vga_viewer_schedule(root);
}

NB_VOID vga_viewer_undisplay(VGA_VIEWER_ROOT *root) {
    if (root->displayed == 0) {
        return;
    }
    for (const CALLBACK &callback : callbacks) {
        XtRemoveCallback(root->*callback.widget, callback.name, callback.proc, root);
    }
    for (const HANDLER &handler : handlers) {
        XtRemoveEventHandler(root->draw_widget, handler.mask, False, handler.proc, root);
    }
    detach(root);
    vga_viewer_content_changed(root);
}

NB_VOID vga_create_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT type,
                          NB_VOID *data, VGA_VIEWER_ITEM *parent, VGA_VIEWER_ITEM *after) {
    if (vga_viewer_tree_insert(root, item, type, data, parent, after) == 0) {
        v0_assert_fatal(__FILE__, __LINE__, "FALSE");
        return;
    }
    vga_viewer_content_changed(root);
}

NB_VOID vga_delete_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *viewer) {
    if (viewer->in_list == 0 || went_with_parent(viewer)) {
        viewer->in_list = 0;
        return;
    }
    const SELECTION_WATCH watch(root);
    vga_viewer_tree_remove(root, viewer);
    NB_ASSERT_FATAL(root->select_anchor != viewer);
    NB_ASSERT_FATAL(root->last_dragged != viewer);
    NB_ASSERT_FATAL(root->outline_viewer != viewer);
    vga_viewer_content_changed(root);
}

NB_VOID vga_update_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    if (item->laid_out != 0) {
        item->laid_out = 0;
        vga_viewer_mark_item(root, item);
        vga_viewer_schedule(root);
    }
}

NB_VOID vga_expand_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT redraw) {
    if (item->expanded != 0 || vga_viewer_has_children(item) == 0) {
        return;
    }
    vga_viewer_tree_set_expanded(root, item, 1, redraw);
    vga_viewer_content_changed(root);
}

NB_VOID vga_viewer_contract(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT redraw) {
    if (item->expanded == 0) {
        return;
    }
    const SELECTION_WATCH watch(root);
    const auto vanishes = [item](const VGA_VIEWER_ITEM *line) {
        return line != item && vga_viewer_is_within(line, item) != 0;
    };
    if (vanishes(root->outline_viewer)) {
        vga_viewer_tree_set_outline(root, item, redraw);
    }
    if (vga_viewer_is_within(root->select_parent, item) != 0) {
        vga_viewer_tree_clear_selection(root, redraw);
        vga_viewer_tree_set_select(root, item, 1, redraw);
    }
    for (VGA_VIEWER_ITEM **line : {&root->last_dragged, &root->armed, &root->clicked}) {
        *line = vanishes(*line) ? nullptr : *line;
    }
    root->select_anchor = vanishes(root->select_anchor) ? item : root->select_anchor;
    vga_viewer_tree_set_expanded(root, item, 0, redraw);
    vga_viewer_content_changed(root);
}

NB_VOID vga_viewer_set_fixed(VGA_VIEWER_ROOT *, VGA_VIEWER_ITEM *item, NB_USHORT fixed) {
    item->fixed = fixed != 0;
}

NB_VOID vga_viewer_set_hidden(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT hidden) {
    const SELECTION_WATCH watch(root);
    vga_viewer_tree_set_hidden(root, item, hidden != 0);
    vga_viewer_content_changed(root);
}

NB_VOID vga_viewer_copy_state(const VGA_VIEWER_ITEM *old_item, VGA_VIEWER_ITEM *new_item,
                              VGA_VIEWER_ROOT *root) {
    if (old_item->expanded != 0) {
        vga_viewer_tree_set_expanded(root, new_item, 1, 1);
        vga_viewer_content_changed(root);
    }
}

NB_ULONG vga_viewer_get_y(const VGA_VIEWER_ITEM *item) {
    return vga_viewer_get_line_in_list(item) * gvga_viewer_item_height;
}

NB_ULONG vga_viewer_get_extent(const VGA_VIEWER_ITEM *item) {
    return item->lines * gvga_viewer_item_height;
}

NB_LONG vga_viewer_get_screen_pos(const VGA_VIEWER_ITEM *item) {
    const NB_LONG height = static_cast<NB_LONG>(gvga_viewer_item_height);
    return item != nullptr ? static_cast<NB_LONG>(vga_viewer_get_line(item)) * height : -height;
}

VGA_VIEWER_ITEM *vga_find_viewer(const VGA_VIEWER_ROOT *root, NB_LONG y) {
    if (y < 0 || gvga_viewer_item_height == 0) {
        return nullptr;
    }
    return vga_viewer_find_line(root, static_cast<NB_ULONG>(y) / gvga_viewer_item_height);
}

VGA_VIEWER_ITEM *vga_viewer_get_next_item(const VGA_VIEWER_ROOT *root,
                                          const VGA_VIEWER_ITEM *item) {
    return vga_viewer_next_line(root, item);
}

VGA_VIEWER_ITEM *vga_viewer_get_prev_item(const VGA_VIEWER_ROOT *root,
                                          const VGA_VIEWER_ITEM *item) {
    return vga_viewer_prev_line(root, item);
}

NB_VOID vga_viewer_select(VGA_VIEWER_ITEM *viewer, VGA_VIEWER_ROOT *root, NB_USHORT toggle,
                          NB_USHORT extend, NB_USHORT redraw, NB_USHORT notify) {
    if (viewer == nullptr || viewer->in_list == 0) {
        v0_assert_fatal(__FILE__, __LINE__, "viewer != NULL");
        return;
    }
    vga_viewer_tree_select(root, viewer, toggle, extend, redraw);
    vga_viewer_schedule(root);
    if (notify != 0) {
        vga_viewer_notify(root, viewer->type);
    }
}

NB_SHORT vga_viewer_set_select(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT state) {
    const NB_SHORT change = vga_viewer_tree_set_select(root, item, state, 1);
    vga_viewer_schedule(root);
    return change;
}

NB_SHORT vga_viewer_toggle_select(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    return vga_viewer_set_select(root, item, item->selected == 0);
}

NB_VOID vga_viewer_clear_selection(VGA_VIEWER_ROOT *root) {
    vga_viewer_tree_clear_selection(root, 1);
    vga_viewer_schedule(root);
}

NB_VOID vga_clear_outline_selection(VGA_VIEWER_ROOT *root) {
    vga_viewer_tree_set_outline(root, nullptr, 1);
    vga_viewer_schedule(root);
}

NB_VOID *vga_viewer_get_selection(const VGA_VIEWER_ROOT *root, NB_SHORT *type) {
    if (type != nullptr) {
        *type = root->select_type;
    }
    const VGA_VIEWER_ITEM *item = vga_viewer_get_selected_viewer(root);
    return item != nullptr ? item->data : nullptr;
}

VGA_VIEWER_ITEM *vga_viewer_get_selected_viewer(const VGA_VIEWER_ROOT *root) {
    return vga_viewer_current(root);
}

NB_VOID vga_viewer_drag_cb(VGA_VIEWER_ITEM *item, VGA_VIEWER_ROOT *root, NB_USHORT select,
                           NB_USHORT redraw) {
    const VGA_VIEWER_ITEM *anchor = root->select_anchor;
    if (anchor != nullptr && item->parent == anchor->parent && item->type == anchor->type &&
        item->fixed == 0) {
        vga_viewer_tree_set_select(root, item, select, redraw);
        vga_viewer_schedule(root);
    }
}

NB_VOID vga_viewer_set_view(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item) {
    for (const VGA_VIEWER_ITEM *above = item->parent; above != nullptr; above = above->parent) {
        item = above->expanded == 0 ? above : item;
    }
    const int64_t top = vga_viewer_get_screen_pos(item);
    const int64_t bottom = top + gvga_viewer_item_height;
    int64_t y = root->y_offset;
    if (top < y) {
        y = top;
    } else if (bottom > y + root->window_height) {
        y = bottom - root->window_height + gvga_viewer_item_height - 1; // rounded up to a line
    }
    vga_viewer_set_offsets(root, root->x_offset, std::min(y, top), nullptr);
}

NB_VOID vga_viewer_scroll_view(VGA_VIEWER_ROOT *root, NB_LONG pixels) {
    vga_viewer_set_offsets(root, root->x_offset, int64_t{root->y_offset} + pixels, nullptr);
}

NB_VOID vga_viewer_scroll_view_horizontal(VGA_VIEWER_ROOT *root, NB_LONG pixels) {
    vga_viewer_set_offsets(root, int64_t{root->x_offset} + pixels, root->y_offset, nullptr);
}

NB_VOID vga_viewer_set_width(VGA_VIEWER_ROOT *root, NB_ULONG width) {
    root->content_width = width;
    vga_viewer_content_changed(root);
}
