#include "formfields.h"
#include "fieldtext.h"
#include "filterrules.h"
#include "ntlname.h"
#include "vgautil.h"
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

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

/* No text at all is good for what is not required; for what is no name or text it means 0. */
bool read(const VGA_FIELD &field, const std::string &text, NB_VOID *data) {
    NB_UCHAR *base = static_cast<NB_UCHAR *>(data) + field.base;
    records::FieldRow row = *field.row;
    if (field.part != VGA_FIELD_WHOLE) {
        return read_half(field.part, text, base + row.offset);
    }
    if (text.empty() && row.kind > FieldKind::Text) {
        memset(base + row.offset, 0, row.width);
        return true;
    }
    std::string why;
    row.high = static_cast<NB_ULONG>(vga_field_high(field, data));
    return records::set_field(row, text, base, why);
}

} // namespace

int64_t vga_field_high(const VGA_FIELD &field, const NB_VOID *data) {
    int64_t high = field.row->high;
    if (field.at_most != nullptr) {
        high = std::min(high, field.at_most(data));
    }
    return std::max<int64_t>(high, field.row->low);
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
        return static_cast<NB_USHORT>(2 * width);
    case FieldKind::Hex:
        return sizeof("FFFFFFFF") - 1;
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
    const records::FieldRow &row = *field.row;
    const bool may_be_none = row.kind == FieldKind::Bytes || row.kind == FieldKind::Address;
    text[0] = '\0';
    if (field.part == VGA_FIELD_NETWORK) {
        vga_getw_fq_net_name(text, base + row.offset);
    } else if (field.part == VGA_FIELD_NAME) {
        vga_get_fq_name(text, base + row.offset);
    } else if (!may_be_none ||
               (!records::is_empty_field(row, base) && records::check_field(row, base) == 0)) {
        snprintf(text, VGA_FIELD_TEXT_SIZE, "%s", records::format_field(row, base).c_str());
    }
}

NB_USHORT vga_field_from_text(const VGA_FIELD &field, const NB_CHAR *text, const NB_VOID *record,
                              NB_VOID *data) {
    std::string entered = text;
    entered.erase(entered.find_last_not_of(' ') + 1);
    entered.erase(0, entered.find_first_not_of(' '));
    if (entered.empty() && field.empty != 0) {
        return field.empty;
    }
    NB_UCHAR *place = static_cast<NB_UCHAR *>(data) + field.offset();
    const std::vector<NB_UCHAR> before(place, place + field.row->width);
    if (!read(field, entered, data)) {
        return field.bad;
    }
    const NB_USHORT fault = field.check != nullptr ? field.check(record, data) : NB_USHORT{0};
    if (fault != 0) {
        std::copy(before.begin(), before.end(), place);
    }
    return fault;
}
