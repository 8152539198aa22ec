/* Who hears of what: indications about resources, copies of verbs, news about nodes. */
#include "front.h"

#include "nofverbs.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

/* The key of a status indication is what merges it with the one before.  Those of one registration
 * have one width: zeroes at the end tell none apart. */
std::string key_of(const NAP_RESOURCE_INDICATION &indication) {
    const auto *key = reinterpret_cast<const char *>(indication.key);
    size_t length = sizeof indication.key;
    while (length > 0 && key[length - 1] == 0) {
        length--;
    }
    return {key, length};
}

} // namespace

/* Calls action(client, target, registration) for every registration for `indication`. */
template <class Action> void Front::for_registered(NB_USHORT indication, Action action) {
    for (const auto &client : clients_) {
        for (const auto &entry : client.second->targets) {
            for (const Registration &registration : entry.second.registrations) {
                if (registration.indication == indication && !entry.second.gone) {
                    action(*client.second, entry.second, registration);
                }
            }
        }
    }
}

void Front::send_news(Client &client, const Target &target, const Registration &registration,
                      const SharedBlock &block) {
    client.peer->out().news({registration.correlator, target.handle, block});
}

void Front::send_status(NodeProcess &node, const Frame &frame) {
    NAP_RESOURCE_INDICATION indication;
    if (frame.block.size() != sizeof indication) {
        return;
    }
    memcpy(&indication, frame.block.data(), sizeof indication);
    indication.data_lost = 0;
    const std::string key = key_of(indication);
    const SharedBlock block = share(&indication, sizeof indication);
    for_registered(indication.opcode, [&](Client &client, const Target &target,
                                          const Registration &registration) {
        if (target.place != PLACE_NODE || target.node != &node) {
            return;
        }
        const Faults::Fate fate = faults_.judge_indication();
        if (fate != Faults::Fate::Lose) {
            client.peer->out().status(registration.number, key,
                                      {registration.correlator, target.handle, block},
                                      fate == Faults::Fate::DeliverWithLoss);
        }
        if (fate == Faults::Fate::Repeat) {
            send_news(client, target, registration, block);
        }
    });
}

/* `node` is null for a verb to the domain. */
void Front::send_copy(const Client *issuer, NodeProcess *node, const std::vector<NB_UCHAR> &block) {
    std::vector<NB_UCHAR> copy = block;
    set_result(copy, {NAP_INDICATION, 0});
    const SharedBlock shared = share(copy.data(), copy.size());
    for_registered(NAP_CONFIG_COPIES, [&](Client &client, const Target &target,
                                          const Registration &registration) {
        const bool meant = node != nullptr ? target.place == PLACE_NODE && target.node == node
                                           : target.place == PLACE_DOMAIN_FILE;
        if (meant && &client != issuer) {
            send_news(client, target, registration, shared);
        }
    });
}

void Front::send_server_news(const std::string &name, NB_ULONG state) {
    NAP_SERVER_INDICATION_VERB news = {};
    news.opcode = NAP_SERVER_INDICATION;
    news.primary_rc = NAP_INDICATION;
    news.state = state;
    news.server_flags = domain_->server_flags(name);
    memcpy(news.node_name, name.data(), std::min(name.size(), sizeof news.node_name));
    const SharedBlock shared = share(&news, sizeof news);
    for_registered(NAP_SERVER_INDICATION,
                   [&](Client &client, const Target &target, const Registration &registration) {
                       send_news(client, target, registration, shared);
                   });
}

void Front::send_network_news(const std::string &name) {
    NAP_SERVER_INDICATION_VERB news = {};
    news.opcode = NAP_SNA_NET_INDICATION;
    news.primary_rc = NAP_INDICATION;
    news.state = 1;
    news.server_flags = domain_->server_flags(name);
    memcpy(news.node_name, name.data(), std::min(name.size(), sizeof news.node_name));
    const SharedBlock shared = share(&news, sizeof news);
    for_registered(NAP_SNA_NET_INDICATION,
                   [&](Client &client, const Target &target, const Registration &registration) {
                       send_news(client, target, registration, shared);
                   });
}

/* Whoever issued the verb hears of the states behind the one that its answer stands for. */
void Front::send_node_state(NodeProcess &node, NB_ULONG state) {
    NAP_NODE_STATUS_INDICATION_VERB news = {};
    const bool rising = state == NAP_NODE_STARTING || state == NAP_NODE_ACTIVE;
    news.opcode = rising ? NAP_INIT_NODE : NAP_STOP_NODE;
    news.primary_rc = NAP_INDICATION;
    news.node_state = state;
    memcpy(news.node_name, node.name.data(), std::min(node.name.size(), sizeof news.node_name));
    static_assert(sizeof news == sizeof(NAP_NAME_VERB));
    const auto issued = [&](const Client &client) {
        return std::any_of(node.flights.begin(), node.flights.end(), [&](const auto &entry) {
            return entry.second.client == client.number &&
                   block_opcode(entry.second.block) == news.opcode;
        });
    };
    const SharedBlock shared = share(&news, sizeof news);
    for_registered(NAP_CONFIG_COPIES,
                   [&](Client &client, const Target &target, const Registration &registration) {
                       if (target.place == PLACE_NODE && target.node == &node && !issued(client)) {
                           send_news(client, target, registration, shared);
                       }
                   });
}

/* By the registration for it, else by any other that the target has. */
void Front::send_target_gone(NodeProcess &node) {
    NAP_NOF_STATUS_INDICATION_VERB news = {};
    news.opcode = NAP_NOF_STATUS_INDICATION;
    news.primary_rc = NAP_INDICATION;
    news.status = NAP_NODE_GONE;
    for (const auto &client : clients_) {
        for (auto &entry : client.second->targets) {
            Target &target = entry.second;
            if (target.node != &node || target.gone) {
                continue;
            }
            target.gone = true;
            news.target_handle = target.handle;
            const auto &all = target.registrations;
            const auto meant = std::find_if(all.begin(), all.end(), [](const Registration &one) {
                return one.indication == NAP_NOF_STATUS_INDICATION;
            });
            if (!all.empty()) {
                send_news(*client.second, target, meant != all.end() ? *meant : all.front(),
                          share(&news, sizeof news));
            }
        }
    }
}

/* Targets of the domain's file stay good; their holders read it again. */
void Front::send_file_moved() {
    NAP_NOF_STATUS_INDICATION_VERB news = {};
    news.opcode = NAP_NOF_STATUS_INDICATION;
    news.primary_rc = NAP_INDICATION;
    news.status = NAP_SYSTEM_FILE_CHANGED;
    for_registered(NAP_NOF_STATUS_INDICATION,
                   [&](Client &client, const Target &target, const Registration &registration) {
                       if (target.place == PLACE_DOMAIN_FILE) {
                           news.target_handle = target.handle;
                           send_news(client, target, registration, share(&news, sizeof news));
                       }
                   });
}

} // namespace node
