/* What the tests of windows and dialogs share: descriptions that are compiled when the tests begin,
 * rows of the table that the tests fill in, and a window on the screen for each test. */
#ifndef DIALOG_SUPPORT_H
#define DIALOG_SUPPORT_H

#include "commonnames.h"
#include "dialogids.h"
#include "gui_support.h"

#include "firewall.h"
#include "hooks.h"
#include "messages.h"
#include "toolkit.h"
#include "vgadgutl.h"

#include <X11/extensions/XTest.h>
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

namespace dialogs {

inline const char uil_source[] = R"(module dialogtest
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
    explicit DESCRIPTION(const char *source = uil_source) {
        char name[] = "/tmp/dialogXXXXXX";
        folder = mkdtemp(name);
        std::ofstream(folder / "test.uil") << source;
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
    std::function<NB_VOID()> on_activate;
    std::function<NB_VOID(VGA_DIALOG *)> on_answer;
    std::string fatal;
    int stops = 0;
};
inline EVENTS events;

struct MODED_DESC {
    VGA_DIALOG common;
    Widget mode_name;
    int own_field;
};

inline NB_USHORT get_any(VGA_DIALOG *) {
    return 1;
}
inline NB_USHORT get_none(VGA_DIALOG *) {
    return 0;
}
inline NB_USHORT get_moded(VGA_DIALOG *desc) {
    auto *moded = reinterpret_cast<MODED_DESC *>(desc);
    moded->mode_name = XtNameToWidget(desc->widget, "*modedName");
    return moded->mode_name != nullptr;
}
inline NB_VOID note_close(VGA_DIALOG *desc) {
    EXPECT_EQ(nba_validate_handle(desc->handle), desc);
    events.closed.push_back(gvga_uid_desc[desc->dialog_id].name);
}
inline NB_VOID note_answer(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG client_data) {
    events.answers.emplace_back(answer, client_data);
    if (events.on_answer) {
        events.on_answer(desc);
    }
}
inline NB_VOID note_change(VGA_DIALOG *desc, NB_VOID *item, VGA_RECORD_CHANGE what) {
    if (what == VGA_RECORD_GONE && desc->parent_item == item) {
        vga_close_children(desc, 1, 1);
    }
}
inline NB_VOID note_fatal(const NB_CHAR *, NB_INT, const NB_CHAR *text) {
    events.fatal = text;
}
inline NB_VOID note_stop() {
    events.stops++;
}
inline NB_VOID test_activate(Widget, XtPointer, XtPointer) {
    if (events.on_activate) {
        events.on_activate();
    }
}

inline MRMRegisterArg node_callbacks[] = {
    {const_cast<char *>("test_activate"), reinterpret_cast<XtPointer>(test_activate)}};

// The window of that row is the test's own; nothing of the program's window is left.
inline NB_VOID fill_row(VGA_DIALOG_ID id, NB_USHORT size, NB_USHORT (*get_widgets)(VGA_DIALOG *)) {
    VGA_UID_DESC row = {id, "", gvga_uid_desc[id].kind, size, get_widgets, note_close};
    memcpy(row.name, gvga_uid_desc[id].name, sizeof(row.name));
    row.record_changed = note_change;
    gvga_uid_desc[id] = row;
}

class Dialogs : public testing::Test {
protected:
    static void SetUpTestSuite() {
        if (gvga_uil_hierarchy != nullptr) {
            return; // of another suite
        }
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

    static std::string shown(VGA_DIALOG *desc) { return gui::box_text(desc); }
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

} // namespace dialogs

#endif
