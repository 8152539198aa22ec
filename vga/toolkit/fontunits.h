/* Distances that follow the text.  Window descriptions and application defaults give distances in
 * font units ("font_units", "fu"), and the toolkit turns them into pixels by two numbers of the
 * screen.  Its own numbers come from a bitmap font that knows nothing of the display's dots an
 * inch, so the program sets them from the font that dialogs are really drawn with. */
#ifndef FONTUNITS_H
#define FONTUNITS_H

#include "nbtypes.h"
#include <Xm/Xm.h>

/* Where scalable fonts cannot be had, changes the resources so that every dialog takes fonts of the
 * server.  Then makes a font unit of the shell's screen half a line of dialog text, in both
 * directions (8 pixels for 10 points at 96 dots an inch, and never less).  Call it before the first
 * window is fetched. REQUIRES: a shell whose display has its resources. */
NB_VOID vga_set_font_units(Widget shell);

#endif
