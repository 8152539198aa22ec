// A random workload over the classes of a node, beside a plain model of the rules: what is
// answered, what there is, and what is active.
//
//   RULES_SEED=7 RULES_STEPS=20000 build/fast/tests/node_rules_test
#include "node_steps.h"

#include <iostream>
#include <random>
#include <set>

using namespace node_test;

namespace {

struct Ref {
    const char *field;    /* "": it is a word of the title */
    const char *kind;     /* of what it names */
    bool carried = false; /* goes with that */
    bool optional = false;
};

struct Kind {
    const char *name;
    std::vector<const char *>
        titles; /* words of the title; $KIND is the name of one of that kind */
    std::vector<Ref> refs;
    const char *more = ""; /* what else a section has */
    bool has_states = false;
};

const Kind kinds[] = {
    {"dlc", {"D1", "D2"}, {}, "", true},
    {"port", {"P1", "P2", "P3"}, {{"dlc_name", "dlc"}}, "react_timer=0", true},
    {"ls", {"L1", "L2", "L3", "L4"}, {{"port_name", "port"}}, "react_timer=0", true},
    {"pu", {"S1", "S2"}, {}, "dlus_name=NETA.SERVER", true},
    {"lu03", {"$pu A1", "$pu A2", "$pu A3", "$pu A4"}, {{"", "pu"}}},
    {"lu_pool", {"HALL -", "DESK -"}, {}},
    {"local_lu", {"B1", "B2", "B3"}, {}},
    {"cos", {"C1", "C2"}, {}},
    {"cos_tg_row", {"$cos 5", "$cos 7"}, {{"", "cos", true}}},
    {"cos_node_row", {"$cos 1", "$cos 8"}, {{"", "cos", true}}},
    {"mode", {"M1", "M2", "M3"}, {{"cos_name", "cos"}}},
    {"partner_lu", {"NETA.R1", "NETA.R2"}, {}},
    {"directory",
     {"NETA.K1 NETA.K1 network_node", "NETA.K2 NETA.K2 end_node", "NETA.K1 NETA.U1 lu",
      "NETA.K2 NETA.U2 lu"},
     {}},
    {"access_list", {"LIST1", "LIST2"}, {}},
    {"tp", {"T1", "T2", "T3"}, {{"list_name", "access_list", false, true}}},
    {"lu_lu_password",
     {"$local_lu NETA.R9"},
     {{"", "local_lu", true}},
     "password=00C0FFEE00C0FFEE"},
    {"userid_password", {"U1", "U2"}, {}, "password=SECRET"},
    {"dspu_template", {"V1", "V2"}, {}},
    {"connection_network", {"NETA.N1", "NETA.N2"}, {}},
    {"cn_port", {"$connection_network $port"}, {{"", "connection_network", true}, {"", "port"}}},
    {"ls_routing", {"$local_lu NETA.R8"}, {{"", "local_lu", true}, {"ls_name", "ls"}}},
    {"tn_redirect", {"ip 10.0.0.1 23", "ip 10.0.0.2 23"}, {}, "host_address=10.9.9.9"},
    {"tn3270_access", {"ip 10.0.0.1", "ip 10.0.0.2"}, {}},
    {"extra_data", {"$lu03"}, {{"", "lu03", true}}},
    {"tp_load", {"T1 -", "T9 B1"}, {}, "path=/bin/true"},
    {"tn3270_association", {"A1", "A2"}, {}, "printer_lu_name=A3"},
    {"lu62_timeout", {"global -"}, {}, "timeout=30"},
};

const Kind &kind_of(const std::string &name) {
    return *std::find_if(std::begin(kinds), std::end(kinds),
                         [&name](const Kind &kind) { return name == kind.name; });
}

/* What an administrator believes of a node, by the rules alone. */
class Model {
public:
    struct One {
        std::vector<std::pair<Ref, std::string>> refs;
        bool initially = true;
        std::string link;    /* of a link station: host, network_node or end_node */
        std::string made_by; /* the link station of a PU */
    };
    using Key = std::pair<std::string, std::string>; /* kind and title */

    bool has(const Key &key) const { return all_.count(key) != 0; }
    bool up(const Key &key) const { return up_.count(key) != 0; }
    const std::map<Key, One> &all() const { return all_; }

    Codes define(const Key &key, One one) {
        for (const auto &[ref, title] : one.refs) {
            if (!has({ref.kind, title})) {
                return parameter(NAP_UNKNOWN_OWNER);
            }
        }
        if (key.first == "lu03" && lu_elsewhere(key)) {
            return parameter(NAP_DUPLICATE_NAME);
        }
        if (key.first == "pu" && has(key) && !all_[key].made_by.empty()) {
            return parameter(NAP_DUPLICATE_NAME);
        }
        if (key.first == "ls") {
            const Key pu = {"pu", "X" + key.second};
            if (has(key) && one.link != "host" && has(pu) && referred(pu)) {
                return state(NAP_IN_USE);
            }
        }
        if (busy(key)) {
            return state(NAP_RESOURCE_ACTIVE);
        }
        if (key.first == "ls") {
            all_.erase({"pu", "X" + key.second});
            if (one.link == "host") {
                all_[{"pu", "X" + key.second}].made_by = key.second;
            }
        }
        all_[key] = std::move(one);
        return OK_CODES;
    }

    Codes remove(const Key &key) {
        if (!has(key)) {
            return parameter(NAP_UNKNOWN_RESOURCE);
        }
        if (key.first == "pu" && !all_[key].made_by.empty()) {
            return state(NAP_IN_USE);
        }
        const Codes codes = free(key);
        if (codes == OK_CODES) {
            erase(key);
        }
        return codes;
    }

    Codes start(const Key &key) {
        if (!has(key)) {
            return parameter(NAP_UNKNOWN_RESOURCE);
        }
        if (!owner_up(key)) {
            return state(NAP_RESOURCE_INACTIVE);
        }
        rise(key);
        return OK_CODES;
    }

    Codes stop(const Key &key) {
        if (!has(key)) {
            return parameter(NAP_UNKNOWN_RESOURCE);
        }
        waiting_.erase(key.second);
        fall(key);
        settle();
        return OK_CODES;
    }

    /* PUs that are served come and go with a way to their server. */
    void settle() {
        const bool way = std::any_of(all_.begin(), all_.end(), [this](const auto &one) {
            return one.second.link == "network_node" && up(one.first);
        });
        for (const auto &[key, one] : all_) {
            if (key.first != "pu" || !one.made_by.empty()) {
                continue;
            }
            if (!way && up(key)) {
                up_.erase(key);
                waiting_.insert(key.second);
            } else if (way && waiting_.erase(key.second) != 0) {
                up_.insert(key);
            }
        }
    }

private:
    static std::string last_word(const std::string &title) {
        return title.substr(title.rfind(' ') + 1);
    }
    bool lu_elsewhere(const Key &key) const {
        return std::any_of(all_.begin(), all_.end(), [&](const auto &one) {
            return one.first.first == "lu03" && one.first != key &&
                   last_word(one.first.second) == last_word(key.second);
        });
    }
    Key owner(const Key &key) {
        const One &one = all_[key];
        return key.first == "pu" && !one.made_by.empty() ? Key{"ls", one.made_by}
               : key.first == "port" || key.first == "ls"
                   ? Key{one.refs[0].first.kind, one.refs[0].second}
                   : Key{};
    }
    bool owner_up(const Key &key) {
        const Key by = owner(key);
        return by.first.empty() || up(by);
    }
    std::vector<Key> below(const Key &key) {
        std::vector<Key> found;
        for (const auto &one : all_) {
            if (kind_of(one.first.first).has_states && owner(one.first) == key) {
                found.push_back(one.first);
            }
        }
        return found;
    }
    void rise(const Key &key) {
        if (key.first == "pu" && all_[key].made_by.empty()) {
            if (!up(key)) {
                waiting_.insert(key.second);
            }
        } else {
            const bool was = !up_.insert(key).second;
            for (const Key &one : was ? std::vector<Key>() : below(key)) {
                if (all_[one].initially) {
                    rise(one);
                }
            }
        }
        settle();
    }
    void fall(const Key &key) {
        for (const Key &one : below(key)) {
            fall(one);
        }
        up_.erase(key);
    }
    /* Active itself, or, in a connection network, with a port that is. */
    bool busy(const Key &key) {
        if (key.first == "cn_port" && has(key)) {
            return up({"port", all_[key].refs[1].second});
        }
        if (key.first == "connection_network") {
            return std::any_of(all_.begin(), all_.end(), [&](const auto &one) {
                return one.first.first == "cn_port" && one.second.refs[0].second == key.second &&
                       up({"port", one.second.refs[1].second});
            });
        }
        return up(key);
    }
    bool referred(const Key &key) const {
        return std::any_of(all_.begin(), all_.end(), [&key](const auto &one) {
            return std::any_of(
                one.second.refs.begin(), one.second.refs.end(), [&](const auto &ref) {
                    return Key{ref.first.kind, ref.second} == key && !ref.first.carried;
                });
        });
    }
    std::vector<Key> carried(const Key &key) const {
        std::vector<Key> found;
        for (const auto &[other, one] : all_) {
            for (const auto &[ref, title] : one.refs) {
                if (Key{ref.kind, title} == key && ref.carried) {
                    found.push_back(other);
                }
            }
            if (key.first == "ls" && one.made_by == key.second) {
                found.push_back(other);
            }
        }
        return found;
    }
    Codes free(const Key &key) {
        if (busy(key)) {
            return state(NAP_RESOURCE_ACTIVE);
        }
        bool in_use = referred(key);
        for (const Key &other : carried(key)) {
            const Codes codes = free(other);
            if (codes == state(NAP_RESOURCE_ACTIVE)) {
                return codes;
            }
            in_use = in_use || codes != OK_CODES;
        }
        return in_use ? state(NAP_IN_USE) : OK_CODES;
    }
    void erase(const Key &key) {
        for (const Key &other : carried(key)) {
            erase(other);
        }
        all_.erase(key);
        waiting_.erase(key.second);
    }

    std::map<Key, One> all_;
    std::set<Key> up_;
    std::set<std::string> waiting_; /* served PUs that are to be up */
};

class Workload {
public:
    explicit Workload(unsigned seed) : random_(seed) {
        rig_.load("[domain]\n[node one]\nfq_cp_name = NETA.ONE\ncp_alias = ONE\n");
        rig_.engine.live_in({}); /* everybody answers */
        settle();
    }

    void step() {
        const Kind &kind = kinds[below(std::size(kinds))];
        const std::string title = choose_title(kind);
        const Model::Key key = {kind.name, title};
        const size_t what = below(kind.has_states ? 5 : 3);
        if (what < 2) {
            define(kind, key);
        } else if (what == 2) {
            check("delete " + key.first + " " + title, model_.remove(key),
                  verb_text(rig_, "delete", key.first + " " + title));
        } else {
            const bool start = what == 3;
            const auto how = static_cast<NB_UCHAR>(below(2));
            check((start ? "start " : "stop ") + key.first + " " + title,
                  start ? model_.start(key) : model_.stop(key),
                  verb_text(rig_, start ? "start" : "stop", key.first + " " + title,
                            start ? 0 : how));
        }
        settle();
        model_.settle();
        compare();
    }

    size_t done = 0;
    std::set<Codes> seen;

private:
    size_t below(size_t count) { return random_() % count; }

    std::string name_of(const std::string &kind) {
        std::vector<std::string> there;
        for (const auto &one : model_.all()) {
            if (one.first.first == kind) {
                there.push_back(one.first.second);
            }
        }
        if (!there.empty() && below(8) != 0) {
            return there[below(there.size())];
        }
        return choose_title(kind_of(kind));
    }
    std::string choose_title(const Kind &kind) {
        std::string title = kind.titles[below(kind.titles.size())];
        for (size_t at = title.find('$'); at != std::string::npos; at = title.find('$')) {
            const size_t end = std::min(title.find(' ', at), title.size());
            title = title.substr(0, at) + name_of(title.substr(at + 1, end - at - 1)) +
                    title.substr(end);
        }
        return title;
    }
    void define(const Kind &kind, const Model::Key &key) {
        Model::One one;
        std::string section = "[" + key.first + " " + key.second + "] " + kind.more;
        size_t word = 0;
        for (const Ref &ref : kind.refs) {
            std::string title;
            if (ref.field[0] == '\0') {
                const bool whole = std::string(ref.kind) == "lu03";
                const size_t end = whole ? key.second.size() : key.second.find(' ', word);
                title = key.second.substr(word, end - word);
                word = std::min(end, key.second.size() - 1) + 1;
            } else if (!ref.optional || below(2) == 0) {
                title = name_of(ref.kind);
                section += std::string(" ") + ref.field + "=" + title;
            }
            if (!title.empty()) {
                one.refs.emplace_back(ref, title);
            }
        }
        if (kind.has_states && key.first != "pu") {
            one.initially = below(2) == 0;
            section += std::string(" initially_active=") + (one.initially ? "yes" : "no");
        }
        if (key.first == "ls") {
            const char *types[] = {"host", "network_node", "end_node"};
            one.link = types[below(3)];
            section += " adj_cp_type=" + one.link;
            section += one.link == "host"           ? " pu_name=X" + key.second
                       : one.link == "network_node" ? " adj_cp_name=NETA.NN cp_cp_sess_support=yes"
                                                    : " adj_cp_name=NETA.EN";
        } else if (key.first == "lu03") {
            section += std::string(" nau_address=") + key.second.back();
        } else if (key.first == "local_lu") {
            section += " lu_alias=" + key.second;
        }
        if (key.first == "directory" && key.second.back() == 'u') { /* an LU of a control point */
            const std::string cp = key.second.substr(0, key.second.find(' '));
            const char *type = cp == "NETA.K1" ? " network_node" : " end_node";
            one.refs.emplace_back(Ref{"", "directory"}, cp + " " + cp + type);
        }
        const Codes expected = model_.define(key, one);
        check("define " + section, expected, define_text(rig_, section));
    }
    void check(const std::string &what, Codes expected, Codes answered) {
        last_ = what;
        EXPECT_EQ(answered, expected) << what;
        done += answered == OK_CODES ? 1 : 0;
        seen.insert(answered);
    }
    void settle() {
        for (int at = 0; at < 400; at++) {
            rig_.clock.advance(50);
            rig_.timers.run_due();
        }
    }

    /* What there is, by title, with its state. */
    void compare() {
        SCOPED_TRACE("behind " + last_);
        std::map<Model::Key, bool> there, believed;
        for (const Kind &kind : kinds) {
            const node::ClassRow &row = *node::class_by_name(kind.name);
            const node::ResourceTable &table = rig_.engine.table(row.id);
            for (const node::Resource *at = table.first(); at != nullptr;
                 at = node::ResourceTable::next(*at)) {
                std::string title;
                for (const node::FieldRow &field : row.schema->fields) {
                    if (field.has(node::FIELD_KEY)) {
                        const std::string text = records::format_field(field, at->entry.get());
                        title += (title.empty() ? "" : " ") + (text.empty() ? "-" : text);
                    }
                }
                if (row.hooks.removable == nullptr ||
                    row.hooks.removable(rig_.engine, *at).secondary != NAP_INVALID_NAME) {
                    there[{kind.name, title}] = kind.has_states && at->state == NAP_ACTIVE;
                    EXPECT_TRUE(at->state == NAP_ACTIVE || at->state == NAP_NOT_ACTIVE);
                }
            }
        }
        for (const auto &one : model_.all()) {
            believed[one.first] = model_.up(one.first);
        }
        for (const auto &one : there) {
            EXPECT_EQ(believed.count(one.first), 1U) << "there is " << one.first.second;
        }
        for (const auto &[key, up] : believed) {
            const auto found = there.find(key);
            EXPECT_TRUE(found != there.end() && found->second == up)
                << key.first << " " << key.second << (up ? " is to be active" : " is to be there");
        }
    }

    Rig rig_;
    Model model_;
    std::mt19937 random_;
    std::string last_;
};

TEST(Rules, HoldWhateverIsDone) {
    const char *given = getenv("RULES_SEED");
    const char *steps = getenv("RULES_STEPS");
    const unsigned seed = given != nullptr ? unsigned(atoi(given)) : std::random_device()();
    std::cout << "RULES_SEED=" << seed << "\n";
    Workload workload(seed);
    for (int at = steps != nullptr ? atoi(steps) : 1500; at > 0 && !HasFailure(); at--) {
        workload.step();
    }
    EXPECT_GT(workload.done, 300U);
    EXPECT_GE(workload.seen.size(), 6U) << "every rule of the model was met";
}

} // namespace
