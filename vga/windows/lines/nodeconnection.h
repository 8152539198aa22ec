/* What the windows say of the connection to a node. */
#ifndef NODECONNECTION_H
#define NODECONNECTION_H

#include "model.h"

/* Writes why the node cannot be worked with: that it is being connected, since when it no longer is
 * (local time), or why it could not be.  `text` has VGA_CELL_SIZE bytes; it is empty for a node
 * that is connected. */
NB_VOID vga_write_connection(const VGA_NODE &node, NB_CHAR *text);

#endif
