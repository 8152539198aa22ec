#include "vgamdsls.h"
#include "completions.h"
#include "dialogids.h"
#include "messages.h"
#include "nofverbs.h"
#include "sessions.h"
#include <cstring>

namespace {

using records::field;

constexpr int64_t most_sessions = field(records::mode, "sess_limit").high;

const VGA_MDSLS_DATA &as_data(const NB_VOID *data) {
    return *static_cast<const VGA_MDSLS_DATA *>(data);
}

/* Bounds.  Without sessions the minima are of no account. */

int64_t limit_at_most(const NB_VOID *data) {
    return as_data(data).max_limit;
}

int64_t winners_at_most(const NB_VOID *data) {
    NB_USHORT limit = as_data(data).mode.sess_limit;
    return limit != 0 ? limit : most_sessions;
}

int64_t losers_at_most(const NB_VOID *data) {
    NB_USHORT limit = as_data(data).mode.sess_limit;
    return limit != 0 ? limit - as_data(data).mode.min_conwinners : most_sessions;
}

constexpr records::FieldRow max_limit = records::rows::count(FIELD_AT(VGA_MDSLS_DATA, max_limit));

/* clang-format off */
constexpr VGA_FIELD fields[] = {
    {.widget = "*mdslsLocalLU", .row = &field(records::mode, "lu_alias"), .uses = VGA_FIELD_SHOWN},
    {.widget = "*mdslsPartner", .row = &field(records::mode, "name"), .uses = VGA_FIELD_SHOWN},
    {.widget = "*mdslsMode", .row = &field(records::mode, "mode_name"), .uses = VGA_FIELD_SHOWN},
    {.widget = "*mdslsSessions", .row = &field(records::mode, "act_sess_count"), .uses = VGA_FIELD_SHOWN},
    {.widget = "*mdslsMaxLimit", .row = &max_limit, .uses = VGA_FIELD_SHOWN},
    {.widget = "*mdslsLimit", .row = &field(records::mode, "sess_limit"), .at_most = limit_at_most,
     .empty = VGA_MSG_MDSLS_LIMIT_EMPTY, .bad = VGA_MSG_MDSLS_LIMIT_BAD, .hint = VGA_MSG_MDSLS_LIMIT_HINT},
    {.widget = "*mdslsWinners", .row = &field(records::mode, "min_conwinners"), .at_most = winners_at_most,
     .empty = VGA_MSG_MDSLS_WINNERS_EMPTY, .bad = VGA_MSG_MDSLS_WINNERS_BAD, .hint = VGA_MSG_MDSLS_WINNERS_HINT},
    {.widget = "*mdslsLosers", .row = &field(records::mode, "min_conlosers"), .at_most = losers_at_most,
     .empty = VGA_MSG_MDSLS_LOSERS_EMPTY, .bad = VGA_MSG_MDSLS_LOSERS_BAD, .hint = VGA_MSG_MDSLS_LOSERS_HINT},
};
/* clang-format on */
static_assert(offsetof(VGA_MDSLS_DATA, mode) == 0, "where the fields' rows count from");

const VGA_MODE *mode_of(const VGA_FORM *form) {
    return static_cast<const VGA_MODE *>(form->common.parent_item);
}

const VGA_MODE_DEF *definition_of(const VGA_MODE *mode) {
    return static_cast<const VGA_MODE_DEF *>(
        ntl_avl_find(&mode->parent->parent->mode_defs, mode->key.mode_name));
}

NB_VOID load(const VGA_FORM *form, NB_VOID *out) {
    auto *data = static_cast<VGA_MDSLS_DATA *>(out);
    const VGA_MODE *mode = mode_of(form);
    const VGA_MODE_DEF *definition = definition_of(mode);
    data->mode = *mode->vcb;
    if (definition != nullptr) {
        data->max_limit = definition->vcb->mode_chars.max_neg_sess_lim;
    }
}

/* Limit and rights are those of the mode's definition. */
NB_USHORT shows_too(const VGA_FORM *form, const NB_VOID *item) {
    return item == definition_of(mode_of(form));
}

NB_USHORT may_edit(const VGA_FORM *form) {
    const VGA_MODE_DEF *definition = definition_of(mode_of(form));
    return definition != nullptr &&
           (definition->vcb->mode_chars.mode_flags & NAP_MODE_CONTROL_POINT) == 0;
}

VGA_FORM_FAULT check(const VGA_FORM *, NB_VOID *edited) {
    auto *data = static_cast<VGA_MDSLS_DATA *>(edited);
    if (data->mode.sess_limit == 0) {
        data->mode.min_conwinners = data->mode.min_conlosers = 0;
    }
    return {};
}

NB_USHORT question(const VGA_FORM *form) {
    const bool resets = as_data(vga_form_edited(form)).mode.sess_limit == 0 &&
                        as_data(vga_form_shown(form)).mode.sess_limit != 0;
    return resets ? NB_USHORT{VGA_MSG_MDSLS_RESET} : NB_USHORT{0};
}

NB_VOID limits_set(const VGA_PROCESS_STATE *work) {
    vga_verb_completed(work);
    vga_form_verb_done(work);
}

NB_USHORT issue(VGA_FORM *form) {
    NAP_MODE_DATA wanted = as_data(vga_form_edited(form)).mode;
    auto verb = vga_new_verb<NAP_SESSION_LIMIT_VERB>(NAP_CHANGE_SESSION_LIMIT);
    if (!verb) {
        return 0;
    }
    memcpy(verb->lu_alias, wanted.lu_alias, sizeof(verb->lu_alias));
    memcpy(verb->mode_name, wanted.mode_name, sizeof(verb->mode_name));
    memcpy(verb->fqplu_name, wanted.fqplu_name, sizeof(verb->fqplu_name));
    verb->sess_limit = wanted.sess_limit;
    verb->min_conwinners = wanted.min_conwinners;
    verb->min_conlosers = wanted.min_conlosers;
    NB_ULONG target = mode_of(form)->parent->parent->target;
    return vga_issue_verb(target, std::move(verb), vga_form_handle(form), limits_set);
}

constexpr VGA_FORM_PLAN plan = {
    .fields = fields,
    .field_count = std::size(fields),
    VGA_FORM_DATA(VGA_MDSLS_DESC),
    .gone = VGA_MSG_MDSLS_GONE,
    .load = load,
    .may_edit = may_edit,
    .check = check,
    .question = question,
    .shows_too = shows_too,
    .issue = issue,
};

} // namespace

NB_USHORT vga_get_widgets_sess_limit(VGA_DIALOG *desc) {
    return vga_form_get_widgets(desc, &plan);
}

VGA_FORM *vga_display_session_limits(VGA_DIALOG *parent, VGA_MODE *mode) {
    return vga_form_open(VGA_UID_SESS_LIMIT_DIALOG, parent, mode, &mode->gui_data.dialog,
                         VGA_FORM_CHANGE);
}
