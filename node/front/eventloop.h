/* The loop of a process: descriptors, timers, and an end.  One thread; a handler may watch, unwatch
 * and close anything, its own descriptor included. */
#ifndef EVENTLOOP_H
#define EVENTLOOP_H

#include "timers.h"

#include <functional>
#include <unordered_map>

namespace node {

class Loop {
public:
    /* `readable` also when the other end is gone: reading then says so. */
    using Handler = std::function<void(bool readable, bool writable)>;

    explicit Loop(TimerQueue &timers);
    ~Loop();
    Loop(const Loop &) = delete;
    Loop &operator=(const Loop &) = delete;

    /* False when the loop, or the watch, could not be made. */
    bool good() const { return epoll_ >= 0; }
    bool watch(int fd, Handler handler);

    /* What to wait for; both are off only to hold a peer back. */
    void interest(int fd, bool read, bool write);

    /* To be called before the descriptor is closed. */
    void unwatch(int fd);

    /* Done after every round of handlers and timers, before waiting again. */
    void each_round(std::function<void()> action) { each_round_ = std::move(action); }

    /* While it says so timers wait, but for descriptors nothing does: what timers make would only
     * pile up. */
    void hold_timers_while(std::function<bool()> full) { holds_timers_ = std::move(full); }

    /* Runs until `stop` is called; returns its argument. */
    int run();
    void stop(int status);

private:
    struct Watch {
        int fd;
        Handler handler;
    };

    TimerQueue &timers_;
    int epoll_;
    uint64_t last_watch_ = 0;
    std::unordered_map<uint64_t, Watch> watches_;
    std::unordered_map<int, uint64_t> by_fd_;
    std::function<void()> each_round_;
    std::function<bool()> holds_timers_;
    bool running_ = false;
    int status_ = 0;
};

} // namespace node

#endif
