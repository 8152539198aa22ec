/* The letters that press the buttons of a box and move to its fields with Alt: dialogs and messages
 * alike.
 *
 * Each button of a message box has a letter of its label that no other button of the box has.  A
 * description may choose one (XmNmnemonic); the others get what is left of their label, the
 * beginnings of its words first, so that translations need no list of letters.  Behind the buttons
 * the tabs and the fields get theirs (fieldletters.h).
 *
 * The toolkit underlines a letter where the label is a text of the locale: one that was made with
 * XmStringCreateLocalized, or in a description that is compiled with -s.  With a character set of
 * its own, as the compiler gives it otherwise, it finds no letter in it (XmNmnemonicCharSet). */
#ifndef BUTTONLETTERS_H
#define BUTTONLETTERS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

/* Gives the buttons, tabs and fields of `box` their letters and has every part of it heed them.  To
 * be called when the box has all of its parts and texts; buttons that are not managed keep their
 * letters for the time when they are.  A second call gives the fields theirs anew.  Nothing for a
 * widget of another class.
 * REQUIRES: the two actions are registered. */
NB_VOID vga_give_letters(Widget box);

/* Toolkit action: presses the button of the box around `widget` that has the letter of its first
 * parameter, or turns to the page or moves to the field that has it; nothing when there is none, or
 * when it is off or not on the screen. */
NB_VOID vga_letter_action(Widget widget, XEvent *event, String *params, Cardinal *param_count);

/* Toolkit action: turns to the next page of the box around `widget`, or with the parameter
 * "previous" to the one before, round and round. */
NB_VOID vga_page_action(Widget widget, XEvent *event, String *params, Cardinal *param_count);

#endif
