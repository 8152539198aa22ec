/* The tree of a list: its lines, their order and positions (no X in here).
 *
 * A list is hierarchical: a line is a VGA_VIEWER_ITEM inside a model record; lists and lines know
 * nothing of what they show.  Every level of the tree is a list of siblings, kept as a balanced
 * binary tree that is ordered by position.  Each item carries the number of visible lines and of
 * selected items below it in that binary tree, so that inserting, removing, opening, closing,
 * finding a line and the position of a line cost O(log n) a level, however long the list is.
 * Positions are counted in lines.  Everything is current when a call returns; what shows the list
 * is told (VGA_VIEWER_WATCHER) and draws later.
 *
 * OWNS: nothing.  A root is a field of the record whose list it is, an item one of the record that
 * it stands for, which must take it out of its list (vga_delete_viewer) before it goes. */
#ifndef TREE_H
#define TREE_H

#include "nbtypes.h"

#define VGA_VIEWER_SELECT_NONE (-1)

struct VGA_VIEWER_ITEM;
struct VGA_VIEWER_VIEW; /* what shows a list; known to the viewer only */
struct VGA_FINDER;      /* what searches, filters and counts its lines (finder.h) */

/* The siblings under one item, or the top level. */
struct VGA_VIEWER_LIST {
    VGA_VIEWER_ITEM *root; /* of the binary tree */
    VGA_VIEWER_ITEM *first, *last;
    NB_ULONG count; /* hidden ones too */
};

/* One line.  Readers may look at everything; only the list and its view write. */
struct VGA_VIEWER_ITEM {
    VGA_VIEWER_ITEM *up, *left, *right; /* in the binary tree of the siblings */
    NB_VOID *data;                      /* the record */
    VGA_VIEWER_ITEM *parent;            /* null at the top level */
    VGA_VIEWER_LIST children;
    NB_ULONG lines;        /* this line and the visible ones below it; 0: hidden */
    NB_ULONG lines_sum;    /* of this item and both branches of the binary tree */
    NB_ULONG selected_sum; /* likewise: selected items, without descendants */
    NB_ULONG line_width;   /* pixels, when laid_out; the view's */
    NB_ULONG text_at;      /* where the finder keeps its text */
    NB_UCHAR type;         /* what kind of line it is: a row of the view's table */
    NB_UCHAR height;       /* in the binary tree */
    NB_UCHAR counted;      /* the finder's: the state that it was counted in, plus 1 */
    NB_UCHAR filtered;     /* the finder's: what the filter has said of it */
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

/* What a list tells its view, and the one thing that it asks.  All slots are filled. */
struct VGA_VIEWER_WATCHER {
    NB_VOID (*to_draw)(VGA_VIEWER_VIEW *view);       /* lines were noted in `dirty` */
    NB_VOID (*lines_changed)(VGA_VIEWER_VIEW *view); /* lines came, went, opened or closed */
    /* What is selected changed: the window's buttons, which `type` tells, may follow. */
    NB_VOID (*selection_changed)(VGA_VIEWER_VIEW *view, NB_SHORT type);
    NB_VOID (*list_gone)(VGA_VIEWER_VIEW *view); /* free yourself */
    NB_USHORT (*is_title)(NB_UCHAR type);        /* lines of that type cannot be selected */
};

/* A list.  Readers may look at everything. */
struct VGA_VIEWER_ROOT {
    NB_ULONG handle;                   /* for whoever may outlive the list */
    NB_VOID *window;                   /* the owner's: whose buttons and actions these are */
    VGA_VIEWER_VIEW *view;             /* null: not shown yet */
    VGA_FINDER *finder;                /* null: nobody has asked for any */
    const VGA_VIEWER_WATCHER *watcher; /* of the view; null without one */
    NB_USHORT displayed;               /* while 0, nothing is noted for drawing */
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

/* A list and its lines.  Flag `redraw`: 0 leaves the screen to a later call. */

/* Makes an empty list without a view, window null.  Returns 0 if no handle can be had. */
NB_USHORT vga_viewer_init_root(VGA_VIEWER_ROOT *root);

/* Has view and finder go and ends the list's handle.  The items are left as they are. */
NB_VOID vga_viewer_destroy_root(VGA_VIEWER_ROOT *root);

/* `after` of vga_create_viewer: before every line but the leading fixed ones; at the end. */
extern VGA_VIEWER_ITEM gvga_viewer_first;
#define VGA_VIEWER_FIRST (&gvga_viewer_first)
#define VGA_VIEWER_LAST  (static_cast<VGA_VIEWER_ITEM *>(nullptr))

/* Initialises `item` (whatever its memory holds) and puts it under `parent` (null: at the top
 * level) behind its sibling `after`, or VGA_VIEWER_FIRST, or VGA_VIEWER_LAST (null).
 * REQUIRES: `item` is in no list; `after` is a child of `parent` (a fatal assertion; the list stays
 * as it was). */
NB_VOID vga_create_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT type,
                          NB_VOID *data, VGA_VIEWER_ITEM *parent, VGA_VIEWER_ITEM *after);

/* Takes an item with all below it to another place of its list, as vga_create_viewer says, and
 * makes it a line of that type.  What is open below it stays open.  Selection and outline of the
 * item alone go with it while it can be seen; under another parent, those below it are let go of.
 * REQUIRES: `after` is not the item. */
NB_VOID vga_move_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT type,
                        VGA_VIEWER_ITEM *parent, VGA_VIEWER_ITEM *after);

/* Takes an item and all below it off the list.  Anchor, outline, drag and selection let go of them
 * first, and the window's buttons are set when the selection changed.  The children stay the
 * item's; deleting them behind it, as long as the item's memory lives, costs nothing and may be
 * left out.  An item that is in no list is ignored. */
NB_VOID vga_delete_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);

/* The record changed: measures and draws its line again. */
NB_VOID vga_update_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item);

/* Opens a line with children; closes one.  Closing takes selection and outline off the lines that
 * vanish: the outline goes to the closed line, the selection, too, if it can be selected. */
NB_VOID vga_expand_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT redraw);
NB_VOID vga_viewer_contract(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT redraw);

/* Opens every line of the list that has children, on all levels, in one pass. */
NB_VOID vga_viewer_expand_all(VGA_VIEWER_ROOT *root);

/* Title lines, and lines that a filter leaves out.  A line that is hidden loses selection, anchor
 * and outline, and so do those below it. */
NB_VOID vga_viewer_set_fixed(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT fixed);
NB_VOID vga_viewer_set_hidden(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT hidden);

/* A fresh record takes an old one's place: if the old line is open, so is the new one. */
NB_VOID vga_viewer_copy_state(const VGA_VIEWER_ITEM *old_item, VGA_VIEWER_ITEM *new_item,
                              VGA_VIEWER_ROOT *root);

/* Positions. */

/* What a new line under `parent` goes behind: the last sibling for which before(item) is 1, or
 * VGA_VIEWER_FIRST.  REQUIRES: behind the leading fixed lines, those for which it is come first. */
template <class Before>
VGA_VIEWER_ITEM *vga_viewer_find_place(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *parent,
                                       Before before) {
    VGA_VIEWER_ITEM *place = VGA_VIEWER_FIRST;
    VGA_VIEWER_ITEM *item = parent != nullptr ? parent->children.root : root->top_items.root;
    while (item != nullptr) {
        const NB_USHORT is_before = !item->fixed && before(*item);
        place = is_before ? item : place;
        item = is_before || item->fixed ? item->right : item->left;
    }
    return place;
}

/* The visible lines of a list. */
NB_ULONG vga_viewer_list_lines(const VGA_VIEWER_LIST *list);

/* Lines before the item among its siblings; lines before it in the whole list (as if everything
 * above it were open, when it lies in a closed item). */
NB_ULONG vga_viewer_get_line_in_list(const VGA_VIEWER_ITEM *item);
NB_ULONG vga_viewer_get_line(const VGA_VIEWER_ITEM *item);

/* The item that fills that line of the list, with what is below it; null beyond the end. */
VGA_VIEWER_ITEM *vga_viewer_find_in_list(const VGA_VIEWER_LIST *list, NB_ULONG line);

/* The item whose own line that is; null beyond the end. */
VGA_VIEWER_ITEM *vga_viewer_find_line(const VGA_VIEWER_ROOT *root, NB_ULONG line);

/* In the list, not hidden, and everything above it open. */
NB_USHORT vga_viewer_is_visible(const VGA_VIEWER_ITEM *item);

/* Has a child that is not hidden: shows an expand icon, can be opened. */
NB_USHORT vga_viewer_has_children(const VGA_VIEWER_ITEM *item);

/* `item` is `ancestor` or lies below it; null does not. */
NB_USHORT vga_viewer_is_within(const VGA_VIEWER_ITEM *item, const VGA_VIEWER_ITEM *ancestor);

/* The next and the previous line of all levels in screen order; null at the ends and for an item
 * that is not visible. */
VGA_VIEWER_ITEM *vga_viewer_get_next_item(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item);
VGA_VIEWER_ITEM *vga_viewer_get_prev_item(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item);

/* The next and the previous sibling that is not hidden; null at the ends. */
VGA_VIEWER_ITEM *vga_viewer_next_sibling(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item);
VGA_VIEWER_ITEM *vga_viewer_prev_sibling(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item);

/* The next and the previous sibling, hidden or not; null at the ends. */
VGA_VIEWER_ITEM *vga_viewer_next_in_list(const VGA_VIEWER_ITEM *item);
VGA_VIEWER_ITEM *vga_viewer_previous_in_list(VGA_VIEWER_ITEM *item);

/* The list that the item is, or would be, in. */
VGA_VIEWER_LIST *vga_viewer_siblings(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item);

/* For the other parts of the list (selection.h, finder.h). */

/* Sums and balance anew from a changed node (which may be null) up. */
NB_VOID vga_viewer_add_up(VGA_VIEWER_LIST *list, VGA_VIEWER_ITEM *node);

/* Gives a line another `hidden` or `expanded`, and nothing more: no reference is let go of, nothing
 * is noted for drawing, nobody is told. */
NB_VOID vga_viewer_set_quietly(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT hidden,
                               NB_USHORT expanded);

/* Calls visit(item, data) for every line of the list, children first; it may change `hidden` and
 * `expanded` of that one.  All sums are made once, so that a million lines change in one pass.  As
 * quiet as the call above. */
NB_VOID vga_viewer_sweep(VGA_VIEWER_ROOT *root, NB_VOID (*visit)(VGA_VIEWER_ITEM *, NB_VOID *),
                         NB_VOID *data);

/* Notes the whole list for drawing and tells the view that lines came or went. */
NB_VOID vga_viewer_changed_all(VGA_VIEWER_ROOT *root);

/* Selected item number `index` of the list, null beyond; the number of those before an item. */
VGA_VIEWER_ITEM *vga_viewer_find_selected(const VGA_VIEWER_LIST *list, NB_ULONG index);
NB_ULONG vga_viewer_selected_before(const VGA_VIEWER_ITEM *item);

#endif
