/* Secrets that are only compared (FIELD_COMPARED): what is kept of them is a salted hash.
 *
 * The hash is in the store alone.  In memory the field holds a mark, which stands for "one is set"
 * and which nobody can type: it is made anew in each process.  A hash takes about 6 ms and 8 MB
 * here: a verb that brings one holds up the others for that long. */
#ifndef SECRETHASH_H
#define SECRETHASH_H

#include "resourceclass.h"

#include <string>

namespace node {

/* `at` is the field's first byte in these. */
void put_mark(const FieldRow &field, NB_UCHAR *at);
bool is_mark(const FieldRow &field, const NB_UCHAR *at);

/* Hashes what the field holds; "" when there is no memory for that. */
std::string hash_secret(const FieldRow &field, const NB_UCHAR *at);

/* True when the field holds what the hash was made of. */
bool matches_hash(const std::string &hash, const FieldRow &field, const NB_UCHAR *at);

/* True when a field of the record holds a secret that is to be hashed. */
bool brings_secret(FieldTable fields, const NB_UCHAR *record);

/* Puts marks in the place of such secrets: for a record that was stored. */
void mark_secrets(FieldTable fields, NB_UCHAR *record);

} // namespace node

#endif
