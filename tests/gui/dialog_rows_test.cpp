// Every window of the table that is there in name only: it can be fetched, shown, closed by its
// button and used again.  The node window and the forms have tests of their own.

#include "dialogids.h"
#include "looks.h"
#include "windowtable.h"

#include <Xm/MessageB.h>

namespace {

TEST(Rows, CanBeOpenedClosedAndUsedAgain) {
    looks::open_windows();
    gvga_toplevel = XtVaAppCreateShell("quiladmin", VGA_CLASS, applicationShellWidgetClass,
                                       gvga_display, nullptr);
    vga_init_dialogs();
    VGA_DIALOG *main_window = nullptr;
    ASSERT_EQ(vga_get_dialog(VGA_UID_TP_WINDOW, nullptr, nullptr, &main_window), 1);
    vga_display_dialog(main_window);
    for (const VGA_UID_DESC &row : gvga_uid_desc) {
        if (row.later == 0 || row.dialog_id == VGA_UID_TP_WINDOW) {
            continue;
        }
        SCOPED_TRACE(row.name);
        VGA_DIALOG *parent = row.kind != VGA_KIND_MAIN ? main_window : nullptr;
        VGA_DIALOG *desc = nullptr, *again = nullptr;
        ASSERT_EQ(vga_get_dialog(row.dialog_id, parent, nullptr, &desc), 1);
        vga_display_dialog(desc);
        gui::settle();
        EXPECT_TRUE(XtIsManaged(desc->widget));
        EXPECT_STREQ(XtName(desc->widget), row.name);
        String title = nullptr;
        XtVaGetValues(desc->shell, XmNtitle, &title, nullptr);
        EXPECT_STRNE(title, "Quiladmin");
        KeySym close = NoSymbol, help = NoSymbol;
        XtVaGetValues(XtNameToWidget(desc->widget, "OK"), XmNmnemonic, &close, nullptr);
        XtVaGetValues(XtNameToWidget(desc->widget, "Help"), XmNmnemonic, &help, nullptr);
        EXPECT_TRUE(close != NoSymbol && help != NoSymbol && close != help);
        XSetInputFocus(gvga_display, XtWindow(desc->shell), RevertToParent, CurrentTime);
        gui::settle();
        gui::key("Return");
        EXPECT_EQ(desc->in_use, 0);
        ASSERT_EQ(vga_get_dialog(row.dialog_id, parent, nullptr, &again), 1);
        EXPECT_EQ(again, desc);
        vga_close_children(again, 1, 0);
    }
    vga_free_dialogs();
    XtDestroyWidget(gvga_toplevel);
    gui::settle();
}

} // namespace
