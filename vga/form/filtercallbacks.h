/* The filters of text fields as modify-verify callbacks (XmText and XmTextField), one for each rule
 * of filterrules.h.  A refused change leaves the field as it is, without a word.
 *
 * A dialog attaches one in its description, where common.uih has declared the procedures:
 *     callbacks { XmNmodifyVerifyCallback = procedure vga_check_num_cb(); };
 * and limits the length beside it (XmNmaxLength, XmNcolumns).  Filters watch the operator's hands
 * only: what the program shows goes in through vga_fill_field, which switches them off. */
#ifndef FILTERCALLBACKS_H
#define FILTERCALLBACKS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

NB_VOID vga_check_tp_name_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_ip_name_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_ip_addr_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_alphanum_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_num_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_signed_num_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_caps_alphanum_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_hex_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_all_caps_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_hex_pwd_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_filename_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_pathname_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_ebcdic_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_ebcdic_lower_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_ebcdic_ae_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_ebcdic_ae_pwd_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_mode_name_cb(Widget field, XtPointer client_data, XtPointer call_data);
NB_VOID vga_check_lu_name_template_cb(Widget field, XtPointer client_data, XtPointer call_data);

/* Registers the procedures above for UID files; part of vga_register_common_names. */
NB_VOID vga_register_field_filters(NB_VOID);

/* Shows the text in a field, whatever its filters say, with the beginning in view.  Other
 * callbacks of the field are called as ever.  A null widget is ignored, a null text empty. */
NB_VOID vga_fill_field(Widget field, const NB_CHAR *text);

#endif
