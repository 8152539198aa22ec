#include "messagebox.h"
#include "boxplace.h"
#include "boxwidgets.h"
#include "busycursor.h"
#include "details.h"
#include "firewall.h"
#include "globals.h"
#include "holders.h"
#include "marks.h"
#include "messages.h"
#include "toolkit.h"
#include "verberror.h"
#include "verbqueue.h"
#include "vgadgutl.h"
#include "wraptext.h"
#include <cstdarg>
#include <cstdlib>
#include <utility>

namespace {

constexpr NB_USHORT text_size = 4096;

XtIntervalId check_timer; /* 0: no check is due */

VGA_AREA area_of(Widget widget) {
    Position x = 0, y = 0, left = 0, top = 0;
    Dimension width = 0, height = 0;
    XtVaGetValues(widget, XmNx, &left, XmNy, &top, XmNwidth, &width, XmNheight, &height, nullptr);
    if (XtIsShell(widget)) {
        XtTranslateCoords(widget, 0, 0, &x, &y);
    } else {
        XtTranslateCoords(XtParent(widget), left, top, &x, &y); /* a gadget, too */
    }
    return {x, y, width, height};
}

/* To be called when the box has its size. */
NB_VOID place_beside(const VGA_DIALOG *parent, Widget field) {
    const VGA_AREA screen = {0, 0, WidthOfScreen(gvga_screen), HeightOfScreen(gvga_screen)};
    const VGA_AREA place = vga_place_beside(area_of(parent->modal_dlg.dialog),
                                            area_of(parent->shell), area_of(field), screen);
    XtVaSetValues(parent->modal_dlg.dialog, XmNx, static_cast<Position>(place.x), XmNy,
                  static_cast<Position>(place.y), nullptr);
}

/* What an error over the dialog is about; null: over the middle. */
Widget subject_of(const VGA_DIALOG *parent, VGA_MODAL_TYPE type) {
    if (type != VGA_MODAL_ERROR || vga_row_of(parent).kind == VGA_KIND_MAIN) {
        return nullptr;
    }
    const Widget beside = parent->modal_dlg.beside;
    return beside != nullptr ? beside : XmGetFocusWidget(parent->widget);
}

/* Shows the message now, in place of one that is shown. */
NB_VOID show(MODAL_REQUEST &request) {
    VGA_DIALOG *parent = request.parent;
    VGA_MODAL_DLG &box = parent->modal_dlg;
    if (box.dialog == nullptr) {
        v0_assert_fatal(__FILE__, __LINE__, "parent->modal_dlg.dialog != NULL");
        return;
    }
    vga_fill_box(box, request);
    box.type = request.type;
    box.callback = request.callback;
    box.client_data = request.client_data;
    box.help_key = request.help_key;
    box.showing = 1; /* before the dialog is shown, which looks for waiting messages */
    if (vga_row_of(parent).kind != VGA_KIND_MAIN && parent->parent != nullptr) {
        vga_raise_dialog(parent->parent);
    }
    vga_display_dialog(parent);
    Widget subject = subject_of(parent, request.type);
    box.beside = nullptr;
    XtVaSetValues(box.dialog, XmNdefaultPosition, subject == nullptr, nullptr);
    XtManageChild(box.dialog);
    if (request.type == VGA_MODAL_CONFIRM && request.loses != 0) {
        XmProcessTraversal(box.cancel_button, XmTRAVERSE_CURRENT);
    }
    if (subject != nullptr) {
        place_beside(parent, subject);
    }
    XRaiseWindow(gvga_display, XtWindow(box.shell)); /* a box that was up lies below by now */
    vga_hourglass_new_window(parent);
}

NB_VOID take_down(VGA_MODAL_DLG &box) {
    XtUnmanageChild(box.dialog);
    box.showing = 0;
    box.callback = nullptr;
}

/* The queue. */

/* OWNS: the request's text and details from here on. */
NB_VOID enqueue(const MODAL_REQUEST &request) {
    VGA_STRING text(request.text);
    auto *waiting = static_cast<MODAL_REQUEST *>(malloc(sizeof(MODAL_REQUEST)));
    if (waiting == nullptr) {
        XtFree(request.details);
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
        return;
    }
    *waiting = request;
    text.release();
    nba_add_to_q_tail(&request.parent->modal_dlg.queue, &waiting->links);
}

/* Takes the first waiting message out of the queue; null when there is none. */
VGA_OWNED<MODAL_REQUEST> dequeue(VGA_MODAL_DLG &box) {
    NB_LQE *first = nba_get_q_head(&box.queue);
    if (first != nullptr) {
        nba_remove_from_q(first);
    }
    return VGA_OWNED<MODAL_REQUEST>(reinterpret_cast<MODAL_REQUEST *>(first));
}

NB_VOID drop_queue(VGA_MODAL_DLG &box) {
    while (VGA_OWNED<MODAL_REQUEST> request = dequeue(box)) {
        VGA_STRING text(request->text);
        XtFree(request->details);
    }
}

NB_VOID check_timer_proc(XtPointer, XtIntervalId *) {
    check_timer = 0;
    vga_check_modal_dialog_queues();
}

/* The text. */

/* Formats the message and shows it; the flags are those of vga_display_modal_dialog. */
NB_VOID display(VGA_MODAL_TYPE type, VGA_DIALOG *parent, NB_USHORT message,
                const MODAL_REQUEST &rest, const NB_CHAR *types, va_list arguments) {
    NB_CHAR text[text_size];
    vga_format_text(text, text_size, vga_message(message), types != nullptr ? types : "",
                    arguments);
    if (parent == nullptr) {
        parent = gvga_main_dialog;
    }
    if (parent == nullptr) {
        if (gvga_appcontext != nullptr) {
            XtAppWarning(gvga_appcontext, text);
        }
        return;
    }
    VGA_OWNED<NB_CHAR> lines(vga_wrap_text(text, VGA_BOX_COLUMNS));
    XmString string = XmStringCreateLtoR(lines ? lines.get() : text,
                                         const_cast<NB_CHAR *>(XmFONTLIST_DEFAULT_TAG));
    const NB_CHAR *help_key = rest.help_key != nullptr ? rest.help_key : vga_message_help(message);
    vga_display_modal_dialog(type, parent, string, help_key, rest.callback, rest.client_data,
                             rest.show_ok_to_all, rest.show_no);
}

MODAL_REQUEST request_with(const NB_CHAR *help_key, VGA_MODAL_CB callback, NB_ULONG client_data) {
    MODAL_REQUEST request{};
    request.help_key = help_key;
    request.callback = callback;
    request.client_data = client_data;
    return request;
}

/* Which button it was: only questions have more than one. */
VGA_ANSWER answer_of(const VGA_MODAL_DLG &box, Widget widget, XtPointer call_data) {
    const auto *call = static_cast<const XmAnyCallbackStruct *>(call_data);
    if (box.type != VGA_MODAL_CONFIRM || (call != nullptr && call->reason == XmCR_OK)) {
        return VGA_ANSWER_OK;
    }
    return widget == box.ok_to_all_button ? VGA_ANSWER_OK_TO_ALL
           : widget == box.no_button      ? VGA_ANSWER_NO
                                          : VGA_ANSWER_CANCEL;
}

} // namespace

/* Showing. */

NB_VOID vga_display_error_dialog(VGA_DIALOG *parent, NB_USHORT message, const NB_CHAR *help_key,
                                 VGA_MODAL_CB callback, NB_ULONG client_data, const NB_CHAR *types,
                                 ...) {
    va_list arguments;
    va_start(arguments, types);
    display(VGA_MODAL_ERROR, parent, message, request_with(help_key, callback, client_data), types,
            arguments);
    va_end(arguments);
}

NB_VOID vga_display_info_dialog(VGA_DIALOG *parent, NB_USHORT message, const NB_CHAR *help_key,
                                VGA_MODAL_CB callback, NB_ULONG client_data, const NB_CHAR *types,
                                ...) {
    va_list arguments;
    va_start(arguments, types);
    display(VGA_MODAL_INFO, parent, message, request_with(help_key, callback, client_data), types,
            arguments);
    va_end(arguments);
}

NB_VOID vga_display_confirm_dialog(VGA_DIALOG *parent, NB_USHORT message, const NB_CHAR *help_key,
                                   VGA_MODAL_CB callback, NB_ULONG client_data,
                                   const NB_CHAR *types, ...) {
    va_list arguments;
    va_start(arguments, types);
    display(VGA_MODAL_CONFIRM, parent, message, request_with(help_key, callback, client_data),
            types, arguments);
    va_end(arguments);
}

NB_VOID vga_display_confirm_each_dialog(VGA_DIALOG *parent, NB_USHORT message,
                                        const NB_CHAR *help_key, VGA_MODAL_CB callback,
                                        NB_ULONG client_data, NB_USHORT show_ok_to_all,
                                        const NB_CHAR *types, ...) {
    MODAL_REQUEST request = request_with(help_key, callback, client_data);
    request.show_ok_to_all = show_ok_to_all;
    request.show_no = 1;
    va_list arguments;
    va_start(arguments, types);
    display(VGA_MODAL_CONFIRM, parent, message, request, types, arguments);
    va_end(arguments);
}

NB_VOID vga_display_modal_dialog(VGA_MODAL_TYPE type, VGA_DIALOG *parent, XmString text,
                                 const NB_CHAR *help_key, VGA_MODAL_CB callback,
                                 NB_ULONG client_data, NB_USHORT show_ok_to_all,
                                 NB_USHORT show_no) {
    VGA_STRING owned(text);
    if (parent == nullptr || parent->in_use == 0) {
        return;
    }
    if (type > VGA_MODAL_CONFIRM) {
        v0_assert_fatal(__FILE__, __LINE__, "type <= VGA_MODAL_CONFIRM");
        return;
    }
    VGA_MODAL_DLG &box = parent->modal_dlg;
    const NB_USHORT loses = std::exchange(box.loses, NB_USHORT{0});
    NB_USHORT blocked = vga_modal_firewall_up();
    if (box.dialog == nullptr && blocked == 0) {
        vga_make_box(parent);
    }
    MODAL_REQUEST request = {{},
                             type,
                             parent,
                             text,
                             help_key,
                             callback,
                             client_data,
                             show_ok_to_all,
                             show_no,
                             loses,
                             std::exchange(box.next_details, nullptr)};
    NB_USHORT replaces = type == VGA_MODAL_CONFIRM && box.type == VGA_MODAL_CONFIRM;
    if (blocked != 0 || (box.showing != 0 && replaces == 0)) {
        owned.release();
        enqueue(request);
        return;
    }
    show(request);
}

NB_VOID vga_question_loses(VGA_DIALOG *parent) {
    parent->modal_dlg.loses = 1;
}

NB_VOID vga_box_details(VGA_DIALOG *parent, const NB_CHAR *details) {
    parent = parent != nullptr ? parent : gvga_main_dialog;
    if (parent != nullptr && parent->in_use != 0) {
        XtFree(parent->modal_dlg.next_details);
        parent->modal_dlg.next_details = XtNewString(details);
    }
}

NB_VOID vga_place_box_beside(VGA_DIALOG *parent, Widget field) {
    if (parent == nullptr || field == nullptr || parent->in_use == 0) {
        return;
    }
    VGA_MODAL_DLG &box = parent->modal_dlg;
    if (box.showing != 0 && NB_EMPTY_LIST(box.queue)) {
        if (box.type == VGA_MODAL_ERROR) {
            place_beside(parent, field);
        }
        return;
    }
    box.beside = field;
}

/* The queues. */

NB_VOID vga_check_modal_dialog_queue(VGA_DIALOG *desc) {
    VGA_MODAL_DLG &box = desc->modal_dlg;
    if (desc->in_use == 0) {
        drop_queue(box);
        return;
    }
    if (box.showing != 0 || NB_EMPTY_LIST(box.queue) || vga_modal_firewall_up() != 0) {
        return;
    }
    if (box.dialog == nullptr) {
        vga_make_box(desc);
    }
    VGA_OWNED<MODAL_REQUEST> request = dequeue(box);
    VGA_STRING text(request->text);
    show(*request);
}

NB_VOID vga_check_modal_dialog_queues(NB_VOID) {
    vga_for_each_dialog([](VGA_DIALOG *desc, NB_VOID *) { vga_check_modal_dialog_queue(desc); },
                        nullptr);
}

NB_VOID vga_schedule_modal_dialog_check(NB_VOID) {
    if (check_timer == 0 && gvga_appcontext != nullptr) {
        check_timer = XtAppAddTimeOut(gvga_appcontext, 0, check_timer_proc, nullptr);
    }
}

/* Taking down. */

NB_VOID vga_close_modal_dialog(VGA_DIALOG *desc) {
    if (desc->modal_dlg.showing != 0) {
        take_down(desc->modal_dlg);
        vga_schedule_modal_dialog_check();
    }
}

NB_VOID vga_close_confirm_dialog(VGA_DIALOG *desc) {
    if (desc->modal_dlg.type == VGA_MODAL_CONFIRM) {
        vga_close_modal_dialog(desc);
    }
}

NB_VOID vga_discard_modal_dialogs(VGA_DIALOG *desc) {
    drop_queue(desc->modal_dlg);
    vga_close_modal_dialog(desc);
    VGA_MODAL_DLG &box = desc->modal_dlg;
    for (NB_CHAR **text : {&box.text, &box.details, &box.next_details}) {
        XtFree(std::exchange(*text, nullptr));
    }
}

NB_VOID vga_modal_dialog_cb(Widget widget, XtPointer, XtPointer call_data) {
    VGA_DIALOG *desc = vga_get_dialog_from_widget(widget);
    if (desc == nullptr || desc->modal_dlg.showing == 0) {
        return;
    }
    VGA_ANSWER answer = answer_of(desc->modal_dlg, widget, call_data);
    VGA_MODAL_CB callback = desc->modal_dlg.callback;
    NB_ULONG client_data = desc->modal_dlg.client_data;
    vga_close_modal_dialog(desc);
    if (callback != nullptr) {
        callback(desc, answer, client_data);
    }
}

NB_VOID vga_display_verb_error(VGA_DIALOG *parent, const NAP_VCB *vcb) {
    const NB_CHAR *help_key;
    VGA_OWNED<NB_CHAR> reason(
        vga_get_verb_error_message(vcb->opcode, vcb->primary_rc, vcb->secondary_rc, &help_key));
    if (reason) {
        VGA_DIALOG *over = parent != nullptr ? parent : gvga_main_dialog;
        if (over != nullptr && over->modal_dlg.next_details == nullptr) {
            vga_box_details(
                over,
                vga_verb_details(*vcb, vga_verb_resource(vcb), vga_marked_node(over)).c_str());
        }
        vga_display_error_dialog(parent, VGA_MSG_VERB_FAILED, help_key, nullptr, 0, "s",
                                 reason.get());
    }
}
