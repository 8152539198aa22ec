/* Ordered index: a height-balanced binary search tree whose nodes are embedded in the records.
 *
 * A record carries one AVL_NODE for each index that it can belong to; the index never allocates,
 * copies or frees anything.  OWNS: nothing.  The records belong to whoever made them and must be
 * taken out of every index before they are freed.  Keys are read only through the comparator, and
 * a key must not change while its node is linked.  One thread.
 *
 *                                   comparisons          steps
 *   ntl_avl_insert, key above all   1                    1 on average, log2(n) at most
 *   ntl_avl_insert, any other key   log2(n) + 1          about 2 on average behind the descent
 *   ntl_avl_find, _find_next        log2(n)              log2(n)
 *   ntl_avl_delete                  none                 about 2 on average, log2(n) at most
 *   ntl_avl_next, ntl_avl_prev      none                 about 2 on average, log2(n) at most
 *   AVL_FIRST                       none                 1
 *
 * (log2(n) stands for the height of the tree, which is at most 1.44 log2(n).)
 *
 * Usage:
 *
 *   typedef struct lu { AVL_NODE by_name; NB_UCHAR name[8]; } LU;
 *
 *   AVL_TREE lus = {ntl_compare_name, NULL, NULL, NULL};
 *
 *   AVL_INIT_NODE(lu->by_name, lu, lu->name);
 *   if (!ntl_avl_insert(&lus, &lu->by_name)) {
 *       ... one with this name is there already; lu is in no tree ...
 *   }
 *   for (lu = (LU *)AVL_FIRST(lus); lu != NULL; lu = next) {
 *       next = (LU *)ntl_avl_next(&lu->by_name);     before lu can be deleted
 *       ...
 *   }
 *   lu = (LU *)ntl_avl_find(&lus, name);
 *   if (lu != NULL) {
 *       ntl_avl_delete(&lus, &lu->by_name);          lu can be inserted again, or freed
 *   }
 *
 * Misuse is reported with v0_assert, file "ntlavl"; the call then changes nothing and returns 0 or
 * null. */
#ifndef NTLAVL_H
#define NTLAVL_H

#include "nbtypes.h"

NB_EXTERN_C_BEGIN

/* `a` is the key that is looked for or inserted, `b` that of a node in the tree.  Returns a
 * negative value when a sorts before b, a positive one when it sorts behind b, 0 for equal keys. */
typedef NB_INT (*AVL_COMPARE)(const NB_VOID *a, const NB_VOID *b);

/* In no tree: both heights -1 (AVL_NOT_IN_TREE), which is how a node must be before its first
 * insertion and how deletion leaves it. */
typedef struct avl_node {
    struct avl_node *parent; /* null at the root */
    struct avl_node *left;
    struct avl_node *right;
    NB_SHORT l_height; /* of the left subtree: 0 when there is none, 1 for a leaf */
    NB_SHORT r_height;
    NB_VOID *data;      /* the record that holds the node: what the look-ups return */
    const NB_VOID *key; /* the key in that record: what the comparator is given */
} AVL_NODE;

/* An index head is ready for use once `compare` is set and the three links are null. */
typedef struct avl_tree {
    AVL_COMPARE compare;
    AVL_NODE *root;
    AVL_NODE *first; /* the least node, null when the tree is empty */
    AVL_NODE *last;  /* the greatest */
} AVL_TREE;

#define AVL_NOT_IN_TREE ((NB_SHORT)-1)

/* The macros take the object itself, not a pointer to it. */

/* The data of the least node, null for an empty tree. */
#define AVL_FIRST(tree) ((tree).first != NULL ? (tree).first->data : NULL)

#define AVL_IN_TREE(node) ((node).l_height != AVL_NOT_IN_TREE && (node).r_height != AVL_NOT_IN_TREE)

/* Makes an embedded node ready for its first insertion. */
#define AVL_INIT_NODE(node, record, record_key)                                                    \
    ((node).parent = (node).left = (node).right = NULL,                                            \
     (node).l_height = (node).r_height = AVL_NOT_IN_TREE, (node).data = (record),                  \
     (node).key = (record_key))

/* Links the node in.  Returns 1, or 0 when a node with an equal key is there already: then the tree
 * is as before and the node in no tree.
 * REQUIRES: the node is in no tree. */
NB_USHORT ntl_avl_insert(AVL_TREE *tree, AVL_NODE *node);

/* Takes the node out: its links are null then, and it can be inserted again.
 * REQUIRES: the node is in this tree (checked: that it is in one). */
NB_VOID ntl_avl_delete(AVL_TREE *tree, AVL_NODE *node);

/* Returns the data of the node whose key compares equal, or null. */
NB_VOID *ntl_avl_find(const AVL_TREE *tree, const NB_VOID *key);

/* Returns the data of the node with the least key above `key`, whether or not `key` itself is in
 * the tree; null when there is none. */
NB_VOID *ntl_avl_find_next(const AVL_TREE *tree, const NB_VOID *key);

/* Return the data of the node's neighbour in key order, null at the end.
 * REQUIRES: the node is in a tree. */
NB_VOID *ntl_avl_next(const AVL_NODE *node);
NB_VOID *ntl_avl_prev(const AVL_NODE *node);

/* For tests and tools: looks at every node once.  Returns the number of nodes, or -1 when anything
 * is wrong: key order, a parent link, a height, the balance, `first` or `last`. */
NB_LONG ntl_avl_validate(const AVL_TREE *tree);

NB_EXTERN_C_END

#endif
