#include "colours.h"

#ifdef QUILADMIN_OWN_COLOURS

#include "libraryfunction.h"
#include "nbbase.h"
#include <X11/Xft/Xft.h>
#include <X11/Xutil.h>
#include <algorithm>
#include <array>
#include <bit>
#include <dlfcn.h>
#include <map>
#include <tuple>
#include <vector>

namespace {

/* One of the three parts of a pixel. */
struct CHANNEL {
    unsigned long mask = 0;
    int bits = 8; /* of an intensity that the visual tells apart */

    [[nodiscard]] unsigned long most() const { return mask >> std::countr_zero(mask); }

    /* As servers do it: cut to the bits of the visual, then the nearest value that there is. */
    [[nodiscard]] unsigned long to_pixel(unsigned short value) const {
        const unsigned long finest = (1UL << bits) - 1;
        const unsigned long cut = (value >> (16 - bits)) * 65535UL / finest;
        return (cut * most() + 32767) / 65535 << std::countr_zero(mask);
    }
    [[nodiscard]] unsigned short from_pixel(unsigned long pixel) const {
        return static_cast<unsigned short>((pixel & mask) / (mask & -mask) * 65535 / most());
    }
};

struct {
    Display *display = nullptr; /* null: nothing is worked out */
    Colormap colormap = 0;
    CHANNEL red, green, blue;
} known;

/* The colormap of a visual whose pixels do not say their colours. */
struct {
    Display *display = nullptr; /* null: there is none */
    Colormap colormap = 0;
    int cells = 0; /* that other programs fill, too; 0: nobody can */
} shared_map;

bool is_known(const Display *display, Colormap colormap) {
    return known.display != nullptr && display == known.display && colormap == known.colormap;
}

NB_VOID look_up(XColor &colour) {
    colour.red = known.red.from_pixel(colour.pixel);
    colour.green = known.green.from_pixel(colour.pixel);
    colour.blue = known.blue.from_pixel(colour.pixel);
    colour.flags = DoRed | DoGreen | DoBlue;
}

double distance(const XColor &one, const XColor &other) {
    const double red = one.red - other.red, green = one.green - other.green,
                 blue = one.blue - other.blue;
    return red * red + green * green + blue * blue;
}

/* The nearest colour that there is.  Cells that their owners may change cannot be had. */
Status allocate_nearest(const XColor &wanted, XColor *colour) {
    std::vector<XColor> cells(static_cast<size_t>(shared_map.cells));
    for (size_t at = 0; at < cells.size(); at++) {
        cells[at].pixel = at;
    }
    XQueryColors(shared_map.display, shared_map.colormap, cells.data(), shared_map.cells);
    std::sort(cells.begin(), cells.end(), [&wanted](const XColor &one, const XColor &other) {
        return distance(one, wanted) < distance(other, wanted);
    });
    for (const XColor &cell : cells) {
        *colour = cell;
        if (vga_ask_library("XAllocColor", shared_map.display, shared_map.colormap, colour) != 0) {
            return 1;
        }
    }
    return 0;
}

} // namespace

extern "C" Status XAllocColor(Display *display, Colormap colormap, XColor *colour) {
    if (!is_known(display, colormap)) {
        const XColor wanted = *colour;
        if (vga_ask_library("XAllocColor", display, colormap, colour) != 0) {
            return 1;
        }
        return display == shared_map.display && colormap == shared_map.colormap &&
                       shared_map.cells != 0
                   ? allocate_nearest(wanted, colour)
                   : 0;
    }
    colour->pixel = known.red.to_pixel(colour->red) | known.green.to_pixel(colour->green) |
                    known.blue.to_pixel(colour->blue);
    look_up(*colour);
    return 1;
}

extern "C" int XQueryColors(Display *display, Colormap colormap, XColor *colours, int count) {
    if (!is_known(display, colormap)) {
        return vga_ask_library("XQueryColors", display, colormap, colours, count);
    }
    for (int at = 0; at < count; at++) {
        look_up(colours[at]);
    }
    return 1;
}

/* The toolkit leaves the pixel of a text field's colour to chance: where letters are not mixed with
 * what they stand on, that is what is drawn. */
template <class... Text>
static NB_VOID draw_text(const NB_CHAR *name, XftDraw *draw, const XftColor *colour, XftFont *font,
                         Text... text) {
    XftColor whole = *colour;
    if (shared_map.display != nullptr && XftDrawDisplay(draw) == shared_map.display) {
        static std::map<std::array<unsigned short, 3>, unsigned long> pixels;
        const auto [known, is_new] =
            pixels.try_emplace({colour->color.red, colour->color.green, colour->color.blue});
        if (is_new) {
            XColor asked = {};
            std::tie(asked.red, asked.green, asked.blue) =
                std::tie(colour->color.red, colour->color.green, colour->color.blue);
            XAllocColor(shared_map.display, shared_map.colormap, &asked);
            known->second = asked.pixel;
        }
        whole.pixel = known->second;
    }
    using DRAW = NB_VOID (*)(XftDraw *, const XftColor *, XftFont *, Text...);
    if (auto *const function = reinterpret_cast<DRAW>(dlsym(RTLD_NEXT, name))) {
        function(draw, &whole, font, text...);
    }
}

extern "C" NB_VOID XftDrawStringUtf8(XftDraw *draw, const XftColor *colour, XftFont *font, int x,
                                     int y, const FcChar8 *text, int length) {
    draw_text("XftDrawStringUtf8", draw, colour, font, x, y, text, length);
}

extern "C" NB_VOID XftDrawString32(XftDraw *draw, const XftColor *colour, XftFont *font, int x,
                                   int y, const FcChar32 *text, int length) {
    draw_text("XftDrawString32", draw, colour, font, x, y, text, length);
}

extern "C" int XQueryColor(Display *display, Colormap colormap, XColor *colour) {
    return XQueryColors(display, colormap, colour, 1);
}

NB_VOID vga_work_out_colours(Display *display, Screen *screen) {
    const Visual *visual = DefaultVisualOfScreen(screen);
    if (visual->c_class != TrueColor) {
        const bool filled = visual->c_class == PseudoColor || visual->c_class == GrayScale;
        shared_map = {display, DefaultColormapOfScreen(screen), filled ? visual->map_entries : 0};
    }
    if (visual->c_class != TrueColor || visual->red_mask == 0 || visual->green_mask == 0 ||
        visual->blue_mask == 0 || visual->bits_per_rgb < 1 || visual->bits_per_rgb > 16) {
        return;
    }
    const int bits = visual->bits_per_rgb;
    known = {display,
             DefaultColormapOfScreen(screen),
             {visual->red_mask, bits},
             {visual->green_mask, bits},
             {visual->blue_mask, bits}};
}

#else

NB_VOID vga_work_out_colours(Display *, Screen *) {}

#endif
