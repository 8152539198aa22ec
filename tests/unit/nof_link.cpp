// The verb interface library against a scripted node on a socket, in one process: the test plays
// the node, and a main loop made of poll() drives the library.

#include "../../platform/nof/interface.h"
#include "nof.h"
#include "nofverbs.h"
#include "nofwire.h"

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<NB_UCHAR>;
using Numbers = std::vector<NB_ULONG>;

template <typename Record> Bytes to_bytes(const Record &record) {
    const NB_UCHAR *first = reinterpret_cast<const NB_UCHAR *>(&record);
    return Bytes(first, first + sizeof(record));
}

template <typename Record> Record from_bytes(const Bytes &bytes) {
    Record record{};
    EXPECT_GE(bytes.size(), sizeof(record));
    std::memcpy(&record, bytes.data(), std::min(bytes.size(), sizeof(record)));
    return record;
}

// The main loop.

struct Watched {
    NB_INT fd;
    short events;
    NB_INPUT_PROC proc;
    NB_VOID *data;
};

std::map<unsigned long, Watched> inputs;

unsigned long add_input(NB_VOID *, NB_INT fd, NB_VOID *condition, NB_INPUT_PROC proc,
                        NB_VOID *data) {
    static unsigned long last = 0;
    const bool reading = reinterpret_cast<uintptr_t>(condition) == 1;
    inputs[++last] = {fd, static_cast<short>(reading ? POLLIN : POLLOUT), proc, data};
    return last;
}

NB_VOID remove_input(unsigned long id) {
    inputs.erase(id);
}

// Waits for one ready input at most, and calls it.
bool round_of_loop(int timeout_ms) {
    const std::vector<std::pair<unsigned long, Watched>> watched(inputs.begin(), inputs.end());
    std::vector<pollfd> fds;
    for (const auto &[id, input] : watched) {
        fds.push_back({input.fd, input.events, 0});
    }
    poll(fds.data(), fds.size(), timeout_ms);
    for (size_t at = 0; at < fds.size(); at++) {
        if (fds[at].revents != 0) {
            unsigned long id = watched[at].first;
            watched[at].second.proc(watched[at].second.data, &fds[at].fd, &id);
            return true;
        }
    }
    return false;
}

bool until(const std::function<bool()> &condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        round_of_loop(1);
    }
    return true;
}

void settle() {
    while (round_of_loop(0)) {
    }
}

// What the program gets.

struct Heard {
    NB_ULONG target;
    NB_ULONG user_data;
    NAP_VCB header;
    Bytes block;
};

std::vector<Heard> heard;
std::function<void(const Heard &)> on_heard;

NB_VOID callback(NB_ULONG target, NB_VOID *vcb, NB_ULONG user_data) {
    Heard one{target, user_data, {}, {}};
    std::memcpy(&one.header, vcb, sizeof(one.header));
    const NAP_VERB *verb = nap_find_verb(one.header.opcode);
    const NB_UCHAR *bytes = static_cast<const NB_UCHAR *>(vcb);
    one.block.assign(bytes, bytes + (verb ? verb->block_size : sizeof(NAP_VCB)));
    heard.push_back(one);
    if (on_heard) {
        on_heard(one);
    }
}

Numbers heard_numbers() {
    Numbers numbers;
    for (const Heard &one : heard) {
        numbers.push_back(one.user_data);
    }
    return numbers;
}

// The node.

struct Received {
    NOF_FRAME header;
    Bytes block;
};

class Node {
public:
    explicit Node(const std::string &path) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, path.c_str());
        listener_ = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0);
        EXPECT_EQ(bind(listener_, reinterpret_cast<sockaddr *>(&address), sizeof(address)), 0);
        EXPECT_EQ(listen(listener_, 8), 0);
    }
    ~Node() {
        hang_up();
        close(listener_);
    }

    bool accept() {
        hang_up();
        peer_ = ::accept(listener_, nullptr, nullptr);
        return peer_ >= 0;
    }
    void hang_up() {
        if (peer_ >= 0) {
            close(peer_);
        }
        peer_ = -1;
        in_.clear();
    }
    void send(const Bytes &bytes) const {
        size_t sent = 0;
        ASSERT_TRUE(until([&] {
            const ssize_t count = ::send(peer_, bytes.data() + sent, bytes.size() - sent,
                                         MSG_NOSIGNAL | MSG_DONTWAIT);
            sent += count > 0 ? static_cast<size_t>(count) : 0;
            return sent == bytes.size();
        }));
    }
    void hello(NB_ULONG rights, NB_ULONG version = NOF_WIRE_VERSION) const {
        send(hello_bytes(rights, version));
    }
    static Bytes hello_bytes(NB_ULONG rights, NB_ULONG version = NOF_WIRE_VERSION);

    // Reads what there is, at most `most` bytes.
    void read_some(size_t most = 65536) {
        Bytes piece(most);
        const ssize_t count = recv(peer_, piece.data(), most, MSG_DONTWAIT);
        if (count > 0) {
            in_.insert(in_.end(), piece.begin(), piece.begin() + count);
        }
    }
    bool whole_frame() const {
        return in_.size() >= sizeof(NOF_FRAME) && in_.size() >= from_bytes<NOF_FRAME>(in_).length;
    }
    // Waits for the library's next verb.
    Received verb(size_t step = 65536) {
        EXPECT_TRUE(until([&] {
            if (!whole_frame()) {
                read_some(step);
            }
            return whole_frame();
        }));
        Received frame{from_bytes<NOF_FRAME>(in_), {}};
        EXPECT_EQ(frame.header.kind, NOF_FRAME_VERB);
        EXPECT_EQ(frame.header.length, sizeof(NOF_FRAME) + frame.header.vcb_length);
        EXPECT_NE(frame.header.correlator, 0U);
        frame.block.assign(in_.begin() + sizeof(NOF_FRAME), in_.begin() + frame.header.length);
        in_.erase(in_.begin(), in_.begin() + frame.header.length);
        return frame;
    }
    bool silent() {
        settle();
        read_some();
        return in_.empty();
    }

private:
    int listener_;
    int peer_ = -1;
    Bytes in_;
};

Bytes frame_bytes(NB_USHORT kind, NB_ULONG correlator, const Bytes &block, const Bytes &data = {}) {
    NOF_FRAME header{};
    header.length = static_cast<NB_ULONG>(sizeof(header) + block.size() + data.size());
    header.kind = kind;
    header.correlator = correlator;
    header.vcb_length = static_cast<NB_ULONG>(block.size());
    header.data_length = static_cast<NB_ULONG>(data.size());
    Bytes bytes = to_bytes(header);
    bytes.insert(bytes.end(), block.begin(), block.end());
    bytes.insert(bytes.end(), data.begin(), data.end());
    return bytes;
}

Bytes Node::hello_bytes(NB_ULONG rights, NB_ULONG version) {
    NOF_HELLO hello{};
    hello.version = version;
    hello.rights = rights;
    return frame_bytes(NOF_FRAME_HELLO, 0, to_bytes(hello));
}

Bytes answer_bytes(const Received &verb, NB_USHORT primary_rc = 0, NB_ULONG secondary_rc = 0) {
    Bytes block = verb.block;
    std::memcpy(&block[offsetof(NAP_VCB, primary_rc)], &primary_rc, sizeof(primary_rc));
    std::memcpy(&block[offsetof(NAP_VCB, secondary_rc)], &secondary_rc, sizeof(secondary_rc));
    return frame_bytes(NOF_FRAME_ANSWER, verb.header.correlator, block);
}

// Entries of these lengths, each filled with its number.
Bytes entries(const std::vector<NB_USHORT> &sizes) {
    Bytes data;
    for (size_t at = 0; at < sizes.size(); at++) {
        Bytes entry(sizes[at], static_cast<NB_UCHAR>(at + 1));
        std::memcpy(entry.data(), &sizes[at], sizeof(sizes[at]));
        data.insert(data.end(), entry.begin(), entry.end());
    }
    return data;
}

Bytes list_answer(const Received &verb, const Bytes &data, NB_USHORT count,
                  std::function<void(NAP_QUERY_LIST &)> change = {}) {
    NAP_QUERY_LIST block = from_bytes<NAP_QUERY_LIST>(verb.block);
    block.num_entries = count;
    block.total_num_entries = count;
    block.total_buf_size = static_cast<NB_ULONG>(data.size());
    if (change) {
        change(block);
    }
    return frame_bytes(NOF_FRAME_ANSWER, verb.header.correlator, to_bytes(block), data);
}

template <typename Block> Block verb_block(NB_USHORT opcode) {
    Block block{};
    block.opcode = opcode;
    return block;
}

struct List {
    NAP_QUERY_LIST block = verb_block<NAP_QUERY_LIST>(NAP_QUERY_LS);
    Bytes buffer;

    explicit List(size_t size) : buffer(size, 0xEE) {
        const NB_UCHAR *address = buffer.data();
        std::memcpy(block.buf_ptr, &address, sizeof(address));
        block.buf_size = static_cast<NB_ULONG>(size);
        block.list_options = NAP_DETAIL | NAP_FIRST_IN_LIST;
    }
};

NB_USHORT issue(NB_VOID *vcb, NB_ULONG user_data = 0, NB_ULONG target = 0) {
    return nof_async_version(NOF_VERSION, target, vcb, callback, user_data);
}

class Link : public ::testing::Test {
protected:
    Link() {
        char name[] = "/tmp/qaXXXXXX";
        folder = mkdtemp(name);
        path = folder / "sna.sock";
        setenv("SNA_SOCKET", path.c_str(), 1);
        nba_pd_set_log((folder / "log").c_str(), NB_PD_ALL);
        vpm_asm_use_xt_sched(nullptr, add_input, remove_input);
        node = std::make_unique<Node>(path);
    }
    ~Link() override {
        nof_terminate();
        EXPECT_TRUE(inputs.empty());
        heard.clear();
        on_heard = {};
        vpm_set_io_limit(10);
        fs::remove_all(folder);
    }

    // Connects with a first verb, which is answered.
    void connect(NB_ULONG rights = NOF_RIGHT_CHANGE) {
        NAP_QUERY_NODE_VERB block = verb_block<NAP_QUERY_NODE_VERB>(NAP_QUERY_NODE);
        ASSERT_EQ(issue(&block), NOF_IN_PROGRESS);
        ASSERT_TRUE(node->accept());
        node->hello(rights);
        node->send(answer_bytes(node->verb()));
        ASSERT_TRUE(until([] { return heard.size() == 1; }));
        heard.clear();
    }

    // Opens a target with this handle.
    void open_target(NB_ULONG handle) {
        auto block = verb_block<NAP_CONNECT_NODE_VERB>(NAP_CONNECT_NODE);
        ASSERT_EQ(issue(&block), NOF_IN_PROGRESS);
        Received verb = node->verb();
        std::memcpy(&verb.block[offsetof(NAP_CONNECT_NODE_VERB, target_handle)], &handle, 4);
        node->send(answer_bytes(verb));
        ASSERT_TRUE(until([] { return heard.size() == 1; }));
        ASSERT_EQ(block.target_handle, handle);
        heard.clear();
    }

    // Registers for indications; returns the correlator.
    NB_ULONG open_sink(NB_ULONG target, NB_ULONG user_data) {
        auto block = verb_block<NAP_REGISTER_SINK_VERB>(NAP_REGISTER_INDICATION_SINK);
        block.indication = NAP_LS_INDICATION;
        EXPECT_EQ(issue(&block, user_data, target), NOF_IN_PROGRESS);
        const Received verb = node->verb();
        EXPECT_EQ(verb.header.target, target);
        node->send(answer_bytes(verb));
        EXPECT_TRUE(until([] { return heard.size() == 1; }));
        heard.clear();
        return verb.header.correlator;
    }

    void expect_lost(const Numbers &verbs, NB_ULONG status_user_data) {
        ASSERT_TRUE(until([&] { return heard.size() == verbs.size() + 1; }));
        settle();
        ASSERT_EQ(heard.size(), verbs.size() + 1);
        for (size_t at = 0; at < verbs.size(); at++) {
            EXPECT_EQ(heard[at].user_data, verbs[at]);
            EXPECT_EQ(heard[at].header.primary_rc, 1008);
            EXPECT_EQ(heard[at].header.secondary_rc, 21827U);
        }
        const auto status = from_bytes<NAP_NOF_STATUS_INDICATION_VERB>(heard.back().block);
        EXPECT_EQ(status.opcode, 61465);
        EXPECT_EQ(status.primary_rc, 528);
        EXPECT_EQ(status.status, 21827U);
        EXPECT_EQ(status.target_handle, 0U);
        EXPECT_EQ(heard.back().target, 0U);
        EXPECT_EQ(heard.back().user_data, status_user_data);
    }

    fs::path folder;
    fs::path path;
    std::unique_ptr<Node> node;
};

Bytes ls_indication(NB_UCHAR first_of_key) {
    auto block = verb_block<NAP_RESOURCE_INDICATION>(NAP_LS_INDICATION);
    block.primary_rc = NAP_INDICATION;
    block.key[0] = first_of_key;
    return to_bytes(block);
}

// Answers.

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

// Garbage and loss.

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
