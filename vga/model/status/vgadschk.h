/* Status checks: read one class of resources of one node again and take over what has changed.
 *
 * A check issues the class's list query as the build does, and touches the status of records that
 * exist: entries without a record are passed over.  What follows from a status is made and deleted,
 * though: modes, partners and directory entries name partner LUs and remote systems, which move,
 * come and go with them (partners.h), and so do the sessions below a partner.  A line is drawn
 * again only when its status changed.  One check of a class runs at a time in a node; a request
 * during it repeats it once at its end.  A check ends without a word when the node goes. */
#ifndef VGADSCHK_H
#define VGADSCHK_H

#include "statusclasses.h"
#include "verbqueue.h"

/* Starts the check of a class.  Nothing happens without a connection to the node.  Requests an exit
 * (1, with this module's name and the line) when the query cannot be queued. */
NB_VOID vga_start_check(VGA_NODE *node, VGA_STATUS_ID id);

/* The same, under the name of each class. */
NB_VOID vga_start_check_dlc(VGA_NODE *node);
NB_VOID vga_start_check_port(VGA_NODE *node);
NB_VOID vga_start_check_pu(VGA_NODE *node);
NB_VOID vga_start_check_dlur_pu(VGA_NODE *node);
NB_VOID vga_start_check_down_pu(VGA_NODE *node);
NB_VOID vga_start_check_down_lu(VGA_NODE *node);
NB_VOID vga_start_check_lu62(VGA_NODE *node);
NB_VOID vga_start_check_dir(VGA_NODE *node);
NB_VOID vga_start_check_tamrix_sess(VGA_NODE *node);

/* Checks one resource by its key (as an entry has it), where the class has a completion for that:
 * ports and local LUs.  Returns 0 for the others, and without a connection. */
NB_USHORT vga_start_check_one(VGA_NODE *node, VGA_STATUS_ID id, const NB_UCHAR *key);

/* Starts the checks of the classes whose records keep their old status in a merge: for the end of a
 * build that found records of an earlier one. */
NB_VOID vga_check_merged_status(VGA_NODE *node);

/* Completion routines; the user data is the node's handle.  Each asserts its opcode.  A query that
 * fails ends the check, and the records keep their status; the failure is reported unless the node
 * has gone.  The list is continued behind the last record that was found, and only if there was
 * one. */
NB_VOID vga_check_dlc(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_port(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_ls(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_pu(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_dlur_pu(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_down_pu(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_down_lu(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_lu62(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_lu03(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_mode(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_plu(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_dir(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_tamrix_sess(const VGA_PROCESS_STATE *work);

/* Goes on with a check of LUs that has been asked for once more meanwhile: at its end it starts
 * again. */
NB_VOID vga_lu03_wait_restart_check(const VGA_PROCESS_STATE *work);

/* Of one named port, and of one local LU. */
NB_VOID vga_check_one_port(const VGA_PROCESS_STATE *work);
NB_VOID vga_check_local_lu(const VGA_PROCESS_STATE *work);

#endif
