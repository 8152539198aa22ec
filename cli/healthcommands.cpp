/* Commands that watch over the domain: how it is, what is used up, and what happens. */
#include "commands.h"

#include "fieldtext.h"
#include "nofcopy.h"
#include "nofverbs.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace cli {

using records::FieldRow;
using records::Schema;

namespace {

constexpr NB_ULONG NEARLY_ALL = 90; /* per cent of a limit */

/* How the monitoring of a site wants it. */
enum Health : int { WELL = 0, WARNING = 1, CRITICAL = 2, UNKNOWN = 3 };

std::vector<NAP_NODE_ALL_DATA> all_nodes(const Request &request) {
    std::vector<NAP_NODE_ALL_DATA> nodes;
    expect("the nodes of the domain", NAP_QUERY_NODE_ALL, request.session.nodes(nodes));
    if (!request.node.empty()) {
        std::erase_if(nodes, [&request](const NAP_NODE_ALL_DATA &node) {
            return records::local_text(node.node_name, sizeof node.node_name) != request.node;
        });
        if (nodes.empty()) {
            throw Failure(NOT_THERE, "there is no node " + request.node);
        }
    }
    return nodes;
}

std::string state_of(const NAP_NODE_ALL_DATA &node) {
    return records::format_field(records::field(records::domain_node, "node_state"),
                                 reinterpret_cast<const NB_UCHAR *>(&node));
}

std::string name_of(const NAP_NODE_ALL_DATA &node) {
    return records::local_text(node.node_name, sizeof node.node_name);
}

std::string role_of(NB_ULONG flags) {
    return (flags & NAP_SERVER_CONFIG) != 0   ? "master"
           : (flags & NAP_SERVER_BACKUP) != 0 ? "backup"
           : (flags & NAP_SERVER_MASTER) != 0 ? "server"
                                              : "";
}

using Counts = std::map<std::string, NB_ULONG>;

Counts states_in(const Request &request, const Home &home, const Schema &schema) {
    Counts counts;
    const FieldRow *field = state_field(schema);
    for_entries(request, home, schema, {}, [&](const NB_UCHAR *entry) {
        counts[field != nullptr ? records::format_field(*field, entry) : "defined"]++;
    });
    return counts;
}

NAP_QUERY_NODE_LIMITS_VERB limits_of(const Request &request, const Home &home) {
    NAP_QUERY_NODE_LIMITS_VERB verb = {};
    verb.opcode = NAP_QUERY_NODE_LIMITS;
    expect("limits", verb.opcode, request.session.issue(home.target, verb));
    return verb;
}

struct Limit {
    const char *name;
    NB_ULONG used;
    NB_ULONG most; /* 0: none */
};

std::vector<Limit> rows_of(const NAP_QUERY_NODE_LIMITS_VERB &limits) {
    return {{"lus", limits.lus, limits.max_lus},
            {"links", limits.links, limits.max_links},
            {"sessions", limits.sessions, limits.max_sessions},
            {"users", limits.users, limits.max_users}};
}

bool is_nearly_used(const Limit &limit) {
    return limit.most != 0 && uint64_t{limit.used} * 100 >= uint64_t{limit.most} * NEARLY_ALL;
}

/* In a label of a metric. */
std::string quoted(const std::string &text) {
    std::string line = "\"";
    for (const char letter : text) {
        line += letter == '"' || letter == '\\' ? std::string("\\") + letter
                : letter == '\n'                ? "\\n"
                                                : std::string(1, letter);
    }
    return line + "\"";
}

} // namespace

int status(const Request &request) {
    Output output(request.form, {{"node"}, {"state"}, {"role"}, {"description"}}, 1);
    for (const NAP_NODE_ALL_DATA &node : all_nodes(request)) {
        output.row({name_of(node), state_of(node), role_of(node.info.server_flags),
                    records::local_text(node.info.description, sizeof node.info.description)});
    }
    return DONE;
}

int limits(const Request &request) {
    Output output(request.form, {{"node"}, {"limit"}, {"used", true}, {"most"}}, 1);
    for (const Home &home : homes_of(request, records::ls)) {
        for (const Limit &limit : rows_of(limits_of(request, home))) {
            output.row({home.node, limit.name, std::to_string(limit.used),
                        limit.most != 0 ? std::to_string(limit.most) : "none"});
        }
    }
    return DONE;
}

/* One line, and the status that goes with it.  A link that starts by itself and is not up is worth
 * a look; a node that cannot be reached is worse. */
int check(const Request &request) {
    Health health = WELL;
    std::string bad;
    size_t nodes = 0;
    NB_ULONG links = 0;
    const auto note = [&](Health how, const std::string &what) {
        health = std::max(health, how);
        bad += (bad.empty() ? "" : "; ") + what;
    };
    try {
        for (const NAP_NODE_ALL_DATA &node : all_nodes(request)) {
            Home home;
            nodes++;
            if (node.info.node_state != NAP_NODE_ACTIVE) {
                note(CRITICAL, "node " + name_of(node) + " is " + state_of(node));
                continue;
            }
            expect("node " + name_of(node), NAP_CONNECT_NODE,
                   request.session.reach(name_of(node), false, home));
            for_entries(request, home, records::ls, {}, [&](const NB_UCHAR *entry) {
                const auto link = nap_copy<NAP_LS_DATA>(entry);
                const bool up = link.det_data.ls_state == NAP_ACTIVE;
                links += up ? 1 : 0;
                if (!up && link.def_data.initially_active != 0) {
                    note(WARNING, "link " + records::local_text(link.ls_name, sizeof link.ls_name) +
                                      " of " + home.node + " is not active");
                }
            });
            for (const Limit &limit : rows_of(limits_of(request, home))) {
                if (is_nearly_used(limit)) {
                    note(WARNING, home.node + " uses " + std::to_string(limit.used) + " of " +
                                      std::to_string(limit.most) + " " + limit.name);
                }
            }
        }
    } catch (const Failure &failure) {
        note(failure.status == UNREACHABLE ? CRITICAL : UNKNOWN, failure.what());
    }
    constexpr const char *words[] = {"OK", "WARNING", "CRITICAL", "UNKNOWN"};
    printf("SNA %s: %s\n", words[health],
           bad.empty() ? (std::to_string(nodes) + " nodes and " + std::to_string(links) +
                          " links are active")
                             .c_str()
                       : bad.c_str());
    return health;
}

int metrics(const Request &request) {
    constexpr const Schema *counted[] = {&records::dlc,    &records::port, &records::ls,
                                         &records::pu,     &records::lu03, &records::local_lu,
                                         &records::session};
    puts("# TYPE sna_node_active gauge\n# HELP sna_node_active 1 when the node is active.");
    const std::vector<NAP_NODE_ALL_DATA> nodes = all_nodes(request);
    for (const NAP_NODE_ALL_DATA &node : nodes) {
        printf("sna_node_active{node=%s} %d\n", quoted(name_of(node)).c_str(),
               node.info.node_state == NAP_NODE_ACTIVE ? 1 : 0);
    }
    const std::vector<Home> homes = homes_of(request, records::ls);
    puts("# TYPE sna_resources gauge\n# HELP sna_resources Resources by class and state.");
    for (const Home &home : homes) {
        for (const Schema *schema : counted) {
            for (const auto &[state, count] : states_in(request, home, *schema)) {
                printf("sna_resources{node=%s,class=\"%s\",state=%s} %u\n",
                       quoted(home.node).c_str(), schema->name, quoted(state).c_str(), count);
            }
        }
    }
    std::vector<std::pair<std::string, std::vector<Limit>>> all;
    for (const Home &home : homes) {
        all.emplace_back(home.node, rows_of(limits_of(request, home)));
    }
    puts("# TYPE sna_used gauge\n# HELP sna_used What is used of what the node may have.");
    for (const auto &[node, rows] : all) {
        for (const Limit &limit : rows) {
            printf("sna_used{node=%s,limit=\"%s\"} %u\n", quoted(node).c_str(), limit.name,
                   limit.used);
        }
    }
    puts("# TYPE sna_limit gauge\n# HELP sna_limit What the node may have, where it is limited.");
    for (const auto &[node, rows] : all) {
        for (const Limit &limit : rows) {
            if (limit.most != 0) {
                printf("sna_limit{node=%s,limit=\"%s\"} %u\n", quoted(node).c_str(), limit.name,
                       limit.most);
            }
        }
    }
    puts("# EOF");
    return DONE;
}

/* One line an indication, as it comes.  What happened before is not told. */
int watch(const Request &request, unsigned most) {
    unsigned left = most;
    request.session.when_heard([&](const Home &home, const NAP_VCB &block) {
        const Schema *schema = records::schema_by_verb(block.opcode);
        const NAP_VERB *verb = nap_find_verb(block.opcode);
        if (left == 0 || verb == nullptr) {
            return;
        }
        if (schema != nullptr && verb->kind == NAP_KIND_INDICATION) {
            const auto news = nap_copy<NAP_RESOURCE_INDICATION>(&block);
            Bytes entry = new_entry(*schema);
            std::copy(news.key, news.key + schema->key_size(), entry.begin() + records::KEY_OFFSET);
            printf("%s%s%s %s %s%s\n", home.node.c_str(), home.node.empty() ? "" : " ",
                   schema->name, key_words(*schema, entry.data()).c_str(),
                   (news.deactivated != 0 ? "is gone" : state_word(news.state)).c_str(),
                   news.data_lost != 0 ? " (indications before this one were lost)" : "");
        } else if (block.opcode == NAP_SERVER_INDICATION) {
            const auto news = nap_copy<NAP_SERVER_INDICATION_VERB>(&block);
            printf("node %s %s\n",
                   records::local_text(news.node_name, sizeof news.node_name).c_str(),
                   news.state != 0 ? "is there" : "is gone");
        } else if (verb->changes != 0) {
            printf("%s%s%s\n", home.node.c_str(), home.node.empty() ? "" : " ", verb->name + 4);
        }
        fflush(stdout);
        left--;
    });
    for (const Home &home : homes_of(request, records::ls)) {
        for (const Schema *schema : classes()) {
            for (const records::ListRow &row : schema->lists) {
                if (row.indication != 0) {
                    expect("watch", NAP_REGISTER_INDICATION_SINK,
                           request.session.listen(home, row.indication));
                }
            }
        }
        expect("watch", NAP_REGISTER_INDICATION_SINK,
               request.session.listen(home, NAP_CONFIG_COPIES));
    }
    expect("watch", NAP_REGISTER_INDICATION_SINK,
           request.session.listen({0, ""}, NAP_SERVER_INDICATION));
    expect("watch", NAP_REGISTER_INDICATION_SINK,
           request.session.listen({0, ""}, NAP_NOF_STATUS_INDICATION));
    while (left > 0) {
        if (!request.session.wait(-1)) {
            throw Failure(UNREACHABLE, "the connection to the node software is gone");
        }
    }
    return DONE;
}

} // namespace cli
