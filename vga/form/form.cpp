#include "form.h"
#include "chooser.h"
#include "entry.h"
#include "fieldchecks.h"
#include "fieldwidgets.h"
#include "filtercallbacks.h"
#include "formparts.h"
#include "globals.h"
#include "hints.h"
#include "holders.h"
#include "marks.h"
#include "messages.h"
#include "nesteditems.h"
#include "widgets.h"
#include <Xm/MessageB.h>
#include <algorithm>
#include <cstring>

VGA_FORM *vga_form_of_widget(Widget widget) {
    VGA_DIALOG *desc = vga_get_dialog_from_widget(widget);
    return desc != nullptr && desc->in_use != 0 ? vga_form_of(desc) : nullptr;
}

const NB_CHAR *vga_form_name(const VGA_FORM *form) {
    return vga_row_of(&form->common).name;
}

Widget vga_form_part(const VGA_FORM *form, const NB_CHAR *part) {
    return XtNameToWidget(form->common.widget,
                          (std::string("*") + vga_form_name(form) + part).c_str());
}

/* What is on the screen. */

NB_VOID vga_form_arrange(VGA_FORM *form) {
    /* Of a status form all stays of use while it asks, and the keyboard where it is. */
    const NB_USHORT idle = form->pending == 0 || form->plan->kind == VGA_FORM_STATUS;
    if (idle) { /* bounds in hints follow what stands in the fields before */
        memcpy(vga_form_wanted(form), vga_form_working(form), form->plan->data_size);
    }
    for (NB_USHORT field = 0; field < form->plan->fields.size(); field++) {
        if (idle && form->read_only == 0 && !form->plan->fields[field].has(VGA_FIELD_SHOWN)) {
            vga_form_read_field(form, field, vga_form_wanted(form));
        }
        vga_form_enable_field(form, field);
    }
    const NB_USHORT changed = vga_form_changes(form) != 0;
    vga_dialog_sensitive(&form->common, form->apply_button, idle);
    vga_set_sensitive(form->apply_button, idle && (changed || form->adding != 0));
    vga_set_sensitive(form->reset_button, idle && changed);
    vga_set_sensitive(form->refresh_button, vga_form_record(form) != nullptr);
    vga_set_sensitive(form->period, vga_form_record(form) != nullptr);
    vga_set_sensitive(form->back_button, idle && form->page > 0);
    vga_set_sensitive(vga_get_work_area(form->common.widget), idle);
    vga_check_choosers(&form->common);
    if (form->plan->arranged != nullptr) {
        form->plan->arranged(form);
    }
}

NB_VOID vga_form_fill(VGA_FORM *form) {
    form->filling = 1;
    for (NB_USHORT field = 0; field < form->plan->fields.size(); field++) {
        vga_form_put_field(form, field, vga_form_shown(form));
        vga_form_mark_field(form, field, VGA_MARK_NONE);
    }
    form->filling = 0;
    vga_form_fill_lists(form);
    form->overwrite = form->contested = 0;
    vga_form_arrange(form);
}

/* A child accepts without a verb; whether it may edit is its parent's affair. */
static NB_USHORT may_only_look(VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    form->refusal = 0;
    if (plan.kind == VGA_FORM_CHILD) {
        form->refusal = vga_form_of(form->common.parent)->refusal;
        return vga_form_of(form->common.parent)->read_only;
    }
    const bool lost = form->adding != 0 ? vga_form_owner(form) == nullptr && plan.type != nullptr
                                        : vga_form_record(form) == nullptr;
    if (gvga_read_only != 0 || (plan.issue == nullptr && plan.act == nullptr) || lost ||
        (plan.may_edit != nullptr && plan.may_edit(form) == 0)) {
        return 1;
    }
    form->refusal = plan.refuses != nullptr ? plan.refuses(form) : NB_USHORT{0};
    return form->refusal != 0;
}

NB_VOID vga_form_ok_cb(Widget widget, XtPointer, XtPointer) {
    if (VGA_FORM *form = vga_form_of_widget(widget)) {
        form->confirmed = 0; /* an answer counts for what it was asked about */
        vga_form_submit(form, 1);
    }
}

NB_VOID vga_form_set_rights(VGA_FORM *form) {
    const NB_USHORT refusal = form->refusal;
    form->read_only = may_only_look(form);
    if (form->refusal != refusal) {
        vga_form_say(form, "");
    }
    auto set = form->read_only != 0 ? vga_dialog_disallow_edit : vga_dialog_allow_edit;
    set(&form->common, vga_form_ok_cb, form->apply_button);
    if (form->plan->act != nullptr) { /* else it closes, and says so */
        const std::string acts = vga_form_literal(vga_form_name(form) + std::string("Acts"));
        const VGA_STRING label(form->read_only != 0 ? vga_message(VGA_MSG_FORM_OK) : acts.c_str());
        XtVaSetValues(form->common.widget, XmNokLabelString, label.get(), nullptr);
    }
    if (form->reset_button != nullptr) {
        (form->read_only != 0 ? XtUnmanageChild : XtManageChild)(form->reset_button);
    }
    vga_define_tabbing_order(form->common.widget, vga_get_work_area(form->common.widget));
}

/* Data. */

/* A list may cut an entry behind its last item. */
static NB_VOID copy_entry(const VGA_FORM_TYPE &type, const NB_VOID *entry, NB_UCHAR *bytes) {
    NB_USHORT length;
    memcpy(&length, entry, sizeof(length));
    memcpy(bytes, entry, length != 0 ? std::min(length, type.entry_size) : type.entry_size);
}

/* What the model has not read has its initial values. */
static NB_VOID load_settings(const VGA_FORM *form, NB_UCHAR *bytes) {
    const NB_VOID *record = vga_form_record(form);
    for (const VGA_FORM_SETTINGS &settings : form->plan->settings) {
        const NB_VOID *kept = record != nullptr ? settings.kept(record) : nullptr;
        records::set_initial_fields(settings.row->fields, bytes + settings.base);
        if (kept != nullptr && static_cast<const NAP_VCB *>(kept)->opcode != 0) {
            memcpy(bytes + settings.base, kept, settings.row->block_size);
        }
    }
}

NB_VOID vga_form_load(VGA_FORM *form, NB_VOID *data) {
    const VGA_FORM_PLAN &plan = *form->plan;
    auto *bytes = static_cast<NB_UCHAR *>(data);
    memset(bytes, 0, plan.data_size);
    if (form->list != nullptr) {
        vga_form_load_item(form, data);
    } else if (plan.kind == VGA_FORM_CHILD) {
        memcpy(bytes, vga_form_wanted(vga_form_of(form->common.parent)), plan.data_size);
    } else if (!plan.settings.empty()) {
        load_settings(form, bytes);
    } else if (plan.type != nullptr && vga_form_record(form) != nullptr) {
        copy_entry(*plan.type, plan.type->entry(vga_form_record(form)), bytes);
    } else if (plan.schema != nullptr) {
        records::set_initial_fields(plan.schema->fields, bytes);
    }
    if (plan.load != nullptr) {
        plan.load(form, data);
    }
}

NB_VOID vga_form_reload(VGA_FORM *form) {
    vga_form_load(form, vga_form_shown(form));
    memcpy(vga_form_working(form), vga_form_shown(form), form->plan->data_size);
    vga_form_fill(form);
    vga_form_show_title(form);
}

NB_USHORT vga_form_changes(const VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    NB_USHORT changes =
        memcmp(vga_form_working(form), vga_form_shown(form), plan.data_size) != 0 ? 1 : 0;
    for (NB_USHORT field = 0; field < plan.fields.size(); field++) {
        changes += vga_form_field_is(form, field, vga_form_shown(form)) == 0 ? 1 : 0;
    }
    return changes;
}

NB_VOID vga_form_working_changed(VGA_FORM *form) {
    vga_form_fill_lists(form);
    vga_form_arrange(form);
}

/* Slots of the row. */

namespace {

NB_VOID changed_cb(Widget, XtPointer data, XtPointer) {
    auto *form = static_cast<VGA_FORM *>(data);
    if (form->filling != 0 || form->common.in_use == 0) {
        return;
    }
    for (NB_USHORT field = 0; field < form->plan->fields.size(); field++) {
        if (form->marks[field] == VGA_MARK_WRONG) {
            vga_form_mark_field(form, field, VGA_MARK_NONE);
        }
    }
    vga_form_arrange(form);
}

NB_VOID apply_cb(Widget widget, XtPointer, XtPointer) {
    if (VGA_FORM *form = vga_form_of_widget(widget)) {
        form->confirmed = 0;
        vga_form_submit(form, 0);
    }
}

NB_VOID reset_cb(Widget widget, XtPointer, XtPointer) {
    VGA_FORM *form = vga_form_of_widget(widget);
    if (form != nullptr && form->pending == 0) {
        memcpy(vga_form_working(form), vga_form_shown(form), form->plan->data_size);
        vga_form_fill(form);
    }
}

NB_VOID child_cb(Widget widget, XtPointer data, XtPointer) {
    if (VGA_FORM *form = vga_form_of_widget(widget)) {
        const NB_CHAR *name = static_cast<VGA_FORM_OPENER *>(data)->dialog;
        vga_form_open_child(form, vga_find_row_named(name)->dialog_id);
    }
}

NB_VOID add_callback(Widget button, XtCallbackProc proc, const VGA_FORM_OPENER *opener = nullptr) {
    if (button != nullptr) {
        XtAddCallback(button, XmNactivateCallback, proc, const_cast<VGA_FORM_OPENER *>(opener));
    }
}

NB_VOID attach_choosers(VGA_FORM *form) {
    for (NB_USHORT number = 0; number < form->plan->fields.size(); number++) {
        const VGA_FIELD &field = form->plan->fields[number];
        if (field.choices == nullptr || field.has(VGA_FIELD_SHOWN)) {
            continue;
        }
        const auto *button = static_cast<const Widget *>(vga_form_data(form, field.button));
        vga_attach_chooser(
            &form->common, vga_form_widget(form, number), field.button != 0 ? *button : nullptr,
            {.title = vga_form_label(form, number), .none = "", .choices = [form, &field] {
                 return field.choices(form);
             }});
    }
}

/* The open form of that row on the record, or on a new one of that owner. */
VGA_FORM *find_open(NB_USHORT dialog_id, const NB_VOID *record, const NB_VOID *owner) {
    for (VGA_DIALOG *desc = vga_find_row(dialog_id)->first_desc; desc != nullptr;
         desc = desc->next_desc) {
        const bool same = record != nullptr
                              ? desc->parent_item == record
                              : vga_form_of(desc)->adding != 0 && vga_form_of(desc)->gone == 0 &&
                                    desc->owner_item == owner;
        if (desc->in_use != 0 && same) {
            return vga_form_of(desc);
        }
    }
    return nullptr;
}

/* What is opened, over what, and for what. */
struct OPENING {
    NB_USHORT dialog_id;
    VGA_DIALOG *parent;
    NB_VOID *record = nullptr;
    NB_VOID *owner = nullptr;
    VGA_FORM_MODE mode = VGA_FORM_CHANGE;
    const VGA_FORM_LIST *list = nullptr;
    NB_LONG item = 0;
    const NB_VOID *copied = nullptr; /* a record that the new one is made after */
};

/* A key of its own is what makes it another one; what the key says of the owner stays. */
NB_VOID load_copy(VGA_FORM *form, const NB_VOID *record) {
    const VGA_FORM_PLAN &plan = *form->plan;
    auto *shown = static_cast<NB_UCHAR *>(vga_form_shown(form));
    const std::vector<NB_UCHAR> fresh(shown, shown + plan.data_size);
    copy_entry(*plan.type, plan.type->entry(record), shown);
    const size_t from = records::KEY_OFFSET + plan.schema->owner_size();
    const size_t to = records::KEY_OFFSET + plan.schema->key_size();
    for (const VGA_FIELD &field : plan.fields) {
        if (field.base == 0 && field.row->offset >= from && field.row->offset < to) {
            memcpy(shown + field.offset(), fresh.data() + field.offset(), field.row->width);
        }
    }
}

VGA_FORM *open(const OPENING &opening) {
    VGA_DIALOG *desc = nullptr;
    if (vga_find_row(opening.dialog_id)->record_changed != vga_form_record_changed) {
        v0_assert(__FILE__, __LINE__, "record_changed == vga_form_record_changed");
        return nullptr;
    }
    if (vga_get_dialog(opening.dialog_id, opening.parent, opening.record, &desc) == 0) {
        return nullptr;
    }
    VGA_FORM *form = vga_form_of(desc);
    form->adding = opening.mode != VGA_FORM_CHANGE;
    form->repeat = opening.mode == VGA_FORM_REPEAT;
    form->list = opening.list;
    form->item = opening.item;
    form->pending = form->leaving = form->confirmed = form->overwrite = form->page = form->gone = 0;
    form->renaming = form->refusal = 0;
    vga_form_attach(form, opening.record,
                    opening.copied != nullptr ? form->plan->type->owner(opening.copied)
                                              : opening.owner);
    vga_form_load(form, vga_form_shown(form));
    if (opening.copied != nullptr) {
        load_copy(form, opening.copied);
    }
    memcpy(vga_form_working(form), vga_form_shown(form), form->plan->data_size);
    vga_form_set_rights(form);
    vga_form_fill(form);
    vga_form_show_title(form);
    vga_mark_form(form->message_line, vga_mark_of(desc));
    vga_form_fit_pages(form);
    vga_form_show_page(form, 0);
    vga_form_say(form, "");
    vga_display_dialog(desc);
    Widget first = vga_form_first_field(form);
    vga_focus_field(first != nullptr ? first : XtNameToWidget(form->common.widget, "OK"));
    if (form->plan->kind == VGA_FORM_STATUS) {
        form->as_of = 0; /* the model may know no more than what the node said long ago */
        vga_form_ask_anew(form);
    }
    return form;
}

} // namespace

NB_USHORT vga_form_get_widgets(VGA_DIALOG *desc, const VGA_FORM_PLAN *plan) {
    VGA_FORM *form = vga_form_of(desc);
    form->plan = plan;
    form->read_only = 1; /* until it is opened */
    form->apply_button = vga_form_part(form, "ApplyButton");
    form->reset_button = vga_form_part(form, "ResetButton");
    form->message_line = vga_form_part(form, "MessageLine");
    v0_mb_strncpy(form->title, vga_get_title(desc).c_str(), sizeof(form->title));
    if (vga_form_find_fields(form, changed_cb) == 0) {
        return 0;
    }
    add_callback(form->apply_button, apply_cb);
    add_callback(form->reset_button, reset_cb);
    for (const VGA_FORM_OPENER &opener : plan->children) {
        add_callback(*static_cast<const Widget *>(vga_form_data(form, opener.member)), child_cb,
                     &opener);
    }
    vga_form_attach_lists(form);
    vga_form_find_pages(form);
    attach_choosers(form);
    const bool asks = plan->act != nullptr && desc->dialog_id >= VGA_UID_PARTS;
    if (plan->kind == VGA_FORM_CHILD || asks) { /* what it is about stays as it is meanwhile */
        XtVaSetValues(desc->widget, XmNdialogStyle, XmDIALOG_PRIMARY_APPLICATION_MODAL, nullptr);
    }
    XtAddCallback(desc->widget, XmNcancelCallback, vga_close_cb, nullptr);
    vga_set_hint_line(desc->widget, form->message_line);
    return 1;
}

NB_VOID vga_form_close_proc(VGA_DIALOG *desc) {
    VGA_FORM *form = vga_form_of(desc);
    vga_form_detach(form);
    form->read_only = 1; /* there is nothing that could be changed */
    vga_form_stop_asking(form);
    /* Neither a password nor what a child form left is for the next one who opens it. */
    form->filling = 1;
    for (NB_USHORT field = 0; field < form->plan->fields.size(); field++) {
        if (form->plan->fields[field].is_secret()) {
            vga_fill_field(vga_form_widget(form, field), "");
        }
    }
    vga_close_chooser(desc);
    for (const NB_USHORT data : {form->plan->shown, form->plan->working, form->plan->wanted}) {
        explicit_bzero(vga_form_data(form, data), form->plan->data_size);
    }
    form->filling = 0;
}

static NB_VOID discard_cb(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG handle) {
    if (answer == VGA_ANSWER_OK && handle == desc->handle) {
        vga_close_children(desc, 1, 0);
    }
}

NB_USHORT vga_form_may_close(VGA_DIALOG *desc) {
    constexpr NB_USHORT few = 3;
    VGA_FORM *form = vga_form_of(desc);
    const NB_USHORT changes = vga_form_changes(form);
    if (form->pending != 0 && form->renaming != 0) {
        return 0; /* the old one is deleted and the new one not there yet */
    }
    if (form->read_only != 0 || form->pending != 0 || changes <= few) {
        return 1;
    }
    vga_form_ask(
        form, {.message = VGA_MSG_FORM_DISCARD, .loses = 1, .arguments = {std::to_string(changes)}},
        discard_cb);
    return 0;
}

/* Opening. */

VGA_FORM *vga_form_open(NB_USHORT dialog_id, VGA_DIALOG *parent, NB_VOID *record, NB_VOID *owner,
                        VGA_FORM_MODE mode) {
    if (VGA_FORM *form = find_open(dialog_id, record, owner)) {
        vga_raise_with_keyboard(&form->common);
        return form;
    }
    return open({dialog_id, parent, record, owner, mode});
}

VGA_FORM *vga_form_open_copy(NB_USHORT dialog_id, VGA_DIALOG *parent, const NB_VOID *record) {
    return open({.dialog_id = dialog_id, .parent = parent, .mode = VGA_FORM_ADD, .copied = record});
}

static VGA_FORM *open_child(VGA_FORM *parent, NB_USHORT dialog_id, const VGA_FORM_LIST *list,
                            NB_LONG item, VGA_FORM_MODE mode) {
    if (VGA_FORM *form = find_open(dialog_id, parent, nullptr)) {
        vga_raise_with_keyboard(&form->common);
        return form;
    }
    vga_form_arrange(parent); /* what its fields have now is what the child begins with */
    return open({.dialog_id = dialog_id,
                 .parent = &parent->common,
                 .record = parent,
                 .mode = mode,
                 .list = list,
                 .item = item});
}

VGA_FORM *vga_form_open_child(VGA_FORM *parent, NB_USHORT dialog_id) {
    return open_child(parent, dialog_id, nullptr, 0, VGA_FORM_CHANGE);
}

VGA_FORM *vga_form_open_item(VGA_FORM *parent, const VGA_FORM_LIST *list, NB_LONG item) {
    const auto *entry = static_cast<const NB_UCHAR *>(vga_form_working(parent));
    const auto items = static_cast<NB_LONG>(records::item_count(*list->items, entry));
    return open_child(parent, vga_find_row_named(list->editor)->dialog_id, list, item,
                      item < items ? VGA_FORM_CHANGE : VGA_FORM_ADD);
}
