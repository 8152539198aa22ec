/* What lower layers ask of higher ones, besides the tables of viewer types and of windows.  `main`
 * fills this in at start, vga_init_dialogs what is of the dialogs; a null hook is skipped. */
#ifndef HOOKS_H
#define HOOKS_H

#include "nbtypes.h"

struct VGA_PROCESS_STATE;
struct VGA_NODE;
struct VGA_DIALOG;
struct VGA_VIEWER_ROOT;
struct VGA_VIEWER_ITEM;
struct VGA_OUTCOME;

enum VGA_NODE_CHANGE : NB_USHORT { VGA_NODE_ADDED, VGA_NODE_CHANGED, VGA_NODE_REMOVED };

/* What happened to a record. */
enum VGA_RECORD_CHANGE : NB_USHORT {
    VGA_RECORD_ADDED,
    VGA_RECORD_CHANGED, /* its definition or its status */
    VGA_RECORD_GONE,    /* about to be freed: forget it now */
};

struct VGA_HOOKS {
    /* An indication, or a copy of a verb issued elsewhere.  The block is gone on return. */
    NB_VOID (*indication)(const VGA_PROCESS_STATE *work);
    /* The first complete model exists; called again after each later build of a node or chain. */
    NB_VOID (*model_built)(NB_VOID);
    /* A build goes on: `node` is null for the domain; `resources` were read so far. */
    NB_VOID (*build_progress)(const VGA_NODE *node, NB_ULONG resources);
    /* Start the orderly close. */
    NB_VOID (*stop)(NB_VOID);
    /* A node joined or left the model, its state, role, name or connection changed, or its build is
     * complete. */
    NB_VOID (*node_list_changed)(VGA_NODE *node, VGA_NODE_CHANGE change);
    /* The connection to a node that was in use is gone; its records are freed on return. */
    NB_VOID (*node_died)(VGA_NODE *node);
    /* A record's line joined a list.  The line above it is open already if it opens by itself. */
    NB_VOID (*line_added)(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);
    /* As vga_record_changed. */
    NB_VOID (*record_changed)(NB_VOID *item, VGA_RECORD_CHANGE what);
    /* The same, and a change of a node, for what the core itself waits for (startstopbatch.h). */
    NB_VOID (*record_awaited)(const NB_VOID *item, VGA_RECORD_CHANGE what);
    /* Something succeeded or failed (outcomes.h). */
    NB_VOID (*outcome)(const VGA_OUTCOME &outcome);
    /* A verb was done at that target and is not on the disk yet (NAP_NOT_STORED). */
    NB_VOID (*not_stored)(NB_ULONG target);
    /* A verb was purged, so that its completion will not be called. */
    NB_VOID (*verb_purged)(NB_USHORT opcode, NB_ULONG user_data);
    /* The record that a dialog shows is about to be freed: the dialog stays, without its record and
     * its children.  0: it showed another one. */
    NB_USHORT (*record_leaves_dialog)(VGA_DIALOG *dialog, const NB_VOID *record);
    /* 1 when a dialog shows that record. */
    NB_USHORT (*dialog_shows)(const VGA_DIALOG *dialog, const NB_VOID *record);
    /* As vga_wake_main_loop and vga_flush_display. */
    NB_VOID (*wake)(NB_VOID);
    NB_VOID (*flush)(NB_VOID);
};

extern VGA_HOOKS gvga_hooks;

/* Tells whoever shows nodes. */
NB_VOID vga_node_list_changed(VGA_NODE *node, VGA_NODE_CHANGE change);

/* Tells every open window and dialog that a record was added, changed or is about to go. */
NB_VOID vga_record_changed(NB_VOID *item, VGA_RECORD_CHANGE what);

#endif
