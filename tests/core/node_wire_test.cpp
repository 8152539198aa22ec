/* Frames, queues and fault scripts: what the front process is made of. */
#include "node_support.h"

#include "faults.h"
#include "frames.h"
#include "sendqueue.h"

#include <fcntl.h>
#include <sys/socket.h>

using namespace node_test;
using node::Faults;
using node::Frame;
using node::FrameReader;
using node::FrameState;

namespace {

using Bytes = std::vector<NB_UCHAR>;

Bytes verb_frame(NB_ULONG correlator, size_t block_length = 12, size_t data_length = 0) {
    const Bytes block(block_length, 0x11);
    const Bytes data(data_length, 0x22);
    return node::make_frame(NOF_FRAME_VERB, correlator, 5, block.data(), block.size(), data.data(),
                            data.size());
}

struct BadHeader {
    NB_ULONG length, vcb_length, data_length;
    const char *what;
};

constexpr BadHeader bad_headers[] = {
    {0, 12, 0, "no length"},
    {23, 12, 0, "shorter than a header"},
    {24, 0, 0, "no block"},
    {32, 8, 0, "less than the header of a block"},
    {37, 13, 0, "an odd block"},
    {39, 12, 3, "odd data"},
    {40, 12, 0, "longer than its parts"},
    {36, 12, 4, "shorter than its parts"},
    {24 + 4100, 4100, 0, "too long a block"},
    {24 + 12 + 65540, 12, 65540, "too much data"},
    {0xFFFFFFFF, 0xFFFFFFE0, 7, "enormous"},
    {36, 0xFFFFFFFC, 16, "parts that wrap around"},
};

TEST(NodeFrames, GarbageEndsTheStreamForGood) {
    for (const BadHeader &bad : bad_headers) {
        Bytes stream = verb_frame(1);
        NOF_FRAME header = {bad.length, NOF_FRAME_VERB, 0, 2, 0, bad.vcb_length, bad.data_length};
        const auto *bytes = reinterpret_cast<const NB_UCHAR *>(&header);
        stream.insert(stream.end(), bytes, bytes + sizeof header);
        FrameReader reader;
        Frame frame;
        reader.add(stream.data(), stream.size());
        EXPECT_EQ(reader.next(frame), FrameState::Ready) << bad.what;
        EXPECT_EQ(reader.next(frame), FrameState::Garbage) << bad.what;
        const Bytes good = verb_frame(3);
        reader.add(good.data(), good.size());
        EXPECT_EQ(reader.next(frame), FrameState::Garbage) << bad.what;
    }
    FrameReader reader;
    Frame frame;
    const Bytes whole = verb_frame(1, 64);
    reader.add(whole.data(), whole.size() - 1);
    EXPECT_EQ(reader.next(frame), FrameState::None) << "a truncated frame is waited for";
}

NAP_RESOURCE_INDICATION ls_indication(NB_UCHAR state) {
    NAP_RESOURCE_INDICATION one = {};
    one.opcode = NAP_LS_INDICATION;
    one.state = state;
    return one;
}

node::Indication indication(NB_UCHAR state) {
    const NAP_RESOURCE_INDICATION one = ls_indication(state);
    return {1, 1, node::share(&one, sizeof one)};
}

/* A stream socket that takes little at a time, and what comes out of it. */
class Narrow {
public:
    Narrow() {
        int size = 4096;
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, pair_), 0);
        setsockopt(pair_[0], SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
    }
    ~Narrow() {
        close(pair_[0]);
        close(pair_[1]);
    }
    int in() const { return pair_[0]; }

    void drain() {
        NB_UCHAR bytes[8192];
        for (ssize_t count = 0; (count = recv(pair_[1], bytes, sizeof bytes, 0)) > 0;) {
            reader_.add(bytes, static_cast<size_t>(count));
        }
    }
    std::vector<NAP_RESOURCE_INDICATION> received() {
        std::vector<NAP_RESOURCE_INDICATION> all;
        Frame frame;
        while (reader_.next(frame) == FrameState::Ready) {
            NAP_RESOURCE_INDICATION one = {};
            memcpy(&one, frame.block.data(), std::min(sizeof one, frame.block.size()));
            all.push_back(one);
        }
        return all;
    }

private:
    int pair_[2];
    FrameReader reader_;
};

std::vector<NAP_RESOURCE_INDICATION> flush(node::OutQueue &queue) {
    Narrow pipe;
    while (!queue.empty()) {
        EXPECT_TRUE(queue.write_to(pipe.in()));
        pipe.drain();
    }
    EXPECT_EQ(queue.bytes(), 0U);
    return pipe.received();
}

TEST(NodeQueue, MergesStatusPerResourceAndKeepsOrder) {
    node::OutQueue queue;
    queue.status(1, "A", indication(1));
    queue.status(1, "B", indication(7));
    queue.answer(verb_frame(9, sizeof(NAP_RESOURCE_INDICATION)));
    queue.status(1, "A", indication(2));
    queue.status(2, "A", indication(3));
    queue.status(1, "A", indication(4));
    const auto sent = flush(queue);
    ASSERT_EQ(sent.size(), 4U);
    EXPECT_EQ(sent[0].state, 7);
    EXPECT_EQ(sent[1].opcode, 0x1111);
    EXPECT_EQ(sent[2].state, 3) << "another registration";
    EXPECT_EQ(sent[3].state, 4) << "the last state, behind an answer that may hold the first";
    queue.status(1, "A", indication(5));
    EXPECT_EQ(flush(queue).size(), 1U) << "what was sent is not merged with";
    queue.status(1, "A", indication(1), true);
    queue.status(1, "A", indication(2));
    EXPECT_EQ(flush(queue)[0].data_lost, 1) << "a loss is not forgotten by merging";
    queue.status(1, "A", indication(1));
    queue.forget(1);
    EXPECT_TRUE(queue.empty());
}

TEST(NodeQueue, TooManyBecomeOneThatSaysSo) {
    node::OutQueue queue;
    constexpr size_t size = sizeof(NOF_FRAME) + sizeof(NAP_RESOURCE_INDICATION);
    for (size_t at = 0; at < 3 * node::MAX_WAITING_STATUS; at++) {
        queue.status(1, "K" + std::to_string(at), indication(1));
        ASSERT_LE(queue.bytes(), (node::MAX_WAITING_STATUS + 1) * size);
    }
    queue.status(2, "other", indication(2));
    const auto sent = flush(queue);
    ASSERT_EQ(sent.size(), 2U);
    EXPECT_EQ(sent[0].data_lost, 1);
    EXPECT_EQ(sent[1].data_lost, 0);
    queue.status(1, "K1", indication(1));
    EXPECT_EQ(flush(queue)[0].data_lost, 0) << "only once";
}

/* One registration has much, one little, and many have one each. */
TEST(NodeQueue, WhoHasLittleLosesNothingToOneThatHasMuch) {
    constexpr uint64_t MUCH = 1, LITTLE = 2, OTHERS = 100;
    node::OutQueue queue;
    queue.status(LITTLE, "A", indication(3));
    for (size_t at = 1; at < node::MAX_WAITING_STATUS; at++) {
        queue.status(MUCH, "K" + std::to_string(at), indication(1));
    }
    queue.status(LITTLE, "B", indication(4));
    auto sent = flush(queue);
    ASSERT_EQ(sent.size(), 3U);
    size_t lost = 0;
    for (const NAP_RESOURCE_INDICATION &one : sent) {
        EXPECT_EQ(one.data_lost, one.state == 1 ? 1 : 0);
    }
    for (uint64_t at = 0; at < 2 * node::MAX_WAITING_STATUS; at++) {
        queue.status(OTHERS + at, "A", indication(1));
        queue.status(OTHERS + at, "B", indication(2));
    }
    EXPECT_LE(queue.bytes(), 3 * node::MAX_WAITING_STATUS * 1024) << "one each, and what may wait";
    for (const NAP_RESOURCE_INDICATION &one : flush(queue)) {
        lost += one.data_lost;
    }
    EXPECT_GT(lost, node::MAX_WAITING_STATUS);
}

TEST(NodeQueue, TheLastWordComesBehindWhatIsHalfSent) {
    for (const bool begun : {false, true}) {
        Narrow pipe;
        node::OutQueue queue;
        while (begun && queue.empty()) {
            queue.status(1, "A", indication(1));
            ASSERT_TRUE(queue.write_to(pipe.in()));
        }
        queue.status(1, "A", indication(1));
        queue.news(indication(1));
        queue.end_with(indication(9));
        queue.status(1, "A", indication(10));
        EXPECT_FALSE(queue.overflown());
        while (!queue.empty()) {
            pipe.drain();
            ASSERT_TRUE(queue.write_to(pipe.in()));
        }
        EXPECT_EQ(queue.bytes(), 0U);
        pipe.drain();
        const auto sent = pipe.received();
        ASSERT_GE(sent.size(), 2U);
        EXPECT_EQ(sent[sent.size() - 2].state, 9);
        EXPECT_EQ(sent.back().state, 10);
    }
}

TEST(NodeQueue, AFrameThatIsHalfSentStaysAsItIs) {
    Narrow pipe;
    node::OutQueue queue;
    while (queue.empty()) {
        queue.status(1, "A", indication(1));
        ASSERT_TRUE(queue.write_to(pipe.in()));
    }
    queue.status(1, "A", indication(7));
    queue.status(1, "A", indication(8));
    size_t states = 0;
    int last = 0;
    while (!queue.empty()) {
        pipe.drain();
        ASSERT_TRUE(queue.write_to(pipe.in()));
    }
    pipe.drain();
    for (const NAP_RESOURCE_INDICATION &one : pipe.received()) {
        states++;
        last = one.state;
    }
    EXPECT_EQ(last, 8);
    EXPECT_GT(states, 1U);
}

TEST(NodeQueue, ShortAnswersStayWholeAndInOrder) {
    Narrow pipe;
    node::OutQueue queue;
    for (size_t number = 0; number < 3000; number++) {
        const auto one = ls_indication(static_cast<NB_UCHAR>(number));
        queue.answer(node::make_frame(NOF_FRAME_ANSWER, 1, 1, &one, sizeof one));
        if (number % 7 == 0) {
            ASSERT_TRUE(queue.write_to(pipe.in()));
        }
    }
    while (!queue.empty()) {
        pipe.drain();
        ASSERT_TRUE(queue.write_to(pipe.in()));
    }
    EXPECT_EQ(queue.bytes(), 0U);
    pipe.drain();
    const auto sent = pipe.received();
    ASSERT_EQ(sent.size(), 3000U);
    for (size_t number = 0; number < sent.size(); number++) {
        ASSERT_EQ(sent[number].state, number % 256);
    }
}

TEST(NodeQueue, NewsOverflowsAndABrokenPeerIsTold) {
    node::OutQueue queue;
    const Bytes block(4096);
    EXPECT_FALSE(queue.overflown());
    while (!queue.overflown()) {
        queue.news({1, 1, node::share(block.data(), block.size())});
        ASSERT_LE(queue.bytes(), node::MAX_WAITING_NEWS + 8192);
    }
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
    close(pair[1]);
    EXPECT_FALSE(queue.write_to(pair[0]));
    close(pair[0]);
}

TEST(NodeFaults, ScriptsAreReadOrRefusedWhole) {
    Faults faults;
    std::string why;
    ASSERT_TRUE(faults.parse("f",
                             "delay 50 NAP_QUERY_PORT # ms\ndie one after 2 verbs\n"
                             "die two\nhang two 70\nhang NAP_QUERY_LS 1\n"
                             "at-once NAP_START_LS 0 0 3\n",
                             why));
    for (const char *bad :
         {"delay x", "delay 5 NAP_NO_SUCH", "fail NAP_QUERY_PORT 70000 1", "drop after 3",
          "die after 2 verbs", "die one after 0 verbs", "lose", "repeat 2", "hang", "hang one x",
          "hang NAP_NO_SUCH", "at-once NAP_QUERY_PORT 0 0", "ask 0", "explode"}) {
        EXPECT_FALSE(faults.parse("f", std::string("delay 1\n") + bad, why)) << bad;
        EXPECT_EQ(why.rfind("f:2: ", 0), 0U) << why;
    }
    EXPECT_EQ(faults.judge(NAP_QUERY_PORT, "one").delay_ms, 50U) << "the old script stands";
    EXPECT_TRUE(faults.judge(NAP_DEFINE_LS, "ONE").die) << "the second verb to that node";
    EXPECT_TRUE(faults.judge(NAP_QUERY_LS, "").hang);
    EXPECT_FALSE(faults.judge(NAP_QUERY_LS, "").hang) << "once";
    std::vector<uint32_t> now, told;
    const auto note = [&now](const node::FaultRule &rule) { now.push_back(rule.number); };
    faults.for_now(note);
    faults.for_now(note);
    EXPECT_EQ(now, (std::vector<uint32_t>{0, 70})) << "dies and hangs, once";
    faults.for_libraries([&told](const node::FaultRule &rule) { told.push_back(rule.opcode); });
    EXPECT_EQ(told, std::vector<uint32_t>{NAP_START_LS});
}

TEST(NodeFaults, LostIndicationsAreOwnedUpTo) {
    Faults faults;
    std::string why;
    ASSERT_TRUE(faults.parse("f", "lose indications 2\nrepeat indications 1\nno-restart\n", why));
    EXPECT_EQ(faults.judge_indication(), Faults::Fate::Lose);
    EXPECT_EQ(faults.judge_indication(), Faults::Fate::Lose);
    EXPECT_EQ(faults.judge_indication(), Faults::Fate::DeliverWithLoss);
    EXPECT_EQ(faults.judge_indication(), Faults::Fate::Repeat);
    EXPECT_EQ(faults.judge_indication(), Faults::Fate::Deliver);
    EXPECT_FALSE(faults.may_restart());
}

} // namespace
