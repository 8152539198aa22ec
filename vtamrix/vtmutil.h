/* SNA over IP (Tamrix): addresses and masks, LU names made from addresses, and the checks of the
 * Tamrix configuration.
 *
 * Three forms of an address or a mask:
 *   record        NB_IP_ADDRESS; its octets stand in network order
 *   numeric       an NB_ULONG in host order whose most significant byte is the first octet
 *   network order an NB_ULONG whose bytes in memory are the octets
 * SNA names are 8 EBCDIC bytes padded with EBCDIC blanks, without a terminator; "text" is
 * NUL-terminated, in the local code page.  Buffers are the caller's and do not overlap.
 * REQUIRES: pointers are not null and records have the family NAP_IPV4_ADDRESS.  Else an assertion
 * is reported; the function then returns 0, and its output is zeros (blanks for ip_2_lu and
 * vtm_ascii_to_ebcdic). */
#ifndef VTMUTIL_H
#define VTMUTIL_H

#include "nbtypes.h"
#include "nofrec.h"

NB_EXTERN_C_BEGIN

/* Addresses and masks. */

#define VTM_IP_TEXT_SIZE 16 /* "255.255.255.255" and its terminator */

NB_VOID vtm_make_ip_address(NB_ULONG value, NB_IP_ADDRESS *ip_address);
NB_ULONG vtm_make_ip_ulong(const NB_IP_ADDRESS *ip_address);

/* Writes dotted decimal text; `text` has VTM_IP_TEXT_SIZE bytes. */
NB_VOID vtm_ip_to_string(const NB_IP_ADDRESS *ip_address, NB_CHAR *text);

/* Writes the four octets of the mask of the address's class: 255.0.0.0 for a first octet below 128,
 * 255.255.0.0 below 192, else 255.255.255.0. */
NB_VOID vtm_make_default_mask(const NB_IP_ADDRESS *address, NB_UCHAR *octets);

/* Returns the number of bits that are set in the octets. */
NB_USHORT vtm_compute_mask_num(const NB_IP_ADDRESS *mask);

/* Returns 1 when no bit of the numeric mask is clear above one that is set, else 0.  All clear and
 * all set are good. */
NB_USHORT vtm_check_mask(NB_ULONG mask);

/* Four octets each.  Returns 1 when the mask has every bit of the mask of the address's class, else
 * 0. */
NB_USHORT vtm_check_mask_address(const NB_UCHAR *mask, const NB_UCHAR *address);

/* Names. */

#define VTM_MAX_DOMAIN_NAME  237
#define VTM_MAX_DOMAIN_LABEL 63

/* Checks the syntax of a domain name: ASCII letters, digits, "-" and "_" in labels of at most
 * VTM_MAX_DOMAIN_LABEL characters, VTM_MAX_DOMAIN_NAME in all.  Periods can stand anywhere, at the
 * ends and side by side, too.  Empty is valid.  Returns 1 or 0; reads at most one character beyond
 * VTM_MAX_DOMAIN_NAME. */
NB_USHORT vtm_check_domain_name(const NB_CHAR *text);

#define VTM_LU_TEXT_SIZE 9 /* 8 characters and a terminator */

/* Makes the LU name of a host: `lu_name`, VTM_LU_TEXT_SIZE bytes, is the template with its
 * wildcards replaced by the host part of the address, in digits of base 32, the least significant
 * one rightmost.  Digits that find no wildcard are cut silently.  `ip` and `mask` are in network
 * order.
 *
 * Fixed are A-Z, 0-9, @, # and $; any other character is a wildcard, and so are the characters that
 * the template lacks to 8.  Digits are 0-9 and the consonants, in the order of the alphabet.
 *
 * With a mask of all ones the name is the template as it stands, terminator included.  Returns 0.
 * REQUIRES: the template has at most 8 characters; else lu_name is 8 blanks. */
NB_USHORT ip_2_lu(const NB_CHAR *template_text, NB_CHAR *lu_name, NB_ULONG ip, NB_ULONG mask);

/* Returns 1 when the 8-byte EBCDIC template is valid for the numeric mask, else 0: it does not
 * begin with a wildcard (the period), is a type-A name but for its wildcards, and has no more fixed
 * characters than leave room for the hosts of the mask.  Trailing blanks are wildcards.  A mask
 * shorter than 8 bits leaves no room for fixed characters, nor does one between the contiguous
 * masks that bound a row of the table; an all-blank template is valid for any mask. */
NB_USHORT vtm_validate_lu_map_template(const NB_UCHAR *lu_template, NB_ULONG mask);

/* A fully qualified name with its length in front: the length, up to 17 EBCDIC characters, and
 * zeros to the end of the VTM_LENGTH_NAME_SIZE bytes, of which there is at least one. */
#define VTM_LENGTH_NAME_SIZE 19

/* Write such a name, from its two halves (joined as ntl_make_fq_name does) or from a padded one of
 * 17 bytes.  Return the length, 1 to 17: a first character that is a blank stays and counts. */
NB_USHORT vtm_create_lu_name(const NB_UCHAR *lu_name, const NB_UCHAR *network_name, NB_UCHAR *out);
NB_USHORT vtm_create_lu_name_fq(const NB_UCHAR *fq, NB_UCHAR *out);

/* Converts a field of `length` bytes to text without its trailing blanks; `out` has `length` + 1
 * bytes, of which those behind the text are zero.  The first character is never cut: a blank field
 * gives one blank. */
NB_VOID vtm_ebcdic_to_ascii(NB_CHAR *out, const NB_UCHAR *field, NB_USHORT length);

/* Converts text to a field of `length` bytes, cut or padded with blanks. */
NB_VOID vtm_ascii_to_ebcdic(const NB_CHAR *text, NB_UCHAR *out, NB_USHORT length);

/* Checks of the configuration. */

#define VTM_NUMBERS 3

typedef struct vtm_tamrix_defaults {
    NAP_VCB_HEADER;
    NB_IP_ADDRESS local_ip_address;
    NB_IP_ADDRESS local_subnet_mask; /* zero: none */
    NB_UCHAR lu_name_template[8];
    NB_IP_ADDRESS lu_map_mask;     /* zero: that of the class of local_ip_address */
    NB_UCHAR second_name[8];       /* blanks: none */
    NB_ULONG numbers[VTM_NUMBERS]; /* 1000 to 32767, and twice 15 to 65535 */
} VTM_TAMRIX_DEFAULTS;

typedef struct vtm_tamrix_ip_address_map {
    NAP_VCB_HEADER;
    NB_IP_ADDRESS ip_address;
    NB_IP_ADDRESS lu_map_mask; /* zero: that of the class of ip_address */
    NB_UCHAR lu_name_template[8];
    NB_UCHAR name[8]; /* a blank or a zero byte first: none */
} VTM_TAMRIX_IP_ADDRESS_MAP;

/* Secondary return codes, with NAP_PARAMETER_CHECK as the primary one. */
#define VTM_BAD_SECOND_NAME   0x15020000
#define VTM_BAD_IP_ADDRESS    0x17FF0000 /* its first octet is above 223 */
#define VTM_BAD_LU_MAP_MASK   0x18FF0000 /* not contiguous, or shorter than that of the class */
#define VTM_BAD_TEMPLATE      0x19FF0000
#define VTM_BAD_MAP_NAME      0x1AFF0000
#define VTM_BAD_FIRST_NUMBER  0x1CFF0000
#define VTM_BAD_SECOND_NUMBER 0x1DFF0000
#define VTM_BAD_THIRD_NUMBER  0x1EFF0000
#define VTM_BAD_SUBNET_MASK   0x1FFF0000 /* likewise, or all ones */

/* Check a record: the numbers, the address, the masks, the template, the name.  Return 1 with the
 * primary code NAP_OK, or 0 with the codes of the first fault set.  Nothing else in the record
 * changes.  A wrong family is an assertion: 0 with the primary code NAP_OK. */
NB_USHORT vtm_validate_tamrix_snackets_defaults(VTM_TAMRIX_DEFAULTS *defaults);
NB_USHORT vtm_validate_tamrix_ip_address_map(VTM_TAMRIX_IP_ADDRESS_MAP *map);

NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_DEFAULTS, primary_rc) == 4);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_DEFAULTS, secondary_rc) == 8);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_DEFAULTS, local_ip_address) == 12);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_DEFAULTS, local_subnet_mask) == 36);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_DEFAULTS, lu_name_template) == 60);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_DEFAULTS, lu_map_mask) == 68);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_DEFAULTS, second_name) == 92);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_DEFAULTS, numbers) == 100);
NB_STATIC_ASSERT(sizeof(VTM_TAMRIX_DEFAULTS) == 112);

NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_IP_ADDRESS_MAP, primary_rc) == 4);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_IP_ADDRESS_MAP, secondary_rc) == 8);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_IP_ADDRESS_MAP, ip_address) == 12);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_IP_ADDRESS_MAP, lu_map_mask) == 36);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_IP_ADDRESS_MAP, lu_name_template) == 60);
NB_STATIC_ASSERT(offsetof(VTM_TAMRIX_IP_ADDRESS_MAP, name) == 68);
NB_STATIC_ASSERT(sizeof(VTM_TAMRIX_IP_ADDRESS_MAP) == 76);

NB_EXTERN_C_END

#endif
