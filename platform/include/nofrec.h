/* The records of the node administration verb interface: control blocks, list entries and
 * indications.  Plain C, packed to 4: the header has 12 bytes and the buffer pointer of a query
 * stands at offset 12 on every machine.  Host byte order.
 *
 * Fields are named as the verbs name them.  In the comments:
 *   A8, A17   an SNA name in EBCDIC, padded with EBCDIC blanks (0x40), no terminator
 *   L8, L14   a name in the local code page, padded with blanks, no terminator
 *   text      local code page, NUL-terminated within its width
 *   flag      0 or 1
 * Reserved bytes are zero.  A record is never read through a pointer to one of its members: copy
 * the record, or the member, out first. */
#ifndef NOFREC_H
#define NOFREC_H

#include "nbtypes.h"

#pragma pack(push, 4)

/* The header and return codes. */

#define NAP_VCB_HEADER                                                                             \
    NB_USHORT opcode;     /* one of the NAP_ opcodes of nofverbs.h */                              \
    NB_UCHAR attributes;  /* 0 */                                                                  \
    NB_UCHAR format;      /* 0 */                                                                  \
    NB_USHORT primary_rc; /* NAP_OK and the like */                                                \
    NB_USHORT reserved_rc;                                                                         \
    NB_ULONG secondary_rc

typedef struct nap_vcb {
    NAP_VCB_HEADER;
} NAP_VCB;

#define NAP_OK              0x0000
#define NAP_PARAMETER_CHECK 0x0100
#define NAP_STATE_CHECK     0x0200
#define NAP_INDICATION      0x0210 /* the block is an indication or a copy, not an answer */
#define NAP_COMM_FAILURE    0x03F0
#define NAP_UNAVAILABLE     0x0F10 /* the library's own: the node software cannot be reached */
#define NAP_NOT_SUPPORTED   0x0F20 /* an unknown verb, format or block length */

/* secondary return codes */
#define NAP_NO_PERMISSION       0x5514 /* with PARAMETER_CHECK: you may look but not change */
#define NAP_BAD_TARGET          0x5515 /* with PARAMETER_CHECK */
#define NAP_BAD_LENGTH          0x5516 /* with PARAMETER_CHECK: buffer or block too short */
#define NAP_INVALID_NAME        0x5517 /* with PARAMETER_CHECK */
#define NAP_INVALID_VALUE       0x5518 /* with PARAMETER_CHECK */
#define NAP_INVALID_LIST_OPTION 0x5519 /* with PARAMETER_CHECK */
#define NAP_UNKNOWN_RESOURCE    0x551A /* with PARAMETER_CHECK: no resource of that name */
#define NAP_UNKNOWN_OWNER       0x551B /* with PARAMETER_CHECK: the owner is not defined */
#define NAP_DUPLICATE_NAME      0x551C /* with PARAMETER_CHECK: another class has the name */
#define NAP_NO_DOMAIN_CONFIG    0x5540 /* with STATE_CHECK: the node has no domain file */
#define NAP_NODE_GONE           0x5542 /* with COMM_FAILURE: the node behind the target died */
#define NAP_CONNECTION_GONE     0x5543 /* with COMM_FAILURE: so did the node software */
#define NAP_NODE_BUSY           0x5544 /* with STATE_CHECK: issue the disconnect again */
#define NAP_RESOURCE_ACTIVE     0x5545 /* with STATE_CHECK: stop it first */
#define NAP_RESOURCE_INACTIVE   0x5546 /* with STATE_CHECK: its owner is not active */
#define NAP_IN_USE              0x5547 /* with STATE_CHECK: other definitions name it */
#define NAP_LIMIT_REACHED       0x5548 /* with STATE_CHECK: no more are allowed */
#define NAP_PARTNER_UNREACHABLE 0x5549 /* with STATE_CHECK: no active link leads there */
#define NAP_PORT_LIMIT          0x554A /* with STATE_CHECK: its port has all links that it may */
#define NAP_LU_LIMIT            0x554B /* with STATE_CHECK: the node has all LUs that it may */
#define NAP_NODE_NOT_ACTIVE     0x554C /* with STATE_CHECK: start the node first */
#define NAP_LINK_LIMIT          0x554D /* with STATE_CHECK: likewise link stations */
#define NAP_SESSION_LIMIT       0x554E /* with STATE_CHECK: a mode, an LU or the node, sessions */
#define NAP_LAST_BACKUP         0x5554 /* with STATE_CHECK: the domain's only server */
#define NAP_STORE_FAILED        0x5560 /* with STATE_CHECK: could not be written, nothing done */
#define NAP_NOT_STORED          0x5562 /* with OK: done, but not written yet */
#define NAP_SINK_OVERFLOW       0x5561 /* with INDICATION */
#define NAP_SYSTEM_FILE_CHANGED 0x5558 /* status: the domain file moved to another server */
#define NAP_NO_HPR_CONNECTION   0x62100000 /* with PARAMETER_CHECK */

/* Lists. */

/* How a list is asked for: a detail level ORed with a start position. */
#define NAP_SUMMARY        0
#define NAP_DETAIL         1
#define NAP_LIST_INCLUSIVE 4  /* from the entry with the key */
#define NAP_LIST_FROM_NEXT 8  /* from the first entry behind the key */
#define NAP_FIRST_IN_LIST  16 /* from the first entry */

#define NAP_MAX_KEY 128

/* The block of every list query.  An entry begins with its own 16-bit length, a multiple of 4, and
 * its key follows at once; the key area here holds the same bytes.  Where a list is kept under
 * owners, the owner's name leads the key, and `owner_length` says how many bytes every entry must
 * share with `key` (0: the whole list). */
typedef struct nap_query_list {
    NAP_VCB_HEADER;
    NB_UCHAR buf_ptr[8]; /* the address of the data buffer, read and written by copying */
    NB_ULONG buf_size;
    NB_ULONG total_buf_size;     /* answer: bytes of the entries in the buffer */
    NB_USHORT num_entries;       /* asked for (0: all that fit); answer: in the buffer */
    NB_USHORT total_num_entries; /* answer: from the start position to the end, at most 65535 */
    NB_UCHAR list_options;
    NB_UCHAR reserved;
    NB_USHORT owner_length; /* 0..NAP_MAX_KEY */
    NB_UCHAR key[NAP_MAX_KEY];
} NAP_QUERY_LIST;

#define NAP_BUF_PTR_OFFSET 12

NB_STATIC_ASSERT(sizeof(NAP_VCB) == 12);
NB_STATIC_ASSERT(offsetof(NAP_QUERY_LIST, buf_ptr) == NAP_BUF_PTR_OFFSET);
NB_STATIC_ASSERT(sizeof(NAP_QUERY_LIST) == 36 + NAP_MAX_KEY);

/* The block of every verb that needs no more than a resource's name: delete, start, stop, backup.
 * The key area holds the bytes of the resource's key in its list entry. */
typedef struct nap_name_verb {
    NAP_VCB_HEADER;
    NB_UCHAR key[NAP_MAX_KEY];
    NB_UCHAR stop_type; /* NAP_ORDERLY_STOP or NAP_IMMEDIATE_STOP; 0 elsewhere */
    NB_UCHAR reserved[3];
} NAP_NAME_VERB;

#define NAP_ORDERLY_STOP   0 /* waits for the sessions to end, but not for ever */
#define NAP_IMMEDIATE_STOP 1 /* ends the sessions */

NB_STATIC_ASSERT(offsetof(NAP_NAME_VERB, key) == 12);
NB_STATIC_ASSERT(sizeof(NAP_NAME_VERB) == 144);

/* Sessions with the interface. */

#define NAP_SYSTEM_FILE  1 /* the domain's configuration */
#define NAP_NETWORK_FILE 2 /* the domain's list of nodes */
#define NAP_TP_LOAD_FILE 3 /* a node's invocable TPs; `node_name` says whose */

typedef struct nap_open_file {
    NAP_VCB_HEADER;
    NB_USHORT file; /* NAP_SYSTEM_FILE and the like */
    NB_USHORT reserved;
    NB_ULONG target_handle;  /* answer */
    NB_UCHAR node_name[128]; /* text; answer: the node that holds the file */
} NAP_OPEN_FILE_VERB;

typedef struct nap_connect_node {
    NAP_VCB_HEADER;
    NB_ULONG target_handle;  /* answer */
    NB_UCHAR node_name[128]; /* text */
} NAP_CONNECT_NODE_VERB;

/* Asks for a class of indications on a target.  Copies of other administrators' verbs come with
 * NAP_CONFIG_COPIES, changes of the target itself with NAP_NOF_STATUS_INDICATION. */
typedef struct nap_register_sink {
    NAP_VCB_HEADER;
    NB_USHORT indication; /* opcode of an indication, or NAP_CONFIG_COPIES */
    NB_USHORT reserved;
} NAP_REGISTER_SINK_VERB;

#define NAP_CONFIG_COPIES 1

#define NAP_MODE_ADMINISTER 1

typedef struct nap_set_processing_mode {
    NAP_VCB_HEADER;
    NB_USHORT mode; /* NAP_MODE_ADMINISTER: the right to change is asked for */
    NB_USHORT reserved;
} NAP_SET_PROCESSING_MODE_VERB;

/* Nodes. */

#define NAP_NODE_STOPPED      0
#define NAP_NODE_STARTING     1
#define NAP_NODE_STOPPING     2
#define NAP_NODE_ACTIVE       3
#define NAP_NODE_UNCONFIGURED 4
#define NAP_NODE_BACK_LEVEL   5

/* server flags of a node */
#define NAP_SERVER_MASTER      0x0004 /* a server; with SERVER_CONFIG: holds the configuration */
#define NAP_SERVER_CONFIG      0x0008
#define NAP_SERVER_BACKUP      0x2000 /* with SERVER_MASTER: may take the configuration over */
#define NAP_SERVER_BACKUP_NEXT 0x4000

#define NAP_LEN_NODE            1
#define NAP_NETWORK_NODE        2
#define NAP_END_NODE            3
#define NAP_BRANCH_NETWORK_NODE 10

typedef struct nap_node_info {
    NB_ULONG node_state;     /* NAP_NODE_STOPPED and the like */
    NB_ULONG server_flags;   /* NAP_SERVER_MASTER and the like */
    NB_UCHAR fq_cp_name[17]; /* A17 */
    NB_UCHAR cp_alias[8];    /* L8 */
    NB_UCHAR node_type;      /* NAP_NETWORK_NODE and the like */
    NB_UCHAR cos_mapping;    /* flag: an end node that knows the classes of service of its modes */
    NB_UCHAR reserved1;
    NB_UCHAR description[32]; /* text */
    NB_UCHAR release[16];     /* text: release of the node's software */
    NB_ULONG up_time;         /* hundredths of a second, 0 unless active */
    NB_UCHAR reserved2[360];
} NAP_NODE_INFO;

NB_STATIC_ASSERT(sizeof(NAP_NODE_INFO) == 448);

typedef struct nap_node_all_data {
    NB_USHORT overlay_size;
    NB_UCHAR node_name[128]; /* text, padded with NULs: the key */
    NB_UCHAR reserved[2];
    NAP_NODE_INFO info;
} NAP_NODE_ALL_DATA;

NB_STATIC_ASSERT(offsetof(NAP_NODE_ALL_DATA, info) == 132);

typedef struct nap_query_node {
    NAP_VCB_HEADER;
    NAP_NODE_INFO info;
    NB_UCHAR cp_nau_addr;        /* 1..254; 0: the control point is no dependent LU */
    NB_UCHAR dlur_support;       /* flag: may serve PUs for a dependent LU server */
    NB_UCHAR dspu_support;       /* flag: may serve downstream PUs */
    NB_UCHAR hpr_support;        /* flag */
    NB_UCHAR tn3270_support;     /* flag */
    NB_UCHAR primary_support;    /* flag: primary SDLC lines */
    NB_UCHAR tamrix_support;     /* flag: SNA over IP */
    NB_UCHAR directory_register; /* flag: resources are registered with a network node server */
    NB_ULONG node_id;            /* block number (12 bits) and PU identifier (20 bits) */
    NB_ULONG active_sessions;
} NAP_QUERY_NODE_VERB;

typedef struct nap_query_node_limits {
    NAP_VCB_HEADER;
    NB_ULONG max_lus; /* 0: no limit, in all of these */
    NB_ULONG max_links;
    NB_ULONG max_sessions;
    NB_ULONG max_users;
    NB_ULONG lus; /* defined or in use now */
    NB_ULONG links;
    NB_ULONG sessions;
    NB_ULONG users;
} NAP_QUERY_NODE_LIMITS_VERB;

typedef struct nap_defaults {
    NB_UCHAR description[32];               /* text */
    NB_UCHAR mode_name[8];                  /* A8: for unknown mode names; blank: none */
    NB_UCHAR implicit_plu_forbidden;        /* flag */
    NB_UCHAR specific_security_codes;       /* flag */
    NB_UCHAR dynamic_conversation_security; /* flag */
    NB_UCHAR reserved;
    NB_USHORT limited_timeout; /* seconds, 0..65535 */
    NB_USHORT reserved2;
} NAP_DEFAULTS;

typedef struct nap_query_defaults {
    NAP_VCB_HEADER;
    NAP_DEFAULTS def_data;
} NAP_QUERY_DEFAULTS_VERB;

/* Defines or changes the node itself, with all that NAP_QUERY_NODE and NAP_QUERY_NODE_LIMITS say of
 * its definition.  Only a node that is stopped can be changed. */
typedef struct nap_define_node {
    NAP_VCB_HEADER;
    NB_UCHAR description[32]; /* text */
    NB_UCHAR fq_cp_name[17];  /* A17, qualified */
    NB_UCHAR cp_alias[8];     /* L8 */
    NB_UCHAR node_type;       /* NAP_NETWORK_NODE and the like */
    NB_UCHAR cp_nau_addr;     /* 0..254 */
    NB_UCHAR dlur_support;    /* flag */
    NB_UCHAR dspu_support;    /* flag */
    NB_UCHAR hpr_support;     /* flag */
    NB_UCHAR cos_mapping;     /* flag */
    NB_UCHAR reserved;
    NB_ULONG node_id;
    NB_UCHAR tn3270_support;     /* flag */
    NB_UCHAR primary_support;    /* flag */
    NB_UCHAR tamrix_support;     /* flag */
    NB_UCHAR directory_register; /* flag */
    NB_ULONG max_lus;            /* 0: no limit, in all of these */
    NB_ULONG max_links;
    NB_ULONG max_sessions;
    NB_ULONG max_users;
} NAP_DEFINE_NODE_VERB;

/* States of resources. */

#define NAP_NOT_ACTIVE       0
#define NAP_PENDING_ACTIVE   1
#define NAP_ACTIVE           2
#define NAP_PENDING_INACTIVE 3
#define NAP_RESETTING        4
#define NAP_SSCP_ACTIVE      5 /* an LU whose host session is up, not yet in use */
#define NAP_IN_SESSION       6 /* an LU that is in use */

/* DLCs. */

#define NAP_DLC_SDLC        0
#define NAP_DLC_QLLC        1
#define NAP_DLC_TOKEN_RING  2
#define NAP_DLC_FDDI        6
#define NAP_DLC_ETHERNET    7
#define NAP_DLC_FRAME_RELAY 8
#define NAP_DLC_CHANNEL     11
#define NAP_DLC_IP          15
#define NAP_DLC_MPC         129
#define NAP_DLC_MPC_PLUS    130

#define NAP_BLOCK_MUX_CARDS 128 /* card number from which on a channel is a block multiplexer */

typedef struct nap_dlc_def {
    NB_UCHAR description[32];  /* text */
    NB_UCHAR dlc_type;         /* NAP_DLC_SDLC and the like */
    NB_UCHAR card_number;      /* 0..254; of a channel it says the card's type, too */
    NB_UCHAR initially_active; /* flag: started with the node */
    NB_UCHAR reserved;
} NAP_DLC_DEF;

typedef struct nap_dlc_data {
    NB_USHORT overlay_size;
    NB_UCHAR dlc_name[8]; /* L8: the key */
    NB_UCHAR reserved[2];
    NB_UCHAR dlc_sts; /* NAP_NOT_ACTIVE to NAP_PENDING_INACTIVE */
    NB_UCHAR reserved2[3];
    NAP_DLC_DEF def_data;
} NAP_DLC_DATA;

typedef struct nap_define_dlc {
    NAP_VCB_HEADER;
    NB_UCHAR dlc_name[8]; /* L8 */
    NAP_DLC_DEF def_data;
} NAP_DEFINE_DLC_VERB;

/* Ports. */

#define NAP_PORT_LEASED        0
#define NAP_PORT_SWITCHED      1
#define NAP_PORT_SHARED_ACCESS 2 /* a LAN */

typedef struct nap_port_det { /* eight words that a merge carries over */
    NB_ULONG port_state;      /* NAP_NOT_ACTIVE to NAP_RESETTING */
    NB_ULONG active_links;
    NB_ULONG started_at; /* seconds since 1970, 0 unless active */
    NB_ULONG last_sense; /* sense code of the last failure, 0: none since an operator stopped it */
    NB_ULONG failed_at;  /* seconds since 1970 of that failure; likewise */
    NB_ULONG failures;   /* starts that failed and losses, since the node came up */
    NB_ULONG in_bytes;   /* of all its links, since it came up */
    NB_ULONG out_bytes;
} NAP_PORT_DET;

typedef struct nap_port_def {
    NB_UCHAR description[32];   /* text */
    NB_UCHAR dlc_name[8];       /* L8: the owner */
    NB_UCHAR dlc_type;          /* answer: that of the DLC */
    NB_UCHAR port_type;         /* NAP_PORT_LEASED and the like */
    NB_UCHAR port_number;       /* 0..254 */
    NB_UCHAR initially_active;  /* flag */
    NB_UCHAR implicit_links;    /* flag: partners may connect without a definition */
    NB_UCHAR ls_role;           /* NAP_LS_PRIMARY and the like */
    NB_USHORT max_rcv_btu_size; /* bytes, 265..65535 */
    NB_USHORT tot_link_act_lim; /* links, 1..65535 */
    NB_USHORT inb_link_act_lim;
    NB_USHORT out_link_act_lim;
    NB_USHORT react_timer;      /* seconds between tries, 0..65535; 0: no retry */
    NB_UCHAR local_address[18]; /* text: SAP (hexadecimal), MAC address or IP address as the DLC has
                                   it */
    NB_UCHAR reserved[2];
} NAP_PORT_DEF;

typedef struct nap_port_data {
    NB_USHORT overlay_size;
    NB_UCHAR port_name[8]; /* L8: the key */
    NB_UCHAR reserved[2];
    NAP_PORT_DET det_data;
    NAP_PORT_DEF def_data;
} NAP_PORT_DATA;

NB_STATIC_ASSERT(sizeof(NAP_PORT_DET) == 32);
NB_STATIC_ASSERT(offsetof(NAP_PORT_DATA, det_data) == 12);

typedef struct nap_define_port {
    NAP_VCB_HEADER;
    NB_UCHAR port_name[8]; /* L8 */
    NAP_PORT_DEF def_data;
} NAP_DEFINE_PORT_VERB;

/* Link stations. */

#define NAP_LS_PRIMARY    1
#define NAP_LS_SECONDARY  2
#define NAP_LS_NEGOTIABLE 3

#define NAP_ADJ_NODE_LEARN   0 /* adj_cp_type */
#define NAP_ADJ_LEN_NODE     1
#define NAP_ADJ_NETWORK_NODE 2
#define NAP_ADJ_END_NODE     3
#define NAP_ADJ_HOST         4 /* a subarea host: dependent traffic */
#define NAP_ADJ_DOWNSTREAM   5 /* a PU that this node serves */

typedef struct nap_ls_det { /* 500 bytes that a merge carries over */
    NB_ULONG act_sess_count;
    NB_UCHAR ls_state;        /* NAP_NOT_ACTIVE to NAP_RESETTING */
    NB_UCHAR adj_node_type;   /* NAP_LEN_NODE and the like; 0 until known */
    NB_UCHAR hpr_support;     /* flag: what both ends agreed on */
    NB_UCHAR dynamic;         /* flag: made by an incoming call, not defined */
    NB_UCHAR adj_cp_name[17]; /* A17: learned from the partner */
    NB_UCHAR reserved1[3];
    NB_ULONG in_bytes; /* user data since the link came up */
    NB_ULONG out_bytes;
    NB_ULONG in_frames;
    NB_ULONG out_frames;
    NB_ULONG retransmissions;
    NB_ULONG started_at; /* seconds since 1970, 0 unless active */
    NB_ULONG last_sense; /* sense code of the last failure, 0: none since an operator stopped it */
    NB_ULONG failed_at;  /* seconds since 1970 of that failure; likewise */
    NB_ULONG failures;   /* starts that failed and losses, since the node came up */
    NB_ULONG retries;    /* of them, tries that the node made by itself */
    NB_UCHAR reserved2[432];
} NAP_LS_DET;

typedef struct nap_ls_def {
    NB_UCHAR description[32];    /* text */
    NB_UCHAR port_name[8];       /* L8: the owner */
    NB_UCHAR dlc_type;           /* answer: that of the port */
    NB_UCHAR adj_cp_type;        /* NAP_ADJ_NODE_LEARN and the like */
    NB_UCHAR ls_role;            /* NAP_LS_PRIMARY and the like */
    NB_UCHAR initially_active;   /* flag: started with its port */
    NB_UCHAR auto_act_supp;      /* flag: started when a session needs it */
    NB_UCHAR cp_cp_sess_support; /* flag */
    NB_UCHAR hpr_supported;      /* flag */
    NB_UCHAR host_attachment;    /* NAP_DIRECT_ATTACHED and the like */
    NB_UCHAR adj_cp_name[17];    /* A17: the partner's control point; blank: any */
    NB_UCHAR reserved;
    NB_UCHAR pu_name[8]; /* A8: PU that a host link makes; PU served on a downstream link */
    NB_UCHAR tg_number;  /* 0..20; 0: negotiated */
    NB_UCHAR solicit_sscp_sessions; /* flag: a host link asks for its PU to be activated */
    NB_UCHAR limited_resource;      /* flag: dropped when no session uses it */
    NB_UCHAR reserved2;
    NB_UCHAR dest_address[18];   /* text: station address, MAC and SAP, or IP host */
    NB_USHORT max_send_btu_size; /* bytes, 265..65535 */
    NB_USHORT react_timer;       /* seconds between tries, 0..65535; 0: no retry */
    NB_USHORT react_retries;     /* 0..65535; 65535: for ever */
    NB_ULONG node_id;            /* block number and PU identifier sent to the partner */
} NAP_LS_DEF;

typedef struct nap_ls_data {
    NB_USHORT overlay_size;
    NB_UCHAR ls_name[8]; /* L8: the key */
    NB_UCHAR reserved[2];
    NAP_LS_DET det_data;
    NAP_LS_DEF def_data;
} NAP_LS_DATA;

NB_STATIC_ASSERT(sizeof(NAP_LS_DET) == 500);
NB_STATIC_ASSERT(offsetof(NAP_LS_DATA, det_data) == 12);

typedef struct nap_define_ls {
    NAP_VCB_HEADER;
    NB_UCHAR ls_name[8]; /* L8 */
    NAP_LS_DEF def_data;
} NAP_DEFINE_LS_VERB;

/* PUs. */

#define NAP_DIRECT_ATTACHED 0
#define NAP_DLUR_ATTACHED   1

typedef struct nap_pu_def {
    NB_UCHAR description[32];    /* text */
    NB_UCHAR ls_name[8];         /* L8: the link station that makes the PU; blank: DLUR-served */
    NB_UCHAR dlus_name[17];      /* A17: dependent LU server of a DLUR-served PU */
    NB_UCHAR bkup_dlus_name[17]; /* A17 */
    NB_UCHAR initially_active;   /* flag */
    NB_UCHAR reserved;
    NB_ULONG pu_id; /* block number and PU identifier */
} NAP_PU_DEF;

typedef struct nap_pu_data { /* entry of NAP_QUERY_PU, and of NAP_QUERY_DLUR_PU */
    NB_USHORT overlay_size;
    NB_UCHAR pu_name[8];          /* A8: the key */
    NB_UCHAR host_attachment;     /* NAP_DIRECT_ATTACHED or NAP_DLUR_ATTACHED */
    NB_UCHAR pu_sscp_sess_active; /* NAP_NOT_ACTIVE to NAP_PENDING_INACTIVE */
    NB_ULONG lu_count;
    NB_ULONG active_lus;
    NB_UCHAR active_dlus_name[17]; /* A17: the server that serves it now; blank: none */
    NB_UCHAR reserved[3];
    NAP_PU_DEF def_data;
} NAP_PU_DATA;

typedef struct nap_define_internal_pu { /* a DLUR-served PU; the others come with their link */
    NAP_VCB_HEADER;
    NB_UCHAR pu_name[8]; /* A8 */
    NAP_PU_DEF def_data;
} NAP_DEFINE_INTERNAL_PU_VERB;

/* LUs of type 0 to 3. */

#define NAP_LU_3270_DISPLAY_MODEL_2 2
#define NAP_LU_3270_DISPLAY_MODEL_3 3
#define NAP_LU_3270_DISPLAY_MODEL_4 4
#define NAP_LU_3270_DISPLAY_MODEL_5 5
#define NAP_LU_PRINTER              6
#define NAP_LU_SCS_PRINTER          7
#define NAP_LU_RJE                  8
#define NAP_LU_UNKNOWN              255 /* unrestricted: LU 0 and any other */

#define NAP_APP_NONE          0 /* app_type */
#define NAP_APP_3270_EMULATOR 1
#define NAP_APP_TN3270_SERVER 2
#define NAP_APP_LUA           3

typedef struct nap_lu03_def {
    NB_UCHAR description[32]; /* text */
    NB_UCHAR nau_address;     /* 1..255 */
    NB_UCHAR lu_model;        /* NAP_LU_3270_DISPLAY_MODEL_2 and the like */
    NB_UCHAR pool_name[8];    /* A8; blank: none */
    NB_UCHAR priority;        /* 0 network, 1 high, 2 medium, 3 low */
    NB_UCHAR sscp_id_given;   /* flag */
    NB_USHORT timeout;        /* seconds without use, 0..65535; 0: none */
    NB_USHORT reserved;
} NAP_LU03_DEF;

typedef struct nap_lu03_det {
    NB_UCHAR lu_sscp_sess_active; /* flag */
    NB_UCHAR appl_conn_active;    /* flag: an application has the LU open */
    NB_UCHAR plu_sess_active;     /* flag: bound to a host application */
    NB_UCHAR app_type;            /* NAP_APP_NONE and the like */
    NB_UCHAR user_name[32];       /* text: who uses it */
} NAP_LU03_DET;

typedef struct nap_lu03_data {
    NB_USHORT overlay_size;
    NB_UCHAR pu_name[8]; /* A8: the owner, and with the LU name the key */
    NB_UCHAR lu_name[8]; /* A8 */
    NB_UCHAR reserved[2];
    NAP_LU03_DET det_data;
    NAP_LU03_DEF def_data;
} NAP_LU03_DATA;

typedef struct nap_define_lu03 {
    NAP_VCB_HEADER;
    NB_UCHAR pu_name[8]; /* A8 */
    NB_UCHAR lu_name[8]; /* A8 */
    NAP_LU03_DEF def_data;
} NAP_DEFINE_LU03_VERB;

/* Local LUs (type 6.2). */

typedef struct nap_local_lu_def {
    NB_UCHAR description[32];       /* text */
    NB_UCHAR lu_alias[8];           /* L8, unique in the node */
    NB_UCHAR nau_address;           /* 0: independent; 1..254: dependent */
    NB_UCHAR sync_point_support;    /* flag */
    NB_UCHAR disable;               /* flag: takes no new sessions */
    NB_UCHAR default_pool;          /* flag: member of the pool of default LUs */
    NB_UCHAR pu_name[8];            /* A8: for a dependent LU; blank: none */
    NB_USHORT lu_session_limit;     /* 0: none, 1..65535 */
    NB_UCHAR password_substitution; /* flag */
    NB_UCHAR reserved;
} NAP_LOCAL_LU_DEF;

typedef struct nap_local_lu_data {
    NB_USHORT overlay_size;
    NB_UCHAR lu_name[8];          /* A8: the key */
    NB_UCHAR lu_sscp_sess_active; /* flag, for a dependent LU */
    NB_UCHAR appl_conn_active;    /* flag: a program uses the LU */
    NB_ULONG active_sessions;
    NAP_LOCAL_LU_DEF def_data;
} NAP_LOCAL_LU_DATA;

typedef struct nap_define_local_lu {
    NAP_VCB_HEADER;
    NB_UCHAR lu_name[8]; /* A8 */
    NAP_LOCAL_LU_DEF def_data;
} NAP_DEFINE_LOCAL_LU_VERB;

/* Modes. */

#define NAP_COMPRESSION_NONE 0
#define NAP_COMPRESSION_RLE  1
#define NAP_COMPRESSION_LZ9  2
#define NAP_COMPRESSION_LZ10 4

typedef struct nap_mode_chars {
    NB_UCHAR description[32]; /* text */
    NB_UCHAR reserved1[16];
    NB_USHORT max_ru_size_upp;   /* bytes, 256..61440 */
    NB_UCHAR receive_pacing_win; /* 1..63 */
    NB_UCHAR default_ru_size;    /* flag: the two sizes are not given */
    NB_USHORT max_neg_sess_lim;  /* sessions, 0..32767, in all the limits */
    NB_USHORT plu_mode_session_limit;
    NB_USHORT min_conwin_src;
    NB_UCHAR cos_name[8];  /* A8 */
    NB_UCHAR cryptography; /* flag */
    NB_UCHAR compression;  /* flag */
    NB_USHORT auto_act;
    NB_USHORT min_conloser_src;
    NB_USHORT max_ru_size_low;        /* bytes, 256..max_ru_size_upp */
    NB_USHORT max_receive_pacing_win; /* 0: no limit, 1..32767 */
    NB_UCHAR max_compress_lvl;        /* outbound: NAP_COMPRESSION_NONE and the like */
    NB_UCHAR max_decompress_lvl;      /* inbound */
    NB_UCHAR mode_flags;              /* NAP_MODE_CONTROL_POINT */
    NB_UCHAR sna_defined;             /* flag */
    NB_UCHAR reserved2[24];
} NAP_MODE_CHARS;

#define NAP_MODE_CONTROL_POINT 0x80 /* used between control points only */

NB_STATIC_ASSERT(sizeof(NAP_MODE_CHARS) == 104);

typedef struct nap_mode_def_data {
    NB_USHORT overlay_size;
    NB_UCHAR mode_name[8]; /* A8: the key */
    NAP_MODE_CHARS mode_chars;
} NAP_MODE_DEF_DATA;

NB_STATIC_ASSERT(sizeof(NAP_MODE_DEF_DATA) == 114);

typedef struct nap_define_mode {
    NAP_VCB_HEADER;
    NB_UCHAR mode_name[8]; /* A8 */
    NB_USHORT reserved;
    NAP_MODE_CHARS mode_chars;
    NB_UCHAR reserved2[2];
} NAP_DEFINE_MODE_VERB;

NB_STATIC_ASSERT(sizeof(NAP_DEFINE_MODE_VERB) == 128);
NB_STATIC_ASSERT(offsetof(NAP_DEFINE_MODE_VERB, mode_chars) == 22);
NB_STATIC_ASSERT(offsetof(NAP_DEFINE_MODE_VERB, mode_chars.max_ru_size_upp) == 70);
NB_STATIC_ASSERT(offsetof(NAP_DEFINE_MODE_VERB, mode_chars.cos_name) == 80);
NB_STATIC_ASSERT(offsetof(NAP_DEFINE_MODE_VERB, mode_chars.max_receive_pacing_win) == 96);
NB_STATIC_ASSERT(offsetof(NAP_DEFINE_MODE_VERB, mode_chars.max_decompress_lvl) == 99);

typedef struct nap_mode_data { /* a mode that a local LU uses with a partner */
    NB_USHORT overlay_size;
    NB_UCHAR lu_alias[8];    /* L8: the owner, and with the next two the key */
    NB_UCHAR mode_name[8];   /* A8 */
    NB_UCHAR fqplu_name[17]; /* A17 */
    NB_UCHAR plu_alias[8];   /* L8; blank: none */
    NB_USHORT act_sess_count;
    NB_USHORT sess_limit;
    NB_USHORT min_conwinners;
    NB_USHORT min_conlosers;
    NB_UCHAR fq_cp_name[17]; /* A17: the partner's control point; blank until known */
    NB_UCHAR draining;       /* flag: takes no new sessions, those that are there end */
    NB_UCHAR reserved[2];
    NB_ULONG in_bytes; /* user data of its sessions, those that ended too */
    NB_ULONG out_bytes;
    NB_ULONG in_messages;
    NB_ULONG out_messages;
    NB_ULONG failures;   /* sessions that could not be activated or were lost */
    NB_ULONG failed_at;  /* seconds since 1970 of the last failure, 0: none */
    NB_ULONG last_sense; /* its sense code, 0: none */
} NAP_MODE_DATA;

/* Sets the limits of a mode that a local LU uses with a partner: from 0 initializes, to 0 (with all
 * three numbers 0) resets, which ends the sessions.  The node must be active.  What the mode's
 * definition does not allow is a NAP_INVALID_VALUE; the limits of the modes that control points use
 * among themselves cannot be set (NAP_INVALID_NAME). */
typedef struct nap_session_limit {
    NAP_VCB_HEADER;
    NB_UCHAR lu_alias[8];    /* L8: with the next two the key in NAP_MODE_DATA */
    NB_UCHAR mode_name[8];   /* A8 */
    NB_UCHAR fqplu_name[17]; /* A17 */
    NB_UCHAR reserved;
    NB_USHORT sess_limit;     /* sessions, 0..max_neg_sess_lim of the mode's definition */
    NB_USHORT min_conwinners; /* 0..sess_limit */
    NB_USHORT min_conlosers;  /* 0..sess_limit less min_conwinners */
} NAP_SESSION_LIMIT_VERB;

NB_STATIC_ASSERT(sizeof(NAP_SESSION_LIMIT_VERB) == 52);

/* Classes of service. */

typedef struct nap_cos_def {
    NB_UCHAR description[32];       /* text */
    NB_UCHAR transmission_priority; /* 0 low, 1 medium, 2 high, 3 network */
    NB_UCHAR num_of_node_rows;      /* 0..8 */
    NB_UCHAR num_of_tg_rows;        /* 0..8 */
    NB_UCHAR sna_defined;           /* flag */
} NAP_COS_DEF;

typedef struct nap_cos_data {
    NB_USHORT overlay_size;
    NB_UCHAR cos_name[8];  /* A8: the key */
    NB_USHORT record_type; /* NAP_COS_SNA_DEFINED or 0 */
    NAP_COS_DEF def_data;
} NAP_COS_DATA;

#define NAP_COS_SNA_DEFINED 3

typedef struct nap_define_cos {
    NAP_VCB_HEADER;
    NB_UCHAR cos_name[8]; /* A8 */
    NAP_COS_DEF def_data;
} NAP_DEFINE_COS_VERB;

/* Partner LUs and directory. */

typedef struct nap_plu_data { /* a partner that a local LU knows */
    NB_USHORT overlay_size;
    NB_UCHAR lu_alias[8];    /* L8: the owner, and with the next two the key */
    NB_UCHAR plu_alias[8];   /* L8; blank: none */
    NB_UCHAR fqplu_name[17]; /* A17 */
    NB_UCHAR reserved;
    NB_USHORT act_sess_count;
    NB_USHORT act_conv_count;
    NB_UCHAR fq_cp_name[17]; /* A17 */
    NB_UCHAR parallel_sess;  /* flag */
    NB_UCHAR reserved2[2];
} NAP_PLU_DATA;

typedef struct nap_plu_def {
    NB_UCHAR description[32];      /* text */
    NB_UCHAR plu_alias[8];         /* L8; blank: none */
    NB_UCHAR plu_un_name[8];       /* A8: uninterpreted name for a dependent partner; blank: none */
    NB_USHORT max_mc_ll_send_size; /* bytes, 0: no limit, 1..32767 */
    NB_UCHAR conv_security_ver;    /* flag: already verified user names are accepted */
    NB_UCHAR parallel_sess_supp;   /* flag */
    NB_UCHAR reserved[4];
} NAP_PLU_DEF;

typedef struct nap_plu_def_data {
    NB_USHORT overlay_size;
    NB_UCHAR fqplu_name[17]; /* A17: the key */
    NB_UCHAR reserved;
    NAP_PLU_DEF def_data;
} NAP_PLU_DEF_DATA;

typedef struct nap_define_plu {
    NAP_VCB_HEADER;
    NB_UCHAR fqplu_name[17]; /* A17 */
    NB_UCHAR reserved[3];
    NAP_PLU_DEF def_data;
} NAP_DEFINE_PLU_VERB;

#define NAP_DIR_LU           243 /* resource_type */
#define NAP_DIR_END_NODE     244
#define NAP_DIR_NETWORK_NODE 246
#define NAP_DIR_WILDCARD_LU  4096

#define NAP_DIR_HOME     1 /* entry_type: defined here */
#define NAP_DIR_CACHE    2
#define NAP_DIR_REGISTER 3

typedef struct nap_dir_def {
    NB_UCHAR description[32]; /* text */
    NB_UCHAR wildcard;        /* NAP_DIR_WILDCARD_NONE and the like */
    NB_UCHAR reserved[3];
} NAP_DIR_DEF;

#define NAP_DIR_WILDCARD_NONE    0
#define NAP_DIR_WILDCARD_PARTIAL 1
#define NAP_DIR_WILDCARD_FULL    2

typedef struct nap_dir_data {
    NB_USHORT overlay_size;
    NB_UCHAR fqcp_name[17];     /* A17: control point that owns the resource; leads the key */
    NB_UCHAR resource_name[17]; /* A17: the control point itself, or one of its LUs */
    NB_USHORT resource_type;    /* NAP_DIR_LU and the like; ends the key */
    NB_UCHAR entry_type;        /* NAP_DIR_HOME and the like */
    NB_UCHAR reserved;
    NAP_DIR_DEF def_data;
} NAP_DIR_DATA;

NB_STATIC_ASSERT(offsetof(NAP_DIR_DATA, resource_type) == 36);

typedef struct nap_define_dir {
    NAP_VCB_HEADER;
    NB_UCHAR fqcp_name[17];     /* A17 */
    NB_UCHAR resource_name[17]; /* A17 */
    NB_USHORT resource_type;
    NAP_DIR_DEF def_data;
} NAP_DEFINE_DIR_VERB;

/* Settings. */

/* Each of these answers with one record behind the header.  The verb that sets it, where there is
 * one, has the block of its query.  The settings of the TN3270 server are in nofrectn.h. */

#define NAP_MAX_TRACED 8

typedef struct nap_query_trace { /* every trace setting */
    NAP_VCB_HEADER;
    NB_ULONG trace_flags; /* bits; 0: off */
    NB_USHORT truncation; /* bytes kept of each message; 0: all */
    NB_USHORT reserved;
    NB_UCHAR trace_file[80];           /* text: a name without /; empty: the node's own */
    NB_UCHAR names[NAP_MAX_TRACED][8]; /* L8, of the DLC trace only: the DLCs, ports and link
                                          stations that are traced; all blank: every one */
} NAP_QUERY_TRACE_VERB;

typedef struct nap_query_logging { /* central logging, central logger, global log type */
    NAP_VCB_HEADER;
    NB_UCHAR enabled;        /* flag: one node keeps the domain's log */
    NB_UCHAR audit;          /* flag */
    NB_UCHAR exception;      /* flag */
    NB_UCHAR succinct;       /* flag */
    NB_UCHAR node_name[128]; /* text: the central logger; empty: none */
} NAP_QUERY_LOGGING_VERB;

#pragma pack(pop)

#include "nofrecdm.h"
#include "nofrecin.h"
#include "nofrecnw.h"
#include "nofrecop.h"
#include "nofrectn.h"

#endif
