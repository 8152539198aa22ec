#include "topicview.h"

#include <X11/cursorfont.h>
#include <algorithm>

namespace help {

TopicView::TopicView(Widget parent, const Look &view_look)
    : Canvas(parent, "helpTopic", view_look, Colour::page) {}

void TopicView::show_topic(Topic topic, int top) {
    shown = std::move(topic);
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
    const int link = what == Point::leave ? no_link : page.link_at(x, y + top());
    hover(link);
    if ((what == Point::press || what == Point::middle_press) && link != no_link && on_link) {
        current = link;
        const std::string target = page.links[static_cast<size_t>(link)].target;
        on_link(target, what == Point::middle_press || (state & ShiftMask) != 0);
    }
}

} // namespace help
