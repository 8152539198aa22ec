// The list control and the keyboard: every key with its keypad twin.
#include "viewer_fixture.h"

namespace {

using KEYS = std::vector<const char *>;

const KEYS none, shift = {"Shift_L"}, ctrl = {"Control_L"};

// On the screen: the title 0, groups 1 and 2, members 13 to 15 of group 2, groups 3 to 12; the
// members 16 and 17 of group 12 are closed away.  The window shows ten lines and a half.
class ViewerKeys : public Viewer {
protected:
    void SetUp() override {
        Viewer::SetUp();
        add(TITLE, "A title");
        fill(12);
        for (const size_t parent : {2, 2, 2, 12, 12}) {
            add(MEMBER, "MEMBER%t8%Inactive", records[parent].get());
        }
        vga_expand_viewer(&root, &records[2]->item, 1);
        display();
        make_typeable("KP_Space");
    }

    // Not every keyboard has every key.
    static void make_typeable(const char *name) {
        KeySym symbol = XStringToKeysym(name);
        if (XKeysymToKeycode(gvga_display, symbol) != 0) {
            return;
        }
        int first, last, width;
        XDisplayKeycodes(gvga_display, &first, &last);
        KeySym *map = XGetKeyboardMapping(gvga_display, static_cast<KeyCode>(first),
                                          last - first + 1, &width);
        while (last > first && map[(last - first) * width] != NoSymbol) {
            --last;
        }
        XFree(map);
        XChangeKeyboardMapping(gvga_display, last, 1, &symbol, 1);
        drawn();
    }

    void start_from(size_t record) {
        vga_viewer_scroll_view_horizontal(&root, -100000);
        vga_viewer_clear_selection(&root);
        root.select_anchor = nullptr;
        vga_viewer_select(&records[record]->item, &root, 0, 0, 1, 0);
        vga_viewer_set_view(&root, &records[record]->item);
        drawn();
        events = EVENTS();
    }

    int row_of(const VGA_VIEWER_ITEM *item) {
        return (vga_viewer_get_screen_pos(item) - static_cast<int>(view()->y_offset)) / line();
    }
};

struct MOVE {
    std::vector<const char *> keys; // that do the same
    KEYS held;
    size_t from, to;
    const char *selected;
};

TEST_F(ViewerKeys, Movement) {
    const KEYS up = {"Up", "KP_Up"}, down = {"Down", "KP_Down"}, prior = {"Prior", "KP_Prior"},
               next = {"Next", "KP_Next"}, home = {"Home", "KP_Home"}, end = {"End", "KP_End"};
    // One of each key and modifier; where they lead in any list is viewer_test's.
    const MOVE moves[] = {
        {up, none, 3, 15, "15 "},
        {down, none, 12, 12, "12 "},
        {prior, none, 12, 14, "14 "},
        {next, none, 1, 8, "8 "},
        {home, none, 7, 1, "1 "}, // with the title above it
        {end, none, 1, 12, "12 "},
        {up, shift, 3, 2, "2 3 "},
        {down, ctrl, 2, 3, "2 3 "},
        {prior, shift, 12, 3, "3 4 5 6 7 8 9 10 11 12 "}, // a page up lies a member of 2
        {next, ctrl, 13, 15, "13 15 "},
        {home, ctrl, 15, 13, "13 15 "},
        {end, shift, 13, 15, "13 14 15 "},
        {{"space", "KP_Space"}, ctrl, 3, 3, ""},
    };
    for (const MOVE &move : moves) {
        for (const char *name : move.keys) {
            SCOPED_TRACE(std::string(move.held.empty() ? "" : move.held[0]) + " " + name +
                         " from " + std::to_string(move.from));
            start_from(move.from);
            key(name, move.held);
            EXPECT_EQ(root.outline_viewer, &records[move.to]->item);
            EXPECT_EQ(selected(), move.selected);
            const bool changed = move.to != move.from || *move.selected == '\0';
            EXPECT_EQ(events.disarmed, changed);
            EXPECT_EQ(events.buttons, changed);
            const int row = row_of(root.outline_viewer);
            EXPECT_TRUE(row >= 0 && row * line() <= height - line()) << row;
            EXPECT_EQ(inverted(row), *move.selected != '\0');
        }
    }
}

TEST_F(ViewerKeys, LeftRightAndHomeScrollSideways) {
    records[3]->text = std::string(80, 'W');
    vga_update_viewer(&root, &records[3]->item);
    drawn();
    start_from(1);
    ASSERT_TRUE(XtIsManaged(hscroll));
    const NB_ULONG step = gvga_viewer_char_width;
    const gui::IMAGE unmoved = row_image(6);
    for (const KEYS &twins : {KEYS{"Right", "Left"}, KEYS{"KP_Right", "KP_Left"}}) {
        key(twins[0]);
        EXPECT_EQ(view()->x_offset, step);
        EXPECT_EQ(row_image(6).pixel(100, 10), unmoved.pixel(100 + static_cast<int>(step), 10));
        key(twins[1]);
        key(twins[1]);
        EXPECT_EQ(view()->x_offset, 0U);
        for (int i = 0; i < 30; ++i) {
            gui::key(twins[0]);
        }
        drawn();
        EXPECT_EQ(view()->x_offset, view()->content_width - view()->window_width);
        key("Home");
        EXPECT_EQ(row_image(6), unmoved);
    }
}

TEST_F(ViewerKeys, PlusAndMinusOpenAndClose) {
    start_from(12);
    const gui::IMAGE closed = row_image(row_of(&records[12]->item));
    const std::pair<const char *, KEYS> openers[] = {
        {"plus", shift}, {"equal", none}, {"KP_Add", none}};
    for (const auto &[open, held] : openers) {
        key(open, held);
        EXPECT_EQ(records[12]->item.expanded, 1) << open;
        EXPECT_NE(row_image(row_of(&records[12]->item)), closed) << "the icon";
        key(strcmp(open, "plus") == 0 ? "KP_Subtract" : "minus");
        EXPECT_EQ(records[12]->item.expanded, 0) << open;
    }
}

TEST_F(ViewerKeys, ControlSlashAndBackslashSelectAllAndOne) {
    for (const char *name : {"slash", "KP_Divide", "a"}) {
        SCOPED_TRACE(name);
        start_from(14);
        key(name);
        key("backslash");
        EXPECT_EQ(selected(), "14 ") << "without Ctrl";
        key(name, ctrl);
        EXPECT_EQ(selected(), "13 14 15 ");
        EXPECT_EQ(root.select_anchor, &records[14]->item);
        EXPECT_EQ(events.buttons, 1);
        key("backslash", ctrl);
        EXPECT_EQ(selected(), "14 ");
        EXPECT_EQ(root.select_count, 1);
        key("space", ctrl);
        key("backslash", ctrl);
        EXPECT_EQ(selected(), "") << "the outlined line was not selected";
    }
}

TEST_F(ViewerKeys, LeftAndRightWalkATreeThatFitsTheWindow) {
    start_from(2);
    ASSERT_LE(view()->content_width, view()->window_width);
    const struct {
        const char *name;
        size_t at;
        bool open;
    } steps[] = {
        {"Right", 13, true}, {"KP_Right", 13, true}, {"Left", 2, true},   {"KP_Left", 2, false},
        {"Left", 2, false},  {"Right", 2, true},     {"Right", 13, true},
    };
    for (const auto &step : steps) {
        key(step.name);
        EXPECT_EQ(root.outline_viewer, &records[step.at]->item) << step.name;
        EXPECT_EQ(selected(), std::to_string(step.at) + " ");
        EXPECT_EQ(records[2]->item.expanded, step.open) << step.name;
    }
    key("Home");
    EXPECT_EQ(view()->y_offset, 0U) << "the title is seen";
}

// The window shows ten lines; what is opened at its foot brings as much into view as fits.
TEST_F(ViewerKeys, WhatIsOpenedIsSeen) {
    for (int more = 0; more < 20; ++more) {
        add(MEMBER, "MORE", records[12].get());
    }
    for (const bool by_mouse : {false, true}) {
        start_from(1);
        vga_viewer_contract(&root, &records[12]->item, 1);
        vga_viewer_set_view(&root, &records[11]->item);
        vga_viewer_scroll_view(&root, line());
        drawn();
        if (by_mouse) {
            click(row_of(&records[12]->item), none, 5);
        } else {
            start_from(12);
            key("plus", shift);
        }
        EXPECT_EQ(row_of(&records[12]->item), 0) << by_mouse;
    }
    start_from(12);
    vga_viewer_contract(&root, &records[12]->item, 1);
    vga_viewer_contract(&root, &records[2]->item, 1);
    drawn();
    const int row = row_of(&records[12]->item);
    key("KP_Multiply");
    EXPECT_EQ(records[2]->item.expanded + records[12]->item.expanded, 2);
    EXPECT_EQ(row_of(&records[12]->item), row) << "the current line stays where it was";
}

// What somebody else gets when he asks for the selection.
std::string text_of(Widget asks, const char *selection, const char *target) {
    static std::string got;
    static bool came;
    came = false;
    XtGetSelectionValue(
        asks, XInternAtom(gvga_display, selection, False), XInternAtom(gvga_display, target, False),
        [](Widget, XtPointer, Atom *, Atom *, XtPointer value, unsigned long *length, int *) {
            got.assign(value != nullptr ? static_cast<char *>(value) : "nothing",
                       value != nullptr ? *length : 7);
            XtFree(static_cast<char *>(value));
            came = true;
        },
        nullptr, XtLastTimestampProcessed(gvga_display));
    EXPECT_TRUE(gui::wait_for([] { return came; }));
    return got;
}

TEST_F(ViewerKeys, SelectedLinesAreOfferedAsTheyAreAndCopiedAsTheyWere) {
    records[13]->text = "A name longer than its column%t8%\xE4%t20%";
    start_from(14);
    key("Up", shift);
    const std::string both = "A name longer than its column\t\xE4\t\nMEMBER\tInactive";
    EXPECT_EQ(text_of(shell, "PRIMARY", "STRING").size(), both.size());
    EXPECT_EQ(text_of(shell, "PRIMARY", "UTF8_STRING").substr(0, 29), both.substr(0, 29));
    key("c", ctrl);
    key("Home");
    EXPECT_EQ(text_of(shell, "PRIMARY", "TEXT"), "GROUP0\tActive\tFirst of its kind");
    EXPECT_EQ(text_of(shell, "CLIPBOARD", "COMPOUND_TEXT").substr(0, 29), both.substr(0, 29));
    key("space", ctrl);
    EXPECT_EQ(text_of(shell, "PRIMARY", "STRING"), "nothing") << "no line is selected";
    vga_viewer_undisplay(&root);
    EXPECT_EQ(text_of(shell, "PRIMARY", "STRING"), "nothing");
    display();
}

// The tip of a line: by the pointer where it is cut, by the keyboard for each.
TEST_F(ViewerKeys, ATipHasTheWholeLine) {
    XtVaSetValues(shell, XmNtoolTipPostDelay, 50, nullptr);
    const auto tip = [this] {
        std::string text;
        if (Widget found = XtNameToWidget(shell, "*TipColumns")) {
            WidgetList labels = nullptr;
            XtVaGetValues(found, XmNchildren, &labels, nullptr);
            text = gui::label_text(labels[0]) + "|" + gui::label_text(labels[1]) + "|";
        }
        return text;
    };
    const auto is = [&tip](const std::string &text) {
        EXPECT_TRUE(gui::wait_for([&] { return tip() == text; }, 1000)) << tip();
    };
    records[3]->text = "A name longer than its column%t12%Active%t24%";
    vga_update_viewer(&root, &records[3]->item);
    drawn();
    gui::move_to(draw_widget, 100, middle_of(6));
    is("|A name longer than its columnActive|");
    gui::move_to(draw_widget, 100, middle_of(7));
    is("");
    start_from(4);
    key("F1", shift);
    is("|GROUP3ActiveFirst of its kind|");
    key("Down");
    is("");
    key("F1", shift);
    is("|GROUP4ActiveFirst of its kind|");
    vga_update_viewer(&root, &records[5]->item);
    drawn();
    is("|GROUP4ActiveFirst of its kind|");
    records[5]->text = "GROUP4%t12%Inactive";
    vga_update_viewer(&root, &records[5]->item);
    is("");
}

TEST_F(ViewerKeys, ReturnDeleteAndInsertAskTheWindow) {
    start_from(4);
    const struct {
        const char *name;
        VGA_VIEWER_ACTION action;
    } cases[] = {{"Return", VGA_VIEWER_ACTION_ZOOM},
                 {"KP_Enter", VGA_VIEWER_ACTION_ZOOM},
                 {"Delete", VGA_VIEWER_ACTION_DELETE},
                 {"KP_Delete", VGA_VIEWER_ACTION_DELETE},
                 {"Insert", VGA_VIEWER_ACTION_ADD}};
    for (const auto &expected : cases) {
        events.actions.clear();
        key(expected.name);
        EXPECT_EQ(events.actions, std::vector<VGA_VIEWER_ACTION>{expected.action}) << expected.name;
    }
    gvga_viewer_window_action = nullptr;
    key("Delete"); // nobody to ask
    EXPECT_EQ(selected(), "4 ");
}

TEST_F(ViewerKeys, DoNothingDuringADrag) {
    start_from(3);
    gui::move_to(draw_widget, 100, middle_of(6)); // group 3
    gui::press();
    ASSERT_EQ(view()->dragging, 1);
    for (const char *name : {"Down", "End", "space", "Delete", "Right"}) {
        key(name);
    }
    EXPECT_EQ(selected(), "3 ");
    EXPECT_TRUE(events.actions.empty());
    gui::release();
    key("Down");
    EXPECT_EQ(selected(), "4 ");
}

} // namespace
