/* Start to painted window: the administration program with the sample node, beside the least that a
 * toolkit program does to show the same window (minimal.cpp), and the node's own answer time;
 * interleaved rounds on a private display, medians.  Then one start through a counter of what is
 * asked of the X server.
 *
 *   bench_startup [--rounds N] [--domain NAME] [--trace]
 *
 * Status 1 when (program - answers) / minimal is above the goal. */
#include "nodereplay.h"
#include "surroundings.h"
#include "xcount.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr double goal = 1.5;

struct START {
    const char *program;
    const char *title;
};

constexpr START administration = {"quiladmin", loaded_title};
constexpr START minimal = {"bench_startup_minimal", ""};

/* One start; the variables say where display and node software are. */
double measure(const SURROUNDINGS &around, WATCHER &watcher, const START &what,
               const VARIABLES &variables, const std::function<void()> &meanwhile) {
    const auto start = CLOCK::now();
    double painted;
    {
        CHILD child({around.program(what.program)}, around.variables(variables));
        painted = watcher.until_painted(start, child, what.title, meanwhile);
    }
    watcher.until_gone(meanwhile);
    return painted;
}

X_TALLY count_requests(const SURROUNDINGS &around, WATCHER &watcher, const START &what,
                       const VARIABLES &variables, const std::function<void()> &meanwhile) {
    X_COUNTER counter(around.display());
    VARIABLES all = variables;
    all.push_back("DISPLAY=" + counter.display());
    measure(around, watcher, what, all, [&] {
        counter.pump(1);
        meanwhile();
    });
    return counter.tally();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void print_row(const char *name, const std::vector<double> &values) {
    std::printf("%-34s %8.1f %8.1f %8.1f\n", name, median(values),
                *std::min_element(values.begin(), values.end()),
                *std::max_element(values.begin(), values.end()));
}

void print_counts(const X_TALLY &ours, const X_TALLY &least) {
    std::printf("\n%-34s %10s %10s\n", "asked of the X server", "program", "minimal");
    const struct {
        const char *name;
        unsigned X_TALLY::*count;
    } rows[] = {{"connections", &X_TALLY::connections},
                {"requests", &X_TALLY::requests},
                {"replies", &X_TALLY::replies},
                {"round trips", &X_TALLY::round_trips},
                {"errors", &X_TALLY::errors}};
    for (const auto &row : rows) {
        std::printf("%-34s %10u %10u\n", row.name, ours.*row.count, least.*row.count);
    }
    std::printf("\n%-34s %10s %10s\n", "round trips for (replies)", "program", "minimal");
    const auto count_of = [](const std::map<std::string, unsigned> &counts,
                             const std::string &name) {
        const auto found = counts.find(name);
        return found == counts.end() ? 0 : found->second;
    };
    std::map<std::string, unsigned> names = ours.replies_by_name;
    names.insert(least.replies_by_name.begin(), least.replies_by_name.end());
    for (const auto &[name, ignored] : names) {
        std::printf("%-34s %4u (%3u) %4u (%3u)\n", name.c_str(), count_of(ours.waits_by_name, name),
                    count_of(ours.replies_by_name, name), count_of(least.waits_by_name, name),
                    count_of(least.replies_by_name, name));
    }
}

struct OPTIONS {
    int rounds = 9;
    std::string domain = "single";
    bool trace = false;
};

OPTIONS read_options(int argc, char **argv) {
    OPTIONS options;
    for (int at = 1; at < argc; at++) {
        const std::string option = argv[at];
        if (option == "--trace") {
            options.trace = true;
        } else if (option == "--rounds" && at + 1 < argc) {
            options.rounds = std::clamp(std::atoi(argv[++at]), 1, 1000);
        } else if (option == "--domain" && at + 1 < argc) {
            options.domain = argv[++at];
        } else {
            die("usage: bench_startup [--rounds N] [--domain NAME] [--trace]");
        }
    }
    return options;
}

} // namespace

int main(int argc, char **argv) {
    const OPTIONS options = read_options(argc, argv);
    signal(SIGPIPE, SIG_IGN);
    const SURROUNDINGS around({"--domain", options.domain});
    WATCHER watcher(around.display());
    const std::string node = around.socket("sna.sock");
    const VARIABLES direct = {"DISPLAY=" + around.display()};
    const auto nothing = [] {};

    NODE_RECORDER recorder(around.socket("recorder.sock"), node);
    const X_TALLY ours = count_requests(around, watcher, administration,
                                        {"SNA_SOCKET=" + around.socket("recorder.sock")},
                                        [&recorder] { recorder.pump(); });
    const X_TALLY least = count_requests(around, watcher, minimal, {}, nothing);
    if (options.trace) {
        for (const std::string &line : ours.trace) {
            std::puts(line.c_str());
        }
    }

    std::vector<double> program_ms, minimal_ms, answers_ms;
    for (int round = 0; round < options.rounds; round++) {
        program_ms.push_back(measure(around, watcher, administration, direct, nothing));
        minimal_ms.push_back(measure(around, watcher, minimal, direct, nothing));
        answers_ms.push_back(replay(node, recorder.steps()));
        if (answers_ms.back() < 0) {
            die("the node software ended the plain client's connection");
        }
    }
    std::printf("%-34s %8s %8s %8s\n", "milliseconds", "median", "least", "most");
    print_row("program, start to painted window", program_ms);
    print_row("minimal program, the same", minimal_ms);
    print_row(
        ("node's answers to " + std::to_string(verbs_of(recorder.steps())) + " verbs").c_str(),
        answers_ms);
    const double ratio = (median(program_ms) - median(answers_ms)) / median(minimal_ms);
    std::printf("(program - answers) / minimal      %8.2f          goal: at most %.1f\n", ratio,
                goal);
    print_counts(ours, least);
    return ratio <= goal ? 0 : 1;
}
