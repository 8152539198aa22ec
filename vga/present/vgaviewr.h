/* The viewer: the list control of every window.  A hierarchical list of lines with icon and text
 * columns, drawn by hand into an XmDrawnButton with its own two scroll bars, so that its length has
 * no limit.  A line is a VGA_VIEWER_ITEM inside a model record; what it shows and does is told by
 * its type, a row of the table that the windows layer hands in (vga_viewer_set_types).
 *
 * Order, positions and selection are current when a call returns; drawing is put off to one timer
 * of no length, so that a burst of changes is drawn once.  While a list is not displayed, all calls
 * work and nothing is drawn.
 *
 * OWNS: a root belongs to its window's record, an item to its model record; the viewer frees
 * neither. Flags `redraw`: 0 leaves the screen to a later call; `notify`: 1 calls
 * set_button_states. */
#ifndef VGAVIEWR_H
#define VGAVIEWR_H

#include "nbtypes.h"
#include "vgaviewt.h"
#include <X11/Intrinsic.h>
#include <Xm/Xm.h>

/* Viewer types. */

enum VGA_VIEWER_TYPE : NB_UCHAR {
    VGA_VIEWER_LU62 = 0,
    VGA_VIEWER_MODE = 1,
    VGA_VIEWER_PORT = 2,
    VGA_VIEWER_LS = 3,
    VGA_VIEWER_LOCAL_PU = 4,
    VGA_VIEWER_DEPLU = 5,
    VGA_VIEWER_DOWN_LU = 6,
    VGA_VIEWER_USER = 7,
    VGA_VIEWER_POOL = 8,
    VGA_VIEWER_CPIC = 9,
    VGA_VIEWER_MODE_DEF = 10,
    VGA_VIEWER_NODE = 11,
    VGA_VIEWER_RJE = 12,
    VGA_VIEWER_LS_LEAF = 13,
    VGA_VIEWER_REM_SYS = 14,
    VGA_VIEWER_REM_PLU = 15,
    VGA_VIEWER_REM_SESS = 16,
    VGA_VIEWER_REM_PLU_LEAF = 17,
    VGA_VIEWER_USER_SESS = 18,
    VGA_VIEWER_USTAD = 19,
    VGA_VIEWER_USTAD_TITLE = 20,
    VGA_VIEWER_TN_SESS = 21,
    VGA_VIEWER_TN_SESS_TITLE = 22,
    VGA_VIEWER_POOL_LU = 23,
    VGA_VIEWER_CL_SECURITY = 24,
    VGA_VIEWER_SL_SEC_TITLE = 25,
    VGA_VIEWER_SL_SECURITY = 26,
    VGA_VIEWER_TN_ASSOC = 27,
    VGA_VIEWER_TN_ASSOC_TITLE = 28,
    VGA_VIEWER_RTP_CONN = 29,
    VGA_VIEWER_RTP_CONN_TITLE = 30,
    VGA_VIEWER_LS_R_TITLE = 31,
    VGA_VIEWER_LS_R = 32,
    VGA_VIEWER_APPCIP_SESS_TITLE = 33,
    VGA_VIEWER_APPCIP_SESS = 34,
    VGA_VIEWER_DSLU_TEMPLATE = 35,
    VGA_VIEWER_PRIMARY_LINE = 36,
    VGA_VIEWER_PRIMARY_LU0 = 37,
    VGA_VIEWER_ACCESS_LIST = 38,
    VGA_VIEWER_TP_DEF = 39,
    VGA_VIEWER_TP_LOAD_INFO = 40,
    VGA_VIEWER_TN_REDIRECT = 41,
    VGA_VIEWER_TN_REDIRECT_TITLE = 42,
    VGA_VIEWER_TYPE_COUNT = 43
};

#define VGA_VIEWER_MAX_TEXT_LENGTH 1000
#define VGA_VIEWER_TEXT_BUFFER     4096 /* bytes that create_text may write */

/* A type of line.  `data` is the item's record; every function may be null. */
struct VGA_VIEWER_DESC {
    /* Writes the line in the locale's characters, terminated or not, and returns its length in
     * bytes.  "%t" with a column number and perhaps a "%" behind it goes on at that column. */
    NB_USHORT (*create_text)(NB_VOID *data, NB_CHAR *buffer);
    NB_USHORT (*choose_icon)(NB_VOID *data); /* index into gvga_pixmaps */
    NB_USHORT show_icon;                     /* without choose_icon: icon "blank" */
    /* Button 1 pressed on the line: select it (vga_viewer_arm_select does what most need).  A type
     * without it is a title: the keyboard passes it. */
    NB_VOID (*arm_cb)(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs);
    NB_VOID (*disarm_cb)(Widget widget); /* released: update the window's buttons */
    /* Released on the line outside its expand column.  Open the record if vga_viewer_is_open(cbs).
     */
    NB_VOID (*activate_cb)(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs);
    /* The pointer crossed the line in a drag: if it may join, call vga_viewer_drag_cb. */
    NB_VOID (*drag_cb)(NB_VOID *data, NB_USHORT select, NB_USHORT redraw);
    /* Draws on top of the line, whose text begins at x and whose upper edge is y, into `drawable`
     * (not the widget's window) with the line's own context. */
    NB_VOID (*decor_cb)(NB_VOID *data, Widget widget, Drawable drawable, NB_INT x, NB_INT y, GC gc);
    /* The selection changed: set the window's buttons.  `window` is the root's. */
    NB_VOID (*set_button_states)(NB_VOID *window);
    NB_USHORT expandable; /* can have children */
    NB_USHORT level;      /* indentation, 0 to 2 */
    NB_USHORT flat;       /* keeps no column free for an expand icon that it cannot have */
};

/* The table in use.  `table` must outlive every list. */
extern const VGA_VIEWER_DESC *gvga_viewer_desc;
NB_VOID vga_viewer_set_types(const VGA_VIEWER_DESC *table, NB_USHORT count);

/* The row of an item; an empty one for a type that the table does not have. */
const VGA_VIEWER_DESC *vga_viewer_type(const VGA_VIEWER_ITEM *item);

/* What the dialog framework adds. */

enum VGA_VIEWER_ACTION : NB_USHORT {
    VGA_VIEWER_ACTION_ZOOM,   /* Return */
    VGA_VIEWER_ACTION_DELETE, /* Delete */
    VGA_VIEWER_ACTION_ADD     /* Insert */
};

/* A key asks for an action of the window: `window` is the root's, `widget` the drawn button.  Set
 * at start by the dialog framework; while it is null the keys are ignored. */
typedef NB_VOID (*VGA_VIEWER_WINDOW_ACTION)(NB_VOID *window, VGA_VIEWER_ACTION action,
                                            Widget widget);
extern VGA_VIEWER_WINDOW_ACTION gvga_viewer_window_action;

/* A list. */

struct VGA_VIEWER_ROOT : VGA_VIEWER_TREE {
    NB_ULONG handle; /* what timers carry */
    Widget draw_widget, hscroll, vscroll;
    NB_ULONG content_height; /* pixels of all lines; one line more when the bar is shown */
    NB_ULONG content_width;  /* pixels of the widest line measured so far */
    NB_ULONG window_width, window_height;
    NB_ULONG x_offset, y_offset; /* pixels; the latter a multiple of the line height */
    NB_USHORT vscroll_shown;
    NB_USHORT bars_due;        /* the timer is to set the scroll bars */
    XtIntervalId update_timer; /* 0: none */
    NB_SHORT armed_type;       /* of the line that is pressed, though it may be gone */
    NB_USHORT dragging;
    XtIntervalId drag_timer; /* 0: none */
    Pixmap line_pixmap;      /* one line is drawn in it, then copied */
    NB_ULONG line_pixmap_width;
    NB_VOID *window; /* the owner's: for set_button_states and the window actions */
};

/* Makes an empty list with no widgets and window null.  Returns 0 if no handle can be had. */
NB_USHORT vga_viewer_init_root(VGA_VIEWER_ROOT *root);

/* Detaches the list and ends its handle.  The items are left as they are. */
NB_VOID vga_viewer_destroy_root(VGA_VIEWER_ROOT *root);

/* Shows the list in its widgets until vga_viewer_undisplay or until they are destroyed.  A list
 * that is displayed already is detached first. REQUIRES: an XmDrawnButton, whose translations leave
 * the arrow, page and Return keys alone and arm it with Ctrl and Shift, too; its parent is the
 * XmScrolledWindow of the two XmScrollBars. */
NB_VOID vga_viewer_display_root(VGA_VIEWER_ROOT *root, Widget draw_widget, Widget hscroll,
                                Widget vscroll);

/* Detaches; expansion and selection stay. */
NB_VOID vga_viewer_undisplay(VGA_VIEWER_ROOT *root);

/* Lines. */

/* Initialises `item` (whatever its memory holds) and puts it under `parent` (null: at the top
 * level) behind its sibling `after`, or VGA_VIEWER_FIRST: before every line but the leading fixed
 * ones, or VGA_VIEWER_LAST (null): at the end. REQUIRES: `item` is in no list; `after` is a child
 * of `parent`. */
NB_VOID vga_create_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT type,
                          NB_VOID *data, VGA_VIEWER_ITEM *parent, VGA_VIEWER_ITEM *after);

/* Takes an item and all below it off the list.  Anchor, outline, drag and selection let go of them
 * first, and the window's buttons are set when the selection changed.  Deleting the children behind
 * it, as long as the item's memory lives, costs nothing and may be left out.  An item that is in no
 * list is ignored. */
NB_VOID vga_delete_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);

/* The record changed: measures and draws its line again. */
NB_VOID vga_update_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);

/* Opens a line with children; closes one.  Closing takes selection and outline off the lines that
 * vanish: the outline goes to the closed line, the selection, too. */
NB_VOID vga_expand_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT redraw);
NB_VOID vga_viewer_contract(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT redraw);

/* Title lines, and lines that a filter leaves out. */
NB_VOID vga_viewer_set_fixed(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT fixed);
NB_VOID vga_viewer_set_hidden(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT hidden);

/* A fresh record takes an old one's place: if the old line is open, so is the new one. */
NB_VOID vga_viewer_copy_state(const VGA_VIEWER_ITEM *old_item, VGA_VIEWER_ITEM *new_item,
                              VGA_VIEWER_ROOT *root);

/* Pixels from the first child slot of the parent (or the top of the list); pixels of the item with
 * all visible lines below it; pixels from the top of the list (minus one line for null). */
NB_ULONG vga_viewer_get_y(const VGA_VIEWER_ITEM *item);
NB_ULONG vga_viewer_get_extent(const VGA_VIEWER_ITEM *item);
NB_LONG vga_viewer_get_screen_pos(const VGA_VIEWER_ITEM *item);

/* The line at a height from the top of the list; null above and below all lines. */
VGA_VIEWER_ITEM *vga_find_viewer(const VGA_VIEWER_ROOT *root, NB_LONG y);

/* The next and the previous visible line in screen order; null at the ends. */
VGA_VIEWER_ITEM *vga_viewer_get_next_item(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item);
VGA_VIEWER_ITEM *vga_viewer_get_prev_item(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item);

/* Selection. */

/* What a click does: outlines `item` and selects it alone; with `toggle` (Ctrl) flips it and keeps
 * the others; with `extend` (Shift) gives every line of the anchor's type from the anchor to `item`
 * the anchor's state.  All selected lines have one parent and one type. */
NB_VOID vga_viewer_select(VGA_VIEWER_ITEM *item, VGA_VIEWER_ROOT *root, NB_USHORT toggle,
                          NB_USHORT extend, NB_USHORT redraw, NB_USHORT notify);

/* For arm callbacks: vga_viewer_select with Ctrl and Shift as the event has them.  Without an event
 * (or with another kind of event) neither is held. */
NB_VOID vga_viewer_arm_select(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item,
                              const XmDrawnButtonCallbackStruct *cbs);

/* For activate callbacks: 1 when the record is to be opened (a double click), 0 for the first
 * click. */
NB_USHORT vga_viewer_is_open(const XmDrawnButtonCallbackStruct *cbs);

/* Sets or flips one item; count and type follow.  Returns the change of the count: 1, -1 or 0. */
NB_SHORT vga_viewer_set_select(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT state);
NB_SHORT vga_viewer_toggle_select(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);

NB_VOID vga_viewer_clear_selection(VGA_VIEWER_ROOT *root);
NB_VOID vga_clear_outline_selection(VGA_VIEWER_ROOT *root); /* removes the outline */

/* The record of the selected item, and its type (`type` may be null); null and
 * VGA_VIEWER_SELECT_NONE without one.  Of several: the outlined, else the anchor, else the first.
 */
NB_VOID *vga_viewer_get_selection(const VGA_VIEWER_ROOT *root, NB_SHORT *type);
VGA_VIEWER_ITEM *vga_viewer_get_selected_viewer(const VGA_VIEWER_ROOT *root);

/* Adds a line to a drag selection, or takes it out. */
NB_VOID vga_viewer_drag_cb(VGA_VIEWER_ITEM *item, VGA_VIEWER_ROOT *root, NB_USHORT select,
                           NB_USHORT redraw);

/* View. */

/* Scrolls as little as shows the item (the line that it is closed in, if it is). */
NB_VOID vga_viewer_set_view(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item);

/* Moves the view by pixels, down or to the right for more than 0, within the content.  (The wheel
 * does so, too, by three lines, or with Shift by three columns.) */
NB_VOID vga_viewer_scroll_view(VGA_VIEWER_ROOT *root, NB_LONG pixels);
NB_VOID vga_viewer_scroll_view_horizontal(VGA_VIEWER_ROOT *root, NB_LONG pixels);

/* Sets the width of the content (it grows by itself when a wider line is drawn). */
NB_VOID vga_viewer_set_width(VGA_VIEWER_ROOT *root, NB_ULONG width);

/* Pixels of a line's text, with its column stops; 0 without a display. */
NB_ULONG vga_viewer_text_width(const NB_CHAR *text);

/* A ready decor_cb: a line under the text, to the right edge of the widget. */
NB_VOID vga_viewer_add_underline(NB_VOID *data, Widget widget, Drawable drawable, NB_INT x,
                                 NB_INT y, GC gc);

/* Draws at once what the timer would draw. */
NB_VOID vga_viewer_update_now(VGA_VIEWER_ROOT *root);

/* Keyboard. */

enum VGA_VIEWER_DIRECTION : NB_USHORT {
    VGA_VIEWER_UP = 1,
    VGA_VIEWER_DOWN = 2,
    VGA_VIEWER_PRIOR = 3,
    VGA_VIEWER_NEXT = 4,
    VGA_VIEWER_HOME = 5,
    VGA_VIEWER_END = 6
};

/* Moves the outline and the selection with it: through all levels, or, with `shift` or `ctrl`,
 * among the siblings.  Title lines are never the target. */
NB_VOID vga_viewer_key_move(VGA_VIEWER_ROOT *root, NB_USHORT direction, NB_USHORT shift,
                            NB_USHORT ctrl);

#endif
