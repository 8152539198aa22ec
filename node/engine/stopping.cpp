/* Stopping.  An orderly stop takes everything above the resource down first, takes no new sessions,
 * and waits for those that are there: each ends by itself, or is ended when ORDERLY_WAIT_MS have
 * passed.  Meanwhile the resource is NAP_PENDING_INACTIVE.  An immediate stop ends them at once.
 * Who waits for what is counted in Resource::below.
 *
 * What an administrator stops may have a million resources on it.  They are taken down a slice at a
 * time, each behind all that hangs on it, and verbs are served in between.  Until its turn comes a
 * resource is as it was, but nothing on it can be started any more. */
#include "engine.h"

#include "nofcopy.h"

namespace node {

namespace {

constexpr NB_ULONG NODE_DOWN_MS = 100; /* behind its last resource */
constexpr NB_ULONG BETWEEN_SLICES_MS = 1;
constexpr size_t SLICE = 2000; /* resources */
constexpr uint64_t SLICE_MS = 10;
/* More than an orderly stop takes in any case. */
constexpr NB_ULONG NODE_WAIT_MS = ORDERLY_WAIT_MS + 5000;

} // namespace

/* An orderly stop of what is stopping has nothing to do. */
bool Engine::is_on_its_way(const Resource &resource, Stop how) {
    return how == Stop::Orderly && resource.state == NAP_PENDING_INACTIVE;
}

/* Sessions of local LUs end with the links that carry them. */
bool Engine::in_session(const Resource &resource) const {
    const ClassRow &row = *resource.row;
    return row.id != CLASS_LOCAL_LU && row.hooks.report != nullptr &&
           row.hooks.report(resource) == NAP_IN_SESSION;
}

void Engine::stop(Resource &resource, Stop how) {
    if (is_on_its_way(resource, how)) {
        return;
    }
    for (Resource *below : dependants(resource)) {
        stop(*below, how);
    }
    stop_alone(resource, how);
}

/* What hangs on it is stopped, or about to be. */
void Engine::stop_alone(Resource &resource, Stop how) {
    const bool orderly = how == Stop::Orderly;
    resource.going_down = false;
    if (is_on_its_way(resource, how)) {
        return;
    }
    timers_.cancel(resource.timer);
    resource.timer = 0;
    wait_no_more(resource);
    if (resource.state == NAP_NOT_ACTIVE) {
        return;
    }
    if (orderly && in_session(resource)) {
        end_later(resource, end_ms(resource), &Engine::finish_stop);
        return;
    }
    move(resource, orderly ? Event::Stop : Event::StopAtOnce);
    if (resource.row->id == CLASS_LS) {
        end_carried(resource, how);
    }
    go_on_stopping(resource);
}

/* Goes on with what was asked for last, so that an immediate stop overtakes an orderly one. */
void Engine::begin_descent(const std::vector<Resource *> &resources, Stop how) {
    descents_.push_back({how, {}});
    put_on(descents_.back(), resources);
    stop_some();
}

/* Of everything; it takes the place of all others. */
void Engine::begin_whole_descent(Stop how) {
    descents_ = {{how, {}, 0}};
    stop_some();
}

/* Looks at no more resources at a time than a slice has.  False when no more roots are to come. */
bool Engine::put_roots_on(Descent &descent) const {
    std::vector<Resource *> some;
    for (size_t left = SLICE; descent.roots_of < CLASS_COUNT && left > 0; left--) {
        const ResourceTable &table = *tables_[descent.roots_of];
        Resource *at = descent.last.empty() ? table.first() : table.after(descent.last.data());
        if (at == nullptr || !may_be_root(table.row())) {
            descent.roots_of++;
            descent.last.clear();
            continue;
        }
        const NB_UCHAR *key = at->entry.get() + KEY_OFFSET;
        descent.last.assign(key, key + table.row().schema->key_size());
        if (is_root(*at)) {
            some.push_back(at);
        }
    }
    put_on(descent, some);
    return !some.empty() || descent.roots_of < CLASS_COUNT;
}

void Engine::put_on(Descent &descent, const std::vector<Resource *> &resources) {
    for (auto at = resources.rbegin(); at != resources.rend(); ++at) {
        const NB_UCHAR *key = (*at)->entry.get() + KEY_OFFSET;
        descent.left.push_back({(*at)->row->id, {key, key + (*at)->row->schema->key_size()}});
    }
}

/* Resources are looked up by name, since one may be deleted before its turn. */
void Engine::stop_some() {
    const uint64_t begun = clock_.now_ms();
    for (size_t left = SLICE; left > 0 && !descents_.empty() && clock_.now_ms() - begun < SLICE_MS;
         left--) {
        Descent &descent = descents_.back();
        if (descent.left.empty()) {
            if (!put_roots_on(descent)) {
                descents_.pop_back();
            }
            continue;
        }
        GoingDown &next = descent.left.back();
        Resource *resource = find(next.id, next.key.data());
        if (resource == nullptr) {
            descent.left.pop_back();
        } else if (next.opened || is_on_its_way(*resource, descent.how)) {
            descent.left.pop_back();
            stop_alone(*resource, descent.how);
        } else {
            next.opened = resource->going_down = true;
            put_on(descent, dependants(*resource));
        }
    }
    timers_.cancel(slice_timer_);
    slice_timer_ =
        descents_.empty() ? 0 : timers_.after(BETWEEN_SLICES_MS, [this] { stop_some(); });
    node_may_end();
}

/* Ends the stops of a resource that have not come to it; what they took down comes up again. */
bool Engine::take_stops_back(Resource &resource) {
    const NB_UCHAR *key = resource.entry.get() + KEY_OFFSET;
    const auto is_of_it = [&resource, key](const Descent &descent) {
        const GoingDown *last = descent.left.empty() ? nullptr : &descent.left.front();
        return last != nullptr && last->id == resource.row->id &&
               memcmp(last->key.data(), key, last->key.size()) == 0;
    };
    std::vector<GoingDown> taken;
    bool any = resource.going_down;
    for (Descent &descent : descents_) {
        if (is_of_it(descent)) {
            any = true;
            std::move(descent.left.begin(), descent.left.end(), std::back_inserter(taken));
            descent.left.clear();
        }
    }
    for (const GoingDown &one : taken) {
        Resource *found = one.opened ? find(one.id, one.key.data()) : nullptr;
        if (found != nullptr && found->going_down) {
            found->going_down = false;
            if (found->state == NAP_ACTIVE) {
                start_dependants(*found);
            }
        }
    }
    return any;
}

/* When nothing is left that the resource waits for. */
void Engine::go_on_stopping(Resource &resource) {
    if (resource.state == NAP_PENDING_INACTIVE && resource.below == 0 && resource.timer == 0) {
        wait(resource, resource.row->life.down_ms, &Engine::finish_stop);
    }
}

/* The owner of an LU whose session took its time may have been started again. */
void Engine::finish_stop(Resource &resource) {
    move(resource, Event::Ended);
    if (!resource.row->life.shows_pending && owner_active(resource)) {
        start(resource);
    }
}

/* A resource is up, or is not any more: what it depends on has one more, or less, to wait for. */
void Engine::count_below(Resource &resource, int change) {
    if (is_root(resource)) {
        up_roots_ += static_cast<NB_ULONG>(change);
        node_may_end();
        return;
    }
    Resource *owner = owner_of(resource);
    if (owner != nullptr) {
        owner->below += static_cast<NB_ULONG>(change);
        go_on_stopping(*owner);
    }
}

/* Who stops a resource has taken note of why it went down before. */
void Engine::forget_last_failure(Resource &resource) {
    const auto forget = [this, &resource](auto entry) {
        if (entry.det_data.failed_at == 0) {
            return;
        }
        entry.det_data.failed_at = entry.det_data.last_sense = 0;
        put(resource, entry);
        if (resource.state == NAP_NOT_ACTIVE) {
            indicate(resource, false);
        }
    };
    if (resource.row->id == CLASS_PORT) {
        forget(get<NAP_PORT_DATA>(resource));
    } else if (resource.row->id == CLASS_LS) {
        forget(get<NAP_LS_DATA>(resource));
    }
    if (resource.row->id == CLASS_LS) {
        return; /* what hangs on it notes no failures */
    }
    for (Resource *below : dependants(resource)) {
        forget_last_failure(*below);
    }
}

Result Engine::stop_verb(const ClassRow &row, const NB_UCHAR *block) {
    const auto verb = nap_copy<NAP_NAME_VERB>(block);
    Resource *resource = named_by(row, block);
    if (verb.stop_type > NAP_IMMEDIATE_STOP) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    if (resource == nullptr) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    forget_last_failure(*resource);
    changed_nothing_ = resource->state == NAP_NOT_ACTIVE ||
                       is_on_its_way(*resource, static_cast<Stop>(verb.stop_type));
    begin_descent({resource}, static_cast<Stop>(verb.stop_type));
    return GOOD;
}

/* An immediate stop overtakes an orderly one. */
Result Engine::stop_node(const NB_UCHAR *block) {
    const auto verb = nap_copy<NAP_NAME_VERB>(block);
    const bool at_once = verb.stop_type == NAP_IMMEDIATE_STOP;
    if (verb.stop_type > NAP_IMMEDIATE_STOP) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    if (node_state_ == NAP_NODE_STOPPED || (node_state_ == NAP_NODE_STOPPING && !at_once)) {
        return GOOD;
    }
    if (node_state_ == NAP_NODE_UNCONFIGURED || node_state_ == NAP_NODE_BACK_LEVEL) {
        return bad_state(NAP_NODE_NOT_ACTIVE);
    }
    const Result result = remember({}, {{FACT_WANTED, "0"}}, IfFull::Owe);
    wanted_ = false;
    timers_.cancel(node_timer_);
    end_visits();
    move_node(Event::Stop);
    node_timer_ = timers_.after(NODE_WAIT_MS, [this] { node_down(); });
    begin_whole_descent(static_cast<Stop>(verb.stop_type));
    return result;
}

void Engine::node_may_end() {
    if (node_state_ == NAP_NODE_STOPPING && up_roots_ == 0 && descents_.empty()) {
        timers_.cancel(node_timer_);
        node_timer_ = timers_.after(NODE_DOWN_MS, [this] { node_down(); });
    }
}

/* What is up still when its time has passed is stopped at once. */
void Engine::node_down() {
    timers_.cancel(node_timer_);
    node_timer_ = 0;
    if (!descents_.empty() || up_roots_ != 0) {
        node_timer_ = timers_.after(NODE_WAIT_MS, [this] { node_down(); });
        begin_whole_descent(Stop::Immediate);
        return;
    }
    move_node(Event::Ended);
    log(NAP_LOG_AUDIT, NAP_LOG_NODE_STOPPED, "The node is stopped.");
    traffic_changed();
}

} // namespace node
