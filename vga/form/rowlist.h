/* A list in a dialog: rows of columns under a title line, with the buttons Add, Change and Remove
 * beside it.
 *
 * The rows are the dialog's own, usually items within its record (nesteditems.h), and are numbered
 * from 0.  The list shows them and calls back; who changes them has it filled anew
 * (vga_row_list_refill), so that a form of its own can edit a row and say so when it is done.
 * Insert adds, Return or a double click changes, Delete removes.  A button that is of no use is off
 * and says why.
 * OWNS: the list, until its widgets are destroyed. */
#ifndef ROWLIST_H
#define ROWLIST_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>
#include <span>
#include <string>

struct VGA_DIALOG;
struct VGA_ROW_LIST;

struct VGA_ROW_COLUMN {
    const NB_CHAR *title; /* in the locale's character set */
    NB_USHORT width;      /* characters; never less than the title.  Longer texts are cut */
};

/* A dialog's constant table.  Null functions: there is no such button. */
struct VGA_ROW_LIST_PLAN {
    std::span<const VGA_ROW_COLUMN> columns; /* the texts of the first tell rows from each other */
    NB_USHORT in_view = 6;                   /* rows, at least */
    NB_USHORT most = 0;                      /* rows that there may be; 0: any number */

    NB_ULONG (*count)(NB_VOID *context) = nullptr;
    std::string (*text)(NB_VOID *context, NB_ULONG row, NB_USHORT column) = nullptr;

    NB_VOID (*add)(NB_VOID *context) = nullptr;
    NB_VOID (*change)(NB_VOID *context, NB_ULONG row) = nullptr; /* or only look at it */
    NB_VOID (*remove)(NB_VOID *context, NB_ULONG row) = nullptr;

    /* The message that says why a row cannot be removed; 0: it can. */
    NB_USHORT (*stays)(NB_VOID *context, NB_ULONG row) = nullptr;
    /* The operator selected a row; also called, with -1 for none, when the list was filled anew. */
    NB_VOID (*selected)(NB_VOID *context, NB_LONG row) = nullptr;
    /* Literals of the descriptions that the buttons are called by; null: Change... and Remove. */
    const NB_CHAR *change_label = nullptr, *remove_label = nullptr;
};

/* Makes the list in `place`, a manager of the description with nothing in it, and fills it.  To be
 * called where the dialog looks its widgets up, so that the list gets the dialog's looks.  The plan
 * is kept, not copied.  Null when `place` is, or when the descriptions have no list. */
VGA_ROW_LIST *vga_row_list_attach(Widget place, const VGA_ROW_LIST_PLAN *plan, NB_VOID *context);

/* All of them ignore a null list. */

/* Shows the rows as they are now.  The row that was selected stays so, wherever it is now; where it
 * is gone, what has its place is selected. */
NB_VOID vga_row_list_refill(VGA_ROW_LIST *list);

/* Selects a row and brings it into view: one that was added, after the refill. */
NB_VOID vga_row_list_select(VGA_ROW_LIST *list, NB_ULONG row);

/* The selected row; -1: there is none. */
NB_LONG vga_row_list_selected(const VGA_ROW_LIST *list);

/* Gives the keyboard to the rows. */
NB_VOID vga_row_list_focus(const VGA_ROW_LIST *list);

/* Only to be looked at: Change becomes Show, and the other buttons are not there. */
NB_VOID vga_row_list_set_read_only(VGA_ROW_LIST *list, NB_USHORT read_only);

/* Toolkit action of the rows: "add", "change" or "remove", as the button does. */
NB_VOID vga_row_list_action(Widget rows, XEvent *event, String *params, Cardinal *param_count);

#endif
