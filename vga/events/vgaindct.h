/* Indications: what the node software sends unasked, and what the model makes of it.
 *
 * The verb pipeline hands every unsolicited block here (`main` fills the hook).  What is no
 * indication is a copy of another administrator's verb, and its kind in the verb table says which
 * processor takes it.  An opcode without a processor is dropped.  The block is the verb
 * interface's, which has checked its length, and is gone afterwards. */
#ifndef VGAINDCT_H
#define VGAINDCT_H

#include "verbqueue.h"

typedef NB_VOID (*VGA_PROCESSOR)(const VGA_PROCESS_STATE *work);

/* The processor of an opcode, null: nobody's.  Indications about resources always have one, whether
 * a class has the opcode or not. */
VGA_PROCESSOR vga_find_processor(NB_USHORT opcode);

/* Picks the processor of the block's opcode. */
NB_VOID vga_dispatch_indication(const VGA_PROCESS_STATE *work);

#endif
