/* Status checks, and the indications that lead to them. */
#include <gtest/gtest.h>

#include "modelrecords.h"
#include "outcomes.h"
#include "recordtypes.h"
#include "reports.h"
#include "resourceindications.h"
#include "statusclasses.h"
#include "vgadsbld.h"
#include "vgadschk.h"

SCRIPTED_NOF_ENTRY

namespace {

/* What shows that the line was to be drawn anew since the last call. */
NB_USHORT take_drawn(VGA_GUI_DATA &gui) {
    NB_USHORT drawn = gui.viewer.laid_out == 0;
    gui.viewer.laid_out = 1;
    return drawn;
}

class StatusCheck : public MODEL_RECORDS {
protected:
    void SetUp() override {
        MODEL_RECORDS::SetUp();
        dlc = add_dlc(node, "LAN0");
        for (const char *name : {"ETH0", "ETH1", "ETH2"}) {
            ports.push_back(add_port(dlc, name));
            take_drawn(ports.back()->gui_data);
        }
    }

    static NB_ULONG state_of(const VGA_PORT *port) { return port->vcb->det_data.port_state; }

    static BYTES port(const std::string &name, NB_ULONG state = NAP_ACTIVE) {
        return entry_bytes(port_entry(name, state));
    }

    REPORTS reports;
    VGA_DLC *dlc;
    std::vector<VGA_PORT *> ports;
};

TEST_F(StatusCheck, OnlyWhatChangedIsDrawn) {
    vga_start_check_port(node);
    ASSERT_EQ(scripted_nof.in_flight.size(), 1u);
    EXPECT_EQ(issued_block().opcode, NAP_QUERY_PORT);
    EXPECT_EQ(issued_block().list_options, NAP_FIRST_IN_LIST | NAP_DETAIL);
    EXPECT_EQ(scripted_nof.in_flight[0].target, node->target);
    answer_list({port("eth0"), port("ETH1", NAP_NOT_ACTIVE), port("ETH9"), port("ETH2")});
    EXPECT_EQ(state_of(ports[0]), NB_ULONG{NAP_ACTIVE});
    EXPECT_EQ(state_of(ports[2]), NB_ULONG{NAP_ACTIVE});
    EXPECT_TRUE(take_drawn(ports[0]->gui_data));
    EXPECT_FALSE(take_drawn(ports[1]->gui_data));
    EXPECT_TRUE(take_drawn(ports[2]->gui_data));
    EXPECT_EQ(ntl_avl_validate(&node->ports), 3) << "a check makes no record";
    EXPECT_TRUE(scripted_nof.in_flight.empty());
    EXPECT_EQ(reports.take(), "");
}

TEST_F(StatusCheck, GoesOnBehindTheLastRecordThatWasFound) {
    vga_start_check_port(node);
    answer_list({port("ETH0"), port("ETH1"), port("ETH1X")}, 9);
    ASSERT_EQ(scripted_nof.in_flight.size(), 1u);
    NAP_QUERY_LIST query = issued_block();
    EXPECT_EQ(query.list_options, NAP_LIST_FROM_NEXT | NAP_DETAIL);
    EXPECT_EQ(memcmp(query.key, LOCAL<8>("ETH1").bytes, 8), 0);
    answer_list({port("ETH1X"), port("ETH1Y")}, 7);
    EXPECT_TRUE(scripted_nof.in_flight.empty()) << "nothing but unknown entries ends the check";
    EXPECT_EQ(state_of(ports[2]), NB_ULONG{NAP_NOT_ACTIVE});
    EXPECT_EQ(reports.take(), "");

    vga_start_check_port(node);
    answer_list({port("ETH0")}, 9);
    answer_list({port("ETH0")}, 9);
    EXPECT_TRUE(scripted_nof.in_flight.empty()) << "a list that stands still is not for ever";
}

TEST_F(StatusCheck, EndsWithoutAWordWhenTheNodeGoes) {
    vga_start_check_port(node);
    vga_start_check_port(node);
    scripted_nof.complete(0, NAP_COMM_FAILURE, NAP_NODE_GONE);
    EXPECT_TRUE(scripted_nof.in_flight.empty());
    EXPECT_EQ(state_of(ports[0]), NB_ULONG{NAP_NOT_ACTIVE});
    vga_start_check_port(node);
    ASSERT_EQ(scripted_nof.in_flight.size(), 1u) << "the next one is not held up";
    vga_delete_vga_node(node);
    answer_list({port("ETH0")}, 9);
    EXPECT_TRUE(scripted_nof.in_flight.empty());
    EXPECT_EQ(reports.take(), "");
    EXPECT_EQ(gvga_exit_code, 0);
}

TEST_F(StatusCheck, RunsOnceAtATimeAndOnceMore) {
    for (VGA_STATUS_ID id : {VGA_STATUS_PORT, VGA_STATUS_LS, VGA_STATUS_LU03}) {
        for (int request = 0; request < 3; request++) {
            vga_start_check(node, id);
        }
        EXPECT_EQ(scripted_nof.in_flight.size(), 1u) << id;
        answer_list({});
        ASSERT_EQ(scripted_nof.in_flight.size(), 1u) << id;
        answer_list({});
        EXPECT_TRUE(scripted_nof.in_flight.empty()) << id;
    }
}

TEST_F(StatusCheck, ANewConnectionOwesNothingToTheOldOne) {
    vga_start_check_port(node);
    NAP_CONNECT_NODE_VERB connected = {};
    connected.opcode = NAP_CONNECT_NODE;
    connected.target_handle = 8;
    VGA_PROCESS_STATE work = {0, reinterpret_cast<NAP_VCB *>(&connected), node->handle};
    vga_build_unconfigured_node(&work);
    vga_start_check_port(node);
    ASSERT_EQ(scripted_nof.in_flight.size(), 3u);
    answer_list({port("ETH0")}, 9);
    EXPECT_EQ(state_of(ports[0]), NB_ULONG{NAP_NOT_ACTIVE}) << "from the old connection";
    EXPECT_EQ(scripted_nof.in_flight[0].vcb->opcode, NAP_DISCONNECT_NODE) << "which is closed";
    EXPECT_EQ(scripted_nof.in_flight[0].target, 7U);
    scripted_nof.complete();
    ASSERT_EQ(scripted_nof.in_flight.size(), 1u);
    answer_list({port("ETH0")});
    EXPECT_EQ(state_of(ports[0]), NB_ULONG{NAP_ACTIVE});
    node->target = 0;
    vga_start_check_port(node);
    EXPECT_TRUE(scripted_nof.in_flight.empty()) << "nobody to ask";
}

TEST_F(StatusCheck, OfOnePortAsksForNothingElse) {
    EXPECT_TRUE(vga_start_check_one(node, VGA_STATUS_PORT, ports[1]->name));
    NAP_QUERY_LIST query = issued_block();
    EXPECT_EQ(query.num_entries, 1);
    EXPECT_EQ(query.list_options, NAP_LIST_INCLUSIVE | NAP_DETAIL);
    EXPECT_EQ(memcmp(query.key, ports[1]->name, 8), 0);
    answer_list({port("ETH1")}, 9);
    EXPECT_EQ(state_of(ports[1]), NB_ULONG{NAP_ACTIVE});
    EXPECT_TRUE(scripted_nof.in_flight.empty());
    EXPECT_FALSE(vga_start_check_one(node, VGA_STATUS_DLC, dlc->name));
}

/* Indications. */

NAP_RESOURCE_INDICATION indication(NB_USHORT opcode, const NB_VOID *entry, size_t key_size,
                                   size_t status_at = 0, size_t status_size = 0) {
    NAP_RESOURCE_INDICATION block = {};
    block.opcode = opcode;
    block.primary_rc = NAP_INDICATION;
    const auto *bytes = static_cast<const NB_UCHAR *>(entry);
    memcpy(block.key, bytes + 2, key_size);
    memcpy(block.det_data, bytes + status_at, status_size);
    block.det_length = static_cast<NB_USHORT>(status_size);
    return block;
}

class Indication : public StatusCheck {
protected:
    NB_VOID send(NAP_RESOURCE_INDICATION block) {
        VGA_PROCESS_STATE work = {7, reinterpret_cast<NAP_VCB *>(&block), node->handle};
        vga_indication_handler(&work);
    }
};

TEST_F(Indication, LostOnesHaveTheirClassCheckedAgain) {
    for (const VGA_STATUS_CLASS &row : gvga_status_classes) {
        auto block = indication(row.indication, ports[0]->vcb, 8);
        block.data_lost = 1;
        send(block);
        ASSERT_EQ(scripted_nof.in_flight.size(), 1u) << row.id;
        EXPECT_EQ(issued_block().opcode, row.query);
        EXPECT_EQ(issued_block().list_options, NAP_FIRST_IN_LIST | NAP_DETAIL);
        answer_list({});
        EXPECT_TRUE(scripted_nof.in_flight.empty()) << row.id;
    }
    EXPECT_EQ(reports.take(), "") << "the single resource was not looked at";
}

TEST_F(Indication, UnknownResourcesAreReportedOrRead) {
    auto entry = new_entry<NAP_LU03_DATA>();
    set_ebcdic(entry.pu_name, "SOME");
    set_ebcdic(entry.lu_name, "OTHER");
    for (const VGA_STATUS_CLASS &row : gvga_status_classes) {
        auto block = indication(row.indication, &entry, 36);
        send(block);
        std::string text = reports.take();
        NB_USHORT reported = (row.unknown & VGA_UNKNOWN_REPORT) != 0;
        NB_USHORT read = (row.unknown & VGA_UNKNOWN_READ) != 0;
        EXPECT_EQ(text.find("40020004") != std::string::npos, reported) << row.id << text;
        ASSERT_EQ(scripted_nof.in_flight.size(), read) << row.id;
        if (read) {
            EXPECT_EQ(issued_block().opcode, row.query);
            EXPECT_EQ(issued_block().list_options, NAP_LIST_INCLUSIVE | NAP_DETAIL);
            scripted_nof.complete(0, NAP_PARAMETER_CHECK, NAP_UNKNOWN_RESOURCE);
        }

        block.deactivated = 1;
        send(block);
        EXPECT_TRUE(scripted_nof.in_flight.empty()) << row.id << ": it is not there any more";
        reports.take();

        block.deactivated = 0;
        node->startup_status[row.chain] = 1;
        send(block);
        node->startup_status[row.chain] = 0;
        EXPECT_TRUE(scripted_nof.in_flight.empty()) << row.id;
        ptrc.flags[8] = 1;
        send(block);
        ptrc.flags[8] = 0;
        EXPECT_EQ(reports.take(), "") << row.id;
        vga_empty_verb_queues();
        scripted_nof.reset();
        node->class_work[row.id] = {};
    }
}

TEST_F(Indication, NewResourcesAppearAtABoundedCost) {
    NAP_LS_DATA entry = ls_entry("DYN0");
    send(indication(NAP_LS_INDICATION, &entry, 8));
    for (const char *name : {"DYN1", "DYN2", "DYN3"}) {
        NAP_LS_DATA more = ls_entry(name);
        send(indication(NAP_LS_INDICATION, &more, 8));
    }
    ASSERT_EQ(scripted_nof.in_flight.size(), 1u);
    entry.det_data.ls_state = NAP_ACTIVE;
    answer_list({entry_bytes(entry)}, 4);
    VGA_LS *ls = vga_find_ls(node, LOCAL<8>("DYN0").bytes);
    ASSERT_NE(ls, nullptr);
    EXPECT_EQ(ls->state, NAP_ACTIVE);
    ASSERT_EQ(scripted_nof.in_flight.size(), 1u);
    EXPECT_EQ(issued_block().list_options & NAP_FIRST_IN_LIST, NAP_FIRST_IN_LIST);
    entry.det_data.ls_state = NAP_PENDING_INACTIVE;
    answer_list({entry_bytes(entry), entry_bytes(ls_entry("DYN1"))}, 3);
    NAP_LS_DATA homeless = ls_entry("DYN4");
    set_local(homeless.def_data.port_name, "NOWHERE");
    answer_list({entry_bytes(ls_entry("DYN2")), entry_bytes(homeless)});
    EXPECT_TRUE(scripted_nof.in_flight.empty());
    EXPECT_EQ(ntl_avl_validate(&node->link_stations), 3);
    EXPECT_EQ(ls->state, NAP_PENDING_INACTIVE) << "no answer is older than what came before it";
    EXPECT_NE(reports.take().find("40020004"), std::string::npos) << "without an owner";
}

TEST_F(Indication, ADownstreamPuShowsInItsLinkStation) {
    VGA_LS *ls = add_ls(ports[0], "BRANCH", NAP_ADJ_DOWNSTREAM, "BRANCHPU");
    VGA_DOWN_LU *lu = add_down_lu(ls->down_pu, "TELLER");
    NAP_DOWN_PU_DATA pu = *ls->down_pu->vcb;
    pu.pu_sscp_sess_active = NAP_ACTIVE;
    constexpr size_t at = offsetof(NAP_DOWN_PU_DATA, pu_sscp_sess_active);
    auto block = indication(NAP_DOWNSTREAM_PU_INDICATION, &pu, 8, at,
                            offsetof(NAP_DOWN_PU_DATA, def_data) - at);
    take_drawn(ls->gui_data);
    send(block);
    EXPECT_EQ(ls->down_pu->vcb->pu_sscp_sess_active, NAP_ACTIVE);
    EXPECT_TRUE(take_drawn(ls->gui_data));
    send(block);
    EXPECT_FALSE(take_drawn(ls->gui_data)) << "nothing new";

    NAP_DOWN_LU_DATA down_lu = *lu->vcb;
    down_lu.det_data.plu_sess_active = 1;
    take_drawn(lu->gui_data);
    send(indication(NAP_DOWNSTREAM_LU_INDICATION, &down_lu, 16,
                    offsetof(NAP_DOWN_LU_DATA, det_data), sizeof(NAP_DOWN_LU_DET)));
    EXPECT_TRUE(take_drawn(lu->gui_data));

    block.deactivated = 1;
    send(block);
    EXPECT_EQ(ls->down_pu, nullptr);
    EXPECT_EQ(ntl_avl_validate(&node->down_pus), 0);
    EXPECT_TRUE(take_drawn(ls->gui_data));
}

TEST_F(Indication, WhatStandsElsewhereFollows) {
    auto pool_entry = new_entry<NAP_LU_POOL_DATA>();
    set_ebcdic(pool_entry.pool_name, "POOL1");
    set_ebcdic(pool_entry.lu_name, "LU1");
    VGA_POOL *pool = vga_insert_vga_pool(vga_init_vga_pool(node, &pool_entry));
    VGA_POOL_LU *member = vga_insert_vga_pool_lu(vga_init_vga_pool_lu(pool, &pool_entry));
    VGA_LU03 *lu = add_lu03(add_ls(ports[0], "HOST", NAP_ADJ_HOST, "HOSTPU")->local_pu, "LU1");
    set_ebcdic(lu->vcb->def_data.pool_name, "POOL1");
    NAP_LU03_DATA data = *lu->vcb;
    data.det_data.lu_sscp_sess_active = data.det_data.appl_conn_active = 1;
    take_drawn(member->gui_data);
    send(indication(NAP_LU_0_TO_3_INDICATION, &data, 16, offsetof(NAP_LU03_DATA, det_data),
                    sizeof(NAP_LU03_DET)));
    EXPECT_TRUE(member->vcb->lu_active && member->vcb->lu_in_use);
    EXPECT_TRUE(take_drawn(member->gui_data));
}

TEST_F(Indication, ATamrixNumberMayStandForAnotherSession) {
    auto entry = new_entry<NAP_TAMRIX_SESSION_DATA>();
    entry.session_number = 5;
    set_ebcdic(entry.lu_name, "OLDLU");
    auto *session =
        vga_insert_vga_tamrix_appcip_sess(vga_init_vga_tamrix_appcip_sess(node, &entry));
    set_ebcdic(entry.lu_name, "NEWLU");
    constexpr size_t at = offsetof(NAP_TAMRIX_SESSION_DATA, lu_name);
    send(indication(NAP_TAMRIX_INDICATION, &entry, 2, at, sizeof(entry) - at));
    EXPECT_EQ(ntl_avl_find(&node->tamrix_sessions, &session->key), session);
    EXPECT_EQ(memcmp(session->key.lu_name, EBCDIC<8>("NEWLU").bytes, 8), 0);
}

/* A failure is told once: not what the node tries again by itself, nor what it told before. */
TEST_F(Indication, FailuresOfLinksAreToldOnceAndKeptUpToABound) {
    vga_forget_outcomes();
    VGA_LS *ls = add_ls(ports[0], "LINK", NAP_ADJ_END_NODE, "");
    const struct {
        const char *what;
        NB_UCHAR state;
        NB_ULONG failures, retries;
        bool told;
    } rows[] = {
        {"starts", NAP_PENDING_ACTIVE, 0, 0, false},
        {"did not come up", NAP_NOT_ACTIVE, 1, 0, true},
        {"tried again", NAP_PENDING_ACTIVE, 1, 1, false},
        {"in vain", NAP_NOT_ACTIVE, 2, 1, false},
        {"tried again", NAP_PENDING_ACTIVE, 2, 2, false},
        {"comes up", NAP_ACTIVE, 2, 2, false},
        {"is lost", NAP_NOT_ACTIVE, 3, 2, true},
        {"told again", NAP_NOT_ACTIVE, 3, 2, false},
    };
    for (const auto &row : rows) {
        NAP_LS_DET status = {};
        status.ls_state = row.state;
        status.failures = status.failed_at = row.failures;
        status.retries = row.retries;
        const size_t before = vga_outcomes().size();
        gvga_status_classes[VGA_STATUS_LS].change(ls, reinterpret_cast<NB_UCHAR *>(&status),
                                                  sizeof(status));
        EXPECT_EQ(vga_outcomes().size() - before, row.told ? 1U : 0U) << row.what;
    }
    EXPECT_EQ(vga_outcomes().back().node, "CORVID1");
    EXPECT_EQ(vga_outcomes().back().failed, 1U);
    for (int more = 0; more < VGA_OUTCOMES_KEPT; more++) {
        vga_tell_outcome("", std::to_string(more));
    }
    ASSERT_EQ(vga_outcomes().size(), size_t{VGA_OUTCOMES_KEPT});
    EXPECT_EQ(vga_outcomes().front().text, "0") << "the oldest have gone";
    EXPECT_EQ(vga_outcomes().back().number, vga_outcomes().front().number + VGA_OUTCOMES_KEPT - 1);
    vga_forget_outcomes();
}

TEST_F(Indication, WhatDoesNotFitIsDroppedWithAReport) {
    VGA_LOCAL_PU *pu = add_ls(ports[0], "HOST", NAP_ADJ_HOST, "HOSTPU")->local_pu;
    NAP_PU_DATA entry = *pu->vcb;
    entry.pu_sscp_sess_active = NAP_ACTIVE;
    constexpr size_t at = offsetof(NAP_PU_DATA, host_attachment);
    send(indication(NAP_DLUR_PU_INDICATION, &entry, 8, at, offsetof(NAP_PU_DATA, def_data) - at));
    EXPECT_EQ(pu->vcb->pu_sscp_sess_active, NAP_NOT_ACTIVE);
    EXPECT_NE(reports.take().find("host_attachment == NAP_DLUR_ATTACHED"), std::string::npos);

    send(indication(0x400C, &entry, 8));
    std::string text = reports.take();
    EXPECT_NE(text.find("vgaindre"), std::string::npos) << text;
    EXPECT_NE(text.find("115"), std::string::npos) << text;
}

TEST_F(Indication, AStatusThatIsCutShortIsReadAgain) {
    NAP_PORT_DATA entry = port_entry("ETH0", NAP_ACTIVE);
    send(indication(NAP_PORT_INDICATION, &entry, 8, offsetof(NAP_PORT_DATA, det_data), 4));
    EXPECT_EQ(state_of(ports[0]), NB_ULONG{NAP_NOT_ACTIVE});
    ASSERT_EQ(scripted_nof.in_flight.size(), 1u);
    EXPECT_EQ(issued_block().list_options, NAP_LIST_INCLUSIVE | NAP_DETAIL);
    answer_list({entry_bytes(entry)});
    EXPECT_EQ(state_of(ports[0]), NB_ULONG{NAP_ACTIVE});
}

} // namespace
