// Code page 037, the name checks, and copying text of several bytes a character.

#include "nbbase.h"

#include <clocale>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace {

std::string ebcdic(std::string text) {
    nba_local_to_ebcdic(reinterpret_cast<NB_UCHAR *>(text.data()),
                        static_cast<NB_USHORT>(text.size()));
    return text;
}

NB_USHORT check(NB_USHORT type, const std::string &local) {
    const std::string bytes = ebcdic(local);
    return nba_check_ebcdic(type, reinterpret_cast<const NB_UCHAR *>(bytes.data()),
                            static_cast<NB_USHORT>(bytes.size()));
}

TEST(CodePage, KnownCharacters) {
    EXPECT_EQ(ebcdic(" .@#$azAZ09"), "\x40\x4B\x7C\x7B\x5B\x81\xA9\xC1\xE9\xF0\xF9");
    EXPECT_EQ(ebcdic("ijrsIJRS"), "\x89\x91\x99\xA2\xC9\xD1\xD9\xE2");
    EXPECT_EQ(ebcdic("+-*/(),:;?!\"'%&_=<>"),
              "\x4E\x60\x5C\x61\x4D\x5D\x6B\x7A\x5E\x6F\x5A\x7F\x7D\x6C\x50\x6D\x7E\x4C\x6E");
    EXPECT_EQ(ebcdic("[]{}\\|~^`"), "\xBA\xBB\xC0\xD0\xE0\x4F\xA1\xB0\x79");
    EXPECT_EQ(ebcdic("\xC4\xE4\xDF\xE9"),
              "\x63\x43\x59\x51"); // A and a with dots, sharp s, e acute
    EXPECT_EQ(ebcdic(std::string(2, '\0')), std::string(2, '\0'));
}

TEST(CodePage, EveryByteComesBackAndOnlyNulIsNul) {
    std::vector<NB_UCHAR> bytes(256);
    for (size_t at = 0; at < bytes.size(); at++) {
        bytes[at] = static_cast<NB_UCHAR>(at);
    }
    std::vector<NB_UCHAR> local = bytes;
    nba_ebcdic_to_local(local.data(), 256);
    EXPECT_EQ(std::set<NB_UCHAR>(local.begin(), local.end()).size(), 256U);
    EXPECT_EQ(local[0], 0);
    nba_local_to_ebcdic(local.data(), 256);
    EXPECT_EQ(local, bytes);
}

TEST(NameCheck, CharacterSets) {
    struct Case {
        const char *text;
        NB_USHORT type_a, type_ae;
    };
    const Case cases[] = {
        {"", 1, 1},   {"LU1", 1, 1}, {"@#$", 1, 1}, {"1LU", 0, 1},  {"9", 0, 1},
        {"A9", 1, 1}, {"lu1", 0, 1}, {"A.B", 0, 1}, {".", 0, 1},    {"A B", 0, 0},
        {"A ", 0, 0}, {"A-B", 0, 0}, {"A_B", 0, 0}, {"\xC4", 0, 0}, {"A%", 0, 0},
        {"~A", 0, 0}, {"A{", 0, 0},  {"A}", 0, 0},  {"A\\", 0, 0},  {"A\xA7", 0, 0},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(check(NB_EBCDIC_TYPE_A, c.text), c.type_a) << c.text;
        EXPECT_EQ(check(NB_EBCDIC_TYPE_AE, c.text), c.type_ae) << c.text;
        EXPECT_EQ(check(5, c.text), 0) << c.text;
    }
}

// The letters of EBCDIC have gaps; nothing in a gap is a letter.
TEST(NameCheck, CountsOfWholeSets) {
    int type_a = 0;
    int type_ae = 0;
    for (int byte = 0; byte < 256; byte++) {
        const NB_UCHAR name[] = {0xC1, static_cast<NB_UCHAR>(byte)};
        type_a += nba_check_ebcdic(NB_EBCDIC_TYPE_A, name, 2);
        type_ae += nba_check_ebcdic(NB_EBCDIC_TYPE_AE, name, 2);
    }
    EXPECT_EQ(type_a, 26 + 10 + 3);
    EXPECT_EQ(type_ae, 2 * 26 + 10 + 3 + 1);
}

struct Copied {
    std::string text;
    NB_USHORT count;
};

Copied copy(const char *text, NB_USHORT size) {
    std::vector<char> out(size + 1U, '#');
    const NB_USHORT count = v0_mb_strncpy(out.data(), text, size);
    EXPECT_EQ(out[size], '#') << "wrote behind the end";
    return {size ? std::string(out.data()) : std::string(), count};
}

TEST(CopyText, SingleBytes) {
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(copy("abc", 10).text, "abc");
    EXPECT_EQ(copy("abc", 4).count, 3);
    EXPECT_EQ(copy("abc", 3).text, "ab");
    EXPECT_EQ(copy("abc", 1).text, "");
    EXPECT_EQ(copy("abc", 0).count, 0);
    EXPECT_EQ(copy("\xFC\xE4", 3).text, "\xFC\xE4");
    EXPECT_EQ(copy(nullptr, 3).text, "");
}

TEST(CopyText, NeverHalfACharacter) {
    ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
    const char euro[] = "a\xE2\x82\xAC"
                        "b";
    EXPECT_EQ(copy(euro, 6).text, euro);
    EXPECT_EQ(copy(euro, 5).text, "a\xE2\x82\xAC");
    EXPECT_EQ(copy(euro, 4).text, "a");
    EXPECT_EQ(copy(euro, 3).count, 1);
    EXPECT_EQ(copy("a\xE2\x82", 10).text, "a") << "the text itself ends in half a character";
    EXPECT_EQ(copy("\xFF\xFE"
                   "b",
                   10)
                  .text,
              "\xFF\xFE"
              "b")
        << "bytes that are no character are kept";
    std::setlocale(LC_ALL, "C");
}

} // namespace
