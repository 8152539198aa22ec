#include "linecolumns.h"
#include "fieldtext.h"
#include "linetable.h"
#include "vgautil.h"
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <new>

namespace {

/* Each level is indented by eight characters, after the icons that all levels have. */
constexpr NB_USHORT indent_columns = 8;

/* A text of at most VGA_VIEWER_MAX_TEXT_LENGTH bytes.  A piece that does not fit whole stays out,
 * and so does all that follows. */
class LINE {
public:
    explicit LINE(NB_CHAR *text) : buffer(text) { buffer[0] = '\0'; }

    NB_VOID put(const NB_CHAR *text, size_t bytes) {
        full = full || used + bytes > VGA_VIEWER_MAX_TEXT_LENGTH;
        if (!full) {
            memcpy(buffer + used, text, bytes);
            used += bytes;
            buffer[used] = '\0';
        }
    }
    size_t left() const { return VGA_VIEWER_MAX_TEXT_LENGTH - used; }
    NB_USHORT length() const { return static_cast<NB_USHORT>(used); }

private:
    NB_CHAR *buffer;
    size_t used = 0;
    bool full = false;
};

/* Puts the text of a column, harmless, in at most `room` bytes. */
NB_VOID put_cell(LINE &line, const NB_CHAR *text, size_t room) {
    size_t left = strlen(text);
    mbstate_t state{};
    while (left > 0) {
        wchar_t character = L'\0';
        size_t bytes = mbrtowc(&character, text, left, &state);
        const NB_CHAR *shown = text;
        if (bytes == 0 || bytes > left) {
            state = mbstate_t{};
            bytes = 1;
            shown = "?";
        } else if (iswcntrl(static_cast<wint_t>(character))) {
            shown = " ";
        }
        const size_t width = shown == text ? bytes : 1;
        const bool stop =
            left > 2 && text[0] == '%' && text[1] == 't' && isdigit(static_cast<NB_UCHAR>(text[2]));
        if (width + stop > room) {
            return;
        }
        line.put(shown, width);
        if (stop) {
            line.put(" ", 1);
        }
        room -= width + stop;
        text += bytes;
        left -= bytes;
    }
}

/* Writes columns whose texts `cell` gives. */
template <class Cell>
NB_USHORT write_columns(NB_USHORT type, std::span<const VGA_LINE_COLUMN> columns, NB_CHAR *buffer,
                        Cell cell) {
    constexpr size_t least_cell = 100; // bytes that every column has, however long those before it
    LINE line(buffer);
    const NB_INT indent = gvga_viewer_types[type].level * indent_columns;
    for (size_t index = 0; index < columns.size(); index++) {
        if (index > 0) {
            NB_CHAR stop[16];
            const NB_INT bytes =
                snprintf(stop, sizeof(stop), "%%t%d%%", columns[index].stop - indent);
            line.put(stop, static_cast<size_t>(bytes));
        }
        NB_CHAR text[VGA_CELL_SIZE] = {};
        cell(columns[index], text);
        put_cell(line, text, line.left() - least_cell * (columns.size() - index - 1));
    }
    return line.length();
}

/* A name or text.  Without memory there is none. */
NB_VOID copy_text(const records::FieldRow &row, const NB_UCHAR *entry,
                  NB_CHAR (&text)[VGA_CELL_SIZE]) {
    try {
        snprintf(text, sizeof(text), "%s", records::format_field(row, entry).c_str());
    } catch (const std::bad_alloc &) {
        text[0] = '\0';
    }
}

/* The text, which is no message, in the words of a label. */
NB_VOID put_in_words(const NB_CHAR *bare, NB_USHORT label, NB_CHAR *text) {
    if (label != 0 && bare[0] != '\0') {
        vga_print_msg(text, VGA_CELL_SIZE, label, "s", bare);
    } else {
        snprintf(text, VGA_CELL_SIZE, "%s", bare);
    }
}

} // namespace

NB_USHORT vga_word_message(std::span<const records::FieldWord> words, NB_ULONG value,
                           NB_USHORT otherwise) {
    for (const records::FieldWord &word : words) {
        if (word.value == value && word.message != 0) {
            return word.message;
        }
    }
    return otherwise;
}

NB_VOID vga_write_word(NB_USHORT message, NB_CHAR *text) {
    vga_print_msg(text, VGA_CELL_SIZE, message, "");
}

NB_VOID vga_write_harmless(const NB_CHAR *from, NB_CHAR *text) {
    static_assert(VGA_CELL_SIZE <= VGA_VIEWER_MAX_TEXT_LENGTH);
    NB_CHAR harmless[VGA_VIEWER_TEXT_BUFFER];
    LINE line(harmless);
    put_cell(line, from, VGA_CELL_SIZE - 1);
    v0_mb_strncpy(text, harmless, VGA_CELL_SIZE);
}

NB_VOID vga_write_field(const VGA_LINE_COLUMN &column, const NB_VOID *entry, NB_CHAR *text) {
    const records::FieldRow &row = *column.field;
    const auto *bytes = static_cast<const NB_UCHAR *>(entry);
    NB_CHAR bare[VGA_CELL_SIZE] = {};
    NB_USHORT word = 0;
    if (row.kind < records::FieldKind::Number) {
        copy_text(row, bytes, bare);
        word = bare[0] == '\0' ? column.none : NB_USHORT{0};
    } else {
        const NB_ULONG value = records::get_number(bytes + row.offset, row.width);
        word = value == 0 && column.none != 0 ? column.none
                                              : vga_word_message(row.words, value, column.other);
        if (word == 0 && row.kind == records::FieldKind::Word) {
            word = VGA_MSG_UNKNOWN_STATUS;
        }
        snprintf(bare, sizeof(bare), "%u", value);
    }
    if (word != 0) {
        vga_write_word(word, text);
    } else {
        put_in_words(bare, column.label, text);
    }
}

NB_VOID vga_write_lu_status(bool in_session, bool to_host, NB_CHAR *text) {
    vga_write_word(in_session ? records::MSG_IN_USE
                   : to_host  ? records::MSG_READY_FOR_LOGON
                              : records::MSG_INACTIVE,
                   text);
}

NB_VOID vga_write_number(NB_ULONG value, NB_USHORT label, NB_CHAR *text) {
    NB_CHAR bare[16];
    snprintf(bare, sizeof(bare), "%u", value);
    put_in_words(bare, label, text);
}

NB_VOID vga_write_tp_name(const NB_UCHAR *tp_name, NB_CHAR *text) {
    static_assert(VGA_TP_NAME_MESSAGE_SIZE <= VGA_CELL_SIZE);
    const NB_USHORT hexadecimal = vga_hex_tp_name(tp_name);
    vga_format_tp_name(text, tp_name, hexadecimal, hexadecimal);
}

NB_USHORT vga_write_line(NB_USHORT type, std::span<const VGA_LINE_COLUMN> columns,
                         const NB_VOID *record, const NB_VOID *entry, NB_CHAR *buffer) {
    return write_columns(type, columns, buffer,
                         [record, entry](const VGA_LINE_COLUMN &column, NB_CHAR *text) {
                             if (column.write != nullptr) {
                                 column.write(record, text);
                             } else {
                                 vga_write_field(column, entry, text);
                             }
                         });
}

NB_USHORT vga_write_title(NB_USHORT type, std::span<const VGA_LINE_COLUMN> columns,
                          NB_CHAR *buffer) {
    return write_columns(type, columns, buffer, [](const VGA_LINE_COLUMN &column, NB_CHAR *text) {
        if (column.heading != 0) {
            vga_write_word(column.heading, text);
        }
    });
}
