#include "symbolpixmaps.h"
#include "boxsymbols.h"
#include "dotscale.h"
#include "graphics.h"
#include "toolkit.h"
#include <X11/Xutil.h>
#include <cstdlib>
#include <map>
#include <utility>

namespace {

constexpr NB_ULONG small_icon_width = 20; /* of a line: anything above goes with big symbols */

/* By symbol and background: a program has one or two of the latter. */
std::map<std::pair<VGA_MODAL_TYPE, Pixel>, Pixmap> symbols;

/* A picture: width, height, and the pixels row by row, 0xAARRGGBB. */
struct PICTURE {
    unsigned width, height;
    const unsigned long *pixels;
};

/* The drawings come in several sizes, the smallest first: 0 for small icons, 1 for big ones, 2
 * where either is drawn with more than one pixel for each of its own. */
NB_USHORT size_wanted() {
    const bool big = gvga_viewer_icon_width > small_icon_width;
    return vga_dot_scale(gvga_screen) > 1 ? 2 : big ? 1 : 0;
}

PICTURE picture_of(VGA_MODAL_TYPE type, NB_USHORT size) {
    const unsigned long *const drawings[] = {gvga_box_error, gvga_box_info, gvga_box_question};
    const unsigned long *at = drawings[type];
    for (; size > 0; size--) {
        at += 2 + at[0] * at[1];
    }
    return {static_cast<unsigned>(at[0]), static_cast<unsigned>(at[1]), at + 2};
}

/* One of the three colours of a pixel, 0 to 255, and back. */
unsigned long part_of(unsigned long pixel, unsigned long mask) {
    return mask != 0 ? (pixel & mask) * 255 / mask : 0;
}
unsigned long to_mask(unsigned long value, unsigned long mask) {
    return (mask / 255 * value + mask % 255 * value / 255) & mask;
}

unsigned long blend(const Visual *visual, unsigned long argb, Pixel background) {
    const unsigned long masks[] = {visual->red_mask, visual->green_mask, visual->blue_mask};
    unsigned long alpha = argb >> 24 & 0xFF;
    unsigned long pixel = 0;
    for (int part = 0; part < 3; part++) {
        unsigned long over = argb >> (16 - 8 * part) & 0xFF;
        unsigned long under = part_of(background, masks[part]);
        pixel |= to_mask((over * alpha + under * (255 - alpha)) / 255, masks[part]);
    }
    return pixel;
}

Pixmap draw(const Visual *visual, int depth, const PICTURE &picture, Pixel background) {
    XImage *image =
        XCreateImage(gvga_display, const_cast<Visual *>(visual), static_cast<unsigned>(depth),
                     ZPixmap, 0, nullptr, picture.width, picture.height, 32, 0);
    if (image == nullptr) {
        return None;
    }
    image->data =
        static_cast<char *>(malloc(static_cast<size_t>(image->bytes_per_line) * picture.height));
    if (image->data == nullptr) {
        XDestroyImage(image);
        return None;
    }
    for (unsigned at = 0; at < picture.width * picture.height; at++) {
        XPutPixel(image, static_cast<int>(at % picture.width), static_cast<int>(at / picture.width),
                  blend(visual, picture.pixels[at], background));
    }
    Pixmap pixmap = XCreatePixmap(gvga_display, gvga_root_window, picture.width, picture.height,
                                  static_cast<unsigned>(depth));
    GC gc = XCreateGC(gvga_display, pixmap, 0, nullptr);
    XPutImage(gvga_display, pixmap, gc, image, 0, 0, 0, 0, picture.width, picture.height);
    XFreeGC(gvga_display, gc);
    XDestroyImage(image);
    return pixmap;
}

} // namespace

Pixmap vga_box_symbol(Widget widget, VGA_MODAL_TYPE type) {
    const Visual *visual = DefaultVisualOfScreen(gvga_screen);
    if (visual->c_class != TrueColor || type > VGA_MODAL_CONFIRM) {
        return None;
    }
    Pixel background;
    XtVaGetValues(widget, XmNbackground, &background, nullptr);
    auto [place, missing] = symbols.try_emplace({type, background}, None);
    if (missing) {
        place->second = draw(visual, DefaultDepthOfScreen(gvga_screen),
                             picture_of(type, size_wanted()), background);
    }
    return place->second;
}
