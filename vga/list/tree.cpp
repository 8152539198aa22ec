#include "tree.h"
#include "finder.h"
#include "nbbase.h"
#include "selection.h"
#include <algorithm>

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

/* A line with the visible ones below it. */
NB_ULONG own_lines(const VGA_VIEWER_ITEM *item) {
    if (item->hidden != 0) {
        return 0;
    }
    return 1 + (item->expanded != 0 ? vga_viewer_list_lines(&item->children) : 0);
}

/* Carries a changed number of lines up, as far as it changes anything. */
NB_VOID recount(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    for (; item != nullptr; item = item->parent) {
        const NB_ULONG lines = own_lines(item);
        if (lines == item->lines) {
            return;
        }
        item->lines = lines;
        if (item->in_list == 0) {
            add_up(item);
            return;
        }
        vga_viewer_add_up(vga_viewer_siblings(root, item), item);
    }
}

/* While a list is filled all of it is noted already, and no line has to be looked for. */
NB_USHORT is_marked_whole(const VGA_VIEWER_ROOT *root) {
    return root->dirty_count == 1 && root->dirty[0].top == 0 &&
           root->dirty[0].bottom == VGA_VIEWER_TO_END;
}

/* Notes everything from the item's line on, and the parent's line if its icon changes. */
NB_VOID mark_from(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item, NB_USHORT parent_too) {
    if (is_marked_whole(root)) {
        return;
    }
    if (root->displayed != 0 && vga_viewer_is_visible(item) != 0) {
        vga_viewer_mark(root, vga_viewer_get_line(item), VGA_VIEWER_TO_END);
    }
    if (parent_too != 0 && item->parent != nullptr) {
        vga_viewer_mark_item(root, item->parent);
    }
}

NB_VOID tell_lines_changed(VGA_VIEWER_ROOT *root) {
    if (root->view != nullptr) {
        root->watcher->lines_changed(root->view);
    }
}

NB_VOID set_expanded(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT state,
                     NB_USHORT redraw) {
    if (item->expanded != state) {
        item->expanded = state;
        recount(root, item);
        if (redraw != 0) {
            mark_from(root, item, 0);
        }
        tell_lines_changed(root);
    }
}

/* Opens all that has lines below it in a part of a binary tree, bottom up, so that every sum is
 * made once. */
NB_VOID open_branch(VGA_VIEWER_ITEM *node) {
    if (node == nullptr) {
        return;
    }
    open_branch(node->left);
    open_branch(node->right);
    open_branch(node->children.root);
    const NB_ULONG below = vga_viewer_list_lines(&node->children);
    node->expanded = node->expanded != 0 || below != 0;
    node->lines = node->hidden != 0 ? 0 : 1 + below;
    add_up(node);
}

/* Selection changes of a call are told to the window at its end. */
class SELECTION_WATCH {
public:
    explicit SELECTION_WATCH(VGA_VIEWER_ROOT *watched)
        : root(watched), type(root->select_type), count(root->select_count) {}
    SELECTION_WATCH(const SELECTION_WATCH &) = delete;
    SELECTION_WATCH &operator=(const SELECTION_WATCH &) = delete;
    ~SELECTION_WATCH() {
        if (root->select_count != count || root->select_type != type) {
            vga_viewer_notify(root, type != VGA_VIEWER_SELECT_NONE ? type : root->select_type);
        }
    }

private:
    VGA_VIEWER_ROOT *root;
    NB_SHORT type;
    NB_LONG count;
};

/* Lines below one that was taken off went with it: a whole branch goes as fast as its top. */
NB_USHORT went_with_parent(const VGA_VIEWER_ITEM *item) {
    while (item->parent != nullptr && item->parent->in_list != 0) {
        item = item->parent;
    }
    return item->parent != nullptr;
}

/* The sibling that a new line goes behind, null for none: what `after` of vga_create_viewer says.
 * Returns 0 if that is no sibling. */
NB_USHORT find_predecessor(const VGA_VIEWER_LIST &list, const VGA_VIEWER_ITEM *parent,
                           VGA_VIEWER_ITEM **after) {
    if (*after == VGA_VIEWER_FIRST) {
        *after = nullptr;
        for (VGA_VIEWER_ITEM *line = list.first; line != nullptr && line->fixed != 0;
             line = successor(line)) {
            *after = line;
        }
    } else if (*after == VGA_VIEWER_LAST) {
        *after = list.last;
    } else {
        return (*after)->in_list != 0 && (*after)->parent == parent;
    }
    return 1;
}

/* REQUIRES: nothing of the list refers to the item. */
NB_VOID take_out(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    VGA_VIEWER_LIST *list = vga_viewer_siblings(root, item);
    mark_from(root, item, vga_viewer_list_lines(list) == item->lines);
    vga_finder_line_goes(root, item);
    leave(list, item);
    item->in_list = 0;
    recount(root, item->parent);
    vga_finder_line_gone(root, item->parent);
}

/* A part of a binary tree, bottom up. */
NB_VOID sweep(VGA_VIEWER_ITEM *node, NB_VOID (*visit)(VGA_VIEWER_ITEM *, NB_VOID *),
              NB_VOID *data) {
    if (node == nullptr) {
        return;
    }
    sweep(node->left, visit, data);
    sweep(node->right, visit, data);
    sweep(node->children.root, visit, data);
    visit(node, data);
    node->lines = own_lines(node);
    add_up(node);
}

NB_VOID put_in(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, VGA_VIEWER_ITEM *after) {
    VGA_VIEWER_LIST *list = vga_viewer_siblings(root, item);
    const NB_USHORT first_child = vga_viewer_list_lines(list) == 0;
    enter(list, item, after);
    item->in_list = 1;
    recount(root, item->parent);
    mark_from(root, item, first_child);
    tell_lines_changed(root);
    vga_finder_line_came(root, item);
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

NB_USHORT vga_viewer_init_root(VGA_VIEWER_ROOT *root) {
    *root = VGA_VIEWER_ROOT();
    root->select_type = VGA_VIEWER_SELECT_NONE;
    root->handle = nba_create_handle(root);
    return root->handle != 0;
}

NB_VOID vga_viewer_destroy_root(VGA_VIEWER_ROOT *root) {
    if (root->view != nullptr) {
        root->watcher->list_gone(root->view);
        root->view = nullptr;
    }
    vga_free_finder(root);
    nba_destroy_handle(root->handle);
    root->handle = 0;
}

NB_VOID vga_create_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT type,
                          NB_VOID *data, VGA_VIEWER_ITEM *parent, VGA_VIEWER_ITEM *after) {
    *item = VGA_VIEWER_ITEM();
    item->type = static_cast<NB_UCHAR>(type);
    item->data = data;
    item->parent = parent;
    item->lines = 1;
    if (find_predecessor(*vga_viewer_siblings(root, item), parent, &after) == 0) {
        v0_assert_fatal(__FILE__, __LINE__, "FALSE");
        return;
    }
    put_in(root, item, after);
}

NB_VOID vga_delete_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *viewer) {
    if (viewer->in_list == 0 || went_with_parent(viewer)) {
        viewer->in_list = 0;
        return;
    }
    const SELECTION_WATCH watch(root);
    vga_viewer_let_go(root, viewer);
    NB_ASSERT_FATAL(root->select_anchor != viewer);
    NB_ASSERT_FATAL(root->last_dragged != viewer);
    NB_ASSERT_FATAL(root->outline_viewer != viewer);
    take_out(root, viewer);
    tell_lines_changed(root);
}

NB_VOID vga_move_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT type,
                        VGA_VIEWER_ITEM *parent, VGA_VIEWER_ITEM *after) {
    const SELECTION_WATCH watch(root);
    const NB_USHORT outlined = root->outline_viewer == item;
    const NB_USHORT selected = item->selected != 0 && root->select_count == 1;
    if (item->selected != 0 || item->parent != parent) {
        vga_viewer_let_go(root, item);
    }
    if (item->in_list != 0 && !went_with_parent(item)) {
        take_out(root, item);
    }
    item->type = static_cast<NB_UCHAR>(type);
    item->laid_out = 0;
    item->parent = parent;
    if (find_predecessor(*vga_viewer_siblings(root, item), parent, &after) == 0) {
        v0_assert_fatal(__FILE__, __LINE__, "FALSE");
        return;
    }
    item->up = item->left = item->right = nullptr;
    put_in(root, item, after);
    if (parent != nullptr && (outlined || selected)) {
        vga_expand_viewer(root, parent, 1);
    }
    if (outlined && vga_viewer_is_visible(item)) {
        vga_viewer_set_outline(root, item, 1);
    }
    if (selected && vga_viewer_is_visible(item)) {
        vga_viewer_mark_selected(root, item, 1, 1);
        root->select_anchor = item;
    }
}

NB_VOID vga_update_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item) {
    if (item->laid_out != 0) {
        item->laid_out = 0;
        vga_viewer_mark_item(root, item);
    }
    vga_finder_line_changed(root, item);
}

NB_VOID vga_expand_viewer(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT redraw) {
    if (vga_viewer_has_children(item) != 0) {
        set_expanded(root, item, 1, redraw);
    }
}

NB_VOID vga_viewer_expand_all(VGA_VIEWER_ROOT *root) {
    open_branch(root->top_items.root);
    vga_viewer_mark(root, 0, VGA_VIEWER_TO_END);
    tell_lines_changed(root);
}

NB_VOID vga_viewer_contract(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT redraw) {
    if (item->expanded == 0) {
        return;
    }
    const SELECTION_WATCH watch(root);
    const auto vanishes = [item](const VGA_VIEWER_ITEM *line) {
        return line != item && vga_viewer_is_within(line, item) != 0;
    };
    if (vanishes(root->outline_viewer)) {
        vga_viewer_set_outline(root, item, redraw);
    }
    if (vga_viewer_is_within(root->select_parent, item) != 0) {
        vga_viewer_deselect_all(root, redraw);
        vga_viewer_mark_selected(root, item, vga_viewer_can_select(root, item), redraw);
    }
    for (VGA_VIEWER_ITEM **line : {&root->last_dragged, &root->armed, &root->clicked}) {
        *line = vanishes(*line) ? nullptr : *line;
    }
    root->select_anchor = vanishes(root->select_anchor) ? item : root->select_anchor;
    set_expanded(root, item, 0, redraw);
}

NB_VOID vga_viewer_set_fixed(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT fixed) {
    item->fixed = fixed != 0;
    vga_finder_line_changed(root, item);
}

NB_VOID vga_viewer_set_hidden(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT hidden) {
    hidden = hidden != 0;
    if (item->in_list == 0 || item->hidden == hidden) {
        return;
    }
    const SELECTION_WATCH watch(root);
    const VGA_VIEWER_LIST *list = vga_viewer_siblings(root, item);
    if (hidden != 0) {
        vga_viewer_let_go(root, item);
        mark_from(root, item, vga_viewer_list_lines(list) == item->lines);
    }
    const NB_USHORT first_child = vga_viewer_list_lines(list) == 0;
    item->hidden = hidden;
    recount(root, item);
    mark_from(root, item, first_child);
    tell_lines_changed(root);
}

NB_VOID vga_viewer_copy_state(const VGA_VIEWER_ITEM *old_item, VGA_VIEWER_ITEM *new_item,
                              VGA_VIEWER_ROOT *root) {
    if (old_item->expanded != 0) {
        set_expanded(root, new_item, 1, 1);
    }
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

VGA_VIEWER_ITEM *vga_viewer_find_line(const VGA_VIEWER_ROOT *root, NB_ULONG line) {
    VGA_VIEWER_ITEM *item = find_unit<BY_LINES>(&root->top_items, &line);
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

VGA_VIEWER_ITEM *vga_viewer_get_next_item(const VGA_VIEWER_ROOT *root,
                                          const VGA_VIEWER_ITEM *item) {
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
               : vga_viewer_find_line(root, vga_viewer_get_line(item) + 1);
}

VGA_VIEWER_ITEM *vga_viewer_get_prev_item(const VGA_VIEWER_ROOT *root,
                                          const VGA_VIEWER_ITEM *item) {
    if (vga_viewer_is_visible(item) == 0) {
        return nullptr;
    }
    const NB_ULONG line = vga_viewer_get_line(item);
    return line != 0 ? vga_viewer_find_line(root, line - 1) : nullptr;
}

VGA_VIEWER_ITEM *vga_viewer_next_sibling(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item) {
    return vga_viewer_find_in_list(vga_viewer_siblings(root, item),
                                   vga_viewer_get_line_in_list(item) + item->lines);
}

VGA_VIEWER_ITEM *vga_viewer_prev_sibling(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item) {
    const NB_ULONG line = vga_viewer_get_line_in_list(item);
    return line != 0 ? vga_viewer_find_in_list(vga_viewer_siblings(root, item), line - 1) : nullptr;
}

VGA_VIEWER_ITEM *vga_viewer_next_in_list(const VGA_VIEWER_ITEM *item) {
    return successor(item);
}

VGA_VIEWER_ITEM *vga_viewer_previous_in_list(VGA_VIEWER_ITEM *item) {
    return predecessor(item);
}

NB_VOID vga_viewer_set_quietly(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item, NB_USHORT hidden,
                               NB_USHORT expanded) {
    item->hidden = hidden != 0;
    item->expanded = expanded != 0;
    recount(root, item);
}

NB_VOID vga_viewer_sweep(VGA_VIEWER_ROOT *root, NB_VOID (*visit)(VGA_VIEWER_ITEM *, NB_VOID *),
                         NB_VOID *data) {
    sweep(root->top_items.root, visit, data);
}

NB_VOID vga_viewer_changed_all(VGA_VIEWER_ROOT *root) {
    vga_viewer_mark(root, 0, VGA_VIEWER_TO_END);
    tell_lines_changed(root);
}

VGA_VIEWER_LIST *vga_viewer_siblings(VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item) {
    return item->parent != nullptr ? &item->parent->children : &root->top_items;
}

VGA_VIEWER_ITEM *vga_viewer_find_selected(const VGA_VIEWER_LIST *list, NB_ULONG index) {
    return find_unit<BY_SELECTED>(list, &index);
}

NB_ULONG vga_viewer_selected_before(const VGA_VIEWER_ITEM *item) {
    return sum_before<BY_SELECTED>(item);
}
