#include "firewall.h"
#include "graphics.h"
#include "nbbase.h"
#include "toolkit.h"
#include "viewerparts.h"
#include <Xm/ScrollBar.h>
#include <Xm/ScrolledW.h>
#include <algorithm>
#include <cstring>

namespace {

/* A band of lines. */

/* Draws the lines of the band that the window shows, and the ground below the last line. */
NB_VOID vga_viewer_redraw(VGA_VIEWER_VIEW *view, VGA_VIEWER_BAND band) {
    const NB_ULONG height = gvga_viewer_item_height;
    const NB_ULONG first = view->y_offset / height;
    const NB_ULONG shown = (view->window_height + height - 1) / height;
    const NB_ULONG end = std::min(band.bottom, first + shown);
    NB_ULONG line = std::max(band.top, first);
    if (line >= end) {
        return;
    }
    VGA_VIEWER_ITEM *item = vga_viewer_find_line(view->root, line);
    while (item != nullptr && line < end) {
        const auto window_y = static_cast<NB_INT>((line - first) * height);
        line += vga_viewer_draw_lines(view, &item, end - line, window_y);
    }
    if (line < end) {
        XFillRectangle(XtDisplay(view->draw_widget), XtWindow(view->draw_widget), gvga_inverted_gc,
                       0, static_cast<NB_INT>((line - first) * height),
                       static_cast<unsigned>(view->window_width),
                       static_cast<unsigned>((end - line) * height));
    }
    gvga_display_dirty = 1;
}

NB_VOID draw_marked(VGA_VIEWER_VIEW *view) {
    VGA_VIEWER_BAND bands[VGA_VIEWER_BANDS];
    const NB_USHORT count = view->root->dirty_count;
    std::copy_n(view->root->dirty, count, bands);
    view->root->dirty_count = 0;
    if (vga_viewer_ready_to_draw(view) != 0) {
        for (NB_USHORT i = 0; i < count; ++i) {
            vga_viewer_redraw(view, bands[i]);
        }
    }
}

/* Scroll bars. */

/* A scroll bar that the operator holds keeps the gesture up for ever once it is gone. */
NB_VOID vga_viewer_remove_scroll_bar(Widget bar) {
    if (!XtIsManaged(bar)) {
        return;
    }
    if (gvga_modal_firewall_widget == bar) {
        XEvent release = {};
        release.type = ButtonRelease;
        release.xbutton.display = XtDisplay(bar);
        release.xbutton.window = XtWindow(bar);
        release.xbutton.button = Button1;
        XtCallActionProc(bar, const_cast<String>("Release"), &release, nullptr, 0);
        vga_modal_firewall_forget(bar);
    }
    XtUnmanageChild(bar);
}

NB_VOID set_scroll_bar(Widget bar, bool needed, NB_ULONG content, NB_ULONG window, NB_ULONG value,
                       NB_ULONG step) {
    if (!needed) {
        vga_viewer_remove_scroll_bar(bar);
        return;
    }
    const NB_INT maximum = static_cast<NB_INT>(std::max<NB_ULONG>(content, 2));
    const NB_INT slider = std::clamp(static_cast<NB_INT>(window), 1, maximum - 1);
    const NB_INT increment = std::max(static_cast<NB_INT>(step), 1);
    const NB_INT page = std::max(slider - slider % increment - increment, increment);
    XtVaSetValues(bar, XmNminimum, 0, XmNmaximum, maximum, XmNsliderSize, slider, XmNvalue,
                  std::min(static_cast<NB_INT>(value), maximum - slider), XmNincrement, increment,
                  XmNpageIncrement, page, nullptr);
    if (!XtIsManaged(bar)) {
        XtManageChild(bar);
    }
}

/* What a bar takes of the window's room. */
NB_ULONG bar_room(Widget bar, const NB_CHAR *dimension) {
    Dimension size = 0, spacing = 0;
    XtVaGetValues(bar, dimension, &size, nullptr);
    if (XmIsScrolledWindow(XtParent(bar))) {
        XtVaGetValues(XtParent(bar), XmNspacing, &spacing, nullptr);
    }
    return NB_ULONG{size} + spacing;
}

NB_VOID vga_viewer_set_scroll_bars(VGA_VIEWER_VIEW *view) {
    view->bars_due = 0;
    vga_viewer_read_size(view);
    VGA_VIEWER_FIT fit = {};
    fit.hbar_height = bar_room(view->hscroll, XmNheight);
    fit.vbar_width = bar_room(view->vscroll, XmNwidth);
    fit.full_width = view->window_width + (XtIsManaged(view->vscroll) ? fit.vbar_width : 0);
    fit.full_height = view->window_height + (XtIsManaged(view->hscroll) ? fit.hbar_height : 0);
    fit.content_width = view->content_width;
    fit.lines_height = vga_viewer_list_lines(&view->root->top_items) * gvga_viewer_item_height;
    vga_viewer_fit(&fit);
    const NB_ULONG width = fit.full_width - (fit.vbar != 0 ? fit.vbar_width : 0);
    const NB_ULONG height = fit.full_height - (fit.hbar != 0 ? fit.hbar_height : 0);
    set_scroll_bar(view->vscroll, fit.vbar != 0,
                   vga_viewer_content_height(fit.lines_height, height, gvga_viewer_item_height),
                   height, view->y_offset, gvga_viewer_item_height);
    set_scroll_bar(view->hscroll, fit.hbar != 0, view->content_width, width, view->x_offset,
                   gvga_viewer_char_width);
    if (vga_viewer_read_size(view) != 0) {
        vga_viewer_mark_all(view);
    }
    vga_viewer_set_offsets(view, view->x_offset, view->y_offset, nullptr);
}

NB_VOID vga_viewer_scrollbar_timer(XtPointer client_data, XtIntervalId *) {
    if (VGA_VIEWER_VIEW *view = vga_viewer_view_of_timer(client_data)) {
        view->update_timer = 0;
        vga_viewer_update_now(view->root);
    }
}

} // namespace

VGA_VIEWER_VIEW *vga_viewer_view_of_timer(XtPointer client_data) {
    const NB_ULONG handle = static_cast<NB_ULONG>(reinterpret_cast<uintptr_t>(client_data));
    const auto *root = static_cast<VGA_VIEWER_ROOT *>(nba_validate_handle(handle));
    return root != nullptr ? root->view : nullptr;
}

NB_VOID vga_viewer_clear(const VGA_VIEWER_VIEW *view) {
    for (Widget bar : {view->hscroll, view->vscroll}) {
        vga_viewer_remove_scroll_bar(bar);
    }
    if (XtIsRealized(view->draw_widget)) {
        XClearArea(XtDisplay(view->draw_widget), XtWindow(view->draw_widget), 0, 0, 0, 0, True);
    }
}

NB_VOID vga_viewer_update_now(VGA_VIEWER_ROOT *root) {
    VGA_VIEWER_VIEW *view = root->view;
    if (view == nullptr) {
        return;
    }
    // Drawing may find a wider line, and a bar that comes or goes changes the window.
    constexpr NB_INT most_rounds = 4;
    vga_viewer_follow_level(view);
    for (NB_INT round = 0; round < most_rounds && view->root->displayed != 0; ++round) {
        if (view->bars_due != 0) {
            vga_viewer_set_scroll_bars(view);
        }
        if (view->root->dirty_count != 0) {
            vga_viewer_check_tip(view);
            draw_marked(view);
        }
        if (view->headings_due != 0) {
            vga_viewer_draw_headings(view);
        }
        if (view->bars_due == 0 && view->root->dirty_count == 0) {
            break;
        }
    }
    if (view->bars_due != 0 || view->root->dirty_count != 0) {
        vga_viewer_schedule(view);
    } else if (view->update_timer != 0) {
        XtRemoveTimeOut(view->update_timer);
        view->update_timer = 0;
    }
}

NB_VOID vga_viewer_schedule(VGA_VIEWER_VIEW *view) {
    if (view->root->displayed != 0 && view->update_timer == 0 &&
        (view->root->dirty_count != 0 || view->bars_due != 0)) {
        view->update_timer = XtAppAddTimeOut(
            XtWidgetToApplicationContext(view->draw_widget), 0, vga_viewer_scrollbar_timer,
            reinterpret_cast<XtPointer>(static_cast<uintptr_t>(view->root->handle)));
    }
}

NB_ULONG vga_viewer_get_content_height(const VGA_VIEWER_ROOT *root) {
    const NB_ULONG height = vga_viewer_list_lines(&root->top_items) * gvga_viewer_item_height;
    return root->displayed == 0 || root->view == nullptr
               ? height
               : vga_viewer_content_height(height, root->view->window_height,
                                           gvga_viewer_item_height);
}

NB_VOID vga_viewer_content_changed(VGA_VIEWER_VIEW *view) {
    const bool noted = view->bars_due != 0 && view->update_timer != 0;
    if (noted && view->x_offset == 0 && view->y_offset == 0) {
        return; // there is nothing to be moved back
    }
    if (view->root->displayed != 0) {
        view->bars_due = 1;
        vga_viewer_hide_tip(view);
        vga_viewer_set_offsets(view, view->x_offset, view->y_offset, nullptr);
        vga_viewer_schedule(view);
    }
}

NB_VOID vga_viewer_set_offsets(VGA_VIEWER_VIEW *view, int64_t x, int64_t y, Widget bar) {
    if (view->root->displayed == 0) {
        return;
    }
    const NB_ULONG new_x = vga_viewer_clamp(x, view->content_width, view->window_width, 0);
    const NB_ULONG new_y = vga_viewer_clamp(y, vga_viewer_get_content_height(view->root),
                                            view->window_height, gvga_viewer_item_height);
    struct AXIS {
        NB_ULONG *offset, value;
        Widget bar;
    } const axes[] = {{&view->x_offset, new_x, view->hscroll},
                      {&view->y_offset, new_y, view->vscroll}};
    for (const AXIS &axis : axes) {
        if (*axis.offset == axis.value) {
            continue;
        }
        *axis.offset = axis.value;
        vga_viewer_hide_tip(view);
        vga_viewer_mark_all(view);
        // A bar that is being dragged keeps the value that the pointer gives it.  One that is out
        // of date gets its value with the rest.
        if (axis.bar != bar && view->bars_due == 0 && XtIsManaged(axis.bar)) {
            XtVaSetValues(axis.bar, XmNvalue, static_cast<NB_INT>(axis.value), nullptr);
        }
    }
    vga_viewer_schedule(view);
}

NB_USHORT vga_viewer_read_size(VGA_VIEWER_VIEW *view) {
    Dimension width = 0, height = 0;
    XtVaGetValues(view->draw_widget, XmNwidth, &width, XmNheight, &height, nullptr);
    if (view->window_width == width && view->window_height == height) {
        return 0;
    }
    view->window_width = width;
    view->window_height = height;
    vga_viewer_content_changed(view);
    return 1;
}

NB_VOID vga_viewer_mark_all(VGA_VIEWER_VIEW *view) {
    vga_viewer_mark(view->root, 0, VGA_VIEWER_TO_END);
    view->headings_due = view->headings != nullptr;
}

NB_VOID vga_viewer_resize(Widget, XtPointer client_data, XtPointer) {
    VGA_VIEWER_VIEW *view = static_cast<VGA_VIEWER_VIEW *>(client_data);
    vga_viewer_read_size(view);
    view->bars_due = 1;
    vga_viewer_mark_all(view);
    vga_viewer_schedule(view);
}

NB_VOID vga_viewer_expose(Widget, XtPointer client_data, XtPointer call_data) {
    VGA_VIEWER_VIEW *view = static_cast<VGA_VIEWER_VIEW *>(client_data);
    const XEvent *event = static_cast<XmDrawnButtonCallbackStruct *>(call_data)->event;
    gvga_display_dirty = 1;
    if (vga_viewer_read_size(view) != 0 || event == nullptr || event->type != Expose ||
        gvga_viewer_item_height == 0) {
        vga_viewer_mark_all(view);
    } else {
        const NB_ULONG height = gvga_viewer_item_height;
        const NB_ULONG top = view->y_offset + static_cast<NB_ULONG>(std::max(event->xexpose.y, 0));
        const NB_ULONG bottom = top + static_cast<NB_ULONG>(std::max(event->xexpose.height, 0));
        vga_viewer_mark(view->root, top / height, (bottom + height - 1) / height);
    }
    vga_viewer_schedule(view);
}

NB_VOID vga_viewer_scroll(Widget bar, XtPointer client_data, XtPointer call_data) {
    VGA_VIEWER_VIEW *view = static_cast<VGA_VIEWER_VIEW *>(client_data);
    const NB_INT value = static_cast<XmScrollBarCallbackStruct *>(call_data)->value;
    const bool vertical = bar == view->vscroll;
    vga_viewer_set_offsets(view, vertical ? view->x_offset : value,
                           vertical ? value : view->y_offset, bar);
}

NB_VOID vga_viewer_scroll_drag(Widget bar, XtPointer client_data, XtPointer call_data) {
    vga_viewer_scroll(bar, client_data, call_data);
}
