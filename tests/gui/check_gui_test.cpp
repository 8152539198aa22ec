// Filters and checks of text fields in a window, with real keys and pastes.  The fields come from a
// UID file that is compiled here, so that the callbacks are found by their registered names.

#include "gui_support.h"

#include "toolkit.h"
#include "vgacheck.h"
#include "vgachkcb.h"
#include "vgachkfd.h"
#include "vgadgutl.h"
#include "vgamsgs.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// A leak of the toolkit's own is known by the function that makes it, and its library keeps no
// frame pointers.
extern "C" const char *__asan_default_options();
extern "C" const char *__asan_default_options() {
    return "fast_unwind_on_malloc=0";
}

namespace {

const std::vector<std::string> callbacks = {
    "vga_check_tp_name_cb",       "vga_check_ip_name_cb",      "vga_check_ip_addr_cb",
    "vga_check_alphanum_cb",      "vga_check_num_cb",          "vga_check_signed_num_cb",
    "vga_check_caps_alphanum_cb", "vga_check_hex_cb",          "vga_all_caps_cb",
    "vga_check_hex_pwd_cb",       "vga_check_filename_cb",     "vga_check_pathname_cb",
    "vga_check_ebcdic_cb",        "vga_check_ebcdic_lower_cb", "vga_check_ebcdic_ae_cb",
    "vga_check_ebcdic_ae_pwd_cb", "vga_check_mode_name_cb",    "vga_check_lu_name_template_cb",
};

// The compiler takes no long names.
std::string field_name(const std::string &callback, const std::string &type) {
    const auto at = std::find(callbacks.begin(), callbacks.end(), callback);
    return type + std::to_string(at - callbacks.begin());
}

// A field of each of the two classes for each callback, and one without any.
std::string description() {
    std::string procedures;
    std::string children = "XmTextField source;\n";
    std::string objects = "object source : XmTextField { };\n";
    for (const std::string &callback : callbacks) {
        procedures += callback + "();\n";
        for (const std::string type : {"XmText", "XmTextField"}) {
            const std::string name = field_name(callback, type);
            children += type + " " + name + ";\n";
            objects += "object " + name + " : " + type + " { callbacks {\n" +
                       "XmNmodifyVerifyCallback = procedure " + callback + "(); }; };\n";
        }
    }
    return "module checktest names = case_sensitive\nprocedure\n" + procedures +
           "object nodew : XmRowColumn { arguments { XmNpacking = XmPACK_COLUMN;\n"
           "XmNnumColumns = 3; }; controls {\n" +
           children + "}; };\n" + objects + "end module;\n";
}

int verified; // changes that a field was asked about

NB_VOID note_verified(Widget, XtPointer, XtPointer) {
    verified++;
}

NB_USHORT get_any(VGA_DIALOG *) {
    return 1;
}

std::string text_of(Widget field) {
    NB_CHAR text[100];
    vga_get_field_text(field, text, sizeof(text));
    return text;
}

// All input at once: the server keeps its order, and whoever waits counts what the field was asked.
NB_VOID press_key(KeySym symbol, bool with_shift) {
    const KeyCode code = XKeysymToKeycode(gvga_display, symbol);
    const KeyCode shift = XKeysymToKeycode(gvga_display, XK_Shift_L);
    for (const Bool down : {True, False}) {
        if (with_shift) {
            XTestFakeKeyEvent(gvga_display, shift, down, CurrentTime);
        }
        XTestFakeKeyEvent(gvga_display, code, down, CurrentTime);
    }
}

NB_VOID type(const std::string &text) {
    for (const char character : text) {
        const auto symbol = static_cast<KeySym>(character);
        const KeyCode code = XKeysymToKeycode(gvga_display, symbol);
        ASSERT_NE(code, 0) << character;
        press_key(symbol, XkbKeycodeToKeysym(gvga_display, code, 0, 0) != symbol);
    }
}

enum WAY { TYPED, FROM_PRIMARY, FROM_CLIPBOARD };

class Checks : public testing::Test {
protected:
    static void SetUpTestSuite() {
        if (gvga_uil_hierarchy != nullptr) {
            return; // for both suites
        }
        gui::open();
        char name[] = "/tmp/checkXXXXXX";
        const std::filesystem::path folder = mkdtemp(name);
        std::ofstream(folder / "test.uil") << description();
        std::string file = (folder / "test.uid").string();
        const std::string command = "uil -o " + file + " " + (folder / "test.uil").string();
        ASSERT_EQ(system(command.c_str()), 0);
        String files[] = {file.data()};
        ASSERT_EQ(MrmOpenHierarchyPerDisplay(gvga_display, 1, files, nullptr, &gvga_uil_hierarchy),
                  MrmSUCCESS);
        std::filesystem::remove_all(folder);
        vga_register_common_names();
        nba_pd_set_log("/dev/null", NB_PD_ALL);
    }

    void SetUp() override {
        ASSERT_NE(gvga_uil_hierarchy, nullptr);
        table = gvga_uid_desc;
        VGA_UID_DESC row = {VGA_UID_NODE_WINDOW, "nodew", VGA_KIND_MAIN, sizeof(VGA_DIALOG),
                            get_any};
        gvga_uid_desc[VGA_UID_NODE_WINDOW] = row;
        gvga_messages[1] = "empty";
        gvga_messages[2] = "%1 to %2";
        gvga_messages[3] = "bad";
        gvga_toplevel = XtVaAppCreateShell("test", VGA_CLASS, applicationShellWidgetClass,
                                           gvga_display, nullptr);
        vga_init_dialogs();
        ASSERT_EQ(vga_get_dialog(VGA_UID_NODE_WINDOW, nullptr, nullptr, &window), 1);
        gvga_main_dialog = window;
        vga_display_dialog(window);
        gui::settle();
        give_focus();
    }

    void TearDown() override {
        vga_close_children(window, 0, 1);
        vga_free_dialogs();
        XtDestroyWidget(gvga_toplevel);
        gui::settle();
        gvga_uid_desc = table;
    }

    // There is no window manager to give it the keyboard.
    NB_VOID give_focus() {
        XSetInputFocus(gvga_display, XtWindow(window->shell), RevertToParent, CurrentTime);
        gui::settle();
    }

    Widget named(const std::string &name) {
        Widget field = XtNameToWidget(window->widget, name.c_str());
        EXPECT_NE(field, nullptr) << name;
        return field;
    }

    // A field that has the keyboard, with its cursor, and with note_verified behind its filter.
    Widget field_of(const std::string &callback, const char *type, const char *text,
                    XmTextPosition cursor) {
        Widget field = named(field_name(callback, type));
        XtRemoveCallback(field, XmNmodifyVerifyCallback, note_verified, nullptr);
        XtAddCallback(field, XmNmodifyVerifyCallback, note_verified, nullptr);
        vga_fill_field(field, text);
        XmProcessTraversal(field, XmTRAVERSE_CURRENT);
        gui::settle();
        XmTextSetInsertionPosition(field, cursor);
        return field;
    }
    Widget field_of(const std::string &callback, const char *type, const char *text) {
        return field_of(callback, type, text, static_cast<XmTextPosition>(strlen(text)));
    }

    // At the cursor, or for the PRIMARY selection at the end.
    NB_VOID paste(Widget field, WAY way, const std::string &text) {
        Widget source = named("source");
        XmTextFieldSetString(source, const_cast<char *>(text.c_str()));
        const Time now = XtLastTimestampProcessed(gvga_display);
        XmTextFieldSetSelection(source, 0, XmTextFieldGetLastPosition(source), now);
        if (way == FROM_CLIPBOARD) {
            ASSERT_TRUE(XmTextFieldCopy(source, now));
            press_key(XK_Insert, true);
        } else {
            Dimension width = 0, height = 0;
            XtVaGetValues(field, XmNwidth, &width, XmNheight, &height, nullptr);
            gui::move_to(field, width - 10, height / 2);
            XTestFakeButtonEvent(gvga_display, 2, True, CurrentTime);
            XTestFakeButtonEvent(gvga_display, 2, False, CurrentTime);
        }
    }

    NB_VOID enter(Widget field, WAY way, const std::string &text) {
        const int asked = verified + (way == TYPED ? static_cast<int>(text.size()) : 1);
        if (way == TYPED) {
            type(text);
        } else {
            paste(field, way, text);
        }
        EXPECT_TRUE(gui::wait_for([asked] { return verified >= asked; })) << text;
        gui::settle();
    }

    static std::string shown(VGA_DIALOG *desc) {
        if (desc->modal_dlg.showing == 0) {
            return "";
        }
        XmString text = nullptr;
        XtVaGetValues(desc->modal_dlg.dialog, XmNmessageString, &text, nullptr);
        auto *plain = static_cast<char *>(XmStringUnparse(
            text, nullptr, XmCHARSET_TEXT, XmMULTIBYTE_TEXT, nullptr, 0, XmOUTPUT_ALL));
        const std::string result = plain;
        XtFree(plain);
        XmStringFree(text);
        return result;
    }

    // The box with that message is up; takes it down, and tells whether the field has the keyboard.
    bool refused(const char *message, Widget field) {
        EXPECT_EQ(shown(window), message);
        vga_close_modal_dialog(window);
        give_focus();
        return XmGetFocusWidget(window->shell) == field;
    }

    VGA_UID_TABLE table;
    VGA_DIALOG *window = nullptr;
};

struct CASE {
    const char *callback;
    const char *text;
    const char *typed;  // the field after typing it; null: not tried
    const char *pasted; // and after pasting it at once
};

const CASE cases[] = {
    {"vga_check_tp_name_cb", "a\"B c", "xa\"Bc", "x"},
    {"vga_check_tp_name_cb", "a/B", "xa/B", "xa/B"},
    {"vga_check_ip_name_cb", "a-1_.:/", "xa-1_.:", "x"},
    {"vga_check_ip_addr_cb", "1a.2", "x1.2", "x"},
    {"vga_check_ip_addr_cb", "1.2", "x1.2", "x1.2"},
    {"vga_check_alphanum_cb", "a B1", "xaB1", "x"},
    {"vga_check_num_cb", "12a4", "x124", "x"},
    {"vga_check_num_cb", "124", "x124", "x124"},
    {"vga_check_signed_num_cb", "-12", "x12", "x"},
    {"vga_check_caps_alphanum_cb", "ab9", "xAB9", "xAB9"},
    {"vga_check_caps_alphanum_cb", "a.b", "xAB", "x"},
    {"vga_check_hex_cb", "ab", "xAB", "xAB"},
    {"vga_check_hex_cb", "agb", "xAB", "x"},
    {"vga_all_caps_cb", "a b/", "xA B/", "xA B/"},
    {"vga_check_hex_pwd_cb", "fz", "xF", "x"},
    {"vga_check_filename_cb", "a\\b/\"c d", "xabc d", "x"},
    {"vga_check_pathname_cb", "a\\b/\"c d", "xab/c d", "x"},
    {"vga_check_pathname_cb", "/a b", "x/a b", "x/a b"},
    {"vga_check_ebcdic_cb", "a1@", "xA1@", "xA1@"},
    {"vga_check_ebcdic_cb", "a.b", "xAB", "x"},
    {"vga_check_ebcdic_cb", "abcdefghi", nullptr, "x"},
    {"vga_check_ebcdic_lower_cb", "aB.", "xaB", "x"},
    {"vga_check_ebcdic_ae_cb", "aB.", "xaB.", "xaB."},
    {"vga_check_ebcdic_ae_cb", "a-b", "xab", "x"},
    {"vga_check_ebcdic_ae_pwd_cb", "abcdefghij", nullptr, "xabcdefghij"},
    {"vga_check_ebcdic_ae_pwd_cb", "abcdefghijk", nullptr, "x"},
    {"vga_check_mode_name_cb", "a b", "xA ", "x"},
    {"vga_check_mode_name_cb", "ab ", "xAB ", "xAB "},
    {"vga_check_lu_name_template_cb", "a..", "xA..", "xA.."},
    {"vga_check_lu_name_template_cb", "a-", "xA", "x"},
};

class CheckedFields : public Checks, public testing::WithParamInterface<const char *> {};

TEST_P(CheckedFields, TypedAndPastedBehindWhatStandsThere) {
    for (const CASE &row : cases) {
        for (const WAY way : {TYPED, FROM_PRIMARY, FROM_CLIPBOARD}) {
            if (way == TYPED && row.typed == nullptr) {
                continue;
            }
            Widget field = field_of(row.callback, GetParam(), "x");
            enter(field, way, row.text);
            EXPECT_EQ(text_of(field), way == TYPED ? row.typed : row.pasted)
                << row.callback << ' ' << row.text << ", way " << way;
        }
    }
}

TEST_P(CheckedFields, TheFirstCharacterHasItsOwnRule) {
    const CASE first[] = {
        {"vga_check_signed_num_cb", "-5", "-5", "-5"},
        {"vga_check_signed_num_cb", "5-", "5", ""},
        {"vga_check_ebcdic_cb", "1a", "A", ""},
        {"vga_check_ebcdic_lower_cb", "1a", "a", ""},
        {"vga_check_ebcdic_ae_cb", "1a", "1a", "1a"},
        {"vga_check_mode_name_cb", "1a", "A", ""},
        {"vga_check_lu_name_template_cb", ".a", "A", ""},
    };
    for (const CASE &row : first) {
        for (const WAY way : {TYPED, FROM_PRIMARY, FROM_CLIPBOARD}) {
            Widget field = field_of(row.callback, GetParam(), "");
            enter(field, way, row.text);
            EXPECT_EQ(text_of(field), way == TYPED ? row.typed : row.pasted)
                << row.callback << ' ' << row.text << ", way " << way;
        }
    }
}

TEST_P(CheckedFields, DeletionLeavesAValidStart) {
    const struct {
        const char *text;
        XmTextPosition from, to; // selected and deleted; nothing selected: the key at `from`
        const char *key;
        const char *after;
    } deletions[] = {
        {"A1B", 1, 1, "BackSpace", "A1B"}, {"A1B", 0, 1, "Delete", "A1B"},
        {"A1B", 0, 2, "Delete", "B"},      {"A1B", 0, 3, "Delete", ""},
        {"A1B", 3, 3, "BackSpace", "A1"},  {"A1B", 1, 2, "Delete", "AB"},
        {"A", 1, 1, "BackSpace", ""},
    };
    for (const auto &row : deletions) {
        Widget field = field_of("vga_check_ebcdic_cb", GetParam(), row.text, row.to);
        if (row.to > row.from) {
            XmTextSetSelection(field, row.from, row.to, XtLastTimestampProcessed(gvga_display));
        }
        const int before = verified;
        gui::key(row.key);
        EXPECT_TRUE(gui::wait_for([before] { return verified > before; }));
        gui::settle();
        EXPECT_EQ(text_of(field), row.after)
            << row.text << ", " << row.from << " to " << row.to << ' ' << row.key;
    }
}

// The toolkit's own limit and the filter go together: no part of too long a paste comes in.
TEST_P(CheckedFields, PasteLongerThanTheField) {
    for (const WAY way : {FROM_PRIMARY, FROM_CLIPBOARD}) {
        Widget field = field_of("vga_check_num_cb", GetParam(), "1");
        XtVaSetValues(field, XmNmaxLength, 4, nullptr);
        paste(field, way, "23456");
        gui::settle();
        EXPECT_EQ(text_of(field), "1");
        enter(field, way, "234");
        EXPECT_EQ(text_of(field), "1234");
    }
}

TEST_P(CheckedFields, TheProgramMayShowAnything) {
    Widget field = field_of("vga_check_ebcdic_cb", GetParam(), "1 is no name");
    EXPECT_EQ(text_of(field), "1 is no name");
    enter(field, TYPED, ".");
    EXPECT_EQ(text_of(field), "1 is no name"); // the filter is on again
    vga_fill_field(field, nullptr);
    EXPECT_EQ(text_of(field), "");
    vga_fill_field(nullptr, "x");
}

INSTANTIATE_TEST_SUITE_P(Both, CheckedFields, testing::Values("XmText", "XmTextField"),
                         [](const auto &each) { return each.param; });

// Checks of what fields hold.

TEST_F(Checks, NumberFieldsTellTheirBounds) {
    Widget field = field_of("vga_check_signed_num_cb", "XmTextField", "");
    const struct {
        const char *text;
        const char *message; // null: good
        bool is_signed;
    } numbers[] = {
        {"", "empty", false},      {"-1", "0 to 4000000000", false}, {"4000000000", nullptr, false},
        {"-5", nullptr, true},     {"-6", "-5 to 10", true},         {"11", "-5 to 10", true},
        {"12x", "-5 to 10", true},
    };
    for (const auto &row : numbers) {
        vga_fill_field(field, row.text);
        XmProcessTraversal(named("source"), XmTRAVERSE_CURRENT);
        NB_ULONG value = 77;
        NB_LONG signed_value = 77;
        const NB_USHORT good =
            row.is_signed
                ? vga_check_signed_field(window, field, -5, 10, 1, "key", 2, "key", &signed_value)
                : vga_check_field(window, field, 0, 4000000000U, 1, "key", 2, "key", &value);
        gui::settle();
        EXPECT_EQ(good, row.message == nullptr) << row.text;
        if (row.message != nullptr) {
            EXPECT_TRUE(refused(row.message, field)) << row.text;
            EXPECT_EQ(value + static_cast<NB_ULONG>(signed_value), 154U);
        } else {
            EXPECT_EQ(shown(window), "");
            EXPECT_EQ(std::to_string(row.is_signed ? int64_t{signed_value} : int64_t{value}),
                      row.text);
        }
    }
}

TEST_F(Checks, HexFieldsAndNodeIdentifiers) {
    Widget block = field_of("vga_check_hex_cb", "XmTextField", "");
    Widget puid = field_of("vga_check_hex_pwd_cb", "XmTextField", "");
    NB_UCHAR out[100] = {};
    EXPECT_EQ(vga_get_hex_field(block, out, 4, 3, "key", window), 0);
    vga_fill_field(block, "0A1b2");
    EXPECT_EQ(vga_get_hex_field(block, out, 4, 3, "key", window), -1);
    gui::settle();
    EXPECT_TRUE(refused("bad", block));
    vga_fill_field(block, "0A1b2c3d4e"); // more than the field takes
    EXPECT_EQ(vga_get_hex_field(block, out, 4, 3, "key", window), 4);
    EXPECT_EQ(memcmp(out, "\x0a\x1b\x2c\x3d", 5), 0);
    EXPECT_EQ(vga_get_hex_field(block, out, 101, 3, "key", window), -1);
    EXPECT_EQ(shown(window), "");

    const struct {
        const char *block, *puid, *empty_key, *message;
        Widget at_fault;
    } identifiers[] = {
        {"", "", "key", "empty", block},      {"", "", nullptr, nullptr, nullptr},
        {"05D", "", "key", "bad", puid},      {"5", "12345", "key", "bad", block},
        {"05D", "123G5", "key", "bad", puid},
    };
    for (const auto &row : identifiers) {
        vga_fill_field(block, row.block);
        vga_fill_field(puid, row.puid);
        const NB_USHORT good =
            vga_get_node_id(block, puid, out, 1, row.empty_key, 3, "key", window);
        gui::settle();
        EXPECT_EQ(good, row.message == nullptr);
        EXPECT_TRUE(row.message == nullptr || refused(row.message, row.at_fault)) << row.block;
    }
    EXPECT_EQ(memcmp(out, "\0\0\0\0", 4), 0);
    NB_UCHAR fq_name[17];
    vga_fill_field(block, "NET");
    EXPECT_EQ(vga_build_fq_name(block, puid, fq_name), 1);
    EXPECT_EQ(vga_build_fq_name(block, nullptr, fq_name), 0);
    EXPECT_EQ(vga_buildw_fq_name(block, nullptr, fq_name), 1);
    EXPECT_EQ(memcmp(fq_name, "\xd5\xc5\xe3\x40\x40", 5), 0);
}

} // namespace
