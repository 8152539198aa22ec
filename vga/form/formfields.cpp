#include "formfields.h"
#include "fieldtext.h"
#include "filterrules.h"
#include "messages.h"
#include "ntlname.h"
#include "vgautil.h"
#include "wordmessages.h"
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>

namespace {

using records::FieldKind;

/* A qualified name without its period is a network identifier alone.  Whichever half the text is
 * for, the other one is what the bytes have. */
bool read_half(VGA_FIELD_PART part, const std::string &text, NB_UCHAR *fq_name) {
    NB_CHAR network[VGA_FQW_NET_NAME_SIZE];
    NB_CHAR name[VGA_FQ_NAME_SIZE];
    NB_UCHAR made[NTL_FQ_NAME_WIDTH];
    if (text.size() > NTL_NAME_WIDTH) {
        return false;
    }
    vga_getw_fq_net_name(network, fq_name);
    vga_get_fq_name(name, fq_name);
    strcpy(part == VGA_FIELD_NETWORK ? network : name, text.c_str());
    if (part == VGA_FIELD_NETWORK && text.empty()) {
        name[0] = '\0'; /* the name's own field comes behind this one and says what is missing */
    }
    if (vga_make_fq_name(network, name, 1, made) == 0) {
        return false;
    }
    const NB_USHORT state = ntl_check_fq_name(made);
    if (network[0] != '\0' && state != NTL_FQ_QUALIFIED && state != NTL_FQ_UNQUALIFIED) {
        return false;
    }
    memcpy(fq_name, made, sizeof(made));
    return true;
}

/* Without what only divides it for the eye. */
std::string without(const std::string &text, const NB_CHAR *dividers) {
    std::string plain;
    std::copy_if(text.begin(), text.end(), std::back_inserter(plain),
                 [dividers](NB_CHAR letter) { return strchr(dividers, letter) == nullptr; });
    return plain;
}

std::string with(const std::string &text, size_t every, NB_CHAR divider) {
    std::string divided;
    for (size_t at = 0; at < text.size(); at++) {
        if (at != 0 && at % every == 0) {
            divided += divider;
        }
        divided += text[at];
    }
    return divided;
}

/* The one bits of a mask stand in front. */
bool is_mask(const NB_UCHAR *address) {
    NB_ULONG bits = 0;
    for (size_t at = 0; at < sizeof(bits); at++) {
        bits = bits << 8 | address[offsetof(NB_IP_ADDRESS, octets) + at];
    }
    return (~bits & (~bits + 1)) == 0;
}

/* The bytes of a name that is no text stand behind 0x. */
bool is_hex_name(const std::string &text) {
    return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

bool read_hex_name(const std::string &text, NB_UCHAR *name) {
    NB_UCHAR read[NTL_TP_NAME_WIDTH];
    NB_USHORT error = 0;
    const bool digits =
        std::all_of(text.begin() + 2, text.end(), [](NB_CHAR one) { return isxdigit(one) != 0; });
    if (!digits || vga_parse_hex_tp_name(text.c_str() + 2, read) == 0 ||
        vga_valid_tp_name(read, read[0] < NTL_BLANK, &error) == 0) {
        return false;
    }
    memcpy(name, read, sizeof(read));
    return true;
}

/* No text at all is good for what is not required; for what is no name or text it means 0. */
bool read(const VGA_FIELD &field, std::string text, NB_VOID *data) {
    NB_UCHAR *base = static_cast<NB_UCHAR *>(data) + field.base;
    records::FieldRow row = *field.row;
    if (field.part != VGA_FIELD_WHOLE) {
        return read_half(field.part, text, base + row.offset);
    }
    if (text.empty() && row.kind > FieldKind::Text) {
        memset(base + row.offset, 0, row.width);
        return true;
    }
    if (field.style == VGA_STYLE_NODE_ID || field.style == VGA_STYLE_MAC) {
        text = without(text, " :-");
    }
    if (field.style == VGA_STYLE_NODE_ID && text.size() != sizeof("07100003") - 1) {
        return false;
    }
    if (field.style == VGA_STYLE_TP_NAME && is_hex_name(text)) {
        return read_hex_name(text, base + row.offset);
    }
    if (field.has(VGA_FIELD_INVERTED)) {
        text = text == "yes" ? "no" : "yes";
    }
    std::string why;
    row.low = field.low;
    row.high = static_cast<NB_ULONG>(vga_field_high(field, data));
    return records::set_field(row, text, base, why) &&
           (field.style != VGA_STYLE_MASK || is_mask(base + row.offset));
}

/* What the text would be if its bounds were the schema's: "0" and "00" where 0 means nothing. */
bool is_zero(const VGA_FIELD &field, const std::string &text) {
    return field.is(FieldKind::Number) && !text.empty() &&
           text.find_first_not_of('0') == std::string::npos;
}

VGA_FAULT empty_fault(const VGA_FIELD &field, const std::string &label) {
    return field.empty != 0 ? VGA_FAULT{.message = field.empty}
                            : VGA_FAULT{.message = VGA_MSG_FORM_EMPTY, .arguments = {label}};
}

/* The message for what a kind of field does not take; its arguments are the label and how long it
 * may be. */
NB_USHORT kind_message(const VGA_FIELD &field) {
    if (field.style == VGA_STYLE_MASK) {
        return VGA_MSG_FORM_BAD_MASK;
    }
    switch (field.part != VGA_FIELD_WHOLE ? FieldKind::NameA : field.row->kind) {
    case FieldKind::NameA:
        return VGA_MSG_FORM_BAD_NAME;
    case FieldKind::NameFq:
    case FieldKind::NameAny:
        return VGA_MSG_FORM_BAD_FQ_NAME;
    case FieldKind::NamePartner:
        return VGA_MSG_FORM_BAD_PARTNER;
    case FieldKind::Bytes:
        return VGA_MSG_FORM_BAD_BYTES;
    case FieldKind::Hex:
        return VGA_MSG_FORM_BAD_HEX;
    case FieldKind::Address:
        return VGA_MSG_FORM_BAD_ADDRESS;
    default:
        return VGA_MSG_FORM_BAD_TEXT;
    }
}

/* The bounds go in as texts: as numbers the formatter would take them for signed ones of 32 bits,
 * and the upper bound of an unsigned field may be higher. */
VGA_FAULT bad_fault(const VGA_FIELD &field, const std::string &label, const NB_VOID *data) {
    VGA_BOUND bound = {.high = vga_field_high(field, data)};
    if (field.at_most != nullptr) {
        const VGA_BOUND own = field.at_most(data);
        bound.bad = own.bad;
        bound.told = own.told;
    }
    const NB_USHORT message = bound.bad != 0 ? bound.bad : field.bad;
    const std::string low = std::to_string(field.low);
    const std::string high = std::to_string(bound.told != 0 ? bound.told : bound.high);
    if (message != 0) {
        return {.message = message, .arguments = {low, high}};
    }
    if (field.is(FieldKind::Number)) {
        return {.message = VGA_MSG_FORM_BAD_RANGE, .arguments = {label, low, high}};
    }
    return {.message = kind_message(field),
            .arguments = {label, std::to_string(vga_field_length(field))}};
}

/* As the locale writes it; nothing for a time that never was. */
std::string time_text(NB_ULONG seconds) {
    const auto when = static_cast<time_t>(seconds);
    struct tm parts;
    NB_CHAR text[64] = "";
    if (seconds != 0 && localtime_r(&when, &parts) != nullptr) {
        strftime(text, sizeof(text), "%x %X", &parts);
    }
    return text;
}

std::string text_of(const VGA_FIELD &field, const NB_UCHAR *base) {
    const records::FieldRow &row = *field.row;
    if (field.is_secret() ||
        (field.has(VGA_FIELD_ZERO_EMPTY) && records::is_empty_field(row, base))) {
        return "";
    }
    if (row.unit == records::Unit::Time) {
        return time_text(records::get_number(base + row.offset, row.width));
    }
    const bool may_be_none = row.kind == FieldKind::Bytes || row.kind == FieldKind::Address;
    if (may_be_none &&
        (records::is_empty_field(row, base) || records::check_field(row, base) != 0)) {
        return "";
    }
    if (field.style == VGA_STYLE_TP_NAME && vga_hex_tp_name(base + row.offset) != 0) {
        NB_CHAR name[VGA_TP_NAME_MESSAGE_SIZE];
        vga_format_tp_name(name, base + row.offset, 1, 0);
        return std::string("0x") + name;
    }
    std::string text = records::format_field(row, base);
    if (field.has(VGA_FIELD_INVERTED)) {
        return text == "yes" ? "no" : "yes";
    }
    if (field.style == VGA_STYLE_MAC) {
        return with(text, 2, ':');
    }
    if (row.kind == FieldKind::Hex) {
        text.insert(0, 8 - std::min<size_t>(text.size(), 8), '0');
        std::transform(text.begin(), text.end(), text.begin(), toupper);
    }
    return field.style == VGA_STYLE_NODE_ID ? text.insert(3, " ") : text;
}

} // namespace

int64_t vga_field_high(const VGA_FIELD &field, const NB_VOID *data) {
    int64_t high = field.high;
    if (field.at_most != nullptr) {
        high = std::min(high, field.at_most(data).high);
    }
    return std::max<int64_t>(high, field.low);
}

NB_USHORT vga_field_length(const VGA_FIELD &field) {
    if (field.part != VGA_FIELD_WHOLE) {
        return NTL_NAME_WIDTH;
    }
    const NB_USHORT width = field.row->width;
    switch (field.row->kind) {
    case FieldKind::Text:
        return static_cast<NB_USHORT>(width - 1);
    case FieldKind::Bytes:
        return static_cast<NB_USHORT>((field.style == VGA_STYLE_MAC ? 3 * width - 1 : 2 * width));
    case FieldKind::Hex:
        return sizeof("FFF FFFFF") - (field.style == VGA_STYLE_NODE_ID ? 1 : 2);
    case FieldKind::Address:
        return sizeof("255.255.255.255") - 1;
    case FieldKind::Number:
        return sizeof("4294967295") - 1;
    default:
        return width;
    }
}

NB_VOID vga_field_to_text(const VGA_FIELD &field, const NB_VOID *data, NB_CHAR *text) {
    const NB_UCHAR *base = static_cast<const NB_UCHAR *>(data) + field.base;
    if (field.part == VGA_FIELD_NETWORK) {
        vga_getw_fq_net_name(text, base + field.row->offset);
    } else if (field.part == VGA_FIELD_NAME) {
        vga_get_fq_name(text, base + field.row->offset);
    } else {
        snprintf(text, VGA_FIELD_TEXT_SIZE, "%s", text_of(field, base).c_str());
    }
}

VGA_FAULT vga_field_from_text(const VGA_FIELD &field, const std::string &label, const NB_CHAR *text,
                              NB_USHORT required, NB_VOID *data) {
    std::string entered = text;
    entered.erase(entered.find_last_not_of(' ') + 1);
    entered.erase(0, entered.find_first_not_of(' '));
    required = required != 0 || field.has(VGA_FIELD_REQUIRED) ||
               (field.empty != 0 && field.is_required == nullptr);
    /* Nothing would mean 0, which it must not be. */
    required |= field.is(FieldKind::Number) && field.low > 0 && !field.has(VGA_FIELD_ZERO_EMPTY);
    const bool nothing =
        entered.empty() || (field.has(VGA_FIELD_ZERO_EMPTY) && is_zero(field, entered) && required);
    if (nothing && required != 0) {
        return empty_fault(field, label);
    }
    if (entered.empty() && field.is_secret()) {
        return {};
    }
    NB_UCHAR *place = static_cast<NB_UCHAR *>(data) + field.offset();
    const std::vector<NB_UCHAR> before(place, place + field.row->width);
    if (read(field, entered, data)) {
        return {};
    }
    std::copy(before.begin(), before.end(), place);
    return bad_fault(field, label, data);
}

std::string vga_shown_word(const records::FieldRow &row, const std::string &text) {
    if (row.kind == FieldKind::Flag) {
        return vga_message(text == "yes" ? records::MSG_YES : records::MSG_NO);
    }
    for (const records::FieldWord &word : row.words) {
        if (word.message != 0 && text == word.text) {
            return vga_message(word.message);
        }
    }
    return text;
}

std::string vga_field_range(const VGA_FIELD &field, const NB_VOID *data, const std::string &unit) {
    if (!field.is(FieldKind::Number) || field.row->unit == records::Unit::Time) {
        return "";
    }
    NB_CHAR text[200];
    const std::string low = std::to_string(field.low);
    const std::string high = std::to_string(vga_field_high(field, data));
    if (unit.empty()) {
        vga_print_msg(text, sizeof(text), VGA_MSG_FORM_HINT_RANGE, "s s", low.c_str(),
                      high.c_str());
    } else {
        vga_print_msg(text, sizeof(text), VGA_MSG_FORM_HINT_RANGE_UNIT, "s s s", low.c_str(),
                      high.c_str(), unit.c_str());
    }
    return text;
}
