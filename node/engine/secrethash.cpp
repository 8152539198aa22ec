#include "secrethash.h"

#include "nbbase.h"

#include <algorithm>
#include <array>
#include <sodium.h>

namespace node {

namespace {

constexpr unsigned long long PASSES = 2;
constexpr size_t MEMORY = 8 * 1024 * 1024;

constexpr size_t MARK_SIZE = 32;

/* Characters that every kind of field takes, in text and in EBCDIC names. */
const std::array<NB_UCHAR, MARK_SIZE> &mark() {
    static const std::array<NB_UCHAR, MARK_SIZE> made = [] {
        constexpr NB_UCHAR LEAST = 0x41;
        constexpr NB_ULONG COUNT = 0xFE - LEAST;
        std::array<NB_UCHAR, MARK_SIZE> bytes = {};
        const int ready = sodium_init();
        NB_ASSERT(ready >= 0);
        for (NB_UCHAR &byte : bytes) {
            byte = static_cast<NB_UCHAR>(LEAST + randombytes_uniform(COUNT));
        }
        return bytes;
    }();
    return made;
}

bool is_typed(const FieldRow &field, const NB_UCHAR *record) {
    return field.has(FIELD_COMPARED) && !is_empty_field(field, record) &&
           !is_mark(field, record + field.offset);
}

/* The bytes before the padding. */
std::string_view text_of(const FieldRow &field, const NB_UCHAR *at) {
    constexpr NB_UCHAR BLANK = 0x40;
    size_t length = field.width;
    while (length > 0 && (at[length - 1] == BLANK || at[length - 1] == 0)) {
        length--;
    }
    return {reinterpret_cast<const char *>(at), length};
}

} // namespace

void put_mark(const FieldRow &field, NB_UCHAR *at) {
    NB_ASSERT(field.width <= MARK_SIZE && field.kind == records::FieldKind::NameEbcdic);
    memcpy(at, mark().data(), field.width);
}

bool is_mark(const FieldRow &field, const NB_UCHAR *at) {
    return field.width <= MARK_SIZE && memcmp(at, mark().data(), field.width) == 0;
}

std::string hash_secret(const FieldRow &field, const NB_UCHAR *at) {
    char hash[crypto_pwhash_STRBYTES];
    const std::string_view secret = text_of(field, at);
    mark(); /* makes the library ready */
    return crypto_pwhash_str(hash, secret.data(), secret.size(), PASSES, MEMORY) == 0 ? hash : "";
}

bool matches_hash(const std::string &hash, const FieldRow &field, const NB_UCHAR *at) {
    const std::string_view secret = text_of(field, at);
    mark();
    return crypto_pwhash_str_verify(hash.c_str(), secret.data(), secret.size()) == 0;
}

bool brings_secret(FieldTable fields, const NB_UCHAR *record) {
    return std::any_of(fields.begin(), fields.end(),
                       [record](const FieldRow &field) { return is_typed(field, record); });
}

void mark_secrets(FieldTable fields, NB_UCHAR *record) {
    for (const FieldRow &field : fields) {
        if (is_typed(field, record)) {
            put_mark(field, record + field.offset);
        }
    }
}

} // namespace node
