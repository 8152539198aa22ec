/* A list window on a screen that is too low for all of it.  Every list shows two lines at least;
 * to that end the window gives way in a fixed order (VGA_LISTW_STEP), each step only when the ones
 * before are not enough.  The tool bar's commands are in the menus, too.  A key that has no room
 * beside its title goes in any case.  Headings go with the keys. */
#ifndef LOWSCREEN_H
#define LOWSCREEN_H

#include "listwindow.h"

enum VGA_LISTW_STEP : NB_USHORT {
    VGA_LISTW_STEP_NONE,
    VGA_LISTW_STEP_NO_PANEL,    /* no room is left for a panel of the desktop */
    VGA_LISTW_STEP_NO_KEYS,     /* and neither headings nor keys to the icons beside the titles */
    VGA_LISTW_STEP_NO_TOOL_BAR, /* and no tool bar */
};

/* Pixels; those of the panes are of all panes together. */
struct VGA_LISTW_HEIGHTS {
    NB_ULONG screen;
    NB_ULONG fixed; /* menu bar, head, message line, and what is between the panes */
    NB_ULONG tool_bar;
    NB_ULONG keys;  /* what the panes need more with their keys and headings */
    NB_ULONG panes; /* with two lines each and without keys */
};

/* The first step at which everything fits; the last one when nothing does. */
VGA_LISTW_STEP vga_listw_choose_step(const VGA_LISTW_HEIGHTS &heights);

/* The height that a window of the step may have on the screen. */
NB_ULONG vga_listw_height_limit(NB_ULONG screen, VGA_LISTW_STEP step);

/* Takes the steps that the screen needs, sets the least heights of the panes, and cuts the window's
 * size to the screen.  For a window that has its widgets and is not yet on the screen; needs the
 * sizes of lines and icons. */
NB_VOID vga_listw_fit_screen(VGA_LIST_WINDOW *window);

/* Makes the list of a dialog smaller where the screen is too small for all of it.  For one that is
 * about to be shown. */
NB_VOID vga_listw_fit_dialog(const VGA_LIST_WINDOW *window);

/* Shows the headings over all lists, or gives their room to the lists: a window that the operator
 * made low has none. */
NB_VOID vga_listw_set_headings(const VGA_LIST_WINDOW *window, NB_USHORT shown);

#endif
