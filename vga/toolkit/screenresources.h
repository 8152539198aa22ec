/* Resources that follow from the screen.  Whatever says otherwise wins over them. */
#ifndef SCREENRESOURCES_H
#define SCREENRESOURCES_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>
#include <X11/Xresource.h>

/* Low screens get tighter margins and a small font; screens on which a pixel does not say its
 * colour get letters with sharp edges.  Before the first font is opened. */
NB_VOID vga_add_screen_resources(Screen *screen, XrmDatabase *database);

#endif
