/* Constructors and inserters of the model's records: the only places where the model grows.
 *
 * A constructor takes the owner and a list entry of the node (at least as long as its record), and
 * returns a record that is in no index yet; null without memory or handle, and nothing is kept
 * then. An inserter links the record, or merges it into the one that is there already, which keeps
 * its handle, children, line and dialog; it returns the record that stays. */
#ifndef VGADSADD_H
#define VGADSADD_H

#include "vgamodel.h"

/* The empty domain with every start-up flag set; null without memory. */
VGA_SYSTEM *vga_init_vga_system(NB_VOID);

/* `entry` is one of NAP_QUERY_NODE_ALL.  All start-up flags of the node are set. */
VGA_NODE *vga_init_vga_node(const NAP_NODE_ALL_DATA *entry);
VGA_NODE *vga_insert_vga_node(VGA_NODE *record);

VGA_DLC *vga_init_vga_dlc(VGA_NODE *owner, const NAP_DLC_DATA *entry);
VGA_DLC *vga_insert_vga_dlc(VGA_DLC *record);

VGA_PORT *vga_init_vga_port(VGA_DLC *owner, const NAP_PORT_DATA *entry);
VGA_PORT *vga_insert_vga_port(VGA_PORT *record);

/* A host link station also makes the PU that it serves. */
VGA_LS *vga_init_vga_ls(VGA_PORT *owner, const NAP_LS_DATA *entry);
VGA_LS *vga_insert_vga_ls(VGA_LS *record);

VGA_LOCAL_PU *vga_init_vga_local_pu(VGA_NODE *owner, const NAP_PU_DATA *entry);
VGA_LOCAL_PU *vga_insert_vga_local_pu(VGA_LOCAL_PU *record);

VGA_LU03 *vga_init_vga_lu03(VGA_LOCAL_PU *owner, const NAP_LU03_DATA *entry);
VGA_LU03 *vga_insert_vga_lu03(VGA_LU03 *record);

VGA_LU62 *vga_init_vga_lu62(VGA_NODE *owner, const NAP_LOCAL_LU_DATA *entry);
VGA_LU62 *vga_insert_vga_lu62(VGA_LU62 *record);

VGA_MODE_DEF *vga_init_vga_mode_def(VGA_NODE *owner, const NAP_MODE_DEF_DATA *entry);
VGA_MODE_DEF *vga_insert_vga_mode_def(VGA_MODE_DEF *record);

VGA_MODE *vga_init_vga_mode(VGA_LU62 *owner, const NAP_MODE_DATA *entry);
VGA_MODE *vga_insert_vga_mode(VGA_MODE *record);

VGA_PLU *vga_init_vga_plu(VGA_LU62 *owner, const NAP_PLU_DATA *entry);
VGA_PLU *vga_insert_vga_plu(VGA_PLU *record);

VGA_COS *vga_init_vga_cos(VGA_NODE *owner, const NAP_COS_DATA *entry);
VGA_COS *vga_insert_vga_cos(VGA_COS *record);

VGA_DIR *vga_init_vga_dir(VGA_NODE *owner, const NAP_DIR_DATA *entry);
VGA_DIR *vga_insert_vga_dir(VGA_DIR *record);

VGA_REM_SYS *vga_init_vga_rem_sys(VGA_NODE *owner, const NAP_DIR_DATA *entry);
VGA_REM_SYS *vga_insert_vga_rem_sys(VGA_REM_SYS *record);

/* `type` is NAP_DIR_LU or NAP_DIR_WILDCARD_LU. */
VGA_REM_PLU *vga_init_vga_rem_plu(VGA_REM_SYS *owner, const NAP_PLU_DEF_DATA *entry,
                                  NB_USHORT type);
VGA_REM_PLU *vga_insert_vga_rem_plu(VGA_REM_PLU *record);

VGA_REM_SESS *vga_init_vga_rem_sess(VGA_REM_PLU *owner, const NAP_MODE_DATA *entry);
VGA_REM_SESS *vga_insert_vga_rem_sess(VGA_REM_SESS *record);

/* Records the sessions that a mode entry tells of under their partner, which is made if need be.
 * Returns the partner, or null without memory. */
VGA_REM_PLU *vga_add_vga_rem_sess(VGA_NODE *node, const NAP_MODE_DATA *entry);

/* Returns the remote system of that name, made if need be; the node's placeholder for a blank name.
 * Null without memory. */
VGA_REM_SYS *vga_need_rem_sys(VGA_NODE *node, const NB_UCHAR *fqcp_name);

/* Returns the partner LU of that name wherever it stands, made under the remote system of
 * `fqcp_name` if need be.  Null without memory. */
VGA_REM_PLU *vga_need_rem_plu(VGA_NODE *node, const NB_UCHAR *fqcp_name, const NB_UCHAR *fqplu_name,
                              NB_USHORT type);

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
