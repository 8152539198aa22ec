/* The viewer: the list control of every window.  It shows a list (tree.h) as lines with icon and
 * text columns, drawn by hand into an XmDrawnButton with its own two scroll bars, so that its
 * length has no limit.  What a line shows and does is told by its type, a row of the table that the
 * windows layer hands in (vga_viewer_set_types).
 *
 * Drawing is put off to one timer of no length, so that a burst of changes is drawn once.  While a
 * list is not displayed, all calls work and nothing is drawn.
 *
 * OWNS: the view of a list, from the first call that needs it until the list goes. */
#ifndef VGAVIEWR_H
#define VGAVIEWR_H

#include "linelayout.h"
#include "linestate.h"
#include "nbtypes.h"
#include "selection.h"
#include <X11/Intrinsic.h>
#include <Xm/Xm.h>
#include <string>

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

    /* Writes what stands over the columns of such lines, as create_text does a line: a heading for
     * each (headings.h). */
    NB_USHORT (*create_headings)(NB_VOID *no_data, NB_CHAR *buffer) = nullptr;

    VGA_LINE_STATE (*choose_state)(const NB_VOID *data) = nullptr; /* null: such lines have none */
};

/* The table in use.  `table` must outlive every list. */
extern const VGA_VIEWER_DESC *gvga_viewer_desc;
NB_VOID vga_viewer_set_types(const VGA_VIEWER_DESC *table, NB_USHORT count);

/* The row of a type; an empty one for a type that the table does not have. */
const VGA_VIEWER_DESC *vga_viewer_type(NB_SHORT type);

/* The state of a line's record, as its type says. */
VGA_LINE_STATE vga_viewer_line_state(const VGA_VIEWER_ITEM *item);

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

#define VGA_VIEWER_NO_TIP (-1)

/* What shows a list. */
struct VGA_VIEWER_VIEW {
    VGA_VIEWER_ROOT *root;
    Widget draw_widget, hscroll, vscroll; /* null while it is not displayed */
    NB_ULONG content_width;               /* pixels of the widest line measured so far */
    NB_ULONG window_width, window_height;
    NB_ULONG x_offset, y_offset; /* pixels; the latter a multiple of the line height */
    NB_USHORT bars_due;          /* the timer is to set the scroll bars */
    XtIntervalId update_timer;   /* 0: none */
    NB_SHORT armed_type;         /* of the line that is pressed, though it may be gone */
    NB_USHORT dragging;
    XtIntervalId drag_timer; /* 0: none */
    Pixmap line_pixmap;      /* lines are drawn in it, then copied */
    NB_ULONG line_pixmap_width;
    struct _XftDraw *canvas; /* of the pixmap; null: the font is one of the server */
    Widget headings;         /* the strip that shows those of the type; null: none */
    NB_SHORT headings_head;  /* the type whose headings are shown while no line is current */
    NB_SHORT headings_type;
    NB_USHORT headings_due; /* the timer is to draw them */
    NB_LONG tip_line;       /* whose tip is shown or waited for, or VGA_VIEWER_NO_TIP */
    size_t tip_hash;        /* of its text */
    NB_USHORT find_due;     /* a timer is to go on with finding (search.h) */
    NB_USHORT sought;       /* what for: a VGA_VIEWER_SOUGHT */
    NB_CHAR typed[64];      /* in the list, the last characters not long ago */
    Time typed_at;
};

/* The list's view, made if need be; null, and an exit request, without memory. */
VGA_VIEWER_VIEW *vga_viewer_view(VGA_VIEWER_ROOT *root);

/* Shows the list in its widgets until vga_viewer_undisplay or until they are destroyed.  A list
 * that is displayed already is detached first. REQUIRES: an XmDrawnButton, whose translations leave
 * the arrow, page and Return keys alone and arm it with Ctrl and Shift, too; its parent is the
 * XmScrolledWindow of the two XmScrollBars. */
NB_VOID vga_viewer_display_root(VGA_VIEWER_ROOT *root, Widget draw_widget, Widget hscroll,
                                Widget vscroll);

/* Detaches and leaves the widgets blank; expansion and selection stay. */
NB_VOID vga_viewer_undisplay(VGA_VIEWER_ROOT *root);

/* Lines. */

/* Pixels from the top of the list to the item (minus one line for null). */
NB_LONG vga_viewer_get_screen_pos(const VGA_VIEWER_ITEM *item);

/* The line at a height from the top of the list; null above and below all lines. */
VGA_VIEWER_ITEM *vga_find_viewer(const VGA_VIEWER_ROOT *root, NB_LONG y);

/* Pixels of all lines; one line more when they need the scroll bar. */
NB_ULONG vga_viewer_get_content_height(const VGA_VIEWER_ROOT *root);

/* For arm callbacks: vga_viewer_select with Ctrl and Shift as the event has them.  Without an event
 * (or with another kind of event) neither is held. */
NB_VOID vga_viewer_arm_select(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item,
                              const XmDrawnButtonCallbackStruct *cbs);

/* For activate callbacks: 1 when the record is to be opened (a double click), 0 for the first
 * click. */
NB_USHORT vga_viewer_is_open(const XmDrawnButtonCallbackStruct *cbs);

/* View. */

/* Scrolls as little as shows the item (the line that it is closed in, if it is). */
NB_VOID vga_viewer_set_view(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item);

/* Opens the item, as vga_expand_viewer does, and scrolls as little as shows what came below it, or
 * as much of that as the window holds with the item itself. */
NB_VOID vga_viewer_open(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);

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

/* Lines as text.  Texts are whole, whatever room their columns have. */

/* The selected lines: their columns with tabs between them, and line ends between the lines. */
std::string vga_viewer_selected_lines(const VGA_VIEWER_ROOT *root);

/* Puts that on the clipboard; nothing while no line is selected or the list is not displayed.  (The
 * primary selection is taken by itself, whenever mouse or keyboard select, and its text is made
 * when somebody asks for it.) */
NB_VOID vga_viewer_copy_lines(const VGA_VIEWER_ROOT *root);

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
