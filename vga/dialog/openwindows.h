/* The node windows that are open, as entries of the Windows menu of the system window.
 *
 * A window gets the lowest number that is free, which its entry begins with and which is the
 * entry's mnemonic: 1 to 9, then a to z; windows beyond have none.  Entries stand in the order of
 * their numbers.  Windows are kept whether there is a menu or not; one that is named later gets
 * entries for all of them.  OWNS: the entries, not the menu and not the windows. */
#ifndef OPENWINDOWS_H
#define OPENWINDOWS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

struct VGA_DIALOG;

/* The pulldown menu that has the entries; null: it goes, the windows stay. */
NB_VOID vga_set_node_window_menu(Widget menu);

/* A node window opened, or shows another node: `name` is the node's, in the locale's character
 * set.  It keeps its number.  Returns the number; 0 without memory. */
NB_USHORT vga_add_node_window_widget(VGA_DIALOG *window, const NB_CHAR *name);

/* It closed; nothing for one that is not there. */
NB_VOID vga_remove_node_window_widget(const VGA_DIALOG *window);
NB_VOID vga_remove_all_node_window_widgets(NB_VOID);

/* The number of the window that an entry stands for; 0: the widget is no entry. */
NB_USHORT vga_get_node_number_from_widget(Widget widget);

/* The letter or digit that chooses an entry by the keyboard; NoSymbol beyond 35. */
KeySym vga_node_widget_mnemonic(NB_USHORT number);

/* Callback of the entries: brings the window to the front, out of an icon too. */
NB_VOID vga_raise_node_window(Widget widget, XtPointer client_data, XtPointer call_data);

#endif
