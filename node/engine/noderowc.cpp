/* Rows of connectivity: DLCs, ports, link stations, connection networks, PUs, primary lines. */
#include "noderow.h"

namespace node {

namespace {

constexpr FieldRow dlc_fields[] = {
    LOCAL(NAP_DLC_DATA, dlc_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_DLC_DATA, def_data.description, "description"),
    WORD(NAP_DLC_DATA, def_data.dlc_type, "dlc_type", dlc_words, "ethernet"),
    NUMBER(NAP_DLC_DATA, def_data.card_number, "card_number", 0, 254, "0"),
    FLAG(NAP_DLC_DATA, def_data.initially_active, "initially_active", "yes"),
};

ClassRow dlc_row() {
    return {
        .id = CLASS_DLC,
        .name = "dlc",
        .lists = {{NAP_QUERY_DLC, NAP_DLC_INDICATION, 0, 0}},
        .define = NAP_DEFINE_DLC,
        .remove = NAP_DELETE_DLC,
        .start = NAP_START_DLC,
        .stop = NAP_STOP_DLC,
        .entry_size = sizeof(NAP_DLC_DATA),
        .define_size = sizeof(NAP_DEFINE_DLC_VERB),
        .key = {LOCAL8},
        .def = PART(NAP_DLC_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_DLC_VERB, def_data),
        .det = UP_TO(NAP_DLC_DATA, dlc_sts, def_data),
        .fields = TABLE(dlc_fields),
        .life = {true, true, offsetof(NAP_DLC_DATA, def_data.initially_active), 100, 400, 100},
        .hooks = hooks::dlc,
    };
}

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

ClassRow port_row() {
    return {
        .id = CLASS_PORT,
        .name = "port",
        .lists = {{NAP_QUERY_PORT, NAP_PORT_INDICATION, 0, 0}},
        .define = NAP_DEFINE_PORT,
        .remove = NAP_DELETE_PORT,
        .start = NAP_START_PORT,
        .stop = NAP_STOP_PORT,
        .entry_size = sizeof(NAP_PORT_DATA),
        .define_size = sizeof(NAP_DEFINE_PORT_VERB),
        .key = {LOCAL8},
        .def = PART(NAP_PORT_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_PORT_VERB, def_data),
        .det = PART(NAP_PORT_DATA, det_data),
        .fields = TABLE(port_fields),
        .refs = {{CLASS_DLC, REF_OWNER, offsetof(NAP_PORT_DATA, def_data.dlc_name)}},
        .ref_count = 1,
        .life = {true, true, offsetof(NAP_PORT_DATA, def_data.initially_active), 200, 800, 150},
        .hooks = hooks::port,
    };
}

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

ClassRow ls_row() {
    return {
        .id = CLASS_LS,
        .name = "ls",
        .lists = {{NAP_QUERY_LS, NAP_LS_INDICATION, 0, 0}},
        .define = NAP_DEFINE_LS,
        .remove = NAP_DELETE_LS,
        .start = NAP_START_LS,
        .stop = NAP_STOP_LS,
        .entry_size = sizeof(NAP_LS_DATA),
        .define_size = sizeof(NAP_DEFINE_LS_VERB),
        .key = {LOCAL8},
        .def = PART(NAP_LS_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_LS_VERB, def_data),
        .det = PART(NAP_LS_DATA, det_data),
        .fields = TABLE(ls_fields),
        .refs = {{CLASS_PORT, REF_OWNER, offsetof(NAP_LS_DATA, def_data.port_name)}},
        .ref_count = 1,
        .life = {true, true, offsetof(NAP_LS_DATA, def_data.initially_active), 300, 1500, 200},
        .hooks = hooks::ls,
    };
}

constexpr FieldRow pu_fields[] = {
    SNA(NAP_PU_DATA, pu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_PU_DATA, def_data.description, "description"),
    FQ(NAP_PU_DATA, def_data.dlus_name, "dlus_name", 0),
    FQ(NAP_PU_DATA, def_data.bkup_dlus_name, "bkup_dlus_name", 0),
    FLAG(NAP_PU_DATA, def_data.initially_active, "initially_active", "yes"),
    HEX(NAP_PU_DATA, def_data.pu_id, "pu_id", "0"),
    FLAG_SIM(reachable, "reachable", "yes"),
};

ClassRow pu_row() {
    constexpr size_t kind = offsetof(NAP_PU_DATA, host_attachment);
    return {
        .id = CLASS_PU,
        .name = "pu",
        .lists = {{NAP_QUERY_PU, NAP_PU_INDICATION, kind, NAP_DIRECT_ATTACHED},
                  {NAP_QUERY_DLUR_PU, NAP_DLUR_PU_INDICATION, kind, NAP_DLUR_ATTACHED}},
        .define = NAP_DEFINE_INTERNAL_PU,
        .remove = NAP_DELETE_INTERNAL_PU,
        .start = NAP_START_PU,
        .stop = NAP_STOP_PU,
        .entry_size = sizeof(NAP_PU_DATA),
        .define_size = sizeof(NAP_DEFINE_INTERNAL_PU_VERB),
        .key = {SNA8},
        .def = PART(NAP_PU_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_INTERNAL_PU_VERB, def_data),
        .det = UP_TO(NAP_PU_DATA, host_attachment, def_data),
        .fields = TABLE(pu_fields),
        .refs = {{CLASS_LS, REF_OWNER | REF_OPTIONAL | REF_CARRIED,
                  offsetof(NAP_PU_DATA, def_data.ls_name)}},
        .ref_count = 1,
        .life = {true, true, offsetof(NAP_PU_DATA, def_data.initially_active), 100, 400, 100},
        .hooks = hooks::pu,
    };
}

constexpr FieldRow cn_fields[] = {
    FQ(NAP_CN_DATA, fqcn_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_CN_DATA, def_data.description, "description"),
    FLAG(NAP_CN_DATA, def_data.inherit_port_tg, "inherit_port_tg", "yes"),
    WORD(NAP_CN_DATA, def_data.dlc_type, "dlc_type", dlc_words, "ethernet"),
    NUMBER(NAP_CN_DATA, def_data.effective_capacity, "effective_capacity", 0, 255, "117"),
    WORD(NAP_CN_DATA, def_data.security, "security", security_words, "nonsecure"),
    NUMBER(NAP_CN_DATA, def_data.connect_cost, "connect_cost", 0, 255, "0"),
    NUMBER(NAP_CN_DATA, def_data.byte_cost, "byte_cost", 0, 255, "0"),
    WORD(NAP_CN_DATA, def_data.propagation_delay, "propagation_delay", delay_words, "lan"),
};

ClassRow cn_row() {
    return {
        .id = CLASS_CN,
        .name = "connection_network",
        .lists = {{NAP_QUERY_CN, 0, 0, 0}},
        .define = NAP_DEFINE_CN,
        .remove = NAP_DELETE_CN,
        .entry_size = sizeof(NAP_CN_DATA),
        .define_size = sizeof(NAP_DEFINE_CN_VERB),
        .key = {SNA17},
        .def = PART(NAP_CN_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_CN_VERB, def_data),
        .fields = TABLE(cn_fields),
        .hooks = hooks::cn,
    };
}

constexpr FieldRow cn_port_fields[] = {
    FQ(NAP_CN_PORT_DATA, fqcn_name, "fqcn_name", FIELD_KEY | FIELD_REQUIRED),
    LOCAL(NAP_CN_PORT_DATA, port_name, "name", FIELD_KEY | FIELD_REQUIRED),
};

/* Its key is all that is defined of it. */
ClassRow cn_port_row() {
    return {
        .id = CLASS_CN_PORT,
        .name = "cn_port",
        .lists = {{NAP_QUERY_CN_PORT, 0, 0, 0}},
        .define = NAP_DEFINE_CN_PORT,
        .remove = NAP_DELETE_CN_PORT,
        .entry_size = sizeof(NAP_CN_PORT_DATA),
        .define_size = sizeof(NAP_DEFINE_CN_PORT_VERB),
        .key = {SNA17, LOCAL8},
        .fields = TABLE(cn_port_fields),
        .refs = {{CLASS_CN, REF_OWNER | REF_CARRIED, offsetof(NAP_CN_PORT_DATA, fqcn_name)},
                 {CLASS_PORT, 0, offsetof(NAP_CN_PORT_DATA, port_name)}},
        .ref_count = 2,
        .hooks = hooks::cn_port,
    };
}

constexpr FieldRow dspu_template_fields[] = {
    LOCAL(NAP_DSPU_TEMPLATE_DATA, template_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_DSPU_TEMPLATE_DATA, def_data.description, "description"),
    NUMBER(NAP_DSPU_TEMPLATE_DATA, def_data.max_instance, "max_instance", 0, 65535, "0"),
};

constexpr FieldRow dslu_template_fields[] = {
    SNA(NAP_DSLU_TEMPLATE, host_lu_name, "host_lu_name", FIELD_REQUIRED),
    NUMBER(NAP_DSLU_TEMPLATE, min_nau, "min_nau", 1, 255, "1"),
    NUMBER(NAP_DSLU_TEMPLATE, max_nau, "max_nau", 1, 255, "255"),
    FLAG(NAP_DSLU_TEMPLATE, allow_timeout, "allow_timeout", "no"),
    FLAG(NAP_DSLU_TEMPLATE, delayed_logon, "delayed_logon", "no"),
};

ClassRow dspu_template_row() {
    return {
        .id = CLASS_DSPU_TEMPLATE,
        .name = "dspu_template",
        .lists = {{NAP_QUERY_DSPU_TEMPLATE, 0, 0, 0}},
        .define = NAP_DEFINE_DSPU_TEMPLATE,
        .remove = NAP_DELETE_DSPU_TEMPLATE,
        .entry_size = sizeof(NAP_DSPU_TEMPLATE_DATA),
        .define_size = sizeof(NAP_DEFINE_DSPU_TEMPLATE_VERB),
        .key = {LOCAL8},
        .def = PART(NAP_DSPU_TEMPLATE_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_DSPU_TEMPLATE_VERB, def_data),
        .fields = TABLE(dspu_template_fields),
        .nested = {"range", COUNT_IN(NAP_DSPU_TEMPLATE_DATA, def_data.num_of_dslu_templates),
                   offsetof(NAP_DSPU_TEMPLATE_DATA, def_data.dslu_templates),
                   sizeof(NAP_DSLU_TEMPLATE), 0, NAP_MAX_DSLU_TEMPLATES, true,
                   TABLE(dslu_template_fields)},
        .hooks = hooks::dspu_template,
    };
}

constexpr FieldRow down_pu_fields[] = {
    SNA(NAP_DOWN_PU_DATA, dspu_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_DOWN_PU_DATA, def_data.description, "description"),
    FLAG(NAP_DOWN_PU_DATA, def_data.initially_active, "initially_active", "yes"),
};

/* It comes with its link station, as the PU of a host link does. */
ClassRow down_pu_row() {
    return {
        .id = CLASS_DOWN_PU,
        .name = "downstream_pu",
        .untold = true,
        .lists = {{NAP_QUERY_DOWNSTREAM_PU, NAP_DOWNSTREAM_PU_INDICATION, 0, 0}},
        .entry_size = sizeof(NAP_DOWN_PU_DATA),
        .key = {SNA8},
        .det = UP_TO(NAP_DOWN_PU_DATA, pu_sscp_sess_active, def_data),
        .fields = TABLE(down_pu_fields),
        .refs = {{CLASS_LS, REF_OWNER | REF_CARRIED, offsetof(NAP_DOWN_PU_DATA, def_data.ls_name)}},
        .ref_count = 1,
        .life = {true, true, offsetof(NAP_DOWN_PU_DATA, def_data.initially_active), 100, 400, 100},
        .hooks = hooks::down_pu,
    };
}

constexpr FieldRow primary_line_fields[] = {
    LOCAL(NAP_PRIMARY_LINE_DATA, line_name, "name", FIELD_KEY | FIELD_REQUIRED),
    TEXT(NAP_PRIMARY_LINE_DATA, def_data.description, "description"),
    TEXT(NAP_PRIMARY_LINE_DATA, def_data.device, "device"),
    WORD(NAP_PRIMARY_LINE_DATA, def_data.line_type, "line_type", line_words, "leased"),
    WORD(NAP_PRIMARY_LINE_DATA, def_data.duplex, "duplex", duplex_words, "half"),
    WORD(NAP_PRIMARY_LINE_DATA, def_data.encoding, "encoding", encoding_words, "nrz"),
    FLAG(NAP_PRIMARY_LINE_DATA, def_data.initially_active, "initially_active", "yes"),
    NUMBER(NAP_PRIMARY_LINE_DATA, def_data.line_speed, "line_speed", 600, 2048000, "9600"),
    NUMBER(NAP_PRIMARY_LINE_DATA, def_data.max_btu_size, "max_btu_size", 265, 65535, "265"),
    NUMBER(NAP_PRIMARY_LINE_DATA, def_data.retries, "retries", 0, 255, "15"),
    FLAG_SIM(reachable, "reachable", "yes"),
};

ClassRow primary_line_row() {
    return {
        .id = CLASS_PRIMARY_LINE,
        .name = "primary_line",
        .lists = {{NAP_QUERY_PRIMARY_LINE, 0, 0, 0}},
        .define = NAP_DEFINE_PRIMARY_LINE,
        .remove = NAP_DELETE_PRIMARY_LINE,
        .entry_size = sizeof(NAP_PRIMARY_LINE_DATA),
        .define_size = sizeof(NAP_DEFINE_PRIMARY_LINE_VERB),
        .key = {LOCAL8},
        .def = PART(NAP_PRIMARY_LINE_DATA, def_data),
        .def_in_define = offsetof(NAP_DEFINE_PRIMARY_LINE_VERB, def_data),
        .det = UP_TO(NAP_PRIMARY_LINE_DATA, line_state, def_data),
        .fields = TABLE(primary_line_fields),
        .life = {true, true, offsetof(NAP_PRIMARY_LINE_DATA, def_data.initially_active), 0, 0, 0},
        .hooks = hooks::primary_line,
    };
}

constexpr FieldRow rtp_conn_fields[] = {
    SNA(NAP_RTP_CONN_DATA, rtp_name, "name", FIELD_KEY | FIELD_REQUIRED),
};

ClassRow rtp_conn_row() {
    return {
        .id = CLASS_RTP_CONN,
        .name = "rtp_connection",
        .untold = true,
        .lists = {{NAP_QUERY_RTP_CONNECTION, 0, 0, 0}},
        .entry_size = sizeof(NAP_RTP_CONN_DATA),
        .key = {SNA8},
        .det = REST(NAP_RTP_CONN_DATA, connect_state),
        .fields = TABLE(rtp_conn_fields),
        .hooks = hooks::rtp_conn,
    };
}

KEYS_STAND(NAP_DLC_DATA, NAP_DEFINE_DLC_VERB, dlc_name);
KEYS_STAND(NAP_PORT_DATA, NAP_DEFINE_PORT_VERB, port_name);
KEYS_STAND(NAP_LS_DATA, NAP_DEFINE_LS_VERB, ls_name);
KEYS_STAND(NAP_PU_DATA, NAP_DEFINE_INTERNAL_PU_VERB, pu_name);
KEYS_STAND(NAP_CN_DATA, NAP_DEFINE_CN_VERB, fqcn_name);
KEYS_STAND(NAP_CN_PORT_DATA, NAP_DEFINE_CN_PORT_VERB, fqcn_name);
KEYS_STAND(NAP_DSPU_TEMPLATE_DATA, NAP_DEFINE_DSPU_TEMPLATE_VERB, template_name);
KEYS_STAND(NAP_PRIMARY_LINE_DATA, NAP_DEFINE_PRIMARY_LINE_VERB, line_name);
static_assert(sizeof(NAP_LS_DET) <= sizeof(NAP_RESOURCE_INDICATION::det_data));

} // namespace

void add_connectivity_rows(ClassRow *table) {
    for (const ClassRow &row :
         {dlc_row(), port_row(), ls_row(), pu_row(), cn_row(), cn_port_row(), dspu_template_row(),
          down_pu_row(), primary_line_row(), rtp_conn_row()}) {
        table[row.id] = row;
    }
}

} // namespace node
