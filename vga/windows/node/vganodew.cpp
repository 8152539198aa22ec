#include "vganodew.h"
#include "dialogids.h"
#include "globals.h"
#include "graphics.h"
#include "helpwindows.h"
#include "hints.h"
#include "holders.h"
#include "linecolumns.h"
#include "lowscreen.h"
#include "messages.h"
#include "nodeconnection.h"
#include "nodeselection.h"
#include "nodewindowlines.h"
#include "openwindows.h"
#include "panes.h"
#include "popupmenu.h"
#include "rememberedlines.h"
#include "vgadsbld.h"
#include "widgets.h"
#include <Xm/TextF.h>
#include <algorithm>
#include <cstring>

VGA_NODEW_DESC *vga_nodew_from_widget(Widget widget) {
    VGA_DIALOG *dialog = widget != nullptr ? vga_get_dialog_from_widget(widget) : nullptr;
    return dialog != nullptr && dialog->dialog_id == VGA_UID_NODE_WINDOW
               ? reinterpret_cast<VGA_NODEW_DESC *>(dialog)
               : nullptr;
}

static VGA_NODEW_DESC *open_window(VGA_DIALOG *dialog) {
    return dialog != nullptr && dialog->in_use && dialog->dialog_id == VGA_UID_NODE_WINDOW
               ? reinterpret_cast<VGA_NODEW_DESC *>(dialog)
               : nullptr;
}

/* Texts. */

static NB_VOID set_label(Widget label, const NB_CHAR *text) {
    VGA_STRING string(text);
    XtVaSetValues(label, XmNlabelString, string.get(), nullptr);
}

NB_VOID vga_message_node_window_text(VGA_DIALOG *dialog, const NB_CHAR *text) {
    if (VGA_NODEW_DESC *desc = open_window(dialog)) {
        XmTextFieldSetString(desc->message_bar, const_cast<NB_CHAR *>(text));
    }
}

NB_VOID vga_message_node_window(VGA_DIALOG *dialog, NB_USHORT message) {
    vga_message_node_window_text(dialog, message != 0 ? vga_message(message) : "");
}

/* Why there is nothing to see; a node that can be worked with needs no more words. */
NB_VOID vga_nodew_message_at_rest(VGA_NODEW_DESC *desc) {
    const VGA_NODE *node = vga_nodew_node(desc);
    if (node == nullptr || node->connection == VGA_CONNECTED) {
        vga_message_node_window(&desc->common, 0);
    } else if (node->lost_at != 0) {
        vga_message_node_window(&desc->common, VGA_MSG_NODEW_NODE_LOST);
    } else if (node->connection == VGA_NOT_CONNECTED) {
        NB_CHAR line[512];
        vga_print_msg(line, sizeof(line), VGA_MSG_NODEW_NOT_CONNECTED, "cs",
                      static_cast<NB_INT>(sizeof(node->name)), node->name);
        vga_message_node_window_text(&desc->common, line);
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
        set_label(desc->server_text, vga_message(VGA_MSG_NODEW_NO_NODE));
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
    set_label(desc->server_text, text);
    vga_put_widget_pixmap(desc->server_icon,
                          gvga_pixmaps[vga_choose_node_viewer_icon(vga_nodew_node(desc))]);
}

/* Widgets. */

#define PANE(pane, member) offsetof(VGA_NODEW_DESC, panes[VGA_NODEW_##pane##_PANE].member)

static const struct {
    const NB_CHAR *name;
    size_t offset; /* of a Widget in VGA_NODEW_DESC */
} widgets[] = {
    {"*nodewPanes", offsetof(VGA_NODEW_DESC, panes_widget)},
    {"*nodewServerIconButton", offsetof(VGA_NODEW_DESC, server_icon)},
    {"*nodewServerTextButton", offsetof(VGA_NODEW_DESC, server_text)},
    {"*nodewMessageBar", offsetof(VGA_NODEW_DESC, message_bar)},
    {"*nodewLinksForm", PANE(TOP, form)},
    {"*nodewConnectivityTitle", PANE(TOP, title)},
    {"*nodewLinksDrawArea", PANE(TOP, draw_area)},
    {"*nodewLinksHScrollBar", PANE(TOP, hscroll)},
    {"*nodewLinksVScrollBar", PANE(TOP, vscroll)},
    {"*nodewLUsForm", PANE(MIDDLE, form)},
    {"*nodewLocalLUsTitle", PANE(MIDDLE, title)},
    {"*nodewLUsDrawArea", PANE(MIDDLE, draw_area)},
    {"*nodewLUsHScrollBar", PANE(MIDDLE, hscroll)},
    {"*nodewLUsVScrollBar", PANE(MIDDLE, vscroll)},
    {"*nodewRemSysForm", PANE(BOTTOM, form)},
    {"*nodewRemSysTitle", PANE(BOTTOM, title)},
    {"*nodewRemSysDrawArea", PANE(BOTTOM, draw_area)},
    {"*nodewRemSysHScrollBar", PANE(BOTTOM, hscroll)},
    {"*nodewRemSysVScrollBar", PANE(BOTTOM, vscroll)},
};

#undef PANE

static NB_USHORT find_widgets(VGA_NODEW_DESC *desc) {
    for (const auto &row : widgets) {
        Widget widget = XtNameToWidget(desc->common.widget, row.name);
        if (widget == nullptr) {
            return 0;
        }
        *reinterpret_cast<Widget *>(reinterpret_cast<NB_UCHAR *>(desc) + row.offset) = widget;
    }
    return vga_nodew_fetch_popup(desc) != 0 && vga_nodew_get_command_widgets(desc) != 0;
}

NB_USHORT vga_get_widgets_node_window(VGA_DIALOG *dialog) {
    auto *desc = reinterpret_cast<VGA_NODEW_DESC *>(dialog);
    if (!find_widgets(desc)) {
        return 0;
    }
    const VGA_NODEW_PANE &top = desc->panes[VGA_NODEW_TOP_PANE];
    if (gvga_viewer_item_height == 0 && !vga_init_graphics(top.draw_area, top.draw_area)) {
        return 0;
    }
    desc->current_pane = VGA_NODEW_NO_PANE;
    vga_nodew_forget_lines(desc); /* of one that lay in the same memory */
    XtVaGetValues(top.form, XmNborderColor, &desc->normal_border, nullptr);
    XtVaGetValues(top.draw_area, XmNhighlightColor, &desc->current_border, nullptr);
    static const NB_USHORT titles[VGA_NODEW_PANE_COUNT] = {
        VGA_MSG_NODEW_CONNECTIVITY, VGA_MSG_NODEW_LOCAL_LUS, VGA_MSG_NODEW_REM_SYS};
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        set_label(desc->panes[pane].title, vga_message(titles[pane]));
    }
    vga_set_sensitive(XtNameToWidget(dialog->widget, "*nodewHelpAbout"), vga_has_about_box());
    vga_nodew_put_pixmaps(desc);
    vga_put_widget_pixmap(desc->server_icon, gvga_pixmaps[vga_nodew_icon("node")]);
    vga_nodew_fit_screen(desc);
    vga_nodew_share_height(desc);
    vga_nodew_install_popup(desc);
    vga_set_hint_line(dialog->widget, desc->message_bar);
    return 1;
}

/* Life. */

/* The lists are those of a node that is connected; without one the panes are blank. */
static NB_VOID show_lists(VGA_NODEW_DESC *desc) {
    desc->lists_shown = 1;
    desc->read_before = gvga_system->resources;
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        const VGA_NODEW_PANE &place = desc->panes[pane];
        vga_viewer_display_root(vga_nodew_pane_root(desc, pane), place.draw_area, place.hscroll,
                                place.vscroll);
    }
}

static NB_VOID hide_lists(VGA_NODEW_DESC *desc) {
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        if (VGA_VIEWER_ROOT *root = vga_nodew_pane_root(desc, pane)) {
            vga_viewer_undisplay(root);
        }
    }
    vga_nodew_forget_pane(desc);
    desc->lists_shown = 0;
}

static NB_VOID set_window_of_lists(VGA_NODE *node, VGA_NODEW_DESC *desc) {
    for (VGA_VIEWER_ROOT *root :
         {&node->connectivity_root, &node->local_lu_root, &node->rem_sys_root}) {
        root->window = desc;
    }
    node->window = desc != nullptr ? &desc->common : nullptr;
}

static NB_VOID detach(VGA_NODEW_DESC *desc) {
    vga_remove_node_window_widget(&desc->common);
    vga_nodew_forget_button(desc);
    vga_nodew_forget_lines(desc);
    hide_lists(desc);
    if (VGA_NODE *node = vga_nodew_node(desc)) {
        set_window_of_lists(node, nullptr);
    }
    desc->common.parent_item = nullptr;
}

/* The pane that was left with a selection when the window was closed; else the one that has the
 * keyboard already. */
static NB_USHORT pane_to_begin_with(const VGA_NODEW_DESC *desc) {
    for (NB_USHORT pane = 0; pane < VGA_NODEW_PANE_COUNT; pane++) {
        if (vga_nodew_pane_root(desc, pane)->select_count != 0) {
            return pane;
        }
    }
    return vga_nodew_focus_pane(desc);
}

/* The lists go with the connection and come back with it.  Their lines come one by one then, and
 * what was remembered of them is complete when the build is. */
static NB_VOID follow_connection(VGA_NODEW_DESC *desc, const VGA_NODE &node) {
    if (node.connection != VGA_CONNECTED) {
        if (desc->lists_shown != 0) {
            vga_nodew_remember_lines(desc);
            hide_lists(desc);
        }
        vga_nodew_message_at_rest(desc);
        return;
    }
    if (desc->lists_shown == 0) {
        show_lists(desc);
        desc->reading = 1;
    }
    if (desc->reading != 0 && vga_check_node_startup(&node, nullptr) != 0) {
        desc->reading = 0;
        vga_nodew_recall_lines(desc);
        vga_message_node_window(&desc->common, VGA_MSG_NODEW_READY);
    }
}

/* Also for a window that was fetched before its node was known. */
static NB_VOID attach(VGA_NODEW_DESC *desc, VGA_NODE *node) {
    desc->common.parent_item = node;
    set_window_of_lists(node, desc);
    show_node(desc);
    vga_message_node_window(&desc->common, VGA_MSG_NODEW_READY);
    follow_connection(desc, *node);
    if (desc->lists_shown != 0) {
        vga_nodew_select_pane(desc, pane_to_begin_with(desc), 1);
    }
    vga_nodew_set_button_states(desc);
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

constexpr NB_USHORT name_size = 256;

/* The node, or the domain for null, as it is called in the middle of a sentence. */
static NB_VOID write_name(const VGA_NODE *node, NB_CHAR (&text)[name_size]) {
    if (node == nullptr) {
        vga_print_msg(text, name_size, VGA_MSG_THE_DOMAIN, "");
    } else {
        vga_print_msg(text, name_size, VGA_MSG_THE_NODE, "cs",
                      static_cast<NB_INT>(sizeof(node->name)), node->name);
    }
}

NB_VOID vga_show_build_progress(const VGA_NODE *node, NB_ULONG resources) {
    VGA_NODEW_DESC *desc = node != nullptr ? open_window(node->window) : nullptr;
    if (desc != nullptr && desc->reading == 0) {
        return; /* a single resource is read again */
    }
    const NB_ULONG before = desc != nullptr ? desc->read_before : 0;
    VGA_DIALOG *window = desc != nullptr ? &desc->common : gvga_first_dialog;
    NB_CHAR what[name_size];
    NB_CHAR line[512];
    write_name(node, what);
    vga_print_msg(line, sizeof(line), VGA_MSG_READING, "s l", what, resources - before);
    vga_message_node_window_text(window, line);
}

NB_VOID vga_show_closing(const VGA_NODE *node) {
    NB_CHAR what[name_size];
    NB_CHAR line[512];
    write_name(node, what);
    vga_print_msg(line, sizeof(line), VGA_MSG_CLOSING, "s", what);
    vga_message_node_window_text(gvga_main_dialog, line);
    if (VGA_NODEW_DESC *desc = open_window(gvga_main_dialog)) {
        set_label(desc->server_text, vga_message(VGA_MSG_NODEW_CLOSING));
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
    vga_nodew_set_button_states(desc);
    vga_message_node_window(&desc->common, VGA_MSG_NODEW_NODE_LOST);
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
    } else if (what == VGA_RECORD_CHANGED &&
               item == vga_nodew_get_selection(desc, nullptr, nullptr)) {
        vga_nodew_set_button_states(desc);
    }
}
