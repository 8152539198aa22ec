/* The dialog of session limits: how many sessions a local LU may have with a partner in one mode,
 * and for how many of them each side is the contention winner.  The limits of the modes that
 * control points use among themselves can be looked at only. */
#include "forms.h"
#include "messages.h"
#include "nofverbs.h"
#include "sessions.h"
#include <cstring>

namespace {

constexpr int64_t most_sessions = records::field(records::mode, "sess_limit").high;

const VGA_MODE *mode_of(const VGA_FORM *form) {
    return static_cast<const VGA_MODE *>(vga_form_record(form));
}

const VGA_MODE_DEF *definition_of(const VGA_MODE *mode) {
    return static_cast<const VGA_MODE_DEF *>(
        ntl_avl_find(&mode->parent->parent->mode_defs, mode->key.mode_name));
}

} // namespace

/* Bounds.  Without sessions the minima are of no account. */

VGA_BOUND vga_mdsls_limit_most(const NB_VOID *data) {
    return {vga_mdsls_data(data).mode_def.mode_chars.max_neg_sess_lim};
}

VGA_BOUND vga_mdsls_winners_most(const NB_VOID *data) {
    const NB_USHORT limit = vga_mdsls_data(data).mode.sess_limit;
    return {limit != 0 ? limit : most_sessions};
}

VGA_BOUND vga_mdsls_losers_most(const NB_VOID *data) {
    const NAP_MODE_DATA &mode = vga_mdsls_data(data).mode;
    return {mode.sess_limit != 0 ? mode.sess_limit - mode.min_conwinners : most_sessions};
}

/* The limit above all is that of the mode's definition, and so are the rights. */
NB_VOID vga_mdsls_load(const VGA_FORM *form, NB_VOID *data) {
    if (const VGA_MODE_DEF *definition = definition_of(mode_of(form))) {
        static_cast<VGA_MDSLS_DATA *>(data)->mode_def = *definition->vcb;
    }
}

NB_USHORT vga_mdsls_shows_too(const VGA_FORM *form, const NB_VOID *item) {
    return item == definition_of(mode_of(form));
}

NB_USHORT vga_mdsls_refuses(const VGA_FORM *form) {
    const VGA_MODE_DEF *definition = definition_of(mode_of(form));
    const bool is_own = definition != nullptr &&
                        (definition->vcb->mode_chars.mode_flags & NAP_MODE_CONTROL_POINT) == 0;
    return is_own ? 0 : VGA_MSG_MDSLS_OF_CONTROL_POINTS;
}

std::string vga_mdsls_subject(const VGA_FORM *form) {
    return vga_form_text_of(form, VGA_MDSLS_MODE_NAME, vga_form_shown(form));
}

VGA_FAULT vga_mdsls_check(const VGA_FORM *, NB_VOID *wanted) {
    NAP_MODE_DATA &mode = static_cast<VGA_MDSLS_DATA *>(wanted)->mode;
    if (mode.sess_limit == 0) {
        mode.min_conwinners = mode.min_conlosers = 0;
    }
    return {};
}

VGA_FAULT vga_mdsls_question(const VGA_FORM *form) {
    const NB_VOID *shown = vga_form_shown(form);
    const bool resets = vga_mdsls_data(vga_form_wanted(form)).mode.sess_limit == 0 &&
                        vga_mdsls_data(shown).mode.sess_limit != 0;
    if (!resets) {
        return {};
    }
    VGA_FAULT question = {.message = VGA_MSG_MDSLS_RESET, .loses = 1};
    for (const NB_USHORT field :
         {VGA_MDSLS_ACT_SESS_COUNT, VGA_MDSLS_MODE_NAME, VGA_MDSLS_LU_ALIAS, VGA_MDSLS_NAME}) {
        question.arguments.push_back(vga_form_text_of(form, field, shown));
    }
    return question;
}

NB_USHORT vga_mdsls_issue(VGA_FORM *form) {
    const NAP_MODE_DATA wanted = vga_mdsls_data(vga_form_wanted(form)).mode;
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
    return vga_issue_verb(vga_form_target_of(form), std::move(verb), vga_form_handle(form),
                          vga_form_completed);
}
