/* Answers that the program does not wait for.  On a display 50 ms away each question to the X
 * server costs as long as a key stroke may take, and the toolkit asks for much that the program
 * knows: the sizes of pixmaps that it made, the keyboard's table key by key, who has the keyboard
 * for each widget that is greyed.  So these functions of the X library and of the toolkit are
 * replaced here for the whole program:
 *
 *   XOpenDisplay          asks for the atoms of a start in one request; the library remembers them
 *   XGetKeyboardMapping   asks for the whole table once, until it changes (XRefreshKeyboardMapping)
 *   XGetGeometry          knows the pixmaps that XCreatePixmap made
 *   XGetInputFocus        asks again when an event has said that a window of the program got or
 *                         lost the keyboard, or is gone
 *   XSync                 only sends while the program keeps others from the server, and just
 * behind: the requests arrive in their order in any case XmGetVisibility       goes by the places
 * of the widgets alone: no two children of a window of this program lie over each other
 *
 * What nothing is known of is asked as ever. */
#ifndef ROUNDTRIPS_H
#define ROUNDTRIPS_H

#include "nbtypes.h"

/* To be called before the display is opened; without that nothing is replaced. */
NB_VOID vga_spare_round_trips(NB_VOID);

#endif
