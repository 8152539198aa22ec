/* What forms have to know of the model's records, made of a record's type, and the verb that
 * defines most of them. */
#ifndef FORMRECORDS_H
#define FORMRECORDS_H

#include "fieldtext.h"
#include "form.h"
#include "recordtypes.h"
#include <map>

/* The node or the domain that a record belongs to, above all its owners. */
inline const VGA_NODE *vga_root_of(const VGA_NODE *node) {
    return node;
}
inline const VGA_SYSTEM *vga_root_of(const VGA_SYSTEM *system) {
    return system;
}
template <class Record> auto vga_root_of(const Record *record) {
    return vga_root_of(record->parent);
}

inline NB_ULONG vga_form_target(const VGA_NODE *node) {
    return node->target;
}
inline NB_ULONG vga_form_target(const VGA_SYSTEM *system) {
    return system->domain_target;
}

/* The domain has no name: the node that holds its configuration answers. */
inline std::string vga_form_answerer(const VGA_NODE *node) {
    return {node->name, strnlen(node->name, sizeof(node->name))};
}
inline std::string vga_form_answerer(const VGA_SYSTEM *system) {
    return system->config_name;
}

template <class Record> struct VGA_FORM_RECORD {
    using Owner = std::remove_pointer_t<decltype(Record::parent)>;

    static const NB_VOID *entry(const NB_VOID *record) {
        return static_cast<const Record *>(record)->vcb;
    }
    static NB_VOID *owner(const NB_VOID *record) {
        return static_cast<const Record *>(record)->parent;
    }
    /* A record that is never linked has the keys to look for. */
    static NB_VOID *find(NB_VOID *owner, const NB_VOID *entry) {
        Record probe = {};
        probe.parent = static_cast<Owner *>(owner);
        probe.vcb = static_cast<decltype(probe.vcb)>(const_cast<NB_VOID *>(entry));
        VGA_RECORD_TYPE<Record>::init(probe);
        const VGA_INDEX_LINK link = VGA_RECORD_TYPE<Record>::links(probe).front();
        return ntl_avl_find(link.tree, link.key);
    }
    static VGA_DIALOG **slot(NB_VOID *record) {
        return &static_cast<Record *>(record)->gui_data.dialog;
    }
    static VGA_DIALOG **owner_slot(NB_VOID *owner) {
        if constexpr (std::is_same_v<Owner, VGA_SYSTEM>) {
            return nullptr; /* it never goes */
        } else {
            return &static_cast<Owner *>(owner)->gui_data.dialog;
        }
    }
    static NB_ULONG target(const NB_VOID *owner) {
        return vga_form_target(vga_root_of(static_cast<const Owner *>(owner)));
    }
    static NB_ULONG owner_handle(const NB_VOID *owner) {
        return static_cast<const Owner *>(owner)->handle;
    }
    static std::string answerer(const NB_VOID *owner) {
        return vga_form_answerer(vga_root_of(static_cast<const Owner *>(owner)));
    }
    static constexpr bool of_domain =
        std::is_same_v<decltype(vga_root_of(static_cast<const Owner *>(nullptr))),
                       const VGA_SYSTEM *>;
};

template <class Record>
inline constexpr VGA_FORM_TYPE vga_form_type = {
    .entry_size = sizeof(std::remove_pointer_t<decltype(Record::vcb)>),
    .of_domain = VGA_FORM_RECORD<Record>::of_domain,
    .entry = VGA_FORM_RECORD<Record>::entry,
    .owner = VGA_FORM_RECORD<Record>::owner,
    .find = VGA_FORM_RECORD<Record>::find,
    .slot = VGA_FORM_RECORD<Record>::slot,
    .owner_slot = VGA_FORM_RECORD<Record>::owner_slot,
    .target = VGA_FORM_RECORD<Record>::target,
    .owner_handle = VGA_FORM_RECORD<Record>::owner_handle,
    .answerer = VGA_FORM_RECORD<Record>::answerer,
};

/* Settings of a node or of the domain, which is record and owner at once. */
inline VGA_DIALOG **vga_slot_of_settings(VGA_NODE *node) {
    return &node->gui_data.dialog;
}
inline VGA_DIALOG **vga_slot_of_settings(VGA_SYSTEM *) {
    return nullptr; /* it never goes */
}
template <class Root>
inline constexpr VGA_FORM_TYPE vga_settings_type = {
    .entry_size = 0,
    .of_domain = std::is_same_v<Root, VGA_SYSTEM>,
    .entry = nullptr,
    .owner = [](const NB_VOID *root) { return const_cast<NB_VOID *>(root); },
    .find = [](NB_VOID *, const NB_VOID *) -> NB_VOID * { return nullptr; },
    .slot = [](NB_VOID *root) { return vga_slot_of_settings(static_cast<Root *>(root)); },
    .owner_slot = [](NB_VOID *root) { return vga_slot_of_settings(static_cast<Root *>(root)); },
    .target = [](const NB_VOID *root) { return vga_form_target(static_cast<const Root *>(root)); },
    .owner_handle = [](const NB_VOID *root) { return static_cast<const Root *>(root)->handle; },
    .answerer =
        [](const NB_VOID *root) { return vga_form_answerer(static_cast<const Root *>(root)); },
};

/* The choices of a field, from records of the model: each text once, in order. */
class VGA_CHOICES {
public:
    /* What the rows `text` and `detail` are in the record; nothing without a text. */
    template <class Record>
    NB_VOID add(const Record &record, const records::FieldRow &text,
                const records::FieldRow &detail) {
        const auto *entry = reinterpret_cast<const NB_UCHAR *>(record.vcb);
        if (entry != nullptr && !records::is_empty_field(text, entry)) {
            found.try_emplace(records::format_field(text, entry),
                              records::format_field(detail, entry));
        }
    }
    /* The same of every record of the tree. */
    template <class Record>
    NB_VOID add(const AVL_TREE &tree, AVL_NODE Record::*links, const records::FieldRow &text,
                const records::FieldRow &detail) {
        vga_for_each(tree, links, [&](const Record &record) { add(record, text, detail); });
    }
    std::vector<VGA_CHOICE> take() const;

private:
    std::map<std::string, std::string> found;
};

/* `issue` of a form whose first record is one that a define verb carries: issues that verb. */
NB_USHORT vga_form_issue_define(VGA_FORM *form);

/* `issue` and `next` of a form of settings: set what was changed, one after the other. */
NB_USHORT vga_form_issue_settings(VGA_FORM *form);
VGA_FORM_STEP vga_form_next_settings(VGA_FORM *form, const VGA_PROCESS_STATE *work);

/* `refuses` of a form of settings: whose they are is not connected. */
NB_USHORT vga_form_refuses_settings(const VGA_FORM *form);

/* `refresh` of a status form: asks for the record's entry in its list, which the model takes as any
 * other answer. */
NB_USHORT vga_form_issue_read(VGA_FORM *form);

/* The completion routine of a form's verbs: the model first, then the form. */
NB_VOID vga_form_completed(const VGA_PROCESS_STATE *work);

/* The target of a form's verbs. */
NB_ULONG vga_form_target_of(const VGA_FORM *form);

#endif
