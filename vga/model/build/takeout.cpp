#include "takeout.h"
#include "hooks.h"
#include "listqueries.h"
#include "newresources.h"
#include "nofverbs.h"
#include "partners.h"
#include "vgadsadd.h"
#include "vgadsbld.h"
#include "vgadsutl.h"

namespace {

/* The link station stays, without a PU. */
template <class Pu> NB_VOID take_pu_out(Pu *pu) {
    VGA_LS *ls = pu->ls_entry;
    vga_delete_record(pu);
    vga_update_ls_viewer(ls);
}

/* An LU that is in no pool any more says so itself. */
NB_VOID leave_pool(const VGA_POOL_LU &member) {
    VGA_NODE *node = member.parent->parent;
    VGA_LU03 *lu = vga_find_lu03(node, member.vcb->pu_name, member.key.lu_name);
    if (lu != nullptr && vga_compare_ebc8(lu->vcb->def_data.pool_name, member.parent->name) == 0) {
        memset(lu->vcb->def_data.pool_name, 0x40, sizeof(lu->vcb->def_data.pool_name));
        vga_update_line(lu);
        vga_record_changed(lu, VGA_RECORD_CHANGED);
    }
}

template <class Record> NB_UCHAR count_of(const AVL_TREE &rows, AVL_NODE Record::*links) {
    NB_UCHAR count = 0;
    vga_for_each(rows, links, [&count](Record &) { count++; });
    return count;
}

template <class Row> NB_VOID take_row_out(Row *row) {
    VGA_COS *cos = row->parent;
    vga_delete_record(row);
    vga_cos_follows(cos);
}

/* While the list of its LUs is read, only the node knows how many there are. */
template <class Pu> NB_VOID lus_follow(Pu *pu, NB_INT more, NB_USHORT list) {
    if (vga_is_list_outstanding(pu->parent, list)) {
        vga_read_pu(pu);
        return;
    }
    NB_ULONG before = pu->vcb->lu_count;
    pu->vcb->lu_count = more < 0 && before == 0 ? 0 : before + static_cast<NB_ULONG>(more);
    vga_update_ls_viewer(pu->ls_entry);
}

template <class Lu> NB_VOID take_lu_out(Lu *lu) {
    auto *pu = lu->parent;
    vga_delete_record(lu);
    vga_pu_follows(pu, -1);
}

} // namespace

/* A pool that nobody defined goes with its last LU, and only the node knows whether somebody has.
 */
NB_VOID vga_ask_for_empty_pool(VGA_NODE *node, const NB_UCHAR *name) {
    const VGA_POOL *pool = vga_find_pool(node, name);
    if (pool != nullptr && AVL_FIRST(pool->lu_tree) == nullptr) {
        NB_UCHAR key[sizeof(pool->name) + sizeof(NAP_LU_POOL_DATA::lu_name)];
        memcpy(key, pool->name, sizeof(pool->name));
        memset(key + sizeof(pool->name), 0x40, sizeof(NAP_LU_POOL_DATA::lu_name));
        vga_read_resource(node, NAP_QUERY_LU_POOL, key);
    }
}

NB_USHORT vga_join_pool(VGA_LU03 *lu) {
    VGA_NODE *node = lu->parent->parent;
    NAP_LU03_DATA data = *lu->vcb;
    NAP_LU_POOL_DATA member = {};
    if (vga_blank_name(data.def_data.pool_name, sizeof(data.def_data.pool_name))) {
        return 1;
    }
    member.overlay_size = sizeof(member);
    memcpy(member.pool_name, data.def_data.pool_name, sizeof(member.pool_name));
    memcpy(member.lu_name, data.lu_name, sizeof(member.lu_name));
    memcpy(member.pu_name, data.pu_name, sizeof(member.pu_name));
    member.lu_active = data.det_data.lu_sscp_sess_active;
    member.lu_in_use = data.det_data.plu_sess_active || data.det_data.appl_conn_active;
    if (const VGA_POOL *pool = vga_find_pool(node, member.pool_name)) {
        memcpy(member.description, pool->vcb->description, sizeof(member.description));
    }
    const auto *entry = reinterpret_cast<const NB_UCHAR *>(&member);
    return vga_find_list(NAP_QUERY_LU_POOL)->add(node, entry) == VGA_ENTRY_ADDED;
}

NB_VOID vga_update_port_viewer(VGA_PORT *port) {
    vga_update_line(port);
    vga_record_changed(port, VGA_RECORD_CHANGED);
}

NB_VOID vga_update_ls_viewer(VGA_LS *ls) {
    if (ls != nullptr) {
        vga_update_line(ls);
        vga_record_changed(ls, VGA_RECORD_CHANGED);
    }
}

NB_VOID vga_update_local_pu_viewer(VGA_LOCAL_PU *pu) {
    vga_update_line(pu);
    vga_update_ls_viewer(pu->ls_entry);
}

NB_VOID vga_timed_mode_changed(const VGA_NODE *node, const VGA_LU62_TIMEOUT_KEY &key) {
    VGA_MODE_DEF *mode = key.resource_type == NAP_TIMEOUT_MODE
                             ? vga_find_mode_def(node, key.resource_name)
                             : nullptr;
    if (mode != nullptr) {
        vga_record_changed(mode, VGA_RECORD_CHANGED);
    }
}

NB_VOID vga_cos_follows(VGA_COS *cos) {
    VGA_NODE *node = cos->parent;
    if (vga_is_list_outstanding(node, NAP_QUERY_COS_NODE_ROW) ||
        vga_is_list_outstanding(node, NAP_QUERY_COS_TG_ROW)) {
        vga_read_resource(node, NAP_QUERY_COS, cos->name);
        return;
    }
    cos->vcb->def_data.num_of_node_rows = count_of(cos->node_rows, &VGA_COS_NODE_ROW::links);
    cos->vcb->def_data.num_of_tg_rows = count_of(cos->tg_rows, &VGA_COS_TG_ROW::links);
    vga_record_changed(cos, VGA_RECORD_CHANGED);
}

/* Which of its ports has which virtual TG is the node's to say. */
NB_VOID vga_cn_follows(VGA_CN *cn) {
    if (cn->parent->target != 0) {
        vga_read_resource(cn->parent, NAP_QUERY_CN, cn->name);
        vga_start_build_cn(cn);
    }
}

NB_VOID vga_read_pu(VGA_LOCAL_PU *pu) {
    NB_USHORT over_dlur = pu->vcb->host_attachment == NAP_DLUR_ATTACHED;
    vga_read_resource(pu->parent, over_dlur ? NAP_QUERY_DLUR_PU : NAP_QUERY_PU, pu->name);
}

NB_VOID vga_read_pu(VGA_DOWN_PU *pu) {
    vga_read_resource(pu->parent, NAP_QUERY_DOWNSTREAM_PU, pu->name);
}

NB_VOID vga_pu_follows(VGA_LOCAL_PU *pu, NB_INT more) {
    lus_follow(pu, more, NAP_QUERY_LU_0_TO_3);
    vga_update_line(pu);
}

NB_VOID vga_pu_follows(VGA_DOWN_PU *pu, NB_INT more) {
    lus_follow(pu, more, NAP_QUERY_DOWNSTREAM_LU);
}

NB_VOID vga_take_out(VGA_LOCAL_PU *pu) {
    take_pu_out(pu);
}

NB_VOID vga_take_out(VGA_DOWN_PU *pu) {
    take_pu_out(pu);
}

NB_VOID vga_take_out(VGA_LU03 *lu) {
    VGA_NODE *node = lu->parent->parent;
    NAP_LU03_DEF def = lu->vcb->def_data;
    take_lu_out(lu);
    vga_ask_for_empty_pool(node, def.pool_name);
}

NB_VOID vga_take_out(VGA_DOWN_LU *lu) {
    take_lu_out(lu);
}

NB_VOID vga_take_out(VGA_EXTRA_DATA *extra) {
    vga_delete_lu03_extra_data(extra->parent);
}

/* The partner stays while anything else names it. */
NB_VOID vga_take_out(VGA_REM_PLU *plu) {
    vga_undefine_rem_plu(plu);
}

NB_VOID vga_take_out(VGA_CN_PORT *port) {
    VGA_CN *cn = port->parent;
    vga_delete_vga_cn_port(port);
    vga_cn_follows(cn);
}

NB_VOID vga_take_out(VGA_COS_NODE_ROW *row) {
    take_row_out(row);
}

NB_VOID vga_take_out(VGA_COS_TG_ROW *row) {
    take_row_out(row);
}

NB_VOID vga_take_out(VGA_LU62_TIMEOUT *timeout) {
    VGA_NODE *node = timeout->parent;
    const VGA_LU62_TIMEOUT_KEY key = timeout->key;
    vga_delete_vga_lu62_timeout(timeout);
    vga_timed_mode_changed(node, key);
}

NB_VOID vga_take_out(VGA_POOL *pool) {
    while (auto *member = static_cast<VGA_POOL_LU *>(AVL_FIRST(pool->lu_tree))) {
        leave_pool(*member);
        vga_delete_vga_pool_lu(member);
    }
    vga_delete_vga_pool(pool);
}

NB_VOID vga_take_out(VGA_POOL_LU *member) {
    VGA_POOL *pool = member->parent;
    leave_pool(*member);
    vga_delete_vga_pool_lu(member);
    vga_ask_for_empty_pool(pool->parent, pool->name);
}

NB_VOID vga_take_out(VGA_ACCESS_LIST *list) {
    vga_delete_all<VGA_SECURITY_USER>(list->user_tree);
    vga_delete_vga_access_list(list);
}

NB_VOID vga_take_out(VGA_USER *user) {
    vga_delete_all<VGA_USER_SESSION>(user->session_tree);
    vga_delete_vga_user(user);
}
