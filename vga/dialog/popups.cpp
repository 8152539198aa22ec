#include "popups.h"
#include "firewall.h"
#include "nbbase.h"
#include "toolkit.h"
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <cstdlib>

namespace {

constexpr uint32_t longest_click = 300; /* milliseconds */
constexpr NB_INT hand_shakes = 8;       /* pixels */

/* The press that posted a menu last. */
struct PRESS {
    Widget menu; /* null: none, or its menu has gone */
    XButtonEvent event;
    XtIntervalId post_again; /* 0: none is under way */
} press;

NB_VOID post(Widget menu, XButtonEvent *at) {
    XmMenuPosition(menu, at);
    XtManageChild(menu);
}

NB_VOID post_again(XtPointer, XtIntervalId *) {
    press.post_again = 0;
    if (press.menu != nullptr && !XtIsManaged(press.menu)) {
        post(press.menu, &press.event);
    }
}

/* The entry under the pointer is what the release has chosen. */
bool is_over_entry(Widget menu, const XButtonEvent &event) {
    WidgetList entries = nullptr;
    Cardinal count = 0;
    XtVaGetValues(menu, XmNchildren, &entries, XmNnumChildren, &count, nullptr);
    for (Cardinal at = 0; at < count; at++) {
        Position left = 0, top = 0;
        Dimension width = 0, height = 0;
        XtTranslateCoords(entries[at], 0, 0, &left, &top);
        XtVaGetValues(entries[at], XmNwidth, &width, XmNheight, &height, nullptr);
        if (XtIsManaged(entries[at]) && event.x_root >= left && event.x_root < left + width &&
            event.y_root >= top && event.y_root < top + height) {
            return true;
        }
    }
    return false;
}

bool is_end_of_click(const XEvent *event) {
    const XButtonEvent &release = event->xbutton;
    return event->type == ButtonRelease && release.button == press.event.button &&
           static_cast<uint32_t>(release.time - press.event.time) <= longest_click &&
           abs(release.x_root - press.event.x_root) <= hand_shakes &&
           abs(release.y_root - press.event.y_root) <= hand_shakes;
}

/* The toolkit takes a menu down with the release of the button that posted it, however soon that
 * comes.  While the shell comes down it cannot be posted. */
NB_VOID came_down(Widget shell, XtPointer, XtPointer) {
    const XEvent *event = XtLastEventProcessed(XtDisplay(shell));
    const bool posted_it = press.menu != nullptr && XtParent(press.menu) == shell;
    if (posted_it && event != nullptr && is_end_of_click(event) &&
        !is_over_entry(press.menu, event->xbutton) && press.post_again == 0) {
        press.post_again = XtAppAddTimeOut(gvga_appcontext, 0, post_again, nullptr);
    }
}

NB_VOID forget(Widget menu, XtPointer, XtPointer) {
    if (menu == press.menu) {
        press.menu = nullptr;
    }
}

bool is_menu(Widget menu) {
    if (!XmIsRowColumn(menu)) {
        v0_assert_fatal(__FILE__, __LINE__, "XmIsRowColumn(menu)");
        return false;
    }
    return true;
}

} // namespace

NB_VOID vga_install_popup_menu(Widget widget, Widget menu) {
    if (widget == nullptr || menu == nullptr || !is_menu(menu)) {
        return;
    }
    XtAddEventHandler(widget, ButtonPressMask, False, vga_popup_menu, menu);
    vga_add_modal_popup_firewall(XtParent(menu));
    /* One menu may be that of several widgets. */
    XtRemoveCallback(XtParent(menu), XmNpopdownCallback, came_down, nullptr);
    XtAddCallback(XtParent(menu), XmNpopdownCallback, came_down, nullptr);
    XtRemoveCallback(menu, XmNdestroyCallback, forget, nullptr);
    XtAddCallback(menu, XmNdestroyCallback, forget, nullptr);
}

NB_VOID vga_popup_menu(Widget widget, XtPointer data, XEvent *event, Boolean *) {
    auto menu = static_cast<Widget>(data);
    if (is_menu(menu) && vga_is_popup_press(event) != 0 && XtIsSensitive(widget)) {
        press.menu = menu;
        press.event = event->xbutton;
        post(menu, &press.event);
    }
}

NB_USHORT vga_is_popup_press(const XEvent *event) {
    constexpr unsigned buttons = Button1Mask | Button2Mask | Button3Mask;
    return event->type == ButtonPress && event->xbutton.button == Button3 &&
           (event->xbutton.state & buttons) == 0;
}

NB_VOID vga_post_popup_menu(Widget widget, Widget menu, NB_INT x, NB_INT y) {
    if (widget == nullptr || menu == nullptr || !XtIsSensitive(widget)) {
        return;
    }
    Position left = 0, top = 0;
    XtTranslateCoords(widget, static_cast<Position>(x), static_cast<Position>(y), &left, &top);
    XButtonPressedEvent at = {};
    at.type = ButtonPress;
    at.x_root = left;
    at.y_root = top;
    post(menu, &at);
}
