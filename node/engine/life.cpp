/* States: starting, for every class that has them; stopping is in stopping.cpp.
 *
 * What follows what stands in the tables of states.h.  Dependants come up when their owner is
 * active and go down before it; what has no owner depends on the node. */
#include "engine.h"

#include "nbbase.h"
#include "nofcopy.h"
#include "referrers.h"

#include <cstring>
#include <type_traits>

namespace node {

namespace {

constexpr NB_ULONG NODE_UP_MS = 300;

/* The same name takes the same time on every start. */
NB_ULONG time_to_come_up(const Resource &resource) {
    const LifeRow &life = resource.row->life;
    return resource.behaviour.up_ms != 0
               ? resource.behaviour.up_ms
               : life.up_low_ms + name_hash(resource) % (life.up_high_ms - life.up_low_ms + 1);
}

bool is_up(const Resource &resource) {
    return resource.state == NAP_ACTIVE || resource.state == NAP_PENDING_ACTIVE;
}

} // namespace

bool Engine::may_be_root(const ClassRow &row) {
    return row.life.has_states() &&
           ((row.refs[0].flags & REF_OWNER) == 0 || (row.refs[0].flags & REF_OPTIONAL) != 0);
}

bool Engine::is_root(const Resource &resource) const {
    const ClassRow &row = *resource.row;
    return may_be_root(row) &&
           ((row.refs[0].flags & REF_OWNER) == 0 || owner_of(resource) == nullptr);
}

bool Engine::owner_active(const Resource &resource) const {
    if (is_root(resource)) {
        return node_state_ == NAP_NODE_ACTIVE;
    }
    const Resource *owner = owner_of(resource);
    return owner != nullptr && owner->state == NAP_ACTIVE && !owner->going_down;
}

bool Engine::comes_with_owner(const Resource &resource) const {
    const FieldRow *initially = resource.row->life.initially;
    return initially == nullptr || resource.entry[initially->offset] != 0;
}

std::vector<Resource *> Engine::dependants(const Resource &owner) const {
    std::vector<Resource *> all;
    for (NB_UCHAR id = 0; id < CLASS_COUNT; id++) {
        const ClassRow &row = class_row(static_cast<ClassId>(id));
        const RefRow &ref = row.refs[0];
        if ((ref.flags & REF_OWNER) != 0 && ref.to == owner.row->id) {
            const std::vector<Resource *> some = find_referrers(
                *tables_[id], ref, owner.entry.get() + KEY_OFFSET, owner.row->schema->key_size());
            all.insert(all.end(), some.begin(), some.end());
        }
    }
    return all;
}

std::vector<Resource *> Engine::roots() const {
    std::vector<Resource *> all;
    for (const auto &table : tables_) {
        if (!may_be_root(table->row())) {
            continue; /* a million LUs are not looked at one by one */
        }
        for (Resource *at = table->first(); at != nullptr; at = ResourceTable::next(*at)) {
            if (is_root(*at)) {
                all.push_back(at);
            }
        }
    }
    return all;
}

/* What the class's table does not have does not happen. */
void Engine::move(Resource &resource, Event event) {
    const StateRow *row = find_row(resource.row->life.states, resource.state, event);
    if (row != nullptr) {
        set_state(resource, row->to);
    }
}

void Engine::set_state(Resource &resource, NB_UCHAR state) {
    const ClassRow &row = *resource.row;
    const bool was_active = resource.state == NAP_ACTIVE;
    const bool was_up = resource.state != NAP_NOT_ACTIVE;
    const bool up = state != NAP_NOT_ACTIVE;
    const bool pending = state == NAP_PENDING_ACTIVE || state == NAP_PENDING_INACTIVE;
    if (resource.state == state) {
        return;
    }
    resource.state = state;
    resource.extra = up ? resource.extra : 0;
    row.hooks.show(*this, resource);
    show_lu_session(resource);
    if (row.hooks.moved != nullptr) {
        row.hooks.moved(*this, resource);
    }
    const int change = (state == NAP_ACTIVE ? 1 : 0) - (was_active ? 1 : 0);
    if (change != 0) {
        count_in_owner(resource, 0, change);
        traffic_changed();
    }
    if (row.life.shows_pending || !pending) {
        indicate(resource, false);
    }
    if (row.id == CLASS_LS && state == NAP_NOT_ACTIVE) {
        hang_up(resource, 0);
    } else if (row.id == CLASS_LU03 && state == NAP_NOT_ACTIVE) {
        end_visit_of(resource);
    }
    if (row.life.shows_pending && !pending) {
        log(NAP_LOG_AUDIT, up ? NAP_LOG_STARTED : NAP_LOG_STOPPED, resource);
    }
    trace_state(resource);
    if (up != was_up) {
        count_below(resource, up ? 1 : -1);
    }
}

void Engine::wait(Resource &resource, NB_ULONG ms, void (Engine::*then)(Resource &)) {
    timers_.cancel(resource.timer);
    resource.timer = timers_.after(ms, [this, &resource, then] {
        resource.timer = 0;
        (this->*then)(resource);
    });
}

void Engine::start(Resource &resource) {
    if (is_up(resource)) {
        return;
    }
    if (!is_heard_of(resource)) {
        finish_start(resource);
        return;
    }
    if (resource.row->id == CLASS_LS && resource.state == NAP_NOT_ACTIVE &&
        !has_room(*owner_of(resource), false)) {
        start_failed(resource, SENSE_LIMIT);
        return;
    }
    move(resource, Event::Start);
    wait(resource, time_to_come_up(resource), &Engine::finish_start);
}

void Engine::finish_start(Resource &resource) {
    if (!owner_active(resource)) {
        move(resource, Event::OwnerGone);
        return;
    }
    const bool link = resource.row->id == CLASS_LS;
    if (resource.behaviour.reachable == 0 || (link && !is_answered(resource))) {
        start_failed(resource, link ? SENSE_LINK_FAILED : SENSE_NOT_STARTED);
    } else if (!find_server(resource)) {
        start_failed(resource, SENSE_NO_WAY);
    } else if (link) {
        connect(resource);
    } else {
        resource.tries = 0;
        move(resource, Event::Ready);
        start_dependants(resource);
    }
}

/* Those that show no pending states, LUs, come up together: one timer for all of an owner. */
void Engine::start_dependants(Resource &owner) {
    NB_ULONG together_ms = 0;
    for (Resource *below : dependants(owner)) {
        if (!comes_with_owner(*below) || is_up(*below)) {
            continue;
        }
        if (below->row->life.shows_pending || !is_heard_of(*below)) {
            start(*below);
            continue;
        }
        together_ms = together_ms == 0 ? time_to_come_up(*below) : together_ms;
        move(*below, Event::Start);
    }
    if (together_ms != 0) {
        const ClassId id = owner.row->id;
        const NB_UCHAR *key = owner.entry.get() + KEY_OFFSET;
        const std::vector<NB_UCHAR> name(key, key + owner.row->schema->key_size());
        timers_.after(together_ms, [this, id, name] {
            Resource *found = find(id, name.data());
            if (found != nullptr) {
                finish_dependants(*found);
            }
        });
    }
}

void Engine::finish_dependants(const Resource &owner) {
    for (Resource *below : dependants(owner)) {
        const bool waits = below->state == NAP_PENDING_ACTIVE && below->timer == 0;
        if (waits && !below->row->life.shows_pending) {
            finish_start(*below);
        }
    }
}

/* Ports and link stations say when they last failed, and why. */
void Engine::failed(Resource &resource, NB_ULONG sense) {
    const auto note = [this, &resource, sense](auto entry) {
        entry.det_data.last_sense = sense;
        entry.det_data.failed_at = clock_.wall_seconds();
        entry.det_data.failures++;
        put(resource, entry);
    };
    if (resource.row->id == CLASS_PORT) {
        note(get<NAP_PORT_DATA>(resource));
    } else if (resource.row->id == CLASS_LS) {
        note(get<NAP_LS_DATA>(resource));
    }
    const bool lost = resource.state == NAP_ACTIVE;
    log(NAP_LOG_EXCEPTION, lost ? NAP_LOG_LINK_LOST : NAP_LOG_START_FAILED, resource, sense);
}

/* It tries again as its definition says. */
void Engine::start_failed(Resource &resource, NB_ULONG sense) {
    const bool told = resource.state == NAP_NOT_ACTIVE;
    failed(resource, sense);
    move(resource, Event::Failed);
    try_again(resource);
    if (told) {
        indicate(resource, false);
    }
}

void Engine::retry(Resource &resource) {
    if (!owner_active(resource)) {
        return;
    }
    if (resource.row->id == CLASS_LS) {
        auto entry = get<NAP_LS_DATA>(resource);
        entry.det_data.retries++;
        put(resource, entry);
    }
    start(resource);
}

/* PUs towards hosts and those that are served share their verbs and their names. */
Resource *Engine::named_by(const ClassRow &row, const NB_UCHAR *block) const {
    Resource *resource = find(row.id, block + KEY_IN_BLOCK);
    return resource == nullptr && row.id == CLASS_PU ? find(CLASS_DOWN_PU, block + KEY_IN_BLOCK)
                                                     : resource;
}

Result Engine::start_verb(const ClassRow &row, const NB_UCHAR *block) {
    Resource *resource = named_by(row, block);
    if (resource == nullptr) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    if (node_state_ != NAP_NODE_ACTIVE) {
        return bad_state(NAP_NODE_NOT_ACTIVE);
    }
    if (!owner_active(*resource)) {
        return bad_state(NAP_RESOURCE_INACTIVE);
    }
    if (resource->row->id == CLASS_LS && resource->state == NAP_NOT_ACTIVE &&
        !has_room(*owner_of(*resource), false)) {
        return bad_state(NAP_PORT_LIMIT);
    }
    resource->tries = 0;
    const bool taken_back = take_stops_back(*resource);
    changed_nothing_ = is_up(*resource) && !taken_back;
    start(*resource);
    return GOOD;
}

void Engine::move_node(Event event) {
    const StateRow *row = find_row(node_states, static_cast<NB_UCHAR>(node_state_), event);
    if (row != nullptr) {
        node_state_ = row->to;
        announce();
    }
}

void Engine::announce() {
    NAP_QUERY_NODE_VERB record = node_record();
    record.primary_rc = NAP_INDICATION;
    listener_.indicate(&record, sizeof record);
}

Result Engine::init_node() {
    if (node_state_ == NAP_NODE_STOPPING) {
        return bad_state(NAP_NODE_BUSY);
    }
    if (node_state_ == NAP_NODE_UNCONFIGURED || node_state_ == NAP_NODE_BACK_LEVEL) {
        return bad_state(NAP_NODE_NOT_ACTIVE);
    }
    const Result result = remember({}, {{FACT_WANTED, "1"}}, IfFull::Owe);
    wanted_ = true;
    begin();
    return result;
}

void Engine::begin() {
    if (wanted_ && node_state_ == NAP_NODE_STOPPED) {
        move_node(Event::Start);
        node_timer_ = timers_.after(NODE_UP_MS, [this] { node_up(); });
    }
}

template <class Record> void Engine::forget_failures(ClassId id) {
    for (Resource *at = tables_[id]->first(); at != nullptr; at = ResourceTable::next(*at)) {
        auto entry = get<Record>(*at);
        const bool told = entry.det_data.failures != 0;
        entry.det_data.failures = entry.det_data.failed_at = entry.det_data.last_sense = 0;
        if constexpr (std::is_same_v<Record, NAP_LS_DATA>) {
            entry.det_data.retries = 0;
        }
        put(*at, entry);
        if (told) {
            indicate(*at, false);
        }
    }
}

void Engine::node_up() {
    up_since_ms_ = clock_.now_ms();
    forget_failures<NAP_PORT_DATA>(CLASS_PORT);
    forget_failures<NAP_LS_DATA>(CLASS_LS);
    log(NAP_LOG_AUDIT, NAP_LOG_NODE_STARTED, "The node is active.");
    move_node(Event::Ready);
    traffic_changed();
    for (Resource *root : roots()) {
        if (comes_with_owner(*root)) {
            start(*root);
        }
    }
    begin_visits();
}

} // namespace node
