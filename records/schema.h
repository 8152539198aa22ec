/* Schemas: what each kind of resource is, said once.
 *
 * A Schema names the verbs that list, define, delete, start and stop a kind of resource, says how
 * its list entry and its define block are laid out, and has a row for each field.  The node stores
 * and checks by it, lists and dialogs show by it, texts and commands name what it names.  To add a
 * kind, add its schema to the header of its family (connectivity.h, lus.h, sessions.h, services.h,
 * domain.h) and name it in schemas.h; the single records of settings verbs are in settings.h.
 *
 * Fields are named at compile time:
 *
 *   constexpr const records::FieldRow &speed = records::field(records::primary_line, "line_speed");
 *
 * does not compile when there is no such field.  An entry is plain bytes, packed: a row says where
 * a field is, fieldtext.h reads and writes it.  Everything here is constant; nobody owns anything.
 */
#ifndef SCHEMA_H
#define SCHEMA_H

#include "nofrec.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

namespace records {

/* Where something is in a record: bytes. */
struct Place {
    const char *name = nullptr; /* of the member, without those that it is in; null: several */
    NB_USHORT offset = 0;
    NB_USHORT width = 0;

    constexpr size_t end() const { return size_t{offset} + width; }
};

/* "def_data.dlc_name" is called "dlc_name". */
constexpr const char *last_name(const char *member) {
    const char *name = member;
    for (; *member != '\0'; member++) {
        name = *member == '.' ? member + 1 : name;
    }
    return name;
}

/* The place of a member, perhaps one within another: FIELD_AT(NAP_PORT_DATA, def_data.dlc_name). */
#define FIELD_AT(record, member)                                                                   \
    (records::Place{records::last_name(#member), offsetof(record, member),                         \
                    sizeof(std::declval<record>().member)})

/* The bytes from one place up to another, and those from a place to the end of its record. */
constexpr Place up_to(const Place &first, const Place &behind) {
    return {nullptr, first.offset, static_cast<NB_USHORT>(behind.offset - first.offset)};
}
template <class Record> constexpr Place rest_of(const Place &first) {
    return {nullptr, first.offset, static_cast<NB_USHORT>(sizeof(Record) - first.offset)};
}

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

/* What a number counts or measures. */
enum class Unit : NB_UCHAR {
    Plain,
    Seconds,
    Milliseconds,
    Hundredths, /* of a second */
    Time,       /* seconds since 1970 */
    Bytes,
    Frames,
    Messages,
    BitsPerSecond,
    KilobitsPerSecond,
    Sessions,
    Links,
    Ports,
    Lus,
    Users,
};

/* A word for a value, as texts and commands have it. */
struct FieldWord {
    const char *text;
    NB_ULONG value;
    NB_USHORT message = 0; /* number of the catalogue's text for it, for windows; 0: none */
};

constexpr NB_UCHAR FIELD_REQUIRED = 1;  /* a name or text that must not be blank */
constexpr NB_UCHAR FIELD_KEY = 2;       /* part of the key: cannot be changed */
constexpr NB_UCHAR FIELD_SECRET = 4;    /* kept, never answered; blank in a change: as it was */
constexpr NB_UCHAR FIELD_COUNTS = 8;    /* one more for each resource of a range */
constexpr NB_UCHAR FIELD_COMPARED = 16; /* a secret that nobody has to be told: a hash is kept */

/* One field of a record.  fieldrows.h has a short maker for each kind. */
struct FieldRow {
    const char *name = nullptr; /* in texts and commands */
    FieldKind kind = FieldKind::Text;
    NB_UCHAR use = 0;     /* FIELD_ bits */
    NB_USHORT offset = 0; /* in the record: a list entry, an item of it, a settings block */
    NB_USHORT width = 0;  /* bytes */
    NB_ULONG low = 0;     /* Number: the values that it may have */
    NB_ULONG high = 0;
    Unit unit = Unit::Plain;
    std::span<const FieldWord> words = {}; /* Word: all there are */
    const char *initial = nullptr;         /* as text, of a new resource; null: blank or 0 */

    constexpr bool has(NB_UCHAR bit) const { return (use & bit) != 0; }

    /* The same row, but for ... */
    constexpr FieldRow named(const char *other) const {
        FieldRow row = *this;
        row.name = other;
        return row;
    }
    constexpr FieldRow used(NB_UCHAR bit) const {
        FieldRow row = *this;
        row.use |= bit;
        return row;
    }
    constexpr FieldRow in(Unit measure) const {
        FieldRow row = *this;
        row.unit = measure;
        return row;
    }
    constexpr FieldRow required() const { return used(FIELD_REQUIRED); }
    constexpr FieldRow secret() const { return used(FIELD_SECRET); }
    constexpr FieldRow compared() const { return used(FIELD_SECRET | FIELD_COMPARED); }
    constexpr FieldRow counts() const { return used(FIELD_COUNTS); }
    constexpr FieldRow key() const { return used(FIELD_KEY); }
    constexpr FieldRow key(const char *other) const { return named(other).key(); }
};

using FieldTable = std::span<const FieldRow>;

/* The row of that name, or null. */
constexpr const FieldRow *find_field(FieldTable table, std::string_view name) {
    for (const FieldRow &row : table) {
        if (name == row.name) {
            return &row;
        }
    }
    return nullptr;
}

enum class KeyKind : NB_UCHAR {
    Unused, /* no more parts */
    Local,  /* local code page, blank padded (NUL padding counts as blanks) */
    Ebcdic, /* EBCDIC, blank padded */
    Number, /* 16 bits in host order; `width` is 2 */
};

struct KeyPart {
    KeyKind kind = KeyKind::Unused;
    NB_UCHAR width = 0; /* bytes */
};

constexpr size_t MAX_KEY_PARTS = 4;
using KeyParts = std::array<KeyPart, MAX_KEY_PARTS>;

/* Bytes of a key with these parts. */
constexpr size_t key_length(const KeyParts &parts) {
    size_t length = 0;
    for (const KeyPart &part : parts) {
        length += part.width;
    }
    return length;
}

/* What a field is as a part of a key. */
constexpr KeyPart key_part(const FieldRow &row) {
    const bool local = row.kind == FieldKind::NameLocal || row.kind == FieldKind::Text;
    const bool name = row.kind <= FieldKind::NameEbcdic;
    return {local  ? KeyKind::Local
            : name ? KeyKind::Ebcdic
                   : KeyKind::Number,
            static_cast<NB_UCHAR>(row.width)};
}

/* The key is made of the fields that are marked so, in their order. */
constexpr KeyParts key_of(FieldTable fields) {
    KeyParts parts = {};
    size_t count = 0;
    for (const FieldRow &row : fields) {
        if (row.has(FIELD_KEY)) {
            parts.at(count++) = key_part(row);
        }
    }
    return parts;
}

/* A list verb that shows the resources, or those whose entry has `selects` at `selector` (0: all),
 * and the indication that reports their changes (0: none). */
struct ListRow {
    NB_USHORT list = 0;
    NB_USHORT indication = 0;
    NB_USHORT selector = 0;
    NB_UCHAR selects = 0;
};

constexpr size_t MAX_LISTS = 2;

/* Where a kind of resource is kept. */
enum class Scope : NB_UCHAR {
    Node,   /* a node */
    TpLoad, /* a node, reached through its TP load file */
    Domain, /* the domain, reached through its configuration file */
};

/* Items that stand one behind the other within an entry, as the sessions of a user. */
struct Nested {
    const char *name = nullptr; /* of one; null: the entry has no items */
    Place count;                /* of their number, 1 or 2 bytes */
    NB_USHORT offset = 0;       /* of the first */
    NB_USHORT size = 0;         /* of one */
    NB_ULONG least = 0;
    NB_ULONG most = 0;
    bool cuts = false; /* the entry of a list ends behind the last one */
    FieldTable fields; /* offsets within an item; the first is its name */
};

constexpr NB_USHORT KEY_OFFSET = 2;    /* of the key in every list entry */
constexpr NB_USHORT KEY_IN_BLOCK = 12; /* of the key in every define and name block */

struct Schema {
    const char *name = nullptr; /* in texts and commands */
    ListRow lists[MAX_LISTS] = {};
    NB_USHORT define = 0, remove = 0, start = 0, stop = 0; /* opcodes, 0: none */
    bool shares_verbs = false; /* start and stop are another schema's, too: names tell them apart */
    bool owned = false;        /* the first part of the key is the owner's name: lists by owner */
    NB_USHORT entry_size = 0;
    NB_USHORT define_size = 0; /* of the define block */
    Place def = {};            /* the definition in the entry; width 0: the key is all of it */
    NB_USHORT def_in_define = 0;
    Place det = {}; /* the status in the entry: what indications carry */
    KeyParts key = {};
    FieldTable fields = {}; /* of key and definition */
    FieldTable status = {}; /* what the node answers: never defined or checked */
    Nested nested = {};
    Scope scope = Scope::Node;
    bool untold = false;       /* made by the node itself: no section of domain texts */
    FieldTable simulated = {}; /* in domain texts: offsets in the Behaviour (behaviour.h) */

    constexpr size_t key_size() const { return key_length(key); }
    constexpr size_t owner_size() const { return owned ? key[0].width : 0; }
    /* What an entry takes in a list, a multiple of 4: the longest, and the shortest. */
    constexpr size_t overlay_size() const { return (size_t{entry_size} + 3) & ~size_t{3}; }
    constexpr size_t least_size() const { return nested.cuts ? nested.offset : entry_size; }
};

/* The field of that name in one of two tables.  An error of the compiler when there is none.  No
 * address is compared with null here: a compiler that checks for undefined behaviour does not take
 * that for constant. */
consteval const FieldRow &named_field(FieldTable fields, FieldTable status, std::string_view name) {
    for (const FieldTable table : {fields, status}) {
        for (const FieldRow &row : table) {
            if (name == row.name) {
                return row;
            }
        }
    }
    throw "there is no field of that name";
}
consteval const FieldRow &field(const Schema &schema, std::string_view name) {
    return named_field(schema.fields, schema.status, name);
}

/* The same of an item within the entry. */
consteval const FieldRow &item_field(const Schema &schema, std::string_view name) {
    return named_field(schema.nested.fields, {}, name);
}

} // namespace records

#endif
