/* The verb pipeline: the one way to the node and back.
 *
 * It keeps every verb in flight, holds later verbs of a target back behind a purged one that is
 * still in flight, defers completions that are already known to the main loop, calls the completion
 * routine that the issuer named, hands unsolicited blocks to the indication hook, and frees.
 *
 * OWNS: from a vga_queue_verb that returned 1 on, the control block and its query buffer (both from
 * malloc); it frees them when the completion routine returns.  One thread. */
#ifndef VERBQUEUE_H
#define VERBQUEUE_H

#include "nbbase.h"
#include "nof.h"
#include "nofrec.h"
#include "ntlavl.h"
#include <cstdlib>
#include <ctime>
#include <memory>

/* What every completion routine and indication processor gets.  `vcb` is gone when it returns. */
struct VGA_PROCESS_STATE {
    NB_ULONG target;
    NAP_VCB *vcb;
    NB_ULONG user_data; /* the issuer's: as a rule the handle of the record that waits */
};
typedef VGA_PROCESS_STATE vga_process_state;

typedef NB_VOID (*VGA_COMPLETION)(const VGA_PROCESS_STATE *work);

/* One verb, waiting or in flight; the first member of its list is the head's neighbour. */
struct VGA_QUEUE_ENTRY {
    NB_LQE links;
    AVL_NODE by_vcb;  /* in the index over both queues */
    time_t since;     /* when it was queued */
    NB_USHORT issued; /* handed to the verb interface */
    NB_ULONG target;
    NAP_VCB *vcb;
    NB_ULONG user_data;
    VGA_COMPLETION completion; /* null: purged, the answer will be dropped */
};

extern NB_LQE gvga_nof_queue;           /* waiting or in flight */
extern NB_LQE gvga_immediate_nof_queue; /* complete, for the main loop to handle */

/* Makes both queues empty, and opens the verb log (verblog.h) if one is asked for. */
NB_VOID vga_init_verb_queues(NB_VOID);

/* Queues a verb and issues it unless it must wait.  With gvga_look_only, a verb that changes
 * something is completed at once as on a connection that may only look, and goes nowhere.
 * REQUIRES: a completion routine (an assertion and 0 without one).
 * Returns 1, or 0 when there is no memory: the block is then still the caller's. */
NB_USHORT vga_queue_verb(NB_ULONG target, NAP_VCB *vcb, NB_ULONG user_data,
                         VGA_COMPLETION completion);

/* A completion routine for who needs none. */
NB_VOID vga_no_completion(const VGA_PROCESS_STATE *work);

/* The callback of the verb interface.  The main loop calls it for the immediate queue. */
NB_VOID vga_nof_verb_callback(NB_ULONG target, NB_VOID *vcb, NB_ULONG user_data);

/* Handles the entries of the immediate queue until it is empty or an exit was requested. */
NB_VOID vga_drain_immediate_queue(NB_VOID);

/* Has the routine `to` called in place of `from` for the verbs with that opcode (0: any) and user
 * data, in both queues: for answers that nobody wants any more and that bring what must be closed.
 */
NB_VOID vga_divert_verbs(NB_USHORT opcode, NB_ULONG user_data, VGA_COMPLETION from,
                         VGA_COMPLETION to);

/* Forgets verbs.  Every argument that is not 0 is a filter; no filter means all.  A waiting verb is
 * freed; the answer of one in flight will be dropped.  The immediate queue is left alone. */
NB_VOID vga_purge_verb_queue(NB_ULONG target, NB_USHORT opcode, const NAP_VCB *vcb,
                             NB_ULONG user_data, VGA_COMPLETION completion);

/* Drops the answers that wait for the main loop. */
NB_VOID vga_empty_immediate_queue(NB_VOID);

/* Frees every entry of both queues with its blocks, calling nobody, and closes the verb log.  For
 * the end of the process. */
NB_VOID vga_empty_verb_queues(NB_VOID);

/* The verbs of a target (0: of all) that have no answer yet and whose issuers wait for one. */
struct VGA_OUTSTANDING {
    NB_ULONG verbs;
    NB_ULONG target;  /* of the one that has waited longest */
    NB_ULONG seconds; /* that it has waited */
};
VGA_OUTSTANDING vga_outstanding(NB_ULONG target);

/* Allocates a query buffer of `size` bytes, of gvga_querybuf_size for 0.  Null without memory. */
NB_VOID *vga_get_querybuf(NB_ULONG size);

/* Frees the data buffer of a block whose verb has one and forgets it. */
NB_VOID vga_free_querybuf(NAP_VCB *vcb);

/* The buffer pointer stands unaligned in its block: it is read and written by copying. */
NB_VOID *vga_buf_ptr(const NAP_VCB *vcb);
NB_VOID vga_set_buf_ptr(NAP_VCB *vcb, NB_VOID *buffer);

/* Has a main loop that waits go round once more. */
NB_VOID vga_wake_main_loop(NB_VOID);

/* Makes the screen current before an answer is handled, if something was drawn or exposed since the
 * last time (it costs a round trip).  Nothing without a screen. */
NB_VOID vga_flush_display(NB_VOID);

NB_USHORT vga_verb_succeeded(const NAP_VCB *vcb); /* NAP_OK or NAP_INDICATION */

/* Issuing. */

struct VGA_FREE {
    void operator()(NB_VOID *memory) const { free(memory); }
};

/* A block or record from malloc that is freed unless it is handed on with release(). */
template <class Type> using VGA_OWNED = std::unique_ptr<Type, VGA_FREE>;

/* Allocates a zeroed block of a verb's exact size with its opcode set; null without memory. */
template <class Block> VGA_OWNED<Block> vga_new_verb(NB_USHORT opcode) {
    VGA_OWNED<Block> block(static_cast<Block *>(calloc(1, sizeof(Block))));
    if (block) {
        block->opcode = opcode;
    }
    return block;
}

/* Queues a block made by vga_new_verb; frees it and its data buffer when it cannot be queued. */
template <class Block>
NB_USHORT vga_issue_verb(NB_ULONG target, VGA_OWNED<Block> block, NB_ULONG user_data,
                         VGA_COMPLETION completion) {
    NAP_VCB *vcb = reinterpret_cast<NAP_VCB *>(block.get());
    if (vcb == nullptr) {
        return 0;
    }
    if (vga_queue_verb(target, vcb, user_data, completion) == 0) {
        vga_free_querybuf(vcb);
        return 0;
    }
    (NB_VOID) block.release();
    return 1;
}

#endif
