/* The table behind the handle manager: 32-bit values that stand for pointers.
 *
 * Values are given out in ascending order and wrap around past 0, so a value comes back only after
 * all others were used; a value that is still live is skipped.  Neighbours in value stand in one
 * block, so that handles which are made and ended together cost no look-up of their own in memory.
 * Blocks are found by open addressing with linear probing, at most half full, and go with their
 * last handle.  OWNS: its blocks, not the objects. */
#ifndef HANDLETABLE_H
#define HANDLETABLE_H

#include "nbtypes.h"

#include <cstdlib>
#include <memory>

namespace base {

constexpr NB_ULONG handles_in_block = 64;

struct HandleBlock {
    size_t live;
    void *objects[handles_in_block]; // null: the value is free
};

struct HandleSlot {
    HandleBlock *block; // null: the slot is free
    NB_ULONG number;    // of the block
};

/* Slots for a power of two of blocks. */
class HandleSlots {
public:
    /* Makes 2^bits free slots.  Returns whether there is memory; without it nothing changes. */
    bool allocate(unsigned bits);

    explicit operator bool() const { return slots_ != nullptr; }
    unsigned bits() const { return bits_; }
    size_t size() const { return slots_ ? size_t{1} << bits_ : 0; }
    HandleSlot &operator[](size_t at) const { return slots_[at]; }

    /* The slot that holds the block, or the free slot where it would go.  REQUIRES: a free slot. */
    HandleSlot &of(NB_ULONG number) const;

    /* Frees a slot that is taken, and moves back what stands behind it for want of room. */
    void erase(HandleSlot &slot);

private:
    struct Free {
        void operator()(HandleSlot *slots) const { free(slots); }
    };

    size_t mask() const { return (size_t{1} << bits_) - 1; }
    size_t home(NB_ULONG number) const;

    std::unique_ptr<HandleSlot[], Free> slots_;
    unsigned bits_ = 0;
};

class HandleTable {
public:
    /* `first` is the value to begin with. */
    explicit HandleTable(NB_ULONG first = 1) : next_(first) {}
    HandleTable(HandleTable &&) = default;
    ~HandleTable() { free_blocks(); }

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
    HandleBlock *need_block(NB_ULONG number);
    void free_blocks();

    static constexpr NB_ULONG most_handles = ~NB_ULONG{0}; // 0 is none

    HandleSlots slots_;
    size_t blocks_ = 0;
    size_t live_ = 0;
    NB_ULONG next_;
};

} // namespace base

#endif
