/* The program: start-up in its order, the main loop, the exit. */
#include "busycursor.h"
#include "childprocess.h"
#include "deletion.h"
#include "details.h"
#include "form.h"
#include "globals.h"
#include "hooks.h"
#include "messagebox.h"
#include "messageline.h"
#include "messages.h"
#include "nbproblem.h"
#include "nodestate.h"
#include "nofverbs.h"
#include "programend.h"
#include "progressline.h"
#include "recordtypes.h"
#include "rememberedlines.h"
#include "session.h"
#include "settingsdialogs.h"
#include "startstopbatch.h"
#include "startup.h"
#include "toolkit.h"
#include "verberror.h"
#include "verbqueue.h"
#include "vgadgutl.h"
#include "vgadsbld.h"
#include "vgadsdel.h"
#include "vgaindct.h"
#include "vganodew.h"
#include "vgasysw.h"
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace {

/* Hooks. */

/* What the operator should know of the domain before anything else. */
NB_VOID tell_of_limits(VGA_DIALOG *window) {
    if (gvga_system->domain_target == 0) {
        vga_display_info_dialog(window, VGA_MSG_NO_MASTER, nullptr, nullptr, 0, "");
    }
    if (gvga_system->domain_target == 0 || gvga_read_only) {
        vga_display_info_dialog(window, VGA_MSG_READ_ONLY, nullptr, nullptr, 0, "");
    }
}

NB_VOID exit_without_node(NB_VOID) {
    VGA_EXIT_AT(VGA_EXIT_NO_NODE, 0, gvga_exit_no_node);
}

/* Nothing follows; it marks the box, which is out of date when a node comes after all. */
NB_VOID refusal_read(VGA_DIALOG *, VGA_ANSWER, NB_ULONG) {}

NB_VOID forget_refusal(NB_VOID) {
    const bool shown = gvga_main_dialog != nullptr && gvga_main_dialog->modal_dlg.showing != 0 &&
                       gvga_main_dialog->modal_dlg.callback == refusal_read;
    if (shown) {
        vga_close_modal_dialog(gvga_main_dialog);
    }
}

/* A node that cannot be connected stays in its window and may come back, so that alone is no
 * reason to end.  When none can be, there is nothing to see, and the operator is told why. */
NB_VOID tell_of_refusal(VGA_DIALOG *window, const VGA_NODE &first) {
    NB_USHORT connected = 0;
    vga_for_each(gvga_system->nodes, &VGA_NODE::links,
                 [&connected](VGA_NODE &node) { connected |= node.target != 0; });
    if (connected || first.refusal.primary_rc == NAP_OK) {
        return;
    }
    const NB_CHAR *help_key;
    const VGA_OWNED<NB_CHAR> reason(vga_get_verb_error_message(
        NAP_CONNECT_NODE, first.refusal.primary_rc, first.refusal.secondary_rc, &help_key));
    if (reason) {
        NAP_VCB header = {};
        header.opcode = NAP_CONNECT_NODE;
        header.primary_rc = first.refusal.primary_rc;
        header.secondary_rc = first.refusal.secondary_rc;
        const std::string name(first.name, strnlen(first.name, sizeof(first.name)));
        vga_box_details(window, vga_verb_details(header, "", name).c_str());
        vga_display_error_dialog(window, VGA_MSG_NODE_REFUSES, help_key, refusal_read, 0, "cs s",
                                 static_cast<NB_INT>(sizeof(first.name)), first.name, reason.get());
    }
}

NB_VOID node_list_changed(VGA_NODE *node, VGA_NODE_CHANGE change) {
    if (change != VGA_NODE_REMOVED) {
        vga_update_node_viewer(node);
        if (node->connection == VGA_CONNECTED) {
            forget_refusal();
        }
    } else if (gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] && gvga_system->built && !gvga_closing &&
               AVL_FIRST(gvga_system->nodes) == nullptr) {
        exit_without_node();
    }
}

NB_VOID node_died(VGA_NODE *node) {
    vga_display_info_dialog(gvga_main_dialog, VGA_MSG_NODE_DEAD, nullptr, vga_node_dead_info_cb, 0,
                            "cs", static_cast<NB_INT>(sizeof(node->name)), node->name);
}

NB_VOID verb_purged(NB_USHORT opcode, NB_ULONG user_data) {
    vga_form_verb_purged(opcode, user_data);
    vga_operation_purged(opcode, user_data);
    vga_deletion_verb_purged(opcode, user_data);
}

NB_VOID set_hooks(NB_VOID) {
    gvga_hooks.indication = vga_dispatch_indication;
    gvga_hooks.model_built = vga_system_built;
    gvga_hooks.build_progress = vga_show_build_progress;
    gvga_hooks.stop = vga_start_shutdown;
    gvga_hooks.node_list_changed = node_list_changed;
    gvga_hooks.node_died = node_died;
    gvga_hooks.record_awaited = vga_operations_follow;
    gvga_hooks.verb_purged = verb_purged;
    gvga_hooks.not_stored = vga_tell_not_stored;
    gvga_hooks.outcome = vga_listw_outcome;
    gvga_hooks.line_added = vga_listw_line_added;
    gvga_hooks.wake = vga_add_null_timeout;
    gvga_hooks.flush = vga_update_display;
    v0_set_fatal_handler(vga_request_exit_fatal);
}

/* Start and loop. */

NB_USHORT show_first_window(NB_VOID) {
    const bool domain = gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] != 0;
    if ((domain ? vga_display_system_window(0) : vga_display_node_window(nullptr, 0)) == 0) {
        gvga_exit_code = 0; /* whatever the window asked for: it is the start that has failed */
        VGA_EXIT_AT(VGA_EXIT_START_UP, 0, domain ? gvga_exit_system_window : gvga_exit_node_window);
        return 0;
    }
    gvga_main_dialog = gvga_first_dialog;
    XtRealizeWidget(gvga_toplevel);
    XSetErrorHandler(vga_xerror_handler);
    vga_display_hourglass(1);
    vga_start_build_system();
    return 1;
}

/* One round: completions that are known already come before any event of the toolkit. */
NB_VOID do_one_round(NB_VOID) {
    vga_drain_immediate_queue();
    if (gvga_exit_code != 0) {
        return;
    }
    XtInputMask pending = XtAppPending(gvga_appcontext);
    if (pending == 0) {
        XtAppProcessEvent(gvga_appcontext, XtIMAll);
    } else if ((pending & (XtIMXEvent | XtIMTimer)) != 0) {
        XtAppProcessEvent(gvga_appcontext, XtIMXEvent | XtIMTimer);
    } else if ((pending & XtIMAlternateInput) != 0) {
        XtAppProcessEvent(gvga_appcontext, XtIMAlternateInput);
    }
}

NB_VOID read_environment(NB_VOID) {
    signal(SIGTERM, vga_signal_catcher);
    signal(SIGCHLD, vga_signal_catcher);
    signal(SIGPIPE, SIG_IGN); /* a display that ends is reported by the X library */
    gvga_variant_x = 0;
    gvga_variant_y = 1;
    vga_set_locale_environment();
    const NB_CHAR *display_names = getenv("QUILMSG");
    gvga_display_names = display_names != nullptr && display_names[0] == '1';
}

/* Some node has still to be defined. */
NB_USHORT is_node_unconfigured(NB_VOID) {
    NB_USHORT found = 0;
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&found](const VGA_NODE &node) {
        found |= node.node_state == NAP_NODE_UNCONFIGURED;
    });
    return found;
}

NB_VOID show_contents(VGA_NODE *first) {
    if (gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] == 0) {
        if (vga_display_node_window(first, 1) == 0) {
            nba_pd_print_problem(NB_PD_WINDOW, NB_PD_WINDOW_NODE, nullptr);
        }
        return;
    }
    gvga_system->window = gvga_first_dialog;
    gvga_first_dialog->parent_item = gvga_system;
    if (vga_display_system_window(1) == 0) {
        nba_pd_print_problem(NB_PD_WINDOW, NB_PD_WINDOW_SYSTEM, nullptr);
    }
}

} // namespace

NB_VOID vga_system_built(NB_VOID) {
    vga_display_hourglass(0);
    if (gvga_first_dialog == nullptr) {
        return;
    }
    auto *node = static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes));
    if (node == nullptr) {
        if (gvga_supported[VGA_SUPPORTED_CLIENT_SERVER]) {
            exit_without_node();
        } else {
            v0_assert(__FILE__, __LINE__, "FALSE");
        }
        return;
    }
    show_contents(node);
    tell_of_limits(gvga_first_dialog);
    tell_of_refusal(gvga_first_dialog, *node);
    if (gvga_supported[VGA_SUPPORTED_CLIENT_SERVER] && !gvga_read_only && is_node_unconfigured()) {
        vga_display_start_help_dialog(nullptr, 1);
    }
    gvga_first_dialog = nullptr;
}

int main(int argc, char **argv) {
    if (!nba_check_prefix("quiladmin")) {
        return VGA_EXIT_START_UP;
    }
    read_environment();
    if (vga_check_print_usage(&argc, argv)) {
        if (gvga_exit_code != 0) {
            vga_error_exit();
        }
        return gvga_exit_code;
    }
    set_hooks();
    NB_INT new_argc;
    NB_CHAR **new_argv;
    vga_add_params_to_command_line(argc, argv, &new_argc, &new_argv);
    NB_USHORT front_end = vga_initialise_frontend(&new_argc, new_argv);
    if (front_end) {
        vga_join_session(argc, argv);
    }
    if (front_end && vga_initialise_backend() && show_first_window()) {
        while (gvga_exit_code == 0) {
            do_one_round();
        }
    }
    gvga_hooks.node_list_changed = nullptr; /* what is freed from here on is no news */
    vga_terminate_backend();
    if (gvga_exit_code != 0 && gvga_exit_code != VGA_EXIT_NORMAL) {
        vga_error_exit();
    } else {
        gvga_exit_code = 0;
    }
    if (gvga_system != nullptr) {
        vga_destroy_data_structures();
    }
    if (new_argv != argv) {
        free(new_argv);
    }
    if (front_end) {
        vga_leave_session();
        vga_terminate_frontend();
    }
    return gvga_exit_code;
}
