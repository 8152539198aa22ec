/* Finding the resources of a class whose reference names a given resource. */
#ifndef REFERRERS_H
#define REFERRERS_H

#include "resourcetable.h"

#include <cstring>
#include <vector>

namespace node {

/* All resources of `table` that hold `name` (`width` bytes) at the reference's offset.  Where the
 * reference leads the key this is a range of the table, where it names the owner one of an index,
 * else a walk through it. */
inline std::vector<Resource *> find_referrers(const ResourceTable &table, const RefRow &ref,
                                              const NB_UCHAR *name, size_t width) {
    std::vector<Resource *> found;
    if (ref.by->offset == KEY_OFFSET) {
        Resource *at = table.first_with(name, width);
        for (; at != nullptr; at = ResourceTable::next_with(*at, width)) {
            found.push_back(at);
        }
        return found;
    }
    if (table.is_owner(ref.by)) {
        return table.owned_by(name);
    }
    for (Resource *at = table.first(); at != nullptr; at = ResourceTable::next(*at)) {
        if (memcmp(at->entry.get() + ref.by->offset, name, width) == 0) {
            found.push_back(at);
        }
    }
    return found;
}

} // namespace node

#endif
