/* The descriptions of verbs that vnv_verb_search hands out: constants of the process. */
#include "nof.h"
#include "nofverbs.h"

#include <array>

namespace nof {

namespace {

struct Description {
    NB_USHORT opcode;
    NB_UCHAR kind;
    NB_UCHAR changes;
    NB_ULONG block_size;
    NB_UCHAR reserved[2];
    NB_UCHAR buffers;
    NB_UCHAR reserved2[5];
};

static_assert(sizeof(Description) == 16);
static_assert(offsetof(Description, block_size) == 4);
static_assert(offsetof(Description, buffers) == VNV_BUFFER_BYTE);

// In the order of the rows.
const std::array<Description, NAP_VERB_COUNT> descriptions = [] {
    std::array<Description, NAP_VERB_COUNT> all = {};
    for (size_t row = 0; row < all.size(); row++) {
        const NAP_VERB &verb = gnap_verbs[row];
        all[row].opcode = verb.opcode;
        all[row].kind = verb.kind;
        all[row].changes = verb.changes;
        all[row].block_size = verb.block_size;
        all[row].buffers = verb.kind == NAP_KIND_LIST ? VNV_HAS_BUFFER : 0;
    }
    return all;
}();

} // namespace

} // namespace nof

const NB_UCHAR *vnv_verb_search(NB_USHORT opcode, NB_UCHAR format, NB_USHORT) {
    const NAP_VERB *verb = format == 0 ? nap_find_verb(opcode) : nullptr;
    return verb ? reinterpret_cast<const NB_UCHAR *>(&nof::descriptions[verb - gnap_verbs])
                : nullptr;
}
