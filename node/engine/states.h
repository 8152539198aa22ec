/* The states of resources as tables: what happens in which state, and what follows.  The engine
 * moves a resource by its class's table alone; docs/node-states.md is printed from the same rows by
 * tests/core/node_tables_test.cpp, which also walks every one. */
#ifndef STATES_H
#define STATES_H

#include "nofrec.h"

#include <span>

namespace node {

enum class Event : NB_UCHAR {
    Start,      /* an operator, its owner or its timer starts it */
    Called,     /* a partner calls it */
    Ready,      /* its time to come up has passed, and all that it needs is there */
    Failed,     /* so it has, but something is missing: the sense code says what */
    OwnerGone,  /* its owner went meanwhile */
    Stop,       /* an orderly stop: what hangs on it has been asked to end */
    StopAtOnce, /* an immediate one, or its owner's */
    Ended,      /* nothing hangs on it any more, and its time to go down has passed */
    Lost        /* the line broke, or the partner has gone */
};

struct StateRow {
    NB_UCHAR from;
    Event event;
    NB_UCHAR to;
};

using States = std::span<const StateRow>;

/* DLCs, ports and PUs. */
inline constexpr StateRow plain_states[] = {
    {NAP_NOT_ACTIVE, Event::Start, NAP_PENDING_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::Ready, NAP_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::Failed, NAP_NOT_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::OwnerGone, NAP_NOT_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::Stop, NAP_PENDING_INACTIVE},
    {NAP_PENDING_ACTIVE, Event::StopAtOnce, NAP_NOT_ACTIVE},
    {NAP_ACTIVE, Event::Stop, NAP_PENDING_INACTIVE},
    {NAP_ACTIVE, Event::StopAtOnce, NAP_NOT_ACTIVE},
    {NAP_PENDING_INACTIVE, Event::Ended, NAP_NOT_ACTIVE},
    {NAP_PENDING_INACTIVE, Event::Start, NAP_PENDING_ACTIVE},
    {NAP_PENDING_INACTIVE, Event::StopAtOnce, NAP_NOT_ACTIVE},
};

/* Link stations have a partner, too. */
inline constexpr StateRow link_states[] = {
    {NAP_NOT_ACTIVE, Event::Start, NAP_PENDING_ACTIVE},
    {NAP_NOT_ACTIVE, Event::Called, NAP_PENDING_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::Ready, NAP_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::Failed, NAP_NOT_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::OwnerGone, NAP_NOT_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::Stop, NAP_PENDING_INACTIVE},
    {NAP_PENDING_ACTIVE, Event::StopAtOnce, NAP_NOT_ACTIVE},
    {NAP_ACTIVE, Event::Stop, NAP_PENDING_INACTIVE},
    {NAP_ACTIVE, Event::StopAtOnce, NAP_NOT_ACTIVE},
    {NAP_ACTIVE, Event::Lost, NAP_NOT_ACTIVE},
    {NAP_PENDING_INACTIVE, Event::Ended, NAP_NOT_ACTIVE},
    {NAP_PENDING_INACTIVE, Event::Start, NAP_PENDING_ACTIVE},
    {NAP_PENDING_INACTIVE, Event::StopAtOnce, NAP_NOT_ACTIVE},
    {NAP_PENDING_INACTIVE, Event::Lost, NAP_NOT_ACTIVE},
};

/* LUs follow their PU.  One in session stays active through an orderly stop until that has ended.
 */
inline constexpr StateRow lu_states[] = {
    {NAP_NOT_ACTIVE, Event::Start, NAP_PENDING_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::Ready, NAP_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::OwnerGone, NAP_NOT_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::Stop, NAP_NOT_ACTIVE},
    {NAP_PENDING_ACTIVE, Event::StopAtOnce, NAP_NOT_ACTIVE},
    {NAP_ACTIVE, Event::Stop, NAP_NOT_ACTIVE},
    {NAP_ACTIVE, Event::StopAtOnce, NAP_NOT_ACTIVE},
    {NAP_ACTIVE, Event::Ended, NAP_NOT_ACTIVE},
};

/* What no indication tells of moves at once. */
inline constexpr StateRow quiet_states[] = {
    {NAP_NOT_ACTIVE, Event::Ready, NAP_ACTIVE},
    {NAP_ACTIVE, Event::Stop, NAP_NOT_ACTIVE},
    {NAP_ACTIVE, Event::StopAtOnce, NAP_NOT_ACTIVE},
};

/* The node itself, in its own states. */
inline constexpr StateRow node_states[] = {
    {NAP_NODE_STOPPED, Event::Start, NAP_NODE_STARTING},
    {NAP_NODE_STARTING, Event::Ready, NAP_NODE_ACTIVE},
    {NAP_NODE_STARTING, Event::Stop, NAP_NODE_STOPPING},
    {NAP_NODE_ACTIVE, Event::Stop, NAP_NODE_STOPPING},
    {NAP_NODE_STOPPING, Event::Ended, NAP_NODE_STOPPED},
};

/* Null: nothing follows. */
inline const StateRow *find_row(States states, NB_UCHAR from, Event event) {
    for (const StateRow &row : states) {
        if (row.from == from && row.event == event) {
            return &row;
        }
    }
    return nullptr;
}

} // namespace node

#endif
