#include "defineblock.h"

#include "entry.h"
#include "nbbase.h"

#include <cstring>

namespace records {

void put_definition(const Schema &schema, const NB_UCHAR *entry, NB_UCHAR *block) {
    memcpy(block + schema.def_in_define, entry + schema.def.offset, schema.def.width);
}

void make_define_block(const Schema &schema, const NB_UCHAR *entry, NB_UCHAR *block) {
    NB_ASSERT(schema.define != 0);
    memset(block, 0, schema.define_size);
    put_number(block, sizeof schema.define, schema.define);
    memcpy(block + KEY_IN_BLOCK, entry + KEY_OFFSET, schema.key_size());
    put_definition(schema, entry, block);
}

NAP_NAME_VERB make_name_block(const Schema &schema, NB_USHORT opcode, const NB_UCHAR *entry) {
    NAP_NAME_VERB block = {};
    block.opcode = opcode;
    memcpy(block.key, entry + KEY_OFFSET, schema.key_size());
    return block;
}

void take_key(const Schema &schema, const NB_UCHAR *block, NB_UCHAR *entry) {
    memcpy(entry + KEY_OFFSET, block + KEY_IN_BLOCK, schema.key_size());
    for (const FieldRow &row : schema.fields) {
        if (row.has(FIELD_KEY)) {
            tidy_field(row, entry);
        }
    }
}

bool make_entry(const Schema &schema, const NB_UCHAR *block, size_t length, const NB_UCHAR *old,
                NB_UCHAR *entry) {
    const Nested &nested = schema.nested;
    if (length < schema.define_size) {
        return false;
    }
    if (nested.name != nullptr) {
        const NB_UCHAR *count =
            block + schema.def_in_define + nested.count.offset - schema.def.offset;
        if (get_number(count, nested.count.width) > nested.most) {
            return false;
        }
    }
    if (old != nullptr) {
        memcpy(entry, old, schema.overlay_size());
    } else {
        memset(entry, 0, schema.overlay_size());
    }
    take_key(schema, block, entry);
    memcpy(entry + schema.def.offset, block + schema.def_in_define, schema.def.width);
    if (old != nullptr) {
        keep_secrets(schema.fields, entry, old);
    }
    set_entry_length(schema, entry);
    return true;
}

} // namespace records
