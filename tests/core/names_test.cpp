/* Comparators, checks and builders of SNA names. */
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "nbbase.h"
#include "ntlcomn.h"
#include "ntlname.h"

namespace {

using Bytes = std::vector<NB_UCHAR>;
using Compare = NB_INT (*)(const NB_VOID *, const NB_VOID *);

/* An EBCDIC field from local text, padded with blanks. */
Bytes field(std::string text, size_t width) {
    text.resize(width, ' ');
    Bytes bytes(text.begin(), text.end());
    nba_local_to_ebcdic(bytes.data(), static_cast<NB_USHORT>(width));
    return bytes;
}

/* Local text of a field, without the blanks behind it; a zero byte shows as '0'. */
std::string text_of(Bytes bytes) {
    nba_ebcdic_to_local(bytes.data(), static_cast<NB_USHORT>(bytes.size()));
    std::string text(bytes.begin(), bytes.end());
    std::replace(text.begin(), text.end(), '\0', '0');
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

const std::string zeros(size_t count) {
    return std::string(count, '0');
}

} // namespace

TEST(Comparators, IdentityOrderLooksAtEveryByteUnsigned) {
    struct Case {
        Compare compare;
        size_t width;
    };
    for (Case row : {Case{ntl_compare_proc_id, 4}, Case{ntl_compare_name, 8},
                     Case{ntl_compare_fq_name, 17}, Case{ntl_compare_tp_name, 64}}) {
        for (size_t at = 0; at < row.width; at++) {
            /* What follows the difference, and what follows the key, says the opposite; odd
             * addresses are allowed. */
            Bytes a(row.width + 2, 0x40), b(row.width + 2, 0x40);
            a[1 + at] = 0x7F;
            b[1 + at] = 0x80;
            std::fill(a.begin() + 2 + static_cast<std::ptrdiff_t>(at), a.end(), NB_UCHAR{0xFF});
            EXPECT_EQ(row.compare(&a[1], &b[1]), -1) << row.width << " at " << at;
            EXPECT_EQ(row.compare(&b[1], &a[1]), 1) << row.width << " at " << at;
        }
        Bytes same(row.width + 1, 0xC1), other = same;
        other[row.width] = 0;
        EXPECT_EQ(row.compare(same.data(), other.data()), 0);
    }
}

TEST(Comparators, DisplayOrder) {
    struct Case {
        const char *a, *b;
        NB_INT sna, fq; /* of 8 bytes; of 17 and 64 */
    };
    const Case cases[] = {
        {"B", "AA", -1, -1},       {"AB", "AC", -1, -1},     {"AB", "AB", 0, 0},
        {"A", "ABCDEFGH", -7, -7}, {"", "ABCDEFGH", -1, -8}, {"", "A", 7, -1},
        {" B", "ABCDEFG", 1, -7},  {"1", "A", -1, -1}, /* digits are above letters in EBCDIC, below
                                                          them here */
        {"a", "B", 1, 1},                              /* and small letters below capitals */
        {"AB X", "AB Y", -1, -1},                      /* what follows a blank counts last */
    };
    for (const Case &row : cases) {
        for (NB_INT turn : {1, -1}) {
            auto expect = [&](Compare compare, size_t width, NB_INT result) {
                Bytes a = field(turn > 0 ? row.a : row.b, width);
                Bytes b = field(turn > 0 ? row.b : row.a, width);
                EXPECT_EQ(compare(a.data(), b.data()), turn * result)
                    << '"' << row.a << "\" \"" << row.b << "\" " << width;
            };
            expect(ntl_compare_mib_sna_name, 8, row.sna);
            expect(ntl_compare_mib_fq_name, 17, row.fq);
            expect(ntl_compare_mib_tp_name, 64, row.fq);
        }
    }
}

TEST(Comparators, LocalNames) {
    const auto compare = ntl_compare_mib_ascii_sna_name;
    EXPECT_EQ(compare("B       ", "AA      "), -1);
    EXPECT_EQ(compare("AB      ", "AC      "), -1);
    EXPECT_EQ(compare("ABCDEFGH", "ABCDEFG\xE9"), -1);
    EXPECT_EQ(compare("        ", "ABCDEFGH"), -8);
    EXPECT_EQ(compare("ETH0    ", "ETH0    "), 0);
}

TEST(Names, LengthAndCharacters) {
    EXPECT_EQ(ntl_name_length(field("LU1 X", 8).data(), 8), 3);
    EXPECT_EQ(ntl_name_length(field("", 8).data(), 8), 0);
    EXPECT_EQ(ntl_name_length(field("ABCDEFGHI", 9).data(), 8), 8);
    EXPECT_EQ(ntl_name_length(field("A", 8).data(), 0), 0);

    struct Case {
        NB_USHORT type;
        const char *name;
        NB_USHORT valid;
    };
    for (const Case &row :
         {Case{8, "LU1", 1}, Case{8, "", 1}, Case{8, "1LU", 0}, Case{8, "#@$9", 1},
          Case{8, "lu1", 0}, Case{8, "L 1", 0}, Case{8, " L1", 0}, Case{4, "lu.1", 1},
          Case{4, "1LU", 1}, Case{4, "LU-1", 0}}) {
        EXPECT_EQ(ntl_check_name(row.type, field(row.name, 8).data(), 8), row.valid) << row.name;
    }
    EXPECT_EQ(ntl_check_name(8, field("-", 8).data(), 0), 1);
}

TEST(Names, FullyQualified) {
    struct Case {
        const char *name;
        NB_USHORT code;
        std::string network_id, local;
    };
    const std::string none = zeros(8);
    const Case cases[] = {
        {"NETA.LU1", 1, "NETA", "LU1"},
        {"NETWORKI.LONGNAME", 1, "NETWORKI", "LONGNAME"},
        {"LU1", 2, none, "LU1"},
        {"LONGNAME", 2, none, "LONGNAME"},
        {"NETWORKID.LU1", 3, none, none},
        {"ABCDEFGHIJKLMNOP.", 3, none, none},
        {"NETA.LONGNAME9", 4, none, none},
        {"LONGNAME9", 4, none, none},
        {"ABCDEFGHIJKLMNOPQ", 4, none, none},
        {"NeTA.LU1", 5, none, none},
        {"1NET.LU1", 5, none, none},
        {"NET .LU1", 5, none, none},
        {"NETA.LU-1", 6, none, none},
        {"NETA.1LU", 6, none, none},
        {"A.B.C", 6, none, none},
        {".LU1", 7, none, none},
        {".", 7, none, none},
        {"NETA.", 8, none, none},
        {"NETA. LU1", 8, none, none},
        {"", 8, none, none},
        {"NETA.LU1 X", 9, none, none},
        {"LU1            X", 9, none, none},
        {"NETA.LU-1 X", 6, none, none}, /* the first fault from the left counts */
        {"NE-A.LONGNAME9", 5, none, none},
    };
    for (const Case &row : cases) {
        Bytes fq = field(row.name, 17), network_id(8, 0xAA), local(8, 0xAA);
        EXPECT_EQ(ntl_check_fq_name(fq.data()), row.code) << row.name;
        EXPECT_EQ(ntl_split_fq_name(fq.data(), network_id.data(), local.data()), row.code);
        EXPECT_EQ(text_of(network_id), row.network_id) << row.name;
        EXPECT_EQ(text_of(local), row.local) << row.name;
    }
}

TEST(Names, Builders) {
    auto make = [](const char *network_id, const char *name) {
        Bytes fq(17);
        ntl_make_fq_name(field(network_id, 8).data(), field(name, 8).data(), fq.data());
        return text_of(fq);
    };
    EXPECT_EQ(make("NETA", "LU1"), "NETA.LU1");
    EXPECT_EQ(make("NETWORKI", "LONGNAME"), "NETWORKI.LONGNAME");
    EXPECT_EQ(make("", "LU1"), ".LU1");
    EXPECT_EQ(make("AB CDEFG", "LU1"), "AB.LU1");

    auto change = [](const char *old, const char *name) {
        Bytes fq = field(old, 17);
        ntl_change_local_name(fq.data(), field(name, 8).data(), fq.data());
        return text_of(fq);
    };
    EXPECT_EQ(change("NETA.LONGNAME", "LU1"), "NETA.LU1");
    EXPECT_EQ(change("NETWORKI.X", "LONGNAME"), "NETWORKI.LONGNAME");
    EXPECT_EQ(change(".X", "LU1"), ".LU1");
    EXPECT_EQ(change("ANYTHING BEFORE", "LU1"), "LU1");
    EXPECT_EQ(change("NETWORKID.X", "LU1"), zeros(17));
}

TEST(Names, InternalNameClosesUpBlanks) {
    struct Case {
        const char *in;
        NB_USHORT in_length, out_width;
        const char *out;
    };
    for (const Case &row : {Case{" A B  C ", 8, 8, "ABC"}, Case{"ABCDEFGHIJ", 10, 8, "ABCDEFGH"},
                            Case{"A B C D", 7, 3, "ABC"}, Case{"", 0, 4, ""}, Case{"AB", 1, 4, "A"},
                            Case{"AB", 2, 0, ""}}) {
        Bytes in = field(row.in, 10);
        Bytes out(row.out_width + 1U, 0xAA);
        ntl_make_internal_name(out.data(), row.out_width, in.data(), row.in_length);
        EXPECT_EQ(out.back(), 0xAA) << "written behind the end";
        out.pop_back();
        EXPECT_EQ(text_of(out), row.out);
        EXPECT_EQ(std::count(out.begin(), out.end(), NTL_BLANK),
                  static_cast<std::ptrdiff_t>(row.out_width - std::strlen(row.out)));
    }
}
