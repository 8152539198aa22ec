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
NB_VOID vga_delete_vga_cn(VGA_CN *record);
NB_VOID vga_delete_vga_cn_port(VGA_CN_PORT *record);
NB_VOID vga_delete_vga_local_pu(VGA_LOCAL_PU *record);
NB_VOID vga_delete_vga_lu03(VGA_LU03 *record);
NB_VOID vga_delete_vga_down_pu(VGA_DOWN_PU *record);
NB_VOID vga_delete_vga_down_lu(VGA_DOWN_LU *record);
NB_VOID vga_delete_vga_dspu_template(VGA_DSPU_TEMPLATE *record);
NB_VOID vga_delete_vga_primary_line(VGA_PRIMARY_LINE *record);
NB_VOID vga_delete_vga_primary_lu0(VGA_PRIMARY_LU0 *record);
NB_VOID vga_delete_vga_rtp_conn(VGA_RTP_CONN *record);
NB_VOID vga_delete_vga_lu62(VGA_LU62 *record);
NB_VOID vga_delete_vga_mode_def(VGA_MODE_DEF *record);
NB_VOID vga_delete_vga_mode(VGA_MODE *record);
NB_VOID vga_delete_vga_plu(VGA_PLU *record);
NB_VOID vga_delete_vga_lu62_timeout(VGA_LU62_TIMEOUT *record);
NB_VOID vga_delete_vga_cos(VGA_COS *record);
NB_VOID vga_delete_vga_cos_node_row(VGA_COS_NODE_ROW *record);
NB_VOID vga_delete_vga_cos_tg_row(VGA_COS_TG_ROW *record);
NB_VOID vga_delete_vga_dir(VGA_DIR *record);
NB_VOID vga_delete_vga_rem_sess(VGA_REM_SESS *record);
NB_VOID vga_delete_vga_tp_def(VGA_TP_DEF *record);
NB_VOID vga_delete_vga_tp_load_info(VGA_TP_LOAD_INFO *record);
NB_VOID vga_delete_vga_slsec_def(VGA_SLSEC_DEF *record);
NB_VOID vga_delete_vga_clsec_def(VGA_CLSEC_DEF *record);
NB_VOID vga_delete_vga_pool_lu(VGA_POOL_LU *record);
NB_VOID vga_delete_vga_sys_pool(VGA_SYS_POOL *record);
NB_VOID vga_delete_vga_tn_client(VGA_TN_CLIENT *record);
NB_VOID vga_delete_vga_tn_assoc(VGA_TN_ASSOC *record);
NB_VOID vga_delete_vga_tn_redirect(VGA_TN_REDIRECT *record);
NB_VOID vga_delete_vga_tamrix_appcip_sess(VGA_TAMRIX_APPCIP_SESS *record);
NB_VOID vga_delete_vga_sna_net_node(VGA_SNA_NET_NODE *record);
NB_VOID vga_delete_vga_cpic(VGA_CPIC *record);
NB_VOID vga_delete_vga_rje_wkstn(VGA_RJE_WKSTN *record);
NB_VOID vga_delete_vga_dslu_template(VGA_DSLU_TEMPLATE *record);
NB_VOID vga_delete_vga_security_user(VGA_SECURITY_USER *record);
NB_VOID vga_delete_vga_tn_sess(VGA_TN_SESS *record);
NB_VOID vga_delete_vga_user_session(VGA_USER_SESSION *record);
NB_VOID vga_delete_vga_ls_routing(VGA_LS_ROUTING *record);

/* REQUIRES: no children (an assertion). */
NB_VOID vga_delete_vga_rem_sys(VGA_REM_SYS *rem_sys);
NB_VOID vga_delete_vga_rem_plu(VGA_REM_PLU *rem_plu);
NB_VOID vga_delete_vga_user(VGA_USER *user);
NB_VOID vga_delete_vga_access_list(VGA_ACCESS_LIST *access_list);
NB_VOID vga_delete_vga_pool(VGA_POOL *node_pool);

/* The same as vga_delete_vga_sna_net_node. */
NB_VOID vga_delete_sna_net_node(VGA_SNA_NET_NODE *record);

/* Deletes the additional data of an LU, if it has any; takes an LU out of its pool, if it is in
 * one. */
NB_VOID vga_delete_lu03_extra_data(VGA_LU03 *deplu);
NB_VOID vga_remove_pool_lu(VGA_LU03 *deplu);

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
