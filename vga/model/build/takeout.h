/* What goes with a resource that the node does not have any more, and where else it showed.
 *
 * vga_take_out deletes a record as its destructor does, and brings in line what the destructor
 * cannot know of: the link station without its PU, the pool that an LU was in, counts.  Windows are
 * told by the caller before. */
#ifndef TAKEOUT_H
#define TAKEOUT_H

#include "recordtypes.h"
#include "vgadsdel.h"

template <class Record> NB_VOID vga_take_out(Record *record) {
    vga_delete_record(record);
}
NB_VOID vga_take_out(VGA_LOCAL_PU *pu);
NB_VOID vga_take_out(VGA_DOWN_PU *pu);
NB_VOID vga_take_out(VGA_LU03 *lu);
NB_VOID vga_take_out(VGA_DOWN_LU *lu);
NB_VOID vga_take_out(VGA_EXTRA_DATA *extra);
NB_VOID vga_take_out(VGA_REM_PLU *plu);
NB_VOID vga_take_out(VGA_CN_PORT *port);
NB_VOID vga_take_out(VGA_COS_NODE_ROW *row);
NB_VOID vga_take_out(VGA_COS_TG_ROW *row);
NB_VOID vga_take_out(VGA_LU62_TIMEOUT *timeout);
NB_VOID vga_take_out(VGA_POOL *pool);
NB_VOID vga_take_out(VGA_POOL_LU *member);
NB_VOID vga_take_out(VGA_ACCESS_LIST *list);
NB_VOID vga_take_out(VGA_USER *user);

/* Draw a line anew and tell windows, whose buttons may follow.  A link station's (null: none)
 * stands for the PU that is on it, too. */
NB_VOID vga_update_port_viewer(VGA_PORT *port);
NB_VOID vga_update_ls_viewer(VGA_LS *ls);
NB_VOID vga_update_local_pu_viewer(VGA_LOCAL_PU *pu);

/* Brings what a class of service, and a connection network, say of what they consist of in line. */
NB_VOID vga_cos_follows(VGA_COS *cos);
NB_VOID vga_cn_follows(VGA_CN *cn);

/* Tells what shows the mode that a time-out is of; nothing when it is another resource's. */
NB_VOID vga_timed_mode_changed(const VGA_NODE *node, const VGA_LU62_TIMEOUT_KEY &key);

/* Asks the node for a pool without LUs, which may be gone. */
NB_VOID vga_ask_for_empty_pool(VGA_NODE *node, const NB_UCHAR *name);

/* Puts an LU that names a pool into it. Returns 0 without memory. */
NB_USHORT vga_join_pool(VGA_LU03 *lu);

/* Reads the entry of a PU again. */
NB_VOID vga_read_pu(VGA_LOCAL_PU *pu);
NB_VOID vga_read_pu(VGA_DOWN_PU *pu);

/* So many more LUs belong to the PU. */
NB_VOID vga_pu_follows(VGA_LOCAL_PU *pu, NB_INT more);
NB_VOID vga_pu_follows(VGA_DOWN_PU *pu, NB_INT more);

#endif
