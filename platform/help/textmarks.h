/* Places in the text of a page, for who marks some of it.  Needs no display, as the layout. */
#ifndef HELP_TEXTMARKS_H
#define HELP_TEXTMARKS_H

#include "layout.h"

#include <compare>

namespace help {

/* Before a byte of a piece, or behind its last. */
struct Spot {
    size_t piece = 0, byte = 0;
    auto operator<=>(const Spot &) const = default;
};

/* The place nearest to a point of the page, between characters; the start of an empty page. */
Spot place_at(const Page &page, const Metrics &metrics, int x, int y);

Spot end_of(const Page &page);

/* The marked bytes of a piece, as offset and length; `from` is not behind `to`. */
std::pair<size_t, size_t> marked_in(const Page &page, size_t piece, Spot from, Spot to);

/* What is marked, as one who reads it would write it: the lines of a paragraph are one. */
std::string text_between(const Page &page, Spot from, Spot to);

} // namespace help

#endif
