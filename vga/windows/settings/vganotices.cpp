#include "vganotices.h"
#include "details.h"
#include "dialogids.h"
#include "globals.h"
#include "holders.h"
#include "messages.h"
#include "model.h"
#include "recordpattern.h"
#include "settingsdialogs.h"
#include "wraptext.h"
#include <Xm/MessageB.h>
#include <cstdlib>
#include <cstring>
#include <set>

/* Getting started. */

namespace {

NB_VOID set_text(Widget box, const NB_CHAR *text) {
    constexpr NB_USHORT columns = 60;
    const VGA_OWNED<NB_CHAR> lines(vga_wrap_text(text, columns));
    const VGA_STRING string(lines ? lines.get() : text);
    XtVaSetValues(box, XmNmessageString, string.get(), nullptr);
}

VGA_NODE *first_unconfigured(NB_VOID) {
    VGA_NODE *found = nullptr;
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&found](VGA_NODE &node) {
        if (found == nullptr && node.node_state == NAP_NODE_UNCONFIGURED) {
            found = &node;
        }
    });
    return found;
}

VGA_DIALOG *find_open(const VGA_NODE *node) {
    VGA_DIALOG *desc = vga_find_row(VGA_UID_START_HELP_DIALOG)->first_desc;
    while (desc != nullptr && (desc->in_use == 0 || desc->parent_item != node)) {
        desc = desc->next_desc;
    }
    return desc;
}

NB_VOID vga_shlpd_ok_cb(Widget widget, XtPointer, XtPointer) {
    VGA_DIALOG *desc = vga_get_dialog_from_widget(widget);
    VGA_DIALOG *parent = desc->parent;
    auto *node = static_cast<VGA_NODE *>(desc->parent_item);
    vga_close_children(desc, 1, 0);
    vga_display_node_dialog(parent, node);
}

} // namespace

MRMRegisterArg gvga_shlpd_callbacks[VGA_SHLPD_CALLBACK_COUNT] = {
    {const_cast<NB_CHAR *>("vga_shlpd_ok_cb"), reinterpret_cast<XtPointer>(vga_shlpd_ok_cb)},
};

NB_USHORT vga_display_start_help_dialog(VGA_NODE *node, NB_USHORT flag) {
    NB_CHAR text[1024];
    if (node == nullptr) {
        node = first_unconfigured();
    }
    if (node == nullptr) {
        return 0;
    }
    VGA_DIALOG *desc = find_open(node);
    if (desc == nullptr &&
        vga_get_dialog(VGA_UID_START_HELP_DIALOG, gvga_main_dialog, node, &desc) == 0) {
        return 0;
    }
    vga_print_msg(text, sizeof(text), VGA_MSG_SHLPD_NOT_CONFIGURED, "cs",
                  static_cast<NB_INT>(sizeof(node->name)), node->name);
    set_text(desc->widget, text);
    if (flag != 0) {
        vga_display_dialog(desc);
    }
    return 1;
}

/* It has nothing to say of a node that is gone, or that somebody has configured. */
NB_VOID vga_shlpd_record_changed(VGA_DIALOG *desc, NB_VOID *item, VGA_RECORD_CHANGE what) {
    if (item == nullptr || item != desc->parent_item) {
        return;
    }
    const auto *node = static_cast<const VGA_NODE *>(item);
    if (what == VGA_RECORD_GONE || node->node_state != NAP_NODE_UNCONFIGURED) {
        vga_close_children(desc, 1, 1);
    }
}

/* About. */

namespace {

/* The releases that the nodes have, each once. */
std::string releases(NB_VOID) {
    std::set<std::string> found;
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&found](const VGA_NODE &node) {
        const NAP_NODE_INFO info = node.vcb->info;
        const auto *release = reinterpret_cast<const NB_CHAR *>(info.release);
        if (release[0] != '\0') {
            found.emplace(release, strnlen(release, sizeof(info.release)));
        }
    });
    std::string text;
    for (const std::string &release : found) {
        text += (text.empty() ? "" : ", ") + release;
    }
    return text.empty() ? vga_message(VGA_MSG_ABOUT_NO_RELEASE) : text;
}

NB_VOID show_cb(Widget box, XtPointer, XtPointer) {
    NB_CHAR text[2048];
    vga_print_msg(text, sizeof(text), VGA_MSG_ABOUT, "s s s s", gvga_version, releases().c_str(),
                  nba_prefix(), vga_log_name().c_str());
    set_text(box, text);
}

} // namespace

/* The nodes may have other software the next time. */
NB_USHORT vga_get_widgets_about(VGA_DIALOG *desc) {
    XtAddCallback(desc->widget, XmNmapCallback, show_cb, nullptr);
    XtUnmanageChild(XtNameToWidget(desc->widget, "Cancel"));
    show_cb(desc->widget, nullptr, nullptr);
    return 1;
}
