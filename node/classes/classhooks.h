/* What the hooks of several classes share: their sources are one a family. */
#ifndef CLASSHOOKS_H
#define CLASSHOOKS_H

#include "resourceclass.h"

namespace node {

inline bool same_name(const NB_UCHAR *left, const NB_UCHAR *right, size_t width) {
    return memcmp(left, right, width) == 0;
}

inline bool is_blank8(const NB_UCHAR *ebcdic) {
    return is_blank(KeyKind::Ebcdic, ebcdic, 8);
}

/* For classes without states of their own: nothing has to wait. */
inline bool never_busy(const Engine &, const Resource &) {
    return false;
}

/* True when the 8-byte EBCDIC name is that of an LU of type 0 to 3 or of a pool of them. */
bool is_lu_or_pool(const Engine &engine, const NB_UCHAR *name);

/* True when a TN3270 record or a downstream LU names that LU or pool. */
bool lu_is_named(const Engine &engine, const NB_UCHAR *name);

/* One address of a PU serves one LU; `old` is the LU that may have it. */
bool address_taken(const Engine &engine, const NB_UCHAR *pu_name, NB_UCHAR address,
                   const Resource *old);

/* An LU of type 0 to 3 enters its pool, leaves it, and shows its state in it (pools.cpp). */
void join_pool(Engine &engine, Resource &resource, bool added);
void leave_pool(Engine &engine, Resource &resource);
void show_in_pool(Engine &engine, const Resource &resource);

} // namespace node

#endif
