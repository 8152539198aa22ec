#include "gui_support.h"
#include <X11/Shell.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <Xm/TextF.h>
#include <Xm/Xm.h>
#include <algorithm>
#include <chrono>

namespace gui {

namespace {

/* The server handles faked input when it gets to it.  Once its own state shows the input, the
 * events are on their way to us. */
bool server_shows(const std::function<bool()> &state) {
    const bool shown = wait_for(state);
    EXPECT_TRUE(shown) << "the server ignores faked input";
    settle();
    return shown;
}

struct POINTER {
    int x, y;
    unsigned buttons;
};

POINTER pointer() {
    POINTER now = {};
    Window root, child;
    int x, y;
    XQueryPointer(gvga_display, gvga_root_window, &root, &child, &now.x, &now.y, &x, &y,
                  &now.buttons);
    return now;
}

void hold_key(const char *name, bool down) {
    const KeyCode code = XKeysymToKeycode(gvga_display, XStringToKeysym(name));
    XTestFakeKeyEvent(gvga_display, code, down, CurrentTime);
    server_shows([code, down] {
        char keys[32];
        XQueryKeymap(gvga_display, keys);
        return ((keys[code / 8] >> (code % 8)) & 1) == static_cast<int>(down);
    });
}

void hold(const std::vector<const char *> &keys, bool down) {
    for (const char *name : keys) {
        hold_key(name, down);
    }
}

void hold_button(unsigned button, bool down) {
    XTestFakeButtonEvent(gvga_display, button, down, CurrentTime);
    const unsigned mask = Button1Mask << (button - 1);
    server_shows([mask, down] { return ((pointer().buttons & mask) != 0) == down; });
}

} // namespace

void open() {
    if (gvga_display != nullptr) {
        return;
    }
    XtSetLanguageProc(nullptr, nullptr, nullptr);
    XtToolkitInitialize();
    MrmInitialize();
    gvga_appcontext = XtCreateApplicationContext();
    int count = 0;
    gvga_display = XtOpenDisplay(gvga_appcontext, nullptr, "quiladmin", VGA_CLASS, nullptr, 0,
                                 &count, nullptr);
    ASSERT_NE(gvga_display, nullptr);
    XtAppSetWarningHandler(gvga_appcontext,
                           [](String text) { ADD_FAILURE() << "the toolkit warns: " << text; });
    gvga_screen = DefaultScreenOfDisplay(gvga_display);
    gvga_root_window = RootWindowOfScreen(gvga_screen);
    gvga_resource_database = XtDatabase(gvga_display);
    gvga_close_atom = XInternAtom(gvga_display, "WM_DELETE_WINDOW", False);
}

bool wait_for(const std::function<bool()> &condition, int milliseconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        XFlush(gvga_display);
        bool due = false;
        const auto wake = [](XtPointer flag, XtIntervalId *) { *static_cast<bool *>(flag) = true; };
        const XtIntervalId timer = XtAppAddTimeOut(gvga_appcontext, 5, wake, &due);
        XtAppProcessEvent(gvga_appcontext, XtIMAll);
        if (!due) {
            XtRemoveTimeOut(timer);
        }
    }
    return true;
}

void settle() {
    int quiet = 0;
    wait_for([&] {
        XSync(gvga_display, False);
        quiet = XtAppPending(gvga_appcontext) == 0 ? quiet + 1 : 0;
        return quiet > 2;
    });
}

Widget make_shell(const char *name, int x, int y, int width, int height) {
    return XtVaAppCreateShell(name, VGA_CLASS, applicationShellWidgetClass, gvga_display, XmNx, x,
                              XmNy, y, XmNwidth, width, XmNheight, height, XmNmappedWhenManaged,
                              True, nullptr);
}

void show(Widget shell) {
    XtRealizeWidget(shell);
    ASSERT_TRUE(wait_for([shell] {
        XWindowAttributes attributes;
        XGetWindowAttributes(gvga_display, XtWindow(shell), &attributes);
        return attributes.map_state == IsViewable;
    }));
    give_focus(shell);
}

void give_focus(Widget shell) {
    XSetInputFocus(gvga_display, XtWindow(shell), RevertToParent, CurrentTime);
    settle();
}

std::string label_text(Widget widget, const char *resource) {
    XmString string = nullptr;
    XtVaGetValues(widget, resource, &string, nullptr);
    auto *plain = static_cast<char *>(XmStringUnparse(string, nullptr, XmCHARSET_TEXT,
                                                      XmMULTIBYTE_TEXT, nullptr, 0, XmOUTPUT_ALL));
    const std::string text = plain != nullptr ? plain : "";
    XtFree(plain);
    XmStringFree(string);
    return text;
}

std::string field_text(Widget field) {
    char *value = XmTextFieldGetString(field);
    const std::string text = value;
    XtFree(value);
    return text;
}

void move_to(Widget widget, int x, int y) {
    int root_x, root_y;
    Window child;
    XTranslateCoordinates(gvga_display, XtWindow(widget), gvga_root_window, x, y, &root_x, &root_y,
                          &child);
    XTestFakeMotionEvent(gvga_display, -1, root_x, root_y, CurrentTime);
    server_shows([=] { return pointer().x == root_x && pointer().y == root_y; });
}

void press(unsigned button) {
    hold_button(button, true);
}

void release(unsigned button) {
    hold_button(button, false);
}

void click(Widget widget, int x, int y, const std::vector<const char *> &modifiers) {
    move_to(widget, x, y);
    hold(modifiers, true);
    press();
    release();
    hold(modifiers, false);
}

void key(const char *name, const std::vector<const char *> &modifiers) {
    std::vector<const char *> keys = modifiers;
    keys.push_back(name);
    hold(keys, true);
    hold(keys, false);
}

IMAGE::IMAGE(Widget widget, int x, int y, int image_width, int image_height)
    : width(image_width), height(image_height) {
    read(widget, x, y);
}

IMAGE::IMAGE(Widget widget) : width(0), height(0) {
    Dimension widget_width = 0, widget_height = 0;
    XtVaGetValues(widget, XmNwidth, &widget_width, XmNheight, &widget_height, nullptr);
    width = widget_width;
    height = widget_height;
    read(widget, 0, 0);
}

void IMAGE::read(Widget widget, int x, int y) {
    XImage *image = XGetImage(gvga_display, XtWindow(widget), x, y, static_cast<unsigned>(width),
                              static_cast<unsigned>(height), AllPlanes, ZPixmap);
    ASSERT_NE(image, nullptr);
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            pixels.push_back(XGetPixel(image, column, row));
        }
    }
    XDestroyImage(image);
}

int IMAGE::count(unsigned long wanted) const {
    return static_cast<int>(std::count(pixels.begin(), pixels.end(), wanted));
}

std::vector<std::string> WARNINGS::texts;

WARNINGS::WARNINGS()
    : previous(
          XtAppSetWarningHandler(gvga_appcontext, [](String text) { texts.emplace_back(text); })) {
    texts.clear();
}

WARNINGS::~WARNINGS() {
    XtAppSetWarningHandler(gvga_appcontext, previous);
}

std::vector<Widget> shells_with(const char *child) {
    std::vector<Widget> shells;
    Window root, parent, *windows = nullptr;
    unsigned number = 0;
    XQueryTree(gvga_display, gvga_root_window, &root, &parent, &windows, &number);
    for (unsigned ii = 0; ii < number; ii++) {
        const Widget shell = XtWindowToWidget(gvga_display, windows[ii]);
        XWindowAttributes attributes;
        if (shell != nullptr && XtNameToWidget(shell, child) != nullptr &&
            XGetWindowAttributes(gvga_display, windows[ii], &attributes) != 0 &&
            attributes.map_state == IsViewable) {
            shells.push_back(shell);
        }
    }
    XFree(windows);
    return shells;
}

} // namespace gui
