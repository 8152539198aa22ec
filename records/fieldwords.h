/* The words that texts and commands use for numbers.  Windows show the text of `message` instead.
 */
#ifndef FIELDWORDS_H
#define FIELDWORDS_H

#include "schema.h"
#include "wordmessages.h"

namespace records {

inline constexpr FieldWord dlc_words[] = {
    {"sdlc", NAP_DLC_SDLC, MSG_SDLC},
    {"qllc", NAP_DLC_QLLC, MSG_QLLC},
    {"token_ring", NAP_DLC_TOKEN_RING, MSG_TOKEN_RING},
    {"fddi", NAP_DLC_FDDI, MSG_FDDI},
    {"ethernet", NAP_DLC_ETHERNET, MSG_ETHERNET},
    {"frame_relay", NAP_DLC_FRAME_RELAY, MSG_FRAME_RELAY},
    {"channel", NAP_DLC_CHANNEL, MSG_CHANNEL},
    {"ip", NAP_DLC_IP, MSG_IP},
    {"mpc", NAP_DLC_MPC, MSG_MPC},
    {"mpc_plus", NAP_DLC_MPC_PLUS, MSG_MPC_PLUS},
};

inline constexpr FieldWord port_words[] = {
    {"leased", NAP_PORT_LEASED, MSG_LEASED},
    {"switched", NAP_PORT_SWITCHED, MSG_SWITCHED},
    {"shared_access", NAP_PORT_SHARED_ACCESS},
};

inline constexpr FieldWord role_words[] = {
    {"primary", NAP_LS_PRIMARY},
    {"secondary", NAP_LS_SECONDARY},
    {"negotiable", NAP_LS_NEGOTIABLE},
};

inline constexpr FieldWord partner_words[] = {
    {"learn", NAP_ADJ_NODE_LEARN},
    {"len_node", NAP_ADJ_LEN_NODE, MSG_PEER_LEN},
    {"network_node", NAP_ADJ_NETWORK_NODE, MSG_PEER_NN},
    {"end_node", NAP_ADJ_END_NODE, MSG_PEER_EN},
    {"host", NAP_ADJ_HOST, MSG_HOST},
    {"downstream", NAP_ADJ_DOWNSTREAM, MSG_DOWNSTREAM},
};

inline constexpr FieldWord attachment_words[] = {
    {"direct", NAP_DIRECT_ATTACHED},
    {"dlur", NAP_DLUR_ATTACHED},
};

inline constexpr FieldWord model_words[] = {
    {"display_2", NAP_LU_3270_DISPLAY_MODEL_2, MSG_DISPLAY_3270_2},
    {"display_3", NAP_LU_3270_DISPLAY_MODEL_3, MSG_DISPLAY_3270_3},
    {"display_4", NAP_LU_3270_DISPLAY_MODEL_4, MSG_DISPLAY_3270_4},
    {"display_5", NAP_LU_3270_DISPLAY_MODEL_5, MSG_DISPLAY_3270_5},
    {"printer", NAP_LU_PRINTER, MSG_PRINTER_3270},
    {"scs_printer", NAP_LU_SCS_PRINTER, MSG_SCS_PRINTER},
    {"rje", NAP_LU_RJE},
    {"unrestricted", NAP_LU_UNKNOWN, MSG_UNRESTRICTED},
};

inline constexpr FieldWord priority_words[] = {
    {"network", 0},
    {"high", 1},
    {"medium", 2},
    {"low", 3},
};

inline constexpr FieldWord flow_words[] = {
    {"low", 0, MSG_LOW},
    {"medium", 1, MSG_MEDIUM},
    {"high", 2, MSG_HIGH},
    {"network", 3, MSG_NETWORK_PRIORITY},
};

inline constexpr FieldWord application_words[] = {
    {"none", NAP_APP_NONE},
    {"emulator", NAP_APP_3270_EMULATOR},
    {"tn3270", NAP_APP_TN3270_SERVER},
    {"lua", NAP_APP_LUA},
};

inline constexpr FieldWord compression_words[] = {
    {"none", NAP_COMPRESSION_NONE},
    {"rle", NAP_COMPRESSION_RLE},
    {"lz9", NAP_COMPRESSION_LZ9},
    {"lz10", NAP_COMPRESSION_LZ10},
};

inline constexpr FieldWord resource_words[] = {
    {"lu", NAP_DIR_LU, MSG_LU},
    {"end_node", NAP_DIR_END_NODE, MSG_END_NODE},
    {"network_node", NAP_DIR_NETWORK_NODE, MSG_NETWORK_NODE},
    {"wildcard_lu", NAP_DIR_WILDCARD_LU, MSG_ANY_LUS},
};

inline constexpr FieldWord wildcard_words[] = {
    {"none", NAP_DIR_WILDCARD_NONE},
    {"partial", NAP_DIR_WILDCARD_PARTIAL},
    {"full", NAP_DIR_WILDCARD_FULL},
};

inline constexpr FieldWord security_words[] = {
    {"nonsecure", NAP_SEC_NONSECURE},     {"public_switched", NAP_SEC_PUBLIC_SWITCHED},
    {"underground", NAP_SEC_UNDERGROUND}, {"conduit", NAP_SEC_CONDUIT},
    {"encrypted", NAP_SEC_ENCRYPTED},     {"guarded", NAP_SEC_GUARDED},
    {"maximum", NAP_SEC_MAXIMUM},
};

inline constexpr FieldWord delay_words[] = {
    {"minimum", NAP_DELAY_MINIMUM},     {"lan", NAP_DELAY_LAN},
    {"telephone", NAP_DELAY_TELEPHONE}, {"packet", NAP_DELAY_PACKET},
    {"satellite", NAP_DELAY_SATELLITE}, {"maximum", NAP_DELAY_MAXIMUM},
};

inline constexpr FieldWord line_words[] = {
    {"leased", NAP_PORT_LEASED, MSG_LEASED},
    {"switched", NAP_PORT_SWITCHED, MSG_SWITCHED},
};

inline constexpr FieldWord duplex_words[] = {
    {"half", NAP_HALF_DUPLEX},
    {"full", NAP_FULL_DUPLEX},
};

inline constexpr FieldWord encoding_words[] = {
    {"nrz", 0},
    {"nrzi", 1},
};

inline constexpr FieldWord timeout_words[] = {
    {"global", NAP_TIMEOUT_GLOBAL},
    {"local_lu", NAP_TIMEOUT_LOCAL_LU},
    {"partner_lu", NAP_TIMEOUT_PARTNER_LU},
    {"mode", NAP_TIMEOUT_MODE},
};

inline constexpr FieldWord client_words[] = {
    {"default", NAP_TN_DEFAULT_RECORD},
    {"ip", NAP_TN_ADDRESS_IP},
    {"name", NAP_TN_ADDRESS_NAME},
};

inline constexpr FieldWord ssl_words[] = {
    {"no", 0, MSG_NO},
    {"yes", 1, MSG_YES},
    {"certificate", 2, MSG_CERTIFICATE},
};

inline constexpr FieldWord sync_words[] = {
    {"none", NAP_SYNC_NONE},
    {"confirm", NAP_SYNC_CONFIRM},
    {"sync_point", NAP_SYNC_POINT},
};

inline constexpr FieldWord conversation_words[] = {
    {"basic", 0},
    {"mapped", 1},
    {"either", 2},
};

inline constexpr FieldWord tp_duplex_words[] = {
    {"half", 0},
    {"full", 1},
    {"either", 2},
};

inline constexpr FieldWord tp_type_words[] = {
    {"queued", NAP_TP_QUEUED, MSG_QUEUED},
    {"queued_broadcast", NAP_TP_QUEUED_BROADCAST, MSG_QUEUED_BROADCAST},
    {"non_queued", NAP_TP_NON_QUEUED, MSG_NOT_QUEUED},
};

inline constexpr FieldWord style_words[] = {
    {"extended", 0},
    {"compatible", 1},
};

inline constexpr FieldWord verification_words[] = {
    {"basic", 0, MSG_BASIC},
    {"enhanced", 1, MSG_ENHANCED},
};

inline constexpr FieldWord emulator_words[] = {
    {"3270", NAP_USER_SESSION_3270},
    {"5250", NAP_USER_SESSION_5250},
};

inline constexpr FieldWord terminal_words[] = {
    {"display", NAP_SESSION_DISPLAY},
    {"printer", NAP_SESSION_PRINTER},
};

inline constexpr FieldWord screen_words[] = {
    {"none", 0},
    {"display_2", NAP_LU_3270_DISPLAY_MODEL_2, MSG_DISPLAY_3270_2},
    {"display_3", NAP_LU_3270_DISPLAY_MODEL_3, MSG_DISPLAY_3270_3},
    {"display_4", NAP_LU_3270_DISPLAY_MODEL_4, MSG_DISPLAY_3270_4},
    {"display_5", NAP_LU_3270_DISPLAY_MODEL_5, MSG_DISPLAY_3270_5},
};

inline constexpr FieldWord cpic_words[] = {
    {"none", NAP_CPIC_SECURITY_NONE},
    {"same", NAP_CPIC_SECURITY_SAME},
    {"program", NAP_CPIC_SECURITY_PROGRAM},
    {"strong", NAP_CPIC_SECURITY_STRONG},
};

inline constexpr FieldWord server_words[] = {
    {"none", 0},
    {"master", NAP_SERVER_MASTER | NAP_SERVER_CONFIG},
    {"backup", NAP_SERVER_MASTER | NAP_SERVER_BACKUP},
};

inline constexpr FieldWord node_words[] = {
    {"len_node", NAP_LEN_NODE, MSG_LEN_NODE},
    {"network_node", NAP_NETWORK_NODE, MSG_NETWORK_NODE},
    {"end_node", NAP_END_NODE, MSG_END_NODE},
    {"branch_network_node", NAP_BRANCH_NETWORK_NODE, MSG_BRANCH_NETWORK_NODE},
};

inline constexpr FieldWord keepalive_words[] = {
    {"none", NAP_KEEPALIVE_NONE},
    {"no_operation", NAP_KEEPALIVE_NOP},
    {"timing_mark", NAP_KEEPALIVE_TIMING_MARK},
};

inline constexpr FieldWord state_words[] = {
    {"inactive", NAP_NOT_ACTIVE, MSG_INACTIVE},
    {"starting", NAP_PENDING_ACTIVE, MSG_STARTING},
    {"active", NAP_ACTIVE, MSG_ACTIVE},
    {"stopping", NAP_PENDING_INACTIVE, MSG_STOPPING},
    {"resetting", NAP_RESETTING, MSG_RESETTING},
    {"sscp_active", NAP_SSCP_ACTIVE, MSG_READY_FOR_LOGON},
    {"in_session", NAP_IN_SESSION, MSG_IN_USE},
};

inline constexpr FieldWord route_words[] = {
    {"listening", NAP_RTP_LISTENING, MSG_RTP_LISTENING},
    {"calling", NAP_RTP_CALLING, MSG_RTP_CALLING},
    {"connected", NAP_RTP_CONNECTED, MSG_RTP_CONNECTED},
    {"switching", NAP_RTP_SWITCHING, MSG_RTP_SWITCHING},
    {"ending", NAP_RTP_ENDING, MSG_RTP_ENDING},
};

inline constexpr FieldWord service_words[] = {
    {"concentration", NAP_PU_CONCENTRATION},
    {"passed_through", NAP_DLUR_PASSED_THROUGH},
};

inline constexpr FieldWord directory_words[] = {
    {"home", NAP_DIR_HOME, MSG_HOME},
    {"cache", NAP_DIR_CACHE, MSG_CACHE},
    {"registered", NAP_DIR_REGISTER, MSG_REGISTERED},
};

inline constexpr FieldWord session_words[] = {
    {"lu_0_to_3", NAP_SESSION_LU_0_TO_3},
    {"lu62", NAP_SESSION_LU62},
};

inline constexpr FieldWord severity_words[] = {
    {"audit", NAP_LOG_AUDIT},
    {"exception", NAP_LOG_EXCEPTION},
    {"problem", NAP_LOG_PROBLEM},
};

inline constexpr FieldWord trace_words[] = {
    {"dlc", NAP_TRACE_DLC},         {"type", NAP_TRACE_TYPE},           {"cs", NAP_TRACE_CS},
    {"back_cs", NAP_TRACE_BACK_CS}, {"tn_server", NAP_TRACE_TN_SERVER}, {"slp", NAP_TRACE_SLP},
};

inline constexpr FieldWord node_state_words[] = {
    {"stopped", NAP_NODE_STOPPED},           {"starting", NAP_NODE_STARTING},
    {"stopping", NAP_NODE_STOPPING},         {"active", NAP_NODE_ACTIVE},
    {"unconfigured", NAP_NODE_UNCONFIGURED}, {"back_level", NAP_NODE_BACK_LEVEL},
};

} // namespace records

#endif
