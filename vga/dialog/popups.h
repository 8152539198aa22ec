/* Menus under the pointer. */
#ifndef POPUPS_H
#define POPUPS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

/* From now on button 3 over `widget` posts `menu`.  Held, it chooses an entry by its release; after
 * a click, which is over within 300 ms, the menu stays until an entry is chosen or it is put away.
 * The menu was made with the widget, or another one of its window, as parent.
 * REQUIRES: "XmIsRowColumn(menu)" (an assertion, and nothing is done). */
NB_VOID vga_install_popup_menu(Widget widget, Widget menu);

/* Posts the menu at a place of the widget, in its own pixels: for keys.  Nothing happens over an
 * insensitive widget. */
NB_VOID vga_post_popup_menu(Widget widget, Widget menu, NB_INT x, NB_INT y);

/* 1 for a press that posts a menu: button 3, and no other button is held, whose gesture a menu
 * would take away. */
NB_USHORT vga_is_popup_press(const XEvent *event);

/* The event handler that does it; `menu` is its client data. */
NB_VOID vga_popup_menu(Widget widget, XtPointer menu, XEvent *event, Boolean *go_on);

#endif
