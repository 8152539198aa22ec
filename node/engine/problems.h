/* Identifiers of the node software's records in the problem log. */
#ifndef PROBLEMS_H
#define PROBLEMS_H

#include "nbtypes.h"

namespace node {

constexpr NB_ULONG LOG_STORE = 0x40040001;        /* what, file, reason */
constexpr NB_ULONG LOG_STORE_RECORD = 0x40040002; /* section: a stored record that does not fit */
constexpr NB_ULONG LOG_NODE_GONE = 0x40040003;    /* node */
constexpr NB_ULONG LOG_CLIENT_ENDED = 0x40040004; /* why, process */
constexpr NB_ULONG LOG_FAULTS = 0x40040005;       /* fault file, line */
constexpr NB_ULONG LOG_LINK = 0x40040006;         /* node: it sent what it must not */

} // namespace node

#endif
