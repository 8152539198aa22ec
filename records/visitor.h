/* What goes on around a node, as its domain text tells it: visitors come, stay for a while and go,
 * again and again.  They are no resources: nobody defines them by a verb, and they are not stored.
 */
#ifndef VISITOR_H
#define VISITOR_H

#include "fieldrows.h"

namespace records {

enum VisitorKind : NB_UCHAR {
    VISITOR_TERMINAL,    /* somebody uses an LU of type 0 to 3 */
    VISITOR_APPLICATION, /* a program has sessions of LU 6.2 */
    VISITOR_NODE,        /* a node that nobody defined calls a port */
    VISITOR_PU           /* a PU that nobody defined calls a port, to be served */
};

struct Visitor {
    NB_UCHAR name[32]; /* text: a user, the address of a TN3270 client, what a PU's LUs log on to */
    NB_UCHAR kind;     /* VisitorKind */
    NB_UCHAR app_type; /* of a terminal: NAP_APP_TN3270_SERVER and the like */
    NB_USHORT sessions;        /* of an application */
    NB_USHORT comes;           /* seconds behind the start of the node */
    NB_USHORT stays;           /* seconds */
    NB_USHORT away;            /* seconds until it comes again; 0: never */
    NB_UCHAR port_name[8];     /* L8: called by a node or PU; blank: any that takes it */
    NB_UCHAR template_name[8]; /* L8: of a PU; blank: the first */
    NB_UCHAR pu_name[8];       /* A8: of a PU */
    NB_UCHAR lu_name[8];       /* A8: of a terminal, an LU or a pool; blank: any, or, for a TN3270
                                * client, what its record says.  A node's LU */
    NB_UCHAR lu_alias[8];      /* L8: local LU of an application; blank: any, one after the other */
    NB_UCHAR mode_name[8];     /* A8 */
    NB_UCHAR fqplu_name[17];   /* A17: who an application talks to */
    NB_UCHAR fq_cp_name[17];   /* A17: where that is; a node's control point */
};

inline constexpr FieldWord visitor_words[] = {
    {"terminal", VISITOR_TERMINAL},
    {"application", VISITOR_APPLICATION},
    {"node", VISITOR_NODE},
    {"pu", VISITOR_PU},
};

namespace rows::visitor {
inline constexpr FieldRow fields[] = {
    text(FIELD_AT(Visitor, name)).key(),
    word(FIELD_AT(Visitor, kind), visitor_words, "terminal"),
    word(FIELD_AT(Visitor, app_type), application_words, "emulator").named("application"),
    number(FIELD_AT(Visitor, sessions), 1, 1000, "1").in(Unit::Sessions),
    number(FIELD_AT(Visitor, comes), 0, 65535, "10").in(Unit::Seconds),
    number(FIELD_AT(Visitor, stays), 1, 65535, "60").in(Unit::Seconds),
    number(FIELD_AT(Visitor, away), 0, 65535, "60").in(Unit::Seconds),
    local(FIELD_AT(Visitor, port_name)),
    local(FIELD_AT(Visitor, template_name)).named("template"),
    sna(FIELD_AT(Visitor, pu_name)),
    sna(FIELD_AT(Visitor, lu_name)),
    local(FIELD_AT(Visitor, lu_alias)),
    sna(FIELD_AT(Visitor, mode_name)),
    fq(FIELD_AT(Visitor, fqplu_name)),
    fq(FIELD_AT(Visitor, fq_cp_name)),
};
} // namespace rows::visitor

} // namespace records

#endif
