// Help windows with real keys and mouse: what the library shows, and how the program asks for it.

#include "dialogids.h"
#include "gui_windows.h"

#include "../../platform/help/helpclass.h"
#include "../../platform/help/window.h"
#include "helpwindows.h"

#include <Xm/RowColumn.h>
#include <Xm/TextF.h>
#include <fstream>
#include <string>
#include <vector>

namespace {

// What a window shows is read where the operator sees it: in the view, by its topic.
class SHOWN {
public:
    explicit SHOWN(Widget shell) : window(shell) {
        dialog = XtNameToWidget(window, "helpDialog");
        area = XtNameToWidget(window, "*helpTopic");
    }
    help::TopicView *view() const {
        XtPointer canvas = nullptr;
        XtVaGetValues(area, XmNuserData, &canvas, nullptr);
        return static_cast<help::TopicView *>(static_cast<help::Canvas *>(canvas));
    }
    std::string topic() const { return view()->topic().id; }
    std::string text() const {
        std::string all;
        for (const help::Block &block : view()->topic().blocks) {
            all += plain_text(block) + "\n";
        }
        return all;
    }
    Widget child(const char *name) const {
        return XtNameToWidget(window, (std::string("*") + name).c_str());
    }

    Widget window, dialog, area;
};

std::vector<Widget> help_shells() {
    return gui::shells_with("helpDialog");
}

SHOWN only_window() {
    EXPECT_TRUE(gui::wait_for([] { return help_shells().size() == 1; }));
    const Widget shell = help_shells().at(0);
    XSetInputFocus(gvga_display, XtWindow(shell), RevertToParent, CurrentTime);
    gui::settle();
    return SHOWN(shell);
}

class Help : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static const gui::PREFIX prefix;
        gui::open();
        gvga_messages[204] = "Close";
        gvga_messages[206] = "Contents";
        gvga_messages[212] = "SNA node administration help";
    }
    void TearDown() override {
        for (const Widget shell : help_shells()) {
            SHOWN shown(shell);
            press(shown.child("helpClose"));
        }
        EXPECT_TRUE(gui::wait_for([] { return help_shells().empty(); }));
    }

    static void press(Widget button) {
        XRaiseWindow(gvga_display, XtWindow(XtParent(XtParent(button))));
        Widget shell = button;
        while (!XtIsShell(shell)) {
            shell = XtParent(shell);
        }
        XRaiseWindow(gvga_display, XtWindow(shell));
        gui::settle();
        gui::click(button, 10, 8);
    }

    static SHOWN open(const char *topic, VGA_HELP_FORM form = VGA_HELP_FULL) {
        vga_display_help_topic(nullptr, topic, form);
        return only_window();
    }

    static help::Page page_of(const SHOWN &shown) {
        Dimension width = 0;
        XtVaGetValues(shown.area, XmNwidth, &width, nullptr);
        help::Resources *own = help::resources_of(shown.dialog);
        const help::Look look(shown.dialog, own->text_font, own->fixed_font, own->pixels);
        return lay_out(shown.view()->topic(), width, look);
    }

    // Where the first piece of a link to `target` is, in the view's window.
    static void click_link(const SHOWN &shown, const std::string &target, unsigned button = 1) {
        const help::Page page = page_of(shown);
        for (const help::Piece &piece : page.pieces) {
            if (piece.link != help::no_link &&
                page.links[static_cast<size_t>(piece.link)].target == target) {
                gui::move_to(shown.area, piece.x + 3, piece.top + 4 - shown.view()->top());
                gui::press(button);
                gui::release(button);
                return;
            }
        }
        FAIL() << "no link to " << target;
    }
};

TEST_F(Help, AWindowsTopicIsShownOnce) {
    SHOWN shown = open("nodew");
    EXPECT_EQ(shown.topic(), "nodew");
    String title = nullptr;
    XtVaGetValues(shown.window, XmNtitle, &title, nullptr);
    EXPECT_STREQ(title, "SNA node administration help");
    vga_display_help_topic(nullptr, "nodew", VGA_HELP_FULL);
    gui::settle();
    EXPECT_EQ(help_shells().size(), 1U);
    vga_display_help_topic(nullptr, "moded", VGA_HELP_FULL);
    EXPECT_TRUE(gui::wait_for([] { return help_shells().size() == 2; }));
}

TEST_F(Help, LinksAreFollowedByMouseAndByKeys) {
    SHOWN shown = open(nullptr);
    EXPECT_EQ(shown.topic(), "home");
    EXPECT_FALSE(XtIsSensitive(shown.child("helpBack")));
    click_link(shown, "tasks");
    EXPECT_TRUE(gui::wait_for([&] { return shown.topic() == "tasks"; }));
    gui::key("Tab");
    gui::key("Tab");
    gui::key("Return"); // its second link
    EXPECT_TRUE(gui::wait_for([&] { return shown.topic() == "t_define"; }));
    gui::key("Left", {"Alt_L"});
    EXPECT_TRUE(gui::wait_for([&] { return shown.topic() == "tasks"; }));
    press(shown.child("helpBack"));
    EXPECT_TRUE(gui::wait_for([&] { return shown.topic() == "home"; }));
    EXPECT_FALSE(XtIsSensitive(shown.child("helpBack")));
    press(shown.child("helpForward"));
    EXPECT_TRUE(gui::wait_for([&] { return shown.topic() == "tasks"; }));
    press(shown.child("helpHome"));
    EXPECT_TRUE(gui::wait_for([&] { return shown.topic() == "home"; }));
}

TEST_F(Help, ALinkOpensAWindowOfItsOwnWhenAsked) {
    SHOWN shown = open(nullptr);
    click_link(shown, "tasks", 2);
    EXPECT_TRUE(gui::wait_for([] { return help_shells().size() == 2; }));
    EXPECT_EQ(shown.topic(), "home");
}

// What somebody else gets when he asks for the selection.
std::string pasted(Widget asks, const char *selection) {
    static std::string got;
    static bool came;
    came = false;
    XtGetSelectionValue(
        asks, XInternAtom(gvga_display, selection, False),
        XInternAtom(gvga_display, "UTF8_STRING", False),
        [](Widget, XtPointer, Atom *, Atom *, XtPointer value, unsigned long *length, int *) {
            got.assign(value != nullptr ? static_cast<char *>(value) : "",
                       value != nullptr ? *length : 0);
            XtFree(static_cast<char *>(value));
            came = true;
        },
        nullptr, XtLastTimestampProcessed(gvga_display));
    EXPECT_TRUE(gui::wait_for([] { return came; }));
    return got;
}

TEST_F(Help, TextIsMarkedAndCopied) {
    const SHOWN shown = open("nodew");
    const std::string title = shown.view()->topic().title;
    shown.view()->focus();
    gui::settle();
    const help::Page page = page_of(shown);
    const help::Piece &first = page.pieces.front();
    gui::move_to(shown.area, first.x + 1, first.top + first.height / 2);
    gui::press();
    gui::move_to(shown.area, first.x + first.width / 2, first.top + first.height / 2);
    gui::move_to(shown.area, first.x + first.width + 20, first.top + first.height / 2);
    gui::release();
    gui::settle();
    EXPECT_EQ(pasted(shown.window, "PRIMARY"), title);
    gui::key("c", {"Control_L"});
    EXPECT_EQ(pasted(shown.window, "CLIPBOARD"), title);
    gui::key("a", {"Control_L"});
    gui::key("c", {"Control_L"});
    const std::string all = pasted(shown.window, "CLIPBOARD");
    EXPECT_EQ(all, pasted(shown.window, "PRIMARY"));
    EXPECT_EQ(all.substr(0, title.size() + 1), title + "\n");
    EXPECT_GT(all.size(), 500U);
}

TEST_F(Help, KeysAndWheelScroll) {
    SHOWN shown = open("glossary");
    const auto top = [&] { return shown.view()->top(); };
    gui::key("Next");
    EXPECT_GT(top(), 100);
    gui::key("End");
    const int end = top();
    gui::key("Down");
    EXPECT_EQ(top(), end);
    gui::move_to(shown.area, 50, 50);
    gui::press(4);
    gui::release(4);
    EXPECT_LT(top(), end);
    gui::key("Home");
    EXPECT_EQ(top(), 0);
}

TEST_F(Help, ContentsIndexAndSearchLeadToTopics) {
    SHOWN shown = open(nullptr);
    gui::click(shown.child("helpContents"), 150, 12); // the home topic itself
    gui::key("End");
    gui::key("Return");
    EXPECT_TRUE(gui::wait_for([&] { return shown.topic() == "glossary"; }));

    press(shown.child("helpIndexTab"));
    for (const char *letter : {"s", "y", "n", "c"}) {
        gui::key(letter);
    }
    gui::key("Return");
    EXPECT_TRUE(gui::wait_for([&] { return shown.topic() == "lu62a"; })) << shown.topic();

    press(shown.child("helpSearchTab"));
    XmTextFieldSetString(shown.child("helpText"), const_cast<char *>(""));
    for (const char *letter : {"m", "o", "d", "e", "d", "Return", "Tab", "Down", "Return"}) {
        gui::key(letter);
    }
    EXPECT_TRUE(gui::wait_for([&] { return shown.topic() == "moded"; })) << shown.topic();
}

TEST_F(Help, AMissingVolumeOrTopicIsSaidInTheWindow) {
    vga_display_help_topic("/nowhere/volume", "nodew", VGA_HELP_FULL);
    SHOWN shown = only_window();
    EXPECT_NE(shown.text().find("/nowhere/volume cannot be opened"), std::string::npos);
    for (const char *tab : {"helpIndexTab", "helpSearchTab"}) {
        press(shown.child(tab));
        for (const char *name : {"a", "Return", "Tab", "Down", "Return"}) {
            gui::key(name);
        }
    }
    TearDown();
    SHOWN topic = open("nosuchtopic");
    EXPECT_NE(topic.text().find("nosuchtopic"), std::string::npos);
    press(topic.child("helpHome"));
    EXPECT_TRUE(gui::wait_for([&] { return topic.topic() == "home"; }));
}

TEST_F(Help, AManualPageIsReadBesideTheLoop) {
    char name[] = "/tmp/helpmanXXXXXX";
    const std::filesystem::path folder = mkdtemp(name);
    std::ofstream(folder / "man") << "#!/bin/sh\necho \"$3 $4\"\nprintf 'B\\bBold\\n'\n";
    std::filesystem::permissions(folder / "man", std::filesystem::perms::owner_all);
    const std::string before = getenv("PATH");
    setenv("PATH", (folder.string() + ":" + before).c_str(), 1);
    SHOWN shown = open("quiladmin(1)", VGA_HELP_MAN_PAGE);
    EXPECT_TRUE(gui::wait_for([&] { return shown.text() == "1 quiladmin\nBold\n"; }))
        << shown.text();
    TearDown();
    std::ofstream(folder / "man") << "#!/bin/sh\nexit 16\n";
    SHOWN missing = open("none", VGA_HELP_MAN_PAGE);
    EXPECT_TRUE(
        gui::wait_for([&] { return missing.text().find("no manual page") != std::string::npos; }));
    TearDown();
    std::ofstream(folder / "man") << "#!/bin/sh\nsleep 30\n";
    open("slow", VGA_HELP_MAN_PAGE); // closed while it is being read
    TearDown();
    setenv("PATH", before.c_str(), 1);
    std::filesystem::remove_all(folder);
}

// A dialog with a message box over it, from no description.
class Messages : public Help {
protected:
    void SetUp() override {
        vga_register_common_names(); // the actions of boxes
        desc.in_use = 1;
        desc.shell = gui::make_shell("parent", 600, 500, 200, 100);
        desc.widget = XtVaCreateManagedWidget("parent", xmRowColumnWidgetClass, desc.shell,
                                              XmNuserData, &desc, nullptr);
        NB_INIT_LIST(desc.children_root_lqe);
        NB_INIT_LIST(desc.modal_dlg.queue);
        VGA_UID_DESC &row = gvga_uid_desc[VGA_UID_NODE_WINDOW];
        desc.dialog_id = row.dialog_id;
        row.first_desc = row.last_desc = &desc;
        gui::show(desc.shell);
    }
    void TearDown() override {
        Help::TearDown();
        vga_discard_modal_dialogs(&desc);
        gvga_uid_desc[VGA_UID_NODE_WINDOW].first_desc = nullptr;
        gvga_uid_desc[VGA_UID_NODE_WINDOW].last_desc = nullptr;
        XtDestroyWidget(desc.shell);
        gui::settle();
    }
    VGA_DIALOG desc = {};
};

TEST_F(Messages, HelpOnAMessageIsASmallWindowThatLeadsToTheContents) {
    gvga_messages[208] = "The window could not be opened.";
    vga_display_confirm_dialog(&desc, 208, "dlgfail", nullptr, 0, "");
    ASSERT_TRUE(gui::wait_for([&] { return desc.modal_dlg.showing != 0; }));
    gui::settle();
    Position x = 0, y = 0; // the box's buttons have no windows of their own
    XtVaGetValues(XtNameToWidget(desc.modal_dlg.dialog, "Help"), XmNx, &x, XmNy, &y, nullptr);
    gui::click(desc.modal_dlg.dialog, x + 10, y + 8);
    SHOWN shown = only_window();
    EXPECT_EQ(shown.topic(), "dlgfail");
    EXPECT_EQ(shown.child("helpContents"), nullptr);
    EXPECT_FALSE(XtIsManaged(shown.child("helpWindow")));
    EXPECT_EQ(nb_help_quick_button(shown.dialog, NB_HELP_QUICK_MORE), shown.child("helpMore"));
    EXPECT_EQ(nb_help_quick_button(shown.dialog, 17), nullptr);
    EXPECT_EQ(nb_help_quick_button(desc.widget, NB_HELP_QUICK_MORE), nullptr);

    // The question waits; the help windows take input all the same.
    click_link(shown, "reference_files");
    EXPECT_TRUE(gui::wait_for([&] { return shown.topic() == "reference_files"; }));
    press(shown.child("helpBack"));
    EXPECT_TRUE(gui::wait_for([&] { return shown.topic() == "dlgfail"; }));
    press(shown.child("helpMore"));
    EXPECT_TRUE(gui::wait_for([] { return help_shells().size() == 2; }));
    EXPECT_NE(desc.modal_dlg.showing, 0);
}

TEST_F(Messages, AMessageWithoutAKeyOffersNoHelp) {
    vga_display_error_dialog(&desc, 207, nullptr, nullptr, 0, "");
    ASSERT_TRUE(gui::wait_for([&] { return desc.modal_dlg.showing != 0; }));
    EXPECT_FALSE(XtIsSensitive(XtNameToWidget(desc.modal_dlg.dialog, "Help")));
    vga_close_modal_dialog(&desc);
    vga_display_error_dialog(&desc, 208, nullptr, nullptr, 0, "");
    EXPECT_TRUE(XtIsSensitive(XtNameToWidget(desc.modal_dlg.dialog, "Help"))) << "beside its text";
}

} // namespace
