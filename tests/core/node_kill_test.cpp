/* The node software is killed again and again while it is changed; what was acknowledged is there.
 *
 *   KILL_ROUNDS=200 KILL_SEED=7 build/debug/tests/node_kill_test */
#include "runningnode.h"

#include <cstdlib>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <thread>

using namespace node_test;

namespace {

/* What an administrator knows of a node that he changes as fast as he can. */
class Changer {
public:
    explicit Changer(unsigned seed) : random_(seed) {}

    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

    /* Changes the node until it or the connection ends, since `victim` is killed a little after
     * some answers; some verbs are on their way then. */
    void work(Client &client, pid_t victim) {
        constexpr unsigned MOST_ANSWERS = 30, LONGEST_US = 10000;
        const NB_ULONG target = client.join("one");
        unsigned left = below(MOST_ANSWERS) + 1;
        std::thread killer;
        while (keep_sending(client, target) && take_answer(client)) {
            if (left > 0 && --left == 0) {
                killer = std::thread([victim, wait = below(LONGEST_US)] {
                    usleep(wait);
                    kill(victim, SIGKILL);
                });
            }
        }
        if (killer.joinable()) {
            killer.join();
        }
        for (const auto &[correlator, change] : sent_) {
            unsure_[change.name] = true;
        }
        sent_.clear();
    }

    void begin(const std::set<std::string> &listed) { there_ = listed; }

    /* What is listed must be what was acknowledged.  From now on it is what counts. */
    void compare(const std::set<std::string> &listed) {
        std::set<std::string> names = there_;
        names.insert(listed.begin(), listed.end());
        for (const std::string &name : names) {
            const bool is_there = listed.count(name) != 0;
            EXPECT_TRUE(unsure_[name] || is_there == (there_.count(name) != 0))
                << name << (is_there ? " came back" : " is lost");
        }
        there_ = listed;
        unsure_.clear();
    }

    size_t acknowledged = 0;

private:
    static constexpr size_t ON_THE_WAY = 32;
    static constexpr unsigned NAMES = 300;

    struct Sent {
        std::string name;
        bool defines;
    };

    bool keep_sending(Client &client, NB_ULONG target) {
        while (sent_.size() < ON_THE_WAY) {
            const std::string name = "D" + std::to_string(below(NAMES));
            const bool defines = below(2) != 0;
            const NB_ULONG correlator = ++last_;
            NAP_DEFINE_DLC_VERB define = {};
            NAP_NAME_VERB remove = {};
            define.opcode = NAP_DEFINE_DLC;
            put(define.dlc_name, local8(name.c_str()));
            remove.opcode = NAP_DELETE_DLC;
            memcpy(remove.key, local8(name.c_str()).data(), 8);
            const auto frame =
                defines
                    ? node::make_frame(NOF_FRAME_VERB, correlator, target, &define, sizeof define)
                    : node::make_frame(NOF_FRAME_VERB, correlator, target, &remove, sizeof remove);
            sent_[correlator] = {name, defines};
            if (!client.try_raw(frame)) {
                return false;
            }
        }
        return true;
    }

    bool take_answer(Client &client) {
        Frame frame;
        if (!client.receive(frame)) {
            return false;
        }
        const auto found = sent_.find(frame.header.correlator);
        if (frame.header.kind != NOF_FRAME_ANSWER || found == sent_.end()) {
            return true;
        }
        NAP_VCB header = {};
        memcpy(&header, frame.block.data(), sizeof header);
        if (header.primary_rc == NAP_COMM_FAILURE) {
            return false;
        }
        const Sent change = found->second;
        if (header.primary_rc == NAP_OK) {
            acknowledged++;
            if (change.defines) {
                there_.insert(change.name);
            } else {
                there_.erase(change.name);
            }
        }
        sent_.erase(found);
        return true;
    }

    std::mt19937 random_;
    NB_ULONG last_ = 1000000;
    std::map<NB_ULONG, Sent> sent_;
    std::set<std::string> there_;
    std::map<std::string, bool> unsure_;
};

std::set<std::string> listed_dlcs(Client &client) {
    std::set<std::string> names;
    NAP_QUERY_LIST verb = {};
    verb.opcode = NAP_QUERY_DLC;
    verb.buf_size = 65535;
    verb.list_options = NAP_FIRST_IN_LIST | NAP_DETAIL;
    const NB_ULONG correlator = client.send_verb(client.join("one"), verb);
    Frame frame;
    while (client.receive(frame)) {
        if (frame.header.kind != NOF_FRAME_ANSWER || frame.header.correlator != correlator) {
            continue;
        }
        for (size_t at = 0; at + sizeof(NAP_DLC_DATA) <= frame.data.size();) {
            NAP_DLC_DATA entry;
            memcpy(&entry, frame.data.data() + at, sizeof entry);
            const std::string name(reinterpret_cast<const char *>(entry.dlc_name), 8);
            names.insert(name.substr(0, name.find(' ')));
            at += entry.overlay_size;
        }
        memcpy(&verb, frame.block.data(), sizeof verb);
        EXPECT_EQ(verb.num_entries, verb.total_num_entries) << "one answer holds all";
        break;
    }
    return names;
}

TEST(Kills, LoseNothingThatWasAcknowledged) {
    const int seed = from_environment("KILL_SEED", 1);
    const int rounds = from_environment("KILL_ROUNDS", 5);
    SCOPED_TRACE("KILL_SEED=" + std::to_string(seed));
    Changer changer(static_cast<unsigned>(seed));
    Running node;
    {
        Client client(node.socket());
        changer.begin(listed_dlcs(client));
    }
    for (int round = 0; round < rounds && !HasFailure(); round++) {
        const bool whole = changer.below(5) != 0; /* or the process of the node alone */
        const pid_t victim = whole ? node.pid : node.process_of("one");
        ASSERT_GT(victim, 0);
        Client client(node.socket()), watcher(node.socket());
        ASSERT_EQ(watcher.listen_to(0, NAP_SERVER_INDICATION), OK_CODES);
        changer.work(client, victim);
        if (whole) {
            node.stop(SIGKILL);
            node.start();
        } else {
            watcher.wait_for_server("one", 0);
            watcher.wait_for_server("one", 1);
        }
        Client after(node.socket());
        changer.compare(listed_dlcs(after));
    }
    EXPECT_GT(changer.acknowledged, size_t(rounds));
    std::cout << changer.acknowledged << " changes acknowledged in " << rounds << " rounds\n";
}

} // namespace

int main(int argc, char **argv) {
    return node_test::run_tests_or_node(argc, argv);
}
