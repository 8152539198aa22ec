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

} // namespace

void Engine::traffic_changed() {
    const bool used = tables_[CLASS_MODE]->count() > 0 || active_sessions_ > 0 ||
                      tables_[CLASS_LS]->count() > 0 || served_pus_ > 0;
    if (used && traffic_timer_ == 0) {
        traffic_timer_ = timers_.after(SETTLE_MS, [this] {
            traffic_timer_ = 0;
            count_traffic();
        });
    }
}

/* A mode in use has the sessions that its programs want and administrators added, as many as its
 * limit allows, while a link leads to its partner. */
void Engine::count_mode(Resource &resource, const Resource *link, NB_ULONG most) {
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
    const int64_t count = std::clamp<int64_t>(wanted, 0, std::min<NB_ULONG>(mode.sess_limit, most));
    set_mode_sessions(resource, static_cast<NB_USHORT>(count), link);
    move_sessions(resource, *link);
}

/* What the limits of the node and the LU leave for a mode, behind those that were counted. */
NB_ULONG Engine::most_sessions(const NAP_MODE_DATA &mode, NB_ULONG of_lu) const {
    const auto limits = settings<NAP_QUERY_NODE_LIMITS_VERB>(NAP_QUERY_NODE_LIMITS);
    const Resource *lu = tables_[CLASS_LOCAL_LU]->find_alias(mode.lu_alias);
    const NB_ULONG lu_limit =
        lu != nullptr ? get<NAP_LOCAL_LU_DATA>(*lu).def_data.lu_session_limit : 0;
    NB_ULONG most = mode.sess_limit;
    const auto leave = [&most](NB_ULONG limit, NB_ULONG used) {
        most = limit == 0 ? most : std::min(most, limit - std::min(limit, used));
    };
    leave(limits.max_sessions, active_sessions_);
    leave(lu_limit, of_lu);
    return most;
}

void Engine::count_traffic() {
    std::map<std::string, const Resource *> links; /* by control point */
    SessionCounts by_lu;
    active_sessions_ = 0;
    const ResourceTable &modes = *tables_[CLASS_MODE];
    for (Resource *at = modes.first(); at != nullptr; at = ResourceTable::next(*at)) {
        auto mode = get<NAP_MODE_DATA>(*at);
        const auto known = links.emplace(bytes_of(mode.fq_cp_name, CP_WIDTH), nullptr);
        if (known.second && node_state_ == NAP_NODE_ACTIVE) {
            known.first->second = link_to(mode.fq_cp_name);
        }
        const std::string lu = bytes_of(mode.lu_alias, sizeof mode.lu_alias);
        count_mode(*at, known.first->second, most_sessions(mode, by_lu[lu]));
        mode = get<NAP_MODE_DATA>(*at);
        by_lu[lu] += mode.act_sess_count;
        by_lu[lu + bytes_of(mode.fqplu_name, CP_WIDTH)] += mode.act_sess_count;
        active_sessions_ += mode.act_sess_count;
    }
    for (const auto &[name, sessions] : sessions_shown_) {
        by_lu.emplace(name, 0); /* ended */
    }
    for (const auto &[name, sessions] : by_lu) {
        const auto *alias = reinterpret_cast<const NB_UCHAR *>(name.data());
        name.size() == sizeof(NAP_MODE_DATA::lu_alias) ? show_lu_sessions(alias, sessions)
                                                       : show_partner_sessions(alias, sessions);
    }
    std::erase_if(by_lu, [](const auto &one) { return one.second == 0; });
    sessions_shown_ = std::move(by_lu);
    show_routes();
    check_servers();
}

void Engine::show_partner_sessions(const NB_UCHAR *alias, NB_ULONG sessions) {
    constexpr size_t ALIAS_WIDTH = sizeof(NAP_PLU_DATA::lu_alias);
    Resource *at = tables_[CLASS_PLU]->first_with(alias, ALIAS_WIDTH);
    for (; at != nullptr; at = ResourceTable::next_with(*at, ALIAS_WIDTH)) {
        auto partner = get<NAP_PLU_DATA>(*at);
        if (memcmp(partner.fqplu_name, alias + ALIAS_WIDTH, CP_WIDTH) == 0 &&
            partner.act_sess_count != sessions) {
            partner.act_sess_count = static_cast<NB_USHORT>(sessions);
            partner.act_conv_count = static_cast<NB_USHORT>(sessions / 2);
            put(*at, partner);
            indicate(*at, false);
        }
    }
}

void Engine::show_lu_sessions(const NB_UCHAR *alias, NB_ULONG sessions) {
    Resource *found = tables_[CLASS_LOCAL_LU]->find_alias(alias);
    if (found == nullptr) {
        return;
    }
    auto lu = get<NAP_LOCAL_LU_DATA>(*found);
    if (lu.active_sessions != sessions) {
        lu.active_sessions = sessions;
        lu.appl_conn_active = sessions != 0 ? 1 : 0;
        put(*found, lu);
        indicate(*found, false);
    }
}

} // namespace node
