/* What tests with real windows share.  The program's main (gui_main.cpp) has started a server of
 * its own; gui::open connects the toolkit to it and sets the globals that start-up would set.
 *
 * Nothing here sleeps: input goes in through the server's test extension, and whoever waits for its
 * effect polls for a condition until a deadline (wait_for). */
#ifndef GUI_SUPPORT_H
#define GUI_SUPPORT_H

#include <gtest/gtest.h> // before the X headers, whose macros it cannot bear

#include "globals.h"
#include "toolkit.h"
#include <functional>
#include <string>
#include <vector>

namespace gui {

/* Connects the toolkit, once a program; the class is that of the program, the resource database the
 * display's.  From then on a warning of the toolkit is a failure, unless WARNINGS takes it. */
void open();

/* Handles events and timers until the condition holds; false after `milliseconds`. */
bool wait_for(const std::function<bool()> &condition, int milliseconds = 5000);

/* Handles what is there: the server has answered, and no event and no due timer is left. */
void settle();

/* A shell, popped up at a place of the screen with no window manager; wait until it is viewable. */
Widget make_shell(const char *name, int x, int y, int width, int height);
void show(Widget shell);

/* The pointer, in the coordinates of a widget's window. */
void move_to(Widget widget, int x, int y);
void press(unsigned button = 1);
void release(unsigned button = 1);

/* Moves there and clicks, with modifier keys ("Control_L", "Shift_L") held. */
void click(Widget widget, int x, int y, const std::vector<const char *> &modifiers = {});

/* A key by its name ("Down", "plus"), with modifier keys held. */
void key(const char *name, const std::vector<const char *> &modifiers = {});

/* Gives the keyboard to a shell: there is no window manager to do it. */
void give_focus(Widget shell);

/* The text of a label, or of a message box by its own resource, and that of a text field. */
std::string label_text(Widget widget, const char *resource = "labelString");
std::string field_text(Widget field);

/* What the message box over a window or dialog (a VGA_DIALOG) says; "" when there is none. */
template <class Dialog> std::string box_text(const Dialog *desc) {
    const bool shown = desc->modal_dlg.showing != 0 && XtIsManaged(desc->modal_dlg.dialog);
    return shown ? label_text(desc->modal_dlg.dialog, "messageString") : "";
}

/* What a window shows.  Pixels are the server's values. */
class IMAGE {
public:
    IMAGE(Widget widget, int x, int y, int width, int height);
    explicit IMAGE(Widget widget); // all of it
    unsigned long pixel(int x, int y) const { return pixels[static_cast<size_t>(y * width + x)]; }
    int count(unsigned long pixel) const;
    bool operator==(const IMAGE &) const = default;

    int width, height;

private:
    void read(Widget widget, int x, int y);
    std::vector<unsigned long> pixels;
};

/* The toolkit's warnings while it lives, instead of on standard error. */
class WARNINGS {
public:
    WARNINGS();
    WARNINGS(const WARNINGS &) = delete;
    WARNINGS &operator=(const WARNINGS &) = delete;
    ~WARNINGS();
    static std::vector<std::string> texts;

private:
    XtErrorHandler previous;
};

/* The shells on the screen with such a child.  Those without a parent are known to the display
 * only: the windows of the screen tell. */
std::vector<Widget> shells_with(const char *child);

} // namespace gui

#endif
