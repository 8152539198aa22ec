/* The widgets of a form's fields.  For form.cpp; a dialog has no need of it. */
#ifndef FIELDWIDGETS_H
#define FIELDWIDGETS_H

#include "form.h"

/* Looks all of them up and watches them; `changed` is called with the form as client data whenever
 * the operator changes one.  0 when one is missing. */
NB_USHORT vga_form_find_fields(VGA_FORM *form, XtCallbackProc changed);

/* Shows the field as `data` has it, whatever its filter says. */
NB_VOID vga_form_put_field(const VGA_FORM *form, NB_USHORT field, const NB_VOID *data);

/* 1 when the field reads as `data` has it. */
NB_USHORT vga_form_field_is(const VGA_FORM *form, NB_USHORT field, const NB_VOID *data);

/* Checks the field and puts it into `edited`.  Returns 0, or the message of what is wrong. */
NB_USHORT vga_form_get_field(const VGA_FORM *form, NB_USHORT field, NB_VOID *edited);

/* 1 when the field can be of use now: its condition holds, and so does that of the field which it
 * depends on. */
NB_USHORT vga_form_field_of_use(const VGA_FORM *form, NB_USHORT field);

/* Lets the operator edit the field or only look at it, with its label. */
NB_VOID vga_form_enable_field(const VGA_FORM *form, NB_USHORT field);

/* The first field that can be edited; null: none. */
Widget vga_form_first_field(const VGA_FORM *form);

/* What has the keyboard in a field. */
Widget vga_form_focus_of(const VGA_FORM *form, NB_USHORT field);

#endif
