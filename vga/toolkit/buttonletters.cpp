#include "buttonletters.h"
#include "holders.h"
#include <Xm/MessageB.h>
#include <Xm/PushB.h>
#include <Xm/PushBG.h>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr NB_CHAR letters[] = "abcdefghijklmnopqrstuvwxyz0123456789";

/* Only ASCII: other letters are not on every keyboard.  0: not one of them. */
NB_CHAR as_letter(NB_ULONG code) {
    if (code >= 'A' && code <= 'Z') {
        code += 'a' - 'A';
    }
    return code != 0 && code < 128 && strchr(letters, static_cast<int>(code)) != nullptr
               ? static_cast<NB_CHAR>(code)
               : NB_CHAR(0);
}

std::vector<Widget> children_of(Widget widget) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    if (XtIsComposite(widget)) {
        XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    }
    return std::vector<Widget>(children, children + count);
}

std::vector<Widget> buttons_of(Widget box) {
    std::vector<Widget> buttons = children_of(box);
    std::erase_if(buttons, [](Widget child) {
        return !XmIsPushButton(child) && !XmIsPushButtonGadget(child);
    });
    return buttons;
}

NB_CHAR letter_of(Widget button) {
    KeySym mnemonic = NoSymbol;
    XtVaGetValues(button, XmNmnemonic, &mnemonic, nullptr);
    return as_letter(mnemonic);
}

std::string label_of(Widget button) {
    XmString label = nullptr;
    XtVaGetValues(button, XmNlabelString, &label, nullptr);
    const VGA_STRING owned(label);
    const VGA_TEXT text(label == nullptr ? nullptr
                                         : static_cast<NB_CHAR *>(XmStringUnparse(
                                               label, nullptr, XmCHARSET_TEXT, XmMULTIBYTE_TEXT,
                                               nullptr, 0, XmOUTPUT_ALL)));
    return text.get();
}

NB_VOID choose_letter(Widget button, std::set<NB_CHAR> &taken) {
    for (const NB_CHAR character : label_of(button)) {
        const NB_CHAR letter = as_letter(static_cast<NB_UCHAR>(character));
        if (letter != 0 && taken.insert(letter).second) {
            /* As the label has it: what is underlined is looked for in that case. */
            XtVaSetValues(button, XmNmnemonic, static_cast<KeySym>(character), nullptr);
            return;
        }
    }
}

/* One table for all: which button it is shows when the key is pressed. */
XtTranslations keys() {
    static XtTranslations table;
    if (table == nullptr) {
        std::string text;
        for (const NB_CHAR *letter = letters; *letter != '\0'; letter++) {
            text += std::string("Mod1<Key>") + *letter + ": vga_letter_action(" + *letter + ")\n";
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
    for (Widget child : children_of(widget)) {
        heed_keys(child);
    }
}

Widget box_around(Widget widget) {
    while (widget != nullptr && !XmIsMessageBox(widget)) {
        widget = XtIsShell(widget) ? nullptr : XtParent(widget);
    }
    return widget;
}

NB_VOID push(Widget button, XEvent *event) {
    if (XtIsWidget(button)) {
        String no_params[] = {nullptr};
        XtCallActionProc(button, "ArmAndActivate", event, no_params, 0);
        return;
    }
    /* The box has put its own procedures behind those of its gadgets. */
    XmPushButtonCallbackStruct call = {XmCR_ACTIVATE, event, 1};
    XtCallCallbacks(button, XmNactivateCallback, &call);
}

} // namespace

NB_VOID vga_give_letters(Widget box) {
    if (box == nullptr || !XmIsMessageBox(box)) {
        return;
    }
    std::set<NB_CHAR> taken;
    std::vector<Widget> without;
    for (Widget button : buttons_of(box)) {
        const NB_CHAR letter = letter_of(button);
        if (letter == 0 || !taken.insert(letter).second) {
            XtVaSetValues(button, XmNmnemonic, NoSymbol, nullptr);
            without.push_back(button);
        }
    }
    for (Widget button : without) {
        choose_letter(button, taken);
    }
    heed_keys(box);
}

NB_VOID vga_letter_action(Widget widget, XEvent *event, String *params, Cardinal *param_count) {
    Widget box = box_around(widget);
    const NB_CHAR wanted =
        *param_count != 0 ? as_letter(static_cast<NB_UCHAR>(params[0][0])) : NB_CHAR(0);
    if (box == nullptr || wanted == 0) {
        return;
    }
    for (Widget button : buttons_of(box)) {
        if (letter_of(button) == wanted && XtIsManaged(button) && XtIsSensitive(button)) {
            push(button, event);
            return;
        }
    }
}
