/* Drawings that follow the display's dots an inch: they are made for about 96, and drawn with more
 * pixels for each of their own where a line of dialog text is as high as several there. */
#ifndef DOTSCALE_H
#define DOTSCALE_H

#include "nbtypes.h"
#include <Xm/Xm.h>

/* How many pixels one of a drawing takes in each direction: 1, from 192 dots an inch on 2, and so
 * on. Follows the font units of the screen, so vga_set_font_units comes first; before it, 1. */
NB_INT vga_dot_scale(Screen *screen);

/* Takes a pixmap, frees it, and returns one in which each of its pixels is a square of `scale` by
 * `scale`; the same one for 1, and where it cannot be read. */
Pixmap vga_enlarge_pixmap(Screen *screen, Pixmap pixmap, NB_INT scale);

#endif
