// Dialogs of settings against the node software itself: a node that nobody has configured, settings
// that have a verb each, and what another administrator changes.

#include "live_forms.h"

#include "forms.h"
#include "nofcopy.h"
#include "settingsdialogs.h"

SCRIPTED_NOF_ENTRY

using namespace forms;

namespace {

class Settings : public LIVE_FORMS {
protected:
    Settings() { sample = "../../tests/gui/forms/fresh"; }
    void SetUp() override {
        LIVE_FORMS::SetUp();
        vga_for_each(gvga_system->nodes, &VGA_NODE::links, [this](VGA_NODE &one) {
            (one.node_state == NAP_NODE_UNCONFIGURED ? fresh : anchor) = &one;
        });
        ASSERT_NE(fresh, nullptr);
        ASSERT_NE(anchor, nullptr);
    }
    static VGA_FORM *open_form(VGA_DIALOG_ID dialog) {
        VGA_DIALOG *desc = vga_find_row(dialog)->first_desc;
        return desc != nullptr && desc->in_use != 0 ? vga_form_of(desc) : nullptr;
    }
    static std::string line(const VGA_FORM *form) { return gui::label_text(form->message_line); }

    /* What the target answers. */
    template <class Block> Block ask(NB_ULONG target, NB_USHORT opcode) const {
        std::vector<NB_UCHAR> block(sizeof(Block));
        memcpy(block.data(), &opcode, sizeof(opcode));
        domain->execute(target, block);
        return nap_copy<Block>(block.data());
    }
    /* OK, all that follows, and the number of verbs that set something. */
    long send(VGA_FORM *form, const char *button_name = "OK") {
        asked.clear();
        push(button(form, button_name));
        run(1);
        gui::settle();
        return std::count_if(asked.begin(), asked.end(),
                             [](NB_USHORT one) { return nap_find_verb(one)->changes; });
    }

    VGA_NODE *fresh = nullptr, *anchor = nullptr;
};

TEST_F(Settings, ANodeIsConfiguredFromTheStart) {
    ASSERT_EQ(vga_display_start_help_dialog(nullptr, 1), 1);
    VGA_DIALOG *notice = vga_find_row(VGA_UID_START_HELP_DIALOG)->first_desc;
    EXPECT_EQ(notice->parent_item, fresh);
    ASSERT_EQ(vga_display_start_help_dialog(fresh, 1), 1);
    EXPECT_EQ(notice->next_desc, nullptr) << "once is enough";
    push(XtNameToWidget(notice->widget, "OK"));
    EXPECT_EQ(notice->in_use, 0);

    VGA_FORM *form = open_form(VGA_UID_NODE_DIALOG);
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(vga_get_title(&form->common), "Configuration of node fresh");
    EXPECT_EQ(send(form), 0) << "it has no name yet";
    EXPECT_NE(box(form), "");
    answer_box(form);
    enter(form, VGA_NODED_FQ_CP_NAME, "NETA.FRESH");
    enter(form, VGA_NODED_NODE_TYPE, "2"); // end node
    enter(form, VGA_NODED_COS_MAPPING, "yes");
    enter(form, VGA_NODED_MAX_LUS, "250");
    ASSERT_EQ(vga_display_start_help_dialog(nullptr, 1), 1);
    EXPECT_EQ(send(form), 1) << box(form);
    EXPECT_EQ(form->common.in_use, 0);
    EXPECT_EQ(notice->in_use, 0) << "there is nothing left to say";
    EXPECT_EQ(vga_display_start_help_dialog(nullptr, 1), 0);

    EXPECT_EQ(fresh->node_state, NAP_NODE_STOPPED);
    EXPECT_EQ(fresh->connection, VGA_CONNECTED);
    EXPECT_NE(AVL_FIRST(fresh->mode_defs), nullptr) << "what it has is read";
    const auto node = ask<NAP_QUERY_NODE_VERB>(fresh->target, NAP_QUERY_NODE);
    EXPECT_EQ(node.info.node_state, NAP_NODE_STOPPED);
    EXPECT_EQ(node.info.node_type, NAP_END_NODE);
    EXPECT_EQ(node.info.cos_mapping, 1);
    EXPECT_EQ(node.node_id, 0x07100000U);
    EXPECT_EQ(ask<NAP_QUERY_NODE_LIMITS_VERB>(fresh->target, NAP_QUERY_NODE_LIMITS).max_lus, 250U);
}

TEST_F(Settings, ANodeIsStoppedFirst) {
    ASSERT_EQ(vga_display_node_dialog(gvga_main_dialog, anchor), 1);
    VGA_FORM *form = open_form(VGA_UID_NODE_DIALOG);
    EXPECT_NE(form->read_only, 0);
    EXPECT_EQ(line(form), vga_message(VGA_MSG_NODED_STOP_FIRST));
    EXPECT_STREQ(vga_shown_hint(vga_form_widget(form, VGA_NODED_HPR_SUPPORT)),
                 vga_message(VGA_MSG_NODED_STOP_FIRST));
    stop(anchor);
    EXPECT_EQ(form->read_only, 0) << "it follows";
    EXPECT_EQ(line(form), " ");
    enter(form, VGA_NODED_DESCRIPTION, "In the harbour");
    EXPECT_EQ(send(form, "*nodedApplyButton"), 1);
    EXPECT_EQ(box(form), "");
    EXPECT_EQ(vga_form_field_text(form, VGA_NODED_DESCRIPTION), "In the harbour");
    EXPECT_EQ(vga_form_changes(form), 0);
    EXPECT_EQ(form->read_only, 0);
    vga_lose_connection(anchor);
    EXPECT_EQ(line(form), vga_message(VGA_MSG_NODEW_NODE_NOT_CONNECTED));
}

TEST_F(Settings, TracesAreSwitchedEachByItsVerb) {
    const auto trace = [this](NB_USHORT opcode) {
        return ask<NAP_QUERY_TRACE_VERB>(anchor->target, opcode);
    };
    ASSERT_EQ(vga_display_tracing_dialog(gvga_main_dialog, anchor), 1);
    VGA_FORM *form = open_form(VGA_UID_TRACE_DIALOG);
    enter(form, VGA_TRCD_TRACE_FLAGS, "yes");
    enter(form, VGA_TRCD_TRACE_FILE, "../lines.trc");
    EXPECT_EQ(send(form), 0);
    EXPECT_EQ(form->marks[VGA_TRCD_TRACE_FILE], VGA_MARK_WRONG);
    answer_box(form);
    enter(form, VGA_TRCD_TRACE_FILE, "lines.trc");
    enter(form, VGA_TRCD_TYPE_FLAGS, "yes");
    enter(form, VGA_TRCD_TYPE_TRUNCATION, "80");

    // The second of two is refused: what the first did stays, and so does what was entered.
    spoil = [](const ISSUED_VERB &verb) {
        if (verb.vcb->opcode == NAP_SET_TRACE_TYPE) {
            verb.vcb->primary_rc = NAP_STATE_CHECK;
            verb.vcb->secondary_rc = NAP_STORE_FAILED;
        }
    };
    EXPECT_EQ(send(form, "*trcdApplyButton"), 2);
    EXPECT_NE(box(form), "");
    answer_box(form);
    EXPECT_EQ(vga_form_field_text(form, VGA_TRCD_TYPE_TRUNCATION), "80");
    EXPECT_EQ(vga_form_changes(form), 2);
    spoil = nullptr;
    EXPECT_EQ(send(form, "*trcdApplyButton"), 1) << "only what is left";
    EXPECT_EQ(vga_form_changes(form), 0);
    EXPECT_NE(trace(NAP_QUERY_DLC_TRACE).trace_flags, 0U);
    EXPECT_STREQ(reinterpret_cast<const char *>(trace(NAP_QUERY_DLC_TRACE).trace_file),
                 "lines.trc");
    EXPECT_EQ(trace(NAP_QUERY_TRACE_TYPE).truncation, 80);
    EXPECT_EQ(anchor->tracing.type.truncation, 80);

    enter(form, VGA_TRCD_TRACE_FLAGS, "no");
    EXPECT_EQ(send(form), 1);
    EXPECT_EQ(trace(NAP_QUERY_DLC_TRACE).trace_flags, 0U);
}

TEST_F(Settings, TheCentralLoggerFollows) {
    const auto logger = [this] {
        const auto verb =
            ask<NAP_QUERY_LOGGING_VERB>(gvga_system->domain_target, NAP_QUERY_CENTRAL_LOGGER);
        return std::string(reinterpret_cast<const char *>(verb.node_name));
    };
    ASSERT_EQ(vga_display_logging_dialog(gvga_main_dialog, nullptr), 1);
    VGA_FORM *form = open_form(VGA_UID_LOG_DIALOG);
    EXPECT_EQ(vga_get_title(&form->common), "Logging of the domain");
    enter(form, VGA_LOGD_ENABLED, "yes");
    EXPECT_EQ(send(form), 0) << "it needs a node";
    answer_box(form);
    enter(form, VGA_LOGD_NODE_NAME, "nowhere");
    EXPECT_EQ(send(form), 0) << "one of the domain";
    answer_box(form);
    enter(form, VGA_LOGD_NODE_NAME, "fresh");
    enter(form, VGA_LOGD_AUDIT, "yes");
    EXPECT_EQ(send(form, "*logdApplyButton"), 3);
    EXPECT_EQ(box(form), "");
    EXPECT_EQ(logger(), "fresh");
    EXPECT_EQ(vga_form_field_text(form, VGA_LOGD_NODE_NAME), "fresh");

    // Another administrator names another one: the chain is read again.
    auto verb = ask<NAP_QUERY_LOGGING_VERB>(gvga_system->domain_target, NAP_QUERY_CENTRAL_LOGGER);
    verb.opcode = NAP_SET_CENTRAL_LOGGER;
    strcpy(reinterpret_cast<char *>(verb.node_name), "anchor");
    std::vector<NB_UCHAR> block(sizeof(verb));
    memcpy(block.data(), &verb, sizeof(verb));
    domain->execute(gvga_system->domain_target, block);
    vga_rebuild_logging();
    run(1);
    EXPECT_EQ(vga_form_field_text(form, VGA_LOGD_NODE_NAME), "anchor");

    enter(form, VGA_LOGD_ENABLED, "no");
    EXPECT_EQ(send(form), 1);
    EXPECT_EQ(gvga_system->logging.central_logging.enabled, 0);
}

} // namespace
