/* Colours that the program works out by itself.  For each colour of each icon, and for each
 * background whose shadows it derives, the toolkit asks the X server and waits for the answer:
 * some 600 times at start, which is most of the wait on a distant display.  On a TrueColor visual
 * the answer follows from the visual's masks.  So the X library's XAllocColor, XQueryColor and
 * XQueryColors are replaced here for the default colormap of the program's screen; calls for any
 * other colormap or visual go on to the library.
 *
 * Where the default colormap has cells that all programs share, and they are used up, XAllocColor
 * gives the nearest colour that there is in place of none, which the toolkit would show as black.
 * On such a visual texts of fields have the colour that they should (XftDrawString...).
 *
 * Without the build option QUILADMIN_OWN_COLOURS nothing is replaced, and the server is asked. */
#ifndef COLOURS_H
#define COLOURS_H

#include <X11/Xlib.h>

#include "nbtypes.h"

/* From now on. */
NB_VOID vga_work_out_colours(Display *display, Screen *screen);

#endif
