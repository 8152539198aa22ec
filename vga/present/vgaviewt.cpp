#include "vgaviewt.h"
#include "vgaviewi.h"
#include <algorithm>
#include <cstring>

VGA_VIEWER_ITEM gvga_viewer_first;

namespace {

NB_UCHAR height_of(const VGA_VIEWER_ITEM *node) {
    return node != nullptr ? node->height : 0;
}

/* Sums over the binary tree, by lines or by selected items. */
struct BY_LINES {
    static NB_ULONG own(const VGA_VIEWER_ITEM *node) { return node->lines; }
    static NB_ULONG sum(const VGA_VIEWER_ITEM *node) {
        return node != nullptr ? node->lines_sum : 0;
    }
};
struct BY_SELECTED {
    static NB_ULONG own(const VGA_VIEWER_ITEM *node) { return node->selected; }
    static NB_ULONG sum(const VGA_VIEWER_ITEM *node) {
        return node != nullptr ? node->selected_sum : 0;
    }
};

/* What stands before the item among its siblings. */
template <class By> NB_ULONG sum_before(const VGA_VIEWER_ITEM *node) {
    NB_ULONG sum = By::sum(node->left);
    for (; node->up != nullptr; node = node->up) {
        if (node == node->up->right) {
            sum += By::sum(node->up->left) + By::own(node->up);
        }
    }
    return sum;
}

/* The item that holds unit number `index` of the list; `index` becomes the unit within the item. */
template <class By> VGA_VIEWER_ITEM *find_unit(const VGA_VIEWER_LIST *list, NB_ULONG *index) {
    VGA_VIEWER_ITEM *node = list->root;
    while (node != nullptr) {
        const NB_ULONG before = By::sum(node->left);
        if (*index < before) {
            node = node->left;
        } else if (*index - before < By::own(node)) {
            *index -= before;
            return node;
        } else {
            *index -= before + By::own(node);
            node = node->right;
        }
    }
    return nullptr;
}

VGA_VIEWER_ITEM *leftmost(VGA_VIEWER_ITEM *node) {
    while (node->left != nullptr) {
        node = node->left;
    }
    return node;
}

VGA_VIEWER_ITEM *rightmost(VGA_VIEWER_ITEM *node) {
    while (node->right != nullptr) {
        node = node->right;
    }
    return node;
}

VGA_VIEWER_ITEM *successor(const VGA_VIEWER_ITEM *node) {
    if (node->right != nullptr) {
        return leftmost(node->right);
    }
    while (node->up != nullptr && node == node->up->right) {
        node = node->up;
    }
    return node->up;
}

VGA_VIEWER_ITEM *predecessor(VGA_VIEWER_ITEM *node) {
    if (node->left != nullptr) {
        return rightmost(node->left);
    }
    while (node->up != nullptr && node == node->up->left) {
        node = node->up;
    }
    return node->up;
}

NB_VOID add_up(VGA_VIEWER_ITEM *node) {
    node->height =
        static_cast<NB_UCHAR>(1 + std::max(height_of(node->left), height_of(node->right)));
    node->lines_sum = node->lines + BY_LINES::sum(node->left) + BY_LINES::sum(node->right);
    node->selected_sum =
        node->selected + BY_SELECTED::sum(node->left) + BY_SELECTED::sum(node->right);
}

/* Puts `node` (which may be null) into the place of `old`. */
NB_VOID hang(VGA_VIEWER_LIST *list, const VGA_VIEWER_ITEM *old, VGA_VIEWER_ITEM *node) {
    if (old->up == nullptr) {
        list->root = node;
    } else if (old->up->left == old) {
        old->up->left = node;
    } else {
        old->up->right = node;
    }
    if (node != nullptr) {
        node->up = old->up;
    }
}

/*     node            child
 *    /    \          /     \
 *   a    child  ->  node    c      with `low` = left and `high` = right, or the mirror image
 *        /   \     /    \
 *       b     c   a      b                                                                     */
VGA_VIEWER_ITEM *rotate(VGA_VIEWER_LIST *list, VGA_VIEWER_ITEM *node,
                        VGA_VIEWER_ITEM *VGA_VIEWER_ITEM::*low,
                        VGA_VIEWER_ITEM *VGA_VIEWER_ITEM::*high) {
    VGA_VIEWER_ITEM *child = node->*high;
    hang(list, node, child);
    node->*high = child->*low;
    if (node->*high != nullptr) {
        (node->*high)->up = node;
    }
    child->*low = node;
    node->up = child;
    add_up(node);
    add_up(child);
    return child;
}

/* Sums and balance of a node whose `high` branch is two levels too high. */
VGA_VIEWER_ITEM *lower(VGA_VIEWER_LIST *list, VGA_VIEWER_ITEM *node,
                       VGA_VIEWER_ITEM *VGA_VIEWER_ITEM::*low,
                       VGA_VIEWER_ITEM *VGA_VIEWER_ITEM::*high) {
    VGA_VIEWER_ITEM *child = node->*high;
    if (height_of(child->*low) > height_of(child->*high)) {
        rotate(list, child, high, low);
    }
    return rotate(list, node, low, high);
}

NB_VOID enter(VGA_VIEWER_LIST *list, VGA_VIEWER_ITEM *node, VGA_VIEWER_ITEM *after) {
    VGA_VIEWER_ITEM *const next = after != nullptr ? successor(after) : list->first;
    if (after != nullptr && after->right == nullptr) {
        after->right = node;
        node->up = after;
    } else if (next != nullptr) {
        next->left = node;
        node->up = next;
    } else {
        list->root = node;
    }
    list->first = after == nullptr ? node : list->first;
    list->last = after == list->last ? node : list->last;
    ++list->count;
    vga_viewer_add_up(list, node);
}

NB_VOID leave(VGA_VIEWER_LIST *list, VGA_VIEWER_ITEM *node) {
    list->first = list->first == node ? successor(node) : list->first;
    list->last = list->last == node ? predecessor(node) : list->last;
    --list->count;
    VGA_VIEWER_ITEM *changed = node->up;
    if (node->left == nullptr || node->right == nullptr) {
        hang(list, node, node->left != nullptr ? node->left : node->right);
    } else {
        VGA_VIEWER_ITEM *heir = leftmost(node->right);
        changed = heir;
        if (heir->up != node) {
            changed = heir->up;
            hang(list, heir, heir->right);
            heir->right = node->right;
            heir->right->up = heir;
        }
        heir->left = node->left;
        heir->left->up = heir;
        hang(list, node, heir);
    }
    vga_viewer_add_up(list, changed);
    node->up = node->left = node->right = nullptr;
    add_up(node);
}

/* Carries a changed number of lines up, as far as it changes anything. */
NB_VOID recount(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item) {
    for (; item != nullptr; item = item->parent) {
        NB_ULONG lines = 0;
        if (item->hidden == 0) {
            lines = 1 + (item->expanded != 0 ? vga_viewer_list_lines(&item->children) : 0);
        }
        if (lines == item->lines) {
            return;
        }
        item->lines = lines;
        if (item->in_list == 0) {
            add_up(item);
            return;
        }
        vga_viewer_add_up(vga_viewer_siblings(tree, item), item);
    }
}

/* Notes everything from the item's line on, and the parent's line if its icon changes. */
NB_VOID mark_from(VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item, NB_USHORT parent_too) {
    if (tree->displayed != 0 && vga_viewer_is_visible(item) != 0) {
        vga_viewer_mark(tree, vga_viewer_get_line(item), VGA_VIEWER_TO_END);
    }
    if (parent_too != 0 && item->parent != nullptr) {
        vga_viewer_mark_item(tree, item->parent);
    }
}

} // namespace

NB_VOID vga_viewer_add_up(VGA_VIEWER_LIST *list, VGA_VIEWER_ITEM *node) {
    using ITEM = VGA_VIEWER_ITEM;
    for (; node != nullptr; node = node->up) {
        const NB_INT left = height_of(node->left), right = height_of(node->right);
        if (left > right + 1) {
            node = lower(list, node, &ITEM::right, &ITEM::left);
        } else if (right > left + 1) {
            node = lower(list, node, &ITEM::left, &ITEM::right);
        } else {
            add_up(node);
        }
    }
}

NB_VOID vga_viewer_tree_init(VGA_VIEWER_TREE *tree) {
    *tree = VGA_VIEWER_TREE();
    tree->select_type = VGA_VIEWER_SELECT_NONE;
}

NB_USHORT vga_viewer_tree_insert(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT type,
                                 NB_VOID *data, VGA_VIEWER_ITEM *parent, VGA_VIEWER_ITEM *after) {
    *item = VGA_VIEWER_ITEM();
    item->type = static_cast<NB_UCHAR>(type);
    item->data = data;
    item->parent = parent;
    item->lines = 1;
    VGA_VIEWER_LIST *list = vga_viewer_siblings(tree, item);
    if (after == VGA_VIEWER_FIRST) {
        after = nullptr;
        for (VGA_VIEWER_ITEM *line = list->first; line != nullptr && line->fixed != 0;
             line = successor(line)) {
            after = line;
        }
    } else if (after == VGA_VIEWER_LAST) {
        after = list->last;
    } else if (after->in_list == 0 || after->parent != parent) {
        return 0;
    }
    const NB_USHORT first_child = vga_viewer_list_lines(list) == 0;
    enter(list, item, after);
    item->in_list = 1;
    recount(tree, parent);
    mark_from(tree, item, first_child);
    return 1;
}

NB_VOID vga_viewer_tree_remove(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item) {
    if (item->in_list == 0) {
        return;
    }
    VGA_VIEWER_LIST *list = vga_viewer_siblings(tree, item);
    vga_viewer_tree_let_go(tree, item);
    mark_from(tree, item, vga_viewer_list_lines(list) == item->lines);
    leave(list, item);
    item->in_list = 0;
    recount(tree, item->parent);
}

NB_VOID vga_viewer_tree_set_expanded(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT state,
                                     NB_USHORT redraw) {
    if (item->expanded != state) {
        item->expanded = state;
        recount(tree, item);
        if (redraw != 0) {
            mark_from(tree, item, 0);
        }
    }
}

NB_VOID vga_viewer_tree_set_hidden(VGA_VIEWER_TREE *tree, VGA_VIEWER_ITEM *item, NB_USHORT state) {
    if (item->in_list == 0 || item->hidden == state) {
        return;
    }
    const VGA_VIEWER_LIST *list = vga_viewer_siblings(tree, item);
    if (state != 0) {
        vga_viewer_tree_let_go(tree, item);
        mark_from(tree, item, vga_viewer_list_lines(list) == item->lines);
    }
    const NB_USHORT first_child = vga_viewer_list_lines(list) == 0;
    item->hidden = state;
    recount(tree, item);
    mark_from(tree, item, first_child);
}

NB_ULONG vga_viewer_list_lines(const VGA_VIEWER_LIST *list) {
    return BY_LINES::sum(list->root);
}

NB_ULONG vga_viewer_get_line_in_list(const VGA_VIEWER_ITEM *item) {
    return sum_before<BY_LINES>(item);
}

NB_ULONG vga_viewer_get_line(const VGA_VIEWER_ITEM *item) {
    NB_ULONG line = vga_viewer_get_line_in_list(item);
    while ((item = item->parent) != nullptr) {
        line += vga_viewer_get_line_in_list(item) + 1;
    }
    return line;
}

VGA_VIEWER_ITEM *vga_viewer_find_in_list(const VGA_VIEWER_LIST *list, NB_ULONG line) {
    return find_unit<BY_LINES>(list, &line);
}

VGA_VIEWER_ITEM *vga_viewer_find_line(const VGA_VIEWER_TREE *tree, NB_ULONG line) {
    VGA_VIEWER_ITEM *item = find_unit<BY_LINES>(&tree->top_items, &line);
    while (item != nullptr && line-- != 0) {
        item = find_unit<BY_LINES>(&item->children, &line);
    }
    return item;
}

NB_USHORT vga_viewer_is_visible(const VGA_VIEWER_ITEM *item) {
    if (item->in_list == 0 || item->hidden != 0) {
        return 0;
    }
    for (item = item->parent; item != nullptr; item = item->parent) {
        if (item->in_list == 0 || item->hidden != 0 || item->expanded == 0) {
            return 0;
        }
    }
    return 1;
}

NB_USHORT vga_viewer_has_children(const VGA_VIEWER_ITEM *item) {
    return vga_viewer_list_lines(&item->children) != 0;
}

NB_USHORT vga_viewer_is_within(const VGA_VIEWER_ITEM *item, const VGA_VIEWER_ITEM *ancestor) {
    while (item != nullptr && item != ancestor) {
        item = item->parent;
    }
    return item != nullptr;
}

VGA_VIEWER_ITEM *vga_viewer_next_line(const VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item) {
    if (vga_viewer_is_visible(item) == 0) {
        return nullptr;
    }
    VGA_VIEWER_ITEM *next = item->lines > 1 ? item->children.first : nullptr;
    for (const VGA_VIEWER_ITEM *line = item; line != nullptr && next == nullptr;
         line = line->parent) {
        next = successor(line);
    }
    // Of hidden lines there may be many, so they are not walked through.
    return next == nullptr || next->hidden == 0
               ? next
               : vga_viewer_find_line(tree, vga_viewer_get_line(item) + 1);
}

VGA_VIEWER_ITEM *vga_viewer_prev_line(const VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item) {
    if (vga_viewer_is_visible(item) == 0) {
        return nullptr;
    }
    const NB_ULONG line = vga_viewer_get_line(item);
    return line != 0 ? vga_viewer_find_line(tree, line - 1) : nullptr;
}

VGA_VIEWER_ITEM *vga_viewer_next_sibling(VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item) {
    return vga_viewer_find_in_list(vga_viewer_siblings(tree, item),
                                   vga_viewer_get_line_in_list(item) + item->lines);
}

VGA_VIEWER_ITEM *vga_viewer_prev_sibling(VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item) {
    const NB_ULONG line = vga_viewer_get_line_in_list(item);
    return line != 0 ? vga_viewer_find_in_list(vga_viewer_siblings(tree, item), line - 1) : nullptr;
}

VGA_VIEWER_LIST *vga_viewer_siblings(VGA_VIEWER_TREE *tree, const VGA_VIEWER_ITEM *item) {
    return item->parent != nullptr ? &item->parent->children : &tree->top_items;
}

VGA_VIEWER_ITEM *vga_viewer_find_selected(const VGA_VIEWER_LIST *list, NB_ULONG index) {
    return find_unit<BY_SELECTED>(list, &index);
}

NB_ULONG vga_viewer_selected_before(const VGA_VIEWER_ITEM *item) {
    return sum_before<BY_SELECTED>(item);
}
