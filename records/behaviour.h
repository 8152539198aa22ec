/* How a resource behaves in this node software, which carries no traffic of its own: what a real
 * network would decide.  Kept beside the definition; domain texts set it by the fields that a
 * schema names in `simulated`, a define verb leaves it alone.  It grows at its end: the store has
 * shorter ones. */
#ifndef BEHAVIOUR_H
#define BEHAVIOUR_H

#include "fieldrows.h"

namespace records {

struct Behaviour {
    NB_UCHAR reachable;     /* flag: 0 never comes up */
    NB_UCHAR app_type;      /* NAP_APP_NONE and the like, of the user below */
    NB_USHORT sessions;     /* of a mode in use, while its partner can be reached */
    NB_ULONG up_ms;         /* time to come up; 0: derived from the name */
    NB_UCHAR user_name[32]; /* text: who uses an LU; empty: nobody */
    NB_ULONG end_ms;        /* time that a session takes to end orderly; 0: derived from the name */
    NB_USHORT fails_every;  /* seconds that a link lasts before it breaks; 0: it does not */
    NB_USHORT fails_for;    /* seconds that it stays broken */
};

constexpr Behaviour DEFAULT_BEHAVIOUR = {1, 0, 0, 0, {}, 0, 0, 0};

/* What a schema's `simulated` may be. */
namespace behaviour {

inline constexpr FieldRow reachable_or_not[] = {
    rows::flag(FIELD_AT(Behaviour, reachable), "yes"),
};

inline constexpr FieldRow link[] = {
    rows::flag(FIELD_AT(Behaviour, reachable), "yes"),
    rows::number(FIELD_AT(Behaviour, up_ms), 0, 60000, "0").in(Unit::Milliseconds),
    rows::number(FIELD_AT(Behaviour, fails_every), 0, 65535, "0").in(Unit::Seconds),
    rows::number(FIELD_AT(Behaviour, fails_for), 0, 65535, "0").in(Unit::Seconds),
};

inline constexpr FieldRow session_of_lu[] = {
    rows::text(FIELD_AT(Behaviour, user_name)).named("user"),
    rows::word(FIELD_AT(Behaviour, app_type), application_words, "none").named("application"),
    rows::number(FIELD_AT(Behaviour, end_ms), 0, 3600000, "0").in(Unit::Milliseconds),
};

inline constexpr FieldRow host_session[] = {
    rows::text(FIELD_AT(Behaviour, user_name)).named("host_application"),
};

inline constexpr FieldRow user_of_lu[] = {
    rows::text(FIELD_AT(Behaviour, user_name)).named("user"),
};

inline constexpr FieldRow sessions_of_mode[] = {
    rows::number(FIELD_AT(Behaviour, sessions), 0, 32767, "0").in(Unit::Sessions),
    rows::number(FIELD_AT(Behaviour, end_ms), 0, 3600000, "0").in(Unit::Milliseconds),
};

} // namespace behaviour

} // namespace records

#endif
