/* How long the model build takes, beside a floor that does only what no build can do without.
 *
 *   bench_build [--resources N,N,...] [--nodes N,N] [--rounds N] [--domain NUMBERS]
 *
 * For every size, a domain of dependent LUs and what they hang under is generated and served by a
 * running node software; build and floor take turns in processes of their own, and medians are
 * printed, also of the processor time that the node software takes meanwhile, and of the time until
 * a node that died and returns is whole again.  NUMBERS name one
 * domain instead, as `snanode --generate` takes them: nodes=1,local_lus=200000 reads many short
 * lists.  Run it from any folder; it finds the node software beside itself. */
#include "buildrun.h"

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr double return_goal = 2;

struct OPTIONS {
    std::vector<long> resources = {1000, 10000, 100000, 1000000};
    std::vector<long> nodes = {1, 100};
    int rounds = 3;
    std::string domain; /* "": by nodes and resources */
};

std::vector<long> numbers(const char *text) {
    std::vector<long> list;
    for (char *end = nullptr; *text != '\0'; text = *end == ',' ? end + 1 : end) {
        list.push_back(strtol(text, &end, 10));
    }
    return list;
}

OPTIONS read_options(int argc, char **argv) {
    OPTIONS options;
    for (int at = 1; at + 1 < argc; at += 2) {
        const std::string name = argv[at];
        if (name == "--resources") {
            options.resources = numbers(argv[at + 1]);
        } else if (name == "--nodes") {
            options.nodes = numbers(argv[at + 1]);
        } else if (name == "--rounds") {
            options.rounds = std::max(1, atoi(argv[at + 1]));
        } else if (name == "--domain") {
            options.domain = argv[at + 1];
        }
    }
    return options;
}

/* A folder, a node software with a generated domain in it, and its socket. */
class DOMAIN {
public:
    DOMAIN(const std::string &programs, const std::string &size) {
        char name[] = "/tmp/buildXXXXXX";
        folder_ = mkdtemp(name);
        socket_ = folder_ + "/sna.sock";
        const std::string generate = "--generate";
        int ends[2];
        if (pipe(ends) != 0) {
            exit(1);
        }
        pid_ = fork();
        if (pid_ == 0) {
            dup2(ends[1], STDOUT_FILENO);
            setenv("SNA_PREFIX", programs.c_str(), 1);
            const std::string program = programs + "/bin/snanode";
            const std::string state = folder_ + "/state";
            execl(program.c_str(), "snanode", generate.c_str(), size.c_str(), "--state",
                  state.c_str(), "--socket", socket_.c_str(), nullptr);
            _exit(127);
        }
        close(ends[1]);
        wait_until_served(ends[0]);
    }
    ~DOMAIN() {
        kill(pid_, SIGTERM);
        waitpid(pid_, nullptr, 0);
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    DOMAIN(const DOMAIN &) = delete;
    DOMAIN &operator=(const DOMAIN &) = delete;

    const std::string &socket_path() const { return socket_; }

    /* Seconds of processor time that its processes have taken. */
    double cpu_seconds() const {
        const std::string pid = std::to_string(pid_);
        std::ifstream children("/proc/" + pid + "/task/" + pid + "/children");
        double seconds = cpu_seconds_of(pid);
        for (std::string child; children >> child;) {
            seconds += cpu_seconds_of(child);
        }
        return seconds;
    }

private:
    static double cpu_seconds_of(const std::string &pid) {
        double nanoseconds = 0;
        std::ifstream("/proc/" + pid + "/schedstat") >> nanoseconds;
        return nanoseconds * 1e-9;
    }

    /* It says one line when every node is loaded. */
    static void wait_until_served(int output) {
        char line[256];
        if (read(output, line, sizeof line) <= 0) {
            fprintf(stderr, "bench_build: the node software did not start\n");
            exit(1);
        }
    }

    std::string folder_;
    std::string socket_;
    pid_t pid_ = -1;
};

void write_all(int fd, const void *from, size_t length) {
    const auto *at = static_cast<const char *>(from);
    while (length > 0) {
        const ssize_t written = write(fd, at, length);
        if (written <= 0) {
            _exit(1);
        }
        at += written;
        length -= static_cast<size_t>(written);
    }
}

bool read_all(int fd, void *to, size_t length) {
    auto *at = static_cast<char *>(to);
    while (length > 0) {
        const ssize_t got = read(fd, at, length);
        if (got <= 0) {
            return false;
        }
        at += got;
        length -= static_cast<size_t>(got);
    }
    return true;
}

/* Runs `work` in a process of its own, so that no run finds the memory of another. */
template <class Work> BUILD_RESULT apart(std::vector<RECORDED_VERB> *verbs, Work work) {
    int ends[2];
    BUILD_RESULT result = {};
    if (pipe(ends) != 0) {
        exit(1);
    }
    const pid_t child = fork();
    if (child == 0) {
        std::vector<RECORDED_VERB> recorded;
        result = work(&recorded);
        write_all(ends[1], &result, sizeof result);
        for (const RECORDED_VERB &verb : recorded) {
            const uint32_t head[] = {verb.target, verb.new_target,
                                     static_cast<uint32_t>(verb.block.size())};
            write_all(ends[1], head, sizeof head);
            write_all(ends[1], verb.block.data(), verb.block.size());
        }
        _exit(0);
    }
    close(ends[1]);
    if (!read_all(ends[0], &result, sizeof result)) {
        exit(1);
    }
    uint32_t head[3];
    while (read_all(ends[0], head, sizeof head)) {
        RECORDED_VERB verb = {head[0], std::vector<unsigned char>(head[2]), head[1]};
        read_all(ends[0], verb.block.data(), verb.block.size());
        if (verbs != nullptr) {
            verbs->push_back(verb);
        }
    }
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return result;
}

template <class Value> Value median(std::vector<Value> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct MEDIANS {
    std::vector<double> seconds, cpu, returns, deletes, node_cpu;
    void add(const BUILD_RESULT &result, double node_cpu_seconds) {
        seconds.push_back(result.seconds);
        cpu.push_back(result.cpu_seconds);
        returns.push_back(result.return_seconds);
        deletes.push_back(result.delete_seconds);
        node_cpu.push_back(node_cpu_seconds);
    }
};

void measure(const OPTIONS &options, const std::string &programs, long nodes, long resources) {
    DOMAIN domain(programs, !options.domain.empty() ? options.domain
                                                    : "nodes=" + std::to_string(nodes) + ",lus=" +
                                                          std::to_string(resources / nodes));
    setenv("SNA_SOCKET", domain.socket_path().c_str(), 1);
    setenv("SNA_PREFIX", programs.c_str(), 1);
    constexpr size_t ahead = 8;
    MEDIANS model;
    MEDIANS floor;
    BUILD_RESULT built = {};
    BUILD_RESULT least = {};
    std::vector<RECORDED_VERB> verbs;
    apart(&verbs, [](std::vector<RECORDED_VERB> *recorded) { return build_model(recorded); });
    for (int round = 0; round < options.rounds; round++) {
        double before = domain.cpu_seconds();
        built = apart(nullptr, [](std::vector<RECORDED_VERB> *) { return build_model(nullptr); });
        model.add(built, domain.cpu_seconds() - before);
        before = domain.cpu_seconds();
        least = apart(nullptr, [&](std::vector<RECORDED_VERB> *) {
            return build_floor(domain.socket_path(), verbs, ahead);
        });
        floor.add(least, domain.cpu_seconds() - before);
    }
    const auto entries = static_cast<double>(built.entries);
    printf(
        "%9ld %5ld %9.0f  %8.3f %8.3f %6.2f  %8.3f %8.3f %6.2f  %8.3f %6.2f  %6.0f %6.0f  %6.1f\n",
        resources, nodes, entries, median(model.seconds), median(floor.seconds),
        median(model.seconds) / median(floor.seconds), median(model.cpu), median(floor.cpu),
        median(model.cpu) / median(floor.cpu), median(model.deletes),
        median(model.deletes) / median(model.seconds), static_cast<double>(built.memory) / entries,
        static_cast<double>(least.memory) / entries, built.longest_hold * 1000);
    if (nodes <= 1) {
        const double back = median(model.returns), ratio = back / median(model.seconds);
        printf("%25s a node that returns: %.3f s, %.2f times a first build, goal at most %.0f\n",
               "", back, ratio, return_goal);
    }
    printf("%25s node software meanwhile: %.3f s of processor time, %.3f under the floor\n", "",
           median(model.node_cpu), median(floor.node_cpu));
    printf("%25s rounds of the main loop under 1, 2, 4 ... ms:", "");
    for (uint64_t count : built.holds) {
        printf(" %llu", static_cast<unsigned long long>(count));
    }
    printf("\n");
    fflush(stdout);
}

} // namespace

int main(int argc, char **argv) {
    const OPTIONS options = read_options(argc, argv);
    const std::string programs =
        std::filesystem::canonical("/proc/self/exe").parent_path().parent_path().string();
    printf("resources nodes   entries   build s  floor s  ratio  build c  floor c  ratio  delete s "
           " ratio  B/rec  floor   hold\n");
    if (!options.domain.empty()) {
        measure(options, programs, 0, 0);
        return 0;
    }
    for (long nodes : options.nodes) {
        for (long resources : options.resources) {
            measure(options, programs, nodes, resources);
        }
    }
    return 0;
}
