/* The configuration of a node: one verb for all of it, which only a node that is stopped takes. */
#include "completions.h"
#include "forms.h"
#include "messages.h"
#include "nodedefinition.h"
#include "vgadsutl.h"

namespace {

const VGA_NODE *node_of(const VGA_FORM *form) {
    return static_cast<const VGA_NODE *>(vga_form_record(form));
}

} // namespace

NB_USHORT vga_noded_refuses(const VGA_FORM *form) {
    switch (node_of(form)->node_state) {
    case NAP_NODE_STOPPED:
    case NAP_NODE_UNCONFIGURED:
        return vga_form_refuses_settings(form);
    case NAP_NODE_BACK_LEVEL:
        return VGA_MSG_NODED_BACK_LEVEL;
    default:
        return VGA_MSG_NODED_STOP_FIRST;
    }
}

/* A name that is missing was so before, and would not be asked for. */
VGA_FAULT vga_noded_check(const VGA_FORM *form, NB_VOID *wanted) {
    if (!vga_form_text_of(form, VGA_NODED_FQ_CP_NAME, wanted).empty()) {
        return {};
    }
    return {.message = VGA_MSG_FORM_EMPTY,
            .field = VGA_NODED_FQ_CP_NAME,
            .arguments = {vga_form_label(form, VGA_NODED_FQ_CP_NAME)}};
}

NB_USHORT vga_noded_issue(VGA_FORM *form) {
    const VGA_NODED_DATA &wanted = vga_noded_data(vga_form_wanted(form));
    auto verb = vga_new_verb<NAP_DEFINE_NODE_VERB>(NAP_DEFINE_NODE);
    if (!verb) {
        return 0;
    }
    *verb = records::make_node_definition(wanted.settings_node, wanted.settings_limits);
    return vga_issue_verb(vga_form_target_of(form), std::move(verb), vga_form_handle(form),
                          vga_form_completed);
}
