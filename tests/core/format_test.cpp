/* Messages: the formatter and the readers of resources. */
#include <gtest/gtest.h>

#include "globals.h"
#include "messages.h"
#include "resourcereader.h"
#include "toolkit.h"
#include <cstdarg>
#include <string>

namespace {

std::string format(NB_USHORT size, const NB_CHAR *text, const NB_CHAR *types, ...) {
    std::string buffer(size + 1U, '#');
    va_list arguments;
    va_start(arguments, types);
    NB_USHORT length = vga_format_text(buffer.data(), size, text, types, arguments);
    va_end(arguments);
    EXPECT_EQ(buffer[size], '#') << "wrote past its buffer";
    EXPECT_EQ(buffer.find('\0'), size != 0 ? length : std::string::npos);
    return buffer.substr(0, length);
}

TEST(Format, PlacesArgumentsByNumber) {
    EXPECT_EQ(format(80, "%2 and %1", "s s", "b", "a"), "a and b");
    EXPECT_EQ(format(80, "%1 %1", "i", -5), "-5 -5");
    EXPECT_EQ(format(80, "0x%1 0x%2", "x lx", 0x210B, 0x5514), "0x210B 0x00005514");
    EXPECT_EQ(format(80, "100%% of %1", "l", 7), "100% of 7");
    EXPECT_EQ(format(80, "[%3]", "s", "only"), "[]");
    EXPECT_EQ(format(80, "%s %d %n", "", 0), "%s %d %n");
}

TEST(Format, ReadsPaddedArrays) {
    EXPECT_EQ(format(80, "[%1]", "ca", 8, "PORT0   "), "[PORT0]");
    EXPECT_EQ(format(80, "[%1]", "ca", 8, "AB\0CDEFG"), "[AB]");
    EXPECT_EQ(format(80, "[%1]", "ca", 8, "EIGHTCHRmore"), "[EIGHTCHR]");
    EXPECT_EQ(format(80, "[%1|%2]", "cs i", 4, "AB  ", 3), "[AB  |3]");
}

TEST(Format, PassesColumnStopsThrough) {
    EXPECT_EQ(format(80, "%1%t16%%2%t30x", "s s", "a", "b"), "a%t16%b%t30x");
    EXPECT_EQ(format(80, "%t%1", "s", "a"), "%ta");
}

TEST(Format, CutsWhatDoesNotFit) {
    EXPECT_EQ(format(6, "%1", "s", "abcdefgh"), "abcde");
    EXPECT_EQ(format(1, "%1", "s", "abc"), "");
    EXPECT_EQ(format(0, "%1", "s", "abc"), "");
    setlocale(LC_ALL, "C.UTF-8");
    EXPECT_EQ(format(5, "%1", "s", "ab\xC3\xA9\xC3\xA9"), "ab\xC3\xA9") << "whole characters";
    setlocale(LC_ALL, "C");
}

class Resources : public testing::Test {
protected:
    void SetUp() override { XrmInitialize(); }
    void TearDown() override {
        XrmDestroyDatabase(gvga_resource_database);
        gvga_resource_database = nullptr;
    }
    void put(const char *line) { XrmPutLineResource(&gvga_resource_database, line); }
};

TEST_F(Resources, FlagsAreYesWhereverAYStands) {
    EXPECT_EQ(vga_get_resource_bool(".supportApply", 1), 1) << "no database";
    put("Quiladmin.a: Yes");
    put("Quiladmin.b: NoYes");
    put("Quiladmin.c: true");
    put("Quiladmin.d: a text that is far too long to be a y or n");
    EXPECT_EQ(vga_get_resource_bool(".a", 0), 1);
    EXPECT_EQ(vga_get_resource_bool(".b", 0), 1);
    EXPECT_EQ(vga_get_resource_bool(".c", 1), 0);
    EXPECT_EQ(vga_get_resource_bool(".d", 1), 1);
    EXPECT_EQ(vga_get_resource_bool(".missing", 1), 1);
}

TEST_F(Resources, NumbersOutsideTheirRangeAreTheDefault) {
    const struct {
        const char *line;
        NB_ULONG expected;
    } cases[] = {
        {"Quiladmin.queryBufferSize: 1024", 65535},
        {"Quiladmin.queryBufferSize: 70000", 65535},
        {"Quiladmin.queryBufferSize: abc", 65535},
        {"Quiladmin.queryBufferSize: 0x1000", 4096},
        {"Quiladmin.queryBufferSize: 010000", 4096},
        {"Quiladmin.queryBufferSize: 2048", 2048},
        {"Quiladmin.queryBufferSize: -1", 65535},
        {"Quiladmin.queryBufferSize: 99999999999999999999", 65535},
    };
    for (const auto &row : cases) {
        put(row.line);
        vga_get_options();
        EXPECT_EQ(gvga_querybuf_size, row.expected) << row.line;
    }
}

TEST_F(Resources, TextsAreTakenUpToTheirLimit) {
    NB_CHAR buffer[11];
    put("Quiladmin.t: 123456789"); /* ten bytes with its terminator */
    EXPECT_EQ(vga_get_resource_string(".t", "none", buffer, 10), 1);
    EXPECT_STREQ(buffer, "123456789");
    put("Quiladmin.t: 1234567890");
    EXPECT_EQ(vga_get_resource_string(".t", "none", buffer, 10), 0);
    EXPECT_STREQ(buffer, "none");
    put("Quiladmin.aNameOfFarMoreThanThirtyCharacters: x");
    EXPECT_EQ(vga_get_resource_string(".aNameOfFarMoreThanThirtyCharacters", "none", buffer, 10),
              0);
}

} // namespace
