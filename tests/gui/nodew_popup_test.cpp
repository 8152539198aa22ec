// The menu of the node window's lists, and what its commands say when they are off.

#include "nodew_fixture.h"

#include "firewall.h"
#include "hints.h"

#include <X11/extensions/XTest.h>
#include <functional>
#include <utility>

namespace {

class NodePopup : public NodeWindow {
protected:
    void SetUp() override {
        NodeWindow::SetUp();
        menu = part("*nodewPopup");
        ASSERT_NE(menu, nullptr);
        show_node();
    }
    void TearDown() override {
        EXPECT_EQ(gvga_modal_firewall_count, 0U);
        EXPECT_EQ(gvga_modal_firewall_widget, nullptr);
        gvga_read_only = 0;
        NodeWindow::TearDown();
    }

    static int middle_of(int line) {
        return static_cast<int>(gvga_viewer_item_height) * line +
               static_cast<int>(gvga_viewer_item_height) / 2;
    }
    // Button 3 is held until close_menu or a release over an entry.
    void press3(NB_USHORT pane, int line) const {
        gui::move_to(desc->panes[pane].draw_area, 120, middle_of(line));
        gui::press(3);
    }
    bool posted() const {
        XWindowAttributes attributes = {};
        if (!XtIsManaged(menu) || !XtIsRealized(XtParent(menu))) {
            return false;
        }
        XGetWindowAttributes(gvga_display, XtWindow(XtParent(menu)), &attributes);
        return attributes.map_state == IsViewable;
    }
    void close_menu() const {
        gui::move_to(gvga_toplevel, 2, 2);
        gui::release(3);
        EXPECT_TRUE(gui::wait_for([this] { return !posted(); }));
    }
    NB_VOID *selected() const { return vga_nodew_get_selection(desc, nullptr, nullptr); }

    Widget menu = nullptr;
};

TEST_F(NodePopup, SelectsTheLineUnderThePointerFirst) {
    click_line(VGA_NODEW_TOP_PANE, 1);
    ASSERT_EQ(selected(), ports[0]);
    press3(VGA_NODEW_TOP_PANE, 2);
    EXPECT_TRUE(posted());
    EXPECT_EQ(selected(), ports[1]);
    close_menu();

    press3(VGA_NODEW_MIDDLE_PANE, 1);
    EXPECT_TRUE(posted());
    EXPECT_EQ(marked(), VGA_NODEW_MIDDLE_PANE) << "and its list";
    EXPECT_EQ(node->connectivity_root.select_count, 0);
    EXPECT_EQ(node->local_lu_root.select_count, 1);
    EXPECT_NE(node->local_lu_root.top_items.last->selected, 0);
    close_menu();

    press3(VGA_NODEW_TOP_PANE, 0);
    EXPECT_EQ(node->connectivity_root.select_count, 0) << "a fixed line";
    close_menu();
}

TEST_F(NodePopup, KeysPostItBelowTheLineThatHasTheKeyboard) {
    click_line(VGA_NODEW_TOP_PANE, 1);
    gui::key("Down");
    ASSERT_EQ(selected(), ports[1]);
    const std::vector<std::pair<const char *, std::vector<const char *>>> keys = {
        {"F10", {"Shift_L"}}, {"Menu", {}}};
    for (const auto &[key, modifiers] : keys) {
        SCOPED_TRACE(key);
        gui::key(key, modifiers);
        ASSERT_TRUE(gui::wait_for([this] { return posted(); }));
        Position list_top = 0, top = 0;
        XtTranslateCoords(desc->panes[VGA_NODEW_TOP_PANE].draw_area, 0, 0, nullptr, &list_top);
        XtTranslateCoords(menu, 0, 0, nullptr, &top);
        EXPECT_NEAR(top - list_top, static_cast<int>(3 * gvga_viewer_item_height), 3);
        EXPECT_EQ(selected(), ports[1]);
        gui::key("Escape");
        EXPECT_TRUE(gui::wait_for([this] { return !posted(); }));
        EXPECT_EQ(XmGetFocusWidget(desc->common.widget), desc->panes[VGA_NODEW_TOP_PANE].draw_area);
    }
    gui::key("Down", {"Shift_L"}); // the list has its keys again
    EXPECT_EQ(XtIsManaged(menu), False);
}

TEST_F(NodePopup, IsWorkedByMouseAndLetters) {
    int calls = 0;
    const auto count = [](Widget, XtPointer data, XtPointer) { ++*static_cast<int *>(data); };
    Widget help = desc->popups[VGA_NODEW_HELP_ON_THIS];
    XtAddCallback(help, XmNactivateCallback, count, &calls);
    press3(VGA_NODEW_TOP_PANE, 1);
    EXPECT_FALSE(XtIsManaged(desc->popups[VGA_NODEW_ZOOM])) << "what cannot be done is left out";
    gui::move_to(help, 10, 8);
    gui::release(3);
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(posted());
    gui::key("Menu");
    ASSERT_TRUE(gui::wait_for([this] { return posted(); }));
    gui::key("h");
    EXPECT_EQ(calls, 2);
    EXPECT_FALSE(posted());
}

// A hand is faster than the toolkit: both events are there when it handles the first.
TEST_F(NodePopup, StaysUpAfterAClick) {
    const auto click3 = [] {
        XTestFakeButtonEvent(gvga_display, 3, True, CurrentTime);
        XTestFakeButtonEvent(gvga_display, 3, False, CurrentTime);
        gui::settle();
    };
    int calls = 0;
    const auto count = [](Widget, XtPointer data, XtPointer) { ++*static_cast<int *>(data); };
    Widget entry = desc->popups[VGA_NODEW_COPY_NAME];
    XtAddCallback(entry, XmNactivateCallback, count, &calls);
    const struct {
        const char *what;
        std::function<void()> end;
        int calls;
    } ends[] = {
        {"a key", [] { gui::key("Escape"); }, 0},
        {"a click on an entry", [entry] { gui::click(entry, 10, 8); }, 1},
        {"the same with button 3", [&] { (gui::move_to(entry, 10, 8), click3()); }, 1},
        {"a click elsewhere", [] { gui::click(gvga_toplevel, 2, 2); }, 0},
    };
    for (const auto &row : ends) {
        SCOPED_TRACE(row.what);
        calls = 0;
        gui::move_to(desc->panes[VGA_NODEW_TOP_PANE].draw_area, 120, middle_of(2));
        click3();
        ASSERT_TRUE(gui::wait_for([this] { return posted(); }));
        EXPECT_EQ(selected(), ports[1]);
        EXPECT_EQ(gvga_modal_firewall_count, 1U);
        row.end();
        gui::settle();
        EXPECT_FALSE(posted());
        EXPECT_EQ(gvga_modal_firewall_count, 0U);
        EXPECT_EQ(calls, row.calls);
    }
}

// Reasons.

TEST_F(NodePopup, WhatIsOffSaysWhyUnderThePointer) {
    click_line(VGA_NODEW_TOP_PANE, 1);
    const std::string before = message();
    gui::move_to(desc->tools[VGA_NODEW_START].icon, 8, 8);
    EXPECT_EQ(message(), vga_message(VGA_MSG_NODEW_ACTIVE_ALREADY));
    gui::move_to(desc->panes[0].draw_area, 200, 60);
    EXPECT_EQ(message(), before);

    gui::click(part("*nodewSelection"), 8, 8);
    gui::move_to(desc->items[VGA_NODEW_START], 8, 8);
    EXPECT_EQ(message(), vga_message(VGA_MSG_NODEW_ACTIVE_ALREADY)) << "in the menu, too";
    gui::key("Escape");
    gui::move_to(desc->panes[0].draw_area, 200, 60);
    EXPECT_EQ(message(), before);

    gui::move_to(desc->tools[VGA_NODEW_START].text, 8, 4);
    click_line(VGA_NODEW_MIDDLE_PANE, 0);
    EXPECT_STREQ(vga_shown_hint(desc->tools[VGA_NODEW_START].text),
                 vga_message(VGA_MSG_NODEW_NOT_STARTABLE));
}

// Every rule, by situation: none of the commands here is one that this release lacks.
struct REASON_CASE {
    NB_USHORT command;
    NB_SHORT type;
    NB_LONG count;
    NB_ULONG node_state;
    NB_USHORT read_only, state_refusal, message;
};

constexpr NB_SHORT no_line = VGA_VIEWER_SELECT_NONE;
constexpr NB_ULONG up = NAP_NODE_ACTIVE;
// clang-format off
constexpr REASON_CASE reasons[] = {
    {VGA_NODEW_ZOOM, no_line, 0, up, 0, 0, VGA_MSG_NODEW_SELECT_FIRST},
    {VGA_NODEW_STATUS, no_line, 0, up, 0, 0, VGA_MSG_NODEW_SELECT_FIRST},
    {VGA_NODEW_COPY, no_line, 0, up, 0, 0, VGA_MSG_NODEW_SELECT_FIRST},
    {VGA_NODEW_DELETE, no_line, 0, up, 0, 0, VGA_MSG_NODEW_SELECT_FIRST},
    {VGA_NODEW_STATUS, VGA_VIEWER_LS, 1, up, 0, 0, 0},
    {VGA_NODEW_STATUS, VGA_VIEWER_LS_LEAF, 2, up, 0, 0, VGA_MSG_NODEW_ONE_ONLY},
    {VGA_NODEW_STATUS, VGA_VIEWER_REM_SYS, 1, up, 0, 0, VGA_MSG_NODEW_NOT_FOR_THIS},
    {VGA_NODEW_STATUS, VGA_VIEWER_LS, 1, up, 1, 0, 0},
    {VGA_NODEW_ZOOM, VGA_VIEWER_MODE, 1, up, 0, 0, 0},
    {VGA_NODEW_ZOOM, VGA_VIEWER_MODE, 1, up, 1, 0, 0},
    {VGA_NODEW_ZOOM, VGA_VIEWER_MODE, 2, up, 0, 0, VGA_MSG_NODEW_ONE_ONLY},
    {VGA_NODEW_ZOOM, VGA_VIEWER_REM_SESS, 1, up, 0, 0, VGA_MSG_NODEW_NOT_FOR_THIS},
    {VGA_NODEW_COPY, VGA_VIEWER_MODE, 1, up, 0, 0, VGA_MSG_NODEW_NOT_FOR_THIS},
    {VGA_NODEW_COPY, VGA_VIEWER_MODE_DEF, 1, up, 0, 0, 0},
    {VGA_NODEW_COPY, VGA_VIEWER_MODE_DEF, 1, up, 1, 0, VGA_MSG_NODEW_LOOK_ONLY},
    {VGA_NODEW_DELETE, VGA_VIEWER_MODE, 1, up, 0, 0, VGA_MSG_NODEW_NOT_FOR_THIS},
    {VGA_NODEW_DELETE, VGA_VIEWER_MODE, 1, up, 1, 0, VGA_MSG_NODEW_NOT_FOR_THIS},
    {VGA_NODEW_DELETE, VGA_VIEWER_PORT, 3, NAP_NODE_STOPPED, 0, 0, 0},
    {VGA_NODEW_DELETE, VGA_VIEWER_PORT, 3, up, 1, 0, VGA_MSG_NODEW_LOOK_ONLY},
    {VGA_NODEW_START, VGA_VIEWER_PORT, 1, up, 0, 0, 0},
    {VGA_NODEW_START, VGA_VIEWER_PORT, 1, up, 1, 0, VGA_MSG_NODEW_LOOK_ONLY},
    {VGA_NODEW_STOP, VGA_VIEWER_PORT, 1, up, 0, VGA_MSG_NODEW_NOT_ACTIVE, VGA_MSG_NODEW_NOT_ACTIVE},
    {VGA_NODEW_START, VGA_VIEWER_LS_R, 1, up, 1, VGA_MSG_NODEW_NOT_STARTABLE, VGA_MSG_NODEW_NOT_STARTABLE},
    {VGA_NODEW_ADD, no_line, 0, up, 0, 0, VGA_MSG_NODEW_MARK_FIRST},
    {VGA_NODEW_TN_SERVER, no_line, 0, up, 0, 0, VGA_MSG_NODEW_NOT_SUPPORTED},
    {VGA_NODEW_RJE_WKSTN, no_line, 0, up, 0, 0, VGA_MSG_NODEW_NOT_INSTALLED},
    {VGA_NODEW_ADD_MODE, no_line, 0, up, 0, 0, 0},
    {VGA_NODEW_ADD_MODE, no_line, 0, NAP_NODE_UNCONFIGURED, 0, 0, VGA_MSG_NODEW_WRONG_STATE},
    {VGA_NODEW_ADD_MODE, no_line, 0, NAP_NODE_BACK_LEVEL, 0, 0, VGA_MSG_NODEW_WRONG_STATE},
    {VGA_NODEW_ADD_MODE, no_line, 0, 0x80000003, 0, 0, VGA_MSG_NODEW_WRONG_STATE},
    {VGA_NODEW_ADD_MODE, no_line, 0, up, 1, 0, VGA_MSG_NODEW_LOOK_ONLY},
};
// clang-format on

TEST(NodeWindowReasons, FitTheSituation) {
    const NB_USHORT rje = std::exchange(gvga_supported[VGA_SUPPORTED_RJE], NB_USHORT{0});
    VGA_NODE node = {};
    node.connection = VGA_CONNECTED;
    VGA_SITUATION situation;
    const auto reason = [&situation](NB_USHORT command) {
        VGA_COMMAND_ROW row = gvga_nodew_plan.commands[command];
        row.action = [](VGA_LIST_WINDOW *) {};
        row.opens = row.opens == VGA_UID_MODE_DIALOG ? row.opens : VGA_NO_DIALOG;
        return vga_refusal(situation, row);
    };
    EXPECT_EQ(reason(VGA_NODEW_START), VGA_MSG_NODEW_NO_NODE);
    situation.node = &node;
    for (const REASON_CASE &row : reasons) {
        node.node_state = row.node_state;
        situation.type = row.type;
        situation.count = row.count;
        situation.read_only = row.read_only;
        situation.start_refusal = situation.stop_refusal = row.state_refusal;
        EXPECT_EQ(reason(row.command), row.message) << &row - reasons;
    }
    node.connection = VGA_NOT_CONNECTED;
    EXPECT_EQ(reason(VGA_NODEW_STATUS), VGA_MSG_NODEW_NODE_NOT_CONNECTED);
    gvga_supported[VGA_SUPPORTED_RJE] = rje;
}

} // namespace
