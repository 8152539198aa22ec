#include "fieldtext.h"

#include "nbbase.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cctype>
#include <charconv>
#include <cstring>
#include <vector>

namespace records {

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
        for (const FieldWord &word : row.words) {
            if (word.value == value) {
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
    return kind <= FieldKind::NameEbcdic;
}

/* The blank of the character set that a name of this kind is in. */
NB_UCHAR blank_of(FieldKind kind) {
    return kind == FieldKind::NameLocal ? ' ' : EBCDIC_BLANK;
}

bool is_blank_name(FieldKind kind, const NB_UCHAR *name, size_t width) {
    const bool local = kind == FieldKind::NameLocal || kind == FieldKind::NamePartner;
    return (kind != FieldKind::NameLocal && is_blank(KeyKind::Ebcdic, name, width)) ||
           (local && is_blank(KeyKind::Local, name, width));
}

/* Names of services hold bytes that are no characters; NULs stand nowhere. */
bool valid_name_ebcdic(const NB_UCHAR *name, size_t width) {
    return name[0] != EBCDIC_BLANK && std::find(name, name + width, 0) == name + width;
}

bool valid_name(const FieldRow &row, const NB_UCHAR *name) {
    if (is_blank_name(row.kind, name, row.width)) {
        return !row.has(FIELD_REQUIRED);
    }
    switch (row.kind) {
    case FieldKind::NameA:
        return valid_name_a(name, row.width);
    case FieldKind::NameFq:
        return valid_name_fq(name, row.width);
    case FieldKind::NameAny:
        return valid_name_fq(name, row.width) || valid_name_a(name, row.width);
    case FieldKind::NamePartner:
        return valid_name_fq(name, row.width) ||
               (valid_name_local(name, row.width) && name[NAME_WIDTH] == ' ');
    case FieldKind::NameEbcdic:
        return valid_name_ebcdic(name, row.width);
    default:
        return valid_name_local(name, row.width);
    }
}

bool valid_text(const FieldRow &row, const NB_UCHAR *text) {
    return memchr(text, 0, row.width) != nullptr && (!row.has(FIELD_REQUIRED) || text[0] != 0);
}

bool valid_address(const NB_UCHAR *record) {
    NB_IP_ADDRESS address;
    memcpy(&address, record, sizeof address);
    return address.family == NAP_IPV4_ADDRESS;
}

std::string allowed(const FieldRow &row) {
    switch (row.kind) {
    case FieldKind::NameA:
        return "up to 8 of A-Z, 0-9, @, # and $, no digit first";
    case FieldKind::NameFq:
        return "a network name, a period and a name, as in NETA.LU1";
    case FieldKind::NameAny:
        return "a name of up to 8 characters, or a network name, a period and a name";
    case FieldKind::NamePartner:
        return "a network name, a period and a name, or an alias of up to 8 characters";
    case FieldKind::NameLocal:
        return "up to " + std::to_string(row.width) + " characters without blanks";
    case FieldKind::NameEbcdic:
        return "up to " + std::to_string(row.width) + " characters";
    case FieldKind::Bytes:
        return "up to " + std::to_string(2 * row.width) + " hexadecimal digits, two a byte";
    case FieldKind::Address:
        return "an IP address, as in 10.20.0.1";
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
    for (const FieldWord &word : row.words) {
        text += std::string(" ") + word.text;
    }
    return text;
}

bool parse_number(const FieldRow &row, std::string_view text, NB_ULONG &value) {
    if (row.kind == FieldKind::Flag) {
        value = text == "yes" ? 1 : 0;
        return text == "yes" || text == "no";
    }
    if (row.kind == FieldKind::Word) {
        for (const FieldWord &word : row.words) {
            if (text == word.text) {
                value = word.value;
                return true;
            }
        }
        return false;
    }
    if (row.kind == FieldKind::Hex) {
        const char *end = text.data() + text.size();
        const auto parsed = std::from_chars(text.data(), end, value, 16);
        return parsed.ec == std::errc() && parsed.ptr == end;
    }
    int64_t number = 0;
    const bool good = read_number(text, row.low, row.high, number);
    value = static_cast<NB_ULONG>(number);
    return good;
}

bool set_name(const FieldRow &row, std::string_view text, NB_UCHAR *at) {
    NB_UCHAR name[NAP_MAX_KEY] = {};
    const bool alias =
        row.kind == FieldKind::NamePartner && text.find('.') == std::string_view::npos;
    if (text.size() > row.width) {
        return false;
    }
    if (row.kind == FieldKind::NameLocal || (alias && !text.empty())) {
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

bool set_text(const FieldRow &row, std::string_view text, NB_UCHAR *at) {
    const bool good = text.size() < row.width && (!text.empty() || !row.has(FIELD_REQUIRED));
    if (good) {
        memset(at, 0, row.width);
        memcpy(at, text.data(), text.size());
    }
    return good;
}

bool set_bytes(const FieldRow &row, std::string_view text, NB_UCHAR *at) {
    std::vector<NB_UCHAR> bytes(row.width);
    const bool good = read_bytes(text, bytes.data(), row.width) >= 0;
    if (good) {
        memcpy(at, bytes.data(), row.width);
    }
    return good;
}

bool set_address(std::string_view text, NB_UCHAR *at) {
    NB_IP_ADDRESS address = {};
    const bool good = inet_pton(AF_INET, std::string(text).c_str(), address.octets) == 1;
    if (good) {
        memcpy(at, &address, sizeof address);
    }
    return good;
}

std::string format_bytes(const NB_UCHAR *at, size_t width) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (size_t byte = 0; byte < width; byte++) {
        text += {digits[at[byte] >> 4], digits[at[byte] & 15]};
    }
    return text;
}

std::string format_address(const NB_UCHAR *at) {
    char text[INET_ADDRSTRLEN] = {};
    inet_ntop(AF_INET, at + offsetof(NB_IP_ADDRESS, octets), text, sizeof text);
    return text;
}

std::string format_name(const FieldRow &row, const NB_UCHAR *at) {
    const bool local = row.kind == FieldKind::NameLocal ||
                       (row.kind == FieldKind::NamePartner && !valid_name_fq(at, row.width) &&
                        !is_blank_name(row.kind, at, row.width));
    return local ? local_text(at, row.width) : ebcdic_text(at, row.width);
}

} // namespace

bool read_number(std::string_view text, int64_t low, int64_t high, int64_t &value) {
    const char *end = text.data() + text.size();
    int64_t read = 0;
    const auto parsed = std::from_chars(text.data(), end, read);
    const bool good = parsed.ec == std::errc() && parsed.ptr == end && read >= low && read <= high;
    value = good ? read : value;
    return good;
}

int read_bytes(std::string_view text, NB_UCHAR *out, size_t most) {
    if (text.size() > 2 * most || text.size() % 2 != 0) {
        return -1;
    }
    for (size_t digit = 0; digit < text.size(); digit += 2) {
        const char *end = text.data() + digit + 2;
        if (std::from_chars(text.data() + digit, end, out[digit / 2], 16).ptr != end) {
            return -1;
        }
    }
    return static_cast<int>(text.size() / 2);
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

bool is_blank(KeyKind kind, const NB_UCHAR *raw, size_t width) {
    const NB_UCHAR blank = kind == KeyKind::Ebcdic ? EBCDIC_BLANK : ' ';
    return std::all_of(raw, raw + width,
                       [blank](NB_UCHAR byte) { return byte == blank || byte == 0; });
}

bool set_field(const FieldRow &row, std::string_view text, NB_UCHAR *record, std::string &why) {
    NB_UCHAR *at = record + row.offset;
    NB_ULONG value = 0;
    bool good = false;
    if (is_name(row.kind)) {
        good = set_name(row, text, at);
    } else if (row.kind == FieldKind::Text) {
        good = set_text(row, text, at);
    } else if (row.kind == FieldKind::Bytes) {
        good = set_bytes(row, text, at);
    } else if (row.kind == FieldKind::Address) {
        good = set_address(text, at);
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
    if (is_name(row.kind)) {
        return format_name(row, at);
    }
    if (row.kind == FieldKind::Text) {
        return local_text(at, row.width);
    }
    if (row.kind == FieldKind::Bytes) {
        return format_bytes(at, row.width);
    }
    if (row.kind == FieldKind::Address) {
        return format_address(at);
    }
    const NB_ULONG value = get_number(at, row.width);
    if (row.kind == FieldKind::Flag) {
        return value != 0 ? "yes" : "no";
    }
    if (row.kind == FieldKind::Word) {
        for (const FieldWord &word : row.words) {
            if (word.value == value) {
                return word.text;
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
        return valid_text(row, at) ? 0 : NAP_INVALID_VALUE;
    }
    if (row.kind == FieldKind::Bytes) {
        return 0;
    }
    if (row.kind == FieldKind::Address) {
        return valid_address(at) ? 0 : NAP_INVALID_VALUE;
    }
    return valid_number(row, get_number(at, row.width)) ? 0 : NAP_INVALID_VALUE;
}

void tidy_field(const FieldRow &row, NB_UCHAR *record) {
    NB_UCHAR *at = record + row.offset;
    if (is_name(row.kind) && is_blank_name(row.kind, at, row.width)) {
        memset(at, blank_of(row.kind), row.width);
    } else if (row.kind == FieldKind::Text) {
        std::fill(std::find(at, at + row.width, 0), at + row.width, NB_UCHAR{0});
    }
}

bool is_empty_field(const FieldRow &row, const NB_UCHAR *record) {
    const NB_UCHAR *at = record + row.offset;
    return is_name(row.kind) ? is_blank_name(row.kind, at, row.width)
                             : all_are(at, at + row.width, 0);
}

void hide_secrets(FieldTable table, NB_UCHAR *record) {
    for (const FieldRow &row : table) {
        if (row.has(FIELD_SECRET)) {
            memset(record + row.offset, is_name(row.kind) ? blank_of(row.kind) : 0, row.width);
        }
    }
}

void keep_secrets(FieldTable table, NB_UCHAR *record, const NB_UCHAR *old) {
    for (const FieldRow &row : table) {
        if (row.has(FIELD_SECRET) && is_empty_field(row, record)) {
            memcpy(record + row.offset, old + row.offset, row.width);
        }
    }
}

void set_initial_fields(FieldTable table, NB_UCHAR *record) {
    for (const FieldRow &row : table) {
        std::string why;
        if (row.initial != nullptr) {
            const bool good = set_field(row, row.initial, record, why);
            NB_ASSERT(good);
        } else if (is_name(row.kind)) {
            memset(record + row.offset, blank_of(row.kind), row.width);
        }
    }
}

} // namespace records
