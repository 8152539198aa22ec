#include "sharedindex.h"

/* The link of the record that stands under this one's key. */
static VGA_SHARED_LINK *standing(const AVL_TREE *tree, const VGA_SHARED_LINK *link) {
    const auto place =
        reinterpret_cast<const NB_UCHAR *>(link) - static_cast<const NB_UCHAR *>(link->node.data);
    auto *record = static_cast<NB_UCHAR *>(ntl_avl_find(tree, link->node.key));
    return reinterpret_cast<VGA_SHARED_LINK *>(record + place);
}

NB_VOID vga_enter_shared(AVL_TREE *tree, VGA_SHARED_LINK *link) {
    link->next = link->previous = link;
    if (ntl_avl_insert(tree, &link->node)) {
        return;
    }
    VGA_SHARED_LINK *last = standing(tree, link);
    ntl_avl_delete(tree, &last->node);
    ntl_avl_insert(tree, &link->node);
    link->previous = last;
    link->next = last->next;
    link->next->previous = link;
    last->next = link;
}

NB_VOID vga_leave_shared(AVL_TREE *tree, VGA_SHARED_LINK *link) {
    VGA_SHARED_LINK *heir = link->previous;
    heir->next = link->next;
    link->next->previous = heir;
    link->next = link->previous = nullptr;
    if (AVL_IN_TREE(link->node)) {
        ntl_avl_delete(tree, &link->node);
        if (heir != link) {
            ntl_avl_insert(tree, &heir->node);
        }
    }
}
