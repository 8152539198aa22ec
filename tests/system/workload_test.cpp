// Two programs on one domain.  While an administrator without windows changes the domain in every
// way, in an order that a seed decides, and nodes die in between, a program watches; in the end it
// must know and show what one does that has just been started.
#include "administrator.h"
#include "system_test.h"

#include "defineblock.h"
#include "fieldtext.h"
#include "nofverbs.h"
#include "schemas.h"

#include <csignal>
#include <cstring>
#include <fstream>
#include <iostream>
#include <random>
#include <regex>
#include <set>

namespace sys {

namespace {

using records::FieldKind;
using records::FieldRow;
using records::Schema;
using records::Settings;

/* What can be moved: from one owner, or pool, to another. */
struct Move {
    const Schema &moved;
    const FieldRow &to;
    const Schema &owner;
};
const Move moves[] = {
    {records::port, records::field(records::port, "dlc_name"), records::dlc},
    {records::ls, records::field(records::ls, "port_name"), records::port},
    {records::primary_lu0, records::field(records::primary_lu0, "line_name"),
     records::primary_line},
    {records::lu03, records::field(records::lu03, "pool_name"), records::lu_pool},
    {records::tp, records::field(records::tp, "list_name"), records::access_list},
};

bool of_domain(const Schema &schema) {
    return &schema == &records::user || &schema == &records::cpic || &schema == &records::rje;
}

/* What the node counts and tells only to who asks. */
const std::regex counted(" (active_links|active_lus|retransmissions|(in|out)_[a-z]+)=[0-9]+");
const std::regex counted_of_links("( LS .*) act_sess_count=[0-9]+");

int from_environment(const char *name, int otherwise) {
    const char *value = getenv(name);
    return value != nullptr ? atoi(value) : otherwise;
}

/* The processes of the nodes. */
std::vector<pid_t> node_processes(const Process &front) {
    const std::string pid = std::to_string(front.pid());
    std::ifstream children("/proc/" + pid + "/task/" + pid + "/children");
    std::vector<pid_t> all;
    for (pid_t child = 0; children >> child;) {
        all.push_back(child);
    }
    return all;
}

} // namespace

class Workload {
public:
    Workload(const std::string &socket, unsigned seed, std::vector<std::string> nodes)
        : admin_(socket), random_(seed), nodes_(std::move(nodes)) {}

    /* One change; refusals are no news, since what is changed and how is left to chance. */
    void step() { act(actions[below(std::size(actions))]); }

    /* What chance has not let succeed is tried until it does; returns what never did. */
    std::string never_done() {
        std::string never;
        for (const Action &action : actions) {
            for (int tries = 0; done[action.name] == 0 && tries < 300; tries++) {
                act(action);
            }
            never += done[action.name] == 0 ? std::string(" ") + action.name : "";
        }
        return never;
    }

    /* Stops a node and starts it again. */
    void restart_node() {
        NAP_NAME_VERB block = {};
        block.opcode = NAP_STOP_NODE;
        block.stop_type = NAP_IMMEDIATE_STOP;
        const NB_ULONG target = connect(nodes_[below(nodes_.size())]);
        admin_.issue(target, block);
        wait_for([&] {
            block = {};
            block.opcode = NAP_INIT_NODE;
            return admin_.issue(target, block);
        });
    }

    /* A node has gone, and its targets with it. */
    void forget_targets() { targets_.clear(); }

    size_t below(size_t count) { return random_() % count; }

    std::map<std::string, size_t> done;

private:
    struct Action {
        const char *name;
        bool (Workload::*act)();
    };
    static const Action actions[11];

    void act(const Action &action) {
        node_ = nodes_[below(nodes_.size())];
        target_ = connect(node_);
        done[action.name] += (this->*action.act)() ? 1 : 0;
    }

    /* Of a node, once it is there. */
    NB_ULONG connect(const std::string &name) {
        NB_ULONG &target = targets_[name];
        wait_for([&] { return target != 0 || (target = admin_.connect(name)) != 0; }, 10000);
        return target;
    }
    NB_ULONG target_of(const Schema &schema) {
        if (!of_domain(schema) && &schema != &records::tp_load) {
            return target_;
        }
        const std::string file = of_domain(schema) ? " domain" : " load " + node_;
        NB_ULONG &target = targets_[file];
        if (target == 0) {
            target = admin_.open_file(of_domain(schema) ? NAP_SYSTEM_FILE : NAP_TP_LOAD_FILE,
                                      of_domain(schema) ? "" : node_);
        }
        return target;
    }

    /* A schema with that verb, and an entry of its list; none if that is empty. */
    const Schema &any_schema(NB_USHORT Schema::*verb) {
        while (true) {
            const Schema &schema = *records::all_schemas[below(std::size(records::all_schemas))];
            if (schema.*verb != 0) {
                return schema;
            }
        }
    }
    Bytes any_entry(const Schema &schema) {
        const std::vector<Bytes> all = admin_.list(target_of(schema), schema);
        return all.empty() ? Bytes() : all[below(all.size())];
    }

    bool define(const Schema &schema, const Bytes &entry) {
        Bytes block(schema.define_size);
        records::make_define_block(schema, entry.data(), block.data());
        return admin_.issue(target_of(schema), block);
    }
    bool name(const Schema &schema, NB_USHORT opcode, const Bytes &entry) {
        NAP_NAME_VERB block = records::make_name_block(schema, opcode, entry.data());
        block.stop_type = opcode == schema.stop ? NAP_IMMEDIATE_STOP : 0;
        return admin_.issue(target_of(schema), block);
    }

    /* A value that no other resource has. */
    void make_new(const FieldRow &row, Bytes &entry) {
        std::string why;
        const std::string fresh = "Q" + std::to_string(100 + ++names_);
        const bool number = row.kind == FieldKind::Number;
        const std::string text =
            number ? std::to_string(row.low + below(std::min<size_t>(row.high - row.low, 250) + 1))
            : row.kind == FieldKind::NameFq || row.width == 17 ? "NETA." + fresh
                                                               : fresh;
        records::set_field(row, text, entry.data(), why);
    }
    /* Some value that the field takes. */
    void set_any(const FieldRow &row, Bytes &record) {
        std::string why;
        const std::string text =
            row.kind == FieldKind::Flag   ? (below(2) == 0 ? "no" : "yes")
            : row.kind == FieldKind::Word ? row.words[below(row.words.size())].text
            : row.kind == FieldKind::Text ? "Change " + std::to_string(++names_)
                                          : "";
        if (row.kind == FieldKind::Number) {
            make_new(row, record);
        } else if (!text.empty()) {
            records::set_field(row, text, record.data(), why);
        }
    }

    /* The last part of the key is another one, and what must be unique besides. */
    bool define_new(const Schema &schema) {
        Bytes entry = any_entry(schema);
        if (entry.empty()) {
            return false;
        }
        const FieldRow *last = nullptr;
        for (const FieldRow &row : schema.fields) {
            const std::string_view field = row.name;
            last = row.has(records::FIELD_KEY) && row.kind != FieldKind::Word ? &row : last;
            const bool unique = field.ends_with("alias") || field == "nau_address" ||
                                (&schema == &records::ls && field == "pu_name");
            if (unique && records::format_field(row, entry.data()).find_first_not_of("0") !=
                              std::string::npos) {
                make_new(row, entry);
            }
        }
        make_new(*last, entry);
        return define(schema, entry);
    }
    bool define_any() { return define_new(any_schema(&Schema::define)); }

    bool change() {
        const Schema &schema = any_schema(&Schema::define);
        Bytes entry = any_entry(schema);
        if (entry.empty()) {
            return false;
        }
        const FieldRow &field = schema.fields[below(schema.fields.size())];
        if (!field.has(records::FIELD_KEY)) {
            set_any(field, entry);
        }
        return define(schema, entry);
    }

    template <NB_USHORT Schema::*Verb> bool name_any() {
        const Schema &schema = any_schema(Verb);
        const Bytes entry = any_entry(schema);
        return !entry.empty() && name(schema, schema.*Verb, entry);
    }

    bool move() {
        const Move &row = moves[below(std::size(moves))];
        Bytes entry = any_entry(row.moved);
        const Bytes owner = any_entry(row.owner);
        if (entry.empty() || owner.empty()) {
            return false;
        }
        if (row.moved.stop != 0) {
            name(row.moved, row.moved.stop, entry);
        }
        memcpy(&entry[row.to.offset], &owner[records::KEY_OFFSET], row.to.width);
        return define(row.moved, entry);
    }

    /* Two LUs swap their aliases over a third one; those of the domain's text are in use. */
    bool swap_aliases() {
        const FieldRow &alias = records::field(records::local_lu, "lu_alias");
        define_new(records::local_lu);
        Bytes one = any_entry(records::local_lu), other = any_entry(records::local_lu);
        if (one == other) {
            return false;
        }
        const Bytes first = one, second = other;
        make_new(alias, one);
        const bool begun = define(records::local_lu, one);
        memcpy(&other[alias.offset], &first[alias.offset], alias.width);
        memcpy(&one[alias.offset], &second[alias.offset], alias.width);
        return begun && define(records::local_lu, other) && define(records::local_lu, one);
    }

    bool change_settings() {
        const Settings &row = records::settings[below(std::size(records::settings))];
        if (row.set == 0) {
            return false;
        }
        Bytes block(row.block_size);
        memcpy(block.data(), &row.query, sizeof(row.query));
        const NB_ULONG target = row.of_domain ? target_of(records::user) : target_;
        if (!admin_.issue(target, block)) {
            return false;
        }
        set_any(row.fields[below(row.fields.size())], block);
        memset(block.data(), 0, sizeof(NAP_VCB));
        memcpy(block.data(), &row.set, sizeof(row.set));
        return admin_.issue(target, block);
    }

    bool change_session_limit() {
        const Bytes entry = any_entry(records::mode);
        if (entry.empty()) {
            return false;
        }
        NAP_SESSION_LIMIT_VERB block = {};
        block.opcode = NAP_CHANGE_SESSION_LIMIT;
        memcpy(block.lu_alias, &entry[records::KEY_OFFSET], records::mode.key_size());
        block.sess_limit = static_cast<NB_USHORT>(below(20));
        return admin_.issue(target_, block);
    }

    Administrator admin_;
    std::mt19937 random_;
    std::vector<std::string> nodes_;
    std::map<std::string, NB_ULONG> targets_;
    std::string node_; /* where the step is done */
    NB_ULONG target_ = 0;
    int names_ = 0;
};

const Workload::Action Workload::actions[] = {
    {"define", &Workload::define_any},
    {"define", &Workload::define_any},
    {"change", &Workload::change},
    {"delete", &Workload::name_any<&Schema::remove>},
    {"start", &Workload::name_any<&Schema::start>},
    {"start", &Workload::name_any<&Schema::start>},
    {"stop", &Workload::name_any<&Schema::stop>},
    {"move", &Workload::move},
    {"swap", &Workload::swap_aliases},
    {"settings", &Workload::change_settings},
    {"limits", &Workload::change_session_limit},
};

class TwoPrograms : public SystemTest {
protected:
    void start() { programs.push_back(&start_program()); }

    /* Until the program that was started last does no more. */
    void settle() const {
        const std::string pid = std::to_string(programs.back()->pid());
        std::string before, now;
        for (int still = 0; still < 15;) {
            wait_for([] { return false; }, 100);
            std::getline(std::ifstream("/proc/" + pid + "/schedstat"), now);
            still = now == before ? still + 1 : 0;
            before = now;
        }
    }

    /* Closes one of the programs whose window has the title, whatever it has to say, and returns
     * what it knew but for what the nodes count and what is selected, which is the operator's. */
    std::vector<std::string> close_down(const std::string &window) {
        const auto running = [this] {
            return std::count_if(programs.begin(), programs.end(),
                                 [](const Process *program) { return program->running(); });
        };
        const auto before = running();
        screen().ask_to_close(screen().find(window));
        EXPECT_TRUE(wait_for([&] {
            for (const int title : {213, 185}) {
                if (const WindowId box = screen().find(message(title))) {
                    screen().raise(box);
                    screen().click(box, "OK");
                }
            }
            return running() < before;
        }));
        std::vector<std::string> lines = known();
        for (std::string &line : lines) {
            line = std::regex_replace(line, counted, "");
            line = std::regex_replace(line, counted_of_links, "$1");
            line = std::regex_replace(line, std::regex("^>"), " ");
        }
        return lines;
    }

    static void expect_same(const std::vector<std::string> &one,
                            const std::vector<std::string> &other) {
        EXPECT_GT(one.size(), 300u);
        EXPECT_TRUE(one == other) << "only one has\n"
                                  << only_in(one, other) << "only the other has\n"
                                  << only_in(other, one);
    }

    /* A few of the lines that are in the first and not in the second. */
    static std::string only_in(const std::vector<std::string> &one,
                               const std::vector<std::string> &other) {
        std::multiset<std::string> there(other.begin(), other.end());
        std::string text;
        int count = 0;
        for (const std::string &line : one) {
            const auto found = there.find(line);
            if (found != there.end()) {
                there.erase(found);
            } else if (++count <= 40) {
                text += line + '\n';
            }
        }
        return text + std::to_string(count) + " lines\n";
    }

    std::vector<Process *> programs;
};

// Who comes before the node software can be reached at all is told so, and has nothing to compare.
TEST_F(TwoPrograms, AgreeWheneverTheyWereStarted) {
    for (const std::string domain : {"single", "branch"}) {
        SCOPED_TRACE(domain);
        Process front({{place.path("bin/snanode"), "--domain", domain}, place.environment()});
        programs.clear();
        for (const int pause : {0, 100, 200, 700, 2000}) {
            wait_for([] { return false; }, pause);
            start();
        }
        settle();
        const std::string window = domain == "single" ? message(1300, {"corvid1"}) : message(992);
        const std::vector<std::string> one = close_down(window);
        size_t shown = 1;
        while (screen().find(window) != 0) {
            expect_same(one, close_down(window));
            shown++;
        }
        EXPECT_GE(shown, 3u);
        while (const WindowId box = screen().find(message(210))) {
            EXPECT_NE(screen().text(box).find(message(605, {"sna"})), std::string::npos);
            press(box, "OK");
            /* It is still there for a moment, while its program ends. */
            EXPECT_TRUE(wait_for([&] { return screen().find(message(210)) != box; }));
        }
        for (const Process *each : programs) {
            const std::string said = each->err();
            EXPECT_TRUE(said.empty() || said.find("cannot be reached") != std::string::npos)
                << said;
        }
        front.send(SIGTERM);
        expect_end(front, 0);
    }
}

TEST_F(TwoPrograms, AWatcherKnowsWhatAFreshStartKnows) {
    const int seed = from_environment("WORKLOAD_SEED", 1);
    const int steps = from_environment("WORKLOAD_STEPS", 400);
    const int pause = from_environment("WORKLOAD_PAUSE", 150); /* steps between two deaths */
    SCOPED_TRACE("WORKLOAD_SEED=" + std::to_string(seed));
    Process &front = start_node("branch");
    start();
    ASSERT_NE(domain_window(), 0u);
    Workload workload(place.path("var/sna.sock"), static_cast<unsigned>(seed),
                      {"harbour", "market", "station"});
    for (int step = 1; step <= steps; step++) {
        workload.step();
        if (step % pause == pause - 1) {
            const std::vector<pid_t> nodes = node_processes(front);
            kill(nodes[workload.below(nodes.size())], SIGKILL);
            workload.forget_targets();
        } else if (step % pause == pause / 2) {
            workload.restart_node();
        }
    }
    std::cout << "WORKLOAD_SEED=" << seed << ":";
    for (const auto &[name, count] : workload.done) {
        std::cout << ' ' << count << ' ' << name;
    }
    std::cout << "\n";
    EXPECT_EQ(workload.never_done(), "");
    settle();
    const std::vector<std::string> watched = close_down(message(992));
    start();
    ASSERT_NE(domain_window(), 0u);
    settle();
    expect_same(watched, close_down(message(992)));
}

} // namespace sys
