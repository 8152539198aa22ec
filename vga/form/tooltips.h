/* Tool tips: what the toolkit's own are configured with, and one that the program posts itself, for
 * widgets that get none because they are insensitive.  It looks like the toolkit's, obeys the same
 * resources, and there is at most one. */
#ifndef TOOLTIPS_H
#define TOOLTIPS_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

/* Switches the toolkit's tips on in the window of `widget`, unless the resources toolTipEnable,
 * toolTipPostDelay and toolTipPostDuration (milliseconds) say otherwise. */
NB_VOID vga_enable_tips(Widget widget);

/* Posts a tip below the pointer, when it has rested for the delay; nothing where tips are off.
 * Takes the place of another one.  `text` is copied.
 * REQUIRES: vga_hide_tip is called before `over` is destroyed. */
NB_VOID vga_show_tip(Widget over, const NB_CHAR *text);

/* Takes the tip down, or calls off the one that was to come. */
NB_VOID vga_hide_tip(NB_VOID);

#endif
