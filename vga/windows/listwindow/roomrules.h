/* Who gets the room of a list window: plain arithmetic on pixels, for any size of window.  It is
 * asked again whenever the size changes (windowroom.h), so that what gave way comes back. */
#ifndef ROOMRULES_H
#define ROOMRULES_H

#include "nbtypes.h"

/* What has given way; each step includes those before it. */
enum VGA_LISTW_STEP : NB_USHORT {
    VGA_LISTW_STEP_NONE,
    VGA_LISTW_STEP_NO_KEYS,     /* to the icons, beside the titles of the lists */
    VGA_LISTW_STEP_NO_HEADINGS, /* over the columns */
    VGA_LISTW_STEP_NO_TOOL_BAR, /* its commands are in the menus, too */
};

/* Heights; those of keys, headings and panes are of all panes together. */
struct VGA_LISTW_HEIGHTS {
    NB_ULONG window;
    NB_ULONG fixed; /* menu bar, band, head, message line, and what is between the panes */
    NB_ULONG tool_bar;
    NB_ULONG keys;     /* what the rows of the titles need more with their keys */
    NB_ULONG headings; /* what the panes need more with them */
    NB_ULONG panes;    /* with two lines each and neither */
};

/* The first step at which all panes have two lines; the last one when they never do. */
VGA_LISTW_STEP vga_listw_choose_step(const VGA_LISTW_HEIGHTS &heights);

/* The height that a window may have when it opens, with room for the window manager's frame; and
 * for a panel of the desktop, unless what it shows (`need`) takes that room, too.  At least 1. */
NB_ULONG vga_listw_height_limit(NB_ULONG screen, NB_ULONG need);

/* The same for its width. */
NB_ULONG vga_listw_width_limit(NB_ULONG screen);

/* The width that parts of a title's row which take up `taken` leave for one more. */
NB_ULONG vga_listw_row_room(NB_ULONG window, NB_ULONG taken);

/* The heights of `count` panes in a window that leaves `total` pixels for them: in proportion to
 * `shares`, none below `minimum` as long as the total allows it.  Writes as many heights, whose sum
 * is `total`. */
NB_VOID vga_listw_divide(const NB_ULONG *shares, NB_USHORT count, NB_ULONG total, NB_ULONG minimum,
                         NB_ULONG *heights);

#endif
