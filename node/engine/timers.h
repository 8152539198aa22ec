/* Things to do later, in order of their time.  The owner asks when the next is due, waits that long
 * in its own way, and runs what is due.
 *
 * OWNS: the actions until they ran or were cancelled.  An action may add and cancel timers. */
#ifndef TIMERS_H
#define TIMERS_H

#include "clock.h"

#include <functional>
#include <map>
#include <unordered_map>
#include <utility>

namespace node {

using TimerId = uint64_t; /* 0: no timer; a value is never used twice */

class TimerQueue {
public:
    explicit TimerQueue(const Clock &clock) : clock_(clock) {}

    /* Runs `action` once, at least `delay_ms` (0 counts as 1) from now. */
    TimerId after(uint32_t delay_ms, std::function<void()> action);

    /* Forgets a timer; 0 and timers that ran are ignored. */
    void cancel(TimerId id);

    /* Milliseconds until the next is due, 0 when one is, -1 when there is none. */
    int next_ms() const;

    /* Runs everything that is due now.  With a time: ends after it, when something ran; what is
     * still due is at its head. */
    void run_due(uint64_t most_ms = UINT64_MAX);

private:
    using Place = std::pair<uint64_t, TimerId>;

    const Clock &clock_;
    TimerId last_id_ = 0;
    std::map<Place, std::function<void()>> queue_;
    std::unordered_map<TimerId, uint64_t> due_;
};

} // namespace node

#endif
