// What the tests of the verb interface library share: a scripted node on a socket, in one process.
#ifndef LINKSUPPORT_H
#define LINKSUPPORT_H

#include "../../platform/nof/interface.h"
#include "nof.h"
#include "nofverbs.h"
#include "nofwire.h"
#include "pollloop.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace pollloop;
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

void settle() {
    while (round_of_loop(0) != 0) {
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

} // namespace

#endif
