/* The commands of the node window: what its tool bar, menus and keys can ask for, in one table,
 * with what each needs.  A command without an action is not in this release: its widgets stay
 * insensitive, whatever is selected.  Also the tool bar's pictures and the help under the pointer.
 */
#ifndef VGANODWT_H
#define VGANODWT_H

#include "nofrec.h"
#include "vgadgutl.h"

struct VGA_NODEW_DESC;
struct VGA_NODEW_SITUATION;

/* The first seven have a button in the tool bar, in this order. */
enum VGA_NODEW_COMMAND : NB_USHORT {
    VGA_NODEW_START,
    VGA_NODEW_STOP,
    VGA_NODEW_ADD,
    VGA_NODEW_DELETE,
    VGA_NODEW_ZOOM,
    VGA_NODEW_STATUS,
    VGA_NODEW_COPY,
    VGA_NODEW_TOOL_COUNT,
    VGA_NODEW_SERVER = VGA_NODEW_TOOL_COUNT,
    VGA_NODEW_NODE_PARAMS,
    VGA_NODEW_TRACING,
    VGA_NODEW_PLU_DEF,
    VGA_NODEW_WILDCARD_DEF,
    VGA_NODEW_ALIAS_DEF,
    VGA_NODEW_LS_ROUTING_DEF,
    VGA_NODEW_DIR,
    VGA_NODEW_MODE_COS,
    VGA_NODEW_TP_DEF,
    VGA_NODEW_CN,
    VGA_NODEW_ADD_DLUR_PU,
    VGA_NODEW_ADD_DSLU,
    VGA_NODEW_ADD_3270_LU,
    VGA_NODEW_ADD_3270_PRINTER,
    VGA_NODEW_ADD_RJE_LU,
    VGA_NODEW_ADD_LU0,
    VGA_NODEW_RJE_WKSTN,
    VGA_NODEW_TN_SERVER,
    VGA_NODEW_TAMRIX,
    VGA_NODEW_HPR,
    VGA_NODEW_PRIMARY_LINE,
    VGA_NODEW_PRIMARY_LU0,
    VGA_NODEW_SECONDARY_LU0,
    VGA_NODEW_ADD_INDEP_LOCAL_LU,
    VGA_NODEW_ADD_DEP_LOCAL_LU,
    VGA_NODEW_ADD_REMOTE_SYSTEM,
    VGA_NODEW_CL_SECURITY,
    VGA_NODEW_SL_SECURITY,
    VGA_NODEW_COMMAND_COUNT
};

/* What a command is for. */
enum VGA_NODEW_SCOPE : NB_UCHAR {
    VGA_NODEW_FOR_NODE,      /* the node, whatever is selected */
    VGA_NODEW_FOR_PANE,      /* the current pane */
    VGA_NODEW_FOR_SELECTION, /* the selected lines, or the node when there are none */
};

struct VGA_NODEW_COMMAND_ROW {
    VGA_NODEW_COMMAND command; /* equals the index */
    const NB_CHAR *item;       /* its menu item; null: none */
    VGA_NODEW_SCOPE scope;
    NB_UCHAR changes;     /* flag: of no use to someone who may only look */
    NB_UCHAR node_states; /* VGA_NODEW_IN(state), ORed: for VGA_NODEW_FOR_NODE */
    NB_UCHAR NAP_QUERY_NODE_VERB::*capability; /* what the node must support; null: nothing */
    NB_USHORT option;                          /* of gvga_supported, or VGA_NODEW_NO_OPTION */
    NB_VOID (*action)(VGA_NODEW_DESC *desc);   /* null: not in this release */
};

#define VGA_NODEW_IN(state) static_cast<NB_UCHAR>(1u << (state))
#define VGA_NODEW_NO_OPTION 0xFFFF

extern const VGA_NODEW_COMMAND_ROW gvga_nodew_commands[VGA_NODEW_COMMAND_COUNT];

/* Carries a command out, or says in the message line why not. */
NB_VOID vga_nodew_run(VGA_NODEW_DESC *desc, VGA_NODEW_COMMAND command);

/* The keys of the lists; the widget is the drawn button. */
NB_VOID vga_nodew_add_items(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_nodew_delete(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_nodew_zoom(Widget widget, XtPointer client_data, XtPointer call_data);

/* The end of a button press in the window: the buttons follow the selection. */
NB_VOID vga_nodew_disarm(Widget widget, XtPointer client_data, XtPointer call_data);

/* The node's own icon or text is pressed or gets the keyboard: commands are for the node now. */
NB_VOID vga_nodew_server_arm_cb(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_nodew_server(Widget widget, XtPointer client_data, XtPointer call_data);

/* For the window's row in gvga_uid_desc. */
#define VGA_NODEW_CALLBACK_COUNT 41
#define VGA_NODEW_ACTION_COUNT   2
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
