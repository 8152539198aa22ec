#include "plan.h"

#include "defineblock.h"
#include "entry.h"
#include "nodedefinition.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "snadefined.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

namespace cli {

using records::DomainText;
using records::Schema;
using records::Scope;
using records::Settings;
using records::TextNode;
using records::TextRecord;
using records::TextResource;

namespace {

template <class Record>
void add_sections(const Schema &schema, const Record &records, std::set<std::string> &sections) {
    for (const auto &record : records) {
        sections.insert(section_of(schema, reinterpret_cast<const NB_UCHAR *>(&record), false));
    }
}

/* What every node has from its beginning. */
const std::set<std::string> &sna_defined() {
    static const std::set<std::string> all = [] {
        std::set<std::string> sections;
        add_sections(records::cos, records::sna_cos(), sections);
        add_sections(records::cos_node_row, records::sna_cos_node_rows(), sections);
        add_sections(records::cos_tg_row, records::sna_cos_tg_rows(), sections);
        add_sections(records::mode_def, records::sna_modes(), sections);
        return sections;
    }();
    return all;
}

std::string title_of(const std::string &section) {
    return section.substr(0, section.find('\n'));
}

/* It has the name of such a one, whatever it says now. */
bool is_sna_named(const Schema &schema, const NB_UCHAR *entry) {
    static const std::set<std::string> titles = [] {
        std::set<std::string> all;
        for (const std::string &section : sna_defined()) {
            all.insert(title_of(section));
        }
        return all;
    }();
    return titles.count(title_of(section_of(schema, entry, false))) != 0;
}

Request in_node(const Request &request, const std::string &node) {
    return {request.session, node, request.form};
}

std::string section_of(const Step &step, const Bytes &bytes) {
    if (bytes.empty()) {
        return "";
    }
    std::string text = step.schema != nullptr
                           ? cli::section_of(*step.schema, bytes.data(), false)
                           : cli::section_of(*step.settings, bytes.data(), false);
    return text;
}

std::vector<std::string> lines_in(const std::string &section) {
    std::istringstream stream(section);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

bool says_secret(records::FieldTable fields, const Bytes &bytes) {
    return std::any_of(fields.begin(), fields.end(), [&bytes](const records::FieldRow &field) {
        return field.has(records::FIELD_SECRET) && !records::is_empty_field(field, bytes.data());
    });
}

/* A password that nobody can compare is set by who asks for it. */
bool sets_password(const Step &step, Wishes wishes) {
    return wishes.passwords &&
           says_secret(step.schema != nullptr ? step.schema->fields : step.settings->fields,
                       step.wanted);
}

bool differs(const Step &step) {
    return section_of(step, step.wanted) != section_of(step, step.known);
}

Bytes settings_of(const Request &request, const Home &home, const Settings &row) {
    Bytes block(row.block_size);
    records::put_number(block.data(), 2, row.query);
    expect(std::string("show ") + row.name, row.query, request.session.issue(home.target, block));
    return block;
}

const TextRecord *record_of(const TextNode &text, const std::string &name) {
    const auto found =
        std::find_if(text.records.begin(), text.records.end(),
                     [&name](const TextRecord &one) { return one.row->name == name; });
    return found != text.records.end() ? &*found : nullptr;
}

/* One verb sets what a node is and its limits.  A text that does not say what the node is called
 * says nothing of it. */
void plan_node(const Request &request, const Home &home, const TextNode &text,
               std::vector<Step> &steps) {
    constexpr const Settings &node = records::setting("node");
    constexpr const Settings &limits = records::setting("limits");
    const TextRecord *told = record_of(text, "node");
    const TextRecord *told_limits = record_of(text, "limits");
    const bool named =
        told != nullptr && !records::is_empty_field(*records::find_field(node.fields, "fq_cp_name"),
                                                    told->image.data());
    Step step = {Step::Set, nullptr, &node, text.name, settings_of(request, home, node), {}};
    step.known = step.wanted;
    step.limits = step.known_limits = settings_of(request, home, limits);
    Step other = {Step::Set, nullptr, &limits, text.name, step.limits, step.limits};
    if (named) {
        step.wanted = told->image;
    }
    if (told_limits != nullptr) {
        step.limits = other.wanted = told_limits->image;
    }
    if (differs(step) || differs(other)) {
        steps.push_back(std::move(step));
    }
}

void plan_settings(const Request &request, const Home &home, const TextNode &text, Wishes wishes,
                   std::vector<Step> &steps) {
    for (const TextRecord &record : text.records) {
        if (record.row->set == 0) {
            continue;
        }
        Step step = {Step::Set, nullptr,      record.row,
                     text.name, record.image, settings_of(request, home, *record.row)};
        if (differs(step) || sets_password(step, wishes)) {
            steps.push_back(std::move(step));
        }
    }
}

std::string key_of(const Schema &schema, const Bytes &entry) {
    return {reinterpret_cast<const char *>(entry.data()) + records::KEY_OFFSET, schema.key_size()};
}

/* What is there of a class, by key. */
std::map<std::string, Bytes> entries_in(const Request &request, const Home &home,
                                        const Schema &schema) {
    std::map<std::string, Bytes> entries;
    for_entries(request, home, schema, {}, [&](const NB_UCHAR *bytes) {
        Bytes entry(bytes, bytes + schema.overlay_size());
        std::string key = key_of(schema, entry);
        entries.emplace(std::move(key), std::move(entry));
    });
    return entries;
}

void plan_class(const Request &request, const Schema &schema, const TextNode &text, Wishes wishes,
                std::vector<Step> &steps, std::vector<Step> &deletions) {
    const bool told =
        std::any_of(text.resources.begin(), text.resources.end(),
                    [&schema](const TextResource &resource) { return resource.schema == &schema; });
    if (!told || schema.define == 0) {
        return;
    }
    const Home home = home_of(in_node(request, text.name), schema);
    std::map<std::string, Bytes> known = entries_in(request, home, schema);
    for (const TextResource &resource : text.resources) {
        if (resource.schema != &schema) {
            continue;
        }
        const auto found = known.find(key_of(schema, resource.entry));
        Step step = {Step::Make, &schema, nullptr, text.name, resource.entry, {}};
        if (found != known.end()) {
            step.kind = Step::Change;
            step.known = found->second;
            known.erase(found);
        }
        if (differs(step) || sets_password(step, wishes)) {
            steps.push_back(std::move(step));
        }
    }
    for (auto &[key, entry] : known) {
        if (wishes.deletes && schema.remove != 0 && is_defined(schema, entry.data()) &&
            !is_sna_named(schema, entry.data())) {
            deletions.push_back({Step::Delete, &schema, nullptr, text.name, {}, std::move(entry)});
        }
    }
}

void plan_home(const Request &request, const TextNode &text, Wishes wishes,
               std::vector<Step> &steps) {
    std::vector<Step> deletions;
    const bool of_domain = text.name.empty();
    if (!text.records.empty()) {
        const Home home =
            home_of(in_node(request, text.name), of_domain ? records::user : records::ls);
        if (!of_domain) {
            plan_node(request, home, text, steps);
        }
        plan_settings(request, home, text, wishes, steps);
    }
    for (const Schema *schema : classes()) {
        if ((schema->scope == Scope::Domain) == of_domain) {
            plan_class(request, *schema, text, wishes, steps, deletions);
        }
    }
    std::reverse(deletions.begin(), deletions.end());
    std::move(deletions.begin(), deletions.end(), std::back_inserter(steps));
}

/* Which nodes may keep the domain's configuration.  Who does is not for a text to say. */
void plan_servers(const Request &request, const DomainText &text, Wishes wishes,
                  std::vector<Step> &steps) {
    std::vector<NAP_NODE_ALL_DATA> nodes;
    const bool speaks_of_them =
        std::any_of(text.nodes.begin(), text.nodes.end(),
                    [](const TextNode &node) { return node.facts.server_flags != 0; });
    if (!speaks_of_them) {
        return;
    }
    expect("the nodes of the domain", NAP_QUERY_NODE_ALL, request.session.nodes(nodes));
    for (const NAP_NODE_ALL_DATA &node : nodes) {
        const std::string name = records::local_text(node.node_name, sizeof node.node_name);
        const TextNode *told = text.find(name);
        const bool serves = node.info.server_flags != 0;
        if (told != nullptr && nodes.size() > 1 && (request.node.empty() || request.node == name) &&
            (told->facts.server_flags != 0) != serves && (!serves || wishes.deletes)) {
            const auto *bytes = reinterpret_cast<const NB_UCHAR *>(node.node_name);
            Step step = {
                Step::Serve, nullptr, nullptr, name, {bytes, bytes + sizeof node.node_name}, {}};
            step.serves = !serves;
            steps.push_back(std::move(step));
        }
    }
}

} // namespace

DomainText read_text(const std::string &file) {
    DomainText text;
    if (file == "-") {
        const std::string all{std::istreambuf_iterator<char>(std::cin), {}};
        text = records::parse_domain_text("standard input", all);
    } else {
        text = records::read_domain_file(file);
    }
    std::string wrong;
    for (const std::string &error : text.errors) {
        wrong += (wrong.empty() ? "" : "\n") + error;
    }
    if (!wrong.empty()) {
        throw Failure(BAD_USAGE, wrong);
    }
    return text;
}

bool is_defined(const Schema &schema, const NB_UCHAR *entry) {
    const auto is_blank = [&](const char *name) {
        const records::FieldRow *field = records::find_field(schema.fields, name);
        field = field != nullptr ? field : records::find_field(schema.status, name);
        return field == nullptr || records::is_empty_field(*field, entry);
    };
    if (schema.define == 0 || schema.untold) {
        return false;
    }
    if (&schema == &records::pu && !is_blank("ls_name")) {
        return false; /* of a link station, which says its name */
    }
    if (&schema == &records::lu_pool && !is_blank("name")) {
        return false; /* of an LU, which says its pool */
    }
    if (!is_blank("dynamic")) {
        return false; /* of a caller */
    }
    if (&schema == &records::directory &&
        nap_copy<NAP_DIR_DATA>(entry).entry_type != NAP_DIR_HOME) {
        return false; /* found, or registered by another node */
    }
    return sna_defined().count(section_of(schema, entry, false)) == 0;
}

std::vector<Step> plan_of(const Request &request, const DomainText &text, Wishes wishes) {
    std::vector<Step> steps;
    plan_servers(request, text, wishes, steps);
    if (request.node.empty()) {
        plan_home(request, text.own, wishes, steps);
    }
    for (const TextNode &node : text.nodes) {
        if (request.node.empty() || request.node == node.name) {
            plan_home(request, node, wishes, steps);
        }
    }
    return steps;
}

std::string words_of(const Step &step) {
    if (step.kind == Step::Serve) {
        return (step.serves ? "add backup server " : "delete backup server ") + step.node;
    }
    constexpr const char *verbs[] = {"change", "define", "change", "delete"};
    const std::string name =
        step.schema == nullptr
            ? step.settings->name
            : step.schema->name +
                  (" " + key_words(*step.schema,
                                   step.wanted.empty() ? step.known.data() : step.wanted.data()));
    return verbs[step.kind] + (" " + name) + (step.node.empty() ? "" : " of " + step.node);
}

std::string lines_of(const Step &step) {
    if (step.kind == Step::Serve) {
        return "";
    }
    const std::vector<std::string> before = lines_in(section_of(step, step.known));
    const std::vector<std::string> after = lines_in(section_of(step, step.wanted));
    std::string text;
    for (const auto &[from, other, sign] :
         {std::tuple{&before, &after, "- "}, std::tuple{&after, &before, "+ "}}) {
        for (const std::string &line : *from) {
            if (std::find(other->begin(), other->end(), line) == other->end()) {
                text += sign + line + "\n";
            }
        }
    }
    if (step.kind == Step::Set && step.settings == &records::setting("node")) {
        Step limits = step;
        limits.settings = &records::setting("limits");
        limits.wanted = step.limits;
        limits.known = step.known_limits;
        text += limits.wanted == limits.known ? "" : lines_of(limits);
    }
    const records::FieldTable fields =
        step.schema != nullptr ? step.schema->fields : step.settings->fields;
    for (const records::FieldRow &field : fields) {
        if (!step.wanted.empty() && field.has(records::FIELD_SECRET) &&
            !records::is_empty_field(field, step.wanted.data())) {
            text += std::string("+ ") + field.name + " = (not shown, and not compared)\n";
        }
    }
    return text;
}

namespace {

void try_out(const Request &request, const Step &step) {
    const std::string what = words_of(step);
    if (step.kind == Step::Serve) {
        const Home home = home_of({request.session, "", request.form}, records::user);
        NAP_NAME_VERB verb = {};
        verb.opcode = step.serves ? NAP_ADD_BACKUP : NAP_DELETE_BACKUP;
        std::copy(step.wanted.begin(), step.wanted.end(), verb.key);
        expect(what, verb.opcode, request.session.issue(home.target, verb));
        return;
    }
    const Request in = in_node(request, step.node);
    if (step.schema == nullptr) {
        const Home home = home_of(in, step.settings->of_domain ? records::user : records::ls);
        if (step.settings->set == 0) {
            auto verb = records::make_node_definition(
                nap_copy<NAP_QUERY_NODE_VERB>(step.wanted.data()),
                nap_copy<NAP_QUERY_NODE_LIMITS_VERB>(step.limits.data()));
            verb.opcode = NAP_DEFINE_NODE;
            expect(what, verb.opcode, request.session.issue(home.target, verb));
            return;
        }
        Bytes block = step.wanted;
        std::fill(block.begin(), block.begin() + sizeof(NAP_VCB), NB_UCHAR{0});
        records::put_number(block.data(), 2, step.settings->set);
        expect(what, step.settings->set, request.session.issue(home.target, block));
        return;
    }
    const Schema &schema = *step.schema;
    const Home home = home_of(in, schema);
    if (step.kind == Step::Delete) {
        NAP_NAME_VERB verb = records::make_name_block(schema, schema.remove, step.known.data());
        expect(what, schema.remove, request.session.issue(home.target, verb));
        return;
    }
    Bytes entry = step.wanted;
    issue_define(request, home, schema, entry, what);
}

void issue_name(const Request &request, const Step &step, NB_USHORT opcode, const char *verb) {
    const Home home = home_of(in_node(request, step.node), *step.schema);
    NAP_NAME_VERB block = records::make_name_block(*step.schema, opcode, step.known.data());
    expect(verb + (" " + words_of(step).substr(words_of(step).find(' ') + 1)), opcode,
           request.session.issue(home.target, block));
}

} // namespace

std::string state_of(const Step &step) {
    const records::FieldRow *field =
        step.schema != nullptr && step.schema->stop != 0 ? state_field(*step.schema) : nullptr;
    const std::string state = field != nullptr && !step.known.empty()
                                  ? records::format_field(*field, step.known.data())
                                  : "";
    return state == "inactive" ? "" : state;
}

void carry_out(const Request &request, const Step &step, bool stops) {
    constexpr int PATIENCE_MS = 20000; /* more than an orderly stop takes */
    constexpr int LOOK_MS = 100;
    bool stopped = false;
    for (int waited = 0;; waited += LOOK_MS) {
        try {
            try_out(request, step);
            break;
        } catch (const Failure &failure) {
            const bool in_the_way = failure.secondary == NAP_RESOURCE_ACTIVE && stops &&
                                    step.schema != nullptr && step.schema->stop != 0;
            if (!in_the_way || waited >= PATIENCE_MS) {
                throw;
            }
        }
        if (!stopped) {
            issue_name(request, step, step.schema->stop, "stop");
            stopped = true;
        }
        request.session.wait(LOOK_MS);
    }
    if (stopped && step.kind == Step::Change) {
        issue_name(request, step, step.schema->start, "start");
    }
}

} // namespace cli
