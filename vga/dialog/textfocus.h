/* Text fields and the keyboard.
 *
 * The I-beam stands in the field that has the keyboard, and nowhere else: the toolkit draws a
 * dotted one in every field.  Whoever comes to a field by keyboard finds its text selected, so that
 * what is typed replaces it; a click puts the I-beam where it points, and a window that gets the
 * keyboard back is as it was left. */
#ifndef TEXTFOCUS_H
#define TEXTFOCUS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

/* Has all text fields of `widget` and below behave so, for as long as they live.  The program sees
 * to XmNcursorPositionVisible of each from now on: nobody else sets it. */
NB_VOID vga_watch_texts(Widget widget);

/* Selects the text of a field, as the keyboard's coming does: for a field that was refused and is
 * to be typed anew.  Does not move the keyboard.  Nothing for a widget of another class. */
NB_VOID vga_select_text(Widget field);

#endif
