#include "vgadsadd.h"
#include "globals.h"
#include "recordtypes.h"
#include "vgadsdel.h"

namespace {

/* A link makes the PU that it serves even before the node's own list names it. */

NB_USHORT make_local_pu(VGA_LS &ls, const NAP_LS_DEF &def) {
    NAP_PU_DATA entry = {};
    entry.overlay_size = sizeof(entry);
    memcpy(entry.pu_name, def.pu_name, sizeof(entry.pu_name));
    memcpy(entry.def_data.ls_name, ls.name, sizeof(ls.name));
    VGA_LOCAL_PU *pu = vga_init_vga_local_pu(ls.parent->node, &entry);
    return pu != nullptr && vga_insert_vga_local_pu(pu) != nullptr;
}

NB_USHORT make_down_pu(VGA_LS &ls, const NAP_LS_DEF &def) {
    NAP_DOWN_PU_DATA entry = {};
    entry.overlay_size = sizeof(entry);
    memcpy(entry.dspu_name, def.pu_name, sizeof(entry.dspu_name));
    memcpy(entry.def_data.ls_name, ls.name, sizeof(ls.name));
    VGA_DOWN_PU *pu = vga_init_vga_down_pu(ls.parent->node, &entry);
    return pu != nullptr && vga_insert_vga_down_pu(pu) != nullptr;
}

template <class Pu> NB_USHORT is_named(const Pu *pu, const NB_UCHAR *name) {
    return pu != nullptr && vga_compare_ebc8(pu->name, name) == 0;
}

} // namespace

NB_USHORT VGA_RECORD_TYPE<VGA_LS>::settled(VGA_LS &ls) {
    NAP_LS_DEF def = ls.vcb->def_data;
    VGA_NODE *node = ls.parent->node;
    if (vga_blank_name(def.pu_name, sizeof(def.pu_name))) {
        return 1;
    }
    if (def.adj_cp_type == NAP_ADJ_HOST && !is_named(ls.local_pu, def.pu_name)) {
        VGA_LOCAL_PU *pu = vga_find_local_pu(node, def.pu_name);
        if (pu == nullptr) {
            return make_local_pu(ls, def);
        }
        vga_put_on_link(*pu, ls, &VGA_LS::local_pu);
    } else if (def.adj_cp_type == NAP_ADJ_DOWNSTREAM && !is_named(ls.down_pu, def.pu_name)) {
        VGA_DOWN_PU *pu = vga_find_down_pu(node, def.pu_name);
        if (pu == nullptr) {
            return make_down_pu(ls, def);
        }
        vga_put_on_link(*pu, ls, &VGA_LS::down_pu);
    }
    return 1;
}

/* A PU that the node lists belongs to the link station that it names; one that is served over the
 * network to none.  Its LUs' lines stand below that of the link station, or its own. */
NB_USHORT VGA_RECORD_TYPE<VGA_LOCAL_PU>::settled(VGA_LOCAL_PU &pu) {
    NAP_PU_DATA data = *pu.vcb;
    VGA_LS *ls = vga_find_ls(pu.parent, data.def_data.ls_name);
    if (data.host_attachment != NAP_DLUR_ATTACHED && ls != nullptr) {
        vga_put_on_link(pu, *ls, &VGA_LS::local_pu);
    } else if (pu.ls_entry != nullptr) {
        vga_take_off_link(&pu, &VGA_LS::local_pu);
    } else {
        vga_renew_lu_lines(pu);
    }
    return 1;
}

NB_VOID vga_pool_follows(const VGA_LU03 *lu) {
    NAP_LU03_DATA data = *lu->vcb;
    if (vga_blank_name(data.def_data.pool_name, sizeof(data.def_data.pool_name))) {
        return;
    }
    VGA_POOL_LU *member = vga_find_pool_lu(lu->parent->parent, data.def_data.pool_name, lu->name);
    const NB_UCHAR active = data.det_data.lu_sscp_sess_active;
    const NB_UCHAR in_use = data.det_data.plu_sess_active || data.det_data.appl_conn_active;
    if (member != nullptr &&
        (member->vcb->lu_active != active || member->vcb->lu_in_use != in_use)) {
        member->vcb->lu_active = active;
        member->vcb->lu_in_use = in_use;
        vga_update_line(member);
    }
}

/* The list of its pool may have been read before it, and before the LU was what it is now. */
NB_USHORT VGA_RECORD_TYPE<VGA_LU03>::settled(VGA_LU03 &lu) {
    vga_pool_follows(&lu);
    return 1;
}

NB_USHORT VGA_RECORD_TYPE<VGA_DOWN_PU>::settled(VGA_DOWN_PU &pu) {
    NAP_DOWN_PU_DATA data = *pu.vcb;
    VGA_LS *ls = vga_find_ls(pu.parent, data.def_data.ls_name);
    if (ls != nullptr) {
        vga_put_on_link(pu, *ls, &VGA_LS::down_pu);
    } else {
        vga_take_off_link(&pu, &VGA_LS::down_pu);
    }
    return 1;
}

/* The name by which clashes are looked for: as many characters of it as an LU name's field has. */
NB_VOID VGA_RECORD_TYPE<VGA_EXTRA_DATA>::init(VGA_EXTRA_DATA &extra) {
    const auto *name = reinterpret_cast<const NB_UCHAR *>(extra.vcb) +
                       offsetof(NAP_EXTRA_DATA_DATA, def_data.display_name);
    memset(extra.name, ' ', sizeof(extra.name));
    memcpy(extra.name, name, strnlen(reinterpret_cast<const NB_CHAR *>(name), sizeof(extra.name)));
    extra.kind = VGA_EXTRA_DISPLAY_NAME;
}

NB_VOID VGA_RECORD_TYPE<VGA_DSPU_TEMPLATE>::init(VGA_DSPU_TEMPLATE &pu) {
    VGA_COPY_KEY(pu.name, pu.vcb->template_name);
    vga_init_tree(pu.lu_templates, vga_compare_dslu_template);
    if (vga_viewer_init_root(&pu.viewer_root) == 0) {
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
    }
}

/* Passwords are kept under the alias of their LU; those of another alias are read anew. */
NB_VOID VGA_RECORD_TYPE<VGA_LU62>::merged(VGA_LU62 &kept, VGA_LU62 &fresh) {
    NAP_LOCAL_LU_DEF before = fresh.vcb->def_data;
    if (vga_compare_asc8(before.lu_alias, kept.alias) != 0) {
        vga_delete_lu62_passwords(kept.parent, before.lu_alias);
    }
}

NB_VOID VGA_RECORD_TYPE<VGA_REM_PLU>::merged(VGA_REM_PLU &kept, VGA_REM_PLU &fresh) {
    kept.defined |= fresh.defined;
}

VGA_LINE_PLACE VGA_RECORD_TYPE<VGA_LS_ROUTING>::line(VGA_LS_ROUTING &routing) {
    VGA_LU62 &lu = *routing.parent;
    return {&lu.parent->local_lu_root, &lu.routing_title, VGA_VIEWER_LS_R, &routing.links, 0};
}

/* Every node that has a pool of the name shares the domain's one. */
NB_USHORT VGA_RECORD_TYPE<VGA_POOL>::settled(VGA_POOL &pool) {
    if (pool.sys_pool != nullptr) {
        return 1;
    }
    pool.sys_pool = vga_find_sys_pool(pool.name);
    if (pool.sys_pool == nullptr) {
        VGA_SYS_POOL *sys_pool = vga_init_vga_sys_pool(gvga_system, pool.vcb);
        pool.sys_pool = sys_pool != nullptr ? vga_insert_vga_sys_pool(sys_pool) : nullptr;
    }
    if (pool.sys_pool == nullptr) {
        return 0;
    }
    pool.sys_pool->node_pools++;
    vga_update_line(pool.sys_pool);
    return 1;
}

NB_VOID VGA_RECORD_TYPE<VGA_TAMRIX_APPCIP_SESS>::init(VGA_TAMRIX_APPCIP_SESS &session) {
    VGA_COPY_KEY(session.key.lu_name, session.vcb->lu_name);
    VGA_COPY_KEY(session.key.fqplu_name, session.vcb->fqplu_name);
    VGA_COPY_KEY(session.key.mode_name, session.vcb->mode_name);
    VGA_COPY_KEY(session.key.number, session.vcb->session_number);
    session.number = session.key.number;
}

/* The constructors and inserters of the types that differ in their declaration only. */
#define VGA_RECORD_FUNCTIONS(name, record, owner, entry_type, ...)                                 \
    record *vga_init_##name(owner *parent, const entry_type *entry) {                              \
        return vga_init_record<record>(parent, entry);                                             \
    }                                                                                              \
    record *vga_insert_##name(record *fresh) {                                                     \
        return vga_insert_record(fresh);                                                           \
    }
VGA_RECORDS(VGA_RECORD_FUNCTIONS, VGA_RECORD_FUNCTIONS)
#undef VGA_RECORD_FUNCTIONS

VGA_REM_PLU *vga_init_vga_rem_plu(VGA_REM_SYS *owner, const NAP_PLU_DEF_DATA *entry,
                                  NB_USHORT type) {
    VGA_REM_PLU *plu = vga_init_record<VGA_REM_PLU>(owner, entry);
    if (plu != nullptr) {
        plu->key.type = type;
    }
    return plu;
}
VGA_REM_PLU *vga_insert_vga_rem_plu(VGA_REM_PLU *record) {
    return vga_insert_record(record);
}

VGA_LS_ROUTING *vga_init_vga_ls_routing(VGA_LU62 *owner, const NAP_LS_ROUTING_DATA *entry) {
    return vga_init_record<VGA_LS_ROUTING>(owner, entry);
}

/* The first routing brings the title line over them, behind the LU's modes. */
VGA_LS_ROUTING *vga_insert_vga_ls_routing(VGA_LS_ROUTING *record) {
    VGA_LU62 &lu = *record->parent;
    if (AVL_FIRST(lu.routings) == nullptr) {
        VGA_VIEWER_ROOT *root = &lu.parent->local_lu_root;
        vga_create_viewer(root, &lu.routing_title, VGA_VIEWER_LS_R_TITLE, &lu, &lu.gui_data.viewer,
                          VGA_VIEWER_LAST);
        vga_line_came({root, &lu.gui_data.viewer, 0, nullptr, 0}, &lu.routing_title);
    }
    return vga_insert_record(record);
}

/* An LU has one set of additional data, whatever it is called. */
VGA_EXTRA_DATA *vga_init_vga_extra_data(VGA_LU03 *owner, const NAP_EXTRA_DATA_DATA *entry) {
    return vga_init_record<VGA_EXTRA_DATA>(owner, entry);
}
VGA_EXTRA_DATA *vga_insert_vga_extra_data(VGA_EXTRA_DATA *record) {
    VGA_LU03 &lu = *record->parent;
    if (lu.extra_data != nullptr) {
        return vga_merge_record(record, lu.extra_data);
    }
    lu.extra_data = record;
    vga_link(VGA_RECORD_TYPE<VGA_EXTRA_DATA>::links(*record)[0]);
    return record;
}
