/* Every verb of the administration interface, once: its name, opcode, control block and kind.  The
 * verb interface, the node's dispatcher, the program's issuers, the indication dispatch and the
 * log's decoder all read this table; a new verb is a new row.  Plain C.
 *
 *   NAP_VERBS(ROW) expands ROW(name, opcode, block type, kind) for each row.
 *
 * Kinds (the NAP_KIND_ constants): SESSION opens, connects and registers; LIST answers with entries
 * in a data buffer; RECORD answers inside its block; DEFINE, DELETE, START, STOP and LIMIT (session
 * limits) change the configuration or a state: they are refused on a view-only connection, and
 * copied to the other administrators; OPERATE (sessions of LUs) is refused as they are, but not
 * copied: the others hear of what came of it; INDICATION is never issued.
 *
 * Opcodes of node configuration and node management that other administrators' programs see as
 * copies are fixed by what those programs route on: see docs/protocol.md. */
#ifndef NOFVERBS_H
#define NOFVERBS_H

#include "nofrec.h"

#ifdef __cplusplus
#define NAP_TABLE inline constexpr
#else
#define NAP_TABLE static const
#endif

/* clang-format off */
#define NAP_VERBS(ROW) \
    /* sessions with the interface */                                                             \
    ROW(NAP_OPEN_FILE,                       0xF004, NAP_OPEN_FILE_VERB,              SESSION)    \
    ROW(NAP_CLOSE_FILE,                      0xF005, NAP_VCB,                         SESSION)    \
    ROW(NAP_CONNECT_NODE,                    0xF001, NAP_CONNECT_NODE_VERB,           SESSION)    \
    ROW(NAP_DISCONNECT_NODE,                 0xF002, NAP_VCB,                         SESSION)    \
    ROW(NAP_REGISTER_INDICATION_SINK,        0x4000, NAP_REGISTER_SINK_VERB,          SESSION)    \
    ROW(NAP_SET_PROCESSING_MODE,             0x0012, NAP_SET_PROCESSING_MODE_VERB,    SESSION)    \
    /* lists */                                                                                   \
    ROW(NAP_QUERY_NODE_ALL,                  0xF009, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_SNA_NET,                   0xF074, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_DLC,                       0x2107, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_PORT,                      0x2113, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_LS,                        0x210B, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_CN,                        0x2117, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_CN_PORT,                   0x2101, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_PU,                        0x211E, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_DOWNSTREAM_PU,             0x2120, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_DLUR_PU,                   0x2127, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_LOCAL_LU,                  0x2109, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_LU_0_TO_3,                 0x211C, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_DOWNSTREAM_LU,             0x211F, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_LU_POOL,                   0x211D, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_MODE,                      0x210C, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_MODE_DEFINITION,           0x210D, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_COS,                       0x2102, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_COS_NODE_ROW,              0x2103, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_COS_TG_ROW,                0x2104, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_DIRECTORY_ENTRY,           0x2105, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_PARTNER_LU,                0x2111, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_PARTNER_LU_DEFINITION,     0x2112, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_TP_DEFINITION,             0x2116, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_TP_LOAD_INFO,              0xF0D7, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_LU62_TIMEOUT,              0x20FA, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_LS_ROUTING,                0x20FC, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_DSPU_TEMPLATE,             0x20FE, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_SESSION,                   0x210E, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_RTP_CONNECTION,            0x2129, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_LU_LU_PASSWORD,            0x212A, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_USERID_PASSWORD,           0x212B, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_SECURITY_ACCESS_LIST,      0xF0D4, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_CPIC_SIDE_INFO,            0x2121, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_EMULATOR_USER_DEF,         0xF043, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_RJE_WKSTN_DEF,             0xF063, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_EXTRA_DATA,                0xF067, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_PRIMARY_LINE,              0xF0C2, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_PRIMARY_LU0,               0xF0C6, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_TN3270_ACCESS_DEF,         0xF092, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_TN3270_ASSOCIATION,        0xF097, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_TN_REDIRECT_DEF,           0xF09E, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_TAMRIX_APPCIP,             0xFC10, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_NODE_LOG,                  0xF02E, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_TRACE_FILE,                0xF02F, NAP_QUERY_LIST,                  LIST)       \
    ROW(NAP_QUERY_CHANGES,                   0xF02C, NAP_QUERY_LIST,                  LIST)       \
    /* single records */                                                                          \
    ROW(NAP_QUERY_NODE,                      0x212C, NAP_QUERY_NODE_VERB,             RECORD)     \
    ROW(NAP_QUERY_NODE_LIMITS,               0xF00B, NAP_QUERY_NODE_LIMITS_VERB,      RECORD)     \
    ROW(NAP_QUERY_DEFAULTS,                  0x2132, NAP_QUERY_DEFAULTS_VERB,         RECORD)     \
    ROW(NAP_QUERY_TN3270_DEFAULTS,           0xF099, NAP_TN3270_DEFAULTS_VERB,        RECORD)     \
    ROW(NAP_QUERY_TN3270_SSL_LDAP,           0xF09B, NAP_TN3270_SSL_LDAP_VERB,        RECORD)     \
    ROW(NAP_QUERY_TN3270_SLP,                0xF0E1, NAP_TN3270_SLP_VERB,             RECORD)     \
    ROW(NAP_QUERY_TN3270_EXPRESS_LOGON,      0xF08F, NAP_TN3270_EXPRESS_LOGON_VERB,   RECORD)     \
    ROW(NAP_QUERY_TAMRIX_APPCIP_DEFAULTS,    0xFC02, NAP_TAMRIX_DEFAULTS_VERB,        RECORD)     \
    ROW(NAP_QUERY_DLC_TRACE,                 0x8002, NAP_QUERY_TRACE_VERB,            RECORD)     \
    ROW(NAP_QUERY_TRACE_TYPE,                0xF02D, NAP_QUERY_TRACE_VERB,            RECORD)     \
    ROW(NAP_QUERY_CS_TRACE,                  0xF071, NAP_QUERY_TRACE_VERB,            RECORD)     \
    ROW(NAP_QUERY_BCK_CS_TRACE,              0xF0A1, NAP_QUERY_TRACE_VERB,            RECORD)     \
    ROW(NAP_QUERY_TN_SERVER_TRACE,           0xF094, NAP_QUERY_TRACE_VERB,            RECORD)     \
    ROW(NAP_QUERY_TN3270_SLP_TRACE,          0xF0E3, NAP_QUERY_TRACE_VERB,            RECORD)     \
    ROW(NAP_QUERY_GLOBAL_LOG_TYPE,           0xF02B, NAP_QUERY_LOGGING_VERB,          RECORD)     \
    ROW(NAP_QUERY_CENTRAL_LOGGING,           0xF022, NAP_QUERY_LOGGING_VERB,          RECORD)     \
    ROW(NAP_QUERY_CENTRAL_LOGGER,            0xF029, NAP_QUERY_LOGGING_VERB,          RECORD)     \
    /* configuration of a node */                                                                 \
    ROW(NAP_DEFINE_NODE,                     0x6000, NAP_DEFINE_NODE_VERB,            DEFINE)     \
    ROW(NAP_DEFINE_DLC,                      0x2040, NAP_DEFINE_DLC_VERB,             DEFINE)     \
    ROW(NAP_DEFINE_PORT,                     0x2042, NAP_DEFINE_PORT_VERB,            DEFINE)     \
    ROW(NAP_DEFINE_LS,                       0x2044, NAP_DEFINE_LS_VERB,              DEFINE)     \
    ROW(NAP_DEFINE_INTERNAL_PU,              0x2046, NAP_DEFINE_INTERNAL_PU_VERB,     DEFINE)     \
    ROW(NAP_DEFINE_LU_0_TO_3,                0x2050, NAP_DEFINE_LU03_VERB,            DEFINE)     \
    ROW(NAP_DEFINE_LOCAL_LU,                 0x0037, NAP_DEFINE_LOCAL_LU_VERB,        DEFINE)     \
    ROW(NAP_DEFINE_MODE,                     0x0039, NAP_DEFINE_MODE_VERB,            DEFINE)     \
    ROW(NAP_DEFINE_COS,                      0x0061, NAP_DEFINE_COS_VERB,             DEFINE)     \
    ROW(NAP_DEFINE_PARTNER_LU,               0x0044, NAP_DEFINE_PLU_VERB,             DEFINE)     \
    ROW(NAP_DEFINE_DIRECTORY_ENTRY,          0x0030, NAP_DEFINE_DIR_VERB,             DEFINE)     \
    ROW(NAP_DELETE_DLC,                      0x2041, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_PORT,                     0x2043, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_LS,                       0x2045, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_INTERNAL_PU,              0x2047, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_LU_0_TO_3,                0x2051, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_LOCAL_LU,                 0x003E, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_MODE,                     0x003F, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_COS,                      0x0064, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_PARTNER_LU,               0x0058, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_DIRECTORY_ENTRY,          0x0031, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DEFINE_CN,                       0x2038, NAP_DEFINE_CN_VERB,              DEFINE)     \
    ROW(NAP_DEFINE_CN_PORT,                  0x0060, NAP_DEFINE_CN_PORT_VERB,         DEFINE)     \
    ROW(NAP_DEFINE_DOWNSTREAM_LU,            0x500A, NAP_DEFINE_DOWN_LU_VERB,         DEFINE)     \
    ROW(NAP_DEFINE_DSPU_TEMPLATE,            0x5004, NAP_DEFINE_DSPU_TEMPLATE_VERB,   DEFINE)     \
    ROW(NAP_DEFINE_LS_ROUTING,               0x5002, NAP_DEFINE_LS_ROUTING_VERB,      DEFINE)     \
    ROW(NAP_DEFINE_LU62_TIMEOUT,             0x5000, NAP_DEFINE_LU62_TIMEOUT_VERB,    DEFINE)     \
    ROW(NAP_DEFINE_COS_NODE_ROW,             0x5006, NAP_DEFINE_COS_NODE_ROW_VERB,    DEFINE)     \
    ROW(NAP_DEFINE_COS_TG_ROW,               0x5008, NAP_DEFINE_COS_TG_ROW_VERB,      DEFINE)     \
    ROW(NAP_DEFINE_LU_POOL,                  0x2053, NAP_DEFINE_LU_POOL_VERB,         DEFINE)     \
    ROW(NAP_DEFINE_EXTRA_DATA,               0xF065, NAP_DEFINE_EXTRA_DATA_VERB,      DEFINE)     \
    ROW(NAP_DEFINE_TP,                       0x0021, NAP_DEFINE_TP_VERB,              DEFINE)     \
    ROW(NAP_DEFINE_TP_LOAD_INFO,             0xF0D5, NAP_DEFINE_TP_LOAD_VERB,         DEFINE)     \
    ROW(NAP_DEFINE_PRIMARY_LINE,             0xF0C0, NAP_DEFINE_PRIMARY_LINE_VERB,    DEFINE)     \
    ROW(NAP_DEFINE_PRIMARY_LU0,              0xF0C4, NAP_DEFINE_PRIMARY_LU0_VERB,     DEFINE)     \
    ROW(NAP_DEFINE_LU_LU_PASSWORD,           0x2064, NAP_DEFINE_LU_LU_PASSWORD_VERB,  DEFINE)     \
    ROW(NAP_DEFINE_USERID_PASSWORD,          0x2071, NAP_DEFINE_USERID_PASSWORD_VERB, DEFINE)     \
    ROW(NAP_DEFINE_SECURITY_ACCESS_LIST,     0xF0D2, NAP_DEFINE_ACCESS_LIST_VERB,     DEFINE)     \
    ROW(NAP_DEFINE_TN3270_ACCESS,            0xF090, NAP_DEFINE_TN_ACCESS_VERB,       DEFINE)     \
    ROW(NAP_DEFINE_TN3270_ASSOCIATION,       0xF095, NAP_DEFINE_TN_ASSOC_VERB,        DEFINE)     \
    ROW(NAP_DEFINE_TN_REDIRECT,              0xF09C, NAP_DEFINE_TN_REDIRECT_VERB,     DEFINE)     \
    ROW(NAP_DELETE_CN,                       0x2039, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_CN_PORT,                  0x0065, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_DOWNSTREAM_LU,            0x500B, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_DSPU_TEMPLATE,            0x5005, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_LS_ROUTING,               0x5003, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_LU62_TIMEOUT,             0x5001, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_COS_NODE_ROW,             0x5007, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_COS_TG_ROW,               0x5009, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_LU_POOL,                  0x2054, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_EXTRA_DATA,               0xF066, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_TP,                       0x0059, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_TP_LOAD_INFO,             0xF0D6, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_PRIMARY_LINE,             0xF0C1, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_PRIMARY_LU0,              0xF0C5, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_LU_LU_PASSWORD,           0x2065, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_USERID_PASSWORD,          0x2072, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_SECURITY_ACCESS_LIST,     0xF0D3, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_TN3270_ACCESS,            0xF091, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_TN3270_ASSOCIATION,       0xF096, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DELETE_TN_REDIRECT,              0xF09D, NAP_NAME_VERB,                   DELETE)     \
    /* settings of a node */                                                                      \
    ROW(NAP_DEFINE_DEFAULTS,                 0x0015, NAP_QUERY_DEFAULTS_VERB,         DEFINE)     \
    ROW(NAP_DEFINE_TN3270_DEFAULTS,          0xF098, NAP_TN3270_DEFAULTS_VERB,        DEFINE)     \
    ROW(NAP_DEFINE_TN3270_SSL_LDAP,          0xF09A, NAP_TN3270_SSL_LDAP_VERB,        DEFINE)     \
    ROW(NAP_DEFINE_TN3270_SLP,               0xF0E0, NAP_TN3270_SLP_VERB,             DEFINE)     \
    ROW(NAP_DEFINE_TN3270_EXPRESS_LOGON,     0xF08E, NAP_TN3270_EXPRESS_LOGON_VERB,   DEFINE)     \
    ROW(NAP_DEFINE_TAMRIX_APPCIP_DEFAULTS,   0xFC00, NAP_TAMRIX_DEFAULTS_VERB,        DEFINE)     \
    ROW(NAP_DELETE_TAMRIX_APPCIP_DEFAULTS,   0xFC01, NAP_TAMRIX_DEFAULTS_VERB,        DELETE)     \
    ROW(NAP_SET_DLC_TRACE,                   0x8000, NAP_QUERY_TRACE_VERB,            DEFINE)     \
    ROW(NAP_REMOVE_DLC_TRACE,                0x8001, NAP_QUERY_TRACE_VERB,            DELETE)     \
    ROW(NAP_SET_TRACE_TYPE,                  0xF026, NAP_QUERY_TRACE_VERB,            DEFINE)     \
    ROW(NAP_SET_CS_TRACE,                    0xF070, NAP_QUERY_TRACE_VERB,            DEFINE)     \
    ROW(NAP_SET_BCK_CS_TRACE,                0xF0A0, NAP_QUERY_TRACE_VERB,            DEFINE)     \
    ROW(NAP_SET_TN_SERVER_TRACE,             0xF093, NAP_QUERY_TRACE_VERB,            DEFINE)     \
    ROW(NAP_SET_TN3270_SLP_TRACE,            0xF0E2, NAP_QUERY_TRACE_VERB,            DEFINE)     \
    /* management of a node */                                                                    \
    ROW(NAP_START_DLC,                       0x2031, NAP_NAME_VERB,                   START)      \
    ROW(NAP_START_PORT,                      0x2034, NAP_NAME_VERB,                   START)      \
    ROW(NAP_START_LS,                        0x2036, NAP_NAME_VERB,                   START)      \
    ROW(NAP_START_PU,                        0x6002, NAP_NAME_VERB,                   START)      \
    ROW(NAP_STOP_DLC,                        0x2033, NAP_NAME_VERB,                   STOP)       \
    ROW(NAP_STOP_PORT,                       0x2035, NAP_NAME_VERB,                   STOP)       \
    ROW(NAP_STOP_LS,                         0x2037, NAP_NAME_VERB,                   STOP)       \
    ROW(NAP_STOP_PU,                         0x6003, NAP_NAME_VERB,                   STOP)       \
    ROW(NAP_INIT_NODE,                       0xF008, NAP_NAME_VERB,                   START)      \
    ROW(NAP_STOP_NODE,                       0x2059, NAP_NAME_VERB,                   STOP)       \
    ROW(NAP_CHANGE_SESSION_LIMIT,            0x6004, NAP_SESSION_LIMIT_VERB,          LIMIT)      \
    /* sessions of a node's LUs */                                                                \
    ROW(NAP_END_LU_SESSION,                  0x6010, NAP_END_LU_SESSION_VERB,         OPERATE)    \
    ROW(NAP_ACTIVATE_SESSION,                0x6011, NAP_LU62_SESSION_VERB,           OPERATE)    \
    ROW(NAP_DEACTIVATE_SESSION,              0x6012, NAP_LU62_SESSION_VERB,           OPERATE)    \
    ROW(NAP_END_TN3270_CLIENT,               0x6013, NAP_END_TN_CLIENT_VERB,          OPERATE)    \
    /* configuration of the domain */                                                             \
    ROW(NAP_ADD_BACKUP,                      0xF072, NAP_NAME_VERB,                   DEFINE)     \
    ROW(NAP_DELETE_BACKUP,                   0xF073, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DEFINE_CPIC_SIDE_INFO,           0x2062, NAP_DEFINE_CPIC_VERB,            DEFINE)     \
    ROW(NAP_DELETE_CPIC_SIDE_INFO,           0x2063, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DEFINE_EMULATOR_USER,            0xF041, NAP_DEFINE_USER_VERB,            DEFINE)     \
    ROW(NAP_DELETE_EMULATOR_USER,            0xF042, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_DEFINE_RJE_WKSTN,                0xF061, NAP_DEFINE_RJE_VERB,             DEFINE)     \
    ROW(NAP_DELETE_RJE_WKSTN,                0xF062, NAP_NAME_VERB,                   DELETE)     \
    ROW(NAP_SET_CENTRAL_LOGGING,             0xF021, NAP_QUERY_LOGGING_VERB,          DEFINE)     \
    ROW(NAP_SET_GLOBAL_LOG_TYPE,             0xF024, NAP_QUERY_LOGGING_VERB,          DEFINE)     \
    ROW(NAP_SET_CENTRAL_LOGGER,              0xF006, NAP_QUERY_LOGGING_VERB,          DEFINE)     \
    /* indications */                                                                             \
    ROW(NAP_DIRECTORY_INDICATION,            0x4002, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_LS_INDICATION,                   0x4006, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_MODE_INDICATION,                 0x4007, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_PLU_INDICATION,                  0x400A, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_PORT_INDICATION,                 0x400D, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_DLC_INDICATION,                  0x400E, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_LU_0_TO_3_INDICATION,            0x4010, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_PU_INDICATION,                   0x4011, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_DOWNSTREAM_PU_INDICATION,        0x4012, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_DOWNSTREAM_LU_INDICATION,        0x4013, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_LOCAL_LU_INDICATION,             0x4016, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_DLUR_PU_INDICATION,              0x401A, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_TAMRIX_INDICATION,               0xFC12, NAP_RESOURCE_INDICATION,         INDICATION) \
    ROW(NAP_NOF_STATUS_INDICATION,           0xF019, NAP_NOF_STATUS_INDICATION_VERB,  INDICATION) \
    ROW(NAP_SERVER_INDICATION,               0xF01A, NAP_SERVER_INDICATION_VERB,      INDICATION) \
    ROW(NAP_SNA_NET_INDICATION,              0xF077, NAP_SERVER_INDICATION_VERB,      INDICATION)
/* clang-format on */

enum nap_opcode {
#define NAP_ROW(name, opcode, block, kind) name = opcode,
    NAP_VERBS(NAP_ROW)
#undef NAP_ROW
};

enum nap_verb_kind {
    NAP_KIND_SESSION,
    NAP_KIND_LIST,
    NAP_KIND_RECORD,
    NAP_KIND_DEFINE,
    NAP_KIND_DELETE,
    NAP_KIND_START,
    NAP_KIND_STOP,
    NAP_KIND_LIMIT,
    NAP_KIND_OPERATE,
    NAP_KIND_INDICATION
};
#define NAP_KIND_CHANGES(kind) ((kind) >= NAP_KIND_DEFINE && (kind) <= NAP_KIND_OPERATE)
#define NAP_KIND_COPIED(kind)  ((kind) >= NAP_KIND_DEFINE && (kind) <= NAP_KIND_LIMIT)

typedef struct nap_verb {
    NB_USHORT opcode;
    NB_UCHAR kind;       /* enum nap_verb_kind */
    NB_UCHAR changes;    /* flag, by its kind */
    NB_ULONG block_size; /* bytes of the control block */
    const NB_CHAR *name;
} NAP_VERB;

NAP_TABLE NAP_VERB gnap_verbs[] = {
#define NAP_ROW(name, opcode, block, kind)                                                         \
    {opcode, NAP_KIND_##kind, NAP_KIND_CHANGES(NAP_KIND_##kind), sizeof(block), #name},
    NAP_VERBS(NAP_ROW)
#undef NAP_ROW
};

#define NAP_VERB_COUNT (sizeof(gnap_verbs) / sizeof(gnap_verbs[0]))

/* The number of each row. */
enum nap_verb_row {
#define NAP_ROW(name, ...) NAP_ROW_##name,
    NAP_VERBS(NAP_ROW)
#undef NAP_ROW
};

/* Returns the row of an opcode, or null.  Every answer asks, so nothing is walked; two rows with
 * one opcode do not compile. */
static inline const NAP_VERB *nap_find_verb(NB_USHORT opcode) {
    switch (opcode) {
#define NAP_ROW(name, ...)                                                                         \
    case name:                                                                                     \
        return &gnap_verbs[NAP_ROW_##name];
        NAP_VERBS(NAP_ROW)
#undef NAP_ROW
    default:
        return NULL;
    }
}

/* The names of return codes, for logs.  Null for a code without a name; a secondary code of 0 has
 * none. */
typedef struct nap_code_name {
    NB_ULONG code;
    const NB_CHAR *name;
} NAP_CODE_NAME;

/* clang-format off */
#define NAP_CODE(code) {code, #code}
/* clang-format on */

static inline const NB_CHAR *nap_find_code(const NAP_CODE_NAME *names, size_t count,
                                           NB_ULONG code) {
    size_t row;
    for (row = 0; row < count; row++) {
        if (names[row].code == code) {
            return names[row].name;
        }
    }
    return NULL;
}

static inline const NB_CHAR *nap_primary_name(NB_ULONG code) {
    static const NAP_CODE_NAME names[] = {
        NAP_CODE(NAP_OK),
        NAP_CODE(NAP_PARAMETER_CHECK),
        NAP_CODE(NAP_STATE_CHECK),
        NAP_CODE(NAP_INDICATION),
        NAP_CODE(NAP_COMM_FAILURE),
        NAP_CODE(NAP_UNAVAILABLE),
        NAP_CODE(NAP_NOT_SUPPORTED),
    };
    return nap_find_code(names, sizeof(names) / sizeof(names[0]), code);
}

static inline const NB_CHAR *nap_secondary_name(NB_ULONG code) {
    static const NAP_CODE_NAME names[] = {
        NAP_CODE(NAP_NO_PERMISSION),
        NAP_CODE(NAP_BAD_TARGET),
        NAP_CODE(NAP_BAD_LENGTH),
        NAP_CODE(NAP_INVALID_NAME),
        NAP_CODE(NAP_INVALID_VALUE),
        NAP_CODE(NAP_INVALID_LIST_OPTION),
        NAP_CODE(NAP_UNKNOWN_RESOURCE),
        NAP_CODE(NAP_UNKNOWN_OWNER),
        NAP_CODE(NAP_DUPLICATE_NAME),
        NAP_CODE(NAP_NO_DOMAIN_CONFIG),
        NAP_CODE(NAP_NODE_GONE),
        NAP_CODE(NAP_CONNECTION_GONE),
        NAP_CODE(NAP_NODE_BUSY),
        NAP_CODE(NAP_RESOURCE_ACTIVE),
        NAP_CODE(NAP_RESOURCE_INACTIVE),
        NAP_CODE(NAP_IN_USE),
        NAP_CODE(NAP_NODE_NOT_ACTIVE),
        NAP_CODE(NAP_LAST_BACKUP),
        NAP_CODE(NAP_STORE_FAILED),
        NAP_CODE(NAP_SINK_OVERFLOW),
        NAP_CODE(NAP_SYSTEM_FILE_CHANGED),
        NAP_CODE(NAP_NO_HPR_CONNECTION),
        NAP_CODE(NAP_LIMIT_REACHED),
        NAP_CODE(NAP_PARTNER_UNREACHABLE),
        NAP_CODE(NAP_NOT_STORED),
        NAP_CODE(NAP_PORT_LIMIT),
        NAP_CODE(NAP_LU_LIMIT),
        NAP_CODE(NAP_LINK_LIMIT),
        NAP_CODE(NAP_SESSION_LIMIT),
    };
    return nap_find_code(names, sizeof(names) / sizeof(names[0]), code);
}

#undef NAP_CODE

#endif
