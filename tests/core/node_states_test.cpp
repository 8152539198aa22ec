#include "node_support.h"

using namespace node_test;

namespace {

using States = std::vector<int>;

const States UP = {NAP_PENDING_ACTIVE, NAP_ACTIVE};
const States DOWN = {NAP_PENDING_INACTIVE, NAP_NOT_ACTIVE};

struct NodeStates : testing::Test {
    Rig rig;

    void SetUp() override { rig.load(SMALL_NODE); }
    NB_UCHAR link(const char *name) {
        return rig.entry<NAP_LS_DATA>(node::CLASS_LS, local8(name)).det_data.ls_state;
    }
    NAP_PU_DATA pu(const char *name) {
        return rig.entry<NAP_PU_DATA>(node::CLASS_PU, ebcdic(name));
    }
};

TEST_F(NodeStates, ComeUpFromTheBottom) {
    EXPECT_EQ(rig.by_key(NAP_START_LS, local8("HOST")), state(NAP_NODE_NOT_ACTIVE));
    EXPECT_EQ(rig.engine.node_state(), NB_ULONG{NAP_NODE_STARTING});
    rig.pass(5000);
    EXPECT_EQ(rig.engine.node_state(), NB_ULONG{NAP_NODE_ACTIVE});
    EXPECT_EQ(rig.heard.states(NAP_DLC_INDICATION, "LAN0"), UP);
    EXPECT_EQ(rig.heard.states(NAP_PORT_INDICATION, "ETH0"), UP);
    EXPECT_EQ(rig.heard.states(NAP_PORT_INDICATION, "ETH1"), States{});
    EXPECT_EQ(rig.heard.states(NAP_LS_INDICATION, "HOST"), UP);
    size_t port_up = 0;
    for (size_t at = 0; at < rig.heard.all.size(); at++) {
        const NAP_RESOURCE_INDICATION &one = rig.heard.all[at];
        if (one.opcode == NAP_PORT_INDICATION && one.state == NAP_ACTIVE) {
            port_up = at;
        }
        if (one.opcode == NAP_LS_INDICATION) {
            EXPECT_GT(at, port_up) << "no link before its port";
            EXPECT_GT(port_up, 0U);
        }
    }
    EXPECT_EQ(pu("HOSTPU").pu_sscp_sess_active, NAP_ACTIVE);
    EXPECT_EQ(pu("HOSTPU").lu_count, 7U) << "six dependent LUs of a display and one of type 6.2";
    EXPECT_EQ(pu("HOSTPU").active_lus, 7U);
    EXPECT_EQ(pu("DLPU").active_lus, 3U);
    const auto used =
        rig.entry<NAP_LU03_DATA>(node::CLASS_LU03, ebcdic("HOSTPU") + ebcdic("LU06")).det_data;
    EXPECT_EQ(used.plu_sess_active, 1);
    EXPECT_STREQ(reinterpret_cast<const char *>(used.user_name), "maria");
    EXPECT_EQ(rig.entry<NAP_PORT_DATA>(node::CLASS_PORT, local8("ETH0")).det_data.active_links, 2U);
}

TEST_F(NodeStates, AStopCascades) {
    rig.pass(5000);
    rig.heard.all.clear();
    EXPECT_EQ(rig.by_key(NAP_DELETE_LS, local8("NORTH")), state(NAP_RESOURCE_ACTIVE));
    EXPECT_EQ(rig.by_key(NAP_STOP_DLC, local8("LAN0")), OK_CODES);
    rig.pass(2000);
    EXPECT_EQ(rig.heard.states(NAP_DLC_INDICATION, "LAN0"), DOWN);
    EXPECT_EQ(rig.heard.states(NAP_PORT_INDICATION, "ETH0"), DOWN);
    EXPECT_EQ(rig.heard.states(NAP_LS_INDICATION, "NORTH"), DOWN);
    EXPECT_EQ(pu("HOSTPU").active_lus, 0U);
    EXPECT_EQ(pu("DLPU").active_lus, 0U) << "no link leads to its server";
    EXPECT_EQ(rig.by_key(NAP_START_LS, local8("NORTH")), state(NAP_RESOURCE_INACTIVE));
    EXPECT_EQ(rig.by_key(NAP_DELETE_LS, local8("NORTH")), OK_CODES);
    EXPECT_EQ(rig.by_key(NAP_START_DLC, local8("LAN0")), OK_CODES);
    rig.pass(5000);
    EXPECT_EQ(link("HOST"), NAP_ACTIVE);
    EXPECT_EQ(pu("HOSTPU").active_lus, 7U);
}

TEST_F(NodeStates, StopTypesAndSingleSteps) {
    rig.pass(5000);
    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("HOST"), 2), parameter(NAP_INVALID_VALUE));
    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("NOSUCH")), parameter(NAP_UNKNOWN_RESOURCE));
    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("HOST"), NAP_IMMEDIATE_STOP), OK_CODES);
    EXPECT_EQ(link("HOST"), NAP_NOT_ACTIVE) << "at once";
    EXPECT_EQ(rig.by_key(NAP_START_PU, ebcdic("HOSTPU")), state(NAP_RESOURCE_INACTIVE));
    EXPECT_EQ(rig.by_key(NAP_STOP_PU, ebcdic("DLPU")), OK_CODES);
    EXPECT_EQ(rig.by_key(NAP_START_LS, local8("HOST")), OK_CODES);
    EXPECT_EQ(rig.by_key(NAP_START_LS, local8("HOST")), OK_CODES) << "twice is once";
    rig.pass(499);
    EXPECT_EQ(link("HOST"), NAP_PENDING_ACTIVE);
    rig.pass(1);
    EXPECT_EQ(link("HOST"), NAP_ACTIVE);
    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("HOST")), OK_CODES);
    EXPECT_EQ(link("HOST"), NAP_PENDING_INACTIVE);
    EXPECT_EQ(rig.by_key(NAP_START_LS, local8("HOST")), OK_CODES) << "a stop can be taken back";
    rig.pass(1000);
    EXPECT_EQ(link("HOST"), NAP_ACTIVE);
    EXPECT_EQ(pu("DLPU").pu_sscp_sess_active, NAP_NOT_ACTIVE);
}

TEST_F(NodeStates, ALinkThatCannotBeReachedTriesAsOftenAsItMay) {
    rig.pass(60000);
    EXPECT_EQ(link("DARK"), NAP_NOT_ACTIVE);
    const States tries = {NAP_PENDING_ACTIVE, NAP_NOT_ACTIVE,     NAP_PENDING_ACTIVE,
                          NAP_NOT_ACTIVE,     NAP_PENDING_ACTIVE, NAP_NOT_ACTIVE};
    EXPECT_EQ(rig.heard.states(NAP_LS_INDICATION, "DARK"), tries);
    EXPECT_EQ(rig.entry<NAP_LS_DATA>(node::CLASS_LS, local8("DARK")).det_data.last_sense,
              node::SENSE_LINK_FAILED);
}

TEST_F(NodeStates, ActiveResourcesAreNotChanged) {
    rig.pass(5000);
    NAP_DEFINE_PORT_VERB verb = {};
    const auto now = rig.entry<NAP_PORT_DATA>(node::CLASS_PORT, local8("ETH0"));
    verb.opcode = NAP_DEFINE_PORT;
    put(verb.port_name, local8("ETH0"));
    verb.def_data = now.def_data;
    EXPECT_EQ(rig.issue(verb), state(NAP_RESOURCE_ACTIVE));
    EXPECT_EQ(rig.by_key(NAP_STOP_PORT, local8("ETH0")), OK_CODES);
    rig.pass(1000);
    EXPECT_EQ(rig.issue(verb), OK_CODES);
    NAP_DEFINE_NODE_VERB node_verb = {};
    node_verb.opcode = NAP_DEFINE_NODE;
    node_verb.node_type = NAP_END_NODE;
    put(node_verb.fq_cp_name, ebcdic("NETA.TWO", 17));
    put(node_verb.cp_alias, local8("TWO"));
    EXPECT_EQ(rig.issue(node_verb), state(NAP_RESOURCE_ACTIVE));
    EXPECT_EQ(rig.by_key(NAP_STOP_NODE, ""), OK_CODES);
    EXPECT_EQ(rig.by_key(NAP_INIT_NODE, ""), state(NAP_NODE_BUSY));
    rig.pass(1000);
    EXPECT_EQ(rig.issue(node_verb), OK_CODES);
    put(node_verb.fq_cp_name, ebcdic("TWO", 17));
    EXPECT_EQ(rig.issue(node_verb), parameter(NAP_INVALID_NAME)) << "not qualified";
    EXPECT_EQ(rig.engine.node_record().info.node_type, NAP_END_NODE);
}

/* Twenty links with 100 LUs each: more than a stop takes down at a time. */
struct ManyResources : testing::Test {
    Rig rig;

    void SetUp() override {
        std::string text = "[node one]\nfq_cp_name = NETA.ONE\ncp_alias = ONE\n[dlc LAN0]\n"
                           "[port ETH0]\ndlc_name = LAN0\n";
        for (int number = 10; number < 30; number++) {
            const std::string link = std::to_string(number);
            text += "[ls L" + link + "]\nport_name = ETH0\nadj_cp_type = host\npu_name = P" + link +
                    "\n[lu03 P" + link + " A" + link + "001..A" + link + "100]\nnau_address = 2\n";
        }
        rig.load(text);
        rig.pass(8000);
        EXPECT_EQ(active_lus(), 2000);
        rig.heard.all.clear();
    }
    int active_lus() {
        int found = 0;
        for (int link = 10; link < 30; link++) {
            const std::string pu = "P" + std::to_string(link);
            found += rig.entry<NAP_PU_DATA>(node::CLASS_PU, ebcdic(pu)).active_lus;
        }
        return found;
    }
    int port() {
        return rig.entry<NAP_PORT_DATA>(node::CLASS_PORT, local8("ETH0")).det_data.port_state;
    }
};

TEST_F(ManyResources, AreTakenDownBehindWhatHangsOnThem) {
    EXPECT_EQ(rig.by_key(NAP_STOP_DLC, local8("LAN0"), NAP_IMMEDIATE_STOP), OK_CODES);
    EXPECT_GT(active_lus(), 1000) << "verbs are served meanwhile";
    EXPECT_EQ(port(), NAP_ACTIVE);
    EXPECT_EQ(rig.by_key(NAP_START_PORT, local8("ETH0")), state(NAP_RESOURCE_INACTIVE));
    rig.pass(100);
    EXPECT_EQ(active_lus(), 0);
    const auto &told = rig.heard.all;
    ASSERT_GT(told.size(), 2000U);
    EXPECT_EQ(told.back().opcode, NAP_DLC_INDICATION);
    EXPECT_EQ(told[told.size() - 2].opcode, NAP_PORT_INDICATION);
    rig.pass(20000);
    EXPECT_EQ(active_lus(), 0);
    EXPECT_EQ(rig.by_key(NAP_START_DLC, local8("LAN0")), OK_CODES);
    rig.pass(8000);
    EXPECT_EQ(active_lus(), 2000);
}

TEST_F(ManyResources, AStartTakesAStopBack) {
    EXPECT_EQ(rig.by_key(NAP_STOP_PORT, local8("ETH0"), NAP_IMMEDIATE_STOP), OK_CODES);
    EXPECT_EQ(rig.by_key(NAP_STOP_PORT, local8("ETH0"), NAP_IMMEDIATE_STOP), OK_CODES);
    EXPECT_LT(active_lus(), 2000);
    EXPECT_EQ(rig.by_key(NAP_START_PORT, local8("ETH0")), OK_CODES);
    rig.pass(8000);
    EXPECT_EQ(active_lus(), 2000);
    EXPECT_EQ(port(), NAP_ACTIVE);
}

TEST_F(ManyResources, TheNodeStopsBehindAllOfThem) {
    EXPECT_EQ(rig.by_key(NAP_STOP_NODE, ""), OK_CODES);
    EXPECT_EQ(rig.by_key(NAP_DELETE_LU_0_TO_3, ebcdic("P29") + ebcdic("A29100")), OK_CODES);
    EXPECT_EQ(rig.by_key(NAP_STOP_NODE, "", NAP_IMMEDIATE_STOP), OK_CODES);
    EXPECT_EQ(rig.engine.node_state(), NB_ULONG{NAP_NODE_STOPPING});
    rig.pass(500);
    EXPECT_EQ(rig.engine.node_state(), NB_ULONG{NAP_NODE_STOPPED});
    EXPECT_EQ(active_lus(), 0);
    EXPECT_EQ(rig.by_key(NAP_INIT_NODE, ""), OK_CODES);
    rig.pass(20000);
    EXPECT_EQ(active_lus(), 1999);
}

} // namespace
