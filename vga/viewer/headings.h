/* Headings over a list: a strip that stays where it is while the list scrolls up and down, and
 * moves with it from side to side.  It is drawn in the list's font and icons' offsets, so that each
 * heading stands over its column, and in the colours of its own widget. */
#ifndef HEADINGS_H
#define HEADINGS_H

#include "vgaviewr.h"

/* Shows headings (create_headings) over the list until it is taken off its widgets, or the strip is
 * destroyed: those of the line that has the keyboard or is selected, so that each level of a list
 * is explained as one comes to it, and those of `type` while there is none or its type has none.
 * The strip gets the height that it needs; a type without headings leaves it blank.
 * Returns 1, or 0 when the list is not displayed.
 * REQUIRES: `strip` is an XmDrawingArea that stands over the list's window, and has its width. */
NB_USHORT vga_viewer_show_headings(VGA_VIEWER_ROOT *root, Widget strip, NB_SHORT type);

/* Pixels that a strip needs; 0 before the graphics were made. */
Dimension vga_viewer_headings_height(NB_VOID);

#endif
