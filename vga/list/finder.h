/* Finding lines of a list: what is searched for, which lines a filter shows, how many are in which
 * state (no X in here).
 *
 * Long lists are looked through in slices: a call that begins something returns at once, asks for
 * work (`work_due`), and whoever has the event loop calls vga_finder_work until it returns 0.  What
 * begins anew takes the place of what was under way.  Lines may come, go and change between two
 * slices, and do so while a filter is on: each is counted and filtered at once.
 *
 * A filter hides lines (VGA_VIEWER_ITEM::hidden).  A line is shown when it passes itself or one
 * below it does; the lines above one that passes are opened, and closed again with the filter's
 * end.  Titles never pass and are never found.
 *
 * OWNS: the finder of a list, until vga_free_finder or until the list goes. */
#ifndef FINDER_H
#define FINDER_H

#include "linepattern.h"
#include "linestate.h"
#include "linetexts.h"

/* What a finder asks about lines, and of the event loop. */
struct VGA_FINDER_SOURCE {
    VGA_LINE_TEXTS::WRITER text;
    VGA_LINE_STATE (*state)(const VGA_VIEWER_ITEM *item);
    NB_VOID (*work_due)(VGA_VIEWER_ROOT *root); /* call vga_finder_work soon, once */
    /* Numbers or states changed: whoever shows them may look again. */
    NB_VOID (*news)(VGA_VIEWER_ROOT *root);
};

/* The finder of the list, made if there is none: then all lines are counted.  `source` must outlive
 * it. */
VGA_FINDER *vga_make_finder(VGA_VIEWER_ROOT *root, const VGA_FINDER_SOURCE &source);
NB_VOID vga_free_finder(VGA_VIEWER_ROOT *root);

/* Goes on for about that many microseconds.  Returns 1 when there is more to do. */
NB_USHORT vga_finder_work(VGA_VIEWER_ROOT *root, NB_ULONG microseconds);

/* Nobody types any more: frees the texts of the lines, unless they are in use. */
NB_VOID vga_finder_rest(VGA_VIEWER_ROOT *root);

/* Counts. */

/* Lines of a type in a state, or in any with VGA_LINE_STATES; fixed lines are none. */
NB_ULONG vga_finder_count(const VGA_VIEWER_ROOT *root, NB_USHORT type, VGA_LINE_STATE state);

/* Lines of all types in that state. */
NB_ULONG vga_finder_count_all(const VGA_VIEWER_ROOT *root, VGA_LINE_STATE state);

/* Going to a line.  Lines in closed ones count, but for `open_only`; hidden ones never do. */

#define VGA_STATES_SET(state) static_cast<NB_UCHAR>(1U << (state))
#define VGA_ANY_LINE_STATE    0xFF

struct VGA_FINDER_GOAL {
    VGA_PATTERN pattern = {};
    NB_UCHAR states = VGA_ANY_LINE_STATE; /* set of VGA_STATES_SET */
    NB_USHORT up = 0;                     /* flag: the previous one, not the next */
    NB_USHORT here_too = 0;               /* flag: where it begins is looked at first, not last */
    NB_USHORT open_only = 0;              /* flag: not in closed lines */
};

enum VGA_FINDER_RESULT : NB_UCHAR {
    VGA_FINDER_IDLE, /* nothing is sought, or what was found is gone */
    VGA_FINDER_SEEKING,
    VGA_FINDER_FOUND,
    VGA_FINDER_NONE
};

/* Seeks from `from` on (null: from the first line, or the last), around the end of the list. */
NB_VOID vga_finder_seek(VGA_VIEWER_ROOT *root, const VGA_FINDER_GOAL &goal, VGA_VIEWER_ITEM *from);

/* Whether it was found, and which line it is; with `take` the result is over. */
VGA_FINDER_RESULT vga_finder_result(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM **line, NB_USHORT take);

/* A line to come back to; when it goes, the one behind it. */
NB_VOID vga_finder_mark(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *line);
VGA_VIEWER_ITEM *vga_finder_marked(const VGA_VIEWER_ROOT *root);

/* Counting matches: how many lines match, and which of them `current` is. */

NB_VOID vga_finder_number(VGA_VIEWER_ROOT *root, const VGA_PATTERN &pattern,
                          VGA_VIEWER_ITEM *current);
NB_VOID vga_finder_stop_numbering(VGA_VIEWER_ROOT *root);

struct VGA_FINDER_NUMBERS {
    NB_ULONG total = 0;
    NB_ULONG current = 0;  /* from 1; 0: none of them, or not known yet */
    NB_USHORT pending = 0; /* flag: there may be more */
};
VGA_FINDER_NUMBERS vga_finder_numbers(const VGA_VIEWER_ROOT *root);

/* Filter. */

/* Shows only what matches and is in one of the states.  A pattern with a fault changes nothing. */
NB_VOID vga_finder_filter(VGA_VIEWER_ROOT *root, const VGA_PATTERN &pattern, NB_UCHAR states);
NB_VOID vga_finder_end_filter(VGA_VIEWER_ROOT *root);

struct VGA_FINDER_FILTER {
    NB_USHORT on = 0;
    NB_USHORT pending = 0; /* flag: not all lines were looked at */
    NB_UCHAR states = VGA_ANY_LINE_STATE;
    NB_ULONG passed = 0; /* lines that pass themselves */
    VGA_PATTERN pattern = {};
};
const VGA_FINDER_FILTER &vga_finder_filter_of(const VGA_VIEWER_ROOT *root);

/* For the tree: a line was put in, changed, is about to be taken out with all below it, and was
 * (then `parent` is what it stood under).  Nothing without a finder. */
NB_VOID vga_finder_line_came(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);
NB_VOID vga_finder_line_changed(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);
NB_VOID vga_finder_line_goes(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);
NB_VOID vga_finder_line_gone(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *parent);

#endif
