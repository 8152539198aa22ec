#include "schemas.h"

#include "opcodeindex.h"

#include <algorithm>

namespace records {

namespace {

constexpr OpcodeIndex<Schema, 8 * std::size(all_schemas)>
    by_verb(all_schemas, [](const Schema &of) {
        return std::array<NB_USHORT, 8>{of.lists[0].list,
                                        of.lists[1].list,
                                        of.lists[0].indication,
                                        of.lists[1].indication,
                                        of.define,
                                        of.remove,
                                        of.shares_verbs ? NB_USHORT{0} : of.start,
                                        of.shares_verbs ? NB_USHORT{0} : of.stop};
    });

constexpr OpcodeIndex<Settings, 3 * std::size(settings)>
    by_settings_verb(settings, [](const Settings &row) {
        return std::array<NB_USHORT, 3>{row.query, row.set, row.reset};
    });

/* What every schema must say: the key is made of fields that follow each other, every field lies
 * within the record, no two have one name, and what is asked for by opcode has it. */

constexpr bool within(FieldTable table, size_t size) {
    return std::all_of(table.begin(), table.end(), [size](const FieldRow &row) {
        return row.width != 0 && size_t{row.offset} + row.width <= size;
    });
}

constexpr auto count_named(FieldTable table, std::string_view name) {
    return std::count_if(table.begin(), table.end(),
                         [name](const FieldRow &row) { return name == row.name; });
}

constexpr bool named_once(FieldTable fields, FieldTable status) {
    const auto once = [fields, status](const FieldRow &row) {
        return count_named(fields, row.name) + count_named(status, row.name) == 1;
    };
    return std::all_of(fields.begin(), fields.end(), once) &&
           std::all_of(status.begin(), status.end(), once);
}

constexpr bool key_first(const Schema &schema) {
    size_t end = KEY_OFFSET;
    for (const FieldRow &row : schema.fields) {
        if (row.has(FIELD_KEY)) {
            if (row.offset != end) {
                return false;
            }
            end += row.width;
        }
    }
    return end == KEY_OFFSET + schema.key_size() && schema.key_size() <= NAP_MAX_KEY;
}

constexpr bool well_formed(const Schema &schema) {
    const Nested &nested = schema.nested;
    return key_first(schema) && within(schema.fields, schema.entry_size) &&
           within(schema.status, schema.entry_size) && named_once(schema.fields, schema.status) &&
           within(nested.fields, nested.size) && named_once(nested.fields, {}) &&
           nested.offset + nested.most * nested.size <= schema.entry_size &&
           schema.def.end() <= schema.entry_size && schema.det.end() <= schema.entry_size &&
           size_t{schema.def_in_define} + schema.def.width <= schema.define_size &&
           schema.det.width <= sizeof(NAP_RESOURCE_INDICATION::det_data) &&
           (schema.define != 0) == (schema.define_size != 0) &&
           (schema.define != 0) == (schema.remove != 0) && schema.lists[0].list != 0;
}

static_assert(std::all_of(std::begin(all_schemas), std::end(all_schemas),
                          [](const Schema *schema) { return well_formed(*schema); }));
static_assert(std::all_of(std::begin(settings), std::end(settings), [](const Settings &row) {
    return within(row.fields, row.block_size) && within(row.status, row.block_size) &&
           named_once(row.fields, row.status);
}));

} // namespace

const Schema *schema_by_verb(NB_USHORT opcode) {
    return by_verb.find(opcode);
}

const Settings *settings_by_verb(NB_USHORT opcode) {
    return by_settings_verb.find(opcode);
}

const Settings *settings_by_name(std::string_view name) {
    const auto *found = std::find_if(std::begin(settings), std::end(settings),
                                     [name](const Settings &row) { return name == row.name; });
    return found != std::end(settings) ? found : nullptr;
}

const Schema *schema_by_name(std::string_view name) {
    const auto found = std::find_if(std::begin(all_schemas), std::end(all_schemas),
                                    [name](const Schema *one) { return name == one->name; });
    return found != std::end(all_schemas) ? *found : nullptr;
}

} // namespace records
