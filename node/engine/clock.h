/* Time, as the node software sees it.  Everything that waits asks a Clock, so that a test moves
 * time by hand and never sleeps. */
#ifndef CLOCK_H
#define CLOCK_H

#include <cstdint>
#include <ctime>

namespace node {

class Clock {
public:
    virtual ~Clock() = default;
    /* Milliseconds of a clock that never goes back. */
    virtual uint64_t now_ms() const = 0;
    /* Seconds since 1970, for what operators read. */
    virtual uint32_t wall_seconds() const = 0;
};

class SystemClock final : public Clock {
public:
    uint64_t now_ms() const override {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        return static_cast<uint64_t>(now.tv_sec) * 1000 +
               static_cast<uint64_t>(now.tv_nsec) / 1000000;
    }
    uint32_t wall_seconds() const override { return static_cast<uint32_t>(time(nullptr)); }
};

/* A clock that stands still until somebody moves it. */
class ManualClock final : public Clock {
public:
    uint64_t now_ms() const override { return now_; }
    uint32_t wall_seconds() const override {
        return static_cast<uint32_t>(1700000000 + now_ / 1000);
    }
    void advance(uint64_t milliseconds) { now_ += milliseconds; }

private:
    uint64_t now_ = 1;
};

} // namespace node

#endif
