#include "vgadsbst.h"
#include "nofverbs.h"
#include "vgadsadd.h"
#include "vgadsdel.h"
#include "vgadsqry.h"
#include "vgahooks.h"
#include "vganofbd.h"
#include <algorithm>
#include <iterator>

namespace {

using enum VGA_STEP_KIND;
using STEP = VGA_BUILD_STEP;

constexpr NB_USHORT no_chain = VGA_NO_CHAIN;

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
NB_ULONG node_target(const VGA_NODE *node) {
    return node->target;
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
}

/* A build that runs again opens its files again. */
NB_VOID replace_file(NB_ULONG &target, const NAP_OPEN_FILE_VERB &answer, NB_ULONG user_data) {
    NB_ULONG fresh = answer.primary_rc == NAP_OK ? answer.target_handle : 0;
    vga_replace_target(target, fresh, user_data, vga_issue_close_file);
}

NB_VOID keep_domain_target(VGA_NODE *, const NAP_VCB *vcb) {
    auto answer = vga_copy_block<NAP_OPEN_FILE_VERB>(vcb);
    if (answer.primary_rc == NAP_OK) {
        replace_file(gvga_system->domain_target, answer, gvga_system->handle);
        memcpy(gvga_system->config_name, answer.node_name, sizeof(answer.node_name));
    } else if (answer.primary_rc != NAP_STATE_CHECK ||
               answer.secondary_rc != NAP_NO_DOMAIN_CONFIG) {
        vga_query_failed(vcb, gvga_build_module, __LINE__);
    }
}

/* The network file and a TP load file that cannot be opened are done without. */
NB_VOID keep_net_target(VGA_NODE *, const NAP_VCB *vcb) {
    auto answer = vga_copy_block<NAP_OPEN_FILE_VERB>(vcb);
    replace_file(gvga_system->net_target, answer, gvga_system->handle);
}

NB_VOID keep_tp_target(VGA_NODE *node, const NAP_VCB *vcb) {
    auto answer = vga_copy_block<NAP_OPEN_FILE_VERB>(vcb);
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
    if (gvga_hooks.node_list_changed != nullptr) {
        gvga_hooks.node_list_changed(node, VGA_NODE_CHANGED);
    }
}

/* Owners of owned lists. */

template <class Record> Record *owner_behind(const AVL_TREE &tree, const NB_UCHAR *name) {
    return static_cast<Record *>(name == nullptr ? AVL_FIRST(tree)
                                                 : ntl_avl_find_next(&tree, name));
}

const NB_UCHAR *next_local_pu(const VGA_NODE *node, const NB_UCHAR *name) {
    auto *pu = owner_behind<VGA_LOCAL_PU>(node->local_pus, name);
    return pu != nullptr ? pu->name : nullptr;
}

const NB_UCHAR *next_lu62(const VGA_NODE *node, const NB_UCHAR *alias) {
    auto *lu = owner_behind<VGA_LU62>(node->lu_aliases, alias);
    return lu != nullptr ? lu->alias : nullptr;
}

const NB_UCHAR *next_cos(const VGA_NODE *node, const NB_UCHAR *name) {
    auto *cos = owner_behind<VGA_COS>(node->classes_of_service, name);
    return cos != nullptr ? cos->name : nullptr;
}

const NB_UCHAR *next_cn(const VGA_NODE *node, const NB_UCHAR *name) {
    auto *cn = owner_behind<VGA_CN>(node->connection_networks, name);
    return cn != nullptr ? cn->name : nullptr;
}

const NB_UCHAR *next_down_pu(const VGA_NODE *node, const NB_UCHAR *name) {
    auto *pu = owner_behind<VGA_DOWN_PU>(node->down_pus, name);
    return pu != nullptr ? pu->name : nullptr;
}

/* The tables. */

/* clang-format off */
constexpr STEP system_steps[] = {
    {S_OPEN_SYSTEM, OPEN, NAP_OPEN_FILE, NAP_SYSTEM_FILE, VGA_SYSTEM_FILE,
     {S_SYSTEM_MODE}, nullptr, no_target, keep_domain_target, nullptr},
    {S_SYSTEM_MODE, SET_MODE, NAP_SET_PROCESSING_MODE, 0, no_chain,
     {S_REG_SERVER}, with_domain, domain_target, nullptr, nullptr},
    {S_REG_SERVER, REGISTER, NAP_REGISTER_INDICATION_SINK, NAP_SERVER_INDICATION, no_chain,
     {S_NODE_ALL}, nullptr, no_target, nullptr, nullptr},
    {S_NODE_ALL, LIST, NAP_QUERY_NODE_ALL, 0, VGA_NODE_LIST,
     {S_REG_CONFIG, S_OPEN_NET, S_CENTRAL_LOGGING}, nullptr, no_target, nullptr, nullptr},
    {S_REG_CONFIG, REGISTER, NAP_REGISTER_INDICATION_SINK, NAP_CONFIG_COPIES, no_chain,
     {S_USERS}, with_domain, domain_target, nullptr, nullptr},
    {S_USERS, LIST, NAP_QUERY_EMULATOR_USER_DEF, 0, no_chain,
     {S_CPIC}, with_domain, domain_target, nullptr, nullptr},
    {S_CPIC, LIST, NAP_QUERY_CPIC_SIDE_INFO, 0, no_chain,
     {S_RJE}, with_domain, domain_target, nullptr, nullptr},
    {S_RJE, LIST, NAP_QUERY_RJE_WKSTN_DEF, 0, VGA_USERS_LIST,
     {}, with_domain, domain_target, nullptr, nullptr},
    {S_OPEN_NET, OPEN, NAP_OPEN_FILE, NAP_NETWORK_FILE, VGA_NETWORK_FILE,
     {S_NET_MODE}, with_domain, no_target, keep_net_target, nullptr},
    {S_NET_MODE, SET_MODE, NAP_SET_PROCESSING_MODE, 0, no_chain,
     {S_REG_NET}, with_network, net_target, nullptr, nullptr},
    {S_REG_NET, REGISTER, NAP_REGISTER_INDICATION_SINK, NAP_SNA_NET_INDICATION, no_chain,
     {S_NET}, with_network, net_target, nullptr, nullptr},
    {S_NET, LIST, NAP_QUERY_SNA_NET, 0, VGA_NETWORK_LIST,
     {}, with_network, net_target, nullptr, nullptr},
    {S_CENTRAL_LOGGING, RECORD, NAP_QUERY_CENTRAL_LOGGING, 0, no_chain,
     {S_LOG_TYPE}, with_domain, domain_target,
     keep_logging<&VGA_LOGGING_SETTINGS::central_logging>, nullptr},
    {S_LOG_TYPE, RECORD, NAP_QUERY_GLOBAL_LOG_TYPE, 0, no_chain,
     {S_CENTRAL_LOGGER}, with_domain, domain_target,
     keep_logging<&VGA_LOGGING_SETTINGS::global_log_type>, nullptr},
    {S_CENTRAL_LOGGER, RECORD, NAP_QUERY_CENTRAL_LOGGER, 0, VGA_LOGGING,
     {}, with_central_logging, domain_target,
     keep_logging<&VGA_LOGGING_SETTINGS::central_logger>, nullptr},
};

constexpr NB_USHORT REG = NAP_REGISTER_INDICATION_SINK;

constexpr STEP node_steps[] = {
    {N_CONNECT, CONNECT, NAP_CONNECT_NODE, 0, VGA_CONNECT,
     {N_REG_CONFIG, N_OPEN_TP}, nullptr, no_target, vga_keep_node_target, nullptr},
    {N_REG_CONFIG, REGISTER, REG, NAP_CONFIG_COPIES, no_chain,
     {N_MODE}, nullptr, node_target, nullptr, nullptr},
    {N_OPEN_TP, OPEN, NAP_OPEN_FILE, NAP_TP_LOAD_FILE, no_chain,
     {N_TP_LOAD}, nullptr, no_target, keep_tp_target, nullptr},
    {N_TP_LOAD, LIST, NAP_QUERY_TP_LOAD_INFO, 0, VGA_TP_LOAD_LIST,
     {}, with_tp_file, tp_target, nullptr, nullptr},
    {N_MODE, SET_MODE, NAP_SET_PROCESSING_MODE, 0, no_chain,
     {N_LIMITS}, nullptr, node_target, nullptr, nullptr},
    {N_LIMITS, RECORD, NAP_QUERY_NODE_LIMITS, 0, VGA_LIMITS,
     {N_NODE}, nullptr, node_target, keep<&VGA_NODE::limits>, nullptr},
    {N_NODE, RECORD, NAP_QUERY_NODE, 0, VGA_NODE_DATA,
     {N_DEFAULTS, N_REG_DLC, N_COS, N_DLC_TRACE}, nullptr, node_target, keep_node_data, nullptr},

    /* settings and short lists, one behind the other */
    {N_DEFAULTS, RECORD, NAP_QUERY_DEFAULTS, 0, VGA_DEFAULTS,
     {N_TN_DEFAULTS, N_LU_POOL, N_TAMRIX_DEFAULTS}, nullptr, node_target,
     keep<&VGA_NODE::defaults>, nullptr},
    {N_TN_DEFAULTS, RECORD, NAP_QUERY_TN3270_DEFAULTS, 0, no_chain,
     {N_TN_SSL}, nullptr, node_target, keep_tn<&VGA_NODE_TN::defaults>, nullptr},
    {N_TN_SSL, RECORD, NAP_QUERY_TN3270_SSL_LDAP, 0, no_chain,
     {N_TN_SLP}, nullptr, node_target, keep_tn<&VGA_NODE_TN::ssl>, nullptr},
    {N_TN_SLP, RECORD, NAP_QUERY_TN3270_SLP, 0, no_chain,
     {N_TN_EXL}, nullptr, node_target, keep_tn<&VGA_NODE_TN::slp>, nullptr},
    {N_TN_EXL, RECORD, NAP_QUERY_TN3270_EXPRESS_LOGON, 0, VGA_TN_SETTINGS,
     {N_TN_ACCESS}, nullptr, node_target, keep_tn<&VGA_NODE_TN::express_logon>, nullptr},
    {N_TN_ACCESS, LIST, NAP_QUERY_TN3270_ACCESS_DEF, 0, VGA_TN_ACCESS_LIST,
     {N_TN_ASSOC}, nullptr, node_target, nullptr, nullptr},
    {N_TN_ASSOC, LIST, NAP_QUERY_TN3270_ASSOCIATION, 0, VGA_TN_ASSOC_LIST,
     {N_TN_REDIRECT}, nullptr, node_target, nullptr, nullptr},
    {N_TN_REDIRECT, LIST, NAP_QUERY_TN_REDIRECT_DEF, 0, VGA_TN_REDIRECT_LIST,
     {N_USERID_PASSWORD}, nullptr, node_target, nullptr, nullptr},
    {N_USERID_PASSWORD, LIST, NAP_QUERY_USERID_PASSWORD, 0, VGA_USERID_PASSWORD_LIST,
     {N_ACCESS_LIST}, nullptr, node_target, nullptr, nullptr},
    {N_ACCESS_LIST, LIST, NAP_QUERY_SECURITY_ACCESS_LIST, 0, VGA_ACCESS_LIST_LIST,
     {}, nullptr, node_target, nullptr, nullptr},
    {N_LU_POOL, LIST, NAP_QUERY_LU_POOL, 0, VGA_LU_POOL_LIST,
     {N_PRIMARY_LINE}, nullptr, node_target, nullptr, nullptr},
    {N_PRIMARY_LINE, LIST, NAP_QUERY_PRIMARY_LINE, 0, VGA_PRIMARY_LINE_LIST,
     {N_PRIMARY_LU0}, with_primary, node_target, nullptr, nullptr},
    {N_PRIMARY_LU0, LIST, NAP_QUERY_PRIMARY_LU0, 0, VGA_PRIMARY_LU0_LIST,
     {}, with_primary, node_target, nullptr, nullptr},
    {N_TAMRIX_DEFAULTS, RECORD, NAP_QUERY_TAMRIX_APPCIP_DEFAULTS, 0, VGA_TAMRIX_DEFAULTS,
     {N_REG_TAMRIX}, nullptr, node_target, keep<&VGA_NODE::tamrix>, nullptr},
    {N_REG_TAMRIX, REGISTER, REG, NAP_TAMRIX_INDICATION, no_chain,
     {N_TAMRIX_SESS}, nullptr, node_target, nullptr, nullptr},
    {N_TAMRIX_SESS, LIST, NAP_QUERY_TAMRIX_APPCIP, 0, VGA_TAMRIX_SESS_LIST,
     {}, nullptr, node_target, nullptr, nullptr},

    /* connectivity */
    {N_REG_DLC, REGISTER, REG, NAP_DLC_INDICATION, no_chain,
     {N_DLC}, nullptr, node_target, nullptr, nullptr},
    {N_DLC, LIST, NAP_QUERY_DLC, 0, VGA_DLC_LIST,
     {N_DSPU_TEMPLATE}, nullptr, node_target, nullptr, nullptr},
    {N_DSPU_TEMPLATE, LIST, NAP_QUERY_DSPU_TEMPLATE, 0, VGA_DSPU_TEMPLATE_LIST,
     {N_REG_PORT}, with_dspu, node_target, nullptr, nullptr},
    {N_REG_PORT, REGISTER, REG, NAP_PORT_INDICATION, no_chain,
     {N_PORT}, nullptr, node_target, nullptr, nullptr},
    {N_PORT, LIST, NAP_QUERY_PORT, 0, VGA_PORT_LIST,
     {N_REG_LS, N_CN}, nullptr, node_target, nullptr, nullptr},
    {N_CN, LIST, NAP_QUERY_CN, 0, VGA_CN_LIST,
     {N_CN_PORT}, nullptr, node_target, nullptr, nullptr},
    {N_CN_PORT, OWNED_LIST, NAP_QUERY_CN_PORT, 0, VGA_CN_PORT_LIST,
     {}, nullptr, node_target, nullptr, next_cn},
    {N_REG_LS, REGISTER, REG, NAP_LS_INDICATION, no_chain,
     {N_REG_PU}, nullptr, node_target, nullptr, nullptr},
    {N_REG_PU, REGISTER, REG, NAP_PU_INDICATION, no_chain,
     {N_REG_DOWN_PU}, nullptr, node_target, nullptr, nullptr},
    {N_REG_DOWN_PU, REGISTER, REG, NAP_DOWNSTREAM_PU_INDICATION, no_chain,
     {N_LS}, nullptr, node_target, nullptr, nullptr},
    {N_LS, LIST, NAP_QUERY_LS, 0, VGA_LS_LIST,
     {N_PU, N_DOWN_PU}, nullptr, node_target, nullptr, nullptr},
    {N_DOWN_PU, LIST, NAP_QUERY_DOWNSTREAM_PU, 0, VGA_DOWN_PU_LIST,
     {N_REG_DOWN_LU}, with_dspu, node_target, nullptr, nullptr},
    {N_REG_DOWN_LU, REGISTER, REG, NAP_DOWNSTREAM_LU_INDICATION, no_chain,
     {N_DOWN_LU}, with_dspu, node_target, nullptr, nullptr},
    {N_DOWN_LU, OWNED_LIST, NAP_QUERY_DOWNSTREAM_LU, 0, VGA_DOWN_LU_LIST,
     {}, with_dspu, node_target, nullptr, next_down_pu},
    {N_PU, LIST, NAP_QUERY_PU, 0, VGA_PU_LIST,
     {N_REG_DLUR_PU}, nullptr, node_target, nullptr, nullptr},

    /* Without DLUR support these two count as done, and the LUs follow the PU list directly. */
    {N_REG_DLUR_PU, REGISTER, REG, NAP_DLUR_PU_INDICATION, no_chain,
     {N_DLUR_PU}, with_dlur, node_target, nullptr, nullptr},
    {N_DLUR_PU, LIST, NAP_QUERY_DLUR_PU, 0, VGA_DLUR_PU_LIST,
     {N_REG_LOCAL_LU, N_REG_LU03}, with_dlur, node_target, nullptr, nullptr},
    {N_REG_LU03, REGISTER, REG, NAP_LU_0_TO_3_INDICATION, no_chain,
     {N_LU03}, nullptr, node_target, nullptr, nullptr},
    {N_LU03, OWNED_LIST, NAP_QUERY_LU_0_TO_3, 0, VGA_LU03_LIST,
     {N_EXTRA_DATA}, nullptr, node_target, nullptr, next_local_pu},
    {N_EXTRA_DATA, LIST, NAP_QUERY_EXTRA_DATA, 0, VGA_EXTRA_DATA_LIST,
     {}, nullptr, node_target, nullptr, nullptr},

    /* local LUs, modes, partners */
    {N_REG_LOCAL_LU, REGISTER, REG, NAP_LOCAL_LU_INDICATION, no_chain,
     {N_LU62}, nullptr, node_target, nullptr, nullptr},
    {N_LU62, LIST, NAP_QUERY_LOCAL_LU, 0, VGA_LU62_LIST,
     {N_REG_PLU, N_MODE_DEF, N_LS_ROUTING}, nullptr, node_target, nullptr, nullptr},
    {N_LS_ROUTING, LIST, NAP_QUERY_LS_ROUTING, 0, VGA_LS_ROUTING_LIST,
     {}, nullptr, node_target, nullptr, nullptr},
    {N_MODE_DEF, LIST, NAP_QUERY_MODE_DEFINITION, 0, VGA_MODE_DEF_LIST,
     {N_REG_DIR}, nullptr, node_target, nullptr, nullptr},
    {N_REG_DIR, REGISTER, REG, NAP_DIRECTORY_INDICATION, no_chain,
     {N_DIR}, nullptr, node_target, nullptr, nullptr},
    {N_DIR, LIST, NAP_QUERY_DIRECTORY_ENTRY, 0, VGA_DIR_LIST,
     {N_PLU_DEF}, nullptr, node_target, nullptr, nullptr},
    {N_PLU_DEF, LIST, NAP_QUERY_PARTNER_LU_DEFINITION, 0, VGA_PLU_DEF_LIST,
     {N_LU62_TIMEOUT}, nullptr, node_target, nullptr, nullptr},
    {N_LU62_TIMEOUT, LIST, NAP_QUERY_LU62_TIMEOUT, 0, VGA_LU62_TIMEOUT_LIST,
     {}, nullptr, node_target, nullptr, nullptr},
    {N_REG_PLU, REGISTER, REG, NAP_PLU_INDICATION, no_chain,
     {N_REG_MODE}, nullptr, node_target, nullptr, nullptr},
    {N_REG_MODE, REGISTER, REG, NAP_MODE_INDICATION, no_chain,
     {N_LU_PARTNERS, N_LU_MODES, N_LU_PASSWORDS}, nullptr, node_target, nullptr, nullptr},
    {N_LU_PARTNERS, OWNED_LIST, NAP_QUERY_PARTNER_LU, 0, VGA_PLU_LIST,
     {}, nullptr, node_target, nullptr, next_lu62},
    {N_LU_MODES, OWNED_LIST, NAP_QUERY_MODE, 0, VGA_MODE_LIST,
     {}, nullptr, node_target, nullptr, next_lu62},
    {N_LU_PASSWORDS, OWNED_LIST, NAP_QUERY_LU_LU_PASSWORD, 0, VGA_PASSWORD_LIST,
     {}, nullptr, node_target, nullptr, next_lu62},

    /* classes of service and TPs */
    {N_COS, LIST, NAP_QUERY_COS, 0, VGA_COS_LIST,
     {N_COS_NODE_ROW, N_TP_DEF}, nullptr, node_target, nullptr, nullptr},
    {N_COS_NODE_ROW, OWNED_LIST, NAP_QUERY_COS_NODE_ROW, 0, VGA_COS_NODE_ROW_LIST,
     {N_COS_TG_ROW}, nullptr, node_target, nullptr, next_cos},
    {N_COS_TG_ROW, OWNED_LIST, NAP_QUERY_COS_TG_ROW, 0, VGA_COS_TG_ROW_LIST,
     {}, nullptr, node_target, nullptr, next_cos},
    {N_TP_DEF, LIST, NAP_QUERY_TP_DEFINITION, 0, VGA_TP_DEF_LIST,
     {}, nullptr, node_target, nullptr, nullptr},

    /* tracing */
    {N_DLC_TRACE, RECORD, NAP_QUERY_DLC_TRACE, 0, VGA_DLC_TRACE,
     {N_TRACE_TYPE}, nullptr, node_target, keep_trace<&VGA_NODE_TRACE::dlc>, nullptr},
    {N_TRACE_TYPE, RECORD, NAP_QUERY_TRACE_TYPE, 0, VGA_TRACE_TYPE,
     {N_CS_TRACE}, nullptr, node_target, keep_trace<&VGA_NODE_TRACE::type>, nullptr},
    {N_CS_TRACE, RECORD, NAP_QUERY_CS_TRACE, 0, no_chain,
     {N_BACK_CS_TRACE}, nullptr, node_target, keep_trace<&VGA_NODE_TRACE::cs>, nullptr},
    {N_BACK_CS_TRACE, RECORD, NAP_QUERY_BCK_CS_TRACE, 0, VGA_CS_TRACE,
     {N_TN_TRACE}, nullptr, node_target, keep_trace<&VGA_NODE_TRACE::back_cs>, nullptr},
    {N_TN_TRACE, RECORD, NAP_QUERY_TN_SERVER_TRACE, 0, VGA_TN_TRACE,
     {N_SLP_TRACE}, nullptr, node_target, keep_trace<&VGA_NODE_TRACE::tn_server>, nullptr},
    {N_SLP_TRACE, RECORD, NAP_QUERY_TN3270_SLP_TRACE, 0, VGA_SLP_TRACE,
     {}, nullptr, node_target, keep_trace<&VGA_NODE_TRACE::slp>, nullptr},
};

/* clang-format on */

/* How many of the steps satisfy the condition. */
template <size_t Count, class Condition>
constexpr size_t count_steps(const STEP (&steps)[Count], Condition condition) {
    size_t count = 0;
    for (const STEP &step : steps) {
        count += condition(step) ? 1 : 0;
    }
    return count;
}

/* Every number has one step, and every flag one step that clears it: else a build would never end.
 */
template <size_t Count>
constexpr bool complete(const STEP (&steps)[Count], NB_USHORT end, NB_USHORT chains,
                        NB_USHORT cleared_elsewhere) {
    for (NB_USHORT id = 1; id < end; id++) {
        if (count_steps(steps, [id](const STEP &step) { return step.id == id; }) != 1) {
            return false;
        }
    }
    for (NB_USHORT chain = 0; chain < chains; chain++) {
        if (chain != cleared_elsewhere &&
            count_steps(steps, [chain](const STEP &step) { return step.chain == chain; }) != 1) {
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
    auto answer = vga_copy_block<NAP_CONNECT_NODE_VERB>(vcb);
    NB_ULONG fresh = answer.primary_rc == NAP_OK ? answer.target_handle : 0;
    vga_replace_target(node->target, fresh, node->handle, vga_issue_disconnect_node);
    node->refusal = {answer.primary_rc, answer.secondary_rc};
    /* What was under way on another connection will not be answered on this one. */
    std::fill(std::begin(node->class_work), std::end(node->class_work), VGA_CLASS_WORK{});
    if (node->target != 0 &&
        strncmp(gvga_system->config_name, node->name, sizeof(node->name)) == 0) {
        gvga_system->config_target = node->target;
    }
}
