#include "commands.h"
#include "linerules.h"
#include "messages.h"

static NB_USHORT in(NB_UCHAR states, NB_ULONG state) {
    return state < 8 && (states & VGA_STATE_SET(state)) != 0;
}

static NB_USHORT refuses_node(const VGA_SITUATION &situation, const VGA_COMMAND_ROW &row) {
    const VGA_NODE &node = *situation.node;
    if (row.capability != nullptr && node.connection == VGA_CONNECTED &&
        node.node_data.*row.capability == 0) {
        return VGA_MSG_NODEW_NOT_SUPPORTED;
    }
    if (situation.read_only != 0 && row.changes != 0) {
        return VGA_MSG_NODEW_LOOK_ONLY;
    }
    if (row.states != VGA_ANY_STATE && node.connection != VGA_CONNECTED) {
        return VGA_MSG_NODEW_NODE_NOT_CONNECTED;
    }
    return row.scope != VGA_FOR_WINDOW || row.states == VGA_ANY_STATE ||
                   in(row.states, node.node_state)
               ? 0
               : VGA_MSG_NODEW_WRONG_STATE;
}

static NB_USHORT is_written(const VGA_COMMAND_ROW &row) {
    return row.opens != VGA_NO_DIALOG ? vga_is_written(row.opens) : row.action != nullptr;
}

NB_USHORT vga_refusal(const VGA_SITUATION &situation, const VGA_COMMAND_ROW &row) {
    if (row.scope == VGA_FOR_LIST) {
        return situation.list_current != 0 ? 0 : VGA_MSG_NODEW_MARK_FIRST;
    }
    if (situation.of_domain == 0 && situation.node == nullptr) {
        return VGA_MSG_NODEW_NO_NODE;
    }
    if (row.offered != nullptr && *row.offered == 0) {
        return VGA_MSG_NODEW_NOT_INSTALLED;
    }
    if (is_written(row) == 0) {
        return VGA_MSG_NODEW_LATER;
    }
    const NB_USHORT reason = situation.node != nullptr ? refuses_node(situation, row)
                             : situation.read_only != 0 && row.changes != 0
                                 ? NB_USHORT{VGA_MSG_NODEW_LOOK_ONLY}
                                 : NB_USHORT{0};
    const NB_USHORT peculiar = row.refuses != nullptr ? row.refuses(situation) : NB_USHORT{0};
    /* That a thing can never be asked for comes before why it cannot be now. */
    if (peculiar == VGA_MSG_NODEW_NOT_FOR_THIS || peculiar == VGA_MSG_NODEW_NOT_STARTABLE ||
        peculiar == VGA_MSG_NODEW_NOT_DEFINED || peculiar == VGA_MSG_NODEW_LATER) {
        return peculiar;
    }
    if (reason != 0 || peculiar != 0) {
        return reason != 0 ? reason : peculiar;
    }
    return row.scope == VGA_FOR_SELECTION && row.refuses == nullptr && situation.count == 0
               ? VGA_MSG_NODEW_SELECT_FIRST
               : 0;
}

NB_USHORT vga_refuses_start(const VGA_SITUATION &situation) {
    return situation.start_refusal;
}

NB_USHORT vga_refuses_stop(const VGA_SITUATION &situation) {
    return situation.stop_refusal;
}

/* What a dialog shows: of one line, by the dialog of its type. */
static NB_USHORT refuses_dialog(const VGA_SITUATION &situation, NB_USHORT dialog_id) {
    if (dialog_id == VGA_NO_DIALOG) {
        return VGA_MSG_NODEW_NOT_FOR_THIS;
    }
    if (vga_is_written(dialog_id) == 0) {
        return VGA_MSG_NODEW_LATER;
    }
    return situation.count == 1 ? 0 : VGA_MSG_NODEW_ONE_ONLY;
}

NB_USHORT vga_refuses_zoom(const VGA_SITUATION &situation) {
    if (situation.count == 0) {
        return VGA_MSG_NODEW_SELECT_FIRST;
    }
    const VGA_LINE_RULE *rule = vga_line_rule(situation.type);
    return refuses_dialog(situation, rule != nullptr ? vga_properties_of(*rule, situation.record)
                                                     : VGA_NO_DIALOG);
}

NB_USHORT vga_refuses_status(const VGA_SITUATION &situation) {
    if (situation.count == 0) {
        return VGA_MSG_NODEW_SELECT_FIRST;
    }
    const VGA_LINE_RULE *rule = vga_line_rule(situation.type);
    return refuses_dialog(situation, rule != nullptr ? rule->status : VGA_NO_DIALOG);
}

static NB_USHORT refuses_undefined(const VGA_LINE_RULE &rule, const VGA_SITUATION &situation) {
    const bool defined = rule.is_defined == nullptr || situation.record == nullptr ||
                         rule.is_defined(situation.record) != 0;
    return defined ? 0 : VGA_MSG_NODEW_NOT_DEFINED;
}

NB_USHORT vga_refuses_copy(const VGA_SITUATION &situation) {
    const VGA_LINE_RULE *rule = vga_line_rule(situation.type);
    if (situation.count != 0 && (rule == nullptr || rule->can_copy == 0)) {
        return VGA_MSG_NODEW_NOT_FOR_THIS;
    }
    const NB_USHORT reason = vga_refuses_zoom(situation);
    return reason != 0 ? reason : refuses_undefined(*rule, situation);
}

NB_USHORT vga_refuses_delete(const VGA_SITUATION &situation) {
    if (situation.count == 0) {
        return VGA_MSG_NODEW_SELECT_FIRST;
    }
    const VGA_LINE_RULE *rule = vga_line_rule(situation.type);
    if (rule == nullptr || rule->can_delete == 0) {
        return VGA_MSG_NODEW_NOT_FOR_THIS;
    }
    /* Of several, those that stay are named in the question. */
    return situation.count == 1 ? refuses_undefined(*rule, situation) : NB_USHORT{0};
}
