#include "definitions.h"
#include "hooks.h"
#include "listqueries.h"
#include "newresources.h"
#include "nofcopy.h"
#include "nofverbs.h"
#include "recordtypes.h"
#include "schemas.h"
#include "takeout.h"
#include "vgadsbld.h"
#include <algorithm>

namespace {

template <class Data> Data copy_of(const NB_UCHAR *entry) {
    return entry != nullptr ? nap_copy<Data>(entry) : Data{};
}

/* A record that joins while the lists under its like are being read has its own read. */
template <class Record>
NB_VOID read_below(VGA_NODE *node, Record *record, NB_USHORT list, NB_VOID (*start)(Record *)) {
    if (vga_is_list_outstanding(node, list)) {
        start(record);
    }
}

/* Connectivity: ports and link stations show the type of the DLC below them. */

NB_VOID set_type(NB_UCHAR type, VGA_PORT &port) {
    NB_USHORT changed = port.vcb->def_data.dlc_type != type;
    port.vcb->def_data.dlc_type = type;
    vga_for_each(port.link_stations, &VGA_LS::port_links, [type](VGA_LS &ls) {
        if (ls.vcb->def_data.dlc_type != type) {
            ls.vcb->def_data.dlc_type = type;
            vga_update_ls_viewer(&ls);
        }
    });
    if (changed) {
        vga_update_port_viewer(&port);
    }
}

NB_VOID dlc_joined(NB_VOID *record, const NB_UCHAR *) {
    auto *dlc = static_cast<VGA_DLC *>(record);
    NB_UCHAR type = dlc->vcb->def_data.dlc_type;
    vga_for_each(dlc->ports, &VGA_PORT::dlc_links,
                 [type](VGA_PORT &port) { set_type(type, port); });
}

NB_VOID port_joined(NB_VOID *record, const NB_UCHAR *) {
    auto *port = static_cast<VGA_PORT *>(record);
    set_type(port->vcb->def_data.dlc_type, *port);
}

/* The PU that a link station made before and does not make any more. */
template <class Pu> NB_VOID drop_old_pu(Pu *pu, const VGA_LS *ls, const NB_UCHAR *kept) {
    NB_USHORT of_link = pu != nullptr && (pu->ls_entry == ls || pu->ls_entry == nullptr);
    if (of_link && (kept == nullptr || vga_compare_ebc8(pu->name, kept) != 0)) {
        vga_record_changed(pu, VGA_RECORD_GONE);
        vga_take_out(pu);
    }
}

/* The node fills in the PU of a link station; what it says of it is read. */
NB_VOID ls_joined(NB_VOID *record, const NB_UCHAR *before) {
    auto *ls = static_cast<VGA_LS *>(record);
    VGA_NODE *node = ls->parent->node;
    NAP_LS_DEF now = ls->vcb->def_data;
    NAP_LS_DEF old = copy_of<NAP_LS_DATA>(before).def_data;
    NB_USHORT host = now.adj_cp_type == NAP_ADJ_HOST;
    NB_USHORT downstream = now.adj_cp_type == NAP_ADJ_DOWNSTREAM;
    if (before != nullptr && old.adj_cp_type == NAP_ADJ_HOST) {
        drop_old_pu(vga_find_local_pu(node, old.pu_name), ls, host ? now.pu_name : nullptr);
    } else if (before != nullptr && old.adj_cp_type == NAP_ADJ_DOWNSTREAM) {
        drop_old_pu(vga_find_down_pu(node, old.pu_name), ls, downstream ? now.pu_name : nullptr);
    }
    if (host) {
        NB_USHORT over_dlur = now.host_attachment == NAP_DLUR_ATTACHED;
        vga_read_resource(node, over_dlur ? NAP_QUERY_DLUR_PU : NAP_QUERY_PU, now.pu_name);
    } else if (downstream) {
        vga_read_resource(node, NAP_QUERY_DOWNSTREAM_PU, now.pu_name);
    }
}

NB_VOID fill_pu(NB_UCHAR *entry) {
    auto pu = nap_copy<NAP_PU_DATA>(entry);
    pu.host_attachment = NAP_DLUR_ATTACHED;
    memcpy(entry, &pu, sizeof(pu));
}

NB_VOID pu_joined(NB_VOID *record, const NB_UCHAR *) {
    auto *pu = static_cast<VGA_LOCAL_PU *>(record);
    read_below(pu->parent, pu, NAP_QUERY_LU_0_TO_3, vga_start_build_local_pu);
}

NB_VOID cn_joined(NB_VOID *record, const NB_UCHAR *) {
    auto *cn = static_cast<VGA_CN *>(record);
    read_below(cn->parent, cn, NAP_QUERY_CN_PORT, vga_start_build_cn);
}

NB_VOID cn_port_joined(NB_VOID *record, const NB_UCHAR *) {
    vga_cn_follows(static_cast<VGA_CN_PORT *>(record)->parent);
}

NB_VOID cn_port_unread(VGA_NODE *node, const NB_UCHAR *entry) {
    if (VGA_CN *cn = vga_find_cn(node, nap_copy<NAP_CN_PORT_DATA>(entry).fqcn_name)) {
        vga_cn_follows(cn);
    }
}

/* No indication tells what they are in now. */

NB_VOID primary_line_joined(NB_VOID *record, const NB_UCHAR *) {
    auto *line = static_cast<VGA_PRIMARY_LINE *>(record);
    vga_read_resource(line->parent, NAP_QUERY_PRIMARY_LINE, line->name);
}

NB_VOID primary_lu0_joined(NB_VOID *record, const NB_UCHAR *) {
    auto *lu = static_cast<VGA_PRIMARY_LU0 *>(record);
    vga_read_resource(lu->parent->parent, NAP_QUERY_PRIMARY_LU0, lu->name);
}

/* LUs and pools. */

/* The entries of a pool, and of an LU in it: there or not, the node says. */
NB_VOID read_pool(VGA_NODE *node, const NB_UCHAR *pool_name, const NB_UCHAR *lu_name) {
    NAP_LU_POOL_DATA entry = {};
    const auto *key = reinterpret_cast<const NB_UCHAR *>(&entry) + records::KEY_OFFSET;
    memcpy(entry.pool_name, pool_name, sizeof(entry.pool_name));
    memset(entry.lu_name, 0x40, sizeof(entry.lu_name));
    vga_read_resource(node, NAP_QUERY_LU_POOL, key);
    if (!vga_blank_name(lu_name, sizeof(entry.lu_name))) {
        memcpy(entry.lu_name, lu_name, sizeof(entry.lu_name));
        vga_read_resource(node, NAP_QUERY_LU_POOL, key);
    }
}

/* Pools that were read before may have the LU as it was. */
NB_VOID read_pools_with(VGA_NODE *node, const NB_UCHAR *lu_name) {
    vga_for_each(node->pools, &VGA_POOL::links, [node, lu_name](VGA_POOL &pool) {
        if (ntl_avl_find(&pool.lu_tree, lu_name) != nullptr) {
            read_pool(node, pool.name, lu_name);
        }
    });
}

NB_VOID lu03_joined(NB_VOID *record, const NB_UCHAR *before) {
    auto *lu = static_cast<VGA_LU03 *>(record);
    NAP_LU03_DEF old = copy_of<NAP_LU03_DATA>(before).def_data;
    if (before == nullptr) {
        vga_pu_follows(lu->parent, 1);
        read_pools_with(lu->parent->parent, lu->name);
    }
    vga_join_pool(lu);
    if (before != nullptr && vga_compare_ebc8(old.pool_name, lu->vcb->def_data.pool_name) != 0) {
        vga_ask_for_empty_pool(lu->parent->parent, old.pool_name);
    }
}

/* Pools and the PU may have been read before. */
NB_VOID lu03_unread(VGA_NODE *node, const NB_UCHAR *entry) {
    auto data = nap_copy<NAP_LU03_DATA>(entry);
    read_pools_with(node, data.lu_name);
    if (!vga_blank_name(data.def_data.pool_name, sizeof(data.def_data.pool_name))) {
        read_pool(node, data.def_data.pool_name, data.lu_name);
    }
    if (VGA_LOCAL_PU *pu = vga_find_local_pu(node, data.pu_name)) {
        vga_read_pu(pu);
    }
}

NB_VOID down_lu_unread(VGA_NODE *node, const NB_UCHAR *entry) {
    if (VGA_DOWN_PU *pu = vga_find_down_pu(node, nap_copy<NAP_DOWN_LU_DATA>(entry).dspu_name)) {
        vga_read_pu(pu);
    }
}

NB_VOID down_lu_joined(NB_VOID *record, const NB_UCHAR *before) {
    if (before == nullptr) {
        vga_pu_follows(static_cast<VGA_DOWN_LU *>(record)->parent, 1);
    }
}

/* What hangs under an LU is kept under its alias. */
NB_VOID local_lu_joined(NB_VOID *record, const NB_UCHAR *before) {
    auto *lu = static_cast<VGA_LU62 *>(record);
    NAP_LOCAL_LU_DEF old = copy_of<NAP_LOCAL_LU_DATA>(before).def_data;
    if (before == nullptr) {
        read_below(lu->parent, lu, NAP_QUERY_MODE, vga_start_build_lu62);
    } else if (vga_compare_asc8(old.lu_alias, lu->alias) != 0) {
        vga_start_build_lu62(lu);
    }
}

/* Names of LUs are unique in a node. */
VGA_LU03 *find_lu_of_node(const VGA_NODE *node, const NB_UCHAR *name) {
    VGA_LU03 *found = nullptr;
    vga_for_each(node->local_pus, &VGA_LOCAL_PU::links, [name, &found](VGA_LOCAL_PU &pu) {
        NB_VOID *lu = ntl_avl_find(&pu.lus, name);
        found = lu != nullptr ? static_cast<VGA_LU03 *>(lu) : found;
    });
    return found;
}

VGA_POOL *add_pool(VGA_NODE *node, const NB_UCHAR *entry) {
    auto data = nap_copy<NAP_LU_POOL_DATA>(entry);
    memset(data.lu_name, 0x40, sizeof(data.lu_name));
    const auto *bytes = reinterpret_cast<const NB_UCHAR *>(&data);
    return vga_find_list(NAP_QUERY_LU_POOL)->add(node, bytes) == VGA_ENTRY_ADDED
               ? vga_find_pool(node, data.pool_name)
               : nullptr;
}

/* Its LUs, and the domain's pool, show the description of a pool. */
VGA_POOL *define_pool_itself(VGA_NODE *node, const NB_UCHAR *entry) {
    VGA_POOL *pool = add_pool(node, entry);
    if (pool != nullptr) {
        NAP_LU_POOL_DATA data = *pool->vcb;
        vga_for_each(pool->lu_tree, &VGA_POOL_LU::links, [&data](VGA_POOL_LU &member) {
            memcpy(member.vcb->description, data.description, sizeof(data.description));
            vga_update_line(&member);
        });
        memcpy(pool->sys_pool->vcb->description, data.description, sizeof(data.description));
        vga_update_line(pool->sys_pool);
    }
    return pool;
}

/* The verb that puts an LU into a pool changes the LU, and makes the pool if need be. */
NB_VOID *define_lu_pool(VGA_NODE *node, const NB_UCHAR *entry) {
    auto data = nap_copy<NAP_LU_POOL_DATA>(entry);
    if (vga_blank_name(data.lu_name, sizeof(data.lu_name))) {
        return define_pool_itself(node, entry);
    }
    VGA_LU03 *lu = find_lu_of_node(node, data.lu_name);
    if (lu == nullptr ||
        (vga_find_pool(node, data.pool_name) == nullptr && add_pool(node, entry) == nullptr)) {
        return nullptr;
    }
    NAP_LU03_DEF old = lu->vcb->def_data;
    if (vga_compare_ebc8(old.pool_name, data.pool_name) != 0) {
        vga_remove_pool_lu(lu);
        memcpy(lu->vcb->def_data.pool_name, data.pool_name, sizeof(data.pool_name));
        vga_update_line(lu);
        vga_record_changed(lu, VGA_RECORD_CHANGED);
        vga_ask_for_empty_pool(node, old.pool_name);
    }
    vga_join_pool(lu);
    return vga_find_pool_lu(node, data.pool_name, data.lu_name);
}

/* LUs may have been read before, with the pool that they were in. */
NB_VOID lu_pool_unread(VGA_NODE *node, const NB_UCHAR *entry) {
    auto data = nap_copy<NAP_LU_POOL_DATA>(entry);
    const bool whole = vga_blank_name(data.lu_name, sizeof(data.lu_name));
    vga_for_each(node->local_pus, &VGA_LOCAL_PU::links, [&](VGA_LOCAL_PU &pu) {
        vga_for_each(pu.lus, &VGA_LU03::links, [&](VGA_LU03 &lu) {
            if (whole ? vga_compare_ebc8(lu.vcb->def_data.pool_name, data.pool_name) == 0
                      : vga_compare_ebc8(lu.name, data.lu_name) == 0) {
                vga_read_resource(node, NAP_QUERY_LU_0_TO_3, lu.vcb->pu_name);
            }
        });
    });
    read_pool(node, data.pool_name, data.lu_name);
}

/* Sessions. */

template <class Data> NB_VOID cos_row_unread(VGA_NODE *node, const NB_UCHAR *entry) {
    if (VGA_COS *cos = vga_find_cos(node, nap_copy<Data>(entry).cos_name)) {
        vga_cos_follows(cos);
    }
}

NB_VOID fill_directory(NB_UCHAR *entry) {
    auto data = nap_copy<NAP_DIR_DATA>(entry);
    data.entry_type = NAP_DIR_HOME;
    memcpy(entry, &data, sizeof(data));
}

template <class Row> NB_VOID cos_row_joined(NB_VOID *record, const NB_UCHAR *) {
    vga_cos_follows(static_cast<Row *>(record)->parent);
}

NB_VOID timeout_joined(NB_VOID *record, const NB_UCHAR *) {
    const auto *timeout = static_cast<const VGA_LU62_TIMEOUT *>(record);
    vga_timed_mode_changed(timeout->parent, timeout->key);
}

constexpr VGA_DEFINITION definitions[] = {
    {.schema = &records::dlc, .joined = dlc_joined},
    {.schema = &records::port, .joined = port_joined},
    {.schema = &records::ls, .joined = ls_joined},
    {.schema = &records::pu, .fill = fill_pu, .joined = pu_joined},
    {.schema = &records::cn, .joined = cn_joined},
    {.schema = &records::cn_port, .joined = cn_port_joined, .unread = cn_port_unread},
    {.schema = &records::primary_line, .joined = primary_line_joined},
    {.schema = &records::primary_lu0, .joined = primary_lu0_joined},
    {.schema = &records::lu03, .joined = lu03_joined, .unread = lu03_unread},
    {.schema = &records::down_lu, .joined = down_lu_joined, .unread = down_lu_unread},
    {.schema = &records::local_lu, .joined = local_lu_joined},
    {.schema = &records::lu_pool, .unread = lu_pool_unread, .define = define_lu_pool},
    {.schema = &records::directory, .fill = fill_directory},
    {.schema = &records::lu62_timeout, .joined = timeout_joined},
    {.schema = &records::cos_node_row,
     .joined = cos_row_joined<VGA_COS_NODE_ROW>,
     .unread = cos_row_unread<NAP_COS_NODE_ROW_DATA>},
    {.schema = &records::cos_tg_row,
     .joined = cos_row_joined<VGA_COS_TG_ROW>,
     .unread = cos_row_unread<NAP_COS_TG_ROW_DATA>},
};

} // namespace

const VGA_DEFINITION &vga_find_definition(const records::Schema *schema) {
    static constexpr VGA_DEFINITION nothing_peculiar;
    const auto *found =
        std::find_if(std::begin(definitions), std::end(definitions),
                     [schema](const VGA_DEFINITION &row) { return row.schema == schema; });
    return found != std::end(definitions) ? *found : nothing_peculiar;
}
