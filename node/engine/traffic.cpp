/* Sessions: this node software carries no traffic, but shows the sessions that its domain text says
 * there would be.  A mode in use has its sessions while its partner's control point can be reached;
 * partner LUs and local LUs show the sums. */
#include "engine.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <string>

namespace node {

namespace {

constexpr NB_ULONG SETTLE_MS = 20; /* one count for all changes that come together */
constexpr size_t CP_WIDTH = 17;

std::string bytes_of(const NB_UCHAR *field, size_t width) {
    return std::string(reinterpret_cast<const char *>(field), width);
}

NB_ULONG count_of(const std::map<std::string, NB_ULONG> &counts, const std::string &name) {
    const auto found = counts.find(name);
    return found == counts.end() ? 0 : found->second;
}

} // namespace

void Engine::traffic_changed() {
    const bool used =
        tables_[CLASS_MODE]->count() > 0 || active_sessions_ > 0 || tables_[CLASS_LS]->count() > 0;
    if (used && traffic_timer_ == 0) {
        traffic_timer_ = timers_.after(SETTLE_MS, [this] {
            traffic_timer_ = 0;
            count_traffic();
        });
    }
}

/* A mode in use has the sessions that its programs want and administrators added, as many as its
 * limit allows, while a link leads to its partner. */
void Engine::count_mode(Resource &resource, const Resource *link) {
    const auto mode = get<NAP_MODE_DATA>(resource);
    const int64_t wanted = int64_t{resource.behaviour.sessions} + resource.extra;
    if (mode.draining != 0) {
        return;
    }
    if (link == nullptr) {
        resource.extra = 0;
        if (mode.act_sess_count != 0) {
            lose_sessions(resource, mode.act_sess_count, SENSE_LINK_FAILED);
        }
        set_mode_sessions(resource, 0, nullptr);
        return;
    }
    const int64_t count = std::clamp<int64_t>(wanted, 0, mode.sess_limit);
    set_mode_sessions(resource, static_cast<NB_USHORT>(count), link);
    move_sessions(resource, *link);
}

void Engine::count_traffic() {
    std::map<std::string, const Resource *> links; /* by control point */
    SessionCounts by_lu;                           /* by alias, and by alias and partner */
    active_sessions_ = 0;
    const ResourceTable &modes = *tables_[CLASS_MODE];
    for (Resource *at = modes.first(); at != nullptr; at = ResourceTable::next(*at)) {
        auto mode = get<NAP_MODE_DATA>(*at);
        const auto known = links.emplace(bytes_of(mode.fq_cp_name, CP_WIDTH), nullptr);
        if (known.second && node_state_ == NAP_NODE_ACTIVE) {
            known.first->second = link_to(mode.fq_cp_name);
        }
        count_mode(*at, known.first->second);
        mode = get<NAP_MODE_DATA>(*at);
        const std::string lu = bytes_of(mode.lu_alias, sizeof mode.lu_alias);
        by_lu[lu] += mode.act_sess_count;
        by_lu[lu + bytes_of(mode.fqplu_name, CP_WIDTH)] += mode.act_sess_count;
        active_sessions_ += mode.act_sess_count;
    }
    show_partner_sessions(by_lu);
    show_lu_sessions(by_lu);
    show_routes();
}

void Engine::show_partner_sessions(const SessionCounts &counts) {
    const ResourceTable &partners = *tables_[CLASS_PLU];
    for (Resource *at = partners.first(); at != nullptr; at = ResourceTable::next(*at)) {
        auto partner = get<NAP_PLU_DATA>(*at);
        const NB_ULONG sessions =
            count_of(counts, bytes_of(partner.lu_alias, sizeof partner.lu_alias) +
                                 bytes_of(partner.fqplu_name, CP_WIDTH));
        if (partner.act_sess_count != sessions) {
            partner.act_sess_count = static_cast<NB_USHORT>(sessions);
            partner.act_conv_count = static_cast<NB_USHORT>(sessions / 2);
            put(*at, partner);
            indicate(*at, false);
        }
    }
}

void Engine::show_lu_sessions(const SessionCounts &counts) {
    const ResourceTable &lus = *tables_[CLASS_LOCAL_LU];
    for (Resource *at = lus.first(); at != nullptr; at = ResourceTable::next(*at)) {
        auto lu = get<NAP_LOCAL_LU_DATA>(*at);
        const NB_ULONG sessions =
            count_of(counts, bytes_of(lu.def_data.lu_alias, sizeof lu.def_data.lu_alias));
        if (lu.active_sessions != sessions) {
            lu.active_sessions = sessions;
            lu.appl_conn_active = sessions != 0 ? 1 : 0;
            put(*at, lu);
            indicate(*at, false);
        }
    }
}

} // namespace node
