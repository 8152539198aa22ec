// Walks all forms of the table of windows and all their fields, on records of a sample domain that
// the node software itself answers for.  A new dialog needs no line here.  LooksWhole is run in
// five looks (CMakeLists.txt).

#include "live_forms.h"

#include "letters.h"
#include "nesteditems.h"
#include "passwordfield.h"

#include <Xm/DrawnB.h>
#include <Xm/MenuShell.h>
#include <Xm/PushB.h>

#ifndef FORMS_DIR // a part of dialog_form_test, which has it
SCRIPTED_NOF_ENTRY
#endif

using namespace forms;

namespace {

/* Values. */

/* What to try for a field until one does. */
std::vector<std::string> values(const VGA_FORM *form, NB_USHORT number) {
    const VGA_FIELD &field = row(form, number);
    std::vector<std::string> all;
    if (is_toggle(form, number)) {
        return {"yes", "no"};
    }
    for (size_t item = 0; is_menu(form, number) && item < items(form, number).size(); item++) {
        all.push_back(std::to_string(item));
    }
    if (field.is(FieldKind::Number)) {
        const auto high = vga_field_high(field, vga_form_wanted(form));
        for (const int64_t value : {high, high - 1, int64_t{field.low} + 1, int64_t{field.low}}) {
            all.push_back(std::to_string(std::max<int64_t>(value, field.low)));
        }
    }
    if (!all.empty()) {
        return all;
    }
    for (const VGA_CHOICE &choice :
         field.choices != nullptr ? field.choices(form) : std::vector<VGA_CHOICE>()) {
        all.push_back(choice.text);
    }
    for (const char *text : {"QUAIL", "PLOVER", "NETQ.QUAIL", "NETQ.PLOVER", "0A", "1B", "A1B2C3D4",
                             "071 00003", "071 00004", "40:00:00:00:00:01", "40:00:00:00:00:02",
                             "10.1.2.3", "10.1.2.4", "255.255.0.0", "255.0.0.0"}) {
        all.emplace_back(text);
    }
    const std::string digits(2 * field.row->width, '4');
    all.push_back(digits);
    all.push_back(digits.substr(1) + "5");
    return all;
}

/* Enters one after the other until one is as it has to be; false: none is. */
template <class Good> bool try_values(VGA_FORM *form, NB_USHORT number, Good good) {
    const auto all = values(form, number);
    return std::any_of(all.begin(), all.end(), [&](const std::string &value) {
        enter(form, number, value);
        return good();
    });
}

std::vector<NB_UCHAR> wanted(const VGA_FORM *form) {
    const auto *bytes = static_cast<const NB_UCHAR *>(vga_form_wanted(form));
    return {bytes, bytes + form->plan->data_size};
}

bool is_shown(const VGA_FORM *form, NB_USHORT number) {
    return vga_form_field_is(form, number, vga_form_shown(form)) != 0;
}

/* What the field has now, of a password, too. */
std::string typed(const VGA_FORM *form, NB_USHORT number) {
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    if (!row(form, number).is_secret()) {
        return vga_form_field_text(form, number);
    }
    vga_get_password(vga_form_widget(form, number), text, sizeof(text));
    return text;
}

/* Gives the field a value that is neither what it has now nor the record's, and with which the form
 * can be sent. */
bool change(VGA_FORM *form, NB_USHORT number) {
    vga_form_collect(form, -1);
    const std::string before = typed(form, number);
    return try_values(form, number, [&] {
        return typed(form, number) != before && !is_shown(form, number) &&
               !vga_form_collect(form, -1);
    });
}

/* Fills what is missing until the form could be sent. */
bool complete(VGA_FORM *form) {
    for (NB_USHORT number = 0; number < count(form); number++) {
        if (form->adding != 0 && row(form, number).has(VGA_FIELD_KEY) &&
            vga_form_field_text(form, number).empty()) {
            std::vector<NB_UCHAR> data = wanted(form);
            try_values(form, number,
                       [&] { return !vga_form_get_field(form, number, data.data()); });
        }
    }
    VGA_FAULT fault = vga_form_collect(form, -1);
    for (NB_USHORT tries = 0; fault.field >= 0 && tries <= 2 * count(form); tries++) {
        try_values(form, static_cast<NB_USHORT>(fault.field), [&] {
            const VGA_FAULT next = vga_form_collect(form, -1);
            return !next || next.field != fault.field;
        });
        fault = vga_form_collect(form, -1);
    }
    return !fault;
}

bool holds(const VGA_FORM *form, const VGA_CONDITION &condition) {
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    vga_field_to_text(row(form, static_cast<NB_USHORT>(condition.field)), vga_form_wanted(form),
                      text);
    return condition.test == VGA_WHEN_ABOVE
               ? strtol(text, nullptr, 10) > strtol(condition.value, nullptr, 10)
               : (strcmp(text, condition.value) == 0) == (condition.test == VGA_WHEN_IS);
}

/* Fills the fields that it depends on so that it can be edited; false: not in this form. */
bool make_useful(VGA_FORM *form, NB_USHORT number) {
    const auto when = row(form, number).when;
    for (const VGA_CONDITION &condition : when) {
        const auto other = static_cast<NB_USHORT>(condition.field);
        const auto all_hold = [&] {
            return std::all_of(when.begin(), when.end(), [&](const VGA_CONDITION &one) {
                return one.field != condition.field || holds(form, one);
            });
        };
        if (condition.field >= 0 && make_useful(form, other) && !all_hold()) {
            try_values(form, other, all_hold);
        }
    }
    return vga_form_field_editable(form, number) != 0;
}

/* Forms. */

/* A way to open a form. */
struct WAY {
    NB_USHORT id;
    const VGA_FORM_PLAN *plan;
    bool adds;
};

class Forms : public LIVE_FORMS {
protected:
    void SetUp() override {
        LIVE_FORMS::SetUp();
        VGA_NODE *last = nullptr;
        vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&last](VGA_NODE &one) { last = &one; });
        stop(last); // so that it can be configured
        for (const VGA_UID_DESC &row : gvga_uid_desc) {
            VGA_DIALOG *desc = nullptr;
            if (row.record_changed != vga_form_record_changed) {
                continue;
            }
            ASSERT_EQ(vga_get_dialog(row.dialog_id, gvga_main_dialog, nullptr, &desc), 1)
                << row.name;
            const VGA_FORM_PLAN *plan = vga_form_of(desc)->plan;
            vga_close_children(desc, 1, 1);
            ways.push_back({row.dialog_id, plan, false});
            const auto is_key = [](const VGA_FIELD &field) { return field.has(VGA_FIELD_KEY); };
            if (std::any_of(plan->fields.begin(), plan->fields.end(), is_key)) {
                ways.push_back({row.dialog_id, plan, true});
            }
        }
        ASSERT_FALSE(ways.empty());
    }

    /* Over the form that has a button or a list for it. */
    VGA_FORM *open_child(const WAY &way) {
        const std::string name = gvga_uid_desc[way.id].name;
        for (const WAY &other : ways) {
            for (const VGA_FORM_OPENER &opener : other.plan->children) {
                if (opener.dialog == name) {
                    return vga_form_open_child(open_form(other), way.id);
                }
            }
            for (const VGA_FORM_LIST &list : other.plan->lists) {
                if (list.editor == name) {
                    VGA_FORM *parent = open_form(other);
                    const auto *entry = static_cast<const NB_UCHAR *>(vga_form_working(parent));
                    const auto count = records::item_count(*list.items, entry);
                    return vga_form_open_item(parent, &list,
                                              way.adds ? static_cast<NB_LONG>(count) : 0);
                }
            }
        }
        return nullptr;
    }

    /* The form, on a record that can be edited if there is one, when all that it asked the node for
     * is answered. */
    VGA_FORM *open_form(const WAY &way) {
        if (way.plan->kind == VGA_FORM_CHILD) {
            return open_child(way);
        }
        VGA_FORM *form = nullptr;
        for (const PLACE &place : places_of(way.plan->type)) {
            if (form != nullptr) {
                vga_close_children(&form->common, 1, 1);
            }
            form = vga_form_open(way.id, gvga_main_dialog, way.adds ? nullptr : place.record,
                                 way.adds ? place.owner : nullptr,
                                 way.adds ? VGA_FORM_ADD : VGA_FORM_CHANGE);
            if (form == nullptr || form->read_only == 0) {
                break;
            }
        }
        run(1);
        return form;
    }

    /* Calls `visit` with each form, opened in each way. */
    template <class Visit> void for_each_form(Visit visit) {
        for (const WAY &way : ways) {
            SCOPED_TRACE(gvga_uid_desc[way.id].name + std::string(way.adds ? " (new)" : ""));
            VGA_FORM *form = open_form(way);
            ASSERT_NE(form, nullptr) << "no record for the form";
            gui::settle();
            gui::give_focus(form->common.shell);
            visit(form);
            vga_close_children(gvga_main_dialog, 0, 1);
            run(1);
            gui::settle();
        }
    }

    std::vector<WAY> ways;
};

void reset(VGA_FORM *form) {
    answer_box(form);
    memcpy(vga_form_working(form), vga_form_shown(form), form->plan->data_size);
    vga_form_fill(form);
    EXPECT_TRUE(form->adding == 0 || complete(form));
}

/* Calls `visit` with the number of each field that can be edited, filled so that it can. */
template <class Visit> void for_each_field(VGA_FORM *form, Visit visit) {
    for (NB_USHORT number = 0; number < count(form) && form->read_only == 0; number++) {
        SCOPED_TRACE(row(form, number).widget);
        reset(form);
        if (make_useful(form, number) && complete(form)) {
            visit(number);
        }
    }
}

/* Whether the first verb has its new bytes: a new name goes out later, and what is not of the first
 * record may have a verb of its own. */
bool is_carried(const VGA_FORM *form, NB_USHORT number) {
    const VGA_FORM_TYPE *type = form->plan->type;
    const auto settings = form->plan->settings;
    if (!settings.empty()) { // each has a verb of its own, or all have one that is the dialog's
        return settings.front().row->set == 0;
    }
    return form->plan->kind != VGA_FORM_CHILD &&
           (form->adding != 0 || !row(form, number).has(VGA_FIELD_KEY)) &&
           (type == nullptr || row(form, number).offset() < type->entry_size);
}

bool depends(const VGA_FORM *form, NB_USHORT number, int on) {
    const auto when = row(form, number).when;
    return std::any_of(when.begin(), when.end(), [&](const VGA_CONDITION &one) {
        return one.field == on ||
               (one.field >= 0 && depends(form, static_cast<NB_USHORT>(one.field), on));
    });
}

/* Changes some field whose bytes a verb carries; `but` neither that one nor what it decides on. */
bool change_any(VGA_FORM *form, int but = -1) {
    for (NB_USHORT number = 0; number < count(form) && form->read_only == 0; number++) {
        reset(form);
        const bool names = form->adding == 0 && row(form, number).has(VGA_FIELD_KEY);
        if (number != but && !depends(form, number, but) && !names &&
            vga_form_field_editable(form, number) != 0 && change(form, number) &&
            (but < 0 || make_useful(form, static_cast<NB_USHORT>(but)))) {
            return true;
        }
    }
    return false;
}

/* Does what Apply does, and says yes to every question. */
void send(VGA_FORM *form) {
    vga_form_submit(form, 0);
    gui::settle();
    for (int questions = 0; questions < 3 && in_flight() == 0; questions++) {
        answer_box(form);
    }
}

void fail(VGA_FORM *form) {
    scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
    gui::settle();
    EXPECT_NE(box(form), "");
    EXPECT_EQ(form->pending, 0);
    answer_box(form);
}

/* The block that goes out for what the fields have now. */
std::vector<NB_UCHAR> block_of(VGA_FORM *form) {
    send(form);
    EXPECT_EQ(in_flight(), 1) << box(form);
    std::vector<NB_UCHAR> block;
    if (in_flight() == 1) {
        const NAP_VCB *vcb = scripted_nof.in_flight[0].vcb;
        const auto *bytes = reinterpret_cast<const NB_UCHAR *>(vcb);
        block.assign(bytes, bytes + nap_find_verb(vcb->opcode)->block_size);
        fail(form);
    }
    return block;
}

/* Where two blocks differ: from the first byte to behind the last. */
std::pair<size_t, size_t> difference(const std::vector<NB_UCHAR> &one,
                                     const std::vector<NB_UCHAR> &other) {
    const size_t size = std::min(one.size(), other.size());
    size_t first = size, last = 0;
    EXPECT_EQ(one.size(), other.size());
    for (size_t byte = 0; byte < size; byte++) {
        if (one[byte] != other[byte]) {
            first = std::min(first, byte);
            last = byte + 1;
        }
    }
    return {first, last};
}

/* The tests. */

TEST_F(Forms, RefuseAndAcceptOnBothSidesOfEachBound) {
    for_each_form([](VGA_FORM *form) {
        for_each_field(form, [form](NB_USHORT number) {
            const VGA_FIELD &field = row(form, number);
            const int64_t low = field.low, high = vga_field_high(field, vga_form_wanted(form));
            for (const int64_t value : {low - 1, low, high, high + 1}) {
                if (!field.is(FieldKind::Number) || value < 0 ||
                    (value == 0 && field.has(VGA_FIELD_ZERO_EMPTY))) {
                    continue;
                }
                SCOPED_TRACE(value);
                enter(form, number, std::to_string(value));
                std::vector<NB_UCHAR> data = wanted(form);
                const VGA_FAULT fault = vga_form_get_field(form, number, data.data());
                if (value >= low && value <= high) {
                    EXPECT_NE(fault.message, VGA_MSG_FORM_BAD_RANGE);
                    EXPECT_TRUE(field.bad == 0 || fault.message != field.bad);
                } else if (!is_shown(form, number)) {
                    vga_form_submit(form, 0);
                    EXPECT_NE(fault.message, 0);
                    EXPECT_EQ(in_flight(), 0);
                    EXPECT_NE(box(form), "");
                    EXPECT_EQ(form->marks[number], VGA_MARK_WRONG);
                    answer_box(form);
                    EXPECT_EQ(XmGetFocusWidget(form->common.shell),
                              vga_form_focus_of(form, number));
                }
            }
        });
    });
}

TEST_F(Forms, ChangeWhatTheirFieldsAreAndNothingElse) {
    std::map<std::string, bool> seen; // of each field: it could be edited
    for_each_form([&seen](VGA_FORM *form) {
        for (const VGA_FIELD &field : form->plan->fields) {
            seen[field.widget] |= field.has(VGA_FIELD_SHOWN) || form->plan->kind == VGA_FORM_STATUS;
        }
        for_each_field(form, [&](NB_USHORT number) {
            const VGA_FIELD &field = row(form, number);
            seen[field.widget] = true;
            if (form->adding == 0) { // something else is changed, so that a verb goes out
                change_any(form, number);
                EXPECT_TRUE(make_useful(form, number) && complete(form));
            }
            const NB_USHORT changes = vga_form_changes(form);
            const bool sends = form->adding != 0 || changes != 0;
            const bool carried = is_carried(form, number);
            const bool fresh = is_shown(form, number);
            vga_form_collect(form, -1);
            const std::vector<NB_UCHAR> before = wanted(form);
            const std::vector<NB_UCHAR> block = sends && carried ? block_of(form) : before;

            ASSERT_TRUE(change(form, number)) << "no value is found that can be entered";
            EXPECT_EQ(vga_form_changes(form), changes + (fresh ? 1 : 0));
            for (Widget on : {form->apply_button, form->reset_button}) {
                EXPECT_TRUE(on == nullptr || XtIsSensitive(on));
            }
            const auto [from, to] = difference(before, wanted(form));
            EXPECT_GE(from, field.offset());
            EXPECT_LE(to, field.offset() + field.row->width);
            EXPECT_LT(from, to);
            if (sends && carried) {
                const auto [first, last] = difference(block, block_of(form));
                EXPECT_LT(first, last) << "the verb does not carry it";
                EXPECT_TRUE(first >= last || last - first <= field.row->width);
            }
            if (form->reset_button != nullptr) {
                push(form->reset_button);
                EXPECT_EQ(vga_form_changes(form), 0);
                EXPECT_TRUE(is_shown(form, number));
                EXPECT_FALSE(XtIsSensitive(form->reset_button));
            }
        });
    });
    for (const auto &[field, edited] : seen) {
        EXPECT_TRUE(edited) << field << " can never be edited";
    }
}

TEST_F(Forms, WaitForTheAnswer) {
    for_each_form([this](VGA_FORM *form) {
        const bool asks = form->plan->kind == VGA_FORM_STATUS;
        const auto ask = [&] { asks ? push(form->refresh_button) : send(form); };
        const auto texts = [form] {
            std::vector<std::string> all;
            for (NB_USHORT number = 0; number < count(form); number++) {
                all.push_back(vga_form_field_text(form, number));
            }
            return all;
        };
        if (form->plan->act != nullptr) { // others wait, and nothing needs to be changed
            push(button(form, "OK"));
            EXPECT_EQ(form->common.in_use, 0);
            EXPECT_GE(in_flight(), 1);
            return;
        }
        if (!asks && !change_any(form)) {
            return;
        }
        if (form->plan->kind == VGA_FORM_CHILD) { // nobody is asked: its parent has it
            push(button(form, "OK"));
            EXPECT_EQ(form->common.in_use, 0);
            EXPECT_EQ(vga_form_changes(vga_form_of(form->common.parent)), 1);
            return;
        }
        const auto entered = texts();
        ask();
        ASSERT_EQ(form->pending, 1);
        ASSERT_GE(in_flight(), 1);
        const NB_ULONG issued = scripted_nof.issued;
        ask();
        EXPECT_EQ(scripted_nof.issued, issued) << "once is enough";
        for (NB_USHORT number = 0; number < count(form); number++) {
            EXPECT_TRUE(asks || !XtIsSensitive(vga_form_widget(form, number)));
        }
        for (Widget off : {form->apply_button, form->reset_button}) {
            EXPECT_FALSE(off != nullptr && XtIsSensitive(off)) << XtName(off);
        }
        Widget focus = XmGetFocusWidget(form->common.shell);
        EXPECT_TRUE(asks || focus == nullptr || !XmIsPushButton(focus)) << XtName(focus);
        fail(form);
        EXPECT_TRUE(asks || texts() == entered) << "it stays";

        ask(); // and the node answers; if it says no, as it may, it is made to say yes
        run(1);
        gui::settle();
        if (!box(form).empty()) {
            answer_box(form);
            ask();
            while (in_flight() != 0) {
                scripted_nof.complete();
            }
            gui::settle();
        }
        EXPECT_EQ(box(form), "");
        EXPECT_EQ(form->pending, 0);
        EXPECT_EQ(form->adding, 0);
        if (form->common.in_use != 0) { // a guided form is closed
            EXPECT_EQ(vga_form_changes(form), 0);
            if (asks || change_any(form)) {
                ask();
                push(button(form, "Cancel"));
            }
            EXPECT_EQ(form->common.in_use, 0);
            run(1); // the answer comes too late
            EXPECT_EQ(form->common.in_use, 0);
        }
    });
}

TEST_F(Forms, OutliveTheirRecordAndItsOwner) {
    for (const bool pending : {false, true}) {
        for_each_form([pending](VGA_FORM *form) {
            NB_VOID *item = form->adding != 0 ? vga_form_owner(form) : vga_form_record(form);
            const bool waits = pending && form->plan->act == nullptr;
            if (form->plan->kind == VGA_FORM_CHILD || item == gvga_system || pending != waits) {
                return;
            }
            if (pending && change_any(form)) {
                send(form);
            }
            vga_record_changed(item, VGA_RECORD_GONE);
            gui::settle();
            EXPECT_NE(box(form), "");
            EXPECT_EQ(vga_form_record(form), nullptr);
            answer_box(form);
            const bool defines = form->adding != 0 && vga_form_owner(form) != nullptr;
            EXPECT_EQ(form->read_only != 0, !defines);
            while (in_flight() != 0) {
                scripted_nof.complete(0, NAP_PARAMETER_CHECK, NAP_UNKNOWN_RESOURCE);
                gui::settle();
                answer_box(form);
            }
            EXPECT_EQ(form->pending, 0);
            push(button(form, defines ? "Cancel" : "OK"));
            answer_box(form);
            EXPECT_EQ(form->common.in_use, 0);
        });
    }
}

TEST_F(Forms, GiveNothingToEditWithoutRights) {
    gvga_read_only = 1;
    for_each_form([](VGA_FORM *form) {
        for (NB_USHORT number = 0; number < count(form); number++) {
            Widget widget = vga_form_widget(form, number);
            Boolean editable = !row(form, number).has(VGA_FIELD_SHOWN) && XtIsSensitive(widget);
            if (XmIsTextField(widget)) {
                XtVaGetValues(widget, XmNeditable, &editable, nullptr);
            }
            EXPECT_FALSE(editable) << row(form, number).widget;
        }
        for (Widget off : {form->apply_button, form->reset_button}) {
            EXPECT_FALSE(off != nullptr && XtIsManaged(off));
        }
        push(button(form, form->plan->kind == VGA_FORM_STATUS ? "Cancel" : "OK"));
        EXPECT_EQ(form->common.in_use, 0);
        EXPECT_EQ(in_flight(), 0);
    });
    gvga_read_only = 0;
}

/* Everything above it is managed, and no other page is: it is there when the page shows. */
bool stands_on(Widget widget, Widget page) {
    for (; !XtIsShell(widget); widget = XtParent(widget)) {
        if (!XtIsManaged(widget) || (XmIsScrolledWindow(widget) && widget != page)) {
            return false;
        }
    }
    return true;
}

/* All labels of a page are whole; returns their letters, which no two share. */
VGA_LETTERS look_at_page(VGA_FORM *form, Widget page) {
    std::vector<Widget> widgets;
    looks::collect(form->common.widget, widgets);
    VGA_LETTERS letters;
    for (Widget widget : widgets) {
        if (looks::is_label(widget) && !XmIsDrawnButton(widget) && stands_on(widget, page) &&
            !XmIsMenuShell(XtParent(XtParent(widget)))) {
            looks::expect_whole(widget);
            const NB_CHAR letter = vga_letter_of(widget);
            EXPECT_TRUE(letter == 0 || letters.insert(letter).second)
                << gui::label_text(widget) << " has the letter of another";
        }
    }
    return letters;
}

/* The line has its size whatever it says, so that its text is measured. */
void look_at_line(Widget line) {
    XmString text = nullptr;
    XmRenderTable fonts = nullptr;
    Dimension width = 0, height = 0;
    XtVaGetValues(line, XmNlabelString, &text, XmNrenderTable, &fonts, nullptr);
    const VGA_STRING owned(text);
    XmStringExtent(fonts, text, &width, &height);
    EXPECT_LE(width, line->core.width) << gui::label_text(line);
    EXPECT_LE(height, line->core.height) << gui::label_text(line);
}

void look_at_field(VGA_FORM *form, NB_USHORT number, VGA_LETTERS taken) {
    SCOPED_TRACE(row(form, number).widget);
    Widget widget = vga_form_widget(form, number);
    const std::string text = vga_form_label(form, number);
    EXPECT_NE(text, "");
    Widget block = vga_form_block(widget);
    const std::string label = std::string(XtName(block)) + "_label";
    Widget lettered =
        is_toggle(form, number) ? widget : XtNameToWidget(XtParent(block), label.c_str());
    if (!row(form, number).has(VGA_FIELD_SHOWN) && form->plan->pages == 1) { // tabs have some, too
        EXPECT_TRUE(vga_letter_of(lettered) != 0 || vga_choose_letter(text, taken) == text.npos)
            << "no letter";
    }
    if (is_menu(form, number)) {
        for (size_t item = 0; item < items(form, number).size(); item++) {
            enter(form, number, std::to_string(item));
            gui::settle();
            looks::expect_whole(XmOptionButtonGadget(widget));
        }
    }
    vga_form_say(form, vga_shown_hint(widget));
    gui::settle();
    look_at_line(form->message_line);
    vga_form_say(form, "");
}

/* The Tab key comes to every field of the page that can be edited. */
void tab_through(const VGA_FORM *form, NB_USHORT page) {
    std::set<Widget> reached;
    for (Widget now = nullptr; reached.insert(now).second;) {
        gui::key("Tab");
        now = XmGetFocusWidget(form->common.shell);
    }
    for (NB_USHORT field = 0; field < count(form); field++) {
        if (row(form, field).page == page && vga_form_field_editable(form, field) != 0) {
            EXPECT_TRUE(reached.contains(vga_form_focus_of(form, field)))
                << row(form, field).widget << " is no stop of the Tab key";
        }
    }
}

TEST_F(Forms, LookWhole) {
    for_each_form([](VGA_FORM *form) {
        constexpr int frame = 32; // of a window manager
        const auto &shell = form->common.shell->core;
        EXPECT_LE(shell.width, WidthOfScreen(gvga_screen));
        EXPECT_LE(shell.height + frame, HeightOfScreen(gvga_screen));
        for (NB_USHORT number = 0; number < form->plan->pages; number++) {
            SCOPED_TRACE("page " + std::to_string(number + 1));
            vga_form_show_page(form, number);
            gui::settle();
            const std::string name = "Page" + std::to_string(number + 1);
            const VGA_LETTERS taken = look_at_page(form, vga_form_part(form, name.c_str()));
            tab_through(form, number);
            for (NB_USHORT field = 0; field < count(form); field++) {
                if (row(form, field).page == number) {
                    look_at_field(form, field, taken);
                }
            }
        }
        if (Widget tabs = vga_form_part(form, "Pages")) {
            XtWidgetGeometry wanted = {};
            XtQueryGeometry(tabs, nullptr, &wanted);
            EXPECT_GE(tabs->core.width, wanted.width);
        }
    });
}

} // namespace
