/* The table behind the handle manager: 32-bit values that stand for pointers.
 *
 * Values are given out in ascending order and wrap around past 0, so a value comes back only after
 * all others were used; a value that is still live is skipped.  Open addressing with linear
 * probing, at most half full, and deletion by moving entries back: no tombstones, so a look-up
 * costs the same after any number of creations.  OWNS: its slots, not the objects. */
#ifndef HANDLETABLE_H
#define HANDLETABLE_H

#include "nbtypes.h"

#include <memory>

namespace base {

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
    struct Slot {
        void *object; // null: the slot is free
        NB_ULONG handle;
    };

    bool allocate(unsigned bits);
    bool grow();
    size_t home(NB_ULONG handle) const;
    size_t position(NB_ULONG handle) const;
    size_t mask() const { return (size_t{1} << bits_) - 1; }

    std::unique_ptr<Slot[]> slots_;
    unsigned bits_ = 0;
    size_t live_ = 0;
    NB_ULONG next_;
};

} // namespace base

#endif
