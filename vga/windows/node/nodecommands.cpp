#include "nodecommands.h"
#include "globals.h"
#include "graphics.h"
#include "hints.h"
#include "messages.h"
#include "nodeselection.h"
#include "panes.h"
#include "properties.h"
#include "vganodew.h"
#include "widgets.h"
#include <Xm/PushB.h>
#include <cstring>

Widget gvga_current_button;

/* The table. */

/* Tracing and the like need a node whose configuration can be read; its parameters can be set
 * before that. */
static constexpr NB_UCHAR reachable = VGA_NODEW_READABLE | VGA_NODEW_IN(NAP_NODE_UNCONFIGURED);

/* Short names for the description of the window's commands. */
static constexpr VGA_NODEW_SCOPE selection = VGA_NODEW_FOR_SELECTION, pane = VGA_NODEW_FOR_PANE;
static constexpr decltype(VGA_NODEW_COMMAND_ROW::capability)
    dlur = &NAP_QUERY_NODE_VERB::dlur_support,
    downstream = &NAP_QUERY_NODE_VERB::dspu_support, tn3270 = &NAP_QUERY_NODE_VERB::tn3270_support,
    tamrix = &NAP_QUERY_NODE_VERB::tamrix_support, hpr = &NAP_QUERY_NODE_VERB::hpr_support,
    primary = &NAP_QUERY_NODE_VERB::primary_support;

#define COMMAND(number, widget, ...) {.command = number, .item = widget __VA_OPT__(, ) __VA_ARGS__},

constexpr VGA_NODEW_COMMAND_ROW gvga_nodew_commands[VGA_NODEW_COMMAND_COUNT] = {
    VGA_NODEW_COMMANDS(COMMAND)};

#undef COMMAND

/* Carrying out. */

/* Keys and late clicks come in spite of insensitive buttons, so the states are looked at again. */
NB_VOID vga_nodew_run(VGA_NODEW_DESC *desc, VGA_NODEW_COMMAND command) {
    const VGA_NODEW_COMMAND_ROW &row = gvga_nodew_commands[command];
    VGA_NODEW_SITUATION situation = vga_nodew_situation(desc);
    if (!vga_nodew_offers(situation, command)) {
        vga_message_node_window(&desc->common, vga_nodew_reason(situation, command));
        return;
    }
    if (gvga_read_only && command == VGA_NODEW_ADD) {
        vga_display_error_dialog(&desc->common, VGA_MSG_UNAVAILABLE, nullptr, nullptr, 0, "s",
                                 "sna");
        return;
    }
    row.action(desc);
}

static NB_VOID run(Widget widget, VGA_NODEW_COMMAND command) {
    if (VGA_NODEW_DESC *desc = vga_nodew_from_widget(widget)) {
        vga_nodew_run(desc, command);
    }
}

#define PROCEDURE(name, command)                                                                   \
    NB_VOID name(Widget widget, XtPointer, XtPointer) {                                            \
        run(widget, command);                                                                      \
    }

VGA_NODEW_PROCEDURES(PROCEDURE)

#undef PROCEDURE

NB_VOID vga_nodew_command_proc(VGA_DIALOG *dialog, NB_USHORT command) {
    if (command < VGA_NODEW_COMMAND_COUNT) {
        vga_nodew_run(reinterpret_cast<VGA_NODEW_DESC *>(dialog),
                      static_cast<VGA_NODEW_COMMAND>(command));
    }
}

NB_VOID vga_nodew_disarm(Widget widget, XtPointer, XtPointer) {
    vga_nodew_set_button_states(vga_nodew_from_widget(widget));
}

NB_VOID vga_nodew_server_arm_cb(Widget widget, XtPointer, XtPointer call_data) {
    const auto *cbs = static_cast<const XmAnyCallbackStruct *>(call_data);
    VGA_NODEW_DESC *desc = vga_nodew_from_widget(widget);
    if (desc != nullptr && vga_nodew_node(desc) != nullptr) {
        vga_nodew_select_node(desc, cbs == nullptr || cbs->reason != XmCR_FOCUS);
    }
}

/* The toolkit tells of the first click of a double click, too. */
NB_VOID vga_nodew_server(Widget widget, XtPointer, XtPointer call_data) {
    const auto *cbs = static_cast<const XmPushButtonCallbackStruct *>(call_data);
    if (cbs != nullptr && cbs->event != nullptr && cbs->event->type == ButtonRelease &&
        cbs->click_count < 2) {
        return;
    }
    run(widget, VGA_NODEW_SERVER);
}

/* Help under the pointer. */

struct VGA_NODEW_TOOL_ROW {
    VGA_NODEW_COMMAND command;             /* equals the index */
    const NB_CHAR *frame, *icon, *text;    /* widgets */
    const NB_CHAR *popup;                  /* item of the lists' menu */
    const NB_CHAR *picture, *grey_picture; /* icons */
    NB_USHORT help;                        /* message */
};

#define TOOL(number, widget, image, message)                                                       \
    {.command = number,                                                                            \
     .frame = widget "ButtonFrame",                                                                \
     .icon = widget "ButtonIcon",                                                                  \
     .text = widget "ButtonText",                                                                  \
     .popup = widget "Popup",                                                                      \
     .picture = image,                                                                             \
     .grey_picture = image "ins",                                                                  \
     .help = message},

static const VGA_NODEW_TOOL_ROW tools[VGA_NODEW_TOOL_COUNT] = {VGA_NODEW_TOOLS(TOOL)};

#undef TOOL

/* Icon and text stand two levels below the frame of their tool. */
static NB_USHORT tool_of(const VGA_NODEW_DESC *desc, Widget button) {
    Widget parent = XtParent(button);
    Widget frame = parent != nullptr ? XtParent(parent) : nullptr;
    for (NB_USHORT tool = 0; tool < VGA_NODEW_TOOL_COUNT; tool++) {
        if (frame != nullptr && desc->tools[tool].frame == frame) {
            return tool;
        }
    }
    return VGA_NODEW_TOOL_COUNT;
}

/* A tool is flat, its edge in the colour of what it lies on, until the pointer comes. */
static NB_VOID show_edge(const VGA_NODEW_DESC *desc, Widget button, NB_USHORT on) {
    NB_USHORT tool = tool_of(desc, button);
    if (tool == VGA_NODEW_TOOL_COUNT) {
        return;
    }
    Widget frame = desc->tools[tool].frame;
    Pixel colour;
    XtVaGetValues(frame, XmNbackground, &colour, nullptr);
    if (on) {
        colour = desc->normal_border;
    }
    XtVaSetValues(frame, XmNtopShadowColor, colour, XmNbottomShadowColor, colour, nullptr);
}

static NB_VOID vga_nodew_enter_button(Widget widget, XEvent *, String *, Cardinal *) {
    VGA_NODEW_DESC *desc = vga_nodew_from_widget(widget);
    if (desc == nullptr) {
        return;
    }
    NB_USHORT tool = tool_of(desc, widget);
    vga_message_node_window(&desc->common,
                            tool < VGA_NODEW_TOOL_COUNT ? tools[tool].help : NB_USHORT(0));
    gvga_current_button = widget;
    show_edge(desc, widget, 1);
}

static NB_VOID vga_nodew_leave_button(Widget widget, XEvent *, String *, Cardinal *) {
    VGA_NODEW_DESC *desc = vga_nodew_from_widget(widget);
    if (desc == nullptr) {
        return;
    }
    vga_nodew_message_at_rest(desc);
    gvga_current_button = nullptr;
    show_edge(desc, widget, 0);
}

NB_VOID vga_nodew_forget_button(VGA_NODEW_DESC *desc) {
    if (gvga_current_button != nullptr &&
        tool_of(desc, gvga_current_button) < VGA_NODEW_TOOL_COUNT) {
        show_edge(desc, gvga_current_button, 0);
        gvga_current_button = nullptr;
        vga_nodew_message_at_rest(desc);
    }
}

/* Widgets. */

NB_USHORT vga_nodew_get_command_widgets(VGA_NODEW_DESC *desc) {
    NB_USHORT complete = 1;
    auto find = [&](const NB_CHAR *name) {
        Widget widget = XtNameToWidget(desc->common.widget, name);
        complete = complete && widget != nullptr;
        return widget;
    };
    for (const VGA_NODEW_TOOL_ROW &row : tools) {
        desc->tools[row.command] = {find(row.frame), find(row.icon), find(row.text),
                                    find(row.popup)};
    }
    for (const VGA_NODEW_COMMAND_ROW &row : gvga_nodew_commands) {
        desc->items[row.command] = row.item != nullptr ? find(row.item) : nullptr;
    }
    return complete;
}

NB_USHORT vga_nodew_icon(const NB_CHAR *name) {
    for (NB_USHORT icon = 0; icon < VGA_ICON_COUNT; icon++) {
        if (strcmp(gvga_pixmap_names[icon], name) == 0) {
            return icon;
        }
    }
    NB_ASSERT(!"an icon of that name");
    return VGA_ICON_BLANK;
}

/* The kinds of lines that the key above a list explains. */
static const struct {
    const NB_CHAR *label, *icon;
} keys[] = {
    {"*nodewKeyPort", "port"},     {"*nodewKeyLinkStation", "ls"}, {"*nodewKeyPu", "pu"},
    {"*nodewKeyLu", "lu03"},       {"*nodewKeyLu62", "lu62"},      {"*nodewKeyMode", "mode"},
    {"*nodewKeyRemSys", "remsys"}, {"*nodewKeyRemPlu", "remplu"},
};

NB_VOID vga_nodew_put_pixmaps(VGA_NODEW_DESC *desc) {
    for (const VGA_NODEW_TOOL_ROW &row : tools) {
        vga_put_widget_pixmap(desc->tools[row.command].icon,
                              gvga_pixmaps[vga_nodew_icon(row.picture)]);
        XtVaSetValues(desc->tools[row.command].icon, XmNlabelInsensitivePixmap,
                      gvga_pixmaps[vga_nodew_icon(row.grey_picture)], nullptr);
    }
    for (const auto &key : keys) {
        if (Widget label = XtNameToWidget(desc->common.widget, key.label)) {
            vga_put_widget_pixmap(label, gvga_pixmaps[vga_nodew_icon(key.icon)]);
            XtVaSetValues(label, XmNlabelType, XmPIXMAP_AND_STRING, nullptr);
        }
    }
}

NB_VOID vga_nodew_show_reason(VGA_NODEW_DESC *desc, VGA_NODEW_COMMAND command, NB_USHORT message) {
    vga_set_reason(desc->items[command], message);
    if (command < VGA_NODEW_TOOL_COUNT) {
        const VGA_NODEW_TOOL &tool = desc->tools[command];
        for (Widget widget : {tool.icon, tool.text, tool.popup}) {
            vga_set_reason(widget, message);
        }
    }
}

NB_VOID vga_nodew_show_allowed(VGA_NODEW_DESC *desc) {
    for (NB_USHORT command = 0; command < VGA_NODEW_COMMAND_COUNT; command++) {
        NB_USHORT on = desc->allowed[command];
        vga_set_sensitive(desc->items[command], on);
        if (command < VGA_NODEW_TOOL_COUNT) {
            vga_set_sensitive(desc->tools[command].icon, on);
            vga_set_sensitive(desc->tools[command].text, on);
            vga_set_sensitive(desc->tools[command].popup, on);
        }
    }
    if (gvga_current_button != nullptr && !XtIsSensitive(gvga_current_button)) {
        vga_nodew_forget_button(desc);
    }
}

/* Names for the UID file. */

#define CALLBACK(name) {const_cast<NB_CHAR *>(#name), reinterpret_cast<XtPointer>(name)},

MRMRegisterArg gvga_nodew_callbacks[VGA_NODEW_CALLBACK_COUNT] = {VGA_NODEW_CALLBACKS(CALLBACK)};

#undef CALLBACK

XtActionsRec gvga_nodew_actions[VGA_NODEW_ACTION_COUNT] = {
    {const_cast<NB_CHAR *>("vga_nodew_enter_button"), vga_nodew_enter_button},
    {const_cast<NB_CHAR *>("vga_nodew_leave_button"), vga_nodew_leave_button},
};
