#include "nodefield.h"

#include "nbbase.h"
#include "nodekey.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstring>

namespace node {

namespace {

constexpr NB_UCHAR EBCDIC_BLANK = 0x40;
constexpr NB_UCHAR EBCDIC_PERIOD = 0x4B;
constexpr size_t NAME_WIDTH = 8;

size_t name_length(const NB_UCHAR *name, size_t width, NB_UCHAR blank) {
    return static_cast<size_t>(std::find(name, name + width, blank) - name);
}

bool all_are(const NB_UCHAR *at, const NB_UCHAR *end, NB_UCHAR byte) {
    return std::all_of(at, end, [byte](NB_UCHAR other) { return other == byte; });
}

bool valid_part(const NB_UCHAR *name, size_t length) {
    return length >= 1 && length <= NAME_WIDTH &&
           nba_check_ebcdic(NB_EBCDIC_TYPE_A, name, static_cast<NB_USHORT>(length)) != 0;
}

bool valid_name_a(const NB_UCHAR *name, size_t width) {
    const size_t length = name_length(name, width, EBCDIC_BLANK);
    return all_are(name + length, name + width, EBCDIC_BLANK) && valid_part(name, length);
}

bool valid_name_fq(const NB_UCHAR *name, size_t width) {
    const size_t length = name_length(name, width, EBCDIC_BLANK);
    const size_t period = name_length(name, length, EBCDIC_PERIOD);
    return period < length && all_are(name + length, name + width, EBCDIC_BLANK) &&
           valid_part(name, period) && valid_part(name + period + 1, length - period - 1);
}

bool valid_name_local(const NB_UCHAR *name, size_t width) {
    const size_t length = name_length(name, width, ' ');
    return length > 0 && all_are(name + length, name + width, ' ') &&
           std::all_of(name, name + length, [](NB_UCHAR c) { return c > ' ' && c < 0x7F; });
}

bool valid_number(const FieldRow &row, NB_ULONG value) {
    switch (row.kind) {
    case FieldKind::Flag:
        return value <= 1;
    case FieldKind::Word:
        for (const FieldWord *word = row.words; word->text != nullptr; word++) {
            if (word->value == value) {
                return true;
            }
        }
        return false;
    case FieldKind::Number:
        return value >= row.low && value <= row.high;
    default:
        return true;
    }
}

bool is_name(FieldKind kind) {
    return kind == FieldKind::NameA || kind == FieldKind::NameFq || kind == FieldKind::NameLocal;
}

KeyKind blank_kind(FieldKind kind) {
    return kind == FieldKind::NameLocal ? KeyKind::Local : KeyKind::Ebcdic;
}

bool valid_name(const FieldRow &row, const NB_UCHAR *name) {
    if (is_blank(blank_kind(row.kind), name, row.width)) {
        return (row.use & FIELD_REQUIRED) == 0;
    }
    switch (row.kind) {
    case FieldKind::NameA:
        return valid_name_a(name, row.width);
    case FieldKind::NameFq:
        return valid_name_fq(name, row.width);
    default:
        return valid_name_local(name, row.width);
    }
}

std::string allowed(const FieldRow &row) {
    switch (row.kind) {
    case FieldKind::NameA:
        return "up to 8 of A-Z, 0-9, @, # and $, no digit first";
    case FieldKind::NameFq:
        return "a network name, a period and a name, as in NETA.LU1";
    case FieldKind::NameLocal:
        return "up to 8 characters without blanks";
    case FieldKind::Text:
        return "a text of up to " + std::to_string(row.width - 1) + " characters";
    case FieldKind::Number:
        return "a number from " + std::to_string(row.low) + " to " + std::to_string(row.high);
    case FieldKind::Flag:
        return "yes or no";
    case FieldKind::Hex:
        return "a hexadecimal number of up to 8 digits";
    case FieldKind::Word:
        break;
    }
    std::string text = "one of";
    for (const FieldWord *word = row.words; word->text != nullptr; word++) {
        text += std::string(" ") + word->text;
    }
    return text;
}

bool parse_number(const FieldRow &row, std::string_view text, NB_ULONG &value) {
    if (row.kind == FieldKind::Flag) {
        value = text == "yes" ? 1 : 0;
        return text == "yes" || text == "no";
    }
    if (row.kind == FieldKind::Word) {
        for (const FieldWord *word = row.words; word->text != nullptr; word++) {
            if (text == word->text) {
                value = word->value;
                return true;
            }
        }
        return false;
    }
    const char *end = text.data() + text.size();
    const int base = row.kind == FieldKind::Hex ? 16 : 10;
    const auto parsed = std::from_chars(text.data(), end, value, base);
    return parsed.ec == std::errc() && parsed.ptr == end && valid_number(row, value);
}

bool set_name(const FieldRow &row, std::string_view text, NB_UCHAR *at) {
    NB_UCHAR name[32] = {};
    if (text.size() > row.width) {
        return false;
    }
    if (row.kind == FieldKind::NameLocal) {
        put_local(name, row.width, text);
    } else {
        put_ebcdic(name, row.width, text);
    }
    if (!valid_name(row, name)) {
        return false;
    }
    memcpy(at, name, row.width);
    return true;
}

} // namespace

const FieldRow *FieldTable::find(std::string_view name) const {
    const FieldRow *found =
        std::find_if(begin(), end(), [name](const FieldRow &row) { return name == row.name; });
    return found == end() ? nullptr : found;
}

NB_ULONG get_number(const NB_UCHAR *at, size_t width) {
    if (width == 1) {
        return *at;
    }
    NB_USHORT half = 0;
    NB_ULONG whole = 0;
    if (width == 2) {
        memcpy(&half, at, sizeof half);
        return half;
    }
    memcpy(&whole, at, sizeof whole);
    return whole;
}

void put_number(NB_UCHAR *at, size_t width, NB_ULONG value) {
    const auto byte = static_cast<NB_UCHAR>(value);
    const auto half = static_cast<NB_USHORT>(value);
    if (width == 1) {
        *at = byte;
    } else if (width == 2) {
        memcpy(at, &half, sizeof half);
    } else {
        memcpy(at, &value, sizeof value);
    }
}

std::string local_text(const NB_UCHAR *name, size_t width) {
    std::string text(reinterpret_cast<const char *>(name), width);
    text.resize(std::min(text.size(), text.find('\0')));
    text.resize(text.find_last_not_of(' ') + 1);
    return text;
}

std::string ebcdic_text(const NB_UCHAR *name, size_t width) {
    std::string text(reinterpret_cast<const char *>(name), width);
    nba_ebcdic_to_local(reinterpret_cast<NB_UCHAR *>(text.data()), static_cast<NB_USHORT>(width));
    return local_text(reinterpret_cast<const NB_UCHAR *>(text.data()), width);
}

void put_local(NB_UCHAR *name, size_t width, std::string_view text) {
    memset(name, ' ', width);
    memcpy(name, text.data(), std::min(width, text.size()));
}

void put_ebcdic(NB_UCHAR *name, size_t width, std::string_view text) {
    const size_t length = std::min(width, text.size());
    memset(name, EBCDIC_BLANK, width);
    memcpy(name, text.data(), length);
    nba_local_to_ebcdic(name, static_cast<NB_USHORT>(length));
}

bool set_field(const FieldRow &row, std::string_view text, NB_UCHAR *record, std::string &why) {
    NB_UCHAR *at = record + row.offset;
    NB_ULONG value = 0;
    bool good = false;
    if (is_name(row.kind)) {
        good = set_name(row, text, at);
    } else if (row.kind == FieldKind::Text) {
        good = text.size() < row.width;
        if (good) {
            memset(at, 0, row.width);
            memcpy(at, text.data(), text.size());
        }
    } else {
        good = parse_number(row, text, value);
        if (good) {
            put_number(at, row.width, value);
        }
    }
    if (!good) {
        why = allowed(row);
    }
    return good;
}

std::string format_field(const FieldRow &row, const NB_UCHAR *record) {
    const NB_UCHAR *at = record + row.offset;
    if (row.kind == FieldKind::NameA || row.kind == FieldKind::NameFq) {
        return ebcdic_text(at, row.width);
    }
    if (row.kind == FieldKind::NameLocal || row.kind == FieldKind::Text) {
        return local_text(at, row.width);
    }
    const NB_ULONG value = get_number(at, row.width);
    if (row.kind == FieldKind::Flag) {
        return value != 0 ? "yes" : "no";
    }
    if (row.kind == FieldKind::Word) {
        for (const FieldWord *word = row.words; word->text != nullptr; word++) {
            if (word->value == value) {
                return word->text;
            }
        }
    }
    char digits[16] = {};
    std::to_chars(digits, digits + sizeof digits - 1, value, row.kind == FieldKind::Hex ? 16 : 10);
    return digits;
}

NB_ULONG check_field(const FieldRow &row, const NB_UCHAR *record) {
    const NB_UCHAR *at = record + row.offset;
    if (is_name(row.kind)) {
        return valid_name(row, at) ? 0 : NAP_INVALID_NAME;
    }
    if (row.kind == FieldKind::Text) {
        return memchr(at, 0, row.width) != nullptr ? 0 : NAP_INVALID_VALUE;
    }
    return valid_number(row, get_number(at, row.width)) ? 0 : NAP_INVALID_VALUE;
}

void tidy_field(const FieldRow &row, NB_UCHAR *record) {
    NB_UCHAR *at = record + row.offset;
    if (is_name(row.kind) && is_blank(blank_kind(row.kind), at, row.width)) {
        memset(at, row.kind == FieldKind::NameLocal ? ' ' : EBCDIC_BLANK, row.width);
    }
}

void set_initial_fields(const FieldTable &table, NB_UCHAR *record, Behaviour &behaviour) {
    for (const FieldRow &row : table) {
        NB_UCHAR *base =
            (row.use & FIELD_BEHAVIOUR) != 0 ? reinterpret_cast<NB_UCHAR *>(&behaviour) : record;
        std::string why;
        if (row.initial != nullptr) {
            NB_ASSERT(set_field(row, row.initial, base, why));
        } else if (is_name(row.kind)) {
            memset(base + row.offset, row.kind == FieldKind::NameLocal ? ' ' : EBCDIC_BLANK,
                   row.width);
        }
    }
}

} // namespace node
