/* The engine of one node: its resources, their states, and the verbs that read and change them.
 *
 * Every class works the same way; what a class is stands in resourceclass.cpp.  Definitions go to
 * the store before a verb is answered.  States move by timers: starting takes its time, needs the
 * owner active, and brings dependants up behind it; stopping cascades.  The listener hears of every
 * change.
 *
 * OWNS: its resources and settings.  The store, the timers, the clock and the listener are the
 * caller's and outlive it.  Nothing that arrives in a verb is believed unchecked: blocks are
 * copied, never cast, and their lengths are those of the verb table. */
#ifndef ENGINE_H
#define ENGINE_H

#include "links.h"
#include "nodesettings.h"
#include "nodetext.h"
#include "resourcetable.h"
#include "sense.h"
#include "store.h"
#include "traces.h"
#include "world.h"

#include <array>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace node {

/* What goes back for a verb: its block, completed, and the entries of a list. */
struct Answer {
    std::vector<NB_UCHAR> block;
    std::vector<NB_UCHAR> data;
    std::string changes = {};     /* what it changed, in the words of changewords.h */
    bool changed_nothing = false; /* a start of what is up, or a stop of what is down */
};

struct Generated; /* generate.h */

class EngineListener {
public:
    virtual ~EngineListener() = default;
    /* A block with primary return code NAP_INDICATION: NAP_RESOURCE_INDICATION about a resource, or
     * NAP_QUERY_NODE_VERB (opcode NAP_QUERY_NODE) when the node itself changed. */
    virtual void indicate(const NB_VOID *block, size_t length) = 0;
    /* Something of a link to another node of the domain, LinkNews: for those other nodes. */
    virtual void link_changed(const NB_VOID *block, size_t length) {
        (void)block;
        (void)length;
    }
};

/* One step of a change: a resource of a class gets an entry, new or in place of `old`, or, without
 * an entry, `old` is deleted with what is carried by it. */
struct Change {
    const ClassRow *row = nullptr;
    std::unique_ptr<NB_UCHAR[]> entry; /* as long as a whole entry */
    Resource *old = nullptr;
    Behaviour behaviour = DEFAULT_BEHAVIOUR;
};

class Engine {
public:
    /* `store` may be null: nothing is kept then (for checking a text, and for tests).  The scope
     * says whose classes and settings it serves: those of a node or those of the domain. */
    Engine(Store *store, TimerQueue &timers, const Clock &clock, EngineListener &listener,
           Scope scope = Scope::Node);
    ~Engine();
    Engine(const Engine &) = delete;
    Engine &operator=(const Engine &) = delete;

    /* Loads a node from its text and stores it as one transaction.  What does not fit together is
     * added to `errors` of the domain text; true when there was nothing. */
    bool load_text(const TextNode &text, DomainText &domain);

    /* Loads what the store holds.  False when it holds nothing (a first start) or cannot be read;
     * `why` then says which ("" for nothing). */
    bool load_store(std::string &why);

    /* Makes the node with this index of a generated domain.  Nothing of it is stored; what the
     * store holds are the changes since, which are applied. */
    bool load_generated(const Generated &domain, NB_ULONG index, std::string &why);

    /* From now on traces are written to files in this folder, those that are switched on already
     * among them.  Without one there are none. */
    void keep_traces_in(const std::string &folder);

    /* Reports the node itself to the listener. */
    void announce();

    /* Starts the node when it was running, or is to run from the first start on. */
    void begin();

    /* Carries out one verb.  `length` bytes of block; answers in any case. */
    void execute(const NB_VOID *block, size_t length, Answer &answer);

    /* The domain tells the node its server flags, which it shows but does not own. */
    void set_server_flags(NB_ULONG flags);

    /* What another node of the domain said with link_changed. */
    void link_news(const LinkNews &news);

    /* Another node of the domain is running, or not: links to it are lost, and none comes up. */
    void partner_node(const NB_UCHAR *fq_cp_name, bool there);

    /* Who is there outside of the domain; everybody, unless it is said. */
    void live_in(World world);

    /* The world stands still: no link breaks, nobody visits. */
    void keep_still() { still_ = true; }

    NAP_QUERY_NODE_VERB node_record() const;
    NB_ULONG node_state() const { return node_state_; }

    /* For hooks and tests. */
    ResourceTable &table(ClassId id) const { return *tables_[id]; }
    Resource *find(ClassId id, const NB_UCHAR *key) const { return tables_[id]->find(key); }
    const Clock &clock() const { return clock_; }
    const LinkEnd *link_end(const Resource &link) const; /* null: it is not active */
    void indicate(const Resource &resource, bool deactivated);
    /* Adds a line to the node's log: severity and message are NAP_LOG_ ones. */
    void log(NB_UCHAR severity, NB_ULONG message, const std::string &text, NB_ULONG sense = 0);
    void log(NB_UCHAR severity, NB_ULONG message, const Resource &about, NB_ULONG sense = 0);
    void remove_tree(Resource &resource);
    void traffic_changed();
    bool takes_users() const; /* of LUs of type 0 to 3 */
    void register_lu(const NB_UCHAR *lu_name, bool there);
    void count_served(int change) { served_pus_ += static_cast<NB_ULONG>(change); }

    /* Makes a resource that another one brings with it, or gives it other contents.  `length` bytes
     * of list entry, whose own length is filled in. */
    Resource &add_derived(ClassId id, const NB_VOID *entry, size_t length);

    /* Steps for `apply`.  `change_of` begins with the entry as it is. */
    static Change change_of(Resource &resource);
    static Change change_to(ClassId id, const NB_VOID *entry, size_t length, Resource *old);
    static Change removal_of(Resource &resource);

    /* What becomes of a change that the store cannot write: nothing, or it takes place and is
     * owed, and the answer's secondary code is NAP_NOT_STORED. */
    enum class IfFull : NB_UCHAR { Refuse, Owe };

    /* Writes rows and facts as one transaction, for who keeps something beside the engine. */
    Result remember(const std::vector<StoreChange> &changes, const std::vector<StoreFact> &facts,
                    IfFull if_full);

    /* Stores all steps as one transaction, then takes them.  They are not checked. */
    Result apply(std::vector<Change> changes, IfFull if_full = IfFull::Refuse);

    /* A settings record, by the verb that asks for it. */
    template <class Record> Record settings(NB_USHORT opcode) const {
        Record record;
        memcpy(&record, records_.image(*settings_by_verb(opcode)), sizeof record);
        return record;
    }

    /* Reads and writes a whole record as its C type, by copying. */
    template <class Record> static Record get(const Resource &resource) {
        Record record;
        memcpy(&record, resource.entry.get(), sizeof record);
        return record;
    }
    template <class Record> static void put(Resource &resource, const Record &record) {
        memcpy(resource.entry.get(), &record, sizeof record);
    }

private:
    using Entry = std::unique_ptr<NB_UCHAR[]>;

    /* verbs (engine.cpp) */
    Result dispatch(std::vector<NB_UCHAR> &block, std::vector<NB_UCHAR> &data);
    Result query_list(std::vector<NB_UCHAR> &block, std::vector<NB_UCHAR> &data);
    Result query_record(std::vector<NB_UCHAR> &block);
    void show_limits(std::vector<NB_UCHAR> &block) const;
    Result check_limit(const ClassRow &row) const;
    Result define_node(const NB_UCHAR *block);
    Result define_record(const Settings &row, std::vector<NB_UCHAR> &block);
    Result reset_record(const Settings &row, std::vector<NB_UCHAR> &block);
    Result check_settings(const Settings &row, NB_UCHAR *image) const;
    const Resource *find_traced(const NB_UCHAR *name) const;
    bool forget_traced(const Settings &row, const NB_UCHAR *name, NB_UCHAR *image) const;
    Result take_record(const Settings &row, std::vector<NB_UCHAR> &image,
                       std::vector<NB_UCHAR> &block);
    bool serves(const ClassRow &row) const {
        return (scope_ == Scope::Domain) == (row.schema->scope == Scope::Domain);
    }

    /* definitions (define.cpp) */
    Result define(const ClassRow &row, std::vector<NB_UCHAR> &block);
    Result read_define(const ClassRow &row, const NB_UCHAR *block, Change &change) const;
    Result remove(const ClassRow &row, const NB_UCHAR *block);
    Result check_entry(const ClassRow &row, NB_UCHAR *entry, const Resource *old) const;
    Result check_refs(const ClassRow &row, NB_UCHAR *entry) const;
    Result check_alias(const ClassRow &row, const NB_UCHAR *entry, const Resource *old) const;
    Result check_unused(const Resource &resource) const;
    Resource *owner_of(const Resource &resource) const;
    bool is_busy(const Resource &resource) const;
    Resource &place(const ClassRow &row, Entry entry, const Behaviour &behaviour, Resource *old);
    void count_in_owner(const Resource &resource, int resources, int active);
    void collect_tree(Resource &resource, std::vector<StoreChange> &changes) const;
    template <class Action> void for_referrers(const Resource &resource, Action action) const;

    /* loading (load.cpp) */
    void load_resource(const TextResource &text, DomainText &domain);
    bool read_store(bool &configured);
    bool forget_erased();
    void load_stored(const ClassRow &row, StoreRow stored);
    bool store_all();
    void hide_compared(bool hashed);
    void add_sna_defined();

    /* How sessions end when something stops. */
    enum class Stop : NB_UCHAR { Orderly = NAP_ORDERLY_STOP, Immediate = NAP_IMMEDIATE_STOP };

    struct GoingDown {
        ClassId id;
        std::vector<NB_UCHAR> key;
        bool opened = false; /* what hangs on it is above it on the stack, or was */
    };

    /* A stop that is under way: a stack, on which each resource is below all that hangs on it. */
    struct Descent {
        Stop how;
        std::vector<GoingDown> left;
        NB_UCHAR roots_of = CLASS_COUNT; /* of this class on, roots are to come, too */
        std::vector<NB_UCHAR> last = {}; /* the key of the last one of that class that came */
    };

    /* what is on disk (define.cpp) */
    void settle_store();
    std::string words_of(const StoreChange &change) const;

    /* states (life.cpp, stopping.cpp) */
    Resource *named_by(const ClassRow &row, const NB_UCHAR *block) const;
    Result start_verb(const ClassRow &row, const NB_UCHAR *block);
    Result stop_verb(const ClassRow &row, const NB_UCHAR *block);
    Result init_node();
    Result stop_node(const NB_UCHAR *block);
    void node_up();
    void node_down();
    template <class Record> void forget_failures(ClassId id);
    void node_may_end();
    void move_node(Event event);
    void start(Resource &resource);
    void finish_start(Resource &resource);
    void start_dependants(Resource &owner);
    void finish_dependants(const Resource &owner);
    void start_failed(Resource &resource, NB_ULONG sense);
    void try_again(Resource &resource);
    void retry(Resource &resource);
    void failed(Resource &resource, NB_ULONG sense);
    void forget_last_failure(Resource &resource);
    void stop(Resource &resource, Stop how);
    static bool is_on_its_way(const Resource &resource, Stop how);
    void stop_alone(Resource &resource, Stop how);
    void begin_descent(const std::vector<Resource *> &resources, Stop how);
    void begin_whole_descent(Stop how);
    bool put_roots_on(Descent &descent) const;
    static void put_on(Descent &descent, const std::vector<Resource *> &resources);
    void stop_some();
    bool take_stops_back(Resource &resource);
    void go_on_stopping(Resource &resource);
    void finish_stop(Resource &resource);
    void count_below(Resource &resource, int change);
    void move(Resource &resource, Event event);
    void set_state(Resource &resource, NB_UCHAR state);
    bool owner_active(const Resource &resource) const;
    bool in_session(const Resource &resource) const;
    bool comes_with_owner(const Resource &resource) const;
    static bool may_be_root(const ClassRow &row);
    bool is_root(const Resource &resource) const;
    void wait(Resource &resource, NB_ULONG ms, void (Engine::*then)(Resource &));
    std::vector<Resource *> dependants(const Resource &owner) const;
    std::vector<Resource *> roots() const;

    /* sessions (traffic.cpp, sessionlimit.cpp, sessions.cpp, sessionverbs.cpp) */
    Result set_session_limit(const NB_UCHAR *block);
    Result operate(std::vector<NB_UCHAR> &block);
    Result activate_session(std::vector<NB_UCHAR> &block);
    Result deactivate_session(const NB_UCHAR *block);
    Result end_lu_session(const NB_UCHAR *block);
    Result end_tn_client(const NB_UCHAR *block);
    Result end_mode_sessions(Resource &mode, NB_USHORT number, Stop how);
    NAP_MODE_DATA new_mode(const NAP_LU62_SESSION_VERB &verb, const NAP_MODE_CHARS &chars) const;
    Resource &begin_mode(const NAP_MODE_DATA &entry);
    Result check_more(const NAP_MODE_DATA &mode, NB_ULONG more) const;
    void set_mode_sessions(Resource &mode, NB_USHORT sessions, const Resource *link);
    void move_sessions(Resource &mode, const Resource &link);
    void add_mode_session(const Resource &mode, NB_USHORT number, bool winner,
                          const Resource &link);
    Resource *mode_of(const NAP_SESSION_DATA &session) const;
    std::vector<Resource *> sessions_of(const Resource &mode) const;
    void show_lu_session(Resource &lu);
    void log_off(Resource &lu);
    void end_session(Resource &session);
    void session_over(Resource &session);
    void carry(const NAP_SESSION_DATA &session, int change);
    void drain(Resource &mode);
    void drained(Resource &mode);
    void end_carried(const Resource &link, Stop how);
    void lose_sessions(Resource &mode, NB_ULONG count, NB_ULONG sense);
    NB_ULONG end_ms(const Resource &resource) const;
    void end_later(Resource &resource, NB_ULONG ms, void (Engine::*then)(Resource &));

    /* what is written down (nodelog.cpp) */
    void set_trace(const Settings &row);
    void trace_state(const Resource &resource);
    void trace_client(const NAP_SESSION_DATA &session, const char *what);
    void trace_verb(const std::vector<NB_UCHAR> &block);
    void show_trace_files();

    /* what is counted while sessions last (counters.cpp) */
    void settle(Resource &session);
    void settle_all();
    using SessionCounts = std::map<std::string, NB_ULONG>; /* by LU alias, and with the partner */
    void count_traffic();
    void count_mode(Resource &mode, const Resource *link, NB_ULONG most);
    NB_ULONG most_sessions(const NAP_MODE_DATA &mode, NB_ULONG of_lu) const;
    void show_partner_sessions(const NB_UCHAR *alias, NB_ULONG sessions);
    void show_lu_sessions(const NB_UCHAR *alias, NB_ULONG sessions);

    /* links (links.cpp) */
    std::string partner_of(const NAP_LS_DATA &link) const;
    bool answers(const NB_UCHAR *fq_cp_name) const;
    bool is_answered(const Resource &link) const;
    bool has_room(const Resource &port, bool incoming) const;
    void send_link_news(NB_UCHAR kind, const Resource &link, const LinkEnd &end, NB_ULONG sense);
    void connect(Resource &link);
    void not_answered(Resource &link);
    void join(Resource &link, const LinkEnd &end);
    void hang_up(const Resource &link, NB_ULONG sense);
    void forget(Resource &resource);
    void lose(Resource &link, NB_ULONG sense);
    Resource *station_for(const LinkNews &call, bool &broken) const;
    Resource *port_for(const LinkNews &call, NB_ULONG &why_not) const;
    bool next_dynamic_name(NB_UCHAR (&name)[8]);
    Resource *make_station(const Resource &port, NAP_LS_DATA &link);
    Resource *implicit_station(const LinkNews &call, NB_ULONG &why_not);
    bool awaits_answer_of(const std::string &cp) const;
    void take_call(const LinkNews &call);
    void refuse(const LinkNews &call, NB_ULONG sense);
    void take_waiting_calls(const std::string &cp);
    void take_answer(const LinkNews &answer);
    void take_down(const LinkNews &news);
    void fail_later(Resource &link);

    /* visitors (visitors.cpp) and the directory (directory.cpp) */
    struct Visit {
        bool here = false;
        TimerId timer = 0;
        std::string what = {}; /* the key of what it uses, or has made */
    };
    void begin_visits();
    void end_visits();
    void visit_later(size_t at, NB_ULONG seconds);
    bool arrive(size_t at);
    void leave(size_t at);
    bool tn_client_lu(const Visitor &visitor, NB_UCHAR (&lu_name)[8]) const;
    Resource *free_lu(Visitor visitor) const;
    bool log_on(const Visitor &visitor, Visit &visit);
    void forget_user(Resource &lu);
    void end_visit_of(Resource &lu);
    const Resource *next_local_lu(const Visitor &visitor);
    bool begin_sessions(const Visitor &visitor, Visit &visit);
    const Resource *called_port(const Visitor &visitor) const;
    const Resource *free_template(const Visitor &visitor) const;
    bool call_port(const Visitor &visitor, Visit &visit);
    void make_down_lus(const Visitor &visitor, const Resource &pattern);
    void count_instances(const NB_UCHAR *template_name, int change);
    void forget_station(Resource &link);
    void forget_later(ClassId id, const std::string &key);
    bool is_in_use(const Resource &resource) const;
    void learn(const NB_UCHAR *fq_cp_name, const NB_UCHAR *name, NB_UCHAR entry_type);
    void learn_found(const NB_UCHAR *fq_cp_name, const NB_UCHAR *fqlu_name);
    void learn_registered(const NB_UCHAR *fq_cp_name, const NB_UCHAR *lu_name);
    void unlearn(const NB_UCHAR *fq_cp_name, const NB_UCHAR *lu_name);
    bool talks_to(const NB_UCHAR *fq_cp_name) const;
    bool knows_lus(const Resource &resource) const;
    void register_lus(const Resource &link);
    void send_registration(NB_UCHAR kind, const std::string &cp, const NB_UCHAR *lu_name);

    /* servers of PUs (servers.cpp) */
    bool can_reach(const NB_UCHAR *fq_cp_name) const;
    bool find_server(Resource &pu);
    void wait_no_more(const Resource &pu);
    void check_servers();
    bool is_dark(const Resource &link) const;

    /* what sessions bring with them (routes.cpp) */
    struct BroughtOne {
        NB_ULONG number = 0;
        NB_ULONG begun = 0;   /* seconds since 1970 */
        NB_ULONG counted = 0; /* up to when its counters stand */
    };
    struct Brought {
        std::map<std::string, BroughtOne> all; /* by what they are for */
        NB_ULONG last = 0;
    };
    using Wanted = std::map<std::string, std::vector<NB_UCHAR>>;
    const Resource *link_to(const NB_UCHAR *fq_cp_name) const;
    void show_routes();
    Wanted wanted_routes() const;
    Wanted wanted_sessions() const;
    void bring(ClassId id, Brought &brought, Wanted wanted,
               void (*name)(NB_UCHAR *entry, NB_ULONG number));
    void keep_route(const Resource &route, std::vector<NB_UCHAR> &wanted);
    void route_found(const std::string &name);
    void settle_routes();

    Store *store_;
    TimerQueue &timers_;
    const Clock &clock_;
    EngineListener &listener_;
    Scope scope_;
    std::array<std::unique_ptr<ResourceTable>, CLASS_COUNT> tables_;
    RecordSet records_;
    Traces traces_;
    NB_ULONG node_state_ = NAP_NODE_UNCONFIGURED;
    NB_ULONG server_flags_ = 0;
    uint64_t up_since_ms_ = 0;
    NB_ULONG active_sessions_ = 0;
    NB_ULONG users_ = 0;    /* sessions of LUs of type 0 to 3 */
    NB_ULONG up_roots_ = 0; /* resources that depend on the node alone and are not inactive */
    NB_ULONG log_lines_ = 0;
    NB_ULONG settled_at_ = 0; /* seconds since 1970 of the last count of what sessions carried */
    bool telling_ = false;    /* what a definition makes and takes away is indicated */
    Brought routes_;
    Brought ip_sessions_;
    std::map<std::string, bool> partners_;       /* other nodes of the domain: are they running */
    std::map<std::string, LinkEnd> link_ends_;   /* of link stations, by name */
    std::map<std::string, uint64_t> dark_until_; /* link stations whose line is broken */
    std::vector<LinkNews> waiting_calls_;
    NB_ULONG last_dynamic_ = 0; /* link station that nobody defined */
    World world_;
    std::vector<Visit> visits_;                    /* of the world's visitors, in their order */
    std::string last_local_lu_;                    /* that a visitor took */
    std::map<std::string, std::string> made_from_; /* downstream PUs: their templates */
    std::set<std::string> waiting_pus_;            /* for a way to their server */
    NB_ULONG served_pus_ = 0;                      /* by such servers */
    bool still_ = false;
    bool changed_nothing_ = false;  /* the verb that is carried out */
    bool wanted_ = false;           /* the node is to run */
    bool generated_ = false;        /* the store holds changes only */
    SessionCounts sessions_shown_;  /* in local LUs and partners in use */
    std::vector<Descent> descents_; /* the last one first */
    std::string changes_;           /* what the verb that is carried out changed */
    TimerId node_timer_ = 0;
    TimerId slice_timer_ = 0; /* of stops that are under way */
    TimerId traffic_timer_ = 0;
    TimerId store_timer_ = 0; /* something is owed to the store */
};

/* An orderly stop waits so long for a session to end; then it ends it. */
constexpr NB_ULONG ORDERLY_WAIT_MS = 10000;

} // namespace node

#endif
