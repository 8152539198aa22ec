#include "words.h"
#include "details.h"

#include "entry.h"
#include "fieldtext.h"
#include "fieldwords.h"
#include "nesteditems.h"
#include "nofverbs.h"
#include "verberror.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <memory>

namespace cli {

using records::FieldRow;
using records::FieldTable;
using records::Schema;

namespace {

std::string code_names(Codes codes) {
    const char *primary = nap_primary_name(codes.primary);
    const char *secondary = nap_secondary_name(codes.secondary);
    return (primary != nullptr ? primary : std::to_string(codes.primary)) +
           (secondary != nullptr ? std::string(" ") + secondary : "");
}

Status status_of(Codes codes) {
    if (codes.primary == NAP_UNAVAILABLE || codes.primary == NAP_COMM_FAILURE) {
        return UNREACHABLE;
    }
    return codes.secondary == NAP_NO_PERMISSION      ? NO_RIGHT
           : codes.secondary == NAP_UNKNOWN_RESOURCE ? NOT_THERE
                                                     : REFUSED;
}

std::string value_of(const FieldRow &field, const NB_UCHAR *record) {
    return std::string(field.name) + " = " + records::format_field(field, record) + "\n";
}

/* What is not as the initial values have it. */
std::string changed_fields(FieldTable fields, const NB_UCHAR *record, size_t size) {
    Bytes initial(size);
    std::string text;
    records::set_initial_fields(fields, initial.data());
    for (const FieldRow &field : fields) {
        const bool same = std::equal(record + field.offset, record + field.offset + field.width,
                                     initial.data() + field.offset);
        if (!same && !field.has(records::FIELD_KEY) && !field.has(records::FIELD_SECRET)) {
            text += value_of(field, record);
        }
    }
    return text;
}

std::string status_lines(FieldTable status, const NB_UCHAR *record) {
    std::string text;
    for (const FieldRow &field : status) {
        text += "# " + std::string(field.name) + " = " + shown(field, record) + "\n";
    }
    return text;
}

} // namespace

namespace {

/* Where it was looked for, why nobody is there and what to do. */
std::string unreachable() {
    const NOF_FAILURE failure = nof_last_failure();
    std::string text = vga_unreachable_line(failure);
    if (text.empty()) { // there is no catalogue
        text = std::string("the node software cannot be reached at ") + failure.socket + ": " +
               failure.reason;
    }
    const size_t program = text.find(": ");
    text.erase(0, text.rfind("quiladmin", 0) == 0 ? program + 2 : 0);
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return text;
}

/* What a shell's user is told; the codes stand behind it. */
std::string reason_of(NB_USHORT opcode, Codes codes) {
    static constexpr struct {
        NB_ULONG secondary;
        const char *text;
    } reasons[] = {
        {NAP_NO_PERMISSION, "you may look but not change; ask for membership of the group sna"},
        {NAP_INVALID_NAME, "a name in it is not valid, or missing"},
        {NAP_INVALID_VALUE, "a value in it is not allowed, or does not go with the others"},
        {NAP_UNKNOWN_RESOURCE, "there is none of that name"},
        {NAP_UNKNOWN_OWNER, "a resource that it names is not defined; define that first"},
        {NAP_DUPLICATE_NAME, "another resource has that name"},
        {NAP_NO_DOMAIN_CONFIG, "this node software keeps no configuration of a domain"},
        {NAP_NODE_GONE, "the node is not running; see `quilctl status`"},
        {NAP_CONNECTION_GONE, "the node software has ended"},
        {NAP_NODE_BUSY, "the node is busy, or is stopping or starting; try again"},
        {NAP_RESOURCE_ACTIVE, "it is active; stop it first"},
        {NAP_RESOURCE_INACTIVE, "what it depends on is not active; start that first"},
        {NAP_IN_USE, "other definitions name it, or it is not yours to change"},
        {NAP_PORT_LIMIT, "its port has as many active links as it may have; stop one, or raise "
                         "tot_link_act_lim of the port"},
        {NAP_LU_LIMIT, "the node has as many LUs as it may have; see `quilctl limits`"},
        {NAP_LINK_LIMIT, "the node has as many link stations as it may have; see `quilctl limits`"},
        {NAP_SESSION_LIMIT,
         "the mode, the local LU or the node has as many sessions as it may have"},
        {NAP_PARTNER_UNREACHABLE, "no active link leads to its partner"},
        {NAP_NODE_NOT_ACTIVE, "the node is not active; start it first"},
        {NAP_STORE_FAILED, "it cannot be written to the disk, and nothing was done; make room"},
    };
    if (codes.primary == NAP_UNAVAILABLE) {
        return unreachable();
    }
    for (const auto &row : reasons) {
        if (row.secondary == codes.secondary) {
            return row.text;
        }
    }
    const NB_CHAR *help = nullptr;
    const std::unique_ptr<NB_CHAR, decltype(&free)> reason(
        vga_get_verb_error_message(opcode, codes.primary, codes.secondary, &help), free);
    std::string text = reason != nullptr ? reason.get() : "";
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

} // namespace

Failure failure_of(const std::string &what, NB_USHORT opcode, Codes codes) {
    const std::string reason = reason_of(opcode, codes);
    return {status_of(codes),
            what + ": " + reason + (reason.empty() ? "" : " ") + "(" + code_names(codes) + ")",
            codes.secondary};
}

std::vector<const Schema *> classes() {
    std::vector<const Schema *> all;
    for (const Schema *schema : records::all_schemas) {
        if (schema != &records::domain_server) {
            all.push_back(schema);
        }
    }
    return all;
}

const Schema &class_named(const std::string &name) {
    std::string known;
    for (const Schema *schema : classes()) {
        if (name == schema->name) {
            return *schema;
        }
        known += std::string(known.empty() ? "" : ", ") + schema->name;
    }
    throw Failure(BAD_USAGE, "there is no class \"" + name + "\"; there are " + known);
}

bool is_of_domain(const Schema &schema) {
    return schema.scope == records::Scope::Domain;
}

bool is_tp_load(const Schema &schema) {
    return schema.scope == records::Scope::TpLoad;
}

Bytes new_entry(const Schema &schema) {
    Bytes entry(schema.overlay_size());
    records::put_number(entry.data(), 2, static_cast<NB_ULONG>(schema.overlay_size()));
    records::set_initial_fields(schema.fields, entry.data());
    return entry;
}

void set_key(const Schema &schema, const std::vector<std::string> &words, Bytes &entry) {
    std::string form = schema.name;
    std::string wrong;
    size_t at = 0;
    for (const FieldRow &field : schema.fields) {
        if (!field.has(records::FIELD_KEY)) {
            continue;
        }
        std::string why;
        form += " " + std::string(field.name);
        if (at < words.size() && wrong.empty() &&
            !records::set_field(field, words[at] == "-" ? "" : words[at], entry.data(), why)) {
            wrong = "; " + std::string(field.name) + " is " + why;
        }
        at++;
    }
    if (at != words.size() || !wrong.empty()) {
        throw Failure(BAD_USAGE, "a name here is " + form + wrong);
    }
}

std::string key_words(const Schema &schema, const NB_UCHAR *entry) {
    std::string words;
    for (const FieldRow &field : schema.fields) {
        if (field.has(records::FIELD_KEY)) {
            const std::string word = records::format_field(field, entry);
            words += (words.empty() ? "" : " ") + (word.empty() ? "-" : word);
        }
    }
    return words;
}

void set_fields(FieldTable fields, const std::string &of, const std::vector<std::string> &words,
                NB_UCHAR *record) {
    for (const std::string &word : words) {
        const size_t equals = word.find('=');
        const FieldRow *field = records::find_field(fields, word.substr(0, equals));
        std::string why;
        if (equals == std::string::npos) {
            throw Failure(BAD_USAGE, "\"" + word + "\" is not FIELD=VALUE");
        }
        if (field == nullptr || field->has(records::FIELD_KEY)) {
            std::string known;
            for (const FieldRow &row : fields) {
                known += row.has(records::FIELD_KEY) ? "" : std::string(" ") + row.name;
            }
            throw Failure(BAD_USAGE, "there is no field \"" + word.substr(0, equals) + "\" in " +
                                         of + "; there are" + known);
        }
        if (!records::set_field(*field, word.substr(equals + 1), record, why)) {
            throw Failure(BAD_USAGE, std::string(field->name) + " is " + why);
        }
    }
}

std::string shown(const FieldRow &field, const NB_UCHAR *record) {
    if (field.unit != records::Unit::Time) {
        return records::format_field(field, record);
    }
    const time_t seconds = records::get_number(record + field.offset, field.width);
    char text[32] = "";
    if (seconds != 0) {
        strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", localtime(&seconds));
    }
    return text;
}

const FieldRow *state_field(const Schema &schema) {
    const auto found =
        std::find_if(schema.status.begin(), schema.status.end(), [](const FieldRow &field) {
            return field.words.data() == std::data(records::state_words);
        });
    return found != schema.status.end() ? &*found : nullptr;
}

std::string state_word(NB_ULONG state) {
    const auto found =
        std::find_if(std::begin(records::state_words), std::end(records::state_words),
                     [state](const records::FieldWord &word) { return word.value == state; });
    return found != std::end(records::state_words) ? found->text : std::to_string(state);
}

std::string section_of(const Schema &schema, const NB_UCHAR *entry, bool with_status) {
    std::string text = "[" + std::string(schema.name) + " " + key_words(schema, entry) + "]\n" +
                       changed_fields(schema.fields, entry, schema.overlay_size());
    const records::Nested &nested = schema.nested;
    const NB_ULONG items = nested.name != nullptr ? records::item_count(nested, entry) : 0;
    for (NB_ULONG at = 0; at < items; at++) {
        text += "+ " + std::string(nested.name) + "\n" +
                changed_fields(nested.fields, records::item_at(nested, entry, at), nested.size);
    }
    return text + (with_status ? status_lines(schema.status, entry) : "");
}

std::string section_of(const records::Settings &row, const NB_UCHAR *block, bool with_status) {
    return "[" + std::string(row.name) + "]\n" + changed_fields(row.fields, block, row.block_size) +
           (with_status ? status_lines(row.status, block) : "");
}

} // namespace cli
