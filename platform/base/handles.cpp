#include "handletable.h"
#include "nbbase.h"

#include <new>

namespace base {

namespace {

constexpr unsigned first_bits = 8;
constexpr unsigned most_bits = 31; // half of which is as many handles as are ever live at once

} // namespace

bool HandleTable::allocate(unsigned bits) {
    std::unique_ptr<Slot[]> slots(new (std::nothrow) Slot[size_t{1} << bits]());
    if (!slots) {
        return false;
    }
    slots_ = std::move(slots);
    bits_ = bits;
    live_ = 0;
    return true;
}

bool HandleTable::clear() {
    return allocate(first_bits);
}

// Values are consecutive, which this multiplication (2^32 divided by the golden ratio) spreads
// evenly.  The identity would make one long run, and deleting walks to the end of its run.
size_t HandleTable::home(NB_ULONG handle) const {
    return static_cast<NB_ULONG>(handle * 2654435769U) >> (32 - bits_);
}

// Returns the slot that holds the handle, or the free slot where it would go.
size_t HandleTable::position(NB_ULONG handle) const {
    size_t at = home(handle);
    while (slots_[at].object && slots_[at].handle != handle) {
        at = (at + 1) & mask();
    }
    return at;
}

bool HandleTable::grow() {
    if (bits_ >= most_bits) {
        return false;
    }
    const size_t old_size = slots_ ? mask() + 1 : 0;
    std::unique_ptr<Slot[]> old = std::move(slots_);
    const size_t live = live_;
    if (!allocate(old ? bits_ + 1 : first_bits)) {
        slots_ = std::move(old);
        return false;
    }
    for (size_t at = 0; at < old_size; at++) {
        if (old[at].object) {
            slots_[position(old[at].handle)] = old[at];
        }
    }
    live_ = live;
    return true;
}

NB_ULONG HandleTable::create(void *object) {
    if (!object || ((!slots_ || (live_ + 1) * 2 > mask() + 1) && !grow())) {
        return 0;
    }
    size_t at = 0;
    do {
        if (next_ == 0) {
            next_++;
        }
        at = position(next_++);
    } while (slots_[at].object);
    const NB_ULONG handle = next_ - 1;
    slots_[at] = {object, handle};
    live_++;
    return handle;
}

void *HandleTable::find(NB_ULONG handle) const {
    return handle && slots_ ? slots_[position(handle)].object : nullptr;
}

void HandleTable::destroy(NB_ULONG handle) {
    if (!find(handle)) {
        return;
    }
    size_t hole = position(handle);
    for (size_t at = (hole + 1) & mask(); slots_[at].object; at = (at + 1) & mask()) {
        // An entry may move back into the hole unless its home lies behind the hole.
        const size_t way_from_home = (at - home(slots_[at].handle)) & mask();
        if (way_from_home >= ((at - hole) & mask())) {
            slots_[hole] = slots_[at];
            hole = at;
        }
    }
    slots_[hole] = {nullptr, 0};
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
