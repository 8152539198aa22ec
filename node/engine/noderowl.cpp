/* Rows of LUs: dependent ones, their pools and what hangs on them, downstream and local ones. */
#include "noderow.h"

namespace node {

namespace {

constexpr FieldRow lu03_fields[] = {
    SNA(NAP_LU03_DATA, pu_name, "pu_name", FIELD_KEY | FIELD_REQUIRED),
    SNA(NAP_LU03_DATA, lu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_LU03_DATA, def_data.description, "description"),
    COUNTED(NAP_LU03_DATA, def_data.nau_address, "nau_address", 1, 255, "1"),
    WORD(NAP_LU03_DATA, def_data.lu_model, "lu_model", model_words, "display_2"),
    SNA(NAP_LU03_DATA, def_data.pool_name, "pool_name", 0),
    WORD(NAP_LU03_DATA, def_data.priority, "priority", priority_words, "medium"),
    FLAG(NAP_LU03_DATA, def_data.sscp_id_given, "sscp_id_given", "no"),
    NUMBER(NAP_LU03_DATA, def_data.timeout, "timeout", 0, 65535, "0"),
    TEXT_SIM(user_name, "user"),
    WORD_SIM(app_type, "application", application_words, "none"),
};

ClassRow lu03_row() {
    return {
        .id = CLASS_LU03,
        .name = "lu03",
        .lists = {{NAP_QUERY_LU_0_TO_3, NAP_LU_0_TO_3_INDICATION, 0, 0}},
        .define = NAP_DEFINE_LU_0_TO_3,
        .remove = NAP_DELETE_LU_0_TO_3,
        .entry_size = sizeof(NAP_LU03_DATA),
        .define_size = sizeof(NAP_DEFINE_LU03_VERB),
        .key = {SNA8, SNA8},
        .def = PART(NAP_LU03_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_LU03_VERB, def_data),
        .det = PART(NAP_LU03_DATA, det_data),
        .fields = TABLE(lu03_fields),
        .refs = {{CLASS_PU, REF_OWNER, offsetof(NAP_LU03_DATA, pu_name)}},
        .ref_count = 1,
        .alias = {offsetof(NAP_LU03_DATA, lu_name),
                  {SNA8},
                  CLASS_LOCAL_LU,
                  false,
                  offsetof(NAP_LU03_DATA, lu_name)},
        .life = {true, false, 0, 20, 300, 20},
        .hooks = hooks::lu03,
    };
}

constexpr FieldRow local_lu_fields[] = {
    SNA(NAP_LOCAL_LU_DATA, lu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_LOCAL_LU_DATA, def_data.description, "description"),
    LOCAL(NAP_LOCAL_LU_DATA, def_data.lu_alias, "lu_alias", FIELD_REQUIRED),
    NUMBER(NAP_LOCAL_LU_DATA, def_data.nau_address, "nau_address", 0, 254, "0"),
    FLAG(NAP_LOCAL_LU_DATA, def_data.sync_point_support, "sync_point_support", "no"),
    FLAG(NAP_LOCAL_LU_DATA, def_data.disable, "disable", "no"),
    FLAG(NAP_LOCAL_LU_DATA, def_data.default_pool, "default_pool", "no"),
    SNA(NAP_LOCAL_LU_DATA, def_data.pu_name, "pu_name", 0),
    NUMBER(NAP_LOCAL_LU_DATA, def_data.lu_session_limit, "lu_session_limit", 0, 65535, "0"),
    FLAG(NAP_LOCAL_LU_DATA, def_data.password_substitution, "password_substitution", "no"),
};

ClassRow local_lu_row() {
    return {
        .id = CLASS_LOCAL_LU,
        .name = "local_lu",
        .lists = {{NAP_QUERY_LOCAL_LU, NAP_LOCAL_LU_INDICATION, 0, 0}},
        .define = NAP_DEFINE_LOCAL_LU,
        .remove = NAP_DELETE_LOCAL_LU,
        .entry_size = sizeof(NAP_LOCAL_LU_DATA),
        .define_size = sizeof(NAP_DEFINE_LOCAL_LU_VERB),
        .key = {SNA8},
        .def = PART(NAP_LOCAL_LU_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_LOCAL_LU_VERB, def_data),
        .det = UP_TO(NAP_LOCAL_LU_DATA, lu_sscp_sess_active, def_data),
        .fields = TABLE(local_lu_fields),
        .refs = {{CLASS_PU, REF_OWNER | REF_OPTIONAL,
                  offsetof(NAP_LOCAL_LU_DATA, def_data.pu_name)}},
        .ref_count = 1,
        .alias = {offsetof(NAP_LOCAL_LU_DATA, def_data.lu_alias),
                  {LOCAL8},
                  CLASS_LU03,
                  true,
                  offsetof(NAP_LOCAL_LU_DATA, lu_name)},
        .life = {true, false, 0, 20, 300, 20},
        .hooks = hooks::local_lu,
    };
}

constexpr FieldRow lu_pool_fields[] = {
    SNA(NAP_LU_POOL_DATA, pool_name, "name", FIELD_KEY | FIELD_REQUIRED),
    SNA(NAP_LU_POOL_DATA, lu_name, "lu_name", FIELD_KEY),
    TEXT(NAP_LU_POOL_DATA, description, "description"),
};

/* Entries with an LU's name are made by the LUs that name their pool. */
ClassRow lu_pool_row() {
    return {
        .id = CLASS_LU_POOL,
        .name = "lu_pool",
        .lists = {{NAP_QUERY_LU_POOL, 0, 0, 0}},
        .define = NAP_DEFINE_LU_POOL,
        .remove = NAP_DELETE_LU_POOL,
        .entry_size = sizeof(NAP_LU_POOL_DATA),
        .define_size = sizeof(NAP_DEFINE_LU_POOL_VERB),
        .key = {SNA8, SNA8},
        .def = PART(NAP_LU_POOL_DATA, description),
        .def_in_define = offsetof(NAP_DEFINE_LU_POOL_VERB, description),
        .fields = TABLE(lu_pool_fields),
        .hooks = hooks::lu_pool,
    };
}

constexpr FieldRow down_lu_fields[] = {
    SNA(NAP_DOWN_LU_DATA, dspu_name, "dspu_name", FIELD_KEY | FIELD_REQUIRED),
    SNA(NAP_DOWN_LU_DATA, dslu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_DOWN_LU_DATA, def_data.description, "description"),
    COUNTED(NAP_DOWN_LU_DATA, def_data.nau_address, "nau_address", 1, 255, "1"),
    FLAG(NAP_DOWN_LU_DATA, def_data.allow_timeout, "allow_timeout", "no"),
    FLAG(NAP_DOWN_LU_DATA, def_data.delayed_logon, "delayed_logon", "no"),
    SNA(NAP_DOWN_LU_DATA, def_data.host_lu_name, "host_lu_name", FIELD_REQUIRED),
    TEXT_SIM(user_name, "host_application"),
};

ClassRow down_lu_row() {
    return {
        .id = CLASS_DOWN_LU,
        .name = "downstream_lu",
        .lists = {{NAP_QUERY_DOWNSTREAM_LU, NAP_DOWNSTREAM_LU_INDICATION, 0, 0}},
        .define = NAP_DEFINE_DOWNSTREAM_LU,
        .remove = NAP_DELETE_DOWNSTREAM_LU,
        .entry_size = sizeof(NAP_DOWN_LU_DATA),
        .define_size = sizeof(NAP_DEFINE_DOWN_LU_VERB),
        .key = {SNA8, SNA8},
        .def = PART(NAP_DOWN_LU_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_DOWN_LU_VERB, def_data),
        .det = PART(NAP_DOWN_LU_DATA, det_data),
        .fields = TABLE(down_lu_fields),
        .refs = {{CLASS_DOWN_PU, REF_OWNER, offsetof(NAP_DOWN_LU_DATA, dspu_name)}},
        .ref_count = 1,
        .life = {true, false, 0, 20, 300, 20},
        .hooks = hooks::down_lu,
    };
}

constexpr FieldRow extra_data_fields[] = {
    SNA(NAP_EXTRA_DATA_DATA, pu_name, "pu_name", FIELD_KEY | FIELD_REQUIRED),
    SNA(NAP_EXTRA_DATA_DATA, lu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_EXTRA_DATA_DATA, def_data.display_name, "display_name"),
    TEXT(NAP_EXTRA_DATA_DATA, def_data.location, "location"),
    TEXT(NAP_EXTRA_DATA_DATA, def_data.logon_text, "logon_text"),
};

ClassRow extra_data_row() {
    return {
        .id = CLASS_EXTRA_DATA,
        .name = "extra_data",
        .lists = {{NAP_QUERY_EXTRA_DATA, 0, 0, 0}},
        .define = NAP_DEFINE_EXTRA_DATA,
        .remove = NAP_DELETE_EXTRA_DATA,
        .entry_size = sizeof(NAP_EXTRA_DATA_DATA),
        .define_size = sizeof(NAP_DEFINE_EXTRA_DATA_VERB),
        .key = {SNA8, SNA8},
        .def = PART(NAP_EXTRA_DATA_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_EXTRA_DATA_VERB, def_data),
        .fields = TABLE(extra_data_fields),
        .refs = {{CLASS_LU03, REF_CARRIED, offsetof(NAP_EXTRA_DATA_DATA, pu_name)}},
        .ref_count = 1,
    };
}

constexpr FieldRow primary_lu0_fields[] = {
    SNA(NAP_PRIMARY_LU0_DATA, lu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_PRIMARY_LU0_DATA, def_data.description, "description"),
    LOCAL(NAP_PRIMARY_LU0_DATA, def_data.line_name, "line_name", FIELD_REQUIRED),
    SNA(NAP_PRIMARY_LU0_DATA, def_data.plu_name, "plu_name", 0),
    NUMBER(NAP_PRIMARY_LU0_DATA, def_data.station_address, "station_address", 1, 254, "193"),
    COUNTED(NAP_PRIMARY_LU0_DATA, def_data.nau_address, "nau_address", 1, 255, "1"),
    NUMBER(NAP_PRIMARY_LU0_DATA, def_data.max_ru_size, "max_ru_size", 256, 65535, "256"),
    TEXT_SIM(user_name, "user"),
};

ClassRow primary_lu0_row() {
    return {
        .id = CLASS_PRIMARY_LU0,
        .name = "primary_lu0",
        .lists = {{NAP_QUERY_PRIMARY_LU0, 0, 0, 0}},
        .define = NAP_DEFINE_PRIMARY_LU0,
        .remove = NAP_DELETE_PRIMARY_LU0,
        .entry_size = sizeof(NAP_PRIMARY_LU0_DATA),
        .define_size = sizeof(NAP_DEFINE_PRIMARY_LU0_VERB),
        .key = {SNA8},
        .def = PART(NAP_PRIMARY_LU0_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_PRIMARY_LU0_VERB, def_data),
        .det = UP_TO(NAP_PRIMARY_LU0_DATA, lu_sess_active, def_data),
        .fields = TABLE(primary_lu0_fields),
        .refs = {{CLASS_PRIMARY_LINE, REF_OWNER,
                  offsetof(NAP_PRIMARY_LU0_DATA, def_data.line_name)}},
        .ref_count = 1,
        .life = {true, false, 0, 50, 300, 20},
        .hooks = hooks::primary_lu0,
    };
}

constexpr FieldRow lu62_timeout_fields[] = {
    WORD(NAP_LU62_TIMEOUT_DATA, resource_type, "resource_type", timeout_words, "global", FIELD_KEY),
    NAME_ANY(NAP_LU62_TIMEOUT_DATA, resource_name, "name", FIELD_KEY),
    NUMBER(NAP_LU62_TIMEOUT_DATA, def_data.timeout, "timeout", 0, 65535, "60"),
};

ClassRow lu62_timeout_row() {
    return {
        .id = CLASS_LU62_TIMEOUT,
        .name = "lu62_timeout",
        .lists = {{NAP_QUERY_LU62_TIMEOUT, 0, 0, 0}},
        .define = NAP_DEFINE_LU62_TIMEOUT,
        .remove = NAP_DELETE_LU62_TIMEOUT,
        .entry_size = sizeof(NAP_LU62_TIMEOUT_DATA),
        .define_size = sizeof(NAP_DEFINE_LU62_TIMEOUT_VERB),
        .key = {NUMBER16, SNA17},
        .def = PART(NAP_LU62_TIMEOUT_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_LU62_TIMEOUT_VERB, def_data),
        .fields = TABLE(lu62_timeout_fields),
        .hooks = hooks::lu62_timeout,
    };
}

KEYS_STAND(NAP_LU03_DATA, NAP_DEFINE_LU03_VERB, pu_name);
KEYS_STAND(NAP_LOCAL_LU_DATA, NAP_DEFINE_LOCAL_LU_VERB, lu_name);
KEYS_STAND(NAP_LU_POOL_DATA, NAP_DEFINE_LU_POOL_VERB, pool_name);
KEYS_STAND(NAP_DOWN_LU_DATA, NAP_DEFINE_DOWN_LU_VERB, dspu_name);
KEYS_STAND(NAP_EXTRA_DATA_DATA, NAP_DEFINE_EXTRA_DATA_VERB, pu_name);
KEYS_STAND(NAP_PRIMARY_LU0_DATA, NAP_DEFINE_PRIMARY_LU0_VERB, lu_name);
KEYS_STAND(NAP_LU62_TIMEOUT_DATA, NAP_DEFINE_LU62_TIMEOUT_VERB, resource_type);

} // namespace

void add_lu_rows(ClassRow *table) {
    for (const ClassRow &row : {lu03_row(), local_lu_row(), lu_pool_row(), down_lu_row(),
                                extra_data_row(), primary_lu0_row(), lu62_timeout_row()}) {
        table[row.id] = row;
    }
}

} // namespace node
