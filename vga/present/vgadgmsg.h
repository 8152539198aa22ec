/* Message boxes: one a dialog, made when it is first needed, for errors, information and questions.
 * A message that comes while the operator holds a button or has a menu up (vgadgfw.h), or while the
 * dialog's box shows another one, waits in the dialog's queue; a question takes the place of a
 * question.  Messages of a dialog that was closed are dropped.
 *
 * Nobody waits for an answer: it comes in the callback (see VGA_MODAL_CB).
 * Help keys are literals: they are kept, not copied.  With null a message has the key that stands
 * beside its text, if any (vga_message_help). */
#ifndef VGADGMSG_H
#define VGADGMSG_H

#include "nofrec.h"
#include "vgadgutl.h"

/* Formats a message as vga_print_msg does and shows it over `parent`; over the main dialog for
 * null, and as a warning on standard error when there is none either.  Long lines are broken.
 * `callback` may be null. */
NB_VOID vga_display_error_dialog(VGA_DIALOG *parent, NB_USHORT message, const NB_CHAR *help_key,
                                 VGA_MODAL_CB callback, NB_ULONG client_data, const NB_CHAR *types,
                                 ...);
NB_VOID vga_display_info_dialog(VGA_DIALOG *parent, NB_USHORT message, const NB_CHAR *help_key,
                                VGA_MODAL_CB callback, NB_ULONG client_data, const NB_CHAR *types,
                                ...);

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

/* Shows over `parent` why a verb failed: message 167 with the reason. */
NB_VOID vga_display_verb_error(VGA_DIALOG *parent, const NAP_VCB *vcb);

/* The buttons of the box. */
NB_VOID vga_modal_dialog_cb(Widget widget, XtPointer client_data, XtPointer call_data);

/* Copies `text` with its lines broken at blanks, so that none has more than `width` columns unless
 * one word alone has; line ends in the text stay.  Columns are those of the locale's characters.
 * Returns memory from malloc; null without memory. */
NB_CHAR *vga_wrap_text(const NB_CHAR *text, NB_USHORT width);

#define VGA_VERB_ERROR_SIZE 1024

/* The reason why a verb failed, for message 167 and its like, and the key of its help (a literal).
 * The codes are as the control block holds them.  Returns VGA_VERB_ERROR_SIZE bytes from malloc,
 * the caller's; null, with exit code 1 requested, without memory. */
NB_CHAR *vga_get_verb_error_message(NB_USHORT opcode, NB_USHORT primary_rc, NB_ULONG secondary_rc,
                                    const NB_CHAR **help_key);

#endif
