// The reasons that are shown when a verb failed.

#include <gtest/gtest.h> // before X, whose macros it does not survive

#include "details.h"
#include "globals.h"
#include "messages.h"
#include "nofverbs.h"
#include "verberror.h"

#include <cstring>
#include <memory>
#include <string>

namespace {

class VerbError : public testing::Test {
protected:
    void SetUp() override {
        for (NB_USHORT number : {207, 211, 223, 692, 1441}) {
            texts[number] = std::to_string(number);
            gvga_messages[number] = texts[number].c_str();
        }
        gvga_messages[605] = "605 %1";
        gvga_messages[227] = "227 %1 %2 %3";
    }
    void TearDown() override {
        for (NB_USHORT number : {207, 211, 223, 227, 605, 692, 1441}) {
            gvga_messages[number] = nullptr;
        }
        gvga_variant_x = gvga_read_only = 0;
    }
    std::string texts[VGA_MESSAGE_COUNT + 1];
};

struct CASE {
    NB_USHORT opcode, primary_rc;
    NB_ULONG secondary_rc;
    NB_USHORT variant_x, read_only;
    const char *text, *help_key;
};

TEST_F(VerbError, TextAndHelpKey) {
    const CASE cases[] = {
        {57, 0x0200, 0x554C, 0, 0, "211", "verbfailed"},
        {57, 0x0200, 0x554C, 1, 0, "1441", "verbfailed"},
        {57, 0x0100, 0x554C, 1, 0, "227 0039 0100 0000554C", "verbfailed"},
        {57, 0x03F0, 0x5542, 0, 0, "223", "verbfailed"},
        {57, 0x03F0, 0x5543, 0, 0, "227 0039 03F0 00005543", "verbfailed"},
        {57, 0x0100, 0x5514, 0, 1, "605 sna", "readonly"},
        {57, 0x0100, 0x5514, 0, 0, "227 0039 0100 00005514", "verbfailed"},
        {57, 0x0100, 0x62100000, 0, 0, "692", "nohprconn"},
        {57, 0x0100, 0x6210, 0, 0, "227 0039 0100 00006210", "verbfailed"},
        {0xF073, 0x0200, 0x5554, 0, 0, "207", "verbfailed"},
        {0xF073, 0x0100, 0x5554, 0, 0, "207", "verbfailed"},
        {0xF073, 0x0200, 0x5555, 0, 0, "227 F073 0200 00005555", "verbfailed"},
        {0xF073, 0x0100, 0x5514, 0, 1, "605 sna", "readonly"},
        {0xF072, 0x0200, 0x5554, 0, 0, "227 F072 0200 00005554", "verbfailed"},
        {57, 0, 0, 0, 0, "227 0039 0000 00000000", "verbfailed"},
        {57, 0xFFFF, 0xFFFFFFFF, 1, 1, "227 0039 FFFF FFFFFFFF", "verbfailed"},
    };
    for (const CASE &one : cases) {
        SCOPED_TRACE(one.text);
        gvga_variant_x = one.variant_x;
        gvga_read_only = one.read_only;
        const NB_CHAR *help_key = nullptr;
        std::unique_ptr<NB_CHAR, decltype(&free)> text(
            vga_get_verb_error_message(one.opcode, one.primary_rc, one.secondary_rc, &help_key),
            free);
        ASSERT_NE(text, nullptr);
        EXPECT_STRCASEEQ(text.get(), one.text);
        EXPECT_STREQ(help_key, one.help_key);
    }
}

/* The facts behind "Details". */
TEST_F(VerbError, DetailsNameVerbCodesResourceAndNode) {
    const struct {
        NB_USHORT message;
        const char *text;
    } texts_here[] = {{VGA_MSG_VERB_DETAILS, "%1; %2"},
                      {VGA_MSG_DETAILS_RESOURCE, "R %1"},
                      {VGA_MSG_DETAILS_NODE, "N %1"},
                      {VGA_MSG_CODE_STATE_CHECK, "state"},
                      {VGA_MSG_CODE_IN_USE, "used"}};
    for (const auto &one : texts_here) {
        gvga_messages[one.message] = one.text;
    }
    NAP_NAME_VERB verb = {};
    verb.opcode = NAP_DELETE_PORT;
    verb.primary_rc = NAP_STATE_CHECK;
    verb.secondary_rc = NAP_IN_USE;
    memset(verb.key, ' ', sizeof(verb.key));
    memcpy(verb.key, "ETH0", 4);
    NAP_VCB header;
    memcpy(&header, &verb, sizeof(header));
    EXPECT_EQ(vga_verb_resource(reinterpret_cast<const NAP_VCB *>(&verb)), "ETH0");
    EXPECT_EQ(vga_verb_details(header, "ETH0", "corvid1"),
              "0x2043 (NAP_DELETE_PORT); 0x0200 (state), 0x00005547 (used)\nR ETH0\nN corvid1");
    header = {0x0BAD, 0, 0, 0x0077, 0, 0x12345678};
    EXPECT_EQ(vga_verb_details(header, "", ""), "0x0BAD; 0x0077, 0x12345678");
    EXPECT_EQ(vga_verb_resource(&header), "");
    NAP_DEFINE_MODE_VERB mode = {};
    mode.opcode = NAP_DEFINE_MODE;
    memset(mode.mode_name, 0x40, sizeof(mode.mode_name));
    mode.mode_name[0] = 0xC1;
    EXPECT_EQ(vga_verb_resource(reinterpret_cast<const NAP_VCB *>(&mode)), "A");
    for (const auto &one : texts_here) {
        gvga_messages[one.message] = nullptr;
    }
}

} // namespace
