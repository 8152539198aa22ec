#include "verbtable.h"

#include "nof.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace nof {

namespace {

struct Description {
    NB_USHORT opcode;
    NB_UCHAR kind;
    NB_UCHAR flags;
    NB_ULONG block_size;
    NB_UCHAR reserved[2];
    NB_UCHAR buffers;
    NB_UCHAR reserved2[5];
};

static_assert(sizeof(Description) == 16);
static_assert(offsetof(Description, block_size) == 4);
static_assert(offsetof(Description, buffers) == VNV_BUFFER_BYTE);

struct Entry {
    const NAP_VERB *verb;
    Description description;
};

bool before(const Entry &entry, NB_USHORT opcode) {
    return entry.description.opcode < opcode;
}

using Table = std::array<Entry, NAP_VERB_COUNT>;

Table sorted() {
    Table table;
    std::transform(std::begin(gnap_verbs), std::end(gnap_verbs), table.begin(),
                   [](const NAP_VERB &verb) {
                       const bool buffer = verb.kind == NAP_KIND_LIST;
                       return Entry{&verb,
                                    {verb.opcode,
                                     verb.kind,
                                     verb.flags,
                                     verb.block_size,
                                     {},
                                     static_cast<NB_UCHAR>(buffer ? VNV_HAS_BUFFER : 0),
                                     {}}};
                   });
    std::sort(table.begin(), table.end(), [](const Entry &left, const Entry &right) {
        return left.description.opcode < right.description.opcode;
    });
    return table;
}

const Entry *find_entry(NB_USHORT opcode) {
    static const Table table = sorted();
    const auto at = std::lower_bound(table.begin(), table.end(), opcode, before);
    return at != table.end() && at->description.opcode == opcode ? &*at : nullptr;
}

} // namespace

const NAP_VERB *find_verb(NB_USHORT opcode) {
    const Entry *entry = find_entry(opcode);
    return entry ? entry->verb : nullptr;
}

} // namespace nof

const NB_UCHAR *vnv_verb_search(NB_USHORT opcode, NB_UCHAR format, NB_USHORT) {
    const nof::Entry *entry = format == 0 ? nof::find_entry(opcode) : nullptr;
    return entry ? reinterpret_cast<const NB_UCHAR *>(&entry->description) : nullptr;
}
