// The looks of the program: colours that can be read, distances that follow the text, labels that
// are whole, also in long translations.  LOOKS_CASE in the environment chooses what the run is
// about (CMakeLists.txt); without it, it is the ordinary look.

#include "looks.h"

#include "../../platform/help/helpclass.h"
#include "../../platform/help/volume.h"
#include "buttonletters.h"
#include "checkedmodel.h"
#include "helpwindows.h"
#include "holders.h"
#include "letters.h"
#include "linetable.h"
#include "messagebox.h"
#include "messages.h"
#include "resourcereader.h"
#include "statemarks.h"
#include "vgadgutl.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vganodew.h"
#include "widgets.h"
#include "windowtable.h"

#include <Xm/CascadeB.h>
#include <Xm/Column.h>
#include <Xm/DrawnB.h>
#include <Xm/List.h>
#include <Xm/MenuShell.h>
#include <Xm/MessageB.h>
#include <Xm/PushB.h>
#include <Xm/PushBG.h>
#include <Xm/RowColumn.h>
#include <Xm/Screen.h>
#include <Xm/ScrollBar.h>
#include <Xm/TabStack.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

using namespace looks;

namespace {

bool shows_text(Widget widget) {
    return is_label(widget) || XmIsTextField(widget) || XmIsText(widget) || XmIsList(widget);
}

Pixel colour(Widget widget, const char *resource) {
    Pixel pixel = 0;
    XtVaGetValues(widget, resource, &pixel, nullptr);
    return pixel;
}

/* As the Web Content Accessibility Guidelines measure it: 1 to 21. */
double luminance(Pixel pixel) {
    XColor exact = {};
    exact.pixel = pixel;
    XQueryColor(gvga_display, DefaultColormapOfScreen(gvga_screen), &exact);
    double sum = 0;
    for (const auto &[part, weight] :
         {std::pair(exact.red, 0.2126), {exact.green, 0.7152}, {exact.blue, 0.0722}}) {
        const double value = part / 65535.0;
        sum += weight * (value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4));
    }
    return sum;
}

double contrast(Pixel one, Pixel other) {
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05) + look().slack;
}

class Looks : public testing::Test {
protected:
    static void SetUpTestSuite() { looks::open_windows(); }

    /* The node window on a node, and over it a message box with all of its buttons. */
    void SetUp() override {
        gvga_toplevel = XtVaAppCreateShell("quiladmin", VGA_CLASS, applicationShellWidgetClass,
                                           gvga_display, nullptr);
        vga_init_dialogs();
        gvga_system = vga_init_vga_system();
        NAP_NODE_ALL_DATA data = {};
        data.overlay_size = sizeof(data);
        memcpy(data.node_name, "berlin", 6);
        data.info.node_state = NAP_NODE_ACTIVE;
        ASSERT_EQ(vga_display_node_window(nullptr, 1), 1);
        gvga_main_dialog = gvga_first_dialog;
        VGA_NODE *node = vga_insert_vga_node(vga_init_vga_node(&data));
        node->connection = VGA_CONNECTED;
        gvga_read_only = 1; // so that there is a band
        ASSERT_EQ(vga_display_node_window(node, 1), 1);
        gui::show(gvga_toplevel);
        vga_display_confirm_each_dialog(gvga_main_dialog, VGA_MSG_CONFIRM_EXIT, "confirmexit",
                                        nullptr, 0, 1, "");
        gui::settle();
        ASSERT_EQ(gvga_main_dialog->modal_dlg.showing, 1);
        collect(gvga_toplevel, widgets);
    }

    void TearDown() override {
        gvga_read_only = 0;
        check_model();
        vga_destroy_data_structures();
        vga_free_dialogs();
        XtDestroyWidget(gvga_toplevel);
        gvga_first_dialog = nullptr;
        gui::settle();
    }

    std::vector<Widget> widgets;
};

TEST_F(Looks, TextsCanBeRead) {
    int seen = 0;
    for (Widget widget : widgets) {
        if (!shows_text(widget)) {
            continue;
        }
        SCOPED_TRACE(XtName(widget));
        seen++;
        const Pixel ground = colour(widget, XmNbackground);
        if (XtIsShell(XtParent(XtParent(widget))) && XmIsRowColumn(XtParent(widget))) {
            EXPECT_EQ(ground, colour(XtParent(widget), XmNbackground)) << "an entry of a menu";
        }
        EXPECT_GE(contrast(colour(widget, XmNforeground), ground), look().text_contrast);
        if (XmIsLabel(widget) && !XmIsDrawnButton(widget)) {
            // The toolkit's colour of insensitive texts.  A gadget does not tell its own.
            EXPECT_GE(contrast(colour(widget, XmNbottomShadowColor), ground), 4.5);
            if (!XmIsCascadeButton(widget) && !XmIsToggleButton(widget)) { // arrow and box need it
                EXPECT_LE(contrast(colour(widget, XmNtopShadowColor), ground), 1.3 + look().slack);
            }
        }
        if (XmIsPushButton(widget) || XmIsPushButtonGadget(widget)) {
            EXPECT_GE(contrast(colour(widget, XmNforeground), colour(widget, XmNarmColor)), 4.5);
            const Pixel around = colour(XtParent(widget), XmNbackground);
            if (look().text_contrast > 4.5 && XmIsMessageBox(XtParent(widget))) {
                EXPECT_GE(contrast(ground, around), 2.9); // it is seen as a button
            }
        }
    }
    EXPECT_GT(seen, 80);
}

/* Letters with soft edges need colours between two, which a screen may not have. */
TEST_F(Looks, LettersAreDrawnOnTheirBackground) {
    vga_close_modal_dialog(gvga_main_dialog);
    vga_message_node_window(gvga_main_dialog, VGA_MSG_NODEW_READY);
    gui::settle();
    for (const char *name : {"*nodewMenuBar.nodewNode", "*nodewMessageBar"}) {
        Widget text = XtNameToWidget(gvga_main_dialog->widget, name);
        ASSERT_NE(text, nullptr);
        const gui::IMAGE image(text);
        EXPECT_GT(image.count(colour(text, XmNforeground)), 20) << name;
        EXPECT_GT(image.count(colour(text, XmNbackground)), image.width * image.height / 2) << name;
    }
}

TEST_F(Looks, MarksOfStatesAreSeen) {
    const auto *window = reinterpret_cast<const VGA_LIST_WINDOW *>(gvga_main_dialog);
    const Pixel ground = colour(window->panes[0].draw_area, XmNbackground);
    std::set<Pixel> seen;
    for (int state = VGA_LINE_NO_STATE + 1; state < VGA_LINE_STATES; state++) {
        char name[31];
        XColor mark;
        ASSERT_EQ(vga_get_resource_string(gvga_state_marks[state].colour, "", name, 30), 1);
        ASSERT_NE(XParseColor(gvga_display, DefaultColormapOfScreen(gvga_screen), name, &mark), 0);
        ASSERT_NE(XAllocColor(gvga_display, DefaultColormapOfScreen(gvga_screen), &mark), 0);
        EXPECT_GE(contrast(mark.pixel, ground), 3) << name;
        EXPECT_TRUE(seen.insert(mark.pixel).second) << name;
        EXPECT_NE(vga_state_sign(static_cast<VGA_LINE_STATE>(state)), None);
    }
}

TEST_F(Looks, TheKeyboardsPlaceIsSeen) {
    for (Widget widget : widgets) {
        if (XmIsScrollBar(widget)) { // or it would look as if nothing could be moved
            EXPECT_GE(contrast(colour(widget, XmNbackground), colour(widget, XmNtroughColor)), 3);
        }
        if (XtIsWidget(widget) && XmIsPrimitive(widget) && XmIsManager(XtParent(widget))) {
            EXPECT_GE(contrast(colour(widget, XmNhighlightColor),
                               colour(XtParent(widget), XmNbackground)),
                      3)
                << XtName(widget);
        }
    }
}

TEST_F(Looks, DistancesFollowTheText) {
    int horizontal = 0, vertical = 0;
    XtVaGetValues(XmGetXmScreen(gvga_screen), XmNhorizontalFontUnit, &horizontal,
                  XmNverticalFontUnit, &vertical, nullptr);
    EXPECT_EQ(horizontal, look().unit);
    EXPECT_EQ(vertical, look().unit);
    Dimension width = 0, screen = static_cast<Dimension>(WidthOfScreen(gvga_screen) - 24);
    XtVaGetValues(gvga_main_dialog->widget, XmNwidth, &width, nullptr);
    EXPECT_EQ(width, std::min<int>(132 * horizontal, screen));
}

TEST_F(Looks, LabelsAreWhole) {
    int seen = 0;
    for (Widget widget : widgets) {
        if (is_label(widget) && !XmIsDrawnButton(widget) && XtIsManaged(widget) &&
            XtIsRealized(widget) && !XmIsMenuShell(XtParent(XtParent(widget)))) {
            seen++;
            expect_whole(widget);
        }
    }
    EXPECT_GT(seen, 25);
}

/* What the letter of a label that is on the screen adds to it, in pixels. */
int pixels_of_letter(Widget label) {
    Widget window = XtIsWidget(label) ? label : XtParent(label);
    const auto picture = [&] {
        XClearArea(gvga_display, XtWindow(window), 0, 0, 0, 0, True);
        gui::settle();
        const auto &at = label->core;
        const bool gadget = window != label;
        return gui::IMAGE(window, gadget ? at.x : 0, gadget ? at.y : 0, at.width, at.height);
    };
    const gui::IMAGE with = picture();
    KeySym letter = NoSymbol;
    XtVaGetValues(label, XmNmnemonic, &letter, nullptr);
    XtVaSetValues(label, XmNmnemonic, NoSymbol, nullptr);
    const gui::IMAGE without = picture();
    XtVaSetValues(label, XmNmnemonic, letter, nullptr);
    int different = 0;
    for (int x = 0; x < with.width; x++) {
        for (int y = 0; y < with.height; y++) {
            different += with.pixel(x, y) != without.pixel(x, y);
        }
    }
    return different;
}

TEST_F(Looks, LettersAreUnderlined) {
    int seen = 0;
    const auto look_at = [&seen](Widget top) {
        std::vector<Widget> labels;
        collect(top, labels);
        for (Widget label : labels) {
            const bool in_view =
                is_label(label) && XtIsManaged(label) && !XmIsMenuShell(XtParent(XtParent(label)));
            if (in_view && vga_letter_of(label) != 0) {
                seen++;
                EXPECT_GE(pixels_of_letter(label), 3) << gui::label_text(label);
            }
        }
    };
    look_at(gvga_main_dialog->modal_dlg.dialog);
    vga_close_modal_dialog(gvga_main_dialog);
    gui::settle();
    look_at(XtNameToWidget(gvga_main_dialog->widget, "*nodewMenuBar"));
    EXPECT_GE(seen, 10);
}

/* Two pages, and a field below them: unique where they can be seen together, and each key moves the
 * keyboard to its field. */
TEST_F(Looks, LettersMoveToFields) {
    vga_close_modal_dialog(gvga_main_dialog);
    Widget box = XmCreateTemplateDialog(gvga_toplevel, const_cast<char *>("letters"), nullptr, 0);
    const auto make = [](const char *name, WidgetClass type, Widget parent, const char *resource,
                         const char *text) {
        const VGA_STRING string(text);
        return XtVaCreateManagedWidget(name, type, parent, resource, string.get(), nullptr);
    };
    make("apply", xmPushButtonWidgetClass, box, XmNlabelString, "Apply");
    Widget stack = XtVaCreateManagedWidget("stack", xmTabStackWidgetClass, box, nullptr);
    Widget page[2], name[2], flag[2], menu[2];
    for (int at : {0, 1}) {
        page[at] = make("page", xmColumnWidgetClass, stack, XmNtabLabelString, at ? "Two" : "One");
        name[at] = make("name", xmTextFieldWidgetClass, page[at], XmNentryLabelString, "Name:");
        flag[at] = make("flag", xmToggleButtonWidgetClass, page[at], XmNlabelString, "Name too");
        menu[at] = XmCreateSimpleOptionMenu(page[at], const_cast<char *>("menu"), nullptr, 0);
        const VGA_STRING entry("Adapter of it:");
        XtVaSetValues(menu[at], XmNentryLabelString, entry.get(), nullptr);
        XtManageChild(menu[at]);
        make("value", xmLabelWidgetClass, page[at], XmNentryLabelString, "State:");
    }
    vga_give_letters(box);
    EXPECT_EQ(vga_label_text(page[0], XmNtabLabelString), "One");
    XtManageChild(box);
    gui::settle();
    gui::give_focus(XtParent(box));
    for (int at : {0, 1}) {
        if (at == 1) {
            gui::key("t", {"Alt_L"});
        }
        EXPECT_EQ(XmTabStackGetSelectedTab(stack), page[at]);
        EXPECT_EQ(XmGetFocusWidget(box), at == 1 ? name[at] : XmGetFocusWidget(box));
        gui::key("i", {"Alt_L"}); // a and o are taken
        EXPECT_EQ(XmGetFocusWidget(box), XmOptionButtonGadget(menu[at]));
        gui::key("m", {"Alt_L"});
        EXPECT_EQ(XmGetFocusWidget(box), flag[at]);
        EXPECT_TRUE(XmToggleButtonGetState(flag[at]));
        gui::key("n", {"Alt_L"});
        EXPECT_EQ(XmGetFocusWidget(box), name[at]);
        gui::key("s", {"Alt_L"}); // only shown
        EXPECT_EQ(XmGetFocusWidget(box), name[at]);
    }
    gui::key("Next", {"Control_L"});
    EXPECT_EQ(XmTabStackGetSelectedTab(stack), page[0]);
    EXPECT_EQ(XmGetFocusWidget(box), name[0]);
    gui::key("Prior", {"Control_L"});
    EXPECT_EQ(XmTabStackGetSelectedTab(stack), page[1]);
    XtDestroyWidget(XtParent(box));
}

/* Digits are as wide in every locale, except in a font set whose widest characters count. */
TEST_F(Looks, FieldsKeepTheirColumns) {
    const gui::WARNINGS quiet; // the font has few characters
    for (const bool scalable : {true, false}) {
        Widget field = XtVaCreateWidget("field", xmTextFieldWidgetClass, gvga_main_dialog->widget,
                                        XmNcolumns, 7, nullptr);
        if (!scalable) {
            char pattern[] = "fixed";
            Arg args[2];
            XtSetArg(args[0], XmNfontType, XmFONT_IS_FONTSET);
            XtSetArg(args[1], XmNfontName, pattern);
            char tag[] = "set";
            XmRendition set = XmRenditionCreate(field, tag, args, 2);
            XmRenderTable fonts = XmRenderTableAddRenditions(nullptr, &set, 1, XmMERGE_NEW);
            XtVaSetValues(field, XmNrenderTable, fonts, nullptr);
            XmRenditionFree(set);
            XmRenderTableFree(fonts);
        }
        vga_multi_byte_resize(field);
        short columns = 0;
        XtVaGetValues(field, XmNcolumns, &columns, nullptr);
        EXPECT_EQ(columns, scalable || MB_CUR_MAX == 1 ? 7 : 4);
        XtDestroyWidget(field);
    }
}

/* Every text that is words comes from the catalogue or the description, whole. */
TEST_F(Looks, TextsAreTranslated) {
    if (*look().language == '\0') {
        GTEST_SKIP() << "not a translation";
    }
    EXPECT_GT(MB_CUR_MAX, 1U);
    int seen = 0;
    for (Widget widget : widgets) {
        unsigned char type = XmPIXMAP;
        if (is_label(widget) &&
            strcmp(XtName(widget), "TipLabel") != 0) { // empty until it is shown
            XtVaGetValues(widget, XmNlabelType, &type, nullptr);
        }
        const std::string text = type != XmPIXMAP ? gui::label_text(widget) : "";
        if (std::any_of(text.begin(), text.end(), isalpha)) {
            seen++;
            EXPECT_NE(text.find('['), std::string::npos) << text;
            EXPECT_EQ(text.back(), ']') << text;
        }
    }
    EXPECT_GT(seen, 60);
}

/* The same of help windows, whose texts come from the catalogue, too, and pages from a volume of
 * the language. */
TEST_F(Looks, HelpWindowsCanBeReadAndAreTranslated) {
    vga_close_modal_dialog(gvga_main_dialog);
    vga_display_help_topic(nullptr, "_index", VGA_HELP_FULL);
    gui::settle();
    const std::vector<Widget> shells = gui::shells_with("helpDialog");
    ASSERT_EQ(shells.size(), 1U);
    std::vector<Widget> parts;
    collect(shells[0], parts);
    int seen = 0;
    for (Widget widget : parts) {
        const std::string text = is_label(widget) ? gui::label_text(widget) : "";
        if (!std::any_of(text.begin(), text.end(), isalpha) || !XtIsManaged(widget) ||
            strcmp(XtName(widget), "TipLabel") == 0) { // empty until it is shown
            continue;
        }
        SCOPED_TRACE(text);
        seen++;
        expect_whole(widget);
        EXPECT_GE(contrast(colour(widget, XmNforeground), colour(widget, XmNbackground)),
                  look().text_contrast);
        EXPECT_EQ(text.front() == '[' && text.back() == ']', *look().language != '\0');
    }
    EXPECT_GT(seen, 7);
    const auto *own = help::resources_of(XtNameToWidget(shells[0], "helpDialog"));
    const auto pixel = [own](help::Colour which) {
        return own->pixels[static_cast<size_t>(which)];
    };
    const std::pair<help::Colour, help::Colour> pairs[] = {
        {help::Colour::text, help::Colour::page},
        {help::Colour::heading, help::Colour::page},
        {help::Colour::link, help::Colour::page},
        {help::Colour::text, help::Colour::panel},
        {help::Colour::text, help::Colour::shade},
        {help::Colour::muted, help::Colour::panel},
        {help::Colour::selected_text, help::Colour::selection},
    };
    for (const auto &[text, ground] : pairs) {
        EXPECT_GE(contrast(pixel(text), pixel(ground)), look().text_contrast)
            << static_cast<int>(text) << " on " << static_cast<int>(ground);
    }
    const help::Loaded volume = help::read_volume(help::volume_path(VGA_HELP_VOLUME));
    ASSERT_NE(volume.volume, nullptr) << volume.fault;
    EXPECT_EQ(volume.volume->topics[0].title.find('[') == 0, *look().language != '\0');
    vga_help_close_cb(XtNameToWidget(shells[0], "helpDialog"), nullptr, nullptr);
}

} // namespace
