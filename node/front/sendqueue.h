/* What waits to be sent to one peer.  Answers, copies and news go out in order and whole.  Status
 * indications are merged per resource while they wait: the last state wins and goes to the end,
 * since an answer in between may hold the older one; when too many wait, those of the registrations
 * with the most become a single one each that says data was lost. So a peer that reads slowly costs
 * a bounded amount whatever it registered for, and one that stops reading is told apart by
 * `overflown`. */
#ifndef SENDQUEUE_H
#define SENDQUEUE_H

#include "nofwire.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <sys/uio.h>
#include <vector>

namespace node {

constexpr size_t MAX_WAITING_STATUS = 4096;      /* beside those that say data was lost */
constexpr size_t MAX_WAITING_NEWS = 1024 * 1024; /* bytes of copies and news */

/* The block of an indication, which is stored once however many wait for it. */
using SharedBlock = std::shared_ptr<const std::vector<NB_UCHAR>>;

SharedBlock share(const NB_VOID *block, size_t length);

struct Indication {
    NB_ULONG correlator;
    NB_ULONG target;
    SharedBlock block;
};

class OutQueue {
public:
    /* Adds a frame that must arrive.  Short ones that wait one behind the other become one piece.
     */
    void answer(std::vector<NB_UCHAR> frame);

    /* Adds what nobody asked for now, but must not get lost either: a copy of a verb, or news about
     * a node. */
    void news(const Indication &indication);

    /* Adds a NAP_RESOURCE_INDICATION of a registration (a number of the caller's) about the
     * resource with this key.  `lost`: it is sent with data_lost 1, whatever its block says. */
    void status(uint64_t registration, const std::string &key, const Indication &indication,
                bool lost = false);

    /* Drops all that waits, but what was begun is ended, and `last` sent behind it. */
    void end_with(const Indication &last);

    /* Forgets the waiting status indications of a registration that ended. */
    void forget(uint64_t registration);

    bool empty() const { return items_.empty(); }
    size_t bytes() const { return bytes_; }

    /* More news waits than may. */
    bool overflown() const { return news_bytes_ > MAX_WAITING_NEWS; }

    /* Writes as much as the descriptor takes now.  False when it is broken. */
    bool write_to(int fd);

private:
    enum class Kind { Answer, News, Status };

    struct Item {
        Kind kind;
        bool lost = false;
        uint64_t registration = 0;
        std::string key;
        std::vector<NB_UCHAR> frame; /* of answers; others have a header and a block */
        NOF_FRAME header = {};
        SharedBlock block;

        size_t size() const { return block ? header.length : frame.size(); }
    };

    using Items = std::list<Item>;

    struct Waiting {
        std::map<std::string, Items::iterator> by_key;
        bool lost = false; /* one item, under the key "", stands for all */
    };

    Item &add(Kind kind, const Indication &indication);
    void remove_first();
    void begin_first();
    void drop_waiting(Waiting &waiting, Items::iterator kept);
    void merge_most();
    static size_t pieces_of(const Item &item, size_t skip, iovec *pieces);

    Items items_;
    size_t sent_ = 0; /* bytes of the first item */
    size_t bytes_ = 0;
    size_t news_bytes_ = 0;
    size_t waiting_status_ = 0; /* of registrations that have not lost any */
    std::map<uint64_t, Waiting> waiting_;
};

} // namespace node

#endif
