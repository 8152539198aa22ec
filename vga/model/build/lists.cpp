/* The lists of the node: how the entries of each become records, and records are found again. */
#include "globals.h"
#include "hooks.h"
#include "listqueries.h"
#include "nofcopy.h"
#include "opcodeindex.h"
#include "partners.h"
#include "schemas.h"
#include "takeout.h"
#include "vgadsadd.h"
#include "vgadsutl.h"
#include <cstring>

namespace {

template <class Data> const Data *as_entry(const NB_UCHAR *entry) {
    return reinterpret_cast<const Data *>(entry);
}

/* The common end of every entry: a record was made (or there was no memory) and goes in. */
template <class Record>
VGA_ENTRY_RESULT insert(Record *record, Record *(*insert_record)(Record *)) {
    return record != nullptr && insert_record(record) != nullptr ? VGA_ENTRY_ADDED
                                                                 : VGA_ENTRY_NO_MEMORY;
}

/* What a constructor takes and makes: its owner, and the entry as a packed record. */
template <class Function> struct CONSTRUCTOR;
template <class Record, class Owner, class Entry>
struct CONSTRUCTOR<Record *(*)(Owner *, const Entry *)> {
    typedef Record RECORD;
    typedef Owner OWNER;
    typedef Entry ENTRY;
};
template <auto Init> using ENTRY_OF = typename CONSTRUCTOR<decltype(Init)>::ENTRY;
template <auto Init> using RECORD_OF = typename CONSTRUCTOR<decltype(Init)>::RECORD;

/* Records under the domain, under the node of the list, and under an owner of the node whose name
 * stands at an offset of the entry. */

template <auto Init, auto Insert>
VGA_ENTRY_RESULT add_to_system(VGA_NODE *, const NB_UCHAR *entry) {
    return insert(Init(gvga_system, as_entry<ENTRY_OF<Init>>(entry)), Insert);
}

template <auto Init, auto Insert>
VGA_ENTRY_RESULT add_to_node(VGA_NODE *node, const NB_UCHAR *entry) {
    return insert(Init(node, as_entry<ENTRY_OF<Init>>(entry)), Insert);
}

template <auto Find, size_t Offset, auto Init, auto Insert>
VGA_ENTRY_RESULT add_to_owner(VGA_NODE *node, const NB_UCHAR *entry) {
    auto *owner = Find(node, entry + Offset);
    return owner == nullptr ? VGA_ENTRY_SKIPPED
                            : insert(Init(owner, as_entry<ENTRY_OF<Init>>(entry)), Insert);
}

/* The record with an entry's key: in an index of the domain, of the node, or of an owner whose name
 * leads the key.  Keys of records are the bytes of the entry's. */

template <auto Init, auto Tree> RECORD_OF<Init> *in_system(const VGA_NODE *, const NB_UCHAR *key) {
    return static_cast<RECORD_OF<Init> *>(ntl_avl_find(&(gvga_system->*Tree), key));
}

template <auto Init, auto Tree>
RECORD_OF<Init> *in_node(const VGA_NODE *node, const NB_UCHAR *key) {
    return static_cast<RECORD_OF<Init> *>(ntl_avl_find(&(node->*Tree), key));
}

template <auto Init, auto Find, auto Tree, size_t Skip>
RECORD_OF<Init> *in_owner(const VGA_NODE *node, const NB_UCHAR *key) {
    auto *owner = Find(node, key);
    return owner != nullptr
               ? static_cast<RECORD_OF<Init> *>(ntl_avl_find(&(owner->*Tree), key + Skip))
               : nullptr;
}

template <class Record> VGA_KNOWN known(Record *record) {
    return record != nullptr ? VGA_KNOWN{record, reinterpret_cast<NB_UCHAR *>(record->vcb)}
                             : VGA_KNOWN{nullptr, nullptr};
}

template <auto Find> VGA_KNOWN find(VGA_NODE *node, const NB_UCHAR *key) {
    return known(Find(node, key));
}

template <class Record> NB_USHORT take_out(Record *record) {
    if (record == nullptr) {
        return 0;
    }
    vga_record_changed(record, VGA_RECORD_GONE);
    vga_take_out(record);
    return 1;
}

template <auto Find> NB_USHORT remove(VGA_NODE *node, const NB_UCHAR *key) {
    return take_out(Find(node, key));
}

/* What is found and added in a way of its own. */

constexpr size_t name8 = 8;

VGA_NODE *find_node(const VGA_NODE *, const NB_UCHAR *key) {
    return static_cast<VGA_NODE *>(ntl_avl_find(&gvga_system->nodes, key));
}

VGA_LU03 *find_lu03(const VGA_NODE *node, const NB_UCHAR *key) {
    return vga_find_lu03(node, key, key + name8);
}

VGA_EXTRA_DATA *find_extra_data(const VGA_NODE *node, const NB_UCHAR *key) {
    VGA_LU03 *lu = find_lu03(node, key);
    return lu != nullptr ? lu->extra_data : nullptr;
}

VGA_TAMRIX_APPCIP_SESS *find_tamrix_sess(const VGA_NODE *node, const NB_UCHAR *bytes) {
    NB_USHORT number;
    memcpy(&number, bytes, sizeof(number));
    NB_ULONG key = number;
    return static_cast<VGA_TAMRIX_APPCIP_SESS *>(ntl_avl_find(&node->tamrix_numbers, &key));
}

/* A partner LU that is only used has no definition. */
VGA_REM_PLU *find_plu_def(const VGA_NODE *node, const NB_UCHAR *key) {
    VGA_REM_PLU *plu = vga_find_rem_plu(node, key, NAP_DIR_LU);
    return plu != nullptr && plu->defined ? plu : nullptr;
}

NB_USHORT is_pool_itself(const NB_UCHAR *key) {
    return vga_blank_name(key + name8, name8);
}

VGA_POOL_LU *find_pool_lu(const VGA_NODE *node, const NB_UCHAR *key) {
    return vga_find_pool_lu(node, key, key + name8);
}

VGA_KNOWN find_lu_pool(VGA_NODE *node, const NB_UCHAR *key) {
    return is_pool_itself(key) ? known(vga_find_pool(node, key)) : known(find_pool_lu(node, key));
}

NB_USHORT remove_lu_pool(VGA_NODE *node, const NB_UCHAR *key) {
    return is_pool_itself(key) ? take_out(vga_find_pool(node, key))
                               : take_out(find_pool_lu(node, key));
}

VGA_ENTRY_RESULT add_node(VGA_NODE *, const NB_UCHAR *entry) {
    return insert(vga_init_vga_node(as_entry<NAP_NODE_ALL_DATA>(entry)), vga_insert_vga_node);
}

/* The entry of a pool stands before those of its LUs; a pool that is known only by them is made
 * from the first, with nothing of the LU's own. */
VGA_ENTRY_RESULT add_lu_pool(VGA_NODE *node, const NB_UCHAR *entry) {
    NAP_LU_POOL_DATA data = nap_copy<NAP_LU_POOL_DATA>(entry);
    NB_USHORT pool_itself = vga_blank_name(data.lu_name, sizeof(data.lu_name));
    VGA_POOL *pool = vga_find_pool(node, data.pool_name);
    if (pool == nullptr || pool_itself) {
        memset(data.lu_name, 0x40, sizeof(data.lu_name));
        memset(data.pu_name, 0x40, sizeof(data.pu_name));
        data.lu_active = data.lu_in_use = 0;
        VGA_POOL *fresh = vga_init_vga_pool(node, &data);
        pool = fresh != nullptr ? vga_insert_vga_pool(fresh) : nullptr;
    }
    if (pool == nullptr) {
        return VGA_ENTRY_NO_MEMORY;
    }
    return pool_itself ? VGA_ENTRY_ADDED
                       : insert(vga_init_vga_pool_lu(pool, as_entry<NAP_LU_POOL_DATA>(entry)),
                                vga_insert_vga_pool_lu);
}

VGA_ENTRY_RESULT add_extra_data(VGA_NODE *node, const NB_UCHAR *entry) {
    NAP_EXTRA_DATA_DATA data = nap_copy<NAP_EXTRA_DATA_DATA>(entry);
    VGA_LU03 *lu = vga_find_lu03(node, data.pu_name, data.lu_name);
    if (lu == nullptr) {
        return VGA_ENTRY_SKIPPED;
    }
    return insert(vga_init_vga_extra_data(lu, as_entry<NAP_EXTRA_DATA_DATA>(entry)),
                  vga_insert_vga_extra_data);
}

/* A mode in use also tells of the partner. */
VGA_ENTRY_RESULT add_mode(VGA_NODE *node, const NB_UCHAR *entry) {
    NAP_MODE_DATA data = nap_copy<NAP_MODE_DATA>(entry);
    VGA_LU62 *lu = vga_find_lu62_by_alias(node, data.lu_alias);
    if (lu == nullptr) {
        return VGA_ENTRY_SKIPPED;
    }
    NAP_PLU_DATA partner = {};
    partner.overlay_size = sizeof(partner);
    memcpy(partner.lu_alias, data.lu_alias, sizeof(partner.lu_alias));
    memcpy(partner.plu_alias, data.plu_alias, sizeof(partner.plu_alias));
    memcpy(partner.fqplu_name, data.fqplu_name, sizeof(partner.fqplu_name));
    memcpy(partner.fq_cp_name, data.fq_cp_name, sizeof(partner.fq_cp_name));
    VGA_PLU_KEY key;
    memcpy(key.plu_alias, data.plu_alias, sizeof(key.plu_alias));
    memcpy(key.fqplu_name, data.fqplu_name, sizeof(key.fqplu_name));
    if (ntl_avl_find(&lu->partners, &key) == nullptr &&
        insert(vga_init_vga_plu(lu, &partner), vga_insert_vga_plu) != VGA_ENTRY_ADDED) {
        return VGA_ENTRY_NO_MEMORY;
    }
    return insert(vga_init_vga_mode(lu, as_entry<NAP_MODE_DATA>(entry)), vga_insert_vga_mode);
}

VGA_ENTRY_RESULT add_plu(VGA_NODE *node, const NB_UCHAR *entry) {
    NAP_PLU_DATA data = nap_copy<NAP_PLU_DATA>(entry);
    VGA_LU62 *lu = vga_find_lu62_by_alias(node, data.lu_alias);
    if (lu == nullptr) {
        return VGA_ENTRY_SKIPPED;
    }
    return insert(vga_init_vga_plu(lu, as_entry<NAP_PLU_DATA>(entry)), vga_insert_vga_plu);
}

/* A password belongs to a local LU, though the node has one index of all. */
VGA_ENTRY_RESULT add_password(VGA_NODE *node, const NB_UCHAR *entry) {
    auto data = nap_copy<NAP_LU_LU_PASSWORD_DATA>(entry);
    return vga_find_lu62_by_alias(node, data.lu_alias) == nullptr
               ? VGA_ENTRY_SKIPPED
               : add_to_node<vga_init_vga_slsec_def, vga_insert_vga_slsec_def>(node, entry);
}

/* A definition goes to the partner wherever the directory or the sessions have put it, else under
 * the placeholder. */
VGA_ENTRY_RESULT add_plu_def(VGA_NODE *node, const NB_UCHAR *entry) {
    NAP_PLU_DEF_DATA data = nap_copy<NAP_PLU_DEF_DATA>(entry);
    VGA_REM_PLU *known = vga_need_rem_plu(node, data.fqplu_name, NAP_DIR_LU);
    if (known == nullptr) {
        return VGA_ENTRY_NO_MEMORY;
    }
    VGA_REM_PLU *plu =
        vga_init_vga_rem_plu(known->parent, as_entry<NAP_PLU_DEF_DATA>(entry), NAP_DIR_LU);
    if (plu == nullptr) {
        return VGA_ENTRY_NO_MEMORY;
    }
    plu->defined = 1;
    return insert(plu, vga_insert_vga_rem_plu);
}

/* clang-format off */
#define OF_SYSTEM(type, tree) \
    .of_domain = 1, .add = add_to_system<vga_init_##type, vga_insert_##type>, \
    .find = find<in_system<vga_init_##type, &VGA_SYSTEM::tree>>, \
    .remove = remove<in_system<vga_init_##type, &VGA_SYSTEM::tree>>
#define OF_NODE(type, tree) \
    .add = add_to_node<vga_init_##type, vga_insert_##type>, \
    .find = find<in_node<vga_init_##type, &VGA_NODE::tree>>, \
    .remove = remove<in_node<vga_init_##type, &VGA_NODE::tree>>
/* Under the owner that a field of the entry names, in an index of the node's, too. */
#define OF_OWNER(from, name, owner_of, type, tree) \
    .owner = {name, field(records::from, name).offset, field(records::from, name).width}, \
    .add = add_to_owner<owner_of, field(records::from, name).offset, vga_init_##type, vga_insert_##type>, \
    .find = find<in_node<vga_init_##type, &VGA_NODE::tree>>, \
    .remove = remove<in_node<vga_init_##type, &VGA_NODE::tree>>
/* The same, in an index of the owner's only. */
#define BELOW_OWNER(from, name, owner_of, type, tree) \
    .owner = {name, field(records::from, name).offset, field(records::from, name).width}, \
    .add = add_to_owner<owner_of, field(records::from, name).offset, vga_init_##type, vga_insert_##type>, \
    .find = find<in_owner<vga_init_##type, owner_of, &tree, field(records::from, name).width>>, \
    .remove = remove<in_owner<vga_init_##type, owner_of, &tree, field(records::from, name).width>>
/* In a way of its own. */
#define BY(add_it, find_it) .add = add_it, .find = find<find_it>, .remove = remove<find_it>
#define BY_OWNER(from, name, add_it, find_it) \
    .owner = {name, field(records::from, name).offset, field(records::from, name).width}, BY(add_it, find_it)

constexpr auto mode_of_lu = in_owner<vga_init_vga_mode, vga_find_lu62_by_alias, &VGA_LU62::modes, name8>;
constexpr auto partner_of_lu = in_owner<vga_init_vga_plu, vga_find_lu62_by_alias, &VGA_LU62::partners, name8>;
constexpr auto password_of_lu = in_node<vga_init_vga_slsec_def, &VGA_NODE::sl_security>;
constexpr auto add_tamrix_sess = add_to_node<vga_init_vga_tamrix_appcip_sess, vga_insert_vga_tamrix_appcip_sess>;

constexpr VGA_LIST lists[] = {
    {.opcode = NAP_QUERY_NODE_ALL, .schema = &records::domain_node, .of_domain = 1, BY(add_node, find_node)},
    {.opcode = NAP_QUERY_SNA_NET, .schema = &records::domain_server, OF_SYSTEM(vga_sna_net_node, net_nodes)},
    {.opcode = NAP_QUERY_DLC, .schema = &records::dlc, OF_NODE(vga_dlc, dlcs)},
    {.opcode = NAP_QUERY_PORT, .schema = &records::port, OF_OWNER(port, "dlc_name", vga_find_dlc, vga_port, ports)},
    {.opcode = NAP_QUERY_LS, .schema = &records::ls, OF_OWNER(ls, "port_name", vga_find_port, vga_ls, link_stations)},
    {.opcode = NAP_QUERY_CN, .schema = &records::cn, OF_NODE(vga_cn, connection_networks)},
    {.opcode = NAP_QUERY_CN_PORT, .schema = &records::cn_port, BELOW_OWNER(cn_port, "fqcn_name", vga_find_cn, vga_cn_port, VGA_CN::ports)},
    {.opcode = NAP_QUERY_PU, .schema = &records::pu, OF_NODE(vga_local_pu, local_pus)},
    {.opcode = NAP_QUERY_DOWNSTREAM_PU, .schema = &records::down_pu, OF_NODE(vga_down_pu, down_pus)},
    {.opcode = NAP_QUERY_DLUR_PU, .schema = &records::pu, OF_NODE(vga_local_pu, local_pus)},
    {.opcode = NAP_QUERY_LOCAL_LU, .schema = &records::local_lu, OF_NODE(vga_lu62, lus)},
    {.opcode = NAP_QUERY_LU_0_TO_3, .schema = &records::lu03, BELOW_OWNER(lu03, "pu_name", vga_find_local_pu, vga_lu03, VGA_LOCAL_PU::lus)},
    {.opcode = NAP_QUERY_DOWNSTREAM_LU, .schema = &records::down_lu, BELOW_OWNER(down_lu, "dspu_name", vga_find_down_pu, vga_down_lu, VGA_DOWN_PU::lus)},
    {.opcode = NAP_QUERY_LU_POOL, .schema = &records::lu_pool, .add = add_lu_pool, .find = find_lu_pool, .remove = remove_lu_pool},
    {.opcode = NAP_QUERY_MODE, .schema = &records::mode, BY_OWNER(mode, "lu_alias", add_mode, mode_of_lu)},
    {.opcode = NAP_QUERY_MODE_DEFINITION, .schema = &records::mode_def, OF_NODE(vga_mode_def, mode_defs)},
    {.opcode = NAP_QUERY_COS, .schema = &records::cos, OF_NODE(vga_cos, classes_of_service)},
    {.opcode = NAP_QUERY_COS_NODE_ROW, .schema = &records::cos_node_row, BELOW_OWNER(cos_node_row, "cos_name", vga_find_cos, vga_cos_node_row, VGA_COS::node_rows)},
    {.opcode = NAP_QUERY_COS_TG_ROW, .schema = &records::cos_tg_row, BELOW_OWNER(cos_tg_row, "cos_name", vga_find_cos, vga_cos_tg_row, VGA_COS::tg_rows)},
    {.opcode = NAP_QUERY_DIRECTORY_ENTRY, .schema = &records::directory, OF_NODE(vga_dir, directory)},
    {.opcode = NAP_QUERY_PARTNER_LU, .schema = &records::plu, BY_OWNER(plu, "lu_alias", add_plu, partner_of_lu)},
    {.opcode = NAP_QUERY_PARTNER_LU_DEFINITION, .schema = &records::plu_def, BY(add_plu_def, find_plu_def)},
    {.opcode = NAP_QUERY_TP_DEFINITION, .schema = &records::tp, OF_NODE(vga_tp_def, tp_defs)},
    {.opcode = NAP_QUERY_TP_LOAD_INFO, .schema = &records::tp_load, OF_NODE(vga_tp_load_info, tp_load_infos)},
    {.opcode = NAP_QUERY_LU62_TIMEOUT, .schema = &records::lu62_timeout, OF_NODE(vga_lu62_timeout, lu62_timeouts)},
    {.opcode = NAP_QUERY_LS_ROUTING, .schema = &records::ls_routing, BELOW_OWNER(ls_routing, "lu_name", vga_find_lu62, vga_ls_routing, VGA_LU62::routings)},
    {.opcode = NAP_QUERY_DSPU_TEMPLATE, .schema = &records::dspu_template, OF_NODE(vga_dspu_template, dspu_templates)},
    {.opcode = NAP_QUERY_RTP_CONNECTION, .schema = &records::rtp_conn, OF_NODE(vga_rtp_conn, rtp_conns)},
    {.opcode = NAP_QUERY_LU_LU_PASSWORD, .schema = &records::lu_lu_password, BY_OWNER(lu_lu_password, "lu_alias", add_password, password_of_lu)},
    {.opcode = NAP_QUERY_USERID_PASSWORD, .schema = &records::userid_password, OF_NODE(vga_clsec_def, cl_security)},
    {.opcode = NAP_QUERY_SECURITY_ACCESS_LIST, .schema = &records::access_list, OF_NODE(vga_access_list, access_lists)},
    {.opcode = NAP_QUERY_CPIC_SIDE_INFO, .schema = &records::cpic, OF_SYSTEM(vga_cpic, cpics)},
    {.opcode = NAP_QUERY_EMULATOR_USER_DEF, .schema = &records::user, OF_SYSTEM(vga_user, users)},
    {.opcode = NAP_QUERY_RJE_WKSTN_DEF, .schema = &records::rje, OF_SYSTEM(vga_rje_wkstn, rje_wkstns)},
    {.opcode = NAP_QUERY_EXTRA_DATA, .schema = &records::extra_data, BY_OWNER(extra_data, "name", add_extra_data, find_extra_data)},
    {.opcode = NAP_QUERY_PRIMARY_LINE, .schema = &records::primary_line, OF_NODE(vga_primary_line, primary_lines)},
    {.opcode = NAP_QUERY_PRIMARY_LU0, .schema = &records::primary_lu0, OF_OWNER(primary_lu0, "line_name", vga_find_primary_line, vga_primary_lu0, primary_lu0s)},
    {.opcode = NAP_QUERY_TN3270_ACCESS_DEF, .schema = &records::tn_access, OF_NODE(vga_tn_client, tn_clients)},
    {.opcode = NAP_QUERY_TN3270_ASSOCIATION, .schema = &records::tn_assoc, OF_NODE(vga_tn_assoc, tn_assocs)},
    {.opcode = NAP_QUERY_TN_REDIRECT_DEF, .schema = &records::tn_redirect, OF_NODE(vga_tn_redirect, tn_redirects)},
    {.opcode = NAP_QUERY_TAMRIX_APPCIP, .schema = &records::tamrix_session, BY(add_tamrix_sess, find_tamrix_sess)},
};
/* clang-format on */

#undef OF_SYSTEM
#undef OF_NODE
#undef OF_OWNER
#undef BELOW_OWNER
#undef BY
#undef BY_OWNER

constexpr records::OpcodeIndex<VGA_LIST, std::size(lists)>
    by_opcode(lists, [](const VGA_LIST &list) { return std::array{list.opcode}; });

/* By the verbs that define and delete; of two lists of one kind of resource the first. */
constexpr records::OpcodeIndex<VGA_LIST, 2 * std::size(lists)>
    by_change(lists, [](const VGA_LIST &list) {
        const records::Schema &of = *list.schema;
        return list.opcode == of.lists[0].list ? std::array{of.define, of.remove}
                                               : std::array<NB_USHORT, 2>{};
    });

} // namespace

const VGA_LIST *vga_find_list(NB_USHORT opcode) {
    return by_opcode.find(opcode);
}

const VGA_LIST *vga_find_changed_list(NB_USHORT opcode) {
    return by_change.find(opcode);
}
