/* Constructors and inserters of the model's records: the only places where the model grows.
 *
 * A constructor takes the owner and a list entry of the node (at least as long as its record), and
 * returns a record that is in no index yet; null without memory or handle, and nothing is kept
 * then.  An inserter links the record, or merges it into the one that is there already, which keeps
 * its handle, children, line and dialog; it returns the record that stays, or null without memory
 * for what follows from it. */
#ifndef VGADSADD_H
#define VGADSADD_H

#include "vgamodel.h"

/* The empty domain with every start-up flag set; null without memory. */
VGA_SYSTEM *vga_init_vga_system(NB_VOID);

/* `entry` is one of NAP_QUERY_NODE_ALL.  All start-up flags of the node are set. */
VGA_NODE *vga_init_vga_node(const NAP_NODE_ALL_DATA *entry);
VGA_NODE *vga_insert_vga_node(VGA_NODE *record);

VGA_DLC *vga_init_vga_dlc(VGA_NODE *owner, const NAP_DLC_DATA *entry);
VGA_DLC *vga_insert_vga_dlc(VGA_DLC *record);

VGA_PORT *vga_init_vga_port(VGA_DLC *owner, const NAP_PORT_DATA *entry);
VGA_PORT *vga_insert_vga_port(VGA_PORT *record);

/* A link station to a host, or to a downstream PU, also makes the PU. */
VGA_LS *vga_init_vga_ls(VGA_PORT *owner, const NAP_LS_DATA *entry);
VGA_LS *vga_insert_vga_ls(VGA_LS *record);

VGA_CN *vga_init_vga_cn(VGA_NODE *owner, const NAP_CN_DATA *entry);
VGA_CN *vga_insert_vga_cn(VGA_CN *record);

VGA_CN_PORT *vga_init_vga_cn_port(VGA_CN *owner, const NAP_CN_PORT_DATA *entry);
VGA_CN_PORT *vga_insert_vga_cn_port(VGA_CN_PORT *record);

VGA_LOCAL_PU *vga_init_vga_local_pu(VGA_NODE *owner, const NAP_PU_DATA *entry);
VGA_LOCAL_PU *vga_insert_vga_local_pu(VGA_LOCAL_PU *record);

VGA_LU03 *vga_init_vga_lu03(VGA_LOCAL_PU *owner, const NAP_LU03_DATA *entry);
VGA_LU03 *vga_insert_vga_lu03(VGA_LU03 *record);

VGA_DOWN_PU *vga_init_vga_down_pu(VGA_NODE *owner, const NAP_DOWN_PU_DATA *entry);
VGA_DOWN_PU *vga_insert_vga_down_pu(VGA_DOWN_PU *record);

VGA_DOWN_LU *vga_init_vga_down_lu(VGA_DOWN_PU *owner, const NAP_DOWN_LU_DATA *entry);
VGA_DOWN_LU *vga_insert_vga_down_lu(VGA_DOWN_LU *record);

VGA_PRIMARY_LINE *vga_init_vga_primary_line(VGA_NODE *owner, const NAP_PRIMARY_LINE_DATA *entry);
VGA_PRIMARY_LINE *vga_insert_vga_primary_line(VGA_PRIMARY_LINE *record);

VGA_PRIMARY_LU0 *vga_init_vga_primary_lu0(VGA_PRIMARY_LINE *owner,
                                          const NAP_PRIMARY_LU0_DATA *entry);
VGA_PRIMARY_LU0 *vga_insert_vga_primary_lu0(VGA_PRIMARY_LU0 *record);

VGA_RTP_CONN *vga_init_vga_rtp_conn(VGA_NODE *owner, const NAP_RTP_CONN_DATA *entry);
VGA_RTP_CONN *vga_insert_vga_rtp_conn(VGA_RTP_CONN *record);

VGA_LU62 *vga_init_vga_lu62(VGA_NODE *owner, const NAP_LOCAL_LU_DATA *entry);
VGA_LU62 *vga_insert_vga_lu62(VGA_LU62 *record);

VGA_MODE_DEF *vga_init_vga_mode_def(VGA_NODE *owner, const NAP_MODE_DEF_DATA *entry);
VGA_MODE_DEF *vga_insert_vga_mode_def(VGA_MODE_DEF *record);

VGA_MODE *vga_init_vga_mode(VGA_LU62 *owner, const NAP_MODE_DATA *entry);
VGA_MODE *vga_insert_vga_mode(VGA_MODE *record);

VGA_PLU *vga_init_vga_plu(VGA_LU62 *owner, const NAP_PLU_DATA *entry);
VGA_PLU *vga_insert_vga_plu(VGA_PLU *record);

VGA_LU62_TIMEOUT *vga_init_vga_lu62_timeout(VGA_NODE *owner, const NAP_LU62_TIMEOUT_DATA *entry);
VGA_LU62_TIMEOUT *vga_insert_vga_lu62_timeout(VGA_LU62_TIMEOUT *record);

VGA_COS *vga_init_vga_cos(VGA_NODE *owner, const NAP_COS_DATA *entry);
VGA_COS *vga_insert_vga_cos(VGA_COS *record);

VGA_COS_NODE_ROW *vga_init_vga_cos_node_row(VGA_COS *owner, const NAP_COS_NODE_ROW_DATA *entry);
VGA_COS_NODE_ROW *vga_insert_vga_cos_node_row(VGA_COS_NODE_ROW *record);

VGA_COS_TG_ROW *vga_init_vga_cos_tg_row(VGA_COS *owner, const NAP_COS_TG_ROW_DATA *entry);
VGA_COS_TG_ROW *vga_insert_vga_cos_tg_row(VGA_COS_TG_ROW *record);

VGA_DIR *vga_init_vga_dir(VGA_NODE *owner, const NAP_DIR_DATA *entry);
VGA_DIR *vga_insert_vga_dir(VGA_DIR *record);

VGA_REM_SYS *vga_init_vga_rem_sys(VGA_NODE *owner, const NAP_DIR_DATA *entry);
VGA_REM_SYS *vga_insert_vga_rem_sys(VGA_REM_SYS *record);

VGA_REM_SESS *vga_init_vga_rem_sess(VGA_REM_PLU *owner, const NAP_MODE_DATA *entry);
VGA_REM_SESS *vga_insert_vga_rem_sess(VGA_REM_SESS *record);

VGA_TP_DEF *vga_init_vga_tp_def(VGA_NODE *owner, const NAP_TP_DATA *entry);
VGA_TP_DEF *vga_insert_vga_tp_def(VGA_TP_DEF *record);

VGA_TP_LOAD_INFO *vga_init_vga_tp_load_info(VGA_NODE *owner, const NAP_TP_LOAD_DATA *entry);
VGA_TP_LOAD_INFO *vga_insert_vga_tp_load_info(VGA_TP_LOAD_INFO *record);

VGA_SLSEC_DEF *vga_init_vga_slsec_def(VGA_NODE *owner, const NAP_LU_LU_PASSWORD_DATA *entry);
VGA_SLSEC_DEF *vga_insert_vga_slsec_def(VGA_SLSEC_DEF *record);

VGA_CLSEC_DEF *vga_init_vga_clsec_def(VGA_NODE *owner, const NAP_USERID_PASSWORD_DATA *entry);
VGA_CLSEC_DEF *vga_insert_vga_clsec_def(VGA_CLSEC_DEF *record);

/* A pool of a node also makes the domain's pool. */
VGA_POOL *vga_init_vga_pool(VGA_NODE *owner, const NAP_LU_POOL_DATA *entry);
VGA_POOL *vga_insert_vga_pool(VGA_POOL *record);

VGA_POOL_LU *vga_init_vga_pool_lu(VGA_POOL *owner, const NAP_LU_POOL_DATA *entry);
VGA_POOL_LU *vga_insert_vga_pool_lu(VGA_POOL_LU *record);

VGA_SYS_POOL *vga_init_vga_sys_pool(VGA_SYSTEM *owner, const NAP_LU_POOL_DATA *entry);
VGA_SYS_POOL *vga_insert_vga_sys_pool(VGA_SYS_POOL *record);

VGA_TN_ASSOC *vga_init_vga_tn_assoc(VGA_NODE *owner, const NAP_TN_ASSOC_DATA *entry);
VGA_TN_ASSOC *vga_insert_vga_tn_assoc(VGA_TN_ASSOC *record);

VGA_TN_REDIRECT *vga_init_vga_tn_redirect(VGA_NODE *owner, const NAP_TN_REDIRECT_DATA *entry);
VGA_TN_REDIRECT *vga_insert_vga_tn_redirect(VGA_TN_REDIRECT *record);

VGA_TAMRIX_APPCIP_SESS *vga_init_vga_tamrix_appcip_sess(VGA_NODE *owner,
                                                        const NAP_TAMRIX_SESSION_DATA *entry);
VGA_TAMRIX_APPCIP_SESS *vga_insert_vga_tamrix_appcip_sess(VGA_TAMRIX_APPCIP_SESS *record);

VGA_SNA_NET_NODE *vga_init_vga_sna_net_node(VGA_SYSTEM *owner, const NAP_NODE_ALL_DATA *entry);
VGA_SNA_NET_NODE *vga_insert_vga_sna_net_node(VGA_SNA_NET_NODE *record);

VGA_CPIC *vga_init_vga_cpic(VGA_SYSTEM *owner, const NAP_CPIC_DATA *entry);
VGA_CPIC *vga_insert_vga_cpic(VGA_CPIC *record);

VGA_RJE_WKSTN *vga_init_vga_rje_wkstn(VGA_SYSTEM *owner, const NAP_RJE_DATA *entry);
VGA_RJE_WKSTN *vga_insert_vga_rje_wkstn(VGA_RJE_WKSTN *record);

/* These four also make the records of the items that their entries carry. */
VGA_DSPU_TEMPLATE *vga_init_vga_dspu_template(VGA_NODE *owner, const NAP_DSPU_TEMPLATE_DATA *entry);
VGA_DSPU_TEMPLATE *vga_insert_vga_dspu_template(VGA_DSPU_TEMPLATE *record);

VGA_ACCESS_LIST *vga_init_vga_access_list(VGA_NODE *owner, const NAP_ACCESS_LIST_DATA *entry);
VGA_ACCESS_LIST *vga_insert_vga_access_list(VGA_ACCESS_LIST *record);

VGA_TN_CLIENT *vga_init_vga_tn_client(VGA_NODE *owner, const NAP_TN_ACCESS_DATA *entry);
VGA_TN_CLIENT *vga_insert_vga_tn_client(VGA_TN_CLIENT *record);

VGA_USER *vga_init_vga_user(VGA_SYSTEM *owner, const NAP_USER_DATA *entry);
VGA_USER *vga_insert_vga_user(VGA_USER *record);

VGA_DSLU_TEMPLATE *vga_init_vga_dslu_template(VGA_DSPU_TEMPLATE *owner,
                                              const NAP_DSLU_TEMPLATE *entry);
VGA_DSLU_TEMPLATE *vga_insert_vga_dslu_template(VGA_DSLU_TEMPLATE *record);

VGA_SECURITY_USER *vga_init_vga_security_user(VGA_ACCESS_LIST *owner,
                                              const NAP_ACCESS_LIST_USER *entry);
VGA_SECURITY_USER *vga_insert_vga_security_user(VGA_SECURITY_USER *record);

VGA_TN_SESS *vga_init_vga_tn_sess(VGA_TN_CLIENT *owner, const NAP_TN_SESSION *entry);
VGA_TN_SESS *vga_insert_vga_tn_sess(VGA_TN_SESS *record);

VGA_USER_SESSION *vga_init_vga_user_session(VGA_USER *owner, const NAP_USER_SESSION *entry);
VGA_USER_SESSION *vga_insert_vga_user_session(VGA_USER_SESSION *record);

VGA_LS_ROUTING *vga_init_vga_ls_routing(VGA_LU62 *owner, const NAP_LS_ROUTING_DATA *entry);
VGA_LS_ROUTING *vga_insert_vga_ls_routing(VGA_LS_ROUTING *record);

/* Merged into what the LU has, also under another name. */
VGA_EXTRA_DATA *vga_init_vga_extra_data(VGA_LU03 *owner, const NAP_EXTRA_DATA_DATA *entry);
VGA_EXTRA_DATA *vga_insert_vga_extra_data(VGA_EXTRA_DATA *record);

/* `type` is NAP_DIR_LU or NAP_DIR_WILDCARD_LU. */
VGA_REM_PLU *vga_init_vga_rem_plu(VGA_REM_SYS *owner, const NAP_PLU_DEF_DATA *entry,
                                  NB_USHORT type);
VGA_REM_PLU *vga_insert_vga_rem_plu(VGA_REM_PLU *record);

/* Records the sessions that a mode entry tells of under their partner, which is made if need be.
 * Returns the partner, or null without memory. */
VGA_REM_PLU *vga_add_vga_rem_sess(VGA_NODE *node, const NAP_MODE_DATA *entry);

/* Returns the remote system of that name, made if need be; the node's placeholder for a blank name.
 * Null without memory. */
VGA_REM_SYS *vga_need_rem_sys(VGA_NODE *node, const NB_UCHAR *fqcp_name);

/* Returns the partner LU of that name wherever it stands, made under the remote system of
 * `fqcp_name` if need be.  Null without memory. */
VGA_REM_PLU *vga_need_rem_plu(VGA_NODE *node, const NB_UCHAR *fqcp_name, const NB_UCHAR *fqplu_name,
                              NB_USHORT type);

/* The 13 SNA-defined modes, but for those that the node has already, and the 7 SNA-defined classes
 * of service, which are reset to their defaults.  Return 1, or 0 without memory. */
NB_USHORT vga_init_sna_modes(VGA_NODE *node);
NB_USHORT vga_init_sna_cos(VGA_NODE *node);

/* The LU that stands for the node's control point; requests an exit without memory. */
NB_VOID vga_create_fake_cp_lu(VGA_NODE *node);

/* The two fixed lines of the connectivity pane.  A constructor returns null without memory; an
 * inserter creates the line, once. */
VGA_PORT *vga_init_vga_dlur_fake_port(VGA_NODE *node);
VGA_PORT *vga_insert_vga_dlur_fake_port(VGA_PORT *port);
VGA_PORT *vga_init_vga_primary_line_fake_port(VGA_NODE *node);
VGA_PORT *vga_insert_vga_primary_line_fake_port(VGA_PORT *port);

#endif
