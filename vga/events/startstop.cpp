#include "startstop.h"
#include "fieldtext.h"
#include "globals.h"
#include "messages.h"
#include "nofverbs.h"
#include "schemas.h"
#include <algorithm>
#include <cstring>

namespace {

/* What an operation needs to know of a record. */
struct SUBJECT {
    NB_ULONG handle;
    const NB_VOID *entry;
    VGA_NODE *node;
    const NB_UCHAR *key; /* of the verbs */
    size_t key_length;
    NB_ULONG state;
};

/* A set of states. */
template <class... State> constexpr NB_USHORT in(State... states) {
    return static_cast<NB_USHORT>(((1U << states) | ... | 0U));
}

constexpr NB_USHORT down = in(NAP_NOT_ACTIVE, NAP_RESETTING);
constexpr NB_USHORT up = in(NAP_PENDING_ACTIVE, NAP_ACTIVE);
constexpr NB_USHORT going_down = in(NAP_PENDING_INACTIVE);
constexpr NB_USHORT not_up = down | going_down; /* a start takes an orderly stop back */

struct OPERABLE {
    VGA_OPERABLE kind;
    const records::Schema *schema;
    NB_USHORT start, stop;               /* opcodes, 0: none */
    NB_USHORT startable, stoppable;      /* sets of states; an orderly stop can be followed */
    NB_USHORT interruptible;             /* by an immediate one in these */
    SUBJECT (*subject)(NB_VOID *record); /* no key: cannot be operated */
    NB_USHORT noun;                      /* message: what it is called, for vga_counted */
};

template <class Record> const Record &as(const NB_VOID *record) {
    return *static_cast<const Record *>(record);
}

SUBJECT node_subject(NB_VOID *record) {
    auto *node = static_cast<VGA_NODE *>(record);
    return {
        node->handle,       node->vcb,       node, reinterpret_cast<const NB_UCHAR *>(node->name),
        sizeof(node->name), node->node_state};
}

SUBJECT dlc_subject(NB_VOID *record) {
    const auto &dlc = as<VGA_DLC>(record);
    return {dlc.handle, dlc.vcb, dlc.parent, dlc.name, sizeof(dlc.name), dlc.vcb->dlc_sts};
}

/* Placeholders have no entry. */
SUBJECT port_subject(NB_VOID *record) {
    const auto &port = as<VGA_PORT>(record);
    return port.vcb == nullptr
               ? SUBJECT{port.handle, port.vcb, port.node, nullptr, 0, NAP_NOT_ACTIVE}
               : SUBJECT{port.handle, port.vcb,          port.node,
                         port.name,   sizeof(port.name), port.vcb->det_data.port_state};
}

SUBJECT ls_subject(NB_VOID *record) {
    const auto &ls = as<VGA_LS>(record);
    return {ls.handle, ls.vcb, ls.parent->node, ls.name, sizeof(ls.name), ls.state};
}

template <class Pu> SUBJECT pu_subject(NB_VOID *record) {
    const auto &pu = as<Pu>(record);
    return {pu.handle, pu.vcb, pu.parent, pu.name, sizeof(pu.name), pu.vcb->pu_sscp_sess_active};
}

NB_ULONG active_if(bool on) {
    return on ? NAP_ACTIVE : NAP_NOT_ACTIVE;
}

/* The key of its entry is that of the verbs.  While it drains it takes no new sessions. */
SUBJECT mode_subject(NB_VOID *record) {
    const auto &mode = as<VGA_MODE>(record);
    const auto *entry = reinterpret_cast<const NB_UCHAR *>(mode.vcb);
    return {mode.handle,
            mode.vcb,
            mode.parent->parent,
            entry + records::KEY_OFFSET,
            records::mode.key_size(),
            mode.vcb->draining != 0 ? NAP_PENDING_INACTIVE
                                    : active_if(mode.vcb->act_sess_count != 0)};
}

SUBJECT lu62_subject(NB_VOID *record) {
    const auto &lu = as<VGA_LU62>(record);
    return {lu.handle, lu.vcb,          lu.parent,
            lu.name,   sizeof(lu.name), active_if(lu.vcb->active_sessions != 0)};
}

SUBJECT lu03_subject(NB_VOID *record) {
    const auto &lu = as<VGA_LU03>(record);
    return {lu.handle, lu.vcb,          lu.parent->parent,
            lu.name,   sizeof(lu.name), active_if(lu.vcb->det_data.plu_sess_active != 0)};
}

/* A node that is stopping can be started as soon as it has stopped (startstopbatch.h waits). */
constexpr NB_USHORT node_down = in(NAP_NODE_STOPPED, NAP_NODE_STOPPING);
constexpr NB_USHORT node_up = in(NAP_NODE_STARTING, NAP_NODE_ACTIVE);

/* clang-format off */
constexpr OPERABLE operables[] = {
    {VGA_OPERABLE_NODE, &records::domain_node, NAP_INIT_NODE, NAP_STOP_NODE, node_down, node_up, 0, node_subject, VGA_MSG_KIND_NODES},
    {VGA_OPERABLE_DLC, &records::dlc, NAP_START_DLC, NAP_STOP_DLC, not_up, up, going_down, dlc_subject, VGA_MSG_KIND_DLCS},
    {VGA_OPERABLE_PORT, &records::port, NAP_START_PORT, NAP_STOP_PORT, not_up, up, going_down, port_subject, VGA_MSG_KIND_PORTS},
    {VGA_OPERABLE_LS, &records::ls, NAP_START_LS, NAP_STOP_LS, not_up, up, going_down, ls_subject, VGA_MSG_KIND_LINKS},
    {VGA_OPERABLE_LOCAL_PU, &records::pu, NAP_START_PU, NAP_STOP_PU, not_up, up, going_down, pu_subject<VGA_LOCAL_PU>, VGA_MSG_KIND_PUS},
    {VGA_OPERABLE_DOWN_PU, &records::down_pu, NAP_START_PU, NAP_STOP_PU, not_up, up, going_down, pu_subject<VGA_DOWN_PU>, VGA_MSG_KIND_PUS},
    {VGA_OPERABLE_MODE, &records::mode, NAP_ACTIVATE_SESSION, NAP_DEACTIVATE_SESSION, down | up, up, going_down, mode_subject, VGA_MSG_KIND_MODES},
    {VGA_OPERABLE_LU62, &records::local_lu, 0, NAP_END_LU_SESSION, 0, up, 0, lu62_subject, VGA_MSG_KIND_LOCAL_LUS},
    {VGA_OPERABLE_LU03, &records::lu03, 0, NAP_END_LU_SESSION, 0, up, 0, lu03_subject, VGA_MSG_KIND_LUS},
};
/* clang-format on */

const OPERABLE *find_operable(VGA_OPERABLE kind) {
    for (const OPERABLE &row : operables) {
        if (row.kind == kind) {
            return &row;
        }
    }
    return nullptr;
}

/* A start of an active link is meant for the PU that is on it. */
VGA_RESOURCE meant(const VGA_RESOURCE &resource, VGA_OPERATION operation) {
    if (resource.kind != VGA_OPERABLE_LS || operation != VGA_START) {
        return resource;
    }
    const auto &ls = as<VGA_LS>(resource.record);
    if (ls.state != NAP_ACTIVE) {
        return resource;
    }
    return ls.local_pu != nullptr  ? VGA_RESOURCE{VGA_OPERABLE_LOCAL_PU, ls.local_pu}
           : ls.down_pu != nullptr ? VGA_RESOURCE{VGA_OPERABLE_DOWN_PU, ls.down_pu}
                                   : resource;
}

NB_USHORT refuses_state(const OPERABLE &row, VGA_OPERATION operation, NB_ULONG state) {
    const NB_USHORT now = state < 16 ? in(state) : NB_USHORT{0};
    NB_USHORT allowed = operation == VGA_START ? row.startable : row.stoppable;
    allowed |= operation == VGA_STOP_IMMEDIATE ? row.interruptible : 0;
    if ((now & allowed) != 0) {
        return 0;
    }
    if (operation == VGA_START) {
        return (now & row.stoppable) != 0 ? VGA_MSG_NODEW_ACTIVE_ALREADY
                                          : VGA_MSG_NODEW_WRONG_STATE;
    }
    const bool stops = (now & row.interruptible) != 0 ||
                       (row.kind == VGA_OPERABLE_NODE && state == NAP_NODE_STOPPING);
    return stops ? VGA_MSG_NODEW_WRONG_STATE : VGA_MSG_NODEW_NOT_ACTIVE;
}

NB_USHORT refuses_node(const OPERABLE &row, const VGA_NODE &node) {
    if (const NB_USHORT reason = vga_refuses_unconnected(node)) {
        return reason;
    }
    if (gvga_read_only) {
        return VGA_MSG_NODEW_LOOK_ONLY;
    }
    return row.kind != VGA_OPERABLE_NODE && node.node_state != NAP_NODE_ACTIVE
               ? VGA_MSG_NODEW_NODE_NOT_ACTIVE
               : 0;
}

/* The key stands in the same place of all of these verbs; what else they say does not. */
VGA_OWNED<NAP_VCB> make_verb(NB_USHORT opcode, const SUBJECT &subject, VGA_OPERATION operation,
                             NB_USHORT sessions) {
    const NB_UCHAR stop_type =
        operation == VGA_STOP_IMMEDIATE ? NAP_IMMEDIATE_STOP : NAP_ORDERLY_STOP;
    VGA_OWNED<NAP_VCB> verb(static_cast<NAP_VCB *>(calloc(1, nap_find_verb(opcode)->block_size)));
    if (!verb) {
        return verb;
    }
    verb->opcode = opcode;
    memcpy(reinterpret_cast<NB_UCHAR *>(verb.get()) + sizeof(NAP_VCB), subject.key,
           subject.key_length);
    switch (opcode) {
    case NAP_ACTIVATE_SESSION:
        reinterpret_cast<NAP_LU62_SESSION_VERB *>(verb.get())->sessions = sessions;
        break;
    case NAP_DEACTIVATE_SESSION:
        reinterpret_cast<NAP_LU62_SESSION_VERB *>(verb.get())->stop_type = stop_type;
        break;
    case NAP_END_LU_SESSION:
        reinterpret_cast<NAP_END_LU_SESSION_VERB *>(verb.get())->stop_type = stop_type;
        break;
    default:
        reinterpret_cast<NAP_NAME_VERB *>(verb.get())->stop_type = stop_type;
    }
    return verb;
}

} // namespace

VGA_RESOURCE vga_resource_of_line(const VGA_VIEWER_ITEM *item) {
    static constexpr struct {
        VGA_VIEWER_TYPE type;
        VGA_OPERABLE kind;
    } kinds[] = {
        {VGA_VIEWER_NODE, VGA_OPERABLE_NODE},
        {VGA_VIEWER_PORT, VGA_OPERABLE_PORT},
        {VGA_VIEWER_LS, VGA_OPERABLE_LS},
        {VGA_VIEWER_LS_LEAF, VGA_OPERABLE_LS},
        {VGA_VIEWER_LOCAL_PU, VGA_OPERABLE_LOCAL_PU},
        {VGA_VIEWER_MODE, VGA_OPERABLE_MODE},
        {VGA_VIEWER_LU62, VGA_OPERABLE_LU62},
        {VGA_VIEWER_DEPLU, VGA_OPERABLE_LU03},
    };
    for (const auto &row : kinds) {
        if (item != nullptr && item->type == row.type) {
            return {row.kind, item->data};
        }
    }
    return {VGA_OPERABLE_NONE, nullptr};
}

std::vector<VGA_RESOURCE> vga_selected_resources(const VGA_VIEWER_ROOT *root, NB_LONG most) {
    std::vector<VGA_RESOURCE> resources;
    if (root->select_count == 0) {
        return resources;
    }
    const VGA_VIEWER_LIST &lines =
        root->select_parent != nullptr ? root->select_parent->children : root->top_items;
    for (NB_LONG at = 0; at < std::min(root->select_count, most); at++) {
        resources.push_back(
            vga_resource_of_line(vga_viewer_find_selected(&lines, static_cast<NB_ULONG>(at))));
    }
    return resources;
}

NB_USHORT vga_refuses_unconnected(const VGA_NODE &node) {
    if (node.target != 0 && node.connection == VGA_CONNECTED) {
        return 0;
    }
    return node.lost_at != 0 ? VGA_MSG_NODEW_NODE_LOST : VGA_MSG_NODEW_NODE_NOT_CONNECTED;
}

NB_USHORT vga_refuses_operation(const VGA_RESOURCE &resource, VGA_OPERATION operation) {
    const VGA_RESOURCE subject_of = meant(resource, operation);
    const OPERABLE *row = find_operable(subject_of.kind);
    if (row == nullptr || (operation == VGA_START ? row->start : row->stop) == 0) {
        return VGA_MSG_NODEW_NOT_STARTABLE;
    }
    const SUBJECT subject = row->subject(subject_of.record);
    if (subject.key == nullptr) {
        return VGA_MSG_NODEW_NOT_STARTABLE;
    }
    const NB_USHORT reason = refuses_node(*row, *subject.node);
    return reason != 0 ? reason : refuses_state(*row, operation, subject.state);
}

NB_USHORT vga_operate(const VGA_RESOURCE &resource, VGA_OPERATION operation, NB_ULONG user_data,
                      VGA_COMPLETION completion) {
    const NB_USHORT reason = vga_refuses_operation(resource, operation);
    if (reason != 0) {
        return reason;
    }
    const VGA_RESOURCE subject_of = meant(resource, operation);
    const OPERABLE &row = *find_operable(subject_of.kind);
    const SUBJECT subject = row.subject(subject_of.record);
    const NB_USHORT opcode = operation == VGA_START ? row.start : row.stop;
    if (vga_issue_verb(subject.node->target,
                       make_verb(opcode, subject, operation, subject_of.sessions), user_data,
                       completion) == 0) {
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
    }
    return 0;
}

/* What a resource depends on. */

namespace {

VGA_RESOURCE unless_active(VGA_OPERABLE kind, NB_VOID *record, NB_ULONG state) {
    return record == nullptr || state == NAP_ACTIVE ? VGA_RESOURCE{VGA_OPERABLE_NONE, nullptr}
                                                    : VGA_RESOURCE{kind, record};
}

VGA_RESOURCE link_of_pu(VGA_LS *ls) {
    return unless_active(VGA_OPERABLE_LS, ls, ls != nullptr ? NB_ULONG{ls->state} : 0);
}

} // namespace

VGA_RESOURCE vga_needed_first(const VGA_RESOURCE &resource) {
    switch (resource.kind) {
    case VGA_OPERABLE_PORT: {
        VGA_DLC *dlc = as<VGA_PORT>(resource.record).parent;
        return unless_active(VGA_OPERABLE_DLC, dlc,
                             dlc != nullptr ? NB_ULONG{dlc->vcb->dlc_sts} : 0);
    }
    case VGA_OPERABLE_LS: {
        VGA_PORT *port = as<VGA_LS>(resource.record).parent;
        return port->vcb != nullptr
                   ? unless_active(VGA_OPERABLE_PORT, port, port->vcb->det_data.port_state)
                   : VGA_RESOURCE{VGA_OPERABLE_NONE, nullptr};
    }
    case VGA_OPERABLE_LOCAL_PU:
        return link_of_pu(as<VGA_LOCAL_PU>(resource.record).ls_entry);
    case VGA_OPERABLE_DOWN_PU:
        return link_of_pu(as<VGA_DOWN_PU>(resource.record).ls_entry);
    default:
        return {VGA_OPERABLE_NONE, nullptr};
    }
}

NB_ULONG vga_handle_of(const VGA_RESOURCE &resource) {
    const OPERABLE *row = find_operable(resource.kind);
    return row != nullptr ? row->subject(resource.record).handle : 0;
}

VGA_NODE *vga_node_of(const VGA_RESOURCE &resource) {
    const OPERABLE *row = find_operable(resource.kind);
    return row != nullptr ? row->subject(resource.record).node : nullptr;
}

NB_ULONG vga_state_of(const VGA_RESOURCE &resource) {
    const OPERABLE *row = find_operable(resource.kind);
    return row != nullptr ? row->subject(resource.record).state : NB_ULONG{NAP_NOT_ACTIVE};
}

/* Words. */

namespace {

std::string name_in(const records::Schema &schema, const NB_VOID *entry, std::string_view field) {
    return records::format_field(*records::find_field(schema.fields, field),
                                 static_cast<const NB_UCHAR *>(entry));
}

/* Names of modes are those of many. */
std::string mode_name(const NB_VOID *entry) {
    const std::string mode = name_in(records::mode, entry, "mode_name"),
                      lu = name_in(records::mode, entry, "lu_alias"),
                      partner = name_in(records::mode, entry, "name");
    NB_CHAR text[100];
    vga_print_msg(text, sizeof(text), VGA_MSG_OPER_MODE_NAME, "s s s", mode.c_str(), lu.c_str(),
                  partner.c_str());
    return text;
}

} // namespace

std::string vga_name_of(const VGA_RESOURCE &resource) {
    const OPERABLE *row = find_operable(resource.kind);
    const NB_VOID *entry = row != nullptr ? row->subject(resource.record).entry : nullptr;
    if (entry == nullptr) {
        return {};
    }
    return resource.kind == VGA_OPERABLE_MODE ? mode_name(entry)
                                              : name_in(*row->schema, entry, "name");
}

std::string vga_resource_in_words(const VGA_RESOURCE &resource) {
    const OPERABLE *row = find_operable(resource.kind);
    return row != nullptr ? vga_counted(row->noun, 1) + " " + vga_name_of(resource) : "";
}

std::string vga_count_in_words(VGA_OPERABLE kind, NB_ULONG count) {
    const OPERABLE *row = find_operable(kind);
    const NB_USHORT noun = row == nullptr ? NB_USHORT{VGA_MSG_KIND_SESSIONS} : row->noun;
    return (count == 1 ? "1 " : "") + vga_counted(noun, count);
}
