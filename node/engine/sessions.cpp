/* The sessions of LUs: one entry for each, made when it begins and taken away when it ends.
 * A session of LU 6.2 belongs to a mode in use and is carried by the link to the partner; that of
 * an LU of type 0 to 3 comes and goes with its user. */
#include "engine.h"

#include "nofverbs.h"

#include <cstring>
#include <set>

namespace node {

namespace {

constexpr NB_USHORT MAX_NUMBER = 65535;

bool is_of_mode(const NAP_SESSION_DATA &session, const NAP_MODE_DATA &mode) {
    return session.session_type == NAP_SESSION_LU62 &&
           memcmp(session.mode_name, mode.mode_name, sizeof mode.mode_name) == 0 &&
           memcmp(session.fqplu_name, mode.fqplu_name, sizeof mode.fqplu_name) == 0;
}

NB_UCHAR *bytes_of(NAP_SESSION_DATA &session) {
    return reinterpret_cast<NB_UCHAR *>(&session);
}

} // namespace

/* So long a session takes to end by itself. */
NB_ULONG Engine::end_ms(const Resource &resource) const {
    return resource.behaviour.end_ms != 0 ? resource.behaviour.end_ms
                                          : 100 + name_hash(resource) % 300;
}

void Engine::end_later(Resource &resource, NB_ULONG ms, void (Engine::*then)(Resource &)) {
    const bool forced = ms > ORDERLY_WAIT_MS;
    timers_.cancel(resource.timer);
    resource.timer = timers_.after(forced ? ORDERLY_WAIT_MS : ms, [this, &resource, then, forced] {
        resource.timer = 0;
        if (forced) {
            log(NAP_LOG_EXCEPTION, NAP_LOG_STOP_FORCED, resource);
        }
        (this->*then)(resource);
    });
}

/* A link station waits for what it carries, and says how much that is. */
void Engine::carry(const NAP_SESSION_DATA &session, int change) {
    Resource *link = find(CLASS_LS, session.ls_name);
    if (link == nullptr) {
        return;
    }
    auto entry = get<NAP_LS_DATA>(*link);
    if (change > 0 || entry.det_data.act_sess_count > 0) {
        entry.det_data.act_sess_count += static_cast<NB_ULONG>(change);
        put(*link, entry);
    }
    if (session.session_type == NAP_SESSION_LU62 && (change > 0 || link->below > 0)) {
        link->below += static_cast<NB_ULONG>(change);
        go_on_stopping(*link);
    }
}

void Engine::end_session(Resource &resource) {
    settle(resource);
    const auto session = get<NAP_SESSION_DATA>(resource);
    users_ -= session.session_type == NAP_SESSION_LU_0_TO_3 ? 1 : 0;
    trace_client(session, "ended");
    remove_tree(resource);
    carry(session, -1);
}

/* The session of an LU of type 0 to 3, as the LU says now. */
void Engine::show_lu_session(Resource &lu) {
    if (lu.row->id != CLASS_LU03 || lu.behaviour.user_name[0] == 0) {
        return;
    }
    const auto entry = get<NAP_LU03_DATA>(lu);
    NAP_SESSION_DATA session = {};
    memcpy(session.lu_name, entry.lu_name, sizeof session.lu_name);
    session.session_number = 1;
    Resource *there = find(CLASS_SESSION, bytes_of(session) + KEY_OFFSET);
    const bool wanted = entry.det_data.plu_sess_active != 0;
    if (wanted == (there != nullptr)) {
        return;
    }
    if (!wanted) {
        end_session(*there);
        return;
    }
    const Resource *pu = find(CLASS_PU, entry.pu_name);
    session.session_type = NAP_SESSION_LU_0_TO_3;
    session.session_state = NAP_ACTIVE;
    session.app_type = entry.det_data.app_type;
    memset(session.mode_name, 0x40, sizeof session.mode_name);
    memset(session.fqplu_name, 0x40, sizeof session.fqplu_name);
    memset(session.fq_cp_name, 0x40, sizeof session.fq_cp_name);
    memset(session.ls_name, ' ', sizeof session.ls_name);
    memcpy(session.user_name, entry.det_data.user_name, sizeof session.user_name);
    if (pu != nullptr) {
        memcpy(session.ls_name, get<NAP_PU_DATA>(*pu).def_data.ls_name, sizeof session.ls_name);
    }
    session.started_at = clock_.wall_seconds();
    users_++;
    trace_client(session, "began");
    add_derived(CLASS_SESSION, &session, sizeof session);
    carry(session, 1);
}

/* Until the LU comes up anew; one that was to stop does so. */
void Engine::log_off(Resource &lu) {
    timers_.cancel(lu.timer);
    lu.timer = 0;
    lu.extra = -1;
    lu.row->hooks.show(*this, lu);
    show_lu_session(lu);
    lu.row->hooks.moved(*this, lu);
    indicate(lu, false);
    log(NAP_LOG_AUDIT, NAP_LOG_SESSION_ENDED, lu);
    if (!owner_active(lu)) {
        finish_stop(lu);
    }
}

std::vector<Resource *> Engine::sessions_of(const Resource &mode) const {
    const auto entry = get<NAP_MODE_DATA>(mode);
    const Resource *lu = tables_[CLASS_LOCAL_LU]->find_alias(entry.lu_alias);
    std::vector<Resource *> found;
    if (lu == nullptr) {
        return found;
    }
    const ResourceTable &all = *tables_[CLASS_SESSION];
    for (Resource *at = all.first_with(lu->entry.get() + KEY_OFFSET, 8); at != nullptr;
         at = ResourceTable::next_with(*at, 8)) {
        if (is_of_mode(get<NAP_SESSION_DATA>(*at), entry)) {
            found.push_back(at);
        }
    }
    return found;
}

void Engine::add_mode_session(const Resource &mode, NB_USHORT number, bool winner,
                              const Resource &link) {
    const auto entry = get<NAP_MODE_DATA>(mode);
    const Resource *lu = tables_[CLASS_LOCAL_LU]->find_alias(entry.lu_alias);
    NAP_SESSION_DATA session = {};
    memcpy(session.lu_name, lu->entry.get() + KEY_OFFSET, sizeof session.lu_name);
    memcpy(session.mode_name, entry.mode_name, sizeof session.mode_name);
    memcpy(session.fqplu_name, entry.fqplu_name, sizeof session.fqplu_name);
    memcpy(session.fq_cp_name, entry.fq_cp_name, sizeof session.fq_cp_name);
    memcpy(session.ls_name, link.entry.get() + KEY_OFFSET, sizeof session.ls_name);
    session.session_number = number;
    session.session_type = NAP_SESSION_LU62;
    session.session_state = NAP_ACTIVE;
    session.winner = winner ? 1 : 0;
    session.started_at = clock_.wall_seconds();
    add_derived(CLASS_SESSION, &session, sizeof session);
    carry(session, 1);
}

/* Sessions that go, go from the youngest on; new ones have the numbers behind the last of the LU,
 * or, at the end of the numbers, the first that are free.  When none is, there are fewer. */
void Engine::set_mode_sessions(Resource &mode, NB_USHORT count, const Resource *link) {
    std::vector<Resource *> there = sessions_of(mode);
    auto entry = get<NAP_MODE_DATA>(mode);
    for (; there.size() > count; there.pop_back()) {
        end_session(*there.back());
    }
    const Resource *lu = tables_[CLASS_LOCAL_LU]->find_alias(entry.lu_alias);
    std::set<NB_USHORT> used;
    if (there.size() < count && lu != nullptr && link != nullptr) {
        const ResourceTable &all = *tables_[CLASS_SESSION];
        for (Resource *at = all.first_with(lu->entry.get() + KEY_OFFSET, 8); at != nullptr;
             at = ResourceTable::next_with(*at, 8)) {
            used.insert(get<NAP_SESSION_DATA>(*at).session_number);
        }
        NB_USHORT last = used.empty() ? 0 : *used.rbegin();
        size_t made = there.size();
        for (; made < count && used.size() < MAX_NUMBER; made++) {
            do {
                last = last == MAX_NUMBER ? 1 : static_cast<NB_USHORT>(last + 1);
            } while (used.count(last) != 0);
            used.insert(last);
            add_mode_session(mode, last, made < entry.min_conwinners, *link);
        }
        count = static_cast<NB_USHORT>(made);
    }
    entry = get<NAP_MODE_DATA>(mode);
    if (entry.act_sess_count != count) {
        entry.act_sess_count = count;
        put(mode, entry);
        indicate(mode, false);
    }
}

/* Sessions find another way when there is one. */
void Engine::move_sessions(Resource &mode, const Resource &link) {
    for (Resource *at : sessions_of(mode)) {
        auto session = get<NAP_SESSION_DATA>(*at);
        if (memcmp(session.ls_name, link.entry.get() + KEY_OFFSET, sizeof session.ls_name) != 0) {
            settle(*at);
            carry(session, -1);
            session = get<NAP_SESSION_DATA>(*at);
            memcpy(session.ls_name, link.entry.get() + KEY_OFFSET, sizeof session.ls_name);
            put(*at, session);
            carry(session, 1);
        }
    }
}

/* The mode says that its sessions were lost, or could not be had. */
void Engine::lose_sessions(Resource &mode, NB_ULONG count, NB_ULONG sense) {
    auto entry = get<NAP_MODE_DATA>(mode);
    entry.failures += count;
    entry.failed_at = clock_.wall_seconds();
    entry.last_sense = sense;
    put(mode, entry);
    log(NAP_LOG_EXCEPTION, NAP_LOG_SESSION_REFUSED, mode, sense);
}

/* No new sessions; those that are there take their time. */
void Engine::drain(Resource &mode) {
    auto entry = get<NAP_MODE_DATA>(mode);
    if (entry.draining != 0 || entry.act_sess_count == 0) {
        return;
    }
    entry.draining = 1;
    put(mode, entry);
    for (Resource *at : sessions_of(mode)) {
        auto session = get<NAP_SESSION_DATA>(*at);
        session.session_state = NAP_PENDING_INACTIVE;
        put(*at, session);
    }
    indicate(mode, false);
    end_later(mode, end_ms(mode), &Engine::drained);
}

void Engine::drained(Resource &mode) {
    timers_.cancel(mode.timer);
    mode.timer = 0;
    auto entry = get<NAP_MODE_DATA>(mode);
    entry.draining = 0;
    put(mode, entry);
    set_mode_sessions(mode, 0, nullptr);
    traffic_changed();
}

/* What a link carries ends: orderly, or, what was to end orderly, now.  The rest of what an
 * immediate stop ends is found to be gone with the next count. */
void Engine::end_carried(const Resource &link, Stop how) {
    std::set<Resource *> modes;
    const ResourceTable &all = *tables_[CLASS_SESSION];
    for (Resource *at = all.first(); link.below > 0 && at != nullptr;
         at = ResourceTable::next(*at)) {
        const auto session = get<NAP_SESSION_DATA>(*at);
        Resource *mode = mode_of(session);
        if (mode != nullptr &&
            memcmp(session.ls_name, link.entry.get() + KEY_OFFSET, sizeof session.ls_name) == 0) {
            modes.insert(mode);
        }
    }
    for (Resource *mode : modes) {
        if (how == Stop::Orderly) {
            drain(*mode);
        } else if (get<NAP_MODE_DATA>(*mode).draining != 0) {
            drained(*mode);
        }
    }
}

/* The mode in use that an LU 6.2 session belongs to; null for others. */
Resource *Engine::mode_of(const NAP_SESSION_DATA &session) const {
    const Resource *lu =
        session.session_type == NAP_SESSION_LU62 ? find(CLASS_LOCAL_LU, session.lu_name) : nullptr;
    NAP_MODE_DATA key = {};
    if (lu == nullptr) {
        return nullptr;
    }
    memcpy(key.lu_alias, get<NAP_LOCAL_LU_DATA>(*lu).def_data.lu_alias, sizeof key.lu_alias);
    memcpy(key.mode_name, session.mode_name, sizeof key.mode_name);
    memcpy(key.fqplu_name, session.fqplu_name, sizeof key.fqplu_name);
    return find(CLASS_MODE, reinterpret_cast<const NB_UCHAR *>(&key) + KEY_OFFSET);
}

/* One session that was to end, and does not come back. */
void Engine::session_over(Resource &resource) {
    Resource *mode = mode_of(get<NAP_SESSION_DATA>(resource));
    log(NAP_LOG_AUDIT, NAP_LOG_SESSION_ENDED, resource);
    end_session(resource);
    if (mode != nullptr) {
        auto entry = get<NAP_MODE_DATA>(*mode);
        mode->extra--;
        entry.act_sess_count--;
        put(*mode, entry);
        indicate(*mode, false);
    }
    traffic_changed();
}

} // namespace node
