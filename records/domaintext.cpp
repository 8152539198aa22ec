#include "domaintext.h"

#include "entry.h"
#include "nesteditems.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <iterator>

namespace records {

namespace {

constexpr FieldRow domain_facts[] = {
    rows::text(FIELD_AT(DomainFacts, name)),
    rows::flag(FIELD_AT(DomainFacts, client_server), "no"),
    rows::flag(FIELD_AT(DomainFacts, domain_config), "yes"),
};

constexpr FieldRow node_facts[] = {
    rows::word(FIELD_AT(NodeFacts, server_flags), server_words, "none").named("server"),
    rows::flag(FIELD_AT(NodeFacts, start), "yes"),
    rows::flag(FIELD_AT(NodeFacts, configured), "yes"),
    rows::flag(FIELD_AT(NodeFacts, back_level), "no"),
};

constexpr size_t MAX_RANGE = 100000;

std::string_view trim(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string> words_of(std::string_view text) {
    std::vector<std::string> words;
    for (text = trim(text); !text.empty();) {
        const size_t end = std::min(text.find_first_of(" \t"), text.size());
        words.emplace_back(text.substr(0, end));
        text = trim(text.substr(end));
    }
    return words;
}

} // namespace

bool expand_range(const std::string &word, std::vector<std::string> &names) {
    const size_t dots = word.find("..");
    if (dots == std::string::npos) {
        names.push_back(word);
        return true;
    }
    const std::string first = word.substr(0, dots);
    const std::string last = word.substr(dots + 2);
    size_t stem = first.size();
    while (stem > 0 && isdigit(static_cast<unsigned char>(first[stem - 1])) != 0) {
        stem--;
    }
    size_t low = 0;
    size_t high = 0;
    const size_t digits = first.size() - stem;
    const char *low_end = first.data() + first.size();
    const char *high_end = last.data() + last.size();
    if (digits == 0 || last.size() != first.size() || last.compare(0, stem, first, 0, stem) != 0 ||
        std::from_chars(first.data() + stem, low_end, low).ptr != low_end ||
        std::from_chars(last.data() + stem, high_end, high).ptr != high_end || high < low ||
        high - low >= MAX_RANGE) {
        return false;
    }
    for (size_t at = low; at <= high; at++) {
        const std::string number = std::to_string(at);
        names.push_back(first.substr(0, stem) + std::string(digits - number.size(), '0') + number);
    }
    return true;
}

bool count_on(FieldTable fields, NB_UCHAR *entry, NB_ULONG count, std::string &why) {
    for (const FieldRow &field : fields) {
        if (!field.has(FIELD_COUNTS)) {
            continue;
        }
        const NB_ULONG value = get_number(entry + field.offset, field.width) + count;
        if (value > field.high) {
            why = std::string(field.name) + " would be " + std::to_string(value) + ", at most " +
                  std::to_string(field.high) + " is allowed";
            return false;
        }
        put_number(entry + field.offset, field.width, value);
    }
    return true;
}

namespace {

bool good_node_name(const std::string &name) {
    return !name.empty() && name.size() <= MAX_NODE_NAME && name[0] != '.' &&
           std::all_of(name.begin(), name.end(), [](unsigned char c) {
               return isalnum(c) != 0 || c == '-' || c == '_' || c == '.';
           });
}

/* Reads line by line; what a `name = value` line means depends on the section that is open. */
class Parser {
public:
    explicit Parser(DomainText &text) : text_(text) {}

    void line(int number, std::string_view raw);
    void end();

private:
    /* Fields that lines of the open section may set. */
    struct Open {
        FieldTable table;
        NB_UCHAR *record;
    };

    void title(std::string_view inside);
    void value(std::string_view name, std::string_view text);
    void open_domain();
    void open_node(const std::vector<std::string> &words);
    void open_record(const Settings &row);
    void open_visitor(const std::vector<std::string> &words);
    void open_resource(const Schema &schema, const std::vector<std::string> &words);
    bool set_keys(const std::vector<std::string> &words);
    void close_resource();
    void open_item(std::string_view line);
    TextNode &home() { return text_.nodes.empty() ? text_.own : text_.nodes.back(); }
    void set(const Open &open, const FieldRow &row, std::string_view value);
    void error(const std::string &what) { text_.error(number_, what); }

    DomainText &text_;
    int number_ = 0;
    bool open_ = false; /* false: the lines of a bad section are skipped */
    std::vector<Open> places_;
    std::vector<std::string> seen_;
    TextResource pending_ = {};
    std::vector<std::string> pending_names_;
};

std::string known_names(FieldTable table) {
    std::string names;
    for (const FieldRow &row : table) {
        if (!row.has(FIELD_KEY)) {
            names += (names.empty() ? "" : ", ") + std::string(row.name);
        }
    }
    return names;
}

std::string known_sections() {
    std::string names;
    for (const Schema *schema : all_schemas) {
        names += schema->untold ? "" : std::string(schema->name) + ", ";
    }
    for (const Settings &row : settings) {
        names += std::string(row.name) + ", ";
    }
    return names + "visitor";
}

void Parser::line(int number, std::string_view raw) {
    const std::string_view text = trim(raw);
    number_ = number;
    if (text.empty() || text[0] == '#') {
        return;
    }
    if (text[0] == '[') {
        close_resource();
        open_ = false;
        places_.clear();
        seen_.clear();
        if (text.back() != ']') {
            error("a section title ends with ]");
            return;
        }
        title(text.substr(1, text.size() - 2));
        return;
    }
    if (text[0] == '+') {
        open_item(text.substr(1));
        return;
    }
    const size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
        error("expected a section title or `name = value`");
    } else {
        value(trim(text.substr(0, equals)), trim(text.substr(equals + 1)));
    }
}

void Parser::title(std::string_view inside) {
    const std::vector<std::string> words = words_of(inside);
    const std::string kind = words.empty() ? "" : words[0];
    const Settings *record = settings_by_name(kind);
    const Schema *schema = schema_by_name(kind);
    if (kind == "domain") {
        open_domain();
    } else if (kind == "node") {
        open_node(words);
    } else if (kind == "visitor") {
        open_visitor(words);
    } else if (record != nullptr) {
        open_record(*record);
    } else if (schema != nullptr && !schema->untold) {
        open_resource(*schema, words);
    } else {
        error("unknown section [" + kind + "]; known are domain, node, " + known_sections());
    }
}

void Parser::open_domain() {
    if (!text_.nodes.empty()) {
        error("[domain] stands before the first node");
        return;
    }
    places_.push_back({domain_facts, reinterpret_cast<NB_UCHAR *>(&text_.facts)});
    open_ = true;
}

void Parser::open_node(const std::vector<std::string> &words) {
    if (words.size() != 2 || !good_node_name(words[1])) {
        error("a node is [node NAME], the name of letters, digits, '-', '_' and '.'");
        return;
    }
    if (text_.find(words[1]) != nullptr) {
        error("there is a node " + words[1] + " already; choose another name");
        return;
    }
    constexpr const Settings &row = setting("node");
    text_.nodes.push_back({words[1], number_, {}, {}, {}, {}});
    TextNode &made = text_.nodes.back();
    made.records.push_back({&row, initial_block(row), number_});
    places_.push_back({node_facts, reinterpret_cast<NB_UCHAR *>(&made.facts)});
    places_.push_back({row.fields, made.records[0].image.data()});
    open_ = true;
}

void Parser::open_record(const Settings &row) {
    if (row.of_domain != text_.nodes.empty()) {
        error(row.of_domain ? "this section belongs to the domain: it stands before the first node"
                            : "this section belongs to a node: it stands behind a [node NAME]");
        return;
    }
    std::vector<TextRecord> &records = home().records;
    records.push_back({&row, initial_block(row), number_});
    places_.push_back({row.fields, records.back().image.data()});
    open_ = true;
}

void Parser::open_visitor(const std::vector<std::string> &words) {
    Visitor visitor = {};
    auto *bytes = reinterpret_cast<NB_UCHAR *>(&visitor);
    std::string why;
    set_initial_fields(rows::visitor::fields, bytes);
    if (text_.nodes.empty()) {
        error("a visitor comes to a node: its section stands behind a [node NAME]");
        return;
    }
    if (words.size() != 2 || !set_field(rows::visitor::fields[0], words[1], bytes, why)) {
        error("the title is [visitor NAME], the name of at most 31 characters");
        return;
    }
    std::vector<Visitor> &visitors = home().visitors;
    visitors.push_back(visitor);
    places_ = {{rows::visitor::fields, reinterpret_cast<NB_UCHAR *>(&visitors.back())}};
    open_ = true;
}

void Parser::open_resource(const Schema &schema, const std::vector<std::string> &words) {
    if ((schema.scope == Scope::Domain) != text_.nodes.empty()) {
        error(schema.scope == Scope::Domain
                  ? "this section belongs to the domain: it stands before the first node"
                  : "a resource belongs to a node: its section stands behind a [node NAME]");
        return;
    }
    auto *behaviour = reinterpret_cast<NB_UCHAR *>(&pending_.behaviour);
    pending_ = {&schema, std::vector<NB_UCHAR>(schema.overlay_size()), DEFAULT_BEHAVIOUR, number_};
    put_number(pending_.entry.data(), 2, static_cast<NB_ULONG>(schema.overlay_size()));
    set_initial_fields(schema.fields, pending_.entry.data());
    set_initial_fields(schema.simulated, behaviour);
    open_ = set_keys(words);
    if (open_) {
        places_ = {{schema.fields, pending_.entry.data()}, {schema.simulated, behaviour}};
    }
}

/* The words of a title are the key fields in order; only the last name may be a range. */
bool Parser::set_keys(const std::vector<std::string> &words) {
    const Schema &schema = *pending_.schema;
    std::string form;
    size_t at = 1;
    bool good = true;
    pending_names_.clear();
    for (const FieldRow &field : schema.fields) {
        if (!field.has(FIELD_KEY)) {
            continue;
        }
        form += std::string(" ") + field.name;
        const std::string word = at < words.size() ? words[at] : "";
        const bool named = strcmp(field.name, "name") == 0;
        std::string why;
        at++;
        if (named && expand_range(word, pending_names_) && !pending_names_.empty()) {
            continue;
        }
        if (named || !set_field(field, word == "-" ? "" : word, pending_.entry.data(), why)) {
            good = false;
        }
    }
    if (!good || at != words.size()) {
        error("the title is [" + std::string(schema.name) + form +
              "] (- for a blank name; the name " + "may be a range, as in LU01..LU24)");
        return false;
    }
    return true;
}

void Parser::close_resource() {
    if (!open_ || pending_.schema == nullptr) {
        pending_.schema = nullptr;
        return;
    }
    const FieldTable fields = pending_.schema->fields;
    const FieldRow *name_field = find_field(fields, "name");
    NB_ULONG count = 0;
    for (const std::string &name : pending_names_) {
        TextResource made = pending_;
        std::string why;
        if (!set_field(*name_field, name == "-" ? "" : name, made.entry.data(), why)) {
            text_.error(made.line, name + " is no name here: " + why);
        }
        if (!count_on(fields, made.entry.data(), count, why)) {
            text_.error(made.line, name + ": " + why);
        }
        home().resources.push_back(std::move(made));
        count++;
    }
    pending_.schema = nullptr;
}

/* The word behind the kind of item is its first field. */
void Parser::open_item(std::string_view line) {
    const std::vector<std::string> words = words_of(line);
    if (!open_) {
        return;
    }
    if (pending_.schema == nullptr || pending_.schema->nested.name == nullptr) {
        error("this section has no items; a line is `name = value`");
        return;
    }
    const Nested &nested = pending_.schema->nested;
    if (words.empty() || words.size() > 2 || words[0] != nested.name) {
        error("an item of this section is + " + std::string(nested.name) + " [" +
              nested.fields[0].name + "]");
        return;
    }
    NB_UCHAR *item = append_item(nested, pending_.entry.data(), nullptr);
    if (item == nullptr) {
        error("there are " + std::to_string(nested.most) + " of " + nested.name +
              " already, which is all there may be");
        return;
    }
    places_ = {{nested.fields, item}};
    seen_.clear();
    if (words.size() == 2) {
        value(nested.fields[0].name, words[1]);
    }
}

void Parser::set(const Open &open, const FieldRow &row, std::string_view value) {
    std::string why;
    if (!set_field(row, value, open.record, why)) {
        error("'" + std::string(value) + "' is no value of " + row.name + ": it takes " + why);
    }
}

void Parser::value(std::string_view name, std::string_view text) {
    if (!open_) {
        if (places_.empty() && text_.errors.empty()) {
            error("a line stands in a section; begin with [domain]");
        }
        return;
    }
    if (std::find(seen_.begin(), seen_.end(), name) != seen_.end()) {
        error(std::string(name) + " stands here twice; keep one of them");
        return;
    }
    seen_.emplace_back(name);
    std::string known;
    for (const Open &open : places_) {
        const FieldRow *row = find_field(open.table, name);
        if (row != nullptr && !row->has(FIELD_KEY)) {
            set(open, *row, text);
            return;
        }
        const std::string names = known_names(open.table);
        known += (known.empty() || names.empty() ? "" : ", ") + names;
    }
    error("unknown field '" + std::string(name) + "'; known are " + known);
}

void Parser::end() {
    close_resource();
    if (text_.nodes.empty()) {
        error("the text has no node; add a [node NAME]");
    }
    const auto is_master = [](const TextNode &node) {
        return (node.facts.server_flags & NAP_SERVER_CONFIG) != 0;
    };
    const auto masters = std::count_if(text_.nodes.begin(), text_.nodes.end(), is_master);
    if (text_.facts.client_server != 0 && masters != 1) {
        error("a client/server domain has exactly one node with `server = master`");
    }
    if (text_.facts.client_server == 0 && text_.nodes.size() > 1) {
        error("a domain of several nodes needs `client_server = yes`");
    }
}

} // namespace

void DomainText::error(int line, const std::string &what) {
    if (errors.size() < MAX_TEXT_ERRORS) {
        errors.push_back(file + ":" + std::to_string(line) + ": " + what);
    }
}

const TextNode *DomainText::find(const std::string &node) const {
    const auto same = [&node](const TextNode &other) {
        return strcasecmp(other.name.c_str(), node.c_str()) == 0;
    };
    const auto found = std::find_if(nodes.begin(), nodes.end(), same);
    return found == nodes.end() ? nullptr : &*found;
}

DomainText parse_domain_text(const std::string &file_name, std::string_view text) {
    DomainText domain;
    domain.file = file_name;
    Parser parser(domain);
    int number = 0;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        parser.line(++number, text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    parser.end();
    return domain;
}

DomainText read_domain_file(const std::string &file_name) {
    std::ifstream file(file_name, std::ios::binary);
    if (!file) {
        DomainText domain;
        domain.file = file_name;
        domain.errors.push_back(file_name + ": cannot be read: " + strerror(errno));
        return domain;
    }
    const std::string text((std::istreambuf_iterator<char>(file)),
                           std::istreambuf_iterator<char>());
    return parse_domain_text(file_name, text);
}

} // namespace records
