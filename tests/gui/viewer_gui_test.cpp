// The list control on a screen: what it shows.
#include "viewer_fixture.h"
#include <clocale>
#include <functional>
#include <utility>

namespace {

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
    EXPECT_EQ(view()->y_offset, gvga_viewer_item_height);
    EXPECT_EQ(row_image(0), second);
    gui::move_to(vscroll, bar_width / 2, bar_width + 8);
    gui::press();
    gui::move_to(vscroll, bar_width / 2, bar_height - 2); // the slider, to the end
    gui::release();
    drawn();
    EXPECT_EQ(view()->y_offset % gvga_viewer_item_height, 0U);
    EXPECT_GE(view()->y_offset + view()->window_height, 40 * gvga_viewer_item_height);
    for (size_t i = 3; i < 40; ++i) {
        vga_delete_viewer(&root, &records[i]->item);
    }
    drawn();
    EXPECT_FALSE(XtIsManaged(vscroll));
    EXPECT_EQ(view()->y_offset, 0U);
    records[0]->text = std::string(120, 'W');
    vga_update_viewer(&root, &records[0]->item);
    drawn();
    EXPECT_TRUE(XtIsManaged(hscroll));
    EXPECT_FALSE(XtIsManaged(vscroll));
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

TEST_F(Viewer, ABurstDrawsEachChangedLineOnce) {
    display();
    fill(2000);
    for (size_t i = 0; i < 1000; ++i) {
        vga_delete_viewer(&root, &records[i]->item);
    }
    EXPECT_EQ(events.drawn, 0) << "drawn before the burst was over";
    EXPECT_EQ(vga_viewer_get_content_height(&root), 1001 * gvga_viewer_item_height);
    drawn();
    const auto forget = [&] {
        for (const auto &made : records) {
            made->drawn = 0;
        }
    };
    for (size_t i = 0; i < records.size(); ++i) {
        const bool shown = i >= 1000 && i <= 1000 + static_cast<size_t>(height / line());
        EXPECT_EQ(records[i]->drawn, shown) << i; // though the scroll bar came, too
    }
    click(1);
    forget();
    for (int i = 0; i < 500; ++i) {
        for (const size_t changed : {1002, 1004, 1005, 1900}) {
            records[changed]->text = "CHANGED" + std::to_string(i);
            vga_update_viewer(&root, &records[changed]->item);
        }
        vga_viewer_select(&records[1004 + static_cast<size_t>(i) % 2]->item, &root, 0, 0, 1, 1);
    }
    drawn();
    for (size_t i = 1000; i < 1012; ++i) {
        // The one that was clicked on is no longer selected.
        EXPECT_EQ(records[i]->drawn, i == 1001 || i == 1002 || i == 1004 || i == 1005) << i;
    }
    EXPECT_EQ(records[1900]->drawn, 0);
    forget();
    vga_delete_viewer(&root, &records[1006]->item);
    drawn();
    for (size_t i = 1000; i < 1012; ++i) {
        EXPECT_EQ(records[i]->drawn, i > 1006) << i;
    }
}

// Neither changed texts nor scroll bars that come and go ever leave a line blank or half drawn: the
// window is looked at after every single request, and each line is that of one of two pictures.
TEST_F(Viewer, NoUnfinishedLineIsEverSeen) {
    constexpr size_t shown = 9, all = 30; // more than are drawn together
    for (size_t i = 0; i < all; ++i) {
        add(GROUP, "");
    }
    const auto change = [&](bool second) {
        for (size_t i = 0; i < shown; ++i) {
            records[i]->text = std::string(100, static_cast<char>((second ? 'm' : 'A') + i));
            vga_update_viewer(&root, &records[i]->item);
        }
        for (size_t i = shown; i < all; ++i) {
            vga_viewer_set_hidden(&root, &records[i]->item, second);
        }
        vga_viewer_set_select(&root, &records[3]->item, second);
        drawn();
    };
    using PICTURE = std::vector<gui::IMAGE>; // each line without the scroll bar's place
    static std::function<PICTURE()> look;
    static std::vector<PICTURE> pictures;
    static int looks, mixed, broken;
    static bool busy;
    look = [this] {
        PICTURE lines;
        for (int row = 0; row < static_cast<int>(shown); ++row) {
            lines.emplace_back(draw_widget, 0, row * line(), width - 40, line());
        }
        return lines;
    };
    change(false);
    display();
    pictures.push_back(look());
    change(true);
    EXPECT_FALSE(XtIsManaged(vscroll));
    pictures.push_back(look());
    XSetAfterFunction(gvga_display, [](Display *) {
        if (std::exchange(busy, true)) {
            return 0; // our own requests
        }
        const PICTURE now = look();
        ++looks;
        mixed += now != pictures[0] && now != pictures[1];
        for (size_t row = 0; row < now.size(); ++row) {
            broken += now[row] != pictures[0][row] && now[row] != pictures[1][row];
        }
        busy = false;
        return 0;
    });
    for (const bool second : {false, true, false}) {
        change(second);
    }
    XSetAfterFunction(gvga_display, nullptr);
    EXPECT_GT(looks, 100);
    EXPECT_GT(mixed, 10) << "it must have seen changes under way";
    EXPECT_EQ(broken, 0) << "of " << looks << " looks";
}

TEST_F(Viewer, TextOfAThousandBytesIsDrawnToItsEnd) {
    static std::string broken;
    broken.clear();
    const NB_FATAL_HANDLER previous =
        v0_set_fatal_handler([](const NB_CHAR *, NB_INT, const NB_CHAR *text) { broken = text; });
    fill(2);
    records[1]->text = std::string(VGA_VIEWER_MAX_TEXT_LENGTH, 'W');
    display();
    EXPECT_EQ(view()->content_width, gvga_viewer_expand_icon_width + gvga_viewer_icon_width + 4 +
                                         VGA_VIEWER_MAX_TEXT_LENGTH * gvga_viewer_char_width);
    vga_viewer_scroll_view_horizontal(&root, 100000);
    drawn();
    const gui::IMAGE row = row_image(1);
    const int last = row.width - static_cast<int>(gvga_viewer_char_width);
    const gui::IMAGE end(draw_widget, last, line(), static_cast<int>(gvga_viewer_char_width),
                         line());
    EXPECT_LT(end.count(WhitePixelOfScreen(gvga_screen)), end.width * line() - 20) << "a letter";
    EXPECT_EQ(broken, "");
    records[1]->text += 'W';
    vga_update_viewer(&root, &records[1]->item);
    drawn();
    EXPECT_EQ(broken, "text_len <= VGA_VIEWER_MAX_TEXT_LENGTH");
    EXPECT_EQ(row_image(1).count(WhitePixelOfScreen(gvga_screen)), row.width * line());
    v0_set_fatal_handler(previous);
}

// What is chosen for a screen of many pixels, by the height of a dialog's text and by the user.
TEST_F(Viewer, FontAndIconsFollowTheDisplayAndTheUser) {
    const struct {
        int font_unit;
        const char *resource, *value;
        NB_ULONG icon_width;
        bool scalable;
    } rows[] = {
        {8, "Quiladmin*viewerFont", "DejaVu Sans Mono", 28, true},
        {12, "Quiladmin*viewerFont", "monospace:size=12", 42, true},
        {16, "Quiladmin*viewerFont", "DejaVu Sans", 56, false}, // not of fixed pitch
        {16, "Quiladmin*fontName", "fixed", 56, false},
        {16, "Quiladmin*size", "small", 2 * 20, true},
        {16, "Quiladmin.iconSize", "big", 2 * 28, true},
        {8, "Quiladmin.iconSize", "large", 56, true},
    };
    gvga_messages[VGA_MSG_BIG_SUFFIX] = "big";
    gvga_messages[VGA_MSG_BIG_FONT] = gvga_messages[VGA_MSG_SMALL_FONT];
    Widget screen = XmGetXmScreen(gvga_screen);
    const XrmDatabase database = gvga_resource_database;
    for (const auto &row : rows) {
        SCOPED_TRACE(row.value);
        const gui::WARNINGS warnings;
        gvga_resource_database = nullptr;
        XrmPutStringResource(&gvga_resource_database, "Quiladmin*viewerFont", "DejaVu Sans Mono");
        XrmPutStringResource(&gvga_resource_database, row.resource, row.value);
        XtVaSetValues(screen, XmNverticalFontUnit, row.font_unit, nullptr);
        vga_free_graphics();
        ASSERT_EQ(vga_init_graphics(draw_widget, draw_widget), 1);
        VGA_VIEWER_FONT_SIZE size;
        EXPECT_EQ(vga_list_font_size(&size), row.scalable);
        EXPECT_EQ(gvga_viewer_icon_width, row.icon_width);
        EXPECT_GT(gvga_viewer_expand_icon_width, gvga_viewer_expand_icon_height + 2) << "a gap";
        EXPECT_EQ(gui::WARNINGS::texts.size(), strcmp(row.value, "DejaVu Sans") == 0);
        XrmDestroyDatabase(gvga_resource_database);
    }
    gvga_resource_database = database;
    XtVaSetValues(screen, XmNverticalFontUnit, 8, nullptr);
}

// Plain and selected: a state changes the icon alone, and no two states look alike.
TEST_F(Viewer, StatesAreMarkedOnTheIcon) {
    VGA_VIEWER_DESC told[TYPES];
    std::copy(std::begin(types), std::end(types), told);
    told[GROUP].choose_state = [](const NB_VOID *data) {
        return static_cast<VGA_LINE_STATE>(static_cast<const RECORD *>(data)->text.size() - 1);
    };
    vga_viewer_set_types(told, TYPES);
    for (int state = VGA_LINE_NO_STATE; state < VGA_LINE_STATES; ++state) {
        add(GROUP, std::string(static_cast<size_t>(state + 1), ' '));
    }
    display();
    const int text_begins = static_cast<int>(vga_viewer_left_width(&told[GROUP]));
    for (const bool select : {false, true}) {
        std::vector<gui::IMAGE> icons;
        for (int row = 0; row < VGA_LINE_STATES; ++row) {
            vga_viewer_set_select(&root, &records[static_cast<size_t>(row)]->item, select);
        }
        drawn();
        for (int row = 0; row < VGA_LINE_STATES; ++row) {
            icons.emplace_back(draw_widget, 0, row * line(), text_begins, line());
            EXPECT_EQ(gui::IMAGE(draw_widget, text_begins, row * line(), 100, line()),
                      gui::IMAGE(draw_widget, text_begins, 0, 100, line()));
            for (int other = 0; other < row; ++other) {
                EXPECT_FALSE(icons.back() == icons[static_cast<size_t>(other)]) << row << other;
            }
        }
    }
}

/* With a scalable font and with one of the server. */
class ViewerUtf8 : public Viewer, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        ASSERT_NE(setlocale(LC_ALL, "C.UTF-8"), nullptr);
        const gui::WARNINGS quiet; // not every character set has a font
        use(GetParam() ? "DejaVu Sans Mono" : "");
        Viewer::SetUp();
    }
    void TearDown() override {
        Viewer::TearDown();
        use("DejaVu Sans Mono");
        setlocale(LC_ALL, "C");
    }
    static void use(const char *font) {
        XrmPutStringResource(&gvga_resource_database, "Quiladmin*viewerFont", font);
    }
};

TEST_P(ViewerUtf8, CharactersAreDrawnAndCutWhole) {
    ASSERT_NE(gvga_viewer_fontset, nullptr) << "whichever draws";
    const struct {
        const char *text, *as;
    } same[] = {
        {"\u00C4\u00D6\u00DC\u00DFxyz%t4%X", "\u00C4\u00D6\u2026%t4%X"},
        {"ABC\u00C4\u00D6%t4%X", "AB\u2026%t4%X"},
        {"AB\u6F22\u5B57%t5%X", "AB\u2026%t5%X"}, // two columns do not fit into one
        {"AB\u6F22 X", "AB\u6F22%t5%X"},          // and two are taken, whatever font has it
    };
    for (const auto &pair : same) {
        add(GROUP, pair.text);
        add(GROUP, pair.as);
    }
    add(GROUP, "ABC%t4%X");
    display();
    for (int row = 0; row < 8; row += 2) {
        EXPECT_EQ(row_image(row), row_image(row + 1)) << same[row / 2].text;
    }
    EXPECT_NE(row_image(3), row_image(8)) << "the last character that fits is drawn";
    EXPECT_EQ(vga_viewer_text_width("\u00C4\u00D6\u00DC"), 3 * gvga_viewer_char_width);
}

INSTANTIATE_TEST_SUITE_P(Fonts, ViewerUtf8, testing::Values(true, false));

// The headings stand in a window of their own, as wide as the list and drawn as a line of it.
TEST_F(Viewer, HeadingsStandOverTheirColumnsWhereverTheListIsScrolled) {
    const std::string text = "Name%t12%Status%t60%A heading beyond the edge";
    VGA_VIEWER_DESC headed[TYPES];
    std::copy(std::begin(types), std::end(types), headed);
    headed[GROUP].create_headings = [](NB_VOID *, NB_CHAR *buffer) {
        return static_cast<NB_USHORT>(
            snprintf(buffer, 64, "Name%%t12%%Status%%t60%%A heading beyond the edge"));
    };
    vga_viewer_set_types(headed, TYPES);
    Widget strip_shell = gui::make_shell("strip", 40, 300, width, 30);
    Widget strip = XtVaCreateManagedWidget("strip", xmDrawingAreaWidgetClass, strip_shell,
                                           XmNbackground, WhitePixelOfScreen(gvga_screen),
                                           XmNforeground, foreground, nullptr);
    EXPECT_EQ(vga_viewer_show_headings(&root, strip, GROUP), 0) << "of a list that is not shown";
    add(GROUP, text);
    fill(40);
    headed[GROUP].choose_icon = title_icon; // nothing but text, as in the strip
    display();
    gui::show(strip_shell);
    ASSERT_EQ(vga_viewer_show_headings(&root, strip, GROUP), 1);
    gui::settle();
    const auto same = [&] {
        return gui::IMAGE(strip, 0, 0, static_cast<int>(view()->window_width), line()) ==
               row_image(0);
    };
    EXPECT_TRUE(XtIsManaged(hscroll)) << "the last heading can be reached";
    EXPECT_TRUE(same());
    const gui::IMAGE before(strip);
    for (const NB_LONG pixels : {33, 1000, -20}) {
        vga_viewer_scroll_view_horizontal(&root, pixels);
        drawn();
        EXPECT_TRUE(same()) << pixels;
        EXPECT_FALSE(gui::IMAGE(strip) == before) << pixels;
    }
    vga_viewer_scroll_view_horizontal(&root, -1000);
    vga_viewer_scroll_view(&root, 5 * line());
    drawn();
    EXPECT_EQ(gui::IMAGE(strip), before);

    // On the line of another level they are those of that level.
    headed[MEMBER].create_headings = [](NB_VOID *, NB_CHAR *buffer) {
        return static_cast<NB_USHORT>(snprintf(buffer, 64, "Member"));
    };
    VGA_VIEWER_ITEM *member = &add(MEMBER, "MEMBER", records[0].get())->item;
    vga_expand_viewer(&root, &records[0]->item, 1);
    vga_viewer_select(member, &root, 0, 0, 1, 0);
    drawn();
    EXPECT_EQ(view()->headings_type, MEMBER);
    EXPECT_FALSE(gui::IMAGE(strip) == before);
    vga_clear_outline_selection(&root);
    vga_viewer_clear_selection(&root);
    drawn();
    EXPECT_EQ(gui::IMAGE(strip), before);

    XtSetSensitive(strip, False);
    XClearArea(gvga_display, XtWindow(strip), 0, 0, 0, 0, True);
    Pixel grey = 0;
    XtVaGetValues(strip, XmNbottomShadowColor, &grey, nullptr);
    EXPECT_TRUE(gui::wait_for([&] {
        const gui::IMAGE now(strip);
        return now.count(foreground) == 0 && now.count(grey) > 0;
    }));
    XtDestroyWidget(strip_shell);
    gui::settle();
    vga_viewer_scroll_view_horizontal(&root, 10);
    drawn();
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
    EXPECT_EQ(vga_viewer_get_content_height(&root), 2 * gvga_viewer_item_height);
    make_window();
    gui::show(shell);
    display();
    click(0);
    EXPECT_TRUE(inverted(0));
}

} // namespace
