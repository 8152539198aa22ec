/* The node window: one node's resources in three lists, with tool bar, menus and a message line.
 *
 * A list window (listwindow.h) whose node is its parent_item; without one it is empty and shows
 * nothing to work with.  The three lists belong to the node's record; they are shown while the
 * node is connected. */
#ifndef VGANODEW_H
#define VGANODEW_H

#include "listwindow.h"
#include "messages.h"
#include "windows.h"

enum VGA_NODEW_PANE_ID : NB_USHORT {
    VGA_NODEW_TOP_PANE,    /* connectivity */
    VGA_NODEW_MIDDLE_PANE, /* local LUs */
    VGA_NODEW_BOTTOM_PANE, /* remote systems */
    VGA_NODEW_PANE_COUNT,
    VGA_NODEW_NO_PANE = VGA_LISTW_NO_LIST
};

struct VGA_NODEW_DESC : VGA_LIST_WINDOW {
    Widget server_icon, server_text;
    Widget signs[VGA_LINE_STATES - 1]; /* explain the marks of states */
    NB_USHORT reading;                 /* flag: the node's lines are on their way */
    NB_ULONG read_before; /* resources that were read before those of the build that runs */
};

/* Shows the window of a node: the one that is open for it, else the program's first window if that
 * is still empty, else a new one.  Null: a window without a node.  `flag` 1 puts it on the screen,
 * in front; 0 leaves that to the caller.
 * Returns 0 when there is no window to be had; the reason was shown or logged. */
NB_USHORT vga_display_node_window(VGA_NODE *node, NB_USHORT flag);

/* The node's name, state, control point or connection changed, or its build is complete: title, the
 * node's own line, lists and buttons follow.  Nothing when no window shows the node. */
NB_VOID vga_update_node_window(VGA_NODE *node);

/* The window of a node (which may be null) whose lines are on their way; null: there is none.
 * Sets `before` to the number of resources that had been read before. */
VGA_LIST_WINDOW *vga_nodew_reading(const VGA_NODE *node, NB_ULONG *before);

/* The program closes: the window is drawn without a node.  Nothing for another window. */
NB_VOID vga_nodew_show_closing(VGA_DIALOG *dialog);

/* Says a message, or a text in the locale's character set, in the message line for the moment; with
 * message 0 that says what it has to say of itself.  The arguments may be those of any window;
 * nothing happens without one. */
NB_VOID vga_message_node_window(VGA_DIALOG *dialog, NB_USHORT message);
NB_VOID vga_message_node_window_text(VGA_DIALOG *dialog, const NB_CHAR *text);

/* Sets buttons and menu items anew; null is ignored. */
NB_VOID vga_nodew_set_button_states(NB_VOID *desc);

/* The record of the selected line of the current pane, its viewer type and the number of selected
 * lines; null, VGA_VIEWER_SELECT_NONE and 0 without one.  `type` and `count` may be null. */
NB_VOID *vga_nodew_get_selection(const VGA_NODEW_DESC *desc, NB_SHORT *type, NB_LONG *count);

/* The node that the window shows; null for an empty window. */
inline VGA_NODE *vga_nodew_node(const VGA_NODEW_DESC *desc) {
    return static_cast<VGA_NODE *>(desc->common.parent_item);
}

#endif
