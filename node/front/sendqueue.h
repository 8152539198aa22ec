/* What waits to be sent to one peer.  Answers, copies and news go out in order and whole.  Status
 * indications are merged per resource while they wait: the last state wins and goes to the end,
 * since an answer in between may hold the older one; when too many of one registration wait, they
 * become a single one that says data was lost. So a peer that reads slowly costs a bounded amount,
 * and one that stops reading is told apart by `overflown`. */
#ifndef SENDQUEUE_H
#define SENDQUEUE_H

#include "nbtypes.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <vector>

namespace node {

constexpr size_t MAX_WAITING_STATUS = 4096;      /* of one registration */
constexpr size_t MAX_WAITING_NEWS = 1024 * 1024; /* bytes of copies and news */

class OutQueue {
public:
    /* Adds a frame that must arrive.  Short ones that wait one behind the other become one piece.
     */
    void answer(std::vector<NB_UCHAR> frame);

    /* Adds a frame that nobody asked for now, but that must not get lost either: a copy of a verb,
     * or news about a node. */
    void news(std::vector<NB_UCHAR> frame);

    /* Adds a NAP_RESOURCE_INDICATION of a registration (a number of the caller's) about the
     * resource with this key. */
    void status(uint64_t registration, const std::string &key, std::vector<NB_UCHAR> frame);

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
        uint64_t registration;
        std::string key;
        std::vector<NB_UCHAR> frame;
    };

    using Items = std::list<Item>;

    struct Waiting {
        std::map<std::string, Items::iterator> by_key;
        bool lost = false; /* one item, under the key "", stands for all */
    };

    void add(Kind kind, std::vector<NB_UCHAR> frame);
    void remove_first();
    void drop_waiting(Waiting &waiting);

    Items items_;
    size_t sent_ = 0; /* bytes of the first item */
    size_t bytes_ = 0;
    size_t news_bytes_ = 0;
    std::map<uint64_t, Waiting> waiting_;
};

} // namespace node

#endif
