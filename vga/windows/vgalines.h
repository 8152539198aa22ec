/* What the lists show for each record: the text and the icon of its line.
 *
 * A text function writes at most VGA_VIEWER_TEXT_BUFFER bytes and returns the length; an icon
 * function returns an index into gvga_pixmaps.  `data` is the record.  The columns of a list stand
 * under each other on all its levels; they are set by the messages' column stops. */
#ifndef VGALINES_H
#define VGALINES_H

#include "nbtypes.h"

NB_USHORT vga_create_node_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_node_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_port_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_port_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_ls_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_ls_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_local_pu_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_local_pu_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_deplu_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_deplu_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_lu62_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_lu62_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_mode_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_mode_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_rem_sys_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_rem_sys_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_rem_plu_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_rem_plu_viewer_icon(NB_VOID *data);
NB_USHORT vga_create_rem_sess_viewer_text(NB_VOID *data, NB_CHAR *buffer);
NB_USHORT vga_choose_rem_sess_viewer_icon(NB_VOID *data);

#endif
