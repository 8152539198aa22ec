/* Indications about resources: a port, a link station, an LU changed its state.
 *
 * The status classes (statusclasses.h) say how the record is found and what follows from a change.
 * An indication that says that others were lost starts the check of its class instead.  A resource
 * without a record is reported, or read when the node makes such resources by itself; while its
 * list is still being read neither. */
#ifndef RESOURCEINDICATIONS_H
#define RESOURCEINDICATIONS_H

#include "verbqueue.h"

/* Takes the block when its opcode is one of those about resources; returns 0 otherwise.  The user
 * data is the handle of the node; a stale one drops the block.  One of these opcodes that has no
 * class is an assertion. */
NB_USHORT vga_indication_handler(const VGA_PROCESS_STATE *work);

#endif
