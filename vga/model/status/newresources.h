/* Resources that the node makes by itself (dynamic link stations, sessions, LUs of implicit PUs):
 * an indication is the first that the program hears of them, and their entry is read then.
 *
 * One reading of a class runs at a time in a node, so a burst of new resources costs a bounded
 * number of queries: the first is read alone, those that come meanwhile with the whole list behind
 * it.  Nothing here ends the program: what cannot be read is reported, and does not appear. */
#ifndef NEWRESOURCES_H
#define NEWRESOURCES_H

#include "statusclasses.h"

/* Reads the entry with that key (as the class's list has it) and adds its record. */
NB_VOID vga_read_new_resource(VGA_NODE *node, VGA_STATUS_ID id, const NB_UCHAR *key);

#endif
