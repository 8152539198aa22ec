/* What is peculiar to programs, security and the domain. */
#include "classhooks.h"
#include "engine.h"
#include "nofcopy.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

/* 65535 stands for any number of program initialisation parameters. */
Result check_tp(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    constexpr NB_USHORT MOST = 16;
    constexpr NB_USHORT ANY = 65535;
    const auto entry = nap_copy<NAP_TP_DATA>(bytes).def_data;
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
    const auto entry = nap_copy<NAP_ACCESS_LIST_DATA>(bytes).def_data;
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
    const auto entry = nap_copy<NAP_USER_DATA>(bytes).def_data;
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
    const auto entry = nap_copy<NAP_CPIC_DATA>(bytes).def_data;
    FieldRow qualified = field(records::cpic, "partner_lu_name");
    qualified.kind = records::FieldKind::NameFq;
    const bool alias = records::check_field(qualified, bytes) != 0; /* "K" is an EBCDIC period */
    const bool named = entry.security_type == NAP_CPIC_SECURITY_PROGRAM ||
                       entry.security_type == NAP_CPIC_SECURITY_STRONG;
    if (alias != (entry.partner_is_alias != 0)) {
        return bad_parameter(NAP_INVALID_NAME);
    }
    return named && is_blank(KeyKind::Ebcdic, entry.user_id, sizeof entry.user_id)
               ? bad_parameter(NAP_INVALID_VALUE)
               : GOOD;
}

constexpr ClassRow classes[] = {
    {.id = CLASS_ACCESS_LIST,
     .schema = &records::access_list,
     .hooks = {.check = check_access_list}},
    {.id = CLASS_TP_DEF,
     .schema = &records::tp,
     .refs = {{.to = CLASS_ACCESS_LIST,
               .flags = REF_OPTIONAL,
               .by = &field(records::tp, "list_name")}},
     .hooks = {.check = check_tp}},
    {.id = CLASS_TP_LOAD, .schema = &records::tp_load},
    {.id = CLASS_LU_LU_PASSWORD,
     .schema = &records::lu_lu_password,
     .refs = {{.to = CLASS_LOCAL_LU,
               .flags = REF_BY_ALIAS | REF_CARRIED,
               .by = &field(records::lu_lu_password, "lu_alias")}},
     .hooks = {.check = check_password<CLASS_LU_LU_PASSWORD>}},
    {.id = CLASS_USERID_PASSWORD,
     .schema = &records::userid_password,
     .hooks = {.check = check_password<CLASS_USERID_PASSWORD>}},
    {.id = CLASS_USER, .schema = &records::user, .hooks = {.check = check_user}},
    {.id = CLASS_CPIC, .schema = &records::cpic, .hooks = {.check = check_cpic}},
    {.id = CLASS_RJE, .schema = &records::rje},
};

} // namespace

std::span<const ClassRow> domain_classes() {
    return classes;
}

} // namespace node
