/* Reading single resources: those that the node makes by itself (dynamic link stations, sessions,
 * LUs of implicit PUs), of which an indication is the first that the program hears, and those of
 * which a copy of a verb says less than their entry.
 *
 * One reading of a class of statusclasses.h runs at a time in a node, so a burst of new resources
 * costs a bounded number of queries: the first is read alone, those that come meanwhile with the
 * whole list behind it.  Nothing here ends the program: what cannot be read is reported, and does
 * not appear. */
#ifndef NEWRESOURCES_H
#define NEWRESOURCES_H

#include "statusclasses.h"

/* Reads the entry with that key (as the list of that opcode has it): adds its record, brings it up
 * to date, or takes it out when there is no such entry.  Nothing happens without a connection. */
NB_VOID vga_read_resource(VGA_NODE *node, NB_USHORT list, const NB_UCHAR *key);

/* Takes the answer to a list query over as the readings above do, for somebody who issued one:
 * `node` is that of its target, null for a list of the domain.  Returns the position of the last
 * entry. */
VGA_LIST_POSITION vga_take_read(VGA_NODE *node, const NAP_VCB *vcb);

/* Reads the lists again that move with the node and that no indication tells of. */
NB_VOID vga_read_untold(VGA_NODE *node);

#endif
