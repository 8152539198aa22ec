/* For the headers of schemas: one maker a kind of field, so that a table reads as "what kind, which
 * member, what is allowed, what a new one has", and the facts of a define block in one line. */
#ifndef FIELDROWS_H
#define FIELDROWS_H

#include "fieldwords.h"
#include "nofverbs.h"
#include "schema.h"

namespace records {

namespace rows {

constexpr FieldRow make(FieldKind kind, const Place &at) {
    return {.name = at.name, .kind = kind, .offset = at.offset, .width = at.width};
}

constexpr FieldRow sna(const Place &at) {
    return make(FieldKind::NameA, at);
}
constexpr FieldRow fq(const Place &at) {
    return make(FieldKind::NameFq, at);
}
constexpr FieldRow any_name(const Place &at) {
    return make(FieldKind::NameAny, at);
}
constexpr FieldRow partner(const Place &at) {
    return make(FieldKind::NamePartner, at);
}
constexpr FieldRow local(const Place &at) {
    return make(FieldKind::NameLocal, at);
}
constexpr FieldRow ebcdic(const Place &at) {
    return make(FieldKind::NameEbcdic, at);
}
constexpr FieldRow text(const Place &at) {
    return make(FieldKind::Text, at);
}
constexpr FieldRow bytes(const Place &at) {
    return make(FieldKind::Bytes, at);
}
constexpr FieldRow address(const Place &at) {
    return make(FieldKind::Address, at);
}
constexpr FieldRow number(const Place &at, NB_ULONG low, NB_ULONG high,
                          const char *initial = nullptr) {
    FieldRow row = make(FieldKind::Number, at);
    row.low = low;
    row.high = high;
    row.initial = initial;
    return row;
}
/* A number of the node's, of which any value may come. */
constexpr FieldRow count(const Place &at) {
    return number(at, 0, at.width < 4 ? (1U << (8 * at.width)) - 1 : 0xFFFFFFFF);
}
constexpr FieldRow flag(const Place &at, const char *initial = nullptr) {
    FieldRow row = make(FieldKind::Flag, at);
    row.initial = initial;
    return row;
}
/* A number of which only matters whether it is 0. */
constexpr FieldRow as_flag(FieldRow row) {
    row.kind = FieldKind::Flag;
    return row;
}
constexpr FieldRow hex(const Place &at, const char *initial = nullptr) {
    FieldRow row = make(FieldKind::Hex, at);
    row.initial = initial;
    return row;
}
constexpr FieldRow word(const Place &at, std::span<const FieldWord> words,
                        const char *initial = nullptr) {
    FieldRow row = make(FieldKind::Word, at);
    row.words = words;
    row.initial = initial;
    return row;
}
constexpr FieldRow state(const Place &at) {
    return word(at, state_words);
}

} // namespace rows

/* Members of a Schema whose define block has the key where every block has it, and the definition
 * as the entry has it, or nothing but the key. */
consteval NB_USHORT block_size(size_t size, const Place &key, const Place &key_in_block) {
    if (key.offset != KEY_OFFSET || key_in_block.offset != KEY_IN_BLOCK || size % 4 != 0) {
        throw "the key stands elsewhere in the entry or the block";
    }
    return static_cast<NB_USHORT>(size);
}

#define KEYED_BY(entry, block, key)                                                                \
    .entry_size = sizeof(entry),                                                                   \
    .define_size = block_size(sizeof(block), FIELD_AT(entry, key), FIELD_AT(block, key))

#define DEFINED_BY(entry, block, key, definition)                                                  \
    KEYED_BY(entry, block, key), .def = FIELD_AT(entry, definition),                               \
                                 .def_in_define = offsetof(block, definition)

} // namespace records

#endif
