/* The columns of lines: a line type declares what stands in each of its columns, and one function
 * writes the text of every such line, and of the title over it, from that declaration.
 *
 * A table of columns belongs to a list, not to a level: its stops are columns of the whole list,
 * and the writer takes off what a line is indented by, so that all lines of a list stand under each
 * other.  Texts are written whole; what does not fit its column the viewer cuts when it draws.
 * What comes from a node is anybody's text: control characters, bytes that are no characters of the
 * locale and what looks like a column stop are made harmless. */
#ifndef LINECOLUMNS_H
#define LINECOLUMNS_H

#include "graphics.h"
#include "linelayout.h"
#include "messages.h"
#include "model.h"
#include "schemas.h"
#include <cstring>
#include <span>
#include <type_traits>

#define VGA_CELL_SIZE 257 /* bytes of a column's text, with its terminator */

/* Where a column begins, its title, and what stands in it: a field of the line's entry,
 *
 *     {.stop = 26, .field = &records::field(records::port, "port_state"), .other = ...},
 *
 * or what a function of the record writes.  Words are shown by the texts of their messages. */
struct VGA_LINE_COLUMN {
    NB_USHORT stop = 0;    /* column of the list where it begins; 0 for the first on any level */
    NB_USHORT heading = 0; /* message */
    const records::FieldRow *field = nullptr;

    /* Messages that stand for values: for a blank text or the number 0, and for another number that
     * is no word of the field.  Without them a text is blank, a number is itself, and what should
     * be a word is unknown. */
    NB_USHORT none = 0, other = 0;
    NB_USHORT label = 0; /* a message with the text as %1, where it is not a message; 0: alone */

    /* Writes the text, terminated, into VGA_CELL_SIZE bytes.  `record` is the line's. */
    NB_VOID (*write)(const NB_VOID *record, NB_CHAR *text) = nullptr;
};

/* For `write`: a function NB_VOID (const Record &, NB_CHAR *text). */
template <class Record> Record *vga_written_record(NB_VOID (*)(const Record &, NB_CHAR *));
template <auto Write> NB_VOID vga_written(const NB_VOID *record, NB_CHAR *text) {
    using RECORD = std::remove_pointer_t<decltype(vga_written_record(Write))>;
    Write(*static_cast<const RECORD *>(record), text);
}

/* Writes the line of a viewer type, or a title over such lines, into VGA_VIEWER_TEXT_BUFFER bytes
 * and returns its length, at most VGA_VIEWER_MAX_TEXT_LENGTH.  `entry` is the record's data block,
 * which must hold every field that the columns name. */
NB_USHORT vga_write_line(NB_USHORT type, std::span<const VGA_LINE_COLUMN> columns,
                         const NB_VOID *record, const NB_VOID *entry, NB_CHAR *buffer);
NB_USHORT vga_write_title(NB_USHORT type, std::span<const VGA_LINE_COLUMN> columns,
                          NB_CHAR *buffer);

/* Parts of texts, for functions that write a column. */

/* The field of a column, in an entry that begins at `entry`.  `text` has VGA_CELL_SIZE bytes. */
NB_VOID vga_write_field(const VGA_LINE_COLUMN &column, const NB_VOID *entry, NB_CHAR *text);

/* Copies a text with what is harmful in it made harmless, cut to VGA_CELL_SIZE bytes. */
NB_VOID vga_write_harmless(const NB_CHAR *from, NB_CHAR *text);

/* The message for a value; `otherwise` for one that is none of the words, or has no message. */
NB_USHORT vga_word_message(std::span<const records::FieldWord> words, NB_ULONG value,
                           NB_USHORT otherwise);

/* A message without arguments. */
NB_VOID vga_write_word(NB_USHORT message, NB_CHAR *text);

/* Whether an LU is in session, or has only the session to its host's control point. */
NB_VOID vga_write_lu_status(bool in_session, bool to_host, NB_CHAR *text);

/* A number, alone or in the words of a message with the number as %1. */
NB_VOID vga_write_number(NB_ULONG value, NB_USHORT label, NB_CHAR *text);

/* A transaction program's name of 64 bytes: as text where it is one, else in hexadecimal. */
NB_VOID vga_write_tp_name(const NB_UCHAR *tp_name, NB_CHAR *text);

/* The items in an entry that ends behind the last of them: what its count says, but no more than it
 * has room for.  The last two arguments are VGA_NESTED. */
template <class Item>
NB_ULONG vga_count_items(const NB_VOID *entry, size_t offset, NB_USHORT count) {
    NB_USHORT size;
    memcpy(&size, entry, sizeof(size));
    size_t room = size > offset ? (size - offset) / sizeof(Item) : 0;
    return static_cast<NB_ULONG>(room < count ? room : count);
}

/* Defines the text function of a line and what stands over its columns from <line>_columns, and the
 * text function of a title. */
#define VGA_LINE_TEXT(line, type, record)                                                          \
    VGA_HEADINGS(line, type)                                                                       \
    NB_USHORT vga_create_##line##_viewer_text(NB_VOID *data, NB_CHAR *buffer) {                    \
        return vga_write_line(type, line##_columns, data, static_cast<record *>(data)->vcb,        \
                              buffer);                                                             \
    }
#define VGA_TITLE_TEXT(function, type, columns)                                                    \
    NB_USHORT function(NB_VOID *, NB_CHAR *buffer) {                                               \
        return vga_write_title(type, columns, buffer);                                             \
    }

/* Defines what stands over the columns of lines, from <line>_columns. */
#define VGA_HEADINGS(line, type) VGA_TITLE_TEXT(vga_create_##line##_headings, type, line##_columns)

/* Defines the icon function of a line whose icon never changes. */
#define VGA_SAME_ICON(line, icon)                                                                  \
    NB_USHORT vga_choose_##line##_viewer_icon(NB_VOID *) {                                         \
        return icon;                                                                               \
    }

#endif
