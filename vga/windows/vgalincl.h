/* The columns of lines: a line type declares what stands in each of its columns, and one function
 * writes the text of every such line, and of the title over it, from that declaration.
 *
 * A table of columns belongs to a list, not to a level: its stops are columns of the whole list,
 * and the writer takes off what a line is indented by, so that all lines of a list stand under each
 * other.  A text fills its column up to one blank before the next and is cut there.
 * What comes from a node is anybody's text: control characters, bytes that are no characters of the
 * locale and what looks like a column stop are made harmless. */
#ifndef VGALINCL_H
#define VGALINCL_H

#include "linelayout.h"
#include "vgagraph.h"
#include "vgamodel.h"
#include "vgamsgs.h"
#include <cstring>
#include <span>
#include <type_traits>

/* A value of a field and what stands for it: a message, or an icon. */
struct VGA_WORD {
    NB_ULONG value;
    NB_USHORT meaning;
};
NB_USHORT vga_find_word(std::span<const VGA_WORD> words, NB_ULONG value, NB_USHORT otherwise);

/* NAP_NOT_ACTIVE and the like in words; VGA_MSG_UNKNOWN_STATUS for what is none of them. */
inline constexpr VGA_WORD gvga_status_words[] = {
    {NAP_NOT_ACTIVE, VGA_MSG_INACTIVE}, {NAP_PENDING_ACTIVE, VGA_MSG_STARTING},
    {NAP_ACTIVE, VGA_MSG_ACTIVE},       {NAP_PENDING_INACTIVE, VGA_MSG_STOPPING},
    {NAP_RESETTING, VGA_MSG_RESETTING}, {NAP_SSCP_ACTIVE, VGA_MSG_SSCP},
    {NAP_IN_SESSION, VGA_MSG_IN_USE},
};

/* 0 no, 1 yes, 2 with a certificate. */
inline constexpr VGA_WORD gvga_ssl_words[] = {
    {0, VGA_MSG_NO}, {1, VGA_MSG_YES}, {2, VGA_MSG_CERTIFICATE}};

#define VGA_CELL_SIZE 257 /* bytes of a column's text, with its terminator */

enum VGA_CELL_KIND : NB_UCHAR {
    VGA_CELL_EBCDIC, /* a name or text in EBCDIC, padded with EBCDIC blanks */
    VGA_CELL_LOCAL,  /* text in the local code page that ends at its first NUL, perhaps padded */
    VGA_CELL_NUMBER, /* unsigned, 1, 2 or 4 bytes */
    VGA_CELL_WRITTEN /* by a function */
};

/* Where the text of a column comes from. */
struct VGA_CELL_SOURCE {
    VGA_CELL_KIND kind;
    NB_USHORT offset, width; /* of the field, bytes in the list entry */
    /* A message for a text that is blank or a number that is none of `words`; 0: no text, the
     * number itself. */
    NB_USHORT otherwise;
    NB_USHORT label; /* a message with the text as %1, where it is not a message; 0: alone */
    std::span<const VGA_WORD> words; /* for numbers */
    /* Writes the text, terminated, into VGA_CELL_SIZE bytes.  `record` is the line's. */
    NB_VOID (*write)(const NB_VOID *record, NB_CHAR *text);

    constexpr VGA_CELL_SOURCE labelled(NB_USHORT message) const {
        VGA_CELL_SOURCE source = *this;
        source.label = message;
        return source;
    }
};

struct VGA_LINE_COLUMN {
    NB_USHORT stop;    /* column of the list where it begins; 0 for the first on any level */
    NB_USHORT heading; /* message; 0: none */
    VGA_CELL_SOURCE source;
};

/* `type` and `member` of a field, for the functions below. */
#define VGA_FIELD(type, member)                                                                    \
    static_cast<NB_USHORT>(offsetof(type, member)),                                                \
        static_cast<NB_USHORT>(sizeof(static_cast<type *>(nullptr)->member))

constexpr VGA_CELL_SOURCE vga_ebcdic_cell(NB_USHORT offset, NB_USHORT width,
                                          NB_USHORT otherwise = 0) {
    return {VGA_CELL_EBCDIC, offset, width, otherwise, 0, {}, nullptr};
}
constexpr VGA_CELL_SOURCE vga_local_cell(NB_USHORT offset, NB_USHORT width,
                                         NB_USHORT otherwise = 0) {
    return {VGA_CELL_LOCAL, offset, width, otherwise, 0, {}, nullptr};
}
constexpr VGA_CELL_SOURCE vga_number_cell(NB_USHORT offset, NB_USHORT width) {
    return {VGA_CELL_NUMBER, offset, width, 0, 0, {}, nullptr};
}
constexpr VGA_CELL_SOURCE vga_word_cell(NB_USHORT offset, NB_USHORT width,
                                        std::span<const VGA_WORD> words, NB_USHORT otherwise = 0) {
    return {VGA_CELL_NUMBER, offset, width, otherwise, 0, words, nullptr};
}

/* A column that `Write`, an NB_VOID (const Record &, NB_CHAR *text), writes. */
template <class Record> Record *vga_written_record(NB_VOID (*)(const Record &, NB_CHAR *));
template <auto Write> constexpr VGA_CELL_SOURCE vga_written_cell(NB_VOID) {
    using RECORD = std::remove_pointer_t<decltype(vga_written_record(Write))>;
    return {VGA_CELL_WRITTEN, 0, 0, 0, 0, {}, [](const NB_VOID *record, NB_CHAR *text) {
                Write(*static_cast<const RECORD *>(record), text);
            }};
}

/* Writes the line of a viewer type, or a title over such lines, into VGA_VIEWER_TEXT_BUFFER bytes
 * and returns its length, at most VGA_VIEWER_MAX_TEXT_LENGTH.  `entry` is the record's data block,
 * which must hold every field that the columns name. */
NB_USHORT vga_write_line(NB_USHORT type, std::span<const VGA_LINE_COLUMN> columns,
                         const NB_VOID *record, const NB_VOID *entry, NB_CHAR *buffer);
NB_USHORT vga_write_title(NB_USHORT type, std::span<const VGA_LINE_COLUMN> columns,
                          NB_CHAR *buffer);

/* Parts of texts, for functions that write a column. */

/* A field as the cells above show it.  `text` has VGA_CELL_SIZE bytes. */
NB_VOID vga_write_field(const VGA_CELL_SOURCE &source, const NB_VOID *entry, NB_CHAR *text);

/* A message without arguments. */
NB_VOID vga_write_word(NB_USHORT message, NB_CHAR *text);

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

/* Defines the text function of a line type, or of a title over lines. */
#define VGA_LINE_TEXT(function, type, record, columns)                                             \
    NB_USHORT function(NB_VOID *data, NB_CHAR *buffer) {                                           \
        return vga_write_line(type, columns, data, static_cast<record *>(data)->vcb, buffer);      \
    }
#define VGA_TITLE_TEXT(function, type, columns)                                                    \
    NB_USHORT function(NB_VOID *, NB_CHAR *buffer) {                                               \
        return vga_write_title(type, columns, buffer);                                             \
    }

/* Defines the icon function of a line type whose icon never changes. */
#define VGA_SAME_ICON(function, icon)                                                              \
    NB_USHORT function(NB_VOID *) {                                                                \
        return icon;                                                                               \
    }

#endif
