/* What the viewer's own modules tell each other; nobody else includes this.
 *
 *   drawing  what is to be drawn, scroll bars, the update timer
 *   linedrawing  lines
 *   headings  headings
 *   vgaviewr  the interface, attaching to widgets
 *   mouse  mouse
 *   vgaviewk  keyboard
 *   wholelines  tips, and lines as text
 *   search  finding lines, by what is typed, too */
#ifndef VIEWERPARTS_H
#define VIEWERPARTS_H

#include "listfont.h"
#include "vgaviewr.h"

/* Screen. */

/* The view that a timer is of, which carries the handle of the list; null once that is gone. */
VGA_VIEWER_VIEW *vga_viewer_view_of_timer(XtPointer client_data);

/* The timer will draw what is noted, if anything is. */
NB_VOID vga_viewer_schedule(VGA_VIEWER_VIEW *view);

/* Lines came or went: heights, offset and bars follow. */
NB_VOID vga_viewer_content_changed(VGA_VIEWER_VIEW *view);

/* Moves the view, within the content; `bar` is the scroll bar that asked for it, null otherwise. */
NB_VOID vga_viewer_set_offsets(VGA_VIEWER_VIEW *view, int64_t x, int64_t y, Widget bar);

/* Reads the size of the window; 1 when it changed. */
NB_USHORT vga_viewer_read_size(VGA_VIEWER_VIEW *view);

/* Leaves nothing of the list in the window, and no scroll bars. */
NB_VOID vga_viewer_clear(const VGA_VIEWER_VIEW *view);

/* Notes the whole window for drawing, with the headings. */
NB_VOID vga_viewer_mark_all(VGA_VIEWER_VIEW *view);

/* Pixels before a line's text: indentation and icons. */
NB_ULONG vga_viewer_left_width(const VGA_VIEWER_DESC *desc);

/* Draws a text with its column stops into a window or pixmap of that width; the text begins at x,
 * its line at y.  What is more than `width` to the right is left out. */
NB_VOID vga_viewer_draw_text(VGA_LIST_PEN *pen, NB_INT x, NB_INT y, NB_ULONG width,
                             const NB_CHAR *text);

/* Makes the pixmap that lines are drawn in; 0 without a window to draw in. */
NB_USHORT vga_viewer_ready_to_draw(VGA_VIEWER_VIEW *view);
NB_VOID vga_viewer_free_pixmap(VGA_VIEWER_VIEW *view);

/* Draws some lines from `*item` on, at most `count`, and moves `*item` behind them.
 * Returns how many. REQUIRES: the view is ready to draw. */
NB_ULONG vga_viewer_draw_lines(VGA_VIEWER_VIEW *view, VGA_VIEWER_ITEM **item, NB_ULONG count,
                               NB_INT window_y);

/* Writes the line's text, terminated, into a buffer of VGA_VIEWER_TEXT_BUFFER + 1 bytes: whole, or
 * as it is drawn, with what does not fit its column cut. */
NB_VOID vga_viewer_whole_text(const VGA_VIEWER_ITEM *item, NB_CHAR *buffer);
NB_VOID vga_viewer_line_text(const VGA_VIEWER_ITEM *item, NB_CHAR *buffer);

/* Headings: nothing where the list has none. */
NB_VOID vga_viewer_draw_headings(VGA_VIEWER_VIEW *view);
NB_VOID vga_viewer_forget_headings(VGA_VIEWER_VIEW *view);

/* Has the strip show the headings of the level that the current line is of. */
NB_VOID vga_viewer_follow_level(VGA_VIEWER_VIEW *view);

/* Tips: the whole of a line, with its headings.  That of the current line, for who has no mouse;
 * the one that is shown or waited for goes, or goes if its line says something else by now. */
NB_VOID vga_viewer_show_whole(VGA_VIEWER_VIEW *view);
NB_VOID vga_viewer_hide_tip(VGA_VIEWER_VIEW *view);
NB_VOID vga_viewer_check_tip(VGA_VIEWER_VIEW *view);
NB_VOID vga_viewer_pointer_moved(Widget widget, XtPointer client_data, XEvent *event,
                                 Boolean *go_on);
NB_VOID vga_viewer_pointer_left(Widget widget, XtPointer client_data, XEvent *event,
                                Boolean *go_on);

/* What mouse or keyboard have selected is the primary selection from now on. */
NB_VOID vga_viewer_offer_selection(VGA_VIEWER_VIEW *view);

/* A key that no table of keys has: a letter goes to a line.  Returns 1 when it was taken. */
NB_USHORT vga_viewer_type_ahead(VGA_VIEWER_VIEW *view, XKeyEvent *event);

/* Mouse and keyboard. */

/* The line at a height in the window; null for none. */
VGA_VIEWER_ITEM *vga_viewer_hit(const VGA_VIEWER_VIEW *view, NB_INT window_y);

/* 1 when x, in the window, lies in the column of the line's expand icon. */
NB_USHORT vga_viewer_check_expand(const VGA_VIEWER_VIEW *view, const VGA_VIEWER_ITEM *item,
                                  NB_INT window_x);

NB_VOID vga_viewer_drag_to(VGA_VIEWER_VIEW *view, VGA_VIEWER_ITEM *item);
NB_VOID vga_viewer_end_drag(VGA_VIEWER_VIEW *view);

/* The type's disarm_cb and set_button_states, if the list is displayed. */
NB_VOID vga_viewer_call_disarm(VGA_VIEWER_VIEW *view, NB_SHORT type);
NB_VOID vga_viewer_set_buttons(VGA_VIEWER_VIEW *view, NB_SHORT type);

NB_VOID vga_viewer_arm(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_viewer_disarm(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_viewer_activate(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_viewer_motion(Widget widget, XtPointer client_data, XEvent *event, Boolean *go_on);
NB_VOID vga_viewer_enter_hierarchy(Widget widget, XtPointer client_data, XEvent *event,
                                   Boolean *go_on);
NB_VOID vga_viewer_leave_hierarchy(Widget widget, XtPointer client_data, XEvent *event,
                                   Boolean *go_on);
NB_VOID vga_viewer_wheel(Widget widget, XtPointer client_data, XEvent *event, Boolean *go_on);
NB_VOID vga_viewer_key_input(Widget widget, XtPointer client_data, XEvent *event, Boolean *go_on);
NB_VOID vga_viewer_resize(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_viewer_expose(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_viewer_scroll(Widget widget, XtPointer client_data, XtPointer call_data);
NB_VOID vga_viewer_scroll_drag(Widget widget, XtPointer client_data, XtPointer call_data);

#endif
