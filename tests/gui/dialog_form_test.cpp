// The pattern of dialogs: filling, checking in order, collecting, waiting for the answer, following
// the record.  The dialog is the tests' own, with a field of every kind of widget.

#include "dialog_support.h"

#include "dialogids.h"
#include "fieldrows.h"
#include "form.h"

#include <Xm/Column.h>
#include <Xm/Text.h>
#include <Xm/ToggleB.h>

using namespace dialogs;

namespace {

const char form_source[] = R"(module formtest
    names = case_sensitive
procedure
    vga_close_cb();
    vga_form_apply_cb();
    vga_form_reset_cb();
object moded : XmMessageBox {
    arguments { XmNdialogType = XmDIALOG_TEMPLATE; XmNdialogTitle = compound_string("Mode");
        XmNautoUnmanage = false; XmNokLabelString = compound_string("OK");
        XmNcancelLabelString = compound_string("Cancel"); };
    controls { XmColumn modedFields; XmPushButton modedApplyButton; XmPushButton modedResetButton; };
    callbacks { XmNcancelCallback = procedure vga_close_cb(); };
};
object modedApplyButton : XmPushButton {
    callbacks { XmNactivateCallback = procedure vga_form_apply_cb(); }; };
object modedResetButton : XmPushButton {
    callbacks { XmNactivateCallback = procedure vga_form_reset_cb(); }; };
object modedFields : XmColumn { controls {
    XmLabel modedShown; XmTextField modedName; XmTextField modedLimit; XmTextField modedLow;
    XmToggleButton modedTimed; XmForm modedTimeoutForm; XmOptionMenu modedLevel; }; };
object modedShown : XmLabel { };
object modedName : XmTextField { };
object modedLimit : XmTextField { };
object modedLow : XmTextField { };
object modedTimed : XmToggleButton { };
object modedTimeoutForm : XmForm { controls { XmTextField modedTimeout; }; };
object modedTimeout : XmTextField { };
object modedLevel : XmOptionMenu { controls { XmPulldownMenu modedLevels; }; };
object modedLevels : XmPulldownMenu { controls { XmPushButton modedLevelNone; XmPushButton modedLevelRle; }; };
object modedLevelNone : XmPushButton { };
object modedLevelRle : XmPushButton { };
end module;
)";

struct RECORD {
    NB_USHORT active;
    NB_UCHAR name[8]; // local
    NB_USHORT limit, low;
    NB_UCHAR timed;
    NB_USHORT timeout;
    NB_UCHAR level;
};

struct FORM_DESC {
    VGA_FORM form;
    RECORD shown, edited;
};

enum { SHOWN, NAME, LIMIT, LOW, TIMED, TIMEOUT, LEVEL };
enum MESSAGES : NB_USHORT {
    NO_NAME = 20,
    NO_LIMIT,
    BAD_LIMIT,
    NO_LOW,
    BAD_LOW,
    BAD_TIME,
    TAKEN,
    ASKED,
    FAULTY
};

constexpr records::FieldWord level_words[] = {{"none", 0}, {"lz9", 9}, {"rle", 4}};

#define AT(member) FIELD_AT(RECORD, member)
constexpr records::FieldRow rows[] = {
    records::rows::count(AT(active)),
    records::rows::local(AT(name)),
    records::rows::number(AT(limit), 0, 100),
    records::rows::number(AT(low), 0, 100),
    records::rows::flag(AT(timed)),
    records::rows::number(AT(timeout), 1, 10),
    records::rows::word(AT(level), level_words),
};

int64_t low_at_most(const NB_VOID *data) {
    return static_cast<const RECORD *>(data)->limit;
}
NB_USHORT name_free(const NB_VOID *, const NB_VOID *data) {
    return memcmp(static_cast<const RECORD *>(data)->name, "TAKEN", 5) == 0 ? TAKEN : 0;
}

const VGA_FIELD fields[] = {
    {.widget = "*modedShown", .row = &rows[SHOWN], .uses = VGA_FIELD_SHOWN},
    {.widget = "*modedName",
     .row = &rows[NAME],
     .uses = VGA_FIELD_KEY,
     .empty = NO_NAME,
     .check = name_free},
    {.widget = "*modedLimit", .row = &rows[LIMIT], .empty = NO_LIMIT, .bad = BAD_LIMIT},
    {.widget = "*modedLow",
     .row = &rows[LOW],
     .at_most = low_at_most,
     .empty = NO_LOW,
     .bad = BAD_LOW},
    {.widget = "*modedTimed", .row = &rows[TIMED]},
    {.widget = "*modedTimeout",
     .row = &rows[TIMEOUT],
     .empty = BAD_TIME,
     .bad = BAD_TIME,
     .when = {.field = TIMED}},
    {.widget = "*modedLevel", .row = &rows[LEVEL]},
};

// What the plan saw and what it is to do.
struct PLAN_STATE {
    std::vector<RECORD> issued;
    NB_USHORT may_edit = 1, refuse = 0, ask = 0, more = 0;
};
PLAN_STATE state;

NB_VOID load(const VGA_FORM *form, NB_VOID *data) {
    auto *record = static_cast<RECORD *>(data);
    if (form->common.parent_item != nullptr) {
        *record = *static_cast<const RECORD *>(form->common.parent_item);
    } else {
        memset(record->name, ' ', sizeof(record->name));
        record->limit = 8;
    }
}
NB_USHORT may_edit(const VGA_FORM *) {
    return state.may_edit;
}
VGA_FORM_FAULT check(const VGA_FORM *, NB_VOID *) {
    return state.refuse != 0 ? VGA_FORM_FAULT{FAULTY, LOW} : VGA_FORM_FAULT{};
}
NB_USHORT question(const VGA_FORM *) {
    return state.ask != 0 ? NB_USHORT{ASKED} : NB_USHORT{0};
}
NB_USHORT issue(VGA_FORM *form) {
    state.issued.push_back(*static_cast<const RECORD *>(vga_form_edited(form)));
    return 1;
}
NB_USHORT next(VGA_FORM *, const VGA_PROCESS_STATE *) {
    return state.more != 0 ? state.more-- : NB_USHORT(0);
}

VGA_FORM_PLAN plan = {
    .fields = fields,
    .field_count = std::size(fields),
    VGA_FORM_DATA(FORM_DESC),
    .load = load,
    .may_edit = may_edit,
    .check = check,
    .question = question,
    .issue = issue,
    .next = next,
};

NB_USHORT get_form(VGA_DIALOG *desc) {
    return vga_form_get_widgets(desc, &plan);
}

class Form : public Dialogs {
protected:
    static void SetUpTestSuite() {
        Dialogs::SetUpTestSuite();
        static DESCRIPTION description(form_source);
        ASSERT_TRUE(description.compiled);
        // The node window is that of the other tests; the form is looked for first.
        std::string own = description.file();
        static DESCRIPTION others(uil_source);
        std::string other = others.file();
        String files[] = {own.data(), other.data()};
        MrmCloseHierarchy(gvga_uil_hierarchy);
        ASSERT_EQ(MrmOpenHierarchyPerDisplay(gvga_display, 2, files, nullptr, &gvga_uil_hierarchy),
                  MrmSUCCESS);
    }

    void SetUp() override {
        Dialogs::SetUp();
        state = PLAN_STATE();
        plan.defines = 0;
        gvga_read_only = 0;
        gvga_supported[VGA_SUPPORTED_APPLY] = 1;
        texts.reserve(100);
        for (NB_USHORT number = NO_NAME; number <= FAULTY; number++) {
            texts.push_back(std::to_string(number) + ": %1 %2");
            gvga_messages[number] = texts.back().c_str();
        }
        gvga_messages[VGA_MSG_VERB_FAILED] = "failed: %1";
        gvga_messages[VGA_MSG_NODE_NOT_ACTIVE] = "not active";
        gvga_messages[VGA_MSG_FORM_RECORD_GONE] = "gone";
        gvga_messages[VGA_MSG_FORM_RECORD_GONE_DEFINE] = "gone: define?";
        gvga_messages[VGA_MSG_FORM_TITLE_GONE] = "%1 - gone";
        VGA_UID_DESC &row = gvga_uid_desc[VGA_UID_MODE_DIALOG];
        row.desc_size = sizeof(FORM_DESC);
        row.get_widgets = get_form;
        row.close_proc = vga_form_close_proc;
        row.record_changed = vga_form_record_changed;
        record = {3, {'O', 'L', 'D', ' ', ' ', ' ', ' ', ' '}, 20, 5, 0, 7, 0};
    }

    void open_form(VGA_FORM_MODE mode = VGA_FORM_CHANGE) {
        RECORD *item = mode == VGA_FORM_CHANGE ? &record : nullptr;
        form = vga_form_open(VGA_UID_MODE_DIALOG, main_dialog, item,
                             mode == VGA_FORM_CHANGE ? &slot : nullptr, mode);
        ASSERT_NE(form, nullptr);
        gui::settle();
        gui::give_focus(form->common.shell);
    }
    Widget field(const char *name) const { return XtNameToWidget(form->common.widget, name); }
    std::string text(const char *name) const { return gui::field_text(field(name)); }
    void enter(const char *name, const char *value) const {
        XmTextFieldSetString(field(name), const_cast<char *>(value));
    }
    void push(const char *button) const { click(XtNameToWidget(form->common.widget, button)); }
    std::string focus() const {
        Widget at = XmGetFocusWidget(form->common.shell);
        return at != nullptr ? XtName(at) : "";
    }
    // The error that is shown; taken down.
    std::string complaint() {
        std::string now = shown(&form->common);
        if (!now.empty()) {
            answer(&form->common);
        }
        return now;
    }
    void done(NB_USHORT primary = NAP_OK, NB_ULONG secondary = 0) const {
        NAP_VCB vcb = {};
        vcb.opcode = 57;
        vcb.primary_rc = primary;
        vcb.secondary_rc = secondary;
        VGA_PROCESS_STATE work = {1, &vcb, handle};
        vga_form_verb_done(&work);
        gui::settle();
    }

    RECORD record;
    VGA_DIALOG *slot = nullptr;
    VGA_FORM *form = nullptr;
    NB_ULONG handle = 0;
    std::vector<std::string> texts;
};

TEST_F(Form, ShowsTheRecordAndKnowsWhatWasChanged) {
    open_form();
    EXPECT_EQ(slot, &form->common);
    EXPECT_EQ(text("*modedName"), "OLD");
    EXPECT_EQ(text("*modedLimit"), "20");
    EXPECT_EQ(focus(), "modedName") << "the first field that can be edited";
    EXPECT_FALSE(XtIsSensitive(field("*modedTimeout"))) << "without its flag";
    EXPECT_FALSE(XtIsSensitive(field("*modedTimeoutForm"))) << "and what stands around it";
    for (const char *button : {"*modedApplyButton", "*modedResetButton"}) {
        EXPECT_FALSE(XtIsSensitive(field(button))) << button;
    }
    enter("*modedLimit", "30");
    push("*modedTimed");
    EXPECT_TRUE(XtIsSensitive(field("*modedTimeout")));
    for (const char *button : {"*modedApplyButton", "*modedResetButton"}) {
        EXPECT_TRUE(XtIsSensitive(field(button))) << button;
    }
    push("*modedResetButton");
    EXPECT_EQ(text("*modedLimit"), "20");
    EXPECT_EQ(vga_form_dirty(form), 0);
    push("OK"); // nothing changed: no verb
    EXPECT_TRUE(state.issued.empty());
    EXPECT_EQ(form->common.in_use, 0);
    EXPECT_EQ(slot, nullptr);
}

TEST_F(Form, StopsAtTheFirstFieldThatIsWrong) {
    open_form();
    const struct {
        const char *field, *entered, *complaint, *focus, *good;
    } cases[] = {
        {"*modedName", "", "20: 0 -1", "modedName", "NEW"},
        {"*modedLimit", "", "21: 0 100", "modedLimit", "30"},
        {"*modedLimit", "101", "22: 0 100", "modedLimit", "30"},
        {"*modedLow", "31", "24: 0 30", "modedLow", "30"},
    };
    enter("*modedLow", "31"); // wrong all the time, but behind the others
    for (const auto &one : cases) {
        enter(one.field, one.entered);
        push("OK");
        EXPECT_EQ(shown(&form->common).substr(0, 2), std::string(one.complaint).substr(0, 2));
        if (one.complaint[1] != '0') {
            EXPECT_EQ(shown(&form->common), one.complaint);
        }
        complaint();
        gui::give_focus(form->common.shell);
        EXPECT_EQ(focus(), one.focus);
        enter(one.field, one.good);
    }
    enter("*modedName", "TAKEN");
    push("OK");
    EXPECT_EQ(complaint().substr(0, 2), "26");
    enter("*modedName", "NEW");
    state.refuse = 1;
    push("OK");
    EXPECT_EQ(complaint().substr(0, 2), "28") << "the dialog's own check comes last";
    state.refuse = 0;
    EXPECT_TRUE(state.issued.empty());
    push("*modedApplyButton");
    ASSERT_EQ(state.issued.size(), 1U);
    EXPECT_EQ(memcmp(state.issued[0].name, "NEW     ", 8), 0);
    EXPECT_EQ(state.issued[0].timeout, 7) << "a field that is off keeps its value, unchecked";
}

TEST_F(Form, WaitsForTheAnswer) {
    open_form();
    handle = form->common.handle;
    enter("*modedLimit", "30");
    push("OK");
    ASSERT_EQ(state.issued.size(), 1U);
    EXPECT_FALSE(XtIsSensitive(XtNameToWidget(form->common.widget, "OK")));
    EXPECT_FALSE(XtIsSensitive(field("*modedLimit")));
    gui::key("Return");
    // Whatever presses it in spite of that.
    for (XtCallbackProc press : {vga_form_ok_cb, vga_form_apply_cb, vga_form_reset_cb}) {
        press(field("*modedApplyButton"), nullptr, nullptr);
    }
    EXPECT_EQ(state.issued.size(), 1U);
    EXPECT_EQ(form->leaving, 1) << "as when OK was pressed";
    EXPECT_EQ(text("*modedLimit"), "30");

    done(NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    EXPECT_EQ(complaint(), "failed: not active");
    EXPECT_EQ(form->common.in_use, 1);
    EXPECT_TRUE(XtIsSensitive(field("*modedLimit")));
    EXPECT_EQ(text("*modedLimit"), "30") << "what was entered is not lost";

    state.more = 1;
    push("*modedApplyButton");
    done();
    EXPECT_EQ(form->pending, 1) << "there is another verb to come";
    done();
    EXPECT_EQ(form->pending, 0);
    EXPECT_EQ(vga_form_dirty(form), 0);
    EXPECT_EQ(form->common.in_use, 1) << "Apply keeps it open";
    enter("*modedLow", "6");
    push("OK");
    done();
    EXPECT_EQ(form->common.in_use, 0);

    open_form(VGA_FORM_ADD); // there is no record whose end it could hear of
    handle = form->common.handle;
    enter("*modedName", "NEW");
    push("OK");
    ASSERT_EQ(form->pending, 1);
    vga_form_verb_purged(57, main_dialog->handle);
    EXPECT_EQ(form->pending, 1) << "another's verb";
    vga_form_verb_purged(57, handle);
    EXPECT_EQ(complaint().substr(0, 8), "failed: ");
    EXPECT_TRUE(XtIsSensitive(XtNameToWidget(form->common.widget, "OK")));
    EXPECT_EQ(text("*modedName"), "NEW");
}

TEST_F(Form, LateAnswerFindsNothing) {
    open_form();
    handle = form->common.handle;
    enter("*modedLimit", "30");
    push("OK");
    push("Cancel");
    EXPECT_EQ(form->common.in_use, 0);
    open_form(); // the same descriptor, another life
    EXPECT_EQ(form->pending, 0);
    done(NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    EXPECT_EQ(shown(&form->common), "");
    enter("*modedLimit", "31");
    push("OK");
    done();
    EXPECT_EQ(form->common.in_use, 1) << "an answer to its former life";
    EXPECT_EQ(form->pending, 1);
}

TEST_F(Form, AsksFirst) {
    open_form();
    state.ask = 1;
    enter("*modedLimit", "30");
    push("OK");
    EXPECT_EQ(shown(&form->common).substr(0, 2), "27");
    answer(&form->common, "Cancel");
    EXPECT_TRUE(state.issued.empty());
    push("OK");
    answer(&form->common);
    EXPECT_EQ(state.issued.size(), 1U);
    EXPECT_EQ(shown(&form->common), "") << "it asks once";
}

TEST_F(Form, AnAnswerToAQuestionCountsOnlyWhereItWasAsked) {
    enum { OF_A_FORMER_LIFE, AFTER_A_CHANGE, TWICE };
    for (const int comes : {OF_A_FORMER_LIFE, AFTER_A_CHANGE, TWICE}) {
        open_form();
        state.ask = 1;
        enter("*modedLimit", "30");
        push("OK");
        const VGA_MODAL_DLG box = form->common.modal_dlg;
        if (comes == OF_A_FORMER_LIFE) {
            vga_close_children(&form->common, 1, 0);
            open_form();
            enter("*modedLimit", "31");
        } else if (comes == AFTER_A_CHANGE) {
            enter("*modedLimit", "101"); // what can no longer be issued
        } else {
            answer(&form->common);
        }
        box.callback(&form->common, VGA_ANSWER_OK, box.client_data);
        EXPECT_EQ(state.issued.size(), comes == TWICE ? 1U : 0U) << comes;
        vga_close_children(&form->common, 1, 0);
    }
}

TEST_F(Form, OneAfterTheOther) {
    open_form(VGA_FORM_REPEAT);
    handle = form->common.handle;
    EXPECT_EQ(text("*modedLimit"), "8") << "what a new one begins with";
    enter("*modedName", "ONE");
    enter("*modedLimit", "9");
    push("OK");
    done();
    EXPECT_EQ(form->common.in_use, 1);
    EXPECT_EQ(text("*modedName"), "") << "for the next name";
    EXPECT_EQ(text("*modedLimit"), "9");
    EXPECT_EQ(focus(), "modedName");
    enter("*modedName", "TWO");
    push("OK");
    ASSERT_EQ(state.issued.size(), 2U);
    EXPECT_EQ(memcmp(state.issued[1].name, "TWO", 3), 0);
    EXPECT_EQ(state.issued[1].limit, 9);
}

TEST_F(Form, FollowsTheRecordButNotOverTheOperatorsHands) {
    open_form();
    enter("*modedLimit", "30");
    record.limit = 40;
    record.low = 6;
    record.active = 9;
    record.level = 4;
    vga_record_changed(&record, VGA_RECORD_CHANGED);
    EXPECT_EQ(text("*modedLimit"), "30") << "touched";
    EXPECT_EQ(text("*modedLow"), "6");
    Widget item = nullptr;
    XtVaGetValues(field("*modedLevel"), XmNmenuHistory, &item, nullptr);
    EXPECT_EQ(item, field("*modedLevelRle"));
    push("*modedResetButton");
    EXPECT_EQ(text("*modedLimit"), "40") << "as the record is now";

    record.level = 2; // no item stands for it
    vga_record_changed(&record, VGA_RECORD_CHANGED);
    enter("*modedLow", "7");
    push("OK");
    ASSERT_EQ(state.issued.size(), 1U);
    EXPECT_EQ(state.issued[0].level, 2) << "what was not touched stays";
}

TEST_F(Form, OutlivesItsRecord) {
    open_form();
    enter("*modedLimit", "30");
    vga_record_changed(&record, VGA_RECORD_GONE);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(complaint(), "gone");
    EXPECT_EQ(gui::label_text(form->common.widget, "dialogTitle"), "Mode - gone");
    EXPECT_FALSE(XtIsManaged(XtNameToWidget(form->common.widget, "Cancel")));
    push("OK");
    EXPECT_TRUE(state.issued.empty());
    EXPECT_EQ(form->common.in_use, 0);

    open_form();
    EXPECT_EQ(gui::label_text(form->common.widget, "dialogTitle"), "Mode");
    handle = form->common.handle;
    enter("*modedLimit", "30");
    push("OK");
    vga_record_changed(&record, VGA_RECORD_GONE);
    complaint();
    EXPECT_TRUE(XtIsSensitive(XtNameToWidget(form->common.widget, "OK"))) << "nothing to wait for";
    done(NAP_COMM_FAILURE, NAP_NODE_GONE);
    EXPECT_EQ(complaint(), "");
    push("OK");
    EXPECT_EQ(form->common.in_use, 0);
    state.issued.clear();

    plan.defines = 1;
    open_form();
    vga_record_changed(&record, VGA_RECORD_GONE);
    EXPECT_EQ(complaint(), "gone: define?");
    push("OK");
    EXPECT_EQ(state.issued.size(), 1U) << "defined anew though nothing was changed";
}

TEST_F(Form, CanBeLookedAtOnly) {
    for (int why = 0; why < 2; why++) {
        state.may_edit = why == 0;
        gvga_read_only = why == 0;
        open_form();
        Boolean editable = True;
        XtVaGetValues(field("*modedLimit"), XmNeditable, &editable, nullptr);
        EXPECT_FALSE(editable);
        EXPECT_TRUE(XtIsSensitive(field("*modedLimit"))) << "it can be read and copied";
        EXPECT_FALSE(XtIsSensitive(field("*modedTimed")));
        EXPECT_FALSE(XtIsManaged(field("*modedApplyButton")));
        EXPECT_FALSE(XtIsManaged(field("*modedResetButton")));
        push("OK");
        EXPECT_EQ(form->common.in_use, 0);
    }
    state.may_edit = 1;
    gvga_read_only = 0;
    open_form(); // and back
    EXPECT_TRUE(XtIsManaged(XtNameToWidget(form->common.widget, "Cancel")));
    enter("*modedLimit", "30");
    push("OK");
    EXPECT_EQ(state.issued.size(), 1U);
}

TEST_F(Form, KeysWork) {
    open_form();
    gui::key("Tab");
    EXPECT_EQ(focus(), "modedLimit");
    enter("*modedLimit", "30");
    gui::key("Return"); // in a field presses OK
    ASSERT_EQ(state.issued.size(), 1U);
    handle = form->common.handle;
    done(NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    complaint();
    gui::give_focus(form->common.shell);
    gui::key("Escape");
    EXPECT_EQ(form->common.in_use, 0);
}

} // namespace
