/* What is peculiar to single classes. */
#include "nodeengine.h"

#include "nbbase.h"
#include "nodesna.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

template <class Record> Record from_entry(const NB_UCHAR *entry) {
    Record record;
    memcpy(&record, entry, sizeof record);
    return record;
}

bool same_name(const NB_UCHAR *left, const NB_UCHAR *right, size_t width) {
    return memcmp(left, right, width) == 0;
}

bool never_busy(const Resource &) {
    return false;
}

NB_ULONG started_at(const Engine &engine, const Resource &resource) {
    return resource.state == NAP_ACTIVE ? engine.clock().wall_seconds() : 0;
}

void show_dlc(const Engine &, Resource &resource) {
    auto entry = Engine::get<NAP_DLC_DATA>(resource);
    entry.dlc_sts = resource.state;
    Engine::put(resource, entry);
}

void fill_port(const Engine &engine, NB_UCHAR *bytes) {
    auto entry = from_entry<NAP_PORT_DATA>(bytes);
    const Resource *dlc = engine.find(CLASS_DLC, entry.def_data.dlc_name);
    if (dlc != nullptr) {
        entry.def_data.dlc_type = Engine::get<NAP_DLC_DATA>(*dlc).def_data.dlc_type;
        memcpy(bytes, &entry, sizeof entry);
    }
}

void show_port(const Engine &engine, Resource &resource) {
    auto entry = Engine::get<NAP_PORT_DATA>(resource);
    entry.det_data.port_state = resource.state;
    entry.det_data.started_at = started_at(engine, resource);
    Engine::put(resource, entry);
}

void count_links(Resource &port, int, int active) {
    auto entry = Engine::get<NAP_PORT_DATA>(port);
    entry.det_data.active_links += static_cast<NB_ULONG>(active);
    Engine::put(port, entry);
}

/* Ports and link stations show the type of the DLC below them. */
void refill(Engine &engine, ClassId id, void (*fill)(const Engine &, NB_UCHAR *)) {
    const ResourceTable &table = engine.table(id);
    for (Resource *at = table.first(); at != nullptr; at = ResourceTable::next(*at)) {
        fill(engine, at->entry.get());
    }
}

void fill_ls(const Engine &engine, NB_UCHAR *bytes) {
    auto entry = from_entry<NAP_LS_DATA>(bytes);
    const Resource *port = engine.find(CLASS_PORT, entry.def_data.port_name);
    if (port != nullptr) {
        entry.def_data.dlc_type = Engine::get<NAP_PORT_DATA>(*port).def_data.dlc_type;
        memcpy(bytes, &entry, sizeof entry);
    }
}

void dlc_defined(Engine &engine, Resource &, bool added) {
    if (!added) {
        refill(engine, CLASS_PORT, fill_port);
        refill(engine, CLASS_LS, fill_ls);
    }
}

void port_defined(Engine &engine, Resource &, bool added) {
    if (!added) {
        refill(engine, CLASS_LS, fill_ls);
    }
}

/* The PU that a host link makes, or null. */
Resource *pu_of_link(const Engine &engine, const NAP_LS_DATA &link) {
    const bool makes_one = link.def_data.adj_cp_type == NAP_ADJ_HOST;
    return makes_one ? engine.find(CLASS_PU, link.def_data.pu_name) : nullptr;
}

Result check_ls(const Engine &engine, const NB_UCHAR *bytes, const Resource *old) {
    const auto entry = from_entry<NAP_LS_DATA>(bytes);
    const bool host = entry.def_data.adj_cp_type == NAP_ADJ_HOST;
    if (host && is_blank(KeyKind::Ebcdic, entry.def_data.pu_name, sizeof entry.def_data.pu_name)) {
        return bad_parameter(NAP_INVALID_NAME);
    }
    if (entry.def_data.adj_cp_type == NAP_ADJ_DOWNSTREAM &&
        engine.node_record().dspu_support == 0) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    const Resource *pu = pu_of_link(engine, entry);
    if (pu != nullptr) {
        const auto holder = Engine::get<NAP_PU_DATA>(*pu);
        if (!pu->derived ||
            !same_name(holder.def_data.ls_name, entry.ls_name, sizeof entry.ls_name)) {
            return bad_parameter(NAP_DUPLICATE_NAME);
        }
    }
    const Resource *old_pu =
        old != nullptr ? pu_of_link(engine, Engine::get<NAP_LS_DATA>(*old)) : nullptr;
    if (old_pu != nullptr && old_pu != pu && Engine::get<NAP_PU_DATA>(*old_pu).lu_count > 0) {
        return bad_state(NAP_IN_USE);
    }
    return GOOD;
}

/* Takes away the PU that a link station made, unless it is `kept`. */
void remove_old_pu(Engine &engine, const NAP_LS_DATA &link, const Resource *kept) {
    const ResourceTable &pus = engine.table(CLASS_PU);
    for (Resource *at = pus.first(); at != nullptr;) {
        Resource *next = ResourceTable::next(*at);
        const auto pu = Engine::get<NAP_PU_DATA>(*at);
        if (at->derived && at != kept &&
            same_name(pu.def_data.ls_name, link.ls_name, sizeof link.ls_name)) {
            engine.remove_tree(*at);
        }
        at = next;
    }
}

/* Makes, renames or takes away the PU of a link station. */
void ls_defined(Engine &engine, Resource &resource, bool added) {
    const auto link = Engine::get<NAP_LS_DATA>(resource);
    const Resource *wanted = pu_of_link(engine, link);
    if (!added) {
        remove_old_pu(engine, link, wanted);
    }
    if (link.def_data.adj_cp_type != NAP_ADJ_HOST) {
        return;
    }
    std::vector<NB_UCHAR> bytes(sizeof(NAP_PU_DATA));
    NAP_PU_DATA pu = wanted != nullptr ? Engine::get<NAP_PU_DATA>(*wanted) : NAP_PU_DATA{};
    memcpy(pu.pu_name, link.def_data.pu_name, sizeof pu.pu_name);
    memcpy(pu.def_data.ls_name, link.ls_name, sizeof pu.def_data.ls_name);
    memcpy(pu.def_data.description, link.def_data.description, sizeof pu.def_data.description);
    memset(pu.def_data.dlus_name, 0x40, sizeof pu.def_data.dlus_name);
    memset(pu.def_data.bkup_dlus_name, 0x40, sizeof pu.def_data.bkup_dlus_name);
    pu.def_data.initially_active = link.def_data.solicit_sscp_sessions;
    pu.def_data.pu_id = link.def_data.node_id;
    pu.host_attachment = link.def_data.host_attachment;
    memcpy(bytes.data(), &pu, sizeof pu);
    engine.add_derived(class_row(CLASS_PU), bytes);
}

void show_ls(const Engine &engine, Resource &resource) {
    auto entry = Engine::get<NAP_LS_DATA>(resource);
    NAP_LS_DET det = {};
    det.last_sense = entry.det_data.last_sense;
    det.ls_state = resource.state;
    memset(det.adj_cp_name, 0x40, sizeof det.adj_cp_name);
    if (resource.state == NAP_ACTIVE) {
        constexpr NB_UCHAR kinds[] = {0, NAP_LEN_NODE, NAP_NETWORK_NODE, NAP_END_NODE};
        const NB_UCHAR type = entry.def_data.adj_cp_type;
        det.last_sense = 0;
        det.started_at = started_at(engine, resource);
        det.adj_node_type = type < sizeof kinds ? kinds[type] : 0;
        det.hpr_support = entry.def_data.hpr_supported;
        det.act_sess_count = entry.def_data.cp_cp_sess_support != 0 ? 2 : 0;
        memcpy(det.adj_cp_name, entry.def_data.adj_cp_name, sizeof det.adj_cp_name);
    }
    entry.det_data = det;
    Engine::put(resource, entry);
}

Result check_pu(const Engine &engine, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = from_entry<NAP_PU_DATA>(bytes);
    if (engine.node_record().dlur_support == 0) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    if (!is_blank(KeyKind::Local, entry.def_data.ls_name, sizeof entry.def_data.ls_name)) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    if (is_blank(KeyKind::Ebcdic, entry.def_data.dlus_name, sizeof entry.def_data.dlus_name)) {
        return bad_parameter(NAP_INVALID_NAME);
    }
    return GOOD;
}

void fill_pu(const Engine &, NB_UCHAR *bytes) {
    auto entry = from_entry<NAP_PU_DATA>(bytes);
    entry.host_attachment = NAP_DLUR_ATTACHED;
    memset(entry.def_data.ls_name, ' ', sizeof entry.def_data.ls_name);
    memcpy(bytes, &entry, sizeof entry);
}

void show_pu(const Engine &, Resource &resource) {
    auto entry = Engine::get<NAP_PU_DATA>(resource);
    entry.pu_sscp_sess_active = resource.state;
    Engine::put(resource, entry);
}

void count_lus(Resource &pu, int lus, int active) {
    auto entry = Engine::get<NAP_PU_DATA>(pu);
    entry.lu_count += static_cast<NB_ULONG>(lus);
    entry.active_lus += static_cast<NB_ULONG>(active);
    Engine::put(pu, entry);
}

/* One address of a PU serves one LU. */
bool address_taken(const Engine &engine, const NB_UCHAR *pu_name, NB_UCHAR address,
                   const Resource *old) {
    const ResourceTable &lus = engine.table(CLASS_LU03);
    for (Resource *at = lus.first_with(pu_name, 8); at != nullptr;
         at = ResourceTable::next_with(*at, 8)) {
        if (at != old && Engine::get<NAP_LU03_DATA>(*at).def_data.nau_address == address) {
            return true;
        }
    }
    return false;
}

Result check_lu03(const Engine &engine, const NB_UCHAR *bytes, const Resource *old) {
    const auto entry = from_entry<NAP_LU03_DATA>(bytes);
    const bool taken = address_taken(engine, entry.pu_name, entry.def_data.nau_address, old);
    return taken ? bad_parameter(NAP_INVALID_VALUE) : GOOD;
}

bool lu03_busy(const Resource &resource) {
    return Engine::get<NAP_LU03_DATA>(resource).det_data.plu_sess_active != 0;
}

void show_lu03(const Engine &, Resource &resource) {
    auto entry = Engine::get<NAP_LU03_DATA>(resource);
    const bool up = resource.state == NAP_ACTIVE;
    const bool used = up && resource.behaviour.user_name[0] != 0;
    entry.det_data = {};
    entry.det_data.lu_sscp_sess_active = up ? 1 : 0;
    if (used) {
        entry.det_data.appl_conn_active = 1;
        entry.det_data.plu_sess_active = 1;
        entry.det_data.app_type = resource.behaviour.app_type;
        memcpy(entry.det_data.user_name, resource.behaviour.user_name,
               sizeof entry.det_data.user_name);
    }
    Engine::put(resource, entry);
}

NB_UCHAR report_lu03(const Resource &resource) {
    const auto entry = Engine::get<NAP_LU03_DATA>(resource);
    return entry.det_data.plu_sess_active != 0       ? NAP_IN_SESSION
           : entry.det_data.lu_sscp_sess_active != 0 ? NAP_SSCP_ACTIVE
                                                     : NAP_NOT_ACTIVE;
}

/* The control point's own LU is there without a definition. */
bool is_control_point(const Engine &engine, const NAP_LOCAL_LU_DATA &entry) {
    const NAP_QUERY_NODE_VERB record = engine.node_record();
    const NB_UCHAR *end = record.info.fq_cp_name + sizeof record.info.fq_cp_name;
    const NB_UCHAR *name = std::find(record.info.fq_cp_name, end, NB_UCHAR{0x4B});
    NB_UCHAR local[8];
    memset(local, 0x40, sizeof local);
    if (name == end) {
        return false;
    }
    name++;
    memcpy(local, name, std::min<size_t>(sizeof local, static_cast<size_t>(end - name)));
    return same_name(local, entry.lu_name, sizeof local) ||
           same_name(record.info.cp_alias, entry.def_data.lu_alias, sizeof record.info.cp_alias);
}

Result check_local_lu(const Engine &engine, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = from_entry<NAP_LOCAL_LU_DATA>(bytes);
    const bool dependent =
        !is_blank(KeyKind::Ebcdic, entry.def_data.pu_name, sizeof entry.def_data.pu_name);
    if (is_control_point(engine, entry)) {
        return bad_parameter(NAP_DUPLICATE_NAME);
    }
    if (dependent != (entry.def_data.nau_address != 0) ||
        (dependent &&
         address_taken(engine, entry.def_data.pu_name, entry.def_data.nau_address, nullptr))) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    return GOOD;
}

bool local_lu_busy(const Resource &resource) {
    return Engine::get<NAP_LOCAL_LU_DATA>(resource).active_sessions != 0;
}

void show_local_lu(const Engine &, Resource &resource) {
    auto entry = Engine::get<NAP_LOCAL_LU_DATA>(resource);
    entry.lu_sscp_sess_active =
        resource.state == NAP_ACTIVE && entry.def_data.nau_address != 0 ? 1 : 0;
    Engine::put(resource, entry);
}

NB_UCHAR report_local_lu(const Resource &resource) {
    const auto entry = Engine::get<NAP_LOCAL_LU_DATA>(resource);
    return entry.active_sessions != 0       ? NAP_IN_SESSION
           : entry.lu_sscp_sess_active != 0 ? NAP_SSCP_ACTIVE
                                            : NAP_NOT_ACTIVE;
}

Result removable_unless_sna(const Engine &, const Resource &resource) {
    const bool own = resource.row->id == CLASS_COS ? is_sna_cos(resource.entry.get() + KEY_OFFSET)
                                                   : is_sna_mode(resource.entry.get() + KEY_OFFSET);
    return own ? bad_parameter(NAP_INVALID_NAME) : GOOD;
}

void fill_cos(const Engine &, NB_UCHAR *bytes) {
    auto entry = from_entry<NAP_COS_DATA>(bytes);
    entry.def_data.sna_defined = is_sna_cos(entry.cos_name) ? 1 : 0;
    entry.record_type = entry.def_data.sna_defined != 0 ? NAP_COS_SNA_DEFINED : 0;
    memcpy(bytes, &entry, sizeof entry);
}

Result check_mode_def(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    const auto chars = from_entry<NAP_MODE_DEF_DATA>(bytes).mode_chars;
    const NB_USHORT window_limit = chars.max_receive_pacing_win;
    const bool sizes_good = chars.default_ru_size != 0 ||
                            (chars.max_ru_size_upp >= 256 && chars.max_ru_size_low >= 256 &&
                             chars.max_ru_size_low <= chars.max_ru_size_upp);
    const bool limits_good =
        chars.plu_mode_session_limit <= chars.max_neg_sess_lim &&
        chars.min_conwin_src <= chars.plu_mode_session_limit &&
        chars.min_conloser_src <= chars.plu_mode_session_limit - chars.min_conwin_src &&
        chars.auto_act <= chars.min_conwin_src;
    const bool window_good = window_limit == 0 || chars.receive_pacing_win <= window_limit;
    return sizes_good && limits_good && window_good ? GOOD : bad_parameter(NAP_INVALID_VALUE);
}

void fill_mode_def(const Engine &, NB_UCHAR *bytes) {
    auto entry = from_entry<NAP_MODE_DEF_DATA>(bytes);
    entry.mode_chars.sna_defined = is_sna_mode(entry.mode_name) ? 1 : 0;
    entry.mode_chars.mode_flags =
        is_control_point_mode(entry.mode_name) ? NAP_MODE_CONTROL_POINT : 0;
    memcpy(bytes, &entry, sizeof entry);
}

/* A mode in use makes its partner LU an LU in use. */
void mode_defined(Engine &engine, Resource &resource, bool) {
    const auto mode = Engine::get<NAP_MODE_DATA>(resource);
    const Resource *known = engine.find(CLASS_PLU_DEF, mode.fqplu_name);
    std::vector<NB_UCHAR> bytes(sizeof(NAP_PLU_DATA));
    NAP_PLU_DATA partner = {};
    memcpy(partner.lu_alias, mode.lu_alias, sizeof partner.lu_alias);
    memcpy(partner.fqplu_name, mode.fqplu_name, sizeof partner.fqplu_name);
    memcpy(partner.fq_cp_name, mode.fq_cp_name, sizeof partner.fq_cp_name);
    memset(partner.plu_alias, ' ', sizeof partner.plu_alias);
    partner.parallel_sess = 1;
    if (known != nullptr) {
        const auto definition = Engine::get<NAP_PLU_DEF_DATA>(*known).def_data;
        memcpy(partner.plu_alias, definition.plu_alias, sizeof partner.plu_alias);
        partner.parallel_sess = definition.parallel_sess_supp;
    }
    memcpy(bytes.data(), &partner, sizeof partner);
    if (engine.find(CLASS_PLU, bytes.data() + KEY_OFFSET) == nullptr) {
        engine.add_derived(class_row(CLASS_PLU), bytes);
    }
    auto named = mode;
    memcpy(named.plu_alias, partner.plu_alias, sizeof named.plu_alias);
    Engine::put(resource, named);
}

NB_UCHAR report_mode(const Resource &resource) {
    return Engine::get<NAP_MODE_DATA>(resource).act_sess_count != 0 ? NAP_ACTIVE : NAP_NOT_ACTIVE;
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
    const auto entry = from_entry<NAP_DIR_DATA>(bytes);
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
    auto entry = from_entry<NAP_DIR_DATA>(bytes);
    entry.entry_type = NAP_DIR_HOME;
    memcpy(bytes, &entry, sizeof entry);
}

/* The rows, by ClassId: check, removable, fill, busy, defined, show, counted, report. */
constexpr ClassHooks hooks[] = {
    {nullptr, nullptr, nullptr, nullptr, dlc_defined, show_dlc, nullptr, nullptr},
    {nullptr, nullptr, fill_port, nullptr, port_defined, show_port, count_links, nullptr},
    {check_ls, nullptr, fill_ls, nullptr, ls_defined, show_ls, nullptr, nullptr},
    {check_pu, nullptr, fill_pu, nullptr, nullptr, show_pu, count_lus, nullptr},
    {check_lu03, nullptr, nullptr, lu03_busy, nullptr, show_lu03, nullptr, report_lu03},
    {check_local_lu, nullptr, nullptr, local_lu_busy, nullptr, show_local_lu, nullptr,
     report_local_lu},
    {nullptr, removable_unless_sna, fill_cos, nullptr, nullptr, nullptr, nullptr, nullptr},
    {check_mode_def, removable_unless_sna, fill_mode_def, nullptr, nullptr, nullptr, nullptr,
     nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
    {nullptr, nullptr, nullptr, never_busy, mode_defined, nullptr, nullptr, report_mode},
    {nullptr, nullptr, nullptr, never_busy, nullptr, nullptr, nullptr, report_plu},
    {check_directory, removable_directory, fill_directory, never_busy, nullptr, nullptr, nullptr,
     report_directory},
};
static_assert(sizeof hooks / sizeof hooks[0] == CLASS_COUNT);

} // namespace

ClassHooks class_hooks(ClassId id) {
    return hooks[id];
}

} // namespace node
