/* SNA names: their checks, and the builders that join and split fully qualified names.
 *
 * All names are EBCDIC bytes of a fixed width, padded with EBCDIC blanks, without a terminator:
 *   name             8 bytes: LU, CP, mode, PU, COS, network ID ...
 *   fully qualified  17 bytes: network ID (1 to 8), a period, name (1 to 8), blanks; or an
 *                    unqualified name and blanks
 *   TP name          64 bytes
 * The caller owns every buffer.  An output overlaps an input only where that is allowed below.
 * Bad names are answers, never errors. */
#ifndef NTLNAME_H
#define NTLNAME_H

#include "nbtypes.h"

NB_EXTERN_C_BEGIN

#define NTL_BLANK         0x40
#define NTL_PERIOD        0x4B
#define NTL_NAME_WIDTH    8
#define NTL_FQ_NAME_WIDTH 17
#define NTL_TP_NAME_WIDTH 64

/* Results of ntl_check_fq_name and ntl_split_fq_name. */
#define NTL_FQ_QUALIFIED         1 /* network ID and name */
#define NTL_FQ_UNQUALIFIED       2 /* a name only */
#define NTL_FQ_LONG_NETWORK_ID   3
#define NTL_FQ_LONG_NAME         4
#define NTL_FQ_BAD_NETWORK_ID    5 /* a character that NB_EBCDIC_TYPE_A does not have */
#define NTL_FQ_BAD_NAME          6
#define NTL_FQ_EMPTY_NETWORK_ID  7 /* the period stands first */
#define NTL_FQ_EMPTY_NAME        8
#define NTL_FQ_TEXT_BEHIND_BLANK 9 /* something follows a blank behind the name */

/* Returns the position of the first blank in `width` bytes, or `width`. */
NB_USHORT ntl_name_length(const NB_UCHAR *name, NB_USHORT width);

/* Returns 1 when the `length` bytes without their trailing blanks belong to the character set
 * `char_class` (NB_EBCDIC_TYPE_A, NB_EBCDIC_TYPE_AE), else 0.  An empty or all-blank name is
 * valid. */
NB_USHORT ntl_check_name(NB_USHORT char_class, const NB_UCHAR *name, NB_USHORT length);

/* Checks 17 bytes from left to right; returns the code of the first fault, or one of the two valid
 * ones.  A blank in front of the period is a bad character of the network ID. */
NB_USHORT ntl_check_fq_name(const NB_UCHAR *fq);

/* Checks likewise and returns the two halves, 8 bytes each, blank-padded.  The network ID of an
 * unqualified name, and both halves of an invalid one, are 8 zero bytes. */
NB_USHORT ntl_split_fq_name(const NB_UCHAR *fq, NB_UCHAR *network_id, NB_UCHAR *name);

/* Joins two 8-byte names into 17 bytes.  Nothing is checked: a network ID that begins with a blank
 * gives a name that begins with the period. */
NB_VOID ntl_make_fq_name(const NB_UCHAR *network_id, const NB_UCHAR *name, NB_UCHAR *fq);

/* Puts the 8-byte `new_name` in the place of the name in a fully qualified one (17 bytes each;
 * `out` can be `fq`).  Without a period the result is the new name alone; with one beyond position
 * 8 it is 17 zero bytes. */
NB_VOID ntl_change_local_name(const NB_UCHAR *fq, const NB_UCHAR *new_name, NB_UCHAR *out);

/* Copies the characters of `in` that are no blanks, as many as fit, and fills up with blanks. */
NB_VOID ntl_make_internal_name(NB_UCHAR *out, NB_USHORT out_width, const NB_UCHAR *in,
                               NB_USHORT in_length);

NB_EXTERN_C_END

#endif
