#include "sendqueue.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>

namespace node {

namespace {

constexpr size_t DATA_LOST_AT = offsetof(NAP_RESOURCE_INDICATION, data_lost);
constexpr NB_UCHAR LOST = 1;
constexpr size_t PIECES_OF_ITEM = 4;
constexpr size_t MAX_PIECES = 64;
constexpr size_t SHORT_FRAME = 1024;
constexpr size_t MAX_JOINED = 65536;

} // namespace

SharedBlock share(const NB_VOID *block, size_t length) {
    const auto *bytes = static_cast<const NB_UCHAR *>(block);
    return std::make_shared<const std::vector<NB_UCHAR>>(bytes, bytes + length);
}

OutQueue::Item &OutQueue::add(Kind kind, const Indication &indication) {
    Item item;
    item.kind = kind;
    item.block = indication.block;
    item.header.kind = NOF_FRAME_INDICATION;
    item.header.correlator = indication.correlator;
    item.header.target = indication.target;
    item.header.vcb_length = static_cast<NB_ULONG>(item.block->size());
    item.header.length = static_cast<NB_ULONG>(sizeof item.header + item.block->size());
    bytes_ += item.size();
    news_bytes_ += kind == Kind::News ? item.size() : 0;
    items_.push_back(std::move(item));
    return items_.back();
}

void OutQueue::answer(std::vector<NB_UCHAR> frame) {
    if (!items_.empty() && items_.back().kind == Kind::Answer && frame.size() <= SHORT_FRAME &&
        items_.back().frame.size() <= MAX_JOINED) {
        bytes_ += frame.size();
        std::vector<NB_UCHAR> &joined = items_.back().frame;
        joined.insert(joined.end(), frame.begin(), frame.end());
        return;
    }
    bytes_ += frame.size();
    Item item;
    item.kind = Kind::Answer;
    item.frame = std::move(frame);
    items_.push_back(std::move(item));
}

void OutQueue::news(const Indication &indication) {
    add(Kind::News, indication);
}

/* `kept`: one that stays, or the end. */
void OutQueue::drop_waiting(Waiting &waiting, Items::iterator kept) {
    waiting_status_ -= waiting.lost ? 0 : waiting.by_key.size();
    for (const auto &entry : waiting.by_key) {
        if (entry.second != kept) {
            bytes_ -= entry.second->size();
            items_.erase(entry.second);
        }
    }
    waiting.by_key.clear();
}

/* Registrations with at least half of what one has on average: at least half of all goes, so that
 * this does not come again soon, and who has little loses nothing. */
void OutQueue::merge_most() {
    const size_t average = waiting_status_ / waiting_.size();
    for (auto &[registration, waiting] : waiting_) {
        if (!waiting.lost && !waiting.by_key.empty() && waiting.by_key.size() * 2 >= average) {
            const auto kept = waiting.by_key.begin()->second;
            drop_waiting(waiting, kept);
            kept->lost = waiting.lost = true;
            kept->key.clear();
            waiting.by_key[kept->key] = kept;
        }
    }
}

/* The first item stays out of reach once a part of it went out. */
void OutQueue::status(uint64_t registration, const std::string &key, const Indication &indication,
                      bool lost) {
    Waiting &waiting = waiting_[registration];
    const auto known = waiting.by_key.find(key);
    if (!waiting.lost && known == waiting.by_key.end() && waiting_status_ >= MAX_WAITING_STATUS) {
        merge_most();
    }
    if (waiting.lost) {
        return;
    }
    if (known != waiting.by_key.end()) {
        lost = lost || known->second->lost;
        bytes_ -= known->second->size();
        items_.erase(known->second);
        waiting_status_--;
    }
    Item &item = add(Kind::Status, indication);
    item.lost = lost;
    item.registration = registration;
    item.key = key;
    waiting.by_key[key] = std::prev(items_.end());
    waiting_status_++;
}

void OutQueue::end_with(const Indication &last) {
    for (auto at = sent_ > 0 ? std::next(items_.begin()) : items_.begin(); at != items_.end();) {
        bytes_ -= at->size();
        news_bytes_ -= at->kind == Kind::News ? at->size() : 0;
        at = items_.erase(at);
    }
    waiting_.clear();
    waiting_status_ = 0;
    add(Kind::News, last);
}

void OutQueue::forget(uint64_t registration) {
    const auto found = waiting_.find(registration);
    if (found != waiting_.end()) {
        drop_waiting(found->second, items_.end());
        waiting_.erase(found);
    }
}

void OutQueue::remove_first() {
    const Item &first = items_.front();
    bytes_ -= first.size();
    news_bytes_ -= first.kind == Kind::News ? first.size() : 0;
    items_.pop_front();
    sent_ = 0;
}

/* Nothing is merged with what is on its way. */
void OutQueue::begin_first() {
    const Item &first = items_.front();
    const auto found = waiting_.find(first.registration);
    if (first.kind != Kind::Status || found == waiting_.end()) {
        return;
    }
    waiting_status_ -= found->second.lost ? 0 : 1;
    found->second.by_key.erase(first.key);
    found->second.lost = false;
    if (found->second.by_key.empty()) {
        waiting_.erase(found);
    }
}

/* Returns their number, at most PIECES_OF_ITEM. */
size_t OutQueue::pieces_of(const Item &item, size_t skip, iovec *pieces) {
    size_t count = 0;
    const auto add = [&](const NB_VOID *bytes, size_t length) {
        const size_t skipped = std::min(skip, length);
        skip -= skipped;
        if (length > skipped) {
            pieces[count++] = {const_cast<NB_UCHAR *>(static_cast<const NB_UCHAR *>(bytes)) +
                                   skipped,
                               length - skipped};
        }
    };
    if (!item.block) {
        add(item.frame.data(), item.frame.size());
        return count;
    }
    const std::vector<NB_UCHAR> &block = *item.block;
    add(&item.header, sizeof item.header);
    if (item.lost) {
        add(block.data(), DATA_LOST_AT);
        add(&LOST, sizeof LOST);
        add(block.data() + DATA_LOST_AT + 1, block.size() - DATA_LOST_AT - 1);
    } else {
        add(block.data(), block.size());
    }
    return count;
}

bool OutQueue::write_to(int fd) {
    while (!items_.empty()) {
        iovec pieces[MAX_PIECES];
        size_t count = 0;
        for (auto at = items_.begin(); at != items_.end() && count + PIECES_OF_ITEM <= MAX_PIECES;
             ++at) {
            count += pieces_of(*at, at == items_.begin() ? sent_ : 0, pieces + count);
        }
        msghdr message = {};
        message.msg_iov = pieces;
        message.msg_iovlen = count;
        ssize_t written = sendmsg(fd, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (written < 0) {
            return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
        }
        while (written > 0) {
            if (sent_ == 0) {
                begin_first();
            }
            const size_t left = items_.front().size() - sent_;
            const size_t part = std::min(left, static_cast<size_t>(written));
            sent_ += part;
            written -= static_cast<ssize_t>(part);
            if (part == left) {
                remove_first();
            }
        }
    }
    return true;
}

} // namespace node
