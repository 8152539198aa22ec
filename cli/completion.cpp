/* What may stand at the end of a command line, for the shells' completion. */
#include "commands.h"

#include "fieldtext.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace cli {

using records::FieldRow;
using records::Schema;

namespace {

constexpr size_t MOST = 2000; /* names that are offered */

bool is_one_of(const std::string &word, std::initializer_list<const char *> words) {
    return std::any_of(words.begin(), words.end(),
                       [&word](const char *one) { return word == one; });
}

std::vector<const FieldRow *> key_fields(const Schema &schema) {
    std::vector<const FieldRow *> fields;
    for (const FieldRow &field : schema.fields) {
        if (field.has(records::FIELD_KEY)) {
            fields.push_back(&field);
        }
    }
    return fields;
}

void add_classes(const std::string &command, std::set<std::string> &found) {
    for (const Schema *schema : classes()) {
        const NB_USHORT verb = is_one_of(command, {"define", "change"}) ? schema->define
                               : command == "delete"                    ? schema->remove
                               : command == "start"                     ? schema->start
                               : command == "stop"                      ? schema->stop
                                                                        : schema->lists[0].list;
        if (verb != 0) {
            found.insert(schema->name);
        }
    }
    if (is_one_of(command, {"show", "change", "export"})) {
        for (const records::Settings &row : records::settings) {
            found.insert(row.name);
        }
    }
    if (is_one_of(command, {"start", "stop"})) {
        found.insert("node");
    }
}

void add_nodes(const Request &request, std::set<std::string> &found) {
    std::vector<NAP_NODE_ALL_DATA> nodes;
    if (request.session.nodes(nodes).ok()) {
        for (const NAP_NODE_ALL_DATA &node : nodes) {
            found.insert(records::local_text(node.node_name, sizeof node.node_name));
        }
    }
}

/* The next part of the names that begin with these parts. */
void add_names(const Request &request, const Schema &schema, const std::vector<std::string> &parts,
               std::set<std::string> &found) {
    const std::vector<const FieldRow *> fields = key_fields(schema);
    for (const Home &home : homes_of(request, schema)) {
        for_entries(request, home, schema, {}, [&](const NB_UCHAR *entry) {
            bool same = found.size() < MOST;
            for (size_t at = 0; at < parts.size() && same; at++) {
                const std::string part = records::format_field(*fields[at], entry);
                same = parts[at] == (part.empty() ? "-" : part);
            }
            if (same) {
                const std::string next = records::format_field(*fields[parts.size()], entry);
                found.insert(next.empty() ? "-" : next);
            }
        });
    }
}

/* Fields with the sign behind them, or the words that the field of `word` may have. */
void add_fields(records::FieldTable fields, const std::string &word, std::set<std::string> &found) {
    const size_t equals = word.find('=');
    for (const FieldRow &field : fields) {
        if (field.has(records::FIELD_KEY)) {
            continue;
        }
        if (equals == std::string::npos) {
            found.insert(std::string(field.name) + "=");
        } else if (word.substr(0, equals) == field.name) {
            for (const records::FieldWord &value : field.words) {
                found.insert(std::string(field.name) + "=" + value.text);
            }
            if (field.kind == records::FieldKind::Flag) {
                found.insert(std::string(field.name) + "=yes");
                found.insert(std::string(field.name) + "=no");
            }
        }
    }
}

void add_operands(const Request &request, const std::vector<std::string> &words,
                  const std::string &last, std::set<std::string> &found) {
    const std::string &command = words[0];
    if (words.size() == 1 || command == "export") {
        add_classes(command, found);
        return;
    }
    const records::Settings *settings = records::settings_by_name(words[1]);
    const Schema *schema = records::schema_by_name(words[1]);
    const std::vector<std::string> parts(words.begin() + 2, words.end());
    if (words[1] == "node") {
        add_nodes(request, found);
    } else if (settings != nullptr && command == "change") {
        add_fields(settings->fields, last, found);
    } else if (schema != nullptr && parts.size() < key_fields(*schema).size()) {
        if (command != "define" || parts.size() + 1 < key_fields(*schema).size()) {
            add_names(request, *schema, parts, found);
        }
    } else if (schema != nullptr && is_one_of(command, {"define", "change"})) {
        add_fields(schema->fields, last, found);
    }
}

} // namespace

int complete(const Request &request, const std::vector<std::string> &commands,
             const std::vector<std::string> &typed) {
    std::set<std::string> found;
    std::vector<std::string> words; /* without options */
    Request in = request;
    const std::string last = typed.empty() ? "" : typed.back();
    bool node_follows = false;
    for (size_t at = 0; at + 1 < typed.size(); at++) {
        if (node_follows) {
            in.node = typed[at];
        } else if (typed[at].compare(0, 2, "--") != 0) {
            words.push_back(typed[at]);
        }
        node_follows = !node_follows && typed[at] == "--node";
    }
    try {
        if (node_follows) {
            add_nodes(in, found);
        } else if (last.compare(0, 1, "-") == 0) {
            found = {"--node", "--json", "--names", "--help"};
        } else if (words.empty()) {
            found.insert(commands.begin(), commands.end());
        } else if (is_one_of(words[0], {"list", "show", "define", "change", "delete", "start",
                                        "stop", "export", "classes"})) {
            add_operands(in, words, last, found);
        }
    } catch (const Failure &) {
        found.clear(); /* a line that is being typed is not told what is wrong */
    }
    for (const std::string &word : found) {
        if (word.compare(0, last.size(), last) == 0) {
            puts(word.c_str());
        }
    }
    return DONE;
}

} // namespace cli
