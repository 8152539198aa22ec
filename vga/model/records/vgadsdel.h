/* Deletion: destructors of the model's records, and the release of what the node software holds for
 * the program.
 *
 * A destructor detaches an open dialog, takes the record's line off the screen, deletes its
 * children, unlinks it from every index and frees it with its data block and handle.  A record
 * whose children must be gone first (recordlist.h) asserts so and stays. */
#ifndef VGADSDEL_H
#define VGADSDEL_H

#include "model.h"
#include "recordlist.h"
#include "verbqueue.h"

#define VGA_DECLARE_DESTRUCTOR(name, type, ...) NB_VOID vga_delete_##name(type *record);
VGA_RECORDS(VGA_DECLARE_DESTRUCTOR, VGA_DECLARE_DESTRUCTOR)
VGA_DECLARE_DESTRUCTOR(vga_node, VGA_NODE)
VGA_DECLARE_DESTRUCTOR(vga_ls_routing, VGA_LS_ROUTING)
VGA_DECLARE_DESTRUCTOR(vga_rem_plu, VGA_REM_PLU) /* REQUIRES: no sessions */
#undef VGA_DECLARE_DESTRUCTOR

/* The same as vga_delete_vga_sna_net_node. */
NB_VOID vga_delete_sna_net_node(VGA_SNA_NET_NODE *record);

/* Deletes the additional data of an LU, if it has any; takes an LU out of its pool, if it is in
 * one. */
NB_VOID vga_delete_lu03_extra_data(VGA_LU03 *deplu);
NB_VOID vga_remove_pool_lu(VGA_LU03 *deplu);

/* Deletes the passwords of the local LU of that alias (8 bytes, local). */
NB_VOID vga_delete_lu62_passwords(VGA_NODE *node, const NB_UCHAR *alias);

NB_VOID vga_delete_vga_dlur_fake_port(VGA_NODE *node);
NB_VOID vga_delete_vga_primary_line_fake_port(VGA_NODE *node);

/* Deletes every resource of a node and keeps the node. */
NB_VOID vga_delete_node_contents(VGA_NODE *node);

/* Deletes the users, CPI-C side information and RJE workstations of the domain. */
NB_VOID vga_delete_system_contents(NB_VOID);

/* Let go of what the node software holds for the program: the domain's configuration, its network
 * file, a node's connection.  Verbs that wait for the target are purged.  `gone`: the target is
 * dead already and no verb is issued.  `continuation` (null: none) is called when the node software
 * has answered.  Return 1 when a verb is under way that will call it. */
NB_USHORT vga_free_system_resources(NB_USHORT gone, VGA_COMPLETION continuation);
NB_USHORT vga_free_sna_net_resources(VGA_COMPLETION continuation);
NB_USHORT vga_do_free_node_res(VGA_NODE *node, NB_USHORT gone, VGA_COMPLETION continuation);

/* Keeps `fresh` (0: none) in place of an open target, which is purged and closed with the verb that
 * `close` issues. */
NB_VOID vga_replace_target(NB_ULONG &target, NB_ULONG fresh, NB_ULONG user_data,
                           NB_USHORT (*close)(NB_ULONG target, NB_ULONG user_data,
                                              VGA_COMPLETION completion));

/* As vga_do_free_node_res, and the node's part of the model goes, too. */
NB_USHORT vga_free_node_resources(VGA_NODE *node, NB_USHORT gone, VGA_COMPLETION continuation);

/* Frees the whole model; gvga_system is null then. */
NB_VOID vga_destroy_data_structures(NB_VOID);

#endif
