/* Rows of programs and security, and those that belong to the domain. */
#include "noderow.h"

namespace node {

namespace {

constexpr KeyPart PROGRAM = {KeyKind::Ebcdic, sizeof(NAP_TP_DATA::tp_name)};

constexpr FieldRow access_list_fields[] = {
    LOCAL(NAP_ACCESS_LIST_DATA, list_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_ACCESS_LIST_DATA, def_data.description, "description"),
};

constexpr FieldRow access_list_user_fields[] = {
    LOCAL(NAP_ACCESS_LIST_USER, user_name, "user_name", FIELD_REQUIRED),
};

ClassRow access_list_row() {
    return {
        .id = CLASS_ACCESS_LIST,
        .name = "access_list",
        .lists = {{NAP_QUERY_SECURITY_ACCESS_LIST, 0, 0, 0}},
        .define = NAP_DEFINE_SECURITY_ACCESS_LIST,
        .remove = NAP_DELETE_SECURITY_ACCESS_LIST,
        .entry_size = sizeof(NAP_ACCESS_LIST_DATA),
        .define_size = sizeof(NAP_DEFINE_ACCESS_LIST_VERB),
        .key = {{KeyKind::Local, 14}},
        .def = PART(NAP_ACCESS_LIST_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_ACCESS_LIST_VERB, def_data),
        .fields = TABLE(access_list_fields),
        .nested = {"user", COUNT_IN(NAP_ACCESS_LIST_DATA, def_data.num_users),
                   offsetof(NAP_ACCESS_LIST_DATA, def_data.users), sizeof(NAP_ACCESS_LIST_USER), 0,
                   NAP_MAX_LIST_USERS, true, TABLE(access_list_user_fields)},
        .hooks = hooks::access_list,
    };
}

constexpr FieldRow tp_fields[] = {
    EBCDIC(NAP_TP_DATA, tp_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_TP_DATA, def_data.description, "description"),
    LOCAL(NAP_TP_DATA, def_data.list_name, "list_name", 0),
    FLAG(NAP_TP_DATA, def_data.conv_security, "conv_security", "no"),
    FLAG(NAP_TP_DATA, def_data.security_access, "security_access", "no"),
    WORD(NAP_TP_DATA, def_data.sync_level, "sync_level", sync_words, "confirm"),
    WORD(NAP_TP_DATA, def_data.conv_type, "conv_type", conversation_words, "either"),
    WORD(NAP_TP_DATA, def_data.duplex, "duplex", tp_duplex_words, "either"),
    FLAG(NAP_TP_DATA, def_data.pip_allowed, "pip_allowed", "yes"),
    NUMBER(NAP_TP_DATA, def_data.pip_fields, "pip_fields", 0, 65535, "65535"),
    NUMBER(NAP_TP_DATA, def_data.instance_limit, "instance_limit", 0, 65535, "0"),
    NUMBER(NAP_TP_DATA, def_data.incoming_timeout, "incoming_timeout", 0, 0xFFFFFFFF, "60"),
    FLAG(NAP_TP_DATA, def_data.enabled, "enabled", "yes"),
};

ClassRow tp_row() {
    return {
        .id = CLASS_TP_DEF,
        .name = "tp",
        .lists = {{NAP_QUERY_TP_DEFINITION, 0, 0, 0}},
        .define = NAP_DEFINE_TP,
        .remove = NAP_DELETE_TP,
        .entry_size = sizeof(NAP_TP_DATA),
        .define_size = sizeof(NAP_DEFINE_TP_VERB),
        .key = {PROGRAM},
        .def = PART(NAP_TP_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_TP_VERB, def_data),
        .fields = TABLE(tp_fields),
        .refs = {{CLASS_ACCESS_LIST, REF_OPTIONAL, offsetof(NAP_TP_DATA, def_data.list_name)}},
        .ref_count = 1,
        .hooks = hooks::tp,
    };
}

constexpr FieldRow tp_load_fields[] = {
    EBCDIC(NAP_TP_LOAD_DATA, tp_name, "name", FIELD_KEY | FIELD_REQUIRED),
    LOCAL(NAP_TP_LOAD_DATA, lu_alias, "lu_alias", FIELD_KEY),
    TEXT(NAP_TP_LOAD_DATA, def_data.description, "description"),
    TEXT(NAP_TP_LOAD_DATA, def_data.user_id, "user_id"),
    TEXT(NAP_TP_LOAD_DATA, def_data.group_id, "group_id"),
    NUMBER(NAP_TP_LOAD_DATA, def_data.timeout, "timeout", 0, 65535, "65535"),
    WORD(NAP_TP_LOAD_DATA, def_data.tp_type, "tp_type", tp_type_words, "non_queued"),
    WORD(NAP_TP_LOAD_DATA, def_data.style, "style", style_words, "extended"),
    TEXT(NAP_TP_LOAD_DATA, def_data.path, "path"),
    TEXT(NAP_TP_LOAD_DATA, def_data.arguments, "arguments"),
    TEXT(NAP_TP_LOAD_DATA, def_data.environment, "environment"),
    TEXT(NAP_TP_LOAD_DATA, def_data.stdin_path, "stdin_path"),
    TEXT(NAP_TP_LOAD_DATA, def_data.stdout_path, "stdout_path"),
    TEXT(NAP_TP_LOAD_DATA, def_data.stderr_path, "stderr_path"),
};

ClassRow tp_load_row() {
    return {
        .id = CLASS_TP_LOAD,
        .name = "tp_load",
        .scope = Scope::TpLoad,
        .lists = {{NAP_QUERY_TP_LOAD_INFO, 0, 0, 0}},
        .define = NAP_DEFINE_TP_LOAD_INFO,
        .remove = NAP_DELETE_TP_LOAD_INFO,
        .entry_size = sizeof(NAP_TP_LOAD_DATA),
        .define_size = sizeof(NAP_DEFINE_TP_LOAD_VERB),
        .key = {PROGRAM, LOCAL8},
        .def = PART(NAP_TP_LOAD_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_TP_LOAD_VERB, def_data),
        .fields = TABLE(tp_load_fields),
    };
}

constexpr FieldRow lu_lu_password_fields[] = {
    LOCAL(NAP_LU_LU_PASSWORD_DATA, lu_alias, "lu_alias", FIELD_KEY | FIELD_REQUIRED),
    FQ(NAP_LU_LU_PASSWORD_DATA, fqplu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_LU_LU_PASSWORD_DATA, def_data.description, "description"),
    BYTES(NAP_LU_LU_PASSWORD_DATA, def_data.password, "password", FIELD_SECRET),
    WORD(NAP_LU_LU_PASSWORD_DATA, def_data.verification, "verification", verification_words,
         "enhanced"),
};

ClassRow lu_lu_password_row() {
    return {
        .id = CLASS_LU_LU_PASSWORD,
        .name = "lu_lu_password",
        .lists = {{NAP_QUERY_LU_LU_PASSWORD, 0, 0, 0}},
        .define = NAP_DEFINE_LU_LU_PASSWORD,
        .remove = NAP_DELETE_LU_LU_PASSWORD,
        .entry_size = sizeof(NAP_LU_LU_PASSWORD_DATA),
        .define_size = sizeof(NAP_DEFINE_LU_LU_PASSWORD_VERB),
        .key = {LOCAL8, SNA17},
        .def = PART(NAP_LU_LU_PASSWORD_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_LU_LU_PASSWORD_VERB, def_data),
        .fields = TABLE(lu_lu_password_fields),
        .refs = {{CLASS_LOCAL_LU, REF_BY_ALIAS | REF_CARRIED,
                  offsetof(NAP_LU_LU_PASSWORD_DATA, lu_alias)}},
        .ref_count = 1,
        .hooks = hooks::lu_lu_password,
    };
}

constexpr FieldRow userid_password_fields[] = {
    EBCDIC(NAP_USERID_PASSWORD_DATA, user_id, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_USERID_PASSWORD_DATA, def_data.description, "description"),
    EBCDIC(NAP_USERID_PASSWORD_DATA, def_data.profile, "profile", 0),
    EBCDIC(NAP_USERID_PASSWORD_DATA, def_data.password, "password", FIELD_SECRET),
};

ClassRow userid_password_row() {
    return {
        .id = CLASS_USERID_PASSWORD,
        .name = "userid_password",
        .lists = {{NAP_QUERY_USERID_PASSWORD, 0, 0, 0}},
        .define = NAP_DEFINE_USERID_PASSWORD,
        .remove = NAP_DELETE_USERID_PASSWORD,
        .entry_size = sizeof(NAP_USERID_PASSWORD_DATA),
        .define_size = sizeof(NAP_DEFINE_USERID_PASSWORD_VERB),
        .key = {{KeyKind::Ebcdic, 10}},
        .def = PART(NAP_USERID_PASSWORD_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_USERID_PASSWORD_VERB, def_data),
        .fields = TABLE(userid_password_fields),
        .hooks = hooks::userid_password,
    };
}

constexpr FieldRow user_fields[] = {
    TEXT_KEY(NAP_USER_DATA, user_name, "name", FIELD_REQUIRED),
    TEXT(NAP_USER_DATA, def_data.description, "description"),
    FLAG(NAP_USER_DATA, def_data.is_group, "is_group", "no"),
    FLAG(NAP_USER_DATA, def_data.may_view_status, "may_view_status", "yes"),
    FLAG(NAP_USER_DATA, def_data.may_change_keys, "may_change_keys", "yes"),
    FLAG(NAP_USER_DATA, def_data.may_change_sessions, "may_change_sessions", "no"),
    NUMBER(NAP_USER_DATA, def_data.max_sessions, "max_sessions", 0, 65535, "0"),
};

constexpr FieldRow user_session_fields[] = {
    LOCAL(NAP_USER_SESSION, session_name, "session_name", FIELD_REQUIRED),
    WORD(NAP_USER_SESSION, session_class, "session_class", emulator_words, "3270"),
    WORD(NAP_USER_SESSION, session_type, "session_type", terminal_words, "display"),
    WORD(NAP_USER_SESSION, model, "model", screen_words, "display_2"),
    SNA(NAP_USER_SESSION, lu_name, "lu_name", 0),
    LOCAL(NAP_USER_SESSION, lu_alias, "lu_alias", 0),
    FQ(NAP_USER_SESSION, fqplu_name, "fqplu_name", 0),
    SNA(NAP_USER_SESSION, mode_name, "mode_name", 0),
    TEXT(NAP_USER_SESSION, description, "description"),
};

ClassRow user_row() {
    return {
        .id = CLASS_USER,
        .name = "user",
        .scope = Scope::Domain,
        .lists = {{NAP_QUERY_EMULATOR_USER_DEF, 0, 0, 0}},
        .define = NAP_DEFINE_EMULATOR_USER,
        .remove = NAP_DELETE_EMULATOR_USER,
        .entry_size = sizeof(NAP_USER_DATA),
        .define_size = sizeof(NAP_DEFINE_USER_VERB),
        .key = {{KeyKind::Local, 32}},
        .def = PART(NAP_USER_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_USER_VERB, def_data),
        .fields = TABLE(user_fields),
        .nested = {"session", COUNT_IN(NAP_USER_DATA, def_data.num_sessions),
                   offsetof(NAP_USER_DATA, def_data.sessions), sizeof(NAP_USER_SESSION), 0,
                   NAP_MAX_USER_SESSIONS, true, TABLE(user_session_fields)},
        .hooks = hooks::user,
    };
}

constexpr FieldRow cpic_fields[] = {
    LOCAL(NAP_CPIC_DATA, sym_dest_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_CPIC_DATA, def_data.description, "description"),
    LOCAL(NAP_CPIC_DATA, def_data.lu_alias, "lu_alias", 0),
    PARTNER(NAP_CPIC_DATA, def_data.partner_lu_name, "partner_lu_name", FIELD_REQUIRED),
    FLAG(NAP_CPIC_DATA, def_data.partner_is_alias, "partner_is_alias", "no"),
    FLAG(NAP_CPIC_DATA, def_data.tp_is_service, "tp_is_service", "no"),
    WORD(NAP_CPIC_DATA, def_data.security_type, "security_type", cpic_words, "none"),
    SNA(NAP_CPIC_DATA, def_data.mode_name, "mode_name", 0),
    EBCDIC(NAP_CPIC_DATA, def_data.tp_name, "tp_name", FIELD_REQUIRED),
    EBCDIC(NAP_CPIC_DATA, def_data.user_id, "user_id", 0),
    EBCDIC(NAP_CPIC_DATA, def_data.password, "password", FIELD_SECRET),
};

ClassRow cpic_row() {
    return {
        .id = CLASS_CPIC,
        .name = "cpic",
        .scope = Scope::Domain,
        .lists = {{NAP_QUERY_CPIC_SIDE_INFO, 0, 0, 0}},
        .define = NAP_DEFINE_CPIC_SIDE_INFO,
        .remove = NAP_DELETE_CPIC_SIDE_INFO,
        .entry_size = sizeof(NAP_CPIC_DATA),
        .define_size = sizeof(NAP_DEFINE_CPIC_VERB),
        .key = {LOCAL8},
        .def = PART(NAP_CPIC_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_CPIC_VERB, def_data),
        .fields = TABLE(cpic_fields),
        .hooks = hooks::cpic,
    };
}

constexpr FieldRow rje_fields[] = {
    LOCAL(NAP_RJE_DATA, workstation_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_RJE_DATA, def_data.description, "description"),
    TEXT(NAP_RJE_DATA, def_data.run_on_node, "run_on_node"),
    TEXT(NAP_RJE_DATA, def_data.user_name, "user_name"),
    TEXT(NAP_RJE_DATA, def_data.group_name, "group_name"),
};

constexpr FieldRow rje_lu_fields[] = {
    {"lu_name", 0, 8, FieldKind::NameA, FIELD_REQUIRED, 0, 0, nullptr, nullptr},
};

ClassRow rje_row() {
    return {
        .id = CLASS_RJE,
        .name = "rje",
        .scope = Scope::Domain,
        .lists = {{NAP_QUERY_RJE_WKSTN_DEF, 0, 0, 0}},
        .define = NAP_DEFINE_RJE_WKSTN,
        .remove = NAP_DELETE_RJE_WKSTN,
        .entry_size = sizeof(NAP_RJE_DATA),
        .define_size = sizeof(NAP_DEFINE_RJE_VERB),
        .key = {{KeyKind::Local, 4}},
        .def = PART(NAP_RJE_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_RJE_VERB, def_data),
        .fields = TABLE(rje_fields),
        .nested = {"lu", COUNT_IN(NAP_RJE_DATA, def_data.num_lus),
                   offsetof(NAP_RJE_DATA, def_data.lu_names), sizeof(NAP_RJE_DEF::lu_names[0]), 1,
                   NAP_MAX_RJE_LUS, false, TABLE(rje_lu_fields)},
    };
}

KEYS_STAND(NAP_ACCESS_LIST_DATA, NAP_DEFINE_ACCESS_LIST_VERB, list_name);
KEYS_STAND(NAP_TP_DATA, NAP_DEFINE_TP_VERB, tp_name);
KEYS_STAND(NAP_TP_LOAD_DATA, NAP_DEFINE_TP_LOAD_VERB, tp_name);
KEYS_STAND(NAP_LU_LU_PASSWORD_DATA, NAP_DEFINE_LU_LU_PASSWORD_VERB, lu_alias);
KEYS_STAND(NAP_USERID_PASSWORD_DATA, NAP_DEFINE_USERID_PASSWORD_VERB, user_id);
KEYS_STAND(NAP_USER_DATA, NAP_DEFINE_USER_VERB, user_name);
KEYS_STAND(NAP_CPIC_DATA, NAP_DEFINE_CPIC_VERB, sym_dest_name);
KEYS_STAND(NAP_RJE_DATA, NAP_DEFINE_RJE_VERB, workstation_name);

} // namespace

void add_domain_rows(ClassRow *table) {
    for (const ClassRow &row : {access_list_row(), tp_row(), tp_load_row(), lu_lu_password_row(),
                                userid_password_row(), user_row(), cpic_row(), rje_row()}) {
        table[row.id] = row;
    }
}

} // namespace node
