/* What the tests of the node window share: the real description, icons and looks of the build tree
 * and a small model. */
#ifndef NODEW_FIXTURE_H
#define NODEW_FIXTURE_H

#include "gui_windows.h"
#include "testrecords.h"

#include "checkedmodel.h"
#include "globals.h"
#include "graphics.h"
#include "linerules.h"
#include "linetable.h"
#include "messageline.h"
#include "messages.h"
#include "outcomes.h"
#include "panes.h"
#include "rememberedlines.h"
#include "toolkit.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vganodew.h"
#include "windowtable.h"

#include <Xm/TextF.h>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

class NodeWindow : public testing::Test {
protected:
    static void SetUpTestSuite() {
        if (gvga_uil_hierarchy != nullptr) {
            return; // of another suite
        }
        static gui::PREFIX prefix;
        nba_pd_set_log("/dev/null", NB_PD_ALL);
        ASSERT_EQ(vga_load_messages(), 1);
        gui::open_windows();
    }

    void SetUp() override {
        ASSERT_NE(gvga_uil_hierarchy, nullptr);
        ASSERT_NE(gvga_uid_desc[VGA_UID_NODE_WINDOW].get_widgets, nullptr);
        gvga_toplevel = XtVaAppCreateShell("quiladmin", VGA_CLASS, applicationShellWidgetClass,
                                           gvga_display, nullptr);
        vga_init_dialogs();
        gvga_read_only = 0;
        gvga_hooks.line_added = vga_listw_line_added;
        gvga_hooks.node_list_changed = [](VGA_NODE *changed, VGA_NODE_CHANGE change) {
            if (change == VGA_NODE_CHANGED) {
                vga_update_node_window(changed);
            }
        };
        gvga_hooks.outcome = vga_listw_outcome;
        vga_forget_outcomes();
        gvga_system = vga_init_vga_system();
        ASSERT_EQ(vga_display_node_window(nullptr, 1), 1);
        gvga_main_dialog = gvga_first_dialog;
        desc = reinterpret_cast<VGA_NODEW_DESC *>(gvga_main_dialog);
        ASSERT_NE(desc, nullptr);
        gui::show(gvga_toplevel);
    }

    void TearDown() override {
        gui::move_to(gvga_toplevel, 1, 1);
        check_model();
        vga_destroy_data_structures();
        vga_free_dialogs();
        XtDestroyWidget(gvga_toplevel);
        gvga_first_dialog = nullptr;
        gui::settle();
    }

    // Clicks a line of a pane, counted from 0.
    void click_line(NB_USHORT pane, NB_ULONG line) const {
        int y = static_cast<int>(line * gvga_viewer_item_height + gvga_viewer_item_height / 2);
        gui::click(desc->panes[pane].draw_area, 120, y);
    }
    Widget part(const char *name) const { return XtNameToWidget(desc->common.widget, name); }
    std::string message() const { return gui::field_text(desc->message_bar); }
    Pixel border(NB_USHORT pane) const {
        Pixel colour;
        XtVaGetValues(desc->panes[pane].form, XmNborderColor, &colour, nullptr);
        return colour;
    }
    // The pane whose border is marked, if it is the only one.
    NB_USHORT marked() const {
        NB_USHORT result = VGA_NODEW_NO_PANE;
        for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
            if (border(pane) == desc->current_border) {
                EXPECT_EQ(result, VGA_NODEW_NO_PANE);
                result = pane;
            } else {
                EXPECT_EQ(border(pane), desc->normal_border);
            }
        }
        return result;
    }
    static Dimension height(Widget widget) {
        Dimension value;
        XtVaGetValues(widget, XmNheight, &value, nullptr);
        return value;
    }
    static std::string title() {
        char *text = nullptr;
        XtVaGetValues(gvga_toplevel, XtNtitle, &text, nullptr);
        return text;
    }

    // A node with both fixed lines, two ports, a link with an LU, two local LUs and a remote
    // system.
    void make_node(NB_ULONG state = NAP_NODE_ACTIVE, const char *name = "berlin") {
        auto data = new_entry<NAP_NODE_ALL_DATA>();
        strcpy(reinterpret_cast<char *>(data.node_name), name);
        data.info.node_state = state;
        set_ebcdic(data.info.fq_cp_name, "NETA.BERLIN");
        node = vga_insert_vga_node(vga_init_vga_node(&data));
        ASSERT_NE(node, nullptr);
        node->connection = VGA_CONNECTED;
        node->target = 7;
        fill_node();
    }

    void fill_node() {
        ports.clear();
        vga_insert_vga_dlur_fake_port(vga_init_vga_dlur_fake_port(node));
        auto dlc = new_entry<NAP_DLC_DATA>();
        set_local(dlc.dlc_name, "ETH0");
        dlc.def_data.dlc_type = NAP_DLC_ETHERNET;
        VGA_DLC *owner = vga_insert_vga_dlc(vga_init_vga_dlc(node, &dlc));
        for (const char *port_name : {"ETHP0", "ETHP1"}) {
            auto port = new_entry<NAP_PORT_DATA>();
            set_local(port.port_name, port_name);
            set_local(port.def_data.dlc_name, "ETH0");
            port.def_data.dlc_type = NAP_DLC_ETHERNET;
            port.det_data.port_state = NAP_ACTIVE;
            ports.push_back(vga_insert_vga_port(vga_init_vga_port(owner, &port)));
        }
        for (const char *alias : {"PAYROLL", "ORDERS"}) {
            auto lu = new_entry<NAP_LOCAL_LU_DATA>();
            set_ebcdic(lu.lu_name, alias);
            set_local(lu.def_data.lu_alias, alias);
            vga_insert_vga_lu62(vga_init_vga_lu62(node, &lu));
        }
        auto remote = new_entry<NAP_DIR_DATA>();
        set_ebcdic(remote.fqcp_name, "NETA.HOST");
        set_ebcdic(remote.resource_name, "NETA.HOST");
        remote.resource_type = NAP_DIR_NETWORK_NODE;
        vga_insert_vga_rem_sys(vga_init_vga_rem_sys(node, &remote));
    }

    void show_node(NB_ULONG state = NAP_NODE_ACTIVE) {
        make_node(state);
        ASSERT_EQ(vga_display_node_window(node, 1), 1);
        ASSERT_EQ(node->window, &desc->common);
        gui::settle();
    }

    VGA_NODEW_DESC *desc = nullptr;
    VGA_NODE *node = nullptr;
    std::vector<VGA_PORT *> ports;
};

} // namespace

#endif
