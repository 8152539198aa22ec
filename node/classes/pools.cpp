/* What is peculiar to pools of LUs: an LU that names a pool is a member of it, and what changes the
 * members of a pool changes its LUs. */
#include "classhooks.h"
#include "engine.h"
#include "nofcopy.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

Result check_pool(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    return is_blank8(nap_copy<NAP_LU_POOL_DATA>(bytes).lu_name) ? GOOD
                                                                : bad_parameter(NAP_INVALID_VALUE);
}

NAP_LU_POOL_DATA pool_alone(const NB_UCHAR *pool_name) {
    NAP_LU_POOL_DATA pool = {};
    memcpy(pool.pool_name, pool_name, sizeof pool.pool_name);
    memset(pool.lu_name, 0x40, sizeof pool.lu_name);
    memset(pool.pu_name, 0x40, sizeof pool.pu_name);
    return pool;
}

/* A pool by itself has no PU; what a text or the store brings says nothing of it. */
void fill_pool(const Engine &, NB_UCHAR *bytes) {
    auto pool = nap_copy<NAP_LU_POOL_DATA>(bytes);
    memset(pool.pu_name, 0x40, sizeof pool.pu_name);
    memcpy(bytes, &pool, sizeof pool);
}

/* The entry of the pool by itself: the first of its entries, since its LU name is blank. */
Resource *find_pool(const Engine &engine, const NB_UCHAR *pool_name) {
    const NAP_LU_POOL_DATA key = pool_alone(pool_name);
    return engine.find(CLASS_LU_POOL, reinterpret_cast<const NB_UCHAR *>(&key) + KEY_OFFSET);
}

Resource *find_member(const Engine &engine, const NAP_LU03_DATA &lu) {
    NB_UCHAR key[16];
    memcpy(key, lu.def_data.pool_name, 8);
    memcpy(key + 8, lu.lu_name, 8);
    return engine.find(CLASS_LU_POOL, key);
}

void fill_member(const Engine &engine, const NAP_LU03_DATA &lu, NAP_LU_POOL_DATA &member) {
    const Resource *pool = find_pool(engine, lu.def_data.pool_name);
    memcpy(member.pool_name, lu.def_data.pool_name, sizeof member.pool_name);
    memcpy(member.lu_name, lu.lu_name, sizeof member.lu_name);
    memcpy(member.pu_name, lu.pu_name, sizeof member.pu_name);
    member.lu_active = lu.det_data.lu_sscp_sess_active;
    member.lu_in_use = lu.det_data.appl_conn_active;
    if (pool != nullptr) {
        const auto entry = Engine::get<NAP_LU_POOL_DATA>(*pool);
        memcpy(member.description, entry.description, sizeof member.description);
    }
}

/* The change that puts an LU into a pool, or, with a blank name, takes it out of its own. */
Change move_lu(Resource &resource, const NB_UCHAR *pool_name) {
    Change change = Engine::change_of(resource);
    auto lu = nap_copy<NAP_LU03_DATA>(change.entry.get());
    memcpy(lu.def_data.pool_name, pool_name, sizeof lu.def_data.pool_name);
    memcpy(change.entry.get(), &lu, sizeof lu);
    return change;
}

bool in_session(const Resource &resource) {
    return Engine::get<NAP_LU03_DATA>(resource).det_data.plu_sess_active != 0;
}

Change new_pool(Engine &engine, const NAP_DEFINE_LU_POOL_VERB &verb) {
    NAP_LU_POOL_DATA pool = pool_alone(verb.pool_name);
    Resource *old = find_pool(engine, verb.pool_name);
    memcpy(pool.description, verb.description, sizeof pool.description);
    return Engine::change_to(CLASS_LU_POOL, &pool, sizeof pool, old);
}

/* Members show the description of their pool. */
void pool_defined(Engine &, Resource &resource, bool added) {
    const auto pool = Engine::get<NAP_LU_POOL_DATA>(resource);
    if (added || !is_blank8(pool.lu_name)) {
        return;
    }
    resource.derived = false;
    for (Resource *at = ResourceTable::next_with(resource, 8); at != nullptr;
         at = ResourceTable::next_with(*at, 8)) {
        auto member = Engine::get<NAP_LU_POOL_DATA>(*at);
        memcpy(member.description, pool.description, sizeof member.description);
        Engine::put(*at, member);
    }
}

Result define_pool(Engine &engine, std::vector<NB_UCHAR> &block) {
    auto verb = nap_copy<NAP_DEFINE_LU_POOL_VERB>(block.data());
    NAP_LU_POOL_DATA pool = pool_alone(verb.pool_name);
    memcpy(pool.lu_name, verb.lu_name, sizeof pool.lu_name);
    memcpy(pool.description, verb.description, sizeof pool.description);
    auto *bytes = reinterpret_cast<NB_UCHAR *>(&pool);
    const NB_ULONG wrong = check_fields(records::lu_pool, bytes);
    if (wrong != 0) {
        return bad_parameter(wrong);
    }
    memcpy(verb.description, pool.description, sizeof verb.description);
    memcpy(block.data(), &verb, sizeof verb);
    std::vector<Change> changes;
    const bool makes_it = find_pool(engine, pool.pool_name) == nullptr;
    if (is_blank8(pool.lu_name) || makes_it) {
        changes.push_back(new_pool(engine, verb));
    }
    if (!is_blank8(pool.lu_name)) {
        Resource *lu = engine.table(CLASS_LU03).find_alias(pool.lu_name);
        if (lu == nullptr) {
            return bad_parameter(NAP_UNKNOWN_OWNER);
        }
        if (in_session(*lu)) {
            return bad_state(NAP_RESOURCE_ACTIVE);
        }
        changes.push_back(move_lu(*lu, pool.pool_name));
    }
    return engine.apply(std::move(changes));
}

Result remove_pool(Engine &engine, const NB_UCHAR *block) {
    const NB_UCHAR *pool_name = block + KEY_IN_BLOCK;
    const NB_UCHAR *lu_name = pool_name + 8;
    NB_UCHAR blank[8];
    memset(blank, 0x40, sizeof blank);
    const bool whole = is_blank8(lu_name);
    Resource *first = engine.find(CLASS_LU_POOL, pool_name);
    std::vector<Change> changes;
    if (first == nullptr) {
        return bad_parameter(NAP_UNKNOWN_RESOURCE);
    }
    if (whole && lu_is_named(engine, pool_name)) {
        return bad_state(NAP_IN_USE);
    }
    const ResourceTable &lus = engine.table(CLASS_LU03);
    for (Resource *at = first; at != nullptr; at = ResourceTable::next_with(*at, 8)) {
        const auto member = Engine::get<NAP_LU_POOL_DATA>(*at);
        Resource *lu = is_blank8(member.lu_name) ? nullptr : lus.find_alias(member.lu_name);
        if (lu != nullptr && in_session(*lu)) {
            return bad_state(NAP_RESOURCE_ACTIVE);
        }
        if (lu != nullptr) {
            changes.push_back(move_lu(*lu, blank));
        }
        if (!whole) {
            break;
        }
    }
    if (whole) {
        changes.insert(changes.begin(), Engine::removal_of(*first));
    }
    return engine.apply(std::move(changes), Engine::IfFull::Owe);
}

} // namespace

void join_pool(Engine &engine, Resource &resource, bool) {
    const auto lu = Engine::get<NAP_LU03_DATA>(resource);
    NAP_LU_POOL_DATA member = {};
    if (is_blank8(lu.def_data.pool_name)) {
        return;
    }
    if (find_pool(engine, lu.def_data.pool_name) == nullptr) {
        const NAP_LU_POOL_DATA pool = pool_alone(lu.def_data.pool_name);
        engine.add_derived(CLASS_LU_POOL, &pool, sizeof pool);
    }
    fill_member(engine, lu, member);
    engine.add_derived(CLASS_LU_POOL, &member, sizeof member);
}

/* A pool that nobody defined goes with its last LU. */
void leave_pool(Engine &engine, Resource &resource) {
    const auto lu = Engine::get<NAP_LU03_DATA>(resource);
    Resource *member = is_blank8(lu.def_data.pool_name) ? nullptr : find_member(engine, lu);
    if (member == nullptr) {
        return;
    }
    engine.remove_tree(*member);
    Resource *pool = find_pool(engine, lu.def_data.pool_name);
    if (pool != nullptr && pool->derived && ResourceTable::next_with(*pool, 8) == nullptr &&
        !lu_is_named(engine, lu.def_data.pool_name)) {
        engine.remove_tree(*pool);
    }
}

void show_in_pool(Engine &engine, const Resource &resource) {
    const auto lu = Engine::get<NAP_LU03_DATA>(resource);
    Resource *at = is_blank8(lu.def_data.pool_name) ? nullptr : find_member(engine, lu);
    if (at != nullptr) {
        auto member = Engine::get<NAP_LU_POOL_DATA>(*at);
        fill_member(engine, lu, member);
        Engine::put(*at, member);
    }
}

namespace {

constexpr ClassRow classes[] = {
    {.id = CLASS_LU_POOL,
     .schema = &records::lu_pool,
     .hooks = {.check = check_pool,
               .fill = fill_pool,
               .busy = never_busy,
               .defined = pool_defined,
               .define = define_pool,
               .remove = remove_pool}},
};

} // namespace

std::span<const ClassRow> pool_classes() {
    return classes;
}

} // namespace node
