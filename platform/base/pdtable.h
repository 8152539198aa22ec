/* What the log's identifiers mean: one row each, with the names of the values that its records
 * carry and, where a detail number has a meaning of its own, that.  A new identifier is a new row.
 */
#ifndef PDTABLE_H
#define PDTABLE_H

#include "nbtypes.h"

#include <cstddef>

namespace base {

/* How a number is explained beside its digits. */
enum class PdDecode { none, opcode, primary_rc, secondary_rc };

inline constexpr size_t pd_most_values = 4;

struct PdValue {
    const char *name = nullptr;
    PdDecode decode = PdDecode::none;
};

struct PdRow {
    NB_ULONG identifier;
    const char *meaning;
    PdValue values[pd_most_values];
    /* Writes at most `size` bytes of facts that the library itself knows (files and folders that
     * were tried), NUL-terminated; null: none. */
    void (*facts)(char *text, size_t size) = nullptr;
};

/* Returns the row of an identifier; one with a general meaning and no names for an unknown one. */
const PdRow &pd_find(NB_ULONG identifier);

/* Returns what a detail of an identifier means, which is said instead of the row's meaning; null
 * for a detail without a meaning of its own. */
const char *pd_detail(NB_ULONG identifier, NB_USHORT detail);

/* Returns the name of the number, or null when it has none. */
const char *pd_explain(PdDecode decode, NB_ULONG number);

} // namespace base

#endif
