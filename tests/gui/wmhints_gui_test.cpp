// What window managers are told of the program's windows, read by one that manages them.

#include "gui_support.h"

#include "vgadgutl.h"
#include "vgamsgs.h"
#include "vgawmhnt.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <algorithm>
#include <atomic>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <mutex>
#include <poll.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

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

// Windows go while the manager looks at them; the program itself makes no error.
int note_error(Display *display, XErrorEvent *event) {
    if (display == gvga_display) {
        ADD_FAILURE() << "X error " << static_cast<int>(event->error_code) << " of request "
                      << static_cast<int>(event->request_code);
    }
    return 0;
}

// A window manager that grants everything.  It has a connection and a thread of its own, because
// the toolkit waits for its window manager's answers.
class MANAGER {
public:
    MANAGER() : display(XOpenDisplay(nullptr)) {
        XSelectInput(display, DefaultRootWindow(display),
                     SubstructureRedirectMask | SubstructureNotifyMask);
        XSync(display, False);
        thread = std::thread([this] { run(); });
    }
    MANAGER(const MANAGER &) = delete;
    MANAGER &operator=(const MANAGER &) = delete;
    ~MANAGER() {
        ending = true;
        thread.join();
        XCloseDisplay(display);
    }

    // What a window had when it asked to be mapped.
    PROPERTIES at_map_request(Window window) {
        const std::lock_guard lock(guard);
        const auto found = requests.find(window);
        return found != requests.end() ? found->second : PROPERTIES();
    }
    std::vector<XClientMessageEvent> messages_to_root() {
        const std::lock_guard lock(guard);
        return messages;
    }

private:
    void run() {
        pollfd input = {ConnectionNumber(display), POLLIN, 0};
        while (!ending) {
            poll(&input, 1, 10);
            while (XPending(display) > 0) {
                XEvent event;
                XNextEvent(display, &event);
                handle(event);
            }
        }
    }
    void handle(const XEvent &event) {
        if (event.type == MapRequest) {
            const Window window = event.xmaprequest.window;
            PROPERTIES found = read_properties(display, window);
            XMapWindow(display, window);
            const std::lock_guard lock(guard);
            requests.emplace(window, std::move(found));
        } else if (event.type == ConfigureRequest) {
            const XConfigureRequestEvent &request = event.xconfigurerequest;
            XWindowChanges changes = {
                request.x,     request.y,     request.width, request.height, request.border_width,
                request.above, request.detail};
            XConfigureWindow(display, request.window, static_cast<unsigned>(request.value_mask),
                             &changes);
        } else if (event.type == ClientMessage) {
            const std::lock_guard lock(guard);
            messages.push_back(event.xclient);
        }
        XFlush(display);
    }

    Display *display;
    std::atomic<bool> ending = false;
    std::mutex guard;
    std::map<Window, PROPERTIES> requests;
    std::vector<XClientMessageEvent> messages;
    std::thread thread;
};

NB_USHORT get_any(VGA_DIALOG *) {
    return 1;
}

// Every row has the description's message box in its window: what stands there makes no difference.
NB_VOID fill_row(VGA_DIALOG_ID id) {
    gvga_uid_desc[id] = {id, "errorDialog", gvga_uid_desc[id].kind, sizeof(VGA_DIALOG), get_any};
}

Atom atom(const char *name) {
    return XInternAtom(gvga_display, name, False);
}

class Hints : public testing::Test {
protected:
    static void SetUpTestSuite() {
        gui::open();
        XSetErrorHandler(note_error);
        char file[] = "quildlg.uid";
        String files[] = {file};
        ASSERT_EQ(MrmOpenHierarchyPerDisplay(gvga_display, 1, files, nullptr, &gvga_uil_hierarchy),
                  MrmSUCCESS);
        vga_register_common_names();
        gvga_messages[VGA_MSG_ERROR_TITLE] = "Error \xC3\xA9";
        gvga_messages[VGA_MSG_CONFIRM_TITLE] = "Question";
        gvga_messages[1] = "%1";
        fill_row(VGA_UID_NODE_WINDOW);
        fill_row(VGA_UID_TP_WINDOW);
        fill_row(VGA_UID_MODE_DIALOG);
        fill_row(VGA_UID_SDLC_LS_ADV_DIALOG);
    }

    void SetUp() override {
        ASSERT_NE(gvga_uil_hierarchy, nullptr);
        setlocale(LC_ALL, "C.UTF-8");
        gvga_toplevel = XtVaAppCreateShell("quiladmin", VGA_CLASS, applicationShellWidgetClass,
                                           gvga_display, nullptr);
        vga_init_dialogs();
        ASSERT_EQ(vga_get_dialog(VGA_UID_NODE_WINDOW, nullptr, nullptr, &main_dialog), 1);
        gvga_main_dialog = main_dialog;
        vga_set_title(main_dialog, "Node \xE2\x82\xAC");
        vga_display_dialog(main_dialog);
    }

    void TearDown() override {
        vga_close_children(main_dialog, 0, 1);
        vga_free_dialogs();
        XtDestroyWidget(gvga_toplevel);
        gui::settle();
        setlocale(LC_ALL, "C");
    }

    static VGA_DIALOG *open(VGA_DIALOG_ID id, VGA_DIALOG *parent) {
        VGA_DIALOG *desc = nullptr;
        EXPECT_EQ(vga_get_dialog(id, parent, nullptr, &desc), 1);
        vga_set_title(desc, "Dialog");
        vga_display_dialog(desc);
        return desc;
    }

    PROPERTIES at_map_request(Widget shell) {
        PROPERTIES found;
        EXPECT_TRUE(gui::wait_for([&] {
            found = manager.at_map_request(XtWindow(shell));
            return !found.empty();
        }));
        return found;
    }

    static PROPERTY now(Widget shell, const char *name) {
        gui::settle();
        return read_property(gvga_display, XtWindow(shell), atom(name));
    }

    MANAGER manager;
    VGA_DIALOG *main_dialog = nullptr;
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

TEST_F(Hints, MainWindow) {
    PROPERTIES found = at_map_request(main_dialog->shell);
    expect_common(found);
    EXPECT_EQ(found["_NET_WM_NAME"], utf8("Node \xE2\x82\xAC"));
    EXPECT_EQ(found["_NET_WM_ICON_NAME"], utf8("Node \xE2\x82\xAC"));
    EXPECT_EQ(found["_NET_WM_WINDOW_TYPE"], window_type("_NET_WM_WINDOW_TYPE_NORMAL"));
    EXPECT_EQ(found["WM_CLASS"].text, std::string("quiladmin\0Quiladmin\0", 20));
    EXPECT_EQ(found.count("WM_TRANSIENT_FOR"), 0U);

    VGA_DIALOG *window = open(VGA_UID_TP_WINDOW, main_dialog);
    found = at_map_request(window->shell);
    expect_common(found);
    EXPECT_EQ(found["_NET_WM_WINDOW_TYPE"], window_type("_NET_WM_WINDOW_TYPE_NORMAL"));
    EXPECT_EQ(found.count("WM_TRANSIENT_FOR"), 0U);
}

TEST_F(Hints, DialogsAreTransientForTheirParents) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    VGA_DIALOG *modal = open(VGA_UID_SDLC_LS_ADV_DIALOG, moded);
    for (const VGA_DIALOG *desc : {moded, modal}) {
        PROPERTIES found = at_map_request(desc->shell);
        expect_common(found);
        EXPECT_EQ(found["_NET_WM_NAME"], utf8("Dialog"));
        EXPECT_EQ(found["_NET_WM_WINDOW_TYPE"], window_type("_NET_WM_WINDOW_TYPE_DIALOG"));
        EXPECT_EQ(found["WM_TRANSIENT_FOR"].items,
                  (std::vector<unsigned long>{XtWindow(desc->parent->shell)}));
        EXPECT_EQ(found["WM_CLASS"].text, std::string("Quiladmin\0Quiladmin\0", 20));
    }
}

TEST_F(Hints, MessageBoxesAreDialogsToo) {
    vga_display_error_dialog(main_dialog, 1, "help", nullptr, 0, "s", "refused");
    const Widget box = main_dialog->modal_dlg.shell;
    PROPERTIES found = at_map_request(box);
    expect_common(found);
    EXPECT_EQ(found["_NET_WM_NAME"], utf8("Error \xC3\xA9"));
    EXPECT_EQ(found["_NET_WM_WINDOW_TYPE"], window_type("_NET_WM_WINDOW_TYPE_DIALOG"));
    EXPECT_EQ(found["WM_TRANSIENT_FOR"].items,
              (std::vector<unsigned long>{XtWindow(main_dialog->shell)}));
    vga_close_modal_dialog(main_dialog);
    vga_display_confirm_dialog(main_dialog, 1, "help", nullptr, 0, "s", "really?");
    EXPECT_EQ(now(box, "_NET_WM_NAME"), utf8("Question"));
    vga_close_modal_dialog(main_dialog);
}

TEST_F(Hints, IconIsThePictureInThreeSizes) {
    PROPERTIES found = at_map_request(main_dialog->shell);
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
        const size_t before = manager.messages_to_root().size();
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
        ASSERT_TRUE(gui::wait_for([&] { return manager.messages_to_root().size() > before; }));
        const XClientMessageEvent answer = manager.messages_to_root().back();
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

TEST(Utf8, IsMadeFromAnyCharacterSet) {
    char name[] = "/tmp/wmhintsXXXXXX";
    const std::filesystem::path folder = mkdtemp(name);
    const std::string locale = (folder / "fr_FR").string();
    const std::string make = "localedef -i fr_FR -f ISO-8859-15 " + locale + " >/dev/null 2>&1";
    // A status of 1 stands for warnings.
    const bool made = system(make.c_str()) != -1 && std::filesystem::exists(locale);
    setenv("LOCPATH", folder.c_str(), 1);
    if (made && setlocale(LC_ALL, "fr_FR") != nullptr) {
        EXPECT_EQ(vga_utf8_from_locale("\xE9t\xE9 \xA4"), "\xC3\xA9t\xC3\xA9 \xE2\x82\xAC");
    } else {
        ADD_FAILURE() << "no locale could be made";
    }
    setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
    std::filesystem::remove_all(folder);
}

} // namespace
