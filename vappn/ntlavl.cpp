#include "ntlavl.h"

#include <algorithm>
#include <cstdint>

#include "nbbase.h"

/* True when the expression holds; else it is reported. */
#define AVL_CHECK(expression)                                                                      \
    ((expression) ? true : (v0_assert("ntlavl", __LINE__, #expression), false))

static NB_SHORT avl_height(const AVL_NODE *node) {
    return static_cast<NB_SHORT>(std::max(node->l_height, node->r_height) + 1);
}

/* Which side of its parent a node hangs on cannot be predicted, and a branch that is guessed wrong
 * costs as much as ten instructions and more.  So a side is a number that picks a link or a height
 * by its offset. */
enum AvlSide : size_t { AVL_LEFT, AVL_RIGHT };

static_assert(offsetof(AVL_NODE, right) == offsetof(AVL_NODE, left) + sizeof(AVL_NODE *));
static_assert(offsetof(AVL_NODE, r_height) == offsetof(AVL_NODE, l_height) + sizeof(NB_SHORT));
static_assert(offsetof(AVL_TREE, last) == offsetof(AVL_TREE, first) + sizeof(AVL_NODE *));

template <typename Field> static Field *avl_field(NB_VOID *object, size_t offset, AvlSide side) {
    return reinterpret_cast<Field *>(static_cast<unsigned char *>(object) + offset) + side;
}

static AVL_NODE **avl_child(AVL_NODE *node, AvlSide side) {
    return avl_field<AVL_NODE *>(node, offsetof(AVL_NODE, left), side);
}

static NB_SHORT *avl_side_height(AVL_NODE *node, AvlSide side) {
    return avl_field<NB_SHORT>(node, offsetof(AVL_NODE, l_height), side);
}

static AVL_NODE **avl_end(AVL_TREE *tree, AvlSide side) {
    return avl_field<AVL_NODE *>(tree, offsetof(AVL_TREE, first), side);
}

static constexpr AvlSide avl_other(AvlSide side) {
    return static_cast<AvlSide>(AVL_RIGHT - side);
}

static AvlSide avl_side(const AVL_NODE *parent, const AVL_NODE *node) {
    return static_cast<AvlSide>(parent->right == node);
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

/* The two walks up from a node one of whose sides has become higher, or lower, by one.  They end at
 * the first subtree whose own height stays.  The two heights of a node tell what is to be done, so
 * nothing but the path itself is fetched unless a rotation needs it. */
static NB_VOID ntl_avl_balance_grown(AVL_TREE *tree, AVL_NODE *node, AvlSide side) {
    for (;;) {
        const NB_SHORT left = node->l_height;
        const NB_SHORT right = node->r_height;
        const NB_SHORT high = std::max(left, right);
        if (left != right && (right > left) != side) {
            node->l_height = node->r_height = high; /* the lower side has caught up */
            return;
        }
        *avl_side_height(node, side) = static_cast<NB_SHORT>(high + 1);
        if (left != right) {
            ntl_avl_rebalance(avl_link(tree, node)); /* which undoes the growth */
            return;
        }
        AVL_NODE *parent = node->parent;
        if (parent == nullptr) {
            return;
        }
        side = avl_side(parent, node);
        node = parent;
    }
}

static NB_VOID ntl_avl_balance_shrunk(AVL_TREE *tree, AVL_NODE *node, AvlSide side);

/* The lower side of the node has become lower still.  Apart from the walk, and called last, so that
 * the walk, which rarely comes here, has no registers to save. */
[[gnu::noinline]] static NB_VOID avl_rotate_shrunk(AVL_TREE *tree, AVL_NODE *node) {
    AVL_NODE **link = avl_link(tree, node);
    ntl_avl_rebalance(link);
    node = *link;
    AVL_NODE *parent = node->parent;
    if (node->l_height == node->r_height && parent != nullptr) {
        ntl_avl_balance_shrunk(tree, parent, avl_side(parent, node));
    }
}

static NB_VOID ntl_avl_balance_shrunk(AVL_TREE *tree, AVL_NODE *node, AvlSide side) {
    for (;;) {
        const NB_SHORT left = node->l_height;
        const NB_SHORT right = node->r_height;
        if (left == right) {
            --*avl_side_height(node, side); /* the other side keeps the height up */
            return;
        }
        if ((right > left) != side) {
            --*avl_side_height(node, side);
            avl_rotate_shrunk(tree, node);
            return;
        }
        node->l_height = node->r_height = std::min(left, right);
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
    const auto side = static_cast<AvlSide>(order > 0);
    *avl_child(parent, side) = node;
    AVL_NODE **end = avl_end(tree, side);
    if (*end == parent) {
        *end = node;
    }
    ntl_avl_balance_grown(tree, parent, side);
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

/* Deletions at random places spend their time waiting for memory.  The processor then works ahead
 * into the deletions that follow and fetches their nodes too, as far as a window of some 250
 * instructions reaches: what counts here is few instructions.  Hence the pieces are inlined, and
 * what calls another function calls it last, which saves and restores no registers. */
#define AVL_INLINE [[gnu::always_inline]] static inline

/* Where a node was taken out: the side of the parent that is lower by one now.  The parent is null
 * when the node was the root. */
struct AvlGap {
    AVL_NODE *parent;
    AvlSide side;
};

/* The end of every deletion. */
AVL_INLINE NB_VOID avl_close_gap(AVL_TREE *tree, AVL_NODE *node, AvlGap gap) {
    node->parent = node->left = node->right = nullptr;
    avl_mark_not_in_tree(node);
    if (gap.parent != nullptr) {
        ntl_avl_balance_shrunk(tree, gap.parent, gap.side);
    }
}

/* Takes out a node with at most one child, which moves up into its place.  Such a node may be an
 * end of the tree: its neighbour in key order is then that child, a leaf, or else the parent. */
AVL_INLINE AvlGap avl_unlink(AVL_TREE *tree, const AVL_NODE *node) {
    AVL_NODE *parent = node->parent;
    AVL_NODE *child = node->left != nullptr ? node->left : node->right;
    AVL_NODE *neighbour = child != nullptr ? child : parent;
    if (tree->first == node) {
        tree->first = neighbour;
    }
    if (tree->last == node) {
        tree->last = neighbour;
    }
    avl_set_parent(child, parent);
    if (parent == nullptr) {
        tree->root = child;
        return {nullptr, AVL_LEFT};
    }
    const AvlSide side = avl_side(parent, node);
    *avl_child(parent, side) = child;
    return {parent, side};
}

/* Takes out a node with two children: its neighbour in key order on one side, which has at most one
 * child, is taken out of its own place and takes over the node's.  On the right side:
 *
 *          node                swap
 *          /  \                /  \
 *         A    ...    -->     A    ...
 *              /                   /
 *           swap                  B
 *              \
 *               B                                                                          */
template <AvlSide side>
AVL_INLINE AvlGap avl_swap(AVL_TREE *tree, AVL_NODE *node, AVL_NODE *swap_node) {
    constexpr AvlSide inner = avl_other(side);
    AvlGap gap = {swap_node, side};
    AVL_NODE *child = *avl_child(node, side);
    if (swap_node != child) {
        AVL_NODE *parent = swap_node->parent;
        gap = {parent, inner};
        AVL_NODE *moved_up = *avl_child(swap_node, side);
        *avl_child(parent, inner) = moved_up;
        avl_set_parent(moved_up, parent);
        *avl_child(swap_node, side) = child;
        child->parent = swap_node;
    }
    child = *avl_child(node, inner);
    *avl_child(swap_node, inner) = child;
    child->parent = swap_node;
    *avl_link(tree, node) = swap_node;
    swap_node->parent = node->parent;
    swap_node->l_height = node->l_height;
    swap_node->r_height = node->r_height;
    return gap;
}

static bool avl_has_two_children(const AVL_NODE *node) {
    return AVL_CHECK(node->left != NULL) && AVL_CHECK(node->right != NULL);
}

/* The heights of the neighbour are checked, but its links decide: the record is about to be freed,
 * so it leaves the tree in any case. */
[[gnu::cold, gnu::noinline]] static NB_VOID avl_report_left_most(AVL_TREE *tree, AVL_NODE *node,
                                                                 AVL_NODE *swap_node) {
    AVL_CHECK(swap_node->l_height == 0);
    AVL_CHECK(swap_node->r_height <= 1);
    avl_close_gap(tree, node, avl_swap<AVL_RIGHT>(tree, node, swap_node));
}

[[gnu::cold, gnu::noinline]] static NB_VOID avl_report_right_most(AVL_TREE *tree, AVL_NODE *node,
                                                                  AVL_NODE *swap_node) {
    AVL_CHECK(swap_node->r_height == 0);
    AVL_CHECK(swap_node->l_height <= 1);
    avl_close_gap(tree, node, avl_swap<AVL_LEFT>(tree, node, swap_node));
}

AVL_INLINE NB_VOID ntl_avl_swap_left_most(AVL_TREE *tree, AVL_NODE *node) {
    if (!avl_has_two_children(node)) {
        return;
    }
    AVL_NODE *swap_node = node->right;
    while (swap_node->left != nullptr) {
        swap_node = swap_node->left;
    }
    if (swap_node->l_height != 0 || swap_node->r_height > 1) [[unlikely]] {
        avl_report_left_most(tree, node, swap_node);
    } else {
        avl_close_gap(tree, node, avl_swap<AVL_RIGHT>(tree, node, swap_node));
    }
}

AVL_INLINE NB_VOID ntl_avl_swap_right_most(AVL_TREE *tree, AVL_NODE *node) {
    if (!avl_has_two_children(node)) {
        return;
    }
    AVL_NODE *swap_node = node->left;
    while (swap_node->right != nullptr) {
        swap_node = swap_node->right;
    }
    if (swap_node->r_height != 0 || swap_node->l_height > 1) [[unlikely]] {
        avl_report_right_most(tree, node, swap_node);
    } else {
        avl_close_gap(tree, node, avl_swap<AVL_LEFT>(tree, node, swap_node));
    }
}

NB_VOID ntl_avl_delete(AVL_TREE *tree, AVL_NODE *node) {
    const bool node_in_tree = AVL_IN_TREE(*node);
    if (!AVL_CHECK(node_in_tree)) {
        return;
    }
    if (node->left == nullptr || node->right == nullptr) {
        avl_close_gap(tree, node, avl_unlink(tree, node));
    } else if (node->r_height > node->l_height) {
        ntl_avl_swap_left_most(tree, node);
    } else {
        ntl_avl_swap_right_most(tree, node);
    }
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

/* One of two nodes, by arithmetic: the compiler makes a branch of a choice that is written as one,
 * and which way a descent turns cannot be predicted. */
static const AVL_NODE *avl_pick(bool first, const AVL_NODE *a, const AVL_NODE *b) {
    const uintptr_t all_or_none = -static_cast<uintptr_t>(first);
    return reinterpret_cast<const AVL_NODE *>((reinterpret_cast<uintptr_t>(a) & all_or_none) |
                                              (reinterpret_cast<uintptr_t>(b) & ~all_or_none));
}

/* The answer is the last node at which the descent turned left, which is remembered on the way and
 * saves the climb back.  Behind the key itself nothing more is compared: what follows it is the
 * least node of its right side. */
NB_VOID *ntl_avl_find_next(const AVL_TREE *tree, const NB_VOID *key) {
    const AVL_COMPARE compare = tree->compare;
    const AVL_NODE *above = nullptr;
    for (const AVL_NODE *node = tree->root; node != nullptr;) {
        avl_fetch_children(node);
        NB_INT order = compare(key, node->key);
        if (order == 0) {
            for (node = node->right; node != nullptr; node = node->left) {
                above = node;
            }
            break;
        }
        above = avl_pick(order < 0, node, above);
        node = order < 0 ? node->left : node->right;
    }
    return above != nullptr ? above->data : nullptr;
}

/* A walk meets a node for the first time on the way down to the least node of a subtree.  The other
 * side of each such node comes next but one: it is asked for here and is on its way while the
 * caller looks at the record. */
NB_VOID *ntl_avl_next(const AVL_NODE *node) {
    if (!AVL_CHECK(AVL_IN_TREE(*node))) {
        return nullptr;
    }
    const AVL_NODE *next = node->right;
    if (next != nullptr) {
        __builtin_prefetch(next->right);
        while (next->left != nullptr) {
            next = next->left;
            __builtin_prefetch(next->right);
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
        __builtin_prefetch(prev->left);
        while (prev->right != nullptr) {
            prev = prev->right;
            __builtin_prefetch(prev->left);
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
