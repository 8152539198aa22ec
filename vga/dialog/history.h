/* The messages of the session (outcomes.h) in a window (textwindow.h), a line each and the newest
 * below: when, of which node, and what; failures are marked.  It stays current while it is open. */
#ifndef HISTORY_H
#define HISTORY_H

#include "nbtypes.h"

struct VGA_DIALOG;
struct VGA_OUTCOME;

/* Shows it beside a dialog.  Nothing for one that is not open. */
NB_VOID vga_show_history(VGA_DIALOG *desc);

/* Puts what has just been told under the others, in every history that is open. */
NB_VOID vga_history_grew(const VGA_OUTCOME &outcome);

#endif
