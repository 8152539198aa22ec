// Session limits of modes in use: what the node allows, and what follows.
#include "node_support.h"

using namespace node_test;

namespace {

/* A mode with at most 8 sessions, of which 3 are wanted, and one that control points use. */
const std::string TEXT = std::string(SMALL_NODE) + "[mode_in_use Payroll CPSVCMG NETA.LEDGER]\n";

struct SessionLimit : testing::Test {
    Rig rig;

    static NAP_SESSION_LIMIT_VERB verb(unsigned limit, unsigned winners, unsigned losers,
                                       const char *mode = "PAYMODE") {
        NAP_SESSION_LIMIT_VERB made = {};
        made.opcode = NAP_CHANGE_SESSION_LIMIT;
        memcpy(made.lu_alias, local8("Payroll").data(), 8);
        memcpy(made.mode_name, ebcdic(mode).data(), 8);
        memcpy(made.fqplu_name, ebcdic("NETA.LEDGER", 17).data(), 17);
        made.sess_limit = static_cast<NB_USHORT>(limit);
        made.min_conwinners = static_cast<NB_USHORT>(winners);
        made.min_conlosers = static_cast<NB_USHORT>(losers);
        return made;
    }
    NAP_MODE_DATA mode() {
        return rig.entry<NAP_MODE_DATA>(node::CLASS_MODE, local8("Payroll") + ebcdic("PAYMODE") +
                                                              ebcdic("NETA.LEDGER", 17));
    }
    Codes set(unsigned limit, unsigned winners, unsigned losers, const char *mode = "PAYMODE") {
        NAP_SESSION_LIMIT_VERB block = verb(limit, winners, losers, mode);
        return rig.issue(block);
    }
};

TEST_F(SessionLimit, SessionsFollow) {
    rig.load(TEXT);
    EXPECT_EQ(set(2, 1, 1), state(NAP_NODE_NOT_ACTIVE));
    rig.pass(8000);
    ASSERT_EQ(mode().act_sess_count, 3);
    rig.heard.all.clear();
    EXPECT_EQ(set(2, 1, 0), OK_CODES);
    EXPECT_EQ(mode().sess_limit, 2);
    EXPECT_EQ(mode().min_conwinners, 1);
    EXPECT_EQ(mode().min_conlosers, 0);
    rig.pass(100);
    EXPECT_EQ(mode().act_sess_count, 2) << "no more than the limit";
    ASSERT_FALSE(rig.heard.all.empty());
    EXPECT_EQ(rig.heard.all.front().opcode, NAP_MODE_INDICATION);
    EXPECT_EQ(set(0, 0, 0), OK_CODES);
    rig.pass(100);
    EXPECT_EQ(mode().act_sess_count, 0);
    EXPECT_EQ(set(8, 8, 0), OK_CODES);
    rig.pass(100);
    EXPECT_EQ(mode().act_sess_count, 3);
}

TEST_F(SessionLimit, RefusesWhatTheModeDoesNotAllow) {
    rig.load(TEXT);
    rig.pass(8000);
    const struct {
        unsigned limit, winners, losers;
    } bad[] = {{9, 0, 0}, {4, 5, 0}, {4, 2, 3}, {0, 1, 0}, {0, 0, 1}, {65535, 0, 0}};
    for (const auto &one : bad) {
        EXPECT_EQ(set(one.limit, one.winners, one.losers), parameter(NAP_INVALID_VALUE))
            << one.limit;
    }
    EXPECT_EQ(set(2, 1, 1, "CPSVCMG"), parameter(NAP_INVALID_NAME));
    EXPECT_EQ(set(2, 1, 1, "NIGHTLY"), parameter(NAP_UNKNOWN_RESOURCE));
    EXPECT_EQ(mode().sess_limit, 8);
}

} // namespace
