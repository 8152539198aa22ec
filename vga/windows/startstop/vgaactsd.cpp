/* The dialog that activates sessions of a mode between a local LU and a partner. */
#include "forms.h"
#include "operations.h"
#include <algorithm>

namespace {

VGA_RESOURCE mode_of(const VGA_FORM *form) {
    return {VGA_OPERABLE_MODE, vga_form_record(form)};
}

} // namespace

NB_VOID vga_actsd_load(const VGA_FORM *, NB_VOID *data) {
    static_cast<VGA_ACTSD_DATA *>(data)->operation.sessions = 1;
}

/* What the limit leaves. */
VGA_BOUND vga_actsd_most(const NB_VOID *data) {
    const NAP_MODE_DATA &mode = vga_actsd_data(data).mode;
    return {std::max(1, mode.sess_limit - mode.act_sess_count)};
}

NB_USHORT vga_actsd_may_edit(const VGA_FORM *form) {
    return vga_refuses_operation(mode_of(form), VGA_START) == 0;
}

std::string vga_actsd_subject(const VGA_FORM *form) {
    const VGA_RESOURCE mode = mode_of(form);
    return mode.record != nullptr ? vga_name_of(mode) : "";
}

NB_VOID vga_actsd_act(VGA_FORM *form) {
    VGA_RESOURCE mode = mode_of(form);
    mode.sessions = vga_actsd_data(vga_form_wanted(form)).operation.sessions;
    vga_operate_over(form->common.parent, {mode}, VGA_START);
}
