/* Constructors and inserters of the model's records: the only places where the model grows.
 *
 * A constructor takes the owner and a list entry of the node (at least as long as its record), and
 * returns a record that is in no index yet; null without memory or handle, and nothing is kept
 * then.  An inserter links the record, or merges it into the one that is there already, which keeps
 * its handle, children, line and dialog; it returns the record that stays, or null without memory
 * for what follows from it. */
#ifndef VGADSADD_H
#define VGADSADD_H

#include "model.h"
#include "recordlist.h"

/* The empty domain with every start-up flag set; null without memory. */
VGA_SYSTEM *vga_init_vga_system(NB_VOID);

/* `entry` is one of NAP_QUERY_NODE_ALL.  All start-up flags of the node are set. */
VGA_NODE *vga_init_vga_node(const NAP_NODE_ALL_DATA *entry);
VGA_NODE *vga_insert_vga_node(VGA_NODE *record);

/* The role that a node's server flags say. */
VGA_SERVER_ROLE vga_role_of(NB_ULONG server_flags);

/* The connection to a node changed, or, the second, one that was in use ended by itself just now:
 * whoever shows the node is told. */
NB_VOID vga_set_connection(VGA_NODE *node, VGA_CONNECTION connection);
NB_VOID vga_lose_connection(VGA_NODE *node);

/* Those of all the types of recordlist.h.  A link station to a host, or to a downstream PU, also
 * makes the PU; a pool of a node the domain's pool; a template, access list, client or user the
 * records of the items that its entry carries. */
#define VGA_DECLARE_RECORD(name, record, owner, entry, ...)                                        \
    record *vga_init_##name(owner *parent, const entry *data);                                     \
    record *vga_insert_##name(record *fresh);
VGA_RECORDS(VGA_DECLARE_RECORD, VGA_DECLARE_RECORD)
#undef VGA_DECLARE_RECORD

VGA_LS_ROUTING *vga_init_vga_ls_routing(VGA_LU62 *owner, const NAP_LS_ROUTING_DATA *entry);
VGA_LS_ROUTING *vga_insert_vga_ls_routing(VGA_LS_ROUTING *record);

/* Merged into what the LU has, also under another name. */
VGA_EXTRA_DATA *vga_init_vga_extra_data(VGA_LU03 *owner, const NAP_EXTRA_DATA_DATA *entry);
VGA_EXTRA_DATA *vga_insert_vga_extra_data(VGA_EXTRA_DATA *record);

/* `type` is NAP_DIR_LU or NAP_DIR_WILDCARD_LU. */
VGA_REM_PLU *vga_init_vga_rem_plu(VGA_REM_SYS *owner, const NAP_PLU_DEF_DATA *entry,
                                  NB_USHORT type);
VGA_REM_PLU *vga_insert_vga_rem_plu(VGA_REM_PLU *record);

/* The sessions with a partner that a mode entry tells of.  Null without memory. */
VGA_REM_SESS *vga_add_vga_rem_sess(VGA_REM_PLU *plu, const NAP_MODE_DATA *entry);

/* The 13 SNA-defined modes, but for those that the node has already, and the 7 SNA-defined classes
 * of service, which are reset to their defaults.  Return 1, or 0 without memory. */
NB_USHORT vga_init_sna_modes(VGA_NODE *node);
NB_USHORT vga_init_sna_cos(VGA_NODE *node);

/* The LU that stands for the node's control point; requests an exit without memory. */
NB_VOID vga_create_fake_cp_lu(VGA_NODE *node);

/* The two fixed lines of the connectivity pane.  A constructor returns null without memory; an
 * inserter creates the line, once. */
VGA_PORT *vga_init_vga_dlur_fake_port(VGA_NODE *node);
VGA_PORT *vga_insert_vga_dlur_fake_port(VGA_PORT *port);
VGA_PORT *vga_init_vga_primary_line_fake_port(VGA_NODE *node);
VGA_PORT *vga_insert_vga_primary_line_fake_port(VGA_PORT *port);

#endif
