#include "flights.h"

#include <new>

namespace nof {

VerbList &Flights::list(Place place) {
    switch (place) {
    case Place::waiting:
        return waiting_;
    case Place::sent:
        return sent_;
    case Place::sink:
        break;
    }
    return sinks_;
}

Verb *Flights::add(const Verb &verb) {
    while (next_ == 0 || by_correlator_.count(next_) > 0) {
        next_++;
    }
    try {
        const auto at = waiting_.insert(waiting_.end(), verb);
        try {
            by_correlator_.emplace(next_, at);
        } catch (const std::bad_alloc &) {
            waiting_.erase(at);
            return nullptr;
        }
        at->correlator = next_++;
        at->place = Place::waiting;
        return &*at;
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

Verb *Flights::find(NB_ULONG correlator, Place place) {
    const auto found = by_correlator_.find(correlator);
    return found != by_correlator_.end() && found->second->place == place ? &*found->second
                                                                          : nullptr;
}

void Flights::move(const Verb &verb, Place place) {
    const auto at = by_correlator_.at(verb.correlator);
    VerbList &to = list(place);
    to.splice(to.end(), list(at->place), at);
    at->place = place;
}

void Flights::finish(const Verb &verb, VerbList &to, NB_USHORT primary_rc, NB_ULONG secondary_rc) {
    const auto found = by_correlator_.find(verb.correlator);
    const auto at = found->second;
    by_correlator_.erase(found);
    at->primary_rc = primary_rc;
    at->secondary_rc = secondary_rc;
    to.splice(to.end(), list(at->place), at);
}

void Flights::drop(const Verb &verb) {
    VerbList dropped;
    finish(verb, dropped, NAP_OK, 0);
}

void Flights::finish_all(VerbList &to, NB_USHORT primary_rc, NB_ULONG secondary_rc) {
    // Verbs are sent in the order of issue, so whatever waits is younger than whatever was sent.
    for (VerbList *from : {&sent_, &waiting_}) {
        while (!from->empty()) {
            finish(from->front(), to, primary_rc, secondary_rc);
        }
    }
}

void Flights::finish_waiting_changes(VerbList &to, NB_USHORT primary_rc, NB_ULONG secondary_rc) {
    for (auto at = waiting_.begin(); at != waiting_.end();) {
        const Verb &verb = *at++;
        if (verb.row->changes) {
            finish(verb, to, primary_rc, secondary_rc);
        }
    }
}

void Flights::end_sinks(NB_ULONG target) {
    for (auto at = sinks_.begin(); at != sinks_.end();) {
        const Verb &verb = *at++;
        if (verb.target == target) {
            drop(verb);
        }
    }
}

void Flights::clear() {
    by_correlator_.clear();
    waiting_.clear();
    sent_.clear();
    sinks_.clear();
}

} // namespace nof
