/* An index in which several records may have one key: names that pass from one resource to another
 * while lists are read, and names that users choose.
 *
 * The record that came last stands in the index, since what was heard last is what is so.  The
 * others of its key wait with it in a ring; when it leaves, the last of them takes its place.  All
 * records of an index hold the link at the same place. */
#ifndef SHAREDINDEX_H
#define SHAREDINDEX_H

#include "ntlavl.h"

struct VGA_SHARED_LINK {
    AVL_NODE node;                    /* in the index while the record stands there */
    VGA_SHARED_LINK *next, *previous; /* the ring of its key; null: not entered */
};

/* Enters a link whose node was made ready with AVL_INIT_NODE.  REQUIRES: it is not entered. */
NB_VOID vga_enter_shared(AVL_TREE *tree, VGA_SHARED_LINK *link);

/* Takes it out of index and ring, whether it stands or waits.  REQUIRES: it is entered there. */
NB_VOID vga_leave_shared(AVL_TREE *tree, VGA_SHARED_LINK *link);

/* Calls visit(record) for the record that stands under the key and those that wait with it, until
 * one returns 1; returns that, or null. */
template <class Record, class Visit>
Record *vga_find_shared(const AVL_TREE &tree, VGA_SHARED_LINK Record::*link, const NB_VOID *key,
                        Visit visit) {
    auto *first = static_cast<Record *>(ntl_avl_find(&tree, key));
    Record *record = first;
    while (record != nullptr && !visit(*record)) {
        record = static_cast<Record *>((record->*link).next->node.data);
        record = record != first ? record : nullptr;
    }
    return record;
}

#endif
