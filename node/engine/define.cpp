/* Defining and deleting, for every class. */
#include "engine.h"

#include "changewords.h"
#include "defineblock.h"
#include "nbbase.h"
#include "nofverbs.h"
#include "referrers.h"
#include "secrethash.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

constexpr NB_ULONG SETTLE_MS = 5000;
constexpr size_t MOST_WORDS = 16384; /* bytes of what one verb changed */

/* The bytes by which others name a resource. */
const NB_UCHAR *referred_name(const RefRow &ref, const Resource &resource) {
    return resource.entry.get() +
           ((ref.flags & REF_BY_ALIAS) != 0 ? resource.row->alias.name->offset : KEY_OFFSET);
}

KeyParts referred_parts(const RefRow &ref) {
    const ClassRow &to = class_row(ref.to);
    return (ref.flags & REF_BY_ALIAS) != 0 ? to.alias.parts() : to.schema->key;
}

} // namespace

/* References are stored as the other resource spells its name, so they compare byte by byte. */
template <class Action> void Engine::for_referrers(const Resource &resource, Action action) const {
    for (NB_UCHAR id = 0; id < CLASS_COUNT; id++) {
        const ClassRow &row = class_row(static_cast<ClassId>(id));
        for (const RefRow &ref : row.refs) {
            if (ref.to != resource.row->id) {
                continue;
            }
            for (Resource *found : find_referrers(*tables_[id], ref, referred_name(ref, resource),
                                                  key_length(referred_parts(ref)))) {
                action(ref, *found);
            }
        }
    }
}

Result Engine::check_refs(const ClassRow &row, NB_UCHAR *entry) const {
    for (const RefRow &ref : row.refs) {
        if (ref.to == CLASS_COUNT) {
            continue;
        }
        const KeyParts parts = referred_parts(ref);
        NB_UCHAR *name = entry + ref.by->offset;
        if ((ref.flags & REF_OPTIONAL) != 0 && is_blank(parts[0].kind, name, key_length(parts))) {
            continue;
        }
        const ResourceTable &table = *tables_[ref.to];
        const Resource *found =
            (ref.flags & REF_BY_ALIAS) != 0 ? table.find_alias(name) : table.find(name);
        if (found == nullptr) {
            return bad_parameter(NAP_UNKNOWN_OWNER);
        }
        memcpy(name, referred_name(ref, *found), key_length(parts));
    }
    return GOOD;
}

Result Engine::check_alias(const ClassRow &row, const NB_UCHAR *entry, const Resource *old) const {
    const AliasRow &alias = row.alias;
    if (alias.rival != CLASS_COUNT) {
        const ResourceTable &rivals = *tables_[alias.rival];
        const NB_UCHAR *name = entry + alias.rival_name->offset;
        if ((alias.rival_by_alias ? rivals.find_alias(name) : rivals.find(name)) != nullptr) {
            return bad_parameter(NAP_DUPLICATE_NAME);
        }
    }
    if (alias.name == nullptr) {
        return GOOD;
    }
    const NB_UCHAR *name = entry + alias.name->offset;
    const Resource *holder =
        is_empty_field(*alias.name, entry) ? nullptr : tables_[row.id]->find_alias(name);
    if (holder != nullptr && holder != old) {
        return bad_parameter(NAP_DUPLICATE_NAME);
    }
    bool named = false;
    if (old != nullptr &&
        memcmp(old->entry.get() + alias.name->offset, name, alias.name->width) != 0) {
        for_referrers(*old, [&named](const RefRow &ref, const Resource &) {
            named = named || (ref.flags & REF_BY_ALIAS) != 0;
        });
    }
    return named ? bad_state(NAP_IN_USE) : GOOD;
}

Result Engine::check_entry(const ClassRow &row, NB_UCHAR *entry, const Resource *old) const {
    const NB_ULONG wrong = check_fields(*row.schema, entry);
    Result result = wrong == 0 ? check_refs(row, entry) : bad_parameter(wrong);
    if (result.ok()) {
        result = check_alias(row, entry, old);
    }
    if (result.ok() && row.hooks.check != nullptr) {
        result = row.hooks.check(*this, entry, old);
    }
    return result;
}

bool Engine::is_busy(const Resource &resource) const {
    const ClassRow &row = *resource.row;
    return row.hooks.busy != nullptr ? row.hooks.busy(*this, resource)
                                     : resource.state != NAP_NOT_ACTIVE;
}

Resource *Engine::owner_of(const Resource &resource) const {
    const ClassRow &row = *resource.row;
    for (const RefRow &ref : row.refs) {
        if ((ref.flags & REF_OWNER) != 0) {
            return tables_[ref.to]->find(resource.entry.get() + ref.by->offset);
        }
    }
    return nullptr;
}

void Engine::count_in_owner(const Resource &resource, int resources, int active) {
    Resource *owner = owner_of(resource);
    if (owner != nullptr && owner->row->hooks.counted != nullptr) {
        owner->row->hooks.counted(*owner, resource, resources, active);
    }
}

/* Puts a checked and filled entry into the table, new or over `old`. */
Resource &Engine::place(const ClassRow &row, Entry entry, const Behaviour &behaviour,
                        Resource *old) {
    Resource *resource = old;
    set_entry_length(*row.schema, entry.get());
    if (old == nullptr) {
        resource = &tables_[row.id]->insert(std::move(entry), behaviour);
    } else {
        if (owner_of(*old) != nullptr && old->state != NAP_NOT_ACTIVE) {
            stop(*old, Stop::Immediate);
        }
        count_in_owner(*old, -1, 0);
        if (row.hooks.leaving != nullptr) {
            row.hooks.leaving(*this, *old);
        }
        tables_[row.id]->update(*old, std::move(entry));
    }
    count_in_owner(*resource, 1, 0);
    if (row.hooks.show != nullptr) {
        row.hooks.show(*this, *resource);
    }
    if (telling_) {
        indicate(*resource, false); /* before what it makes, which belongs to it */
    }
    if (row.hooks.defined != nullptr) {
        row.hooks.defined(*this, *resource, old == nullptr);
    }
    if (row.life.has_states() && row.life.initially == nullptr && owner_active(*resource)) {
        start(*resource);
    }
    return *resource;
}

/* The entry that a define block asks for, over the one that is there. */
Result Engine::read_define(const ClassRow &row, const NB_UCHAR *block, Change &change) const {
    const Schema &schema = *row.schema;
    change.row = &row;
    change.entry = std::make_unique<NB_UCHAR[]>(schema.overlay_size());
    NB_UCHAR *entry = change.entry.get();
    take_key(schema, block, entry);
    Resource *old = tables_[row.id]->find(entry + KEY_OFFSET);
    const NB_UCHAR *known = old != nullptr ? old->entry.get() : nullptr;
    if (old != nullptr) {
        if (old->derived ||
            memcmp(known + KEY_OFFSET, entry + KEY_OFFSET, schema.key_size()) != 0) {
            return bad_parameter(NAP_DUPLICATE_NAME);
        }
        change.old = old;
        change.behaviour = old->behaviour;
    }
    if (!make_entry(schema, block, schema.define_size, known, entry)) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    return check_entry(row, entry, old);
}

Result Engine::define(const ClassRow &row, std::vector<NB_UCHAR> &block) {
    const Schema &schema = *row.schema;
    Change change;
    if (row.hooks.define != nullptr) {
        return row.hooks.define(*this, block);
    }
    Result result = read_define(row, block.data(), change);
    if (result.ok() && change.old != nullptr && is_busy(*change.old)) {
        result = bad_state(NAP_RESOURCE_ACTIVE);
    }
    if (result.ok() && change.old == nullptr) {
        result = check_limit(row);
    }
    if (!result.ok()) {
        return result;
    }
    if (row.hooks.fill != nullptr) {
        row.hooks.fill(*this, change.entry.get());
    }
    std::vector<NB_UCHAR> answer(change.entry.get(), change.entry.get() + schema.overlay_size());
    std::vector<Change> changes;
    changes.push_back(std::move(change));
    result = apply(std::move(changes));
    if (result.ok()) {
        hide_secrets(schema.fields, answer.data());
        put_definition(schema, answer.data(), block.data());
    }
    return result;
}

Change Engine::change_of(Resource &resource) {
    const ClassRow &row = *resource.row;
    return change_to(row.id, resource.entry.get(), row.schema->overlay_size(), &resource);
}

Change Engine::change_to(ClassId id, const NB_VOID *entry, size_t length, Resource *old) {
    const ClassRow &row = class_row(id);
    Change change;
    change.row = &row;
    change.entry = std::make_unique<NB_UCHAR[]>(row.schema->overlay_size());
    memcpy(change.entry.get(), entry, length);
    change.old = old;
    change.behaviour = old != nullptr ? old->behaviour : DEFAULT_BEHAVIOUR;
    return change;
}

Change Engine::removal_of(Resource &resource) {
    Change change;
    change.row = resource.row;
    change.old = &resource;
    return change;
}

/* What the change is going to make of what is there. */
std::string Engine::words_of(const StoreChange &change) const {
    const ClassRow *row = class_by_name(change.section);
    const Settings *settings = row == nullptr ? records::settings_by_name(change.section) : nullptr;
    if (settings != nullptr) {
        return differences(*settings, records_.image(*settings), change.record);
    }
    const Resource *known = row != nullptr ? tables_[row->id]->find(change.key) : nullptr;
    const NB_UCHAR *before = known != nullptr ? known->entry.get() : nullptr;
    const NB_UCHAR *named = change.record != nullptr ? change.record : before;
    if (row == nullptr || named == nullptr) {
        return "";
    }
    const std::string words = differences(*row->schema, before, change.record);
    const char *how = before == nullptr ? ": new" : change.record == nullptr ? ": deleted" : ":";
    const bool told = how[1] != '\0' || !words.empty();
    return told ? name_words(*row->schema, named) + how + (words.empty() ? "" : " " + words) : "";
}

/* Writes it, or does with it what is to be done when it cannot be. */
Result Engine::remember(const std::vector<StoreChange> &changes,
                        const std::vector<StoreFact> &facts, IfFull if_full) {
    const bool owes = if_full == IfFull::Owe;
    std::string words;
    for (const StoreChange &change : changes) {
        const bool full = words.size() > MOST_WORDS;
        const std::string more = full ? "and more" : words_of(change);
        words += more.empty() || words.empty() ? more : "; " + more;
        if (full) {
            break;
        }
    }
    const bool written = store_ == nullptr || (owes ? store_->write_or_owe(changes, facts)
                                                    : store_->write(changes, facts));
    if (!written && !owes) {
        return bad_state(NAP_STORE_FAILED);
    }
    changes_ += (changes_.empty() || words.empty() ? "" : "; ") + words;
    changes_.resize(std::min(changes_.size(), 2 * MOST_WORDS));
    if (written) {
        return GOOD;
    }
    if (store_timer_ == 0) {
        log(NAP_LOG_PROBLEM, NAP_LOG_NOT_STORED,
            "The store cannot be written. What is stopped, started or deleted now is forgotten if "
            "this node ends before it can be.");
        store_timer_ = timers_.after(SETTLE_MS, [this] { settle_store(); });
    }
    return {NAP_OK, NAP_NOT_STORED};
}

void Engine::settle_store() {
    if (store_->settle()) {
        store_timer_ = 0;
        log(NAP_LOG_AUDIT, NAP_LOG_STORED, "The store is written again: all is kept.");
    } else {
        store_timer_ = timers_.after(SETTLE_MS, [this] { settle_store(); });
    }
}

Result Engine::apply(std::vector<Change> changes, IfFull if_full) {
    std::vector<StoreChange> rows;
    for (Change &change : changes) {
        if (change.entry == nullptr) {
            collect_tree(*change.old, rows);
        } else {
            rows.push_back(kept(*change.row->schema, change.entry.get(), change.behaviour));
        }
    }
    const Result result = remember(rows, {}, if_full);
    if (!result.ok()) {
        return result;
    }
    for (Change &change : changes) {
        if (store_ != nullptr && change.entry != nullptr) {
            mark_secrets(change.row->schema->fields, change.entry.get());
        }
    }
    telling_ = true;
    for (Change &change : changes) {
        if (change.entry == nullptr) {
            log(NAP_LOG_AUDIT, NAP_LOG_DELETED, *change.old);
            remove_tree(*change.old);
        } else {
            const Resource &made =
                place(*change.row, std::move(change.entry), change.behaviour, change.old);
            log(NAP_LOG_AUDIT, NAP_LOG_DEFINED, made);
        }
    }
    telling_ = false;
    return result;
}

Resource &Engine::add_derived(ClassId id, const NB_VOID *entry, size_t length) {
    const auto *key = static_cast<const NB_UCHAR *>(entry) + KEY_OFFSET;
    Change change = change_to(id, entry, length, tables_[id]->find(key));
    Resource &made = place(*change.row, std::move(change.entry), change.behaviour, change.old);
    made.derived = true;
    return made;
}

/* Resources that go with this one must be free, too. */
Result Engine::check_unused(const Resource &resource) const {
    Result result = GOOD;
    if (is_busy(resource)) {
        return bad_state(NAP_RESOURCE_ACTIVE);
    }
    for_referrers(resource, [this, &result](const RefRow &ref, const Resource &other) {
        if (result.ok()) {
            result = (ref.flags & REF_CARRIED) != 0 ? check_unused(other) : bad_state(NAP_IN_USE);
        }
    });
    return result;
}

/* The rows of a resource and of all that is carried by it. */
void Engine::collect_tree(Resource &resource, std::vector<StoreChange> &changes) const {
    if (!resource.derived) {
        changes.push_back(erased(*resource.row->schema, resource.entry.get()));
    }
    for_referrers(resource, [this, &changes](const RefRow &ref, Resource &other) {
        if ((ref.flags & REF_CARRIED) != 0) {
            collect_tree(other, changes);
        }
    });
}

void Engine::remove_tree(Resource &resource) {
    const ClassRow &row = *resource.row;
    std::vector<Resource *> carried;
    for_referrers(resource, [&carried](const RefRow &ref, Resource &other) {
        if ((ref.flags & REF_CARRIED) != 0) {
            carried.push_back(&other);
        }
    });
    for (Resource *other : carried) {
        remove_tree(*other);
    }
    timers_.cancel(resource.timer);
    if (telling_) {
        indicate(resource, true);
    }
    if (row.hooks.leaving != nullptr) {
        row.hooks.leaving(*this, resource);
    }
    count_in_owner(resource, -1, resource.state == NAP_ACTIVE ? -1 : 0);
    if (resource.state != NAP_NOT_ACTIVE) {
        resource.state = NAP_NOT_ACTIVE;
        count_below(resource, -1);
    }
    const Entry entry = tables_[row.id]->erase(resource);
    if (row.hooks.left != nullptr) {
        row.hooks.left(*this, entry.get());
    }
}

Result Engine::remove(const ClassRow &row, const NB_UCHAR *block) {
    Resource *resource = tables_[row.id]->find(block + KEY_IN_BLOCK);
    if (row.hooks.remove != nullptr) {
        return row.hooks.remove(*this, block);
    }
    if (resource == nullptr) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    if (resource->derived) {
        return bad_state(NAP_IN_USE);
    }
    Result result = row.hooks.removable != nullptr ? row.hooks.removable(*this, *resource) : GOOD;
    if (result.ok()) {
        result = check_unused(*resource);
    }
    if (result.ok()) {
        std::vector<Change> changes;
        changes.push_back(removal_of(*resource));
        result = apply(std::move(changes), IfFull::Owe);
        traffic_changed();
    }
    return result;
}

} // namespace node
