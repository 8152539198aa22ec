#include "fieldwidgets.h"
#include "fieldchecks.h"
#include "fieldtext.h"
#include "filtercallbacks.h"
#include "globals.h"
#include "hints.h"
#include "holders.h"
#include "libraryleaks.h"
#include "messages.h"
#include "passwordfield.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include "widgets.h"
#include <Xm/Column.h>
#include <Xm/Label.h>
#include <Xm/LabelG.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstring>
#include <unordered_map>

namespace {

using records::FieldKind;

const VGA_FIELD &row_of(const VGA_FORM *form, NB_USHORT number) {
    return form->plan->fields[number];
}

bool is_text(Widget widget) {
    return XmIsTextField(widget) || XmIsText(widget);
}

/* A label that only shows a word is no menu. */
bool is_menu(const VGA_FIELD &field) {
    return field.is(FieldKind::Word) && !field.has(VGA_FIELD_SHOWN);
}

bool is_toggle(const VGA_FIELD &field) {
    return field.is(FieldKind::Flag) && !field.has(VGA_FIELD_SHOWN);
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
            visit(word, item);
        }
    }
}

/* Texts of labels. */

std::string text_of(XmString string) {
    const VGA_TEXT text(static_cast<NB_CHAR *>(
        string == nullptr ? nullptr
                          : XmStringUnparse(string, nullptr, XmCHARSET_TEXT, XmMULTIBYTE_TEXT,
                                            nullptr, 0, XmOUTPUT_ALL)));
    return text.get() != nullptr ? text.get() : "";
}

std::string label_text(Widget label) {
    XmString string = nullptr;
    if (label != nullptr) {
        XtVaGetValues(label, XmNlabelString, &string, nullptr);
    }
    const VGA_STRING owned(string);
    return text_of(string);
}

/* An XmColumn makes the label of each of its children. */
Widget label_of(Widget block) {
    const std::string name = std::string(XtName(block)) + "_label";
    return XtNameToWidget(XtParent(block), name.c_str());
}

std::string unit_of(const VGA_FORM *form, const VGA_FIELD &field) {
    const std::string name = std::string(field.widget) + "Unit";
    return label_text(XtNameToWidget(form->common.widget, name.c_str()));
}

} // namespace

/* Each is fetched once: the toolkit loses what it reads a literal into. */
std::string vga_form_literal(const std::string &name) {
    static std::unordered_map<std::string, std::string> known;
    const auto found = known.find(name);
    if (found != known.end()) {
        return found->second;
    }
    const VGA_LIBRARY_LEAKS lost;
    XtPointer value = nullptr;
    MrmCode type = 0;
    if (MrmFetchLiteral(gvga_uil_hierarchy, const_cast<NB_CHAR *>(name.c_str()), gvga_display,
                        &value, &type) != MrmSUCCESS) {
        return "";
    }
    const VGA_STRING string(static_cast<XmString>(value));
    return known[name] = text_of(string.get());
}

namespace {

/* What the operator sees of a field, as text: two fields that look the same have the same one. */

/* A value that no item stands for shows as the first item. */
NB_VOID look_of(const VGA_FORM *form, const VGA_FIELD &field, const NB_VOID *data, NB_CHAR *text) {
    vga_field_to_text(field, data, text);
    if (!is_menu(field)) {
        return;
    }
    const NB_CHAR *first = nullptr, *same = nullptr;
    for_items(form, field, [&](const records::FieldWord &word, Widget) {
        first = first != nullptr ? first : word.text;
        same = strcmp(word.text, text) == 0 ? word.text : same;
    });
    if (first != nullptr && same == nullptr) {
        strcpy(text, first);
    }
}

NB_VOID read_widget(const VGA_FORM *form, NB_USHORT number, NB_CHAR *text) {
    const VGA_FIELD &field = row_of(form, number);
    Widget widget = vga_form_widget(form, number);
    if (is_toggle(field)) {
        strcpy(text, XmToggleButtonGetState(widget) ? "yes" : "no");
    } else if (is_menu(field)) {
        Widget shown = nullptr;
        XtVaGetValues(widget, XmNmenuHistory, &shown, nullptr);
        text[0] = '\0';
        for_items(form, field, [&](const records::FieldWord &word, Widget item) {
            if (text[0] == '\0' || item == shown) {
                strcpy(text, word.text);
            }
        });
    } else if (field.is_secret()) {
        vga_get_password(widget, text, VGA_FIELD_TEXT_SIZE);
    } else if (is_text(widget)) {
        vga_get_field_text(widget, text, VGA_FIELD_TEXT_SIZE);
    } else {
        vga_field_to_text(field, vga_form_shown(form), text);
    }
}

NB_VOID put_label(Widget label, const std::string &text) {
    /* A label without text would lose its height. */
    const std::string shown = text.empty() ? "-" : text;
    if (shown != label_text(label)) { /* the same would be drawn again */
        const VGA_STRING string(shown.c_str());
        XtVaSetValues(label, XmNlabelString, string.get(), nullptr);
    }
}

/* Enabling. */

NB_VOID set_block_sensitive(Widget block, NB_USHORT on) {
    vga_set_sensitive(block, on);
    vga_set_sensitive(label_of(block), on);
}

bool holds(const VGA_FORM *form, const VGA_CONDITION &condition) {
    if (condition.test == VGA_WHEN_NEW) {
        return form->adding != 0;
    }
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    read_widget(form, static_cast<NB_USHORT>(condition.field), text);
    if (condition.test == VGA_WHEN_ABOVE) {
        int64_t number = 0, limit = 0;
        records::read_number(text, 0, INT32_MAX, number);
        records::read_number(condition.value, 0, INT32_MAX, limit);
        return number > limit;
    }
    return (strcmp(text, condition.value) == 0) == (condition.test == VGA_WHEN_IS);
}

/* Why the field is off: what the dialog itself says, or what its first condition that does not hold
 * wants. */
std::string reason_of(const VGA_FORM *form, const VGA_FIELD &field) {
    NB_CHAR text[400];
    if (form->refusal != 0) {
        return vga_message(form->refusal);
    }
    for (const VGA_CONDITION &condition : field.when) {
        if (holds(form, condition)) {
            continue;
        }
        if (condition.test == VGA_WHEN_NEW) {
            return vga_message(VGA_MSG_FORM_REASON_NEW);
        }
        const auto number = static_cast<NB_USHORT>(condition.field);
        const VGA_FIELD &other = row_of(form, number);
        const std::string label = vga_form_label(form, number);
        std::string value = condition.value;
        NB_USHORT message = condition.test == VGA_WHEN_ABOVE    ? VGA_MSG_FORM_REASON_ABOVE
                            : condition.test == VGA_WHEN_IS_NOT ? VGA_MSG_FORM_REASON_NOT
                                                                : VGA_MSG_FORM_REASON_IS;
        if (is_toggle(other)) {
            message = value == "yes" ? VGA_MSG_FORM_REASON_ON : VGA_MSG_FORM_REASON_OFF;
        } else if (is_menu(other)) {
            value = label_text(item_of(form, other, condition.value));
        }
        vga_print_msg(text, sizeof(text), message, "s s", label.c_str(), value.c_str());
        return text;
    }
    return field.has(VGA_FIELD_NEW) && form->adding == 0 ? vga_message(VGA_MSG_FORM_REASON_NEW)
                                                         : "";
}

/* Range and unit, and what the description has to say besides. */
std::string hint_of(const VGA_FORM *form, NB_USHORT number) {
    const VGA_FIELD &field = row_of(form, number);
    if (form->marks[number] == VGA_MARK_OTHER) {
        NB_CHAR text[400];
        const std::string now = vga_form_text_of(form, number, vga_form_shown(form));
        vga_print_msg(text, sizeof(text), VGA_MSG_FORM_OTHER_CHANGED, "s", now.c_str());
        return text;
    }
    if (field.has(VGA_FIELD_SHOWN)) {
        return "";
    }
    std::string hint = vga_field_range(field, vga_form_wanted(form), unit_of(form, field));
    if (field.is_secret() && form->adding == 0) {
        hint = vga_message(VGA_MSG_FORM_HINT_PASSWORD);
    }
    if (field.has(VGA_FIELD_HINT)) {
        hint +=
            (hint.empty() ? "" : " ") + vga_form_literal(field.widget + 1 + std::string("Hint"));
    }
    return hint;
}

/* Checking. */

/* What was typed and is none of the choices: the model knows of all that there are. */
VGA_FAULT check_choice(const VGA_FORM *form, const VGA_FIELD &field, const std::string &label,
                       const std::string &entered) {
    const size_t first = entered.find_first_not_of(' ');
    if (field.choices == nullptr || field.has(VGA_FIELD_FREE) || first == std::string::npos) {
        return {};
    }
    const std::string text = entered.substr(first, entered.find_last_not_of(' ') + 1 - first);
    const auto choices = field.choices(form);
    const bool known =
        std::any_of(choices.begin(), choices.end(),
                    [&text](const VGA_CHOICE &choice) { return choice.text == text; });
    if (known) {
        return {};
    }
    return field.unknown != 0
               ? VGA_FAULT{.message = field.unknown}
               : VGA_FAULT{.message = VGA_MSG_FORM_UNKNOWN, .arguments = {label, text}};
}

/* Reads the field into `data`; what is wrong with it there. */
VGA_FAULT take_field(const VGA_FORM *form, NB_USHORT number, NB_VOID *data) {
    const VGA_FIELD &field = row_of(form, number);
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    read_widget(form, number, text);
    const std::string label = vga_form_label(form, number);
    const NB_USHORT required =
        field.is_required != nullptr ? field.is_required(form, data) : NB_USHORT{0};
    VGA_FAULT fault = vga_field_from_text(field, label, text, required, data);
    if (!fault) {
        fault = check_choice(form, field, label, text);
    }
    if (!fault && field.check != nullptr) {
        fault = field.check(form, data);
    }
    return fault;
}

/* Finding. */

NB_VOID watch(VGA_FORM *form, NB_USHORT number, XtCallbackProc changed) {
    const VGA_FIELD &field = row_of(form, number);
    Widget widget = vga_form_widget(form, number);
    if (is_text(widget)) {
        XtVaSetValues(widget, XmNmaxLength, static_cast<int>(vga_field_length(field)), nullptr);
        if (field.is_secret()) {
            vga_make_password_field(widget);
        }
    }
    if (is_text(widget) || is_toggle(field)) {
        XtAddCallback(widget, XmNvalueChangedCallback, changed, form);
    }
    if (!is_menu(field)) {
        return;
    }
    for_items(form, field, [&](const records::FieldWord &word, Widget item) {
        XtAddCallback(item, XmNactivateCallback, changed, form);
        if (word.message != 0) {
            put_label(item, vga_message(word.message));
        }
    });
}

bool has_items(const VGA_FORM *form, const VGA_FIELD &field) {
    bool found = false;
    for_items(form, field, [&found](const records::FieldWord &, Widget) { found = true; });
    return found;
}

} // namespace

Widget vga_form_widget(const VGA_FORM *form, NB_USHORT number) {
    return *static_cast<Widget *>(vga_form_data(form, row_of(form, number).member));
}

Widget vga_form_block(Widget widget) {
    while (!XmIsColumn(XtParent(widget)) && !XtIsShell(XtParent(widget))) {
        widget = XtParent(widget);
    }
    return widget;
}

std::string vga_form_label(const VGA_FORM *form, NB_USHORT number) {
    Widget widget = vga_form_widget(form, number);
    std::string label = is_toggle(row_of(form, number))
                            ? label_text(widget)
                            : label_text(label_of(vga_form_block(widget)));
    label.erase(label.find_last_not_of(" :*") + 1);
    return label;
}

NB_USHORT vga_form_find_fields(VGA_FORM *form, XtCallbackProc changed) {
    const VGA_FORM_PLAN &plan = *form->plan;
    if (plan.fields.size() > VGA_FORM_MAX_FIELDS) {
        v0_assert_fatal(__FILE__, __LINE__, "plan.fields.size() <= VGA_FORM_MAX_FIELDS");
        return 0;
    }
    for (const VGA_FORM_WIDGET &row : plan.widgets) {
        Widget widget = XtNameToWidget(form->common.widget, row.name);
        *static_cast<Widget *>(vga_form_data(form, row.member)) = widget;
        if (widget == nullptr) {
            return 0;
        }
    }
    for (NB_USHORT number = 0; number < plan.fields.size(); number++) {
        const VGA_FIELD &field = row_of(form, number);
        if (vga_form_widget(form, number) == nullptr ||
            (is_menu(field) && !has_items(form, field))) {
            return 0;
        }
        watch(form, number, changed);
    }
    return 1;
}

NB_VOID vga_form_put_field(const VGA_FORM *form, NB_USHORT number, const NB_VOID *data) {
    const VGA_FIELD &field = row_of(form, number);
    Widget widget = vga_form_widget(form, number);
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    look_of(form, field, data, text);
    if (is_toggle(field)) {
        XmToggleButtonSetState(widget, text[0] == 'y', False);
    } else if (is_menu(field)) {
        XtVaSetValues(widget, XmNmenuHistory, item_of(form, field, text), nullptr);
    } else if (is_text(widget)) {
        vga_fill_field(widget, text);
    } else {
        put_label(widget, vga_shown_word(*field.row, text));
    }
}

NB_USHORT vga_form_field_is(const VGA_FORM *form, NB_USHORT number, const NB_VOID *data) {
    const VGA_FIELD &field = row_of(form, number);
    if (field.has(VGA_FIELD_SHOWN)) {
        return 1;
    }
    NB_CHAR here[VGA_FIELD_TEXT_SIZE];
    NB_CHAR there[VGA_FIELD_TEXT_SIZE];
    read_widget(form, number, here);
    look_of(form, field, data, there);
    return strcmp(here, there) == 0;
}

std::string vga_form_field_text(const VGA_FORM *form, NB_USHORT number) {
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    read_widget(form, number, text);
    const VGA_FIELD &field = row_of(form, number);
    if (field.is_secret()) {
        return text[0] != '\0' ? "******" : "";
    }
    return is_menu(field) ? label_text(item_of(form, field, text))
                          : vga_shown_word(*field.row, text);
}

std::string vga_form_text_of(const VGA_FORM *form, NB_USHORT number, const NB_VOID *data) {
    const VGA_FIELD &field = row_of(form, number);
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    look_of(form, field, data, text);
    return is_menu(field) ? label_text(item_of(form, field, text))
                          : vga_shown_word(*field.row, text);
}

/* What its conditions look at was touched: it may not have been of use before. */
static bool is_switched(const VGA_FORM *form, const VGA_FIELD &field) {
    return std::any_of(field.when.begin(), field.when.end(), [form](const VGA_CONDITION &one) {
        return one.field >= 0 && vga_form_field_is(form, static_cast<NB_USHORT>(one.field),
                                                   vga_form_shown(form)) == 0;
    });
}

NB_VOID vga_form_read_field(const VGA_FORM *form, NB_USHORT number, NB_VOID *data) {
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    read_widget(form, number, text);
    (NB_VOID) vga_field_from_text(row_of(form, number), "", text, 0, data);
}

VGA_FAULT vga_form_get_field(const VGA_FORM *form, NB_USHORT number, NB_VOID *data) {
    const VGA_FIELD &field = row_of(form, number);
    const auto *shown = static_cast<const NB_UCHAR *>(vga_form_shown(form));
    const bool untouched = form->adding == 0 && vga_form_field_is(form, number, shown) != 0;
    NB_UCHAR *place = static_cast<NB_UCHAR *>(data) + field.offset();
    const std::vector<NB_UCHAR> before(place, place + field.row->width);
    VGA_FAULT fault = take_field(form, number, data);
    if (fault && untouched && !is_switched(form, field)) {
        /* What was so before is not the operator's doing. */
        std::vector<NB_UCHAR> as_shown(shown, shown + form->plan->data_size);
        fault = take_field(form, number, as_shown.data()) ? VGA_FAULT{} : fault;
    }
    if (fault) {
        std::copy(before.begin(), before.end(), place);
    } else if (untouched && field.part == VGA_FIELD_WHOLE) {
        memcpy(place, shown + field.offset(), field.row->width);
    }
    /* Halves of a name share their bytes: an untouched one has put the same text there. */
    if (fault && fault.field < 0) {
        fault.field = static_cast<NB_SHORT>(number);
    }
    return fault;
}

NB_USHORT vga_form_field_of_use(const VGA_FORM *form, NB_USHORT number) {
    const auto when = row_of(form, number).when;
    return std::all_of(when.begin(), when.end(), [form](const VGA_CONDITION &condition) {
        return holds(form, condition) &&
               (condition.field < 0 ||
                vga_form_field_of_use(form, static_cast<NB_USHORT>(condition.field)) != 0);
    });
}

NB_USHORT vga_form_field_editable(const VGA_FORM *form, NB_USHORT number) {
    const VGA_FIELD &field = row_of(form, number);
    return form->read_only == 0 && !field.has(VGA_FIELD_SHOWN) &&
           (!field.has(VGA_FIELD_NEW) || form->adding != 0) &&
           vga_form_field_of_use(form, number) != 0;
}

NB_VOID vga_form_enable_field(const VGA_FORM *form, NB_USHORT number) {
    const VGA_FIELD &field = row_of(form, number);
    Widget widget = vga_form_widget(form, number);
    Widget block = vga_form_block(widget);
    NB_USHORT on = vga_form_field_editable(form, number);
    if (is_text(widget)) {
        /* A text that can only be looked at can still be copied. */
        XtVaSetValues(widget, XmNeditable, on != 0, nullptr);
        on = vga_form_field_of_use(form, number);
    } else if (field.has(VGA_FIELD_SHOWN)) {
        on = vga_form_field_of_use(form, number);
    }
    set_block_sensitive(block, on);
    vga_set_field_hint_text(widget, hint_of(form, number).c_str());
    vga_set_reason_text(block, reason_of(form, field).c_str());
}

NB_VOID vga_form_mark_field(VGA_FORM *form, NB_USHORT number, VGA_FORM_MARK mark) {
    Widget widget = vga_form_widget(form, number);
    form->marks[number] = mark;
    Widget label = is_toggle(row_of(form, number)) ? widget : label_of(vga_form_block(widget));
    vga_mark_label(label, mark != VGA_MARK_NONE);
}

Widget vga_form_first_field(const VGA_FORM *form) {
    for (NB_USHORT number = 0; number < form->plan->fields.size(); number++) {
        if (vga_form_field_editable(form, number) != 0) {
            return vga_form_focus_of(form, number);
        }
    }
    return nullptr;
}

Widget vga_form_focus_of(const VGA_FORM *form, NB_USHORT number) {
    Widget widget = vga_form_widget(form, number);
    return is_menu(row_of(form, number)) ? XmOptionButtonGadget(widget) : widget;
}
