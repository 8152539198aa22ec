/* The definition of a node: two settings records, what it is and its limits, that one verb changes.
 * For whoever issues the verb, carries it out, or is told that it was carried out. */
#ifndef NODEDEFINITION_H
#define NODEDEFINITION_H

#include "nofrec.h"

namespace records {

/* The verb that makes a node what the records say. */
NAP_DEFINE_NODE_VERB make_node_definition(const NAP_QUERY_NODE_VERB &node,
                                          const NAP_QUERY_NODE_LIMITS_VERB &limits);

/* Takes what a verb says into the records; state and counts in them stay. */
void take_node_definition(const NAP_DEFINE_NODE_VERB &verb, NAP_QUERY_NODE_VERB &node,
                          NAP_QUERY_NODE_LIMITS_VERB &limits);

} // namespace records

#endif
