#include "filterrules.h"
#include "fieldtext.h"
#include "nbbase.h"
#include "ntlname.h"
#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <string_view>

namespace {

/* Characters of the locale. */

struct CHARACTER {
    size_t length; /* in bytes; bytes that are no character count one each */
    NB_UCHAR byte; /* the first */
    wint_t wide;   /* of a character of several bytes, else 0 */
    bool single() const { return length == 1; }
};

/* REQUIRES: text left.  A NUL counts as a character, like any other byte. */
CHARACTER next_character(std::string_view text) {
    mbstate_t state{};
    wchar_t wide = 0;
    const size_t length = mbrtowc(&wide, text.data(), text.size(), &state);
    CHARACTER character = {1, static_cast<NB_UCHAR>(text[0]), 0};
    if (length > 1 && length <= text.size()) {
        character.length = length;
        character.wide = static_cast<wint_t>(wide);
    }
    return character;
}

/* Calls `visit` with each character and its byte; false as soon as that says so. */
template <typename VISIT> bool all_characters(std::string_view text, VISIT visit) {
    for (size_t at = 0; at < text.size();) {
        const CHARACTER character = next_character(text.substr(at));
        if (!visit(character, at)) {
            return false;
        }
        at += character.length;
    }
    return true;
}

size_t byte_offset(std::string_view text, NB_ULONG position) {
    size_t offset = text.size();
    all_characters(text, [&](const CHARACTER &, size_t at) {
        if (position-- == 0) {
            offset = at;
            return false;
        }
        return true;
    });
    return offset;
}

NB_VOID turn_to_upper_case(const VGA_CHANGE &change) {
    all_characters({change.text, change.length}, [&](const CHARACTER &character, size_t at) {
        if (character.single()) {
            change.text[at] = static_cast<NB_CHAR>(toupper(character.byte));
        }
        return true;
    });
}

/* The three parts that the field consists of when the change has happened. */
struct RESULT {
    explicit RESULT(const VGA_CHANGE &change) {
        const std::string_view field = change.field != nullptr ? change.field : "";
        before = field.substr(0, byte_offset(field, change.start));
        if (change.length > 0) {
            inserted = {change.text, change.length};
        }
        after = field.substr(byte_offset(field, std::max(change.start, change.end)));
    }
    std::string_view before, inserted, after;
};

/* Filters of single characters. */

typedef bool (*ACCEPTS)(const CHARACTER &character);
typedef bool (*RULE)(const RESULT &result);
enum CASE { AS_TYPED, UPPER_CASE, UPPER_CASE_TO_CHECK };

/* Which class a character of one byte must belong to, or which other characters it may be. */
template <int (*CLASS)(int)> bool one_of(const CHARACTER &character, std::string_view others) {
    return character.single() &&
           (CLASS(character.byte) != 0 ||
            others.find(static_cast<NB_CHAR>(character.byte)) != std::string_view::npos);
}

bool accepts_file_name(const CHARACTER &character, std::string_view forbidden) {
    return !character.single() ||
           (character.byte >= ' ' &&
            forbidden.find(static_cast<NB_CHAR>(character.byte)) == std::string_view::npos);
}

/* A sign in front of a sign, or digits in front of one, would make no number. */
bool sign_is_first(const RESULT &result) {
    const size_t kept = result.before.size();
    const size_t sign = result.inserted.rfind('-');
    if (sign != std::string_view::npos && (kept > 0 || sign > 0)) {
        return false;
    }
    return kept > 0 || result.inserted.empty() || result.after.find('-') == std::string_view::npos;
}

struct CHARACTER_FILTER {
    VGA_FILTER filter;
    ACCEPTS accepts;
    CASE letters = AS_TYPED;
    RULE rule = nullptr;
};

constexpr CHARACTER_FILTER character_filters[] = {
    {VGA_FILTER_TP_NAME,
     [](const CHARACTER &c) { return c.single() ? isspace(c.byte) == 0 : iswspace(c.wide) == 0; }},
    {VGA_FILTER_IP_NAME, [](const CHARACTER &c) { return one_of<isalnum>(c, "-_.:"); }},
    {VGA_FILTER_IP_ADDR, [](const CHARACTER &c) { return one_of<isdigit>(c, "."); }},
    {VGA_FILTER_ALPHANUM, [](const CHARACTER &c) { return one_of<isalnum>(c, ""); }},
    {VGA_FILTER_NUM, [](const CHARACTER &c) { return one_of<isdigit>(c, ""); }},
    {VGA_FILTER_SIGNED_NUM, [](const CHARACTER &c) { return one_of<isdigit>(c, "-"); }, AS_TYPED,
     sign_is_first},
    {VGA_FILTER_CAPS_ALPHANUM, [](const CHARACTER &c) { return one_of<isalnum>(c, ""); },
     UPPER_CASE},
    {VGA_FILTER_HEX, [](const CHARACTER &c) { return one_of<isxdigit>(c, ""); }, UPPER_CASE},
    {VGA_FILTER_ALL_CAPS, [](const CHARACTER &) { return true; }, UPPER_CASE},
    {VGA_FILTER_HEX_PWD, [](const CHARACTER &c) { return one_of<isxdigit>(c, ""); }, UPPER_CASE},
    {VGA_FILTER_FILENAME, [](const CHARACTER &c) { return accepts_file_name(c, "\"\\/"); }},
    {VGA_FILTER_PATHNAME, [](const CHARACTER &c) { return accepts_file_name(c, "\"\\"); }},
};

constexpr size_t character_filter_count = VGA_FILTER_EBCDIC;

bool characters_pass(const CHARACTER_FILTER &row, const VGA_CHANGE &change) {
    const RESULT result(change);
    return all_characters(result.inserted,
                          [&](const CHARACTER &c, size_t) { return row.accepts(c); }) &&
           (row.rule == nullptr || row.rule(result));
}

/* Filters of names. */

constexpr NB_UCHAR ebcdic_at = 0x7C;

struct NAME_FILTER {
    VGA_FILTER filter;
    NB_USHORT type;
    CASE letters;
    NB_ULONG max_length = NTL_NAME_WIDTH; /* of what is inserted */
    bool blanks_end_it = false;
    bool periods_inside = false;           /* wildcards of a template */
    std::string_view shown_elsewhere = {}; /* not typed, but may stand in a name that is shown */
};

constexpr NAME_FILTER name_filters[] = {
    {VGA_FILTER_EBCDIC, NB_EBCDIC_TYPE_A, UPPER_CASE},
    {VGA_FILTER_EBCDIC_LOWER, NB_EBCDIC_TYPE_A, UPPER_CASE_TO_CHECK},
    {VGA_FILTER_EBCDIC_AE, NB_EBCDIC_TYPE_AE, AS_TYPED},
    {VGA_FILTER_EBCDIC_AE_PWD, NB_EBCDIC_TYPE_AE, AS_TYPED, 10},
    {VGA_FILTER_MODE_NAME, NB_EBCDIC_TYPE_A, UPPER_CASE, NTL_NAME_WIDTH, true, false, "[|"},
    {VGA_FILTER_LU_NAME_TEMPLATE, NB_EBCDIC_TYPE_A, UPPER_CASE, NTL_NAME_WIDTH, false, true},
};

/* Judges one character as the first of a name, or behind a letter as one that follows. */
bool name_character(const NAME_FILTER &row, NB_CHAR local, bool first) {
    NB_UCHAR work[] = {'A', static_cast<NB_UCHAR>(local)};
    if (row.letters != AS_TYPED) {
        work[1] = static_cast<NB_UCHAR>(toupper(work[1]));
    }
    nba_local_to_ebcdic(work, sizeof(work));
    if (row.periods_inside && work[1] == NTL_PERIOD) {
        if (first) {
            return false;
        }
        work[1] = ebcdic_at;
    }
    return nba_check_ebcdic(row.type, first ? work + 1 : work, first ? 1 : 2) != 0;
}

std::string_view without_end_blanks(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

/* `existing` text came from the field itself. */
bool is_name(const NAME_FILTER &row, std::string_view text, bool at_start, bool existing) {
    if (row.blanks_end_it) {
        text = without_end_blanks(text);
    }
    for (size_t at = 0; at < text.size(); at++) {
        const bool first = at_start && at == 0;
        const bool known =
            existing && !first && row.shown_elsewhere.find(text[at]) != std::string_view::npos;
        if (!known && !name_character(row, text[at], first)) {
            return false;
        }
    }
    return true;
}

/* Only blanks may follow a blank, in the whole of the field that comes out. */
bool blanks_only_end(const RESULT &result) {
    bool blank = false;
    for (std::string_view part : {result.before, result.inserted, result.after}) {
        for (NB_CHAR character : part) {
            if (blank && character != ' ') {
                return false;
            }
            blank = blank || character == ' ';
        }
    }
    return true;
}

bool name_passes(const NAME_FILTER &row, const VGA_CHANGE &change) {
    const RESULT result(change);
    const bool at_start = change.start == 0;
    if (result.inserted.empty()) {
        return !at_start || is_name(row, result.after, true, true);
    }
    return result.inserted.size() <= row.max_length &&
           is_name(row, result.inserted, at_start, false) &&
           (!row.blanks_end_it || blanks_only_end(result));
}

/* The tables are looked up by the filter itself. */
template <typename ROW, size_t SIZE>
constexpr bool in_order(const ROW (&rows)[SIZE], size_t first) {
    for (size_t at = 0; at < SIZE; at++) {
        if (rows[at].filter != first + at) {
            return false;
        }
    }
    return true;
}
static_assert(in_order(character_filters, 0));
static_assert(in_order(name_filters, character_filter_count));
static_assert(std::size(character_filters) + std::size(name_filters) == VGA_FILTER_COUNT);

bool passes(VGA_FILTER filter, const VGA_CHANGE &change, CASE *letters) {
    if (filter < character_filter_count) {
        const CHARACTER_FILTER &row = character_filters[filter];
        *letters = row.letters;
        return characters_pass(row, change);
    }
    const NAME_FILTER &row = name_filters[filter - character_filter_count];
    *letters = row.letters;
    return name_passes(row, change);
}

/* Numbers. */

std::string_view without_blanks(std::string_view text) {
    text = without_end_blanks(text);
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

/* All of the text must be digits. */
bool read_hex_number(std::string_view text, NB_ULONG *value) {
    const NB_CHAR *end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, *value, 16);
    return result.ec == std::errc() && result.ptr == end && !text.empty();
}

constexpr size_t block_digits = VGA_BLOCK_NUMBER_SIZE - 1;
constexpr size_t puid_digits = VGA_PU_ID_SIZE - 1;

NB_VOID to_ebcdic(NB_UCHAR *bytes, std::string_view text) {
    records::put_ebcdic(bytes, text.size(), text);
}

} // namespace

NB_USHORT vga_check_change(VGA_FILTER filter, const VGA_CHANGE *change) {
    if (!NB_HOLDS("filterrules", filter < VGA_FILTER_COUNT)) {
        return 1;
    }
    CASE letters = AS_TYPED;
    if (!passes(filter, *change, &letters)) {
        return 0;
    }
    if (letters == UPPER_CASE && change->length > 0) {
        turn_to_upper_case(*change);
    }
    return 1;
}

NB_USHORT vga_check_filename_chars(const NB_CHAR *text, NB_ULONG length, NB_USHORT slashes) {
    const VGA_FILTER filter = slashes != 0 ? VGA_FILTER_PATHNAME : VGA_FILTER_FILENAME;
    return all_characters({text, length}, [&](const CHARACTER &character, size_t) {
        return character_filters[filter].accepts(character);
    });
}

VGA_NUMBER_STATE vga_read_number(const NB_CHAR *text, int64_t min, int64_t max, int64_t *value) {
    const std::string_view number = without_blanks(text);
    if (number.empty()) {
        return VGA_NUMBER_EMPTY;
    }
    return records::read_number(number, min, max, *value) ? VGA_NUMBER_GOOD
                                                          : VGA_NUMBER_OUT_OF_RANGE;
}

VGA_NODE_ID_STATE vga_read_node_id(const NB_CHAR *block, const NB_CHAR *puid, NB_UCHAR *node_id) {
    const std::string_view block_text = block;
    const std::string_view puid_text = puid;
    if (block_text.empty() && puid_text.empty()) {
        return VGA_NODE_ID_EMPTY;
    }
    NB_ULONG block_number = 0;
    NB_ULONG pu_id = 0;
    if (block_text.size() != block_digits || !read_hex_number(block_text, &block_number)) {
        return VGA_NODE_ID_BAD_BLOCK;
    }
    if (puid_text.size() != puid_digits || !read_hex_number(puid_text, &pu_id)) {
        return VGA_NODE_ID_BAD_PUID;
    }
    const NB_ULONG value = block_number << 20 | pu_id;
    for (NB_USHORT at = 0; at < sizeof(value); at++) {
        node_id[at] = static_cast<NB_UCHAR>(value >> (24 - 8 * at));
    }
    return VGA_NODE_ID_GOOD;
}

NB_USHORT vga_make_fq_name(const NB_CHAR *network_id, const NB_CHAR *name, NB_USHORT lenient,
                           NB_UCHAR *fq_name) {
    std::fill_n(fq_name, NTL_FQ_NAME_WIDTH, NB_UCHAR{NTL_BLANK});
    const std::string_view network = std::string_view(network_id).substr(0, NTL_NAME_WIDTH);
    const std::string_view local = std::string_view(name).substr(0, NTL_NAME_WIDTH);
    if (network.empty()) {
        return lenient != 0 && local.empty();
    }
    if (local.empty()) {
        if (lenient == 0) {
            return 0;
        }
        to_ebcdic(fq_name, network);
        return 1;
    }
    to_ebcdic(fq_name, network);
    fq_name[network.size()] = NTL_PERIOD;
    to_ebcdic(fq_name + network.size() + 1, local);
    return 1;
}
