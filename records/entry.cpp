#include "entry.h"

#include "nbbase.h"

#include <cstring>

namespace records {

void set_entry_length(const Schema &schema, NB_UCHAR *entry) {
    const Nested &nested = schema.nested;
    size_t length = schema.overlay_size();
    if (nested.name != nullptr) {
        const NB_ULONG count = get_number(entry + nested.count.offset, nested.count.width);
        const size_t end = nested.offset + count * nested.size;
        NB_ASSERT(count <= nested.most);
        memset(entry + end, 0, nested.offset + nested.most * nested.size - end);
        length = nested.cuts ? (end + 3) & ~size_t{3} : length;
    }
    put_number(entry, 2, static_cast<NB_ULONG>(length));
}

NB_ULONG check_fields(const Schema &schema, NB_UCHAR *entry) {
    const Nested &nested = schema.nested;
    NB_ULONG wrong = 0;
    if (nested.name != nullptr) {
        const NB_ULONG count = get_number(entry + nested.count.offset, nested.count.width);
        if (count < nested.least || count > nested.most) {
            return NAP_INVALID_VALUE;
        }
    }
    for_tables(schema, entry, [&wrong](FieldTable table, NB_UCHAR *record) {
        for (const FieldRow &row : table) {
            if (wrong == 0) {
                wrong = check_field(row, record);
                tidy_field(row, record);
            }
        }
    });
    return wrong;
}

std::vector<NB_UCHAR> initial_block(const Settings &row) {
    std::vector<NB_UCHAR> block(row.block_size);
    put_number(block.data(), 2, row.query);
    set_initial_fields(row.fields, block.data());
    return block;
}

} // namespace records
