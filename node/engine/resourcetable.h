/* All resources of one class, in list order, and the one way in which lists are answered.
 *
 * OWNS: its resources.  A resource's key, and its alias while it is linked by it, stay as they are
 * until it is erased or re-linked with `update`. */
#ifndef RESOURCETABLE_H
#define RESOURCETABLE_H

#include "resourceclass.h"

#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace node {

class ResourceTable {
public:
    explicit ResourceTable(const ClassRow &row);
    ~ResourceTable();
    ResourceTable(const ResourceTable &) = delete;
    ResourceTable &operator=(const ResourceTable &) = delete;

    const ClassRow &row() const { return row_; }
    NB_ULONG count() const { return count_; }

    /* Look-ups by the raw bytes of a key or an alias; null when there is none. */
    Resource *find(const NB_UCHAR *key) const;
    Resource *find_alias(const NB_UCHAR *alias) const;

    /* Walks in list order; the successor may be taken before the resource is erased. */
    Resource *first() const;
    static Resource *next(const Resource &resource);

    /* The first resource behind a key, which need not be there; null when there is none. */
    Resource *after(const NB_UCHAR *key) const;

    /* The first resource whose key begins with the first `bytes` bytes of `key`, and the next. */
    Resource *first_with(const NB_UCHAR *key, size_t bytes) const;
    static Resource *next_with(const Resource &resource, size_t bytes);

    /* Owners that do not lead the key have an index: whether the field is their name, and the
     * resources with that owner (as many bytes as the field has), in list order. */
    bool is_owner(const FieldRow *field) const { return field == owner_; }
    std::vector<Resource *> owned_by(const NB_UCHAR *owner) const;

    /* Links a new resource made of `entry` (as long as a whole entry, overlay size and key in
     * place).  REQUIRES: neither its key nor its alias is there yet. */
    Resource &insert(std::unique_ptr<NB_UCHAR[]> entry, const Behaviour &behaviour);

    /* Gives a resource new contents under the same key. */
    void update(Resource &resource, std::unique_ptr<NB_UCHAR[]> entry);

    /* Takes a resource out and frees it.  Returns what its entry was. */
    std::unique_ptr<NB_UCHAR[]> erase(Resource &resource);

    /* Answers a list query on the part of the class that `list` shows: fills the counts of `query`
     * and appends whole entries to `data`.  Changes nothing on a failure. */
    Result list(const ListRow &list, NAP_QUERY_LIST &query, std::vector<NB_UCHAR> &data) const;

private:
    /* How many entries there are from some place on; `whole` when no more than that. */
    struct Total {
        uint64_t count = 0;
        bool whole = true;
    };

    /* Where a list query ended, so that its continuation need not count again. */
    struct Cursor {
        SortKey last = {};
        NB_USHORT list = 0;
        NB_USHORT owner_length = 0;
        uint64_t change = 0;
        Total remaining;
    };
    static constexpr size_t CURSORS = 8; /* readers of one list at a time that are remembered */

    struct ByKey {
        bool operator()(const Resource *left, const Resource *right) const;
    };

    void link_alias(Resource &resource);
    void link_owner(Resource &resource);
    void unlink_owner(Resource &resource);
    std::string owner_name(const Resource &resource) const;
    void append(const Resource &resource, std::vector<NB_UCHAR> &data) const;
    Resource *start(const NAP_QUERY_LIST &query, const SortKey &key) const;
    Total total_from(const Resource *from, const ListRow &list, const NAP_QUERY_LIST &query,
                     const SortKey &key) const;
    uint64_t append_all(const Resource *at, const ListRow &list, uint64_t wanted, size_t room,
                        std::vector<NB_UCHAR> &data, const Resource *&last) const;
    Cursor *cursor_at(const ListRow &list, const NAP_QUERY_LIST &query, const SortKey &key) const;
    void remember(const ListRow &list, const NAP_QUERY_LIST &query, const Resource &last,
                  Total remaining, Cursor *known) const;

    const ClassRow &row_;
    AVL_TREE by_key_;
    AVL_TREE by_alias_;
    const FieldRow *owner_ = nullptr; /* the owner's name where it does not lead the key */
    std::map<std::string, std::set<Resource *, ByKey>> by_owner_;
    bool has_secrets_;
    NB_ULONG count_ = 0;
    uint64_t change_ = 0; /* counts inserts, updates and erases */
    mutable std::array<Cursor, CURSORS> cursors_;
    mutable size_t next_cursor_ = 0;
};

/* Checks what every list query must say, whatever it asks for. */
Result check_list_query(const NAP_QUERY_LIST &query, size_t key_size);

} // namespace node

#endif
