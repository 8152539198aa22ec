/* Choosing the content of a field from a list: a field with a button "..." beside it, and a window
 * that shows what there is, with type-ahead.
 *
 * The button opens the window, and so do Alt with the down arrow and F4 in the field.  What is
 * typed is looked for in both columns, in any case; what begins with it stands first.  Up, Down,
 * Page Up, Page Down, Home and End move through the list, the mouse wheel scrolls it, Return or a
 * double click puts the choice into the field and Escape does not; the keyboard is then in the
 * field again.  The field's callbacks see the new text as if it were typed.  A hundred thousand
 * choices are no burden: only those in view are in the list.
 *
 * A dialog has one such window, made when it is first needed; it closes with the dialog.
 * OWNS: the choosers, until their fields are destroyed. */
#ifndef CHOOSER_H
#define CHOOSER_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>
#include <functional>
#include <string>
#include <vector>

struct VGA_DIALOG;

/* Texts are in the locale's character set. */
struct VGA_CHOICE {
    std::string text;   /* goes into the field */
    std::string detail; /* second column, such as a description; may be empty */
};

struct VGA_CHOOSER {
    std::string title; /* of the window, such as "Mode" */
    std::string none;  /* what to do where there is nothing to choose from; may be empty */

    /* What there is, in the order in which it is shown; asked each time when the window opens. */
    std::function<std::vector<VGA_CHOICE>()> choices;
};

/* Lets `field`, an XmTextField of the dialog, be chosen.  `button` is the one beside it; null:
 * there is none.  A null field is ignored. REQUIRES: the action vga_chooser_action is registered;
 * the dialog is no main window. */
NB_VOID vga_attach_chooser(VGA_DIALOG *desc, Widget field, Widget button, VGA_CHOOSER chooser);

/* Opens the window for a field, in the place of one that is open for another.  Returns 0 when the
 * field has no chooser, cannot be edited, or there is nothing to choose from, of which a box tells.
 */
NB_USHORT vga_open_chooser(VGA_DIALOG *desc, Widget field);

/* Takes the window down, if one is up; the field stays as it is. */
NB_VOID vga_close_chooser(VGA_DIALOG *desc);

/* To be called whenever fields of the dialog were made editable or not: a button is on only while
 * its field can be edited, and says why it is off as the field does; a window whose field can no
 * longer be edited closes. */
NB_VOID vga_check_choosers(VGA_DIALOG *desc);

/* Toolkit action: "open" in a field; in the window "up", "down", "page_up", "page_down", "first",
 * "last", "wheel_up" and "wheel_down". */
NB_VOID vga_chooser_action(Widget widget, XEvent *event, String *params, Cardinal *param_count);

#endif
