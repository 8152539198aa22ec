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
    NB_VOID *key;            /* a field of the record */
    size_t key_size;         /* 0: the key follows another field */
    VGA_SHARED_LINK *shared; /* that `node` is of; null: no two records have one key */
};

template <class Key> constexpr VGA_INDEX_LINK vga_index(AVL_TREE &tree, AVL_NODE &node, Key &key) {
    return {&tree, &node, &key, sizeof(key), nullptr};
}

template <class Key>
constexpr VGA_INDEX_LINK vga_index(AVL_TREE &tree, VGA_SHARED_LINK &link, Key &key) {
    return {&tree, &link.node, &key, sizeof(key), &link};
}

/* Where a record's line stands: among its siblings in the order of one of the record's indexes. */
struct VGA_LINE_PLACE {
    VGA_VIEWER_ROOT *root;   /* null: the record has no line */
    VGA_VIEWER_ITEM *parent; /* null: top level */
    NB_UCHAR type;
    const AVL_NODE *order;
    NB_UCHAR other_type; /* of lines of such records, too; 0: none */
};

/* Where a record is counted: its node shows in its line how many it has.  Null: nowhere. */
struct VGA_COUNTED {
    VGA_NODE *node;
    NB_ULONG VGA_NODE_COUNTS::*counter;
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
    static VGA_COUNTED counted(Record &) { return {}; }
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
        return {vga_index(record.parent->*Tree, record.links, record.*Key)};
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
    return {&(record.parent->*Root), nullptr, Type, &(record.*Links), 0};
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

/* Indexes. */

inline NB_USHORT vga_is_linked(const VGA_INDEX_LINK &link) {
    return link.shared != nullptr ? link.shared->next != nullptr : AVL_IN_TREE(*link.node);
}

/* Returns 0 when another record has the key, which only a shared index allows. */
inline NB_USHORT vga_link(const VGA_INDEX_LINK &link) {
    if (link.shared != nullptr) {
        vga_enter_shared(link.tree, link.shared);
        return 1;
    }
    return ntl_avl_insert(link.tree, link.node);
}

inline NB_VOID vga_unlink(const VGA_INDEX_LINK &link) {
    if (!vga_is_linked(link)) {
        return;
    }
    if (link.shared != nullptr) {
        vga_leave_shared(link.tree, link.shared);
    } else {
        ntl_avl_delete(link.tree, link.node);
    }
}

/* What must agree with another index. */
inline NB_VOID vga_link_surely(const VGA_INDEX_LINK &link) {
    if (vga_link(link) == 0) {
        v0_assert(__FILE__, __LINE__, "FALSE");
    }
}

/* Gives the record the owner and the keys of another, and links it again in each index that it
 * then stands elsewhere in. */
template <class Record> NB_VOID vga_relink_as(Record &record, Record &other) {
    const auto from = VGA_RECORD_TYPE<Record>::links(record);
    const auto to = VGA_RECORD_TYPE<Record>::links(other);
    std::array<NB_USHORT, from.size()> moves;
    for (size_t at = 0; at < from.size(); at++) {
        moves[at] =
            from[at].tree != to[at].tree || from[at].tree->compare(from[at].key, to[at].key) != 0;
        if (moves[at]) {
            vga_unlink(from[at]);
        }
    }
    for (size_t at = 0; at < from.size(); at++) {
        memcpy(from[at].key, to[at].key, from[at].key_size);
    }
    record.parent = other.parent;
    for (size_t at = 0; at < from.size(); at++) {
        if (moves[at]) {
            VGA_INDEX_LINK moved = from[at];
            moved.tree = to[at].tree;
            vga_link_surely(moved);
        }
    }
}

/* Lines. */

/* A top-level line opens with its first child: the operator sees what there is without a click, and
 * the keyboard, which goes around fixed lines, reaches what is below them. */
inline NB_VOID vga_open_with_first_child(const VGA_LINE_PLACE &place) {
    if (place.parent != nullptr && place.parent->parent == nullptr &&
        place.parent->children.count == 1) {
        vga_expand_viewer(place.root, place.parent, 1);
    }
}

inline NB_VOID vga_line_came(const VGA_LINE_PLACE &place, VGA_VIEWER_ITEM *line) {
    vga_open_with_first_child(place);
    if (gvga_hooks.line_added != nullptr) {
        gvga_hooks.line_added(place.root, line);
    }
}

/* The line that the record's line goes behind, so that the lists on the screen follow the index
 * whatever the order of arrival.  Usually that of its predecessor in the index; where that is not
 * on this list (a PU without a line of its own, say) the siblings are searched. */
template <class Record>
VGA_VIEWER_ITEM *vga_line_before(Record &record, const VGA_LINE_PLACE &place) {
    auto *previous = static_cast<Record *>(ntl_avl_prev(place.order));
    if (previous == nullptr) {
        return VGA_VIEWER_FIRST;
    }
    if (previous->gui_data.list == place.root && previous->gui_data.viewer.parent == place.parent) {
        return &previous->gui_data.viewer;
    }
    const auto links = VGA_RECORD_TYPE<Record>::links(record);
    const auto index = std::find_if(links.begin(), links.end(), [&place](const auto &link) {
        return link.node == place.order;
    });
    const auto offset = reinterpret_cast<const NB_UCHAR *>(place.order) -
                        reinterpret_cast<const NB_UCHAR *>(&record);
    return vga_viewer_find_place(place.root, place.parent,
                                 [&](const VGA_VIEWER_ITEM &item) -> NB_USHORT {
                                     if (item.type != place.type && item.type != place.other_type) {
                                         return 0;
                                     }
                                     const auto *node = reinterpret_cast<const AVL_NODE *>(
                                         static_cast<const NB_UCHAR *>(item.data) + offset);
                                     return index->tree->compare(node->key, index->key) < 0;
                                 });
}

/* Creates the record's line, or takes the one that it has to where it belongs now, with what is
 * below it; or takes it off the list. */
template <class Record> NB_VOID vga_place_line(Record *record) {
    VGA_LINE_PLACE place = VGA_RECORD_TYPE<Record>::line(*record);
    VGA_GUI_DATA &gui = record->gui_data;
    VGA_VIEWER_ITEM *line = &gui.viewer;
    if (gui.list != nullptr && gui.list != place.root) {
        vga_delete_viewer(std::exchange(gui.list, nullptr), line);
    }
    if (place.root == nullptr) {
        return;
    }
    if (gui.list == nullptr) {
        gui.list = place.root;
        vga_create_viewer(place.root, line, place.type, record, place.parent,
                          vga_line_before(*record, place));
        vga_line_came(place, line);
    } else if (line->parent != place.parent || line->type != place.type) {
        vga_move_viewer(place.root, line, place.type, place.parent,
                        vga_line_before(*record, place));
        vga_line_came(place, line);
    } else {
        vga_update_viewer(place.root, line);
    }
}

/* Gives a record that stands in no index a line that stays where it is. */
template <class Record>
NB_VOID vga_create_fixed_line(VGA_VIEWER_ROOT &root, Record *record, VGA_VIEWER_TYPE type) {
    if (record->gui_data.list == nullptr) {
        record->gui_data.list = &root;
        vga_create_viewer(&root, &record->gui_data.viewer, type, record, nullptr, VGA_VIEWER_FIRST);
        vga_viewer_set_fixed(&root, &record->gui_data.viewer, 1);
    }
}

/* Redraws the record's line, if it has one. */
template <class Record> NB_VOID vga_update_line(Record *record) {
    if (record->gui_data.list != nullptr) {
        vga_update_viewer(record->gui_data.list, &record->gui_data.viewer);
    }
}

template <class Record> NB_VOID vga_delete_line(Record *record) {
    if (record->gui_data.list != nullptr) {
        vga_delete_viewer(std::exchange(record->gui_data.list, nullptr), &record->gui_data.viewer);
    }
}

/* Records. */

template <class Record> NB_VOID vga_count(Record &record, NB_LONG more) {
    const VGA_COUNTED counted = VGA_RECORD_TYPE<Record>::counted(record);
    if (counted.node != nullptr) {
        counted.node->counts.*counted.counter += static_cast<NB_ULONG>(more);
        vga_update_line(counted.node);
    }
}

/* Merges a new record into the one that is already there, which keeps its identity: handle,
 * children, line and open dialog, which is told.  Owner and keys are those of the new one. */
template <class Record> Record *vga_merge_record(Record *fresh, Record *kept) {
    vga_relink_as(*kept, *fresh);
    VGA_RECORD_TYPE<Record>::carry_over(*kept, fresh->vcb);
    std::swap(kept->vcb, fresh->vcb);
    VGA_RECORD_TYPE<Record>::merged(*kept, *fresh);
    vga_free_record(fresh);
    vga_place_line(kept);
    const NB_USHORT settled = VGA_RECORD_TYPE<Record>::settled(*kept);
    if (kept->gui_data.dialog != nullptr) {
        vga_record_changed(kept, VGA_RECORD_CHANGED);
    }
    return settled ? kept : nullptr;
}

/* Links a record into its indexes and creates its line, or merges it.  Returns the record that
 * stays in the model; null when there was no memory for what follows from it. */
template <class Record> Record *vga_insert_record(Record *record) {
    auto links = VGA_RECORD_TYPE<Record>::links(*record);
    if (vga_link(links[0]) == 0) {
        auto *old_entry = static_cast<Record *>(ntl_avl_find(links[0].tree, links[0].key));
        NB_ASSERT(old_entry != NULL);
        if (old_entry == nullptr) {
            vga_free_record(record);
            return nullptr;
        }
        return vga_merge_record(record, old_entry);
    }
    for (size_t index = 1; index < links.size(); index++) {
        vga_link_surely(links[index]);
    }
    vga_place_line(record);
    vga_count(*record, 1);
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
    vga_delete_line(record);
    VGA_RECORD_TYPE<Record>::delete_children(*record);
    vga_count(*record, -1);
    for (const VGA_INDEX_LINK &link : VGA_RECORD_TYPE<Record>::links(*record)) {
        vga_unlink(link);
    }
    VGA_RECORD_TYPE<Record>::unlinked(*record);
    vga_free_record(record);
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
