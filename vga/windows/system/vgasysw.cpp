#include "vgasysw.h"
#include "backupservers.h"
#include "dialogids.h"
#include "globals.h"
#include "messages.h"
#include "openwindows.h"
#include "panes.h"
#include "recordtypes.h"
#include "settingsdialogs.h"
#include "vganodew.h"
#include "widgets.h"
#include <Xm/Xm.h>
#include <iterator>

static VGA_SYSW_DESC *open_window(VGA_DIALOG *dialog) {
    VGA_LIST_WINDOW *window = vga_listw_of(dialog);
    return window != nullptr && dialog->dialog_id == VGA_UID_SYSTEM_WINDOW
               ? static_cast<VGA_SYSW_DESC *>(window)
               : nullptr;
}

static VGA_NODE *selected_node(NB_VOID) {
    return static_cast<VGA_NODE *>(
        vga_viewer_get_selection(&gvga_system->node_viewer_root, nullptr));
}

/* Rules. */

/* Why a node in a state cannot be started, stopped or traced; 0: it can be. */
struct NODE_REFUSALS {
    NB_ULONG state; /* equals the index */
    NB_USHORT start, stop, trace;
};
static constexpr NODE_REFUSALS by_state[] = {
    {NAP_NODE_STOPPED, 0, VGA_MSG_NODEW_NOT_ACTIVE, 0},
    {NAP_NODE_STARTING, VGA_MSG_NODEW_ACTIVE_ALREADY, 0, 0},
    {NAP_NODE_STOPPING, 0, VGA_MSG_NODEW_NOT_ACTIVE, 0},
    {NAP_NODE_ACTIVE, VGA_MSG_NODEW_ACTIVE_ALREADY, 0, 0},
    {NAP_NODE_UNCONFIGURED, VGA_MSG_DEFINE_NODE_FIRST, VGA_MSG_DEFINE_NODE_FIRST,
     VGA_MSG_DEFINE_NODE_FIRST},
    {NAP_NODE_BACK_LEVEL, VGA_MSG_BACK_LEVEL, VGA_MSG_BACK_LEVEL, VGA_MSG_BACK_LEVEL},
};

/* Keys can select several. */
static const VGA_NODE *node_of(const VGA_SITUATION &situation) {
    return situation.count == 1 ? static_cast<const VGA_NODE *>(situation.record) : nullptr;
}

static NB_USHORT refuses_count(const VGA_SITUATION &situation) {
    return situation.count == 1  ? NB_USHORT{0}
           : situation.count > 1 ? NB_USHORT{VGA_MSG_NODEW_ONE_ONLY}
                                 : NB_USHORT{VGA_MSG_SYSW_SELECT_FIRST};
}

template <auto Refusal> static NB_USHORT refuses_state(const VGA_SITUATION &situation) {
    const VGA_NODE *node = node_of(situation);
    return node == nullptr                          ? refuses_count(situation)
           : node->node_state < std::size(by_state) ? by_state[node->node_state].*Refusal
                                                    : NB_USHORT{VGA_MSG_NODEW_WRONG_STATE};
}

NB_USHORT vga_sysw_refuses_start(const VGA_SITUATION &situation) {
    return refuses_state<&NODE_REFUSALS::start>(situation);
}

NB_USHORT vga_sysw_refuses_stop(const VGA_SITUATION &situation) {
    return refuses_state<&NODE_REFUSALS::stop>(situation);
}

NB_USHORT vga_sysw_refuses_tracing(const VGA_SITUATION &situation) {
    return refuses_state<&NODE_REFUSALS::trace>(situation);
}

NB_USHORT vga_sysw_refuses_node(const VGA_SITUATION &situation) {
    return refuses_count(situation);
}

NB_USHORT vga_sysw_refuses_add_backup(const VGA_SITUATION &situation) {
    const VGA_NODE *node = node_of(situation);
    return node == nullptr                           ? refuses_count(situation)
           : node->node_state == NAP_NODE_BACK_LEVEL ? NB_USHORT{VGA_MSG_BACK_LEVEL}
           : node->role != VGA_ROLE_NONE             ? NB_USHORT{VGA_MSG_SERVER_ALREADY}
           : gvga_system->domain_target == 0         ? NB_USHORT{VGA_MSG_DOMAIN_LOST}
                                                     : NB_USHORT{0};
}

NB_USHORT vga_sysw_refuses_del_backup(const VGA_SITUATION &situation) {
    const VGA_NODE *node = node_of(situation);
    return node == nullptr                   ? refuses_count(situation)
           : node->role == VGA_ROLE_NONE     ? NB_USHORT{VGA_MSG_NO_SERVER}
           : gvga_system->domain_target == 0 ? NB_USHORT{VGA_MSG_DOMAIN_LOST}
                                             : NB_USHORT{0};
}

NB_VOID vga_sysw_set_button_states(NB_VOID *window) {
    if (window == nullptr) {
        return;
    }
    auto *desc = static_cast<VGA_SYSW_DESC *>(window);
    const VGA_DIALOG *dialog = gvga_system->window;
    NB_ASSERT(desc == (VGA_SYSW_DESC *)dialog);
    if (&desc->common == dialog) {
        vga_listw_set_button_states(desc);
    }
}

/* Actions. */

NB_VOID vga_sysw_open_node(VGA_LIST_WINDOW *window) {
    if (window->zoom != 0) {
        vga_display_node_window(selected_node(), 1);
    }
}

NB_VOID vga_sysw_open_params(VGA_LIST_WINDOW *window) {
    vga_display_node_dialog(&window->common, selected_node());
}

NB_VOID vga_sysw_open_tracing(VGA_LIST_WINDOW *window) {
    VGA_NODE *node = selected_node();
    NB_ASSERT((node->node_state != VGA_NODE_STATE_UNCONFIGURED) &&
              (node->node_state != VGA_NODE_STATE_BACK_LEVEL));
    if (by_state[node->node_state].trace == 0) {
        vga_display_tracing_dialog(&window->common, node);
    }
}

NB_VOID vga_sysw_logging(VGA_LIST_WINDOW *window) {
    vga_display_logging_dialog(&window->common, selected_node());
}

NB_VOID vga_sysw_make_backup(VGA_LIST_WINDOW *) {
    vga_add_backup(selected_node());
}

NB_VOID vga_sysw_end_backup(VGA_LIST_WINDOW *window) {
    vga_delete_backup(&window->common, selected_node());
}

NB_VOID vga_sysw_raise(VGA_LIST_WINDOW *) {
    if (gvga_system->window != nullptr) {
        vga_raise_with_keyboard(gvga_system->window);
    }
}

/* Lines. */

NB_VOID vga_sysw_disarm(Widget widget, XtPointer, XtPointer) {
    vga_sysw_set_button_states(open_window(vga_get_dialog_from_widget(widget)));
}

NB_VOID vga_sysw_node_arm_cb(NB_VOID *data, XmDrawnButtonCallbackStruct *) {
    VGA_VIEWER_ROOT *root = &gvga_system->node_viewer_root;
    vga_viewer_clear_selection(root);
    vga_clear_outline_selection(root);
    vga_viewer_select(&static_cast<VGA_NODE *>(data)->gui_data.viewer, root, 0, 0, 1, 1);
}

NB_VOID vga_sysw_node_act_cb(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs) {
    if (vga_viewer_is_open(cbs)) {
        vga_display_node_window(static_cast<VGA_NODE *>(data), 1);
    }
}

NB_VOID vga_sysw_node_drag_cb(NB_VOID *data, NB_USHORT select, NB_USHORT redraw) {
    VGA_VIEWER_ROOT *root = &gvga_system->node_viewer_root;
    VGA_VIEWER_ITEM *item = &static_cast<VGA_NODE *>(data)->gui_data.viewer;
    if (select == 0) {
        vga_viewer_deselect_all(root, redraw);
        root->select_anchor = root->last_dragged = item;
        vga_viewer_mark_selected(root, item, 1, redraw);
        return;
    }
    if (root->last_dragged == item) {
        vga_clear_outline_selection(root);
    }
    root->select_anchor = nullptr; /* which ends the drag */
    vga_viewer_mark_selected(root, item, 0, redraw);
}

/* Life. */

NB_USHORT vga_get_widgets_system_window(VGA_DIALOG *dialog) {
    Widget menu = XtNameToWidget(dialog->widget, "*syswWindowsMenu");
    if (menu == nullptr || vga_listw_get_widgets(dialog, gvga_sysw_plan) == 0) {
        return 0;
    }
    vga_set_node_window_menu(menu);
    return 1;
}

/* The domain's only: the one that was fetched for it, or a new one. */
static VGA_SYSW_DESC *get_window(NB_VOID) {
    for (VGA_DIALOG *dialog : {gvga_system->window, gvga_first_dialog}) {
        if (VGA_SYSW_DESC *desc = open_window(dialog)) {
            return desc;
        }
    }
    VGA_DIALOG *dialog = nullptr;
    vga_get_dialog(VGA_UID_SYSTEM_WINDOW, nullptr, gvga_system, &dialog);
    return open_window(dialog);
}

NB_USHORT vga_display_system_window(NB_USHORT flag) {
    VGA_SYSW_DESC *desc = get_window();
    if (desc == nullptr) {
        return 0;
    }
    if (flag == 0) {
        vga_set_title(&desc->common, vga_message(VGA_MSG_NODEW_EMPTY_TITLE));
        vga_listw_set_button_states(desc);
        return 1;
    }
    gvga_system->window = &desc->common;
    vga_set_title(&desc->common, vga_message(VGA_MSG_SYSW_TITLE));
    vga_listw_show_lists(desc);
    vga_listw_select_pane(desc, 0, 1);
    vga_display_dialog(&desc->common);
    if (gvga_system->domain_target != 0) { /* otherwise the line says that it is not there */
        vga_message_system_window(&desc->common, VGA_MSG_SYSW_READY);
    }
    return 1;
}

NB_VOID vga_sysw_close_proc(VGA_DIALOG *dialog) {
    vga_set_node_window_menu(nullptr);
    vga_listw_close_proc(dialog);
    gvga_system->window = nullptr;
}

NB_VOID vga_sysw_record_changed(VGA_DIALOG *dialog, NB_VOID *item, VGA_RECORD_CHANGE what) {
    vga_listw_record_changed(dialog, item, what);
}

NB_VOID vga_message_system_window(VGA_DIALOG *dialog, NB_USHORT message) {
    if (VGA_SYSW_DESC *desc = open_window(dialog)) {
        vga_listw_message(desc, message);
    }
}

NB_VOID vga_sysw_set_insensitive(VGA_DIALOG *dialog, NB_USHORT message) {
    VGA_SYSW_DESC *desc = open_window(dialog);
    if (desc != nullptr) {
        vga_close_children(dialog, 0, 1);
        vga_message_system_window(dialog, message);
        XtVaSetValues(desc->message_bar, XmNeditable, False, nullptr);
        vga_set_sensitive(dialog->widget, 0);
    }
}

NB_VOID vga_update_node_viewer(VGA_NODE *node) {
    vga_update_line(node);
    VGA_SYSW_DESC *desc = open_window(gvga_system->window);
    if (desc != nullptr && node == selected_node()) {
        vga_sysw_set_button_states(desc);
    }
    vga_update_node_window(node);
}
