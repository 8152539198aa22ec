#include "sortkey.h"

#include "nbbase.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <endian.h>

namespace node {

namespace {

using records::KeyKind;
using FoldTable = std::array<NB_UCHAR, 256>;

FoldTable make_local_table() {
    FoldTable table{};
    for (size_t at = 0; at < table.size(); at++) {
        const bool lower = at >= 'a' && at <= 'z';
        table[at] = static_cast<NB_UCHAR>(lower ? at - 'a' + 'A' : at);
    }
    table[0] = ' ';
    return table;
}

FoldTable make_ebcdic_table() {
    FoldTable table{};
    for (size_t at = 0; at < table.size(); at++) {
        table[at] = static_cast<NB_UCHAR>(at);
    }
    nba_ebcdic_to_local(table.data(), static_cast<NB_USHORT>(table.size()));
    table[0] = ' ';
    return table;
}

const FoldTable &fold_table(KeyKind kind) {
    static const FoldTable local = make_local_table();
    static const FoldTable ebcdic = make_ebcdic_table();
    return kind == KeyKind::Ebcdic ? ebcdic : local;
}

uint64_t leading_mask(size_t bytes) {
    return bytes >= 8 ? ~uint64_t{0} : ~(~uint64_t{0} >> (8 * bytes));
}

} // namespace

SortKey fold_key(const records::KeyParts &parts, const NB_UCHAR *raw) {
    NB_UCHAR folded[NAP_MAX_KEY] = {};
    size_t at = 0;
    for (const records::KeyPart &part : parts) {
        if (part.kind == KeyKind::Unused) {
            break;
        }
        if (part.kind == KeyKind::Number) {
            NB_USHORT value = 0;
            memcpy(&value, raw + at, sizeof value);
            folded[at++] = static_cast<NB_UCHAR>(value >> 8);
            folded[at++] = static_cast<NB_UCHAR>(value);
            continue;
        }
        const FoldTable &table = fold_table(part.kind);
        for (const size_t end = at + part.width; at < end; at++) {
            folded[at] = table[raw[at]];
        }
    }
    SortKey key{};
    key.word[0] = (at + 7) / 8;
    for (size_t word = 0; word < key.word[0]; word++) {
        uint64_t bytes = 0;
        memcpy(&bytes, folded + 8 * word, sizeof bytes);
        key.word[1 + word] = be64toh(bytes);
    }
    return key;
}

SortKey cut_key(const SortKey &key, size_t bytes) {
    SortKey cut = key;
    for (size_t word = 0; word < cut.word[0]; word++) {
        const size_t before = 8 * word;
        cut.word[1 + word] &= bytes <= before ? 0 : leading_mask(bytes - before);
    }
    return cut;
}

std::unique_ptr<uint64_t[]> keep_key(const SortKey &key) {
    auto kept = std::make_unique<uint64_t[]>(1 + key.word[0]);
    std::copy(key.word, key.word + 1 + key.word[0], kept.get());
    return kept;
}

SortKey kept_key(const uint64_t *key) {
    SortKey copy{};
    std::copy(key, key + 1 + key[0], copy.word);
    return copy;
}

bool same_leading(const uint64_t *left, const uint64_t *right, size_t bytes) {
    const size_t words = std::min<size_t>(left[0], (bytes + 7) / 8);
    for (size_t word = 0; word < words; word++) {
        if (((left[1 + word] ^ right[1 + word]) & leading_mask(bytes - 8 * word)) != 0) {
            return false;
        }
    }
    return true;
}

NB_INT compare_sort_keys(const NB_VOID *left, const NB_VOID *right) {
    const auto *a = static_cast<const uint64_t *>(left);
    const auto *b = static_cast<const uint64_t *>(right);
    for (size_t word = 1; word <= a[0]; word++) {
        if (a[word] != b[word]) {
            return a[word] < b[word] ? -1 : 1;
        }
    }
    return 0;
}

} // namespace node
