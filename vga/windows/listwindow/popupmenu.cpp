#include "popupmenu.h"
#include "graphics.h"
#include "panes.h"
#include "popups.h"
#include "toolkit.h"
#include "widgets.h"
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <algorithm>
#include <utility>

namespace {

Widget popup_of(const VGA_LIST_WINDOW *window) {
    const auto *entry = std::find_if(std::begin(window->popups), std::end(window->popups),
                                     [](Widget each) { return each != nullptr; });
    return XtParent(*entry);
}

NB_USHORT pane_of(const VGA_LIST_WINDOW *window, Widget list) {
    NB_USHORT pane = 0;
    while (pane < window->list_count && window->panes[pane].draw_area != list) {
        pane++;
    }
    return pane;
}

/* What cannot be chosen is left out, and gaps that nothing stands between. */
NB_VOID show_entries(const VGA_LIST_WINDOW *window) {
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(popup_of(window), XmNchildren, &children, XmNnumChildren, &count, nullptr);
    Widget gap = nullptr;
    bool any = false;
    for (Cardinal at = 0; at < count; at++) {
        Widget child = children[at];
        const auto *entry = std::find(std::begin(window->popups), std::end(window->popups), child);
        if (entry == std::end(window->popups)) {
            XtUnmanageChild(child);
            gap = any ? child : nullptr;
        } else if (window->allowed[entry - window->popups] == 0) {
            XtUnmanageChild(child);
        } else {
            if (gap != nullptr) {
                XtManageChild(std::exchange(gap, nullptr));
            }
            XtManageChild(child);
            any = true;
        }
    }
}

/* What the menu is for from now on. */
NB_VOID aim(VGA_LIST_WINDOW *window, const VGA_VIEWER_ITEM *line) {
    const VGA_VIEWER_DESC *type = line != nullptr ? vga_viewer_type(line->type) : nullptr;
    if (type != nullptr && type->arm_cb != nullptr && line->selected == 0) {
        XmDrawnButtonCallbackStruct no_keys = {};
        type->arm_cb(line->data, &no_keys);
    }
    vga_listw_set_button_states(window);
    show_entries(window);
}

/* The list of the widget, whose pane is current now; null while nothing is shown or the first
 * button holds a line. */
VGA_VIEWER_VIEW *list_to_aim_at(VGA_LIST_WINDOW *window, Widget widget) {
    const NB_USHORT pane = pane_of(window, widget);
    VGA_VIEWER_ROOT *root = vga_listw_root(window, pane);
    if (root == nullptr || root->view == nullptr || root->view->dragging != 0) {
        return nullptr;
    }
    vga_listw_select_pane(window, pane, 1);
    return root->view;
}

/* Comes before the handler that posts the menu. */
NB_VOID pressed(Widget widget, XtPointer client_data, XEvent *event, Boolean *) {
    auto *window = static_cast<VGA_LIST_WINDOW *>(client_data);
    if (vga_is_popup_press(event) == 0) {
        return;
    }
    if (const VGA_VIEWER_VIEW *list = list_to_aim_at(window, widget)) {
        aim(window,
            vga_find_viewer(list->root, static_cast<NB_LONG>(list->y_offset) + event->xbutton.y));
    }
}

bool asks_for_menu(XEvent *event) {
    NB_CHAR text[16];
    KeySym key = NoSymbol;
    XLookupString(&event->xkey, text, sizeof(text), &key, nullptr);
    return key == XK_Menu || (key == XK_F10 && (event->xkey.state & ShiftMask) != 0);
}

NB_VOID key_pressed(Widget widget, XtPointer client_data, XEvent *event, Boolean *) {
    auto *window = static_cast<VGA_LIST_WINDOW *>(client_data);
    VGA_VIEWER_VIEW *list =
        event->type == KeyPress && asks_for_menu(event) ? list_to_aim_at(window, widget) : nullptr;
    if (list == nullptr) {
        return;
    }
    const VGA_VIEWER_ITEM *line = list->root->outline_viewer;
    if (line == nullptr) {
        line = vga_viewer_get_selected_viewer(list->root);
    }
    NB_LONG y = 0;
    if (line != nullptr) {
        vga_viewer_set_view(list->root, line);
        y = vga_viewer_get_screen_pos(line) - static_cast<NB_LONG>(list->y_offset) +
            static_cast<NB_LONG>(gvga_viewer_item_height);
    }
    aim(window, line);
    y = std::clamp<NB_LONG>(y, 0, static_cast<NB_LONG>(list->window_height));
    vga_post_popup_menu(widget, popup_of(window), static_cast<NB_INT>(gvga_viewer_indent_width),
                        static_cast<NB_INT>(y));
}

} // namespace

/* The toolkit takes button 3, and with it the counting of clicks, from all that is inside a popup
 * menu's parent, to post the menu itself.  So the parent is something that has no use for clicks.
 */
NB_USHORT vga_listw_fetch_popup(VGA_LIST_WINDOW *window) {
    if (window->plan->popup == nullptr) {
        return 1;
    }
    Widget menu = nullptr;
    MrmType type;
    return MrmFetchWidget(gvga_uil_hierarchy, const_cast<NB_CHAR *>(window->plan->popup),
                          window->panes[0].title, &menu, &type) == MrmSUCCESS;
}

NB_VOID vga_listw_install_popup(VGA_LIST_WINDOW *window) {
    for (NB_USHORT at = 0; window->plan->popup != nullptr && at < window->list_count; at++) {
        Widget list = window->panes[at].draw_area;
        vga_install_popup_menu(list, popup_of(window));
        XtInsertEventHandler(list, ButtonPressMask, False, pressed, window, XtListHead);
        XtAddEventHandler(list, KeyPressMask, False, key_pressed, window);
    }
}
