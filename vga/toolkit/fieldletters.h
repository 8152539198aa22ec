/* The letters of a dialog's fields, for buttonletters.cpp.
 *
 * A field is what an XmColumn has made a label for and what can have the keyboard; a toggle button
 * and a push button have their own text.  A page is a child of an XmTabStack, or any scrolled
 * window: letters of fields may repeat on another page, but no field has one of the buttons, the
 * tabs and the fields outside pages.  Where there are more fields than letters the last have none.
 */
#ifndef FIELDLETTERS_H
#define FIELDLETTERS_H

#include "letters.h"

/* Gives the tabs and fields below `box` letters that are not `taken`.  Labels of the fields are
 * underlined by XmNmnemonic, those of tabs by a rendition. */
NB_VOID vga_give_field_letters(Widget box, VGA_LETTERS &taken);

/* Turns to the page with the letter, or moves the keyboard to the field with it; a toggle button
 * and a push button are pressed as well.  Nothing when there is none that can be used now. */
NB_VOID vga_go_to_letter(Widget box, NB_CHAR letter, XEvent *event);

/* Turns `step` pages on and moves the keyboard there.  Nothing without an XmTabStack that shows. */
NB_VOID vga_turn_page(Widget box, NB_INT step);

#endif
