/* The panes of the node window: which one is current, and how they share the window's height. */
#ifndef PANES_H
#define PANES_H

#include "vganodew.h"

/* The list that a pane shows; null while the window is empty or its node not connected. */
VGA_VIEWER_ROOT *vga_nodew_pane_root(const VGA_NODEW_DESC *desc, NB_USHORT pane);

/* Makes a pane current: its border is marked, the other lists lose their selection, its first
 * line is selected unless another one is, and with `take_focus` it gets the keyboard.  Nothing
 * without a node, or when the pane is current already. */
NB_VOID vga_nodew_select_pane(VGA_NODEW_DESC *desc, NB_USHORT pane, NB_USHORT take_focus);

/* No pane is current and nothing is selected: the commands are for the node itself, whose line gets
 * the keyboard with `take_focus`. */
NB_VOID vga_nodew_select_node(VGA_NODEW_DESC *desc, NB_USHORT take_focus);

/* Marks no pane, whatever the lists hold. */
NB_VOID vga_nodew_forget_pane(VGA_NODEW_DESC *desc);

/* The pane that holds the keyboard focus; VGA_NODEW_NO_PANE for none. */
NB_USHORT vga_nodew_focus_pane(const VGA_NODEW_DESC *desc);

/* From now on all panes grow and shrink with the window, each in proportion to its height. */
NB_VOID vga_nodew_share_height(VGA_NODEW_DESC *desc);

/* The heights of the panes in a window that leaves `total` pixels for them: in proportion to
 * `shares`, none below `minimum` as long as the total allows it.  Writes VGA_NODEW_PANE_COUNT
 * heights whose sum is `total`. */
NB_VOID vga_nodew_divide(const NB_ULONG *shares, NB_ULONG total, NB_ULONG minimum,
                         NB_ULONG *heights);

/* Callbacks of the panes: a press in the list, or the focus coming to it. */
NB_VOID vga_nodew_select_top_pane(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_nodew_select_middle_pane(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_nodew_select_bottom_pane(Widget widget, XtPointer client_data, XtPointer call_data);

#endif
