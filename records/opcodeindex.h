/* Rows of a constant table by opcode: a sorted array that the compiler makes, searched by halves.
 *
 *   constexpr OpcodeIndex<VGA_LIST, 41> by_list(lists, [](const VGA_LIST &list) { ... });
 *   const VGA_LIST *list = by_list.find(NAP_QUERY_PORT);
 */
#ifndef OPCODEINDEX_H
#define OPCODEINDEX_H

#include "nbtypes.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace records {

/* `Size` is the number of opcodes, those that are 0 included. */
template <class Row, size_t Size> class OpcodeIndex {
public:
    /* Of rows, or of pointers to rows.  `opcodes` returns a std::array of a row's opcodes; 0 stands
     * for none.  REQUIRES: a row for each opcode at most (an error of the compiler). */
    template <class Rows, class Opcodes> constexpr OpcodeIndex(const Rows &rows, Opcodes opcodes) {
        size_t count = 0;
        for (const auto &each : rows) {
            const Row *row = pointer(each);
            for (const NB_USHORT opcode : opcodes(*row)) {
                entries_.at(count++) = {opcode, row};
            }
        }
        std::sort(entries_.begin(), entries_.end(), before);
        for (size_t at = 1; at < Size; at++) {
            if (entries_[at].opcode != 0 && entries_[at].opcode == entries_[at - 1].opcode) {
                throw "two rows have one opcode";
            }
        }
    }

    /* The row with that opcode; null when there is none. */
    constexpr const Row *find(NB_USHORT opcode) const {
        const auto found =
            std::lower_bound(entries_.begin(), entries_.end(), Entry{opcode, nullptr}, before);
        return opcode != 0 && found != entries_.end() && found->opcode == opcode ? found->row
                                                                                 : nullptr;
    }

private:
    struct Entry {
        NB_USHORT opcode = 0;
        const Row *row = nullptr;
    };
    static constexpr const Row *pointer(const Row &row) { return &row; }
    static constexpr const Row *pointer(const Row *row) { return row; }
    static constexpr bool before(const Entry &left, const Entry &right) {
        return left.opcode < right.opcode;
    }

    std::array<Entry, Size> entries_ = {};
};

} // namespace records

#endif
