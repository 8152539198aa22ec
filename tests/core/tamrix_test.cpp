/* SNA over IP: addresses, masks, LU names from addresses, and the checks of the configuration. */
#include <arpa/inet.h>
#include <cstring>
#include <functional>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "reports.h"
#include "vtmutil.h"

namespace {

using namespace std::string_literals;
using Octets = std::vector<NB_UCHAR>;

std::string ebcdic(std::string text, size_t width) {
    text.resize(width, ' ');
    nba_local_to_ebcdic(reinterpret_cast<NB_UCHAR *>(text.data()), static_cast<NB_USHORT>(width));
    return text;
}

const NB_UCHAR *bytes(const std::string &text) {
    return reinterpret_cast<const NB_UCHAR *>(text.data());
}

NB_IP_ADDRESS record(NB_ULONG value) {
    NB_IP_ADDRESS made;
    std::memset(&made, 0x55, sizeof made);
    vtm_make_ip_address(value, &made);
    return made;
}

std::string lu_name(const char *lu_template, NB_ULONG ip, NB_ULONG mask) {
    /* Exact sizes, so that the sanitizer sees any access beyond them. */
    std::unique_ptr<NB_CHAR[]> in(new NB_CHAR[std::strlen(lu_template) + 1]);
    std::unique_ptr<NB_CHAR[]> out(new NB_CHAR[VTM_LU_TEXT_SIZE]);
    std::strcpy(in.get(), lu_template);
    EXPECT_EQ(ip_2_lu(in.get(), out.get(), htonl(ip), htonl(mask)), 0);
    EXPECT_EQ(out[8], '\0');
    return out.get();
}

NB_USHORT template_valid(const std::string &text, NB_ULONG mask) {
    return vtm_validate_lu_map_template(bytes(ebcdic(text, 8)), mask);
}

NB_ULONG mask_of(int bits) {
    return bits == 0 ? 0 : ~NB_ULONG{0} << (32 - bits);
}

} // namespace

TEST(Tamrix, AddressForms) {
    NB_IP_ADDRESS address = record(0x0A01FE09);
    const NB_UCHAR expected[sizeof address] = {0, 10, 1, 254, 9};
    EXPECT_EQ(std::memcmp(&address, expected, sizeof address), 0);
    EXPECT_EQ(vtm_make_ip_ulong(&address), 0x0A01FE09U);
    NB_CHAR text[VTM_IP_TEXT_SIZE];
    vtm_ip_to_string(&address, text);
    EXPECT_STREQ(text, "10.1.254.9");
    address = record(0xFFFFFFFF);
    vtm_ip_to_string(&address, text);
    EXPECT_STREQ(text, "255.255.255.255");
    EXPECT_EQ(vtm_make_ip_ulong(&address), 0xFFFFFFFFU);
}

TEST(Tamrix, ClassMasks) {
    struct Case {
        NB_UCHAR first;
        Octets mask;
    };
    for (const Case &row : std::vector<Case>{{0, {255, 0, 0, 0}},
                                             {127, {255, 0, 0, 0}},
                                             {128, {255, 255, 0, 0}},
                                             {191, {255, 255, 0, 0}},
                                             {192, {255, 255, 255, 0}},
                                             {255, {255, 255, 255, 0}}}) {
        NB_IP_ADDRESS address = record(NB_ULONG{row.first} << 24 | 0x010203);
        Octets mask(4);
        vtm_make_default_mask(&address, mask.data());
        EXPECT_EQ(mask, row.mask) << int(row.first);
        EXPECT_EQ(vtm_check_mask_address(mask.data(), address.octets), 1);
        for (size_t at = 0; at < 4 && mask[at] == 255; at++) {
            Octets shorter = mask;
            shorter[at] = 254;
            EXPECT_EQ(vtm_check_mask_address(shorter.data(), address.octets), 0);
        }
    }
}

TEST(Tamrix, Contiguity) {
    for (int bits = 0; bits <= 32; bits++) {
        EXPECT_EQ(vtm_check_mask(mask_of(bits)), 1) << bits;
        NB_IP_ADDRESS mask = record(mask_of(bits));
        EXPECT_EQ(vtm_compute_mask_num(&mask), bits);
    }
    for (NB_ULONG mask : {0xFF00FF00U, 1U, 0x7FFFFFFFU, 0xFFFFFFFDU, 0xFFFFFF40U}) {
        EXPECT_EQ(vtm_check_mask(mask), 0) << mask;
    }
    NB_IP_ADDRESS mask = record(0xFF00FF01);
    EXPECT_EQ(vtm_compute_mask_num(&mask), 17);
}

TEST(Tamrix, DomainNames) {
    const std::string label(63, 'a'), label_dot = label + ".";
    const std::string longest = label_dot + label_dot + label_dot + std::string(45, 'b');
    ASSERT_EQ(longest.size(), 237U);
    for (const std::string &good :
         {""s, "a.b"s, "a..b"s, "a."s, "."s, "..."s, "my_host"s, "-A-9_Z.z"s, label,
          label_dot + label, longest, std::string(237, '.')}) {
        EXPECT_EQ(vtm_check_domain_name(good.c_str()), 1) << good;
    }
    for (const std::string &bad :
         {" "s, "a b"s, "a.b "s, "a/b"s, "a@b"s, "[a"s, "a`"s, "{a"s, "a:1"s, "\xE9t\xE9"s,
          label + "a", "x." + label + "a.b", longest + "b", longest + ".", std::string(238, '.')}) {
        EXPECT_EQ(vtm_check_domain_name(bad.c_str()), 0) << bad;
    }
    /* One character beyond the longest name is read, and no more. */
    std::unique_ptr<NB_CHAR[]> unterminated(new NB_CHAR[238]);
    std::memset(unterminated.get(), '.', 238);
    EXPECT_EQ(vtm_check_domain_name(unterminated.get()), 0);
}

TEST(Tamrix, LuNames) {
    struct Case {
        const char *lu_template;
        NB_ULONG ip;
        NB_ULONG mask;
        const char *name;
    };
    for (const Case &row : std::vector<Case>{
             {"LU", 0x0901022D, 0xFFFFFF00, "LU00001D"},
             {"LU......", 0x0901022D, 0xFFFFFF00, "LU00001D"},
             {"LU*. a..", 0x0901022D, 0xFFFFFF00, "LU00001D"}, /* a lower-case letter is none */
             {"..A.B.C.", 0x0901022D, 0xFFFFFF00, "00A0B1CD"},
             {"ABCDEFGH", 0x0901022D, 0xFFFFFF00, "ABCDEFGH"},
             {"EIOU@#$0", 0x0901022D, 0, "EIOU@#$0"},
             {"A.......", 0x0901022D, 0xFFFFFFFF, "A......."},
             {"lu", 0x0901022D, 0xFFFFFFFF, "lu"},
             {"", 0x0901022D, 0xFFFFFFFF, ""},
             {"", 0xFFFFFFFF, 0, "03ZZZZZZ"},
             {"ABCDEFG", 0x0901022D, 0xFFFFFF00, "ABCDEFGD"}, /* 45 is cut to 13 */
             {"X", 0x12345678, 0xF0F0FFFF, "X0000014"}, /* host bits 0010 0100 of two octets */
             {"X", 0xC0A80001, 0xFFFFFFFE, "X0000001"},
         }) {
        EXPECT_EQ(lu_name(row.lu_template, row.ip, row.mask), row.name) << row.lu_template;
    }
    NB_CHAR name[VTM_LU_TEXT_SIZE];
    EXPECT_EQ(ip_2_lu("AB", name, 0xFFFFFFFF, 0xFFFFFFFF), 0);
    EXPECT_EQ(std::string(name, 9), "AB\0     \0"s);
}

TEST(Tamrix, TemplateLimits) {
    struct Case {
        int bits;
        size_t fixed;
    };
    for (Case row : {Case{0, 0},
                     {7, 0},
                     {8, 3},
                     {11, 3},
                     {12, 4},
                     {16, 4},
                     {17, 5},
                     {21, 5},
                     {22, 6},
                     {26, 6},
                     {27, 7},
                     {31, 7},
                     {32, 8}}) {
        for (size_t fixed = 1; fixed <= 8; fixed++) {
            EXPECT_EQ(template_valid(std::string("ABCD@#$9").substr(0, fixed), mask_of(row.bits)),
                      fixed <= row.fixed)
                << fixed << " of /" << row.bits;
        }
        EXPECT_EQ(template_valid("", mask_of(row.bits)), 1);
    }
    for (NB_ULONG between : {0xFFE00001U, 0xFFEFFFFFU, 0xFFFF0001U, 0xFFFFF801U, 0xFFFFFFC1U}) {
        EXPECT_EQ(template_valid("A", between), 0) << between;
    }
    EXPECT_EQ(template_valid("ABCDEF", 0xFFFFFD00), 1) << "within the range, contiguous or not";
}

TEST(Tamrix, TemplateCharacters) {
    for (const char *good : {"LU", "LU......", "LU...", "L.U.", "$......@", "A.......", "@9"}) {
        EXPECT_EQ(template_valid(good, 0xFFFFFF00), 1) << good;
    }
    for (const char *bad :
         {".LU", ".", "........", "lu", "A B", "A*", "A-", "9A", "A      .B", " A"}) {
        EXPECT_EQ(template_valid(bad, 0xFFFFFF00), 0) << bad;
    }
}

TEST(Tamrix, LengthPrefixedNames) {
    struct Case {
        std::string lu, network, text;
    };
    for (const Case &row : std::vector<Case>{{"LU1", "NETA", "NETA.LU1"},
                                             {"LUNAME08", "NETWORK8", "NETWORK8.LUNAME08"},
                                             {"", "NETA", "NETA."},
                                             {"LU1", "", ".LU1"}}) {
        std::vector<NB_UCHAR> out(VTM_LENGTH_NAME_SIZE, 0x77);
        std::string expected =
            static_cast<char>(row.text.size()) + ebcdic(row.text, row.text.size());
        expected.resize(VTM_LENGTH_NAME_SIZE, '\0');
        EXPECT_EQ(
            vtm_create_lu_name(bytes(ebcdic(row.lu, 8)), bytes(ebcdic(row.network, 8)), out.data()),
            row.text.size());
        EXPECT_EQ(std::string(out.begin(), out.end()), expected);
        std::fill(out.begin(), out.end(), NB_UCHAR{0x77});
        EXPECT_EQ(vtm_create_lu_name_fq(bytes(ebcdic(row.text, 17)), out.data()), row.text.size());
        EXPECT_EQ(std::string(out.begin(), out.end()), expected);
    }
    std::vector<NB_UCHAR> out(VTM_LENGTH_NAME_SIZE, 0x77), blank(VTM_LENGTH_NAME_SIZE, 0);
    blank[0] = 1;
    blank[1] = 0x40;
    EXPECT_EQ(vtm_create_lu_name_fq(bytes(ebcdic("", 17)), out.data()), 1);
    EXPECT_EQ(out, blank);
}

TEST(Tamrix, FixedWidthFields) {
    struct Case {
        std::string field, text;
    };
    for (const Case &row : std::vector<Case>{{"NAME    ", "NAME"},
                                             {"        ", " "},
                                             {"  A B   ", "  A B"},
                                             {"X", "X"},
                                             {"", ""}}) {
        const auto length = static_cast<NB_USHORT>(row.field.size());
        std::unique_ptr<NB_CHAR[]> text(new NB_CHAR[length + 1U]);
        std::memset(text.get(), '#', length + 1U);
        vtm_ebcdic_to_ascii(text.get(), bytes(ebcdic(row.field, length)), length);
        std::string expected = row.text;
        expected.resize(length + 1U, '\0');
        EXPECT_EQ(std::string(text.get(), length + 1U), expected);
        std::vector<NB_UCHAR> field(length + 1U, '#');
        vtm_ascii_to_ebcdic(text.get(), field.data(), length);
        EXPECT_EQ(std::string(field.begin(), field.end()), ebcdic(row.field, length) + "#");
    }
    NB_UCHAR field[4];
    const NB_CHAR unterminated[] = {'A', 'B', 'C', 'D'};
    vtm_ascii_to_ebcdic(unterminated, field, 4);
    EXPECT_EQ(std::string(field, field + 4), "\xC1\xC2\xC3\xC4");
}

namespace {

VTM_TAMRIX_DEFAULTS good_defaults() {
    VTM_TAMRIX_DEFAULTS made;
    std::memset(&made, 0, sizeof made);
    made.primary_rc = 77;
    made.local_ip_address = record(0x96010203);
    made.local_subnet_mask = record(0xFFFFFF00);
    made.lu_map_mask = record(0xFFFF0000);
    std::memcpy(made.lu_name_template, ebcdic("LUXX", 8).data(), 8);
    std::memcpy(made.second_name, ebcdic("MODE1", 8).data(), 8);
    made.numbers[0] = 1000;
    made.numbers[1] = made.numbers[2] = 15;
    return made;
}

VTM_TAMRIX_IP_ADDRESS_MAP good_map() {
    VTM_TAMRIX_IP_ADDRESS_MAP made;
    std::memset(&made, 0, sizeof made);
    made.primary_rc = 77;
    made.ip_address = record(0x96010203);
    made.lu_map_mask = record(0xFFFF0000);
    std::memcpy(made.lu_name_template, ebcdic("LUXX", 8).data(), 8);
    std::memcpy(made.name, ebcdic("PU1", 8).data(), 8);
    return made;
}

void put(NB_UCHAR *field, const char *text) {
    std::memcpy(field, ebcdic(text, 8).data(), 8);
}

/* A row changes a good record; the code is 0 where it stays good. */
template <typename RECORD> struct Change {
    NB_ULONG code;
    const char *what;
    std::function<void(RECORD &)> make;
};

template <typename RECORD>
void expect_each(RECORD (*good)(), NB_USHORT (*validate)(RECORD *),
                 const std::vector<Change<RECORD>> &changes) {
    for (const Change<RECORD> &change : changes) {
        SCOPED_TRACE(change.what);
        RECORD before = good();
        change.make(before);
        RECORD after = before;
        EXPECT_EQ(validate(&after), change.code == 0);
        EXPECT_EQ(after.primary_rc, change.code == 0 ? 0 : 0x0100);
        EXPECT_EQ(after.secondary_rc, change.code);
        after.primary_rc = before.primary_rc;
        after.secondary_rc = before.secondary_rc;
        EXPECT_EQ(std::memcmp(&after, &before, sizeof after), 0) << "only the codes are written";
    }
}

} // namespace

TEST(Tamrix, Defaults) {
    using D = VTM_TAMRIX_DEFAULTS;
    const NB_ULONG first = 0x1CFF0000, second = 0x1DFF0000, third = 0x1EFF0000, ip = 0x17FF0000,
                   map = 0x18FF0000, subnet = 0x1FFF0000, lu = 0x19FF0000, name = 0x15020000;
    expect_each<D>(good_defaults, vtm_validate_tamrix_snackets_defaults,
                   {{0, "good", [](D &) {}},
                    {first, "999", [](D &d) { d.numbers[0] = 999; }},
                    {second, "14", [](D &d) { d.numbers[1] = 14; }},
                    {third, "-1", [](D &d) { d.numbers[2] = 0xFFFFFFFF; }},
                    {ip, "class D", [](D &d) { d.local_ip_address = record(0xE0000001); }},
                    {map, "gap", [](D &d) { d.lu_map_mask = record(0xFFFF00FF); }},
                    {subnet, "gap", [](D &d) { d.local_subnet_mask = record(0xFFFF00FF); }},
                    {lu, "wildcard first", [](D &d) { put(d.lu_name_template, ".LU"); }},
                    {name, "bad", [](D &d) { put(d.second_name, "A-B"); }},
                    {first, "32768", [](D &d) { d.numbers[0] = 32768; }},
                    {second, "65536", [](D &d) { d.numbers[1] = 65536; }},
                    {third, "14", [](D &d) { d.numbers[2] = 14; }},
                    {0, "32767", [](D &d) { d.numbers[0] = 32767; }},
                    {0, "65535", [](D &d) { d.numbers[1] = d.numbers[2] = 65535; }},
                    {map, "short", [](D &d) { d.lu_map_mask = record(0xFFFE0000); }},
                    {0, "map mask of all ones", [](D &d) { d.lu_map_mask = record(0xFFFFFFFF); }},
                    {subnet, "short", [](D &d) { d.local_subnet_mask = record(0xFF000000); }},
                    {subnet, "all ones", [](D &d) { d.local_subnet_mask = record(0xFFFFFFFF); }},
                    {0, "no subnet", [](D &d) { d.local_subnet_mask = record(0); }},
                    {lu, "long", [](D &d) { put(d.lu_name_template, "LUXXX"); }},
                    {name, "digit first", [](D &d) { put(d.second_name, "1A"); }},
                    {name, "zeros", [](D &d) { std::memset(d.second_name, 0, 8); }},
                    {0, "no name", [](D &d) { put(d.second_name, ""); }},
                    {0, "class B's own mask", [](D &d) { d.lu_map_mask = record(0); }},
                    {first, "the first fault counts", [](D &d) {
                         d.numbers[0] = d.numbers[1] = 1, d.local_ip_address = record(0xE0000001);
                     }}});
}

TEST(Tamrix, AddressMap) {
    using M = VTM_TAMRIX_IP_ADDRESS_MAP;
    const NB_ULONG ip = 0x17FF0000, mask = 0x18FF0000, lu = 0x19FF0000, name = 0x1AFF0000;
    expect_each<M>(good_map, vtm_validate_tamrix_ip_address_map,
                   {
                       {0, "good", [](M &) {}},
                       {ip, "class D", [](M &m) { m.ip_address = record(0xE0000000); }},
                       {mask, "gap", [](M &m) { m.lu_map_mask = record(0xFFFF0001); }},
                       {lu, "long", [](M &m) { put(m.lu_name_template, "LUXXX"); }},
                       {name, "bad", [](M &m) { put(m.name, "A.B"); }},
                       {mask, "short", [](M &m) { m.lu_map_mask = record(0xFF000000); }},
                       {lu, "five of class B's own mask",
                        [](M &m) { m.lu_map_mask = record(0), put(m.lu_name_template, "LUXXX"); }},
                       {0, "class C",
                        [](M &m) { m.ip_address.octets[0] = 223, m.lu_map_mask.octets[2] = 255; }},
                       {0, "no name", [](M &m) { put(m.name, " ?"); }},
                       {0, "zeros", [](M &m) { std::memset(m.name, 0, 8); }},
                   });
}

TEST(Tamrix, AddressesOfOtherFamiliesAreReported) {
    REPORTS reports;
    NB_IP_ADDRESS other = record(0x0A000001);
    other.family = 1;
    NB_CHAR text[VTM_IP_TEXT_SIZE] = "#";
    vtm_ip_to_string(&other, text);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(vtm_make_ip_ulong(&other) + vtm_compute_mask_num(&other), 0U);
    EXPECT_NE(reports.take().find("ip_address->family == NAP_IPV4_ADDRESS"), std::string::npos);
    NB_CHAR name[VTM_LU_TEXT_SIZE];
    EXPECT_EQ(ip_2_lu("NINECHARS", name, 1, 0xFFFFFFFF), 0);
    EXPECT_STREQ(name, "        ");
}
