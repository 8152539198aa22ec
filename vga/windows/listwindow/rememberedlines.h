/* What a list window remembers of its lists while its node is away: which lines were open and
 * selected, which pane was current and how far each list was scrolled.
 *
 * A line is remembered by the types and names of the lines from the top of its list down to it, so
 * that another record of the same name takes its place.  When the node's lines come again, each
 * takes its old state at once; what the operator does from then on counts, and lines that do not
 * come are forgotten when the node's build is complete.  At most VGA_LISTW_REMEMBERED lines of a
 * list are remembered as open, or closed; a selection of more than that is not kept.
 *
 * OWNS: the memory of a window, until it is recalled, or until the window closes. */
#ifndef REMEMBEREDLINES_H
#define REMEMBEREDLINES_H

#include "listwindow.h"

#define VGA_LISTW_REMEMBERED 10000

/* The node goes: remembers what the lists show.  What is still to be recalled stays as it is. */
NB_VOID vga_listw_remember_lines(const VGA_LIST_WINDOW *window);

/* A line joined a list (hooks.h): it, and the line that it stands under, take their old state. */
NB_VOID vga_listw_line_added(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);

/* The pane that is to be current again; VGA_LISTW_NO_LIST: none. */
NB_USHORT vga_listw_remembered_pane(const VGA_LIST_WINDOW *window);

/* The operator has made a pane current, or the node itself: selection and pane are no longer
 * recalled. */
NB_VOID vga_listw_forget_selection(const VGA_LIST_WINDOW *window);

/* All lines have come: the current pane and the place in each list follow, unless the operator was
 * faster.  Nothing is remembered any more. */
NB_VOID vga_listw_recall_lines(VGA_LIST_WINDOW *window);

NB_VOID vga_listw_forget_lines(const VGA_LIST_WINDOW *window);

#endif
