#include "deletion.h"
#include "fieldtext.h"
#include "globals.h"
#include "messages.h"
#include "recordtypes.h"
#include "schemas.h"
#include "vgadsutl.h"
#include <algorithm>
#include <cstring>
#include <map>
#include <set>

namespace {

using ROW = VGA_DELETABLE_ROW;

template <class Record> const Record &as(const NB_VOID *record) {
    return *static_cast<const Record *>(record);
}

/* The node that has a record; null: the domain has it. */
VGA_NODE *node_of(VGA_SYSTEM &) {
    return nullptr;
}
VGA_NODE *node_of(VGA_NODE &node) {
    return &node;
}
VGA_NODE *node_of(VGA_PORT &port) {
    return port.node; /* a placeholder has no DLC */
}
template <class Record> VGA_NODE *node_of(Record &record) {
    return node_of(*record.parent);
}

/* The field that names it; what has no list entry of its own is named by its key. */
std::string name_of(const ROW &row, const NB_UCHAR *entry) {
    const records::FieldRow *field = records::find_field(row.schema->fields, "name");
    const std::string name = field != nullptr ? records::format_field(*field, entry) : "";
    const bool of_clients = row.message == VGA_MSG_KIND_TN_RECORDS;
    return !name.empty() ? name : vga_message(of_clients ? VGA_MSG_DEFAULT : VGA_MSG_BLANK_NAME);
}
template <class Record> std::string name_of(const ROW &row, const Record &record) {
    return record.vcb != nullptr ? name_of(row, reinterpret_cast<const NB_UCHAR *>(record.vcb))
                                 : std::string(); /* a placeholder */
}
std::string name_of(const ROW &, const VGA_REM_SYS &system) {
    return records::ebcdic_text(system.name, sizeof(system.name));
}
std::string name_of(const ROW &, const VGA_REM_PLU &plu) {
    const auto &name = plu.key.fqplu_name;
    return vga_blank_name(name, sizeof(name)) ? vga_message(VGA_MSG_ANY_PARTNER)
                                              : records::ebcdic_text(name, sizeof(name));
}
std::string name_of(const ROW &, const VGA_SYS_POOL &pool) {
    return records::ebcdic_text(pool.name, sizeof(pool.name));
}
std::string name_of(const ROW &, const VGA_POOL_LU &lu) {
    return records::ebcdic_text(lu.key.lu_name, sizeof(lu.key.lu_name));
}

std::string name_of(const ROW &row, const VGA_TN_SESS &session) {
    return name_of(row, *session.parent) + " " + std::to_string(session.key.port);
}
std::string name_of(const ROW &, const VGA_USER_SESSION &session) {
    return records::local_text(session.name, sizeof(session.name));
}

/* What the verbs name: of a part, the entry that it is in. */
template <class Record> const NB_VOID *entry_of(const Record &record) {
    return record.vcb;
}
const NB_VOID *entry_of(const VGA_TN_SESS &session) {
    return session.parent->vcb;
}
const NB_VOID *entry_of(const VGA_USER_SESSION &session) {
    return session.parent->vcb;
}

/* Sessions that end with a resource; those of a link are all that it carries. */
template <class Record> NB_ULONG sessions_of(const Record &) {
    return 0;
}
NB_ULONG sessions_of(const VGA_LS &ls) {
    return ls.state == NAP_ACTIVE ? ls.vcb->det_data.act_sess_count : 0;
}
NB_ULONG sessions_of(const VGA_LU03 &lu) {
    return lu.vcb->det_data.plu_sess_active;
}
NB_ULONG sessions_of(const VGA_DOWN_LU &lu) {
    return lu.vcb->det_data.plu_sess_active;
}
NB_ULONG sessions_of(const VGA_LU62 &lu) {
    return lu.vcb->active_sessions;
}

/* Records of a node by what they name, in the order of the model. */
template <AVL_COMPARE compare> struct BEFORE {
    bool operator()(const NB_UCHAR *a, const NB_UCHAR *b) const { return compare(a, b) < 0; }
};
template <class Record, AVL_COMPARE compare>
using BY_NAME = std::multimap<const NB_UCHAR *, Record *, BEFORE<compare>>;

/* Each owner would have to look through all of them.  Filled once a plan, which leaves the model
 * alone. */
struct REFERRERS {
    BY_NAME<VGA_LU62, vga_compare_ebc8> lus_of_pu;
    BY_NAME<VGA_LS_ROUTING, vga_compare_asc8> routings_over_link;
    BY_NAME<VGA_SLSEC_DEF, vga_compare_asc8> passwords_of_alias;
    BY_NAME<VGA_DIR, vga_compare_ebc17> entries_of_system;
    BY_NAME<VGA_DIR, vga_compare_ebc17> entries_by_name;

    explicit REFERRERS(const VGA_NODE &node) {
        vga_for_each(node.lus, &VGA_LU62::name_links, [this](VGA_LU62 &lu) {
            lus_of_pu.emplace(lu.vcb->def_data.pu_name, &lu);
            vga_for_each(lu.routings, &VGA_LS_ROUTING::links, [this](VGA_LS_ROUTING &routing) {
                routings_over_link.emplace(routing.vcb->def_data.ls_name, &routing);
            });
        });
        vga_for_each(node.sl_security, &VGA_SLSEC_DEF::links, [this](VGA_SLSEC_DEF &password) {
            passwords_of_alias.emplace(password.key.lu_alias, &password);
        });
        vga_for_each(node.directory, &VGA_DIR::links, [this](VGA_DIR &entry) {
            entries_of_system.emplace(entry.key.fqcp_name, &entry);
            entries_by_name.emplace(entry.key.resource_name, &entry);
        });
    }
};

/* Writes the plan, owners before what goes with them. */
class PLANNER {
public:
    explicit PLANNER(VGA_DELETION &plan) : plan_(plan) {}

    template <VGA_DELETABLE Kind, class Record>
    NB_VOID add(Record &record, NB_USHORT by_itself = 0) {
        const ROW &row = vga_deletable_row(Kind);
        const VGA_NODE *node = node_of(record);
        VGA_DELETION_ITEM item = {.kind = Kind,
                                  .line = plan_.lines.size() - 1,
                                  .owner = owner_,
                                  .stopper = stopper_,
                                  .node = node != nullptr ? node->handle : 0,
                                  .by_itself = by_itself,
                                  .name = name_of(row, record)};
        if (const records::Schema *schema = row.schema; schema != nullptr) {
            memcpy(item.entry, entry_of(record), schema->key_size() + records::KEY_OFFSET);
            item.part = vga_part_key(row, record.vcb);
            if (!taken_.insert(entry_key(item) + item.part).second) {
                return;
            }
        }
        if (!item.part.empty()) { /* one change of an entry behind the other */
            NB_LONG &last = changed_.emplace(entry_key(item), -1).first->second;
            item.after = std::exchange(last, static_cast<NB_LONG>(plan_.items.size()));
        }
        const NB_USHORT active = is_active({row.operable, &record});
        item.sessions = carried_ != 0 ? 0 : sessions_of(record);
        /* Sessions of a local LU may go over other links. */
        item.stops = by_itself == 0 && active && (stopper_ < 0 || Kind == VGA_DELETE_LU62);
        count(item, active);
        open_and_go_below<Kind>(record, item);
    }

private:
    static NB_USHORT is_active(const VGA_RESOURCE &resource) {
        return resource.kind != VGA_OPERABLE_NONE &&
               vga_refuses_operation(resource, VGA_STOP_IMMEDIATE) == 0;
    }

    static std::string entry_key(const VGA_DELETION_ITEM &item) {
        std::string key(reinterpret_cast<const NB_CHAR *>(item.entry), sizeof(item.entry));
        return key + std::to_string(item.kind) + "/" + std::to_string(item.node);
    }

    NB_VOID count(const VGA_DELETION_ITEM &item, NB_USHORT active) {
        VGA_DELETION_LINE &line = plan_.lines.back();
        const bool selected = plan_.items.size() == line.item;
        /* Of an LU only its sessions end. */
        const bool has_state = item.kind <= VGA_DELETE_DOWN_PU;
        line.with[item.kind] += selected || vga_deletable_row(item.kind).message == 0 ? 0 : 1;
        line.stops[item.kind] += active != 0 && has_state ? 1 : 0;
        line.sessions += item.sessions;
    }

    template <VGA_DELETABLE Kind, class Record>
    NB_VOID open_and_go_below(Record &record, const VGA_DELETION_ITEM &item) {
        const auto at = static_cast<NB_LONG>(plan_.items.size());
        const NB_LONG owner = owner_;
        const NB_LONG stopper = stopper_;
        const NB_USHORT carried = carried_;
        plan_.items.push_back(item);
        owner_ = item.by_itself != 0 ? owner_ : at;
        stopper_ = item.stops != 0 ? at : stopper_;
        carried_ |= item.kind == VGA_DELETE_LS && item.sessions != 0;
        below(record);
        owner_ = owner;
        stopper_ = stopper;
        carried_ = carried;
        plan_.items[static_cast<size_t>(at)].end = plan_.items.size();
    }

    template <VGA_DELETABLE Kind, class Record>
    NB_VOID all(const AVL_TREE &tree, AVL_NODE Record::*links, NB_USHORT by_itself = 0) {
        vga_for_each(tree, links, [&](Record &record) { add<Kind>(record, by_itself); });
    }

    const REFERRERS &of(const VGA_NODE *node) {
        return referrers_.try_emplace(node, *node).first->second;
    }
    template <class Names, class Visit>
    static NB_VOID with_name(const Names &names, const NB_UCHAR *name, Visit visit) {
        const auto range = names.equal_range(name);
        for (auto at = range.first; at != range.second; ++at) {
            visit(*at->second);
        }
    }

    /* What goes with a record.  What only names it stays, and the node says so. */
    template <class Record> NB_VOID below(Record &) {}
    NB_VOID below(VGA_DLC &dlc) { all<VGA_DELETE_PORT>(dlc.ports, &VGA_PORT::dlc_links); }
    NB_VOID below(VGA_PORT &port) {
        vga_for_each(port.link_stations, &VGA_LS::port_links,
                     [this](VGA_LS &ls) { add<VGA_DELETE_LS>(ls, ls.vcb->det_data.dynamic); });
        vga_for_each(port.node->connection_networks, &VGA_CN::links, [&](VGA_CN &cn) {
            if (auto *member = static_cast<VGA_CN_PORT *>(ntl_avl_find(&cn.ports, port.name))) {
                add<VGA_DELETE_CN_PORT>(*member);
            }
        });
    }
    NB_VOID below(VGA_LS &ls) {
        if (ls.local_pu != nullptr) {
            add<VGA_DELETE_PU>(*ls.local_pu, 1);
        }
        if (ls.down_pu != nullptr) {
            add<VGA_DELETE_DOWN_PU>(*ls.down_pu, 1);
        }
        with_name(of(ls.parent->node).routings_over_link, ls.name,
                  [this](VGA_LS_ROUTING &routing) { add<VGA_DELETE_ROUTING>(routing); });
    }
    NB_VOID below(VGA_CN &cn) { all<VGA_DELETE_CN_PORT>(cn.ports, &VGA_CN_PORT::links, 1); }
    NB_VOID below(VGA_LOCAL_PU &pu) {
        all<VGA_DELETE_LU03>(pu.lus, &VGA_LU03::links);
        with_name(of(pu.parent).lus_of_pu, pu.name,
                  [this](VGA_LU62 &lu) { add<VGA_DELETE_LU62>(lu); });
    }
    NB_VOID below(VGA_DOWN_PU &pu) { all<VGA_DELETE_DOWN_LU>(pu.lus, &VGA_DOWN_LU::links); }
    NB_VOID below(VGA_LU62 &lu) {
        all<VGA_DELETE_ROUTING>(lu.routings, &VGA_LS_ROUTING::links, 1);
        with_name(of(lu.parent).passwords_of_alias, lu.alias,
                  [this](VGA_SLSEC_DEF &password) { add<VGA_DELETE_PASSWORD>(password, 1); });
    }
    NB_VOID below(VGA_MODE_DEF &mode) {
        if (VGA_LU62_TIMEOUT *timeout = vga_find_mode_timeout(mode.parent, mode.name)) {
            add<VGA_DELETE_TIMEOUT>(*timeout);
        }
    }
    NB_VOID below(VGA_PRIMARY_LINE &line) {
        all<VGA_DELETE_PRIMARY_LU>(line.lus, &VGA_PRIMARY_LU0::line_links);
    }
    /* The entry of the control point goes behind those of its LUs. */
    NB_VOID below(VGA_REM_SYS &system) {
        const NB_LONG owner = owner_;
        const auto of_system = [&](auto visit) {
            with_name(of(system.parent).entries_of_system, system.name, [&](VGA_DIR &entry) {
                visit(entry, memcmp(entry.key.resource_name, system.name, 17) == 0 &&
                                 entry.key.resource_type != NAP_DIR_LU);
            });
        };
        of_system([&](VGA_DIR &entry, bool own) {
            if (own) {
                const auto at = static_cast<NB_LONG>(plan_.items.size());
                add<VGA_DELETE_DIRECTORY>(entry);
                owner_ = at;
            }
        });
        all<VGA_DELETE_PLU>(system.remote_plu_tree, &VGA_REM_PLU::links);
        of_system([&](VGA_DIR &entry, bool own) {
            if (!own) {
                add<VGA_DELETE_DIRECTORY>(entry);
            }
        });
        owner_ = owner;
    }
    NB_VOID below(VGA_REM_PLU &plu) {
        if (plan_.items.back().kind == VGA_DELETE_PLU_DEF) {
            return;
        }
        if (plu.defined != 0) {
            add<VGA_DELETE_PLU_DEF>(plu);
        }
        with_name(of(plu.parent->parent).entries_by_name, plu.key.fqplu_name, [&](VGA_DIR &entry) {
            if (entry.key.resource_type == plu.key.type) {
                add<VGA_DELETE_DIRECTORY>(entry);
            }
        });
    }
    NB_VOID below(VGA_SYS_POOL &pool) {
        vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&](VGA_NODE &node) {
            if (VGA_POOL *part = vga_find_pool(&node, pool.name)) {
                add<VGA_DELETE_NODE_POOL>(*part);
            }
        });
    }
    /* The LUs stay, but not their sessions. */
    NB_VOID below(VGA_POOL &pool) {
        vga_for_each(pool.lu_tree, &VGA_POOL_LU::links, [&](VGA_POOL_LU &lu) { below(lu); });
    }
    NB_VOID below(VGA_POOL_LU &member) {
        VGA_LU03 *lu =
            vga_find_lu03(member.parent->parent, member.vcb->pu_name, member.key.lu_name);
        if (lu != nullptr && lu->vcb->det_data.plu_sess_active != 0) {
            add<VGA_DELETE_SESSION>(*lu);
        }
    }

    VGA_DELETION &plan_;
    std::map<const VGA_NODE *, REFERRERS> referrers_;
    std::set<std::string> taken_;            /* what is reached twice goes once */
    std::map<std::string, NB_LONG> changed_; /* entries, with the item that changes them last */
    NB_LONG owner_ = -1;
    NB_LONG stopper_ = -1;
    NB_USHORT carried_ = 0; /* flag: a link counts the sessions */
};

/* Begins with the record itself. */
template <VGA_DELETABLE Kind, class Record> NB_VOID plan_as(PLANNER &planner, NB_VOID *record) {
    planner.add<Kind>(*static_cast<Record *>(record));
}
template <VGA_DELETABLE Kind, class Record> std::string name_as(const NB_VOID *record) {
    return name_of(vga_deletable_row(Kind), as<Record>(record));
}
template <class Record> VGA_NODE *node_as(NB_VOID *record) {
    return node_of(*static_cast<Record *>(record));
}

struct ACCESS {
    NB_VOID (*plan)(PLANNER &planner, NB_VOID *record);
    std::string (*name)(const NB_VOID *record);
    VGA_NODE *(*node)(NB_VOID *record);
};

#define VGA_ACCESS(name, record)                                                                   \
    {plan_as<VGA_DELETE_##name, record>, name_as<VGA_DELETE_##name, record>, node_as<record>},
constexpr ACCESS accesses[] = {VGA_DELETABLES(VGA_ACCESS)};
#undef VGA_ACCESS

/* A pool of the domain is deleted where its nodes can be reached. */
NB_USHORT refuses_owner(const VGA_TO_DELETE &what) {
    const VGA_NODE *node = accesses[what.kind].node(what.record);
    if (const NB_USHORT reason = node != nullptr ? vga_refuses_unconnected(*node) : NB_USHORT{0}) {
        return reason;
    }
    if (node == nullptr && what.kind != VGA_DELETE_POOL && gvga_system->domain_target == 0) {
        return VGA_MSG_NO_MASTER;
    }
    return gvga_read_only != 0 ? VGA_MSG_NODEW_LOOK_ONLY : 0;
}

} // namespace

NB_USHORT vga_refuses_deletion(const VGA_TO_DELETE &what) {
    if (what.kind == VGA_DELETE_NOTHING) {
        return VGA_MSG_NODEW_NOT_FOR_THIS;
    }
    const ROW &row = vga_deletable_row(what.kind);
    NB_USHORT reason = row.refuses != nullptr ? row.refuses(what.record) : 0;
    if (row.schema != nullptr && row.schema->remove == 0) {
        reason = VGA_MSG_NODEW_NOT_DEFINED;
    }
    return reason != 0 ? reason : refuses_owner(what);
}

NB_USHORT vga_plan_deletion(const std::vector<VGA_TO_DELETE> &what, VGA_DELETION *plan) {
    PLANNER planner(*plan);
    NB_USHORT first_reason = what.empty() ? VGA_MSG_NODEW_SELECT_FIRST : 0;
    for (const VGA_TO_DELETE &one : what) {
        const NB_USHORT reason = vga_refuses_deletion(one);
        first_reason = first_reason == 0 ? reason : first_reason;
        if (one.kind == VGA_DELETE_NOTHING) {
            continue;
        }
        VGA_DELETION_LINE &line = plan->lines.emplace_back();
        line.kind = one.kind;
        line.name = accesses[one.kind].name(one.record);
        line.item = plan->items.size();
        line.wanted = reason == 0;
        line.reason = reason != 0 ? vga_message(reason) : "";
        if (reason == 0) {
            accesses[one.kind].plan(planner, one.record);
        }
        line.end = plan->items.size();
    }
    vga_order_referrers(plan);
    const bool possible = std::any_of(plan->lines.begin(), plan->lines.end(),
                                      [](const auto &line) { return line.reason.empty(); });
    return possible            ? NB_USHORT{0}
           : first_reason == 0 ? NB_USHORT{VGA_MSG_DELETE_IN_USE}
                               : first_reason;
}

std::vector<std::vector<size_t>> vga_group_deletion(const VGA_DELETION &plan) {
    std::map<VGA_KIND_COUNTS, size_t> known;
    std::vector<std::vector<size_t>> groups;
    for (size_t at = 0; at < plan.lines.size(); at++) {
        if (plan.lines[at].reason.empty()) {
            const auto found = known.emplace(plan.lines[at].with, groups.size());
            if (found.second) {
                groups.emplace_back();
            }
            groups[found.first->second].push_back(at);
        }
    }
    return groups;
}
