/* What is peculiar to classes of connectivity. */
#include "classhooks.h"
#include "engine.h"
#include "fieldrows.h"

#include "nbbase.h"
#include "nofcopy.h"
#include "referrers.h"

#include <algorithm>
#include <cstring>

namespace node {

namespace {

NB_ULONG started_at(const Engine &engine, const Resource &resource) {
    return resource.state == NAP_ACTIVE ? engine.clock().wall_seconds() : 0;
}

void show_dlc(const Engine &, Resource &resource) {
    auto entry = Engine::get<NAP_DLC_DATA>(resource);
    entry.dlc_sts = resource.state;
    Engine::put(resource, entry);
}

void fill_port(const Engine &engine, NB_UCHAR *bytes) {
    auto entry = nap_copy<NAP_PORT_DATA>(bytes);
    const Resource *dlc = engine.find(CLASS_DLC, entry.def_data.dlc_name);
    if (dlc != nullptr) {
        entry.def_data.dlc_type = Engine::get<NAP_DLC_DATA>(*dlc).def_data.dlc_type;
        memcpy(bytes, &entry, sizeof entry);
    }
}

/* Places that are kept for calls of one kind are of those that there are. */
Result check_port(const Engine &, const NB_UCHAR *bytes, const Resource *) {
    const auto port = nap_copy<NAP_PORT_DATA>(bytes).def_data;
    return port.inb_link_act_lim + port.out_link_act_lim <= port.tot_link_act_lim
               ? GOOD
               : bad_parameter(NAP_INVALID_VALUE);
}

void show_port(const Engine &engine, Resource &resource) {
    auto entry = Engine::get<NAP_PORT_DATA>(resource);
    entry.det_data.port_state = resource.state;
    entry.det_data.started_at = started_at(engine, resource);
    if (resource.state == NAP_ACTIVE) {
        entry.det_data.in_bytes = entry.det_data.out_bytes = 0;
    }
    Engine::put(resource, entry);
}

void count_links(Resource &port, const Resource &which, int, int active) {
    if (which.row->id == CLASS_LS) {
        auto entry = Engine::get<NAP_PORT_DATA>(port);
        entry.det_data.active_links += static_cast<NB_ULONG>(active);
        Engine::put(port, entry);
    }
}

/* Ports and link stations show the type of the DLC below them. */
void refill(Engine &engine, ClassId id, void (*fill)(const Engine &, NB_UCHAR *)) {
    const ResourceTable &table = engine.table(id);
    for (Resource *at = table.first(); at != nullptr; at = ResourceTable::next(*at)) {
        fill(engine, at->entry.get());
    }
}

void fill_ls(const Engine &engine, NB_UCHAR *bytes) {
    auto entry = nap_copy<NAP_LS_DATA>(bytes);
    const Resource *port = engine.find(CLASS_PORT, entry.def_data.port_name);
    if (port != nullptr) {
        entry.def_data.dlc_type = Engine::get<NAP_PORT_DATA>(*port).def_data.dlc_type;
        memcpy(bytes, &entry, sizeof entry);
    }
}

void dlc_defined(Engine &engine, Resource &, bool added) {
    if (!added) {
        refill(engine, CLASS_PORT, fill_port);
        refill(engine, CLASS_LS, fill_ls);
    }
}

void port_defined(Engine &engine, Resource &, bool added) {
    if (!added) {
        refill(engine, CLASS_LS, fill_ls);
    }
}

/* The class of the PUs that a link station of this type makes; CLASS_COUNT for none. */
ClassId made_class(const NAP_LS_DATA &link) {
    const NB_UCHAR type = link.def_data.adj_cp_type;
    return type == NAP_ADJ_HOST         ? CLASS_PU
           : type == NAP_ADJ_DOWNSTREAM ? CLASS_DOWN_PU
                                        : CLASS_COUNT;
}

/* The link station that made a PU. */
bool is_of_link(const Resource &pu, const NAP_LS_DATA &link) {
    const RefRow &ref = pu.row->refs[0];
    return pu.derived &&
           same_name(pu.entry.get() + ref.by->offset, link.ls_name, sizeof link.ls_name);
}

bool has_lus(const Resource &pu) {
    return (pu.row->id == CLASS_PU ? Engine::get<NAP_PU_DATA>(pu).lu_count
                                   : Engine::get<NAP_DOWN_PU_DATA>(pu).lu_count) > 0;
}

/* The PU that a link station makes, or null. */
Resource *pu_of_link(const Engine &engine, const NAP_LS_DATA &link) {
    const ClassId made = made_class(link);
    return made != CLASS_COUNT ? engine.find(made, link.def_data.pu_name) : nullptr;
}

/* PUs of hosts and those that are served share one space of names. */
bool pu_name_taken(const Engine &engine, const NAP_LS_DATA &link) {
    for (const ClassId id : {CLASS_PU, CLASS_DOWN_PU}) {
        const Resource *pu = engine.find(id, link.def_data.pu_name);
        if (pu != nullptr && !is_of_link(*pu, link)) {
            return true;
        }
    }
    return false;
}

/* A node has no link to itself. */
Result check_ls(const Engine &engine, const NB_UCHAR *bytes, const Resource *old) {
    const auto entry = nap_copy<NAP_LS_DATA>(bytes);
    const ClassId made = made_class(entry);
    if (same_name(entry.def_data.adj_cp_name, engine.node_record().info.fq_cp_name,
                  sizeof entry.def_data.adj_cp_name)) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    if (made != CLASS_COUNT && is_blank8(entry.def_data.pu_name)) {
        return bad_parameter(NAP_INVALID_NAME);
    }
    if (made == CLASS_DOWN_PU && engine.node_record().dspu_support == 0) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    if (made != CLASS_COUNT && pu_name_taken(engine, entry)) {
        return bad_parameter(NAP_DUPLICATE_NAME);
    }
    const Resource *pu = pu_of_link(engine, entry);
    const Resource *old_pu =
        old != nullptr ? pu_of_link(engine, Engine::get<NAP_LS_DATA>(*old)) : nullptr;
    return old_pu != nullptr && old_pu != pu && has_lus(*old_pu) ? bad_state(NAP_IN_USE) : GOOD;
}

/* Takes away the PU that a link station made, unless it is `kept`. */
void remove_old_pu(Engine &engine, const NAP_LS_DATA &link, const Resource *kept) {
    for (const ClassId id : {CLASS_PU, CLASS_DOWN_PU}) {
        for (Resource *pu : find_referrers(engine.table(id), class_row(id).refs[0], link.ls_name,
                                           sizeof link.ls_name)) {
            if (pu != kept && pu->derived) {
                engine.remove_tree(*pu);
            }
        }
    }
}

void make_host_pu(Engine &engine, const NAP_LS_DATA &link, const Resource *old) {
    NAP_PU_DATA pu = old != nullptr ? Engine::get<NAP_PU_DATA>(*old) : NAP_PU_DATA{};
    memcpy(pu.pu_name, link.def_data.pu_name, sizeof pu.pu_name);
    memcpy(pu.def_data.ls_name, link.ls_name, sizeof pu.def_data.ls_name);
    memcpy(pu.def_data.description, link.def_data.description, sizeof pu.def_data.description);
    memset(pu.def_data.dlus_name, 0x40, sizeof pu.def_data.dlus_name);
    memset(pu.def_data.bkup_dlus_name, 0x40, sizeof pu.def_data.bkup_dlus_name);
    pu.def_data.initially_active = link.def_data.solicit_sscp_sessions;
    pu.def_data.pu_id = link.def_data.node_id;
    pu.host_attachment = link.def_data.host_attachment;
    engine.add_derived(CLASS_PU, &pu, sizeof pu);
}

void make_down_pu(Engine &engine, const NAP_LS_DATA &link, const Resource *old) {
    NAP_DOWN_PU_DATA pu = old != nullptr ? Engine::get<NAP_DOWN_PU_DATA>(*old) : NAP_DOWN_PU_DATA{};
    memcpy(pu.dspu_name, link.def_data.pu_name, sizeof pu.dspu_name);
    memcpy(pu.def_data.ls_name, link.ls_name, sizeof pu.def_data.ls_name);
    memcpy(pu.def_data.description, link.def_data.description, sizeof pu.def_data.description);
    pu.def_data.initially_active = 1;
    pu.dspu_services = link.def_data.host_attachment == NAP_DLUR_ATTACHED ? NAP_DLUR_PASSED_THROUGH
                                                                          : NAP_PU_CONCENTRATION;
    engine.add_derived(CLASS_DOWN_PU, &pu, sizeof pu);
}

/* Makes, renames or takes away the PU of a link station. */
void ls_defined(Engine &engine, Resource &resource, bool added) {
    const auto link = Engine::get<NAP_LS_DATA>(resource);
    const Resource *wanted = pu_of_link(engine, link);
    if (!added) {
        remove_old_pu(engine, link, wanted);
    }
    if (made_class(link) == CLASS_PU) {
        make_host_pu(engine, link, wanted);
    } else if (made_class(link) == CLASS_DOWN_PU) {
        make_down_pu(engine, link, wanted);
    }
}

/* Counters begin anew when the link comes up, and stay to be read when it goes.  Sessions of
 * control points come and go with it, those of LUs are counted as they do. */
void show_ls(const Engine &engine, Resource &resource) {
    auto entry = Engine::get<NAP_LS_DATA>(resource);
    NAP_LS_DET &det = entry.det_data;
    const NB_ULONG control = entry.def_data.cp_cp_sess_support != 0 ? 2 : 0;
    const bool was_active = det.ls_state == NAP_ACTIVE;
    det.ls_state = resource.state;
    det.adj_node_type = det.hpr_support = 0;
    det.started_at = started_at(engine, resource);
    memset(det.adj_cp_name, 0x40, sizeof det.adj_cp_name);
    if (resource.state == NAP_ACTIVE) {
        constexpr NB_UCHAR kinds[] = {0, NAP_LEN_NODE, NAP_NETWORK_NODE, NAP_END_NODE};
        const NB_UCHAR type = entry.def_data.adj_cp_type;
        det.adj_node_type = type < sizeof kinds ? kinds[type] : 0;
        det.hpr_support = entry.def_data.hpr_supported;
        det.act_sess_count = control;
        det.in_bytes = det.out_bytes = det.in_frames = det.out_frames = det.retransmissions = 0;
        memcpy(det.adj_cp_name, entry.def_data.adj_cp_name, sizeof det.adj_cp_name);
        if (const LinkEnd *end = engine.link_end(resource); end != nullptr && !end->cp.empty()) {
            memcpy(det.adj_cp_name, end->cp.data(), sizeof det.adj_cp_name);
            det.adj_node_type = end->node_type;
            det.hpr_support = det.hpr_support != 0 && end->hpr != 0 ? 1 : 0;
        }
    } else if (was_active) {
        det.act_sess_count -= std::min(det.act_sess_count, control);
    }
    if (resource.state == NAP_NOT_ACTIVE) {
        det.act_sess_count = 0;
    }
    Engine::put(resource, entry);
}

Result check_pu(const Engine &engine, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = nap_copy<NAP_PU_DATA>(bytes);
    if (engine.node_record().dlur_support == 0) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    if (!is_blank(KeyKind::Local, entry.def_data.ls_name, sizeof entry.def_data.ls_name)) {
        return bad_parameter(NAP_INVALID_VALUE);
    }
    if (is_blank(KeyKind::Ebcdic, entry.def_data.dlus_name, sizeof entry.def_data.dlus_name)) {
        return bad_parameter(NAP_INVALID_NAME);
    }
    return engine.find(CLASS_DOWN_PU, entry.pu_name) != nullptr ? bad_parameter(NAP_DUPLICATE_NAME)
                                                                : GOOD;
}

void fill_pu(const Engine &, NB_UCHAR *bytes) {
    auto entry = nap_copy<NAP_PU_DATA>(bytes);
    entry.host_attachment = NAP_DLUR_ATTACHED;
    memset(entry.def_data.ls_name, ' ', sizeof entry.def_data.ls_name);
    memcpy(bytes, &entry, sizeof entry);
}

void show_pu(const Engine &, Resource &resource) {
    auto entry = Engine::get<NAP_PU_DATA>(resource);
    entry.pu_sscp_sess_active = resource.state;
    if (resource.state == NAP_NOT_ACTIVE || entry.host_attachment == NAP_DIRECT_ATTACHED) {
        memset(entry.active_dlus_name, 0x40, sizeof entry.active_dlus_name);
    }
    Engine::put(resource, entry);
}

void pu_defined(Engine &engine, Resource &resource, bool added) {
    const auto entry = Engine::get<NAP_PU_DATA>(resource);
    engine.count_served(added && entry.host_attachment == NAP_DLUR_ATTACHED ? 1 : 0);
}

void pu_left(Engine &engine, const NB_UCHAR *bytes) {
    const auto entry = nap_copy<NAP_PU_DATA>(bytes);
    engine.count_served(entry.host_attachment == NAP_DLUR_ATTACHED ? -1 : 0);
}

template <class Record> void count_lus(Resource &pu, const Resource &, int lus, int active) {
    auto entry = Engine::get<Record>(pu);
    entry.lu_count += static_cast<NB_ULONG>(lus);
    entry.active_lus += static_cast<NB_ULONG>(active);
    Engine::put(pu, entry);
}

void show_down_pu(const Engine &, Resource &resource) {
    auto entry = Engine::get<NAP_DOWN_PU_DATA>(resource);
    entry.pu_sscp_sess_active = resource.state;
    Engine::put(resource, entry);
}

/* A port shows in its connection networks whether it is up; each active one has a virtual TG. */
void show_cn(Engine &engine, const NB_UCHAR *fqcn) {
    Resource *network = engine.find(CLASS_CN, fqcn);
    const ResourceTable &ports = engine.table(CLASS_CN_PORT);
    constexpr NB_ULONG FIRST_VIRTUAL_TG = 21; /* those below are of links */
    NB_USHORT count = 0;
    NB_USHORT active = 0;
    for (Resource *at = ports.first_with(fqcn, 17); at != nullptr;
         at = ResourceTable::next_with(*at, 17)) {
        auto member = Engine::get<NAP_CN_PORT_DATA>(*at);
        const Resource *port = engine.find(CLASS_PORT, member.port_name);
        const bool up = port != nullptr && port->state == NAP_ACTIVE;
        member.tg_num = up ? FIRST_VIRTUAL_TG + count : 0;
        Engine::put(*at, member);
        count++;
        active = static_cast<NB_USHORT>(active + (up ? 1 : 0));
    }
    if (network != nullptr) {
        auto entry = Engine::get<NAP_CN_DATA>(*network);
        entry.num_ports = count;
        entry.num_act_ports = active;
        Engine::put(*network, entry);
    }
}

void port_moved(Engine &engine, const Resource &resource) {
    const auto port = Engine::get<NAP_PORT_DATA>(resource);
    for (const Resource *member :
         find_referrers(engine.table(CLASS_CN_PORT), class_row(CLASS_CN_PORT).refs[1],
                        port.port_name, sizeof port.port_name)) {
        show_cn(engine, member->entry.get() + KEY_OFFSET);
    }
}

bool cn_busy(const Engine &, const Resource &resource) {
    return Engine::get<NAP_CN_DATA>(resource).num_act_ports != 0;
}

/* All ports of a network are of its medium. */
bool is_medium(const Engine &engine, const NB_UCHAR *port_name, NB_UCHAR dlc_type) {
    const Resource *port = engine.find(CLASS_PORT, port_name);
    return port == nullptr || Engine::get<NAP_PORT_DATA>(*port).def_data.dlc_type == dlc_type;
}

Result check_cn(const Engine &engine, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = nap_copy<NAP_CN_DATA>(bytes);
    const ResourceTable &ports = engine.table(CLASS_CN_PORT);
    for (Resource *at = ports.first_with(entry.fqcn_name, 17); at != nullptr;
         at = ResourceTable::next_with(*at, 17)) {
        if (!is_medium(engine, Engine::get<NAP_CN_PORT_DATA>(*at).port_name,
                       entry.def_data.dlc_type)) {
            return bad_state(NAP_IN_USE);
        }
    }
    return GOOD;
}

Result check_cn_port(const Engine &engine, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = nap_copy<NAP_CN_PORT_DATA>(bytes);
    const Resource *network = engine.find(CLASS_CN, entry.fqcn_name);
    const NB_UCHAR type = Engine::get<NAP_CN_DATA>(*network).def_data.dlc_type;
    return is_medium(engine, entry.port_name, type) ? GOOD : bad_parameter(NAP_INVALID_VALUE);
}

bool cn_port_busy(const Engine &, const Resource &resource) {
    return Engine::get<NAP_CN_PORT_DATA>(resource).tg_num != 0;
}

void cn_port_defined(Engine &engine, Resource &resource, bool) {
    show_cn(engine, resource.entry.get() + KEY_OFFSET);
}

void cn_port_left(Engine &engine, const NB_UCHAR *entry) {
    show_cn(engine, entry + KEY_OFFSET);
}

Result check_dspu_template(const Engine &engine, const NB_UCHAR *bytes, const Resource *) {
    const auto entry = nap_copy<NAP_DSPU_TEMPLATE_DATA>(bytes);
    NB_USHORT free_from = 1;
    if (engine.node_record().dspu_support == 0) {
        return {NAP_NOT_SUPPORTED, 0};
    }
    for (NB_USHORT at = 0; at < entry.def_data.num_of_dslu_templates; at++) {
        const NAP_DSLU_TEMPLATE range = entry.def_data.dslu_templates[at];
        if (range.min_nau > range.max_nau || range.min_nau < free_from) {
            return bad_parameter(NAP_INVALID_VALUE);
        }
        free_from = static_cast<NB_USHORT>(range.max_nau + 1);
    }
    return GOOD;
}

Result check_primary_line(const Engine &engine, const NB_UCHAR *, const Resource *) {
    return engine.node_record().primary_support != 0 ? GOOD : Result{NAP_NOT_SUPPORTED, 0};
}

void show_primary_line(const Engine &, Resource &resource) {
    auto entry = Engine::get<NAP_PRIMARY_LINE_DATA>(resource);
    entry.line_state = resource.state;
    Engine::put(resource, entry);
}

constexpr ClassRow classes[] = {
    {.id = CLASS_DLC,
     .schema = &records::dlc,
     .life = {.states = plain_states,
              .causes = port_causes,
              .shows_pending = true,
              .initially = &field(records::dlc, "initially_active"),
              .up_low_ms = 100,
              .up_high_ms = 400,
              .down_ms = 100},
     .hooks = {.defined = dlc_defined, .show = show_dlc}},
    {.id = CLASS_PORT,
     .schema = &records::port,
     .refs = {{.to = CLASS_DLC, .flags = REF_OWNER, .by = &field(records::port, "dlc_name")}},
     .life = {.states = plain_states,
              .causes = port_causes,
              .shows_pending = true,
              .initially = &field(records::port, "initially_active"),
              .up_low_ms = 200,
              .up_high_ms = 800,
              .down_ms = 150},
     .hooks = {.check = check_port,
               .fill = fill_port,
               .defined = port_defined,
               .show = show_port,
               .moved = port_moved,
               .counted = count_links}},
    {.id = CLASS_LS,
     .schema = &records::ls,
     .refs = {{.to = CLASS_PORT, .flags = REF_OWNER, .by = &field(records::ls, "port_name")}},
     .life = {.states = link_states,
              .causes = link_causes,
              .shows_pending = true,
              .initially = &field(records::ls, "initially_active"),
              .up_low_ms = 300,
              .up_high_ms = 1500,
              .down_ms = 200},
     .hooks = {.check = check_ls, .fill = fill_ls, .defined = ls_defined, .show = show_ls}},
    {.id = CLASS_CN, .schema = &records::cn, .hooks = {.check = check_cn, .busy = cn_busy}},
    {.id = CLASS_CN_PORT,
     .schema = &records::cn_port,
     .refs = {{.to = CLASS_CN,
               .flags = REF_OWNER | REF_CARRIED,
               .by = &field(records::cn_port, "fqcn_name")},
              {.to = CLASS_PORT, .by = &field(records::cn_port, "name")}},
     .hooks = {.check = check_cn_port,
               .busy = cn_port_busy,
               .defined = cn_port_defined,
               .left = cn_port_left}},
    {.id = CLASS_PU,
     .schema = &records::pu,
     .refs = {{.to = CLASS_LS,
               .flags = REF_OWNER | REF_OPTIONAL | REF_CARRIED,
               .by = &field(records::pu, "ls_name")}},
     .life = {.states = plain_states,
              .causes = pu_causes,
              .shows_pending = true,
              .initially = &field(records::pu, "initially_active"),
              .up_low_ms = 100,
              .up_high_ms = 400,
              .down_ms = 100},
     .hooks = {.check = check_pu,
               .fill = fill_pu,
               .defined = pu_defined,
               .left = pu_left,
               .show = show_pu,
               .counted = count_lus<NAP_PU_DATA>}},
    {.id = CLASS_DOWN_PU,
     .schema = &records::down_pu,
     .refs = {{.to = CLASS_LS,
               .flags = REF_OWNER | REF_CARRIED,
               .by = &field(records::down_pu, "ls_name")}},
     .life = {.states = plain_states,
              .causes = port_causes,
              .shows_pending = true,
              .initially = &field(records::down_pu, "initially_active"),
              .up_low_ms = 100,
              .up_high_ms = 400,
              .down_ms = 100},
     .hooks = {.show = show_down_pu, .counted = count_lus<NAP_DOWN_PU_DATA>}},
    {.id = CLASS_DSPU_TEMPLATE,
     .schema = &records::dspu_template,
     .hooks = {.check = check_dspu_template}},
    {.id = CLASS_PRIMARY_LINE,
     .schema = &records::primary_line,
     .life = {.states = quiet_states,
              .shows_pending = true,
              .initially = &field(records::primary_line, "initially_active")},
     .hooks = {.check = check_primary_line, .show = show_primary_line}},
    {.id = CLASS_RTP_CONN, .schema = &records::rtp_conn, .hooks = {.busy = never_busy}},
};

} // namespace

std::span<const ClassRow> connectivity_classes() {
    return classes;
}

} // namespace node
