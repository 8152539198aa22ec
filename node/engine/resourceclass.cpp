#include "resourceclass.h"

#include "nbbase.h"
#include "opcodeindex.h"

#include <algorithm>
#include <array>

namespace node {

namespace {

using ClassTable = std::array<const ClassRow *, CLASS_COUNT>;

ClassTable make_table() {
    ClassTable table = {};
    for (const auto family : {connectivity_classes(), lu_classes(), pool_classes(),
                              session_classes(), service_classes(), domain_classes()}) {
        for (const ClassRow &row : family) {
            table[row.id] = &row;
        }
    }
    return table;
}

const ClassTable &class_table() {
    static const ClassTable table = make_table();
    return table;
}

} // namespace

const ClassRow &class_row(ClassId id) {
    return *class_table()[id];
}

const ClassRow *class_by_list(NB_USHORT opcode, const ListRow **list) {
    static const records::OpcodeIndex<ClassRow, 2 * CLASS_COUNT> index(
        class_table(), [](const ClassRow &row) {
            return std::array{row.schema->lists[0].list, row.schema->lists[1].list};
        });
    const ClassRow *row = index.find(opcode);
    if (row != nullptr) {
        const auto &lists = row->schema->lists;
        *list = &lists[lists[0].list == opcode ? 0 : 1];
    }
    return row;
}

const ClassRow *class_by_verb(NB_USHORT opcode) {
    static const records::OpcodeIndex<ClassRow, 4 * CLASS_COUNT> index(
        class_table(), [](const ClassRow &row) {
            const Schema &of = *row.schema;
            return std::array{of.define, of.remove, of.shares_verbs ? NB_USHORT{0} : of.start,
                              of.shares_verbs ? NB_USHORT{0} : of.stop};
        });
    return index.find(opcode);
}

const ClassRow *class_by_name(std::string_view name) {
    const ClassTable &table = class_table();
    const auto *found = std::find_if(table.begin(), table.end(), [name](const ClassRow *row) {
        return name == row->schema->name;
    });
    return found == table.end() ? nullptr : *found;
}

NB_ULONG name_hash(const Resource &resource) {
    NB_ULONG hash = 2166136261U;
    for (size_t at = 0; at < resource.row->schema->key_size(); at++) {
        hash = (hash ^ resource.entry[KEY_OFFSET + at]) * 16777619U;
    }
    return hash;
}

const ListRow &shown_by(const ClassRow &row, const NB_UCHAR *entry) {
    for (const ListRow &list : row.schema->lists) {
        if (list.selector != 0 && entry[list.selector] == list.selects) {
            return list;
        }
    }
    return row.schema->lists[0];
}

} // namespace node
