// Links between two nodes of a domain: which ends go together, why one does not come up, and what
// becomes of the other end.
#include "node_support.h"

#include <random>

using namespace node_test;

namespace {

std::string node_text(const std::string &own, const std::string &port = "") {
    return "[domain]\n[node x]\nfq_cp_name = NETA." + own +
           "\nnode_type = network_node\n[dlc D]\n[port P]\ndlc_name = D\n" + port;
}

std::string link_text(const std::string &name, const std::string &other,
                      const std::string &more = "") {
    return "[ls " + name + "]\nport_name = P\nreact_timer = 0\nadj_cp_type = network_node\n" +
           (other.empty() ? "" : "adj_cp_name = NETA." + other + "\n") + more;
}

/* Two engines, joined as the front process joins them. */
struct NodePair : testing::Test {
    Rig one, two;

    void load(const std::string &first, const std::string &second, int ms = 5000) {
        one.load(first);
        two.load(second);
        pass(ms);
    }
    static void tell(Rig &from, Rig &to) {
        const NAP_QUERY_NODE_VERB record = from.engine.node_record();
        to.engine.partner_node(record.info.fq_cp_name,
                               record.info.node_state == NAP_NODE_ACTIVE ||
                                   record.info.node_state == NAP_NODE_STOPPING);
        const std::vector<node::LinkNews> all = std::move(from.heard.links);
        from.heard.links.clear();
        for (const node::LinkNews &news : all) {
            to.engine.link_news(news);
        }
    }
    void pass(int ms) {
        for (; ms > 0; ms--) {
            one.pass(1);
            two.pass(1);
            tell(one, two);
            tell(two, one);
        }
    }
    static NAP_LS_DET det(Rig &rig, const std::string &name) {
        return rig.entry<NAP_LS_DATA>(node::CLASS_LS, local8(name)).det_data;
    }
    static int link(Rig &rig, const std::string &name = "L") { return det(rig, name).ls_state; }
    static std::vector<std::string> links(Rig &rig) { return rig.list(NAP_QUERY_LS).names(); }
};

TEST_F(NodePair, ComesUpAndGoesDownTogether) {
    load(node_text("ONE") + link_text("L", "TWO"), node_text("TWO") + link_text("L", "ONE"));
    EXPECT_EQ(link(one), NAP_ACTIVE);
    EXPECT_EQ(link(two), NAP_ACTIVE);
    EXPECT_EQ(det(one, "L").adj_node_type, NAP_NETWORK_NODE);
    one.by_key(NAP_STOP_LS, local8("L"));
    pass(2000);
    EXPECT_EQ(link(two), NAP_NOT_ACTIVE);
    EXPECT_EQ(det(two, "L").failures, 0U) << "it was ended, and did not fail";
    two.by_key(NAP_START_LS, local8("L"));
    pass(4000);
    EXPECT_EQ(link(one), NAP_ACTIVE);
    two.by_key(NAP_STOP_NODE, "");
    pass(2000);
    EXPECT_EQ(det(one, "L").failures, 0U);
    one.by_key(NAP_START_LS, local8("L"));
    pass(4000);
    EXPECT_EQ(link(one), NAP_NOT_ACTIVE) << "the other node is stopped";
    EXPECT_EQ(det(one, "L").last_sense, node::SENSE_LINK_FAILED);
    two.by_key(NAP_INIT_NODE, "");
    pass(6000);
    EXPECT_EQ(link(one), NAP_ACTIVE);
}

/* Whoever calls first, and however calls cross: every station has one partner, TGs go together, and
 * a stop ends one link. */
TEST_F(NodePair, ParallelLinksKeepTheirEnds) {
    std::mt19937 random(7);
    for (int round = 0; round < 30; round++) {
        Rig fresh[2];
        const char *names[] = {"ONE", "TWO"};
        for (int side = 0; side < 2; side++) {
            std::string text = node_text(names[side]);
            for (const char *link : {"A", "B", "C"}) {
                const std::string tg = link[0] == 'C' ? "tg_number = 9\n" : "";
                text += link_text(link, names[1 - side],
                                  tg + "up_ms = " + std::to_string(300 + random() % 4) + "\n");
            }
            fresh[side].load(text);
        }
        const auto run = [&fresh](int ms) {
            for (; ms > 0; ms--) {
                fresh[0].pass(1);
                fresh[1].pass(1);
                tell(fresh[0], fresh[1]);
                tell(fresh[1], fresh[0]);
            }
        };
        run(3000);
        std::map<std::string, std::string> partner;
        for (const char *name : {"A", "B", "C"}) {
            ASSERT_EQ(link(fresh[0], name), NAP_ACTIVE) << round;
            ASSERT_EQ(link(fresh[1], name), NAP_ACTIVE) << round;
            const std::string key = local8(name);
            partner[name] = fresh[0]
                                .engine
                                .link_end(*fresh[0].engine.find(
                                    node::CLASS_LS, reinterpret_cast<const NB_UCHAR *>(key.data())))
                                ->ls;
        }
        EXPECT_EQ(partner["C"], local8("C"));
        fresh[0].by_key(NAP_STOP_LS, local8("B"));
        run(2000);
        for (const char *name : {"A", "B", "C"}) {
            EXPECT_EQ(link(fresh[1], name) == NAP_ACTIVE, partner["B"] != local8(name)) << name;
        }
        EXPECT_EQ(link(fresh[0], "A"), NAP_ACTIVE);
    }
}

TEST_F(NodePair, APortWithImplicitLinksMakesAStation) {
    load(node_text("ONE") + link_text("L", "TWO", "hpr_supported = yes\n"),
         node_text("TWO", "implicit_links = yes\n"));
    EXPECT_EQ(link(one), NAP_ACTIVE);
    ASSERT_EQ(links(two), std::vector<std::string>{"@L000001"});
    const NAP_LS_DET made = det(two, "@L000001");
    EXPECT_EQ(made.dynamic, 1);
    EXPECT_EQ(node::ebcdic_text(made.adj_cp_name, 17), "NETA.ONE");
    EXPECT_EQ(det(one, "L").hpr_support, 1);
    EXPECT_EQ(two.by_key(NAP_DELETE_LS, local8("@L000001")), state(NAP_IN_USE));
    one.by_key(NAP_STOP_LS, local8("L"));
    pass(2000);
    EXPECT_TRUE(links(two).empty());
    EXPECT_EQ(two.heard.all.back().deactivated, 1) << "who registered hears of it";
    one.by_key(NAP_START_LS, local8("L"));
    pass(2000);
    EXPECT_EQ(two.by_key(NAP_STOP_LS, local8("@L000002")), OK_CODES);
    pass(2000);
    EXPECT_EQ(link(one), NAP_NOT_ACTIVE);
}

/* Each start that fails says why. */
TEST_F(NodePair, AStartThatFailsHasACause) {
    struct Case {
        const char *what;
        std::string caller, other;
        NB_ULONG sense;
    };
    const std::string implicit = "implicit_links = yes\n";
    const Case cases[] = {
        {"no station", link_text("L", "TWO"), node_text("TWO"), node::SENSE_MISMATCH},
        {"another TG", link_text("L", "TWO", "tg_number = 3\n"),
         node_text("TWO") + link_text("L", "ONE", "tg_number = 4\ninitially_active = no\n"),
         node::SENSE_MISMATCH},
        {"another SAP", link_text("L", "TWO", "dest_address = 400000000001/08\n"),
         node_text("TWO", implicit + "local_address = 04\n"), node::SENSE_NOT_AVAILABLE},
        {"its port is down", link_text("L", "TWO"),
         node_text("TWO", "initially_active = no\n") + link_text("L", "ONE"),
         node::SENSE_NOT_AVAILABLE},
        {"its port is full", link_text("L", "TWO"),
         node_text("TWO", implicit + "tot_link_act_lim = 1\n") + link_text("H", ""),
         node::SENSE_LIMIT},
        {"its places are for its own calls", link_text("L", "TWO"),
         node_text("TWO", implicit + "tot_link_act_lim = 2\nout_link_act_lim = 2\n"),
         node::SENSE_LIMIT},
        {"it cannot be reached", link_text("L", "TWO"),
         node_text("TWO", implicit) + link_text("L", "ONE", "reachable = no\n"),
         node::SENSE_LINK_FAILED},
        {"nobody has that name", link_text("L", "NOSUCH"), node_text("TWO"),
         node::SENSE_LINK_FAILED},
        {"found by its address", link_text("L", "", "dest_address = two\n"),
         node_text("TWO") + link_text("L", "ONE", "initially_active = no\n"), 0},
    };
    for (const Case &one_case : cases) {
        Rig a, b;
        a.load(node_text("ONE") + one_case.caller);
        b.load(one_case.other);
        node::World empty;
        empty.open = false;
        a.engine.live_in(empty);
        for (int ms = 0; ms < 5000; ms++) {
            a.pass(1);
            b.pass(1);
            tell(a, b);
            tell(b, a);
        }
        EXPECT_EQ(det(a, "L").last_sense, one_case.sense) << one_case.what;
        EXPECT_EQ(link(a), one_case.sense == 0 ? NAP_ACTIVE : NAP_NOT_ACTIVE) << one_case.what;
    }
}

TEST_F(NodePair, ABrokenLineIsTriedAgain) {
    load(node_text("ONE") +
             link_text("L", "TWO", "fails_every = 20\nfails_for = 15\nup_ms = 300\n"),
         node_text("TWO") + "[ls L]\nport_name = P\nadj_cp_type = network_node\nreact_timer = 10\n"
                            "adj_cp_name = NETA.ONE\nup_ms = 200\n");
    EXPECT_EQ(link(one), NAP_ACTIVE);
    pass(17000);
    EXPECT_EQ(link(one), NAP_NOT_ACTIVE);
    EXPECT_EQ(det(one, "L").last_sense, node::SENSE_LINK_FAILED);
    EXPECT_EQ(det(two, "L").last_sense, node::SENSE_LINK_FAILED) << "both ends see it";
    pass(10000);
    EXPECT_EQ(det(two, "L").retries, 1U);
    EXPECT_EQ(link(two), NAP_NOT_ACTIVE) << "it is broken still";
    pass(11000);
    EXPECT_EQ(link(one), NAP_ACTIVE);
    EXPECT_EQ(det(one, "L").retries, 0U) << "its own timer is off";
    one.engine.keep_still();
}

TEST_F(NodePair, APortHasItsLimit) {
    one.load(node_text("ONE", "tot_link_act_lim = 2\n") + link_text("A", "") + link_text("B", "") +
             link_text("C", "", "initially_active = no\n"));
    one.pass(5000);
    EXPECT_EQ(one.by_key(NAP_START_LS, local8("C")), state(NAP_PORT_LIMIT));
    EXPECT_EQ(link(one, "C"), NAP_NOT_ACTIVE);
    one.by_key(NAP_STOP_LS, local8("A"));
    one.pass(2000);
    EXPECT_EQ(one.by_key(NAP_START_LS, local8("C")), OK_CODES);
    NAP_DEFINE_LS_VERB verb = {};
    verb.opcode = NAP_DEFINE_LS;
    put(verb.ls_name, local8("SELF"));
    verb.def_data = one.entry<NAP_LS_DATA>(node::CLASS_LS, local8("A")).def_data;
    NAP_LS_DEF self = verb.def_data;
    put(self.adj_cp_name, ebcdic("NETA.ONE", 17));
    verb.def_data = self;
    EXPECT_EQ(one.issue(verb), parameter(NAP_INVALID_VALUE)) << "a link to oneself";
}

} // namespace
