/* The front process: the socket that administrators connect to, their rights and targets, the
 * nodes' processes behind it, and who hears of what.
 *
 * A frame goes where its target says: to the domain, which is answered here, or to the process of a
 * node.  Correlators towards a node are the front's own, so that no client can answer, or be
 * answered, for another.  Targets belong to the client that opened them.
 *
 *   front.cpp   the socket, routing of verbs
 *   clients.cpp  connections: who gets one, and their end
 *   targets.cpp  the verbs of a session: open, connect, register, close
 *   processes.cpp    the nodes' processes
 *   faulting.cpp    doing what the fault script says
 *   changes.cpp  who changed what
 *   news.cpp    indications, copies and news to those who registered */
#ifndef FRONT_H
#define FRONT_H

#include "changelog.h"
#include "domainconfig.h"
#include "faults.h"
#include "peer.h"
#include "rights.h"
#include "socketfile.h"
#include "storecopy.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <sys/types.h>

namespace node {

struct FrontOptions {
    std::string domain_file;
    std::string generate; /* all numbers of a generated domain; "": there is a text */
    std::string domain_name;
    std::string state_folder;
    std::string socket_path;
    std::string fault_file; /* "": none */
    bool fresh = false;
    bool still = false; /* no visitors, no failures of links */
};

/* What a target is of. */
enum Place : NB_UCHAR {
    PLACE_ZERO = 1, /* the domain as such */
    PLACE_DOMAIN_FILE = 2,
    PLACE_NETWORK_FILE = 4,
    PLACE_NODE = 8,
    PLACE_TP_LOAD = 16
};

class Front {
public:
    Front(const FrontOptions &options, const DomainText &text);
    ~Front();
    Front(const Front &) = delete;
    Front &operator=(const Front &) = delete;

    /* Opens the store and the socket and starts the nodes.  On failure returns false with a text
     * for the operator. */
    bool start(std::string &why);

    /* Runs until it is told to end.  Returns the exit status. */
    int run();

private:
    struct Registration {
        NB_USHORT indication;
        NB_ULONG correlator;
        uint64_t number; /* for the queue: no two are the same */
    };

    struct NodeProcess;

    struct Target {
        NB_ULONG handle = 0; /* 0: the domain as such, which every client has */
        Place place = PLACE_ZERO;
        NodeProcess *node = nullptr; /* of a node, or of its TP load file */
        bool gone = false;           /* the node's process died since */
        std::vector<Registration> registrations;
    };

    struct Client {
        uint64_t number;
        std::unique_ptr<Peer> peer;
        PeerUser user;
        bool silent = true; /* it never sent a verb */
        size_t in_flight = 0;
        bool held = false;                  /* not listened to for now */
        std::map<NB_ULONG, Target> targets; /* by handle, with an entry for 0 */
        size_t registrations = 0;           /* of all targets */
        size_t awaited = 0;                 /* bytes that answers on their way may have */
        bool leaving = false;               /* it was cut off, and has not heard so yet */
        bool ended = false;
    };

    /* A verb that a node has not answered yet. */
    struct Flight {
        uint64_t client;
        NB_ULONG correlator;
        NB_ULONG target;
        size_t awaited; /* of its client */
        PeerUser user;  /* its client may be gone when the answer comes */
        std::vector<NB_UCHAR> block;
    };

    struct NodeProcess {
        std::string name;
        pid_t process = 0;
        std::unique_ptr<Peer> peer; /* null: it does not run */
        bool up = false;            /* it has said that it is there */
        bool was_up = false;        /* once, since the start */
        NB_ULONG restart_ms = 0;
        std::vector<NB_UCHAR> record;       /* what it last said of itself: NAP_QUERY_NODE_VERB */
        std::map<NB_ULONG, Flight> flights; /* by the front's correlator */
        bool asked = false;                 /* whether it is there, and has not answered yet */
        bool heard = false;                 /* since it was last looked at */
        unsigned silent = 0;                /* times it was looked at meanwhile */
    };

    /* front.cpp */
    std::string owner() const;
    bool check_numbers(std::string &why);
    bool listen_on_socket(std::string &why);
    bool watch_signals(std::string &why);
    bool write_domain_facts(std::string &why) const;
    void on_signal();
    void client_ready(uint64_t number);
    void carry_out(Client &client, const Frame &frame);
    Result check_verb(const Client &client, const Frame &frame, const Target *target) const;
    void to_domain(Client &client, const Frame &frame);
    void to_node(Client &client, const Frame &frame, NodeProcess &node);
    void answer(Client &client, const NOF_FRAME &verb, const std::vector<NB_UCHAR> &block,
                const std::vector<NB_UCHAR> &data);
    void refuse(Client &client, const Frame &frame, Result result,
                const NodeProcess *node = nullptr);
    void sweep();
    bool is_crowded(const Client &client) const;
    void balance(Client &client);
    void shut_down();

    /* clients.cpp */
    void reserve_descriptors();
    void accept_client();
    bool make_room(int fd, const PeerUser &user);
    void send_away(int fd, Result why);
    std::vector<NB_UCHAR> hello(NB_ULONG rights, Result result) const;
    Client *find_client(uint64_t number);
    void end_client(Client &client, const char *why);
    void cut_off(Client &client);

    /* faulting.cpp */
    void read_faults();
    void begin_faults();
    void hang_node(NodeProcess &node, NB_ULONG ms);
    void send_faults(Client &client);
    void handle_verb(Client &client, const Frame &frame);
    void apply_verdict(Client &client, const Frame &frame, const Faults::Verdict &verdict);

    /* targets.cpp */
    Result session_verb(Client &client, const Frame &frame, Target &target, Answer &answer);
    Result open_file(Client &client, Answer &answer);
    Result connect_node(Client &client, Answer &answer);
    Result register_sink(Client &client, const Frame &frame, Target &target);
    void end_target(Client &client, NB_ULONG handle);
    Result add_target(Client &client, Place place, NodeProcess *node, NB_ULONG &handle);
    NodeProcess *named_node(const NB_UCHAR *name, size_t width);

    /* processes.cpp */
    bool spawn(NodeProcess &node, bool fresh, std::string &why);
    void node_ready(NodeProcess &node);
    void watch_nodes();
    void ask_node(NodeProcess &node);
    void node_answer(NodeProcess &node, const Frame &frame);
    void node_indication(NodeProcess &node, const Frame &frame);
    void node_lost(NodeProcess &node);
    void hand_over(const NodeProcess &gone);
    void restart_later(NodeProcess &node);
    void tell_flags(const std::string &name);
    void tell_others(const NodeProcess &from, const std::vector<NB_UCHAR> &block);
    void tell_of_others(NodeProcess &node);
    void tell_of_loss(NodeProcess &node);
    void all_ready();

    /* changes.cpp */
    void note_change(const PeerUser &user, const NodeProcess *node,
                     const std::vector<NB_UCHAR> &block, const std::string &words);
    Result list_changes(Answer &answer) const;

    /* news.cpp */
    template <class Action> void for_registered(NB_USHORT indication, Action action);
    void send_status(NodeProcess &node, const Frame &frame);
    void send_copy(const Client *issuer, NodeProcess *node, const std::vector<NB_UCHAR> &block);
    void send_server_news(const std::string &name, NB_ULONG state);
    void send_network_news(const std::string &name);
    void send_node_state(NodeProcess &node, NB_ULONG state);
    void send_target_gone(NodeProcess &node);
    void send_file_moved();
    void send_news(Client &client, const Target &target, const Registration &registration,
                   const SharedBlock &block);

    FrontOptions options_;
    SystemClock clock_;
    TimerQueue timers_;
    Loop loop_;
    Store store_;
    DailyCopy copy_;
    DomainText text_;
    std::unique_ptr<Domain> domain_;
    ChangeLog changes_;
    Faults faults_;
    SocketFile socket_;
    Rights rights_;
    int signals_ = -1;
    int lock_ = -1;
    int spare_ = -1; /* a descriptor for when there is no other */
    bool ready_ = false;
    bool ending_ = false;
    uint64_t last_number_ = 0;
    NB_ULONG last_handle_ = 0;
    NB_ULONG last_correlator_ = 0;
    std::map<uint64_t, std::unique_ptr<Client>> clients_;
    std::vector<std::unique_ptr<NodeProcess>> nodes_;
    std::set<NB_ULONG> handles_; /* all that live */
};

} // namespace node

#endif
