/* What the record types of connectivity declare as their own.  Part of recordtypes.h. */
#ifndef CONNECTIVITYTYPES_H
#define CONNECTIVITYTYPES_H

#include "recordtypes.h"

template <>
struct VGA_RECORD_TYPE<VGA_DLC> : VGA_ONE_INDEX<VGA_DLC, &VGA_NODE::dlcs, &VGA_DLC::name> {
    static NB_VOID init(VGA_DLC &dlc) {
        VGA_ONE_INDEX::init(dlc);
        vga_init_tree(dlc.ports, vga_compare_asc8);
    }
    static NB_VOID delete_children(VGA_DLC &dlc) { vga_delete_all<VGA_PORT>(dlc.ports); }
};

template <> struct VGA_RECORD_TYPE<VGA_PORT> : VGA_RECORD_DEFAULTS<VGA_PORT> {
    static constexpr const NB_CHAR *dialog_text =
        "port->gui_data.dialog->parent_item == (NB_VOID *)port";
    static std::array<VGA_INDEX_LINK, 2> links(VGA_PORT &port) {
        return {vga_index(port.node->ports, port.node_links, port.name),
                vga_index(port.parent->ports, port.dlc_links, port.name)};
    }
    static NB_VOID init(VGA_PORT &port) {
        port.node = port.parent->parent;
        VGA_COPY_KEY(port.name, port.vcb->port_name);
        vga_init_tree(port.link_stations, vga_compare_asc8);
    }
    static NB_VOID carry_over(const VGA_PORT &old, NB_VOID *fresh) {
        memcpy(static_cast<NB_UCHAR *>(fresh) + offsetof(NAP_PORT_DATA, det_data),
               reinterpret_cast<const NB_UCHAR *>(old.vcb) + offsetof(NAP_PORT_DATA, det_data),
               sizeof(NAP_PORT_DET));
    }
    static VGA_LINE_PLACE line(VGA_PORT &port) {
        return {&port.node->connectivity_root, nullptr, VGA_VIEWER_PORT, &port.node_links, 0};
    }
    static VGA_COUNTED counted(VGA_PORT &port) { return {port.node, &VGA_NODE_COUNTS::ports}; }
    static NB_VOID delete_children(VGA_PORT &port) { vga_delete_all<VGA_LS>(port.link_stations); }
};

template <> struct VGA_RECORD_TYPE<VGA_LS> : VGA_RECORD_DEFAULTS<VGA_LS> {
    static constexpr const NB_CHAR *dialog_text =
        "ls->gui_data.dialog->parent_item == (NB_VOID *)ls";
    static std::array<VGA_INDEX_LINK, 2> links(VGA_LS &ls) {
        return {vga_index(ls.parent->node->link_stations, ls.node_links, ls.name),
                vga_index(ls.parent->link_stations, ls.port_links, ls.name)};
    }
    static NB_VOID init(VGA_LS &ls) {
        VGA_COPY_KEY(ls.name, ls.vcb->ls_name);
        ls.state = ls.vcb->det_data.ls_state;
    }
    static NB_VOID carry_over(const VGA_LS &old, NB_VOID *fresh) {
        memcpy(static_cast<NB_UCHAR *>(fresh) + offsetof(NAP_LS_DATA, det_data),
               reinterpret_cast<const NB_UCHAR *>(old.vcb) + offsetof(NAP_LS_DATA, det_data),
               sizeof(NAP_LS_DET));
    }
    static VGA_LINE_PLACE line(VGA_LS &ls) {
        NB_UCHAR partner = ls.vcb->def_data.adj_cp_type;
        NB_USHORT opens = partner == NAP_ADJ_HOST || partner == NAP_ADJ_DOWNSTREAM;
        VGA_VIEWER_TYPE type = opens ? VGA_VIEWER_LS : VGA_VIEWER_LS_LEAF;
        VGA_VIEWER_TYPE other = opens ? VGA_VIEWER_LS_LEAF : VGA_VIEWER_LS;
        return {&ls.parent->node->connectivity_root, &ls.parent->gui_data.viewer, type,
                &ls.port_links, other};
    }
    static VGA_COUNTED counted(VGA_LS &ls) {
        return {ls.parent->node, &VGA_NODE_COUNTS::link_stations};
    }
    static NB_USHORT settled(VGA_LS &ls);
    static NB_VOID delete_children(VGA_LS &ls);
};

template <>
struct VGA_RECORD_TYPE<VGA_CN>
    : VGA_ONE_INDEX<VGA_CN, &VGA_NODE::connection_networks, &VGA_CN::name> {
    static NB_VOID init(VGA_CN &cn) {
        VGA_ONE_INDEX::init(cn);
        vga_init_tree(cn.ports, vga_compare_asc8);
    }
    static NB_VOID delete_children(VGA_CN &cn) { vga_delete_all<VGA_CN_PORT>(cn.ports); }
};

template <>
struct VGA_RECORD_TYPE<VGA_CN_PORT>
    : VGA_ONE_INDEX<VGA_CN_PORT, &VGA_CN::ports, &VGA_CN_PORT::port_name, NTL_FQ_NAME_WIDTH> {};

template <>
struct VGA_RECORD_TYPE<VGA_LOCAL_PU>
    : VGA_ONE_INDEX<VGA_LOCAL_PU, &VGA_NODE::local_pus, &VGA_LOCAL_PU::name> {
    static NB_VOID init(VGA_LOCAL_PU &pu) {
        VGA_ONE_INDEX::init(pu);
        vga_init_tree(pu.lus, vga_compare_ebc8);
        vga_init_tree(pu.extra_list, vga_compare_asc14);
    }
    /* The line of a link station stands for the PU that it makes; only a DLUR-served PU has a line
     * of its own, under the placeholder port. */
    static VGA_LINE_PLACE line(VGA_LOCAL_PU &pu) {
        VGA_PORT *port = pu.parent->dlur_fake_port;
        if (pu.vcb->host_attachment != NAP_DLUR_ATTACHED || port == nullptr) {
            return {};
        }
        return {&pu.parent->connectivity_root, &port->gui_data.viewer, VGA_VIEWER_LOCAL_PU,
                &pu.links, 0};
    }
    static NB_USHORT settled(VGA_LOCAL_PU &pu);
    static NB_VOID delete_children(VGA_LOCAL_PU &pu) { vga_delete_all<VGA_LU03>(pu.lus); }
    static NB_VOID unlinked(VGA_LOCAL_PU &pu) {
        if (pu.ls_entry != nullptr) {
            pu.ls_entry->local_pu = nullptr;
        }
    }
};

template <class Pu>
using VGA_LU_OF = std::conditional_t<std::is_same_v<Pu, VGA_LOCAL_PU>, VGA_LU03, VGA_DOWN_LU>;

template <> struct VGA_RECORD_TYPE<VGA_LU03> : VGA_RECORD_DEFAULTS<VGA_LU03> {
    static constexpr const NB_CHAR *dialog_text =
        "deplu->gui_data.dialog->common.parent_item == (NB_VOID *)deplu";
    static std::array<VGA_INDEX_LINK, 2> links(VGA_LU03 &lu) {
        VGA_INDEX_LINK of_domain =
            vga_index(gvga_system->dependent_lus, lu.domain_links, lu.domain_key);
        of_domain.key_size = 0; /* points at `name` */
        return {vga_index(lu.parent->lus, lu.links, lu.name), of_domain};
    }
    static NB_VOID init(VGA_LU03 &lu) {
        VGA_COPY_KEY(lu.name, lu.vcb->lu_name);
        lu.domain_key = lu.name;
    }
    static VGA_LINE_PLACE line(VGA_LU03 &lu) {
        VGA_LOCAL_PU &pu = *lu.parent;
        VGA_GUI_DATA &over = pu.ls_entry != nullptr ? pu.ls_entry->gui_data : pu.gui_data;
        return {over.list, &over.viewer, VGA_VIEWER_DEPLU, &lu.links, 0};
    }
    static VGA_COUNTED counted(VGA_LU03 &lu) { return {lu.parent->parent, &VGA_NODE_COUNTS::lus}; }
    static NB_VOID merged(VGA_LU03 &kept, VGA_LU03 &fresh);
    static NB_USHORT settled(VGA_LU03 &lu);
    static NB_VOID delete_children(VGA_LU03 &lu) { vga_delete_lu03_extra_data(&lu); }
    static NB_VOID unlinked(VGA_LU03 &lu) { vga_remove_pool_lu(&lu); }
};

/* The LU owns it; the PU's second list finds it.  Two LUs may be called the same. */
template <> struct VGA_RECORD_TYPE<VGA_EXTRA_DATA> : VGA_RECORD_DEFAULTS<VGA_EXTRA_DATA> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_EXTRA_DATA &extra) {
        return {vga_index(extra.parent->parent->extra_list, extra.links, extra.name)};
    }
    static NB_VOID init(VGA_EXTRA_DATA &extra);
};

template <>
struct VGA_RECORD_TYPE<VGA_DOWN_PU>
    : VGA_ONE_INDEX<VGA_DOWN_PU, &VGA_NODE::down_pus, &VGA_DOWN_PU::name> {
    static NB_VOID init(VGA_DOWN_PU &pu) {
        VGA_ONE_INDEX::init(pu);
        vga_init_tree(pu.lus, vga_compare_ebc8);
    }
    static NB_USHORT settled(VGA_DOWN_PU &pu);
    static NB_VOID delete_children(VGA_DOWN_PU &pu) { vga_delete_all<VGA_DOWN_LU>(pu.lus); }
    static NB_VOID unlinked(VGA_DOWN_PU &pu) {
        if (pu.ls_entry != nullptr) {
            pu.ls_entry->down_pu = nullptr;
        }
    }
};

template <>
struct VGA_RECORD_TYPE<VGA_DOWN_LU>
    : VGA_ONE_INDEX<VGA_DOWN_LU, &VGA_DOWN_PU::lus, &VGA_DOWN_LU::name, NTL_NAME_WIDTH> {
    static VGA_LINE_PLACE line(VGA_DOWN_LU &lu) {
        VGA_LS *ls = lu.parent->ls_entry;
        if (ls == nullptr) {
            return {};
        }
        return {ls->gui_data.list, &ls->gui_data.viewer, VGA_VIEWER_DOWN_LU, &lu.links, 0};
    }
};

template <>
struct VGA_RECORD_TYPE<VGA_DSPU_TEMPLATE>
    : VGA_ONE_INDEX<VGA_DSPU_TEMPLATE, &VGA_NODE::dspu_templates, &VGA_DSPU_TEMPLATE::name> {
    static constexpr NB_USHORT fixed_size =
        offsetof(NAP_DSPU_TEMPLATE_DATA, def_data.dslu_templates);
    static NB_VOID init(VGA_DSPU_TEMPLATE &pu);
    static NB_VOID merged(VGA_DSPU_TEMPLATE &, VGA_DSPU_TEMPLATE &fresh) {
        vga_viewer_destroy_root(&fresh.viewer_root);
    }
    static NB_USHORT settled(VGA_DSPU_TEMPLATE &pu) {
        return vga_merge_nested<VGA_DSLU_TEMPLATE>(
            pu, pu.lu_templates, VGA_NESTED(pu, dslu_templates, num_of_dslu_templates));
    }
    static NB_VOID delete_children(VGA_DSPU_TEMPLATE &pu) {
        vga_delete_all<VGA_DSLU_TEMPLATE>(pu.lu_templates);
    }
    static NB_VOID unlinked(VGA_DSPU_TEMPLATE &pu) { vga_viewer_destroy_root(&pu.viewer_root); }
};

template <>
struct VGA_RECORD_TYPE<VGA_DSLU_TEMPLATE>
    : VGA_ONE_INDEX<VGA_DSLU_TEMPLATE, &VGA_DSPU_TEMPLATE::lu_templates, &VGA_DSLU_TEMPLATE::key> {
    static constexpr NB_USHORT nested = 1;
    static NB_VOID init(VGA_DSLU_TEMPLATE &lu) {
        VGA_COPY_KEY(lu.key.template_name, lu.parent->name);
        VGA_COPY_KEY(lu.key.min_nau, lu.vcb->min_nau);
        VGA_COPY_KEY(lu.key.max_nau, lu.vcb->max_nau);
    }
    static constexpr auto line =
        vga_top_line<VGA_DSLU_TEMPLATE, &VGA_DSPU_TEMPLATE::viewer_root, VGA_VIEWER_DSLU_TEMPLATE>;
};

template <>
struct VGA_RECORD_TYPE<VGA_PRIMARY_LINE>
    : VGA_ONE_INDEX<VGA_PRIMARY_LINE, &VGA_NODE::primary_lines, &VGA_PRIMARY_LINE::name> {
    static NB_VOID init(VGA_PRIMARY_LINE &line) {
        VGA_ONE_INDEX::init(line);
        vga_init_tree(line.lus, vga_compare_ebc8);
    }
    static VGA_LINE_PLACE line(VGA_PRIMARY_LINE &line) {
        VGA_PORT *port = line.parent->primary_line_fake_port;
        if (port == nullptr) {
            return {};
        }
        return {&line.parent->connectivity_root, &port->gui_data.viewer, VGA_VIEWER_PRIMARY_LINE,
                &line.links, 0};
    }
    static NB_VOID delete_children(VGA_PRIMARY_LINE &line) {
        vga_delete_all<VGA_PRIMARY_LU0>(line.lus);
    }
};

template <> struct VGA_RECORD_TYPE<VGA_PRIMARY_LU0> : VGA_RECORD_DEFAULTS<VGA_PRIMARY_LU0> {
    static std::array<VGA_INDEX_LINK, 2> links(VGA_PRIMARY_LU0 &lu) {
        return {vga_index(lu.parent->parent->primary_lu0s, lu.links, lu.name),
                vga_index(lu.parent->lus, lu.line_links, lu.name)};
    }
    static NB_VOID init(VGA_PRIMARY_LU0 &lu) { VGA_COPY_KEY(lu.name, lu.vcb->lu_name); }
    static VGA_LINE_PLACE line(VGA_PRIMARY_LU0 &lu) {
        VGA_GUI_DATA &over = lu.parent->gui_data;
        return {over.list, &over.viewer, VGA_VIEWER_PRIMARY_LU0, &lu.line_links, 0};
    }
};

template <>
struct VGA_RECORD_TYPE<VGA_RTP_CONN>
    : VGA_ONE_INDEX<VGA_RTP_CONN, &VGA_NODE::rtp_conns, &VGA_RTP_CONN::name> {
    static constexpr auto line =
        vga_top_line<VGA_RTP_CONN, &VGA_NODE::rtp_conn_root, VGA_VIEWER_RTP_CONN>;
    static NB_USHORT settled(VGA_RTP_CONN &conn) {
        conn.listed = 1;
        return 1;
    }
};

/* A PU and the link station that it is on know each other, and nobody else.  The lines of the PU's
 * LUs stand below that of the link station. */

template <class Pu> NB_VOID vga_renew_lu_lines(Pu &pu) {
    vga_for_each(pu.lus, &VGA_LU_OF<Pu>::links, [](VGA_LU_OF<Pu> &lu) {
        vga_delete_line(&lu);
        vga_place_line(&lu);
    });
}

template <class Pu> NB_VOID vga_take_off_link(Pu *pu, Pu *VGA_LS::*on) {
    if (pu != nullptr && pu->ls_entry != nullptr) {
        pu->ls_entry->*on = nullptr;
        pu->ls_entry = nullptr;
        vga_renew_lu_lines(*pu);
    }
}

/* The PU that was on the link station before lets go of it, and the link station of its old PU. */
template <class Pu> NB_VOID vga_put_on_link(Pu &pu, VGA_LS &ls, Pu *VGA_LS::*on) {
    if (pu.ls_entry == &ls && ls.*on == &pu) {
        return;
    }
    vga_take_off_link(&pu, on);
    vga_take_off_link(ls.*on, on);
    pu.ls_entry = &ls;
    ls.*on = &pu;
    vga_renew_lu_lines(pu);
}

#endif
