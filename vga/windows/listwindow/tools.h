/* The widgets of a list window's commands: tool bar, menu items and entries of the lists' menu. */
#ifndef TOOLS_H
#define TOOLS_H

#include "listwindow.h"

/* Looks them up, and takes what the program's options do not offer out of sight; 0 when one is
 * missing. */
NB_USHORT vga_listw_find_tools(VGA_LIST_WINDOW *window);

/* Gives the tools and the keys of the lists their pictures. */
NB_VOID vga_listw_put_pixmaps(VGA_LIST_WINDOW *window);

#endif
