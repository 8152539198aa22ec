#include "textselection.h"
#include "desktophints.h"
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <cstring>

namespace {

/* What is offered as a selection; without a maker nothing is. */
struct SOURCE {
    Widget widget = nullptr;
    std::function<std::string()> make;
    bool live = false; /* it is made anew each time */
};
SOURCE primary, clipboard;

Atom atom(Widget widget, const NB_CHAR *name) {
    return XInternAtom(XtDisplay(widget), name, False);
}

SOURCE &source_of(Atom selection) {
    return selection == XA_PRIMARY ? primary : clipboard;
}

/* The toolkit frees what it is given. */
XtPointer copy(const NB_VOID *bytes, size_t length) {
    auto *memory = XtMalloc(static_cast<Cardinal>(length + 1));
    memcpy(memory, bytes, length);
    return memory;
}

/* A UTF-8 text in an encoding of old; what it does not have is left out or replaced. */
bool encode(Widget widget, std::string &text, XICCEncodingStyle style, Atom *type) {
    NB_CHAR *list[] = {text.data()};
    XTextProperty property = {};
    if (Xutf8TextListToTextProperty(XtDisplay(widget), list, 1, style, &property) < 0) {
        return false;
    }
    text.assign(reinterpret_cast<NB_CHAR *>(property.value), property.nitems);
    *type = property.encoding;
    XFree(property.value);
    return true;
}

Boolean convert(Widget widget, Atom *selection, Atom *target, Atom *type, XtPointer *value,
                unsigned long *length, int *format) {
    const SOURCE &source = source_of(*selection);
    const Atom utf8 = atom(widget, "UTF8_STRING");
    const Atom text = atom(widget, "TEXT");
    const Atom compound = atom(widget, "COMPOUND_TEXT");
    if (*target == atom(widget, "TARGETS")) {
        const Atom targets[] = {*target, utf8, text, compound, XA_STRING};
        *type = XA_ATOM;
        *value = copy(targets, sizeof(targets));
        *length = XtNumber(targets);
        *format = 32;
        return True;
    }
    const bool old = *target == XA_STRING || *target == compound;
    if ((*target != utf8 && *target != text && !old) || !source.make) {
        return False;
    }
    std::string made = vga_utf8_from_locale(source.make().c_str());
    *type = utf8;
    if (made.empty()) {
        return False;
    }
    if (old &&
        !encode(widget, made, *target == compound ? XCompoundTextStyle : XStringStyle, type)) {
        return False;
    }
    *value = copy(made.data(), made.size());
    *length = made.size();
    *format = 8;
    return True;
}

NB_VOID lost(Widget widget, Atom *selection) {
    if (source_of(*selection).widget == widget) {
        source_of(*selection) = {};
    }
}

NB_USHORT own(Widget widget, Atom selection, const SOURCE &source) {
    const Time now = XtLastTimestampProcessed(XtDisplay(widget));
    if (XtOwnSelection(widget, selection, now, convert, lost, nullptr) == 0) {
        return 0;
    }
    source_of(selection) = source; // behind what the last owner lost
    return 1;
}

} // namespace

NB_USHORT vga_own_clipboard(Widget widget, const std::string &text) {
    return own(widget, atom(widget, "CLIPBOARD"), {widget, [text] { return text; }, false});
}

NB_USHORT vga_own_text(Widget widget, const std::string &text) {
    const NB_USHORT done = own(widget, XA_PRIMARY, {widget, [text] { return text; }, false});
    return vga_own_clipboard(widget, text) != 0 && done != 0;
}

NB_VOID vga_offer_text(Widget widget, const std::function<std::string()> &make) {
    if (primary.widget != widget || !primary.live) {
        own(widget, XA_PRIMARY, {widget, make, true});
    }
}

NB_VOID vga_withdraw_text(Widget widget) {
    if (primary.widget == widget && primary.live) {
        primary = {};
        XtDisownSelection(widget, XA_PRIMARY, XtLastTimestampProcessed(XtDisplay(widget)));
    }
}
