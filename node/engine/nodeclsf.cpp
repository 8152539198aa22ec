/* The fields of every resource class, one table each.  Offsets are those of the list entry; key
 * fields stand in the title of a section, the others are its lines. */
#include "nodeclass.h"
#include "nodewords.h"

namespace node {

namespace {

constexpr FieldRow dlc_fields[] = {
    LOCAL(NAP_DLC_DATA, dlc_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_DLC_DATA, def_data.description, "description"),
    WORD(NAP_DLC_DATA, def_data.dlc_type, "dlc_type", dlc_words, "ethernet"),
    NUMBER(NAP_DLC_DATA, def_data.card_number, "card_number", 0, 254, "0"),
    FLAG(NAP_DLC_DATA, def_data.initially_active, "initially_active", "yes"),
};

constexpr FieldRow port_fields[] = {
    LOCAL(NAP_PORT_DATA, port_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_PORT_DATA, def_data.description, "description"),
    LOCAL(NAP_PORT_DATA, def_data.dlc_name, "dlc_name", FIELD_REQUIRED),
    WORD(NAP_PORT_DATA, def_data.port_type, "port_type", port_words, "shared_access"),
    NUMBER(NAP_PORT_DATA, def_data.port_number, "port_number", 0, 254, "0"),
    FLAG(NAP_PORT_DATA, def_data.initially_active, "initially_active", "yes"),
    FLAG(NAP_PORT_DATA, def_data.implicit_links, "implicit_links", "no"),
    WORD(NAP_PORT_DATA, def_data.ls_role, "ls_role", role_words, "negotiable"),
    NUMBER(NAP_PORT_DATA, def_data.max_rcv_btu_size, "max_rcv_btu_size", 265, 65535, "1500"),
    NUMBER(NAP_PORT_DATA, def_data.tot_link_act_lim, "tot_link_act_lim", 1, 65535, "255"),
    NUMBER(NAP_PORT_DATA, def_data.inb_link_act_lim, "inb_link_act_lim", 0, 65535, "0"),
    NUMBER(NAP_PORT_DATA, def_data.out_link_act_lim, "out_link_act_lim", 0, 65535, "0"),
    NUMBER(NAP_PORT_DATA, def_data.react_timer, "react_timer", 0, 65535, "30"),
    TEXT(NAP_PORT_DATA, def_data.local_address, "local_address"),
    FLAG_SIM(reachable, "reachable", "yes"),
};

constexpr FieldRow ls_fields[] = {
    LOCAL(NAP_LS_DATA, ls_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_LS_DATA, def_data.description, "description"),
    LOCAL(NAP_LS_DATA, def_data.port_name, "port_name", FIELD_REQUIRED),
    WORD(NAP_LS_DATA, def_data.adj_cp_type, "adj_cp_type", partner_words, "learn"),
    WORD(NAP_LS_DATA, def_data.ls_role, "ls_role", role_words, "negotiable"),
    FLAG(NAP_LS_DATA, def_data.initially_active, "initially_active", "yes"),
    FLAG(NAP_LS_DATA, def_data.auto_act_supp, "auto_act_supp", "no"),
    FLAG(NAP_LS_DATA, def_data.cp_cp_sess_support, "cp_cp_sess_support", "no"),
    FLAG(NAP_LS_DATA, def_data.hpr_supported, "hpr_supported", "no"),
    WORD(NAP_LS_DATA, def_data.host_attachment, "host_attachment", attachment_words, "direct"),
    FQ(NAP_LS_DATA, def_data.adj_cp_name, "adj_cp_name", 0),
    SNA(NAP_LS_DATA, def_data.pu_name, "pu_name", 0),
    NUMBER(NAP_LS_DATA, def_data.tg_number, "tg_number", 0, 20, "0"),
    FLAG(NAP_LS_DATA, def_data.solicit_sscp_sessions, "solicit_sscp_sessions", "yes"),
    FLAG(NAP_LS_DATA, def_data.limited_resource, "limited_resource", "no"),
    TEXT(NAP_LS_DATA, def_data.dest_address, "dest_address"),
    NUMBER(NAP_LS_DATA, def_data.max_send_btu_size, "max_send_btu_size", 265, 65535, "1500"),
    NUMBER(NAP_LS_DATA, def_data.react_timer, "react_timer", 0, 65535, "60"),
    NUMBER(NAP_LS_DATA, def_data.react_retries, "react_retries", 0, 65535, "65535"),
    HEX(NAP_LS_DATA, def_data.node_id, "node_id", "0"),
    FLAG_SIM(reachable, "reachable", "yes"),
    NUMBER_SIM(up_ms, "up_ms", 60000),
};

constexpr FieldRow pu_fields[] = {
    SNA(NAP_PU_DATA, pu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_PU_DATA, def_data.description, "description"),
    FQ(NAP_PU_DATA, def_data.dlus_name, "dlus_name", 0),
    FQ(NAP_PU_DATA, def_data.bkup_dlus_name, "bkup_dlus_name", 0),
    FLAG(NAP_PU_DATA, def_data.initially_active, "initially_active", "yes"),
    HEX(NAP_PU_DATA, def_data.pu_id, "pu_id", "0"),
    FLAG_SIM(reachable, "reachable", "yes"),
};

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

constexpr FieldRow cos_fields[] = {
    SNA(NAP_COS_DATA, cos_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_COS_DATA, def_data.description, "description"),
    WORD(NAP_COS_DATA, def_data.transmission_priority, "transmission_priority", flow_words,
         "medium"),
    NUMBER(NAP_COS_DATA, def_data.num_of_node_rows, "num_of_node_rows", 0, 8, "0"),
    NUMBER(NAP_COS_DATA, def_data.num_of_tg_rows, "num_of_tg_rows", 0, 8, "0"),
};

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

constexpr FieldRow plu_def_fields[] = {
    FQ(NAP_PLU_DEF_DATA, fqplu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_PLU_DEF_DATA, def_data.description, "description"),
    LOCAL(NAP_PLU_DEF_DATA, def_data.plu_alias, "plu_alias", 0),
    SNA(NAP_PLU_DEF_DATA, def_data.plu_un_name, "plu_un_name", 0),
    NUMBER(NAP_PLU_DEF_DATA, def_data.max_mc_ll_send_size, "max_mc_ll_send_size", 0, 32767, "0"),
    FLAG(NAP_PLU_DEF_DATA, def_data.conv_security_ver, "conv_security_ver", "no"),
    FLAG(NAP_PLU_DEF_DATA, def_data.parallel_sess_supp, "parallel_sess_supp", "yes"),
};

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

constexpr FieldRow plu_fields[] = {
    LOCAL(NAP_PLU_DATA, lu_alias, "lu_alias", FIELD_KEY | FIELD_REQUIRED),
    LOCAL(NAP_PLU_DATA, plu_alias, "plu_alias", FIELD_KEY),
    FQ(NAP_PLU_DATA, fqplu_name, "name", FIELD_KEY | FIELD_REQUIRED),
};

constexpr FieldRow directory_fields[] = {
    FQ(NAP_DIR_DATA, fqcp_name, "fqcp_name", FIELD_KEY | FIELD_REQUIRED),
    FQ(NAP_DIR_DATA, resource_name, "name", FIELD_KEY),
    WORD(NAP_DIR_DATA, resource_type, "resource_type", resource_words, "lu", FIELD_KEY),
    TEXT(NAP_DIR_DATA, def_data.description, "description"),
    WORD(NAP_DIR_DATA, def_data.wildcard, "wildcard", wildcard_words, "none"),
};

} // namespace

FieldTable class_fields(ClassId id) {
    static constexpr FieldTable tables[] = {
        TABLE(dlc_fields),     TABLE(port_fields),     TABLE(ls_fields),  TABLE(pu_fields),
        TABLE(lu03_fields),    TABLE(local_lu_fields), TABLE(cos_fields), TABLE(mode_def_fields),
        TABLE(plu_def_fields), TABLE(mode_fields),     TABLE(plu_fields), TABLE(directory_fields),
    };
    static_assert(sizeof tables / sizeof tables[0] == CLASS_COUNT);
    return tables[id];
}

} // namespace node
