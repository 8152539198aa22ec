/* Commands that change something. */
#include "commands.h"

#include "defineblock.h"
#include "domaintext.h"
#include "entry.h"
#include "fieldtext.h"
#include "nofverbs.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <sstream>

namespace cli {

using records::FieldRow;
using records::Schema;
using records::Settings;

namespace {

size_t name_parts(const Schema &schema) {
    return static_cast<size_t>(
        std::count_if(schema.fields.begin(), schema.fields.end(),
                      [](const FieldRow &field) { return field.has(records::FIELD_KEY); }));
}

/* What is to be defined: words begin with its name, and fields follow. */
struct Named {
    const Schema &schema;
    Home home;
    Bytes entry; /* with the name, and initial values */
    std::vector<std::string> fields;
    std::string what; /* for failures */
};

Named name_first(const Request &request, const std::string &verb, const std::string &of,
                 const std::vector<std::string> &words) {
    const Schema &schema = class_named(of);
    if (schema.define == 0) {
        throw Failure(BAD_USAGE, "resources of " + of + " have no \"" + verb + "\"");
    }
    const auto parts =
        words.begin() + static_cast<long>(std::min(words.size(), name_parts(schema)));
    Named named = {schema, {}, new_entry(schema), {parts, words.end()}, ""};
    set_key(schema, {words.begin(), parts}, named.entry);
    named.what = verb + " " + of + " " + key_words(schema, named.entry.data());
    named.home = home_of(request, schema);
    return named;
}

int set_settings(const Request &request, const Settings &row,
                 const std::vector<std::string> &words) {
    if (row.set == 0) {
        throw Failure(BAD_USAGE, std::string(row.name) + " cannot be changed here");
    }
    const Home home = home_of(request, row.of_domain ? records::user : records::ls);
    const std::string what = std::string("change ") + row.name;
    Bytes block(row.block_size);
    records::put_number(block.data(), 2, row.query);
    expect(what, row.query, request.session.issue(home.target, block));
    std::fill(block.begin(), block.begin() + sizeof(NAP_VCB), NB_UCHAR{0});
    set_fields(row.fields, row.name, words, block.data());
    records::put_number(block.data(), 2, row.set);
    expect(what, row.set, request.session.issue(home.target, block));
    return DONE;
}

/* Does something with each name; goes on behind a failure, which is told, and ends with the status
 * of the first. */
int for_names(const std::vector<std::string> &name,
              const std::function<void(const std::vector<std::string> &name)> &action) {
    if (name != std::vector<std::string>{"-"}) {
        action(name);
        return DONE;
    }
    int first = DONE;
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream stream(line);
        std::vector<std::string> words;
        for (std::string word; stream >> word;) {
            words.push_back(word);
        }
        if (words.empty()) {
            continue;
        }
        try {
            action(words);
        } catch (const Failure &failure) {
            fprintf(stderr, "quilctl: %s\n", failure.what());
            first = first == DONE ? failure.status : first;
        }
    }
    return first;
}

int issue_names(const Request &request, const std::string &of, const std::vector<std::string> &name,
                NB_USHORT opcode, const char *verb, NB_UCHAR stop_type) {
    const Schema &schema = class_named(of);
    if (opcode == 0) {
        throw Failure(BAD_USAGE, "resources of " + of + " have no \"" + verb + "\"");
    }
    const Home home = home_of(request, schema);
    return for_names(name, [&](const std::vector<std::string> &words) {
        Bytes entry = new_entry(schema);
        set_key(schema, words, entry);
        NAP_NAME_VERB block = records::make_name_block(schema, opcode, entry.data());
        block.stop_type = stop_type;
        expect(std::string(verb) + " " + of + " " + key_words(schema, entry.data()), opcode,
               request.session.issue(home.target, block));
    });
}

/* The node itself is no resource of a node. */
int issue_to_nodes(const Request &request, const std::vector<std::string> &names, NB_USHORT opcode,
                   NB_UCHAR stop_type) {
    if (names.empty() && request.node.empty()) {
        throw Failure(BAD_USAGE, "say which node");
    }
    return for_names(names.empty() ? std::vector<std::string>{request.node} : names,
                     [&](const std::vector<std::string> &words) {
                         Home home;
                         NAP_NAME_VERB verb = {};
                         verb.opcode = opcode;
                         verb.stop_type = stop_type;
                         expect("node " + words[0], NAP_CONNECT_NODE,
                                request.session.reach(words[0], false, home));
                         expect("node " + words[0], opcode,
                                request.session.issue(home.target, verb));
                     });
}

} // namespace

void issue_define(const Request &request, const Home &home, const Schema &schema, Bytes &entry,
                  const std::string &what) {
    Bytes block((size_t{schema.define_size} + 3) & ~size_t{3});
    const NB_ULONG wrong = records::check_fields(schema, entry.data());
    if (wrong != 0) {
        for (const FieldRow &field : schema.fields) {
            if (records::check_field(field, entry.data()) != 0) {
                throw Failure(BAD_USAGE, what + ": " + field.name + " must be given");
            }
        }
        throw failure_of(what, schema.define, {NAP_PARAMETER_CHECK, wrong});
    }
    records::make_define_block(schema, entry.data(), block.data());
    block.resize(nap_find_verb(schema.define)->block_size);
    expect(what, schema.define, request.session.issue(home.target, block));
}

namespace {

/* Which of the words is the name that may be a range; as many as there are when it has none. */
size_t range_word(const Schema &schema, size_t words) {
    size_t at = 0;
    for (const FieldRow &field : schema.fields) {
        if (field.has(records::FIELD_KEY)) {
            if (strcmp(field.name, "name") == 0) {
                return std::min(at, words);
            }
            at++;
        }
    }
    return words;
}

/* One of a range of them; numbers that have to differ count with it. */
void define_one(const Request &request, const std::string &of,
                const std::vector<std::string> &words, NB_ULONG count) {
    Named named = name_first(request, "define", of, words);
    Bytes known = named.entry;
    if (find_entry(request, named.home, named.schema, known)) {
        throw Failure(REFUSED, named.what + ": it is there already; use change");
    }
    set_fields(named.schema.fields, of, named.fields, named.entry.data());
    std::string why;
    if (!records::count_on(named.schema.fields, named.entry.data(), count, why)) {
        throw Failure(BAD_USAGE, named.what + ": " + why);
    }
    issue_define(request, named.home, named.schema, named.entry, named.what);
}

} // namespace

int define(const Request &request, const std::string &of, const std::vector<std::string> &words) {
    const size_t at = range_word(class_named(of), words.size());
    std::vector<std::string> names;
    if (at == words.size()) {
        define_one(request, of, words, 0);
        return DONE;
    }
    if (!records::expand_range(words[at], names)) {
        throw Failure(BAD_USAGE, words[at] + " is no range of names; one is LU01..LU24");
    }
    int first = DONE;
    NB_ULONG count = 0;
    for (const std::string &name : names) {
        std::vector<std::string> one = words;
        one[at] = name;
        try {
            define_one(request, of, one, count++);
        } catch (const Failure &failure) {
            if (names.size() == 1 || failure.status == UNREACHABLE) {
                throw;
            }
            fprintf(stderr, "quilctl: %s\n", failure.what());
            first = first == DONE ? failure.status : first;
        }
    }
    return first;
}

int change(const Request &request, const std::string &of, const std::vector<std::string> &words) {
    const Settings *settings = records::settings_by_name(of);
    if (settings != nullptr) {
        return set_settings(request, *settings, words);
    }
    Named named = name_first(request, "change", of, words);
    if (!find_entry(request, named.home, named.schema, named.entry)) {
        throw Failure(NOT_THERE, named.what + ": there is none; use define");
    }
    set_fields(named.schema.fields, of, named.fields, named.entry.data());
    issue_define(request, named.home, named.schema, named.entry, named.what);
    return DONE;
}

int remove(const Request &request, const std::string &of, const std::vector<std::string> &name) {
    return issue_names(request, of, name, class_named(of).remove, "delete", 0);
}

int start(const Request &request, const std::string &of, const std::vector<std::string> &name) {
    return of == "node" ? issue_to_nodes(request, name, NAP_INIT_NODE, 0)
                        : issue_names(request, of, name, class_named(of).start, "start", 0);
}

int stop(const Request &request, const std::string &of, const std::vector<std::string> &name,
         bool immediately) {
    const NB_UCHAR how = immediately ? NAP_IMMEDIATE_STOP : NAP_ORDERLY_STOP;
    return of == "node" ? issue_to_nodes(request, name, NAP_STOP_NODE, how)
                        : issue_names(request, of, name, class_named(of).stop, "stop", how);
}

} // namespace cli
