// The session limits as an operator meets them: the program's own descriptions and messages, a
// small model, real mouse and keys, and a verb interface that answers when the test says so.

#include "nodew_fixture.h"

#include "../core/scriptednof.h"
#include "dialogids.h"
#include "forms.h"
#include "nofverbs.h"

SCRIPTED_NOF_ENTRY

namespace {

class SessionLimits : public NodeWindow {
protected:
    void SetUp() override {
        NodeWindow::SetUp();
        vga_init_verb_queues();
        scripted_nof.reset();
        gvga_supported[VGA_SUPPORTED_APPLY] = 1;
        show_node();
        node->target = 77;
        lu = vga_find_lu62_by_alias(node, reinterpret_cast<const NB_UCHAR *>("PAYROLL "));
        control_points = add_mode("CPSVCMG", NAP_MODE_CONTROL_POINT);
        mode = add_mode("PAYMODE", 0);
        gui::settle();
    }

    void TearDown() override {
        vga_empty_verb_queues();
        NodeWindow::TearDown();
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

    // A double click on the second mode, which stands below two LUs and the first one.
    VGA_FORM *open_by_mouse() {
        click_line(VGA_NODEW_MIDDLE_PANE, 3);
        gui::press();
        gui::release();
        EXPECT_NE(mode->gui_data.dialog, nullptr);
        return adopt(mode->gui_data.dialog);
    }
    VGA_FORM *adopt(VGA_DIALOG *dialog) {
        form = reinterpret_cast<VGA_FORM *>(dialog);
        if (dialog != nullptr) {
            gui::settle();
            gui::give_focus(dialog->shell);
        }
        return form;
    }
    Widget field(const char *name) const { return XtNameToWidget(form->common.widget, name); }
    std::string text(const char *name) const { return gui::field_text(field(name)); }
    void enter(const char *name, const char *value) const {
        XmTextFieldSetString(field(name), const_cast<char *>(value));
    }
    void answer_box() const {
        gui::give_focus(form->common.modal_dlg.shell);
        gui::key("Return");
    }
    static void push(Widget button) {
        XtCallCallbacks(button, XmNactivateCallback, nullptr);
        gui::settle();
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
    gui::key("1"); // in place of what is there
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

TEST_F(SessionLimits, ResetIsAskedFor) {
    ASSERT_NE(open_by_mouse(), nullptr);
    enter("*mdslsLimit", "0");
    push(form->apply_button);
    EXPECT_NE(gui::box_text(&form->common), "");
    answer_box(); // Return says Cancel where sessions are lost
    EXPECT_TRUE(scripted_nof.in_flight.empty());
    push(form->apply_button);
    push(XtNameToWidget(form->common.modal_dlg.dialog, "OK"));
    NAP_SESSION_LIMIT_VERB verb = issued();
    EXPECT_EQ(verb.sess_limit, 0);
    EXPECT_EQ(verb.min_conwinners, 0) << "without sessions there are no winners";
    EXPECT_EQ(verb.min_conlosers, 0);
    scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    gui::settle();
    EXPECT_NE(gui::box_text(&form->common).find("active"), std::string::npos)
        << gui::box_text(&form->common);
    EXPECT_EQ(mode->vcb->sess_limit, 16);
    answer_box();
    push(form->apply_button);
    push(XtNameToWidget(form->common.modal_dlg.dialog, "OK")); // the question again
    scripted_nof.complete();
    gui::settle();
    EXPECT_EQ(mode->vcb->sess_limit, 0);
    EXPECT_EQ(text("*mdslsWinners"), "0") << "as the node has it now";
}

TEST_F(SessionLimits, OfControlPointsAreOnlyShown) {
    ASSERT_NE(adopt(&vga_form_open(VGA_UID_SESS_LIMIT_DIALOG, &desc->common, control_points,
                                   nullptr, VGA_FORM_CHANGE)
                         ->common),
              nullptr);
    Boolean editable = True;
    XtVaGetValues(field("*mdslsLimit"), XmNeditable, &editable, nullptr);
    EXPECT_FALSE(editable);
    EXPECT_FALSE(XtIsManaged(form->apply_button));

    // Until another administrator changes the mode's definition.
    auto *definition =
        static_cast<VGA_MODE_DEF *>(ntl_avl_find(&node->mode_defs, control_points->key.mode_name));
    definition->vcb->mode_chars.mode_flags = 0;
    definition->vcb->mode_chars.max_neg_sess_lim = 18;
    vga_record_changed(definition, VGA_RECORD_CHANGED);
    XtVaGetValues(field("*mdslsLimit"), XmNeditable, &editable, nullptr);
    EXPECT_TRUE(editable);
    EXPECT_TRUE(XtIsManaged(form->apply_button));
    EXPECT_EQ(gui::label_text(field("*mdslsMaxLimit")), "18");
}

TEST_F(SessionLimits, DialogOutlivesTheMode) {
    ASSERT_NE(open_by_mouse(), nullptr);
    enter("*mdslsLimit", "15");
    push(XtNameToWidget(form->common.widget, "OK"));
    vga_delete_vga_mode(mode); // an indication was quicker than the answer
    EXPECT_NE(gui::box_text(&form->common), "");
    scripted_nof.complete(0, NAP_PARAMETER_CHECK, NAP_UNKNOWN_RESOURCE);
    gui::settle();
    EXPECT_EQ(form->common.in_use, 1);
    EXPECT_EQ(form->common.parent_item, nullptr);

    // A whole node goes, with everything in it.
    ASSERT_NE(adopt(&vga_form_open(VGA_UID_SESS_LIMIT_DIALOG, &desc->common, control_points,
                                   nullptr, VGA_FORM_CHANGE)
                         ->common),
              nullptr);
    vga_delete_vga_lu62(lu);
    EXPECT_EQ(form->common.parent_item, nullptr);
}

} // namespace
