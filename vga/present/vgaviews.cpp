#include "nbbase.h"
#include "vgaviewi.h"
#include <algorithm>

namespace {

/* Counts the change of one item that is in a list. */
NB_VOID count_selected(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT state) {
    item->selected = state;
    vga_viewer_add_up(vga_viewer_siblings(tree, item), item);
    tree->select_count += state != 0 ? 1 : -1;
    if (tree->select_count == 0) {
        tree->select_type = VGA_VIEWER_SELECT_NONE;
        tree->select_parent = nullptr;
    } else {
        tree->select_type = item->type;
        tree->select_parent = item->parent;
    }
}

/* Gives the anchor's state to every line of its type between it and `item`. */
NB_VOID select_range(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT state,
                     NB_USHORT redraw) {
    VGA_VIEWER_ITEM *from = tree->select_anchor, *to = item;
    if (vga_viewer_get_line_in_list(from) > vga_viewer_get_line_in_list(to)) {
        std::swap(from, to);
    }
    for (VGA_VIEWER_ITEM *line = from; line != nullptr;
         line = line == to ? nullptr : vga_viewer_next_sibling(tree, line)) {
        if (line->type == tree->select_anchor->type && line->fixed == 0) {
            vga_viewer_tree_set_select(tree, line, state, redraw);
        }
    }
}

} // namespace

NB_SHORT vga_viewer_tree_set_select(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT state,
                                    NB_USHORT redraw) {
    state = state != 0;
    if (item->selected == state || item->in_list == 0) {
        return 0;
    }
    if (state != 0 && tree->select_count != 0 &&
        (tree->select_parent != item->parent || tree->select_type != item->type)) {
        vga_viewer_tree_clear_selection(tree, redraw);
    }
    count_selected(tree, item, state);
    if (redraw != 0) {
        vga_viewer_mark_item(tree, item);
    }
    return state != 0 ? 1 : -1;
}

NB_VOID vga_viewer_tree_clear_selection(VGA_VIEWER_TREE *tree, NB_USHORT redraw) {
    VGA_VIEWER_ITEM *item;
    while ((item = vga_viewer_first_selected(tree)) != nullptr) {
        vga_viewer_tree_set_select(tree, item, 0, redraw);
    }
}

NB_VOID vga_viewer_tree_set_outline(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item,
                                    NB_USHORT redraw) {
    VGA_VIEWER_ITEM *const old = tree->outline_viewer;
    if (old == item) {
        return;
    }
    tree->outline_viewer = item;
    for (const VGA_VIEWER_ITEM *line : {old, item}) {
        if (redraw != 0 && line != nullptr) {
            vga_viewer_mark_item(tree, line);
        }
    }
}

NB_VOID vga_viewer_tree_select(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT toggle,
                               NB_USHORT extend, NB_USHORT redraw) {
    vga_viewer_tree_set_outline(tree, item, redraw);
    NB_ASSERT_FATAL(tree->outline_viewer != nullptr);
    const VGA_VIEWER_ITEM *anchor = tree->select_anchor;
    const bool range = extend != 0 && anchor != nullptr && anchor->parent == item->parent;
    const NB_USHORT anchor_state = range ? anchor->selected : 0;
    const NB_UCHAR type = range ? anchor->type : item->type;
    if (toggle == 0 || tree->select_parent != item->parent || tree->select_type != type) {
        vga_viewer_tree_clear_selection(tree, redraw);
    }
    if (range) {
        select_range(tree, item, anchor_state, redraw);
    } else {
        const NB_USHORT state = toggle == 0 || item->selected == 0;
        vga_viewer_tree_set_select(tree, item, state, redraw);
        tree->select_anchor = item;
    }
}

VGA_VIEWER_ITEM *vga_viewer_first_selected(const VGA_VIEWER_TREE *tree) {
    if (tree->select_count == 0) {
        return nullptr;
    }
    return vga_viewer_find_selected(
        tree->select_parent != nullptr ? &tree->select_parent->children : &tree->top_items, 0);
}

VGA_VIEWER_ITEM *vga_viewer_next_selected(const VGA_VIEWER_TREE *tree,
                                          const VGA_VIEWER_ITEM *item) {
    const VGA_VIEWER_LIST *list =
        item->parent != nullptr ? &item->parent->children : &tree->top_items;
    const NB_ULONG before = vga_viewer_selected_before(item);
    VGA_VIEWER_ITEM *next = vga_viewer_find_selected(list, before + item->selected);
    return next != nullptr || before == 0 ? next : vga_viewer_find_selected(list, before - 1);
}

VGA_VIEWER_ITEM *vga_viewer_current(const VGA_VIEWER_TREE *tree) {
    if (tree->select_count == 0) {
        return nullptr;
    }
    for (VGA_VIEWER_ITEM *item : {tree->outline_viewer, tree->select_anchor}) {
        if (item != nullptr && item->selected != 0) {
            return item;
        }
    }
    return vga_viewer_first_selected(tree);
}

NB_VOID vga_viewer_tree_let_go(VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *viewer) {
    VGA_VIEWER_ITEM *next_selected = nullptr;
    if (tree->select_count > 1 && viewer->selected != 0) {
        next_selected = vga_viewer_next_selected(tree, viewer);
        NB_ASSERT_FATAL(next_selected != nullptr);
        NB_ASSERT_FATAL(next_selected != viewer);
    }
    if (viewer->selected != 0) {
        vga_viewer_tree_set_select(tree, const_cast<VGA_VIEWER_ITEM *>(viewer), 0, 1);
    } else if (vga_viewer_is_within(tree->select_parent, viewer) != 0) {
        vga_viewer_tree_clear_selection(tree, 1);
    }
    if (vga_viewer_is_within(tree->select_anchor, viewer) != 0) {
        tree->select_anchor = next_selected;
    }
    for (VGA_VIEWER_ITEM **reference :
         {&tree->outline_viewer, &tree->last_dragged, &tree->armed, &tree->clicked}) {
        if (vga_viewer_is_within(*reference, viewer) != 0) {
            *reference = nullptr;
        }
    }
}

NB_VOID vga_viewer_mark(VGA_VIEWER_TREE *tree, NB_ULONG top, NB_ULONG bottom) {
    if (tree->displayed == 0 || top >= bottom) {
        return;
    }
    const bool full = tree->dirty_count == VGA_VIEWER_BANDS;
    for (NB_USHORT i = 0; i < tree->dirty_count;) {
        const VGA_VIEWER_BAND band = tree->dirty[i];
        if (full || (top <= band.bottom && band.top <= bottom)) {
            top = std::min(top, band.top);
            bottom = std::max(bottom, band.bottom);
            tree->dirty[i] = tree->dirty[--tree->dirty_count];
            i = 0; // the wider band may touch one that it did not before
        } else {
            ++i;
        }
    }
    tree->dirty[tree->dirty_count++] = {top, bottom};
}

NB_VOID vga_viewer_mark_item(VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item) {
    if (tree->displayed != 0 && vga_viewer_is_visible(item) != 0) {
        const NB_ULONG line = vga_viewer_get_line(item);
        vga_viewer_mark(tree, line, line + 1);
    }
}
