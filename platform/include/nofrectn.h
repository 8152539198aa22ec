/* Records of the services that a node offers to terminals and programs: pools of LUs, additional
 * data of dependent LUs, the TN3270 server and its settings, the TN redirector, and SNA over IP.
 * Part of nofrec.h, which says what the comments mean; include that. */
#ifndef NOFRECTN_H
#define NOFRECTN_H

#pragma pack(push, 4)

/* Pools of LUs of type 0 to 3.  One entry for the pool itself, with a blank LU name, and one for
 * each of its LUs. */

typedef struct nap_lu_pool_data {
    NB_USHORT overlay_size;
    NB_UCHAR pool_name[8]; /* A8: with the LU's name the key */
    NB_UCHAR lu_name[8];   /* A8; blank: the pool itself */
    NB_UCHAR reserved[2];
    NB_UCHAR description[32]; /* text: of the pool */
    NB_UCHAR pu_name[8];      /* A8: answer, the LU's PU */
    NB_UCHAR lu_active;       /* flag: answer, the LU's host session is up */
    NB_UCHAR lu_in_use;       /* flag: answer */
    NB_UCHAR reserved2[2];
} NAP_LU_POOL_DATA;

typedef struct nap_define_lu_pool { /* makes the pool, and puts an LU into it when one is named */
    NAP_VCB_HEADER;
    NB_UCHAR pool_name[8];    /* A8 */
    NB_UCHAR lu_name[8];      /* A8; blank: none */
    NB_UCHAR description[32]; /* text */
} NAP_DEFINE_LU_POOL_VERB;

/* What is kept of a dependent LU beside its definition: session data that its users see. */

typedef struct nap_extra_data_def {
    NB_UCHAR display_name[32]; /* text: what users call the LU */
    NB_UCHAR location[64];     /* text: where the terminal or printer stands */
    NB_UCHAR logon_text[128];  /* text: what is typed for the user when the session comes up */
} NAP_EXTRA_DATA_DEF;

typedef struct nap_extra_data_data {
    NB_USHORT overlay_size;
    NB_UCHAR pu_name[8]; /* A8: with the LU's name the key */
    NB_UCHAR lu_name[8]; /* A8 */
    NB_UCHAR reserved[2];
    NAP_EXTRA_DATA_DEF def_data;
} NAP_EXTRA_DATA_DATA;

typedef struct nap_define_extra_data {
    NAP_VCB_HEADER;
    NB_UCHAR pu_name[8]; /* A8 */
    NB_UCHAR lu_name[8]; /* A8 */
    NAP_EXTRA_DATA_DEF def_data;
} NAP_DEFINE_EXTRA_DATA_VERB;

/* Who may use the TN3270 server, and which LUs he gets. */

#define NAP_TN_DEFAULT_RECORD 0 /* address_type: everybody whom no other record names */
#define NAP_TN_ADDRESS_IP     1
#define NAP_TN_ADDRESS_NAME   2 /* a host name or alias */

#define NAP_MAX_TN_SESSIONS 10

typedef struct nap_tn_session {
    NB_USHORT port;             /* 1..65535 where the client connects; 0: the server's own */
    NB_UCHAR tn3270_support;    /* 0: TN3270 only, 1: TN3270E too */
    NB_UCHAR allow_specific_lu; /* flag: the client may ask for an LU by name */
    NB_UCHAR ssl_enabled;       /* 0 no, 1 yes, 2 with the client's certificate */
    NB_UCHAR security_level; /* 0: any, 1: authentication only, 2..4: 40, 56, 128 bits at least */
    NB_UCHAR display_lu_name[8];       /* A8: LU or pool for displays; blank: none */
    NB_UCHAR printer_lu_name[8];       /* A8: LU or pool for printers; blank: none */
    NB_UCHAR listen_local_address[46]; /* text: IP address of this host; empty: all */
    NB_UCHAR description[32];          /* text */
} NAP_TN_SESSION;

typedef struct nap_tn_access_def {
    NB_UCHAR description[32]; /* text */
    NB_USHORT address_format; /* 0: IPv4, 1: IPv6, of an IP address */
    NB_USHORT num_sessions;   /* 0..NAP_MAX_TN_SESSIONS */
    NAP_TN_SESSION sessions[NAP_MAX_TN_SESSIONS];
} NAP_TN_ACCESS_DEF;

typedef struct nap_tn_access_data { /* in a list cut behind the last session */
    NB_USHORT overlay_size;
    NB_USHORT address_type;      /* NAP_TN_DEFAULT_RECORD and the like; with the address the key */
    NB_UCHAR client_address[68]; /* text, padded with NULs; empty for the default record */
    NAP_TN_ACCESS_DEF def_data;
} NAP_TN_ACCESS_DATA;

typedef struct nap_define_tn_access {
    NAP_VCB_HEADER;
    NB_USHORT address_type;
    NB_UCHAR client_address[68]; /* text */
    NB_UCHAR reserved[2];
    NAP_TN_ACCESS_DEF def_data;
} NAP_DEFINE_TN_ACCESS_VERB;

/* Which printer LU belongs to a display LU. */

typedef struct nap_tn_assoc_def {
    NB_UCHAR printer_lu_name[8]; /* A8 */
    NB_UCHAR description[32];    /* text */
} NAP_TN_ASSOC_DEF;

typedef struct nap_tn_assoc_data {
    NB_USHORT overlay_size;
    NB_UCHAR display_lu_name[8]; /* A8: the key */
    NB_UCHAR reserved[2];
    NAP_TN_ASSOC_DEF def_data;
} NAP_TN_ASSOC_DATA;

typedef struct nap_define_tn_assoc {
    NAP_VCB_HEADER;
    NB_UCHAR display_lu_name[8]; /* A8 */
    NAP_TN_ASSOC_DEF def_data;
} NAP_DEFINE_TN_ASSOC_VERB;

/* Which host the TN redirector passes a client on to. */

typedef struct nap_tn_redirect_def {
    NB_UCHAR description[32];  /* text */
    NB_UCHAR host_address[68]; /* text: IP address or host name */
    NB_USHORT host_port;       /* 1..65535 */
    NB_UCHAR host_ssl;         /* flag */
    NB_UCHAR client_ssl;       /* 0 no, 1 yes, 2 with the client's certificate */
    NB_UCHAR security_level;   /* as of a TN3270 session */
    NB_UCHAR reserved[3];
} NAP_TN_REDIRECT_DEF;

typedef struct nap_tn_redirect_data {
    NB_USHORT overlay_size;
    NB_USHORT address_type;      /* as of TN3270 access; with the next two the key */
    NB_UCHAR client_address[68]; /* text, padded with NULs */
    NB_USHORT client_port;       /* 1..65535 where the client connects */
    NB_UCHAR reserved[2];
    NAP_TN_REDIRECT_DEF def_data;
} NAP_TN_REDIRECT_DATA;

typedef struct nap_define_tn_redirect {
    NAP_VCB_HEADER;
    NB_USHORT address_type;
    NB_UCHAR client_address[68]; /* text */
    NB_USHORT client_port;
    NAP_TN_REDIRECT_DEF def_data;
} NAP_DEFINE_TN_REDIRECT_VERB;

/* Settings of the TN3270 server.  The verb that sets one has the block of its query. */

typedef struct nap_tn3270_defaults {
    NAP_VCB_HEADER;
    NB_UCHAR force_responses;     /* flag: printers answer each message */
    NB_UCHAR keepalive;           /* NAP_KEEPALIVE_NONE and the like */
    NB_USHORT keepalive_interval; /* seconds, 1..65535 */
    NB_UCHAR tn3270_auto_logoff;  /* flag: the host session ends with the client */
    NB_UCHAR use_listen_host;     /* flag: the client's own name is looked up */
    NB_USHORT port;               /* 1..65535 that records without a port mean */
    NB_USHORT max_clients;        /* 0: no limit */
    NB_USHORT reserved;
} NAP_TN3270_DEFAULTS_VERB;

#define NAP_KEEPALIVE_NONE        0
#define NAP_KEEPALIVE_NOP         1 /* no-operation */
#define NAP_KEEPALIVE_TIMING_MARK 2

typedef struct nap_tn3270_ssl_ldap { /* where certificates that were withdrawn are looked up */
    NAP_VCB_HEADER;
    NB_UCHAR auth_type; /* 0: not looked up, 1: in the directory */
    NB_UCHAR reserved;
    NB_USHORT port;         /* 1..65535 */
    NB_UCHAR host[256];     /* text: the directory's host */
    NB_UCHAR user_name[64]; /* text */
    NB_UCHAR password[64];  /* text; never in an answer */
} NAP_TN3270_SSL_LDAP_VERB;

typedef struct nap_tn3270_slp { /* how the service is announced in the network */
    NAP_VCB_HEADER;
    NB_UCHAR enabled;                 /* flag */
    NB_UCHAR load_included;           /* flag: how busy the server is, is announced too */
    NB_USHORT multicast_ttl;          /* 1..255 */
    NB_UCHAR scope[64];               /* text; empty: the default scope */
    NB_UCHAR service_attributes[128]; /* text */
} NAP_TN3270_SLP_VERB;

typedef struct nap_tn3270_express_logon { /* hosts that take a certificate for a password */
    NAP_VCB_HEADER;
    NB_UCHAR enabled; /* flag */
    NB_UCHAR reserved;
    NB_USHORT port;     /* 1..65535 */
    NB_UCHAR host[256]; /* text: the security server */
} NAP_TN3270_EXPRESS_LOGON_VERB;

/* SNA over IP. */

typedef struct nap_tamrix_defaults {
    NAP_VCB_HEADER;
    NB_IP_ADDRESS local_ip_address;
    NB_IP_ADDRESS local_subnet_mask;
    NB_UCHAR lu_template[8];   /* L8: names that are made from addresses */
    NB_ULONG lu_map_mask;      /* bits of the address that the names show */
    NB_UCHAR domain_name[256]; /* text; empty: none */
    NB_USHORT port;            /* 1..65535 */
    NB_USHORT reserved;
    NB_ULONG connect_retry;   /* seconds between tries, 1..32767 */
    NB_ULONG connect_timeout; /* seconds, 1..32767 */
    NB_ULONG idle_timeout;    /* seconds, 0: never */
} NAP_TAMRIX_DEFAULTS_VERB;

typedef struct nap_tamrix_session_data { /* a session that is carried over IP now */
    NB_USHORT overlay_size;
    NB_USHORT session_number; /* 1..65535, unique in the node while the session lives: the key */
    NB_UCHAR lu_name[8];      /* A8: local LU */
    NB_UCHAR fqplu_name[17];  /* A17 */
    NB_UCHAR session_state;   /* NAP_PENDING_ACTIVE, NAP_ACTIVE or NAP_PENDING_INACTIVE */
    NB_UCHAR mode_name[8];    /* A8 */
    NB_UCHAR secondary;       /* flag: the partner set it up */
    NB_UCHAR reserved;
    NB_USHORT local_port;
    NB_USHORT remote_port;
    NB_IP_ADDRESS local_ip_address;
    NB_IP_ADDRESS remote_ip_address;
    NB_ULONG bytes_sent;
    NB_ULONG bytes_received;
    NB_ULONG up_time; /* seconds */
} NAP_TAMRIX_SESSION_DATA;

#pragma pack(pop)

#endif
