// The list control on a screen: what it shows.
#include "viewer_fixture.h"

namespace {

TEST_F(Viewer, FocusLineIsDashed) {
    fill(3);
    display();
    click(1);
    vga_viewer_clear_selection(&root);
    drawn();
    ASSERT_FALSE(inverted(1));
    const gui::IMAGE row = row_image(1);
    const unsigned long black = BlackPixelOfScreen(gvga_screen);
    int dashes = 0;
    for (int x = 0; x < row.width; ++x) {
        dashes += row.pixel(x, 0) == black;
    }
    EXPECT_NEAR(dashes, row.width / 2, 2);
    EXPECT_EQ(row.pixel(row.width / 2, 2) == black && row.pixel(row.width / 2 + 1, 2) == black,
              false);
    vga_clear_outline_selection(&root);
    drawn();
    EXPECT_NE(row_image(1), row);
}

TEST_F(Viewer, ScrollBarsAppearScrollByLinesAndGo) {
    fill(40);
    display();
    EXPECT_TRUE(XtIsManaged(vscroll));
    EXPECT_FALSE(XtIsManaged(hscroll));
    const gui::IMAGE second = row_image(1);
    Dimension bar_width, bar_height;
    XtVaGetValues(vscroll, XmNwidth, &bar_width, XmNheight, &bar_height, nullptr);
    gui::click(vscroll, bar_width / 2, bar_height - 5); // the arrow
    drawn();
    EXPECT_EQ(root.y_offset, gvga_viewer_item_height);
    EXPECT_EQ(row_image(0), second);
    gui::move_to(vscroll, bar_width / 2, bar_width + 8);
    gui::press();
    gui::move_to(vscroll, bar_width / 2, bar_height - 2); // the slider, to the end
    gui::release();
    drawn();
    EXPECT_EQ(root.y_offset % gvga_viewer_item_height, 0U);
    EXPECT_GE(root.y_offset + root.window_height, 40 * gvga_viewer_item_height);
    for (size_t i = 3; i < 40; ++i) {
        vga_delete_viewer(&root, &records[i]->item);
    }
    drawn();
    EXPECT_FALSE(XtIsManaged(vscroll));
    EXPECT_EQ(root.y_offset, 0U);
    EXPECT_EQ(row_image(1), gui::IMAGE(draw_widget, 0, line(), width, line()));
    records[0]->text = std::string(120, 'W');
    vga_update_viewer(&root, &records[0]->item);
    drawn();
    EXPECT_TRUE(XtIsManaged(hscroll));
    EXPECT_FALSE(XtIsManaged(vscroll));
    const gui::IMAGE before = row_image(1);
    click(1);
    key("Right");
    EXPECT_EQ(root.x_offset, gvga_viewer_char_width);
    key("Home");
    EXPECT_EQ(root.x_offset, 0U);
    EXPECT_EQ(before.width, width);
}

TEST_F(Viewer, ResizingNeverLeavesABarThatIsNotNeeded) {
    fill(8);
    display();
    EXPECT_FALSE(XtIsManaged(hscroll) || XtIsManaged(vscroll));
    const gui::IMAGE all(draw_widget);
    XtVaSetValues(shell, XmNwidth, 120, XmNheight, 90, nullptr);
    drawn();
    EXPECT_TRUE(XtIsManaged(hscroll) && XtIsManaged(vscroll));
    EXPECT_LT(root.window_width, 120U);
    vga_viewer_set_view(&root, &records[7]->item);
    EXPECT_GT(root.y_offset, 0U);
    XtVaSetValues(shell, XmNwidth, width, XmNheight, height, nullptr);
    drawn();
    EXPECT_FALSE(XtIsManaged(hscroll) || XtIsManaged(vscroll));
    EXPECT_EQ(root.y_offset, 0U);
    EXPECT_EQ(gui::IMAGE(draw_widget), all);
}

TEST_F(Viewer, WhatWasCoveredIsDrawnAgain) {
    fill(8);
    add(TITLE, "A title with a line below");
    display();
    click(2);
    const gui::IMAGE before(draw_widget);
    Widget cover = gui::make_shell("cover", 60, 50, 200, 100);
    XtVaCreateManagedWidget("area", xmDrawnButtonWidgetClass, cover, nullptr);
    gui::show(cover);
    gvga_display_dirty = 0;
    XtDestroyWidget(cover);
    EXPECT_TRUE(gui::wait_for([&] { return gui::IMAGE(draw_widget) == before; }));
    EXPECT_EQ(gvga_display_dirty, 1);
    drawn();
    EXPECT_EQ(gui::IMAGE(draw_widget), before);
}

TEST_F(Viewer, TextIsCutWhereItsColumnEnds) {
    add(GROUP, "ABCDEFGH%t4%X");
    add(GROUP, "ABCD%t4%X");
    add(GROUP, "ABCDEFGH");
    display();
    EXPECT_EQ(row_image(0), row_image(1));
    EXPECT_NE(row_image(0), row_image(2));
    EXPECT_EQ(vga_viewer_text_width("ABCDEFGH%t4%X"), 5 * gvga_viewer_char_width);
    EXPECT_EQ(root.content_width, gvga_viewer_expand_icon_width + gvga_viewer_icon_width + 4 +
                                      8 * gvga_viewer_char_width);
}

TEST_F(Viewer, ABurstIsDrawnOnce) {
    display();
    events.drawn = 0;
    fill(2000);
    for (size_t i = 0; i < 1000; ++i) {
        vga_delete_viewer(&root, &records[i]->item);
    }
    EXPECT_EQ(events.drawn, 0) << "drawn before the burst was over";
    EXPECT_EQ(root.content_height, 1001 * gvga_viewer_item_height);
    drawn();
    EXPECT_LE(events.drawn, 2 * (height / line() + 1)); // twice, because the bar appears
}

TEST_F(Viewer, ListOutlivesItsWidgets) {
    fill(3);
    add(MEMBER, "MEMBER", records[0].get());
    vga_expand_viewer(&root, &records[0]->item, 1);
    display();
    click(1);
    const gui::IMAGE before(draw_widget);
    vga_viewer_undisplay(&root);
    events.drawn = 0;
    click(2); // nobody listens
    EXPECT_EQ(selected(), "3 ");
    vga_update_viewer(&root, &records[0]->item);
    display();
    EXPECT_EQ(gui::IMAGE(draw_widget), before);
    XtDestroyWidget(shell);
    gui::settle();
    EXPECT_EQ(root.displayed, 0);
    vga_delete_viewer(&root, &records[0]->item);
    EXPECT_EQ(root.content_height, 2 * gvga_viewer_item_height);
    make_window();
    gui::show(shell);
    display();
    click(0);
    EXPECT_TRUE(inverted(0));
}

TEST_F(Viewer, FiltersAndTitlesKeepTheirPlace) {
    RECORD *title = add(TITLE, "A title");
    vga_viewer_set_fixed(&root, &title->item, 1);
    fill(4);
    display();
    const gui::IMAGE last = row_image(4);
    click(2);
    vga_viewer_set_hidden(&root, &records[2]->item, 1);
    drawn();
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(row_image(3), last);
    vga_viewer_set_hidden(&root, &records[2]->item, 0);
    drawn();
    EXPECT_EQ(row_image(4), last);
    records.push_back(std::make_unique<RECORD>());
    records.back()->text = "FIRST";
    vga_create_viewer(&root, &records.back()->item, GROUP, records.back().get(), nullptr,
                      VGA_VIEWER_FIRST);
    drawn();
    EXPECT_EQ(vga_viewer_get_y(&records.back()->item), gvga_viewer_item_height);
    EXPECT_EQ(row_image(5), last);
}

} // namespace
