/* The verb table in an order that can be searched, and the descriptions that vnv_verb_search hands
 * out.  Both are constants of the process. */
#ifndef NOF_VERBTABLE_H
#define NOF_VERBTABLE_H

#include "nofverbs.h"

namespace nof {

/* Returns the row of an opcode, or null. */
const NAP_VERB *find_verb(NB_USHORT opcode);

} // namespace nof

#endif
