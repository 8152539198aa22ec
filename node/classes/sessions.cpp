/* What is peculiar to sessions and routes. */
#include "classhooks.h"
#include "engine.h"
#include "fieldrows.h"
#include "moderules.h"

#include "nbbase.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "snadefined.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

Result removable_unless_sna(const Engine &, const Resource &resource) {
    const NB_UCHAR *name = resource.entry.get() + KEY_OFFSET;
    const bool own =
        resource.row->id == CLASS_MODE_DEF ? records::is_sna_mode(name) : records::is_sna_cos(name);
    return own ? bad_parameter(NAP_INVALID_NAME) : GOOD;
}

/* A mode that the node's defaults name stays, too. */
Result removable_mode(const Engine &engine, const Resource &resource) {
    const auto defaults = engine.settings<NAP_QUERY_DEFAULTS_VERB>(NAP_QUERY_DEFAULTS).def_data;
    const Result result = removable_unless_sna(engine, resource);
    const bool named = same_name(defaults.mode_name, resource.entry.get() + KEY_OFFSET, 8);
    return result.ok() && named ? bad_state(NAP_IN_USE) : result;
}

NB_UCHAR rows_of(const Engine &engine, ClassId id, const NB_UCHAR *cos_name) {
    const ResourceTable &rows = engine.table(id);
    NB_UCHAR count = 0;
    for (Resource *at = rows.first_with(cos_name, 8); at != nullptr;
         at = ResourceTable::next_with(*at, 8)) {
        count++;
    }
    return count;
}

void fill_cos(const Engine &engine, NB_UCHAR *bytes) {
    auto entry = nap_copy<NAP_COS_DATA>(bytes);
    entry.def_data.sna_defined = records::is_sna_cos(entry.cos_name) ? 1 : 0;
    entry.record_type = entry.def_data.sna_defined != 0 ? NAP_COS_SNA_DEFINED : 0;
    entry.def_data.num_of_node_rows = rows_of(engine, CLASS_COS_NODE_ROW, entry.cos_name);
    entry.def_data.num_of_tg_rows = rows_of(engine, CLASS_COS_TG_ROW, entry.cos_name);
    memcpy(bytes, &entry, sizeof entry);
}

void count_rows(Resource &cos, const Resource &which, int rows, int) {
    auto entry = Engine::get<NAP_COS_DATA>(cos);
    NB_UCHAR &count = which.row->id == CLASS_COS_NODE_ROW ? entry.def_data.num_of_node_rows
                                                          : entry.def_data.num_of_tg_rows;
    count = static_cast<NB_UCHAR>(count + rows);
    Engine::put(cos, entry);
}

bool ordered(const NAP_TG_LIMITS &low, const NAP_TG_LIMITS &high) {
    NB_UCHAR least[sizeof low];
    NB_UCHAR most[sizeof high];
    memcpy(least, &low, sizeof low);
    memcpy(most, &high, sizeof high);
    return std::equal(std::begin(least), std::end(least), std::begin(most),
                      [](NB_UCHAR one, NB_UCHAR other) { return one <= other; });
}

/* No limit lies below the other end of its range. */
Result check_node_row(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    const auto row = nap_copy<NAP_COS_NODE_ROW_DATA>(bytes).def_data;
    return row.min_congestion <= row.max_congestion && row.min_resistance <= row.max_resistance
               ? GOOD
               : bad_parameter(NAP_INVALID_VALUE);
}

Result check_tg_row(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    const auto row = nap_copy<NAP_COS_TG_ROW_DATA>(bytes).def_data;
    return ordered(row.min, row.max) ? GOOD : bad_parameter(NAP_INVALID_VALUE);
}

/* Given sizes are in the range of their fields already, or below it. */
bool sizes_fit(const NAP_MODE_CHARS &chars) {
    return chars.default_ru_size != 0 || (chars.max_ru_size_low >= records::LEAST_RU_SIZE &&
                                          chars.max_ru_size_low <= chars.max_ru_size_upp);
}

bool limits_fit(const NAP_MODE_CHARS &chars) {
    return chars.plu_mode_session_limit <= chars.max_neg_sess_lim &&
           chars.min_conwin_src <= chars.plu_mode_session_limit &&
           chars.min_conloser_src <= chars.plu_mode_session_limit - chars.min_conwin_src &&
           chars.auto_act <= chars.min_conwin_src;
}

Result check_mode_def(const Engine &engine, const NB_UCHAR *bytes, const Resource *) {
    const auto mode = nap_copy<NAP_MODE_DEF_DATA>(bytes);
    const NAP_MODE_CHARS chars = mode.mode_chars;
    if (is_blank(KeyKind::Ebcdic, chars.cos_name, sizeof chars.cos_name) &&
        records::modes_need_cos(engine.node_record().info)) {
        return bad_parameter(NAP_INVALID_NAME);
    }
    const bool window_fits =
        chars.receive_pacing_win <= records::most_initial_window(chars.max_receive_pacing_win);
    const bool control_fits =
        !records::is_session_control_mode(mode.mode_name) ||
        records::fits_session_control(chars.plu_mode_session_limit, chars.min_conwin_src);
    return sizes_fit(chars) && limits_fit(chars) && window_fits && control_fits
               ? GOOD
               : bad_parameter(NAP_INVALID_VALUE);
}

/* Without compression there are no levels of it. */
void fill_mode_def(const Engine &, NB_UCHAR *bytes) {
    auto entry = nap_copy<NAP_MODE_DEF_DATA>(bytes);
    NAP_MODE_CHARS &chars = entry.mode_chars;
    chars.sna_defined = records::is_sna_mode(entry.mode_name) ? 1 : 0;
    chars.mode_flags = records::is_control_point_mode(entry.mode_name) ? NAP_MODE_CONTROL_POINT : 0;
    if (chars.compression == 0) {
        chars.max_compress_lvl = chars.max_decompress_lvl = NAP_COMPRESSION_NONE;
    }
    memcpy(bytes, &entry, sizeof entry);
}

Resource *partner_in_use(const Engine &engine, const NAP_PLU_DATA &partner) {
    return engine.find(CLASS_PLU, reinterpret_cast<const NB_UCHAR *>(&partner) + KEY_OFFSET);
}

/* A mode in use makes its partner LU an LU in use, unless it names one that is; its definition may
 * have changed since. */
void mode_defined(Engine &engine, Resource &resource, bool) {
    const auto mode = Engine::get<NAP_MODE_DATA>(resource);
    const Resource *known = engine.find(CLASS_PLU_DEF, mode.fqplu_name);
    NAP_PLU_DATA partner = {};
    memcpy(partner.lu_alias, mode.lu_alias, sizeof partner.lu_alias);
    memcpy(partner.fqplu_name, mode.fqplu_name, sizeof partner.fqplu_name);
    memcpy(partner.fq_cp_name, mode.fq_cp_name, sizeof partner.fq_cp_name);
    memcpy(partner.plu_alias, mode.plu_alias, sizeof partner.plu_alias);
    if (partner_in_use(engine, partner) != nullptr) {
        return;
    }
    memset(partner.plu_alias, ' ', sizeof partner.plu_alias);
    partner.parallel_sess = 1;
    if (known != nullptr) {
        const auto definition = Engine::get<NAP_PLU_DEF_DATA>(*known).def_data;
        memcpy(partner.plu_alias, definition.plu_alias, sizeof partner.plu_alias);
        partner.parallel_sess = definition.parallel_sess_supp;
    }
    if (partner_in_use(engine, partner) == nullptr) {
        engine.add_derived(CLASS_PLU, &partner, sizeof partner);
    }
    auto named = mode;
    memcpy(named.plu_alias, partner.plu_alias, sizeof named.plu_alias);
    Engine::put(resource, named);
}

NB_UCHAR report_mode(const Resource &resource) {
    const auto mode = Engine::get<NAP_MODE_DATA>(resource);
    return mode.draining != 0         ? NAP_PENDING_INACTIVE
           : mode.act_sess_count != 0 ? NAP_ACTIVE
                                      : NAP_NOT_ACTIVE;
}

NB_UCHAR report_plu(const Resource &resource) {
    return Engine::get<NAP_PLU_DATA>(resource).act_sess_count != 0 ? NAP_ACTIVE : NAP_NOT_ACTIVE;
}

NB_UCHAR report_directory(const Resource &) {
    return NAP_ACTIVE;
}

bool is_node_type(NB_USHORT type) {
    return type == NAP_DIR_NETWORK_NODE || type == NAP_DIR_END_NODE;
}

/* A control point is known by an entry of its own, by a link to it, or because it is this one. */
bool knows_control_point(const Engine &engine, const NB_UCHAR *fqcp) {
    const ResourceTable &links = engine.table(CLASS_LS);
    const ResourceTable &entries = engine.table(CLASS_DIRECTORY);
    if (same_name(engine.node_record().info.fq_cp_name, fqcp, 17)) {
        return true;
    }
    for (Resource *at = entries.first_with(fqcp, 17); at != nullptr;
         at = ResourceTable::next_with(*at, 17)) {
        if (is_node_type(Engine::get<NAP_DIR_DATA>(*at).resource_type)) {
            return true;
        }
    }
    for (Resource *at = links.first(); at != nullptr; at = ResourceTable::next(*at)) {
        if (same_name(Engine::get<NAP_LS_DATA>(*at).def_data.adj_cp_name, fqcp, 17)) {
            return true;
        }
    }
    return false;
}

Result check_directory(const Engine &engine, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = nap_copy<NAP_DIR_DATA>(bytes);
    const bool own = same_name(entry.fqcp_name, entry.resource_name, sizeof entry.fqcp_name);
    const bool unnamed = is_blank(KeyKind::Ebcdic, entry.resource_name, sizeof entry.resource_name);
    const bool full = entry.def_data.wildcard == NAP_DIR_WILDCARD_FULL;
    const bool wild = entry.resource_type == NAP_DIR_WILDCARD_LU;
    if (wild != (entry.def_data.wildcard != NAP_DIR_WILDCARD_NONE) ||
        is_node_type(entry.resource_type) != own) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    if (unnamed != full) {
        return bad_parameter(NAP_INVALID_NAME);
    }
    if (!own && !knows_control_point(engine, entry.fqcp_name)) {
        return bad_parameter(NAP_UNKNOWN_OWNER);
    }
    return GOOD;
}

Result removable_directory(const Engine &engine, const Resource &resource) {
    const auto entry = Engine::get<NAP_DIR_DATA>(resource);
    const ResourceTable &entries = engine.table(CLASS_DIRECTORY);
    if (is_node_type(entry.resource_type)) {
        for (Resource *at = entries.first_with(entry.fqcp_name, 17); at != nullptr;
             at = ResourceTable::next_with(*at, 17)) {
            if (at != &resource) {
                return bad_state(NAP_IN_USE);
            }
        }
    }
    return GOOD;
}

void fill_directory(const Engine &, NB_UCHAR *bytes) {
    auto entry = nap_copy<NAP_DIR_DATA>(bytes);
    entry.entry_type = NAP_DIR_HOME;
    memcpy(bytes, &entry, sizeof entry);
}

/* A partner's name stands for one LU, for all that begin with it, or, blank, for all. */
Result check_ls_routing(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = nap_copy<NAP_LS_ROUTING_DATA>(bytes);
    const bool unnamed = is_blank(KeyKind::Ebcdic, entry.fqplu_name, sizeof entry.fqplu_name);
    return unnamed == (entry.def_data.wildcard == NAP_DIR_WILDCARD_FULL)
               ? GOOD
               : bad_parameter(NAP_INVALID_NAME);
}

constexpr ClassRow classes[] = {
    {.id = CLASS_COS,
     .schema = &records::cos,
     .hooks = {.removable = removable_unless_sna, .fill = fill_cos, .counted = count_rows}},
    {.id = CLASS_COS_NODE_ROW,
     .schema = &records::cos_node_row,
     .refs = {{.to = CLASS_COS,
               .flags = REF_OWNER | REF_CARRIED,
               .by = &field(records::cos_node_row, "cos_name")}},
     .hooks = {.check = check_node_row, .removable = removable_unless_sna}},
    {.id = CLASS_COS_TG_ROW,
     .schema = &records::cos_tg_row,
     .refs = {{.to = CLASS_COS,
               .flags = REF_OWNER | REF_CARRIED,
               .by = &field(records::cos_tg_row, "cos_name")}},
     .hooks = {.check = check_tg_row, .removable = removable_unless_sna}},
    {.id = CLASS_MODE_DEF,
     .schema = &records::mode_def,
     .refs = {{.to = CLASS_COS,
               .flags = REF_OPTIONAL,
               .by = &field(records::mode_def, "cos_name")}},
     .hooks = {.check = check_mode_def, .removable = removable_mode, .fill = fill_mode_def}},
    {.id = CLASS_PLU_DEF,
     .schema = &records::plu_def,
     .alias = {.name = &field(records::plu_def, "plu_alias")}},
    {.id = CLASS_MODE,
     .schema = &records::mode,
     .refs = {{.to = CLASS_LOCAL_LU,
               .flags = REF_BY_ALIAS | REF_CARRIED,
               .by = &field(records::mode, "lu_alias")},
              {.to = CLASS_MODE_DEF, .by = &field(records::mode, "mode_name")}},
     .hooks = {.busy = never_busy, .defined = mode_defined, .report = report_mode}},
    {.id = CLASS_PLU,
     .schema = &records::plu,
     .refs = {{.to = CLASS_LOCAL_LU,
               .flags = REF_BY_ALIAS | REF_CARRIED,
               .by = &field(records::plu, "lu_alias")}},
     .hooks = {.busy = never_busy, .report = report_plu}},
    {.id = CLASS_DIRECTORY,
     .schema = &records::directory,
     .hooks = {.check = check_directory,
               .removable = removable_directory,
               .fill = fill_directory,
               .busy = never_busy,
               .report = report_directory}},
    {.id = CLASS_LS_ROUTING,
     .schema = &records::ls_routing,
     .refs = {{.to = CLASS_LOCAL_LU,
               .flags = REF_CARRIED,
               .by = &field(records::ls_routing, "lu_name")},
              {.to = CLASS_LS, .by = &field(records::ls_routing, "ls_name")}},
     .hooks = {.check = check_ls_routing}},
    {.id = CLASS_SESSION, .schema = &records::session, .hooks = {.busy = never_busy}},
};

} // namespace

std::span<const ClassRow> session_classes() {
    return classes;
}

} // namespace node
