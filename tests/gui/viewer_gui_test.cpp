// The list control on a screen: what it shows, and what real mouse and keys do to it.
#include "gui_support.h"

#include "vgadgutl.h"
#include "vgagraph.h"
#include "vgamsgs.h"
#include "vganofq.h"
#include "vgaviewr.h"
#include <Xm/DrawnB.h>
#include <Xm/ScrollBar.h>
#include <Xm/ScrolledW.h>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

VGA_UID_TABLE gvga_uid_desc; // no windows here

namespace {

enum TYPE : NB_USHORT { GROUP, MEMBER, TITLE, TYPES };

struct RECORD {
    VGA_VIEWER_ITEM item;
    std::string text;
};

VGA_VIEWER_ROOT root;

/* What the types' functions saw. */
struct EVENTS {
    std::vector<const RECORD *> opened, clicked;
    std::vector<VGA_VIEWER_ACTION> actions;
    int buttons = 0, disarmed = 0, drawn = 0;
};
EVENTS events;

RECORD *record(NB_VOID *data) {
    return static_cast<RECORD *>(data);
}

NB_USHORT create_text(NB_VOID *data, NB_CHAR *buffer) {
    ++events.drawn;
    const std::string &text = record(data)->text;
    memcpy(buffer, text.data(), text.size());
    return static_cast<NB_USHORT>(text.size());
}
NB_USHORT group_icon(NB_VOID *) {
    return 2;
}
NB_USHORT member_icon(NB_VOID *) {
    return 6;
}
NB_USHORT title_icon(NB_VOID *) {
    return VGA_ICON_BLANK;
}
NB_VOID arm(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs) {
    vga_viewer_arm_select(&root, &record(data)->item, cbs);
}
NB_VOID disarm(Widget widget) {
    events.disarmed += widget == root.draw_widget;
}
NB_VOID activate(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs) {
    (vga_viewer_is_open(cbs) != 0 ? events.opened : events.clicked).push_back(record(data));
}
NB_VOID drag(NB_VOID *data, NB_USHORT select, NB_USHORT redraw) {
    vga_viewer_drag_cb(&record(data)->item, &root, select, redraw);
}
NB_VOID set_buttons(NB_VOID *window) {
    events.buttons += window == &events;
}

const VGA_VIEWER_DESC types[TYPES] = {
    {create_text, group_icon, 1, arm, disarm, activate, drag, nullptr, set_buttons, 1, 0, 1},
    {create_text, member_icon, 1, arm, disarm, activate, drag, nullptr, set_buttons, 0, 1, 0},
    {create_text, title_icon, 1, nullptr, nullptr, nullptr, nullptr, vga_viewer_add_underline,
     nullptr, 0, 0, 1},
};

// As the program's windows have them: the keys of the list are left to it.
constexpr char translations[] = "<Enter>: Enter()\n<Leave>: Leave()\n"
                                "<Btn1Down>: Arm()\n<Btn1Down>,<Btn1Up>: Activate() Disarm()\n"
                                "<Btn1Down>(2+): MultiArm()\n<Btn1Up>(2+): MultiActivate()\n"
                                "<Btn1Up>: Activate() Disarm()";

class Viewer : public testing::Test {
protected:
    static constexpr int width = 480, height = 210;

    static void SetUpTestSuite() {
        gui::open();
        XrmPutStringResource(&gvga_resource_database, "Quiladmin*size", "small");
        gvga_messages[VGA_MSG_SMALL_FONT] = "-misc-fixed-medium-r-semicondensed--13-*-*-*-*-*-*-*";
    }

    void SetUp() override {
        events = EVENTS();
        XtSetMultiClickTime(gvga_display, 0);
        vga_viewer_set_types(types, TYPES);
        gvga_viewer_window_action = [](NB_VOID *window, VGA_VIEWER_ACTION action, Widget widget) {
            EXPECT_EQ(window, &events);
            EXPECT_EQ(widget, root.draw_widget);
            events.actions.push_back(action);
        };
        ASSERT_EQ(vga_viewer_init_root(&root), 1);
        root.window = &events;
        make_window();
        ASSERT_EQ(vga_init_graphics(draw_widget, draw_widget), 1);
        gui::show(shell);
    }

    void TearDown() override {
        vga_viewer_destroy_root(&root);
        XtDestroyWidget(shell);
        gui::settle();
        vga_free_graphics();
    }

    void make_window() {
        shell = gui::make_shell("viewer", 40, 40, width, height);
        Widget window = XtVaCreateManagedWidget(
            "window", xmScrolledWindowWidgetClass, shell, XmNscrollingPolicy, XmAPPLICATION_DEFINED,
            XmNvisualPolicy, XmVARIABLE, XmNspacing, 0, XmNshadowThickness, 0,
            XmNscrolledWindowMarginWidth, 0, nullptr);
        draw_widget = XtVaCreateManagedWidget(
            "area", xmDrawnButtonWidgetClass, window, XmNpushButtonEnabled, False, XmNmultiClick,
            XmMULTICLICK_KEEP, XmNshadowThickness, 0, XmNhighlightThickness, 0, XmNtranslations,
            XtParseTranslationTable(translations), XmNrecomputeSize, False, XmNbackground,
            WhitePixelOfScreen(gvga_screen), XmNforeground, BlackPixelOfScreen(gvga_screen),
            nullptr);
        hscroll = XtVaCreateWidget("hscroll", xmScrollBarWidgetClass, window, XmNorientation,
                                   XmHORIZONTAL, XmNtraversalOn, False, nullptr);
        vscroll = XtVaCreateWidget("vscroll", xmScrollBarWidgetClass, window, XmNorientation,
                                   XmVERTICAL, XmNtraversalOn, False, nullptr);
    }

    RECORD *add(TYPE type, const std::string &text, RECORD *parent = nullptr) {
        records.push_back(std::make_unique<RECORD>());
        RECORD *made = records.back().get();
        made->text = text;
        vga_create_viewer(&root, &made->item, type, made,
                          parent != nullptr ? &parent->item : nullptr, VGA_VIEWER_LAST);
        return made;
    }

    void fill(int groups) {
        for (int i = 0; i < groups; ++i) {
            add(GROUP, "GROUP" + std::to_string(i) + "%t12%Active%t24%First of its kind");
        }
    }

    void display() {
        vga_viewer_display_root(&root, draw_widget, hscroll, vscroll);
        drawn();
    }

    // Waits until nothing is left to be drawn.
    static void drawn() {
        gui::settle();
        ASSERT_TRUE(gui::wait_for(
            [] { return root.update_timer == 0 && root.dirty_count == 0 && root.bars_due == 0; }));
        XSync(gvga_display, False);
    }

    static int line() { return static_cast<int>(gvga_viewer_item_height); }
    static int middle_of(int row) { return row * line() + line() / 2; }

    void click(int row, const std::vector<const char *> &modifiers = {}, int x = 200) {
        gui::click(draw_widget, x, middle_of(row), modifiers);
        drawn();
    }
    static void key(const char *name, const std::vector<const char *> &modifiers = {}) {
        gui::key(name, modifiers);
        drawn();
    }

    gui::IMAGE row_image(int row) {
        return gui::IMAGE(draw_widget, 0, row * line(), static_cast<int>(root.window_width),
                          line());
    }
    // The ground at the right end of a line, where no text stands.
    bool inverted(int row) {
        return gui::IMAGE(draw_widget, static_cast<int>(root.window_width) - 4, middle_of(row), 1,
                          1)
                   .pixel(0, 0) == BlackPixelOfScreen(gvga_screen);
    }
    std::string selected() {
        std::string rows;
        for (size_t i = 0; i < records.size(); ++i) {
            rows += records[i]->item.selected != 0 ? std::to_string(i) + " " : "";
        }
        return rows;
    }

    Widget shell = nullptr, draw_widget = nullptr, hscroll = nullptr, vscroll = nullptr;
    std::vector<std::unique_ptr<RECORD>> records;
};

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

TEST_F(Viewer, DraggingBackGivesLinesUp) {
    fill(6);
    add(MEMBER, "MEMBER", records[2].get());
    vga_expand_viewer(&root, &records[2]->item, 1);
    display();
    gui::move_to(draw_widget, 100, middle_of(1));
    gui::press();
    gui::move_to(draw_widget, 100, middle_of(5));
    EXPECT_EQ(selected(), "1 2 3 4 ") << "the member has another parent";
    gui::move_to(draw_widget, 100, middle_of(2));
    EXPECT_EQ(selected(), "1 2 ");
    gui::move_to(draw_widget, 100, middle_of(0));
    EXPECT_EQ(selected(), "0 1 ");
    vga_delete_viewer(&root, &records[0]->item); // under the pointer
    gui::move_to(draw_widget, 100, middle_of(3));
    gui::release();
    EXPECT_EQ(root.dragging, 0);
    EXPECT_EQ(selected(), "1 ");
}

TEST_F(Viewer, DraggingBelowTheWindowScrolls) {
    fill(40);
    display();
    gui::move_to(draw_widget, 100, middle_of(0));
    gui::press();
    gui::move_to(draw_widget, 100, height + 30);
    EXPECT_TRUE(gui::wait_for([] { return root.select_count == 40; }));
    EXPECT_GE(root.y_offset + root.window_height, 40 * gvga_viewer_item_height);
    EXPECT_EQ(selected().substr(0, 4), "0 1 ");
    gui::release(); // out there
    EXPECT_EQ(root.dragging, 0);
    EXPECT_EQ(events.disarmed, 1);
    EXPECT_EQ(root.drag_timer, 0U);
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

TEST_F(Viewer, KeysMoveTheSelectionAndTheView) {
    add(TITLE, "A title");
    fill(30);
    add(MEMBER, "MEMBER", records[30].get());
    display();
    click(2);
    key("Down");
    EXPECT_EQ(selected(), "3 ");
    EXPECT_TRUE(inverted(3));
    key("Home");
    EXPECT_EQ(selected(), "1 ") << "titles are passed";
    key("Next");
    EXPECT_EQ(selected(), "11 ");
    EXPECT_GT(root.y_offset, 0U);
    key("End");
    EXPECT_EQ(selected(), "30 ");
    EXPECT_GE(root.y_offset + root.window_height, 31 * gvga_viewer_item_height);
    key("plus");
    EXPECT_EQ(records[30]->item.expanded, 1);
    key("Down");
    EXPECT_EQ(selected(), "31 ");
    key("Up");
    key("KP_Subtract");
    EXPECT_EQ(records[30]->item.expanded, 0);
    key("Up", {"Shift_L"});
    EXPECT_EQ(selected(), "29 30 ");
    key("slash", {"Control_L"});
    EXPECT_EQ(root.select_count, 30);
    EXPECT_EQ(root.outline_viewer, &records[29]->item);
    key("backslash", {"Control_L"});
    EXPECT_EQ(selected(), "29 ");
    key("space", {"Control_L"});
    EXPECT_EQ(selected(), "");
    key("Return");
    key("Delete");
    key("Insert");
    EXPECT_EQ(events.actions,
              (std::vector<VGA_VIEWER_ACTION>{VGA_VIEWER_ACTION_ZOOM, VGA_VIEWER_ACTION_DELETE,
                                              VGA_VIEWER_ACTION_ADD}));
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

TEST_F(Viewer, DeletingASelectedLineTellsTheWindow) {
    fill(4);
    display();
    click(1);
    const gui::IMAGE next = row_image(2);
    events.buttons = 0;
    vga_delete_viewer(&root, &records[1]->item);
    EXPECT_EQ(events.buttons, 1);
    EXPECT_EQ(root.select_type, VGA_VIEWER_SELECT_NONE);
    drawn();
    EXPECT_EQ(row_image(1), next);
    EXPECT_EQ(row_image(3).count(WhitePixelOfScreen(gvga_screen)), width * line());
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

// For the eye: SHOW names a file that the list is written to (xwd format).
TEST_F(Viewer, Picture) {
    const char *file = getenv("SHOW");
    if (file == nullptr) {
        GTEST_SKIP();
    }
    add(TITLE, "Port%t16%State%t28%Description");
    for (const char *name : {"ETHER0", "SDLC0", "MPC0"}) {
        RECORD *group = add(GROUP, std::string(name) + "%t16%Active%t28%Main building");
        for (int i = 0; i < 2; ++i) {
            add(MEMBER, "LS" + std::to_string(i) + "%t8%Inactive%t20%To the host", group);
        }
    }
    vga_expand_viewer(&root, &records[1]->item, 1);
    vga_expand_viewer(&root, &records[4]->item, 1);
    display();
    click(2);
    click(5, {"Control_L"});
    const std::string command = std::string("xwd -root -silent -out ") + file;
    EXPECT_EQ(system(command.c_str()), 0);
}

} // namespace
