#include "vganodwt.h"
#include "vgaglob.h"
#include "vgagraph.h"
#include "vgahint.h"
#include "vgamsgs.h"
#include "vganodew.h"
#include "vganodwo.h"
#include "vganodwp.h"
#include "vganodws.h"
#include <Xm/PushB.h>
#include <cstring>

Widget gvga_current_button;

/* The table. */

/* Tracing and the like need a node whose configuration can be read; its parameters can be set
 * before that. */
static constexpr NB_UCHAR readable =
    VGA_NODEW_IN(NAP_NODE_STOPPED) | VGA_NODEW_IN(NAP_NODE_STARTING) |
    VGA_NODEW_IN(NAP_NODE_STOPPING) | VGA_NODEW_IN(NAP_NODE_ACTIVE);
static constexpr NB_UCHAR reachable = readable | VGA_NODEW_IN(NAP_NODE_UNCONFIGURED);

using ACTION = NB_VOID (*)(VGA_NODEW_DESC *desc);

static constexpr VGA_NODEW_COMMAND_ROW for_selection(VGA_NODEW_COMMAND command, const NB_CHAR *item,
                                                     NB_UCHAR changes, ACTION action = nullptr) {
    return {command, item,    VGA_NODEW_FOR_SELECTION, changes,
            0,       nullptr, VGA_NODEW_NO_OPTION,     action};
}

using CAPABILITY = NB_UCHAR NAP_QUERY_NODE_VERB::*;

/* Opens something that can also be looked at without the right to change. */
static constexpr VGA_NODEW_COMMAND_ROW look(VGA_NODEW_COMMAND command, const NB_CHAR *item,
                                            NB_UCHAR states = readable,
                                            CAPABILITY capability = nullptr,
                                            NB_USHORT option = VGA_NODEW_NO_OPTION) {
    return {command, item, VGA_NODEW_FOR_NODE, 0, states, capability, option, nullptr};
}

/* Defines something new. */
static constexpr VGA_NODEW_COMMAND_ROW define(VGA_NODEW_COMMAND command, const NB_CHAR *item,
                                              CAPABILITY capability = nullptr,
                                              NB_USHORT option = VGA_NODEW_NO_OPTION) {
    return {command, item, VGA_NODEW_FOR_NODE, 1, readable, capability, option, nullptr};
}

static constexpr CAPABILITY dlur = &NAP_QUERY_NODE_VERB::dlur_support,
                            downstream = &NAP_QUERY_NODE_VERB::dspu_support,
                            tn3270 = &NAP_QUERY_NODE_VERB::tn3270_support,
                            tamrix = &NAP_QUERY_NODE_VERB::tamrix_support,
                            hpr = &NAP_QUERY_NODE_VERB::hpr_support,
                            primary = &NAP_QUERY_NODE_VERB::primary_support;

constexpr VGA_NODEW_COMMAND_ROW gvga_nodew_commands[VGA_NODEW_COMMAND_COUNT] = {
    for_selection(VGA_NODEW_START, "*nodewStartItem", 1),
    for_selection(VGA_NODEW_STOP, "*nodewStopItem", 1),
    {VGA_NODEW_ADD, "*nodewAddItem", VGA_NODEW_FOR_PANE, 0, 0, nullptr, VGA_NODEW_NO_OPTION,
     nullptr},
    for_selection(VGA_NODEW_DELETE, "*nodewDeleteItem", 1),
    for_selection(VGA_NODEW_ZOOM, "*nodewZoomItem", 0, vga_nodew_show_properties),
    for_selection(VGA_NODEW_STATUS, "*nodewStatusItem", 0),
    for_selection(VGA_NODEW_COPY, "*nodewCopyItem", 1),
    look(VGA_NODEW_SERVER, nullptr, reachable),
    look(VGA_NODEW_NODE_PARAMS, "*nodewNodeParams", reachable),
    look(VGA_NODEW_TRACING, "*nodewTracing"),
    define(VGA_NODEW_PLU_DEF, "*nodewAddPlu"),
    define(VGA_NODEW_WILDCARD_DEF, "*nodewAddWildcardPlu"),
    define(VGA_NODEW_ALIAS_DEF, "*nodewAddPluAlias"),
    define(VGA_NODEW_LS_ROUTING_DEF, "*nodewAddLsRouting"),
    look(VGA_NODEW_DIR, "*nodewDirectory", readable, nullptr, VGA_SUPPORTED_DIRECTORY),
    look(VGA_NODEW_MODE_COS, "*nodewModeCos"),
    look(VGA_NODEW_TP_DEF, "*nodewTpDef"),
    define(VGA_NODEW_CN, "*nodewAddConnectionNetwork"),
    define(VGA_NODEW_ADD_DLUR_PU, "*nodewAddDlurPu", dlur),
    define(VGA_NODEW_ADD_DSLU, "*nodewAddDslu", downstream),
    define(VGA_NODEW_ADD_3270_LU, "*nodewAdd3270Lu"),
    define(VGA_NODEW_ADD_3270_PRINTER, "*nodewAdd3270Printer"),
    define(VGA_NODEW_ADD_RJE_LU, "*nodewAddRjeLu", nullptr, VGA_SUPPORTED_RJE),
    define(VGA_NODEW_ADD_LU0, "*nodewAddLu0"),
    look(VGA_NODEW_RJE_WKSTN, "*nodewRjeWkstn", readable, nullptr, VGA_SUPPORTED_RJE),
    look(VGA_NODEW_TN_SERVER, "*nodewTnServer", readable, tn3270),
    look(VGA_NODEW_TAMRIX, "*nodewTamrix", readable, tamrix),
    look(VGA_NODEW_HPR, "*nodewHpr", readable, hpr),
    define(VGA_NODEW_PRIMARY_LINE, "*nodewAddPrimaryLine", primary),
    define(VGA_NODEW_PRIMARY_LU0, "*nodewAddPrimaryLu0", primary),
    define(VGA_NODEW_SECONDARY_LU0, "*nodewAddSecondaryLu0"),
    define(VGA_NODEW_ADD_INDEP_LOCAL_LU, "*nodewAddIndepLocalLu"),
    define(VGA_NODEW_ADD_DEP_LOCAL_LU, "*nodewAddDepLocalLu"),
    define(VGA_NODEW_ADD_REMOTE_SYSTEM, "*nodewAddRemoteSystem"),
    look(VGA_NODEW_CL_SECURITY, "*nodewClSecurity"),
    look(VGA_NODEW_SL_SECURITY, "*nodewSlSecurity"),
};

static constexpr NB_USHORT in_order(NB_VOID) {
    for (NB_USHORT row = 0; row < VGA_NODEW_COMMAND_COUNT; row++) {
        if (gvga_nodew_commands[row].command != row) {
            return 0;
        }
    }
    return 1;
}
static_assert(in_order());

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
        vga_display_error_dialog(&desc->common, VGA_MSG_UNAVAILABLE, "readonly", nullptr, 0, "s",
                                 "sna");
        return;
    }
    row.action(desc);
}

template <VGA_NODEW_COMMAND command> static NB_VOID run(Widget widget, XtPointer, XtPointer) {
    if (VGA_NODEW_DESC *desc = vga_nodew_from_widget(widget)) {
        vga_nodew_run(desc, command);
    }
}

NB_VOID vga_nodew_add_items(Widget widget, XtPointer client_data, XtPointer call_data) {
    run<VGA_NODEW_ADD>(widget, client_data, call_data);
}

NB_VOID vga_nodew_delete(Widget widget, XtPointer client_data, XtPointer call_data) {
    run<VGA_NODEW_DELETE>(widget, client_data, call_data);
}

NB_VOID vga_nodew_zoom(Widget widget, XtPointer client_data, XtPointer call_data) {
    run<VGA_NODEW_ZOOM>(widget, client_data, call_data);
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
NB_VOID vga_nodew_server(Widget widget, XtPointer client_data, XtPointer call_data) {
    const auto *cbs = static_cast<const XmPushButtonCallbackStruct *>(call_data);
    if (cbs != nullptr && cbs->event != nullptr && cbs->event->type == ButtonRelease &&
        cbs->click_count < 2) {
        return;
    }
    run<VGA_NODEW_SERVER>(widget, client_data, call_data);
}

/* Help under the pointer. */

struct VGA_NODEW_TOOL_ROW {
    VGA_NODEW_COMMAND command;             /* equals the index */
    const NB_CHAR *frame, *icon, *text;    /* widgets */
    const NB_CHAR *popup;                  /* item of the lists' menu */
    const NB_CHAR *picture, *grey_picture; /* icons */
    NB_USHORT help;                        /* message */
};

static const VGA_NODEW_TOOL_ROW tools[VGA_NODEW_TOOL_COUNT] = {
    {VGA_NODEW_START, "*nodewStartButtonFrame", "*nodewStartButtonIcon", "*nodewStartButtonText",
     "*nodewStartPopup", "start", "startins", VGA_MSG_NODEW_HELP_START},
    {VGA_NODEW_STOP, "*nodewStopButtonFrame", "*nodewStopButtonIcon", "*nodewStopButtonText",
     "*nodewStopPopup", "stop", "stopins", VGA_MSG_NODEW_HELP_STOP},
    {VGA_NODEW_ADD, "*nodewAddButtonFrame", "*nodewAddButtonIcon", "*nodewAddButtonText",
     "*nodewAddPopup", "add", "addins", VGA_MSG_NODEW_HELP_ADD},
    {VGA_NODEW_DELETE, "*nodewDeleteButtonFrame", "*nodewDeleteButtonIcon",
     "*nodewDeleteButtonText", "*nodewDeletePopup", "del", "delins", VGA_MSG_NODEW_HELP_DELETE},
    {VGA_NODEW_ZOOM, "*nodewZoomButtonFrame", "*nodewZoomButtonIcon", "*nodewZoomButtonText",
     "*nodewZoomPopup", "zoom", "zoomins", VGA_MSG_NODEW_HELP_ZOOM},
    {VGA_NODEW_STATUS, "*nodewStatusButtonFrame", "*nodewStatusButtonIcon",
     "*nodewStatusButtonText", "*nodewStatusPopup", "status", "statusins",
     VGA_MSG_NODEW_HELP_STATUS},
    {VGA_NODEW_COPY, "*nodewCopyButtonFrame", "*nodewCopyButtonIcon", "*nodewCopyButtonText",
     "*nodewCopyPopup", "copy", "copyins", VGA_MSG_NODEW_HELP_COPY},
};

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
    vga_message_node_window(&desc->common, 0);
    gvga_current_button = nullptr;
    show_edge(desc, widget, 0);
}

NB_VOID vga_nodew_forget_button(VGA_NODEW_DESC *desc) {
    if (gvga_current_button != nullptr &&
        tool_of(desc, gvga_current_button) < VGA_NODEW_TOOL_COUNT) {
        show_edge(desc, gvga_current_button, 0);
        gvga_current_button = nullptr;
        vga_message_node_window(&desc->common, 0);
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

#define CALLBACK(name, procedure)                                                                  \
    { const_cast<NB_CHAR *>(#name), reinterpret_cast<XtPointer>(procedure) }

MRMRegisterArg gvga_nodew_callbacks[VGA_NODEW_CALLBACK_COUNT] = {
    CALLBACK(vga_nodew_server, vga_nodew_server),
    CALLBACK(vga_nodew_server_arm_cb, vga_nodew_server_arm_cb),
    CALLBACK(vga_nodew_add_items, vga_nodew_add_items),
    CALLBACK(vga_nodew_plu_def, run<VGA_NODEW_PLU_DEF>),
    CALLBACK(vga_nodew_wildcard_def, run<VGA_NODEW_WILDCARD_DEF>),
    CALLBACK(vga_nodew_alias_def, run<VGA_NODEW_ALIAS_DEF>),
    CALLBACK(vga_nodew_ls_routing_def, run<VGA_NODEW_LS_ROUTING_DEF>),
    CALLBACK(vga_nodew_dir, run<VGA_NODEW_DIR>),
    CALLBACK(vga_nodew_mode_cos, run<VGA_NODEW_MODE_COS>),
    CALLBACK(vga_nodew_tp_def, run<VGA_NODEW_TP_DEF>),
    CALLBACK(vga_nodew_cn, run<VGA_NODEW_CN>),
    CALLBACK(vga_nodew_tracing, run<VGA_NODEW_TRACING>),
    CALLBACK(vga_nodew_start, run<VGA_NODEW_START>),
    CALLBACK(vga_nodew_stop, run<VGA_NODEW_STOP>),
    CALLBACK(vga_nodew_zoom, vga_nodew_zoom),
    CALLBACK(vga_nodew_status, run<VGA_NODEW_STATUS>),
    CALLBACK(vga_nodew_copy, run<VGA_NODEW_COPY>),
    CALLBACK(vga_nodew_delete, vga_nodew_delete),
    CALLBACK(vga_nodew_disarm, vga_nodew_disarm),
    CALLBACK(vga_nodew_select_top_pane, vga_nodew_select_top_pane),
    CALLBACK(vga_nodew_select_middle_pane, vga_nodew_select_middle_pane),
    CALLBACK(vga_nodew_select_bottom_pane, vga_nodew_select_bottom_pane),
    CALLBACK(vga_nodew_add_dlur_pu, run<VGA_NODEW_ADD_DLUR_PU>),
    CALLBACK(vga_nodew_add_dslu, run<VGA_NODEW_ADD_DSLU>),
    CALLBACK(vga_nodew_add_3270_lu, run<VGA_NODEW_ADD_3270_LU>),
    CALLBACK(vga_nodew_add_3270_printer, run<VGA_NODEW_ADD_3270_PRINTER>),
    CALLBACK(vga_nodew_add_rje_lu, run<VGA_NODEW_ADD_RJE_LU>),
    CALLBACK(vga_nodew_add_lu0, run<VGA_NODEW_ADD_LU0>),
    CALLBACK(vga_nodew_rje_wkstn, run<VGA_NODEW_RJE_WKSTN>),
    CALLBACK(vga_nodew_tn_server, run<VGA_NODEW_TN_SERVER>),
    CALLBACK(vga_nodew_tamrix, run<VGA_NODEW_TAMRIX>),
    CALLBACK(vga_nodew_hpr, run<VGA_NODEW_HPR>),
    CALLBACK(vga_nodew_primary_line, run<VGA_NODEW_PRIMARY_LINE>),
    CALLBACK(vga_nodew_primary_lu0, run<VGA_NODEW_PRIMARY_LU0>),
    CALLBACK(vga_nodew_secondary_lu0, run<VGA_NODEW_SECONDARY_LU0>),
    CALLBACK(vga_nodew_add_indep_local_lu, run<VGA_NODEW_ADD_INDEP_LOCAL_LU>),
    CALLBACK(vga_nodew_add_dep_local_lu, run<VGA_NODEW_ADD_DEP_LOCAL_LU>),
    CALLBACK(vga_nodew_add_remote_system, run<VGA_NODEW_ADD_REMOTE_SYSTEM>),
    CALLBACK(vga_nodew_cl_security, run<VGA_NODEW_CL_SECURITY>),
    CALLBACK(vga_nodew_sl_security, run<VGA_NODEW_SL_SECURITY>),
    CALLBACK(vga_nodew_node_params, run<VGA_NODEW_NODE_PARAMS>),
};

#undef CALLBACK

XtActionsRec gvga_nodew_actions[VGA_NODEW_ACTION_COUNT] = {
    {const_cast<NB_CHAR *>("vga_nodew_enter_button"), vga_nodew_enter_button},
    {const_cast<NB_CHAR *>("vga_nodew_leave_button"), vga_nodew_leave_button},
};
