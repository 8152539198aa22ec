#include "vgautil.h"
#include "messages.h"
#include "nbbase.h"
#include "ntlname.h"
#include "vtmutil.h"
#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>

#define NB_STRLEN(text) strlen(text)

namespace {

constexpr size_t LONGEST_HOST_NAME = 255;
constexpr size_t LONGEST_HOST_PART = 63;
constexpr size_t LONGEST_OCTET = 3;
constexpr NB_UCHAR EBCDIC_A = 0xC1;
constexpr NB_UCHAR EBCDIC_SHIFT_OUT = 0x0E;
constexpr NB_UCHAR EBCDIC_SHIFT_IN = 0x0F;
constexpr size_t LONGEST_SERVICE_NAME = 4;

/* A number as C writes it, with nothing in front of it or behind it. */
bool parse_octet(std::string_view text, NB_UCHAR &octet) {
    if (text.empty() || text.size() > LONGEST_OCTET) {
        return false;
    }
    int base = 10;
    if (text.size() > 1 && text[0] == '0') {
        const bool hexadecimal = text[1] == 'x' || text[1] == 'X';
        base = hexadecimal ? 16 : 8;
        text.remove_prefix(hexadecimal ? 2 : 1);
    }
    NB_UCHAR value = 0;
    const NB_CHAR *const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, base);
    if (result.ec != std::errc() || result.ptr != end) {
        return false;
    }
    octet = value;
    return true;
}

/* The position of the period in a name of 17 bytes, or its width. */
NB_USHORT find_period(const NB_UCHAR *fq) {
    return static_cast<NB_USHORT>(std::find(fq, fq + NTL_FQ_NAME_WIDTH, NTL_PERIOD) - fq);
}

NB_VOID copy_as_text(NB_CHAR *out, const NB_UCHAR *name, size_t length) {
    memcpy(out, name, length);
    out[length] = '\0';
    nba_ebcdic_to_local(reinterpret_cast<NB_UCHAR *>(out), static_cast<NB_USHORT>(length));
}

NB_UCHAR hex_pair_value(const NB_CHAR *pair) {
    NB_UCHAR value = 0;
    std::from_chars(pair, pair + 2, value, 16);
    return value;
}

NB_VOID format_hex(NB_CHAR *out, const NB_UCHAR *tp_name) {
    size_t length = NTL_TP_NAME_WIDTH;
    while (length > 0 && tp_name[length - 1] == NTL_BLANK) {
        length--;
    }
    out[0] = '\0';
    for (size_t at = 0; at < length; at++) {
        snprintf(out + 2 * at, 3, "%2.2X", tp_name[at]);
    }
}

bool is_service_name(const NB_UCHAR *tp_name, size_t length) {
    const NB_UCHAR first = tp_name[0];
    if (length == 0 || length > LONGEST_SERVICE_NAME || first >= NTL_BLANK ||
        first == EBCDIC_SHIFT_OUT || first == EBCDIC_SHIFT_IN) {
        return false;
    }
    NB_UCHAR name[LONGEST_SERVICE_NAME];
    memcpy(name, tp_name, length);
    name[0] = EBCDIC_A;
    return nba_check_ebcdic(NB_EBCDIC_TYPE_A, name, static_cast<NB_USHORT>(length)) != 0;
}

} // namespace

NB_VOID vga_strip_spaces(NB_CHAR *text) {
    if (!NB_HOLDS("vgautil", text != NULL)) {
        return;
    }
    size_t length = strlen(text);
    while (length > 0 && text[length - 1] == ' ') {
        length--;
    }
    text[length] = '\0';
}

NB_VOID vga_pad_buffer(NB_CHAR *buffer, NB_USHORT length, NB_CHAR pad) {
    if (!NB_HOLDS("vgautil", buffer != NULL)) {
        return;
    }
    std::fill(std::find(buffer, buffer + length, '\0'), buffer + length, pad);
}

NB_USHORT vga_valid_ip_name(const NB_CHAR *text) {
    if (!NB_HOLDS("vgautil", text != NULL)) {
        return 0;
    }
    std::string_view rest(text, strnlen(text, LONGEST_HOST_NAME + 1));
    if (rest.size() > LONGEST_HOST_NAME) {
        return 0;
    }
    for (;;) {
        const size_t period = rest.find('.');
        const size_t length = std::min(period, rest.size());
        if (length == 0 || length > LONGEST_HOST_PART) {
            return 0;
        }
        if (period == rest.npos) {
            return 1;
        }
        rest.remove_prefix(period + 1);
    }
}

NB_USHORT vga_parse_ip_addr(const NB_CHAR *text, NB_IP_ADDRESS *address) {
    if (!NB_HOLDS("vgautil", address != NULL)) {
        return 0;
    }
    *address = {};
    if (!NB_HOLDS("vgautil", text != NULL)) {
        return 0;
    }
    std::string_view rest(text);
    for (size_t part = 0; part < std::size(address->octets); part++) {
        const size_t period = rest.find('.');
        if (!parse_octet(rest.substr(0, period), address->octets[part])) {
            return 0;
        }
        if (period == rest.npos) {
            return part + 1 == std::size(address->octets);
        }
        rest.remove_prefix(period + 1);
    }
    return 0;
}

NB_VOID vga_get_default_ip_addr_mask(const NB_IP_ADDRESS *ip_addr, NB_IP_ADDRESS *mask) {
    if (!NB_HOLDS("vgautil", mask != NULL)) {
        return;
    }
    *mask = {};
    if (!NB_HOLDS("vgautil", ip_addr != NULL) ||
        !NB_HOLDS("vgautil", ip_addr->family == NAP_IPV4_ADDRESS)) {
        return;
    }
    mask->family = NAP_IPV4_ADDRESS;
    vtm_make_default_mask(ip_addr, mask->octets);
}

NB_VOID vga_format_ip_addr(NB_CHAR *buffer, const NB_IP_ADDRESS *ip_addr) {
    if (!NB_HOLDS("vgautil", buffer != NULL)) {
        return;
    }
    buffer[0] = '\0';
    if (NB_HOLDS("vgautil", ip_addr != NULL) &&
        NB_HOLDS("vgautil", ip_addr->family == NAP_IPV4_ADDRESS)) {
        const NB_UCHAR *const octets = ip_addr->octets;
        vga_print_msg(buffer, VGA_IP_ADDR_SIZE, VGA_MSG_IP_ADDRESS, "i i i i", octets[0], octets[1],
                      octets[2], octets[3]);
    }
}

NB_VOID vga_format_ip_addr_port(NB_CHAR *buffer, const NB_IP_ADDRESS *ip_addr, NB_USHORT port) {
    if (!NB_HOLDS("vgautil", buffer != NULL)) {
        return;
    }
    buffer[0] = '\0';
    if (NB_HOLDS("vgautil", ip_addr != NULL) &&
        NB_HOLDS("vgautil", ip_addr->family == NAP_IPV4_ADDRESS)) {
        const NB_UCHAR *const octets = ip_addr->octets;
        vga_print_msg(buffer, VGA_IP_ADDR_PORT_SIZE, VGA_MSG_IP_ADDRESS_PORT, "i i i i i",
                      octets[0], octets[1], octets[2], octets[3], port);
    }
}

NB_VOID vga_get_fq_name(NB_CHAR *out, const NB_UCHAR *fq) {
    if (!NB_HOLDS("vgautil", out != NULL)) {
        return;
    }
    out[0] = '\0';
    if (!NB_HOLDS("vgautil", fq != NULL)) {
        return;
    }
    const size_t start = find_period(fq) + 1U;
    if (start < NTL_FQ_NAME_WIDTH) {
        copy_as_text(out, fq + start, std::min<size_t>(NTL_FQ_NAME_WIDTH - start, NTL_NAME_WIDTH));
        vga_strip_spaces(out);
    }
}

NB_VOID vga_get_fq_net_name(NB_CHAR *out, const NB_UCHAR *fq) {
    if (!NB_HOLDS("vgautil", out != NULL)) {
        return;
    }
    out[0] = '\0';
    if (!NB_HOLDS("vgautil", fq != NULL)) {
        return;
    }
    const NB_USHORT period = find_period(fq);
    if (period < NTL_FQ_NAME_WIDTH) {
        /* A period too far right would let the name run out of its field. */
        copy_as_text(out, fq, std::min<size_t>(period, NTL_NAME_WIDTH));
    }
}

NB_VOID vga_getw_fq_net_name(NB_CHAR *out, const NB_UCHAR *fq) {
    vga_get_fq_net_name(out, fq);
    if (out == nullptr || fq == nullptr || find_period(fq) < NTL_FQ_NAME_WIDTH) {
        return;
    }
    NB_CHAR *const text = out;
    copy_as_text(text, fq, NTL_FQ_NAME_WIDTH);
    vga_strip_spaces(text);
    (NB_VOID) NB_HOLDS("vgautil", NB_STRLEN(text) <= 8);
}

NB_USHORT vga_valid_tp_name(const NB_UCHAR *tp_name, NB_USHORT service, NB_USHORT *error) {
    if (!NB_HOLDS("vgautil", error != NULL)) {
        return 0;
    }
    *error = VGA_TP_SPACE_ERROR;
    if (!NB_HOLDS("vgautil", tp_name != NULL)) {
        return 0;
    }
    const NB_UCHAR *const end = tp_name + NTL_TP_NAME_WIDTH;
    const NB_USHORT length = ntl_name_length(tp_name, NTL_TP_NAME_WIDTH);
    if (!std::all_of(tp_name + length, end, [](NB_UCHAR byte) { return byte == NTL_BLANK; })) {
        return 0;
    }
    if (service && !is_service_name(tp_name, length)) {
        *error = VGA_TP_SERVICE_ERROR;
        return 0;
    }
    return 1;
}

NB_USHORT vga_hex_tp_name(const NB_UCHAR *tp_name) {
    if (!NB_HOLDS("vgautil", tp_name != NULL)) {
        return 0;
    }
    NB_UCHAR text[NTL_TP_NAME_WIDTH];
    memcpy(text, tp_name, sizeof text);
    nba_ebcdic_to_local(text, sizeof text);
    return !std::all_of(std::begin(text), std::end(text),
                        [](NB_UCHAR character) { return isprint(character) != 0; });
}

NB_VOID vga_format_tp_name(NB_CHAR *out, const NB_UCHAR *tp_name, NB_USHORT hexadecimal,
                           NB_USHORT with_message) {
    if (!NB_HOLDS("vgautil", out != NULL)) {
        return;
    }
    out[0] = '\0';
    if (!NB_HOLDS("vgautil", tp_name != NULL)) {
        return;
    }
    if (!hexadecimal) {
        copy_as_text(out, tp_name, NTL_TP_NAME_WIDTH);
        vga_strip_spaces(out);
    } else if (!with_message) {
        format_hex(out, tp_name);
    } else {
        NB_CHAR digits[VGA_TP_NAME_HEX_SIZE];
        format_hex(digits, tp_name);
        vga_print_msg(out, VGA_TP_NAME_MESSAGE_SIZE, VGA_MSG_HEX_TP_NAME, "s", digits);
    }
}

NB_USHORT vga_parse_hex_tp_name(const NB_CHAR *text, NB_UCHAR *tp_name) {
    if (!NB_HOLDS("vgautil", tp_name != NULL)) {
        return 0;
    }
    std::fill_n(tp_name, NTL_TP_NAME_WIDTH, NB_UCHAR{NTL_BLANK});
    if (!NB_HOLDS("vgautil", text != NULL)) {
        return 0;
    }
    const size_t length = strlen(text);
    const size_t pairs = std::min<size_t>(length / 2, NTL_TP_NAME_WIDTH);
    for (size_t at = 0; at < pairs; at++) {
        tp_name[at] = hex_pair_value(text + 2 * at);
    }
    return length % 2 == 0;
}
