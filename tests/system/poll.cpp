#include "poll.h"

#include <poll.h>

namespace sys {

namespace {

std::vector<Source *> &sources() {
    static std::vector<Source *> all;
    return all;
}

/* Waits for news, but not long: not everything that a condition looks at is a source. */
void wait_for_news() {
    constexpr int patience = 10; // milliseconds
    std::vector<pollfd> waiting;
    for (const Source *source : sources()) {
        for (const int descriptor : source->descriptors()) {
            waiting.push_back({descriptor, POLLIN, 0});
        }
    }
    poll(waiting.data(), waiting.size(), patience);
}

} // namespace

Source::Source() {
    sources().push_back(this);
}

Source::~Source() {
    std::erase(sources(), this);
}

bool wait_for(const std::function<bool()> &condition, int milliseconds) {
    const auto deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
    while (true) {
        const bool late = Clock::now() >= deadline;
        for (Source *source : sources()) {
            source->take();
        }
        if (condition()) {
            return true;
        }
        if (late) {
            return false;
        }
        wait_for_news();
    }
}

} // namespace sys
