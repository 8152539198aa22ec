/* A type-A name made from free text, and the disposition of a signal that is to be ignored. */
#ifndef V0TOEBCD_H
#define V0TOEBCD_H

#include "nbtypes.h"

NB_EXTERN_C_BEGIN

/* Makes an EBCDIC name of exactly `length` bytes, padded with EBCDIC blanks, without a terminator,
 * from a terminated text in the local code page.  At most `length` characters of the text are read.
 *
 * Characters that a type-A name can have are kept, in upper case; others are dropped.  "A" is put
 * in front of a text that begins with a digit.  Where nothing is left, each character up to the
 * first blank becomes a letter, "A" + (its code mod 26), so that any text gives some name; one that
 * is empty or begins with a blank gives blanks.  A digit can still stand first behind characters
 * that were dropped ("-1"): a caller that needs a valid name checks it.
 *
 * Returns 1.  A length of 0 or less writes nothing.
 * REQUIRES: text and out are not null; else returns 0. */
NB_USHORT v0_generate_ebcdic_a_name(const NB_CHAR *text, NB_SHORT length, NB_UCHAR *out);

/* Ignores the signal in this process and in what it executes.  Returns 0, or -1 with errno set
 * (EINVAL: no such signal, or one that cannot be ignored). */
NB_INT vsvig_signal_ignore(NB_INT signal);

NB_EXTERN_C_END

#endif
