/* Every verb that the library has given a correlator, and what it recorded about it when it was
 * issued.  A verb waits for the hello or for room, is sent, and is then finished; a registration
 * stays on as a sink under its correlator.  Correlators are never 0 and never one that is here.
 * OWNS: its records, not the blocks they point at. */
#ifndef NOF_FLIGHTS_H
#define NOF_FLIGHTS_H

#include "nof.h"
#include "nofverbs.h"

#include <list>
#include <unordered_map>

namespace nof {

enum class Place { waiting, sent, sink };

struct Verb {
    NB_ULONG target;
    NB_UCHAR *vcb;
    NOF_CALLBACK callback;
    NB_ULONG user_data;
    const NAP_VERB *row;
    NB_UCHAR *buffer; /* of a list, else null */
    NB_ULONG buffer_size;
    NB_ULONG correlator = 0;
    Place place = Place::waiting;
    NB_USHORT primary_rc = NAP_OK; /* of a verb that the library completes */
    NB_ULONG secondary_rc = 0;
};

using VerbList = std::list<Verb>;

class Flights {
public:
    /* `first` is the correlator to begin with. */
    explicit Flights(NB_ULONG first = 1) : next_(first) {}

    /* Adds a verb behind those that wait and gives it its correlator.  Returns null when there is
     * no memory. */
    Verb *add(const Verb &verb);

    /* Returns the first verb that has not been sent, or null. */
    Verb *first_waiting() { return waiting_.empty() ? nullptr : &waiting_.front(); }

    /* Returns the verb with the correlator if it is in that place, or null. */
    Verb *find(NB_ULONG correlator, Place place);

    void now_sent(const Verb &verb) { move(verb, Place::sent); }
    void now_sink(const Verb &verb) { move(verb, Place::sink); }

    /* Frees the correlator and moves the record to the end of `to`, with these return codes. */
    void finish(const Verb &verb, VerbList &to, NB_USHORT primary_rc, NB_ULONG secondary_rc);

    /* Frees the correlator and drops the record. */
    void drop(const Verb &verb);

    /* Finishes every verb that was sent or waits, in the order of issue. */
    void finish_all(VerbList &to, NB_USHORT primary_rc, NB_ULONG secondary_rc);

    /* Finishes those that wait and would change something. */
    void finish_waiting_changes(VerbList &to, NB_USHORT primary_rc, NB_ULONG secondary_rc);

    /* Ends the registrations on a target. */
    void end_sinks(NB_ULONG target);

    /* Returns the oldest registration, or null. */
    const Verb *first_sink() const { return sinks_.empty() ? nullptr : &sinks_.front(); }

    size_t in_flight() const { return waiting_.size() + sent_.size(); }
    size_t sinks() const { return sinks_.size(); }

    /* Forgets everything; correlators go on. */
    void clear();

private:
    VerbList &list(Place place);
    void move(const Verb &verb, Place place);

    VerbList waiting_;
    VerbList sent_;
    VerbList sinks_;
    std::unordered_map<NB_ULONG, VerbList::iterator> by_correlator_;
    NB_ULONG next_;
};

} // namespace nof

#endif
