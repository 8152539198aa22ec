#include "receipt.h"
#include "textwindow.h"
#include <Xm/Text.h>

namespace {

constexpr NB_CHAR description[] = "receipt";
NB_CHAR rule[] = "\n----------------------------------------\n\n";

/* Under what is still being read; the new account is then in sight, from its beginning. */
NB_VOID put_text(const VGA_TEXT_WINDOW &window, const NB_CHAR *text) {
    if (XtIsManaged(window.box) == 0) {
        XmTextSetString(window.text, const_cast<NB_CHAR *>(""));
    } else {
        XmTextInsert(window.text, XmTextGetLastPosition(window.text), rule);
    }
    const XmTextPosition begin = XmTextGetLastPosition(window.text);
    XmTextInsert(window.text, begin, const_cast<NB_CHAR *>(text));
    XmTextShowPosition(window.text, XmTextGetLastPosition(window.text));
    XmTextShowPosition(window.text, begin);
}

} // namespace

NB_VOID vga_show_receipt(VGA_DIALOG *desc, const NB_CHAR *title, const NB_CHAR *text,
                         const NB_CHAR *help_key) {
    if (const VGA_TEXT_WINDOW *window = vga_text_window(desc, description)) {
        put_text(*window, text);
        vga_show_text_window(*window, title, help_key);
    }
}
