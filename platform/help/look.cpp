#include "look.h"

#include <Xm/Xm.h>
#include <algorithm>

namespace help {

namespace {

/* What makes a font of the one that the resource names. */
struct Variant {
    bool fixed, bold, italic;
    double scale;
};

constexpr Variant variants[] = {
    {false, false, false, 1},   // text
    {false, true, false, 1},    // strong
    {false, false, true, 1},    // emphasis
    {true, false, false, 1},    // fixed
    {true, true, false, 1},     // fixed_strong
    {false, true, false, 1.5},  // title
    {false, true, false, 1.15}, // heading
};
static_assert(std::size(variants) == font_count);

XftFont *open_font(Display *display, int screen, const char *name, const Variant &variant) {
    FcPattern *pattern = XftNameParse(name);
    if (pattern == nullptr) {
        return nullptr;
    }
    double size = 10;
    FcPatternGetDouble(pattern, FC_SIZE, 0, &size);
    FcPatternDel(pattern, FC_SIZE);
    FcPatternAddDouble(pattern, FC_SIZE, size * variant.scale);
    if (variant.bold) {
        FcPatternDel(pattern, FC_WEIGHT);
        FcPatternAddInteger(pattern, FC_WEIGHT, FC_WEIGHT_BOLD);
    }
    if (variant.italic) {
        FcPatternDel(pattern, FC_SLANT);
        FcPatternAddInteger(pattern, FC_SLANT, FC_SLANT_ITALIC);
    }
    FcResult result;
    FcPattern *match = XftFontMatch(display, screen, pattern, &result);
    FcPatternDestroy(pattern);
    XftFont *font = match != nullptr ? XftFontOpenPattern(display, match) : nullptr;
    if (font == nullptr && match != nullptr) {
        FcPatternDestroy(match);
    }
    return font;
}

const FcChar8 *bytes(std::string_view text) {
    return reinterpret_cast<const FcChar8 *>(text.data());
}

} // namespace

Look::Look(Widget widget, const char *text_font, const char *fixed_font,
           const std::array<Pixel, colour_count> &pixels)
    : display(XtDisplay(widget)) {
    const int screen = XScreenNumberOfScreen(XtScreen(widget));
    for (size_t ii = 0; ii < font_count; ii++) {
        const char *name = variants[ii].fixed ? fixed_font : text_font;
        fonts[ii] = open_font(display, screen, name, variants[ii]);
    }
    std::array<XColor, colour_count> wanted{};
    for (size_t ii = 0; ii < colour_count; ii++) {
        wanted[ii].pixel = pixels[ii];
    }
    Colormap colormap;
    XtVaGetValues(widget, XmNcolormap, &colormap, nullptr);
    XQueryColors(display, colormap, wanted.data(), static_cast<int>(wanted.size()));
    for (size_t ii = 0; ii < colour_count; ii++) {
        colours[ii] = {pixels[ii], {wanted[ii].red, wanted[ii].green, wanted[ii].blue, 0xFFFF}};
    }
}

Look::~Look() {
    for (XftFont *font : fonts) {
        if (font != nullptr) {
            XftFontClose(display, font);
        }
    }
}

int Look::width(Font which, std::string_view text) const {
    if (font(which) == nullptr) {
        return 0;
    }
    XGlyphInfo extents;
    XftTextExtentsUtf8(display, font(which), bytes(text), static_cast<int>(text.size()), &extents);
    return extents.xOff;
}

int Look::ascent(Font which) const {
    return font(which) != nullptr ? font(which)->ascent : 10;
}

int Look::descent(Font which) const {
    return font(which) != nullptr ? font(which)->descent : 3;
}

void Look::draw_text(XftDraw *draw, Font which, Colour colour_of_text, int x, int baseline,
                     std::string_view text) const {
    if (font(which) != nullptr) {
        XftDrawStringUtf8(draw, &colour(colour_of_text), font(which), x, baseline, bytes(text),
                          static_cast<int>(text.size()));
    }
}

void Look::fill(XftDraw *draw, Colour which, int x, int y, int width, int height) const {
    XftDrawRect(draw, &colour(which), x, y, static_cast<unsigned>(std::max(width, 0)),
                static_cast<unsigned>(std::max(height, 0)));
}

} // namespace help
