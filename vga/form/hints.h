/* What a field wants, and why a control is off.
 *
 * A hint says a field's range, unit or meaning.  It is the widget's tool tip and stands in the
 * dialog's message line, if it has one, while the widget has the keyboard.  A reason says why a
 * widget is insensitive; it stands under the pointer and in the message line while the pointer is
 * over the widget, for which the toolkit itself does nothing then.  A widget without a hint, and
 * an insensitive one without a reason, shows that of the nearest widget around it that has one (and
 * is insensitive, too); an insensitive widget for which there is no reason shows its hint.
 *
 * Texts are copied and may change at any time.  All is forgotten when the widget is destroyed.
 * Widgets and gadgets alike, but the message line shows a gadget's only under the pointer.  Null
 * widgets are ignored. */
#ifndef HINTS_H
#define HINTS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

/* One hint, as a message without arguments or, for bounds that change, as a text in the locale's
 * character set.  0, null and an empty text take the hint away. */
NB_VOID vga_set_field_hint(Widget widget, NB_USHORT message);
NB_VOID vga_set_field_hint_text(Widget widget, const NB_CHAR *text);

/* One reason, likewise.  It may be set before or after the widget becomes insensitive, and stays
 * for the next time. */
NB_VOID vga_set_reason(Widget widget, NB_USHORT message);
NB_VOID vga_set_reason_text(Widget widget, const NB_CHAR *text);

/* Names the message line of the window that `top` is in: an XmText, XmTextField or XmLabel.  It
 * gets back what it held when a hint's time is over, unless something else was written into it
 * meanwhile.  Null takes the line away.
 *
 * In a label a text is broken at blanks where the line ends, and broken again when that changes.
 * Its height is reserved (XmNheight; REQUIRES: XmNrecomputeSize is false) for the longest hint and
 * reason of the window, those that come later as well. */
NB_VOID vga_set_hint_line(Widget top, Widget line);

/* Reserves the height anew, when what stands beside the line in its parent has become wider before
 * the window is on the screen.  Nothing without a line. */
NB_VOID vga_reserve_hint_line(Widget top);

/* Writes a text of somebody else's into a message line, broken as the hints are. */
NB_VOID vga_set_line_text(Widget line, const NB_CHAR *text);

/* What would be shown for a widget now, never null: for a dialog that shows it elsewhere. */
const NB_CHAR *vga_shown_hint(Widget widget);

#endif
