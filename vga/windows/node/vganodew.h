/* The node window: one node's resources in three lists, with tool bar, menus and a message line.
 *
 * The window shows the record that its common header holds as parent_item; without one it is empty
 * and shows nothing to work with.  The three lists belong to the node's record and outlive the
 * window: they are attached to its widgets while it shows the node.  A pane is current when it has
 * the keyboard; at most one list has a selection, that of the current pane.
 * Parts: popupmenu the lists' menu, panes panes, nodeselection selection and what it allows,
 * nodecommands commands and tool bar, rememberedlines what comes back with a node. */
#ifndef VGANODEW_H
#define VGANODEW_H

#include "messages.h"
#include "model.h"
#include "nodecommands.h"
#include "vgadgutl.h"
#include "vgaviewr.h"

enum VGA_NODEW_PANE_ID : NB_USHORT {
    VGA_NODEW_TOP_PANE,    /* connectivity */
    VGA_NODEW_MIDDLE_PANE, /* local LUs */
    VGA_NODEW_BOTTOM_PANE, /* remote systems */
    VGA_NODEW_PANE_COUNT,
    VGA_NODEW_NO_PANE = VGA_NODEW_PANE_COUNT
};

struct VGA_NODEW_PANE {
    Widget form; /* its border marks the current pane */
    Widget title;
    Widget draw_area, hscroll, vscroll;
    NB_ULONG share; /* height in pixels that its part of the window comes from */
};

struct VGA_NODEW_TOOL {
    Widget frame, icon, text;
    Widget popup; /* the same in the lists' menu */
};

struct VGA_NODEW_DESC {
    VGA_DIALOG common;
    Widget panes_widget;
    Widget server_icon, server_text;
    Widget message_bar;
    VGA_NODEW_PANE panes[VGA_NODEW_PANE_COUNT];
    NB_USHORT current_pane; /* VGA_NODEW_NO_PANE: none */
    NB_USHORT lists_shown;  /* flag: the node is connected, so the panes show its lists */
    NB_USHORT reading;      /* flag: the node's lines are on their way */
    NB_ULONG read_before;   /* resources that were read before those of the build that runs */
    Dimension panes_height; /* of all panes when their shares were last looked at */
    Dimension least_pane;   /* height of a pane that shows two lines */
    Pixel normal_border, current_border;
    VGA_NODEW_TOOL tools[VGA_NODEW_TOOL_COUNT];
    Widget items[VGA_NODEW_COMMAND_COUNT];      /* menu items; null where a command has none */
    NB_USHORT allowed[VGA_NODEW_COMMAND_COUNT]; /* what the selection and the states allow */
    NB_USHORT reasons[VGA_NODEW_COMMAND_COUNT]; /* messages: why not, when it was last refused */
};

/* Slots of the window's row in gvga_uid_desc. */
NB_USHORT vga_get_widgets_node_window(VGA_DIALOG *dialog);
NB_VOID vga_nodew_close_proc(VGA_DIALOG *dialog);
NB_VOID vga_nodew_record_changed(VGA_DIALOG *dialog, NB_VOID *item, VGA_RECORD_CHANGE what);

/* Shows the window of a node: the one that is open for it, else the program's first window if that
 * is still empty, else a new one.  Null: a window without a node.  `flag` 1 puts it on the screen,
 * in front; 0 leaves that to the caller.
 * Returns 0 when there is no window to be had; the reason was shown or logged. */
NB_USHORT vga_display_node_window(VGA_NODE *node, NB_USHORT flag);

/* The node's name, state, control point or connection changed, or its build is complete: title, the
 * node's own line, lists and buttons follow.  Nothing when no window shows the node. */
NB_VOID vga_update_node_window(VGA_NODE *node);

/* Says in the message line of the node's window, or of the program's first one while that is still
 * empty, what is being read (null: the domain) and how many resources so far. */
NB_VOID vga_show_build_progress(const VGA_NODE *node, NB_ULONG resources);

/* The program's own window, which stays to the end, says that the program closes, and whose answer
 * (null: the domain's) it waits for. */
NB_VOID vga_show_closing(const VGA_NODE *node);

/* Puts into the message line what stands there while nothing else is to be said: nothing, or why
 * the lists of a node that is not connected are blank. */
NB_VOID vga_nodew_message_at_rest(VGA_NODEW_DESC *desc);

/* Puts a message, or a text in the locale's character set, into the message line; message 0 clears
 * it.  The arguments may be those of any window; nothing happens without one. */
NB_VOID vga_message_node_window(VGA_DIALOG *dialog, NB_USHORT message);
NB_VOID vga_message_node_window_text(VGA_DIALOG *dialog, const NB_CHAR *text);

/* The descriptor of the node window that a widget stands in; null elsewhere. */
VGA_NODEW_DESC *vga_nodew_from_widget(Widget widget);

/* The node that the window shows; null for an empty window. */
inline VGA_NODE *vga_nodew_node(const VGA_NODEW_DESC *desc) {
    return static_cast<VGA_NODE *>(desc->common.parent_item);
}

#endif
