#include "receipt.h"
#include "buttonletters.h"
#include "helpwindows.h"
#include "holders.h"
#include "messages.h"
#include "nbproblem.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include "widgets.h"
#include <Xm/DialogS.h>
#include <Xm/MessageB.h>
#include <Xm/Protocols.h>
#include <Xm/Text.h>
#include <unordered_map>

namespace {

NB_CHAR description[] = "receipt";
NB_CHAR rule[] = "\n----------------------------------------\n\n";

struct WINDOW {
    Widget box, text;
};
std::unordered_map<const VGA_DIALOG *, WINDOW> windows;

/* All of it goes to where the mouse pastes from and to where the keys do. */
NB_VOID copy(Widget, XtPointer text, XtPointer call_data) {
    auto *widget = static_cast<Widget>(text);
    const auto *call = static_cast<const XmAnyCallbackStruct *>(call_data);
    const Time time = call != nullptr && call->event != nullptr
                          ? XtLastTimestampProcessed(XtDisplay(widget))
                          : CurrentTime;
    XmTextSetSelection(widget, 0, XmTextGetLastPosition(widget), time);
    XmTextCopy(widget, time);
}

NB_VOID close_window(Widget, XtPointer desc, XtPointer) {
    vga_close_receipt(static_cast<const VGA_DIALOG *>(desc));
}

NB_VOID forget(Widget, XtPointer desc, XtPointer) {
    windows.erase(static_cast<const VGA_DIALOG *>(desc));
}

WINDOW *make_window(VGA_DIALOG *desc) {
    Arg args[1];
    XtSetArg(args[0], XmNdeleteResponse, XmDO_NOTHING);
    NB_CHAR name[] = VGA_CLASS;
    Widget shell = XmCreateDialogShell(desc->shell, name, args, 1);
    Widget box = nullptr;
    MrmType type;
    VGA_NO_WARNINGS silence;
    if (gvga_uil_hierarchy == nullptr ||
        MrmFetchWidget(gvga_uil_hierarchy, description, shell, &box, &type) != MrmSUCCESS) {
        XtDestroyWidget(shell);
        return nullptr;
    }
    WINDOW &window = windows[desc];
    window = {box, XtNameToWidget(box, "*receiptText")};
    XtAddCallback(box, XmNokCallback, copy, window.text);
    XtAddCallback(box, XmNcancelCallback, close_window, desc);
    XtAddCallback(box, XmNdestroyCallback, forget, desc);
    XmAddWMProtocolCallback(shell, gvga_close_atom, close_window, reinterpret_cast<XPointer>(desc));
    vga_set_configured_colours(box);
    vga_give_letters(box);
    const Widget stops[] = {XtNameToWidget(box, "Cancel"), XtNameToWidget(box, "OK"),
                            XtNameToWidget(box, "Help"), window.text};
    vga_define_tab_groups(stops, XtNumber(stops));
    return &window;
}

/* Under what is still being read; the new account is then in sight, from its beginning. */
NB_VOID put_text(const WINDOW &window, const NB_CHAR *text) {
    if (XtIsManaged(window.box) == 0) {
        XmTextSetString(window.text, const_cast<NB_CHAR *>(""));
    } else {
        XmTextInsert(window.text, XmTextGetLastPosition(window.text), rule);
    }
    const XmTextPosition begin = XmTextGetLastPosition(window.text);
    XmTextInsert(window.text, begin, const_cast<NB_CHAR *>(text));
    XmTextShowPosition(window.text, XmTextGetLastPosition(window.text));
    XmTextShowPosition(window.text, begin);
}

} // namespace

NB_VOID vga_show_receipt(VGA_DIALOG *desc, const NB_CHAR *title, const NB_CHAR *text,
                         const NB_CHAR *help_key) {
    if (desc->in_use == 0) {
        return;
    }
    const auto made = windows.find(desc);
    const WINDOW *window = made != windows.end() ? &made->second : make_window(desc);
    if (window == nullptr) {
        nba_pd_print_problem(NB_PD_WINDOW, NB_PD_WINDOW_NO_DESCRIPTION, "s", description);
        vga_display_error_dialog(desc, VGA_MSG_DIALOG_FAILED, nullptr, nullptr, 0, "");
        return;
    }
    const VGA_STRING shown(title);
    XtVaSetValues(window->box, XmNdialogTitle, shown.get(), nullptr);
    put_text(*window, text);
    XtRemoveAllCallbacks(window->box, XmNhelpCallback);
    XtAddCallback(window->box, XmNhelpCallback, vga_help_cb, const_cast<NB_CHAR *>(help_key));
    XtManageChild(window->box);
    XRaiseWindow(XtDisplay(window->box), XtWindow(XtParent(window->box)));
    XmProcessTraversal(XtNameToWidget(window->box, "Cancel"), XmTRAVERSE_CURRENT);
}

NB_VOID vga_close_receipt(const VGA_DIALOG *desc) {
    const auto found = windows.find(desc);
    if (found != windows.end()) {
        XtUnmanageChild(found->second.box);
    }
}
