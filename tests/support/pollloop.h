/* A main loop made of poll(), which drives the inputs of the base library in tests without a
 * toolkit: hand add_input and remove_input to vpm_asm_use_xt_sched. */
#ifndef POLLLOOP_H
#define POLLLOOP_H

#include "nbbase.h"
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <poll.h>
#include <vector>

namespace pollloop {

struct Watched {
    NB_INT fd;
    short events;
    NB_INPUT_PROC proc;
    NB_VOID *data;
};

inline std::map<unsigned long, Watched> inputs;

inline unsigned long add_input(NB_VOID *, NB_INT fd, NB_VOID *condition, NB_INPUT_PROC proc,
                               NB_VOID *data) {
    static unsigned long last = 0;
    const bool reading = reinterpret_cast<uintptr_t>(condition) == 1;
    inputs[++last] = {fd, static_cast<short>(reading ? POLLIN : POLLOUT), proc, data};
    return last;
}

inline NB_VOID remove_input(unsigned long id) {
    inputs.erase(id);
}

/* Waits, and calls the inputs that are ready: `most` of them, and even one that another has removed
 * meanwhile, as a loop with a list of its own may.  Returns how many it called. */
inline size_t round_of_loop(int timeout_ms, size_t most = 1) {
    const std::vector<std::pair<unsigned long, Watched>> watched(inputs.begin(), inputs.end());
    std::vector<pollfd> fds;
    for (const auto &[id, input] : watched) {
        fds.push_back({input.fd, input.events, 0});
    }
    poll(fds.data(), fds.size(), timeout_ms);
    size_t called = 0;
    for (size_t at = 0; at < fds.size() && called < most; at++) {
        if (fds[at].revents != 0) {
            unsigned long id = watched[at].first;
            watched[at].second.proc(watched[at].second.data, &fds[at].fd, &id);
            called++;
        }
    }
    return called;
}

/* Until the condition holds; false after ten seconds. */
inline bool until(const std::function<bool()> &condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        round_of_loop(1);
    }
    return true;
}

} // namespace pollloop

#endif
