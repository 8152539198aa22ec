/* What it costs the program to take in what a node tells unasked, seen from outside: the program
 * shows the node's window, and a recorder that stands between it and the node software sends it
 * status indications as if the node had.
 *
 *   bench_events [--long N]
 *
 * A storm of 10^5 indications over 10^4 link stations and LUs in the window's lists; the same over
 * those at the top of a list, which are on the screen; N indications (10^7) that must not make the
 * program grow.  What a node that returns costs, bench_build says.  Processor time is the
 * program's, without the X server's.  Status 1 when a goal is missed. */
#include "nodereplay.h"
#include "surroundings.h"
#include "xcount.h"

#include "nofcopy.h"
#include "nofwire.h"
#include "schemas.h"
#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <thread>
#include <unistd.h>

namespace {

constexpr double rate_goal = 100000; /* indications a second of processor time */
constexpr double growth_goal = 1.02; /* of the resident set, over the long storm */
constexpr size_t storm = 100000;
constexpr size_t shown_lines = 12; /* of a list: fewer than the window shows */

bool missed = false;

bool met(bool goal) {
    missed = missed || !goal;
    return goal;
}

/* Passes on between a program and its X server in a thread of its own, so that whoever sends to the
 * program may wait for it. */
class X_THREAD {
public:
    explicit X_THREAD(const std::string &display)
        : counter_(display), thread_([this] {
              while (!ended_) {
                  counter_.pump(1);
                  if (asked_) {
                      tally_ = counter_.tally();
                      asked_ = false;
                  }
              }
          }) {}
    ~X_THREAD() {
        ended_ = true;
        thread_.join();
    }
    X_THREAD(const X_THREAD &) = delete;
    X_THREAD &operator=(const X_THREAD &) = delete;

    const std::string &display() const { return counter_.display(); }
    X_TALLY tally() {
        for (asked_ = true; asked_; usleep(100)) {
        }
        return tally_;
    }

private:
    X_COUNTER counter_;
    X_TALLY tally_;
    std::atomic<bool> asked_ = false, ended_ = false;
    std::thread thread_;
};

/* The program with the window of the first node of a generated domain. */
class SHOWN_NODE {
public:
    explicit SHOWN_NODE(const std::string &numbers)
        : around_({"--generate", numbers}), watcher_(around_.display()), x_(around_.display()),
          recorder_(around_.socket("recorder.sock"), around_.socket("sna.sock")),
          program_({around_.program("quiladmin"), "-geometry", "1100x980"},
                   around_.variables({"SNA_SOCKET=" + around_.socket("recorder.sock"),
                                      "DISPLAY=" + x_.display()})) {
        watcher_.until_painted(CLOCK::now(), program_, loaded_title, [this] { recorder_.pump(); });
        settle();
    }

    NODE_RECORDER &recorder() { return recorder_; }
    X_TALLY tally() { return x_.tally(); }
    const SURROUNDINGS &around() const { return around_; }

    /* Of the program, in seconds. */
    double cpu() const {
        double nanoseconds = 0;
        std::ifstream(file("schedstat")) >> nanoseconds;
        return nanoseconds * 1e-9;
    }

    /* Its resident set, in bytes. */
    double memory() const {
        double pages = 0;
        std::ifstream(file("statm")) >> pages >> pages;
        return pages * static_cast<double>(sysconf(_SC_PAGESIZE));
    }

    /* Until it has read everything and does no more. */
    void settle() {
        double before = -1;
        for (int still = 0; still < 30; usleep(10000)) {
            recorder_.pump();
            const double now = cpu();
            still = !recorder_.program_reads() && now == before ? still + 1 : 0;
            before = now;
            if (program_.ended()) {
                die("the program has ended");
            }
        }
    }

private:
    std::string file(const char *name) const {
        return "/proc/" + std::to_string(program_.pid()) + "/" + name;
    }

    SURROUNDINGS around_;
    WATCHER watcher_;
    X_THREAD x_;
    NODE_RECORDER recorder_;
    CHILD program_;
};

/* Finding resources in what was said between program and node. */

const char *block_of(const WIRE_STEP &step) {
    return step.frame.data() + sizeof(NOF_FRAME);
}

/* The number under which the program has registered for an indication. */
NOF_FRAME registration(const std::vector<WIRE_STEP> &steps, NB_USHORT indication) {
    for (const WIRE_STEP &step : steps) {
        const auto verb = nap_copy<NAP_VCB>(block_of(step));
        if (step.verb && verb.opcode == NAP_REGISTER_INDICATION_SINK &&
            nap_copy<NAP_REGISTER_SINK_VERB>(block_of(step)).indication == indication) {
            return nap_copy<NOF_FRAME>(step.frame.data());
        }
    }
    die("the program has not registered for a class");
}

/* A frame with an indication that brings the entry's status, but for its first byte. */
std::string make_frame(const records::Schema &schema, NOF_FRAME frame, const char *entry,
                       NB_UCHAR state) {
    NAP_RESOURCE_INDICATION block = {};
    block.opcode = schema.lists[0].indication;
    block.primary_rc = NAP_INDICATION;
    memcpy(block.key, entry + records::KEY_OFFSET, schema.key_size());
    block.state = state;
    block.det_length = schema.det.width;
    memcpy(block.det_data, entry + schema.det.offset, schema.det.width);
    block.det_data[0] = state;
    frame.kind = NOF_FRAME_INDICATION;
    frame.vcb_length = sizeof(block);
    frame.data_length = 0;
    frame.length = sizeof(frame) + sizeof(block);
    std::string bytes(frame.length, '\0');
    memcpy(bytes.data(), &frame, sizeof(frame));
    memcpy(bytes.data() + sizeof(frame), &block, sizeof(block));
    return bytes;
}

/* Two indications of each resource of a class, in the order of its list: what the one says changes
 * what the other has said. */
struct CHANGES {
    std::string one, other;
};
std::vector<CHANGES> changes_of(const std::vector<WIRE_STEP> &steps,
                                const records::Schema &schema) {
    const NOF_FRAME frame = registration(steps, schema.lists[0].indication);
    std::vector<CHANGES> changes;
    for (const WIRE_STEP &step : steps) {
        const auto answer = nap_copy<NAP_VCB>(block_of(step));
        if (step.verb || answer.opcode != schema.lists[0].list || answer.primary_rc != NAP_OK) {
            continue;
        }
        const char *entry = block_of(step) + nap_copy<NOF_FRAME>(step.frame.data()).vcb_length;
        while (entry < step.frame.data() + step.frame.size()) {
            changes.push_back({make_frame(schema, frame, entry, NAP_ACTIVE),
                               make_frame(schema, frame, entry, NAP_NOT_ACTIVE)});
            entry += nap_copy<NB_USHORT>(entry);
        }
    }
    return changes;
}

/* Storms. */

struct FIGURES {
    double wall, cpu; /* seconds */
    unsigned drawn, requests, round_trips;
};

/* Sends `count` indications, over all resources again and again. */
FIGURES measure_storm(SHOWN_NODE *node, const std::vector<CHANGES> &changes, size_t count) {
    constexpr size_t piece = 64;
    const X_TALLY before = node->tally();
    const double cpu = node->cpu();
    const auto start = CLOCK::now();
    std::string frames;
    for (size_t at = 0; at < count; at++) {
        const CHANGES &change = changes[at % changes.size()];
        frames += at / changes.size() % 2 == 0 ? change.one : change.other;
        if (at % piece == piece - 1 || at + 1 == count) {
            node->recorder().send_program(frames);
            frames.clear();
        }
    }
    while (node->recorder().program_reads()) {
        usleep(100);
    }
    const double wall = ms_since(start) / 1000;
    node->settle();
    const X_TALLY after = node->tally();
    return {wall, node->cpu() - cpu, after.copies - before.copies, after.requests - before.requests,
            after.round_trips - before.round_trips};
}

void print_storm(const char *what, size_t count, const FIGURES &figures) {
    const double rate = static_cast<double>(count) / figures.cpu;
    printf("%-44s %8zu  %7.3f s wall %7.3f s cpu %8.0f a second, goal %.0f %s\n", what, count,
           figures.wall, figures.cpu, rate, rate_goal, met(rate >= rate_goal) ? "met" : "MISSED");
    printf("%-44s %8s  lines drawn %u, X requests %u, round trips %u\n", "", "", figures.drawn,
           figures.requests, figures.round_trips);
    fflush(stdout);
}

void measure_storms(size_t long_storm) {
    SHOWN_NODE node("nodes=1,ports=1,ls=5000,local_lus=5000,lus=0,pus=1,modes=0,partners=0");
    std::vector<CHANGES> all = changes_of(node.recorder().steps(), records::ls);
    const std::vector<CHANGES> shown(all.begin(), all.begin() + shown_lines);
    const std::vector<CHANGES> lus = changes_of(node.recorder().steps(), records::local_lu);
    all.insert(all.end(), lus.begin(), lus.end());
    std::shuffle(all.begin(), all.end(), std::mt19937(1));

    const FIGURES wide = measure_storm(&node, all, storm);
    print_storm("10^4 resources of the lists", storm, wide);
    const FIGURES narrow = measure_storm(&node, shown, storm);
    print_storm("resources on the screen", storm, narrow);
    const bool bounded = wide.drawn < storm / 10 && narrow.drawn <= storm;
    printf("%-44s %s\n", "no line is drawn more often than it changed",
           met(bounded) ? "met" : "MISSED");
    printf("%-44s %s\n", "no round trip an indication",
           met(wide.round_trips + narrow.round_trips < storm / 1000) ? "met" : "MISSED");

    const double before = node.memory();
    const FIGURES figures = measure_storm(&node, all, long_storm);
    const double growth = node.memory() / before;
    print_storm("the same for long", long_storm, figures);
    printf("%-44s %8s  %.1f MB before, %.3f times that after, goal %.2f %s\n", "resident set", "",
           before / 1e6, growth, growth_goal, met(growth <= growth_goal) ? "met" : "MISSED");
    fflush(stdout);
}

} // namespace

int main(int argc, char **argv) {
    const size_t long_storm =
        argc > 2 && strcmp(argv[1], "--long") == 0 ? strtoul(argv[2], nullptr, 10) : 10000000;
    signal(SIGPIPE, SIG_IGN);
    measure_storms(long_storm);
    return missed ? 1 : 0;
}
