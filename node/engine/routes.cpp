/* What active sessions bring with them: the HPR connections that carry them, and, where SNA runs
 * over IP, the sessions as IP sees them.  Both are derived anew from the links and the modes in use
 * whenever one of those changes; what stays keeps its name. */
#include "engine.h"

#include "nofverbs.h"

#include <arpa/inet.h>
#include <cstdio>
#include <cstring>

namespace node {

namespace {

constexpr size_t CP_WIDTH = 17;
constexpr NB_ULONG MAX_SESSION_NUMBER = 65535;
constexpr NB_ULONG SWITCH_MS = 1500; /* a connection needs to find another way */

template <class Record> std::vector<NB_UCHAR> bytes_of(const Record &record) {
    const auto *bytes = reinterpret_cast<const NB_UCHAR *>(&record);
    return {bytes, bytes + sizeof record};
}

std::string text_of(const NB_UCHAR *field, size_t width) {
    return std::string(reinterpret_cast<const char *>(field), width);
}

NB_ULONG hash_of(const std::string &text) {
    NB_ULONG hash = 2166136261U;
    for (const char c : text) {
        hash = (hash ^ static_cast<NB_UCHAR>(c)) * 16777619U;
    }
    return hash;
}

void name_route(NB_UCHAR *entry, NB_ULONG number) {
    char name[16] = {};
    snprintf(name, sizeof name, "@R%06u", static_cast<unsigned>(number % 1000000));
    put_ebcdic(entry + KEY_OFFSET, 8, name);
}

void name_session(NB_UCHAR *entry, NB_ULONG number) {
    put_number(entry + KEY_OFFSET, 2, number);
}

NAP_RTP_CONN_DATA new_route(const NAP_LS_DATA &link, const NB_UCHAR *dest_cp,
                            const NB_UCHAR *cos_name, const std::string &what) {
    NAP_RTP_CONN_DATA route = {};
    const NB_ULONG hash = hash_of(what);
    route.connect_state = NAP_RTP_CONNECTED;
    memcpy(route.first_hop_ls_name, link.ls_name, sizeof route.first_hop_ls_name);
    memcpy(route.dest_cp_name, dest_cp, sizeof route.dest_cp_name);
    memcpy(route.cos_name, cos_name, sizeof route.cos_name);
    route.max_btu_size = link.def_data.max_send_btu_size;
    route.liveness_timeout = 180000;
    route.local_tcid[1] = hash | 1;
    route.remote_tcid[1] = hash_of(what + "remote") | 1;
    route.smoothed_rtt = 4 + hash % 40;
    route.send_rate = 2000 + hash % 6000;
    route.max_send_rate = 10000;
    const std::string link_name = local_text(link.ls_name, sizeof link.ls_name);
    const std::string way = link_name + " - " + ebcdic_text(dest_cp, CP_WIDTH);
    memcpy(route.route, way.data(), std::min(way.size(), sizeof route.route - 1));
    return route;
}

NB_IP_ADDRESS address_of(const NAP_LS_DATA &link) {
    NB_IP_ADDRESS address = {};
    const std::string text =
        local_text(link.def_data.dest_address, sizeof link.def_data.dest_address);
    if (inet_pton(AF_INET, text.c_str(), address.octets) != 1) {
        const NB_ULONG hash = hash_of(text);
        address.octets[0] = 10;
        memcpy(address.octets + 1, &hash, 3);
    }
    return address;
}

} // namespace

/* The active link to a control point: its own, else one to a network node that knows the way. */
const Resource *Engine::link_to(const NB_UCHAR *fq_cp_name) const {
    const ResourceTable &links = *tables_[CLASS_LS];
    const Resource *through = nullptr;
    for (Resource *at = links.first(); at != nullptr; at = ResourceTable::next(*at)) {
        if (at->state != NAP_ACTIVE) {
            continue;
        }
        const auto link = get<NAP_LS_DATA>(*at);
        if (memcmp(link.det_data.adj_cp_name, fq_cp_name, CP_WIDTH) == 0) {
            return at;
        }
        if (link.def_data.adj_cp_type == NAP_ADJ_NETWORK_NODE &&
            link.def_data.cp_cp_sess_support != 0) {
            through = at;
        }
    }
    return through;
}

/* One connection a partner node and class of service, and one in each direction between the control
 * points of an HPR link. */
Engine::Wanted Engine::wanted_routes() const {
    std::map<std::string, NAP_RTP_CONN_DATA> routes;
    const auto carry = [&routes](const NAP_LS_DATA &link, const NB_UCHAR *cp, const NB_UCHAR *cos,
                                 const std::string &how, NB_ULONG sessions) {
        const std::string what = how + text_of(cp, CP_WIDTH) + text_of(cos, 8);
        const auto made = routes.emplace(what, new_route(link, cp, cos, what));
        made.first->second.sessions += sessions;
    };
    NB_UCHAR control[8];
    put_ebcdic(control, sizeof control, "CPSVCMG");
    const ResourceTable &links = *tables_[CLASS_LS];
    for (Resource *at = links.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto link = get<NAP_LS_DATA>(*at);
        if (link.det_data.hpr_support != 0 && link.def_data.cp_cp_sess_support != 0) {
            carry(link, link.det_data.adj_cp_name, control, text_of(link.ls_name, 8) + "in", 1);
            carry(link, link.det_data.adj_cp_name, control, text_of(link.ls_name, 8) + "out", 1);
        }
    }
    const ResourceTable &modes = *tables_[CLASS_MODE];
    for (Resource *at = modes.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto mode = get<NAP_MODE_DATA>(*at);
        const Resource *link = mode.act_sess_count != 0 ? link_to(mode.fq_cp_name) : nullptr;
        const Resource *known = find(CLASS_MODE_DEF, mode.mode_name);
        if (link != nullptr && known != nullptr &&
            get<NAP_LS_DATA>(*link).det_data.hpr_support != 0) {
            const auto chars = get<NAP_MODE_DEF_DATA>(*known).mode_chars;
            carry(get<NAP_LS_DATA>(*link), mode.fq_cp_name, chars.cos_name, "",
                  mode.act_sess_count);
        }
    }
    Wanted wanted;
    for (const auto &entry : routes) {
        wanted[entry.first] = bytes_of(entry.second);
    }
    return wanted;
}

Engine::Wanted Engine::wanted_sessions() const {
    Wanted wanted;
    const auto settings =
        this->settings<NAP_TAMRIX_DEFAULTS_VERB>(NAP_QUERY_TAMRIX_APPCIP_DEFAULTS);
    const ResourceTable &modes = *tables_[CLASS_MODE];
    for (Resource *at = modes.first(); at != nullptr && node_record().tamrix_support != 0;
         at = ResourceTable::next(*at)) {
        const auto mode = get<NAP_MODE_DATA>(*at);
        const Resource *link = mode.act_sess_count != 0 ? link_to(mode.fq_cp_name) : nullptr;
        const Resource *lu = tables_[CLASS_LOCAL_LU]->find_alias(mode.lu_alias);
        if (link == nullptr || lu == nullptr ||
            get<NAP_LS_DATA>(*link).def_data.dlc_type != NAP_DLC_IP) {
            continue;
        }
        for (NB_USHORT number = 0; number < mode.act_sess_count; number++) {
            NAP_TAMRIX_SESSION_DATA session = {};
            const std::string what =
                text_of(at->entry.get() + KEY_OFFSET, at->row->schema->key_size()) +
                std::to_string(number);
            const NB_ULONG hash = hash_of(what);
            memcpy(session.lu_name, lu->entry.get() + KEY_OFFSET, sizeof session.lu_name);
            memcpy(session.fqplu_name, mode.fqplu_name, sizeof session.fqplu_name);
            memcpy(session.mode_name, mode.mode_name, sizeof session.mode_name);
            session.session_state = NAP_ACTIVE;
            session.secondary = number < mode.min_conwinners ? 0 : 1;
            session.local_port = static_cast<NB_USHORT>(
                session.secondary != 0 ? settings.port : 49152 + hash % 16384);
            session.remote_port = static_cast<NB_USHORT>(
                session.secondary != 0 ? 49152 + hash % 16384 : settings.port);
            session.local_ip_address = settings.local_ip_address;
            session.remote_ip_address = address_of(get<NAP_LS_DATA>(*link));
            wanted[what] = bytes_of(session);
        }
    }
    return wanted;
}

/* What a connection that goes on has of its own stays.  One that lost its first link and has
 * another way looks for that first. */
void Engine::keep_route(const Resource &resource, std::vector<NB_UCHAR> &wanted) {
    const auto known = get<NAP_RTP_CONN_DATA>(resource);
    NAP_RTP_CONN_DATA route;
    memcpy(&route, wanted.data(), sizeof route);
    route.connect_state = known.connect_state;
    route.path_switch_attempts = known.path_switch_attempts;
    route.bytes_sent = known.bytes_sent;
    route.bytes_received = known.bytes_received;
    route.bytes_resent = known.bytes_resent;
    route.up_time = known.up_time;
    if (memcmp(route.first_hop_ls_name, known.first_hop_ls_name, sizeof route.first_hop_ls_name) !=
        0) {
        route.connect_state = NAP_RTP_SWITCHING;
        route.path_switch_attempts =
            static_cast<NB_UCHAR>(std::min<unsigned>(known.path_switch_attempts + 1U, 255));
        timers_.after(SWITCH_MS, [this, name = text_of(known.rtp_name, 8)] { route_found(name); });
    }
    memcpy(wanted.data(), &route, sizeof route);
}

void Engine::route_found(const std::string &name) {
    Resource *found = find(CLASS_RTP_CONN, reinterpret_cast<const NB_UCHAR *>(name.data()));
    if (found != nullptr) {
        auto route = get<NAP_RTP_CONN_DATA>(*found);
        route.connect_state = NAP_RTP_CONNECTED;
        put(*found, route);
        log(NAP_LOG_AUDIT, NAP_LOG_PATH_SWITCHED, *found);
    }
}

/* Counters go on with the time, as those of sessions do. */
void Engine::settle_routes() {
    const NB_ULONG now = clock_.wall_seconds();
    NB_UCHAR key[KEY_OFFSET + 8] = {};
    for (auto &[what, one] : routes_.all) {
        name_route(key, one.number);
        Resource *found = find(CLASS_RTP_CONN, key + KEY_OFFSET);
        if (found != nullptr && one.counted != now) {
            const NB_ULONG seconds = now - one.counted;
            auto route = get<NAP_RTP_CONN_DATA>(*found);
            route.up_time = now - one.begun;
            route.bytes_sent += seconds * route.sessions * (20 + hash_of(what) % 200);
            route.bytes_received += seconds * route.sessions * (40 + hash_of(what) % 400);
            route.bytes_resent = route.bytes_sent / 2048;
            put(*found, route);
            one.counted = now;
        }
    }
}

/* Connections that are no longer wanted go, new ones get the next number, the rest is brought up to
 * date. */
void Engine::bring(ClassId id, Brought &brought, Wanted wanted,
                   void (*name)(NB_UCHAR *entry, NB_ULONG number)) {
    const ClassRow &row = class_row(id);
    NB_UCHAR key[KEY_OFFSET + 8] = {};
    for (auto at = brought.all.begin(); at != brought.all.end();) {
        if (wanted.count(at->first) != 0) {
            ++at;
            continue;
        }
        name(key, at->second.number);
        Resource *gone = find(id, key + KEY_OFFSET);
        if (gone != nullptr) {
            indicate(*gone, true);
            remove_tree(*gone);
        }
        at = brought.all.erase(at);
    }
    for (auto &[what, entry] : wanted) {
        const auto known = brought.all.find(what);
        const bool is_new = known == brought.all.end();
        if (is_new && tables_[id]->count() == MAX_SESSION_NUMBER) {
            continue;
        }
        do {
            brought.last = is_new ? brought.last % MAX_SESSION_NUMBER + 1 : brought.last;
            name(key, is_new ? brought.last : known->second.number);
        } while (is_new && find(id, key + KEY_OFFSET) != nullptr);
        name(entry.data(), is_new ? brought.last : known->second.number);
        const Resource *there = find(id, key + KEY_OFFSET);
        put_number(entry.data(), 2, static_cast<NB_ULONG>(row.schema->overlay_size()));
        if (is_new) {
            const NB_ULONG now = clock_.wall_seconds();
            brought.all[what] = {brought.last, now, now};
        } else if (there != nullptr && id == CLASS_RTP_CONN) {
            keep_route(*there, entry);
        }
        if (there == nullptr ||
            memcmp(there->entry.get(), entry.data(), row.schema->entry_size) != 0) {
            indicate(add_derived(id, entry.data(), entry.size()), false);
        }
    }
}

void Engine::show_routes() {
    bring(CLASS_RTP_CONN, routes_, wanted_routes(), name_route);
    bring(CLASS_TAMRIX_SESSION, ip_sessions_, wanted_sessions(), name_session);
}

} // namespace node
