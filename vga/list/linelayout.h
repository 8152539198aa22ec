/* Layout of a list as arithmetic, without a screen: the pieces of a line's text, which scroll bars
 * a window needs, how far it can be scrolled. */
#ifndef LINELAYOUT_H
#define LINELAYOUT_H

#include "nbtypes.h"
#include <cwchar>

#define VGA_VIEWER_MAX_TEXT_LENGTH 1000 /* bytes of a line */
#define VGA_VIEWER_TEXT_BUFFER     4096 /* bytes that a writer of lines may use */

/* A piece of a line's text that is drawn in one go. */
struct VGA_VIEWER_RUN {
    const NB_CHAR *text;
    NB_INT length;   /* bytes, already cut where the next column begins */
    NB_INT whole;    /* bytes, not cut */
    NB_ULONG column; /* in characters */
    NB_USHORT last;
};

/* Takes the next run off `*text`, which is null after the last; `*column` is 0 at the first. */
NB_USHORT vga_viewer_next_run(const NB_CHAR **text, NB_ULONG *column, VGA_VIEWER_RUN *run);

/* Cuts every piece of a line that leaves no blank before the next column, and puts an ellipsis (">"
 * where the locale has none) in its last place, so that it is seen to be cut.  `text` has room for
 * VGA_VIEWER_TEXT_BUFFER + 1 bytes.  Returns 1 when it cut any. */
NB_USHORT vga_viewer_mark_cuts(NB_CHAR *text);

/* A character of a text as it stands in a column. */
struct VGA_VIEWER_CHARACTER {
    wchar_t code;      /* of a byte that is no character of the locale, the byte */
    NB_INT length;     /* bytes */
    NB_USHORT columns; /* 2 for a wide one, 0 for one that goes on top of that before it */
};

/* The characters of a text one after the other. */
class VGA_VIEWER_CHARACTERS {
public:
    VGA_VIEWER_CHARACTERS(const NB_CHAR *text, NB_INT length) : text_(text), left_(length) {}
    /* 0 at the end. */
    NB_USHORT next(VGA_VIEWER_CHARACTER *character);

private:
    const NB_CHAR *text_;
    NB_INT left_;
    mbstate_t state_ = {};
};

/* The columns that a text takes. */
NB_ULONG vga_viewer_columns(const NB_CHAR *text, NB_INT length);

/* The bytes of the first `columns` columns of the text, a whole number of characters. */
NB_INT vga_viewer_cut(const NB_CHAR *text, NB_INT length, NB_ULONG columns);

/* Which scroll bars a list needs.  All in pixels. */
struct VGA_VIEWER_FIT {
    NB_ULONG full_width, full_height; /* of the window if no bar were shown */
    NB_ULONG hbar_height, vbar_width; /* what a bar takes of it */
    NB_ULONG content_width, lines_height;
    NB_USHORT hbar, vbar; /* out: needed */
};
NB_VOID vga_viewer_fit(VGA_VIEWER_FIT *fit);

/* Height of the content for the scroll bar: one line more when not everything fits, so that the
 * last line can be scrolled to where it is whole. */
NB_ULONG vga_viewer_content_height(NB_ULONG lines_height, NB_ULONG window_height,
                                   NB_ULONG item_height);

/* An offset that stays within the content, a multiple of `step`. */
NB_ULONG vga_viewer_clamp(int64_t offset, NB_ULONG content, NB_ULONG window, NB_ULONG step);

#endif
