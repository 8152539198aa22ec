#include "vgadgutl.h"
#include "busycursor.h"
#include "buttonletters.h"
#include "desktophints.h"
#include "firewall.h"
#include "fontunits.h"
#include "globals.h"
#include "helpwindows.h"
#include "holders.h"
#include "hooks.h"
#include "messages.h"
#include "nbproblem.h"
#include "openwindows.h"
#include "textfocus.h"
#include "textwindow.h"
#include "toolkit.h"
#include "verbqueue.h"
#include "vgaviewr.h"
#include "webhelp.h"
#include "widgets.h"
#include <Xm/AtomMgr.h>
#include <Xm/BulletinB.h>
#include <Xm/DialogS.h>
#include <Xm/MessageB.h>
#include <Xm/Protocols.h>
#include <algorithm>
#include <cstdlib>
#include <string>

VGA_DIALOG *gvga_first_dialog;
VGA_DIALOG *gvga_main_dialog;

namespace {

char shell_name[] = "Quiladmin";

/* A node window takes the top-level shell where no system window does: with one node by itself, and
 * in a release without that window. */
NB_USHORT lives_on_top_level(NB_USHORT dialog_id) {
    const VGA_UID_DESC &row = gvga_uid_desc[gvga_uid_roles.system_window];
    NB_USHORT system_window = gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] != 0 &&
                              row.get_widgets != nullptr && row.later == 0;
    return dialog_id == gvga_uid_roles.system_window ||
           (dialog_id == gvga_uid_roles.node_window && !system_window);
}

/* Making one. */

/* A descriptor that is being made: all of it goes again unless it is kept. */
class NEW_DIALOG {
public:
    explicit NEW_DIALOG(VGA_DIALOG *made) : desc(made) {}
    NEW_DIALOG(const NEW_DIALOG &) = delete;
    NEW_DIALOG &operator=(const NEW_DIALOG &) = delete;
    ~NEW_DIALOG() {
        if (desc == nullptr) {
            return;
        }
        if (desc->shell != nullptr && desc->shell != gvga_toplevel) {
            XtDestroyWidget(desc->shell);
        } else if (desc->widget != nullptr) {
            XtDestroyWidget(desc->widget);
        }
        if (gvga_first_dialog == desc) {
            gvga_first_dialog = nullptr;
        }
        nba_destroy_handle(desc->handle);
        free(desc);
    }
    VGA_DIALOG *operator->() const { return desc; }
    VGA_DIALOG *get() const { return desc; }
    VGA_DIALOG *keep() { return std::exchange(desc, nullptr); }

private:
    VGA_DIALOG *desc;
};

NB_VOID register_row(const VGA_UID_DESC &row) {
    if (row.callback_count > 0) {
        MrmRegisterNames(row.callbacks, row.callback_count);
    }
    if (row.action_count > 0) {
        XtAppAddActions(gvga_appcontext, row.actions, row.action_count);
    }
}

Widget make_shell(const VGA_UID_DESC &row, const VGA_DIALOG *parent) {
    if (lives_on_top_level(row.dialog_id)) {
        XtVaSetValues(gvga_toplevel, XmNdeleteResponse, XmDO_NOTHING, nullptr);
        return gvga_toplevel;
    }
    if (row.kind != VGA_KIND_MAIN) {
        Arg args[2];
        XtSetArg(args[0], XmNdeleteResponse, XmDO_NOTHING);
        XtSetArg(args[1], XmNallowShellResize, True);
        Widget over = parent != nullptr ? parent->shell : gvga_toplevel;
        return XmCreateDialogShell(over, shell_name, args, 2);
    }
    Widget shell =
        XtVaAppCreateShell(shell_name, shell_name, applicationShellWidgetClass, gvga_display,
                           XmNscreen, gvga_screen, XmNdeleteResponse, XmDO_NOTHING, nullptr);
    if (row.dialog_id == gvga_uid_roles.node_window) {
        /* It is realized while its lists are filled and comes on the screen when it is shown. */
        XtVaSetValues(shell, XmNmappedWhenManaged, False, nullptr);
    }
    return shell;
}

/* Null when the UID file has no such tree, or the row no window. */
Widget fetch_widget(const VGA_UID_DESC &row, Widget shell) {
    if (row.get_widgets == nullptr || gvga_uil_hierarchy == nullptr) {
        return nullptr;
    }
    VGA_NO_WARNINGS silence;
    Widget widget = nullptr;
    MrmType type;
    Cardinal status =
        MrmFetchWidget(gvga_uil_hierarchy, const_cast<NB_CHAR *>(row.name), shell, &widget, &type);
    return status == MrmSUCCESS ? widget : nullptr;
}

NB_VOID add_name_to_title(VGA_DIALOG *desc) {
    XmString title = nullptr;
    if (gvga_display_names == 0 || !XmIsBulletinBoard(desc->widget)) {
        return;
    }
    XtVaGetValues(desc->widget, XmNdialogTitle, &title, nullptr);
    VGA_STRING owned(title);
    VGA_TEXT text(title == nullptr ? nullptr
                                   : static_cast<NB_CHAR *>(XmStringUnparse(
                                         title, nullptr, XmCHARSET_TEXT, XmMULTIBYTE_TEXT, nullptr,
                                         0, XmOUTPUT_ALL)));
    vga_set_title(desc, text.get());
}

/* Every dialog gets this once its widgets are known to be complete. */
NB_VOID finish_widgets(VGA_DIALOG *desc) {
    vga_set_configured_colours(desc->widget);
    vga_set_label_fonts(desc->widget, desc->widget);
    vga_multi_byte_resize(desc->widget);
    vga_define_tabbing_order(desc->widget, vga_get_work_area(desc->widget));
    vga_give_letters(desc->widget);
    vga_watch_texts(desc->widget);
    XmAddWMProtocolCallback(desc->shell, gvga_close_atom, vga_close_cb, nullptr);
    vga_add_modal_popup_firewall(desc->widget);
    add_name_to_title(desc);
    NB_INIT_LIST(desc->modal_dlg.queue);
}

NB_VOID append_to_row(VGA_UID_DESC &row, VGA_DIALOG *desc) {
    (row.last_desc != nullptr ? row.last_desc->next_desc : row.first_desc) = desc;
    row.last_desc = desc;
}

NB_VOID prepare_widget(const VGA_UID_DESC &row, VGA_DIALOG *desc) {
    if (row.kind == VGA_KIND_MAIN) {
        XtManageChild(desc->widget);
    } else if (row.kind == VGA_KIND_MODAL) {
        XtVaSetValues(desc->widget, XmNdialogStyle, XmDIALOG_PRIMARY_APPLICATION_MODAL, nullptr);
    }
    XtAddCallback(desc->widget, XmNhelpCallback, vga_help_cb, const_cast<NB_CHAR *>(row.name));
    if (desc->shell == gvga_toplevel && gvga_first_dialog == nullptr &&
        gvga_main_dialog == nullptr) {
        gvga_first_dialog = desc;
    }
}

NB_VOID report_failure(const VGA_UID_DESC &row, nb_problem_detail detail, VGA_DIALOG *parent) {
    if (gvga_exit_code == VGA_EXIT_START_UP) {
        return; /* what it lacks was named where it was missed */
    }
    nba_pd_print_problem(NB_PD_WINDOW, detail, "s", row.name);
    vga_display_error_dialog(parent, VGA_MSG_DIALOG_FAILED, nullptr, nullptr, 0, "");
}

/* Returns null with everything undone and the reason told. */
VGA_DIALOG *make_dialog(VGA_UID_DESC &row, VGA_DIALOG *parent) {
    if (row.first_desc == nullptr) {
        register_row(row);
    }
    size_t size = std::max<size_t>(row.desc_size, sizeof(VGA_DIALOG));
    NEW_DIALOG desc(static_cast<VGA_DIALOG *>(calloc(1, size)));
    if (desc.get() == nullptr) {
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
        return nullptr;
    }
    desc->handle = nba_create_handle(desc.get());
    if (desc->handle == 0) {
        return nullptr;
    }
    NB_INIT_LIST(desc->children_root_lqe);
    NB_INIT_LIST(desc->child_lqe);
    NB_INIT_LIST(desc->modal_dlg.queue);
    desc->dialog_id = row.dialog_id;
    desc->shell = make_shell(row, parent);
    desc->widget = fetch_widget(row, desc->shell);
    if (desc->widget == nullptr) {
        report_failure(row, NB_PD_WINDOW_NO_DESCRIPTION, parent);
        return nullptr;
    }
    prepare_widget(row, desc.get());
    if (row.get_widgets(desc.get()) == 0) {
        report_failure(row, NB_PD_WINDOW_NO_WIDGET, parent);
        return nullptr;
    }
    finish_widgets(desc.get());
    append_to_row(row, desc.get());
    return desc.keep();
}

/* Opening one. */

/* Sets `found` to a closed descriptor that fits, or to null.  Returns 0 when the list is corrupt.
 */
NB_USHORT find_closed(const VGA_UID_DESC &row, const VGA_DIALOG *parent, VGA_DIALOG **found) {
    NB_USHORT dialog_id = row.dialog_id;
    *found = nullptr;
    for (VGA_DIALOG *current_desc = row.first_desc; current_desc != nullptr;
         current_desc = current_desc->next_desc) {
        if (current_desc->dialog_id != dialog_id) {
            v0_assert_fatal(__FILE__, __LINE__, "current_desc->dialog_id == dialog_id");
            return 0;
        }
        if (*found == nullptr && current_desc->in_use == 0 &&
            (current_desc->parent == nullptr || current_desc->parent == parent)) {
            *found = current_desc;
        }
    }
    return 1;
}

/* A descriptor that is used again gets another handle, so that answers to its former life miss it.
 */
NB_USHORT open_dialog(VGA_DIALOG *desc, VGA_DIALOG *parent, NB_VOID *context) {
    if (desc->handle == 0) {
        desc->handle = nba_create_handle(desc);
        if (desc->handle == 0) {
            return 0;
        }
    }
    desc->parent = parent;
    if (parent != nullptr) {
        nba_add_to_q_tail(&parent->children_root_lqe, &desc->child_lqe);
    }
    desc->in_use = 1;
    desc->context = context;
    XtVaSetValues(desc->widget, XmNuserData, desc, nullptr);
    if (XtIsRealized(desc->shell)) {
        XtRealizeWidget(desc->widget);
    }
    return 1;
}

/* Closing one. */

NB_VOID hide(VGA_DIALOG *desc) {
    if (vga_row_of(desc).kind != VGA_KIND_MAIN) {
        XtUnmanageChild(desc->widget);
    } else if (desc->shell != gvga_toplevel) {
        XtPopdown(desc->shell);
    } else if (XtIsRealized(desc->shell)) {
        XWithdrawWindow(gvga_display, XtWindow(desc->shell), XScreenNumberOfScreen(gvga_screen));
    }
}

NB_VOID close_self(VGA_DIALOG *desc, NB_USHORT force) {
    if (desc->in_use == 0 || (desc == gvga_main_dialog && force == 0)) {
        return;
    }
    const VGA_UID_DESC &row = vga_row_of(desc);
    if (row.close_proc != nullptr) {
        row.close_proc(desc);
    }
    vga_discard_modal_dialogs(desc);
    vga_close_text_windows(desc);
    vga_modal_firewall_forget_tree(desc->widget);
    if (desc != gvga_main_dialog) {
        hide(desc);
        vga_release_dialog(desc);
    }
}

NB_VOID ask_exit(VGA_DIALOG *desc) {
    vga_display_confirm_dialog(desc, VGA_MSG_CONFIRM_EXIT, nullptr, vga_exit_confirm_cb, 0, "");
}

/* Keys of the viewer. */

NB_VOID call_window_action(NB_VOID *window, VGA_VIEWER_ACTION action, Widget widget) {
    const auto *desc = static_cast<const VGA_DIALOG *>(window);
    if (desc == nullptr || desc->in_use == 0) {
        return;
    }
    const VGA_UID_DESC &row = vga_row_of(desc);
    XtCallbackProc proc = action == VGA_VIEWER_ACTION_ZOOM     ? row.zoom_action
                          : action == VGA_VIEWER_ACTION_DELETE ? row.delete_action
                                                               : row.add_action;
    if (proc != nullptr) {
        proc(widget, nullptr, nullptr);
    }
}

/* For the hooks. */

NB_VOID tell_dialogs(NB_VOID *item, VGA_RECORD_CHANGE what) {
    vga_for_each_row([item, what](const VGA_UID_DESC &row) {
        /* Descriptors are never freed, so a dialog that closes meanwhile does not break the walk.
         */
        for (VGA_DIALOG *desc = row.first_desc; desc != nullptr; desc = desc->next_desc) {
            if (desc->in_use != 0 && row.record_changed != nullptr) {
                row.record_changed(desc, item, what);
            }
        }
    });
}

NB_USHORT dialog_shows(const VGA_DIALOG *dialog, const NB_VOID *record) {
    return dialog->in_use != 0 && (dialog->parent_item == record || dialog->owner_item == record);
}

NB_USHORT record_leaves_dialog(VGA_DIALOG *dialog, const NB_VOID *record) {
    const NB_USHORT was_shown = dialog_shows(dialog, record);
    dialog->parent_item = nullptr;
    vga_close_children(dialog, 0, 1);
    return was_shown;
}

} // namespace

/* The table. */

VGA_UID_DESC *vga_find_row(NB_USHORT dialog_id) {
    const size_t part = dialog_id - size_t{VGA_UID_PARTS};
    return dialog_id <= VGA_UID_MAX       ? &gvga_uid_desc[dialog_id]
           : part < gvga_part_desc.size() ? &gvga_part_desc[part]
                                          : nullptr;
}

VGA_UID_DESC *vga_find_row_named(const NB_CHAR *name) {
    VGA_UID_DESC *found = nullptr;
    vga_for_each_row(
        [&found, name](VGA_UID_DESC &row) { found = strcmp(row.name, name) == 0 ? &row : found; });
    return found;
}

VGA_UID_DESC &vga_row_of(const VGA_DIALOG *desc) {
    return *vga_find_row(desc->dialog_id);
}

/* Start and end. */

NB_VOID vga_init_dialogs(NB_VOID) {
    vga_for_each_row([](VGA_UID_DESC &row) {
        NB_ASSERT(vga_find_row(row.dialog_id) == &row);
        row.first_desc = row.last_desc = nullptr;
    });
    gvga_viewer_window_action = call_window_action;
    gvga_modal_firewall_down = vga_schedule_modal_dialog_check;
    gvga_hooks.record_changed = tell_dialogs;
    gvga_hooks.record_leaves_dialog = record_leaves_dialog;
    gvga_hooks.dialog_shows = dialog_shows;
    vga_watch_shells();
    if (gvga_toplevel != nullptr) {
        vga_set_font_units(gvga_toplevel);
    }
}

NB_VOID vga_free_dialogs(NB_VOID) {
    vga_remove_all_node_window_widgets();
    vga_for_each_row([](VGA_UID_DESC &row) {
        while (row.first_desc != nullptr) {
            VGA_DIALOG *desc = row.first_desc;
            row.first_desc = desc->next_desc;
            desc->modal_dlg.showing = 0;
            vga_discard_modal_dialogs(desc);
            nba_destroy_handle(desc->handle);
            free(desc);
        }
        row.last_desc = nullptr;
    });
    gvga_first_dialog = gvga_main_dialog = nullptr;
}

/* Life of a dialog. */

NB_USHORT vga_get_dialog(NB_USHORT dialog_id, VGA_DIALOG *parent, NB_VOID *context,
                         VGA_DIALOG **desc) {
    *desc = nullptr;
    VGA_UID_DESC *row = vga_find_row(dialog_id);
    if (row == nullptr) {
        v0_assert_fatal(__FILE__, __LINE__, "dialog_id <= VGA_UID_MAX");
        return 0;
    }
    VGA_HOURGLASS busy;
    VGA_DIALOG *found;
    if (find_closed(*row, parent, &found) == 0) {
        return 0;
    }
    if (found == nullptr) {
        found = make_dialog(*row, parent);
    }
    if (found == nullptr || open_dialog(found, parent, context) == 0) {
        return 0;
    }
    *desc = found;
    return 1;
}

NB_VOID vga_display_dialog(VGA_DIALOG *desc) {
    if (desc->in_use == 0) {
        return;
    }
    XtManageChild(desc->widget);
    if (vga_row_of(desc).kind == VGA_KIND_MAIN) {
        XtRealizeWidget(desc->shell);
        if (desc->shell == gvga_toplevel) {
            XtMapWidget(desc->shell);
        } else {
            XtPopup(desc->shell, XtGrabNone);
        }
    }
    vga_raise_dialog(desc);
    vga_hourglass_new_window(desc);
    vga_check_modal_dialog_queue(desc);
}

NB_VOID vga_raise_dialog(VGA_DIALOG *desc) {
    if (desc->in_use != 0 && XtIsManaged(desc->widget) && XtIsRealized(desc->shell)) {
        XMapRaised(gvga_display, XtWindow(desc->shell));
    }
}

/* A window that cannot be seen (an icon that is about to be one no more) must not be given it. */
NB_VOID vga_raise_with_keyboard(VGA_DIALOG *desc) {
    XWindowAttributes now;
    vga_raise_dialog(desc);
    if (desc->in_use != 0 && XtIsRealized(desc->shell) &&
        XGetWindowAttributes(gvga_display, XtWindow(desc->shell), &now) != 0 &&
        now.map_state == IsViewable) {
        XSetInputFocus(gvga_display, XtWindow(desc->shell), RevertToParent,
                       XtLastTimestampProcessed(gvga_display));
    }
}

/* What stands before the title of a window that was not looked at. */
static std::string failures_before(const VGA_DIALOG *desc, const NB_CHAR *title) {
    NB_CHAR text[1200];
    if (desc->unseen == 0) {
        return title;
    }
    vga_print_msg(text, sizeof(text), VGA_MSG_UNSEEN_TITLE, "s s", vga_number(desc->unseen).c_str(),
                  title);
    return text;
}

std::string vga_get_title(const VGA_DIALOG *desc) {
    const VGA_UID_DESC &row = vga_row_of(desc);
    std::string title;
    if (row.kind != VGA_KIND_MAIN && XmIsBulletinBoard(desc->widget)) {
        XmString string = nullptr;
        XtVaGetValues(desc->widget, XmNdialogTitle, &string, nullptr);
        const VGA_STRING owned(string);
        const VGA_TEXT text(static_cast<NB_CHAR *>(XmStringUnparse(
            string, nullptr, XmCHARSET_TEXT, XmMULTIBYTE_TEXT, nullptr, 0, XmOUTPUT_ALL)));
        title = text.get() != nullptr ? text.get() : "";
    } else {
        NB_CHAR *text = nullptr;
        XtVaGetValues(desc->shell, XmNtitle, &text, nullptr);
        title = text != nullptr ? text : "";
    }
    const std::string failures = failures_before(desc, "");
    title = title.starts_with(failures) ? title.substr(failures.size()) : title;
    const std::string name = std::string(row.name) + ": ";
    return gvga_display_names != 0 && title.starts_with(name) ? title.substr(name.size()) : title;
}

NB_VOID vga_set_title(VGA_DIALOG *desc, const NB_CHAR *title) {
    const VGA_UID_DESC &row = vga_row_of(desc);
    std::string text = gvga_display_names != 0 ? std::string(row.name) + ": " + title : title;
    text = failures_before(desc, text.c_str());
    if (row.kind != VGA_KIND_MAIN && XmIsBulletinBoard(desc->widget)) {
        VGA_STRING string(text.c_str());
        XtVaSetValues(desc->widget, XmNdialogTitle, string.get(), nullptr);
    } else {
        XtVaSetValues(desc->shell, XmNtitle, text.c_str(), nullptr);
    }
    if (row.kind == VGA_KIND_MAIN) {
        XtVaSetValues(desc->shell, XmNiconName, text.c_str(), nullptr);
    }
}

NB_VOID vga_release_dialog(VGA_DIALOG *dialog_ptr) {
    if (!NB_EMPTY_LIST(dialog_ptr->children_root_lqe)) {
        v0_assert_fatal(__FILE__, __LINE__, "NB_EMPTY_LIST(dialog_ptr->children_root_lqe)");
        return;
    }
    nba_remove_from_q(&dialog_ptr->child_lqe);
    if (vga_row_of(dialog_ptr).kind == VGA_KIND_MAIN) {
        dialog_ptr->parent = nullptr;
    }
    nba_destroy_handle(dialog_ptr->handle);
    dialog_ptr->handle = 0;
    dialog_ptr->context = nullptr;
    dialog_ptr->in_use = 0;
    dialog_ptr->unseen = 0;
}

NB_VOID vga_close_children(VGA_DIALOG *desc, NB_USHORT include_self, NB_USHORT force) {
    if (desc == nullptr || desc->closing != 0) {
        return;
    }
    desc->closing = 1;
    while (NB_LQE *link = nba_get_q_head(&desc->children_root_lqe)) {
        auto *child = reinterpret_cast<VGA_DIALOG *>(link);
        if (child->closing != 0) { /* further out on the stack: it goes when this returns */
            desc->closing = 0;
            return;
        }
        vga_close_children(child, 1, force);
    }
    if (include_self != 0) {
        close_self(desc, force);
    }
    desc->closing = 0;
}

NB_VOID vga_close_cb(Widget widget, XtPointer, XtPointer) {
    VGA_DIALOG *desc = vga_get_dialog_from_widget(widget);
    if (desc == nullptr || desc->in_use == 0) {
        return;
    }
    if (desc == gvga_main_dialog) {
        ask_exit(desc);
        return;
    }
    const auto may_close = vga_row_of(desc).may_close;
    if (may_close == nullptr || may_close(desc) != 0) {
        vga_close_children(desc, 1, 0);
    }
}

NB_VOID vga_command_cb(Widget widget, XtPointer client_data, XtPointer) {
    VGA_DIALOG *desc = vga_get_dialog_from_widget(widget);
    if (desc != nullptr && vga_row_of(desc).command_proc != nullptr) {
        vga_row_of(desc).command_proc(
            desc, static_cast<NB_USHORT>(*static_cast<const int *>(client_data)));
    }
}

NB_VOID vga_exit_cb(Widget widget, XtPointer, XtPointer) {
    VGA_DIALOG *desc = vga_get_dialog_from_widget(widget);
    if (desc != nullptr) {
        ask_exit(desc);
    }
}

NB_VOID vga_exit_confirm_cb(VGA_DIALOG *, VGA_ANSWER answer, NB_ULONG) {
    if (answer == VGA_ANSWER_OK && gvga_hooks.stop != nullptr) {
        gvga_hooks.stop();
    }
}

/* Walking. */

NB_VOID vga_for_each_dialog(NB_VOID (*visit)(VGA_DIALOG *desc, NB_VOID *data), NB_VOID *data) {
    vga_for_each_row([visit, data](const VGA_UID_DESC &row) {
        for (VGA_DIALOG *desc = row.first_desc; desc != nullptr; desc = desc->next_desc) {
            visit(desc, data);
        }
    });
}

VGA_DIALOG *vga_get_dialog_from_widget(Widget widget) {
    struct SEARCH {
        Widget at;
        NB_VOID *context;
        VGA_DIALOG *found;
    };
    for (; widget != nullptr; widget = XtParent(widget)) {
        SEARCH search = {widget, nullptr, nullptr};
        if (!XtIsShell(widget)) {
            search.context = vga_get_widget_context(widget);
            if (search.context == nullptr) {
                continue;
            }
        }
        /* Other widgets have a context of another kind, so what is found is compared. */
        vga_for_each_dialog(
            [](VGA_DIALOG *desc, NB_VOID *data) {
                auto *wanted = static_cast<SEARCH *>(data);
                const VGA_MODAL_DLG &box = desc->modal_dlg;
                bool is_widget = wanted->context == desc &&
                                 (wanted->at == desc->widget || wanted->at == box.dialog);
                if (is_widget || wanted->at == desc->shell || wanted->at == box.shell) {
                    wanted->found = desc;
                }
            },
            &search);
        if (search.found != nullptr) {
            return search.found;
        }
    }
    return nullptr;
}
