#include "roundtrips.h"

#include "libraryfunction.h"
#include <X11/IntrinsicP.h>
#include <X11/Xlibint.h>
#undef min
#undef max
#include <X11/Xutil.h>
#include <Xm/Xm.h>
#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

namespace {

bool sparing;

/* The display whose answers are remembered: the first that is opened. */
Display *known_display;

/* Asked for one by one otherwise, by the X library, the intrinsics and the toolkit. */
const NB_CHAR *const atoms_of_a_start[] = {
    "Custom Init",    "Custom Data",     "Customize Data:0",         "SCREEN_RESOURCES",
    "WM_LOCALE_NAME", "Pixel Sets",      "WM_CLIENT_LEADER",         "_MOTIF_DEFAULT_BINDINGS",
    "_NET_WM_NAME",   "STRING",          "_MOTIF_DRAG_WINDOW",       "WM_STATE",
    "SM_CLIENT_ID",   "WM_TAKE_FOCUS",   "_MOTIF_WM_INFO",           "_MOTIF_DRAG_TARGETS",
    "COMPOUND_TEXT",  "UTF8_STRING",     "_MOTIF_DRAG_PROXY_WINDOW", "Editres",
    "EditresCommand", "EditresProtocol", "EditresClientVal",
};

struct {
    std::vector<KeySym> symbols; /* empty: not known */
    int first = 0, per_code = 0;
} keyboard;

struct PIXMAP_SIZE {
    unsigned width, height, depth;
};

/* Made on first use: the library may be called before main. */
std::map<Pixmap, PIXMAP_SIZE> &pixmaps() {
    static auto *const all = new std::map<Pixmap, PIXMAP_SIZE>;
    return *all;
}

struct {
    bool known = false;
    Window window = None;
    int revert = 0;
} focus;

/* Between XGrabServer and the XSync behind XUngrabServer. */
enum { FREE, GRABBED, LET_GO } server;

bool read_keyboard(Display *display) {
    int least = 0, most = 0, per_code = 0;
    XDisplayKeycodes(display, &least, &most);
    auto *const ask =
        vga_library_function<KeySym *(Display *, KeyCode, int, int *)>("XGetKeyboardMapping");
    KeySym *const table =
        ask != nullptr ? ask(display, static_cast<KeyCode>(least), most - least + 1, &per_code)
                       : nullptr;
    if (table == nullptr || per_code <= 0) {
        return false;
    }
    keyboard.first = least;
    keyboard.per_code = per_code;
    keyboard.symbols.assign(table, table + static_cast<size_t>(most - least + 1) *
                                               static_cast<size_t>(per_code));
    XFree(table);
    return true;
}

/* What of the rectangle its parents let be seen. */
struct AREA {
    int left, top, right, bottom;
};

NB_VOID clip(AREA &area, Widget parent) {
    area.left = std::max(area.left, 0);
    area.top = std::max(area.top, 0);
    area.right = std::min(area.right, static_cast<int>(parent->core.width));
    area.bottom = std::min(area.bottom, static_cast<int>(parent->core.height));
}

NB_VOID shift(AREA &area, Widget widget) {
    const int x = widget->core.x + widget->core.border_width;
    const int y = widget->core.y + widget->core.border_width;
    area.left += x;
    area.right += x;
    area.top += y;
    area.bottom += y;
}

/* Told of by the library as it reads them: the keyboard may be elsewhere now. */
constexpr int events_of_focus[] = {FocusIn, FocusOut, UnmapNotify, DestroyNotify};
Bool (*conversions[LASTEvent])(Display *, XEvent *, xEvent *);

Bool focus_may_change(Display *display, XEvent *event, xEvent *wire) {
    const Bool taken = conversions[wire->u.u.type & 0x7F](display, event, wire);
    const XFocusChangeEvent &change = event->xfocus;
    focus.known = event->type == FocusIn &&
                  (change.mode == NotifyNormal || change.mode == NotifyWhileGrabbed) &&
                  (change.detail == NotifyAncestor || change.detail == NotifyInferior ||
                   change.detail == NotifyNonlinear);
    if (focus.known) {
        focus.window = change.window;
        focus.revert = RevertToParent; /* nobody asks */
    }
    return taken;
}

bool can_be_seen(Widget widget) {
    return XtIsRealized(widget) && !widget->core.being_destroyed &&
           (XtIsShell(widget) || XtIsManaged(widget)) &&
           (!XtIsWidget(widget) || XtIsShell(widget) || widget->core.mapped_when_managed);
}

} // namespace

NB_VOID vga_spare_round_trips(NB_VOID) {
    sparing = true;
}

extern "C" Display *XOpenDisplay(_Xconst char *name) {
    auto *const open = vga_library_function<Display *(const char *)>("XOpenDisplay");
    Display *const display = open != nullptr ? open(name) : nullptr;
    if (sparing && display != nullptr && known_display == nullptr) {
        known_display = display;
        Atom atoms[std::size(atoms_of_a_start)];
        for (const int type : events_of_focus) {
            conversions[type] = XESetWireToEvent(display, type, focus_may_change);
        }
        XInternAtoms(display, const_cast<char **>(atoms_of_a_start),
                     static_cast<int>(std::size(atoms_of_a_start)), False, atoms);
    }
    return display;
}

extern "C" int XCloseDisplay(Display *display) {
    if (display == known_display) {
        known_display = nullptr;
        keyboard.symbols.clear();
        pixmaps().clear();
        focus.known = false;
    }
    return vga_ask_library("XCloseDisplay", display);
}

extern "C" KeySym *XGetKeyboardMapping(Display *display,
#if NeedWidePrototypes
                                       unsigned int first,
#else
                                       KeyCode first,
#endif
                                       int count, int *per_code) {
    const bool known = display == known_display && display != nullptr &&
                       (!keyboard.symbols.empty() || read_keyboard(display));
    const size_t each = static_cast<size_t>(keyboard.per_code);
    const size_t from = known ? (first - static_cast<size_t>(keyboard.first)) * each : 0;
    const size_t length = known ? static_cast<size_t>(count) * each : 0;
    if (!known || static_cast<int>(first) < keyboard.first || count <= 0 ||
        from + length > keyboard.symbols.size()) {
        auto *const ask =
            vga_library_function<KeySym *(Display *, KeyCode, int, int *)>("XGetKeyboardMapping");
        return ask != nullptr ? ask(display, static_cast<KeyCode>(first), count, per_code)
                              : nullptr;
    }
    /* Its caller gives it back with XFree, which is free. */
    auto *const copy = static_cast<KeySym *>(malloc(length * sizeof(KeySym)));
    if (copy != nullptr) {
        std::copy_n(keyboard.symbols.begin() + static_cast<long>(from), length, copy);
        *per_code = keyboard.per_code;
    }
    return copy;
}

extern "C" int XRefreshKeyboardMapping(XMappingEvent *event) {
    keyboard.symbols.clear();
    return vga_ask_library("XRefreshKeyboardMapping", event);
}

extern "C" Pixmap XCreatePixmap(Display *display, Drawable drawable, unsigned width,
                                unsigned height, unsigned depth) {
    auto *const make =
        vga_library_function<Pixmap(Display *, Drawable, unsigned, unsigned, unsigned)>(
            "XCreatePixmap");
    const Pixmap made = make != nullptr ? make(display, drawable, width, height, depth) : None;
    if (display == known_display && made != None) {
        pixmaps()[made] = {width, height, depth};
    }
    return made;
}

extern "C" int XFreePixmap(Display *display, Pixmap pixmap) {
    if (display == known_display) {
        pixmaps().erase(pixmap);
    }
    return vga_ask_library("XFreePixmap", display, pixmap);
}

extern "C" Status XGetGeometry(Display *display, Drawable drawable, Window *root, int *x, int *y,
                               unsigned *width, unsigned *height, unsigned *border,
                               unsigned *depth) {
    if (display == known_display && ScreenCount(display) == 1) {
        const auto found = pixmaps().find(drawable);
        if (found != pixmaps().end()) {
            *root = DefaultRootWindow(display);
            *x = *y = 0;
            *width = found->second.width;
            *height = found->second.height;
            *depth = found->second.depth;
            *border = 0;
            return 1;
        }
    }
    return vga_ask_library("XGetGeometry", display, drawable, root, x, y, width, height, border,
                           depth);
}

extern "C" int XGetInputFocus(Display *display, Window *window, int *revert) {
    if (display != known_display) {
        return vga_ask_library("XGetInputFocus", display, window, revert);
    }
    if (!focus.known) {
        vga_ask_library("XGetInputFocus", display, &focus.window, &focus.revert);
        focus.known = true;
    }
    *window = focus.window;
    *revert = focus.revert;
    return 1;
}

extern "C" int XSetInputFocus(Display *display, Window window, int revert, Time time) {
    focus.known = false;
    return vga_ask_library("XSetInputFocus", display, window, revert, time);
}

extern "C" int XGrabServer(Display *display) {
    server = sparing ? GRABBED : FREE;
    return vga_ask_library("XGrabServer", display);
}

extern "C" int XUngrabServer(Display *display) {
    server = sparing ? LET_GO : FREE;
    return vga_ask_library("XUngrabServer", display);
}

extern "C" int XSync(Display *display, Bool discard) {
    const bool in_order = server != FREE && !discard;
    server = server == LET_GO ? FREE : server;
    return in_order ? vga_ask_library("XFlush", display)
                    : vga_ask_library("XSync", display, discard);
}

extern "C" XmVisibility XmGetVisibility(Widget widget) {
    if (!sparing) {
        auto *const ask = vga_library_function<XmVisibility(Widget)>("XmGetVisibility");
        return ask != nullptr ? ask(widget) : XmVISIBILITY_UNOBSCURED;
    }
    if (widget == nullptr || !XtIsRectObj(widget) || !can_be_seen(widget)) {
        return XmVISIBILITY_FULLY_OBSCURED;
    }
    const AREA whole = {0, 0, widget->core.width, widget->core.height};
    AREA seen = whole;
    int x = 0, y = 0;
    for (Widget at = widget; !XtIsShell(at); at = XtParent(at)) {
        if (!can_be_seen(XtParent(at))) {
            return XmVISIBILITY_FULLY_OBSCURED;
        }
        shift(seen, at);
        x += at->core.x + at->core.border_width;
        y += at->core.y + at->core.border_width;
        clip(seen, XtParent(at));
        if (seen.left >= seen.right || seen.top >= seen.bottom) {
            return XmVISIBILITY_FULLY_OBSCURED;
        }
    }
    const bool all = seen.left == x && seen.top == y && seen.right == x + whole.right &&
                     seen.bottom == y + whole.bottom;
    return all ? XmVISIBILITY_UNOBSCURED : XmVISIBILITY_PARTIALLY_OBSCURED;
}
