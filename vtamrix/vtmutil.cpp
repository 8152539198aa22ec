#include "vtmutil.h"

#include <algorithm>
#include <arpa/inet.h>
#include <bit>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>

#include "nbbase.h"
#include "ntlname.h"

namespace {

constexpr NB_ULONG ALL_ONES = 0xFFFFFFFF;
constexpr NB_UCHAR HIGHEST_FIRST_OCTET = 223; /* above are classes D and E */
constexpr NB_UCHAR EBCDIC_AT_SIGN = 0x7C;

/* Fixed characters of a template; the first 32 are the digits.  Vowels are no digits, so that no
 * host gets a word for a name. */
constexpr std::string_view lu_alphabet = "0123456789ABCDFGHJKLMNPQRSTVWXYZEIOU@#$";
constexpr NB_ULONG DIGIT_BITS = 5;
constexpr NB_ULONG DIGIT_MASK = (1U << DIGIT_BITS) - 1;
static_assert(lu_alphabet.size() == 39);

/* How many characters of a template can be fixed: the wildcards must hold the hosts of the widest
 * mask of the row. */
struct FIXED_LIMIT {
    NB_ULONG first_mask;
    NB_ULONG last_mask;
    NB_USHORT limit;
};

constexpr FIXED_LIMIT fixed_limits[] = {
    {0xFF000000, 0xFFE00000, 3}, {0xFFF00000, 0xFFFF0000, 4}, {0xFFFF8000, 0xFFFFF800, 5},
    {0xFFFFFC00, 0xFFFFFFC0, 6}, {0xFFFFFFE0, 0xFFFFFFFE, 7}, {ALL_ONES, ALL_ONES, 8},
};
static_assert(std::all_of(std::begin(fixed_limits), std::end(fixed_limits), [](const auto &row) {
    return std::popcount(~row.first_mask) <= static_cast<int>((8 - row.limit) * DIGIT_BITS);
}));

struct NUMBER_RANGE {
    NB_ULONG least;
    NB_ULONG greatest;
    NB_ULONG code;
};

constexpr NUMBER_RANGE number_ranges[] = {
    {1000, 32767, VTM_BAD_FIRST_NUMBER},
    {15, 65535, VTM_BAD_SECOND_NUMBER},
    {15, 65535, VTM_BAD_THIRD_NUMBER},
};
static_assert(std::size(number_ranges) == VTM_NUMBERS);

/* The text names the record in the report. */
bool is_ipv4_address(const NB_IP_ADDRESS *address) {
    return NB_HOLDS("vtmutil", address->family == NAP_IPV4_ADDRESS);
}

bool is_ipv4_mask(const NB_IP_ADDRESS *mask) {
    return NB_HOLDS("vtmutil", mask->family == NAP_IPV4_ADDRESS);
}

NB_ULONG numeric(const NB_UCHAR *octets) {
    return NB_ULONG{octets[0]} << 24 | NB_ULONG{octets[1]} << 16 | NB_ULONG{octets[2]} << 8 |
           octets[3];
}

/* The bits of the address under the clear bits of the mask, close together. */
NB_ULONG host_number(NB_ULONG address, NB_ULONG mask) {
    NB_ULONG host = 0;
    NB_ULONG next = 1;
    for (NB_ULONG bit = 1; bit != 0; bit <<= 1) {
        if ((mask & bit) == 0) {
            host |= (address & bit) != 0 ? next : 0;
            next <<= 1;
        }
    }
    return host;
}

bool is_domain_character(NB_CHAR character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') ||
           (character >= '0' && character <= '9') || character == '-' || character == '_';
}

NB_USHORT fixed_limit(NB_ULONG mask) {
    for (const FIXED_LIMIT &row : fixed_limits) {
        if (mask >= row.first_mask && mask <= row.last_mask) {
            return row.limit;
        }
    }
    return 0;
}

bool mask_is_good(const NB_IP_ADDRESS &mask, const NB_IP_ADDRESS &address) {
    return vtm_check_mask(numeric(mask.octets)) &&
           vtm_check_mask_address(mask.octets, address.octets);
}

template <typename RECORD> NB_USHORT refuse(RECORD *record, NB_ULONG code) {
    record->primary_rc = NAP_PARAMETER_CHECK;
    record->secondary_rc = code;
    return 0;
}

/* The numeric mask for LU names: the one given, or for zero that of the address's class.  Returns 0
 * for a bad one. */
NB_ULONG lu_map_mask(const NB_IP_ADDRESS &given, const NB_IP_ADDRESS &address) {
    if (numeric(given.octets) == 0) {
        NB_UCHAR octets[4];
        vtm_make_default_mask(&address, octets);
        return numeric(octets);
    }
    return mask_is_good(given, address) ? numeric(given.octets) : 0;
}

/* The subnet mask is good when there is none. */
bool subnet_mask_is_good(const VTM_TAMRIX_DEFAULTS &defaults) {
    const NB_ULONG mask = numeric(defaults.local_subnet_mask.octets);
    return mask == 0 || (mask != ALL_ONES &&
                         mask_is_good(defaults.local_subnet_mask, defaults.local_ip_address));
}

/* Takes the padded name that stands behind the length byte. */
NB_USHORT finish_length_name(NB_UCHAR *out) {
    NB_USHORT length = VTM_LENGTH_NAME_SIZE - 1;
    while (length > 1 && out[length] == NTL_BLANK) {
        out[length--] = 0;
    }
    out[0] = static_cast<NB_UCHAR>(length);
    return length;
}

} // namespace

NB_VOID vtm_make_ip_address(NB_ULONG value, NB_IP_ADDRESS *ip_address) {
    if (!NB_HOLDS("vtmutil", ip_address != NULL)) {
        return;
    }
    *ip_address = {};
    ip_address->family = NAP_IPV4_ADDRESS;
    for (NB_UCHAR &octet : ip_address->octets) {
        octet = static_cast<NB_UCHAR>(value >> 24);
        value <<= 8;
    }
}

NB_ULONG vtm_make_ip_ulong(const NB_IP_ADDRESS *ip_address) {
    if (!NB_HOLDS("vtmutil", ip_address != NULL) ||
        !NB_HOLDS("vtmutil", ip_address->family == NAP_IPV4_ADDRESS)) {
        return 0;
    }
    return numeric(ip_address->octets);
}

NB_VOID vtm_ip_to_string(const NB_IP_ADDRESS *ip_address, NB_CHAR *text) {
    if (!NB_HOLDS("vtmutil", text != NULL)) {
        return;
    }
    text[0] = '\0';
    if (NB_HOLDS("vtmutil", ip_address != NULL) &&
        NB_HOLDS("vtmutil", ip_address->family == NAP_IPV4_ADDRESS)) {
        const NB_UCHAR *const octets = ip_address->octets;
        std::snprintf(text, VTM_IP_TEXT_SIZE, "%i.%i.%i.%i", octets[0], octets[1], octets[2],
                      octets[3]);
    }
}

NB_VOID vtm_make_default_mask(const NB_IP_ADDRESS *address, NB_UCHAR *octets) {
    if (!NB_HOLDS("vtmutil", octets != NULL)) {
        return;
    }
    std::memset(octets, 0, 4);
    if (NB_HOLDS("vtmutil", address != NULL) && is_ipv4_address(address)) {
        octets[0] = 255;
        octets[1] = address->octets[0] >= 128 ? 255 : 0;
        octets[2] = address->octets[0] >= 192 ? 255 : 0;
    }
}

NB_USHORT vtm_compute_mask_num(const NB_IP_ADDRESS *mask) {
    if (!NB_HOLDS("vtmutil", mask != NULL) || !is_ipv4_mask(mask)) {
        return 0;
    }
    return static_cast<NB_USHORT>(std::popcount(numeric(mask->octets)));
}

NB_USHORT vtm_check_mask(NB_ULONG mask) {
    const NB_ULONG host_bits = ~mask;
    return (host_bits & (host_bits + 1)) == 0;
}

NB_USHORT vtm_check_mask_address(const NB_UCHAR *mask, const NB_UCHAR *address) {
    if (!NB_HOLDS("vtmutil", mask != NULL) || !NB_HOLDS("vtmutil", address != NULL)) {
        return 0;
    }
    return mask[0] == 255 && (address[0] < 128 || mask[1] == 255) &&
           (address[0] < 192 || mask[2] == 255);
}

NB_USHORT vtm_check_domain_name(const NB_CHAR *text) {
    if (!NB_HOLDS("vtmutil", text != NULL)) {
        return 0;
    }
    NB_USHORT label_length = 0;
    for (NB_USHORT at = 0; text[at] != '\0'; at++) {
        if (at == VTM_MAX_DOMAIN_NAME) {
            return 0;
        }
        if (text[at] == '.') {
            label_length = 0;
        } else if (!is_domain_character(text[at]) || ++label_length > VTM_MAX_DOMAIN_LABEL) {
            return 0;
        }
    }
    return 1;
}

NB_USHORT ip_2_lu(const NB_CHAR *template_text, NB_CHAR *lu_name, NB_ULONG ip, NB_ULONG mask) {
    if (!NB_HOLDS("vtmutil", lu_name != NULL)) {
        return 0;
    }
    std::memset(lu_name, ' ', NTL_NAME_WIDTH);
    lu_name[NTL_NAME_WIDTH] = '\0';
    if (!NB_HOLDS("vtmutil", template_text != NULL) ||
        !NB_HOLDS("vtmutil", strnlen(template_text, VTM_LU_TEXT_SIZE) <= NTL_NAME_WIDTH)) {
        return 0;
    }
    if (mask == ALL_ONES) {
        std::strcpy(lu_name, template_text);
        return 0;
    }
    std::memcpy(lu_name, template_text, std::strlen(template_text));
    NB_ULONG host = host_number(ntohl(ip), ntohl(mask));
    for (size_t at = NTL_NAME_WIDTH; at-- > 0;) {
        if (lu_alphabet.find(lu_name[at]) == lu_alphabet.npos) {
            lu_name[at] = lu_alphabet[host & DIGIT_MASK];
            host >>= DIGIT_BITS;
        }
    }
    return 0;
}

NB_USHORT vtm_validate_lu_map_template(const NB_UCHAR *lu_template, NB_ULONG mask) {
    if (!NB_HOLDS("vtmutil", lu_template != NULL)) {
        return 0;
    }
    NB_USHORT length = NTL_NAME_WIDTH;
    while (length > 0 && lu_template[length - 1] == NTL_BLANK) {
        length--;
    }
    if (lu_template[0] == NTL_PERIOD) {
        return 0;
    }
    NB_UCHAR name[NTL_NAME_WIDTH];
    std::replace_copy(lu_template, lu_template + length, name, NB_UCHAR{NTL_PERIOD},
                      EBCDIC_AT_SIGN);
    const auto wildcards = std::count(lu_template, lu_template + length, NTL_PERIOD);
    return nba_check_ebcdic(NB_EBCDIC_TYPE_A, name, length) &&
           length - wildcards <= fixed_limit(mask);
}

NB_USHORT vtm_create_lu_name(const NB_UCHAR *lu_name, const NB_UCHAR *network_name, NB_UCHAR *out) {
    if (!NB_HOLDS("vtmutil", out != NULL)) {
        return 0;
    }
    std::memset(out, 0, VTM_LENGTH_NAME_SIZE);
    if (!NB_HOLDS("vtmutil", lu_name != NULL) || !NB_HOLDS("vtmutil", network_name != NULL)) {
        return 0;
    }
    NB_UCHAR fq[NTL_FQ_NAME_WIDTH];
    ntl_make_fq_name(network_name, lu_name, fq);
    return vtm_create_lu_name_fq(fq, out);
}

NB_USHORT vtm_create_lu_name_fq(const NB_UCHAR *fq, NB_UCHAR *out) {
    if (!NB_HOLDS("vtmutil", out != NULL)) {
        return 0;
    }
    std::memset(out, 0, VTM_LENGTH_NAME_SIZE);
    if (!NB_HOLDS("vtmutil", fq != NULL)) {
        return 0;
    }
    std::memset(out + 1, NTL_BLANK, VTM_LENGTH_NAME_SIZE - 1);
    std::memcpy(out + 1, fq, NTL_FQ_NAME_WIDTH);
    return finish_length_name(out);
}

NB_VOID vtm_ebcdic_to_ascii(NB_CHAR *out, const NB_UCHAR *field, NB_USHORT length) {
    if (!NB_HOLDS("vtmutil", out != NULL)) {
        return;
    }
    std::memset(out, 0, length + 1U);
    if (!NB_HOLDS("vtmutil", field != NULL)) {
        return;
    }
    std::memcpy(out, field, length);
    nba_ebcdic_to_local(reinterpret_cast<NB_UCHAR *>(out), length);
    for (size_t at = length; at > 1 && out[at - 1] == ' '; at--) {
        out[at - 1] = '\0';
    }
}

NB_VOID vtm_ascii_to_ebcdic(const NB_CHAR *text, NB_UCHAR *out, NB_USHORT length) {
    if (!NB_HOLDS("vtmutil", out != NULL)) {
        return;
    }
    const size_t text_length = NB_HOLDS("vtmutil", text != NULL) ? strnlen(text, length) : 0;
    std::copy_n(text, text_length, out);
    std::fill(out + text_length, out + length, NB_UCHAR{' '});
    nba_local_to_ebcdic(out, length);
}

NB_USHORT vtm_validate_tamrix_snackets_defaults(VTM_TAMRIX_DEFAULTS *defaults) {
    if (!NB_HOLDS("vtmutil", defaults != NULL)) {
        return 0;
    }
    defaults->primary_rc = NAP_OK;
    if (!is_ipv4_address(&defaults->local_ip_address) ||
        !is_ipv4_mask(&defaults->local_subnet_mask) || !is_ipv4_mask(&defaults->lu_map_mask)) {
        return 0;
    }
    for (size_t at = 0; at < VTM_NUMBERS; at++) {
        const NUMBER_RANGE &range = number_ranges[at];
        if (defaults->numbers[at] < range.least || defaults->numbers[at] > range.greatest) {
            return refuse(defaults, range.code);
        }
    }
    if (defaults->local_ip_address.octets[0] > HIGHEST_FIRST_OCTET) {
        return refuse(defaults, VTM_BAD_IP_ADDRESS);
    }
    const NB_ULONG mask = lu_map_mask(defaults->lu_map_mask, defaults->local_ip_address);
    if (mask == 0) {
        return refuse(defaults, VTM_BAD_LU_MAP_MASK);
    }
    if (!subnet_mask_is_good(*defaults)) {
        return refuse(defaults, VTM_BAD_SUBNET_MASK);
    }
    if (!vtm_validate_lu_map_template(defaults->lu_name_template, mask)) {
        return refuse(defaults, VTM_BAD_TEMPLATE);
    }
    if (!ntl_check_name(NB_EBCDIC_TYPE_A, defaults->second_name, NTL_NAME_WIDTH)) {
        return refuse(defaults, VTM_BAD_SECOND_NAME);
    }
    return 1;
}

NB_USHORT vtm_validate_tamrix_ip_address_map(VTM_TAMRIX_IP_ADDRESS_MAP *map) {
    if (!NB_HOLDS("vtmutil", map != NULL)) {
        return 0;
    }
    map->primary_rc = NAP_OK;
    if (!is_ipv4_address(&map->ip_address) || !is_ipv4_mask(&map->lu_map_mask)) {
        return 0;
    }
    if (map->ip_address.octets[0] > HIGHEST_FIRST_OCTET) {
        return refuse(map, VTM_BAD_IP_ADDRESS);
    }
    const NB_ULONG mask = lu_map_mask(map->lu_map_mask, map->ip_address);
    if (mask == 0) {
        return refuse(map, VTM_BAD_LU_MAP_MASK);
    }
    if (!vtm_validate_lu_map_template(map->lu_name_template, mask)) {
        return refuse(map, VTM_BAD_TEMPLATE);
    }
    const bool named = map->name[0] != NTL_BLANK && map->name[0] != 0;
    if (named && !ntl_check_name(NB_EBCDIC_TYPE_A, map->name, NTL_NAME_WIDTH)) {
        return refuse(map, VTM_BAD_MAP_NAME);
    }
    return 1;
}
