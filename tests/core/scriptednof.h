/* A verb interface for tests, in place of the real one: it keeps what was issued, and completes it
 * when and how the test says.  Blocks belong to the pipeline as with the real interface. */
#ifndef SCRIPTEDNOF_H
#define SCRIPTEDNOF_H

#include "nof.h"
#include "nofrec.h"
#include <deque>
#include <functional>

struct ISSUED_VERB {
    NB_ULONG target;
    NAP_VCB *vcb;
    NOF_CALLBACK callback;
    NB_ULONG user_data;
};

struct SCRIPTED_NOF {
    std::deque<ISSUED_VERB> in_flight; /* oldest first */
    NB_ULONG issued = 0;

    /* Asked at each issue: 1 completes the verb at once (the script has filled the block in). */
    std::function<NB_USHORT(const ISSUED_VERB &)> completes_at_once;

    /* Completes the oldest verb, or the one at `index`, with the codes. */
    void complete(size_t index = 0, NB_USHORT primary = NAP_OK, NB_ULONG secondary = 0) {
        ISSUED_VERB verb = in_flight.at(index);
        in_flight.erase(in_flight.begin() + static_cast<std::ptrdiff_t>(index));
        verb.vcb->primary_rc = primary;
        verb.vcb->secondary_rc = secondary;
        verb.callback(verb.target, verb.vcb, verb.user_data);
    }

    void reset() { *this = SCRIPTED_NOF(); }
};

inline SCRIPTED_NOF scripted_nof;

extern "C" inline NB_USHORT scripted_issue(NB_ULONG target, NB_VOID *vcb, NOF_CALLBACK callback,
                                           NB_ULONG user_data) {
    ISSUED_VERB verb = {target, static_cast<NAP_VCB *>(vcb), callback, user_data};
    scripted_nof.issued++;
    if (scripted_nof.completes_at_once && scripted_nof.completes_at_once(verb)) {
        return NOF_COMPLETED_SYNC;
    }
    scripted_nof.in_flight.push_back(verb);
    return NOF_IN_PROGRESS;
}

/* Stands once in each test program that uses the script. */
#define SCRIPTED_NOF_ENTRY                                                                         \
    NB_USHORT nof_async_version(NB_USHORT, NB_ULONG target, NB_VOID *vcb, NOF_CALLBACK callback,   \
                                NB_ULONG user_data) {                                              \
        return scripted_issue(target, vcb, callback, user_data);                                   \
    }                                                                                              \
    NB_VOID nof_terminate(NB_VOID) {}                                                              \
    NOF_FAILURE nof_last_failure(NB_VOID) {                                                        \
        return {"", "", 0, 0};                                                                     \
    }

#endif
