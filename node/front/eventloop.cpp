#include "eventloop.h"

#include <cerrno>
#include <sys/epoll.h>
#include <unistd.h>

namespace node {

namespace {

constexpr int MAX_EVENTS = 64;
constexpr uint64_t TIMERS_MS = 10; /* between two looks at the descriptors */
constexpr int HELD_MS = 100;

} // namespace

Loop::Loop(TimerQueue &timers) : timers_(timers), epoll_(epoll_create1(EPOLL_CLOEXEC)) {}

Loop::~Loop() {
    if (epoll_ >= 0) {
        close(epoll_);
    }
}

/* Watches have numbers of their own: an event that waits for a descriptor which was closed and
 * given out again in the same round finds nobody. */
bool Loop::watch(int fd, Handler handler) {
    epoll_event event = {};
    event.events = EPOLLIN;
    event.data.u64 = ++last_watch_;
    if (epoll_ctl(epoll_, EPOLL_CTL_ADD, fd, &event) != 0) {
        return false;
    }
    watches_[last_watch_] = {fd, std::move(handler)};
    by_fd_[fd] = last_watch_;
    return true;
}

void Loop::interest(int fd, bool read, bool write) {
    const auto found = by_fd_.find(fd);
    epoll_event event = {};
    if (found != by_fd_.end()) {
        event.events = (read ? static_cast<uint32_t>(EPOLLIN) : 0U) |
                       (write ? static_cast<uint32_t>(EPOLLOUT) : 0U);
        event.data.u64 = found->second;
        epoll_ctl(epoll_, EPOLL_CTL_MOD, fd, &event);
    }
}

void Loop::unwatch(int fd) {
    const auto found = by_fd_.find(fd);
    if (found != by_fd_.end()) {
        epoll_ctl(epoll_, EPOLL_CTL_DEL, fd, nullptr);
        watches_.erase(found->second);
        by_fd_.erase(found);
    }
}

int Loop::run() {
    epoll_event events[MAX_EVENTS];
    running_ = true;
    while (running_) {
        if (each_round_) {
            each_round_();
        }
        const bool held = holds_timers_ && holds_timers_();
        const int count =
            epoll_wait(epoll_, events, MAX_EVENTS, held ? HELD_MS : timers_.next_ms());
        if (count < 0 && errno != EINTR) {
            return -1;
        }
        for (int at = 0; at < count && running_; at++) {
            const auto found = watches_.find(events[at].data.u64);
            if (found != watches_.end()) {
                const Handler handler = found->second.handler;
                handler((events[at].events & (EPOLLIN | EPOLLHUP | EPOLLERR)) != 0,
                        (events[at].events & EPOLLOUT) != 0);
            }
        }
        if (!held) {
            timers_.run_due(TIMERS_MS);
        }
    }
    return status_;
}

void Loop::stop(int status) {
    running_ = false;
    status_ = status;
}

} // namespace node
