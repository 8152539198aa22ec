/* The message line of a list window: what stands there, and for how long.
 *
 * What is said for the moment (help under the pointer, a refusal) goes by itself: at the next key
 * or press in a list, when something else is selected, or after some seconds.  What the window is
 * at stays until that ends.  Behind both is what the line says of itself, which is what a line that
 * is cleared shows: why there is nothing to see: the node or the domain is not connected; else the
 * newer of what is selected and the last outcome (outcomes.h) that concerns the window. A window of
 * a node is concerned with its own outcomes and with the domain's, one of the domain with all.
 * Texts are in the locale's characters. */
#ifndef MESSAGELINE_H
#define MESSAGELINE_H

#include "listwindow.h"

struct VGA_OUTCOME;

/* Watches keys and presses, and has a click on the line open the history (history.h). */
NB_VOID vga_listw_watch_line(VGA_LIST_WINDOW *window);

/* Says what the window is at, until it is called with an empty text. */
NB_VOID vga_listw_message_busy(VGA_LIST_WINDOW *window, const std::string &text);

/* Has the line say what is so now. */
NB_VOID vga_listw_refresh_line(VGA_LIST_WINDOW *window);

/* The same after what may be another selection. */
NB_VOID vga_listw_selection_seen(VGA_LIST_WINDOW *window);

/* The hook of that name: lines and histories that it concerns follow. */
NB_VOID vga_listw_outcome(const VGA_OUTCOME &outcome);

/* The window closes, or its widgets go, at a time when its memory may be gone. */
NB_VOID vga_listw_forget_line(const VGA_LIST_WINDOW *window);

/* "4,000 LUs selected", "ETH0 (port) selected"; empty without a selection. */
std::string vga_listw_selection_in_words(const VGA_LIST_WINDOW *window);

#endif
