/* A display of the test's own: a virtual server on a port that it finds itself, what stands on it
 * (canvas), and an operator with a mouse and a keyboard.  There is no window manager. */
#ifndef SYSTEM_SCREEN_H
#define SYSTEM_SCREEN_H

#include "canvas.h"
#include "process.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sys {

using WindowId = unsigned long; /* 0: none */

class Screen {
public:
    Screen();
    ~Screen();
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    /* For the environment of those that draw on it; empty if there is no server. */
    const std::string &name() const { return name_; }
    Canvas &canvas() { return *canvas_; }

    /* Windows of their own that can be seen, and the one of a title. */
    std::vector<WindowId> windows() const;
    WindowId find(const std::string &title) const;
    std::string title(WindowId window) const;

    /* Pixels from the top of the screen to the top of the window; and its width. */
    int top(WindowId window) const;
    int width(WindowId window) const;

    /* All texts in a window and in those inside it: line by line, window by window. */
    std::vector<std::string> lines(WindowId window) const;

    /* The same in one, flat. */
    std::string text(WindowId window) const;

    /* The innermost window with a line that begins so; 0 if there is none. */
    WindowId window_with(WindowId window, const std::string &beginning) const;

    /* What a window manager does when its close button is pressed. */
    void ask_to_close(WindowId window) const;

    /* Puts a window of its own above all others, as a window manager does with a box whose window
     * comes up behind it. */
    void raise(WindowId window) const;

    /* Clicks on a text; false if it does not stand in the window or those inside it. */
    bool click(WindowId window, const std::string &text) const;

    /* The keyboard belongs to the window from now on. */
    void focus(WindowId window) const;

    /* A key by its name ("Down", "minus"); shifted where the keyboard has it so, and with modifier
     * keys ("Shift_L") held. */
    void key(const std::string &name, const std::vector<std::string> &modifiers = {}) const;

    /* The server tells whoever drew it that the window and those inside it must be drawn again. */
    void expose(WindowId window) const;

private:
    struct Place {
        WindowId window;
        Text text;
    };

    std::vector<WindowId> inside(WindowId window) const; /* the window itself first */
    std::optional<Place> find_text(WindowId window, const std::string &text) const;

    std::unique_ptr<Process> server_;
    std::string name_;
    Display *display_ = nullptr;
    std::unique_ptr<Canvas> canvas_;
};

} // namespace sys

#endif
