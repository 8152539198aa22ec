/* The question before a stop of anything but one link station: what stops with it, and how.  It is
 * about what the window was asked to stop; its record is one of that, and another when that goes.
 */
#include "forms.h"
#include "messages.h"
#include "operations.h"
#include "startstopeffects.h"
#include <algorithm>

namespace {

std::vector<VGA_RESOURCE> asked(const VGA_FORM *form) {
    return vga_asked_to_stop(form->common.parent);
}

VGA_OPERATION operation_of(const NB_VOID *data) {
    return vga_stopr_data(data).operation.stop == NAP_IMMEDIATE_STOP ? VGA_STOP_IMMEDIATE
                                                                     : VGA_STOP_ORDERLY;
}

/* Why none of them can be; 0: some can. */
NB_USHORT refuses(const std::vector<VGA_RESOURCE> &resources, VGA_OPERATION operation) {
    NB_USHORT reason = VGA_MSG_NODEW_SELECT_FIRST;
    for (const VGA_RESOURCE &one : resources) {
        reason = reason != 0 ? vga_refuses_operation(one, operation) : reason;
    }
    return reason;
}

std::string in_words(const std::vector<VGA_RESOURCE> &resources) {
    if (resources.size() == 1) {
        return vga_resource_in_words(resources.front());
    }
    std::vector<std::string> names;
    for (const VGA_RESOURCE &one : resources) {
        names.push_back(vga_name_of(one));
    }
    return vga_join_names(resources.front().kind, names);
}

} // namespace

NB_VOID vga_stopr_load(const VGA_FORM *form, NB_VOID *data) {
    records::Operation &operation = static_cast<VGA_STOPR_DATA *>(data)->operation;
    const std::vector<VGA_RESOURCE> resources = asked(form);
    if (resources.empty()) {
        return;
    }
    const VGA_EFFECTS effects = vga_effects_of_stop(resources);
    const std::string others = vga_effects_in_words(effects);
    operation.stop =
        refuses(resources, VGA_STOP_ORDERLY) == 0 ? NAP_ORDERLY_STOP : NAP_IMMEDIATE_STOP;
    operation.ending = effects.sessions;
    vga_put_text(operation.what, in_words(resources));
    vga_put_text(operation.others, others.empty() ? vga_message(VGA_MSG_OPER_NOTHING) : others);
}

VGA_FAULT vga_stopr_check(const VGA_FORM *form, NB_VOID *wanted) {
    return {.message = refuses(asked(form), operation_of(wanted))};
}

NB_VOID vga_stopr_arranged(VGA_FORM *form) {
    vga_make_careful(form, vga_stopr_data(vga_form_shown(form)).operation.ending);
}

/* One that can still be stopped: when a node is lost with all of them, the question is over. */
NB_VOID *vga_stopr_other(const VGA_FORM *form) {
    vga_asked_no_more(form->common.parent, vga_form_record(form));
    for (const VGA_RESOURCE &one : asked(form)) {
        if (vga_refuses_operation(one, VGA_STOP_IMMEDIATE) == 0) {
            return one.record;
        }
    }
    return nullptr;
}

NB_VOID vga_stopr_act(VGA_FORM *form) {
    const std::vector<VGA_RESOURCE> resources = asked(form);
    vga_asked_no_more(form->common.parent);
    vga_operate_over(form->common.parent, resources, operation_of(vga_form_wanted(form)));
}
