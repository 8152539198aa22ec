#include "resourcetable.h"

#include "nbbase.h"
#include "nofwire.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

constexpr NB_UCHAR START_BITS = NAP_LIST_INCLUSIVE | NAP_LIST_FROM_NEXT | NAP_FIRST_IN_LIST;
constexpr uint64_t MAX_TOTAL = 65535;

void clear_node(AVL_NODE &node, Resource *resource, const uint64_t *key) {
    node = {};
    node.l_height = node.r_height = -1;
    node.data = resource;
    node.key = key;
}

Resource *as_resource(NB_VOID *data) {
    return static_cast<Resource *>(data);
}

size_t length_of(const Resource &resource) {
    return get_number(resource.entry.get(), 2);
}

bool shows(const ListRow &list, const Resource &resource) {
    return list.selector == 0 || resource.entry[list.selector] == list.selects;
}

} // namespace

Result check_list_query(const NAP_QUERY_LIST &query, size_t key_size) {
    const NB_UCHAR start = query.list_options & START_BITS;
    if ((query.list_options & ~(START_BITS | NAP_DETAIL)) != 0 || start == 0 ||
        (start & (start - 1)) != 0 || query.owner_length > key_size) {
        return bad_parameter(NAP_INVALID_LIST_OPTION);
    }
    return GOOD;
}

ResourceTable::ResourceTable(const ClassRow &row)
    : row_(row), by_key_{compare_sort_keys, nullptr, nullptr, nullptr}, by_alias_{compare_sort_keys,
                                                                                  nullptr, nullptr,
                                                                                  nullptr},
      has_secrets_(std::any_of(row.schema->fields.begin(), row.schema->fields.end(),
                               [](const FieldRow &field) { return field.has(FIELD_SECRET); })) {
    const RefRow &ref = row.refs[0];
    if ((ref.flags & REF_OWNER) != 0 && ref.by->offset != KEY_OFFSET) {
        owner_ = ref.by;
    }
}

ResourceTable::~ResourceTable() {
    while (Resource *resource = first()) {
        erase(*resource);
    }
}

Resource *ResourceTable::find(const NB_UCHAR *key) const {
    const SortKey folded = fold_key(row_.schema->key, key);
    return as_resource(ntl_avl_find(&by_key_, folded.word));
}

Resource *ResourceTable::find_alias(const NB_UCHAR *alias) const {
    const SortKey folded = fold_key(row_.alias.parts(), alias);
    return as_resource(ntl_avl_find(&by_alias_, folded.word));
}

Resource *ResourceTable::first() const {
    return as_resource(AVL_FIRST(by_key_));
}

Resource *ResourceTable::next(const Resource &resource) {
    return as_resource(ntl_avl_next(&resource.by_key));
}

Resource *ResourceTable::after(const NB_UCHAR *key) const {
    const SortKey folded = fold_key(row_.schema->key, key);
    return as_resource(ntl_avl_find_next(&by_key_, folded.word));
}

Resource *ResourceTable::first_with(const NB_UCHAR *key, size_t bytes) const {
    NB_UCHAR whole[NAP_MAX_KEY] = {};
    memcpy(whole, key, bytes);
    const SortKey least = cut_key(fold_key(row_.schema->key, whole), bytes);
    Resource *found = as_resource(ntl_avl_find(&by_key_, least.word));
    if (found == nullptr) {
        found = as_resource(ntl_avl_find_next(&by_key_, least.word));
    }
    return found != nullptr && same_leading(found->key.get(), least.word, bytes) ? found : nullptr;
}

Resource *ResourceTable::next_with(const Resource &resource, size_t bytes) {
    Resource *found = next(resource);
    return found != nullptr && same_leading(found->key.get(), resource.key.get(), bytes) ? found
                                                                                         : nullptr;
}

void ResourceTable::link_alias(Resource &resource) {
    const AliasRow &alias = row_.alias;
    if (alias.name != nullptr && !is_empty_field(*alias.name, resource.entry.get())) {
        resource.alias =
            keep_key(fold_key(alias.parts(), resource.entry.get() + alias.name->offset));
        resource.by_alias.key = resource.alias.get();
        const NB_USHORT linked = ntl_avl_insert(&by_alias_, &resource.by_alias);
        NB_ASSERT(linked != 0);
    }
}

bool ResourceTable::ByKey::operator()(const Resource *left, const Resource *right) const {
    return compare_sort_keys(left->key.get(), right->key.get()) < 0;
}

std::string ResourceTable::owner_name(const Resource &resource) const {
    const NB_UCHAR *name = resource.entry.get() + owner_->offset;
    return {name, name + owner_->width};
}

void ResourceTable::link_owner(Resource &resource) {
    if (owner_ != nullptr && !is_empty_field(*owner_, resource.entry.get())) {
        by_owner_[owner_name(resource)].insert(&resource);
    }
}

void ResourceTable::unlink_owner(Resource &resource) {
    const auto found = owner_ != nullptr ? by_owner_.find(owner_name(resource)) : by_owner_.end();
    if (found != by_owner_.end()) {
        found->second.erase(&resource);
        if (found->second.empty()) {
            by_owner_.erase(found);
        }
    }
}

std::vector<Resource *> ResourceTable::owned_by(const NB_UCHAR *owner) const {
    const auto found = by_owner_.find({owner, owner + owner_->width});
    return found != by_owner_.end()
               ? std::vector<Resource *>{found->second.begin(), found->second.end()}
               : std::vector<Resource *>{};
}

Resource &ResourceTable::insert(std::unique_ptr<NB_UCHAR[]> entry, const Behaviour &behaviour) {
    auto *resource = new Resource;
    resource->row = &row_;
    resource->entry = std::move(entry);
    resource->behaviour = behaviour;
    resource->key = keep_key(fold_key(row_.schema->key, resource->entry.get() + KEY_OFFSET));
    clear_node(resource->by_key, resource, resource->key.get());
    clear_node(resource->by_alias, resource, nullptr);
    const NB_USHORT linked = ntl_avl_insert(&by_key_, &resource->by_key);
    NB_ASSERT(linked != 0);
    link_alias(*resource);
    link_owner(*resource);
    count_++;
    change_++;
    return *resource;
}

void ResourceTable::update(Resource &resource, std::unique_ptr<NB_UCHAR[]> entry) {
    if (AVL_IN_TREE(resource.by_alias)) {
        ntl_avl_delete(&by_alias_, &resource.by_alias);
    }
    unlink_owner(resource);
    resource.entry = std::move(entry);
    link_alias(resource);
    link_owner(resource);
    change_++;
}

std::unique_ptr<NB_UCHAR[]> ResourceTable::erase(Resource &resource) {
    unlink_owner(resource);
    ntl_avl_delete(&by_key_, &resource.by_key);
    if (AVL_IN_TREE(resource.by_alias)) {
        ntl_avl_delete(&by_alias_, &resource.by_alias);
    }
    count_--;
    change_++;
    std::unique_ptr<NB_UCHAR[]> entry = std::move(resource.entry);
    delete &resource;
    return entry;
}

Resource *ResourceTable::start(const NAP_QUERY_LIST &query, const SortKey &key) const {
    const NB_UCHAR from = query.list_options & START_BITS;
    Resource *found = nullptr;
    if (from == NAP_LIST_FROM_NEXT) {
        found = as_resource(ntl_avl_find_next(&by_key_, key.word));
    } else {
        const SortKey least = from == NAP_FIRST_IN_LIST ? cut_key(key, query.owner_length) : key;
        found = as_resource(ntl_avl_find(&by_key_, least.word));
        if (found == nullptr) {
            found = as_resource(ntl_avl_find_next(&by_key_, least.word));
        }
    }
    return found != nullptr && same_leading(found->key.get(), key.word, query.owner_length)
               ? found
               : nullptr;
}

/* The place where this query goes on with another's end; null when there is none. */
ResourceTable::Cursor *ResourceTable::cursor_at(const ListRow &list, const NAP_QUERY_LIST &query,
                                                const SortKey &key) const {
    const auto found = std::find_if(cursors_.begin(), cursors_.end(), [&](const Cursor &cursor) {
        return cursor.change == change_ && cursor.list == list.list &&
               cursor.owner_length == query.owner_length &&
               compare_sort_keys(cursor.last.word, key.word) == 0;
    });
    const bool goes_on = (query.list_options & START_BITS) == NAP_LIST_FROM_NEXT;
    return goes_on && found != cursors_.end() ? &*found : nullptr;
}

/* Counts no further than it has to: an answer says at most MAX_TOTAL. */
ResourceTable::Total ResourceTable::total_from(const Resource *from, const ListRow &list,
                                               const NAP_QUERY_LIST &query,
                                               const SortKey &key) const {
    const uint64_t far = query.num_entries == 1 ? MAX_TOTAL : 4 * MAX_TOTAL;
    const NB_UCHAR start = query.list_options & START_BITS;
    if (from != nullptr && start == NAP_FIRST_IN_LIST && query.owner_length == 0 &&
        list.selector == 0) {
        return {count_, true};
    }
    Total total;
    for (const Resource *at = from; at != nullptr && total.whole; at = next(*at)) {
        if (!same_leading(at->key.get(), key.word, query.owner_length)) {
            break;
        }
        total.count += shows(list, *at) ? 1 : 0;
        total.whole = total.count < far;
    }
    return total;
}

void ResourceTable::remember(const ListRow &list, const NAP_QUERY_LIST &query, const Resource &last,
                             Total remaining, Cursor *known) const {
    Cursor &cursor = known != nullptr ? *known : cursors_[next_cursor_++ % CURSORS];
    cursor.last = kept_key(last.key.get());
    cursor.list = list.list;
    cursor.owner_length = query.owner_length;
    cursor.change = change_;
    cursor.remaining = remaining;
}

void ResourceTable::append(const Resource &resource, std::vector<NB_UCHAR> &data) const {
    const size_t at = data.size();
    data.insert(data.end(), resource.entry.get(), resource.entry.get() + length_of(resource));
    if (has_secrets_) {
        hide_secrets(row_.schema->fields, data.data() + at);
    }
}

/* Whole entries only, as many as are wanted and fit.  Returns how many; `last` gets the last one.
 */
uint64_t ResourceTable::append_all(const Resource *at, const ListRow &list, uint64_t wanted,
                                   size_t room, std::vector<NB_UCHAR> &data,
                                   const Resource *&last) const {
    const size_t before = data.size();
    uint64_t count = 0;
    for (; count < wanted; at = next(*at)) {
        if (!shows(list, *at)) {
            continue;
        }
        if (data.size() - before + length_of(*at) > room) {
            break;
        }
        append(*at, data);
        last = at;
        count++;
    }
    return count;
}

Result ResourceTable::list(const ListRow &list, NAP_QUERY_LIST &query,
                           std::vector<NB_UCHAR> &data) const {
    const Result checked = check_list_query(query, row_.schema->key_size());
    if (!checked.ok()) {
        return checked;
    }
    const SortKey key = fold_key(row_.schema->key, query.key);
    const bool one = query.num_entries == 1 && (query.list_options & NAP_LIST_INCLUSIVE) != 0;
    Resource *at = start(query, key);
    if (one &&
        (at == nullptr || compare_sort_keys(at->key.get(), key.word) != 0 || !shows(list, *at))) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    Cursor *known = cursor_at(list, query, key);
    const bool counted =
        known != nullptr && (known->remaining.whole || known->remaining.count >= 2 * MAX_TOTAL);
    const Total all = one       ? Total{1, false}
                      : counted ? known->remaining
                                : total_from(at, list, query, key);
    const uint64_t total = all.count;
    const size_t room = std::min<size_t>(query.buf_size, NOF_MAX_DATA);
    const uint64_t wanted =
        std::min<uint64_t>(total, query.num_entries == 0 ? MAX_TOTAL : query.num_entries);
    const size_t before = data.size();
    const Resource *last = nullptr;
    const uint64_t count = append_all(at, list, wanted, room, data, last);
    if (wanted > 0 && count == 0) {
        return bad_parameter(NAP_BAD_LENGTH);
    }
    if (last != nullptr && !one) {
        remember(list, query, *last, {total - count, all.whole}, known);
    }
    query.num_entries = static_cast<NB_USHORT>(count);
    query.total_num_entries = static_cast<NB_USHORT>(std::min(total, MAX_TOTAL));
    query.total_buf_size = static_cast<NB_ULONG>(data.size() - before);
    return GOOD;
}

} // namespace node
