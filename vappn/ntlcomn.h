/* Comparators for the ordered index (ntlavl.h): they order the records of the model and of the node
 * software.  Each takes two keys of the stated layout, at any alignment, and returns a negative
 * value, 0 or a positive one.  Nothing is kept, written or allocated.
 *
 * Names are EBCDIC, blank-padded (blank 0x40), without a terminator.  Two kinds of order:
 *   identity  byte-wise unsigned on the EBCDIC bytes; -1, 0 or 1.
 *   display   the shorter name first (a name ends at its first blank; the result is the difference
 *             of the lengths), then byte-wise unsigned over the full width of both names in the
 *             local code page; -1, 0 or 1.  This is the order of the lists on the screen. */
#ifndef NTLCOMN_H
#define NTLCOMN_H

#include "nbtypes.h"

NB_EXTERN_C_BEGIN

/* One unsigned byte; the result is the difference. */
NB_INT ntl_compare_byte(const NB_VOID *a, const NB_VOID *b);

/* An LFSID: two NB_USHORT in host order.  The second decides, then the first; the result is the
 * difference. */
NB_INT ntl_compare_lfsid(const NB_VOID *a, const NB_VOID *b);

/* Identity order: a procedure correlator (4 bytes), a name (8), a fully qualified name (17), a TP
 * name (64). */
NB_INT ntl_compare_proc_id(const NB_VOID *a, const NB_VOID *b);
NB_INT ntl_compare_name(const NB_VOID *a, const NB_VOID *b);
NB_INT ntl_compare_fq_name(const NB_VOID *a, const NB_VOID *b);
NB_INT ntl_compare_tp_name(const NB_VOID *a, const NB_VOID *b);

/* Display order of an 8-byte name.  A blank in the very first position counts as length 8, so that
 * the all-blank name stands among those of full length. */
NB_INT ntl_compare_mib_sna_name(const NB_VOID *a, const NB_VOID *b);

/* Display order of an 8-byte name that is in the local code page already, padded with the local
 * blank (0x20).  A blank in the first position is length 0. */
NB_INT ntl_compare_mib_ascii_sna_name(const NB_VOID *a, const NB_VOID *b);

/* Display order of a fully qualified name (17 bytes) and of a TP name (64). */
NB_INT ntl_compare_mib_fq_name(const NB_VOID *a, const NB_VOID *b);
NB_INT ntl_compare_mib_tp_name(const NB_VOID *a, const NB_VOID *b);

/* A fully qualified correlator: 8 bytes of correlator, then a 17-byte CP name.  The CP name
 * decides, in display order, then the correlator, byte-wise unsigned. */
NB_INT ntl_compare_fqpcid(const NB_VOID *a, const NB_VOID *b);

NB_EXTERN_C_END

#endif
