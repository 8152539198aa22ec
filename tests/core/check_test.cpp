// The rules of text fields without a widget: what may be typed, and what a collected text is worth.

#include "fieldtext.h"
#include "filterrules.h"
#include "nbbase.h"

#include <algorithm>
#include <clocale>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

// The field after the change, or nothing when it is refused.  Positions are in bytes here.
std::optional<std::string> change(VGA_FILTER filter, const std::string &field, size_t start,
                                  size_t end, std::string text) {
    const std::string typed = text;
    const VGA_CHANGE asked = {field.c_str(), static_cast<NB_ULONG>(start),
                              static_cast<NB_ULONG>(end), text.empty() ? nullptr : text.data(),
                              static_cast<NB_ULONG>(text.size())};
    if (vga_check_change(filter, &asked) == 0) {
        EXPECT_EQ(text, typed) << "refused, and changed all the same";
        return std::nullopt;
    }
    return field.substr(0, start) + text + field.substr(end);
}

// A field "abc<def>ghi" has its part in brackets replaced; "<>" is the cursor.
struct CASE {
    VGA_FILTER filter;
    const char *field;
    const char *text;
    const char *after; // null: refused
};

std::ostream &operator<<(std::ostream &out, const CASE &row) {
    return out << "filter " << row.filter << ", \"" << row.field << "\" + \"" << row.text << '"';
}

void check(const std::vector<CASE> &cases) {
    for (const CASE &row : cases) {
        std::string field = row.field;
        const size_t start = field.find('<');
        field.erase(start, 1);
        const size_t end = field.find('>');
        field.erase(end, 1);
        const std::optional<std::string> after = change(row.filter, field, start, end, row.text);
        EXPECT_EQ(after.has_value(), row.after != nullptr) << row;
        if (after.has_value() && row.after != nullptr) {
            EXPECT_EQ(*after, row.after) << row;
        }
    }
}

TEST(Filters, SingleCharacters) {
    check({
        {VGA_FILTER_TP_NAME, "<>", "a\"b\\/\x01", "a\"b\\/\x01"},
        {VGA_FILTER_TP_NAME, "a<>", "b c", nullptr},
        {VGA_FILTER_TP_NAME, "a<>", "\t", nullptr},
        {VGA_FILTER_IP_NAME, "<>", "host-1_a.net:80", "host-1_a.net:80"},
        {VGA_FILTER_IP_NAME, "<>", "host/1", nullptr},
        {VGA_FILTER_IP_ADDR, "10<>", ".1.2", "10.1.2"},
        {VGA_FILTER_IP_ADDR, "10<>", ".a", nullptr},
        {VGA_FILTER_ALPHANUM, "<>", "aB9", "aB9"},
        {VGA_FILTER_ALPHANUM, "<>", "a-9", nullptr},
        {VGA_FILTER_NUM, "<>", "12a4", nullptr},
        {VGA_FILTER_NUM, "<5>", "0123456789", "0123456789"},
        {VGA_FILTER_NUM, "1<>", "-", nullptr},
        {VGA_FILTER_CAPS_ALPHANUM, "x<>", "ab9", "xAB9"}, // what stands there stays
        {VGA_FILTER_CAPS_ALPHANUM, "<>", "a b", nullptr},
        {VGA_FILTER_HEX, "<>", "ab0F", "AB0F"},
        {VGA_FILTER_HEX, "<>", "0g", nullptr},
        {VGA_FILTER_HEX_PWD, "<>", "cafe", "CAFE"},
        {VGA_FILTER_HEX_PWD, "<>", "x", nullptr},
        {VGA_FILTER_ALL_CAPS, "<>", "a b/\xff", "A B/\xff"},
        {VGA_FILTER_FILENAME, "<>", "a b~\x7f", "a b~\x7f"},
        {VGA_FILTER_FILENAME, "<>", "a/b", nullptr},
        {VGA_FILTER_FILENAME, "<>", "a\\b", nullptr},
        {VGA_FILTER_FILENAME, "<>", "a\nb", nullptr},
        {VGA_FILTER_PATHNAME, "<>", "/a b/c", "/a b/c"},
        {VGA_FILTER_PATHNAME, "<>", "a\"", nullptr},
        {VGA_FILTER_PATHNAME, "<>", "a\x1f", nullptr},
        // A deletion is never refused here.
        {VGA_FILTER_NUM, "a<b>c", "", "ac"},
    });
}

TEST(Filters, MinusSignOnlyInFront) {
    check({
        {VGA_FILTER_SIGNED_NUM, "<>", "-", "-"},
        {VGA_FILTER_SIGNED_NUM, "<>5", "-", "-5"},
        {VGA_FILTER_SIGNED_NUM, "<>", "-12", "-12"},
        {VGA_FILTER_SIGNED_NUM, "<-5>", "-6", "-6"},
        {VGA_FILTER_SIGNED_NUM, "<->5", "4", "45"},
        {VGA_FILTER_SIGNED_NUM, "5<>", "-", nullptr},
        {VGA_FILTER_SIGNED_NUM, "<>", "1-2", nullptr},
        {VGA_FILTER_SIGNED_NUM, "<>-5", "-", nullptr},
        {VGA_FILTER_SIGNED_NUM, "<>-5", "4", nullptr},
        {VGA_FILTER_SIGNED_NUM, "-<>5", "1", "-15"},
    });
}

TEST(Filters, Names) {
    check({
        {VGA_FILTER_EBCDIC, "<>", "lu$#@01a", "LU$#@01A"},
        {VGA_FILTER_EBCDIC, "<>", "abcdefghi", nullptr}, // nine, each of them good
        {VGA_FILTER_EBCDIC, "<>", "1a", nullptr},
        {VGA_FILTER_EBCDIC, "<>A", "1", nullptr},
        {VGA_FILTER_EBCDIC, "A<>", "1b", "A1B"},
        {VGA_FILTER_EBCDIC, "A<>", "b.c", nullptr},
        {VGA_FILTER_EBCDIC, "<A>1B", "", nullptr},
        {VGA_FILTER_EBCDIC, "<A1>B", "", "B"},
        {VGA_FILTER_EBCDIC, "<A1B>", "", ""}, // to the end
        {VGA_FILTER_EBCDIC, "A1<B>", "", "A1"},
        {VGA_FILTER_EBCDIC, "A<1>2", "", "A2"},
        {VGA_FILTER_EBCDIC, "<A>1B", "c", "C1B"},
        {VGA_FILTER_EBCDIC, "<>", "\xe9", nullptr},
        {VGA_FILTER_EBCDIC_LOWER, "<>", "myLu1", "myLu1"},
        {VGA_FILTER_EBCDIC_LOWER, "<>", "a.b", nullptr},
        {VGA_FILTER_EBCDIC_LOWER, "<a>1", "", nullptr},
        {VGA_FILTER_EBCDIC_LOWER, "<a>bc", "", "bc"}, // shown in the case that was typed
        {VGA_FILTER_EBCDIC_AE, "<>", "1a.B", "1a.B"},
        {VGA_FILTER_EBCDIC_AE, "<>", "a-b", nullptr},
        {VGA_FILTER_EBCDIC_AE, "<>", "abcdefghi", nullptr},
        {VGA_FILTER_EBCDIC_AE, "<a>1", "", "1"},
        {VGA_FILTER_EBCDIC_AE_PWD, "<>", "abcdefghij", "abcdefghij"},
        {VGA_FILTER_EBCDIC_AE_PWD, "<>", "abcdefghijk", nullptr},
    });
}

TEST(Filters, ModeNamesAndTemplates) {
    check({
        {VGA_FILTER_MODE_NAME, "<>", "#inter  ", "#INTER  "},
        {VGA_FILTER_MODE_NAME, "<>", "a b", nullptr},
        {VGA_FILTER_MODE_NAME, "<>", "abcdefghi", nullptr},
        {VGA_FILTER_MODE_NAME, "<>", "1", nullptr},
        {VGA_FILTER_MODE_NAME, "AB<>", " ", "AB "},
        {VGA_FILTER_MODE_NAME, "AB <>", "c", nullptr},
        {VGA_FILTER_MODE_NAME, "A<>B", " ", nullptr},
        {VGA_FILTER_MODE_NAME, "<A>B  ", "", "B  "},
        {VGA_FILTER_MODE_NAME, "<A>  ", "", "  "},
        {VGA_FILTER_MODE_NAME, "<A>1 ", "", nullptr},
        // Cannot be typed, but a mode that was defined elsewhere may be shown with them.
        {VGA_FILTER_MODE_NAME, "<>", "a|", nullptr},
        {VGA_FILTER_MODE_NAME, "<A>B[|", "", "B[|"},
        {VGA_FILTER_MODE_NAME, "<A>|B", "", nullptr},
        {VGA_FILTER_LU_NAME_TEMPLATE, "<>", "lu..a.", "LU..A."},
        {VGA_FILTER_LU_NAME_TEMPLATE, "<>", ".lu", nullptr},
        {VGA_FILTER_LU_NAME_TEMPLATE, "L<>", ".", "L."},
        {VGA_FILTER_LU_NAME_TEMPLATE, "<L>.U", "", nullptr},
        {VGA_FILTER_LU_NAME_TEMPLATE, "<L>@.", "", "@."},
    });
}

class MultiByte : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(setlocale(LC_ALL, "C.UTF-8"), nullptr); }
    void TearDown() override { setlocale(LC_ALL, "C"); }
};

TEST_F(MultiByte, CharactersAreWholeAndHaveNoClass) {
    const char umlaut[] = "\xc3\xa4";
    const char wide_blank[] = "\xe3\x80\x80";
    for (VGA_FILTER filter : {VGA_FILTER_ALPHANUM, VGA_FILTER_NUM, VGA_FILTER_CAPS_ALPHANUM,
                              VGA_FILTER_IP_NAME, VGA_FILTER_EBCDIC, VGA_FILTER_EBCDIC_AE}) {
        EXPECT_FALSE(change(filter, "", 0, 0, umlaut)) << "filter " << filter;
    }
    EXPECT_EQ(change(VGA_FILTER_ALL_CAPS, "", 0, 0, std::string("a") + umlaut + "b"),
              std::string("A") + umlaut + "B");
    EXPECT_TRUE(change(VGA_FILTER_TP_NAME, "", 0, 0, umlaut));
    EXPECT_FALSE(change(VGA_FILTER_TP_NAME, "", 0, 0, wide_blank));
    EXPECT_TRUE(change(VGA_FILTER_FILENAME, "", 0, 0, wide_blank));

    // Positions count characters: in a field that the program filled, the first one goes and what
    // is left begins with a digit, although its bytes would be cut elsewhere.
    VGA_CHANGE deletion = {"\xc3\xa4"
                           "1B",
                           0, 1, nullptr, 0};
    EXPECT_EQ(vga_check_change(VGA_FILTER_EBCDIC, &deletion), 0);
    deletion.end = 2;
    EXPECT_EQ(vga_check_change(VGA_FILTER_EBCDIC, &deletion), 1);
    deletion.end = 99;
    EXPECT_EQ(vga_check_change(VGA_FILTER_EBCDIC, &deletion), 1);
}

TEST(Fields, Numbers) {
    constexpr int64_t ulong_max = UINT32_MAX;
    const struct {
        const char *text;
        int64_t min, max;
        VGA_NUMBER_STATE state;
        int64_t value;
    } cases[] = {
        {"", 0, 10, VGA_NUMBER_EMPTY, 7},
        {"   ", 0, 10, VGA_NUMBER_EMPTY, 7},
        {"0", 0, 10, VGA_NUMBER_GOOD, 0},
        {" 010 ", 0, 10, VGA_NUMBER_GOOD, 10}, // decimal, whatever stands in front
        {"11", 0, 10, VGA_NUMBER_OUT_OF_RANGE, 7},
        {"-1", 0, 10, VGA_NUMBER_OUT_OF_RANGE, 7},
        {"-5", -5, 10, VGA_NUMBER_GOOD, -5},
        {"-6", -5, 10, VGA_NUMBER_OUT_OF_RANGE, 7},
        {"-", -5, 10, VGA_NUMBER_OUT_OF_RANGE, 7},
        {"5x", 0, 10, VGA_NUMBER_OUT_OF_RANGE, 7},
        {"x", 0, 10, VGA_NUMBER_OUT_OF_RANGE, 7},
        {"0x5", 0, 10, VGA_NUMBER_OUT_OF_RANGE, 7},
        {"4294967295", 0, ulong_max, VGA_NUMBER_GOOD, ulong_max},
        {"4294967296", 0, ulong_max, VGA_NUMBER_OUT_OF_RANGE, 7},
        {"18446744073709551617", 0, ulong_max, VGA_NUMBER_OUT_OF_RANGE, 7}, // 1 in 64 bits
    };
    for (const auto &row : cases) {
        int64_t value = 7;
        EXPECT_EQ(vga_read_number(row.text, row.min, row.max, &value), row.state) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST(Fields, HexAndNodeIdentifiers) {
    const std::map<std::string, NB_INT> lengths = {{"", 0},    {"0aF1", 2},  {"123", -1},
                                                   {"1G", -1}, {"-1", -1},   {"12345678", -1},
                                                   {"0x", -1}, {"123456", 3}};
    for (const auto &[text, length] : lengths) {
        NB_UCHAR out[3] = {};
        EXPECT_EQ(records::read_bytes(text, out, sizeof(out)), length) << text;
        if (text == "0aF1") {
            EXPECT_EQ(memcmp(out, "\x0a\xf1", 2), 0);
        }
    }
    const struct {
        const char *block, *puid;
        VGA_NODE_ID_STATE state;
        const char *node_id;
    } cases[] = {
        {"", "", VGA_NODE_ID_EMPTY, "????"},
        {"05D", "12aBc", VGA_NODE_ID_GOOD, "\x05\xd1\x2a\xbc"},
        {"FFF", "FFFFF", VGA_NODE_ID_GOOD, "\xff\xff\xff\xff"},
        {"05", "12345", VGA_NODE_ID_BAD_BLOCK, "????"},
        {"", "12345", VGA_NODE_ID_BAD_BLOCK, "????"},
        {"0xD", "12345", VGA_NODE_ID_BAD_BLOCK, "????"},
        {"05D", "1234", VGA_NODE_ID_BAD_PUID, "????"},
        {"05D", "", VGA_NODE_ID_BAD_PUID, "????"},
        {"05D", "-1234", VGA_NODE_ID_BAD_PUID, "????"},
    };
    for (const auto &row : cases) {
        NB_UCHAR node_id[5] = "????";
        EXPECT_EQ(vga_read_node_id(row.block, row.puid, node_id), row.state) << row.block;
        EXPECT_EQ(memcmp(node_id, row.node_id, 4), 0) << row.block << ' ' << row.puid;
    }
}

TEST(Fields, FullyQualifiedNames) {
    const struct {
        const char *network, *name;
        const char *strict, *lenient; // null: refused
    } cases[] = {
        {"", "", nullptr, "                 "},
        {"NET", "", nullptr, "NET              "},
        {"", "LU", nullptr, nullptr},
        {"NET", "LU", "NET.LU           ", "NET.LU           "},
        {"NETWORK1", "LUNAME01", "NETWORK1.LUNAME01", "NETWORK1.LUNAME01"},
        {"NETWORK1X", "LUNAME01X", "NETWORK1.LUNAME01", "NETWORK1.LUNAME01"},
    };
    for (const auto &row : cases) {
        for (const NB_USHORT lenient : {0, 1}) {
            const char *expected = lenient != 0 ? row.lenient : row.strict;
            NB_UCHAR fq_name[18] = {};
            EXPECT_EQ(vga_make_fq_name(row.network, row.name, lenient, fq_name),
                      expected != nullptr);
            EXPECT_EQ(fq_name[17], 0);
            nba_ebcdic_to_local(fq_name, 17);
            EXPECT_STREQ(reinterpret_cast<char *>(fq_name),
                         expected != nullptr ? expected : "                 ")
                << row.network << '.' << row.name;
        }
    }
}

} // namespace
