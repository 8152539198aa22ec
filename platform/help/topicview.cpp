#include "topicview.h"

#include "ownedtext.h"

#include <X11/cursorfont.h>
#include <algorithm>

namespace help {

TopicView::TopicView(Widget parent, const Look &view_look)
    : Canvas(parent, "helpTopic", view_look, Colour::page) {}

TopicView::~TopicView() {
    forget_text(area());
}

void TopicView::show_topic(Topic topic, int top) {
    shown = std::move(topic);
    from = to = {};
    marking = false;
    current = under = no_link;
    set_cursor(false);
    page = lay_out(shown, std::max(width(), 1), look);
    changed();
    scroll_to(top);
}

void TopicView::resized() {
    /* The line at the top stays about there. */
    const int before = std::max(page.height, 1);
    const int at = top();
    from = to = {}; // lines are others now
    page = lay_out(shown, width(), look);
    if (at > 0) {
        scroll_to(static_cast<int>(static_cast<long>(at) * page.height / before));
    }
}

/* Drawing. */

void TopicView::paint(XftDraw *draw) {
    for (const Shape &shape : page.shapes) {
        if (shape.y + shape.height >= top() && shape.y <= top() + height()) {
            paint_shape(draw, shape);
        }
    }
    for (const Piece &piece : page.pieces) {
        if (piece.top + piece.height >= top() && piece.top <= top() + height()) {
            paint_piece(draw, piece);
            paint_marked(draw, static_cast<size_t>(&piece - page.pieces.data()));
        }
    }
}

void TopicView::paint_shape(XftDraw *draw, const Shape &shape) const {
    const Colour colour = shape.form == Form::dot        ? Colour::text
                          : shape.form == Form::note_bar ? Colour::link
                          : shape.form == Form::shade    ? Colour::shade
                                                         : Colour::rule;
    const int y = shape.y - top();
    if (shape.form == Form::dot && shape.width > 3) { // a square without corners looks round
        look.fill(draw, colour, shape.x + 1, y, shape.width - 2, shape.height);
        look.fill(draw, colour, shape.x, y + 1, shape.width, shape.height - 2);
    } else {
        look.fill(draw, colour, shape.x, y, shape.width, shape.height);
    }
}

void TopicView::paint_piece(XftDraw *draw, const Piece &piece) const {
    const bool heading = piece.font == Font::title || piece.font == Font::heading;
    const bool at_link = piece.link != no_link && piece.link == current && focused();
    const int y = piece.top - top();
    if (at_link) {
        look.fill(draw, Colour::selection, piece.x - 2, y, piece.width + 4, piece.height);
    }
    const Colour colour = at_link                 ? Colour::selected_text
                          : piece.link != no_link ? Colour::link
                          : heading               ? Colour::heading
                                                  : Colour::text;
    const int baseline = piece.baseline - top();
    look.draw_text(draw, piece.font, colour, piece.x, baseline, piece.text);
    if (piece.link != no_link) {
        const int thickness = piece.link == under ? 2 : 1;
        look.fill(draw, colour, piece.x, baseline + 2, piece.width, thickness);
    }
}

/* Marking. */

void TopicView::paint_marked(XftDraw *draw, size_t number) const {
    const auto [begin, length] = marked_in(page, number, std::min(from, to), std::max(from, to));
    if (length == 0) {
        return;
    }
    const Piece &piece = page.pieces[number];
    const std::string_view text = piece.text;
    const int left = piece.x + look.width(piece.font, text.substr(0, begin));
    const int right = piece.x + look.width(piece.font, text.substr(0, begin + length));
    look.fill(draw, Colour::selection, left, piece.top - top(), right - left, piece.height);
    look.draw_text(draw, piece.font, Colour::selected_text, left, piece.baseline - top(),
                   text.substr(begin, length));
}

void TopicView::mark(Spot begin, Spot end) {
    from = begin;
    to = end;
    redraw();
}

/* Out of the window it goes on, a line with each step. */
void TopicView::drag_to(int x, int y) {
    if (y < 0 || y > height()) {
        scroll_to(top() + (y < 0 ? -look.em() : look.em()));
    }
    mark(from, place_at(page, look, x, y + top()));
}

void TopicView::own_marked() {
    if (from != to) {
        own_text(area(), "PRIMARY", text_between(page, std::min(from, to), std::max(from, to)));
    }
}

/* Links. */

/* To the next link by the keys; from nowhere to the first one on the screen.  False: there is none
 * in that direction. */
bool TopicView::step(int by) {
    const int count = static_cast<int>(page.links.size());
    int next = current + by;
    if (current == no_link) {
        const auto visible = [this](const Link &link) {
            return link.bottom > top() && link.top < top() + height();
        };
        const auto first = std::find_if(page.links.begin(), page.links.end(), visible);
        next = first != page.links.end() ? static_cast<int>(first - page.links.begin()) : 0;
        next = by > 0 ? next : no_link;
    }
    current = next >= 0 && next < count ? next : no_link;
    if (current != no_link) {
        const Link &link = page.links[static_cast<size_t>(current)];
        show(link.top - look.em(), link.bottom + look.em());
        if (on_hover) {
            on_hover(link.target);
        }
    }
    redraw();
    return current != no_link;
}

bool TopicView::key(Key which) {
    if (which == Key::next || which == Key::previous) {
        return step(which == Key::next ? 1 : -1);
    }
    if (which == Key::select_all) {
        mark({}, end_of(page));
        own_marked();
        return true;
    }
    if (which == Key::copy) {
        const bool all = from == to;
        own_text(area(), "CLIPBOARD",
                 text_between(page, all ? Spot{} : std::min(from, to),
                              all ? end_of(page) : std::max(from, to)));
        return true;
    }
    if (which == Key::follow && current != no_link && on_link) {
        const std::string target = page.links[static_cast<size_t>(current)].target;
        on_link(target, false);
        return true;
    }
    return false;
}

void TopicView::set_cursor(bool on_a_link) {
    if (hand_shown == on_a_link || !XtIsRealized(area())) {
        return;
    }
    hand_shown = on_a_link;
    Display *display = XtDisplay(area());
    if (!on_a_link) {
        XUndefineCursor(display, XtWindow(area()));
        return;
    }
    const Cursor hand = XCreateFontCursor(display, XC_hand2);
    XDefineCursor(display, XtWindow(area()), hand);
    XFreeCursor(display, hand); // it lives on while a window has it
}

void TopicView::hover(int link) {
    if (link == under) {
        return;
    }
    under = link;
    set_cursor(link != no_link);
    redraw();
    if (on_hover) {
        on_hover(link != no_link ? page.links[static_cast<size_t>(link)].target : "");
    }
}

void TopicView::point(Point what, int x, int y, unsigned state) {
    if (what == Point::drag || what == Point::release) {
        if (marking && what == Point::drag) {
            drag_to(x, y);
        } else if (marking) {
            own_marked();
        }
        marking = marking && what == Point::drag;
        return;
    }
    const int link = what == Point::leave ? no_link : page.link_at(x, y + top());
    hover(link);
    if ((what == Point::press || what == Point::middle_press) && link != no_link && on_link) {
        current = link;
        const std::string target = page.links[static_cast<size_t>(link)].target;
        on_link(target, what == Point::middle_press || (state & ShiftMask) != 0);
    } else if (what == Point::press) {
        const Spot place = place_at(page, look, x, y + top());
        marking = true;
        mark((state & ShiftMask) != 0 ? from : place, place);
    }
}

} // namespace help
