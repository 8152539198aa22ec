#include "partners.h"
#include "recordtypes.h"
#include "vgadsadd.h"

namespace {

NB_USHORT says_where(const VGA_PARTNER_REF &ref) {
    return !vga_blank_name(ref.fqcp_name, sizeof(ref.fqcp_name));
}

/* Those that say where the partner is come first, the latest of them at the head. */
NB_VOID join(VGA_REM_PLU &plu, VGA_PARTNER_REF &ref) {
    ref.plu = &plu;
    VGA_PARTNER_REF *head = plu.named_by;
    if (head == nullptr) {
        plu.named_by = ref.next = ref.previous = &ref;
        return;
    }
    ref.next = head;
    ref.previous = head->previous;
    ref.previous->next = head->previous = &ref;
    plu.named_by = says_where(ref) || !says_where(*head) ? &ref : head;
}

NB_VOID leave(VGA_REM_PLU &plu, VGA_PARTNER_REF &ref) {
    ref.next->previous = ref.previous;
    ref.previous->next = ref.next;
    if (plu.named_by == &ref) {
        plu.named_by = ref.next != &ref ? ref.next : nullptr;
    }
    ref.plu = nullptr;
}

/* Takes the partner to the control point that the latest of those that name it says. */
NB_USHORT follow_latest(VGA_REM_PLU &plu) {
    static const NB_UCHAR unknown_cp[sizeof(VGA_REM_SYS::name)] = {};
    const NB_UCHAR *fqcp_name = plu.named_by != nullptr ? plu.named_by->fqcp_name : unknown_cp;
    VGA_REM_SYS *before = plu.parent;
    if (vga_compare_ebc17(before->name, fqcp_name) == 0) {
        return 1;
    }
    VGA_REM_SYS *system = vga_need_rem_sys(before->parent, fqcp_name);
    if (system == nullptr || system == before) {
        return system != nullptr;
    }
    VGA_REM_PLU place = plu;
    place.parent = system;
    vga_relink_as(plu, place);
    vga_place_line(&plu);
    vga_drop_unused_system(before);
    return 1;
}

NB_VOID drop_unnamed(VGA_REM_PLU *plu) {
    if (plu->named_by != nullptr) {
        follow_latest(*plu);
    } else if (!plu->defined && AVL_FIRST(plu->sess_tree) == nullptr) {
        VGA_REM_SYS *system = plu->parent;
        vga_record_changed(plu, VGA_RECORD_GONE);
        vga_delete_vga_rem_plu(plu);
        vga_drop_unused_system(system);
    } else {
        follow_latest(*plu);
    }
}

/* The placeholder over partners whose control point is not known; it stands in no index. */
VGA_REM_SYS *network_placeholder(VGA_NODE *node) {
    if (node->network_fake_rem_sys == nullptr) {
        NAP_DIR_DATA entry = {};
        entry.overlay_size = sizeof(entry);
        memset(entry.fqcp_name, 0x40, sizeof(entry.fqcp_name));
        VGA_REM_SYS *system = vga_init_vga_rem_sys(node, &entry);
        if (system == nullptr) {
            return nullptr;
        }
        node->network_fake_rem_sys = system;
        vga_create_fixed_line(node->rem_sys_root, system, VGA_VIEWER_REM_SYS);
    }
    return node->network_fake_rem_sys;
}

/* Of a remote system that the directory does not have. */
NAP_DIR_DATA system_entry(const NB_UCHAR *fqcp_name) {
    NAP_DIR_DATA entry = {};
    entry.overlay_size = sizeof(entry);
    memcpy(entry.fqcp_name, fqcp_name, sizeof(entry.fqcp_name));
    memcpy(entry.resource_name, fqcp_name, sizeof(entry.resource_name));
    return entry;
}

NB_USHORT is_control_point(NB_USHORT resource_type) {
    return resource_type == NAP_DIR_END_NODE || resource_type == NAP_DIR_NETWORK_NODE;
}

VGA_REM_SESS *find_session(const VGA_REM_PLU &plu, const NAP_MODE_DATA &mode) {
    VGA_REM_SESS_KEY key;
    memcpy(key.lu_alias, mode.lu_alias, sizeof(key.lu_alias));
    memcpy(key.mode_name, mode.mode_name, sizeof(key.mode_name));
    return static_cast<VGA_REM_SESS *>(ntl_avl_find(&plu.sess_tree, &key));
}

NB_VOID end_session(const VGA_MODE &mode, const NAP_MODE_DATA *entry) {
    VGA_REM_SESS *session =
        mode.partner.plu != nullptr ? find_session(*mode.partner.plu, *entry) : nullptr;
    if (session != nullptr) {
        vga_delete_vga_rem_sess(session);
    }
}

/* The control point's entry is its remote system's. */
NB_USHORT make_system(VGA_DIR &dir) {
    VGA_REM_SYS *system = vga_init_vga_rem_sys(dir.parent, dir.vcb);
    system = system != nullptr ? vga_insert_vga_rem_sys(system) : nullptr;
    if (system == nullptr) {
        return 0;
    }
    system->defined += dir.of_system ? 0 : 1;
    dir.of_system = 1;
    vga_update_line(system);
    return 1;
}

} // namespace

NB_USHORT vga_name_partner(VGA_NODE *node, VGA_PARTNER_REF &ref, const NB_UCHAR *fqcp_name,
                           const NB_UCHAR *fqplu_name, NB_USHORT type) {
    VGA_REM_PLU *plu = vga_need_rem_plu(node, fqplu_name, type);
    if (plu == nullptr) {
        return 0;
    }
    if (ref.plu == plu && memcmp(ref.fqcp_name, fqcp_name, sizeof(ref.fqcp_name)) == 0) {
        return 1;
    }
    VGA_REM_PLU *before = ref.plu;
    if (before != nullptr) {
        leave(*before, ref);
    }
    memcpy(ref.fqcp_name, fqcp_name, sizeof(ref.fqcp_name));
    join(*plu, ref);
    if (before != nullptr && before != plu) {
        drop_unnamed(before);
    }
    return follow_latest(*plu);
}

NB_VOID vga_forget_partner(VGA_PARTNER_REF &ref) {
    if (VGA_REM_PLU *plu = ref.plu) {
        leave(*plu, ref);
        drop_unnamed(plu);
    }
}

VGA_REM_SYS *vga_need_rem_sys(VGA_NODE *node, const NB_UCHAR *fqcp_name) {
    if (vga_blank_name(fqcp_name, sizeof(VGA_REM_SYS::name))) {
        return network_placeholder(node);
    }
    VGA_REM_SYS *system = vga_find_rem_sys(node, fqcp_name);
    if (system == nullptr) {
        const NAP_DIR_DATA entry = system_entry(fqcp_name);
        system = vga_init_vga_rem_sys(node, &entry);
        if (system != nullptr) {
            system = vga_insert_vga_rem_sys(system);
        }
    }
    return system;
}

VGA_REM_PLU *vga_need_rem_plu(VGA_NODE *node, const NB_UCHAR *fqplu_name, NB_USHORT type) {
    if (VGA_REM_PLU *plu = vga_find_rem_plu(node, fqplu_name, type)) {
        return plu;
    }
    VGA_REM_SYS *system = network_placeholder(node);
    NAP_PLU_DEF_DATA entry = {};
    entry.overlay_size = sizeof(entry);
    memcpy(entry.fqplu_name, fqplu_name, sizeof(entry.fqplu_name));
    memset(entry.def_data.plu_alias, ' ', sizeof(entry.def_data.plu_alias));
    VGA_REM_PLU *plu = system != nullptr ? vga_init_vga_rem_plu(system, &entry, type) : nullptr;
    return plu != nullptr ? vga_insert_vga_rem_plu(plu) : nullptr;
}

NB_VOID vga_undefine_rem_plu(VGA_REM_PLU *plu) {
    NAP_PLU_DEF_DATA &entry = *plu->vcb;
    memset(&entry.def_data, 0, sizeof(entry.def_data));
    memset(entry.def_data.plu_alias, ' ', sizeof(entry.def_data.plu_alias));
    plu->defined = 0;
    vga_update_line(plu);
    drop_unnamed(plu);
}

NB_VOID vga_drop_unused_system(VGA_REM_SYS *system) {
    if (system->defined == 0 && AVL_FIRST(system->remote_plu_tree) == nullptr &&
        system != system->parent->network_fake_rem_sys) {
        vga_record_changed(system, VGA_RECORD_GONE);
        vga_delete_vga_rem_sys(system);
    }
}

VGA_REM_SESS *vga_add_vga_rem_sess(VGA_REM_PLU *plu, const NAP_MODE_DATA *entry) {
    VGA_REM_SESS *session = vga_init_vga_rem_sess(plu, entry);
    return session != nullptr ? vga_insert_vga_rem_sess(session) : nullptr;
}

/* What follows from the entries that name partners. */

/* A directory entry names a remote system, or a partner LU and the system that has it.  What is on
 * the node itself is neither. */
NB_USHORT VGA_RECORD_TYPE<VGA_DIR>::settled(VGA_DIR &dir) {
    const NAP_NODE_INFO own = dir.parent->node_data.info;
    if (memcmp(dir.key.fqcp_name, own.fq_cp_name, sizeof(own.fq_cp_name)) == 0) {
        return 1;
    }
    if (is_control_point(dir.key.resource_type)) {
        return make_system(dir);
    }
    const NB_USHORT known = dir.partner.plu != nullptr;
    if (vga_name_partner(dir.parent, dir.partner, dir.key.fqcp_name, dir.key.resource_name,
                         dir.key.resource_type) == 0) {
        return 0;
    }
    dir.partner.plu->in_directory += known ? 0 : 1;
    vga_update_line(dir.partner.plu);
    return 1;
}

NB_VOID VGA_RECORD_TYPE<VGA_DIR>::unlinked(VGA_DIR &dir) {
    if (dir.partner.plu != nullptr) {
        dir.partner.plu->in_directory--;
        vga_update_line(dir.partner.plu);
        vga_forget_partner(dir.partner);
    }
    VGA_REM_SYS *system = dir.of_system ? vga_find_rem_sys(dir.parent, dir.key.fqcp_name) : nullptr;
    if (system != nullptr) {
        system->defined--;
        if (system->defined == 0) {
            *system->vcb = system_entry(system->name);
        }
        vga_update_line(system);
        vga_drop_unused_system(system);
    }
}

NB_USHORT VGA_RECORD_TYPE<VGA_PLU>::settled(VGA_PLU &plu) {
    const NAP_PLU_DATA data = *plu.vcb;
    return vga_name_partner(plu.parent->parent, plu.partner, data.fq_cp_name, data.fqplu_name,
                            NAP_DIR_LU);
}

/* Under another alias of their LU, its sessions are others. */
NB_VOID VGA_RECORD_TYPE<VGA_MODE>::merged(VGA_MODE &kept, VGA_MODE &fresh) {
    if (memcmp(kept.vcb->lu_alias, fresh.vcb->lu_alias, sizeof(kept.vcb->lu_alias)) != 0) {
        end_session(kept, fresh.vcb);
    }
}

/* A mode in use also tells of the sessions with the partner. */
NB_USHORT VGA_RECORD_TYPE<VGA_MODE>::settled(VGA_MODE &mode) {
    const NAP_MODE_DATA data = *mode.vcb;
    if (vga_name_partner(mode.parent->parent, mode.partner, data.fq_cp_name, data.fqplu_name,
                         NAP_DIR_LU) == 0) {
        return 0;
    }
    if (data.act_sess_count == 0) {
        end_session(mode, mode.vcb);
        return 1;
    }
    return vga_add_vga_rem_sess(mode.partner.plu, mode.vcb) != nullptr;
}

NB_VOID VGA_RECORD_TYPE<VGA_MODE>::unlinked(VGA_MODE &mode) {
    end_session(mode, mode.vcb);
    vga_forget_partner(mode.partner);
}

/* Those that named it have nothing to forget any more. */
NB_VOID VGA_RECORD_TYPE<VGA_REM_PLU>::unlinked(VGA_REM_PLU &plu) {
    while (plu.named_by != nullptr) {
        leave(plu, *plu.named_by);
    }
}
