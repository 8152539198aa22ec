// Every row of the program's table with the program's own descriptions: it can be fetched, shown,
// closed by its button and by the window manager, and used again.

#include "gui_windows.h"

#include "messages.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include "windowtable.h"

#include <Xm/MessageB.h>
#include <cstring>
#include <set>
#include <string>

namespace {

class Rows : public testing::TestWithParam<int> {
protected:
    static void SetUpTestSuite() {
        nba_pd_set_log("/dev/null", NB_PD_ALL);
        gui::open_windows();
    }

    void SetUp() override {
        gvga_toplevel = XtVaAppCreateShell("quiladmin", VGA_CLASS, applicationShellWidgetClass,
                                           gvga_display, nullptr);
        vga_init_dialogs();
    }

    void TearDown() override {
        vga_free_dialogs();
        XtDestroyWidget(gvga_toplevel);
        gui::settle();
    }
};

TEST_P(Rows, CanBeOpenedClosedAndUsedAgain) {
    const auto id = static_cast<NB_USHORT>(GetParam());
    const VGA_UID_DESC &row = gvga_uid_desc[id];
    VGA_DIALOG *parent = nullptr;
    if (row.kind != VGA_KIND_MAIN) {
        ASSERT_EQ(vga_get_dialog(VGA_UID_TP_WINDOW, nullptr, nullptr, &parent), 1);
        vga_display_dialog(parent);
    }
    VGA_DIALOG *desc = nullptr;
    ASSERT_EQ(vga_get_dialog(id, parent, nullptr, &desc), 1);
    vga_display_dialog(desc);
    gui::settle();
    EXPECT_TRUE(XtIsManaged(desc->widget));
    EXPECT_STREQ(XtName(desc->widget), row.name);
    String title = nullptr;
    XtVaGetValues(desc->shell, XmNtitle, &title, nullptr);
    EXPECT_NE(title, nullptr);
    EXPECT_STRNE(title, "Quiladmin");

    std::set<KeySym> letters;
    for (const char *name : {"OK", "Cancel", "Help", "ApplyButton", "ResetButton"}) {
        const std::string own = strlen(name) > 6 ? std::string(row.name) + name : name;
        Widget button = XtNameToWidget(desc->widget, own.c_str());
        if (button != nullptr && XtIsManaged(button)) {
            KeySym letter = NoSymbol;
            XtVaGetValues(button, XmNmnemonic, &letter, nullptr);
            EXPECT_NE(letter, KeySym{NoSymbol}) << own;
            EXPECT_TRUE(letters.insert(letter).second) << own;
        }
    }

    // The button that closes it, by keyboard: it has the focus or is the default.
    ASSERT_TRUE(XmIsMessageBox(desc->widget));
    Widget close = XtNameToWidget(desc->widget, row.later != 0 ? "OK" : "Cancel");
    ASSERT_NE(close, nullptr);
    EXPECT_TRUE(XtIsManaged(close));
    EXPECT_NE(XtNameToWidget(desc->widget, "Help"), nullptr);
    XSetInputFocus(gvga_display, XtWindow(desc->shell), RevertToParent, CurrentTime);
    gui::settle();
    gui::key(row.later != 0 ? "Return" : "Escape");
    EXPECT_EQ(desc->in_use, 0);

    VGA_DIALOG *again = nullptr;
    ASSERT_EQ(vga_get_dialog(id, parent, nullptr, &again), 1);
    EXPECT_EQ(again, desc);
    vga_close_children(again, 1, 0);
}

std::vector<int> all_dialogs() {
    std::vector<int> ids;
    for (int id = 0; id <= VGA_UID_MAX; id++) {
        if (id != VGA_UID_NODE_WINDOW) { // has tests of its own
            ids.push_back(id);
        }
    }
    return ids;
}

INSTANTIATE_TEST_SUITE_P(Table, Rows, testing::ValuesIn(all_dialogs()), [](const auto &row) {
    return std::string(gvga_uid_desc[static_cast<size_t>(row.param)].name);
});

} // namespace
