/* The commands Start and Stop of list windows. */
#ifndef OPERATING_H
#define OPERATING_H

#include "nbtypes.h"

struct VGA_LIST_WINDOW;

/* For what is selected in the current list, without a selection for the node that the window shows.
 */
NB_VOID vga_listw_start(VGA_LIST_WINDOW *window);
NB_VOID vga_listw_stop(VGA_LIST_WINDOW *window);

#endif
