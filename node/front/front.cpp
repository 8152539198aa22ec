#include "front.h"

#include "nbbase.h"
#include "nbproblem.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "storefiles.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <unordered_map>

namespace node {

namespace {

constexpr size_t MAX_FLIGHTS = 16384; /* verbs that one node has not answered */
constexpr size_t MAX_FLIGHTS_OF_LOOKERS = 4096;
constexpr size_t MAX_IN_FLIGHT = 256;                 /* verbs of one client */
constexpr size_t MAX_WAITING_BYTES = 4 * 1024 * 1024; /* to one client, before it is held */

std::string system_error(const std::string &what) {
    return what + ": " + strerror(errno);
}

/* Where a verb may go; one that is not listed goes where its class or settings are. */
struct RouteRow {
    NB_USHORT opcode;
    NB_UCHAR places;
};

constexpr NB_UCHAR FILES = PLACE_DOMAIN_FILE | PLACE_NETWORK_FILE;
constexpr NB_UCHAR ANYWHERE = PLACE_ZERO | FILES | PLACE_NODE | PLACE_TP_LOAD;

constexpr RouteRow routes[] = {
    {NAP_OPEN_FILE, PLACE_ZERO},
    {NAP_CONNECT_NODE, PLACE_ZERO},
    {NAP_CLOSE_FILE, FILES | PLACE_TP_LOAD},
    {NAP_DISCONNECT_NODE, PLACE_NODE},
    {NAP_REGISTER_INDICATION_SINK, ANYWHERE},
    {NAP_SET_PROCESSING_MODE, ANYWHERE},
    {NAP_QUERY_CHANGES, PLACE_ZERO},
    {NAP_QUERY_NODE_ALL, PLACE_ZERO | PLACE_DOMAIN_FILE},
    {NAP_QUERY_SNA_NET, PLACE_NETWORK_FILE},
    {NAP_ADD_BACKUP, FILES},
    {NAP_DELETE_BACKUP, FILES},
};

NB_UCHAR find_places(NB_USHORT opcode) {
    for (const RouteRow &row : routes) {
        if (row.opcode == opcode) {
            return row.places;
        }
    }
    const ListRow *list = nullptr;
    const ClassRow *served = class_by_verb(opcode);
    const ClassRow *shown = class_by_list(opcode, &list);
    const ClassRow *row = served != nullptr ? served : shown;
    const Settings *settings = settings_by_verb(opcode);
    if (row != nullptr) {
        constexpr NB_UCHAR by_scope[] = {PLACE_NODE, PLACE_TP_LOAD, PLACE_DOMAIN_FILE};
        return by_scope[static_cast<size_t>(row->schema->scope)];
    }
    return settings != nullptr && settings->of_domain ? PLACE_DOMAIN_FILE : PLACE_NODE;
}

/* Every verb asks, so what was found is kept. */
NB_UCHAR places_of(NB_USHORT opcode) {
    static std::unordered_map<NB_USHORT, NB_UCHAR> found;
    NB_UCHAR &places = found[opcode];
    return places != 0 ? places : places = find_places(opcode);
}

} // namespace

Front::Front(const FrontOptions &options, const DomainText &text)
    : options_(options), timers_(clock_), loop_(timers_),
      copy_(store_, options.state_folder, DOMAIN_STORE, timers_, clock_,
            [this] { prune_copies(options_.state_folder); }),
      text_(text), changes_(options.state_folder) {}

Front::~Front() {
    clients_.clear();
    nodes_.clear();
    if (socket_.fd() >= 0) {
        loop_.unwatch(socket_.fd());
    }
    if (signals_ >= 0) {
        loop_.unwatch(signals_);
        close(signals_);
    }
    for (const int fd : {lock_, spare_}) {
        if (fd >= 0) {
            close(fd);
        }
    }
}

/* One node software a state folder: the lock goes with the process. */
bool Front::start(std::string &why) {
    reserve_descriptors();
    const std::string lock = options_.state_folder + "/lock";
    if (!own_folder(options_.state_folder, why)) {
        return false;
    }
    lock_ = open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock_ < 0) {
        why = system_error(lock);
        return false;
    }
    if (flock(lock_, LOCK_EX | LOCK_NB) != 0) {
        why = options_.state_folder + " is in use by another snanode; end that first, or give "
                                      "another folder with --state";
        return false;
    }
    if (!options_.fault_file.empty() && !faults_.read(options_.fault_file, why)) {
        return false;
    }
    store_.when_writing([this](bool written) {
        if (ready_ && faults_.dies_writing(written)) {
            kill(getpid(), SIGKILL);
        }
    });
    if (!open_domain_store(store_, options_.state_folder, owner(), options_.fresh, why) ||
        !check_numbers(why) || !changes_.open(true, why) || !listen_on_socket(why) ||
        !watch_signals(why)) {
        return false;
    }
    domain_ = std::make_unique<Domain>(text_, store_, timers_, clock_);
    if (!domain_->load(why) || !write_domain_facts(why)) {
        return false;
    }
    for (const TextNode &text : text_.nodes) {
        nodes_.push_back(std::make_unique<NodeProcess>());
        nodes_.back()->name = text.name;
        if (!spawn(*nodes_.back(), options_.fresh, why)) {
            return false;
        }
    }
    return true;
}

/* The kept changes of a generated domain mean nothing in one of other numbers. */
std::string Front::owner() const {
    return "domain " +
           (options_.generate.empty() ? options_.domain_name : "generated of " + options_.generate);
}

/* A store of an earlier version has the numbers, and not whose it is. */
bool Front::check_numbers(std::string &why) {
    std::string of;
    std::string loaded;
    std::string kept;
    if (!store_.fact(FACT_OWNER, of) || !store_.fact(FACT_LOADED, loaded) ||
        !store_.fact(FACT_GENERATED, kept)) {
        why = store_.unreadable();
        return false;
    }
    if (of.empty() && !loaded.empty() && kept != options_.generate) {
        why = options_.state_folder + " is of another domain (" +
              (kept.empty() ? "one with a text" : kept) +
              "); give another folder with --state, or --fresh to forget it";
        return false;
    }
    return true;
}

bool Front::listen_on_socket(std::string &why) {
    if (!socket_.listen(options_.socket_path, why)) {
        return false;
    }
    if (!loop_.watch(socket_.fd(), [this](bool, bool) { accept_client(); })) {
        why = system_error(options_.socket_path);
        return false;
    }
    return true;
}

bool Front::watch_signals(std::string &why) {
    sigset_t wanted;
    sigemptyset(&wanted);
    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGCHLD}) {
        sigaddset(&wanted, number);
    }
    sigprocmask(SIG_BLOCK, &wanted, nullptr);
    signal(SIGPIPE, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN); /* a limit on files is told by the write, here and in the nodes */
    signals_ = signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signals_ < 0 || !loop_.watch(signals_, [this](bool, bool) { on_signal(); })) {
        why = system_error("signals");
        return false;
    }
    return true;
}

/* What the administration program asks before it connects. */
bool Front::write_domain_facts(std::string &why) const {
    const std::string folder = std::string(nba_prefix()) + "/etc";
    const std::string path = folder + "/domain";
    const std::string made = path + ".new";
    mkdir(folder.c_str(), 0755);
    std::ofstream file(made);
    file << "name = " << options_.domain_name
         << "\nclient_server = " << (text_.facts.client_server != 0 ? "yes" : "no") << "\n";
    file.close();
    if (!file || rename(made.c_str(), path.c_str()) != 0) {
        why = system_error(path);
        return false;
    }
    return true;
}

void Front::on_signal() {
    signalfd_siginfo info;
    while (read(signals_, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
        if (info.ssi_signo == SIGHUP) {
            read_faults();
        } else if (info.ssi_signo != SIGCHLD) {
            shut_down();
        }
    }
}

int Front::run() {
    loop_.each_round([this] { sweep(); });
    copy_.begin();
    watch_nodes();
    return loop_.run();
}

/* The nodes end when their sockets do; who does not within the time is killed. */
void Front::shut_down() {
    constexpr int TRIES = 300;
    if (ending_) {
        return;
    }
    ending_ = true;
    for (const auto &client : clients_) {
        client.second->peer->flush();
    }
    for (const auto &node : nodes_) {
        node->peer.reset();
    }
    for (const auto &node : nodes_) {
        for (int tries = 0; node->process > 0; tries++) {
            if (waitpid(node->process, nullptr, WNOHANG) != 0) {
                node->process = 0;
            } else if (tries == TRIES) {
                kill(node->process, SIGKILL);
            } else {
                usleep(10000);
            }
        }
    }
    loop_.stop(0);
}

void Front::client_ready(uint64_t number) {
    Client *client = find_client(number);
    Frame frame;
    while (client != nullptr && !client->ended && !ending_) {
        const FrameState state = is_crowded(*client) ? FrameState::None : client->peer->next(frame);
        if (state == FrameState::None) {
            break;
        }
        const bool verb = state == FrameState::Ready && frame.header.kind == NOF_FRAME_VERB &&
                          frame.header.correlator != 0 && frame.data.empty();
        if (!verb) {
            end_client(*client, "it sent what is no verb");
            return;
        }
        client->silent = false;
        handle_verb(*client, frame);
    }
    if (client != nullptr && client->peer->gone()) {
        end_client(*client, nullptr);
    }
}

Result Front::check_verb(const Client &client, const Frame &frame, const Target *target) const {
    const Result checked = check_block(frame.block.data(), frame.block.size());
    if (!checked.ok()) {
        return checked;
    }
    const NB_USHORT opcode = block_opcode(frame.block);
    const NAP_VERB *verb = nap_find_verb(opcode);
    const bool needs_rights =
        verb->changes != 0 || opcode == NAP_SET_PROCESSING_MODE || opcode == NAP_QUERY_CHANGES;
    if (needs_rights && !client.user.may_change) {
        return bad_parameter(NAP_NO_PERMISSION);
    }
    if (target == nullptr || (places_of(opcode) & target->place) == 0) {
        return bad_parameter(NAP_BAD_TARGET);
    }
    return GOOD;
}

void Front::carry_out(Client &client, const Frame &frame) {
    const auto found = client.targets.find(frame.header.target);
    Target *target = found == client.targets.end() ? nullptr : &found->second;
    const Result checked = check_verb(client, frame, target);
    NodeProcess *node = target != nullptr ? target->node : nullptr;
    if (!checked.ok()) {
        refuse(client, frame, checked, node);
        return;
    }
    if (block_opcode(frame.block) == NAP_QUERY_CHANGES) {
        Answer result;
        result.block = frame.block;
        set_result(result.block, list_changes(result));
        answer(client, frame.header, result.block, result.data);
    } else if (nap_find_verb(block_opcode(frame.block))->kind == NAP_KIND_SESSION) {
        Answer result;
        result.block = frame.block;
        set_result(result.block, session_verb(client, frame, *target, result));
        answer(client, frame.header, result.block, result.data);
    } else if (target->gone || (node != nullptr && node->peer == nullptr)) {
        refuse(client, frame, {NAP_COMM_FAILURE, NAP_NODE_GONE}, node);
    } else if (node != nullptr) {
        to_node(client, frame, *node);
    } else {
        to_domain(client, frame);
    }
}

void Front::to_domain(Client &client, const Frame &frame) {
    Answer result;
    std::string changed;
    domain_->execute(frame.block.data(), frame.block.size(), result, changed);
    note_change(client.user, nullptr, result.block, result.changes);
    answer(client, frame.header, result.block, result.data);
    auto header = nap_copy<NAP_VCB>(result.block.data());
    if (header.primary_rc == NAP_OK && NAP_KIND_COPIED(nap_find_verb(header.opcode)->kind)) {
        send_copy(&client, nullptr, result.block);
    }
    if (!changed.empty()) {
        tell_flags(changed);
        send_network_news(changed);
        send_server_news(changed, 1);
    }
}

void Front::to_node(Client &client, const Frame &frame, NodeProcess &node) {
    if (node.flights.size() >= (client.user.may_change ? MAX_FLIGHTS : MAX_FLIGHTS_OF_LOOKERS)) {
        refuse(client, frame, bad_state(NAP_NODE_BUSY), &node);
        return;
    }
    do {
        last_correlator_++;
    } while (last_correlator_ == 0 || node.flights.count(last_correlator_) != 0);
    const NB_ULONG correlator = last_correlator_;
    const bool list = nap_find_verb(block_opcode(frame.block))->kind == NAP_KIND_LIST;
    const size_t awaited = frame.block.size() + (list ? NOF_MAX_DATA : 0);
    client.awaited += awaited;
    node.flights.emplace_hint(node.flights.end(), correlator,
                              Flight{client.number, frame.header.correlator, frame.header.target,
                                     awaited, client.user, frame.block});
    node.peer->out().answer(make_frame(NOF_FRAME_VERB, correlator, frame.header.target,
                                       frame.block.data(), frame.block.size()));
}

void Front::answer(Client &client, const NOF_FRAME &verb, const std::vector<NB_UCHAR> &block,
                   const std::vector<NB_UCHAR> &data) {
    client.in_flight -= client.in_flight > 0 ? 1 : 0;
    client.peer->out().answer(make_frame(NOF_FRAME_ANSWER, verb.correlator, verb.target,
                                         block.data(), block.size(), data.data(), data.size()));
}

void Front::refuse(Client &client, const Frame &frame, Result result, const NodeProcess *node) {
    std::vector<NB_UCHAR> block = frame.block;
    set_result(block, result);
    note_change(client.user, node, block, "");
    answer(client, frame.header, block, {});
}

/* A client that does not take its answers is not listened to until it does. */
bool Front::is_crowded(const Client &client) const {
    return client.in_flight > MAX_IN_FLIGHT ||
           client.peer->out().bytes() + client.awaited > MAX_WAITING_BYTES;
}

/* Bytes that were read before the client was held are looked at when it is let go. */
void Front::balance(Client &client) {
    const bool crowded = is_crowded(client);
    if (client.held && !crowded) {
        client.held = false;
        client.peer->hold(false);
        client_ready(client.number);
    } else if (crowded && !client.held) {
        client.held = true;
        client.peer->hold(true);
    }
}

void Front::sweep() {
    for (auto at = clients_.begin(); at != clients_.end();) {
        Client &client = *at->second;
        if (!client.ended && !client.leaving && client.peer->out().overflown()) {
            cut_off(client);
        }
        if (!client.ended && !client.leaving) {
            client.peer->flush();
            balance(client);
        }
        if (!client.ended) {
            client.peer->flush();
        }
        if (client.leaving && (client.peer->out().empty() || client.peer->gone())) {
            client.ended = true;
        }
        at = client.ended ? clients_.erase(at) : std::next(at);
    }
    for (const auto &node : nodes_) {
        if (node->peer != nullptr) {
            node->peer->flush();
        }
    }
}

} // namespace node
