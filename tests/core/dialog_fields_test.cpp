// Fields of dialogs: bytes to text and back, without a widget.

#include <gtest/gtest.h> // before X, whose macros it does not survive

#include "formfields.h"

#include "fieldrows.h"
#include "messages.h"
#include "nbbase.h"
#include "nofrec.h"

#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

enum { EMPTY = 1, BAD = 2, OWN = 3 };

struct DATA {
    NB_UCHAR byte;
    NB_USHORT word;
    NB_ULONG longer;
    NB_UCHAR text[12];
    NB_UCHAR name[8];
    NB_UCHAR fq[17];
    NB_UCHAR hex[4];
    NB_IP_ADDRESS ip;
};

int64_t word_limit(const NB_VOID *data) {
    return static_cast<const DATA *>(data)->word;
}

NB_USHORT no_seven(const NB_VOID *, const NB_VOID *data) {
    return static_cast<const DATA *>(data)->byte == 7 ? OWN : 0;
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
                        ip_row = records::rows::address(AT(ip));
const VGA_FIELD number = {.row = &byte_row, .empty = EMPTY, .bad = BAD, .check = no_seven};
const VGA_FIELD optional = {.row = &word_row, .bad = BAD};
const VGA_FIELD limited = {.row = &longer_row, .at_most = word_limit, .empty = EMPTY, .bad = BAD};
const VGA_FIELD high = {.row = &high_row, .bad = BAD};
const VGA_FIELD text = {.row = &text_row, .bad = BAD};
const VGA_FIELD local = {.row = &local_row, .empty = EMPTY, .bad = BAD};
const VGA_FIELD ebcdic = {.row = &ebcdic_row, .bad = BAD};
const VGA_FIELD fq = {.row = &fq_row, .bad = BAD};
const VGA_FIELD network = {.row = &fq_row, .part = VGA_FIELD_NETWORK, .bad = BAD};
const VGA_FIELD partner = {.row = &fq_row, .part = VGA_FIELD_NAME, .bad = BAD};
const VGA_FIELD hex = {.row = &hex_row, .bad = BAD};
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
            EXPECT_EQ(vga_field_from_text(field, one.entered, nullptr, &data), one.message);
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
                   {"   ", EMPTY, nullptr},
                   {"7", OWN, nullptr}});
    enter(optional, {{"", 0, "0"}, /* below the lowest: nothing was entered */
                     {"40000", 0, "40000"},
                     {"0", BAD, nullptr}});
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
    EXPECT_EQ(vga_field_from_text(network, "NETA", nullptr, &data), 0);
    EXPECT_EQ(reads(fq), "NETA");
    EXPECT_EQ(vga_field_from_text(partner, "LEDGER", nullptr, &data), 0);
    EXPECT_EQ(reads(fq), "NETA.LEDGER");
    EXPECT_EQ(vga_field_from_text(network, "NETWORKB", nullptr, &data), 0);
    EXPECT_EQ(reads(fq), "NETWORKB.LEDGER");
    EXPECT_EQ(reads(network), "NETWORKB");
    EXPECT_EQ(reads(partner), "LEDGER");
    EXPECT_EQ(vga_field_from_text(partner, "9BAD", nullptr, &data), BAD);
    EXPECT_EQ(vga_field_from_text(network, "", nullptr, &data), 0);
    EXPECT_EQ(vga_field_from_text(partner, "ALONE", nullptr, &data), BAD);
    EXPECT_EQ(vga_field_from_text(partner, "", nullptr, &data), 0);
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
            EXPECT_EQ(vga_field_from_text(*field, shown.c_str(), nullptr, &data), 0) << shown;
            EXPECT_EQ(reads(*field), shown);
            data = before;
        }
        const std::string name = "A" + std::to_string(random() % 1000000);
        EXPECT_EQ(vga_field_from_text(ebcdic, name.c_str(), nullptr, &data), 0);
        EXPECT_EQ(reads(ebcdic), name);
        EXPECT_EQ(data.name[0], 0xC1) << "EBCDIC";
    }
}

} // namespace
