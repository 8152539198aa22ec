/* The dialog that stops a link station: what stops with it, and how. */
#include "forms.h"
#include "operations.h"
#include "startstopeffects.h"

namespace {

VGA_RESOURCE link_of(const VGA_FORM *form) {
    return {VGA_OPERABLE_LS, vga_form_record(form)};
}

VGA_OPERATION operation_of(const NB_VOID *data) {
    return vga_stopl_data(data).operation.stop == NAP_IMMEDIATE_STOP ? VGA_STOP_IMMEDIATE
                                                                     : VGA_STOP_ORDERLY;
}

} // namespace

NB_VOID vga_stopl_load(const VGA_FORM *form, NB_VOID *data) {
    records::Operation &operation = static_cast<VGA_STOPL_DATA *>(data)->operation;
    const VGA_RESOURCE link = link_of(form);
    if (link.record != nullptr) {
        const auto &ls = *static_cast<const VGA_LS *>(link.record);
        operation.stop = vga_refuses_operation(link, VGA_STOP_ORDERLY) == 0 ? NAP_ORDERLY_STOP
                                                                            : NAP_IMMEDIATE_STOP;
        operation.ending = vga_effects_of_stop({link}).sessions;
        vga_put_text(operation.pu, vga_join_names(VGA_OPERABLE_LOCAL_PU, vga_pus_on(ls, true)));
        vga_put_text(operation.lus, vga_join_names(VGA_OPERABLE_LU03, vga_lus_on(ls, true)));
    }
}

NB_USHORT vga_stopl_may_edit(const VGA_FORM *form) {
    return vga_refuses_operation(link_of(form), VGA_STOP_IMMEDIATE) == 0;
}

std::string vga_stopl_subject(const VGA_FORM *form) {
    const VGA_RESOURCE link = link_of(form);
    return link.record != nullptr ? vga_resource_in_words(link) : "";
}

VGA_FAULT vga_stopl_check(const VGA_FORM *form, NB_VOID *wanted) {
    const VGA_RESOURCE link = link_of(form);
    return {.message = link.record != nullptr ? vga_refuses_operation(link, operation_of(wanted))
                                              : NB_USHORT{0}};
}

NB_VOID vga_stopl_arranged(VGA_FORM *form) {
    vga_make_careful(form, vga_stopl_data(vga_form_shown(form)).operation.ending);
}

NB_VOID vga_stopl_act(VGA_FORM *form) {
    vga_operate_over(form->common.parent, {link_of(form)}, operation_of(vga_form_wanted(form)));
}
