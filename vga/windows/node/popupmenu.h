/* The menu of the node window's lists: what the tool bar has, under the pointer. */
#ifndef POPUPMENU_H
#define POPUPMENU_H

#include "vganodew.h"

/* Makes the menu from its description; 0 when there is none.
 * REQUIRES: the panes of `desc` are looked up. */
NB_USHORT vga_nodew_fetch_popup(VGA_NODEW_DESC *desc);

/* From now on button 3 in a list posts the menu under the pointer, and Shift+F10 and the Menu key
 * post it below the line that has the keyboard.  The list becomes current, and the line selected
 * unless it is; a press below all lines leaves the selection as it is.
 * REQUIRES: the panes and the tools of `desc` are looked up. */
NB_VOID vga_nodew_install_popup(VGA_NODEW_DESC *desc);

#endif
