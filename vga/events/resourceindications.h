/* Indications about resources: a port, a link station, an LU changed its state.
 *
 * The status classes (statusclasses.h) say how the record is found and what follows from a change.
 * An indication that says that others were lost starts the check of its class instead.  A resource
 * without a record is reported, or read when the node makes such resources by itself; while its
 * list is still being read neither. */
#ifndef RESOURCEINDICATIONS_H
#define RESOURCEINDICATIONS_H

#include "verbqueue.h"

/* 1 for the opcodes that always are indications about resources, whether a class has them or not.
 */
NB_USHORT vga_is_resource_indication(NB_USHORT opcode);

/* Hands an indication to its class.  The user data is the handle of the node; a stale one drops the
 * block without a word.  An opcode that has no class is an assertion. */
NB_VOID vga_indication_handler(const VGA_PROCESS_STATE *state);

/* The classes, each by its name, which is how they are found in the log: a block of another opcode
 * is an assertion. */
NB_VOID vga_process_dlc_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_port_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_ls_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_pu_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_dlur_pu_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_down_pu_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_down_lu_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_local_lu_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_lu03_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_mode_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_plu_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_dir_ind(const VGA_PROCESS_STATE *state);
NB_VOID vga_process_tamrix_ind(const VGA_PROCESS_STATE *state);

#endif
