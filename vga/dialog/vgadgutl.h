/* The dialog framework: the table of windows and dialogs, their descriptors, and how one is
 * fetched, shown, closed and used again.
 *
 * OWNS: every descriptor.  One is made when its dialog is first fetched, is kept when the dialog
 * closes (in_use 0) and serves the next fetch; none is freed before vga_free_dialogs, so that a
 * pointer to one never dangles.  Its handle, however, lives only while the dialog is open: whoever
 * waits for an answer keeps the handle, and finds nothing once the dialog was closed. */
#ifndef VGADGUTL_H
#define VGADGUTL_H

#include "hooks.h"
#include "messagebox.h"
#include "nbbase.h"
#include "nbtypes.h"
#include <Mrm/MrmPublic.h>
#include <X11/Intrinsic.h>
#include <Xm/Xm.h>
#include <array>
#include <span>
#include <string>

struct VGA_DIALOG;

/* The table. */

/* The number of a window or dialog is its row in gvga_uid_desc; the windows give the numbers names.
 */
#define VGA_UID_MAX 86

#define VGA_UID_NAME_SIZE 14 /* with the terminator */

enum VGA_DIALOG_KIND : NB_ULONG {
    VGA_KIND_MAIN,   /* a window with an application shell of its own */
    VGA_KIND_DIALOG, /* a dialog over its parent */
    VGA_KIND_MODAL,  /* the same, and the program's other windows wait for it */
};

/* One row.  Null functions: the window has no such thing; without `get_widgets` fetching the row
 * fails as for a missing description.
 *
 * The framework makes the shell.  The tree in the UID file is what stands in it: an XmMessageBox
 * with XmNdialogType XmDIALOG_TEMPLATE for a dialog (an XmTemplateDialog would bring a second
 * shell), any manager for a main window. */
struct VGA_UID_DESC {
    NB_USHORT dialog_id;             /* equals the index */
    NB_CHAR name[VGA_UID_NAME_SIZE]; /* top widget in the UID file, and help topic */
    VGA_DIALOG_KIND kind;
    NB_USHORT desc_size = 0; /* bytes of the whole descriptor, VGA_DIALOG included */

    /* Looks the dialog's widgets up after fetching.  1, or 0 when one is missing. */
    NB_USHORT (*get_widgets)(VGA_DIALOG *desc) = nullptr;
    /* The dialog is closing: detach it from its record, purge its verbs (the handle is still
     * valid).  Widgets are hidden and the descriptor released by the framework afterwards. */
    NB_VOID (*close_proc)(VGA_DIALOG *desc) = nullptr;
    /* Runs a command of the window, by the number that its description passes to vga_command_cb;
     * null: the window has none. */
    NB_VOID (*command_proc)(VGA_DIALOG *desc, NB_USHORT command) = nullptr;

    /* Delete, Return and Insert keys in its viewers: called with the drawn button as widget. */
    XtCallbackProc delete_action = nullptr;
    XtCallbackProc zoom_action = nullptr;
    XtCallbackProc add_action = nullptr;

    /* Procedures that the UID file names, and toolkit actions; registered before the first fetch.
     */
    MRMRegisterArg *callbacks = nullptr;
    NB_USHORT callback_count = 0;
    XtActionsRec *actions = nullptr;
    NB_USHORT action_count = 0;

    /* Told of every record that is added, changed or goes while the dialog is open; most of them
     * are none of its business.  It may close dialogs, itself too. */
    NB_VOID (*record_changed)(VGA_DIALOG *desc, NB_VOID *item, VGA_RECORD_CHANGE what) = nullptr;

    /* 0: the operator wants to close the dialog, and is asked first.  Null: it just closes. */
    NB_USHORT (*may_close)(VGA_DIALOG *desc) = nullptr;

    /* Flag: not in this release.  The row can be fetched, but its description has no more than a
     * title, Close and Help, and nothing offers it. */
    NB_USHORT later = 0;

    VGA_DIALOG *first_desc = nullptr; /* descriptors made so far, oldest first (next_desc) */
    VGA_DIALOG *last_desc = nullptr;
};

/* Defined with the windows (a test may define its own): the only door from here up to them. */
typedef std::array<VGA_UID_DESC, VGA_UID_MAX + 1> VGA_UID_TABLE;
extern VGA_UID_TABLE gvga_uid_desc;

/* Windows that are parts of dialogs, as the editor of one row of a list: described and opened as
 * those of the table, but only from their dialog, with which they close.  Their numbers begin
 * behind those of the table.  Defined beside it; empty where there are none. */
#define VGA_UID_PARTS (VGA_UID_MAX + 1)
extern std::span<VGA_UID_DESC> gvga_part_desc;

/* The row of that number in the table or of the parts; null: there is none. */
VGA_UID_DESC *vga_find_row(NB_USHORT dialog_id);

/* The same by name. */
VGA_UID_DESC *vga_find_row_named(const NB_CHAR *name);

/* Calls visit(row) for all rows, those of parts behind the others. */
template <class Visit> NB_VOID vga_for_each_row(Visit visit) {
    for (VGA_UID_DESC &row : gvga_uid_desc) {
        visit(row);
    }
    for (VGA_UID_DESC &part : gvga_part_desc) {
        visit(part);
    }
}

/* The rows that the framework itself knows of, defined beside the table. */
struct VGA_UID_ROLES {
    NB_USHORT system_window; /* takes the program's first shell, where it is in this release */
    NB_USHORT node_window;   /* otherwise takes it */
    NB_USHORT about_box;     /* of the Help menus */
};
extern const VGA_UID_ROLES gvga_uid_roles;

/* Descriptor. */

/* The beginning of every descriptor, as its member `common`.  Everything behind it starts as zero
 * and keeps its value when the descriptor is used again: a dialog resets what it must. */
struct VGA_DIALOG {
    NB_LQE child_lqe;         /* in the parent's list of children; first, so that a link is one */
    NB_LQE children_root_lqe; /* the dialogs opened from this one, oldest first */
    VGA_DIALOG *next_desc;    /* the next descriptor of the same row */
    NB_ULONG handle;          /* 0 while closed; another one at each opening */
    NB_USHORT dialog_id;
    NB_USHORT in_use;    /* the dialog is open */
    NB_USHORT closing;   /* being closed: a nested close returns at once */
    NB_VOID *owner_item; /* the record that the one shown belongs to, or a new one will; or null */
    VGA_DIALOG *parent;  /* kept by a closed dialog: it is used again only under the same parent */
    union {
        NB_VOID *context;     /* the caller's pointer */
        NB_VOID *parent_item; /* the same under its usual name: the record shown or edited */
    };
    NB_ULONG unseen; /* failures that its title tells of (attention.h) */
    Widget shell;
    Widget widget; /* top widget from the UID file; its XmNuserData is this descriptor */
    VGA_MODAL_DLG modal_dlg;
};

/* The first window made on the top-level shell, until the model fills it; and the same for good,
 * as the parent of the program's own messages.  Start-up sets the latter and clears the former. */
extern VGA_DIALOG *gvga_first_dialog;
extern VGA_DIALOG *gvga_main_dialog;

/* Life of a dialog. */

/* Start-up: checks that the table is in order (an assertion for each row that is not), empties the
 * lists of descriptors, hands the viewer the actions of its windows, and takes the two hooks that
 * tell dialogs of records. */
NB_VOID vga_init_dialogs(NB_VOID);

/* The end: frees every descriptor with its handle and its waiting messages.  Widgets are left to
 * the end of the process. */
NB_VOID vga_free_dialogs(NB_VOID);

/* Fetches a dialog or takes a closed one again: the first descriptor of that row that is closed and
 * whose parent is null or `parent`.  It is open then (in_use 1) but not on the screen yet.
 *
 * `parent` may be null for a main window.  Returns 1 and the descriptor, or 0 and null: an
 * assertion for an unknown id; message 208 and a problem record when there is no description; a
 * problem record too when a widget is missing; exit code 1 without memory. */
NB_USHORT vga_get_dialog(NB_USHORT dialog_id, VGA_DIALOG *parent, NB_VOID *context,
                         VGA_DIALOG **desc);

/* Puts an open dialog on the screen, in front. */
NB_VOID vga_display_dialog(VGA_DIALOG *desc);

/* Brings an open dialog to the front, out of an icon too. */
NB_VOID vga_raise_dialog(VGA_DIALOG *desc);

/* The same for one that was open already: it gets the keyboard, too, which window managers give to
 * new windows only. */
NB_VOID vga_raise_with_keyboard(VGA_DIALOG *desc);

/* Gives the title to the dialog's window; with gvga_display_names its UID name stands before it.
 * `title` is in the locale's character set. */
NB_VOID vga_set_title(VGA_DIALOG *desc, const NB_CHAR *title);

/* The title that was given last, or that of the description; without the name. */
std::string vga_get_title(const VGA_DIALOG *desc);

/* Marks a descriptor free and takes it out of its parent's children.  For the framework's own use;
 * a dialog is closed with vga_close_children.
 * REQUIRES: no children (a fatal assertion). */
NB_VOID vga_release_dialog(VGA_DIALOG *desc);

/* Closes the open children of a dialog, depth first, and with `include_self` the dialog too.  For
 * each: its close_proc is called, its message box and waiting messages go without an answer, it
 * leaves the screen and is released.
 *
 * The main dialog's window stays, because the end of the program is reported over it: with
 * `include_self` and `force` its close_proc is called and its messages go, without `force` nothing
 * happens to it.  `force` says that this is not the operator's doing and has no other effect. */
NB_VOID vga_close_children(VGA_DIALOG *desc, NB_USHORT include_self, NB_USHORT force);

/* The close handler of every dialog, for the window manager's request and for Cancel and Close
 * buttons: closes the dialog of `widget`, if it may; for the main dialog asks whether to end the
 * program. */
NB_VOID vga_close_cb(Widget widget, XtPointer client_data, XtPointer call_data);

/* Runs the command of the widget's window that the integer at `client_data` numbers. */
NB_VOID vga_command_cb(Widget widget, XtPointer client_data, XtPointer call_data);

/* Callback: asks whether to end the program, and on OK has the orderly close started. */
NB_VOID vga_exit_cb(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_exit_confirm_cb(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG client_data);

/* The open or closed dialog that a widget belongs to, its message box included; null for none. */
VGA_DIALOG *vga_get_dialog_from_widget(Widget widget);

/* The row that a descriptor was made of. */
VGA_UID_DESC &vga_row_of(const VGA_DIALOG *desc);

/* Calls `visit` for every descriptor that exists, open or closed. */
NB_VOID vga_for_each_dialog(NB_VOID (*visit)(VGA_DIALOG *desc, NB_VOID *data), NB_VOID *data);

#endif
