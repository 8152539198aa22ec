/* Links between two nodes of one domain.  Each end is a link station of its own node; the nodes'
 * processes tell each other what a real network would carry: a call, its answer, and the end of a
 * link.
 *
 *   caller                                other node
 *     CALL (station, TG, port's medium) ->  looks for a station that this call is for
 *     <- ACCEPT (its station)               that station is active, joined with the caller's
 *     <- REFUSE (sense code)                none can answer: the caller's start has failed
 *   either   DOWN ->                        the station that is joined with this one goes down
 *
 * When both call at once, the node whose control point sorts first decides which stations go
 * together: the other one looks at a call only when its own to that node are answered. */
#ifndef LINKS_H
#define LINKS_H

#include "nofrec.h"

#include <string>

namespace node {

#pragma pack(push, 4)

/* What goes from node to node, with opcode NAP_LS_INDICATION and NAP_INDICATION. */
struct LinkNews {
    NAP_VCB_HEADER;
    NB_UCHAR kind;        /* LINK_CALL and the like */
    NB_UCHAR dlc_type;    /* of the caller's port */
    NB_UCHAR tg_number;   /* 0: any */
    NB_UCHAR node_type;   /* of the sender, NAP_NETWORK_NODE and the like */
    NB_UCHAR from_cp[17]; /* A17 */
    NB_UCHAR to_cp[17];   /* A17 */
    NB_UCHAR hpr;         /* flag: the sender's station supports it */
    NB_UCHAR cp_cp;       /* flag: the caller's station has sessions of control points */
    NB_UCHAR from_ls[8];  /* L8: the sender's station */
    NB_UCHAR to_ls[8];    /* L8: the other's; blank in a call */
    NB_UCHAR to_sap[4];   /* text: the service access point that is called; empty: any */
    NB_USHORT btu_size;   /* bytes that the sender's station sends at most */
    NB_USHORT reserved;
    NB_ULONG sense; /* why it is refused, or went down; 0: an operator's stop */
};

#pragma pack(pop)

constexpr NB_UCHAR LINK_CALL = 1;
constexpr NB_UCHAR LINK_ACCEPT = 2;
constexpr NB_UCHAR LINK_REFUSE = 3;
constexpr NB_UCHAR LINK_DOWN = 4;
constexpr NB_UCHAR LINK_REGISTER =
    5; /* from an end node to its server: it has an LU, `from_ls` (A8) */
constexpr NB_UCHAR LINK_UNREGISTER = 6;

/* What a node knows of the other end of a link station that is active or calls. */
struct LinkEnd {
    std::string cp;         /* A17: a control point of the domain; empty: somebody outside */
    std::string ls;         /* L8: its station; empty until it has answered */
    bool calling = false;   /* an answer is awaited */
    bool incoming = false;  /* it called */
    NB_UCHAR node_type = 0; /* NAP_NETWORK_NODE and the like */
    NB_UCHAR hpr = 0;       /* flag */
};

} // namespace node

#endif
