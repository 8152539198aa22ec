/* The two records that hold all others: the domain and its nodes. */
#include "globals.h"
#include "hooks.h"
#include "modelwalk.h"
#include "recordtypes.h"
#include "vgadsadd.h"
#include "vgadsdel.h"

VGA_SYSTEM *gvga_system;

namespace {

/* An index of a record, and the order of it. */
template <class Record> struct INDEX {
    AVL_TREE Record::*tree;
    AVL_COMPARE compare;
};

constexpr INDEX<VGA_SYSTEM> system_indexes[] = {
    {&VGA_SYSTEM::nodes, vga_compare_node_name},  {&VGA_SYSTEM::net_nodes, vga_compare_node_name},
    {&VGA_SYSTEM::users, vga_compare_user_name},  {&VGA_SYSTEM::cpics, vga_compare_asc8},
    {&VGA_SYSTEM::rje_wkstns, vga_compare_asc4},  {&VGA_SYSTEM::pools, vga_compare_ebc8},
    {&VGA_SYSTEM::dependent_lus, vga_compare_lu},
};

constexpr VGA_VIEWER_ROOT VGA_SYSTEM::*system_roots[] = {
    &VGA_SYSTEM::node_viewer_root, &VGA_SYSTEM::user_viewer_root, &VGA_SYSTEM::pool_viewer_root,
    &VGA_SYSTEM::cpic_viewer_root, &VGA_SYSTEM::rje_viewer_root,
};

constexpr INDEX<VGA_NODE> node_indexes[] = {
    {&VGA_NODE::dlcs, vga_compare_asc8},
    {&VGA_NODE::ports, vga_compare_asc8},
    {&VGA_NODE::link_stations, vga_compare_asc8},
    {&VGA_NODE::connection_networks, vga_compare_ebc17},
    {&VGA_NODE::local_pus, vga_compare_ebc8},
    {&VGA_NODE::down_pus, vga_compare_ebc8},
    {&VGA_NODE::dspu_templates, vga_compare_asc8},
    {&VGA_NODE::primary_lines, vga_compare_asc8},
    {&VGA_NODE::primary_lu0s, vga_compare_ebc8},
    {&VGA_NODE::rtp_conns, vga_compare_rtp_conn},
    {&VGA_NODE::lus, vga_compare_ebc8},
    {&VGA_NODE::lu_aliases, vga_compare_asc8},
    {&VGA_NODE::mode_defs, vga_compare_ebc8},
    {&VGA_NODE::lu62_timeouts, vga_compare_lu62_timeouts},
    {&VGA_NODE::classes_of_service, vga_compare_ebc8},
    {&VGA_NODE::directory, vga_compare_directory_entries},
    {&VGA_NODE::remote_systems, vga_compare_ebc17},
    {&VGA_NODE::remote_plus, vga_compare_rem_plu},
    {&VGA_NODE::tp_defs, vga_compare_tp_names},
    {&VGA_NODE::tp_load_infos, vga_compare_tp_load_info},
    {&VGA_NODE::sl_security, vga_compare_sl_sec},
    {&VGA_NODE::cl_security, vga_compare_ebc10},
    {&VGA_NODE::access_lists, vga_compare_asc14},
    {&VGA_NODE::pools, vga_compare_ebc8},
    {&VGA_NODE::tn_clients, vga_compare_client_address},
    {&VGA_NODE::tn_sessions, vga_compare_tn_session},
    {&VGA_NODE::tn_assocs, vga_compare_ebc8},
    {&VGA_NODE::tn_redirects, vga_compare_tn_redirect},
    {&VGA_NODE::tamrix_numbers, vga_compare_ulong},
    {&VGA_NODE::tamrix_sessions, vga_compare_tamrix_appcip_sess},
};

constexpr VGA_VIEWER_ROOT VGA_NODE::*node_roots[] = {
    &VGA_NODE::connectivity_root, &VGA_NODE::local_lu_root,    &VGA_NODE::rem_sys_root,
    &VGA_NODE::mode_def_root,     &VGA_NODE::tp_def_root,      &VGA_NODE::tp_load_root,
    &VGA_NODE::sl_security_root,  &VGA_NODE::cl_security_root, &VGA_NODE::access_list_root,
    &VGA_NODE::tn_session_root,   &VGA_NODE::tn_assoc_root,    &VGA_NODE::tn_redirect_root,
    &VGA_NODE::rtp_conn_root,     &VGA_NODE::tamrix_root,
};

struct TITLE {
    VGA_VIEWER_ITEM VGA_NODE::*line;
    VGA_VIEWER_ROOT VGA_NODE::*root;
    VGA_VIEWER_TYPE type;
};

constexpr TITLE titles[] = {
    {&VGA_NODE::sl_security_title, &VGA_NODE::sl_security_root, VGA_VIEWER_SL_SEC_TITLE},
    {&VGA_NODE::tn_session_title, &VGA_NODE::tn_session_root, VGA_VIEWER_TN_SESS_TITLE},
    {&VGA_NODE::tn_assoc_title, &VGA_NODE::tn_assoc_root, VGA_VIEWER_TN_ASSOC_TITLE},
    {&VGA_NODE::tn_redirect_title, &VGA_NODE::tn_redirect_root, VGA_VIEWER_TN_REDIRECT_TITLE},
    {&VGA_NODE::rtp_conn_title, &VGA_NODE::rtp_conn_root, VGA_VIEWER_RTP_CONN_TITLE},
    {&VGA_NODE::tamrix_title, &VGA_NODE::tamrix_root, VGA_VIEWER_APPCIP_SESS_TITLE},
};

template <class Record, size_t Count>
NB_VOID init_indexes(Record &record, const INDEX<Record> (&indexes)[Count]) {
    for (const INDEX<Record> &index : indexes) {
        vga_init_tree(record.*index.tree, index.compare);
    }
}

/* Returns 0 when a list got no handle. */
template <class Record, size_t Count>
NB_USHORT init_roots(Record &record, VGA_VIEWER_ROOT Record::*const (&roots)[Count]) {
    NB_USHORT all = 1;
    for (VGA_VIEWER_ROOT Record::*root : roots) {
        all &= vga_viewer_init_root(&(record.*root));
    }
    return all;
}

template <class Record, size_t Count>
NB_VOID destroy_roots(Record &record, VGA_VIEWER_ROOT Record::*const (&roots)[Count]) {
    for (VGA_VIEWER_ROOT Record::*root : roots) {
        vga_viewer_destroy_root(&(record.*root));
    }
}

NB_VOID read_node_info(VGA_NODE &node) {
    NAP_NODE_INFO info = node.vcb->info;
    node.node_state = info.node_state;
    node.role = vga_role_of(info.server_flags);
}

} // namespace

VGA_SERVER_ROLE vga_role_of(NB_ULONG server_flags) {
    constexpr NB_ULONG master = NAP_SERVER_MASTER | NAP_SERVER_CONFIG;
    if ((server_flags & master) == master) {
        return VGA_ROLE_MASTER;
    }
    NB_USHORT backup = (server_flags & (NAP_SERVER_BACKUP | NAP_SERVER_BACKUP_NEXT)) != 0;
    return backup && (server_flags & NAP_SERVER_MASTER) != 0 ? VGA_ROLE_BACKUP : VGA_ROLE_NONE;
}

VGA_SYSTEM *vga_init_vga_system(NB_VOID) {
    VGA_OWNED<VGA_SYSTEM> system(static_cast<VGA_SYSTEM *>(calloc(1, sizeof(VGA_SYSTEM))));
    if (!system) {
        return nullptr;
    }
    system->handle = nba_create_handle(system.get());
    if (system->handle == 0 || init_roots(*system, system_roots) == 0) {
        destroy_roots(*system, system_roots);
        nba_destroy_handle(system->handle);
        return nullptr;
    }
    for (NB_USHORT &flag : system->startup_status) {
        flag = 1;
    }
    init_indexes(*system, system_indexes);
    return system.release();
}

NB_VOID vga_set_connection(VGA_NODE *node, VGA_CONNECTION connection) {
    if (node->connection != connection) {
        node->connection = connection;
        vga_node_list_changed(node, VGA_NODE_CHANGED);
    }
}

NB_VOID vga_lose_connection(VGA_NODE *node) {
    node->lost_at = time(nullptr);
    node->connection = VGA_NOT_CONNECTED;
    vga_node_list_changed(node, VGA_NODE_CHANGED);
}

VGA_NODE *vga_init_vga_node(const NAP_NODE_ALL_DATA *entry) {
    return vga_init_record<VGA_NODE>(gvga_system, entry);
}

VGA_NODE *vga_insert_vga_node(VGA_NODE *record) {
    return vga_insert_record(record);
}

NB_VOID VGA_RECORD_TYPE<VGA_NODE>::init(VGA_NODE &node) {
    memcpy(node.name, node.vcb->node_name, sizeof(node.name));
    read_node_info(node);
    for (NB_USHORT &flag : node.startup_status) {
        flag = 1;
    }
    init_indexes(node, node_indexes);
    NB_INIT_LIST(node.rtp_conn_dialog_root_lqe);
    if (init_roots(node, node_roots) == 0) {
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
    }
}

NB_VOID VGA_RECORD_TYPE<VGA_NODE>::linked(VGA_NODE &node) {
    for (const TITLE &title : titles) {
        VGA_VIEWER_ROOT *root = &(node.*title.root);
        VGA_VIEWER_ITEM *line = &(node.*title.line);
        vga_create_viewer(root, line, title.type, &node, nullptr, VGA_VIEWER_FIRST);
        vga_viewer_set_fixed(root, line, 1);
    }
    vga_node_list_changed(&node, VGA_NODE_ADDED);
}

NB_VOID VGA_RECORD_TYPE<VGA_NODE>::merged(VGA_NODE &kept, VGA_NODE &fresh) {
    destroy_roots(fresh, node_roots);
    read_node_info(kept);
    vga_node_list_changed(&kept, VGA_NODE_CHANGED);
}

NB_VOID VGA_RECORD_TYPE<VGA_NODE>::delete_children(VGA_NODE &node) {
    vga_delete_node_contents(&node);
}

NB_VOID VGA_RECORD_TYPE<VGA_NODE>::unlinked(VGA_NODE &node) {
    vga_node_list_changed(&node, VGA_NODE_REMOVED);
    for (const TITLE &title : titles) {
        vga_delete_viewer(&(node.*title.root), &(node.*title.line));
    }
    destroy_roots(node, node_roots);
}

NB_VOID vga_for_each_root(const std::function<NB_VOID(VGA_VIEWER_ROOT &)> &visit) {
    for (VGA_VIEWER_ROOT VGA_SYSTEM::*root : system_roots) {
        visit(gvga_system->*root);
    }
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&visit](VGA_NODE &node) {
        for (VGA_VIEWER_ROOT VGA_NODE::*root : node_roots) {
            visit(node.*root);
        }
        vga_for_each(node.dspu_templates, &VGA_DSPU_TEMPLATE::links,
                     [&visit](VGA_DSPU_TEMPLATE &pu) { visit(pu.viewer_root); });
    });
}

NB_VOID vga_destroy_data_structures(NB_VOID) {
    vga_delete_all<VGA_NODE>(gvga_system->nodes);
    vga_delete_system_contents();
    vga_delete_all<VGA_SNA_NET_NODE>(gvga_system->net_nodes);
    destroy_roots(*gvga_system, system_roots);
    nba_destroy_handle(gvga_system->handle);
    free(gvga_system);
    gvga_system = nullptr;
}
