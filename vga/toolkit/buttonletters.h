/* The letters that press the buttons of a box with Alt: dialogs and messages alike.
 *
 * Each button of a message box has a letter of its label that no other button of the box has.  A
 * description may choose one (XmNmnemonic); the others get the first letter or digit of their label
 * that is left, so that translations need no list of letters.  The toolkit underlines the letter
 * with the server's fonts, but not with scalable ones. */
#ifndef BUTTONLETTERS_H
#define BUTTONLETTERS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

/* Gives the buttons of `box` their letters and has every part of it heed them.  To be called once,
 * when the box has all of its parts and texts; buttons that are not managed keep their letters for
 * the time when they are.  Nothing for a widget of another class.
 * REQUIRES: the action vga_letter_action is registered. */
NB_VOID vga_give_letters(Widget box);

/* Toolkit action: presses the button of the box around `widget` that has the letter of its first
 * parameter; nothing when there is none, or when it is off or not on the screen. */
NB_VOID vga_letter_action(Widget widget, XEvent *event, String *params, Cardinal *param_count);

#endif
