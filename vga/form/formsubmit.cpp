#include "details.h"
#include "fieldchecks.h"
#include "fieldwidgets.h"
#include "form.h"
#include "formparts.h"
#include "globals.h"
#include "messages.h"
#include "outcomes.h"
#include "textfocus.h"
#include "verberror.h"
#include "widgets.h"
#include <cstring>

namespace {

const NB_CHAR *argument(const VGA_FAULT &fault, size_t number) {
    return number < fault.arguments.size() ? fault.arguments[number].c_str() : "";
}

const NB_CHAR *help_of(const VGA_FORM *form, const VGA_FAULT &fault) {
    if (fault.help_key != nullptr || vga_message_help(fault.message) != nullptr) {
        return fault.help_key;
    }
    return form->plan->help != nullptr ? form->plan->help : vga_form_name(form);
}

/* A name that another record of the owner, or another item of the list, has. */
NB_USHORT name_is_taken(const VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    if (form->list != nullptr) {
        return vga_form_item_is_taken(form);
    }
    return plan.type != nullptr && form->adding != 0 && plan.kind != VGA_FORM_CHILD &&
           vga_form_owner(form) != nullptr &&
           plan.type->find(vga_form_owner(form), vga_form_wanted(form)) != nullptr;
}

/* `field` is the last one of the name. */
VGA_FAULT check_name(const VGA_FORM *form, NB_USHORT field) {
    if (name_is_taken(form) == 0) {
        return {};
    }
    return {.message = VGA_MSG_FORM_TAKEN,
            .field = static_cast<NB_SHORT>(field),
            .arguments = {form->title, vga_form_field_text(form, field)}};
}

/* The fields that another administrator changed and the operator, too: a line for each. */
std::string contested(const VGA_FORM *form) {
    std::string lines;
    for (NB_USHORT field = 0; field < form->plan->fields.size(); field++) {
        if (form->marks[field] == VGA_MARK_OTHER &&
            vga_form_field_is(form, field, vga_form_shown(form)) == 0) {
            lines += (lines.empty() ? "" : "\n") + vga_form_label(form, field) + ": " +
                     vga_form_text_of(form, field, vga_form_shown(form));
        }
    }
    if (form->contested != 0) {
        lines += (lines.empty() ? "" : "\n") + std::string(vga_message(VGA_MSG_FORM_OTHER_PARTS));
    }
    return lines;
}

NB_VOID overwrite_cb(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG handle) {
    if (answer == VGA_ANSWER_OK && handle == desc->handle) {
        vga_form_of(desc)->overwrite = 1;
        vga_form_submit(vga_form_of(desc), vga_form_of(desc)->leaving);
    } else {
        vga_form_of(desc)->confirmed = 0;
    }
}

/* Returns 1 when the answer to a question has to be waited for. */
NB_USHORT ask(VGA_FORM *form) {
    const std::string others = contested(form);
    if (!others.empty() && form->overwrite == 0) {
        vga_form_ask(form, {.message = VGA_MSG_FORM_OVERWRITE, .loses = 1, .arguments = {others}},
                     overwrite_cb);
        return 1;
    }
    const NB_USHORT confirmed = form->confirmed;
    form->confirmed = 0;
    if (confirmed != 0 || form->plan->question == nullptr) {
        return 0;
    }
    const VGA_FAULT question = form->plan->question(form);
    if (question) {
        const VGA_MODAL_CB own = form->plan->answered;
        vga_form_ask(form, question, own != nullptr ? own : vga_form_answered);
    }
    return question ? 1 : 0;
}

/* Outcomes. */

/* "Mode BATCH", "Logging of the domain". */
std::string subject_in_words(const VGA_FORM *form, const NB_VOID *data) {
    const VGA_FORM_PLAN &plan = *form->plan;
    if (plan.settings.empty() && !plan.fields.empty()) {
        return form->title + (" " + vga_form_text_of(form, 0, data));
    }
    NB_CHAR text[300];
    vga_print_msg(text, sizeof(text), VGA_MSG_FORM_TITLE_SETTINGS, "s s", form->title,
                  vga_form_subject(form).c_str());
    return text;
}

NB_VOID tell(const VGA_FORM *form, NB_USHORT message, const NB_VOID *data,
             const std::string &rest = "", NB_ULONG failed = 0) {
    const VGA_FORM_TYPE *type = form->plan->type;
    const std::string subject = subject_in_words(form, data);
    const std::string name = vga_form_text_of(form, 0, vga_form_wanted(form));
    NB_CHAR text[600];
    vga_print_msg(text, sizeof(text), message, "s s", subject.c_str(), name.c_str());
    vga_tell_outcome(type != nullptr && type->of_domain == 0 ? vga_form_answerer_of(form) : "",
                     text + rest, failed);
}

NB_VOID tell_success(const VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    const NB_VOID *shown = vga_form_shown(form);
    const NB_VOID *wanted = vga_form_wanted(form);
    const bool renamed = form->adding == 0 && !plan.fields.empty() &&
                         plan.fields[0].has(VGA_FIELD_KEY) &&
                         vga_form_text_of(form, 0, shown) != vga_form_text_of(form, 0, wanted);
    tell(form,
         form->adding != 0 ? VGA_MSG_OUTCOME_DEFINED
         : renamed         ? VGA_MSG_OUTCOME_RENAMED
                           : VGA_MSG_OUTCOME_CHANGED,
         form->adding != 0 ? wanted : shown);
}

NB_VOID tell_failure(const VGA_FORM *form, const std::string &reason) {
    tell(form, form->adding != 0 ? VGA_MSG_OUTCOME_NOT_DEFINED : VGA_MSG_OUTCOME_NOT_CHANGED,
         form->adding != 0 ? vga_form_wanted(form) : vga_form_shown(form),
         reason.empty() ? "" : "\n" + reason, 1);
}

/* The parent gets the bytes of the fields, and what lists changed. */
NB_VOID accept_child(VGA_FORM *form) {
    VGA_FORM *parent = vga_form_of(form->common.parent);
    if (form->list != nullptr) {
        vga_form_accept_item(form);
        vga_close_children(&form->common, 1, 0);
        return;
    }
    vga_form_take_over(parent, static_cast<const NB_UCHAR *>(vga_form_shown(form)),
                       static_cast<const NB_UCHAR *>(vga_form_wanted(form)));
    vga_close_children(&form->common, 1, 0);
    vga_form_working_changed(parent);
}

NB_VOID next_entry(VGA_FORM *form) {
    NB_CHAR text[200];
    const std::string name = vga_form_text_of(form, 0, vga_form_wanted(form));
    vga_print_msg(text, sizeof(text), VGA_MSG_FORM_ADDED, "s", name.c_str());
    /* What the next one begins with; Cancel has nothing to ask about. */
    auto *shown = static_cast<NB_UCHAR *>(vga_form_shown(form));
    memcpy(shown, vga_form_wanted(form), form->plan->data_size);
    form->filling = 1;
    for (NB_USHORT field = static_cast<NB_USHORT>(form->plan->fields.size()); field-- > 0;) {
        const VGA_FIELD &row = form->plan->fields[field];
        if (row.has(VGA_FIELD_KEY)) {
            memset(shown + row.offset(), 0, row.row->width);
            form->before = vga_form_focus_of(form, field);
        }
        vga_form_put_field(form, field, shown);
    }
    form->filling = 0;
    memcpy(vga_form_working(form), shown, form->plan->data_size);
    vga_form_set_pending(form, 0);
    vga_form_say(form, text);
}

/* The record that the form is about after its verbs: a new one, or one that was renamed. */
NB_VOID find_record(VGA_FORM *form, const NB_VOID *entry) {
    const VGA_FORM_TYPE *type = form->plan->type;
    NB_VOID *owner = vga_form_owner(form);
    NB_VOID *record = type != nullptr && owner != nullptr && vga_form_record(form) == nullptr
                          ? type->find(owner, entry)
                          : nullptr;
    if (record != nullptr) {
        vga_form_attach(form, record, nullptr);
        form->adding = form->gone = 0;
    }
    form->renaming = 0;
}

/* A rename that stopped half way: under the new name, the old one, or not at all. */
NB_VOID find_again(VGA_FORM *form) {
    find_record(form, vga_form_wanted(form));
    find_record(form, vga_form_shown(form));
    if (vga_form_record(form) == nullptr && form->adding == 0) {
        form->adding = form->plan->defines;
        form->gone = 1;
        vga_form_set_rights(form);
        vga_form_show_title(form);
    }
}

/* The verb succeeded, or there was nothing to do: the fields now show what is so, and a new record
 * is one that is changed from now on. */
NB_VOID finish(VGA_FORM *form) {
    const NB_USHORT leaving = form->leaving;
    form->leaving = 0;
    if (form->pending != 0) {
        tell_success(form);
    }
    if (form->repeat != 0) {
        next_entry(form);
        return;
    }
    if (leaving != 0) {
        form->pending = 0;
        vga_close_children(&form->common, 1, 0);
        return;
    }
    const NB_USHORT changed = form->pending;
    find_record(form, vga_form_wanted(form));
    vga_form_set_rights(form);
    vga_form_reload(form);
    vga_form_set_pending(form, 0);
    vga_form_say(form, changed != 0 ? vga_message(VGA_MSG_FORM_CHANGED) : "");
}

/* What was entered stays. */
NB_VOID end_in_failure(VGA_FORM *form) {
    form->leaving = 0;
    if (form->renaming != 0) {
        find_again(form);
    }
    vga_form_set_pending(form, 0);
    vga_form_follow(form); /* what others did meanwhile */
}

NB_VOID fail(VGA_FORM *form, const NAP_VCB &vcb) {
    if (form->plan->kind == VGA_FORM_STATUS) {
        form->pending = 0;
        vga_form_stop_asking(form);
        vga_form_say_when(form);
    } else {
        const NB_CHAR *help_key;
        const VGA_OWNED<NB_CHAR> reason(
            vga_get_verb_error_message(vcb.opcode, vcb.primary_rc, vcb.secondary_rc, &help_key));
        tell_failure(form, reason ? reason.get() : "");
        vga_box_details(&form->common,
                        vga_verb_details(vcb, subject_in_words(form, vga_form_wanted(form)),
                                         vga_form_answerer_of(form))
                            .c_str());
        end_in_failure(form);
    }
    vga_display_verb_error(&form->common, &vcb);
}

/* The form that waits for an answer with this user data. */
VGA_FORM *waiting_form(NB_ULONG user_data) {
    for (const VGA_UID_DESC &row : gvga_uid_desc) {
        VGA_DIALOG *desc = row.record_changed == vga_form_record_changed ? row.first_desc : nullptr;
        for (; desc != nullptr; desc = desc->next_desc) {
            if (desc->in_use != 0 && desc->handle == user_data && vga_form_of(desc)->pending != 0) {
                return vga_form_of(desc);
            }
        }
    }
    return nullptr;
}

} // namespace

NB_USHORT vga_form_refuse(VGA_FORM *form, const VGA_FAULT &fault) {
    if (fault.field >= 0) {
        const auto field = static_cast<NB_USHORT>(fault.field);
        vga_form_show_page(form, form->plan->fields[field].page);
        if (form->marks[field] != VGA_MARK_OTHER) { /* that has to be asked about */
            vga_form_mark_field(form, field, VGA_MARK_WRONG);
        }
    }
    vga_display_error_dialog(&form->common, fault.message, help_of(form, fault), nullptr, 0,
                             "s s s s", argument(fault, 0), argument(fault, 1), argument(fault, 2),
                             argument(fault, 3));
    if (fault.field >= 0) {
        Widget widget = vga_form_focus_of(form, static_cast<NB_USHORT>(fault.field));
        vga_place_box_beside(&form->common, widget);
        vga_focus_field(widget);
    }
    return 0;
}

NB_VOID vga_form_ask(VGA_FORM *form, const VGA_FAULT &question, VGA_MODAL_CB callback) {
    if (question.loses != 0) {
        vga_question_loses(&form->common);
    }
    vga_display_confirm_dialog(&form->common, question.message, help_of(form, question), callback,
                               vga_form_handle(form), "s s s s", argument(question, 0),
                               argument(question, 1), argument(question, 2), argument(question, 3));
}

VGA_FAULT vga_form_collect(VGA_FORM *form, NB_SHORT page) {
    const VGA_FORM_PLAN &plan = *form->plan;
    NB_VOID *wanted = vga_form_wanted(form);
    memcpy(wanted, vga_form_working(form), plan.data_size);
    for (NB_USHORT field = 0; field < plan.fields.size(); field++) {
        const VGA_FIELD &row = plan.fields[field];
        if (row.has(VGA_FIELD_SHOWN) || vga_form_field_of_use(form, field) == 0 ||
            (page >= 0 && row.page != page)) {
            continue;
        }
        VGA_FAULT fault = vga_form_get_field(form, field, wanted);
        const bool keyed =
            field + 1U == plan.fields.size() || !plan.fields[field + 1].has(VGA_FIELD_KEY);
        if (!fault && row.has(VGA_FIELD_KEY) && keyed) {
            fault = check_name(form, field);
        }
        if (fault) {
            return fault;
        }
    }
    return page < 0 && plan.check != nullptr ? plan.check(form, wanted) : VGA_FAULT{};
}

NB_VOID vga_form_say_waiting(VGA_FORM *form) {
    NB_CHAR text[200];
    vga_print_msg(text, sizeof(text), VGA_MSG_FORM_WAITING, "s",
                  vga_form_answerer_of(form).c_str());
    vga_form_say(form, text);
}

/* Meanwhile the keyboard rests: on Cancel, a second press of Return would close the dialog.  The
 * mouse and Escape can. */
NB_VOID vga_form_set_pending(VGA_FORM *form, NB_USHORT on) {
    if (on != 0) {
        form->before = XmGetFocusWidget(form->common.shell);
    }
    form->pending = on;
    for (const NB_CHAR *button : {"Cancel", "Help"}) {
        if (Widget widget = XtNameToWidget(form->common.widget, button)) {
            XtVaSetValues(widget, XmNtraversalOn, on == 0, nullptr);
        }
    }
    vga_form_arrange(form);
    if (on != 0) {
        vga_form_say_waiting(form);
        return;
    }
    vga_form_say(form, "");
    /* What had it may be off by now, as Apply is. */
    if (form->before == nullptr || !XtIsSensitive(form->before) ||
        !XmProcessTraversal(form->before, XmTRAVERSE_CURRENT)) {
        vga_focus_field(vga_form_first_field(form));
    } else {
        vga_select_text(form->before);
    }
    form->before = nullptr;
}

NB_VOID vga_form_submit(VGA_FORM *form, NB_USHORT leaving) {
    const VGA_FORM_PLAN &plan = *form->plan;
    if (form->pending != 0 || form->read_only != 0 ||
        (leaving != 0 && plan.kind == VGA_FORM_GUIDED && vga_form_next_page(form) != 0)) {
        return;
    }
    form->leaving = leaving;
    if (const VGA_FAULT fault = vga_form_collect(form, -1)) {
        form->confirmed = 0;
        vga_form_refuse(form, fault);
        return;
    }
    if (plan.kind == VGA_FORM_CHILD) {
        accept_child(form);
        return;
    }
    if (plan.act != nullptr) {
        if (ask(form) == 0) {
            plan.act(form);
            vga_close_children(&form->common, 1, 0);
        }
        return;
    }
    if (form->adding == 0 &&
        memcmp(vga_form_shown(form), vga_form_wanted(form), plan.data_size) == 0) {
        finish(form);
        return;
    }
    if (ask(form) != 0) {
        return;
    }
    vga_form_set_pending(form, 1);
    if (plan.issue(form) == 0) {
        vga_form_set_pending(form, 0);
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
    }
}

/* Everything is checked again: the question may have stood there for an hour. */
NB_VOID vga_form_answered(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG handle) {
    VGA_FORM *form = vga_form_of(desc);
    if (answer == VGA_ANSWER_OK && handle == desc->handle) {
        form->confirmed = 1;
        vga_form_submit(form, form->leaving);
    } else {
        form->overwrite = 0;
    }
}

/* Answers. */

NB_VOID vga_form_verb_done(const VGA_PROCESS_STATE *work) {
    auto *desc = static_cast<VGA_DIALOG *>(nba_validate_handle(work->user_data));
    if (desc == nullptr || desc->in_use == 0) {
        return;
    }
    VGA_FORM *form = vga_form_of(desc);
    const VGA_FORM_PLAN &plan = *form->plan;
    if (form->pending == 0) {
        return; /* the record went meanwhile */
    }
    const bool good = vga_verb_succeeded(work->vcb) != 0;
    const auto follow = good ? plan.next : plan.failed;
    const VGA_FORM_STEP step = follow != nullptr ? follow(form, work) : VGA_FORM_DONE;
    if (step == VGA_FORM_MORE) {
        return;
    }
    if (step == VGA_FORM_TOLD) {
        tell_failure(form, "");
        end_in_failure(form);
    } else if (!good) {
        fail(form, *work->vcb);
    } else if (plan.kind == VGA_FORM_STATUS) {
        form->pending = 0;
        vga_form_refreshed(form);
    } else {
        finish(form);
    }
}

/* Others purge verbs, too: their user data is the handle of something else. */
NB_VOID vga_form_verb_purged(NB_USHORT opcode, NB_ULONG user_data) {
    if (VGA_FORM *form = waiting_form(user_data)) {
        const NAP_VCB vcb = vga_purged_answer(opcode);
        fail(form, vcb);
    }
}
