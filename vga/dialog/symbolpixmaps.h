/* The symbols of message boxes: error, information and question, drawn by the program because the
 * toolkit's own are coarse.
 * OWNS: the pixmaps, one for each symbol and background, until the program ends. */
#ifndef SYMBOLPIXMAPS_H
#define SYMBOLPIXMAPS_H

#include "messagebox.h"

/* The symbol on the background of `widget`, 32 or 48 pixels wide as the icons are small or big, and
 * 96 from 192 dots an inch on.
 * None where the display's pixels are not made of red, green and blue; the toolkit's symbol does
 * then. */
Pixmap vga_box_symbol(Widget widget, VGA_MODAL_TYPE type);

#endif
