#include "glyphs.h"

#include <X11/Xmd.h>
#include <X11/extensions/renderproto.h>

namespace sys {

namespace {

constexpr uint32_t blank = 3; // the number of ' '
constexpr uint8_t other_set = 255;

char letter(uint32_t glyph) {
    const uint32_t code = ' ' + glyph - blank;
    return code >= ' ' && code <= '~' ? static_cast<char>(code) : '?';
}

size_t padded(size_t bytes) {
    return (bytes + 3) / 4 * 4;
}

} // namespace

void Glyphs::learn(const Request &request) {
    const auto form = request.as<xRenderAddGlyphsReq>();
    for (size_t at = 0; at < form.nglyphs; at++) {
        const auto glyph = request.at<uint32_t>(sizeof form + at * sizeof(uint32_t));
        const size_t facts = sizeof form + form.nglyphs * sizeof(uint32_t);
        advances_[form.glyphset][glyph] =
            request.at<xGlyphInfo>(facts + at * sizeof(xGlyphInfo)).xOff;
    }
}

int Glyphs::advance(uint32_t set, uint32_t glyph) const {
    const auto letters = advances_.find(set);
    return letters != advances_.end() && letters->second.count(glyph) != 0
               ? letters->second.at(glyph)
               : 0;
}

/* Pieces, each at a distance from the end of the one before, or 255 and another set. */
std::vector<Text> Glyphs::read(const Request &request, size_t width) const {
    const auto form = request.as<xRenderCompositeGlyphs8Req>();
    uint32_t set = form.glyphset;
    std::vector<Text> texts;
    int x = 0, y = 0;
    for (size_t at = sizeof form; at + sizeof(xGlyphElt) <= request.length;) {
        const auto piece = request.at<xGlyphElt>(at);
        at += sizeof piece;
        if (piece.len == other_set) {
            set = request.at<uint32_t>(at);
            at += sizeof set;
            continue;
        }
        x += piece.deltax;
        y += piece.deltay;
        if (texts.empty() || piece.deltax != 0 || piece.deltay != 0) {
            texts.push_back({x, y, ""});
        }
        for (size_t glyph = 0; glyph < piece.len; glyph++) {
            uint32_t number = 0;
            for (size_t byte = width; byte > 0; byte--) {
                number = number << 8 | request.at<uint8_t>(at + glyph * width + byte - 1);
            }
            texts.back().words += letter(number);
            x += advance(set, number);
        }
        at += padded(piece.len * width);
    }
    return texts;
}

} // namespace sys
