/* What the letters of buttons and of fields have in common (buttonletters.h is the whole story).
 * A letter is a small one of ASCII or a digit: others are not on every keyboard. */
#ifndef LETTERS_H
#define LETTERS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>
#include <set>
#include <string>
#include <vector>

using VGA_LETTERS = std::set<NB_CHAR>;

/* The letter that a character or keysym stands for; 0: none. */
NB_CHAR vga_as_letter(NB_ULONG code);

/* The place in `text` (multi-byte) whose letter is not `taken` and becomes so: the beginning of a
 * word before any other.  std::string::npos when there is none. */
size_t vga_choose_letter(const std::string &text, VGA_LETTERS &taken);

/* The label of a label, button or toggle button, or the tab of a page (by `resource`), as
 * multi-byte text. */
std::string vga_label_text(Widget widget, const NB_CHAR *resource);

/* The letter (XmNmnemonic) of a label, button or toggle button; 0: none. */
NB_CHAR vga_letter_of(Widget label);

/* Gives a label, button or toggle button a letter of its text that is not taken, if there is one.
 */
NB_VOID vga_give_letter(Widget label, VGA_LETTERS &taken);

/* Nothing for a gadget. */
std::vector<Widget> vga_children_of(Widget widget);

/* Presses a button, widget or gadget. */
NB_VOID vga_push_button(Widget button, XEvent *event);

#endif
