#include "hints.h"
#include "filtercallbacks.h"
#include "holders.h"
#include "messagebox.h"
#include "messages.h"
#include "tooltips.h"
#include "verbqueue.h"
#include "wraptext.h"
#include <Xm/Gadget.h>
#include <Xm/Label.h>
#include <Xm/Manager.h>
#include <Xm/MenuShell.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <algorithm>
#include <string>
#include <unordered_map>

namespace {

constexpr NB_USHORT tip_columns = 60;

struct HINT {
    std::string hint;
    std::string reason;
};

struct LINE {
    Widget line = nullptr;
    Widget focus = nullptr; /* has the keyboard */
    std::string shown;      /* ours, or empty */
    std::string before;     /* what the line held then */
};

std::unordered_map<Widget, HINT> hints;
std::unordered_map<Widget, LINE> lines; /* by the window's shell */
Widget pointed_at;                      /* the insensitive widget under the pointer, or null */

/* The window's; a menu's own belongs to it. */
Widget shell_of(Widget widget) {
    while (!XtIsShell(widget) || XmIsMenuShell(widget)) {
        widget = XtParent(widget);
    }
    return widget;
}

/* What there is to show. */

/* Looks at the widget and those around it, as long as they are insensitive or `sensitive_too`. */
const std::string *nearest(Widget widget, std::string HINT::*member, bool sensitive_too) {
    for (; widget != nullptr && !XtIsShell(widget); widget = XtParent(widget)) {
        const auto found = hints.find(widget);
        if (!sensitive_too && XtIsSensitive(widget)) {
            return nullptr;
        }
        if (found != hints.end() && !(found->second.*member).empty()) {
            return &(found->second.*member);
        }
    }
    return nullptr;
}

const std::string &shown_for(Widget widget) {
    static const std::string nothing;
    const std::string *text = nearest(widget, &HINT::reason, false);
    if (text == nullptr) {
        text = nearest(widget, &HINT::hint, true);
    }
    return text != nullptr ? *text : nothing;
}

/* The message line. */

std::string line_text(Widget line) {
    if (!XmIsLabel(line)) {
        return VGA_TEXT(XmTextGetString(line)).get();
    }
    XmString string = nullptr;
    XtVaGetValues(line, XmNlabelString, &string, nullptr);
    const VGA_STRING owned(string);
    return VGA_TEXT(
               static_cast<NB_CHAR *>(XmStringUnparse(string, nullptr, XmCHARSET_TEXT,
                                                      XmMULTIBYTE_TEXT, nullptr, 0, XmOUTPUT_ALL)))
        .get();
}

/* What a label does with a text: it breaks none by itself. */
struct WRAPPING {
    XmRenderTable fonts = nullptr;
    NB_INT width = 0;  /* for the text, in pixels */
    NB_INT around = 0; /* of its height, what is not text */

    explicit WRAPPING(Widget label) {
        Dimension whole = 0, margin = 0, left = 0, right = 0, top = 0, bottom = 0, high = 0,
                  shadow = 0, highlight = 0;
        XtVaGetValues(label, XmNrenderTable, &fonts, XmNwidth, &whole, XmNmarginWidth, &margin,
                      XmNmarginLeft, &left, XmNmarginRight, &right, XmNmarginHeight, &high,
                      XmNmarginTop, &top, XmNmarginBottom, &bottom, XmNshadowThickness, &shadow,
                      XmNhighlightThickness, &highlight, nullptr);
        const NB_INT edges = 2 * (shadow + highlight);
        width = whole - 2 * margin - left - right - edges;
        around = 2 * high + top + bottom + edges;
    }

    NB_INT width_of(const std::string &text) const {
        const VGA_STRING string(text.c_str());
        return XmStringWidth(fonts, string.get());
    }

    /* The text in lines that fit, unless a word alone does not.  The blank at which a line is
     * broken stays at its end, so that the text reads as it was when it is asked for. */
    std::string broken(const std::string &text) const {
        std::string out, line;
        for (size_t at = 0; at < text.size();) {
            const size_t blank = std::min(text.find(' ', at), text.size() - 1);
            const std::string word = text.substr(at, blank + 1 - at);
            if (!line.empty() && width_of(line + word.substr(0, word.find(' '))) > width) {
                out += line + "\n";
                line.clear();
            }
            line += word;
            at = blank + 1;
        }
        return out + line;
    }
};

XmString make_lines(const std::string &text) {
    return XmStringCreateLtoR(const_cast<NB_CHAR *>(text.c_str()),
                              const_cast<NB_CHAR *>(XmFONTLIST_DEFAULT_TAG));
}

NB_VOID set_line_text(Widget line, const std::string &text) {
    if (XmIsLabel(line)) {
        const VGA_STRING string(make_lines(WRAPPING(line).broken(text)));
        XtVaSetValues(line, XmNlabelString, string.get(), nullptr);
    } else {
        vga_fill_field(line, text.c_str());
    }
}

/* As wide as what stands beside it in the dialog, where that is known before the line is. */
NB_VOID widen_line(Widget line) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    Dimension width = 0;
    XtVaGetValues(line, XmNwidth, &width, nullptr);
    XtVaGetValues(XtParent(line), XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal ii = 0; ii < count; ii++) {
        XtWidgetGeometry wanted = {};
        if (children[ii] != line && XtIsManaged(children[ii])) {
            XtQueryGeometry(children[ii], nullptr, &wanted);
            width = std::max(width, wanted.width);
        }
    }
    XtVaSetValues(line, XmNwidth, width, nullptr);
}

/* Makes the line high enough for a text; it never gets lower, or the dialog would jump. */
NB_VOID reserve(Widget line, std::string text) {
    if (!XmIsLabel(line) || text.empty()) {
        return;
    }
    std::replace(text.begin(), text.end(), '\n', ' ');
    const WRAPPING wrapping(line);
    const VGA_STRING string(make_lines(wrapping.broken(text)));
    const NB_INT wanted = XmStringHeight(wrapping.fonts, string.get()) + wrapping.around;
    Dimension height = 0;
    XtVaGetValues(line, XmNheight, &height, nullptr);
    if (wanted > height) {
        XtVaSetValues(line, XmNheight, static_cast<Dimension>(wanted), nullptr);
    }
}

/* A window's line belongs to whoever wrote into it last: it is taken over from them, and given back
 * only while it still shows what was put there. */
NB_VOID refresh_line(Widget shell) {
    const auto found = lines.find(shell);
    if (found == lines.end()) {
        return;
    }
    LINE &line = found->second;
    const bool pointer_here = pointed_at != nullptr && shell_of(pointed_at) == shell;
    if (!pointer_here && line.focus == nullptr && line.shown.empty()) {
        return;
    }
    std::string wanted = shown_for(pointer_here ? pointed_at : line.focus);
    std::replace(wanted.begin(), wanted.end(), '\n', ' ');
    const std::string now = line_text(line.line);
    const bool ours = !line.shown.empty() && now == line.shown;
    if (!ours) {
        line.before = now;
    }
    if (!wanted.empty() && wanted != now) {
        set_line_text(line.line, wanted);
    } else if (wanted.empty() && ours) {
        set_line_text(line.line, line.before);
    }
    line.shown = wanted;
}

NB_VOID focus_changed(Widget widget, XtPointer, XEvent *event, Boolean *) {
    Widget shell = shell_of(widget);
    const auto found = lines.find(shell);
    if (found == lines.end()) {
        return;
    }
    if (event->type == FocusIn) {
        found->second.focus = widget;
    } else if (found->second.focus == widget) {
        found->second.focus = nullptr;
    }
    refresh_line(shell);
}

/* The pointer.  The toolkit hands no event to an insensitive widget, but the server sends them all:
 * they are looked at on their way in. */

struct DISPATCHERS {
    Display *display;
    XtEventDispatchProc enter;
    XtEventDispatchProc leave;
    XtEventDispatchProc motion;
};
DISPATCHERS next;

NB_VOID point_at(Widget widget) {
    if (widget == pointed_at) {
        return;
    }
    Widget left = pointed_at;
    pointed_at = widget;
    vga_hide_tip();
    if (left != nullptr) {
        refresh_line(shell_of(left));
    }
    if (widget != nullptr) {
        const NB_CHAR *text = shown_for(widget).c_str();
        const VGA_OWNED<NB_CHAR> lines(vga_wrap_text(text, tip_columns));
        vga_show_tip(widget, lines != nullptr ? lines.get() : text);
        refresh_line(shell_of(widget));
    }
}

/* A gadget has no window: it is found by its place in the manager's. */
Widget gadget_at(Widget manager, NB_INT x, NB_INT y) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(manager, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal ii = 0; ii < count; ii++) {
        if (!XmIsGadget(children[ii]) || !XtIsManaged(children[ii])) {
            continue;
        }
        Position left = 0;
        Position top = 0;
        Dimension width = 0;
        Dimension height = 0;
        XtVaGetValues(children[ii], XmNx, &left, XmNy, &top, XmNwidth, &width, XmNheight, &height,
                      nullptr);
        if (x >= left && x < left + width && y >= top && y < top + height) {
            return children[ii];
        }
    }
    return manager;
}

NB_VOID pointer_is_at(Display *display, Window window, NB_INT x, NB_INT y) {
    Widget widget = XtWindowToWidget(display, window);
    if (widget != nullptr && XmIsManager(widget)) {
        widget = gadget_at(widget, x, y);
    }
    const bool off = widget != nullptr && !XtIsSensitive(widget) && !shown_for(widget).empty();
    point_at(off ? widget : nullptr);
}

Boolean enter(XEvent *event) {
    const XCrossingEvent &at = event->xcrossing;
    pointer_is_at(at.display, at.window, at.x, at.y);
    return next.enter(event);
}

Boolean leave(XEvent *event) {
    if (event->xcrossing.detail != NotifyInferior) {
        point_at(nullptr);
    }
    return next.leave(event);
}

Boolean motion(XEvent *event) {
    const XMotionEvent &at = event->xmotion;
    pointer_is_at(at.display, at.window, at.x, at.y);
    return next.motion(event);
}

NB_VOID watch_pointer(Display *display) {
    if (next.display != display) {
        next = {display, XtSetEventDispatcher(display, EnterNotify, enter),
                XtSetEventDispatcher(display, LeaveNotify, leave),
                XtSetEventDispatcher(display, MotionNotify, motion)};
    }
}

/* Only makes the server send the events. */
NB_VOID nothing_to_do(Widget, XtPointer, XEvent *, Boolean *) {}

/* The widgets. */

NB_VOID forget(Widget widget, XtPointer, XtPointer) {
    hints.erase(widget);
    if (pointed_at == widget) {
        vga_hide_tip();
        pointed_at = nullptr;
    }
    for (auto &[shell, line] : lines) {
        if (line.focus == widget) {
            line.focus = nullptr;
        }
    }
}

/* The text is broken where the line ends now. */
NB_VOID line_resized(Widget line, XtPointer, XEvent *event, Boolean *) {
    if (event->type == ConfigureNotify) {
        set_line_text(line, line_text(line));
    }
}

NB_VOID forget_line(Widget line, XtPointer, XtPointer) {
    std::erase_if(lines, [line](const auto &entry) { return entry.second.line == line; });
}

NB_VOID watch(Widget widget) {
    constexpr EventMask pointer = EnterWindowMask | LeaveWindowMask | PointerMotionMask;
    XtRemoveCallback(widget, XmNdestroyCallback, forget, nullptr); /* once */
    XtAddCallback(widget, XmNdestroyCallback, forget, nullptr);
    XtAddEventHandler(XtIsWidget(widget) ? widget : XtParent(widget), pointer, False, nothing_to_do,
                      nullptr);
    if (XtIsWidget(widget)) {
        XtAddEventHandler(widget, FocusChangeMask, False, focus_changed, nullptr);
    }
}

/* The parts of a compound control have the keyboard and the pointer in its place. */
template <typename VISIT> NB_VOID for_each_part(Widget widget, const VISIT &visit) {
    visit(widget);
    if (!XtIsComposite(widget)) {
        return;
    }
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    for (Cardinal ii = 0; ii < count; ii++) {
        if (!XtIsShell(children[ii]) && !hints.contains(children[ii])) {
            for_each_part(children[ii], visit);
        }
    }
}

NB_VOID set_tip(Widget widget, const std::string &text) {
    if (XtIsComposite(widget)) {
        return;
    }
    const VGA_STRING string(text.c_str());
    XtVaSetValues(widget, XmNtoolTipString, text.empty() ? nullptr : string.get(), nullptr);
}

NB_VOID set_member(Widget widget, std::string HINT::*member, const NB_CHAR *text) {
    if (widget == nullptr) {
        return;
    }
    /* Reasons change with every selection: what needs no repetition would make that slow. */
    if (!hints.contains(widget)) {
        watch_pointer(XtDisplayOfObject(widget));
        vga_enable_tips(widget);
        for_each_part(widget, watch);
    }
    hints[widget].*member = text != nullptr ? text : "";
    if (member == &HINT::hint) {
        for_each_part(widget, [widget](Widget part) { set_tip(part, hints[widget].hint); });
    }
    Widget shell = shell_of(widget);
    if (const auto line = lines.find(shell); line != lines.end()) {
        reserve(line->second.line, hints[widget].*member);
    }
    refresh_line(shell);
}

} // namespace

NB_VOID vga_set_field_hint(Widget widget, NB_USHORT message) {
    vga_set_field_hint_text(widget, vga_message(message));
}

NB_VOID vga_set_field_hint_text(Widget widget, const NB_CHAR *text) {
    set_member(widget, &HINT::hint, text);
}

NB_VOID vga_set_reason(Widget widget, NB_USHORT message) {
    vga_set_reason_text(widget, vga_message(message));
}

NB_VOID vga_set_reason_text(Widget widget, const NB_CHAR *text) {
    set_member(widget, &HINT::reason, text);
}

NB_VOID vga_set_hint_line(Widget top, Widget line) {
    Widget shell = shell_of(top);
    lines.erase(shell);
    if (line != nullptr) {
        lines[shell].line = line;
        XtRemoveCallback(line, XmNdestroyCallback, forget_line, nullptr); /* once */
        XtAddCallback(line, XmNdestroyCallback, forget_line, nullptr);
        if (XmIsLabel(line)) {
            XtRemoveEventHandler(line, StructureNotifyMask, False, line_resized,
                                 nullptr); /* once */
            XtAddEventHandler(line, StructureNotifyMask, False, line_resized, nullptr);
        }
        vga_reserve_hint_line(top);
    }
}

NB_VOID vga_reserve_hint_line(Widget top) {
    Widget shell = shell_of(top);
    const auto found = lines.find(shell);
    if (found == lines.end() || !XmIsLabel(found->second.line)) {
        return;
    }
    widen_line(found->second.line);
    for (const auto &[widget, texts] : hints) {
        if (shell_of(widget) == shell) {
            reserve(found->second.line, texts.hint);
            reserve(found->second.line, texts.reason);
        }
    }
}

NB_VOID vga_set_line_text(Widget line, const NB_CHAR *text) {
    if (line != nullptr) {
        reserve(line, text);
        set_line_text(line, text);
    }
}

const NB_CHAR *vga_shown_hint(Widget widget) {
    return shown_for(widget).c_str();
}
