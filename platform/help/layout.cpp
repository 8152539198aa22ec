#include "layout.h"

#include <algorithm>
#include <utility>

namespace help {

namespace {

/* A word or a part of one, and what is glued to it. */
struct Token {
    Font font;
    int link;
    bool blank_before;
    std::string text;
};

Font font_of(Kind kind, Style style) {
    if (kind == Kind::heading) {
        return Font::heading;
    }
    if (kind == Kind::fixed) {
        return style == Style::strong || style == Style::emphasis ? Font::fixed_strong
                                                                  : Font::fixed;
    }
    if (kind == Kind::term && style != Style::fixed) {
        return Font::strong;
    }
    return style == Style::strong     ? Font::strong
           : style == Style::emphasis ? Font::emphasis
           : style == Style::fixed    ? Font::fixed
                                      : Font::text;
}

/* Bytes of the longest beginning of `text`, at least one character, that fits the width. */
size_t fitting(const Metrics &metrics, Font font, std::string_view text, int width) {
    size_t end = 0;
    while (end < text.size()) {
        size_t next = end + 1;
        while (next < text.size() && (text[next] & 0xC0) == 0x80) {
            next++;
        }
        if (end > 0 && metrics.width(font, text.substr(0, next)) > width) {
            break;
        }
        end = next;
    }
    return end;
}

class Layouter {
public:
    Layouter(int page_width, const Metrics &page_metrics)
        : metrics(page_metrics), line_height(metrics.height(Font::text)), margin(line_height),
          right(std::max(page_width - margin, margin + 4 * line_height)) {}

    Page make(const Topic &topic) {
        y = line_height * 3 / 4;
        begin(margin);
        put_words(topic.title, Font::title, no_link);
        finish_line();
        page.shapes.push_back({Form::rule, margin, y + line_height / 4, right - margin, 1});
        y += line_height / 2;
        Kind before = Kind::heading;
        for (const Block &block : topic.blocks) {
            put(block, before);
            before = block.kind;
        }
        page.height = y + line_height;
        for (const Piece &piece : page.pieces) {
            if (piece.link != no_link) {
                Link &link = page.links[static_cast<size_t>(piece.link)];
                link.top = std::min(link.top, piece.top);
                link.bottom = std::max(link.bottom, piece.top + piece.height);
            }
        }
        return std::move(page);
    }

private:
    /* Between blocks, in quarters of a line. */
    static int gap(Kind kind, Kind before) {
        if (kind == Kind::heading) {
            return 4;
        }
        const bool item = kind == Kind::bullet || kind == Kind::numbered;
        if (kind == Kind::meaning || (kind == Kind::fixed && before == Kind::fixed)) {
            return 0;
        }
        return item && before == kind ? 1 : 2;
    }

    void put(const Block &block, Kind before) {
        y += gap(block.kind, before) * line_height / 4;
        const int step = line_height * 3 / 2;
        int left = margin;
        if (block.kind == Kind::bullet) {
            left += step * (block.level + 1);
            dot(left);
        } else if (block.kind == Kind::numbered) {
            left += step + line_height / 4;
            number(left, block.level);
        } else if (block.kind == Kind::meaning) {
            left += step;
        } else if (block.kind == Kind::fixed || block.kind == Kind::note) {
            left += line_height * 3 / 4;
        }
        const int top = y;
        begin(left);
        if (block.kind == Kind::fixed) {
            put_fixed(block);
        } else {
            put_runs(block);
        }
        finish_line();
        if (block.kind == Kind::fixed) {
            page.shapes.push_back({Form::shade, margin, top, right - margin, y - top});
        } else if (block.kind == Kind::note) {
            page.shapes.push_back({Form::note_bar, margin, top, line_height / 5, y - top});
        }
    }

    void dot(int left) {
        const int size = std::max(line_height / 4, 3);
        const int middle = y + line_height / 2 + 1;
        page.shapes.push_back({Form::dot, left - line_height, middle - size / 2, size, size});
    }

    void number(int left, int value) {
        const std::string text = std::to_string(value) + ".";
        const int width = metrics.width(Font::strong, text);
        page.pieces.push_back({left - width - line_height / 3, y + metrics.ascent(Font::text),
                               width, y, line_height, Font::strong, no_link, text});
    }

    void begin(int left) {
        line_left = x = left;
        line_start = page.pieces.size();
    }

    int add_link(const Run &run) {
        if (run.style != Style::link) {
            return no_link;
        }
        page.links.push_back({run.target, 1 << 30, 0});
        return static_cast<int>(page.links.size()) - 1;
    }

    void put_fixed(const Block &block) {
        for (const Run &run : block.runs) {
            const int link = add_link(run);
            const Font font = font_of(block.kind, run.style);
            place({{font, link, false, run.text}}, false);
        }
        if (page.pieces.size() == line_start) { // an empty line has a height, too
            y += metrics.height(Font::fixed);
        }
    }

    void put_runs(const Block &block) {
        for (const Run &run : block.runs) {
            put_words(run.text, font_of(block.kind, run.style), add_link(run));
        }
        flush();
    }

    /* Collects the words; what stands together without a blank goes to the page together. */
    void put_words(std::string_view text, Font font, int link) {
        while (!text.empty()) {
            if (text.front() == ' ') {
                flush();
                blank = true;
                text.remove_prefix(1);
                continue;
            }
            const size_t end = std::min(text.find(' '), text.size());
            group.push_back({font, link, blank, std::string(text.substr(0, end))});
            blank = false;
            text.remove_prefix(end);
        }
        if (font == Font::title) {
            flush();
        }
    }

    void flush() {
        const std::vector<Token> tokens = std::exchange(group, {});
        if (!tokens.empty()) {
            place(tokens, tokens.front().blank_before);
        }
    }

    void place(const std::vector<Token> &tokens, bool with_blank) {
        int width = 0;
        for (const Token &token : tokens) {
            width += metrics.width(token.font, token.text);
        }
        const bool first = page.pieces.size() == line_start;
        const int space = with_blank && !first ? metrics.width(tokens.front().font, " ") : 0;
        if (x + space + width > right && !first) {
            new_line();
        } else {
            x += space;
        }
        for (const Token &token : tokens) {
            append(token, space > 0 && &token == &tokens.front());
        }
    }

    void append(const Token &token, bool with_blank) {
        std::string_view rest = token.text;
        while (!rest.empty()) {
            size_t bytes = rest.size();
            if (x + metrics.width(token.font, rest) > right) {
                bytes = fitting(metrics, token.font, rest, right - x);
            }
            add_piece(token, rest.substr(0, bytes), with_blank && rest.size() == token.text.size());
            rest.remove_prefix(bytes);
            if (!rest.empty()) {
                new_line();
            }
        }
    }

    /* Joins what looks alike, so that a line is drawn in few calls and links are underlined
     * through.
     */
    void add_piece(const Token &token, std::string_view text, bool with_blank) {
        Piece *last = page.pieces.size() > line_start ? &page.pieces.back() : nullptr;
        if (last != nullptr && last->font == token.font && last->link == token.link) {
            last->text += with_blank ? " " : "";
            last->text += text;
            last->width = metrics.width(last->font, last->text);
            x = last->x + last->width;
            return;
        }
        const int width = metrics.width(token.font, text);
        page.pieces.push_back({x, 0, width, 0, 0, token.font, token.link, std::string(text)});
        x += width;
    }

    void new_line() {
        finish_line();
        begin(line_left);
    }

    /* Gives the line's pieces one baseline. */
    void finish_line() {
        flush();
        int ascent = 0, descent = 0;
        for (size_t at = line_start; at < page.pieces.size(); at++) {
            ascent = std::max(ascent, metrics.ascent(page.pieces[at].font));
            descent = std::max(descent, metrics.descent(page.pieces[at].font));
        }
        bool prose = false;
        for (size_t at = line_start; at < page.pieces.size(); at++) {
            Piece &piece = page.pieces[at];
            piece.baseline = y + ascent;
            piece.top = y;
            piece.height = ascent + descent;
            prose = prose || (piece.font != Font::fixed && piece.font != Font::fixed_strong);
        }
        y += ascent + descent + (prose ? line_height / 6 : 0);
        line_start = page.pieces.size();
        blank = false;
    }

    Page page = {};
    const Metrics &metrics;
    int line_height, margin, right;
    int y = 0, x = 0, line_left = 0;
    size_t line_start = 0;
    bool blank = false;
    std::vector<Token> group;
};

} // namespace

int Page::link_at(int x, int y) const {
    for (const Piece &piece : pieces) {
        if (piece.link != no_link && x >= piece.x && x < piece.x + piece.width && y >= piece.top &&
            y < piece.top + piece.height) {
            return piece.link;
        }
    }
    return no_link;
}

Page lay_out(const Topic &topic, int width, const Metrics &metrics) {
    return Layouter(width, metrics).make(topic);
}

} // namespace help
