/* The message box as widgets: for messagebox.cpp only. */
#ifndef BOXWIDGETS_H
#define BOXWIDGETS_H

#include "messagebox.h"

/* A message that waits in its dialog's queue, or is shown next. */
struct MODAL_REQUEST {
    NB_LQE links;
    VGA_MODAL_TYPE type;
    VGA_DIALOG *parent;
    XmString text;
    const NB_CHAR *help_key;
    VGA_MODAL_CB callback;
    NB_ULONG client_data;
    NB_USHORT show_ok_to_all;
    NB_USHORT show_no;
    NB_USHORT loses;  /* flag: a question about a loss */
    NB_CHAR *details; /* from XtMalloc; null: none */
};

/* Makes the dialog's box.  Its buttons call vga_modal_dialog_cb. */
NB_VOID vga_make_box(VGA_DIALOG *parent);

/* Makes the box ready for the message.  Escape presses Cancel, or OK where there is nothing else.
 * OWNS: the details from here on. */
NB_VOID vga_fill_box(VGA_MODAL_DLG &box, MODAL_REQUEST &request);

#endif
