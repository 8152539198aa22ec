/* Walks every record of the model, and checks that handles, indexes and lines agree: for tests that
 * change the model in any way and want to know that nothing is left dangling. */
#ifndef MODELWALK_H
#define MODELWALK_H

#include <gtest/gtest.h>

#include "recordtypes.h"
#include <cstdio>
#include <string>

/* Calls visit(record, name of its type, index it stands in) for each record, owners first. */
template <class Visit> struct MODEL_WALK {
    Visit &visit;

    template <class Record> void all(AVL_TREE &tree, AVL_NODE Record::*links, const char *type) {
        EXPECT_GE(ntl_avl_validate(&tree), 0) << type;
        vga_for_each(tree, links, [this, type](Record &record) {
            visit(record, type);
            below(record);
        });
    }

#define ALL(tree, type, links) all<VGA_##type>(tree, &VGA_##type::links, #type)

    void system() {
        ALL(gvga_system->nodes, NODE, links);
        ALL(gvga_system->net_nodes, SNA_NET_NODE, links);
        ALL(gvga_system->users, USER, links);
        ALL(gvga_system->cpics, CPIC, links);
        ALL(gvga_system->rje_wkstns, RJE_WKSTN, links);
        ALL(gvga_system->pools, SYS_POOL, links);
    }

    void below(VGA_NODE &node) {
        ALL(node.dlcs, DLC, links);
        ALL(node.connection_networks, CN, links);
        ALL(node.local_pus, LOCAL_PU, links);
        ALL(node.down_pus, DOWN_PU, links);
        ALL(node.dspu_templates, DSPU_TEMPLATE, links);
        ALL(node.primary_lines, PRIMARY_LINE, links);
        ALL(node.rtp_conns, RTP_CONN, links);
        ALL(node.lus, LU62, name_links);
        ALL(node.mode_defs, MODE_DEF, links);
        ALL(node.lu62_timeouts, LU62_TIMEOUT, links);
        ALL(node.classes_of_service, COS, links);
        ALL(node.directory, DIR, links);
        if (node.network_fake_rem_sys != nullptr) {
            below(*node.network_fake_rem_sys);
        }
        ALL(node.remote_systems, REM_SYS, links);
        ALL(node.tp_defs, TP_DEF, links);
        ALL(node.tp_load_infos, TP_LOAD_INFO, links);
        ALL(node.sl_security, SLSEC_DEF, links);
        ALL(node.cl_security, CLSEC_DEF, links);
        ALL(node.access_lists, ACCESS_LIST, links);
        ALL(node.pools, POOL, links);
        ALL(node.tn_clients, TN_CLIENT, links);
        ALL(node.tn_assocs, TN_ASSOC, links);
        ALL(node.tn_redirects, TN_REDIRECT, links);
        ALL(node.tamrix_numbers, TAMRIX_APPCIP_SESS, number_links);
    }
    void below(VGA_DLC &dlc) {
        ALL(dlc.ports, PORT, dlc_links);
    }
    void below(VGA_PORT &port) {
        ALL(port.link_stations, LS, port_links);
    }
    void below(VGA_CN &cn) {
        ALL(cn.ports, CN_PORT, links);
    }
    void below(VGA_LOCAL_PU &pu) {
        ALL(pu.lus, LU03, links);
    }
    void below(VGA_LU03 &lu) {
        if (lu.extra_data != nullptr) {
            visit(*lu.extra_data, "EXTRA_DATA");
        }
    }
    void below(VGA_DOWN_PU &pu) {
        ALL(pu.lus, DOWN_LU, links);
    }
    void below(VGA_DSPU_TEMPLATE &pu) {
        ALL(pu.lu_templates, DSLU_TEMPLATE, links);
    }
    void below(VGA_PRIMARY_LINE &line) {
        ALL(line.lus, PRIMARY_LU0, line_links);
    }
    void below(VGA_LU62 &lu) {
        ALL(lu.modes, MODE, links);
        ALL(lu.partners, PLU, links);
        ALL(lu.routings, LS_ROUTING, links);
    }
    void below(VGA_COS &cos) {
        ALL(cos.node_rows, COS_NODE_ROW, links);
        ALL(cos.tg_rows, COS_TG_ROW, links);
    }
    void below(VGA_REM_SYS &system) {
        ALL(system.remote_plu_tree, REM_PLU, links);
    }
    void below(VGA_REM_PLU &plu) {
        ALL(plu.sess_tree, REM_SESS, links);
    }
    void below(VGA_ACCESS_LIST &list) {
        ALL(list.user_tree, SECURITY_USER, links);
    }
    void below(VGA_POOL &pool) {
        ALL(pool.lu_tree, POOL_LU, links);
    }
    void below(VGA_TN_CLIENT &client) {
        ALL(client.session_tree, TN_SESS, links);
    }
    void below(VGA_USER &user) {
        ALL(user.session_tree, USER_SESSION, links);
    }
    template <class Record> void below(Record &) {}

#undef ALL
};

template <class Visit> void walk_model(Visit visit) {
    MODEL_WALK<Visit>{visit}.system();
}

/* The record's line stands in its list, under the right parent, behind that of its predecessor. */
template <class Record> void check_line(Record &record, const char *type) {
    VGA_LINE_PLACE place = VGA_RECORD_TYPE<Record>::line(record);
    const VGA_VIEWER_ITEM &line = record.gui_data.viewer;
    if (!record.gui_data.listed) {
        return;
    }
    ASSERT_NE(place.root, nullptr) << type;
    EXPECT_EQ(line.data, &record) << type;
    EXPECT_EQ(line.parent, place.parent) << type;
    auto *previous = static_cast<Record *>(ntl_avl_prev(place.order));
    if (previous != nullptr && previous->gui_data.listed &&
        previous->gui_data.viewer.parent == line.parent) {
        EXPECT_LT(vga_viewer_get_line_in_list(&previous->gui_data.viewer),
                  vga_viewer_get_line_in_list(&line))
            << type;
    }
}

template <class Record> void check_record(Record &record, const char *type) {
    EXPECT_EQ(nba_validate_handle(record.handle), &record) << type;
    for (const VGA_INDEX_LINK &link : VGA_RECORD_TYPE<Record>::links(record)) {
        NB_USHORT linked = AVL_IN_TREE(*link.node);
        EXPECT_TRUE(linked || link.may_clash) << type;
        EXPECT_TRUE(!linked || ntl_avl_find(link.tree, link.key) == &record) << type;
    }
    check_line(record, type);
}

/* Checks everything; returns how many records there are. */
inline size_t check_model(NB_VOID) {
    size_t records = 0;
    walk_model([&records](auto &record, const char *type) {
        records++;
        check_record(record, type);
    });
    return records;
}

/* A text of the whole model: a line a record, with its type and its data. */
inline std::string dump_model(NB_VOID) {
    std::string text;
    walk_model([&text](auto &record, const char *type) {
        using RECORD = std::remove_reference_t<decltype(record)>;
        NB_USHORT size = sizeof(*record.vcb);
        if (!VGA_RECORD_TYPE<RECORD>::nested) {
            memcpy(&size, record.vcb, sizeof(size));
        }
        text += type;
        const auto *bytes = reinterpret_cast<const NB_UCHAR *>(record.vcb);
        for (NB_USHORT at = 0; at < size; at++) {
            NB_CHAR digits[3];
            snprintf(digits, sizeof(digits), "%02x", bytes[at]);
            text += digits;
        }
        text += '\n';
    });
    return text;
}

#endif
