#include "ntlavl.h"

#include <algorithm>

#include "nbbase.h"

/* True when the expression holds; else it is reported. */
#define AVL_CHECK(expression)                                                                      \
    ((expression) ? true : (v0_assert("ntlavl", __LINE__, #expression), false))

/* For the parts of a deletion, which costs a third more when they are calls. */
#define AVL_INLINE [[gnu::always_inline]] static inline

static NB_SHORT avl_height(const AVL_NODE *node) {
    return static_cast<NB_SHORT>(std::max(node->l_height, node->r_height) + 1);
}

/* A side of a node: 0 is left, 1 is right.  Which side a node hangs on cannot be predicted, so the
 * side is computed, and picks its link and height by offset, instead of being branched on. */
static_assert(offsetof(AVL_NODE, right) == offsetof(AVL_NODE, left) + sizeof(AVL_NODE *));
static_assert(offsetof(AVL_NODE, r_height) == offsetof(AVL_NODE, l_height) + sizeof(NB_SHORT));

static size_t avl_side(const AVL_NODE *parent, const AVL_NODE *node) {
    return parent->right == node;
}

static AVL_NODE **avl_child(AVL_NODE *node, size_t side) {
    auto bytes = reinterpret_cast<unsigned char *>(node) + offsetof(AVL_NODE, left);
    return reinterpret_cast<AVL_NODE **>(bytes) + side;
}

static NB_SHORT *avl_side_height(AVL_NODE *node, size_t side) {
    auto bytes = reinterpret_cast<unsigned char *>(node) + offsetof(AVL_NODE, l_height);
    return reinterpret_cast<NB_SHORT *>(bytes) + side;
}

/* The link that holds the node: its parent's, or the root. */
static AVL_NODE **avl_link(AVL_TREE *tree, const AVL_NODE *node) {
    AVL_NODE *parent = node->parent;
    return parent == nullptr ? &tree->root : avl_child(parent, avl_side(parent, node));
}

/* Asks for both children before the comparison tells which one is needed: in a large tree the wait
 * for the node and the wait for its child then overlap. */
static NB_VOID avl_fetch_children(const AVL_NODE *node) {
    __builtin_prefetch(node->left);
    __builtin_prefetch(node->right);
}

static NB_VOID avl_set_parent(AVL_NODE *node, AVL_NODE *parent) {
    if (node != nullptr) {
        node->parent = parent;
    }
}

static NB_VOID avl_mark_not_in_tree(AVL_NODE *node) {
    node->l_height = node->r_height = AVL_NOT_IN_TREE;
}

/*        n                  k
 *       / \                / \
 *      k   C     -->      A   n
 *     / \                    / \
 *    A   B                  B   C          The link that held n holds k. */
static NB_VOID ntl_avl_rotate_right(AVL_NODE **link) {
    AVL_NODE *n = *link;
    AVL_NODE *k = n->left;
    n->left = k->right;
    avl_set_parent(n->left, n);
    n->l_height = k->r_height;
    k->parent = n->parent;
    k->right = n;
    n->parent = k;
    k->r_height = avl_height(n);
    *link = k;
}

/*      n                      k
 *     / \                    / \
 *    A   k       -->        n   C
 *       / \                / \
 *      B   C              A   B */
static NB_VOID ntl_avl_rotate_left(AVL_NODE **link) {
    AVL_NODE *n = *link;
    AVL_NODE *k = n->right;
    n->right = k->left;
    avl_set_parent(n->right, n);
    n->r_height = k->l_height;
    k->parent = n->parent;
    k->left = n;
    n->parent = k;
    k->l_height = avl_height(n);
    *link = k;
}

/* One step for the subtree in the link, whose two sides differ by at most 2.  When the heavy child
 * leans inwards it is turned first:
 *
 *      n              n                b
 *     / \            / \              / \
 *    A   k    -->   A   b     -->    n   k
 *       / \            / \          / \ / \
 *      b   D          B   k        A  B C  D
 *     / \                / \
 *    B   C              C   D                                                             */
static NB_VOID ntl_avl_rebalance(AVL_NODE **link) {
    AVL_NODE *n = *link;
    if (n->r_height - n->l_height >= 2) {
        if (n->right->l_height > n->right->r_height) {
            ntl_avl_rotate_right(&n->right);
        }
        ntl_avl_rotate_left(link);
    } else if (n->l_height - n->r_height >= 2) {
        if (n->left->r_height > n->left->l_height) {
            ntl_avl_rotate_left(&n->left);
        }
        ntl_avl_rotate_right(link);
    }
}

/* Sets the height of one side of a node and walks up, as far as the height of a subtree changes.
 * The last node is left without a look at its parent, which may be far away in memory. */
static NB_VOID ntl_avl_balance_tree(AVL_TREE *tree, AVL_NODE *node, size_t side, NB_INT height) {
    for (;;) {
        NB_SHORT *side_height = avl_side_height(node, side);
        const NB_INT other = *avl_side_height(node, 1 - side);
        const NB_INT old = *side_height;
        *side_height = static_cast<NB_SHORT>(height);
        const NB_INT lean = height - other;
        if (lean >= 2 || lean <= -2) {
            AVL_NODE **link = avl_link(tree, node);
            ntl_avl_rebalance(link);
            node = *link;
            height = avl_height(node);
            if (height == std::max(old, other) + 1) {
                return;
            }
        } else {
            if (old <= other && height <= other) {
                return;
            }
            height = std::max(height, other) + 1;
        }
        AVL_NODE *parent = node->parent;
        if (parent == nullptr) {
            return;
        }
        side = avl_side(parent, node);
        node = parent;
    }
}

/* Links the node as a leaf below `parent`, at the side that `order` names, and balances. */
static NB_VOID avl_link_leaf(AVL_TREE *tree, AVL_NODE *parent, NB_INT order, AVL_NODE *node) {
    node->parent = parent;
    node->left = node->right = nullptr;
    node->l_height = node->r_height = 0;
    const size_t side = order > 0;
    *avl_child(parent, side) = node;
    AVL_NODE **end = side == 0 ? &tree->first : &tree->last;
    if (*end == parent) {
        *end = node;
    }
    ntl_avl_balance_tree(tree, parent, side, 1);
}

NB_USHORT ntl_avl_insert(AVL_TREE *tree, AVL_NODE *node) {
    if (!AVL_CHECK(!AVL_IN_TREE(*node))) {
        return 0;
    }
    AVL_NODE *parent = tree->last;
    if (parent == nullptr) {
        node->parent = node->left = node->right = nullptr;
        node->l_height = node->r_height = 0;
        tree->root = tree->first = tree->last = node;
        return 1;
    }
    /* Lists arrive in order, so most new keys lie behind the last one and need no descent. */
    const AVL_COMPARE compare = tree->compare;
    const NB_VOID *key = node->key;
    NB_INT order = compare(key, parent->key);
    if (order < 0) {
        for (AVL_NODE *next = tree->root; next != nullptr && order != 0;) {
            parent = next;
            avl_fetch_children(parent);
            order = compare(key, parent->key);
            next = order < 0 ? parent->left : parent->right;
        }
    }
    if (order == 0) {
        avl_mark_not_in_tree(node);
        return 0;
    }
    avl_link_leaf(tree, parent, order, node);
    return 1;
}

/* Where a node was taken out: the side of the parent that it hung on, and the height that this side
 * has now.  The parent is null when it was the root. */
struct AvlGap {
    AVL_NODE *parent;
    NB_SHORT side;
    NB_SHORT height;
};

/* Takes out a node with at most one child, which moves up into its place.  What is left has the
 * height of the node's own higher side, so that the child need not be fetched. */
AVL_INLINE AvlGap avl_unlink(AVL_TREE *tree, const AVL_NODE *node) {
    AVL_NODE *parent = node->parent;
    AVL_NODE *child = node->left != nullptr ? node->left : node->right;
    AvlGap gap = {parent, 0, std::max(node->l_height, node->r_height)};
    avl_set_parent(child, parent);
    if (parent == nullptr) {
        tree->root = child;
    } else {
        const size_t side = avl_side(parent, node);
        *avl_child(parent, side) = child;
        gap.side = static_cast<NB_SHORT>(side);
    }
    return gap;
}

/* Takes out a node with two children: its neighbour in key order, which has at most one child, is
 * taken out of its own place and takes over the node's.  Returns the gap that the neighbour left.
 *
 *          node                swap
 *          /  \                /  \
 *         A    ...    -->     A    ...
 *              /                   /
 *           swap                  B
 *              \
 *               B                                                                          */
AVL_INLINE AvlGap avl_replace(AVL_TREE *tree, const AVL_NODE *node, AVL_NODE *swap_node) {
    AvlGap gap = avl_unlink(tree, swap_node);
    if (gap.parent == node) {
        gap.parent = swap_node;
    }
    *avl_link(tree, node) = swap_node;
    swap_node->parent = node->parent;
    swap_node->left = node->left;
    swap_node->right = node->right;
    swap_node->l_height = node->l_height;
    swap_node->r_height = node->r_height;
    avl_set_parent(swap_node->left, swap_node);
    avl_set_parent(swap_node->right, swap_node);
    return gap;
}

static bool avl_has_two_children(const AVL_NODE *node) {
    return AVL_CHECK(node->left != NULL) && AVL_CHECK(node->right != NULL);
}

/* The heights of the neighbour are checked, but its links decide: the record is about to be freed,
 * so it leaves the tree in any case. */
AVL_INLINE AvlGap ntl_avl_swap_left_most(AVL_TREE *tree, const AVL_NODE *node) {
    if (!avl_has_two_children(node)) {
        return avl_unlink(tree, node);
    }
    AVL_NODE *swap_node = node->right;
    while (swap_node->left != nullptr) {
        swap_node = swap_node->left;
    }
    AVL_CHECK(swap_node->l_height == 0);
    AVL_CHECK(swap_node->r_height <= 1);
    return avl_replace(tree, node, swap_node);
}

AVL_INLINE AvlGap ntl_avl_swap_right_most(AVL_TREE *tree, const AVL_NODE *node) {
    if (!avl_has_two_children(node)) {
        return avl_unlink(tree, node);
    }
    AVL_NODE *swap_node = node->left;
    while (swap_node->right != nullptr) {
        swap_node = swap_node->right;
    }
    AVL_CHECK(swap_node->r_height == 0);
    AVL_CHECK(swap_node->l_height <= 1);
    return avl_replace(tree, node, swap_node);
}

/* Lets `first` and `last` step away from a node that has less than two children: an end of the tree
 * has at most one, and that is a leaf, its neighbour in key order. */
static NB_VOID avl_move_ends(AVL_TREE *tree, const AVL_NODE *node) {
    AVL_NODE *child = node->left != nullptr ? node->left : node->right;
    AVL_NODE *neighbour = child != nullptr ? child : node->parent;
    if (tree->first == node) {
        tree->first = neighbour;
    }
    if (tree->last == node) {
        tree->last = neighbour;
    }
}

NB_VOID ntl_avl_delete(AVL_TREE *tree, AVL_NODE *node) {
    const bool node_in_tree = AVL_IN_TREE(*node);
    if (!AVL_CHECK(node_in_tree)) {
        return;
    }
    AvlGap gap;
    if (node->left == nullptr || node->right == nullptr) {
        avl_move_ends(tree, node);
        gap = avl_unlink(tree, node);
    } else if (node->r_height > node->l_height) {
        gap = ntl_avl_swap_left_most(tree, node);
    } else {
        gap = ntl_avl_swap_right_most(tree, node);
    }
    if (gap.parent != nullptr) {
        ntl_avl_balance_tree(tree, gap.parent, static_cast<size_t>(gap.side), gap.height);
    }
    node->parent = node->left = node->right = nullptr;
    avl_mark_not_in_tree(node);
}

NB_VOID *ntl_avl_find(const AVL_TREE *tree, const NB_VOID *key) {
    const AVL_COMPARE compare = tree->compare;
    for (const AVL_NODE *node = tree->root; node != nullptr;) {
        avl_fetch_children(node);
        NB_INT order = compare(key, node->key);
        if (order == 0) {
            return node->data;
        }
        node = order < 0 ? node->left : node->right;
    }
    return nullptr;
}

/* The answer is the last node of the descent that lies above the key: it is remembered on the way,
 * which saves the climb back. */
NB_VOID *ntl_avl_find_next(const AVL_TREE *tree, const NB_VOID *key) {
    const AVL_COMPARE compare = tree->compare;
    const AVL_NODE *above = nullptr;
    for (const AVL_NODE *node = tree->root; node != nullptr;) {
        avl_fetch_children(node);
        NB_INT order = compare(key, node->key);
        above = order < 0 ? node : above;
        node = order < 0 ? node->left : node->right;
    }
    return above != nullptr ? above->data : nullptr;
}

NB_VOID *ntl_avl_next(const AVL_NODE *node) {
    if (!AVL_CHECK(AVL_IN_TREE(*node))) {
        return nullptr;
    }
    const AVL_NODE *next = node->right;
    if (next != nullptr) {
        while (next->left != nullptr) {
            next = next->left;
        }
        return next->data;
    }
    next = node->parent;
    while (next != nullptr && next->right == node) {
        node = next;
        next = node->parent;
    }
    return next != nullptr ? next->data : nullptr;
}

NB_VOID *ntl_avl_prev(const AVL_NODE *node) {
    if (!AVL_CHECK(AVL_IN_TREE(*node))) {
        return nullptr;
    }
    const AVL_NODE *prev = node->left;
    if (prev != nullptr) {
        while (prev->right != nullptr) {
            prev = prev->right;
        }
        return prev->data;
    }
    prev = node->parent;
    while (prev != nullptr && prev->left == node) {
        node = prev;
        prev = node->parent;
    }
    return prev != nullptr ? prev->data : nullptr;
}

struct AvlCheck {
    AVL_COMPARE compare;
    const AVL_NODE *previous; /* the node visited before in key order */
    const AVL_NODE *least;
    NB_LONG count;
};

/* A side is right when its recorded height is that of the child's own record.  Checked from the top
 * down this ends the recursion on any damage, because the heights shrink at every step. */
static bool avl_side_is_right(const AVL_NODE *node, const AVL_NODE *child, NB_SHORT height) {
    if (child == nullptr) {
        return height == 0;
    }
    return child->parent == node && AVL_IN_TREE(*child) && avl_height(child) == height;
}

static bool avl_check_subtree(const AVL_NODE *node, AvlCheck *check) {
    if (node == nullptr) {
        return true;
    }
    NB_INT lean = node->l_height - node->r_height;
    if (lean < -1 || lean > 1 || !avl_side_is_right(node, node->left, node->l_height) ||
        !avl_side_is_right(node, node->right, node->r_height) ||
        !avl_check_subtree(node->left, check)) {
        return false;
    }
    if (check->previous == nullptr) {
        check->least = node;
    } else if (check->compare(check->previous->key, node->key) >= 0) {
        return false;
    }
    check->previous = node;
    check->count++;
    return avl_check_subtree(node->right, check);
}

NB_LONG ntl_avl_validate(const AVL_TREE *tree) {
    AvlCheck check = {tree->compare, nullptr, nullptr, 0};
    if (tree->root != nullptr && (tree->root->parent != nullptr || !AVL_IN_TREE(*tree->root))) {
        return -1;
    }
    if (!avl_check_subtree(tree->root, &check) || tree->first != check.least ||
        tree->last != check.previous) {
        return -1;
    }
    return check.count;
}
