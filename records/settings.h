/* Schemas of settings: the verbs that answer with one record inside their block.  The verbs that
 * change one and put it back, where there are some, have the same block.  What no text sets has the
 * initial values of the rows. */
#ifndef SETTINGS_H
#define SETTINGS_H

#include "fieldrows.h"

#define AT(member) FIELD_AT(Block, member)

namespace records {

struct Settings {
    const char *name = nullptr; /* in texts and commands */
    NB_USHORT query = 0;        /* opcodes; `set` and `reset` 0: none */
    NB_USHORT set = 0;
    NB_USHORT reset = 0; /* to the initial values; the block comes back with what is set then */
    NB_USHORT block_size = 0;
    bool of_domain = false; /* asked of the domain, not of a node */
    FieldTable fields = {}; /* offsets in the block */
    FieldTable status = {}; /* what the node answers: never set or checked */
};

namespace rows::node_settings {
using Block = NAP_QUERY_NODE_VERB;

inline constexpr FieldRow fields[] = {
    fq(AT(info.fq_cp_name)),
    local(AT(info.cp_alias)),
    word(AT(info.node_type), node_words, "network_node"),
    flag(AT(info.cos_mapping), "no"),
    text(AT(info.description)),
    number(AT(cp_nau_addr), 0, 254, "0"),
    flag(AT(dlur_support), "yes"),
    flag(AT(dspu_support), "yes"),
    flag(AT(hpr_support), "yes"),
    flag(AT(tn3270_support), "yes"),
    flag(AT(primary_support), "no"),
    flag(AT(tamrix_support), "no"),
    flag(AT(directory_register), "yes"),
    hex(AT(node_id), "07100000"),
};

inline constexpr FieldRow status[] = {
    word(AT(info.node_state), node_state_words),
    hex(AT(info.server_flags)),
    text(AT(info.release)),
    count(AT(info.up_time)).in(Unit::Hundredths),
    count(AT(active_sessions)).in(Unit::Sessions),
};
} // namespace rows::node_settings

namespace rows::limits_settings {
using Block = NAP_QUERY_NODE_LIMITS_VERB;

inline constexpr FieldRow fields[] = {
    number(AT(max_lus), 0, 0xFFFFFFFF, "0"),
    number(AT(max_links), 0, 0xFFFFFFFF, "0"),
    number(AT(max_sessions), 0, 0xFFFFFFFF, "0").in(Unit::Sessions),
    number(AT(max_users), 0, 0xFFFFFFFF, "0"),
};

inline constexpr FieldRow status[] = {
    count(AT(lus)).in(Unit::Lus),
    count(AT(links)).in(Unit::Links),
    count(AT(sessions)).in(Unit::Sessions),
    count(AT(users)).in(Unit::Users),
};
} // namespace rows::limits_settings

namespace rows::defaults_settings {
using Block = NAP_QUERY_DEFAULTS_VERB;

inline constexpr FieldRow fields[] = {
    text(AT(def_data.description)),
    sna(AT(def_data.mode_name)),
    flag(AT(def_data.implicit_plu_forbidden), "no"),
    flag(AT(def_data.specific_security_codes), "no"),
    flag(AT(def_data.dynamic_conversation_security), "yes"),
    number(AT(def_data.limited_timeout), 0, 65535, "0").in(Unit::Seconds),
};
} // namespace rows::defaults_settings

namespace rows::trace_settings {
using Block = NAP_QUERY_TRACE_VERB;

inline constexpr FieldRow fields[] = {
    hex(AT(trace_flags), "0"),
    number(AT(truncation), 0, 65535, "0").in(Unit::Bytes),
    text(AT(trace_file)),
};
} // namespace rows::trace_settings

/* The resources that are traced have names. */
namespace rows::dlc_trace_settings {
using Block = NAP_QUERY_TRACE_VERB;

inline constexpr FieldRow fields[] = {
    hex(AT(trace_flags), "0"),
    number(AT(truncation), 0, 65535, "0").in(Unit::Bytes),
    text(AT(trace_file)),
    local(AT(names[0])).named("resource_1"),
    local(AT(names[1])).named("resource_2"),
    local(AT(names[2])).named("resource_3"),
    local(AT(names[3])).named("resource_4"),
    local(AT(names[4])).named("resource_5"),
    local(AT(names[5])).named("resource_6"),
    local(AT(names[6])).named("resource_7"),
    local(AT(names[7])).named("resource_8"),
};
} // namespace rows::dlc_trace_settings

namespace rows::logging_settings {
using Block = NAP_QUERY_LOGGING_VERB;

inline constexpr FieldRow fields[] = {
    flag(AT(enabled), "no"),   flag(AT(audit), "no"), flag(AT(exception), "yes"),
    flag(AT(succinct), "yes"), text(AT(node_name)),
};
} // namespace rows::logging_settings

namespace rows::tn3270_settings {
using Block = NAP_TN3270_DEFAULTS_VERB;

inline constexpr FieldRow fields[] = {
    number(AT(port), 1, 65535, "23"),
    flag(AT(force_responses), "no"),
    word(AT(keepalive), keepalive_words, "none"),
    number(AT(keepalive_interval), 1, 65535, "600").in(Unit::Seconds),
    flag(AT(tn3270_auto_logoff), "yes").named("auto_logoff"),
    flag(AT(use_listen_host), "no"),
    number(AT(max_clients), 0, 65535, "0"),
};
} // namespace rows::tn3270_settings

namespace rows::tn3270_ssl_ldap_settings {
using Block = NAP_TN3270_SSL_LDAP_VERB;

inline constexpr FieldRow fields[] = {
    flag(AT(auth_type), "no"), number(AT(port), 1, 65535, "389"), text(AT(host)),
    text(AT(user_name)),       text(AT(password)).secret(),
};
} // namespace rows::tn3270_ssl_ldap_settings

namespace rows::tn3270_slp_settings {
using Block = NAP_TN3270_SLP_VERB;

inline constexpr FieldRow fields[] = {
    flag(AT(enabled), "no"),
    flag(AT(load_included), "no"),
    number(AT(multicast_ttl), 1, 255, "8"),
    text(AT(scope)),
    text(AT(service_attributes)).named("attributes"),
};
} // namespace rows::tn3270_slp_settings

namespace rows::tn3270_express_logon_settings {
using Block = NAP_TN3270_EXPRESS_LOGON_VERB;

inline constexpr FieldRow fields[] = {
    flag(AT(enabled), "no"),
    number(AT(port), 1, 65535, "2143"),
    text(AT(host)),
};
} // namespace rows::tn3270_express_logon_settings

namespace rows::tamrix_settings {
using Block = NAP_TAMRIX_DEFAULTS_VERB;

inline constexpr FieldRow fields[] = {
    address(AT(local_ip_address)),
    address(AT(local_subnet_mask)),
    local(AT(lu_template)),
    hex(AT(lu_map_mask), "FFFFFFFF"),
    text(AT(domain_name)),
    number(AT(port), 1, 65535, "397"),
    number(AT(connect_retry), 1, 32767, "300").in(Unit::Seconds),
    number(AT(connect_timeout), 1, 32767, "60").in(Unit::Seconds),
    number(AT(idle_timeout), 0, 0xFFFFFFFF, "0").in(Unit::Seconds),
};
} // namespace rows::tamrix_settings

/* clang-format off */
inline constexpr Settings settings[] = {
    {.name = "node", .query = NAP_QUERY_NODE, .block_size = sizeof(NAP_QUERY_NODE_VERB), .fields = rows::node_settings::fields, .status = rows::node_settings::status},
    {.name = "limits", .query = NAP_QUERY_NODE_LIMITS, .block_size = sizeof(NAP_QUERY_NODE_LIMITS_VERB), .fields = rows::limits_settings::fields, .status = rows::limits_settings::status},
    {.name = "defaults", .query = NAP_QUERY_DEFAULTS, .set = NAP_DEFINE_DEFAULTS, .block_size = sizeof(NAP_QUERY_DEFAULTS_VERB), .fields = rows::defaults_settings::fields},
    {.name = "tn3270", .query = NAP_QUERY_TN3270_DEFAULTS, .set = NAP_DEFINE_TN3270_DEFAULTS, .block_size = sizeof(NAP_TN3270_DEFAULTS_VERB), .fields = rows::tn3270_settings::fields},
    {.name = "tn3270_ssl_ldap", .query = NAP_QUERY_TN3270_SSL_LDAP, .set = NAP_DEFINE_TN3270_SSL_LDAP, .block_size = sizeof(NAP_TN3270_SSL_LDAP_VERB), .fields = rows::tn3270_ssl_ldap_settings::fields},
    {.name = "tn3270_slp", .query = NAP_QUERY_TN3270_SLP, .set = NAP_DEFINE_TN3270_SLP, .block_size = sizeof(NAP_TN3270_SLP_VERB), .fields = rows::tn3270_slp_settings::fields},
    {.name = "tn3270_express_logon", .query = NAP_QUERY_TN3270_EXPRESS_LOGON, .set = NAP_DEFINE_TN3270_EXPRESS_LOGON, .block_size = sizeof(NAP_TN3270_EXPRESS_LOGON_VERB), .fields = rows::tn3270_express_logon_settings::fields},
    {.name = "tamrix", .query = NAP_QUERY_TAMRIX_APPCIP_DEFAULTS, .set = NAP_DEFINE_TAMRIX_APPCIP_DEFAULTS, .reset = NAP_DELETE_TAMRIX_APPCIP_DEFAULTS, .block_size = sizeof(NAP_TAMRIX_DEFAULTS_VERB), .fields = rows::tamrix_settings::fields},
    {.name = "dlc_trace", .query = NAP_QUERY_DLC_TRACE, .set = NAP_SET_DLC_TRACE, .reset = NAP_REMOVE_DLC_TRACE, .block_size = sizeof(NAP_QUERY_TRACE_VERB), .fields = rows::dlc_trace_settings::fields},
    {.name = "trace_type", .query = NAP_QUERY_TRACE_TYPE, .set = NAP_SET_TRACE_TYPE, .block_size = sizeof(NAP_QUERY_TRACE_VERB), .fields = rows::trace_settings::fields},
    {.name = "cs_trace", .query = NAP_QUERY_CS_TRACE, .set = NAP_SET_CS_TRACE, .block_size = sizeof(NAP_QUERY_TRACE_VERB), .fields = rows::trace_settings::fields},
    {.name = "back_cs_trace", .query = NAP_QUERY_BCK_CS_TRACE, .set = NAP_SET_BCK_CS_TRACE, .block_size = sizeof(NAP_QUERY_TRACE_VERB), .fields = rows::trace_settings::fields},
    {.name = "tn_server_trace", .query = NAP_QUERY_TN_SERVER_TRACE, .set = NAP_SET_TN_SERVER_TRACE, .block_size = sizeof(NAP_QUERY_TRACE_VERB), .fields = rows::trace_settings::fields},
    {.name = "tn3270_slp_trace", .query = NAP_QUERY_TN3270_SLP_TRACE, .set = NAP_SET_TN3270_SLP_TRACE, .block_size = sizeof(NAP_QUERY_TRACE_VERB), .fields = rows::trace_settings::fields},
    {.name = "global_log_type", .query = NAP_QUERY_GLOBAL_LOG_TYPE, .set = NAP_SET_GLOBAL_LOG_TYPE, .block_size = sizeof(NAP_QUERY_LOGGING_VERB), .of_domain = true, .fields = rows::logging_settings::fields},
    {.name = "central_logging", .query = NAP_QUERY_CENTRAL_LOGGING, .set = NAP_SET_CENTRAL_LOGGING, .block_size = sizeof(NAP_QUERY_LOGGING_VERB), .of_domain = true, .fields = rows::logging_settings::fields},
    {.name = "central_logger", .query = NAP_QUERY_CENTRAL_LOGGER, .set = NAP_SET_CENTRAL_LOGGER, .block_size = sizeof(NAP_QUERY_LOGGING_VERB), .of_domain = true, .fields = rows::logging_settings::fields},
};
/* clang-format on */

/* The settings of that name: setting("tn3270").  An error of the compiler when there are none. */
consteval const Settings &setting(std::string_view name) {
    for (const Settings &row : settings) {
        if (name == row.name) {
            return row;
        }
    }
    throw "there are no settings of that name";
}

/* The field of that name.  An error of the compiler when there is none. */
consteval const FieldRow &field(const Settings &row, std::string_view name) {
    return named_field(row.fields, row.status, name);
}

} // namespace records

#undef AT

#endif
