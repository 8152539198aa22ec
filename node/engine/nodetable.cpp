#include "nodetable.h"

#include "nbbase.h"
#include "nofwire.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

constexpr NB_UCHAR START_BITS = NAP_LIST_INCLUSIVE | NAP_LIST_FROM_NEXT | NAP_FIRST_IN_LIST;
constexpr uint64_t MAX_TOTAL = 65535;

void clear_node(AVL_NODE &node, Resource *resource, const SortKey *key) {
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
    return list.select_offset == 0 || resource.entry[list.select_offset] == list.select_value;
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
      has_secrets_(std::any_of(row.fields.begin(), row.fields.end(), [](const FieldRow &field) {
          return (field.use & FIELD_SECRET) != 0;
      })) {}

ResourceTable::~ResourceTable() {
    while (Resource *resource = first()) {
        erase(*resource);
    }
}

Resource *ResourceTable::find(const NB_UCHAR *key) const {
    const SortKey folded = fold_key(row_.key, key);
    return as_resource(ntl_avl_find(&by_key_, &folded));
}

Resource *ResourceTable::find_alias(const NB_UCHAR *alias) const {
    const SortKey folded = fold_key(row_.alias.parts, alias);
    return as_resource(ntl_avl_find(&by_alias_, &folded));
}

Resource *ResourceTable::first() const {
    return as_resource(AVL_FIRST(by_key_));
}

Resource *ResourceTable::next(const Resource &resource) {
    return as_resource(ntl_avl_next(&resource.by_key));
}

Resource *ResourceTable::first_with(const NB_UCHAR *key, size_t bytes) const {
    NB_UCHAR whole[NAP_MAX_KEY] = {};
    memcpy(whole, key, bytes);
    const SortKey least = cut_key(fold_key(row_.key, whole), bytes);
    Resource *found = as_resource(ntl_avl_find(&by_key_, &least));
    if (found == nullptr) {
        found = as_resource(ntl_avl_find_next(&by_key_, &least));
    }
    return found != nullptr && same_leading(found->key, least, bytes) ? found : nullptr;
}

Resource *ResourceTable::next_with(const Resource &resource, size_t bytes) {
    Resource *found = next(resource);
    return found != nullptr && same_leading(found->key, resource.key, bytes) ? found : nullptr;
}

void ResourceTable::link_alias(Resource &resource) {
    const AliasRow &alias = row_.alias;
    const NB_UCHAR *name = resource.entry.get() + alias.offset;
    if (alias.offset != 0 && !is_blank(alias.parts[0].kind, name, key_length(alias.parts))) {
        resource.alias = fold_key(alias.parts, name);
        NB_ASSERT(ntl_avl_insert(&by_alias_, &resource.by_alias) != 0);
    }
}

Resource &ResourceTable::insert(std::unique_ptr<NB_UCHAR[]> entry, const Behaviour &behaviour) {
    auto *resource = new Resource;
    resource->row = &row_;
    resource->entry = std::move(entry);
    resource->behaviour = behaviour;
    resource->key = fold_key(row_.key, resource->entry.get() + KEY_OFFSET);
    clear_node(resource->by_key, resource, &resource->key);
    clear_node(resource->by_alias, resource, &resource->alias);
    NB_ASSERT(ntl_avl_insert(&by_key_, &resource->by_key) != 0);
    link_alias(*resource);
    count_++;
    change_++;
    return *resource;
}

void ResourceTable::update(Resource &resource, std::unique_ptr<NB_UCHAR[]> entry) {
    if (AVL_IN_TREE(resource.by_alias)) {
        ntl_avl_delete(&by_alias_, &resource.by_alias);
    }
    resource.entry = std::move(entry);
    link_alias(resource);
    change_++;
}

std::unique_ptr<NB_UCHAR[]> ResourceTable::erase(Resource &resource) {
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
        found = as_resource(ntl_avl_find_next(&by_key_, &key));
    } else {
        const SortKey least = from == NAP_FIRST_IN_LIST ? cut_key(key, query.owner_length) : key;
        found = as_resource(ntl_avl_find(&by_key_, &least));
        if (found == nullptr) {
            found = as_resource(ntl_avl_find_next(&by_key_, &least));
        }
    }
    return found != nullptr && same_leading(found->key, key, query.owner_length) ? found : nullptr;
}

uint64_t ResourceTable::total_from(const Resource *from, const ListRow &list,
                                   const NAP_QUERY_LIST &query, const SortKey &key) const {
    const NB_UCHAR start = query.list_options & START_BITS;
    if (from == nullptr) {
        return 0;
    }
    if (start == NAP_FIRST_IN_LIST && query.owner_length == 0 && list.select_offset == 0) {
        return count_;
    }
    if (start == NAP_LIST_FROM_NEXT && cursor_.change == change_ && cursor_.list == list.list &&
        cursor_.owner_length == query.owner_length && compare_sort_keys(&cursor_.last, &key) == 0) {
        return cursor_.remaining;
    }
    uint64_t total = 0;
    for (const Resource *at = from; at != nullptr; at = next(*at)) {
        if (!same_leading(at->key, key, query.owner_length)) {
            break;
        }
        total += shows(list, *at) ? 1 : 0;
    }
    return total;
}

void ResourceTable::append(const Resource &resource, std::vector<NB_UCHAR> &data) const {
    const size_t at = data.size();
    data.insert(data.end(), resource.entry.get(), resource.entry.get() + length_of(resource));
    if (has_secrets_) {
        hide_secrets(row_.fields, data.data() + at);
    }
}

Result ResourceTable::list(const ListRow &list, NAP_QUERY_LIST &query,
                           std::vector<NB_UCHAR> &data) const {
    const Result checked = check_list_query(query, row_.key_size());
    if (!checked.ok()) {
        return checked;
    }
    const SortKey key = fold_key(row_.key, query.key);
    const bool one = query.num_entries == 1 && (query.list_options & NAP_LIST_INCLUSIVE) != 0;
    Resource *at = start(query, key);
    if (one && (at == nullptr || compare_sort_keys(&at->key, &key) != 0 || !shows(list, *at))) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    const uint64_t total = total_from(at, list, query, key);
    const size_t room = std::min<size_t>(query.buf_size, NOF_MAX_DATA);
    const uint64_t wanted =
        std::min<uint64_t>(total, query.num_entries == 0 ? MAX_TOTAL : query.num_entries);
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
        cursor_.last = at->key;
        count++;
    }
    if (wanted > 0 && count == 0) {
        return bad_parameter(NAP_BAD_LENGTH);
    }
    if (count > 0) {
        cursor_.list = list.list;
        cursor_.owner_length = query.owner_length;
        cursor_.change = change_;
        cursor_.remaining = total - count;
    }
    query.num_entries = static_cast<NB_USHORT>(count);
    query.total_num_entries = static_cast<NB_USHORT>(std::min(total, MAX_TOTAL));
    query.total_buf_size = static_cast<NB_ULONG>(data.size() - before);
    return GOOD;
}

} // namespace node
