/* What becomes of the nodes' servers and of what the program has open there.
 *
 * What is gone is let go of: a node's part of the model, the domain's, the list of servers.  What
 * can be had again without a restart is read again: the node when it says that it is back, the
 * domain and the network file at once or from the server that holds them then.  While the program
 * closes nothing is read again. */
#ifndef SERVERINDICATIONS_H
#define SERVERINDICATIONS_H

#include "verbqueue.h"

/* The node software, the node behind a target, or the holder of the domain's configuration has
 * gone.  User data: a handle; a stale one drops all but the first. */
NB_VOID vga_process_nof_status_ind(const VGA_PROCESS_STATE *work);

/* A node came (an unknown one joins the model, one without a connection is connected to), changed
 * its role, or went.  In a domain of a single node only its first coming counts. */
NB_VOID vga_process_server_ind(const VGA_PROCESS_STATE *work);

/* The list of servers changed: it is read again. */
NB_VOID vga_process_sna_net_ind(const VGA_PROCESS_STATE *work);

#endif
