// Walks all list windows of the table and all their commands, on records of a sample domain.  A new
// window needs no line here.  LooksWhole is run in five looks (CMakeLists.txt).

#include "live_forms.h"

#include "globals.h"
#include "linerules.h"
#include "listwindow.h"
#include "messageline.h"
#include "messages.h"
#include <functional>
#include <set>

SCRIPTED_NOF_ENTRY

using namespace forms;

namespace {

class WindowWalk : public LIVE_FORMS {
protected:
    void SetUp() override {
        gvga_supported[VGA_SUPPORTED_CPIC] = gvga_supported[VGA_SUPPORTED_DIRECTORY] = 1;
        LIVE_FORMS::SetUp();
        node = static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes));
        ASSERT_EQ(vga_display_node_window(node, 1), 1);
    }

    /* Each list window of this release but that of the domain, opened from the node's. */
    template <class Visit> void for_each_window(Visit visit) {
        for (const VGA_UID_DESC &row : gvga_uid_desc) {
            if (row.command_proc != vga_listw_command_proc ||
                row.dialog_id == gvga_uid_roles.system_window) {
                continue;
            }
            SCOPED_TRACE(row.name);
            const bool is_main = row.dialog_id == gvga_uid_roles.node_window;
            if (!is_main) {
                vga_listw_open(vga_listw_of(gvga_main_dialog), row.dialog_id);
            }
            VGA_LIST_WINDOW *window = vga_listw_of(is_main ? gvga_main_dialog : row.last_desc);
            ASSERT_NE(window, nullptr);
            gui::settle();
            visit(window);
            vga_close_children(&window->common, !is_main, 1);
            gui::settle();
        }
    }

    /* A line of each type in each list, selected; and before, none in the first list. */
    template <class Visit> static void for_each_selection(VGA_LIST_WINDOW *window, Visit visit) {
        visit();
        for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
            VGA_VIEWER_ROOT *root = vga_listw_root(window, pane);
            ASSERT_NE(root, nullptr);
            std::set<NB_USHORT> seen;
            for (VGA_VIEWER_ITEM *line = vga_viewer_find_line(root, 0); line != nullptr;
                 line = vga_viewer_get_next_item(root, line)) {
                if (vga_viewer_can_select(root, line) != 0 && seen.insert(line->type).second) {
                    gui::give_focus(window->common.shell);
                    XmProcessTraversal(window->panes[pane].draw_area, XmTRAVERSE_CURRENT);
                    vga_viewer_select(line, root, 0, 0, 1, 1);
                    gui::settle();
                    ASSERT_EQ(window->current_pane, pane);
                    visit();
                }
            }
        }
    }

    /* What asks for a command: it opens or asks something when the command is on, or says why that
     * is in vain; otherwise the message line says why it is off. */
    static void ask(VGA_LIST_WINDOW *window, NB_USHORT command,
                    const std::function<void(Widget)> &gesture) {
        ASSERT_NE(command, VGA_LISTW_NO_COMMAND);
        const VGA_COMMAND_ROW &row = window->plan->commands[command];
        const NB_USHORT reason = vga_refusal(vga_listw_situation(window), row);
        Widget list = window->panes[window->current_pane].draw_area;
        gui::give_focus(window->common.shell);
        XmProcessTraversal(list, XmTRAVERSE_CURRENT);
        vga_listw_message(window, 0);
        gesture(list);
        gui::settle();
        ASSERT_EQ(window->common.in_use, 1);
        const bool opened = !NB_EMPTY_LIST(window->common.children_root_lqe);
        const bool asked = !gui::box_text(&window->common).empty();
        const std::string said = gui::field_text(window->message_bar);
        if (reason != 0) {
            EXPECT_FALSE(opened || asked) << vga_message(reason);
            EXPECT_EQ(said, vga_message(reason));
        } else {
            EXPECT_TRUE(
                opened || asked ||
                (command != window->plan->zoom && said != vga_listw_selection_in_words(window)));
        }
        vga_close_modal_dialog(&window->common);
        vga_close_children(&window->common, 0, 1);
        gui::settle();
    }
    static void press(VGA_LIST_WINDOW *window, const char *key, NB_USHORT command) {
        SCOPED_TRACE(key);
        ask(window, command, [key](Widget) { gui::key(key); });
    }
    static void double_click(VGA_LIST_WINDOW *window) {
        SCOPED_TRACE("double click");
        const VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
        const auto top = static_cast<int>(vga_viewer_get_screen_pos(root->outline_viewer)) -
                         static_cast<int>(root->view->y_offset);
        if (top >= 0 && top < static_cast<int>(root->view->window_height) - 10) {
            ask(window, window->plan->zoom, [top](Widget list) {
                gui::click(list, 150, top + 8);
                gui::click(list, 150, top + 8);
            });
        }
    }

    VGA_NODE *node = nullptr;
};

TEST_F(WindowWalk, EveryCommandIsOnOrSaysWhyNot) {
    for_each_window([](VGA_LIST_WINDOW *window) {
        for (const VGA_TOOL_ROW &tool : window->plan->tools) {
            EXPECT_STRNE(vga_message(tool.help), "");
        }
        for_each_selection(window, [window] {
            const VGA_SITUATION situation = vga_listw_situation(window);
            for (const VGA_COMMAND_ROW &row : window->plan->commands) {
                const NB_USHORT reason = vga_refusal(situation, row);
                SCOPED_TRACE("command " + std::to_string(row.command) + ", type " +
                             std::to_string(situation.type) + ": " + vga_message(reason));
                EXPECT_TRUE(reason == 0 || vga_message(reason)[0] != '\0');
                Widget item = window->items[row.command];
                if (item != nullptr) {
                    EXPECT_EQ(XtIsSensitive(item), reason == 0);
                    EXPECT_EQ(XtIsManaged(item), row.offered == nullptr || *row.offered != 0);
                }
            }
        });
    });
}

TEST_F(WindowWalk, KeysAndDoubleClicksAddOpenAndDelete) {
    for_each_window([](VGA_LIST_WINDOW *window) {
        for_each_selection(window, [window] {
            if (window->current_pane != VGA_LISTW_NO_LIST) {
                press(window, "Insert", window->plan->add);
                press(window, "Return", window->plan->zoom);
                press(window, "Delete", window->plan->remove);
                double_click(window);
            }
        });
    });
}

TEST_F(WindowWalk, LooksWhole) {
    for_each_window([](VGA_LIST_WINDOW *window) {
        std::vector<Widget> all;
        looks::collect(window->common.widget, all);
        for (Widget widget : all) {
            bool shown = true;
            for (Widget part = widget; part != window->common.widget; part = XtParent(part)) {
                shown = shown && XtIsManaged(part) && !XtIsShell(part);
            }
            if (shown && looks::is_label(widget) && !gui::label_text(widget).empty()) {
                looks::expect_whole(widget);
            }
        }
        for (const VGA_LISTW_ROW &list : window->plan->lists) {
            const VGA_VIEWER_DESC *type = vga_viewer_type(list.headings_of);
            EXPECT_TRUE(list.headings == nullptr || type->create_headings != nullptr) << list.form;
        }
        Dimension width = 0, height = 0;
        XtVaGetValues(window->common.shell, XmNwidth, &width, XmNheight, &height, nullptr);
        EXPECT_LE(width, WidthOfScreen(gvga_screen));
        EXPECT_LE(height, HeightOfScreen(gvga_screen));
    });
}

TEST_F(WindowWalk, AModeIsMadeTheDefault) {
    vga_listw_open(vga_listw_of(gvga_main_dialog), VGA_UID_MODE_WINDOW);
    VGA_LIST_WINDOW *window = vga_listw_of(vga_find_row(VGA_UID_MODE_WINDOW)->last_desc);
    ASSERT_NE(window, nullptr);
    EXPECT_NE(vga_get_title(&window->common).find("Modes on harbour"), std::string::npos);
    auto *mode = static_cast<VGA_MODE_DEF *>(AVL_FIRST(node->mode_defs));
    vga_viewer_select(&mode->gui_data.viewer, &node->mode_def_root, 0, 0, 1, 1);
    vga_listw_run(window, VGA_MODEW_DEFAULT_MODE);
    run(1);
    EXPECT_EQ(memcmp(node->defaults.def_data.mode_name, mode->name, sizeof(mode->name)), 0);
    EXPECT_EQ(vga_modew_refuses_default(vga_listw_situation(window)), VGA_MSG_MODEW_IS_DEFAULT);

    vga_listw_run(window, VGA_MODEW_CLASSES);
    EXPECT_FALSE(NB_EMPTY_LIST(window->common.children_root_lqe));
}

} // namespace
