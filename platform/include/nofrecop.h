/* Records of operating a node: sessions and the verbs that end and make them, the lines of a node's
 * log and its trace files.  Part of nofrec.h, which says what the comments mean; include that. */
#ifndef NOFRECOP_H
#define NOFRECOP_H

#pragma pack(push, 4)

/* Sessions.  One that an LU of type 0 to 3 has with a host application, or one of LU 6.2. */

#define NAP_SESSION_LU_0_TO_3 0 /* session_type */
#define NAP_SESSION_LU62      1

typedef struct nap_session_data {
    NB_USHORT overlay_size;
    NB_UCHAR lu_name[8];      /* A8: the owner, and with the number the key */
    NB_USHORT session_number; /* 1..65535, the same while the session lives */
    NB_UCHAR session_type;    /* NAP_SESSION_LU62 or NAP_SESSION_LU_0_TO_3 */
    NB_UCHAR session_state;   /* NAP_ACTIVE or NAP_PENDING_INACTIVE */
    NB_UCHAR mode_name[8];    /* A8; of LU 6.2 */
    NB_UCHAR fqplu_name[17];  /* A17: the partner; blank until known */
    NB_UCHAR fq_cp_name[17];  /* A17: the partner's control point; blank until known */
    NB_UCHAR winner;          /* flag: this end wins a contention */
    NB_UCHAR app_type;        /* NAP_APP_NONE and the like; of an LU of type 0 to 3 */
    NB_UCHAR user_name[32];   /* text: who uses it; of TN3270 the client's address */
    NB_UCHAR ls_name[8];      /* L8: the link station that carries it */
    NB_ULONG started_at;      /* seconds since 1970 */
    NB_ULONG in_bytes;        /* user data since then */
    NB_ULONG out_bytes;
    NB_ULONG in_messages;
    NB_ULONG out_messages;
} NAP_SESSION_DATA;

/* Ends the session of an LU with its application: that of an LU of type 0 to 3, or all or one of a
 * local LU.  Who uses the LU has to log on again.  A session that does not exist is
 * NAP_UNKNOWN_RESOURCE. */
typedef struct nap_end_lu_session {
    NAP_VCB_HEADER;
    NB_UCHAR lu_name[8];      /* A8 */
    NB_USHORT session_number; /* as in NAP_SESSION_DATA; 0: all of the LU */
    NB_UCHAR stop_type;       /* NAP_ORDERLY_STOP or NAP_IMMEDIATE_STOP */
    NB_UCHAR reserved;
} NAP_END_LU_SESSION_VERB;

/* Activates LU 6.2 sessions, or deactivates them.  A mode that is not in use with the partner yet
 * is, behind the first activation, with the limits of its definition.  Answered when the sessions
 * are there (NAP_PARTNER_UNREACHABLE when they cannot be, NAP_SESSION_LIMIT when there may not be
 * as many), or when their end has begun. */
typedef struct nap_lu62_session {
    NAP_VCB_HEADER;
    NB_UCHAR lu_alias[8];    /* L8: with the next two the key in NAP_MODE_DATA */
    NB_UCHAR mode_name[8];   /* A8 */
    NB_UCHAR fqplu_name[17]; /* A17 */
    NB_UCHAR stop_type;      /* of a deactivation, as above; 0 of an activation */
    NB_USHORT sessions;      /* so many more, 1..32767; 0 of a deactivation */
    NB_USHORT
    session_number; /* of a deactivation: as in NAP_SESSION_DATA, 0: all; else answer: of the
                       first that is new */
    NB_UCHAR reserved[2];
} NAP_LU62_SESSION_VERB;

NB_STATIC_ASSERT(sizeof(NAP_LU62_SESSION_VERB) == 52);

/* Ends the sessions of a client of the TN3270 server, at once. */
typedef struct nap_end_tn_client {
    NAP_VCB_HEADER;
    NB_UCHAR client_address[68]; /* text: user_name in NAP_SESSION_DATA, without regard to case */
    NB_UCHAR lu_name[8];         /* A8: the one with this LU; blank: all that the client has */
} NAP_END_TN_CLIENT_VERB;

/* What a node writes down. */

#define NAP_LOG_AUDIT     1 /* severity: something was done */
#define NAP_LOG_EXCEPTION 2 /* something failed that may mend itself */
#define NAP_LOG_PROBLEM   3 /* something has to be mended */

/* A line of a node's log, of which the last NAP_LOG_LINES are kept while its process runs.  The
 * position is 0xFFFFFFFF less the line's number, so that a list begins with the newest. */
typedef struct nap_log_data {
    NB_USHORT overlay_size;
    NB_USHORT position_high; /* with the next the key */
    NB_USHORT position_low;
    NB_UCHAR severity; /* NAP_LOG_AUDIT and the like */
    NB_UCHAR reserved;
    NB_ULONG line_number; /* 1, 2 and so on */
    NB_ULONG time;        /* seconds since 1970 */
    NB_ULONG message;     /* number of the text: NAP_LOG_NODE_STARTED and the like */
    NB_ULONG sense;       /* sense code, 0: none */
    NB_UCHAR text[128];   /* text */
} NAP_LOG_DATA;

#define NAP_LOG_LINES 1000

#define NAP_LOG_NODE_STARTED    1 /* message */
#define NAP_LOG_NODE_STOPPED    2
#define NAP_LOG_STARTED         3 /* a DLC, port, link station or PU became active */
#define NAP_LOG_STOPPED         4
#define NAP_LOG_START_FAILED    5
#define NAP_LOG_LINK_LOST       6 /* what was active has failed */
#define NAP_LOG_STOP_FORCED     7 /* sessions did not end in time */
#define NAP_LOG_SESSION_ENDED   8 /* by an administrator */
#define NAP_LOG_SESSION_REFUSED 9
#define NAP_LOG_DEFINED         10
#define NAP_LOG_DELETED         11
#define NAP_LOG_TRACE_FAILED    12 /* a trace file could not be written */
#define NAP_LOG_NOT_STORED      13 /* changes are not on the disk yet */
#define NAP_LOG_STORED          14 /* now they are */
#define NAP_LOG_PATH_SWITCHED   15 /* an RTP connection found another way */

#define NAP_TRACE_DLC       1 /* trace_kind: set with NAP_SET_DLC_TRACE */
#define NAP_TRACE_TYPE      2 /* NAP_SET_TRACE_TYPE, and so on */
#define NAP_TRACE_CS        3
#define NAP_TRACE_BACK_CS   4
#define NAP_TRACE_TN_SERVER 5
#define NAP_TRACE_SLP       6

typedef struct nap_trace_file_data { /* a file that traces of a node are written to, or were */
    NB_USHORT overlay_size;
    NB_USHORT trace_kind;   /* NAP_TRACE_DLC and the like; with the name the key */
    NB_UCHAR file_name[80]; /* text, padded with NULs: in the folder that the node keeps */
    NB_UCHAR active;        /* flag: is written to */
    NB_UCHAR reserved[3];
    NB_ULONG size;       /* bytes, at most 0xFFFFFFFF */
    NB_ULONG started_at; /* seconds since 1970: when it was last switched on; 0: not yet */
} NAP_TRACE_FILE_DATA;

/* A verb that changed something, or was to.  The position is 0xFFFFFFFF less the number, so that a
 * list begins with the newest; an entry ends behind its last text.  Answered on target 0, to those
 * who may change. */
typedef struct nap_change_data {
    NB_USHORT overlay_size;
    NB_USHORT position_high; /* with the next the key */
    NB_USHORT position_low;
    NB_USHORT opcode; /* of the verb */
    NB_ULONG number;  /* 1, 2 and so on, as long as there is a state folder */
    NB_ULONG time;    /* seconds since 1970 */
    NB_USHORT milliseconds;
    NB_USHORT primary_rc;
    NB_ULONG secondary_rc;
    NB_ULONG user_id;        /* of the process at the other end of the connection */
    NB_ULONG process_id;     /* its number */
    NB_UCHAR program[16];    /* text: what it calls itself */
    NB_UCHAR node_name[128]; /* text; empty: the domain */
    NB_UCHAR subject[256];   /* text: what the verb is about, as in "ls LINK1" */
    NB_UCHAR values[4096];   /* text: old and new ones, cut when it is longer; empty: none */
} NAP_CHANGE_DATA;

NB_STATIC_ASSERT(offsetof(NAP_CHANGE_DATA, values) == 432);

#pragma pack(pop)

#endif
