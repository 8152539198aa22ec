/* The dialog of mode definitions: the characteristics with which LU 6.2 sessions are bound.  Its
 * fields stand in resources/dialogs/moded.dlg; here is what goes beyond single fields.
 *
 * A mode is changed by up to four verbs, one after the other: the old name's definition is deleted
 * when the mode is renamed, the mode defined, and its time-out, which is a record of its own,
 * defined or deleted.  A definition that the node refuses behind that deletion is followed by the
 * old one again. */
#ifndef VGAMODED_H
#define VGAMODED_H

#include "form.h"
#include "messagebox.h"

/* The verbs: 1, or 0 when the verb could not be queued.  The first one issues what has to come
 * first: the deletion, the definition, or only the time-out. */
NB_USHORT vga_issue_def_mode(VGA_FORM *form);
NB_USHORT vga_issue_del_mode(VGA_FORM *form);
NB_USHORT vga_issue_def_lu62_timeout(VGA_FORM *form);

/* Completion of all of them: the model half, then the dialog's. */
NB_VOID vga_define_mode_cb(const VGA_PROCESS_STATE *work);

/* The answer to the question whether a mode of an active node is to be changed. */
NB_VOID vga_mode_confirm_cb(VGA_DIALOG *desc, VGA_ANSWER answer, NB_ULONG handle);

#endif
