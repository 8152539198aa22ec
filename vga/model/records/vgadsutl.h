/* The comparators of the model's indexes, its look-ups, and what is asked of it before something is
 * defined.
 *
 * A comparator gets two keys of the stated layout, at any alignment, and returns a negative value,
 * 0 or a positive one.  "asc" keys are names in the local code page, compared without regard to
 * case over their whole width; "ebc" keys are EBCDIC names, compared as their local text. Composite
 * keys go field by field. */
#ifndef VGADSUTL_H
#define VGADSUTL_H

#include "model.h"
#include <string>

NB_INT vga_compare_asc4(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_asc8(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_asc10(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_asc14(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_asc16(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_node_name(const NB_VOID *a, const NB_VOID *b); /* 128 bytes, as asc */
NB_INT vga_compare_user_name(const NB_VOID *a, const NB_VOID *b); /* 32 bytes, as asc */
NB_INT vga_compare_ebc8(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_ebc10(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_ebc17(const NB_VOID *a, const NB_VOID *b);

/* The keys point at pointers to 8-byte EBCDIC names. */
NB_INT vga_compare_lu(const NB_VOID *a, const NB_VOID *b);

NB_INT vga_compare_byte(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_ushort(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_ulong(const NB_VOID *a, const NB_VOID *b);

/* 64-byte names of transaction programs; 8-byte names of RTP connections. */
NB_INT vga_compare_tp_names(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_rtp_conn(const NB_VOID *a, const NB_VOID *b);

/* Composite keys, each a struct of model.h. */
NB_INT vga_compare_mode(const NB_VOID *a, const NB_VOID *b);              /* VGA_MODE_KEY */
NB_INT vga_compare_plu(const NB_VOID *a, const NB_VOID *b);               /* VGA_PLU_KEY */
NB_INT vga_compare_directory_entries(const NB_VOID *a, const NB_VOID *b); /* VGA_DIR_KEY */
NB_INT vga_compare_rem_plu(const NB_VOID *a, const NB_VOID *b);           /* VGA_REM_PLU_KEY */
NB_INT vga_compare_rem_sess(const NB_VOID *a, const NB_VOID *b);          /* VGA_REM_SESS_KEY */
NB_INT vga_compare_lu62_timeouts(const NB_VOID *a, const NB_VOID *b);     /* VGA_LU62_TIMEOUT_KEY */
NB_INT vga_compare_tp_load_info(const NB_VOID *a, const NB_VOID *b);      /* VGA_TP_LOAD_KEY */
NB_INT vga_compare_sl_sec(const NB_VOID *a, const NB_VOID *b);            /* VGA_SL_SEC_KEY */
NB_INT vga_compare_client_address(const NB_VOID *a, const NB_VOID *b);    /* VGA_CLIENT_ADDRESS */
NB_INT vga_compare_tn_session(const NB_VOID *a, const NB_VOID *b);        /* VGA_TN_SESS_KEY */
NB_INT vga_compare_tn_redirect(const NB_VOID *a, const NB_VOID *b);       /* VGA_TN_REDIRECT_KEY */
NB_INT vga_compare_tamrix_appcip_sess(const NB_VOID *a, const NB_VOID *b); /* VGA_TAMRIX_SESS_KEY */
NB_INT vga_compare_pool_lu(const NB_VOID *a, const NB_VOID *b);            /* VGA_SYS_POOL_LU_KEY */
NB_INT vga_compare_dslu_template(const NB_VOID *a, const NB_VOID *b); /* VGA_DSLU_TEMPLATE_KEY */
NB_INT vga_compare_user_status(const NB_VOID *a, const NB_VOID *b);   /* VGA_USER_STATUS_KEY */
NB_INT vga_compare_ip_address(const NB_VOID *a, const NB_VOID *b);    /* NB_IP_ADDRESS */

/* The domain's list of servers says of a node what the node's own record says, but for its flags.
 */
NB_VOID vga_server_follows(const VGA_NODE *node);

/* The node's name in the locale's characters; empty for null. */
std::string vga_node_name(const VGA_NODE *node);

/* Look-ups by exact key; null when there is none.  Names as the model holds them. */
VGA_NODE *vga_find_node_of_target(NB_ULONG target); /* its own or that of its TP load file */
VGA_DLC *vga_find_dlc(const VGA_NODE *node, const NB_UCHAR *name);
VGA_PORT *vga_find_port(const VGA_NODE *node, const NB_UCHAR *name);
VGA_LS *vga_find_ls(const VGA_NODE *node, const NB_UCHAR *name);
VGA_LOCAL_PU *vga_find_local_pu(const VGA_NODE *node, const NB_UCHAR *name);
VGA_DOWN_PU *vga_find_down_pu(const VGA_NODE *node, const NB_UCHAR *name);
VGA_LU03 *vga_find_lu03(const VGA_NODE *node, const NB_UCHAR *pu_name, const NB_UCHAR *lu_name);
VGA_PRIMARY_LINE *vga_find_primary_line(const VGA_NODE *node, const NB_UCHAR *name);
VGA_CN *vga_find_cn(const VGA_NODE *node, const NB_UCHAR *name);
VGA_COS *vga_find_cos(const VGA_NODE *node, const NB_UCHAR *name);
VGA_MODE_DEF *vga_find_mode_def(const VGA_NODE *node, const NB_UCHAR *name);
/* Null: the sessions of the mode have no time-out of their own. */
VGA_LU62_TIMEOUT *vga_find_mode_timeout(const VGA_NODE *node, const NB_UCHAR *mode_name);
VGA_POOL *vga_find_pool(const VGA_NODE *node, const NB_UCHAR *name);
VGA_POOL_LU *vga_find_pool_lu(const VGA_NODE *node, const NB_UCHAR *pool_name,
                              const NB_UCHAR *lu_name);
VGA_SYS_POOL *vga_find_sys_pool(const NB_UCHAR *name);
VGA_LU62 *vga_find_lu62(const VGA_NODE *node, const NB_UCHAR *name);
VGA_LU62 *vga_find_lu62_by_alias(const VGA_NODE *node, const NB_UCHAR *alias);
VGA_REM_SYS *vga_find_rem_sys(const VGA_NODE *node, const NB_UCHAR *fqcp_name);
VGA_REM_PLU *vga_find_rem_plu(const VGA_NODE *node, const NB_UCHAR *fqplu_name, NB_USHORT type);

/* With how many partners, of all local LUs, the mode is in use.  It cannot be deleted while it is.
 */
NB_ULONG vga_count_mode_uses(const VGA_MODE_DEF *mode);

/* The pool that has the LU shows whether it is active and in use. */
NB_VOID vga_pool_follows(const VGA_LU03 *lu);

/* What already has an LU name; the dialogs choose their message by the code. */
enum VGA_NAME_CLASH : NB_USHORT {
    VGA_CLASH_NONE = 0,
    VGA_CLASH_LU03 = 1,         /* VGA_LU03 of a local PU of the node */
    VGA_CLASH_POOL = 2,         /* VGA_SYS_POOL */
    VGA_CLASH_DOWN_LU = 3,      /* VGA_DOWN_LU */
    VGA_CLASH_LU62 = 4,         /* VGA_LU62 */
    VGA_CLASH_DOMAIN_LU = 5,    /* VGA_LU03 of any node of the domain */
    VGA_CLASH_DISPLAY_NAME = 6, /* VGA_EXTRA_DATA; with gvga_variant_x only */
};

/* Tells what has the 8-byte EBCDIC name on the node (null: on any, in index order), else in the
 * domain.  A name that several have gives the first of: LU 0 to 3, display name, downstream LU, LU
 * 6.2, node by node; then pool, dependent LU of the domain.  `clash_out` (null: not wanted) gets
 * the record, of the type that the code says; null without a clash. */
NB_USHORT vga_check_lu_name_clash(const NB_UCHAR *lu_name, const VGA_NODE *node,
                                  NB_VOID **clash_out);

/* The node's local LU that a fully qualified name of 17 bytes (EBCDIC) means: the network must be
 * that of the node's control point.  Null: none. */
VGA_LU62 *vga_check_fq_name_local_clash(const NB_UCHAR *fq_name, const VGA_NODE *node);

/* The defined partner LU that a fully qualified name of 17 bytes (EBCDIC) means on the node: under
 * the placeholder first, then under the remote systems in index order.  With `type_given`, of that
 * type; else of type NAP_DIR_LU, or NAP_DIR_WILDCARD_LU where a system has none of that.  Null:
 * none. */
VGA_REM_PLU *vga_check_fq_name_plu_clash(const NB_UCHAR *fq_name, const VGA_NODE *node,
                                         NB_USHORT type_given, NB_USHORT type);

/* Marks the users' sessions of a kind whose LU is there and usable, and counts them in their users;
 * both counters of every user begin anew.  A session's line is redrawn when its mark changes.
 *   NAP_USER_SESSION_3270: the domain has a dependent LU of the name, and its host session is up;
 *   others, with `name` (8 bytes, as the session's LU alias): the alias is that name;
 *   others without: `node` (null: none is marked) has a local LU of the alias that is not disabled
 *   and, if it depends on a host, has its host session. */
NB_VOID vga_mark_sessions(NB_USHORT kind, const VGA_NODE *node, const NB_UCHAR *name);

/* Clears the marks and the counter of a kind for every user who has any.  Other kinds: nothing. */
NB_VOID vga_unmark_sessions(NB_USHORT kind);

/* Proposes a name for the PU of a link station: what its name (8 bytes, local) has of a type A
 * name, with digits behind it if a PU or downstream PU of the node has that already.  `pu_name`
 * gets 8 bytes, EBCDIC, padded with blanks; never a blank name. */
NB_VOID vga_ls_to_pu_name(const VGA_NODE *node, const NB_UCHAR *ls_name, NB_UCHAR *pu_name);

/* 1 when the field holds nothing but EBCDIC blanks or NULs. */
NB_USHORT vga_blank_name(const NB_UCHAR *name, NB_USHORT width);

#endif
