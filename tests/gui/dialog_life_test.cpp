// The life of windows and dialogs: fetching, closing, using again, what fails.

#include "dialog_support.h"
#include "widgets.h"

using namespace dialogs;

namespace {

// Fetching and closing.

TEST_F(Dialogs, ClosedDialogIsReusedUnderTheSameParentOnly) {
    VGA_DIALOG *window = open(VGA_UID_TP_WINDOW, main_dialog);
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog, &record);
    reinterpret_cast<MODED_DESC *>(moded)->own_field = 5;
    NB_ULONG handle = moded->handle;
    VGA_DIALOG *second = open(VGA_UID_MODE_DIALOG, main_dialog);
    EXPECT_NE(second, moded) << "an open dialog was given away";
    vga_close_children(moded, 1, 0);
    EXPECT_EQ(moded->context, nullptr);
    EXPECT_FALSE(XtIsManaged(moded->widget));
    EXPECT_EQ(nba_validate_handle(handle), nullptr) << "a late answer would find it";

    EXPECT_NE(open(VGA_UID_MODE_DIALOG, window), moded);
    VGA_DIALOG *again = open(VGA_UID_MODE_DIALOG, main_dialog, &other_record);
    EXPECT_EQ(again, moded);
    EXPECT_EQ(again->context, &other_record);
    EXPECT_EQ(reinterpret_cast<MODED_DESC *>(again)->own_field, 5);
    EXPECT_EQ(nba_validate_handle(handle), nullptr) << "a late answer would find the next user";
    EXPECT_EQ(nba_validate_handle(again->handle), again);

    // A main window forgets its parent and serves any.
    vga_close_children(window, 1, 0);
    EXPECT_EQ(window->parent, nullptr);
    EXPECT_EQ(open(VGA_UID_TP_WINDOW, nullptr), window);
}

TEST_F(Dialogs, ClosingGoesDepthFirst) {
    VGA_DIALOG *window = open(VGA_UID_TP_WINDOW, main_dialog);
    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, window);
    VGA_DIALOG *advanced = open(VGA_UID_SDLC_LS_ADV_DIALOG, moded);
    unsigned char style = XmDIALOG_MODELESS;
    XtVaGetValues(advanced->widget, XmNdialogStyle, &style, nullptr);
    EXPECT_EQ(style, XmDIALOG_PRIMARY_APPLICATION_MODAL);
    vga_close_children(window, 1, 0);
    EXPECT_EQ(events.closed, (std::vector<std::string>{"sadvl", "moded", "tpw"}));
    EXPECT_TRUE(NB_EMPTY_LIST(main_dialog->children_root_lqe));

    // Only the children this time, by the whole tree.
    open(VGA_UID_MODE_DIALOG, open(VGA_UID_TP_WINDOW, main_dialog));
    events.closed.clear();
    vga_close_children(main_dialog, 0, 1);
    EXPECT_EQ(events.closed, (std::vector<std::string>{"moded", "tpw"}));
    EXPECT_EQ(main_dialog->in_use, 1);
    EXPECT_EQ(events.fatal, "");
}

TEST_F(Dialogs, MainDialogAsksBeforeItStops) {
    close_by_manager(main_dialog->shell);
    EXPECT_EQ(shown(main_dialog), "Exit?");
    answer(main_dialog, "Cancel");
    EXPECT_EQ(events.stops, 0);
    close_by_manager(main_dialog->shell);
    close_by_manager(main_dialog->shell); // the same question again, not a second one
    answer(main_dialog);
    EXPECT_EQ(events.stops, 1);
    EXPECT_EQ(shown(main_dialog), "");
    // The end is reported over its window, so that stays, whatever else is closed.
    open(VGA_UID_MODE_DIALOG, main_dialog);
    vga_close_children(main_dialog, 1, 1);
    EXPECT_EQ(events.closed, (std::vector<std::string>{"moded", "nodew"}));
    EXPECT_EQ(main_dialog->in_use, 1);
    error(main_dialog, "the end");
    EXPECT_EQ(shown(main_dialog), "the end");
}

TEST_F(Dialogs, FailuresLeaveNothingBehind) {
    const auto no_such_row = static_cast<NB_USHORT>(VGA_UID_PARTS + gvga_part_desc.size());
    VGA_DIALOG *desc = main_dialog;
    EXPECT_EQ(vga_get_dialog(no_such_row, main_dialog, nullptr, &desc), 0);
    EXPECT_EQ(desc, nullptr);
    EXPECT_EQ(events.fatal, "dialog_id <= VGA_UID_MAX");

    // Neither is in the UID file.
    fill_row(VGA_UID_LU62_DIALOG, sizeof(VGA_DIALOG), get_any);
    for (NB_USHORT id : {VGA_UID_LU62_DIALOG, VGA_UID_NODE_DIALOG}) {
        EXPECT_EQ(vga_get_dialog(id, main_dialog, nullptr, &desc), 0);
        EXPECT_EQ(shown(main_dialog), "failed");
        answer(main_dialog);
        EXPECT_EQ(gvga_uid_desc[id].first_desc, nullptr);
    }
    // A part of the dialog is missing.
    gvga_uid_desc[VGA_UID_MODE_DIALOG].get_widgets = get_none;
    EXPECT_EQ(vga_get_dialog(VGA_UID_MODE_DIALOG, main_dialog, nullptr, &desc), 0);
    EXPECT_EQ(gvga_uid_desc[VGA_UID_MODE_DIALOG].first_desc, nullptr);
    EXPECT_EQ(shown(main_dialog), "failed");
    answer(main_dialog);
    EXPECT_TRUE(NB_EMPTY_LIST(main_dialog->children_root_lqe));

    // A dialog is not released from under its children.
    VGA_DIALOG *window = open(VGA_UID_TP_WINDOW, main_dialog);
    open(VGA_UID_SDLC_LS_ADV_DIALOG, window);
    vga_release_dialog(window);
    EXPECT_EQ(events.fatal, "NB_EMPTY_LIST(dialog_ptr->children_root_lqe)");
    EXPECT_EQ(window->in_use, 1);
}

} // namespace
