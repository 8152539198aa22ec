/* The firewall: no message box pops up in the middle of a gesture, which it would break (it grabs
 * the pointer and the keyboard).  While a button is held or a menu or another popup is up, messages
 * wait; when the gesture is over their queues are checked from a zero timer. */
#ifndef FIREWALL_H
#define FIREWALL_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

extern NB_ULONG gvga_modal_firewall_count; /* popups that are up */
extern Widget gvga_modal_firewall_widget;  /* the widget that is held, or null */

/* Called when the last gesture is over; set at start by the dialog framework. */
extern NB_VOID (*gvga_modal_firewall_down)(NB_VOID);

/* Watches a widget and everything below it: buttons, scroll bars and whatever else is held with the
 * first mouse button, and menus and other popups.  May be called again for the same widgets; to be
 * called for widgets that are made later. */
NB_VOID vga_add_modal_popup_firewall(Widget widget);

/* 1 while messages must wait. */
NB_USHORT vga_modal_firewall_up(NB_VOID);

/* The widget is no longer held, though its release may never be seen (it became insensitive, left
 * the screen, or its release was called for it).  Nothing when it is not the one that is held. */
NB_VOID vga_modal_firewall_forget(Widget widget);

/* The same for the held widget when it is `widget` or anything below it. */
NB_VOID vga_modal_firewall_forget_tree(Widget widget);

/* A gesture begins or ends: arm and disarm by the reason in `call_data`, else a popup. */
NB_VOID vga_modal_firewall_on(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_modal_firewall_off(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_modal_firewall_on_event(Widget widget, XtPointer client_data, XEvent *event,
                                    Boolean *go_on);
NB_VOID vga_modal_firewall_off_event(Widget widget, XtPointer client_data, XEvent *event,
                                     Boolean *go_on);

#endif
