/* The node software as processes: this program runs it as a child, and is the nodes, too. */
#include "runningnode.h"

#include "admission.h"
#include "rights.h"

#include <grp.h>
#include <map>
#include <numeric>
#include <optional>
#include <set>
#include <sqlite3.h>
#include <sys/stat.h>

using namespace node_test;

namespace {

constexpr uid_t NOBODY = 65534;

TEST(NodeFront, GreetsAndEndsOrderly) {
    Running node;
    EXPECT_EQ(node.printed, "snanode: domain pair ready\n");
    Client client(node.socket());
    EXPECT_EQ(client.hello.version, NB_ULONG{NOF_WIRE_VERSION});
    EXPECT_EQ(client.hello.rights, NB_ULONG{NOF_RIGHT_CHANGE});
    EXPECT_EQ(client.hello.client_server, 1U);
    EXPECT_EQ(client.query(0, NAP_QUERY_NODE_ALL), OK_CODES);
    EXPECT_EQ(client.total, 2U);
    const std::vector<pid_t> children = node.nodes();
    EXPECT_EQ(children.size(), 2U);
    EXPECT_EQ(node.stop(), 0);
    EXPECT_FALSE(std::filesystem::exists(node.socket()));
    for (const pid_t child : children) {
        EXPECT_EQ(kill(child, 0), -1);
    }
}

TEST(NodeFront, OneAtATimeAndNoStaleSocket) {
    Running node;
    const pid_t first = node.pid;
    node.start();
    EXPECT_NE(node.printed.find("is in use by another snanode"), std::string::npos) << node.printed;
    EXPECT_EQ(WEXITSTATUS(node.stop(0)), 1);
    node.start({"--state", node.folder.file("other")});
    EXPECT_NE(node.printed.find("another snanode answers on"), std::string::npos) << node.printed;
    EXPECT_EQ(WEXITSTATUS(node.stop(0)), 1);
    node.write("letters", "mine");
    node.start({"--state", node.folder.file("other"), "--socket", node.folder.file("letters")});
    EXPECT_NE(node.printed.find("letters is there and is not a socket"), std::string::npos)
        << node.printed;
    EXPECT_EQ(WEXITSTATUS(node.stop(0)), 1);
    EXPECT_EQ(std::filesystem::file_size(node.folder.file("letters")), 4U);
    node.pid = first;
    node.stop(SIGKILL);
    EXPECT_TRUE(std::filesystem::exists(node.socket()));
    node.start();
    EXPECT_NE(node.printed.find("ready"), std::string::npos) << node.printed;
    node.stop();
    node.write("pair.domain", "[domain]\n[node x]\nfq_cp_name = bad name\n");
    node.start();
    EXPECT_NE(node.printed.find("pair.domain:3: "), std::string::npos) << node.printed;
    EXPECT_EQ(WEXITSTATUS(node.stop(0)), 1);
    node.start({"--nonsense"});
    EXPECT_NE(node.printed.find("usage: "), std::string::npos);
    EXPECT_EQ(WEXITSTATUS(node.stop(0)), 2);
}

TEST(NodeFront, TargetsBelongToTheirClientAndPlace) {
    Running node;
    Client one(node.socket());
    Client two(node.socket());
    const NB_ULONG system = one.open(NAP_SYSTEM_FILE);
    const NB_ULONG network = one.open(NAP_NETWORK_FILE);
    const NB_ULONG target = one.join("ONE");
    const Codes bad = parameter(NAP_BAD_TARGET);
    EXPECT_EQ(one.query(target, NAP_QUERY_DLC), OK_CODES);
    EXPECT_EQ(two.query(target, NAP_QUERY_DLC), bad);
    EXPECT_EQ(two.query(12345, NAP_QUERY_DLC), bad);
    EXPECT_EQ(one.query(0, NAP_QUERY_DLC), bad);
    EXPECT_EQ(one.query(system, NAP_QUERY_DLC), bad);
    EXPECT_EQ(one.query(system, NAP_QUERY_CPIC_SIDE_INFO), OK_CODES);
    EXPECT_EQ(one.query(network, NAP_QUERY_CPIC_SIDE_INFO), bad);
    EXPECT_EQ(one.query(network, NAP_QUERY_SNA_NET), OK_CODES);
    EXPECT_EQ(one.query(target, NAP_QUERY_NODE_ALL), bad);
    NAP_VCB close_verb = {};
    close_verb.opcode = NAP_DISCONNECT_NODE;
    EXPECT_EQ(two.issue(target, close_verb), bad);
    EXPECT_EQ(one.issue(target, close_verb), OK_CODES);
    EXPECT_EQ(one.query(target, NAP_QUERY_DLC), bad);
    EXPECT_GT(one.join("one"), target) << "a handle is not given out again";
    one.join("three", parameter(NAP_UNKNOWN_RESOURCE));
    NAP_VCB unknown = {};
    unknown.opcode = 0x7777;
    EXPECT_EQ(one.issue(0, unknown), (Codes{NAP_NOT_SUPPORTED, 0}));
    EXPECT_EQ(one.listen_to(0, NAP_QUERY_DLC), parameter(NAP_INVALID_VALUE));
}

TEST(NodeFront, GarbageEndsItsOwnConnectionOnly) {
    Running node;
    Client good(node.socket());
    NAP_VCB verb = {};
    verb.opcode = NAP_QUERY_NODE;
    auto zero_correlator = node::make_frame(NOF_FRAME_VERB, 0, 0, &verb, sizeof verb);
    auto wrong_kind = node::make_frame(NOF_FRAME_ANSWER, 1, 0, &verb, sizeof verb);
    auto with_data = node::make_frame(NOF_FRAME_VERB, 1, 0, &verb, sizeof verb, &verb, sizeof verb);
    const std::vector<std::vector<NB_UCHAR>> garbage = {std::vector<NB_UCHAR>(100, 0xFF),
                                                        zero_correlator, wrong_kind, with_data};
    for (const std::vector<NB_UCHAR> &bytes : garbage) {
        Client bad(node.socket());
        Frame frame;
        bad.raw(bytes);
        EXPECT_FALSE(bad.receive(frame)) << "the connection ends";
    }
    EXPECT_EQ(good.query(0, NAP_QUERY_NODE_ALL), OK_CODES);
}

TEST(NodeFront, CopiesGoToTheOthers) {
    Running node;
    Client one(node.socket());
    Client two(node.socket());
    const NB_ULONG mine = one.join("one");
    const NB_ULONG theirs = two.join("one");
    const NB_ULONG elsewhere = two.join("two");
    for (const NB_ULONG target : {theirs, elsewhere}) {
        EXPECT_EQ(two.listen_to(target, NAP_CONFIG_COPIES), OK_CODES);
    }
    EXPECT_EQ(one.listen_to(mine, NAP_CONFIG_COPIES), OK_CODES);
    for (const auto &[client, target] : {std::pair(&one, mine), {&two, theirs}}) {
        EXPECT_EQ(client->listen_to(target, NAP_DLC_INDICATION), OK_CODES);
    }
    EXPECT_EQ(one.define_dlc(mine, "NEW"), OK_CODES);
    const auto tells = [](const Frame &frame) {
        return node::block_opcode(frame.block) == NAP_DLC_INDICATION &&
               memcmp(frame.block.data() + 13, "NEW     ", 8) == 0;
    };
    EXPECT_TRUE(std::none_of(one.heard.begin(), one.heard.end(), tells))
        << "what follows from a verb comes behind its answer";
    EXPECT_EQ(one.define_dlc(mine, "new"), parameter(NAP_DUPLICATE_NAME));
    EXPECT_EQ(two.define_dlc(theirs, "SECOND"), OK_CODES);
    NAP_DEFINE_DLC_VERB copy = {};
    const auto copied = std::find_if(two.heard.begin(), two.heard.end(), [](const Frame &frame) {
        return node::block_opcode(frame.block) == NAP_DEFINE_DLC;
    });
    EXPECT_TRUE(std::none_of(two.heard.begin(), copied, tells)) << "and behind its copy";
    ASSERT_TRUE(two.hear(NAP_DEFINE_DLC, copy));
    EXPECT_EQ(node::local_text(copy.dlc_name, 8), "NEW");
    EXPECT_EQ(copy.primary_rc, NAP_INDICATION);
    ASSERT_TRUE(one.hear(NAP_DEFINE_DLC, copy));
    EXPECT_EQ(node::local_text(copy.dlc_name, 8), "SECOND") << "never one's own";
    EXPECT_TRUE(std::none_of(two.heard.begin(), two.heard.end(), [](const Frame &frame) {
        return node::block_opcode(frame.block) == NAP_DEFINE_DLC;
    })) << "nothing failed was copied, and nothing twice";
    for (const NB_USHORT opcode : {NAP_STOP_DLC, NAP_START_DLC, NAP_START_DLC, NAP_STOP_DLC}) {
        NAP_NAME_VERB verb = {};
        verb.opcode = opcode;
        memcpy(verb.key, "NEW     ", 8);
        for (int tries = 0; tries < 500 && one.issue(mine, verb) != OK_CODES; tries++) {
            usleep(10000); /* the node is starting */
            verb.opcode = opcode;
        }
        EXPECT_EQ(verb.primary_rc, NAP_OK);
    }
    NAP_NAME_VERB stop_node = {};
    NAP_NODE_STATUS_INDICATION_VERB state = {};
    stop_node.opcode = NAP_STOP_NODE;
    EXPECT_EQ(one.issue(mine, stop_node), OK_CODES);
    std::vector<NB_USHORT> copies;
    std::vector<Frame> came = std::move(two.heard);
    two.heard.clear();
    for (Frame frame; two.heard.empty() && two.receive(frame);) {
        came.push_back(frame);
        if (node::block_opcode(frame.block) == NAP_STOP_NODE) {
            two.heard.push_back(frame);
        }
    }
    for (const Frame &frame : came) {
        const NB_USHORT opcode = node::block_opcode(frame.block);
        if (opcode == NAP_START_DLC || opcode == NAP_STOP_DLC) {
            copies.push_back(opcode);
        }
    }
    EXPECT_EQ(copies, (std::vector<NB_USHORT>{NAP_START_DLC, NAP_STOP_DLC}))
        << "what changes nothing is not copied";
    ASSERT_TRUE(two.hear(NAP_STOP_NODE, state));
    EXPECT_EQ(state.node_state, NB_ULONG{NAP_NODE_STOPPING});
    ASSERT_TRUE(one.hear(NAP_STOP_NODE, state));
    EXPECT_EQ(state.node_state, NB_ULONG{NAP_NODE_STOPPED});
    EXPECT_STREQ(reinterpret_cast<const char *>(state.node_name), "one");
}

TEST(NodeFront, ANodeDiesAloneAndComesBackWithWhatWasAcknowledged) {
    Running node;
    Client client(node.socket());
    const NB_ULONG one = client.join("one");
    const NB_ULONG two = client.join("two");
    EXPECT_EQ(client.listen_to(0, NAP_SERVER_INDICATION), OK_CODES);
    EXPECT_EQ(client.listen_to(one, NAP_PORT_INDICATION), OK_CODES);
    EXPECT_EQ(client.define_dlc(one, "KEPT"), OK_CODES);
    const std::vector<pid_t> nodes = node.nodes();
    ASSERT_EQ(nodes.size(), 2U);
    kill(nodes[0], SIGSTOP);
    NAP_QUERY_NODE_VERB verb = {};
    verb.opcode = NAP_QUERY_NODE;
    const NB_ULONG flight = client.send_verb(one, verb);
    kill(nodes[0], SIGKILL);
    const Codes gone = {NAP_COMM_FAILURE, NAP_NODE_GONE};
    EXPECT_EQ(client.answer(flight, verb), gone);
    NAP_NOF_STATUS_INDICATION_VERB status = {};
    ASSERT_TRUE(client.hear(NAP_NOF_STATUS_INDICATION, status));
    EXPECT_EQ(status.status, NB_ULONG{NAP_NODE_GONE});
    EXPECT_EQ(status.target_handle, one);
    EXPECT_EQ(client.query(two, NAP_QUERY_DLC), OK_CODES) << "the other node is well";
    client.join("one", gone);
    client.wait_for_server("one", 1);
    EXPECT_EQ(client.query(one, NAP_QUERY_DLC), gone) << "the old target does not come back";
    const NB_ULONG again = client.join("one");
    EXPECT_EQ(client.query(again, NAP_QUERY_DLC), OK_CODES);
    EXPECT_EQ(client.total, 2U) << "LAN0 and KEPT";
}

/* A node that hangs holds nobody up but who asks it; libraries hear what is to fail. */
TEST(NodeFront, TheScriptHangsNodesAndTellsLibraries) {
    Running node;
    Client client(node.socket());
    const NB_ULONG one = client.join("one");
    node.write("faults", "hang one 600\nat-once NAP_START_LS 0x200 0x5545 2\n");
    kill(node.pid, SIGHUP);
    Frame frame;
    for (const int told : {0, int{NAP_START_LS}}) { /* the old ones are taken back */
        ASSERT_TRUE(client.receive(frame));
        EXPECT_EQ(frame.header.kind, NOF_FRAME_FAULT);
        EXPECT_EQ(node::block_opcode(frame.block), told);
    }
    NAP_QUERY_NODE_VERB verb = {};
    verb.opcode = NAP_QUERY_NODE;
    const NB_ULONG flight = client.send_verb(one, verb);
    EXPECT_EQ(client.query(client.join("two"), NAP_QUERY_DLC), OK_CODES);
    EXPECT_FALSE(client.receive(frame, 100)) << "nothing of the node that hangs";
    EXPECT_EQ(client.answer(flight, verb), OK_CODES);
}

/* Its queue is bounded meanwhile. */
TEST(NodeFront, ANodeThatHangsForEverIsReplaced) {
    Running node;
    node.stop();
    node.write("faults", "ask 400\n");
    node.start();
    Client watcher(node.socket());
    EXPECT_EQ(watcher.listen_to(0, NAP_SERVER_INDICATION), OK_CODES);
    constexpr size_t CLIENTS = 70, EACH = 240;
    NAP_QUERY_NODE_VERB verb = {};
    verb.opcode = NAP_QUERY_NODE;
    std::vector<std::unique_ptr<Client>> all;
    std::vector<NB_ULONG> targets;
    for (size_t at = 0; at < CLIENTS; at++) {
        all.push_back(std::make_unique<Client>(node.socket()));
        targets.push_back(all.back()->join("one"));
    }
    kill(node.nodes().at(0), SIGSTOP);
    for (size_t at = 0; at < CLIENTS * EACH; at++) {
        all[at / EACH]->send_verb(targets[at / EACH], verb);
    }
    watcher.wait_for_server("one", 0);
    std::map<Codes, size_t> answers;
    for (size_t at = 0; at < CLIENTS * EACH; at++) {
        Frame frame;
        ASSERT_TRUE(all[at / EACH]->receive(frame));
        memcpy(&verb, frame.block.data(), sizeof verb);
        answers[{verb.primary_rc, verb.secondary_rc}]++;
    }
    const size_t lost = answers[Codes{NAP_COMM_FAILURE, NAP_NODE_GONE}];
    const size_t busy = answers[Codes{NAP_STATE_CHECK, NAP_NODE_BUSY}];
    EXPECT_EQ(lost + busy, CLIENTS * EACH) << "none is forgotten";
    EXPECT_GT(busy, 0U);
    watcher.wait_for_server("one", 1);
    EXPECT_EQ(watcher.query(watcher.join("one"), NAP_QUERY_DLC), OK_CODES);
}

constexpr const char *BACKUP_OF_ONE = "[node two]\nserver = backup";

std::string pair_with_backup() {
    std::string text = TWO_NODES;
    return text.replace(text.find("[node two]"), 10, BACKUP_OF_ONE);
}

TEST(NodeFront, ABackupServerTakesOver) {
    Running node(pair_with_backup());
    Client client(node.socket());
    NAP_OPEN_FILE_VERB open_file = {};
    open_file.opcode = NAP_OPEN_FILE;
    open_file.file = NAP_SYSTEM_FILE;
    EXPECT_EQ(client.issue(0, open_file), OK_CODES);
    EXPECT_STREQ(reinterpret_cast<const char *>(open_file.node_name), "one");
    EXPECT_EQ(client.listen_to(0, NAP_SERVER_INDICATION), OK_CODES);
    EXPECT_EQ(client.listen_to(open_file.target_handle, NAP_NOF_STATUS_INDICATION), OK_CODES);
    kill(node.nodes().at(0), SIGKILL);
    client.wait_for_server("one", 0);
    NAP_NOF_STATUS_INDICATION_VERB status = {};
    ASSERT_TRUE(client.hear(NAP_NOF_STATUS_INDICATION, status));
    EXPECT_EQ(status.status, NB_ULONG{NAP_SYSTEM_FILE_CHANGED});
    EXPECT_EQ(status.target_handle, open_file.target_handle);
    client.wait_for_server("two", 1);
    EXPECT_EQ(client.query(open_file.target_handle, NAP_QUERY_CPIC_SIDE_INFO), OK_CODES);
    EXPECT_EQ(client.issue(0, open_file), OK_CODES);
    EXPECT_STREQ(reinterpret_cast<const char *>(open_file.node_name), "two");
    client.wait_for_server("one", 1);
}

TEST(NodeFront, OthersMayOnlyLook) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "needs root to be somebody else";
    }
    Running node;
    node.stop();
    const std::string state = node.folder.file("var/domain/pair");
    ASSERT_EQ(chmod(state.c_str(), 0755), 0);
    node.start();
    const pid_t looker = fork();
    if (looker == 0) {
        const bool other = setgroups(0, nullptr) == 0 && setgid(NOBODY) == 0 && setuid(NOBODY) == 0;
        const bool closed = access((state + "/lock").c_str(), F_OK) != 0;
        const bool told = access(node.folder.file("etc/domain").c_str(), R_OK) == 0;
        Client client(node.socket());
        const NB_ULONG target = other ? client.join("one") : 0;
        NAP_SET_PROCESSING_MODE_VERB mode = {};
        mode.opcode = NAP_SET_PROCESSING_MODE;
        mode.mode = NAP_MODE_ADMINISTER;
        const Codes refused = parameter(NAP_NO_PERMISSION);
        const bool right = other && closed && told && client.hello.rights == 0 &&
                           client.query(target, NAP_QUERY_DLC) == OK_CODES &&
                           client.define_dlc(target, "NEW") == refused &&
                           client.issue(target, mode) == refused;
        _exit(right ? 0 : 1);
    }
    int status = -1;
    waitpid(looker, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST(NodeFront, AMemberOfManyGroupsMayChange) {
    const group *one_of_them = geteuid() == 0 ? getgrnam("daemon") : nullptr;
    if (one_of_them == nullptr) {
        GTEST_SKIP() << "needs root to be somebody else";
    }
    std::vector<gid_t> groups(300);
    std::iota(groups.begin(), groups.end(), 70000);
    groups.back() = one_of_them->gr_gid;
    const pid_t member = fork();
    if (member == 0) {
        int ends[2];
        const bool other = setgroups(groups.size(), groups.data()) == 0 && setgid(NOBODY) == 0 &&
                           socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0 && seteuid(NOBODY) == 0;
        int as_nobody[2];
        const bool made = other && socketpair(AF_UNIX, SOCK_STREAM, 0, as_nobody) == 0;
        const bool back = made && seteuid(0) == 0; /* whom the node software runs as may, too */
        const bool right = back && node::Rights("daemon").of(as_nobody[0]).may_change &&
                           !node::Rights("no such group").of(as_nobody[0]).may_change &&
                           node::Rights("no such group").of(ends[0]).may_change;
        _exit(right ? 0 : 1);
    }
    int status = -1;
    waitpid(member, &status, 0);
    EXPECT_EQ(status, 0);
}

/* Who comes while these have their places, and what comes of it. */
TEST(NodeFront, PlacesGoToWhoUsesThem) {
    constexpr uid_t ROOT = 0, SOMEBODY = 1000;
    const node::PeerUser administrator = {SOMEBODY, 1, true}, looker = {SOMEBODY, 1, false};
    struct Group {
        size_t users, each;
        bool may_change, silent;
        uid_t first = 2000;
    };
    const struct {
        const char *what;
        std::vector<Group> seats;
        node::PeerUser newcomer;
        NB_ULONG refused;
        uint64_t leaves; /* counted from 1 */
    } rows[] = {
        {"a user has a limit", {{1, 64, false, false, SOMEBODY}}, looker, NAP_LIMIT_REACHED, 0},
        {"which is his own", {{1, 64, false, false}}, looker, 0, 0},
        {"his own silent ones go",
         {{9, 9, false, true}, {1, 63, false, false, SOMEBODY}, {1, 1, false, true, SOMEBODY}},
         looker,
         0,
         145},
        {"who may change has more", {{1, 191, true, false, SOMEBODY}}, administrator, 0, 0},
        {"but not all", {{1, 192, true, false, SOMEBODY}}, administrator, NAP_LIMIT_REACHED, 0},
        {"lookers leave some", {{4, 64, false, false}}, looker, NAP_NODE_BUSY, 0},
        {"for others", {{4, 64, false, false}, {1, 192, true, false}}, administrator, 0, 0},
        {"a looker takes no administrator's",
         {{2, 192, true, true}, {2, 64, false, false}},
         looker,
         NAP_NODE_BUSY,
         0},
        {"an administrator a looker's",
         {{2, 192, true, true}, {2, 63, false, false}, {1, 2, false, true, 1}},
         administrator,
         0,
         511},
        {"or another's", {{2, 192, true, true}, {2, 64, false, false}}, administrator, 0, 1},
        {"all at work",
         {{2, 192, true, false}, {2, 64, false, false}},
         {ROOT, 1, true},
         NAP_NODE_BUSY,
         0},
    };
    for (const auto &row : rows) {
        std::vector<node::Seat> seats;
        for (const Group &group : row.seats) {
            for (size_t at = 0; at < group.users * group.each; at++) {
                seats.push_back({seats.size() + 1, group.first + uid_t(at / group.each),
                                 group.may_change, group.silent});
            }
        }
        const node::Admission admission = node::admit(seats, row.newcomer);
        EXPECT_EQ(admission.refused.secondary, row.refused) << row.what;
        EXPECT_EQ(admission.refused.ok(), row.refused == 0) << row.what;
        EXPECT_EQ(admission.leaves, row.leaves) << row.what;
    }
}

/* Every third of 500 connections is used; returns false when that is not as it should be. */
bool storm(const Running &node, size_t limit, std::vector<std::unique_ptr<Client>> &all) {
    size_t used = 0;
    for (size_t at = 0; at < 500; at++) {
        all.push_back(std::make_unique<Client>(node.socket()));
        const bool full = used >= limit;
        const bool refused = all.back()->hello.primary_rc == NAP_UNAVAILABLE &&
                             all.back()->hello.secondary_rc == NAP_LIMIT_REACHED;
        if (refused != full) {
            return false;
        }
        if (!full && at % 3 == 0) {
            used++;
            if (all.back()->query(0, NAP_QUERY_NODE_ALL) != OK_CODES) {
                return false;
            }
        }
    }
    for (size_t at = 0; used > 0; at += 3, used--) {
        if (all[at]->query(0, NAP_QUERY_NODE_ALL) != OK_CODES) {
            return false;
        }
    }
    return true;
}

TEST(NodeFront, FiveHundredConnectionsKeepNobodyOut) {
    Running node;
    std::vector<std::unique_ptr<Client>> own;
    const pid_t other = geteuid() == 0 ? fork() : -1;
    if (other == 0) {
        std::vector<std::unique_ptr<Client>> all;
        const bool right = setgroups(0, nullptr) == 0 && setgid(NOBODY) == 0 &&
                           setuid(NOBODY) == 0 && storm(node, node::MAX_OF_LOOKER, all);
        kill(getpid(), right ? SIGSTOP : SIGABRT); /* they stay */
        _exit(0);
    }
    int status = 0;
    if (other > 0) {
        waitpid(other, &status, WUNTRACED);
        EXPECT_TRUE(WIFSTOPPED(status));
    }
    EXPECT_TRUE(storm(node, node::MAX_OF_CHANGER, own));
    Client last(node.socket());
    EXPECT_EQ(last.define_dlc(last.join("one"), "NEW"), OK_CODES);
    if (other > 0) {
        kill(other, SIGKILL);
        waitpid(other, &status, 0);
    }
}

size_t resident_mb(pid_t process) {
    size_t pages = 0;
    std::ifstream("/proc/" + std::to_string(process) + "/statm") >> pages >> pages;
    return pages * 4096 / (1024 * 1024);
}

/* Two clients do not read while a node changes much: one learns that it lost indications, the
 * other, which registered for what cannot be dropped, that it was cut off. */
TEST(NodeFront, WhoSleepsInAStormCostsLittleAndLearnsOfIt) {
    constexpr size_t TARGETS = 200, RESOURCES = 500;
    setenv("ASAN_OPTIONS", "quarantine_size_mb=1", 0); /* or it keeps what the front gives back */
    Running node;
    Client asleep(node.socket()), too_slow(node.socket()), worker(node.socket());
    std::set<NB_ULONG> targets;
    for (size_t at = 0; at < TARGETS; at++) {
        targets.insert(asleep.join("one"));
        ASSERT_EQ(asleep.listen_to(*targets.rbegin(), NAP_DLC_INDICATION), OK_CODES);
        ASSERT_EQ(too_slow.listen_to(too_slow.join("one"), NAP_CONFIG_COPIES), OK_CODES);
    }
    const size_t before = resident_mb(node.pid);
    const NB_ULONG target = worker.join("one");
    for (size_t at = 0; at < RESOURCES; at++) {
        ASSERT_EQ(worker.define_dlc(target, ("D" + std::to_string(at)).c_str()), OK_CODES);
    }
    EXPECT_LT(resident_mb(node.pid), before + 40);
    Frame frame, last;
    while (!targets.empty() && asleep.receive(frame)) {
        if (frame.block[offsetof(NAP_RESOURCE_INDICATION, data_lost)] != 0) {
            targets.erase(frame.header.target);
        }
    }
    EXPECT_TRUE(targets.empty()) << targets.size() << " are not told";
    EXPECT_EQ(asleep.query(0, NAP_QUERY_NODE_ALL), OK_CODES);
    while (too_slow.receive(frame)) {
        last = frame;
    }
    NAP_NOF_STATUS_INDICATION_VERB status = {};
    ASSERT_EQ(last.block.size(), sizeof status) << "the connection has ended, and says why";
    memcpy(&status, last.block.data(), sizeof status);
    EXPECT_EQ(status.opcode, NAP_NOF_STATUS_INDICATION);
    EXPECT_EQ(status.secondary_rc, NB_ULONG{NAP_SINK_OVERFLOW});
    EXPECT_NE(last.header.correlator, 0U);
}

/* Every file of the stores, by name. */
using Files = std::map<std::string, std::string>;

Files stores_in(const std::string &folder) {
    Files found;
    for (const auto &one : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(one.path(), std::ios::binary);
        found[one.path().filename()] = std::string(std::istreambuf_iterator<char>(file), {});
    }
    return found;
}

void put_stores(const std::string &folder, const Files &files) {
    for (const auto &one : std::filesystem::directory_iterator(folder)) {
        std::filesystem::remove(one.path());
    }
    for (const auto &[name, text] : files) {
        std::ofstream(folder + "/" + name, std::ios::binary) << text;
    }
}

std::string database(const std::string &file, const char *sql) {
    sqlite3 *db = nullptr;
    sqlite3_open(file.c_str(), &db);
    EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    sqlite3_close(db);
    return file;
}

TEST(NodeFront, ARefusedStartLosesNothing) {
    constexpr size_t PAGE = 4096;
    Running node;
    const std::string state = node.folder.file("var/domain/pair");
    {
        Client client(node.socket());
        EXPECT_EQ(client.define_dlc(client.join("one"), "KEPT"), OK_CODES);
    }
    EXPECT_EQ(node.stop(), 0);
    const Files good = stores_in(state);
    const std::string one = good.at("node-one.db");
    ASSERT_GT(one.size(), 3 * PAGE);
    database(state + "/strange.db", "CREATE TABLE birds (name TEXT)");
    const std::string strange = stores_in(state).at("strange.db");
    std::string facts = one;
    facts.replace(2 * PAGE, PAGE, std::string(PAGE, '\x55'));
    const std::string broken = one.substr(0, 3 * PAGE) + std::string(one.size() - 3 * PAGE, '\x55');
    const struct {
        const char *what, *file;
        std::optional<std::string> text; /* none: removed */
        const char *says;
    } rows[] = {
        {"a node's is gone", "node-one.db", {}, "node-one.db is missing or empty"},
        {"a node's is empty", "node-one.db", "", "node-one.db is missing or empty"},
        {"the domain's is gone", "domain.db", {}, "domain.db is missing or empty"},
        {"the domain's is empty", "domain.db", "", "domain.db is missing or empty"},
        {"no database", "node-one.db", std::string(PAGE, 'x'), "cannot be read"},
        {"no database for the domain", "domain.db", std::string(PAGE, 'x'), "cannot be read"},
        {"damaged facts", "node-one.db", facts, "node-one.db cannot be read"},
        {"damaged rows", "node-one.db", broken, "node-one.db cannot be read"},
        {"of another node", "node-one.db", good.at("node-two.db"),
         "is the store of node two of domain pair, not of node one of domain pair"},
        {"of a node", "domain.db", one, "is the store of node one"},
        {"of something else", "domain.db", strange, "is a database of something else"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.what);
        Files damaged = good;
        damaged.erase(row.file);
        if (row.text) {
            damaged[row.file] = *row.text;
        }
        put_stores(state, damaged);
        node.start();
        EXPECT_NE(node.printed.find(row.says), std::string::npos) << node.printed;
        EXPECT_EQ(node.stop(0), 256) << "exit status 1";
        Files after = stores_in(state);
        if (!row.text) {
            EXPECT_EQ(after.count(row.file), 0U);
        }
        for (const auto &[name, text] : after) {
            EXPECT_TRUE(text == damaged[name]) << "it has written to " << name;
        }
    }
    put_stores(state, good);
    std::string renamed = TWO_NODES;
    renamed.replace(renamed.find("= pair"), 6, "= bond");
    for (const auto &[text, says] :
         {std::pair{renamed, "is the store of domain pair, not of domain bond"},
          std::pair{renamed + "[dlc LAN0]\n", "pair.domain:"}}) {
        node.write("pair.domain", text);
        node.start();
        EXPECT_NE(node.printed.find(says), std::string::npos) << node.printed;
        EXPECT_EQ(node.stop(0), 256);
        EXPECT_TRUE(stores_in(state) == good);
    }
    node.write("pair.domain", TWO_NODES);
    for (const char *file : {"/domain.db", "/node-one.db"}) {
        database(state + file, "DELETE FROM fact WHERE name = 'owner'"); /* of an earlier version */
    }
    for (const bool fresh : {false, true}) {
        fresh ? node.start({"--fresh"}) : node.start();
        EXPECT_NE(node.printed.find("ready"), std::string::npos) << node.printed;
        Client client(node.socket());
        EXPECT_EQ(client.query(client.join("one"), NAP_QUERY_DLC), OK_CODES);
        EXPECT_EQ(client.total, fresh ? 1U : 2U);
        EXPECT_EQ(node.stop(), 0);
        EXPECT_NE(stores_in(state).at("domain.db").find("domain pair"), std::string::npos);
    }
}

/* The nodes that hold the configuration, each behind a blank. */
std::string masters_of(Running &node) {
    Client client(node.socket());
    NAP_QUERY_LIST verb = {};
    verb.opcode = NAP_QUERY_NODE_ALL;
    verb.buf_size = 65535;
    verb.list_options = NAP_FIRST_IN_LIST | NAP_DETAIL;
    client.send_verb(0, verb);
    Frame frame;
    std::string found;
    EXPECT_TRUE(client.receive(frame));
    for (size_t at = 0; at + sizeof(NAP_NODE_ALL_DATA) <= frame.data.size();) {
        NAP_NODE_ALL_DATA entry;
        memcpy(&entry, frame.data.data() + at, sizeof entry);
        if ((entry.info.server_flags & NAP_SERVER_CONFIG) != 0) {
            found += " " + node::local_text(entry.node_name, sizeof entry.node_name);
        }
        at += entry.overlay_size;
    }
    return found;
}

TEST(NodeFront, ATakeoverIsWholeOrDidNotTakePlace) {
    const struct {
        const char *fault, *master;
    } rows[] = {{"die-writing", " one"}, {"die-written", " two"}};
    for (const auto &row : rows) {
        Running node(pair_with_backup());
        node.write("faults", row.fault);
        kill(node.pid, SIGHUP);
        EXPECT_EQ(masters_of(node), " one"); /* who answers has read the faults */
        kill(node.process_of("one"), SIGKILL);
        int status = 0;
        waitpid(node.pid, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << row.fault;
        node.write("faults", "");
        node.start();
        EXPECT_EQ(masters_of(node), row.master) << row.fault;
    }
}

TEST(NodeFront, ADomainIsLoadedWithOneMaster) {
    const struct {
        NB_ULONG one, two;
        const char *master;
    } rows[] = {
        {NAP_SERVER_MASTER | NAP_SERVER_CONFIG, NAP_SERVER_MASTER | NAP_SERVER_CONFIG, " one"},
        {NAP_SERVER_MASTER | NAP_SERVER_BACKUP, NAP_SERVER_MASTER | NAP_SERVER_BACKUP, " one"},
        {0, NAP_SERVER_MASTER | NAP_SERVER_BACKUP, " two"}};
    Running node(pair_with_backup());
    for (const auto &row : rows) {
        node.stop();
        const std::string roles = "INSERT OR REPLACE INTO fact VALUES ('server_flags one', " +
                                  std::to_string(row.one) + "), ('server_flags two', " +
                                  std::to_string(row.two) + ")";
        database(node.folder.file("var/domain/pair/domain.db"), roles.c_str());
        for (int start = 0; start < 2; start++) {
            node.stop();
            node.start();
            EXPECT_EQ(masters_of(node), row.master);
        }
    }
}

} // namespace

int main(int argc, char **argv) {
    return node_test::run_tests_or_node(argc, argv);
}
