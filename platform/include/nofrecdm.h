/* Records of users, programs and security: the domain's emulator users, CPI-C side information and
 * RJE workstations; a node's transaction programs, passwords and access lists.
 * Part of nofrec.h, which says what the comments mean; include that. */
#ifndef NOFRECDM_H
#define NOFRECDM_H

#pragma pack(push, 4)

/* Users of terminal emulators, with the sessions that each of them may open. */

#define NAP_USER_SESSION_3270 1 /* session_class: over a dependent LU */
#define NAP_USER_SESSION_5250 2 /* over a local LU */

#define NAP_SESSION_DISPLAY 0 /* session_type */
#define NAP_SESSION_PRINTER 1

#define NAP_MAX_USER_SESSIONS 10

typedef struct nap_user_session {
    NB_UCHAR session_name[8]; /* L8, unique for the user */
    NB_UCHAR session_class;   /* NAP_USER_SESSION_3270 or NAP_USER_SESSION_5250 */
    NB_UCHAR session_type;    /* NAP_SESSION_DISPLAY or NAP_SESSION_PRINTER */
    NB_UCHAR model;           /* 3270 display: NAP_LU_3270_DISPLAY_MODEL_2 and the like */
    NB_UCHAR reserved;
    NB_UCHAR lu_name[8];     /* A8: LU or pool of a 3270 session */
    NB_UCHAR lu_alias[8];    /* L8: local LU of a 5250 session */
    NB_UCHAR fqplu_name[17]; /* A17: the system that a 5250 session reaches */
    NB_UCHAR mode_name[8];   /* A8: of a 5250 session */
    NB_UCHAR reserved2[3];
    NB_UCHAR description[32]; /* text */
} NAP_USER_SESSION;

typedef struct nap_user_def {
    NB_UCHAR description[32];     /* text */
    NB_UCHAR is_group;            /* flag: the name is that of a group of the operating system */
    NB_UCHAR may_view_status;     /* flag: permission of the user's programs */
    NB_UCHAR may_change_keys;     /* flag */
    NB_UCHAR may_change_sessions; /* flag */
    NB_USHORT max_sessions;       /* at a time, 0: no limit */
    NB_USHORT num_sessions;       /* 0..NAP_MAX_USER_SESSIONS */
    NAP_USER_SESSION sessions[NAP_MAX_USER_SESSIONS];
} NAP_USER_DEF;

typedef struct nap_user_data { /* in a list cut behind the last session */
    NB_USHORT overlay_size;
    NB_UCHAR user_name[32]; /* text, padded with NULs: the key; without regard to case */
    NB_UCHAR reserved[2];
    NAP_USER_DEF def_data;
} NAP_USER_DATA;

typedef struct nap_define_user {
    NAP_VCB_HEADER;
    NB_UCHAR user_name[32]; /* text */
    NAP_USER_DEF def_data;
} NAP_DEFINE_USER_VERB;

/* CPI-C side information: what programs call a partner program. */

#define NAP_CPIC_SECURITY_NONE    0
#define NAP_CPIC_SECURITY_SAME    1
#define NAP_CPIC_SECURITY_PROGRAM 2
#define NAP_CPIC_SECURITY_STRONG  5

typedef struct nap_cpic_def {
    NB_UCHAR description[32];     /* text */
    NB_UCHAR lu_alias[8];         /* L8: local LU; blank: any */
    NB_UCHAR partner_lu_name[17]; /* A17, or an alias (L8) when partner_is_alias is set */
    NB_UCHAR partner_is_alias;    /* flag */
    NB_UCHAR tp_is_service;       /* flag: the name is that of a service program, in hexadecimal */
    NB_UCHAR security_type;       /* NAP_CPIC_SECURITY_NONE and the like */
    NB_UCHAR mode_name[8];        /* A8 */
    NB_UCHAR tp_name[64];         /* EBCDIC, padded with EBCDIC blanks */
    NB_UCHAR user_id[10];         /* EBCDIC, padded with EBCDIC blanks */
    NB_UCHAR password[10];        /* EBCDIC; blank in an answer */
} NAP_CPIC_DEF;

typedef struct nap_cpic_data {
    NB_USHORT overlay_size;
    NB_UCHAR sym_dest_name[8]; /* L8: the key */
    NB_UCHAR reserved[2];
    NAP_CPIC_DEF def_data;
} NAP_CPIC_DATA;

typedef struct nap_define_cpic {
    NAP_VCB_HEADER;
    NB_UCHAR sym_dest_name[8]; /* L8 */
    NAP_CPIC_DEF def_data;
} NAP_DEFINE_CPIC_VERB;

/* RJE workstations. */

#define NAP_MAX_RJE_LUS 5

typedef struct nap_rje_def {
    NB_UCHAR description[32];  /* text */
    NB_UCHAR run_on_node[128]; /* text, padded with NULs: where it runs; empty: anywhere */
    NB_UCHAR user_name[32];    /* text: whose files it may use */
    NB_UCHAR group_name[32];   /* text */
    NB_UCHAR num_lus;          /* 1..NAP_MAX_RJE_LUS */
    NB_UCHAR reserved[3];
    NB_UCHAR lu_names[NAP_MAX_RJE_LUS][8]; /* A8 each: LUs or pools */
} NAP_RJE_DEF;

typedef struct nap_rje_data {
    NB_USHORT overlay_size;
    NB_UCHAR workstation_name[4]; /* local code page, padded with blanks: the key */
    NB_UCHAR reserved[2];
    NAP_RJE_DEF def_data;
} NAP_RJE_DATA;

typedef struct nap_define_rje {
    NAP_VCB_HEADER;
    NB_UCHAR workstation_name[4];
    NAP_RJE_DEF def_data;
} NAP_DEFINE_RJE_VERB;

/* Transaction programs that may be started by partners. */

typedef struct nap_tp_def {
    NB_UCHAR description[32];  /* text */
    NB_UCHAR list_name[14];    /* L14: users who may start it; blank: see conv_security */
    NB_UCHAR conv_security;    /* flag: a user name and password are needed */
    NB_UCHAR security_access;  /* flag: `list_name` is looked at */
    NB_UCHAR sync_level;       /* NAP_SYNC_NONE and the like: what it supports */
    NB_UCHAR conv_type;        /* 0 basic, 1 mapped, 2 either */
    NB_UCHAR duplex;           /* 0 half, 1 full, 2 either */
    NB_UCHAR pip_allowed;      /* flag */
    NB_USHORT pip_fields;      /* 0..16, when pip_allowed; 65535: any number */
    NB_USHORT instance_limit;  /* at a time, 0: no limit */
    NB_ULONG incoming_timeout; /* seconds a request waits, 0: for ever */
    NB_UCHAR enabled;          /* flag */
    NB_UCHAR reserved[3];
} NAP_TP_DEF;

#define NAP_SYNC_NONE    0
#define NAP_SYNC_CONFIRM 1
#define NAP_SYNC_POINT   2

typedef struct nap_tp_data {
    NB_USHORT overlay_size;
    NB_UCHAR tp_name[64]; /* EBCDIC, padded with EBCDIC blanks: the key */
    NB_UCHAR reserved[2];
    NAP_TP_DEF def_data;
} NAP_TP_DATA;

typedef struct nap_define_tp {
    NAP_VCB_HEADER;
    NB_UCHAR tp_name[64];
    NAP_TP_DEF def_data;
} NAP_DEFINE_TP_VERB;

/* How a program is started for a partner: kept in a file of its own beside the node. */

#define NAP_TP_QUEUED           0 /* tp_type: one instance serves one request after the other */
#define NAP_TP_QUEUED_BROADCAST 1
#define NAP_TP_NON_QUEUED       2 /* an instance a request */

typedef struct nap_tp_load_def {
    NB_UCHAR description[32];  /* text */
    NB_UCHAR user_id[32];      /* text: whose rights it has */
    NB_UCHAR group_id[32];     /* text */
    NB_USHORT timeout;         /* seconds a queued program waits for the next, 65535: for ever */
    NB_UCHAR tp_type;          /* NAP_TP_QUEUED and the like */
    NB_UCHAR style;            /* 0 extended, 1 compatible */
    NB_UCHAR path[256];        /* text: the executable */
    NB_UCHAR arguments[128];   /* text */
    NB_UCHAR environment[128]; /* text: NAME=VALUE, one blank between two */
    NB_UCHAR stdin_path[128];  /* text; empty: none, in all three */
    NB_UCHAR stdout_path[128];
    NB_UCHAR stderr_path[128];
} NAP_TP_LOAD_DEF;

typedef struct nap_tp_load_data {
    NB_USHORT overlay_size;
    NB_UCHAR tp_name[64]; /* EBCDIC, padded; with the alias the key */
    NB_UCHAR lu_alias[8]; /* L8; blank: any local LU */
    NB_UCHAR reserved[2];
    NAP_TP_LOAD_DEF def_data;
} NAP_TP_LOAD_DATA;

typedef struct nap_define_tp_load {
    NAP_VCB_HEADER;
    NB_UCHAR tp_name[64];
    NB_UCHAR lu_alias[8];
    NAP_TP_LOAD_DEF def_data;
} NAP_DEFINE_TP_LOAD_VERB;

/* Security. */

typedef struct nap_lu_lu_password_def { /* both ends prove that they know the password */
    NB_UCHAR description[32];           /* text */
    NB_UCHAR password[8];               /* 8 bytes; zero in an answer */
    NB_UCHAR verification;              /* 0 basic, 1 enhanced */
    NB_UCHAR reserved[3];
} NAP_LU_LU_PASSWORD_DEF;

typedef struct nap_lu_lu_password_data {
    NB_USHORT overlay_size;
    NB_UCHAR lu_alias[8];    /* L8: the owner, and with the partner's name the key */
    NB_UCHAR fqplu_name[17]; /* A17 */
    NB_UCHAR reserved;
    NAP_LU_LU_PASSWORD_DEF def_data;
} NAP_LU_LU_PASSWORD_DATA;

typedef struct nap_define_lu_lu_password {
    NAP_VCB_HEADER;
    NB_UCHAR lu_alias[8];
    NB_UCHAR fqplu_name[17];
    NB_UCHAR reserved[3];
    NAP_LU_LU_PASSWORD_DEF def_data;
} NAP_DEFINE_LU_LU_PASSWORD_VERB;

typedef struct nap_userid_password_def {
    NB_UCHAR description[32]; /* text */
    NB_UCHAR profile[10];     /* EBCDIC, padded with EBCDIC blanks; blank: none */
    NB_UCHAR password[10];    /* EBCDIC; blank in an answer */
} NAP_USERID_PASSWORD_DEF;

typedef struct nap_userid_password_data {
    NB_USHORT overlay_size;
    NB_UCHAR user_id[10]; /* EBCDIC, padded with EBCDIC blanks: the key */
    NAP_USERID_PASSWORD_DEF def_data;
} NAP_USERID_PASSWORD_DATA;

typedef struct nap_define_userid_password {
    NAP_VCB_HEADER;
    NB_UCHAR user_id[10];
    NAP_USERID_PASSWORD_DEF def_data;
    NB_UCHAR reserved[2];
} NAP_DEFINE_USERID_PASSWORD_VERB;

#define NAP_MAX_LIST_USERS 40

typedef struct nap_access_list_user {
    NB_UCHAR user_name[10]; /* local code page, padded with blanks */
    NB_UCHAR reserved[2];
} NAP_ACCESS_LIST_USER;

typedef struct nap_access_list_def {
    NB_UCHAR description[32]; /* text */
    NB_USHORT num_users;      /* 0..NAP_MAX_LIST_USERS */
    NB_USHORT reserved;
    NAP_ACCESS_LIST_USER users[NAP_MAX_LIST_USERS];
} NAP_ACCESS_LIST_DEF;

typedef struct nap_access_list_data { /* in a list cut behind the last user */
    NB_USHORT overlay_size;
    NB_UCHAR list_name[14]; /* L14: the key */
    NAP_ACCESS_LIST_DEF def_data;
} NAP_ACCESS_LIST_DATA;

typedef struct nap_define_access_list {
    NAP_VCB_HEADER;
    NB_UCHAR list_name[14]; /* L14 */
    NB_UCHAR reserved[2];
    NAP_ACCESS_LIST_DEF def_data;
} NAP_DEFINE_ACCESS_LIST_VERB;

#pragma pack(pop)

#endif
