/* Marks of the state of a line on its icon: a shape and a colour for each (linestate.h), in the
 * corner that icons leave free.  An icon with its mark is made once and then copied like any other.
 *
 * OWNS: marks and marked icons, from vga_set_state_mark to vga_free_state_marks. */
#ifndef STATEMARKS_H
#define STATEMARKS_H

#include "linestate.h"
#include "nbtypes.h"
#include <X11/Intrinsic.h>

/* What a mark is called in the icon files, and the resource that names its colour.  Null for
 * VGA_LINE_NO_STATE. */
struct VGA_STATE_MARK_NAMES {
    const NB_CHAR *icon, *colour;
};
extern const VGA_STATE_MARK_NAMES gvga_state_marks[VGA_LINE_STATES];

/* Takes the picture of a mark, as large as the icons of lines, and a bitmap of what it covers. */
NB_VOID vga_set_state_mark(Display *display, VGA_LINE_STATE state, Pixmap picture, Pixmap mask);
NB_VOID vga_free_state_marks(NB_VOID);

/* The icon of a line in that state.  Without a mark it is the plain icon. */
Pixmap vga_icon_in_state(NB_USHORT icon, VGA_LINE_STATE state, NB_USHORT selected);

/* The mark alone, for a key to the marks; None without one. */
Pixmap vga_state_sign(VGA_LINE_STATE state);

#endif
