#include "headings.h"
#include "graphics.h"
#include "toolkit.h"
#include "viewerparts.h"
#include <Xm/DrawingA.h>
#include <Xm/Xm.h>
#include <algorithm>

namespace {

constexpr NB_ULONG rule_height = 1; // of the line under the headings
constexpr NB_ULONG rule_gap = 2;

/* Pixels from the strip's left edge to the list's. */
NB_INT list_left(const VGA_VIEWER_VIEW *view) {
    Position strip_x = 0, list_x = 0, y = 0;
    XtTranslateCoords(view->headings, 0, 0, &strip_x, &y);
    XtTranslateCoords(view->draw_widget, 0, 0, &list_x, &y);
    return list_x - strip_x;
}

NB_VOID write(const VGA_VIEWER_DESC *desc, NB_CHAR (&text)[VGA_VIEWER_TEXT_BUFFER + 1]) {
    const NB_USHORT length = desc->create_headings(nullptr, text);
    text[std::min<NB_USHORT>(length, VGA_VIEWER_MAX_TEXT_LENGTH)] = '\0';
    vga_viewer_mark_cuts(text);
}

/* The content is at least as wide as the headings: what has no line yet can be scrolled to its last
 * heading all the same. */
NB_VOID make_room(VGA_VIEWER_VIEW *view) {
    const VGA_VIEWER_DESC *desc = vga_viewer_type(view->headings_type);
    if (desc->create_headings != nullptr) {
        NB_CHAR text[VGA_VIEWER_TEXT_BUFFER + 1];
        write(desc, text);
        const NB_ULONG width = vga_viewer_left_width(desc) + vga_viewer_text_width(text);
        vga_viewer_set_width(view->root, std::max(view->content_width, width));
    }
}

/* The type of the line that has the keyboard, or is selected. */
NB_SHORT current_type(const VGA_VIEWER_VIEW *view) {
    const VGA_VIEWER_ITEM *line = view->root->outline_viewer;
    if (line == nullptr) {
        line = vga_viewer_get_selected_viewer(view->root);
    }
    return line != nullptr && vga_viewer_type(line->type)->create_headings != nullptr
               ? NB_SHORT{line->type}
               : view->headings_head;
}

/* Draws into `drawable`, which is as large as the strip and blank. */
NB_VOID draw(const VGA_VIEWER_VIEW *view, Pixmap drawable, GC gc, Dimension width,
             Dimension height) {
    Display *const display = XtDisplay(view->headings);
    const VGA_VIEWER_DESC *desc = vga_viewer_type(view->headings_type);
    NB_CHAR text[VGA_VIEWER_TEXT_BUFFER + 1];
    write(desc, text);
    const NB_INT left = list_left(view);
    const NB_INT x = left + static_cast<NB_INT>(vga_viewer_left_width(desc)) -
                     static_cast<NB_INT>(view->x_offset);
    XftDraw *const canvas = vga_list_canvas(display, drawable);
    VGA_LIST_PEN pen(display, drawable, canvas, gc);
    vga_viewer_draw_text(&pen, x, 0, width, text);
    pen.draw();
    if (canvas != nullptr) {
        XftDrawDestroy(canvas);
    }
    const NB_INT rule = height - static_cast<NB_INT>(rule_height);
    XDrawLine(display, drawable, gc, left, rule, left + static_cast<NB_INT>(view->window_width) - 1,
              rule);
}

NB_VOID expose(Widget, XtPointer client_data, XtPointer) {
    vga_viewer_draw_headings(static_cast<VGA_VIEWER_VIEW *>(client_data));
}

NB_VOID destroyed(Widget, XtPointer client_data, XtPointer) {
    vga_viewer_forget_headings(static_cast<VGA_VIEWER_VIEW *>(client_data));
}

const struct {
    const NB_CHAR *name;
    XtCallbackProc proc;
} callbacks[] = {
    {XmNexposeCallback, expose},
    {XmNresizeCallback, expose},
    {XmNdestroyCallback, destroyed},
};

} // namespace

Dimension vga_viewer_headings_height(NB_VOID) {
    return gvga_viewer_item_height == 0
               ? Dimension{0}
               : static_cast<Dimension>(gvga_viewer_item_height + rule_gap + rule_height);
}

NB_USHORT vga_viewer_show_headings(VGA_VIEWER_ROOT *root, Widget strip, NB_SHORT type) {
    VGA_VIEWER_VIEW *view = root->view;
    if (view == nullptr || root->displayed == 0) {
        return 0;
    }
    vga_viewer_forget_headings(view);
    view->headings = strip;
    view->headings_head = type;
    view->headings_type = current_type(view);
    for (const auto &callback : callbacks) {
        XtAddCallback(strip, callback.name, callback.proc, view);
    }
    XtVaSetValues(strip, XmNheight, vga_viewer_headings_height(), nullptr);
    make_room(view);
    vga_viewer_draw_headings(view);
    return 1;
}

NB_VOID vga_viewer_forget_headings(VGA_VIEWER_VIEW *view) {
    if (view->headings == nullptr) {
        return;
    }
    for (const auto &callback : callbacks) {
        XtRemoveCallback(view->headings, callback.name, callback.proc, view);
    }
    if (XtIsRealized(view->headings)) {
        XClearArea(XtDisplay(view->headings), XtWindow(view->headings), 0, 0, 0, 0, False);
    }
    view->headings = nullptr;
    view->headings_due = 0;
}

NB_VOID vga_viewer_follow_level(VGA_VIEWER_VIEW *view) {
    if (view->headings != nullptr && view->headings_type != current_type(view)) {
        view->headings_type = current_type(view);
        view->headings_due = 1;
        make_room(view);
    }
}

NB_VOID vga_viewer_draw_headings(VGA_VIEWER_VIEW *view) {
    Widget strip = view->headings;
    view->headings_due = 0;
    if (strip == nullptr || !XtIsRealized(strip) || gvga_normal_gc == nullptr) {
        return;
    }
    Dimension width = 0, height = 0;
    Pixel foreground = 0, background = 0, grey = 0;
    NB_INT depth = 0;
    XtVaGetValues(strip, XmNwidth, &width, XmNheight, &height, XmNforeground, &foreground,
                  XmNbackground, &background, XmNbottomShadowColor, &grey, XmNdepth, &depth,
                  nullptr);
    Display *const display = XtDisplay(strip);
    const Window window = XtWindow(strip);
    if (vga_viewer_type(view->headings_type)->create_headings == nullptr) {
        XClearWindow(display, window);
        return;
    }
    // Drawn aside and copied whole, and not blanked when the window is made wider: never half done.
    XSetWindowAttributes attributes;
    attributes.bit_gravity = NorthWestGravity;
    XChangeWindowAttributes(display, window, CWBitGravity, &attributes);
    const Pixmap pixmap =
        XCreatePixmap(display, window, width, height, static_cast<unsigned>(depth));
    XGCValues values = {};
    values.foreground = background;
    values.graphics_exposures = False;
    const GC gc = XCreateGC(display, window, GCForeground | GCGraphicsExposures, &values);
    XCopyGC(display, gvga_normal_gc, GCFont, gc); // the font of lists without a font set
    XFillRectangle(display, pixmap, gc, 0, 0, width, height);
    // The toolkit, too, draws the texts of what is insensitive in that shadow's colour.
    XSetForeground(display, gc, XtIsSensitive(strip) ? foreground : grey);
    draw(view, pixmap, gc, width, height);
    XCopyArea(display, pixmap, window, gc, 0, 0, width, height, 0, 0);
    XFreeGC(display, gc);
    XFreePixmap(display, pixmap);
    gvga_display_dirty = 1;
}
