/* What is peculiar to LUs: dependent, downstream and local ones. */
#include "classhooks.h"
#include "engine.h"
#include "fieldrows.h"

#include "nbbase.h"
#include "nofcopy.h"
#include "resourcetable.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

Result check_lu03(const Engine &engine, const NB_UCHAR *bytes, const Resource *old) {
    const auto entry = nap_copy<NAP_LU03_DATA>(bytes);
    const bool taken = address_taken(engine, entry.pu_name, entry.def_data.nau_address, old);
    return taken ? bad_parameter(NAP_INVALID_VALUE) : GOOD;
}

bool lu03_busy(const Engine &, const Resource &resource) {
    return Engine::get<NAP_LU03_DATA>(resource).det_data.plu_sess_active != 0;
}

void show_lu03(const Engine &engine, Resource &resource) {
    auto entry = Engine::get<NAP_LU03_DATA>(resource);
    const bool up = resource.state == NAP_ACTIVE;
    const bool used = up && resource.behaviour.user_name[0] != 0 && resource.extra >= 0 &&
                      (entry.det_data.plu_sess_active != 0 || engine.takes_users());
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
    const auto entry = nap_copy<NAP_LOCAL_LU_DATA>(bytes);
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

bool local_lu_busy(const Engine &, const Resource &resource) {
    return Engine::get<NAP_LOCAL_LU_DATA>(resource).active_sessions != 0;
}

void local_lu_defined(Engine &engine, Resource &resource, bool added) {
    if (added) {
        engine.register_lu(resource.entry.get() + KEY_OFFSET, true);
    }
}

void local_lu_left(Engine &engine, const NB_UCHAR *entry) {
    engine.register_lu(entry + KEY_OFFSET, false);
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

Result removable_lu03(const Engine &engine, const Resource &resource) {
    const auto lu = Engine::get<NAP_LU03_DATA>(resource);
    return lu_is_named(engine, lu.lu_name) ? bad_state(NAP_IN_USE) : GOOD;
}

Result check_down_lu(const Engine &engine, const NB_UCHAR *bytes, const Resource *old) {
    const auto entry = nap_copy<NAP_DOWN_LU_DATA>(bytes);
    const ResourceTable &lus = engine.table(CLASS_DOWN_LU);
    for (Resource *at = lus.first_with(entry.dspu_name, 8); at != nullptr;
         at = ResourceTable::next_with(*at, 8)) {
        if (at != old &&
            Engine::get<NAP_DOWN_LU_DATA>(*at).def_data.nau_address == entry.def_data.nau_address) {
            return bad_parameter(NAP_INVALID_VALUE);
        }
    }
    return is_lu_or_pool(engine, entry.def_data.host_lu_name) ? GOOD
                                                              : bad_parameter(NAP_UNKNOWN_OWNER);
}

bool down_lu_busy(const Engine &, const Resource &resource) {
    return Engine::get<NAP_DOWN_LU_DATA>(resource).det_data.plu_sess_active != 0;
}

/* The LU towards the host that carries a downstream LU: itself, or one of the pool, by address. */
void find_carrier(const Engine &engine, const NAP_DOWN_LU_DATA &lu, NB_UCHAR *carrier) {
    const ResourceTable &pools = engine.table(CLASS_LU_POOL);
    memcpy(carrier, lu.def_data.host_lu_name, 8);
    Resource *member = pools.first_with(lu.def_data.host_lu_name, 8);
    for (int steps = lu.def_data.nau_address; member != nullptr; steps--) {
        memcpy(carrier, Engine::get<NAP_LU_POOL_DATA>(*member).lu_name, 8);
        if (steps == 0) {
            return;
        }
        member = ResourceTable::next_with(*member, 8);
    }
}

void show_down_lu(const Engine &engine, Resource &resource) {
    auto entry = Engine::get<NAP_DOWN_LU_DATA>(resource);
    const bool up = resource.state == NAP_ACTIVE;
    const NB_UCHAR dynamic = entry.det_data.dynamic;
    memset(&entry.det_data, 0, sizeof entry.det_data);
    entry.det_data.dynamic = dynamic;
    memset(entry.det_data.plu_name, 0x40, sizeof entry.det_data.plu_name);
    memset(entry.det_data.used_lu_name, 0x40, sizeof entry.det_data.used_lu_name);
    entry.det_data.lu_sscp_sess_active = up ? 1 : 0;
    if (up && resource.behaviour.user_name[0] != 0) {
        const auto *name = reinterpret_cast<const char *>(resource.behaviour.user_name);
        entry.det_data.plu_sess_active = 1;
        put_ebcdic(entry.det_data.plu_name, sizeof entry.det_data.plu_name, name);
        find_carrier(engine, entry, entry.det_data.used_lu_name);
    }
    Engine::put(resource, entry);
}

NB_UCHAR report_down_lu(const Resource &resource) {
    const auto entry = Engine::get<NAP_DOWN_LU_DATA>(resource);
    return entry.det_data.plu_sess_active != 0       ? NAP_IN_SESSION
           : entry.det_data.lu_sscp_sess_active != 0 ? NAP_SSCP_ACTIVE
                                                     : NAP_NOT_ACTIVE;
}

Result check_primary_lu0(const Engine &engine, const NB_UCHAR *bytes, const Resource *old) {
    const auto entry = nap_copy<NAP_PRIMARY_LU0_DATA>(bytes);
    const ResourceTable &lus = engine.table(CLASS_PRIMARY_LU0);
    for (Resource *at = lus.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto other = Engine::get<NAP_PRIMARY_LU0_DATA>(*at).def_data;
        const bool same = same_name(other.line_name, entry.def_data.line_name, 8) &&
                          other.station_address == entry.def_data.station_address &&
                          other.nau_address == entry.def_data.nau_address;
        if (at != old && same) {
            return bad_parameter(NAP_INVALID_VALUE);
        }
    }
    return GOOD;
}

void show_primary_lu0(const Engine &, Resource &resource) {
    auto entry = Engine::get<NAP_PRIMARY_LU0_DATA>(resource);
    const bool used = resource.state == NAP_ACTIVE && resource.behaviour.user_name[0] != 0;
    entry.lu_sess_active = used ? 1 : 0;
    entry.appl_conn_active = used ? 1 : 0;
    Engine::put(resource, entry);
}

bool primary_lu0_busy(const Engine &, const Resource &resource) {
    return Engine::get<NAP_PRIMARY_LU0_DATA>(resource).lu_sess_active != 0;
}

Result check_lu62_timeout(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = nap_copy<NAP_LU62_TIMEOUT_DATA>(bytes);
    constexpr NB_UCHAR PERIOD = 0x4B;
    const NB_UCHAR *end = entry.resource_name + sizeof entry.resource_name;
    const bool blank = is_blank(KeyKind::Ebcdic, entry.resource_name, sizeof entry.resource_name);
    const bool qualified = std::find(entry.resource_name, end, PERIOD) != end;
    const bool fits = entry.resource_type == NAP_TIMEOUT_GLOBAL       ? blank
                      : entry.resource_type == NAP_TIMEOUT_PARTNER_LU ? qualified
                      : entry.resource_type == NAP_TIMEOUT_MODE       ? !qualified
                                                                      : !qualified && !blank;
    return fits ? GOOD : bad_parameter(NAP_INVALID_NAME);
}

} // namespace

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

bool is_lu_or_pool(const Engine &engine, const NB_UCHAR *name) {
    return engine.table(CLASS_LU03).find_alias(name) != nullptr ||
           engine.table(CLASS_LU_POOL).first_with(name, 8) != nullptr;
}

bool lu_is_named(const Engine &engine, const NB_UCHAR *name) {
    const ResourceTable &lus = engine.table(CLASS_DOWN_LU);
    const ResourceTable &clients = engine.table(CLASS_TN_ACCESS);
    for (Resource *at = lus.first(); at != nullptr; at = ResourceTable::next(*at)) {
        if (same_name(Engine::get<NAP_DOWN_LU_DATA>(*at).def_data.host_lu_name, name, 8)) {
            return true;
        }
    }
    for (Resource *at = clients.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto client = Engine::get<NAP_TN_ACCESS_DATA>(*at);
        for (NB_USHORT index = 0; index < client.def_data.num_sessions; index++) {
            const NAP_TN_SESSION session = client.def_data.sessions[index];
            if (same_name(session.display_lu_name, name, 8) ||
                same_name(session.printer_lu_name, name, 8)) {
                return true;
            }
        }
    }
    return false;
}

namespace {

constexpr ClassRow classes[] = {
    {.id = CLASS_LU03,
     .schema = &records::lu03,
     .refs = {{.to = CLASS_PU, .flags = REF_OWNER, .by = &field(records::lu03, "pu_name")}},
     .alias = {.name = &field(records::lu03, "name"),
               .rival = CLASS_LOCAL_LU,
               .rival_name = &field(records::lu03, "name")},
     .life = {.states = lu_states, .up_low_ms = 20, .up_high_ms = 300, .down_ms = 20},
     .hooks = {.check = check_lu03,
               .removable = removable_lu03,
               .busy = lu03_busy,
               .defined = join_pool,
               .leaving = leave_pool,
               .show = show_lu03,
               .moved = show_in_pool,
               .report = report_lu03}},
    {.id = CLASS_DOWN_LU,
     .schema = &records::down_lu,
     .refs = {{.to = CLASS_DOWN_PU,
               .flags = REF_OWNER,
               .by = &field(records::down_lu, "dspu_name")}},
     .life = {.states = lu_states, .up_low_ms = 20, .up_high_ms = 300, .down_ms = 20},
     .hooks = {.check = check_down_lu,
               .busy = down_lu_busy,
               .show = show_down_lu,
               .report = report_down_lu}},
    {.id = CLASS_EXTRA_DATA,
     .schema = &records::extra_data,
     .refs = {{.to = CLASS_LU03,
               .flags = REF_CARRIED,
               .by = &field(records::extra_data, "pu_name")}}},
    {.id = CLASS_LOCAL_LU,
     .schema = &records::local_lu,
     .refs = {{.to = CLASS_PU,
               .flags = REF_OWNER | REF_OPTIONAL,
               .by = &field(records::local_lu, "pu_name")}},
     .alias = {.name = &field(records::local_lu, "lu_alias"),
               .rival = CLASS_LU03,
               .rival_by_alias = true,
               .rival_name = &field(records::local_lu, "name")},
     .life = {.states = lu_states, .up_low_ms = 20, .up_high_ms = 300, .down_ms = 20},
     .hooks = {.check = check_local_lu,
               .busy = local_lu_busy,
               .defined = local_lu_defined,
               .left = local_lu_left,
               .show = show_local_lu,
               .report = report_local_lu}},
    {.id = CLASS_PRIMARY_LU0,
     .schema = &records::primary_lu0,
     .refs = {{.to = CLASS_PRIMARY_LINE,
               .flags = REF_OWNER,
               .by = &field(records::primary_lu0, "line_name")}},
     .life = {.states = quiet_states, .up_low_ms = 50, .up_high_ms = 300, .down_ms = 20},
     .hooks = {.check = check_primary_lu0, .busy = primary_lu0_busy, .show = show_primary_lu0}},
    {.id = CLASS_LU62_TIMEOUT,
     .schema = &records::lu62_timeout,
     .hooks = {.check = check_lu62_timeout}},
};

} // namespace

std::span<const ClassRow> lu_classes() {
    return classes;
}

} // namespace node
