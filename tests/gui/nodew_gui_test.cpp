// The node window as an operator meets it, with real mouse and keys.

#include "nodew_fixture.h"

#include "holders.h"
#include "nofverbs.h"
#include "resourceindications.h"
#include "roomrules.h"
#include "schemas.h"
#include "vgadsutl.h"
#include "widgets.h"
#include "windowband.h"

#include <X11/Xutil.h>
#include <Xm/SashP.h>
#include <functional>
#include <random>

namespace {

// The window.

TEST_F(NodeWindow, WhatIsNotThereYetIsInsensitive) {
    show_node();
    click_line(VGA_NODEW_TOP_PANE, 1);
    for (const VGA_COMMAND_ROW &row : gvga_nodew_plan.commands) {
        const bool there =
            row.opens != VGA_NO_DIALOG ? vga_is_written(row.opens) != 0 : row.action != nullptr;
        for (Widget widget :
             {desc->items[row.command], desc->popups[row.command],
              row.command < VGA_NODEW_TOOL_COUNT ? desc->tools[row.command].icon : nullptr}) {
            if (widget != nullptr) {
                EXPECT_EQ(XtIsSensitive(widget) != 0, there && desc->allowed[row.command] != 0)
                    << XtName(widget);
            }
        }
    }
    EXPECT_TRUE(XtIsSensitive(part("*nodewExit")));
    int number = VGA_NODEW_COPY; // as a description passes it for a command without a procedure
    vga_command_cb(desc->server_text, &number, nullptr);
    EXPECT_EQ(message(), vga_message(VGA_MSG_NODEW_LATER));
}

TEST_F(NodeWindow, ShowsItsNodeAndFollowsIt) {
    show_node(NAP_NODE_STARTING);
    EXPECT_EQ(title(), "berlin - SNA node administration");
    const auto line = [&] { return gui::label_text(desc->server_text); };
    EXPECT_EQ(line(), "berlin (NETA.BERLIN): starting");
    node->node_state = NAP_NODE_ACTIVE;
    vga_update_node_window(node);
    EXPECT_EQ(line(), "berlin (NETA.BERLIN): active");
    node->node_state = 77; // from the wire
    vga_update_node_window(node);
    EXPECT_EQ(line(), "berlin (NETA.BERLIN): older software");
}

TEST_F(NodeWindow, StaysEmptyWhenItsNodeGoesAndTakesTheNext) {
    show_node();
    vga_record_changed(node, VGA_RECORD_GONE);
    EXPECT_EQ(vga_nodew_node(desc), nullptr);
    EXPECT_EQ(node->window, nullptr);
    EXPECT_FALSE(node->connectivity_root.displayed);
    EXPECT_EQ(marked(), VGA_NODEW_NO_PANE);
    EXPECT_EQ(message(), vga_message(VGA_MSG_NODEW_NODE_LOST));
    click_line(VGA_NODEW_TOP_PANE, 1);
    EXPECT_EQ(marked(), VGA_NODEW_NO_PANE);
    ASSERT_EQ(vga_display_node_window(node, 1), 1);
    EXPECT_EQ(node->window, &desc->common);
    EXPECT_TRUE(node->connectivity_root.displayed);
}

TEST_F(NodeWindow, AnotherNodeHasAWindowOfItsOwnThatCanComeBack) {
    gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] = 1;
    show_node();
    VGA_NODE *first = node;
    make_node(NAP_NODE_ACTIVE, "hamburg");
    ASSERT_EQ(vga_display_node_window(node, 1), 1);
    VGA_DIALOG *second = node->window;
    ASSERT_NE(second, first->window);
    gui::settle();
    vga_listw_select_pane(reinterpret_cast<VGA_LIST_WINDOW *>(second), VGA_NODEW_MIDDLE_PANE, 1);
    vga_close_children(second, 1, 0);
    gui::settle();
    EXPECT_EQ(node->window, nullptr);
    EXPECT_FALSE(node->local_lu_root.displayed);
    EXPECT_EQ(node->local_lu_root.select_count, 1);
    EXPECT_EQ(first->window, &desc->common);
    ASSERT_EQ(vga_display_node_window(node, 1), 1);
    EXPECT_EQ(node->window, second);
    EXPECT_TRUE(node->local_lu_root.displayed);
    auto *again = reinterpret_cast<VGA_NODEW_DESC *>(second);
    EXPECT_EQ(again->current_pane, VGA_NODEW_MIDDLE_PANE);
    EXPECT_EQ(vga_nodew_get_selection(again, nullptr, nullptr),
              node->local_lu_root.top_items.first->data);
    vga_record_changed(node, VGA_RECORD_GONE);
    EXPECT_FALSE(second->in_use) << "a window other than the first goes with its node";
    gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] = 0;
}

// A node that goes and comes.

TEST_F(NodeWindow, NothingLooksAliveWithoutAConnection) {
    show_node();
    tm when = {};
    strptime("2026-03-03 14:03:07", "%Y-%m-%d %H:%M:%S", &when);
    when.tm_isdst = -1;
    const struct {
        VGA_CONNECTION connection;
        time_t lost_at;
        NB_USHORT primary;
        NB_ULONG secondary;
        const char *state, *message;
    } rows[] = {
        {VGA_NOT_CONNECTED, mktime(&when), NAP_OK, 0, "not connected since 14:03:07",
         "The connection to the node is lost."},
        {VGA_CONNECTING, mktime(&when), NAP_OK, 0, "connecting",
         "The connection to the node is lost."},
        {VGA_NOT_CONNECTED, 0, NAP_COMM_FAILURE, NAP_NODE_GONE,
         "not connected: its node software is not running",
         "The node berlin cannot be connected, so its resources are not shown."},
        {VGA_NOT_CONNECTED, 0, NAP_PARAMETER_CHECK, 0x5518,
         "not connected: refused with 0x0100, 0x00005518",
         "The node berlin cannot be connected, so its resources are not shown."},
    };
    for (const auto &row : rows) {
        click_line(VGA_NODEW_TOP_PANE, 1);
        ASSERT_EQ(marked(), VGA_NODEW_TOP_PANE);
        node->lost_at = row.lost_at;
        node->refusal = {row.primary, row.secondary};
        vga_set_connection(node, row.connection);
        EXPECT_EQ(gui::label_text(desc->server_text),
                  std::string("berlin (NETA.BERLIN): ") + row.state);
        NB_CHAR line[VGA_VIEWER_TEXT_BUFFER];
        const NB_USHORT length = vga_viewer_type(VGA_VIEWER_NODE)->create_text(node, line);
        const std::string text(line, length);
        EXPECT_NE(text.find("Active"), std::string::npos) << "the state as the node left it";
        EXPECT_EQ(text.substr(text.rfind('%') + 1), row.state);
        EXPECT_EQ(message(), row.message);
        gui::move_to(desc->tools[VGA_NODEW_ZOOM].icon, 8, 8);
        gui::move_to(desc->panes[0].draw_area, 200, 60);
        EXPECT_EQ(message(), row.message) << "behind the help under the pointer";
        click_line(VGA_NODEW_TOP_PANE, 1);
        gui::key("Down");
        EXPECT_EQ(marked(), VGA_NODEW_NO_PANE);
        for (NB_USHORT command = 0; command < VGA_NODEW_COMMAND_COUNT; command++) {
            EXPECT_EQ(desc->allowed[command], command == VGA_NODEW_MESSAGES) << command;
        }
        vga_listw_run(desc, VGA_NODEW_STOP);
        EXPECT_EQ(message(), vga_message(VGA_MSG_NODEW_NODE_NOT_CONNECTED));
        node->lost_at = 0;
        vga_set_connection(node, VGA_CONNECTED);
        EXPECT_EQ(gui::label_text(desc->server_text), "berlin (NETA.BERLIN): active");
    }
}

// What a list shows, line by line: open (-), selected (*), with the keyboard (>), and the first
// word.
std::string lines_of(const VGA_VIEWER_ROOT &root) {
    std::string lines;
    NB_CHAR text[VGA_VIEWER_TEXT_BUFFER] = {};
    for (VGA_VIEWER_ITEM *item = vga_viewer_find_line(&root, 0); item != nullptr;
         item = vga_viewer_get_next_item(&root, item)) {
        text[vga_viewer_type(item->type)->create_text(item->data, text)] = '\0';
        const std::string word(text, strcspn(text, "% "));
        lines += std::string(item->expanded != 0 ? "-" : "") + (item->selected != 0 ? "*" : "") +
                 (item == root.outline_viewer ? ">" : "") + word + " ";
    }
    return lines;
}

class ReturningNode : public NodeWindow {
protected:
    // Below the ports a peer, and a host with two LUs; more local LUs than the window has room for.
    void fill_lists() {
        for (const char *name : {"PEER", "HOST"}) {
            const bool host = *name == 'H';
            auto link = new_entry<NAP_LS_DATA>();
            set_local(link.ls_name, name);
            set_local(link.def_data.port_name, host ? "ETHP1" : "ETHP0");
            set_ebcdic(link.def_data.pu_name, host ? "HOSTPU" : "");
            link.def_data.adj_cp_type = host ? NAP_ADJ_HOST : NAP_ADJ_END_NODE;
            vga_insert_vga_ls(vga_init_vga_ls(ports[host ? 1 : 0], &link));
        }
        auto *pu = static_cast<VGA_LOCAL_PU *>(AVL_FIRST(node->local_pus));
        for (const char *name : {"LU2", "LU3"}) {
            auto lu = new_entry<NAP_LU03_DATA>();
            set_ebcdic(lu.lu_name, name);
            vga_insert_vga_lu03(vga_init_vga_lu03(pu, &lu));
        }
        for (int number = 100; number < 200; number++) {
            auto lu = new_entry<NAP_LOCAL_LU_DATA>();
            set_ebcdic(lu.lu_name, "M" + std::to_string(number));
            set_local(lu.def_data.lu_alias, "M" + std::to_string(number));
            vga_insert_vga_lu62(vga_init_vga_lu62(node, &lu));
        }
    }
    // The line in the middle of the long list on top of its window, the ports as `as_left` says.
    void arrange() {
        VGA_VIEWER_ROOT *root = &node->connectivity_root;
        VGA_LS *host = vga_find_ls(node, reinterpret_cast<const NB_UCHAR *>("HOST    "));
        vga_listw_select_pane(desc, VGA_NODEW_TOP_PANE, 1);
        vga_viewer_contract(root, &ports[0]->gui_data.viewer, 1);
        vga_expand_viewer(root, &host->gui_data.viewer, 1);
        VGA_VIEWER_ITEM *lu = host->gui_data.viewer.children.first;
        vga_viewer_select(lu, root, 0, 0, 1, 1);
        vga_viewer_select(host->gui_data.viewer.children.last, root, 0, 1, 1, 1);
        vga_viewer_scroll_view(&node->local_lu_root, 50 * NB_LONG(gvga_viewer_item_height));
    }
    const std::string as_left = "DLUR ETHP0 -ETHP1 -HOST *LU2 *>LU3 ";
};

TEST_F(ReturningNode, LooksAsBeforeButForWhatTheOperatorDid) {
    show_node();
    fill_lists();
    const std::function<void()> nothing = [] {};
    const std::function<void()> focus_comes_back = [&] {
        XmAnyCallbackStruct focus = {XmCR_FOCUS, nullptr};
        vga_nodew_select_top_pane(desc->panes[VGA_NODEW_TOP_PANE].draw_area, nullptr, &focus);
    };
    const std::function<void()> close_host = [&] {
        gui::click(desc->panes[VGA_NODEW_TOP_PANE].draw_area,
                   static_cast<int>(gvga_viewer_indent_width + gvga_viewer_expand_icon_width / 2),
                   static_cast<int>(3 * gvga_viewer_item_height + gvga_viewer_item_height / 2));
    };
    const struct {
        std::function<void()> early, late; // before and behind the lines that were selected
        std::string lines;
        NB_USHORT pane;
    } rows[] = {
        {nothing, nothing, as_left, VGA_NODEW_TOP_PANE},
        {focus_comes_back, nothing, as_left, VGA_NODEW_TOP_PANE},
        {[&] { click_line(VGA_NODEW_TOP_PANE, 1); }, nothing, "DLUR *>ETHP0 -ETHP1 -HOST LU2 LU3 ",
         VGA_NODEW_TOP_PANE},
        {[&] { click_line(VGA_NODEW_MIDDLE_PANE, 0); }, nothing, "DLUR ETHP0 -ETHP1 -HOST LU2 LU3 ",
         VGA_NODEW_MIDDLE_PANE},
        {nothing, close_host, "DLUR ETHP0 -ETHP1 *>HOST ", VGA_NODEW_TOP_PANE},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(&row - rows);
        arrange();
        ASSERT_EQ(lines_of(node->connectivity_root), as_left);
        const NB_ULONG place = node->local_lu_root.view->y_offset;
        ASSERT_NE(place, 0U);
        vga_lose_connection(node);
        vga_delete_node_contents(node);
        std::fill(std::begin(node->startup_status), std::end(node->startup_status), NB_USHORT{1});
        vga_set_connection(node, VGA_CONNECTED);
        EXPECT_EQ(marked(), VGA_NODEW_NO_PANE);
        fill_node();
        row.early();
        fill_lists();
        row.late();
        std::fill(std::begin(node->startup_status), std::end(node->startup_status), NB_USHORT{0});
        vga_update_node_window(node);
        EXPECT_EQ(message(), vga_message(VGA_MSG_NODEW_READY));
        EXPECT_EQ(lines_of(node->connectivity_root), row.lines);
        EXPECT_EQ(marked(), row.pane);
        EXPECT_EQ(node->local_lu_root.view->y_offset, place);
    }
}

// The message line.

TEST_F(NodeWindow, SaysWhatIsSelectedAndWhatHappened) {
    show_node();
    const std::string ready = vga_message(VGA_MSG_NODEW_READY);
    const std::string later = vga_message(VGA_MSG_NODEW_LATER);
    const auto tell = [](const char *whose, const char *text) {
        return [whose, text] { vga_tell_outcome(whose, text, 1); };
    };
    const struct {
        std::function<void()> what;
        std::string said;
    } rows[] = {
        {[] {}, ready},
        {[this] { click_line(VGA_NODEW_TOP_PANE, 1); }, "ETHP0 (port) selected"},
        {[] { gui::key("Down", {"Shift_L"}); }, "2 ports selected"},
        {[] { gui::key("Insert"); }, later},
        {[] { gui::key("Up"); }, "ETHP0 (port) selected"},
        {tell("berlin", "One failed.\nBecause."), "One failed."},
        {tell("other", "Not here."), "One failed."},
        {[] { gui::key("Insert"); }, later},
        {[] { gui::key("F9"); }, "One failed."},
        {tell("", "The domain, too."), "The domain, too."},
        {[] { gui::key("Down"); }, "ETHP1 (port) selected"},
        {[this] { vga_listw_select_nothing(desc); }, "The domain, too."},
        {[this] { vga_message_node_window(&desc->common, VGA_MSG_NODEW_LATER); }, later},
        {[this] { vga_message_node_window(&desc->common, 0); }, "The domain, too."},
        {[this] { vga_listw_message_busy(desc, "Reading."); }, "Reading."},
        {[this] { vga_listw_message_busy(desc, ""); }, "The domain, too."},
    };
    for (const auto &row : rows) {
        row.what();
        gui::settle();
        const std::string line = message();
        const size_t clock = line.size() > 3 && line[2] == ':' ? strlen("12:04:31 ") : 0;
        EXPECT_EQ(line.substr(clock), row.said) << "row " << &row - rows;
    }
}

TEST_F(NodeWindow, ShowsTheHistoryOfMessages) {
    show_node();
    vga_tell_outcome("berlin", "Port ETHP0 defined.");
    gui::click(desc->message_bar, 20, 5);
    Widget box = XtNameToWidget(desc->common.shell, "*history");
    ASSERT_NE(box, nullptr);
    Widget text = XtNameToWidget(box, "*historyText");
    const auto has = [text](const char *part) {
        const VGA_TEXT all(XmTextGetString(text));
        return std::string(all.get()).find(part) != std::string::npos;
    };
    EXPECT_TRUE(has("\tberlin\tPort ETHP0 defined."));
    vga_tell_outcome("hamburg", "Port LAN0 failed.", 1);
    EXPECT_TRUE(has("\thamburg\tFAILED: Port LAN0 failed."));
    gui::settle();
    gui::give_focus(XtParent(box));
    gui::key("Escape");
    EXPECT_FALSE(XtIsManaged(box));
    gui::click(part("*nodewHistory"), 5, 5);
    EXPECT_TRUE(XtIsManaged(box));
    EXPECT_TRUE(has("Port LAN0 failed."));
}

TEST_F(NodeWindow, CountsFailuresWhileNobodyLooks) {
    show_node();
    const std::string plain = title();
    Widget other = gui::make_shell("other", 0, 0, 50, 50);
    const auto urgent = [] {
        XWMHints *hints = XGetWMHints(gvga_display, XtWindow(gvga_toplevel));
        const bool is = hints != nullptr && (hints->flags & XUrgencyHint) != 0;
        XFree(hints);
        return is;
    };
    const struct {
        bool looked_at;
        const char *node;
        NB_ULONG failed;
        const char *before;
    } rows[] = {{true, "berlin", 1, ""},         {false, "berlin", 0, ""},
                {false, "hamburg", 1, ""},       {false, "berlin", 1, "(1 failed) "},
                {false, "", 12, "(13 failed) "}, {true, "", 0, ""}};
    for (const auto &row : rows) {
        gui::give_focus(row.looked_at ? gvga_toplevel : other);
        vga_tell_outcome(row.node, "What happened.", row.failed);
        vga_update_node_window(node); // which sets the title anew
        EXPECT_TRUE(gui::wait_for([&] { return title() == row.before + plain; })) << title();
        EXPECT_EQ(urgent(), row.before[0] != '\0');
    }
    XtDestroyWidget(other);
}

// Panes and lines.

TEST_F(NodeWindow, APressMakesItsPaneTheOnlyCurrentOne) {
    show_node();
    NB_SHORT type;
    NB_LONG count;
    click_line(VGA_NODEW_TOP_PANE, 2);
    EXPECT_EQ(marked(), VGA_NODEW_TOP_PANE);
    EXPECT_EQ(vga_nodew_get_selection(desc, &type, &count), ports[1]);
    EXPECT_EQ(type, VGA_VIEWER_PORT);
    EXPECT_EQ(count, 1);
    click_line(VGA_NODEW_MIDDLE_PANE, 1);
    EXPECT_EQ(marked(), VGA_NODEW_MIDDLE_PANE);
    EXPECT_EQ(node->connectivity_root.select_count, 0);
    EXPECT_NE(vga_nodew_get_selection(desc, &type, &count), nullptr);
    EXPECT_EQ(type, VGA_VIEWER_LU62);
    EXPECT_EQ(XmGetFocusWidget(desc->common.widget), desc->panes[VGA_NODEW_MIDDLE_PANE].draw_area);
    gui::click(desc->server_text, 10, 10);
    EXPECT_EQ(marked(), VGA_NODEW_NO_PANE);
    EXPECT_EQ(node->local_lu_root.select_count, 0);
}

TEST_F(NodeWindow, TheKeyboardGoesFromPaneToPane) {
    show_node();
    vga_listw_select_pane(desc, VGA_NODEW_TOP_PANE, 1);
    gui::settle();
    EXPECT_EQ(marked(), VGA_NODEW_TOP_PANE);
    EXPECT_EQ(vga_nodew_get_selection(desc, nullptr, nullptr), ports[0]) << "the first real line";
    gui::key("Down");
    EXPECT_EQ(vga_nodew_get_selection(desc, nullptr, nullptr), ports[1]);
    EXPECT_EQ(marked(), VGA_NODEW_TOP_PANE) << "arrow keys stay in the list";
    for (char name[] = "LU00"; name[3] < '9'; name[3]++) {
        auto lu = new_entry<NAP_LOCAL_LU_DATA>();
        set_ebcdic(lu.lu_name, name);
        set_local(lu.def_data.lu_alias, name);
        vga_insert_vga_lu62(vga_init_vga_lu62(node, &lu));
    }
    gui::settle();
    VGA_VIEWER_ROOT &lus = node->local_lu_root;
    vga_viewer_scroll_view(&lus, 10000);
    gui::key("Tab");
    EXPECT_EQ(lus.view->y_offset, 0u) << "what is selected is seen";
    gui::key("Tab", {"Shift_L"});
    vga_viewer_scroll_view(&lus, 10000);
    gui::settle();
    const NB_ULONG scrolled = lus.view->y_offset;
    EXPECT_GT(scrolled, 0u);
    click_line(VGA_NODEW_MIDDLE_PANE, 1);
    EXPECT_EQ(lus.view->y_offset, scrolled) << "and what is pressed stays where it is";
    EXPECT_NE(vga_viewer_get_selected_viewer(&lus), vga_viewer_find_line(&lus, 0));
    EXPECT_EQ(marked(), VGA_NODEW_MIDDLE_PANE);
    EXPECT_EQ(node->connectivity_root.select_count, 0);
    EXPECT_EQ(node->local_lu_root.select_count, 1);
    gui::key("Tab");
    EXPECT_EQ(marked(), VGA_NODEW_BOTTOM_PANE);
    gui::key("Tab");
    EXPECT_EQ(XmGetFocusWidget(desc->common.widget), desc->server_text);
    EXPECT_EQ(marked(), VGA_NODEW_NO_PANE) << "the node itself";
    EXPECT_EQ(node->rem_sys_root.select_count, 0);
}

TEST_F(NodeWindow, KeysOfTheListAskForCommands) {
    show_node();
    click_line(VGA_NODEW_TOP_PANE, 1);
    for (const char *name : {"Insert", "Return"}) {
        vga_message_node_window(&desc->common, 0);
        gui::key(name);
        EXPECT_EQ(message(), vga_message(VGA_MSG_NODEW_LATER));
    }
    gui::key("Delete");
    EXPECT_EQ(gui::box_text(&desc->common).find("Do you want to delete the port "), 0u);
    vga_close_modal_dialog(&desc->common);
    gui::give_focus(desc->common.shell);
    gvga_read_only = 1;
    gui::key("Insert"); // Add is never grey: it says so
    EXPECT_EQ(desc->common.modal_dlg.showing, 1);
}

// Heights.

// Whatever the operator makes of the window: every title is there and every list shows two lines;
// what had no room comes back with it; and only a sash changes the proportions.
TEST_F(NodeWindow, PanesKeepTheirSharesOfAnyWindow) {
    show_node();
    const gui::WARNINGS quiet;
    auto resize = [](unsigned width, unsigned new_height) {
        SCOPED_TRACE(new_height);
        XResizeWindow(gvga_display, XtWindow(gvga_toplevel), width, new_height);
        gui::wait_for([&] { return height(gvga_toplevel) == new_height; });
        gui::settle();
    };
    auto heights = [&] {
        std::vector<int> result;
        for (const VGA_LISTW_PANE &pane : desc->panes) {
            result.push_back(height(pane.form));
        }
        return result;
    };
    auto expect_whole = [&](unsigned width, unsigned new_height) {
        resize(width, new_height);
        for (const VGA_LISTW_PANE &pane : desc->panes) {
            SCOPED_TRACE(gui::label_text(pane.title) + " " + std::to_string(width));
            Dimension width_of_title = 0;
            XtVaGetValues(pane.title, XmNwidth, &width_of_title, nullptr);
            EXPECT_GE(width_of_title, vga_wanted_size(pane.title).width);
            EXPECT_GE(height(pane.title), vga_wanted_size(pane.title).height);
            EXPECT_GE(height(pane.draw_area), (new_height > 500 ? 2 : 1) * gvga_viewer_item_height);
            Position top, window_top;
            XtTranslateCoords(pane.hscroll, 0, 0, nullptr, &top);
            XtTranslateCoords(desc->common.widget, 0, 0, nullptr, &window_top);
            EXPECT_LE(top + height(pane.hscroll), window_top + static_cast<int>(new_height));
        }
    };
    auto shown = [&] {
        return std::vector<bool>{XtIsManaged(part("*nodewToolbar")) != 0,
                                 XtIsManaged(desc->panes[0].headings) != 0,
                                 XtIsManaged(desc->panes[0].key) != 0};
    };
    const struct {
        unsigned width, height;
        std::vector<bool> shown; // tool bar, headings, key
    } sizes[] = {{1056, 920, {true, true, true}},   {1056, 620, {true, true, false}},
                 {1056, 580, {true, false, false}}, {616, 540, {true, false, false}},
                 {616, 452, {false, false, false}}, {560, 920, {true, true, false}},
                 {320, 920, {false, true, false}},  {1056, 2900, {true, true, true}}};
    for (const bool by_sash : {false, true}) {
        resize(1056, 920);
        if (by_sash) {
            const std::vector<int> before = heights();
            WidgetList children = nullptr;
            XtVaGetValues(desc->panes_widget, XmNchildren, &children, nullptr);
            Widget sash = *std::find_if(children, children + 9, [&](Widget child) {
                Position top = 0, next = 0;
                XtVaGetValues(child, XmNy, &top, nullptr);
                XtVaGetValues(desc->panes[1].form, XmNy, &next, nullptr);
                return XmIsSash(child) && top < next;
            });
            gui::move_to(sash, 3, 3);
            gui::press();
            gui::move_to(sash, 3, 73);
            gui::release();
            gui::settle();
            EXPECT_GT(heights()[0], before[0] + 20);
        }
        const std::vector<int> before = heights();
        for (const auto &size : sizes) {
            expect_whole(size.width, size.height);
            EXPECT_EQ(shown(), size.shown) << size.width << "x" << size.height;
            if (size.height > 920) {
                EXPECT_NEAR(heights()[1] * before[0], heights()[0] * before[1], 4 * before[0]);
            }
            resize(1056, 300); // too low for anything
            resize(1056, 920);
            EXPECT_EQ(heights(), before);
        }
    }
    EXPECT_EQ(quiet.texts, std::vector<std::string>{});
}

TEST(NodeWindowHeights, DivideTheTotalWithoutALoss) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 20000; round++) {
        NB_ULONG shares[VGA_NODEW_PANE_COUNT], heights[VGA_NODEW_PANE_COUNT];
        for (NB_ULONG &share : shares) {
            share = random() % 3 == 0 ? 0 : random() % 65536;
        }
        NB_ULONG total = random() % 4000, minimum = random() % 200;
        vga_listw_divide(shares, VGA_NODEW_PANE_COUNT, total, minimum, heights);
        ASSERT_EQ(heights[0] + heights[1] + heights[2], total);
        for (NB_ULONG height : heights) {
            ASSERT_GE(height, std::min(minimum, total / VGA_NODEW_PANE_COUNT));
        }
    }
}

// A band says why nothing can be changed, and bears the name of a node that has a colour, as its
// questions do; it takes no room where there is nothing to say.
TEST_F(NodeWindow, ABandSaysWhatTheOperatorMustNotForget) {
    show_node();
    Position with = 0, without = 0;
    XtVaGetValues(part("*nodewToolbar"), XmNy, &without, nullptr);
    EXPECT_FALSE(XtIsManaged(desc->band));
    vga_close_children(&desc->common, 1, 1);
    gvga_read_only = 1;
    vga_listw_show_band(desc);
    EXPECT_EQ(gui::label_text(desc->band).find("VIEW ONLY: "), 0u);
    XrmPutStringResource(&gvga_resource_database, VGA_CLASS ".nodeColours",
                         " x=red,ber*=#204060, berlin = no such colour");
    make_node(NAP_NODE_ACTIVE, "berlin2");
    ASSERT_EQ(vga_display_node_window(node, 1), 1);
    EXPECT_EQ(gui::label_text(desc->band).find("berlin2    VIEW ONLY: "), 0u);
    gui::settle();
    XtVaGetValues(part("*nodewToolbar"), XmNy, &with, nullptr);
    EXPECT_GT(with, without);
    vga_display_confirm_dialog(&desc->common, VGA_MSG_CONFIRM_EXIT, nullptr, nullptr, 0, "");
    Widget mark = XtNameToWidget(desc->common.modal_dlg.dialog, "messageMark");
    ASSERT_NE(mark, nullptr);
    EXPECT_TRUE(XtIsManaged(mark));
    EXPECT_EQ(gui::label_text(mark), "berlin2");
    Pixel in_box = 0, in_band = 1;
    XtVaGetValues(mark, XmNbackground, &in_box, nullptr);
    XtVaGetValues(desc->band, XmNbackground, &in_band, nullptr);
    EXPECT_EQ(in_box, in_band);
    gvga_read_only = 0;
    XrmPutStringResource(&gvga_resource_database, VGA_CLASS ".nodeColours", "");
    vga_listw_show_band(desc);
    EXPECT_FALSE(XtIsManaged(desc->band));
}

// What an indication changes shows at once in the buttons of what is selected: a port that stops,
// and the downstream PU for which its link station stands.
TEST_F(NodeWindow, ButtonsFollowIndications) {
    show_node();
    const auto tell = [this](NB_USHORT opcode, const void *key, const void *status, size_t width) {
        NAP_RESOURCE_INDICATION news = {};
        news.opcode = opcode;
        memcpy(news.key, key, 8);
        memcpy(news.det_data, status, width);
        news.det_length = static_cast<NB_USHORT>(width);
        VGA_PROCESS_STATE work = {7, reinterpret_cast<NAP_VCB *>(&news), node->handle};
        vga_indication_handler(&work);
    };
    const auto reason = [this](VGA_NODEW_COMMAND command) { return desc->reasons[command]; };
    VGA_PORT *port = ports[0];
    click_line(VGA_NODEW_TOP_PANE, 1);
    ASSERT_EQ(vga_nodew_get_selection(desc, nullptr, nullptr), port);
    EXPECT_EQ(desc->allowed[VGA_NODEW_STOP], 1);
    NAP_PORT_DET stopped = port->vcb->det_data;
    stopped.port_state = NAP_NOT_ACTIVE;
    tell(NAP_PORT_INDICATION, port->name, &stopped, sizeof(stopped));
    EXPECT_EQ(reason(VGA_NODEW_STOP), VGA_MSG_NODEW_NOT_ACTIVE);
    EXPECT_EQ(desc->allowed[VGA_NODEW_START], 1);

    auto entry = new_entry<NAP_LS_DATA>();
    set_local(entry.ls_name, "BRANCH");
    set_ebcdic(entry.def_data.pu_name, "BRANCHPU");
    entry.def_data.adj_cp_type = NAP_ADJ_DOWNSTREAM;
    VGA_LS *ls = vga_insert_vga_ls(vga_init_vga_ls(port, &entry));
    vga_viewer_select(&ls->gui_data.viewer, &node->connectivity_root, 0, 0, 1, 1);
    gui::settle();
    EXPECT_EQ(desc->allowed[VGA_NODEW_START], 1);
    ls->state = NAP_ACTIVE; // not told yet
    const NB_UCHAR active[sizeof(NAP_DOWN_PU_DATA)] = {NAP_ACTIVE};
    tell(NAP_DOWNSTREAM_PU_INDICATION, ls->down_pu->name, active, records::down_pu.det.width);
    EXPECT_EQ(reason(VGA_NODEW_START), VGA_MSG_NODEW_ACTIVE_ALREADY);
    EXPECT_EQ(desc->allowed[VGA_NODEW_STOP], 1);
}

} // namespace
