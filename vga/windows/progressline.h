/* What the message lines say while the program is busy: reading, or closing. */
#ifndef PROGRESSLINE_H
#define PROGRESSLINE_H

#include "nbtypes.h"

struct VGA_NODE;

/* Says in the message line of the node's window, or of the program's first one while that is still
 * empty, what is being read (null: the domain) and how many resources so far. */
NB_VOID vga_show_build_progress(const VGA_NODE *node, NB_ULONG resources);

/* The program's own window, which stays to the end, says that the program closes, and whose answer
 * (null: the domain's) it waits for. */
NB_VOID vga_show_closing(const VGA_NODE *node);

#endif
