#include "listfont.h"
#include "globals.h"
#include "linelayout.h"
#include "messages.h"
#include "toolkit.h"
#include <algorithm>
#include <climits>
#include <unordered_map>

namespace {

constexpr NB_INT least_planes = 15; // of which the shades at the edges of letters are had

/* How a character is drawn. */
struct GLYPH {
    XftFont *font;
    FT_UInt index;
    short right; // pixels that a letter of another font stands right of its cell's edge
};

struct LIST_FONT {
    Display *display;
    NB_INT screen;
    XftFont *font;
    VGA_VIEWER_FONT_SIZE size;
    std::vector<XftFont *> others; // in the order in which they were needed
    GLYPH plain[128];              // by character; without a font: not looked for yet
    std::unordered_map<FcChar32, GLYPH> glyphs;
    std::unordered_map<unsigned long, XftColor> colours; // by pixel
};
LIST_FONT list_font;

bool can_draw(Display *display, Screen *screen) {
    NB_INT event, error;
    return XRenderQueryExtension(display, &event, &error) &&
           XRenderFindVisualFormat(display, DefaultVisualOfScreen(screen)) != nullptr &&
           DefaultDepthOfScreen(screen) >= least_planes;
}

/* Where no font has a name, any other is proposed. */
bool is_fixed_pitch(const FcPattern *pattern) {
    NB_INT spacing = FC_PROPORTIONAL;
    return FcPatternGetInteger(pattern, FC_SPACING, 0, &spacing) == FcResultMatch &&
           spacing != FC_PROPORTIONAL;
}

/* Takes the wish, and opens what comes nearest to it. */
XftFont *open_nearest(FcPattern *wish, bool only_fixed_pitch) {
    FcResult result;
    FcPattern *found = XftFontMatch(list_font.display, list_font.screen, wish, &result);
    FcPatternDestroy(wish);
    if (found == nullptr) {
        return nullptr; // as it is with dialogs, which take a font of the server, too
    }
    if (only_fixed_pitch && !is_fixed_pitch(found)) {
        XtAppWarning(gvga_appcontext, vga_message(VGA_MSG_NO_VIEWER_FONT));
        FcPatternDestroy(found);
        return nullptr;
    }
    XftFont *font = XftFontOpenPattern(list_font.display, found);
    if (font == nullptr) {
        FcPatternDestroy(found);
    }
    return font;
}

XGlyphInfo extents_of(XftFont *font, FT_UInt index) {
    XGlyphInfo extents;
    XftGlyphExtents(list_font.display, font, &index, 1, &extents);
    return extents;
}

/* The size, as a part of the one that it has, in which a glyph stays within its cells and line. */
double fitting_size(const XGlyphInfo &extents, NB_INT columns) {
    const auto part = [](NB_INT room, NB_INT taken) {
        return taken > room ? static_cast<double>(room) / taken : 1;
    };
    const VGA_VIEWER_FONT_SIZE &size = list_font.size;
    return std::min({part(columns * static_cast<NB_INT>(size.width),
                          std::max<NB_INT>(extents.xOff, extents.width)),
                     part(static_cast<NB_INT>(size.ascent), extents.y),
                     part(static_cast<NB_INT>(size.descent), extents.height - extents.y)});
}

XftFont *open_other(FcChar32 code, double part) {
    double pixels = 0;
    FcPatternGetDouble(list_font.font->pattern, FC_PIXEL_SIZE, 0, &pixels);
    FcPattern *wish = FcPatternCreate();
    FcCharSet *characters = FcCharSetCreate();
    FcCharSetAddChar(characters, code);
    FcPatternAddString(wish, FC_FAMILY, reinterpret_cast<const FcChar8 *>("monospace"));
    FcPatternAddCharSet(wish, FC_CHARSET, characters);
    FcPatternAddDouble(wish, FC_PIXEL_SIZE, std::max(pixels * part, 1.0));
    FcPatternAddBool(wish, FC_SCALABLE, FcTrue);
    FcCharSetDestroy(characters);
    XftFont *font = open_nearest(wish, false);
    if (font != nullptr) {
        list_font.others.push_back(font);
    }
    return font;
}

GLYPH glyph_of_other(FcChar32 code, NB_INT columns) {
    const GLYPH missing = {list_font.font, 0, 0}; // a box
    const auto known =
        std::find_if(list_font.others.begin(), list_font.others.end(), [&](XftFont *font) {
            return XftCharExists(list_font.display, font, code) != FcFalse;
        });
    XftFont *font = known != list_font.others.end() ? *known : open_other(code, 1);
    FT_UInt index = font != nullptr ? XftCharIndex(list_font.display, font, code) : 0;
    if (index == 0) {
        return missing;
    }
    XGlyphInfo extents = extents_of(font, index);
    if (const double part = fitting_size(extents, columns); part < 1) {
        XftFont *const smaller = open_other(code, part);
        if (smaller == nullptr || (index = XftCharIndex(list_font.display, smaller, code)) == 0) {
            return missing;
        }
        font = smaller;
        extents = extents_of(font, index);
    }
    const NB_INT room = columns * static_cast<NB_INT>(list_font.size.width) - extents.xOff;
    return {font, index, static_cast<short>(std::max(room / 2, 0))};
}

GLYPH find_glyph(const VGA_VIEWER_CHARACTER &character) {
    const auto code = static_cast<FcChar32>(character.code);
    const FT_UInt index = XftCharIndex(list_font.display, list_font.font, code);
    return index != 0 ? GLYPH{list_font.font, index, 0}
                      : glyph_of_other(code, std::max<NB_INT>(character.columns, 1));
}

const GLYPH &glyph_of(const VGA_VIEWER_CHARACTER &character) {
    const auto code = static_cast<FcChar32>(character.code);
    GLYPH &glyph =
        code < std::size(list_font.plain) ? list_font.plain[code] : list_font.glyphs[code];
    if (glyph.font == nullptr) {
        glyph = find_glyph(character);
    }
    return glyph;
}

/* A colour that the server is asked for once. */
const XftColor &colour_of(unsigned long pixel) {
    const auto known = list_font.colours.find(pixel);
    if (known != list_font.colours.end()) {
        return known->second;
    }
    XColor colour = {};
    colour.pixel = pixel;
    XQueryColor(list_font.display, DefaultColormap(list_font.display, list_font.screen), &colour);
    const XftColor made = {pixel, {colour.red, colour.green, colour.blue, USHRT_MAX}};
    return list_font.colours.emplace(pixel, made).first->second;
}

} // namespace

NB_USHORT vga_open_list_font(Widget widget, const NB_CHAR *pattern, double points) {
    vga_close_list_font();
    Screen *const screen = XtScreen(widget);
    if (!can_draw(XtDisplay(widget), screen)) {
        return 0;
    }
    list_font.display = XtDisplay(widget);
    list_font.screen = XScreenNumberOfScreen(screen);
    FcPattern *wish = XftNameParse(pattern);
    if (wish == nullptr) {
        return 0;
    }
    double size;
    if (FcPatternGetDouble(wish, FC_SIZE, 0, &size) != FcResultMatch &&
        FcPatternGetDouble(wish, FC_PIXEL_SIZE, 0, &size) != FcResultMatch) {
        FcPatternAddDouble(wish, FC_SIZE, points);
    }
    list_font.font = open_nearest(wish, true);
    if (list_font.font == nullptr) {
        return 0;
    }
    const FT_UInt letter = XftCharIndex(list_font.display, list_font.font, 'W');
    list_font.size.width =
        static_cast<NB_ULONG>(std::max<NB_INT>(extents_of(list_font.font, letter).xOff, 1));
    list_font.size.ascent = static_cast<NB_ULONG>(list_font.font->ascent);
    list_font.size.descent = static_cast<NB_ULONG>(list_font.font->descent);
    return 1;
}

NB_VOID vga_close_list_font(NB_VOID) {
    for (XftFont *font : list_font.others) {
        XftFontClose(list_font.display, font);
    }
    if (list_font.font != nullptr) {
        XftFontClose(list_font.display, list_font.font);
    }
    list_font = LIST_FONT();
}

NB_USHORT vga_list_font_size(VGA_VIEWER_FONT_SIZE *size) {
    *size = list_font.size;
    return list_font.font != nullptr;
}

NB_ULONG vga_list_font_measure(const NB_CHAR *text, NB_INT length) {
    return vga_viewer_columns(text, length) * list_font.size.width;
}

XftDraw *vga_list_canvas(Display *display, Pixmap pixmap) {
    const NB_INT screen = list_font.screen;
    return list_font.font == nullptr
               ? nullptr
               : XftDrawCreate(display, pixmap, DefaultVisual(display, screen),
                               DefaultColormap(display, screen));
}

NB_VOID VGA_LIST_PEN::put(NB_INT x, NB_INT baseline, const NB_CHAR *text, NB_INT length) {
    if (canvas_ == nullptr) {
        if (gvga_viewer_fontset != nullptr) {
            XmbDrawString(display_, drawable_, gvga_viewer_fontset, gc_, x, baseline, text, length);
        } else {
            XDrawString(display_, drawable_, gc_, x, baseline, text, length);
        }
        return;
    }
    const auto width = static_cast<NB_INT>(list_font.size.width);
    VGA_VIEWER_CHARACTERS characters(text, length);
    VGA_VIEWER_CHARACTER character;
    // Coordinates have 16 bits, so what ends left of the drawable is not even tried.
    for (NB_INT left = x; left < SHRT_MAX && characters.next(&character) != 0;) {
        const NB_INT cell = character.columns != 0 ? left : left - width;
        left += character.columns * width;
        if (character.code < L' ' || cell < -2 * width) {
            continue;
        }
        const GLYPH &glyph = glyph_of(character);
        glyphs_.push_back({glyph.font, glyph.index, static_cast<short>(cell + glyph.right),
                           static_cast<short>(baseline)});
    }
}

NB_VOID VGA_LIST_PEN::draw() {
    if (glyphs_.empty()) {
        return;
    }
    XGCValues values = {};
    XGetGCValues(display_, gc_, GCForeground, &values);
    XftDrawGlyphFontSpec(canvas_, &colour_of(values.foreground), glyphs_.data(),
                         static_cast<NB_INT>(glyphs_.size()));
    glyphs_.clear();
}
