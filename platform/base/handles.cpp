#include "handletable.h"
#include "nbbase.h"

#include <new>
#include <utility>

namespace base {

namespace {

constexpr unsigned first_bits = 8;

} // namespace

bool HandleSlots::allocate(unsigned bits) {
    auto *slots = static_cast<HandleSlot *>(calloc(size_t{1} << bits, sizeof(HandleSlot)));
    if (!slots) {
        return false;
    }
    slots_.reset(slots);
    bits_ = bits;
    return true;
}

// Numbers are consecutive, which this multiplication (2^32 divided by the golden ratio) spreads
// evenly.  The identity would make one long run, and deleting walks to the end of its run.
size_t HandleSlots::home(NB_ULONG number) const {
    return static_cast<NB_ULONG>(number * 2654435769U) >> (32 - bits_);
}

HandleSlot &HandleSlots::of(NB_ULONG number) const {
    size_t at = home(number);
    while (slots_[at].block && slots_[at].number != number) {
        at = (at + 1) & mask();
    }
    return slots_[at];
}

void HandleSlots::erase(HandleSlot &slot) {
    auto hole = static_cast<size_t>(&slot - slots_.get());
    for (size_t at = (hole + 1) & mask(); slots_[at].block; at = (at + 1) & mask()) {
        // An entry may move back into the hole unless its home lies behind the hole.
        const size_t way_from_home = (at - home(slots_[at].number)) & mask();
        if (way_from_home >= ((at - hole) & mask())) {
            slots_[hole] = slots_[at];
            hole = at;
        }
    }
    slots_[hole] = {nullptr, 0};
}

void HandleTable::free_blocks() {
    for (size_t at = 0; at < slots_.size(); at++) {
        free(slots_[at].block);
        slots_[at].block = nullptr;
    }
    blocks_ = live_ = 0;
}

bool HandleTable::clear() {
    free_blocks();
    return slots_.allocate(first_bits);
}

bool HandleTable::grow() {
    HandleSlots more;
    if (!more.allocate(slots_ ? slots_.bits() + 1 : first_bits)) {
        return false;
    }
    for (size_t at = 0; at < slots_.size(); at++) {
        if (slots_[at].block) {
            more.of(slots_[at].number) = slots_[at];
        }
    }
    slots_ = std::move(more);
    return true;
}

// Returns null when there is no memory.
HandleBlock *HandleTable::need_block(NB_ULONG number) {
    if ((blocks_ + 1) * 2 > slots_.size() && !grow()) {
        return nullptr;
    }
    HandleSlot &slot = slots_.of(number);
    if (!slot.block) {
        slot = {static_cast<HandleBlock *>(calloc(1, sizeof(HandleBlock))), number};
        blocks_ += slot.block ? 1 : 0;
    }
    return slot.block;
}

NB_ULONG HandleTable::create(void *object) {
    if (!object || live_ == most_handles) {
        return 0;
    }
    while (next_ == 0 || find(next_)) {
        next_++;
    }
    HandleBlock *const block = need_block(next_ / handles_in_block);
    if (!block) {
        return 0;
    }
    block->objects[next_ % handles_in_block] = object;
    block->live++;
    live_++;
    return next_++;
}

void *HandleTable::find(NB_ULONG handle) const {
    const HandleBlock *const block = slots_ ? slots_.of(handle / handles_in_block).block : nullptr;
    return block ? block->objects[handle % handles_in_block] : nullptr;
}

void HandleTable::destroy(NB_ULONG handle) {
    if (!find(handle)) {
        return;
    }
    HandleSlot &slot = slots_.of(handle / handles_in_block);
    slot.block->objects[handle % handles_in_block] = nullptr;
    live_--;
    if (--slot.block->live == 0) {
        free(slot.block);
        slots_.erase(slot);
        blocks_--;
    }
}

namespace {

// Never destroyed: handles are still validated while the process ends.
HandleTable &table() {
    alignas(HandleTable) static unsigned char room[sizeof(HandleTable)];
    static HandleTable *const it = new (room) HandleTable;
    return *it;
}

} // namespace

} // namespace base

NB_USHORT nba_hm_initialise(NB_VOID) {
    return base::table().clear() ? 1 : 0;
}

NB_ULONG nba_create_handle(NB_VOID *object) {
    return base::table().create(object);
}

NB_VOID *nba_validate_handle(NB_ULONG handle) {
    return base::table().find(handle);
}

NB_VOID nba_destroy_handle(NB_ULONG handle) {
    base::table().destroy(handle);
}
