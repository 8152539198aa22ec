/* Walks every record of the model, owners first: for the checker and the dump (modelcheck.h), and
 * for tests. */
#ifndef MODELWALK_H
#define MODELWALK_H

#include "recordtypes.h"
#include <functional>

/* Calls visit(record, name of its type, owner) for each record.  What owns a record is what its
 * `parent` must be.  The visit may change records and free none. */
template <class Visit> struct MODEL_WALK {
    Visit &visit;

    template <class Record, class Owner>
    void all(AVL_TREE &tree, AVL_NODE Record::*links, const NB_CHAR *type, Owner &owner) {
        vga_for_each(tree, links, [this, type, &owner](Record &record) {
            visit(record, type, &owner);
            below(record);
        });
    }

#define ALL(owner, tree, type, links)                                                              \
    all<VGA_##type>((owner).tree, &VGA_##type::links, #type, owner)

    NB_VOID system() {
        ALL(*gvga_system, nodes, NODE, links);
        ALL(*gvga_system, net_nodes, SNA_NET_NODE, links);
        ALL(*gvga_system, users, USER, links);
        ALL(*gvga_system, cpics, CPIC, links);
        ALL(*gvga_system, rje_wkstns, RJE_WKSTN, links);
        ALL(*gvga_system, pools, SYS_POOL, links);
    }

    NB_VOID below(VGA_NODE &node) {
        ALL(node, dlcs, DLC, links);
        ALL(node, connection_networks, CN, links);
        ALL(node, local_pus, LOCAL_PU, links);
        ALL(node, down_pus, DOWN_PU, links);
        ALL(node, dspu_templates, DSPU_TEMPLATE, links);
        ALL(node, primary_lines, PRIMARY_LINE, links);
        ALL(node, rtp_conns, RTP_CONN, links);
        ALL(node, lus, LU62, name_links);
        ALL(node, mode_defs, MODE_DEF, links);
        ALL(node, lu62_timeouts, LU62_TIMEOUT, links);
        ALL(node, classes_of_service, COS, links);
        ALL(node, directory, DIR, links);
        if (node.network_fake_rem_sys != nullptr) {
            below(*node.network_fake_rem_sys);
        }
        ALL(node, remote_systems, REM_SYS, links);
        ALL(node, tp_defs, TP_DEF, links);
        ALL(node, tp_load_infos, TP_LOAD_INFO, links);
        ALL(node, sl_security, SLSEC_DEF, links);
        ALL(node, cl_security, CLSEC_DEF, links);
        ALL(node, access_lists, ACCESS_LIST, links);
        ALL(node, pools, POOL, links);
        ALL(node, tn_clients, TN_CLIENT, links);
        ALL(node, tn_assocs, TN_ASSOC, links);
        ALL(node, tn_redirects, TN_REDIRECT, links);
        ALL(node, tamrix_numbers, TAMRIX_APPCIP_SESS, number_links);
    }
    NB_VOID below(VGA_DLC &dlc) {
        ALL(dlc, ports, PORT, dlc_links);
    }
    NB_VOID below(VGA_PORT &port) {
        ALL(port, link_stations, LS, port_links);
    }
    NB_VOID below(VGA_CN &cn) {
        ALL(cn, ports, CN_PORT, links);
    }
    NB_VOID below(VGA_LOCAL_PU &pu) {
        ALL(pu, lus, LU03, links);
    }
    NB_VOID below(VGA_LU03 &lu) {
        if (lu.extra_data != nullptr) {
            visit(*lu.extra_data, "EXTRA_DATA", &lu);
        }
    }
    NB_VOID below(VGA_DOWN_PU &pu) {
        ALL(pu, lus, DOWN_LU, links);
    }
    NB_VOID below(VGA_DSPU_TEMPLATE &pu) {
        ALL(pu, lu_templates, DSLU_TEMPLATE, links);
    }
    NB_VOID below(VGA_PRIMARY_LINE &line) {
        ALL(line, lus, PRIMARY_LU0, line_links);
    }
    NB_VOID below(VGA_LU62 &lu) {
        ALL(lu, modes, MODE, links);
        ALL(lu, partners, PLU, links);
        ALL(lu, routings, LS_ROUTING, links);
    }
    NB_VOID below(VGA_COS &cos) {
        ALL(cos, node_rows, COS_NODE_ROW, links);
        ALL(cos, tg_rows, COS_TG_ROW, links);
    }
    NB_VOID below(VGA_REM_SYS &system) {
        ALL(system, remote_plu_tree, REM_PLU, links);
    }
    NB_VOID below(VGA_REM_PLU &plu) {
        ALL(plu, sess_tree, REM_SESS, links);
    }
    NB_VOID below(VGA_ACCESS_LIST &list) {
        ALL(list, user_tree, SECURITY_USER, links);
    }
    NB_VOID below(VGA_POOL &pool) {
        ALL(pool, lu_tree, POOL_LU, links);
    }
    NB_VOID below(VGA_TN_CLIENT &client) {
        ALL(client, session_tree, TN_SESS, links);
    }
    NB_VOID below(VGA_USER &user) {
        ALL(user, session_tree, USER_SESSION, links);
    }
    template <class Record> NB_VOID below(Record &) {}

#undef ALL
};

/* Calls `visit` for every list of the domain, its nodes and their templates. */
NB_VOID vga_for_each_root(const std::function<NB_VOID(VGA_VIEWER_ROOT &)> &visit);

template <class Visit> NB_VOID vga_walk_model(Visit visit) {
    MODEL_WALK<Visit>{visit}.system();
}

#endif
