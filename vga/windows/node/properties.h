/* What the node window opens for a line of its lists. */
#ifndef PROPERTIES_H
#define PROPERTIES_H

#include "vganodew.h"

/* 1 when this release has a properties dialog for lines of a viewer type, or one of their status.
 */
NB_USHORT vga_nodew_has_properties(NB_SHORT type);
NB_USHORT vga_nodew_has_status(NB_SHORT type);

/* Shows the properties or the status of the selected line.  Nothing without one, or without a
 * dialog for it. */
NB_VOID vga_nodew_show_properties(VGA_NODEW_DESC *desc);
NB_VOID vga_nodew_show_status(VGA_NODEW_DESC *desc);

/* The dialog for new modes of the window's node, one after the other. */
NB_VOID vga_nodew_add_modes(VGA_NODEW_DESC *desc);

#endif
