// The session limits as an operator meets them: the program's own descriptions and messages, a
// small model, real mouse and keys, and a verb interface that answers when the test says so.

#include "gui_windows.h"
#include "testrecords.h"

#include "../unit/scriptednof.h"
#include "nofverbs.h"
#include "toolkit.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vgaglob.h"
#include "vgagraph.h"
#include "vgamdsls.h"
#include "vgamsgs.h"
#include "vganodew.h"
#include "vgauidds.h"
#include "vgawtype.h"

#include <Xm/MessageB.h>
#include <Xm/TextF.h>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

SCRIPTED_NOF_ENTRY

namespace {

class SessionLimits : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static gui::PREFIX prefix;
        nba_pd_set_log("/dev/null", NB_PD_ALL);
        ASSERT_EQ(vga_load_messages(), 1);
        gui::open_windows();
    }

    void SetUp() override {
        vga_init_verb_queues();
        scripted_nof.reset();
        gvga_supported[VGA_SUPPORTED_APPLY] = 1;
        gvga_toplevel = XtVaAppCreateShell("quiladmin", VGA_CLASS, applicationShellWidgetClass,
                                           gvga_display, nullptr);
        vga_init_dialogs();
        gvga_system = vga_init_vga_system();
        ASSERT_EQ(vga_display_node_window(nullptr, 1), 1);
        window = gvga_main_dialog = gvga_first_dialog;
        gui::show(gvga_toplevel);
        make_model();
        ASSERT_EQ(vga_display_node_window(node, 1), 1);
        gui::settle();
    }

    void TearDown() override {
        vga_empty_verb_queues();
        vga_destroy_data_structures();
        vga_free_dialogs();
        XtDestroyWidget(gvga_toplevel);
        gvga_first_dialog = nullptr;
        gui::settle();
    }

    VGA_MODE *add_mode(const char *name, NB_UCHAR flags) {
        auto definition = new_entry<NAP_MODE_DEF_DATA>();
        set_ebcdic(definition.mode_name, name);
        definition.mode_chars.max_neg_sess_lim = 20;
        definition.mode_chars.mode_flags = flags;
        vga_insert_vga_mode_def(vga_init_vga_mode_def(node, &definition));
        auto mode = new_entry<NAP_MODE_DATA>();
        set_local(mode.lu_alias, "PAYROLL");
        set_ebcdic(mode.mode_name, name);
        set_ebcdic(mode.fqplu_name, "NETA.LEDGER");
        mode.act_sess_count = 3;
        mode.sess_limit = 16;
        mode.min_conwinners = 8;
        mode.min_conlosers = 4;
        return vga_insert_vga_mode(vga_init_vga_mode(lu, &mode));
    }

    void make_model() {
        auto data = new_entry<NAP_NODE_ALL_DATA>();
        strcpy(reinterpret_cast<char *>(data.node_name), "berlin");
        data.info.node_state = NAP_NODE_ACTIVE;
        node = vga_insert_vga_node(vga_init_vga_node(&data));
        node->target = 77;
        auto local_lu = new_entry<NAP_LOCAL_LU_DATA>();
        set_ebcdic(local_lu.lu_name, "PAYLU");
        set_local(local_lu.def_data.lu_alias, "PAYROLL");
        lu = vga_insert_vga_lu62(vga_init_vga_lu62(node, &local_lu));
        control_points = add_mode("CPSVCMG", NAP_MODE_CONTROL_POINT);
        mode = add_mode("PAYMODE", 0);
    }

    // A double click on the second mode, which stands below the LU and the first one.
    VGA_FORM *open_by_mouse() {
        Widget list = reinterpret_cast<VGA_NODEW_DESC *>(window)->panes[1].draw_area;
        int y = static_cast<int>(2 * gvga_viewer_item_height + gvga_viewer_item_height / 2);
        gui::click(list, 120, y);
        gui::press();
        gui::release();
        EXPECT_NE(mode->gui_data.dialog, nullptr);
        return adopt(mode->gui_data.dialog);
    }
    VGA_FORM *adopt(VGA_DIALOG *dialog) {
        form = reinterpret_cast<VGA_FORM *>(dialog);
        if (dialog != nullptr) {
            gui::settle();
            XSetInputFocus(gvga_display, XtWindow(dialog->shell), RevertToParent, CurrentTime);
            gui::settle();
        }
        return form;
    }
    Widget field(const char *name) const { return XtNameToWidget(form->common.widget, name); }
    std::string text(const char *name) const {
        char *value = XmTextFieldGetString(field(name));
        std::string result = value;
        XtFree(value);
        return result;
    }
    void enter(const char *name, const char *value) const {
        XmTextFieldSetString(field(name), const_cast<char *>(value));
    }
    static std::string shown(const VGA_DIALOG &desc) {
        if (desc.modal_dlg.showing == 0) {
            return "";
        }
        XmString string;
        XtVaGetValues(desc.modal_dlg.dialog, XmNmessageString, &string, nullptr);
        auto *plain = static_cast<char *>(XmStringUnparse(
            string, nullptr, XmCHARSET_TEXT, XmMULTIBYTE_TEXT, nullptr, 0, XmOUTPUT_ALL));
        std::string result = plain;
        XtFree(plain);
        XmStringFree(string);
        return result;
    }
    void answer_box() const {
        XSetInputFocus(gvga_display, XtWindow(form->common.modal_dlg.shell), RevertToParent,
                       CurrentTime);
        gui::settle();
        gui::key("Return");
    }
    static NAP_SESSION_LIMIT_VERB issued() {
        NAP_SESSION_LIMIT_VERB verb = {};
        EXPECT_EQ(scripted_nof.in_flight.size(), 1U);
        if (!scripted_nof.in_flight.empty()) {
            EXPECT_EQ(scripted_nof.in_flight[0].vcb->opcode, NAP_CHANGE_SESSION_LIMIT);
            EXPECT_EQ(scripted_nof.in_flight[0].target, 77U);
            memcpy(&verb, scripted_nof.in_flight[0].vcb, sizeof(verb));
        }
        return verb;
    }

    VGA_DIALOG *window = nullptr;
    VGA_NODE *node = nullptr;
    VGA_LU62 *lu = nullptr;
    VGA_MODE *mode = nullptr;
    VGA_MODE *control_points = nullptr;
    VGA_FORM *form = nullptr;
};

TEST_F(SessionLimits, AreChangedByKeyboard) {
    ASSERT_NE(open_by_mouse(), nullptr);
    EXPECT_EQ(text("*mdslsLimit"), "16");
    gui::key("End");
    gui::key("BackSpace");
    gui::key("BackSpace");
    gui::key("9");
    EXPECT_EQ(text("*mdslsLimit"), "9");
    gui::key("Tab");
    gui::key("Tab");
    gui::key("End");
    gui::key("BackSpace");
    gui::key("1");
    gui::key("Return");
    NAP_SESSION_LIMIT_VERB verb = issued();
    EXPECT_EQ(memcmp(verb.lu_alias, mode->vcb->lu_alias, sizeof(verb.lu_alias)), 0);
    EXPECT_EQ(memcmp(verb.mode_name, mode->vcb->mode_name, sizeof(verb.mode_name)), 0);
    EXPECT_EQ(memcmp(verb.fqplu_name, mode->vcb->fqplu_name, sizeof(verb.fqplu_name)), 0);
    EXPECT_EQ(verb.sess_limit, 9);
    EXPECT_EQ(verb.min_conwinners, 8);
    EXPECT_EQ(verb.min_conlosers, 1);
    EXPECT_EQ(mode->vcb->sess_limit, 16) << "not before the node has said so";
    scripted_nof.complete();
    gui::settle();
    EXPECT_EQ(mode->vcb->sess_limit, 9);
    EXPECT_EQ(mode->gui_data.dialog, nullptr);
    EXPECT_EQ(form->common.in_use, 0);
}

TEST_F(SessionLimits, LettersPressButtons) {
    ASSERT_NE(open_by_mouse(), nullptr);
    gui::key("Tab");
    enter("*mdslsLimit", "9");
    gui::key("r", {"Alt_L"});
    EXPECT_EQ(text("*mdslsLimit"), "16");
    enter("*mdslsLimit", "15");
    gui::key("a", {"Alt_L"});
    EXPECT_EQ(issued().sess_limit, 15);
}

TEST_F(SessionLimits, BoundsDependOnEachOther) {
    ASSERT_NE(open_by_mouse(), nullptr);
    const struct {
        const char *limit, *winners, *losers, *says;
    } cases[] = {
        {"21", "8", "4", "from 0 to 20"}, // by the definition of the mode
        {"10", "11", "0", "from 0 to 10"},
        {"10", "8", "3", "from 0 to 2"},
        {"", "8", "3", "Enter the session limit"},
    };
    for (const auto &one : cases) {
        enter("*mdslsLimit", one.limit);
        enter("*mdslsWinners", one.winners);
        enter("*mdslsLosers", one.losers);
        vga_form_apply_cb(form->apply, nullptr, nullptr);
        // The text is broken into lines somewhere, without the blank there.
        std::string said = shown(form->common);
        std::string wanted = one.says;
        for (std::string *each : {&said, &wanted}) {
            std::erase(*each, ' ');
        }
        EXPECT_NE(said.find(wanted), std::string::npos) << said;
        vga_close_modal_dialog(&form->common);
    }
    EXPECT_TRUE(scripted_nof.in_flight.empty());
}

TEST_F(SessionLimits, ResetIsAskedFor) {
    ASSERT_NE(open_by_mouse(), nullptr);
    enter("*mdslsLimit", "0");
    vga_form_apply_cb(form->apply, nullptr, nullptr);
    EXPECT_NE(shown(form->common), "");
    EXPECT_TRUE(scripted_nof.in_flight.empty());
    answer_box();
    NAP_SESSION_LIMIT_VERB verb = issued();
    EXPECT_EQ(verb.sess_limit, 0);
    EXPECT_EQ(verb.min_conwinners, 0) << "without sessions there are no winners";
    EXPECT_EQ(verb.min_conlosers, 0);
    scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    gui::settle();
    EXPECT_NE(shown(form->common).find("active"), std::string::npos) << shown(form->common);
    EXPECT_EQ(mode->vcb->sess_limit, 16);
    answer_box();
    vga_form_apply_cb(form->apply, nullptr, nullptr);
    answer_box(); // the question again
    scripted_nof.complete();
    gui::settle();
    EXPECT_EQ(mode->vcb->sess_limit, 0);
    EXPECT_EQ(text("*mdslsWinners"), "0") << "as the node has it now";
}

TEST_F(SessionLimits, OfControlPointsAreOnlyShown) {
    ASSERT_NE(adopt(&vga_display_session_limits(window, control_points)->common), nullptr);
    Boolean editable = True;
    XtVaGetValues(field("*mdslsLimit"), XmNeditable, &editable, nullptr);
    EXPECT_FALSE(editable);
    EXPECT_FALSE(XtIsManaged(form->apply));
}

TEST_F(SessionLimits, DialogOutlivesTheMode) {
    ASSERT_NE(open_by_mouse(), nullptr);
    enter("*mdslsLimit", "15");
    vga_form_ok_cb(form->common.widget, nullptr, nullptr);
    vga_delete_vga_mode(mode); // an indication was quicker than the answer
    EXPECT_NE(shown(form->common), "");
    scripted_nof.complete(0, NAP_PARAMETER_CHECK, NAP_UNKNOWN_RESOURCE);
    gui::settle();
    EXPECT_EQ(form->common.in_use, 1);
    EXPECT_EQ(form->common.parent_item, nullptr);

    // A whole node goes, with everything in it.
    ASSERT_NE(adopt(&vga_display_session_limits(window, control_points)->common), nullptr);
    vga_delete_vga_lu62(lu);
    EXPECT_EQ(form->common.parent_item, nullptr);
}

} // namespace
