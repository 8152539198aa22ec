/* The desktop's session, by its management protocol: a logout asks what closing asks, may be
 * refused by the answer, and ends the program in order; a later login starts it again as it was
 * started. */
#ifndef SESSION_H
#define SESSION_H

#include <X11/Intrinsic.h>

/* Makes gvga_toplevel, which joins the session at once where there is one, listen to it.  `argc`
 * and `argv` are what the program was started with, and stay. */
void vga_join_session(int argc, char **argv);

/* Leaves the session, so that the end of the program is no loss to it. */
void vga_leave_session();

#endif
