/* The nodes' processes: starting, listening, burying, starting again. */
#include "front.h"
#include "servicemanager.h"

#include "nbbase.h"
#include "nbproblem.h"
#include "nodeprocess.h"
#include "nofcopy.h"
#include "nofverbs.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace node {

namespace {

constexpr NB_ULONG FIRST_RESTART_MS = 1000;
constexpr NB_ULONG LAST_RESTART_MS = 30000;
constexpr int NODE_FD = 3;
constexpr NB_ULONG ASK_MS = 3000;
constexpr unsigned PATIENCE = 10; /* times ASK_MS */

/* In the child: nothing here may allocate or lock. */
[[noreturn]] void become_node(int fd, pid_t parent, char *const arguments[]) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGINT, SIG_IGN); /* a terminal's goes to all; the front ends its nodes itself */
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const bool kept = fd == NODE_FD ? fcntl(fd, F_SETFD, 0) == 0 : dup2(fd, NODE_FD) == NODE_FD;
    if (kept && getppid() == parent) {
        execv("/proc/self/exe", arguments);
    }
    _exit(127);
}

} // namespace

bool Front::spawn(NodeProcess &node, bool fresh, std::string &why) {
    int pair[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, pair) != 0) {
        why = "node " + node.name + ": " + strerror(errno);
        return false;
    }
    std::vector<std::string> words = {"snanode",
                                      "--serve",
                                      node.name,
                                      options_.generate.empty() ? "--domain" : "--generate",
                                      options_.generate.empty() ? options_.domain_file
                                                                : options_.generate,
                                      "--state",
                                      options_.state_folder,
                                      "--of",
                                      owner()};
    if (fresh) {
        words.emplace_back("--fresh");
    } else if (domain_->is_known(node.name)) {
        words.emplace_back("--known");
    }
    if (options_.still) {
        words.emplace_back("--still");
    }
    std::vector<char *> arguments;
    for (std::string &word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const pid_t parent = getpid();
    node.process = fork();
    if (node.process == 0) {
        become_node(pair[1], parent, arguments.data());
    }
    close(pair[1]);
    if (node.process < 0) {
        why = "node " + node.name + ": " + strerror(errno);
        close(pair[0]);
        return false;
    }
    NodeProcess *made = &node;
    node.peer = std::make_unique<Peer>(loop_, pair[0], [this, made] { node_ready(*made); });
    tell_flags(node.name);
    tell_of_others(node);
    return true;
}

void Front::tell_flags(const std::string &name) {
    NAP_SERVER_INDICATION_VERB news = {};
    news.opcode = NAP_SERVER_INDICATION;
    news.primary_rc = NAP_INDICATION;
    news.state = 1;
    news.server_flags = domain_->server_flags(name);
    for (const auto &node : nodes_) {
        if (node->name == name && node->peer != nullptr) {
            node->peer->out().answer(make_frame(NOF_FRAME_INDICATION, 0, 0, &news, sizeof news));
        }
    }
}

/* What one node says for the others; a node that starts later is told what they said last. */
void Front::tell_others(const NodeProcess &from, const std::vector<NB_UCHAR> &block) {
    for (const auto &node : nodes_) {
        if (node.get() != &from && node->peer != nullptr) {
            node->peer->out().answer(
                make_frame(NOF_FRAME_INDICATION, 0, 0, block.data(), block.size()));
        }
    }
}

void Front::tell_of_others(NodeProcess &node) {
    for (const auto &other : nodes_) {
        if (other.get() != &node && !other->record.empty()) {
            node.peer->out().answer(
                make_frame(NOF_FRAME_INDICATION, 0, 0, other->record.data(), other->record.size()));
        }
    }
}

void Front::node_ready(NodeProcess &node) {
    Frame frame;
    FrameState state = FrameState::None;
    while ((state = node.peer->next(frame)) == FrameState::Ready) {
        node.heard = true;
        if (frame.header.kind == NOF_FRAME_ANSWER) {
            node_answer(node, frame);
        } else {
            node_indication(node, frame);
        }
    }
    if (state == FrameState::Garbage) {
        nba_pd_print_problem(NB_PD_NODE_LINK, 1, "s", node.name.c_str());
    }
    if (state == FrameState::Garbage || node.peer->gone()) {
        node_lost(node);
    }
}

void Front::ask_node(NodeProcess &node) {
    NAP_VCB question = {};
    question.opcode = NAP_NOF_STATUS_INDICATION;
    node.asked = true;
    node.peer->out().answer(
        make_frame(NOF_FRAME_INDICATION, SIGN_OF_LIFE, 0, &question, sizeof question));
}

/* A node that hangs is replaced: it was asked, and has said nothing at all since.  Looks are
 * counted and no clock is asked, since this process may have been stopped meanwhile, too. */
void Front::watch_nodes() {
    if (ending_) {
        return; /* the sockets are gone */
    }
    for (const auto &node : nodes_) {
        node->silent = node->up && node->asked && !node->heard ? node->silent + 1 : 0;
        node->heard = false;
        if (node->silent >= PATIENCE) {
            nba_pd_print_problem(NB_PD_NODE_HANGS, 1, "s", node->name.c_str());
            node->silent = 0;
            node_lost(*node);
        } else if (node->up && !node->asked) {
            ask_node(*node);
        }
    }
    timers_.after(faults_.ask_ms().value_or(ASK_MS), [this] { watch_nodes(); });
}

void Front::node_answer(NodeProcess &node, const Frame &frame) {
    const auto found = node.flights.find(frame.header.correlator);
    if (found == node.flights.end()) {
        return;
    }
    const Flight flight = std::move(found->second);
    node.flights.erase(found);
    auto header = nap_copy<NAP_VCB>(frame.block.data());
    Client *client = find_client(flight.client);
    const NAP_VERB *verb = nap_find_verb(header.opcode);
    const bool of_node = header.opcode == NAP_INIT_NODE || header.opcode == NAP_STOP_NODE;
    const bool changes = verb->changes != 0; /* its data says what it changed */
    const auto end = std::find(frame.data.begin(), frame.data.end(), '\0');
    note_change(flight.user, &node, frame.block, {frame.data.begin(), end});
    if (header.primary_rc == NAP_OK && NAP_KIND_COPIED(verb->kind) && !of_node &&
        frame.header.target != CHANGED_NOTHING) {
        send_copy(client, &node, frame.block);
    }
    if (client != nullptr) {
        client->awaited -= flight.awaited;
        NOF_FRAME to = {};
        to.correlator = flight.correlator;
        to.target = flight.target;
        answer(*client, to, frame.block, changes ? std::vector<NB_UCHAR>() : frame.data);
    }
}

void Front::node_indication(NodeProcess &node, const Frame &frame) {
    NAP_QUERY_NODE_VERB record;
    if (frame.header.correlator == SIGN_OF_LIFE) {
        node.asked = false;
        return;
    }
    if (frame.header.correlator == FOR_OTHER_NODES) {
        tell_others(node, frame.block);
        return;
    }
    if (block_opcode(frame.block) != NAP_QUERY_NODE || frame.block.size() != sizeof record) {
        send_status(node, frame);
        return;
    }
    memcpy(&record, frame.block.data(), sizeof record);
    node.record = frame.block;
    tell_others(node, frame.block);
    const NB_ULONG state_before = domain_->info(node.name).node_state;
    domain_->update(node.name, record.info);
    if (!node.up) {
        node.up = node.was_up = true;
        domain_->came_up(node.name);
        node.restart_ms = 0;
        send_server_news(node.name, 1); /* administrators may have come before it */
        all_ready();
    } else if (record.info.node_state != state_before) {
        send_node_state(node, record.info.node_state);
        send_server_news(node.name, 1);
    }
}

void Front::all_ready() {
    const auto up = [](const std::unique_ptr<NodeProcess> &node) { return node->up; };
    if (!ready_ && std::all_of(nodes_.begin(), nodes_.end(), up)) {
        ready_ = true;
        printf("snanode: domain %s ready\n", options_.domain_name.c_str());
        fflush(stdout);
        tell_service_manager("READY=1");
        begin_faults();
    }
}

void Front::node_lost(NodeProcess &node) {
    node.peer.reset();
    if (node.process > 0) {
        kill(node.process, SIGKILL);
        waitpid(node.process, nullptr, 0);
        node.process = 0;
    }
    node.up = node.asked = false;
    if (!node.was_up && !ready_) {
        fprintf(stderr, "snanode: node %s did not come up\n", node.name.c_str());
        shut_down();
        loop_.stop(1);
        return;
    }
    nba_pd_print_problem(NB_PD_NODE_ENDED, 1, "s", node.name.c_str());
    const std::map<NB_ULONG, Flight> flights = std::move(node.flights);
    node.flights.clear();
    for (const auto &entry : flights) {
        Client *client = find_client(entry.second.client);
        if (client != nullptr) {
            client->awaited -= entry.second.awaited;
            Frame frame = {{}, entry.second.block, {}};
            frame.header.correlator = entry.second.correlator;
            frame.header.target = entry.second.target;
            refuse(*client, frame, {NAP_COMM_FAILURE, NAP_NODE_GONE}, &node);
        } else {
            std::vector<NB_UCHAR> block = entry.second.block;
            set_result(block, {NAP_COMM_FAILURE, NAP_NODE_GONE});
            note_change(entry.second.user, &node, block, "");
        }
    }
    domain_->lost(node.name);
    tell_of_loss(node);
    send_target_gone(node);
    send_server_news(node.name, 0);
    hand_over(node);
    restart_later(node);
}

/* The domain's configuration is with the front, so only the role moves. */
void Front::hand_over(const NodeProcess &gone) {
    const std::string heir = domain_->take_over(gone.name, [this](const std::string &name) {
        return std::any_of(nodes_.begin(), nodes_.end(),
                           [&name](const auto &node) { return node->name == name && node->up; });
    });
    if (!heir.empty()) {
        tell_flags(heir);
        send_file_moved();
        send_network_news(heir);
        send_server_news(heir, 1);
    }
}

/* To the others, a node that died is one that is stopped. */
void Front::tell_of_loss(NodeProcess &node) {
    NAP_QUERY_NODE_VERB record;
    if (node.record.size() == sizeof record) {
        memcpy(&record, node.record.data(), sizeof record);
        record.info.node_state = NAP_NODE_STOPPED;
        memcpy(node.record.data(), &record, sizeof record);
        tell_others(node, node.record);
    }
}

void Front::restart_later(NodeProcess &node) {
    node.restart_ms =
        node.restart_ms == 0 ? FIRST_RESTART_MS : std::min(node.restart_ms * 2, LAST_RESTART_MS);
    NodeProcess *lost = &node;
    timers_.after(node.restart_ms, [this, lost] {
        std::string why;
        if (!ending_ && (!faults_.may_restart() || !spawn(*lost, false, why))) {
            restart_later(*lost);
        }
    });
}

} // namespace node
