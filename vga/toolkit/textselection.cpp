#include "textselection.h"
#include "desktophints.h"
#include <X11/Xatom.h>
#include <cstring>

namespace {

std::string owned; /* in UTF-8 */

Atom atom(Widget widget, const NB_CHAR *name) {
    return XInternAtom(XtDisplay(widget), name, False);
}

/* The toolkit frees what it is given. */
XtPointer copy(const NB_VOID *bytes, size_t length) {
    auto *memory = XtMalloc(static_cast<Cardinal>(length + 1));
    memcpy(memory, bytes, length);
    return memory;
}

Boolean convert(Widget widget, Atom *, Atom *target, Atom *type, XtPointer *value,
                unsigned long *length, int *format) {
    const Atom utf8 = atom(widget, "UTF8_STRING");
    const Atom text = atom(widget, "TEXT");
    if (*target == atom(widget, "TARGETS")) {
        const Atom targets[] = {*target, utf8, text, XA_STRING};
        *type = XA_ATOM;
        *value = copy(targets, sizeof(targets));
        *length = XtNumber(targets);
        *format = 32;
        return True;
    }
    if (*target != utf8 && *target != text && *target != XA_STRING) {
        return False;
    }
    *type = *target == XA_STRING ? XA_STRING : utf8;
    *value = copy(owned.data(), owned.size());
    *length = owned.size();
    *format = 8;
    return True;
}

} // namespace

NB_USHORT vga_own_text(Widget widget, const std::string &text) {
    owned = vga_utf8_from_locale(text.c_str());
    const Time now = XtLastTimestampProcessed(XtDisplay(widget));
    NB_USHORT done = 1;
    for (const Atom selection : {XA_PRIMARY, atom(widget, "CLIPBOARD")}) {
        done = done && XtOwnSelection(widget, selection, now, convert, nullptr, nullptr) != 0;
    }
    return done;
}
