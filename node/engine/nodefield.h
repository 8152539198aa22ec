/* The fields of records, as tables.  One row says where a field is and what it may hold; the loader
 * of domain texts, the check of every define verb and the dumper all read the same row, so a value
 * that the text refuses is a value that the verb refuses.
 *
 * A record here is the list entry of a class, the block of a settings verb, or a Behaviour. */
#ifndef NODEFIELD_H
#define NODEFIELD_H

#include "nofrec.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace node {

enum class FieldKind : NB_UCHAR {
    NameA,       /* SNA name, 8 bytes EBCDIC: A-Z 0-9 @ # $, no digit first */
    NameFq,      /* network.name, 17 bytes EBCDIC */
    NameAny,     /* one or the other, 17 bytes EBCDIC */
    NamePartner, /* network.name in EBCDIC, or an alias in the local code page, 17 bytes */
    NameLocal,   /* blank-padded, of the local code page, printable, no blank inside */
    NameEbcdic,  /* blank-padded EBCDIC of any characters, no blank in front */
    Text,        /* local code page, NUL-terminated within its width */
    Bytes,       /* any bytes, in texts as hexadecimal digits */
    Address,     /* an NB_IP_ADDRESS, in texts as four numbers with periods */
    Number,      /* 1, 2 or 4 bytes, decimal in texts, within low..high */
    Flag,        /* 1, 2 or 4 bytes, "yes" or "no" */
    Word,        /* a number that texts call by a word */
    Hex,         /* a number in hexadecimal, 0 to 2^32 - 1 */
};

struct FieldWord {
    const char *text; /* null ends the list */
    NB_ULONG value;
};

constexpr NB_UCHAR FIELD_REQUIRED = 1;  /* a name or text that must not be blank */
constexpr NB_UCHAR FIELD_BEHAVIOUR = 2; /* stands in the Behaviour, not in the record */
constexpr NB_UCHAR FIELD_KEY = 4;       /* part of the key: in the section's title, not a line */
constexpr NB_UCHAR FIELD_COUNTS = 8;    /* one more for each resource of a range */
constexpr NB_UCHAR FIELD_SECRET = 16;   /* kept, never answered; blank in a change: as it was */

struct FieldRow {
    const char *name; /* in domain texts */
    size_t offset;
    size_t width;
    FieldKind kind;
    NB_UCHAR use;
    NB_ULONG low, high;     /* Number only */
    const FieldWord *words; /* Word only */
    const char *initial;    /* what a text that does not name the field means; null: blank or 0 */
};

struct FieldTable {
    const FieldRow *rows = nullptr;
    size_t count = 0;

    const FieldRow *begin() const { return rows; }
    const FieldRow *end() const { return rows + count; }
    const FieldRow *find(std::string_view name) const;
};

/* How a resource behaves in this node software, which carries no traffic of its own: what a real
 * network would decide.  Kept beside the definition; a define verb leaves it alone. */
struct Behaviour {
    NB_UCHAR reachable;     /* flag: 0 never comes up */
    NB_UCHAR app_type;      /* NAP_APP_NONE and the like, of the user below */
    NB_USHORT sessions;     /* of a mode in use, while its partner can be reached */
    NB_ULONG up_ms;         /* time to come up; 0: derived from the name */
    NB_UCHAR user_name[32]; /* text: who uses an LU; empty: nobody */
};

constexpr Behaviour DEFAULT_BEHAVIOUR = {1, 0, 0, 0, {}};

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
void hide_secrets(const FieldTable &table, NB_UCHAR *record);

/* Takes over from `old` the secrets that `record` does not bring. */
void keep_secrets(const FieldTable &table, NB_UCHAR *record, const NB_UCHAR *old);

/* Writes every row's initial value; names without one become blanks. */
void set_initial_fields(const FieldTable &table, NB_UCHAR *record, Behaviour &behaviour);

/* Reads and writes a number of 1, 2 or 4 bytes. */
NB_ULONG get_number(const NB_UCHAR *at, size_t width);
void put_number(NB_UCHAR *at, size_t width, NB_ULONG value);

/* An EBCDIC or local name as text without its padding. */
std::string ebcdic_text(const NB_UCHAR *name, size_t width);
std::string local_text(const NB_UCHAR *name, size_t width);

/* Writes a text as a name; it is cut at `width`. */
void put_ebcdic(NB_UCHAR *name, size_t width, std::string_view text);
void put_local(NB_UCHAR *name, size_t width, std::string_view text);

} // namespace node

#endif
