#include "tools.h"
#include "graphics.h"
#include "hints.h"
#include "linerules.h"
#include "messageline.h"
#include "messages.h"
#include "statemarks.h"
#include "widgets.h"
#include <algorithm>
#include <cstring>
#include <string>

Widget gvga_current_button;

/* Widgets. */

static NB_VOID hide(const VGA_LIST_WINDOW *window, NB_USHORT command) {
    const bool tool = command < window->plan->tools.size();
    const VGA_LISTW_TOOL none = {};
    const VGA_LISTW_TOOL &widgets = tool ? window->tools[command] : none;
    for (Widget widget : {window->items[command], window->popups[command],
                          widgets.frame != nullptr ? widgets.frame : widgets.text}) {
        if (widget != nullptr) {
            XtUnmanageChild(widget);
        }
    }
}

NB_USHORT vga_listw_find_tools(VGA_LIST_WINDOW *window) {
    NB_USHORT complete = 1;
    auto find = [&](const NB_CHAR *name) {
        Widget widget = name != nullptr ? XtNameToWidget(window->common.widget, name) : nullptr;
        complete = complete && (widget != nullptr || name == nullptr);
        return widget;
    };
    for (const VGA_TOOL_ROW &row : window->plan->tools) {
        window->tools[row.command] = {find(row.frame), find(row.icon), find(row.text)};
    }
    for (const VGA_COMMAND_ROW &row : window->plan->commands) {
        window->items[row.command] = find(row.item);
        window->popups[row.command] = find(row.popup);
        if (row.offered != nullptr && *row.offered == 0) {
            hide(window, row.command);
        }
    }
    return complete;
}

NB_USHORT vga_icon_by_name(const NB_CHAR *name) {
    for (NB_USHORT icon = 0; icon < VGA_ICON_COUNT; icon++) {
        if (strcmp(gvga_pixmap_names[icon], name) == 0) {
            return icon;
        }
    }
    NB_ASSERT(!"an icon of that name");
    return VGA_ICON_BLANK;
}

/* Labels that explain the marks of the states get those for pictures. */
static NB_VOID put_signs(const VGA_LIST_WINDOW *window) {
    static constexpr const NB_CHAR *labels[VGA_LINE_STATES] = {nullptr, "Active", "Changing",
                                                               "Inactive", "Failed"};
    for (NB_UCHAR state = VGA_LINE_NO_STATE + 1; state < VGA_LINE_STATES; state++) {
        const std::string name = std::string("*") + window->plan->prefix + "Key" + labels[state];
        Widget label = XtNameToWidget(window->common.widget, name.c_str());
        const Pixmap sign = vga_state_sign(static_cast<VGA_LINE_STATE>(state));
        if (label != nullptr && sign != None) {
            vga_put_widget_pixmap(label, sign);
            XtVaSetValues(label, XmNlabelType, XmPIXMAP_AND_STRING, nullptr);
        }
    }
}

NB_VOID vga_listw_put_pixmaps(VGA_LIST_WINDOW *window) {
    for (const VGA_TOOL_ROW &row : window->plan->tools) {
        if (Widget icon = window->tools[row.command].icon) {
            vga_put_widget_pixmap(icon, gvga_pixmaps[vga_icon_by_name(row.picture)]);
            XtVaSetValues(icon, XmNlabelInsensitivePixmap,
                          gvga_pixmaps[vga_icon_by_name(row.grey_picture)], nullptr);
        }
    }
    for (const VGA_LISTW_KEY &key : window->plan->keys) {
        if (Widget label = XtNameToWidget(window->common.widget, key.label)) {
            vga_put_widget_pixmap(label, gvga_pixmaps[vga_icon_by_name(key.icon)]);
            XtVaSetValues(label, XmNlabelType, XmPIXMAP_AND_STRING, nullptr);
        }
    }
    put_signs(window);
}

/* Sensitivity. */

/* Calls visit(widget) for all widgets of a command. */
template <class Visit>
static NB_VOID for_each_widget(const VGA_LIST_WINDOW *window, NB_USHORT command, Visit visit) {
    visit(window->items[command]);
    visit(window->popups[command]);
    if (command < window->plan->tools.size()) {
        visit(window->tools[command].icon);
        visit(window->tools[command].text);
    }
}

NB_VOID vga_listw_set_button_states(NB_VOID *data) {
    auto *window = static_cast<VGA_LIST_WINDOW *>(data);
    if (window == nullptr) {
        return;
    }
    const VGA_SITUATION situation = vga_listw_situation(window);
    for (const VGA_COMMAND_ROW &row : window->plan->commands) {
        const NB_USHORT reason = vga_refusal(situation, row);
        window->allowed[row.command] = reason == 0;
        const bool news = reason != 0 && reason != window->reasons[row.command];
        window->reasons[row.command] = reason != 0 ? reason : window->reasons[row.command];
        for_each_widget(window, row.command, [&](Widget widget) {
            if (news) {
                vga_set_reason(widget, reason);
            }
            vga_set_sensitive(widget, reason == 0);
        });
    }
    window->zoom = window->plan->zoom != VGA_LISTW_NO_COMMAND && situation.count == 1 &&
                   window->allowed[window->plan->zoom] != 0;
    if (gvga_current_button != nullptr && !XtIsSensitive(gvga_current_button)) {
        vga_listw_forget_button(window);
    }
    vga_listw_selection_seen(window);
}

/* Help under the pointer. */

/* Icon and text stand two levels below the frame of their tool. */
static const VGA_TOOL_ROW *tool_of(const VGA_LIST_WINDOW *window, Widget button) {
    Widget parent = XtParent(button);
    Widget frame = parent != nullptr ? XtParent(parent) : nullptr;
    for (const VGA_TOOL_ROW &row : window->plan->tools) {
        const VGA_LISTW_TOOL &tool = window->tools[row.command];
        if (tool.frame != nullptr ? tool.frame == frame : tool.text == button) {
            return &row;
        }
    }
    return nullptr;
}

/* A tool is flat, its edge in the colour of what it lies on, until the pointer comes. */
static NB_VOID show_edge(const VGA_LIST_WINDOW *window, Widget button, NB_USHORT on) {
    const VGA_TOOL_ROW *row = tool_of(window, button);
    Widget frame = row != nullptr ? window->tools[row->command].frame : nullptr;
    if (frame == nullptr) {
        return;
    }
    Pixel colour;
    XtVaGetValues(frame, XmNbackground, &colour, nullptr);
    if (on) {
        colour = window->normal_border;
    }
    XtVaSetValues(frame, XmNtopShadowColor, colour, XmNbottomShadowColor, colour, nullptr);
}

static NB_VOID show_help(VGA_LIST_WINDOW *window, const VGA_TOOL_ROW &row) {
    const VGA_VIEWER_ROOT *root = vga_listw_current_root(window);
    const VGA_VIEWER_ITEM *line = root != nullptr ? vga_viewer_get_selected_viewer(root) : nullptr;
    if (row.named_help == 0 || line == nullptr) {
        vga_listw_message(window, row.help);
        return;
    }
    NB_CHAR text[512];
    const std::string name = vga_line_name(*line);
    vga_print_msg(text, sizeof(text), row.named_help, "cs", static_cast<NB_INT>(name.size()),
                  name.c_str());
    vga_listw_message_text(window, text);
}

NB_VOID vga_listw_enter_button(Widget widget, XEvent *, String *, Cardinal *) {
    VGA_LIST_WINDOW *window = vga_listw_from_widget(widget);
    if (window == nullptr) {
        return;
    }
    if (const VGA_TOOL_ROW *row = tool_of(window, widget)) {
        show_help(window, *row);
    } else {
        vga_listw_message(window, 0);
    }
    gvga_current_button = widget;
    show_edge(window, widget, 1);
}

NB_VOID vga_listw_leave_button(Widget widget, XEvent *, String *, Cardinal *) {
    VGA_LIST_WINDOW *window = vga_listw_from_widget(widget);
    if (window == nullptr) {
        return;
    }
    vga_listw_message(window, 0);
    gvga_current_button = nullptr;
    show_edge(window, widget, 0);
}

NB_VOID vga_listw_forget_button(VGA_LIST_WINDOW *window) {
    if (gvga_current_button != nullptr && tool_of(window, gvga_current_button) != nullptr) {
        show_edge(window, gvga_current_button, 0);
        gvga_current_button = nullptr;
        vga_listw_message(window, 0);
    }
}
