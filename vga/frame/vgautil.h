/* Conversions and checks of names, addresses and field texts that need no widget and no display.
 *
 * Text is NUL-terminated, in the local code page.  Names are EBCDIC of a fixed width, padded with
 * EBCDIC blanks, without a terminator.  Buffers are the caller's and do not overlap; those that a
 * function writes have the size given here.  What a user can type is never an error but a result.
 * REQUIRES: pointers are not null and address records have the family NAP_IPV4_ADDRESS.  Else an
 * assertion is reported; the function then returns 0, and its output is empty. */
#ifndef VGAUTIL_H
#define VGAUTIL_H

#include "nbtypes.h"

NB_EXTERN_C_BEGIN

/* Texts. */

/* Cuts trailing spaces, and no other white space. */
NB_VOID vga_strip_spaces(NB_CHAR *text);

/* Fills from the first NUL within `length` bytes to their end with `pad`.  Without a NUL there,
 * nothing changes; the result then has no terminator either way. */
NB_VOID vga_pad_buffer(NB_CHAR *buffer, NB_USHORT length, NB_CHAR pad);

/* Host names and IP addresses. */

/* Returns 1 when the text has 1 to 255 characters and every part between its periods 1 to 63, else
 * 0.  Which characters they are does not matter. */
NB_USHORT vga_valid_ip_name(const NB_CHAR *text);

/* Reads a dotted address: exactly four parts of 1 to 3 characters, each a number up to 255 as C
 * writes it (010 is 8, 0x1 is 1), without a sign or blanks.  Returns 1, or 0 with the octets in
 * front of the fault kept in the record; all else in it is zero either way. */
NB_USHORT vga_parse_ip_addr(const NB_CHAR *text, NB_IP_ADDRESS *address);

/* Makes the mask of the address's class: 255.0.0.0 for a first octet below 128, 255.255.0.0 below
 * 192, else 255.255.255.0 (classes D and E, too). */
NB_VOID vga_get_default_ip_addr_mask(const NB_IP_ADDRESS *ip_addr, NB_IP_ADDRESS *mask);

/* Format an address, and one with a port, as the message catalogue words it (messages 1446 and
 * 1447; dotted decimal in the catalogue that ships).  `buffer` has the stated size, which leaves a
 * catalogue some room for words of its own; more is cut. */
#define VGA_IP_ADDR_SIZE      32
#define VGA_IP_ADDR_PORT_SIZE 40
NB_VOID vga_format_ip_addr(NB_CHAR *buffer, const NB_IP_ADDRESS *ip_addr);
NB_VOID vga_format_ip_addr_port(NB_CHAR *buffer, const NB_IP_ADDRESS *ip_addr, NB_USHORT port);

/* Fully qualified names. */

#define VGA_FQ_NAME_SIZE      9
#define VGA_FQ_NET_NAME_SIZE  9
#define VGA_FQW_NET_NAME_SIZE 18

/* Take halves of a name of 17 bytes, as text of at most 8 characters; empty when it has no period.
 * The name is what follows the period, without trailing spaces; the network identifier is what
 * stands in front of it. */
NB_VOID vga_get_fq_name(NB_CHAR *out, const NB_UCHAR *fq);
NB_VOID vga_get_fq_net_name(NB_CHAR *out, const NB_UCHAR *fq);

/* As vga_get_fq_net_name, but a name without a period is a network identifier alone: all of it,
 * without trailing spaces.
 * REQUIRES: that has at most 8 characters; a longer one is reported, and returned as it is. */
NB_VOID vga_getw_fq_net_name(NB_CHAR *out, const NB_UCHAR *fq);

/* Transaction program names. */

#define VGA_TP_SPACE_ERROR   0 /* something follows the first space */
#define VGA_TP_SERVICE_ERROR 1 /* no service TP name */

/* Checks a TP name of 64 bytes.  Returns 1 when nothing but spaces follows its first space and,
 * with `service`, it is a service TP name: 1 to 4 bytes, the first below 0x40 and neither 0x0E nor
 * 0x0F, the others of a type-A name.  Else returns 0.  *error is one of the codes above then, and 0
 * after a valid name. */
NB_USHORT vga_valid_tp_name(const NB_UCHAR *tp_name, NB_USHORT service, NB_USHORT *error);

/* Returns 1 when any of the 64 bytes is not a printable character of the locale, so that the name
 * must be shown in hexadecimal, else 0. */
NB_USHORT vga_hex_tp_name(const NB_UCHAR *tp_name);

/* Writes a TP name of 64 bytes: as text without trailing spaces, or, with `hexadecimal`, two
 * upper-case digits for each byte up to the last that is no blank, in the words of message 1445
 * when `with_message` is set.  `out` has the size of the form that is asked for; message text
 * beyond it is cut. */
#define VGA_TP_NAME_SIZE         65
#define VGA_TP_NAME_HEX_SIZE     129
#define VGA_TP_NAME_MESSAGE_SIZE 160
NB_VOID vga_format_tp_name(NB_CHAR *out, const NB_UCHAR *tp_name, NB_USHORT hexadecimal,
                           NB_USHORT with_message);

/* Reads up to 64 pairs of hexadecimal digits, in either case, into the 64 bytes and pads with
 * EBCDIC blanks.  Characters are not checked: a pair is worth what stands in front of its first
 * non-digit
 * ("5G" is 5, "G5" is 0).  Returns 1, or 0 when the number of characters is odd; the last one is
 * left out then. */
NB_USHORT vga_parse_hex_tp_name(const NB_CHAR *text, NB_UCHAR *tp_name);

NB_EXTERN_C_END

#endif
