/* What lower layers ask of higher ones, besides the tables of viewer types and of windows.  `main`
 * fills this in at start; a null hook is skipped. */
#ifndef VGAHOOKS_H
#define VGAHOOKS_H

#include "nbtypes.h"

struct VGA_PROCESS_STATE;
struct VGA_NODE;

enum VGA_NODE_CHANGE : NB_USHORT { VGA_NODE_ADDED, VGA_NODE_CHANGED, VGA_NODE_REMOVED };

struct VGA_HOOKS {
    /* An indication, or a copy of a verb issued elsewhere.  The block is gone on return. */
    NB_VOID (*indication)(const VGA_PROCESS_STATE *work);
    /* The first complete model exists; called again after each later build of a node or chain. */
    NB_VOID (*model_built)(NB_VOID);
    /* A build goes on: `node` is null for the domain; `resources` were read so far. */
    NB_VOID (*build_progress)(VGA_NODE *node, NB_ULONG resources);
    /* Start the orderly close. */
    NB_VOID (*stop)(NB_VOID);
    /* A node joined or left the model, or its state, role or name changed. */
    NB_VOID (*node_list_changed)(VGA_NODE *node, VGA_NODE_CHANGE change);
};

extern VGA_HOOKS gvga_hooks;

#endif
