/* Boxes with one text: that a node is not configured, and what the program is.  Slots of their rows
 * in the table of windows. */
#ifndef VGANOTICES_H
#define VGANOTICES_H

#include "vgadgutl.h"

extern MRMRegisterArg gvga_shlpd_callbacks[];
constexpr NB_USHORT VGA_SHLPD_CALLBACK_COUNT = 1;

NB_VOID vga_shlpd_record_changed(VGA_DIALOG *desc, NB_VOID *item, VGA_RECORD_CHANGE what);

NB_USHORT vga_get_widgets_about(VGA_DIALOG *desc);

#endif
