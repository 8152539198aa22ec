// Starting and stopping from a window, against the node software itself: what is asked, which verbs
// follow, and what the operator is told at the end.

#include "live_forms.h"
#include "messageline.h"
#include "outcomes.h"
#include "textwindow.h"

#include "forms.h"
#include "messages.h"
#include "operations.h"
#include "vgaindct.h"

#include <Xm/MessageB.h>

SCRIPTED_NOF_ENTRY

using namespace forms;

namespace {

class Operating : public LIVE_FORMS {
protected:
    Operating() { sample = "single"; }
    void SetUp() override {
        LIVE_FORMS::SetUp();
        gvga_hooks.record_awaited = vga_operations_follow;
        gvga_hooks.verb_purged = vga_operation_purged;
        gvga_hooks.outcome = vga_listw_outcome;
        node = static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes));
        vga_for_each(node->link_stations, &VGA_LS::node_links, [this](VGA_LS &one) {
            host = one.local_pu != nullptr && one.state == NAP_ACTIVE ? &one : host;
        });
        ASSERT_NE(host, nullptr);
        window = gvga_main_dialog;
    }

    /* What the operator is asked in; null: nothing is. */
    VGA_FORM *question() const {
        auto *child = reinterpret_cast<VGA_DIALOG *>(nba_get_q_head(&window->children_root_lqe));
        return child != nullptr ? vga_form_of(child) : nullptr;
    }
    std::string line() const {
        NB_CHAR *text = XmTextFieldGetString(XtNameToWidget(window->widget, "*nodewMessageBar"));
        std::string copy = text;
        XtFree(text);
        const size_t clock = copy.size() > 3 && copy[2] == ':' ? strlen("12:04:31 ") : 0;
        return copy.substr(clock);
    }
    static NAP_NAME_VERB verb() {
        NAP_NAME_VERB block;
        memcpy(&block, scripted_nof.in_flight.front().vcb, sizeof(block));
        return block;
    }

    VGA_NODE *node = nullptr;
    VGA_LS *host = nullptr;
    VGA_DIALOG *window = nullptr;
};

TEST_F(Operating, NameWhatElseStops) {
    const VGA_RESOURCE port = {VGA_OPERABLE_PORT, host->parent};
    vga_stop_resources(window, {port});
    VGA_FORM *form = question();
    ASSERT_NE(form, nullptr);
    const NB_VOID *shown = vga_form_shown(form);
    EXPECT_EQ(vga_form_text_of(form, VGA_STOPR_WHAT, shown), "port LINE0");
    EXPECT_EQ(vga_form_text_of(form, VGA_STOPR_OTHERS, shown), "1 link station, 1 PU, 9 LUs");
    push(button(form, "Cancel"));
    EXPECT_EQ(in_flight(), 0);

    vga_stop_resources(window, {{VGA_OPERABLE_NODE, node}});
    ASSERT_NE(question(), nullptr);
    push(button(question(), "Cancel"));

    vga_stop_resources(window, {{VGA_OPERABLE_LS, host}, port});
    vga_record_changed(host, VGA_RECORD_GONE);
    EXPECT_EQ(vga_form_text_of(question(), VGA_STOPR_WHAT, vga_form_shown(question())),
              "port LINE0");
    push(button(question(), "Cancel"));

    vga_stop_resources(window, {port});
    unsigned char by_return = 0;
    XtVaGetValues(question()->common.widget, XmNdefaultButtonType, &by_return, nullptr);
    EXPECT_EQ(by_return, XmDIALOG_CANCEL_BUTTON) << "a session ends";
    enter(question(), VGA_STOPR_STOP, "1");
    push(button(question(), "OK"));
    ASSERT_EQ(in_flight(), 1);
    EXPECT_EQ(verb().opcode, NAP_STOP_PORT);
    EXPECT_EQ(verb().stop_type, NAP_IMMEDIATE_STOP);
    EXPECT_EQ(line(), "Stopping port LINE0...");
    follow(node);
    const auto told =
        std::find_if(vga_outcomes().begin(), vga_outcomes().end(), [](const VGA_OUTCOME &one) {
            return one.text == "Stop under way: port LINE0.";
        });
    EXPECT_NE(told, vga_outcomes().end()) << "links fail meanwhile, and say so";
    EXPECT_EQ(host->state, NAP_NOT_ACTIVE);
    vga_stop_resources(window, {port});
    EXPECT_EQ(line(), "Not active, so there is nothing to stop.");
}

TEST_F(Operating, SayWhatIsOutstandingAndCanBeCancelled) {
    const std::vector<VGA_RESOURCE> many(40, {VGA_OPERABLE_LS, host});
    Widget cancel = XtNameToWidget(window->widget, "*nodewCancelWork");
    Widget list = vga_listw_of(window)->panes[0].draw_area;
    for (const bool by_key : {false, true}) {
        vga_operate_over(window, many, VGA_STOP_ORDERLY);
        EXPECT_EQ(line(), "Stopping 0 of 40 link stations...");
        EXPECT_FALSE(XtIsManaged(cancel)) << "what is over soon needs none";
        ASSERT_TRUE(gui::wait_for([&] { return line().find("(32 verbs, ") != line().npos; }))
            << line();
        EXPECT_TRUE(XtIsManaged(cancel));
        if (by_key) {
            gui::give_focus(window->shell);
            XmProcessTraversal(list, XmTRAVERSE_CURRENT);
            gui::settle();
            gui::key("Escape");
        } else {
            push(cancel);
        }
        while (in_flight() != 0) {
            scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
        }
        gui::settle();
        EXPECT_FALSE(XtIsManaged(cancel));
        EXPECT_NE(vga_outcomes().back().text.find("Cancelled: 8 link stations."), std::string::npos)
            << vga_outcomes().back().text;
        vga_close_text_windows(window);
    }
}

TEST_F(Operating, TellWhatFailed) {
    std::vector<VGA_RESOURCE> ports;
    vga_for_each(node->ports, &VGA_PORT::node_links, [&](VGA_PORT &port) {
        ports.push_back({VGA_OPERABLE_PORT, &port});
    });
    const std::string count = std::to_string(ports.size()) + " ports";
    vga_operate_over(window, ports, VGA_STOP_ORDERLY);
    const size_t active = in_flight();
    ASSERT_GT(active, 2U);
    scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    scripted_nof.complete(0, NAP_PARAMETER_CHECK, NAP_INVALID_VALUE);
    EXPECT_EQ(gui::box_text(window), "");
    run(1);
    gui::settle();
    const std::string box = gui::box_text(window);
    EXPECT_NE(box.find("3 of " + count), box.npos) << box;
    EXPECT_NE(line().find(" of " + count), std::string::npos);
    push(XtNameToWidget(window->modal_dlg.dialog, "OK"));

    // More than fit into a box have a window of their own, that of the window that is there.
    vga_operate_over(window, std::vector<VGA_RESOURCE>(24, {VGA_OPERABLE_LS, host}),
                     VGA_STOP_ORDERLY);
    while (in_flight() != 0) {
        scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    }
    gui::settle();
    EXPECT_EQ(gui::box_text(window), "");
    Widget receipt = XtNameToWidget(window->shell, "*receipt");
    ASSERT_NE(receipt, nullptr);
    const VGA_TEXT all(XmTextGetString(XtNameToWidget(receipt, "*receiptText")));
    EXPECT_NE(strstr(all.get(), "for 24 of 24 link stations"), nullptr) << all.get();
}

} // namespace
