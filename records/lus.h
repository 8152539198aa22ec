/* Schemas of LUs: dependent ones, their pools and what hangs on them, downstream and local ones. */
#ifndef LUS_H
#define LUS_H

#include "behaviour.h"

#define AT(member) FIELD_AT(Entry, member)

namespace records {

namespace rows::lu_pool {
using Entry = NAP_LU_POOL_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(pool_name)).key("name").required(),
    sna(AT(lu_name)).key(),
    text(AT(description)),
};

inline constexpr FieldRow status[] = {
    sna(AT(pu_name)),
    flag(AT(lu_active)),
    flag(AT(lu_in_use)),
};
} // namespace rows::lu_pool

inline constexpr Schema lu_pool = {
    .name = "lu_pool",
    .lists = {{.list = NAP_QUERY_LU_POOL}},
    .define = NAP_DEFINE_LU_POOL,
    .remove = NAP_DELETE_LU_POOL,
    DEFINED_BY(NAP_LU_POOL_DATA, NAP_DEFINE_LU_POOL_VERB, pool_name, description),
    .key = key_of(rows::lu_pool::fields),
    .fields = rows::lu_pool::fields,
    .status = rows::lu_pool::status,
};

namespace rows::lu03 {
using Entry = NAP_LU03_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(pu_name)).key().required(),
    sna(AT(lu_name)).key("name").required(),
    text(AT(def_data.description)),
    number(AT(def_data.nau_address), 1, 255, "1").counts(),
    word(AT(def_data.lu_model), model_words, "display_2"),
    sna(AT(def_data.pool_name)),
    word(AT(def_data.priority), priority_words, "medium"),
    flag(AT(def_data.sscp_id_given), "no"),
    number(AT(def_data.timeout), 0, 65535, "0").in(Unit::Seconds),
};

inline constexpr FieldRow status[] = {
    flag(AT(det_data.lu_sscp_sess_active)), flag(AT(det_data.appl_conn_active)),
    flag(AT(det_data.plu_sess_active)),     word(AT(det_data.app_type), application_words),
    text(AT(det_data.user_name)),
};
} // namespace rows::lu03

inline constexpr Schema lu03 = {
    .name = "lu03",
    .lists = {{.list = NAP_QUERY_LU_0_TO_3, .indication = NAP_LU_0_TO_3_INDICATION}},
    .define = NAP_DEFINE_LU_0_TO_3,
    .remove = NAP_DELETE_LU_0_TO_3,
    .owned = true,
    DEFINED_BY(NAP_LU03_DATA, NAP_DEFINE_LU03_VERB, pu_name, def_data),
    .det = FIELD_AT(NAP_LU03_DATA, det_data),
    .key = key_of(rows::lu03::fields),
    .fields = rows::lu03::fields,
    .status = rows::lu03::status,
    .simulated = behaviour::session_of_lu,
};

namespace rows::down_lu {
using Entry = NAP_DOWN_LU_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(dspu_name)).key().required(),
    sna(AT(dslu_name)).key("name").required(),
    text(AT(def_data.description)),
    number(AT(def_data.nau_address), 1, 255, "1").counts(),
    flag(AT(def_data.allow_timeout), "no"),
    flag(AT(def_data.delayed_logon), "no"),
    sna(AT(def_data.host_lu_name)).required(),
};

inline constexpr FieldRow status[] = {
    flag(AT(det_data.lu_sscp_sess_active)),
    flag(AT(det_data.plu_sess_active)),
    flag(AT(det_data.dynamic)),
    sna(AT(det_data.plu_name)),
    sna(AT(det_data.used_lu_name)),
};
} // namespace rows::down_lu

inline constexpr Schema down_lu = {
    .name = "downstream_lu",
    .lists = {{.list = NAP_QUERY_DOWNSTREAM_LU, .indication = NAP_DOWNSTREAM_LU_INDICATION}},
    .define = NAP_DEFINE_DOWNSTREAM_LU,
    .remove = NAP_DELETE_DOWNSTREAM_LU,
    .owned = true,
    DEFINED_BY(NAP_DOWN_LU_DATA, NAP_DEFINE_DOWN_LU_VERB, dspu_name, def_data),
    .det = FIELD_AT(NAP_DOWN_LU_DATA, det_data),
    .key = key_of(rows::down_lu::fields),
    .fields = rows::down_lu::fields,
    .status = rows::down_lu::status,
    .simulated = behaviour::host_session,
};

namespace rows::extra_data {
using Entry = NAP_EXTRA_DATA_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(pu_name)).key().required(), sna(AT(lu_name)).key("name").required(),
    text(AT(def_data.display_name)),   text(AT(def_data.location)),
    text(AT(def_data.logon_text)),
};
} // namespace rows::extra_data

inline constexpr Schema extra_data = {
    .name = "extra_data",
    .lists = {{.list = NAP_QUERY_EXTRA_DATA}},
    .define = NAP_DEFINE_EXTRA_DATA,
    .remove = NAP_DELETE_EXTRA_DATA,
    DEFINED_BY(NAP_EXTRA_DATA_DATA, NAP_DEFINE_EXTRA_DATA_VERB, pu_name, def_data),
    .key = key_of(rows::extra_data::fields),
    .fields = rows::extra_data::fields,
};

namespace rows::local_lu {
using Entry = NAP_LOCAL_LU_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(lu_name)).key("name").required(),
    text(AT(def_data.description)),
    local(AT(def_data.lu_alias)).required(),
    number(AT(def_data.nau_address), 0, 254, "0"),
    flag(AT(def_data.sync_point_support), "no"),
    flag(AT(def_data.disable), "no"),
    flag(AT(def_data.default_pool), "no"),
    sna(AT(def_data.pu_name)),
    number(AT(def_data.lu_session_limit), 0, 65535, "0").in(Unit::Sessions),
    flag(AT(def_data.password_substitution), "no"),
};

inline constexpr FieldRow status[] = {
    flag(AT(lu_sscp_sess_active)),
    flag(AT(appl_conn_active)),
    count(AT(active_sessions)).in(Unit::Sessions),
};
} // namespace rows::local_lu

inline constexpr Schema local_lu = {
    .name = "local_lu",
    .lists = {{.list = NAP_QUERY_LOCAL_LU, .indication = NAP_LOCAL_LU_INDICATION}},
    .define = NAP_DEFINE_LOCAL_LU,
    .remove = NAP_DELETE_LOCAL_LU,
    DEFINED_BY(NAP_LOCAL_LU_DATA, NAP_DEFINE_LOCAL_LU_VERB, lu_name, def_data),
    .det = up_to(FIELD_AT(NAP_LOCAL_LU_DATA, lu_sscp_sess_active),
                 FIELD_AT(NAP_LOCAL_LU_DATA, def_data)),
    .key = key_of(rows::local_lu::fields),
    .fields = rows::local_lu::fields,
    .status = rows::local_lu::status,
};

namespace rows::primary_lu0 {
using Entry = NAP_PRIMARY_LU0_DATA;

inline constexpr FieldRow fields[] = {
    sna(AT(lu_name)).key("name").required(),
    text(AT(def_data.description)),
    local(AT(def_data.line_name)).required(),
    sna(AT(def_data.plu_name)),
    number(AT(def_data.station_address), 1, 254, "193"),
    number(AT(def_data.nau_address), 1, 255, "1").counts(),
    number(AT(def_data.max_ru_size), 256, 65535, "256").in(Unit::Bytes),
};

inline constexpr FieldRow status[] = {
    flag(AT(lu_sess_active)),
    flag(AT(appl_conn_active)),
};
} // namespace rows::primary_lu0

inline constexpr Schema primary_lu0 = {
    .name = "primary_lu0",
    .lists = {{.list = NAP_QUERY_PRIMARY_LU0}},
    .define = NAP_DEFINE_PRIMARY_LU0,
    .remove = NAP_DELETE_PRIMARY_LU0,
    DEFINED_BY(NAP_PRIMARY_LU0_DATA, NAP_DEFINE_PRIMARY_LU0_VERB, lu_name, def_data),
    .det = up_to(FIELD_AT(NAP_PRIMARY_LU0_DATA, lu_sess_active),
                 FIELD_AT(NAP_PRIMARY_LU0_DATA, def_data)),
    .key = key_of(rows::primary_lu0::fields),
    .fields = rows::primary_lu0::fields,
    .status = rows::primary_lu0::status,
    .simulated = behaviour::user_of_lu,
};

namespace rows::lu62_timeout {
using Entry = NAP_LU62_TIMEOUT_DATA;

inline constexpr FieldRow fields[] = {
    word(AT(resource_type), timeout_words, "global").key(),
    any_name(AT(resource_name)).key("name"),
    number(AT(def_data.timeout), 0, 65535, "60").in(Unit::Seconds),
};
} // namespace rows::lu62_timeout

inline constexpr Schema lu62_timeout = {
    .name = "lu62_timeout",
    .lists = {{.list = NAP_QUERY_LU62_TIMEOUT}},
    .define = NAP_DEFINE_LU62_TIMEOUT,
    .remove = NAP_DELETE_LU62_TIMEOUT,
    DEFINED_BY(NAP_LU62_TIMEOUT_DATA, NAP_DEFINE_LU62_TIMEOUT_VERB, resource_type, def_data),
    .key = key_of(rows::lu62_timeout::fields),
    .fields = rows::lu62_timeout::fields,
};

} // namespace records

#undef AT

#endif
