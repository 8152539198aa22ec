#include "vganodew.h"
#include "dialogids.h"
#include "globals.h"
#include "graphics.h"
#include "hints.h"
#include "holders.h"
#include "linecolumns.h"
#include "messageline.h"
#include "nodeconnection.h"
#include "nodewindowlines.h"
#include "openwindows.h"
#include "panes.h"
#include "rememberedlines.h"
#include "settingsdialogs.h"
#include "vgadsbld.h"
#include "widgets.h"
#include "windowband.h"
#include <algorithm>
#include <cstring>

constexpr const NB_CHAR *sign_names[] = {"*nodewKeyActive", "*nodewKeyChanging",
                                         "*nodewKeyInactive", "*nodewKeyFailed"};
static_assert(std::size(sign_names) == std::size(VGA_NODEW_DESC().signs));

static VGA_NODEW_DESC *node_window(VGA_LIST_WINDOW *window) {
    return window != nullptr && window->common.dialog_id == VGA_UID_NODE_WINDOW
               ? static_cast<VGA_NODEW_DESC *>(window)
               : nullptr;
}

static VGA_NODEW_DESC *open_window(VGA_DIALOG *dialog) {
    return node_window(vga_listw_of(dialog));
}

/* Texts. */

static NB_VOID set_label(Widget label, const NB_CHAR *text) {
    VGA_STRING string(text);
    XtVaSetValues(label, XmNlabelString, string.get(), nullptr);
}

/* The key to the marks of states stands at the right end of the node's line, as long as the whole
 * of that has room beside it. */
static NB_VOID arrange_line(const VGA_NODEW_DESC *desc) {
    Dimension room = 0;
    XtVaGetValues(XtParent(desc->server_text), XmNwidth, &room, nullptr);
    NB_INT left = room - 2 * vga_wanted_size(desc->server_icon).width -
                  vga_wanted_size(desc->server_text).width;
    for (Widget sign : desc->signs) {
        NB_INT offset = 0;
        XtVaGetValues(sign, XmNrightOffset, &offset, nullptr);
        left -= vga_wanted_size(sign).width + offset;
    }
    // The form looks in vain for the place of a part that hangs on one that is not there.
    const auto signs = const_cast<WidgetList>(desc->signs);
    if (left >= 0 && !XtIsManaged(signs[0])) {
        XtManageChildren(signs, std::size(desc->signs));
        XtVaSetValues(desc->server_text, XmNrightAttachment, XmATTACH_WIDGET, XmNrightWidget,
                      signs[0], nullptr);
    } else if (left < 0 && XtIsManaged(signs[0])) {
        XtVaSetValues(desc->server_text, XmNrightAttachment, XmATTACH_FORM, nullptr);
        XtUnmanageChildren(signs, std::size(desc->signs));
    }
}

static NB_VOID line_resized(Widget, XtPointer client_data, XEvent *event, Boolean *) {
    if (event->type == ConfigureNotify) {
        arrange_line(static_cast<const VGA_NODEW_DESC *>(client_data));
    }
}

static NB_VOID set_line(const VGA_NODEW_DESC *desc, const NB_CHAR *text) {
    set_label(desc->server_text, text);
    arrange_line(desc);
}

NB_VOID vga_message_node_window_text(VGA_DIALOG *dialog, const NB_CHAR *text) {
    if (VGA_NODEW_DESC *desc = open_window(dialog)) {
        vga_listw_message_text(desc, text);
    }
}

NB_VOID vga_message_node_window(VGA_DIALOG *dialog, NB_USHORT message) {
    if (VGA_NODEW_DESC *desc = open_window(dialog)) {
        vga_listw_message(desc, message);
    }
}

/* A name in the locale's characters.  Returns its length. */
static size_t local_name(const NAP_NODE_INFO &info, NB_CHAR (&text)[18]) {
    NB_UCHAR name[sizeof(info.fq_cp_name)];
    memcpy(name, info.fq_cp_name, sizeof(name));
    nba_ebcdic_to_local(name, sizeof(name));
    const auto *end = std::find_if(std::begin(name), std::end(name),
                                   [](NB_UCHAR letter) { return letter == ' ' || letter == 0; });
    *std::copy(std::cbegin(name), end, text) = '\0';
    return static_cast<size_t>(end - name);
}

/* The control point as the node says, or as the domain did before the node could be asked; "-" for
 * none. */
static NB_VOID control_point(const VGA_NODE *node, NB_CHAR (&text)[18]) {
    if (local_name(node->node_data.info, text) == 0 && local_name(node->vcb->info, text) == 0) {
        strcpy(text, "-");
    }
}

static const NB_CHAR *state_word(const VGA_NODE &node) {
    const NB_ULONG state = std::min<NB_ULONG>(node.node_state, NAP_NODE_BACK_LEVEL);
    return vga_message(static_cast<NB_USHORT>(VGA_MSG_NODEW_STOPPED + state));
}

static NB_VOID show_node(VGA_NODEW_DESC *desc) {
    const VGA_NODE *node = vga_nodew_node(desc);
    if (node == nullptr) {
        vga_set_title(&desc->common, vga_message(VGA_MSG_NODEW_EMPTY_TITLE));
        set_line(desc, vga_message(VGA_MSG_NODEW_NO_NODE));
        return;
    }
    NB_CHAR name[sizeof(node->name) + 1] = {};
    memcpy(name, node->name, sizeof(node->name));
    NB_CHAR cp_name[18];
    control_point(node, cp_name);
    NB_CHAR text[1024];
    NB_CHAR connection[VGA_CELL_SIZE];
    vga_write_connection(*node, connection);
    vga_add_node_window_widget(&desc->common, name);
    vga_print_msg(text, sizeof(text), VGA_MSG_NODEW_TITLE, "s", name);
    vga_set_title(&desc->common, text);
    vga_print_msg(text, sizeof(text), VGA_MSG_NODEW_NODE_LINE, "s s s", name, cp_name,
                  connection[0] != '\0' ? connection : state_word(*node));
    set_line(desc, text);
    const NB_USHORT icon = node->connection == VGA_CONNECTED
                               ? vga_choose_node_viewer_icon(vga_nodew_node(desc))
                               : NB_USHORT{VGA_ICON_BACKNODE};
    vga_put_widget_pixmap(desc->server_icon, gvga_pixmaps[icon]);
}

/* Widgets. */

NB_USHORT vga_get_widgets_node_window(VGA_DIALOG *dialog) {
    auto *desc = reinterpret_cast<VGA_NODEW_DESC *>(dialog);
    desc->server_icon = XtNameToWidget(dialog->widget, "*nodewServerIconButton");
    desc->server_text = XtNameToWidget(dialog->widget, "*nodewServerTextButton");
    if (desc->server_icon == nullptr || desc->server_text == nullptr ||
        vga_listw_find_widgets(dialog, gvga_nodew_plan) == 0) {
        return 0;
    }
    for (size_t i = 0; i < std::size(sign_names); i++) {
        desc->signs[i] = XtNameToWidget(dialog->widget, sign_names[i]);
        if (desc->signs[i] == nullptr) {
            return 0;
        }
    }
    XtAddEventHandler(XtParent(desc->server_text), StructureNotifyMask, False, line_resized, desc);
    vga_put_widget_pixmap(desc->server_icon, gvga_pixmaps[VGA_ICON_NODE]);
    vga_listw_arrange(desc);
    return 1;
}

/* Callbacks. */

NB_VOID vga_nodew_set_button_states(NB_VOID *desc) {
    vga_listw_set_button_states(desc);
}

NB_VOID *vga_nodew_get_selection(const VGA_NODEW_DESC *desc, NB_SHORT *type, NB_LONG *count) {
    return vga_listw_get_selection(desc, type, count);
}

NB_VOID vga_nodew_disarm(Widget widget, XtPointer, XtPointer) {
    vga_nodew_set_button_states(vga_listw_from_widget(widget));
}

NB_VOID vga_nodew_select_top_pane(Widget widget, XtPointer, XtPointer call_data) {
    vga_listw_pane_called(widget, VGA_NODEW_TOP_PANE, call_data);
}

NB_VOID vga_nodew_select_middle_pane(Widget widget, XtPointer, XtPointer call_data) {
    vga_listw_pane_called(widget, VGA_NODEW_MIDDLE_PANE, call_data);
}

NB_VOID vga_nodew_select_bottom_pane(Widget widget, XtPointer, XtPointer call_data) {
    vga_listw_pane_called(widget, VGA_NODEW_BOTTOM_PANE, call_data);
}

/* The node's own icon or text is pressed or gets the keyboard: commands are for the node now. */
NB_VOID vga_nodew_server_arm_cb(Widget widget, XtPointer, XtPointer call_data) {
    const auto *cbs = static_cast<const XmAnyCallbackStruct *>(call_data);
    VGA_NODEW_DESC *desc = node_window(vga_listw_from_widget(widget));
    if (desc == nullptr || vga_nodew_node(desc) == nullptr) {
        return;
    }
    if (cbs == nullptr || cbs->reason != XmCR_FOCUS) {
        XmProcessTraversal(desc->server_text, XmTRAVERSE_CURRENT);
    }
    vga_listw_select_nothing(desc);
}

/* The toolkit tells of the first click of a double click, too. */
NB_VOID vga_nodew_server(Widget widget, XtPointer, XtPointer call_data) {
    const auto *cbs = static_cast<const XmPushButtonCallbackStruct *>(call_data);
    if (cbs != nullptr && cbs->event != nullptr && cbs->event->type == ButtonRelease &&
        cbs->click_count < 2) {
        return;
    }
    vga_listw_run_from(widget, VGA_NODEW_SERVER);
}

/* Actions. */

NB_VOID vga_nodew_open_node(VGA_LIST_WINDOW *window) {
    vga_display_node_dialog(&window->common, vga_listw_node(window));
}

NB_VOID vga_nodew_open_tracing(VGA_LIST_WINDOW *window) {
    vga_display_tracing_dialog(&window->common, vga_listw_node(window));
}

/* Life. */

static NB_VOID detach(VGA_NODEW_DESC *desc) {
    vga_remove_node_window_widget(&desc->common);
    vga_listw_close_proc(&desc->common);
    if (VGA_NODE *node = vga_nodew_node(desc)) {
        node->window = nullptr;
    }
    desc->common.parent_item = nullptr;
}

static NB_USHORT first_pane_with_lines(const VGA_NODEW_DESC *desc) {
    NB_USHORT pane = 0;
    while (pane < VGA_NODEW_PANE_COUNT && vga_listw_root(desc, pane)->top_items.count == 0) {
        pane++;
    }
    return pane;
}

/* The pane that was left with a selection when the window was closed; else the one that has the
 * keyboard already, else the first that shows something. */
static NB_USHORT pane_to_begin_with(const VGA_NODEW_DESC *desc) {
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        if (vga_listw_root(desc, pane)->select_count != 0) {
            return pane;
        }
    }
    const NB_USHORT pane = vga_listw_focus_pane(desc);
    return pane != VGA_NODEW_NO_PANE ? pane : first_pane_with_lines(desc);
}

/* The lists go with the connection and come back with it.  Their lines come one by one then, and
 * what was remembered of them is complete when the build is. */
static NB_VOID follow_connection(VGA_NODEW_DESC *desc, const VGA_NODE &node) {
    if (node.connection != VGA_CONNECTED) {
        if (desc->lists_shown != 0) {
            vga_listw_remember_lines(desc);
            vga_listw_hide_lists(desc);
        }
        vga_listw_message_busy(desc, "");
        return;
    }
    if (desc->lists_shown == 0) {
        desc->read_before = gvga_system->resources;
        desc->reading = 1;
        vga_listw_show_lists(desc);
    }
    if (desc->reading != 0 && vga_check_node_startup(&node, nullptr) != 0) {
        desc->reading = 0;
        vga_listw_message_busy(desc, "");
        vga_listw_recall_lines(desc);
        if (desc->current_pane == VGA_NODEW_NO_PANE) {
            vga_listw_select_pane(desc, pane_to_begin_with(desc), 1);
        }
        vga_message_node_window(&desc->common, VGA_MSG_NODEW_READY);
    }
}

/* Also for a window that was fetched before its node was known. */
static NB_VOID attach(VGA_NODEW_DESC *desc, VGA_NODE *node) {
    desc->common.parent_item = node;
    node->window = &desc->common;
    show_node(desc);
    vga_listw_show_band(desc);
    vga_listw_message_busy(desc, "");
    follow_connection(desc, *node);
    if (desc->lists_shown != 0) {
        vga_listw_select_pane(desc, pane_to_begin_with(desc), 1);
    }
    vga_nodew_set_button_states(desc);
    vga_message_node_window(&desc->common,
                            node->connection == VGA_CONNECTED ? VGA_MSG_NODEW_READY : 0);
}

/* The window that shows the node; else the program's first window, if that is still empty. */
static VGA_NODEW_DESC *window_for(const VGA_NODE *node) {
    if (VGA_NODEW_DESC *desc = open_window(node->window)) {
        return desc;
    }
    for (VGA_DIALOG *dialog : {gvga_first_dialog, gvga_main_dialog}) {
        VGA_NODEW_DESC *desc = open_window(dialog);
        if (desc != nullptr && vga_nodew_node(desc) == nullptr) {
            return desc;
        }
    }
    return nullptr;
}

NB_USHORT vga_display_node_window(VGA_NODE *node, NB_USHORT flag) {
    VGA_NODEW_DESC *desc = node != nullptr ? window_for(node) : nullptr;
    if (desc == nullptr) {
        VGA_DIALOG *parent = gvga_system != nullptr ? gvga_system->window : nullptr;
        VGA_DIALOG *dialog = nullptr;
        if (!vga_get_dialog(VGA_UID_NODE_WINDOW, parent, node, &dialog)) {
            return 0;
        }
        desc = reinterpret_cast<VGA_NODEW_DESC *>(dialog);
        vga_message_node_window(dialog, 0);
        if (gvga_main_dialog != nullptr) {
            XtRealizeWidget(dialog->shell); /* its labels grow with their texts only then */
        }
    }
    if (node != nullptr && node->window != &desc->common) {
        attach(desc, node);
    } else if (node == nullptr) {
        show_node(desc);
        vga_nodew_set_button_states(desc);
    }
    if (flag) {
        vga_display_dialog(&desc->common);
    }
    return 1;
}

NB_VOID vga_nodew_close_proc(VGA_DIALOG *dialog) {
    detach(reinterpret_cast<VGA_NODEW_DESC *>(dialog));
}

NB_VOID vga_update_node_window(VGA_NODE *node) {
    VGA_NODEW_DESC *desc = node != nullptr && !gvga_closing ? open_window(node->window) : nullptr;
    if (desc != nullptr) {
        show_node(desc);
        follow_connection(desc, *node);
        vga_nodew_set_button_states(desc);
    }
}

VGA_LIST_WINDOW *vga_nodew_reading(const VGA_NODE *node, NB_ULONG *before) {
    VGA_NODEW_DESC *desc = node != nullptr ? open_window(node->window) : nullptr;
    if (desc == nullptr || desc->reading == 0) {
        return nullptr;
    }
    *before = desc->read_before;
    return desc;
}

NB_VOID vga_nodew_show_closing(VGA_DIALOG *dialog) {
    if (VGA_NODEW_DESC *desc = open_window(dialog)) {
        set_line(desc, vga_message(VGA_MSG_NODEW_CLOSING));
        vga_put_widget_pixmap(desc->server_icon, gvga_pixmaps[VGA_ICON_BACKNODE]);
        vga_nodew_set_button_states(desc);
    }
}

/* A node has gone: so does its window, but for the program's first one, which must stay. */
static NB_VOID node_gone(VGA_NODEW_DESC *desc) {
    detach(desc);
    if (&desc->common != gvga_main_dialog) {
        vga_close_children(&desc->common, 1, 1);
        return;
    }
    vga_close_children(&desc->common, 0, 1);
    show_node(desc);
    vga_listw_show_band(desc);
    vga_nodew_set_button_states(desc);
    vga_listw_message_busy(desc, vga_message(VGA_MSG_NODEW_NODE_LOST));
}

NB_VOID vga_nodew_record_changed(VGA_DIALOG *dialog, NB_VOID *item, VGA_RECORD_CHANGE what) {
    VGA_NODEW_DESC *desc = open_window(dialog);
    if (desc == nullptr || item == nullptr) {
        return;
    }
    if (item == vga_nodew_node(desc)) {
        if (what == VGA_RECORD_GONE) {
            node_gone(desc);
        } else {
            vga_update_node_window(vga_nodew_node(desc));
        }
    } else {
        vga_listw_record_changed(dialog, item, what);
    }
}
