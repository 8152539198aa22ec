// The rules of text fields without a widget: what may be typed, and what a collected text is worth.

#include "fieldtext.h"
#include "filterrules.h"
#include "nbbase.h"

#include <clocale>
#include <cstring>
#include <gtest/gtest.h>
#include <optional>
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
    const char *field;
    const char *text;
    const char *after; // null: refused
};

void check(VGA_FILTER filter, const std::vector<CASE> &cases) {
    for (const CASE &row : cases) {
        SCOPED_TRACE(testing::Message()
                     << "filter " << filter << ", \"" << row.field << "\" + \"" << row.text << '"');
        std::string field = row.field;
        const size_t start = field.find('<');
        field.erase(start, 1);
        const size_t end = field.find('>');
        field.erase(end, 1);
        const std::optional<std::string> after = change(filter, field, start, end, row.text);
        EXPECT_EQ(after.value_or("(refused)"), row.after != nullptr ? row.after : "(refused)");
    }
}

TEST(Filters, SingleCharacters) {
    check(VGA_FILTER_TP_NAME,
          {{"<>", "a\"b\\/\x01", "a\"b\\/\x01"}, {"a<>", "b c", nullptr}, {"a<>", "\t", nullptr}});
    check(VGA_FILTER_IP_NAME,
          {{"<>", "host-1_a.net:80", "host-1_a.net:80"}, {"<>", "host/1", nullptr}});
    check(VGA_FILTER_IP_ADDR, {{"10<>", ".1.2", "10.1.2"}, {"10<>", ".a", nullptr}});
    check(VGA_FILTER_ALPHANUM, {{"<>", "aB9", "aB9"}, {"<>", "a-9", nullptr}});
    check(VGA_FILTER_NUM, {{"<>", "12a4", nullptr},
                           {"<5>", "0123456789", "0123456789"},
                           {"1<>", "-", nullptr},
                           {"a<b>c", "", "ac"}});
    check(VGA_FILTER_CAPS_ALPHANUM, {{"x<>", "ab9", "xAB9"}, /* what stands there stays */
                                     {"<>", "a b", nullptr}});
    check(VGA_FILTER_HEX, {{"<>", "ab0F", "AB0F"}, {"<>", "0g", nullptr}});
    check(VGA_FILTER_HEX_PWD, {{"<>", "cafe", "CAFE"}, {"<>", "x", nullptr}});
    check(VGA_FILTER_ALL_CAPS, {{"<>", "a b/\xff", "A B/\xff"}});
    check(VGA_FILTER_FILENAME, {{"<>", "a b~\x7f", "a b~\x7f"},
                                {"<>", "a/b", nullptr},
                                {"<>", "a\\b", nullptr},
                                {"<>", "a\nb", nullptr}});
    check(VGA_FILTER_PATHNAME,
          {{"<>", "/a b/c", "/a b/c"}, {"<>", "a\"", nullptr}, {"<>", "a\x1f", nullptr}});
}

TEST(Filters, MinusSignOnlyInFront) {
    check(VGA_FILTER_SIGNED_NUM, {{"<>", "-", "-"},
                                  {"<>5", "-", "-5"},
                                  {"<>", "-12", "-12"},
                                  {"<-5>", "-6", "-6"},
                                  {"<->5", "4", "45"},
                                  {"5<>", "-", nullptr},
                                  {"<>", "1-2", nullptr},
                                  {"<>-5", "-", nullptr},
                                  {"<>-5", "4", nullptr},
                                  {"-<>5", "1", "-15"}});
}

TEST(Filters, Names) {
    check(VGA_FILTER_EBCDIC, {{"<>", "lu$#@01a", "LU$#@01A"},
                              {"<>", "abcdefghi", nullptr}, /* nine, each of them good */
                              {"<>", "1a", nullptr},
                              {"<>A", "1", nullptr},
                              {"A<>", "1b", "A1B"},
                              {"A<>", "b.c", nullptr},
                              {"<A>1B", "", nullptr},
                              {"<A1>B", "", "B"},
                              {"<A1B>", "", ""}, /* to the end */
                              {"A1<B>", "", "A1"},
                              {"A<1>2", "", "A2"},
                              {"<A>1B", "c", "C1B"},
                              {"<>", "\xe9", nullptr}});
    check(VGA_FILTER_EBCDIC_LOWER, {
                                       {"<>", "myLu1", "myLu1"},
                                       {"<>", "a.b", nullptr},
                                       {"<a>1", "", nullptr},
                                       {"<a>bc", "", "bc"} /* shown in the case that was typed */
                                   });
    check(VGA_FILTER_EBCDIC_AE, {{"<>", "1a.B", "1a.B"},
                                 {"<>", "a-b", nullptr},
                                 {"<>", "abcdefghi", nullptr},
                                 {"<a>1", "", "1"}});
    check(VGA_FILTER_EBCDIC_AE_PWD,
          {{"<>", "abcdefghij", "abcdefghij"}, {"<>", "abcdefghijk", nullptr}});
}

TEST(Filters, ModeNamesAndTemplates) {
    check(VGA_FILTER_MODE_NAME, {{"<>", "#inter  ", "#INTER  "},
                                 {"<>", "a b", nullptr},
                                 {"<>", "abcdefghi", nullptr},
                                 {"<>", "1", nullptr},
                                 {"AB<>", " ", "AB "},
                                 {"AB <>", "c", nullptr},
                                 {"A<>B", " ", nullptr},
                                 {"<A>B  ", "", "B  "},
                                 {"<A>  ", "", "  "},
                                 {"<A>1 ", "", nullptr},
                                 {"<>", "a|", nullptr},
                                 {"<A>B[|", "", "B[|"},
                                 {"<A>|B", "", nullptr}});
    check(VGA_FILTER_LU_NAME_TEMPLATE, {{"<>", "lu..a.", "LU..A."},
                                        {"<>", ".lu", nullptr},
                                        {"L<>", ".", "L."},
                                        {"<L>.U", "", nullptr},
                                        {"<L>@.", "", "@."}});
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

TEST(Fields, NodeIdentifiers) {
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

} // namespace
