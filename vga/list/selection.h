/* The selection of a list, and which of its lines are to be drawn (no X in here).
 *
 * All selected lines have one parent and one type: selecting another kind drops the rest first. The
 * anchor is where ranges begin, the outline is where the keyboard is.  Flags: `redraw` 0 leaves the
 * screen to a later call; `notify` 1 has the window set its buttons. */
#ifndef SELECTION_H
#define SELECTION_H

#include "tree.h"

/* What a click does: outlines `item` and selects it alone; with `toggle` (Ctrl) flips it and keeps
 * the others; with `extend` (Shift) gives every line of the anchor's type from the anchor to `item`
 * the anchor's state.  An item that the anchor's range cannot end at is selected as without
 * `extend`. */
NB_VOID vga_viewer_select(VGA_VIEWER_ITEM *item, VGA_VIEWER_ROOT *root, NB_USHORT toggle,
                          NB_USHORT extend, NB_USHORT redraw, NB_USHORT notify);

/* Whether keys, ranges, drags and closing may select the line: neither fixed nor of a type of
 * titles. */
NB_USHORT vga_viewer_can_select(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item);

/* Whether a range from the anchor, which may be null, can end at the item: siblings of one type. */
NB_USHORT vga_viewer_extends_to(const VGA_VIEWER_ITEM *anchor, const VGA_VIEWER_ITEM *item);

/* Selects all siblings of `current`, which is in the list, that are of its type; it becomes anchor
 * and gets the outline.  The window is not told. */
NB_VOID vga_viewer_select_all(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *current);

/* Sets or flips one item; count and type follow.  Returns the change of the count: 1, -1 or 0. */
NB_SHORT vga_viewer_set_select(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT state);
NB_SHORT vga_viewer_toggle_select(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);

/* Deselects everything; anchor and outline stay.  Removes the outline. */
NB_VOID vga_viewer_clear_selection(VGA_VIEWER_ROOT *root);
NB_VOID vga_clear_outline_selection(VGA_VIEWER_ROOT *root);

/* The selected item; null without one.  Of several: the outlined, else the anchor, else the first.
 */
VGA_VIEWER_ITEM *vga_viewer_get_selected_viewer(const VGA_VIEWER_ROOT *root);

/* Its record, and its type (`type` may be null); null and VGA_VIEWER_SELECT_NONE without one. */
NB_VOID *vga_viewer_get_selection(const VGA_VIEWER_ROOT *root, NB_SHORT *type);

/* Adds a line to a drag selection, or takes it out. */
NB_VOID vga_viewer_drag_cb(VGA_VIEWER_ITEM *item, VGA_VIEWER_ROOT *root, NB_USHORT select,
                           NB_USHORT redraw);

/* For the list and its view. */

/* As the calls above; the outline goes to `item`, null removes it. */
NB_SHORT vga_viewer_mark_selected(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT state,
                                  NB_USHORT redraw);
NB_VOID vga_viewer_deselect_all(VGA_VIEWER_ROOT *root, NB_USHORT redraw);
NB_VOID vga_viewer_set_outline(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT redraw);

/* Drops every reference to the item and what is below it, before they go or are hidden. */
NB_VOID vga_viewer_let_go(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *viewer);

/* Has the window set its buttons. */
NB_VOID vga_viewer_notify(VGA_VIEWER_ROOT *root, NB_SHORT type);

/* Notes lines [top, bottom) for drawing, or the item's own line; nothing while the list is not
 * displayed or the item not visible. */
NB_VOID vga_viewer_mark(VGA_VIEWER_ROOT *root, NB_ULONG top, NB_ULONG bottom);
NB_VOID vga_viewer_mark_item(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item);

#endif
