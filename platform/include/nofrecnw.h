/* Records of the network around a node: connection networks, downstream PUs and LUs, templates for
 * them, routing of LUs to links, HPR connections, primary lines, time-outs and the rows of classes
 * of service.  Part of nofrec.h, which says what the comments mean; include that. */
#ifndef NOFRECNW_H
#define NOFRECNW_H

#pragma pack(push, 4)

/* Connection networks: a shared medium through which any two nodes reach each other. */

typedef struct nap_cn_def {
    NB_UCHAR description[32];    /* text */
    NB_UCHAR inherit_port_tg;    /* flag: characteristics of the link are those of the port */
    NB_UCHAR dlc_type;           /* NAP_DLC_ETHERNET and the like: what its ports must be of */
    NB_UCHAR effective_capacity; /* coded as for TG rows: tg_row low.capacity */
    NB_UCHAR security;           /* NAP_SEC_NONSECURE and the like */
    NB_UCHAR connect_cost;       /* 0..255 */
    NB_UCHAR byte_cost;          /* 0..255 */
    NB_UCHAR propagation_delay;  /* NAP_DELAY_MINIMUM and the like */
    NB_UCHAR reserved;
} NAP_CN_DEF;

typedef struct nap_cn_data {
    NB_USHORT overlay_size;
    NB_UCHAR fqcn_name[17]; /* A17: the key */
    NB_UCHAR reserved;
    NB_USHORT num_act_ports; /* answer */
    NB_USHORT num_ports;     /* answer */
    NAP_CN_DEF def_data;
} NAP_CN_DATA;

typedef struct nap_define_cn {
    NAP_VCB_HEADER;
    NB_UCHAR fqcn_name[17]; /* A17 */
    NB_UCHAR reserved[3];
    NAP_CN_DEF def_data;
} NAP_DEFINE_CN_VERB;

typedef struct nap_cn_port_data { /* a port of a connection network */
    NB_USHORT overlay_size;
    NB_UCHAR fqcn_name[17]; /* A17: the owner, and with the port's name the key */
    NB_UCHAR port_name[8];  /* L8 */
    NB_UCHAR reserved;
    NB_ULONG tg_num; /* answer: number of its virtual TG, 0 while inactive */
} NAP_CN_PORT_DATA;

typedef struct nap_define_cn_port {
    NAP_VCB_HEADER;
    NB_UCHAR fqcn_name[17]; /* A17 */
    NB_UCHAR port_name[8];  /* L8 */
    NB_UCHAR reserved[3];
} NAP_DEFINE_CN_PORT_VERB;

/* Downstream PUs and their LUs: SNA gateway service for other systems. */

typedef struct nap_down_pu_def {
    NB_UCHAR description[32];  /* text */
    NB_UCHAR ls_name[8];       /* L8: the link station that serves it */
    NB_UCHAR initially_active; /* flag */
    NB_UCHAR reserved[3];
} NAP_DOWN_PU_DEF;

typedef struct nap_down_pu_data {
    NB_USHORT overlay_size;
    NB_UCHAR dspu_name[8];        /* A8: the key */
    NB_UCHAR pu_sscp_sess_active; /* NAP_NOT_ACTIVE to NAP_PENDING_INACTIVE */
    NB_UCHAR dspu_services;       /* NAP_PU_CONCENTRATION or NAP_DLUR_PASSED_THROUGH */
    NB_ULONG lu_count;
    NB_ULONG active_lus;
    NAP_DOWN_PU_DEF def_data;
} NAP_DOWN_PU_DATA;

#define NAP_PU_CONCENTRATION    1
#define NAP_DLUR_PASSED_THROUGH 2

typedef struct nap_down_lu_def {
    NB_UCHAR description[32]; /* text */
    NB_UCHAR nau_address;     /* 1..255 */
    NB_UCHAR allow_timeout;   /* flag: the host LU is released when the session is not used */
    NB_UCHAR delayed_logon;   /* flag: the host LU is taken at the first data only */
    NB_UCHAR reserved;
    NB_UCHAR host_lu_name[8]; /* A8: LU or pool of LUs towards the host */
} NAP_DOWN_LU_DEF;

typedef struct nap_down_lu_det {
    NB_UCHAR lu_sscp_sess_active; /* flag */
    NB_UCHAR plu_sess_active;     /* flag: bound to a host application */
    NB_UCHAR dynamic;             /* flag: made from a template, not defined */
    NB_UCHAR reserved;
    NB_UCHAR plu_name[8];     /* A8: the host application; blank: none */
    NB_UCHAR used_lu_name[8]; /* A8: the host LU that carries it now; blank: none */
} NAP_DOWN_LU_DET;

typedef struct nap_down_lu_data {
    NB_USHORT overlay_size;
    NB_UCHAR dspu_name[8]; /* A8: the owner, and with the LU's name the key */
    NB_UCHAR dslu_name[8]; /* A8 */
    NB_UCHAR reserved[2];
    NAP_DOWN_LU_DET det_data;
    NAP_DOWN_LU_DEF def_data;
} NAP_DOWN_LU_DATA;

typedef struct nap_define_down_lu {
    NAP_VCB_HEADER;
    NB_UCHAR dspu_name[8]; /* A8 */
    NB_UCHAR dslu_name[8]; /* A8 */
    NAP_DOWN_LU_DEF def_data;
} NAP_DEFINE_DOWN_LU_VERB;

/* Templates by which ports make downstream PUs and LUs for partners that are not defined. */

#define NAP_MAX_DSLU_TEMPLATES 10

typedef struct nap_dslu_template { /* a range of LUs of a template */
    NB_UCHAR min_nau;              /* 1..255 */
    NB_UCHAR max_nau;              /* min_nau..255 */
    NB_UCHAR allow_timeout;        /* flag */
    NB_UCHAR delayed_logon;        /* flag */
    NB_UCHAR host_lu_name[8];      /* A8: LU or pool of LUs towards the host */
} NAP_DSLU_TEMPLATE;

typedef struct nap_dspu_template_def {
    NB_UCHAR description[32];        /* text */
    NB_USHORT max_instance;          /* PUs made from it at most, 0: no limit */
    NB_USHORT num_of_dslu_templates; /* 0..NAP_MAX_DSLU_TEMPLATES */
    NAP_DSLU_TEMPLATE dslu_templates[NAP_MAX_DSLU_TEMPLATES];
} NAP_DSPU_TEMPLATE_DEF;

typedef struct nap_dspu_template_data { /* in a list cut behind the last range */
    NB_USHORT overlay_size;
    NB_UCHAR template_name[8];  /* L8: the key */
    NB_USHORT active_instances; /* answer */
    NAP_DSPU_TEMPLATE_DEF def_data;
} NAP_DSPU_TEMPLATE_DATA;

typedef struct nap_define_dspu_template {
    NAP_VCB_HEADER;
    NB_UCHAR template_name[8]; /* L8 */
    NAP_DSPU_TEMPLATE_DEF def_data;
} NAP_DEFINE_DSPU_TEMPLATE_VERB;

/* Which link station a partner LU is reached through, for nodes that do not search. */

typedef struct nap_ls_routing_def {
    NB_UCHAR ls_name[8];     /* L8 */
    NB_UCHAR wildcard;       /* NAP_DIR_WILDCARD_NONE and the like, of the partner's name */
    NB_UCHAR use_fqplu_name; /* flag: the qualified name is sent, too */
    NB_UCHAR reserved[2];
    NB_UCHAR description[32]; /* text */
} NAP_LS_ROUTING_DEF;

typedef struct nap_ls_routing_data {
    NB_USHORT overlay_size;
    NB_UCHAR lu_name[8];     /* A8: local LU; with the partner's name the key */
    NB_UCHAR fqplu_name[17]; /* A17 */
    NB_UCHAR reserved;
    NAP_LS_ROUTING_DEF def_data;
} NAP_LS_ROUTING_DATA;

typedef struct nap_define_ls_routing {
    NAP_VCB_HEADER;
    NB_UCHAR lu_name[8];     /* A8 */
    NB_UCHAR fqplu_name[17]; /* A17 */
    NB_UCHAR reserved[3];
    NAP_LS_ROUTING_DEF def_data;
} NAP_DEFINE_LS_ROUTING_VERB;

/* RTP connections: the ends of HPR routes.  They come and go with traffic; nobody defines them. */

typedef struct nap_rtp_conn_data {
    NB_USHORT overlay_size;
    NB_UCHAR rtp_name[8];   /* A8, made by the node: the key */
    NB_UCHAR connect_state; /* NAP_RTP_LISTENING and the like */
    NB_UCHAR reserved;
    NB_UCHAR first_hop_ls_name[8]; /* L8 */
    NB_UCHAR dest_cp_name[17];     /* A17: control point at the other end */
    NB_UCHAR cos_name[8];          /* A8 */
    NB_UCHAR path_switch_attempts;
    NB_USHORT max_btu_size;    /* bytes */
    NB_ULONG liveness_timeout; /* milliseconds */
    NB_ULONG local_tcid[2];    /* connection identifier here, high word first */
    NB_ULONG remote_tcid[2];
    NB_ULONG bytes_sent;
    NB_ULONG bytes_received;
    NB_ULONG bytes_resent;
    NB_ULONG bytes_discarded;
    NB_ULONG smoothed_rtt; /* milliseconds, round trip */
    NB_ULONG send_rate;    /* kilobits a second, now */
    NB_ULONG max_send_rate;
    NB_ULONG sessions;   /* carried by it now */
    NB_ULONG up_time;    /* seconds */
    NB_UCHAR route[128]; /* text: the nodes and TGs on the way */
} NAP_RTP_CONN_DATA;

#define NAP_RTP_LISTENING 1
#define NAP_RTP_CALLING   2
#define NAP_RTP_CONNECTED 3
#define NAP_RTP_SWITCHING 4 /* looking for another path */
#define NAP_RTP_ENDING    5

/* Primary lines and the secondary LU 0s behind them. */

typedef struct nap_primary_line_def {
    NB_UCHAR description[32];  /* text */
    NB_UCHAR device[32];       /* text: the adapter's name */
    NB_UCHAR line_type;        /* NAP_PORT_LEASED or NAP_PORT_SWITCHED */
    NB_UCHAR duplex;           /* NAP_HALF_DUPLEX or NAP_FULL_DUPLEX */
    NB_UCHAR encoding;         /* 0: NRZ, 1: NRZI */
    NB_UCHAR initially_active; /* flag */
    NB_ULONG line_speed;       /* bits a second, 600..2048000 */
    NB_USHORT max_btu_size;    /* bytes, 265..65535 */
    NB_USHORT retries;         /* polls without answer before a station counts as lost, 0..255 */
} NAP_PRIMARY_LINE_DEF;

#define NAP_HALF_DUPLEX 0
#define NAP_FULL_DUPLEX 1

typedef struct nap_primary_line_data {
    NB_USHORT overlay_size;
    NB_UCHAR line_name[8]; /* L8: the key */
    NB_UCHAR line_state;   /* NAP_NOT_ACTIVE to NAP_PENDING_INACTIVE */
    NB_UCHAR reserved;
    NAP_PRIMARY_LINE_DEF def_data;
} NAP_PRIMARY_LINE_DATA;

typedef struct nap_define_primary_line {
    NAP_VCB_HEADER;
    NB_UCHAR line_name[8]; /* L8 */
    NAP_PRIMARY_LINE_DEF def_data;
} NAP_DEFINE_PRIMARY_LINE_VERB;

typedef struct nap_primary_lu0_def {
    NB_UCHAR description[32]; /* text */
    NB_UCHAR line_name[8];    /* L8: the owner */
    NB_UCHAR plu_name[8];     /* A8: the application on this side; blank: any */
    NB_UCHAR station_address; /* 1..254 */
    NB_UCHAR nau_address;     /* 1..255 */
    NB_USHORT max_ru_size;    /* bytes, 256..65535 */
} NAP_PRIMARY_LU0_DEF;

typedef struct nap_primary_lu0_data {
    NB_USHORT overlay_size;
    NB_UCHAR lu_name[8];       /* A8: the key */
    NB_UCHAR lu_sess_active;   /* flag */
    NB_UCHAR appl_conn_active; /* flag: an application has it open */
    NAP_PRIMARY_LU0_DEF def_data;
} NAP_PRIMARY_LU0_DATA;

typedef struct nap_define_primary_lu0 {
    NAP_VCB_HEADER;
    NB_UCHAR lu_name[8]; /* A8 */
    NAP_PRIMARY_LU0_DEF def_data;
} NAP_DEFINE_PRIMARY_LU0_VERB;

/* Time-outs of LU 6.2 sessions that nobody uses. */

#define NAP_TIMEOUT_GLOBAL     1 /* resource_type */
#define NAP_TIMEOUT_LOCAL_LU   2
#define NAP_TIMEOUT_PARTNER_LU 3
#define NAP_TIMEOUT_MODE       4

typedef struct nap_lu62_timeout_def {
    NB_USHORT timeout; /* seconds, 0..65535; 65535: never */
    NB_USHORT reserved;
} NAP_LU62_TIMEOUT_DEF;

typedef struct nap_lu62_timeout_data {
    NB_USHORT overlay_size;
    NB_USHORT resource_type;    /* NAP_TIMEOUT_GLOBAL and the like; with the name the key */
    NB_UCHAR resource_name[17]; /* A17: a qualified name, or an A8 name padded; blank: all */
    NB_UCHAR reserved[3];
    NAP_LU62_TIMEOUT_DEF def_data;
} NAP_LU62_TIMEOUT_DATA;

typedef struct nap_define_lu62_timeout {
    NAP_VCB_HEADER;
    NB_USHORT resource_type;
    NB_UCHAR resource_name[17];
    NB_UCHAR reserved;
    NAP_LU62_TIMEOUT_DEF def_data;
} NAP_DEFINE_LU62_TIMEOUT_VERB;

/* Rows of a class of service: what a route must offer, least wanted weight last. */

#define NAP_SEC_NONSECURE       1 /* security of a link */
#define NAP_SEC_PUBLIC_SWITCHED 32
#define NAP_SEC_UNDERGROUND     64
#define NAP_SEC_CONDUIT         96
#define NAP_SEC_ENCRYPTED       128
#define NAP_SEC_GUARDED         160
#define NAP_SEC_MAXIMUM         255

#define NAP_DELAY_MINIMUM   0 /* propagation delay of a link */
#define NAP_DELAY_LAN       0x4C
#define NAP_DELAY_TELEPHONE 0x71
#define NAP_DELAY_PACKET    0x91
#define NAP_DELAY_SATELLITE 0x99
#define NAP_DELAY_MAXIMUM   0xFF

typedef struct nap_cos_node_row_def {
    NB_UCHAR min_congestion; /* flags: the least and the most that a node of the route may show */
    NB_UCHAR max_congestion;
    NB_UCHAR min_resistance; /* route addition resistance, 0..255 */
    NB_UCHAR max_resistance;
    NB_UCHAR weight; /* 0..255 */
    NB_UCHAR reserved[3];
} NAP_COS_NODE_ROW_DEF;

typedef struct nap_cos_node_row_data {
    NB_USHORT overlay_size;
    NB_UCHAR cos_name[8]; /* A8: the owner, and with the row's number the key */
    NB_USHORT row_number; /* 1..8 */
    NAP_COS_NODE_ROW_DEF def_data;
} NAP_COS_NODE_ROW_DATA;

typedef struct nap_define_cos_node_row {
    NAP_VCB_HEADER;
    NB_UCHAR cos_name[8]; /* A8 */
    NB_USHORT row_number;
    NB_USHORT reserved;
    NAP_COS_NODE_ROW_DEF def_data;
} NAP_DEFINE_COS_NODE_ROW_VERB;

typedef struct nap_tg_limits {
    NB_UCHAR capacity;          /* coded: 0x30 9.6 kbit/s, 0x43 about 56 kbit/s, 0x75 4 Mbit/s,
                                   0x80 about 10 Mbit/s; 0 none, 0xFF most */
    NB_UCHAR connect_cost;      /* 0..255 */
    NB_UCHAR byte_cost;         /* 0..255 */
    NB_UCHAR security;          /* NAP_SEC_NONSECURE and the like */
    NB_UCHAR propagation_delay; /* NAP_DELAY_MINIMUM and the like */
    NB_UCHAR user_defined[3];   /* 0..255 */
} NAP_TG_LIMITS;

typedef struct nap_cos_tg_row_def {
    NAP_TG_LIMITS min;
    NAP_TG_LIMITS max;
    NB_UCHAR weight; /* 0..255 */
    NB_UCHAR reserved[3];
} NAP_COS_TG_ROW_DEF;

typedef struct nap_cos_tg_row_data {
    NB_USHORT overlay_size;
    NB_UCHAR cos_name[8]; /* A8: the owner, and with the row's number the key */
    NB_USHORT row_number; /* 1..8 */
    NAP_COS_TG_ROW_DEF def_data;
} NAP_COS_TG_ROW_DATA;

typedef struct nap_define_cos_tg_row {
    NAP_VCB_HEADER;
    NB_UCHAR cos_name[8]; /* A8 */
    NB_USHORT row_number;
    NB_USHORT reserved;
    NAP_COS_TG_ROW_DEF def_data;
} NAP_DEFINE_COS_TG_ROW_VERB;

#pragma pack(pop)

#endif
