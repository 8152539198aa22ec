/* What the tests of forms share: entering values as an operator would, whatever the field is. */
#ifndef FORM_SUPPORT_H
#define FORM_SUPPORT_H

#include "chooser.h"
#include "fieldwidgets.h"
#include "formparts.h"
#include "gui_support.h"
#include "holders.h"
#include "scriptednof.h"
#include "vgadgutl.h"

#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <string>
#include <vector>

namespace forms {

using records::FieldKind;

inline const VGA_FIELD &row(const VGA_FORM *form, NB_USHORT field) {
    return form->plan->fields[field];
}

inline NB_USHORT count(const VGA_FORM *form) {
    return static_cast<NB_USHORT>(form->plan->fields.size());
}

inline bool is_toggle(const VGA_FORM *form, NB_USHORT field) {
    return row(form, field).is(FieldKind::Flag) && !row(form, field).has(VGA_FIELD_SHOWN);
}

inline bool is_menu(const VGA_FORM *form, NB_USHORT field) {
    return row(form, field).is(FieldKind::Word) && !row(form, field).has(VGA_FIELD_SHOWN);
}

inline std::vector<Widget> items(const VGA_FORM *form, NB_USHORT field) {
    Widget menu = nullptr;
    WidgetList children = nullptr;
    Cardinal number = 0;
    XtVaGetValues(vga_form_widget(form, field), XmNsubMenuId, &menu, nullptr);
    XtVaGetValues(menu, XmNchildren, &children, XmNnumChildren, &number, nullptr);
    return {children, children + number};
}

inline void push(Widget button) {
    ASSERT_NE(button, nullptr);
    if (XtIsSensitive(button)) {
        XtCallCallbacks(button, XmNactivateCallback, nullptr);
    }
    gui::settle();
}

inline Widget button(const VGA_FORM *form, const char *name) {
    return XtNameToWidget(form->common.widget, name);
}

/* Sets a toggle to "yes" or "no", chooses the item of a menu at a place ("0"), writes a text. */
inline void enter(VGA_FORM *form, NB_USHORT field, const std::string &value) {
    Widget widget = vga_form_widget(form, field);
    if (is_toggle(form, field)) {
        XmToggleButtonSetState(widget, value == "yes", True);
    } else if (is_menu(form, field)) {
        Widget item = items(form, field).at(std::stoul(value));
        XtVaSetValues(widget, XmNmenuHistory, item, nullptr);
        XtCallCallbacks(item, XmNactivateCallback, nullptr);
    } else {
        XmTextFieldSetString(widget, const_cast<char *>(value.c_str()));
    }
}

/* The box over the form: its text, "" when there is none; one of its buttons. */
inline std::string box(const VGA_FORM *form) {
    return gui::box_text(&form->common);
}
inline void answer_box(const VGA_FORM *form, const char *name = "OK") {
    if (!box(form).empty()) {
        push(XtNameToWidget(form->common.modal_dlg.dialog, name));
    }
}

inline NB_USHORT in_flight() {
    return static_cast<NB_USHORT>(scripted_nof.in_flight.size());
}

} // namespace forms

#endif
