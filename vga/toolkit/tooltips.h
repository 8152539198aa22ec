/* Tool tips: what the toolkit's own are configured with, and one that the program posts itself, for
 * widgets that get none because they are insensitive, and for lines of a list.  It looks like the
 * toolkit's, obeys the same resources, and there is at most one. */
#ifndef TOOLTIPS_H
#define TOOLTIPS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

/* Switches the toolkit's tips on in the window of `widget`, unless the resources toolTipEnable,
 * toolTipPostDelay and toolTipPostDuration (milliseconds) say otherwise. */
NB_VOID vga_enable_tips(Widget widget);

/* Posts a tip below the pointer, when it has rested for the delay; nothing where tips are off.
 * Takes the place of another one.  `text` is copied; where its lines have tabs, what stands behind
 * them is a second column.
 * REQUIRES: vga_hide_tip is called before `over` is destroyed. */
NB_VOID vga_show_tip(Widget over, const NB_CHAR *text);

/* Posts one at once, at that place of the widget, whether or not tips are on. */
NB_VOID vga_show_tip_at(Widget over, const NB_CHAR *text, NB_INT x, NB_INT y);

/* Takes the tip down, or calls off the one that was to come. */
NB_VOID vga_hide_tip(NB_VOID);

#endif
