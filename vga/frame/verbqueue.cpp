#include "verbqueue.h"
#include "globals.h"
#include "hooks.h"
#include "nofverbs.h"
#include "verblog.h"
#include <cstring>

NB_LQE gvga_nof_queue = {&gvga_nof_queue, &gvga_nof_queue};
NB_LQE gvga_immediate_nof_queue = {&gvga_immediate_nof_queue, &gvga_immediate_nof_queue};

namespace {

/* The answer of this verb is read in place by its issuer, who frees the buffer. */
constexpr NB_USHORT keeps_buffer = 8288;

/* Answers name their verb by its block.  A hundred nodes that are read at once have a thousand in
 * flight: none is looked for along the queue. */
NB_INT compare_blocks(const NB_VOID *left, const NB_VOID *right) {
    return (left > right) - (left < right);
}

AVL_TREE entries_by_vcb = {compare_blocks, nullptr, nullptr, nullptr};
NB_ULONG purged_in_flight;

/* The links are the first member, so an entry and its links have one address. */
VGA_QUEUE_ENTRY *entry_of(NB_LQE *links) {
    return reinterpret_cast<VGA_QUEUE_ENTRY *>(links);
}

/* The first entry of a queue that satisfies the condition, or null. */
template <class Condition> VGA_QUEUE_ENTRY *find_entry(NB_LQE &queue, Condition condition) {
    for (NB_LQE *links = queue.next; links != &queue; links = links->next) {
        if (condition(*entry_of(links))) {
            return entry_of(links);
        }
    }
    return nullptr;
}

/* A purged verb in flight holds later verbs of its target back: its answer may still change what
 * they would find. */
NB_USHORT target_is_held(NB_ULONG target) {
    return purged_in_flight != 0 &&
           find_entry(gvga_nof_queue, [target](const VGA_QUEUE_ENTRY &entry) {
               return entry.target == target && entry.completion == nullptr;
           }) != nullptr;
}

/* Takes an entry out of its queue and the index. */
NB_VOID remove_entry(VGA_QUEUE_ENTRY *entry) {
    nba_remove_from_q(&entry->links);
    ntl_avl_delete(&entries_by_vcb, &entry->by_vcb);
    purged_in_flight -= entry->completion == nullptr ? 1 : 0;
}

NB_VOID free_entry(VGA_QUEUE_ENTRY *entry) {
    if (entry->vcb->opcode != keeps_buffer) {
        vga_free_querybuf(entry->vcb);
    }
    free(entry->vcb);
    free(entry);
}

NB_VOID empty(NB_LQE &queue) {
    while (NB_LQE *first = nba_get_q_head(&queue)) {
        VGA_QUEUE_ENTRY *entry = entry_of(first);
        vga_log_verb(VGA_VERB_PURGED, entry->target, entry->vcb);
        remove_entry(entry);
        free_entry(entry);
    }
}

/* What the verb interface does on a connection that may only look.  By the mode that is not set the
 * build learns that it is so. */
NB_USHORT refuse(NAP_VCB &vcb) {
    const NAP_VERB *verb = nap_find_verb(vcb.opcode);
    if (gvga_look_only == 0 || verb == nullptr ||
        (verb->changes == 0 && verb->opcode != NAP_SET_PROCESSING_MODE)) {
        return 0;
    }
    vcb.primary_rc = NAP_PARAMETER_CHECK;
    vcb.secondary_rc = NAP_NO_PERMISSION;
    return 1;
}

NB_USHORT issue(VGA_QUEUE_ENTRY &entry) {
    entry.issued = 1;
    vga_log_verb(VGA_VERB_ISSUED, entry.target, entry.vcb);
    NB_USHORT result = refuse(*entry.vcb) != 0
                           ? NOF_COMPLETED_SYNC
                           : nof_async_version(NOF_VERSION, entry.target, entry.vcb,
                                               vga_nof_verb_callback, entry.user_data);
    if (result == NOF_COMPLETED_SYNC) {
        vga_log_verb(VGA_VERB_COMPLETED_AT_ONCE, entry.target, entry.vcb);
    }
    return result;
}

NB_VOID defer(VGA_QUEUE_ENTRY &entry) {
    nba_remove_from_q(&entry.links);
    nba_add_to_q_tail(&gvga_immediate_nof_queue, &entry.links);
    vga_wake_main_loop();
}

/* Issuing can complete a verb at once, and its completion can change the queue: look anew each
 * time. */
NB_VOID issue_held_verbs(NB_ULONG target) {
    while (!target_is_held(target)) {
        VGA_QUEUE_ENTRY *entry =
            find_entry(gvga_nof_queue, [target](const VGA_QUEUE_ENTRY &candidate) {
                return candidate.target == target && !candidate.issued;
            });
        if (entry == nullptr) {
            return;
        }
        if (issue(*entry) == NOF_COMPLETED_SYNC) {
            vga_nof_verb_callback(entry->target, entry->vcb, entry->user_data);
        }
    }
}

NB_USHORT is_unsolicited(const NAP_VCB &vcb) {
    return (vcb.opcode >= 16386 && vcb.opcode <= 16411) ||
           vcb.opcode == NAP_NOF_STATUS_INDICATION || vcb.opcode == NAP_SERVER_INDICATION ||
           vcb.opcode == NAP_TAMRIX_INDICATION || vcb.primary_rc == NAP_INDICATION;
}

NB_VOID handle_unsolicited(const VGA_PROCESS_STATE &work) {
    vga_log_verb(VGA_VERB_UNSOLICITED, work.target, work.vcb);
    if (work.vcb->secondary_rc == NAP_SINK_OVERFLOW) {
        VGA_EXIT_AT(VGA_EXIT_INTERNAL, 0, gvga_exit_bad_indication);
        return;
    }
    if (gvga_hooks.indication != nullptr) {
        gvga_hooks.indication(&work);
    }
}

NB_VOID complete(const VGA_QUEUE_ENTRY &entry, const VGA_PROCESS_STATE &work) {
    const NAP_VCB &vcb = *work.vcb;
    if (vcb.primary_rc == NAP_UNAVAILABLE) {
        VGA_EXIT(VGA_EXIT_UNAVAILABLE, 0);
        return;
    }
    /* The status indication that follows a lost connection does the recovery. */
    if (vcb.primary_rc == NAP_COMM_FAILURE && vcb.secondary_rc == NAP_CONNECTION_GONE) {
        return;
    }
    const bool owed = vcb.primary_rc == NAP_OK && vcb.secondary_rc == NAP_NOT_STORED;
    entry.completion(&work); /* may free the block */
    if (owed && gvga_hooks.not_stored != nullptr) {
        gvga_hooks.not_stored(work.target);
    }
}

} // namespace

NB_VOID vga_init_verb_queues(NB_VOID) {
    vga_open_verb_log();
    NB_INIT_LIST(gvga_nof_queue);
    NB_INIT_LIST(gvga_immediate_nof_queue);
    entries_by_vcb.root = entries_by_vcb.first = entries_by_vcb.last = nullptr;
    purged_in_flight = 0;
}

NB_USHORT vga_queue_verb(NB_ULONG target, NAP_VCB *vcb, NB_ULONG user_data,
                         VGA_COMPLETION completion) {
    NB_ASSERT(completion != nullptr);
    if (completion == nullptr) {
        return 0;
    }
    auto *entry = static_cast<VGA_QUEUE_ENTRY *>(calloc(1, sizeof(VGA_QUEUE_ENTRY)));
    if (entry == nullptr) {
        return 0;
    }
    entry->since = time(nullptr);
    entry->target = target;
    entry->vcb = vcb;
    entry->user_data = user_data;
    entry->completion = completion;
    nba_add_to_q_tail(&gvga_nof_queue, &entry->links);
    AVL_INIT_NODE(entry->by_vcb, entry, vcb);
    ntl_avl_insert(&entries_by_vcb, &entry->by_vcb);
    NB_USHORT must_wait = vcb->opcode != NAP_DISCONNECT_NODE && target_is_held(target);
    if (must_wait) {
        vga_log_verb(VGA_VERB_WAITING, target, vcb);
    } else if (issue(*entry) == NOF_COMPLETED_SYNC) {
        /* The issuer is still in the middle of its own work. */
        defer(*entry);
    }
    return 1;
}

NB_VOID vga_no_completion(const VGA_PROCESS_STATE *) {}

NB_VOID vga_nof_verb_callback(NB_ULONG target, NB_VOID *vcb, NB_ULONG user_data) {
    VGA_PROCESS_STATE work = {target, static_cast<NAP_VCB *>(vcb), user_data};
    if (is_unsolicited(*work.vcb)) {
        handle_unsolicited(work);
        return;
    }
    vga_flush_display();
    auto *queue_entry = static_cast<VGA_QUEUE_ENTRY *>(ntl_avl_find(&entries_by_vcb, vcb));
    if (queue_entry == nullptr) {
        v0_assert(__FILE__, __LINE__, "FALSE");
        return;
    }
    NB_ASSERT(queue_entry->issued);
    vga_log_verb(VGA_VERB_COMPLETED, target, work.vcb);
    remove_entry(queue_entry);
    if (queue_entry->completion != nullptr) {
        complete(*queue_entry, work);
    } else {
        issue_held_verbs(target);
    }
    free_entry(queue_entry);
}

NB_VOID vga_drain_immediate_queue(NB_VOID) {
    while (gvga_exit_code == 0) {
        NB_LQE *first = nba_get_q_head(&gvga_immediate_nof_queue);
        if (first == nullptr) {
            return;
        }
        const VGA_QUEUE_ENTRY &entry = *entry_of(first);
        vga_nof_verb_callback(entry.target, entry.vcb, entry.user_data);
    }
}

NB_VOID vga_divert_verbs(NB_USHORT opcode, NB_ULONG user_data, VGA_COMPLETION from,
                         VGA_COMPLETION to) {
    for (NB_LQE *queue : {&gvga_nof_queue, &gvga_immediate_nof_queue}) {
        for (NB_LQE *links = queue->next; links != queue; links = links->next) {
            VGA_QUEUE_ENTRY &entry = *entry_of(links);
            if ((opcode == 0 || entry.vcb->opcode == opcode) && entry.user_data == user_data &&
                entry.completion == from) {
                entry.completion = to;
            }
        }
    }
}

NB_VOID vga_purge_verb_queue(NB_ULONG target, NB_USHORT opcode, const NAP_VCB *vcb,
                             NB_ULONG user_data, VGA_COMPLETION completion) {
    for (NB_LQE *links = gvga_nof_queue.next; links != &gvga_nof_queue;) {
        VGA_QUEUE_ENTRY *entry = entry_of(links);
        links = links->next;
        NB_USHORT matches = (target == 0 || entry->target == target) &&
                            (opcode == 0 || entry->vcb->opcode == opcode) &&
                            (vcb == nullptr || entry->vcb == vcb) &&
                            (user_data == 0 || entry->user_data == user_data) &&
                            (completion == nullptr || entry->completion == completion);
        if (!matches) {
            continue;
        }
        vga_log_verb(VGA_VERB_PURGED, entry->target, entry->vcb);
        if (entry->completion != nullptr && gvga_hooks.verb_purged != nullptr) {
            gvga_hooks.verb_purged(entry->vcb->opcode, entry->user_data);
        }
        if (entry->issued) {
            purged_in_flight += entry->completion != nullptr ? 1 : 0;
            entry->completion = nullptr;
        } else {
            remove_entry(entry);
            free_entry(entry);
        }
    }
}

NB_VOID vga_empty_immediate_queue(NB_VOID) {
    empty(gvga_immediate_nof_queue);
}

NB_VOID vga_empty_verb_queues(NB_VOID) {
    empty(gvga_nof_queue);
    empty(gvga_immediate_nof_queue);
    vga_close_verb_log();
}

VGA_OUTSTANDING vga_outstanding(NB_ULONG target) {
    VGA_OUTSTANDING result = {};
    const time_t now = time(nullptr);
    for (NB_LQE *links = gvga_nof_queue.next; links != &gvga_nof_queue; links = links->next) {
        const VGA_QUEUE_ENTRY &entry = *entry_of(links);
        if (entry.completion == nullptr || (target != 0 && entry.target != target)) {
            continue;
        }
        if (result.verbs++ == 0) { /* they stand in the order in which they came */
            result.target = entry.target;
            result.seconds = now > entry.since ? static_cast<NB_ULONG>(now - entry.since) : 0;
        }
    }
    return result;
}

NB_VOID *vga_get_querybuf(NB_ULONG size) {
    return malloc(size != 0 ? size : gvga_querybuf_size);
}

NB_VOID vga_free_querybuf(NAP_VCB *vcb) {
    const NB_UCHAR *verb = vnv_verb_search(vcb->opcode, vcb->format, 0);
    if (verb != nullptr && (verb[VNV_BUFFER_BYTE] & VNV_HAS_BUFFER) != 0) {
        free(vga_buf_ptr(vcb));
        vga_set_buf_ptr(vcb, nullptr);
    }
}

NB_VOID *vga_buf_ptr(const NAP_VCB *vcb) {
    NB_VOID *buffer;
    memcpy(&buffer, reinterpret_cast<const NB_UCHAR *>(vcb) + NAP_BUF_PTR_OFFSET, sizeof(buffer));
    return buffer;
}

NB_VOID vga_set_buf_ptr(NAP_VCB *vcb, NB_VOID *buffer) {
    memcpy(reinterpret_cast<NB_UCHAR *>(vcb) + NAP_BUF_PTR_OFFSET, &buffer, sizeof(buffer));
}

NB_VOID vga_wake_main_loop(NB_VOID) {
    if (gvga_hooks.wake != nullptr) {
        gvga_hooks.wake();
    }
}

NB_VOID vga_flush_display(NB_VOID) {
    if (gvga_hooks.flush != nullptr) {
        gvga_hooks.flush();
    }
}

NB_USHORT vga_verb_succeeded(const NAP_VCB *vcb) {
    return vcb->primary_rc == NAP_OK || vcb->primary_rc == NAP_INDICATION;
}
