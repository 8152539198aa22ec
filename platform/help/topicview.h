/* Shows a topic: text in lines that follow the window's width, with links for mouse and keys.  What
 * the mouse drags over, or Ctrl+A takes, is marked and PRIMARY; Ctrl+C copies it, or all where
 * nothing is marked. */
#ifndef HELP_TOPICVIEW_H
#define HELP_TOPICVIEW_H

#include "canvas.h"
#include "textmarks.h"

namespace help {

class TopicView : public Canvas {
public:
    TopicView(Widget parent, const Look &view_look);
    ~TopicView() override;

    /* Shows the topic, kept by this from then on, with `top` pixels of it scrolled away. */
    void show_topic(Topic topic, int top);
    const Topic &topic() const { return shown; }

    /* A link was followed; `new_window` says that it was asked for (middle button, or Shift). */
    std::function<void(const std::string &target, bool new_window)> on_link;

    /* The pointer or the keyboard is on a link; empty for none. */
    std::function<void(const std::string &target)> on_hover;

private:
    int content_height() override { return page.height; }
    void resized() override;
    void paint(XftDraw *draw) override;
    bool key(Key which) override;
    void point(Point what, int x, int y, unsigned state) override;
    void paint_shape(XftDraw *draw, const Shape &shape) const;
    void paint_piece(XftDraw *draw, const Piece &piece) const;
    bool step(int by);
    void hover(int link);
    void set_cursor(bool on_a_link);
    void mark(Spot begin, Spot end);
    void drag_to(int x, int y);
    void own_marked();
    void paint_marked(XftDraw *draw, size_t piece) const;

    Topic shown;
    Page page = {};
    int current = no_link; // the link that the keys are at
    int under = no_link;   // the link under the pointer
    bool hand_shown = false;
    Spot from, to; // what is marked; the second may be before the first
    bool marking = false;
};

} // namespace help

#endif
