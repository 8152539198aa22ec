/* Commands that only look. */
#include "commands.h"

#include "fieldtext.h"
#include "nofcopy.h"
#include "nofverbs.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <pwd.h>

namespace cli {

using records::FieldKind;
using records::FieldRow;
using records::Schema;
using records::Settings;

namespace {

/* What a list shows unless it is told: the name, what is in words of the status, and the
 * description. */
std::vector<const FieldRow *> usual_columns(const Schema &schema) {
    std::vector<const FieldRow *> columns;
    for (const FieldRow &field : schema.fields) {
        if (field.has(records::FIELD_KEY)) {
            columns.push_back(&field);
        }
    }
    for (const FieldRow &field : schema.status) {
        if (field.kind == FieldKind::Word) {
            columns.push_back(&field);
        }
    }
    if (const FieldRow *text = records::find_field(schema.fields, "description")) {
        columns.push_back(text);
    }
    return columns;
}

std::vector<const FieldRow *> all_columns(const Schema &schema) {
    std::vector<const FieldRow *> columns;
    for (const records::FieldTable table : {schema.fields, schema.status}) {
        for (const FieldRow &field : table) {
            if (!field.has(records::FIELD_SECRET)) {
                columns.push_back(&field);
            }
        }
    }
    return columns;
}

/* The name comes first in any case, for those who read names. */
std::vector<const FieldRow *> wanted_columns(const Schema &schema, Form form,
                                             const std::vector<std::string> &fields) {
    if (fields.empty()) {
        return form == Form::Json ? all_columns(schema) : usual_columns(schema);
    }
    std::vector<const FieldRow *> columns;
    for (const std::string &name : fields) {
        const std::vector<const FieldRow *> all = all_columns(schema);
        const auto found = std::find_if(all.begin(), all.end(),
                                        [&name](const FieldRow *row) { return name == row->name; });
        if (found == all.end()) {
            std::string known;
            for (const FieldRow *row : all) {
                known += std::string(" ") + row->name;
            }
            throw Failure(BAD_USAGE, "there is no field \"" + name + "\" in " + schema.name +
                                         "; there are" + known);
        }
        columns.push_back(*found);
    }
    return columns;
}

bool is_number(const FieldRow &field) {
    return field.kind == FieldKind::Number;
}

int show_settings(const Request &request, const Settings &row) {
    std::vector<Home> homes;
    if (row.of_domain) {
        homes = homes_of(request, records::user);
    } else {
        homes = homes_of(request, records::ls);
    }
    for (const Home &home : homes) {
        Bytes block(row.block_size);
        records::put_number(block.data(), 2, row.query);
        expect(std::string("show ") + row.name, row.query,
               request.session.issue(home.target, block));
        if (homes.size() > 1) {
            printf("# node %s\n", home.node.c_str());
        }
        fputs(section_of(row, block.data(), true).c_str(), stdout);
    }
    return DONE;
}

std::string user_name(uid_t user) {
    const passwd *found = getpwuid(user);
    return found != nullptr ? found->pw_name : std::to_string(user);
}

} // namespace

int list_classes(const Request &request, const std::string &of) {
    if (of.empty()) {
        Output output(request.form, {{"class"}, {"name"}, {"verbs"}}, 1);
        for (const Schema *schema : classes()) {
            std::string parts;
            std::string verbs = "list show";
            for (const FieldRow &field : schema->fields) {
                parts += field.has(records::FIELD_KEY)
                             ? (parts.empty() ? "" : " ") + std::string(field.name)
                             : "";
            }
            verbs += schema->define != 0 ? " define change" : "";
            verbs += schema->remove != 0 ? " delete" : "";
            verbs += schema->start != 0 ? " start stop" : "";
            output.row({schema->name, parts, verbs});
        }
        return DONE;
    }
    const Schema &schema = class_named(of);
    Output output(request.form, {{"field"}, {"use"}, {"initial"}, {"values"}}, 1);
    for (const records::FieldTable table : {schema.fields, schema.status}) {
        for (const FieldRow &field : table) {
            std::string values;
            for (const records::FieldWord &word : field.words) {
                values += (values.empty() ? "" : " ") + std::string(word.text);
            }
            if (is_number(field)) {
                values = std::to_string(field.low) + ".." + std::to_string(field.high);
            } else if (field.kind == FieldKind::Flag) {
                values = "yes no";
            }
            output.row({field.name,
                        table.data() == schema.status.data() ? "status"
                        : field.has(records::FIELD_KEY)      ? "name"
                                                             : "definition",
                        field.initial != nullptr ? field.initial : "", values});
        }
    }
    return DONE;
}

int list(const Request &request, const std::string &of, const std::vector<std::string> &owner,
         const std::vector<std::string> &fields) {
    const Schema &schema = class_named(of);
    const std::vector<Home> homes = homes_of(request, schema);
    std::vector<const FieldRow *> rows = wanted_columns(schema, request.form, fields);
    if (request.form == Form::Names) {
        rows = usual_columns(schema);
    }
    const bool with_node = !is_of_domain(schema) && request.form != Form::Names &&
                           (homes.size() > 1 || request.form == Form::Json);
    std::vector<Column> columns;
    size_t names = 0;
    if (with_node) {
        columns.push_back({"node"});
    }
    for (const FieldRow *row : rows) {
        columns.push_back({row->name, is_number(*row)});
        names += row->has(records::FIELD_KEY) ? 1 : 0;
    }
    Output output(request.form, columns, names);
    for (const Home &home : homes) {
        for_entries(request, home, schema, owner, [&](const NB_UCHAR *entry) {
            std::vector<std::string> values;
            if (with_node) {
                values.push_back(home.node);
            }
            for (const FieldRow *row : rows) {
                values.push_back(request.form == Form::Json ? records::format_field(*row, entry)
                                                            : shown(*row, entry));
            }
            output.row(std::move(values));
        });
    }
    return DONE;
}

int show(const Request &request, const std::string &of, const std::vector<std::string> &name) {
    const Settings *settings = records::settings_by_name(of);
    if (settings != nullptr && name.empty()) {
        return show_settings(request, *settings);
    }
    const Schema &schema = class_named(of);
    bool found = false;
    for (const Home &home : homes_of(request, schema)) {
        Bytes entry = new_entry(schema);
        set_key(schema, name, entry);
        if (find_entry(request, home, schema, entry)) {
            found = true;
            fputs(section_of(schema, entry.data(), true).c_str(), stdout);
        }
    }
    if (!found) {
        Bytes entry = new_entry(schema);
        set_key(schema, name, entry);
        throw Failure(NOT_THERE, "there is no " + of + " " + key_words(schema, entry.data()));
    }
    return DONE;
}

int history(const Request &request, unsigned most) {
    unsigned left = most;
    Output output(request.form,
                  {{"number", true},
                   {"time"},
                   {"user"},
                   {"program"},
                   {"node"},
                   {"verb"},
                   {"resource"},
                   {"result"},
                   {"values"}},
                  1);
    const Codes codes = request.session.list(
        0, NAP_QUERY_CHANGES, {},
        [&](const NB_UCHAR *bytes, size_t length) {
            NAP_CHANGE_DATA change = {};
            char time[32];
            memcpy(&change, bytes, std::min(length, sizeof change));
            const auto text = [](const NB_UCHAR *field) {
                return std::string(reinterpret_cast<const char *>(field));
            };
            const auto seconds = static_cast<time_t>(change.time);
            strftime(time, sizeof time, "%Y-%m-%d %H:%M:%S", localtime(&seconds));
            const NAP_VERB *verb = nap_find_verb(change.opcode);
            const char *result = change.secondary_rc != 0 ? nap_secondary_name(change.secondary_rc)
                                                          : nap_primary_name(change.primary_rc);
            output.row({std::to_string(change.number), time, user_name(change.user_id),
                        text(change.program), text(change.node_name),
                        verb != nullptr ? verb->name + 4 : std::to_string(change.opcode),
                        text(change.subject), result != nullptr ? result + 4 : "",
                        text(change.values)});
            return --left > 0;
        },
        4);
    expect("history", NAP_QUERY_CHANGES, codes);
    return DONE;
}

} // namespace cli
