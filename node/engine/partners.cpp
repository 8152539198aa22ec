/* Links between nodes of one domain: both ends are here, so both are seen to move together. */
#include "engine.h"

#include "nofverbs.h"

#include <cstring>

namespace node {

namespace {

constexpr size_t CP_WIDTH = 17;

std::string cp_of(const NB_UCHAR *fq_cp_name) {
    return std::string(reinterpret_cast<const char *>(fq_cp_name), CP_WIDTH);
}

} // namespace

template <class Action> void Engine::for_links_to(const NB_UCHAR *fq_cp_name, Action action) {
    const ResourceTable &links = *tables_[CLASS_LS];
    for (Resource *at = links.first(); at != nullptr; at = ResourceTable::next(*at)) {
        const auto link = get<NAP_LS_DATA>(*at);
        if (memcmp(link.def_data.adj_cp_name, fq_cp_name, CP_WIDTH) == 0) {
            action(*at);
        }
    }
}

bool Engine::partner_absent(const Resource &resource) const {
    if (resource.row->id != CLASS_LS) {
        return false;
    }
    const auto found = partners_.find(cp_of(get<NAP_LS_DATA>(resource).def_data.adj_cp_name));
    return found != partners_.end() && !found->second;
}

void Engine::tell_partner(const Resource &resource) {
    if (resource.row->id != CLASS_LS ||
        (resource.state != NAP_ACTIVE && resource.state != NAP_NOT_ACTIVE)) {
        return;
    }
    const auto link = get<NAP_LS_DATA>(resource);
    NAP_RESOURCE_INDICATION news = {};
    news.opcode = NAP_LS_INDICATION;
    news.primary_rc = NAP_INDICATION;
    news.state = resource.state;
    memcpy(news.key, node_record().info.fq_cp_name, CP_WIDTH);
    memcpy(news.key + CP_WIDTH, link.def_data.adj_cp_name, CP_WIDTH);
    if (partners_.count(cp_of(link.def_data.adj_cp_name)) != 0) {
        listener_.link_changed(&news, sizeof news);
    }
}

void Engine::partner_link(const NAP_RESOURCE_INDICATION &news) {
    if (memcmp(node_record().info.fq_cp_name, news.key + CP_WIDTH, CP_WIDTH) != 0) {
        return;
    }
    for_links_to(news.key, [this, &news](Resource &link) {
        if (news.state != NAP_ACTIVE) {
            stop(link, Stop::Immediate);
        } else if (owner_active(link)) {
            start(link);
        }
    });
}

void Engine::partner_node(const NB_UCHAR *fq_cp_name, bool active) {
    bool &known = partners_[cp_of(fq_cp_name)];
    const bool changed = known != active;
    known = active;
    for_links_to(fq_cp_name, [this, active, changed](Resource &link) {
        if (!active) {
            if (link.state == NAP_ACTIVE) {
                failed(link, SENSE_PARTNER_LOST);
            }
            stop(link, Stop::Immediate);
        } else if (changed && owner_active(link) && comes_with_owner(link)) {
            start(link);
        }
    });
}

} // namespace node
