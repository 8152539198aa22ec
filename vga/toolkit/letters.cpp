#include "letters.h"
#include "holders.h"
#include <Xm/PushB.h>
#include <cctype>

NB_CHAR vga_as_letter(NB_ULONG code) {
    const bool known = code < 128 && isalnum(static_cast<int>(code)) != 0;
    return known ? static_cast<NB_CHAR>(tolower(static_cast<int>(code))) : NB_CHAR(0);
}

size_t vga_choose_letter(const std::string &text, VGA_LETTERS &taken) {
    for (const bool beginnings : {true, false}) {
        for (size_t at = 0; at < text.size(); at++) {
            const NB_CHAR letter = vga_as_letter(static_cast<NB_UCHAR>(text[at]));
            const bool begins = at == 0 || text[at - 1] == ' ';
            if (letter != 0 && (begins || !beginnings) && taken.insert(letter).second) {
                return at;
            }
        }
    }
    return std::string::npos;
}

/* Part by part: the toolkit's way to take a text out whole loses line ends. */
static std::string text_of(XmString string) {
    std::string text;
    XmStringContext parts;
    if (string == nullptr || XmStringInitContext(&parts, string) == False) {
        return text;
    }
    unsigned int length = 0;
    XtPointer value = nullptr;
    XmStringComponentType type;
    while ((type = XmStringGetNextTriple(parts, &length, &value)) != XmSTRING_COMPONENT_END) {
        if (type == XmSTRING_COMPONENT_TEXT || type == XmSTRING_COMPONENT_LOCALE_TEXT) {
            text.append(static_cast<const NB_CHAR *>(value), length);
        } else if (type == XmSTRING_COMPONENT_SEPARATOR) {
            text += '\n';
        }
        XtFree(static_cast<NB_CHAR *>(value));
    }
    XmStringFreeContext(parts);
    return text;
}

std::string vga_label_text(Widget widget, const NB_CHAR *resource) {
    XmString label = nullptr;
    XtVaGetValues(widget, resource, &label, nullptr);
    const VGA_STRING owned(label); /* a copy, that of a tab, too */
    return text_of(label);
}

NB_CHAR vga_letter_of(Widget label) {
    KeySym mnemonic = NoSymbol;
    XtVaGetValues(label, XmNmnemonic, &mnemonic, nullptr);
    return vga_as_letter(mnemonic);
}

NB_VOID vga_give_letter(Widget label, VGA_LETTERS &taken) {
    const std::string text = vga_label_text(label, XmNlabelString);
    const size_t at = vga_choose_letter(text, taken);
    if (at != std::string::npos) {
        /* As the label has it: what is underlined is looked for in that case. */
        XtVaSetValues(label, XmNmnemonic, static_cast<KeySym>(text[at]), nullptr);
    }
}

std::vector<Widget> vga_children_of(Widget widget) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    if (XtIsComposite(widget)) {
        XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    }
    return std::vector<Widget>(children, children + count);
}

NB_VOID vga_push_button(Widget button, XEvent *event) {
    if (XtIsWidget(button)) {
        String no_params[] = {nullptr};
        XtCallActionProc(button, "ArmAndActivate", event, no_params, 0);
        return;
    }
    /* The box has put its own procedures behind those of its gadgets. */
    XmPushButtonCallbackStruct call = {XmCR_ACTIVATE, event, 1};
    XtCallCallbacks(button, XmNactivateCallback, &call);
}
