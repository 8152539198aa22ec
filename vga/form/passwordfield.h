/* Fields for passwords: each character shows as an asterisk, and the program can never show one. */
#ifndef PASSWORDFIELD_H
#define PASSWORDFIELD_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

/* Makes an empty XmTextField a field for a password, behind the filter that it has.  What is typed
 * is kept here until the field is emptied or destroyed, and wiped then. */
NB_VOID vga_make_password_field(Widget field);

/* Copies what was typed, cut to `size` bytes with the terminator; empty for any other field. */
NB_VOID vga_get_password(Widget field, NB_CHAR *out, NB_USHORT size);

#endif
