// What a network makes by itself: stations, PUs and LUs of visitors, sessions of programs,
// directory entries, routes, and the servers of PUs.
#include "node_support.h"

using namespace node_test;

namespace {

const std::string TEXT = R"(
[domain]
[node one]
fq_cp_name = NETA.ONE
cp_alias = ONE
[limits]
max_users = 2
[dlc LAN0]
[port ETH0]
dlc_name = LAN0
implicit_links = yes
tot_link_act_lim = 5
[ls HOST]
port_name = ETH0
adj_cp_type = host
pu_name = HOSTPU
up_ms = 300
[ls NORTH]
port_name = ETH0
adj_cp_type = network_node
adj_cp_name = NETA.NORTH
cp_cp_sess_support = yes
hpr_supported = yes
up_ms = 300
tg_number = 1
[ls NORTH2]
port_name = ETH0
adj_cp_type = network_node
adj_cp_name = NETA.NORTH
cp_cp_sess_support = yes
hpr_supported = yes
up_ms = 400
tg_number = 2
[pu SERVED]
dlus_name = NETA.HOSTA
bkup_dlus_name = NETA.NORTH
[lu03 HOSTPU LU01..LU03]
nau_address = 2
pool_name = HALL
[local_lu PAYLU]
lu_alias = PAY
[mode PAYMODE]
cos_name = #INTER
[dspu_template GUESTS]
max_instance = 1
+ range HALL
min_nau = 1
max_nau = 3
[tn3270_access ip 10.1.1.1]
+ session 23
display_lu_name = HALL
[visitor 10.1.1.1]
comes = 20
stays = 30
away = 30
application = tn3270
[visitor 10.1.1.2]
comes = 19
application = tn3270
[visitor maria]
comes = 21
stays = 1000
[visitor third]
comes = 22
stays = 1000
[visitor TICKETS1]
kind = pu
comes = 20
stays = 30
pu_name = KIOSK
template = GUESTS
[visitor NOTEBOOK]
kind = node
comes = 20
stays = 30
away = 0
fq_cp_name = NETA.VISIT
lu_name = CLAIMS
[visitor payroll]
kind = application
comes = 20
stays = 30
sessions = 3
mode_name = PAYMODE
fqplu_name = NETA.LEDGER
fq_cp_name = NETA.FAR
)";

struct World : testing::Test {
    Rig rig;

    std::vector<std::string> names(NB_USHORT list, bool is_ebcdic = false, size_t offset = 2) {
        return rig.list(list).names(offset, is_ebcdic);
    }
    std::map<std::string, int> directory() {
        std::map<std::string, int> found;
        for (const std::string &one : rig.list(NAP_QUERY_DIRECTORY_ENTRY).entries) {
            NAP_DIR_DATA entry = {};
            memcpy(&entry, one.data(), std::min(sizeof entry, one.size()));
            found[node::ebcdic_text(entry.resource_name, 17)] = entry.entry_type;
        }
        return found;
    }
    std::string user(const char *lu) {
        return node::local_text(
            rig.entry<NAP_LU03_DATA>(node::CLASS_LU03, ebcdic("HOSTPU") + ebcdic(lu))
                .det_data.user_name,
            32);
    }
    int told(NB_USHORT indication, bool gone) {
        int count = 0;
        for (const NAP_RESOURCE_INDICATION &one : rig.heard.all) {
            count += one.opcode == indication && (one.deactivated != 0) == gone ? 1 : 0;
        }
        return count;
    }
    NAP_PU_DATA served() { return rig.entry<NAP_PU_DATA>(node::CLASS_PU, ebcdic("SERVED")); }
};

using Names = std::vector<std::string>;

TEST_F(World, VisitorsComeAndGo) {
    rig.load(TEXT);
    rig.pass(15000);
    EXPECT_EQ(names(NAP_QUERY_LS), (Names{"HOST", "NORTH", "NORTH2"}));
    EXPECT_TRUE(directory().empty());
    rig.heard.all.clear();
    rig.pass(12000);
    EXPECT_EQ(names(NAP_QUERY_LS).size(), 5U);
    EXPECT_EQ(names(NAP_QUERY_DOWNSTREAM_PU, true), Names{"KIOSK"});
    EXPECT_EQ(names(NAP_QUERY_DOWNSTREAM_LU, true, 10),
              (Names{"KIOSK001", "KIOSK002", "KIOSK003"}));
    EXPECT_EQ(rig.entry<NAP_DSPU_TEMPLATE_DATA>(node::CLASS_DSPU_TEMPLATE, local8("GUESTS"))
                  .active_instances,
              1);
    EXPECT_EQ(directory(), (std::map<std::string, int>{{"NETA.VISIT", NAP_DIR_REGISTER},
                                                       {"NETA.CLAIMS", NAP_DIR_REGISTER},
                                                       {"NETA.FAR", NAP_DIR_CACHE},
                                                       {"NETA.LEDGER", NAP_DIR_CACHE}}));
    EXPECT_EQ(user("LU01"), "10.1.1.1");
    EXPECT_EQ(user("LU02"), "maria");
    EXPECT_EQ(user("LU03"), "") << "two users are all that the node may have";
    EXPECT_EQ(rig.list(NAP_QUERY_MODE).count, 1U);
    EXPECT_EQ(rig.list(NAP_QUERY_SESSION).count, 5U);
    EXPECT_EQ(told(NAP_LS_INDICATION, false), 6) << "two appear, begin, and are active";
    EXPECT_EQ(told(NAP_DIRECTORY_INDICATION, false), 4);
    rig.pass(30000);
    EXPECT_EQ(names(NAP_QUERY_LS), (Names{"HOST", "NORTH", "NORTH2"}));
    EXPECT_EQ(rig.list(NAP_QUERY_DOWNSTREAM_LU).count, 0U);
    EXPECT_EQ(user("LU01"), "third") << "somebody left";
    EXPECT_EQ(told(NAP_LS_INDICATION, true), 2);
    EXPECT_EQ(directory().size(), 2U) << "what was found stays for a while";
    rig.pass(300000);
    EXPECT_LE(rig.list(NAP_QUERY_LS).count, 4U) << "the notebook does not come back";
    EXPECT_EQ(rig.by_key(NAP_STOP_NODE, ""), OK_CODES);
    rig.pass(5000);
    EXPECT_EQ(rig.list(NAP_QUERY_SESSION).count, 0U);
    EXPECT_EQ(names(NAP_QUERY_LS), (Names{"HOST", "NORTH", "NORTH2"}));
}

TEST_F(World, StandsStillWhenItIsTold) {
    rig.engine.keep_still();
    rig.load(TEXT);
    rig.pass(60000);
    EXPECT_EQ(names(NAP_QUERY_LS), (Names{"HOST", "NORTH", "NORTH2"}));
    EXPECT_EQ(rig.list(NAP_QUERY_SESSION).count, 0U);
}

/* A connection outlives the link that it began on when there is another way. */
TEST_F(World, ARouteFindsAnotherWay) {
    rig.load(TEXT);
    rig.pass(25000);
    const auto route = [this] {
        NAP_RTP_CONN_DATA found = {};
        for (const std::string &one : rig.list(NAP_QUERY_RTP_CONNECTION).entries) {
            NAP_RTP_CONN_DATA entry;
            memcpy(&entry, one.data(), sizeof entry);
            if (node::ebcdic_text(entry.dest_cp_name, 17) == "NETA.FAR") {
                found = entry;
            }
        }
        return found;
    };
    const NAP_RTP_CONN_DATA before = route();
    EXPECT_EQ(before.connect_state, NAP_RTP_CONNECTED);
    EXPECT_EQ(before.sessions, 3U);
    const std::string hop = node::local_text(before.first_hop_ls_name, 8);
    rig.by_key(NAP_STOP_LS, local8(hop), NAP_IMMEDIATE_STOP);
    rig.pass(100);
    EXPECT_EQ(route().connect_state, NAP_RTP_SWITCHING);
    rig.pass(2000);
    const NAP_RTP_CONN_DATA after = route();
    EXPECT_EQ(after.connect_state, NAP_RTP_CONNECTED);
    EXPECT_EQ(after.path_switch_attempts, 1);
    EXPECT_NE(node::local_text(after.first_hop_ls_name, 8), hop);
    EXPECT_EQ(memcmp(after.rtp_name, before.rtp_name, 8), 0);
    EXPECT_GT(after.up_time, before.up_time);
    EXPECT_GT(after.bytes_sent, before.bytes_sent);
}

TEST_F(World, AServedPuNeedsAWayToItsServer) {
    rig.engine.keep_still();
    rig.load(TEXT);
    rig.pass(10000);
    EXPECT_EQ(served().pu_sscp_sess_active, NAP_ACTIVE);
    EXPECT_EQ(node::ebcdic_text(served().active_dlus_name, 17), "NETA.HOSTA");
    rig.by_key(NAP_STOP_LS, local8("NORTH"), NAP_IMMEDIATE_STOP);
    rig.pass(100);
    EXPECT_EQ(served().pu_sscp_sess_active, NAP_ACTIVE) << "there is another link";
    rig.by_key(NAP_STOP_LS, local8("NORTH2"), NAP_IMMEDIATE_STOP);
    rig.pass(100);
    EXPECT_EQ(served().pu_sscp_sess_active, NAP_NOT_ACTIVE);
    node::World world;
    world.open = false;
    world.control_points = {ebcdic("NETA.NORTH", 17)};
    rig.engine.live_in(world);
    EXPECT_EQ(rig.by_key(NAP_START_LS, local8("NORTH")), OK_CODES);
    rig.pass(5000);
    EXPECT_EQ(node::ebcdic_text(served().active_dlus_name, 17), "NETA.NORTH") << "the backup";
    rig.by_key(NAP_STOP_PU, ebcdic("SERVED"));
    rig.by_key(NAP_STOP_LS, local8("NORTH"), NAP_IMMEDIATE_STOP);
    rig.pass(1000);
    rig.by_key(NAP_START_LS, local8("NORTH"));
    rig.pass(5000);
    EXPECT_EQ(served().pu_sscp_sess_active, NAP_NOT_ACTIVE) << "an operator stopped it";
}

} // namespace
