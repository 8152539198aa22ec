// An operator's half hour: three of 400 links have failed.  Which ones, and why; their names for a
// letter; what the help says of one; and all three started again.  Every key and every click
// counts: docs/half-hour.md has the account.

#include "live_forms.h"

#include "dialogids.h"
#include "helpwindows.h"
#include "linerules.h"
#include "listwindow.h"
#include "messageline.h"
#include "outcomes.h"
#include "startstopbatch.h"
#include <Xm/RowColumn.h>
#include <cstdio>
#include <fstream>
#include <set>

SCRIPTED_NOF_ENTRY

using namespace forms;

namespace {

constexpr int link_count = 400;
const std::set<int> dark = {97, 251, 388};    // no partner answers
const std::set<int> unused = {5, 6, 7, 8, 9}; // nobody has started them

std::string name_of(int link) {
    NB_CHAR name[16];
    snprintf(name, sizeof(name), "BR%03d", link);
    return name;
}

std::string domain_of_branches() {
    std::string text = "[domain]\nname = branches\n\n[node centre]\nfq_cp_name = NETA.CENTRE\n"
                       "cp_alias = CENTRE\nnode_type = network_node\n\n[dlc LAN0]\n"
                       "dlc_type = ethernet\n\n[port ETH0]\ndlc_name = LAN0\n"
                       "tot_link_act_lim = 500\n";
    for (int link = 0; link < link_count; link++) {
        text += "\n[ls " + name_of(link) + "]\nport_name = ETH0\n";
        text += dark.contains(link) ? "reachable = no\nreact_timer = 0\n" : "";
        text += unused.contains(link) ? "initially_active = no\n" : "";
    }
    return text;
}

class HalfHour : public LIVE_FORMS {
protected:
    void SetUp() override {
        NB_CHAR folder[] = "/tmp/halfhourXXXXXX";
        ASSERT_NE(mkdtemp(folder), nullptr);
        file = std::string(folder) + "/branches.domain";
        std::ofstream(file) << domain_of_branches();
        sample = file.c_str();
        LIVE_FORMS::SetUp();
        node = static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes));
        gvga_hooks.record_awaited = vga_operations_follow;
        gvga_hooks.outcome = vga_listw_outcome;
        ASSERT_EQ(vga_display_node_window(node, 1), 1);
        window = vga_listw_of(gvga_main_dialog);
        ASSERT_NE(window, nullptr);
        gui::settle();
        gui::give_focus(window->common.shell);
        XmProcessTraversal(window->panes[0].draw_area, XmTRAVERSE_CURRENT);
        gui::settle();
    }

    void TearDown() override {
        LIVE_FORMS::TearDown();
        std::filesystem::remove_all(std::filesystem::path(file).parent_path());
    }

    // What the operator does, and counts.
    void key(const char *name, const std::vector<const char *> &modifiers = {}) {
        gui::key(name, modifiers);
        actions++;
        gui::settle();
    }
    // An entry of an option menu: a click opens it, another chooses.
    void choose(Widget option, const char *name) {
        Widget entry = XtNameToWidget(gvga_toplevel, name);
        ASSERT_NE(entry, nullptr);
        click(XmOptionButtonGadget(option));
        EXPECT_TRUE(gui::wait_for([entry] {
            XWindowAttributes menu;
            return XGetWindowAttributes(gvga_display, XtWindow(XtParent(entry)), &menu) != 0 &&
                   menu.map_state == IsViewable;
        }));
        usleep(1000U * XtGetMultiClickTime(gvga_display)); // no hand is there sooner
        click(entry);
    }
    void click(Widget button) {
        Position x = 0, y = 0;
        XtTranslateCoords(button, 5, 5, &x, &y);
        Position left = 0, top = 0;
        XtTranslateCoords(XtParent(button), 0, 0, &left, &top);
        gui::click(XtParent(button), x - left, y - top);
        actions++;
        gui::settle();
    }

    std::string selected() const {
        const VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
        const VGA_VIEWER_ITEM *line = vga_viewer_get_selected_viewer(root);
        return line != nullptr ? vga_line_name(*line) : "";
    }

    // The dialog over the window that shows the record; null without one.
    VGA_FORM *status_of_selected() const {
        VGA_UID_DESC *row = vga_find_row(VGA_UID_LINK_DET_DIALOG);
        auto *form = reinterpret_cast<VGA_FORM *>(row->last_desc);
        return form != nullptr && form->common.in_use != 0 &&
                       form->common.parent_item == vga_listw_get_selection(window, nullptr, nullptr)
                   ? form
                   : nullptr;
    }

    static std::string clipboard(Widget widget) {
        static std::string text;
        static bool answered;
        text.clear();
        answered = false;
        XtGetSelectionValue(
            widget, XInternAtom(gvga_display, "CLIPBOARD", False),
            XInternAtom(gvga_display, "UTF8_STRING", False),
            [](Widget, XtPointer, Atom *, Atom *, XtPointer value, unsigned long *length, int *) {
                text.assign(static_cast<char *>(value), value != nullptr ? *length : 0);
                XtFree(static_cast<char *>(value));
                answered = true;
            },
            nullptr, CurrentTime);
        EXPECT_TRUE(gui::wait_for([] { return answered; }));
        return text;
    }

    std::string file;
    VGA_NODE *node = nullptr;
    VGA_LIST_WINDOW *window = nullptr;
    int actions = 0;
};

TEST_F(HalfHour, FailedLinksAreFoundReadCopiedAndStarted) {
    // How many have failed stands over the list.
    EXPECT_TRUE(gui::wait_for([this] {
        return gui::label_text(window->panes[0].counts).find("3 failed") != std::string::npos;
    })) << gui::label_text(window->panes[0].counts);

    // Which, and why.
    for (const int link : dark) {
        key("F8");
        ASSERT_TRUE(gui::wait_for([&] { return selected() == name_of(link); })) << selected();
        key("i", {"Control_L"});
        const VGA_FORM *status = status_of_selected();
        ASSERT_NE(status, nullptr);
        EXPECT_NE(gui::label_text(XtNameToWidget(status->common.widget, "*linksLastSense")), "");
        gui::give_focus(status->common.shell); // what a window manager does
        key("Escape");
        gui::give_focus(window->common.shell);
        EXPECT_EQ(status_of_selected(), nullptr);
    }
    EXPECT_EQ(actions, 9);

    // Their names, to be pasted.
    key("l", {"Control_L"});
    choose(window->bar.state, "*filterBarFailed");
    const VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    EXPECT_TRUE(gui::wait_for([root] { return vga_viewer_list_lines(&root->top_items) == 4; }));
    key("Return");
    key("Home");
    key("Down");
    key("a", {"Control_L"});
    EXPECT_TRUE(gui::wait_for([root] { return root->select_count == 3; })) << root->select_count;
    key("c", {"Control_L"});
    const std::string text = clipboard(gvga_toplevel);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2);
    for (const int link : dark) {
        EXPECT_NE(text.find(name_of(link) + "\t"), std::string::npos) << text;
    }
    EXPECT_EQ(actions, 17);

    // What the help says of such a link.
    key("F1");
    ASSERT_TRUE(gui::wait_for([] { return gui::shells_with("helpDialog").size() == 1; }));
    gui::give_focus(gui::shells_with("helpDialog").at(0));
    key("Escape");
    gui::give_focus(window->common.shell);
    EXPECT_TRUE(gui::wait_for([] { return gui::shells_with("helpDialog").empty(); }));

    // Started again; the line says what came of it, with the partners still silent.
    click(window->tools[VGA_NODEW_START].icon);
    follow(node);
    EXPECT_TRUE(gui::wait_for([this] {
        return gui::field_text(window->message_bar).find("could not be started") !=
               std::string::npos;
    })) << gui::field_text(window->message_bar);
    std::string told;
    for (const VGA_OUTCOME &outcome : vga_outcomes()) {
        told += outcome.text + "\n";
    }
    for (const int link : dark) {
        EXPECT_NE(told.find(name_of(link) + " "), std::string::npos) << told;
    }
    EXPECT_EQ(actions, 20);
}

} // namespace
