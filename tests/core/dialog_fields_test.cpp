// Fields of dialogs: bytes to text and back, without a widget.

#include <gtest/gtest.h> // before X, whose macros it does not survive

#include "formfields.h"

#include "fieldrows.h"
#include "messages.h"
#include "nbbase.h"
#include "nofrec.h"

#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

enum { EMPTY = 1, BAD = 2 };

struct DATA {
    NB_UCHAR byte;
    NB_USHORT word;
    NB_ULONG longer;
    NB_UCHAR text[12];
    NB_UCHAR name[8];
    NB_UCHAR fq[17];
    NB_UCHAR hex[4];
    NB_UCHAR mac[6];
    NB_IP_ADDRESS ip;
    NB_UCHAR program[64];
};

VGA_BOUND word_limit(const NB_VOID *data) {
    return {static_cast<const DATA *>(data)->word};
}

#define AT(member) FIELD_AT(DATA, member)
const records::FieldRow byte_row = records::rows::number(AT(byte), 0, 200),
                        word_row = records::rows::number(AT(word), 1, 40000),
                        longer_row = records::rows::number(AT(longer), 0, 1000),
                        high_row = records::rows::number(AT(longer), 0, 0xFFFFFFFF),
                        text_row = records::rows::text(AT(text)),
                        local_row = records::rows::local(AT(name)),
                        ebcdic_row = records::rows::sna(AT(name)),
                        fq_row = records::rows::any_name(AT(fq)),
                        hex_row = records::rows::bytes(AT(hex)),
                        hex_value_row = records::rows::hex(AT(longer)),
                        mac_row = records::rows::bytes(AT(mac)),
                        flag_row = records::rows::flag(AT(byte)),
                        secret_row = records::rows::local(AT(name)).secret(),
                        ip_row = records::rows::address(AT(ip)),
                        program_row = records::rows::ebcdic(AT(program));
const VGA_FIELD number = {.row = &byte_row, .high = 200, .empty = EMPTY, .bad = BAD};
const VGA_FIELD optional = {.row = &word_row, .low = 1, .high = 40000, .bad = BAD};
const VGA_FIELD zero = {
    .row = &longer_row, .uses = VGA_FIELD_ZERO_EMPTY, .low = 5, .high = 1000, .bad = BAD};
const VGA_FIELD given = {.row = &longer_row,
                         .uses = VGA_FIELD_ZERO_EMPTY,
                         .low = 5,
                         .high = 1000,
                         .empty = EMPTY,
                         .bad = BAD};
const VGA_FIELD limited = {
    .row = &longer_row, .high = 1000, .at_most = word_limit, .empty = EMPTY, .bad = BAD};
const VGA_FIELD high = {.row = &high_row, .high = 0xFFFFFFFF, .bad = BAD};
const VGA_FIELD node_id = {.row = &hex_value_row, .style = VGA_STYLE_NODE_ID, .bad = BAD};
const VGA_FIELD mac = {.row = &mac_row, .style = VGA_STYLE_MAC, .bad = BAD};
const VGA_FIELD mask = {.row = &ip_row, .style = VGA_STYLE_MASK, .bad = BAD};
const VGA_FIELD inverted = {.row = &flag_row, .uses = VGA_FIELD_INVERTED, .bad = BAD};
const VGA_FIELD password = {.row = &secret_row, .bad = BAD};
const VGA_FIELD text = {.row = &text_row, .bad = BAD};
const VGA_FIELD local = {.row = &local_row, .empty = EMPTY, .bad = BAD};
const VGA_FIELD ebcdic = {.row = &ebcdic_row, .bad = BAD};
const VGA_FIELD fq = {.row = &fq_row, .bad = BAD};
const VGA_FIELD network = {.row = &fq_row, .part = VGA_FIELD_NETWORK, .bad = BAD};
const VGA_FIELD partner = {.row = &fq_row, .part = VGA_FIELD_NAME, .bad = BAD};
const VGA_FIELD hex = {.row = &hex_row, .bad = BAD};
const VGA_FIELD program = {.row = &program_row, .style = VGA_STYLE_TP_NAME, .bad = BAD};
const VGA_FIELD ip = {.row = &ip_row, .bad = BAD};

struct CASE {
    const char *entered;
    NB_USHORT message;
    const char *reads; // afterwards; null: as before
};

class Fields : public testing::Test {
protected:
    void SetUp() override {
        gvga_messages[VGA_MSG_IP_ADDRESS] = "%1.%2.%3.%4";
        memset(&data, 0, sizeof(data));
        data.word = 100;
        memset(data.name, ' ', sizeof(data.name));
        memset(data.fq, 0x40, sizeof(data.fq));
    }
    std::string reads(const VGA_FIELD &field) const {
        char out[VGA_FIELD_TEXT_SIZE];
        vga_field_to_text(field, &data, out);
        return out;
    }
    void enter(const VGA_FIELD &field, const std::vector<CASE> &cases) {
        for (const CASE &one : cases) {
            SCOPED_TRACE(std::string(one.entered) + " kind " +
                         std::to_string(static_cast<int>(field.row->kind)));
            SetUp();
            const DATA before = data;
            EXPECT_EQ(vga_field_from_text(field, "Field", one.entered, 0, &data).message,
                      one.message);
            if (one.reads == nullptr) {
                EXPECT_EQ(memcmp(&before, &data, sizeof(data)), 0)
                    << "refused, but something changed";
            } else {
                EXPECT_EQ(reads(field), one.reads);
            }
        }
    }
    DATA data;
};

TEST_F(Fields, TextsAndTheirMessages) {
    enter(number, {{"200", 0, "200"},
                   {" 12 ", 0, "12"},
                   {"010", 0, "10"},
                   {"0x5", BAD, nullptr},
                   {"201", BAD, nullptr},
                   {"-1", BAD, nullptr},
                   {"1x", BAD, nullptr},
                   {"", EMPTY, nullptr},
                   {"   ", EMPTY, nullptr}});
    enter(optional, {{"", VGA_MSG_FORM_EMPTY, nullptr}, /* 0 is below the lowest */
                     {"40000", 0, "40000"},
                     {"0", BAD, nullptr}});
    enter(zero, {{"", 0, ""}, {"0", BAD, nullptr}, {"4", BAD, nullptr}, {"5", 0, "5"}});
    enter(given,
          {{"", EMPTY, nullptr}, {"00", EMPTY, nullptr}, {"4", BAD, nullptr}, {"5", 0, "5"}});
    enter(inverted, {{"yes", 0, "yes"}, {"no", 0, "no"}});
    EXPECT_EQ(data.byte, 1) << "the toggle is not set, so the flag is";
    enter(node_id,
          {{"07100003", 0, "071 00003"}, {"071 00003", 0, "071 00003"}, {"071X", BAD, nullptr}});
    enter(mac, {{"400000000001", 0, "40:00:00:00:00:01"},
                {"40:00", 0, "40:00:00:00:00:00"},
                {"4", BAD, nullptr}});
    enter(mask, {{"255.255.254.0", 0, "255.255.254.0"}, {"255.0.255.0", BAD, nullptr}});
    enter(program, {{"PAYROLL", 0, "PAYROLL"},
                    {"0x06F1", 0, "0x06F1"}, /* a service program, of four bytes at most */
                    {"0xC1C2", 0, "AB"},
                    {"0x06F1F2F3F4", BAD, nullptr},
                    {"0x06F", BAD, nullptr},
                    {"0x06FG", BAD, nullptr}});
    enter(password, {{"", 0, ""}, {"SECRET", 0, ""}});
    EXPECT_EQ(memcmp(data.name, "SECRET  ", 8), 0) << "kept, but never shown";
    enter(limited, {{"100", 0, "100"}, /* as another field says */
                    {"101", BAD, nullptr}});
    enter(high, {{"4294967295", 0, "4294967295"},
                 {"4294967296", BAD, nullptr},
                 {"18446744073709551617", BAD, nullptr}});
    enter(text, {{"eleven char", 0, "eleven char"}, /* with the terminator it fits */
                 {"twelve chars", BAD, nullptr},
                 {"", 0, ""}});
    enter(local, {{"alias", 0, "alias"},
                  {"12345678", 0, "12345678"},
                  {"123456789", BAD, nullptr},
                  {"", EMPTY, nullptr}});
    enter(ebcdic,
          {{"#INTER", 0, "#INTER"},
           {"", 0, ""},
           {"1LU", BAD, nullptr},
           {"lu", BAD, nullptr}, /* the filter has made it upper case, or it was not typed */
           {"A B", BAD, nullptr}});
    enter(fq, {{"NETA.LU1", 0, "NETA.LU1"},
               {"LU1", 0, "LU1"},
               {"NETA.", BAD, nullptr},
               {"NETWORKID.LU1", BAD, nullptr}});
    enter(hex, {{"0aF1", 0, "0AF10000"},
                {"0aF10200", 0, "0AF10200"},
                {"", 0, ""},
                {"0aF1020", BAD, nullptr},
                {"0aF102000", BAD, nullptr}});
    enter(ip, {{"10.1.2.3", 0, "10.1.2.3"}, {"10.1.2", BAD, nullptr}, {"", 0, ""}});
}

TEST_F(Fields, HalvesMakeOneName) {
    EXPECT_EQ(vga_field_from_text(network, "Field", "NETA", 0, &data).message, 0);
    EXPECT_EQ(reads(fq), "NETA");
    EXPECT_EQ(vga_field_from_text(partner, "Field", "LEDGER", 0, &data).message, 0);
    EXPECT_EQ(reads(fq), "NETA.LEDGER");
    EXPECT_EQ(vga_field_from_text(network, "Field", "NETWORKB", 0, &data).message, 0);
    EXPECT_EQ(reads(fq), "NETWORKB.LEDGER");
    EXPECT_EQ(reads(network), "NETWORKB");
    EXPECT_EQ(reads(partner), "LEDGER");
    EXPECT_EQ(vga_field_from_text(partner, "Field", "9BAD", 0, &data).message, BAD);
    EXPECT_EQ(vga_field_from_text(network, "Field", "", 0, &data).message, 0);
    EXPECT_EQ(vga_field_from_text(partner, "Field", "ALONE", 0, &data).message, BAD);
    EXPECT_EQ(vga_field_from_text(partner, "Field", "", 0, &data).message, 0);
    EXPECT_EQ(reads(fq), "");
}

// Whatever bytes a node sends, a field shows a text within its size; and what a field shows it
// takes back as it was.
TEST_F(Fields, RoundTrips) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 2000; round++) {
        auto *bytes = reinterpret_cast<NB_UCHAR *>(&data);
        for (size_t at = 0; at < sizeof(data); at++) {
            bytes[at] = static_cast<NB_UCHAR>(random());
        }
        for (const VGA_FIELD *field : {&text, &local, &ebcdic, &hex, &ip, &optional}) {
            EXPECT_LT(reads(*field).size(), size_t{VGA_FIELD_TEXT_SIZE});
        }
        for (const VGA_FIELD *field : {&hex, &optional}) {
            const DATA before = data;
            data.word = std::max<NB_USHORT>(1, data.word % 40000);
            const std::string shown = reads(*field);
            EXPECT_EQ(vga_field_from_text(*field, "Field", shown.c_str(), 0, &data).message, 0)
                << shown;
            EXPECT_EQ(reads(*field), shown);
            data = before;
        }
        const std::string name = "A" + std::to_string(random() % 1000000);
        EXPECT_EQ(vga_field_from_text(ebcdic, "Field", name.c_str(), 0, &data).message, 0);
        EXPECT_EQ(reads(ebcdic), name);
        EXPECT_EQ(data.name[0], 0xC1) << "EBCDIC";
    }
}

} // namespace
