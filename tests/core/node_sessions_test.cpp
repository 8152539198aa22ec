// Operating a node: sessions, how stops wait for them, limits, counters, failures and the log.
#include "node_support.h"

using namespace node_test;

namespace {

/* LU07 takes three seconds to end its session, LU08 for ever. */
const std::string TEXT = std::string(SMALL_NODE) + R"(
[lu03 HOSTPU LU07]
nau_address = 11
user = 10.1.2.3
application = tn3270
end_ms = 3000
[lu03 HOSTPU LU08]
nau_address = 12
user = 10.1.2.4
application = tn3270
end_ms = 3600000
[limits]
max_lus = 14
max_links = 4
)";

struct Operating : testing::Test {
    Rig rig;

    void SetUp() override {
        rig.load(TEXT);
        rig.pass(8000);
        rig.heard.all.clear();
    }
    int link(const char *name = "HOST") {
        return rig.entry<NAP_LS_DATA>(node::CLASS_LS, local8(name)).det_data.ls_state;
    }
    NAP_MODE_DATA mode(const char *name = "PAYMODE") {
        return rig.entry<NAP_MODE_DATA>(node::CLASS_MODE, local8("Payroll") + ebcdic(name) +
                                                              ebcdic("NETA.LEDGER", 17));
    }
    NAP_MODE_DEF_DATA definition(const char *name) {
        return rig.entry<NAP_MODE_DEF_DATA>(node::CLASS_MODE_DEF, ebcdic(name));
    }
    /* Defines a mode with the characteristics of #INTER, of which something is changed. */
    template <class Edit> Codes define_mode(const char *name, Edit edit) {
        NAP_DEFINE_MODE_VERB verb = {};
        verb.opcode = NAP_DEFINE_MODE;
        put(verb.mode_name, ebcdic(name));
        NAP_MODE_CHARS chars = definition("#INTER").mode_chars;
        edit(chars);
        verb.mode_chars = chars;
        return rig.issue(verb);
    }
    static void limits(NAP_MODE_CHARS &chars, unsigned limit, unsigned winners) {
        chars.plu_mode_session_limit = static_cast<NB_USHORT>(limit);
        chars.min_conwin_src = static_cast<NB_USHORT>(winners);
    }
    /* The session numbers of an LU. */
    std::vector<int> sessions(const char *lu) {
        std::vector<int> numbers;
        for (const std::string &entry :
             rig.list(NAP_QUERY_SESSION, NAP_FIRST_IN_LIST, ebcdic(lu), 8).entries) {
            numbers.push_back(session(entry).session_number);
        }
        return numbers;
    }
    static NAP_SESSION_DATA session(const std::string &entry) {
        NAP_SESSION_DATA one;
        memcpy(&one, entry.data(), sizeof one);
        return one;
    }
    Codes end(const char *lu, unsigned number = 0, unsigned how = NAP_IMMEDIATE_STOP) {
        NAP_END_LU_SESSION_VERB verb = {};
        verb.opcode = NAP_END_LU_SESSION;
        put(verb.lu_name, ebcdic(lu));
        verb.session_number = static_cast<NB_USHORT>(number);
        verb.stop_type = static_cast<NB_UCHAR>(how);
        return rig.issue(verb);
    }
    Codes end_client(const std::string &address, const char *lu = "") {
        NAP_END_TN_CLIENT_VERB verb = {};
        verb.opcode = NAP_END_TN3270_CLIENT;
        put(verb.client_address, address);
        put(verb.lu_name, ebcdic(lu));
        return rig.issue(verb);
    }
    static NAP_LU62_SESSION_VERB lu62(NB_USHORT opcode, const char *mode_name = "PAYMODE") {
        NAP_LU62_SESSION_VERB verb = {};
        verb.opcode = opcode;
        put(verb.lu_alias, local8("Payroll"));
        put(verb.mode_name, ebcdic(mode_name));
        put(verb.fqplu_name, ebcdic("NETA.LEDGER", 17));
        return verb;
    }
    Codes activate(unsigned sessions, const char *mode_name = "PAYMODE") {
        NAP_LU62_SESSION_VERB verb = lu62(NAP_ACTIVATE_SESSION, mode_name);
        verb.sessions = static_cast<NB_USHORT>(sessions);
        return rig.issue(verb);
    }
    Codes deactivate(unsigned number, unsigned how, const char *mode_name = "PAYMODE") {
        NAP_LU62_SESSION_VERB verb = lu62(NAP_DEACTIVATE_SESSION, mode_name);
        verb.session_number = static_cast<NB_USHORT>(number);
        verb.stop_type = static_cast<NB_UCHAR>(how);
        return rig.issue(verb);
    }
};

using Numbers = std::vector<int>;
constexpr unsigned ORDERLY = NAP_ORDERLY_STOP, AT_ONCE = NAP_IMMEDIATE_STOP;

TEST_F(Operating, AnOrderlyStopWaitsButNotForEver) {
    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("HOST"), 2), parameter(NAP_INVALID_VALUE));
    EXPECT_EQ(rig.by_key(NAP_STOP_NODE, "", 2), parameter(NAP_INVALID_VALUE));
    EXPECT_EQ(link(), NAP_ACTIVE);
    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("HOST")), OK_CODES);
    rig.pass(2900);
    EXPECT_EQ(link(), NAP_PENDING_INACTIVE);
    EXPECT_EQ(sessions("LU07"), Numbers{1});
    EXPECT_EQ(sessions("LU06"), Numbers{}) << "it did not take that long";
    rig.pass(node::ORDERLY_WAIT_MS - 3000);
    EXPECT_EQ(sessions("LU07"), Numbers{});
    EXPECT_EQ(link(), NAP_PENDING_INACTIVE);
    rig.pass(1000);
    EXPECT_EQ(link(), NAP_NOT_ACTIVE);
    EXPECT_EQ(rig.entry<NAP_LS_DATA>(node::CLASS_LS, local8("HOST")).det_data.act_sess_count, 0U);
    EXPECT_EQ(sessions("LU08"), Numbers{});
    EXPECT_EQ(rig.heard.states(NAP_LS_INDICATION, "HOST"),
              (Numbers{NAP_PENDING_INACTIVE, NAP_NOT_ACTIVE}));
    EXPECT_EQ(link("NORTH"), NAP_ACTIVE);
}

TEST_F(Operating, AnImmediateStopOvertakesAnOrderlyOne) {
    EXPECT_EQ(rig.by_key(NAP_STOP_NODE, ""), OK_CODES);
    rig.pass(2000);
    EXPECT_EQ(rig.engine.node_state(), NB_ULONG{NAP_NODE_STOPPING});
    EXPECT_EQ(activate(1), state(NAP_NODE_NOT_ACTIVE)) << "no new sessions";
    EXPECT_EQ(rig.by_key(NAP_STOP_NODE, "", AT_ONCE), OK_CODES);
    EXPECT_EQ(link(), NAP_NOT_ACTIVE);
    EXPECT_EQ(sessions("LU08"), Numbers{});
    rig.pass(200);
    EXPECT_EQ(rig.engine.node_state(), NB_ULONG{NAP_NODE_STOPPED});
    EXPECT_EQ(rig.engine.node_record().active_sessions, 0U);
}

/* A session that is ended while its link waits for it, one way or the other, holds nobody up. */
TEST_F(Operating, WhatEndsDuringAStopLetsItGoOn) {
    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("HOST")), OK_CODES);
    EXPECT_EQ(end("LU07", 0, ORDERLY), OK_CODES);
    EXPECT_EQ(end("LU08"), OK_CODES);
    rig.pass(4000);
    EXPECT_EQ(link(), NAP_NOT_ACTIVE);
    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("NORTH")), OK_CODES);
    EXPECT_EQ(mode().draining, 1);
    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("NORTH"), AT_ONCE), OK_CODES);
    EXPECT_EQ(mode().draining, 0);
    EXPECT_EQ(sessions("PAYLU"), Numbers{});
    EXPECT_EQ(link("NORTH"), NAP_NOT_ACTIVE);
}

TEST_F(Operating, AStopThatIsTakenBackLeavesTheSessions) {
    EXPECT_EQ(rig.by_key(NAP_STOP_PU, ebcdic("HOSTPU")), OK_CODES);
    rig.pass(1000);
    EXPECT_EQ(rig.by_key(NAP_START_PU, ebcdic("HOSTPU")), OK_CODES);
    rig.pass(20000);
    const auto pu = rig.entry<NAP_PU_DATA>(node::CLASS_PU, ebcdic("HOSTPU"));
    EXPECT_EQ(pu.pu_sscp_sess_active, NAP_ACTIVE);
    EXPECT_EQ(pu.active_lus, pu.lu_count) << "who logged off came back";
}

TEST_F(Operating, SessionsOfDependentLusEnd) {
    EXPECT_EQ(end("LU06"), OK_CODES);
    EXPECT_EQ(sessions("LU06"), Numbers{});
    EXPECT_EQ(rig.heard.all.back().opcode, NAP_LU_0_TO_3_INDICATION);
    EXPECT_EQ(rig.heard.all.back().state, NAP_SSCP_ACTIVE);
    EXPECT_EQ(end("LU07", 1, ORDERLY), OK_CODES);
    EXPECT_EQ(sessions("LU07"), Numbers{1});
    rig.pass(3000);
    EXPECT_EQ(sessions("LU07"), Numbers{});
    EXPECT_EQ(end_client(std::string(sizeof NAP_END_TN_CLIENT_VERB::client_address, '1')),
              parameter(NAP_UNKNOWN_RESOURCE))
        << "has no end";
    EXPECT_EQ(end_client("10.1.2.4", "LU06"), parameter(NAP_UNKNOWN_RESOURCE));
    EXPECT_EQ(end_client("10.1.2.4"), OK_CODES);
    EXPECT_EQ(end_client("10.1.2.4"), parameter(NAP_UNKNOWN_RESOURCE));
    const struct {
        const char *lu;
        unsigned number, how;
        Codes codes;
    } bad[] = {{"LU01", 0, AT_ONCE, parameter(NAP_UNKNOWN_RESOURCE)},
               {"NOSUCH", 0, AT_ONCE, parameter(NAP_UNKNOWN_RESOURCE)},
               {"PAYLU", 9, AT_ONCE, parameter(NAP_UNKNOWN_RESOURCE)},
               {"PAYLU", 65535, ORDERLY, parameter(NAP_UNKNOWN_RESOURCE)},
               {"PAYLU", 1, 2, parameter(NAP_INVALID_VALUE)}};
    for (const auto &one : bad) {
        EXPECT_EQ(end(one.lu, one.number, one.how), one.codes) << one.lu;
    }
    EXPECT_EQ(sessions("PAYLU"), (Numbers{1, 2, 3}));
    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("HOST"), AT_ONCE), OK_CODES);
    EXPECT_EQ(rig.by_key(NAP_START_LS, local8("HOST")), OK_CODES);
    rig.pass(5000);
    EXPECT_EQ(sessions("LU06"), Numbers{1}) << "who uses the LU logs on anew";
}

TEST_F(Operating, Lu62SessionsComeAndGo) {
    EXPECT_EQ(activate(2), OK_CODES);
    EXPECT_EQ(sessions("PAYLU"), (Numbers{1, 2, 3, 4, 5}));
    EXPECT_EQ(mode().act_sess_count, 5);
    EXPECT_EQ(activate(4), state(NAP_SESSION_LIMIT));
    EXPECT_EQ(deactivate(2, AT_ONCE), OK_CODES);
    EXPECT_EQ(deactivate(3, ORDERLY), OK_CODES);
    EXPECT_EQ(sessions("PAYLU"), (Numbers{1, 3, 4, 5}));
    rig.pass(1000);
    EXPECT_EQ(sessions("PAYLU"), (Numbers{1, 4, 5}));
    EXPECT_EQ(deactivate(0, ORDERLY), OK_CODES);
    EXPECT_EQ(mode().draining, 1);
    EXPECT_EQ(activate(1), state(NAP_SESSION_LIMIT));
    rig.pass(1000);
    EXPECT_EQ(mode().act_sess_count, 0);
    EXPECT_EQ(mode().draining, 0);
    EXPECT_EQ(deactivate(0, AT_ONCE), parameter(NAP_UNKNOWN_RESOURCE)) << "there is none";
    EXPECT_EQ(rig.by_key(NAP_DELETE_PARTNER_LU, ebcdic("NETA.LEDGER", 17)), OK_CODES);
    EXPECT_EQ(activate(1, "#INTER"), OK_CODES) << "in use from now on";
    EXPECT_EQ(memcmp(mode("#INTER").plu_alias, mode().plu_alias, sizeof mode().plu_alias), 0);
    EXPECT_EQ(rig.list(NAP_QUERY_PARTNER_LU).entries.size(), 1U) << "it was in use by its alias";
    EXPECT_EQ(mode("#INTER").sess_limit, 8);
    EXPECT_EQ(mode("#INTER").act_sess_count, 1);
    const Codes value = parameter(NAP_INVALID_VALUE);
    EXPECT_EQ(activate(0), value);
    EXPECT_EQ(activate(40000), value);
    EXPECT_EQ(activate(1, "NOMODE"), parameter(NAP_UNKNOWN_OWNER));
    EXPECT_EQ(activate(1, "CPSVCMG"), parameter(NAP_INVALID_NAME));
    EXPECT_EQ(deactivate(0, 2), value);
    EXPECT_EQ(deactivate(77, AT_ONCE), parameter(NAP_UNKNOWN_RESOURCE));
    EXPECT_EQ(deactivate(0, AT_ONCE, "NIGHTLY"), parameter(NAP_UNKNOWN_RESOURCE));
}

/* The modes of one LU together want more sessions than an LU has numbers. */
TEST_F(Operating, TheNumbersOfAnLuAreUsedUp) {
    for (const char *name : {"WIDE1", "WIDE2"}) {
        const auto widen = [](NAP_MODE_CHARS &chars) {
            chars.plu_mode_session_limit = chars.max_neg_sess_lim = 32767;
        };
        ASSERT_EQ(define_mode(name, widen), OK_CODES);
    }
    EXPECT_EQ(activate(32767, "WIDE1"), OK_CODES);
    EXPECT_EQ(activate(32767, "WIDE2"), state(NAP_SESSION_LIMIT)) << "three are PAYMODE's";
    EXPECT_EQ(activate(32765, "WIDE2"), OK_CODES);
    EXPECT_EQ(mode("WIDE2").act_sess_count, 32765);
    EXPECT_EQ(activate(1), state(NAP_SESSION_LIMIT));
    EXPECT_EQ(deactivate(65535, AT_ONCE, "WIDE2"), OK_CODES);
    EXPECT_EQ(deactivate(2, AT_ONCE), OK_CODES);
    EXPECT_EQ(activate(3), state(NAP_SESSION_LIMIT));
    EXPECT_EQ(activate(2), OK_CODES);
    EXPECT_EQ(mode().act_sess_count, 4);
    EXPECT_EQ(deactivate(65535, AT_ONCE), OK_CODES) << "a number is free when its session ended";
}

TEST_F(Operating, FailuresSayWhenAndWhy) {
    const auto dark = rig.entry<NAP_LS_DATA>(node::CLASS_LS, local8("DARK")).det_data;
    EXPECT_GE(dark.failures, 1U);
    EXPECT_EQ(dark.last_sense, node::SENSE_LINK_FAILED);
    EXPECT_GE(dark.failed_at, 1700000000U);
    rig.engine.partner_node(reinterpret_cast<const NB_UCHAR *>(ebcdic("NETA.NORTH", 17).data()),
                            false);
    const auto north = rig.entry<NAP_LS_DATA>(node::CLASS_LS, local8("NORTH")).det_data;
    EXPECT_EQ(north.last_sense, node::SENSE_PARTNER_LOST);
    EXPECT_EQ(north.failures, 1U);
    rig.pass(100);
    EXPECT_EQ(mode().failures, 3U) << "as many sessions were lost";
    EXPECT_EQ(activate(1), state(NAP_PARTNER_UNREACHABLE));
    EXPECT_EQ(mode().failures, 4U);
    const List log = rig.list(NAP_QUERY_NODE_LOG);
    NAP_LOG_DATA newest, oldest;
    memcpy(&newest, log.entries.front().data(), sizeof newest);
    memcpy(&oldest, log.entries.back().data(), sizeof oldest);
    EXPECT_EQ(newest.message, NB_ULONG{NAP_LOG_SESSION_REFUSED});
    EXPECT_EQ(newest.line_number, log.entries.size());
    EXPECT_EQ(oldest.message, NB_ULONG{NAP_LOG_NODE_STARTED});
    for (int times = 0; times < NAP_LOG_LINES; times++) {
        activate(1);
    }
    EXPECT_EQ(rig.read_all(NAP_QUERY_NODE_LOG, 4, 65536).entries.size(), NAP_LOG_LINES);

    EXPECT_EQ(rig.by_key(NAP_STOP_LS, local8("DARK")), OK_CODES);
    const auto told = rig.entry<NAP_LS_DATA>(node::CLASS_LS, local8("DARK")).det_data;
    EXPECT_EQ(told.failed_at, 0U) << "who stops it knows of the failure";
    EXPECT_EQ(told.failures, dark.failures);
}

/* Counters go on by themselves, and nothing is told of them. */
TEST_F(Operating, CountersAreReadNotIndicated) {
    const auto read = [this] {
        rig.list(NAP_QUERY_LS);
        const auto det = rig.entry<NAP_LS_DATA>(node::CLASS_LS, local8("NORTH")).det_data;
        EXPECT_EQ(det.in_bytes, mode().in_bytes) << "all that it carries is the mode's";
        EXPECT_EQ(det.act_sess_count, 5U) << "two of the control points";
        return det.in_bytes;
    };
    rig.by_key(NAP_STOP_LS, local8("DARK"));
    rig.heard.all.clear();
    const NB_ULONG before = read();
    rig.pass(5000);
    EXPECT_GT(read(), before);
    EXPECT_TRUE(rig.heard.all.empty());
    EXPECT_EQ(deactivate(0, AT_ONCE), OK_CODES);
    const NB_ULONG total = mode().in_bytes;
    rig.pass(5000);
    rig.list(NAP_QUERY_MODE);
    EXPECT_EQ(mode().in_bytes, total) << "what ended counts, and no further";
}

TEST_F(Operating, LimitsAreKept) {
    NAP_QUERY_NODE_LIMITS_VERB limits = {};
    limits.opcode = NAP_QUERY_NODE_LIMITS;
    EXPECT_EQ(rig.issue(limits), OK_CODES);
    EXPECT_EQ(limits.users, 3U);
    EXPECT_EQ(limits.lus, 13U);
    EXPECT_EQ(limits.links, 3U);
    NAP_DEFINE_LU03_VERB lu = {};
    lu.opcode = NAP_DEFINE_LU_0_TO_3;
    put(lu.pu_name, ebcdic("HOSTPU"));
    lu.def_data.lu_model = NAP_LU_UNKNOWN;
    for (const int number : {20, 21}) {
        put(lu.lu_name, ebcdic("NEW" + std::to_string(number)));
        lu.def_data.nau_address = static_cast<NB_UCHAR>(number);
        EXPECT_EQ(rig.issue(lu), number == 20 ? OK_CODES : state(NAP_LU_LIMIT));
    }
    NAP_DEFINE_NODE_VERB node_verb = {};
    node_verb.opcode = NAP_DEFINE_NODE;
    node_verb.node_type = NAP_END_NODE;
    node_verb.max_lus = 15;
    node_verb.tamrix_support = 1;
    put(node_verb.fq_cp_name, ebcdic("NETA.ONE", 17));
    put(node_verb.cp_alias, local8("ONE"));
    rig.by_key(NAP_STOP_NODE, "", AT_ONCE);
    rig.pass(200);
    EXPECT_EQ(rig.issue(node_verb), OK_CODES);
    EXPECT_EQ(rig.engine.node_record().tamrix_support, 1);
    EXPECT_EQ(rig.issue(lu), OK_CODES);
    EXPECT_EQ(rig.issue(limits), OK_CODES);
    EXPECT_EQ(limits.users, 0U);
}

/* The rules of a mode beyond the ranges of its fields. */
TEST_F(Operating, ModesKeepTheirRules) {
    using Chars = NAP_MODE_CHARS;
    const Codes value = parameter(NAP_INVALID_VALUE);
    const struct {
        const char *what, *mode;
        Codes codes;
        void (*edit)(Chars &chars);
    } cases[] = {
        {"limit above the maximum", "NEW", value, [](Chars &c) { c.max_neg_sess_lim = 7; }},
        {"winners above the limit", "NEW", value, [](Chars &c) { c.min_conwin_src = 9; }},
        {"losers that are left", "NEW", OK_CODES, [](Chars &c) { c.min_conloser_src = 4; }},
        {"one more", "NEW", value, [](Chars &c) { c.min_conloser_src = 5; }},
        {"all winners", "NEW", OK_CODES, [](Chars &c) { c.auto_act = 4; }},
        {"started by itself: no winner", "NEW", value, [](Chars &c) { c.auto_act = 5; }},
        {"sizes", "NEW", OK_CODES,
         [](Chars &c) { c.default_ru_size = 0, c.max_ru_size_upp = c.max_ru_size_low = 256; }},
        {"size too low", "NEW", value,
         [](Chars &c) { c.default_ru_size = 0, c.max_ru_size_upp = 256, c.max_ru_size_low = 255; }},
        {"bounds crossed", "NEW", value,
         [](Chars &c) { c.default_ru_size = 0, c.max_ru_size_upp = 300, c.max_ru_size_low = 301; }},
        {"size too high", "NEW", value, [](Chars &c) { c.max_ru_size_upp = 61441; }},
        {"window of the maximum", "NEW", OK_CODES, [](Chars &c) { c.max_receive_pacing_win = 7; }},
        {"window above it", "NEW", value, [](Chars &c) { c.max_receive_pacing_win = 6; }},
        {"window above any", "NEW", value,
         [](Chars &c) { c.max_receive_pacing_win = 32767, c.receive_pacing_win = 64; }},
        {"no window", "NEW", value, [](Chars &c) { c.receive_pacing_win = 0; }},
        {"maximum above any", "NEW", value, [](Chars &c) { c.max_receive_pacing_win = 32768; }},
        {"no class of service", "NEW", parameter(NAP_INVALID_NAME),
         [](Chars &c) { memset(c.cos_name, 0x40, sizeof c.cos_name); }},
        {"0 0", "SNASVCMG", OK_CODES, [](Chars &c) { limits(c, 0, 0); }},
        {"1 0", "SNASVCMG", OK_CODES, [](Chars &c) { limits(c, 1, 0); }},
        {"1 1", "SNASVCMG", value, [](Chars &c) { limits(c, 1, 1); }},
        {"2 0", "SNASVCMG", value, [](Chars &c) { limits(c, 2, 0); }},
        {"2 1", "SNASVCMG", OK_CODES, [](Chars &c) { limits(c, 2, 1); }},
        {"3 1", "SNASVCMG", value, [](Chars &c) { limits(c, 3, 1); }},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(std::string(one.mode) + " " + one.what);
        const List before = rig.list(NAP_QUERY_MODE_DEFINITION);
        EXPECT_EQ(define_mode(one.mode, one.edit), one.codes);
        if (one.codes != OK_CODES) {
            EXPECT_EQ(rig.list(NAP_QUERY_MODE_DEFINITION).entries, before.entries);
        }
    }
}

TEST_F(Operating, CompressionHasLevelsOnlyWhileItIsOn) {
    for (const NB_UCHAR on : {1, 0}) {
        const auto edit = [on](NAP_MODE_CHARS &chars) {
            chars.compression = on;
            chars.max_compress_lvl = NAP_COMPRESSION_LZ10;
            chars.max_decompress_lvl = NAP_COMPRESSION_RLE;
        };
        EXPECT_EQ(define_mode("NEW", edit), OK_CODES);
        const NAP_MODE_CHARS kept = definition("NEW").mode_chars;
        EXPECT_EQ(kept.max_compress_lvl, on * NAP_COMPRESSION_LZ10);
        EXPECT_EQ(kept.max_decompress_lvl, on * NAP_COMPRESSION_RLE);
    }
}

/* Which nodes need one is said in their text; who needs none may still not name one that is not
 * there. */
TEST(NodeModes, NeedAClassOfServiceWhereTheNodeRoutes) {
    const struct {
        const char *type;
        bool needed;
    } cases[] = {
        {"network_node", true},
        {"branch_network_node", true},
        {"end_node", false},
        {"end_node\ncos_mapping = yes", true},
        {"len_node\ncos_mapping = yes", false},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.type);
        Rig rig;
        rig.load(std::string("[domain]\n[node one]\nfq_cp_name = NETA.ONE\nnode_type = ") +
                 one.type + "\n");
        NAP_DEFINE_MODE_VERB verb = {};
        verb.opcode = NAP_DEFINE_MODE;
        put(verb.mode_name, ebcdic("NEW"));
        verb.mode_chars.receive_pacing_win = verb.mode_chars.default_ru_size = 1;
        EXPECT_EQ(rig.issue(verb), one.needed ? parameter(NAP_INVALID_NAME) : OK_CODES);
        put(verb.mode_chars.cos_name, ebcdic("#INTER"));
        EXPECT_EQ(rig.issue(verb), OK_CODES);
        put(verb.mode_chars.cos_name, ebcdic("NOCOS"));
        EXPECT_EQ(rig.issue(verb), parameter(NAP_UNKNOWN_OWNER));
    }
}

TEST(NodeDownstream, PusShareTheVerbsOfPus) {
    Rig rig;
    rig.load("[domain]\n[node one]\nfq_cp_name = NETA.ONE\n[dlc D]\n[port P]\ndlc_name = D\n"
             "[ls BELOW]\nport_name = P\nadj_cp_type = downstream\npu_name = DOWNPU\n");
    rig.pass(8000);
    const auto pu = [&rig] {
        return rig.entry<NAP_DOWN_PU_DATA>(node::CLASS_DOWN_PU, ebcdic("DOWNPU"))
            .pu_sscp_sess_active;
    };
    EXPECT_EQ(pu(), NAP_ACTIVE);
    EXPECT_EQ(rig.by_key(NAP_STOP_PU, ebcdic("DOWNPU")), OK_CODES);
    rig.pass(1000);
    EXPECT_EQ(pu(), NAP_NOT_ACTIVE);
    EXPECT_EQ(rig.by_key(NAP_START_PU, ebcdic("NOPU")), parameter(NAP_UNKNOWN_RESOURCE));
    EXPECT_EQ(rig.by_key(NAP_START_PU, ebcdic("DOWNPU")), OK_CODES);
    rig.pass(1000);
    EXPECT_EQ(pu(), NAP_ACTIVE);
}

} // namespace
