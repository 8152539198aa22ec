/* Deletion: destructors of the model's records, and the release of what the node software holds for
 * the program.
 *
 * A destructor detaches an open dialog, takes the record's line off the screen, deletes its
 * children, unlinks it from every index and frees it with its data block and handle.  A record
 * whose children must be gone first asserts so. */
#ifndef VGADSDEL_H
#define VGADSDEL_H

#include "vgamodel.h"
#include "vganofq.h"

NB_VOID vga_delete_vga_node(VGA_NODE *record);
NB_VOID vga_delete_vga_dlc(VGA_DLC *record);
NB_VOID vga_delete_vga_port(VGA_PORT *record);
NB_VOID vga_delete_vga_ls(VGA_LS *record);
NB_VOID vga_delete_vga_local_pu(VGA_LOCAL_PU *record);
NB_VOID vga_delete_vga_lu03(VGA_LU03 *record);
NB_VOID vga_delete_vga_lu62(VGA_LU62 *record);
NB_VOID vga_delete_vga_mode_def(VGA_MODE_DEF *record);
NB_VOID vga_delete_vga_mode(VGA_MODE *record);
NB_VOID vga_delete_vga_plu(VGA_PLU *record);
NB_VOID vga_delete_vga_cos(VGA_COS *record);
NB_VOID vga_delete_vga_dir(VGA_DIR *record);
NB_VOID vga_delete_vga_rem_sys(VGA_REM_SYS *record); /* REQUIRES: no partner LUs below it */
NB_VOID vga_delete_vga_rem_plu(VGA_REM_PLU *record); /* REQUIRES: no sessions below it */
NB_VOID vga_delete_vga_rem_sess(VGA_REM_SESS *record);
NB_VOID vga_delete_vga_dlur_fake_port(VGA_NODE *node);
NB_VOID vga_delete_vga_primary_line_fake_port(VGA_NODE *node);

/* Deletes every resource of a node and keeps the node. */
NB_VOID vga_delete_node_contents(VGA_NODE *node);

/* Let go of what the node software holds for the program: the domain's configuration, its network
 * file, a node's connection.  Verbs that wait for the target are purged.  `gone`: the target is
 * dead already and no verb is issued.  `continuation` (null: none) is called when the node software
 * has answered.  Return 1 when a verb is under way that will call it. */
NB_USHORT vga_free_system_resources(NB_USHORT gone, VGA_COMPLETION continuation);
NB_USHORT vga_free_sna_net_resources(VGA_COMPLETION continuation);
NB_USHORT vga_do_free_node_res(VGA_NODE *node, NB_USHORT gone, VGA_COMPLETION continuation);

/* As vga_do_free_node_res, and the node's part of the model goes, too. */
NB_USHORT vga_free_node_resources(VGA_NODE *node, NB_USHORT gone, VGA_COMPLETION continuation);

/* Frees the whole model; gvga_system is null then. */
NB_VOID vga_destroy_data_structures(NB_VOID);

#endif
