/* Waiting without sleeping.  Whatever produces something while a test waits (a process that writes,
 * the server that reports what is drawn) is a Source; wait_for takes in what the sources have until
 * a condition holds or a deadline is past. */
#ifndef SYSTEM_POLL_H
#define SYSTEM_POLL_H

#include <chrono>
#include <functional>
#include <vector>

namespace sys {

using Clock = std::chrono::steady_clock;

class Source {
public:
    Source();
    virtual ~Source();
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;

    /* Descriptors that are worth waiting for; may change between calls. */
    virtual std::vector<int> descriptors() const = 0;

    /* Takes in what there is, without waiting. */
    virtual void take() = 0;
};

/* Returns whether the condition held within `milliseconds`.  It is asked at least once, and again
 * after every bit of news and every few milliseconds. */
bool wait_for(const std::function<bool()> &condition, int milliseconds = 20000);

} // namespace sys

#endif
