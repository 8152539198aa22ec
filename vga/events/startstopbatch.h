/* Starting or stopping several resources, and the account of what became of each.
 *
 * At most VGA_OPERATIONS_IN_FLIGHT verbs of a batch are under way at a time, so that neither the
 * pipeline nor the window drowns in 4,000 of them.  What a start needs and is not active is started
 * first, and waited for: the DLC of a port, the port of a link station; so is the end of a stop, of
 * a node that is to be started again.  Records are kept by handle: one that goes meanwhile is
 * counted.  Between its items a batch can be cancelled.  It ends in any case, also when the node
 * dies, and goes on when its window closes.
 */
#ifndef STARTSTOPBATCH_H
#define STARTSTOPBATCH_H

#include "hooks.h"
#include "startstop.h"

#define VGA_OPERATIONS_IN_FLIGHT 32

/* What could not be started or stopped, and why; both in the locale's characters. */
struct VGA_OPERATION_FAILURE {
    std::string resource; /* kind and name */
    std::string reason;
    const NB_CHAR *help_key; /* a literal */
    std::string details;     /* facts about the verb; empty: none was issued */
};

struct VGA_OPERATION_ACCOUNT {
    NB_ULONG number; /* of the batch: no other has it */
    VGA_OPERATION operation;
    VGA_OPERABLE kind;  /* of the first */
    std::string first;  /* kind and name */
    std::string node;   /* the name of its node */
    NB_ULONG asked;     /* of so many it was asked; what follows adds up to it at the end */
    NB_ULONG done;      /* the node took it up */
    NB_ULONG passed;    /* were so already, or are of another kind */
    NB_ULONG gone;      /* exist no more */
    NB_ULONG cancelled; /* were not begun any more */
    std::vector<VGA_OPERATION_FAILURE> failures;

    NB_ULONG settled() const {
        return done + passed + gone + cancelled + static_cast<NB_ULONG>(failures.size());
    }
    bool over() const { return settled() == asked; }
};

/* Called whenever something was settled; the last time it is over. */
typedef NB_VOID (*VGA_OPERATION_NEWS)(NB_ULONG user_data, const VGA_OPERATION_ACCOUNT &account);

/* Begins.  Returns 0, or why none of them can be operated, and nothing was begun: the reason of the
 * first, VGA_MSG_NODEW_SELECT_FIRST when there is none.  The first news comes before it returns.
 * `user_data` is the asker's: a handle, never a pointer. */
NB_USHORT vga_operate_all(const std::vector<VGA_RESOURCE> &resources, VGA_OPERATION operation,
                          NB_ULONG user_data, VGA_OPERATION_NEWS news);

/* What is under way completes, the rest is not begun.  Nothing for a batch that is over. */
NB_VOID vga_cancel_operations(NB_ULONG number);

/* The hook of that name: the verb of a batch counts as one whose node is gone. */
NB_VOID vga_operation_purged(NB_USHORT opcode, NB_ULONG user_data);

/* Something became of a record that a batch may wait for: of a node, its state or connection. */
NB_VOID vga_operations_follow(const NB_VOID *record, VGA_RECORD_CHANGE what);

#endif
