/* What the record types of services and the domain declare as their own.  Part of recordtypes.h. */
#ifndef SERVICETYPES_H
#define SERVICETYPES_H

#include "recordtypes.h"

template <>
struct VGA_RECORD_TYPE<VGA_SNA_NET_NODE>
    : VGA_ONE_INDEX<VGA_SNA_NET_NODE, &VGA_SYSTEM::net_nodes, &VGA_SNA_NET_NODE::name> {};

template <>
struct VGA_RECORD_TYPE<VGA_SYS_POOL>
    : VGA_ONE_INDEX<VGA_SYS_POOL, &VGA_SYSTEM::pools, &VGA_SYS_POOL::name> {
    static NB_VOID init(VGA_SYS_POOL &pool) {
        VGA_ONE_INDEX::init(pool);
        vga_init_tree(pool.lu_tree, vga_compare_pool_lu);
    }
    static constexpr auto line =
        vga_top_line<VGA_SYS_POOL, &VGA_SYSTEM::pool_viewer_root, VGA_VIEWER_POOL>;
};

template <>
struct VGA_RECORD_TYPE<VGA_POOL> : VGA_ONE_INDEX<VGA_POOL, &VGA_NODE::pools, &VGA_POOL::name> {
    static NB_VOID init(VGA_POOL &pool) {
        VGA_ONE_INDEX::init(pool);
        vga_init_tree(pool.lu_tree, vga_compare_ebc8);
    }
    static NB_USHORT settled(VGA_POOL &pool);
    static NB_VOID unlinked(VGA_POOL &pool);
};

template <> struct VGA_RECORD_TYPE<VGA_POOL_LU> : VGA_RECORD_DEFAULTS<VGA_POOL_LU> {
    static std::array<VGA_INDEX_LINK, 2> links(VGA_POOL_LU &lu) {
        return {vga_index(lu.parent->lu_tree, lu.links, lu.key.lu_name),
                vga_index(lu.parent->sys_pool->lu_tree, lu.domain_links, lu.key)};
    }
    static NB_VOID init(VGA_POOL_LU &lu) {
        VGA_COPY_KEY(lu.key.lu_name, lu.vcb->lu_name);
        VGA_COPY_KEY(lu.key.node_name, lu.parent->parent->name);
    }
    static VGA_LINE_PLACE line(VGA_POOL_LU &lu) {
        return {&gvga_system->pool_viewer_root, &lu.parent->sys_pool->gui_data.viewer,
                VGA_VIEWER_POOL_LU, &lu.domain_links, 0};
    }
    /* The pool's line says how many there are. */
    static NB_VOID linked(VGA_POOL_LU &lu) { vga_update_line(lu.parent->sys_pool); }
    static NB_VOID unlinked(VGA_POOL_LU &lu) { vga_update_line(lu.parent->sys_pool); }
};

template <>
struct VGA_RECORD_TYPE<VGA_TN_CLIENT>
    : VGA_ONE_INDEX<VGA_TN_CLIENT, &VGA_NODE::tn_clients, &VGA_TN_CLIENT::address> {
    static constexpr NB_USHORT fixed_size = offsetof(NAP_TN_ACCESS_DATA, def_data.sessions);
    static NB_VOID init(VGA_TN_CLIENT &client) {
        VGA_ONE_INDEX::init(client);
        vga_init_tree(client.session_tree, vga_compare_tn_session);
    }
    static NB_USHORT settled(VGA_TN_CLIENT &client) {
        return vga_merge_nested<VGA_TN_SESS>(client, client.session_tree,
                                             VGA_NESTED(client, sessions, num_sessions));
    }
    static NB_VOID delete_children(VGA_TN_CLIENT &client) {
        vga_delete_all<VGA_TN_SESS>(client.session_tree);
    }
};

template <> struct VGA_RECORD_TYPE<VGA_TN_SESS> : VGA_RECORD_DEFAULTS<VGA_TN_SESS> {
    static constexpr NB_USHORT nested = 1;
    static std::array<VGA_INDEX_LINK, 2> links(VGA_TN_SESS &session) {
        return {vga_index(session.parent->session_tree, session.links, session.key),
                vga_index(session.parent->parent->tn_sessions, session.node_links, session.key)};
    }
    static NB_VOID init(VGA_TN_SESS &session) {
        VGA_COPY_KEY(session.key.client, session.parent->address);
        VGA_COPY_KEY(session.key.port, session.vcb->port);
        VGA_COPY_KEY(session.key.listen_local_address, session.vcb->listen_local_address);
    }
    static VGA_LINE_PLACE line(VGA_TN_SESS &session) {
        return {&session.parent->parent->tn_session_root, nullptr, VGA_VIEWER_TN_SESS,
                &session.node_links, 0};
    }
};

template <>
struct VGA_RECORD_TYPE<VGA_TN_ASSOC>
    : VGA_ONE_INDEX<VGA_TN_ASSOC, &VGA_NODE::tn_assocs, &VGA_TN_ASSOC::display_lu_name> {
    static constexpr auto line =
        vga_top_line<VGA_TN_ASSOC, &VGA_NODE::tn_assoc_root, VGA_VIEWER_TN_ASSOC>;
};

template <>
struct VGA_RECORD_TYPE<VGA_TN_REDIRECT>
    : VGA_ONE_INDEX<VGA_TN_REDIRECT, &VGA_NODE::tn_redirects, &VGA_TN_REDIRECT::key> {
    static constexpr auto line =
        vga_top_line<VGA_TN_REDIRECT, &VGA_NODE::tn_redirect_root, VGA_VIEWER_TN_REDIRECT>;
};

/* A number is given out again when its session has ended, so the number decides. */
template <>
struct VGA_RECORD_TYPE<VGA_TAMRIX_APPCIP_SESS> : VGA_RECORD_DEFAULTS<VGA_TAMRIX_APPCIP_SESS> {
    static std::array<VGA_INDEX_LINK, 2> links(VGA_TAMRIX_APPCIP_SESS &session) {
        return {vga_index(session.parent->tamrix_numbers, session.number_links, session.number),
                vga_index(session.parent->tamrix_sessions, session.links, session.key)};
    }
    static NB_VOID init(VGA_TAMRIX_APPCIP_SESS &session);
    static constexpr auto line =
        vga_top_line<VGA_TAMRIX_APPCIP_SESS, &VGA_NODE::tamrix_root, VGA_VIEWER_APPCIP_SESS,
                     &VGA_TAMRIX_APPCIP_SESS::number_links>;
};

template <>
struct VGA_RECORD_TYPE<VGA_USER> : VGA_ONE_INDEX<VGA_USER, &VGA_SYSTEM::users, &VGA_USER::name> {
    static constexpr NB_USHORT fixed_size = offsetof(NAP_USER_DATA, def_data.sessions);
    static NB_VOID init(VGA_USER &user) {
        VGA_ONE_INDEX::init(user);
        vga_init_tree(user.session_tree, vga_compare_asc8);
    }
    static NB_USHORT settled(VGA_USER &user) {
        return vga_merge_nested<VGA_USER_SESSION>(user, user.session_tree,
                                                  VGA_NESTED(user, sessions, num_sessions));
    }
    static constexpr auto line =
        vga_top_line<VGA_USER, &VGA_SYSTEM::user_viewer_root, VGA_VIEWER_USER>;
};

template <>
struct VGA_RECORD_TYPE<VGA_USER_SESSION>
    : VGA_ONE_INDEX<VGA_USER_SESSION, &VGA_USER::session_tree, &VGA_USER_SESSION::name> {
    static constexpr NB_USHORT nested = 1;
    static NB_VOID init(VGA_USER_SESSION &session) {
        VGA_ONE_INDEX::init(session);
        session.kind = session.vcb->session_class;
    }
    static NB_VOID merged(VGA_USER_SESSION &kept, VGA_USER_SESSION &fresh) {
        kept.kind = fresh.kind;
    }
    static VGA_LINE_PLACE line(VGA_USER_SESSION &session) {
        VGA_USER &user = *session.parent;
        return {&user.parent->user_viewer_root, &user.gui_data.viewer, VGA_VIEWER_USER_SESS,
                &session.links, 0};
    }
};

template <>
struct VGA_RECORD_TYPE<VGA_CPIC> : VGA_ONE_INDEX<VGA_CPIC, &VGA_SYSTEM::cpics, &VGA_CPIC::name> {
    static constexpr const NB_CHAR *dialog_text =
        "cpic->gui_data.dialog->common.parent_item == (NB_VOID *)cpic";
    static constexpr auto line =
        vga_top_line<VGA_CPIC, &VGA_SYSTEM::cpic_viewer_root, VGA_VIEWER_CPIC>;
};

template <>
struct VGA_RECORD_TYPE<VGA_RJE_WKSTN>
    : VGA_ONE_INDEX<VGA_RJE_WKSTN, &VGA_SYSTEM::rje_wkstns, &VGA_RJE_WKSTN::name> {
    static constexpr auto line =
        vga_top_line<VGA_RJE_WKSTN, &VGA_SYSTEM::rje_viewer_root, VGA_VIEWER_RJE>;
};

#endif
