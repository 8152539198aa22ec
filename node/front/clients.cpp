/* Connections: who gets one, what is said first, and their end. */
#include "front.h"

#include "admission.h"
#include "nbproblem.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace node {

namespace {

constexpr rlim_t DESCRIPTORS = MAX_CLIENTS + 512; /* clients, nodes, files of the store */

} // namespace

/* A descriptor is kept back, so that who comes when there is no other can be sent away: he would
 * stay in the socket's queue and wake the loop for ever. */
void Front::reserve_descriptors() {
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < DESCRIPTORS) {
        limit.rlim_cur = std::min(DESCRIPTORS, limit.rlim_max);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    spare_ = open("/dev/null", O_RDONLY | O_CLOEXEC);
}

void Front::accept_client() {
    int fd = accept4(socket_.fd(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (fd < 0 && (errno == EMFILE || errno == ENFILE) && spare_ >= 0) {
        close(spare_);
        fd = accept4(socket_.fd(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        send_away(fd, {NAP_UNAVAILABLE, NAP_NODE_BUSY});
        spare_ = open("/dev/null", O_RDONLY | O_CLOEXEC);
        return;
    }
    if (fd < 0) {
        return;
    }
    const PeerUser user = rights_.of(fd);
    if (!make_room(fd, user)) {
        return;
    }
    const uint64_t number = ++last_number_;
    auto client = std::make_unique<Client>();
    client->number = number;
    client->user = user;
    client->peer = std::make_unique<Peer>(loop_, fd, [this, number] { client_ready(number); });
    client->targets[0] = Target{};
    client->peer->out().answer(hello(user.may_change ? NOF_RIGHT_CHANGE : 0, GOOD));
    send_faults(*client);
    clients_[number] = std::move(client);
}

/* False: `fd` was sent away. */
bool Front::make_room(int fd, const PeerUser &user) {
    std::vector<Seat> seats;
    for (const auto &[number, client] : clients_) {
        if (!client->ended) {
            seats.push_back({number, client->user.user, client->user.may_change,
                             client->silent || client->leaving});
        }
    }
    const Admission admission = admit(seats, user);
    if (!admission.refused.ok()) {
        nba_pd_print_problem(NB_PD_NO_PLACE, 1, "l l", static_cast<NB_ULONG>(user.user),
                             static_cast<NB_ULONG>(user.process));
        send_away(fd, admission.refused);
        return false;
    }
    const auto leaves = clients_.find(admission.leaves);
    if (leaves != clients_.end()) {
        end_client(*leaves->second, "it is silent, and its place is needed");
    }
    return true;
}

/* Nothing was sent on the socket before: it has room. */
void Front::send_away(int fd, Result why) {
    if (fd >= 0) {
        const std::vector<NB_UCHAR> words = hello(0, why);
        send(fd, words.data(), words.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        close(fd);
    }
}

std::vector<NB_UCHAR> Front::hello(NB_ULONG rights, Result result) const {
    NOF_HELLO hello = {};
    hello.primary_rc = result.primary;
    hello.secondary_rc = result.secondary;
    hello.version = NOF_WIRE_VERSION;
    hello.rights = rights;
    hello.client_server = text_.facts.client_server;
    const std::string &name = options_.domain_name;
    memcpy(hello.domain_name, name.data(), std::min(name.size(), sizeof hello.domain_name - 1));
    return make_frame(NOF_FRAME_HELLO, 0, 0, &hello, sizeof hello);
}

Front::Client *Front::find_client(uint64_t number) {
    const auto found = clients_.find(number);
    const bool there = found != clients_.end() && !found->second->ended && !found->second->leaving;
    return there ? found->second.get() : nullptr;
}

/* The record stays until the end of the round: its own handler may be running. */
void Front::end_client(Client &client, const char *why) {
    if (why != nullptr) {
        nba_pd_print_problem(NB_PD_CLIENT_ENDED, 1, "s l", why,
                             static_cast<NB_ULONG>(client.user.process));
    }
    for (const auto &target : client.targets) {
        handles_.erase(target.first);
    }
    client.targets.clear();
    client.ended = true;
}

/* It does not take its news.  When it wakes it hears so, by the registration that it has had
 * longest, behind the frame that is half sent; until then only that waits. */
void Front::cut_off(Client &client) {
    NAP_NOF_STATUS_INDICATION_VERB last = {};
    last.opcode = NAP_NOF_STATUS_INDICATION;
    last.primary_rc = NAP_INDICATION;
    last.secondary_rc = last.status = NAP_SINK_OVERFLOW;
    NB_ULONG correlator = 0;
    for (const auto &[handle, target] : client.targets) {
        if (correlator == 0 && !target.registrations.empty()) {
            correlator = target.registrations.front().correlator;
            last.target_handle = handle;
        }
    }
    client.peer->out().end_with({correlator, last.target_handle, share(&last, sizeof last)});
    client.peer->hold(true);
    end_client(client, "it does not take what it registered for");
    client.ended = false;
    client.leaving = true;
}

} // namespace node
