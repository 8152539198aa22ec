// The life of windows and dialogs, message boxes and their queues, the firewall, the busy cursor.
// The descriptions come from a UID file that is compiled here; the rows of the table that the tests
// use are filled in here, too.

#include "gui_support.h"

#include "vgadgutl.h"
#include "vgaglob.h"
#include "vgahooks.h"
#include "vgamsgs.h"

#include <X11/extensions/XTest.h>
#include <Xm/ComboBox.h>
#include <Xm/DrawnB.h>
#include <Xm/MessageB.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/TextF.h>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

const char uil_source[] = R"(module dialogtest
    names = case_sensitive
procedure
    vga_close_cb();
    test_activate();
object nodew : XmForm {
    arguments { XmNwidth = 400; XmNheight = 300; };
    controls {
        XmMenuBar nodewMenuBar;
        XmPushButton nodewButton;
        XmScrollBar nodewScrollBar;
    };
};
object nodewMenuBar : XmMenuBar {
    arguments { XmNtopAttachment = XmATTACH_FORM; XmNleftAttachment = XmATTACH_FORM;
                XmNrightAttachment = XmATTACH_FORM; };
    controls { XmCascadeButton nodewFile; };
};
object nodewFile : XmCascadeButton { controls { XmPulldownMenu nodewFileMenu; }; };
object nodewFileMenu : XmPulldownMenu { controls { XmPushButton nodewItem; }; };
object nodewItem : XmPushButton { };
object nodewButton : XmPushButton {
    arguments { XmNtopAttachment = XmATTACH_FORM; XmNtopOffset = 100;
                XmNleftAttachment = XmATTACH_FORM; XmNleftOffset = 50; };
    callbacks { XmNactivateCallback = procedure test_activate(); };
};
object nodewScrollBar : XmScrollBar {
    arguments { XmNrightAttachment = XmATTACH_FORM; XmNtopAttachment = XmATTACH_FORM;
                XmNtopOffset = 60; XmNbottomAttachment = XmATTACH_FORM; };
};
object moded : XmMessageBox {
    arguments {
        XmNdialogType = XmDIALOG_TEMPLATE;
        XmNdialogTitle = compound_string("Mode");
        XmNautoUnmanage = false;
        XmNokLabelString = compound_string("OK");
        XmNcancelLabelString = compound_string("Cancel");
    };
    controls { XmRowColumn modedFields; };
    callbacks { XmNcancelCallback = procedure vga_close_cb(); };
};
object modedFields : XmRowColumn {
    controls { XmTextField modedName; XmTextField modedLimit; };
};
object modedName : XmTextField { arguments { XmNcolumns = 9; }; };
object modedLimit : XmTextField { };
object sadvl : XmMessageBox { };
object errorDialog : XmMessageBox {
    arguments { XmNautoUnmanage = false; XmNhelpLabelString = compound_string("Help me"); };
    controls { XmPushButton confirmOKToAllButton; XmPushButton confirmNoButton; };
};
object confirmOKToAllButton : XmPushButton { };
object confirmNoButton : XmPushButton { };
object tpw : XmForm { arguments { XmNwidth = 100; XmNheight = 100; }; };
end module;
)";

// Compiles the description into a folder of its own, which goes when the tests end.
class DESCRIPTION {
public:
    DESCRIPTION() {
        char name[] = "/tmp/dialogXXXXXX";
        folder = mkdtemp(name);
        std::ofstream(folder / "test.uil") << uil_source;
        std::string command = "uil -o " + file() + " " + (folder / "test.uil").string();
        compiled = system(command.c_str()) == 0;
    }
    ~DESCRIPTION() { std::filesystem::remove_all(folder); }
    std::string file() const { return (folder / "test.uid").string(); }
    bool compiled;

private:
    std::filesystem::path folder;
};

// What the table's functions saw.
struct EVENTS {
    std::vector<std::string> closed;
    std::vector<std::pair<VGA_ANSWER, NB_ULONG>> answers;
    std::vector<NB_VOID *> changed;
    std::function<NB_VOID()> on_activate;
    std::function<NB_VOID(VGA_DIALOG *)> on_answer;
    std::string fatal;
    int stops = 0;
};
EVENTS events;

struct MODED_DESC {
    VGA_DIALOG common;
    Widget mode_name;
    int own_field;
};

NB_USHORT get_any(VGA_DIALOG *) {
    return 1;
}
NB_USHORT get_none(VGA_DIALOG *) {
    return 0;
}
NB_USHORT get_moded(VGA_DIALOG *desc) {
    auto *moded = reinterpret_cast<MODED_DESC *>(desc);
    moded->mode_name = XtNameToWidget(desc->widget, "*modedName");
    return moded->mode_name != nullptr;
}
NB_VOID note_close(VGA_DIALOG *desc) {
    EXPECT_EQ(nba_validate_handle(desc->handle), desc);
    events.closed.push_back(gvga_uid_desc[desc->dialog_id].name);
}
NB_VOID note_answer(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG client_data) {
    events.answers.emplace_back(answer, client_data);
    if (events.on_answer) {
        events.on_answer(desc);
    }
}
NB_VOID note_change(VGA_DIALOG *desc, NB_VOID *item, VGA_RECORD_CHANGE what) {
    events.changed.push_back(item);
    if (what == VGA_RECORD_GONE && desc->parent_item == item) {
        vga_close_children(desc, 1, 1);
    }
}
NB_VOID note_fatal(const NB_CHAR *, NB_INT, const NB_CHAR *text) {
    events.fatal = text;
}
NB_VOID note_stop() {
    events.stops++;
}
NB_VOID test_activate(Widget, XtPointer, XtPointer) {
    if (events.on_activate) {
        events.on_activate();
    }
}

MRMRegisterArg node_callbacks[] = {
    {const_cast<char *>("test_activate"), reinterpret_cast<XtPointer>(test_activate)}};

// The window of that row is the test's own; nothing of the program's window is left.
NB_VOID fill_row(VGA_DIALOG_ID id, NB_USHORT size, NB_USHORT (*get_widgets)(VGA_DIALOG *)) {
    VGA_UID_DESC row = {id, "", gvga_uid_desc[id].kind, size, get_widgets, note_close};
    memcpy(row.name, gvga_uid_desc[id].name, sizeof(row.name));
    row.record_changed = note_change;
    gvga_uid_desc[id] = row;
}

class Dialogs : public testing::Test {
protected:
    static void SetUpTestSuite() {
        gui::open();
        static DESCRIPTION description;
        ASSERT_TRUE(description.compiled);
        std::string file = description.file();
        String files[] = {file.data()};
        ASSERT_EQ(MrmOpenHierarchyPerDisplay(gvga_display, 1, files, nullptr, &gvga_uil_hierarchy),
                  MrmSUCCESS);
        vga_register_common_names();
        nba_pd_set_log("/dev/null", NB_PD_ALL);
    }

    void SetUp() override {
        ASSERT_NE(gvga_uil_hierarchy, nullptr);
        events = EVENTS();
        table = gvga_uid_desc;
        v0_set_fatal_handler(note_fatal);
        gvga_hooks.stop = note_stop;
        gvga_toplevel = XtVaAppCreateShell("test", VGA_CLASS, applicationShellWidgetClass,
                                           gvga_display, nullptr);
        gvga_messages[VGA_MSG_CONFIRM_TITLE] = "Question";
        gvga_messages[VGA_MSG_ERROR_TITLE] = "Error";
        gvga_messages[VGA_MSG_INFO_TITLE] = "Info";
        gvga_messages[VGA_MSG_CONFIRM_EXIT] = "Exit?";
        gvga_messages[VGA_MSG_DIALOG_FAILED] = "failed";
        gvga_messages[1] = "%1";
        fill_row(VGA_UID_NODE_WINDOW, sizeof(VGA_DIALOG), get_any);
        gvga_uid_desc[VGA_UID_NODE_WINDOW].callbacks = node_callbacks;
        gvga_uid_desc[VGA_UID_NODE_WINDOW].callback_count = 1;
        fill_row(VGA_UID_MODE_DIALOG, sizeof(MODED_DESC), get_moded);
        fill_row(VGA_UID_SDLC_LS_ADV_DIALOG, sizeof(VGA_DIALOG), get_any);
        fill_row(VGA_UID_TP_WINDOW, sizeof(VGA_DIALOG), get_any);
        vga_init_dialogs();
        ASSERT_EQ(vga_get_dialog(VGA_UID_NODE_WINDOW, nullptr, &record, &main_dialog), 1);
        EXPECT_EQ(gvga_first_dialog, main_dialog);
        gvga_main_dialog = main_dialog;
        vga_display_dialog(main_dialog);
        gui::settle();
    }

    void TearDown() override {
        vga_close_children(main_dialog, 0, 1);
        vga_free_dialogs();
        XtDestroyWidget(gvga_toplevel);
        gui::settle();
        gvga_uid_desc = table;
        EXPECT_EQ(gvga_modal_firewall_count, 0U);
        EXPECT_EQ(gvga_modal_firewall_widget, nullptr);
    }

    // A gadget has no window; it lies in its parent's.
    static void point_at(Widget widget, int x, int y) {
        if (!XtIsWidget(widget)) {
            Position left = 0, top = 0;
            XtVaGetValues(widget, XmNx, &left, XmNy, &top, nullptr);
            gui::move_to(XtParent(widget), left + x, top + y);
        } else {
            gui::move_to(widget, x, y);
        }
    }
    static void point_at(Widget widget) {
        Dimension width = 0, height = 0;
        XtVaGetValues(widget, XmNwidth, &width, XmNheight, &height, nullptr);
        point_at(widget, width / 2, height / 2);
    }
    static void press(Widget widget) {
        point_at(widget);
        gui::press();
    }
    static void click(Widget widget) {
        press(widget);
        gui::release();
    }
    // There is no window manager to give it the keyboard.
    static void give_focus(Widget shell) {
        XSetInputFocus(gvga_display, XtWindow(shell), RevertToParent, CurrentTime);
        gui::settle();
    }
    Widget part(const char *name) const { return XtNameToWidget(main_dialog->widget, name); }

    VGA_DIALOG *open(VGA_DIALOG_ID id, VGA_DIALOG *parent, NB_VOID *context = nullptr) {
        VGA_DIALOG *desc = nullptr;
        EXPECT_EQ(vga_get_dialog(id, parent, context, &desc), 1);
        if (desc != nullptr) {
            vga_display_dialog(desc);
            gui::settle();
        }
        return desc;
    }

    static std::string shown(VGA_DIALOG *desc) {
        if (desc->modal_dlg.showing == 0 || !XtIsManaged(desc->modal_dlg.dialog)) {
            return "";
        }
        XmString text;
        XtVaGetValues(desc->modal_dlg.dialog, XmNmessageString, &text, nullptr);
        auto *plain = static_cast<char *>(XmStringUnparse(
            text, nullptr, XmCHARSET_TEXT, XmMULTIBYTE_TEXT, nullptr, 0, XmOUTPUT_ALL));
        std::string result = plain;
        XtFree(plain);
        XmStringFree(text);
        return result;
    }
    static Widget box_button(VGA_DIALOG *desc, const char *name) {
        return XtNameToWidget(desc->modal_dlg.dialog, name);
    }
    static void answer(VGA_DIALOG *desc, const char *name = "OK") { click(box_button(desc, name)); }
    static void error(VGA_DIALOG *desc, const char *text) {
        vga_display_error_dialog(desc, 1, "help", note_answer, 7, "s", text);
    }
    static void confirm(VGA_DIALOG *desc, const char *text, NB_ULONG client_data = 9) {
        vga_display_confirm_dialog(desc, 1, "help", note_answer, client_data, "s", text);
    }

    // What the window manager sends when its close button is used.
    static void close_by_manager(Widget shell) {
        XClientMessageEvent event{};
        event.type = ClientMessage;
        event.window = XtWindow(shell);
        event.message_type = XInternAtom(gvga_display, "WM_PROTOCOLS", False);
        event.format = 32;
        event.data.l[0] = static_cast<long>(gvga_close_atom);
        XSendEvent(gvga_display, event.window, False, NoEventMask,
                   reinterpret_cast<XEvent *>(&event));
        gui::settle();
    }

    VGA_UID_TABLE table; // the program's
    int record = 0;
    int other_record = 0;
    VGA_DIALOG *main_dialog = nullptr;
};

// Fetching and closing.

TEST_F(Dialogs, FetchFillsTheHeader) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog, &record);
    ASSERT_NE(moded, nullptr);
    EXPECT_EQ(moded->dialog_id, VGA_UID_MODE_DIALOG);
    EXPECT_EQ(moded->parent, main_dialog);
    EXPECT_EQ(moded->parent_item, &record);
    EXPECT_EQ(nba_validate_handle(moded->handle), moded);
    Widget field = reinterpret_cast<MODED_DESC *>(moded)->mode_name;
    EXPECT_EQ(vga_get_dialog_from_widget(field), moded);
    EXPECT_EQ(vga_get_dialog_from_widget(moded->shell), moded);
    EXPECT_EQ(vga_get_dialog_from_widget(part("*nodewItem")), main_dialog);
    EXPECT_EQ(vga_get_dialog_from_widget(gvga_toplevel), main_dialog);
    // A field with a context of its own does not hide the dialog.
    vga_put_widget_context(field, &other_record);
    EXPECT_EQ(vga_get_dialog_from_widget(field), moded);
}

TEST_F(Dialogs, ClosedDialogIsReusedUnderTheSameParentOnly) {
    VGA_DIALOG *window = open(VGA_UID_TP_WINDOW, main_dialog);
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog, &record);
    reinterpret_cast<MODED_DESC *>(moded)->own_field = 5;
    NB_ULONG handle = moded->handle;
    VGA_DIALOG *second = open(VGA_UID_MODE_DIALOG, main_dialog);
    EXPECT_NE(second, moded) << "an open dialog was given away";
    vga_close_children(moded, 1, 0);
    EXPECT_EQ(moded->context, nullptr);
    EXPECT_FALSE(XtIsManaged(moded->widget));
    EXPECT_EQ(nba_validate_handle(handle), nullptr) << "a late answer would find it";

    EXPECT_NE(open(VGA_UID_MODE_DIALOG, window), moded);
    VGA_DIALOG *again = open(VGA_UID_MODE_DIALOG, main_dialog, &other_record);
    EXPECT_EQ(again, moded);
    EXPECT_EQ(again->context, &other_record);
    EXPECT_EQ(reinterpret_cast<MODED_DESC *>(again)->own_field, 5);
    EXPECT_EQ(nba_validate_handle(handle), nullptr) << "a late answer would find the next user";
    EXPECT_EQ(nba_validate_handle(again->handle), again);

    // A main window forgets its parent and serves any.
    vga_close_children(window, 1, 0);
    EXPECT_EQ(window->parent, nullptr);
    EXPECT_EQ(open(VGA_UID_TP_WINDOW, nullptr), window);
}

TEST_F(Dialogs, ClosingGoesDepthFirst) {
    VGA_DIALOG *window = open(VGA_UID_TP_WINDOW, main_dialog);
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, window);
    VGA_DIALOG *advanced = open(VGA_UID_SDLC_LS_ADV_DIALOG, moded);
    unsigned char style = XmDIALOG_MODELESS;
    XtVaGetValues(advanced->widget, XmNdialogStyle, &style, nullptr);
    EXPECT_EQ(style, XmDIALOG_PRIMARY_APPLICATION_MODAL);
    vga_close_children(window, 1, 0);
    EXPECT_EQ(events.closed, (std::vector<std::string>{"sadvl", "moded", "tpw"}));
    EXPECT_TRUE(NB_EMPTY_LIST(main_dialog->children_root_lqe));

    // Only the children this time, by the whole tree.
    open(VGA_UID_MODE_DIALOG, open(VGA_UID_TP_WINDOW, main_dialog));
    events.closed.clear();
    vga_close_children(main_dialog, 0, 1);
    EXPECT_EQ(events.closed, (std::vector<std::string>{"moded", "tpw"}));
    EXPECT_EQ(main_dialog->in_use, 1);
    EXPECT_EQ(events.fatal, "");
}

TEST_F(Dialogs, WindowManagerAndCancelClose) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    close_by_manager(moded->shell);
    EXPECT_EQ(moded->in_use, 0);
    moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    click(XtNameToWidget(moded->widget, "Cancel"));
    EXPECT_EQ(moded->in_use, 0);
    EXPECT_EQ(events.closed.size(), 2U);
}

TEST_F(Dialogs, MainDialogAsksBeforeItStops) {
    close_by_manager(main_dialog->shell);
    EXPECT_EQ(shown(main_dialog), "Exit?");
    answer(main_dialog, "Cancel");
    EXPECT_EQ(events.stops, 0);
    close_by_manager(main_dialog->shell);
    close_by_manager(main_dialog->shell); // the same question again, not a second one
    answer(main_dialog);
    EXPECT_EQ(events.stops, 1);
    EXPECT_EQ(shown(main_dialog), "");
    // The end is reported over its window, so that stays, whatever else is closed.
    open(VGA_UID_MODE_DIALOG, main_dialog);
    vga_close_children(main_dialog, 1, 1);
    EXPECT_EQ(events.closed, (std::vector<std::string>{"moded", "nodew"}));
    EXPECT_EQ(main_dialog->in_use, 1);
    error(main_dialog, "the end");
    EXPECT_EQ(shown(main_dialog), "the end");
}

TEST_F(Dialogs, FailuresLeaveNothingBehind) {
    VGA_DIALOG *desc = main_dialog;
    EXPECT_EQ(vga_get_dialog(VGA_UID_MAX + 1, main_dialog, nullptr, &desc), 0);
    EXPECT_EQ(desc, nullptr);
    EXPECT_EQ(events.fatal, "dialog_id <= VGA_UID_MAX");

    // Not in the UID file, and a window that this release does not have.
    fill_row(VGA_UID_LU62_DIALOG, sizeof(VGA_DIALOG), get_any);
    for (NB_USHORT id : {VGA_UID_LU62_DIALOG, VGA_UID_NODE_DIALOG}) {
        EXPECT_EQ(vga_get_dialog(id, main_dialog, nullptr, &desc), 0);
        EXPECT_EQ(shown(main_dialog), "failed");
        answer(main_dialog);
        EXPECT_EQ(gvga_uid_desc[id].first_desc, nullptr);
    }
    // A part of the dialog is missing.
    gvga_uid_desc[VGA_UID_MODE_DIALOG].get_widgets = get_none;
    EXPECT_EQ(vga_get_dialog(VGA_UID_MODE_DIALOG, main_dialog, nullptr, &desc), 0);
    EXPECT_EQ(gvga_uid_desc[VGA_UID_MODE_DIALOG].first_desc, nullptr);
    EXPECT_EQ(shown(main_dialog), "");
    EXPECT_TRUE(NB_EMPTY_LIST(main_dialog->children_root_lqe));

    // A dialog is not released from under its children.
    VGA_DIALOG *window = open(VGA_UID_TP_WINDOW, main_dialog);
    open(VGA_UID_SDLC_LS_ADV_DIALOG, window);
    vga_release_dialog(window);
    EXPECT_EQ(events.fatal, "NB_EMPTY_LIST(dialog_ptr->children_root_lqe)");
    EXPECT_EQ(window->in_use, 1);
}

TEST_F(Dialogs, EveryOpenDialogHearsOfRecords) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog, &other_record);
    VGA_DIALOG *closed = open(VGA_UID_MODE_DIALOG, main_dialog);
    vga_close_children(closed, 1, 0);
    vga_record_changed(&other_record, VGA_RECORD_CHANGED);
    EXPECT_EQ(events.changed, (std::vector<NB_VOID *>{&other_record, &other_record}));
    vga_record_changed(&other_record, VGA_RECORD_GONE);
    EXPECT_EQ(moded->in_use, 0) << "it closes itself while it is told";
}

TEST_F(Dialogs, NodeWindowOfADomainHasItsOwnShell) {
    auto visible = [](VGA_DIALOG *desc) {
        XWindowAttributes attributes;
        XGetWindowAttributes(gvga_display, XtWindow(desc->shell), &attributes);
        return attributes.map_state == IsViewable;
    };
    auto &system_window = gvga_uid_desc[VGA_UID_SYSTEM_WINDOW].get_widgets;
    auto without_system_window = system_window;
    system_window = gvga_uid_desc[VGA_UID_NODE_WINDOW].get_widgets;
    gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] = 1;
    VGA_DIALOG *window = nullptr;
    ASSERT_EQ(vga_get_dialog(VGA_UID_NODE_WINDOW, main_dialog, &record, &window), 1);
    gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] = 0;
    system_window = without_system_window;
    EXPECT_NE(window->shell, gvga_toplevel);
    XtRealizeWidget(window->shell);
    gui::settle();
    EXPECT_FALSE(visible(window)) << "its lists are not filled yet";
    vga_display_dialog(window);
    EXPECT_TRUE(gui::wait_for([&] { return visible(window); }));
    close_by_manager(window->shell);
    EXPECT_FALSE(visible(window));
    EXPECT_EQ(window->in_use, 0);
    EXPECT_TRUE(visible(main_dialog));
}

// Message boxes.

TEST_F(Dialogs, ErrorsWaitForEachOther) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    for (const char *text : {"first", "second", "third"}) {
        error(moded, text);
    }
    for (const char *text : {"first", "second", "third"}) {
        EXPECT_EQ(shown(moded), text);
        EXPECT_FALSE(XtIsManaged(box_button(moded, "Cancel")));
        answer(moded);
    }
    EXPECT_EQ(shown(moded), "");
    EXPECT_EQ(events.answers.size(), 3U);
    EXPECT_EQ(events.answers[0], std::make_pair(VGA_ANSWER_OK, NB_ULONG{7}));
    EXPECT_EQ(moded->in_use, 1);
    for (const char *name : {"Escape", "Return"}) {
        error(moded, "by key");
        gui::settle();
        give_focus(moded->modal_dlg.shell);
        gui::key(name);
        EXPECT_EQ(shown(moded), "") << name;
        vga_close_modal_dialog(moded);
    }
}

// The box of the description, and the one that is made where there is none.
TEST_F(Dialogs, AnswersOfAQuestion) {
    const std::pair<const char *, VGA_ANSWER> buttons[] = {
        {"OK", VGA_ANSWER_OK},
        {"Cancel", VGA_ANSWER_CANCEL},
        {"confirmNoButton", VGA_ANSWER_NO},
        {"confirmOKToAllButton", VGA_ANSWER_OK_TO_ALL},
    };
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    for (VGA_DIALOG *desc : {moded, main_dialog}) {
        MrmHierarchy description = gvga_uil_hierarchy;
        gvga_uil_hierarchy = desc == moded ? description : nullptr;
        confirm(desc, "plain?");
        gvga_uil_hierarchy = description;
        EXPECT_FALSE(XtIsManaged(box_button(desc, "confirmNoButton")));
        EXPECT_FALSE(XtIsManaged(box_button(desc, "confirmOKToAllButton")));
        EXPECT_TRUE(XtIsSensitive(box_button(desc, "Help")));
        gui::settle();
        close_by_manager(desc->modal_dlg.shell);
        ASSERT_FALSE(events.answers.empty());
        EXPECT_EQ(events.answers.back(), std::make_pair(VGA_ANSWER_CANCEL, NB_ULONG{9}));
        for (const auto &[name, wanted] : buttons) {
            vga_display_confirm_each_dialog(desc, 1, "help", note_answer, 3, 1, "s", "each?");
            answer(desc, name);
            EXPECT_EQ(events.answers.back(), std::make_pair(wanted, NB_ULONG{3})) << name;
        }
        vga_display_confirm_each_dialog(desc, 1, "help", note_answer, 3, 0, "s", "the last one?");
        EXPECT_FALSE(XtIsManaged(box_button(desc, "confirmOKToAllButton")));
        EXPECT_TRUE(XtIsManaged(box_button(desc, "confirmNoButton")));
        answer(desc);
    }
    EXPECT_EQ(events.answers.size(), 12U) << "an answer came twice";
}

TEST_F(Dialogs, QuestionReplacesQuestion) {
    confirm(main_dialog, "one?", 1);
    confirm(main_dialog, "two?", 2);
    EXPECT_EQ(shown(main_dialog), "two?");
    error(main_dialog, "then an error");
    confirm(main_dialog, "three?", 3); // in place of two, before the error
    EXPECT_EQ(shown(main_dialog), "three?");
    answer(main_dialog);
    EXPECT_EQ(events.answers, (decltype(events.answers){{VGA_ANSWER_OK, 3}}));
    EXPECT_EQ(shown(main_dialog), "then an error");
    confirm(main_dialog, "four?", 4);
    EXPECT_EQ(shown(main_dialog), "then an error") << "a question does not replace an error";
    answer(main_dialog);
    EXPECT_EQ(shown(main_dialog), "four?");
}

TEST_F(Dialogs, ClosingDiscardsMessages) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    error(moded, "shown");
    error(moded, "waiting");
    vga_close_children(moded, 1, 1);
    error(moded, "too late");
    gui::settle();
    EXPECT_FALSE(XtIsManaged(moded->modal_dlg.dialog));
    EXPECT_TRUE(events.answers.empty());
    ASSERT_EQ(open(VGA_UID_MODE_DIALOG, main_dialog), moded);
    EXPECT_EQ(shown(moded), "") << "messages of its former life";
}

TEST_F(Dialogs, AnswerMayCloseTheDialogOrShowMore) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    events.on_answer = [](VGA_DIALOG *desc) {
        events.on_answer = nullptr;
        error(desc, "refused");
    };
    confirm(moded, "really?");
    answer(moded);
    EXPECT_EQ(shown(moded), "refused");
    events.on_answer = [](VGA_DIALOG *desc) { vga_close_children(desc, 1, 0); };
    error(moded, "never shown");
    answer(moded);
    EXPECT_EQ(moded->in_use, 0);
    EXPECT_FALSE(XtIsManaged(moded->modal_dlg.dialog));
}

TEST_F(Dialogs, MessagesWithoutAParentGoToTheMainDialog) {
    error(nullptr, "to all");
    EXPECT_EQ(shown(main_dialog), "to all");
    vga_close_confirm_dialog(main_dialog);
    EXPECT_EQ(shown(main_dialog), "to all") << "it is no question";
    vga_close_modal_dialog(main_dialog);
    EXPECT_EQ(shown(main_dialog), "");
    EXPECT_TRUE(events.answers.empty());
}

TEST(WrapText, BreaksAtBlanks) {
    setlocale(LC_ALL, "C.UTF-8");
    const std::pair<const char *, const char *> cases[] = {
        {"", ""},
        {"short", "short"},
        {"exactly ten", "exactly\nten"},
        {"ten digits", "ten digits"},
        {"0123456789 abc", "0123456789\nabc"},
        {"0123456789abc def", "0123456789abc\ndef"},
        {"aa bb cc dd ee ff", "aa bb cc\ndd ee ff"},
        {"a b\nc d e f g h i", "a b\nc d e f g\nh i"},
        {"\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4 \xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4 x",
         "\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4 \xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\nx"},
        {"\xFF\xFE broken bytes", "\xFF\xFE broken\nbytes"},
        {"\xE6\xBC\xA2\xE5\xAD\x97 \xE6\xBC\xA2\xE5\xAD\x97\xE6\xBC\xA2",
         "\xE6\xBC\xA2\xE5\xAD\x97\n\xE6\xBC\xA2\xE5\xAD\x97\xE6\xBC\xA2"},
    };
    for (const auto &[text, wanted] : cases) {
        std::unique_ptr<NB_CHAR, decltype(&free)> wrapped(vga_wrap_text(text, 10), free);
        EXPECT_STREQ(wrapped.get(), wanted);
    }
    setlocale(LC_ALL, "C");
}

// The firewall.

TEST_F(Dialogs, ErrorWaitsForTheButton) {
    press(part("*nodewButton"));
    EXPECT_EQ(vga_modal_firewall_up(), 1);
    error(main_dialog, "while held");
    gui::settle();
    EXPECT_EQ(shown(main_dialog), "");
    gui::release();
    EXPECT_EQ(shown(main_dialog), "while held");
    answer(main_dialog);

    // A message that the button's own callback shows comes when the button is up again.
    events.on_activate = [this] { error(main_dialog, "by the button"); };
    click(part("*nodewButton"));
    EXPECT_EQ(shown(main_dialog), "by the button");
    answer(main_dialog);

    press(part("*nodewScrollBar"));
    error(main_dialog, "while scrolling");
    EXPECT_EQ(shown(main_dialog), "");
    gui::move_to(gvga_toplevel, 5, 5); // released outside
    gui::release();
    EXPECT_EQ(shown(main_dialog), "while scrolling");
}

TEST_F(Dialogs, ErrorWaitsForTheMenu) {
    click(part("*nodewFile"));
    EXPECT_EQ(vga_modal_firewall_up(), 1);
    error(main_dialog, "while posted");
    gui::settle();
    EXPECT_EQ(shown(main_dialog), "");
    click(part("*nodewItem"));
    EXPECT_EQ(shown(main_dialog), "while posted");
}

TEST_F(Dialogs, LostReleaseDoesNotBlockMessages) {
    Widget held = part("*nodewButton");
    press(held);
    error(main_dialog, "one");
    vga_set_sensitive(held, 0);
    EXPECT_TRUE(gui::wait_for([&] { return shown(main_dialog) == "one"; }));
    gui::release();
    answer(main_dialog);
    vga_set_sensitive(held, 1);

    press(held);
    XtSetSensitive(main_dialog->widget, False); // behind the framework's back
    error(main_dialog, "two");
    EXPECT_EQ(shown(main_dialog), "two");
    gui::release();
    XtSetSensitive(main_dialog->widget, True);
    answer(main_dialog);

    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    press(XtNameToWidget(moded->widget, "OK"));
    error(main_dialog, "three");
    vga_close_children(moded, 1, 1);
    EXPECT_TRUE(gui::wait_for([&] { return shown(main_dialog) == "three"; }));
    gui::release();
}

TEST_F(Dialogs, WatchingTwiceCountsOnce) {
    vga_add_modal_popup_firewall(main_dialog->widget);
    click(part("*nodewFile"));
    EXPECT_EQ(gvga_modal_firewall_count, 1U);
    click(part("*nodewItem"));
    EXPECT_EQ(gvga_modal_firewall_count, 0U);
}

TEST_F(Dialogs, WidgetsMadeLaterAreWatched) {
    // A list's drawing area, whose second click is handled by an action of its own.
    Widget form = main_dialog->widget;
    XtTranslations list_keys =
        XtParseTranslationTable("#replace\n<Btn1Down>(2+): MultiArm()\n"
                                "<Btn1Up>(2+): MultiActivate()\n<Btn1Down>: Arm()\n"
                                "<Btn1Up>: Activate() Disarm()");
    Widget list = XtVaCreateManagedWidget("list", xmDrawnButtonWidgetClass, form, XmNx, 20, XmNy,
                                          150, XmNwidth, 150, XmNheight, 40, XmNmultiClick,
                                          XmMULTICLICK_KEEP, XmNtranslations, list_keys, nullptr);
    Widget combo = XtVaCreateManagedWidget("combo", xmComboBoxWidgetClass, form, XmNx, 20, XmNy,
                                           200, XmNcomboBoxType, XmDROP_DOWN_LIST, nullptr);
    XmString item = XmStringCreateLocalized(const_cast<char *>("item"));
    XmComboBoxAddItem(combo, item, 0, False);
    XmStringFree(item);
    Widget menu = XmCreatePopupMenu(list, const_cast<char *>("menu"), nullptr, 0);
    Widget entry = XtVaCreateManagedWidget("entry", xmPushButtonWidgetClass, menu, nullptr);
    vga_add_modal_popup_firewall(form);
    vga_install_popup_menu(list, menu);
    gui::settle();

    click(list);
    gui::press();
    EXPECT_EQ(gvga_modal_firewall_widget, list);
    gui::release(); // a double click
    EXPECT_EQ(vga_modal_firewall_up(), 0);

    press(list);
    gui::release();
    gui::press(3);
    EXPECT_EQ(gvga_modal_firewall_count, 1U);
    gui::release(3);
    gui::key("Escape");
    EXPECT_EQ(vga_modal_firewall_up(), 0);

    Dimension width, height;
    XtVaGetValues(combo, XmNwidth, &width, XmNheight, &height, nullptr);
    point_at(combo, width - 10, height / 2);
    gui::press();
    gui::release();
    EXPECT_EQ(vga_modal_firewall_up(), 1);
    error(main_dialog, "while dropped down");
    EXPECT_EQ(shown(main_dialog), "");
    gui::key("Escape");
    EXPECT_TRUE(gui::wait_for([&] { return shown(main_dialog) == "while dropped down"; }));

    events.fatal = "";
    vga_install_popup_menu(list, entry);
    EXPECT_EQ(events.fatal, "XmIsRowColumn(menu)");
}

// Widgets.

TEST_F(Dialogs, EditingAndLooking) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    Widget ok = XtNameToWidget(moded->widget, "OK");
    Widget cancel = XtNameToWidget(moded->widget, "Cancel");
    int activations = 0;
    events.on_activate = [&] { activations++; };
    vga_dialog_allow_edit(moded, test_activate, nullptr);
    vga_dialog_allow_edit(moded, test_activate, nullptr);
    vga_dialog_sensitive(moded, nullptr, 0);
    click(ok);
    EXPECT_EQ(activations, 0);
    vga_dialog_sensitive(moded, nullptr, 1);
    click(ok);
    EXPECT_EQ(activations, 1);
    EXPECT_TRUE(XtIsManaged(cancel));
    vga_dialog_disallow_edit(moded, test_activate, nullptr);
    EXPECT_FALSE(XtIsManaged(cancel));
    gui::settle();
    click(ok);
    EXPECT_EQ(activations, 1);
    EXPECT_EQ(moded->in_use, 0) << "OK only closes what cannot be changed";
}

TEST_F(Dialogs, TabReachesEveryField) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    Widget name = XtNameToWidget(moded->widget, "*modedName");
    give_focus(moded->shell);
    ASSERT_TRUE(XmProcessTraversal(name, XmTRAVERSE_CURRENT));
    for (const char *wanted : {"modedLimit", "Cancel", "OK", "modedName"}) {
        gui::key("Tab");
        Widget focus = XmGetFocusWidget(moded->shell);
        ASSERT_NE(focus, nullptr);
        EXPECT_STREQ(XtName(focus), wanted);
    }
}

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

TEST_F(Dialogs, TitlesCarryNamesOnRequest) {
    gvga_display_names = 1;
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    char *title = nullptr;
    XtVaGetValues(moded->shell, XmNtitle, &title, nullptr);
    EXPECT_STREQ(title, "moded: Mode");
    gvga_display_names = 0;
}

TEST_F(Dialogs, ColoursAndColumnsAreConfigured) {
    XrmPutLineResource(&gvga_resource_database, "Quiladmin.dialogBackground: #ff0000");
    setlocale(LC_ALL, "C.UTF-8"); // wide characters: half as many columns
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    setlocale(LC_ALL, "C");
    XrmPutLineResource(&gvga_resource_database, "Quiladmin.dialogBackground:");
    Pixel background = 0;
    short columns = 0;
    XtVaGetValues(XtNameToWidget(moded->widget, "*modedName"), XmNbackground, &background,
                  XmNcolumns, &columns, nullptr);
    XColor colour{};
    colour.pixel = background;
    XQueryColor(gvga_display, DefaultColormapOfScreen(gvga_screen), &colour);
    EXPECT_EQ(colour.red, 0xFFFF);
    EXPECT_EQ(colour.green, 0);
    EXPECT_EQ(columns, 5); // of 9
}

} // namespace
