/* The table behind the handle manager: 32-bit values that stand for pointers.
 *
 * Values are given out in ascending order and wrap around past 0, so a value comes back only after
 * all others were used; a value that is still live is skipped.  Open addressing with linear
 * probing, at most half full, and deletion by moving entries back, so a look-up costs the same
 * after any number of creations.  A table that grows moves a few entries with each creation, so no
 * single one takes long.  OWNS: its slots, not the objects. */
#ifndef HANDLETABLE_H
#define HANDLETABLE_H

#include "nbtypes.h"

#include <cstdlib>
#include <memory>

namespace base {

struct HandleSlot {
    void *object; // null: the slot is free
    NB_ULONG handle;
};

/* Slots for a power of two of handles. */
class HandleSlots {
public:
    /* Makes 2^bits free slots.  Returns whether there is memory; without it nothing changes. */
    bool allocate(unsigned bits);
    void release() { slots_.reset(); }

    explicit operator bool() const { return slots_ != nullptr; }
    unsigned bits() const { return bits_; }
    size_t size() const { return slots_ ? size_t{1} << bits_ : 0; }
    HandleSlot &operator[](size_t at) const { return slots_[at]; }

    /* The slot that holds the handle, or the free slot where it would go.  REQUIRES: a free slot.
     */
    HandleSlot &of(NB_ULONG handle) const;

    /* Frees a slot that is taken, and moves back what stands behind it for want of room. */
    void erase(HandleSlot &slot);

private:
    struct Free {
        void operator()(HandleSlot *slots) const { free(slots); }
    };

    size_t mask() const { return (size_t{1} << bits_) - 1; }
    size_t home(NB_ULONG handle) const;

    std::unique_ptr<HandleSlot[], Free> slots_;
    unsigned bits_ = 0;
};

class HandleTable {
public:
    /* `first` is the value to begin with. */
    explicit HandleTable(NB_ULONG first = 1) : next_(first) {}

    /* Forgets every live handle; values go on from where they were.  Returns whether there is
     * memory for a first handle. */
    bool clear();

    /* Returns a new value, never 0; 0 for a null object or when there is no memory. */
    NB_ULONG create(void *object);

    /* Returns the object, or null for a value that is not live. */
    void *find(NB_ULONG handle) const;

    /* Ends a handle; a value that is not live is ignored. */
    void destroy(NB_ULONG handle);

    size_t live() const { return live_; }

private:
    bool grow();
    void move_some();

    HandleSlots slots_;
    HandleSlots old_;  // before the last growth; what is left in it is still to be moved
    size_t moved_ = 0; // slots of it that are done with
    size_t live_ = 0;  // in both
    NB_ULONG next_;
};

} // namespace base

#endif
