/* Fields of dialogs: how the bytes of a record read as text, and how what was entered becomes those
 * bytes again.  No widgets here: form.h puts the fields on the screen.
 *
 * The table of a dialog's fields is made of its description (resources/dialogs).  What a field is
 * (kind, place, bounds, words) says its row in the schema of the resource (schema.h); the table
 * adds the widget and what is peculiar.  Texts are in the locale's character set. */
#ifndef FORMFIELDS_H
#define FORMFIELDS_H

#include "formfault.h"
#include "schema.h"
#include <functional>

struct VGA_FORM;
struct VGA_CHOICE;

/* What is special about a field: bits of `uses`. */
#define VGA_FIELD_SHOWN      0x001 /* for the eye only: never entered, checked or collected */
#define VGA_FIELD_KEY        0x002 /* names the record: cleared for the next entry */
#define VGA_FIELD_NEW        0x004 /* only a new record can be given it */
#define VGA_FIELD_INVERTED   0x008 /* the toggle is set when the flag is not */
#define VGA_FIELD_ZERO_EMPTY 0x010 /* 0 reads as nothing, and nothing means 0 */
#define VGA_FIELD_REQUIRED   0x020 /* must not be empty */
#define VGA_FIELD_FREE       0x040 /* what is not among the choices will do, too */
#define VGA_FIELD_HINT       0x080 /* its description has more to say: the literal <widget>Hint */

/* A qualified name may have a field for each half. */
enum VGA_FIELD_PART : NB_UCHAR {
    VGA_FIELD_WHOLE,
    VGA_FIELD_NETWORK, /* the part in front of the period; stands before the other in the table */
    VGA_FIELD_NAME,    /* the part behind it */
};

/* A way of writing that the kind alone does not say. */
enum VGA_FIELD_STYLE : NB_UCHAR {
    VGA_STYLE_PLAIN,
    VGA_STYLE_NODE_ID, /* 3 digits of block number and 5 of PU identifier: "071 00003" */
    VGA_STYLE_MAC,     /* a LAN address: "40:00:00:00:00:01" */
    VGA_STYLE_MASK,    /* the mask of an IP address: no one bit behind a zero */
    VGA_STYLE_TP_NAME, /* of a transaction program: no blanks; one that is no text as 0x and bytes
                        */
};

/* The highest value that a number may have by the fields before it.  `bad` (0: the field's) and
 * `told` (0: the same) are the message and the bound that a higher one is refused with. */
struct VGA_BOUND {
    int64_t high;
    NB_USHORT bad = 0;
    int64_t told = 0;
};

enum VGA_WHEN : NB_UCHAR {
    VGA_WHEN_IS,     /* the field is a flag or word of this value */
    VGA_WHEN_IS_NOT, /* of another */
    VGA_WHEN_ABOVE,  /* a number above it */
    VGA_WHEN_NEW,    /* the record is a new one */
};

/* A field is of use only while all its conditions hold. */
struct VGA_CONDITION {
    NB_SHORT field = -1; /* its place in the table */
    VGA_WHEN test = VGA_WHEN_IS;
    const NB_CHAR *value = ""; /* "yes" and "no" of a flag, the schema's word, or a number */
};

/* Its functions are called at every change of a field, also when the record or its owner is gone:
 * they read, and have no effect but their result.
 *
 * By the kind of its row a field is a toggle button (Flag), an option menu (Word), or a text.  The
 * items of a menu are named after the menu and the word: "*modedLevelRle" for the word "rle" of
 * "*modedLevel"; a word without an item is not offered. */
struct VGA_FIELD {
    const NB_CHAR *widget = nullptr;        /* "*name" in the UID file */
    NB_USHORT member = 0;                   /* of the descriptor: where the widget is kept */
    NB_USHORT button = 0;                   /* the same of its "..."; 0: it has none */
    const records::FieldRow *row = nullptr; /* what it is */
    NB_USHORT base = 0; /* in the dialog's data: where the row's record begins */
    VGA_FIELD_PART part = VGA_FIELD_WHOLE;
    NB_USHORT uses = 0;
    VGA_FIELD_STYLE style = VGA_STYLE_PLAIN;
    NB_ULONG low = 0, high = 0; /* of a number: as the row has them, or narrower */
    NB_UCHAR page = 0;          /* from 0 */

    VGA_BOUND (*at_most)(const NB_VOID *data) = nullptr;

    /* A check of its own, of a value that is good so far and stands in `data` already. */
    VGA_FAULT (*check)(const VGA_FORM *form, const NB_VOID *data) = nullptr;

    /* What can be chosen, asked each time. */
    std::vector<VGA_CHOICE> (*choices)(const VGA_FORM *form) = nullptr;

    /* 1: must not be empty now. */
    NB_USHORT (*is_required)(const VGA_FORM *form, const NB_VOID *data) = nullptr;

    /* Messages of its own in place of the common ones.  They get the two bounds as %1 and %2. */
    NB_USHORT empty = 0;   /* nothing was entered; alone it makes the field a required one */
    NB_USHORT bad = 0;     /* what was entered does not do */
    NB_USHORT unknown = 0; /* it is none of the choices */

    std::span<const VGA_CONDITION> when = {};

    constexpr bool is(records::FieldKind kind) const { return row->kind == kind; }
    constexpr bool has(NB_USHORT bit) const { return (uses & bit) != 0; }
    constexpr bool is_secret() const { return row->has(records::FIELD_SECRET); }
    constexpr NB_USHORT offset() const { return static_cast<NB_USHORT>(base + row->offset); }
};

/* The text of every field fits. */
#define VGA_FIELD_TEXT_SIZE 600

/* The highest value that a number may have now; never below its lowest. */
int64_t vga_field_high(const VGA_FIELD &field, const NB_VOID *data);

/* Writes the field as text into VGA_FIELD_TEXT_SIZE bytes: without padding, and an empty text for
 * blanks, for hexadecimal zeroes, for the IP address 0.0.0.0, for passwords, and for a 0 that reads
 * as nothing.  A flag is "yes" or "no" as the toggle is set, a word is that of the schema.  A time
 * is written as the locale does. */
NB_VOID vga_field_to_text(const VGA_FIELD &field, const NB_VOID *data, NB_CHAR *text);

/* The longest text that can be entered, in characters. */
NB_USHORT vga_field_length(const VGA_FIELD &field);

/* Reads a text into the field's bytes.  Blanks around it do not count.  `label` is what messages
 * call the field, `required` says that it must not be empty now.  Returns what is wrong; the bytes
 * are as they were then.  An empty text of a password is none: the bytes stay. */
VGA_FAULT vga_field_from_text(const VGA_FIELD &field, const std::string &label, const NB_CHAR *text,
                              NB_USHORT required, NB_VOID *data);

/* A word or flag as windows show it; any other text as it is. */
std::string vga_shown_word(const records::FieldRow &row, const std::string &text);

/* What the field takes, as text for a hint: "From 1 to 63."; empty where there is nothing to say.
 * `unit` is what its number counts, may be empty. */
std::string vga_field_range(const VGA_FIELD &field, const NB_VOID *data, const std::string &unit);

#endif
