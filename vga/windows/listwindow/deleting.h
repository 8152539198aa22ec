/* Deleting what is selected in a list window: the questions before, how far it is, and what came of
 * it (deletion.h does the rest). */
#ifndef DELETING_H
#define DELETING_H

#include "nbtypes.h"

struct VGA_LIST_WINDOW;

/* The action of the command: asks about the selected lines of the current list, and deletes them
 * with all that goes with them when the operator agrees.  The window is not held up meanwhile, and
 * may be closed: what was refused is then told over the main window.  What cannot be deleted at all
 * is said in the message line. */
NB_VOID vga_listw_delete(VGA_LIST_WINDOW *window);

#endif
