/* The records that no list entry stands for: placeholders, the control point's LU, the modes and
 * classes of service that every node has. */
#include "globals.h"
#include "messages.h"
#include "nofcopy.h"
#include "ntlname.h"
#include "recordtypes.h"
#include "snadefined.h"
#include "vgadsadd.h"
#include <cstdio>

namespace {

NB_VOID set_description(NB_UCHAR (&field)[32], NB_USHORT message) {
    memset(field, 0, sizeof(field));
    snprintf(reinterpret_cast<NB_CHAR *>(field), sizeof(field), "%s", vga_message(message));
}

/* A placeholder port has a line and a handle, and neither a DLC nor a data block. */
VGA_PORT *make_fake_port(VGA_NODE *node) {
    VGA_OWNED<VGA_PORT> port(static_cast<VGA_PORT *>(calloc(1, sizeof(VGA_PORT))));
    if (!port) {
        return nullptr;
    }
    port->handle = nba_create_handle(port.get());
    if (port->handle == 0) {
        return nullptr;
    }
    port->node = node;
    vga_init_tree(port->link_stations, vga_compare_asc8);
    AVL_INIT_NODE(port->node_links, port.get(), port->name);
    AVL_INIT_NODE(port->dlc_links, port.get(), port->name);
    return port.release();
}

template <class Record>
NB_VOID create_fixed_line(VGA_VIEWER_ROOT &root, Record *record, VGA_VIEWER_TYPE type) {
    if (!record->gui_data.listed) {
        record->gui_data.listed = 1;
        vga_create_viewer(&root, &record->gui_data.viewer, type, record, nullptr, VGA_VIEWER_FIRST);
        vga_viewer_set_fixed(&root, &record->gui_data.viewer, 1);
    }
}

VGA_REM_SYS *network_placeholder(VGA_NODE *node) {
    if (node->network_fake_rem_sys == nullptr) {
        NAP_DIR_DATA entry = {};
        entry.overlay_size = sizeof(entry);
        memset(entry.fqcp_name, 0x40, sizeof(entry.fqcp_name));
        VGA_REM_SYS *system = vga_init_vga_rem_sys(node, &entry);
        if (system == nullptr) {
            return nullptr;
        }
        node->network_fake_rem_sys = system;
        create_fixed_line(node->rem_sys_root, system, VGA_VIEWER_REM_SYS);
    }
    return node->network_fake_rem_sys;
}

/* A partner that stood under the placeholder has turned out to belong to a remote system. */
NB_VOID move_rem_plu(VGA_REM_PLU *plu, VGA_REM_SYS *system) {
    if (plu->gui_data.listed) {
        vga_delete_viewer(&system->parent->rem_sys_root, &plu->gui_data.viewer);
    }
    ntl_avl_delete(&plu->parent->remote_plu_tree, &plu->links);
    plu->parent = system;
    if (ntl_avl_insert(&system->remote_plu_tree, &plu->links) == 0) {
        v0_assert(__FILE__, __LINE__, "FALSE");
    }
    vga_create_line(plu);
    vga_for_each(plu->sess_tree, &VGA_REM_SESS::links,
                 [](VGA_REM_SESS &session) { vga_create_line(&session); });
}

} // namespace

NB_USHORT vga_init_sna_modes(VGA_NODE *node) {
    for (NAP_MODE_DEF_DATA &entry : records::sna_modes()) {
        if (ntl_avl_find(&node->mode_defs, entry.mode_name) != nullptr) {
            continue;
        }
        entry.overlay_size = sizeof(entry);
        set_description(entry.mode_chars.description, VGA_MSG_SNA_MODE_DESCRIPTION);
        VGA_MODE_DEF *record = vga_init_vga_mode_def(node, &entry);
        if (record == nullptr) {
            return 0;
        }
        vga_insert_vga_mode_def(record);
    }
    return 1;
}

NB_USHORT vga_init_sna_cos(VGA_NODE *node) {
    for (NAP_COS_DATA &entry : records::sna_cos()) {
        entry.overlay_size = sizeof(entry);
        memset(entry.def_data.description, 0, sizeof(entry.def_data.description));
        VGA_COS *record = vga_init_vga_cos(node, &entry);
        if (record == nullptr) {
            return 0;
        }
        vga_insert_vga_cos(record);
    }
    return 1;
}

NB_VOID vga_create_fake_cp_lu(VGA_NODE *node) {
    NAP_NODE_INFO info = node->node_data.info;
    NAP_LOCAL_LU_DATA entry = {};
    NB_UCHAR network[8];
    entry.overlay_size = sizeof(entry);
    NB_USHORT qualified = ntl_split_fq_name(info.fq_cp_name, network, entry.lu_name);
    if (qualified != 1 && qualified != 2) {
        return; /* a node that has no control point yet */
    }
    set_description(entry.def_data.description, VGA_MSG_CP_LU_DESCRIPTION);
    memcpy(entry.def_data.lu_alias, info.cp_alias, sizeof(info.cp_alias));
    entry.def_data.nau_address = node->node_data.cp_nau_addr;
    VGA_LU62 *lu = vga_init_vga_lu62(node, &entry);
    if (lu == nullptr) {
        VGA_EXIT(VGA_EXIT_INTERNAL, 0);
        return;
    }
    node->cp_lu = vga_insert_vga_lu62(lu);
}

VGA_PORT *vga_init_vga_dlur_fake_port(VGA_NODE *node) {
    if (node->dlur_fake_port == nullptr) {
        node->dlur_fake_port = make_fake_port(node);
    }
    return node->dlur_fake_port;
}

VGA_PORT *vga_insert_vga_dlur_fake_port(VGA_PORT *port) {
    create_fixed_line(port->node->connectivity_root, port, VGA_VIEWER_PORT);
    return port;
}

VGA_PORT *vga_init_vga_primary_line_fake_port(VGA_NODE *node) {
    if (node->primary_line_fake_port == nullptr) {
        node->primary_line_fake_port = make_fake_port(node);
    }
    return node->primary_line_fake_port;
}

VGA_PORT *vga_insert_vga_primary_line_fake_port(VGA_PORT *port) {
    return vga_insert_vga_dlur_fake_port(port);
}

VGA_REM_SYS *vga_need_rem_sys(VGA_NODE *node, const NB_UCHAR *fqcp_name) {
    if (vga_blank_name(fqcp_name, sizeof(VGA_REM_SYS::name))) {
        return network_placeholder(node);
    }
    VGA_REM_SYS *system = vga_find_rem_sys(node, fqcp_name);
    if (system == nullptr) {
        NAP_DIR_DATA entry = {};
        entry.overlay_size = sizeof(entry);
        memcpy(entry.fqcp_name, fqcp_name, sizeof(entry.fqcp_name));
        memcpy(entry.resource_name, fqcp_name, sizeof(entry.resource_name));
        system = vga_init_vga_rem_sys(node, &entry);
        if (system != nullptr) {
            system = vga_insert_vga_rem_sys(system);
        }
    }
    return system;
}

VGA_REM_PLU *vga_need_rem_plu(VGA_NODE *node, const NB_UCHAR *fqcp_name, const NB_UCHAR *fqplu_name,
                              NB_USHORT type) {
    VGA_REM_PLU *plu = vga_find_rem_plu(node, fqplu_name, type);
    NB_USHORT owner_known = !vga_blank_name(fqcp_name, sizeof(VGA_REM_SYS::name));
    NB_USHORT misplaced =
        plu != nullptr && owner_known && plu->parent == node->network_fake_rem_sys;
    if (plu != nullptr && !misplaced) {
        return plu;
    }
    VGA_REM_SYS *system = vga_need_rem_sys(node, fqcp_name);
    if (system == nullptr) {
        return nullptr;
    }
    if (misplaced) {
        move_rem_plu(plu, system);
        return plu;
    }
    NAP_PLU_DEF_DATA entry = {};
    entry.overlay_size = sizeof(entry);
    memcpy(entry.fqplu_name, fqplu_name, sizeof(entry.fqplu_name));
    memset(entry.def_data.plu_alias, ' ', sizeof(entry.def_data.plu_alias));
    plu = vga_init_vga_rem_plu(system, &entry, type);
    return plu != nullptr ? vga_insert_vga_rem_plu(plu) : nullptr;
}

VGA_REM_PLU *vga_add_vga_rem_sess(VGA_NODE *node, const NAP_MODE_DATA *entry) {
    auto mode = nap_copy<NAP_MODE_DATA>(entry);
    VGA_REM_PLU *plu = vga_need_rem_plu(node, mode.fq_cp_name, mode.fqplu_name, NAP_DIR_LU);
    if (plu == nullptr || mode.act_sess_count == 0) {
        return plu;
    }
    VGA_REM_SESS *session = vga_init_vga_rem_sess(plu, entry);
    if (session == nullptr) {
        return nullptr;
    }
    vga_insert_vga_rem_sess(session);
    return plu;
}
