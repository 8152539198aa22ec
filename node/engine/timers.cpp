#include "timers.h"

#include <algorithm>

namespace node {

TimerId TimerQueue::after(uint32_t delay_ms, std::function<void()> action) {
    const TimerId id = ++last_id_;
    const uint64_t due = clock_.now_ms() + std::max<uint32_t>(delay_ms, 1);
    queue_.emplace(Place{due, id}, std::move(action));
    due_.emplace(id, due);
    return id;
}

void TimerQueue::cancel(TimerId id) {
    const auto found = due_.find(id);
    if (found != due_.end()) {
        queue_.erase(Place{found->second, id});
        due_.erase(found);
    }
}

int TimerQueue::next_ms() const {
    if (queue_.empty()) {
        return -1;
    }
    const uint64_t now = clock_.now_ms();
    const uint64_t due = queue_.begin()->first.first;
    return due <= now ? 0 : static_cast<int>(std::min<uint64_t>(due - now, 3600000));
}

void TimerQueue::run_due(uint64_t most_ms) {
    const uint64_t now = clock_.now_ms();
    while (!queue_.empty() && queue_.begin()->first.first <= now &&
           clock_.now_ms() - now < most_ms) {
        auto taken = queue_.extract(queue_.begin());
        due_.erase(taken.key().second);
        taken.mapped()();
    }
}

} // namespace node
