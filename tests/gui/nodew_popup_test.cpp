// The menu of the node window's lists, and what its commands say when they are off.

#include "nodew_fixture.h"

#include "firewall.h"
#include "hints.h"

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
    Widget zoom = desc->tools[VGA_NODEW_ZOOM].popup;
    XtAddCallback(zoom, XmNactivateCallback, count, &calls);
    press3(VGA_NODEW_TOP_PANE, 1);
    EXPECT_FALSE(XtIsSensitive(zoom));
    XtSetSensitive(zoom, True);
    gui::move_to(zoom, 10, 8);
    gui::release(3);
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(posted());
    gui::key("Menu");
    ASSERT_TRUE(gui::wait_for([this] { return posted(); }));
    XtSetSensitive(zoom, True);
    gui::key("p");
    EXPECT_EQ(calls, 2);
    EXPECT_FALSE(posted());
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

// Those that no other test meets.
TEST(NodeWindowReasons, FitTheSituation) {
    constexpr NB_ULONG up = NAP_NODE_ACTIVE, unknown = NAP_NODE_UNCONFIGURED;
    static const struct {
        VGA_NODEW_COMMAND command;
        NB_SHORT type;
        NB_LONG count;
        NB_ULONG node_state;
        NB_USHORT defined, message;
    } cases[] = {
        {VGA_NODEW_ZOOM, VGA_VIEWER_SELECT_NONE, 0, up, 1, VGA_MSG_NODEW_SELECT_FIRST},
        {VGA_NODEW_STOP, VGA_VIEWER_SELECT_NONE, 0, unknown, 1, VGA_MSG_NODEW_WRONG_STATE},
        {VGA_NODEW_START, VGA_VIEWER_PORT, 1, unknown, 1, VGA_MSG_NODEW_NODE_NOT_ACTIVE},
        {VGA_NODEW_ZOOM, VGA_VIEWER_PORT, 2, up, 1, VGA_MSG_NODEW_ONE_ONLY},
        {VGA_NODEW_COPY, VGA_VIEWER_LS, 1, up, 0, VGA_MSG_NODEW_NOT_DEFINED},
        {VGA_NODEW_DELETE, VGA_VIEWER_MODE, 1, up, 1, VGA_MSG_NODEW_NOT_FOR_THIS},
        {VGA_NODEW_ZOOM, VGA_VIEWER_MODE, 1, up, 1, 0},
        {VGA_NODEW_ADD, VGA_VIEWER_SELECT_NONE, 0, up, 1, VGA_MSG_NODEW_MARK_FIRST},
        {VGA_NODEW_TN_SERVER, VGA_VIEWER_SELECT_NONE, 0, up, 1, VGA_MSG_NODEW_NOT_SUPPORTED},
        {VGA_NODEW_RJE_WKSTN, VGA_VIEWER_SELECT_NONE, 0, up, 1, VGA_MSG_NODEW_NOT_INSTALLED},
    };
    const NB_USHORT rje = std::exchange(gvga_supported[VGA_SUPPORTED_RJE], NB_USHORT{0});
    VGA_NODE node = {};
    node.connection = VGA_CONNECTED;
    for (const auto &row : cases) {
        node.node_state = row.node_state;
        const VGA_NODEW_SITUATION situation = {&node, 0, 0, row.type, row.count, 0, row.defined};
        EXPECT_EQ(vga_nodew_reason(situation, row.command), row.message) << &row - cases;
    }
    gvga_supported[VGA_SUPPORTED_RJE] = rje;
    EXPECT_EQ(vga_nodew_reason({}, VGA_NODEW_START), VGA_MSG_NODEW_NO_NODE);
}

} // namespace
