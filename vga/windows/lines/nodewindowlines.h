/* What the lists show for each record: the text of its line, its headings and its icon.
 *
 * A text function, and one of headings (create_headings), writes at most VGA_VIEWER_TEXT_BUFFER
 * bytes and returns the length; an icon function returns an index into gvga_pixmaps.  `data` is the
 * record of the line, of the type that the model has for it; a title's functions do not look at it.
 * The node window's own lines are in nodewindowlines, links to other systems in connectivitylines,
 * LUs, programs and security in lulines, users and services in servicelines. */
#ifndef NODEWINDOWLINES_H
#define NODEWINDOWLINES_H

#include "model.h"

/* What a line of a user's status shows.  The dialog that lists it owns it. */
struct VGA_USER_STATUS {
    VGA_USER_STATUS_KEY key;
    NB_UCHAR status;     /* NAP_NOT_ACTIVE and the like */
    NB_UCHAR lu_name[8]; /* A8: the LU that the session has; blank: none */
    VGA_VIEWER_ITEM viewer;
};

/* Lines with a text, headings over its columns, and an icon. */
#define VGA_LINE(line)                                                                             \
    NB_USHORT vga_create_##line##_headings(NB_VOID *, NB_CHAR *buffer);                            \
    NB_USHORT vga_create_##line##_viewer_text(NB_VOID *data, NB_CHAR *buffer);                     \
    NB_USHORT vga_choose_##line##_viewer_icon(NB_VOID *data)

// clang-format off
VGA_LINE(node); VGA_LINE(port); VGA_LINE(ls); VGA_LINE(local_pu); VGA_LINE(deplu); VGA_LINE(down_lu);
VGA_LINE(lu62); VGA_LINE(mode); VGA_LINE(rem_sys); VGA_LINE(rem_plu); VGA_LINE(rem_sess);
VGA_LINE(ls_r); VGA_LINE(primary_line); VGA_LINE(primary_lu0); VGA_LINE(rtp_conn);
VGA_LINE(dslu_template); VGA_LINE(mode_def); VGA_LINE(tp_def); VGA_LINE(tp_load_info);
VGA_LINE(cl_security); VGA_LINE(sl_security); VGA_LINE(access_list); VGA_LINE(user);
VGA_LINE(user_sess); VGA_LINE(pool); VGA_LINE(pool_lu); VGA_LINE(cpic); VGA_LINE(rje);
VGA_LINE(tn_sess); VGA_LINE(tn_assoc); VGA_LINE(tn_redirect); VGA_LINE(appcip_sess);
// clang-format on

#undef VGA_LINE

/* Titles, and the one line without an icon. */
NB_USHORT vga_nodew_create_ls_r_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_nodew_choose_ls_r_title_viewer_icon(NB_VOID *data);
NB_USHORT vga_hprw_create_rtp_conn_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_slscw_create_sl_sec_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_tnw_create_sess_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_tnw_create_assoc_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_tnw_create_redirect_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_anyw_create_appcip_sess_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_create_ustad_title_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_create_ustad_viewer_text(NB_VOID *data, NB_CHAR *buffer);

#endif
