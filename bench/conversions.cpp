/* The dial-string conversions beside a plain copy: nanoseconds a byte of the text form, median over
 * the rounds, for texts of 400 characters (the longest that a dialog takes).  Counts the calls of
 * the allocator meanwhile: there must be none.  Usage: bench_conversions [rounds] */
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "v0convds.h"

/* The linker sends every call of the allocator from the libraries here. */
static size_t allocations;

extern "C" {
void *__real_malloc(size_t size);
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *memory, size_t size);

void *__wrap_malloc(size_t size) {
    allocations++;
    return __real_malloc(size);
}
void *__wrap_calloc(size_t count, size_t size) {
    allocations++;
    return __real_calloc(count, size);
}
void *__wrap_realloc(void *memory, size_t size) {
    allocations++;
    return __real_realloc(memory, size);
}
}

void *operator new(size_t size) {
    allocations++;
    if (void *memory = __real_malloc(size)) {
        return memory;
    }
    std::abort();
}
void operator delete(void *memory) noexcept {
    std::free(memory);
}
void operator delete(void *memory, size_t) noexcept {
    std::free(memory);
}

namespace {

constexpr size_t longest_text = 400;
constexpr size_t texts_per_round = 200;

using Bytes = std::array<NB_UCHAR, longest_text>;

struct Text {
    Bytes bytes;
    NB_USHORT size;
};

struct Pair {
    Text binary;
    Text text;
};

using Convert = void (*)(const Text &in, Text &out);

template <auto parser> void parse(const Text &in, Text &out) {
    out.size = longest_text;
    if (parser(out.bytes.data(), &out.size, in.bytes.data(), in.size) != 0) {
        std::abort();
    }
}

template <auto writer> void write(const Text &in, Text &out) {
    out.size = longest_text;
    writer(out.bytes.data(), &out.size, in.bytes.data(), in.size);
}

/* Read at run time, so that the copy is a call like the others. */
void *(*volatile copy_call)(void *, const void *, size_t) = std::memcpy;

void copy(const Text &in, Text &out) {
    copy_call(out.bytes.data(), in.bytes.data(), in.size);
    out.size = in.size;
}

/* What the bytes of a dial string are drawn from. */
struct Mix {
    const char *name;
    size_t bytes; /* of binary: their text fits longest_text */
    std::function<NB_UCHAR(std::mt19937 &)> draw;
    Convert parser, writer;
};

const Convert from_ascii = parse<v0_dialstring_ascii_to_binary>;
const Convert to_ascii = write<v0_dialstring_binary_to_ascii>;

const Mix mixes[] = {
    {"ASCII, digits", 80, [](auto &r) { return static_cast<NB_UCHAR>('0' + r() % 10); }, from_ascii,
     to_ascii},
    {"ASCII, 1 in 8 escaped", 80,
     [](auto &r) { return static_cast<NB_UCHAR>(r() % 8 == 0 ? r() % 32 : '0' + r() % 10); },
     from_ascii, to_ascii},
    {"ASCII, names", 80, [](auto &r) { return static_cast<NB_UCHAR>(r() % 32); }, from_ascii,
     to_ascii},
    {"ASCII, decimals", 80, [](auto &r) { return static_cast<NB_UCHAR>(128 + r() % 128); },
     from_ascii, to_ascii},
    {"hexadecimal", 200, [](auto &r) { return static_cast<NB_UCHAR>(r()); },
     parse<v0_dialstring_hex_to_binary>, write<v0_dialstring_binary_to_hex>},
};

struct Times {
    double parse, write, copy; /* nanoseconds a byte of text */
};

using Pairs = std::vector<Pair>;

template <typename Step> double time_each(Pairs &pairs, Step step) {
    size_t bytes = 0;
    const auto start = std::chrono::steady_clock::now();
    for (Pair &pair : pairs) {
        step(pair);
        bytes += pair.text.size;
    }
    const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
    return taken.count() / static_cast<double>(bytes);
}

void draw(const Mix &mix, Pairs &pairs, std::mt19937 &random) {
    for (Pair &pair : pairs) {
        pair.binary.size = static_cast<NB_USHORT>(mix.bytes);
        std::generate_n(pair.binary.bytes.begin(), mix.bytes, [&] { return mix.draw(random); });
    }
}

Times time_round(const Mix &mix, Pairs &pairs) {
    static Text sink;
    Times times;
    times.write = time_each(pairs, [&](Pair &pair) { mix.writer(pair.binary, pair.text); });
    times.parse = time_each(pairs, [&](Pair &pair) { mix.parser(pair.text, sink); });
    times.copy = time_each(pairs, [&](Pair &pair) { copy(pair.text, sink); });
    return times;
}

double median(const std::vector<Times> &rounds, double Times::*of) {
    std::vector<double> values;
    for (const Times &round : rounds) {
        values.push_back(round.*of);
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

int main(int argc, char **argv) {
    const size_t count = std::max(1UL, argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 501UL);
    std::mt19937 random(20240517);
    Pairs pairs(texts_per_round);
    size_t allocated = 0;
    std::printf("%-22s %9s %9s %9s\n", "ns a byte of text", "parse", "write", "memcpy");
    for (const Mix &mix : mixes) {
        std::vector<Times> rounds(count);
        for (Times &round : rounds) {
            draw(mix, pairs, random);
            const size_t before = allocations;
            round = time_round(mix, pairs);
            allocated += allocations - before;
        }
        std::printf("%-22s %9.2f %9.2f %9.2f\n", mix.name, median(rounds, &Times::parse),
                    median(rounds, &Times::write), median(rounds, &Times::copy));
    }
    std::printf("calls of the allocator: %zu\n", allocated);
    return allocated != 0;
}
