#include "form.h"
#include "fieldchecks.h"
#include "fieldwidgets.h"
#include "globals.h"
#include "hints.h"
#include "holders.h"
#include "messages.h"
#include "widgets.h"
#include <Xm/MessageB.h>
#include <cstring>
#include <string>
#include <vector>

namespace {

VGA_FORM *form_of(VGA_DIALOG *desc) {
    return reinterpret_cast<VGA_FORM *>(desc);
}

VGA_FORM *form_from_widget(Widget widget) {
    VGA_DIALOG *desc = vga_get_dialog_from_widget(widget);
    return desc != nullptr && desc->in_use != 0 ? form_of(desc) : nullptr;
}

const NB_CHAR *name_of(const VGA_FORM *form) {
    return gvga_uid_desc[form->common.dialog_id].name;
}

Widget named_part(const VGA_FORM *form, const NB_CHAR *part) {
    return XtNameToWidget(form->common.widget, (std::string("*") + name_of(form) + part).c_str());
}

/* What is on the screen. */

/* What can be done now: after every change of the fields, of the record or of the rights. */
NB_VOID arrange(VGA_FORM *form) {
    for (NB_USHORT field = 0; field < form->plan->field_count; field++) {
        vga_form_enable_field(form, field);
    }
    NB_USHORT waiting = form->pending;
    NB_USHORT dirty = vga_form_dirty(form);
    vga_dialog_sensitive(&form->common, form->apply, waiting == 0);
    vga_set_sensitive(form->apply, waiting == 0 && (dirty != 0 || form->adding != 0));
    vga_set_sensitive(form->reset, waiting == 0 && dirty != 0);
    vga_set_sensitive(vga_get_work_area(form->common.widget), waiting == 0);
    if (form->plan->arranged != nullptr) {
        form->plan->arranged(form);
    }
}

NB_VOID changed_cb(Widget, XtPointer data, XtPointer) {
    auto *form = static_cast<VGA_FORM *>(data);
    if (form->filling == 0 && form->common.in_use != 0) {
        arrange(form);
    }
}

NB_VOID fill(VGA_FORM *form) {
    form->filling = 1;
    for (NB_USHORT field = 0; field < form->plan->field_count; field++) {
        vga_form_put_field(form, field, vga_form_shown(form));
    }
    form->filling = 0;
    arrange(form);
}

NB_USHORT may_only_look(const VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    const bool lost = form->common.parent_item == nullptr && form->adding == 0;
    return gvga_read_only != 0 || plan.issue == nullptr || lost ||
           (plan.may_edit != nullptr && plan.may_edit(form) == 0);
}

/* Between editing and looking. */
NB_VOID set_rights(VGA_FORM *form) {
    form->read_only = may_only_look(form);
    auto set = form->read_only != 0 ? vga_dialog_disallow_edit : vga_dialog_allow_edit;
    set(&form->common, vga_form_ok_cb, form->apply);
    if (form->reset != nullptr) {
        (form->read_only != 0 ? XtUnmanageChild : XtManageChild)(form->reset);
    }
    vga_define_tabbing_order(form->common.widget, vga_get_work_area(form->common.widget));
}

NB_VOID load(VGA_FORM *form) {
    NB_USHORT size = form->plan->data_size;
    memset(vga_form_shown(form), 0, size);
    form->plan->load(form, vga_form_shown(form));
    memcpy(vga_form_edited(form), vga_form_shown(form), size);
}

/* Checking. */

NB_USHORT refuse(VGA_FORM *form, NB_USHORT field, NB_USHORT message) {
    const VGA_FIELD &row = form->plan->fields[field];
    return vga_refuse_range(&form->common, vga_form_focus_of(form, field), message, name_of(form),
                            row.row->low, vga_field_high(row, vga_form_edited(form)));
}

/* Checks the fields in order and takes their values over; 0 after the message of the first that is
 * wrong. */
NB_USHORT collect(VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    NB_VOID *edited = vga_form_edited(form);
    memcpy(edited, vga_form_shown(form), plan.data_size);
    for (NB_USHORT field = 0; field < plan.field_count; field++) {
        if ((plan.fields[field].uses & VGA_FIELD_SHOWN) != 0 ||
            vga_form_field_of_use(form, field) == 0) {
            continue;
        }
        if (NB_USHORT message = vga_form_get_field(form, field, edited)) {
            return refuse(form, field, message);
        }
    }
    VGA_FORM_FAULT fault = plan.check != nullptr ? plan.check(form, edited) : VGA_FORM_FAULT();
    return fault.message == 0 || refuse(form, fault.field, fault.message) != 0;
}

/* Verbs. */

/* The verb succeeded: the fields now show what is so. */
NB_VOID finish(VGA_FORM *form) {
    NB_USHORT leaving = form->leaving;
    form->leaving = 0;
    if (form->repeat == 0) {
        form->adding = 0;
        if (leaving != 0) {
            vga_close_children(&form->common, 1, 0);
            return;
        }
        arrange(form);
        return;
    }
    std::vector<NB_UCHAR> nothing(form->plan->data_size);
    form->filling = 1;
    for (NB_USHORT field = form->plan->field_count; field-- > 0;) {
        if ((form->plan->fields[field].uses & VGA_FIELD_KEY) != 0) {
            vga_form_put_field(form, field, nothing.data());
            vga_focus_field(vga_form_focus_of(form, field));
        }
    }
    form->filling = 0;
    arrange(form);
}

/* Meanwhile the keyboard rests: on Cancel, a second press of Return would close the dialog.  The
 * mouse and Escape can. */
NB_VOID set_pending(VGA_FORM *form, NB_USHORT on) {
    Widget focus = on == 0 ? vga_form_first_field(form) : nullptr;
    form->pending = on;
    for (const NB_CHAR *button : {"Cancel", "Help"}) {
        if (Widget widget = XtNameToWidget(form->common.widget, button)) {
            XtVaSetValues(widget, XmNtraversalOn, on == 0, nullptr);
        }
    }
    arrange(form);
    if (focus != nullptr) {
        vga_focus_field(focus);
    }
}

NB_VOID fail(VGA_FORM *form, const NAP_VCB &vcb) {
    form->leaving = 0;
    set_pending(form, 0);
    vga_display_verb_error(&form->common, &vcb);
}

NB_VOID submit(VGA_FORM *form);

/* Everything is checked again: the question may have stood there for an hour. */
NB_VOID question_cb(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG handle) {
    if (answer == VGA_ANSWER_OK && handle == desc->handle) {
        form_of(desc)->confirmed = 1;
        submit(form_of(desc));
    }
}

/* Returns 1 when the answer to a question has to be waited for. */
NB_USHORT ask(VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    NB_USHORT confirmed = form->confirmed;
    form->confirmed = 0;
    if (confirmed != 0 || plan.question == nullptr) {
        return 0;
    }
    const NB_USHORT message = plan.question(form);
    if (message != 0) {
        vga_display_confirm_dialog(&form->common, message, nullptr, question_cb,
                                   vga_form_handle(form), "");
    }
    return message != 0;
}

NB_VOID submit(VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    if (form->pending != 0 || form->read_only != 0 || collect(form) == 0) {
        form->confirmed = 0;
        return;
    }
    if (form->adding == 0 &&
        memcmp(vga_form_shown(form), vga_form_edited(form), plan.data_size) == 0) {
        finish(form);
        return;
    }
    if (ask(form) != 0) {
        return;
    }
    set_pending(form, 1);
    if (plan.issue(form) == 0) {
        set_pending(form, 0);
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
    }
}

NB_VOID submit_for(Widget widget, NB_USHORT leaving) {
    VGA_FORM *form = form_from_widget(widget);
    if (form != nullptr && form->pending == 0) {
        form->leaving = leaving;
        submit(form);
    }
}

/* The record. */

/* Fields that the operator has touched stay as they are. */
NB_VOID follow_record(VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    std::vector<NB_UCHAR> fresh(plan.data_size);
    plan.load(form, fresh.data());
    std::vector<NB_USHORT> untouched;
    for (NB_USHORT field = 0; field < plan.field_count; field++) {
        if (vga_form_field_is(form, field, vga_form_shown(form)) != 0) {
            untouched.push_back(field);
        }
    }
    memcpy(vga_form_shown(form), fresh.data(), plan.data_size);
    form->filling = 1;
    for (NB_USHORT field : untouched) {
        vga_form_put_field(form, field, fresh.data());
    }
    form->filling = 0;
    if (form->read_only != may_only_look(form)) {
        set_rights(form);
    }
    arrange(form);
}

/* The title says that the record is gone for as long as the dialog is open: the box is soon read.
 */
NB_VOID mark_title(VGA_FORM *form) {
    XmString title = nullptr;
    XtVaGetValues(form->common.widget, XmNdialogTitle, &title, nullptr);
    const VGA_STRING owned(title);
    const VGA_TEXT text(static_cast<NB_CHAR *>(XmStringUnparse(
        title, nullptr, XmCHARSET_TEXT, XmMULTIBYTE_TEXT, nullptr, 0, XmOUTPUT_ALL)));
    v0_mb_strncpy(form->title, text.get() != nullptr ? text.get() : "", sizeof(form->title));
    NB_CHAR marked[sizeof(form->title) + 64];
    vga_print_msg(marked, sizeof(marked), VGA_MSG_FORM_TITLE_GONE, "s", form->title);
    vga_set_title(&form->common, marked);
}

NB_VOID unmark_title(VGA_FORM *form) {
    if (form->title[0] != '\0') {
        vga_set_title(&form->common, form->title);
        form->title[0] = '\0';
    }
}

NB_VOID lose_record(VGA_FORM *form) {
    if (form->slot != nullptr) {
        *form->slot = nullptr;
        form->slot = nullptr;
    }
    form->common.parent_item = nullptr;
    form->adding = form->plan->defines;
    set_rights(form);
    if (form->read_only != 0) {
        set_pending(form, 0); /* no answer changes anything any more */
    }
    arrange(form);
    mark_title(form);
    NB_USHORT message = form->plan->gone;
    if (message == 0) {
        message =
            form->plan->defines != 0 ? VGA_MSG_FORM_RECORD_GONE_DEFINE : VGA_MSG_FORM_RECORD_GONE;
    }
    vga_display_info_dialog(&form->common, message, nullptr, nullptr, 0, "");
}

} // namespace

/* Slots of the row. */

NB_USHORT vga_form_get_widgets(VGA_DIALOG *desc, const VGA_FORM_PLAN *plan) {
    VGA_FORM *form = form_of(desc);
    form->plan = plan;
    form->apply = named_part(form, "ApplyButton");
    form->reset = named_part(form, "ResetButton");
    if (vga_form_find_fields(form, changed_cb) == 0) {
        return 0;
    }
    vga_set_hint_line(desc->widget, named_part(form, "MessageLine"));
    return 1;
}

NB_VOID vga_form_close_proc(VGA_DIALOG *desc) {
    VGA_FORM *form = form_of(desc);
    if (form->slot != nullptr && desc->parent_item != nullptr) {
        *form->slot = nullptr;
    }
    form->slot = nullptr;
    unmark_title(form);
}

NB_VOID vga_form_record_changed(VGA_DIALOG *desc, NB_VOID *item, VGA_RECORD_CHANGE what) {
    VGA_FORM *form = form_of(desc);
    if (item == nullptr || desc->parent_item == nullptr) {
        return;
    }
    const bool own = item == desc->parent_item;
    if (what == VGA_RECORD_GONE && own) {
        lose_record(form);
    } else if (what != VGA_RECORD_GONE &&
               (own || (form->plan->shows_too != nullptr && form->plan->shows_too(form, item)))) {
        follow_record(form);
    }
}

/* Opening. */

VGA_FORM *vga_form_open(NB_USHORT dialog_id, VGA_DIALOG *parent, NB_VOID *record, VGA_DIALOG **slot,
                        VGA_FORM_MODE mode) {
    if (slot != nullptr && *slot != nullptr && (*slot)->in_use != 0) {
        vga_raise_dialog(*slot);
        return form_of(*slot);
    }
    VGA_DIALOG *desc = nullptr;
    if (vga_get_dialog(dialog_id, parent, record, &desc) == 0) {
        return nullptr;
    }
    VGA_FORM *form = form_of(desc);
    form->slot = slot;
    if (slot != nullptr) {
        *slot = desc;
    }
    form->adding = mode != VGA_FORM_CHANGE;
    form->repeat = mode == VGA_FORM_REPEAT;
    form->pending = form->leaving = form->confirmed = 0;
    load(form);
    set_rights(form);
    fill(form);
    vga_display_dialog(desc);
    if (Widget first = vga_form_first_field(form)) {
        vga_focus_field(first);
    }
    return form;
}

NB_USHORT vga_form_dirty(const VGA_FORM *form) {
    for (NB_USHORT field = 0; field < form->plan->field_count; field++) {
        if (vga_form_field_is(form, field, vga_form_shown(form)) == 0) {
            return 1;
        }
    }
    return 0;
}

/* Answers. */

NB_VOID vga_form_verb_done(const VGA_PROCESS_STATE *work) {
    auto *desc = static_cast<VGA_DIALOG *>(nba_validate_handle(work->user_data));
    if (desc == nullptr || desc->in_use == 0) {
        return;
    }
    VGA_FORM *form = form_of(desc);
    if (form->pending == 0) {
        return; /* the record went meanwhile */
    }
    if (vga_verb_succeeded(work->vcb) == 0) {
        fail(form, *work->vcb);
        return;
    }
    if (form->plan->next != nullptr && form->plan->next(form, work) != 0) {
        return;
    }
    memcpy(vga_form_shown(form), vga_form_edited(form), form->plan->data_size);
    set_pending(form, 0);
    finish(form);
}

/* Others purge verbs, too: their user data is the handle of something else. */
NB_VOID vga_form_verb_purged(NB_USHORT opcode, NB_ULONG user_data) {
    for (const VGA_UID_DESC &row : gvga_uid_desc) {
        VGA_DIALOG *desc = row.record_changed == vga_form_record_changed ? row.first_desc : nullptr;
        for (; desc != nullptr; desc = desc->next_desc) {
            if (desc->in_use != 0 && desc->handle == user_data && form_of(desc)->pending != 0) {
                NAP_VCB vcb = {};
                vcb.opcode = opcode;
                vcb.primary_rc = NAP_COMM_FAILURE;
                vcb.secondary_rc = NAP_NODE_GONE;
                fail(form_of(desc), vcb);
            }
        }
    }
}

/* Buttons. */

NB_VOID vga_form_ok_cb(Widget widget, XtPointer, XtPointer) {
    submit_for(widget, 1);
}

NB_VOID vga_form_apply_cb(Widget widget, XtPointer, XtPointer) {
    submit_for(widget, 0);
}

NB_VOID vga_form_reset_cb(Widget widget, XtPointer, XtPointer) {
    VGA_FORM *form = form_from_widget(widget);
    if (form != nullptr && form->pending == 0) {
        fill(form);
        if (Widget first = vga_form_first_field(form)) {
            vga_focus_field(first);
        }
    }
}
