/* Dial strings: the bytes that a switched line sends to its modem or switch, and their two
 * notations as text.
 *
 *   ASCII notation  a character stands for itself; any other byte is an escape between slashes: a
 *                   name of the table below, a decimal value (/200/), or // for a slash
 *   hexadecimal     two digits a byte; behind "0x" where either notation can stand
 *
 * All six work on the caller's buffers, with 16-bit lengths, and keep nothing.  The pointer behind
 * the output buffer holds its capacity in bytes on entry and the number of bytes produced on
 * return. No text has a terminator, and nothing is written beyond the capacity.  Input and output
 * must not overlap. REQUIRES: no pointer is null.  Else the assertion is fatal; behind it nothing
 * is produced, and a parser returns 1. */
#ifndef V0CONVDS_H
#define V0CONVDS_H

#include "nbtypes.h"

NB_EXTERN_C_BEGIN

/* The named escapes with their slashes, in upper case: that of byte n stands at n (0x00 to 0x20,
 * "/NUL/" to "/SP/"), and "/DEL/", the byte 0x7F, stands last. */
#define V0_SDLC_ESCAPE_COUNT 34
extern const NB_CHAR *const v0_sdlc_escape_sequences[V0_SDLC_ESCAPE_COUNT];

/* The parsers read what a user can type, so bad text is a result:
 *   0                 good; the length pointer holds the number of bytes
 *   input length + 1  the output was full before the input was used up, whatever the rest holds
 *   any other         the text is bad at this position, counted from 1 in the caller's input
 * With a result other than 0 the number of bytes is 0, and the bytes in front of the fault have
 * been written.  Positions are 16-bit and wrap: only an input of 65535 bytes can overflow with
 * result 0. */

/* Digits without a prefix, in either case.  A bad digit, in either place of a pair, is reported at
 * the first place of its pair; a lone last digit at its own. */
NB_USHORT v0_dialstring_hex_to_binary(NB_UCHAR *output, NB_USHORT *output_len,
                                      const NB_UCHAR *input, NB_USHORT input_len);

/* ASCII notation.  Bytes other than the slash are taken as they are, printable or not.  Names are
 * matched in upper case only; a decimal value is 0 to 255 with any number of leading zeros.  An
 * escape that is bad or not closed is reported at its opening slash. */
NB_USHORT v0_dialstring_ascii_to_binary(NB_UCHAR *output, NB_USHORT *output_len,
                                        const NB_UCHAR *input, NB_USHORT input_len);

/* Either notation: hexadecimal behind "0x" or "0X", else ASCII.  Positions count the prefix.  The
 * prefix alone is good and gives no bytes.
 *
 * ASCII notation that happens to begin with "0x" is thus read as hexadecimal: the writer below does
 * not escape it. */
NB_USHORT v0_dialstring_text_to_binary(NB_UCHAR *output, NB_USHORT *output_len,
                                       const NB_UCHAR *input, NB_USHORT input_len);

/* The writers.  A capacity below the worst case stated is a fatal assertion, with nothing written
 * and 0 bytes produced.  Capacities are checked in 16-bit arithmetic, so an input whose worst case
 * is beyond 65535 can pass: it is then cut, always between two bytes of the input. */

/* Lower-case digits without a prefix.  Produces 2 x `binary_len` bytes, modulo 65536.
 * REQUIRES: *hex_len is at least that. */
NB_VOID v0_dialstring_binary_to_hex(NB_UCHAR *output, NB_USHORT *hex_len, const NB_UCHAR *input,
                                    NB_USHORT binary_len);

/* ASCII notation: 0x20 to 0x7E are written as they are, the slash as //, the other bytes below 0x80
 * by name, those from 0x80 as three decimal digits between slashes.
 * REQUIRES: *ascii_len is at least 5 x `binary_len`, modulo 65536. */
NB_VOID v0_dialstring_binary_to_ascii(NB_UCHAR *output, NB_USHORT *ascii_len, const NB_UCHAR *input,
                                      NB_USHORT binary_len);

/* With `hex` 0 as v0_dialstring_binary_to_ascii, else "0x" and the digits.
 * REQUIRES: with `hex`, *text_len is at least 2 and the rest of it what the digits need. */
NB_VOID v0_dialstring_binary_to_text(NB_UCHAR *output, NB_USHORT *text_len, const NB_UCHAR *input,
                                     NB_USHORT binary_len, NB_USHORT hex);

NB_EXTERN_C_END

#endif
