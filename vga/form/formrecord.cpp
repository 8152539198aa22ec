#include "fieldwidgets.h"
#include "form.h"
#include "formparts.h"
#include "messages.h"
#include "widgets.h"
#include <algorithm>
#include <cstring>

namespace {

/* The pointer of a record to a dialog that shows it, or is to add something to it; null: it keeps
 * none. */
VGA_DIALOG **slot_of(const VGA_FORM *form) {
    const VGA_FORM_TYPE *type = form->plan->type;
    if (type == nullptr) {
        return nullptr;
    }
    if (NB_VOID *record = vga_form_record(form)) {
        return type->slot(record);
    }
    NB_VOID *owner = vga_form_owner(form);
    return owner != nullptr ? type->owner_slot(owner) : nullptr;
}

/* Another open form that the same pointer could name. */
VGA_DIALOG *other_form(const VGA_FORM *form, VGA_DIALOG **slot) {
    for (const VGA_UID_DESC &row : gvga_uid_desc) {
        VGA_DIALOG *desc = row.record_changed == vga_form_record_changed ? row.first_desc : nullptr;
        for (; desc != nullptr; desc = desc->next_desc) {
            if (desc != &form->common && desc->in_use != 0 && slot_of(vga_form_of(desc)) == slot) {
                return desc;
            }
        }
    }
    return nullptr;
}

/* Bytes that only make sense together. */
struct UNIT {
    NB_USHORT offset, width;
};

/* The fields of the form and of its first record, and the items of that: whole values, so that what
 * two administrators changed is never mixed. */
std::vector<UNIT> units_of(const VGA_FORM_PLAN &plan) {
    std::vector<UNIT> units;
    for (const VGA_FIELD &field : plan.fields) {
        units.push_back({field.offset(), field.row->width});
    }
    if (plan.schema == nullptr) {
        return units;
    }
    for (const records::FieldRow &row : plan.schema->fields) {
        units.push_back({row.offset, row.width});
    }
    const records::Nested &items = plan.schema->nested;
    if (items.name != nullptr) {
        const NB_USHORT start = std::min(items.count.offset, items.offset);
        units.push_back({start, static_cast<NB_USHORT>(plan.schema->entry_size - start)});
    }
    return units;
}

/* What child forms and lists did not change follows the record. */
NB_VOID follow_bytes(VGA_FORM *form, const NB_UCHAR *fresh) {
    const NB_USHORT size = form->plan->data_size;
    auto *shown = static_cast<NB_UCHAR *>(vga_form_shown(form));
    auto *working = static_cast<NB_UCHAR *>(vga_form_working(form));
    std::vector<NB_UCHAR> merged(fresh, fresh + size);
    for (const UNIT &unit : units_of(*form->plan)) {
        const auto differ = [&unit](const NB_UCHAR *one, const NB_UCHAR *other) {
            return memcmp(one + unit.offset, other + unit.offset, unit.width) != 0;
        };
        if (differ(working, shown)) {
            memcpy(merged.data() + unit.offset, working + unit.offset, unit.width);
            if (differ(fresh, shown) && differ(fresh, working)) {
                form->contested = 1;
                form->overwrite = 0;
            }
        }
    }
    memcpy(working, merged.data(), size);
    memcpy(shown, fresh, size);
}

/* What an operator has touched stays, and is marked where somebody else has changed it, too. */
NB_VOID follow_field(VGA_FORM *form, NB_USHORT field, const NB_UCHAR *fresh) {
    if (vga_form_field_is(form, field, vga_form_shown(form)) != 0) {
        vga_form_put_field(form, field, fresh);
        vga_form_mark_field(form, field, VGA_MARK_NONE);
    } else if (vga_form_field_is(form, field, fresh) != 0) {
        vga_form_mark_field(form, field, VGA_MARK_NONE);
    } else if (vga_form_text_of(form, field, fresh) !=
               vga_form_text_of(form, field, vga_form_shown(form))) {
        form->overwrite = 0;
        vga_close_confirm_dialog(&form->common); /* it did not ask about this one */
        vga_form_mark_field(form, field, VGA_MARK_OTHER);
    }
}

NB_VOID tell_loss(VGA_FORM *form, NB_USHORT message) {
    vga_close_confirm_dialog(&form->common); /* its answer was about something else */
    form->confirmed = form->overwrite = 0;
    vga_close_children(&form->common, 0, 1);
    vga_form_set_rights(form);
    if (form->plan->kind == VGA_FORM_STATUS) {
        form->pending = 0;
        vga_form_stop_asking(form);
    } else if (form->read_only != 0 && form->pending != 0) {
        vga_form_set_pending(form, 0); /* no answer changes anything any more */
    }
    vga_form_arrange(form);
    form->gone = 1;
    vga_form_show_title(form);
    vga_display_info_dialog(&form->common, message, nullptr, nullptr, 0, "");
}

NB_VOID lose_record(VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    vga_form_detach(form);
    form->common.parent_item = nullptr;
    if (form->renaming != 0) {
        return;
    }
    form->adding = plan.defines;
    const NB_USHORT usual =
        plan.defines != 0 ? VGA_MSG_FORM_RECORD_GONE_DEFINE : VGA_MSG_FORM_RECORD_GONE;
    tell_loss(form, plan.gone != 0 ? plan.gone : usual);
}

NB_VOID lose_owner(VGA_FORM *form) {
    vga_form_detach(form);
    form->common.owner_item = nullptr;
    tell_loss(form, VGA_MSG_FORM_OWNER_GONE);
}

} // namespace

const VGA_FORM *vga_form_root(const VGA_FORM *form) {
    while (form->plan->kind == VGA_FORM_CHILD) {
        form = vga_form_of(form->common.parent);
    }
    return form;
}

NB_VOID *vga_form_record(const VGA_FORM *form) {
    return vga_form_root(form)->common.parent_item;
}

/* An owner can go behind its records, of which nobody hears then. */
NB_VOID *vga_form_owner(const VGA_FORM *form) {
    form = vga_form_root(form);
    NB_VOID *owner = form->common.owner_item;
    return form->owner_handle == 0 || nba_validate_handle(form->owner_handle) == owner ? owner
                                                                                       : nullptr;
}

/* What differs between `from` and `to` goes into the working data. */
NB_VOID vga_form_take_over(VGA_FORM *form, const NB_UCHAR *from, const NB_UCHAR *to) {
    auto *working = static_cast<NB_UCHAR *>(vga_form_working(form));
    for (const UNIT &unit : units_of(*form->plan)) {
        if (memcmp(from + unit.offset, to + unit.offset, unit.width) != 0) {
            memcpy(working + unit.offset, to + unit.offset, unit.width);
        }
    }
}

NB_VOID vga_form_attach(VGA_FORM *form, NB_VOID *record, NB_VOID *owner) {
    const VGA_FORM_TYPE *type = form->plan->type;
    vga_form_detach(form);
    form->common.parent_item = record;
    const bool known = record != nullptr && type != nullptr && form->plan->kind != VGA_FORM_CHILD;
    form->common.owner_item = known ? type->owner(record) : owner;
    form->owner_handle = type != nullptr && form->common.owner_item != nullptr
                             ? type->owner_handle(form->common.owner_item)
                             : 0;
    if (form->plan->kind == VGA_FORM_CHILD) {
        return;
    }
    VGA_DIALOG **slot = slot_of(form);
    if (slot != nullptr && *slot == nullptr) {
        *slot = &form->common;
    }
}

NB_VOID vga_form_detach(VGA_FORM *form) {
    VGA_DIALOG **slot = form->plan->kind != VGA_FORM_CHILD ? slot_of(form) : nullptr;
    if (slot != nullptr && *slot == &form->common) {
        *slot = other_form(form, slot);
    }
}

std::string vga_form_answerer_of(const VGA_FORM *form) {
    const VGA_FORM_TYPE *type = vga_form_root(form)->plan->type;
    return type != nullptr && vga_form_owner(form) != nullptr ? type->answerer(vga_form_owner(form))
                                                              : "";
}

/* As it is called in the middle of a sentence. */
static std::string whose_settings(const VGA_FORM *form) {
    NB_CHAR text[200];
    if (form->plan->type->of_domain != 0) {
        return vga_message(VGA_MSG_THE_DOMAIN);
    }
    const std::string name = vga_form_answerer_of(form);
    vga_print_msg(text, sizeof(text), VGA_MSG_THE_NODE, "cs", static_cast<NB_INT>(name.size()),
                  name.c_str());
    return text;
}

std::string vga_form_subject(const VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    if (plan.subject != nullptr) {
        return plan.subject(form);
    }
    if (!plan.settings.empty()) {
        return whose_settings(form);
    }
    return plan.fields.empty() ? "" : vga_form_text_of(form, 0, vga_form_shown(form));
}

/* Of a record: with its node, if it has one.  Of a new one: with what it will belong to. */
static NB_USHORT title_message(const VGA_FORM *form, const std::string &node) {
    if (!vga_form_root(form)->plan->settings.empty()) {
        return VGA_MSG_FORM_TITLE_SETTINGS;
    }
    return form->adding == 0 ? node.empty() ? VGA_MSG_FORM_TITLE_DOMAIN : VGA_MSG_FORM_TITLE
           : node.empty()    ? VGA_MSG_FORM_TITLE_NEW_DOMAIN
                             : VGA_MSG_FORM_TITLE_NEW;
}

/* The name of what it is about and of its node; the box about a loss is soon read, so the title
 * says it, too. */
NB_VOID vga_form_show_title(VGA_FORM *form) {
    NB_CHAR title[300];
    const VGA_FORM_TYPE *type = vga_form_root(form)->plan->type;
    const std::string node =
        type != nullptr && type->of_domain == 0 ? vga_form_answerer_of(form) : "";
    if (form->gone != 0) {
        const std::string kept = vga_get_title(&form->common);
        vga_print_msg(title, sizeof(title), VGA_MSG_FORM_TITLE_GONE, "s", kept.c_str());
    } else {
        const std::string subject =
            form->adding == 0 ? vga_form_subject(vga_form_root(form)) : node;
        vga_print_msg(title, sizeof(title), title_message(form, node), "s s s", form->title,
                      subject.c_str(), node.c_str());
    }
    vga_set_title(&form->common, title);
}

/* The form goes on with another record, where it is about several. */
static NB_USHORT has_other(VGA_FORM *form) {
    NB_VOID *record = form->plan->other != nullptr ? form->plan->other(form) : nullptr;
    if (record == nullptr) {
        return 0;
    }
    vga_form_attach(form, record, nullptr);
    vga_form_follow(form);
    return 1;
}

NB_VOID vga_form_follow(VGA_FORM *form) {
    if (form->pending != 0 || vga_form_record(form) == nullptr) {
        return; /* the answer brings what is so then; where nothing is, all stays */
    }
    const VGA_FORM_PLAN &plan = *form->plan;
    std::vector<NB_UCHAR> fresh(plan.data_size);
    vga_form_load(form, fresh.data());
    form->filling = 1;
    for (NB_USHORT field = 0; field < plan.fields.size(); field++) {
        follow_field(form, field, fresh.data());
    }
    form->filling = 0;
    follow_bytes(form, fresh.data());
    vga_form_set_rights(form);
    vga_form_arrange(form);
    vga_form_show_title(form);
}

NB_VOID vga_form_record_changed(VGA_DIALOG *desc, NB_VOID *item, VGA_RECORD_CHANGE what) {
    VGA_FORM *form = vga_form_of(desc);
    const VGA_FORM_PLAN &plan = *form->plan;
    if (item == nullptr || plan.kind == VGA_FORM_CHILD) {
        return;
    }
    const bool own = item == desc->parent_item;
    if (what == VGA_RECORD_GONE) {
        if (own && has_other(form) == 0) {
            lose_record(form);
        } else if (item == desc->owner_item && desc->parent_item == nullptr) {
            lose_owner(form);
        }
    } else if (own || (desc->parent_item != nullptr && plan.shows_too != nullptr &&
                       plan.shows_too(form, item) != 0)) {
        (plan.kind == VGA_FORM_STATUS ? vga_form_refreshed : vga_form_follow)(form);
    }
}
