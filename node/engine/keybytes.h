/* Names of fixed width as strings, for maps and for looking resources up later. */
#ifndef KEYBYTES_H
#define KEYBYTES_H

#include "resourceclass.h"

#include <string>

namespace node {

/* All bytes of a name, its padding too. */
template <size_t Size> std::string bytes_of(const NB_UCHAR (&field)[Size]) {
    return {reinterpret_cast<const char *>(field), Size};
}

/* The key of a resource; key_of gives it back as tables take it. */
inline std::string key_bytes(const Resource &resource) {
    return {reinterpret_cast<const char *>(resource.entry.get()) + KEY_OFFSET,
            resource.row->schema->key_size()};
}

/* The bytes of a string; good as long as that is. */
inline const NB_UCHAR *key_of(const std::string &bytes) {
    return reinterpret_cast<const NB_UCHAR *>(bytes.data());
}

} // namespace node

#endif
