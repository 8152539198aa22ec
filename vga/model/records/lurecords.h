/* Records of LU 6.2: local LUs, modes, classes of service, the directory, remote systems and
 * partner LUs, time-outs, routing, transaction programs and security.  Part of model.h. */
#ifndef LURECORDS_H
#define LURECORDS_H

#include "model.h"

/* A record that names a partner LU: an entry of the directory, a partner or a mode in use
 * (partners.h). */
struct VGA_PARTNER_REF {
    VGA_REM_PLU *plu; /* null: none */
    VGA_PARTNER_REF *next, *previous;
    NB_UCHAR fqcp_name[17]; /* where the record says that it is; blank: it does not say */
};

struct VGA_LU62 : VGA_RECORD<VGA_NODE, NAP_LOCAL_LU_DATA> {
    AVL_NODE name_links;
    VGA_SHARED_LINK alias_links; /* aliases that two LUs swap are one LU's for a while */
    NB_UCHAR name[8];
    NB_UCHAR alias[8];             /* local */
    AVL_TREE modes;                /* VGA_MODE */
    AVL_TREE partners;             /* VGA_PLU */
    AVL_TREE routings;             /* VGA_LS_ROUTING by partner */
    VGA_VIEWER_ITEM routing_title; /* over the lines of `routings`, while there are any */
};

struct VGA_MODE_DEF : VGA_RECORD<VGA_NODE, NAP_MODE_DEF_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8];
    NB_USHORT sna_defined; /* flag */
};

struct VGA_MODE : VGA_RECORD<VGA_LU62, NAP_MODE_DATA> {
    AVL_NODE links;
    VGA_MODE_KEY key;
    VGA_PARTNER_REF partner;
};

struct VGA_PLU : VGA_RECORD<VGA_LU62, NAP_PLU_DATA> {
    AVL_NODE links;
    VGA_PLU_KEY key;
    VGA_PARTNER_REF partner;
};

struct VGA_COS : VGA_RECORD<VGA_NODE, NAP_COS_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8];
    AVL_TREE node_rows; /* VGA_COS_NODE_ROW by number */
    AVL_TREE tg_rows;   /* VGA_COS_TG_ROW by number */
};

struct VGA_COS_NODE_ROW : VGA_RECORD<VGA_COS, NAP_COS_NODE_ROW_DATA> {
    AVL_NODE links;
    NB_USHORT row_number; /* 1..8 */
};

struct VGA_COS_TG_ROW : VGA_RECORD<VGA_COS, NAP_COS_TG_ROW_DATA> {
    AVL_NODE links;
    NB_USHORT row_number; /* 1..8 */
};

struct VGA_DIR : VGA_RECORD<VGA_NODE, NAP_DIR_DATA> {
    AVL_NODE links;
    VGA_DIR_KEY key;
    NB_USHORT of_system;     /* flag: its remote system counts it */
    VGA_PARTNER_REF partner; /* of the entry of an LU */
};

/* A remote system has no list of its own: directory entries, modes and partner definitions name
 * it, and `vcb` is the directory entry of its control point when there is one. */
struct VGA_REM_SYS : VGA_RECORD<VGA_NODE, NAP_DIR_DATA> {
    AVL_NODE links;
    NB_UCHAR name[17];
    NB_ULONG defined; /* directory entries of this control point; 0: others name it */
    AVL_TREE remote_plu_tree;
};

struct VGA_REM_PLU : VGA_RECORD<VGA_REM_SYS, NAP_PLU_DEF_DATA> {
    AVL_NODE links;
    VGA_SHARED_LINK node_links;
    VGA_REM_PLU_KEY key;
    NB_USHORT defined;     /* flag: a partner LU definition exists */
    NB_ULONG in_directory; /* directory entries of it */
    AVL_TREE sess_tree;
    VGA_PARTNER_REF *named_by; /* ring; the first says where it is, if any does */
};

/* Sessions of one local LU with one mode to a partner. */
struct VGA_REM_SESS : VGA_RECORD<VGA_REM_PLU, NAP_MODE_DATA> {
    AVL_NODE links;
    VGA_REM_SESS_KEY key;
};

struct VGA_LU62_TIMEOUT : VGA_RECORD<VGA_NODE, NAP_LU62_TIMEOUT_DATA> {
    AVL_NODE links;
    VGA_LU62_TIMEOUT_KEY key;
};

struct VGA_LS_ROUTING : VGA_RECORD<VGA_LU62, NAP_LS_ROUTING_DATA> {
    AVL_NODE links;
    NB_UCHAR fqplu_name[17];
};

struct VGA_TP_DEF : VGA_RECORD<VGA_NODE, NAP_TP_DATA> {
    AVL_NODE links;
    NB_UCHAR tp_name[64]; /* EBCDIC */
};

struct VGA_TP_LOAD_INFO : VGA_RECORD<VGA_NODE, NAP_TP_LOAD_DATA> {
    AVL_NODE links;
    VGA_TP_LOAD_KEY key;
};

/* Session-level security: the password between a local LU and a partner. */
struct VGA_SLSEC_DEF : VGA_RECORD<VGA_NODE, NAP_LU_LU_PASSWORD_DATA> {
    AVL_NODE links;
    VGA_SL_SEC_KEY key;
};

/* Conversation-level security: a user and his password. */
struct VGA_CLSEC_DEF : VGA_RECORD<VGA_NODE, NAP_USERID_PASSWORD_DATA> {
    AVL_NODE links;
    NB_UCHAR user_id[10]; /* EBCDIC */
};

struct VGA_ACCESS_LIST : VGA_RECORD<VGA_NODE, NAP_ACCESS_LIST_DATA> {
    AVL_NODE links;
    NB_UCHAR name[14];  /* local */
    AVL_TREE user_tree; /* VGA_SECURITY_USER by name */
};

struct VGA_SECURITY_USER : VGA_RECORD<VGA_ACCESS_LIST, NAP_ACCESS_LIST_USER> {
    AVL_NODE links;
    NB_UCHAR name[10]; /* local */
};

#endif
