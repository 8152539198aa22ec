#include "storedform.h"

#include "nesteditems.h"
#include "secrethash.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

/* What stands between a name and its value: text, bytes or a hash. */
constexpr std::string_view SIGNS = "=:$";

/* The first line of a text, which is taken off it. */
std::string_view cut_line(std::string_view &text) {
    const size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

bool names(std::string_view line, std::string_view name) {
    return line.size() > name.size() && SIGNS.find(line[name.size()]) != SIGNS.npos &&
           memcmp(line.data(), name.data(), name.size()) == 0;
}

/* `value` stands behind the sign that says what it is. */
bool set_value(const FieldRow &row, char sign, std::string_view value, NB_UCHAR *at) {
    if (sign == ':') {
        return value.size() == size_t{row.width} * 2 &&
               records::read_bytes(value, at, row.width) >= 0;
    }
    if (sign == '$') {
        put_mark(row, at);
        return row.has(FIELD_COMPARED);
    }
    std::string why;
    return set_field(row, value, at, why);
}

} // namespace

/* Where the lines that are read go; the next line is most likely that of the next field. */
struct StoredForm::Reading {
    NB_UCHAR *at[PARTS];
    NB_UCHAR *record;
    std::set<std::string> *unknown;
    size_t next = 0;
    size_t known = 0;
    bool skips = false; /* the item is of no known kind */
};

StoredForm::StoredForm(const ClassRow &row) : base_(row.schema->overlay_size()) {
    const Schema &schema = *row.schema;
    put_number(base_.data(), 2, static_cast<NB_ULONG>(schema.overlay_size()));
    set_initial_fields(schema.fields, base_.data());
    set_initial_fields(schema.simulated, reinterpret_cast<NB_UCHAR *>(&base_behaviour_));
    add(schema.fields, RECORD);
    add(schema.simulated, BEHAVIOUR);
    own_lines_ = lines_.size();
    if (schema.nested.name != nullptr) {
        nested_ = &schema.nested;
        base_item_.resize(nested_->size);
        set_initial_fields(nested_->fields, base_item_.data());
        add(nested_->fields, ITEM);
    }
}

StoredForm::StoredForm(const Settings &row) : base_(row.block_size) {
    put_number(base_.data(), 2, row.query);
    set_initial_fields(row.fields, base_.data());
    add(row.fields, RECORD);
    own_lines_ = lines_.size();
}

void StoredForm::add(FieldTable fields, Part part) {
    for (const FieldRow &field : fields) {
        Line line = {field, field.name, field.offset, part};
        line.row.offset = 0;
        has_compared_ = has_compared_ || field.has(FIELD_COMPARED);
        has_secrets_ = has_secrets_ || field.has(FIELD_SECRET);
        scratch_.resize(std::max(scratch_.size(), size_t{field.width}));
        lines_.push_back(line);
    }
}

const NB_UCHAR *StoredForm::base_of(Part part) const {
    return part == RECORD ? base_.data()
           : part == ITEM ? base_item_.data()
                          : reinterpret_cast<const NB_UCHAR *>(&base_behaviour_);
}

/* A text that does not give back every byte is none: names may hold bytes that are no characters.
 */
void StoredForm::put_line(const Line &line, const NB_UCHAR *at, std::string &text) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string why;
    const std::string value = records::format_field(line.row, at);
    memset(scratch_.data(), 0, line.row.width);
    const bool gives_back = value.find('\n') == std::string::npos &&
                            set_field(line.row, value, scratch_.data(), why) &&
                            memcmp(scratch_.data(), at, line.row.width) == 0;
    text += line.name;
    text += gives_back ? '=' : ':';
    if (gives_back) {
        text += value;
    } else {
        for (size_t byte = 0; byte < line.row.width; byte++) {
            text += {digits[at[byte] >> 4], digits[at[byte] & 15]};
        }
    }
    text += '\n';
}

bool StoredForm::put_hash(const Line &line, const NB_UCHAR *at, std::string &text) {
    const bool known = is_mark(line.row, at);
    const std::string hash = known ? "" : hash_secret(line.row, at);
    text += line.row.name + ("$" + hash) + '\n';
    return known || !hash.empty();
}

std::string StoredForm::hash_in(std::string_view secrets, std::string_view field) {
    while (!secrets.empty()) {
        const std::string_view line = cut_line(secrets);
        if (names(line, field) && line[field.size()] == '$') {
            return std::string(line.substr(field.size() + 1));
        }
    }
    return "";
}

bool StoredForm::keep_hashes(std::string_view before, std::string &secrets) const {
    return std::all_of(lines_.begin(), lines_.end(), [&](const Line &line) {
        const std::string missing = line.row.name + std::string("$\n");
        const size_t at = line.row.has(FIELD_COMPARED) ? secrets.find(missing) : secrets.npos;
        const std::string hash = at != secrets.npos ? hash_in(before, line.name) : "";
        if (!hash.empty()) {
            secrets.insert(at + missing.size() - 1, hash);
        }
        return at == secrets.npos || !hash.empty();
    });
}

bool StoredForm::write(const NB_UCHAR *record, const Behaviour *behaviour, StoredText &text) {
    const Behaviour &beside = behaviour != nullptr ? *behaviour : DEFAULT_BEHAVIOUR;
    bool good = true;
    text.fields.clear();
    text.secrets.clear();
    for (size_t at = 0; at < own_lines_; at++) {
        const Line &line = lines_[at];
        const NB_UCHAR *from =
            line.offset +
            (line.part == RECORD ? record : reinterpret_cast<const NB_UCHAR *>(&beside));
        if (memcmp(from, base_of(line.part) + line.offset, line.row.width) == 0) {
            continue;
        }
        if (line.row.has(FIELD_COMPARED)) {
            good = put_hash(line, from, text.secrets) && good;
        } else {
            put_line(line, from, line.row.has(FIELD_SECRET) ? text.secrets : text.fields);
        }
    }
    for (NB_ULONG at = 0; nested_ != nullptr && at < records::item_count(*nested_, record); at++) {
        put_item(records::item_at(*nested_, record, at), text.fields);
    }
    return good;
}

void StoredForm::put_item(const NB_UCHAR *item, std::string &text) {
    text += std::string("+") + nested_->name + '\n';
    for (size_t at = own_lines_; at < lines_.size(); at++) {
        const Line &line = lines_[at];
        if (memcmp(item + line.offset, base_item_.data() + line.offset, line.row.width) != 0) {
            put_line(line, item + line.offset, text);
        }
    }
}

void StoredForm::write_key(const NB_UCHAR *key, size_t length, std::string &text) {
    std::vector<NB_UCHAR> record = base_;
    memcpy(record.data() + KEY_OFFSET, key, length);
    for (const Line &line : lines_) {
        if (line.row.has(FIELD_KEY)) {
            put_line(line, record.data() + line.offset, text);
        }
    }
}

/* Looked for from the next one on, once around. */
const StoredForm::Line *StoredForm::find_line(std::string_view text, const Reading &reading) const {
    const bool in_item = reading.at[ITEM] != nullptr;
    const size_t first = in_item ? own_lines_ : 0;
    const size_t end = in_item ? lines_.size() : own_lines_;
    for (size_t at = reading.next; at < end; at++) {
        if (names(text, lines_[at].name)) {
            return &lines_[at];
        }
    }
    for (size_t at = first; at < std::min(reading.next, end); at++) {
        if (names(text, lines_[at].name)) {
            return &lines_[at];
        }
    }
    return nullptr;
}

bool StoredForm::read_item(std::string_view name, Reading &reading) const {
    reading.skips = nested_ == nullptr || name != nested_->name;
    if (reading.skips) {
        reading.unknown->insert("+" + std::string(name));
        return true;
    }
    reading.at[ITEM] = reading.record != nullptr
                           ? records::append_item(*nested_, reading.record, base_item_.data())
                           : reading.at[ITEM];
    reading.next = own_lines_;
    return reading.at[ITEM] != nullptr;
}

bool StoredForm::read_lines(std::string_view text, Reading &reading) const {
    bool good = true;
    while (!text.empty()) {
        const std::string_view line = cut_line(text);
        if (line.empty()) {
            continue;
        }
        if (line[0] == '+') {
            if (!read_item(line.substr(1), reading)) {
                return false;
            }
            continue;
        }
        const Line *found = reading.skips ? nullptr : find_line(line, reading);
        if (found != nullptr) {
            reading.next = static_cast<size_t>(found - lines_.data()) + 1;
            reading.known++;
            const size_t sign = found->name.size();
            good = set_value(found->row, line[sign], line.substr(sign + 1),
                             reading.at[found->part] + found->offset) &&
                   good;
        } else if (!reading.skips) {
            reading.unknown->insert(std::string(line.substr(0, line.find_first_of(SIGNS))));
        }
    }
    return good;
}

bool StoredForm::read(std::string_view fields, std::string_view secrets, NB_UCHAR *record,
                      Behaviour &behaviour, std::set<std::string> &unknown) const {
    memcpy(record, base_.data(), base_.size());
    behaviour = base_behaviour_;
    auto *beside = reinterpret_cast<NB_UCHAR *>(&behaviour);
    Reading reading = {{record, beside, nullptr}, record, &unknown};
    Reading apart = {{record, beside, nullptr}, record, &unknown};
    const bool good = read_lines(fields, reading);
    return read_lines(secrets, apart) && good;
}

std::string StoredForm::base_text() {
    std::string text;
    for (size_t at = 0; at < lines_.size(); at++) {
        const Line &line = lines_[at];
        if (at == own_lines_) {
            text += std::string("+") + nested_->name + '\n';
        }
        if (!line.row.has(FIELD_SECRET)) {
            put_line(line, base_of(line.part) + line.offset, text);
        }
    }
    return text;
}

bool StoredForm::take_base(std::string_view text) {
    std::set<std::string> unknown;
    Reading reading = {
        {base_.data(), reinterpret_cast<NB_UCHAR *>(&base_behaviour_), nullptr}, nullptr, &unknown};
    const auto first_item = text.find("\n+");
    const auto own =
        text.substr(0, first_item == std::string_view::npos ? first_item : first_item + 1);
    const bool good = read_lines(own, reading);
    if (own.size() < text.size()) {
        reading.at[ITEM] = base_item_.data();
        if (nested_ == nullptr || !read_lines(text.substr(own.size()), reading)) {
            return false;
        }
    }
    const auto told = std::count_if(lines_.begin(), lines_.end(),
                                    [](const Line &line) { return !line.row.has(FIELD_SECRET); });
    return good && unknown.empty() && reading.known == static_cast<size_t>(told);
}

} // namespace node
