/* The records of the model, each named once: VGA_RECORDS names the type of record, of its owner and
 * of the list entry that it is made of, and all three functions of the type follow from its row:
 *
 *   vga_init_<name>    makes a record of an entry             vgadsadd.h
 *   vga_insert_<name>  links it, or merges it                 vgadsadd.h
 *   vga_delete_<name>  deletes it with all that is below it   vgadsdel.h
 *
 * Rows of EMPTIED delete only a record that has nothing in the index `tree` any more; `record` is
 * what the assertion calls it.  Beside the rows stand VGA_NODE, which is made without an owner,
 * VGA_REM_PLU, whose constructor takes a type, VGA_LS_ROUTING and VGA_EXTRA_DATA, whose inserters
 * do more. */
#ifndef RECORDLIST_H
#define RECORDLIST_H

/* clang-format off */
#define VGA_RECORDS(PLAIN, EMPTIED) \
    PLAIN(vga_dlc, VGA_DLC, VGA_NODE, NAP_DLC_DATA) \
    PLAIN(vga_port, VGA_PORT, VGA_DLC, NAP_PORT_DATA) \
    PLAIN(vga_ls, VGA_LS, VGA_PORT, NAP_LS_DATA) \
    PLAIN(vga_cn, VGA_CN, VGA_NODE, NAP_CN_DATA) \
    PLAIN(vga_cn_port, VGA_CN_PORT, VGA_CN, NAP_CN_PORT_DATA) \
    PLAIN(vga_local_pu, VGA_LOCAL_PU, VGA_NODE, NAP_PU_DATA) \
    PLAIN(vga_lu03, VGA_LU03, VGA_LOCAL_PU, NAP_LU03_DATA) \
    PLAIN(vga_down_pu, VGA_DOWN_PU, VGA_NODE, NAP_DOWN_PU_DATA) \
    PLAIN(vga_down_lu, VGA_DOWN_LU, VGA_DOWN_PU, NAP_DOWN_LU_DATA) \
    PLAIN(vga_dspu_template, VGA_DSPU_TEMPLATE, VGA_NODE, NAP_DSPU_TEMPLATE_DATA) \
    PLAIN(vga_primary_line, VGA_PRIMARY_LINE, VGA_NODE, NAP_PRIMARY_LINE_DATA) \
    PLAIN(vga_primary_lu0, VGA_PRIMARY_LU0, VGA_PRIMARY_LINE, NAP_PRIMARY_LU0_DATA) \
    PLAIN(vga_rtp_conn, VGA_RTP_CONN, VGA_NODE, NAP_RTP_CONN_DATA) \
    PLAIN(vga_lu62, VGA_LU62, VGA_NODE, NAP_LOCAL_LU_DATA) \
    PLAIN(vga_mode_def, VGA_MODE_DEF, VGA_NODE, NAP_MODE_DEF_DATA) \
    PLAIN(vga_mode, VGA_MODE, VGA_LU62, NAP_MODE_DATA) \
    PLAIN(vga_plu, VGA_PLU, VGA_LU62, NAP_PLU_DATA) \
    PLAIN(vga_lu62_timeout, VGA_LU62_TIMEOUT, VGA_NODE, NAP_LU62_TIMEOUT_DATA) \
    PLAIN(vga_cos, VGA_COS, VGA_NODE, NAP_COS_DATA) \
    PLAIN(vga_cos_node_row, VGA_COS_NODE_ROW, VGA_COS, NAP_COS_NODE_ROW_DATA) \
    PLAIN(vga_cos_tg_row, VGA_COS_TG_ROW, VGA_COS, NAP_COS_TG_ROW_DATA) \
    PLAIN(vga_dir, VGA_DIR, VGA_NODE, NAP_DIR_DATA) \
    PLAIN(vga_rem_sess, VGA_REM_SESS, VGA_REM_PLU, NAP_MODE_DATA) \
    PLAIN(vga_tp_def, VGA_TP_DEF, VGA_NODE, NAP_TP_DATA) \
    PLAIN(vga_tp_load_info, VGA_TP_LOAD_INFO, VGA_NODE, NAP_TP_LOAD_DATA) \
    PLAIN(vga_slsec_def, VGA_SLSEC_DEF, VGA_NODE, NAP_LU_LU_PASSWORD_DATA) \
    PLAIN(vga_clsec_def, VGA_CLSEC_DEF, VGA_NODE, NAP_USERID_PASSWORD_DATA) \
    PLAIN(vga_pool_lu, VGA_POOL_LU, VGA_POOL, NAP_LU_POOL_DATA) \
    PLAIN(vga_sys_pool, VGA_SYS_POOL, VGA_SYSTEM, NAP_LU_POOL_DATA) \
    PLAIN(vga_tn_client, VGA_TN_CLIENT, VGA_NODE, NAP_TN_ACCESS_DATA) \
    PLAIN(vga_tn_assoc, VGA_TN_ASSOC, VGA_NODE, NAP_TN_ASSOC_DATA) \
    PLAIN(vga_tn_redirect, VGA_TN_REDIRECT, VGA_NODE, NAP_TN_REDIRECT_DATA) \
    PLAIN(vga_tamrix_appcip_sess, VGA_TAMRIX_APPCIP_SESS, VGA_NODE, NAP_TAMRIX_SESSION_DATA) \
    PLAIN(vga_sna_net_node, VGA_SNA_NET_NODE, VGA_SYSTEM, NAP_NODE_ALL_DATA) \
    PLAIN(vga_cpic, VGA_CPIC, VGA_SYSTEM, NAP_CPIC_DATA) \
    PLAIN(vga_rje_wkstn, VGA_RJE_WKSTN, VGA_SYSTEM, NAP_RJE_DATA) \
    PLAIN(vga_dslu_template, VGA_DSLU_TEMPLATE, VGA_DSPU_TEMPLATE, NAP_DSLU_TEMPLATE) \
    PLAIN(vga_security_user, VGA_SECURITY_USER, VGA_ACCESS_LIST, NAP_ACCESS_LIST_USER) \
    PLAIN(vga_tn_sess, VGA_TN_SESS, VGA_TN_CLIENT, NAP_TN_SESSION) \
    PLAIN(vga_user_session, VGA_USER_SESSION, VGA_USER, NAP_USER_SESSION) \
    EMPTIED(vga_rem_sys, VGA_REM_SYS, VGA_NODE, NAP_DIR_DATA, rem_sys, remote_plu_tree) \
    EMPTIED(vga_access_list, VGA_ACCESS_LIST, VGA_NODE, NAP_ACCESS_LIST_DATA, access_list, user_tree) \
    EMPTIED(vga_pool, VGA_POOL, VGA_NODE, NAP_LU_POOL_DATA, node_pool, lu_tree) \
    EMPTIED(vga_user, VGA_USER, VGA_SYSTEM, NAP_USER_DATA, user, session_tree)
/* clang-format on */

#endif
