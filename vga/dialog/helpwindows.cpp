#include "helpwindows.h"
#include "busycursor.h"
#include "globals.h"
#include "help.h"
#include "holders.h"
#include "messages.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include "webhelp.h"
#include "widgets.h"
#include <Xm/PushB.h>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr NB_INT max_title_part = 100; /* of the topic and of the message */

/* The library's own texts, by its resources. */
struct HELP_TEXT {
    const NB_CHAR *resource;
    NB_USHORT message;
};
constexpr HELP_TEXT help_texts[] = {
    {"backText", VGA_MSG_HELPW_BACK},
    {"forwardText", VGA_MSG_HELPW_FORWARD},
    {"homeText", VGA_MSG_HELPW_HOME},
    {"closeText", VGA_MSG_HELP_CLOSE},
    {"contentsText", VGA_MSG_HELP_CONTENTS},
    {"indexText", VGA_MSG_HELPW_INDEX},
    {"searchText", VGA_MSG_HELPW_SEARCH},
    {"findText", VGA_MSG_HELPW_FIND},
    {"noneFoundText", VGA_MSG_HELPW_NONE_FOUND},
    {"typeToSearchText", VGA_MSG_HELPW_TYPE},
    {"hitsText", VGA_MSG_HELPW_HITS},
    {"noHelpText", VGA_MSG_HELPW_NO_HELP},
    {"noTopicText", VGA_MSG_HELPW_NO_TOPIC},
    {"noPageText", VGA_MSG_HELPW_NO_PAGE},
    {"readingPageText", VGA_MSG_HELPW_READING},
    {"newWindowText", VGA_MSG_HELPW_NEW_WINDOW},
    {"manualPageText", VGA_MSG_HELPW_MAN_PAGE},
};

/* An open window. */
struct HELP_WINDOW {
    Widget shell, dialog;
    std::string volume, topic;
    VGA_HELP_FORM form;
};

std::vector<HELP_WINDOW> &windows() {
    static std::vector<HELP_WINDOW> open;
    return open;
}

HELP_WINDOW *find_window(const std::string &volume, const std::string &topic, VGA_HELP_FORM form) {
    for (HELP_WINDOW &window : windows()) {
        if (window.volume == volume && window.topic == topic && window.form == form) {
            return &window;
        }
    }
    return nullptr;
}

std::string title_of(const NB_CHAR *topic) {
    NB_CHAR title[2 * max_title_part + 3];
    const NB_CHAR *text = vga_message(VGA_MSG_HELP_TITLE);
    if (gvga_display_names != 0) {
        snprintf(title, sizeof(title), "%.*s: %.*s", max_title_part, topic, max_title_part, text);
    } else {
        snprintf(title, sizeof(title), "%.*s", max_title_part, text);
    }
    return title;
}

Widget make_shell(const NB_CHAR *topic) {
    const std::string title = title_of(topic);
    return XtVaAppCreateShell(VGA_CLASS, VGA_CLASS, topLevelShellWidgetClass, gvga_display,
                              XmNscreen, gvga_screen, XmNtitle, title.c_str(), XmNiconName,
                              title.c_str(), XmNdeleteResponse, XmDO_NOTHING, nullptr);
}

NB_VOID relabel(Widget button, NB_USHORT message) {
    VGA_STRING text(vga_message(message));
    XtVaSetValues(button, XmNlabelString, text.get(), nullptr);
}

/* A message has a topic of its own and needs no second window for it. */
NB_VOID set_quick_buttons(Widget dialog) {
    XtUnmanageChild(nb_help_quick_button(dialog, NB_HELP_QUICK_WINDOW));
    relabel(nb_help_quick_button(dialog, NB_HELP_QUICK_CLOSE), VGA_MSG_HELP_CLOSE);
    Widget more = nb_help_quick_button(dialog, NB_HELP_QUICK_MORE);
    relabel(more, VGA_MSG_HELP_CONTENTS);
    XtRemoveAllCallbacks(more, XmNactivateCallback);
    XtAddCallback(more, XmNactivateCallback, vga_menu_help_contents, nullptr);
}

Widget make_dialog(const HELP_WINDOW &window) {
    const NB_CHAR *location =
        window.form == VGA_HELP_MAN_PAGE ? NB_HELP_MAN_PAGE : NB_HELP_LOCATION;
    const NB_UCHAR type =
        window.form == VGA_HELP_MAN_PAGE ? NB_HELP_TYPE_MAN_PAGE : NB_HELP_TYPE_TOPIC;
    Arg args[3 + std::size(help_texts)];
    Cardinal count = 3;
    XtSetArg(args[0], const_cast<NB_CHAR *>(NB_HELP_VOLUME), window.volume.c_str());
    XtSetArg(args[1], const_cast<NB_CHAR *>(location), window.topic.c_str());
    XtSetArg(args[2], const_cast<NB_CHAR *>(NB_HELP_TYPE), type);
    for (const HELP_TEXT &text : help_texts) {
        if (*vga_message(text.message) != '\0') {
            XtSetArg(args[count], const_cast<NB_CHAR *>(text.resource), vga_message(text.message));
            count++;
        }
    }
    NB_CHAR name[] = "helpDialog";
    Widget dialog;
    if (window.form == VGA_HELP_QUICK) {
        dialog = DtCreateHelpQuickDialog(window.shell, name, args, count);
        set_quick_buttons(dialog);
    } else {
        dialog = DtCreateHelpDialog(window.shell, name, args, count);
    }
    XtAddCallback(dialog, NB_HELP_HYPER_LINK_CALLBACK, vga_help_hyper_cb, nullptr);
    XtAddCallback(dialog, NB_HELP_CLOSE_CALLBACK, vga_help_close_cb, nullptr);
    vga_set_configured_colours(dialog);
    return dialog;
}

NB_VOID put_in_front(Widget shell) {
    XtPopup(shell, XtGrabNone);
    XMapRaised(gvga_display, XtWindow(shell));
}

} // namespace

NB_VOID vga_display_help_topic(const NB_CHAR *volume, const NB_CHAR *topic, VGA_HELP_FORM form) {
    const std::string volume_name = volume != nullptr ? volume : VGA_HELP_VOLUME;
    const std::string topic_name = topic != nullptr ? topic : NB_HELP_HOME;
    if (const HELP_WINDOW *open = find_window(volume_name, topic_name, form)) {
        put_in_front(open->shell);
        return;
    }
    VGA_HOURGLASS busy;
    HELP_WINDOW window = {make_shell(topic_name.c_str()), nullptr, volume_name, topic_name, form};
    window.dialog = make_dialog(window);
    XtManageChild(window.dialog);
    windows().push_back(window);
    put_in_front(window.shell);
}

NB_VOID vga_help_cb(Widget, XtPointer client_data, XtPointer) {
    vga_display_help_topic(nullptr, static_cast<const NB_CHAR *>(client_data), VGA_HELP_FULL);
}

NB_VOID vga_modal_dialog_help_cb(Widget widget, XtPointer, XtPointer) {
    const VGA_DIALOG *desc = vga_get_dialog_from_widget(widget);
    if (desc != nullptr && desc->modal_dlg.showing != 0 && desc->modal_dlg.help_key != nullptr) {
        vga_display_help_topic(nullptr, desc->modal_dlg.help_key, VGA_HELP_QUICK);
    }
}

NB_VOID vga_help_hyper_cb(Widget widget, XtPointer, XtPointer call_data) {
    const auto *call = static_cast<const NB_HELP_CALLBACK *>(call_data);
    switch (call->link_kind) {
    case NB_HELP_LINK_NEW_WINDOW:
        vga_display_help_topic(call->volume, call->location, VGA_HELP_FULL);
        break;
    case NB_HELP_LINK_MAN_PAGE:
        vga_display_help_topic(call->volume, call->location, VGA_HELP_MAN_PAGE);
        break;
    default: /* the words of app: links are "web" and the tag of an entry of the help menu */
        if (strncmp(call->location, "web", 3) == 0) {
            vga_menu_help_web(widget, const_cast<NB_CHAR *>(call->location + 3), nullptr);
        }
        break;
    }
}

NB_VOID vga_help_close_cb(Widget widget, XtPointer, XtPointer) {
    std::erase_if(windows(), [widget](const HELP_WINDOW &one) { return one.dialog == widget; });
    XtDestroyWidget(XtParent(widget));
}

NB_VOID vga_menu_help_contents(Widget, XtPointer, XtPointer) {
    vga_display_help_topic(nullptr, NB_HELP_HOME, VGA_HELP_FULL);
}

NB_VOID vga_menu_help_index(Widget, XtPointer, XtPointer) {
    vga_display_help_topic(nullptr, NB_HELP_INDEX, VGA_HELP_FULL);
}

NB_VOID vga_menu_help_search(Widget, XtPointer, XtPointer) {
    vga_display_help_topic(nullptr, NB_HELP_SEARCH, VGA_HELP_FULL);
}

NB_VOID vga_menu_help_help(Widget, XtPointer, XtPointer) {
    vga_display_help_topic(nullptr, "helphelp", VGA_HELP_FULL);
}

NB_USHORT vga_has_about_box(NB_VOID) {
    return gvga_uid_desc[gvga_uid_roles.about_box].later == 0;
}

NB_VOID vga_menu_help_about(Widget widget, XtPointer, XtPointer) {
    VGA_DIALOG *parent = vga_get_dialog_from_widget(widget);
    VGA_DIALOG *desc = nullptr;
    if (vga_get_dialog(gvga_uid_roles.about_box, parent, nullptr, &desc) != 0) {
        vga_display_dialog(desc);
    }
}
