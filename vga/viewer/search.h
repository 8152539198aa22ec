/* Finding lines of a list that is shown: the finder (finder.h) with an event loop to work in and a
 * keyboard.  The first slice of every search is worked off at once, so that a list of some ten
 * thousand lines is answered before the call returns; of a longer one the rest follows between the
 * events.
 *
 * In every list, letters and digits go to the next line whose name begins with what was typed; a
 * pause begins anew, Backspace takes one back. */
#ifndef SEARCH_H
#define SEARCH_H

#include "finder.h"
#include "vgaviewr.h"

/* What a line is sought for. */
enum VGA_VIEWER_SOUGHT : NB_USHORT {
    VGA_VIEWER_SOUGHT_TYPED, /* `typed` of the view */
    VGA_VIEWER_SOUGHT_TEXT,
    VGA_VIEWER_SOUGHT_STATE
};

/* Told when a search has ended (a line that was found is selected and in view by then), and when
 * the numbers of a list have changed: counts, matches, lines that pass the filter.  Both may be
 * null; without the first there is a bell when nothing was found. */
struct VGA_VIEWER_FINDING {
    NB_VOID (*sought)(VGA_VIEWER_ROOT *root, VGA_VIEWER_SOUGHT what, VGA_FINDER_RESULT result);
    NB_VOID (*news)(VGA_VIEWER_ROOT *root);
};
extern VGA_VIEWER_FINDING gvga_viewer_finding;

/* The list has a finder from now on, which counts its lines.  Returns 0 without memory. */
NB_USHORT vga_viewer_has_finder(VGA_VIEWER_ROOT *root);

/* Goes to the next line that the goal describes, from the line with the keyboard on. */
NB_VOID vga_viewer_seek(VGA_VIEWER_ROOT *root, const VGA_FINDER_GOAL &goal, VGA_VIEWER_ITEM *from,
                        VGA_VIEWER_SOUGHT what);

/* As vga_finder_number and vga_finder_filter, with a first slice. */
NB_VOID vga_viewer_number(VGA_VIEWER_ROOT *root, const VGA_PATTERN &pattern,
                          VGA_VIEWER_ITEM *current);
NB_VOID vga_viewer_filter(VGA_VIEWER_ROOT *root, const VGA_PATTERN &pattern, NB_UCHAR states);

/* Opens what the line is closed in, selects it alone and scrolls to it. */
NB_VOID vga_viewer_go_to(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);

#endif
