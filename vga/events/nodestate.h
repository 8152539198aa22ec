/* A node is started or stopped: by this program, by another administrator, or because it finishes
 * what it had begun when the program connected. */
#ifndef NODESTATE_H
#define NODESTATE_H

#include "verbqueue.h"

struct VGA_NODE;

/* A copy of NAP_INIT_NODE or NAP_STOP_NODE with the state that the node is in now.  The user data
 * is the handle of the node; a stale one drops the copy without a word. */
NB_VOID vga_process_node_status_ind(const VGA_PROCESS_STATE *work);

/* The node is on its way up (NAP_NODE_STARTING, NAP_NODE_ACTIVE), or down (NAP_NODE_STOPPING,
 * NAP_NODE_STOPPED).  The record takes the state over and every window that shows the node is told.
 * A state of the other way changes nothing. */
NB_VOID vga_process_init_node(VGA_NODE *node, NB_ULONG state);
NB_VOID vga_process_stop_node(VGA_NODE *node, NB_ULONG state);

/* A change of that node took place and is not on its disk yet: an outcome says so, once a minute at
 * most.  Nothing for a target that is no node's. */
NB_VOID vga_tell_not_stored(NB_ULONG target);

#endif
