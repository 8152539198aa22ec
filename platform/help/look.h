/* The fonts and colours of a help window, from its resources.
 * OWNS: the fonts, until it goes; they are the server's and shared by the library that opens them.
 */
#ifndef HELP_LOOK_H
#define HELP_LOOK_H

#include "layout.h"

#include <X11/Intrinsic.h>
#include <X11/Xft/Xft.h>
#include <array>

namespace help {

enum class Colour {
    text,
    page,
    heading,
    link,
    muted,
    panel,
    selection,
    selected_text,
    rule,
    shade,
    count
};

constexpr size_t font_count = static_cast<size_t>(Font::count);
constexpr size_t colour_count = static_cast<size_t>(Colour::count);

class Look : public Metrics {
public:
    /* Names of fonts are those of fontconfig ("DejaVu Sans-10"); bold, italic and larger fonts are
     * made from them.  A font that does not exist is replaced by what is there. */
    Look(Widget widget, const char *text_font, const char *fixed_font,
         const std::array<Pixel, colour_count> &pixels);
    Look(const Look &) = delete;
    Look &operator=(const Look &) = delete;
    ~Look() override;

    int width(Font font, std::string_view text) const override;
    int ascent(Font font) const override;
    int descent(Font font) const override;

    /* The height of a line of text: what all distances come from. */
    int em() const { return height(Font::text); }
    const XftColor &colour(Colour which) const { return colours[static_cast<size_t>(which)]; }

    void draw_text(XftDraw *draw, Font font, Colour colour, int x, int baseline,
                   std::string_view text) const;
    void fill(XftDraw *draw, Colour colour, int x, int y, int width, int height) const;

private:
    XftFont *font(Font which) const { return fonts[static_cast<size_t>(which)]; }

    Display *display;
    std::array<XftFont *, font_count> fonts{}; // null only where there is no font at all
    std::array<XftColor, colour_count> colours{};
};

} // namespace help

#endif
