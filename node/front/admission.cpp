#include "admission.h"

#include <algorithm>

namespace node {

namespace {

/* Any seat that `fits` will do; none of them silent: he is refused. */
template <class Fits>
Admission take_place(const std::vector<Seat> &seats, NB_ULONG why, Fits fits) {
    const auto found = std::find_if(seats.begin(), seats.end(),
                                    [&](const Seat &seat) { return seat.silent && fits(seat); });
    return found != seats.end() ? Admission{GOOD, found->client}
                                : Admission{{NAP_UNAVAILABLE, why}, 0};
}

template <class Fits> size_t count(const std::vector<Seat> &seats, Fits fits) {
    return static_cast<size_t>(std::count_if(seats.begin(), seats.end(), fits));
}

} // namespace

Admission admit(const std::vector<Seat> &seats, const PeerUser &newcomer) {
    const auto own = [&](const Seat &seat) { return seat.user == newcomer.user; };
    const auto looks = [](const Seat &seat) { return !seat.may_change; };
    const auto any = [](const Seat &) { return true; };
    const bool full = seats.size() >= MAX_CLIENTS;
    if (count(seats, own) >= (newcomer.may_change ? MAX_OF_CHANGER : MAX_OF_LOOKER)) {
        return take_place(seats, NAP_LIMIT_REACHED, own);
    }
    if (!newcomer.may_change) {
        return full || count(seats, looks) >= MAX_LOOKERS ? take_place(seats, NAP_NODE_BUSY, looks)
                                                          : Admission{GOOD, 0};
    }
    if (!full) {
        return {GOOD, 0};
    }
    const Admission for_looker = take_place(seats, NAP_NODE_BUSY, looks);
    return for_looker.refused.ok() ? for_looker : take_place(seats, NAP_NODE_BUSY, any);
}

} // namespace node
