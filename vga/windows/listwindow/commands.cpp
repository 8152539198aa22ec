#include "dialogids.h"
#include "fieldwidgets.h"
#include "form.h"
#include "globals.h"
#include "graphics.h"
#include "helpwindows.h"
#include "hints.h"
#include "history.h"
#include "linerules.h"
#include "listwindow.h"
#include "messages.h"
#include "panes.h"
#include "startstop.h"
#include "textselection.h"
#include "widgets.h"
#include "windowroom.h"
#include <cstring>

/* The situation. */

/* Of many lines the first ones stand for all: a selection changes with every key. */
static constexpr NB_LONG lines_asked = 1000;

/* Nothing stands in the way as long as one can be operated, or may be among those not asked. */
static NB_USHORT refuses_all(const std::vector<VGA_RESOURCE> &resources, VGA_OPERATION operation) {
    NB_USHORT first = 0;
    for (const VGA_RESOURCE &resource : resources) {
        const NB_USHORT reason = vga_refuses_operation(resource, operation);
        if (reason == 0) {
            return 0;
        }
        first = first != 0 ? first : reason;
    }
    const bool asked_all = resources.size() <= static_cast<size_t>(lines_asked);
    return asked_all || first == VGA_MSG_NODEW_NOT_STARTABLE ? first : NB_USHORT{0};
}

static NB_USHORT refuses_stop(const std::vector<VGA_RESOURCE> &resources) {
    const NB_USHORT reason = refuses_all(resources, VGA_STOP_ORDERLY);
    return reason == 0 || refuses_all(resources, VGA_STOP_IMMEDIATE) == 0 ? NB_USHORT{0} : reason;
}

VGA_SITUATION vga_listw_situation(const VGA_LIST_WINDOW *window) {
    VGA_SITUATION situation;
    situation.of_domain = window->plan->lists[0].of_domain != nullptr;
    situation.node = vga_listw_node(window);
    situation.read_only = gvga_read_only;
    situation.list_current = window->current_pane != VGA_LISTW_NO_LIST;
    situation.record = vga_listw_get_selection(window, &situation.type, &situation.count);
    std::vector<VGA_RESOURCE> resources;
    if (situation.count != 0) {
        resources = vga_selected_resources(vga_listw_current_root(window), lines_asked + 1);
    } else if (situation.node != nullptr) {
        resources.push_back({VGA_OPERABLE_NODE, vga_listw_node(window)});
    }
    situation.start_refusal = situation.stop_refusal = VGA_MSG_NODEW_SELECT_FIRST;
    if (!resources.empty()) {
        situation.start_refusal = refuses_all(resources, VGA_START);
        situation.stop_refusal = refuses_stop(resources);
    }
    return situation;
}

/* Carrying out. */

/* Keys and late clicks come in spite of insensitive buttons, so the states are looked at again. */
NB_VOID vga_listw_run(VGA_LIST_WINDOW *window, NB_USHORT command) {
    if (command >= window->plan->commands.size()) {
        return;
    }
    const VGA_COMMAND_ROW &row = window->plan->commands[command];
    const NB_USHORT reason = vga_refusal(vga_listw_situation(window), row);
    if (reason != 0) {
        vga_listw_message(window, reason);
    } else if (gvga_read_only && row.told != 0) {
        vga_display_error_dialog(&window->common, VGA_MSG_UNAVAILABLE, "readonly", nullptr, 0, "s",
                                 "sna");
    } else if (row.action != nullptr) {
        row.action(window);
    } else {
        vga_listw_open(window, row.opens);
    }
}

NB_VOID vga_listw_run_from(Widget widget, NB_USHORT command) {
    if (VGA_LIST_WINDOW *window = vga_listw_from_widget(widget)) {
        vga_listw_run(window, command);
    }
}

NB_VOID vga_listw_command_proc(VGA_DIALOG *dialog, NB_USHORT command) {
    vga_listw_run(reinterpret_cast<VGA_LIST_WINDOW *>(dialog), command);
}

template <auto Key> static NB_VOID run_key(Widget widget) {
    VGA_LIST_WINDOW *window = vga_listw_from_widget(widget);
    if (window != nullptr && window->plan->*Key != VGA_LISTW_NO_COMMAND) {
        vga_listw_run(window, window->plan->*Key);
    }
}

NB_VOID vga_listw_delete_key(Widget widget, XtPointer, XtPointer) {
    run_key<&VGA_LISTW_PLAN::remove>(widget);
}
NB_VOID vga_listw_zoom_key(Widget widget, XtPointer, XtPointer) {
    run_key<&VGA_LISTW_PLAN::zoom>(widget);
}
NB_VOID vga_listw_add_key(Widget widget, XtPointer, XtPointer) {
    run_key<&VGA_LISTW_PLAN::add>(widget);
}

/* Actions. */

/* A window of a node is called by its name, too; the descriptor may have been another's. */
static NB_VOID set_title(VGA_DIALOG *opened, const VGA_NODE *node) {
    const VGA_LISTW_PLAN &plan = *reinterpret_cast<VGA_LIST_WINDOW *>(opened)->plan;
    if (node != nullptr && plan.lists[0].of_node != nullptr) {
        NB_CHAR title[256];
        vga_print_msg(title, sizeof(title), VGA_MSG_RECORDS_ON, "s cs",
                      vga_form_literal(plan.prefix + std::string("Title")).c_str(),
                      static_cast<NB_INT>(sizeof(node->name)), node->name);
        vga_set_title(opened, title);
    }
}

NB_VOID vga_listw_open(VGA_LIST_WINDOW *window, NB_USHORT dialog_id) {
    VGA_NODE *node = vga_listw_node(window);
    const VGA_UID_DESC *row = vga_find_row(dialog_id);
    const VGA_LISTW_PLAN *plan = row != nullptr ? vga_find_plan(row->name) : nullptr;
    const bool of_domain =
        node == nullptr || (plan != nullptr && plan->lists[0].of_node == nullptr);
    NB_VOID *shown = of_domain ? gvga_system : static_cast<NB_VOID *>(node);
    if (plan == nullptr) {
        vga_form_open(dialog_id, &window->common, nullptr, shown, VGA_FORM_REPEAT);
        return;
    }
    for (VGA_DIALOG *open = row->first_desc; open != nullptr; open = open->next_desc) {
        if (open->in_use != 0 && open->parent_item == shown) {
            vga_raise_with_keyboard(open);
            return;
        }
    }
    VGA_DIALOG *opened = nullptr;
    VGA_DIALOG *over = of_domain ? gvga_main_dialog : &window->common;
    if (vga_get_dialog(dialog_id, over, shown, &opened) != 0) {
        set_title(opened, node);
        vga_listw_show_lists(reinterpret_cast<VGA_LIST_WINDOW *>(opened));
        if (row->kind != VGA_KIND_MAIN) {
            vga_listw_fit_dialog(reinterpret_cast<VGA_LIST_WINDOW *>(opened));
        }
        vga_display_dialog(opened);
        vga_listw_select_pane(reinterpret_cast<VGA_LIST_WINDOW *>(opened), 0, 1);
    }
}

NB_VOID vga_listw_add(VGA_LIST_WINDOW *window) {
    const NB_USHORT form = window->plan->lists[window->current_pane].add;
    if (vga_is_written(form) != 0) {
        vga_listw_open(window, form);
    } else {
        vga_listw_message(window, VGA_MSG_NODEW_LATER);
    }
}

static NB_VOID open_dialog(VGA_LIST_WINDOW *window, NB_USHORT dialog_id, NB_VOID *record) {
    if (record != nullptr && vga_is_written(dialog_id) != 0) {
        vga_form_open(dialog_id, &window->common, record, nullptr, VGA_FORM_CHANGE);
    }
}

NB_VOID vga_listw_zoom(VGA_LIST_WINDOW *window) {
    NB_SHORT type;
    NB_VOID *record = vga_listw_get_selection(window, &type, nullptr);
    if (const VGA_LINE_RULE *rule = vga_line_rule(type)) {
        open_dialog(window, vga_properties_of(*rule, record), record);
    }
}

NB_VOID vga_listw_status(VGA_LIST_WINDOW *window) {
    NB_SHORT type;
    NB_VOID *record = vga_listw_get_selection(window, &type, nullptr);
    if (const VGA_LINE_RULE *rule = vga_line_rule(type)) {
        open_dialog(window, rule->status, record);
    }
}

NB_VOID vga_listw_copy(VGA_LIST_WINDOW *window) {
    NB_SHORT type;
    NB_VOID *record = vga_listw_get_selection(window, &type, nullptr);
    const VGA_LINE_RULE *rule = vga_line_rule(type);
    if (record != nullptr && rule != nullptr) {
        vga_form_open_copy(vga_properties_of(*rule, record), &window->common, record);
    }
}

NB_VOID vga_listw_copy_lines(VGA_LIST_WINDOW *window) {
    if (const VGA_VIEWER_ROOT *root = vga_listw_current_root(window)) {
        vga_viewer_copy_lines(root);
    }
}

NB_VOID vga_listw_copy_name(VGA_LIST_WINDOW *window) {
    const VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    std::string names;
    for (NB_LONG at = 0; root != nullptr && at < root->select_count; at++) {
        const VGA_VIEWER_LIST &lines =
            root->select_parent != nullptr ? root->select_parent->children : root->top_items;
        const VGA_VIEWER_ITEM *line = vga_viewer_find_selected(&lines, static_cast<NB_ULONG>(at));
        names += (at > 0 ? "\n" : "") + (line != nullptr ? vga_line_name(*line) : std::string());
    }
    vga_own_text(window->panes[0].draw_area, names);
}

NB_VOID vga_listw_messages(VGA_LIST_WINDOW *window) {
    vga_show_history(&window->common);
}

/* What is selected, else the list, else the window. */
NB_VOID vga_listw_help_on_this(VGA_LIST_WINDOW *window) {
    NB_SHORT type;
    const NB_VOID *record = vga_listw_get_selection(window, &type, nullptr);
    const VGA_LINE_RULE *rule = vga_line_rule(type);
    const NB_CHAR *topic = rule != nullptr ? vga_topic_of(*rule, record) : nullptr;
    if (topic == nullptr && window->current_pane != VGA_LISTW_NO_LIST) {
        topic = window->plan->lists[window->current_pane].topic;
    }
    vga_display_help_topic(nullptr, topic != nullptr ? topic : vga_row_of(&window->common).name,
                           VGA_HELP_FULL);
}

NB_VOID vga_listw_help_cb(Widget list, XtPointer, XtPointer) {
    if (VGA_LIST_WINDOW *window = vga_listw_from_widget(list)) {
        vga_listw_help_on_this(window);
    }
}
