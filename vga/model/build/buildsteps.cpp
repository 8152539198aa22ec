#include "buildsteps.h"
#include "hooks.h"
#include "listqueries.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vgadsutl.h"
#include "vganofbd.h"
#include <algorithm>
#include <iterator>

namespace {

using enum VGA_STEP_KIND;

/* Targets and conditions. */

NB_ULONG no_target(const VGA_NODE *) {
    return 0;
}
NB_ULONG domain_target(const VGA_NODE *) {
    return gvga_system->domain_target;
}
NB_ULONG net_target(const VGA_NODE *) {
    return gvga_system->net_target;
}
NB_ULONG tp_target(const VGA_NODE *node) {
    return node->tp_target;
}

NB_USHORT with_domain(const VGA_NODE *) {
    return gvga_system->domain_target != 0;
}
NB_USHORT with_network(const VGA_NODE *) {
    return gvga_system->net_target != 0;
}
NB_USHORT with_tp_file(const VGA_NODE *node) {
    return node->tp_target != 0;
}
NB_USHORT with_dlur(const VGA_NODE *node) {
    return node->node_data.dlur_support && node->node_data.info.node_type != NAP_LEN_NODE;
}
NB_USHORT with_dspu(const VGA_NODE *node) {
    return node->node_data.dspu_support;
}
NB_USHORT with_primary(const VGA_NODE *node) {
    return node->node_data.primary_support;
}
NB_USHORT with_central_logging(const VGA_NODE *) {
    return gvga_system->logging.central_logging.enabled;
}

/* What is kept of an answer. */

/* Copies the whole answer into a field of the node. */
template <auto Field> NB_VOID keep(VGA_NODE *node, const NAP_VCB *vcb) {
    memcpy(&(node->*Field), vcb, sizeof(node->*Field));
}

template <auto Field> NB_VOID keep_trace(VGA_NODE *node, const NAP_VCB *vcb) {
    memcpy(&(node->tracing.*Field), vcb, sizeof(node->tracing.*Field));
}

template <auto Field> NB_VOID keep_tn(VGA_NODE *node, const NAP_VCB *vcb) {
    memcpy(&(node->tn.*Field), vcb, sizeof(node->tn.*Field));
}

template <auto Field> NB_VOID keep_logging(VGA_NODE *, const NAP_VCB *vcb) {
    memcpy(&(gvga_system->logging.*Field), vcb, sizeof(gvga_system->logging.*Field));
    vga_record_changed(gvga_system, VGA_RECORD_CHANGED);
}

/* A build that runs again opens its files again. */
NB_VOID replace_file(NB_ULONG &target, const NAP_OPEN_FILE_VERB &answer, NB_ULONG user_data) {
    NB_ULONG fresh = answer.primary_rc == NAP_OK ? answer.target_handle : 0;
    vga_replace_target(target, fresh, user_data, vga_issue_close_file);
}

NB_VOID keep_domain_target(VGA_NODE *, const NAP_VCB *vcb) {
    auto answer = nap_copy<NAP_OPEN_FILE_VERB>(vcb);
    if (answer.primary_rc == NAP_OK) {
        replace_file(gvga_system->domain_target, answer, gvga_system->handle);
        memcpy(gvga_system->config_name, answer.node_name, sizeof(answer.node_name));
        vga_record_changed(gvga_system, VGA_RECORD_CHANGED);
    } else if (answer.primary_rc != NAP_STATE_CHECK ||
               answer.secondary_rc != NAP_NO_DOMAIN_CONFIG) {
        vga_query_failed(vcb, gvga_build_module, __LINE__);
    }
}

/* The network file and a TP load file that cannot be opened are done without. */
NB_VOID keep_net_target(VGA_NODE *, const NAP_VCB *vcb) {
    auto answer = nap_copy<NAP_OPEN_FILE_VERB>(vcb);
    replace_file(gvga_system->net_target, answer, gvga_system->handle);
}

NB_VOID keep_tp_target(VGA_NODE *node, const NAP_VCB *vcb) {
    auto answer = nap_copy<NAP_OPEN_FILE_VERB>(vcb);
    replace_file(node->tp_target, answer, node->handle);
}

template <class Port>
NB_VOID need_fake_port(Port *(*init)(VGA_NODE *), Port *(*insert)(Port *), VGA_NODE *node) {
    Port *port = init(node);
    if (port == nullptr) {
        VGA_BUILD_EXIT();
        return;
    }
    insert(port);
}

NB_VOID keep_node_data(VGA_NODE *node, const NAP_VCB *vcb) {
    memcpy(&node->node_data, vcb, sizeof(node->node_data));
    node->vcb->info = node->node_data.info;
    vga_server_follows(node);
    node->node_state = node->node_data.info.node_state;
    vga_create_fake_cp_lu(node);
    if (vga_init_sna_modes(node) == 0 || vga_init_sna_cos(node) == 0) {
        VGA_BUILD_EXIT();
    }
    if (with_dlur(node)) {
        need_fake_port(vga_init_vga_dlur_fake_port, vga_insert_vga_dlur_fake_port, node);
    }
    if (with_primary(node)) {
        need_fake_port(vga_init_vga_primary_line_fake_port, vga_insert_vga_primary_line_fake_port,
                       node);
    }
    vga_node_list_changed(node, VGA_NODE_CHANGED);
}

/* Owners of owned lists. */

/* Owners are walked by their names, and asked for by what their lists have them under: an LU may
 * give its alias to another while the lists are read. */
template <class Record, AVL_TREE VGA_NODE::*Owners, auto AskedBy = &Record::name>
VGA_LIST_OWNER next_owner(const VGA_NODE *node, const NB_UCHAR *name) {
    auto *owner = static_cast<Record *>(
        name == nullptr ? AVL_FIRST(node->*Owners) : ntl_avl_find_next(&(node->*Owners), name));
    if (owner == nullptr) {
        return {};
    }
    return {owner->name, sizeof(owner->name), owner->*AskedBy};
}

constexpr auto next_local_pu = next_owner<VGA_LOCAL_PU, &VGA_NODE::local_pus>;
constexpr auto next_down_pu = next_owner<VGA_DOWN_PU, &VGA_NODE::down_pus>;
constexpr auto next_cn = next_owner<VGA_CN, &VGA_NODE::connection_networks>;
constexpr auto next_cos = next_owner<VGA_COS, &VGA_NODE::classes_of_service>;
constexpr auto next_lu62 = next_owner<VGA_LU62, &VGA_NODE::lus, &VGA_LU62::alias>;

/* The tables. */

#define STEP(step) .id = step, .line = __LINE__

/* clang-format off */
constexpr VGA_BUILD_STEP system_steps[] = {
    {STEP(S_OPEN_SYSTEM), .kind = OPEN, .opcode = NAP_OPEN_FILE, .detail = NAP_SYSTEM_FILE,
     .chain = VGA_SYSTEM_FILE, .next = {S_SYSTEM_MODE}, .target = no_target,
     .store = keep_domain_target},
    {STEP(S_SYSTEM_MODE), .kind = SET_MODE, .opcode = NAP_SET_PROCESSING_MODE,
     .next = {S_REG_SERVER}, .wanted = with_domain, .target = domain_target},
    {STEP(S_REG_SERVER), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_SERVER_INDICATION, .next = {S_NODE_ALL}, .target = no_target},
    {STEP(S_NODE_ALL), .kind = LIST, .opcode = NAP_QUERY_NODE_ALL, .chain = VGA_NODE_LIST,
     .next = {S_REG_CONFIG, S_OPEN_NET, S_CENTRAL_LOGGING}, .target = no_target},
    {STEP(S_REG_CONFIG), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_CONFIG_COPIES, .next = {S_USERS}, .wanted = with_domain,
     .target = domain_target},
    {STEP(S_USERS), .kind = LIST, .opcode = NAP_QUERY_EMULATOR_USER_DEF, .next = {S_CPIC},
     .wanted = with_domain, .target = domain_target},
    {STEP(S_CPIC), .kind = LIST, .opcode = NAP_QUERY_CPIC_SIDE_INFO, .next = {S_RJE},
     .wanted = with_domain, .target = domain_target},
    {STEP(S_RJE), .kind = LIST, .opcode = NAP_QUERY_RJE_WKSTN_DEF, .chain = VGA_USERS_LIST,
     .wanted = with_domain, .target = domain_target},
    {STEP(S_OPEN_NET), .kind = OPEN, .opcode = NAP_OPEN_FILE, .detail = NAP_NETWORK_FILE,
     .chain = VGA_NETWORK_FILE, .next = {S_NET_MODE}, .wanted = with_domain, .target = no_target,
     .store = keep_net_target},
    {STEP(S_NET_MODE), .kind = SET_MODE, .opcode = NAP_SET_PROCESSING_MODE, .next = {S_REG_NET},
     .wanted = with_network, .target = net_target},
    {STEP(S_REG_NET), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_SNA_NET_INDICATION, .next = {S_NET}, .wanted = with_network,
     .target = net_target},
    {STEP(S_NET), .kind = LIST, .opcode = NAP_QUERY_SNA_NET, .chain = VGA_NETWORK_LIST,
     .wanted = with_network, .target = net_target},
    {STEP(S_CENTRAL_LOGGING), .kind = RECORD, .opcode = NAP_QUERY_CENTRAL_LOGGING,
     .next = {S_LOG_TYPE}, .wanted = with_domain, .target = domain_target,
     .store = keep_logging<&VGA_LOGGING_SETTINGS::central_logging>},
    {STEP(S_LOG_TYPE), .kind = RECORD, .opcode = NAP_QUERY_GLOBAL_LOG_TYPE,
     .next = {S_CENTRAL_LOGGER}, .wanted = with_domain, .target = domain_target,
     .store = keep_logging<&VGA_LOGGING_SETTINGS::global_log_type>},
    {STEP(S_CENTRAL_LOGGER), .kind = RECORD, .opcode = NAP_QUERY_CENTRAL_LOGGER,
     .chain = VGA_LOGGING, .wanted = with_central_logging, .target = domain_target,
     .store = keep_logging<&VGA_LOGGING_SETTINGS::central_logger>},
};

constexpr VGA_BUILD_STEP node_steps[] = {
    {STEP(N_CONNECT), .kind = CONNECT, .opcode = NAP_CONNECT_NODE, .chain = VGA_CONNECT,
     .next = {N_REG_CONFIG, N_OPEN_TP}, .target = no_target, .store = vga_keep_node_target},
    {STEP(N_REG_CONFIG), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_CONFIG_COPIES, .next = {N_MODE}},
    {STEP(N_OPEN_TP), .kind = OPEN, .opcode = NAP_OPEN_FILE, .detail = NAP_TP_LOAD_FILE,
     .next = {N_TP_LOAD}, .target = no_target, .store = keep_tp_target},
    {STEP(N_TP_LOAD), .kind = LIST, .opcode = NAP_QUERY_TP_LOAD_INFO, .chain = VGA_TP_LOAD_LIST,
     .wanted = with_tp_file, .target = tp_target},
    {STEP(N_MODE), .kind = SET_MODE, .opcode = NAP_SET_PROCESSING_MODE, .next = {N_LIMITS}},
    {STEP(N_LIMITS), .kind = RECORD, .opcode = NAP_QUERY_NODE_LIMITS, .chain = VGA_LIMITS,
     .next = {N_NODE}, .store = keep<&VGA_NODE::limits>},
    {STEP(N_NODE), .kind = RECORD, .opcode = NAP_QUERY_NODE, .chain = VGA_NODE_DATA,
     .next = {N_DEFAULTS, N_REG_DLC, N_COS, N_DLC_TRACE}, .store = keep_node_data},

    /* settings and short lists, one behind the other */
    {STEP(N_DEFAULTS), .kind = RECORD, .opcode = NAP_QUERY_DEFAULTS, .chain = VGA_DEFAULTS,
     .next = {N_TN_DEFAULTS, N_LU_POOL, N_TAMRIX_DEFAULTS}, .store = keep<&VGA_NODE::defaults>},
    {STEP(N_TN_DEFAULTS), .kind = RECORD, .opcode = NAP_QUERY_TN3270_DEFAULTS, .next = {N_TN_SSL},
     .store = keep_tn<&VGA_NODE_TN::defaults>},
    {STEP(N_TN_SSL), .kind = RECORD, .opcode = NAP_QUERY_TN3270_SSL_LDAP, .next = {N_TN_SLP},
     .store = keep_tn<&VGA_NODE_TN::ssl>},
    {STEP(N_TN_SLP), .kind = RECORD, .opcode = NAP_QUERY_TN3270_SLP, .next = {N_TN_EXL},
     .store = keep_tn<&VGA_NODE_TN::slp>},
    {STEP(N_TN_EXL), .kind = RECORD, .opcode = NAP_QUERY_TN3270_EXPRESS_LOGON,
     .chain = VGA_TN_SETTINGS, .next = {N_TN_ACCESS},
     .store = keep_tn<&VGA_NODE_TN::express_logon>},
    {STEP(N_TN_ACCESS), .kind = LIST, .opcode = NAP_QUERY_TN3270_ACCESS_DEF,
     .chain = VGA_TN_ACCESS_LIST, .next = {N_TN_ASSOC}},
    {STEP(N_TN_ASSOC), .kind = LIST, .opcode = NAP_QUERY_TN3270_ASSOCIATION,
     .chain = VGA_TN_ASSOC_LIST, .next = {N_TN_REDIRECT}},
    {STEP(N_TN_REDIRECT), .kind = LIST, .opcode = NAP_QUERY_TN_REDIRECT_DEF,
     .chain = VGA_TN_REDIRECT_LIST, .next = {N_USERID_PASSWORD}},
    {STEP(N_USERID_PASSWORD), .kind = LIST, .opcode = NAP_QUERY_USERID_PASSWORD,
     .chain = VGA_USERID_PASSWORD_LIST, .next = {N_ACCESS_LIST}},
    {STEP(N_ACCESS_LIST), .kind = LIST, .opcode = NAP_QUERY_SECURITY_ACCESS_LIST,
     .chain = VGA_ACCESS_LIST_LIST},
    {STEP(N_LU_POOL), .kind = LIST, .opcode = NAP_QUERY_LU_POOL, .chain = VGA_LU_POOL_LIST,
     .next = {N_PRIMARY_LINE}},
    {STEP(N_PRIMARY_LINE), .kind = LIST, .opcode = NAP_QUERY_PRIMARY_LINE,
     .chain = VGA_PRIMARY_LINE_LIST, .next = {N_PRIMARY_LU0}, .wanted = with_primary},
    {STEP(N_PRIMARY_LU0), .kind = LIST, .opcode = NAP_QUERY_PRIMARY_LU0,
     .chain = VGA_PRIMARY_LU0_LIST, .wanted = with_primary},
    {STEP(N_TAMRIX_DEFAULTS), .kind = RECORD, .opcode = NAP_QUERY_TAMRIX_APPCIP_DEFAULTS,
     .chain = VGA_TAMRIX_DEFAULTS, .next = {N_REG_TAMRIX}, .store = keep<&VGA_NODE::tamrix>},
    {STEP(N_REG_TAMRIX), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_TAMRIX_INDICATION, .next = {N_TAMRIX_SESS}},
    {STEP(N_TAMRIX_SESS), .kind = LIST, .opcode = NAP_QUERY_TAMRIX_APPCIP,
     .chain = VGA_TAMRIX_SESS_LIST},

    /* connectivity */
    {STEP(N_REG_DLC), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_DLC_INDICATION, .next = {N_DLC}},
    {STEP(N_DLC), .kind = LIST, .opcode = NAP_QUERY_DLC, .chain = VGA_DLC_LIST,
     .next = {N_DSPU_TEMPLATE}},
    {STEP(N_DSPU_TEMPLATE), .kind = LIST, .opcode = NAP_QUERY_DSPU_TEMPLATE,
     .chain = VGA_DSPU_TEMPLATE_LIST, .next = {N_REG_PORT}, .wanted = with_dspu},
    {STEP(N_REG_PORT), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_PORT_INDICATION, .next = {N_PORT}},
    {STEP(N_PORT), .kind = LIST, .opcode = NAP_QUERY_PORT, .chain = VGA_PORT_LIST,
     .next = {N_REG_LS, N_CN}},
    {STEP(N_CN), .kind = LIST, .opcode = NAP_QUERY_CN, .chain = VGA_CN_LIST, .next = {N_CN_PORT}},
    {STEP(N_CN_PORT), .kind = OWNED_LIST, .opcode = NAP_QUERY_CN_PORT, .chain = VGA_CN_PORT_LIST,
     .next_owner = next_cn},
    {STEP(N_REG_LS), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_LS_INDICATION, .next = {N_REG_PU}},
    {STEP(N_REG_PU), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_PU_INDICATION, .next = {N_REG_DOWN_PU}},
    {STEP(N_REG_DOWN_PU), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_DOWNSTREAM_PU_INDICATION, .next = {N_LS}},
    {STEP(N_LS), .kind = LIST, .opcode = NAP_QUERY_LS, .chain = VGA_LS_LIST,
     .next = {N_PU, N_DOWN_PU}},
    {STEP(N_DOWN_PU), .kind = LIST, .opcode = NAP_QUERY_DOWNSTREAM_PU, .chain = VGA_DOWN_PU_LIST,
     .next = {N_REG_DOWN_LU}, .wanted = with_dspu},
    {STEP(N_REG_DOWN_LU), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_DOWNSTREAM_LU_INDICATION, .next = {N_DOWN_LU}, .wanted = with_dspu},
    {STEP(N_DOWN_LU), .kind = OWNED_LIST, .opcode = NAP_QUERY_DOWNSTREAM_LU,
     .chain = VGA_DOWN_LU_LIST, .wanted = with_dspu, .next_owner = next_down_pu},
    {STEP(N_PU), .kind = LIST, .opcode = NAP_QUERY_PU, .chain = VGA_PU_LIST,
     .next = {N_REG_DLUR_PU}},

    /* Without DLUR support these two count as done, and the LUs follow the PU list directly. */
    {STEP(N_REG_DLUR_PU), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_DLUR_PU_INDICATION, .next = {N_DLUR_PU}, .wanted = with_dlur},
    {STEP(N_DLUR_PU), .kind = LIST, .opcode = NAP_QUERY_DLUR_PU, .chain = VGA_DLUR_PU_LIST,
     .next = {N_REG_LOCAL_LU, N_REG_LU03}, .wanted = with_dlur},
    {STEP(N_REG_LU03), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_LU_0_TO_3_INDICATION, .next = {N_LU03}},
    {STEP(N_LU03), .kind = OWNED_LIST, .opcode = NAP_QUERY_LU_0_TO_3, .chain = VGA_LU03_LIST,
     .next = {N_EXTRA_DATA}, .next_owner = next_local_pu},
    {STEP(N_EXTRA_DATA), .kind = LIST, .opcode = NAP_QUERY_EXTRA_DATA,
     .chain = VGA_EXTRA_DATA_LIST},

    /* local LUs, modes, partners */
    {STEP(N_REG_LOCAL_LU), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_LOCAL_LU_INDICATION, .next = {N_LU62}},
    {STEP(N_LU62), .kind = LIST, .opcode = NAP_QUERY_LOCAL_LU, .chain = VGA_LU62_LIST,
     .next = {N_REG_PLU, N_MODE_DEF, N_LS_ROUTING}},
    {STEP(N_LS_ROUTING), .kind = LIST, .opcode = NAP_QUERY_LS_ROUTING,
     .chain = VGA_LS_ROUTING_LIST},
    {STEP(N_MODE_DEF), .kind = LIST, .opcode = NAP_QUERY_MODE_DEFINITION,
     .chain = VGA_MODE_DEF_LIST, .next = {N_REG_DIR}},
    {STEP(N_REG_DIR), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_DIRECTORY_INDICATION, .next = {N_DIR}},
    {STEP(N_DIR), .kind = LIST, .opcode = NAP_QUERY_DIRECTORY_ENTRY, .chain = VGA_DIR_LIST,
     .next = {N_PLU_DEF}},
    {STEP(N_PLU_DEF), .kind = LIST, .opcode = NAP_QUERY_PARTNER_LU_DEFINITION,
     .chain = VGA_PLU_DEF_LIST, .next = {N_LU62_TIMEOUT}},
    {STEP(N_LU62_TIMEOUT), .kind = LIST, .opcode = NAP_QUERY_LU62_TIMEOUT,
     .chain = VGA_LU62_TIMEOUT_LIST},
    {STEP(N_REG_PLU), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_PLU_INDICATION, .next = {N_REG_MODE}},
    {STEP(N_REG_MODE), .kind = REGISTER, .opcode = NAP_REGISTER_INDICATION_SINK,
     .detail = NAP_MODE_INDICATION, .next = {N_LU_PARTNERS, N_LU_MODES, N_LU_PASSWORDS}},
    {STEP(N_LU_PARTNERS), .kind = OWNED_LIST, .opcode = NAP_QUERY_PARTNER_LU,
     .chain = VGA_PLU_LIST, .next_owner = next_lu62},
    {STEP(N_LU_MODES), .kind = OWNED_LIST, .opcode = NAP_QUERY_MODE, .chain = VGA_MODE_LIST,
     .next_owner = next_lu62},
    {STEP(N_LU_PASSWORDS), .kind = OWNED_LIST, .opcode = NAP_QUERY_LU_LU_PASSWORD,
     .chain = VGA_PASSWORD_LIST, .next_owner = next_lu62},

    /* classes of service and TPs */
    {STEP(N_COS), .kind = LIST, .opcode = NAP_QUERY_COS, .chain = VGA_COS_LIST,
     .next = {N_COS_NODE_ROW, N_TP_DEF}},
    {STEP(N_COS_NODE_ROW), .kind = OWNED_LIST, .opcode = NAP_QUERY_COS_NODE_ROW,
     .chain = VGA_COS_NODE_ROW_LIST, .next = {N_COS_TG_ROW}, .next_owner = next_cos},
    {STEP(N_COS_TG_ROW), .kind = OWNED_LIST, .opcode = NAP_QUERY_COS_TG_ROW,
     .chain = VGA_COS_TG_ROW_LIST, .next_owner = next_cos},
    {STEP(N_TP_DEF), .kind = LIST, .opcode = NAP_QUERY_TP_DEFINITION, .chain = VGA_TP_DEF_LIST},

    /* tracing */
    {STEP(N_DLC_TRACE), .kind = RECORD, .opcode = NAP_QUERY_DLC_TRACE, .chain = VGA_DLC_TRACE,
     .next = {N_TRACE_TYPE}, .store = keep_trace<&VGA_NODE_TRACE::dlc>},
    {STEP(N_TRACE_TYPE), .kind = RECORD, .opcode = NAP_QUERY_TRACE_TYPE, .chain = VGA_TRACE_TYPE,
     .next = {N_CS_TRACE}, .store = keep_trace<&VGA_NODE_TRACE::type>},
    {STEP(N_CS_TRACE), .kind = RECORD, .opcode = NAP_QUERY_CS_TRACE, .next = {N_BACK_CS_TRACE},
     .store = keep_trace<&VGA_NODE_TRACE::cs>},
    {STEP(N_BACK_CS_TRACE), .kind = RECORD, .opcode = NAP_QUERY_BCK_CS_TRACE,
     .chain = VGA_CS_TRACE, .next = {N_TN_TRACE}, .store = keep_trace<&VGA_NODE_TRACE::back_cs>},
    {STEP(N_TN_TRACE), .kind = RECORD, .opcode = NAP_QUERY_TN_SERVER_TRACE, .chain = VGA_TN_TRACE,
     .next = {N_SLP_TRACE}, .store = keep_trace<&VGA_NODE_TRACE::tn_server>},
    {STEP(N_SLP_TRACE), .kind = RECORD, .opcode = NAP_QUERY_TN3270_SLP_TRACE,
     .chain = VGA_SLP_TRACE, .store = keep_trace<&VGA_NODE_TRACE::slp>},
};

/* clang-format on */
#undef STEP

/* How many of the steps satisfy the condition. */
template <size_t Count, class Condition>
constexpr size_t count_steps(const VGA_BUILD_STEP (&steps)[Count], Condition condition) {
    size_t count = 0;
    for (const VGA_BUILD_STEP &step : steps) {
        count += condition(step) ? 1 : 0;
    }
    return count;
}

/* Every number has one step, and every flag one step that clears it: else a build would never end.
 */
template <size_t Count>
constexpr bool complete(const VGA_BUILD_STEP (&steps)[Count], NB_USHORT end, NB_USHORT chains,
                        NB_USHORT cleared_elsewhere) {
    for (NB_USHORT id = 1; id < end; id++) {
        if (count_steps(steps, [id](const VGA_BUILD_STEP &step) { return step.id == id; }) != 1) {
            return false;
        }
    }
    for (NB_USHORT chain = 0; chain < chains; chain++) {
        if (chain != cleared_elsewhere && count_steps(steps, [chain](const VGA_BUILD_STEP &step) {
                                              return step.chain == chain;
                                          }) != 1) {
            return false;
        }
    }
    return Count == end - 1U;
}

static_assert(complete(system_steps, S_END, VGA_SYSTEM_CHAINS, VGA_NODE_BUILDS));
static_assert(complete(node_steps, N_END, VGA_NODE_CHAINS, VGA_NO_CHAIN));

} // namespace

std::span<const VGA_BUILD_STEP> vga_system_steps(NB_VOID) {
    return system_steps;
}

std::span<const VGA_BUILD_STEP> vga_node_steps(NB_VOID) {
    return node_steps;
}

NB_VOID vga_keep_node_target(VGA_NODE *node, const NAP_VCB *vcb) {
    auto answer = nap_copy<NAP_CONNECT_NODE_VERB>(vcb);
    NB_ULONG fresh = answer.primary_rc == NAP_OK ? answer.target_handle : 0;
    vga_replace_target(node->target, fresh, node->handle, vga_issue_disconnect_node);
    node->refusal = {answer.primary_rc, answer.secondary_rc};
    node->lost_at = fresh != 0 ? 0 : node->lost_at;
    vga_set_connection(node, fresh != 0 ? VGA_CONNECTED : VGA_NOT_CONNECTED);
    /* What was under way on another connection will not be answered on this one. */
    std::fill(std::begin(node->class_work), std::end(node->class_work), VGA_CLASS_WORK{});
    if (node->target != 0 &&
        strncmp(gvga_system->config_name, node->name, sizeof(node->name)) == 0) {
        gvga_system->config_target = node->target;
    }
}
