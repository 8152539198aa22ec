/* Small models for tests, made record by record, and answers to list queries about them. */
#ifndef MODELRECORDS_H
#define MODELRECORDS_H

#include "checkedmodel.h"
#include "globals.h"
#include "hooks.h"
#include "nofverbs.h"
#include "scriptednof.h"
#include "testrecords.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vgadsutl.h"
#include <cstring>
#include <string>
#include <vector>

/* A name field of its own, for look-ups. */
template <size_t Width> struct LOCAL {
    NB_UCHAR bytes[Width];
    explicit LOCAL(const std::string &text) { set_local(bytes, text); }
};
template <size_t Width> struct EBCDIC {
    NB_UCHAR bytes[Width];
    explicit EBCDIC(const std::string &text) { set_ebcdic(bytes, text); }
};

using BYTES = std::vector<NB_UCHAR>;

/* The control block of a verb in flight. */
template <class Block = NAP_QUERY_LIST> Block issued_block(size_t index = 0) {
    Block block;
    memcpy(&block, scripted_nof.in_flight.at(index).vcb, sizeof(block));
    return block;
}

/* Answers the oldest verb in flight, a list query, with these entries; `total` 0: as many. */
inline void answer_list(const std::vector<BYTES> &entries, size_t total = 0) {
    NAP_VCB *vcb = scripted_nof.in_flight.at(0).vcb;
    auto *query = reinterpret_cast<NAP_QUERY_LIST *>(vcb);
    auto *out = static_cast<NB_UCHAR *>(vga_buf_ptr(vcb));
    query->num_entries = static_cast<NB_USHORT>(entries.size());
    query->total_num_entries = static_cast<NB_USHORT>(total != 0 ? total : entries.size());
    for (const BYTES &entry : entries) {
        memcpy(out, entry.data(), entry.size());
        out += entry.size();
    }
    scripted_nof.complete();
}

/* The records. */

inline VGA_NODE *add_node(const std::string &name, NB_ULONG target) {
    auto data = new_entry<NAP_NODE_ALL_DATA>();
    memcpy(data.node_name, name.data(), name.size());
    VGA_NODE *node = vga_insert_vga_node(vga_init_vga_node(&data));
    memset(node->startup_status, 0, sizeof(node->startup_status));
    node->target = target;
    set_ebcdic(node->node_data.info.fq_cp_name, "NETA." + name);
    return node;
}

inline VGA_DLC *add_dlc(VGA_NODE *node, const std::string &name) {
    auto data = new_entry<NAP_DLC_DATA>();
    set_local(data.dlc_name, name);
    return vga_insert_vga_dlc(vga_init_vga_dlc(node, &data));
}

inline NAP_PORT_DATA port_entry(const std::string &name, NB_ULONG state = NAP_NOT_ACTIVE) {
    auto data = new_entry<NAP_PORT_DATA>();
    set_local(data.port_name, name);
    set_local(data.def_data.dlc_name, "LAN0");
    data.det_data.port_state = state;
    return data;
}

inline VGA_PORT *add_port(VGA_DLC *dlc, const std::string &name) {
    auto data = port_entry(name);
    return vga_insert_vga_port(vga_init_vga_port(dlc, &data));
}

inline NAP_LS_DATA ls_entry(const std::string &name, NB_UCHAR partner = NAP_ADJ_END_NODE,
                            const std::string &pu = "") {
    auto data = new_entry<NAP_LS_DATA>();
    set_local(data.ls_name, name);
    set_local(data.def_data.port_name, "ETH0");
    set_ebcdic(data.def_data.pu_name, pu);
    data.def_data.adj_cp_type = partner;
    return data;
}

inline VGA_LS *add_ls(VGA_PORT *port, const std::string &name, NB_UCHAR partner,
                      const std::string &pu) {
    auto data = ls_entry(name, partner, pu);
    return vga_insert_vga_ls(vga_init_vga_ls(port, &data));
}

inline VGA_LU03 *add_lu03(VGA_LOCAL_PU *pu, const std::string &name) {
    auto data = new_entry<NAP_LU03_DATA>();
    memcpy(data.pu_name, pu->name, sizeof(data.pu_name));
    set_ebcdic(data.lu_name, name);
    set_ebcdic(data.def_data.pool_name, "");
    return vga_insert_vga_lu03(vga_init_vga_lu03(pu, &data));
}

inline VGA_DOWN_LU *add_down_lu(VGA_DOWN_PU *pu, const std::string &name) {
    auto data = new_entry<NAP_DOWN_LU_DATA>();
    memcpy(data.dspu_name, pu->name, sizeof(data.dspu_name));
    set_ebcdic(data.dslu_name, name);
    return vga_insert_vga_down_lu(vga_init_vga_down_lu(pu, &data));
}

inline VGA_LU62 *add_lu62(VGA_NODE *node, const std::string &name, const std::string &alias) {
    auto data = new_entry<NAP_LOCAL_LU_DATA>();
    set_ebcdic(data.lu_name, name);
    set_local(data.def_data.lu_alias, alias);
    return vga_insert_vga_lu62(vga_init_vga_lu62(node, &data));
}

/* A domain of one node, "CORVID1" with target 7, that is complete. */
class MODEL_RECORDS : public testing::Test {
protected:
    void SetUp() override {
        scripted_nof.reset();
        gvga_exit_code = 0;
        gvga_variant_x = 0;
        gvga_hooks = {};
        ptrc = {};
        vga_init_verb_queues();
        gvga_system = vga_init_vga_system();
        node = add_node("CORVID1", 7);
    }
    void TearDown() override {
        check_model();
        vga_empty_verb_queues();
        vga_destroy_data_structures();
        gvga_exit_code = 0;
        gvga_variant_x = 0;
    }

    VGA_NODE *node;
};

#endif
