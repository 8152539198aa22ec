/* What is peculiar to TN3270, programs, security and the domain. */
#include "classhooks.h"
#include "engine.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

template <class Record> Result check_client(const Record &entry) {
    const bool anybody = entry.address_type == NAP_TN_DEFAULT_RECORD;
    return anybody == (entry.client_address[0] == 0) ? GOOD : bad_parameter(NAP_INVALID_NAME);
}

bool unknown_lu(const Engine &engine, const NB_UCHAR *name) {
    return !is_blank8(name) && !is_lu_or_pool(engine, name);
}

Result check_tn_access(const Engine &engine, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = from_entry<NAP_TN_ACCESS_DATA>(bytes);
    if (engine.node_record().tn3270_support == 0) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    for (NB_USHORT at = 0; at < entry.def_data.num_sessions; at++) {
        const NAP_TN_SESSION session = entry.def_data.sessions[at];
        if (unknown_lu(engine, session.display_lu_name) ||
            unknown_lu(engine, session.printer_lu_name)) {
            return bad_parameter(NAP_UNKNOWN_OWNER);
        }
        for (NB_USHORT before = 0; before < at; before++) {
            const NAP_TN_SESSION other = entry.def_data.sessions[before];
            if (other.port == session.port &&
                same_name(other.listen_local_address, session.listen_local_address,
                          sizeof session.listen_local_address)) {
                return bad_parameter(NAP_INVALID_VALUE);
            }
        }
    }
    return check_client(entry);
}

Result check_tn_assoc(const Engine &engine, const NB_UCHAR *, const Resource *) {
    return engine.node_record().tn3270_support != 0 ? GOOD : Result{NAP_NOT_SUPPORTED, 0};
}

Result check_tn_redirect(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = from_entry<NAP_TN_REDIRECT_DATA>(bytes);
    return entry.def_data.host_address[0] != 0 ? check_client(entry)
                                               : bad_parameter(NAP_INVALID_VALUE);
}

NB_UCHAR report_tamrix(const Resource &resource) {
    return Engine::get<NAP_TAMRIX_SESSION_DATA>(resource).session_state;
}

/* 65535 stands for any number of program initialisation parameters. */
Result check_tp(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    constexpr NB_USHORT MOST = 16;
    constexpr NB_USHORT ANY = 65535;
    const auto entry = from_entry<NAP_TP_DATA>(bytes).def_data;
    const bool fields_good = entry.pip_fields <= MOST || entry.pip_fields == ANY;
    const bool list_good = entry.security_access == 0 ||
                           !is_blank(KeyKind::Local, entry.list_name, sizeof entry.list_name);
    return fields_good && list_good ? GOOD : bad_parameter(NAP_INVALID_VALUE);
}

template <ClassId ID>
Result check_password(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    for (const FieldRow &field : class_row(ID).schema->fields) {
        if (field.has(FIELD_SECRET) && is_empty_field(field, bytes)) {
            return bad_parameter(NAP_INVALID_VALUE);
        }
    }
    return GOOD;
}

Result check_access_list(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = from_entry<NAP_ACCESS_LIST_DATA>(bytes).def_data;
    for (NB_USHORT at = 0; at < entry.num_users; at++) {
        for (NB_USHORT before = 0; before < at; before++) {
            if (same_name(entry.users[at].user_name, entry.users[before].user_name, 10)) {
                return bad_parameter(NAP_DUPLICATE_NAME);
            }
        }
    }
    return GOOD;
}

/* A 3270 session needs an LU or a pool, a 5250 session the system that it reaches. */
Result check_user(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = from_entry<NAP_USER_DATA>(bytes).def_data;
    for (NB_USHORT at = 0; at < entry.num_sessions; at++) {
        const NAP_USER_SESSION session = entry.sessions[at];
        const bool over_lu = session.session_class == NAP_USER_SESSION_3270;
        const bool missing = over_lu ? is_blank8(session.lu_name)
                                     : is_blank(KeyKind::Ebcdic, session.fqplu_name, 17);
        if (missing) {
            return bad_parameter(NAP_INVALID_NAME);
        }
        for (NB_USHORT before = 0; before < at; before++) {
            if (same_name(session.session_name, entry.sessions[before].session_name, 8)) {
                return bad_parameter(NAP_DUPLICATE_NAME);
            }
        }
    }
    return GOOD;
}

Result check_cpic(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = from_entry<NAP_CPIC_DATA>(bytes).def_data;
    constexpr NB_UCHAR PERIOD = 0x4B;
    const NB_UCHAR *end = entry.partner_lu_name + sizeof entry.partner_lu_name;
    const bool alias = std::find(entry.partner_lu_name, end, PERIOD) == end;
    const bool named = entry.security_type == NAP_CPIC_SECURITY_PROGRAM ||
                       entry.security_type == NAP_CPIC_SECURITY_STRONG;
    if (alias != (entry.partner_is_alias != 0)) {
        return bad_parameter(NAP_INVALID_NAME);
    }
    return named && is_blank(KeyKind::Ebcdic, entry.user_id, sizeof entry.user_id)
               ? bad_parameter(NAP_INVALID_VALUE)
               : GOOD;
}

} // namespace

namespace {

constexpr ClassRow classes[] = {
    {.id = CLASS_TN_ACCESS, .schema = &records::tn_access, .hooks = {.check = check_tn_access}},
    {.id = CLASS_TN_ASSOC, .schema = &records::tn_assoc, .hooks = {.check = check_tn_assoc}},
    {.id = CLASS_TN_REDIRECT,
     .schema = &records::tn_redirect,
     .hooks = {.check = check_tn_redirect}},
    {.id = CLASS_TAMRIX_SESSION,
     .schema = &records::tamrix_session,
     .untold = true,
     .hooks = {.busy = never_busy, .report = report_tamrix}},
    {.id = CLASS_ACCESS_LIST,
     .schema = &records::access_list,
     .hooks = {.check = check_access_list}},
    {.id = CLASS_TP_DEF,
     .schema = &records::tp,
     .refs = {{.to = CLASS_ACCESS_LIST,
               .flags = REF_OPTIONAL,
               .by = &field(records::tp, "list_name")}},
     .hooks = {.check = check_tp}},
    {.id = CLASS_TP_LOAD, .schema = &records::tp_load, .scope = Scope::TpLoad},
    {.id = CLASS_LU_LU_PASSWORD,
     .schema = &records::lu_lu_password,
     .refs = {{.to = CLASS_LOCAL_LU,
               .flags = REF_BY_ALIAS | REF_CARRIED,
               .by = &field(records::lu_lu_password, "lu_alias")}},
     .hooks = {.check = check_password<CLASS_LU_LU_PASSWORD>}},
    {.id = CLASS_USERID_PASSWORD,
     .schema = &records::userid_password,
     .hooks = {.check = check_password<CLASS_USERID_PASSWORD>}},
    {.id = CLASS_USER,
     .schema = &records::user,
     .scope = Scope::Domain,
     .hooks = {.check = check_user}},
    {.id = CLASS_CPIC,
     .schema = &records::cpic,
     .scope = Scope::Domain,
     .hooks = {.check = check_cpic}},
    {.id = CLASS_RJE, .schema = &records::rje, .scope = Scope::Domain},
};

} // namespace

std::span<const ClassRow> domain_classes() {
    return classes;
}

} // namespace node
