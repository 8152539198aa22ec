#include "listwindow.h"
#include "findbar.h"
#include "findtitles.h"
#include "graphics.h"
#include "headings.h"
#include "hints.h"
#include "longwork.h"
#include "messageline.h"
#include "panes.h"
#include "popupmenu.h"
#include "rememberedlines.h"
#include "search.h"
#include "tools.h"
#include "windowband.h"
#include "windowroom.h"

/* Which window. */

VGA_LIST_WINDOW *vga_listw_of(VGA_DIALOG *dialog) {
    return dialog != nullptr && dialog->in_use != 0 &&
                   vga_row_of(dialog).command_proc == vga_listw_command_proc
               ? reinterpret_cast<VGA_LIST_WINDOW *>(dialog)
               : nullptr;
}

VGA_LIST_WINDOW *vga_listw_from_widget(Widget widget) {
    return widget != nullptr ? vga_listw_of(vga_get_dialog_from_widget(widget)) : nullptr;
}

VGA_NODE *vga_listw_node(const VGA_LIST_WINDOW *window) {
    return window->plan->lists[0].of_node != nullptr
               ? static_cast<VGA_NODE *>(window->common.parent_item)
               : nullptr;
}

/* Widgets. */

static Widget part(const VGA_LIST_WINDOW *window, const NB_CHAR *name) {
    const std::string full = std::string("*") + window->plan->prefix + name;
    return XtNameToWidget(window->common.widget, full.c_str());
}

static NB_USHORT find_panes(VGA_LIST_WINDOW *window) {
    NB_USHORT complete = 1;
    auto find = [&](const NB_CHAR *name) {
        Widget widget = name != nullptr ? XtNameToWidget(window->common.widget, name) : nullptr;
        complete = complete && (widget != nullptr || name == nullptr);
        return widget;
    };
    for (size_t at = 0; at < window->plan->lists.size(); at++) {
        const VGA_LISTW_ROW &row = window->plan->lists[at];
        VGA_LISTW_PANE &pane = window->panes[at];
        pane.form = find(row.form);
        pane.title = find(row.title);
        pane.rule = find(row.rule);
        pane.key = find(row.key);
        pane.counts = find(row.counts);
        pane.filter_off = pane.bar = nullptr;
        pane.filtered = 0;
        pane.draw_area = find(row.draw_area);
        pane.hscroll = find(row.hscroll);
        pane.vscroll = find(row.vscroll);
        pane.headings = find(row.headings);
    }
    window->panes_widget = part(window, "Panes");
    window->message_bar = part(window, "MessageBar");
    window->band = part(window, "Band");
    return complete != 0 && window->panes_widget != nullptr && window->message_bar != nullptr &&
           window->band != nullptr;
}

NB_USHORT vga_listw_find_widgets(VGA_DIALOG *dialog, const VGA_LISTW_PLAN &plan) {
    auto *window = reinterpret_cast<VGA_LIST_WINDOW *>(dialog);
    window->plan = &plan;
    window->list_count = static_cast<NB_USHORT>(plan.lists.size());
    if (find_panes(window) == 0 || vga_listw_fetch_popup(window) == 0 ||
        vga_listw_find_tools(window) == 0) {
        return 0;
    }
    const VGA_LISTW_PANE &top = window->panes[0];
    if (gvga_viewer_item_height == 0 && !vga_init_graphics(top.draw_area, top.draw_area)) {
        return 0;
    }
    window->current_pane = VGA_LISTW_NO_LIST;
    vga_listw_forget_lines(window); /* of one that lay in the same memory */
    XtVaGetValues(top.form, XmNborderColor, &window->normal_border, nullptr);
    XtVaGetValues(top.draw_area, XmNhighlightColor, &window->current_border, nullptr);
    vga_listw_put_pixmaps(window);
    return 1;
}

NB_VOID vga_listw_arrange(VGA_LIST_WINDOW *window) {
    vga_listw_prepare_room(window);
    vga_listw_prepare_panes(window);
    vga_listw_install_popup(window);
    vga_listw_prepare_finding(window);
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        XtAddCallback(window->panes[pane].draw_area, XmNhelpCallback, vga_listw_help_cb, nullptr);
    }
    vga_set_hint_line(window->common.widget, window->message_bar);
    vga_listw_watch_line(window);
}

NB_USHORT vga_listw_get_widgets(VGA_DIALOG *dialog, const VGA_LISTW_PLAN &plan) {
    if (vga_listw_find_widgets(dialog, plan) == 0) {
        return 0;
    }
    vga_listw_arrange(reinterpret_cast<VGA_LIST_WINDOW *>(dialog));
    return 1;
}

/* Life. */

static NB_VOID set_window_of_lists(VGA_LIST_WINDOW *window, VGA_LIST_WINDOW *shown_by) {
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        if (VGA_VIEWER_ROOT *root = vga_listw_list(window, pane)) {
            root->window = shown_by;
        }
    }
}

NB_VOID vga_listw_show_lists(VGA_LIST_WINDOW *window) {
    window->lists_shown = 1;
    set_window_of_lists(window, window);
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        const VGA_LISTW_PANE &place = window->panes[pane];
        if (VGA_VIEWER_ROOT *root = vga_listw_root(window, pane)) {
            vga_viewer_display_root(root, place.draw_area, place.hscroll, place.vscroll);
            vga_viewer_has_finder(root);
            if (place.headings != nullptr) {
                vga_viewer_show_headings(root, place.headings,
                                         window->plan->lists[pane].headings_of);
            }
        }
    }
    vga_listw_show_band(window);
    vga_listw_show_counts(window);
    vga_listw_message_busy(window, "");
    vga_listw_set_button_states(window);
}

NB_VOID vga_listw_hide_lists(VGA_LIST_WINDOW *window) {
    vga_listw_close_bar(window, 0);
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        if (VGA_VIEWER_ROOT *root = vga_listw_root(window, pane)) {
            vga_viewer_undisplay(root);
        }
    }
    vga_listw_forget_pane(window);
    window->lists_shown = 0;
    vga_listw_show_counts(window);
}

NB_VOID vga_listw_close_proc(VGA_DIALOG *dialog) {
    auto *window = reinterpret_cast<VGA_LIST_WINDOW *>(dialog);
    vga_listw_forget_button(window);
    vga_listw_forget_lines(window);
    vga_listw_end_filters(window);
    vga_listw_hide_lists(window);
    vga_listw_leave_work(window);
    vga_listw_forget_line(window);
    set_window_of_lists(window, nullptr);
}

/* Lines may show something of what they belong to. */
static NB_VOID draw_lines(const VGA_LIST_WINDOW *window) {
    for (NB_USHORT pane = 0; pane < window->list_count; pane++) {
        VGA_VIEWER_ROOT *root = vga_listw_root(window, pane);
        if (root != nullptr && root->view != nullptr) {
            vga_viewer_mark(root, 0, VGA_VIEWER_TO_END);
            root->watcher->to_draw(root->view);
        }
    }
}

NB_VOID vga_listw_record_changed(VGA_DIALOG *dialog, NB_VOID *item, VGA_RECORD_CHANGE what) {
    VGA_LIST_WINDOW *window = vga_listw_of(dialog);
    if (window == nullptr || item == nullptr) {
        return;
    }
    if (item == dialog->parent_item) {
        if (what == VGA_RECORD_GONE) {
            vga_close_children(dialog, 1, 1);
            return;
        }
        draw_lines(window);
        vga_listw_message(window, 0);
        vga_listw_set_button_states(window);
    } else if (what == VGA_RECORD_CHANGED &&
               item == vga_listw_get_selection(window, nullptr, nullptr)) {
        vga_listw_set_button_states(window);
    }
}
