/* The domain's own part of the configuration: which nodes there are, which of them are servers, and
 * what belongs to no node: users, side information, workstations, logging.  It answers the verbs
 * that go to the domain and its files.
 *
 * OWNS: the list of nodes; what a node says about itself comes in through `update`.  All else is in
 * an engine like a node's, in the domain's store. */
#ifndef DOMAINCONFIG_H
#define DOMAINCONFIG_H

#include "engine.h"

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace node {

/* The file of the domain's own store. */
constexpr const char *DOMAIN_STORE = "domain.db";

/* Opens the domain's store for the domain of this name; `fresh` is to forget what it holds.  False,
 * with a text for the operator and nothing written, when it is another's, cannot be read, or is
 * missing although nodes of the domain have theirs. */
bool open_domain_store(Store &store, const std::string &folder, const std::string &name, bool fresh,
                       std::string &why);

class Domain {
public:
    /* The text says which nodes there are; the store, which of them are servers now. */
    Domain(const DomainText &text, Store &store, TimerQueue &timers, const Clock &clock);

    /* Loads the engine from the store, or at the first start from the text.  False with a text for
     * the operator when neither can be done. */
    bool load(std::string &why);

    /* The node was loaded before: its store must be there. */
    bool is_known(const std::string &node) const { return known_.count(node) != 0; }

    /* The node came up, so it has a store now. */
    void came_up(const std::string &node);

    NB_ULONG server_flags(const std::string &node) const;

    /* The name of the node that holds the domain's configuration, "" when none does. */
    std::string master() const;

    /* Takes over what a node says about itself; its server flags stay the domain's. */
    void update(const std::string &node, const NAP_NODE_INFO &info);

    /* The node's process is gone. */
    void lost(const std::string &node);

    /* What is known of a node. */
    NAP_NODE_INFO info(const std::string &node) const;

    /* The first backup server that `runs` takes over from the master, which is gone.  Returns its
     * name, "" when `gone` was no master or no other can. */
    std::string take_over(const std::string &gone,
                          const std::function<bool(const std::string &)> &runs);

    /* Carries out a verb to the domain.  `changed` gets the name of a node whose server flags
     * changed. */
    void execute(const NB_VOID *block, size_t length, Answer &answer, std::string &changed);

private:
    class Deaf final : public EngineListener {
        void indicate(const NB_VOID *, size_t) override {}
    };

    NB_ULONG flags_of_single_node() const;
    bool read_facts(std::string &why);
    Result dispatch(Answer &answer, std::string &changed);
    Result query(Answer &answer);
    Result change_backup(const Answer &answer, bool add, std::string &changed);
    using Roles = std::vector<std::pair<Resource *, NB_ULONG>>; /* nodes and their server flags */
    Result set_roles(const Roles &roles, Engine::IfFull if_full);
    void keep_one_master();
    bool is_known_logger(const Answer &answer) const;
    void refresh_up_times();
    void show_servers();
    Resource *find(const std::string &node) const;

    DomainText text_;
    Store &store_;
    const Clock &clock_;
    ResourceTable nodes_;
    std::unique_ptr<ResourceTable> servers_;
    Deaf nobody_;
    Engine engine_;
    std::map<std::string, uint64_t> up_since_ms_;
    std::set<std::string> known_;
};

} // namespace node

#endif
