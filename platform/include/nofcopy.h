/* Reading packed records.  A block or an entry stands at any address, and a reference to a member
 * of a packed record must not be taken: it is copied out first. */
#ifndef NOFCOPY_H
#define NOFCOPY_H

#include <cstring>

/* The record that begins at `bytes`, which need not be aligned.
 * REQUIRES: sizeof(Record) bytes are there. */
template <class Record> Record nap_copy(const void *bytes) {
    Record record;
    memcpy(&record, bytes, sizeof(record));
    return record;
}

#endif
