/* Schemas of the TN3270 server, the TN redirector and SNA over IP. */
#ifndef SERVICES_H
#define SERVICES_H

#include "fieldrows.h"

#define AT(member)      FIELD_AT(Entry, member)
#define ITEM_AT(member) FIELD_AT(Item, member)

namespace records {

namespace rows::tn_access {
using Entry = NAP_TN_ACCESS_DATA;

inline constexpr FieldRow fields[] = {
    word(AT(address_type), client_words, "ip").key(),
    text(AT(client_address)).key("name"),
    text(AT(def_data.description)),
    number(AT(def_data.address_format), 0, 1, "0"),
};

using Item = NAP_TN_SESSION;

inline constexpr FieldRow item_fields[] = {
    number(ITEM_AT(port), 0, 65535, "0"),
    flag(ITEM_AT(tn3270_support), "yes").named("tn3270e"),
    flag(ITEM_AT(allow_specific_lu), "yes"),
    word(ITEM_AT(ssl_enabled), ssl_words, "no").named("ssl"),
    number(ITEM_AT(security_level), 0, 4, "0"),
    sna(ITEM_AT(display_lu_name)),
    sna(ITEM_AT(printer_lu_name)),
    text(ITEM_AT(listen_local_address)),
    text(ITEM_AT(description)),
};
} // namespace rows::tn_access

inline constexpr Schema tn_access = {
    .name = "tn3270_access",
    .lists = {{.list = NAP_QUERY_TN3270_ACCESS_DEF}},
    .define = NAP_DEFINE_TN3270_ACCESS,
    .remove = NAP_DELETE_TN3270_ACCESS,
    DEFINED_BY(NAP_TN_ACCESS_DATA, NAP_DEFINE_TN_ACCESS_VERB, address_type, def_data),
    .key = key_of(rows::tn_access::fields),
    .fields = rows::tn_access::fields,
    .nested = {.name = "session",
               .count = FIELD_AT(NAP_TN_ACCESS_DATA, def_data.num_sessions),
               .offset = offsetof(NAP_TN_ACCESS_DATA, def_data.sessions),
               .size = sizeof(NAP_TN_SESSION),
               .least = 0,
               .most = NAP_MAX_TN_SESSIONS,
               .cuts = true,
               .fields = rows::tn_access::item_fields},
};

namespace rows::tn_assoc {
using Entry = NAP_TN_ASSOC_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(display_lu_name)).key("name").required(),
    sna(AT(def_data.printer_lu_name)).required(),
    text(AT(def_data.description)),
};
} // namespace rows::tn_assoc

inline constexpr Schema tn_assoc = {
    .name = "tn3270_association",
    .lists = {{.list = NAP_QUERY_TN3270_ASSOCIATION}},
    .define = NAP_DEFINE_TN3270_ASSOCIATION,
    .remove = NAP_DELETE_TN3270_ASSOCIATION,
    DEFINED_BY(NAP_TN_ASSOC_DATA, NAP_DEFINE_TN_ASSOC_VERB, display_lu_name, def_data),
    .key = key_of(rows::tn_assoc::fields),
    .fields = rows::tn_assoc::fields,
};

namespace rows::tn_redirect {
using Entry = NAP_TN_REDIRECT_DATA;

inline constexpr FieldRow fields[] = {
    word(AT(address_type), client_words, "ip").key(),
    text(AT(client_address)).key("name"),
    number(AT(client_port), 1, 65535).key(),
    text(AT(def_data.description)),
    text(AT(def_data.host_address)),
    number(AT(def_data.host_port), 1, 65535, "23"),
    flag(AT(def_data.host_ssl), "no"),
    word(AT(def_data.client_ssl), ssl_words, "no"),
    number(AT(def_data.security_level), 0, 4, "0"),
};
} // namespace rows::tn_redirect

inline constexpr Schema tn_redirect = {
    .name = "tn_redirect",
    .lists = {{.list = NAP_QUERY_TN_REDIRECT_DEF}},
    .define = NAP_DEFINE_TN_REDIRECT,
    .remove = NAP_DELETE_TN_REDIRECT,
    DEFINED_BY(NAP_TN_REDIRECT_DATA, NAP_DEFINE_TN_REDIRECT_VERB, address_type, def_data),
    .key = key_of(rows::tn_redirect::fields),
    .fields = rows::tn_redirect::fields,
};

namespace rows::tamrix_session {
using Entry = NAP_TAMRIX_SESSION_DATA;

inline constexpr FieldRow fields[] = {
    number(AT(session_number), 1, 65535).key("name"),
};

inline constexpr FieldRow status[] = {
    sna(AT(lu_name)),
    fq(AT(fqplu_name)),
    state(AT(session_state)),
    sna(AT(mode_name)),
    flag(AT(secondary)),
    count(AT(local_port)),
    count(AT(remote_port)),
    address(AT(local_ip_address)),
    address(AT(remote_ip_address)),
    count(AT(bytes_sent)).in(Unit::Bytes),
    count(AT(bytes_received)).in(Unit::Bytes),
    count(AT(up_time)).in(Unit::Seconds),
};
} // namespace rows::tamrix_session

inline constexpr Schema tamrix_session = {
    .name = "tamrix_session",
    .lists = {{.list = NAP_QUERY_TAMRIX_APPCIP, .indication = NAP_TAMRIX_INDICATION}},
    .entry_size = sizeof(NAP_TAMRIX_SESSION_DATA),
    .det = rest_of<NAP_TAMRIX_SESSION_DATA>(FIELD_AT(NAP_TAMRIX_SESSION_DATA, lu_name)),
    .key = key_of(rows::tamrix_session::fields),
    .fields = rows::tamrix_session::fields,
    .status = rows::tamrix_session::status,
    .untold = true,
};

} // namespace records

#undef AT
#undef ITEM_AT

#endif
