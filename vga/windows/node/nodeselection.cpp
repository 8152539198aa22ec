#include "nodeselection.h"
#include "globals.h"
#include "messages.h"
#include "panes.h"
#include "properties.h"

/* Rules. */

/* A set of states; a state that the node should not have is in none. */
template <class... State> static constexpr NB_UCHAR in(State... states) {
    return static_cast<NB_UCHAR>(((states < 8 ? 1u << states : 0u) | ... | 0u));
}

static constexpr NB_UCHAR always = 0xFF;
static constexpr NB_UCHAR startable = in(NAP_NOT_ACTIVE, NAP_RESETTING);
static constexpr NB_UCHAR stoppable = in(NAP_PENDING_ACTIVE, NAP_ACTIVE);
/* A second stop makes an orderly one immediate. */
static constexpr NB_UCHAR link_stoppable = stoppable | in(NAP_PENDING_INACTIVE);

/* What can be done with one type of line.  `facts` adds what only the record knows; without it
 * the line is defined and has no status. */
struct VGA_NODEW_TYPE_RULE {
    VGA_VIEWER_TYPE type;
    NB_UCHAR start, stop;                /* in which of the statuses */
    NB_UCHAR zoom, status, copy, remove; /* flags */
    NB_VOID (*facts)(const NB_VOID *data, VGA_NODEW_SITUATION *situation);
};

template <class Record> static const Record &as(const NB_VOID *data) {
    return *static_cast<const Record *>(data);
}

static NB_VOID port_facts(const NB_VOID *data, VGA_NODEW_SITUATION *situation) {
    const VGA_PORT &port = as<VGA_PORT>(data);
    situation->defined = port.vcb != nullptr;
    if (port.vcb != nullptr) {
        situation->status = static_cast<NB_UCHAR>(port.vcb->det_data.port_state);
    }
}

static NB_VOID ls_facts(const NB_VOID *data, VGA_NODEW_SITUATION *situation) {
    const VGA_LS &ls = as<VGA_LS>(data);
    situation->status = ls.state;
    situation->defined = !ls.vcb->det_data.dynamic;
}

/* The other PUs are made by their link stations. */
static NB_VOID pu_facts(const NB_VOID *data, VGA_NODEW_SITUATION *situation) {
    const VGA_LOCAL_PU &pu = as<VGA_LOCAL_PU>(data);
    situation->status = pu.vcb->pu_sscp_sess_active;
    situation->defined = pu.ls_entry == nullptr;
}

static NB_VOID lu62_facts(const NB_VOID *data, VGA_NODEW_SITUATION *situation) {
    const VGA_LU62 &lu = as<VGA_LU62>(data);
    situation->defined = lu.parent->cp_lu != &lu;
}

static NB_VOID mode_facts(const NB_VOID *data, VGA_NODEW_SITUATION *situation) {
    situation->status = as<VGA_MODE>(data).vcb->act_sess_count != 0 ? NAP_ACTIVE : NAP_NOT_ACTIVE;
}

static NB_VOID rem_sys_facts(const NB_VOID *data, VGA_NODEW_SITUATION *situation) {
    situation->defined = as<VGA_REM_SYS>(data).defined;
}

static NB_VOID rem_plu_facts(const NB_VOID *data, VGA_NODEW_SITUATION *situation) {
    const VGA_REM_PLU &plu = as<VGA_REM_PLU>(data);
    situation->defined = plu.defined || plu.in_directory;
}

// clang-format off
static const VGA_NODEW_TYPE_RULE rules[] = {
    /* type                     start      stop            zoom status copy remove facts */
    {VGA_VIEWER_LU62,           0,         0,              1, 0, 1, 1, lu62_facts},
    {VGA_VIEWER_MODE,           always,    in(NAP_ACTIVE), 1, 1, 0, 0, mode_facts},
    {VGA_VIEWER_PORT,           startable, stoppable,      1, 1, 1, 1, port_facts},
    {VGA_VIEWER_LS,             startable, link_stoppable, 1, 1, 1, 1, ls_facts},
    {VGA_VIEWER_LOCAL_PU,       startable, stoppable,      1, 1, 1, 1, pu_facts},
    {VGA_VIEWER_DEPLU,          0,         0,              1, 1, 1, 1, nullptr},
    {VGA_VIEWER_DOWN_LU,        0,         0,              1, 1, 1, 1, nullptr},
    {VGA_VIEWER_LS_LEAF,        startable, link_stoppable, 1, 1, 1, 1, ls_facts},
    {VGA_VIEWER_REM_SYS,        0,         0,              1, 0, 1, 1, rem_sys_facts},
    {VGA_VIEWER_REM_PLU,        0,         0,              1, 0, 1, 1, rem_plu_facts},
    {VGA_VIEWER_REM_SESS,       0,         0,              0, 1, 0, 0, nullptr},
    {VGA_VIEWER_REM_PLU_LEAF,   0,         0,              1, 0, 1, 1, rem_plu_facts},
    {VGA_VIEWER_LS_R_TITLE,     0,         0,              0, 0, 0, 0, nullptr},
    {VGA_VIEWER_LS_R,           0,         0,              1, 0, 1, 1, nullptr},
    {VGA_VIEWER_PRIMARY_LINE,   0,         0,              1, 1, 1, 1, nullptr},
    {VGA_VIEWER_PRIMARY_LU0,    0,         0,              1, 1, 1, 1, nullptr},
};
// clang-format on

static const VGA_NODEW_TYPE_RULE *find_rule(NB_SHORT type) {
    for (const VGA_NODEW_TYPE_RULE &rule : rules) {
        if (rule.type == type) {
            return &rule;
        }
    }
    return nullptr;
}

static constexpr NB_UCHAR node_startable = in(NAP_NODE_STOPPED, NAP_NODE_STOPPING);
static constexpr NB_UCHAR node_stoppable = in(NAP_NODE_STARTING, NAP_NODE_ACTIVE);

/* Without a selected line, start and stop are for the node itself. */
static NB_USHORT node_allows(NB_ULONG state, VGA_NODEW_COMMAND command) {
    switch (command) {
    case VGA_NODEW_START:
        return (node_startable & in(state)) != 0;
    case VGA_NODEW_STOP:
        return (node_stoppable & in(state)) != 0;
    default:
        return 0;
    }
}

static NB_USHORT selection_allows(const VGA_NODEW_SITUATION &situation, VGA_NODEW_COMMAND command) {
    const VGA_NODEW_TYPE_RULE *rule = find_rule(situation.type);
    if (rule == nullptr) {
        return 0;
    }
    NB_UCHAR status = in(situation.status);
    NB_USHORT running = situation.node->node_state == NAP_NODE_ACTIVE;
    switch (command) {
    case VGA_NODEW_START:
        return running && (rule->start & status) != 0;
    case VGA_NODEW_STOP:
        return running && (rule->stop & status) != 0;
    case VGA_NODEW_ZOOM:
        return rule->zoom && situation.count == 1;
    case VGA_NODEW_STATUS:
        return rule->status && situation.count == 1;
    case VGA_NODEW_COPY:
        return rule->copy && situation.defined && situation.count == 1;
    case VGA_NODEW_DELETE:
        return rule->remove && situation.defined;
    default:
        return 0;
    }
}

NB_USHORT vga_nodew_allows(const VGA_NODEW_SITUATION &situation, VGA_NODEW_COMMAND command) {
    const VGA_NODEW_COMMAND_ROW &row = gvga_nodew_commands[command];
    const VGA_NODE *node = situation.node;
    const bool there = node != nullptr && node->connection == VGA_CONNECTED;
    if (!there || (situation.read_only && row.changes)) {
        return 0;
    }
    switch (row.scope) {
    case VGA_NODEW_FOR_PANE:
        return situation.pane_current;
    case VGA_NODEW_FOR_SELECTION:
        return situation.type == VGA_VIEWER_SELECT_NONE ? node_allows(node->node_state, command)
                                                        : selection_allows(situation, command);
    case VGA_NODEW_FOR_NODE:
        return (row.states & in(node->node_state)) != 0 &&
               (row.capability == nullptr || node->node_data.*row.capability) &&
               (row.option == VGA_NODEW_NO_OPTION || gvga_supported[row.option]);
    }
    return 0;
}

NB_USHORT vga_nodew_offers(const VGA_NODEW_SITUATION &situation, VGA_NODEW_COMMAND command) {
    NB_USHORT there = gvga_nodew_commands[command].action != nullptr &&
                      (command != VGA_NODEW_ZOOM || vga_nodew_has_properties(situation.type)) &&
                      (command != VGA_NODEW_STATUS || vga_nodew_has_status(situation.type));
    return there != 0 && vga_nodew_allows(situation, command) != 0;
}

/* Reasons. */

static NB_USHORT state_refusal(VGA_NODEW_COMMAND command, NB_USHORT runs, NB_USHORT rests) {
    if (command == VGA_NODEW_START && runs != 0) {
        return VGA_MSG_NODEW_ACTIVE_ALREADY;
    }
    return command == VGA_NODEW_STOP && rests != 0 ? VGA_MSG_NODEW_NOT_ACTIVE
                                                   : VGA_MSG_NODEW_WRONG_STATE;
}

static NB_USHORT start_stop_refusal(const VGA_NODEW_TYPE_RULE &rule,
                                    const VGA_NODEW_SITUATION &situation,
                                    VGA_NODEW_COMMAND command) {
    if ((command == VGA_NODEW_START ? rule.start : rule.stop) == 0) {
        return VGA_MSG_NODEW_NOT_STARTABLE;
    }
    if (situation.node->node_state != NAP_NODE_ACTIVE) {
        return VGA_MSG_NODEW_NODE_NOT_ACTIVE;
    }
    const NB_UCHAR status = in(situation.status);
    return state_refusal(command, (stoppable & status) != 0, (startable & status) != 0);
}

static NB_USHORT selection_refusal(const VGA_NODEW_SITUATION &situation,
                                   VGA_NODEW_COMMAND command) {
    const VGA_NODEW_TYPE_RULE *rule = find_rule(situation.type);
    if (rule == nullptr) {
        return VGA_MSG_NODEW_NOT_FOR_THIS;
    }
    const NB_UCHAR has[VGA_NODEW_TOOL_COUNT] = {
        1, 1, 0, rule->remove, rule->zoom, rule->status, rule->copy};
    if (command >= VGA_NODEW_TOOL_COUNT || has[command] == 0) {
        return VGA_MSG_NODEW_NOT_FOR_THIS;
    }
    if (command == VGA_NODEW_START || command == VGA_NODEW_STOP) {
        return start_stop_refusal(*rule, situation, command);
    }
    /* What is left asks for one line, or for one that an operator defined. */
    const NB_USHORT needs_definition = command == VGA_NODEW_DELETE || command == VGA_NODEW_COPY;
    return needs_definition != 0 && situation.defined == 0 ? VGA_MSG_NODEW_NOT_DEFINED
                                                           : VGA_MSG_NODEW_ONE_ONLY;
}

static NB_USHORT node_refusal(const VGA_NODE &node, VGA_NODEW_COMMAND command) {
    const VGA_NODEW_COMMAND_ROW &row = gvga_nodew_commands[command];
    if (row.option != VGA_NODEW_NO_OPTION && gvga_supported[row.option] == 0) {
        return VGA_MSG_NODEW_NOT_INSTALLED;
    }
    return (row.states & in(node.node_state)) == 0 ? VGA_MSG_NODEW_WRONG_STATE
                                                   : VGA_MSG_NODEW_NOT_SUPPORTED;
}

static NB_USHORT refusal(const VGA_NODEW_SITUATION &situation, VGA_NODEW_COMMAND command) {
    switch (gvga_nodew_commands[command].scope) {
    case VGA_NODEW_FOR_PANE:
        return VGA_MSG_NODEW_MARK_FIRST;
    case VGA_NODEW_FOR_NODE:
        return node_refusal(*situation.node, command);
    case VGA_NODEW_FOR_SELECTION:
        break;
    }
    if (situation.type != VGA_VIEWER_SELECT_NONE) {
        return selection_refusal(situation, command);
    }
    if (command != VGA_NODEW_START && command != VGA_NODEW_STOP) {
        return VGA_MSG_NODEW_SELECT_FIRST;
    }
    const NB_UCHAR state = in(situation.node->node_state);
    return state_refusal(command, (node_stoppable & state) != 0, (node_startable & state) != 0);
}

NB_USHORT vga_nodew_reason(const VGA_NODEW_SITUATION &situation, VGA_NODEW_COMMAND command) {
    if (vga_nodew_offers(situation, command) != 0) {
        return 0;
    }
    if (situation.node == nullptr) {
        return VGA_MSG_NODEW_NO_NODE;
    }
    if (situation.node->connection != VGA_CONNECTED) {
        return VGA_MSG_NODEW_NODE_NOT_CONNECTED;
    }
    if (situation.read_only != 0 && gvga_nodew_commands[command].changes != 0) {
        return VGA_MSG_NODEW_LOOK_ONLY;
    }
    return vga_nodew_allows(situation, command) != 0 ? NB_USHORT(VGA_MSG_NODEW_LATER)
                                                     : refusal(situation, command);
}

/* Selection. */

NB_VOID *vga_nodew_get_selection(const VGA_NODEW_DESC *desc, NB_SHORT *type, NB_LONG *count) {
    const VGA_VIEWER_ROOT *root = vga_nodew_pane_root(desc, desc->current_pane);
    NB_SHORT selected_type = VGA_VIEWER_SELECT_NONE;
    NB_VOID *data = root != nullptr ? vga_viewer_get_selection(root, &selected_type) : nullptr;
    if (type != nullptr) {
        *type = selected_type;
    }
    if (count != nullptr) {
        *count = data != nullptr ? root->select_count : 0;
    }
    return data;
}

VGA_NODEW_SITUATION vga_nodew_situation(const VGA_NODEW_DESC *desc) {
    VGA_NODEW_SITUATION situation{};
    situation.node = vga_nodew_node(desc);
    situation.read_only = gvga_read_only;
    situation.pane_current = desc->current_pane != VGA_NODEW_NO_PANE;
    situation.status = NAP_NOT_ACTIVE;
    situation.defined = 1;
    const NB_VOID *data = vga_nodew_get_selection(desc, &situation.type, &situation.count);
    const VGA_NODEW_TYPE_RULE *rule = find_rule(situation.type);
    if (data != nullptr && rule != nullptr && rule->facts != nullptr) {
        rule->facts(data, &situation);
    }
    return situation;
}

NB_VOID vga_nodew_set_button_states(NB_VOID *window) {
    auto *desc = static_cast<VGA_NODEW_DESC *>(window);
    if (desc == nullptr) {
        return;
    }
    VGA_NODEW_SITUATION situation = vga_nodew_situation(desc);
    for (const VGA_NODEW_COMMAND_ROW &row : gvga_nodew_commands) {
        const NB_USHORT reason = vga_nodew_reason(situation, row.command);
        desc->allowed[row.command] = reason == 0;
        if (reason != 0 && reason != desc->reasons[row.command]) {
            desc->reasons[row.command] = reason;
            vga_nodew_show_reason(desc, row.command, reason);
        }
    }
    vga_nodew_show_allowed(desc);
}

/* Lines. */

VGA_NODEW_DESC *vga_nodew_from_root(const VGA_VIEWER_ROOT *root) {
    return root != nullptr ? static_cast<VGA_NODEW_DESC *>(root->window) : nullptr;
}

NB_VOID vga_nodew_line_disarm(Widget widget) {
    vga_nodew_set_button_states(vga_nodew_from_widget(widget));
}

NB_VOID vga_nodew_no_drag_cb(NB_VOID *, NB_USHORT, NB_USHORT) {}

NB_VOID vga_nodew_arm_line(VGA_VIEWER_ROOT *root, VGA_VIEWER_ITEM *item,
                           const XmDrawnButtonCallbackStruct *cbs) {
    if (root == nullptr) {
        return;
    }
    if (item->fixed) {
        vga_clear_outline_selection(root);
        vga_viewer_clear_selection(root);
        return;
    }
    vga_viewer_arm_select(root, item, cbs);
}

NB_VOID vga_nodew_ls_r_title_arm_cb(NB_VOID *data, XmDrawnButtonCallbackStruct *cbs) {
    auto *lu = static_cast<VGA_LU62 *>(data);
    vga_nodew_arm_line(&lu->parent->local_lu_root, &lu->routing_title, cbs);
}

NB_VOID vga_nodew_activate_line(const VGA_VIEWER_ROOT *root, const VGA_VIEWER_ITEM *item,
                                const XmDrawnButtonCallbackStruct *cbs) {
    VGA_NODEW_DESC *desc = vga_nodew_from_root(root);
    if (desc != nullptr && !item->fixed && vga_viewer_is_open(cbs)) {
        vga_nodew_run(desc, VGA_NODEW_ZOOM);
    }
}
