/* Checks of text fields when a dialog collects them, with their messages.
 *
 * A check that fails shows its message over `parent`, the dialog, under the help key (a literal),
 * moves the keyboard to the field at fault and returns its failure; outputs are then as they were
 * unless stated.  The dialog stops there: one message at a time, in the order of the fields.
 *
 *     if (vga_check_field(&desc->common, desc->max_limit, 0, 32767, 640, "moded", 622, "moded",
 *                         &max_limit) == 0) {
 *         return 0;
 *     }
 *
 * Fields are XmText or XmTextField; a null field is an empty one.  The rules without widgets are
 * in filterrules.h. */
#ifndef FIELDCHECKS_H
#define FIELDCHECKS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

struct VGA_DIALOG;

/* Copies a field's text, cut between characters to `size` bytes with its terminator.  Returns its
 * length in bytes. */
NB_USHORT vga_get_field_text(Widget field, NB_CHAR *out, NB_USHORT size);

/* Gives the keyboard to the field, now or when its window gets it next (a message box has it). */
NB_VOID vga_focus_field(Widget field);

/* Shows a message without arguments, and moves to the field: for a dialog's peculiar checks.
 * Always 0, so that a check can return it. */
NB_USHORT vga_refuse_field(VGA_DIALOG *parent, Widget field, NB_USHORT message, const NB_CHAR *key);

/* The same with two bounds as %1 and %2. */
NB_USHORT vga_refuse_range(VGA_DIALOG *parent, Widget field, NB_USHORT message, const NB_CHAR *key,
                           int64_t min, int64_t max);

/* Reads a decimal number of at most 50 characters within [min, max].  Returns 1 and the value.
 * Returns 0 after the empty message, which has no arguments, or the range message, which has the
 * two bounds as %1 and %2; what is no number is out of range. */
NB_USHORT vga_check_field(VGA_DIALOG *parent, Widget text_field, NB_ULONG min, NB_ULONG max,
                          NB_USHORT empty_message, const NB_CHAR *empty_key,
                          NB_USHORT range_message, const NB_CHAR *range_key, NB_ULONG *value);
NB_USHORT vga_check_signed_field(VGA_DIALOG *parent, Widget text_field, NB_LONG min, NB_LONG max,
                                 NB_USHORT empty_message, const NB_CHAR *empty_key,
                                 NB_USHORT range_message, const NB_CHAR *range_key, NB_LONG *value);

/* Reads at most `max_len` pairs of hexadecimal digits into `out`.  Returns the number of bytes, 0
 * for an empty field; -1 after the message when a digit is left over or none.
 * REQUIRES: "200 >= max_len * 2" (an assertion, and -1). */
NB_SHORT vga_get_hex_field(Widget text_field, NB_UCHAR *out, NB_USHORT max_len, NB_USHORT message,
                           const NB_CHAR *key, VGA_DIALOG *parent);

/* Reads a node identifier into 4 bytes, most significant first: 3 digits of block number and 5 of
 * PU identifier.  Returns 1; or 0 after the bad message.  Both fields empty: 0 after the empty
 * message, with the keyboard in the block field, when `empty_key` is given; without one, 1 and four
 * zero bytes. */
NB_USHORT vga_get_node_id(Widget block_field, Widget puid_field, NB_UCHAR *node_id,
                          NB_USHORT empty_message, const NB_CHAR *empty_key, NB_USHORT bad_message,
                          const NB_CHAR *bad_key, VGA_DIALOG *parent);

/* Read a fully qualified name of 17 bytes in EBCDIC out of two fields, of which at most 8
 * characters count.  No message: 1, or 0 with 17 blanks when the fields make no name.  The first
 * wants both; the second takes both empty (17 blanks) and a network identifier alone, too. */
NB_USHORT vga_build_fq_name(Widget netid_field, Widget name_field, NB_UCHAR *fq_name);
NB_USHORT vga_buildw_fq_name(Widget netid_field, Widget name_field, NB_UCHAR *fq_name);

#endif
