#include "formrecords.h"
#include "completions.h"
#include "defineblock.h"
#include "globals.h"
#include "messages.h"
#include "newresources.h"
#include "vgadsutl.h"
#include "vgautil.h"
#include <algorithm>
#include <cstring>

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

/* The bytes behind the header, which says what became of the last verb. */
static bool is_changed(const VGA_FORM *form, const VGA_FORM_SETTINGS &settings) {
    const auto bytes = [&settings](const NB_VOID *data) {
        return static_cast<const NB_UCHAR *>(data) + settings.base + sizeof(NAP_VCB);
    };
    return memcmp(bytes(vga_form_shown(form)), bytes(vga_form_wanted(form)),
                  settings.row->block_size - sizeof(NAP_VCB)) != 0;
}

static NB_USHORT issue_set(VGA_FORM *form, const VGA_FORM_SETTINGS &settings) {
    const auto size = settings.row->block_size;
    VGA_OWNED<NAP_VCB> verb(static_cast<NAP_VCB *>(calloc(1, size)));
    if (!verb) {
        return 0;
    }
    memcpy(verb.get() + 1,
           static_cast<const NB_UCHAR *>(vga_form_wanted(form)) + settings.base + sizeof(NAP_VCB),
           size - sizeof(NAP_VCB));
    verb->opcode = settings.row->set;
    return vga_issue_verb(vga_form_target_of(form), std::move(verb), vga_form_handle(form),
                          vga_form_completed);
}

/* Those that are changed and stand behind `last`; null: all. */
static VGA_FORM_STEP set_behind(VGA_FORM *form, const VGA_FORM_SETTINGS *last) {
    const auto all = form->plan->settings;
    for (size_t at = last != nullptr ? last - all.data() + 1 : 0; at < all.size(); at++) {
        if (is_changed(form, all[at])) {
            if (issue_set(form, all[at]) != 0) {
                return VGA_FORM_MORE;
            }
            VGA_EXIT(VGA_EXIT_INTERNAL, 0);
            return VGA_FORM_TOLD;
        }
    }
    return VGA_FORM_DONE;
}

NB_USHORT vga_form_issue_settings(VGA_FORM *form) {
    return set_behind(form, nullptr) == VGA_FORM_MORE;
}

VGA_FORM_STEP vga_form_next_settings(VGA_FORM *form, const VGA_PROCESS_STATE *work) {
    const auto all = form->plan->settings;
    const auto answered =
        std::find_if(all.begin(), all.end(), [work](const VGA_FORM_SETTINGS &one) {
            return one.row->set == work->vcb->opcode;
        });
    return answered != all.end() ? set_behind(form, &*answered) : VGA_FORM_DONE;
}

NB_USHORT vga_form_refuses_settings(const VGA_FORM *form) {
    if (form->plan->type->of_domain != 0) {
        return vga_form_target_of(form) != 0 ? 0 : VGA_MSG_FORM_NO_DOMAIN;
    }
    const auto *node = static_cast<const VGA_NODE *>(vga_form_record(form));
    return node->connection == VGA_CONNECTED ? 0 : VGA_MSG_NODEW_NODE_NOT_CONNECTED;
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
