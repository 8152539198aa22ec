/* The panes of a list window: which one is current. */
#ifndef PANES_H
#define PANES_H

#include "listwindow.h"

/* The list that a pane has to show, whether it does or not; null in an empty window. */
VGA_VIEWER_ROOT *vga_listw_list(const VGA_LIST_WINDOW *window, NB_USHORT pane);

/* Makes a pane current: its border is marked, the other lists lose their selection, its first
 * line is selected unless another one is, and with `take_focus` it gets the keyboard.  Nothing
 * without a node, or when the pane is current already. */
NB_VOID vga_listw_select_pane(VGA_LIST_WINDOW *window, NB_USHORT pane, NB_USHORT take_focus);

/* No pane is current and nothing is selected. */
NB_VOID vga_listw_select_nothing(VGA_LIST_WINDOW *window);

/* Marks no pane, whatever the lists hold. */
NB_VOID vga_listw_forget_pane(VGA_LIST_WINDOW *window);

/* The pane that holds the keyboard focus; VGA_LISTW_NO_LIST for none. */
NB_USHORT vga_listw_focus_pane(const VGA_LIST_WINDOW *window);

/* From now on panes become current by their list or by the keyboard, where the description does not
 * name what does so. */
NB_VOID vga_listw_prepare_panes(VGA_LIST_WINDOW *window);

/* For callbacks of a pane: a press in the list, or the focus coming to it. */
NB_VOID vga_listw_pane_called(Widget widget, NB_USHORT pane, XtPointer call_data);

#endif
