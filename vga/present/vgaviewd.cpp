#include "nbbase.h"
#include "vgadgfw.h"
#include "vgagraph.h"
#include "vganofq.h"
#include "vgaviewi.h"
#include <Xm/ScrollBar.h>
#include <Xm/ScrolledW.h>
#include <algorithm>
#include <cstring>

namespace {

constexpr NB_ULONG icon_gap = 4; // pixels between icon and text

/* One line. */

/* Where a line is being drawn: a pixmap of one line, so that the window never shows it half done.
 */
struct PEN {
    VGA_VIEWER_ROOT *root;
    Display *display;
    Drawable drawable;
    GC gc;
    const Pixmap *pixmaps;
    NB_INT x;
};

NB_VOID draw_pixmap(const PEN &pen, NB_USHORT icon, NB_ULONG width, NB_ULONG height, NB_ULONG y) {
    XCopyArea(pen.display, pen.pixmaps[icon], pen.drawable, pen.gc, 0, 0,
              static_cast<unsigned>(width), static_cast<unsigned>(height), pen.x,
              static_cast<NB_INT>(y));
}

NB_VOID draw_icons(PEN *pen, const VGA_VIEWER_ITEM *item, const VGA_VIEWER_DESC *desc) {
    pen->x += static_cast<NB_INT>(desc->level * gvga_viewer_indent_width);
    if (desc->expandable != 0 && vga_viewer_has_children(item) != 0) {
        draw_pixmap(*pen, item->expanded != 0 ? VGA_ICON_MINUS : VGA_ICON_PLUS,
                    gvga_viewer_expand_icon_width, gvga_viewer_expand_icon_height,
                    gvga_viewer_expand_icon_y);
    }
    if (desc->expandable != 0 || desc->flat == 0) {
        pen->x += static_cast<NB_INT>(gvga_viewer_expand_icon_width);
    }
    if (desc->show_icon != 0) {
        NB_USHORT icon = desc->choose_icon != nullptr ? desc->choose_icon(item->data)
                                                      : NB_USHORT{VGA_ICON_BLANK};
        icon = icon < VGA_ICON_COUNT ? icon : NB_USHORT{VGA_ICON_BLANK};
        draw_pixmap(*pen, icon, gvga_viewer_icon_width, gvga_viewer_icon_height,
                    gvga_viewer_icon_y);
        pen->x += static_cast<NB_INT>(gvga_viewer_icon_width + icon_gap);
    }
}

NB_VOID draw_text(const PEN &pen, const NB_CHAR *text) {
    NB_ULONG column = 0;
    VGA_VIEWER_RUN run;
    while (vga_viewer_next_run(&text, &column, &run) != 0) {
        const NB_INT x = pen.x + static_cast<NB_INT>(run.column * gvga_viewer_char_width);
        if (run.length == 0 || x >= static_cast<NB_INT>(pen.root->window_width)) {
            continue;
        }
        // Coordinates have 16 bits, so what ends left of the window is not even tried.
        if (x < 0 && x + static_cast<NB_INT>(vga_viewer_measure(run.text, run.length)) <= 0) {
            continue;
        }
        if (gvga_viewer_fontset != nullptr) {
            XmbDrawString(pen.display, pen.drawable, gvga_viewer_fontset, pen.gc, x,
                          static_cast<NB_INT>(gvga_viewer_text_y), run.text, run.length);
        } else {
            XDrawString(pen.display, pen.drawable, pen.gc, x,
                        static_cast<NB_INT>(gvga_viewer_text_y), run.text, run.length);
        }
    }
}

VGA_VIEWER_RUN last_run(const NB_CHAR *text) {
    NB_ULONG column = 0;
    VGA_VIEWER_RUN run = {};
    while (vga_viewer_next_run(&text, &column, &run) != 0) {
    }
    return run;
}

NB_ULONG width_with_last(const VGA_VIEWER_RUN &last) {
    return last.column * gvga_viewer_char_width + vga_viewer_measure(last.text, last.length);
}

/* The width is taken when the line is first drawn, and the content is at least as wide. */
NB_VOID measure(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, const VGA_VIEWER_RUN &last) {
    if (item->laid_out == 0) {
        item->laid_out = 1;
        item->line_width = vga_viewer_left_width(vga_viewer_type(item)) + width_with_last(last);
    }
    if (item->line_width > root->content_width) {
        root->content_width = item->line_width;
        root->bars_due = 1;
    }
}

/* Pixels from the left edge of the window that the line needs the pixmap for; what is right of them
 * is ground.  The text is taken as if each of its bytes had a column of its own, which costs no
 * measuring and in a fixed pitch is never too little; for another font there is the measured width.
 */
NB_ULONG inked_width(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item,
                     const VGA_VIEWER_DESC *desc, const VGA_VIEWER_RUN &last) {
    if (desc->decor_cb != nullptr || root->outline_viewer == item) {
        return root->window_width;
    }
    const NB_ULONG columns = last.column + static_cast<NB_ULONG>(last.length);
    const NB_ULONG right =
        std::max(vga_viewer_left_width(desc) + columns * gvga_viewer_char_width, item->line_width);
    return std::clamp<NB_ULONG>(right, root->x_offset, root->x_offset + root->window_width) -
           root->x_offset;
}

NB_VOID vga_draw_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_INT window_y) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(item);
    const bool selected = item->selected != 0;
    PEN pen = {root,
               XtDisplay(root->draw_widget),
               root->line_pixmap,
               selected ? gvga_inverted_gc : gvga_normal_gc,
               selected ? gvga_inverted_pixmaps : gvga_pixmaps,
               -static_cast<NB_INT>(root->x_offset)};
    const GC ground = selected ? gvga_normal_gc : gvga_inverted_gc;
    const Window window = XtWindow(root->draw_widget);
    const unsigned width = static_cast<unsigned>(root->window_width);
    const unsigned height = static_cast<unsigned>(gvga_viewer_item_height);
    NB_CHAR text[VGA_VIEWER_TEXT_BUFFER + 1];
    vga_viewer_line_text(item, text);
    const VGA_VIEWER_RUN last = last_run(text);
    measure(root, item, last);
    const unsigned inked = static_cast<unsigned>(inked_width(root, item, desc, last));
    if (inked != 0) {
        XFillRectangle(pen.display, pen.drawable, ground, 0, 0, inked, height);
        draw_icons(&pen, item, desc);
        draw_text(pen, text);
        if (desc->decor_cb != nullptr) {
            desc->decor_cb(item->data, root->draw_widget, pen.drawable, pen.x, 0, pen.gc);
        }
        if (root->outline_viewer == item) {
            XDrawRectangle(pen.display, pen.drawable, gvga_outline_gc, 0, 0, width - 1, height - 1);
        }
        XCopyArea(pen.display, pen.drawable, window, gvga_normal_gc, 0, 0, inked, height, 0,
                  window_y);
    }
    if (inked < width) {
        XFillRectangle(pen.display, window, ground, static_cast<NB_INT>(inked), window_y,
                       width - inked, height);
    }
}

/* A band of lines. */

/* Makes the pixmap wide enough; 0 without a window to draw in. */
bool ready_to_draw(VGA_VIEWER_ROOT *root) {
    if (!XtIsRealized(root->draw_widget) || gvga_viewer_item_height == 0 ||
        gvga_normal_gc == nullptr || root->window_width < 2) {
        return false;
    }
    if (root->line_pixmap_width < root->window_width) {
        Display *const display = XtDisplay(root->draw_widget);
        if (root->line_pixmap != 0) {
            XFreePixmap(display, root->line_pixmap);
        } else {
            // Or the server would blank the window whenever a scroll bar comes or goes.
            XSetWindowAttributes attributes;
            attributes.bit_gravity = NorthWestGravity;
            XChangeWindowAttributes(display, XtWindow(root->draw_widget), CWBitGravity,
                                    &attributes);
        }
        NB_INT depth = 0;
        XtVaGetValues(root->draw_widget, XmNdepth, &depth, nullptr);
        root->line_pixmap_width = root->window_width;
        root->line_pixmap = XCreatePixmap(
            display, XtWindow(root->draw_widget), static_cast<unsigned>(root->window_width),
            static_cast<unsigned>(gvga_viewer_item_height), static_cast<unsigned>(depth));
    }
    return true;
}

/* Draws the lines of the band that the window shows, and the ground below the last line. */
NB_VOID vga_viewer_redraw(VGA_VIEWER_ROOT *root, VGA_VIEWER_BAND band) {
    const NB_ULONG height = gvga_viewer_item_height;
    const NB_ULONG first = root->y_offset / height;
    const NB_ULONG shown = (root->window_height + height - 1) / height;
    const NB_ULONG end = std::min(band.bottom, first + shown);
    NB_ULONG line = std::max(band.top, first);
    if (line >= end) {
        return;
    }
    VGA_VIEWER_ITEM *item = vga_viewer_find_line(root, line);
    for (; item != nullptr && line < end; ++line) {
        vga_draw_viewer(root, item, static_cast<NB_INT>((line - first) * height));
        item = vga_viewer_next_line(root, item);
    }
    if (line < end) {
        XFillRectangle(XtDisplay(root->draw_widget), XtWindow(root->draw_widget), gvga_inverted_gc,
                       0, static_cast<NB_INT>((line - first) * height),
                       static_cast<unsigned>(root->window_width),
                       static_cast<unsigned>((end - line) * height));
    }
    gvga_display_dirty = 1;
}

NB_VOID draw_marked(VGA_VIEWER_ROOT *root) {
    VGA_VIEWER_BAND bands[VGA_VIEWER_BANDS];
    const NB_USHORT count = root->dirty_count;
    std::copy_n(root->dirty, count, bands);
    root->dirty_count = 0;
    if (ready_to_draw(root)) {
        for (NB_USHORT i = 0; i < count; ++i) {
            vga_viewer_redraw(root, bands[i]);
        }
    }
}

/* Scroll bars. */

NB_ULONG lines_height(const VGA_VIEWER_ROOT *root) {
    return vga_viewer_list_lines(&root->top_items) * gvga_viewer_item_height;
}

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

NB_VOID vga_viewer_set_scroll_bars(VGA_VIEWER_ROOT *root) {
    root->bars_due = 0;
    vga_viewer_read_size(root);
    VGA_VIEWER_FIT fit = {};
    fit.hbar_height = bar_room(root->hscroll, XmNheight);
    fit.vbar_width = bar_room(root->vscroll, XmNwidth);
    fit.full_width = root->window_width + (XtIsManaged(root->vscroll) ? fit.vbar_width : 0);
    fit.full_height = root->window_height + (XtIsManaged(root->hscroll) ? fit.hbar_height : 0);
    fit.content_width = root->content_width;
    fit.lines_height = lines_height(root);
    vga_viewer_fit(&fit);
    const NB_ULONG width = fit.full_width - (fit.vbar != 0 ? fit.vbar_width : 0);
    const NB_ULONG height = fit.full_height - (fit.hbar != 0 ? fit.hbar_height : 0);
    set_scroll_bar(root->vscroll, fit.vbar != 0,
                   vga_viewer_content_height(fit.lines_height, height, gvga_viewer_item_height),
                   height, root->y_offset, gvga_viewer_item_height);
    set_scroll_bar(root->hscroll, fit.hbar != 0, root->content_width, width, root->x_offset,
                   gvga_viewer_char_width);
    if (vga_viewer_read_size(root) != 0) {
        vga_viewer_mark_all(root);
    }
    vga_viewer_set_offsets(root, root->x_offset, root->y_offset, nullptr);
}

NB_VOID vga_viewer_scrollbar_timer(XtPointer client_data, XtIntervalId *) {
    const NB_ULONG handle = static_cast<NB_ULONG>(reinterpret_cast<uintptr_t>(client_data));
    if (VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(nba_validate_handle(handle))) {
        root->update_timer = 0;
        vga_viewer_update_now(root);
    }
}

} // namespace

NB_VOID vga_viewer_update_now(VGA_VIEWER_ROOT *root) {
    // Drawing may find a wider line, and a bar that comes or goes changes the window.
    constexpr NB_INT most_rounds = 4;
    for (NB_INT round = 0; round < most_rounds && root->displayed != 0; ++round) {
        if (root->bars_due != 0) {
            vga_viewer_set_scroll_bars(root);
        }
        if (root->dirty_count != 0) {
            draw_marked(root);
        }
        if (root->bars_due == 0 && root->dirty_count == 0) {
            break;
        }
    }
    if (root->bars_due != 0 || root->dirty_count != 0) {
        vga_viewer_schedule(root);
    } else if (root->update_timer != 0) {
        XtRemoveTimeOut(root->update_timer);
        root->update_timer = 0;
    }
}

NB_VOID vga_viewer_schedule(VGA_VIEWER_ROOT *root) {
    if (root->displayed != 0 && root->update_timer == 0 &&
        (root->dirty_count != 0 || root->bars_due != 0)) {
        root->update_timer = XtAppAddTimeOut(
            XtWidgetToApplicationContext(root->draw_widget), 0, vga_viewer_scrollbar_timer,
            reinterpret_cast<XtPointer>(static_cast<uintptr_t>(root->handle)));
    }
}

NB_VOID vga_viewer_content_changed(VGA_VIEWER_ROOT *root) {
    const NB_ULONG height = lines_height(root);
    root->content_height = height;
    if (root->displayed == 0) {
        return;
    }
    root->vscroll_shown = height > root->window_height;
    root->content_height =
        vga_viewer_content_height(height, root->window_height, gvga_viewer_item_height);
    root->bars_due = 1;
    vga_viewer_set_offsets(root, root->x_offset, root->y_offset, nullptr);
    vga_viewer_schedule(root);
}

NB_VOID vga_viewer_set_offsets(VGA_VIEWER_ROOT *root, int64_t x, int64_t y, Widget bar) {
    if (root->displayed == 0) {
        return;
    }
    const NB_ULONG new_x = vga_viewer_clamp(x, root->content_width, root->window_width, 0);
    const NB_ULONG new_y =
        vga_viewer_clamp(y, root->content_height, root->window_height, gvga_viewer_item_height);
    struct AXIS {
        NB_ULONG *offset, value;
        Widget bar;
    } const axes[] = {{&root->x_offset, new_x, root->hscroll},
                      {&root->y_offset, new_y, root->vscroll}};
    for (const AXIS &axis : axes) {
        if (*axis.offset == axis.value) {
            continue;
        }
        *axis.offset = axis.value;
        vga_viewer_mark_all(root);
        // A bar that is being dragged keeps the value that the pointer gives it.  One that is out
        // of date gets its value with the rest.
        if (axis.bar != bar && root->bars_due == 0 && XtIsManaged(axis.bar)) {
            XtVaSetValues(axis.bar, XmNvalue, static_cast<NB_INT>(axis.value), nullptr);
        }
    }
    vga_viewer_schedule(root);
}

NB_USHORT vga_viewer_read_size(VGA_VIEWER_ROOT *root) {
    Dimension width = 0, height = 0;
    XtVaGetValues(root->draw_widget, XmNwidth, &width, XmNheight, &height, nullptr);
    if (root->window_width == width && root->window_height == height) {
        return 0;
    }
    root->window_width = width;
    root->window_height = height;
    vga_viewer_content_changed(root);
    return 1;
}

NB_VOID vga_viewer_mark_all(VGA_VIEWER_ROOT *root) {
    vga_viewer_mark(root, 0, VGA_VIEWER_TO_END);
}

NB_ULONG vga_viewer_left_width(const VGA_VIEWER_DESC *desc) {
    return desc->level * gvga_viewer_indent_width +
           (desc->expandable != 0 || desc->flat == 0 ? gvga_viewer_expand_icon_width : 0) +
           (desc->show_icon != 0 ? gvga_viewer_icon_width + icon_gap : 0);
}

NB_USHORT vga_viewer_line_text(const VGA_VIEWER_ITEM *item, NB_CHAR *buffer) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(item);
    NB_USHORT text_len = 0;
    if (desc->create_text != nullptr) {
        text_len = desc->create_text(item->data, buffer);
    }
    if (text_len > VGA_VIEWER_MAX_TEXT_LENGTH) {
        v0_assert_fatal(__FILE__, __LINE__, "text_len <= VGA_VIEWER_MAX_TEXT_LENGTH");
        text_len = 0;
    }
    buffer[text_len] = '\0';
    return text_len;
}

NB_ULONG vga_viewer_text_width(const NB_CHAR *text) {
    return width_with_last(last_run(text));
}

NB_VOID vga_viewer_add_underline(NB_VOID *, Widget widget, Drawable drawable, NB_INT x, NB_INT y,
                                 GC gc) {
    Dimension width = 0;
    XtVaGetValues(widget, XmNwidth, &width, nullptr);
    const NB_INT line = y + static_cast<NB_INT>(gvga_viewer_item_height) - 1;
    XDrawLine(XtDisplay(widget), drawable, gc, std::max(x, 0), line, width, line);
}

NB_VOID vga_viewer_resize(Widget, XtPointer client_data, XtPointer) {
    VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(client_data);
    vga_viewer_read_size(root);
    root->bars_due = 1;
    vga_viewer_mark_all(root);
    vga_viewer_schedule(root);
}

NB_VOID vga_viewer_expose(Widget, XtPointer client_data, XtPointer call_data) {
    VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(client_data);
    const XEvent *event = static_cast<XmDrawnButtonCallbackStruct *>(call_data)->event;
    gvga_display_dirty = 1;
    if (vga_viewer_read_size(root) != 0 || event == nullptr || event->type != Expose ||
        gvga_viewer_item_height == 0) {
        vga_viewer_mark_all(root);
    } else {
        const NB_ULONG height = gvga_viewer_item_height;
        const NB_ULONG top = root->y_offset + static_cast<NB_ULONG>(std::max(event->xexpose.y, 0));
        const NB_ULONG bottom = top + static_cast<NB_ULONG>(std::max(event->xexpose.height, 0));
        vga_viewer_mark(root, top / height, (bottom + height - 1) / height);
    }
    vga_viewer_schedule(root);
}

NB_VOID vga_viewer_scroll(Widget bar, XtPointer client_data, XtPointer call_data) {
    VGA_VIEWER_ROOT *root = static_cast<VGA_VIEWER_ROOT *>(client_data);
    const NB_INT value = static_cast<XmScrollBarCallbackStruct *>(call_data)->value;
    const bool vertical = bar == root->vscroll;
    vga_viewer_set_offsets(root, vertical ? root->x_offset : value,
                           vertical ? value : root->y_offset, bar);
}

NB_VOID vga_viewer_scroll_drag(Widget bar, XtPointer client_data, XtPointer call_data) {
    vga_viewer_scroll(bar, client_data, call_data);
}
