#include "completions.h"
#include "defineblock.h"
#include "definitions.h"
#include "entry.h"
#include "globals.h"
#include "hooks.h"
#include "listqueries.h"
#include "nbproblem.h"
#include "nodedefinition.h"
#include "nodestate.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "schemas.h"
#include "sessionlimits.h"
#include "takeout.h"
#include "vgadsbld.h"
#include "vgadsutl.h"
#include <algorithm>
#include <array>

namespace {

using records::Schema;
using records::Settings;

constexpr size_t longest_entry = [] {
    size_t most = 0;
    for (const Schema *schema : records::all_schemas) {
        most = std::max(most, schema->overlay_size());
    }
    return most;
}();

/* An entry of any schema, or no more than the key of one. */
using ENTRY = std::array<NB_UCHAR, std::max(longest_entry, size_t{NAP_MAX_KEY + 2})>;

const NB_UCHAR *bytes_of(const NAP_VCB *vcb) {
    return reinterpret_cast<const NB_UCHAR *>(vcb);
}

/* Before the node has said what it is, nothing can be added; its lists are read behind that.  Only
 * how programs are started has a list that does not wait. */
NB_USHORT comes_with_list(const VGA_LIST &list, const VGA_NODE *node) {
    return node != nullptr && node->startup_status[VGA_NODE_DATA] != 0 &&
           list.opcode != NAP_QUERY_TP_LOAD_INFO;
}

/* The entry as the model has it; of a new resource with a status that says nothing. */
VGA_KNOWN read_known(const VGA_LIST &list, VGA_NODE *node, const NB_UCHAR *block, ENTRY &entry) {
    entry.fill(0);
    records::take_key(*list.schema, block, entry.data());
    const VGA_KNOWN known = list.find(node, entry.data() + records::KEY_OFFSET);
    if (known.record == nullptr) {
        records::set_initial_fields(list.schema->status, entry.data());
        return known;
    }
    NB_USHORT length;
    memcpy(&length, known.entry, sizeof(length));
    memcpy(entry.data(), known.entry, std::min<size_t>(length, list.schema->overlay_size()));
    return known;
}

NB_VOID report_not_added(const VGA_LIST &list, const VGA_NODE *node, VGA_ENTRY_RESULT result,
                         const NB_UCHAR *entry) {
    if (result == VGA_ENTRY_NO_MEMORY) {
        nba_pd_print_exception(NB_PD_NO_MEMORY, 0, "x ca", list.opcode,
                               static_cast<NB_INT>(list.key_length()), entry + records::KEY_OFFSET);
    } else if (!vga_is_list_outstanding(node, list.opcode)) {
        vga_report_owner_missing(list, entry);
    }
}

/* Puts an entry in and returns its record, or null behind a report. */
NB_VOID *put_in(const VGA_LIST &list, const VGA_DEFINITION &own, VGA_NODE *node,
                const NB_UCHAR *entry) {
    if (own.define != nullptr) {
        return own.define(node, entry);
    }
    VGA_ENTRY_RESULT result = list.add(node, entry);
    if (result != VGA_ENTRY_ADDED) {
        report_not_added(list, node, result, entry);
        return nullptr;
    }
    return list.find(node, entry + records::KEY_OFFSET).record;
}

NB_VOID unread(const VGA_DEFINITION &own, VGA_NODE *node, const ENTRY &entry) {
    if (own.unread != nullptr) {
        own.unread(node, entry.data());
    }
}

NB_VOID define(const VGA_LIST &list, VGA_NODE *node, const NAP_VCB *vcb) {
    const Schema &schema = *list.schema;
    const VGA_DEFINITION &own = vga_find_definition(&schema);
    ENTRY old;
    ENTRY entry;
    if (comes_with_list(list, node)) {
        return;
    }
    const VGA_KNOWN known = read_known(list, node, bytes_of(vcb), old);
    if (!records::make_entry(schema, bytes_of(vcb), schema.define_size, old.data(), entry.data())) {
        nba_pd_print_exception(NB_PD_BAD_LIST, NB_PD_BAD_LIST_LONG, "x i i i", vcb->opcode, 0, 0,
                               1);
        return;
    }
    records::hide_secrets(schema.fields, entry.data());
    if (own.fill != nullptr) {
        own.fill(entry.data());
    }
    NB_VOID *record = put_in(list, own, node, entry.data());
    if (record == nullptr) {
        unread(own, node, entry);
        return;
    }
    if (own.joined != nullptr) {
        own.joined(record, known.record != nullptr ? old.data() : nullptr);
    }
    vga_record_changed(record, known.record != nullptr ? VGA_RECORD_CHANGED : VGA_RECORD_ADDED);
}

NB_VOID remove(const VGA_LIST &list, VGA_NODE *node, const NAP_VCB *vcb) {
    ENTRY entry;
    entry.fill(0);
    records::take_key(*list.schema, bytes_of(vcb), entry.data());
    if (list.remove(node, entry.data() + records::KEY_OFFSET) != 0) {
        return;
    }
    if (!vga_is_list_outstanding(node, list.opcode)) {
        vga_report_unknown(vcb->opcode, list, entry.data() + records::KEY_OFFSET);
    }
    unread(vga_find_definition(list.schema), node, entry);
}

/* Settings are kept as the answer to their query would be. */
NB_VOID set(const Settings &settings, VGA_NODE *node, const NAP_VCB *vcb) {
    constexpr size_t longest = [] {
        size_t most = 0;
        for (const Settings &row : records::settings) {
            most = std::max<size_t>(most, row.block_size);
        }
        return most;
    }();
    alignas(NAP_VCB) NB_UCHAR answer[longest];
    memcpy(answer, vcb, settings.block_size);
    auto *header = reinterpret_cast<NAP_VCB *>(answer);
    header->opcode = settings.query;
    header->primary_rc = NAP_OK;
    if (vga_keep_record(node, header) == 0) {
        return;
    }
    if (settings.set == NAP_SET_CENTRAL_LOGGING) {
        gvga_system->logging.central_logger = {}; /* without central logging there is none */
        vga_rebuild_logging();
    }
    vga_record_changed(node != nullptr ? static_cast<NB_VOID *>(node) : gvga_system,
                       VGA_RECORD_CHANGED);
}

/* What a node is decides what it has: all of it is read again.  One without a configuration has one
 * now, and is stopped. */
NB_VOID define_node(VGA_NODE *node, const NAP_VCB *vcb) {
    records::take_node_definition(nap_copy<NAP_DEFINE_NODE_VERB>(vcb), node->node_data,
                                  node->limits);
    if (node->node_state == NAP_NODE_UNCONFIGURED) {
        node->node_state = NAP_NODE_STOPPED;
        node->node_data.info.node_state = NAP_NODE_STOPPED;
    }
    if (node->cp_lu != nullptr) {
        vga_record_changed(node->cp_lu, VGA_RECORD_GONE);
        vga_take_out(node->cp_lu);
    }
    vga_start_build_node(node);
    vga_node_list_changed(node, VGA_NODE_CHANGED);
}

NB_VOID set_role(const NAP_VCB *vcb, VGA_SERVER_ROLE role) {
    auto verb = nap_copy<NAP_NAME_VERB>(vcb);
    auto *node = static_cast<VGA_NODE *>(ntl_avl_find(&gvga_system->nodes, verb.key));
    if (node != nullptr && node->role != role) {
        node->role = role;
        vga_node_list_changed(node, VGA_NODE_CHANGED);
    }
}

/* The answer stands for the first state; the others are told. */
NB_VOID start_or_stop(VGA_NODE *node, const NAP_VCB *vcb) {
    if (vcb->opcode == NAP_INIT_NODE && node->node_state == NAP_NODE_STOPPED) {
        vga_process_init_node(node, NAP_NODE_STARTING);
    } else if (vcb->opcode == NAP_STOP_NODE &&
               (node->node_state == NAP_NODE_STARTING || node->node_state == NAP_NODE_ACTIVE)) {
        vga_process_stop_node(node, NAP_NODE_STOPPING);
    }
}

NB_VOID complete_of_node(VGA_NODE *node, const VGA_PROCESS_STATE *work, const NAP_VERB &verb) {
    if (verb.kind == NAP_KIND_START || verb.kind == NAP_KIND_STOP) {
        start_or_stop(node, work->vcb);
    } else if (verb.kind == NAP_KIND_LIMIT) {
        vga_process_session_limit(work);
    } else if (verb.opcode == NAP_DEFINE_NODE) {
        define_node(node, work->vcb);
    }
}

NB_VOID complete_of_domain(const NAP_VCB *vcb) {
    if (vcb->opcode == NAP_ADD_BACKUP) {
        set_role(vcb, VGA_ROLE_BACKUP);
    } else if (vcb->opcode == NAP_DELETE_BACKUP) {
        set_role(vcb, VGA_ROLE_NONE);
    }
}

NB_VOID complete(VGA_NODE *node, const VGA_PROCESS_STATE *work) {
    const NAP_VERB &verb = *nap_find_verb(work->vcb->opcode);
    const VGA_LIST *list = vga_find_changed_list(verb.opcode);
    const Settings *settings = records::settings_by_verb(verb.opcode);
    if (list != nullptr) {
        verb.kind == NAP_KIND_DEFINE ? define(*list, node, work->vcb)
                                     : remove(*list, node, work->vcb);
    } else if (settings != nullptr) {
        set(*settings, node, work->vcb);
    } else if (node != nullptr) {
        complete_of_node(node, work, verb);
    } else {
        complete_of_domain(work->vcb);
    }
}

NB_VOID process_copy(const VGA_PROCESS_STATE *work) {
    if (nba_validate_handle(work->user_data) != nullptr) {
        vga_verb_completed(work);
    }
}

} // namespace

NB_USHORT vga_is_verb_of_domain(NB_USHORT opcode) {
    const VGA_LIST *list = vga_find_changed_list(opcode);
    const Settings *settings = records::settings_by_verb(opcode);
    return opcode == NAP_ADD_BACKUP || opcode == NAP_DELETE_BACKUP ||
           (list != nullptr && list->of_domain) || (settings != nullptr && settings->of_domain);
}

NB_VOID vga_verb_completed(const VGA_PROCESS_STATE *work) {
    const NAP_VERB *verb = nap_find_verb(work->vcb->opcode);
    if (verb == nullptr || !verb->changes || !vga_verb_succeeded(work->vcb)) {
        return;
    }
    if (vga_is_verb_of_domain(verb->opcode)) {
        complete(nullptr, work);
    } else if (VGA_NODE *node = vga_find_node_of_target(work->target)) {
        complete(node, work);
    }
}

NB_VOID vga_process_node_config_ind(const VGA_PROCESS_STATE *work) {
    process_copy(work);
}

NB_VOID vga_process_system_config_ind(const VGA_PROCESS_STATE *work) {
    process_copy(work);
}

NB_VOID vga_process_node_manage_ind(const VGA_PROCESS_STATE *work) {
    process_copy(work);
}

NB_VOID vga_process_add_backup(const VGA_PROCESS_STATE *work) {
    vga_verb_completed(work);
}

NB_VOID vga_process_delete_backup(const VGA_PROCESS_STATE *work) {
    vga_verb_completed(work);
}
