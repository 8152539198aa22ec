/* Utilities for the widgets of windows and dialogs.  A null widget is ignored everywhere, because
 * a window may lack an optional part. */
#ifndef WIDGETS_H
#define WIDGETS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

struct VGA_DIALOG;

/* Whole dialogs. */

/* Between editing and looking.  With editing the dialog's OK button calls `ok_proc`, Cancel is
 * there, and so is the extra button (Apply; may be null) where gvga_supported offers it.  Without,
 * OK closes the dialog and the other two are gone.  Either may be called again. REQUIRES: the
 * dialog's top widget is an XmMessageBox. */
NB_VOID vga_dialog_allow_edit(VGA_DIALOG *desc, XtCallbackProc ok_proc, Widget extra);
NB_VOID vga_dialog_disallow_edit(VGA_DIALOG *desc, XtCallbackProc ok_proc, Widget extra);

/* The OK button and the extra button: off while a verb is under way. */
NB_VOID vga_dialog_sensitive(VGA_DIALOG *desc, Widget extra, NB_USHORT on);

/* Makes the box's OK button (with Apply and other extra buttons behind it), `widget` with the
 * fields in it, the Cancel button and the Help button the stops of the Tab key, in that order.
 * `message_box` may be of another class, which has no such buttons; `widget` may be null. */
NB_VOID vga_define_tabbing_order(Widget message_box, Widget widget);

/* Makes the widgets the only stops of the Tab key in their window, in this order.  Null ones and
 * those that are not managed are left out. */
NB_VOID vga_define_tab_groups(const Widget *widgets, NB_USHORT count);

/* Gives the labels that a column makes of its entries (XmNentryLabelString) the font of the buttons
 * of the box, in `widget` and all below it.  Entries whose name ends with "Group" and a number are
 * headings: theirs has the font of the resources "groupHeading", where it can be had. */
NB_VOID vga_set_label_fonts(Widget widget, Widget message_box);

/* The part of a message box that is not its own: the work area, or null. */
Widget vga_get_work_area(Widget message_box);

/* The size that the widget asks for. */
XtWidgetGeometry vga_wanted_size(Widget widget);

/* State and look. */

/* Also ends the gesture when the widget is held: an insensitive widget never sees its release. */
NB_VOID vga_set_sensitive(Widget widget, NB_USHORT on);

/* Sets both colours, and the shadow colours that go with the background, for the widget and all
 * below it. */
NB_VOID vga_set_colours(Widget widget, Pixel background, Pixel foreground);

/* The same with the colours of the resources ".dialogBackground" and ".dialogForeground" (colour
 * names); nothing changes for the one that is not set. */
NB_VOID vga_set_configured_colours(Widget widget);

/* Draws a field's label as one that the operator has to look at, with a mark behind its text, or as
 * it was. */
NB_VOID vga_mark_label(Widget label, NB_USHORT on);

/* Any pointer that a callback is to find at its widget (XmNuserData). */
NB_VOID vga_put_widget_context(Widget widget, NB_VOID *context);
NB_VOID *vga_get_widget_context(Widget widget);

/* Shows the pixmap in a label or button.  The pixmap stays the caller's. */
NB_VOID vga_put_widget_pixmap(Widget widget, Pixmap pixmap);

/* Callbacks: the frame around a tool-bar button looks pressed in while the button is held. */
NB_VOID vga_button_push(Widget button, XtPointer client_data, XtPointer call_data);
NB_VOID vga_button_pop(Widget button, XtPointer client_data, XtPointer call_data);

/* Exchanges foreground and background while a button that draws no arming itself is held. */
NB_VOID vga_arm_widget(Widget widget);
NB_VOID vga_disarm_widget(Widget widget);

/* Sizes, in pixels. */

/* The height of the dialog's window, at most that of the screen. */
NB_VOID vga_set_window_height(VGA_DIALOG *desc, Dimension height);

/* The window cannot be made lower than this. */
NB_VOID vga_set_minimum_height(VGA_DIALOG *desc, Dimension height);

/* The height of a pane of a paned window; the operator can still change it. */
NB_VOID vga_set_pane_height(Widget pane, Dimension height);

/* Gives all buttons of a tool bar the width of the widest. */
NB_VOID vga_set_toolbar_width(Widget tool_bar);

/* In a locale of multi-byte characters halves the columns of all text fields below `widget` (an odd
 * number is raised by one first) whose font is a font set of the server: a column is as wide as its
 * widest characters there, twice those that the description counts.  Nothing with scalable fonts,
 * and nothing in other locales. */
NB_VOID vga_multi_byte_resize(Widget widget);

/* Takes both scroll bars of a scrolled window off the screen. */
NB_VOID vga_remove_scrollbars(Widget scrolled_window);

/* Keyboard. */

/* Toolkit action: presses the push or toggle button that has the focus. */
NB_VOID vga_activate_action(Widget widget, XEvent *event, String *params, Cardinal *param_count);

#endif
