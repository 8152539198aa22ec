/* A drawn window with a scroll bar: what the view of a topic and the lists have in common.  It
 * scrolls by bar, wheel and keys, draws behind the scenes and copies the result, so that nothing
 * flickers, and hands what is left of keys and mouse to its heir.
 *
 * The widgets belong to their parent and go with it; the object must go not before them and not be
 * used after. */
#ifndef HELP_CANVAS_H
#define HELP_CANVAS_H

#include "look.h"

#include <functional>
#include <new>
#include <string>

namespace help {

/* Runs what a toolkit callback does; without memory it does nothing. */
template <typename WORK> void guarded(WORK &&work) {
    try {
        work();
    } catch (const std::bad_alloc &) {
        return;
    }
}

enum class Key {
    up,
    down,
    left,
    right,
    page_up,
    page_down,
    first,
    last,
    next,
    previous,
    follow,
    back,
    copy,
    select_all
};
enum class Point { press, middle_press, drag, release, motion, leave };

class Canvas {
public:
    Canvas(Widget parent, const char *name, const Look &canvas_look, Colour background_colour);
    Canvas(const Canvas &) = delete;
    Canvas &operator=(const Canvas &) = delete;
    virtual ~Canvas();

    Widget widget() const { return frame; } // to be placed by the parent; not managed
    Widget area() const { return drawing; }
    int top() const { return scrolled; }
    void scroll_to(int y);
    void focus();

    /* Keys that neither this nor an heir has a use for; returns whether it had one. */
    std::function<bool(Key)> other_key;

protected:
    virtual int content_height() = 0;
    virtual void resized() = 0; // width() or height() is another one
    virtual void paint(XftDraw *draw) = 0;
    virtual bool key(Key) { return false; }
    virtual void point(Point, int /*x*/, int /*y*/, unsigned /*state*/) {}

    int width() const { return wide; }
    int height() const { return high; }
    bool focused() const { return has_focus; }
    void changed(); // the content has another height or look
    void redraw();
    void show(int from, int to); // scrolls as little as that takes
    const Look &look;

private:
    static void on_expose(Widget, XtPointer, XtPointer);
    static void on_resize(Widget, XtPointer, XtPointer);
    static void on_scroll(Widget, XtPointer, XtPointer);
    static void on_key(Widget, XEvent *, String *, Cardinal *);
    static void on_point(Widget, XEvent *, String *, Cardinal *);
    static void on_focus(Widget, XEvent *, String *, Cardinal *);
    static void register_actions(XtAppContext context);
    static Canvas *of(Widget widget);
    void add_translations();
    void set_bar();
    void measure();
    bool scroll_key(Key which);
    void take_key(Key which);
    void make_buffer();

    Colour background;
    Widget frame = nullptr, drawing = nullptr, bar = nullptr;
    int wide = 0, high = 0, scrolled = 0;
    bool has_focus = false;
    Pixmap buffer = 0;
    int buffer_width = 0, buffer_height = 0;
    XftDraw *draw = nullptr;
    GC copy_gc = nullptr;
};

} // namespace help

#endif
