/* The configuration model: the records of the domain, its nodes and their resources.
 *
 * A record holds a private copy of the node's list entry (`vcb`), its place in the indexes, its
 * handle, and its line on the screen (`gui_data`).  Records are made, linked, merged and deleted
 * only by the functions of vgadsadd.h and vgadsdel.h, which follow one pattern (recordpattern.h).
 * OWNS: each record its `vcb`; the indexes own nothing.  All names are as the node has them: EBCDIC
 * unless a field says "local".  One thread. */
#ifndef MODEL_H
#define MODEL_H

#include "linetypes.h"
#include "nbbase.h"
#include "nofrec.h"
#include "ntlavl.h"
#include "selection.h"
#include "sharedindex.h"
#include <ctime>

struct VGA_DIALOG; /* of the dialog framework, to which it is left */
struct VGA_NODE;
struct VGA_DLC;
struct VGA_PORT;
struct VGA_LS;
struct VGA_LOCAL_PU;
struct VGA_LU03;
struct VGA_LU62;
struct VGA_REM_SYS;
struct VGA_REM_PLU;
struct VGA_DOWN_PU;
struct VGA_EXTRA_DATA;
struct VGA_POOL;

/* A record's presence on the screen. */
struct VGA_GUI_DATA {
    VGA_VIEWER_ITEM viewer;
    VGA_DIALOG *dialog;    /* the dialog that shows the record; null: none */
    VGA_VIEWER_ROOT *list; /* that `viewer` is in; null: none */
};

/* What every record begins with. */
template <class Owner, class Data> struct VGA_RECORD {
    NB_ULONG handle;
    Owner *parent;
    Data *vcb; /* from malloc, replaced whole by a merge */
    VGA_GUI_DATA gui_data;
};

/* Keys of several fields; the names in them are as the entries have them. */
struct VGA_MODE_KEY {
    NB_UCHAR mode_name[8];
    NB_UCHAR fqplu_name[17];
};
struct VGA_PLU_KEY {
    NB_UCHAR plu_alias[8]; /* local */
    NB_UCHAR fqplu_name[17];
};
struct VGA_DIR_KEY {
    NB_UCHAR fqcp_name[17];
    NB_UCHAR resource_name[17];
    NB_USHORT resource_type;
};
struct VGA_REM_PLU_KEY {
    NB_UCHAR fqplu_name[17];
    NB_UCHAR reserved;
    NB_USHORT type; /* NAP_DIR_LU or NAP_DIR_WILDCARD_LU */
};
struct VGA_REM_SESS_KEY {
    NB_UCHAR lu_alias[8]; /* local */
    NB_UCHAR mode_name[8];
};
struct VGA_LU62_TIMEOUT_KEY {
    NB_USHORT resource_type;    /* NAP_TIMEOUT_GLOBAL and the like */
    NB_UCHAR resource_name[17]; /* EBCDIC */
};
struct VGA_TP_LOAD_KEY {
    NB_UCHAR tp_name[64]; /* EBCDIC */
    NB_UCHAR lu_alias[8]; /* local */
};
struct VGA_SL_SEC_KEY {
    NB_UCHAR lu_alias[8]; /* local */
    NB_UCHAR fqplu_name[17];
};
struct VGA_CLIENT_ADDRESS {
    NB_USHORT type;       /* NAP_TN_DEFAULT_RECORD and the like */
    NB_UCHAR address[68]; /* local, padded with NULs */
};
struct VGA_TN_SESS_KEY {
    VGA_CLIENT_ADDRESS client;
    NB_USHORT port;
    NB_UCHAR listen_local_address[46]; /* local, padded with NULs */
};
struct VGA_TN_REDIRECT_KEY {
    VGA_CLIENT_ADDRESS client;
    NB_USHORT port;
};
struct VGA_TAMRIX_SESS_KEY {
    NB_UCHAR lu_name[8];
    NB_UCHAR fqplu_name[17];
    NB_UCHAR mode_name[8];
    NB_USHORT number;
};
struct VGA_SYS_POOL_LU_KEY {
    NB_UCHAR lu_name[8];
    NB_CHAR node_name[128]; /* local, padded with NULs */
};
struct VGA_DSLU_TEMPLATE_KEY {
    NB_UCHAR template_name[8]; /* local */
    NB_UCHAR min_nau;
    NB_UCHAR max_nau;
};
struct VGA_USER_STATUS_KEY {  /* a line of a user's status */
    NB_UCHAR user_name[32];   /* local, padded with NULs */
    NB_UCHAR session_name[8]; /* local */
    NB_CHAR node_name[128];   /* local, padded with NULs */
};

/* The domain's chains of the build; each flag is 1 until its chain is done. */
enum VGA_SYSTEM_CHAIN : NB_USHORT {
    VGA_SYSTEM_FILE,
    VGA_NODE_LIST,
    VGA_NODE_BUILDS,
    VGA_USERS_LIST,
    VGA_NETWORK_FILE,
    VGA_NETWORK_LIST,
    VGA_LOGGING,
    VGA_SYSTEM_CHAINS
};

/* A node's chains: one flag a list or group of settings. */
enum VGA_NODE_CHAIN : NB_USHORT {
    VGA_CONNECT,
    VGA_LIMITS,
    VGA_NODE_DATA,
    VGA_DEFAULTS,
    VGA_DLC_LIST,
    VGA_DSPU_TEMPLATE_LIST,
    VGA_PORT_LIST,
    VGA_CN_LIST,
    VGA_CN_PORT_LIST,
    VGA_LS_LIST,
    VGA_PU_LIST,
    VGA_DLUR_PU_LIST,
    VGA_DOWN_PU_LIST,
    VGA_LU03_LIST,
    VGA_EXTRA_DATA_LIST,
    VGA_DOWN_LU_LIST,
    VGA_LU62_LIST,
    VGA_LS_ROUTING_LIST,
    VGA_MODE_LIST,
    VGA_PLU_LIST,
    VGA_PASSWORD_LIST,
    VGA_MODE_DEF_LIST,
    VGA_DIR_LIST,
    VGA_PLU_DEF_LIST,
    VGA_LU62_TIMEOUT_LIST,
    VGA_COS_LIST,
    VGA_COS_NODE_ROW_LIST,
    VGA_COS_TG_ROW_LIST,
    VGA_TP_DEF_LIST,
    VGA_TP_LOAD_LIST,
    VGA_PRIMARY_LINE_LIST,
    VGA_PRIMARY_LU0_LIST,
    VGA_LU_POOL_LIST,
    VGA_TN_ACCESS_LIST,
    VGA_TN_ASSOC_LIST,
    VGA_TN_REDIRECT_LIST,
    VGA_TN_SETTINGS,
    VGA_USERID_PASSWORD_LIST,
    VGA_ACCESS_LIST_LIST,
    VGA_TAMRIX_DEFAULTS,
    VGA_TAMRIX_SESS_LIST,
    VGA_DLC_TRACE,
    VGA_TRACE_TYPE,
    VGA_CS_TRACE,
    VGA_TN_TRACE,
    VGA_SLP_TRACE,
    VGA_NODE_CHAINS
};

static_assert(VGA_SYSTEM_CHAINS == 7 && VGA_NODE_CHAINS == 46);

/* The classes of resources whose status changes: rows of gvga_status_classes (statusclasses.h). */
enum VGA_STATUS_ID : NB_USHORT {
    VGA_STATUS_DLC,
    VGA_STATUS_PORT,
    VGA_STATUS_LS,
    VGA_STATUS_PU,
    VGA_STATUS_DLUR_PU,
    VGA_STATUS_DOWN_PU,
    VGA_STATUS_DOWN_LU,
    VGA_STATUS_LU62,
    VGA_STATUS_LU03,
    VGA_STATUS_MODE,
    VGA_STATUS_PLU,
    VGA_STATUS_DIR,
    VGA_STATUS_TAMRIX_SESS,
    VGA_STATUS_CLASSES
};

/* What is under way for one of them in one node. */
struct VGA_CLASS_WORK {
    NB_UCHAR checking;    /* flag: a status check runs */
    NB_UCHAR check_again; /* flag: once more at its end */
    NB_UCHAR reading;     /* flag: new resources are being read */
    NB_UCHAR read_again;  /* flag: there were more; the whole list at the end */
};

struct VGA_LOGGING_SETTINGS {
    NAP_QUERY_LOGGING_VERB central_logging;
    NAP_QUERY_LOGGING_VERB global_log_type;
    NAP_QUERY_LOGGING_VERB central_logger;
};

struct VGA_SYSTEM {
    VGA_DIALOG *window; /* the system window; null while there is none */
    NB_ULONG handle;
    NB_USHORT startup_status[VGA_SYSTEM_CHAINS];
    NB_USHORT built;          /* flag: the first complete model was announced */
    NB_ULONG resources;       /* entries read by the build that runs */
    NB_ULONG domain_target;   /* the domain's configuration; 0: not open */
    NB_ULONG net_target;      /* the domain's network file; 0: not open */
    NB_ULONG config_target;   /* node that holds the configuration file; 0: unknown */
    NB_CHAR config_name[129]; /* its name, text */
    VGA_LOGGING_SETTINGS logging;
    AVL_TREE nodes;         /* VGA_NODE by name */
    AVL_TREE net_nodes;     /* VGA_SNA_NET_NODE by name */
    AVL_TREE users;         /* VGA_USER by name */
    AVL_TREE cpics;         /* VGA_CPIC by name */
    AVL_TREE rje_wkstns;    /* VGA_RJE_WKSTN by name */
    AVL_TREE pools;         /* VGA_SYS_POOL by name */
    AVL_TREE dependent_lus; /* VGA_LU03 of all nodes by LU name */
    VGA_VIEWER_ROOT node_viewer_root;
    VGA_VIEWER_ROOT user_viewer_root;
    VGA_VIEWER_ROOT pool_viewer_root;
    VGA_VIEWER_ROOT cpic_viewer_root;
    VGA_VIEWER_ROOT rje_viewer_root;
};

extern VGA_SYSTEM *gvga_system;

struct VGA_NODE_TRACE {
    NAP_QUERY_TRACE_VERB dlc, type, cs, back_cs, tn_server, slp;
};

struct VGA_NODE_TN {
    NAP_TN3270_DEFAULTS_VERB defaults;
    NAP_TN3270_SSL_LDAP_VERB ssl;
    NAP_TN3270_SLP_VERB slp;
    NAP_TN3270_EXPRESS_LOGON_VERB express_logon;
};

/* How many of its resources a node's line says that it has. */
struct VGA_NODE_COUNTS {
    NB_ULONG ports, link_stations, lus; /* LUs: local and dependent ones */
};

/* Whether the program can reach a node, whatever state the node was in when it last said so. */
enum VGA_CONNECTION : NB_USHORT {
    VGA_NOT_CONNECTED,
    VGA_CONNECTING, /* the connect is under way */
    VGA_CONNECTED
};

/* The states of a node that has to be looked at by itself: nothing of it can be operated. */
constexpr NB_ULONG VGA_NODE_STATE_UNCONFIGURED = NAP_NODE_UNCONFIGURED;
constexpr NB_ULONG VGA_NODE_STATE_BACK_LEVEL = NAP_NODE_BACK_LEVEL;

enum VGA_SERVER_ROLE : NB_USHORT { VGA_ROLE_NONE, VGA_ROLE_MASTER, VGA_ROLE_BACKUP };

struct VGA_NODE : VGA_RECORD<VGA_SYSTEM, NAP_NODE_ALL_DATA> {
    AVL_NODE links;
    NB_CHAR name[128];    /* local, padded with NULs */
    NB_ULONG node_state;  /* NAP_NODE_STOPPED and the like */
    NB_USHORT role;       /* VGA_SERVER_ROLE */
    NB_USHORT freed;      /* flag: its resources were released at the close */
    NB_USHORT connection; /* VGA_CONNECTION */
    time_t lost_at;       /* when a connection that was in use ended by itself; 0: it has not */
    NB_ULONG target;      /* 0: not connected */
    NB_ULONG tp_target;   /* its TP load file; 0: not open */
    struct {
        NB_USHORT primary_rc;
        NB_ULONG secondary_rc;
    } refusal; /* why it could not be connected last; NAP_OK: it could */
    NB_USHORT startup_status[VGA_NODE_CHAINS];
    NB_UCHAR asked_owners[VGA_NODE_CHAINS]
                         [17]; /* of lists under owners: whose was asked for last */
    NB_USHORT rebuilt;         /* flag: the build that runs found records of an earlier one */
    VGA_NODE_COUNTS counts;    /* of the records that it has now */
    VGA_CLASS_WORK class_work[VGA_STATUS_CLASSES]; /* by VGA_STATUS_ID; of this connection */
    VGA_DIALOG *window;                            /* its node window; null while there is none */

    NAP_QUERY_NODE_VERB node_data;
    NAP_QUERY_NODE_LIMITS_VERB limits;
    NAP_QUERY_DEFAULTS_VERB defaults;
    NAP_TAMRIX_DEFAULTS_VERB tamrix;
    VGA_NODE_TRACE tracing;
    VGA_NODE_TN tn;

    AVL_TREE dlcs;
    AVL_TREE ports;
    AVL_TREE link_stations;
    AVL_TREE connection_networks;
    AVL_TREE local_pus;
    AVL_TREE down_pus;
    AVL_TREE dspu_templates;
    AVL_TREE primary_lines;
    AVL_TREE primary_lu0s;
    AVL_TREE rtp_conns;
    AVL_TREE lus;        /* VGA_LU62 by name */
    AVL_TREE lu_aliases; /* VGA_LU62 by alias */
    AVL_TREE mode_defs;
    AVL_TREE lu62_timeouts;
    AVL_TREE classes_of_service;
    AVL_TREE directory;
    AVL_TREE remote_systems;
    AVL_TREE remote_plus; /* VGA_REM_PLU of all remote systems by name and type */
    AVL_TREE tp_defs;
    AVL_TREE tp_load_infos;
    AVL_TREE sl_security; /* VGA_SLSEC_DEF of all local LUs by LU alias and partner */
    AVL_TREE cl_security;
    AVL_TREE access_lists;
    AVL_TREE pools; /* VGA_POOL by name */
    AVL_TREE tn_clients;
    AVL_TREE tn_sessions; /* VGA_TN_SESS of all clients */
    AVL_TREE tn_assocs;
    AVL_TREE tn_redirects;
    AVL_TREE tamrix_numbers;  /* VGA_TAMRIX_APPCIP_SESS by number */
    AVL_TREE tamrix_sessions; /* the same by key */

    VGA_LU62 *cp_lu;                   /* stands for the control point */
    VGA_REM_SYS *network_fake_rem_sys; /* partners whose control point is not known */
    VGA_PORT *dlur_fake_port;          /* over the PUs that a dependent LU server serves */
    VGA_PORT *primary_line_fake_port;

    /* The node window's panes, and the lists of the node's other windows. */
    VGA_VIEWER_ROOT connectivity_root;
    VGA_VIEWER_ROOT local_lu_root;
    VGA_VIEWER_ROOT rem_sys_root;
    VGA_VIEWER_ROOT mode_def_root;
    VGA_VIEWER_ROOT tp_def_root;
    VGA_VIEWER_ROOT tp_load_root;
    VGA_VIEWER_ROOT sl_security_root;
    VGA_VIEWER_ROOT cl_security_root;
    VGA_VIEWER_ROOT access_list_root;
    VGA_VIEWER_ROOT tn_session_root;
    VGA_VIEWER_ROOT tn_assoc_root;
    VGA_VIEWER_ROOT tn_redirect_root;
    VGA_VIEWER_ROOT rtp_conn_root;
    VGA_VIEWER_ROOT tamrix_root;

    /* Their fixed title lines. */
    VGA_VIEWER_ITEM sl_security_title;
    VGA_VIEWER_ITEM tn_session_title;
    VGA_VIEWER_ITEM tn_assoc_title;
    VGA_VIEWER_ITEM tn_redirect_title;
    VGA_VIEWER_ITEM rtp_conn_title;
    VGA_VIEWER_ITEM tamrix_title;

    NB_LQE rtp_conn_dialog_root_lqe; /* open dialogs on RTP connections */
};

#include "connectivityrecords.h"
#include "lurecords.h"
#include "servicerecords.h"

#endif
