#include "passwordfield.h"
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <unordered_map>

namespace {

std::unordered_map<Widget, std::string> typed;

NB_VOID wipe(std::string &text) {
    explicit_bzero(text.data(), text.size());
    text.clear();
}

/* Passwords are single bytes (the filters see to it), so positions are indexes.  The room is taken
 * at once: a string that grows leaves its old bytes behind. */
NB_VOID keep_cb(Widget field, XtPointer, XtPointer data) {
    auto *change = static_cast<XmTextVerifyCallbackStruct *>(data);
    if (!change->doit) {
        return;
    }
    std::string &text = typed[field];
    const auto start = std::min(static_cast<size_t>(change->startPos), text.size());
    const auto end = std::min(static_cast<size_t>(change->endPos), text.size());
    std::fill(text.begin() + start, text.begin() + end, '\0');
    text.replace(start, end - start, change->text->ptr != nullptr ? change->text->ptr : "",
                 static_cast<size_t>(change->text->length));
    std::fill_n(change->text->ptr, change->text->length, '*');
    if (text.empty()) {
        wipe(text);
    }
}

NB_VOID forget_cb(Widget field, XtPointer, XtPointer) {
    wipe(typed[field]);
    typed.erase(field);
}

} // namespace

NB_VOID vga_make_password_field(Widget field) {
    int longest = 0;
    XtVaGetValues(field, XmNmaxLength, &longest, nullptr);
    typed[field].reserve(static_cast<size_t>(longest) + 1);
    XtAddCallback(field, XmNmodifyVerifyCallback, keep_cb, nullptr);
    XtAddCallback(field, XmNdestroyCallback, forget_cb, nullptr);
}

NB_VOID vga_get_password(Widget field, NB_CHAR *out, NB_USHORT size) {
    const auto found = typed.find(field);
    snprintf(out, size, "%s", found != typed.end() ? found->second.c_str() : "");
}
