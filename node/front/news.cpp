/* Who hears of what: indications about resources, copies of verbs, news about nodes. */
#include "front.h"

#include "nofverbs.h"

#include <algorithm>
#include <cstring>

namespace node {

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
                      const NB_VOID *block, size_t length) {
    client.peer->out().news(
        make_frame(NOF_FRAME_INDICATION, registration.correlator, target.handle, block, length));
}

/* The key of a status indication is what merges it with the one before. */
void Front::send_status(NodeProcess &node, const Frame &frame) {
    NAP_RESOURCE_INDICATION indication;
    if (frame.block.size() != sizeof indication) {
        return;
    }
    memcpy(&indication, frame.block.data(), sizeof indication);
    const std::string key(reinterpret_cast<const char *>(indication.key), sizeof indication.key);
    for_registered(indication.opcode, [&](Client &client, const Target &target,
                                          const Registration &registration) {
        if (target.place != PLACE_NODE || target.node != &node) {
            return;
        }
        const Faults::Fate fate = faults_.judge_indication();
        NAP_RESOURCE_INDICATION sent = indication;
        sent.data_lost = fate == Faults::Fate::DeliverWithLoss ? 1 : 0;
        if (fate != Faults::Fate::Lose) {
            client.peer->out().status(registration.number, key,
                                      make_frame(NOF_FRAME_INDICATION, registration.correlator,
                                                 target.handle, &sent, sizeof sent));
        }
        if (fate == Faults::Fate::Repeat) {
            send_news(client, target, registration, &sent, sizeof sent);
        }
    });
}

/* `node` is null for a verb to the domain. */
void Front::send_copy(const Client *issuer, NodeProcess *node, const std::vector<NB_UCHAR> &block) {
    std::vector<NB_UCHAR> copy = block;
    set_result(copy, {NAP_INDICATION, 0});
    for_registered(NAP_CONFIG_COPIES, [&](Client &client, const Target &target,
                                          const Registration &registration) {
        const bool meant = node != nullptr ? target.place == PLACE_NODE && target.node == node
                                           : target.place == PLACE_DOMAIN_FILE;
        if (meant && &client != issuer) {
            send_news(client, target, registration, copy.data(), copy.size());
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
    for_registered(NAP_SERVER_INDICATION,
                   [&](Client &client, const Target &target, const Registration &registration) {
                       send_news(client, target, registration, &news, sizeof news);
                   });
}

void Front::send_network_news(const std::string &name) {
    NAP_SERVER_INDICATION_VERB news = {};
    news.opcode = NAP_SNA_NET_INDICATION;
    news.primary_rc = NAP_INDICATION;
    news.state = 1;
    news.server_flags = domain_->server_flags(name);
    memcpy(news.node_name, name.data(), std::min(name.size(), sizeof news.node_name));
    for_registered(NAP_SNA_NET_INDICATION,
                   [&](Client &client, const Target &target, const Registration &registration) {
                       send_news(client, target, registration, &news, sizeof news);
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
    for_registered(NAP_CONFIG_COPIES,
                   [&](Client &client, const Target &target, const Registration &registration) {
                       if (target.place == PLACE_NODE && target.node == &node && !issued(client)) {
                           send_news(client, target, registration, &news, sizeof news);
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
                send_news(*client.second, target, meant != all.end() ? *meant : all.front(), &news,
                          sizeof news);
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
                           send_news(client, target, registration, &news, sizeof news);
                       }
                   });
}

} // namespace node
