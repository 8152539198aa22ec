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
        {home, none, 7, 1, "1 "},
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
    for (const char *name : {"slash", "KP_Divide"}) {
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
