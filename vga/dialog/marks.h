/* The colour of a node: what the operator gave the nodes that he must not mistake for others, by
 * the resource "nodeColours", as in
 *
 *     Quiladmin.nodeColours: prod*=#a02020, test?=dark green
 *
 * The first pattern (as of file names) that fits the node's name counts.  A window that shows such
 * a node bears its name in that colour, and so does every question, report and dialog over it. */
#ifndef MARKS_H
#define MARKS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>
#include <string>

struct VGA_DIALOG;

struct VGA_MARK {
    std::string name; /* of the node */
    Pixel background, foreground;
};

/* The window shows the node of that name from now on, which has a colour or not; an empty name:
 * none.  A colour that there is not is warned of and counts as none. */
NB_VOID vga_set_mark(const VGA_DIALOG *window, const NB_CHAR *node_name);

/* The name of the node that a dialog shows, or what it was opened over; empty: none, or several. */
std::string vga_marked_node(const VGA_DIALOG *dialog);

/* The mark of a dialog, or of what it was opened over; null: it has none. */
const VGA_MARK *vga_mark_of(const VGA_DIALOG *dialog);

/* Shows a mark in a label, in front of `text` (null: nothing), in its colours, or without a mark
 * the text alone in the label's own colours. */
NB_VOID vga_show_mark(Widget label, const VGA_MARK *mark, const NB_CHAR *text);

/* The same at the foot of an XmForm, below `last`, the child that reaches down to its edge; null
 * takes the mark away. */
NB_VOID vga_mark_form(Widget last, const VGA_MARK *mark);

#endif
