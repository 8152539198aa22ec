#include "inputs.h"

#include <cstdint>
#include <map>
#include <poll.h>
#include <vector>

namespace cli::inputs {

namespace {

constexpr uintptr_t READING = 1; /* as the toolkit says it */

struct Input {
    NB_INT fd;
    short events;
    NB_INPUT_PROC proc;
    NB_VOID *data;
};

std::map<unsigned long, Input> all;
unsigned long last;

} // namespace

unsigned long add(NB_VOID *, NB_INT fd, NB_VOID *condition, NB_INPUT_PROC proc, NB_VOID *data) {
    const bool reading = reinterpret_cast<uintptr_t>(condition) == READING;
    all[++last] = {fd, static_cast<short>(reading ? POLLIN : POLLOUT), proc, data};
    return last;
}

NB_VOID remove(unsigned long id) {
    all.erase(id);
}

/* An input may remove others. */
bool take(int ms) {
    if (all.empty()) {
        return false;
    }
    std::vector<pollfd> fds;
    std::vector<unsigned long> ids;
    for (const auto &[id, input] : all) {
        fds.push_back({input.fd, input.events, 0});
        ids.push_back(id);
    }
    poll(fds.data(), fds.size(), ms);
    for (size_t at = 0; at < fds.size(); at++) {
        const auto found = all.find(ids[at]);
        if (fds[at].revents != 0 && found != all.end()) {
            const Input input = found->second;
            unsigned long id = ids[at];
            input.proc(input.data, &fds[at].fd, &id);
        }
    }
    return true;
}

} // namespace cli::inputs
