/* The band below a window's menu bar: that it is to be looked at only, and why; and which node it
 * is, in the colour that the operator gave the node. */
#ifndef WINDOWBAND_H
#define WINDOWBAND_H

#include "listwindow.h"

/* Shows the band, or takes it away when there is nothing to say. */
NB_VOID vga_listw_show_band(VGA_LIST_WINDOW *window);

#endif
