/* The node window on a screen that is too low for all of it.  Every list shows two lines at least;
 * to that end the window gives way in a fixed order (VGA_NODEW_STEP), each step only when the ones
 * before are not enough.  The tool bar's commands are in the menus, too.  A key that has no room
 * beside its title goes in any case. */
#ifndef LOWSCREEN_H
#define LOWSCREEN_H

#include "vganodew.h"

enum VGA_NODEW_STEP : NB_USHORT {
    VGA_NODEW_STEP_NONE,
    VGA_NODEW_STEP_NO_PANEL,    /* no room is left for a panel of the desktop */
    VGA_NODEW_STEP_NO_KEYS,     /* and no keys to the icons beside the titles of the panes */
    VGA_NODEW_STEP_NO_TOOL_BAR, /* and no tool bar */
};

/* Pixels; those of the panes are of all three together. */
struct VGA_NODEW_HEIGHTS {
    NB_ULONG screen;
    NB_ULONG fixed; /* menu bar, node, message line, and what is between the panes */
    NB_ULONG tool_bar;
    NB_ULONG keys;  /* what the panes need more with their keys */
    NB_ULONG panes; /* with two lines each and without keys */
};

/* The first step at which everything fits; the last one when nothing does. */
VGA_NODEW_STEP vga_nodew_choose_step(const VGA_NODEW_HEIGHTS &heights);

/* The height that a window of the step may have on the screen. */
NB_ULONG vga_nodew_height_limit(NB_ULONG screen, VGA_NODEW_STEP step);

/* Takes the steps that the screen needs, sets the least heights of the panes, and cuts the window's
 * size to the screen.  For a window that has its widgets and is not yet on the screen; needs the
 * sizes of lines and icons. */
NB_VOID vga_nodew_fit_screen(VGA_NODEW_DESC *desc);

#endif
