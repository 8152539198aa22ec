#include "fieldwidgets.h"
#include "fieldchecks.h"
#include "filtercallbacks.h"
#include "hints.h"
#include "holders.h"
#include "messages.h"
#include "widgets.h"
#include <Xm/Label.h>
#include <Xm/LabelG.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <cctype>
#include <cstring>
#include <string>

namespace {

using records::FieldKind;

bool is_text(Widget widget) {
    return XmIsTextField(widget) || XmIsText(widget);
}

/* A label that only shows a word is no menu. */
bool is_menu(const VGA_FIELD &field) {
    return field.is(FieldKind::Word) && (field.uses & VGA_FIELD_SHOWN) == 0;
}

/* The item of an option menu for a word; null: it is not offered. */
Widget item_of(const VGA_FORM *form, const VGA_FIELD &field, const NB_CHAR *word) {
    std::string name = field.widget;
    bool first = true;
    for (; *word != '\0'; word++) {
        if (*word != '_') {
            name += static_cast<NB_CHAR>(first ? toupper(static_cast<NB_UCHAR>(*word)) : *word);
        }
        first = *word == '_';
    }
    return XtNameToWidget(form->common.widget, name.c_str());
}

/* Calls `visit` with each word that is offered, and its item. */
template <class Visit>
NB_VOID for_items(const VGA_FORM *form, const VGA_FIELD &field, Visit visit) {
    for (const records::FieldWord &word : field.row->words) {
        if (Widget item = item_of(form, field, word.text)) {
            visit(word.text, item);
        }
    }
}

/* What the operator sees of a field, as text: two fields that look the same have the same one. */

/* A value that no item stands for shows as the first item. */
NB_VOID look_of(const VGA_FORM *form, const VGA_FIELD &field, const NB_VOID *data, NB_CHAR *text) {
    vga_field_to_text(field, data, text);
    if (!is_menu(field)) {
        return;
    }
    const NB_CHAR *first = nullptr, *same = nullptr;
    for_items(form, field, [&](const NB_CHAR *word, Widget) {
        first = first != nullptr ? first : word;
        same = strcmp(word, text) == 0 ? word : same;
    });
    if (first != nullptr && same == nullptr) {
        strcpy(text, first);
    }
}

NB_VOID read_widget(const VGA_FORM *form, NB_USHORT number, NB_CHAR *text) {
    const VGA_FIELD &field = form->plan->fields[number];
    Widget widget = form->widgets[number];
    if (field.is(FieldKind::Flag)) {
        strcpy(text, XmToggleButtonGetState(widget) ? "yes" : "no");
    } else if (is_menu(field)) {
        Widget shown = nullptr;
        XtVaGetValues(widget, XmNmenuHistory, &shown, nullptr);
        text[0] = '\0';
        for_items(form, field, [&](const NB_CHAR *word, Widget item) {
            if (text[0] == '\0' || item == shown) {
                strcpy(text, word);
            }
        });
    } else {
        vga_get_field_text(widget, text, VGA_FIELD_TEXT_SIZE);
    }
}

/* Where a word cannot be chosen it reads as everywhere else in the windows. */
NB_VOID put_label(Widget label, const VGA_FIELD &field, const NB_CHAR *text) {
    for (const records::FieldWord &word : field.row->words) {
        text = word.message != 0 && strcmp(word.text, text) == 0 ? vga_message(word.message) : text;
    }
    /* A label without text would lose its height. */
    VGA_STRING string(text[0] != '\0' ? text : " ");
    XtVaSetValues(label, XmNlabelString, string.get(), nullptr);
}

/* Enabling. */

/* What is off with the field: itself, or the manager that holds it and its unit. */
Widget block_of(Widget widget) {
    Widget parent = XtParent(widget);
    return std::string(XtName(widget)) + "Form" == XtName(parent) ? parent : widget;
}

/* An XmColumn makes the label of each of its children. */
NB_VOID set_block_sensitive(Widget block, NB_USHORT on) {
    std::string label = std::string(XtName(block)) + "_label";
    vga_set_sensitive(block, on);
    vga_set_sensitive(XtNameToWidget(XtParent(block), label.c_str()), on);
}

NB_USHORT editable(const VGA_FORM *form, NB_USHORT number) {
    return form->read_only == 0 && (form->plan->fields[number].uses & VGA_FIELD_SHOWN) == 0 &&
           vga_form_field_of_use(form, number) != 0;
}

/* Finding. */

NB_VOID watch(VGA_FORM *form, NB_USHORT number, XtCallbackProc changed) {
    const VGA_FIELD &field = form->plan->fields[number];
    Widget widget = form->widgets[number];
    if (is_text(widget)) {
        XtVaSetValues(widget, XmNmaxLength, static_cast<int>(vga_field_length(field)), nullptr);
    }
    if (is_text(widget) || field.is(FieldKind::Flag)) {
        XtAddCallback(widget, XmNvalueChangedCallback, changed, form);
    }
    for_items(form, field, [&](const NB_CHAR *, Widget item) { // of a menu only
        XtAddCallback(item, XmNactivateCallback, changed, form);
    });
    vga_set_field_hint(widget, field.hint);
    vga_set_reason(widget, field.reason);
}

bool has_items(const VGA_FORM *form, const VGA_FIELD &field) {
    bool found = false;
    for_items(form, field, [&found](const NB_CHAR *, Widget) { found = true; });
    return found;
}

} // namespace

NB_USHORT vga_form_find_fields(VGA_FORM *form, XtCallbackProc changed) {
    const VGA_FORM_PLAN &plan = *form->plan;
    if (plan.field_count > VGA_FORM_MAX_FIELDS) {
        v0_assert_fatal(__FILE__, __LINE__, "plan.field_count <= VGA_FORM_MAX_FIELDS");
        return 0;
    }
    for (NB_USHORT number = 0; number < plan.field_count; number++) {
        form->widgets[number] = XtNameToWidget(form->common.widget, plan.fields[number].widget);
        if (form->widgets[number] == nullptr ||
            (is_menu(plan.fields[number]) && !has_items(form, plan.fields[number]))) {
            return 0;
        }
        watch(form, number, changed);
    }
    return 1;
}

NB_VOID vga_form_put_field(const VGA_FORM *form, NB_USHORT number, const NB_VOID *data) {
    const VGA_FIELD &field = form->plan->fields[number];
    Widget widget = form->widgets[number];
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    look_of(form, field, data, text);
    if (field.is(FieldKind::Flag)) {
        XmToggleButtonSetState(widget, text[0] == 'y', False);
    } else if (is_menu(field)) {
        XtVaSetValues(widget, XmNmenuHistory, item_of(form, field, text), nullptr);
    } else if (is_text(widget)) {
        vga_fill_field(widget, text);
    } else {
        put_label(widget, field, text);
    }
}

NB_USHORT vga_form_field_is(const VGA_FORM *form, NB_USHORT number, const NB_VOID *data) {
    const VGA_FIELD &field = form->plan->fields[number];
    if ((field.uses & VGA_FIELD_SHOWN) != 0) {
        return 1;
    }
    NB_CHAR here[VGA_FIELD_TEXT_SIZE];
    NB_CHAR there[VGA_FIELD_TEXT_SIZE];
    read_widget(form, number, here);
    look_of(form, field, data, there);
    return strcmp(here, there) == 0;
}

/* A field that reads as it was filled keeps its bytes to the last: padding, and values that no item
 * stands for.  The halves of a name share theirs. */
NB_USHORT vga_form_get_field(const VGA_FORM *form, NB_USHORT number, NB_VOID *edited) {
    const VGA_FIELD &field = form->plan->fields[number];
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    read_widget(form, number, text);
    NB_USHORT fault = vga_field_from_text(field, text, form->common.parent_item, edited);
    const NB_VOID *shown = vga_form_shown(form);
    if (fault == 0 && field.part == VGA_FIELD_WHOLE &&
        vga_form_field_is(form, number, shown) != 0) {
        memcpy(static_cast<NB_UCHAR *>(edited) + field.offset(),
               static_cast<const NB_UCHAR *>(shown) + field.offset(), field.row->width);
    }
    return fault;
}

NB_USHORT vga_form_field_of_use(const VGA_FORM *form, NB_USHORT number) {
    const VGA_FIELD_WHEN &when = form->plan->fields[number].when;
    if (when.field < 0) {
        return 1;
    }
    auto other = static_cast<NB_USHORT>(when.field);
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    read_widget(form, other, text);
    return strcmp(text, when.is) == 0 && vga_form_field_of_use(form, other) != 0;
}

NB_VOID vga_form_enable_field(const VGA_FORM *form, NB_USHORT number) {
    Widget widget = form->widgets[number];
    NB_USHORT on = editable(form, number);
    if (is_text(widget)) {
        /* A text that can only be looked at can still be copied. */
        XtVaSetValues(widget, XmNeditable, on != 0, XmNcursorPositionVisible, on != 0, nullptr);
        on = vga_form_field_of_use(form, number);
    } else if ((form->plan->fields[number].uses & VGA_FIELD_SHOWN) != 0) {
        on = vga_form_field_of_use(form, number);
    }
    set_block_sensitive(block_of(widget), on);
}

Widget vga_form_first_field(const VGA_FORM *form) {
    for (NB_USHORT number = 0; number < form->plan->field_count; number++) {
        if (editable(form, number) != 0) {
            return vga_form_focus_of(form, number);
        }
    }
    return nullptr;
}

Widget vga_form_focus_of(const VGA_FORM *form, NB_USHORT number) {
    Widget widget = form->widgets[number];
    return is_menu(form->plan->fields[number]) ? XmOptionButtonGadget(widget) : widget;
}
