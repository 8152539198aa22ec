/* What each record type of the model declares as its own: keys, indexes, line, merge, dependants.
 * See VGA_RECORD_DEFAULTS (vgarec.h) for what each part means. */
#ifndef VGATYPES_H
#define VGATYPES_H

#include "vgadsdel.h"
#include "vgadsutl.h"
#include "vgarec.h"

/* Copies a key field out of a list entry; packed fields are never referred to in place. */
#define VGA_COPY_KEY(field, entry_field) memcpy(&(field), &(entry_field), sizeof(field))

template <> struct VGA_RECORD_TYPE<VGA_NODE> : VGA_RECORD_DEFAULTS<VGA_NODE> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_NODE &node) {
        return {{{&gvga_system->nodes, &node.links, node.name, 0}}};
    }
    static NB_VOID init(VGA_NODE &node);
    static NB_VOID merged(VGA_NODE &kept, VGA_NODE &fresh);
    static VGA_LINE_PLACE line(VGA_NODE &node) {
        return {&gvga_system->node_viewer_root, nullptr, VGA_VIEWER_NODE, &node.links};
    }
    static NB_VOID linked(VGA_NODE &node);
    static NB_VOID delete_children(VGA_NODE &node);
    static NB_VOID unlinked(VGA_NODE &node);
};

template <> struct VGA_RECORD_TYPE<VGA_DLC> : VGA_RECORD_DEFAULTS<VGA_DLC> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_DLC &dlc) {
        return {{{&dlc.parent->dlcs, &dlc.links, dlc.name, 0}}};
    }
    static NB_VOID init(VGA_DLC &dlc) {
        VGA_COPY_KEY(dlc.name, dlc.vcb->dlc_name);
        vga_init_tree(dlc.ports, vga_compare_asc8);
    }
    static NB_VOID delete_children(VGA_DLC &dlc) { vga_delete_all<VGA_PORT>(dlc.ports); }
};

template <> struct VGA_RECORD_TYPE<VGA_PORT> : VGA_RECORD_DEFAULTS<VGA_PORT> {
    static std::array<VGA_INDEX_LINK, 2> links(VGA_PORT &port) {
        return {{{&port.node->ports, &port.node_links, port.name, 0},
                 {&port.parent->ports, &port.dlc_links, port.name, 0}}};
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
        return {&port.node->connectivity_root, nullptr, VGA_VIEWER_PORT, &port.node_links};
    }
    static NB_VOID delete_children(VGA_PORT &port) { vga_delete_all<VGA_LS>(port.link_stations); }
};

template <> struct VGA_RECORD_TYPE<VGA_LS> : VGA_RECORD_DEFAULTS<VGA_LS> {
    static std::array<VGA_INDEX_LINK, 2> links(VGA_LS &ls) {
        return {{{&ls.parent->node->link_stations, &ls.node_links, ls.name, 0},
                 {&ls.parent->link_stations, &ls.port_links, ls.name, 0}}};
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
        NB_UCHAR type = partner == NAP_ADJ_HOST || partner == NAP_ADJ_DOWNSTREAM
                            ? VGA_VIEWER_LS
                            : VGA_VIEWER_LS_LEAF;
        return {&ls.parent->node->connectivity_root, &ls.parent->gui_data.viewer, type,
                &ls.port_links};
    }
    static NB_VOID linked(VGA_LS &ls);
    static NB_VOID delete_children(VGA_LS &ls);
};

template <> struct VGA_RECORD_TYPE<VGA_LOCAL_PU> : VGA_RECORD_DEFAULTS<VGA_LOCAL_PU> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_LOCAL_PU &pu) {
        return {{{&pu.parent->local_pus, &pu.links, pu.name, 0}}};
    }
    static NB_VOID init(VGA_LOCAL_PU &pu) {
        VGA_COPY_KEY(pu.name, pu.vcb->pu_name);
        vga_init_tree(pu.lus, vga_compare_ebc8);
    }
    /* The line of a link station stands for the PU that it makes; only a DLUR-served PU has a line
     * of its own, under the placeholder port. */
    static VGA_LINE_PLACE line(VGA_LOCAL_PU &pu) {
        VGA_PORT *port = pu.parent->dlur_fake_port;
        if (pu.vcb->host_attachment != NAP_DLUR_ATTACHED || port == nullptr) {
            return {};
        }
        return {&pu.parent->connectivity_root, &port->gui_data.viewer, VGA_VIEWER_LOCAL_PU,
                &pu.links};
    }
    static NB_VOID linked(VGA_LOCAL_PU &pu);
    static NB_VOID delete_children(VGA_LOCAL_PU &pu) { vga_delete_all<VGA_LU03>(pu.lus); }
    static NB_VOID unlinked(VGA_LOCAL_PU &pu) {
        if (pu.ls_entry != nullptr) {
            pu.ls_entry->local_pu = nullptr;
        }
    }
};

template <> struct VGA_RECORD_TYPE<VGA_LU03> : VGA_RECORD_DEFAULTS<VGA_LU03> {
    static std::array<VGA_INDEX_LINK, 2> links(VGA_LU03 &lu) {
        return {{{&lu.parent->lus, &lu.links, lu.name, 0},
                 {&gvga_system->dependent_lus, &lu.domain_links, &lu.domain_key, 1}}};
    }
    static NB_VOID init(VGA_LU03 &lu) {
        VGA_COPY_KEY(lu.name, lu.vcb->lu_name);
        lu.domain_key = lu.name;
    }
    static VGA_LINE_PLACE line(VGA_LU03 &lu) {
        VGA_LOCAL_PU &pu = *lu.parent;
        VGA_GUI_DATA &over = pu.ls_entry != nullptr ? pu.ls_entry->gui_data : pu.gui_data;
        if (!over.listed) {
            return {};
        }
        return {&pu.parent->connectivity_root, &over.viewer, VGA_VIEWER_DEPLU, &lu.links};
    }
};

template <> struct VGA_RECORD_TYPE<VGA_LU62> : VGA_RECORD_DEFAULTS<VGA_LU62> {
    static std::array<VGA_INDEX_LINK, 2> links(VGA_LU62 &lu) {
        return {{{&lu.parent->lus, &lu.name_links, lu.name, 0},
                 {&lu.parent->lu_aliases, &lu.alias_links, lu.alias, 0}}};
    }
    static NB_VOID init(VGA_LU62 &lu) {
        VGA_COPY_KEY(lu.name, lu.vcb->lu_name);
        VGA_COPY_KEY(lu.alias, lu.vcb->def_data.lu_alias);
        vga_init_tree(lu.modes, vga_compare_mode);
        vga_init_tree(lu.partners, vga_compare_plu);
    }
    static VGA_LINE_PLACE line(VGA_LU62 &lu) {
        return {&lu.parent->local_lu_root, nullptr, VGA_VIEWER_LU62, &lu.name_links};
    }
    static NB_VOID merged(VGA_LU62 &kept, VGA_LU62 &fresh);
    static NB_VOID delete_children(VGA_LU62 &lu) {
        vga_delete_all<VGA_MODE>(lu.modes);
        vga_delete_all<VGA_PLU>(lu.partners);
    }
    static NB_VOID unlinked(VGA_LU62 &lu) {
        if (lu.parent->cp_lu == &lu) {
            lu.parent->cp_lu = nullptr;
        }
    }
};

template <> struct VGA_RECORD_TYPE<VGA_MODE_DEF> : VGA_RECORD_DEFAULTS<VGA_MODE_DEF> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_MODE_DEF &mode) {
        return {{{&mode.parent->mode_defs, &mode.links, mode.name, 0}}};
    }
    static NB_VOID init(VGA_MODE_DEF &mode) {
        VGA_COPY_KEY(mode.name, mode.vcb->mode_name);
        mode.sna_defined = mode.vcb->mode_chars.sna_defined;
    }
};

template <> struct VGA_RECORD_TYPE<VGA_MODE> : VGA_RECORD_DEFAULTS<VGA_MODE> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_MODE &mode) {
        return {{{&mode.parent->modes, &mode.links, &mode.key, 0}}};
    }
    static NB_VOID init(VGA_MODE &mode) {
        VGA_COPY_KEY(mode.key.mode_name, mode.vcb->mode_name);
        VGA_COPY_KEY(mode.key.fqplu_name, mode.vcb->fqplu_name);
    }
    static VGA_LINE_PLACE line(VGA_MODE &mode) {
        VGA_LU62 &lu = *mode.parent;
        return {&lu.parent->local_lu_root, &lu.gui_data.viewer, VGA_VIEWER_MODE, &mode.links};
    }
};

template <> struct VGA_RECORD_TYPE<VGA_PLU> : VGA_RECORD_DEFAULTS<VGA_PLU> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_PLU &plu) {
        return {{{&plu.parent->partners, &plu.links, &plu.key, 0}}};
    }
    static NB_VOID init(VGA_PLU &plu) {
        VGA_COPY_KEY(plu.key.plu_alias, plu.vcb->plu_alias);
        VGA_COPY_KEY(plu.key.fqplu_name, plu.vcb->fqplu_name);
    }
};

template <> struct VGA_RECORD_TYPE<VGA_COS> : VGA_RECORD_DEFAULTS<VGA_COS> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_COS &cos) {
        return {{{&cos.parent->classes_of_service, &cos.links, cos.name, 0}}};
    }
    static NB_VOID init(VGA_COS &cos) { VGA_COPY_KEY(cos.name, cos.vcb->cos_name); }
};

template <> struct VGA_RECORD_TYPE<VGA_DIR> : VGA_RECORD_DEFAULTS<VGA_DIR> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_DIR &dir) {
        return {{{&dir.parent->directory, &dir.links, &dir.key, 0}}};
    }
    static NB_VOID init(VGA_DIR &dir) {
        VGA_COPY_KEY(dir.key.fqcp_name, dir.vcb->fqcp_name);
        VGA_COPY_KEY(dir.key.resource_name, dir.vcb->resource_name);
        VGA_COPY_KEY(dir.key.resource_type, dir.vcb->resource_type);
    }
};

template <> struct VGA_RECORD_TYPE<VGA_REM_SYS> : VGA_RECORD_DEFAULTS<VGA_REM_SYS> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_REM_SYS &system) {
        return {{{&system.parent->remote_systems, &system.links, system.name, 0}}};
    }
    static NB_VOID init(VGA_REM_SYS &system) {
        VGA_COPY_KEY(system.name, system.vcb->fqcp_name);
        vga_init_tree(system.remote_plu_tree, vga_compare_rem_plu);
    }
    static NB_VOID merged(VGA_REM_SYS &kept, VGA_REM_SYS &fresh);
    static VGA_LINE_PLACE line(VGA_REM_SYS &system) {
        return {&system.parent->rem_sys_root, nullptr, VGA_VIEWER_REM_SYS, &system.links};
    }
    static NB_VOID unlinked(VGA_REM_SYS &system) {
        if (system.parent->network_fake_rem_sys == &system) {
            system.parent->network_fake_rem_sys = nullptr;
        }
    }
};

template <> struct VGA_RECORD_TYPE<VGA_REM_PLU> : VGA_RECORD_DEFAULTS<VGA_REM_PLU> {
    static std::array<VGA_INDEX_LINK, 2> links(VGA_REM_PLU &plu) {
        return {{{&plu.parent->remote_plu_tree, &plu.links, &plu.key, 0},
                 {&plu.parent->parent->remote_plus, &plu.node_links, &plu.key, 1}}};
    }
    static NB_VOID init(VGA_REM_PLU &plu) {
        VGA_COPY_KEY(plu.key.fqplu_name, plu.vcb->fqplu_name);
        plu.key.type = NAP_DIR_LU;
        vga_init_tree(plu.sess_tree, vga_compare_rem_sess);
    }
    static NB_VOID merged(VGA_REM_PLU &kept, VGA_REM_PLU &fresh);
    static VGA_LINE_PLACE line(VGA_REM_PLU &plu) {
        VGA_REM_SYS &system = *plu.parent;
        NB_UCHAR type =
            plu.key.type == NAP_DIR_WILDCARD_LU ? VGA_VIEWER_REM_PLU_LEAF : VGA_VIEWER_REM_PLU;
        return {&system.parent->rem_sys_root, &system.gui_data.viewer, type, &plu.links};
    }
};

template <> struct VGA_RECORD_TYPE<VGA_REM_SESS> : VGA_RECORD_DEFAULTS<VGA_REM_SESS> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_REM_SESS &session) {
        return {{{&session.parent->sess_tree, &session.links, &session.key, 0}}};
    }
    static NB_VOID init(VGA_REM_SESS &session) {
        VGA_COPY_KEY(session.key.lu_alias, session.vcb->lu_alias);
        VGA_COPY_KEY(session.key.mode_name, session.vcb->mode_name);
    }
    static VGA_LINE_PLACE line(VGA_REM_SESS &session) {
        VGA_REM_PLU &plu = *session.parent;
        return {&plu.parent->parent->rem_sys_root, &plu.gui_data.viewer, VGA_VIEWER_REM_SESS,
                &session.links};
    }
};

#endif
