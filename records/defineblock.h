/* The blocks that define and name a resource, and the entry that a define block asks for: for
 * whoever issues a define verb, carries it out, or is told that it was carried out.
 *
 * Entries have schema.overlay_size() bytes, define blocks schema.define_size, all the caller's. */
#ifndef DEFINEBLOCK_H
#define DEFINEBLOCK_H

#include "schema.h"

namespace records {

/* Puts the definition of an entry into a define block; all else stays. */
void put_definition(const Schema &schema, const NB_UCHAR *entry, NB_UCHAR *block);

/* The block that defines what the entry says.  REQUIRES: schema.define is not 0. */
void make_define_block(const Schema &schema, const NB_UCHAR *entry, NB_UCHAR *block);

/* The block of a verb that only names the resource: schema.remove, start or stop. */
NAP_NAME_VERB make_name_block(const Schema &schema, NB_USHORT opcode, const NB_UCHAR *entry);

/* Takes the key of a define or name block into an entry, its names tidied: enough to look for an
 * old one. */
void take_key(const Schema &schema, const NB_UCHAR *block, NB_UCHAR *entry);

/* The entry that a define block of `length` bytes makes of the old one (null: of nothing).  What
 * the block does not carry, the status among it, and secrets that it leaves blank are as they were.
 * Returns false, with nothing done, for a block that is too short or says that it
 * has more items than there may be.  The fields themselves are not checked. */
bool make_entry(const Schema &schema, const NB_UCHAR *block, size_t length, const NB_UCHAR *old,
                NB_UCHAR *entry);

} // namespace records

#endif
