// The verb interface library against a scripted node: verbs, their answers, indications, and a node
// that sends garbage, dies, or was never there.

#include "linksupport.h"

namespace {

TEST_F(Link, AVerbWaitsForTheHelloAndTakesOnlyWhatItMay) {
    List list(100);
    const NAP_QUERY_LIST issued = list.block;
    ASSERT_EQ(issue(&list.block, 77), NOF_IN_PROGRESS);
    ASSERT_TRUE(node->accept());
    EXPECT_TRUE(node->silent());
    node->hello(NOF_RIGHT_CHANGE);
    const Received verb = node->verb();
    const auto seen = from_bytes<NAP_QUERY_LIST>(verb.block);
    EXPECT_EQ(seen.buf_size, 100U);
    EXPECT_EQ(Bytes(seen.buf_ptr, seen.buf_ptr + 8), Bytes(8, 0))
        << "an address leaves the process";

    const Bytes data = entries({8, 92});
    node->send(list_answer(verb, data, 2, [](NAP_QUERY_LIST &block) {
        block.attributes = block.format = 9;
        block.total_num_entries = 500;
        block.buf_size = 0xFFFFFFFF;
        std::memset(block.buf_ptr, 0x41, sizeof(block.buf_ptr));
        block.owner_length = 60000;
        block.list_options = 0;
    }));
    ASSERT_TRUE(until([] { return !heard.empty(); }));
    EXPECT_EQ(heard[0].user_data, 77U);
    EXPECT_EQ(list.buffer, data);
    NAP_QUERY_LIST expected = issued;
    expected.num_entries = 2;
    expected.total_num_entries = 500;
    expected.total_buf_size = 100;
    EXPECT_EQ(to_bytes(list.block), to_bytes(expected));
}

// Answered from behind, on a target, with codes of their own.
TEST_F(Link, MoreVerbsThanTheSocketHolds) {
    connect();
    open_target(0x900);
    constexpr NB_ULONG count = 3000;
    std::vector<NAP_NAME_VERB> blocks(count, verb_block<NAP_NAME_VERB>(NAP_START_LS));
    std::vector<Received> verbs;
    for (NB_ULONG number = 0; number < count; number++) {
        std::memcpy(blocks[number].key, &number, sizeof(number));
        ASSERT_EQ(issue(&blocks[number], number, 0x900), NOF_IN_PROGRESS);
    }
    for (NB_ULONG number = 0; number < count; number++) {
        verbs.push_back(node->verb(1000));
        ASSERT_EQ(verbs[number].header.target, 0x900U);
        ASSERT_EQ(std::memcmp(&verbs[number].block[12], &number, sizeof(number)), 0);
    }
    for (NB_ULONG number = count; number-- > 0;) {
        node->send(answer_bytes(verbs[number], NAP_STATE_CHECK, number));
    }
    ASSERT_TRUE(until([] { return heard.size() == count; }));
    for (NB_ULONG number = 0; number < count; number++) {
        ASSERT_EQ(heard[number].user_data, count - 1 - number);
        ASSERT_EQ(heard[number].target, 0x900U);
        ASSERT_EQ(blocks[number].secondary_rc, number);
    }
}

TEST_F(Link, AtMostTheLimitInOneRound) {
    connect();
    vpm_set_io_limit(4);
    auto blocks = std::vector<NAP_NAME_VERB>(11, verb_block<NAP_NAME_VERB>(NAP_START_LS));
    Bytes all;
    for (auto &block : blocks) {
        issue(&block);
        const Bytes answer = answer_bytes(node->verb());
        all.insert(all.end(), answer.begin(), answer.end());
    }
    node->send(all);
    while (heard.size() < blocks.size()) {
        const size_t before = heard.size();
        ASSERT_NE(round_of_loop(1000), 0U) << "answers were left in the buffer";
        ASSERT_LE(heard.size() - before, 4U);
    }
}

// What the callbacks of short answers issue travels in one piece; behind a long one it goes at
// once.
TEST_F(Link, VerbsOfOneRoundTravelTogether) {
    connect();
    auto more = std::vector<NAP_NAME_VERB>(4, verb_block<NAP_NAME_VERB>(NAP_START_LS));
    std::vector<bool> on_the_wire;
    on_heard = [&](const Heard &one) {
        if (one.user_data != 0) {
            issue(&more[on_the_wire.size()]);
            node->read_some();
            on_the_wire.push_back(node->whole_frame());
        }
    };
    std::vector<List> lists(4, List(60000));
    Bytes all;
    for (List &list : lists) {
        const NB_UCHAR *buffer = list.buffer.data();
        std::memcpy(list.block.buf_ptr, &buffer, sizeof(buffer));
        issue(&list.block, 1);
        const Bytes answer = list_answer(
            node->verb(), entries({&list == &lists[3] ? NB_USHORT{60000} : NB_USHORT{8}}), 1);
        all.insert(all.end(), answer.begin(), answer.end());
    }
    node->send(all);
    ASSERT_TRUE(until([&] { return on_the_wire.size() == 4; }));
    EXPECT_EQ(on_the_wire, (std::vector<bool>{false, false, false, true}));
    for (size_t verb = 0; verb < 4; verb++) {
        node->verb();
    }
}

TEST_F(Link, RefusedAtOnce) {
    connect();
    open_target(0x77);
    auto name = verb_block<NAP_NAME_VERB>(NAP_START_LS);
    List list(64);
    const auto refuse = [](NB_VOID *vcb, NB_USHORT primary_rc, NB_ULONG secondary_rc,
                           NB_ULONG target = 0, NB_USHORT version = NOF_VERSION) {
        EXPECT_EQ(nof_async_version(version, target, vcb, callback, 0), NOF_COMPLETED_SYNC);
        NAP_VCB header;
        std::memcpy(&header, vcb, sizeof(header));
        EXPECT_EQ(header.primary_rc, primary_rc);
        EXPECT_EQ(header.secondary_rc, secondary_rc);
    };
    refuse(&name, NAP_NOT_SUPPORTED, 0, 0, 1);
    refuse(&name, NAP_PARAMETER_CHECK, NAP_BAD_TARGET, 0x78);
    name.format = 1;
    refuse(&name, NAP_NOT_SUPPORTED, 0);
    name = verb_block<NAP_NAME_VERB>(0x0BAD);
    refuse(&name, NAP_NOT_SUPPORTED, 0);
    auto indication = verb_block<NAP_RESOURCE_INDICATION>(NAP_LS_INDICATION);
    refuse(&indication, NAP_NOT_SUPPORTED, 0);
    list.block.buf_size = 3;
    refuse(&list.block, NAP_PARAMETER_CHECK, NAP_BAD_LENGTH);
    list.block.buf_size = 64;
    std::memset(list.block.buf_ptr, 0, sizeof(list.block.buf_ptr));
    refuse(&list.block, NAP_PARAMETER_CHECK, NAP_BAD_LENGTH);

    // What a test has the node software ask for, as often as it says.
    name = verb_block<NAP_NAME_VERB>(NAP_START_PORT);
    NOF_FAULT fault = {};
    fault.opcode = NAP_START_PORT;
    fault.primary_rc = NAP_STATE_CHECK;
    fault.secondary_rc = NAP_RESOURCE_INACTIVE;
    fault.times = 1;
    auto other = verb_block<NAP_NAME_VERB>(NAP_START_LS);
    issue(&other);
    node->send(frame_bytes(NOF_FRAME_FAULT, 0, to_bytes(fault)));
    node->send(answer_bytes(node->verb()));
    ASSERT_TRUE(until([] { return heard.size() == 1; }));
    heard.clear();
    refuse(&name, NAP_STATE_CHECK, NAP_RESOURCE_INACTIVE);
    EXPECT_EQ(issue(&name), NOF_IN_PROGRESS);
    node->send(answer_bytes(node->verb()));
    ASSERT_TRUE(until([] { return heard.size() == 1; }));
    heard.clear();

    // A target ends with its disconnect, unless the node was too busy for it.
    auto bye = verb_block<NAP_VCB>(NAP_DISCONNECT_NODE);
    issue(&bye, 0, 0x77);
    node->send(answer_bytes(node->verb(), NAP_STATE_CHECK, NAP_NODE_BUSY));
    ASSERT_TRUE(until([] { return heard.size() == 1; }));
    EXPECT_EQ(issue(&bye, 0, 0x77), NOF_IN_PROGRESS);
    node->send(answer_bytes(node->verb()));
    ASSERT_TRUE(until([] { return heard.size() == 2; }));
    refuse(&bye, NAP_PARAMETER_CHECK, NAP_BAD_TARGET, 0x77);
    EXPECT_TRUE(node->silent());
}

TEST_F(Link, OnlyLookingIsAllowed) {
    auto start = verb_block<NAP_NAME_VERB>(NAP_START_LS);
    List list(64);
    auto mode = verb_block<NAP_SET_PROCESSING_MODE_VERB>(NAP_SET_PROCESSING_MODE);
    ASSERT_EQ(issue(&start, 1), NOF_IN_PROGRESS) << "nothing is known before the hello";
    ASSERT_EQ(issue(&list.block, 2), NOF_IN_PROGRESS);
    ASSERT_EQ(issue(&mode, 3), NOF_IN_PROGRESS);
    ASSERT_TRUE(node->accept());
    node->hello(0);
    EXPECT_EQ(from_bytes<NAP_VCB>(node->verb().block).opcode, NAP_QUERY_LS);
    EXPECT_EQ(from_bytes<NAP_VCB>(node->verb().block).opcode, NAP_SET_PROCESSING_MODE);
    ASSERT_TRUE(until([] { return heard.size() == 1; }));
    EXPECT_EQ(heard_numbers(), Numbers{1});
    EXPECT_EQ(start.primary_rc, 0x0100);
    EXPECT_EQ(start.secondary_rc, 0x5514U);
    start.primary_rc = 0;
    EXPECT_EQ(issue(&start, 1), NOF_COMPLETED_SYNC);
    EXPECT_EQ(start.primary_rc, 0x0100);
    EXPECT_EQ(start.secondary_rc, 0x5514U);
    EXPECT_TRUE(node->silent());
}

// Indications.

TEST_F(Link, IndicationsReachTheirRegistration) {
    connect();
    open_target(0x10);
    open_target(0x20);
    const NB_ULONG first = open_sink(0x10, 100);
    const NB_ULONG second = open_sink(0x20, 200);
    auto copy = verb_block<NAP_DEFINE_MODE_VERB>(NAP_DEFINE_MODE);
    copy.primary_rc = NAP_INDICATION;
    node->send(frame_bytes(NOF_FRAME_INDICATION, second, ls_indication(1)));
    node->send(frame_bytes(NOF_FRAME_INDICATION, first, to_bytes(copy)));
    node->send(frame_bytes(NOF_FRAME_INDICATION, first + second + 9, ls_indication(2)));
    node->send(frame_bytes(NOF_FRAME_INDICATION, first, ls_indication(3)));
    ASSERT_TRUE(until([] { return heard.size() == 3; }));
    EXPECT_EQ(heard_numbers(), (Numbers{200, 100, 100}));
    EXPECT_EQ(heard[0].target, 0x20U);
    EXPECT_EQ(heard[1].header.opcode, NAP_DEFINE_MODE);
    EXPECT_EQ(heard[2].block, ls_indication(3));

    heard.clear();
    auto bye = verb_block<NAP_VCB>(NAP_DISCONNECT_NODE);
    issue(&bye, 1, 0x10);
    const Received verb = node->verb();
    node->send(frame_bytes(NOF_FRAME_INDICATION, first, ls_indication(4)));
    node->send(answer_bytes(verb));
    node->send(frame_bytes(NOF_FRAME_INDICATION, first, ls_indication(5)));
    node->send(frame_bytes(NOF_FRAME_INDICATION, second, ls_indication(6)));
    ASSERT_TRUE(until([] { return heard.size() == 3; }));
    EXPECT_EQ(heard_numbers(), (Numbers{100, 1, 200}));
}

// What is lost.

// Each of these ends the connection; frames of any contents are the fuzz target's.
TEST_F(Link, GarbageEndsTheConnection) {
    const struct {
        const char *name;
        std::function<Bytes(const Received &, NB_ULONG)> make; // of a query into 64 bytes, a sink
    } cases[] = {
        {"a verb",
         [](const Received &v, NB_ULONG) { return frame_bytes(NOF_FRAME_VERB, 1, v.block); }},
        {"a second hello", [](const Received &, NB_ULONG) { return Node::hello_bytes(1); }},
        {"an unknown correlator",
         [](const Received &v, NB_ULONG) {
             return frame_bytes(NOF_FRAME_ANSWER, 0xABCDEF, v.block);
         }},
        {"an answer to a registration",
         [](const Received &v, NB_ULONG sink) {
             return frame_bytes(NOF_FRAME_ANSWER, sink, v.block);
         }},
        {"an impossible list",
         [](const Received &v, NB_ULONG) {
             return list_answer(v, entries({32, 36}), 2);
         }},
    };
    for (const auto &garbage : cases) {
        SCOPED_TRACE(garbage.name);
        connect();
        const NB_ULONG sink = open_sink(0, 55);
        open_sink(0, 56);
        List list(64);
        auto start = verb_block<NAP_NAME_VERB>(NAP_START_LS);
        issue(&list.block, 1);
        issue(&start, 2);
        node->send(garbage.make(node->verb(), sink));
        expect_lost({1, 2}, 55);
        EXPECT_EQ(list.buffer, Bytes(64, 0xEE));

        // Nothing connects again before the library was terminated.
        heard.clear();
        EXPECT_EQ(issue(&start, 3), NOF_IN_PROGRESS);
        EXPECT_TRUE(heard.empty());
        ASSERT_TRUE(until([] { return heard.size() == 1; }));
        EXPECT_EQ(start.secondary_rc, NB_ULONG{NAP_CONNECTION_GONE});
        EXPECT_FALSE(node->accept());
        nof_terminate();
        heard.clear();
    }
}

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
}

} // namespace
