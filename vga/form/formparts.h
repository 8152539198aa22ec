/* What the parts of the form pattern call of each other; a dialog has no need of it.
 *   form.cpp         opens and closes, fills, arranges
 *   formsubmit.cpp   checks, asks, waits for answers
 *   formrecord.cpp   follows the record and what it belongs to, titles
 *   formlist.cpp     lists of items, and the child forms that edit one
 *   formpages.cpp    pages, guided forms, status forms, message line */
#ifndef FORMPARTS_H
#define FORMPARTS_H

#include "form.h"

inline VGA_FORM *vga_form_of(VGA_DIALOG *desc) {
    return reinterpret_cast<VGA_FORM *>(desc);
}
VGA_FORM *vga_form_of_widget(Widget widget); /* null when it is closed */

/* The name of the dialog's row, and its part of that name: "*moded" and "ApplyButton". */
const NB_CHAR *vga_form_name(const VGA_FORM *form);
Widget vga_form_part(const VGA_FORM *form, const NB_CHAR *part);

/* form.cpp */
NB_VOID vga_form_ok_cb(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_form_load(VGA_FORM *form, NB_VOID *data);
NB_VOID vga_form_fill(VGA_FORM *form);       /* the fields from `shown` */
NB_VOID vga_form_arrange(VGA_FORM *form);    /* what can be done now */
NB_VOID vga_form_set_rights(VGA_FORM *form); /* between editing and looking */
NB_VOID vga_form_reload(VGA_FORM *form);     /* from the record, all fields */

/* formsubmit.cpp */
NB_VOID vga_form_submit(VGA_FORM *form, NB_USHORT leaving);
NB_VOID vga_form_set_pending(VGA_FORM *form, NB_USHORT on);
VGA_FAULT vga_form_collect(VGA_FORM *form, NB_SHORT page); /* into `wanted`; -1: of all pages */
NB_VOID vga_form_ask(VGA_FORM *form, const VGA_FAULT &question, VGA_MODAL_CB callback);

/* formrecord.cpp */
NB_VOID vga_form_show_title(VGA_FORM *form);
NB_VOID vga_form_attach(VGA_FORM *form, NB_VOID *record, NB_VOID *owner);
NB_VOID vga_form_take_over(VGA_FORM *form, const NB_UCHAR *from, const NB_UCHAR *to);
NB_VOID vga_form_detach(VGA_FORM *form);
std::string vga_form_answerer_of(const VGA_FORM *form);
std::string vga_form_subject(const VGA_FORM *form);
NB_VOID vga_form_follow(VGA_FORM *form); /* takes over what the record is now */

/* formlist.cpp */
NB_VOID vga_form_attach_lists(VGA_FORM *form);
NB_VOID vga_form_fill_lists(VGA_FORM *form);
NB_VOID vga_form_load_item(const VGA_FORM *form, NB_VOID *data);
NB_VOID vga_form_accept_item(VGA_FORM *form);
NB_USHORT
vga_form_item_is_taken(const VGA_FORM *form); /* another item has the name that is wanted */

/* formpages.cpp */
NB_VOID vga_form_find_pages(VGA_FORM *form);
NB_VOID vga_form_fit_pages(VGA_FORM *form); /* before it comes on the screen */
NB_VOID vga_form_show_page(VGA_FORM *form, NB_USHORT page);
NB_VOID vga_form_say(VGA_FORM *form, const NB_CHAR *text); /* in the message line */
NB_VOID vga_form_say_waiting(VGA_FORM *form);
NB_USHORT vga_form_next_page(VGA_FORM *form); /* 0: there was none */
NB_VOID vga_form_ask_anew(VGA_FORM *form);
NB_VOID vga_form_refreshed(VGA_FORM *form); /* shows what is so now, and says when */
NB_VOID vga_form_say_when(VGA_FORM *form);
NB_VOID vga_form_stop_asking(VGA_FORM *form); /* until the operator chooses a period again */

#endif
