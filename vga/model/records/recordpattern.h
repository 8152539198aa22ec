/* The one pattern of the model's records: construct, insert or merge, delete.
 *
 * A record type declares what is its own in a specialisation of VGA_RECORD_TYPE, on top of
 * VGA_RECORD_DEFAULTS, which says what each part means.  The functions here do the rest; the named
 * ones (vga_init_vga_port and its like, in vgadsadd.h and vgadsdel.h) call them.
 *
 * To add a type: declare its struct in model.h, specialise VGA_RECORD_TYPE in recordtypes.h, and
 * name its three functions. */
#ifndef RECORDPATTERN_H
#define RECORDPATTERN_H

#include "hooks.h"
#include "model.h"
#include "verbqueue.h"
#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>
#include <utility>

/* One index that a record can be in. */
struct VGA_INDEX_LINK {
    AVL_TREE *tree;
    AVL_NODE *node;
    const NB_VOID *key;
    NB_USHORT may_clash; /* flag: a second record with the key stays out of this index */
};

/* Where a record's line stands: directly behind the line of its predecessor in `order`. */
struct VGA_LINE_PLACE {
    VGA_VIEWER_ROOT *root;   /* null: the record has no line */
    VGA_VIEWER_ITEM *parent; /* null: top level */
    NB_UCHAR type;
    const AVL_NODE *order;
};

template <class Record> struct VGA_RECORD_TYPE;

template <class Record> struct VGA_RECORD_DEFAULTS {
    /* 1: the data are an item inside another record's entry, without a length of their own. */
    static constexpr NB_USHORT nested = 0;
    /* Bytes that every entry has at least; less than the data's where nested items end it. */
    static constexpr NB_USHORT fixed_size = sizeof(std::remove_pointer_t<decltype(Record::vcb)>);
    /* What the log says when the dialog on a record that is deleted shows another one. */
    static constexpr const NB_CHAR *dialog_text =
        "record->gui_data.dialog->parent_item == (NB_VOID *)record";
    /* Required: static std::array<VGA_INDEX_LINK, N> links(Record &record): its indexes.  The first
     * decides whether the record is known already; the others must agree. */

    /* Sets the key fields and child indexes of a new record whose owner and vcb are there.  A key
     * that is the entry's own comes with VGA_ONE_INDEX. */
    static NB_VOID init(Record &) {}
    /* Carries the status of the old data block over into the fresh one. */
    static NB_VOID carry_over(const Record &, NB_VOID * /* fresh block */) {}
    /* Takes over what the new record of a merge had besides its data block. */
    static NB_VOID merged(Record & /* kept */, Record & /* fresh, about to go */) {}
    static VGA_LINE_PLACE line(Record &) { return {}; }
    /* What follows from a record that has just joined the model. */
    static NB_VOID linked(Record &) {}
    /* What follows from a new data block, of a record that joined or of a merge: children that the
     * entry carries, records that it implies.  Returns 0 without memory. */
    static NB_USHORT settled(Record &) { return 1; }
    /* Deletes everything below the record; the first child is taken anew each time. */
    static NB_VOID delete_children(Record &) {}
    /* Clears the other records' references to one that is about to go. */
    static NB_VOID unlinked(Record &) {}
};

/* A record that is in one index of its owner, under the bytes of its entry's key behind the first
 * `Skip`, which name the owner.  An entry's key follows its length; an item has no length. */
template <class Record, auto Tree, auto Key, size_t Skip = 0>
struct VGA_ONE_INDEX : VGA_RECORD_DEFAULTS<Record> {
    static std::array<VGA_INDEX_LINK, 1> links(Record &record) {
        return {{{&(record.parent->*Tree), &record.links, &(record.*Key), 0}}};
    }
    static NB_VOID init(Record &record) {
        constexpr size_t at = Skip + (VGA_RECORD_TYPE<Record>::nested ? 0 : sizeof(NB_USHORT));
        static_assert(at + sizeof(record.*Key) <= sizeof(*record.vcb));
        memcpy(&(record.*Key), reinterpret_cast<const NB_UCHAR *>(record.vcb) + at,
               sizeof(record.*Key));
    }
};

/* `line` of a record whose line stands at the top level of one of its owner's lists, in the order
 * of an index. */
template <class Record, auto Root, NB_UCHAR Type, auto Links = &Record::links>
VGA_LINE_PLACE vga_top_line(Record &record) {
    return {&(record.parent->*Root), nullptr, Type, &(record.*Links)};
}

inline NB_VOID vga_init_tree(AVL_TREE &tree, AVL_COMPARE compare) {
    tree = AVL_TREE{compare, nullptr, nullptr, nullptr};
}

/* Calls `visit` for every record of an index in order.  The visit may delete the record it gets,
 * and no other. */
template <class Record, class Visit>
NB_VOID vga_for_each(const AVL_TREE &tree, AVL_NODE Record::*links, Visit visit) {
    auto *record = static_cast<Record *>(AVL_FIRST(tree));
    while (record != nullptr) {
        auto *next = static_cast<Record *>(ntl_avl_next(&(record->*links)));
        visit(*record);
        record = next;
    }
}

template <class Record> NB_VOID vga_free_record(Record *record) {
    nba_destroy_handle(record->handle);
    free(record->vcb);
    free(record);
}

/* Makes a record with a private copy of the list entry, as long as the entry says and at least its
 * type's fixed size; null: a zeroed block.  Returns null without memory or handle; nothing is kept
 * then. */
template <class Record, class Owner> Record *vga_init_record(Owner *owner, const NB_VOID *entry) {
    using DATA = std::remove_pointer_t<decltype(Record::vcb)>;
    NB_USHORT size = sizeof(DATA);
    if (entry != nullptr && !VGA_RECORD_TYPE<Record>::nested) {
        memcpy(&size, entry, sizeof(size));
        size = std::max(size, VGA_RECORD_TYPE<Record>::fixed_size);
    }
    NB_USHORT rounded = static_cast<NB_USHORT>((size + 3) & ~3);
    VGA_OWNED<Record> record(static_cast<Record *>(calloc(1, sizeof(Record))));
    VGA_OWNED<DATA> data(static_cast<DATA *>(calloc(1, rounded)));
    if (!record || !data) {
        return nullptr;
    }
    record->handle = nba_create_handle(record.get());
    if (record->handle == 0) {
        return nullptr;
    }
    if (entry != nullptr) {
        memcpy(data.get(), entry, size);
    }
    record->parent = owner;
    record->vcb = data.release();
    VGA_RECORD_TYPE<Record>::init(*record);
    for (const VGA_INDEX_LINK &link : VGA_RECORD_TYPE<Record>::links(*record)) {
        AVL_INIT_NODE(*link.node, record.get(), link.key);
    }
    return record.release();
}

/* A top-level line opens with its first child: the operator sees what there is without a click, and
 * the keyboard, which goes around fixed lines, reaches what is below them. */
inline NB_VOID vga_open_with_first_child(const VGA_LINE_PLACE &place) {
    if (place.parent != nullptr && place.parent->parent == nullptr &&
        place.parent->children.count == 1) {
        vga_expand_viewer(place.root, place.parent, 1);
    }
}

/* Creates the record's line, so that the lists on the screen follow the index whatever the order of
 * arrival. */
template <class Record> NB_VOID vga_create_line(Record *record) {
    VGA_LINE_PLACE place = VGA_RECORD_TYPE<Record>::line(*record);
    if (place.root == nullptr) {
        return;
    }
    VGA_VIEWER_ITEM *after = VGA_VIEWER_FIRST;
    const AVL_NODE *order = place.order;
    while (order != nullptr) {
        auto *previous = static_cast<Record *>(ntl_avl_prev(order));
        if (previous == nullptr) {
            break;
        }
        if (previous->gui_data.listed && previous->gui_data.viewer.parent == place.parent) {
            after = &previous->gui_data.viewer;
            break;
        }
        /* Not on this list: a PU without a line of its own, say. */
        size_t offset = static_cast<size_t>(reinterpret_cast<const NB_UCHAR *>(place.order) -
                                            reinterpret_cast<const NB_UCHAR *>(record));
        order = reinterpret_cast<const AVL_NODE *>(reinterpret_cast<NB_UCHAR *>(previous) + offset);
    }
    record->gui_data.listed = 1;
    vga_create_viewer(place.root, &record->gui_data.viewer, place.type, record, place.parent,
                      after);
    vga_open_with_first_child(place);
}

/* Redraws the record's line, if it has one. */
template <class Record> NB_VOID vga_update_line(Record *record) {
    if (record->gui_data.listed) {
        vga_update_viewer(VGA_RECORD_TYPE<Record>::line(*record).root, &record->gui_data.viewer);
    }
}

/* Merges a new record into the one that is already there, which keeps its identity: handle,
 * children, line and open dialog. */
template <class Record> Record *vga_merge_record(Record *fresh, Record *kept) {
    VGA_RECORD_TYPE<Record>::carry_over(*kept, fresh->vcb);
    std::swap(kept->vcb, fresh->vcb);
    VGA_RECORD_TYPE<Record>::merged(*kept, *fresh);
    vga_free_record(fresh);
    vga_update_line(kept);
    return VGA_RECORD_TYPE<Record>::settled(*kept) ? kept : nullptr;
}

/* Links a record into its indexes and creates its line, or merges it.  Returns the record that
 * stays in the model; null when there was no memory for what follows from it. */
template <class Record> Record *vga_insert_record(Record *record) {
    auto links = VGA_RECORD_TYPE<Record>::links(*record);
    if (ntl_avl_insert(links[0].tree, links[0].node) == 0) {
        auto *old_entry = static_cast<Record *>(ntl_avl_find(links[0].tree, links[0].key));
        NB_ASSERT(old_entry != NULL);
        if (old_entry == nullptr) {
            vga_free_record(record);
            return nullptr;
        }
        return vga_merge_record(record, old_entry);
    }
    for (size_t index = 1; index < links.size(); index++) {
        if (ntl_avl_insert(links[index].tree, links[index].node) == 0 && !links[index].may_clash) {
            v0_assert(__FILE__, __LINE__, "FALSE");
        }
    }
    vga_create_line(record);
    VGA_RECORD_TYPE<Record>::linked(*record);
    return VGA_RECORD_TYPE<Record>::settled(*record) ? record : nullptr;
}

/* Deletes a record and everything below it.  A dialog that is open on it is told and stays on the
 * screen but no longer points into the model.  The viewer draws once behind a burst of deletions.
 */
template <class Record> NB_VOID vga_delete_record(Record *record) {
    if (record->gui_data.dialog != nullptr) {
        vga_record_changed(record, VGA_RECORD_GONE);
    }
    if (VGA_DIALOG *dialog = record->gui_data.dialog) {
        if (gvga_hooks.record_leaves_dialog != nullptr &&
            gvga_hooks.record_leaves_dialog(dialog, record) == 0) {
            v0_assert(__FILE__, __LINE__, VGA_RECORD_TYPE<Record>::dialog_text);
        }
    }
    if (record->gui_data.listed) {
        vga_delete_viewer(VGA_RECORD_TYPE<Record>::line(*record).root, &record->gui_data.viewer);
    }
    VGA_RECORD_TYPE<Record>::delete_children(*record);
    for (const VGA_INDEX_LINK &link : VGA_RECORD_TYPE<Record>::links(*record)) {
        if (AVL_IN_TREE(*link.node)) {
            ntl_avl_delete(link.tree, link.node);
        }
    }
    VGA_RECORD_TYPE<Record>::unlinked(*record);
    vga_free_record(record);
}

/* Moves a record to another place in an index, whose key field `change` sets anew. */
template <class Change> NB_VOID vga_relink(AVL_TREE &tree, AVL_NODE &links, Change change) {
    ntl_avl_delete(&tree, &links);
    change();
    if (ntl_avl_insert(&tree, &links) == 0) {
        v0_assert(__FILE__, __LINE__, "FALSE");
    }
}

/* Deletes every record of an index. */
template <class Record> NB_VOID vga_delete_all(AVL_TREE &tree) {
    while (auto *first = static_cast<Record *>(AVL_FIRST(tree))) {
        vga_delete_record(first);
    }
}

/* The arguments of vga_merge_nested that say where an owner's entry has its items. */
#define VGA_NESTED(owner, items, count)                                                            \
    offsetof(std::remove_pointer_t<decltype((owner).vcb)>, def_data.items),                        \
        (owner).vcb->def_data.count

/* Brings an owner's children in line with the items of its entry: adds or merges each, then deletes
 * the children that no item names.  A count that the entry is too short for is cut.  Returns 0
 * without memory. */
template <class Child, class Owner>
NB_USHORT vga_merge_nested(Owner &owner, AVL_TREE &tree, size_t offset, NB_USHORT count) {
    constexpr size_t most = 64;
    constexpr size_t item_size = sizeof(std::remove_pointer_t<decltype(Child::vcb)>);
    NB_USHORT entry_size;
    memcpy(&entry_size, owner.vcb, sizeof(entry_size));
    size_t room = entry_size > offset ? (entry_size - offset) / item_size : 0;
    size_t items = std::min({static_cast<size_t>(count), room, most});
    const auto *item = reinterpret_cast<const NB_UCHAR *>(owner.vcb) + offset;
    std::array<Child *, most> named;
    for (size_t at = 0; at < items; at++, item += item_size) {
        Child *child = vga_init_record<Child>(&owner, item);
        named[at] = child != nullptr ? vga_insert_record(child) : nullptr;
        if (named[at] == nullptr) {
            return 0;
        }
    }
    vga_for_each(tree, &Child::links, [&named, items](Child &child) {
        if (std::find(named.begin(), named.begin() + items, &child) == named.begin() + items) {
            vga_delete_record(&child);
        }
    });
    return 1;
}

#endif
