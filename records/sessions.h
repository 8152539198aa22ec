/* Schemas of sessions and routes: classes of service, modes, partners, directory, routing. */
#ifndef SESSIONS_H
#define SESSIONS_H

#include "behaviour.h"
#include "moderules.h"

#define AT(member) FIELD_AT(Entry, member)

namespace records {

namespace rows::cos {
using Entry = NAP_COS_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(cos_name)).key("name").required(),
    text(AT(def_data.description)),
    word(AT(def_data.transmission_priority), flow_words, "medium"),
};

inline constexpr FieldRow status[] = {
    count(AT(record_type)),
    count(AT(def_data.num_of_node_rows)),
    count(AT(def_data.num_of_tg_rows)),
    flag(AT(def_data.sna_defined)),
};
} // namespace rows::cos

inline constexpr Schema cos = {
    .name = "cos",
    .lists = {{.list = NAP_QUERY_COS}},
    .define = NAP_DEFINE_COS,
    .remove = NAP_DELETE_COS,
    DEFINED_BY(NAP_COS_DATA, NAP_DEFINE_COS_VERB, cos_name, def_data),
    .key = key_of(rows::cos::fields),
    .fields = rows::cos::fields,
    .status = rows::cos::status,
};

namespace rows::cos_node_row {
using Entry = NAP_COS_NODE_ROW_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(cos_name)).key().required(),
    number(AT(row_number), 1, 8).key("name"),
    flag(AT(def_data.min_congestion), "no"),
    flag(AT(def_data.max_congestion), "yes"),
    number(AT(def_data.min_resistance), 0, 255, "0"),
    number(AT(def_data.max_resistance), 0, 255, "255"),
    number(AT(def_data.weight), 0, 255, "5"),
};
} // namespace rows::cos_node_row

inline constexpr Schema cos_node_row = {
    .name = "cos_node_row",
    .lists = {{.list = NAP_QUERY_COS_NODE_ROW}},
    .define = NAP_DEFINE_COS_NODE_ROW,
    .remove = NAP_DELETE_COS_NODE_ROW,
    .owned = true,
    DEFINED_BY(NAP_COS_NODE_ROW_DATA, NAP_DEFINE_COS_NODE_ROW_VERB, cos_name, def_data),
    .key = key_of(rows::cos_node_row::fields),
    .fields = rows::cos_node_row::fields,
};

namespace rows::cos_tg_row {
using Entry = NAP_COS_TG_ROW_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(cos_name)).key().required(),
    number(AT(row_number), 1, 8).key("name"),
    number(AT(def_data.min.capacity), 0, 255, "0").named("min_capacity"),
    number(AT(def_data.min.connect_cost), 0, 255, "0").named("min_connect_cost"),
    number(AT(def_data.min.byte_cost), 0, 255, "0").named("min_byte_cost"),
    number(AT(def_data.min.security), 0, 255, "1").named("min_security"),
    number(AT(def_data.min.propagation_delay), 0, 255, "0").named("min_propagation_delay"),
    number(AT(def_data.min.user_defined[0]), 0, 255, "0").named("min_user_1"),
    number(AT(def_data.min.user_defined[1]), 0, 255, "0").named("min_user_2"),
    number(AT(def_data.min.user_defined[2]), 0, 255, "0").named("min_user_3"),
    number(AT(def_data.max.capacity), 0, 255, "255").named("max_capacity"),
    number(AT(def_data.max.connect_cost), 0, 255, "255").named("max_connect_cost"),
    number(AT(def_data.max.byte_cost), 0, 255, "255").named("max_byte_cost"),
    number(AT(def_data.max.security), 0, 255, "255").named("max_security"),
    number(AT(def_data.max.propagation_delay), 0, 255, "255").named("max_propagation_delay"),
    number(AT(def_data.max.user_defined[0]), 0, 255, "255").named("max_user_1"),
    number(AT(def_data.max.user_defined[1]), 0, 255, "255").named("max_user_2"),
    number(AT(def_data.max.user_defined[2]), 0, 255, "255").named("max_user_3"),
    number(AT(def_data.weight), 0, 255, "30"),
};
} // namespace rows::cos_tg_row

inline constexpr Schema cos_tg_row = {
    .name = "cos_tg_row",
    .lists = {{.list = NAP_QUERY_COS_TG_ROW}},
    .define = NAP_DEFINE_COS_TG_ROW,
    .remove = NAP_DELETE_COS_TG_ROW,
    .owned = true,
    DEFINED_BY(NAP_COS_TG_ROW_DATA, NAP_DEFINE_COS_TG_ROW_VERB, cos_name, def_data),
    .key = key_of(rows::cos_tg_row::fields),
    .fields = rows::cos_tg_row::fields,
};

namespace rows::mode_def {
using Entry = NAP_MODE_DEF_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(mode_name)).key("name"),
    text(AT(mode_chars.description)),
    number(AT(mode_chars.max_ru_size_upp), 0, MOST_RU_SIZE, "4096").in(Unit::Bytes),
    number(AT(mode_chars.max_ru_size_low), 0, MOST_RU_SIZE, "256").in(Unit::Bytes),
    flag(AT(mode_chars.default_ru_size), "yes"),
    number(AT(mode_chars.receive_pacing_win), 1, 63, "7"),
    number(AT(mode_chars.max_receive_pacing_win), 0, 32767, "0"),
    number(AT(mode_chars.max_neg_sess_lim), 0, 32767, "8").in(Unit::Sessions),
    number(AT(mode_chars.plu_mode_session_limit), 0, 32767, "8").in(Unit::Sessions),
    number(AT(mode_chars.min_conwin_src), 0, 32767, "4").in(Unit::Sessions),
    number(AT(mode_chars.min_conloser_src), 0, 32767, "0").in(Unit::Sessions),
    number(AT(mode_chars.auto_act), 0, 32767, "0").in(Unit::Sessions),
    sna(AT(mode_chars.cos_name)),
    flag(AT(mode_chars.cryptography), "no"),
    flag(AT(mode_chars.compression), "no"),
    word(AT(mode_chars.max_compress_lvl), compression_words, "none"),
    word(AT(mode_chars.max_decompress_lvl), compression_words, "none"),
};

inline constexpr FieldRow status[] = {
    hex(AT(mode_chars.mode_flags)),
    flag(AT(mode_chars.sna_defined)),
};
} // namespace rows::mode_def

inline constexpr Schema mode_def = {
    .name = "mode",
    .lists = {{.list = NAP_QUERY_MODE_DEFINITION}},
    .define = NAP_DEFINE_MODE,
    .remove = NAP_DELETE_MODE,
    DEFINED_BY(NAP_MODE_DEF_DATA, NAP_DEFINE_MODE_VERB, mode_name, mode_chars),
    .key = key_of(rows::mode_def::fields),
    .fields = rows::mode_def::fields,
    .status = rows::mode_def::status,
};

namespace rows::plu_def {
using Entry = NAP_PLU_DEF_DATA;

inline constexpr FieldRow fields[] = {
    fq(AT(fqplu_name)).key("name").required(),
    text(AT(def_data.description)),
    local(AT(def_data.plu_alias)),
    sna(AT(def_data.plu_un_name)),
    number(AT(def_data.max_mc_ll_send_size), 0, 32767, "0").in(Unit::Bytes),
    flag(AT(def_data.conv_security_ver), "no"),
    flag(AT(def_data.parallel_sess_supp), "yes"),
};
} // namespace rows::plu_def

inline constexpr Schema plu_def = {
    .name = "partner_lu",
    .lists = {{.list = NAP_QUERY_PARTNER_LU_DEFINITION}},
    .define = NAP_DEFINE_PARTNER_LU,
    .remove = NAP_DELETE_PARTNER_LU,
    DEFINED_BY(NAP_PLU_DEF_DATA, NAP_DEFINE_PLU_VERB, fqplu_name, def_data),
    .key = key_of(rows::plu_def::fields),
    .fields = rows::plu_def::fields,
};

namespace rows::mode {
using Entry = NAP_MODE_DATA;

inline constexpr FieldRow fields[] = {
    local(AT(lu_alias)).key().required(),
    sna(AT(mode_name)).key(),
    fq(AT(fqplu_name)).key("name").required(),
    number(AT(sess_limit), 0, 32767, "8").in(Unit::Sessions),
    number(AT(min_conwinners), 0, 32767, "4").in(Unit::Sessions),
    number(AT(min_conlosers), 0, 32767, "0").in(Unit::Sessions),
    fq(AT(fq_cp_name)),
};

inline constexpr FieldRow status[] = {
    local(AT(plu_alias)),
    count(AT(act_sess_count)).in(Unit::Sessions),
    flag(AT(draining)),
    count(AT(in_bytes)).in(Unit::Bytes),
    count(AT(out_bytes)).in(Unit::Bytes),
    count(AT(in_messages)).in(Unit::Messages),
    count(AT(out_messages)).in(Unit::Messages),
    count(AT(failures)),
    count(AT(failed_at)).in(Unit::Time),
    hex(AT(last_sense)),
};
} // namespace rows::mode

inline constexpr Schema mode = {
    .name = "mode_in_use",
    .lists = {{.list = NAP_QUERY_MODE, .indication = NAP_MODE_INDICATION}},
    .owned = true,
    .entry_size = sizeof(NAP_MODE_DATA),
    .det = rest_of<NAP_MODE_DATA>(FIELD_AT(NAP_MODE_DATA, plu_alias)),
    .key = key_of(rows::mode::fields),
    .fields = rows::mode::fields,
    .status = rows::mode::status,
    .simulated = behaviour::sessions_of_mode,
};

namespace rows::plu {
using Entry = NAP_PLU_DATA;

inline constexpr FieldRow fields[] = {
    local(AT(lu_alias)).key().required(),
    local(AT(plu_alias)).key(),
    fq(AT(fqplu_name)).key("name").required(),
};

inline constexpr FieldRow status[] = {
    count(AT(act_sess_count)).in(Unit::Sessions),
    count(AT(act_conv_count)),
    fq(AT(fq_cp_name)),
    flag(AT(parallel_sess)),
};
} // namespace rows::plu

inline constexpr Schema plu = {
    .name = "partner_in_use",
    .lists = {{.list = NAP_QUERY_PARTNER_LU, .indication = NAP_PLU_INDICATION}},
    .owned = true,
    .entry_size = sizeof(NAP_PLU_DATA),
    .det = rest_of<NAP_PLU_DATA>(FIELD_AT(NAP_PLU_DATA, act_sess_count)),
    .key = key_of(rows::plu::fields),
    .fields = rows::plu::fields,
    .status = rows::plu::status,
    .untold = true,
};

namespace rows::directory {
using Entry = NAP_DIR_DATA;

inline constexpr FieldRow fields[] = {
    fq(AT(fqcp_name)).key().required(),
    fq(AT(resource_name)).key("name"),
    word(AT(resource_type), resource_words, "lu").key(),
    text(AT(def_data.description)),
    word(AT(def_data.wildcard), wildcard_words, "none"),
};

inline constexpr FieldRow status[] = {
    word(AT(entry_type), directory_words),
};
} // namespace rows::directory

inline constexpr Schema directory = {
    .name = "directory",
    .lists = {{.list = NAP_QUERY_DIRECTORY_ENTRY, .indication = NAP_DIRECTORY_INDICATION}},
    .define = NAP_DEFINE_DIRECTORY_ENTRY,
    .remove = NAP_DELETE_DIRECTORY_ENTRY,
    DEFINED_BY(NAP_DIR_DATA, NAP_DEFINE_DIR_VERB, fqcp_name, def_data),
    .det = rest_of<NAP_DIR_DATA>(FIELD_AT(NAP_DIR_DATA, entry_type)),
    .key = key_of(rows::directory::fields),
    .fields = rows::directory::fields,
    .status = rows::directory::status,
};

namespace rows::ls_routing {
using Entry = NAP_LS_ROUTING_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(lu_name)).key().required(),       fq(AT(fqplu_name)).key("name"),
    local(AT(def_data.ls_name)).required(),  word(AT(def_data.wildcard), wildcard_words, "none"),
    flag(AT(def_data.use_fqplu_name), "no"), text(AT(def_data.description)),
};
} // namespace rows::ls_routing

inline constexpr Schema ls_routing = {
    .name = "ls_routing",
    .lists = {{.list = NAP_QUERY_LS_ROUTING}},
    .define = NAP_DEFINE_LS_ROUTING,
    .remove = NAP_DELETE_LS_ROUTING,
    DEFINED_BY(NAP_LS_ROUTING_DATA, NAP_DEFINE_LS_ROUTING_VERB, lu_name, def_data),
    .key = key_of(rows::ls_routing::fields),
    .fields = rows::ls_routing::fields,
};

} // namespace records

#undef AT

#endif
