// What the form pattern offers, whether or not a dialog of the program has it: the forms are the
// tests' own (tests/gui/forms), the records those of a sample domain.

#include "live_forms.h"

#include "forms.inc"

#include <Xm/List.h>

SCRIPTED_NOF_ENTRY

using namespace forms;

/* Each of the two bounds has its own message. */
constexpr NB_USHORT above_total = 1, above_common = 2;

VGA_BOUND tport_inbound_most(const NB_VOID *data) {
    constexpr NB_USHORT common = 100;
    const NB_USHORT total = vga_tport_data(data).port.def_data.tot_link_act_lim;
    return total < common ? VGA_BOUND{total, above_total} : VGA_BOUND{common, above_common};
}

/* A new port belongs to the DLC that it is opened for. */
NB_VOID tport_load(const VGA_FORM *form, NB_VOID *data) {
    if (form->adding != 0) {
        memcpy(static_cast<VGA_TPORT_DATA *>(data)->port.def_data.dlc_name,
               static_cast<const VGA_DLC *>(vga_form_owner(form))->vcb->dlc_name,
               sizeof(NAP_PORT_DATA::def_data.dlc_name));
    }
}

namespace {

#include "formrows.h"

/* Which row of the table each form takes. */
const std::map<std::string, NB_USHORT> places = {
    {"tport", VGA_UID_LLC2_PORT_DIALOG}, {"tadvp", VGA_UID_LLC2_PORT_ADV_DIALOG},
    {"tcn", VGA_UID_TN_DIALOG},          {"tsec", VGA_UID_CL_SECURITY_DIALOG},
    {"tlist", VGA_UID_TP_DIALOG},        {"titem", VGA_UID_PARTS},
};

/* In this program they are all the forms that there are: the walk is of them, too. */
class OWN_FORMS : public testing::Environment {
    void SetUp() override {
        setenv("UIDPATH", (FORMS_DIR "/%U:" + std::string(getenv("UIDPATH"))).c_str(), 1);
        for (VGA_UID_DESC &row : gvga_uid_desc) {
            row.record_changed =
                row.dialog_id == VGA_UID_NODE_WINDOW ? row.record_changed : nullptr;
        }
        static VGA_UID_DESC part = {.dialog_id = VGA_UID_PARTS, .name = {}, .kind = VGA_KIND_MODAL};
        gvga_part_desc = {&part, 1};
        for (const VGA_FORM_ROW &made : form_rows) {
            VGA_UID_DESC &row = *vga_find_row(places.at(made.name));
            strcpy(row.name, made.name);
            row.later = 0;
            row.desc_size = made.desc_size;
            row.get_widgets = made.get_widgets;
            row.close_proc = made.close_proc;
            row.record_changed = vga_form_record_changed;
            row.may_close = vga_form_may_close;
        }
    }
};
[[maybe_unused]] const auto *own_forms = testing::AddGlobalTestEnvironment(new OWN_FORMS);

class Form : public LIVE_FORMS {
protected:
    /* On a record of the type, or on a new one beside it. */
    template <class Record> VGA_FORM *open(const char *name, VGA_FORM_MODE mode = VGA_FORM_CHANGE) {
        record = places_of(&vga_form_type<Record>).at(0);
        for (const PLACE &place : places_of(&vga_form_type<Record>)) {
            if constexpr (requires(Record * port) { port->vcb->det_data.port_state; }) {
                auto *port = static_cast<Record *>(place.record); // one that may be changed
                record = port->vcb->det_data.port_state == NAP_NOT_ACTIVE ? place : record;
            }
        }
        const bool adding = mode != VGA_FORM_CHANGE;
        form = vga_form_open(places.at(name), gvga_main_dialog, adding ? nullptr : record.record,
                             adding ? record.owner : nullptr, mode);
        gui::settle();
        gui::give_focus(form->common.shell);
        return form;
    }
    VGA_FORM *child_of(VGA_FORM *parent, const char *name) {
        VGA_DIALOG *desc = vga_find_row(places.at(name))->first_desc;
        return desc->parent == &parent->common ? vga_form_of(desc) : nullptr;
    }
    VGA_PORT *port() const { return static_cast<VGA_PORT *>(record.record); }
    std::string text(NB_USHORT field) const { return vga_form_field_text(form, field); }
    void apply() { push(form->apply_button); }

    /* Another administrator's change. */
    void changed() {
        vga_record_changed(record.record, VGA_RECORD_CHANGED);
        gui::settle();
    }

    template <class Verb> Verb issued() {
        Verb verb = {};
        EXPECT_EQ(in_flight(), 1) << box(form);
        if (in_flight() == 1) {
            memcpy(&verb, scripted_nof.in_flight[0].vcb, sizeof(verb));
        }
        return verb;
    }

    PLACE record = {};
    VGA_FORM *form = nullptr;
};

TEST_F(Form, FieldsAreOfUseUnderTheirConditions) {
    struct CASE {
        NB_USHORT set;
        const char *value; // of a menu, the item's place
        NB_USHORT field;
        bool on;
    };
    const CASE cases[] = {
        {VGA_TPORT_PORT_TYPE, "1", VGA_TPORT_LOCAL_ADDRESS, true},
        {VGA_TPORT_PORT_TYPE, "0", VGA_TPORT_LOCAL_ADDRESS, false},
        {VGA_TPORT_PORT_TYPE, "2", VGA_TPORT_PORT_NUMBER, false},
        {VGA_TPORT_PORT_TYPE, "0", VGA_TPORT_PORT_NUMBER, true},
        {VGA_TPORT_INITIALLY_ACTIVE, "yes", VGA_TPORT_REACT_TIMER, false},
        {VGA_TPORT_INITIALLY_ACTIVE, "no", VGA_TPORT_REACT_TIMER, true},
        {VGA_TPORT_IMPLICIT_LINKS, "yes", VGA_TPORT_TOT_LINK_ACT_LIM, true},
        {VGA_TPORT_TOT_LINK_ACT_LIM, "1", VGA_TPORT_INB_LINK_ACT_LIM, false},
        {VGA_TPORT_TOT_LINK_ACT_LIM, "2", VGA_TPORT_INB_LINK_ACT_LIM, true},
        {VGA_TPORT_IMPLICIT_LINKS, "no", VGA_TPORT_INB_LINK_ACT_LIM, false}, // its own holds
    };
    open<VGA_PORT>("tport", VGA_FORM_ADD);
    EXPECT_TRUE(vga_form_field_editable(form, VGA_TPORT_LS_ROLE));
    for (const CASE &row : cases) {
        enter(form, row.set, row.value);
        Widget widget = vga_form_widget(form, row.field);
        SCOPED_TRACE(XtName(widget));
        EXPECT_EQ(XtIsSensitive(widget), row.on) << vga_shown_hint(widget);
        EXPECT_TRUE(row.on || vga_shown_hint(widget)[0] != '\0') << "no reason";
    }
    // What is of no use is neither checked nor collected.
    enter(form, VGA_TPORT_NAME, "NEWPORT");
    enter(form, VGA_TPORT_TOT_LINK_ACT_LIM, "");
    apply();
    EXPECT_EQ(box(form), "");
    EXPECT_EQ(in_flight(), 1);

    open<VGA_PORT>("tport");
    EXPECT_FALSE(vga_form_field_editable(form, VGA_TPORT_LS_ROLE));
    EXPECT_FALSE(vga_form_field_editable(form, VGA_TPORT_NAME));
}

TEST_F(Form, ABoundMayHaveSeveralMessages) {
    gvga_messages[above_total] = "Above the total of %2.";
    gvga_messages[above_common] = "Never above %2.";
    open<VGA_PORT>("tport");
    enter(form, VGA_TPORT_IMPLICIT_LINKS, "yes");
    for (const auto &[total, incoming, told] :
         {std::tuple("50", "51", "Above the total of 50."), {"500", "101", "Never above 100."}}) {
        vga_form_show_page(form, 0);
        enter(form, VGA_TPORT_TOT_LINK_ACT_LIM, total);
        enter(form, VGA_TPORT_INB_LINK_ACT_LIM, incoming);
        apply();
        EXPECT_EQ(box(form), told);
        answer_box(form);
        EXPECT_EQ(XmGetFocusWidget(form->common.shell),
                  vga_form_widget(form, VGA_TPORT_INB_LINK_ACT_LIM))
            << "on the other page";
        EXPECT_EQ(in_flight(), 0);
    }
}

TEST_F(Form, AChildEditsWhatItsParentSends) {
    open<VGA_PORT>("tport");
    const auto open_child = [this] {
        push(XtNameToWidget(form->common.widget, "*tportTadvp"));
        return child_of(form, "tadvp");
    };
    for (const char *pressed : {"Cancel", "OK"}) {
        VGA_FORM *child = open_child();
        ASSERT_NE(child, nullptr);
        EXPECT_EQ(open_child(), child) << "raised";
        enter(child, VGA_TADVP_MAX_RCV_BTU_SIZE, "264");
        push(button(child, "OK"));
        EXPECT_NE(box(child), "") << "below its bound";
        answer_box(child);
        enter(child, VGA_TADVP_MAX_RCV_BTU_SIZE, "1033");
        push(button(child, pressed));
        EXPECT_EQ(child->common.in_use, 0);
        EXPECT_EQ(in_flight(), 0);
        EXPECT_EQ(vga_form_changes(form), pressed[0] == 'O');
    }
    enter(form, VGA_TPORT_PORT_NUMBER, "9"); // and what another administrator changed stays theirs
    port()->vcb->def_data.react_timer = 77;
    changed();
    VGA_FORM *child = open_child();
    EXPECT_EQ(vga_form_field_text(child, VGA_TADVP_MAX_RCV_BTU_SIZE), "1033");
    EXPECT_EQ(vga_form_changes(child), 0);
    push(button(child, "Cancel"));
    apply();
    const auto verb = issued<NAP_DEFINE_PORT_VERB>();
    EXPECT_EQ(verb.def_data.max_rcv_btu_size, 1033);
    EXPECT_EQ(verb.def_data.port_number, 9);
    EXPECT_EQ(verb.def_data.react_timer, 77);
    run(1);
    EXPECT_EQ(box(form), "");
    EXPECT_EQ(vga_form_changes(form), 0);

    child = open_child();
    enter(child, VGA_TADVP_MAX_RCV_BTU_SIZE, "2000");
    push(button(child, "OK"));
    EXPECT_EQ(vga_form_changes(form), 1);
    push(form->reset_button);
    EXPECT_EQ(vga_form_changes(form), 0);

    gvga_read_only = 1;
    vga_form_set_rights(form);
    child = open_child();
    EXPECT_EQ(child->read_only, 1);
    gvga_read_only = 0;
}

TEST_F(Form, GuidesFromPageToPageToItsSummary) {
    open<VGA_CN>("tcn", VGA_FORM_ADD);
    const auto next = [this] { push(button(form, "OK")); };
    struct CASE {
        const char *network, *name;
        NB_SHORT refused;
    };
    for (const CASE &row :
         {CASE{"NETA", "", VGA_TCN_CN_NAME}, {"NETA", "HQNET", VGA_TCN_CN_NAME}}) { // is there
        enter(form, VGA_TCN_NETWORK, row.network);
        enter(form, VGA_TCN_CN_NAME, row.name);
        next();
        EXPECT_NE(box(form), "") << row.network << "." << row.name;
        answer_box(form);
        EXPECT_EQ(form->marks[row.refused], VGA_MARK_WRONG) << row.name;
        EXPECT_EQ(form->page, 0);
    }
    enter(form, VGA_TCN_NETWORK, "NETA");
    enter(form, VGA_TCN_CN_NAME, "NEWNET");
    next();
    EXPECT_EQ(form->page, 1);
    EXPECT_EQ(XmGetFocusWidget(form->common.shell), vga_form_widget(form, VGA_TCN_CONNECT_COST));
    push(form->back_button);
    EXPECT_EQ(form->page, 0);
    EXPECT_FALSE(XtIsSensitive(form->back_button));
    next();
    enter(form, VGA_TCN_CONNECT_COST, "256");
    next();
    EXPECT_NE(box(form), "");
    answer_box(form);
    EXPECT_EQ(form->page, 1);
    enter(form, VGA_TCN_CONNECT_COST, "17");
    next();
    EXPECT_EQ(in_flight(), 0);
    const std::string summary = gui::label_text(vga_form_part(form, "Summary"));
    EXPECT_NE(summary.find("Name: NEWNETCost: 17"), std::string::npos) << summary;
    next();
    auto verb = issued<NAP_DEFINE_CN_VERB>();
    nba_ebcdic_to_local(verb.fqcn_name, sizeof(verb.fqcn_name));
    EXPECT_EQ(memcmp(verb.fqcn_name, "NETA.NEWNET ", 12), 0);
    EXPECT_EQ(verb.def_data.connect_cost, 17);
    run(1);
    EXPECT_EQ(form->common.in_use, 0);
}

TEST_F(Form, APasswordIsNeverShownAndStaysUnlessTyped) {
    const NB_UCHAR none[sizeof(NAP_USERID_PASSWORD_DATA::def_data.password)] = {};
    open<VGA_CLSEC_DEF>("tsec");
    for (const char *typed : {"", "N3WPASS"}) {
        enter(form, VGA_TSEC_DESCRIPTION, typed[0] != '\0' ? "with" : "without");
        enter(form, VGA_TSEC_PASSWORD, typed);
        EXPECT_EQ(gui::field_text(vga_form_widget(form, VGA_TSEC_PASSWORD)).find("N3W"),
                  std::string::npos);
        EXPECT_EQ(text(VGA_TSEC_PASSWORD), typed[0] != '\0' ? "******" : "");
        apply();
        const auto verb = issued<NAP_DEFINE_USERID_PASSWORD_VERB>();
        const auto &shown =
            static_cast<const VGA_TSEC_DATA *>(vga_form_shown(form))->userid_password;
        EXPECT_EQ(memcmp(verb.def_data.password, shown.def_data.password, sizeof(none)) == 0,
                  typed[0] == '\0');
        run(1);
        EXPECT_EQ(box(form), "");
        EXPECT_EQ(text(VGA_TSEC_PASSWORD), "") << "afterwards, too";
    }
    enter(form, VGA_TSEC_PASSWORD, "L3FT");
    push(button(form, "Cancel"));
    VGA_FORM *again = open<VGA_CLSEC_DEF>("tsec");
    EXPECT_EQ(again, form);
    EXPECT_EQ(vga_form_changes(form), 0);
}

TEST_F(Form, AsksBeforeItUndoesAnothersChange) {
    open<VGA_PORT>("tport");
    enter(form, VGA_TPORT_INITIALLY_ACTIVE, "no");
    enter(form, VGA_TPORT_REACT_TIMER, "31");
    enter(form, VGA_TPORT_PORT_NUMBER, "7");
    auto &theirs = port()->vcb->def_data;
    theirs.react_timer = 40;
    theirs.tot_link_act_lim = 123;
    changed();
    EXPECT_EQ(text(VGA_TPORT_REACT_TIMER), "31") << "touched";
    EXPECT_EQ(text(VGA_TPORT_TOT_LINK_ACT_LIM), "123") << "follows";
    EXPECT_EQ(form->marks[VGA_TPORT_REACT_TIMER], VGA_MARK_OTHER);
    EXPECT_EQ(form->marks[VGA_TPORT_PORT_NUMBER], VGA_MARK_NONE);
    Widget field = vga_form_widget(form, VGA_TPORT_REACT_TIMER);
    EXPECT_NE(std::string(vga_shown_hint(field)).find("40"), std::string::npos);
    for (const char *answer : {"Cancel", "OK"}) {
        apply();
        EXPECT_NE(box(form).find("Wait: 40"), std::string::npos) << box(form);
        answer_box(form, answer);
        EXPECT_EQ(in_flight(), answer[0] == 'O');
    }
    EXPECT_EQ(issued<NAP_DEFINE_PORT_VERB>().def_data.react_timer, 31);
    scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    answer_box(form);
    theirs.react_timer = 50; // once more: the answer was about 40
    changed();
    apply();
    EXPECT_NE(box(form).find("Wait: 50"), std::string::npos) << box(form);
    answer_box(form, "Cancel");
    theirs.port_number = 7; // as was entered
    changed();
    EXPECT_EQ(form->marks[VGA_TPORT_PORT_NUMBER], VGA_MARK_NONE);
    enter(form, VGA_TPORT_REACT_TIMER, "99999"); // a refusal makes nobody forget it
    apply();
    answer_box(form);
    enter(form, VGA_TPORT_REACT_TIMER, "31");
    apply();
    EXPECT_NE(box(form).find("Wait: 50"), std::string::npos) << box(form);
    answer_box(form, "Cancel");
    push(form->reset_button);
    EXPECT_EQ(text(VGA_TPORT_REACT_TIMER), "50");
    EXPECT_EQ(form->marks[VGA_TPORT_REACT_TIMER], VGA_MARK_NONE);
}

TEST_F(Form, AsksBeforeManyChangesGo) {
    for (const bool many : {false, true}) {
        open<VGA_PORT>("tport");
        enter(form, VGA_TPORT_IMPLICIT_LINKS,
              text(VGA_TPORT_IMPLICIT_LINKS) == "Yes" ? "no" : "yes");
        enter(form, VGA_TPORT_PORT_NUMBER, "7");
        enter(form, VGA_TPORT_TOT_LINK_ACT_LIM, "1234");
        if (many) {
            enter(form, VGA_TPORT_REACT_TIMER, "77");
        }
        EXPECT_EQ(vga_form_changes(form), many ? 4 : 3);
        gui::key("Escape");
        EXPECT_EQ(form->common.in_use, many);
        EXPECT_EQ(box(form).find("4 changes") != std::string::npos, many) << box(form);
    }
    answer_box(form, "Cancel");
    EXPECT_EQ(form->common.in_use, 1);
    gui::give_focus(form->common.shell);
    gui::key("Escape");
    answer_box(form);
    EXPECT_EQ(form->common.in_use, 0);
}

TEST_F(Form, AddsOneAfterTheOther) {
    open<VGA_PORT>("tport", VGA_FORM_REPEAT);
    for (const char *name : {"NEW1", "NEW2"}) {
        enter(form, VGA_TPORT_NAME, name);
        enter(form, VGA_TPORT_PORT_TYPE, "0");
        enter(form, VGA_TPORT_PORT_NUMBER, "4");
        push(button(form, "OK"));
        const auto verb = issued<NAP_DEFINE_PORT_VERB>();
        EXPECT_EQ(memcmp(verb.port_name, name, strlen(name)), 0);
        EXPECT_EQ(verb.def_data.port_number, 4);
        run(1);
        gui::settle();
        ASSERT_EQ(form->common.in_use, 1);
        EXPECT_EQ(box(form), "");
        EXPECT_EQ(text(VGA_TPORT_NAME), "") << "for the next name";
        EXPECT_EQ(text(VGA_TPORT_PORT_NUMBER), "4");
        EXPECT_EQ(XmGetFocusWidget(form->common.shell), vga_form_widget(form, VGA_TPORT_NAME));
        EXPECT_NE(gui::label_text(form->message_line).find(name), std::string::npos);
    }
    enter(form, VGA_TPORT_NAME, "NEW1");
    push(button(form, "OK"));
    EXPECT_NE(box(form), "") << "it is there";
}

TEST_F(Form, ListsItemsThatAChildEdits) {
    open<VGA_ACCESS_LIST>("tlist");
    const auto list_button = [this](const char *name) {
        push(XtNameToWidget(form->common.widget, (std::string("*rowList") + name).c_str()));
        return child_of(form, "titem");
    };
    const auto users = [this] {
        int number = 0;
        XtVaGetValues(XtNameToWidget(form->common.widget, "*rowListRows"), XmNitemCount, &number,
                      nullptr);
        return number;
    };
    EXPECT_EQ(users(), 2);
    VGA_FORM *child = list_button("Add");
    ASSERT_NE(child, nullptr);
    push(button(child, "OK"));
    EXPECT_NE(box(child), "") << "no name";
    answer_box(child);
    enter(child, VGA_TITEM_USER_NAME, "newuser");
    push(button(child, "OK"));
    EXPECT_EQ(users(), 3);
    EXPECT_EQ(vga_form_changes(form), 1);
    child = list_button("Change"); // the new one is selected
    EXPECT_EQ(vga_form_field_text(child, VGA_TITEM_USER_NAME), "newuser");
    enter(child, VGA_TITEM_USER_NAME, "other");
    push(button(child, "OK"));
    push(form->reset_button);
    EXPECT_EQ(users(), 2);
    EXPECT_EQ(vga_form_changes(form), 0);

    XmListSelectPos(XtNameToWidget(form->common.widget, "*rowListRows"), 1, True);
    list_button("Remove");
    EXPECT_EQ(users(), 1);
    apply();
    const auto verb = issued<NAP_DEFINE_ACCESS_LIST_VERB>();
    EXPECT_EQ(verb.def_data.num_users, 1);
    EXPECT_EQ(memcmp(verb.def_data.users[0].user_name, "batchd ", 7), 0);
    run(1);
    EXPECT_EQ(users(), 1);
    EXPECT_EQ(vga_form_changes(form), 0);

    enter(form, VGA_TLIST_NAME, "RENAMED"); // a dialog that renames may change the key of a record
    apply();
    EXPECT_EQ(memcmp(issued<NAP_DEFINE_ACCESS_LIST_VERB>().list_name, "RENAMED ", 8), 0);
}

} // namespace
