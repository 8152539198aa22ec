/* The domain's own part of the configuration: which nodes there are, which of them are servers, and
 * the settings that belong to no node.  It answers the verbs that go to the domain and its files.
 *
 * OWNS: the list of nodes; what a node says about itself comes in through `update`. */
#ifndef NODEDOMAIN_H
#define NODEDOMAIN_H

#include "nodeengine.h"

#include <memory>
#include <string>

namespace node {

class Domain {
public:
    /* The text says which nodes there are; the store, which of them are servers now. */
    Domain(const DomainText &text, Store &store, const Clock &clock);

    const DomainText &text() const { return text_; }
    NB_ULONG server_flags(const std::string &node) const;

    /* The name of the node that holds the domain's configuration, "" when none does. */
    std::string master() const;

    /* Takes over what a node says about itself; its server flags stay the domain's. */
    void update(const std::string &node, const NAP_NODE_INFO &info);

    /* The node's process is gone. */
    void lost(const std::string &node);

    /* What is known of a node. */
    NAP_NODE_INFO info(const std::string &node) const;

    /* Carries out a verb to the domain: lists, settings, and the list of backup servers.  `changed`
     * gets the name of a node whose server flags changed. */
    void execute(const NB_VOID *block, size_t length, Answer &answer, std::string &changed);

private:
    Result dispatch(Answer &answer, std::string &changed);
    Result query(Answer &answer);
    Result change_backup(const Answer &answer, bool add, std::string &changed);
    void refresh_up_times();
    void show_servers();
    Resource *find(const std::string &node) const;

    DomainText text_;
    Store &store_;
    const Clock &clock_;
    ResourceTable nodes_;
    std::unique_ptr<ResourceTable> servers_;
    RecordSet records_;
    std::map<std::string, uint64_t> up_since_ms_;
};

} // namespace node

#endif
