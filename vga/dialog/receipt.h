/* A receipt: a window (textwindow.h) with a longer account of what was done, beside the window that
 * did it.  A later account takes the place of the one before, or stands behind a rule under one
 * that is still shown. */
#ifndef RECEIPT_H
#define RECEIPT_H

#include "nbtypes.h"

struct VGA_DIALOG;

/* Shows the account, in the locale's characters, under a title.  `help_key` is a literal, the topic
 * of its Help button.  Nothing for a dialog that is not open. */
NB_VOID vga_show_receipt(VGA_DIALOG *desc, const NB_CHAR *title, const NB_CHAR *text,
                         const NB_CHAR *help_key);

#endif
