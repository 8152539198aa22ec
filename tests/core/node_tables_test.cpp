// The tables of states: docs/node-states.md is what they say, and the engine does what they say.
//
//   NODE_STATES_WRITE=docs/node-states.md build/fast/tests/core_tests --gtest_filter='Tables.*'
#include "node_support.h"

#include "sense.h"

#include <fstream>
#include <sstream>

using namespace node_test;
using node::Event;

namespace {

struct Name {
    int value;
    const char *text;
};

const Name resource_names[] = {{NAP_NOT_ACTIVE, "inactive"},
                               {NAP_PENDING_ACTIVE, "pending active"},
                               {NAP_ACTIVE, "active"},
                               {NAP_PENDING_INACTIVE, "pending inactive"}};
const Name node_names[] = {{NAP_NODE_STOPPED, "stopped"},
                           {NAP_NODE_STARTING, "starting"},
                           {NAP_NODE_ACTIVE, "active"},
                           {NAP_NODE_STOPPING, "stopping"}};
const Name event_names[] = {
    {int(Event::Start), "it is started: by an operator, its owner or its timer"},
    {int(Event::Called), "a partner calls"},
    {int(Event::Ready), "all that it needs is there"},
    {int(Event::Failed), "something is missing"},
    {int(Event::OwnerGone), "its owner went meanwhile"},
    {int(Event::Stop), "an orderly stop"},
    {int(Event::StopAtOnce), "an immediate stop, its own or its owner's"},
    {int(Event::Ended), "nothing hangs on it any more"},
    {int(Event::Lost), "the line breaks, or the partner has gone"}};

template <size_t Size> std::string name_in(const Name (&names)[Size], int value) {
    for (const Name &one : names) {
        if (one.value == value) {
            return one.text;
        }
    }
    ADD_FAILURE() << value << " has no name";
    return "";
}

template <size_t Size> std::string table(node::States states, const Name (&names)[Size]) {
    std::string text = "| State | What happens | Then |\n|---|---|---|\n";
    for (const node::StateRow &row : states) {
        text += "| " + name_in(names, row.from) + " | " + name_in(event_names, int(row.event)) +
                " | " + name_in(names, row.to) + " |\n";
    }
    return text;
}

std::string printed() {
    std::string text = "\n## The node\n\n" + table(node::node_states, node_names);
    for (NB_UCHAR id = 0; id < node::CLASS_COUNT; id++) {
        const node::ClassRow &row = node::class_row(static_cast<node::ClassId>(id));
        if (!row.life.has_states()) {
            continue;
        }
        text += std::string("\n## ") + row.schema->name + "\n\n" +
                table(row.life.states, resource_names);
        for (const NB_ULONG cause : row.life.causes) {
            char code[16];
            snprintf(code, sizeof code, "%08X", cause);
            text += std::string(cause == row.life.causes[0] ? "\nFails with" : ";") + " `" + code +
                    "` " + node::sense_words(cause);
        }
        text += row.life.causes.empty() ? "" : ".\n";
    }
    return text;
}

TEST(Tables, TheDocumentSaysWhatTheyAre) {
    const char *to = getenv("NODE_STATES_WRITE");
    const std::string file = SAMPLE_DOMAINS "/../../docs/node-states.md";
    std::stringstream text;
    text << std::ifstream(to != nullptr ? to : file).rdbuf();
    const std::string mark = "<!-- printed -->\n";
    const size_t at = text.str().find(mark);
    ASSERT_NE(at, std::string::npos);
    if (to != nullptr) {
        std::ofstream(to) << text.str().substr(0, at + mark.size()) << printed();
    } else {
        EXPECT_EQ(text.str().substr(at + mark.size()), printed())
            << "print it again with NODE_STATES_WRITE";
    }
}

/* One resource of each class that has states, each on the one before. */
const char *const ALL = R"(
[domain]
[node one]
fq_cp_name = NETA.ONE
cp_alias = ONE
primary_support = yes
[dlc D]
[port P]
dlc_name = D
react_timer = 0
[ls L]
port_name = P
adj_cp_type = network_node
adj_cp_name = NETA.TWO
cp_cp_sess_support = yes
react_timer = 0
up_ms = 500
[ls H]
port_name = P
adj_cp_type = host
pu_name = PU
react_timer = 0
[ls W]
port_name = P
adj_cp_type = downstream
pu_name = DPU
react_timer = 0
[lu03 PU LU]
[local_lu LOCAL]
lu_alias = LOCAL
pu_name = PU
nau_address = 9
[downstream_lu DPU DLU]
host_lu_name = LU
[primary_line LINE]
[primary_lu0 PLU0]
line_name = LINE
)";

class Walk {
public:
    Walk() {
        rig_.load(ALL);
        tell(true);
        for (int ms = 0; ms < 8000; ms++) {
            rig_.pass(1);
            answer_calls();
        }
    }

    node::Resource *of(node::ClassId id) {
        node::ResourceTable &table = rig_.engine.table(id);
        return id == node::CLASS_LS ? by_name(id, local8("L")) : table.first();
    }
    NB_UCHAR state() { return of(id_)->state; }

    /* The state that the row begins with, then what happens; the state right behind it. */
    int walk(node::ClassId id, const node::StateRow &row) {
        id_ = id;
        owner_ = owner(id);
        reach(row.from);
        EXPECT_EQ(state(), row.from) << "could not be reached";
        happen(row.event);
        return state();
    }

private:
    node::Resource *by_name(node::ClassId id, const std::string &name) {
        return rig_.engine.find(id, reinterpret_cast<const NB_UCHAR *>(name.data()));
    }
    /* The partner's node is there, or not. */
    void tell(bool there) {
        rig_.engine.partner_node(reinterpret_cast<const NB_UCHAR *>(ebcdic("NETA.TWO", 17).data()),
                                 there);
    }
    void answer_calls() {
        for (const node::LinkNews &call : std::exchange(rig_.heard.links, {})) {
            if (call.kind == node::LINK_CALL) {
                send(node::LINK_ACCEPT, call.from_ls);
            }
        }
    }
    void send(NB_UCHAR kind, const NB_UCHAR *to) {
        node::LinkNews news = {};
        news.kind = kind;
        news.dlc_type = NAP_DLC_ETHERNET;
        news.node_type = NAP_NETWORK_NODE;
        put(news.from_cp, ebcdic("NETA.TWO", 17));
        put(news.to_cp, ebcdic("NETA.ONE", 17));
        put(news.from_ls, local8("BACK"));
        memcpy(news.to_ls, to, sizeof news.to_ls);
        rig_.engine.link_news(news);
    }
    void pass_until(int state) {
        for (int ms = 0; ms < 20000 && of(id_)->state != state; ms++) {
            rig_.pass(1);
            answer_calls();
        }
    }
    node::Resource *owner(node::ClassId id) {
        const node::RefRow &ref = node::class_row(id).refs[0];
        return ref.to == node::CLASS_COUNT || (ref.flags & node::REF_OWNER) == 0
                   ? nullptr
                   : by_name(ref.to, std::string(reinterpret_cast<const char *>(
                                                     of(id)->entry.get() + ref.by->offset),
                                                 8));
    }
    Codes verb(const node::Resource &about, bool start, NB_UCHAR how = 0) {
        const node::Schema &schema = *about.row->schema;
        return rig_.by_key(start ? schema.start : schema.stop,
                           {reinterpret_cast<const char *>(about.entry.get()) + node::KEY_OFFSET,
                            schema.key_size()},
                           how);
    }
    /* Itself, or, where it has no verbs, what it comes and goes with. */
    node::Resource &handle() {
        node::Resource *at = of(id_);
        while (at->row->schema->start == 0 && owner(at->row->id) != nullptr) {
            at = owner(at->row->id);
        }
        return *at;
    }
    bool has_verbs() { return handle().row->schema->start != 0; }
    void start() { has_verbs() ? verb(handle(), true) : rig_.by_key(NAP_INIT_NODE, ""); }
    void stop(NB_UCHAR how) {
        has_verbs() ? verb(handle(), false, how) : rig_.by_key(NAP_STOP_NODE, "", how);
    }
    void reach(NB_UCHAR state) {
        if (state == NAP_NOT_ACTIVE || state == NAP_PENDING_ACTIVE) {
            stop(NAP_IMMEDIATE_STOP);
            rig_.pass(1000);
        }
        if (state == NAP_PENDING_ACTIVE) {
            start();
            pass_until(NAP_PENDING_ACTIVE);
        } else if (state == NAP_PENDING_INACTIVE) {
            stop(NAP_ORDERLY_STOP);
            pass_until(NAP_PENDING_INACTIVE);
        }
    }
    void happen(Event event) {
        node::Resource &it = *of(id_);
        const bool was_active = it.state == NAP_ACTIVE;
        switch (event) {
        case Event::Start:
            start();
            pass_until(NAP_PENDING_ACTIVE);
            break;
        case Event::Called:
            send(node::LINK_CALL, it.entry.get() + node::KEY_OFFSET);
            break; /* and it is active already: the row's state is on its way */
        case Event::Ready:
            if (!has_verbs() || node::class_row(id_).schema->lists[0].indication == 0) {
                start();
            }
            pass_until(NAP_ACTIVE);
            break;
        case Event::Failed:
            it.behaviour.reachable = 0;
            pass_until(NAP_NOT_ACTIVE);
            failed();
            it.behaviour.reachable = 1;
            break;
        case Event::OwnerGone:
            if (owner_ != nullptr) {
                owner_->going_down = true;
                pass_until(NAP_NOT_ACTIVE);
                owner_->going_down = false;
            } else {
                rig_.by_key(NAP_STOP_NODE, "", NAP_IMMEDIATE_STOP);
            }
            break;
        case Event::Stop:
            stop(NAP_ORDERLY_STOP);
            if (was_active && !has_verbs()) {
                pass_until(NAP_NOT_ACTIVE);
            }
            break;
        case Event::StopAtOnce:
            stop(NAP_IMMEDIATE_STOP);
            pass_until(NAP_NOT_ACTIVE);
            break;
        case Event::Ended:
            stop(NAP_ORDERLY_STOP);
            pass_until(NAP_NOT_ACTIVE);
            break;
        case Event::Lost:
            tell(false);
            break;
        }
    }
    /* The newest line of the log that has a cause has one of the class's. */
    void failed() {
        for (const std::string &entry : rig_.list(NAP_QUERY_NODE_LOG).entries) {
            NAP_LOG_DATA line;
            memcpy(&line, entry.data(), sizeof line);
            if (line.sense != 0) {
                const auto causes = node::class_row(id_).life.causes;
                EXPECT_NE(std::find(causes.begin(), causes.end(), line.sense), causes.end())
                    << line.text;
                EXPECT_STRNE(node::sense_words(line.sense), "");
                return;
            }
        }
        ADD_FAILURE() << "it failed without a cause";
    }

    Rig rig_;
    node::ClassId id_ = node::CLASS_COUNT;
    node::Resource *owner_ = nullptr;
};

TEST(Tables, TheEngineDoesWhatTheySay) {
    int walked = 0;
    for (NB_UCHAR at = 0; at < node::CLASS_COUNT; at++) {
        const auto id = static_cast<node::ClassId>(at);
        const node::ClassRow &row = node::class_row(id);
        for (const node::StateRow &one : row.life.states) {
            SCOPED_TRACE(std::string(row.schema->name) + ", " + name_in(resource_names, one.from) +
                         ": " + name_in(event_names, int(one.event)));
            const int expected = one.event == Event::Called ? NAP_ACTIVE : one.to;
            EXPECT_EQ(Walk().walk(id, one), expected);
            walked++;
        }
    }
    EXPECT_GT(walked, 70);
}

} // namespace
