/* The dialog of CPI-C destinations.  They belong to the domain, and programs on every node use
 * them: what can be chosen is what the nodes have, and what one does not have yet will do, too. */
#include "forms.h"
#include "globals.h"
#include "ntlname.h"
#include "schemas.h"
#include <cstring>

namespace {

using records::field;

const NAP_CPIC_DEF &definition(const NB_VOID *data) {
    return vga_cpicd_data(data).cpic.def_data;
}

bool has_user(const NB_VOID *data) {
    const NB_UCHAR type = definition(data).security_type;
    return type == NAP_CPIC_SECURITY_PROGRAM || type == NAP_CPIC_SECURITY_STRONG;
}

template <class Add> std::vector<VGA_CHOICE> from_nodes(Add add) {
    VGA_CHOICES choices;
    vga_for_each(gvga_system->nodes, &VGA_NODE::links,
                 [&choices, add](const VGA_NODE &node) { add(choices, node); });
    return choices.take();
}

} // namespace

/* Those whose name is a whole one. */
std::vector<VGA_CHOICE> vga_cpicd_partners(const VGA_FORM *) {
    return from_nodes([](VGA_CHOICES &choices, const VGA_NODE &node) {
        vga_for_each(node.remote_systems, &VGA_REM_SYS::links, [&choices](VGA_REM_SYS &system) {
            vga_for_each(system.remote_plu_tree, &VGA_REM_PLU::links, [&](VGA_REM_PLU &plu) {
                if (plu.key.type == NAP_DIR_LU) {
                    choices.add(plu, field(records::plu_def, "name"),
                                field(records::plu_def, "plu_alias"));
                }
            });
        });
    });
}

std::vector<VGA_CHOICE> vga_cpicd_modes(const VGA_FORM *) {
    return from_nodes([](VGA_CHOICES &choices, const VGA_NODE &node) {
        choices.add(node.mode_defs, &VGA_MODE_DEF::links, field(records::mode_def, "name"),
                    field(records::mode_def, "description"));
    });
}

std::vector<VGA_CHOICE> vga_cpicd_local_lus(const VGA_FORM *) {
    return from_nodes([](VGA_CHOICES &choices, const VGA_NODE &node) {
        choices.add(node.lus, &VGA_LU62::name_links, field(records::local_lu, "lu_alias"),
                    field(records::local_lu, "description"));
    });
}

/* The node keeps the one that it has; nobody is shown it. */
NB_USHORT vga_cpicd_needs_password(const VGA_FORM *form, const NB_VOID *data) {
    return has_user(data) && (form->adding != 0 || !has_user(vga_form_shown(form)));
}

/* What follows from the names, and from security without a user. */
VGA_FAULT vga_cpicd_check(const VGA_FORM *form, NB_VOID *wanted) {
    NAP_CPIC_DEF &def = static_cast<VGA_CPICD_DATA *>(wanted)->cpic.def_data;
    def.partner_is_alias = ntl_check_fq_name(def.partner_lu_name) != NTL_FQ_QUALIFIED;
    def.tp_is_service = def.tp_name[0] < NTL_BLANK;
    if (!has_user(wanted) && has_user(vga_form_shown(form))) {
        memset(def.user_id, NTL_BLANK, sizeof(def.user_id));
        memset(def.password, NTL_BLANK, sizeof(def.password));
    }
    return {};
}
