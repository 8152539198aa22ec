/* Texts in scalable fonts, which the client sends as pictures of letters, each with a number, and
 * then as numbers.  Those of the fonts that the program uses are in the order of ASCII; any other
 * character is read as '?'. */
#ifndef SYSTEM_GLYPHS_H
#define SYSTEM_GLYPHS_H

#include "request.h"

#include <map>
#include <string>
#include <vector>

namespace sys {

struct Text {
    int x, y; /* where its base line begins */
    std::string words;
};

class Glyphs {
public:
    /* A request that brings letters. */
    void learn(const Request &request);

    /* The texts of a request that draws some; `width` bytes are a letter's number. */
    std::vector<Text> read(const Request &request, size_t width) const;

private:
    int advance(uint32_t set, uint32_t glyph) const;

    std::map<uint32_t, std::map<uint32_t, int>> advances_; /* by set of letters, by letter */
};

} // namespace sys

#endif
