/* Message boxes: one a dialog, made when it is first needed, for errors, information and questions.
 * A message that comes while the operator holds a button or has a menu up (firewall.h), or while
 * the dialog's box shows another one, waits in the dialog's queue; a question takes the place of a
 * question.  Messages of a dialog that was closed are dropped.
 *
 * Nobody waits for an answer: it comes in the callback (see VGA_MODAL_CB).
 * Help keys are literals: they are kept, not copied.  With null a message has the key that stands
 * beside its text, if any (vga_message_help). */
#ifndef MESSAGEBOX_H
#define MESSAGEBOX_H

#include "nbbase.h"
#include "nofrec.h"
#include <X11/Intrinsic.h>
#include <Xm/Xm.h>

struct VGA_DIALOG;

#define VGA_BOX_COLUMNS 60 /* of its text, where lines are broken */

enum VGA_MODAL_TYPE : NB_USHORT { VGA_MODAL_ERROR, VGA_MODAL_INFO, VGA_MODAL_CONFIRM };

/* Which button took the box down.  Errors and information always give VGA_ANSWER_OK; closing a
 * question by the window manager or with Escape gives VGA_ANSWER_CANCEL. */
enum VGA_ANSWER : NB_USHORT {
    VGA_ANSWER_CANCEL,
    VGA_ANSWER_OK,
    VGA_ANSWER_NO,
    VGA_ANSWER_OK_TO_ALL,
};

/* Called when the box is down.  Not called when the dialog `parent` was closed meanwhile or another
 * question took the place of this one.  `client_data` is the asker's: a handle, never a pointer. */
typedef NB_VOID (*VGA_MODAL_CB)(VGA_DIALOG *parent, VGA_ANSWER answer, NB_ULONG client_data);

struct VGA_MODAL_DLG {
    Widget shell; /* null until the first message */
    Widget dialog;
    Widget ok_to_all_button;
    Widget no_button;
    Widget cancel_button;
    Widget details_button, copy_button;
    VGA_MODAL_TYPE type; /* of the message that is or was shown last */
    NB_USHORT showing;
    VGA_MODAL_CB callback; /* may be null */
    NB_ULONG client_data;
    const NB_CHAR *help_key;
    NB_USHORT loses;         /* flag: the message displayed next is a question about a loss */
    NB_CHAR *text, *details; /* of that message, from XtMalloc; without details null */
    NB_USHORT details_shown;
    NB_CHAR *next_details; /* of the message displayed next */
    Widget beside; /* the field that the error shown next is about; null: none that is known */
    NB_LQE queue;  /* messages that wait */
};

/* Formats a message as vga_print_msg does and shows it over `parent`; over the main dialog for
 * null, and as a warning on standard error when there is none either.  Long lines are broken.
 * `callback` may be null. */
NB_VOID vga_display_error_dialog(VGA_DIALOG *parent, NB_USHORT message, const NB_CHAR *help_key,
                                 VGA_MODAL_CB callback, NB_ULONG client_data, const NB_CHAR *types,
                                 ...);
NB_VOID vga_display_info_dialog(VGA_DIALOG *parent, NB_USHORT message, const NB_CHAR *help_key,
                                VGA_MODAL_CB callback, NB_ULONG client_data, const NB_CHAR *types,
                                ...);

/* The next message of `parent` that is displayed, even if it has to wait, is a question about
 * something that would be lost: Return says Cancel. */
NB_VOID vga_question_loses(VGA_DIALOG *parent);

/* The next message of `parent` (null: the main dialog) that is displayed, even if it has to wait,
 * has these details, in the locale's characters: codes and whatever else helps those who look into
 * it.  Its box has a button that shows them, and one that copies message and details to where mouse
 * and keys paste from.  Copied; nothing for a dialog that is not open. */
NB_VOID vga_box_details(VGA_DIALOG *parent, const NB_CHAR *details);

/* The error of `parent` that was displayed last is about this field: its box stands beside the
 * dialog or, on a small screen, beside the field.  Without the call it stands beside what has the
 * keyboard in the dialog; other messages, and those of windows, stand over the middle. */
NB_VOID vga_place_box_beside(VGA_DIALOG *parent, Widget field);

/* A question with OK and Cancel. */
NB_VOID vga_display_confirm_dialog(VGA_DIALOG *parent, NB_USHORT message, const NB_CHAR *help_key,
                                   VGA_MODAL_CB callback, NB_ULONG client_data,
                                   const NB_CHAR *types, ...);

/* A question about one of several things: "No" goes on with the next, Cancel ends the series, and
 * "OK to all", where `show_ok_to_all` is set, answers the rest of it. */
NB_VOID vga_display_confirm_each_dialog(VGA_DIALOG *parent, NB_USHORT message,
                                        const NB_CHAR *help_key, VGA_MODAL_CB callback,
                                        NB_ULONG client_data, NB_USHORT show_ok_to_all,
                                        const NB_CHAR *types, ...);

/* The common step.  OWNS: `text`, on every path.  Frees it and does nothing when `parent` is not
 * open.  The two flags count for questions only. */
NB_VOID vga_display_modal_dialog(VGA_MODAL_TYPE type, VGA_DIALOG *parent, XmString text,
                                 const NB_CHAR *help_key, VGA_MODAL_CB callback,
                                 NB_ULONG client_data, NB_USHORT show_ok_to_all, NB_USHORT show_no);

/* Shows what waits, for one dialog or for all, if nothing stands in the way. */
NB_VOID vga_check_modal_dialog_queue(VGA_DIALOG *desc);
NB_VOID vga_check_modal_dialog_queues(NB_VOID);

/* Has the queues checked when the callback that is running has returned. */
NB_VOID vga_schedule_modal_dialog_check(NB_VOID);

/* Takes a dialog's box down without an answer; what waits is shown next.  The second does so only
 * for a question, for whoever asked and finds that it no longer matters. */
NB_VOID vga_close_modal_dialog(VGA_DIALOG *desc);
NB_VOID vga_close_confirm_dialog(VGA_DIALOG *desc);

/* Takes the box down and drops what waits: the dialog is closing. */
NB_VOID vga_discard_modal_dialogs(VGA_DIALOG *desc);

/* Shows over `parent` why a verb failed: message 167 with the reason, and its codes as the details
 * where the caller has given none that say more.
 * REQUIRES: the block has the length that the verb table states. */
NB_VOID vga_display_verb_error(VGA_DIALOG *parent, const NAP_VCB *vcb);

/* The buttons of the box. */
NB_VOID vga_modal_dialog_cb(Widget widget, XtPointer client_data, XtPointer call_data);

#endif
