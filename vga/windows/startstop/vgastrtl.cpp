/* The dialog that starts a link station: what will come up, and whether its PU does. */
#include "forms.h"
#include "messages.h"
#include "operations.h"

namespace {

VGA_LS *ls_of(const VGA_FORM *form) {
    return static_cast<VGA_LS *>(vga_form_record(form));
}

VGA_RESOURCE pu_of(const VGA_LS &ls) {
    return ls.local_pu != nullptr  ? VGA_RESOURCE{VGA_OPERABLE_LOCAL_PU, ls.local_pu}
           : ls.down_pu != nullptr ? VGA_RESOURCE{VGA_OPERABLE_DOWN_PU, ls.down_pu}
                                   : VGA_RESOURCE{VGA_OPERABLE_NONE, nullptr};
}

/* "DLC LAN0, port ETH0": in the order in which they start. */
std::string needed_by(VGA_LS *ls) {
    std::string text;
    for (VGA_RESOURCE next = vga_needed_first({VGA_OPERABLE_LS, ls});
         next.kind != VGA_OPERABLE_NONE; next = vga_needed_first(next)) {
        text = vga_resource_in_words(next) + (text.empty() ? "" : ", ") + text;
    }
    return text.empty() ? vga_message(VGA_MSG_OPER_NOTHING) : text;
}

} // namespace

NB_VOID vga_strtl_load(const VGA_FORM *form, NB_VOID *data) {
    records::Operation &operation = static_cast<VGA_STRTL_DATA *>(data)->operation;
    VGA_LS *ls = ls_of(form);
    operation.start_pu = 1;
    if (ls != nullptr) {
        vga_put_text(operation.first, needed_by(ls));
        vga_put_text(operation.pu, vga_join_names(VGA_OPERABLE_LOCAL_PU, vga_pus_on(*ls, false)));
        vga_put_text(operation.lus, vga_join_names(VGA_OPERABLE_LU03, vga_lus_on(*ls, false)));
    }
}

NB_USHORT vga_strtl_may_edit(const VGA_FORM *form) {
    return vga_refuses_operation({VGA_OPERABLE_LS, ls_of(form)}, VGA_START) == 0;
}

std::string vga_strtl_subject(const VGA_FORM *form) {
    VGA_LS *ls = ls_of(form);
    return ls != nullptr ? vga_resource_in_words({VGA_OPERABLE_LS, ls}) : "";
}

/* The PU brings its link station with it. */
NB_VOID vga_strtl_act(VGA_FORM *form) {
    const records::Operation &operation = vga_strtl_data(vga_form_wanted(form)).operation;
    VGA_LS *ls = ls_of(form);
    const VGA_RESOURCE pu = pu_of(*ls);
    const bool with_pu = operation.start_pu != 0 && pu.kind != VGA_OPERABLE_NONE;
    vga_operate_over(form->common.parent, {with_pu ? pu : VGA_RESOURCE{VGA_OPERABLE_LS, ls}},
                     VGA_START);
}
