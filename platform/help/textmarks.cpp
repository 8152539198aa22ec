#include "textmarks.h"

#include <algorithm>
#include <utility>

namespace help {

namespace {

bool is_prose(const Piece &piece) {
    return piece.font != Font::fixed && piece.font != Font::fixed_strong;
}

size_t line_start(const Page &page, size_t piece) {
    while (piece > 0 && page.pieces[piece - 1].top == page.pieces[piece].top) {
        piece--;
    }
    return piece;
}

/* The byte behind the character that begins at `at`. */
size_t next_character(const std::string &text, size_t at) {
    do {
        at++;
    } while (at < text.size() && (text[at] & 0xC0) == 0x80);
    return at;
}

size_t byte_at(const Piece &piece, const Metrics &metrics, int x) {
    size_t byte = 0;
    int left = piece.x;
    while (byte < piece.text.size()) {
        const size_t next = next_character(piece.text, byte);
        const int right =
            piece.x + metrics.width(piece.font, std::string_view(piece.text).substr(0, next));
        if (x < (left + right) / 2) {
            break;
        }
        left = right;
        byte = next;
    }
    return byte;
}

/* What stands between two pieces that follow each other. */
std::string between(const Page &page, size_t before) {
    const Piece &one = page.pieces[before];
    const Piece &other = page.pieces[before + 1];
    if (one.top == other.top) {
        return other.x > one.x + one.width ? " " : "";
    }
    const int gap = other.top - one.top - one.height;
    const bool goes_on = is_prose(one) && is_prose(other) && gap < one.height / 4 &&
                         page.pieces[line_start(page, before)].x == other.x;
    return goes_on ? " " : gap > one.height / 2 ? "\n\n" : "\n";
}

} // namespace

Spot place_at(const Page &page, const Metrics &metrics, int x, int y) {
    const std::vector<Piece> &pieces = page.pieces;
    const auto line = std::find_if(pieces.begin(), pieces.end(), [y](const Piece &piece) {
        return y < piece.top + piece.height;
    });
    if (line == pieces.end()) {
        return end_of(page);
    }
    auto at = line;
    while (at + 1 != pieces.end() && (at + 1)->top == line->top && (at + 1)->x <= x) {
        at++;
    }
    const auto piece = static_cast<size_t>(at - pieces.begin());
    return y < line->top ? Spot{piece, 0} : Spot{piece, byte_at(*at, metrics, x)};
}

Spot end_of(const Page &page) {
    return page.pieces.empty() ? Spot{}
                               : Spot{page.pieces.size() - 1, page.pieces.back().text.size()};
}

std::pair<size_t, size_t> marked_in(const Page &page, size_t piece, Spot from, Spot to) {
    if (piece < from.piece || piece > to.piece || page.pieces.empty()) {
        return {0, 0};
    }
    const size_t begin = piece == from.piece ? from.byte : 0;
    const size_t end = piece == to.piece ? to.byte : page.pieces[piece].text.size();
    return {begin, end - begin};
}

std::string text_between(const Page &page, Spot from, Spot to) {
    std::string text;
    for (size_t piece = from.piece; from < to && piece <= to.piece; piece++) {
        const auto [begin, length] = marked_in(page, piece, from, to);
        text += page.pieces[piece].text.substr(begin, length);
        text += piece < to.piece ? between(page, piece) : "";
    }
    return text;
}

} // namespace help
