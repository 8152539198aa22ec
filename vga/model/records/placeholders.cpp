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
    vga_create_fixed_line(port->node->connectivity_root, port, VGA_VIEWER_PORT);
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
