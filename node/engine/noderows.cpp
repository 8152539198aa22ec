/* Rows of sessions and routes: classes of service, modes, partners, directory, routing. */
#include "noderow.h"

namespace node {

namespace {

constexpr FieldRow cos_fields[] = {
    SNA(NAP_COS_DATA, cos_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_COS_DATA, def_data.description, "description"),
    WORD(NAP_COS_DATA, def_data.transmission_priority, "transmission_priority", flow_words,
         "medium"),
};

ClassRow cos_row() {
    return {
        .id = CLASS_COS,
        .name = "cos",
        .lists = {{NAP_QUERY_COS, 0, 0, 0}},
        .define = NAP_DEFINE_COS,
        .remove = NAP_DELETE_COS,
        .entry_size = sizeof(NAP_COS_DATA),
        .define_size = sizeof(NAP_DEFINE_COS_VERB),
        .key = {SNA8},
        .def = PART(NAP_COS_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_COS_VERB, def_data),
        .fields = TABLE(cos_fields),
        .hooks = hooks::cos,
    };
}

constexpr FieldRow mode_def_fields[] = {
    SNA(NAP_MODE_DEF_DATA, mode_name, "name", FIELD_KEY),
    TEXT(NAP_MODE_DEF_DATA, mode_chars.description, "description"),
    NUMBER(NAP_MODE_DEF_DATA, mode_chars.max_ru_size_upp, "max_ru_size_upp", 0, 61440, "4096"),
    NUMBER(NAP_MODE_DEF_DATA, mode_chars.max_ru_size_low, "max_ru_size_low", 0, 61440, "256"),
    FLAG(NAP_MODE_DEF_DATA, mode_chars.default_ru_size, "default_ru_size", "yes"),
    NUMBER(NAP_MODE_DEF_DATA, mode_chars.receive_pacing_win, "receive_pacing_win", 1, 63, "7"),
    NUMBER(NAP_MODE_DEF_DATA, mode_chars.max_receive_pacing_win, "max_receive_pacing_win", 0, 32767,
           "0"),
    NUMBER(NAP_MODE_DEF_DATA, mode_chars.max_neg_sess_lim, "max_neg_sess_lim", 0, 32767, "8"),
    NUMBER(NAP_MODE_DEF_DATA, mode_chars.plu_mode_session_limit, "plu_mode_session_limit", 0, 32767,
           "8"),
    NUMBER(NAP_MODE_DEF_DATA, mode_chars.min_conwin_src, "min_conwin_src", 0, 32767, "4"),
    NUMBER(NAP_MODE_DEF_DATA, mode_chars.min_conloser_src, "min_conloser_src", 0, 32767, "0"),
    NUMBER(NAP_MODE_DEF_DATA, mode_chars.auto_act, "auto_act", 0, 32767, "0"),
    SNA(NAP_MODE_DEF_DATA, mode_chars.cos_name, "cos_name", 0),
    FLAG(NAP_MODE_DEF_DATA, mode_chars.cryptography, "cryptography", "no"),
    FLAG(NAP_MODE_DEF_DATA, mode_chars.compression, "compression", "no"),
    WORD(NAP_MODE_DEF_DATA, mode_chars.max_compress_lvl, "max_compress_lvl", compression_words,
         "none"),
    WORD(NAP_MODE_DEF_DATA, mode_chars.max_decompress_lvl, "max_decompress_lvl", compression_words,
         "none"),
};

ClassRow mode_def_row() {
    return {
        .id = CLASS_MODE_DEF,
        .name = "mode",
        .lists = {{NAP_QUERY_MODE_DEFINITION, 0, 0, 0}},
        .define = NAP_DEFINE_MODE,
        .remove = NAP_DELETE_MODE,
        .entry_size = sizeof(NAP_MODE_DEF_DATA),
        .define_size = sizeof(NAP_DEFINE_MODE_VERB),
        .key = {SNA8},
        .def = PART(NAP_MODE_DEF_DATA, mode_chars),
        .def_in_define = offsetof(NAP_DEFINE_MODE_VERB, mode_chars),
        .fields = TABLE(mode_def_fields),
        .refs = {{CLASS_COS, REF_OPTIONAL, offsetof(NAP_MODE_DEF_DATA, mode_chars.cos_name)}},
        .ref_count = 1,
        .hooks = hooks::mode_def,
    };
}

constexpr FieldRow plu_def_fields[] = {
    FQ(NAP_PLU_DEF_DATA, fqplu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_PLU_DEF_DATA, def_data.description, "description"),
    LOCAL(NAP_PLU_DEF_DATA, def_data.plu_alias, "plu_alias", 0),
    SNA(NAP_PLU_DEF_DATA, def_data.plu_un_name, "plu_un_name", 0),
    NUMBER(NAP_PLU_DEF_DATA, def_data.max_mc_ll_send_size, "max_mc_ll_send_size", 0, 32767, "0"),
    FLAG(NAP_PLU_DEF_DATA, def_data.conv_security_ver, "conv_security_ver", "no"),
    FLAG(NAP_PLU_DEF_DATA, def_data.parallel_sess_supp, "parallel_sess_supp", "yes"),
};

ClassRow plu_def_row() {
    return {
        .id = CLASS_PLU_DEF,
        .name = "partner_lu",
        .lists = {{NAP_QUERY_PARTNER_LU_DEFINITION, 0, 0, 0}},
        .define = NAP_DEFINE_PARTNER_LU,
        .remove = NAP_DELETE_PARTNER_LU,
        .entry_size = sizeof(NAP_PLU_DEF_DATA),
        .define_size = sizeof(NAP_DEFINE_PLU_VERB),
        .key = {SNA17},
        .def = PART(NAP_PLU_DEF_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_PLU_VERB, def_data),
        .fields = TABLE(plu_def_fields),
        .alias = {offsetof(NAP_PLU_DEF_DATA, def_data.plu_alias), {LOCAL8}, CLASS_COUNT, false, 0},
    };
}

constexpr FieldRow mode_fields[] = {
    LOCAL(NAP_MODE_DATA, lu_alias, "lu_alias", FIELD_KEY | FIELD_REQUIRED),
    SNA(NAP_MODE_DATA, mode_name, "mode_name", FIELD_KEY),
    FQ(NAP_MODE_DATA, fqplu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    NUMBER(NAP_MODE_DATA, sess_limit, "sess_limit", 0, 32767, "8"),
    NUMBER(NAP_MODE_DATA, min_conwinners, "min_conwinners", 0, 32767, "4"),
    NUMBER(NAP_MODE_DATA, min_conlosers, "min_conlosers", 0, 32767, "0"),
    FQ(NAP_MODE_DATA, fq_cp_name, "fq_cp_name", 0),
    NUMBER_SIM(sessions, "sessions", 32767),
};

ClassRow mode_row() {
    return {
        .id = CLASS_MODE,
        .name = "mode_in_use",
        .lists = {{NAP_QUERY_MODE, NAP_MODE_INDICATION, 0, 0}},
        .entry_size = sizeof(NAP_MODE_DATA),
        .key = {LOCAL8, SNA8, SNA17},
        .det = REST(NAP_MODE_DATA, plu_alias),
        .fields = TABLE(mode_fields),
        .refs = {{CLASS_LOCAL_LU, REF_BY_ALIAS | REF_CARRIED, offsetof(NAP_MODE_DATA, lu_alias)},
                 {CLASS_MODE_DEF, 0, offsetof(NAP_MODE_DATA, mode_name)}},
        .ref_count = 2,
        .hooks = hooks::mode,
    };
}

constexpr FieldRow plu_fields[] = {
    LOCAL(NAP_PLU_DATA, lu_alias, "lu_alias", FIELD_KEY | FIELD_REQUIRED),
    LOCAL(NAP_PLU_DATA, plu_alias, "plu_alias", FIELD_KEY),
    FQ(NAP_PLU_DATA, fqplu_name, "name", FIELD_KEY | FIELD_REQUIRED),
};

ClassRow plu_row() {
    return {
        .id = CLASS_PLU,
        .name = "partner_in_use",
        .untold = true,
        .lists = {{NAP_QUERY_PARTNER_LU, NAP_PLU_INDICATION, 0, 0}},
        .entry_size = sizeof(NAP_PLU_DATA),
        .key = {LOCAL8, LOCAL8, SNA17},
        .det = REST(NAP_PLU_DATA, act_sess_count),
        .fields = TABLE(plu_fields),
        .refs = {{CLASS_LOCAL_LU, REF_BY_ALIAS | REF_CARRIED, offsetof(NAP_PLU_DATA, lu_alias)}},
        .ref_count = 1,
        .hooks = hooks::plu,
    };
}

constexpr FieldRow directory_fields[] = {
    FQ(NAP_DIR_DATA, fqcp_name, "fqcp_name", FIELD_KEY | FIELD_REQUIRED),
    FQ(NAP_DIR_DATA, resource_name, "name", FIELD_KEY),
    WORD(NAP_DIR_DATA, resource_type, "resource_type", resource_words, "lu", FIELD_KEY),
    TEXT(NAP_DIR_DATA, def_data.description, "description"),
    WORD(NAP_DIR_DATA, def_data.wildcard, "wildcard", wildcard_words, "none"),
};

ClassRow directory_row() {
    return {
        .id = CLASS_DIRECTORY,
        .name = "directory",
        .lists = {{NAP_QUERY_DIRECTORY_ENTRY, NAP_DIRECTORY_INDICATION, 0, 0}},
        .define = NAP_DEFINE_DIRECTORY_ENTRY,
        .remove = NAP_DELETE_DIRECTORY_ENTRY,
        .entry_size = sizeof(NAP_DIR_DATA),
        .define_size = sizeof(NAP_DEFINE_DIR_VERB),
        .key = {SNA17, SNA17, NUMBER16},
        .def = PART(NAP_DIR_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_DIR_VERB, def_data),
        .det = REST(NAP_DIR_DATA, entry_type),
        .fields = TABLE(directory_fields),
        .hooks = hooks::directory,
    };
}

#define COS_ROW_KEY(record)                                                                        \
    SNA(record, cos_name, "cos_name", FIELD_KEY | FIELD_REQUIRED),                                 \
        NUMBER_KEY(record, row_number, "name", 1, 8)

constexpr FieldRow cos_node_row_fields[] = {
    COS_ROW_KEY(NAP_COS_NODE_ROW_DATA),
    FLAG(NAP_COS_NODE_ROW_DATA, def_data.min_congestion, "min_congestion", "no"),
    FLAG(NAP_COS_NODE_ROW_DATA, def_data.max_congestion, "max_congestion", "yes"),
    NUMBER(NAP_COS_NODE_ROW_DATA, def_data.min_resistance, "min_resistance", 0, 255, "0"),
    NUMBER(NAP_COS_NODE_ROW_DATA, def_data.max_resistance, "max_resistance", 0, 255, "255"),
    NUMBER(NAP_COS_NODE_ROW_DATA, def_data.weight, "weight", 0, 255, "5"),
};

ClassRow cos_node_row_row() {
    return {
        .id = CLASS_COS_NODE_ROW,
        .name = "cos_node_row",
        .lists = {{NAP_QUERY_COS_NODE_ROW, 0, 0, 0}},
        .define = NAP_DEFINE_COS_NODE_ROW,
        .remove = NAP_DELETE_COS_NODE_ROW,
        .entry_size = sizeof(NAP_COS_NODE_ROW_DATA),
        .define_size = sizeof(NAP_DEFINE_COS_NODE_ROW_VERB),
        .key = {SNA8, NUMBER16},
        .def = PART(NAP_COS_NODE_ROW_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_COS_NODE_ROW_VERB, def_data),
        .fields = TABLE(cos_node_row_fields),
        .refs = {{CLASS_COS, REF_OWNER | REF_CARRIED, offsetof(NAP_COS_NODE_ROW_DATA, cos_name)}},
        .ref_count = 1,
        .hooks = hooks::cos_node_row,
    };
}

constexpr FieldRow cos_tg_row_fields[] = {
    COS_ROW_KEY(NAP_COS_TG_ROW_DATA),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.min.capacity, "min_capacity", 0, 255, "0"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.min.connect_cost, "min_connect_cost", 0, 255, "0"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.min.byte_cost, "min_byte_cost", 0, 255, "0"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.min.security, "min_security", 0, 255, "1"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.min.propagation_delay, "min_propagation_delay", 0, 255,
           "0"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.min.user_defined[0], "min_user_1", 0, 255, "0"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.min.user_defined[1], "min_user_2", 0, 255, "0"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.min.user_defined[2], "min_user_3", 0, 255, "0"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.max.capacity, "max_capacity", 0, 255, "255"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.max.connect_cost, "max_connect_cost", 0, 255, "255"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.max.byte_cost, "max_byte_cost", 0, 255, "255"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.max.security, "max_security", 0, 255, "255"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.max.propagation_delay, "max_propagation_delay", 0, 255,
           "255"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.max.user_defined[0], "max_user_1", 0, 255, "255"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.max.user_defined[1], "max_user_2", 0, 255, "255"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.max.user_defined[2], "max_user_3", 0, 255, "255"),
    NUMBER(NAP_COS_TG_ROW_DATA, def_data.weight, "weight", 0, 255, "30"),
};

ClassRow cos_tg_row_row() {
    return {
        .id = CLASS_COS_TG_ROW,
        .name = "cos_tg_row",
        .lists = {{NAP_QUERY_COS_TG_ROW, 0, 0, 0}},
        .define = NAP_DEFINE_COS_TG_ROW,
        .remove = NAP_DELETE_COS_TG_ROW,
        .entry_size = sizeof(NAP_COS_TG_ROW_DATA),
        .define_size = sizeof(NAP_DEFINE_COS_TG_ROW_VERB),
        .key = {SNA8, NUMBER16},
        .def = PART(NAP_COS_TG_ROW_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_COS_TG_ROW_VERB, def_data),
        .fields = TABLE(cos_tg_row_fields),
        .refs = {{CLASS_COS, REF_OWNER | REF_CARRIED, offsetof(NAP_COS_TG_ROW_DATA, cos_name)}},
        .ref_count = 1,
        .hooks = hooks::cos_tg_row,
    };
}

constexpr FieldRow ls_routing_fields[] = {
    SNA(NAP_LS_ROUTING_DATA, lu_name, "lu_name", FIELD_KEY | FIELD_REQUIRED),
    FQ(NAP_LS_ROUTING_DATA, fqplu_name, "name", FIELD_KEY),
    LOCAL(NAP_LS_ROUTING_DATA, def_data.ls_name, "ls_name", FIELD_REQUIRED),
    WORD(NAP_LS_ROUTING_DATA, def_data.wildcard, "wildcard", wildcard_words, "none"),
    FLAG(NAP_LS_ROUTING_DATA, def_data.use_fqplu_name, "use_fqplu_name", "no"),
    TEXT(NAP_LS_ROUTING_DATA, def_data.description, "description"),
};

ClassRow ls_routing_row() {
    return {
        .id = CLASS_LS_ROUTING,
        .name = "ls_routing",
        .lists = {{NAP_QUERY_LS_ROUTING, 0, 0, 0}},
        .define = NAP_DEFINE_LS_ROUTING,
        .remove = NAP_DELETE_LS_ROUTING,
        .entry_size = sizeof(NAP_LS_ROUTING_DATA),
        .define_size = sizeof(NAP_DEFINE_LS_ROUTING_VERB),
        .key = {SNA8, SNA17},
        .def = PART(NAP_LS_ROUTING_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_LS_ROUTING_VERB, def_data),
        .fields = TABLE(ls_routing_fields),
        .refs = {{CLASS_LOCAL_LU, REF_CARRIED, offsetof(NAP_LS_ROUTING_DATA, lu_name)},
                 {CLASS_LS, 0, offsetof(NAP_LS_ROUTING_DATA, def_data.ls_name)}},
        .ref_count = 2,
        .hooks = hooks::ls_routing,
    };
}

KEYS_STAND(NAP_COS_DATA, NAP_DEFINE_COS_VERB, cos_name);
KEYS_STAND(NAP_MODE_DEF_DATA, NAP_DEFINE_MODE_VERB, mode_name);
KEYS_STAND(NAP_PLU_DEF_DATA, NAP_DEFINE_PLU_VERB, fqplu_name);
KEYS_STAND(NAP_DIR_DATA, NAP_DEFINE_DIR_VERB, fqcp_name);
KEYS_STAND(NAP_COS_NODE_ROW_DATA, NAP_DEFINE_COS_NODE_ROW_VERB, cos_name);
KEYS_STAND(NAP_COS_TG_ROW_DATA, NAP_DEFINE_COS_TG_ROW_VERB, cos_name);
KEYS_STAND(NAP_LS_ROUTING_DATA, NAP_DEFINE_LS_ROUTING_VERB, lu_name);

} // namespace

void add_session_rows(ClassRow *table) {
    for (const ClassRow &row :
         {cos_row(), mode_def_row(), plu_def_row(), mode_row(), plu_row(), directory_row(),
          cos_node_row_row(), cos_tg_row_row(), ls_routing_row()}) {
        table[row.id] = row;
    }
}

} // namespace node
