/* What the node software says unasked: who takes it, and what becomes of nodes, of the holder of
 * the configuration and of the list of servers. */
#include <gtest/gtest.h>

#include "buildsteps.h"
#include "completions.h"
#include "modelrecords.h"
#include "nodestate.h"
#include "recordtypes.h"
#include "reports.h"
#include "resourceindications.h"
#include "serverindications.h"
#include "vgadsbld.h"
#include "vgaindct.h"

SCRIPTED_NOF_ENTRY

namespace {

/* What happened, in its order. */
std::vector<std::string> events;

NAP_NODE_ALL_DATA flags_entry(const std::string &name, NB_ULONG flags) {
    auto data = new_entry<NAP_NODE_ALL_DATA>();
    memcpy(data.node_name, name.data(), name.size());
    data.info.server_flags = flags;
    return data;
}

class Servers : public MODEL_RECORDS {
protected:
    void SetUp() override {
        MODEL_RECORDS::SetUp();
        events.clear();
        gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] = 1;
        gvga_closing = 0;
        node->connection = VGA_CONNECTED;
        node->tp_target = 8;
        std::fill(std::begin(gvga_system->startup_status), std::end(gvga_system->startup_status),
                  NB_USHORT{0});
        gvga_system->domain_target = 40;
        gvga_system->net_target = 41;
        gvga_hooks.node_died = [](VGA_NODE *) {
            events.push_back(gvga_system->domain_target == 0 ? "box behind freeing" : "box");
        };
    }
    void TearDown() override {
        MODEL_RECORDS::TearDown();
        gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] = 0;
        gvga_closing = 0;
    }

    NB_VOID send(NB_ULONG state, NB_ULONG flags, const std::string &name = "CORVID1") {
        NAP_SERVER_INDICATION_VERB news = {};
        news.opcode = NAP_SERVER_INDICATION;
        news.state = state;
        news.server_flags = flags;
        memcpy(news.node_name, name.data(), name.size());
        VGA_PROCESS_STATE work = {0, reinterpret_cast<NAP_VCB *>(&news), gvga_system->handle};
        vga_dispatch_indication(&work);
    }

    NB_VOID send_status(NB_ULONG status, NB_ULONG target, NB_ULONG handle) {
        NAP_NOF_STATUS_INDICATION_VERB news = {};
        news.opcode = NAP_NOF_STATUS_INDICATION;
        news.status = status;
        news.target_handle = target;
        VGA_PROCESS_STATE work = {target, reinterpret_cast<NAP_VCB *>(&news), handle};
        vga_dispatch_indication(&work);
    }

    /* The opcodes in flight since the last call, which are forgotten. */
    static std::vector<NB_USHORT> take_issued() {
        std::vector<NB_USHORT> opcodes;
        for (const ISSUED_VERB &verb : scripted_nof.in_flight) {
            opcodes.push_back(verb.vcb->opcode);
        }
        vga_empty_verb_queues();
        scripted_nof.in_flight.clear();
        return opcodes;
    }
    using OPCODES = std::vector<NB_USHORT>;
};

TEST_F(Servers, RolesAreReadOffTheFlags) {
    const struct {
        NB_ULONG flags;
        VGA_SERVER_ROLE role;
    } rows[] = {
        {0xC, VGA_ROLE_MASTER},    {0x600C, VGA_ROLE_MASTER}, {0x2004, VGA_ROLE_BACKUP},
        {0x4004, VGA_ROLE_BACKUP}, {0x2000, VGA_ROLE_NONE},   {0x4008, VGA_ROLE_NONE},
        {0x4, VGA_ROLE_NONE},      {0x8, VGA_ROLE_NONE},      {0, VGA_ROLE_NONE},
    };
    for (const auto &row : rows) {
        send(1, row.flags);
        EXPECT_EQ(node->role, row.role) << row.flags;
    }
}

TEST_F(Servers, ANewHolderOfTheConfigurationHasItReadAnew) {
    send(1, 0xC);
    EXPECT_EQ(take_issued(), (OPCODES{NAP_CLOSE_FILE, NAP_CLOSE_FILE, NAP_OPEN_FILE}));
    EXPECT_EQ(gvga_system->domain_target, 0U);
    EXPECT_EQ(gvga_system->net_target, 0U);
    EXPECT_EQ(gvga_system->startup_status[VGA_NETWORK_LIST], 1) << "the list of servers, too";
    send(1, 0xC);
    EXPECT_EQ(take_issued(), OPCODES{}) << "the same again";
    gvga_system->domain_target = 50;
    send(1, 0x2004);
    EXPECT_EQ(take_issued(), (OPCODES{NAP_CLOSE_FILE, NAP_OPEN_FILE})) << "a build must end";
    EXPECT_EQ(gvga_system->domain_target, 0U);
    for (NB_USHORT &flag : gvga_system->startup_status) {
        flag = 0;
    }
    node->role = VGA_ROLE_MASTER;
    gvga_system->domain_target = 60;
    send(1, 0x2004);
    EXPECT_EQ(take_issued(), OPCODES{NAP_CLOSE_FILE}) << "let go of, and nobody has it";
}

TEST_F(Servers, AnUnknownNodeJoinsAndOneWithoutConnectionIsConnectedTo) {
    send(1, 0, "HARBOUR");
    ASSERT_EQ(ntl_avl_validate(&gvga_system->nodes), 2);
    EXPECT_EQ(take_issued(), OPCODES{NAP_CONNECT_NODE});
    send(1, 0, "HARBOUR");
    EXPECT_EQ(take_issued(), OPCODES{}) << "is being connected to";
    node->connection = VGA_NOT_CONNECTED;
    node->target = 0;
    send(1, 0, "corvid1");
    EXPECT_EQ(take_issued(), OPCODES{NAP_CONNECT_NODE}) << "names have no case";
    EXPECT_EQ(ntl_avl_validate(&gvga_system->nodes), 2);
    send(0, 0, "NOBODY");
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(take_issued(), OPCODES{});
}

TEST_F(Servers, ANodeThatWasNotConfiguredIsLookedAtAgain) {
    node->node_state = NAP_NODE_UNCONFIGURED;
    send(1, 0);
    ASSERT_EQ(issued_block().opcode, NAP_QUERY_NODE_ALL);
    EXPECT_EQ(issued_block().num_entries, 1);
    auto entry = flags_entry("CORVID1", 0);
    entry.info.node_state = NAP_NODE_STOPPED;
    answer_list({entry_bytes(entry)});
    EXPECT_EQ(node->node_state, NB_ULONG{NAP_NODE_STOPPED});
    EXPECT_EQ(take_issued(), OPCODES{NAP_CONNECT_NODE});
}

TEST_F(Servers, ANodeThatDiesIsToldOfOnce) {
    add_port(add_dlc(node, "LAN0"), "ETH0");
    gvga_system->config_target = 7;
    memcpy(gvga_system->config_name, "CORVID1", 8);
    send_status(NAP_NODE_GONE, 7, node->handle);
    EXPECT_EQ(events, std::vector<std::string>{"box"});
    EXPECT_EQ(gvga_system->config_target, 0U);
    EXPECT_STREQ(gvga_system->config_name, "");
    EXPECT_EQ(ntl_avl_validate(&node->dlcs), 0) << "its part of the model goes";
    EXPECT_EQ(node->connection, VGA_NOT_CONNECTED);
    EXPECT_NE(node->lost_at, 0);
    send_status(NAP_NODE_GONE, 8, node->handle);
    send(0, 0);
    send(0, 0);
    EXPECT_EQ(events.size(), 1U);
    EXPECT_EQ(take_issued(), OPCODES{}) << "nobody is there to ask";
    send(1, 0);
    EXPECT_EQ(take_issued(), OPCODES{NAP_CONNECT_NODE});
}

TEST_F(Servers, AHolderThatDiesTakesTheDomainWithIt) {
    node->role = VGA_ROLE_MASTER;
    send(0, 0xC);
    EXPECT_EQ(events, std::vector<std::string>{"box behind freeing"});
    EXPECT_EQ(gvga_system->net_target, 0U);
    take_issued();
    send(1, 0x2004);
    gvga_system->domain_target = 50;
    EXPECT_EQ(take_issued(), OPCODES{NAP_CONNECT_NODE});
    EXPECT_EQ(gvga_system->domain_target, 50U) << "another server's by now";
}

TEST_F(Servers, ASingleNodeKeepsItsRecordsUntilTheEnd) {
    gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] = 0;
    add_port(add_dlc(node, "LAN0"), "ETH0");
    node->connection = VGA_NOT_CONNECTED; /* a verb of its build was answered so before */
    send_status(NAP_NODE_GONE, 7, node->handle);
    send_status(NAP_NODE_GONE, 8, node->handle);
    EXPECT_EQ(events.size(), 1U);
    EXPECT_EQ(ntl_avl_validate(&node->dlcs), 1);
    EXPECT_EQ(node->connection, VGA_NOT_CONNECTED);
    send(1, 0);
    EXPECT_EQ(take_issued(), OPCODES{}) << "the program is about to end";
}

TEST_F(Servers, TargetsOfFilesAreOpenedAgain) {
    const struct {
        const NB_CHAR *what;
        NB_ULONG status, target;
        OPCODES issued;
    } rows[] = {
        {"the network file", NAP_NODE_GONE, 41, {NAP_CLOSE_FILE, NAP_OPEN_FILE}},
        {"the domain's file", NAP_NODE_GONE, 40, {NAP_OPEN_FILE}},
        {"moved", NAP_SYSTEM_FILE_CHANGED, 40, {NAP_CLOSE_FILE, NAP_OPEN_FILE}},
        {"nobody's", NAP_NODE_GONE, 99, {}},
        {"none", NAP_NODE_GONE, 0, {}},
    };
    for (const auto &row : rows) {
        std::fill(std::begin(gvga_system->startup_status), std::end(gvga_system->startup_status),
                  NB_USHORT{0});
        gvga_system->domain_target = 40;
        gvga_system->net_target = 41;
        send_status(row.status, row.target, 0);
        EXPECT_EQ(take_issued(), OPCODES{}) << row.what << ": a handle of nobody";
        send_status(row.status, row.target, gvga_system->handle);
        EXPECT_EQ(take_issued(), row.issued) << row.what;
    }
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(gvga_exit_code, 0);
}

TEST_F(Servers, TheListOfServersIsReadAgain) {
    NAP_SERVER_INDICATION_VERB news = {};
    news.opcode = NAP_SNA_NET_INDICATION;
    VGA_PROCESS_STATE work = {41, reinterpret_cast<NAP_VCB *>(&news), gvga_system->handle};
    auto entry = flags_entry("OLD", 0xC);
    vga_insert_vga_sna_net_node(vga_init_vga_sna_net_node(gvga_system, &entry));
    vga_dispatch_indication(&work);
    EXPECT_EQ(ntl_avl_validate(&gvga_system->net_nodes), 0);
    EXPECT_EQ(take_issued(), (OPCODES{NAP_CLOSE_FILE, NAP_OPEN_FILE}));
    vga_dispatch_indication(&work);
    EXPECT_EQ(take_issued(), OPCODES{}) << "it is about to be read";
}

TEST_F(Servers, NothingIsReadWhileTheProgramCloses) {
    gvga_closing = 1;
    send(1, 0xC);
    send(1, 0, "HARBOUR");
    send(0, 0);
    send_status(NAP_NODE_GONE, 7, node->handle);
    NAP_NODE_STATUS_INDICATION_VERB stops = {};
    stops.opcode = NAP_STOP_NODE;
    stops.node_state = NAP_NODE_STOPPING;
    NAP_VCB defined = {};
    defined.opcode = NAP_DEFINE_NODE;
    for (NAP_VCB *vcb : {reinterpret_cast<NAP_VCB *>(&stops), &defined}) {
        VGA_PROCESS_STATE work = {node->target, vcb, node->handle};
        vga_dispatch_indication(&work);
    }
    vga_start_build_node(node);
    EXPECT_NE(node->node_state, NAP_NODE_STOPPING);
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(take_issued(), OPCODES{});
    EXPECT_EQ(ntl_avl_validate(&gvga_system->nodes), 1);
    send_status(NAP_CONNECTION_GONE, 0, 0);
    EXPECT_EQ(gvga_exit_code, VGA_EXIT_NORMAL);
}

/* Copies that cannot be: the others are in completions_test.cpp, against the node software. */
TEST_F(Servers, CopiesThatFitNothingChangeNothing) {
    REPORTS reports;
    NAP_DEFINE_PORT_VERB define = {};
    define.opcode = NAP_DEFINE_PORT;
    define.primary_rc = NAP_INDICATION;
    set_local(define.port_name, "ETH9");
    set_local(define.def_data.dlc_name, "NOWHERE");
    NAP_NAME_VERB remove = {};
    remove.opcode = NAP_DELETE_PORT;
    remove.primary_rc = NAP_INDICATION;
    memset(remove.key, ' ', 8);
    NAP_DEFINE_USER_VERB user = {};
    user.opcode = NAP_DEFINE_EMULATOR_USER;
    user.primary_rc = NAP_INDICATION;
    user.def_data.num_sessions = NAP_MAX_USER_SESSIONS + 1;
    const auto send_copy = [&](auto &block, NB_ULONG target, NB_ULONG handle) {
        VGA_PROCESS_STATE work = {target, reinterpret_cast<NAP_VCB *>(&block), handle};
        vga_dispatch_indication(&work);
        return reports.take();
    };
    EXPECT_NE(send_copy(define, 7, node->handle).find("40020004"), std::string::npos);
    EXPECT_NE(send_copy(remove, 7, node->handle).find("40020004"), std::string::npos);
    EXPECT_NE(send_copy(user, 40, gvga_system->handle).find("40020008"), std::string::npos);
    EXPECT_EQ(send_copy(define, 7, 0), "") << "a node that is gone";
    EXPECT_EQ(send_copy(define, 99, node->handle), "") << "a connection that is gone";
    node->startup_status[VGA_PORT_LIST] = 1;
    EXPECT_EQ(send_copy(define, 7, node->handle), "") << "the list brings it";
    EXPECT_EQ(send_copy(remove, 7, node->handle), "");
    add_dlc(node, "NOWHERE");
    send_copy(define, 7, node->handle);
    EXPECT_EQ(ntl_avl_validate(&node->ports), 1) << "the list may be behind it already";
    EXPECT_TRUE(scripted_nof.in_flight.empty());
}

} // namespace
