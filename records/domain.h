/* Schemas of programs and security, and of what belongs to the domain: users, CPI-C side
 * information, RJE workstations and the nodes themselves. */
#ifndef DOMAIN_H
#define DOMAIN_H

#include "fieldrows.h"

#define AT(member)      FIELD_AT(Entry, member)
#define ITEM_AT(member) FIELD_AT(Item, member)

namespace records {

namespace rows::access_list {
using Entry = NAP_ACCESS_LIST_DATA;

inline constexpr FieldRow fields[] = {
    local(AT(list_name)).key("name").required(),
    text(AT(def_data.description)),
};

using Item = NAP_ACCESS_LIST_USER;

inline constexpr FieldRow item_fields[] = {
    local(ITEM_AT(user_name)).required(),
};
} // namespace rows::access_list

inline constexpr Schema access_list = {
    .name = "access_list",
    .lists = {{.list = NAP_QUERY_SECURITY_ACCESS_LIST}},
    .define = NAP_DEFINE_SECURITY_ACCESS_LIST,
    .remove = NAP_DELETE_SECURITY_ACCESS_LIST,
    DEFINED_BY(NAP_ACCESS_LIST_DATA, NAP_DEFINE_ACCESS_LIST_VERB, list_name, def_data),
    .key = key_of(rows::access_list::fields),
    .fields = rows::access_list::fields,
    .nested = {.name = "user",
               .count = FIELD_AT(NAP_ACCESS_LIST_DATA, def_data.num_users),
               .offset = offsetof(NAP_ACCESS_LIST_DATA, def_data.users),
               .size = sizeof(NAP_ACCESS_LIST_USER),
               .least = 0,
               .most = NAP_MAX_LIST_USERS,
               .cuts = true,
               .fields = rows::access_list::item_fields},
};

namespace rows::tp {
using Entry = NAP_TP_DATA;

inline constexpr FieldRow fields[] = {
    ebcdic(AT(tp_name)).key("name").required(),
    text(AT(def_data.description)),
    local(AT(def_data.list_name)),
    flag(AT(def_data.conv_security), "no"),
    flag(AT(def_data.security_access), "no"),
    word(AT(def_data.sync_level), sync_words, "confirm"),
    word(AT(def_data.conv_type), conversation_words, "either"),
    word(AT(def_data.duplex), tp_duplex_words, "either"),
    flag(AT(def_data.pip_allowed), "yes"),
    number(AT(def_data.pip_fields), 0, 65535, "65535"),
    number(AT(def_data.instance_limit), 0, 65535, "0"),
    number(AT(def_data.incoming_timeout), 0, 0xFFFFFFFF, "60").in(Unit::Seconds),
    flag(AT(def_data.enabled), "yes"),
};
} // namespace rows::tp

inline constexpr Schema tp = {
    .name = "tp",
    .lists = {{.list = NAP_QUERY_TP_DEFINITION}},
    .define = NAP_DEFINE_TP,
    .remove = NAP_DELETE_TP,
    DEFINED_BY(NAP_TP_DATA, NAP_DEFINE_TP_VERB, tp_name, def_data),
    .key = key_of(rows::tp::fields),
    .fields = rows::tp::fields,
};

namespace rows::tp_load {
using Entry = NAP_TP_LOAD_DATA;

inline constexpr FieldRow fields[] = {
    ebcdic(AT(tp_name)).key("name").required(),
    local(AT(lu_alias)).key(),
    text(AT(def_data.description)),
    text(AT(def_data.user_id)),
    text(AT(def_data.group_id)),
    number(AT(def_data.timeout), 0, 65535, "65535").in(Unit::Seconds),
    word(AT(def_data.tp_type), tp_type_words, "non_queued"),
    word(AT(def_data.style), style_words, "extended"),
    text(AT(def_data.path)),
    text(AT(def_data.arguments)),
    text(AT(def_data.environment)),
    text(AT(def_data.stdin_path)),
    text(AT(def_data.stdout_path)),
    text(AT(def_data.stderr_path)),
};
} // namespace rows::tp_load

inline constexpr Schema tp_load = {
    .name = "tp_load",
    .lists = {{.list = NAP_QUERY_TP_LOAD_INFO}},
    .define = NAP_DEFINE_TP_LOAD_INFO,
    .remove = NAP_DELETE_TP_LOAD_INFO,
    DEFINED_BY(NAP_TP_LOAD_DATA, NAP_DEFINE_TP_LOAD_VERB, tp_name, def_data),
    .key = key_of(rows::tp_load::fields),
    .fields = rows::tp_load::fields,
    .scope = Scope::TpLoad,
};

namespace rows::lu_lu_password {
using Entry = NAP_LU_LU_PASSWORD_DATA;

inline constexpr FieldRow fields[] = {
    local(AT(lu_alias)).key().required(),
    fq(AT(fqplu_name)).key("name").required(),
    text(AT(def_data.description)),
    bytes(AT(def_data.password)).secret(),
    word(AT(def_data.verification), verification_words, "enhanced"),
};
} // namespace rows::lu_lu_password

inline constexpr Schema lu_lu_password = {
    .name = "lu_lu_password",
    .lists = {{.list = NAP_QUERY_LU_LU_PASSWORD}},
    .define = NAP_DEFINE_LU_LU_PASSWORD,
    .remove = NAP_DELETE_LU_LU_PASSWORD,
    .owned = true,
    DEFINED_BY(NAP_LU_LU_PASSWORD_DATA, NAP_DEFINE_LU_LU_PASSWORD_VERB, lu_alias, def_data),
    .key = key_of(rows::lu_lu_password::fields),
    .fields = rows::lu_lu_password::fields,
};

namespace rows::userid_password {
using Entry = NAP_USERID_PASSWORD_DATA;

inline constexpr FieldRow fields[] = {
    ebcdic(AT(user_id)).key("name").required(),
    text(AT(def_data.description)),
    ebcdic(AT(def_data.profile)),
    ebcdic(AT(def_data.password)).compared(),
};
} // namespace rows::userid_password

inline constexpr Schema userid_password = {
    .name = "userid_password",
    .lists = {{.list = NAP_QUERY_USERID_PASSWORD}},
    .define = NAP_DEFINE_USERID_PASSWORD,
    .remove = NAP_DELETE_USERID_PASSWORD,
    DEFINED_BY(NAP_USERID_PASSWORD_DATA, NAP_DEFINE_USERID_PASSWORD_VERB, user_id, def_data),
    .key = key_of(rows::userid_password::fields),
    .fields = rows::userid_password::fields,
};

namespace rows::user {
using Entry = NAP_USER_DATA;

inline constexpr FieldRow fields[] = {
    text(AT(user_name)).key("name").required(),
    text(AT(def_data.description)),
    flag(AT(def_data.is_group), "no"),
    flag(AT(def_data.may_view_status), "yes"),
    flag(AT(def_data.may_change_keys), "yes"),
    flag(AT(def_data.may_change_sessions), "no"),
    number(AT(def_data.max_sessions), 0, 65535, "0").in(Unit::Sessions),
};

using Item = NAP_USER_SESSION;

inline constexpr FieldRow item_fields[] = {
    local(ITEM_AT(session_name)).required(),
    word(ITEM_AT(session_class), emulator_words, "3270"),
    word(ITEM_AT(session_type), terminal_words, "display"),
    word(ITEM_AT(model), screen_words, "display_2"),
    sna(ITEM_AT(lu_name)),
    local(ITEM_AT(lu_alias)),
    fq(ITEM_AT(fqplu_name)),
    sna(ITEM_AT(mode_name)),
    text(ITEM_AT(description)),
};
} // namespace rows::user

inline constexpr Schema user = {
    .name = "user",
    .lists = {{.list = NAP_QUERY_EMULATOR_USER_DEF}},
    .define = NAP_DEFINE_EMULATOR_USER,
    .remove = NAP_DELETE_EMULATOR_USER,
    DEFINED_BY(NAP_USER_DATA, NAP_DEFINE_USER_VERB, user_name, def_data),
    .key = key_of(rows::user::fields),
    .fields = rows::user::fields,
    .nested = {.name = "session",
               .count = FIELD_AT(NAP_USER_DATA, def_data.num_sessions),
               .offset = offsetof(NAP_USER_DATA, def_data.sessions),
               .size = sizeof(NAP_USER_SESSION),
               .least = 0,
               .most = NAP_MAX_USER_SESSIONS,
               .cuts = true,
               .fields = rows::user::item_fields},
    .scope = Scope::Domain,
};

namespace rows::cpic {
using Entry = NAP_CPIC_DATA;

inline constexpr FieldRow fields[] = {
    local(AT(sym_dest_name)).key("name").required(),
    text(AT(def_data.description)),
    local(AT(def_data.lu_alias)),
    partner(AT(def_data.partner_lu_name)).required(),
    flag(AT(def_data.partner_is_alias), "no"),
    flag(AT(def_data.tp_is_service), "no"),
    word(AT(def_data.security_type), cpic_words, "none"),
    sna(AT(def_data.mode_name)),
    ebcdic(AT(def_data.tp_name)).required(),
    ebcdic(AT(def_data.user_id)),
    ebcdic(AT(def_data.password)).secret(),
};
} // namespace rows::cpic

inline constexpr Schema cpic = {
    .name = "cpic",
    .lists = {{.list = NAP_QUERY_CPIC_SIDE_INFO}},
    .define = NAP_DEFINE_CPIC_SIDE_INFO,
    .remove = NAP_DELETE_CPIC_SIDE_INFO,
    DEFINED_BY(NAP_CPIC_DATA, NAP_DEFINE_CPIC_VERB, sym_dest_name, def_data),
    .key = key_of(rows::cpic::fields),
    .fields = rows::cpic::fields,
    .scope = Scope::Domain,
};

namespace rows::rje {
using Entry = NAP_RJE_DATA;

inline constexpr FieldRow fields[] = {
    local(AT(workstation_name)).key("name").required(),
    text(AT(def_data.description)),
    text(AT(def_data.run_on_node)),
    text(AT(def_data.user_name)),
    text(AT(def_data.group_name)),
};

inline constexpr FieldRow item_fields[] = {
    sna({"lu_name", 0, sizeof(NAP_RJE_DEF::lu_names[0])}).required(),
};
} // namespace rows::rje

inline constexpr Schema rje = {
    .name = "rje",
    .lists = {{.list = NAP_QUERY_RJE_WKSTN_DEF}},
    .define = NAP_DEFINE_RJE_WKSTN,
    .remove = NAP_DELETE_RJE_WKSTN,
    DEFINED_BY(NAP_RJE_DATA, NAP_DEFINE_RJE_VERB, workstation_name, def_data),
    .key = key_of(rows::rje::fields),
    .fields = rows::rje::fields,
    .nested = {.name = "lu",
               .count = FIELD_AT(NAP_RJE_DATA, def_data.num_lus),
               .offset = offsetof(NAP_RJE_DATA, def_data.lu_names),
               .size = sizeof(NAP_RJE_DEF::lu_names[0]),
               .least = 1,
               .most = NAP_MAX_RJE_LUS,
               .cuts = false,
               .fields = rows::rje::item_fields},
    .scope = Scope::Domain,
};

namespace rows::domain_node {
using Entry = NAP_NODE_ALL_DATA;

inline constexpr FieldRow fields[] = {
    text(AT(node_name)).key("name").required(),
};

inline constexpr FieldRow status[] = {
    word(AT(info.node_state), node_state_words),
    hex(AT(info.server_flags)),
    fq(AT(info.fq_cp_name)),
    local(AT(info.cp_alias)),
    word(AT(info.node_type), node_words),
    text(AT(info.description)),
    text(AT(info.release)),
    count(AT(info.up_time)).in(Unit::Hundredths),
};
} // namespace rows::domain_node

/* The nodes of the domain, and those of them that may hold its configuration. */
inline constexpr Schema domain_node = {
    .name = "domain_node",
    .lists = {{.list = NAP_QUERY_NODE_ALL}},
    .entry_size = sizeof(NAP_NODE_ALL_DATA),
    .det = FIELD_AT(NAP_NODE_ALL_DATA, info),
    .key = key_of(rows::domain_node::fields),
    .fields = rows::domain_node::fields,
    .status = rows::domain_node::status,
    .scope = Scope::Domain,
    .untold = true,
};

inline constexpr Schema domain_server = {
    .name = "domain_server",
    .lists = {{.list = NAP_QUERY_SNA_NET}},
    .entry_size = sizeof(NAP_NODE_ALL_DATA),
    .det = FIELD_AT(NAP_NODE_ALL_DATA, info),
    .key = key_of(rows::domain_node::fields),
    .fields = rows::domain_node::fields,
    .status = rows::domain_node::status,
    .scope = Scope::Domain,
    .untold = true,
};

} // namespace records

#undef AT
#undef ITEM_AT

#endif
