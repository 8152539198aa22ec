// The status of a link station, against the node software itself: what is asked when, and what is
// shown of the answers.

#include "livesupport.h"

#include "dialogids.h"
#include "forms.h"
#include "gui_windows.h"
#include "vgaindct.h"
#include "vganodew.h"
#include "windowtable.h"

SCRIPTED_NOF_ENTRY

namespace {

class LinkStatus : public LIVE_MODEL, public testing::Test {
protected:
    void SetUp() override {
        if (gvga_uil_hierarchy == nullptr) {
            static gui::PREFIX prefix;
            ASSERT_EQ(vga_load_messages(), 1);
            gui::open_windows();
        }
        open("single");
        gvga_toplevel = XtVaAppCreateShell("quiladmin", VGA_CLASS, applicationShellWidgetClass,
                                           gvga_display, nullptr);
        vga_init_dialogs();
        build();
        node = static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes));
        ls = static_cast<VGA_LS *>(ntl_avl_find(&node->link_stations, "TELLER1 "));
        ASSERT_NE(ls, nullptr);
        ASSERT_EQ(vga_display_node_window(node, 1), 1);
        gvga_main_dialog = gvga_first_dialog;
        form =
            vga_form_open(VGA_UID_LINK_DET_DIALOG, gvga_main_dialog, ls, nullptr, VGA_FORM_CHANGE);
        ASSERT_NE(form, nullptr);
        run(1);
    }
    void TearDown() override {
        close();
        vga_free_dialogs();
        XtDestroyWidget(gvga_toplevel);
        gvga_first_dialog = nullptr;
        gui::settle();
    }

    std::string text(const char *name) const {
        return gui::label_text(XtNameToWidget(form->common.widget, name));
    }
    static size_t under_way() { return scripted_nof.in_flight.size(); }
    static void push(Widget button) { XtCallCallbacks(button, XmNactivateCallback, nullptr); }
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
    EXPECT_EQ(under_way(), 1U);
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
    EXPECT_NE(gui::box_text(&form->common), "");
    EXPECT_EQ(period(), "linksPeriodNever");
    EXPECT_EQ(text("*linksLsState"), "Inactive");
    EXPECT_EQ(text("*linksMessageLine").find("As of "), 0U);

    run(1);
    choose_period("*linksPeriod5");
    EXPECT_TRUE(gui::wait_for([] { return under_way() == 1; }, 8000));
    vga_close_children(&form->common, 1, 0);
    run(1);
    EXPECT_EQ(form->timer, 0U);
    form = vga_form_open(VGA_UID_LINK_DET_DIALOG, gvga_main_dialog, ls, nullptr, VGA_FORM_CHANGE);
    EXPECT_EQ(period(), "linksPeriodNever");
}

TEST_F(LinkStatus, StaysWhenTheLinkStationGoes) {
    choose_period("*linksPeriod60");
    ASSERT_EQ(change(NAP_STOP_LS), NAP_OK);
    ASSERT_EQ(change(NAP_DELETE_LS), NAP_OK);
    push(form->refresh_button);
    run(1);
    EXPECT_EQ(form->common.parent_item, nullptr);
    EXPECT_EQ(text("*linksName"), "TELLER1");
    EXPECT_NE(gui::box_text(&form->common), "");
    EXPECT_EQ(form->timer, 0U);
    EXPECT_FALSE(XtIsSensitive(form->refresh_button));
    EXPECT_FALSE(XtIsSensitive(form->period));
    EXPECT_EQ(scripted_nof.in_flight.size(), 0U);
}

} // namespace
