#include "globals.h"
#include "graphics.h"
#include "nbbase.h"
#include "textselection.h"
#include "tooltips.h"
#include "viewerparts.h"
#include <Xm/DrawnB.h>
#include <Xm/ScrollBar.h>
#include <Xm/ScrolledW.h>
#include <algorithm>
#include <cstdlib>

const VGA_VIEWER_DESC *gvga_viewer_desc;
VGA_VIEWER_WINDOW_ACTION gvga_viewer_window_action;

namespace {

NB_USHORT type_count;
const VGA_VIEWER_DESC empty_type = {};

/* Attaching. */

struct CALLBACK {
    Widget VGA_VIEWER_VIEW::*widget;
    const NB_CHAR *name;
    XtCallbackProc proc;
};
struct HANDLER {
    EventMask mask;
    XtEventHandler proc;
};

NB_VOID vga_viewer_destroyed(Widget widget, XtPointer client_data, XtPointer call_data);

const CALLBACK callbacks[] = {
    {&VGA_VIEWER_VIEW::draw_widget, XmNresizeCallback, vga_viewer_resize},
    {&VGA_VIEWER_VIEW::draw_widget, XmNexposeCallback, vga_viewer_expose},
    {&VGA_VIEWER_VIEW::draw_widget, XmNarmCallback, vga_viewer_arm},
    {&VGA_VIEWER_VIEW::draw_widget, XmNdisarmCallback, vga_viewer_disarm},
    {&VGA_VIEWER_VIEW::draw_widget, XmNactivateCallback, vga_viewer_activate},
    {&VGA_VIEWER_VIEW::draw_widget, XmNdestroyCallback, vga_viewer_destroyed},
    {&VGA_VIEWER_VIEW::hscroll, XmNdragCallback, vga_viewer_scroll_drag},
    {&VGA_VIEWER_VIEW::hscroll, XmNvalueChangedCallback, vga_viewer_scroll},
    {&VGA_VIEWER_VIEW::vscroll, XmNdragCallback, vga_viewer_scroll_drag},
    {&VGA_VIEWER_VIEW::vscroll, XmNvalueChangedCallback, vga_viewer_scroll},
};
const HANDLER handlers[] = {
    {Button1MotionMask, vga_viewer_motion},
    {EnterWindowMask, vga_viewer_enter_hierarchy},
    {LeaveWindowMask, vga_viewer_leave_hierarchy},
    {ButtonPressMask, vga_viewer_wheel},
    {KeyPressMask, vga_viewer_key_input},
    {PointerMotionMask | EnterWindowMask, vga_viewer_pointer_moved},
    {LeaveWindowMask, vga_viewer_pointer_left},
};

NB_VOID detach(VGA_VIEWER_VIEW *view) {
    vga_viewer_end_drag(view);
    vga_viewer_hide_tip(view);
    vga_withdraw_text(view->draw_widget);
    vga_viewer_forget_headings(view);
    if (view->update_timer != 0) {
        XtRemoveTimeOut(view->update_timer);
    }
    vga_viewer_free_pixmap(view);
    view->bars_due = 0;
    view->update_timer = 0;
    view->draw_widget = view->hscroll = view->vscroll = nullptr;
    view->armed_type = VGA_VIEWER_SELECT_NONE;
    VGA_VIEWER_ROOT *root = view->root;
    root->displayed = root->dirty_count = 0;
    root->armed = root->clicked = nullptr;
}

NB_VOID vga_viewer_destroyed(Widget, XtPointer client_data, XtPointer) {
    detach(static_cast<VGA_VIEWER_VIEW *>(client_data));
}

NB_VOID free_view(VGA_VIEWER_VIEW *view) {
    vga_viewer_undisplay(view->root);
    free(view);
}

NB_USHORT is_title(NB_UCHAR type) {
    return vga_viewer_type(type)->arm_cb == nullptr;
}

constexpr VGA_VIEWER_WATCHER watcher = {
    .to_draw = vga_viewer_schedule,
    .lines_changed = vga_viewer_content_changed,
    .selection_changed = vga_viewer_set_buttons,
    .list_gone = free_view,
    .is_title = is_title,
};

} // namespace

NB_VOID vga_viewer_set_types(const VGA_VIEWER_DESC *table, NB_USHORT count) {
    gvga_viewer_desc = table;
    type_count = table != nullptr ? count : 0;
}

const VGA_VIEWER_DESC *vga_viewer_type(NB_SHORT type) {
    return type >= 0 && type < type_count ? &gvga_viewer_desc[type] : &empty_type;
}

VGA_LINE_STATE vga_viewer_line_state(const VGA_VIEWER_ITEM *item) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(item->type);
    return desc->choose_state != nullptr ? desc->choose_state(item->data) : VGA_LINE_NO_STATE;
}

VGA_VIEWER_VIEW *vga_viewer_view(VGA_VIEWER_ROOT *root) {
    if (root->view == nullptr) {
        auto *view = static_cast<VGA_VIEWER_VIEW *>(calloc(1, sizeof(VGA_VIEWER_VIEW)));
        if (view == nullptr) {
            VGA_EXIT(VGA_EXIT_INTERNAL, 0);
            return nullptr;
        }
        view->root = root;
        view->armed_type = VGA_VIEWER_SELECT_NONE;
        view->tip_line = VGA_VIEWER_NO_TIP;
        root->view = view;
        root->watcher = &watcher;
    }
    return root->view;
}

NB_VOID vga_viewer_display_root(VGA_VIEWER_ROOT *root, Widget draw_widget, Widget hscroll,
                                Widget vscroll) {
    vga_viewer_undisplay(root);
    if (!XmIsDrawnButton(draw_widget)) {
        v0_assert_fatal(__FILE__, __LINE__, "XmIsDrawnButton(draw_widget)");
        return;
    }
    VGA_VIEWER_VIEW *view = vga_viewer_view(root);
    if (view == nullptr) {
        return;
    }
    view->draw_widget = draw_widget;
    view->hscroll = hscroll;
    view->vscroll = vscroll;
    root->displayed = 1;
    for (const CALLBACK &callback : callbacks) {
        XtAddCallback(view->*callback.widget, callback.name, callback.proc, view);
    }
    for (const HANDLER &handler : handlers) {
        XtAddEventHandler(draw_widget, handler.mask, False, handler.proc, view);
    }
    if (XmIsScrolledWindow(XtParent(draw_widget))) {
        XmScrolledWindowSetAreas(XtParent(draw_widget), hscroll, vscroll, draw_widget);
    }
    vga_enable_tips(draw_widget);
    view->window_width = view->window_height = 0;
    vga_viewer_read_size(view);
    vga_viewer_content_changed(view);
    vga_viewer_mark_all(view);
}

NB_VOID vga_viewer_undisplay(VGA_VIEWER_ROOT *root) {
    VGA_VIEWER_VIEW *view = root->view;
    if (view == nullptr || root->displayed == 0) {
        return;
    }
    for (const CALLBACK &callback : callbacks) {
        XtRemoveCallback(view->*callback.widget, callback.name, callback.proc, view);
    }
    for (const HANDLER &handler : handlers) {
        XtRemoveEventHandler(view->draw_widget, handler.mask, False, handler.proc, view);
    }
    vga_viewer_clear(view);
    detach(view);
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

/* Scrolls as little as shows `lines` lines from the item's on, or as many as fit with the item. */
static NB_VOID show_lines(VGA_VIEWER_VIEW *view, const VGA_VIEWER_ITEM *item, NB_ULONG lines) {
    const int64_t top = vga_viewer_get_screen_pos(item);
    const int64_t bottom = top + int64_t{lines} * gvga_viewer_item_height;
    int64_t y = view->y_offset;
    if (top < y) {
        y = top;
    } else if (bottom > y + view->window_height) {
        y = bottom - view->window_height + gvga_viewer_item_height - 1; // rounded up to a line
    }
    vga_viewer_set_offsets(view, view->x_offset, std::min(y, top), nullptr);
}

NB_VOID vga_viewer_set_view(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item) {
    if (root->view == nullptr) {
        return;
    }
    for (const VGA_VIEWER_ITEM *above = item->parent; above != nullptr; above = above->parent) {
        item = above->expanded == 0 ? above : item;
    }
    show_lines(root->view, item, 1);
}

NB_VOID vga_viewer_open(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    vga_expand_viewer(root, item, 1);
    if (root->view != nullptr && vga_viewer_is_visible(item) != 0) {
        show_lines(root->view, item, item->lines);
    }
}

NB_VOID vga_viewer_scroll_view(VGA_VIEWER_ROOT *root, NB_LONG pixels) {
    if (VGA_VIEWER_VIEW *view = root->view) {
        vga_viewer_set_offsets(view, view->x_offset, int64_t{view->y_offset} + pixels, nullptr);
    }
}

NB_VOID vga_viewer_scroll_view_horizontal(VGA_VIEWER_ROOT *root, NB_LONG pixels) {
    if (VGA_VIEWER_VIEW *view = root->view) {
        vga_viewer_set_offsets(view, int64_t{view->x_offset} + pixels, view->y_offset, nullptr);
    }
}

NB_VOID vga_viewer_set_width(VGA_VIEWER_ROOT *root, NB_ULONG width) {
    if (VGA_VIEWER_VIEW *view = vga_viewer_view(root)) {
        view->content_width = width;
        vga_viewer_content_changed(view);
    }
}
