/* What the viewer's own modules tell each other; nobody else includes this.
 *
 *   vgaviewt  tree, positions         vgaviewd  drawing, scroll bars, the update timer
 *   vgaviews  selection, dirty bands  vgaviewr  the interface, attaching to widgets
 *   vgaviewl  layout of text and view vgaviewm  mouse
 *   (these three know no X)           vgaviewk  keyboard */
#ifndef VGAVIEWI_H
#define VGAVIEWI_H

#include "vgaviewr.h"

/* Tree and selection. */

/* Sums and balance anew from a changed node (which may be null) up. */
NB_VOID vga_viewer_add_up(VGA_VIEWER_LIST *list, VGA_VIEWER_ITEM *node);

/* Selected item number `index` of the list, null beyond; the number of those before an item. */
VGA_VIEWER_ITEM *vga_viewer_find_selected(const VGA_VIEWER_LIST *list, NB_ULONG index);
NB_ULONG vga_viewer_selected_before(const VGA_VIEWER_ITEM *item);

/* Drops every reference to the item and what is below it, before they go or are hidden. */
NB_VOID vga_viewer_tree_let_go(VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *viewer);

/* Layout. */

/* A piece of a line's text that is drawn in one go. */
struct VGA_VIEWER_RUN {
    const NB_CHAR *text;
    NB_INT length;   /* bytes, already cut where the next column begins */
    NB_ULONG column; /* in characters */
    NB_USHORT last;
};

/* Takes the next run off `*text`, which is null after the last; `*column` is 0 at the first. */
NB_USHORT vga_viewer_next_run(const NB_CHAR **text, NB_ULONG *column, VGA_VIEWER_RUN *run);

/* The bytes of the first `columns` columns of the text, a whole number of characters. */
NB_INT vga_viewer_cut(const NB_CHAR *text, NB_INT length, NB_ULONG columns);

/* Which scroll bars a list needs.  All in pixels. */
struct VGA_VIEWER_FIT {
    NB_ULONG full_width, full_height; /* of the window if no bar were shown */
    NB_ULONG hbar_height, vbar_width; /* what a bar takes of it */
    NB_ULONG content_width, lines_height;
    NB_USHORT hbar, vbar; /* out: needed */
};
NB_VOID vga_viewer_fit(VGA_VIEWER_FIT *fit);

/* Height of the content for the scroll bar: one line more when not everything fits, so that the
 * last line can be scrolled to where it is whole. */
NB_ULONG vga_viewer_content_height(NB_ULONG lines_height, NB_ULONG window_height,
                                   NB_ULONG item_height);

/* An offset that stays within the content, a multiple of `step`. */
NB_ULONG vga_viewer_clamp(int64_t offset, NB_ULONG content, NB_ULONG window, NB_ULONG step);

/* Screen. */

/* The timer will draw what is noted, if anything is. */
NB_VOID vga_viewer_schedule(VGA_VIEWER_ROOT *root);

/* Lines came or went: heights, offset and bars follow. */
NB_VOID vga_viewer_content_changed(VGA_VIEWER_ROOT *root);

/* Moves the view, within the content; `bar` is the scroll bar that asked for it, null otherwise. */
NB_VOID vga_viewer_set_offsets(VGA_VIEWER_ROOT *root, int64_t x, int64_t y, Widget bar);

/* Reads the size of the window; 1 when it changed. */
NB_USHORT vga_viewer_read_size(VGA_VIEWER_ROOT *root);

/* Notes the whole window for drawing. */
NB_VOID vga_viewer_mark_all(VGA_VIEWER_ROOT *root);

/* Pixels before a line's text: indentation and icons. */
NB_ULONG vga_viewer_left_width(const VGA_VIEWER_DESC *desc);

/* Writes the line's text, terminated, into a buffer of VGA_VIEWER_TEXT_BUFFER + 1 bytes.
 * Returns its length. */
NB_USHORT vga_viewer_line_text(const VGA_VIEWER_ITEM *item, NB_CHAR *buffer);

/* Mouse and keyboard. */

/* The line at a height in the window; null for none. */
VGA_VIEWER_ITEM *vga_viewer_hit(const VGA_VIEWER_ROOT *root, NB_INT window_y);

/* 1 when x, in the window, lies in the column of the line's expand icon. */
NB_USHORT vga_viewer_check_expand(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item,
                                  NB_INT window_x);

NB_VOID vga_viewer_drag_to(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);
NB_VOID vga_viewer_end_drag(VGA_VIEWER_ROOT *root);

/* The type's disarm_cb and set_button_states, if the list is displayed. */
NB_VOID vga_viewer_call_disarm(VGA_VIEWER_ROOT *root, NB_SHORT type);
NB_VOID vga_viewer_notify(VGA_VIEWER_ROOT *root, NB_SHORT type);

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
