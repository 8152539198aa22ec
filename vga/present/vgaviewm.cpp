#include "nbbase.h"
#include "vgagraph.h"
#include "vgaviewi.h"
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

const VGA_VIEWER_DESC *type_row(NB_SHORT type) {
    VGA_VIEWER_ITEM item = {};
    item.type = static_cast<NB_UCHAR>(type);
    return vga_viewer_type(&item);
}

/* Asks the line's type whether it joins the drag. */
NB_VOID cross(VGA_VIEWER_ITEM *item, NB_USHORT select) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(item);
    if (desc->drag_cb != nullptr) {
        desc->drag_cb(item->data, select, 1);
    }
}

/* The pointer, with the button held, is over that height of the window. */
NB_VOID drag_over(VGA_VIEWER_ROOT *root, NB_INT window_y) {
    VGA_VIEWER_ITEM *item = vga_viewer_hit(root, window_y);
    if (item == nullptr && window_y > 0) {
        // Below the last line.
        item = vga_viewer_find_line(root, vga_viewer_list_lines(&root->top_items) - 1);
    }
    if (root->last_dragged == nullptr || root->select_anchor == nullptr) {
        vga_viewer_end_drag(root); // the line went while the button was down
    } else if (item != nullptr && item != root->last_dragged) {
        vga_viewer_drag_to(root, item);
    }
}

NB_VOID start_drag_timer(VGA_VIEWER_ROOT *root);

/* While the pointer is above or below the window the view follows it. */
NB_VOID vga_viewer_drag_timer(XtPointer client_data, XtIntervalId *) {
    const NB_ULONG handle = static_cast<NB_ULONG>(reinterpret_cast<uintptr_t>(client_data));
    VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(nba_validate_handle(handle));
    if (root == nullptr || root->displayed == 0) {
        return;
    }
    root->drag_timer = 0;
    if (root->dragging == 0) {
        v0_assert_fatal(__FILE__, __LINE__, "root->dragging");
        return;
    }
    Window root_window, child;
    NB_INT root_x, root_y, x, y = 0;
    unsigned buttons;
    XQueryPointer(XtDisplay(root->draw_widget), XtWindow(root->draw_widget), &root_window, &child,
                  &root_x, &root_y, &x, &y, &buttons);
    const NB_INT height = static_cast<NB_INT>(root->window_height);
    const NB_LONG step = drag_lines * static_cast<NB_LONG>(gvga_viewer_item_height);
    if (y < 0 || y >= height) {
        vga_viewer_scroll_view(root, y < 0 ? -step : step);
        drag_over(root, y < 0 ? 0 : height - 1);
    }
    if (root->dragging != 0 && root->displayed != 0) {
        start_drag_timer(root);
    }
}

NB_VOID start_drag_timer(VGA_VIEWER_ROOT *root) {
    root->drag_timer = XtAppAddTimeOut(
        XtWidgetToApplicationContext(root->draw_widget), drag_interval, vga_viewer_drag_timer,
        reinterpret_cast<XtPointer>(static_cast<uintptr_t>(root->handle)));
}

NB_VOID stop_drag_timer(VGA_VIEWER_ROOT *root) {
    if (root->drag_timer != 0) {
        XtRemoveTimeOut(root->drag_timer);
        root->drag_timer = 0;
    }
}

} // namespace

VGA_VIEWER_ITEM *vga_viewer_hit(const VGA_VIEWER_ROOT *root, NB_INT window_y) {
    return vga_find_viewer(root, static_cast<NB_LONG>(root->y_offset) + window_y);
}

NB_USHORT vga_viewer_check_expand(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item,
                                  NB_INT window_x) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(item);
    const int64_t left = int64_t{desc->level} * gvga_viewer_indent_width;
    const int64_t x = int64_t{root->x_offset} + window_x;
    return desc->expandable != 0 && vga_viewer_has_children(item) != 0 && x >= left &&
           x < left + gvga_viewer_expand_icon_width;
}

NB_VOID vga_viewer_call_disarm(VGA_VIEWER_ROOT *root, NB_SHORT type) {
    const VGA_VIEWER_DESC *desc = type_row(type);
    if (root->displayed != 0 && type != VGA_VIEWER_SELECT_NONE && desc->disarm_cb != nullptr) {
        desc->disarm_cb(root->draw_widget);
    }
}

NB_VOID vga_viewer_notify(VGA_VIEWER_ROOT *root, NB_SHORT type) {
    const VGA_VIEWER_DESC *desc = type_row(type);
    if (root->displayed != 0 && root->window != nullptr && type != VGA_VIEWER_SELECT_NONE &&
        desc->set_button_states != nullptr) {
        desc->set_button_states(root->window);
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
    VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(client_data);
    XmDrawnButtonCallbackStruct *cbs = static_cast<XmDrawnButtonCallbackStruct *>(call_data);
    if (cbs->event == nullptr || cbs->event->type != ButtonPress) {
        return;
    }
    vga_clear_outline_selection(root);
    root->armed = vga_viewer_hit(root, cbs->event->xbutton.y);
    root->armed_type = VGA_VIEWER_SELECT_NONE;
    if (root->armed == nullptr) {
        return;
    }
    root->armed_type = root->armed->type;
    const VGA_VIEWER_DESC *desc = vga_viewer_type(root->armed);
    if (desc->arm_cb != nullptr) {
        desc->arm_cb(root->armed->data, cbs);
    }
    // The callback may have changed the list, and a title line is no place to drag from.
    if (root->displayed != 0 && root->armed != nullptr && root->armed->fixed == 0 &&
        root->select_anchor != nullptr) {
        root->dragging = 1;
        root->last_dragged = root->armed;
    }
}

NB_VOID vga_viewer_disarm(Widget, XtPointer client_data, XtPointer) {
    VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(client_data);
    vga_viewer_end_drag(root);
    const NB_SHORT type = root->armed_type;
    root->armed = nullptr;
    root->armed_type = VGA_VIEWER_SELECT_NONE;
    vga_viewer_call_disarm(root, type);
}

NB_VOID vga_viewer_activate(Widget, XtPointer client_data, XtPointer call_data) {
    VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(client_data);
    XmDrawnButtonCallbackStruct cbs = *static_cast<XmDrawnButtonCallbackStruct *>(call_data);
    if (is_key(&cbs) || cbs.event == nullptr || cbs.event->type != ButtonRelease) {
        return;
    }
    VGA_VIEWER_ITEM *item = vga_viewer_hit(root, cbs.event->xbutton.y);
    if (item == nullptr || item != root->armed) {
        root->clicked = nullptr; // pressed on another line: a drag, not a click
        return;
    }
    if (vga_viewer_check_expand(root, item, cbs.event->xbutton.x) != 0) {
        root->clicked = nullptr;
        if (item->expanded != 0) {
            vga_viewer_contract(root, item, 1);
        } else {
            vga_expand_viewer(root, item, 1);
        }
        return;
    }
    // The toolkit counts clicks on the widget; two quick ones on two lines are no double click.
    if (item != root->clicked && cbs.click_count > 1) {
        cbs.click_count = 1;
    }
    root->clicked = item;
    const VGA_VIEWER_DESC *desc = vga_viewer_type(item);
    if (desc->activate_cb != nullptr) {
        desc->activate_cb(item->data, &cbs);
    }
}

/* Away from the anchor lines are taken in, back towards it they are given up. */
NB_VOID vga_viewer_drag_to(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    if (root->last_dragged == nullptr || root->select_anchor == nullptr) {
        v0_assert_fatal(__FILE__, __LINE__, "root->last_dragged != NULL");
        return;
    }
    const NB_ULONG anchor = vga_viewer_get_line(root->select_anchor);
    const NB_ULONG target = vga_viewer_get_line(item);
    NB_ULONG line = vga_viewer_get_line(root->last_dragged);
    while (line != target && root->displayed != 0) {
        const NB_ULONG next = line < target ? line + 1 : line - 1;
        const bool away = line < target ? line >= anchor : line <= anchor;
        VGA_VIEWER_ITEM *crossed = vga_viewer_find_line(root, away ? next : line);
        if (crossed != nullptr) {
            cross(crossed, away);
        }
        line = next;
    }
    root->last_dragged = item;
}

NB_VOID vga_viewer_end_drag(VGA_VIEWER_ROOT *root) {
    stop_drag_timer(root);
    root->dragging = 0;
    root->last_dragged = nullptr;
}

NB_VOID vga_viewer_motion(Widget, XtPointer client_data, XEvent *event, Boolean *) {
    VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(client_data);
    const NB_INT y = event->xmotion.y;
    if (root->dragging == 0 || y < 0 || y >= static_cast<NB_INT>(root->window_height)) {
        return;
    }
    drag_over(root, y);
}

NB_VOID vga_viewer_enter_hierarchy(Widget, XtPointer client_data, XEvent *, Boolean *) {
    stop_drag_timer(static_cast<VGA_VIEWER_ROOT *>(client_data));
}

NB_VOID vga_viewer_leave_hierarchy(Widget, XtPointer client_data, XEvent *, Boolean *) {
    VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(client_data);
    if (root->dragging != 0 && root->drag_timer == 0) {
        start_drag_timer(root);
    }
}

NB_VOID vga_viewer_wheel(Widget, XtPointer client_data, XEvent *event, Boolean *) {
    constexpr unsigned up = Button4, left = 6, right = 7; // down is 5
    VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(client_data);
    const unsigned button = event->xbutton.button;
    if (root->dragging != 0 || button < up || button > right) {
        return;
    }
    const NB_LONG notch = button == up || button == left ? -wheel_lines : wheel_lines;
    if (button >= left || (event->xbutton.state & ShiftMask) != 0) {
        vga_viewer_scroll_view_horizontal(root,
                                          notch * static_cast<NB_LONG>(gvga_viewer_char_width));
    } else {
        vga_viewer_scroll_view(root, notch * static_cast<NB_LONG>(gvga_viewer_item_height));
    }
}
