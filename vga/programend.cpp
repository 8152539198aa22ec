#include "programend.h"
#include "busycursor.h"
#include "details.h"
#include "globals.h"
#include "messages.h"
#include "modelfile.h"
#include "nbproblem.h"
#include "progressline.h"
#include "recordpattern.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include "vgadsdel.h"
#include "vganofbd.h"
#include "vgasysw.h"
#include <chrono>
#include <climits>
#include <cstdio>

namespace {

using CLOCK = std::chrono::steady_clock;

constexpr auto hung_after = std::chrono::seconds(5);
constexpr unsigned long ask_again_after = 500; /* milliseconds */

/* Fatal reports. */

constexpr NB_ULONG open_file_failed = 61444;

/* Show the report over the main dialog. */
template <class... Arguments>
NB_VOID show_error(NB_USHORT message, const NB_CHAR *types, Arguments... arguments) {
    vga_display_error_dialog(gvga_main_dialog, message, "fatalerror", vga_error_exit_cb, 0, types,
                             arguments...);
}

NB_VOID report_internal(NB_LONG, NB_ULONG, const NB_CHAR *file, NB_INT line) {
    vga_box_details(gvga_main_dialog, vga_place_details(file, line).c_str());
    show_error(VGA_MSG_FATAL_INTERNAL, "s i", file, line);
}

NB_VOID report_verb(NB_LONG, NB_ULONG subcode, const NB_CHAR *file, NB_INT line) {
    if (subcode == open_file_failed) {
        show_error(VGA_MSG_FATAL_OPEN_FILE, "");
    } else {
        vga_box_details(gvga_main_dialog, vga_place_details(file, line).c_str());
        show_error(VGA_MSG_FATAL_VERB, "x s i", subcode, file, line);
    }
}

NB_VOID report_no_node(NB_LONG, NB_ULONG, const NB_CHAR *, NB_INT) {
    show_error(VGA_MSG_NO_NODE, "");
}

NB_VOID report_shutting_down(NB_LONG, NB_ULONG, const NB_CHAR *, NB_INT) {
    vga_sysw_set_insensitive(gvga_main_dialog, VGA_MSG_SOFTWARE_GONE);
    vga_display_info_dialog(gvga_main_dialog, VGA_MSG_SYSTEM_SHUTDOWN, nullptr, vga_error_exit_cb,
                            0, "");
}

NB_VOID report_unavailable(NB_LONG, NB_ULONG, const NB_CHAR *, NB_INT) {
    vga_box_details(gvga_main_dialog, vga_unreachable_details(nof_last_failure()).c_str());
    show_error(VGA_MSG_UNAVAILABLE, "s", "sna");
}

NB_VOID report_unexpected(NB_LONG code, NB_ULONG subcode, const NB_CHAR *file, NB_INT line) {
    NB_CHAR reason[200];
    vga_print_msg(reason, sizeof(reason), VGA_MSG_DETAILS_REASON, "x x", code, subcode);
    const std::string details = std::string(reason) + "\n" + vga_place_details(file, line);
    vga_box_details(gvga_main_dialog, details.c_str());
    show_error(VGA_MSG_FATAL_UNEXPECTED, "x x s i", code, subcode, file, line);
}

struct REPORT {
    NB_LONG code;
    NB_VOID (*in_window)(NB_LONG code, NB_ULONG subcode, const NB_CHAR *file, NB_INT line);
};

/* Codes without a row are reported as unexpected; a null function is no report in a window. */
constexpr REPORT reports[] = {
    {VGA_EXIT_INTERNAL, report_internal},       {VGA_EXIT_USAGE, nullptr},
    {VGA_EXIT_VERB_FAILED, report_verb},        {VGA_EXIT_START_UP, nullptr},
    {VGA_EXIT_NO_NODE, report_no_node},         {VGA_EXIT_SHUTTING_DOWN, report_shutting_down},
    {VGA_EXIT_UNAVAILABLE, report_unavailable},
};

REPORT report_of(NB_LONG code) {
    for (const REPORT &report : reports) {
        if (report.code == code) {
            return report;
        }
    }
    return {code, report_unexpected};
}

/* Without a catalogue in English. */
NB_VOID print_where_installed(NB_VOID) {
    NB_CHAR line[PATH_MAX + 200];
    const NB_CHAR *log = nba_pd_log_file();
    if (*vga_message(VGA_MSG_WHERE_INSTALLED) != '\0') {
        vga_print_msg(line, sizeof(line), VGA_MSG_WHERE_INSTALLED, "s s", nba_prefix(),
                      vga_log_name().c_str());
    } else {
        snprintf(line, sizeof(line), "Installed in: %s; error log: %s.\n", nba_prefix(),
                 log != nullptr ? log : "standard error");
    }
    fputs(line, stderr);
}

NB_VOID print_start_up_failure(NB_VOID) {
    const NB_CHAR *text = vga_message(VGA_MSG_START_UP_FAILED);
    if (*text == '\0') {
        text = "Unable to start the SNA admin tool - please check error log\n";
    }
    fputs(text, stderr);
    print_where_installed();
}

NB_VOID log_exit(NB_USHORT known) {
    if (gvga_exit_code == VGA_EXIT_INTERNAL) {
        nba_pd_print_problem(NB_PD_ENDS_INTERNAL, 0, "s i", gvga_exit_file, gvga_exit_line);
    } else if (!known) {
        nba_pd_print_problem(NB_PD_ENDS_UNKNOWN, 0, "x x s i", gvga_exit_code, gvga_exit_subcode,
                             gvga_exit_file, gvga_exit_line);
    }
}

/* Without memory for a box there is nothing to wait for. */
NB_USHORT is_to_be_read(const VGA_MODAL_DLG &box) {
    return box.showing != 0 || !NB_EMPTY_LIST(box.queue);
}

/* Handles X events and timers only, so that nothing of the node's comes between. */
NB_VOID wait_until_read(NB_VOID) {
    gvga_exit_code = 0;
    while (gvga_exit_code == 0) {
        XtAppProcessEvent(gvga_appcontext, XtIMXEvent | XtIMTimer);
    }
    gvga_exit_code = 0;
}

/* Orderly close. */

CLOCK::time_point last_answer;

/* A node that was too busy to be left, and the handle it was left with. */
NB_ULONG busy_target, busy_handle;

VGA_NODE *next_connected_node(NB_VOID) {
    VGA_NODE *found = nullptr;
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&found](VGA_NODE &node) {
        if (node.freed) {
            vga_do_free_node_res(&node, 0, nullptr);
        } else if (found == nullptr) {
            found = &node;
        }
    });
    return found;
}

NB_VOID end_later(NB_VOID) {
    VGA_EXIT_AT(VGA_EXIT_NORMAL, 0, gvga_exit_closed_later);
}

/* Lets go of the next piece, and shows what is waited for.  Returns 0 when nothing is left. */
NB_USHORT free_next_piece(NB_VOID) {
    if (gvga_system->domain_target != 0 &&
        vga_free_system_resources(0, vga_process_shutdown) != 0) {
        vga_show_closing(nullptr);
        return 1;
    }
    if (gvga_system->net_target != 0 && vga_free_sna_net_resources(vga_process_shutdown) != 0) {
        vga_show_closing(nullptr);
        return 1;
    }
    while (VGA_NODE *node = next_connected_node()) {
        if (vga_do_free_node_res(node, 0, vga_process_shutdown) != 0) {
            vga_show_closing(node);
            return 1;
        }
    }
    return 0;
}

NB_VOID go_on(NB_VOID) {
    last_answer = CLOCK::now();
    if (free_next_piece() == 0) {
        end_later();
    }
}

NB_VOID ask_again(XtPointer, XtIntervalId *) {
    if (vga_issue_disconnect_node(busy_target, busy_handle, vga_process_shutdown) == 0) {
        go_on();
    }
}

} // namespace

NB_VOID vga_error_exit(NB_VOID) {
    REPORT report = report_of(gvga_exit_code);
    log_exit(report.in_window != report_unexpected);
    if (gvga_exit_code == VGA_EXIT_START_UP) {
        print_start_up_failure();
    } else if (gvga_exit_code == VGA_EXIT_UNAVAILABLE) {
        fputs(vga_unreachable_line(nof_last_failure()).c_str(), stderr);
    }
    NB_USHORT on_screen = gvga_main_dialog != nullptr && gvga_main_dialog->in_use &&
                          XtIsRealized(gvga_main_dialog->shell);
    if (report.in_window == nullptr || !on_screen) {
        return;
    }
    vga_display_hourglass(0);
    report.in_window(gvga_exit_code, gvga_exit_subcode, gvga_exit_file, gvga_exit_line);
    if (is_to_be_read(gvga_main_dialog->modal_dlg)) {
        wait_until_read();
    }
}

NB_VOID vga_error_exit_cb(VGA_DIALOG *, VGA_ANSWER, NB_ULONG) {
    VGA_EXIT_AT(VGA_EXIT_NORMAL, 0, gvga_exit_report_read);
}

NB_VOID vga_start_shutdown(NB_VOID) {
    if (gvga_closing) {
        if (CLOCK::now() - last_answer >= hung_after) {
            VGA_EXIT_AT(VGA_EXIT_NORMAL, 0, gvga_exit_closed);
        }
        return;
    }
    gvga_closing = 1;
    last_answer = CLOCK::now();
    vga_write_model_file();
    vga_close_children(gvga_main_dialog, 1, 1);
    vga_purge_verb_queue(0, 0, nullptr, 0, nullptr);
    vga_empty_immediate_queue();
    if (free_next_piece() == 0) {
        VGA_EXIT_AT(VGA_EXIT_NORMAL, 0, gvga_exit_closed);
    }
}

NB_VOID vga_process_shutdown(const VGA_PROCESS_STATE *work) {
    const NAP_VCB &vcb = *work->vcb;
    if (vcb.primary_rc == NAP_COMM_FAILURE && vcb.secondary_rc == NAP_CONNECTION_GONE) {
        end_later();
    } else if (vcb.primary_rc == NAP_STATE_CHECK && vcb.secondary_rc == NAP_NODE_BUSY) {
        /* For the operator, no answer yet. */
        busy_target = work->target;
        busy_handle = work->user_data;
        XtAppAddTimeOut(gvga_appcontext, ask_again_after, ask_again, nullptr);
    } else {
        go_on();
    }
}

NB_VOID vga_node_dead_info_cb(VGA_DIALOG *, VGA_ANSWER, NB_ULONG) {
    if (!gvga_supported[VGA_SUPPORTED_CLIENT_SERVER]) {
        vga_start_shutdown();
    }
}

NB_INT vga_xerror_handler(Display *display, XErrorEvent *event) {
    NB_CHAR text[300] = "";
    XGetErrorText(display, event->error_code, text, sizeof(text));
    if (!nba_is_silenced(NB_TRACE_X_ERRORS)) {
        nba_pd_print_exception(NB_PD_X_ERROR, 0, "i i s", event->error_code, event->request_code,
                               text);
    }
    return 0;
}
