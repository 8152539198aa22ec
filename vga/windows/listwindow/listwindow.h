/* List windows: the one pattern of windows that show lists of resources and operate on them.
 *
 * A window is described in resources/windows/<name>.window: menus, tool bar, lists and what its
 * commands need.  The build makes the widgets, the tables and the plan.  What is here shows the
 * lists, keeps one of them current, runs commands from menu, tool bar, pop-up and keys, says why
 * one is off, and explains what is under the pointer.  What can be done with a line its type says,
 * for all windows alike (linerules.h).  docs/how-to-add-a-window.md walks through one.
 *
 * The lists belong to the record that the window shows (parent_item: a node, or null for the
 * domain) and outlive the window: they are attached to its widgets while it is open.  A list is
 * current when it has the keyboard; at most one has a selection, the current one.
 * Parts: commands rules and running, panes lists, windowroom who gets the window's room, popupmenu
 * the lists' menu, linerules types of lines, lineevents their callbacks, operating and deleting the
 * actions that issue verbs, messageline what the message line says. */
#ifndef LISTWINDOW_H
#define LISTWINDOW_H

#include "commands.h"
#include "vgadgutl.h"
#include "vgaviewr.h"
#include <span>

#define VGA_LISTW_MAX_LISTS    3
#define VGA_LISTW_MAX_COMMANDS 64
#define VGA_LISTW_MAX_TOOLS    8
#define VGA_LISTW_NO_LIST      VGA_LISTW_MAX_LISTS
#define VGA_LISTW_NO_COMMAND   0xFFFF

/* A button of the tool bar, or beside the list of a dialog, which has neither frame nor icon. */
struct VGA_TOOL_ROW {
    NB_USHORT command; /* equals the index */
    const NB_CHAR *frame = nullptr, *icon = nullptr, *text;
    const NB_CHAR *picture = nullptr, *grey_picture = nullptr; /* icons */
    NB_USHORT help;                                            /* message, for the message line */
    NB_USHORT named_help; /* the same while a line is selected, with its name as argument; or 0 */
};

/* A list: names of its widgets, and where it lies. */
struct VGA_LISTW_ROW {
    const NB_CHAR *form, *title, *counts, *key, *rule, *draw_area, *hscroll, *vscroll;
    const NB_CHAR *headings = nullptr; /* null: none */
    VGA_VIEWER_TYPE headings_of = VGA_VIEWER_NODE;
    VGA_VIEWER_ROOT VGA_NODE::*of_node = nullptr; /* one of the two */
    VGA_VIEWER_ROOT VGA_SYSTEM::*of_domain = nullptr;
    NB_USHORT add = VGA_NO_DIALOG;  /* the dialog that Add opens */
    const NB_CHAR *topic = nullptr; /* help on the list; null: that of the window */
    NB_USHORT selects = 0;          /* flag: the description names what makes it current */
};

/* A kind of line that is explained beside a list's title. */
struct VGA_LISTW_KEY {
    const NB_CHAR *label, *icon;
};

/* What a window is.  Made from its description. */
struct VGA_LISTW_PLAN {
    const NB_CHAR *prefix; /* of its widgets' names */
    std::span<const VGA_COMMAND_ROW> commands;
    std::span<const VGA_TOOL_ROW> tools; /* the first commands */
    std::span<const VGA_LISTW_ROW> lists;
    std::span<const VGA_LISTW_KEY> keys = {};
    NB_USHORT add, zoom, remove;    /* commands of the keys Insert, Return and Delete */
    const NB_CHAR *popup = nullptr; /* the menu of its lists */
    const NB_CHAR *head = nullptr;  /* what stands between tool bar and lists */
};

/* The plan of the window of that name; null: that is no list window. */
const VGA_LISTW_PLAN *vga_find_plan(const NB_CHAR *name);

struct VGA_LISTW_PANE {
    Widget form; /* its border marks the current list */
    Widget title, counts, rule;
    Widget key;        /* explains its icons; null: none */
    Widget filter_off; /* ends the filter; null: there was none yet */
    Widget bar;        /* the field in the row of the title; null: closed */
    NB_ULONG bar_height;
    NB_USHORT filtered; /* flag: a filter is on */
    Widget draw_area, hscroll, vscroll;
    Widget headings; /* null: none */
    NB_ULONG share;  /* height in pixels that its part of the window comes from (paneheights.h) */
};

struct VGA_LISTW_TOOL {
    Widget frame, icon, text; /* the first two null in a dialog */
};

/* The field in the row of a list's title (findbar.h). */
enum VGA_LISTW_BAR_KIND : NB_UCHAR { VGA_LISTW_NO_BAR, VGA_LISTW_FIND_BAR, VGA_LISTW_FILTER_BAR };
struct VGA_LISTW_BAR {
    VGA_LISTW_BAR_KIND kind;
    NB_USHORT pane;
    Widget form, field;
    Widget result;      /* of the search */
    Widget state;       /* the filter's option menu */
    NB_CHAR sought[64]; /* the last text; what "next" goes to */
};

/* The beginning of every list window's descriptor. */
struct VGA_LIST_WINDOW {
    VGA_DIALOG common;
    const VGA_LISTW_PLAN *plan;
    NB_USHORT list_count;
    Widget panes_widget;
    Widget message_bar;
    Widget band; /* says whether it is to be looked at only, and what node it is */
    VGA_LISTW_PANE panes[VGA_LISTW_MAX_LISTS];
    NB_USHORT current_pane; /* VGA_LISTW_NO_LIST: none */
    NB_USHORT lists_shown;  /* flag: the panes show the lists */
    NB_USHORT zoom;         /* flag: what is selected has properties that can be shown */
    Pixel normal_border, current_border;
    VGA_LISTW_BAR bar;
    NB_USHORT counts_due; /* flag: a timer is to show the counts */
    VGA_LISTW_TOOL tools[VGA_LISTW_MAX_TOOLS];
    Widget items[VGA_LISTW_MAX_COMMANDS];      /* menu items; null where a command has none */
    Widget popups[VGA_LISTW_MAX_COMMANDS];     /* entries of the lists' menu; likewise */
    NB_USHORT allowed[VGA_LISTW_MAX_COMMANDS]; /* flag: what the situation allows */
    NB_USHORT reasons[VGA_LISTW_MAX_COMMANDS]; /* messages: why not, when it was last refused */
};

/* Slots for rows of gvga_uid_desc, and what a window with a descriptor of its own calls in its own.
 * The first looks the widgets up, gives them pictures and callbacks, and fits the window to the
 * screen; 0 when a widget is missing.  One that has more to put into its widgets does so between
 * the two steps. */
NB_USHORT vga_listw_get_widgets(VGA_DIALOG *dialog, const VGA_LISTW_PLAN &plan);
NB_USHORT vga_listw_find_widgets(VGA_DIALOG *dialog, const VGA_LISTW_PLAN &plan);
NB_VOID vga_listw_arrange(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_close_proc(VGA_DIALOG *dialog);
NB_VOID vga_listw_record_changed(VGA_DIALOG *dialog, NB_VOID *item, VGA_RECORD_CHANGE what);
NB_VOID vga_listw_command_proc(VGA_DIALOG *dialog, NB_USHORT command);
NB_VOID vga_listw_delete_key(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_listw_zoom_key(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_listw_add_key(Widget widget, XtPointer client_data, XtPointer call_data);

/* For the table of windows: what is made of a description. */
struct VGA_LISTW_UID_ROW {
    const NB_CHAR *name;
    NB_USHORT desc_size;
    decltype(VGA_UID_DESC::get_widgets) get_widgets;
    decltype(VGA_UID_DESC::close_proc) close_proc;
    decltype(VGA_UID_DESC::record_changed) record_changed;
    MRMRegisterArg *callbacks;
    NB_USHORT callback_count;
    XtActionsRec *actions;
    NB_USHORT action_count;
};

/* Opens the window or dialog of that row: a list window, for the node that `window` shows or, over
 * the program's main window, for the domain (raised when it is open for that already); or, over
 * `window`, the form of a new record. */
NB_VOID vga_listw_open(VGA_LIST_WINDOW *window, NB_USHORT dialog_id);

/* The window of a widget, or of a descriptor that may be any or null; null elsewhere. */
VGA_LIST_WINDOW *vga_listw_from_widget(Widget widget);
VGA_LIST_WINDOW *vga_listw_of(VGA_DIALOG *dialog);

/* The node that the window shows; null for the domain's windows and for an empty one. */
VGA_NODE *vga_listw_node(const VGA_LIST_WINDOW *window);

/* Lists. */

/* The list of a pane, and that of the current one; null while nothing is shown. */
VGA_VIEWER_ROOT *vga_listw_root(const VGA_LIST_WINDOW *window, NB_USHORT pane);
VGA_VIEWER_ROOT *vga_listw_current_root(const VGA_LIST_WINDOW *window);

/* Shows the lists in their widgets, or leaves these blank: then no pane is current. */
NB_VOID vga_listw_show_lists(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_hide_lists(VGA_LIST_WINDOW *window);

/* The record of the selected line of the current list, its viewer type and the number of selected
 * lines; null, VGA_VIEWER_SELECT_NONE and 0 without one.  `type` and `count` may be null. */
NB_VOID *vga_listw_get_selection(const VGA_LIST_WINDOW *window, NB_SHORT *type, NB_LONG *count);

/* Commands. */

VGA_SITUATION vga_listw_situation(const VGA_LIST_WINDOW *window);

/* Carries a command out, or says in the message line why not. */
NB_VOID vga_listw_run(VGA_LIST_WINDOW *window, NB_USHORT command);
NB_VOID vga_listw_run_from(Widget widget, NB_USHORT command);

/* Sets buttons and menu items by the situation.  For set_button_states of viewer types, too:
 * `window` is the VGA_LIST_WINDOW; null is ignored. */
NB_VOID vga_listw_set_button_states(NB_VOID *window);

/* Actions that most windows have.  Those that issue verbs are in files of their own. */
NB_VOID vga_listw_add(VGA_LIST_WINDOW *window);    /* a new record, by the current list's form */
NB_VOID vga_listw_zoom(VGA_LIST_WINDOW *window);   /* the properties of what is selected */
NB_VOID vga_listw_status(VGA_LIST_WINDOW *window); /* its status */
NB_VOID vga_listw_copy(VGA_LIST_WINDOW *window);   /* its properties as those of a new record */
NB_VOID vga_listw_copy_name(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_help_on_this(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_find(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_find_next(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_find_previous(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_filter(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_filter_off(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_failed_next(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_failed_previous(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_messages(VGA_LIST_WINDOW *window); /* the history of messages */

/* F1 in a list: as vga_listw_help_on_this. */
NB_VOID vga_listw_help_cb(Widget list, XtPointer client_data, XtPointer call_data);

/* Message line. */

/* Says a message, or a text in the locale's characters, for the moment; after that, and with
 * message 0, the line says what it has to say of itself (messageline.h). */
NB_VOID vga_listw_message(VGA_LIST_WINDOW *window, NB_USHORT message);
NB_VOID vga_listw_message_text(VGA_LIST_WINDOW *window, const NB_CHAR *text);

/* Pointer help: toolkit actions of the tools. */

extern Widget gvga_current_button; /* the tool under the pointer; null: none */
NB_VOID vga_listw_enter_button(Widget widget, XEvent *event, String *params, Cardinal *count);
NB_VOID vga_listw_leave_button(Widget widget, XEvent *event, String *params, Cardinal *count);

/* The window goes: no tool of it is under the pointer any more. */
NB_VOID vga_listw_forget_button(VGA_LIST_WINDOW *window);

/* The number of an icon by its name; that of "blank" for a name that there is not. */
NB_USHORT vga_icon_by_name(const NB_CHAR *name);

#endif
