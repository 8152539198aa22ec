/* How a resource behaves in this node software, which carries no traffic of its own: what a real
 * network would decide.  Kept beside the definition; domain texts set it by the fields that a class
 * row names in `simulated`, a define verb leaves it alone.  It grows at its end: the store has
 * shorter ones. */
#ifndef BEHAVIOUR_H
#define BEHAVIOUR_H

#include "nofrec.h"

namespace node {

struct Behaviour {
    NB_UCHAR reachable;     /* flag: 0 never comes up */
    NB_UCHAR app_type;      /* NAP_APP_NONE and the like, of the user below */
    NB_USHORT sessions;     /* of a mode in use, while its partner can be reached */
    NB_ULONG up_ms;         /* time to come up; 0: derived from the name */
    NB_UCHAR user_name[32]; /* text: who uses an LU; empty: nobody */
    NB_ULONG end_ms;        /* time that a session takes to end orderly; 0: derived from the name */
};

constexpr Behaviour DEFAULT_BEHAVIOUR = {1, 0, 0, 0, {}, 0};

} // namespace node

#endif
