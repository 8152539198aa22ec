/* For the rooms of the class table only: short ways to write rows. */
#ifndef NODEROW_H
#define NODEROW_H

#include "nodeclass.h"
#include "nodehook.h"
#include "nodewords.h"
#include "nofverbs.h"

namespace node {

inline constexpr KeyPart LOCAL8 = {KeyKind::Local, 8};
inline constexpr KeyPart SNA8 = {KeyKind::Ebcdic, 8};
inline constexpr KeyPart SNA17 = {KeyKind::Ebcdic, 17};
inline constexpr KeyPart NUMBER16 = {KeyKind::Number, 2};

/* A part of an entry: one member, from one to the end, from one up to another. */
#define PART(record, member)                                                                       \
    { offsetof(record, member), sizeof(std::declval<record>().member) }
#define REST(record, member)                                                                       \
    { offsetof(record, member), sizeof(record) - offsetof(record, member) }
#define UP_TO(record, from, to)                                                                    \
    { offsetof(record, from), offsetof(record, to) - offsetof(record, from) }

/* The number of an entry's items: where it stands and how wide it is. */
#define COUNT_IN(record, member) offsetof(record, member), sizeof(std::declval<record>().member)

/* Keys stand where every entry and every block has them, or nothing here works. */
#define KEYS_STAND(record, block, member)                                                          \
    static_assert(offsetof(record, member) == KEY_OFFSET &&                                        \
                  offsetof(block, member) == KEY_IN_BLOCK && sizeof(block) % 4 == 0)

} // namespace node

#endif
