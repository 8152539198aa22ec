// The verb interface library against a node that sends garbage, dies, or was never there.

#include "linksupport.h"

namespace {

using Breaker = std::function<Bytes(const Received &verb, NB_ULONG sink)>;

struct Garbage {
    const char *name;
    Breaker make;
};

void PrintTo(const Garbage &garbage, std::ostream *stream) {
    *stream << garbage.name;
}

// `verb` is a query of link stations into 64 bytes.
const Garbage garbage[] = {
    {"a short length",
     [](const Received &, NB_ULONG) {
         return to_bytes(NOF_FRAME{8, 3, 0, 1, 0, 0, 0});
     }},
    {"a long length",
     [](const Received &, NB_ULONG) {
         return to_bytes(NOF_FRAME{0x7FFFFFFF, 3, 0, 1, 0, 12, 0x7FFFFFDB});
     }},
    {"an unknown kind",
     [](const Received &v, NB_ULONG) { return frame_bytes(9, v.header.correlator, v.block); }},
    {"a verb", [](const Received &v, NB_ULONG) { return frame_bytes(NOF_FRAME_VERB, 1, v.block); }},
    {"a second hello", [](const Received &, NB_ULONG) { return Node::hello_bytes(1); }},
    {"an unknown correlator",
     [](const Received &v, NB_ULONG) { return frame_bytes(NOF_FRAME_ANSWER, 0xABCDEF, v.block); }},
    {"an answer to a registration",
     [](const Received &v, NB_ULONG sink) { return frame_bytes(NOF_FRAME_ANSWER, sink, v.block); }},
    {"an impossible list",
     [](const Received &v, NB_ULONG) {
         return list_answer(v, entries({32, 36}), 2);
     }},
    {"an indication of another length",
     [](const Received &, NB_ULONG sink) {
         Bytes block = ls_indication(1);
         block.resize(block.size() - 4);
         return frame_bytes(NOF_FRAME_INDICATION, sink, block);
     }},
};

class LinkGarbage : public Link, public ::testing::WithParamInterface<Garbage> {};

TEST_P(LinkGarbage, EndsTheConnection) {
    connect();
    const NB_ULONG sink = open_sink(0, 55);
    open_sink(0, 56);
    List list(64);
    auto start = verb_block<NAP_NAME_VERB>(NAP_START_LS);
    issue(&list.block, 1);
    issue(&start, 2);
    const Received verb = node->verb();
    node->send(GetParam().make(verb, sink));
    expect_lost({1, 2}, 55);
    EXPECT_EQ(list.buffer, Bytes(64, 0xEE));

    // Nothing connects again before the library was terminated.
    heard.clear();
    EXPECT_EQ(issue(&start, 3), NOF_IN_PROGRESS);
    EXPECT_TRUE(heard.empty());
    ASSERT_TRUE(until([] { return heard.size() == 1; }));
    EXPECT_EQ(start.primary_rc, NAP_COMM_FAILURE);
    EXPECT_EQ(start.secondary_rc, NB_ULONG{NAP_CONNECTION_GONE});
    settle();
    EXPECT_EQ(heard.size(), 1U) << "the status is told once";
    EXPECT_FALSE(node->accept());
    nof_terminate();
    heard.clear();
    connect();
}

INSTANTIATE_TEST_SUITE_P(Each, LinkGarbage, ::testing::ValuesIn(garbage), [](const auto &info) {
    std::string name = info.param.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
});

TEST_F(Link, WhatCameBeforeTheEndStillCounts) {
    connect();
    auto blocks = std::vector<NAP_NAME_VERB>(3, verb_block<NAP_NAME_VERB>(NAP_START_LS));
    for (NB_ULONG number = 0; number < 2; number++) {
        issue(&blocks[number], number);
    }
    const Received first = node->verb();
    node->send(answer_bytes(first));
    const Bytes half = answer_bytes(node->verb());
    node->send(Bytes(half.begin(), half.begin() + 30));
    node->hang_up();
    // Writing fails now, and what had been received is not lost by that.
    EXPECT_EQ(issue(&blocks[2], 2), NOF_IN_PROGRESS);
    EXPECT_TRUE(heard.empty());
    ASSERT_TRUE(until([] { return heard.size() == 4; }));
    EXPECT_EQ(heard[0].header.primary_rc, NAP_OK);
    heard.erase(heard.begin());
    expect_lost({1, 2}, 0);
}

TEST_F(Link, CallbacksMayIssueAndTerminate) {
    connect();
    auto blocks = std::vector<NAP_NAME_VERB>(4, verb_block<NAP_NAME_VERB>(NAP_START_LS));
    on_heard = [&](const Heard &one) {
        if (one.user_data == 0) {
            EXPECT_EQ(issue(&blocks[3], 3), NOF_IN_PROGRESS);
        } else if (one.user_data == 1) {
            nof_terminate();
        }
    };
    Bytes answers;
    for (NB_ULONG number = 0; number < 3; number++) {
        issue(&blocks[number], number);
        const Bytes answer = answer_bytes(node->verb());
        answers.insert(answers.end(), answer.begin(), answer.end());
    }
    node->send(answers);
    ASSERT_TRUE(until([] { return heard.size() >= 2; }));
    settle();
    EXPECT_EQ(heard_numbers(), (Numbers{0, 1})) << "nobody is called after the termination";
    EXPECT_TRUE(inputs.empty());

    // The same while the loss of a connection is being told, with a verb that connects anew.
    heard.clear();
    on_heard = {};
    connect();
    on_heard = [&](const Heard &one) {
        if (one.user_data == 1) {
            nof_terminate();
            EXPECT_EQ(issue(&blocks[3], 3), NOF_IN_PROGRESS);
        }
    };
    for (NB_ULONG number = 0; number < 3; number++) {
        issue(&blocks[number], number);
    }
    node->hang_up();
    ASSERT_TRUE(until([] { return heard.size() >= 2; }));
    ASSERT_TRUE(node->accept());
    node->hello(NOF_RIGHT_CHANGE);
    node->send(answer_bytes(node->verb()));
    ASSERT_TRUE(until([] { return heard.size() >= 3; }));
    EXPECT_EQ(heard_numbers(), (Numbers{0, 1, 3}));
}

// No node software.

TEST_F(Link, NobodyThere) {
    auto block = verb_block<NAP_NAME_VERB>(NAP_START_LS);
    const auto unavailable = [&](const std::string &socket) {
        heard.clear();
        setenv("SNA_SOCKET", socket.c_str(), 1);
        EXPECT_EQ(issue(&block, 4), NOF_IN_PROGRESS);
        EXPECT_TRUE(heard.empty()) << "never from inside the caller's call";
        EXPECT_TRUE(until([] { return heard.size() == 1; }));
        EXPECT_EQ(heard.at(0).user_data, 4U);
        EXPECT_EQ(block.primary_rc, NAP_UNAVAILABLE);
        EXPECT_EQ(block.secondary_rc, 0U);
        settle();
        EXPECT_EQ(heard.size(), 1U);
    };
    unavailable(folder / "nothing.sock");
    unavailable(folder / std::string(200, 'x'));
    unavailable(folder / "log");
    node.reset(); // the socket stays, but nobody listens
    unavailable(path);
    fs::remove(path);
    node = std::make_unique<Node>(path);
    heard.clear();
    connect();
}

TEST_F(Link, NoProperHello) {
    NAP_QUERY_NODE_VERB block = verb_block<NAP_QUERY_NODE_VERB>(NAP_QUERY_NODE);
    Bytes cut = Node::hello_bytes(1);
    cut.resize(40);
    const Bytes greetings[] = {Node::hello_bytes(1, NOF_WIRE_VERSION + 1), cut,
                               frame_bytes(NOF_FRAME_ANSWER, 1, to_bytes(block)),
                               frame_bytes(NOF_FRAME_HELLO, 0, Bytes(84)), Bytes(24, 0xFF)};
    for (const Bytes &greeting : greetings) {
        heard.clear();
        ASSERT_EQ(issue(&block, 6), NOF_IN_PROGRESS);
        ASSERT_TRUE(node->accept());
        node->send(greeting);
        settle();
        node->hang_up();
        ASSERT_TRUE(until([] { return heard.size() == 1; }));
        settle();
        EXPECT_EQ(heard.size(), 1U);
        EXPECT_EQ(block.primary_rc, NAP_UNAVAILABLE);
    }
}

TEST_F(Link, ASilentNodeIsNotWaitedForWithoutEnd) {
    nof::Interface impatient(20);
    auto block = verb_block<NAP_NAME_VERB>(NAP_START_LS);
    NB_UCHAR *bytes = reinterpret_cast<NB_UCHAR *>(&block);
    EXPECT_EQ(impatient.issue(0, bytes, callback, 8), NOF_IN_PROGRESS);
    ASSERT_TRUE(node->accept());
    ASSERT_TRUE(until([] { return heard.size() == 1; }));
    EXPECT_EQ(block.primary_rc, NAP_UNAVAILABLE);

    // The listener accepts nobody: its queue is full, and then there is room again.
    std::vector<int> crowd;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path.c_str());
    do {
        crowd.push_back(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0));
    } while (::connect(crowd.back(), reinterpret_cast<sockaddr *>(&address), sizeof(address)) == 0);
    heard.clear();
    EXPECT_EQ(impatient.issue(0, bytes, callback, 9), NOF_IN_PROGRESS);
    ASSERT_TRUE(until([] { return heard.size() == 1; }));
    EXPECT_EQ(block.primary_rc, NAP_UNAVAILABLE);
    heard.clear();
    ASSERT_EQ(issue(&block, 10), NOF_IN_PROGRESS);
    for (size_t waiting = 1; waiting < crowd.size(); waiting++) {
        ASSERT_TRUE(node->accept());
    }
    ASSERT_TRUE(until([&] { return node->accept(); }));
    node->hello(NOF_RIGHT_CHANGE);
    node->send(answer_bytes(node->verb()));
    ASSERT_TRUE(until([] { return heard.size() == 1; }));
    EXPECT_EQ(block.primary_rc, NAP_OK);
    for (int fd : crowd) {
        close(fd);
    }
}

} // namespace
