/* Indications: what the node software sends unasked, and what the model makes of it.
 *
 * The verb pipeline hands every unsolicited block here (`main` fills the hook).  The dispatch is a
 * table; an opcode without a row, and one whose class the model does not follow yet, is dropped.
 * The block is the verb interface's and is gone afterwards. */
#ifndef VGAINDCT_H
#define VGAINDCT_H

#include "verbqueue.h"

/* Picks the processor of the block's opcode. */
NB_VOID vga_dispatch_indication(const VGA_PROCESS_STATE *work);

/* The node software, or the node behind a target, has gone. */
NB_VOID vga_process_nof_status_ind(const VGA_PROCESS_STATE *work);

#endif
