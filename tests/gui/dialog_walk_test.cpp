// Walks all forms of the table of windows and all their fields, on records of a sample domain that
// the node software itself answers for.  A new dialog needs no line here.  The tests named Look are
// run in five looks (CMakeLists.txt).

#include "live_forms.h"

#include "letters.h"

#include <Xm/DrawnB.h>
#include <Xm/MenuShell.h>
#include <Xm/PushB.h>
#include <Xm/TabStack.h>

SCRIPTED_NOF_ENTRY

using namespace forms;

namespace {

/* A way to open a form. */
struct WAY {
    NB_USHORT id;
    VGA_FORM_MODE mode;
    std::string name;
};

class Forms : public LIVE_FORMS {
protected:
    static void SetUpTestSuite() { looks::open_windows(); }

    void SetUp() override {
        LIVE_FORMS::SetUp();
        find_ways();
    }

    static const VGA_FORM_PLAN *plan_of(NB_USHORT id) {
        VGA_DIALOG *desc = nullptr;
        EXPECT_EQ(vga_get_dialog(id, gvga_main_dialog, nullptr, &desc), 1);
        if (desc == nullptr) {
            return nullptr;
        }
        const VGA_FORM_PLAN *plan = vga_form_of(desc)->plan;
        vga_close_children(desc, 1, 1);
        return plan;
    }

    void find_ways() {
        for (const VGA_UID_DESC &row : gvga_uid_desc) {
            const VGA_FORM_PLAN *plan =
                row.record_changed == vga_form_record_changed ? plan_of(row.dialog_id) : nullptr;
            if (plan == nullptr) {
                continue;
            }
            plans[row.dialog_id] = plan;
            ways.push_back({row.dialog_id, VGA_FORM_CHANGE, row.name});
            const bool adds =
                std::any_of(plan->fields.begin(), plan->fields.end(),
                            [](const VGA_FIELD &field) { return field.has(VGA_FIELD_KEY); });
            if (adds && plan->kind != VGA_FORM_CHILD) {
                ways.push_back({row.dialog_id, VGA_FORM_ADD, row.name + std::string(" (new)")});
            }
        }
        ASSERT_FALSE(ways.empty());
    }

    /* The form, on a record that can be edited if there is one; what a status form asks at its
     * beginning is answered. */
    VGA_FORM *open_form(const WAY &way) {
        const VGA_FORM_PLAN &plan = *plans.at(way.id);
        VGA_FORM *form = nullptr;
        if (plan.kind == VGA_FORM_CHILD) {
            for (const WAY &other : ways) {
                for (const VGA_FORM_OPENER &opener : plans.at(other.id)->children) {
                    if (strcmp(opener.dialog, gvga_uid_desc[way.id].name) == 0) {
                        return vga_form_open_child(open_form(other), way.id);
                    }
                }
            }
        }
        for (const PLACE &place : places_of(plan.type)) {
            if (form != nullptr) {
                vga_close_children(&form->common, 1, 1);
            }
            const bool adding = way.mode == VGA_FORM_ADD;
            form = vga_form_open(way.id, gvga_main_dialog, adding ? nullptr : place.record,
                                 adding ? place.owner : nullptr, way.mode);
            if (form == nullptr || form->read_only == 0) {
                break;
            }
        }
        if (form != nullptr) {
            run(1);
            gui::settle();
            gui::give_focus(form->common.shell);
        }
        EXPECT_NE(form, nullptr) << "no record for the form";
        return form;
    }

    /* Calls `visit` with each form, opened in each way. */
    template <class Visit> void for_each_form(Visit visit) {
        for (const WAY &way : ways) {
            SCOPED_TRACE(way.name);
            if (VGA_FORM *form = open_form(way)) {
                visit(form);
                vga_close_children(gvga_main_dialog, 0, 1);
                run(1);
                gui::settle();
            }
        }
    }

    std::vector<WAY> ways;
    std::map<NB_USHORT, const VGA_FORM_PLAN *> plans;
};

/* Values. */

/* What to try for a field until one does. */
std::vector<std::string> values(const VGA_FORM *form, NB_USHORT number) {
    const VGA_FIELD &field = row(form, number);
    std::vector<std::string> all;
    if (is_toggle(form, number)) {
        return {"yes", "no"};
    }
    if (is_menu(form, number)) {
        for (size_t item = 0; item < items(form, number).size(); item++) {
            all.push_back(std::to_string(item));
        }
        return all;
    }
    if (field.choices != nullptr) {
        for (const VGA_CHOICE &choice : field.choices(form)) {
            all.push_back(choice.text);
        }
    }
    if (field.is(FieldKind::Number)) {
        const auto high = vga_field_high(field, vga_form_wanted(form));
        for (const int64_t value : {high, high - 1, int64_t{field.low} + 1, int64_t{field.low}}) {
            all.push_back(std::to_string(std::max<int64_t>(value, field.low)));
        }
        return all;
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

std::vector<NB_UCHAR> wanted(const VGA_FORM *form) {
    const auto *bytes = static_cast<const NB_UCHAR *>(vga_form_wanted(form));
    return {bytes, bytes + form->plan->data_size};
}

/* Gives the field a value that differs from what it shows now and from the record, and with which
 * the form can be sent; false: there is none. */
bool change(VGA_FORM *form, NB_USHORT number) {
    NB_CHAR before[VGA_FIELD_TEXT_SIZE];
    vga_form_collect(form, -1);
    vga_field_to_text(row(form, number), vga_form_wanted(form), before);
    const std::string read = vga_form_field_text(form, number);
    for (const std::string &value : values(form, number)) {
        enter(form, number, value);
        if (vga_form_field_text(form, number) != read &&
            vga_form_field_is(form, number, vga_form_shown(form)) == 0 &&
            !vga_form_collect(form, -1)) {
            return true;
        }
    }
    return false;
}

/* Fills a new record's form until it could be sent. */
bool complete(VGA_FORM *form) {
    for (NB_USHORT tries = 0; tries <= 2 * count(form); tries++) {
        const VGA_FAULT fault = vga_form_collect(form, -1);
        if (!fault || fault.field < 0) {
            return !fault;
        }
        const auto number = static_cast<NB_USHORT>(fault.field);
        for (const std::string &value : values(form, number)) {
            enter(form, number, value);
            const VGA_FAULT next = vga_form_collect(form, -1);
            if (!next || next.field != fault.field) {
                break;
            }
        }
    }
    return false;
}

bool holds(const VGA_FORM *form, const VGA_CONDITION &condition) {
    if (condition.test == VGA_WHEN_NEW) {
        return form->adding != 0;
    }
    NB_CHAR text[VGA_FIELD_TEXT_SIZE];
    vga_field_to_text(row(form, static_cast<NB_USHORT>(condition.field)), vga_form_wanted(form),
                      text);
    return condition.test == VGA_WHEN_ABOVE
               ? strtol(text, nullptr, 10) > strtol(condition.value, nullptr, 10)
               : (strcmp(text, condition.value) == 0) == (condition.test == VGA_WHEN_IS);
}

/* Fills the fields that it depends on so that it can be edited; false: not in this form. */
bool make_useful(VGA_FORM *form, NB_USHORT number) {
    for (const VGA_CONDITION &condition : row(form, number).when) {
        if (condition.field < 0) {
            continue;
        }
        const auto other = static_cast<NB_USHORT>(condition.field);
        make_useful(form, other);
        const auto choices = values(form, other);
        for (size_t at = 0; at < choices.size() && !holds(form, condition); at++) {
            enter(form, other, choices[at]);
        }
    }
    return vga_form_field_editable(form, number) != 0;
}

void reset(VGA_FORM *form) {
    answer_box(form);
    memcpy(vga_form_working(form), vga_form_shown(form), form->plan->data_size);
    vga_form_fill(form);
    if (form->adding != 0) {
        EXPECT_TRUE(complete(form));
    }
}

/* Presses Apply, or OK where there is none, and says yes to every question. */
void send(VGA_FORM *form) {
    push(form->apply_button != nullptr ? form->apply_button : button(form, "OK"));
    for (int box_number = 0; box_number < 3 && in_flight() == 0; box_number++) {
        answer_box(form);
    }
}

/* The block that goes out for what the fields have now. */
std::vector<NB_UCHAR> block_of(VGA_FORM *form) {
    send(form);
    EXPECT_EQ(in_flight(), 1) << box(form);
    std::vector<NB_UCHAR> block;
    if (in_flight() == 1) {
        const auto *vcb = reinterpret_cast<const NB_UCHAR *>(scripted_nof.in_flight[0].vcb);
        block.assign(vcb, vcb + nap_find_verb(scripted_nof.in_flight[0].vcb->opcode)->block_size);
        scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
        gui::settle();
        EXPECT_NE(box(form), "") << "a verb failed";
        EXPECT_EQ(form->pending, 0);
        answer_box(form);
    }
    return block;
}

/* Where two blocks differ: from the first byte to behind the last. */
std::pair<size_t, size_t> difference(const std::vector<NB_UCHAR> &one,
                                     const std::vector<NB_UCHAR> &other) {
    size_t first = one.size(), last = 0;
    EXPECT_EQ(one.size(), other.size());
    for (size_t byte = 0; byte < std::min(one.size(), other.size()); byte++) {
        if (one[byte] != other[byte]) {
            first = std::min(first, byte);
            last = byte + 1;
        }
    }
    return {first, last};
}

/* Calls `visit` with the number of each field that can be edited, filled so that it can. */
template <class Visit> void for_each_field(VGA_FORM *form, Visit visit) {
    for (NB_USHORT number = 0; number < count(form); number++) {
        SCOPED_TRACE(row(form, number).widget);
        reset(form);
        if (form->read_only == 0 && make_useful(form, number) && complete(form)) {
            visit(number);
        }
    }
    reset(form);
}

bool changes_key(const VGA_FORM *form, NB_USHORT number) {
    return form->adding == 0 && row(form, number).has(VGA_FIELD_KEY);
}

/* By the first verb: what is not of the first record may have one of its own. */
bool is_carried(const VGA_FORM *form, NB_USHORT number) {
    const VGA_FORM_TYPE *type = form->plan->type;
    return type == nullptr || row(form, number).offset() < type->entry_size;
}

/* The tests. */

TEST_F(Forms, RefuseAndAcceptOnBothSidesOfEachBound) {
    for_each_form([](VGA_FORM *form) {
        for_each_field(form, [form](NB_USHORT number) {
            const VGA_FIELD &field = row(form, number);
            if (!field.is(FieldKind::Number)) {
                return;
            }
            vga_form_collect(form, -1);
            const int64_t low = field.low, high = vga_field_high(field, vga_form_wanted(form));
            for (const int64_t value : {low - 1, low, high, high + 1}) {
                if (value < 0 || (value == 0 && field.has(VGA_FIELD_ZERO_EMPTY))) {
                    continue;
                }
                SCOPED_TRACE(value);
                enter(form, number, std::to_string(value));
                std::vector<NB_UCHAR> data = wanted(form);
                const VGA_FAULT fault = vga_form_get_field(form, number, data.data());
                const bool differs = vga_form_field_is(form, number, vga_form_shown(form)) == 0;
                if (value >= low && value <= high) {
                    EXPECT_NE(fault.message, VGA_MSG_FORM_BAD_RANGE);
                    EXPECT_TRUE(field.bad == 0 || fault.message != field.bad);
                } else if (differs) {
                    EXPECT_NE(fault.message, 0);
                    push(form->apply_button);
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
        for (NB_USHORT number = 0; number < count(form); number++) {
            if (!row(form, number).has(VGA_FIELD_SHOWN) && form->plan->kind != VGA_FORM_STATUS) {
                seen[row(form, number).widget] |= false;
            }
        }
        for_each_field(form, [&](NB_USHORT number) {
            const VGA_FIELD &field = row(form, number);
            seen[field.widget] = true;
            // Something else is changed already, so that a verb goes out.
            for (NB_USHORT other = 0; other < count(form) && vga_form_changes(form) == 0; other++) {
                if (other != number && !changes_key(form, other) && make_useful(form, other) &&
                    (!change(form, other) || !make_useful(form, number))) {
                    reset(form);
                }
            }
            ASSERT_FALSE(vga_form_collect(form, -1));
            const NB_USHORT changes = vga_form_changes(form);
            const std::vector<NB_UCHAR> before = wanted(form);
            const bool first = form->adding != 0 || changes != 0;
            const std::vector<NB_UCHAR> block =
                first && !changes_key(form, number) ? block_of(form) : before;

            const bool changed = vga_form_field_is(form, number, vga_form_shown(form)) == 0;
            ASSERT_TRUE(change(form, number)) << "no value is found that can be entered";
            EXPECT_EQ(vga_form_changes(form), changes + (changed ? 0 : 1));
            EXPECT_TRUE(XtIsSensitive(form->apply_button));
            EXPECT_TRUE(XtIsSensitive(form->reset_button));
            const auto [from, to] = difference(before, wanted(form));
            EXPECT_GE(from, field.offset());
            EXPECT_LE(to, field.offset() + field.row->width);
            EXPECT_LT(from, to);
            if (!changes_key(form, number) && is_carried(form, number)) {
                const std::vector<NB_UCHAR> now = block_of(form);
                const auto [first_byte, last_byte] =
                    difference(first ? block : std::vector<NB_UCHAR>(now.size()), now);
                EXPECT_LT(first_byte, last_byte) << "the verb does not carry it";
                EXPECT_TRUE(!first || last_byte - first_byte <= field.row->width);
            }
            push(form->reset_button);
            EXPECT_EQ(vga_form_changes(form), 0);
            EXPECT_NE(vga_form_field_is(form, number, vga_form_shown(form)), 0);
            EXPECT_FALSE(XtIsSensitive(form->reset_button));
        });
    });
    for (const auto &[field, edited] : seen) {
        EXPECT_TRUE(edited) << field << " can never be edited";
    }
}

/* Changes some field; 0 when there is none. */
NB_USHORT change_any(VGA_FORM *form) {
    reset(form);
    for (NB_USHORT number = 0; number < count(form) && form->read_only == 0; number++) {
        if (!changes_key(form, number) && vga_form_field_editable(form, number) != 0 &&
            change(form, number)) {
            return 1;
        }
    }
    return 0;
}

TEST_F(Forms, WaitForTheAnswer) {
    for_each_form([this](VGA_FORM *form) {
        if (form->plan->kind == VGA_FORM_CHILD) {
            return;
        }
        const bool asks = form->plan->kind == VGA_FORM_STATUS;
        const auto ask = [&] { asks ? push(form->refresh_button) : send(form); };
        if (!asks && !change_any(form)) {
            return;
        }
        std::vector<std::string> entered;
        for (NB_USHORT number = 0; number < count(form); number++) {
            entered.push_back(vga_form_field_text(form, number));
        }
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

        scripted_nof.complete(0, NAP_STATE_CHECK, NAP_NODE_NOT_ACTIVE);
        gui::settle();
        EXPECT_NE(box(form), "");
        answer_box(form);
        EXPECT_EQ(form->pending, 0);
        for (NB_USHORT number = 0; number < count(form); number++) {
            EXPECT_TRUE(asks || entered[number] == vga_form_field_text(form, number)) << "it stays";
        }

        ask(); // and the node answers
        run(1);
        gui::settle();
        EXPECT_EQ(box(form), "");
        EXPECT_EQ(form->pending, 0);
        EXPECT_EQ(vga_form_changes(form), 0);
        EXPECT_EQ(form->adding, 0);

        if (asks || change_any(form)) {
            ask();
            push(button(form, "Cancel"));
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
            if (form->plan->kind == VGA_FORM_CHILD || item == gvga_system) {
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
            EXPECT_EQ(form->common.in_use, 0);
        });
    }
}

TEST_F(Forms, CanOnlyBeLookedAtWithoutRights) {
    gvga_read_only = 1;
    for_each_form([](VGA_FORM *form) {
        for (NB_USHORT number = 0; number < count(form); number++) {
            SCOPED_TRACE(row(form, number).widget);
            Widget widget = vga_form_widget(form, number);
            Boolean editable = False;
            if (XmIsTextField(widget) || XmIsText(widget)) {
                XtVaGetValues(widget, XmNeditable, &editable, nullptr);
            } else {
                editable = !row(form, number).has(VGA_FIELD_SHOWN) && XtIsSensitive(widget);
            }
            EXPECT_FALSE(editable);
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

/* Everything from the widget up is managed: it is there when its page shows. */
bool stands_on(Widget widget, Widget page) {
    for (; !XtIsShell(widget); widget = XtParent(widget)) {
        if (!XtIsManaged(widget)) {
            return false;
        }
        if (XmIsScrolledWindow(widget) && widget != page) {
            return false; // another page
        }
    }
    return true;
}

void look_at_page(VGA_FORM *form, Widget page) {
    std::vector<Widget> widgets;
    looks::collect(form->common.widget, widgets);
    std::map<NB_CHAR, std::string> letters;
    for (Widget widget : widgets) {
        if (!looks::is_label(widget) || XmIsDrawnButton(widget) || !stands_on(widget, page) ||
            XmIsMenuShell(XtParent(XtParent(widget)))) {
            continue;
        }
        looks::expect_whole(widget);
        const NB_CHAR letter = vga_letter_of(widget);
        const std::string text = gui::label_text(widget);
        EXPECT_TRUE(letter == 0 || letters.insert({letter, text}).second)
            << text << " and " << letters[letter] << " have the same letter";
    }
}

void look_at_field(VGA_FORM *form, NB_USHORT number) {
    SCOPED_TRACE(row(form, number).widget);
    EXPECT_NE(vga_form_label(form, number), "");
    Widget widget = vga_form_widget(form, number);
    Widget block = vga_form_block(widget);
    const std::string label = std::string(XtName(block)) + "_label";
    Widget lettered =
        is_toggle(form, number) ? widget : XtNameToWidget(XtParent(block), label.c_str());
    const NB_USHORT few = looks::look().language[0] == '\0' ? 20 : 12; // accents leave few letters
    if (!row(form, number).has(VGA_FIELD_SHOWN) && count(form) < few) {
        EXPECT_NE(vga_letter_of(lettered), 0) << "no letter";
    }
    if (is_menu(form, number)) {
        for (size_t item = 0; item < items(form, number).size(); item++) {
            enter(form, number, std::to_string(item));
            gui::settle();
            looks::expect_whole(XmOptionButtonGadget(widget));
        }
    } else if (XmIsTextField(widget)) {
        XtWidgetGeometry wanted = {};
        XtQueryGeometry(widget, nullptr, &wanted);
        EXPECT_GE(widget->core.width, wanted.width);
        EXPECT_GE(widget->core.height, wanted.height);
    }
    vga_form_say(form, vga_shown_hint(widget));
    gui::settle();
    looks::expect_whole(form->message_line);
    vga_form_say(form, "");
}

TEST_F(Forms, LookWhole) {
    for_each_form([](VGA_FORM *form) {
        Dimension width = 0, height = 0;
        XtVaGetValues(form->common.shell, XmNwidth, &width, XmNheight, &height, nullptr);
        constexpr int frame = 32; // of a window manager: its title, and edges
        EXPECT_LE(width, WidthOfScreen(gvga_screen));
        EXPECT_LE(height + frame, HeightOfScreen(gvga_screen));
        for (NB_USHORT number = 0; number < form->plan->pages; number++) {
            SCOPED_TRACE("page " + std::to_string(number + 1));
            const std::string name = "Page" + std::to_string(number + 1);
            vga_form_show_page(form, number);
            gui::settle();
            look_at_page(form, vga_form_part(form, name.c_str()));
            for (NB_USHORT field = 0; field < count(form); field++) {
                if (row(form, field).page == number) {
                    look_at_field(form, field);
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
