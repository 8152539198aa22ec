/* What the store of a node costs: bench_nodestore FOLDER [LUS...].  For each number of LUs: the
 * first load, which writes everything; the start from the store; memory after that start; the
 * store's size a resource; and defines one after the other, each of which is on the disk when it is
 * answered.  Each step runs in a process of its own, so that its memory is its own. */
#include "engine.h"
#include "nofverbs.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class Deaf final : public node::EngineListener {
    void indicate(const NB_VOID *, size_t) override {}
};

struct Rig {
    explicit Rig(const std::string &file) : timers(clock), engine(&store, timers, clock, nobody) {
        std::string why;
        if (!store.open(file, why)) {
            fprintf(stderr, "%s\n", why.c_str());
            _exit(1);
        }
    }
    node::Store store;
    node::SystemClock clock;
    node::TimerQueue timers;
    Deaf nobody;
    node::Engine engine;
};

constexpr unsigned LUS_OF_PU = 250;

/* PUs of 250 LUs each; every other LU is described and used. */
std::string text_of(unsigned lus) {
    char line[200];
    std::string text = "[domain]\n[node N1]\nfq_cp_name = NETA.N1\n[dlc LAN0]\n[port ETH0]\n"
                       "dlc_name = LAN0\nlocal_address = 04\n";
    for (unsigned pu = 0; pu * LUS_OF_PU < lus; pu++) {
        snprintf(line, sizeof line,
                 "[ls L%07u]\nport_name = ETH0\nadj_cp_type = host\npu_name = P%07u\n"
                 "dest_address = %012X/04\n",
                 pu, pu, pu);
        text += line;
        snprintf(line, sizeof line, "[lu03 P%07u U%07u..U%07u]\nnau_address = 1\n", pu,
                 pu * LUS_OF_PU, (pu + 1) * LUS_OF_PU - 1);
        text += line;
        text += pu % 2 != 0 ? "description = Branch terminal\nuser = clerk\n" : "";
    }
    return text;
}

double seconds_of(const std::function<void()> &action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void apart(const std::function<void()> &action) {
    fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        action();
        fflush(stdout);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (status != 0) {
        exit(1);
    }
}

void first_load(const std::string &file, unsigned lus) {
    Rig rig(file);
    node::DomainText domain = node::parse_domain_text("bench", text_of(lus));
    bool good = domain.errors.empty();
    const double took =
        seconds_of([&] { good = good && rig.engine.load_text(domain.nodes.at(0), domain); });
    if (!good) {
        fprintf(stderr, "%s\n", domain.errors.empty() ? "?" : domain.errors[0].c_str());
        _exit(1);
    }
    printf("%8u LUs: first load %.2f s", lus, took);
}

void start(const std::string &file) {
    rusage used = {};
    Rig *rig = nullptr;
    std::string why;
    const double took = seconds_of([&] {
        rig = new Rig(file);
        rig->engine.load_store(why);
    });
    getrusage(RUSAGE_SELF, &used);
    printf(", start %.2f s, memory %ld MB, %u LUs", took, used.ru_maxrss / 1024,
           rig->engine.table(node::CLASS_LU03).count());
}

void define(const std::string &file) {
    constexpr unsigned COUNT = 2000;
    Rig rig(file);
    std::string why;
    rig.engine.load_store(why);
    const double took = seconds_of([&] {
        for (unsigned at = 0; at < COUNT; at++) {
            char name[16];
            node::Answer answer;
            NAP_DEFINE_DLC_VERB verb = {};
            snprintf(name, sizeof name, "D%07u", at);
            verb.opcode = NAP_DEFINE_DLC;
            memset(verb.dlc_name, ' ', sizeof verb.dlc_name);
            memcpy(verb.dlc_name, name, 8);
            rig.engine.execute(&verb, sizeof verb, answer);
        }
    });
    printf(", defines %.0f /s (%u)", COUNT / took, rig.engine.table(node::CLASS_DLC).count());
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 3) {
        fprintf(stderr, "usage: %s FOLDER LUS...\n", argv[0]);
        return 2;
    }
    for (int at = 2; at < argc; at++) {
        const auto lus = static_cast<unsigned>(strtoul(argv[at], nullptr, 10));
        const std::string file = std::string(argv[1]) + "/store" + argv[at] + ".db";
        std::filesystem::remove(file);
        apart([&] { first_load(file, lus); });
        printf(", %.0f bytes an LU", static_cast<double>(std::filesystem::file_size(file)) / lus);
        for (int run = 0; run < 3; run++) {
            apart([&] { start(file); });
        }
        apart([&] { define(file); });
        printf("\n");
    }
    return 0;
}
