/* Session limits of the modes in use. */
#include "engine.h"

#include "nofcopy.h"
#include "nofverbs.h"

#include <cstring>

namespace node {

namespace {

bool fit(const NAP_SESSION_LIMIT_VERB &verb, NB_USHORT highest) {
    return verb.sess_limit <= highest && verb.min_conwinners <= verb.sess_limit &&
           verb.min_conlosers <= verb.sess_limit - verb.min_conwinners;
}

} // namespace

Result Engine::set_session_limit(const NB_UCHAR *block) {
    auto verb = nap_copy<NAP_SESSION_LIMIT_VERB>(block);
    Resource *resource = tables_[CLASS_MODE]->find(block + KEY_IN_BLOCK);
    if (resource == nullptr) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    const Resource *definition = tables_[CLASS_MODE_DEF]->find(verb.mode_name);
    if (definition == nullptr) {
        return bad_parameter(NAP_UNKNOWN_OWNER);
    }
    const auto chars = get<NAP_MODE_DEF_DATA>(*definition).mode_chars;
    if ((chars.mode_flags & NAP_MODE_CONTROL_POINT) != 0) {
        return bad_parameter(NAP_INVALID_NAME);
    }
    if (node_state_ != NAP_NODE_ACTIVE) {
        return bad_state(NAP_NODE_NOT_ACTIVE);
    }
    if (!fit(verb, chars.max_neg_sess_lim)) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    auto mode = get<NAP_MODE_DATA>(*resource);
    mode.sess_limit = verb.sess_limit;
    mode.min_conwinners = verb.min_conwinners;
    mode.min_conlosers = verb.min_conlosers;
    const Schema &schema = *resource->row->schema;
    std::vector<NB_UCHAR> entry(schema.overlay_size());
    memcpy(entry.data(), &mode, sizeof mode);
    const Result stored =
        remember({kept(schema, entry.data(), resource->behaviour)}, {}, IfFull::Refuse);
    if (!stored.ok()) {
        return stored;
    }
    resource->derived = false; /* it has something to be remembered for */
    put(*resource, mode);
    indicate(*resource, false);
    traffic_changed();
    return GOOD;
}

} // namespace node
