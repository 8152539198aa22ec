/* Holders for what the toolkit hands out, so that nothing is leaked on any path. */
#ifndef HOLDERS_H
#define HOLDERS_H

#include "nbtypes.h"
#include <Xm/Text.h>
#include <Xm/Xm.h>
#include <utility>

/* A compound string. */
class VGA_STRING {
public:
    explicit VGA_STRING(const NB_CHAR *text)
        : string(XmStringCreateLocalized(const_cast<NB_CHAR *>(text))) {}
    explicit VGA_STRING(XmString owned) : string(owned) {}
    VGA_STRING(const VGA_STRING &) = delete;
    VGA_STRING &operator=(const VGA_STRING &) = delete;
    VGA_STRING(VGA_STRING &&other) noexcept : string(std::exchange(other.string, nullptr)) {}
    ~VGA_STRING() {
        if (string != nullptr) {
            XmStringFree(string);
        }
    }
    XmString get() const { return string; }
    XmString release() { return std::exchange(string, nullptr); }

private:
    XmString string;
};

/* Text that came from the toolkit and goes back with XtFree; never null. */
class VGA_TEXT {
public:
    explicit VGA_TEXT(NB_CHAR *owned) : text(owned) {}
    VGA_TEXT(const VGA_TEXT &) = delete;
    VGA_TEXT &operator=(const VGA_TEXT &) = delete;
    ~VGA_TEXT() { XtFree(text); }
    const NB_CHAR *get() const { return text != nullptr ? text : ""; }

private:
    NB_CHAR *text;
};

/* Discards the toolkit's warnings while it lives. */
NB_VOID vga_no_warning(String message);

class VGA_NO_WARNINGS {
public:
    VGA_NO_WARNINGS();
    VGA_NO_WARNINGS(const VGA_NO_WARNINGS &) = delete;
    VGA_NO_WARNINGS &operator=(const VGA_NO_WARNINGS &) = delete;
    ~VGA_NO_WARNINGS();

private:
    XtErrorHandler previous;
};

#endif
