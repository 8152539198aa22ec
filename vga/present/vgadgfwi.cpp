#include "vgadgfwi.h"
#include "vgachkcb.h"
#include "vgachkfd.h"
#include "vgahint.h"
#include "vgaxt.h"
#include <Xm/Label.h>
#include <Xm/LabelG.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

bool is_text(Widget widget) {
    return XmIsTextField(widget) || XmIsText(widget);
}

Widget item_of(const VGA_FORM *form, const VGA_CHOICE &choice) {
    return XtNameToWidget(form->common.widget, choice.widget);
}

/* What the operator sees of a field, as text: two fields that look the same have the same one. */

/* A value that no item stands for shows as the first item. */
NB_VOID look_of(const VGA_FIELD &field, const NB_VOID *data, NB_CHAR *text) {
    int64_t value;
    switch (field.kind) {
    case VGA_FIELD_FLAG:
        strcpy(text, vga_field_value(field, data) != 0 ? "1" : "0");
        return;
    case VGA_FIELD_CHOICE:
        value = field.choice_count != 0 ? field.choices[0].value : 0;
        for (NB_USHORT item = 0; item < field.choice_count; item++) {
            if (field.choices[item].value == vga_field_value(field, data)) {
                value = field.choices[item].value;
            }
        }
        snprintf(text, VGA_FIELD_TEXT_SIZE, "%lld", static_cast<long long>(value));
        return;
    default:
        vga_field_to_text(field, data, text);
    }
}

NB_VOID read_choice(const VGA_FORM *form, const VGA_FIELD &field, Widget menu, NB_CHAR *text) {
    Widget shown = nullptr;
    XtVaGetValues(menu, XmNmenuHistory, &shown, nullptr);
    strcpy(text, "0");
    for (NB_USHORT item = 0; item < field.choice_count; item++) {
        if (item == 0 || item_of(form, field.choices[item]) == shown) {
            snprintf(text, VGA_FIELD_TEXT_SIZE, "%lld",
                     static_cast<long long>(field.choices[item].value));
        }
    }
}

NB_VOID read_widget(const VGA_FORM *form, NB_USHORT number, NB_CHAR *text) {
    const VGA_FIELD &field = form->plan->fields[number];
    Widget widget = form->widgets[number];
    if (field.kind == VGA_FIELD_FLAG) {
        strcpy(text, XmToggleButtonGetState(widget) ? "1" : "0");
    } else if (field.kind == VGA_FIELD_CHOICE) {
        read_choice(form, field, widget, text);
    } else {
        vga_get_field_text(widget, text, VGA_FIELD_TEXT_SIZE);
    }
}

NB_VOID put_choice(const VGA_FORM *form, const VGA_FIELD &field, Widget menu, const NB_CHAR *text) {
    int64_t value = strtoll(text, nullptr, 10);
    for (NB_USHORT item = 0; item < field.choice_count; item++) {
        if (field.choices[item].value == value) {
            XtVaSetValues(menu, XmNmenuHistory, item_of(form, field.choices[item]), nullptr);
        }
    }
}

NB_VOID put_label(Widget label, const NB_CHAR *text) {
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
    if (is_text(widget) || field.kind == VGA_FIELD_FLAG) {
        XtAddCallback(widget, XmNvalueChangedCallback, changed, form);
    }
    for (NB_USHORT item = 0; item < field.choice_count; item++) {
        XtAddCallback(item_of(form, field.choices[item]), XmNactivateCallback, changed, form);
    }
    vga_set_field_hint(widget, field.hint);
    vga_set_reason(widget, field.reason);
}

NB_USHORT all_items_found(const VGA_FORM *form, const VGA_FIELD &field) {
    for (NB_USHORT item = 0; item < field.choice_count; item++) {
        if (item_of(form, field.choices[item]) == nullptr) {
            return 0;
        }
    }
    return 1;
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
        if (form->widgets[number] == nullptr || !all_items_found(form, plan.fields[number])) {
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
    look_of(field, data, text);
    if (field.kind == VGA_FIELD_FLAG) {
        XmToggleButtonSetState(widget, text[0] == '1', False);
    } else if (field.kind == VGA_FIELD_CHOICE) {
        put_choice(form, field, widget, text);
    } else if (is_text(widget)) {
        vga_fill_field(widget, text);
    } else {
        put_label(widget, text);
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
    look_of(field, data, there);
    return strcmp(here, there) == 0;
}

/* A field that reads as it was filled keeps its bytes to the last: padding, and values that no item
 * stands for.  The halves of a name share theirs. */
NB_USHORT vga_form_get_field(const VGA_FORM *form, NB_USHORT number, NB_VOID *edited) {
    const VGA_FIELD &field = form->plan->fields[number];
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    read_widget(form, number, text);
    NB_USHORT fault = vga_field_from_text(field, text, form->common.parent_item, edited);
    NB_USHORT half = field.kind == VGA_FIELD_FQ_NETWORK || field.kind == VGA_FIELD_FQ_LOCAL;
    const NB_VOID *shown = vga_form_shown(form);
    if (fault == 0 && half == 0 && vga_form_field_is(form, number, shown) != 0) {
        memcpy(static_cast<NB_UCHAR *>(edited) + field.offset,
               static_cast<const NB_UCHAR *>(shown) + field.offset, field.width);
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
    return strtoll(text, nullptr, 10) == when.value && vga_form_field_of_use(form, other) != 0;
}

NB_VOID vga_form_enable_field(const VGA_FORM *form, NB_USHORT number) {
    Widget widget = form->widgets[number];
    NB_USHORT on = editable(form, number);
    if (is_text(widget)) {
        /* What can only be looked at can still be copied. */
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
            Widget widget = form->widgets[number];
            return form->plan->fields[number].kind == VGA_FIELD_CHOICE
                       ? XmOptionButtonGadget(widget)
                       : widget;
        }
    }
    return nullptr;
}

NB_VOID vga_form_focus(const VGA_FORM *form, NB_USHORT number) {
    Widget widget = form->widgets[number];
    vga_focus_field(form->plan->fields[number].kind == VGA_FIELD_CHOICE
                        ? XmOptionButtonGadget(widget)
                        : widget);
}
