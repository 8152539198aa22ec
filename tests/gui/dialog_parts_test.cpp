// Parts that dialogs share, with real mouse and keys: the window that a field is chosen from, and a
// list of rows with its buttons, and the account of what was done.

#include "dialog_support.h"
#include "gui_windows.h"

#include "chooser.h"
#include "hints.h"
#include "holders.h"
#include "libraryleaks.h"
#include "receipt.h"
#include "rowlist.h"

#include <Xm/Form.h>

using namespace dialogs;

namespace {

std::vector<VGA_CHOICE> there_is;

std::vector<std::string> rows;
std::string done; // to which row

NB_VOID note(const char *what, NB_ULONG row) {
    done = what + std::to_string(row);
}
const VGA_ROW_COLUMN columns[] = {{"Session", 8}, {"Type", 12}};
const VGA_ROW_LIST_PLAN plan = {
    .columns = columns,
    .in_view = 3,
    .most = 5,
    .count = [](NB_VOID *) { return static_cast<NB_ULONG>(rows.size()); },
    .text = [](NB_VOID *, NB_ULONG row, NB_USHORT) { return rows[row]; },
    .add = [](NB_VOID *) { note("add ", 0); },
    .change = [](NB_VOID *, NB_ULONG row) { note("change ", row); },
    .remove = [](NB_VOID *, NB_ULONG row) { note("remove ", row); }};

struct PARTS_DESC {
    VGA_DIALOG common;
    Widget field, button;
    VGA_ROW_LIST *list;
};

NB_USHORT get_parts(VGA_DIALOG *desc) {
    auto *parts = reinterpret_cast<PARTS_DESC *>(desc);
    Widget fields = XtNameToWidget(desc->widget, "*modedFields");
    parts->field = XtNameToWidget(desc->widget, "*modedName");
    parts->button = XtVaCreateManagedWidget("...", xmPushButtonWidgetClass, fields, nullptr);
    vga_attach_chooser(desc, parts->field, parts->button,
                       {"Mode", "Define a mode first.", [] { return there_is; }});
    Widget place = XtVaCreateManagedWidget("modedList", xmFormWidgetClass, fields, nullptr);
    parts->list = vga_row_list_attach(place, &plan, nullptr);
    return parts->list != nullptr;
}

class Parts : public Dialogs {
protected:
    // The program's descriptions behind those of the tests.
    static void SetUpTestSuite() {
        static gui::PREFIX prefix;
        gui::open();
        static DESCRIPTION description;
        ASSERT_TRUE(description.compiled);
        std::string file = description.file();
        std::string windows = std::string(nba_prefix()) + "/lib/X11/uid/Quiladmin/quildlg.uid";
        String files[] = {file.data(), windows.data()};
        ASSERT_EQ(MrmOpenHierarchyPerDisplay(gvga_display, 2, files, nullptr, &gvga_uil_hierarchy),
                  MrmSUCCESS);
        vga_register_common_names();
        ASSERT_EQ(vga_load_messages(), 1);
    }

    void SetUp() override {
        Dialogs::SetUp();
        there_is = {{"#BATCH", "Batch"}, {"#INTER", "Interactive"}, {"BATCHSC", "batch, secure"}};
        rows = {"LONG", "SHORT"};
        fill_row(VGA_UID_MODE_DIALOG, sizeof(PARTS_DESC), get_parts);
        parts = reinterpret_cast<PARTS_DESC *>(open(VGA_UID_MODE_DIALOG, main_dialog));
        ASSERT_NE(parts, nullptr);
        gui::give_focus(parts->common.shell);
        list = XtNameToWidget(parts->common.widget, "*rowListRows");
        focus(parts->field);
    }

    static void focus(Widget widget) {
        XmProcessTraversal(widget, XmTRAVERSE_CURRENT);
        gui::settle();
    }

    // The chooser's box, which is a child of a shell over the dialog's.
    Widget box() const {
        Widget found = XtNameToWidget(parts->common.shell, "*chooser");
        return found != nullptr && XtIsManaged(found) ? found : nullptr;
    }
    Widget of_box(const char *name) const { return XtNameToWidget(box(), name); }
    bool opened() const {
        if (box() != nullptr) {
            gui::give_focus(XtParent(box()));
        }
        return box() != nullptr;
    }
    static void double_click(Widget widget, int x, int y) {
        gui::click(widget, x, y);
        gui::press();
        gui::release();
    }

    PARTS_DESC *parts = nullptr;
    Widget list = nullptr;
};

TEST_F(Parts, AFieldIsChosenByKeys) {
    for (int ii = 0; ii < 100000; ii++) {
        there_is.push_back({"MODE" + std::to_string(ii), ""});
    }
    const struct {
        const char *before;
        std::vector<const char *> keys;
        const char *after;
    } cases[] = {
        {"#INTER", {"Return"}, "#INTER"}, // the current one is selected
        {"MODE777", {"Up", "Return"}, "MODE776"},
        {"", {"Down", "Down", "Return"}, "BATCHSC"},
        {"", {"End", "Up", "Return"}, "MODE99998"},
        {"MODE5", {"Home", "Next", "Return"}, "MODE8"}, // a page is all rows but one
        {"", {"b", "a", "Return"}, "BATCHSC"},          // what begins with it first
        {"", {"b", "a", "Down", "Return"}, "#BATCH"},   // then what has it
        {"", {"e", "r", "a", "Return"}, "#INTER"},      // in the second column, too
        {"", {"z", "Return", "BackSpace", "Down", "Return"}, "#INTER"},
        {"MODE5", {"Up", "Escape"}, "MODE5"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(std::string(row.before) + " -> " + row.after);
        XmTextFieldSetString(parts->field, const_cast<char *>(row.before));
        if (row.keys.size() % 2 == 0) {
            gui::key("F4");
        } else {
            gui::key("Down", {"Alt_L"});
        }
        ASSERT_TRUE(opened());
        for (const char *key : row.keys) {
            gui::key(key);
        }
        EXPECT_EQ(box(), nullptr);
        EXPECT_EQ(gui::field_text(parts->field), row.after);
        gui::give_focus(parts->common.shell);
        EXPECT_EQ(XmGetFocusWidget(parts->field), parts->field);
    }
}

TEST_F(Parts, AFieldIsChosenByMouse) {
    for (int ii = 0; ii < 100; ii++) {
        there_is.push_back({"MODE" + std::to_string(ii), ""});
    }
    int changes = 0;
    const auto note = [](Widget, XtPointer count, XtPointer) { ++*static_cast<int *>(count); };
    XtAddCallback(parts->field, XmNvalueChangedCallback, note, &changes);
    click(parts->button);
    ASSERT_TRUE(opened());
    gui::click(of_box("*chooserList"), 20, 30);
    gui::press(5); // three rows on
    gui::release(5);
    gui::click(of_box("*chooserList"), 20, 30);
    ASSERT_NE(box(), nullptr) << "two clicks on a place, but not on a row";
    click(of_box("OK"));
    EXPECT_EQ(box(), nullptr);
    EXPECT_EQ(gui::field_text(parts->field), "MODE1");

    click(parts->button);
    ASSERT_TRUE(opened());
    double_click(of_box("*chooserList"), 20, 8);
    EXPECT_EQ(box(), nullptr);
    EXPECT_EQ(gui::field_text(parts->field), "#BATCH");
    EXPECT_EQ(changes, 2);

    click(parts->button);
    ASSERT_TRUE(opened());
    close_by_manager(XtParent(box()));
    EXPECT_EQ(box(), nullptr);
    EXPECT_EQ(parts->common.in_use, 1);
    EXPECT_EQ(changes, 2);
}

TEST_F(Parts, AChooserEndsWithItsField) {
    const std::function<void()> ends[] = {
        [this] { XtSetSensitive(parts->field, False); },
        [this] { XtVaSetValues(parts->field, XmNeditable, False, nullptr); },
        [this] { vga_close_children(&parts->common, 1, 1); },
    };
    for (const auto &end : ends) {
        ASSERT_EQ(vga_open_chooser(&parts->common, parts->field), 1);
        ASSERT_NE(box(), nullptr);
        end();
        vga_check_choosers(&parts->common);
        EXPECT_EQ(box(), nullptr);
        EXPECT_EQ(XtIsSensitive(parts->button), parts->common.in_use == 0);
        EXPECT_EQ(vga_open_chooser(&parts->common, parts->field), 0);
        XtVaSetValues(parts->field, XmNsensitive, True, XmNeditable, True, nullptr);
        vga_check_choosers(&parts->common);
    }
    open(VGA_UID_MODE_DIALOG, main_dialog); // the same again
    there_is.clear();
    EXPECT_EQ(vga_open_chooser(&parts->common, parts->field), 0);
    EXPECT_NE(shown(&parts->common).find("Define a mode"), std::string::npos);
}

TEST_F(Parts, RowsAreWorkedOn) {
    const struct {
        const char *first, *key, *button, *done, *read_only;
    } cases[] = {
        {"Up", "Insert", "*rowListAdd", "add 0", ""},
        {"Up", "Return", "*rowListChange", "change 0", "change 0"},
        {"Down", "Delete", "*rowListRemove", "remove 1", ""},
        {"Up", "Return", "*rowListShow", "change 0", "change 0"},
    };
    for (const NB_USHORT read_only : {NB_USHORT{0}, NB_USHORT{1}}) {
        vga_row_list_set_read_only(parts->list, read_only);
        for (const auto &row : cases) {
            const char *wanted = read_only != 0 ? row.read_only : row.done;
            Widget button = XtNameToWidget(parts->common.widget, row.button);
            SCOPED_TRACE(row.button);
            focus(list);
            gui::key(row.first);
            gui::key(row.key);
            EXPECT_EQ(std::exchange(done, ""), wanted);
            if (XtIsManaged(button)) {
                click(button);
                EXPECT_EQ(std::exchange(done, ""), wanted);
            }
        }
        EXPECT_EQ(XtIsManaged(XtNameToWidget(parts->common.widget, "*rowListShow")), read_only);
    }
    double_click(list, 20, 8);
    EXPECT_EQ(done, "change 0");
    EXPECT_EQ(parts->common.in_use, 1) << "Return is the list's";
}

TEST_F(Parts, TheSelectedRowStaysSo) {
    const struct {
        std::vector<std::string> rows;
        NB_LONG selected;
        bool add, change;
    } cases[] = {
        {{"A", "LONG", "SHORT"}, 2, true, true},        // "SHORT" moved
        {{"A", "LONG"}, 1, true, true},                 // it is gone
        {{"LONG", "LONG"}, 1, true, true},              // names need not differ
        {{"A", "B", "C", "D", "LONG"}, 4, false, true}, // as many as there may be
        {{}, -1, true, false},
        {{"A", "B"}, 0, true, true},
    };
    vga_row_list_select(parts->list, 1);
    for (const auto &row : cases) {
        rows = row.rows;
        vga_row_list_refill(parts->list);
        EXPECT_EQ(vga_row_list_selected(parts->list), row.selected);
        for (const auto &[name, on] : {std::pair("*rowListAdd", row.add),
                                       {"*rowListChange", row.change},
                                       {"*rowListRemove", row.change}}) {
            Widget button = XtNameToWidget(parts->common.widget, name);
            EXPECT_EQ(XtIsSensitive(button), on) << name;
            EXPECT_EQ(vga_shown_hint(button)[0] == '\0', on) << name;
        }
    }
}

TEST_F(Parts, AReceiptCanBeReadAndCopiedAndGoesWithItsDialog) {
    const std::string account = "Deleted: 3 LUs.\n\nIt is active.\n    LU A\n";
    vga_show_receipt(&parts->common, "First", "Nothing.", "moded");
    vga_show_receipt(&parts->common, "What was deleted", account.c_str(), "moded");
    Widget receipt = XtNameToWidget(parts->common.shell, "*receipt");
    ASSERT_NE(receipt, nullptr);
    Widget text = XtNameToWidget(receipt, "*receiptText");
    gui::give_focus(XtParent(receipt));
    click(XtNameToWidget(receipt, "OK"));
    const std::string both = VGA_TEXT(XmTextGetSelection(text)).get();
    EXPECT_EQ(both.find("Nothing.\n---"), 0u) << "the one that is still read stays";
    EXPECT_TRUE(both.ends_with("--\n\n" + account)) << both;
    XmTextFieldSetString(parts->field, const_cast<char *>(""));
    {
        const VGA_LIBRARY_LEAKS list_of_targets;
        XmTextFieldPaste(parts->field);
    }
    EXPECT_EQ(gui::field_text(parts->field).find("Nothing."), 0u);
    EXPECT_TRUE(XtIsManaged(receipt)) << "Copy leaves it";
    gui::key("x");
    EXPECT_EQ(VGA_TEXT(XmTextGetString(text)).get(), both);
    gui::key("Escape");
    EXPECT_FALSE(XtIsManaged(receipt));
    vga_show_receipt(&parts->common, "Again", account.c_str(), "moded");
    EXPECT_TRUE(XtIsManaged(receipt));
    EXPECT_EQ(VGA_TEXT(XmTextGetString(text)).get(), account);
    vga_close_children(&parts->common, 1, 0);
    EXPECT_FALSE(XtIsManaged(receipt));
}

} // namespace
