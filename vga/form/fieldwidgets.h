/* The widgets of a form's fields.  For form.cpp; a dialog has no need of it. */
#ifndef FIELDWIDGETS_H
#define FIELDWIDGETS_H

#include "form.h"

/* Looks all widgets of the plan up and watches the fields; `changed` is called with the form as
 * client data whenever the operator changes one.  0 when one is missing. */
NB_USHORT vga_form_find_fields(VGA_FORM *form, XtCallbackProc changed);

/* The field's widget; what stands in the column: itself, or the manager around it and its unit. */
Widget vga_form_widget(const VGA_FORM *form, NB_USHORT field);
Widget vga_form_block(Widget widget);

/* Shows the field as `data` has it, whatever its filter says. */
NB_VOID vga_form_put_field(const VGA_FORM *form, NB_USHORT field, const NB_VOID *data);

/* 1 when the field reads as `data` has it. */
NB_USHORT vga_form_field_is(const VGA_FORM *form, NB_USHORT field, const NB_VOID *data);

/* Checks the field and puts it into `data`.  A field that nobody touched keeps its bytes to the
 * last and is never at fault.  Returns what is wrong. */
VGA_FAULT vga_form_get_field(const VGA_FORM *form, NB_USHORT field, NB_VOID *data);

/* Puts the field into `data` if it can be read, without a check: for the bounds of others. */
NB_VOID vga_form_read_field(const VGA_FORM *form, NB_USHORT field, NB_VOID *data);

/* What the field shows, as the operator reads it. */
std::string vga_form_field_text(const VGA_FORM *form, NB_USHORT field);

/* 1 when the field can be of use now: its conditions hold, and so do those of the fields which it
 * depends on. */
NB_USHORT vga_form_field_of_use(const VGA_FORM *form, NB_USHORT field);

/* 1 when the operator could change the field now. */
NB_USHORT vga_form_field_editable(const VGA_FORM *form, NB_USHORT field);

/* Lets the operator edit the field or only look at it, with its label, and says in hint and reason
 * what it takes and why it is off. */
NB_VOID vga_form_enable_field(const VGA_FORM *form, NB_USHORT field);

/* The first field that can be edited; null: none. */
Widget vga_form_first_field(const VGA_FORM *form);

/* Shows at the field that it was refused, or that another administrator changed it; its hint says
 * to what once the form is arranged. */
NB_VOID vga_form_mark_field(VGA_FORM *form, NB_USHORT field, VGA_FORM_MARK mark);

/* A text of the descriptions that no widget shows, by its name there. */
std::string vga_form_literal(const std::string &name);

/* What has the keyboard in a field. */
Widget vga_form_focus_of(const VGA_FORM *form, NB_USHORT field);

#endif
