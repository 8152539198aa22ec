#include "firewall.h"
#include <Xm/CascadeB.h>
#include <Xm/DrawingA.h>
#include <Xm/GrabShell.h>
#include <Xm/Label.h>
#include <Xm/MenuShell.h>
#include <Xm/RowColumn.h>
#include <Xm/Separator.h>
#include <Xm/XmP.h>

NB_ULONG gvga_modal_firewall_count;
Widget gvga_modal_firewall_widget;
NB_VOID (*gvga_modal_firewall_down)(NB_VOID);

namespace {

enum WATCH : NB_USHORT { WATCH_NOTHING, WATCH_POPUP, WATCH_ARM, WATCH_PRESS };

bool is_menu(Widget widget) {
    unsigned char type = XmWORK_AREA;
    if (XmIsRowColumn(widget)) {
        XtVaGetValues(widget, XmNrowColumnType, &type, nullptr);
    }
    return type != XmWORK_AREA;
}

/* A menu's buttons need no watch: they are only held while its shell is up.  The release of one may
 * go to another menu's window. */
WATCH watch_for(Widget widget) {
    if (XmIsMenuShell(widget) || XmIsGrabShell(widget)) {
        return WATCH_POPUP;
    }
    if (XtIsShell(widget) || is_menu(widget) || is_menu(XtParent(widget))) {
        return WATCH_NOTHING;
    }
    if (XtHasCallbacks(widget, XmNarmCallback) != XtCallbackNoList) {
        return WATCH_ARM;
    }
    bool held = XmIsPrimitive(widget) && !XmIsLabel(widget) && !XmIsSeparator(widget);
    return held || XmIsDrawingArea(widget) ? WATCH_PRESS : WATCH_NOTHING;
}

NB_VOID forget_destroyed(Widget widget, XtPointer, XtPointer) {
    vga_modal_firewall_forget(widget);
}

/* Taken off first, so that a second call for the same widget adds nothing. */
NB_VOID add_once(Widget widget, const NB_CHAR *list, XtCallbackProc proc) {
    XtRemoveCallback(widget, list, proc, nullptr);
    XtAddCallback(widget, list, proc, nullptr);
}

NB_VOID watch(Widget widget) {
    switch (watch_for(widget)) {
    case WATCH_POPUP:
        add_once(widget, XmNpopupCallback, vga_modal_firewall_on);
        add_once(widget, XmNpopdownCallback, vga_modal_firewall_off);
        return;
    case WATCH_ARM:
        add_once(widget, XmNarmCallback, vga_modal_firewall_on);
        add_once(widget, XmNdisarmCallback, vga_modal_firewall_off);
        break;
    case WATCH_PRESS:
        /* The toolkit keeps one entry for the same procedure and data. */
        XtAddEventHandler(widget, ButtonPressMask, False, vga_modal_firewall_on_event, nullptr);
        XtAddEventHandler(widget, ButtonReleaseMask, False, vga_modal_firewall_off_event, nullptr);
        break;
    default:
        return;
    }
    add_once(widget, XmNdestroyCallback, forget_destroyed);
}

NB_VOID gesture_ended(NB_VOID) {
    if (gvga_modal_firewall_count == 0 && gvga_modal_firewall_widget == nullptr &&
        gvga_modal_firewall_down != nullptr) {
        gvga_modal_firewall_down();
    }
}

/* The reason is the first field of what a button's callback gets; a shell gets something else. */
NB_INT reason_of(Widget widget, XtPointer call_data) {
    return call_data == nullptr || XtIsShell(widget)
               ? XmCR_NONE
               : static_cast<const XmAnyCallbackStruct *>(call_data)->reason;
}

} // namespace

NB_VOID vga_add_modal_popup_firewall(Widget widget) {
    watch(widget);
    if (XtIsComposite(widget)) {
        WidgetList children = nullptr;
        Cardinal count = 0;
        XtVaGetValues(widget, XmNchildren, &children, XmNnumChildren, &count, nullptr);
        for (Cardinal child = 0; child < count; child++) {
            vga_add_modal_popup_firewall(children[child]);
        }
    }
    if (XtIsWidget(widget)) {
        for (Cardinal popup = 0; popup < widget->core.num_popups; popup++) {
            vga_add_modal_popup_firewall(widget->core.popup_list[popup]);
        }
    }
}

NB_USHORT vga_modal_firewall_up(NB_VOID) {
    if (gvga_modal_firewall_widget != nullptr && !XtIsSensitive(gvga_modal_firewall_widget)) {
        vga_modal_firewall_forget(gvga_modal_firewall_widget);
    }
    return gvga_modal_firewall_count > 0 || gvga_modal_firewall_widget != nullptr;
}

NB_VOID vga_modal_firewall_forget(Widget widget) {
    if (widget != nullptr && widget == gvga_modal_firewall_widget) {
        gvga_modal_firewall_widget = nullptr;
        gesture_ended();
    }
}

NB_VOID vga_modal_firewall_forget_tree(Widget widget) {
    for (Widget at = gvga_modal_firewall_widget; at != nullptr; at = XtParent(at)) {
        if (at == widget) {
            vga_modal_firewall_forget(gvga_modal_firewall_widget);
            return;
        }
    }
}

NB_VOID vga_modal_firewall_on(Widget widget, XtPointer, XtPointer call_data) {
    if (reason_of(widget, call_data) == XmCR_ARM) {
        gvga_modal_firewall_widget = widget;
    } else {
        gvga_modal_firewall_count++;
    }
}

NB_VOID vga_modal_firewall_off(Widget widget, XtPointer, XtPointer call_data) {
    if (reason_of(widget, call_data) == XmCR_DISARM) {
        vga_modal_firewall_forget(widget);
    } else if (gvga_modal_firewall_count > 0) {
        gvga_modal_firewall_count--;
        gesture_ended();
    }
}

/* Only the first button: the second may start a drag and the third post a menu, which take the
 * pointer away so that the widget never sees the release. */
NB_VOID vga_modal_firewall_on_event(Widget widget, XtPointer, XEvent *event, Boolean *) {
    if (event->xbutton.button == Button1) {
        gvga_modal_firewall_widget = widget;
    }
}

NB_VOID vga_modal_firewall_off_event(Widget widget, XtPointer, XEvent *event, Boolean *) {
    if (event->xbutton.button == Button1) {
        vga_modal_firewall_forget(widget);
    }
}
