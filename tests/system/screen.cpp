#include "screen.h"

#include "installation.h"

#include <X11/XKBlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <algorithm>
#include <cstdlib>

namespace sys {

namespace {

/* What is looked at belongs to others and may be gone by now. */
int ignore(Display *, XErrorEvent *) {
    return 0;
}

Command server_command() {
    const char *path = getenv("PATH");
    // Any user may connect: one test runs the program as another user.
    return {{"Xvfb", "-displayfd", "1", "-screen", "0", "1280x1800x24", "-nolisten", "tcp",
             "-noreset", "-ac"},
            {{"PATH", path != nullptr ? path : "/usr/bin:/bin"}}};
}

} // namespace

Screen::Screen() : server_(std::make_unique<Process>(server_command())) {
    const std::string &out = server_->out();
    wait_for([&] { return out.find('\n') != std::string::npos || !server_->running(); });
    if (out.find('\n') == std::string::npos) {
        return;
    }
    name_ = ":" + out.substr(0, out.find('\n'));
    XSetErrorHandler(ignore);
    display_ = XOpenDisplay(name_.c_str());
    canvas_ = std::make_unique<Canvas>(name_);
    if (display_ == nullptr || !canvas_->working()) {
        name_.clear();
    }
}

Screen::~Screen() {
    canvas_.reset();
    if (display_ != nullptr) {
        XCloseDisplay(display_);
    }
}

static std::vector<WindowId> children(Display *display, WindowId window) {
    Window root, parent;
    Window *list = nullptr;
    unsigned count = 0;
    std::vector<WindowId> all;
    if (XQueryTree(display, window, &root, &parent, &list, &count) != 0 && list != nullptr) {
        all.assign(list, list + count);
        XFree(list);
    }
    return all;
}

static bool can_be_seen(Display *display, WindowId window) {
    XWindowAttributes attributes = {};
    return XGetWindowAttributes(display, window, &attributes) != 0 &&
           attributes.map_state == IsViewable;
}

std::vector<WindowId> Screen::windows() const {
    std::vector<WindowId> all = children(display_, DefaultRootWindow(display_));
    std::erase_if(all, [this](WindowId window) { return !can_be_seen(display_, window); });
    return all;
}

WindowId Screen::find(const std::string &title_wanted) const {
    for (const WindowId window : windows()) {
        if (title(window) == title_wanted) {
            return window;
        }
    }
    return 0;
}

std::string Screen::title(WindowId window) const {
    char *name = nullptr;
    XFetchName(display_, window, &name);
    const std::string copy = name != nullptr ? name : "";
    XFree(name);
    return copy;
}

int Screen::top(WindowId window) const {
    int x = 0, y = 0;
    Window child;
    XTranslateCoordinates(display_, window, DefaultRootWindow(display_), 0, 0, &x, &y, &child);
    return y;
}

int Screen::width(WindowId window) const {
    XWindowAttributes attributes = {};
    XGetWindowAttributes(display_, window, &attributes);
    return attributes.width;
}

std::vector<WindowId> Screen::inside(WindowId window) const {
    std::vector<WindowId> all = {window};
    for (const WindowId child : children(display_, window)) {
        const std::vector<WindowId> deeper = inside(child);
        all.insert(all.end(), deeper.begin(), deeper.end());
    }
    return all;
}

std::vector<std::string> Screen::lines(WindowId window) const {
    std::vector<std::string> all;
    for (const WindowId part : inside(window)) {
        const std::vector<std::string> own = canvas_->lines(part);
        all.insert(all.end(), own.begin(), own.end());
    }
    return all;
}

std::string Screen::text(WindowId window) const {
    std::string all;
    for (const std::string &line : lines(window)) {
        all += line + "\n";
    }
    return flat(all);
}

WindowId Screen::window_with(WindowId window, const std::string &beginning) const {
    WindowId found = 0;
    for (const WindowId part : inside(window)) {
        const std::vector<std::string> own = canvas_->lines(part);
        if (std::any_of(own.begin(), own.end(), [&](const std::string &line) {
                return line.compare(0, beginning.size(), beginning) == 0;
            })) {
            found = part;
        }
    }
    return found;
}

void Screen::ask_to_close(WindowId window) const {
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display_, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display_, "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display_, window, False, NoEventMask, &event);
    XSync(display_, False);
}

std::optional<Screen::Place> Screen::find_text(WindowId window, const std::string &wanted) const {
    for (const WindowId part : inside(window)) {
        for (const Text &text : canvas_->texts(part)) {
            if (text.words == wanted) {
                return Place{part, text};
            }
        }
    }
    return std::nullopt;
}

void Screen::raise(WindowId window) const {
    XRaiseWindow(display_, window);
}

bool Screen::click(WindowId window, const std::string &text) const {
    constexpr int into_text = 3; // pixels from the beginning of its base line
    const std::optional<Place> place = find_text(window, text);
    if (!place) {
        return false;
    }
    int x = 0, y = 0;
    Window child;
    XTranslateCoordinates(display_, place->window, DefaultRootWindow(display_),
                          place->text.x + into_text, place->text.y - into_text, &x, &y, &child);
    XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
    XTestFakeButtonEvent(display_, Button1, True, CurrentTime);
    XTestFakeButtonEvent(display_, Button1, False, CurrentTime);
    XSync(display_, False);
    return true;
}

void Screen::focus(WindowId window) const {
    XSetInputFocus(display_, window, RevertToPointerRoot, CurrentTime);
    XSync(display_, False);
}

void Screen::key(const std::string &name, const std::vector<std::string> &modifiers) const {
    const auto code_of = [this](const std::string &key) {
        return XKeysymToKeycode(display_, XStringToKeysym(key.c_str()));
    };
    const KeyCode code = code_of(name);
    std::vector<std::string> held = modifiers;
    if (XkbKeycodeToKeysym(display_, code, 0, 0) != XStringToKeysym(name.c_str())) {
        held.emplace_back("Shift_L");
    }
    for (const std::string &key : held) {
        XTestFakeKeyEvent(display_, code_of(key), True, CurrentTime);
    }
    XTestFakeKeyEvent(display_, code, True, CurrentTime);
    XTestFakeKeyEvent(display_, code, False, CurrentTime);
    for (const std::string &key : held) {
        XTestFakeKeyEvent(display_, code_of(key), False, CurrentTime);
    }
    XSync(display_, False);
}

void Screen::expose(WindowId window) const {
    for (const WindowId part : inside(window)) {
        XClearArea(display_, part, 0, 0, 0, 0, True);
    }
    XSync(display_, False);
}

} // namespace sys
