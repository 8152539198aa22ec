/* For fuzz targets: takes a run's bytes apart, and gives them out in heap blocks of the exact size,
 * so that the sanitizer sees every access beyond a stated length. */
#ifndef FUZZINPUT_H
#define FUZZINPUT_H

#include "nbtypes.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

/* A property of the code under test: where it does not hold, the run is a finding. */
#define MUST(expression)                                                                           \
    ((expression)                                                                                  \
         ? (NB_VOID)0                                                                              \
         : (std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #expression), std::abort()))

class FUZZ_BLOCK {
public:
    explicit FUZZ_BLOCK(size_t size) : size_(size), bytes_(new NB_UCHAR[size]) {
        std::memset(bytes_.get(), 0, size);
    }
    FUZZ_BLOCK(const void *bytes, size_t size) : FUZZ_BLOCK(size) {
        std::memcpy(bytes_.get(), bytes, size);
    }
    explicit FUZZ_BLOCK(const std::string &bytes) : FUZZ_BLOCK(bytes.data(), bytes.size()) {}

    NB_UCHAR *get() const { return bytes_.get(); }
    NB_CHAR *text() const { return reinterpret_cast<NB_CHAR *>(bytes_.get()); }
    NB_USHORT size() const { return static_cast<NB_USHORT>(size_); }
    std::string first(size_t count) const { return std::string(text(), count); }

private:
    size_t size_;
    std::unique_ptr<NB_UCHAR[]> bytes_;
};

/* What is missing at the end of the input reads as zeros. */
class FUZZ_INPUT {
public:
    FUZZ_INPUT(const uint8_t *data, size_t size) : data_(data), left_(size) {}

    template <typename VALUE> VALUE take() {
        VALUE value{};
        const size_t count = std::min(sizeof value, left_);
        std::memcpy(&value, data_, count);
        data_ += count;
        left_ -= count;
        return value;
    }

    std::string rest() const { return std::string(reinterpret_cast<const char *>(data_), left_); }

private:
    const uint8_t *data_;
    size_t left_;
};

#endif
