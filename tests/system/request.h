/* A request to the X server, as the client sent it. */
#ifndef SYSTEM_REQUEST_H
#define SYSTEM_REQUEST_H

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace sys {

struct Request {
    const unsigned char *bytes;
    size_t length;

    /* What stands there; zeros behind the end. */
    template <class Value> Value at(size_t offset) const {
        Value value = {};
        if (offset + sizeof value <= length) {
            memcpy(&value, bytes + offset, sizeof value);
        }
        return value;
    }
    template <class Form> Form as() const { return at<Form>(0); }
};

} // namespace sys

#endif
