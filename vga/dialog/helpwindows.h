/* Help windows: which topic each window, dialog and message asks for, and the help menu's entries.
 *
 * A topic is named as the row of the window in gvga_uid_desc, or as the help key of a message.  A
 * topic has one window: asking for it again brings that to the front.  Windows stay until the
 * operator closes them and hold up nothing else.
 * OWNS: the shells, until they are closed. */
#ifndef HELPWINDOWS_H
#define HELPWINDOWS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

#define VGA_HELP_VOLUME "Help4Quiladmin"

enum VGA_HELP_FORM : NB_USHORT {
    VGA_HELP_FULL,     /* with contents, index and search */
    VGA_HELP_QUICK,    /* the topic alone, for a message */
    VGA_HELP_MAN_PAGE, /* `topic` is the name of a manual page, "name(section)" */
};

/* Shows a topic.  `volume` null: the program's own; `topic` null: the volume's first.  Both are
 * copied. */
NB_VOID vga_display_help_topic(const NB_CHAR *volume, const NB_CHAR *topic, VGA_HELP_FORM form);

/* Help callback of a window: `client_data` is the name of its row. */
NB_VOID vga_help_cb(Widget widget, XtPointer client_data, XtPointer call_data);

/* Help callback of a message box: quick help on the message that is shown. */
NB_VOID vga_modal_dialog_help_cb(Widget widget, XtPointer client_data, XtPointer call_data);

/* Callbacks of a help dialog: a link that leads out of its window, and the end of it. */
NB_VOID vga_help_hyper_cb(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_help_close_cb(Widget widget, XtPointer client_data, XtPointer call_data);

/* Entries of the help menus (the web's are in webhelp.h). */
NB_VOID vga_menu_help_contents(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_menu_help_index(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_menu_help_search(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_menu_help_help(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_menu_help_about(Widget widget, XtPointer client_data, XtPointer call_data);

/* 1 when this release has the window that the last entry shows. */
NB_USHORT vga_has_about_box(NB_VOID);

#endif
