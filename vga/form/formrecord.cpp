#include "fieldwidgets.h"
#include "form.h"
#include "formparts.h"
#include "messages.h"
#include "widgets.h"
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

/* Bytes that child forms and lists did not change follow the record. */
NB_VOID follow_bytes(VGA_FORM *form, const NB_UCHAR *fresh) {
    auto *shown = static_cast<NB_UCHAR *>(vga_form_shown(form));
    auto *working = static_cast<NB_UCHAR *>(vga_form_working(form));
    for (NB_USHORT byte = 0; byte < form->plan->data_size; byte++) {
        working[byte] = working[byte] == shown[byte] ? fresh[byte] : working[byte];
        shown[byte] = fresh[byte];
    }
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
        vga_form_mark_field(form, field, VGA_MARK_OTHER);
    }
}

NB_VOID tell_loss(VGA_FORM *form, NB_USHORT message) {
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

NB_VOID vga_form_attach(VGA_FORM *form, NB_VOID *record, NB_VOID *owner) {
    const VGA_FORM_TYPE *type = form->plan->type;
    vga_form_detach(form);
    form->common.parent_item = record;
    const bool known = record != nullptr && type != nullptr && form->plan->kind != VGA_FORM_CHILD;
    form->common.owner_item = known ? type->owner(record) : owner;
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
    const VGA_FORM_TYPE *type = form->plan->type;
    return type != nullptr && vga_form_owner(form) != nullptr ? type->answerer(vga_form_owner(form))
                                                              : "";
}

std::string vga_form_subject(const VGA_FORM *form) {
    const VGA_FORM_PLAN &plan = *form->plan;
    if (plan.subject != nullptr) {
        return plan.subject(form);
    }
    return plan.fields.empty() ? "" : vga_form_text_of(form, 0, vga_form_shown(form));
}

/* The name of what it is about and of its node; the box about a loss is soon read, so the title
 * says it, too. */
NB_VOID vga_form_show_title(VGA_FORM *form) {
    NB_CHAR title[300];
    const VGA_FORM_TYPE *type = form->plan->type;
    const std::string node =
        type != nullptr && type->of_domain == 0 ? vga_form_answerer_of(form) : "";
    const NB_USHORT message = form->adding == 0
                                  ? node.empty() ? VGA_MSG_FORM_TITLE_DOMAIN : VGA_MSG_FORM_TITLE
                              : node.empty() ? VGA_MSG_FORM_TITLE_NEW_DOMAIN
                                             : VGA_MSG_FORM_TITLE_NEW;
    if (form->gone != 0) {
        const std::string kept = vga_get_title(&form->common);
        vga_print_msg(title, sizeof(title), VGA_MSG_FORM_TITLE_GONE, "s", kept.c_str());
    } else if (form->plan->kind == VGA_FORM_CHILD) {
        v0_mb_strncpy(title, form->title, sizeof(title));
    } else {
        const std::string subject = form->adding == 0 ? vga_form_subject(form) : node;
        vga_print_msg(title, sizeof(title), message, "s s s", form->title, subject.c_str(),
                      node.c_str());
    }
    vga_set_title(&form->common, title);
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
        if (own) {
            lose_record(form);
        } else if (item == desc->owner_item && desc->parent_item == nullptr) {
            lose_owner(form);
        }
    } else if (own || (desc->parent_item != nullptr && plan.shows_too != nullptr &&
                       plan.shows_too(form, item) != 0)) {
        (plan.kind == VGA_FORM_STATUS ? vga_form_refreshed : vga_form_follow)(form);
    }
}
