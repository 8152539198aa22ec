/* Stopping.  An orderly stop takes everything above the resource down first, takes no new sessions,
 * and waits for those that are there: each ends by itself, or is ended when ORDERLY_WAIT_MS have
 * passed.  Meanwhile the resource is NAP_PENDING_INACTIVE.  An immediate stop ends them at once.
 * Who waits for what is counted in Resource::below. */
#include "engine.h"

#include "nofcopy.h"

namespace node {

namespace {

constexpr NB_ULONG NODE_DOWN_MS = 100; /* behind its last resource */
/* More than an orderly stop takes in any case. */
constexpr NB_ULONG NODE_WAIT_MS = ORDERLY_WAIT_MS + 5000;

} // namespace

/* Sessions of local LUs end with the links that carry them. */
bool Engine::in_session(const Resource &resource) const {
    const ClassRow &row = *resource.row;
    return row.id != CLASS_LOCAL_LU && row.hooks.report != nullptr &&
           row.hooks.report(resource) == NAP_IN_SESSION;
}

void Engine::stop(Resource &resource, Stop how) {
    const bool orderly = how == Stop::Orderly;
    if (orderly && resource.state == NAP_PENDING_INACTIVE) {
        return;
    }
    timers_.cancel(resource.timer);
    resource.timer = 0;
    for (Resource *below : dependants(resource)) {
        stop(*below, how);
    }
    if (resource.state == NAP_NOT_ACTIVE) {
        return;
    }
    if (orderly && in_session(resource)) {
        end_later(resource, end_ms(resource), &Engine::finish_stop);
        return;
    }
    const bool at_once = !orderly || !resource.row->life.shows_pending || !is_heard_of(resource);
    set_state(resource, at_once ? NAP_NOT_ACTIVE : NAP_PENDING_INACTIVE);
    if (resource.row->id == CLASS_LS) {
        end_carried(resource, how);
    }
    go_on_stopping(resource);
}

/* When nothing is left that the resource waits for. */
void Engine::go_on_stopping(Resource &resource) {
    if (resource.state == NAP_PENDING_INACTIVE && resource.below == 0 && resource.timer == 0) {
        wait(resource, resource.row->life.down_ms, &Engine::finish_stop);
    }
}

/* The owner of an LU whose session took its time may have been started again. */
void Engine::finish_stop(Resource &resource) {
    set_state(resource, NAP_NOT_ACTIVE);
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
    stop(*resource, static_cast<Stop>(verb.stop_type));
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
    set_node_state(NAP_NODE_STOPPING);
    node_timer_ = timers_.after(NODE_WAIT_MS, [this] { node_down(); });
    for (Resource *root : roots()) {
        stop(*root, static_cast<Stop>(verb.stop_type));
    }
    node_may_end();
    return result;
}

void Engine::node_may_end() {
    if (node_state_ == NAP_NODE_STOPPING && up_roots_ == 0) {
        timers_.cancel(node_timer_);
        node_timer_ = timers_.after(NODE_DOWN_MS, [this] { node_down(); });
    }
}

void Engine::node_down() {
    for (Resource *root : roots()) {
        stop(*root, Stop::Immediate);
    }
    timers_.cancel(node_timer_);
    node_timer_ = 0;
    set_node_state(NAP_NODE_STOPPED);
    log(NAP_LOG_AUDIT, NAP_LOG_NODE_STOPPED, "The node is stopped.");
    traffic_changed();
}

} // namespace node
