/* Records of connectivity: DLCs, ports, link stations, connection networks, the PUs and dependent
 * LUs on the links, downstream PUs and LUs, primary lines, HPR connections.  Part of model.h. */
#ifndef CONNECTIVITYRECORDS_H
#define CONNECTIVITYRECORDS_H

#include "model.h"

struct VGA_DLC : VGA_RECORD<VGA_NODE, NAP_DLC_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8]; /* local */
    AVL_TREE ports;
};

/* The two placeholder ports have a line but neither a DLC nor a `vcb`; they stand in no index. */
struct VGA_PORT : VGA_RECORD<VGA_DLC, NAP_PORT_DATA> {
    AVL_NODE node_links;
    AVL_NODE dlc_links;
    VGA_NODE *node;
    NB_UCHAR name[8]; /* local */
    AVL_TREE link_stations;
};

struct VGA_LS : VGA_RECORD<VGA_PORT, NAP_LS_DATA> {
    AVL_NODE node_links;
    AVL_NODE port_links;
    NB_UCHAR name[8];       /* local */
    NB_UCHAR state;         /* NAP_NOT_ACTIVE and the like: what its line shows */
    NB_UCHAR retrying;      /* flag: the node tries again to start it, by itself */
    VGA_LOCAL_PU *local_pu; /* the PU that a host link makes; null: none */
    VGA_DOWN_PU *down_pu;   /* the PU that is served over a downstream link; null: none */
};

struct VGA_CN : VGA_RECORD<VGA_NODE, NAP_CN_DATA> {
    AVL_NODE links;
    NB_UCHAR name[17];
    AVL_TREE ports; /* VGA_CN_PORT by port name */
};

struct VGA_CN_PORT : VGA_RECORD<VGA_CN, NAP_CN_PORT_DATA> {
    AVL_NODE links;
    NB_UCHAR port_name[8]; /* local */
};

struct VGA_LOCAL_PU : VGA_RECORD<VGA_NODE, NAP_PU_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8];
    VGA_LS *ls_entry;    /* the link station that makes it; null: DLUR-served */
    AVL_TREE lus;        /* VGA_LU03 by name */
    AVL_TREE extra_list; /* VGA_EXTRA_DATA of these by name */
};

struct VGA_LU03 : VGA_RECORD<VGA_LOCAL_PU, NAP_LU03_DATA> {
    AVL_NODE links;
    VGA_SHARED_LINK domain_links;
    NB_UCHAR name[8];
    const NB_UCHAR *domain_key; /* points at `name`: what the domain's index compares */
    VGA_EXTRA_DATA *extra_data; /* null: none */
};

#define VGA_EXTRA_DISPLAY_NAME 0 /* what users call the LU */

/* Additional data of a dependent LU, which owns it. */
struct VGA_EXTRA_DATA : VGA_RECORD<VGA_LU03, NAP_EXTRA_DATA_DATA> {
    VGA_SHARED_LINK links;
    NB_UCHAR name[14]; /* local, padded with blanks */
    NB_USHORT kind;    /* VGA_EXTRA_DISPLAY_NAME */
};

/* The line of the link station stands for it. */
struct VGA_DOWN_PU : VGA_RECORD<VGA_NODE, NAP_DOWN_PU_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8];
    VGA_LS *ls_entry; /* null: not known */
    AVL_TREE lus;     /* VGA_DOWN_LU by name */
};

struct VGA_DOWN_LU : VGA_RECORD<VGA_DOWN_PU, NAP_DOWN_LU_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8];
};

struct VGA_DSPU_TEMPLATE : VGA_RECORD<VGA_NODE, NAP_DSPU_TEMPLATE_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8]; /* local */
    AVL_TREE lu_templates;
    VGA_VIEWER_ROOT viewer_root; /* its VGA_DSLU_TEMPLATEs, in the window of the template */
};

/* A range of LUs of a template. */
struct VGA_DSLU_TEMPLATE : VGA_RECORD<VGA_DSPU_TEMPLATE, NAP_DSLU_TEMPLATE> {
    AVL_NODE links;
    VGA_DSLU_TEMPLATE_KEY key;
};

struct VGA_PRIMARY_LINE : VGA_RECORD<VGA_NODE, NAP_PRIMARY_LINE_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8]; /* local */
    AVL_TREE lus;     /* VGA_PRIMARY_LU0 by name */
};

struct VGA_PRIMARY_LU0 : VGA_RECORD<VGA_PRIMARY_LINE, NAP_PRIMARY_LU0_DATA> {
    AVL_NODE links;
    AVL_NODE line_links;
    NB_UCHAR name[8];
};

struct VGA_RTP_CONN : VGA_RECORD<VGA_NODE, NAP_RTP_CONN_DATA> {
    AVL_NODE links;
    NB_UCHAR name[8];
    NB_USHORT listed; /* flag: the list that is being read has it */
};

#endif
