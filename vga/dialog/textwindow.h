/* Windows beside a dialog with a longer text: what was done (receipt.h), what has happened
 * (history.h).  The text can be scrolled, marked and copied; Escape closes the window, and nothing
 * waits for that.
 *
 * A dialog has one of each description, made when it is first needed.  It closes with its dialog.
 */
#ifndef TEXTWINDOW_H
#define TEXTWINDOW_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

struct VGA_DIALOG;

struct VGA_TEXT_WINDOW {
    Widget box, text;
};

/* The dialog's window of that description (a literal; the text in it is <description>Text).  Null
 * for a dialog that is not open, and when it cannot be had, which the operator is told. */
const VGA_TEXT_WINDOW *vga_text_window(VGA_DIALOG *desc, const NB_CHAR *description);

/* The same if it is made and shown; else null. */
const VGA_TEXT_WINDOW *vga_shown_text_window(const VGA_DIALOG *desc, const NB_CHAR *description);

/* Shows it in front, with the keyboard, under a title.  `help_key` is a literal, the topic of its
 * Help button. */
NB_VOID vga_show_text_window(const VGA_TEXT_WINDOW &window, const NB_CHAR *title,
                             const NB_CHAR *help_key);

/* Takes those of a dialog down: it is closing. */
NB_VOID vga_close_text_windows(const VGA_DIALOG *desc);

#endif
