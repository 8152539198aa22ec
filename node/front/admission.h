/* Who gets one of the front's places.  A user has a limit, some places are kept for those who may
 * change the domain, and whoever never sent a verb gives his place up to the next one: so no user
 * who may only look, and no single one who may change, can keep an administrator out. */
#ifndef ADMISSION_H
#define ADMISSION_H

#include "resourceclass.h"
#include "rights.h"

#include <cstdint>
#include <vector>

namespace node {

constexpr size_t MAX_CLIENTS = 512;
constexpr size_t MAX_LOOKERS = 256;    /* of them; the others are for those who may change */
constexpr size_t MAX_OF_LOOKER = 64;   /* of one user who may only look */
constexpr size_t MAX_OF_CHANGER = 192; /* of one user who may change */

/* A place that is taken. */
struct Seat {
    uint64_t client;
    uid_t user;
    bool may_change;
    bool silent; /* never sent a verb */
};

struct Admission {
    Result refused;      /* not ok(): he does not get in, and this goes into his hello */
    uint64_t leaves = 0; /* the client that makes room for him; 0: there is room */
};

/* Judges a newcomer.  `seats`: in the order of their coming.  Those who were silent longest leave
 * first: the newcomer's own when he has too many, then those of others who may only look. */
Admission admit(const std::vector<Seat> &seats, const PeerUser &newcomer);

} // namespace node

#endif
