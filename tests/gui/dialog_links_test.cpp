// The status of a link station, against the node software itself: what is asked when, and what is
// shown of the answers.

#include "live_forms.h"

#include "forms.h"
#include "vgaindct.h"

SCRIPTED_NOF_ENTRY

using namespace forms;

namespace {

class LinkStatus : public LIVE_FORMS {
protected:
    LinkStatus() { sample = "single"; }
    void SetUp() override {
        LIVE_FORMS::SetUp();
        node = static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes));
        ls = static_cast<VGA_LS *>(ntl_avl_find(&node->link_stations, "TELLER1 "));
        ASSERT_NE(ls, nullptr);
        form =
            vga_form_open(VGA_UID_LINK_DET_DIALOG, gvga_main_dialog, ls, nullptr, VGA_FORM_CHANGE);
        ASSERT_NE(form, nullptr);
        run(1);
    }

    std::string text(const char *name) const {
        return gui::label_text(XtNameToWidget(form->common.widget, name));
    }
    void choose_period(const char *name) const {
        Widget item = XtNameToWidget(form->common.widget, name);
        XtVaSetValues(form->period, XmNmenuHistory, item, nullptr);
        push(item);
    }
    std::string period() const {
        Widget item = nullptr;
        XtVaGetValues(form->period, XmNmenuHistory, &item, nullptr);
        return XtName(item);
    }
    /* Another administrator's verb about the link station. */
    NB_USHORT change(NB_USHORT opcode) const {
        NAP_NAME_VERB verb = {};
        verb.opcode = opcode;
        memcpy(verb.key, ls->name, sizeof(ls->name));
        verb.stop_type = NAP_IMMEDIATE_STOP;
        const auto *bytes = reinterpret_cast<const NB_UCHAR *>(&verb);
        std::vector<NB_UCHAR> block(bytes, bytes + sizeof(verb));
        domain->execute(node_targets, block);
        domain->pass(1000);
        return reinterpret_cast<const NAP_VCB *>(block.data())->primary_rc;
    }

    VGA_NODE *node = nullptr;
    VGA_LS *ls = nullptr;
    VGA_FORM *form = nullptr;
};

TEST_F(LinkStatus, IsAskedAnewByHandAndByItself) {
    const std::string opened = text("*linksInBytes");
    domain->pass(7000);
    EXPECT_EQ(text("*linksInBytes"), opened);
    push(form->refresh_button);
    EXPECT_EQ(text("*linksMessageLine"), "Waiting for corvid1...");
    push(form->refresh_button);
    EXPECT_EQ(in_flight(), 1);
    run(1);
    EXPECT_NE(text("*linksInBytes"), opened);
    EXPECT_EQ(text("*linksInBytes"), std::to_string(ls->vcb->det_data.in_bytes));
    EXPECT_EQ(text("*linksMessageLine").find("As of "), 0U);

    // What the node says by itself while an answer is under way leaves all in use.
    push(form->refresh_button);
    EXPECT_EQ(change(NAP_STOP_LS), NAP_OK);
    domain->take_indications([this](const std::string &, NAP_RESOURCE_INDICATION one) {
        VGA_PROCESS_STATE work = {node->target, reinterpret_cast<NAP_VCB *>(&one), node->handle};
        vga_dispatch_indication(&work);
    });
    EXPECT_EQ(text("*linksLsState"), "Inactive");
    EXPECT_TRUE(XtIsSensitive(XtNameToWidget(form->common.widget, "OK")));

    // A failure is told once, and ends the asking; what is known stays.
    choose_period("*linksPeriod5");
    scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    EXPECT_NE(box(form), "");
    EXPECT_EQ(period(), "linksPeriodNever");
    EXPECT_EQ(text("*linksLsState"), "Inactive");
    EXPECT_EQ(text("*linksMessageLine").find("As of "), 0U);

    run(1);
    choose_period("*linksPeriod5");
    EXPECT_TRUE(gui::wait_for([] { return in_flight() == 1; }, 8000));
    vga_close_children(&form->common, 1, 0);
    run(1);
    EXPECT_EQ(form->timer, 0U);
    form = vga_form_open(VGA_UID_LINK_DET_DIALOG, gvga_main_dialog, ls, nullptr, VGA_FORM_CHANGE);
    EXPECT_EQ(period(), "linksPeriodNever");
}

TEST_F(LinkStatus, AsksNoMoreWhenTheLinkStationGoes) {
    choose_period("*linksPeriod60");
    ASSERT_EQ(change(NAP_STOP_LS), NAP_OK);
    ASSERT_EQ(change(NAP_DELETE_LS), NAP_OK);
    push(form->refresh_button);
    run(1);
    EXPECT_EQ(form->common.parent_item, nullptr);
    EXPECT_EQ(text("*linksName"), "TELLER1");
    EXPECT_EQ(form->timer, 0U);
    EXPECT_FALSE(XtIsSensitive(form->refresh_button));
    EXPECT_FALSE(XtIsSensitive(form->period));
}

} // namespace
