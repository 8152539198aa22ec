/* Fields as text and back, and what they may hold: for domain texts, define verbs, commands and
 * dialogs alike, so that a value which a text refuses is a value which the verb refuses.
 *
 * `record` is what the row's offsets count in, plain bytes: a list entry, an item within one, the
 * block of a settings verb.  Texts are in the local code page. */
#ifndef FIELDTEXT_H
#define FIELDTEXT_H

#include "schema.h"

#include <string>
#include <string_view>

namespace records {

/* Sets a field from text (trimmed, local code page).  On a bad value changes nothing, puts what is
 * allowed into `why` ("a number from 1 to 255") and returns false. */
bool set_field(const FieldRow &row, std::string_view text, NB_UCHAR *record, std::string &why);

/* Returns the field as a text that set_field takes. */
std::string format_field(const FieldRow &row, const NB_UCHAR *record);

/* Checks the field as a define verb brought it.  Returns 0, NAP_INVALID_NAME or
 * NAP_INVALID_VALUE. */
NB_ULONG check_field(const FieldRow &row, const NB_UCHAR *record);

/* Makes a name of NULs or blanks all blanks, clears what stands behind the end of a text, and
 * leaves every other field alone.  REQUIRES: a field that check_field found good. */
void tidy_field(const FieldRow &row, NB_UCHAR *record);

/* True for a name, text or string of bytes that holds nothing. */
bool is_empty_field(const FieldRow &row, const NB_UCHAR *record);

/* Blanks what must not be answered. */
void hide_secrets(FieldTable table, NB_UCHAR *record);

/* Takes over from `old` the secrets that `record` does not bring. */
void keep_secrets(FieldTable table, NB_UCHAR *record, const NB_UCHAR *old);

/* Writes every row's initial value; names without one become blanks. */
void set_initial_fields(FieldTable table, NB_UCHAR *record);

/* True when every byte is a blank of the part's character set or NUL. */
bool is_blank(KeyKind kind, const NB_UCHAR *raw, size_t width);

/* Reads all of a text as a decimal number, perhaps with a sign in front, from `low` to `high`.
 * False leaves `value` as it was. */
bool read_number(std::string_view text, int64_t low, int64_t high, int64_t &value);

/* Reads pairs of hexadecimal digits, in either case, into up to `most` bytes.  Returns their count;
 * -1 when the number of digits is odd or too high, or one is no digit. */
int read_bytes(std::string_view text, NB_UCHAR *out, size_t most);

/* Reads and writes a number of 1, 2 or 4 bytes. */
NB_ULONG get_number(const NB_UCHAR *at, size_t width);
void put_number(NB_UCHAR *at, size_t width, NB_ULONG value);

/* An EBCDIC or local name as text without its padding. */
std::string ebcdic_text(const NB_UCHAR *name, size_t width);
std::string local_text(const NB_UCHAR *name, size_t width);

/* Writes a text as a name; it is cut at `width`. */
void put_ebcdic(NB_UCHAR *name, size_t width, std::string_view text);
void put_local(NB_UCHAR *name, size_t width, std::string_view text);

} // namespace records

#endif
