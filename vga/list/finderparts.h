/* What the modules of the finder tell each other; nobody else includes this.
 *
 *   finder  life, counts, slices, what happens to lines
 *   linewalk  going to a line, numbering matches
 *   linefilter  the filter */
#ifndef FINDERPARTS_H
#define FINDERPARTS_H

#include "finder.h"

/* Lines of one type. */
struct VGA_FINDER_COUNT {
    NB_UCHAR type;
    NB_ULONG by_state[VGA_LINE_STATES];
};

/* The way to a line that is sought. */
struct VGA_FINDER_SEEK {
    VGA_FINDER_RESULT result = VGA_FINDER_IDLE;
    VGA_FINDER_GOAL goal = {};
    VGA_VIEWER_ITEM *at = nullptr;   /* looked at next; or what was found */
    VGA_VIEWER_ITEM *last = nullptr; /* looked at last of all */
    NB_USHORT wrapped = 0;
};

struct VGA_FINDER_NUMBERING {
    NB_USHORT on = 0;
    NB_USHORT stale = 0; /* lines have changed since it began */
    VGA_PATTERN pattern = {};
    VGA_VIEWER_ITEM *at = nullptr; /* looked at next; null: all were */
    VGA_VIEWER_ITEM *current = nullptr;
    NB_ULONG total = 0, number = 0;
    VGA_FINDER_NUMBERS known = {}; /* what is told until this round is complete */
};

struct VGA_FINDER {
    VGA_VIEWER_ROOT *root;
    const VGA_FINDER_SOURCE *source;
    VGA_LINE_TEXTS texts;
    std::vector<VGA_FINDER_COUNT> counts = {};
    VGA_FINDER_FILTER filter = {};
    VGA_VIEWER_ITEM *unfiltered = nullptr; /* looked at next by the filter; null: all were */
    bool narrows = false;                  /* what failed before cannot pass now */
    VGA_FINDER_SEEK seek = {};
    VGA_VIEWER_ITEM *marked = nullptr;
    VGA_FINDER_NUMBERING numbering = {};
};

/* Whether the line matches and is in one of the states. */
bool vga_finder_matches(VGA_FINDER &finder, VGA_VIEWER_ITEM *item, const VGA_PATTERN &pattern,
                        NB_UCHAR states);

/* The next line in the order of the list, hidden or not, in closed ones or not; null at the end.
 * The second passes what is below the item. */
VGA_VIEWER_ITEM *vga_finder_next(const VGA_VIEWER_ITEM *item);
VGA_VIEWER_ITEM *vga_finder_next_behind(const VGA_VIEWER_ITEM *item);

/* Some lines more of each, about as many as take a few microseconds.  Return false when there is
 * nothing more to do. */
bool vga_finder_filter_some(VGA_FINDER &finder);
bool vga_finder_seek_some(VGA_FINDER &finder);
bool vga_finder_number_some(VGA_FINDER &finder);

/* A line came or changed: the filter looks at it. */
NB_VOID vga_finder_filter_line(VGA_FINDER &finder, VGA_VIEWER_ITEM *item);

/* A line leaves the list: the filter has said nothing of it. */
NB_VOID vga_finder_forget(VGA_FINDER &finder, VGA_VIEWER_ITEM *item);

/* Lines above one that came, went or changed are shown or hidden with what is below them. */
NB_VOID vga_finder_settle(VGA_FINDER &finder, VGA_VIEWER_ITEM *item);

/* The item and all below it leave the list: whoever is there goes on behind it. */
NB_VOID vga_finder_leave(VGA_FINDER &finder, VGA_VIEWER_ITEM *item);

/* A line of the list is another than it was. */
NB_VOID vga_finder_renumber(VGA_FINDER &finder);

#endif
