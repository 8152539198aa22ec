/* Visitors: what goes on around a node by itself.  Each comes, stays and goes by its times; one
 * that cannot come, since what it needs is not there, tries again later.  Meanwhile it is a link
 * station, a PU with LUs, a session, as if a network had made it. */
#include "classhooks.h"
#include "engine.h"
#include "keybytes.h"

#include "nofverbs.h"
#include "referrers.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

constexpr NB_ULONG TRY_AGAIN_S = 10;
constexpr NB_ULONG IDLE_MS =
    60000; /* a mode in use and a cached name stay so long behind sessions */
constexpr size_t CP_WIDTH = 17;

/* The name of a downstream LU that a template makes: as much of the PU's as leaves room for the
 * address. */
void name_down_lu(NB_UCHAR (&name)[8], const NB_UCHAR *pu_name, unsigned address) {
    char digits[8];
    snprintf(digits, sizeof digits, "%03u", address);
    put_ebcdic(name, sizeof name, ebcdic_text(pu_name, 8).substr(0, 5) + digits);
}

} // namespace

void Engine::begin_visits() {
    end_visits();
    if (still_) {
        return;
    }
    visits_.resize(world_.visitors.size());
    for (size_t at = 0; at < visits_.size(); at++) {
        visit_later(at, world_.visitors[at].comes);
    }
}

void Engine::end_visits() {
    for (size_t at = 0; at < visits_.size(); at++) {
        timers_.cancel(visits_[at].timer);
        if (visits_[at].here) {
            leave(at);
        }
    }
    visits_.clear();
}

void Engine::visit_later(size_t at, NB_ULONG seconds) {
    visits_[at].timer = timers_.after(seconds * 1000U, [this, at] {
        Visit &visit = visits_[at];
        const Visitor &visitor = world_.visitors[at];
        visit.timer = 0;
        if (visit.here) {
            leave(at);
            visit.here = false;
            if (visitor.away != 0) {
                visit_later(at, visitor.away);
            }
        } else {
            visit.here = arrive(at);
            visit_later(at, visit.here ? visitor.stays : TRY_AGAIN_S);
        }
    });
}

bool Engine::arrive(size_t at) {
    const Visitor &visitor = world_.visitors[at];
    switch (visitor.kind) {
    case records::VISITOR_TERMINAL:
        return log_on(visitor, visits_[at]);
    case records::VISITOR_APPLICATION:
        return begin_sessions(visitor, visits_[at]);
    default:
        return call_port(visitor, visits_[at]);
    }
}

void Engine::leave(size_t at) {
    const Visitor &visitor = world_.visitors[at];
    const std::string what = visits_[at].what;
    switch (visitor.kind) {
    case records::VISITOR_TERMINAL:
        if (Resource *lu = find(CLASS_LU03, key_of(what)); lu != nullptr) {
            log_off(*lu);
            forget_user(*lu);
        }
        break;
    case records::VISITOR_APPLICATION:
        if (Resource *mode = find(CLASS_MODE, key_of(what)); mode != nullptr) {
            mode->extra = std::max<int32_t>(mode->extra - visitor.sessions,
                                            -int32_t{mode->behaviour.sessions});
            traffic_changed();
        }
        break;
    default:
        if (Resource *link = find(CLASS_LS, key_of(what)); link != nullptr) {
            stop(*link, Stop::Immediate);
        }
        break;
    }
}

/* The LU or pool that the TN3270 server gives a client: by a record for its address, else by the
 * one for everybody.  False when it is nobody's client. */
bool Engine::tn_client_lu(const Visitor &visitor, NB_UCHAR (&lu_name)[8]) const {
    const std::string client = local_text(visitor.name, sizeof visitor.name);
    const ResourceTable &records = *tables_[CLASS_TN_ACCESS];
    bool known = false;
    for (const Resource *at = records.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto record = get<NAP_TN_ACCESS_DATA>(*at);
        const std::string address = local_text(record.client_address, sizeof record.client_address);
        const bool own = strcasecmp(address.c_str(), client.c_str()) == 0;
        const bool anybody = record.address_type == NAP_TN_DEFAULT_RECORD && !known;
        if ((own || anybody) && record.def_data.num_sessions > 0) {
            const NAP_TN_SESSION session = record.def_data.sessions[0];
            memcpy(lu_name, session.display_lu_name, sizeof lu_name);
            known = true;
        }
        if (own) {
            break;
        }
    }
    return known && node_record().tn3270_support != 0;
}

/* Who wants an LU of a pool, or any, takes the first that is free. */
Resource *Engine::free_lu(Visitor visitor) const {
    const auto is_free = [](const Resource *lu) {
        return lu != nullptr && lu->state == NAP_ACTIVE && lu->behaviour.user_name[0] == 0;
    };
    const ResourceTable &lus = *tables_[CLASS_LU03];
    if (visitor.app_type == NAP_APP_TN3270_SERVER && is_blank8(visitor.lu_name) &&
        !tn_client_lu(visitor, visitor.lu_name)) {
        return nullptr;
    }
    Resource *named = is_blank8(visitor.lu_name) ? nullptr : lus.find_alias(visitor.lu_name);
    if (named != nullptr) {
        return is_free(named) ? named : nullptr;
    }
    const ResourceTable &pools = *tables_[CLASS_LU_POOL];
    for (Resource *at = pools.first_with(visitor.lu_name, 8); at != nullptr;
         at = ResourceTable::next_with(*at, 8)) {
        Resource *lu = lus.find_alias(get<NAP_LU_POOL_DATA>(*at).lu_name);
        if (is_free(lu)) {
            return lu;
        }
    }
    for (Resource *at = is_blank8(visitor.lu_name) ? lus.first() : nullptr; at != nullptr;
         at = ResourceTable::next(*at)) {
        if (is_free(at)) {
            return at;
        }
    }
    return nullptr;
}

/* Only as long as a visitor is there an LU has his name. */
void Engine::forget_user(Resource &lu) {
    memset(lu.behaviour.user_name, 0, sizeof lu.behaviour.user_name);
    lu.behaviour.app_type = NAP_APP_NONE;
    lu.extra = 0;
}

/* An LU that goes down ends a visit; whoever it was tries again when he would have gone. */
void Engine::end_visit_of(Resource &lu) {
    if (visits_.empty()) {
        return; /* a million LUs may go down */
    }
    const std::string name = key_bytes(lu);
    for (size_t at = 0; at < visits_.size(); at++) {
        if (visits_[at].here && visits_[at].what == name &&
            world_.visitors[at].kind == records::VISITOR_TERMINAL) {
            visits_[at].here = false;
            forget_user(lu);
        }
    }
}

bool Engine::takes_users() const {
    const auto limits = settings<NAP_QUERY_NODE_LIMITS_VERB>(NAP_QUERY_NODE_LIMITS);
    return limits.max_users == 0 || users_ < limits.max_users;
}

bool Engine::log_on(const Visitor &visitor, Visit &visit) {
    Resource *lu = takes_users() ? free_lu(visitor) : nullptr;
    if (lu == nullptr) {
        return false;
    }
    memcpy(lu->behaviour.user_name, visitor.name, sizeof lu->behaviour.user_name);
    lu->behaviour.app_type = visitor.app_type;
    lu->extra = 0;
    lu->row->hooks.show(*this, *lu);
    show_lu_session(*lu);
    lu->row->hooks.moved(*this, *lu);
    indicate(*lu, false);
    visit.what = key_bytes(*lu);
    return true;
}

/* A program that may use any local LU takes one behind the other. */
const Resource *Engine::next_local_lu(const Visitor &visitor) {
    const ResourceTable &lus = *tables_[CLASS_LOCAL_LU];
    if (!is_blank(KeyKind::Local, visitor.lu_alias, sizeof visitor.lu_alias)) {
        return lus.find_alias(visitor.lu_alias);
    }
    const Resource *next = last_local_lu_.empty() ? nullptr : lus.after(key_of(last_local_lu_));
    next = next != nullptr ? next : lus.first();
    last_local_lu_ = next != nullptr ? key_bytes(*next) : "";
    return next;
}

bool Engine::begin_sessions(const Visitor &visitor, Visit &visit) {
    const Resource *lu = next_local_lu(visitor);
    NAP_LU62_SESSION_VERB verb = {};
    if (lu == nullptr || link_to(visitor.fq_cp_name) == nullptr) {
        return false;
    }
    verb.opcode = NAP_ACTIVATE_SESSION;
    memcpy(verb.lu_alias, get<NAP_LOCAL_LU_DATA>(*lu).def_data.lu_alias, sizeof verb.lu_alias);
    memcpy(verb.mode_name, visitor.mode_name, sizeof verb.mode_name);
    memcpy(verb.fqplu_name, visitor.fqplu_name, sizeof verb.fqplu_name);
    verb.sessions = visitor.sessions;
    const NB_UCHAR *key = reinterpret_cast<const NB_UCHAR *>(&verb) + KEY_IN_BLOCK;
    std::vector<NB_UCHAR> block(sizeof verb);
    memcpy(block.data(), &verb, sizeof verb);
    learn_found(visitor.fq_cp_name, visitor.fqplu_name);
    if (!activate_session(block).ok()) {
        return false;
    }
    visit.what = {reinterpret_cast<const char *>(key), class_row(CLASS_MODE).schema->key_size()};
    return true;
}

/* Looks after a while whether something that came with sessions is without them, and takes it away
 * then. */
void Engine::forget_later(ClassId id, const std::string &key) {
    timers_.after(IDLE_MS, [this, id, key] {
        Resource *found = find(id, key_of(key));
        if (found == nullptr || !found->derived) {
            return;
        }
        if (is_in_use(*found)) {
            forget_later(id, key);
        } else {
            forget(*found);
        }
    });
}

bool Engine::is_in_use(const Resource &resource) const {
    if (resource.row->id == CLASS_MODE) {
        const auto mode = get<NAP_MODE_DATA>(resource);
        return mode.act_sess_count != 0 || mode.draining != 0 || resource.behaviour.sessions != 0;
    }
    if (resource.row->id == CLASS_DIRECTORY && knows_lus(resource)) {
        return true;
    }
    const ResourceTable &modes = *tables_[CLASS_MODE];
    for (const Resource *at = modes.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto mode = get<NAP_MODE_DATA>(*at);
        const bool same_partner =
            resource.row->id == CLASS_PLU
                ? memcmp(mode.lu_alias, resource.entry.get() + KEY_OFFSET, 8) == 0 &&
                      memcmp(mode.fqplu_name, get<NAP_PLU_DATA>(resource).fqplu_name, CP_WIDTH) == 0
                : memcmp(mode.fqplu_name, get<NAP_DIR_DATA>(resource).resource_name, CP_WIDTH) == 0;
        if (same_partner) {
            return true;
        }
    }
    return false;
}

/* The port that a visitor calls: the one that it names, or any that takes it. */
const Resource *Engine::called_port(const Visitor &visitor) const {
    const auto takes = [this](const Resource *port) {
        return port != nullptr && port->state == NAP_ACTIVE && !port->going_down &&
               get<NAP_PORT_DATA>(*port).def_data.implicit_links != 0 && has_room(*port, true);
    };
    if (!is_blank(KeyKind::Local, visitor.port_name, sizeof visitor.port_name)) {
        const Resource *port = find(CLASS_PORT, visitor.port_name);
        return takes(port) ? port : nullptr;
    }
    const ResourceTable &ports = *tables_[CLASS_PORT];
    for (const Resource *at = ports.first(); at != nullptr; at = ResourceTable::next(*at)) {
        if (takes(at)) {
            return at;
        }
    }
    return nullptr;
}

/* The template that a PU's LUs are made from, if it may serve one more. */
const Resource *Engine::free_template(const Visitor &visitor) const {
    const bool any = is_blank(KeyKind::Local, visitor.template_name, sizeof visitor.template_name);
    const Resource *found = any ? tables_[CLASS_DSPU_TEMPLATE]->first()
                                : find(CLASS_DSPU_TEMPLATE, visitor.template_name);
    if (found == nullptr || node_record().dspu_support == 0 ||
        find(CLASS_DOWN_PU, visitor.pu_name) != nullptr ||
        find(CLASS_PU, visitor.pu_name) != nullptr) {
        return nullptr;
    }
    const auto entry = get<NAP_DSPU_TEMPLATE_DATA>(*found);
    const bool full =
        entry.def_data.max_instance != 0 && entry.active_instances >= entry.def_data.max_instance;
    return full ? nullptr : found;
}

bool Engine::call_port(const Visitor &visitor, Visit &visit) {
    const bool is_pu = visitor.kind == records::VISITOR_PU;
    const Resource *port = called_port(visitor);
    const Resource *pattern = is_pu ? free_template(visitor) : nullptr;
    NAP_LS_DATA link = {};
    if (port == nullptr || (is_pu && pattern == nullptr) ||
        (!is_pu &&
         partners_.count({reinterpret_cast<const char *>(visitor.fq_cp_name), CP_WIDTH}) != 0)) {
        return false;
    }
    memcpy(link.def_data.description, visitor.name, sizeof link.def_data.description);
    memcpy(link.def_data.pu_name, visitor.pu_name, sizeof link.def_data.pu_name);
    memcpy(link.def_data.adj_cp_name, visitor.fq_cp_name, sizeof link.def_data.adj_cp_name);
    link.def_data.adj_cp_type = is_pu ? NAP_ADJ_DOWNSTREAM : NAP_ADJ_END_NODE;
    link.def_data.cp_cp_sess_support = is_pu ? 0 : 1;
    link.def_data.max_send_btu_size = 1500;
    telling_ = true;
    Resource *made = make_station(*port, link);
    telling_ = false;
    if (made == nullptr) {
        return false;
    }
    visit.what = key_bytes(*made);
    if (is_pu) {
        make_down_lus(visitor, *pattern);
    } else {
        learn_registered(visitor.fq_cp_name, visitor.lu_name);
    }
    join(*made, {"", "", false, true, NAP_END_NODE, 0});
    return true;
}

/* The first of them logs on to the application that the visitor is named after. */
void Engine::make_down_lus(const Visitor &visitor, const Resource &pattern) {
    const auto ranges = get<NAP_DSPU_TEMPLATE_DATA>(pattern).def_data;
    bool first = true;
    telling_ = true;
    for (NB_USHORT range = 0; range < ranges.num_of_dslu_templates; range++) {
        const NAP_DSLU_TEMPLATE each = ranges.dslu_templates[range];
        for (unsigned address = each.min_nau; address <= each.max_nau; address++) {
            NAP_DOWN_LU_DATA lu = {};
            memcpy(lu.dspu_name, visitor.pu_name, sizeof lu.dspu_name);
            name_down_lu(lu.dslu_name, visitor.pu_name, address);
            lu.det_data.dynamic = 1;
            lu.def_data.nau_address = static_cast<NB_UCHAR>(address);
            lu.def_data.allow_timeout = each.allow_timeout;
            lu.def_data.delayed_logon = each.delayed_logon;
            memcpy(lu.def_data.host_lu_name, each.host_lu_name, sizeof lu.def_data.host_lu_name);
            Resource &made = add_derived(CLASS_DOWN_LU, &lu, sizeof lu);
            if (first) {
                memcpy(made.behaviour.user_name, visitor.name, 9);
                made.behaviour.user_name[8] = 0;
            }
            first = false;
        }
    }
    telling_ = false;
    count_instances(pattern.entry.get() + KEY_OFFSET, 1);
    made_from_[ebcdic_text(visitor.pu_name, 8)] = key_bytes(pattern);
}

void Engine::count_instances(const NB_UCHAR *template_name, int change) {
    Resource *found = find(CLASS_DSPU_TEMPLATE, template_name);
    if (found != nullptr) {
        auto entry = get<NAP_DSPU_TEMPLATE_DATA>(*found);
        entry.active_instances = static_cast<NB_USHORT>(entry.active_instances + change);
        put(*found, entry);
    }
}

/* A dynamic station goes, with all that came with it. */
void Engine::forget_station(Resource &link) {
    const auto entry = get<NAP_LS_DATA>(link);
    std::vector<Resource *> lus;
    for (Resource *at = tables_[CLASS_DOWN_LU]->first_with(entry.def_data.pu_name, 8);
         at != nullptr; at = ResourceTable::next_with(*at, 8)) {
        lus.push_back(at);
    }
    for (Resource *lu : lus) {
        forget(*lu);
    }
    const auto made = made_from_.find(ebcdic_text(entry.def_data.pu_name, 8));
    if (made != made_from_.end()) {
        count_instances(key_of(made->second), -1);
        made_from_.erase(made);
    }
    forget(link);
}

} // namespace node
