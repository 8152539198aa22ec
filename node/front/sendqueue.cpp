#include "sendqueue.h"

#include "nofwire.h"

#include <cerrno>
#include <sys/socket.h>
#include <sys/uio.h>

namespace node {

namespace {

constexpr size_t DATA_LOST_AT = sizeof(NOF_FRAME) + offsetof(NAP_RESOURCE_INDICATION, data_lost);
constexpr size_t MAX_PIECES = 16;
constexpr size_t SHORT_FRAME = 1024;
constexpr size_t MAX_JOINED = 65536;

} // namespace

void OutQueue::add(Kind kind, std::vector<NB_UCHAR> frame) {
    bytes_ += frame.size();
    news_bytes_ += kind == Kind::News ? frame.size() : 0;
    items_.push_back({kind, 0, {}, std::move(frame)});
}

void OutQueue::answer(std::vector<NB_UCHAR> frame) {
    if (!items_.empty() && items_.back().kind == Kind::Answer && frame.size() <= SHORT_FRAME &&
        items_.back().frame.size() <= MAX_JOINED) {
        bytes_ += frame.size();
        std::vector<NB_UCHAR> &joined = items_.back().frame;
        joined.insert(joined.end(), frame.begin(), frame.end());
        return;
    }
    add(Kind::Answer, std::move(frame));
}

void OutQueue::news(std::vector<NB_UCHAR> frame) {
    add(Kind::News, std::move(frame));
}

void OutQueue::drop_waiting(Waiting &waiting) {
    for (const auto &entry : waiting.by_key) {
        bytes_ -= entry.second->frame.size();
        items_.erase(entry.second);
    }
    waiting.by_key.clear();
}

/* The first item stays out of reach once a part of it went out. */
void OutQueue::status(uint64_t registration, const std::string &key, std::vector<NB_UCHAR> frame) {
    Waiting &waiting = waiting_[registration];
    if (waiting.lost) {
        return;
    }
    const auto known = waiting.by_key.find(key);
    if (known != waiting.by_key.end()) {
        frame[DATA_LOST_AT] |= known->second->frame[DATA_LOST_AT];
        known->second->frame = std::move(frame);
        items_.splice(items_.end(), items_, known->second);
        return;
    }
    if (waiting.by_key.size() >= MAX_WAITING_STATUS) {
        drop_waiting(waiting);
        waiting.lost = true;
        frame[DATA_LOST_AT] = 1;
    }
    add(Kind::Status, std::move(frame));
    items_.back().registration = registration;
    items_.back().key = waiting.lost ? std::string() : key;
    waiting.by_key[items_.back().key] = std::prev(items_.end());
}

void OutQueue::forget(uint64_t registration) {
    const auto found = waiting_.find(registration);
    if (found != waiting_.end()) {
        drop_waiting(found->second);
        waiting_.erase(found);
    }
}

void OutQueue::remove_first() {
    const Item &first = items_.front();
    bytes_ -= first.frame.size();
    news_bytes_ -= first.kind == Kind::News ? first.frame.size() : 0;
    items_.pop_front();
    sent_ = 0;
}

bool OutQueue::write_to(int fd) {
    while (!items_.empty()) {
        iovec pieces[MAX_PIECES];
        size_t count = 0;
        for (auto at = items_.begin(); at != items_.end() && count < MAX_PIECES; ++at, ++count) {
            const size_t skip = count == 0 ? sent_ : 0;
            pieces[count] = {at->frame.data() + skip, at->frame.size() - skip};
        }
        msghdr message = {};
        message.msg_iov = pieces;
        message.msg_iovlen = count;
        ssize_t written = sendmsg(fd, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (written < 0) {
            return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
        }
        for (size_t at = 0; at < count && written > 0; at++) {
            Item &first = items_.front();
            if (sent_ == 0 && first.kind == Kind::Status) {
                const auto found = waiting_.find(first.registration);
                if (found != waiting_.end()) {
                    found->second.by_key.erase(first.key);
                    found->second.lost = false;
                    if (found->second.by_key.empty()) {
                        waiting_.erase(found);
                    }
                }
            }
            const size_t left = first.frame.size() - sent_;
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
