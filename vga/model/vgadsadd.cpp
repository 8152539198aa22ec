#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vgaglob.h"
#include "vgahooks.h"
#include "vgatypes.h"

VGA_SYSTEM *gvga_system;

namespace {

VGA_SERVER_ROLE role_of(NB_ULONG server_flags) {
    constexpr NB_ULONG master = NAP_SERVER_MASTER | NAP_SERVER_CONFIG;
    if ((server_flags & master) == master) {
        return VGA_ROLE_MASTER;
    }
    NB_USHORT backup = (server_flags & (NAP_SERVER_BACKUP | NAP_SERVER_BACKUP_NEXT)) != 0;
    return backup && (server_flags & NAP_SERVER_MASTER) != 0 ? VGA_ROLE_BACKUP : VGA_ROLE_NONE;
}

NB_VOID read_node_info(VGA_NODE &node) {
    NAP_NODE_INFO info = node.vcb->info;
    node.node_state = info.node_state;
    node.role = role_of(info.server_flags);
}

NB_VOID node_changed(VGA_NODE &node, VGA_NODE_CHANGE change) {
    if (gvga_hooks.node_list_changed != nullptr) {
        gvga_hooks.node_list_changed(&node, change);
    }
}

/* A host link makes its PU even before the node's own list names it. */
NB_VOID make_local_pu(VGA_LS &ls) {
    NAP_LS_DEF def = ls.vcb->def_data;
    if (def.adj_cp_type != NAP_ADJ_HOST || vga_blank_name(def.pu_name, sizeof(def.pu_name))) {
        return;
    }
    VGA_NODE *node = ls.parent->node;
    VGA_LOCAL_PU *pu = vga_find_local_pu(node, def.pu_name);
    if (pu == nullptr) {
        NAP_PU_DATA entry = {};
        entry.overlay_size = sizeof(entry);
        memcpy(entry.pu_name, def.pu_name, sizeof(entry.pu_name));
        memcpy(entry.def_data.ls_name, ls.name, sizeof(ls.name));
        pu = vga_init_vga_local_pu(node, &entry);
        if (pu == nullptr) {
            VGA_EXIT(VGA_EXIT_INTERNAL, 0);
            return;
        }
        vga_insert_vga_local_pu(pu);
    }
    pu->ls_entry = &ls;
    ls.local_pu = pu;
}

} // namespace

NB_VOID VGA_RECORD_TYPE<VGA_NODE>::init(VGA_NODE &node) {
    memcpy(node.name, node.vcb->node_name, sizeof(node.name));
    read_node_info(node);
    for (NB_USHORT &flag : node.startup_status) {
        flag = 1;
    }
    vga_init_tree(node.dlcs, vga_compare_asc8);
    vga_init_tree(node.ports, vga_compare_asc8);
    vga_init_tree(node.link_stations, vga_compare_asc8);
    vga_init_tree(node.local_pus, vga_compare_ebc8);
    vga_init_tree(node.lus, vga_compare_ebc8);
    vga_init_tree(node.lu_aliases, vga_compare_asc8);
    vga_init_tree(node.mode_defs, vga_compare_ebc8);
    vga_init_tree(node.classes_of_service, vga_compare_ebc8);
    vga_init_tree(node.directory, vga_compare_directory_entries);
    vga_init_tree(node.remote_systems, vga_compare_ebc17);
    vga_init_tree(node.remote_plus, vga_compare_rem_plu);
    for (VGA_VIEWER_ROOT *root :
         {&node.connectivity_root, &node.local_lu_root, &node.rem_sys_root}) {
        if (vga_viewer_init_root(root) == 0) {
            VGA_EXIT(VGA_EXIT_INTERNAL, 0);
        }
    }
}

NB_VOID VGA_RECORD_TYPE<VGA_NODE>::linked(VGA_NODE &node) {
    node_changed(node, VGA_NODE_ADDED);
}

NB_VOID VGA_RECORD_TYPE<VGA_NODE>::merged(VGA_NODE &kept, VGA_NODE &fresh) {
    for (VGA_VIEWER_ROOT *root :
         {&fresh.connectivity_root, &fresh.local_lu_root, &fresh.rem_sys_root}) {
        vga_viewer_destroy_root(root);
    }
    read_node_info(kept);
    node_changed(kept, VGA_NODE_CHANGED);
}

NB_VOID VGA_RECORD_TYPE<VGA_LS>::linked(VGA_LS &ls) {
    make_local_pu(ls);
}

/* A PU that the node lists belongs to the link station that it names. */
NB_VOID VGA_RECORD_TYPE<VGA_LOCAL_PU>::linked(VGA_LOCAL_PU &pu) {
    NAP_PU_DATA data = *pu.vcb;
    VGA_LS *ls = vga_find_ls(pu.parent, data.def_data.ls_name);
    if (data.host_attachment != NAP_DLUR_ATTACHED && ls != nullptr) {
        pu.ls_entry = ls;
        ls->local_pu = &pu;
    }
}

/* The alias may have changed, and it is the key of the second index. */
NB_VOID VGA_RECORD_TYPE<VGA_LU62>::merged(VGA_LU62 &kept, VGA_LU62 &fresh) {
    ntl_avl_delete(&kept.parent->lu_aliases, &kept.alias_links);
    memcpy(kept.alias, fresh.alias, sizeof(kept.alias));
    if (ntl_avl_insert(&kept.parent->lu_aliases, &kept.alias_links) == 0) {
        v0_assert(__FILE__, __LINE__, "FALSE");
    }
}

NB_VOID VGA_RECORD_TYPE<VGA_REM_SYS>::merged(VGA_REM_SYS &kept, VGA_REM_SYS &fresh) {
    kept.defined |= fresh.defined;
}

NB_VOID VGA_RECORD_TYPE<VGA_REM_PLU>::merged(VGA_REM_PLU &kept, VGA_REM_PLU &fresh) {
    kept.defined |= fresh.defined;
    kept.in_directory |= fresh.in_directory;
}

VGA_SYSTEM *vga_init_vga_system(NB_VOID) {
    VGA_OWNED<VGA_SYSTEM> system(static_cast<VGA_SYSTEM *>(calloc(1, sizeof(VGA_SYSTEM))));
    if (!system) {
        return nullptr;
    }
    system->handle = nba_create_handle(system.get());
    if (system->handle == 0 || vga_viewer_init_root(&system->node_viewer_root) == 0) {
        nba_destroy_handle(system->handle);
        return nullptr;
    }
    for (NB_USHORT &flag : system->startup_status) {
        flag = 1;
    }
    vga_init_tree(system->nodes, vga_compare_node_name);
    vga_init_tree(system->dependent_lus, vga_compare_lu);
    return system.release();
}

VGA_NODE *vga_init_vga_node(const NAP_NODE_ALL_DATA *entry) {
    return vga_init_record<VGA_NODE>(gvga_system, entry);
}
VGA_NODE *vga_insert_vga_node(VGA_NODE *record) {
    return vga_insert_record(record);
}

VGA_DLC *vga_init_vga_dlc(VGA_NODE *owner, const NAP_DLC_DATA *entry) {
    return vga_init_record<VGA_DLC>(owner, entry);
}
VGA_DLC *vga_insert_vga_dlc(VGA_DLC *record) {
    return vga_insert_record(record);
}

VGA_PORT *vga_init_vga_port(VGA_DLC *owner, const NAP_PORT_DATA *entry) {
    return vga_init_record<VGA_PORT>(owner, entry);
}
VGA_PORT *vga_insert_vga_port(VGA_PORT *record) {
    return vga_insert_record(record);
}

VGA_LS *vga_init_vga_ls(VGA_PORT *owner, const NAP_LS_DATA *entry) {
    return vga_init_record<VGA_LS>(owner, entry);
}
VGA_LS *vga_insert_vga_ls(VGA_LS *record) {
    VGA_LS *ls = vga_insert_record(record);
    if (ls != nullptr && ls->local_pu == nullptr) {
        make_local_pu(*ls);
    }
    return ls;
}

VGA_LOCAL_PU *vga_init_vga_local_pu(VGA_NODE *owner, const NAP_PU_DATA *entry) {
    return vga_init_record<VGA_LOCAL_PU>(owner, entry);
}
VGA_LOCAL_PU *vga_insert_vga_local_pu(VGA_LOCAL_PU *record) {
    return vga_insert_record(record);
}

VGA_LU03 *vga_init_vga_lu03(VGA_LOCAL_PU *owner, const NAP_LU03_DATA *entry) {
    return vga_init_record<VGA_LU03>(owner, entry);
}
VGA_LU03 *vga_insert_vga_lu03(VGA_LU03 *record) {
    return vga_insert_record(record);
}

VGA_LU62 *vga_init_vga_lu62(VGA_NODE *owner, const NAP_LOCAL_LU_DATA *entry) {
    return vga_init_record<VGA_LU62>(owner, entry);
}
VGA_LU62 *vga_insert_vga_lu62(VGA_LU62 *record) {
    return vga_insert_record(record);
}

VGA_MODE_DEF *vga_init_vga_mode_def(VGA_NODE *owner, const NAP_MODE_DEF_DATA *entry) {
    return vga_init_record<VGA_MODE_DEF>(owner, entry);
}
VGA_MODE_DEF *vga_insert_vga_mode_def(VGA_MODE_DEF *record) {
    return vga_insert_record(record);
}

VGA_MODE *vga_init_vga_mode(VGA_LU62 *owner, const NAP_MODE_DATA *entry) {
    return vga_init_record<VGA_MODE>(owner, entry);
}
VGA_MODE *vga_insert_vga_mode(VGA_MODE *record) {
    return vga_insert_record(record);
}

VGA_PLU *vga_init_vga_plu(VGA_LU62 *owner, const NAP_PLU_DATA *entry) {
    return vga_init_record<VGA_PLU>(owner, entry);
}
VGA_PLU *vga_insert_vga_plu(VGA_PLU *record) {
    return vga_insert_record(record);
}

VGA_COS *vga_init_vga_cos(VGA_NODE *owner, const NAP_COS_DATA *entry) {
    return vga_init_record<VGA_COS>(owner, entry);
}
VGA_COS *vga_insert_vga_cos(VGA_COS *record) {
    return vga_insert_record(record);
}

VGA_DIR *vga_init_vga_dir(VGA_NODE *owner, const NAP_DIR_DATA *entry) {
    return vga_init_record<VGA_DIR>(owner, entry);
}
VGA_DIR *vga_insert_vga_dir(VGA_DIR *record) {
    return vga_insert_record(record);
}

VGA_REM_SYS *vga_init_vga_rem_sys(VGA_NODE *owner, const NAP_DIR_DATA *entry) {
    return vga_init_record<VGA_REM_SYS>(owner, entry);
}
VGA_REM_SYS *vga_insert_vga_rem_sys(VGA_REM_SYS *record) {
    return vga_insert_record(record);
}

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

VGA_REM_SESS *vga_init_vga_rem_sess(VGA_REM_PLU *owner, const NAP_MODE_DATA *entry) {
    return vga_init_record<VGA_REM_SESS>(owner, entry);
}
VGA_REM_SESS *vga_insert_vga_rem_sess(VGA_REM_SESS *record) {
    return vga_insert_record(record);
}
