/* Every schema by one walk: what it says of its verbs, and from an entry to its blocks and back. */
#include "defineblock.h"
#include "entry.h"
#include "nesteditems.h"
#include "schemas.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>

using namespace records;

namespace {

using Bytes = std::vector<NB_UCHAR>;

constexpr NB_UCHAR CANARY = 0xEE;
constexpr size_t GUARD = 16;

/* Any bytes, but for a key that is tidy and a number of items that may be. */
Bytes any_entry(const Schema &schema, NB_ULONG items, std::mt19937 &random) {
    Bytes entry(schema.overlay_size());
    for (NB_UCHAR &byte : entry) {
        byte = static_cast<NB_UCHAR>(random());
    }
    for (size_t at = 0; at < schema.key_size(); at++) {
        entry[KEY_OFFSET + at] = static_cast<NB_UCHAR>(0xC1 + at % 9);
    }
    std::fill(entry.begin() + schema.entry_size, entry.end(), NB_UCHAR{0});
    if (schema.nested.name != nullptr) {
        put_number(entry.data() + schema.nested.count.offset, schema.nested.count.width, items);
    }
    set_entry_length(schema, entry.data());
    return entry;
}

/* The define block of an entry; nothing behind it is touched. */
Bytes block_of(const Schema &schema, const Bytes &entry) {
    Bytes block(schema.define_size + GUARD, CANARY);
    make_define_block(schema, entry.data(), block.data());
    EXPECT_EQ(Bytes(block.begin() + schema.define_size, block.end()), Bytes(GUARD, CANARY));
    block.resize(schema.define_size);
    return block;
}

bool make(const Schema &schema, const Bytes &block, const Bytes *old, Bytes &entry) {
    Bytes room(schema.overlay_size() + GUARD, CANARY);
    const bool made = make_entry(schema, block.data(), block.size(),
                                 old != nullptr ? old->data() : nullptr, room.data());
    EXPECT_EQ(Bytes(room.end() - GUARD, room.end()), Bytes(GUARD, CANARY));
    entry.assign(room.begin(), room.end() - GUARD);
    return made;
}

/* What the block does not carry: of nothing it is zero. */
Bytes defined_part(const Schema &schema, const Bytes &entry) {
    Bytes part(entry.size());
    std::copy_n(entry.begin() + KEY_OFFSET, schema.key_size(), part.begin() + KEY_OFFSET);
    std::copy_n(entry.begin() + schema.def.offset, schema.def.width,
                part.begin() + schema.def.offset);
    set_entry_length(schema, part.data());
    return part;
}

void goes_there_and_back(const Schema &schema, NB_ULONG items, std::mt19937 &random) {
    const Bytes entry = any_entry(schema, items, random);
    const Bytes block = block_of(schema, entry);
    Bytes made;
    ASSERT_TRUE(make(schema, block, &entry, made));
    EXPECT_EQ(made, entry);
    ASSERT_TRUE(make(schema, block, nullptr, made));
    EXPECT_EQ(made, defined_part(schema, entry));

    Bytes shown = entry;
    hide_secrets(schema.fields, shown.data());
    ASSERT_TRUE(make(schema, block_of(schema, shown), &entry, made));
    EXPECT_EQ(made, entry) << "what is not shown is kept";

    EXPECT_FALSE(make(schema, Bytes(block.begin(), block.end() - 1), &entry, made));
    const NAP_NAME_VERB named = make_name_block(schema, schema.remove, entry.data());
    EXPECT_EQ(named.opcode, schema.remove);
    Bytes key(schema.overlay_size());
    take_key(schema, reinterpret_cast<const NB_UCHAR *>(&named), key.data());
    EXPECT_EQ(memcmp(key.data() + KEY_OFFSET, entry.data() + KEY_OFFSET, schema.key_size()), 0);
}

/* Random changes of the items of an entry against a plain list of them. */
void change_items(const Schema &schema, std::mt19937 &random) {
    const Nested &nested = schema.nested;
    Bytes entry = any_entry(schema, 0, random), fresh(nested.size);
    set_initial_fields(nested.fields, fresh.data());
    std::vector<Bytes> wanted;
    for (NB_ULONG step = 0; step < 3 * nested.most; step++) {
        const NB_ULONG number = static_cast<NB_ULONG>(random() % (wanted.size() + 1));
        const Bytes item(nested.size, static_cast<NB_UCHAR>(random()));
        if (random() % 4 == 0) {
            EXPECT_EQ(remove_item(nested, entry.data(), number), number < wanted.size());
            wanted.erase(wanted.begin() + number,
                         wanted.begin() + number + (number < wanted.size()));
        } else if (append_item(nested, entry.data(), step % 3 == 0 ? nullptr : item.data())) {
            wanted.push_back(step % 3 == 0 ? fresh : item);
            ASSERT_LE(wanted.size(), nested.most);
        } else {
            EXPECT_EQ(wanted.size(), nested.most);
        }
        ASSERT_EQ(item_count(nested, entry.data()), wanted.size());
        for (NB_ULONG at = 0; at < wanted.size(); at++) {
            ASSERT_EQ(memcmp(item_at(nested, entry.data(), at), wanted[at].data(), nested.size), 0);
        }
    }
}

TEST(Schemas, AnEntryIsTheSameBehindItsDefineBlock) {
    std::mt19937 random(11);
    for (const Schema *schema : all_schemas) {
        SCOPED_TRACE(schema->name);
        if (schema->define == 0) {
            continue;
        }
        for (const NB_ULONG items : {NB_ULONG{0}, schema->nested.most / 2, schema->nested.most}) {
            goes_there_and_back(*schema, items, random);
        }
        if (schema->nested.name != nullptr) {
            Bytes block = block_of(*schema, any_entry(*schema, 1, random)), made;
            const Place &count = schema->nested.count;
            put_number(block.data() + schema->def_in_define + count.offset - schema->def.offset,
                       count.width, schema->nested.most + 1);
            EXPECT_FALSE(make(*schema, block, nullptr, made)) << "too many items";
            change_items(*schema, random);
        }
    }
}

TEST(Schemas, AgreeWithTheVerbTable) {
    const auto kind = [](NB_USHORT opcode) { return nap_find_verb(opcode)->kind; };
    for (const Schema *schema : all_schemas) {
        SCOPED_TRACE(schema->name);
        for (const ListRow &list : schema->lists) {
            EXPECT_TRUE(list.list == 0 || kind(list.list) == NAP_KIND_LIST);
            EXPECT_TRUE(list.indication == 0 || kind(list.indication) == NAP_KIND_INDICATION);
            EXPECT_EQ(schema_by_verb(list.list), list.list != 0 ? schema : nullptr);
        }
        if (schema->define != 0) {
            EXPECT_EQ(nap_find_verb(schema->define)->block_size, schema->define_size);
            EXPECT_EQ(kind(schema->remove), NAP_KIND_DELETE);
            EXPECT_EQ(schema_by_verb(schema->define), schema);
        }
        EXPECT_TRUE(schema->start == 0 || kind(schema->start) == NAP_KIND_START);
        EXPECT_TRUE(schema->stop == 0 || kind(schema->stop) == NAP_KIND_STOP);
        Bytes initial(schema->overlay_size());
        set_initial_fields(schema->fields, initial.data());
        for (const FieldRow &row : schema->fields) {
            EXPECT_TRUE(row.initial == nullptr || check_field(row, initial.data()) == 0)
                << row.name;
        }
    }
    for (const Settings &row : settings) {
        EXPECT_EQ(nap_find_verb(row.query)->block_size, row.block_size) << row.name;
        EXPECT_TRUE(row.set == 0 || nap_find_verb(row.set)->block_size == row.block_size);
    }
}

} // namespace
