/* Rows of the TN3270 server, the TN redirector and SNA over IP. */
#include "noderow.h"

namespace node {

namespace {

#define CLIENT_KEY(record, last)                                                                   \
    WORD(record, address_type, "address_type", client_words, "ip", FIELD_KEY),                     \
        TEXT_KEY(record, client_address, last)

constexpr KeyPart CLIENT = {KeyKind::Local, sizeof(NAP_TN_ACCESS_DATA::client_address)};

constexpr FieldRow tn_access_fields[] = {
    CLIENT_KEY(NAP_TN_ACCESS_DATA, "name"),
    TEXT(NAP_TN_ACCESS_DATA, def_data.description, "description"),
    NUMBER(NAP_TN_ACCESS_DATA, def_data.address_format, "address_format", 0, 1, "0"),
};

constexpr FieldRow tn_session_fields[] = {
    NUMBER(NAP_TN_SESSION, port, "port", 0, 65535, "0"),
    FLAG(NAP_TN_SESSION, tn3270_support, "tn3270e", "yes"),
    FLAG(NAP_TN_SESSION, allow_specific_lu, "allow_specific_lu", "yes"),
    WORD(NAP_TN_SESSION, ssl_enabled, "ssl", ssl_words, "no"),
    NUMBER(NAP_TN_SESSION, security_level, "security_level", 0, 4, "0"),
    SNA(NAP_TN_SESSION, display_lu_name, "display_lu_name", 0),
    SNA(NAP_TN_SESSION, printer_lu_name, "printer_lu_name", 0),
    TEXT(NAP_TN_SESSION, listen_local_address, "listen_local_address"),
    TEXT(NAP_TN_SESSION, description, "description"),
};

ClassRow tn_access_row() {
    return {
        .id = CLASS_TN_ACCESS,
        .name = "tn3270_access",
        .lists = {{NAP_QUERY_TN3270_ACCESS_DEF, 0, 0, 0}},
        .define = NAP_DEFINE_TN3270_ACCESS,
        .remove = NAP_DELETE_TN3270_ACCESS,
        .entry_size = sizeof(NAP_TN_ACCESS_DATA),
        .define_size = sizeof(NAP_DEFINE_TN_ACCESS_VERB),
        .key = {NUMBER16, CLIENT},
        .def = PART(NAP_TN_ACCESS_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_TN_ACCESS_VERB, def_data),
        .fields = TABLE(tn_access_fields),
        .nested = {"session", COUNT_IN(NAP_TN_ACCESS_DATA, def_data.num_sessions),
                   offsetof(NAP_TN_ACCESS_DATA, def_data.sessions), sizeof(NAP_TN_SESSION), 0,
                   NAP_MAX_TN_SESSIONS, true, TABLE(tn_session_fields)},
        .hooks = hooks::tn_access,
    };
}

constexpr FieldRow tn_assoc_fields[] = {
    SNA(NAP_TN_ASSOC_DATA, display_lu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    SNA(NAP_TN_ASSOC_DATA, def_data.printer_lu_name, "printer_lu_name", FIELD_REQUIRED),
    TEXT(NAP_TN_ASSOC_DATA, def_data.description, "description"),
};

ClassRow tn_assoc_row() {
    return {
        .id = CLASS_TN_ASSOC,
        .name = "tn3270_association",
        .lists = {{NAP_QUERY_TN3270_ASSOCIATION, 0, 0, 0}},
        .define = NAP_DEFINE_TN3270_ASSOCIATION,
        .remove = NAP_DELETE_TN3270_ASSOCIATION,
        .entry_size = sizeof(NAP_TN_ASSOC_DATA),
        .define_size = sizeof(NAP_DEFINE_TN_ASSOC_VERB),
        .key = {SNA8},
        .def = PART(NAP_TN_ASSOC_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_TN_ASSOC_VERB, def_data),
        .fields = TABLE(tn_assoc_fields),
        .hooks = hooks::tn_assoc,
    };
}

constexpr FieldRow tn_redirect_fields[] = {
    CLIENT_KEY(NAP_TN_REDIRECT_DATA, "name"),
    NUMBER_KEY(NAP_TN_REDIRECT_DATA, client_port, "client_port", 1, 65535),
    TEXT(NAP_TN_REDIRECT_DATA, def_data.description, "description"),
    TEXT(NAP_TN_REDIRECT_DATA, def_data.host_address, "host_address"),
    NUMBER(NAP_TN_REDIRECT_DATA, def_data.host_port, "host_port", 1, 65535, "23"),
    FLAG(NAP_TN_REDIRECT_DATA, def_data.host_ssl, "host_ssl", "no"),
    WORD(NAP_TN_REDIRECT_DATA, def_data.client_ssl, "client_ssl", ssl_words, "no"),
    NUMBER(NAP_TN_REDIRECT_DATA, def_data.security_level, "security_level", 0, 4, "0"),
};

ClassRow tn_redirect_row() {
    return {
        .id = CLASS_TN_REDIRECT,
        .name = "tn_redirect",
        .lists = {{NAP_QUERY_TN_REDIRECT_DEF, 0, 0, 0}},
        .define = NAP_DEFINE_TN_REDIRECT,
        .remove = NAP_DELETE_TN_REDIRECT,
        .entry_size = sizeof(NAP_TN_REDIRECT_DATA),
        .define_size = sizeof(NAP_DEFINE_TN_REDIRECT_VERB),
        .key = {NUMBER16, CLIENT, NUMBER16},
        .def = PART(NAP_TN_REDIRECT_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_TN_REDIRECT_VERB, def_data),
        .fields = TABLE(tn_redirect_fields),
        .hooks = hooks::tn_redirect,
    };
}

constexpr FieldRow tamrix_session_fields[] = {
    NUMBER_KEY(NAP_TAMRIX_SESSION_DATA, session_number, "name", 1, 65535),
};

ClassRow tamrix_session_row() {
    return {
        .id = CLASS_TAMRIX_SESSION,
        .name = "tamrix_session",
        .untold = true,
        .lists = {{NAP_QUERY_TAMRIX_APPCIP, NAP_TAMRIX_INDICATION, 0, 0}},
        .entry_size = sizeof(NAP_TAMRIX_SESSION_DATA),
        .key = {NUMBER16},
        .det = REST(NAP_TAMRIX_SESSION_DATA, lu_name),
        .fields = TABLE(tamrix_session_fields),
        .hooks = hooks::tamrix_session,
    };
}

KEYS_STAND(NAP_TN_ACCESS_DATA, NAP_DEFINE_TN_ACCESS_VERB, address_type);
KEYS_STAND(NAP_TN_ASSOC_DATA, NAP_DEFINE_TN_ASSOC_VERB, display_lu_name);
KEYS_STAND(NAP_TN_REDIRECT_DATA, NAP_DEFINE_TN_REDIRECT_VERB, address_type);

} // namespace

void add_service_rows(ClassRow *table) {
    for (const ClassRow &row :
         {tn_access_row(), tn_assoc_row(), tn_redirect_row(), tamrix_session_row()}) {
        table[row.id] = row;
    }
}

} // namespace node
