#include "graphics.h"
#include "nbbase.h"
#include "viewerparts.h"
#include <Xm/DrawnB.h>
#include <algorithm>

namespace {

constexpr unsigned long drag_interval = 50; // milliseconds between steps of an automatic scroll
constexpr NB_LONG drag_lines = 2;           // lines a step
constexpr NB_LONG wheel_lines = 3;          // lines, or columns, a notch of the wheel

NB_USHORT is_key(const XmDrawnButtonCallbackStruct *cbs) {
    return cbs->event != nullptr &&
           (cbs->event->type == KeyPress || cbs->event->type == KeyRelease);
}

/* Asks the line's type whether it joins the drag. */
NB_VOID cross(VGA_VIEWER_ITEM *item, NB_USHORT select) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(item->type);
    if (desc->drag_cb != nullptr) {
        desc->drag_cb(item->data, select, 1);
    }
}

/* The pointer, with the button held, is over that height of the window. */
NB_VOID drag_over(VGA_VIEWER_VIEW *view, NB_INT window_y) {
    VGA_VIEWER_ITEM *item = vga_viewer_hit(view, window_y);
    if (item == nullptr && window_y > 0) {
        // Below the last line.
        item = vga_viewer_find_line(view->root, vga_viewer_list_lines(&view->root->top_items) - 1);
    }
    if (view->root->last_dragged == nullptr || view->root->select_anchor == nullptr) {
        vga_viewer_end_drag(view); // the line went while the button was down
    } else if (item != nullptr && item != view->root->last_dragged) {
        vga_viewer_drag_to(view, item);
    }
}

NB_VOID start_drag_timer(VGA_VIEWER_VIEW *view);

/* While the pointer is above or below the window the view follows it. */
NB_VOID vga_viewer_drag_timer(XtPointer client_data, XtIntervalId *) {
    VGA_VIEWER_VIEW *view = vga_viewer_view_of_timer(client_data);
    if (view == nullptr || view->root->displayed == 0) {
        return;
    }
    view->drag_timer = 0;
    if (view->dragging == 0) {
        v0_assert_fatal(__FILE__, __LINE__, "root->dragging");
        return;
    }
    Window root_window, child;
    NB_INT root_x, root_y, x, y = 0;
    unsigned buttons;
    XQueryPointer(XtDisplay(view->draw_widget), XtWindow(view->draw_widget), &root_window, &child,
                  &root_x, &root_y, &x, &y, &buttons);
    const NB_INT height = static_cast<NB_INT>(view->window_height);
    const NB_LONG step = drag_lines * static_cast<NB_LONG>(gvga_viewer_item_height);
    if (y < 0 || y >= height) {
        vga_viewer_scroll_view(view->root, y < 0 ? -step : step);
        drag_over(view, y < 0 ? 0 : height - 1);
    }
    if (view->dragging != 0 && view->root->displayed != 0) {
        start_drag_timer(view);
    }
}

NB_VOID start_drag_timer(VGA_VIEWER_VIEW *view) {
    view->drag_timer = XtAppAddTimeOut(
        XtWidgetToApplicationContext(view->draw_widget), drag_interval, vga_viewer_drag_timer,
        reinterpret_cast<XtPointer>(static_cast<uintptr_t>(view->root->handle)));
}

NB_VOID stop_drag_timer(VGA_VIEWER_VIEW *view) {
    if (view->drag_timer != 0) {
        XtRemoveTimeOut(view->drag_timer);
        view->drag_timer = 0;
    }
}

} // namespace

VGA_VIEWER_ITEM *vga_viewer_hit(const VGA_VIEWER_VIEW *view, NB_INT window_y) {
    return vga_find_viewer(view->root, static_cast<NB_LONG>(view->y_offset) + window_y);
}

NB_USHORT vga_viewer_check_expand(const VGA_VIEWER_VIEW *view, const VGA_VIEWER_ITEM *item,
                                  NB_INT window_x) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(item->type);
    const int64_t left = int64_t{desc->level} * gvga_viewer_indent_width;
    const int64_t x = int64_t{view->x_offset} + window_x;
    return desc->expandable != 0 && vga_viewer_has_children(item) != 0 && x >= left &&
           x < left + gvga_viewer_expand_icon_width;
}

NB_VOID vga_viewer_call_disarm(VGA_VIEWER_VIEW *view, NB_SHORT type) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(type);
    if (view->root->displayed != 0 && type != VGA_VIEWER_SELECT_NONE &&
        desc->disarm_cb != nullptr) {
        desc->disarm_cb(view->draw_widget);
    }
}

NB_VOID vga_viewer_set_buttons(VGA_VIEWER_VIEW *view, NB_SHORT type) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(type);
    if (view->root->displayed != 0 && view->root->window != nullptr &&
        type != VGA_VIEWER_SELECT_NONE && desc->set_button_states != nullptr) {
        desc->set_button_states(view->root->window);
    }
}

NB_VOID vga_viewer_arm_select(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item,
                              const XmDrawnButtonCallbackStruct *cbs) {
    unsigned state = 0;
    if (cbs != nullptr && cbs->event != nullptr && cbs->event->type == ButtonPress) {
        state = cbs->event->xbutton.state;
    }
    vga_viewer_select(item, root, (state & ControlMask) != 0, (state & ShiftMask) != 0, 1, 1);
}

NB_USHORT vga_viewer_is_open(const XmDrawnButtonCallbackStruct *cbs) {
    return cbs == nullptr || cbs->click_count != 1;
}

NB_VOID vga_viewer_arm(Widget, XtPointer client_data, XtPointer call_data) {
    VGA_VIEWER_VIEW *view = static_cast<VGA_VIEWER_VIEW *>(client_data);
    XmDrawnButtonCallbackStruct *cbs = static_cast<XmDrawnButtonCallbackStruct *>(call_data);
    if (cbs->event == nullptr || cbs->event->type != ButtonPress) {
        return;
    }
    vga_viewer_hide_tip(view);
    vga_clear_outline_selection(view->root);
    view->root->armed = vga_viewer_hit(view, cbs->event->xbutton.y);
    view->armed_type = VGA_VIEWER_SELECT_NONE;
    if (view->root->armed == nullptr) {
        return;
    }
    view->armed_type = view->root->armed->type;
    const VGA_VIEWER_DESC *desc = vga_viewer_type(view->root->armed->type);
    if (desc->arm_cb != nullptr) {
        desc->arm_cb(view->root->armed->data, cbs);
    }
    // The callback may have changed the list, and a title line is no place to drag from.
    if (view->root->displayed != 0 && view->root->armed != nullptr &&
        vga_viewer_can_select(view->root, view->root->armed) != 0 &&
        view->root->select_anchor != nullptr) {
        view->dragging = 1;
        view->root->last_dragged = view->root->armed;
    }
}

NB_VOID vga_viewer_disarm(Widget, XtPointer client_data, XtPointer) {
    VGA_VIEWER_VIEW *view = static_cast<VGA_VIEWER_VIEW *>(client_data);
    vga_viewer_end_drag(view);
    const NB_SHORT type = view->armed_type;
    view->root->armed = nullptr;
    view->armed_type = VGA_VIEWER_SELECT_NONE;
    vga_viewer_call_disarm(view, type);
    vga_viewer_offer_selection(view);
}

NB_VOID vga_viewer_activate(Widget, XtPointer client_data, XtPointer call_data) {
    VGA_VIEWER_VIEW *view = static_cast<VGA_VIEWER_VIEW *>(client_data);
    XmDrawnButtonCallbackStruct cbs = *static_cast<XmDrawnButtonCallbackStruct *>(call_data);
    if (is_key(&cbs) || cbs.event == nullptr || cbs.event->type != ButtonRelease) {
        return;
    }
    VGA_VIEWER_ITEM *item = vga_viewer_hit(view, cbs.event->xbutton.y);
    if (item == nullptr || item != view->root->armed) {
        view->root->clicked = nullptr; // pressed on another line: a drag, not a click
        return;
    }
    if (vga_viewer_check_expand(view, item, cbs.event->xbutton.x) != 0) {
        view->root->clicked = nullptr;
        if (item->expanded != 0) {
            vga_viewer_contract(view->root, item, 1);
        } else {
            vga_viewer_open(view->root, item);
        }
        return;
    }
    // The toolkit counts clicks on the widget; two quick ones on two lines are no double click.
    if (item != view->root->clicked && cbs.click_count > 1) {
        cbs.click_count = 1;
    }
    view->root->clicked = item;
    const VGA_VIEWER_DESC *desc = vga_viewer_type(item->type);
    if (desc->activate_cb != nullptr) {
        desc->activate_cb(item->data, &cbs);
    }
}

/* Away from the anchor lines are taken in, back towards it they are given up. */
NB_VOID vga_viewer_drag_to(VGA_VIEWER_VIEW *view, VGA_VIEWER_ITEM *item) {
    if (view->root->last_dragged == nullptr || view->root->select_anchor == nullptr) {
        v0_assert_fatal(__FILE__, __LINE__, "root->last_dragged != NULL");
        return;
    }
    const NB_ULONG anchor = vga_viewer_get_line(view->root->select_anchor);
    const NB_ULONG target = vga_viewer_get_line(item);
    NB_ULONG line = vga_viewer_get_line(view->root->last_dragged);
    while (line != target && view->root->displayed != 0) {
        const NB_ULONG next = line < target ? line + 1 : line - 1;
        const bool away = line < target ? line >= anchor : line <= anchor;
        VGA_VIEWER_ITEM *crossed = vga_viewer_find_line(view->root, away ? next : line);
        if (crossed != nullptr) {
            cross(crossed, away);
        }
        line = next;
    }
    view->root->last_dragged = item;
}

NB_VOID vga_viewer_end_drag(VGA_VIEWER_VIEW *view) {
    stop_drag_timer(view);
    view->dragging = 0;
    view->root->last_dragged = nullptr;
}

NB_VOID vga_viewer_motion(Widget, XtPointer client_data, XEvent *event, Boolean *) {
    VGA_VIEWER_VIEW *view = static_cast<VGA_VIEWER_VIEW *>(client_data);
    const NB_INT y = event->xmotion.y;
    if (view->dragging == 0 || y < 0 || y >= static_cast<NB_INT>(view->window_height)) {
        return;
    }
    drag_over(view, y);
}

NB_VOID vga_viewer_enter_hierarchy(Widget, XtPointer client_data, XEvent *, Boolean *) {
    stop_drag_timer(static_cast<VGA_VIEWER_VIEW *>(client_data));
}

NB_VOID vga_viewer_leave_hierarchy(Widget, XtPointer client_data, XEvent *, Boolean *) {
    VGA_VIEWER_VIEW *view = static_cast<VGA_VIEWER_VIEW *>(client_data);
    if (view->dragging != 0 && view->drag_timer == 0) {
        start_drag_timer(view);
    }
}

NB_VOID vga_viewer_wheel(Widget, XtPointer client_data, XEvent *event, Boolean *) {
    constexpr unsigned up = Button4, left = 6, right = 7; // down is 5
    VGA_VIEWER_VIEW *view = static_cast<VGA_VIEWER_VIEW *>(client_data);
    const unsigned button = event->xbutton.button;
    if (view->dragging != 0 || button < up || button > right) {
        return;
    }
    const NB_LONG notch = button == up || button == left ? -wheel_lines : wheel_lines;
    if (button >= left || (event->xbutton.state & ShiftMask) != 0) {
        vga_viewer_scroll_view_horizontal(view->root,
                                          notch * static_cast<NB_LONG>(gvga_viewer_char_width));
    } else {
        vga_viewer_scroll_view(view->root, notch * static_cast<NB_LONG>(gvga_viewer_item_height));
    }
}
