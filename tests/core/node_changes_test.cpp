/* Who changed what: what is written down, who may read it, and how it is bounded. */
#include "runningnode.h"

#include "changelog.h"

#include <grp.h>

using namespace node_test;
using node::ChangeLog;
using node::ChangeRecord;

namespace {

constexpr uid_t NOBODY = 65534;

struct Listed {
    Codes codes;
    unsigned total = 0;
    std::vector<NAP_CHANGE_DATA> changes;
};

/* Asks for what is behind `last`, or for the newest. */
Listed list_changes(Client &client, const NAP_CHANGE_DATA *last = nullptr, NB_USHORT most = 0,
                    NB_ULONG room = 65536) {
    NAP_QUERY_LIST query = {};
    query.opcode = NAP_QUERY_CHANGES;
    query.buf_size = room;
    query.num_entries = most;
    query.list_options = NAP_DETAIL | (last != nullptr ? NAP_LIST_FROM_NEXT : NAP_FIRST_IN_LIST);
    if (last != nullptr) {
        memcpy(query.key, reinterpret_cast<const NB_UCHAR *>(last) + 2, 4);
    }
    Listed listed;
    Frame frame;
    client.send_verb(0, query);
    while (client.receive(frame) && frame.header.kind != NOF_FRAME_ANSWER) {
    }
    memcpy(&query, frame.block.data(), sizeof query);
    listed.codes = {query.primary_rc, query.secondary_rc};
    listed.total = query.total_num_entries;
    EXPECT_EQ(query.total_buf_size, frame.data.size());
    for (size_t at = 0; at < frame.data.size();) {
        NAP_CHANGE_DATA change = {};
        NB_USHORT length = 0;
        memcpy(&length, frame.data.data() + at, sizeof length);
        if (length < 4 || at + length > frame.data.size()) {
            ADD_FAILURE() << "an entry of " << length << " bytes at " << at;
            break;
        }
        memcpy(&change, frame.data.data() + at, length);
        listed.changes.push_back(change);
        at += length;
    }
    if (listed.codes == OK_CODES) {
        EXPECT_EQ(listed.changes.size(), query.num_entries);
    }
    return listed;
}

template <size_t WIDTH> std::string text(const NB_UCHAR (&field)[WIDTH]) {
    return reinterpret_cast<const char *>(field);
}

std::string told(const NAP_CHANGE_DATA &change) {
    return text(change.node_name) + "|" + std::to_string(change.opcode) + "|" +
           text(change.subject) + "|" + std::to_string(change.primary_rc) + "|" +
           text(change.values);
}

std::string told(const char *node, NB_USHORT opcode, const char *subject, const char *values,
                 NB_USHORT primary = NAP_OK) {
    return std::string(node) + "|" + std::to_string(opcode) + "|" + subject + "|" +
           std::to_string(primary) + "|" + values;
}

Codes define_dlc(Client &client, NB_ULONG target, const char *description) {
    NAP_DEFINE_DLC_VERB verb = {};
    verb.opcode = NAP_DEFINE_DLC;
    put(verb.dlc_name, local8("NEW"));
    strcpy(reinterpret_cast<char *>(verb.def_data.description), description);
    return client.issue(target, verb);
}

Codes define_password(Client &client, NB_ULONG target, const char *password) {
    NAP_DEFINE_USERID_PASSWORD_VERB verb = {};
    verb.opcode = NAP_DEFINE_USERID_PASSWORD;
    put(verb.user_id, ebcdic("ANNA", sizeof verb.user_id));
    put(verb.def_data.password, ebcdic(password, sizeof verb.def_data.password));
    return client.issue(target, verb);
}

Codes name_verb(Client &client, NB_ULONG target, NB_USHORT opcode, const char *name) {
    NAP_NAME_VERB verb = {};
    verb.opcode = opcode;
    put(verb.key, local8(name));
    return client.issue(target, verb);
}

TEST(NodeChanges, SayWhoDidWhatWithOldAndNewValues) {
    Running node;
    {
        Client client(node.socket());
        const NB_ULONG one = client.join("one");
        ASSERT_EQ(define_dlc(client, one, "first"), OK_CODES);
        ASSERT_EQ(define_dlc(client, one, "a\tb\\c"), OK_CODES);
        ASSERT_EQ(define_password(client, one, "SECRET1"), OK_CODES);
        ASSERT_EQ(define_password(client, one, "SECRET2"), OK_CODES);
        EXPECT_EQ(name_verb(client, one, NAP_DELETE_PORT, "NONE"), parameter(NAP_UNKNOWN_RESOURCE));
        ASSERT_EQ(name_verb(client, one, NAP_DELETE_DLC, "NEW"), OK_CODES);
        ASSERT_EQ(client.query(one, NAP_QUERY_DLC), OK_CODES);
    }
    node.stop();
    node.start();
    Client client(node.socket());
    NAP_QUERY_LOGGING_VERB logging = {};
    logging.opcode = NAP_SET_CENTRAL_LOGGING;
    ASSERT_EQ(client.issue(client.open(NAP_SYSTEM_FILE), logging), OK_CODES);
    const Listed all = list_changes(client);
    ASSERT_EQ(all.codes, OK_CODES);
    ASSERT_EQ(all.changes.size(), 7U) << "queries are no changes";
    EXPECT_EQ(all.total, 7U);
    for (size_t at = 0; at < all.changes.size(); at++) {
        const NAP_CHANGE_DATA change = all.changes[at];
        EXPECT_EQ(change.number, 7 - at) << "newest first, over a restart";
        EXPECT_EQ(change.user_id, geteuid());
        EXPECT_EQ(change.process_id, static_cast<NB_ULONG>(getpid()));
        EXPECT_EQ(text(change.program), std::string("node_changes_test").substr(0, 15));
        EXPECT_NEAR(change.time, time(nullptr), 60);
    }
    EXPECT_EQ(told(all.changes[6]),
              told("one", NAP_DEFINE_DLC, "dlc NEW", "dlc NEW: new description -> 'first'"));
    EXPECT_EQ(told(all.changes[5]),
              told("one", NAP_DEFINE_DLC, "dlc NEW", "dlc NEW: description 'first' -> 'a\tb\\c'"));
    EXPECT_EQ(told(all.changes[4]), told("one", NAP_DEFINE_USERID_PASSWORD, "userid_password ANNA",
                                         "userid_password ANNA: new password set"));
    EXPECT_EQ(told(all.changes[3]), told("one", NAP_DEFINE_USERID_PASSWORD, "userid_password ANNA",
                                         "userid_password ANNA: password changed"));
    EXPECT_EQ(told(all.changes[2]),
              told("one", NAP_DELETE_PORT, "port NONE", "", NAP_PARAMETER_CHECK));
    EXPECT_EQ(told(all.changes[1]),
              told("one", NAP_DELETE_DLC, "dlc NEW", "dlc NEW: deleted description 'a\tb\\c' ->"));
    EXPECT_EQ(all.changes[0].opcode, NAP_SET_CENTRAL_LOGGING);
    EXPECT_EQ(text(all.changes[0].node_name), "");

    const std::string file = node.folder.file("var/domain/pair/changes");
    struct stat found = {};
    ASSERT_EQ(stat(file.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777, 0600U);
    std::ifstream kept(file);
    const std::string lines{std::istreambuf_iterator<char>(kept), {}};
    EXPECT_EQ(lines.find("SECRET"), std::string::npos);

    const Listed two = list_changes(client, nullptr, 2);
    ASSERT_EQ(two.changes.size(), 2U);
    EXPECT_EQ(two.total, 7U);
    const Listed small = list_changes(client, &two.changes[1], 0, 1200);
    ASSERT_EQ(small.changes.size(), 2U) << "as many as fit";
    EXPECT_EQ(small.changes[0].number, 5U);
    EXPECT_EQ(small.total, 5U);
    EXPECT_EQ(list_changes(client, nullptr, 0, 100).codes, parameter(NAP_BAD_LENGTH));
    EXPECT_EQ(list_changes(client, &all.changes[6]).total, 0U);
}

TEST(NodeChanges, TellOfVerbsThatAreNotAnswered) {
    Running node;
    Client client(node.socket());
    const NB_ULONG one = client.join("one");
    const pid_t process = node.process_of("one");
    kill(process, SIGSTOP);
    {
        Client leaves(node.socket());
        const NB_ULONG target = leaves.join("one");
        NAP_NAME_VERB verb = {};
        verb.opcode = NAP_DELETE_DLC;
        put(verb.key, local8("LEFT"));
        leaves.send_verb(target, verb);
        leaves.query(0, NAP_QUERY_NODE_ALL); /* what was sent before is on its way now */
    }
    NAP_NAME_VERB verb = {};
    verb.opcode = NAP_STOP_NODE;
    const NB_ULONG correlator = client.send_verb(one, verb);
    ASSERT_EQ(client.query(0, NAP_QUERY_NODE_ALL), OK_CODES);
    kill(process, SIGKILL);
    kill(process, SIGCONT);
    client.answer(correlator, verb);
    const Listed all = list_changes(client);
    ASSERT_EQ(all.changes.size(), 2U);
    EXPECT_EQ(told(all.changes[0]), told("one", NAP_STOP_NODE, "", "", NAP_COMM_FAILURE));
    EXPECT_EQ(told(all.changes[1]), told("one", NAP_DELETE_DLC, "dlc LEFT", "", NAP_COMM_FAILURE));
}

/* Who may not change cannot read what others did, nor push it out. */
TEST(NodeChanges, AreNotForLookers) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "needs root to be somebody else";
    }
    Running node;
    const pid_t looker = fork();
    if (looker == 0) {
        const bool other = setgroups(0, nullptr) == 0 && setgid(NOBODY) == 0 && setuid(NOBODY) == 0;
        Client client(node.socket());
        const NB_ULONG one = client.join("one");
        const bool right = other && client.define_dlc(one, "NEW") == parameter(NAP_NO_PERMISSION) &&
                           list_changes(client).codes == parameter(NAP_NO_PERMISSION);
        _exit(right ? 0 : 1);
    }
    int status = -1;
    waitpid(looker, &status, 0);
    EXPECT_EQ(status, 0);
    Client client(node.socket());
    EXPECT_EQ(list_changes(client).changes.size(), 0U);
}

ChangeRecord record(const std::string &words) {
    ChangeRecord one;
    one.opcode = NAP_DEFINE_DLC;
    one.words = words;
    return one;
}

TEST(NodeChanges, RotateAndOutliveDamage) {
    constexpr size_t SIZE = 2000;
    constexpr unsigned OLD = 2;
    Folder folder;
    std::string why;
    {
        ChangeLog log(folder.path(), SIZE, OLD);
        ASSERT_TRUE(log.open(true, why)) << why;
        for (int at = 0; at < 500; at++) {
            ChangeRecord one = record("change " + std::to_string(at + 1));
            log.write(one);
            ASSERT_EQ(one.number, static_cast<NB_ULONG>(at + 1));
        }
        EXPECT_GT(log.oldest(), 300U);
        EXPECT_LT(log.oldest(), 480U);
        ChangeRecord one;
        EXPECT_TRUE(log.read(log.oldest(), one)) << "from a file that was renamed";
        EXPECT_EQ(one.words, "change " + std::to_string(log.oldest()));
        EXPECT_FALSE(log.read(log.oldest() - 1, one));
    }
    size_t bytes = 0;
    for (const auto &file : std::filesystem::directory_iterator(folder.path())) {
        bytes += file.file_size();
    }
    EXPECT_LE(bytes, (OLD + 1) * SIZE);
    std::ofstream(folder.file("changes"), std::ios::app) << "no line\n501\ttorn";
    ChangeLog log(folder.path(), SIZE, OLD);
    ASSERT_TRUE(log.open(true, why)) << why;
    ChangeRecord one = record("after");
    log.write(one);
    ChangeRecord read;
    EXPECT_TRUE(log.read(one.number, read));
    EXPECT_EQ(read.words, "after");
    EXPECT_TRUE(log.read(500, read));
    EXPECT_EQ(read.words, "change 500");
    one = {7, 8, 9, 10, "a\tb", "\\x41", 11, {12, 13}, "\n", std::string("\x01z", 2)};
    ASSERT_TRUE(node::parse_line(node::line_of(one), read));
    EXPECT_EQ(node::line_of(read), node::line_of(one));
    EXPECT_EQ(read.program + read.node + read.subject + read.words,
              one.program + one.node + one.subject + one.words);
}

} // namespace

int main(int argc, char **argv) {
    return run_tests_or_node(argc, argv);
}
