/* How the panes of a list window share its height: each has a share, a height in pixels that its
 * part of the window comes from.  The first shares are the heights of the description; after that
 * only the operator changes them, with the sashes between the panes.  What a low or a high window
 * makes of them leaves them alone. */
#ifndef PANEHEIGHTS_H
#define PANEHEIGHTS_H

#include "listwindow.h"

/* Takes the shares from the heights that the panes have, and from now on after a sash was moved. */
NB_VOID vga_listw_prepare_heights(VGA_LIST_WINDOW *window);

/* Pixels of the paned window that are no pane's. */
NB_ULONG vga_listw_height_around_panes(const VGA_LIST_WINDOW *window);

/* Divides the paned window's height by the shares, no pane below `least` pixels as long as there is
 * room; nor can a sash make one lower then. */
NB_VOID vga_listw_divide_panes(const VGA_LIST_WINDOW *window, NB_ULONG least);

#endif
