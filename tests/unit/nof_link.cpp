// The verb interface library against a scripted node: verbs, their answers, indications.

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

TEST_F(Link, AListThatFailedHasNoEntries) {
    connect();
    List list(64);
    list.block.num_entries = 1;
    issue(&list.block);
    node->send(answer_bytes(node->verb(), NAP_PARAMETER_CHECK, NAP_UNKNOWN_RESOURCE));
    ASSERT_TRUE(until([] { return !heard.empty(); }));
    EXPECT_EQ(list.block.primary_rc, NAP_PARAMETER_CHECK);
    EXPECT_EQ(list.block.num_entries, 0);
    EXPECT_EQ(list.buffer, Bytes(64, 0xEE));
}

TEST_F(Link, FramesArriveAByteAtATime) {
    List list(32);
    issue(&list.block, 5);
    ASSERT_TRUE(node->accept());
    for (NB_UCHAR byte : Node::hello_bytes(NOF_RIGHT_CHANGE)) {
        node->send({byte});
        settle();
    }
    const Received verb = node->verb(1);
    for (NB_UCHAR byte : list_answer(verb, entries({16}), 1)) {
        ASSERT_TRUE(heard.empty());
        node->send({byte});
        settle();
    }
    EXPECT_EQ(heard_numbers(), Numbers{5});
}

TEST_F(Link, MoreVerbsThanTheSocketHolds) {
    connect();
    constexpr NB_ULONG count = 3000;
    std::vector<NAP_NAME_VERB> blocks(count, verb_block<NAP_NAME_VERB>(NAP_START_LS));
    for (NB_ULONG number = 0; number < count; number++) {
        std::memcpy(blocks[number].key, &number, sizeof(number));
        ASSERT_EQ(issue(&blocks[number], number), NOF_IN_PROGRESS);
    }
    for (NB_ULONG number = 0; number < count; number++) {
        const Received verb = node->verb(1000);
        ASSERT_EQ(std::memcmp(&verb.block[12], &number, sizeof(number)), 0);
        node->send(answer_bytes(verb));
    }
    ASSERT_TRUE(until([] { return heard.size() == count; }));
}

TEST_F(Link, AnswersOutOfOrder) {
    connect();
    open_target(0x900);
    auto blocks = std::vector<NAP_NAME_VERB>(3, verb_block<NAP_NAME_VERB>(NAP_START_LS));
    std::vector<Received> verbs;
    for (NB_ULONG number = 0; number < 3; number++) {
        issue(&blocks[number], number, 0x900);
        verbs.push_back(node->verb());
        EXPECT_EQ(verbs.back().header.target, 0x900U);
    }
    for (size_t number : {2, 0, 1}) {
        node->send(answer_bytes(verbs[number], NAP_STATE_CHECK, static_cast<NB_ULONG>(number)));
    }
    ASSERT_TRUE(until([] { return heard.size() == 3; }));
    EXPECT_EQ(heard_numbers(), (Numbers{2, 0, 1}));
    EXPECT_EQ(heard[0].target, 0x900U);
    EXPECT_EQ(blocks[1].secondary_rc, 1U);
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
        ASSERT_TRUE(round_of_loop(1000)) << "answers were left in the buffer";
        ASSERT_LE(heard.size() - before, 4U);
    }
    // The same for what the library completes itself: eleven verbs and the status.
    heard.clear();
    for (auto &block : blocks) {
        issue(&block);
    }
    node->hang_up();
    while (heard.size() < blocks.size() + 1) {
        const size_t before = heard.size();
        ASSERT_TRUE(round_of_loop(1000));
        ASSERT_LE(heard.size() - before, 4U);
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

TEST_F(Link, ARefusedRegistrationIsNone) {
    connect();
    auto block = verb_block<NAP_REGISTER_SINK_VERB>(NAP_REGISTER_INDICATION_SINK);
    issue(&block, 9);
    const Received verb = node->verb();
    node->send(answer_bytes(verb, NAP_PARAMETER_CHECK, NAP_INVALID_VALUE));
    node->send(frame_bytes(NOF_FRAME_INDICATION, verb.header.correlator, ls_indication(1)));
    ASSERT_TRUE(until([] { return heard.size() == 1; }));
    settle();
    EXPECT_EQ(heard.size(), 1U);
    node->hang_up();
    heard.clear();
    expect_lost({}, 0); // to the last callback, with no user data
}

} // namespace
