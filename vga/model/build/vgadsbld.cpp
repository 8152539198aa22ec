#include "vgadsbld.h"
#include "buildsteps.h"
#include "globals.h"
#include "hooks.h"
#include "listqueries.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "recordpattern.h"
#include "verblog.h"
#include "vgadsadd.h"
#include "vgadschk.h"
#include "vgadsdel.h"
#include "vgadsutl.h"
#include "vganofbd.h"
#include <algorithm>
#include <array>
#include <span>

namespace {

using enum VGA_STEP_KIND;
using STEP = VGA_BUILD_STEP;

/* A table of steps and what it is run for: the domain (node null) or one node. */
struct BUILD {
    std::span<const STEP> steps;
    VGA_NODE *node;
    VGA_COMPLETION completion;
    NB_ULONG user_data() const { return node != nullptr ? node->handle : gvga_system->handle; }
    NB_USHORT &flag(NB_USHORT chain) const {
        return node != nullptr ? node->startup_status[chain] : gvga_system->startup_status[chain];
    }
};

BUILD system_build(NB_VOID) {
    return {vga_system_steps(), nullptr, vga_build_system};
}
BUILD node_build(VGA_NODE *node) {
    return {vga_node_steps(), node, vga_build_node};
}

/* The engine. */

NB_VOID start_step(const BUILD &build, NB_USHORT id);

const STEP &step_of(const BUILD &build, NB_USHORT id) {
    return *std::find_if(build.steps.begin(), build.steps.end(),
                         [id](const STEP &step) { return step.id == id; });
}

NB_VOID start_steps(const BUILD &build, std::span<const NB_USHORT> ids) {
    for (NB_USHORT id : ids) {
        if (id != VGA_NO_STEP && gvga_exit_code == 0) {
            start_step(build, id);
        }
    }
}

NB_VOID step_done(const BUILD &build, const STEP &step) {
    if (step.chain != VGA_NO_CHAIN) {
        build.flag(step.chain) = 0;
    }
    start_steps(build, step.next);
}

NB_USHORT issue_list_step(const BUILD &build, const STEP &step, const NB_UCHAR *owner,
                          const VGA_LIST_POSITION *last) {
    VGA_LIST_START start = {owner, last, nullptr, NAP_DETAIL};
    return vga_issue_list(*vga_find_list(step.opcode), step.target(build.node), start,
                          build.user_data(), build.completion);
}

/* Lists are read under this many owners at a time, so that the node need not wait for the program
 * between two short ones, and short answers travel together.  Meanwhile the step's flag counts
 * those that are under way.  Owners are asked in their order, so that entries come in order all the
 * same. */
constexpr NB_USHORT owners_at_once = 16;

/* Asks for the list of the owner behind `asked` (null: of the first).  Returns -1 without one, 0
 * when nothing could be queued. */
NB_SHORT issue_next_owner(const BUILD &build, const STEP &step, const NB_UCHAR *asked) {
    const VGA_LIST_OWNER owner = step.next_owner(build.node, asked);
    if (owner.name == nullptr) {
        return -1;
    }
    memcpy(build.node->asked_owners[step.chain], owner.name, owner.name_length);
    return issue_list_step(build, step, owner.asked_by, nullptr) != 0 ? 1 : 0;
}

/* Returns -1 without an owner, 0 when nothing could be queued. */
NB_SHORT issue_owned_lists(const BUILD &build, const STEP &step) {
    NB_USHORT &under_way = build.flag(step.chain);
    NB_SHORT issued = issue_next_owner(build, step, nullptr);
    for (under_way = 0; issued > 0 && ++under_way < owners_at_once;) {
        issued = issue_next_owner(build, step, build.node->asked_owners[step.chain]);
    }
    return issued < 0 && under_way != 0 ? 1 : issued;
}

/* Issues what a step asks for.  An owned list without an owner is complete: -1 then. */
NB_SHORT issue_step(const BUILD &build, const STEP &step) {
    NB_ULONG target = step.target(build.node);
    NB_ULONG data = build.user_data();
    const NB_CHAR *name = build.node != nullptr ? build.node->name : nullptr;
    switch (step.kind) {
    case OPEN:
        return vga_issue_open_file(step.detail, name, data, build.completion);
    case CONNECT:
        return vga_issue_connect_node(name, data, build.completion);
    case SET_MODE:
        return vga_issue_set_proc_mode(target, data, build.completion);
    case REGISTER:
        return vga_issue_register_sink(target, step.detail, data, build.completion);
    case RECORD:
        return vga_issue_query_record(target, step.opcode, data, build.completion);
    case LIST:
        return issue_list_step(build, step, nullptr, nullptr);
    case OWNED_LIST:
        return issue_owned_lists(build, step);
    }
    return 0;
}

NB_VOID start_step(const BUILD &build, NB_USHORT id) {
    const STEP &step = step_of(build, id);
    if (step.wanted != nullptr && step.wanted(build.node) == 0) {
        step_done(build, step);
        return;
    }
    NB_SHORT issued = issue_step(build, step);
    if (issued < 0) {
        step_done(build, step);
    } else if (issued == 0) {
        VGA_BUILD_EXIT_AT(step.line);
    }
}

/* The step that a completed verb belongs to: several steps share an opcode, and differ in what the
 * block's first word says or in their target. */
const STEP *find_step(const BUILD &build, const VGA_PROCESS_STATE &work) {
    auto first_word = [&work] {
        NB_USHORT word;
        memcpy(&word, reinterpret_cast<const NB_UCHAR *>(work.vcb) + sizeof(NAP_VCB), sizeof(word));
        return word;
    };
    for (const STEP &step : build.steps) {
        if (step.opcode == work.vcb->opcode && step.target(build.node) == work.target &&
            (step.detail == 0 || step.detail == first_word())) {
            return &step;
        }
    }
    return nullptr;
}

/* One owner's list is at its end.  Returns 1 when all are. */
NB_USHORT owner_done(const BUILD &build, const STEP &step) {
    NB_USHORT &under_way = build.flag(step.chain);
    under_way -= under_way != 0 ? 1 : 0;
    return under_way == 0;
}

/* Asks for what follows an answer to a list: the entries behind it, or those of a next owner.
 * Returns 1 when the whole list has been asked for and answered. */
NB_USHORT ask_for_more(const BUILD &build, const STEP &step, const VGA_LIST &list,
                       const NAP_VCB *vcb) {
    auto query = nap_copy<NAP_QUERY_LIST>(vcb);
    const NB_UCHAR *owner = step.kind == OWNED_LIST ? query.key : nullptr;
    VGA_LIST_POSITION last;
    vga_find_list_end(list, vcb, &last);
    NB_SHORT issued = -1;
    if (vga_list_goes_on(list, vcb, last)) {
        issued = issue_list_step(build, step, owner, &last) != 0 ? 1 : 0;
    } else if (owner != nullptr) {
        issued = issue_next_owner(build, step, build.node->asked_owners[step.chain]);
    }
    if (issued == 0) {
        VGA_BUILD_EXIT_AT(step.line);
    }
    return issued < 0 && (owner == nullptr || owner_done(build, step));
}

/* An answer to a list.  What follows is asked for first: the node looks for it while records are
 * made of what came.  Returns 1 when the step is done, 0 when it goes on or the build ends. */
NB_USHORT list_answered(const BUILD &build, const STEP &step, const NAP_VCB *vcb) {
    const VGA_LIST &list = *vga_find_list(step.opcode);
    NB_USHORT done = vcb->primary_rc != NAP_OK || ask_for_more(build, step, list, vcb);
    VGA_LIST_POSITION last;
    return gvga_exit_code == 0 && vga_process_list(list, build.node, vcb, step.line, &last) && done;
}

NB_USHORT mode_answered(const STEP &step, const NAP_VCB *vcb) {
    if (vcb->primary_rc == NAP_PARAMETER_CHECK && vcb->secondary_rc == NAP_NO_PERMISSION) {
        gvga_read_only = 1;
    } else if (vcb->primary_rc != NAP_OK) {
        vga_query_failed(vcb, gvga_build_module, step.line);
        return 0;
    }
    return 1;
}

/* Keeps an answer.  Returns 1 when the step is done. */
NB_USHORT step_answered(const BUILD &build, const STEP &step, const NAP_VCB *vcb) {
    switch (step.kind) {
    case LIST:
    case OWNED_LIST:
        return list_answered(build, step, vcb);
    case SET_MODE:
        return mode_answered(step, vcb);
    case OPEN:
    case CONNECT:
        step.store(build.node, vcb);
        break;
    case REGISTER:
        vga_process_register_sink(vcb, step.line);
        break;
    case RECORD:
        if (vcb->primary_rc != NAP_OK) {
            vga_query_failed(vcb, gvga_build_module, step.line);
        } else if (step.store != nullptr) {
            step.store(build.node, vcb);
        }
        break;
    }
    return gvga_exit_code == 0;
}

template <size_t Count>
NB_USHORT check_flags(const NB_USHORT (&flags)[Count], NB_CHAR (*text)[Count + 1]) {
    NB_USHORT clear = 1;
    for (size_t flag = 0; flag < Count; flag++) {
        clear &= flags[flag] == 0;
        if (text != nullptr) {
            (*text)[flag] = flags[flag] != 0 ? '1' : '0';
        }
    }
    if (text != nullptr) {
        (*text)[Count] = '\0';
    }
    return clear;
}

/* Says in the verb log what is outstanding. */
NB_VOID log_flags(const BUILD &build) {
    if (gvga_verb_log == nullptr) {
        return;
    }
    if (build.node != nullptr) {
        NB_CHAR text[VGA_NODE_CHAINS + 1];
        vga_check_node_startup(build.node, &text);
        vga_log_startup(build.node->name, text);
    } else {
        NB_CHAR text[VGA_SYSTEM_CHAINS + 1];
        vga_check_system_startup(&text);
        vga_log_startup(nullptr, text);
    }
}

NB_VOID advance(const BUILD &build, const VGA_PROCESS_STATE &work) {
    const STEP *step = find_step(build, work);
    NB_ASSERT(step != NULL);
    if (step != nullptr && step_answered(build, *step, work.vcb)) {
        step_done(build, *step);
        if (step->chain != VGA_NO_CHAIN) {
            log_flags(build);
        }
    }
}

NB_VOID announce_if_complete(NB_VOID) {
    NB_USHORT complete = 1;
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, [&complete](VGA_NODE &node) {
        complete &= vga_check_node_startup(&node, nullptr);
    });
    if (complete && vga_check_system_startup(nullptr)) {
        gvga_system->built = 1;
        if (gvga_hooks.model_built != nullptr) {
            gvga_hooks.model_built();
        }
    }
}

NB_VOID start_node_builds(NB_VOID) {
    vga_for_each(gvga_system->nodes, &VGA_NODE::links, [](VGA_NODE &node) {
        if (node.connection == VGA_NOT_CONNECTED && gvga_exit_code == 0) {
            vga_start_build_node(&node);
        }
    });
    gvga_system->startup_status[VGA_NODE_BUILDS] = 0;
}

/* What a verb has opened behind its build's back. */
NB_VOID close_late(const VGA_PROCESS_STATE *work) {
    if (work->vcb->primary_rc != NAP_OK) {
        return;
    }
    const NB_USHORT opened_file = work->vcb->opcode == NAP_OPEN_FILE;
    NB_ULONG target = opened_file ? nap_copy<NAP_OPEN_FILE_VERB>(work->vcb).target_handle
                                  : nap_copy<NAP_CONNECT_NODE_VERB>(work->vcb).target_handle;
    opened_file ? vga_issue_close_file(target, work->user_data, vga_no_completion)
                : vga_issue_disconnect_node(target, work->user_data, vga_no_completion);
}

/* The answers to what a build has under way will clear none of the flags of the next one. */
NB_VOID stop_build(const BUILD &build) {
    for (NB_USHORT opcode : {NAP_CONNECT_NODE, NAP_OPEN_FILE}) {
        vga_divert_verbs(opcode, build.user_data(), build.completion, close_late);
    }
    vga_purge_verb_queue(0, 0, nullptr, build.user_data(), build.completion);
    vga_divert_verbs(0, build.user_data(), build.completion, vga_no_completion);
}

NB_VOID restart_chain(std::initializer_list<VGA_SYSTEM_CHAIN> chains, NB_USHORT step) {
    for (VGA_SYSTEM_CHAIN chain : chains) {
        gvga_system->startup_status[chain] = 1;
    }
    start_step(system_build(), step);
}

} // namespace

NB_VOID vga_start_build_system(NB_VOID) {
    start_step(system_build(), S_OPEN_SYSTEM);
}

NB_VOID vga_start_build_node(VGA_NODE *this_node) {
    NB_ASSERT(this_node != NULL);
    if (this_node == nullptr || gvga_closing) {
        return;
    }
    if (this_node->node_state == NAP_NODE_UNCONFIGURED) {
        vga_start_build_unconfigured_node(this_node);
        return;
    }
    vga_stop_build_node(this_node);
    for (NB_USHORT &flag : this_node->startup_status) {
        flag = 1;
    }
    this_node->rebuilt = AVL_FIRST(this_node->ports) != nullptr;
    vga_set_connection(this_node, VGA_CONNECTING);
    start_step(node_build(this_node), N_CONNECT);
}

NB_VOID vga_stop_build_node(VGA_NODE *node) {
    stop_build(node_build(node));
    vga_divert_verbs(NAP_CONNECT_NODE, node->handle, vga_build_unconfigured_node, close_late);
}

NB_VOID vga_start_build_unconfigured_node(VGA_NODE *node) {
    vga_stop_build_node(node);
    vga_set_connection(node, VGA_CONNECTING);
    if (vga_issue_connect_node(node->name, node->handle, vga_build_unconfigured_node) == 0) {
        VGA_BUILD_EXIT();
    }
}

NB_VOID vga_rebuild_system(NB_VOID) {
    stop_build(system_build());
    restart_chain({VGA_SYSTEM_FILE, VGA_NODE_LIST, VGA_NODE_BUILDS, VGA_USERS_LIST,
                   VGA_NETWORK_FILE, VGA_NETWORK_LIST, VGA_LOGGING},
                  S_OPEN_SYSTEM);
}

NB_VOID vga_rebuild_sna_net(NB_VOID) {
    if (gvga_system->net_target != 0) {
        vga_purge_verb_queue(gvga_system->net_target, 0, nullptr, 0, vga_build_system);
    }
    restart_chain({VGA_NETWORK_FILE, VGA_NETWORK_LIST}, S_OPEN_NET);
}

NB_VOID vga_rebuild_logging(NB_VOID) {
    for (NB_USHORT opcode :
         {NAP_QUERY_CENTRAL_LOGGING, NAP_QUERY_GLOBAL_LOG_TYPE, NAP_QUERY_CENTRAL_LOGGER}) {
        vga_purge_verb_queue(0, opcode, nullptr, 0, vga_build_system);
    }
    restart_chain({VGA_LOGGING}, S_CENTRAL_LOGGING);
}

NB_VOID vga_build_system(const VGA_PROCESS_STATE *work) {
    if (gvga_system == nullptr || nba_validate_handle(work->user_data) != gvga_system) {
        return;
    }
    NB_USHORT node_list = gvga_system->startup_status[VGA_NODE_LIST];
    advance(system_build(), *work);
    if (gvga_exit_code == 0 && node_list != 0 && gvga_system->startup_status[VGA_NODE_LIST] == 0) {
        start_node_builds();
    }
    if (gvga_exit_code == 0 && vga_check_system_startup(nullptr)) {
        announce_if_complete();
    }
}

NB_VOID vga_build_node(const VGA_PROCESS_STATE *work) {
    auto *node = static_cast<VGA_NODE *>(nba_validate_handle(work->user_data));
    NB_USHORT of_this_connection =
        node != nullptr &&
        (work->target == 0 || work->target == node->target || work->target == node->tp_target);
    if (!of_this_connection) {
        return;
    }
    NB_USHORT unreachable =
        work->vcb->opcode == NAP_CONNECT_NODE && work->vcb->primary_rc != NAP_OK;
    if (unreachable || vga_node_is_gone(work->vcb)) {
        node->refusal = {work->vcb->primary_rc, work->vcb->secondary_rc};
        vga_set_connection(node, VGA_NOT_CONNECTED);
        vga_drop_node_from_build(node);
        return;
    }
    advance(node_build(node), *work);
    if (gvga_exit_code == 0 && vga_check_node_startup(node, nullptr)) {
        if (node->rebuilt) {
            node->rebuilt = 0;
            vga_check_merged_status(node);
        }
        vga_build_next_action(VGA_PHASE_COMPLETE, node);
    }
}

NB_VOID vga_build_unconfigured_node(const VGA_PROCESS_STATE *work) {
    auto *node = static_cast<VGA_NODE *>(nba_validate_handle(work->user_data));
    if (node != nullptr) {
        vga_keep_node_target(node, work->vcb);
        vga_drop_node_from_build(node);
    }
}

NB_USHORT vga_check_system_startup(NB_CHAR (*text)[VGA_SYSTEM_CHAINS + 1]) {
    return check_flags(gvga_system->startup_status, text);
}

NB_USHORT vga_check_node_startup(const VGA_NODE *node, NB_CHAR (*text)[VGA_NODE_CHAINS + 1]) {
    return check_flags(node->startup_status, text);
}

NB_VOID vga_build_next_action(NB_USHORT kind, VGA_NODE *node) {
    static constexpr struct {
        NB_USHORT kind;
        NB_USHORT steps[3];
    } phases[] = {
        {VGA_PHASE_LOCAL_PUS, {N_LU03}},
        {VGA_PHASE_DOWN_PUS, {N_DOWN_LU}},
        {VGA_PHASE_CONNECTION_NETWORKS, {N_CN_PORT}},
        {VGA_PHASE_LOCAL_LUS, {N_LU_PARTNERS, N_LU_MODES, N_LU_PASSWORDS}},
    };
    NB_ASSERT(node != NULL);
    if (kind == VGA_PHASE_COMPLETE) {
        if (node != nullptr) {
            vga_node_list_changed(node, VGA_NODE_CHANGED);
        }
        announce_if_complete();
        return;
    }
    for (const auto &phase : phases) {
        if (phase.kind == kind && node != nullptr) {
            start_steps(node_build(node), phase.steps);
            return;
        }
    }
    v0_assert(__FILE__, __LINE__, "FALSE");
}

NB_VOID vga_drop_node_from_build(VGA_NODE *node) {
    for (NB_USHORT &flag : node->startup_status) {
        flag = 0;
    }
    vga_build_next_action(VGA_PHASE_COMPLETE, node);
}
