/* What the characteristics of a mode must keep to beyond the ranges of its fields: the node refuses
 * by it, and the program says it before it asks the node. */
#ifndef MODERULES_H
#define MODERULES_H

#include "nofrec.h"

#include <algorithm>

namespace records {

/* Sizes of RUs that can be given, in bytes. */
constexpr NB_USHORT LEAST_RU_SIZE = 256, MOST_RU_SIZE = 61440;

/* The highest initial receive pacing window, by the maximum one (0: there is none). */
constexpr NB_USHORT most_initial_window(NB_USHORT maximum) {
    constexpr NB_USHORT ALWAYS = 63;
    return maximum == 0 ? ALWAYS : std::min(maximum, ALWAYS);
}

/* Every mode of such a node names its class of service: the node chooses routes itself. */
constexpr bool modes_need_cos(const NAP_NODE_INFO &node) {
    return node.node_type == NAP_NETWORK_NODE || node.node_type == NAP_BRANCH_NETWORK_NODE ||
           (node.node_type == NAP_END_NODE && node.cos_mapping != 0);
}

/* The two of SNASVCMG, by which LUs agree on their sessions: both ends begin with no session, with
 * one that the other end wins, or with two of which each end wins one. */
constexpr bool fits_session_control(NB_USHORT initial_limit, NB_USHORT winners) {
    return initial_limit <= 2 && winners == initial_limit / 2;
}

} // namespace records

#endif
