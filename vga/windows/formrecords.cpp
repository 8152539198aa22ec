#include "formrecords.h"
#include "completions.h"
#include "defineblock.h"
#include "newresources.h"
#include "vgadsutl.h"

NB_ULONG vga_form_target_of(const VGA_FORM *form) {
    return form->plan->type->target(vga_form_owner(form));
}

NB_VOID vga_form_completed(const VGA_PROCESS_STATE *work) {
    vga_verb_completed(work);
    vga_form_verb_done(work);
}

NB_USHORT vga_form_issue_define(VGA_FORM *form) {
    const records::Schema &schema = *form->plan->schema;
    VGA_OWNED<NAP_VCB> verb(static_cast<NAP_VCB *>(calloc(1, schema.define_size)));
    if (!verb) {
        return 0;
    }
    records::make_define_block(schema, static_cast<const NB_UCHAR *>(vga_form_wanted(form)),
                               reinterpret_cast<NB_UCHAR *>(verb.get()));
    return vga_issue_verb(vga_form_target_of(form), std::move(verb), vga_form_handle(form),
                          vga_form_completed);
}

static NB_VOID read_completed(const VGA_PROCESS_STATE *work) {
    VGA_NODE *node = vga_find_node_of_target(work->target);
    if (node != nullptr || vga_find_list(work->vcb->opcode)->of_domain != 0) {
        vga_take_read(node, work->vcb);
    }
    vga_form_verb_done(work);
}

NB_USHORT vga_form_issue_read(VGA_FORM *form) {
    const auto *entry =
        static_cast<const NB_UCHAR *>(form->plan->type->entry(vga_form_record(form)));
    const VGA_LIST_START start = {nullptr, nullptr, entry + records::KEY_OFFSET, NAP_DETAIL};
    return vga_issue_list(*vga_find_list(form->plan->schema->lists[0].list),
                          vga_form_target_of(form), start, vga_form_handle(form), read_completed);
}

std::vector<VGA_CHOICE> VGA_CHOICES::take() const {
    std::vector<VGA_CHOICE> choices;
    for (const auto &[text, detail] : found) {
        choices.push_back({.text = text, .detail = detail});
    }
    return choices;
}
