// Filters and checks of text fields in a window, with real keys and pastes.

#include "dialog_support.h"

#include "fieldchecks.h"
#include "filtercallbacks.h"

#include <X11/XKBlib.h>
#include <X11/keysym.h>
#include <Xm/Text.h>
#include <tuple>

// A leak of the toolkit's own is known by the function that makes it, and its library keeps no
// frame pointers.
extern "C" const char *__asan_default_options();
extern "C" const char *__asan_default_options() {
    return "fast_unwind_on_malloc=0";
}

namespace {

int verified; // changes that a field was asked about

NB_VOID note_verified(Widget, XtPointer, XtPointer) {
    verified++;
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

// Fields of both classes with the filter of names, and one without any.
class Fields : public dialogs::Dialogs {
protected:
    void SetUp() override {
        Dialogs::SetUp();
        window = main_dialog;
        source = make("source", xmTextFieldWidgetClass, 60);
        for (const auto &[name, type, y] : {std::tuple("manyLines", xmTextWidgetClass, 150),
                                            {"oneLine", xmTextFieldWidgetClass, 200}}) {
            XtAddCallback(make(name, type, y), XmNmodifyVerifyCallback, vga_check_ebcdic_cb,
                          nullptr);
        }
        gui::settle();
        gui::give_focus(window->shell);
    }
    Widget make(const char *name, WidgetClass type, int y) const {
        return XtVaCreateManagedWidget(name, type, window->widget, XmNx, 150, XmNy, y, nullptr);
    }
    Widget named(const char *name) const { return XtNameToWidget(window->widget, name); }

    // A field that has the keyboard, with its cursor, and with note_verified behind its filter.
    Widget field_of(const std::string &name, const char *text, XmTextPosition cursor) {
        Widget field = named(name.c_str());
        XtRemoveCallback(field, XmNmodifyVerifyCallback, note_verified, nullptr);
        XtAddCallback(field, XmNmodifyVerifyCallback, note_verified, nullptr);
        vga_fill_field(field, text);
        XmProcessTraversal(field, XmTRAVERSE_CURRENT);
        gui::settle();
        XmTextSetInsertionPosition(field, cursor);
        return field;
    }
    Widget field_of(const std::string &name, const char *text) {
        return field_of(name, text, static_cast<XmTextPosition>(strlen(text)));
    }

    // At the cursor, or for the PRIMARY selection at the end.
    NB_VOID paste(Widget field, WAY way, const std::string &text) {
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

    VGA_DIALOG *window = nullptr;
    Widget source = nullptr;
};

class CheckedFields : public Fields, public testing::WithParamInterface<const char *> {};

TEST_P(CheckedFields, TypedAndPasted) {
    const struct {
        const char *before, *text;
        const char *typed;  // the field after typing it
        const char *pasted; // and after pasting it at once
    } cases[] = {
        {"x", "a1@", "xA1@", "xA1@"},
        {"x", "a.b", "xAB", "x"},
        {"", "1a", "A", ""}, // the first character has its own rule
    };
    for (const auto &row : cases) {
        for (const WAY way : {TYPED, FROM_PRIMARY, FROM_CLIPBOARD}) {
            Widget field = field_of(GetParam(), row.before);
            enter(field, way, row.text);
            EXPECT_EQ(text_of(field), way == TYPED ? row.typed : row.pasted)
                << row.text << ", way " << way;
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
        Widget field = field_of(GetParam(), row.text, row.to);
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

// The toolkit's own limit and the filter go together: no part of too long a paste comes in.  What
// the program shows is not filtered.
TEST_P(CheckedFields, PasteLongerThanTheField) {
    for (const WAY way : {FROM_PRIMARY, FROM_CLIPBOARD}) {
        Widget field = field_of(GetParam(), "1 is no name");
        EXPECT_EQ(text_of(field), "1 is no name");
        vga_fill_field(field, "A");
        XmTextSetInsertionPosition(field, 1);
        XtVaSetValues(field, XmNmaxLength, 4, nullptr);
        paste(field, way, "23456");
        gui::settle();
        EXPECT_EQ(text_of(field), "A");
        enter(field, way, "234");
        EXPECT_EQ(text_of(field), "A234");
        XtVaSetValues(field, XmNmaxLength, 100, nullptr);
    }
}

INSTANTIATE_TEST_SUITE_P(Both, CheckedFields, testing::Values("manyLines", "oneLine"),
                         [](const auto &each) { return each.param; });

// Every filter by its callback: what it takes, and what it does not.
TEST_F(Fields, EachCallbackHasItsFilter) {
    const struct {
        XtCallbackProc callback;
        const char *good, *bad; // null: it takes anything
    } cases[] = {
        {vga_check_tp_name_cb, "/", " "},       {vga_check_ip_name_cb, "_", "/"},
        {vga_check_ip_addr_cb, ".", "a"},       {vga_check_alphanum_cb, "a", "_"},
        {vga_check_num_cb, "1", "-"},           {vga_check_signed_num_cb, "-", "a"},
        {vga_check_caps_alphanum_cb, "A", "."}, {vga_check_hex_cb, "F", "G"},
        {vga_all_caps_cb, "/", nullptr},        {vga_check_hex_pwd_cb, "F", "G"},
        {vga_check_filename_cb, ".", "/"},      {vga_check_pathname_cb, "/", "\""},
        {vga_check_ebcdic_cb, "A", "."},        {vga_check_ebcdic_lower_cb, "a", "."},
        {vga_check_ebcdic_ae_cb, ".", "-"},     {vga_check_ebcdic_ae_pwd_cb, ".", "-"},
        {vga_check_mode_name_cb, "#", "1"},     {vga_check_lu_name_template_cb, "A", "."},
    };
    for (const auto &row : cases) {
        for (const char *text : {row.good, row.bad}) {
            if (text != nullptr) {
                XmTextFieldSetString(source, const_cast<char *>(""));
                XtAddCallback(source, XmNmodifyVerifyCallback, row.callback, nullptr);
                XmTextFieldInsert(source, 0, const_cast<char *>(text));
                XtRemoveCallback(source, XmNmodifyVerifyCallback, row.callback, nullptr);
                EXPECT_EQ(text_of(source), text == row.good ? text : "") << &row - cases;
            }
        }
    }
}

// What fields hold: the one that is wrong gets the keyboard, and the operator is told.
TEST_F(Fields, WhatIsWrongIsRefusedWithItsMessage) {
    gvga_messages[1] = "empty";
    gvga_messages[2] = "%1 to %2";
    gvga_messages[3] = "bad";
    Widget block = named("manyLines"), puid = named("oneLine");
    for (Widget field : {block, puid}) {
        XtRemoveAllCallbacks(field, XmNmodifyVerifyCallback);
    }
    NB_ULONG value = 77;
    NB_LONG signed_value = 77;
    NB_UCHAR out[100] = {};
    const struct {
        char check;
        const char *block, *puid, *message;
        Widget at_fault; // null: all is well
    } rows[] = {
        {'u', "", "", "empty", puid},      {'u', "", "-1", "0 to 4000000000", puid},
        {'s', "", "-6", "-5 to 10", puid}, {'u', "", "4000000000", "", nullptr},
        {'s', "", "-5", "", nullptr},      {'h', "", "0A1b2", "bad", puid},
        {'i', "", "", "empty", block},     {'i', "05D", "", "bad", puid},
        {'i', "5", "12345", "bad", block},
    };
    for (const auto &row : rows) {
        vga_fill_field(block, row.block);
        vga_fill_field(puid, row.puid);
        const bool good =
            row.check == 'u'
                ? vga_check_field(window, puid, 0, 4000000000U, 1, "key", 2, "key", &value) != 0
            : row.check == 's' ? vga_check_signed_field(window, puid, -5, 10, 1, "key", 2, "key",
                                                        &signed_value) != 0
            : row.check == 'h' ? vga_get_hex_field(puid, out, 4, 3, "key", window) != -1
                               : vga_get_node_id(block, puid, out, 1, "key", 3, "key", window) != 0;
        gui::settle();
        EXPECT_EQ(good, row.at_fault == nullptr) << &row - rows;
        EXPECT_EQ(gui::box_text(window), row.message);
        vga_close_modal_dialog(window);
        gui::give_focus(window->shell);
        EXPECT_TRUE(good || XmGetFocusWidget(window->shell) == row.at_fault) << &row - rows;
    }
    EXPECT_EQ(value, 4000000000U);
    EXPECT_EQ(signed_value, -5);
    vga_fill_field(puid, "0A1b2c3d4e"); // more than the field takes
    EXPECT_EQ(vga_get_hex_field(puid, out, 4, 3, "key", window), 4);
    EXPECT_EQ(memcmp(out, "\x0a\x1b\x2c\x3d", 5), 0);
    EXPECT_EQ(vga_build_fq_name(block, nullptr, out), 0);
    EXPECT_EQ(vga_buildw_fq_name(block, nullptr, out), 1);
}

} // namespace
