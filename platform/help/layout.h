/* Lays a topic out in lines of a given width.  Needs no display: the sizes of text come from a
 * Metrics, which a test makes up.  All lengths are pixels; y grows downwards from the page's top.
 */
#ifndef HELP_LAYOUT_H
#define HELP_LAYOUT_H

#include "volume.h"

namespace help {

enum class Font { text, strong, emphasis, fixed, fixed_strong, title, heading, count };

class Metrics {
public:
    virtual ~Metrics() = default;
    virtual int width(Font font, std::string_view text) const = 0;
    virtual int ascent(Font font) const = 0;
    virtual int descent(Font font) const = 0;
    int height(Font font) const { return ascent(font) + descent(font); }
};

constexpr int no_link = -1;

/* Text of one font in one line. */
struct Piece {
    int x, baseline, width;
    int top, height; // of its line
    Font font;
    int link; // its number in the page's links, or no_link
    std::string text;
};

enum class Form { dot, rule, note_bar, shade };

/* What is drawn beside or behind the text. */
struct Shape {
    Form form;
    int x, y, width, height;
};

/* One link of the text, which may go on over several lines. */
struct Link {
    std::string target;
    int top, bottom;
};

struct Page {
    std::vector<Piece> pieces; // from top to bottom
    std::vector<Shape> shapes;
    std::vector<Link> links; // in the order of the text
    int height;

    /* The link at a place, or no_link. */
    int link_at(int x, int y) const;
};

/* A word that is wider than the page is broken between characters, never within one. */
Page lay_out(const Topic &topic, int width, const Metrics &metrics);

} // namespace help

#endif
