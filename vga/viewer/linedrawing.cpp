#include "graphics.h"
#include "listfont.h"
#include "nbbase.h"
#include "statemarks.h"
#include "viewerparts.h"
#include <algorithm>
#include <cstring>

namespace {

/* Lines are drawn in a pixmap of this many, then copied: the window never shows one half done, and
 * the pixmap stays small enough for the caches of the server's processor. */
constexpr NB_USHORT lines_at_once = 8;

/* Pixels between icon and text: 4, and in proportion beside icons for more dots an inch. */
NB_ULONG icon_gap() {
    return std::max<NB_ULONG>(4, gvga_viewer_icon_width / 7);
}

/* One line on its way to the window. */
struct LINE {
    VGA_VIEWER_ITEM *item;
    const VGA_VIEWER_DESC *desc;
    bool selected;
    NB_INT x, y; // of what is drawn next, in the pixmap
    NB_CHAR text[VGA_VIEWER_TEXT_BUFFER + 1];
};

/* The lines that are drawn together. */
struct PAGE {
    VGA_VIEWER_VIEW *view;
    Display *display;
    VGA_LIST_PEN normal, inverted;
    NB_ULONG inked; // pixels from the left that are copied; what is right of them is ground
    NB_USHORT count;
    LINE lines[lines_at_once];
};

NB_VOID draw_pixmap(const PAGE &page, const LINE &line, Pixmap pixmap, NB_ULONG width,
                    NB_ULONG height, NB_ULONG down) {
    XCopyArea(page.display, pixmap, page.view->line_pixmap, gvga_normal_gc, 0, 0,
              static_cast<unsigned>(width), static_cast<unsigned>(height), line.x,
              line.y + static_cast<NB_INT>(down));
}

/* Goes on to where the text begins. */
NB_VOID draw_icons(const PAGE &page, LINE *line) {
    const VGA_VIEWER_DESC *desc = line->desc;
    line->x += static_cast<NB_INT>(desc->level * gvga_viewer_indent_width);
    if (desc->expandable != 0 && vga_viewer_has_children(line->item) != 0) {
        const Pixmap *const pixmaps = line->selected ? gvga_inverted_pixmaps : gvga_pixmaps;
        draw_pixmap(page, *line,
                    pixmaps[line->item->expanded != 0 ? VGA_ICON_MINUS : VGA_ICON_PLUS],
                    gvga_viewer_expand_icon_width, gvga_viewer_expand_icon_height,
                    gvga_viewer_expand_icon_y);
    }
    if (desc->expandable != 0 || desc->flat == 0) {
        line->x += static_cast<NB_INT>(gvga_viewer_expand_icon_width);
    }
    if (desc->show_icon != 0) {
        NB_USHORT icon = desc->choose_icon != nullptr ? desc->choose_icon(line->item->data)
                                                      : NB_USHORT{VGA_ICON_BLANK};
        icon = icon < VGA_ICON_COUNT ? icon : NB_USHORT{VGA_ICON_BLANK};
        const Pixmap pixmap =
            vga_icon_in_state(icon, vga_viewer_line_state(line->item), line->selected);
        draw_pixmap(page, *line, pixmap, gvga_viewer_icon_width, gvga_viewer_icon_height,
                    gvga_viewer_icon_y);
        line->x += static_cast<NB_INT>(gvga_viewer_icon_width + icon_gap());
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
NB_VOID measure(VGA_VIEWER_VIEW *view, VGA_VIEWER_ITEM *item, const VGA_VIEWER_RUN &last) {
    if (item->laid_out == 0) {
        item->laid_out = 1;
        item->line_width =
            vga_viewer_left_width(vga_viewer_type(item->type)) + width_with_last(last);
    }
    if (item->line_width > view->content_width) {
        view->content_width = item->line_width;
        view->bars_due = 1;
    }
}

/* Pixels from the left edge of the window that the line needs the pixmap for.  The text is taken as
 * if each of its bytes had a column of its own, which costs no measuring and in a fixed pitch is
 * never too little; for another font there is the measured width. */
NB_ULONG inked_width(const VGA_VIEWER_VIEW *view, const LINE &line, const VGA_VIEWER_RUN &last) {
    if (line.desc->decor_cb != nullptr || view->root->outline_viewer == line.item) {
        return view->window_width;
    }
    const NB_ULONG columns = last.column + static_cast<NB_ULONG>(last.length);
    const NB_ULONG right = std::max(
        vga_viewer_left_width(line.desc) + columns * gvga_viewer_char_width, line.item->line_width);
    return std::clamp<NB_ULONG>(right, view->x_offset, view->x_offset + view->window_width) -
           view->x_offset;
}

NB_VOID lay_out(PAGE *page, VGA_VIEWER_ITEM *item) {
    LINE &line = page->lines[page->count];
    line.item = item;
    line.desc = vga_viewer_type(item->type);
    line.selected = item->selected != 0;
    line.x = -static_cast<NB_INT>(page->view->x_offset);
    line.y = static_cast<NB_INT>(page->count * gvga_viewer_item_height);
    vga_viewer_line_text(item, line.text);
    const VGA_VIEWER_RUN last = last_run(line.text);
    measure(page->view, item, last);
    page->inked = std::max(page->inked, inked_width(page->view, line, last));
    page->count++;
}

/* The ground of the lines between two edges. */
NB_VOID fill(const PAGE &page, Drawable drawable, NB_ULONG left, NB_ULONG right, NB_INT top) {
    const auto rectangle = [&](bool selected, NB_INT y, NB_ULONG height) {
        XFillRectangle(page.display, drawable, selected ? gvga_normal_gc : gvga_inverted_gc,
                       static_cast<NB_INT>(left), y, static_cast<unsigned>(right - left),
                       static_cast<unsigned>(height));
    };
    if (left >= right) {
        return;
    }
    bool selected = page.lines[0].selected;
    for (NB_USHORT from = 0, to = 1; from < page.count; ++to) {
        if (to == page.count || page.lines[to].selected != selected) {
            rectangle(selected, top + page.lines[from].y, (to - from) * gvga_viewer_item_height);
            from = to;
            selected = !selected;
        }
    }
}

NB_VOID draw_on_top(const PAGE &page, const LINE &line) {
    VGA_VIEWER_VIEW *view = page.view;
    if (line.desc->decor_cb != nullptr) {
        line.desc->decor_cb(line.item->data, view->draw_widget, view->line_pixmap, line.x, line.y,
                            line.selected ? gvga_inverted_gc : gvga_normal_gc);
    }
    if (view->root->outline_viewer == line.item) {
        XDrawRectangle(page.display, view->line_pixmap, gvga_outline_gc, 0, line.y,
                       static_cast<unsigned>(view->window_width - 1),
                       static_cast<unsigned>(gvga_viewer_item_height - 1));
    }
}

} // namespace

NB_USHORT vga_viewer_ready_to_draw(VGA_VIEWER_VIEW *view) {
    if (!XtIsRealized(view->draw_widget) || gvga_viewer_item_height == 0 ||
        gvga_normal_gc == nullptr || view->window_width < 2) {
        return 0;
    }
    if (view->line_pixmap_width >= view->window_width) {
        return 1;
    }
    Display *const display = XtDisplay(view->draw_widget);
    const Window window = XtWindow(view->draw_widget);
    vga_viewer_free_pixmap(view);
    // Or the server would blank the window whenever a scroll bar comes or goes.
    XSetWindowAttributes attributes;
    attributes.bit_gravity = NorthWestGravity;
    XChangeWindowAttributes(display, window, CWBitGravity, &attributes);
    NB_INT depth = 0;
    XtVaGetValues(view->draw_widget, XmNdepth, &depth, nullptr);
    view->line_pixmap_width = view->window_width;
    view->line_pixmap =
        XCreatePixmap(display, window, static_cast<unsigned>(view->window_width),
                      static_cast<unsigned>(lines_at_once * gvga_viewer_item_height),
                      static_cast<unsigned>(depth));
    view->canvas = vga_list_canvas(display, view->line_pixmap);
    return 1;
}

NB_VOID vga_viewer_free_pixmap(VGA_VIEWER_VIEW *view) {
    if (view->canvas != nullptr) {
        XftDrawDestroy(view->canvas);
    }
    if (view->line_pixmap != 0) {
        XFreePixmap(XtDisplay(view->draw_widget), view->line_pixmap);
    }
    view->canvas = nullptr;
    view->line_pixmap = view->line_pixmap_width = 0;
}

NB_ULONG vga_viewer_draw_lines(VGA_VIEWER_VIEW *view, VGA_VIEWER_ITEM **item, NB_ULONG count,
                               NB_INT window_y) {
    Display *const display = XtDisplay(view->draw_widget);
    const Window window = XtWindow(view->draw_widget);
    PAGE page = {view,
                 display,
                 VGA_LIST_PEN(display, view->line_pixmap, view->canvas, gvga_normal_gc),
                 VGA_LIST_PEN(display, view->line_pixmap, view->canvas, gvga_inverted_gc),
                 0,
                 0,
                 {}};
    for (; *item != nullptr && page.count < std::min<NB_ULONG>(count, lines_at_once);
         *item = vga_viewer_get_next_item(view->root, *item)) {
        lay_out(&page, *item);
    }
    fill(page, view->line_pixmap, 0, page.inked, 0);
    for (NB_USHORT i = 0; i < page.count; ++i) {
        LINE &line = page.lines[i];
        draw_icons(page, &line);
        vga_viewer_draw_text(line.selected ? &page.inverted : &page.normal, line.x, line.y,
                             view->window_width, line.text);
    }
    page.normal.draw();
    page.inverted.draw();
    for (NB_USHORT i = 0; i < page.count; ++i) {
        draw_on_top(page, page.lines[i]);
    }
    if (page.inked != 0) {
        XCopyArea(display, view->line_pixmap, window, gvga_normal_gc, 0, 0,
                  static_cast<unsigned>(page.inked),
                  static_cast<unsigned>(page.count * gvga_viewer_item_height), 0, window_y);
    }
    fill(page, window, page.inked, view->window_width, window_y);
    return page.count;
}

NB_ULONG vga_viewer_left_width(const VGA_VIEWER_DESC *desc) {
    return desc->level * gvga_viewer_indent_width +
           (desc->expandable != 0 || desc->flat == 0 ? gvga_viewer_expand_icon_width : 0) +
           (desc->show_icon != 0 ? gvga_viewer_icon_width + icon_gap() : 0);
}

NB_VOID vga_viewer_whole_text(const VGA_VIEWER_ITEM *item, NB_CHAR *buffer) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(item->type);
    NB_USHORT text_len = 0;
    if (desc->create_text != nullptr) {
        text_len = desc->create_text(item->data, buffer);
    }
    if (text_len > VGA_VIEWER_MAX_TEXT_LENGTH) {
        v0_assert_fatal(__FILE__, __LINE__, "text_len <= VGA_VIEWER_MAX_TEXT_LENGTH");
        text_len = 0;
    }
    buffer[text_len] = '\0';
}

NB_VOID vga_viewer_line_text(const VGA_VIEWER_ITEM *item, NB_CHAR *buffer) {
    vga_viewer_whole_text(item, buffer);
    vga_viewer_mark_cuts(buffer);
}

NB_VOID vga_viewer_draw_text(VGA_LIST_PEN *pen, NB_INT x, NB_INT y, NB_ULONG width,
                             const NB_CHAR *text) {
    const NB_INT baseline = y + static_cast<NB_INT>(gvga_viewer_text_y);
    NB_ULONG column = 0;
    VGA_VIEWER_RUN run;
    while (vga_viewer_next_run(&text, &column, &run) != 0) {
        const NB_INT left = x + static_cast<NB_INT>(run.column * gvga_viewer_char_width);
        if (run.length == 0 || left >= static_cast<NB_INT>(width)) {
            continue;
        }
        // Coordinates have 16 bits, so what ends left of the window is not even tried.
        if (left < 0 && left + static_cast<NB_INT>(vga_viewer_measure(run.text, run.length)) <= 0) {
            continue;
        }
        pen->put(left, baseline, run.text, run.length);
    }
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
