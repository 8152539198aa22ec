/* Long work of a list window: starts, stops and deletions of many.  While it goes on it stands in
 * the message line, with what is outstanding at the node ("3 verbs, corvid1, 4 s") told anew each
 * second, and can be cancelled between its items, with the button beside the line and with Escape:
 * what is under way completes, the rest is not sent.  Of several works the newest stands there and
 * is cancelled.  Work goes on when its window closes; its account then is an outcome like any
 * other. */
#ifndef LONGWORK_H
#define LONGWORK_H

#include "listwindow.h"

/* Which work: a number among those of the same function, which cancels it. */
struct VGA_WORK {
    NB_VOID (*cancel)(NB_ULONG number);
    NB_ULONG number;
};

/* News of a work, new or old, in the locale's characters; and its end. */
NB_VOID vga_listw_work_goes_on(VGA_LIST_WINDOW *window, const VGA_WORK &work,
                               const std::string &text);
NB_VOID vga_listw_work_over(VGA_LIST_WINDOW *window, const VGA_WORK &work);

/* What the line says of it; empty: there is none. */
std::string vga_listw_work_in_words(const VGA_LIST_WINDOW *window);

/* Cancels the newest; 0: there is none. */
NB_USHORT vga_listw_cancel_work(VGA_LIST_WINDOW *window);

/* The window closes. */
NB_VOID vga_listw_leave_work(const VGA_LIST_WINDOW *window);

/* Its widgets go, at a time when its memory may be gone. */
NB_VOID vga_listw_forget_work(const VGA_LIST_WINDOW *window);

#endif
