#include "vgamoded.h"
#include "completions.h"
#include "defineblock.h"
#include "details.h"
#include "dialogids.h"
#include "entry.h"
#include "fieldtext.h"
#include "forms.h"
#include "globals.h"
#include "marks.h"
#include "messagebox.h"
#include "messages.h"
#include "moderules.h"
#include "nofverbs.h"
#include "recordpattern.h"
#include "schemas.h"
#include "snadefined.h"
#include "verberror.h"
#include "vgadsutl.h"
#include "vgautil.h"
#include <cstring>

namespace {

const VGA_NODE *node_of(const VGA_FORM *form) {
    return static_cast<const VGA_NODE *>(vga_form_owner(form));
}

const VGA_MODE_DEF *mode_of(const VGA_FORM *form) {
    return static_cast<const VGA_MODE_DEF *>(vga_form_record(form));
}

const VGA_MODED_DATA &shown_by(const VGA_FORM *form) {
    return vga_moded_data(vga_form_shown(form));
}

const VGA_MODED_DATA &wanted_of(const VGA_FORM *form) {
    return vga_moded_data(vga_form_wanted(form));
}

bool same_name(const NAP_MODE_DEF_DATA &one, const NAP_MODE_DEF_DATA &other) {
    return memcmp(one.mode_name, other.mode_name, sizeof(one.mode_name)) == 0;
}

bool is_renamed(const VGA_FORM *form) {
    return form->adding == 0 && !same_name(shown_by(form).mode_def, wanted_of(form).mode_def);
}

/* A new one, or one whose definition is to be another: what is said besides its time-out. */
bool is_changed(const VGA_FORM *form) {
    const NAP_MODE_DEF_DATA &shown = shown_by(form).mode_def;
    return form->adding != 0 || memcmp(&shown, &wanted_of(form).mode_def, sizeof(shown)) != 0;
}

NAP_MODE_CHARS chars_of(const NB_VOID *data) {
    return vga_moded_data(data).mode_def.mode_chars;
}

} // namespace

/* Bounds that the fields before give. */

VGA_BOUND vga_moded_initial_most(const NB_VOID *data) {
    return {.high = chars_of(data).max_neg_sess_lim};
}

VGA_BOUND vga_moded_winners_most(const NB_VOID *data) {
    return {.high = chars_of(data).plu_mode_session_limit};
}

VGA_BOUND vga_moded_losers_most(const NB_VOID *data) {
    return {.high = chars_of(data).plu_mode_session_limit - chars_of(data).min_conwin_src};
}

VGA_BOUND vga_moded_auto_most(const NB_VOID *data) {
    return {.high = chars_of(data).min_conwin_src};
}

/* The message says "and not above the upper bound" itself. */
VGA_BOUND vga_moded_size_most(const NB_VOID *data) {
    return {.high = chars_of(data).max_ru_size_upp, .told = records::MOST_RU_SIZE};
}

/* A maximum that counts has its own message, which names it. */
VGA_BOUND vga_moded_window_most(const NB_VOID *data) {
    const NB_USHORT maximum = chars_of(data).max_receive_pacing_win;
    const NB_USHORT most = records::most_initial_window(maximum);
    return {.high = most,
            .bad = most == maximum ? NB_USHORT{VGA_MSG_MODED_WINDOW_OVER_MAX} : NB_USHORT{0}};
}

/* Checks. */

VGA_FAULT vga_moded_check_name(const VGA_FORM *form, const NB_VOID *data) {
    const NAP_MODE_DEF_DATA &mode = vga_moded_data(data).mode_def;
    const VGA_MODE_DEF *there = vga_find_mode_def(node_of(form), mode.mode_name);
    if (there == nullptr || there == mode_of(form)) {
        return {};
    }
    const bool blank = vga_blank_name(mode.mode_name, sizeof(mode.mode_name));
    return {.message = blank ? VGA_MSG_MODED_BLANK_TAKEN : VGA_MSG_MODED_TAKEN};
}

/* Where a mode needs none, what the node has is the node's to say. */
VGA_FAULT vga_moded_check_cos(const VGA_FORM *form, const NB_VOID *data) {
    const NAP_MODE_CHARS chars = chars_of(data);
    const VGA_NODE *node = node_of(form);
    if (!records::modes_need_cos(node->node_data.info)) {
        return {};
    }
    if (vga_blank_name(chars.cos_name, sizeof(chars.cos_name))) {
        return {.message = VGA_MSG_MODED_COS_EMPTY};
    }
    return {.message = vga_find_cos(node, chars.cos_name) == nullptr
                           ? NB_USHORT{VGA_MSG_MODED_COS_UNKNOWN}
                           : NB_USHORT{0}};
}

std::vector<VGA_CHOICE> vga_moded_classes(const VGA_FORM *form) {
    std::vector<VGA_CHOICE> choices;
    vga_for_each(node_of(form)->classes_of_service, &VGA_COS::links, [&choices](VGA_COS &cos) {
        choices.push_back({records::ebcdic_text(cos.name, sizeof(cos.name)),
                           reinterpret_cast<const NB_CHAR *>(cos.vcb->def_data.description)});
    });
    return choices;
}

/* What every node needs of the mode by which LUs agree on their sessions. */
static VGA_FAULT check_session_control(const VGA_FORM *form) {
    const NAP_MODE_CHARS chars = wanted_of(form).mode_def.mode_chars;
    if (is_renamed(form)) {
        return {.message = VGA_MSG_MODED_KEEPS_NAME, .field = VGA_MODED_MODE_NAME};
    }
    if (!records::fits_session_control(chars.plu_mode_session_limit, chars.min_conwin_src)) {
        return {.message = VGA_MSG_MODED_CONTROL_LIMITS, .field = VGA_MODED_INIT_LIMIT};
    }
    return {};
}

VGA_FAULT vga_moded_check(const VGA_FORM *form, NB_VOID *wanted) {
    auto &data = *static_cast<VGA_MODED_DATA *>(wanted);
    const NAP_MODE_DEF_DATA &old = shown_by(form).mode_def;
    if (data.mode_def.mode_chars.compression == 0) {
        data.mode_def.mode_chars.max_compress_lvl = NAP_COMPRESSION_NONE;
        data.mode_def.mode_chars.max_decompress_lvl = NAP_COMPRESSION_NONE;
    }
    if (form->adding == 0 && records::is_session_control_mode(old.mode_name)) {
        if (VGA_FAULT fault = check_session_control(form)) {
            return fault;
        }
    }
    /* The operator may have left the field alone; the node looks at it nevertheless. */
    if (is_changed(form)) {
        if (VGA_FAULT fault = vga_moded_check_cos(form, wanted)) {
            fault.field = VGA_MODED_COS_NAME;
            return fault;
        }
    }
    if (is_renamed(form) && vga_count_mode_uses(mode_of(form)) != 0) {
        return {.message = VGA_MSG_MODED_IN_USE,
                .field = VGA_MODED_MODE_NAME,
                .arguments = {vga_form_text_of(form, VGA_MODED_MODE_NAME, vga_form_shown(form))}};
    }
    return {};
}

/* Sessions that are up keep what they have.  A time-out holds for them, too, so a change of it
 * alone asks nothing. */
VGA_FAULT vga_moded_question(const VGA_FORM *form) {
    NAP_MODE_DEF_DATA old = shown_by(form).mode_def;
    const NAP_MODE_DEF_DATA now = wanted_of(form).mode_def;
    const size_t cos = sizeof(old.mode_chars.cos_name);
    if (form->adding != 0 || node_of(form)->node_state != NAP_NODE_ACTIVE ||
        memcmp(&old, &now, sizeof(old)) == 0) {
        return {};
    }
    const bool other_cos = memcmp(old.mode_chars.cos_name, now.mode_chars.cos_name, cos) != 0;
    memcpy(old.mode_chars.cos_name, now.mode_chars.cos_name, cos);
    const bool others = memcmp(&old, &now, sizeof(old)) != 0;
    return {.message = !other_cos ? VGA_MSG_MODED_CHANGE
                       : others   ? VGA_MSG_MODED_CHANGE_ALL
                                  : VGA_MSG_MODED_CHANGE_COS,
            .help_key = "modechange"};
}

NB_VOID vga_mode_confirm_cb(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG handle) {
    vga_form_answered(desc, answer, handle);
}

/* Data besides the definition. */

NB_VOID vga_moded_load(const VGA_FORM *form, NB_VOID *loaded) {
    auto *data = static_cast<VGA_MODED_DATA *>(loaded);
    const VGA_MODE_DEF *mode = mode_of(form);
    const VGA_LU62_TIMEOUT *timeout =
        mode != nullptr ? vga_find_mode_timeout(mode->parent, mode->name) : nullptr;
    records::set_initial_fields(records::lu62_timeout.fields,
                                reinterpret_cast<NB_UCHAR *>(&data->lu62_timeout));
    if (timeout != nullptr) {
        data->lu62_timeout.def_data = timeout->vcb->def_data;
    }
    data->timed = timeout != nullptr;
}

/* Verbs.  Each is 0 when it could not be queued. */

namespace {

/* All are answered by the same routine. */
template <class Verb> NB_USHORT issue(VGA_FORM *form, VGA_OWNED<Verb> verb) {
    return vga_issue_verb(vga_form_target_of(form), std::move(verb), vga_form_handle(form),
                          vga_define_mode_cb);
}

template <class Verb, class Entry>
NB_USHORT define(VGA_FORM *form, const records::Schema &schema, const Entry &entry) {
    auto verb = vga_new_verb<Verb>(schema.define);
    if (!verb) {
        return 0;
    }
    records::make_define_block(schema, reinterpret_cast<const NB_UCHAR *>(&entry),
                               reinterpret_cast<NB_UCHAR *>(verb.get()));
    return issue(form, std::move(verb));
}

template <class Entry>
NB_USHORT remove(VGA_FORM *form, const records::Schema &schema, const Entry &entry) {
    auto verb = vga_new_verb<NAP_NAME_VERB>(schema.remove);
    if (!verb) {
        return 0;
    }
    *verb =
        records::make_name_block(schema, schema.remove, reinterpret_cast<const NB_UCHAR *>(&entry));
    return issue(form, std::move(verb));
}

NB_USHORT define_mode(VGA_FORM *form, const NAP_MODE_DEF_DATA &mode) {
    return define<NAP_DEFINE_MODE_VERB>(form, records::mode_def, mode);
}

NAP_LU62_TIMEOUT_DATA timeout_of(const NAP_MODE_DEF_DATA &mode, NB_USHORT seconds) {
    NAP_LU62_TIMEOUT_DATA entry = {};
    entry.resource_type = NAP_TIMEOUT_MODE;
    memset(entry.resource_name, 0x40, sizeof(entry.resource_name));
    memcpy(entry.resource_name, mode.mode_name, sizeof(mode.mode_name));
    entry.def_data.timeout = seconds;
    return entry;
}

NB_USHORT remove_timeout(VGA_FORM *form, const NAP_MODE_DEF_DATA &mode) {
    return remove(form, records::lu62_timeout, timeout_of(mode, 0));
}

} // namespace

NB_USHORT vga_issue_del_mode(VGA_FORM *form) {
    form->renaming = remove(form, records::mode_def, shown_by(form).mode_def);
    return form->renaming;
}

NB_USHORT vga_issue_def_lu62_timeout(VGA_FORM *form) {
    const VGA_MODED_DATA &wanted = wanted_of(form);
    return define<NAP_DEFINE_LU62_TIMEOUT_VERB>(
        form, records::lu62_timeout,
        timeout_of(wanted.mode_def, wanted.lu62_timeout.def_data.timeout));
}

NB_USHORT vga_issue_def_mode(VGA_FORM *form) {
    const VGA_MODED_DATA &wanted = wanted_of(form);
    if (is_renamed(form)) {
        return vga_issue_del_mode(form);
    }
    if (is_changed(form)) {
        return define_mode(form, wanted.mode_def);
    }
    return wanted.timed != 0 ? vga_issue_def_lu62_timeout(form)
                             : remove_timeout(form, wanted.mode_def);
}

/* What comes behind each verb. */

namespace {

VGA_FORM_STEP going_on(NB_USHORT issued) {
    if (issued != 0) {
        return VGA_FORM_MORE;
    }
    VGA_EXIT(VGA_EXIT_INTERNAL, 0);
    return VGA_FORM_TOLD;
}

/* The time-out of the name that the mode had before. */
VGA_FORM_STEP drop_old_timeout(VGA_FORM *form) {
    const NAP_MODE_DEF_DATA &old = shown_by(form).mode_def;
    const bool left =
        is_renamed(form) && vga_find_mode_timeout(node_of(form), old.mode_name) != nullptr;
    return left ? going_on(remove_timeout(form, old)) : VGA_FORM_DONE;
}

/* A new mode may find the time-out of an older one of its name. */
VGA_FORM_STEP bring_timeout_in_line(VGA_FORM *form) {
    const VGA_MODED_DATA &wanted = wanted_of(form);
    const VGA_LU62_TIMEOUT *now = vga_find_mode_timeout(node_of(form), wanted.mode_def.mode_name);
    if (wanted.timed == 0) {
        return now != nullptr ? going_on(remove_timeout(form, wanted.mode_def))
                              : drop_old_timeout(form);
    }
    const bool same =
        now != nullptr && now->vcb->def_data.timeout == wanted.lu62_timeout.def_data.timeout;
    return same ? drop_old_timeout(form) : going_on(vga_issue_def_lu62_timeout(form));
}

/* The define verb of a rename that brings the old mode back. */
bool is_restoring(const VGA_FORM *form, const VGA_PROCESS_STATE *work) {
    const NAP_MODE_DEF_DATA &old = shown_by(form).mode_def;
    const auto *name = reinterpret_cast<const NB_UCHAR *>(work->vcb) + records::KEY_IN_BLOCK;
    return is_renamed(form) && work->vcb->opcode == NAP_DEFINE_MODE &&
           memcmp(name, old.mode_name, sizeof(old.mode_name)) == 0;
}

VGA_FORM_STEP tell_of_refusal(VGA_FORM *form, NB_USHORT message, const NAP_VCB &refused) {
    const NB_CHAR *help_key = nullptr;
    VGA_OWNED<NB_CHAR> reason(vga_get_verb_error_message(refused.opcode, refused.primary_rc,
                                                         refused.secondary_rc, &help_key));
    const std::string name = vga_form_text_of(form, VGA_MODED_MODE_NAME, vga_form_shown(form));
    const std::string details = vga_verb_details(refused, name, vga_marked_node(&form->common));
    vga_box_details(&form->common, details.c_str());
    vga_display_error_dialog(&form->common, message, "moded", nullptr, 0, "s s", name.c_str(),
                             reason ? reason.get() : "");
    return VGA_FORM_TOLD;
}

} // namespace

VGA_FORM_STEP vga_moded_next(VGA_FORM *form, const VGA_PROCESS_STATE *work) {
    switch (work->vcb->opcode) {
    case NAP_DELETE_MODE:
        return going_on(define_mode(form, wanted_of(form).mode_def));
    case NAP_DEFINE_MODE:
        return is_restoring(form, work)
                   ? tell_of_refusal(form, VGA_MSG_MODED_NOT_RENAMED, vga_moded_desc(form)->state)
                   : bring_timeout_in_line(form);
    default:
        return drop_old_timeout(form);
    }
}

/* The old definition comes back when the new one is refused.  What was done before a time-out was
 * refused stays: the form goes on with the mode that there is now. */
VGA_FORM_STEP vga_moded_failed(VGA_FORM *form, const VGA_PROCESS_STATE *work) {
    if (is_restoring(form, work)) {
        return tell_of_refusal(form, VGA_MSG_MODED_LOST, *work->vcb);
    }
    if (is_renamed(form) && work->vcb->opcode == NAP_DEFINE_MODE) {
        vga_moded_desc(form)->state = *work->vcb;
        return going_on(define_mode(form, shown_by(form).mode_def));
    }
    if (form->adding != 0 && work->vcb->opcode != NAP_DEFINE_MODE) {
        form->renaming = 1; /* from nothing */
        form->repeat = 0;
    }
    return VGA_FORM_DONE;
}

NB_VOID vga_define_mode_cb(const VGA_PROCESS_STATE *work) {
    vga_verb_completed(work);
    vga_form_verb_done(work);
}
