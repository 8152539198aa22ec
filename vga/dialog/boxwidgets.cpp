#include "boxwidgets.h"
#include "buttonletters.h"
#include "globals.h"
#include "helpwindows.h"
#include "holders.h"
#include "letters.h"
#include "marks.h"
#include "messages.h"
#include "symbolpixmaps.h"
#include "textselection.h"
#include "toolkit.h"
#include "verbqueue.h"
#include "vgadgutl.h"
#include "widgets.h"
#include "wraptext.h"
#include <Xm/DialogS.h>
#include <Xm/MessageB.h>
#include <Xm/Protocols.h>
#include <Xm/PushB.h>
#include <utility>

namespace {

struct BOX_LOOK {
    NB_USHORT title;
    unsigned char dialog_type;
};
/* By VGA_MODAL_TYPE. */
const BOX_LOOK looks[] = {
    {VGA_MSG_ERROR_TITLE, XmDIALOG_ERROR},
    {VGA_MSG_INFO_TITLE, XmDIALOG_INFORMATION},
    {VGA_MSG_CONFIRM_TITLE, XmDIALOG_QUESTION},
};

/* The description's box where there is one, so that its look can be changed there. */
Widget fetch_box(Widget shell) {
    if (gvga_uil_hierarchy != nullptr) {
        VGA_NO_WARNINGS silence;
        NB_CHAR name[] = "errorDialog";
        Widget dialog = nullptr;
        MrmType type;
        if (MrmFetchWidget(gvga_uil_hierarchy, name, shell, &dialog, &type) == MrmSUCCESS &&
            XmIsMessageBox(dialog)) {
            return dialog;
        }
    }
    Arg args[1];
    XtSetArg(args[0], XmNautoUnmanage, False);
    return XmCreateMessageBox(shell, const_cast<NB_CHAR *>("errorDialog"), args, 1);
}

Widget extra_button(Widget dialog, const NB_CHAR *name, NB_USHORT label,
                    XtCallbackProc pressed = vga_modal_dialog_cb) {
    VGA_STRING text(vga_message(label));
    Widget button = XtNameToWidget(dialog, name);
    if (button == nullptr) {
        button = XtVaCreateWidget(name, xmPushButtonWidgetClass, dialog, nullptr);
    }
    XtVaSetValues(button, XmNlabelString, text.get(), nullptr);
    XtRemoveCallback(button, XmNactivateCallback, pressed, nullptr);
    XtAddCallback(button, XmNactivateCallback, pressed, nullptr);
    return button;
}

NB_VOID show_button(Widget button, NB_USHORT on) {
    if (button != nullptr) {
        (on != 0 ? XtManageChild : XtUnmanageChild)(button);
    }
}

/* Whose window it is over, where nodes have colours. */
NB_VOID show_mark(Widget label, const VGA_MARK *mark) {
    if (label != nullptr && mark != nullptr) {
        vga_show_mark(label, mark, nullptr);
        XtManageChild(label);
    } else if (label != nullptr) {
        XtUnmanageChild(label);
    }
}

/* Details. */

/* The message and its details, as one text. */
std::string whole_text(const VGA_MODAL_DLG &box) {
    return std::string(box.text) + "\n\n" + box.details;
}

NB_VOID set_label(Widget label, const NB_CHAR *resource, const NB_CHAR *text) {
    const VGA_STRING string(text);
    XtVaSetValues(label, resource, string.get(), nullptr);
}

NB_VOID show_details(VGA_MODAL_DLG &box, NB_USHORT on) {
    box.details_shown = on;
    const VGA_OWNED<NB_CHAR> lines(
        vga_wrap_text(on != 0 ? whole_text(box).c_str() : box.text, VGA_BOX_COLUMNS));
    set_label(box.dialog, XmNmessageString, lines ? lines.get() : box.text);
    set_label(box.details_button, XmNlabelString,
              vga_message(on != 0 ? VGA_MSG_HIDE_DETAILS : VGA_MSG_DETAILS));
}

NB_VOID details_pressed(Widget button, XtPointer, XtPointer) {
    VGA_DIALOG *desc = vga_get_dialog_from_widget(button);
    if (desc != nullptr && desc->modal_dlg.details != nullptr) {
        show_details(desc->modal_dlg, desc->modal_dlg.details_shown == 0);
    }
}

NB_VOID copy_pressed(Widget button, XtPointer, XtPointer) {
    const VGA_DIALOG *desc = vga_get_dialog_from_widget(button);
    if (desc != nullptr && desc->modal_dlg.details != nullptr) {
        vga_own_text(desc->modal_dlg.dialog, whole_text(desc->modal_dlg));
    }
}

NB_VOID keep_texts(VGA_MODAL_DLG &box, MODAL_REQUEST &request) {
    XtFree(box.text);
    XtFree(box.details);
    box.text = XtNewString(vga_label_text(box.dialog, XmNmessageString).c_str());
    box.details = std::exchange(request.details, nullptr);
    box.details_shown = 0;
    if (box.details != nullptr) {
        set_label(box.details_button, XmNlabelString, vga_message(VGA_MSG_DETAILS));
    }
    show_button(box.details_button, box.details != nullptr);
    show_button(box.copy_button, box.details != nullptr);
}

} // namespace

NB_VOID vga_make_box(VGA_DIALOG *parent) {
    VGA_MODAL_DLG &box = parent->modal_dlg;
    Arg args[2];
    XtSetArg(args[0], XmNdeleteResponse, XmDO_NOTHING);
    XtSetArg(args[1], XmNallowShellResize, True);
    NB_CHAR name[] = VGA_CLASS;
    box.shell = XmCreateDialogShell(parent->shell, name, args, 2);
    box.dialog = fetch_box(box.shell);
    XtVaSetValues(box.dialog, XmNautoUnmanage, False, XmNdialogStyle,
                  XmDIALOG_PRIMARY_APPLICATION_MODAL, XmNuserData, parent, nullptr);
    box.ok_to_all_button =
        extra_button(box.dialog, "confirmOKToAllButton", VGA_MSG_OK_TO_ALL_BUTTON);
    box.no_button = extra_button(box.dialog, "confirmNoButton", VGA_MSG_NO_BUTTON);
    box.details_button =
        extra_button(box.dialog, "messageDetailsButton", VGA_MSG_DETAILS, details_pressed);
    box.copy_button =
        extra_button(box.dialog, "messageCopyButton", VGA_MSG_COPY_DETAILS, copy_pressed);
    box.cancel_button = XtNameToWidget(box.dialog, "Cancel");
    for (const NB_CHAR *list : {XmNokCallback, XmNcancelCallback}) {
        XtRemoveAllCallbacks(box.dialog, list);
        XtAddCallback(box.dialog, list, vga_modal_dialog_cb, nullptr);
    }
    XmAddWMProtocolCallback(box.shell, gvga_close_atom, vga_modal_dialog_cb, nullptr);
    XtRemoveAllCallbacks(box.dialog, XmNhelpCallback);
    XtAddCallback(box.dialog, XmNhelpCallback, vga_modal_dialog_help_cb, nullptr);
    vga_set_configured_colours(box.dialog);
    vga_give_letters(box.dialog);
}

NB_VOID vga_fill_box(VGA_MODAL_DLG &box, MODAL_REQUEST &request) {
    NB_USHORT question = request.type == VGA_MODAL_CONFIRM;
    show_button(box.cancel_button, question);
    show_button(box.ok_to_all_button, question != 0 && request.show_ok_to_all != 0);
    show_button(box.no_button, question != 0 && request.show_no != 0);
    Widget ok = XtNameToWidget(box.dialog, "OK");
    vga_set_sensitive(XtNameToWidget(box.dialog, "Help"), request.help_key != nullptr);
    show_mark(XtNameToWidget(box.dialog, "messageMark"), vga_mark_of(request.parent));
    const BOX_LOOK &look = looks[request.type];
    const bool cancel_first = question != 0 && request.loses != 0;
    VGA_STRING title(vga_message(look.title));
    XtVaSetValues(box.dialog, XmNdialogTitle, title.get(), XmNdialogType, look.dialog_type,
                  XmNmessageString, request.text, nullptr);
    keep_texts(box, request);
    Pixmap symbol = vga_box_symbol(box.dialog, request.type);
    if (symbol != None) {
        XtVaSetValues(box.dialog, XmNsymbolPixmap, symbol, nullptr);
    }
    const Widget stops[] = {ok,
                            box.ok_to_all_button,
                            box.no_button,
                            box.cancel_button,
                            box.details_button,
                            box.copy_button,
                            XtNameToWidget(box.dialog, "Help")};
    vga_define_tab_groups(stops, XtNumber(stops));
    XtVaSetValues(box.dialog, XmNdefaultButtonType,
                  cancel_first ? XmDIALOG_CANCEL_BUTTON : XmDIALOG_OK_BUTTON, nullptr);
}
