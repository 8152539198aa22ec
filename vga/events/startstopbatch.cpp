#include "startstopbatch.h"
#include "completions.h"
#include "details.h"
#include "globals.h"
#include "messages.h"
#include "startwatch.h"
#include "verberror.h"
#include "vgadsutl.h"
#include <algorithm>
#include <deque>
#include <list>

namespace {

struct BATCH;

/* One resource of a batch; its handle is the user data of its verbs. */
struct ITEM {
    BATCH *batch;
    VGA_OPERABLE kind;
    NB_USHORT sessions;
    NB_ULONG record, node; /* handles */
    std::string words;
    NB_ULONG handle = 0; /* while a verb is under way */
    NB_ULONG needed = 0; /* handle of the record that it waits for; 0: none */
    VGA_RESOURCE first = {VGA_OPERABLE_NONE, nullptr}; /* that record, good while the handle is */
    bool begun = false;                                /* something was started for it */
};

struct BATCH {
    std::vector<ITEM> items;  /* never grows once it has begun */
    size_t next = 0;          /* that was not looked at yet */
    std::deque<ITEM *> ready; /* they have waited, and come before those */
    NB_ULONG in_flight = 0;
    NB_ULONG waiting = 0; /* items for a record */
    NB_ULONG user_data;
    VGA_OPERATION_NEWS news;
    VGA_OPERATION_ACCOUNT account;
    std::vector<VGA_RESOURCE> taken_up; /* by the node */
    bool cancelled = false;
};

std::list<BATCH> batches;
NB_ULONG last_number;

/* Settling. */

NB_VOID settle(ITEM &item, NB_ULONG VGA_OPERATION_ACCOUNT::*count) {
    item.batch->account.*count += 1;
}

NB_VOID fail(ITEM &item, std::string reason, const NB_CHAR *help_key, std::string details = {}) {
    item.batch->account.failures.push_back(
        {item.words, std::move(reason), help_key, std::move(details)});
}

NB_VOID fail(ITEM &item, const NAP_VCB &vcb) {
    const NB_CHAR *help_key;
    const VGA_OWNED<NB_CHAR> reason(
        vga_get_verb_error_message(vcb.opcode, vcb.primary_rc, vcb.secondary_rc, &help_key));
    fail(item, reason ? reason.get() : "", help_key,
         vga_verb_details(vcb, item.words, item.batch->account.node));
}

NB_VOID fail_without(ITEM &item, const VGA_RESOURCE &needed) {
    NB_CHAR text[200];
    vga_print_msg(text, sizeof(text), VGA_MSG_OPER_NEEDED, "s",
                  vga_resource_in_words(needed).c_str());
    fail(item, text, "verbfailed");
}

NB_VOID refuse(ITEM &item, NB_USHORT reason) {
    const bool so_already =
        reason == VGA_MSG_NODEW_ACTIVE_ALREADY || reason == VGA_MSG_NODEW_NOT_ACTIVE ||
        reason == VGA_MSG_NODEW_WRONG_STATE || reason == VGA_MSG_NODEW_NOT_STARTABLE;
    if (so_already) {
        settle(item, item.begun ? &VGA_OPERATION_ACCOUNT::done : &VGA_OPERATION_ACCOUNT::passed);
    } else {
        fail(item, vga_message(reason), "verbfailed");
    }
}

/* Asking. */

NB_VOID completed(const VGA_PROCESS_STATE *work);

NB_VOID wait_for(ITEM &item, const VGA_RESOURCE &needed) {
    item.first = needed;
    item.needed = vga_handle_of(needed);
    item.batch->waiting++;
}

NB_VOID wait_no_more(ITEM &item) {
    item.batch->waiting -= item.needed != 0;
    item.needed = 0;
}

NB_USHORT issue(ITEM &item, const VGA_RESOURCE &resource, VGA_OPERATION operation) {
    item.handle = nba_create_handle(&item);
    const NB_USHORT reason = vga_operate(resource, operation, item.handle, completed);
    if (reason != 0) {
        nba_destroy_handle(item.handle);
        item.handle = 0;
    } else {
        item.batch->in_flight++;
        item.begun = true;
    }
    return reason;
}

/* The lowest that is not active. */
VGA_RESOURCE needed_first(const VGA_RESOURCE &resource) {
    VGA_RESOURCE lowest = {VGA_OPERABLE_NONE, nullptr};
    for (VGA_RESOURCE next = vga_needed_first(resource); next.kind != VGA_OPERABLE_NONE;
         next = vga_needed_first(next)) {
        lowest = next;
    }
    return lowest;
}

/* What several items need is started once; the others wait for it with the first. */
NB_USHORT start_needed(ITEM &item, const VGA_RESOURCE &needed) {
    const NB_ULONG handle = vga_handle_of(needed);
    const auto &items = item.batch->items;
    const bool asked = std::any_of(items.begin(), items.end(),
                                   [handle](const ITEM &one) { return one.needed == handle; });
    const NB_USHORT reason =
        asked ? NB_USHORT{VGA_MSG_NODEW_ACTIVE_ALREADY} : issue(item, needed, VGA_START);
    if (reason != 0 && reason != VGA_MSG_NODEW_ACTIVE_ALREADY) {
        return reason;
    }
    item.begun = true;
    wait_for(item, needed);
    return 0;
}

NB_VOID ask(ITEM &item) {
    const VGA_OPERATION operation = item.batch->account.operation;
    const VGA_RESOURCE resource = {item.kind, nba_validate_handle(item.record), item.sessions};
    if (resource.record == nullptr) {
        settle(item, &VGA_OPERATION_ACCOUNT::gone);
        return;
    }
    NB_USHORT reason = vga_refuses_operation(resource, operation);
    if (reason == 0 && operation == VGA_START) {
        const VGA_RESOURCE needed = needed_first(resource);
        if (needed.kind != VGA_OPERABLE_NONE) {
            reason = start_needed(item, needed);
            if (reason != 0) {
                fail_without(item, needed);
            }
            return;
        }
        if (item.kind == VGA_OPERABLE_NODE && vga_state_of(resource) == NAP_NODE_STOPPING) {
            wait_for(item, resource);
            return;
        }
    }
    reason = reason != 0 ? reason : issue(item, resource, operation);
    if (reason != 0) {
        refuse(item, reason);
    }
}

/* Null: there is none. */
ITEM *take_next(BATCH &batch) {
    if (batch.ready.empty()) {
        return batch.next < batch.items.size() ? &batch.items[batch.next++] : nullptr;
    }
    ITEM *item = batch.ready.front();
    batch.ready.pop_front();
    return item;
}

/* The asker may begin another batch when this one is over. */
NB_VOID go_on(BATCH &batch) {
    if (gvga_closing) {
        return;
    }
    while (batch.cancelled || batch.in_flight < VGA_OPERATIONS_IN_FLIGHT) {
        ITEM *item = take_next(batch);
        if (item == nullptr) {
            break;
        }
        if (batch.cancelled) {
            settle(*item, &VGA_OPERATION_ACCOUNT::cancelled);
        } else {
            ask(*item);
        }
    }
    if (!batch.account.over()) {
        batch.news(batch.user_data, batch.account);
        return;
    }
    std::list<BATCH> ended;
    const auto place = std::find_if(batches.begin(), batches.end(),
                                    [&batch](const BATCH &one) { return &one == &batch; });
    ended.splice(ended.begin(), batches, place);
    ended.front().news(ended.front().user_data, ended.front().account);
    vga_watch_operated(ended.front().taken_up, ended.front().account.operation);
}

/* What is waited for is there, is on its way, or will not come. */
enum class Wait { Over, On, Vain };

Wait look_at(const ITEM &item) {
    if (nba_validate_handle(item.needed) == nullptr) {
        return Wait::Vain;
    }
    const NB_ULONG state = vga_state_of(item.first);
    if (item.first.kind == VGA_OPERABLE_NODE) {
        return state == NAP_NODE_STOPPING ? Wait::On : Wait::Over;
    }
    return state == NAP_ACTIVE ? Wait::Over : state == NAP_PENDING_ACTIVE ? Wait::On : Wait::Vain;
}

/* The caller lets the batch go on. */
NB_VOID end_wait(ITEM &item, Wait how) {
    const bool there = nba_validate_handle(item.needed) != nullptr;
    wait_no_more(item);
    if (how == Wait::Over) {
        item.batch->ready.push_back(&item);
    } else if (there) {
        fail_without(item, item.first);
    } else {
        settle(item, &VGA_OPERATION_ACCOUNT::gone);
    }
}

NB_VOID cancel_wait(ITEM &item) {
    wait_no_more(item);
    settle(item, &VGA_OPERATION_ACCOUNT::cancelled);
}

/* Answers. */

/* What the item had started cannot be; the others that wait for it share that. */
NB_VOID fail_waiting(const ITEM &item, const NAP_VCB &vcb) {
    const NB_ULONG needed = item.needed;
    for (ITEM &one : item.batch->items) {
        if (one.needed == needed && one.handle == 0) {
            wait_no_more(one);
            fail(one, vcb);
        }
    }
}

NB_VOID take_answer(ITEM &item, const NAP_VCB &vcb) {
    nba_destroy_handle(item.handle);
    item.handle = 0;
    item.batch->in_flight--;
    const bool good = vga_verb_succeeded(&vcb) != 0;
    if (item.needed != 0 && good && item.batch->cancelled) {
        cancel_wait(item);
    } else if (item.needed != 0) { /* it was not its own; what it brings is told by indications */
        if (!good) {
            fail_waiting(item, vcb);
        } else if (look_at(item) == Wait::Over) {
            end_wait(item, Wait::Over);
        }
    } else if (good) {
        settle(item, &VGA_OPERATION_ACCOUNT::done);
        if (NB_VOID *record = nba_validate_handle(item.record)) {
            item.batch->taken_up.push_back({item.kind, record, item.sessions});
        }
    } else if (nba_validate_handle(item.record) == nullptr) {
        settle(item, &VGA_OPERATION_ACCOUNT::gone);
    } else {
        fail(item, vcb);
    }
    go_on(*item.batch);
}

NB_VOID completed(const VGA_PROCESS_STATE *work) {
    vga_verb_completed(work);
    if (auto *item = static_cast<ITEM *>(nba_validate_handle(work->user_data))) {
        take_answer(*item, *work->vcb);
    }
}

/* Others purge verbs, too: their user data is the handle of something else. */
ITEM *waiting_item(NB_ULONG user_data) {
    for (BATCH &batch : batches) {
        for (ITEM &item : batch.items) {
            if (item.handle == user_data) {
                return &item;
            }
        }
    }
    return nullptr;
}

/* Whether a change of the record can end the wait.  A node is news for all that waits in it. */
bool concerns(const ITEM &item, const NB_VOID *record) {
    return item.needed != 0 && item.handle == 0 &&
           (nba_validate_handle(item.needed) == record ||
            nba_validate_handle(item.node) == record || nba_validate_handle(item.record) == record);
}

NB_VOID follow(ITEM &item, const NB_VOID *record, VGA_RECORD_CHANGE what) {
    const VGA_RESOURCE own = {item.kind, nba_validate_handle(item.record)};
    const auto *node = static_cast<const VGA_NODE *>(nba_validate_handle(item.node));
    if (own.record == nullptr || (what == VGA_RECORD_GONE && own.record == record)) {
        wait_no_more(item);
        settle(item, &VGA_OPERATION_ACCOUNT::gone);
    } else if (what == VGA_RECORD_GONE) {
        end_wait(item, Wait::Vain);
    } else if (node == nullptr || node->connection != VGA_CONNECTED) {
        end_wait(item, Wait::Over); /* and is refused */
    } else if (const Wait now = look_at(item);
               now != Wait::On && nba_validate_handle(item.needed) == record) {
        end_wait(item, now);
    }
}

} // namespace

NB_USHORT vga_operate_all(const std::vector<VGA_RESOURCE> &resources, VGA_OPERATION operation,
                          NB_ULONG user_data, VGA_OPERATION_NEWS news) {
    NB_USHORT reason = VGA_MSG_NODEW_SELECT_FIRST;
    for (auto one = resources.begin(); one != resources.end() && reason != 0; one++) {
        const NB_USHORT refusal = vga_refuses_operation(*one, operation);
        reason = refusal == 0 || one == resources.begin() ? refusal : reason;
    }
    if (reason != 0) {
        return reason;
    }
    BATCH &batch = batches.emplace_back();
    batch.user_data = user_data;
    batch.news = news;
    batch.account = {++last_number,
                     operation,
                     resources.front().kind,
                     vga_resource_in_words(resources.front()),
                     vga_node_name(vga_node_of(resources.front())),
                     static_cast<NB_ULONG>(resources.size()),
                     0,
                     0,
                     0,
                     0,
                     {}};
    batch.items.reserve(resources.size());
    for (const VGA_RESOURCE &one : resources) {
        const VGA_NODE *node = vga_node_of(one);
        batch.items.push_back({.batch = &batch,
                               .kind = one.kind,
                               .sessions = one.sessions,
                               .record = vga_handle_of(one),
                               .node = node != nullptr ? node->handle : 0,
                               .words = vga_resource_in_words(one)});
    }
    go_on(batch);
    return 0;
}

NB_VOID vga_cancel_operations(NB_ULONG number) {
    const auto batch = std::find_if(batches.begin(), batches.end(), [number](const BATCH &one) {
        return one.account.number == number;
    });
    if (batch == batches.end()) {
        return;
    }
    batch->cancelled = true;
    for (ITEM &item : batch->items) {
        if (item.needed != 0 && item.handle == 0) {
            cancel_wait(item);
        }
    }
    go_on(*batch);
}

NB_VOID vga_operation_purged(NB_USHORT opcode, NB_ULONG user_data) {
    ITEM *item = user_data != 0 ? waiting_item(user_data) : nullptr;
    if (item != nullptr) {
        const NAP_VCB vcb = vga_purged_answer(opcode);
        take_answer(*item, vcb);
    }
}

NB_VOID vga_operations_follow(const NB_VOID *record, VGA_RECORD_CHANGE what) {
    vga_watched_follow(record, what);
    for (auto batch = batches.begin(); batch != batches.end();) {
        BATCH &one = *batch++;
        bool changed = false;
        for (ITEM &item : one.items) {
            if (one.waiting == 0) {
                break;
            }
            if (concerns(item, record)) {
                changed = true;
                follow(item, record, what);
            }
        }
        if (changed) {
            go_on(one);
        }
    }
}
