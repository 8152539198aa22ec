/* Backup servers of the domain: which node may take its configuration over. */
#ifndef BACKUPSERVERS_H
#define BACKUPSERVERS_H

#include "model.h"
#include "verbqueue.h"

/* Makes a node a backup server: the verb goes to the holder of the domain's configuration.  Without
 * memory nothing happens. */
NB_VOID vga_add_backup(const VGA_NODE *node);

/* Asks whether the node is to give its server role up, and on OK has it given up, if it still is
 * there and has one.  The domain's only server keeps its role, and the operator is told why.
 * `window` is what the messages stand over. */
NB_VOID vga_delete_backup(VGA_DIALOG *window, const VGA_NODE *node);

/* Completion routines: the model follows, and the system window says so; a refusal is shown in the
 * verb's words. */
NB_VOID vga_sysw_add_backup_cb(const VGA_PROCESS_STATE *work);
NB_VOID vga_sysw_del_backup_cb(const VGA_PROCESS_STATE *work);

#endif
