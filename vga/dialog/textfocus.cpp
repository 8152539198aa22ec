#include "textfocus.h"
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <Xm/XmP.h>
#include <set>

namespace {

std::set<Widget> left; /* shells that lost the keyboard and have not got it back */

bool is_text(Widget widget) {
    return XmIsText(widget) || XmIsTextField(widget);
}

Widget shell_of(Widget widget) {
    while (!XtIsShell(widget)) {
        widget = XtParent(widget);
    }
    return widget;
}

/* The toolkit moves the keyboard while it handles the press. */
bool by_mouse(Widget field) {
    const XEvent *event = XtLastEventProcessed(XtDisplay(field));
    return event != nullptr && (event->type == ButtonPress || event->type == ButtonRelease);
}

NB_VOID focus_changed(Widget field, XtPointer, XEvent *event, Boolean *) {
    if (event->type != FocusIn && event->type != FocusOut) {
        return;
    }
    const bool here = event->type == FocusIn;
    XtVaSetValues(field, XmNcursorPositionVisible, here && XmTextGetEditable(field), nullptr);
    if (here && left.erase(shell_of(field)) == 0 && !by_mouse(field)) {
        vga_select_text(field);
    } else if (!here && left.count(shell_of(field)) == 0) {
        XmTextClearSelection(field, XtLastTimestampProcessed(XtDisplay(field)));
    }
}

/* Handlers of the shell come first: its field hears of the change through it. */
NB_VOID shell_changed(Widget shell, XtPointer, XEvent *event, Boolean *) {
    if (event->type == FocusOut) {
        left.insert(shell);
    }
}

NB_VOID forget_shell(Widget shell, XtPointer, XtPointer) {
    left.erase(shell);
}

NB_VOID watch_shell(Widget shell) {
    XtRemoveEventHandler(shell, FocusChangeMask, False, shell_changed, nullptr); /* once */
    XtInsertEventHandler(shell, FocusChangeMask, False, shell_changed, nullptr, XtListHead);
    XtRemoveCallback(shell, XmNdestroyCallback, forget_shell, nullptr);
    XtAddCallback(shell, XmNdestroyCallback, forget_shell, nullptr);
}

} // namespace

NB_VOID vga_watch_texts(Widget widget) {
    if (is_text(widget)) {
        XtVaSetValues(widget, XmNcursorPositionVisible, False, nullptr);
        XtRemoveEventHandler(widget, FocusChangeMask, False, focus_changed, nullptr); /* once */
        XtAddEventHandler(widget, FocusChangeMask, False, focus_changed, nullptr);
        watch_shell(shell_of(widget));
    }
    WidgetList children = nullptr;
    Cardinal count = 0;
    if (XtIsComposite(widget)) {
        XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    }
    for (Cardinal child = 0; child < count; child++) {
        vga_watch_texts(children[child]);
    }
}

NB_VOID vga_select_text(Widget field) {
    int mode = XmSINGLE_LINE_EDIT;
    if (!is_text(field) || !XmTextGetEditable(field)) {
        return;
    }
    if (XmIsText(field)) {
        XtVaGetValues(field, XmNeditMode, &mode, nullptr);
    }
    const XmTextPosition end = XmTextGetLastPosition(field);
    if (mode == XmSINGLE_LINE_EDIT && end > 0) {
        XmTextSetInsertionPosition(field, end);
        XmTextSetSelection(field, 0, end, XtLastTimestampProcessed(XtDisplay(field)));
    }
}
