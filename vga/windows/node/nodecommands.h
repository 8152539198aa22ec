/* The commands of the node window: what its tool bar, menus and keys can ask for, in one table,
 * with what each needs.  All of it comes from resources/windows/nodew.commands, as do the enum
 * VGA_NODEW_COMMAND, whose first ones have a button in the tool bar, and the description of the
 * widgets.  A command without an action is not in this release: its widgets stay insensitive,
 * whatever is selected.  Also the tool bar's pictures and the help under the pointer. */
#ifndef NODECOMMANDS_H
#define NODECOMMANDS_H

#include "nodew_commands.h"
#include "nofrec.h"
#include "vgadgutl.h"

struct VGA_NODEW_DESC;
struct VGA_NODEW_SITUATION;

/* What a command is for. */
enum VGA_NODEW_SCOPE : NB_UCHAR {
    VGA_NODEW_FOR_NODE,      /* the node, whatever is selected */
    VGA_NODEW_FOR_PANE,      /* the current pane */
    VGA_NODEW_FOR_SELECTION, /* the selected lines, or the node when there are none */
};

#define VGA_NODEW_IN(state) static_cast<NB_UCHAR>(1u << (state))
#define VGA_NODEW_READABLE                                                                         \
    (VGA_NODEW_IN(NAP_NODE_STOPPED) | VGA_NODEW_IN(NAP_NODE_STARTING) |                            \
     VGA_NODEW_IN(NAP_NODE_STOPPING) | VGA_NODEW_IN(NAP_NODE_ACTIVE))
#define VGA_NODEW_NO_OPTION 0xFFFF

struct VGA_NODEW_COMMAND_ROW {
    VGA_NODEW_COMMAND command; /* equals the index */
    const NB_CHAR *item;       /* its menu item; null: none */
    VGA_NODEW_SCOPE scope = VGA_NODEW_FOR_NODE;
    NB_UCHAR changes = 0;                 /* flag: of no use to someone who may only look */
    NB_UCHAR states = VGA_NODEW_READABLE; /* VGA_NODEW_IN(state), ORed: for VGA_NODEW_FOR_NODE */
    NB_UCHAR NAP_QUERY_NODE_VERB::*capability = nullptr; /* what the node must support */
    NB_USHORT option = VGA_NODEW_NO_OPTION;              /* of gvga_supported */
    NB_VOID (*action)(VGA_NODEW_DESC *desc) = nullptr;   /* null: not in this release */
};

extern const VGA_NODEW_COMMAND_ROW gvga_nodew_commands[VGA_NODEW_COMMAND_COUNT];

/* Carries a command out, or says in the message line why not. */
NB_VOID vga_nodew_run(VGA_NODEW_DESC *desc, VGA_NODEW_COMMAND command);

/* The procedures that only run a command, under their own names.  Three of them are keys of the
 * lists, too, with the drawn button as the widget. */
#define VGA_NODEW_PROCEDURE(name, command)                                                         \
    NB_VOID name(Widget widget, XtPointer client_data, XtPointer call_data);
VGA_NODEW_PROCEDURES(VGA_NODEW_PROCEDURE)
#undef VGA_NODEW_PROCEDURE

/* The same by number, for commands without a procedure of their own. */
NB_VOID vga_nodew_command_proc(VGA_DIALOG *dialog, NB_USHORT command);

/* The end of a button press in the window: the buttons follow the selection. */
NB_VOID vga_nodew_disarm(Widget widget, XtPointer client_data, XtPointer call_data);

/* The node's own icon or text is pressed or gets the keyboard: commands are for the node now. */
NB_VOID vga_nodew_server_arm_cb(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_nodew_server(Widget widget, XtPointer client_data, XtPointer call_data);

/* For the window's row in gvga_uid_desc. */
#define VGA_NODEW_ACTION_COUNT 2
extern MRMRegisterArg gvga_nodew_callbacks[VGA_NODEW_CALLBACK_COUNT];
extern XtActionsRec gvga_nodew_actions[VGA_NODEW_ACTION_COUNT];

/* The button of a tool bar under the pointer; null: none. */
extern Widget gvga_current_button;

/* Looks up the widgets of tool bar and menus; 0 when one is missing. */
NB_USHORT vga_nodew_get_command_widgets(VGA_NODEW_DESC *desc);

/* Has the widgets of a command say why it is off: under the pointer and in the message line. */
NB_VOID vga_nodew_show_reason(VGA_NODEW_DESC *desc, VGA_NODEW_COMMAND command, NB_USHORT message);

/* Gives the tools, the keys of the panes and the node's line their pictures. */
NB_VOID vga_nodew_put_pixmaps(VGA_NODEW_DESC *desc);

/* Shows `desc->allowed` in the tool bar and the menus. */
NB_VOID vga_nodew_show_allowed(VGA_NODEW_DESC *desc);

/* The window goes: no button of it is under the pointer any more. */
NB_VOID vga_nodew_forget_button(VGA_NODEW_DESC *desc);

/* The number of an icon by its name; that of "blank" for a name that there is not. */
NB_USHORT vga_nodew_icon(const NB_CHAR *name);

#endif
