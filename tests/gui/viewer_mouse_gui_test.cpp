// The list control and the mouse.
#include "viewer_fixture.h"
#include <X11/extensions/XTest.h>

namespace {

TEST_F(Viewer, ClickSelectsOneLineAndInvertsIt) {
    fill(5);
    display();
    const gui::IMAGE third = row_image(3);
    click(1);
    EXPECT_EQ(selected(), "1 ");
    EXPECT_TRUE(inverted(1));
    EXPECT_FALSE(inverted(0) || inverted(2));
    EXPECT_EQ(events.buttons, 1);
    EXPECT_EQ(events.disarmed, 1);
    EXPECT_EQ(events.clicked.size(), 1U);
    EXPECT_TRUE(events.opened.empty());
    events.drawn = 0;
    click(4);
    EXPECT_EQ(selected(), "4 ");
    EXPECT_TRUE(inverted(4));
    EXPECT_FALSE(inverted(1));
    EXPECT_LE(events.drawn, 4) << "lines that did not change were drawn";
    EXPECT_EQ(row_image(3), third);
    EXPECT_NE(row_image(0), gui::IMAGE(row_image(4)));
    click(2, {"Control_L"});
    click(0, {"Control_L"});
    EXPECT_EQ(selected(), "0 2 4 ");
    click(2, {"Shift_L"});
    EXPECT_EQ(selected(), "0 1 2 ");
    gui::click(draw_widget, 100, line() * 5 + 3); // below the last line
    EXPECT_EQ(selected(), "0 1 2 ");
}

TEST_F(Viewer, ExpandColumnActsOnTheFirstClick) {
    fill(3);
    RECORD *member = add(MEMBER, "MEMBER", records[0].get());
    display();
    const gui::IMAGE second = row_image(1), closed = row_image(0);
    click(0, {}, 5);
    EXPECT_EQ(records[0]->item.expanded, 1);
    EXPECT_EQ(selected(), "0 ");
    EXPECT_TRUE(events.clicked.empty() && events.opened.empty());
    EXPECT_EQ(row_image(2), second);
    click(1, {}, static_cast<int>(gvga_viewer_indent_width) + 5); // its own, empty expand column
    EXPECT_EQ(selected(), "3 ");
    EXPECT_EQ(events.clicked, std::vector<const RECORD *>{member});
    click(1 + 1, {}, 5); // a line without children is activated there
    EXPECT_EQ(events.clicked.size(), 2U);
    click(0, {}, 5);
    EXPECT_EQ(records[0]->item.expanded, 0);
    EXPECT_EQ(row_image(1), second);
    vga_viewer_clear_selection(&root);
    vga_clear_outline_selection(&root);
    drawn();
    EXPECT_EQ(row_image(0), closed);
    vga_delete_viewer(&root, &member->item);
    drawn();
    EXPECT_NE(row_image(0), closed) << "the expand icon stays though there is no child";
}

TEST_F(Viewer, OnlyTwoClicksOnOneLineOpenIt) {
    fill(3);
    display();
    XtSetMultiClickTime(gvga_display, 60000);
    click(0);
    click(1);
    EXPECT_TRUE(events.opened.empty()) << "two lines";
    click(1);
    EXPECT_EQ(events.opened, std::vector<const RECORD *>{records[1].get()});
    gui::move_to(draw_widget, 100, middle_of(0));
    gui::press();
    gui::move_to(draw_widget, 100, middle_of(2));
    gui::release();
    EXPECT_EQ(events.opened.size(), 1U);
    EXPECT_EQ(selected(), "0 1 2 ") << "a drag";
}

TEST_F(Viewer, DraggingAboveTheWindowScrollsAndStopsAtTheAnchorsSiblings) {
    fill(30);
    for (int i = 0; i < 2; ++i) {
        add(MEMBER, "MEMBER", records[3].get());
    }
    vga_expand_viewer(&root, &records[3]->item, 1);
    display();
    vga_viewer_scroll_view(&root, 15 * line());
    drawn();
    gui::move_to(draw_widget, 100, middle_of(3)); // group 16
    gui::press();
    gui::move_to(draw_widget, 100, middle_of(1));
    EXPECT_EQ(selected(), "14 15 16 ");
    gui::move_to(draw_widget, 100, -20);
    ASSERT_TRUE(gui::wait_for([] { return view()->drag_timer != 0; }));
    const NB_ULONG from = view()->y_offset;
    EXPECT_TRUE(gui::wait_for([&] { return view()->y_offset != from; }));
    EXPECT_EQ((from - view()->y_offset) % (2 * gvga_viewer_item_height), 0U);
    gui::move_to(draw_widget, 100, middle_of(0)); // back in: the view stands still
    EXPECT_EQ(view()->drag_timer, 0U);
    const NB_ULONG still = view()->y_offset;
    gui::move_to(draw_widget, 100, -20);
    EXPECT_LE(view()->y_offset, still);
    EXPECT_TRUE(gui::wait_for([] { return root.select_count == 17; }));
    EXPECT_EQ(view()->y_offset, 0U);
    EXPECT_EQ(selected(), "0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 ") << "no members";
    drawn();
    EXPECT_TRUE(inverted(3));
    EXPECT_FALSE(inverted(4)) << "a member";
    gui::move_to(draw_widget, 100, height + 20); // past the anchor, down to the end
    EXPECT_TRUE(gui::wait_for([] { return root.select_count == 14; }));
    EXPECT_EQ(selected(), "16 17 18 19 20 21 22 23 24 25 26 27 28 29 ");
    gui::release();
    EXPECT_EQ(view()->drag_timer, 0U);
}

TEST_F(Viewer, TitlesAreNeitherSelectedNorDraggedFrom) {
    RECORD *title = add(TITLE, "A title");
    vga_viewer_set_fixed(&root, &title->item, 1);
    fill(3);
    display();
    click(2);
    gui::move_to(draw_widget, 100, middle_of(0));
    gui::press();
    EXPECT_EQ(view()->dragging, 0);
    gui::move_to(draw_widget, 100, middle_of(3));
    gui::release();
    drawn();
    EXPECT_EQ(selected(), "2 ");
    EXPECT_FALSE(inverted(0));
    const gui::IMAGE row = row_image(0);
    EXPECT_EQ(row.pixel(row.width - 3, row.height - 1), BlackPixelOfScreen(gvga_screen))
        << "its underline";
}

TEST_F(Viewer, ScrolledSidewaysTheExpandColumnMovesAlong) {
    fill(2);
    add(MEMBER, "MEMBER", records[0].get());
    records[1]->text = std::string(100, 'W');
    display();
    vga_viewer_scroll_view_horizontal(&root, 10);
    drawn();
    ASSERT_EQ(view()->x_offset, 10U);
    const int column = static_cast<int>(gvga_viewer_expand_icon_width);
    click(0, {}, column - 5);
    EXPECT_EQ(records[0]->item.expanded, 0) << "that is the icon by now";
    EXPECT_EQ(events.clicked.size(), 1U);
    click(0, {}, column - 12);
    EXPECT_EQ(records[0]->item.expanded, 1);
    vga_viewer_scroll_view_horizontal(&root, 1000);
    drawn();
    click(0, {}, column - 12);
    EXPECT_EQ(records[0]->item.expanded, 1);
}

TEST_F(Viewer, TheWheelScrollsAndSelectsNothing) {
    fill(40);
    records[1]->text = std::string(100, 'W');
    display();
    gui::move_to(draw_widget, 100, middle_of(2));
    const auto turn = [](unsigned button) {
        // The server does not show such a button as held.
        XTestFakeButtonEvent(gvga_display, button, True, CurrentTime);
        XTestFakeButtonEvent(gvga_display, button, False, CurrentTime);
        drawn();
    };
    turn(5);
    EXPECT_EQ(view()->y_offset, 3 * gvga_viewer_item_height);
    turn(4);
    turn(4);
    EXPECT_EQ(view()->y_offset, 0U);
    turn(7);
    EXPECT_EQ(view()->x_offset, 3 * gvga_viewer_char_width);
    turn(6);
    EXPECT_EQ(view()->x_offset, 0U);
    EXPECT_EQ(selected(), "");
}

// Lines that a gesture refers to go while it lasts.
TEST_F(Viewer, DeletedLinesAreLetGoOf) {
    fill(8);
    display();
    const auto remove = [](RECORD *record) {
        vga_delete_viewer(&root, &record->item);
        drawn();
    };
    gui::move_to(draw_widget, 100, middle_of(0));
    gui::press();
    gui::move_to(draw_widget, 100, middle_of(2));
    EXPECT_EQ(selected(), "0 1 2 ");
    remove(records[2].get()); // last dragged over
    EXPECT_EQ(root.last_dragged, nullptr);
    gui::move_to(draw_widget, 100, middle_of(3));
    EXPECT_EQ(selected(), "0 1 ") << "that drag is over";
    gui::release();
    gui::move_to(draw_widget, 100, middle_of(1));
    gui::press();
    remove(records[1].get()); // pressed
    gui::release();
    EXPECT_EQ(events.disarmed, 2) << "once a release, whatever became of the line";
    EXPECT_EQ(selected(), "");
    click(2);
    EXPECT_EQ(selected(), "4 ");
}

} // namespace
