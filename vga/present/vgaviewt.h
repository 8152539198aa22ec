/* The item tree of a list: order, positions and selection, without a screen (no X in here).
 *
 * Every level of the tree is a list of siblings, kept as a balanced binary tree that is ordered by
 * position.  Each item carries the number of visible lines and of selected items below it in that
 * binary tree, so that inserting, removing, opening, closing, finding the line at a height and the
 * height of a line cost O(log n) a level, however long the list is.  Positions are counted in
 * lines; the pixel is a line times gvga_viewer_item_height.
 *
 * OWNS: nothing.  An item is a field of a model record, which must take it out of its list
 * (vga_delete_viewer) before it goes. */
#ifndef VGAVIEWT_H
#define VGAVIEWT_H

#include "nbtypes.h"

#define VGA_VIEWER_SELECT_NONE (-1)

struct VGA_VIEWER_ITEM;

/* The siblings under one item, or the top level. */
struct VGA_VIEWER_LIST {
    VGA_VIEWER_ITEM *root; /* of the binary tree */
    VGA_VIEWER_ITEM *first, *last;
    NB_ULONG count; /* hidden ones too */
};

/* One line.  Readers may look at everything; only the functions here and in vgaviewr.h write. */
struct VGA_VIEWER_ITEM {
    VGA_VIEWER_ITEM *up, *left, *right; /* in the binary tree of the siblings */
    NB_VOID *data;                      /* the record */
    VGA_VIEWER_ITEM *parent;            /* null at the top level */
    VGA_VIEWER_LIST children;
    NB_ULONG lines;        /* this line and the visible ones below it; 0: hidden */
    NB_ULONG lines_sum;    /* of this item and both branches of the binary tree */
    NB_ULONG selected_sum; /* likewise: selected items, without descendants */
    NB_ULONG line_width;   /* pixels, when laid_out */
    NB_UCHAR type;         /* row of gvga_viewer_desc */
    NB_UCHAR height;       /* in the binary tree */
    NB_USHORT in_list;
    NB_USHORT expanded;
    NB_USHORT selected;
    NB_USHORT fixed;    /* a title line: keyboard moves, ranges and "first" go around it */
    NB_USHORT hidden;   /* takes no room; every walk passes it */
    NB_USHORT laid_out; /* was measured, so it may be on the screen */
};

static_assert(sizeof(VGA_VIEWER_ITEM) <= 200);

/* Lines to be drawn again: [top, bottom), counted from the top of the list. */
struct VGA_VIEWER_BAND {
    NB_ULONG top, bottom;
};
#define VGA_VIEWER_BANDS  8
#define VGA_VIEWER_TO_END 0xFFFFFFFF

/* What a list knows without its widgets. */
struct VGA_VIEWER_TREE {
    NB_USHORT displayed; /* while 0, nothing is noted for drawing */
    VGA_VIEWER_LIST top_items;
    VGA_VIEWER_ITEM *select_anchor;  /* the start of ranges */
    VGA_VIEWER_ITEM *outline_viewer; /* has the keyboard */
    VGA_VIEWER_ITEM *last_dragged;
    VGA_VIEWER_ITEM *armed;   /* pressed and not yet released */
    VGA_VIEWER_ITEM *clicked; /* the last one released on, for double clicks */
    NB_LONG select_count;
    NB_SHORT select_type;           /* VGA_VIEWER_SELECT_NONE while the count is 0 */
    VGA_VIEWER_ITEM *select_parent; /* of all selected items, while the count is not 0 */
    NB_USHORT dirty_count;
    VGA_VIEWER_BAND dirty[VGA_VIEWER_BANDS]; /* in no order, never overlapping */
};

/* Order and position. */

/* `after` of vga_create_viewer: before every line but the leading fixed ones; at the end. */
extern VGA_VIEWER_ITEM gvga_viewer_first;
#define VGA_VIEWER_FIRST (&gvga_viewer_first)
#define VGA_VIEWER_LAST  (static_cast<VGA_VIEWER_ITEM *>(nullptr))

NB_VOID vga_viewer_tree_init(VGA_VIEWER_TREE *tree);

/* Clears `item` and puts it in.  `after` is a sibling or one of the two above; returns 0, with
 * nothing changed but `item`, if it is neither. */
NB_USHORT vga_viewer_tree_insert(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT type,
                                 NB_VOID *data, VGA_VIEWER_ITEM *parent, VGA_VIEWER_ITEM *after);

/* Takes an item out together with what is below it: the children stay its children and can be taken
 * out one by one later, while the item's memory lives.  Every reference of the tree into the
 * subtree is dropped first.  An item in no list is left alone. */
NB_VOID vga_viewer_tree_remove(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item);

NB_VOID vga_viewer_tree_set_expanded(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT state,
                                     NB_USHORT redraw);

/* A line that is hidden loses selection, anchor and outline, and so do those below it. */
NB_VOID vga_viewer_tree_set_hidden(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT state);

/* The visible lines of a list. */
NB_ULONG vga_viewer_list_lines(const VGA_VIEWER_LIST *list);

/* Lines before the item among its siblings; lines before it in the whole list (as if everything
 * above it were open, when it lies in a closed item). */
NB_ULONG vga_viewer_get_line_in_list(const VGA_VIEWER_ITEM *item);
NB_ULONG vga_viewer_get_line(const VGA_VIEWER_ITEM *item);

/* The item that fills that line of the list, with what is below it; null beyond the end. */
VGA_VIEWER_ITEM *vga_viewer_find_in_list(const VGA_VIEWER_LIST *list, NB_ULONG line);

/* The item whose own line that is; null beyond the end. */
VGA_VIEWER_ITEM *vga_viewer_find_line(const VGA_VIEWER_TREE *tree, NB_ULONG line);

/* In the list, not hidden, and everything above it open. */
NB_USHORT vga_viewer_is_visible(const VGA_VIEWER_ITEM *item);

/* Has a child that is not hidden: shows an expand icon, can be opened. */
NB_USHORT vga_viewer_has_children(const VGA_VIEWER_ITEM *item);

/* `item` is `ancestor` or lies below it; null does not. */
NB_USHORT vga_viewer_is_within(const VGA_VIEWER_ITEM *item, const VGA_VIEWER_ITEM *ancestor);

/* The next and the previous line of all levels in screen order; null at the ends and for an item
 * that is not visible. */
VGA_VIEWER_ITEM *vga_viewer_next_line(const VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item);
VGA_VIEWER_ITEM *vga_viewer_prev_line(const VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item);

/* The next and the previous sibling that is not hidden; null at the ends. */
VGA_VIEWER_ITEM *vga_viewer_next_sibling(VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item);
VGA_VIEWER_ITEM *vga_viewer_prev_sibling(VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item);

/* The list that the item is, or would be, in. */
VGA_VIEWER_LIST *vga_viewer_siblings(VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item);

/* Selection. */

/* All selected items have one parent and one type: selecting another kind drops the rest first.
 * Count, type and parent follow.  Returns the change of the item: 1, -1 or 0. */
NB_SHORT vga_viewer_tree_set_select(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT state,
                                    NB_USHORT redraw);

/* Deselects everything; anchor and outline stay. */
NB_VOID vga_viewer_tree_clear_selection(VGA_VIEWER_TREE *tree, NB_USHORT redraw);

/* Moves the outline; null removes it. */
NB_VOID vga_viewer_tree_set_outline(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT redraw);

/* What a click on `item` does (see vga_viewer_select). */
NB_VOID vga_viewer_tree_select(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT toggle,
                               NB_USHORT extend, NB_USHORT redraw);

/* The first selected item; the first behind `item` among its siblings, or, with none behind, the
 * last before it.  Null when there is none. */
VGA_VIEWER_ITEM *vga_viewer_first_selected(const VGA_VIEWER_TREE *tree);
VGA_VIEWER_ITEM *vga_viewer_next_selected(const VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item);

/* The outlined item when it is selected, else the anchor when it is, else the first selected. */
VGA_VIEWER_ITEM *vga_viewer_current(const VGA_VIEWER_TREE *tree);

/* Drawing. */

/* Notes lines [top, bottom) for drawing; nothing while the list is not displayed. */
NB_VOID vga_viewer_mark(VGA_VIEWER_TREE *tree, NB_ULONG top, NB_ULONG bottom);

/* Notes the item's own line; nothing while it is not visible. */
NB_VOID vga_viewer_mark_item(VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item);

#endif
