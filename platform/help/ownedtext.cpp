#include "ownedtext.h"

#include <X11/Xatom.h>
#include <cstring>
#include <map>
#include <utility>

namespace help {

namespace {

std::map<std::pair<Widget, Atom>, std::string> owned;

Atom atom(Widget widget, const char *name) {
    return XInternAtom(XtDisplay(widget), name, False);
}

/* The toolkit frees what it is given. */
XtPointer copy(const void *bytes, size_t length) {
    char *memory = XtMalloc(static_cast<Cardinal>(length + 1));
    std::memcpy(memory, bytes, length);
    return memory;
}

Boolean convert(Widget widget, Atom *selection, Atom *target, Atom *type, XtPointer *value,
                unsigned long *length, int *format) {
    const Atom utf8 = atom(widget, "UTF8_STRING");
    const auto found = owned.find({widget, *selection});
    if (found == owned.end()) {
        return False;
    }
    if (*target == atom(widget, "TARGETS")) {
        const Atom targets[] = {*target, utf8, XA_STRING};
        *type = XA_ATOM;
        *value = copy(targets, sizeof(targets));
        *length = XtNumber(targets);
        *format = 32;
        return True;
    }
    if (*target != utf8 && *target != XA_STRING) {
        return False;
    }
    *type = *target;
    *value = copy(found->second.data(), found->second.size());
    *length = found->second.size();
    *format = 8;
    return True;
}

} // namespace

void own_text(Widget widget, const char *selection, const std::string &text) {
    const Atom name = atom(widget, selection);
    const Time now = XtLastTimestampProcessed(XtDisplay(widget));
    if (XtOwnSelection(widget, name, now, convert, nullptr, nullptr)) {
        owned[{widget, name}] = text;
    }
}

void forget_text(Widget widget) {
    std::erase_if(owned, [widget](const auto &one) { return one.first.first == widget; });
}

} // namespace help
