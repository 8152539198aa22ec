#include "noderecord.h"

#include "nodewords.h"
#include "nofverbs.h"

#include <algorithm>
#include <iterator>

namespace node {

namespace {

constexpr FieldWord keepalive_words[] = {
    {"none", NAP_KEEPALIVE_NONE},
    {"no_operation", NAP_KEEPALIVE_NOP},
    {"timing_mark", NAP_KEEPALIVE_TIMING_MARK},
    {nullptr, 0},
};

constexpr FieldRow node_fields[] = {
    FQ(NAP_QUERY_NODE_VERB, info.fq_cp_name, "fq_cp_name", 0),
    LOCAL(NAP_QUERY_NODE_VERB, info.cp_alias, "cp_alias", 0),
    WORD(NAP_QUERY_NODE_VERB, info.node_type, "node_type", node_words, "network_node"),
    TEXT(NAP_QUERY_NODE_VERB, info.description, "description"),
    NUMBER(NAP_QUERY_NODE_VERB, cp_nau_addr, "cp_nau_addr", 0, 254, "0"),
    FLAG(NAP_QUERY_NODE_VERB, dlur_support, "dlur_support", "yes"),
    FLAG(NAP_QUERY_NODE_VERB, dspu_support, "dspu_support", "yes"),
    FLAG(NAP_QUERY_NODE_VERB, hpr_support, "hpr_support", "yes"),
    FLAG(NAP_QUERY_NODE_VERB, tn3270_support, "tn3270_support", "yes"),
    FLAG(NAP_QUERY_NODE_VERB, primary_support, "primary_support", "no"),
    FLAG(NAP_QUERY_NODE_VERB, tamrix_support, "tamrix_support", "no"),
    FLAG(NAP_QUERY_NODE_VERB, directory_register, "directory_register", "yes"),
    HEX(NAP_QUERY_NODE_VERB, node_id, "node_id", "07100000"),
};

constexpr FieldRow limits_fields[] = {
    NUMBER(NAP_QUERY_NODE_LIMITS_VERB, max_lus, "max_lus", 0, 0xFFFFFFFF, "0"),
    NUMBER(NAP_QUERY_NODE_LIMITS_VERB, max_links, "max_links", 0, 0xFFFFFFFF, "0"),
    NUMBER(NAP_QUERY_NODE_LIMITS_VERB, max_sessions, "max_sessions", 0, 0xFFFFFFFF, "0"),
    NUMBER(NAP_QUERY_NODE_LIMITS_VERB, max_users, "max_users", 0, 0xFFFFFFFF, "0"),
};

constexpr FieldRow defaults_fields[] = {
    TEXT(NAP_QUERY_DEFAULTS_VERB, def_data.description, "description"),
    SNA(NAP_QUERY_DEFAULTS_VERB, def_data.mode_name, "mode_name", 0),
    FLAG(NAP_QUERY_DEFAULTS_VERB, def_data.implicit_plu_forbidden, "implicit_plu_forbidden", "no"),
    FLAG(NAP_QUERY_DEFAULTS_VERB, def_data.specific_security_codes, "specific_security_codes",
         "no"),
    FLAG(NAP_QUERY_DEFAULTS_VERB, def_data.dynamic_conversation_security,
         "dynamic_conversation_security", "yes"),
    NUMBER(NAP_QUERY_DEFAULTS_VERB, def_data.limited_timeout, "limited_timeout", 0, 65535, "0"),
};

constexpr FieldRow trace_fields[] = {
    HEX(NAP_QUERY_TRACE_VERB, trace_flags, "trace_flags", "0"),
    NUMBER(NAP_QUERY_TRACE_VERB, truncation, "truncation", 0, 65535, "0"),
    TEXT(NAP_QUERY_TRACE_VERB, trace_file, "trace_file"),
};

constexpr FieldRow logging_fields[] = {
    FLAG(NAP_QUERY_LOGGING_VERB, enabled, "enabled", "no"),
    FLAG(NAP_QUERY_LOGGING_VERB, audit, "audit", "no"),
    FLAG(NAP_QUERY_LOGGING_VERB, exception, "exception", "yes"),
    FLAG(NAP_QUERY_LOGGING_VERB, succinct, "succinct", "yes"),
    TEXT(NAP_QUERY_LOGGING_VERB, node_name, "node_name"),
};

constexpr FieldRow tn_fields[] = {
    NUMBER(NAP_TN3270_DEFAULTS_VERB, port, "port", 1, 65535, "23"),
    FLAG(NAP_TN3270_DEFAULTS_VERB, force_responses, "force_responses", "no"),
    WORD(NAP_TN3270_DEFAULTS_VERB, keepalive, "keepalive", keepalive_words, "none"),
    NUMBER(NAP_TN3270_DEFAULTS_VERB, keepalive_interval, "keepalive_interval", 1, 65535, "600"),
    FLAG(NAP_TN3270_DEFAULTS_VERB, tn3270_auto_logoff, "auto_logoff", "yes"),
    FLAG(NAP_TN3270_DEFAULTS_VERB, use_listen_host, "use_listen_host", "no"),
    NUMBER(NAP_TN3270_DEFAULTS_VERB, max_clients, "max_clients", 0, 65535, "0"),
};

constexpr FieldRow tn_ldap_fields[] = {
    FLAG(NAP_TN3270_SSL_LDAP_VERB, auth_type, "auth_type", "no"),
    NUMBER(NAP_TN3270_SSL_LDAP_VERB, port, "port", 1, 65535, "389"),
    TEXT(NAP_TN3270_SSL_LDAP_VERB, host, "host"),
    TEXT(NAP_TN3270_SSL_LDAP_VERB, user_name, "user_name"),
    {"password", PLACE(NAP_TN3270_SSL_LDAP_VERB, password), FieldKind::Text, FIELD_SECRET, 0, 0,
     nullptr, nullptr},
};

constexpr FieldRow tn_slp_fields[] = {
    FLAG(NAP_TN3270_SLP_VERB, enabled, "enabled", "no"),
    FLAG(NAP_TN3270_SLP_VERB, load_included, "load_included", "no"),
    NUMBER(NAP_TN3270_SLP_VERB, multicast_ttl, "multicast_ttl", 1, 255, "8"),
    TEXT(NAP_TN3270_SLP_VERB, scope, "scope"),
    TEXT(NAP_TN3270_SLP_VERB, service_attributes, "attributes"),
};

constexpr FieldRow tn_logon_fields[] = {
    FLAG(NAP_TN3270_EXPRESS_LOGON_VERB, enabled, "enabled", "no"),
    NUMBER(NAP_TN3270_EXPRESS_LOGON_VERB, port, "port", 1, 65535, "2143"),
    TEXT(NAP_TN3270_EXPRESS_LOGON_VERB, host, "host"),
};

constexpr FieldRow tamrix_fields[] = {
    ADDRESS(NAP_TAMRIX_DEFAULTS_VERB, local_ip_address, "local_ip_address"),
    ADDRESS(NAP_TAMRIX_DEFAULTS_VERB, local_subnet_mask, "local_subnet_mask"),
    LOCAL(NAP_TAMRIX_DEFAULTS_VERB, lu_template, "lu_template", 0),
    HEX(NAP_TAMRIX_DEFAULTS_VERB, lu_map_mask, "lu_map_mask", "FFFFFFFF"),
    TEXT(NAP_TAMRIX_DEFAULTS_VERB, domain_name, "domain_name"),
    NUMBER(NAP_TAMRIX_DEFAULTS_VERB, port, "port", 1, 65535, "397"),
    NUMBER(NAP_TAMRIX_DEFAULTS_VERB, connect_retry, "connect_retry", 1, 32767, "300"),
    NUMBER(NAP_TAMRIX_DEFAULTS_VERB, connect_timeout, "connect_timeout", 1, 32767, "60"),
    NUMBER(NAP_TAMRIX_DEFAULTS_VERB, idle_timeout, "idle_timeout", 0, 0xFFFFFFFF, "0"),
};

#define RECORD(opcode, setter, name, block, of_domain, fields)                                     \
    { opcode, setter, name, sizeof(block), of_domain, TABLE(fields), 0 }

constexpr RecordRow record_rows[] = {
    RECORD(NAP_QUERY_NODE, 0, "node", NAP_QUERY_NODE_VERB, false, node_fields),
    RECORD(NAP_QUERY_NODE_LIMITS, 0, "limits", NAP_QUERY_NODE_LIMITS_VERB, false, limits_fields),
    {NAP_QUERY_DEFAULTS, NAP_DEFINE_DEFAULTS, "defaults", sizeof(NAP_QUERY_DEFAULTS_VERB), false,
     TABLE(defaults_fields), offsetof(NAP_QUERY_DEFAULTS_VERB, def_data.mode_name)},
    RECORD(NAP_QUERY_TN3270_DEFAULTS, NAP_DEFINE_TN3270_DEFAULTS, "tn3270",
           NAP_TN3270_DEFAULTS_VERB, false, tn_fields),
    RECORD(NAP_QUERY_TN3270_SSL_LDAP, NAP_DEFINE_TN3270_SSL_LDAP, "tn3270_ssl_ldap",
           NAP_TN3270_SSL_LDAP_VERB, false, tn_ldap_fields),
    RECORD(NAP_QUERY_TN3270_SLP, NAP_DEFINE_TN3270_SLP, "tn3270_slp", NAP_TN3270_SLP_VERB, false,
           tn_slp_fields),
    RECORD(NAP_QUERY_TN3270_EXPRESS_LOGON, NAP_DEFINE_TN3270_EXPRESS_LOGON, "tn3270_express_logon",
           NAP_TN3270_EXPRESS_LOGON_VERB, false, tn_logon_fields),
    RECORD(NAP_QUERY_TAMRIX_APPCIP_DEFAULTS, NAP_DEFINE_TAMRIX_APPCIP_DEFAULTS, "tamrix",
           NAP_TAMRIX_DEFAULTS_VERB, false, tamrix_fields),
    RECORD(NAP_QUERY_DLC_TRACE, NAP_SET_DLC_TRACE, "dlc_trace", NAP_QUERY_TRACE_VERB, false,
           trace_fields),
    RECORD(NAP_QUERY_TRACE_TYPE, NAP_SET_TRACE_TYPE, "trace_type", NAP_QUERY_TRACE_VERB, false,
           trace_fields),
    RECORD(NAP_QUERY_CS_TRACE, NAP_SET_CS_TRACE, "cs_trace", NAP_QUERY_TRACE_VERB, false,
           trace_fields),
    RECORD(NAP_QUERY_BCK_CS_TRACE, NAP_SET_BCK_CS_TRACE, "back_cs_trace", NAP_QUERY_TRACE_VERB,
           false, trace_fields),
    RECORD(NAP_QUERY_TN_SERVER_TRACE, NAP_SET_TN_SERVER_TRACE, "tn_server_trace",
           NAP_QUERY_TRACE_VERB, false, trace_fields),
    RECORD(NAP_QUERY_TN3270_SLP_TRACE, NAP_SET_TN3270_SLP_TRACE, "tn3270_slp_trace",
           NAP_QUERY_TRACE_VERB, false, trace_fields),
    RECORD(NAP_QUERY_GLOBAL_LOG_TYPE, NAP_SET_GLOBAL_LOG_TYPE, "global_log_type",
           NAP_QUERY_LOGGING_VERB, true, logging_fields),
    RECORD(NAP_QUERY_CENTRAL_LOGGING, NAP_SET_CENTRAL_LOGGING, "central_logging",
           NAP_QUERY_LOGGING_VERB, true, logging_fields),
    RECORD(NAP_QUERY_CENTRAL_LOGGER, NAP_SET_CENTRAL_LOGGER, "central_logger",
           NAP_QUERY_LOGGING_VERB, true, logging_fields),
};

template <class Match> const RecordRow *find_row(Match match) {
    const RecordRow *row = std::find_if(std::begin(record_rows), std::end(record_rows), match);
    return row == std::end(record_rows) ? nullptr : row;
}

} // namespace

RecordRows all_records() {
    return {std::begin(record_rows), std::end(record_rows)};
}

const RecordRow *record_by_verb(NB_USHORT opcode) {
    return find_row([opcode](const RecordRow &row) { return row.opcode == opcode; });
}

const RecordRow *record_by_setter(NB_USHORT opcode) {
    return find_row([opcode](const RecordRow &row) { return opcode != 0 && row.setter == opcode; });
}

const RecordRow *record_by_name(std::string_view name) {
    return find_row([name](const RecordRow &row) { return name == row.name; });
}

RecordSet::RecordSet() {
    for (const RecordRow &row : record_rows) {
        std::vector<NB_UCHAR> &image = images_[row.opcode];
        Behaviour unused = DEFAULT_BEHAVIOUR;
        image.assign(row.block_size, 0);
        put_number(image.data(), 2, row.opcode);
        set_initial_fields(row.fields, image.data(), unused);
    }
}

} // namespace node
