/* The menu of a list window's lists: what can be done with a line, under the pointer.  Entries that
 * cannot be chosen now are left out of it. */
#ifndef POPUPMENU_H
#define POPUPMENU_H

#include "listwindow.h"

/* Makes the menu from its description; 0 when that is missing.
 * REQUIRES: the panes of `window` are looked up. */
NB_USHORT vga_listw_fetch_popup(VGA_LIST_WINDOW *window);

/* From now on button 3 in a list posts the menu under the pointer, and Shift+F10 and the Menu key
 * post it below the line that has the keyboard.  The list becomes current, and the line selected
 * unless it is; a press below all lines leaves the selection as it is.
 * REQUIRES: the panes and the commands of `window` are looked up. */
NB_VOID vga_listw_install_popup(VGA_LIST_WINDOW *window);

#endif
