// What is peculiar to the dialog of session limits: bounds that depend on each other, the question
// before a reset, and rights that the definition of the mode gives.

#include "live_forms.h"

#include "forms.h"
#include "nofverbs.h"

SCRIPTED_NOF_ENTRY

using namespace forms;

namespace {

class SessionLimits : public LIVE_FORMS {
protected:
    void SetUp() override {
        LIVE_FORMS::SetUp();
        for (const PLACE &place : places_of(&vga_form_type<VGA_MODE>)) {
            auto *one = static_cast<VGA_MODE *>(place.record);
            mode = one->vcb->sess_limit == 32 ? one : mode; // of at most 64
        }
        ASSERT_NE(mode, nullptr);
        definition = static_cast<VGA_MODE_DEF *>(
            ntl_avl_find(&mode->parent->parent->mode_defs, mode->key.mode_name));
        ASSERT_NE(definition, nullptr);
        form = vga_form_open(VGA_UID_SESS_LIMIT_DIALOG, gvga_main_dialog, mode, nullptr,
                             VGA_FORM_CHANGE);
        ASSERT_NE(form, nullptr);
        gui::settle();
    }
    void apply() const { push(form->apply_button); }

    VGA_MODE *mode = nullptr;
    VGA_MODE_DEF *definition = nullptr;
    VGA_FORM *form = nullptr;
};

TEST_F(SessionLimits, BoundEachOther) {
    const struct {
        const char *limit, *winners, *losers;
        int refused; // field, or none
    } cases[] = {
        {"65", "0", "0", VGA_MDSLS_SESS_LIMIT},
        {"20", "21", "0", VGA_MDSLS_MIN_CONWINNERS},
        {"20", "15", "6", VGA_MDSLS_MIN_CONLOSERS},
        {"20", "15", "5", -1},
    };
    for (const auto &row : cases) {
        enter(form, VGA_MDSLS_SESS_LIMIT, row.limit);
        enter(form, VGA_MDSLS_MIN_CONWINNERS, row.winners);
        enter(form, VGA_MDSLS_MIN_CONLOSERS, row.losers);
        EXPECT_EQ(vga_form_collect(form, -1).field, row.refused) << row.limit << row.winners;
    }
    apply();
    ASSERT_EQ(in_flight(), 1);
    NAP_SESSION_LIMIT_VERB verb;
    memcpy(&verb, scripted_nof.in_flight[0].vcb, sizeof(verb));
    EXPECT_EQ(memcmp(verb.lu_alias, mode->vcb->lu_alias, sizeof(verb.lu_alias)), 0);
    EXPECT_EQ(memcmp(verb.mode_name, mode->vcb->mode_name, sizeof(verb.mode_name)), 0);
    EXPECT_EQ(memcmp(verb.fqplu_name, mode->vcb->fqplu_name, sizeof(verb.fqplu_name)), 0);
    EXPECT_EQ(mode->vcb->sess_limit, 32) << "not before the node has said so";
    run(1);
    EXPECT_EQ(mode->vcb->sess_limit, 20);
}

TEST_F(SessionLimits, ResetIsAskedFor) {
    enter(form, VGA_MDSLS_SESS_LIMIT, "0");
    for (const char *key : {"Return", "OK"}) { // Return says Cancel where sessions are lost
        apply();
        EXPECT_NE(box(form), "");
        if (key[0] == 'R') {
            gui::give_focus(form->common.modal_dlg.shell);
            gui::key(key);
        } else {
            answer_box(form, key);
        }
        EXPECT_EQ(in_flight(), key[0] == 'O');
    }
    run(1);
    EXPECT_EQ(mode->vcb->sess_limit, 0);
    EXPECT_EQ(mode->vcb->min_conwinners + mode->vcb->min_conlosers, 0) << "none without sessions";
    EXPECT_EQ(vga_form_field_text(form, VGA_MDSLS_MIN_CONWINNERS), "0") << "as the node has it now";
}

TEST_F(SessionLimits, OfControlPointsAreOnlyShown) {
    for (const NB_UCHAR flags : {NB_UCHAR{NAP_MODE_CONTROL_POINT}, NB_UCHAR{0}}) {
        definition->vcb->mode_chars.mode_flags = flags; // another administrator's change
        definition->vcb->mode_chars.max_neg_sess_lim = 48;
        vga_record_changed(definition, VGA_RECORD_CHANGED);
        EXPECT_EQ(vga_form_field_editable(form, VGA_MDSLS_SESS_LIMIT) != 0, flags == 0);
        EXPECT_EQ(XtIsManaged(form->apply_button) != 0, flags == 0);
        EXPECT_EQ(vga_form_field_text(form, VGA_MDSLS_MAX_NEG_SESS_LIM), "48");
    }
}

} // namespace
