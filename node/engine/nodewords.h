/* For the field tables only: the words that domain texts use for numbers, and one macro a kind of
 * field, so that a table reads as "which record, which member, which name, what is allowed". */
#ifndef NODEWORDS_H
#define NODEWORDS_H

#include "nodefield.h"

#include <utility>

#define PLACE(record, member) offsetof(record, member), sizeof(std::declval<record>().member)

#define SNA(record, member, name, use)                                                             \
    { name, PLACE(record, member), FieldKind::NameA, use, 0, 0, nullptr, nullptr }
#define FQ(record, member, name, use)                                                              \
    { name, PLACE(record, member), FieldKind::NameFq, use, 0, 0, nullptr, nullptr }
#define LOCAL(record, member, name, use)                                                           \
    { name, PLACE(record, member), FieldKind::NameLocal, use, 0, 0, nullptr, nullptr }
#define NAME_ANY(record, member, name, use)                                                        \
    { name, PLACE(record, member), FieldKind::NameAny, use, 0, 0, nullptr, nullptr }
#define PARTNER(record, member, name, use)                                                         \
    { name, PLACE(record, member), FieldKind::NamePartner, use, 0, 0, nullptr, nullptr }
#define EBCDIC(record, member, name, use)                                                          \
    { name, PLACE(record, member), FieldKind::NameEbcdic, use, 0, 0, nullptr, nullptr }
#define BYTES(record, member, name, use)                                                           \
    { name, PLACE(record, member), FieldKind::Bytes, use, 0, 0, nullptr, nullptr }
#define ADDRESS(record, member, name)                                                              \
    { name, PLACE(record, member), FieldKind::Address, 0, 0, 0, nullptr, nullptr }
#define TEXT_KEY(record, member, name, ...)                                                        \
    {                                                                                              \
        name, PLACE(record, member), FieldKind::Text,                                              \
            NB_UCHAR{FIELD_KEY __VA_OPT__(|) __VA_ARGS__}, 0, 0, nullptr, nullptr                  \
    }
#define NUMBER_KEY(record, member, name, low, high)                                                \
    { name, PLACE(record, member), FieldKind::Number, FIELD_KEY, low, high, nullptr, nullptr }
#define TEXT(record, member, name)                                                                 \
    { name, PLACE(record, member), FieldKind::Text, 0, 0, 0, nullptr, nullptr }
#define NUMBER(record, member, name, low, high, initial)                                           \
    { name, PLACE(record, member), FieldKind::Number, 0, low, high, nullptr, initial }
#define COUNTED(record, member, name, low, high, initial)                                          \
    { name, PLACE(record, member), FieldKind::Number, FIELD_COUNTS, low, high, nullptr, initial }
#define FLAG(record, member, name, initial)                                                        \
    { name, PLACE(record, member), FieldKind::Flag, 0, 0, 1, nullptr, initial }
#define HEX(record, member, name, initial)                                                         \
    { name, PLACE(record, member), FieldKind::Hex, 0, 0, 0xFFFFFFFF, nullptr, initial }
#define WORD(record, member, name, words, initial, ...)                                            \
    { name, PLACE(record, member), FieldKind::Word, NB_UCHAR{__VA_ARGS__}, 0, 0, words, initial }

/* Fields of the Behaviour. */
#define FLAG_SIM(member, name, initial)                                                            \
    { name, PLACE(Behaviour, member), FieldKind::Flag, FIELD_BEHAVIOUR, 0, 1, nullptr, initial }
#define NUMBER_SIM(member, name, high)                                                             \
    { name, PLACE(Behaviour, member), FieldKind::Number, FIELD_BEHAVIOUR, 0, high, nullptr, "0" }
#define TEXT_SIM(member, name)                                                                     \
    { name, PLACE(Behaviour, member), FieldKind::Text, FIELD_BEHAVIOUR, 0, 0, nullptr, nullptr }
#define WORD_SIM(member, name, words, initial)                                                     \
    { name, PLACE(Behaviour, member), FieldKind::Word, FIELD_BEHAVIOUR, 0, 0, words, initial }

#define TABLE(rows)                                                                                \
    { rows, sizeof(rows) / sizeof((rows)[0]) }

namespace node {

inline constexpr FieldWord dlc_words[] = {
    {"sdlc", NAP_DLC_SDLC},
    {"qllc", NAP_DLC_QLLC},
    {"token_ring", NAP_DLC_TOKEN_RING},
    {"fddi", NAP_DLC_FDDI},
    {"ethernet", NAP_DLC_ETHERNET},
    {"frame_relay", NAP_DLC_FRAME_RELAY},
    {"channel", NAP_DLC_CHANNEL},
    {"ip", NAP_DLC_IP},
    {"mpc", NAP_DLC_MPC},
    {"mpc_plus", NAP_DLC_MPC_PLUS},
    {nullptr, 0},
};

inline constexpr FieldWord port_words[] = {
    {"leased", NAP_PORT_LEASED},
    {"switched", NAP_PORT_SWITCHED},
    {"shared_access", NAP_PORT_SHARED_ACCESS},
    {nullptr, 0},
};

inline constexpr FieldWord role_words[] = {
    {"primary", NAP_LS_PRIMARY},
    {"secondary", NAP_LS_SECONDARY},
    {"negotiable", NAP_LS_NEGOTIABLE},
    {nullptr, 0},
};

inline constexpr FieldWord partner_words[] = {
    {"learn", NAP_ADJ_NODE_LEARN},
    {"len_node", NAP_ADJ_LEN_NODE},
    {"network_node", NAP_ADJ_NETWORK_NODE},
    {"end_node", NAP_ADJ_END_NODE},
    {"host", NAP_ADJ_HOST},
    {"downstream", NAP_ADJ_DOWNSTREAM},
    {nullptr, 0},
};

inline constexpr FieldWord attachment_words[] = {
    {"direct", NAP_DIRECT_ATTACHED},
    {"dlur", NAP_DLUR_ATTACHED},
    {nullptr, 0},
};

inline constexpr FieldWord model_words[] = {
    {"display_2", NAP_LU_3270_DISPLAY_MODEL_2},
    {"display_3", NAP_LU_3270_DISPLAY_MODEL_3},
    {"display_4", NAP_LU_3270_DISPLAY_MODEL_4},
    {"display_5", NAP_LU_3270_DISPLAY_MODEL_5},
    {"printer", NAP_LU_PRINTER},
    {"scs_printer", NAP_LU_SCS_PRINTER},
    {"rje", NAP_LU_RJE},
    {"unrestricted", NAP_LU_UNKNOWN},
    {nullptr, 0},
};

inline constexpr FieldWord priority_words[] = {
    {"network", 0}, {"high", 1}, {"medium", 2}, {"low", 3}, {nullptr, 0},
};

inline constexpr FieldWord flow_words[] = {
    {"low", 0}, {"medium", 1}, {"high", 2}, {"network", 3}, {nullptr, 0},
};

inline constexpr FieldWord application_words[] = {
    {"none", NAP_APP_NONE},
    {"emulator", NAP_APP_3270_EMULATOR},
    {"tn3270", NAP_APP_TN3270_SERVER},
    {"lua", NAP_APP_LUA},
    {nullptr, 0},
};

inline constexpr FieldWord compression_words[] = {
    {"none", NAP_COMPRESSION_NONE},
    {"rle", NAP_COMPRESSION_RLE},
    {"lz9", NAP_COMPRESSION_LZ9},
    {"lz10", NAP_COMPRESSION_LZ10},
    {nullptr, 0},
};

inline constexpr FieldWord resource_words[] = {
    {"lu", NAP_DIR_LU},
    {"end_node", NAP_DIR_END_NODE},
    {"network_node", NAP_DIR_NETWORK_NODE},
    {"wildcard_lu", NAP_DIR_WILDCARD_LU},
    {nullptr, 0},
};

inline constexpr FieldWord wildcard_words[] = {
    {"none", NAP_DIR_WILDCARD_NONE},
    {"partial", NAP_DIR_WILDCARD_PARTIAL},
    {"full", NAP_DIR_WILDCARD_FULL},
    {nullptr, 0},
};

inline constexpr FieldWord security_words[] = {
    {"nonsecure", NAP_SEC_NONSECURE},     {"public_switched", NAP_SEC_PUBLIC_SWITCHED},
    {"underground", NAP_SEC_UNDERGROUND}, {"conduit", NAP_SEC_CONDUIT},
    {"encrypted", NAP_SEC_ENCRYPTED},     {"guarded", NAP_SEC_GUARDED},
    {"maximum", NAP_SEC_MAXIMUM},         {nullptr, 0},
};

inline constexpr FieldWord delay_words[] = {
    {"minimum", NAP_DELAY_MINIMUM},
    {"lan", NAP_DELAY_LAN},
    {"telephone", NAP_DELAY_TELEPHONE},
    {"packet", NAP_DELAY_PACKET},
    {"satellite", NAP_DELAY_SATELLITE},
    {"maximum", NAP_DELAY_MAXIMUM},
    {nullptr, 0},
};

inline constexpr FieldWord line_words[] = {
    {"leased", NAP_PORT_LEASED},
    {"switched", NAP_PORT_SWITCHED},
    {nullptr, 0},
};

inline constexpr FieldWord duplex_words[] = {
    {"half", NAP_HALF_DUPLEX},
    {"full", NAP_FULL_DUPLEX},
    {nullptr, 0},
};

inline constexpr FieldWord encoding_words[] = {
    {"nrz", 0},
    {"nrzi", 1},
    {nullptr, 0},
};

inline constexpr FieldWord timeout_words[] = {
    {"global", NAP_TIMEOUT_GLOBAL},
    {"local_lu", NAP_TIMEOUT_LOCAL_LU},
    {"partner_lu", NAP_TIMEOUT_PARTNER_LU},
    {"mode", NAP_TIMEOUT_MODE},
    {nullptr, 0},
};

inline constexpr FieldWord client_words[] = {
    {"default", NAP_TN_DEFAULT_RECORD},
    {"ip", NAP_TN_ADDRESS_IP},
    {"name", NAP_TN_ADDRESS_NAME},
    {nullptr, 0},
};

inline constexpr FieldWord ssl_words[] = {
    {"no", 0},
    {"yes", 1},
    {"certificate", 2},
    {nullptr, 0},
};

inline constexpr FieldWord sync_words[] = {
    {"none", NAP_SYNC_NONE},
    {"confirm", NAP_SYNC_CONFIRM},
    {"sync_point", NAP_SYNC_POINT},
    {nullptr, 0},
};

inline constexpr FieldWord conversation_words[] = {
    {"basic", 0},
    {"mapped", 1},
    {"either", 2},
    {nullptr, 0},
};

inline constexpr FieldWord tp_duplex_words[] = {
    {"half", 0},
    {"full", 1},
    {"either", 2},
    {nullptr, 0},
};

inline constexpr FieldWord tp_type_words[] = {
    {"queued", NAP_TP_QUEUED},
    {"queued_broadcast", NAP_TP_QUEUED_BROADCAST},
    {"non_queued", NAP_TP_NON_QUEUED},
    {nullptr, 0},
};

inline constexpr FieldWord style_words[] = {
    {"extended", 0},
    {"compatible", 1},
    {nullptr, 0},
};

inline constexpr FieldWord verification_words[] = {
    {"basic", 0},
    {"enhanced", 1},
    {nullptr, 0},
};

inline constexpr FieldWord emulator_words[] = {
    {"3270", NAP_USER_SESSION_3270},
    {"5250", NAP_USER_SESSION_5250},
    {nullptr, 0},
};

inline constexpr FieldWord terminal_words[] = {
    {"display", NAP_SESSION_DISPLAY},
    {"printer", NAP_SESSION_PRINTER},
    {nullptr, 0},
};

inline constexpr FieldWord screen_words[] = {
    {"none", 0},
    {"display_2", NAP_LU_3270_DISPLAY_MODEL_2},
    {"display_3", NAP_LU_3270_DISPLAY_MODEL_3},
    {"display_4", NAP_LU_3270_DISPLAY_MODEL_4},
    {"display_5", NAP_LU_3270_DISPLAY_MODEL_5},
    {nullptr, 0},
};

inline constexpr FieldWord cpic_words[] = {
    {"none", NAP_CPIC_SECURITY_NONE},
    {"same", NAP_CPIC_SECURITY_SAME},
    {"program", NAP_CPIC_SECURITY_PROGRAM},
    {"strong", NAP_CPIC_SECURITY_STRONG},
    {nullptr, 0},
};

inline constexpr FieldWord server_words[] = {
    {"none", 0},
    {"master", NAP_SERVER_MASTER | NAP_SERVER_CONFIG},
    {"backup", NAP_SERVER_BACKUP},
    {nullptr, 0},
};

inline constexpr FieldWord node_words[] = {
    {"len_node", NAP_LEN_NODE},
    {"network_node", NAP_NETWORK_NODE},
    {"end_node", NAP_END_NODE},
    {"branch_network_node", NAP_BRANCH_NETWORK_NODE},
    {nullptr, 0},
};

} // namespace node

#endif
