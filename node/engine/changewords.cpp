#include "changewords.h"

#include "defineblock.h"
#include "fieldtext.h"
#include "nesteditems.h"
#include "nofcopy.h"
#include "nofverbs.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace node {

namespace {

/* Of what is made or deleted, names that are blank and numbers that are 0 are left out. */
bool says_nothing(const FieldRow &field, const NB_UCHAR *record) {
    const NB_UCHAR *at = record + field.offset;
    return is_empty_field(field, record) ||
           std::all_of(at, at + field.width, [](NB_UCHAR byte) { return byte == 0; });
}

std::string quoted(const FieldRow &field, const NB_UCHAR *record) {
    return " '" + format_field(field, record) + "'";
}

std::string change_of(const FieldRow &field, const NB_UCHAR *before, const NB_UCHAR *after) {
    if (field.has(FIELD_SECRET)) {
        return before == nullptr || says_nothing(field, before) ? " set"
               : after == nullptr || says_nothing(field, after) ? " removed"
                                                                : " changed";
    }
    return (before != nullptr ? quoted(field, before) : "") + " ->" +
           (after != nullptr ? quoted(field, after) : "");
}

void add_fields(FieldTable fields, const std::string &within, const NB_UCHAR *before,
                const NB_UCHAR *after, std::string &text) {
    for (const FieldRow &field : fields) {
        const NB_UCHAR *only = before == nullptr ? after : before;
        const bool unsaid =
            before != nullptr && after != nullptr
                ? memcmp(before + field.offset, after + field.offset, field.width) == 0
                : only == nullptr || says_nothing(field, only);
        if (!unsaid && !field.has(FIELD_KEY)) {
            text +=
                (text.empty() ? "" : "; ") + within + field.name + change_of(field, before, after);
        }
    }
}

} // namespace

std::string verb_words(NB_USHORT opcode) {
    constexpr size_t PREFIX = 4; /* NAP_ */
    const NAP_VERB *verb = nap_find_verb(opcode);
    if (verb == nullptr) {
        return "verb " + std::to_string(opcode);
    }
    std::string words = verb->name + PREFIX;
    for (char &letter : words) {
        letter = letter == '_' ? ' ' : static_cast<char>(tolower(letter));
    }
    return words;
}

std::string name_words(const Schema &schema, const NB_UCHAR *entry) {
    std::string text = schema.name;
    for (const FieldRow &field : schema.fields) {
        if (field.has(FIELD_KEY)) {
            text += " " + format_field(field, entry);
        }
    }
    return text;
}

std::string subject_words(const std::vector<NB_UCHAR> &block) {
    const auto opcode = nap_copy<NAP_VCB>(block.data()).opcode;
    const NB_UCHAR kind = nap_find_verb(opcode)->kind;
    const Settings *settings = settings_by_verb(opcode);
    const ClassRow *row =
        kind == NAP_KIND_LIMIT || opcode == NAP_ACTIVATE_SESSION || opcode == NAP_DEACTIVATE_SESSION
            ? &class_row(CLASS_MODE)
            : class_by_verb(opcode);
    if (row != nullptr) {
        std::vector<NB_UCHAR> entry(row->schema->overlay_size());
        take_key(*row->schema, block.data(), entry.data());
        return name_words(*row->schema, entry.data());
    }
    if (opcode == NAP_END_LU_SESSION) {
        const auto verb = nap_copy<NAP_END_LU_SESSION_VERB>(block.data());
        return "lu " + ebcdic_text(verb.lu_name, sizeof verb.lu_name);
    }
    if (opcode == NAP_END_TN3270_CLIENT) {
        const auto verb = nap_copy<NAP_END_TN_CLIENT_VERB>(block.data());
        return "client " + local_text(verb.client_address, sizeof verb.client_address) + " " +
               ebcdic_text(verb.lu_name, sizeof verb.lu_name);
    }
    if (opcode == NAP_ADD_BACKUP || opcode == NAP_DELETE_BACKUP) {
        const auto verb = nap_copy<NAP_NAME_VERB>(block.data());
        return "server " + local_text(verb.key, sizeof verb.key);
    }
    return settings != nullptr ? settings->name : "";
}

std::string differences(const Schema &schema, const NB_UCHAR *before, const NB_UCHAR *after) {
    std::string text;
    add_fields(schema.fields, "", before, after, text);
    const Nested &nested = schema.nested;
    const auto count = [&nested](const NB_UCHAR *entry) {
        return nested.name != nullptr && entry != nullptr ? records::item_count(nested, entry) : 0;
    };
    const NB_ULONG left = count(before);
    const NB_ULONG right = count(after);
    for (NB_ULONG at = 0; at < std::max(left, right); at++) {
        add_fields(nested.fields, nested.name + (" " + std::to_string(at + 1)) + " ",
                   at < left ? records::item_at(nested, before, at) : nullptr,
                   at < right ? records::item_at(nested, after, at) : nullptr, text);
    }
    return text;
}

std::string differences(const Settings &row, const NB_UCHAR *before, const NB_UCHAR *after) {
    std::string text;
    add_fields(row.fields, "", before, after, text);
    return text;
}

} // namespace node
