/* Administrators that send whatever they like, to all of the node software: verbs that are almost
 * right, frames that are not, answers that nobody reads, connections that end in the middle.
 *
 *   STORM_SECONDS=600 STORM_SEED=7 build/debug/tests/node_storm_test */
#include "runningnode.h"

#include "nofverbs.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <random>

using namespace node_test;

namespace {

class Storm {
public:
    Storm(std::string socket, unsigned seed) : socket_(std::move(socket)), random_(seed) {}

    /* One of the connections does something. */
    void step() {
        std::unique_ptr<Client> &client = clients_[below(std::size(clients_))];
        const unsigned what = below(200);
        if (client == nullptr || what == 0) {
            client = std::make_unique<Client>(socket_);
        } else if (what < 100 || !client->is_writable()) {
            Frame frame;
            for (unsigned left = 20; left > 0 && client->receive(frame, 0); left--) {
                note(frame);
            }
        } else {
            const auto bytes = what == 100 ? noise() : verb();
            const bool whole = what > 102;
            const size_t length = whole ? bytes.size() : below(unsigned(bytes.size()));
            if (!client->try_raw({bytes.begin(), bytes.begin() + ssize_t(length)})) {
                client.reset(); /* the other end had enough of it */
            }
        }
    }

    size_t answered = 0, done = 0;

private:
    static constexpr size_t CLIENTS = 12;
    static constexpr size_t TARGETS = 16;

    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

    std::vector<NB_UCHAR> noise() {
        std::vector<NB_UCHAR> bytes(1 + below(300));
        for (NB_UCHAR &byte : bytes) {
            byte = static_cast<NB_UCHAR>(random_());
        }
        return bytes;
    }

    /* Handles that were given out are used by all. */
    void note(const Frame &frame) {
        const NB_USHORT opcode = node::block_opcode(frame.block);
        NAP_VCB header;
        memcpy(&header, frame.block.data(), sizeof header);
        answered += frame.header.kind == NOF_FRAME_ANSWER ? 1 : 0;
        done += frame.header.kind == NOF_FRAME_ANSWER && header.primary_rc == NAP_OK ? 1 : 0;
        if (opcode == NAP_CONNECT_NODE && frame.block.size() == sizeof(NAP_CONNECT_NODE_VERB)) {
            NAP_CONNECT_NODE_VERB verb;
            memcpy(&verb, frame.block.data(), sizeof verb);
            targets_[below(TARGETS)] = verb.target_handle;
        } else if (opcode == NAP_OPEN_FILE && frame.block.size() == sizeof(NAP_OPEN_FILE_VERB)) {
            NAP_OPEN_FILE_VERB verb;
            memcpy(&verb, frame.block.data(), sizeof verb);
            targets_[below(TARGETS)] = verb.target_handle;
        }
    }

    std::vector<NB_UCHAR> verb() {
        const NAP_VERB &row = gnap_verbs[below(NAP_VERB_COUNT)];
        const NB_USHORT often[] = {NAP_CONNECT_NODE, NAP_OPEN_FILE, NAP_REGISTER_INDICATION_SINK,
                                   NAP_DEFINE_DLC,   NAP_INIT_NODE, NAP_STOP_NODE};
        const NB_USHORT opcode =
            below(3) == 0 ? often[below(unsigned(std::size(often)))] : row.opcode;
        std::vector<NB_UCHAR> block(nap_find_verb(opcode)->block_size);
        memcpy(block.data(), &opcode, sizeof opcode);
        if (opcode == NAP_CONNECT_NODE) {
            NAP_CONNECT_NODE_VERB join = {};
            join.opcode = opcode;
            strcpy(reinterpret_cast<char *>(join.node_name), below(2) != 0 ? "one" : "two");
            memcpy(block.data(), &join, sizeof join);
        }
        const char *names[] = {"LAN0", "ETH0", "ONE", "NETA.TWO", "D1", "#INTER"};
        const std::string name = names[below(unsigned(std::size(names)))];
        if (block.size() >= sizeof(NAP_NAME_VERB) && below(2) != 0) {
            const std::string key = below(2) != 0 ? local8(name.substr(0, 8).c_str())
                                                  : ebcdic(name.substr(0, 8).c_str());
            memcpy(block.data() + 12, key.data(), 8);
        }
        for (unsigned left = below(4); left > 0; left--) {
            const size_t at = 12 + below(unsigned(block.size()));
            if (at < block.size()) {
                block[at] = static_cast<NB_UCHAR>(random_());
            }
        }
        return node::make_frame(below(100) == 0 ? NB_USHORT(below(9)) : NOF_FRAME_VERB, ++last_,
                                below(4) == 0 ? below(300) : targets_[below(TARGETS)], block.data(),
                                block.size());
    }

    std::string socket_;
    std::mt19937 random_;
    std::unique_ptr<Client> clients_[CLIENTS];
    NB_ULONG targets_[TARGETS] = {};
    NB_ULONG last_ = 0;
};

TEST(Storm, NobodyBringsTheNodeSoftwareDown) {
    const int seed = from_environment("STORM_SEED", 1);
    const auto end = std::chrono::steady_clock::now() +
                     std::chrono::seconds(from_environment("STORM_SECONDS", 3));
    SCOPED_TRACE("STORM_SEED=" + std::to_string(seed));
    Running node;
    const std::vector<pid_t> nodes = node.nodes();
    Storm storm(node.socket(), static_cast<unsigned>(seed));
    while (std::chrono::steady_clock::now() < end && !HasFailure()) {
        storm.step();
    }
    EXPECT_EQ(node.nodes(), nodes) << "no process died";
    Client client(node.socket());
    for (const char *name : {"one", "two"}) {
        EXPECT_EQ(client.query(client.join(name), NAP_QUERY_DLC), OK_CODES);
    }
    EXPECT_GT(storm.done, 100U);
    EXPECT_EQ(node.stop(), 0);
    std::cout << storm.answered << " verbs answered, " << storm.done << " of them done\n";
}

} // namespace

int main(int argc, char **argv) {
    return node_test::run_tests_or_node(argc, argv);
}
