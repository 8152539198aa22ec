#include "startstopeffects.h"
#include "recordtypes.h"
#include <algorithm>
#include <map>
#include <unordered_map>

namespace {

template <class Record> const Record &as(const NB_VOID *record) {
    return *static_cast<const Record *>(record);
}

template <class Lu> NB_VOID add_lu(VGA_EFFECTS &effects, const Lu &lu) {
    const auto &now = lu.vcb->det_data;
    effects.lus += now.lu_sscp_sess_active != 0 || now.plu_sess_active != 0;
    effects.sessions += now.plu_sess_active != 0;
}

NB_VOID add_below(VGA_EFFECTS &effects, const VGA_LOCAL_PU &pu) {
    vga_for_each(pu.lus, &VGA_LU03::links, [&](const VGA_LU03 &lu) { add_lu(effects, lu); });
}

NB_VOID add_below(VGA_EFFECTS &effects, const VGA_DOWN_PU &pu) {
    vga_for_each(pu.lus, &VGA_DOWN_LU::links, [&](const VGA_DOWN_LU &lu) { add_lu(effects, lu); });
}

template <class Pu> NB_VOID add_pu(VGA_EFFECTS &effects, const Pu *pu) {
    if (pu != nullptr && pu->vcb->pu_sscp_sess_active != NAP_NOT_ACTIVE) {
        effects.pus++;
        add_below(effects, *pu);
    }
}

template <class Visit> NB_VOID for_each_mode(const VGA_NODE &node, Visit visit) {
    vga_for_each(node.lus, &VGA_LU62::name_links,
                 [&visit](const VGA_LU62 &lu) { vga_for_each(lu.modes, &VGA_MODE::links, visit); });
}

/* Sessions of modes, by node and adjacent control point: walks the modes of a node once. */
class CARRIED {
public:
    NB_ULONG on(const VGA_LS &ls) {
        const auto [place, is_new] = by_node_.try_emplace(ls.parent->node);
        auto &sessions = place->second;
        if (is_new) {
            for_each_mode(*place->first, [&sessions](const VGA_MODE &mode) {
                sessions[key(mode.vcb->fq_cp_name)] += mode.vcb->act_sess_count;
            });
        }
        const auto found = sessions.find(key(ls.vcb->def_data.adj_cp_name));
        return found != sessions.end() ? found->second : 0;
    }

private:
    template <size_t Size> static std::string key(const NB_UCHAR (&name)[Size]) {
        return {name, name + Size};
    }

    std::map<const VGA_NODE *, std::unordered_map<std::string, NB_ULONG>> by_node_;
};

/* Of the sessions on a link the node tells only when it is asked; modes and LUs say sooner what
 * they have, but not on which link, when the partner is behind another node. */
NB_VOID add_below(VGA_EFFECTS &effects, CARRIED &carried, const VGA_LS &ls) {
    VGA_EFFECTS own = {};
    add_pu(own, ls.local_pu);
    add_pu(own, ls.down_pu);
    own.sessions += carried.on(ls);
    effects.pus += own.pus;
    effects.lus += own.lus;
    effects.sessions += std::max<NB_ULONG>(own.sessions, ls.vcb->det_data.act_sess_count);
}

NB_VOID add_below(VGA_EFFECTS &effects, CARRIED &carried, const VGA_PORT &port) {
    vga_for_each(port.link_stations, &VGA_LS::port_links, [&](const VGA_LS &ls) {
        if (ls.state != NAP_NOT_ACTIVE) {
            effects.links++;
            add_below(effects, carried, ls);
        }
    });
}

NB_VOID add_below(VGA_EFFECTS &effects, CARRIED &carried, const VGA_DLC &dlc) {
    vga_for_each(dlc.ports, &VGA_PORT::dlc_links, [&](const VGA_PORT &port) {
        if (port.vcb->det_data.port_state != NAP_NOT_ACTIVE) {
            effects.ports++;
            add_below(effects, carried, port);
        }
    });
}

/* Of a node all sessions are known, whatever carries them. */
NB_VOID add_below(VGA_EFFECTS &effects, CARRIED &carried, const VGA_NODE &node) {
    VGA_EFFECTS connected = {}, all = {};
    vga_for_each(node.dlcs, &VGA_DLC::links,
                 [&](const VGA_DLC &dlc) { add_below(connected, carried, dlc); });
    vga_for_each(node.local_pus, &VGA_LOCAL_PU::links,
                 [&all](const VGA_LOCAL_PU &pu) { add_pu(all, &pu); });
    vga_for_each(node.down_pus, &VGA_DOWN_PU::links,
                 [&all](const VGA_DOWN_PU &pu) { add_pu(all, &pu); });
    for_each_mode(node, [&all](const VGA_MODE &mode) { all.sessions += mode.vcb->act_sess_count; });
    effects.ports += connected.ports;
    effects.links += connected.links;
    effects.pus += all.pus;
    effects.lus += all.lus;
    effects.sessions += all.sessions;
}

} // namespace

VGA_EFFECTS vga_effects_of_stop(const std::vector<VGA_RESOURCE> &resources) {
    VGA_EFFECTS effects = {};
    CARRIED carried;
    for (const VGA_RESOURCE &one : resources) {
        switch (one.kind) {
        case VGA_OPERABLE_NODE:
            add_below(effects, carried, as<VGA_NODE>(one.record));
            break;
        case VGA_OPERABLE_DLC:
            add_below(effects, carried, as<VGA_DLC>(one.record));
            break;
        case VGA_OPERABLE_PORT:
            add_below(effects, carried, as<VGA_PORT>(one.record));
            break;
        case VGA_OPERABLE_LS:
            add_below(effects, carried, as<VGA_LS>(one.record));
            break;
        case VGA_OPERABLE_LOCAL_PU:
            add_below(effects, as<VGA_LOCAL_PU>(one.record));
            break;
        case VGA_OPERABLE_DOWN_PU:
            add_below(effects, as<VGA_DOWN_PU>(one.record));
            break;
        case VGA_OPERABLE_MODE:
            effects.sessions += as<VGA_MODE>(one.record).vcb->act_sess_count;
            break;
        case VGA_OPERABLE_LU62:
            effects.sessions += as<VGA_LU62>(one.record).vcb->active_sessions;
            break;
        case VGA_OPERABLE_LU03:
            effects.sessions += as<VGA_LU03>(one.record).vcb->det_data.plu_sess_active != 0;
            break;
        case VGA_OPERABLE_NONE:
            break;
        }
    }
    return effects;
}

std::string vga_effects_in_words(const VGA_EFFECTS &effects) {
    const struct {
        VGA_OPERABLE kind;
        NB_ULONG count;
    } parts[] = {{VGA_OPERABLE_PORT, effects.ports},
                 {VGA_OPERABLE_LS, effects.links},
                 {VGA_OPERABLE_LOCAL_PU, effects.pus},
                 {VGA_OPERABLE_LU03, effects.lus}};
    std::string words;
    for (const auto &part : parts) {
        if (part.count != 0) {
            words += (words.empty() ? "" : ", ") + vga_count_in_words(part.kind, part.count);
        }
    }
    return words;
}
