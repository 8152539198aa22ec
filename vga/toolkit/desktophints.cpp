#include "desktophints.h"
#include "toolkit.h"
#include "windowicon.h"
#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <Xm/Protocols.h>
#include <Xm/VendorS.h>
#include <cstring>
#include <cwchar>
#include <unistd.h>

namespace {

/* In the order of atom_names.  The last two are for the conversion of titles, which would ask the
 * server for each of them otherwise. */
enum ATOM_ID {
    NET_WM_NAME,
    NET_WM_ICON_NAME,
    NET_WM_PID,
    NET_WM_PING,
    NET_WM_ICON,
    NET_WM_WINDOW_TYPE,
    NET_WM_WINDOW_TYPE_NORMAL,
    NET_WM_WINDOW_TYPE_DIALOG,
    NET_WM_STATE,
    NET_WM_STATE_DEMANDS_ATTENTION,
    UTF8_STRING,
    COMPOUND_TEXT,
    ATOM_COUNT
};

const NB_CHAR *const atom_names[ATOM_COUNT] = {
    "_NET_WM_NAME",
    "_NET_WM_ICON_NAME",
    "_NET_WM_PID",
    "_NET_WM_PING",
    "_NET_WM_ICON",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_NORMAL",
    "_NET_WM_WINDOW_TYPE_DIALOG",
    "_NET_WM_STATE",
    "_NET_WM_STATE_DEMANDS_ATTENTION",
    "UTF8_STRING",
    "COMPOUND_TEXT",
};

Atom atoms[ATOM_COUNT];
Display *watched;

/* Characters. */

NB_VOID add_utf8(std::string &out, NB_ULONG code) {
    static const struct {
        NB_ULONG below;
        NB_UCHAR mark;
    } forms[] = {{0x80, 0}, {0x800, 0xC0}, {0x10000, 0xE0}, {0x110000, 0xF0}};
    NB_USHORT more = 0; /* bytes behind the first, six bits each */
    while (more < std::size(forms) - 1 && code >= forms[more].below) {
        more++;
    }
    out += static_cast<NB_CHAR>(forms[more].mark | code >> (6 * more));
    while (more-- > 0) {
        out += static_cast<NB_CHAR>(0x80 | (code >> (6 * more) & 0x3F));
    }
}

/* A title in the encoding that stands beside it in the shell; none means the locale's. */
std::string utf8_from_title(const NB_CHAR *title, Atom encoding) {
    if (encoding == None) {
        return vga_utf8_from_locale(title);
    }
    XTextProperty property = {reinterpret_cast<unsigned char *>(const_cast<NB_CHAR *>(title)),
                              encoding, 8, strlen(title)};
    NB_CHAR **list = nullptr;
    NB_INT count = 0;
    std::string text;
    if (Xutf8TextPropertyToTextList(gvga_display, &property, &list, &count) >= Success &&
        count > 0) {
        text = list[0];
    }
    XFreeStringList(list);
    return text;
}

/* Properties. */

NB_VOID set_property(Widget shell, Atom property, Atom type, NB_INT format, const NB_VOID *data,
                     size_t count) {
    XChangeProperty(XtDisplay(shell), XtWindow(shell), property, type, format, PropModeReplace,
                    static_cast<const unsigned char *>(data), static_cast<NB_INT>(count));
}

NB_VOID set_text(Widget shell, ATOM_ID property, const std::string &text) {
    set_property(shell, atoms[property], atoms[UTF8_STRING], 8, text.data(), text.size());
}

/* Without a name of its own an icon has the window's: only top-level shells have such a resource.
 */
NB_VOID set_names(Widget shell) {
    const NB_CHAR *title = nullptr;
    const NB_CHAR *icon_name = nullptr;
    Atom encoding = None;
    Atom icon_encoding = None;
    XtVaGetValues(shell, XtNtitle, &title, XtNtitleEncoding, &encoding, nullptr);
    if (XtIsTopLevelShell(shell)) {
        XtVaGetValues(shell, XtNiconName, &icon_name, XtNiconNameEncoding, &icon_encoding, nullptr);
    }
    const std::string text = title != nullptr ? utf8_from_title(title, encoding) : "";
    set_text(shell, NET_WM_NAME, text);
    set_text(shell, NET_WM_ICON_NAME,
             icon_name != nullptr ? utf8_from_title(icon_name, icon_encoding) : text);
}

NB_VOID set_process(Widget shell) {
    NB_CHAR host[256] = "";
    gethostname(host, sizeof(host) - 1);
    set_property(shell, XA_WM_CLIENT_MACHINE, XA_STRING, 8, host, strlen(host));
    const long pid = getpid();
    set_property(shell, atoms[NET_WM_PID], XA_CARDINAL, 32, &pid, 1);
}

NB_VOID set_type(Widget shell) {
    const Atom type =
        atoms[XtIsTransientShell(shell) ? NET_WM_WINDOW_TYPE_DIALOG : NET_WM_WINDOW_TYPE_NORMAL];
    set_property(shell, atoms[NET_WM_WINDOW_TYPE], XA_ATOM, 32, &type, 1);
}

/* The same message goes back, to the root window. */
NB_VOID answer_ping(Widget shell, XtPointer, XtPointer call_data) {
    const auto *call = static_cast<const XmAnyCallbackStruct *>(call_data);
    if (call == nullptr || call->event == nullptr || call->event->type != ClientMessage) {
        return;
    }
    XEvent answer = *call->event;
    answer.xclient.window = RootWindowOfScreen(XtScreen(shell));
    XSendEvent(XtDisplay(shell), answer.xclient.window, False,
               SubstructureNotifyMask | SubstructureRedirectMask, &answer);
}

/* What the toolkit tells. */

NB_VOID shell_realized(Widget shell) {
    set_names(shell);
    set_process(shell);
    set_type(shell);
    set_property(shell, atoms[NET_WM_ICON], XA_CARDINAL, 32, gvga_window_icon,
                 std::size(gvga_window_icon));
    XmAddWMProtocolCallback(shell, atoms[NET_WM_PING], answer_ping, nullptr);
}

NB_USHORT names_changed(const XtChangeHookSetValuesDataRec &change) {
    for (Cardinal at = 0; at < change.num_args; at++) {
        for (const NB_CHAR *name : {XtNtitle, XtNiconName}) {
            if (strcmp(change.args[at].name, name) == 0) {
                return 1;
            }
        }
    }
    return 0;
}

/* Menus and the like have shells that no window manager sees; those are no vendor shells. */
NB_VOID widget_changed(Widget, XtPointer, XtPointer call_data) {
    const auto *change = static_cast<const XtChangeHookDataRec *>(call_data);
    Widget widget = change->widget;
    if (widget == nullptr || !XtIsVendorShell(widget) || !XtIsRealized(widget)) {
        return;
    }
    if (strcmp(change->type, XtHrealizeWidget) == 0) {
        shell_realized(widget);
    } else if (strcmp(change->type, XtHsetValues) == 0 &&
               names_changed(
                   *static_cast<const XtChangeHookSetValuesDataRec *>(change->event_data))) {
        set_names(widget);
    }
}

} // namespace

NB_VOID vga_watch_shells(NB_VOID) {
    if (gvga_display == nullptr || watched == gvga_display) {
        return;
    }
    watched = gvga_display;
    XInternAtoms(gvga_display, const_cast<NB_CHAR **>(atom_names), ATOM_COUNT, False, atoms);
    XtAddCallback(XtHooksOfDisplay(gvga_display), XtNchangeHook, widget_changed, nullptr);
}

NB_VOID vga_set_urgent(Widget shell, NB_USHORT on) {
    if (!XtIsRealized(shell) || watched != XtDisplay(shell)) {
        return;
    }
    XWMHints *hints = XGetWMHints(XtDisplay(shell), XtWindow(shell));
    hints = hints != nullptr ? hints : XAllocWMHints();
    hints->flags = on != 0 ? hints->flags | XUrgencyHint : hints->flags & ~XUrgencyHint;
    XSetWMHints(XtDisplay(shell), XtWindow(shell), hints);
    XFree(hints);
    XEvent request = {};
    request.xclient.type = ClientMessage;
    request.xclient.window = XtWindow(shell);
    request.xclient.message_type = atoms[NET_WM_STATE];
    request.xclient.format = 32;
    request.xclient.data.l[0] = on != 0; /* add or remove */
    request.xclient.data.l[1] = static_cast<long>(atoms[NET_WM_STATE_DEMANDS_ATTENTION]);
    request.xclient.data.l[3] = 1; /* from an application */
    XSendEvent(XtDisplay(shell), RootWindowOfScreen(XtScreen(shell)), False,
               SubstructureNotifyMask | SubstructureRedirectMask, &request);
}

std::string vga_utf8_from_locale(const NB_CHAR *text) {
    constexpr NB_ULONG replacement = 0xFFFD;
    std::string out;
    mbstate_t state{};
    for (const NB_CHAR *end = text + strlen(text); text < end;) {
        wchar_t character = 0;
        size_t bytes = mbrtowc(&character, text, static_cast<size_t>(end - text), &state);
        NB_ULONG code = static_cast<NB_ULONG>(character);
        if (bytes == 0 || bytes > static_cast<size_t>(end - text)) {
            bytes = 1;
            code = replacement;
            state = mbstate_t{};
        }
        add_utf8(out, code);
        text += bytes;
    }
    return out;
}
