#include "node_support.h"

#include <map>
#include <random>
#include <set>

using namespace node_test;
using node::Engine;

namespace {

constexpr NB_UCHAR FIRST = NAP_FIRST_IN_LIST | NAP_DETAIL;
constexpr NB_UCHAR NEXT = NAP_LIST_FROM_NEXT | NAP_DETAIL;
constexpr NB_UCHAR AT = NAP_LIST_INCLUSIVE | NAP_DETAIL;

NAP_DEFINE_PORT_VERB port(const std::string &name, const std::string &dlc_name) {
    NAP_DEFINE_PORT_VERB verb = {};
    verb.opcode = NAP_DEFINE_PORT;
    put(verb.port_name, local8(name));
    put(verb.def_data.dlc_name, local8(dlc_name));
    verb.def_data.port_type = NAP_PORT_SHARED_ACCESS;
    verb.def_data.ls_role = NAP_LS_NEGOTIABLE;
    verb.def_data.max_rcv_btu_size = 1500;
    verb.def_data.tot_link_act_lim = 10;
    return verb;
}

NAP_DEFINE_LS_VERB ls(const std::string &name, const std::string &port_name,
                      const std::string &pu_name = "") {
    NAP_DEFINE_LS_VERB verb = {};
    verb.opcode = NAP_DEFINE_LS;
    put(verb.ls_name, local8(name));
    put(verb.def_data.port_name, local8(port_name));
    verb.def_data.adj_cp_type = pu_name.empty() ? NAP_ADJ_NODE_LEARN : NAP_ADJ_HOST;
    put(verb.def_data.pu_name, ebcdic(pu_name));
    verb.def_data.ls_role = NAP_LS_NEGOTIABLE;
    verb.def_data.max_send_btu_size = 1500;
    return verb;
}

NAP_DEFINE_LU03_VERB lu03(const std::string &pu, const std::string &name, NB_UCHAR address) {
    NAP_DEFINE_LU03_VERB verb = {};
    verb.opcode = NAP_DEFINE_LU_0_TO_3;
    put(verb.pu_name, ebcdic(pu));
    put(verb.lu_name, ebcdic(name));
    verb.def_data.nau_address = address;
    verb.def_data.lu_model = NAP_LU_3270_DISPLAY_MODEL_2;
    return verb;
}

NAP_DEFINE_LOCAL_LU_VERB local_lu(const std::string &name, const std::string &alias) {
    NAP_DEFINE_LOCAL_LU_VERB verb = {};
    verb.opcode = NAP_DEFINE_LOCAL_LU;
    put(verb.lu_name, ebcdic(name));
    put(verb.def_data.lu_alias, local8(alias));
    return verb;
}

NAP_DEFINE_MODE_VERB mode(const std::string &name) {
    NAP_DEFINE_MODE_VERB verb = {};
    verb.opcode = NAP_DEFINE_MODE;
    put(verb.mode_name, ebcdic(name));
    verb.mode_chars.default_ru_size = 1;
    verb.mode_chars.receive_pacing_win = 7;
    verb.mode_chars.max_neg_sess_lim = 8;
    verb.mode_chars.plu_mode_session_limit = 8;
    verb.mode_chars.min_conwin_src = 4;
    put(verb.mode_chars.cos_name, ebcdic("#INTER"));
    return verb;
}

void reads_whole_in_any_buffer(Rig &rig, NB_USHORT opcode, const node::Schema &schema) {
    const List whole = rig.list(opcode);
    const size_t key_size = schema.key_size();
    ASSERT_EQ(whole.codes, OK_CODES);
    EXPECT_EQ(whole.count, whole.total);
    const unsigned size = static_cast<unsigned>(whole.entries[0].size());
    EXPECT_TRUE(size == schema.overlay_size() || schema.nested.cuts);
    for (const unsigned buffer : {size, size + 3, 2 * size, 3 * size - 1}) {
        EXPECT_EQ(rig.read_all(opcode, key_size, buffer).entries, whole.entries);
    }
    EXPECT_EQ(rig.list(opcode, FIRST, "", 0, 0, size - 1).codes, parameter(NAP_BAD_LENGTH));
    const std::string last = whole.entries.back().substr(2, key_size);
    const List behind = rig.list(opcode, NEXT, last);
    EXPECT_EQ(behind.codes, OK_CODES);
    EXPECT_EQ(behind.count + behind.total, 0U);
    const List single = rig.list(opcode, AT, last, 0, 1);
    ASSERT_EQ(single.count, 1U);
    EXPECT_EQ(single.entries[0], whole.entries.back());
}

TEST(NodeLists, EveryClassIsReadWholeInBuffersOfAnySize) {
    Rig rig;
    rig.load(SMALL_NODE);
    rig.pass(5000);
    const Lists lists = all_lists(rig);
    EXPECT_GE(lists.size(), 15U);
    for (const auto &list : lists) {
        SCOPED_TRACE(nap_find_verb(list.first)->name);
        reads_whole_in_any_buffer(rig, list.first, *records::schema_by_verb(list.first));
    }
}

TEST(NodeLists, StartPositionsAndOptions) {
    Rig rig;
    rig.load(SMALL_NODE);
    EXPECT_EQ(rig.list(NAP_QUERY_PORT, AT, local8("ETH05"), 0, 1).codes,
              parameter(NAP_UNKNOWN_RESOURCE));
    EXPECT_EQ(rig.list(NAP_QUERY_PORT, AT, local8("ETH05")).names(),
              std::vector<std::string>{"ETH1"});
    EXPECT_EQ(rig.list(NAP_QUERY_PORT, AT, local8("eth1"), 0, 1).count, 1U)
        << "case does not count";
    EXPECT_EQ(rig.list(NAP_QUERY_PORT, NEXT, local8("AAA")).count, 2U);
    for (const NB_UCHAR bad : {0, 1, 12, 20, 24, 28, 16 | 2, 16 | 64, 16 | 128}) {
        EXPECT_EQ(rig.list(NAP_QUERY_PORT, bad).codes, parameter(NAP_INVALID_LIST_OPTION))
            << int{bad};
    }
    EXPECT_EQ(rig.list(NAP_QUERY_PORT, FIRST, "", 9).codes, parameter(NAP_INVALID_LIST_OPTION));
    EXPECT_EQ(rig.list(NAP_QUERY_CN).codes, OK_CODES);
    EXPECT_EQ(rig.list(NAP_QUERY_CN, AT, "X", 0, 1).codes, parameter(NAP_UNKNOWN_RESOURCE));
}

TEST(NodeLists, OwnerFilter) {
    Rig rig;
    rig.load(SMALL_NODE);
    const std::vector<std::string> host = {"LU01", "LU02", "LU03", "LU04", "LU05", "LU06"};
    const std::string owner = ebcdic("HOSTPU");
    EXPECT_EQ(rig.list(NAP_QUERY_LU_0_TO_3, FIRST, owner, 8).names(10, true), host);
    EXPECT_EQ(rig.list(NAP_QUERY_LU_0_TO_3, FIRST, ebcdic("HOST"), 8).total, 0U);
    const List behind = rig.list(NAP_QUERY_LU_0_TO_3, NEXT, owner + ebcdic("LU04"), 8);
    EXPECT_EQ(behind.names(10, true), (std::vector<std::string>{"LU05", "LU06"}));
    EXPECT_EQ(behind.total, 2U);
    EXPECT_EQ(rig.list(NAP_QUERY_LU_0_TO_3, NEXT, ebcdic("DLPU") + ebcdic("DL03"), 8).total, 0U)
        << "the list ends with its owner";
}

TEST(NodeLists, OrderIsThatOfTheLocalCodePageWithoutCase) {
    Rig rig;
    rig.load("[domain]\n[node one]\nfq_cp_name = NETA.ONE\n");
    for (const char *name : {"eth2", "ETH10", "ETH1", "Eth3", "B", "AA", "a"}) {
        NAP_DEFINE_DLC_VERB verb = dlc(name);
        EXPECT_EQ(rig.issue(verb), OK_CODES);
    }
    EXPECT_EQ(rig.list(NAP_QUERY_DLC).names(),
              (std::vector<std::string>{"a", "AA", "B", "ETH1", "ETH10", "eth2", "Eth3"}));
    for (const char *name : {"Z", "A1", "AA", "A@", "A#", "A$", "A"}) {
        NAP_DEFINE_LOCAL_LU_VERB verb = local_lu(name, name);
        EXPECT_EQ(rig.issue(verb), OK_CODES);
    }
    EXPECT_EQ(rig.list(NAP_QUERY_LOCAL_LU).names(2, true),
              (std::vector<std::string>{"A", "A#", "A$", "A1", "A@", "AA", "Z"}));
}

/* Random definitions and deletions against a plain set, with lists read at random sizes. */
TEST(NodeLists, AgreeWithAPlainSet) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    Rig rig;
    rig.load(SMALL_NODE);
    std::set<std::string> model;
    for (const std::string &name : rig.list(NAP_QUERY_LOCAL_LU).names(2, true)) {
        model.insert(name);
    }
    for (int step = 0; step < 2000; step++) {
        const std::string name = "R" + std::to_string(random() % 300);
        if (random() % 3 != 0) {
            NAP_DEFINE_LOCAL_LU_VERB verb = local_lu(name, name);
            EXPECT_EQ(rig.issue(verb), OK_CODES);
            model.insert(name);
        } else {
            const Codes expected =
                model.erase(name) == 1 ? OK_CODES : parameter(NAP_UNKNOWN_RESOURCE);
            EXPECT_EQ(rig.by_key(NAP_DELETE_LOCAL_LU, ebcdic(name)), expected);
        }
        if (step % 50 == 0) {
            const auto size =
                static_cast<unsigned>(sizeof(NAP_LOCAL_LU_DATA) * (1 + random() % 40));
            EXPECT_EQ(rig.read_all(NAP_QUERY_LOCAL_LU, 8, size).names(2, true),
                      std::vector<std::string>(model.begin(), model.end()));
        }
    }
}

TEST(NodeVerbs, BadBlocks) {
    Rig rig;
    rig.load(SMALL_NODE);
    node::Answer answer;
    const auto codes = [&](NB_USHORT opcode, NB_UCHAR format, size_t length) {
        std::vector<NB_UCHAR> block(length);
        NAP_VCB header = {};
        header.opcode = opcode;
        header.format = format;
        memcpy(block.data(), &header, sizeof header);
        rig.engine.execute(block.data(), block.size(), answer);
        memcpy(&header, answer.block.data(), sizeof header);
        EXPECT_EQ(answer.block.size(), length);
        return Codes(header.primary_rc, header.secondary_rc);
    };
    const Codes unknown = {NAP_NOT_SUPPORTED, 0};
    EXPECT_EQ(codes(0x7777, 0, 12), unknown);
    EXPECT_EQ(codes(NAP_QUERY_PORT, 1, sizeof(NAP_QUERY_LIST)), unknown);
    EXPECT_EQ(codes(NAP_QUERY_PORT, 0, sizeof(NAP_QUERY_LIST) + 4), unknown);
    EXPECT_EQ(codes(NAP_QUERY_PORT, 0, 12), parameter(NAP_BAD_LENGTH));
    EXPECT_EQ(codes(NAP_PORT_INDICATION, 0, sizeof(NAP_RESOURCE_INDICATION)), unknown);
    /* every verb there is, all zeroes: any answer but a crash or an invented success of a change */
    for (const NAP_VERB &verb : gnap_verbs) {
        const Codes got = codes(verb.opcode, 0, verb.block_size);
        if (verb.kind == NAP_KIND_DEFINE || verb.kind == NAP_KIND_DELETE) {
            /* the blank mode, the record of all other clients, settings */
            const bool may_be_zero = verb.opcode == NAP_DELETE_MODE ||
                                     verb.opcode == NAP_DEFINE_TN3270_ACCESS ||
                                     verb.opcode == NAP_DELETE_TN3270_ACCESS ||
                                     records::settings_by_verb(verb.opcode) != nullptr;
            EXPECT_TRUE(got.first != NAP_OK || may_be_zero) << verb.name;
        }
    }
}

TEST(NodeDefine, RefusesWhatIsWrong) {
    Rig rig;
    rig.load(SMALL_NODE);
    const auto refused = [&](auto verb, Codes codes, const char *what) {
        EXPECT_EQ(rig.issue(verb), codes) << what;
    };
    refused(dlc(""), parameter(NAP_INVALID_NAME), "no name");
    refused(dlc("A B"), parameter(NAP_INVALID_NAME), "a blank inside");
    refused(dlc(" AB"), parameter(NAP_INVALID_NAME), "a blank in front");
    refused(dlc("lan0"), parameter(NAP_DUPLICATE_NAME), "another spelling");
    refused(ls("L", "NOSUCH"), parameter(NAP_UNKNOWN_OWNER), "no such port");
    refused(ls("L", "ETH0", "HOSTPU"), parameter(NAP_DUPLICATE_NAME), "a PU of another link");
    refused(ls("L", "ETH0", "DLPU"), parameter(NAP_DUPLICATE_NAME), "a PU without a link");
    refused(ls("L", "ETH0", "1PU"), parameter(NAP_INVALID_NAME), "digit first");
    NAP_DEFINE_LS_VERB no_pu = ls("L", "ETH0", "X");
    put(no_pu.def_data.pu_name, ebcdic(""));
    refused(no_pu, parameter(NAP_INVALID_NAME), "a host link without a PU");
    refused(lu03("HOSTPU", "LUX", 2), parameter(NAP_INVALID_VALUE), "an address in use");
    refused(lu03("HOSTPU", "LUX", 0), parameter(NAP_INVALID_VALUE), "address 0");
    refused(lu03("DLPU", "LU01", 9), parameter(NAP_DUPLICATE_NAME), "an LU of another PU");
    refused(lu03("DLPU", "PAYLU", 9), parameter(NAP_DUPLICATE_NAME), "a local LU");
    refused(local_lu("LU01", "X"), parameter(NAP_DUPLICATE_NAME), "a dependent LU");
    refused(local_lu("NEWLU", "PAYROLL"), parameter(NAP_DUPLICATE_NAME), "an alias in use");
    refused(local_lu("ONE", "X"), parameter(NAP_DUPLICATE_NAME), "the control point's name");
    refused(local_lu("NEWLU", "ONE"), parameter(NAP_DUPLICATE_NAME), "the control point's alias");
    refused(local_lu("PAYLU", "Other"), state(NAP_IN_USE), "an alias that sessions name");
    refused(local_lu("paylu", "X"), parameter(NAP_INVALID_NAME), "lower case");
    NAP_DEFINE_MODE_VERB bad_mode = mode("M");
    bad_mode.mode_chars.min_conwin_src = 9;
    refused(bad_mode, parameter(NAP_INVALID_VALUE), "more winners than sessions");
    bad_mode = mode("M");
    bad_mode.mode_chars.default_ru_size = 0;
    refused(bad_mode, parameter(NAP_INVALID_VALUE), "sizes not given");
    bad_mode = mode("M");
    put(bad_mode.mode_chars.cos_name, ebcdic("NOCOS"));
    refused(bad_mode, parameter(NAP_UNKNOWN_OWNER), "no such class of service");
    refused(directory("NETX.CP", "NETX.LU", NAP_DIR_LU), parameter(NAP_UNKNOWN_OWNER),
            "no such CP");
    refused(directory("NETX.CP", "NETX.OTHER", NAP_DIR_END_NODE), parameter(NAP_INVALID_VALUE),
            "own");
    refused(directory("NETX", "NETX", NAP_DIR_END_NODE), parameter(NAP_INVALID_NAME),
            "unqualified");
    EXPECT_EQ(rig.list(NAP_QUERY_DLC).total + rig.list(NAP_QUERY_LS).total, 4U)
        << "nothing came of it";
}

TEST(NodeDefine, ChangesInPlaceAndFillsTheAnswer) {
    Rig rig;
    rig.load(SMALL_NODE);
    NAP_DEFINE_PORT_VERB verb = port("ETH1", "lan0");
    strcpy(reinterpret_cast<char *>(verb.def_data.description), "changed");
    EXPECT_EQ(rig.issue(verb), OK_CODES);
    EXPECT_EQ(verb.def_data.dlc_type, NAP_DLC_ETHERNET);
    EXPECT_EQ(std::string(reinterpret_cast<char *>(verb.def_data.dlc_name), 8), local8("LAN0"))
        << "as the owner spells it";
    EXPECT_EQ(rig.list(NAP_QUERY_PORT).total, 2U);
    const auto entry = rig.entry<NAP_PORT_DATA>(node::CLASS_PORT, local8("ETH1"));
    EXPECT_STREQ(reinterpret_cast<const char *>(entry.def_data.description), "changed");
    NAP_DEFINE_MODE_VERB sna = mode("#INTER");
    EXPECT_EQ(rig.issue(sna), OK_CODES);
    EXPECT_EQ(sna.mode_chars.sna_defined, 1);
    NAP_DEFINE_LS_VERB link = ls("HOST", "ETH0", "NEWPU");
    EXPECT_EQ(rig.issue(link), state(NAP_IN_USE)) << "LUs hang on its PU";
    NAP_DEFINE_LS_VERB made = ls("SECOND", "ETH0", "PUTWO");
    EXPECT_EQ(rig.issue(made), OK_CODES);
    put(made.def_data.pu_name, ebcdic("PUTHREE"));
    EXPECT_EQ(rig.issue(made), OK_CODES);
    EXPECT_EQ(rig.list(NAP_QUERY_PU).names(2, true),
              (std::vector<std::string>{"HOSTPU", "PUTHREE"}));
}

TEST(NodeDefine, DeleteAsksWhoElseNeedsIt) {
    Rig rig;
    rig.load(SMALL_NODE);
    EXPECT_EQ(rig.by_key(NAP_DELETE_DLC, local8("LAN0")), state(NAP_IN_USE));
    EXPECT_EQ(rig.by_key(NAP_DELETE_LS, local8("HOST")), state(NAP_IN_USE));
    EXPECT_EQ(rig.by_key(NAP_DELETE_INTERNAL_PU, ebcdic("HOSTPU")), state(NAP_IN_USE));
    EXPECT_EQ(rig.by_key(NAP_DELETE_INTERNAL_PU, ebcdic("DLPU")), state(NAP_IN_USE));
    EXPECT_EQ(rig.by_key(NAP_DELETE_MODE, ebcdic("PAYMODE")), state(NAP_IN_USE));
    EXPECT_EQ(rig.by_key(NAP_DELETE_MODE, ebcdic("#BATCH")), parameter(NAP_INVALID_NAME));
    EXPECT_EQ(rig.by_key(NAP_DELETE_COS, ebcdic("#BATCH")), parameter(NAP_INVALID_NAME));
    const std::string north = ebcdic("NETA.NORTH", 17);
    const std::string node_type = {static_cast<char>(NAP_DIR_NETWORK_NODE), 0};
    EXPECT_EQ(rig.by_key(NAP_DELETE_DIRECTORY_ENTRY, north + north + node_type), state(NAP_IN_USE));
    EXPECT_EQ(rig.by_key(NAP_DELETE_LOCAL_LU, ebcdic("PAYLU")), OK_CODES);
    EXPECT_EQ(rig.list(NAP_QUERY_MODE).total + rig.list(NAP_QUERY_PARTNER_LU).total, 0U)
        << "what the LU used goes with it";
    for (const char *name : {"DL01", "DL02", "DL03"}) {
        EXPECT_EQ(rig.by_key(NAP_DELETE_LU_0_TO_3, ebcdic("DLPU") + ebcdic(name)), OK_CODES);
    }
    EXPECT_EQ(rig.by_key(NAP_DELETE_INTERNAL_PU, ebcdic("DLPU")), OK_CODES);
    EXPECT_EQ(rig.list(NAP_QUERY_DLUR_PU).total, 0U);
}

} // namespace
