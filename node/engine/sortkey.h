/* Keys of resources, folded so that comparing them is comparing numbers.
 *
 * A list is kept in one order, the order in which the administration program keeps its own indexes:
 * local names compare without case, EBCDIC names by their characters in the local code page,
 * numbers by value, composite keys part by part.  Folding turns the bytes of a key one by one into
 * bytes whose plain order is that order; so the leading bytes of a folded key are the folded
 * leading bytes, which is what the owner filter of a list relies on. */
#ifndef SORTKEY_H
#define SORTKEY_H

#include "schema.h"

#include <cstddef>
#include <memory>

namespace node {

constexpr size_t KEY_WORDS = NAP_MAX_KEY / 8;

/* A folded key: how many words follow, then big-endian groups of 8 bytes, zero behind the end.
 * Where many are kept, only the words in use are: a pointer to the count is a whole key. */
struct SortKey {
    uint64_t word[1 + KEY_WORDS];
};

/* Folds key_length(parts) bytes. */
SortKey fold_key(const records::KeyParts &parts, const NB_UCHAR *raw);

/* Cuts a folded key after `bytes` bytes: the least key that begins with them. */
SortKey cut_key(const SortKey &key, size_t bytes);

/* Keys as they are kept: a copy with the words in use, and back. */
std::unique_ptr<uint64_t[]> keep_key(const SortKey &key);
SortKey kept_key(const uint64_t *key);

/* True when the first `bytes` bytes of both are the same. */
bool same_leading(const uint64_t *left, const uint64_t *right, size_t bytes);

/* The comparison of an AVL_TREE whose keys are keys of one class. */
NB_INT compare_sort_keys(const NB_VOID *left, const NB_VOID *right);

} // namespace node

#endif
