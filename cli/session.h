/* A shell's connection to the node software: verbs that are waited for, over the pipeline that the
 * windows use.
 *
 * One at a time: the pipeline is the process's.  Nothing here prints. */
#ifndef CLI_SESSION_H
#define CLI_SESSION_H

#include "nofrec.h"
#include "schemas.h"

#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace cli {

using Bytes = std::vector<NB_UCHAR>;

/* The return codes of a verb. */
struct Codes {
    NB_USHORT primary = NAP_OK;
    NB_ULONG secondary = 0;

    bool ok() const { return primary == NAP_OK; }
};

/* Where resources are. */
struct Home {
    NB_ULONG target = 0;
    std::string node; /* "": the domain */
};

class Session {
public:
    Session();
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    /* Issues a verb and waits; the answer takes the place of the block. */
    Codes issue(NB_ULONG target, Bytes &block);
    template <class Block> Codes issue(NB_ULONG target, Block &block) {
        Bytes bytes(sizeof block);
        memcpy(bytes.data(), &block, sizeof block);
        const Codes codes = issue(target, bytes);
        memcpy(&block, bytes.data(), sizeof block);
        return codes;
    }

    /* Calls `take` for each entry of a list, which is read as it comes: the next part is asked for
     * before the last one is taken.  `take` may return false for enough.  `owner` are leading bytes
     * of the key that all must share. */
    using Take = std::function<bool(const NB_UCHAR *entry, size_t length)>;
    Codes list(NB_ULONG target, NB_USHORT opcode, const Bytes &owner, const Take &take,
               size_t key_size);

    /* The nodes of the domain, in the order of the list. */
    Codes nodes(std::vector<NAP_NODE_ALL_DATA> &nodes);

    /* A target for the resources or settings of a node, kept as long as the session; of the domain
     * for an empty name, of a node's invocable TPs with `tp_load`. */
    Codes reach(const std::string &node, bool tp_load, Home &home);

    /* Registers for an indication at a target; `take` gets what comes until the session ends. */
    using Hear = std::function<void(const Home &home, const NAP_VCB &block)>;
    Codes listen(const Home &home, NB_USHORT indication);
    void when_heard(Hear hear);

    /* Takes what comes; false when the connection is gone.  Ends after `ms`; -1: never. */
    bool wait(int ms);

private:
    struct Reached {
        Home home;
        bool tp_load;
    };

    std::vector<Reached> reached_;
};

} // namespace cli

#endif
