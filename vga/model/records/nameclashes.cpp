/* Name clashes and session marks (vgadsutl.h). */
#include "globals.h"
#include "recordtypes.h"
#include "v0toebcd.h"
#include "vgadsutl.h"
#include "vgautil.h"
#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr size_t lu_name_width = sizeof(VGA_LU62::name);
constexpr NB_UCHAR ebcdic_blank = 0x40;

struct CLASH {
    NB_USHORT code;
    NB_VOID *record;
};

/* The name as additional data have it: local text, padded with blanks. */
struct DISPLAY_NAME {
    NB_UCHAR text[sizeof(VGA_EXTRA_DATA::name)];

    explicit DISPLAY_NAME(const NB_UCHAR *lu_name) {
        memset(text, ' ', sizeof(text));
        memcpy(text, lu_name, lu_name_width);
        nba_ebcdic_to_local(text, lu_name_width);
    }
};

/* Calls find(pu) for the PUs of an index in order until one has what is looked for. */
template <class Pu, class Find> NB_VOID *find_under_pus(const AVL_TREE &pus, Find find) {
    for (auto *pu = static_cast<Pu *>(AVL_FIRST(pus)); pu != nullptr;
         pu = static_cast<Pu *>(ntl_avl_next(&pu->links))) {
        if (NB_VOID *record = find(*pu)) {
            return record;
        }
    }
    return nullptr;
}

/* The index does not look at the case of letters; users who call LUs by these names do. */
NB_VOID *find_display_name(const VGA_NODE &node, const NB_UCHAR *lu_name) {
    if (!gvga_variant_x) {
        return nullptr;
    }
    const DISPLAY_NAME name(lu_name);
    return find_under_pus<VGA_LOCAL_PU>(node.local_pus, [&name](const VGA_LOCAL_PU &pu) {
        return vga_find_shared<VGA_EXTRA_DATA>(
            pu.extra_list, &VGA_EXTRA_DATA::links, name.text, [&name](const VGA_EXTRA_DATA &extra) {
                return extra.kind == VGA_EXTRA_DISPLAY_NAME &&
                       memcmp(extra.name, name.text, sizeof(extra.name)) == 0;
            });
    });
}

CLASH clash_on_node(const VGA_NODE &node, const NB_UCHAR *lu_name) {
    const auto has_lu = [lu_name](const auto &pu) { return ntl_avl_find(&pu.lus, lu_name); };
    const CLASH in_order[] = {
        {VGA_CLASH_LU03, find_under_pus<VGA_LOCAL_PU>(node.local_pus, has_lu)},
        {VGA_CLASH_DISPLAY_NAME, find_display_name(node, lu_name)},
        {VGA_CLASH_DOWN_LU, find_under_pus<VGA_DOWN_PU>(node.down_pus, has_lu)},
        {VGA_CLASH_LU62, vga_find_lu62(&node, lu_name)},
    };
    for (const CLASH &clash : in_order) {
        if (clash.record != nullptr) {
            return clash;
        }
    }
    return {VGA_CLASH_NONE, nullptr};
}

VGA_LU03 *find_domain_lu(const NB_UCHAR *lu_name) {
    return static_cast<VGA_LU03 *>(ntl_avl_find(&gvga_system->dependent_lus, &lu_name));
}

CLASH find_clash(const NB_UCHAR *lu_name, const VGA_NODE *node) {
    const auto *at =
        node != nullptr ? node : static_cast<const VGA_NODE *>(AVL_FIRST(gvga_system->nodes));
    while (at != nullptr) {
        CLASH clash = clash_on_node(*at, lu_name);
        if (clash.code != VGA_CLASH_NONE) {
            return clash;
        }
        at = node != nullptr ? nullptr : static_cast<const VGA_NODE *>(ntl_avl_next(&at->links));
    }
    if (NB_VOID *pool = vga_find_sys_pool(lu_name)) {
        return {VGA_CLASH_POOL, pool};
    }
    NB_VOID *lu = find_domain_lu(lu_name);
    return {lu != nullptr ? VGA_CLASH_DOMAIN_LU : VGA_CLASH_NONE, lu};
}

VGA_REM_PLU *find_partner(const VGA_REM_SYS &system, VGA_REM_PLU_KEY key, NB_USHORT type) {
    key.type = type;
    return static_cast<VGA_REM_PLU *>(ntl_avl_find(&system.remote_plu_tree, &key));
}

VGA_REM_PLU *find_defined_partner(const VGA_REM_SYS &system, const VGA_REM_PLU_KEY &key,
                                  NB_USHORT type_given) {
    VGA_REM_PLU *plu = find_partner(system, key, type_given ? key.type : NAP_DIR_LU);
    if (plu == nullptr && !type_given) {
        plu = find_partner(system, key, NAP_DIR_WILDCARD_LU);
    }
    return plu != nullptr && plu->defined ? plu : nullptr;
}

NB_USHORT can_be_used(const VGA_LU62 &lu) {
    NAP_LOCAL_LU_DATA data = *lu.vcb;
    return !data.def_data.disable && (data.def_data.nau_address == 0 || data.lu_sscp_sess_active);
}

NB_USHORT lu_is_there(NB_USHORT kind, const NAP_USER_SESSION &session, const VGA_NODE *node,
                      const NB_UCHAR *name) {
    if (kind == NAP_USER_SESSION_3270) {
        VGA_LU03 *lu = find_domain_lu(session.lu_name);
        return lu != nullptr && lu->vcb->det_data.lu_sscp_sess_active;
    }
    if (name != nullptr) {
        return vga_compare_asc8(session.lu_alias, name) == 0;
    }
    VGA_LU62 *lu = node != nullptr ? vga_find_lu62_by_alias(node, session.lu_alias) : nullptr;
    return lu != nullptr && can_be_used(*lu);
}

NB_VOID set_mark(VGA_USER_SESSION &session, NB_USHORT mark) {
    if (session.mark != mark) {
        session.mark = mark;
        vga_update_line(&session);
    }
}

/* Calls visit(session) for every session of a kind that a user has. */
template <class Visit> NB_VOID for_sessions(VGA_USER &user, NB_USHORT kind, Visit visit) {
    vga_for_each(user.session_tree, &VGA_USER_SESSION::links,
                 [kind, &visit](VGA_USER_SESSION &session) {
                     if (session.kind == kind) {
                         visit(session);
                     }
                 });
}

} // namespace

NB_USHORT vga_check_lu_name_clash(const NB_UCHAR *lu_name, const VGA_NODE *node,
                                  NB_VOID **clash_out) {
    CLASH clash = find_clash(lu_name, node);
    if (clash_out != nullptr) {
        *clash_out = clash.record;
    }
    return clash.code;
}

VGA_LU62 *vga_check_fq_name_local_clash(const NB_UCHAR *fq_name, const VGA_NODE *node) {
    NB_UCHAR cp_name[sizeof(NAP_NODE_INFO::fq_cp_name)];
    NB_CHAR own_network[lu_name_width + 1];
    NB_CHAR network[lu_name_width + 1];
    memcpy(cp_name, &node->node_data.info.fq_cp_name, sizeof(cp_name));
    vga_get_fq_net_name(own_network, cp_name);
    vga_get_fq_net_name(network, fq_name);
    if (strcmp(own_network, network) != 0) {
        return nullptr;
    }
    NB_CHAR text[lu_name_width + 1];
    vga_get_fq_name(text, fq_name);
    NB_UCHAR name[lu_name_width];
    memset(name, ebcdic_blank, sizeof(name));
    memcpy(name, text, strlen(text));
    nba_local_to_ebcdic(name, static_cast<NB_USHORT>(strlen(text)));
    return vga_find_lu62(node, name);
}

VGA_REM_PLU *vga_check_fq_name_plu_clash(const NB_UCHAR *fq_name, const VGA_NODE *node,
                                         NB_USHORT type_given, NB_USHORT type) {
    VGA_REM_PLU_KEY key = {};
    memcpy(key.fqplu_name, fq_name, sizeof(key.fqplu_name));
    key.type = type;
    VGA_REM_PLU *plu = nullptr;
    if (node->network_fake_rem_sys != nullptr) {
        plu = find_defined_partner(*node->network_fake_rem_sys, key, type_given);
    }
    auto *system = static_cast<VGA_REM_SYS *>(AVL_FIRST(node->remote_systems));
    while (plu == nullptr && system != nullptr) {
        plu = find_defined_partner(*system, key, type_given);
        system = static_cast<VGA_REM_SYS *>(ntl_avl_next(&system->links));
    }
    return plu;
}

NB_VOID vga_mark_sessions(NB_USHORT kind, const VGA_NODE *node, const NB_UCHAR *name) {
    vga_for_each(gvga_system->users, &VGA_USER::links, [=](VGA_USER &user) {
        memset(user.marked, 0, sizeof(user.marked));
        NB_ULONG &counter = user.marked[kind == NAP_USER_SESSION_3270 ? 0 : 1];
        for_sessions(user, kind, [=, &counter](VGA_USER_SESSION &session) {
            NB_USHORT mark = lu_is_there(kind, *session.vcb, node, name);
            set_mark(session, mark);
            counter += mark;
        });
    });
}

NB_VOID vga_unmark_sessions(NB_USHORT kind) {
    if (kind < 1 || kind > VGA_SESSION_KINDS) {
        return;
    }
    vga_for_each(gvga_system->users, &VGA_USER::links, [kind](VGA_USER &user) {
        NB_ULONG &counter = user.marked[kind - 1];
        if (counter > 0) {
            counter = 0;
            for_sessions(user, kind, [](VGA_USER_SESSION &session) { set_mark(session, 0); });
        }
    });
}

NB_VOID vga_ls_to_pu_name(const VGA_NODE *node, const NB_UCHAR *ls_name, NB_UCHAR *pu_name) {
    constexpr NB_SHORT width = sizeof(VGA_LOCAL_PU::name);
    const std::string text(reinterpret_cast<const NB_CHAR *>(ls_name), sizeof(VGA_LS::name));
    v0_generate_ebcdic_a_name(text.c_str(), width, pu_name);
    if (vga_blank_name(pu_name, width)) {
        v0_generate_ebcdic_a_name("PU", width, pu_name);
    }
    NB_UCHAR stem[width];
    memcpy(stem, pu_name, sizeof(stem));
    const size_t length = ntl_name_length(stem, width);
    for (NB_ULONG number = 1;
         vga_find_local_pu(node, pu_name) != nullptr || vga_find_down_pu(node, pu_name) != nullptr;
         number++) {
        std::string digits = std::to_string(number);
        const size_t place = std::min(length, width - digits.size());
        nba_local_to_ebcdic(reinterpret_cast<NB_UCHAR *>(digits.data()),
                            static_cast<NB_USHORT>(digits.size()));
        memset(pu_name, ebcdic_blank, width);
        memcpy(pu_name, stem, place);
        memcpy(pu_name + place, digits.data(), digits.size());
    }
}
