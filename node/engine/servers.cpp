/* PUs that a dependent LU server serves through the network.  They need a way to it: a link to its
 * control point, or to a network node that talks to others.  Without a way to the first server the
 * backup is taken; a PU without any waits, and comes up when there is one. */
#include "engine.h"
#include "keybytes.h"

#include <cstring>

namespace node {

namespace {

bool is_served(const Resource &pu) {
    return pu.row->id == CLASS_PU &&
           Engine::get<NAP_PU_DATA>(pu).host_attachment == NAP_DLUR_ATTACHED;
}

} // namespace

bool Engine::can_reach(const NB_UCHAR *fq_cp_name) const {
    return !is_blank(KeyKind::Ebcdic, fq_cp_name, 17) && answers(fq_cp_name) &&
           link_to(fq_cp_name) != nullptr;
}

/* Whether a PU that is to come up has its server, or needs none. */
bool Engine::find_server(Resource &pu) {
    if (!is_served(pu)) {
        return true;
    }
    auto entry = get<NAP_PU_DATA>(pu);
    const NB_UCHAR *server = can_reach(entry.def_data.dlus_name) ? entry.def_data.dlus_name
                             : can_reach(entry.def_data.bkup_dlus_name)
                                 ? entry.def_data.bkup_dlus_name
                                 : nullptr;
    if (server == nullptr) {
        waiting_pus_.insert(key_bytes(pu));
        return false;
    }
    waiting_pus_.erase(key_bytes(pu));
    memcpy(entry.active_dlus_name, server, sizeof entry.active_dlus_name);
    put(pu, entry);
    return true;
}

void Engine::wait_no_more(const Resource &pu) {
    if (is_served(pu)) {
        waiting_pus_.erase(key_bytes(pu));
    }
}

/* Links have come and gone. */
void Engine::check_servers() {
    const ResourceTable &pus = *tables_[CLASS_PU];
    std::vector<Resource *> lost;
    for (Resource *at = served_pus_ > 0 ? pus.first() : nullptr; at != nullptr;
         at = ResourceTable::next(*at)) {
        if (is_served(*at) && at->state == NAP_ACTIVE &&
            !can_reach(get<NAP_PU_DATA>(*at).active_dlus_name)) {
            lost.push_back(at);
        }
    }
    for (Resource *pu : lost) {
        failed(*pu, SENSE_NO_WAY);
        stop(*pu, Stop::Immediate);
        waiting_pus_.insert(key_bytes(*pu));
    }
    const std::set<std::string> waiting = waiting_pus_;
    for (const std::string &name : waiting) {
        Resource *pu = find(CLASS_PU, reinterpret_cast<const NB_UCHAR *>(name.data()));
        if (pu == nullptr || !owner_active(*pu)) {
            waiting_pus_.erase(name);
        } else if (pu->state == NAP_NOT_ACTIVE && find_server(*pu)) {
            start(*pu);
        }
    }
}

} // namespace node
