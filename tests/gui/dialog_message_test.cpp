// Message boxes: their queue, questions, answers, and the ends of dialogs under them.

#include "dialog_support.h"

#include "boxplace.h"
#include "letters.h"
#include "wraptext.h"

using namespace dialogs;

namespace {

// Message boxes.

TEST_F(Dialogs, ErrorsWaitForEachOther) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    for (const char *text : {"first", "second", "third"}) {
        error(moded, text);
    }
    for (const char *text : {"first", "second", "third"}) {
        EXPECT_EQ(shown(moded), text);
        EXPECT_FALSE(XtIsManaged(box_button(moded, "Cancel")));
        answer(moded);
    }
    EXPECT_EQ(shown(moded), "");
    EXPECT_EQ(events.answers.size(), 3U);
    EXPECT_EQ(events.answers[0], std::make_pair(VGA_ANSWER_OK, NB_ULONG{7}));
    EXPECT_EQ(moded->in_use, 1);
    for (const char *name : {"Escape", "Return"}) {
        error(moded, "by key");
        gui::settle();
        gui::give_focus(moded->modal_dlg.shell);
        gui::key(name);
        EXPECT_EQ(shown(moded), "") << name;
        vga_close_modal_dialog(moded);
    }
}

// The box of the description, and the one that is made where there is none.
TEST_F(Dialogs, AnswersOfAQuestion) {
    const std::pair<const char *, VGA_ANSWER> buttons[] = {
        {"OK", VGA_ANSWER_OK},
        {"Cancel", VGA_ANSWER_CANCEL},
        {"confirmNoButton", VGA_ANSWER_NO},
        {"confirmOKToAllButton", VGA_ANSWER_OK_TO_ALL},
    };
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    for (VGA_DIALOG *desc : {moded, main_dialog}) {
        MrmHierarchy description = gvga_uil_hierarchy;
        gvga_uil_hierarchy = desc == moded ? description : nullptr;
        confirm(desc, "plain?");
        gvga_uil_hierarchy = description;
        EXPECT_FALSE(XtIsManaged(box_button(desc, "confirmNoButton")));
        EXPECT_FALSE(XtIsManaged(box_button(desc, "confirmOKToAllButton")));
        EXPECT_TRUE(XtIsSensitive(box_button(desc, "Help")));
        gui::settle();
        close_by_manager(desc->modal_dlg.shell);
        ASSERT_FALSE(events.answers.empty());
        EXPECT_EQ(events.answers.back(), std::make_pair(VGA_ANSWER_CANCEL, NB_ULONG{9}));
        for (const auto &[name, wanted] : buttons) {
            vga_display_confirm_each_dialog(desc, 1, "help", note_answer, 3, 1, "s", "each?");
            answer(desc, name);
            EXPECT_EQ(events.answers.back(), std::make_pair(wanted, NB_ULONG{3})) << name;
        }
        vga_display_confirm_each_dialog(desc, 1, "help", note_answer, 3, 0, "s", "the last one?");
        EXPECT_FALSE(XtIsManaged(box_button(desc, "confirmOKToAllButton")));
        EXPECT_TRUE(XtIsManaged(box_button(desc, "confirmNoButton")));
        answer(desc);
    }
    EXPECT_EQ(events.answers.size(), 12U) << "an answer came twice";
}

// Details belong to the next message only, wait with it, and go where one can paste them.
TEST_F(Dialogs, DetailsAreShownAndCopied) {
    gvga_messages[VGA_MSG_DETAILS] = "Details";
    gvga_messages[VGA_MSG_HIDE_DETAILS] = "Hide details";
    error(main_dialog, "first");
    EXPECT_FALSE(XtIsManaged(box_button(main_dialog, "messageDetailsButton")));
    vga_box_details(nullptr, "Request 1234, code 5");
    const std::string words = "the words of a message that is long enough to be broken into lines";
    error(main_dialog, words.c_str());
    error(main_dialog, "third");
    answer(main_dialog);
    Widget details = box_button(main_dialog, "messageDetailsButton");
    EXPECT_TRUE(XtIsManaged(details));
    const std::string before = vga_label_text(main_dialog->modal_dlg.dialog, XmNmessageString);
    EXPECT_NE(before.find('\n'), std::string::npos);
    for (const std::string &text : {before + "\n\nRequest 1234, code 5", before}) {
        XtCallActionProc(details, "ArmAndActivate", nullptr, nullptr, 0);
        EXPECT_EQ(vga_label_text(main_dialog->modal_dlg.dialog, XmNmessageString), text);
    }
    gui::settle();
    XtCallActionProc(box_button(main_dialog, "messageCopyButton"), "ArmAndActivate", nullptr,
                     nullptr, 0);
    EXPECT_EQ(XGetSelectionOwner(gvga_display, XInternAtom(gvga_display, "CLIPBOARD", False)),
              XtWindow(main_dialog->modal_dlg.dialog));
    answer(main_dialog);
    EXPECT_EQ(shown(main_dialog), "third");
    EXPECT_FALSE(XtIsManaged(details));
    answer(main_dialog);
}

TEST_F(Dialogs, QuestionReplacesQuestion) {
    confirm(main_dialog, "one?", 1);
    confirm(main_dialog, "two?", 2);
    EXPECT_EQ(shown(main_dialog), "two?");
    error(main_dialog, "then an error");
    confirm(main_dialog, "three?", 3); // in place of two, before the error
    EXPECT_EQ(shown(main_dialog), "three?");
    answer(main_dialog);
    EXPECT_EQ(events.answers, (decltype(events.answers){{VGA_ANSWER_OK, 3}}));
    EXPECT_EQ(shown(main_dialog), "then an error");
    confirm(main_dialog, "four?", 4);
    EXPECT_EQ(shown(main_dialog), "then an error") << "a question does not replace an error";
    answer(main_dialog);
    EXPECT_EQ(shown(main_dialog), "four?");
}

TEST_F(Dialogs, ClosingDiscardsMessages) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    error(moded, "shown");
    error(moded, "waiting");
    vga_close_children(moded, 1, 1);
    error(moded, "too late");
    gui::settle();
    EXPECT_FALSE(XtIsManaged(moded->modal_dlg.dialog));
    EXPECT_TRUE(events.answers.empty());
    ASSERT_EQ(open(VGA_UID_MODE_DIALOG, main_dialog), moded);
    EXPECT_EQ(shown(moded), "") << "messages of its former life";
}

TEST_F(Dialogs, AnswerMayCloseTheDialogOrShowMore) {
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    events.on_answer = [](VGA_DIALOG *desc) {
        events.on_answer = nullptr;
        error(desc, "refused");
    };
    confirm(moded, "really?");
    answer(moded);
    EXPECT_EQ(shown(moded), "refused");
    events.on_answer = [](VGA_DIALOG *desc) { vga_close_children(desc, 1, 0); };
    error(moded, "never shown");
    answer(moded);
    EXPECT_EQ(moded->in_use, 0);
    EXPECT_FALSE(XtIsManaged(moded->modal_dlg.dialog));
}

TEST_F(Dialogs, MessagesWithoutAParentGoToTheMainDialog) {
    error(nullptr, "to all");
    EXPECT_EQ(shown(main_dialog), "to all");
    vga_close_confirm_dialog(main_dialog);
    EXPECT_EQ(shown(main_dialog), "to all") << "it is no question";
    vga_close_modal_dialog(main_dialog);
    EXPECT_EQ(shown(main_dialog), "");
    EXPECT_TRUE(events.answers.empty());
}

TEST(WrapText, BreaksAtBlanks) {
    setlocale(LC_ALL, "C.UTF-8");
    const std::pair<const char *, const char *> cases[] = {
        {"", ""},
        {"short", "short"},
        {"exactly ten", "exactly\nten"},
        {"ten digits", "ten digits"},
        {"0123456789 abc", "0123456789\nabc"},
        {"0123456789abc def", "0123456789abc\ndef"},
        {"aa bb cc dd ee ff", "aa bb cc\ndd ee ff"},
        {"a b\nc d e f g h i", "a b\nc d e f g\nh i"},
        {"\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4 \xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4 x",
         "\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4 \xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\nx"},
        {"\xFF\xFE broken bytes", "\xFF\xFE broken\nbytes"},
        {"\xE6\xBC\xA2\xE5\xAD\x97 \xE6\xBC\xA2\xE5\xAD\x97\xE6\xBC\xA2",
         "\xE6\xBC\xA2\xE5\xAD\x97\n\xE6\xBC\xA2\xE5\xAD\x97\xE6\xBC\xA2"},
    };
    for (const auto &[text, wanted] : cases) {
        std::unique_ptr<NB_CHAR, decltype(&free)> wrapped(vga_wrap_text(text, 10), free);
        EXPECT_STREQ(wrapped.get(), wanted);
    }
    setlocale(LC_ALL, "C");
}

// A button is pressed by the letter of its label with Alt; one that is not there is not.
TEST_F(Dialogs, LettersPressTheButtons) {
    gvga_messages[VGA_MSG_NO_BUTTON] = "No";
    vga_display_confirm_each_dialog(main_dialog, 1, "help", note_answer, 9, 1, "s", "sure?");
    gui::settle();
    gui::give_focus(main_dialog->modal_dlg.shell);
    gui::key("n"); // without Alt
    EXPECT_TRUE(events.answers.empty());
    gui::key("n", {"Alt_L"});
    ASSERT_EQ(events.answers.size(), 1U);
    EXPECT_EQ(events.answers[0].first, VGA_ANSWER_NO);
    error(main_dialog, "wrong");
    gui::settle();
    gui::give_focus(main_dialog->modal_dlg.shell);
    gui::key("n", {"Alt_L"});
    EXPECT_EQ(shown(main_dialog), "wrong");
    gui::key("o", {"Alt_L"});
    EXPECT_EQ(shown(main_dialog), "");
}

/* On a screen of 1000 by 800, of a box of 300 by 100. */
TEST(BoxPlace, IsWhereDialogOrFieldCanBeSeen) {
    const VGA_AREA screen = {0, 0, 1000, 800};
    struct CASE {
        const char *what;
        VGA_AREA dialog, field;
        bool clear_of_dialog;
    };
    const CASE cases[] = {
        {"room on the right", {100, 100, 400, 300}, {250, 200, 80, 20}, true},
        {"on the left", {550, 100, 400, 300}, {700, 200, 80, 20}, true},
        {"below", {200, 50, 600, 400}, {400, 100, 80, 20}, true},
        {"above", {200, 250, 600, 500}, {400, 700, 80, 20}, true},
        {"all of the screen", {5, 30, 990, 760}, {400, 300, 80, 20}, false},
        {"field at the end of it", {5, 30, 990, 760}, {800, 760, 180, 20}, false},
    };
    for (const CASE &row : cases) {
        SCOPED_TRACE(row.what);
        const VGA_AREA &taken = row.clear_of_dialog ? row.dialog : row.field;
        const VGA_AREA box = vga_place_beside({0, 0, 300, 100}, row.dialog, row.field, screen);
        EXPECT_TRUE(box.x >= 0 && box.y >= 0 && box.x + 300 <= 1000 && box.y + 100 <= 800);
        EXPECT_TRUE(box.x >= taken.x + taken.width || box.x + 300 <= taken.x ||
                    box.y >= taken.y + taken.height || box.y + 100 <= taken.y);
    }
}

} // namespace
