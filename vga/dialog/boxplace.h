/* Where a message about a field stands: beside its dialog, so that the field can be read while the
 * message is.  All in pixels of the screen. */
#ifndef BOXPLACE_H
#define BOXPLACE_H

#include "nbtypes.h"

struct VGA_AREA {
    NB_INT x, y, width, height;
};

/* Returns `box` moved to the right of the dialog, to its left, below or above it, whatever first
 * has room on the screen of `screen.width` and `screen.height`.  Where none has, it covers the
 * dialog but not the field; where even that cannot be, it is at least all on the screen, as far as
 * it fits. The areas are those of the windows; room for the window manager's frames is added here.
 */
VGA_AREA vga_place_beside(VGA_AREA box, const VGA_AREA &dialog, const VGA_AREA &field,
                          const VGA_AREA &screen);

#endif
