/* The build: reads the whole configuration from the node software and makes the model of it.
 *
 * It runs as chains of verbs: each completion stores its answer and issues what follows.  The steps
 * and what follows what stand in two tables, one for the domain and one for a node (vgadsbld.cpp);
 * one engine runs both.  A start-up flag a chain says what is outstanding; a node, and the domain,
 * is complete when every flag is clear, in whatever order the answers came. */
#ifndef VGADSBLD_H
#define VGADSBLD_H

#include "model.h"
#include "verbqueue.h"

/* Starts the build of the domain: opens its configuration.  Requests an exit if that cannot be
 * queued. */
NB_VOID vga_start_build_system(NB_VOID);

/* Starts (or starts again) the build of one node, with all its flags set; nothing while the program
 * closes.
 * REQUIRES: a node. */
NB_VOID vga_start_build_node(VGA_NODE *node);

/* Forgets what the build of a node has under way; what a late answer brings is closed.  Starting a
 * build, and letting go of a node, begin with it. */
NB_VOID vga_stop_build_node(VGA_NODE *node);

/* A node without a configuration: connects to it and reads nothing more. */
NB_VOID vga_start_build_unconfigured_node(VGA_NODE *node);

/* Read what hangs under one record: the partners, modes and passwords of a local LU, the LUs of a
 * PU, the ports of a connection network, the additional data of a node's dependent LUs, and its TP
 * load information (nothing when that file is not open).  Known records are merged.
 * REQUIRES: a record. */
NB_VOID vga_start_build_lu62(VGA_LU62 *this_lu);
NB_VOID vga_start_build_local_pu(VGA_LOCAL_PU *this_pu);
NB_VOID vga_start_build_down_pu(VGA_DOWN_PU *this_pu);
NB_VOID vga_start_build_cn(VGA_CN *this_cn);
NB_VOID vga_start_build_extra_data(VGA_NODE *node);
NB_VOID vga_start_build_tp_load_info(VGA_NODE *node);

/* Reads the node's RTP connections, of which no indication tells, anew: for the windows that show
 * them.  Those that the list does not have any more are deleted at its end. */
NB_VOID vga_start_build_rtp_conns(VGA_NODE *node);

/* Reads the domain's lists, its node list or its log settings again, merging what is known. */
NB_VOID vga_rebuild_system(NB_VOID);
NB_VOID vga_rebuild_sna_net(NB_VOID);
NB_VOID vga_rebuild_logging(NB_VOID);

/* Completion routines. */
NB_VOID vga_build_system(const VGA_PROCESS_STATE *work);
NB_VOID vga_build_node(const VGA_PROCESS_STATE *work);
NB_VOID vga_build_unconfigured_node(const VGA_PROCESS_STATE *work);
NB_VOID vga_build_lu62(const VGA_PROCESS_STATE *work);
NB_VOID vga_build_local_pu(const VGA_PROCESS_STATE *work);
NB_VOID vga_build_down_pu(const VGA_PROCESS_STATE *work);
NB_VOID vga_build_cn(const VGA_PROCESS_STATE *work);
NB_VOID vga_build_extra_data(const VGA_PROCESS_STATE *work);
NB_VOID vga_build_tp_load_info(const VGA_PROCESS_STATE *work);
NB_VOID vga_build_rtp_conns(const VGA_PROCESS_STATE *work);

/* 1 when every flag is clear.  `text` (null: not wanted) gets one character a flag, "1" for
 * outstanding, and a terminator. */
NB_USHORT vga_check_system_startup(NB_CHAR (*text)[VGA_SYSTEM_CHAINS + 1]);
NB_USHORT vga_check_node_startup(const VGA_NODE *node, NB_CHAR (*text)[VGA_NODE_CHAINS + 1]);

/* 1 while the build still has to read (the rest of) a list of a node, or of the domain (null),
 * whose step has a flag of its own. */
NB_USHORT vga_is_list_outstanding(const VGA_NODE *node, NB_USHORT opcode);

/* Keeps a record that a query of kind NAP_KIND_RECORD has answered with, as the build does; `node`
 * is null for the domain's.  Returns 0 when the build would not ask for it now. */
NB_USHORT vga_keep_record(VGA_NODE *node, const NAP_VCB *vcb);

#define VGA_PHASE_COMPLETE            0
#define VGA_PHASE_LOCAL_PUS           1
#define VGA_PHASE_DOWN_PUS            2
#define VGA_PHASE_CONNECTION_NETWORKS 4
#define VGA_PHASE_LOCAL_LUS           5

/* Starts a per-record phase of a node's build: the lists that are kept under each record of a
 * class. VGA_PHASE_COMPLETE: one node is complete; announces the model when all is. */
NB_VOID vga_build_next_action(NB_USHORT kind, VGA_NODE *node);

/* A node left the build (it died, or could not be reached): clears its flags and asks whether the
 * rest is complete. */
NB_VOID vga_drop_node_from_build(VGA_NODE *node);

#endif
