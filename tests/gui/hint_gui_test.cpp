// Hints of fields and reasons of controls that are off, with a real pointer: tool tips and the
// message line.

#include "gui_support.h"

#include "hints.h"
#include "messages.h"

#include <Xm/ComboBox.h>
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/PushBG.h>
#include <Xm/RowColumn.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <Xm/VendorS.h>
#include <Xm/XmP.h>

namespace {

class Hints : public testing::Test {
protected:
    void SetUp() override {
        gui::open();
        // Short delays, but no end while a test looks.
        XrmDatabase database = XtDatabase(gvga_display);
        XrmPutLineResource(&database, "*toolTipPostDelay: 30");
        XrmPutLineResource(&database, "*toolTipPostDuration: 60000");
        gvga_messages[1] = "1 to 9 seconds";
        gvga_messages[2] = "Switched off by the node";
        make("hints");
    }

    void make(const char *name) {
        shell = gui::make_shell(name, 100, 100, 300, 200);
        column = XtVaCreateManagedWidget("column", xmRowColumnWidgetClass, shell, nullptr);
        field = XtVaCreateManagedWidget("field", xmTextFieldWidgetClass, column, nullptr);
        other = XtVaCreateManagedWidget("other", xmTextWidgetClass, column, nullptr);
        form = XtVaCreateManagedWidget("form", xmFormWidgetClass, column, nullptr);
        inner = XtVaCreateManagedWidget("inner", xmPushButtonWidgetClass, form, nullptr);
        gadget = XtVaCreateManagedWidget("gadget", xmPushButtonGadgetClass, column, nullptr);
        line = XtVaCreateManagedWidget("line", xmTextFieldWidgetClass, column, XmNeditable, False,
                                       XmNtraversalOn, False, nullptr);
        leave();
        gui::show(shell);
        XmProcessTraversal(other, XmTRAVERSE_CURRENT);
        gui::settle();
    }

    void TearDown() override {
        leave();
        XtDestroyWidget(shell);
        gui::settle();
    }

    static void leave() {
        XWarpPointer(gvga_display, None, gvga_root_window, 0, 0, 0, 0, 5, 5);
        gui::settle();
    }

    static void point_at(Widget widget) {
        if (XtIsWidget(widget)) {
            gui::move_to(widget, 8, 8);
            gui::move_to(widget, 10, 9);
        } else {
            Position x = 0, y = 0;
            XtVaGetValues(widget, XmNx, &x, XmNy, &y, nullptr);
            gui::move_to(XtParent(widget), x + 5, y + 5);
            gui::move_to(XtParent(widget), x + 7, y + 6);
        }
        gui::settle();
    }

    // The text of the tip that is on the screen: the toolkit's own or the program's.
    std::string tip() const {
        Widget label = XmToolTipGetLabel(column);
        for (Cardinal ii = 0; ii < shell->core.num_popups && !is_viewable(label); ii++) {
            label = XtNameToWidget(shell->core.popup_list[ii], "TipLabel");
        }
        return is_viewable(label) ? gui::label_text(label) : "";
    }
    static bool is_viewable(Widget label) {
        XWindowAttributes attributes{};
        if (label != nullptr && XtIsRealized(label)) {
            XGetWindowAttributes(gvga_display, XtWindow(label), &attributes);
        }
        return attributes.map_state == IsViewable;
    }
    bool tip_is(const std::string &text) const {
        const bool is = gui::wait_for([&] { return tip() == text; }, 3000);
        EXPECT_EQ(tip(), text);
        return is;
    }
    // Longer than it takes one to come.
    bool no_tip_comes() const {
        return !gui::wait_for([this] { return !tip().empty(); }, 200);
    }

    Widget shell = nullptr;
    Widget column = nullptr, field = nullptr, other = nullptr, form = nullptr, inner = nullptr,
           gadget = nullptr, line = nullptr;
};

TEST_F(Hints, AnInsensitiveControlSaysWhy) {
    vga_set_field_hint(field, 1);
    vga_set_field_hint(inner, 1);
    for (Widget widget : {field, gadget, form}) {
        vga_set_reason(widget, 2);
        XtSetSensitive(widget, False);
    }
    // Its own reason; that of the form around it, before its own hint; that of a gadget.
    for (Widget widget : {field, inner, gadget}) {
        point_at(widget);
        EXPECT_TRUE(tip_is(gvga_messages[2])) << XtName(widget);
        leave();
        EXPECT_TRUE(tip_is("")) << XtName(widget);
    }
    vga_set_reason(form, 0);
    point_at(inner);
    EXPECT_TRUE(tip_is("1 to 9 seconds"));
    leave();
    XtSetSensitive(field, True);
    point_at(field);
    EXPECT_TRUE(tip_is("1 to 9 seconds"));
    leave();
    EXPECT_TRUE(tip_is(""));
    vga_set_field_hint(field, 0);
    point_at(field);
    EXPECT_TRUE(no_tip_comes());
}

TEST_F(Hints, TheMessageLineFollowsTheKeyboardAndThePointer) {
    XmTextFieldSetString(line, const_cast<char *>("Ready"));
    vga_set_hint_line(column, line);
    vga_set_field_hint_text(field, "a number\nof seconds");
    vga_set_reason(inner, 2);
    XtSetSensitive(inner, False);
    EXPECT_EQ(gui::field_text(line), "Ready");
    XmProcessTraversal(field, XmTRAVERSE_CURRENT);
    gui::settle();
    EXPECT_EQ(gui::field_text(line), "a number of seconds");
    point_at(inner);
    EXPECT_EQ(gui::field_text(line), "Switched off by the node");
    leave();
    EXPECT_EQ(gui::field_text(line), "a number of seconds");
    vga_set_field_hint(field, 1); // its bounds have changed
    EXPECT_EQ(gui::field_text(line), "1 to 9 seconds");
    XmProcessTraversal(other, XmTRAVERSE_CURRENT);
    gui::settle();
    EXPECT_EQ(gui::field_text(line), "Ready");

    // What someone else writes meanwhile stays.
    XmProcessTraversal(field, XmTRAVERSE_CURRENT);
    gui::settle();
    XmTextFieldSetString(line, const_cast<char *>("Node lost"));
    XmProcessTraversal(other, XmTRAVERSE_CURRENT);
    gui::settle();
    EXPECT_EQ(gui::field_text(line), "Node lost");
    XtDestroyWidget(line);
    XmProcessTraversal(field, XmTRAVERSE_CURRENT);
    gui::settle();
}

/* A label breaks no text by itself. */
TEST_F(Hints, AreWholeInALabelOfAnyWidth) {
    const std::string hint =
        "From 1 to 32767 sessions; at most the maximum session limit of the mode";
    Widget label = XtVaCreateManagedWidget("label", xmLabelWidgetClass, form, XmNrecomputeSize,
                                           False, XmNwidth, 200, XmNheight, 10, nullptr);
    vga_set_hint_line(column, label);
    vga_set_field_hint_text(field, hint.c_str());
    XmProcessTraversal(field, XmTRAVERSE_CURRENT);
    Dimension reserved = 0;
    XtVaGetValues(label, XmNheight, &reserved, nullptr);
    for (int width : {200, 120, 290}) {
        XtVaSetValues(label, XmNwidth, width, XmNheight, 200, nullptr);
        gui::settle();
        EXPECT_EQ(gui::label_text(label), hint);
        XmString text = nullptr;
        XmRenderTable fonts = nullptr;
        XtVaGetValues(label, XmNlabelString, &text, XmNrenderTable, &fonts, nullptr);
        EXPECT_LE(XmStringWidth(fonts, text), width);
        EXPECT_GT(XmStringLineCount(text), 1);
        EXPECT_TRUE(width != 200 || XmStringHeight(fonts, text) <= reserved);
        XmStringFree(text);
    }
}

} // namespace
