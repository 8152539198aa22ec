/* The items within an entry, as the sessions of a user: counted, added, changed and taken out.
 *
 * `entry` is plain bytes that have room for all items that there may be (entry_size of the schema),
 * though a list may end behind the last one; its own length (set_entry_length) is not kept.  Items
 * are numbered from 0.  The fewest that there may be are not looked at here: whoever has to have
 * one may take it out before adding another; check_fields says so of the whole entry. */
#ifndef NESTEDITEMS_H
#define NESTEDITEMS_H

#include "schema.h"

#include <string>

namespace records {

/* What the entry counts, but no more than it has room for. */
NB_ULONG item_count(const Nested &nested, const NB_UCHAR *entry);

/* The item's first byte; null: there is none of that number. */
NB_UCHAR *item_at(const Nested &nested, NB_UCHAR *entry, NB_ULONG number);
const NB_UCHAR *item_at(const Nested &nested, const NB_UCHAR *entry, NB_ULONG number);

/* Adds one behind the last, a copy of `item` or, for null, one with the initial values.  Returns
 * it; null when there are as many as there may be, and nothing is changed. */
NB_UCHAR *append_item(const Nested &nested, NB_UCHAR *entry, const NB_UCHAR *item);

/* Takes one out and moves up those behind it.  False: there is none of that number. */
bool remove_item(const Nested &nested, NB_UCHAR *entry, NB_ULONG number);

/* A field of an item as format_field has it; "" when there is no such item. */
std::string item_text(const Nested &nested, const NB_UCHAR *entry, NB_ULONG number,
                      const FieldRow &row);

} // namespace records

#endif
