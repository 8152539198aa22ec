/* The verbs of a session with the interface. */
#include "front.h"

#include "nofcopy.h"
#include "nofverbs.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

/* Of one client. */
constexpr size_t MAX_TARGETS = 1024;
constexpr size_t MAX_REGISTRATIONS = 8192;

} // namespace

Result Front::session_verb(Client &client, const Frame &frame, Target &target, Answer &answer) {
    switch (block_opcode(frame.block)) {
    case NAP_OPEN_FILE:
        return open_file(client, answer);
    case NAP_CONNECT_NODE:
        return connect_node(client, answer);
    case NAP_CLOSE_FILE:
    case NAP_DISCONNECT_NODE:
        end_target(client, target.handle);
        return GOOD;
    case NAP_REGISTER_INDICATION_SINK:
        return register_sink(client, frame, target);
    case NAP_SET_PROCESSING_MODE: {
        auto verb = nap_copy<NAP_SET_PROCESSING_MODE_VERB>(frame.block.data());
        return verb.mode == NAP_MODE_ADMINISTER ? GOOD : bad_parameter(NAP_INVALID_VALUE);
    }
    default:
        return {NAP_NOT_SUPPORTED, 0};
    }
}

/* Handles count up and are not given out again before all others were. */
Result Front::add_target(Client &client, Place place, NodeProcess *node, NB_ULONG &handle) {
    if (client.targets.size() > MAX_TARGETS) {
        return bad_state(NAP_NODE_BUSY);
    }
    do {
        last_handle_++;
    } while (last_handle_ == 0 || handles_.count(last_handle_) != 0);
    handle = last_handle_;
    handles_.insert(handle);
    client.targets[handle] = {handle, place, node, false, {}};
    return GOOD;
}

Result Front::open_file(Client &client, Answer &answer) {
    auto verb = nap_copy<NAP_OPEN_FILE_VERB>(answer.block.data());
    NB_ULONG handle = 0;
    Result result = bad_parameter(NAP_INVALID_VALUE);
    std::string holder = domain_->master();
    if (verb.file == NAP_TP_LOAD_FILE) {
        NodeProcess *node = named_node(verb.node_name, sizeof verb.node_name);
        if (node == nullptr) {
            return bad_parameter(NAP_UNKNOWN_RESOURCE);
        }
        holder = node->name;
        result = node->up ? add_target(client, PLACE_TP_LOAD, node, handle)
                          : Result{NAP_COMM_FAILURE, NAP_NODE_GONE};
    } else if (verb.file == NAP_SYSTEM_FILE || verb.file == NAP_NETWORK_FILE) {
        const Place place = verb.file == NAP_SYSTEM_FILE ? PLACE_DOMAIN_FILE : PLACE_NETWORK_FILE;
        result = text_.facts.domain_config != 0 ? add_target(client, place, nullptr, handle)
                                                : bad_state(NAP_NO_DOMAIN_CONFIG);
    }
    if (result.ok()) {
        verb.target_handle = handle;
        memset(verb.node_name, 0, sizeof verb.node_name);
        memcpy(verb.node_name, holder.data(), std::min(holder.size(), sizeof verb.node_name - 1));
        memcpy(answer.block.data(), &verb, sizeof verb);
    }
    return result;
}

/* The only node of a domain need not be named. */
Front::NodeProcess *Front::named_node(const NB_UCHAR *name, size_t width) {
    const std::string wanted = local_text(name, width);
    if (wanted.empty() && nodes_.size() == 1) {
        return nodes_[0].get();
    }
    for (const auto &node : nodes_) {
        if (strcasecmp(node->name.c_str(), wanted.c_str()) == 0) {
            return node.get();
        }
    }
    return nullptr;
}

Result Front::connect_node(Client &client, Answer &answer) {
    auto verb = nap_copy<NAP_CONNECT_NODE_VERB>(answer.block.data());
    NodeProcess *node = named_node(verb.node_name, sizeof verb.node_name);
    if (node == nullptr) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    if (!node->up) {
        return {NAP_COMM_FAILURE, NAP_NODE_GONE};
    }
    NB_ULONG handle = 0;
    const Result result = add_target(client, PLACE_NODE, node, handle);
    if (result.ok()) {
        verb.target_handle = handle;
        memcpy(answer.block.data(), &verb, sizeof verb);
    }
    return result;
}

/* Registering again moves the registration to the new verb. */
Result Front::register_sink(Client &client, const Frame &frame, Target &target) {
    auto verb = nap_copy<NAP_REGISTER_SINK_VERB>(frame.block.data());
    const NAP_VERB *indication = nap_find_verb(verb.indication);
    const bool known = verb.indication == NAP_CONFIG_COPIES ||
                       (indication != nullptr && indication->kind == NAP_KIND_INDICATION);
    if (!known) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    if (target.gone) {
        return {NAP_COMM_FAILURE, NAP_NODE_GONE};
    }
    for (Registration &registration : target.registrations) {
        if (registration.indication == verb.indication) {
            client.peer->out().forget(registration.number);
            registration.correlator = frame.header.correlator;
            return GOOD;
        }
    }
    if (client.registrations >= MAX_REGISTRATIONS) {
        return bad_state(NAP_LIMIT_REACHED);
    }
    client.registrations++;
    target.registrations.push_back({verb.indication, frame.header.correlator, ++last_number_});
    if (target.node != nullptr && target.node->peer != nullptr) {
        target.node->peer->out().answer(make_frame(NOF_FRAME_INDICATION, 0, 0, &verb, sizeof verb));
    }
    return GOOD;
}

void Front::end_target(Client &client, NB_ULONG handle) {
    const auto found = client.targets.find(handle);
    if (handle == 0 || found == client.targets.end()) {
        return;
    }
    for (const Registration &registration : found->second.registrations) {
        client.peer->out().forget(registration.number);
    }
    client.registrations -= found->second.registrations.size();
    client.targets.erase(found);
    handles_.erase(handle);
}

} // namespace node
