#include "nodeclass.h"

#include "nbbase.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace node {

namespace {

using ClassTable = std::array<ClassRow, CLASS_COUNT>;

ClassTable make_table() {
    ClassTable table;
    add_connectivity_rows(table.data());
    add_lu_rows(table.data());
    add_session_rows(table.data());
    add_service_rows(table.data());
    add_domain_rows(table.data());
    for (NB_UCHAR id = 0; id < CLASS_COUNT; id++) {
        NB_ASSERT(table[id].id == id);
    }
    return table;
}

const ClassTable &class_table() {
    static const ClassTable table = make_table();
    return table;
}

} // namespace

const ClassRow &class_row(ClassId id) {
    return class_table()[id];
}

const ClassRow *class_by_list(NB_USHORT opcode, const ListRow **list) {
    for (const ClassRow &row : class_table()) {
        for (const ListRow &shown : row.lists) {
            if (shown.list == opcode) {
                *list = &shown;
                return &row;
            }
        }
    }
    return nullptr;
}

const ClassRow *class_by_verb(NB_USHORT opcode) {
    if (opcode == 0) {
        return nullptr;
    }
    for (const ClassRow &row : class_table()) {
        const NB_USHORT verbs[] = {row.define, row.remove, row.start, row.stop};
        if (std::find(std::begin(verbs), std::end(verbs), opcode) != std::end(verbs)) {
            return &row;
        }
    }
    return nullptr;
}

const ClassRow *class_by_name(std::string_view name) {
    for (const ClassRow &row : class_table()) {
        if (name == row.name) {
            return &row;
        }
    }
    return nullptr;
}

const ListRow &shown_by(const ClassRow &row, const NB_UCHAR *entry) {
    for (const ListRow &list : row.lists) {
        if (list.select_offset != 0 && entry[list.select_offset] == list.select_value) {
            return list;
        }
    }
    return row.lists[0];
}

void set_entry_length(const ClassRow &row, NB_UCHAR *entry) {
    const NestedRow &nested = row.nested;
    size_t length = row.overlay_size();
    if (nested.name != nullptr) {
        const NB_ULONG count = get_number(entry + nested.count_offset, nested.count_width);
        const size_t end = nested.offset + count * nested.size;
        NB_ASSERT(count <= nested.most);
        memset(entry + end, 0, nested.offset + nested.most * nested.size - end);
        length = nested.cuts ? (end + 3) & ~size_t{3} : length;
    }
    put_number(entry, 2, static_cast<NB_ULONG>(length));
}

} // namespace node
