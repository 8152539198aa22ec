#include "dotscale.h"
#include <X11/Xutil.h>
#include <Xm/Screen.h>
#include <algorithm>

namespace {

constexpr NB_INT usual_unit = 8; /* pixels of a font unit at 96 dots an inch */

/* Runs of one colour at a time: drawings have few. */
NB_VOID put_squares(Display *display, Pixmap pixmap, GC gc, XImage *image, NB_INT scale) {
    for (NB_INT y = 0; y < image->height; y++) {
        for (NB_INT x = 0; x < image->width;) {
            const unsigned long colour = XGetPixel(image, x, y);
            const NB_INT from = x;
            while (x < image->width && XGetPixel(image, x, y) == colour) {
                x++;
            }
            XSetForeground(display, gc, colour);
            XFillRectangle(display, pixmap, gc, from * scale, y * scale,
                           static_cast<unsigned>((x - from) * scale), static_cast<unsigned>(scale));
        }
    }
}

} // namespace

NB_INT vga_dot_scale(Screen *screen) {
    NB_INT unit = 0;
    XtVaGetValues(XmGetXmScreen(screen), XmNverticalFontUnit, &unit, nullptr);
    return std::max(unit / usual_unit, 1);
}

Pixmap vga_enlarge_pixmap(Screen *screen, Pixmap pixmap, NB_INT scale) {
    Display *display = DisplayOfScreen(screen);
    Window root;
    NB_INT x, y;
    unsigned width = 0, height = 0, border, depth;
    if (scale == 1 || pixmap == None ||
        XGetGeometry(display, pixmap, &root, &x, &y, &width, &height, &border, &depth) == 0) {
        return pixmap;
    }
    XImage *image = XGetImage(display, pixmap, 0, 0, width, height, AllPlanes, ZPixmap);
    if (image == nullptr) {
        return pixmap;
    }
    const auto times = static_cast<unsigned>(scale);
    const Pixmap large = XCreatePixmap(display, root, width * times, height * times, depth);
    GC gc = XCreateGC(display, large, 0, nullptr);
    put_squares(display, large, gc, image, scale);
    XFreeGC(display, gc);
    XDestroyImage(image);
    XFreePixmap(display, pixmap);
    return large;
}
