/* Counters: this node software carries no traffic, so what a session would have carried follows
 * from how long it lasts.  Whoever asks gets the numbers of the moment; nothing is indicated for
 * them. */
#include "engine.h"

namespace node {

namespace {

/* Bytes a second, and bytes a message, by name. */
struct Rate {
    NB_ULONG in;
    NB_ULONG out;
    NB_ULONG message;
};

Rate rate_of(const Resource &session) {
    const NB_ULONG hash = name_hash(session);
    return {40 + hash % 400, 20 + hash / 400 % 200, 64 + hash / 80000 % 192};
}

/* Counters begin again at 0 behind 2^32. */
NB_ULONG since(uint64_t now, NB_ULONG before) {
    return static_cast<NB_ULONG>(now) - before;
}

template <class Counters> void add(Counters &to, NB_ULONG in, NB_ULONG out) {
    to.in_bytes += in;
    to.out_bytes += out;
}

} // namespace

/* Brings a session up to date, and what sums sessions up: its mode, link station and port. */
void Engine::settle(Resource &resource) {
    auto session = get<NAP_SESSION_DATA>(resource);
    const Rate rate = rate_of(resource);
    const uint64_t seconds = clock_.wall_seconds() - session.started_at;
    const NB_ULONG in = since(seconds * rate.in, session.in_bytes);
    const NB_ULONG out = since(seconds * rate.out, session.out_bytes);
    const NB_ULONG in_messages = since(seconds * rate.in / rate.message, session.in_messages);
    const NB_ULONG out_messages = since(seconds * rate.out / rate.message, session.out_messages);
    if (in == 0 && out == 0) {
        return;
    }
    add(session, in, out);
    session.in_messages += in_messages;
    session.out_messages += out_messages;
    put(resource, session);
    Resource *link = find(CLASS_LS, session.ls_name);
    if (link != nullptr) {
        auto entry = get<NAP_LS_DATA>(*link);
        Resource *port = find(CLASS_PORT, entry.def_data.port_name);
        add(entry.det_data, in, out);
        entry.det_data.in_frames += in_messages;
        entry.det_data.out_frames += out_messages;
        entry.det_data.retransmissions = entry.det_data.out_frames / 1024;
        put(*link, entry);
        if (port != nullptr) {
            auto below = get<NAP_PORT_DATA>(*port);
            add(below.det_data, in, out);
            put(*port, below);
        }
    }
    Resource *mode = mode_of(session);
    if (mode != nullptr) {
        auto entry = get<NAP_MODE_DATA>(*mode);
        add(entry, in, out);
        entry.in_messages += in_messages;
        entry.out_messages += out_messages;
        put(*mode, entry);
    }
}

/* Within one second nothing goes on. */
void Engine::settle_all() {
    if (settled_at_ == clock_.wall_seconds()) {
        return;
    }
    settled_at_ = clock_.wall_seconds();
    const ResourceTable &sessions = *tables_[CLASS_SESSION];
    for (Resource *at = sessions.first(); at != nullptr; at = ResourceTable::next(*at)) {
        settle(*at);
    }
}

} // namespace node
