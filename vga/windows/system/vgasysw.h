/* The system window: the nodes of a client/server domain, a line each, with state and server role.
 *
 * It is the program's first window there: node windows are opened from it, and closing it ends the
 * program.  Its list is the domain's own (gvga_system->node_viewer_root).  gvga_system->window is
 * its descriptor from the first model on until the program closes. */
#ifndef VGASYSW_H
#define VGASYSW_H

#include "listwindow.h"
#include "windows.h"

struct VGA_SYSW_DESC : VGA_LIST_WINDOW {};

/* Fetches the window; with `flag` 1 shows the nodes in it and puts it on the screen, in front.
 * Returns 0 when there is no window to be had; the reason was shown or logged. */
NB_USHORT vga_display_system_window(NB_USHORT flag);

/* Puts a message into the message line; 0 clears it.  Nothing for another window, or null. */
NB_VOID vga_message_system_window(VGA_DIALOG *desc, NB_USHORT message);

/* Closes all that was opened from the window, puts a message into the message line as above, and
 * takes the window out of use: the node software went away, or the program closes. */
NB_VOID vga_sysw_set_insensitive(VGA_DIALOG *desc, NB_USHORT message);

/* A node's name, state, role or connection changed: its line, the buttons if it is selected, and
 * its own window follow. */
NB_VOID vga_update_node_viewer(VGA_NODE *node);

/* Sets buttons and menu items by the node that is selected; null is ignored.  For the row of
 * gvga_viewer_desc.
 * REQUIRES: the system window (an assertion). */
NB_VOID vga_sysw_set_button_states(NB_VOID *window);

/* Callbacks of the lines: one node is selected at a time. */
NB_VOID vga_sysw_node_arm_cb(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs);
NB_VOID vga_sysw_node_act_cb(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs);
NB_VOID vga_sysw_node_drag_cb(NB_VOID *data, NB_USHORT select, NB_USHORT redraw);

#endif
