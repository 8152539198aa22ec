/* Records of services: LU pools, the TN3270 server and redirector, SNA over IP, and the domain's
 * users, CPI-C side information, RJE workstations and list of servers.  Part of model.h. */
#ifndef SERVICERECORDS_H
#define SERVICERECORDS_H

#include "model.h"

/* A node of the domain's network file. */
struct VGA_SNA_NET_NODE : VGA_RECORD<VGA_SYSTEM, NAP_NODE_ALL_DATA> {
    AVL_NODE links;
    NB_CHAR name[128]; /* local, padded with NULs */
};

/* A pool of the domain: all pools of that name on its nodes.  It has no list of its own; `vcb` is
 * the entry of the node's pool that was read first. */
struct VGA_SYS_POOL : VGA_RECORD<VGA_SYSTEM, NAP_LU_POOL_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8];
    NB_ULONG node_pools; /* how many nodes have it */
    AVL_TREE lu_tree;    /* VGA_POOL_LU of all nodes by VGA_SYS_POOL_LU_KEY */
};

/* A node's part of a pool. */
struct VGA_POOL : VGA_RECORD<VGA_NODE, NAP_LU_POOL_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8];
    VGA_SYS_POOL *sys_pool;
    AVL_TREE lu_tree; /* VGA_POOL_LU by name */
};

struct VGA_POOL_LU : VGA_RECORD<VGA_POOL, NAP_LU_POOL_DATA> {
    AVL_NODE links;
    AVL_NODE domain_links;
    VGA_SYS_POOL_LU_KEY key;
};

struct VGA_TN_CLIENT : VGA_RECORD<VGA_NODE, NAP_TN_ACCESS_DATA> {
    AVL_NODE links;
    VGA_CLIENT_ADDRESS address;
    AVL_TREE session_tree; /* VGA_TN_SESS by VGA_TN_SESS_KEY */
};

struct VGA_TN_SESS : VGA_RECORD<VGA_TN_CLIENT, NAP_TN_SESSION> {
    AVL_NODE links;
    AVL_NODE node_links;
    VGA_TN_SESS_KEY key;
};

struct VGA_TN_ASSOC : VGA_RECORD<VGA_NODE, NAP_TN_ASSOC_DATA> {
    AVL_NODE links;
    NB_UCHAR display_lu_name[8];
};

struct VGA_TN_REDIRECT : VGA_RECORD<VGA_NODE, NAP_TN_REDIRECT_DATA> {
    AVL_NODE links;
    VGA_TN_REDIRECT_KEY key;
};

struct VGA_TAMRIX_APPCIP_SESS : VGA_RECORD<VGA_NODE, NAP_TAMRIX_SESSION_DATA> {
    AVL_NODE number_links;
    VGA_SHARED_LINK links; /* a number is given out again before its old session is taken out */
    NB_ULONG number;
    VGA_TAMRIX_SESS_KEY key;
};

/* Kinds of emulator sessions; a user counts the marked ones of each. */
#define VGA_SESSION_KINDS 2

struct VGA_USER : VGA_RECORD<VGA_SYSTEM, NAP_USER_DATA> {
    AVL_NODE links;
    NB_UCHAR name[32];                  /* text, padded with NULs */
    NB_ULONG marked[VGA_SESSION_KINDS]; /* sessions of kind 1 and 2 whose LU is there */
    AVL_TREE session_tree;              /* VGA_USER_SESSION by name */
};

struct VGA_USER_SESSION : VGA_RECORD<VGA_USER, NAP_USER_SESSION> {
    AVL_NODE links;
    NB_UCHAR name[8]; /* local */
    NB_USHORT kind;   /* NAP_USER_SESSION_3270 or NAP_USER_SESSION_5250 */
    NB_USHORT mark;   /* flag: its LU is there and can be used */
};

struct VGA_CPIC : VGA_RECORD<VGA_SYSTEM, NAP_CPIC_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8]; /* local */
};

struct VGA_RJE_WKSTN : VGA_RECORD<VGA_SYSTEM, NAP_RJE_DATA> {
    AVL_NODE links;
    NB_UCHAR name[4]; /* local */
};

#endif
