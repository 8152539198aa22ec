// Finding lines in a list window, as an operator does, with real keys.

#include "nodew_fixture.h"

#include "findbar.h"
#include "findtitles.h"
#include "search.h"

namespace {

class Finding : public NodeWindow {
protected:
    void SetUp() override {
        NodeWindow::SetUp();
        show_node();
        gui::give_focus(gvga_toplevel);
        vga_listw_select_pane(desc, VGA_NODEW_MIDDLE_PANE, 1);
        use(VGA_NODEW_TOP_PANE);
    }

    void use(NB_USHORT pane) {
        vga_listw_select_pane(desc, pane, 1);
        ASSERT_TRUE(gui::wait_for(
            [&] { return XmGetFocusWidget(desc->common.widget) == desc->panes[pane].draw_area; }));
    }
    static void type(const std::string &text) {
        for (const char letter : text) {
            const char name[] = {letter, '\0'};
            if (letter == '*') {
                gui::key("asterisk", {"Shift_L"});
            } else {
                gui::key(letter == '[' ? "bracketleft" : name);
            }
        }
        gui::settle();
    }
    static void key(const char *name, const std::vector<const char *> &modifiers = {}) {
        gui::key(name, modifiers);
        gui::settle();
    }
    std::string selected() const {
        const VGA_VIEWER_ROOT *root = vga_listw_current_root(desc);
        const VGA_VIEWER_ITEM *line = vga_viewer_get_selected_viewer(root);
        return line != nullptr ? vga_line_name(*line) : "";
    }
    std::string result() const { return gui::label_text(desc->bar.result); }
    // What stands beside the title of the top pane, once it has followed.
    bool shows_counts(const std::string &text) const {
        return gui::wait_for([&] {
            const std::string counts = gui::label_text(desc->panes[0].counts);
            return text.empty() ? counts.empty() : counts.find(text) != std::string::npos;
        });
    }
    NB_ULONG lines() const { return vga_viewer_list_lines(&node->connectivity_root.top_items); }
};

TEST_F(Finding, LettersGoToTheNextName) {
    use(VGA_NODEW_MIDDLE_PANE);
    ASSERT_EQ(selected(), "ORDERS");
    type("pay");
    EXPECT_EQ(selected(), "PAYROLL");
    EXPECT_NE(message().find("pay"), std::string::npos);
    type("x");
    EXPECT_EQ(selected(), "PAYROLL");
    EXPECT_NE(message().find("payx"), std::string::npos);
    key("BackSpace");
    EXPECT_NE(message().find("\"pay\""), std::string::npos);
    key("minus"); // a key of the list, no letter
    EXPECT_STREQ(node->local_lu_root.view->typed, "pay");
}

TEST_F(Finding, EveryKeyOfTheFieldGoesToAMatchAndNumbersIt) {
    key("f", {"Control_L"});
    ASSERT_EQ(desc->bar.kind, VGA_LISTW_FIND_BAR);
    type("thp");
    EXPECT_EQ(selected(), "ETHP0");
    EXPECT_EQ(result(), "1 of 2");
    key("F3");
    EXPECT_EQ(selected(), "ETHP1");
    EXPECT_EQ(result(), "2 of 2");
    key("F3");
    EXPECT_EQ(selected(), "ETHP0") << "around the end";
    key("F3", {"Shift_L"});
    EXPECT_EQ(selected(), "ETHP1");
    type("9");
    EXPECT_EQ(result(), vga_message(VGA_MSG_FIND_NONE));
    key("BackSpace");
    EXPECT_EQ(result(), "1 of 2") << "from where the search began";
    key("Escape");
    EXPECT_EQ(desc->bar.kind, VGA_LISTW_NO_BAR);
    EXPECT_EQ(vga_listw_focus_pane(desc), VGA_NODEW_TOP_PANE);
    EXPECT_EQ(selected(), "ETHP0");
    key("F3");
    EXPECT_EQ(selected(), "ETHP1") << "without the field, too";
}

TEST_F(Finding, AMatchInAClosedLineIsOpened) {
    use(VGA_NODEW_MIDDLE_PANE);
    auto entry = new_entry<NAP_MODE_DATA>();
    set_ebcdic(entry.mode_name, "#DEEP");
    VGA_VIEWER_ITEM line;
    VGA_VIEWER_ITEM *parent = node->local_lu_root.top_items.last;
    vga_create_viewer(&node->local_lu_root, &line, VGA_VIEWER_LU62, parent->data, parent, nullptr);
    ASSERT_FALSE(vga_viewer_is_visible(&line));
    key("f", {"Control_L"});
    type("payroll");
    key("F3");
    EXPECT_TRUE(vga_viewer_is_visible(&line));
    EXPECT_EQ(node->local_lu_root.outline_viewer, &line);
    vga_delete_viewer(&node->local_lu_root, &line);
}

TEST_F(Finding, AFilterIsExplainedCountedAndTakenOff) {
    const NB_ULONG all = lines();
    key("l", {"Control_L"});
    ASSERT_EQ(desc->bar.kind, VGA_LISTW_FILTER_BAR);
    EXPECT_EQ(message(), vga_message(VGA_MSG_FILTER_NOTHING));
    type("ethp1");
    EXPECT_EQ(lines(), 1U);
    EXPECT_NE(message().find("contain \"ethp1\""), std::string::npos);
    type("[");
    EXPECT_EQ(message(), vga_message(VGA_MSG_FILTER_OPEN_SET));
    EXPECT_EQ(lines(), 1U) << "a fault changes nothing";
    key("BackSpace");
    type("*");
    EXPECT_NE(message().find("begin with \"ethp1\""), std::string::npos);
    key("Return");
    EXPECT_TRUE(shows_counts("1 shown: ethp1*"));

    auto port = new_entry<NAP_PORT_DATA>();
    set_local(port.port_name, "ETHP2");
    set_local(port.def_data.dlc_name, "ETH0");
    vga_insert_vga_port(vga_init_vga_port(ports[0]->parent, &port));
    EXPECT_EQ(lines(), 1U) << "what comes is filtered at once";
    ASSERT_TRUE(XtIsManaged(desc->panes[0].filter_off));
    gui::click(desc->panes[0].filter_off, 10, 5);
    EXPECT_TRUE(gui::wait_for([&] { return lines() == all + 1; }));
    EXPECT_FALSE(XtIsManaged(desc->panes[0].filter_off));
    EXPECT_TRUE(shows_counts("3 ports"));
}

TEST_F(Finding, TitlesCountWhatFailedAndKeysGoThere) {
    EXPECT_TRUE(shows_counts(": 2 ports, 2 active"));
    key("F8");
    EXPECT_EQ(message(), vga_message(VGA_MSG_FIND_NO_FAILED));
    ports[1]->vcb->det_data.port_state = NAP_NOT_ACTIVE;
    ports[1]->vcb->det_data.failed_at = 1;
    vga_update_viewer(&node->connectivity_root, &ports[1]->gui_data.viewer);
    EXPECT_TRUE(shows_counts(": 2 ports, 1 active, 1 failed"));
    key("F8");
    EXPECT_EQ(selected(), "ETHP1");
    key("l", {"Control_L"});
    vga_viewer_filter(&node->connectivity_root, {}, VGA_STATES_SET(VGA_LINE_FAILED));
    EXPECT_EQ(lines(), 1U);
    vga_listw_close_bar(desc, 1);
    EXPECT_TRUE(shows_counts("1 shown: failed"));
    ports[1]->vcb->det_data.failed_at = 0;
    vga_update_viewer(&node->connectivity_root, &ports[1]->gui_data.viewer);
    EXPECT_EQ(lines(), 0U);
    EXPECT_EQ(selected(), "");
}

// The less room, the fewer words, and the more important ones.
TEST_F(Finding, CountsGiveWay) {
    const VGA_LISTW_COUNTS counts = {
        {"2 ports", "4 links"}, {"2 active", "3 active"}, "1 failed", "1 shown: x"};
    const char *const texts[] = {"2 ports, 4 links, 3 active, 1 failed, 1 shown: x",
                                 "2 ports, 2 active, 1 failed, 1 shown: x",
                                 "2 ports, 1 failed, 1 shown: x",
                                 "1 failed, 1 shown: x",
                                 "1 shown: x",
                                 ""};
    for (NB_USHORT step = 0; step < std::size(texts); step++) {
        EXPECT_EQ(vga_listw_count_text(counts, step), texts[step]);
    }
}

TEST_F(Finding, AFilterOutlivesTheConnectionButNotTheWindow) {
    vga_viewer_filter(&node->connectivity_root, vga_parse_pattern("ethp1"), VGA_ANY_LINE_STATE);
    node->connection = VGA_NOT_CONNECTED;
    vga_update_node_window(node);
    node->connection = VGA_CONNECTED;
    vga_update_node_window(node);
    EXPECT_EQ(lines(), 1U);
    vga_listw_close_proc(&desc->common);
    EXPECT_FALSE(vga_finder_filter_of(&node->connectivity_root).on);
    EXPECT_GT(lines(), 1U);
}

} // namespace
