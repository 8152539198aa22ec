#include "handletable.h"
#include "nbbase.h"

#include <algorithm>
#include <new>
#include <utility>

namespace base {

namespace {

constexpr unsigned first_bits = 8;
constexpr unsigned most_bits = 31; // half of which is as many handles as are ever live at once

// Slots that a creation moves: the old table is empty long before the new one has to grow.
constexpr size_t moved_at_once = 16;

// In the old table a slot is not freed but spoiled, so that those behind it are still found: no
// handle is 0.
char spoiled_mark;
void *const spoiled = &spoiled_mark;

} // namespace

// The memory comes from the system when it is first touched, and so a growth costs little at once.
bool HandleSlots::allocate(unsigned bits) {
    auto *slots = static_cast<HandleSlot *>(calloc(size_t{1} << bits, sizeof(HandleSlot)));
    if (!slots) {
        return false;
    }
    slots_.reset(slots);
    bits_ = bits;
    return true;
}

// Values are consecutive, which this multiplication (2^32 divided by the golden ratio) spreads
// evenly.  The identity would make one long run, and deleting walks to the end of its run.
size_t HandleSlots::home(NB_ULONG handle) const {
    return static_cast<NB_ULONG>(handle * 2654435769U) >> (32 - bits_);
}

HandleSlot &HandleSlots::of(NB_ULONG handle) const {
    size_t at = home(handle);
    while (slots_[at].object && slots_[at].handle != handle) {
        at = (at + 1) & mask();
    }
    return slots_[at];
}

void HandleSlots::erase(HandleSlot &slot) {
    auto hole = static_cast<size_t>(&slot - slots_.get());
    for (size_t at = (hole + 1) & mask(); slots_[at].object; at = (at + 1) & mask()) {
        // An entry may move back into the hole unless its home lies behind the hole.
        const size_t way_from_home = (at - home(slots_[at].handle)) & mask();
        if (way_from_home >= ((at - hole) & mask())) {
            slots_[hole] = slots_[at];
            hole = at;
        }
    }
    slots_[hole] = {nullptr, 0};
}

bool HandleTable::clear() {
    old_.release();
    live_ = 0;
    return slots_.allocate(first_bits);
}

bool HandleTable::grow() {
    HandleSlots more;
    if (!more.allocate(slots_ ? slots_.bits() + 1 : first_bits)) {
        return false;
    }
    old_ = std::move(slots_);
    slots_ = std::move(more);
    moved_ = 0;
    return true;
}

void HandleTable::move_some() {
    const size_t end = std::min(moved_ + moved_at_once, old_.size());
    for (; moved_ < end; moved_++) {
        HandleSlot &slot = old_[moved_];
        if (slot.object && slot.object != spoiled) {
            slots_.of(slot.handle) = slot;
            slot = {spoiled, 0};
        }
    }
    if (moved_ == old_.size()) {
        old_.release();
    }
}

NB_ULONG HandleTable::create(void *object) {
    const bool full = (live_ + 1) * 2 > slots_.size();
    if (!object || (full && (slots_.bits() >= most_bits || !grow()))) {
        return 0;
    }
    move_some();
    while (next_ == 0 || find(next_)) {
        next_++;
    }
    slots_.of(next_) = {object, next_};
    live_++;
    return next_++;
}

void *HandleTable::find(NB_ULONG handle) const {
    if (!handle || !slots_) {
        return nullptr;
    }
    void *const object = slots_.of(handle).object;
    return object || !old_ ? object : old_.of(handle).object;
}

void HandleTable::destroy(NB_ULONG handle) {
    if (!find(handle)) {
        return;
    }
    HandleSlot &slot = slots_.of(handle);
    if (slot.object) {
        slots_.erase(slot);
    } else {
        old_.of(handle) = {spoiled, 0};
    }
    live_--;
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
