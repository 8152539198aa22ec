/* Names, addresses and field texts of the program. */
#include <cstring>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "messages.h"
#include "reports.h"
#include "vgautil.h"

namespace {

using namespace std::string_literals;
using Name = std::vector<NB_UCHAR>;
using Octets = std::vector<NB_UCHAR>;

Name ebcdic(std::string text, size_t width) {
    text.resize(width, ' ');
    Name name(text.begin(), text.end());
    nba_local_to_ebcdic(name.data(), static_cast<NB_USHORT>(width));
    return name;
}

Name tp(const std::string &text) {
    return ebcdic(text, 64);
}

/* Bytes as they stand, then EBCDIC blanks. */
Name raw_tp(const std::string &bytes) {
    Name name(64, 0x40);
    std::copy(bytes.begin(), bytes.end(), name.begin());
    return name;
}

NB_IP_ADDRESS address_of(const Octets &octets) {
    NB_IP_ADDRESS address = {};
    std::copy(octets.begin(), octets.end(), address.octets);
    return address;
}

/* An output buffer of exactly the stated size. */
template <size_t SIZE> struct Output {
    Output() : text(new NB_CHAR[SIZE]) { std::memset(text.get(), '#', SIZE); }
    operator NB_CHAR *() { return text.get(); }
    std::string str() const { return text.get(); }
    std::unique_ptr<NB_CHAR[]> text;
};

} // namespace

TEST(Util, StripSpaces) {
    struct Case {
        const char *text, *stripped;
    };
    for (Case row : {Case{"", ""}, {"   ", ""}, {"a b  ", "a b"}, {" a", " a"}, {"a\t ", "a\t"}}) {
        std::string text = row.text;
        vga_strip_spaces(text.data());
        EXPECT_STREQ(text.c_str(), row.stripped);
    }
}

TEST(Util, PadBuffer) {
    struct Case {
        std::string buffer;
        NB_USHORT length;
        std::string padded;
    };
    for (const Case &row : std::vector<Case>{{"ab\0xy"s, 4, "ab  y"},
                                             {"\0\0\0"s, 2, "  \0"s},
                                             {"abc"s, 3, "abc"},
                                             {"abc\0"s, 3, "abc\0"s},
                                             {"\0"s, 0, "\0"s}}) {
        std::string buffer = row.buffer;
        vga_pad_buffer(buffer.data(), row.length, ' ');
        EXPECT_EQ(buffer, row.padded);
    }
}

TEST(Util, HostNames) {
    const std::string part(63, 'x'), parts = part + "." + part + "." + part + "." + part;
    ASSERT_EQ(parts.size(), 255U);
    for (const std::string &good : {"a"s, "a.b"s, "* ?.\xFF"s, part, parts}) {
        EXPECT_EQ(vga_valid_ip_name(good.c_str()), 1) << good;
    }
    for (const std::string &bad :
         {""s, "."s, ".a"s, "a."s, "a..b"s, part + "x", "a." + part + "x", part + "x.a",
          parts + "x", parts.substr(0, 200) + ".." + part, std::string(1000, 'x')}) {
        EXPECT_EQ(vga_valid_ip_name(bad.c_str()), 0) << bad;
    }
}

TEST(Util, ParseAddress) {
    struct Case {
        const char *text;
        NB_USHORT result;
        Octets octets;
    };
    for (const Case &row : std::vector<Case>{
             {"10.1.1.255", 1, {10, 1, 1, 255}},
             {"0.00.000.0", 1, {0, 0, 0, 0}},
             {"010.0.0.1", 1, {8, 0, 0, 1}},
             {"0xA.0Xf.077.0x0", 1, {10, 15, 63, 0}},
             {"10.1.1.256", 0, {10, 1, 1}},
             {"1.2.3", 0, {1, 2, 3}},
             {"1.2.3.4.", 0, {1, 2, 3, 4}},
             {"1.2.3.4.5", 0, {1, 2, 3, 4}},
             {"1.2.3.", 0, {1, 2, 3}},
             {"1..2.3", 0, {1}},
             {".1.2.3", 0, {}},
             {"", 0, {}},
             {"08.1.1.1", 0, {}},
             {"0x.1.1.1", 0, {}},
             {"1.0xG.1.1", 0, {1}},
             {"1.2.3.0001", 0, {1, 2, 3}},
             {"1.0x10.3.4", 0, {1}},
             {"1.+2.3.4", 0, {1}},
             {"1.-2.3.4", 0, {1}},
             {"1. 2.3.4", 0, {1}},
             {"1.2 .3.4", 0, {1}},
             {"1.2.3.4 ", 0, {1, 2, 3}},
             {"a.b.c.d", 0, {}},
         }) {
        NB_IP_ADDRESS address;
        std::memset(&address, 0x77, sizeof address);
        EXPECT_EQ(vga_parse_ip_addr(row.text, &address), row.result) << row.text;
        NB_IP_ADDRESS expected = address_of(row.octets);
        EXPECT_EQ(std::memcmp(&address, &expected, sizeof address), 0) << row.text;
    }
}

TEST(Util, HalvesOfNames) {
    struct Case {
        std::string fq;
        const char *name, *net, *net_alone;
    };
    for (const Case &row : std::vector<Case>{
             {"NETA.LU1", "LU1", "NETA", "NETA"},
             {"NETWORK8.LUNAME08", "LUNAME08", "NETWORK8", "NETWORK8"},
             {"NETA", "", "", "NETA"},
             {"", "", "", ""},
             {".LU1", "LU1", "", ""},
             {"NETA.", "", "NETA", "NETA"},
             {"NE .LU1", "LU1", "NE ", "NE "},
             {"A.B.C", "B.C", "A", "A"},
             {"NKKK", "", "", "NKKK"}, /* the period in EBCDIC, not 0x4B in the local code page */
             {"NETWORKID9.LU1", "LU1", "NETWORKI", "NETWORKI"}, /* clipped to their fields */
             {"0123456789ABCDE.L", "L", "01234567", "01234567"},
             {"0123456789ABCDEF.", "", "01234567", "01234567"},
         }) {
        const Name fq = ebcdic(row.fq, 17);
        Output<9> name, net;
        Output<18> net_alone;
        vga_get_fq_name(name, fq.data());
        vga_get_fq_net_name(net, fq.data());
        vga_getw_fq_net_name(net_alone, fq.data());
        EXPECT_EQ(name.str(), row.name) << row.fq;
        EXPECT_EQ(net.str(), row.net) << row.fq;
        EXPECT_EQ(net_alone.str(), row.net_alone) << row.fq;
    }
}

TEST(Util, ValidTpNames) {
    struct Case {
        Name name;
        NB_USHORT service, result, error;
    };
    const std::string full(64, 'X');
    for (const Case &row : std::vector<Case>{
             {tp("ABC"), 0, 1, 0},
             {tp(full), 0, 1, 0},
             {tp(""), 0, 1, 0},
             {tp("any-thing/goes"), 0, 1, 0},
             {tp("ABC D"), 0, 0, 0},
             {tp("ABC" + std::string(60, ' ') + "D"), 0, 0, 0},
             {tp(" ABC"), 0, 0, 0},
             {tp("ABC D"), 1, 0, 0},
             {tp("ABC"), 1, 0, 1},
             {tp(""), 1, 0, 1},
             {raw_tp("\x06"), 1, 1, 0},
             {raw_tp("\x3F\xC1\xF1\x7B"), 1, 1, 0},
             {raw_tp("\0\xF0\xF0\xF0"s), 1, 1, 0},
             {raw_tp("\x06\xC1\xC1\xC1\xC1"), 1, 0, 1},
             {raw_tp("\x0E\xC1"), 1, 0, 1},
             {raw_tp("\x0F\xC1"), 1, 0, 1},
             {raw_tp("\x41\xC1"), 1, 0, 1},
             {raw_tp("\x06\x81"), 1, 0, 1},
             {raw_tp("\x06\x4B"), 1, 0, 1},
         }) {
        NB_USHORT error = 9;
        EXPECT_EQ(vga_valid_tp_name(row.name.data(), row.service, &error), row.result);
        EXPECT_EQ(error, row.error) << testing::PrintToString(row.name);
    }
}

TEST(Util, TpNamesAsTextOrHexadecimal) {
    gvga_messages[1445] = "[hex %1]";
    auto repeat = [](size_t count, const std::string &text) {
        std::string all;
        for (size_t at = 0; at < count; at++) {
            all += text;
        }
        return all;
    };
    struct Case {
        Name name;
        NB_USHORT hexadecimal;
        std::string text, digits;
    };
    for (const Case &row : std::vector<Case>{
             {tp("ABC D"), 0, "ABC D", "C1C2C340C4"},
             {tp(""), 0, "", ""},
             {tp(repeat(64, "z")), 0, repeat(64, "z"), repeat(64, "A9")},
             {raw_tp("\xC1\0\xC2"s), 1, "A", "C100C2"},
             {raw_tp("\x06"), 1, "\x86", "06"},
             {raw_tp(repeat(63, "\xC1") + "\0"s), 1, repeat(63, "A"), repeat(63, "C1") + "00"},
         }) {
        EXPECT_EQ(vga_hex_tp_name(row.name.data()), row.hexadecimal) << row.digits;
        Output<VGA_TP_NAME_HEX_SIZE> digits;
        vga_format_tp_name(digits, row.name.data(), 1, 0);
        EXPECT_EQ(digits.str(), row.digits);
        Output<VGA_TP_NAME_MESSAGE_SIZE> message;
        vga_format_tp_name(message, row.name.data(), 1, 1);
        EXPECT_EQ(message.str(), "[hex " + row.digits + "]");
        Output<VGA_TP_NAME_SIZE> text;
        vga_format_tp_name(text, row.name.data(), 0, 1);
        EXPECT_EQ(text.str(), row.text);
        Name back(65, '#');
        EXPECT_EQ(vga_parse_hex_tp_name(row.digits.c_str(), back.data()), 1);
        EXPECT_EQ(back[64], '#');
        back.resize(64);
        EXPECT_EQ(back, row.name);
    }
    gvga_messages[1445] = nullptr;
}

TEST(Util, ParseHexTpName) {
    struct Case {
        std::string text;
        NB_USHORT result;
        std::string bytes;
    };
    for (const Case &row : std::vector<Case>{
             {"", 1, ""},
             {"c1C2", 1, "\xC1\xC2"},
             {"c1C", 0, "\xC1"},
             {"c", 0, ""},
             {"5GG5zz0x-1 4", 1, "\x05\0\0\0\0\0"s},
             {std::string(128, '1'), 1, std::string(64, '\x11')},
             {std::string(130, '1'), 1, std::string(64, '\x11')},
             {std::string(129, '1'), 0, std::string(64, '\x11')},
         }) {
        Name name(64);
        EXPECT_EQ(vga_parse_hex_tp_name(row.text.c_str(), name.data()), row.result) << row.text;
        EXPECT_EQ(name, raw_tp(row.bytes)) << row.text;
    }
}

TEST(Util, FormatAddresses) {
    gvga_messages[1446] = "%1.%2.%3.%4";
    gvga_messages[1447] = "%1.%2.%3.%4 port %5";
    NB_IP_ADDRESS address = address_of({255, 0, 255, 254});
    Output<VGA_IP_ADDR_SIZE> text;
    vga_format_ip_addr(text, &address);
    EXPECT_EQ(text.str(), "255.0.255.254");
    Output<VGA_IP_ADDR_PORT_SIZE> with_port;
    vga_format_ip_addr_port(with_port, &address, 65535);
    EXPECT_EQ(with_port.str(), "255.0.255.254 port 65535");
    gvga_messages[1446] = gvga_messages[1447] = nullptr;
}

TEST(Util, MisuseIsReported) {
    REPORTS reports;
    NB_IP_ADDRESS other = address_of({10, 1, 2, 3}), mask = other;
    const NB_IP_ADDRESS of_its_class = address_of({255, 0, 0, 0}); // of others, Tamrix.ClassMasks
    vga_get_default_ip_addr_mask(&other, &mask);
    EXPECT_EQ(std::memcmp(&mask, &of_its_class, sizeof mask), 0);
    other.family = 3;
    vga_get_default_ip_addr_mask(&other, &mask);
    EXPECT_EQ(mask.octets[0], 0);
    EXPECT_NE(reports.take().find("ip_addr->family == NAP_IPV4_ADDRESS"), std::string::npos);
    Output<18> net;
    vga_getw_fq_net_name(net, ebcdic("ALLSEVENTEENCHARS", 17).data());
    EXPECT_EQ(net.str(), "ALLSEVENTEENCHARS");
    EXPECT_NE(reports.take().find("NB_STRLEN(text) <= 8"), std::string::npos);
}
