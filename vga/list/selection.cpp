#include "selection.h"
#include "nbbase.h"
#include <algorithm>

namespace {

/* Counts the change of one item that is in a list. */
NB_VOID count_selected(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT state) {
    item->selected = state;
    vga_viewer_add_up(vga_viewer_siblings(root, item), item);
    root->select_count += state != 0 ? 1 : -1;
    if (root->select_count == 0) {
        root->select_type = VGA_VIEWER_SELECT_NONE;
        root->select_parent = nullptr;
    } else {
        root->select_type = item->type;
        root->select_parent = item->parent;
    }
}

/* What lines get what state: those of a type in [from, to) of the lines of their siblings. */
struct RANGE {
    NB_ULONG from, to;
    NB_UCHAR type;
    NB_USHORT state;
};

/* The part of a binary tree whose first line is number `first`.  However many lines change, each is
 * met once.  Returns the change of the number of selected lines. */
NB_LONG set_range(const VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *node, NB_ULONG first,
                  const RANGE &range) {
    if (node == nullptr || first >= range.to || first + node->lines_sum <= range.from) {
        return 0;
    }
    const NB_ULONG own = first + (node->left != nullptr ? node->left->lines_sum : 0);
    NB_LONG change = set_range(root, node->left, first, range) +
                     set_range(root, node->right, own + node->lines, range);
    if (node->lines != 0 && own >= range.from && own < range.to && node->type == range.type &&
        node->selected != range.state && vga_viewer_can_select(root, node) != 0) {
        node->selected = range.state;
        change += range.state != 0 ? 1 : -1;
    }
    node->selected_sum += static_cast<NB_ULONG>(change);
    return change;
}

/* Deselects a part of a binary tree. */
NB_VOID clear_branch(VGA_VIEWER_ITEM *node) {
    if (node != nullptr && node->selected_sum != 0) {
        clear_branch(node->left);
        clear_branch(node->right);
        node->selected = 0;
        node->selected_sum = 0;
    }
}

/* Notes the lines of siblings `from` to `to` and what is open between them. */
NB_VOID mark_between(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *from,
                     const VGA_VIEWER_ITEM *to) {
    if (root->displayed != 0 && vga_viewer_is_visible(from) != 0) {
        vga_viewer_mark(root, vga_viewer_get_line(from), vga_viewer_get_line(to) + 1);
    }
}

/* Gives the state to every line of the siblings from `from` to `to` that is of the type. */
NB_VOID select_lines(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *from, const VGA_VIEWER_ITEM *to,
                     NB_UCHAR type, NB_USHORT state, NB_USHORT redraw) {
    const RANGE range = {vga_viewer_get_line_in_list(from), vga_viewer_get_line_in_list(to) + 1,
                         type, state};
    root->select_count += set_range(root, vga_viewer_siblings(root, from)->root, 0, range);
    root->select_type = root->select_count != 0 ? NB_SHORT{type} : NB_SHORT{VGA_VIEWER_SELECT_NONE};
    root->select_parent = root->select_count != 0 ? from->parent : nullptr;
    if (redraw != 0) {
        mark_between(root, from, to);
    }
}

/* Gives the anchor's state to every line of its type between it and `item`. */
NB_VOID select_range(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item, NB_USHORT state,
                     NB_USHORT redraw) {
    const VGA_VIEWER_ITEM *from = root->select_anchor, *to = item;
    if (vga_viewer_get_line_in_list(from) > vga_viewer_get_line_in_list(to)) {
        std::swap(from, to);
    }
    select_lines(root, from, to, root->select_anchor->type, state, redraw);
}

/* The first selected item, null without one. */
VGA_VIEWER_ITEM *first_selected(const VGA_VIEWER_ROOT *root) {
    if (root->select_count == 0) {
        return nullptr;
    }
    return vga_viewer_find_selected(
        root->select_parent != nullptr ? &root->select_parent->children : &root->top_items, 0);
}

/* The first selected item behind `item` among its siblings, or, with none behind, the last before
 * it; null when there is none. */
VGA_VIEWER_ITEM *next_selected_item(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item) {
    const VGA_VIEWER_LIST *list =
        item->parent != nullptr ? &item->parent->children : &root->top_items;
    const NB_ULONG before = vga_viewer_selected_before(item);
    VGA_VIEWER_ITEM *next = vga_viewer_find_selected(list, before + item->selected);
    return next != nullptr || before == 0 ? next : vga_viewer_find_selected(list, before - 1);
}

} // namespace

NB_SHORT vga_viewer_mark_selected(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT state,
                                  NB_USHORT redraw) {
    state = state != 0;
    if (item->selected == state || item->in_list == 0) {
        return 0;
    }
    if (state != 0 && root->select_count != 0 &&
        (root->select_parent != item->parent || root->select_type != item->type)) {
        vga_viewer_deselect_all(root, redraw);
    }
    count_selected(root, item, state);
    if (redraw != 0) {
        vga_viewer_mark_item(root, item);
    }
    return state != 0 ? 1 : -1;
}

NB_VOID vga_viewer_deselect_all(VGA_VIEWER_ROOT *root, NB_USHORT redraw) {
    if (root->select_count == 0) {
        return;
    }
    VGA_VIEWER_LIST *list =
        root->select_parent != nullptr ? &root->select_parent->children : &root->top_items;
    if (redraw != 0) {
        mark_between(root, vga_viewer_find_selected(list, 0),
                     vga_viewer_find_selected(list, static_cast<NB_ULONG>(root->select_count) - 1));
    }
    clear_branch(list->root);
    root->select_count = 0;
    root->select_type = VGA_VIEWER_SELECT_NONE;
    root->select_parent = nullptr;
}

NB_VOID vga_viewer_select_all(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *current) {
    const VGA_VIEWER_LIST *list = vga_viewer_siblings(root, current);
    const NB_ULONG lines = vga_viewer_list_lines(list);
    if (lines != 0) {
        vga_viewer_deselect_all(root, 1);
        select_lines(root, vga_viewer_find_in_list(list, 0),
                     vga_viewer_find_in_list(list, lines - 1), current->type, 1, 1);
        vga_viewer_mark_selected(root, current, 1, 1); // it may have become a title
    }
    root->select_anchor = current;
    vga_viewer_set_outline(root, current, 1);
}

NB_VOID vga_viewer_set_outline(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT redraw) {
    VGA_VIEWER_ITEM *const old = root->outline_viewer;
    if (old == item) {
        return;
    }
    root->outline_viewer = item;
    for (const VGA_VIEWER_ITEM *line : {old, item}) {
        if (redraw != 0 && line != nullptr) {
            vga_viewer_mark_item(root, line);
        }
    }
}

NB_VOID vga_viewer_select(VGA_VIEWER_ITEM *viewer, VGA_VIEWER_ROOT *root, NB_USHORT toggle,
                          NB_USHORT extend, NB_USHORT redraw, NB_USHORT notify) {
    if (viewer == nullptr || viewer->in_list == 0) {
        v0_assert_fatal(__FILE__, __LINE__, "viewer != NULL");
        return;
    }
    vga_viewer_set_outline(root, viewer, redraw);
    NB_ASSERT_FATAL(root->outline_viewer != nullptr);
    const VGA_VIEWER_ITEM *anchor = root->select_anchor;
    const bool range = extend != 0 && vga_viewer_extends_to(anchor, viewer) != 0;
    const NB_USHORT anchor_state = range ? anchor->selected : 0;
    if (toggle == 0 || root->select_parent != viewer->parent || root->select_type != viewer->type) {
        vga_viewer_deselect_all(root, redraw);
    }
    if (range) {
        select_range(root, viewer, anchor_state, redraw);
    } else {
        const NB_USHORT state = toggle == 0 || viewer->selected == 0;
        vga_viewer_mark_selected(root, viewer, state, redraw);
        root->select_anchor = viewer;
    }
    if (notify != 0) {
        vga_viewer_notify(root, viewer->type);
    }
}

NB_USHORT vga_viewer_can_select(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item) {
    return item->fixed == 0 &&
           (root->watcher == nullptr || root->watcher->is_title(item->type) == 0);
}

NB_USHORT vga_viewer_extends_to(const VGA_VIEWER_ITEM *anchor, const VGA_VIEWER_ITEM *item) {
    return anchor != nullptr && anchor->parent == item->parent && anchor->type == item->type;
}

NB_SHORT vga_viewer_set_select(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT state) {
    return vga_viewer_mark_selected(root, item, state, 1);
}

NB_SHORT vga_viewer_toggle_select(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    return vga_viewer_set_select(root, item, item->selected == 0);
}

NB_VOID vga_viewer_clear_selection(VGA_VIEWER_ROOT *root) {
    vga_viewer_deselect_all(root, 1);
}

NB_VOID vga_clear_outline_selection(VGA_VIEWER_ROOT *root) {
    vga_viewer_set_outline(root, nullptr, 1);
}

NB_VOID *vga_viewer_get_selection(const VGA_VIEWER_ROOT *root, NB_SHORT *type) {
    if (type != nullptr) {
        *type = root->select_type;
    }
    const VGA_VIEWER_ITEM *item = vga_viewer_get_selected_viewer(root);
    return item != nullptr ? item->data : nullptr;
}

NB_VOID vga_viewer_drag_cb(VGA_VIEWER_ITEM *item, VGA_VIEWER_ROOT *root, NB_USHORT select,
                           NB_USHORT redraw) {
    const VGA_VIEWER_ITEM *anchor = root->select_anchor;
    if (vga_viewer_extends_to(anchor, item) != 0 && vga_viewer_can_select(root, item) != 0) {
        vga_viewer_mark_selected(root, item, select, redraw);
    }
}

VGA_VIEWER_ITEM *vga_viewer_get_selected_viewer(const VGA_VIEWER_ROOT *root) {
    if (root->select_count == 0) {
        return nullptr;
    }
    for (VGA_VIEWER_ITEM *item : {root->outline_viewer, root->select_anchor}) {
        if (item != nullptr && item->selected != 0) {
            return item;
        }
    }
    return first_selected(root);
}

NB_VOID vga_viewer_let_go(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *viewer) {
    VGA_VIEWER_ITEM *next_selected = nullptr;
    if (root->select_count > 1 && viewer->selected != 0) {
        next_selected = next_selected_item(root, viewer);
        NB_ASSERT_FATAL(next_selected != nullptr);
        NB_ASSERT_FATAL(next_selected != viewer);
    }
    if (viewer->selected != 0) {
        vga_viewer_mark_selected(root, const_cast<VGA_VIEWER_ITEM *>(viewer), 0, 1);
    } else if (vga_viewer_is_within(root->select_parent, viewer) != 0) {
        vga_viewer_deselect_all(root, 1);
    }
    if (vga_viewer_is_within(root->select_anchor, viewer) != 0) {
        root->select_anchor = next_selected;
    }
    for (VGA_VIEWER_ITEM **reference :
         {&root->outline_viewer, &root->last_dragged, &root->armed, &root->clicked}) {
        if (vga_viewer_is_within(*reference, viewer) != 0) {
            *reference = nullptr;
        }
    }
}

NB_VOID vga_viewer_notify(VGA_VIEWER_ROOT *root, NB_SHORT type) {
    if (root->view != nullptr) {
        root->watcher->selection_changed(root->view, type);
    }
}

NB_VOID vga_viewer_mark(VGA_VIEWER_ROOT *root, NB_ULONG top, NB_ULONG bottom) {
    if (root->displayed == 0 || top >= bottom) {
        return;
    }
    const bool full = root->dirty_count == VGA_VIEWER_BANDS;
    for (NB_USHORT i = 0; i < root->dirty_count;) {
        const VGA_VIEWER_BAND band = root->dirty[i];
        if (full || (top <= band.bottom && band.top <= bottom)) {
            top = std::min(top, band.top);
            bottom = std::max(bottom, band.bottom);
            root->dirty[i] = root->dirty[--root->dirty_count];
            i = 0; // the wider band may touch one that it did not before
        } else {
            ++i;
        }
    }
    root->dirty[root->dirty_count++] = {top, bottom};
    if (root->view != nullptr) {
        root->watcher->to_draw(root->view);
    }
}

NB_VOID vga_viewer_mark_item(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item) {
    if (root->displayed != 0 && vga_viewer_is_visible(item) != 0) {
        const NB_ULONG line = vga_viewer_get_line(item);
        vga_viewer_mark(root, line, line + 1);
    }
}
