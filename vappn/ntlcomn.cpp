#include "ntlcomn.h"

#include <array>
#include <bit>
#include <cstring>

#include "nbbase.h"
#include "ntlname.h"

/* The comparator costs more than the tree around it, so names are compared a machine word at a time
 * and converted a byte at a time, and only where they differ. */

namespace {

constexpr NB_UCHAR local_blank = 0x20;
constexpr size_t word_size = sizeof(uint64_t);
constexpr size_t pcid_width = 8;

uint64_t swap_unless(std::endian order, uint64_t word) {
    return std::endian::native == order ? word : __builtin_bswap64(word);
}

uint64_t native_word(const NB_UCHAR *bytes) {
    uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

/* The first byte in the most significant place: words compare as their bytes do. */
uint64_t big_word(const NB_UCHAR *bytes) {
    return swap_unless(std::endian::big, native_word(bytes));
}

/* The first byte in the least significant place: the lowest bit set belongs to the first byte. */
uint64_t little_word(const NB_UCHAR *bytes) {
    return swap_unless(std::endian::little, native_word(bytes));
}

template <typename Value> NB_INT compare_values(Value a, Value b) {
    return (a > b) - (a < b);
}

/* Calls `visit` with the offset of each word of a field of `Width` bytes until it returns nonzero,
 * and returns that; the last word may overlap the one before. */
template <size_t Width, typename Visit> NB_INT visit_words(Visit visit) {
    static_assert(Width >= word_size);
    for (size_t offset = 0; offset + word_size <= Width; offset += word_size) {
        if (NB_INT result = visit(offset)) {
            return result;
        }
    }
    return Width % word_size == 0 ? 0 : visit(Width - word_size);
}

template <size_t Width> NB_INT compare_bytes(const NB_VOID *a, const NB_VOID *b) {
    auto x = static_cast<const NB_UCHAR *>(a);
    auto y = static_cast<const NB_UCHAR *>(b);
    return visit_words<Width>([x, y](size_t offset) {
        return compare_values(big_word(x + offset), big_word(y + offset));
    });
}

/* The position of the first `blank` in a field of `Width` bytes, or Width. */
template <size_t Width> NB_INT length_before(NB_UCHAR blank, const NB_UCHAR *text) {
    constexpr uint64_t ones = 0x0101010101010101;
    size_t length = Width;
    visit_words<Width>([=, &length](size_t offset) -> NB_INT {
        /* The lowest bit of `found` is the top bit of the first byte that is a blank; bits above it
         * can be false, because the subtraction borrows. */
        uint64_t rest = little_word(text + offset) ^ (ones * blank);
        uint64_t found = (rest - ones) & ~rest & (ones << 7);
        if (found == 0) {
            return 0;
        }
        length = offset + std::countr_zero(found) / 8U;
        return 1;
    });
    return static_cast<NB_INT>(length);
}

/* The base library's conversion as a table, so that one byte costs one load. */
const NB_UCHAR *local_table() {
    static const std::array<NB_UCHAR, 256> table = [] {
        std::array<NB_UCHAR, 256> all;
        for (size_t code = 0; code < all.size(); code++) {
            all[code] = static_cast<NB_UCHAR>(code);
        }
        nba_ebcdic_to_local(all.data(), static_cast<NB_USHORT>(all.size()));
        return all;
    }();
    return table.data();
}

/* Compares words that are not equal as the local code page has them.  Different EBCDIC bytes can be
 * the same local one (NUL where there is none), so the first difference may not decide. */
NB_INT compare_local_words(uint64_t x, uint64_t y) {
    const NB_UCHAR *local = local_table();
    for (uint64_t difference = x ^ y; difference != 0;) {
        int shift = std::countr_zero(difference) & ~7;
        if (NB_INT result = compare_values(local[x >> shift & 0xFF], local[y >> shift & 0xFF])) {
            return result;
        }
        difference &= ~(uint64_t{0xFF} << shift);
    }
    return 0;
}

template <size_t Width> NB_INT compare_local(const NB_UCHAR *x, const NB_UCHAR *y) {
    return visit_words<Width>([x, y](size_t offset) {
        uint64_t first = little_word(x + offset);
        uint64_t second = little_word(y + offset);
        return first == second ? 0 : compare_local_words(first, second);
    });
}

template <size_t Width> NB_INT display_length(const NB_UCHAR *name) {
    NB_INT length = length_before<Width>(NTL_BLANK, name);
    return Width == NTL_NAME_WIDTH && length == 0 ? NB_INT{Width} : length;
}

template <size_t Width> NB_INT compare_display(const NB_VOID *a, const NB_VOID *b) {
    auto x = static_cast<const NB_UCHAR *>(a);
    auto y = static_cast<const NB_UCHAR *>(b);
    NB_INT difference = display_length<Width>(x) - display_length<Width>(y);
    return difference != 0 ? difference : compare_local<Width>(x, y);
}

} // namespace

NB_INT ntl_compare_byte(const NB_VOID *a, const NB_VOID *b) {
    return *static_cast<const NB_UCHAR *>(a) - *static_cast<const NB_UCHAR *>(b);
}

NB_INT ntl_compare_lfsid(const NB_VOID *a, const NB_VOID *b) {
    NB_USHORT x[2];
    NB_USHORT y[2];
    std::memcpy(x, a, sizeof x);
    std::memcpy(y, b, sizeof y);
    return x[1] != y[1] ? x[1] - y[1] : x[0] - y[0];
}

NB_INT ntl_compare_proc_id(const NB_VOID *a, const NB_VOID *b) {
    return compare_values(std::memcmp(a, b, 4), 0);
}

NB_INT ntl_compare_name(const NB_VOID *a, const NB_VOID *b) {
    return compare_bytes<NTL_NAME_WIDTH>(a, b);
}

NB_INT ntl_compare_fq_name(const NB_VOID *a, const NB_VOID *b) {
    return compare_bytes<NTL_FQ_NAME_WIDTH>(a, b);
}

NB_INT ntl_compare_tp_name(const NB_VOID *a, const NB_VOID *b) {
    return compare_bytes<NTL_TP_NAME_WIDTH>(a, b);
}

NB_INT ntl_compare_mib_sna_name(const NB_VOID *a, const NB_VOID *b) {
    return compare_display<NTL_NAME_WIDTH>(a, b);
}

NB_INT ntl_compare_mib_ascii_sna_name(const NB_VOID *a, const NB_VOID *b) {
    NB_INT x = length_before<NTL_NAME_WIDTH>(local_blank, static_cast<const NB_UCHAR *>(a));
    NB_INT y = length_before<NTL_NAME_WIDTH>(local_blank, static_cast<const NB_UCHAR *>(b));
    return x != y ? x - y : compare_bytes<NTL_NAME_WIDTH>(a, b);
}

NB_INT ntl_compare_mib_fq_name(const NB_VOID *a, const NB_VOID *b) {
    return compare_display<NTL_FQ_NAME_WIDTH>(a, b);
}

NB_INT ntl_compare_mib_tp_name(const NB_VOID *a, const NB_VOID *b) {
    return compare_display<NTL_TP_NAME_WIDTH>(a, b);
}

NB_INT ntl_compare_fqpcid(const NB_VOID *a, const NB_VOID *b) {
    NB_INT order = ntl_compare_mib_fq_name(static_cast<const NB_UCHAR *>(a) + pcid_width,
                                           static_cast<const NB_UCHAR *>(b) + pcid_width);
    return order != 0 ? order : compare_bytes<pcid_width>(a, b);
}
