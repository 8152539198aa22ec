/* A list window shares its room among its parts, again whenever its size or a part changes: what it
 * has no room for gives way by the rules of roomrules.h, and comes back with the room.  The panes
 * keep the proportions that their description or the operator gave them. */
#ifndef WINDOWROOM_H
#define WINDOWROOM_H

#include "listwindow.h"

/* Makes the window as large as its description says and the screen allows, and shares its room from
 * now on.  For a window that has its widgets and is not yet on the screen; needs the sizes of lines
 * and icons. */
NB_VOID vga_listw_prepare_room(VGA_LIST_WINDOW *window);

/* Shares the room now.  For those that show a part, hide it, or change what it needs. */
NB_VOID vga_listw_share_room(VGA_LIST_WINDOW *window);

/* Makes the list of a dialog smaller where the screen is too small for all of it.  For one that is
 * about to be shown. */
NB_VOID vga_listw_fit_dialog(const VGA_LIST_WINDOW *window);

#endif
