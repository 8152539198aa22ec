/* Fields of dialogs: how the bytes of a record read as text, and how what was entered becomes those
 * bytes again.  No widgets here: vgadgfrm.h puts the fields on the screen.
 *
 * A dialog declares its fields as a constexpr table of VGA_FIELD, in the order in which they are
 * checked.  A field's place is an offset in a plain struct, the dialog's data, which may be a
 * packed record: bytes are copied, never referred to.  Texts are in the locale's character set. */
#ifndef VGADGFLD_H
#define VGADGFLD_H

#include "nbtypes.h"

enum VGA_FIELD_KIND : NB_UCHAR {
    VGA_FIELD_NUMBER,     /* unsigned, of 1, 2 or 4 bytes; entered in decimal */
    VGA_FIELD_SIGNED,     /* the same with a sign */
    VGA_FIELD_TEXT,       /* local characters, ended by a NUL within the width */
    VGA_FIELD_LOCAL,      /* a local name, padded with blanks */
    VGA_FIELD_EBCDIC,     /* a name of type A in EBCDIC, padded with blanks */
    VGA_FIELD_FQ_NAME,    /* 17 bytes in EBCDIC: network identifier, period, name */
    VGA_FIELD_FQ_NETWORK, /* the part in front of the period of such 17 bytes */
    VGA_FIELD_FQ_LOCAL,   /* the part behind it */
    VGA_FIELD_HEX,        /* any bytes; two digits each, and all of them or none */
    VGA_FIELD_IP,         /* NB_IP_ADDRESS; dotted decimal */
    VGA_FIELD_FLAG,       /* a toggle button: 1 byte, 0 or 1 */
    VGA_FIELD_CHOICE,     /* an option menu: a number with an item for each value */
};

/* What is special about a field: bits of `uses`. */
#define VGA_FIELD_SHOWN 1 /* for the eye only: never entered, checked or collected */
#define VGA_FIELD_KEY   2 /* cleared for the next entry of a dialog that adds one after another */

/* An item of an option menu. */
struct VGA_CHOICE {
    const NB_CHAR *widget; /* "*name" of the item's push button */
    int64_t value;
};

/* The field is of use only while another one, a flag or a choice, has this value. */
struct VGA_FIELD_WHEN {
    NB_SHORT field = -1; /* its place in the table; -1: always of use */
    int64_t value = 1;
};

struct VGA_FIELD {
    const NB_CHAR *widget = nullptr; /* "*name" in the UID file */
    VGA_FIELD_KIND kind = VGA_FIELD_TEXT;
    NB_UCHAR uses = 0;
    NB_USHORT offset = 0; /* in the dialog's data: VGA_IN() gives both */
    NB_USHORT width = 0;

    /* The values that a number may have. */
    int64_t low = 0;
    int64_t high = 0xFFFFFFFF;
    /* What the highest is by the fields before this one; null: `high`, which stands either way. */
    int64_t (*at_most)(const NB_VOID *data) = nullptr;

    /* Messages.  `bad` is formatted with the two bounds. */
    NB_USHORT empty = 0; /* nothing was entered; 0: that is allowed, and a number is then 0 */
    NB_USHORT bad = 0;   /* what was entered does not do */
    NB_USHORT hint = 0;  /* says range and unit (vgahint.h); 0: none */

    /* A check of its own, of a value that is good so far and stands in `data` already: a message
     * without arguments, or 0.  `record` is what the dialog edits; null for a new one. */
    NB_USHORT (*check)(const NB_VOID *record, const NB_VOID *data) = nullptr;

    const VGA_CHOICE *choices = nullptr;
    NB_USHORT choice_count = 0;
    VGA_FIELD_WHEN when = {};
    NB_USHORT reason = 0; /* message: why the field is off then; 0: none */
};

/* Members of VGA_FIELD, for designated initializers. */
#define VGA_IN(record, member)                                                                     \
    .offset = offsetof(record, member), .width = sizeof((static_cast<record *>(nullptr))->member)

/* The text of every field fits. */
#define VGA_FIELD_TEXT_SIZE 600

/* The value of a number, a flag or a choice. */
int64_t vga_field_value(const VGA_FIELD &field, const NB_VOID *data);
NB_VOID vga_set_field_value(const VGA_FIELD &field, NB_VOID *data, int64_t value);

/* The highest value that a number may have now; never below its lowest. */
int64_t vga_field_high(const VGA_FIELD &field, const NB_VOID *data);

/* Writes the field as text into VGA_FIELD_TEXT_SIZE bytes: without padding, and an empty text for
 * blanks, for hexadecimal zeroes and for the IP address 0.0.0.0. */
NB_VOID vga_field_to_text(const VGA_FIELD &field, const NB_VOID *data, NB_CHAR *text);

/* The longest text that can be entered, in characters. */
NB_USHORT vga_field_length(const VGA_FIELD &field);

/* Reads a text into the field's bytes.  Blanks at its end do not count.  Returns 0, or the message
 * (`empty`, `bad` or that of the field's own check) and leaves the bytes as they were. */
NB_USHORT vga_field_from_text(const VGA_FIELD &field, const NB_CHAR *text, const NB_VOID *record,
                              NB_VOID *data);

#endif
