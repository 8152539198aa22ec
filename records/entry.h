/* List entries as a whole: their items, their length and what they may hold. */
#ifndef ENTRY_H
#define ENTRY_H

#include "fieldtext.h"
#include "settings.h"

#include <algorithm>
#include <vector>

namespace records {

/* Calls action(field table, start of its record) for the entry and for each of its items. */
template <class Action> void for_tables(const Schema &schema, NB_UCHAR *entry, Action action) {
    const Nested &nested = schema.nested;
    action(schema.fields, entry);
    if (nested.name != nullptr) {
        const NB_ULONG count = get_number(entry + nested.count.offset, nested.count.width);
        for (NB_ULONG at = 0; at < std::min(count, nested.most); at++) {
            action(nested.fields, entry + nested.offset + at * nested.size);
        }
    }
}

/* Writes the length that the entry has in a list into its first two bytes, and clears what stands
 * behind its last item.  REQUIRES: no more items than there may be. */
void set_entry_length(const Schema &schema, NB_UCHAR *entry);

/* The block of settings with their initial values and the verb that asks for them. */
std::vector<NB_UCHAR> initial_block(const Settings &row);

/* Checks the number of items and every field of the entry and of its items, and tidies the fields
 * up to the first that is bad.  Returns 0, NAP_INVALID_NAME or NAP_INVALID_VALUE. */
NB_ULONG check_fields(const Schema &schema, NB_UCHAR *entry);

} // namespace records

#endif
