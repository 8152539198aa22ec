/* What travels between the verb interface library and the node software: frames over a stream
 * socket, between processes of one machine.  Host byte order, packed to 4.
 *
 * A frame is NOF_FRAME, then `vcb_length` bytes of control block, then `data_length` bytes of
 * buffer; `length` counts all three.  A receiver checks every length before it believes it: a frame
 * shorter than its header, longer than NOF_MAX_FRAME, with parts that do not add up or with a part
 * whose length is not a multiple of 4 is garbage, and garbage ends the connection.
 *
 * The node speaks first, with a hello.  The library holds verbs back until it has come. */
#ifndef NOFWIRE_H
#define NOFWIRE_H

#include "nofrec.h"

#pragma pack(push, 4)

#define NOF_WIRE_VERSION 1
#define NOF_MAX_VCB      4096
#define NOF_MAX_DATA     65536
#define NOF_MAX_FRAME    (sizeof(NOF_FRAME) + NOF_MAX_VCB + NOF_MAX_DATA)

#define NOF_FRAME_HELLO      1 /* node to library: NOF_HELLO as control block */
#define NOF_FRAME_VERB       2 /* library to node */
#define NOF_FRAME_ANSWER     3 /* node to library: the block, and the buffer of a list */
#define NOF_FRAME_INDICATION 4 /* node to library: correlator of the registration */
#define NOF_FRAME_FAULT      5 /* node to library: NOF_FAULT as control block; for tests only */

typedef struct nof_frame {
    NB_ULONG length;
    NB_USHORT kind; /* NOF_FRAME_HELLO and the like */
    NB_USHORT reserved;
    NB_ULONG correlator; /* the library's, never 0; an answer carries its verb's */
    NB_ULONG target;     /* 0: the domain */
    NB_ULONG vcb_length;
    NB_ULONG data_length; /* answers of list queries only */
} NOF_FRAME;

#define NOF_RIGHT_CHANGE 1 /* bit of NOF_HELLO.rights */

typedef struct nof_hello {
    NAP_VCB_HEADER; /* opcode 0; NAP_OK, or the connection ends and the secondary code says why */
    NB_ULONG version;
    NB_ULONG rights;          /* NOF_RIGHT_CHANGE, by the peer's credentials */
    NB_ULONG client_server;   /* flag: a domain of several nodes */
    NB_UCHAR domain_name[64]; /* text */
} NOF_HELLO;

/* The next `times` verbs with this opcode are complete, with these codes, when they are issued. One
 * with opcode 0 takes back all that came before. */
typedef struct nof_fault {
    NAP_VCB_HEADER; /* the verb's opcode; its codes */
    NB_ULONG times; /* 0xFFFFFFFF: all of them */
} NOF_FAULT;

#pragma pack(pop)

NB_STATIC_ASSERT(sizeof(NOF_FRAME) == 24);

#endif
