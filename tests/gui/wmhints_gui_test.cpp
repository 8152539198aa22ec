// What window managers are told of the program's windows, read as one that manages them would.

#include "dialog_support.h"

#include "desktophints.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <algorithm>
#include <clocale>
#include <map>
#include <unistd.h>
#include <utility>

namespace {

// A property as text, and as the numbers of one with 32 bits an item.
struct PROPERTY {
    std::string type, text;
    std::vector<unsigned long> items;
    bool operator==(const PROPERTY &) const = default;
};
using PROPERTIES = std::map<std::string, PROPERTY>;

std::string atom_name(Display *display, Atom atom) {
    char *name = XGetAtomName(display, atom);
    std::string copy = name;
    XFree(name);
    return copy;
}

PROPERTY read_property(Display *display, Window window, Atom atom) {
    PROPERTY property;
    Atom type = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char *data = nullptr;
    XGetWindowProperty(display, window, atom, 0, 100000, False, AnyPropertyType, &type, &format,
                       &count, &left, &data);
    property.type = type != None ? atom_name(display, type) : "";
    if (format == 8) {
        property.text.assign(reinterpret_cast<char *>(data), count);
    } else if (format == 32) {
        const auto *items = reinterpret_cast<unsigned long *>(data);
        for (unsigned long at = 0; at < count; at++) {
            property.items.push_back(items[at] & 0xFFFFFFFF); // the library extends the sign
        }
    }
    XFree(data);
    return property;
}

PROPERTIES read_properties(Display *display, Window window) {
    PROPERTIES result;
    int count = 0;
    Atom *atoms = XListProperties(display, window, &count);
    for (int at = 0; at < count; at++) {
        result[atom_name(display, atoms[at])] = read_property(display, window, atoms[at]);
    }
    XFree(atoms);
    return result;
}

// Looks at the screen after every single request of the program: what a window has when it is
// mapped is what a window manager reads.  Messages to window managers come on a connection of its
// own.
class OBSERVER {
public:
    OBSERVER() : display(XOpenDisplay(nullptr)) {
        XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
        current = this;
        XSetAfterFunction(gvga_display, [](Display *) {
            current->look();
            return 0;
        });
    }
    OBSERVER(const OBSERVER &) = delete;
    OBSERVER &operator=(const OBSERVER &) = delete;
    ~OBSERVER() {
        XSetAfterFunction(gvga_display, nullptr);
        XCloseDisplay(display);
    }

    // What a window had when it was mapped.
    PROPERTIES at_map(Window window) const {
        const auto found = mapped.find(window);
        return found != mapped.end() ? found->second : PROPERTIES();
    }
    // A message that was sent to the window managers.
    bool message_to_root(XEvent *message) const {
        return XCheckTypedEvent(display, ClientMessage, message) != 0;
    }

private:
    void look() {
        if (std::exchange(busy, true)) {
            return; // our own requests
        }
        Window root, parent, *windows = nullptr;
        unsigned count = 0;
        XQueryTree(gvga_display, gvga_root_window, &root, &parent, &windows, &count);
        for (unsigned at = 0; at < count; at++) {
            XWindowAttributes attributes;
            if (mapped.count(windows[at]) == 0 &&
                XGetWindowAttributes(gvga_display, windows[at], &attributes) != 0 &&
                attributes.map_state == IsViewable) {
                mapped[windows[at]] = read_properties(gvga_display, windows[at]);
            }
        }
        XFree(windows);
        busy = false;
    }

    static inline OBSERVER *current;
    Display *display;
    std::map<Window, PROPERTIES> mapped;
    bool busy = false;
};

Atom atom(const char *name) {
    return XInternAtom(gvga_display, name, False);
}

class Hints : public dialogs::Dialogs {
protected:
    void SetUp() override {
        setlocale(LC_ALL, "C.UTF-8");
        Dialogs::SetUp();
    }
    void TearDown() override {
        Dialogs::TearDown();
        setlocale(LC_ALL, "C");
    }

    PROPERTIES at_map(Widget shell) {
        PROPERTIES found;
        EXPECT_TRUE(gui::wait_for([&] {
            found = observer.at_map(XtWindow(shell));
            return !found.empty();
        }));
        return found;
    }

    static PROPERTY now(Widget shell, const char *name) {
        gui::settle();
        return read_property(gvga_display, XtWindow(shell), atom(name));
    }

    OBSERVER observer;
};

PROPERTY utf8(const char *text) {
    return {"UTF8_STRING", text, {}};
}
PROPERTY window_type(const char *type) {
    return {"ATOM", "", {atom(type)}};
}

void expect_common(PROPERTIES &found) {
    char host[256] = "";
    gethostname(host, sizeof(host) - 1);
    EXPECT_EQ(found["WM_CLIENT_MACHINE"].text, host);
    EXPECT_EQ(found["_NET_WM_PID"], (PROPERTY{"CARDINAL", "", {static_cast<unsigned>(getpid())}}));
    const std::vector<unsigned long> &protocols = found["WM_PROTOCOLS"].items;
    for (const char *protocol : {"_NET_WM_PING", "WM_DELETE_WINDOW"}) {
        EXPECT_EQ(std::count(protocols.begin(), protocols.end(), atom(protocol)), 1) << protocol;
    }
}

// What is there before mapping.

TEST_F(Hints, OfEveryKindOfWindow) {
    VGA_DIALOG *window = open(VGA_UID_TP_WINDOW, main_dialog);
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    VGA_DIALOG *modal = open(VGA_UID_SDLC_LS_ADV_DIALOG, moded);
    vga_display_error_dialog(main_dialog, 1, "help", nullptr, 0, "s", "refused");
    const Widget main = main_dialog->shell, box = main_dialog->modal_dlg.shell;
    const struct {
        Widget shell;
        Widget parent; // null: a window of its own
    } rows[] = {
        {main, nullptr},      {window->shell, nullptr},
        {moded->shell, main}, {modal->shell, moded->shell},
        {box, main},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(XtName(row.shell));
        PROPERTIES found = at_map(row.shell);
        expect_common(found);
        EXPECT_EQ(found["_NET_WM_WINDOW_TYPE"],
                  window_type(row.parent != nullptr ? "_NET_WM_WINDOW_TYPE_DIALOG"
                                                    : "_NET_WM_WINDOW_TYPE_NORMAL"));
        const auto parent = row.parent != nullptr ? std::vector<unsigned long>{XtWindow(row.parent)}
                                                  : std::vector<unsigned long>{};
        EXPECT_EQ(found["WM_TRANSIENT_FOR"].items, parent);
    }
    EXPECT_EQ(at_map(moded->shell)["_NET_WM_NAME"], utf8("Mode"));
    EXPECT_EQ(at_map(box)["_NET_WM_NAME"], utf8("Error"));
    EXPECT_EQ(at_map(main)["WM_CLASS"].text, std::string("test\0Quiladmin\0", 15));
    EXPECT_EQ(at_map(moded->shell)["WM_CLASS"].text, std::string("Quiladmin\0Quiladmin\0", 20));
    vga_close_modal_dialog(main_dialog);
    vga_display_confirm_dialog(main_dialog, 1, "help", nullptr, 0, "s", "really?");
    EXPECT_EQ(now(box, "_NET_WM_NAME"), utf8("Question"));
    vga_close_modal_dialog(main_dialog);
}

TEST_F(Hints, IconIsThePictureInThreeSizes) {
    PROPERTIES found = at_map(main_dialog->shell);
    const std::vector<unsigned long> &icon = found["_NET_WM_ICON"].items;
    size_t at = 0;
    for (unsigned long size : {16UL, 32UL, 48UL}) {
        ASSERT_LE(at + 2 + size * size, icon.size());
        EXPECT_EQ(icon[at], size);
        EXPECT_EQ(icon[at + 1], size);
        const unsigned long *pixels = &icon[at + 2];
        EXPECT_EQ(pixels[0] >> 24, 0U) << "its corner lets the background through";
        const unsigned long left_lamp = pixels[size * size * 9 / 16 + size * 14 / 48];
        EXPECT_EQ(left_lamp, 0xFFF2B632) << "amber, opaque";
        at += 2 + size * size;
    }
    EXPECT_EQ(at, icon.size());
}

// Later.

TEST_F(Hints, TitlesAreFollowed) {
    vga_set_title(main_dialog, "other");
    EXPECT_EQ(now(main_dialog->shell, "_NET_WM_NAME"), utf8("other"));
    EXPECT_EQ(now(main_dialog->shell, "_NET_WM_ICON_NAME"), utf8("other"));
    EXPECT_EQ(now(main_dialog->shell, "WM_NAME").text, "other");
    XtVaSetValues(main_dialog->shell, XmNtitle, "\xE9t\xE9", XmNtitleEncoding, XA_STRING, nullptr);
    EXPECT_EQ(now(main_dialog->shell, "_NET_WM_NAME"), utf8("\xC3\xA9t\xC3\xA9"));
    XtVaSetValues(main_dialog->shell, XmNtitleEncoding, None, nullptr);

    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    vga_set_title(moded, "Mode \xC3\xA4");
    EXPECT_EQ(now(moded->shell, "_NET_WM_NAME"), utf8("Mode \xC3\xA4"));
    EXPECT_EQ(now(moded->shell, "_NET_WM_ICON_NAME"), utf8("Mode \xC3\xA4"));
}

TEST_F(Hints, PingsAreAnsweredOverAMessageToo) {
    vga_display_error_dialog(main_dialog, 1, "help", nullptr, 0, "s", "in the way");
    for (Widget shell : {main_dialog->shell, main_dialog->modal_dlg.shell}) {
        XClientMessageEvent ping = {};
        ping.type = ClientMessage;
        ping.window = XtWindow(shell);
        ping.message_type = atom("WM_PROTOCOLS");
        ping.format = 32;
        ping.data.l[0] = static_cast<long>(atom("_NET_WM_PING"));
        ping.data.l[1] = 4711;
        ping.data.l[2] = static_cast<long>(XtWindow(shell));
        XSendEvent(gvga_display, ping.window, False, NoEventMask,
                   reinterpret_cast<XEvent *>(&ping));
        XEvent event;
        ASSERT_TRUE(gui::wait_for([&] { return observer.message_to_root(&event); }));
        const XClientMessageEvent &answer = event.xclient;
        EXPECT_EQ(answer.window, gvga_root_window);
        EXPECT_EQ(answer.message_type, ping.message_type);
        EXPECT_EQ(memcmp(&answer.data, &ping.data, sizeof(ping.data)), 0);
    }
    vga_close_modal_dialog(main_dialog);
}

// Characters.

TEST(Utf8, IsMadeFromTheLocalesCharacters) {
    setlocale(LC_ALL, "C.UTF-8");
    for (const char *text : {"", "plain", "\xC3\xA4", "\xE6\xBC\xA2", "\xF0\x9F\x98\x80"}) {
        EXPECT_EQ(vga_utf8_from_locale(text), text);
    }
    EXPECT_EQ(vga_utf8_from_locale("a\xFFz\xC3"), "a\xEF\xBF\xBDz\xEF\xBF\xBD");
    setlocale(LC_ALL, "C");
    EXPECT_EQ(vga_utf8_from_locale("a\xE4"), "a\xEF\xBF\xBD");
}

} // namespace
