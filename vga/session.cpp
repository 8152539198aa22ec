#include "session.h"

#include "globals.h"
#include "messages.h"
#include "programend.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include <X11/SM/SMlib.h>
#include <X11/Shell.h>
#include <vector>

namespace {

/* What the session waits for; null: nothing. */
XtCheckpointToken asked;

/* Tells the session what the operator has answered. */
NB_VOID answer(bool stay) {
    if (const XtCheckpointToken token = asked; token != nullptr) {
        asked = nullptr;
        token->request_cancel = stay ? True : False;
        XtSessionReturnToken(token);
    }
}

NB_VOID question_answered(VGA_DIALOG *, VGA_ANSWER given, NB_ULONG) {
    answer(given != VGA_ANSWER_OK);
}

/* The session has given this program its turn to ask. */
NB_VOID ask(Widget, XtPointer, XtPointer call_data) {
    auto *const token = static_cast<XtCheckpointToken>(call_data);
    const bool can_ask = gvga_main_dialog != nullptr && gvga_main_dialog->in_use != 0 &&
                         !gvga_closing && gvga_exit_code == 0 && !token->cancel_shutdown &&
                         asked == nullptr;
    if (!can_ask) {
        XtSessionReturnToken(token);
        return;
    }
    asked = token;
    vga_display_confirm_dialog(gvga_main_dialog, VGA_MSG_CONFIRM_EXIT, nullptr, question_answered,
                               0, "");
}

/* There is nothing to save: what was changed is in the node, and what is being entered is what the
 * question is about. */
NB_VOID save(Widget shell, XtPointer, XtPointer call_data) {
    const auto *token = static_cast<XtCheckpointToken>(call_data);
    if (token->shutdown && !token->fast && token->interact_style == SmInteractStyleAny) {
        XtAddCallback(shell, XtNinteractCallback, ask, nullptr);
    }
}

NB_VOID answer_later(XtPointer, XtIntervalId *) {
    answer(false);
}

/* Another program, or the operator there, has called the logout off.  The toolkit loses track of an
 * answer that it gets in here, and would keep the next logout waiting for ever. */
NB_VOID called_off(Widget, XtPointer, XtPointer) {
    const bool shown = gvga_main_dialog != nullptr && gvga_main_dialog->modal_dlg.showing != 0 &&
                       gvga_main_dialog->modal_dlg.callback == question_answered;
    XtAppAddTimeOut(gvga_appcontext, 0, answer_later, nullptr);
    if (shown) {
        vga_close_modal_dialog(gvga_main_dialog);
    }
}

NB_VOID end(Widget, XtPointer, XtPointer) {
    if (gvga_main_dialog == nullptr) {
        VGA_EXIT(VGA_EXIT_NORMAL, 0);
    } else {
        vga_start_shutdown();
    }
}

} // namespace

void vga_join_session(int argc, char **argv) {
    std::vector<String> command(argv, argv + argc);
    command.push_back(nullptr);
    XtVaSetValues(gvga_toplevel, XtNrestartCommand, command.data(), nullptr);
    XtAddCallback(gvga_toplevel, XtNsaveCallback, save, nullptr);
    XtAddCallback(gvga_toplevel, XtNcancelCallback, called_off, nullptr);
    XtAddCallback(gvga_toplevel, XtNdieCallback, end, nullptr);
}

void vga_leave_session() {
    if (gvga_toplevel != nullptr) {
        XtVaSetValues(gvga_toplevel, XtNjoinSession, False, nullptr);
    }
}
