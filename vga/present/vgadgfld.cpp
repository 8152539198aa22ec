#include "vgadgfld.h"
#include "nbbase.h"
#include "nofrec.h"
#include "ntlname.h"
#include "vgacheck.h"
#include "vgautil.h"
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace {

constexpr NB_UCHAR local_blank = ' ';

/* A field's bytes, copied out of the data. */
using BYTES = std::array<NB_UCHAR, VGA_FIELD_TEXT_SIZE>;

NB_USHORT width_of(const VGA_FIELD &field) {
    return std::min<NB_USHORT>(field.width, VGA_FIELD_TEXT_SIZE - 1);
}

const NB_UCHAR *place_in(const VGA_FIELD &field, const NB_VOID *data) {
    return static_cast<const NB_UCHAR *>(data) + field.offset;
}

/* Texts. */

NB_VOID cut_blanks(NB_CHAR *text) {
    vga_strip_spaces(text);
}

/* Characters that stand in the field, without padding; `bytes` has a NUL behind them. */
NB_VOID plain_text(const BYTES &bytes, NB_CHAR *text) {
    strcpy(text, reinterpret_cast<const NB_CHAR *>(bytes.data()));
    cut_blanks(text);
}

NB_USHORT all_zero(const BYTES &bytes, NB_USHORT width) {
    return std::all_of(bytes.begin(), bytes.begin() + width,
                       [](NB_UCHAR byte) { return byte == 0; });
}

NB_VOID hex_text(const BYTES &bytes, NB_USHORT width, NB_CHAR *text) {
    NB_USHORT count = all_zero(bytes, width) ? NB_USHORT(0) : width;
    text[0] = '\0';
    for (NB_USHORT at = 0; at < count && 2 * at + 3 <= VGA_FIELD_TEXT_SIZE; at++) {
        snprintf(text + ptrdiff_t{2} * at, 3, "%02X", bytes[at]);
    }
}

NB_VOID ip_text(const BYTES &bytes, NB_USHORT width, NB_CHAR *text) {
    NB_IP_ADDRESS address;
    memcpy(&address, bytes.data(), sizeof(address));
    text[0] = '\0';
    if (!all_zero(bytes, width) && address.family == NAP_IPV4_ADDRESS) {
        vga_format_ip_addr(text, &address);
    }
}

/* Reading.  Each sets `width` bytes and returns 0 when the text does not do. */

NB_USHORT read_number(const VGA_FIELD &field, const NB_CHAR *text, const NB_VOID *data,
                      BYTES &bytes) {
    int64_t value = 0;
    VGA_NUMBER_STATE state = vga_read_number(text, field.low, vga_field_high(field, data), &value);
    if (state == VGA_NUMBER_OUT_OF_RANGE) {
        return 0;
    }
    VGA_FIELD at_start = field;
    at_start.offset = 0;
    vga_set_field_value(at_start, bytes.data(), value);
    return 1;
}

NB_USHORT read_text(const NB_CHAR *text, NB_USHORT room, NB_UCHAR pad, NB_USHORT width,
                    BYTES &bytes) {
    size_t length = strlen(text);
    if (length > room) {
        return 0;
    }
    memset(bytes.data(), pad, width);
    memcpy(bytes.data(), text, length);
    return 1;
}

NB_USHORT read_ebcdic(const NB_CHAR *text, NB_USHORT width, BYTES &bytes) {
    if (read_text(text, width, local_blank, width, bytes) == 0) {
        return 0;
    }
    nba_local_to_ebcdic(bytes.data(), width);
    return ntl_check_name(NB_EBCDIC_TYPE_A, bytes.data(), width);
}

/* Without a period it is a network identifier alone, as in a wildcard; no text makes blanks. */
NB_USHORT read_fq_name(const NB_CHAR *text, BYTES &bytes) {
    if (read_text(text, NTL_FQ_NAME_WIDTH, local_blank, NTL_FQ_NAME_WIDTH, bytes) == 0) {
        return 0;
    }
    nba_local_to_ebcdic(bytes.data(), NTL_FQ_NAME_WIDTH);
    NB_USHORT state = ntl_check_fq_name(bytes.data());
    return text[0] == '\0' || state == NTL_FQ_QUALIFIED || state == NTL_FQ_UNQUALIFIED;
}

/* One half; the other one is what the bytes have. */
NB_USHORT read_fq_half(VGA_FIELD_KIND kind, const NB_CHAR *text, BYTES &bytes) {
    NB_CHAR network[VGA_FQW_NET_NAME_SIZE];
    NB_CHAR name[VGA_FQ_NAME_SIZE];
    if (strlen(text) > NTL_NAME_WIDTH) {
        return 0;
    }
    vga_getw_fq_net_name(network, bytes.data());
    vga_get_fq_name(name, bytes.data());
    strcpy(kind == VGA_FIELD_FQ_NETWORK ? network : name, text);
    if (kind == VGA_FIELD_FQ_NETWORK && text[0] == '\0') {
        name[0] = '\0'; /* the name's own field comes behind this one and says what is missing */
    }
    if (vga_make_fq_name(network, name, 1, bytes.data()) == 0) {
        return 0;
    }
    NB_USHORT state = ntl_check_fq_name(bytes.data());
    return network[0] == '\0' || state == NTL_FQ_QUALIFIED || state == NTL_FQ_UNQUALIFIED;
}

NB_USHORT read_hex(const NB_CHAR *text, NB_USHORT width, BYTES &bytes) {
    memset(bytes.data(), 0, width);
    NB_INT count = vga_read_hex(text, bytes.data(), width);
    return count == 0 || count == width;
}

NB_USHORT read_ip(const NB_CHAR *text, NB_USHORT width, BYTES &bytes) {
    NB_IP_ADDRESS address{};
    if (text[0] != '\0' && vga_parse_ip_addr(text, &address) == 0) {
        return 0;
    }
    memset(bytes.data(), 0, width);
    memcpy(bytes.data(), &address, sizeof(address));
    return 1;
}

NB_USHORT read(const VGA_FIELD &field, const NB_CHAR *text, const NB_VOID *data, BYTES &bytes) {
    NB_USHORT width = width_of(field);
    switch (field.kind) {
    case VGA_FIELD_TEXT:
        return read_text(text, width - 1, 0, width, bytes);
    case VGA_FIELD_LOCAL:
        return read_text(text, width, local_blank, width, bytes);
    case VGA_FIELD_EBCDIC:
        return read_ebcdic(text, width, bytes);
    case VGA_FIELD_FQ_NAME:
        return read_fq_name(text, bytes);
    case VGA_FIELD_FQ_NETWORK:
    case VGA_FIELD_FQ_LOCAL:
        return read_fq_half(field.kind, text, bytes);
    case VGA_FIELD_HEX:
        return read_hex(text, width, bytes);
    case VGA_FIELD_IP:
        return read_ip(text, width, bytes);
    default:
        return read_number(field, text, data, bytes);
    }
}

} // namespace

int64_t vga_field_value(const VGA_FIELD &field, const NB_VOID *data) {
    NB_UCHAR byte;
    NB_USHORT word;
    NB_ULONG longer;
    const NB_UCHAR *place = place_in(field, data);
    NB_USHORT has_sign = field.kind == VGA_FIELD_SIGNED;
    switch (field.width) {
    case sizeof(byte):
        memcpy(&byte, place, sizeof(byte));
        return has_sign ? static_cast<int8_t>(byte) : byte;
    case sizeof(word):
        memcpy(&word, place, sizeof(word));
        return has_sign ? static_cast<int16_t>(word) : word;
    case sizeof(longer):
        memcpy(&longer, place, sizeof(longer));
        return has_sign ? static_cast<int64_t>(static_cast<int32_t>(longer)) : longer;
    default:
        v0_assert_fatal(__FILE__, __LINE__, "field.width is 1, 2 or 4");
        return 0;
    }
}

NB_VOID vga_set_field_value(const VGA_FIELD &field, NB_VOID *data, int64_t value) {
    NB_UCHAR *place = static_cast<NB_UCHAR *>(data) + field.offset;
    auto byte = static_cast<NB_UCHAR>(value);
    auto word = static_cast<NB_USHORT>(value);
    auto longer = static_cast<NB_ULONG>(value);
    switch (field.width) {
    case sizeof(byte):
        memcpy(place, &byte, sizeof(byte));
        return;
    case sizeof(word):
        memcpy(place, &word, sizeof(word));
        return;
    case sizeof(longer):
        memcpy(place, &longer, sizeof(longer));
        return;
    default:
        v0_assert_fatal(__FILE__, __LINE__, "field.width is 1, 2 or 4");
    }
}

int64_t vga_field_high(const VGA_FIELD &field, const NB_VOID *data) {
    int64_t high = field.high;
    if (field.at_most != nullptr) {
        high = std::min(high, field.at_most(data));
    }
    return std::max(high, field.low);
}

NB_USHORT vga_field_length(const VGA_FIELD &field) {
    switch (field.kind) {
    case VGA_FIELD_TEXT:
        return static_cast<NB_USHORT>(width_of(field) - 1);
    case VGA_FIELD_FQ_NETWORK:
    case VGA_FIELD_FQ_LOCAL:
        return NTL_NAME_WIDTH;
    case VGA_FIELD_HEX:
        return static_cast<NB_USHORT>(2 * width_of(field));
    case VGA_FIELD_IP:
        return sizeof("255.255.255.255") - 1;
    case VGA_FIELD_NUMBER:
    case VGA_FIELD_SIGNED:
        return sizeof("-2147483648") - 1;
    default:
        return width_of(field);
    }
}

NB_VOID vga_field_to_text(const VGA_FIELD &field, const NB_VOID *data, NB_CHAR *text) {
    NB_USHORT width = width_of(field);
    BYTES bytes{};
    memcpy(bytes.data(), place_in(field, data), width);
    switch (field.kind) {
    case VGA_FIELD_TEXT:
    case VGA_FIELD_LOCAL:
        plain_text(bytes, text);
        return;
    case VGA_FIELD_EBCDIC:
    case VGA_FIELD_FQ_NAME:
        nba_ebcdic_to_local(bytes.data(), width);
        plain_text(bytes, text);
        return;
    case VGA_FIELD_FQ_NETWORK:
        vga_getw_fq_net_name(text, bytes.data());
        return;
    case VGA_FIELD_FQ_LOCAL:
        vga_get_fq_name(text, bytes.data());
        return;
    case VGA_FIELD_HEX:
        hex_text(bytes, width, text);
        return;
    case VGA_FIELD_IP:
        ip_text(bytes, width, text);
        return;
    default:
        snprintf(text, VGA_FIELD_TEXT_SIZE, "%lld",
                 static_cast<long long>(vga_field_value(field, data)));
    }
}

NB_USHORT vga_field_from_text(const VGA_FIELD &field, const NB_CHAR *text, const NB_VOID *record,
                              NB_VOID *data) {
    NB_CHAR entered[VGA_FIELD_TEXT_SIZE];
    snprintf(entered, sizeof(entered), "%s", text);
    cut_blanks(entered);
    if (entered[0] == '\0' && field.empty != 0) {
        return field.empty;
    }
    NB_UCHAR *place = static_cast<NB_UCHAR *>(data) + field.offset;
    NB_USHORT width = width_of(field);
    BYTES before{};
    memcpy(before.data(), place, width);
    BYTES bytes = before;
    if (read(field, entered, data, bytes) == 0) {
        return field.bad;
    }
    memcpy(place, bytes.data(), width);
    NB_USHORT fault = field.check != nullptr ? field.check(record, data) : NB_USHORT(0);
    if (fault != 0) {
        memcpy(place, before.data(), width);
    }
    return fault;
}
