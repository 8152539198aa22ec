/* The field in the row of a list's title, in which is typed what is sought (Ctrl+F), or what the
 * list is to show only (Ctrl+L); and what goes with it: next, previous, the next failed line.
 *
 * A window has one such field at a time, over the current list.  It takes the place of the title's
 * counts and key.  Every key moves to the first match from where the search began; Return stays
 * there, Escape, too, and both give the keyboard back to the list.  A filter stays on when its
 * field closes: the title says so, and beside it stands what ends it.  It ends with the window. */
#ifndef FINDBAR_H
#define FINDBAR_H

#include "finder.h"
#include "listwindow.h"

/* The states that a filter can be about, in the order of the menu. */
struct VGA_LISTW_STATES {
    NB_UCHAR states; /* set of VGA_STATES_SET */
    NB_USHORT word;  /* message, in titles; 0: none */
};
extern const VGA_LISTW_STATES gvga_listw_states[5];

/* For a window that has its widgets. */
NB_VOID vga_listw_prepare_finding(VGA_LIST_WINDOW *window);

/* Takes the field away; with `to_list` its list gets the keyboard. */
NB_VOID vga_listw_close_bar(VGA_LIST_WINDOW *window, NB_USHORT to_list);

/* Shows every line of all lists again. */
NB_VOID vga_listw_end_filters(VGA_LIST_WINDOW *window);

/* What a filter that is being typed means, or what is wrong with it, for the message line. */
std::string vga_listw_explain(const VGA_PATTERN &pattern);

#endif
