/* Schemas of connectivity: DLCs, ports, link stations, connection networks, PUs, HPR connections
 * and primary lines. */
#ifndef CONNECTIVITY_H
#define CONNECTIVITY_H

#include "behaviour.h"

#define AT(member)      FIELD_AT(Entry, member)
#define ITEM_AT(member) FIELD_AT(Item, member)

namespace records {

namespace rows::dlc {
using Entry = NAP_DLC_DATA;

inline constexpr FieldRow fields[] = {
    local(AT(dlc_name)).key("name").required(),
    text(AT(def_data.description)),
    word(AT(def_data.dlc_type), dlc_words, "ethernet"),
    number(AT(def_data.card_number), 0, 254, "0"),
    flag(AT(def_data.initially_active), "yes"),
};

inline constexpr FieldRow status[] = {
    state(AT(dlc_sts)),
};
} // namespace rows::dlc

inline constexpr Schema dlc = {
    .name = "dlc",
    .lists = {{.list = NAP_QUERY_DLC, .indication = NAP_DLC_INDICATION}},
    .define = NAP_DEFINE_DLC,
    .remove = NAP_DELETE_DLC,
    .start = NAP_START_DLC,
    .stop = NAP_STOP_DLC,
    DEFINED_BY(NAP_DLC_DATA, NAP_DEFINE_DLC_VERB, dlc_name, def_data),
    .det = up_to(FIELD_AT(NAP_DLC_DATA, dlc_sts), FIELD_AT(NAP_DLC_DATA, def_data)),
    .key = key_of(rows::dlc::fields),
    .fields = rows::dlc::fields,
    .status = rows::dlc::status,
};

namespace rows::port {
using Entry = NAP_PORT_DATA;

inline constexpr FieldRow fields[] = {
    local(AT(port_name)).key("name").required(),
    text(AT(def_data.description)),
    local(AT(def_data.dlc_name)).required(),
    word(AT(def_data.port_type), port_words, "shared_access"),
    number(AT(def_data.port_number), 0, 254, "0"),
    flag(AT(def_data.initially_active), "yes"),
    flag(AT(def_data.implicit_links), "no"),
    word(AT(def_data.ls_role), role_words, "negotiable"),
    number(AT(def_data.max_rcv_btu_size), 265, 65535, "1500").in(Unit::Bytes),
    number(AT(def_data.tot_link_act_lim), 1, 65535, "255").in(Unit::Links),
    number(AT(def_data.inb_link_act_lim), 0, 65535, "0").in(Unit::Links),
    number(AT(def_data.out_link_act_lim), 0, 65535, "0").in(Unit::Links),
    number(AT(def_data.react_timer), 0, 65535, "30").in(Unit::Seconds),
    text(AT(def_data.local_address)),
};

inline constexpr FieldRow status[] = {
    state(AT(det_data.port_state)),
    count(AT(det_data.active_links)).in(Unit::Links),
    count(AT(det_data.started_at)).in(Unit::Time),
    hex(AT(det_data.last_sense)),
    count(AT(det_data.failed_at)).in(Unit::Time),
    count(AT(det_data.failures)),
    count(AT(det_data.in_bytes)).in(Unit::Bytes),
    count(AT(det_data.out_bytes)).in(Unit::Bytes),
    word(AT(def_data.dlc_type), dlc_words),
};
} // namespace rows::port

inline constexpr Schema port = {
    .name = "port",
    .lists = {{.list = NAP_QUERY_PORT, .indication = NAP_PORT_INDICATION}},
    .define = NAP_DEFINE_PORT,
    .remove = NAP_DELETE_PORT,
    .start = NAP_START_PORT,
    .stop = NAP_STOP_PORT,
    DEFINED_BY(NAP_PORT_DATA, NAP_DEFINE_PORT_VERB, port_name, def_data),
    .det = FIELD_AT(NAP_PORT_DATA, det_data),
    .key = key_of(rows::port::fields),
    .fields = rows::port::fields,
    .status = rows::port::status,
    .simulated = behaviour::reachable_or_not,
};

namespace rows::ls {
using Entry = NAP_LS_DATA;

inline constexpr FieldRow fields[] = {
    local(AT(ls_name)).key("name").required(),
    text(AT(def_data.description)),
    local(AT(def_data.port_name)).required(),
    word(AT(def_data.adj_cp_type), partner_words, "learn"),
    word(AT(def_data.ls_role), role_words, "negotiable"),
    flag(AT(def_data.initially_active), "yes"),
    flag(AT(def_data.auto_act_supp), "no"),
    flag(AT(def_data.cp_cp_sess_support), "no"),
    flag(AT(def_data.hpr_supported), "no"),
    word(AT(def_data.host_attachment), attachment_words, "direct"),
    fq(AT(def_data.adj_cp_name)),
    sna(AT(def_data.pu_name)),
    number(AT(def_data.tg_number), 0, 20, "0"),
    flag(AT(def_data.solicit_sscp_sessions), "yes"),
    flag(AT(def_data.limited_resource), "no"),
    text(AT(def_data.dest_address)),
    number(AT(def_data.max_send_btu_size), 265, 65535, "1500").in(Unit::Bytes),
    number(AT(def_data.react_timer), 0, 65535, "60").in(Unit::Seconds),
    number(AT(def_data.react_retries), 0, 65535, "65535"),
    hex(AT(def_data.node_id), "0"),
};

inline constexpr FieldRow status[] = {
    state(AT(det_data.ls_state)),
    count(AT(det_data.act_sess_count)).in(Unit::Sessions),
    word(AT(det_data.adj_node_type), node_words),
    flag(AT(det_data.hpr_support)),
    flag(AT(det_data.dynamic)),
    fq(AT(det_data.adj_cp_name)).named("actual_cp_name"),
    count(AT(det_data.in_bytes)).in(Unit::Bytes),
    count(AT(det_data.out_bytes)).in(Unit::Bytes),
    count(AT(det_data.in_frames)).in(Unit::Frames),
    count(AT(det_data.out_frames)).in(Unit::Frames),
    count(AT(det_data.retransmissions)).in(Unit::Frames),
    count(AT(det_data.started_at)).in(Unit::Time),
    hex(AT(det_data.last_sense)),
    count(AT(det_data.failed_at)).in(Unit::Time),
    count(AT(det_data.failures)),
    count(AT(det_data.retries)),
    word(AT(def_data.dlc_type), dlc_words),
};
} // namespace rows::ls

inline constexpr Schema ls = {
    .name = "ls",
    .lists = {{.list = NAP_QUERY_LS, .indication = NAP_LS_INDICATION}},
    .define = NAP_DEFINE_LS,
    .remove = NAP_DELETE_LS,
    .start = NAP_START_LS,
    .stop = NAP_STOP_LS,
    DEFINED_BY(NAP_LS_DATA, NAP_DEFINE_LS_VERB, ls_name, def_data),
    .det = FIELD_AT(NAP_LS_DATA, det_data),
    .key = key_of(rows::ls::fields),
    .fields = rows::ls::fields,
    .status = rows::ls::status,
    .simulated = behaviour::link,
};

namespace rows::cn {
using Entry = NAP_CN_DATA;

inline constexpr FieldRow fields[] = {
    fq(AT(fqcn_name)).key("name").required(),
    text(AT(def_data.description)),
    flag(AT(def_data.inherit_port_tg), "yes"),
    word(AT(def_data.dlc_type), dlc_words, "ethernet"),
    number(AT(def_data.effective_capacity), 0, 255, "117"),
    word(AT(def_data.security), security_words, "nonsecure"),
    number(AT(def_data.connect_cost), 0, 255, "0"),
    number(AT(def_data.byte_cost), 0, 255, "0"),
    word(AT(def_data.propagation_delay), delay_words, "lan"),
};

inline constexpr FieldRow status[] = {
    count(AT(num_act_ports)).in(Unit::Ports),
    count(AT(num_ports)).in(Unit::Ports),
};
} // namespace rows::cn

inline constexpr Schema cn = {
    .name = "connection_network",
    .lists = {{.list = NAP_QUERY_CN}},
    .define = NAP_DEFINE_CN,
    .remove = NAP_DELETE_CN,
    DEFINED_BY(NAP_CN_DATA, NAP_DEFINE_CN_VERB, fqcn_name, def_data),
    .key = key_of(rows::cn::fields),
    .fields = rows::cn::fields,
    .status = rows::cn::status,
};

namespace rows::cn_port {
using Entry = NAP_CN_PORT_DATA;

inline constexpr FieldRow fields[] = {
    fq(AT(fqcn_name)).key().required(),
    local(AT(port_name)).key("name").required(),
};

inline constexpr FieldRow status[] = {
    count(AT(tg_num)),
};
} // namespace rows::cn_port

inline constexpr Schema cn_port = {
    .name = "cn_port",
    .lists = {{.list = NAP_QUERY_CN_PORT}},
    .define = NAP_DEFINE_CN_PORT,
    .remove = NAP_DELETE_CN_PORT,
    .owned = true,
    KEYED_BY(NAP_CN_PORT_DATA, NAP_DEFINE_CN_PORT_VERB, fqcn_name),
    .key = key_of(rows::cn_port::fields),
    .fields = rows::cn_port::fields,
    .status = rows::cn_port::status,
};

namespace rows::pu {
using Entry = NAP_PU_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(pu_name)).key("name").required(),
    text(AT(def_data.description)),
    fq(AT(def_data.dlus_name)),
    fq(AT(def_data.bkup_dlus_name)),
    flag(AT(def_data.initially_active), "yes"),
    hex(AT(def_data.pu_id), "0"),
};

inline constexpr FieldRow status[] = {
    word(AT(host_attachment), attachment_words),
    state(AT(pu_sscp_sess_active)),
    count(AT(lu_count)).in(Unit::Lus),
    count(AT(active_lus)).in(Unit::Lus),
    fq(AT(active_dlus_name)),
    local(AT(def_data.ls_name)),
};
} // namespace rows::pu

inline constexpr Schema pu = {
    .name = "pu",
    .lists = {{.list = NAP_QUERY_PU,
               .indication = NAP_PU_INDICATION,
               .selector = offsetof(NAP_PU_DATA, host_attachment),
               .selects = NAP_DIRECT_ATTACHED},
              {.list = NAP_QUERY_DLUR_PU,
               .indication = NAP_DLUR_PU_INDICATION,
               .selector = offsetof(NAP_PU_DATA, host_attachment),
               .selects = NAP_DLUR_ATTACHED}},
    .define = NAP_DEFINE_INTERNAL_PU,
    .remove = NAP_DELETE_INTERNAL_PU,
    .start = NAP_START_PU,
    .stop = NAP_STOP_PU,
    DEFINED_BY(NAP_PU_DATA, NAP_DEFINE_INTERNAL_PU_VERB, pu_name, def_data),
    .det = up_to(FIELD_AT(NAP_PU_DATA, host_attachment), FIELD_AT(NAP_PU_DATA, def_data)),
    .key = key_of(rows::pu::fields),
    .fields = rows::pu::fields,
    .status = rows::pu::status,
    .simulated = behaviour::reachable_or_not,
};

namespace rows::down_pu {
using Entry = NAP_DOWN_PU_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(dspu_name)).key("name").required(),
    text(AT(def_data.description)),
    flag(AT(def_data.initially_active), "yes"),
};

inline constexpr FieldRow status[] = {
    state(AT(pu_sscp_sess_active)),    word(AT(dspu_services), service_words),
    count(AT(lu_count)).in(Unit::Lus), count(AT(active_lus)).in(Unit::Lus),
    local(AT(def_data.ls_name)),
};
} // namespace rows::down_pu

inline constexpr Schema down_pu = {
    .name = "downstream_pu",
    .lists = {{.list = NAP_QUERY_DOWNSTREAM_PU, .indication = NAP_DOWNSTREAM_PU_INDICATION}},
    .start = NAP_START_PU,
    .stop = NAP_STOP_PU,
    .shares_verbs = true,
    .entry_size = sizeof(NAP_DOWN_PU_DATA),
    .det = up_to(FIELD_AT(NAP_DOWN_PU_DATA, pu_sscp_sess_active),
                 FIELD_AT(NAP_DOWN_PU_DATA, def_data)),
    .key = key_of(rows::down_pu::fields),
    .fields = rows::down_pu::fields,
    .status = rows::down_pu::status,
    .untold = true,
};

namespace rows::dspu_template {
using Entry = NAP_DSPU_TEMPLATE_DATA;

inline constexpr FieldRow fields[] = {
    local(AT(template_name)).key("name").required(),
    text(AT(def_data.description)),
    number(AT(def_data.max_instance), 0, 65535, "0"),
};

inline constexpr FieldRow status[] = {
    count(AT(active_instances)),
};

using Item = NAP_DSLU_TEMPLATE;

inline constexpr FieldRow item_fields[] = {
    sna(ITEM_AT(host_lu_name)).required(),   number(ITEM_AT(min_nau), 1, 255, "1"),
    number(ITEM_AT(max_nau), 1, 255, "255"), flag(ITEM_AT(allow_timeout), "no"),
    flag(ITEM_AT(delayed_logon), "no"),
};
} // namespace rows::dspu_template

inline constexpr Schema dspu_template = {
    .name = "dspu_template",
    .lists = {{.list = NAP_QUERY_DSPU_TEMPLATE}},
    .define = NAP_DEFINE_DSPU_TEMPLATE,
    .remove = NAP_DELETE_DSPU_TEMPLATE,
    DEFINED_BY(NAP_DSPU_TEMPLATE_DATA, NAP_DEFINE_DSPU_TEMPLATE_VERB, template_name, def_data),
    .key = key_of(rows::dspu_template::fields),
    .fields = rows::dspu_template::fields,
    .status = rows::dspu_template::status,
    .nested = {.name = "range",
               .count = FIELD_AT(NAP_DSPU_TEMPLATE_DATA, def_data.num_of_dslu_templates),
               .offset = offsetof(NAP_DSPU_TEMPLATE_DATA, def_data.dslu_templates),
               .size = sizeof(NAP_DSLU_TEMPLATE),
               .least = 0,
               .most = NAP_MAX_DSLU_TEMPLATES,
               .cuts = true,
               .fields = rows::dspu_template::item_fields},
};

namespace rows::primary_line {
using Entry = NAP_PRIMARY_LINE_DATA;

inline constexpr FieldRow fields[] = {
    local(AT(line_name)).key("name").required(),
    text(AT(def_data.description)),
    text(AT(def_data.device)),
    word(AT(def_data.line_type), line_words, "leased"),
    word(AT(def_data.duplex), duplex_words, "half"),
    word(AT(def_data.encoding), encoding_words, "nrz"),
    flag(AT(def_data.initially_active), "yes"),
    number(AT(def_data.line_speed), 600, 2048000, "9600").in(Unit::BitsPerSecond),
    number(AT(def_data.max_btu_size), 265, 65535, "265").in(Unit::Bytes),
    number(AT(def_data.retries), 0, 255, "15"),
};

inline constexpr FieldRow status[] = {
    state(AT(line_state)),
};
} // namespace rows::primary_line

inline constexpr Schema primary_line = {
    .name = "primary_line",
    .lists = {{.list = NAP_QUERY_PRIMARY_LINE}},
    .define = NAP_DEFINE_PRIMARY_LINE,
    .remove = NAP_DELETE_PRIMARY_LINE,
    DEFINED_BY(NAP_PRIMARY_LINE_DATA, NAP_DEFINE_PRIMARY_LINE_VERB, line_name, def_data),
    .det = up_to(FIELD_AT(NAP_PRIMARY_LINE_DATA, line_state),
                 FIELD_AT(NAP_PRIMARY_LINE_DATA, def_data)),
    .key = key_of(rows::primary_line::fields),
    .fields = rows::primary_line::fields,
    .status = rows::primary_line::status,
    .simulated = behaviour::reachable_or_not,
};

namespace rows::rtp_conn {
using Entry = NAP_RTP_CONN_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(rtp_name)).key("name").required(),
};

inline constexpr FieldRow status[] = {
    word(AT(connect_state), route_words),
    local(AT(first_hop_ls_name)),
    fq(AT(dest_cp_name)),
    sna(AT(cos_name)),
    count(AT(path_switch_attempts)),
    count(AT(max_btu_size)).in(Unit::Bytes),
    count(AT(liveness_timeout)).in(Unit::Milliseconds),
    hex(AT(local_tcid[0])).named("local_tcid_high"),
    hex(AT(local_tcid[1])).named("local_tcid_low"),
    hex(AT(remote_tcid[0])).named("remote_tcid_high"),
    hex(AT(remote_tcid[1])).named("remote_tcid_low"),
    count(AT(bytes_sent)).in(Unit::Bytes),
    count(AT(bytes_received)).in(Unit::Bytes),
    count(AT(bytes_resent)).in(Unit::Bytes),
    count(AT(bytes_discarded)).in(Unit::Bytes),
    count(AT(smoothed_rtt)).in(Unit::Milliseconds),
    count(AT(send_rate)).in(Unit::KilobitsPerSecond),
    count(AT(max_send_rate)).in(Unit::KilobitsPerSecond),
    count(AT(sessions)).in(Unit::Sessions),
    count(AT(up_time)).in(Unit::Seconds),
    text(AT(route)),
};
} // namespace rows::rtp_conn

inline constexpr Schema rtp_conn = {
    .name = "rtp_connection",
    .lists = {{.list = NAP_QUERY_RTP_CONNECTION}},
    .entry_size = sizeof(NAP_RTP_CONN_DATA),
    .det = rest_of<NAP_RTP_CONN_DATA>(FIELD_AT(NAP_RTP_CONN_DATA, connect_state)),
    .key = key_of(rows::rtp_conn::fields),
    .fields = rows::rtp_conn::fields,
    .status = rows::rtp_conn::status,
    .untold = true,
};

} // namespace records

#undef AT
#undef ITEM_AT

#endif
