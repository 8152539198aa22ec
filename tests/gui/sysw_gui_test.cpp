// The domain's window: its lines, what its buttons and menus offer, and what a line does.

#include "gui_windows.h"
#include "testrecords.h"

#include "checkedmodel.h"
#include "globals.h"
#include "graphics.h"
#include "linetable.h"
#include "messages.h"
#include "nodewindowlines.h"
#include "toolkit.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vganodew.h"
#include "vgasysw.h"

#include <cstring>
#include <string>

namespace {

class SystemWindow : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static gui::PREFIX prefix;
        nba_pd_set_log("/dev/null", NB_PD_ALL);
        ASSERT_EQ(vga_load_messages(), 1);
        gui::open_windows();
    }

    void SetUp() override {
        ASSERT_NE(gvga_uil_hierarchy, nullptr);
        gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] = 1;
        gvga_toplevel = XtVaAppCreateShell("quiladmin", VGA_CLASS, applicationShellWidgetClass,
                                           gvga_display, nullptr);
        vga_init_dialogs();
        gvga_hooks.node_list_changed = [](VGA_NODE *node, VGA_NODE_CHANGE change) {
            if (change != VGA_NODE_REMOVED) {
                vga_update_node_viewer(node);
            }
        };
        gvga_system = vga_init_vga_system();
        gvga_system->domain_target = 100;
        ASSERT_EQ(vga_display_system_window(0), 1);
        gvga_main_dialog = gvga_first_dialog;
        make_node("first", NAP_NODE_ACTIVE, VGA_ROLE_MASTER);
        node = make_node("second", NAP_NODE_ACTIVE, VGA_ROLE_NONE);
        ASSERT_EQ(vga_display_system_window(1), 1);
        desc = reinterpret_cast<VGA_SYSW_DESC *>(gvga_system->window);
        ASSERT_EQ(&desc->common, gvga_main_dialog);
        gui::show(gvga_toplevel);
    }

    void TearDown() override {
        gvga_read_only = 0;
        gui::move_to(gvga_toplevel, 1, 1);
        check_model();
        vga_close_children(gvga_main_dialog, 1, 1);
        vga_destroy_data_structures();
        vga_free_dialogs();
        XtDestroyWidget(gvga_toplevel);
        gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] = 0;
        gui::settle();
    }

    static VGA_NODE *make_node(const char *name, NB_ULONG state, VGA_SERVER_ROLE role) {
        auto data = new_entry<NAP_NODE_ALL_DATA>();
        strcpy(reinterpret_cast<char *>(data.node_name), name);
        data.info.node_state = state;
        VGA_NODE *made = vga_insert_vga_node(vga_init_vga_node(&data));
        made->connection = VGA_CONNECTED;
        made->role = role;
        return made;
    }

    void click_line(int line) const {
        const int height = static_cast<int>(gvga_viewer_item_height);
        gui::click(desc->panes[0].draw_area, 120, line * height + height / 2);
    }
    std::string message() const { return gui::field_text(desc->message_bar); }
    bool is_on(NB_USHORT command) const {
        const bool on = XtIsSensitive(desc->items[command]) != 0;
        if (command < VGA_SYSW_TOOL_COUNT) {
            EXPECT_EQ(XtIsSensitive(desc->tools[command].icon) != 0, on) << command;
        }
        return on;
    }
    static std::string line_of(VGA_NODE *shown) {
        char text[VGA_VIEWER_TEXT_BUFFER + 1] = "";
        text[vga_create_node_viewer_text(shown, text)] = '\0';
        return text;
    }

    VGA_SYSW_DESC *desc = nullptr;
    VGA_NODE *node = nullptr;
};

constexpr NB_ULONG last_state = NAP_NODE_BACK_LEVEL;

TEST_F(SystemWindow, CommandsFollowTheStateTheRoleAndTheDomain) {
    static const bool start[] = {true, false, true, false, false, false};
    static const bool stop[] = {false, true, false, true, false, false};
    static const bool trace[] = {true, true, true, true, false, false};
    click_line(1);
    for (NB_ULONG state = 0; state <= last_state; state++) {
        for (const VGA_SERVER_ROLE role : {VGA_ROLE_NONE, VGA_ROLE_MASTER, VGA_ROLE_BACKUP}) {
            for (const NB_ULONG domain : {100U, 0U}) {
                SCOPED_TRACE(testing::Message() << state << ' ' << role << ' ' << domain);
                node->node_state = state;
                node->role = role;
                gvga_system->domain_target = domain;
                vga_update_node_viewer(node);
                EXPECT_EQ(is_on(VGA_SYSW_START), start[state]);
                EXPECT_EQ(is_on(VGA_SYSW_STOP), stop[state]);
                EXPECT_EQ(is_on(VGA_SYSW_TRACING), trace[state]);
                EXPECT_TRUE(is_on(VGA_SYSW_ZOOM) && is_on(VGA_SYSW_NODE_PARAMS));
                EXPECT_EQ(is_on(VGA_SYSW_ADD_BACKUP),
                          state != last_state && role == VGA_ROLE_NONE && domain != 0);
                EXPECT_EQ(is_on(VGA_SYSW_DEL_BACKUP), role != VGA_ROLE_NONE && domain != 0);
            }
        }
    }
    vga_viewer_clear_selection(&gvga_system->node_viewer_root);
    vga_sysw_set_button_states(desc);
    for (const NB_USHORT command :
         {VGA_SYSW_START, VGA_SYSW_STOP, VGA_SYSW_TRACING, VGA_SYSW_ZOOM, VGA_SYSW_NODE_PARAMS,
          VGA_SYSW_ADD_BACKUP, VGA_SYSW_DEL_BACKUP}) {
        EXPECT_FALSE(is_on(command)) << command;
    }
    EXPECT_EQ(desc->zoom, 0);
}

TEST_F(SystemWindow, LinesSayStateRoleAndWhatElseThereIs) {
    const struct {
        NB_ULONG state;
        NB_USHORT role, connection;
        const char *line;
        NB_USHORT icon = VGA_ICON_NODE;
    } rows[] = {
        {0, VGA_ROLE_NONE, VGA_CONNECTED, "Stopped%t44%No server role%t60%Ports 0, links 0, LUs 0"},
        {1, VGA_ROLE_MASTER, VGA_CONNECTED, "Starting%t44%Master server%t60%Ports 0"},
        {2, VGA_ROLE_BACKUP, VGA_CONNECTED, "Stopping%t44%Backup server%t60%Ports 0"},
        {3, VGA_ROLE_NONE, VGA_CONNECTING, "Active%t44%No server role%t60%connecting"},
        {4, VGA_ROLE_NONE, VGA_NOT_CONNECTED,
         "Not configured%t44%No server role%t60%Define the node"},
        {5, VGA_ROLE_NONE, VGA_CONNECTED, "Older software%t44%", VGA_ICON_BACKNODE},
    };
    for (const auto &row : rows) {
        node->node_state = row.state;
        node->role = row.role;
        node->connection = row.connection;
        EXPECT_EQ(line_of(node).find(std::string("second%t28%") + row.line), 0U) << line_of(node);
        EXPECT_EQ(vga_choose_node_viewer_icon(node), row.icon);
    }
}

TEST_F(SystemWindow, ExplainsItsButtonsByTheSelectedNode) {
    const struct {
        NB_USHORT command;
        NB_USHORT unnamed;
        const char *named;
    } rows[] = {
        {VGA_SYSW_STOP, VGA_MSG_SYSW_STOP, "Stop the node second."},
        {VGA_SYSW_ZOOM, VGA_MSG_SYSW_OPEN, "Open the window of the node second."},
        {VGA_SYSW_START, VGA_MSG_SYSW_START, "Start the node second."},
    };
    for (const auto &row : rows) {
        node->node_state = row.command == VGA_SYSW_START ? NAP_NODE_STOPPED : NAP_NODE_ACTIVE;
        click_line(1);
        gui::move_to(desc->tools[row.command].icon, 8, 8);
        EXPECT_EQ(message(), row.named);
        EXPECT_EQ(gvga_current_button, desc->tools[row.command].icon);
        gui::move_to(desc->panes[0].draw_area, 120, 200);
        EXPECT_EQ(message(), "second (node) selected");
        EXPECT_EQ(gvga_current_button, nullptr);
    }
    gui::move_to(desc->tools[VGA_SYSW_START].text, 8, 4);
    node->node_state = NAP_NODE_ACTIVE; // another administrator was faster
    vga_update_node_viewer(node);
    EXPECT_EQ(gvga_current_button, nullptr);
    EXPECT_EQ(message(), "second (node) selected");
}

TEST_F(SystemWindow, OneNodeIsSelectedAtATime) {
    VGA_VIEWER_ROOT *root = &gvga_system->node_viewer_root;
    click_line(0);
    gui::click(desc->panes[0].draw_area, 120, static_cast<int>(gvga_viewer_item_height) + 4,
               {"Control_L"});
    EXPECT_EQ(root->select_count, 1);
    EXPECT_EQ(vga_viewer_get_selection(root, nullptr), node);

    vga_sysw_node_drag_cb(AVL_FIRST(gvga_system->nodes), 0, 1);
    const VGA_VIEWER_ITEM *first = root->top_items.first;
    EXPECT_TRUE(root->select_anchor == first && root->last_dragged == first);
    EXPECT_EQ(root->select_count, 1);
    EXPECT_EQ(root->select_type, VGA_VIEWER_NODE);
    vga_sysw_node_drag_cb(AVL_FIRST(gvga_system->nodes), 1, 1);
    EXPECT_EQ(root->outline_viewer, nullptr);
    EXPECT_EQ(root->select_count, 0);
    EXPECT_EQ(root->select_type, VGA_VIEWER_SELECT_NONE);
    root->last_dragged = nullptr;
}

} // namespace
