#include "vgadsdel.h"
#include "vgadsbld.h"
#include "vgahooks.h"
#include "vganofbd.h"
#include "vgatypes.h"

namespace {

NB_VOID delete_fake_port(VGA_PORT *&port) {
    if (port == nullptr) {
        return;
    }
    if (port->gui_data.listed) {
        vga_delete_viewer(&port->node->connectivity_root, &port->gui_data.viewer);
    }
    vga_free_record(port);
    port = nullptr;
}

/* Deletes the partners of a remote system with their sessions, then the system. */
NB_VOID delete_rem_sys_whole(VGA_REM_SYS *system) {
    if (system->gui_data.listed) {
        vga_delete_viewer(&system->parent->rem_sys_root, &system->gui_data.viewer);
    }
    vga_for_each(system->remote_plu_tree, &VGA_REM_PLU::links, [](VGA_REM_PLU &plu) {
        vga_delete_all<VGA_REM_SESS>(plu.sess_tree);
        vga_delete_vga_rem_plu(&plu);
    });
    vga_delete_vga_rem_sys(system);
}

/* A busy node asks for the same once more. */
NB_VOID disconnect_done(const VGA_PROCESS_STATE *work) {
    if (work->vcb->primary_rc == NAP_STATE_CHECK && work->vcb->secondary_rc == NAP_NODE_BUSY) {
        vga_issue_disconnect_node(work->target, work->user_data, disconnect_done);
    }
}

/* Purges what waits for a target and closes it.  The target is forgotten either way. */
NB_USHORT close_target(NB_ULONG &target, NB_USHORT gone, VGA_COMPLETION continuation) {
    NB_ULONG closing = target;
    target = 0;
    if (closing == 0) {
        return 0;
    }
    vga_purge_verb_queue(closing, 0, nullptr, 0, nullptr);
    if (gone) {
        return 0;
    }
    NB_USHORT issued = vga_issue_close_file(
        closing, gvga_system->handle, continuation != nullptr ? continuation : vga_no_completion);
    return issued && continuation != nullptr;
}

} // namespace

NB_VOID VGA_RECORD_TYPE<VGA_NODE>::delete_children(VGA_NODE &node) {
    vga_delete_node_contents(&node);
}

NB_VOID VGA_RECORD_TYPE<VGA_NODE>::unlinked(VGA_NODE &node) {
    if (gvga_hooks.node_list_changed != nullptr) {
        gvga_hooks.node_list_changed(&node, VGA_NODE_REMOVED);
    }
    for (VGA_VIEWER_ROOT *root :
         {&node.connectivity_root, &node.local_lu_root, &node.rem_sys_root}) {
        vga_viewer_destroy_root(root);
    }
}

NB_VOID VGA_RECORD_TYPE<VGA_LS>::delete_children(VGA_LS &ls) {
    if (ls.local_pu != nullptr) {
        vga_delete_vga_local_pu(ls.local_pu);
    }
}

NB_VOID vga_delete_vga_node(VGA_NODE *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_dlc(VGA_DLC *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_port(VGA_PORT *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_ls(VGA_LS *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_local_pu(VGA_LOCAL_PU *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_lu03(VGA_LU03 *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_lu62(VGA_LU62 *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_mode_def(VGA_MODE_DEF *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_mode(VGA_MODE *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_plu(VGA_PLU *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_cos(VGA_COS *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_dir(VGA_DIR *record) {
    vga_delete_record(record);
}
NB_VOID vga_delete_vga_rem_sess(VGA_REM_SESS *record) {
    vga_delete_record(record);
}

NB_VOID vga_delete_vga_rem_sys(VGA_REM_SYS *rem_sys) {
    NB_ASSERT(AVL_FIRST(rem_sys->remote_plu_tree) == NULL);
    vga_delete_record(rem_sys);
}

NB_VOID vga_delete_vga_rem_plu(VGA_REM_PLU *rem_plu) {
    NB_ASSERT(AVL_FIRST(rem_plu->sess_tree) == NULL);
    vga_delete_record(rem_plu);
}

NB_VOID vga_delete_vga_dlur_fake_port(VGA_NODE *node) {
    delete_fake_port(node->dlur_fake_port);
}

NB_VOID vga_delete_vga_primary_line_fake_port(VGA_NODE *node) {
    delete_fake_port(node->primary_line_fake_port);
}

NB_VOID vga_delete_node_contents(VGA_NODE *node) {
    vga_delete_all<VGA_DLC>(node->dlcs);
    vga_delete_all<VGA_LOCAL_PU>(node->local_pus);
    vga_delete_vga_dlur_fake_port(node);
    vga_delete_vga_primary_line_fake_port(node);
    vga_delete_all<VGA_LU62>(node->lus);
    vga_delete_all<VGA_MODE_DEF>(node->mode_defs);
    vga_delete_all<VGA_COS>(node->classes_of_service);
    vga_delete_all<VGA_DIR>(node->directory);
    if (node->network_fake_rem_sys != nullptr) {
        delete_rem_sys_whole(node->network_fake_rem_sys);
    }
    vga_for_each(node->remote_systems, &VGA_REM_SYS::links,
                 [](VGA_REM_SYS &system) { delete_rem_sys_whole(&system); });
}

NB_USHORT vga_free_system_resources(NB_USHORT gone, VGA_COMPLETION continuation) {
    return close_target(gvga_system->domain_target, gone, continuation);
}

NB_USHORT vga_free_sna_net_resources(VGA_COMPLETION continuation) {
    return close_target(gvga_system->net_target, 0, continuation);
}

NB_USHORT vga_do_free_node_res(VGA_NODE *node, NB_USHORT gone, VGA_COMPLETION continuation) {
    node->freed = 1;
    if (gvga_system->config_target == node->target) {
        gvga_system->config_target = 0;
    }
    close_target(node->tp_target, gone, nullptr);
    NB_ULONG target = node->target;
    node->target = 0;
    if (target == 0) {
        return 0;
    }
    vga_purge_verb_queue(target, 0, nullptr, 0, nullptr);
    if (gone) {
        return 0;
    }
    NB_USHORT issued = vga_issue_disconnect_node(
        target, node->handle, continuation != nullptr ? continuation : disconnect_done);
    return issued && continuation != nullptr;
}

NB_USHORT vga_free_node_resources(VGA_NODE *node, NB_USHORT gone, VGA_COMPLETION continuation) {
    NB_USHORT under_way = vga_do_free_node_res(node, gone, continuation);
    vga_delete_node_contents(node);
    node->freed = 0;
    vga_drop_node_from_build(node);
    return under_way;
}

NB_VOID vga_destroy_data_structures(NB_VOID) {
    vga_delete_all<VGA_NODE>(gvga_system->nodes);
    vga_viewer_destroy_root(&gvga_system->node_viewer_root);
    nba_destroy_handle(gvga_system->handle);
    free(gvga_system);
    gvga_system = nullptr;
}
