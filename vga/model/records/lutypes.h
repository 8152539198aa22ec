/* What the record types of LU 6.2 declare as their own.  Part of recordtypes.h. */
#ifndef LUTYPES_H
#define LUTYPES_H

#include "recordtypes.h"

template <> struct VGA_RECORD_TYPE<VGA_LU62> : VGA_RECORD_DEFAULTS<VGA_LU62> {
    static std::array<VGA_INDEX_LINK, 2> links(VGA_LU62 &lu) {
        return {vga_index(lu.parent->lus, lu.name_links, lu.name),
                vga_index(lu.parent->lu_aliases, lu.alias_links, lu.alias)};
    }
    static NB_VOID init(VGA_LU62 &lu) {
        VGA_COPY_KEY(lu.name, lu.vcb->lu_name);
        VGA_COPY_KEY(lu.alias, lu.vcb->def_data.lu_alias);
        vga_init_tree(lu.modes, vga_compare_mode);
        vga_init_tree(lu.partners, vga_compare_plu);
        vga_init_tree(lu.routings, vga_compare_ebc17);
    }
    static constexpr auto line =
        vga_top_line<VGA_LU62, &VGA_NODE::local_lu_root, VGA_VIEWER_LU62, &VGA_LU62::name_links>;
    static VGA_COUNTED counted(VGA_LU62 &lu) { return {lu.parent, &VGA_NODE_COUNTS::lus}; }
    static NB_VOID merged(VGA_LU62 &kept, VGA_LU62 &fresh);
    static NB_VOID delete_children(VGA_LU62 &lu);
    static NB_VOID unlinked(VGA_LU62 &lu);
};

template <>
struct VGA_RECORD_TYPE<VGA_MODE_DEF>
    : VGA_ONE_INDEX<VGA_MODE_DEF, &VGA_NODE::mode_defs, &VGA_MODE_DEF::name> {
    static NB_VOID init(VGA_MODE_DEF &mode) {
        VGA_ONE_INDEX::init(mode);
        mode.sna_defined = mode.vcb->mode_chars.sna_defined;
    }
    static constexpr auto line =
        vga_top_line<VGA_MODE_DEF, &VGA_NODE::mode_def_root, VGA_VIEWER_MODE_DEF>;
};

template <>
struct VGA_RECORD_TYPE<VGA_MODE>
    : VGA_ONE_INDEX<VGA_MODE, &VGA_LU62::modes, &VGA_MODE::key, NTL_NAME_WIDTH> {
    static VGA_LINE_PLACE line(VGA_MODE &mode) {
        VGA_LU62 &lu = *mode.parent;
        return {&lu.parent->local_lu_root, &lu.gui_data.viewer, VGA_VIEWER_MODE, &mode.links, 0};
    }
    static NB_VOID merged(VGA_MODE &kept, VGA_MODE &fresh);
    static NB_USHORT settled(VGA_MODE &mode);
    static NB_VOID unlinked(VGA_MODE &mode);
};

template <>
struct VGA_RECORD_TYPE<VGA_PLU>
    : VGA_ONE_INDEX<VGA_PLU, &VGA_LU62::partners, &VGA_PLU::key, NTL_NAME_WIDTH> {
    static NB_USHORT settled(VGA_PLU &plu);
    static NB_VOID unlinked(VGA_PLU &plu) { vga_forget_partner(plu.partner); }
};

template <>
struct VGA_RECORD_TYPE<VGA_COS>
    : VGA_ONE_INDEX<VGA_COS, &VGA_NODE::classes_of_service, &VGA_COS::name> {
    static NB_VOID init(VGA_COS &cos) {
        VGA_ONE_INDEX::init(cos);
        vga_init_tree(cos.node_rows, vga_compare_ushort);
        vga_init_tree(cos.tg_rows, vga_compare_ushort);
    }
    static NB_VOID delete_children(VGA_COS &cos) {
        vga_delete_all<VGA_COS_NODE_ROW>(cos.node_rows);
        vga_delete_all<VGA_COS_TG_ROW>(cos.tg_rows);
    }
};

template <>
struct VGA_RECORD_TYPE<VGA_COS_NODE_ROW>
    : VGA_ONE_INDEX<VGA_COS_NODE_ROW, &VGA_COS::node_rows, &VGA_COS_NODE_ROW::row_number,
                    NTL_NAME_WIDTH> {};

template <>
struct VGA_RECORD_TYPE<VGA_COS_TG_ROW>
    : VGA_ONE_INDEX<VGA_COS_TG_ROW, &VGA_COS::tg_rows, &VGA_COS_TG_ROW::row_number,
                    NTL_NAME_WIDTH> {};

template <>
struct VGA_RECORD_TYPE<VGA_DIR> : VGA_ONE_INDEX<VGA_DIR, &VGA_NODE::directory, &VGA_DIR::key> {
    static NB_USHORT settled(VGA_DIR &dir);
    static NB_VOID unlinked(VGA_DIR &dir);
};

template <>
struct VGA_RECORD_TYPE<VGA_REM_SYS>
    : VGA_ONE_INDEX<VGA_REM_SYS, &VGA_NODE::remote_systems, &VGA_REM_SYS::name> {
    static NB_VOID init(VGA_REM_SYS &system) {
        VGA_ONE_INDEX::init(system);
        vga_init_tree(system.remote_plu_tree, vga_compare_rem_plu);
    }
    static constexpr auto line =
        vga_top_line<VGA_REM_SYS, &VGA_NODE::rem_sys_root, VGA_VIEWER_REM_SYS>;
    static NB_VOID unlinked(VGA_REM_SYS &system) {
        if (system.parent->network_fake_rem_sys == &system) {
            system.parent->network_fake_rem_sys = nullptr;
        }
    }
};

template <> struct VGA_RECORD_TYPE<VGA_REM_PLU> : VGA_RECORD_DEFAULTS<VGA_REM_PLU> {
    static std::array<VGA_INDEX_LINK, 2> links(VGA_REM_PLU &plu) {
        return {vga_index(plu.parent->remote_plu_tree, plu.links, plu.key),
                vga_index(plu.parent->parent->remote_plus, plu.node_links, plu.key)};
    }
    static NB_VOID init(VGA_REM_PLU &plu) {
        VGA_COPY_KEY(plu.key.fqplu_name, plu.vcb->fqplu_name);
        plu.key.type = NAP_DIR_LU;
        vga_init_tree(plu.sess_tree, vga_compare_rem_sess);
    }
    static NB_VOID merged(VGA_REM_PLU &kept, VGA_REM_PLU &fresh);
    static VGA_LINE_PLACE line(VGA_REM_PLU &plu) {
        VGA_REM_SYS &system = *plu.parent;
        NB_USHORT wildcard = plu.key.type == NAP_DIR_WILDCARD_LU;
        VGA_VIEWER_TYPE type = wildcard ? VGA_VIEWER_REM_PLU_LEAF : VGA_VIEWER_REM_PLU;
        VGA_VIEWER_TYPE other = wildcard ? VGA_VIEWER_REM_PLU : VGA_VIEWER_REM_PLU_LEAF;
        return {&system.parent->rem_sys_root, &system.gui_data.viewer, type, &plu.links, other};
    }
    static NB_VOID unlinked(VGA_REM_PLU &plu);
};

template <>
struct VGA_RECORD_TYPE<VGA_REM_SESS>
    : VGA_ONE_INDEX<VGA_REM_SESS, &VGA_REM_PLU::sess_tree, &VGA_REM_SESS::key> {
    static VGA_LINE_PLACE line(VGA_REM_SESS &session) {
        VGA_REM_PLU &plu = *session.parent;
        return {&plu.parent->parent->rem_sys_root, &plu.gui_data.viewer, VGA_VIEWER_REM_SESS,
                &session.links, 0};
    }
};

template <>
struct VGA_RECORD_TYPE<VGA_LU62_TIMEOUT>
    : VGA_ONE_INDEX<VGA_LU62_TIMEOUT, &VGA_NODE::lu62_timeouts, &VGA_LU62_TIMEOUT::key> {};

template <>
struct VGA_RECORD_TYPE<VGA_LS_ROUTING>
    : VGA_ONE_INDEX<VGA_LS_ROUTING, &VGA_LU62::routings, &VGA_LS_ROUTING::fqplu_name,
                    NTL_NAME_WIDTH> {
    static VGA_LINE_PLACE line(VGA_LS_ROUTING &routing);
    static NB_VOID unlinked(VGA_LS_ROUTING &routing);
};

template <>
struct VGA_RECORD_TYPE<VGA_TP_DEF>
    : VGA_ONE_INDEX<VGA_TP_DEF, &VGA_NODE::tp_defs, &VGA_TP_DEF::tp_name> {
    static constexpr auto line =
        vga_top_line<VGA_TP_DEF, &VGA_NODE::tp_def_root, VGA_VIEWER_TP_DEF>;
};

template <>
struct VGA_RECORD_TYPE<VGA_TP_LOAD_INFO>
    : VGA_ONE_INDEX<VGA_TP_LOAD_INFO, &VGA_NODE::tp_load_infos, &VGA_TP_LOAD_INFO::key> {
    static constexpr auto line =
        vga_top_line<VGA_TP_LOAD_INFO, &VGA_NODE::tp_load_root, VGA_VIEWER_TP_LOAD_INFO>;
};

template <>
struct VGA_RECORD_TYPE<VGA_SLSEC_DEF>
    : VGA_ONE_INDEX<VGA_SLSEC_DEF, &VGA_NODE::sl_security, &VGA_SLSEC_DEF::key> {
    static constexpr auto line =
        vga_top_line<VGA_SLSEC_DEF, &VGA_NODE::sl_security_root, VGA_VIEWER_SL_SECURITY>;
};

template <>
struct VGA_RECORD_TYPE<VGA_CLSEC_DEF>
    : VGA_ONE_INDEX<VGA_CLSEC_DEF, &VGA_NODE::cl_security, &VGA_CLSEC_DEF::user_id> {
    static constexpr auto line =
        vga_top_line<VGA_CLSEC_DEF, &VGA_NODE::cl_security_root, VGA_VIEWER_CL_SECURITY>;
};

template <>
struct VGA_RECORD_TYPE<VGA_ACCESS_LIST>
    : VGA_ONE_INDEX<VGA_ACCESS_LIST, &VGA_NODE::access_lists, &VGA_ACCESS_LIST::name> {
    static constexpr const NB_CHAR *dialog_text =
        "acc_list->gui_data.dialog->common.parent_item == (NB_VOID *)acc_list";
    static constexpr NB_USHORT fixed_size = offsetof(NAP_ACCESS_LIST_DATA, def_data.users);
    static NB_VOID init(VGA_ACCESS_LIST &list) {
        VGA_ONE_INDEX::init(list);
        vga_init_tree(list.user_tree, vga_compare_asc10);
    }
    static NB_USHORT settled(VGA_ACCESS_LIST &list) {
        return vga_merge_nested<VGA_SECURITY_USER>(list, list.user_tree,
                                                   VGA_NESTED(list, users, num_users));
    }
    static constexpr auto line =
        vga_top_line<VGA_ACCESS_LIST, &VGA_NODE::access_list_root, VGA_VIEWER_ACCESS_LIST>;
};

template <>
struct VGA_RECORD_TYPE<VGA_SECURITY_USER>
    : VGA_ONE_INDEX<VGA_SECURITY_USER, &VGA_ACCESS_LIST::user_tree, &VGA_SECURITY_USER::name> {
    static constexpr NB_USHORT nested = 1;
};

#endif
