/* The lines of the lists beyond the node window's own: links to other systems (vgalinlk), LUs,
 * programs and security (vgalinlu), users and services (vgalinsv).
 *
 * The functions are as those of vgalines.h: `data` is the record of the line, of the type that the
 * model has for it.  A title line's functions do not look at `data`. */
#ifndef VGALINRS_H
#define VGALINRS_H

#include "vgamodel.h"

/* What a line of a user's status shows.  The dialog that lists it owns it. */
struct VGA_USER_STATUS {
    VGA_USER_STATUS_KEY key;
    NB_UCHAR status;     /* NAP_NOT_ACTIVE and the like */
    NB_UCHAR lu_name[8]; /* A8: the LU that the session has; blank: none */
    VGA_VIEWER_ITEM viewer;
};

/* Lines. */

NB_USHORT vga_create_down_lu_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_down_lu_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_ls_r_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_ls_r_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_primary_line_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_primary_line_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_primary_lu0_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_primary_lu0_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_rtp_conn_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_rtp_conn_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_dslu_template_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_dslu_template_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_mode_def_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_mode_def_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_tp_def_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_tp_def_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_tp_load_info_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_tp_load_info_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_cl_security_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_cl_security_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_sl_security_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_sl_security_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_access_list_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_access_list_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_user_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_user_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_user_sess_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_user_sess_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_pool_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_pool_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_pool_lu_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_pool_lu_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_cpic_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_cpic_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_rje_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_rje_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_tn_sess_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_tn_sess_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_tn_assoc_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_tn_assoc_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_tn_redirect_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_tn_redirect_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_appcip_sess_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_appcip_sess_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_ustad_viewer_text(NB_VOID *data, NB_CHAR *buffer);

/* Titles. */

NB_USHORT vga_nodew_create_ls_r_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_nodew_choose_ls_r_title_viewer_icon(NB_VOID *data);
NB_USHORT vga_hprw_create_rtp_conn_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_slscw_create_sl_sec_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_tnw_create_sess_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_tnw_create_assoc_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_tnw_create_redirect_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_anyw_create_appcip_sess_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_create_ustad_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);

#endif
