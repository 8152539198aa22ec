/* Node administration verb interface: asynchronous verbs to the node software.
 *
 * A verb is a control block that begins with NAP_VCB_HEADER (nofrec.h).  The issuer fills it, hands
 * it over, and gets the same block back, completed, in its callback.  The callback is called only
 * from the inputs that the base library registered with the owner's main loop, never from inside
 * nof_async_version.  Unsolicited blocks (indications, and copies of other administrators' verbs)
 * reach the callback of the verb that registered for them; such a block belongs to the library and
 * is gone when the callback returns.
 *
 * Nothing that the node sends can change where memory is read or written: opcode, format, buffer
 * pointer and buffer size of a block in flight are the library's own record. */
#ifndef NOF_H
#define NOF_H

#include "nbtypes.h"

NB_EXTERN_C_BEGIN

#define NOF_VERSION        2
#define NOF_IN_PROGRESS    0
#define NOF_COMPLETED_SYNC 6384 /* completed already; the callback will not be called */

typedef NB_VOID (*NOF_CALLBACK)(NB_ULONG target, NB_VOID *vcb, NB_ULONG user_data);

/* Issues a verb.  `version` is NOF_VERSION; `target` is the handle that an open or connect verb
 * returned, 0 for verbs to the domain itself; `vcb` has the length that the verb table states and
 * stays untouched by the caller until the callback.
 * Returns NOF_IN_PROGRESS, or NOF_COMPLETED_SYNC when the block is complete on return: an unknown
 * verb, a short buffer, a target that no longer exists, a changing verb without the right to. */
NB_USHORT nof_async_version(NB_USHORT version, NB_ULONG target, NB_VOID *vcb, NOF_CALLBACK callback,
                            NB_ULONG user_data);

/* Describes a verb: null for an unknown opcode, else 16 bytes that never change:
 *   0-1 opcode | 2 kind | 3 flags | 4-7 size of the control block | 8-9 reserved
 *   10  bit value 2: the verb has a separate data buffer | 11-15 reserved (all in host order)
 * `format` selects among formats of one verb; there is only format 0 today, others are unknown.
 * The third argument is 0. */
const NB_UCHAR *vnv_verb_search(NB_USHORT opcode, NB_UCHAR format, NB_USHORT reserved);

#define VNV_BUFFER_BYTE 10
#define VNV_HAS_BUFFER  2

/* Why the node software could not be reached, after an answer NAP_UNAVAILABLE.  The texts are the
 * library's and good until the next verb; all empty and 0 while there was no such failure. */
typedef struct nof_failure {
    const NB_CHAR *socket; /* path that was tried */
    const NB_CHAR *reason; /* as the problem log has it: English, or the system's words */
    NB_INT system_error;   /* errno; 0: it was not the system that refused */
    NB_ULONG refusal;      /* NAP_NODE_BUSY: the node software has no place left; NAP_LIMIT_REACHED:
                            * none for this user; other codes of later releases; 0: it refused nobody */
} NOF_FAILURE;

NOF_FAILURE nof_last_failure(NB_VOID);

/* The library's path to the node software: "<prefix>/var/sna.sock", unless SNA_SOCKET names
 * another.  Closes the connection and forgets every verb in flight without calling anybody; the
 * next verb connects again.  For the end of a process and for tests. */
NB_VOID nof_terminate(NB_VOID);

NB_EXTERN_C_END

#endif
