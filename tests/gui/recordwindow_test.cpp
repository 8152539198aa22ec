// Windows that list records without lines, against the node software: what they show, follow, add
// and delete.  LooksWhole is run in five looks (CMakeLists.txt).

#include "live_forms.h"

#include "forms.h"
#include "recordwindow.h"

#include <Xm/List.h>

SCRIPTED_NOF_ENTRY

using namespace forms;

namespace {

class RecordWindows : public LIVE_FORMS {
protected:
    void SetUp() override {
        LIVE_FORMS::SetUp();
        node = static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes));
    }

    VGA_DIALOG *open(const char *name) {
        vga_show_record_window(name, gvga_main_dialog, node);
        gui::settle();
        VGA_DIALOG *desc = vga_find_row_named(name)->last_desc;
        EXPECT_TRUE(desc != nullptr && desc->in_use != 0 && XtIsManaged(desc->widget));
        gui::give_focus(desc->shell);
        return desc;
    }
    static Widget part(const VGA_DIALOG *desc, int list, const char *name) {
        return XtNameToWidget(desc->widget, ("*recordPlace" + std::to_string(list) + name).c_str());
    }
    /* The rows, each with its columns one behind the other. */
    static std::vector<std::string> rows(const VGA_DIALOG *desc, int list) {
        XmStringTable items = nullptr;
        int count = 0;
        XtVaGetValues(part(desc, list, "*rowListRows"), XmNitems, &items, XmNitemCount, &count,
                      nullptr);
        std::vector<std::string> found;
        for (int item = 0; item < count; item++) {
            const VGA_TEXT text(static_cast<NB_CHAR *>(XmStringUnparse(
                items[item], nullptr, XmCHARSET_TEXT, XmMULTIBYTE_TEXT, nullptr, 0, XmOUTPUT_ALL)));
            found.emplace_back(text.get());
        }
        return found;
    }
    static std::ptrdiff_t place(const VGA_DIALOG *desc, int list, const std::string &name) {
        const auto all = rows(desc, list);
        return std::find_if(all.begin(), all.end(),
                            [&name](const std::string &row) { return row.starts_with(name); }) -
               all.begin();
    }
    static bool has(const VGA_DIALOG *desc, int list, const std::string &name) {
        return place(desc, list, name) < static_cast<std::ptrdiff_t>(rows(desc, list).size());
    }
    static void select(const VGA_DIALOG *desc, int list, const std::string &name) {
        ASSERT_TRUE(has(desc, list, name)) << name;
        XmListSelectPos(part(desc, list, "*rowListRows"),
                        static_cast<int>(place(desc, list, name)) + 1, True);
    }
    /* The form that is open over the window. */
    static VGA_FORM *form_of(const char *name) {
        VGA_DIALOG *desc = vga_find_row_named(name)->last_desc;
        return desc != nullptr && desc->in_use != 0 ? vga_form_of(desc) : nullptr;
    }

    VGA_NODE *node = nullptr;
};

TEST_F(RecordWindows, LooksWhole) {
    for (const VGA_RECORD_WINDOW &row : gvga_record_windows) {
        SCOPED_TRACE(row.name);
        VGA_DIALOG *desc = open(row.name);
        std::vector<Widget> all;
        looks::collect(desc->widget, all);
        const bool scrolled = XtIsManaged(XtNameToWidget(desc->widget, "*HorScrollBar"));
        for (Widget widget : all) {
            if (!scrolled && looks::is_label(widget) && XtIsManaged(widget) &&
                XtIsManaged(XtParent(XtParent(widget)))) {
                looks::expect_whole(widget);
            }
        }
        EXPECT_NE(vga_get_title(desc).find(node->name), std::string::npos);
        for (const VGA_RECORD_LIST &list : row.lists) {
            const std::string name = list.name;
            EXPECT_NE(vga_form_literal(name + "_title"), "");
            for (const VGA_RECORD_COLUMN &column : list.columns) {
                EXPECT_NE(vga_form_literal(name + "_" + column.field->name), "") << name;
            }
        }
        Dimension width = 0, height = 0;
        XtVaGetValues(desc->widget, XmNwidth, &width, XmNheight, &height, nullptr);
        EXPECT_LE(width, WidthOfScreen(gvga_screen));
        EXPECT_LE(height, HeightOfScreen(gvga_screen) - 30);
        vga_close_children(desc, 1, 0);
    }
}

TEST_F(RecordWindows, AddsChangesAndDeletesByKey) {
    VGA_DIALOG *desc = open("dirw");
    const size_t before = rows(desc, 0).size();
    gui::key("Insert");
    VGA_FORM *form = form_of("dird");
    ASSERT_NE(form, nullptr);
    enter(form, VGA_DIRD_NAME, "NETA.NEWLU");
    enter(form, VGA_DIRD_FQCP_NAME, "NETA.MARKET");
    push(button(form, "OK"));
    run(1);
    EXPECT_EQ(form_of("dird"), nullptr);
    ASSERT_TRUE(gui::wait_for([&] { return has(desc, 0, "NETA.NEWLU"); }));
    EXPECT_EQ(rows(desc, 0).size(), before + 1);

    select(desc, 0, "NETA.NEWLU");
    gui::give_focus(desc->shell);
    gui::key("Return");
    form = form_of("dird");
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(vga_form_field_text(form, VGA_DIRD_NAME), "NETA.NEWLU");
    vga_close_children(&form->common, 1, 0);

    gui::give_focus(desc->shell);
    gui::key("Delete");
    EXPECT_NE(gui::box_text(desc).find("NETA.NEWLU"), std::string::npos);
    push(XtNameToWidget(desc->modal_dlg.dialog, "OK"));
    run(1);
    EXPECT_TRUE(gui::wait_for([&] { return !has(desc, 0, "NETA.NEWLU"); }));
    EXPECT_EQ(rows(desc, 0).size(), before);
}

TEST_F(RecordWindows, ShowsWhatBelongsToTheSelectedOneAndSaysWhatStays) {
    VGA_DIALOG *desc = open("cosw");
    select(desc, 0, "#INTER");
    EXPECT_FALSE(rows(desc, 2).empty());
    EXPECT_FALSE(XtIsSensitive(part(desc, 0, "*rowListRemove"))) << "every node has it";
    gui::key("Delete");
    EXPECT_EQ(gui::box_text(desc), "");

    push(part(desc, 0, "*rowListAdd"));
    enter(form_of("cosd"), VGA_COSD_NAME, "NIGHT");
    push(button(form_of("cosd"), "OK"));
    run(1);
    ASSERT_TRUE(gui::wait_for([&] { return has(desc, 0, "NIGHT"); }));
    select(desc, 0, "NIGHT");
    EXPECT_TRUE(XtIsSensitive(part(desc, 0, "*rowListRemove")));
    EXPECT_TRUE(rows(desc, 2).empty());
    push(part(desc, 2, "*rowListAdd"));
    VGA_FORM *form = form_of("costd");
    ASSERT_NE(form, nullptr);
    enter(form, VGA_COSTD_ROW_NUMBER, "1");
    enter(form, VGA_COSTD_MIN_CAPACITY, "9");
    enter(form, VGA_COSTD_MAX_CAPACITY, "8");
    push(button(form, "OK"));
    EXPECT_NE(box(form).find("Capacity at most"), std::string::npos);
    answer_box(form);
    enter(form, VGA_COSTD_MAX_CAPACITY, "9");
    push(button(form, "OK"));
    run(1);
    EXPECT_TRUE(gui::wait_for([&] { return has(desc, 2, "1"); }));

    // It belongs to the window that opened it.
    vga_close_children(gvga_main_dialog, 0, 1);
    EXPECT_EQ(desc->in_use, 0);
}

} // namespace
