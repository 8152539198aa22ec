/* Fields of dialogs: how the bytes of a record read as text, and how what was entered becomes those
 * bytes again.  No widgets here: form.h puts the fields on the screen.
 *
 * A dialog declares its fields as a constexpr table of VGA_FIELD, in the order in which they are
 * checked.  What a field is (kind, place, bounds, words) says its row in the schema of the resource
 * (schema.h); the table adds the widget, the texts and what is peculiar.  Texts are in the locale's
 * character set. */
#ifndef FORMFIELDS_H
#define FORMFIELDS_H

#include "schema.h"

/* What is special about a field: bits of `uses`. */
#define VGA_FIELD_SHOWN 1 /* for the eye only: never entered, checked or collected */
#define VGA_FIELD_KEY   2 /* cleared for the next entry of a dialog that adds one after another */

/* A qualified name may have a field for each half. */
enum VGA_FIELD_PART : NB_UCHAR {
    VGA_FIELD_WHOLE,
    VGA_FIELD_NETWORK, /* the part in front of the period; stands before the other in the table */
    VGA_FIELD_NAME,    /* the part behind it */
};

/* The field is of use only while another one, a flag or a word, has this value. */
struct VGA_FIELD_WHEN {
    NB_SHORT field = -1;       /* its place in the table; -1: always of use */
    const NB_CHAR *is = "yes"; /* or the word, as the schema has it */
};

/* By the kind of its row a field is a toggle button (Flag), an option menu (Word), or a text.  The
 * items of a menu are named after the menu and the word: "*modedLevelRle" for the word "rle" of
 * "*modedLevel"; a word without an item is not offered. */
struct VGA_FIELD {
    const NB_CHAR *widget = nullptr; /* "*name" in the UID file */
    const records::FieldRow *row = nullptr;
    NB_USHORT base = 0; /* in the dialog's data: where the row's record begins */
    VGA_FIELD_PART part = VGA_FIELD_WHOLE;
    NB_UCHAR uses = 0;

    /* What the highest is by the fields before this one; null: the row's bound, which stands either
     * way. */
    int64_t (*at_most)(const NB_VOID *data) = nullptr;

    /* Messages.  `bad` is formatted with the two bounds. */
    NB_USHORT empty = 0; /* nothing was entered; 0: that is allowed, and a number is then 0 */
    NB_USHORT bad = 0;   /* what was entered does not do */
    NB_USHORT hint = 0;  /* says range and unit (hints.h); 0: none */

    /* A check of its own, of a value that is good so far and stands in `data` already: a message
     * without arguments, or 0.  `record` is what the dialog edits; null for a new one. */
    NB_USHORT (*check)(const NB_VOID *record, const NB_VOID *data) = nullptr;

    VGA_FIELD_WHEN when = {};
    NB_USHORT reason = 0; /* message: why the field is off then; 0: none */

    constexpr bool is(records::FieldKind kind) const { return row->kind == kind; }
    constexpr NB_USHORT offset() const { return static_cast<NB_USHORT>(base + row->offset); }
};

/* The text of every field fits. */
#define VGA_FIELD_TEXT_SIZE 600

/* The highest value that a number may have now; never below its lowest. */
int64_t vga_field_high(const VGA_FIELD &field, const NB_VOID *data);

/* Writes the field as text into VGA_FIELD_TEXT_SIZE bytes: without padding, and an empty text for
 * blanks, for hexadecimal zeroes and for the IP address 0.0.0.0.  A flag is "yes" or "no", a word
 * is that of the schema. */
NB_VOID vga_field_to_text(const VGA_FIELD &field, const NB_VOID *data, NB_CHAR *text);

/* The longest text that can be entered, in characters. */
NB_USHORT vga_field_length(const VGA_FIELD &field);

/* Reads a text into the field's bytes.  Blanks around it do not count.  Returns 0, or the message
 * (`empty`, `bad` or that of the field's own check) and leaves the bytes as they were. */
NB_USHORT vga_field_from_text(const VGA_FIELD &field, const NB_CHAR *text, const NB_VOID *record,
                              NB_VOID *data);

#endif
