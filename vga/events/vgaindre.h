/* Indications about resources: a port, a link station, an LU changed its state.
 *
 * Each class is a row: how its record is found by the indication's key, and which part of the list
 * entry the indication brings anew.  A record that the model does not have is reported, unless its
 * list is still being read. */
#ifndef VGAINDRE_H
#define VGAINDRE_H

#include "vganofq.h"

/* Takes the block when its opcode is one of a resource class; returns 0 otherwise.  The user data
 * is the handle of the node; a stale one drops the block. */
NB_USHORT vga_indication_handler(const VGA_PROCESS_STATE *work);

#endif
