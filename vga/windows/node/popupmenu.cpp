#include "popupmenu.h"
#include "graphics.h"
#include "nodeselection.h"
#include "panes.h"
#include "toolkit.h"
#include "widgets.h"
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <algorithm>

namespace {

Widget popup_of(const VGA_NODEW_DESC *desc) {
    return XtParent(desc->tools[VGA_NODEW_START].popup);
}

NB_USHORT pane_of(const VGA_NODEW_DESC *desc, Widget list) {
    NB_USHORT pane = 0;
    while (pane < VGA_NODEW_PANE_COUNT && desc->panes[pane].draw_area != list) {
        pane++;
    }
    return pane;
}

/* What the menu is for from now on. */
NB_VOID aim(VGA_NODEW_DESC *desc, const VGA_VIEWER_ITEM *line) {
    const VGA_VIEWER_DESC *type = line != nullptr ? vga_viewer_type(line->type) : nullptr;
    if (type != nullptr && type->arm_cb != nullptr && line->selected == 0) {
        XmDrawnButtonCallbackStruct no_keys = {};
        type->arm_cb(line->data, &no_keys);
    }
    vga_nodew_set_button_states(desc);
}

/* The list of the widget, whose pane is current now; null while nothing is shown or the first
 * button holds a line. */
VGA_VIEWER_VIEW *list_to_aim_at(VGA_NODEW_DESC *desc, Widget widget) {
    const NB_USHORT pane = pane_of(desc, widget);
    VGA_VIEWER_ROOT *root = vga_nodew_pane_root(desc, pane);
    if (root == nullptr || root->view == nullptr || root->view->dragging != 0) {
        return nullptr;
    }
    vga_nodew_select_pane(desc, pane, 1);
    return root->view;
}

/* Comes before the handler that posts the menu. */
NB_VOID pressed(Widget widget, XtPointer client_data, XEvent *event, Boolean *) {
    auto *desc = static_cast<VGA_NODEW_DESC *>(client_data);
    if (vga_is_popup_press(event) == 0) {
        return;
    }
    if (const VGA_VIEWER_VIEW *list = list_to_aim_at(desc, widget)) {
        aim(desc,
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
    auto *desc = static_cast<VGA_NODEW_DESC *>(client_data);
    VGA_VIEWER_VIEW *list =
        event->type == KeyPress && asks_for_menu(event) ? list_to_aim_at(desc, widget) : nullptr;
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
    aim(desc, line);
    y = std::clamp<NB_LONG>(y, 0, static_cast<NB_LONG>(list->window_height));
    vga_post_popup_menu(widget, popup_of(desc), static_cast<NB_INT>(gvga_viewer_indent_width),
                        static_cast<NB_INT>(y));
}

} // namespace

/* The toolkit takes button 3, and with it the counting of clicks, from all that is inside a popup
 * menu's parent, to post the menu itself.  So the parent is something that has no use for clicks.
 */
NB_USHORT vga_nodew_fetch_popup(VGA_NODEW_DESC *desc) {
    NB_CHAR name[] = "nodewPopup";
    Widget menu = nullptr;
    MrmType type;
    return MrmFetchWidget(gvga_uil_hierarchy, name, desc->panes[VGA_NODEW_TOP_PANE].title, &menu,
                          &type) == MrmSUCCESS;
}

NB_VOID vga_nodew_install_popup(VGA_NODEW_DESC *desc) {
    for (const VGA_NODEW_PANE &pane : desc->panes) {
        vga_install_popup_menu(pane.draw_area, popup_of(desc));
        XtInsertEventHandler(pane.draw_area, ButtonPressMask, False, pressed, desc, XtListHead);
        XtAddEventHandler(pane.draw_area, KeyPressMask, False, key_pressed, desc);
    }
}
