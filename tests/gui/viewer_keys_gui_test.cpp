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
    const MOVE moves[] = {
        {up, none, 13, 2, "2 "},
        {up, none, 3, 15, "15 "},
        {up, none, 1, 1, "1 "}, // the title above is none to go to
        {down, none, 2, 13, "13 "},
        {down, none, 15, 3, "3 "},
        {down, none, 12, 12, "12 "},
        {prior, none, 12, 14, "14 "},
        {prior, none, 13, 1, "1 "},
        {next, none, 1, 8, "8 "},
        {next, none, 8, 12, "12 "},
        {home, none, 7, 1, "1 "},
        {end, none, 1, 12, "12 "},
        // Among the siblings.
        {up, shift, 3, 2, "2 3 "},
        {up, ctrl, 3, 2, "2 3 "},
        {up, shift, 13, 13, "13 "},
        {down, shift, 2, 3, "2 3 "},
        {down, ctrl, 2, 3, "2 3 "},
        {down, shift, 15, 15, "15 "},
        {prior, shift, 12, 3, "3 4 5 6 7 8 9 10 11 12 "}, // a page up lies a member of 2
        {prior, ctrl, 15, 13, "13 15 "},
        {next, shift, 1, 8, "1 2 3 4 5 6 7 8 "},
        {next, shift, 13, 15, "13 14 15 "},
        {next, ctrl, 13, 15, "13 15 "},
        {home, shift, 4, 1, "1 2 3 4 "},
        {home, ctrl, 15, 13, "13 15 "},
        {end, shift, 13, 15, "13 14 15 "},
        {end, ctrl, 1, 12, "1 12 "},
    };
    for (const MOVE &move : moves) {
        for (const char *name : move.keys) {
            SCOPED_TRACE(std::string(move.held.empty() ? "" : move.held[0]) + " " + name +
                         " from " + std::to_string(move.from));
            start_from(move.from);
            key(name, move.held);
            EXPECT_EQ(root.outline_viewer, &records[move.to]->item);
            EXPECT_EQ(selected(), move.selected);
            const bool moved = move.to != move.from;
            EXPECT_EQ(events.disarmed, moved);
            EXPECT_EQ(events.buttons, moved);
            const int row = row_of(root.outline_viewer);
            EXPECT_TRUE(row >= 0 && row * line() <= height - line()) << row;
            EXPECT_TRUE(inverted(row));
        }
    }
}

TEST_F(ViewerKeys, EndGoesIntoTheLastOpenGroup) {
    vga_expand_viewer(&root, &records[12]->item, 1);
    start_from(1);
    key("End");
    EXPECT_EQ(selected(), "17 ");
    key("Home", shift);
    EXPECT_EQ(selected(), "16 17 ");
}

TEST_F(ViewerKeys, WithoutOutlineMovementBeginsAtTheTop) {
    for (const char *name : {"Down", "Up", "Home"}) {
        start_from(5);
        vga_viewer_clear_selection(&root);
        vga_clear_outline_selection(&root);
        key(name);
        EXPECT_EQ(selected(), "1 ") << name;
    }
    start_from(5);
    vga_viewer_clear_selection(&root);
    vga_clear_outline_selection(&root);
    for (const char *name : {"space", "plus", "minus"}) {
        key(name);
        EXPECT_EQ(selected(), "") << name;
    }
    EXPECT_EQ(records[2]->item.expanded, 1);
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
        key(twins[1]);
        EXPECT_EQ(view()->x_offset, 0U);
        key(twins[0]);
        EXPECT_EQ(view()->x_offset, step);
        const gui::IMAGE moved = row_image(6);
        EXPECT_EQ(moved.pixel(100, 10), unmoved.pixel(100 + static_cast<int>(step), 10));
        EXPECT_NE(moved, unmoved);
        int value = 0;
        XtVaGetValues(hscroll, XmNvalue, &value, nullptr);
        EXPECT_EQ(value, static_cast<int>(step));
        for (int i = 0; i < 30; ++i) {
            gui::key(twins[0]);
        }
        drawn();
        EXPECT_EQ(view()->x_offset, view()->content_width - view()->window_width);
        key("Home");
        EXPECT_EQ(view()->x_offset, 0U);
        EXPECT_EQ(row_image(6), unmoved);
    }
    EXPECT_EQ(selected(), "1 ");
}

TEST_F(ViewerKeys, SpaceSelectsTheOutlinedLine) {
    for (const char *name : {"space", "KP_Space"}) {
        SCOPED_TRACE(name);
        start_from(3);
        vga_viewer_clear_selection(&root);
        vga_viewer_scroll_view(&root, 1000); // away from it
        key(name);
        EXPECT_EQ(selected(), "3 ");
        EXPECT_EQ(events.disarmed, 1);
        EXPECT_EQ(events.buttons, 1);
        EXPECT_TRUE(inverted(row_of(&records[3]->item)));
        key(name, ctrl);
        EXPECT_EQ(selected(), "");
        start_from(3);
        key("Down", shift);
        key("Down", ctrl);
        key(name, ctrl);
        EXPECT_EQ(selected(), "3 4 ");
        key(name, shift);
        EXPECT_EQ(selected(), "") << "the anchor, line 5, is not selected";
    }
}

TEST_F(ViewerKeys, PlusAndMinusOpenAndClose) {
    const struct {
        const char *open;
        KEYS held;
        const char *close;
    } cases[] = {
        {"plus", shift, "minus"}, {"equal", none, "KP_Subtract"}, {"KP_Add", none, "minus"}};
    start_from(12);
    const NB_ULONG content = vga_viewer_get_content_height(&root);
    for (const auto &keys : cases) {
        SCOPED_TRACE(keys.open);
        const gui::IMAGE closed = row_image(row_of(&records[12]->item));
        key(keys.open, keys.held);
        EXPECT_EQ(records[12]->item.expanded, 1);
        EXPECT_EQ(vga_viewer_get_content_height(&root), content + 2 * gvga_viewer_item_height);
        EXPECT_NE(row_image(row_of(&records[12]->item)), closed) << "the icon";
        key(keys.close);
        EXPECT_EQ(records[12]->item.expanded, 0);
        EXPECT_EQ(vga_viewer_get_content_height(&root), content);
    }
    start_from(4); // has nothing to open
    key("KP_Add");
    EXPECT_EQ(records[4]->item.expanded, 0);
    start_from(12);
    key("Up", ctrl);
    key("space", ctrl); // 11 is outlined and not selected: the anchor is the current line
    ASSERT_EQ(selected(), "12 ");
    root.select_anchor = &records[12]->item;
    key("KP_Add");
    EXPECT_EQ(records[12]->item.expanded, 1);
}

TEST_F(ViewerKeys, ControlSlashSelectsAllSiblings) {
    for (const char *name : {"slash", "KP_Divide"}) {
        SCOPED_TRACE(name);
        start_from(14);
        key(name);
        EXPECT_EQ(selected(), "14 ") << "without Ctrl";
        key(name, ctrl);
        EXPECT_EQ(selected(), "13 14 15 ");
        EXPECT_EQ(root.select_type, MEMBER);
        EXPECT_EQ(root.outline_viewer, &records[14]->item);
        EXPECT_EQ(root.select_anchor, &records[14]->item);
        EXPECT_EQ(events.disarmed, 1);
        EXPECT_EQ(events.buttons, 1);
        start_from(1);
        key(name, ctrl);
        EXPECT_EQ(selected(), "1 2 3 4 5 6 7 8 9 10 11 12 ") << "not the title";
    }
}

TEST_F(ViewerKeys, ControlBackslashKeepsOnlyTheOutlined) {
    start_from(4);
    key("Down", shift);
    key("Down", shift);
    ASSERT_EQ(selected(), "4 5 6 ");
    events = EVENTS();
    key("backslash");
    EXPECT_EQ(selected(), "4 5 6 ") << "without Ctrl";
    key("backslash", ctrl);
    EXPECT_EQ(selected(), "6 ");
    EXPECT_EQ(root.select_count, 1);
    EXPECT_EQ(events.buttons, 1);
    key("space", ctrl);
    key("backslash", ctrl);
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(root.select_type, VGA_VIEWER_SELECT_NONE);
    EXPECT_EQ(root.outline_viewer, &records[6]->item);
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
