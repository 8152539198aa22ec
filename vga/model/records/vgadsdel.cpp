#include "vgadsdel.h"
#include "hooks.h"
#include "recordtypes.h"
#include "vgadsadd.h"
#include "vgadsbld.h"
#include "vganofbd.h"

namespace {

NB_VOID delete_fake_port(VGA_PORT *&port) {
    if (port == nullptr) {
        return;
    }
    vga_delete_line(port);
    vga_free_record(port);
    port = nullptr;
}

/* Deletes the partners of a remote system with their sessions, then the system. */
NB_VOID delete_rem_sys_whole(VGA_REM_SYS *system) {
    vga_delete_line(system);
    vga_for_each(system->remote_plu_tree, &VGA_REM_PLU::links, [](VGA_REM_PLU &plu) {
        vga_delete_all<VGA_REM_SESS>(plu.sess_tree);
        vga_delete_vga_rem_plu(&plu);
    });
    vga_delete_vga_rem_sys(system);
}

/* Deletes the records of an index whose destructor wants them empty. */
template <class Record>
NB_VOID delete_with_children(AVL_TREE &records, AVL_TREE Record::*children,
                             NB_VOID (*delete_record)(Record *),
                             NB_VOID (*delete_children)(AVL_TREE &)) {
    while (auto *record = static_cast<Record *>(AVL_FIRST(records))) {
        delete_children(record->*children);
        delete_record(record);
    }
}

NB_VOID leave_pool(const VGA_LU03 &lu, const NB_UCHAR *pool_name) {
    VGA_POOL_LU *member = vga_find_pool_lu(lu.parent->parent, pool_name, lu.name);
    if (member != nullptr) {
        vga_delete_vga_pool_lu(member);
    }
}

/* The first password of a local LU, whose alias leads the key. */
VGA_SLSEC_DEF *first_password(const VGA_NODE *node, const NB_UCHAR *alias) {
    VGA_SL_SEC_KEY key = {};
    memcpy(key.lu_alias, alias, sizeof(key.lu_alias));
    auto *security = static_cast<VGA_SLSEC_DEF *>(ntl_avl_find_next(&node->sl_security, &key));
    NB_USHORT of_lu =
        security != nullptr && vga_compare_asc8(security->key.lu_alias, key.lu_alias) == 0;
    return of_lu ? security : nullptr;
}

/* A busy node asks for the same once more. */
NB_VOID disconnect_done(const VGA_PROCESS_STATE *work) {
    NB_USHORT busy =
        work->vcb->primary_rc == NAP_STATE_CHECK && work->vcb->secondary_rc == NAP_NODE_BUSY;
    if (busy && work->vcb->opcode == NAP_DISCONNECT_NODE) {
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

/* A link station stands for the PU that it serves: that of the host, or else the downstream one. */
NB_VOID VGA_RECORD_TYPE<VGA_LS>::delete_children(VGA_LS &ls) {
    if (ls.local_pu != nullptr) {
        vga_delete_vga_local_pu(ls.local_pu);
    } else if (ls.down_pu != nullptr) {
        vga_delete_vga_down_pu(ls.down_pu);
    }
    vga_take_off_link(ls.down_pu, &VGA_LS::down_pu);
}

/* An LU that was redefined for another pool has left the old one. */
NB_VOID VGA_RECORD_TYPE<VGA_LU03>::merged(VGA_LU03 &kept, VGA_LU03 &fresh) {
    NAP_LU03_DEF now = kept.vcb->def_data;
    NAP_LU03_DEF before = fresh.vcb->def_data;
    if (vga_compare_ebc8(now.pool_name, before.pool_name) != 0) {
        leave_pool(kept, before.pool_name);
    }
}

NB_VOID VGA_RECORD_TYPE<VGA_LU62>::delete_children(VGA_LU62 &lu) {
    vga_delete_all<VGA_MODE>(lu.modes);
    vga_delete_all<VGA_PLU>(lu.partners);
    vga_delete_all<VGA_LS_ROUTING>(lu.routings);
}

NB_VOID VGA_RECORD_TYPE<VGA_LU62>::unlinked(VGA_LU62 &lu) {
    if (lu.parent->cp_lu == &lu) {
        lu.parent->cp_lu = nullptr;
    }
    vga_delete_lu62_passwords(lu.parent, lu.alias);
}

NB_VOID vga_delete_lu62_passwords(VGA_NODE *node, const NB_UCHAR *alias) {
    for (VGA_SLSEC_DEF *security; (security = first_password(node, alias)) != nullptr;) {
        vga_delete_vga_slsec_def(security);
    }
}

/* The title line over an LU's routings goes with the last of them. */
NB_VOID VGA_RECORD_TYPE<VGA_LS_ROUTING>::unlinked(VGA_LS_ROUTING &routing) {
    VGA_LU62 &lu = *routing.parent;
    if (AVL_FIRST(lu.routings) == nullptr) {
        vga_delete_viewer(&lu.parent->local_lu_root, &lu.routing_title);
    }
}

/* The domain's pool goes with the last node that has it. */
NB_VOID VGA_RECORD_TYPE<VGA_POOL>::unlinked(VGA_POOL &pool) {
    if (pool.sys_pool == nullptr) {
        return;
    }
    if (--pool.sys_pool->node_pools == 0) {
        vga_delete_vga_sys_pool(pool.sys_pool);
    } else {
        vga_update_line(pool.sys_pool);
    }
}

#define VGA_DESTRUCTOR(name, type, ...)                                                            \
    NB_VOID vga_delete_##name(type *record) {                                                      \
        vga_delete_record(record);                                                                 \
    }

/* A record with children stays, since they point at it; the name in the assertion is the one that
 * the log is searched for. */
#define VGA_EMPTY_DESTRUCTOR(name, type, owner, entry, record, tree)                               \
    NB_VOID vga_delete_##name(type *record) {                                                      \
        NB_ASSERT(AVL_FIRST(record->tree) == NULL);                                                \
        if (AVL_FIRST(record->tree) == nullptr) {                                                  \
            vga_delete_record(record);                                                             \
        }                                                                                          \
    }

VGA_RECORDS(VGA_DESTRUCTOR, VGA_EMPTY_DESTRUCTOR)
VGA_DESTRUCTOR(vga_node, VGA_NODE)
VGA_DESTRUCTOR(vga_ls_routing, VGA_LS_ROUTING)
VGA_EMPTY_DESTRUCTOR(vga_rem_plu, VGA_REM_PLU, , , rem_plu, sess_tree)

#undef VGA_DESTRUCTOR
#undef VGA_EMPTY_DESTRUCTOR

NB_VOID vga_delete_sna_net_node(VGA_SNA_NET_NODE *record) {
    vga_delete_vga_sna_net_node(record);
}

NB_VOID vga_delete_lu03_extra_data(VGA_LU03 *deplu) {
    if (deplu->extra_data != nullptr) {
        vga_delete_record(std::exchange(deplu->extra_data, nullptr));
    }
}

NB_VOID vga_remove_pool_lu(VGA_LU03 *deplu) {
    NAP_LU03_DEF def = deplu->vcb->def_data;
    leave_pool(*deplu, def.pool_name);
}

NB_VOID vga_delete_vga_dlur_fake_port(VGA_NODE *node) {
    delete_fake_port(node->dlur_fake_port);
}

NB_VOID vga_delete_vga_primary_line_fake_port(VGA_NODE *node) {
    delete_fake_port(node->primary_line_fake_port);
}

NB_VOID vga_delete_node_contents(VGA_NODE *node) {
    if (node->network_fake_rem_sys != nullptr) {
        delete_rem_sys_whole(node->network_fake_rem_sys);
    }
    vga_for_each(node->remote_systems, &VGA_REM_SYS::links,
                 [](VGA_REM_SYS &system) { delete_rem_sys_whole(&system); });
    vga_delete_all<VGA_CN>(node->connection_networks);
    vga_delete_all<VGA_DLC>(node->dlcs);
    vga_delete_all<VGA_LOCAL_PU>(node->local_pus);
    vga_delete_all<VGA_DOWN_PU>(node->down_pus);
    vga_delete_all<VGA_PRIMARY_LINE>(node->primary_lines);
    vga_delete_vga_dlur_fake_port(node);
    vga_delete_vga_primary_line_fake_port(node);
    vga_delete_all<VGA_DSPU_TEMPLATE>(node->dspu_templates);
    vga_delete_all<VGA_RTP_CONN>(node->rtp_conns);
    vga_delete_all<VGA_LU62>(node->lus);
    vga_delete_all<VGA_MODE_DEF>(node->mode_defs);
    vga_delete_all<VGA_LU62_TIMEOUT>(node->lu62_timeouts);
    vga_delete_all<VGA_COS>(node->classes_of_service);
    vga_delete_all<VGA_DIR>(node->directory);
    vga_delete_all<VGA_TP_DEF>(node->tp_defs);
    vga_delete_all<VGA_TP_LOAD_INFO>(node->tp_load_infos);
    vga_delete_all<VGA_SLSEC_DEF>(node->sl_security);
    vga_delete_all<VGA_CLSEC_DEF>(node->cl_security);
    delete_with_children(node->access_lists, &VGA_ACCESS_LIST::user_tree,
                         vga_delete_vga_access_list, vga_delete_all<VGA_SECURITY_USER>);
    delete_with_children(node->pools, &VGA_POOL::lu_tree, vga_delete_vga_pool,
                         vga_delete_all<VGA_POOL_LU>);
    vga_delete_all<VGA_TN_CLIENT>(node->tn_clients);
    vga_delete_all<VGA_TN_ASSOC>(node->tn_assocs);
    vga_delete_all<VGA_TN_REDIRECT>(node->tn_redirects);
    vga_delete_all<VGA_TAMRIX_APPCIP_SESS>(node->tamrix_numbers);
}

NB_VOID vga_delete_system_contents(NB_VOID) {
    delete_with_children(gvga_system->users, &VGA_USER::session_tree, vga_delete_vga_user,
                         vga_delete_all<VGA_USER_SESSION>);
    vga_delete_all<VGA_CPIC>(gvga_system->cpics);
    vga_delete_all<VGA_RJE_WKSTN>(gvga_system->rje_wkstns);
}

NB_VOID vga_replace_target(NB_ULONG &target, NB_ULONG fresh, NB_ULONG user_data,
                           NB_USHORT (*close)(NB_ULONG, NB_ULONG, VGA_COMPLETION)) {
    NB_ULONG old = std::exchange(target, fresh);
    if (old != 0 && old != fresh) {
        vga_purge_verb_queue(old, 0, nullptr, 0, nullptr);
        close(old, user_data, disconnect_done);
    }
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
    vga_stop_build_node(node);
    close_target(node->tp_target, gone, nullptr);
    NB_ULONG target = node->target;
    node->target = 0;
    vga_set_connection(node, VGA_NOT_CONNECTED);
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
