/* Records of indications: what nodes and the node software say unasked.  Part of nofrec.h, which
 * says what the comments mean; include that. */
#ifndef NOFRECIN_H
#define NOFRECIN_H

#pragma pack(push, 4)

/* Every indication about a resource: the name from offset 13 is the key of its class, the state
 * behind it what the class's list entry would say now.  Counters in it are of the moment: none is
 * sent because they went on, a list query reads them. */
typedef struct nap_resource_indication {
    NAP_VCB_HEADER;
    NB_UCHAR data_lost; /* flag: others could not be delivered; read the class again */
    NB_UCHAR key[NAP_MAX_KEY];
    NB_UCHAR deactivated; /* flag: the resource is gone from the list */
    NB_UCHAR state;       /* NAP_NOT_ACTIVE and the like */
    NB_UCHAR reserved;
    NB_USHORT det_length; /* bytes used of det_data */
    NB_USHORT reserved2;
    NB_UCHAR det_data[544]; /* the determined part of the entry, as the list would return it */
} NAP_RESOURCE_INDICATION;

NB_STATIC_ASSERT(offsetof(NAP_RESOURCE_INDICATION, data_lost) == 12);
NB_STATIC_ASSERT(offsetof(NAP_RESOURCE_INDICATION, key) == 13);

typedef struct nap_nof_status_indication {
    NAP_VCB_HEADER;
    NB_ULONG status; /* NAP_CONNECTION_GONE, NAP_NODE_GONE or NAP_SYSTEM_FILE_CHANGED */
    NB_ULONG target_handle;
} NAP_NOF_STATUS_INDICATION_VERB;

typedef struct nap_server_indication {
    NAP_VCB_HEADER;
    NB_ULONG reserved;
    NB_ULONG state;          /* 1: active, other: gone */
    NB_ULONG server_flags;   /* NAP_SERVER_MASTER and the like */
    NB_UCHAR node_name[128]; /* text, padded with NULs */
} NAP_SERVER_INDICATION_VERB;

NB_STATIC_ASSERT(offsetof(NAP_SERVER_INDICATION_VERB, state) == 16);
NB_STATIC_ASSERT(offsetof(NAP_SERVER_INDICATION_VERB, server_flags) == 20);
NB_STATIC_ASSERT(offsetof(NAP_SERVER_INDICATION_VERB, node_name) == 24);

typedef struct nap_node_status_indication { /* a node was started or stopped */
    NAP_VCB_HEADER;
    NB_ULONG node_state;     /* NAP_NODE_STOPPED and the like */
    NB_UCHAR node_name[128]; /* text, padded with NULs */
} NAP_NODE_STATUS_INDICATION_VERB;

#pragma pack(pop)

#endif
