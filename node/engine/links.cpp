#include "links.h"

#include "engine.h"
#include "keybytes.h"

#include "nofverbs.h"
#include "referrers.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

constexpr size_t CP_WIDTH = 17;
constexpr NB_ULONG ANSWER_MS = 5000; /* the process of the other node may hang */
constexpr NB_ULONG GONE_MS = 1;      /* a dynamic station goes behind what it told of itself */
constexpr NB_USHORT RETRY_FOR_EVER = 65535;
constexpr NB_ULONG MOST_DYNAMIC = 999999;

template <size_t Size> void put_name(NB_UCHAR (&field)[Size], const std::string &bytes) {
    memset(field, ' ', Size);
    memcpy(field, bytes.data(), std::min(bytes.size(), Size));
}

/* The number behind the slash of a LAN address, or a number by itself; -1: none. */
int sap_in(const std::string &address) {
    const std::string text = address.substr(address.find('/') + 1);
    const bool number = !text.empty() && text.size() <= 2 &&
                        text.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
    return number ? std::stoi(text, nullptr, 16) : -1;
}

template <size_t Size> std::string text_of(const NB_UCHAR (&field)[Size]) {
    return local_text(field, Size);
}

bool fits_sap(const std::string &called, const NAP_PORT_DATA &port) {
    const int wanted = called.empty() ? -1 : sap_in(called);
    const int own = sap_in(text_of(port.def_data.local_address));
    return wanted == -1 || own == -1 || wanted == own;
}

/* A call reaches peers, not hosts and PUs that are served. */
bool is_peer(const NAP_LS_DATA &link) {
    return link.def_data.adj_cp_type <= NAP_ADJ_END_NODE;
}

std::string own_cp(const Engine &engine) {
    return bytes_of(engine.node_record().info.fq_cp_name);
}

} // namespace

const LinkEnd *Engine::link_end(const Resource &link) const {
    const auto found = link_ends_.find(bytes_of(get<NAP_LS_DATA>(link).ls_name));
    return found != link_ends_.end() ? &found->second : nullptr;
}

/* The control point of the domain that a station leads to: by name, or, where it has none, by an
 * address that is the name of a node.  Empty for one outside. */
std::string Engine::partner_of(const NAP_LS_DATA &link) const {
    const std::string name = bytes_of(link.def_data.adj_cp_name);
    if (!is_blank(KeyKind::Ebcdic, link.def_data.adj_cp_name, CP_WIDTH)) {
        return partners_.count(name) != 0 ? name : "";
    }
    const std::string address = text_of(link.def_data.dest_address);
    for (const auto &[cp, active] : partners_) {
        const std::string text = ebcdic_text(key_of(cp), CP_WIDTH);
        const std::string host = text.substr(text.find('.') + 1);
        if (is_peer(link) && strcasecmp(host.c_str(), address.c_str()) == 0) {
            return cp;
        }
    }
    return "";
}

bool Engine::answers(const NB_UCHAR *fq_cp_name) const {
    const std::string name(reinterpret_cast<const char *>(fq_cp_name), CP_WIDTH);
    return world_.open || is_blank(KeyKind::Ebcdic, fq_cp_name, CP_WIDTH) ||
           partners_.count(name) != 0 || world_.control_points.count(name) != 0;
}

bool Engine::is_answered(const Resource &link) const {
    return !is_dark(link) && answers(get<NAP_LS_DATA>(link).def_data.adj_cp_name);
}

void Engine::live_in(World world) {
    world_ = std::move(world);
}

/* Whether a port may have one link more; some places may be kept for those that are called, or that
 * call. */
bool Engine::has_room(const Resource &port, bool incoming) const {
    const auto entry = get<NAP_PORT_DATA>(port).def_data;
    const NB_ULONG kept = incoming ? entry.out_link_act_lim : entry.inb_link_act_lim;
    NB_ULONG others = 0; /* of the other kind: they take the places that are kept for them */
    if (kept != 0) {
        for (const Resource *link : dependants(port)) {
            const LinkEnd *end = link_end(*link);
            others += link->state != NAP_NOT_ACTIVE && (end != nullptr && end->incoming) != incoming
                          ? 1
                          : 0;
        }
    }
    const NB_ULONG left = kept > others ? kept - others : 0;
    return port.below + left < entry.tot_link_act_lim;
}

void Engine::send_link_news(NB_UCHAR kind, const Resource &link, const LinkEnd &end,
                            NB_ULONG sense) {
    const auto entry = get<NAP_LS_DATA>(link);
    const NAP_QUERY_NODE_VERB own = node_record();
    const std::string address = text_of(entry.def_data.dest_address);
    const size_t slash = address.find('/');
    LinkNews news = {};
    news.opcode = NAP_LS_INDICATION;
    news.primary_rc = NAP_INDICATION;
    news.kind = kind;
    news.dlc_type = entry.def_data.dlc_type;
    news.tg_number = entry.def_data.tg_number;
    news.node_type = own.info.node_type;
    memcpy(news.from_cp, own.info.fq_cp_name, CP_WIDTH);
    put_name(news.to_cp, end.cp);
    news.hpr = entry.def_data.hpr_supported;
    news.cp_cp = entry.def_data.cp_cp_sess_support;
    memcpy(news.from_ls, entry.ls_name, sizeof news.from_ls);
    put_name(news.to_ls, end.ls);
    if (slash != std::string::npos && address.size() - slash <= sizeof news.to_sap) {
        memcpy(news.to_sap, address.data() + slash + 1, address.size() - slash - 1);
    }
    news.btu_size = entry.def_data.max_send_btu_size;
    news.sense = sense;
    listener_.link_changed(&news, sizeof news);
}

/* A station of which its port is active, whose time to come up has passed. */
void Engine::connect(Resource &link) {
    const std::string name = bytes_of(get<NAP_LS_DATA>(link).ls_name);
    LinkEnd end = {partner_of(get<NAP_LS_DATA>(link)), "", true};
    const auto known = link_ends_.find(name);
    const auto partner = partners_.find(end.cp);
    if (known != link_ends_.end() && !known->second.ls.empty()) {
        join(link, known->second); /* its stop was taken back */
    } else if (end.cp.empty()) {
        end.calling = false;
        join(link, end);
    } else if (partner->second) {
        link_ends_[name] = end;
        send_link_news(LINK_CALL, link, end, 0);
        wait(link, ANSWER_MS, &Engine::not_answered);
    } else {
        start_failed(link, SENSE_LINK_FAILED);
    }
}

void Engine::not_answered(Resource &link) {
    const LinkEnd *end = link_end(link);
    const std::string cp = end != nullptr ? end->cp : "";
    start_failed(link, SENSE_LINK_FAILED);
    take_waiting_calls(cp);
}

/* Both ends are there. */
void Engine::join(Resource &link, const LinkEnd &end) {
    timers_.cancel(link.timer);
    link.timer = 0;
    link.tries = 0;
    link_ends_[bytes_of(get<NAP_LS_DATA>(link).ls_name)] = end;
    move(link, Event::Called);
    move(link, Event::Ready);
    start_dependants(link);
    fail_later(link);
    register_lus(link);
}

/* A station is inactive: its partner's goes down, and one that nobody defined goes away. */
void Engine::hang_up(const Resource &link, NB_ULONG sense) {
    const auto entry = get<NAP_LS_DATA>(link);
    const auto known = link_ends_.find(bytes_of(entry.ls_name));
    if (known != link_ends_.end()) {
        const LinkEnd end = std::move(known->second);
        link_ends_.erase(known);
        if (!end.ls.empty()) {
            send_link_news(LINK_DOWN, link, end, sense);
        }
    }
    unlearn(entry.def_data.adj_cp_name, nullptr);
    if (entry.det_data.dynamic != 0) {
        timers_.after(GONE_MS, [this, name = bytes_of(entry.ls_name)] {
            Resource *found = find(CLASS_LS, key_of(name));
            if (found != nullptr && found->state == NAP_NOT_ACTIVE) {
                forget_station(*found);
            }
        });
    }
}

/* Takes away what the network made; who registered hears of it. */
void Engine::forget(Resource &resource) {
    telling_ = true;
    remove_tree(resource);
    telling_ = false;
}

/* An active link has failed: it tries again by its timer. */
void Engine::lose(Resource &link, NB_ULONG sense) {
    failed(link, sense);
    hang_up(link, sense);
    for (Resource *below : dependants(link)) {
        stop(*below, Stop::Immediate);
    }
    timers_.cancel(link.timer);
    link.timer = 0;
    move(link, Event::Lost);
    end_carried(link, Stop::Immediate);
    link.tries = 0;
    try_again(link);
}

void Engine::try_again(Resource &resource) {
    NB_ULONG seconds = 0;
    if (resource.row->id == CLASS_LS) {
        const auto link = get<NAP_LS_DATA>(resource);
        const bool again =
            link.det_data.dynamic == 0 && (link.def_data.react_retries == RETRY_FOR_EVER ||
                                           resource.tries < link.def_data.react_retries);
        seconds = again ? link.def_data.react_timer : 0;
    } else if (resource.row->id == CLASS_PORT) {
        seconds = get<NAP_PORT_DATA>(resource).def_data.react_timer;
    }
    if (seconds != 0) {
        resource.tries++;
        wait(resource, seconds * 1000U, &Engine::retry);
    }
}

/* Of the stations that fit, one that is named is better than one for anybody, and the same TG
 * better than no number. */
Resource *Engine::station_for(const LinkNews &call, bool &broken) const {
    Resource *best = nullptr;
    int best_rank = -1;
    const ResourceTable &links = *tables_[CLASS_LS];
    for (Resource *at = links.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto link = get<NAP_LS_DATA>(*at);
        const LinkEnd *end = link_end(*at);
        const bool named = memcmp(link.def_data.adj_cp_name, call.from_cp, CP_WIDTH) == 0;
        const bool anybody = is_blank(KeyKind::Ebcdic, link.def_data.adj_cp_name, CP_WIDTH) &&
                             partner_of(link) == bytes_of(call.from_cp);
        if (end != nullptr && end->cp == bytes_of(call.from_cp) &&
            end->ls == bytes_of(call.from_ls)) {
            return at; /* it knows already */
        }
        const bool reached = at->behaviour.reachable != 0 && !is_dark(*at);
        const bool free = (at->state == NAP_NOT_ACTIVE || at->state == NAP_PENDING_ACTIVE) &&
                          (end == nullptr || end->ls.empty());
        const bool same_tg = link.def_data.tg_number == call.tg_number;
        if (!is_peer(link) || !(named || anybody) || !free || !owner_active(*at) ||
            link.def_data.dlc_type != call.dlc_type ||
            (!same_tg && link.def_data.tg_number != 0 && call.tg_number != 0) ||
            !fits_sap(text_of(call.to_sap), get<NAP_PORT_DATA>(*owner_of(*at)))) {
            continue;
        }
        broken = broken || !reached;
        if (!reached) {
            continue;
        }
        const int rank = (named ? 4 : 0) + (same_tg ? 2 : 0) + (end != nullptr ? 1 : 0);
        if (rank > best_rank) {
            best = at;
            best_rank = rank;
        }
    }
    return best;
}

/* A port that takes calls without a definition, or null. */
Resource *Engine::port_for(const LinkNews &call, NB_ULONG &why_not) const {
    const ResourceTable &ports = *tables_[CLASS_PORT];
    why_not = SENSE_NOT_AVAILABLE;
    for (Resource *at = ports.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto port = get<NAP_PORT_DATA>(*at);
        if (at->state != NAP_ACTIVE || at->going_down || port.def_data.dlc_type != call.dlc_type ||
            !fits_sap(text_of(call.to_sap), port)) {
            continue;
        }
        why_not = port.def_data.implicit_links != 0 ? SENSE_LIMIT : SENSE_MISMATCH;
        if (port.def_data.implicit_links != 0 && has_room(*at, true)) {
            return at;
        }
    }
    return nullptr;
}

/* A name for a station that nobody defined. */
bool Engine::next_dynamic_name(NB_UCHAR (&name)[8]) {
    for (NB_ULONG tries = 0; tries < MOST_DYNAMIC; tries++) {
        char text[16];
        last_dynamic_ = last_dynamic_ % MOST_DYNAMIC + 1;
        snprintf(text, sizeof text, "@L%06u", static_cast<unsigned>(last_dynamic_));
        put_name(name, text);
        if (find(CLASS_LS, name) == nullptr) {
            return true;
        }
    }
    return false;
}

Resource *Engine::make_station(const Resource &port, NAP_LS_DATA &link) {
    if (!next_dynamic_name(link.ls_name)) {
        return nullptr;
    }
    const auto below = get<NAP_PORT_DATA>(port);
    memcpy(link.def_data.port_name, below.port_name, sizeof link.def_data.port_name);
    link.def_data.dlc_type = below.def_data.dlc_type;
    link.det_data.dynamic = 1;
    link.def_data.ls_role = NAP_LS_NEGOTIABLE;
    return &add_derived(CLASS_LS, &link, sizeof link);
}

Resource *Engine::implicit_station(const LinkNews &call, NB_ULONG &why_not) {
    const Resource *port = port_for(call, why_not);
    if (port == nullptr) {
        return nullptr;
    }
    NAP_LS_DATA link = {};
    memcpy(link.def_data.adj_cp_name, call.from_cp, CP_WIDTH);
    memset(link.def_data.pu_name, 0x40, sizeof link.def_data.pu_name);
    link.def_data.adj_cp_type = call.node_type == NAP_NETWORK_NODE ? NAP_ADJ_NETWORK_NODE
                                : call.node_type == NAP_END_NODE   ? NAP_ADJ_END_NODE
                                                                   : NAP_ADJ_LEN_NODE;
    link.def_data.tg_number = call.tg_number;
    link.def_data.cp_cp_sess_support = call.cp_cp;
    link.def_data.hpr_supported = node_record().hpr_support;
    link.def_data.max_send_btu_size = call.btu_size;
    return make_station(*port, link);
}

bool Engine::awaits_answer_of(const std::string &cp) const {
    return std::any_of(link_ends_.begin(), link_ends_.end(), [&cp](const auto &one) {
        return one.second.calling && one.second.cp == cp;
    });
}

void Engine::take_call(const LinkNews &call) {
    const std::string cp = bytes_of(call.from_cp);
    NB_ULONG why_not = SENSE_NOT_AVAILABLE;
    if (own_cp(*this) > cp && awaits_answer_of(cp)) {
        waiting_calls_.push_back(call);
        return;
    }
    bool broken = false; /* a line that no other station makes whole */
    Resource *link = node_state_ == NAP_NODE_ACTIVE ? station_for(call, broken) : nullptr;
    if (link == nullptr && broken) {
        why_not = SENSE_LINK_FAILED;
    } else if (link != nullptr && link->state == NAP_NOT_ACTIVE &&
               !has_room(*owner_of(*link), true)) {
        link = nullptr;
        why_not = SENSE_LIMIT;
    } else if (link == nullptr && node_state_ == NAP_NODE_ACTIVE) {
        link = implicit_station(call, why_not);
    }
    const LinkEnd end = {cp, bytes_of(call.from_ls), false, true, call.node_type, call.hpr};
    if (link == nullptr) {
        refuse(call, why_not);
        return;
    }
    send_link_news(LINK_ACCEPT, *link, end, 0);
    if (link->state != NAP_ACTIVE) {
        join(*link, end);
    }
}

void Engine::refuse(const LinkNews &call, NB_ULONG sense) {
    LinkNews answer = call;
    answer.kind = LINK_REFUSE;
    memcpy(answer.from_cp, call.to_cp, CP_WIDTH);
    memcpy(answer.to_cp, call.from_cp, CP_WIDTH);
    memcpy(answer.from_ls, call.to_ls, sizeof answer.from_ls);
    memcpy(answer.to_ls, call.from_ls, sizeof answer.to_ls);
    answer.sense = sense;
    listener_.link_changed(&answer, sizeof answer);
}

void Engine::take_waiting_calls(const std::string &cp) {
    if (awaits_answer_of(cp)) {
        return;
    }
    std::vector<LinkNews> calls;
    std::swap(calls, waiting_calls_);
    for (const LinkNews &call : calls) {
        if (bytes_of(call.from_cp) == cp) {
            take_call(call);
        } else {
            waiting_calls_.push_back(call);
        }
    }
}

/* An answer that nobody waits for any more ends the link again. */
void Engine::take_answer(const LinkNews &answer) {
    Resource *link = find(CLASS_LS, answer.to_ls);
    const auto known = link_ends_.find(bytes_of(answer.to_ls));
    const std::string cp = bytes_of(answer.from_cp);
    const bool awaited = link != nullptr && known != link_ends_.end() && known->second.calling &&
                         known->second.cp == cp && link->state == NAP_PENDING_ACTIVE;
    if (answer.kind == LINK_ACCEPT && awaited) {
        join(*link, {cp, bytes_of(answer.from_ls), false, false, answer.node_type, answer.hpr});
    } else if (answer.kind == LINK_ACCEPT) {
        const bool joined = known != link_ends_.end() && known->second.cp == cp &&
                            known->second.ls == bytes_of(answer.from_ls);
        if (!joined && link != nullptr) {
            send_link_news(LINK_DOWN, *link, {cp, bytes_of(answer.from_ls)}, 0);
        }
    } else if (awaited) {
        start_failed(*link, answer.sense);
    }
    take_waiting_calls(cp);
}

void Engine::take_down(const LinkNews &news) {
    Resource *link = find(CLASS_LS, news.to_ls);
    const auto known = link_ends_.find(bytes_of(news.to_ls));
    if (link == nullptr || known == link_ends_.end() ||
        known->second.cp != bytes_of(news.from_cp) || known->second.ls != bytes_of(news.from_ls)) {
        return;
    }
    link_ends_.erase(known);
    if (news.sense != 0) {
        lose(*link, news.sense);
    } else {
        stop(*link, Stop::Immediate);
    }
}

void Engine::link_news(const LinkNews &news) {
    if (memcmp(node_record().info.fq_cp_name, news.to_cp, CP_WIDTH) != 0) {
        return;
    }
    switch (news.kind) {
    case LINK_CALL:
        take_call(news);
        break;
    case LINK_DOWN:
        take_down(news);
        break;
    case LINK_REGISTER:
        learn_registered(news.from_cp, news.from_ls);
        break;
    case LINK_UNREGISTER:
        unlearn(news.from_cp, news.from_ls);
        break;
    default:
        take_answer(news);
        break;
    }
}

void Engine::partner_node(const NB_UCHAR *fq_cp_name, bool there) {
    const std::string cp(reinterpret_cast<const char *>(fq_cp_name), CP_WIDTH);
    partners_[cp] = there;
    if (there) {
        return;
    }
    std::erase_if(waiting_calls_,
                  [&cp](const LinkNews &call) { return bytes_of(call.from_cp) == cp; });
    std::vector<Resource *> lost;
    const ResourceTable &links = *tables_[CLASS_LS];
    for (Resource *at = links.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const LinkEnd *end = link_end(*at);
        const bool to_it = partner_of(get<NAP_LS_DATA>(*at)) == cp;
        if ((end != nullptr && end->cp == cp) || (to_it && at->state == NAP_ACTIVE)) {
            lost.push_back(at);
        }
    }
    for (Resource *link : lost) {
        link_ends_.erase(bytes_of(get<NAP_LS_DATA>(*link).ls_name));
        if (link->state == NAP_ACTIVE) {
            lose(*link, SENSE_PARTNER_LOST);
        } else if (link->state == NAP_PENDING_ACTIVE) {
            start_failed(*link, SENSE_LINK_FAILED);
        } else {
            stop(*link, Stop::Immediate);
        }
    }
}

/* The text says that some links break now and then. */
void Engine::fail_later(Resource &link) {
    if (link.behaviour.fails_every == 0 || still_) {
        return;
    }
    const auto since = get<NAP_LS_DATA>(link).det_data.started_at;
    timers_.after(link.behaviour.fails_every * 1000U,
                  [this, since, name = bytes_of(get<NAP_LS_DATA>(link).ls_name)] {
                      Resource *found = find(CLASS_LS, key_of(name));
                      if (found != nullptr && found->state == NAP_ACTIVE &&
                          get<NAP_LS_DATA>(*found).det_data.started_at == since) {
                          dark_until_[name] = clock_.now_ms() + found->behaviour.fails_for * 1000U;
                          lose(*found, SENSE_LINK_FAILED);
                      }
                  });
}

bool Engine::is_dark(const Resource &link) const {
    const auto found = dark_until_.find(bytes_of(get<NAP_LS_DATA>(link).ls_name));
    return found != dark_until_.end() && clock_.now_ms() < found->second;
}

} // namespace node
