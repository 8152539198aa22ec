/* A window that is not looked at says that something failed: its title and the name of its icon
 * begin with the number of failures since it was last seen, and the window manager is asked to
 * point it out.  It is looked at while it, or what was opened from it, has the keyboard and it is
 * not covered altogether; getting the keyboard, and coming to light with it, ends that. */
#ifndef ATTENTION_H
#define ATTENTION_H

#include "nbtypes.h"

struct VGA_DIALOG;

/* Follows a main window from now on; once is enough. */
NB_VOID vga_watch_attention(VGA_DIALOG *window);

/* So many things have failed.  Nothing for a window that is looked at, or is no main window. */
NB_VOID vga_call_attention(VGA_DIALOG *window, NB_ULONG failures);

#endif
