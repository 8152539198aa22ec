#include "completions.h"
#include "defineblock.h"
#include "deletion.h"
#include "globals.h"
#include "listqueries.h"
#include "messages.h"
#include "nesteditems.h"
#include "schemas.h"
#include "verberror.h"
#include "vgadsutl.h"
#include <algorithm>
#include <cstring>
#include <deque>
#include <list>

namespace {

using ITEM = VGA_DELETION_ITEM;

constexpr size_t most_in_flight = 32;

struct RUN;

/* One verb in flight; its handle is the verb's user data. */
struct SLOT {
    NB_ULONG handle = 0;
    RUN *run = nullptr;
    size_t item = 0;
    NB_USHORT busy = 0;
};

struct RUN {
    std::unique_ptr<VGA_DELETION> deletion;
    NB_ULONG user_data;
    VGA_DELETION_TOLD told;
    std::deque<size_t> ready = {}; /* items whose next verb can go out */
    std::array<SLOT, most_in_flight> slots = {};
    size_t in_flight = 0;
    NB_USHORT going_on = 0; /* flag: verbs are being issued, further down the stack */

    ITEM &item(size_t at) { return deletion->items[at]; }
};

std::list<RUN> runs;
NB_ULONG last_number;

NB_VOID go_on(RUN &run);

std::string reason_of(const NAP_VCB &vcb) {
    if (vcb.primary_rc == NAP_STATE_CHECK && vcb.secondary_rc == NAP_IN_USE) {
        return vga_message(VGA_MSG_DELETE_IN_USE);
    }
    if (vcb.primary_rc == NAP_STATE_CHECK && vcb.secondary_rc == NAP_RESOURCE_ACTIVE) {
        return vga_message(VGA_MSG_DELETE_ACTIVE);
    }
    const NB_CHAR *help_key;
    const VGA_OWNED<NB_CHAR> text(
        vga_get_verb_error_message(vcb.opcode, vcb.primary_rc, vcb.secondary_rc, &help_key));
    return text ? text.get() : "";
}

/* Items. */

const records::Schema *schema_of(const ITEM &item) {
    return vga_deletable_row(item.kind).schema;
}

/* What only ends sessions, or is but the sum of others, has no verb that deletes it. */
NB_USHORT has_verb(const ITEM &item) {
    return schema_of(item) != nullptr && item.kind != VGA_DELETE_SESSION;
}

/* The node of an item; null: it is lost, or the item is of the domain. */
VGA_NODE *node_of(const ITEM &item) {
    return static_cast<VGA_NODE *>(nba_validate_handle(item.node));
}

/* 0: it cannot be reached any more. */
NB_ULONG target_of(const ITEM &item) {
    if (item.node == 0) {
        return gvga_system->domain_target;
    }
    const VGA_NODE *node = node_of(item);
    return node == nullptr || node->connection != VGA_CONNECTED ? 0
           : item.kind == VGA_DELETE_TP_LOAD                    ? node->tp_target
                                                                : node->target;
}

VGA_KNOWN find_known(const ITEM &item) {
    const VGA_LIST *list = vga_find_list(schema_of(item)->lists[0].list);
    return list->find(node_of(item), item.entry + records::KEY_OFFSET);
}

/* The entry of an item without the part that goes; empty when it has no such part. */
std::vector<NB_UCHAR> entry_without(const ITEM &item) {
    const records::Schema &schema = *schema_of(item);
    const records::Nested &nested = schema.nested;
    const NB_UCHAR *known = find_known(item).entry;
    NB_USHORT length = 0;
    if (known == nullptr) {
        return {};
    }
    memcpy(&length, known, sizeof(length));
    std::vector<NB_UCHAR> entry(schema.overlay_size());
    std::copy_n(known, std::min<size_t>(length, entry.size()), entry.begin());
    for (NB_ULONG number = records::item_count(nested, entry.data()); number-- > 0;) {
        const NB_UCHAR *part = records::item_at(nested, entry.data(), number);
        if (vga_part_key(vga_deletable_row(item.kind), part) == item.part) {
            records::remove_item(nested, entry.data(), number);
            return entry;
        }
    }
    return {};
}

NB_USHORT is_there(const ITEM &item) {
    return item.part.empty() ? find_known(item).record != nullptr : !entry_without(item).empty();
}

NB_VOID consider(RUN &run, size_t at);

/* What waits for the item (-1: nothing) does so no more, or stays with it. */
NB_VOID let_go(RUN &run, NB_LONG waiting, const ITEM &item) {
    if (waiting < 0) {
        return;
    }
    ITEM &other = run.item(static_cast<size_t>(waiting));
    other.below--;
    if (!item.reason.empty() && other.reason.empty()) {
        const NB_USHORT message = vga_deletable_row(item.kind).message;
        other.reason = message == 0 ? item.reason
                                    : vga_deletion_words(VGA_MSG_DELETE_DEPENDS,
                                                         vga_kind_word(item.kind), item.name);
    }
    consider(run, static_cast<size_t>(waiting));
}

/* It is through: what it goes with may be next. */
NB_VOID through(RUN &run, size_t at, std::string reason) {
    ITEM &item = run.item(at);
    item.phase = reason.empty() ? ITEM::GONE : ITEM::REFUSED;
    item.reason = std::move(reason);
    run.deletion->done++;
    for (size_t with = at + 1; item.reason.empty() && with < item.end; with++) {
        ITEM &other = run.item(with);
        other.phase = other.by_itself != 0 ? ITEM::GONE : other.phase;
    }
    for (size_t next = at + 1; !item.part.empty() && next < run.deletion->items.size(); next++) {
        if (run.item(next).after == static_cast<NB_LONG>(at)) {
            run.item(next).after = -1;
            consider(run, next);
        }
    }
    let_go(run, item.owner, item);
    let_go(run, item.refers, item);
}

NB_USHORT takes_part(const RUN &run, const ITEM &item) {
    return item.by_itself == 0 && run.deletion->lines[item.line].wanted != 0;
}

/* Has the item's next verb sent when nothing stands in the way. */
NB_VOID consider(RUN &run, size_t at) {
    ITEM &item = run.item(at);
    if (takes_part(run, item) == 0 || item.stopper >= 0 || item.after >= 0 ||
        (item.phase != ITEM::WAITS && item.phase != ITEM::STOPPED)) {
        return;
    }
    const bool stops_now = item.phase == ITEM::WAITS && item.stops != 0;
    if (stops_now || item.below == 0) {
        run.ready.push_back(at);
    }
}

/* What was to be stopped with it goes no further, either. */
NB_VOID not_stopped(RUN &run, size_t at, const std::string &reason) {
    const ITEM &item = run.item(at);
    const std::string of_others =
        vga_deletion_words(VGA_MSG_DELETE_NOT_STOPPED, vga_kind_word(item.kind), item.name, reason);
    for (size_t with = item.end; with-- > at + 1;) {
        ITEM &other = run.item(with);
        if (other.by_itself == 0 && other.phase == ITEM::WAITS) {
            other.phase = ITEM::REFUSED;
            other.reason = of_others;
            run.deletion->done++;
            let_go(run, other.refers, other);
        }
    }
    through(run, at, reason);
}

NB_VOID stopped(RUN &run, size_t at) {
    run.item(at).phase = ITEM::STOPPED;
    for (size_t with = at + 1; with < run.item(at).end; with++) {
        if (run.item(with).stopper == static_cast<NB_LONG>(at)) {
            run.item(with).stopper = -1;
            consider(run, with);
        }
    }
    consider(run, at);
}

/* Verbs. */

NB_VOID completed(const VGA_PROCESS_STATE *work) {
    vga_verb_completed(work);
    auto *slot = static_cast<SLOT *>(nba_validate_handle(work->user_data));
    if (slot == nullptr) {
        return;
    }
    RUN &run = *slot->run;
    ITEM &item = run.item(slot->item);
    slot->busy = 0;
    run.in_flight--;
    /* Somebody else was faster. */
    const bool gone_before = work->vcb->primary_rc == NAP_PARAMETER_CHECK &&
                             work->vcb->secondary_rc == NAP_UNKNOWN_RESOURCE;
    const bool good = vga_verb_succeeded(work->vcb) != 0 || gone_before;
    const std::string reason = good ? "" : reason_of(*work->vcb);
    if (item.phase != ITEM::STOPPING) {
        through(run, slot->item, reason);
    } else if (good) {
        stopped(run, slot->item);
    } else {
        not_stopped(run, slot->item, reason);
    }
    go_on(run);
}

SLOT &free_slot(RUN &run) {
    for (SLOT &slot : run.slots) {
        if (slot.busy == 0) {
            return slot;
        }
    }
    return run.slots[0]; /* not while fewer are in flight than there are slots */
}

NB_USHORT issue_stop(const ITEM &item, NB_ULONG user_data) {
    const VGA_RESOURCE resource = {vga_deletable_row(item.kind).operable, find_known(item).record};
    return resource.record != nullptr &&
           vga_operate(resource, VGA_STOP_IMMEDIATE, user_data, completed) == 0;
}

NB_USHORT issue_change(const records::Schema &schema, const NB_UCHAR *entry, NB_ULONG target,
                       NB_ULONG user_data) {
    VGA_OWNED<NAP_VCB> verb(static_cast<NAP_VCB *>(calloc(1, schema.define_size)));
    if (!verb) {
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
        return 0;
    }
    records::make_define_block(schema, entry, reinterpret_cast<NB_UCHAR *>(verb.get()));
    return vga_issue_verb(target, std::move(verb), user_data, completed);
}

NB_USHORT issue_removal(const ITEM &item, NB_ULONG target, NB_ULONG user_data) {
    const records::Schema &schema = *schema_of(item);
    if (!item.part.empty()) {
        const std::vector<NB_UCHAR> entry = entry_without(item);
        if (vga_deletable_row(item.kind).last_takes_all == 0 ||
            records::item_count(schema.nested, entry.data()) != 0) {
            return issue_change(schema, entry.data(), target, user_data);
        }
    }
    auto verb = vga_new_verb<NAP_NAME_VERB>(schema.remove);
    if (!verb) {
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
        return 0;
    }
    *verb = records::make_name_block(schema, schema.remove, item.entry);
    return vga_issue_verb(target, std::move(verb), user_data, completed);
}

/* Sends the item's next verb, or finds that it needs none. */
NB_VOID send_next(RUN &run, size_t at) {
    ITEM &item = run.item(at);
    if (run.deletion->cancelled != 0) {
        through(run, at, vga_deletion_words(VGA_MSG_CANCELLED, item.name));
        item.phase = ITEM::CANCELLED;
        return;
    }
    SLOT &slot = free_slot(run);
    const NB_ULONG target = schema_of(item) != nullptr ? target_of(item) : 0;
    slot.item = at;
    if (!item.reason.empty()) {
        through(run, at, item.reason);
    } else if (schema_of(item) != nullptr && (target == 0 || gvga_closing != 0)) {
        through(run, at, vga_message(VGA_MSG_CONNECTION_LOST));
    } else if (item.phase == ITEM::WAITS && item.stops != 0) {
        item.phase = ITEM::STOPPING;
        slot.busy = issue_stop(item, slot.handle);
        if (slot.busy == 0) { /* it went down by itself */
            stopped(run, at);
        }
    } else if (has_verb(item) == 0 || is_there(item) == 0) {
        through(run, at, "");
    } else {
        item.phase = ITEM::DELETING;
        slot.busy = issue_removal(item, target, slot.handle);
    }
    run.in_flight += slot.busy;
}

NB_VOID finish(RUN &run) {
    run.told(run.user_data, *run.deletion, 1);
    for (SLOT &slot : run.slots) {
        nba_destroy_handle(slot.handle);
    }
    runs.remove_if([&run](const RUN &one) { return &one == &run; });
}

NB_VOID go_on(RUN &run) {
    if (run.going_on != 0) {
        return;
    }
    run.going_on = 1;
    while (!run.ready.empty() && gvga_exit_code == 0 &&
           (run.in_flight < most_in_flight || run.deletion->cancelled != 0)) {
        const size_t at = run.ready.front();
        run.ready.pop_front();
        send_next(run, at);
    }
    run.going_on = 0;
    if (run.in_flight == 0 && run.ready.empty()) {
        finish(run);
    } else {
        run.told(run.user_data, *run.deletion, 0);
    }
}

} // namespace

NB_VOID vga_run_deletion(std::unique_ptr<VGA_DELETION> plan, NB_ULONG user_data,
                         VGA_DELETION_TOLD told) {
    runs.push_back({.deletion = std::move(plan), .user_data = user_data, .told = told});
    RUN &run = runs.back();
    for (SLOT &slot : run.slots) {
        slot = {.handle = nba_create_handle(&slot), .run = &run};
    }
    VGA_DELETION &deletion = *run.deletion;
    deletion.number = ++last_number;
    for (const ITEM &item : deletion.items) {
        if (takes_part(run, item) != 0) {
            deletion.to_do++;
            for (const NB_LONG waiting : {item.owner, item.refers}) {
                if (waiting >= 0) {
                    run.item(static_cast<size_t>(waiting)).below++;
                }
            }
        }
    }
    for (size_t at = 0; at < deletion.items.size(); at++) {
        NB_LONG &after = run.item(at).after;
        while (after >= 0 && takes_part(run, run.item(static_cast<size_t>(after))) == 0) {
            after = run.item(static_cast<size_t>(after)).after;
        }
        consider(run, at);
    }
    go_on(run);
}

NB_VOID vga_cancel_deletion(NB_ULONG number) {
    for (RUN &run : runs) {
        if (run.deletion->number == number) {
            run.deletion->cancelled = 1;
            go_on(run);
            return;
        }
    }
}

NB_VOID vga_deletion_verb_purged(NB_USHORT opcode, NB_ULONG user_data) {
    for (RUN &run : runs) {
        for (const SLOT &slot : run.slots) {
            if (slot.busy != 0 && slot.handle == user_data) {
                NAP_VCB vcb = vga_purged_answer(opcode);
                const VGA_PROCESS_STATE work = {0, &vcb, user_data};
                completed(&work);
                return;
            }
        }
    }
}
