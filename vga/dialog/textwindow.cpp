#include "textwindow.h"
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
#include <map>
#include <string>

namespace {

using KEY = std::pair<const VGA_DIALOG *, std::string>;
std::map<KEY, VGA_TEXT_WINDOW> windows;

/* What is marked, else all of it, goes to where the mouse pastes from and to where the keys do. */
NB_VOID copy(Widget, XtPointer text, XtPointer call_data) {
    auto *widget = static_cast<Widget>(text);
    const auto *call = static_cast<const XmAnyCallbackStruct *>(call_data);
    const Time time = call != nullptr && call->event != nullptr
                          ? XtLastTimestampProcessed(XtDisplay(widget))
                          : CurrentTime;
    XmTextPosition left = 0, right = 0;
    if (!XmTextGetSelectionPosition(widget, &left, &right) || left == right) {
        XmTextSetSelection(widget, 0, XmTextGetLastPosition(widget), time);
    }
    XmTextCopy(widget, time);
}

NB_VOID close_window(Widget, XtPointer box, XtPointer) {
    XtUnmanageChild(static_cast<Widget>(box));
}

NB_VOID forget(Widget box, XtPointer, XtPointer) {
    std::erase_if(windows, [box](const auto &one) { return one.second.box == box; });
}

VGA_TEXT_WINDOW make_window(const VGA_DIALOG *desc, const NB_CHAR *description) {
    Arg args[1];
    XtSetArg(args[0], XmNdeleteResponse, XmDO_NOTHING);
    NB_CHAR name[] = VGA_CLASS;
    Widget shell = XmCreateDialogShell(desc->shell, name, args, 1);
    Widget box = nullptr;
    MrmType type;
    VGA_NO_WARNINGS silence;
    if (gvga_uil_hierarchy == nullptr ||
        MrmFetchWidget(gvga_uil_hierarchy, const_cast<NB_CHAR *>(description), shell, &box,
                       &type) != MrmSUCCESS) {
        XtDestroyWidget(shell);
        return {};
    }
    const std::string text_name = std::string("*") + description + "Text";
    const VGA_TEXT_WINDOW window = {box, XtNameToWidget(box, text_name.c_str())};
    XtAddCallback(box, XmNokCallback, copy, window.text);
    XtAddCallback(box, XmNcancelCallback, close_window, box);
    XtAddCallback(box, XmNdestroyCallback, forget, nullptr);
    XmAddWMProtocolCallback(shell, gvga_close_atom, close_window, reinterpret_cast<XPointer>(box));
    vga_set_configured_colours(box);
    vga_give_letters(box);
    const Widget stops[] = {XtNameToWidget(box, "Cancel"), XtNameToWidget(box, "OK"),
                            XtNameToWidget(box, "Help"), window.text};
    vga_define_tab_groups(stops, XtNumber(stops));
    return window;
}

} // namespace

const VGA_TEXT_WINDOW *vga_text_window(VGA_DIALOG *desc, const NB_CHAR *description) {
    if (desc->in_use == 0) {
        return nullptr;
    }
    VGA_TEXT_WINDOW &window = windows[{desc, description}];
    if (window.box == nullptr) {
        window = make_window(desc, description);
    }
    if (window.box == nullptr) {
        nba_pd_print_problem(NB_PD_WINDOW, NB_PD_WINDOW_NO_DESCRIPTION, "s", description);
        vga_display_error_dialog(desc, VGA_MSG_DIALOG_FAILED, nullptr, nullptr, 0, "");
        return nullptr;
    }
    return &window;
}

const VGA_TEXT_WINDOW *vga_shown_text_window(const VGA_DIALOG *desc, const NB_CHAR *description) {
    const auto found = windows.find({desc, description});
    const bool shown = found != windows.end() && found->second.box != nullptr &&
                       XtIsManaged(found->second.box) != 0;
    return shown ? &found->second : nullptr;
}

NB_VOID vga_show_text_window(const VGA_TEXT_WINDOW &window, const NB_CHAR *title,
                             const NB_CHAR *help_key) {
    const VGA_STRING shown(title);
    XtVaSetValues(window.box, XmNdialogTitle, shown.get(), nullptr);
    XtRemoveAllCallbacks(window.box, XmNhelpCallback);
    XtAddCallback(window.box, XmNhelpCallback, vga_help_cb, const_cast<NB_CHAR *>(help_key));
    XtManageChild(window.box);
    XRaiseWindow(XtDisplay(window.box), XtWindow(XtParent(window.box)));
    XmProcessTraversal(XtNameToWidget(window.box, "Cancel"), XmTRAVERSE_CURRENT);
}

NB_VOID vga_close_text_windows(const VGA_DIALOG *desc) {
    for (auto &[key, window] : windows) {
        if (key.first == desc && window.box != nullptr) {
            XtUnmanageChild(window.box);
        }
    }
}
