/* The end of the program: the report of a fatal condition, the orderly close, X errors. */
#ifndef PROGRAMEND_H
#define PROGRAMEND_H

#include "verbqueue.h"
#include "vgadgutl.h"
#include <X11/Xlib.h>

/* Reports the reason in gvga_exit_code: in a window over the main dialog if that is on the screen,
 * and waits until it was read (gvga_exit_code is 0 then); on standard error or not at all
 * otherwise, and where no box can be made. */
NB_VOID vga_error_exit(NB_VOID);

/* The operator has read the report. */
NB_VOID vga_error_exit_cb(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG client_data);

/* Starts the orderly close: windows, then what the node software holds for the program, then the
 * end.  A call while it is under way is ignored, unless nothing was heard for five seconds: then
 * the program ends at once. */
NB_VOID vga_start_shutdown(NB_VOID);
NB_VOID vga_process_shutdown(const VGA_PROCESS_STATE *work);

/* The operator has read that a node is gone: with a single node the program is closed, in a domain
 * it goes on with the others. */
NB_VOID vga_node_dead_info_cb(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG client_data);

NB_INT vga_xerror_handler(Display *display, XErrorEvent *event);

#endif
