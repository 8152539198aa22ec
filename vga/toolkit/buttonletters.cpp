#include "buttonletters.h"
#include "fieldletters.h"
#include "letters.h"
#include <Xm/MessageB.h>
#include <Xm/PushB.h>
#include <Xm/PushBG.h>
#include <cstring>

namespace {

std::vector<Widget> buttons_of(Widget box) {
    std::vector<Widget> buttons = vga_children_of(box);
    std::erase_if(buttons, [](Widget child) {
        return !XmIsPushButton(child) && !XmIsPushButtonGadget(child);
    });
    return buttons;
}

/* One table for all: which button or field it is shows when the key is pressed. */
XtTranslations keys() {
    static XtTranslations table;
    if (table == nullptr) {
        std::string text = "Ctrl<Key>osfPageDown: vga_page_action(next)\n"
                           "Ctrl<Key>osfPageUp: vga_page_action(previous)\n";
        for (const NB_CHAR letter : std::string("abcdefghijklmnopqrstuvwxyz0123456789")) {
            text += std::string("Mod1<Key>") + letter + ": vga_letter_action(" + letter + ")\n";
        }
        table = XtParseTranslationTable(text.c_str());
    }
    return table;
}

/* The key goes to what has the keyboard: a field, a button, or the box for its gadgets. */
NB_VOID heed_keys(Widget widget) {
    if (XtIsWidget(widget)) {
        XtOverrideTranslations(widget, keys());
    }
    for (Widget child : vga_children_of(widget)) {
        heed_keys(child);
    }
}

Widget box_around(Widget widget) {
    while (widget != nullptr && !XmIsMessageBox(widget)) {
        widget = XtIsShell(widget) ? nullptr : XtParent(widget);
    }
    return widget;
}

} // namespace

NB_VOID vga_give_letters(Widget box) {
    if (box == nullptr || !XmIsMessageBox(box)) {
        return;
    }
    VGA_LETTERS taken;
    std::vector<Widget> without;
    for (Widget button : buttons_of(box)) {
        const NB_CHAR letter = vga_letter_of(button);
        if (letter == 0 || !taken.insert(letter).second) {
            XtVaSetValues(button, XmNmnemonic, NoSymbol, nullptr);
            without.push_back(button);
        }
    }
    for (Widget button : without) {
        vga_give_letter(button, taken);
    }
    vga_give_field_letters(box, taken);
    heed_keys(box);
}

NB_VOID vga_letter_action(Widget widget, XEvent *event, String *params, Cardinal *param_count) {
    Widget box = box_around(widget);
    const NB_CHAR wanted =
        *param_count != 0 ? vga_as_letter(static_cast<NB_UCHAR>(params[0][0])) : NB_CHAR(0);
    if (box == nullptr || wanted == 0) {
        return;
    }
    for (Widget button : buttons_of(box)) {
        if (vga_letter_of(button) == wanted && XtIsManaged(button) && XtIsSensitive(button)) {
            vga_push_button(button, event);
            return;
        }
    }
    vga_go_to_letter(box, wanted, event);
}

NB_VOID vga_page_action(Widget widget, XEvent *, String *params, Cardinal *param_count) {
    if (Widget box = box_around(widget)) {
        const bool back = *param_count != 0 && strcmp(params[0], "previous") == 0;
        vga_turn_page(box, back ? -1 : 1);
    }
}
