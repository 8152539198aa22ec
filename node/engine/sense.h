/* Sense codes: why a start failed, or an active resource went down.  The node's log has them with
 * their words, and so has docs/node-states.md. */
#ifndef SENSE_H
#define SENSE_H

#include "nbtypes.h"

namespace node {

constexpr NB_ULONG SENSE_NOT_AVAILABLE = 0x08010000; /* the partner's port is not active */
constexpr NB_ULONG SENSE_LIMIT = 0x08120000;         /* a port has all links that it may have */
constexpr NB_ULONG SENSE_NOT_STARTED = 0x081C0000;   /* a port or PU that cannot be started */
constexpr NB_ULONG SENSE_MISMATCH = 0x08770000;      /* the partner has no station for this link */
constexpr NB_ULONG SENSE_LINK_FAILED = 0x80020000;   /* nobody answers, or the line broke */
constexpr NB_ULONG SENSE_PARTNER_LOST = 0x80030000;  /* the node at the other end has gone */
constexpr NB_ULONG SENSE_NO_WAY = 0x80140001;        /* no link leads to the server */

/* Those of each class that has any. */
inline constexpr NB_ULONG port_causes[] = {SENSE_NOT_STARTED};
inline constexpr NB_ULONG link_causes[] = {SENSE_LINK_FAILED, SENSE_PARTNER_LOST,
                                           SENSE_NOT_AVAILABLE, SENSE_MISMATCH, SENSE_LIMIT};
inline constexpr NB_ULONG pu_causes[] = {SENSE_NOT_STARTED, SENSE_NO_WAY};

/* What a code means, as a clause; "" for others. */
const char *sense_words(NB_ULONG sense);

} // namespace node

#endif
