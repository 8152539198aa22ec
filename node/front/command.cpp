#include "command.h"

#include "changelog.h"
#include "front.h"
#include "generate.h"
#include "nbbase.h"
#include "nodeprocess.h"
#include "restore.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <getopt.h>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace node {

namespace {

constexpr int USAGE_ERROR = 2;

constexpr char usage[] =
    "usage: snanode --domain NAME [--state DIR] [--socket PATH] [--fault FILE] [--fresh] "
    "[--still]\n"
    "       snanode --generate NUMBERS [--state DIR] [--socket PATH] [--fault FILE] [--fresh]\n"
    "\n"
    "Runs a domain of SNA nodes in the foreground until it gets SIGTERM or SIGINT.\n"
    "\n"
    "  --domain NAME   a sample domain (share/domains/NAME.domain) or the path of a domain text\n"
    "  --generate NUMBERS\n"
    "                  a domain made of numbers, as in nodes=2,lus=100000; the others follow from\n"
    "                  those that are given (dlcs, ports, ls, pus, local_lus, modes, partners, "
    "pools,\n"
    "                  tps for each node, users and cpics for the domain)\n"
    "  --state DIR     where definitions are kept (default: PREFIX/var/domain/NAME)\n"
    "  --socket PATH   where administrators connect (default: PREFIX/var/sna.sock)\n"
    "  --fault FILE    a fault script, read again on SIGHUP\n"
    "  --fresh         forget what is kept and read the domain text again\n"
    "  --still         nothing happens by itself: no visitors come, no link breaks\n"
    "  --copies        show the copies of what is kept, made each day, and end\n"
    "  --restore COPY  put that copy in place of what is kept, and end; 'last' is the newest\n"
    "  --changes       show who changed what, and end\n"
    "\n"
    "PREFIX is the installation prefix, or SNA_PREFIX in the environment.\n";

struct Options {
    std::string domain;
    std::string state;
    std::string socket;
    std::string fault;
    std::string serve;
    std::string generate;
    std::string restore;
    std::string of; /* with --serve: what the domain's store is called */
    bool fresh = false;
    bool still = false;
    bool known = false; /* with --serve: the node was loaded before */
    bool copies = false;
    bool changes = false;
    bool help = false;
};

bool parse_options(int argc, char **argv, Options &options) {
    struct Place {
        option entry;
        std::string *text; /* null for a flag */
        bool *flag;
    };
    const Place places[] = {
        {{"domain", required_argument, nullptr, 0}, &options.domain, nullptr},
        {{"state", required_argument, nullptr, 0}, &options.state, nullptr},
        {{"socket", required_argument, nullptr, 0}, &options.socket, nullptr},
        {{"fault", required_argument, nullptr, 0}, &options.fault, nullptr},
        {{"generate", required_argument, nullptr, 0}, &options.generate, nullptr},
        {{"serve", required_argument, nullptr, 0}, &options.serve, nullptr},
        {{"of", required_argument, nullptr, 0}, &options.of, nullptr},
        {{"known", no_argument, nullptr, 0}, nullptr, &options.known},
        {{"restore", required_argument, nullptr, 0}, &options.restore, nullptr},
        {{"copies", no_argument, nullptr, 0}, nullptr, &options.copies},
        {{"changes", no_argument, nullptr, 0}, nullptr, &options.changes},
        {{"fresh", no_argument, nullptr, 0}, nullptr, &options.fresh},
        {{"still", no_argument, nullptr, 0}, nullptr, &options.still},
        {{"help", no_argument, nullptr, 0}, nullptr, &options.help},
    };
    std::vector<option> table;
    for (const Place &place : places) {
        table.push_back(place.entry);
    }
    table.push_back({nullptr, 0, nullptr, 0});
    int index = 0;
    for (int found = 0; (found = getopt_long(argc, argv, "", table.data(), &index)) != -1;) {
        if (found != 0) {
            return false;
        }
        if (places[index].text != nullptr) {
            *places[index].text = optarg;
        } else {
            *places[index].flag = true;
        }
    }
    if (optind != argc) {
        fprintf(stderr, "snanode: unexpected argument '%s'\n", argv[optind]);
        return false;
    }
    if (options.domain.empty() && options.generate.empty() && !options.help) {
        fprintf(stderr, "snanode: --domain or --generate is missing\n");
        return false;
    }
    if (!options.domain.empty() && !options.generate.empty()) {
        fprintf(stderr, "snanode: give either --domain or --generate\n");
        return false;
    }
    return true;
}

bool make_folders(const std::string &path) {
    for (size_t at = path.find('/', 1); at != std::string::npos; at = path.find('/', at + 1)) {
        mkdir(path.substr(0, at).c_str(), 0755);
    }
    struct stat found = {};
    mkdir(path.c_str(), 0755);
    return stat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode);
}

std::string stem_of(const std::string &path) {
    const std::string name = path.substr(path.find_last_of('/') + 1);
    return name.substr(0, name.rfind(".domain"));
}

std::string domain_file(const std::string &name) {
    const bool path =
        name.find('/') != std::string::npos || name.rfind(".domain") != std::string::npos;
    return path ? name : std::string(nba_prefix()) + "/share/domains/" + name + ".domain";
}

/* Replaces the numbers that were given by all of them, in their one order. */
bool complete_numbers(Options &options) {
    Generated domain;
    std::string why;
    if (options.generate.empty()) {
        return true;
    }
    if (!parse_generated(options.generate, domain, why)) {
        fprintf(stderr, "snanode: --generate: %s\n", why.c_str());
        return false;
    }
    options.generate = format_generated(domain);
    return true;
}

DomainText text_of(const Options &options) {
    Generated domain;
    std::string why;
    if (options.generate.empty()) {
        return read_domain_file(domain_file(options.domain));
    }
    parse_generated(options.generate, domain, why);
    return generated_domain(domain);
}

/* The text is checked whole, every node of it, before anything is started. */
bool check_text(DomainText &text) {
    class Deaf final : public EngineListener {
        void indicate(const NB_VOID *, size_t) override {}
    } nobody;
    const ManualClock clock;
    if (text.errors.empty()) {
        TimerQueue timers(clock);
        Engine domain(nullptr, timers, clock, nobody, Scope::Domain);
        domain.load_text(TextNode(text.own), text);
        for (const TextNode &one : std::vector<TextNode>(text.nodes)) {
            Engine engine(nullptr, timers, clock, nobody);
            engine.load_text(one, text);
        }
    }
    for (const std::string &error : text.errors) {
        fprintf(stderr, "snanode: %s\n", error.c_str());
    }
    return text.errors.empty();
}

std::string stem_of(const Options &options) {
    return options.generate.empty() ? stem_of(options.domain) : "generated";
}

std::string state_folder_of(const Options &options) {
    return options.state.empty() ? std::string(nba_prefix()) + "/var/domain/" + stem_of(options)
                                 : options.state;
}

int run_domain(const Options &options) {
    FrontOptions front_options;
    const std::string prefix = nba_prefix();
    front_options.domain_file = options.generate.empty() ? domain_file(options.domain) : "";
    front_options.generate = options.generate;
    front_options.state_folder = state_folder_of(options);
    front_options.socket_path = options.socket.empty() ? prefix + "/var/sna.sock" : options.socket;
    front_options.fault_file = options.fault;
    front_options.fresh = options.fresh;
    front_options.still = options.still;
    DomainText text = text_of(options);
    if (options.generate.empty() && !check_text(text)) {
        return 1;
    }
    front_options.domain_name = text.facts.name[0] != 0
                                    ? reinterpret_cast<const char *>(text.facts.name)
                                    : stem_of(options);
    const std::string socket_folder =
        front_options.socket_path.substr(0, front_options.socket_path.find_last_of('/'));
    for (const std::string &folder : {prefix + "/etc", front_options.state_folder, socket_folder}) {
        if (folder != front_options.socket_path && !make_folders(folder)) {
            fprintf(stderr, "snanode: %s: %s\n", folder.c_str(), strerror(errno));
            return 1;
        }
    }
    Front front(front_options, text);
    std::string why;
    if (!front.start(why)) {
        fprintf(stderr, "snanode: %s\n", why.c_str());
        return 1;
    }
    return front.run();
}

} // namespace

int run_snanode(int argc, char **argv) {
    Options options;
    if (!nba_check_prefix("snanode")) {
        return 1;
    }
    if (!parse_options(argc, argv, options)) {
        fputs(usage, stderr);
        return USAGE_ERROR;
    }
    if (options.help) {
        fputs(usage, stdout);
        return 0;
    }
    if (!complete_numbers(options)) {
        return USAGE_ERROR;
    }
    if (!options.serve.empty()) {
        return serve_node({options.serve, options.of, options.domain, options.generate,
                           options.state, options.fresh, options.known, options.still, 3});
    }
    if (!options.restore.empty()) {
        return restore_copy(state_folder_of(options), options.restore);
    }
    if (options.changes) {
        return print_changes(state_folder_of(options));
    }
    return options.copies ? print_copies(state_folder_of(options)) : run_domain(options);
}

} // namespace node
