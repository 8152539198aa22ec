#include "outline.h"

#include <algorithm>
#include <strings.h>

namespace help {

OutlineView::OutlineView(Widget parent, const char *name, const Look &view_look)
    : Canvas(parent, name, view_look, Colour::panel) {}

void OutlineView::show_entries(std::vector<Entry> entries, bool all_open) {
    lines.clear();
    for (Entry &entry : entries) {
        if (!lines.empty() && entry.depth > lines.back().entry.depth) {
            lines.back().has_children = true;
        }
        lines.push_back({std::move(entry), false, false});
    }
    if (all_open) {
        for (Line &line : lines) {
            line.open = true;
        }
    } else if (!lines.empty()) {
        lines.front().open = true;
    }
    selected = -1;
    find_visible();
    scroll_to(0);
}

/* Which lines are seen. */

void OutlineView::find_visible() {
    visible.clear();
    int hidden_below = -1; // depth of a closed line above
    for (size_t ii = 0; ii < lines.size(); ii++) {
        const Line &line = lines[ii];
        if (hidden_below >= 0 && line.entry.depth > hidden_below) {
            continue;
        }
        hidden_below = line.has_children && !line.open ? line.entry.depth : -1;
        visible.push_back(static_cast<int>(ii));
    }
    changed();
}

int OutlineView::content_height() {
    return static_cast<int>(visible.size()) * line_height() + look.em() / 2;
}

/* Before the first picture the toolkit tries sizes out, and no place is worth keeping. */
void OutlineView::resized() {
    if (!painted) {
        scroll_to(0);
        select(selected);
    }
}

int OutlineView::parent_of(int line) const {
    const int depth = lines[static_cast<size_t>(line)].entry.depth;
    for (int at = line - 1; at >= 0; at--) {
        if (lines[static_cast<size_t>(at)].entry.depth < depth) {
            return at;
        }
    }
    return -1;
}

void OutlineView::open(int line, bool on) {
    lines[static_cast<size_t>(line)].open = on;
    find_visible();
}

void OutlineView::select(int line) {
    selected = line;
    const auto found = std::find(visible.begin(), visible.end(), line);
    if (found != visible.end()) {
        const int y = static_cast<int>(found - visible.begin()) * line_height();
        show(y, y + line_height());
    }
    redraw();
}

void OutlineView::select_topic(const std::string &topic) {
    if (selection() != nullptr && selection()->topic == topic) {
        return;
    }
    const auto found = std::find_if(lines.begin(), lines.end(),
                                    [&](const Line &line) { return line.entry.topic == topic; });
    if (found == lines.end()) {
        select(-1);
        return;
    }
    const int line = static_cast<int>(found - lines.begin());
    for (int above = parent_of(line); above >= 0; above = parent_of(above)) {
        lines[static_cast<size_t>(above)].open = true;
    }
    find_visible();
    select(line);
}

void OutlineView::select_text(const std::string &text) {
    const auto found = std::find_if(lines.begin(), lines.end(), [&](const Line &line) {
        return strncasecmp(line.entry.text.c_str(), text.c_str(), text.size()) == 0;
    });
    select(found == lines.end() || text.empty() ? -1 : static_cast<int>(found - lines.begin()));
    if (selected >= 0) { // what begins alike stands below it
        const auto at = std::find(visible.begin(), visible.end(), selected) - visible.begin();
        scroll_to(static_cast<int>(at) * line_height());
    }
}

void OutlineView::select_first() {
    select(lines.empty() ? -1 : 0);
}

const Entry *OutlineView::selection() const {
    return selected < 0 ? nullptr : &lines[static_cast<size_t>(selected)].entry;
}

/* Drawing. */

void OutlineView::paint(XftDraw *draw) {
    painted = true;
    if (lines.empty()) {
        look.draw_text(draw, Font::text, Colour::muted, look.em() / 2,
                       look.em() / 2 + look.ascent(Font::text), empty_text);
        return;
    }
    int y = -top();
    for (const int line : visible) {
        if (y > -line_height() && y < height()) {
            paint_line(draw, lines[static_cast<size_t>(line)], y, line == selected);
        }
        y += line_height();
    }
}

void OutlineView::paint_line(XftDraw *draw, const Line &line, int y, bool is_selected) const {
    if (is_selected) {
        look.fill(draw, Colour::selection, 0, y, width(), line_height());
    }
    const Colour colour = is_selected ? Colour::selected_text : Colour::text;
    const int x = indent(line.entry);
    if (line.has_children) {
        paint_sign(draw, x, y, line.open, is_selected ? colour : Colour::muted);
    }
    const Font font = line.has_children ? Font::strong : Font::text;
    look.draw_text(draw, font, colour, x + look.em(), y + look.em() / 8 + look.ascent(font),
                   line.entry.text);
}

/* A triangle that points right, or down when the line is open. */
void OutlineView::paint_sign(XftDraw *draw, int x, int y, bool is_open, Colour colour) const {
    const int half = std::max(look.em() / 4, 3);
    const int middle = y + line_height() / 2;
    for (int step = 0; step < half; step++) {
        const int length = 2 * (half - step) - 1;
        if (is_open) {
            look.fill(draw, colour, x + step, middle - half / 2 + step, length, 1);
        } else {
            look.fill(draw, colour, x + half / 2 + step, middle - half + step + 1, 1, length);
        }
    }
}

/* Input. */

bool OutlineView::sideways(bool right) {
    if (selected < 0) {
        return false;
    }
    const Line &line = lines[static_cast<size_t>(selected)];
    if (line.has_children && line.open != right) {
        open(selected, right);
    } else if (right && line.has_children) {
        select(selected + 1);
    } else if (!right && parent_of(selected) >= 0) {
        select(parent_of(selected));
    }
    return true;
}

bool OutlineView::key(Key which) {
    if (which == Key::left || which == Key::right) {
        return sideways(which == Key::right);
    }
    if (which == Key::follow) {
        if (selection() != nullptr && on_choice) {
            on_choice(std::string(selection()->topic));
        }
        return true;
    }
    const int count = static_cast<int>(visible.size());
    const int page = std::max(height() / line_height() - 1, 1);
    const auto found = std::find(visible.begin(), visible.end(), selected);
    const int at = found == visible.end() ? -1 : static_cast<int>(found - visible.begin());
    int next;
    switch (which) {
    case Key::up:
        next = at - 1;
        break;
    case Key::down:
        next = at + 1;
        break;
    case Key::page_up:
        next = at - page;
        break;
    case Key::page_down:
        next = at + page;
        break;
    case Key::first:
        next = 0;
        break;
    case Key::last:
        next = count - 1;
        break;
    default:
        return false;
    }
    if (count > 0) {
        select(visible[static_cast<size_t>(std::clamp(next, 0, count - 1))]);
    }
    return true;
}

void OutlineView::point(Point what, int x, int y, unsigned) {
    const int row = (y + top()) / line_height();
    if (what != Point::press || row < 0 || row >= static_cast<int>(visible.size())) {
        return;
    }
    const int line = visible[static_cast<size_t>(row)];
    const Line &hit = lines[static_cast<size_t>(line)];
    const bool on_sign = hit.has_children && x < indent(hit.entry) + look.em();
    select(line);
    if (on_sign) {
        open(line, !hit.open);
    } else if (on_choice) {
        on_choice(std::string(hit.entry.topic));
    }
}

} // namespace help
