// The utilities for the widgets of dialogs, the busy cursor, titles and colours.

#include "busycursor.h"
#include "dialog_support.h"
#include "openwindows.h"
#include "widgets.h"

using namespace dialogs;

namespace {

// Widgets.

TEST_F(Dialogs, BusyCursor) {
    auto busy = [](VGA_DIALOG *desc) {
        return XTestCompareCursorWithWindow(gvga_display, XtWindow(desc->shell), None) == False;
    };
    VGA_DIALOG *closed = open(VGA_UID_MODE_DIALOG, main_dialog);
    {
        VGA_HOURGLASS waiting;
        EXPECT_TRUE(busy(main_dialog));
        EXPECT_TRUE(busy(closed));
    }
    EXPECT_FALSE(busy(main_dialog)) << "it ends where it began";

    // Fetching a dialog and other short waits do not end a longer one, which takes new windows in.
    vga_display_hourglass(1);
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    EXPECT_NE(moded, closed);
    EXPECT_TRUE(busy(main_dialog));
    EXPECT_TRUE(busy(moded));
    vga_close_children(closed, 1, 1);
    vga_display_hourglass(0);
    EXPECT_FALSE(busy(moded));
    open(VGA_UID_MODE_DIALOG, main_dialog);
    EXPECT_FALSE(busy(closed)) << "it was closed while the program was busy";
}

// The entries of the Windows menu.
TEST_F(Dialogs, NodeWindowsStandInTheMenu) {
    Widget menu = part("*nodewFileMenu");
    VGA_DIALOG *first = open(VGA_UID_TP_WINDOW, main_dialog);
    VGA_DIALOG *second = open(VGA_UID_TP_WINDOW, main_dialog);
    EXPECT_EQ(vga_add_node_window_widget(main_dialog, "alpha"), 1);
    vga_set_node_window_menu(menu); // the first is there before the menu
    EXPECT_EQ(vga_add_node_window_widget(first, "beta"), 2);
    EXPECT_EQ(vga_add_node_window_widget(second, "gamma"), 3);
    auto entries = [menu] {
        WidgetList children;
        Cardinal count;
        XtVaGetValues(menu, XmNchildren, &children, XmNnumChildren, &count, nullptr);
        std::vector<std::string> names;
        for (Cardinal at = 0; at < count; at++) {
            if (vga_get_node_number_from_widget(children[at]) != 0) {
                names.push_back(gui::label_text(children[at]));
            }
        }
        return names;
    };
    vga_remove_node_window_widget(first);
    EXPECT_EQ(vga_add_node_window_widget(second, "delta"), 3) << "a window keeps its number";
    gui::settle();
    EXPECT_EQ(vga_add_node_window_widget(first, "beta"), 2) << "the lowest that is free";
    EXPECT_EQ(entries(), (std::vector<std::string>{"1  alpha", "2  beta", "3  delta"}));
    EXPECT_EQ(vga_get_node_number_from_widget(part("*nodewItem")), 0);
    EXPECT_EQ(vga_node_widget_mnemonic(10), KeySym{XK_a});
    vga_remove_all_node_window_widgets();
    vga_set_node_window_menu(nullptr);
    gui::settle();
    EXPECT_TRUE(entries().empty());
}

} // namespace
