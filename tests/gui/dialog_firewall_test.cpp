// The firewall: no message box pops up in the middle of a gesture.

#include "dialog_support.h"
#include "popups.h"
#include "widgets.h"

using namespace dialogs;

namespace {

// The firewall.

TEST_F(Dialogs, ErrorWaitsForTheButton) {
    press(part("*nodewButton"));
    EXPECT_EQ(vga_modal_firewall_up(), 1);
    error(main_dialog, "while held");
    gui::settle();
    EXPECT_EQ(shown(main_dialog), "");
    gui::release();
    EXPECT_EQ(shown(main_dialog), "while held");
    answer(main_dialog);

    // A message that the button's own callback shows comes when the button is up again.
    events.on_activate = [this] { error(main_dialog, "by the button"); };
    click(part("*nodewButton"));
    EXPECT_EQ(shown(main_dialog), "by the button");
    answer(main_dialog);

    press(part("*nodewScrollBar"));
    error(main_dialog, "while scrolling");
    EXPECT_EQ(shown(main_dialog), "");
    gui::move_to(gvga_toplevel, 5, 5); // released outside
    gui::release();
    EXPECT_EQ(shown(main_dialog), "while scrolling");
}

TEST_F(Dialogs, ErrorWaitsForTheMenu) {
    click(part("*nodewFile"));
    EXPECT_EQ(vga_modal_firewall_up(), 1);
    error(main_dialog, "while posted");
    gui::settle();
    EXPECT_EQ(shown(main_dialog), "");
    click(part("*nodewItem"));
    EXPECT_EQ(shown(main_dialog), "while posted");
}

TEST_F(Dialogs, LostReleaseDoesNotBlockMessages) {
    Widget held = part("*nodewButton");
    press(held);
    error(main_dialog, "one");
    vga_set_sensitive(held, 0);
    EXPECT_TRUE(gui::wait_for([&] { return shown(main_dialog) == "one"; }));
    gui::release();
    answer(main_dialog);
    vga_set_sensitive(held, 1);

    press(held);
    XtSetSensitive(main_dialog->widget, False); // behind the framework's back
    error(main_dialog, "two");
    EXPECT_EQ(shown(main_dialog), "two");
    gui::release();
    XtSetSensitive(main_dialog->widget, True);
    answer(main_dialog);

    VGA_DIALOG *moded = open(VGA_UID_MODE_DIALOG, main_dialog);
    press(XtNameToWidget(moded->widget, "OK"));
    error(main_dialog, "three");
    vga_close_children(moded, 1, 1);
    EXPECT_TRUE(gui::wait_for([&] { return shown(main_dialog) == "three"; }));
    gui::release();
}

TEST_F(Dialogs, WidgetsMadeLaterAreWatched) {
    // A list's drawing area, whose second click is handled by an action of its own.
    Widget form = main_dialog->widget;
    XtTranslations list_keys =
        XtParseTranslationTable("#replace\n<Btn1Down>(2+): MultiArm()\n"
                                "<Btn1Up>(2+): MultiActivate()\n<Btn1Down>: Arm()\n"
                                "<Btn1Up>: Activate() Disarm()");
    Widget list = XtVaCreateManagedWidget("list", xmDrawnButtonWidgetClass, form, XmNx, 20, XmNy,
                                          150, XmNwidth, 150, XmNheight, 40, XmNmultiClick,
                                          XmMULTICLICK_KEEP, XmNtranslations, list_keys, nullptr);
    Widget menu = XmCreatePopupMenu(list, const_cast<char *>("menu"), nullptr, 0);
    XtVaCreateManagedWidget("entry", xmPushButtonWidgetClass, menu, nullptr);
    vga_add_modal_popup_firewall(form);
    vga_install_popup_menu(list, menu);
    gui::settle();

    click(list);
    gui::press();
    EXPECT_EQ(gvga_modal_firewall_widget, list);
    gui::release(); // a double click
    EXPECT_EQ(vga_modal_firewall_up(), 0);

    press(list);
    gui::release();
    gui::press(3);
    EXPECT_EQ(gvga_modal_firewall_count, 1U);
    gui::release(3);
    gui::key("Escape");
    EXPECT_EQ(vga_modal_firewall_up(), 0);
}

} // namespace
