/* Issuers: one function a verb that is no list query (those are in listqueries.h).  Each builds the
 * control block and queues it.  Returns 1, or 0 when nothing was queued; what it allocated is freed
 * then.  `user_data` is what the completion gets: as a rule the handle of the record that waits. */
#ifndef VGANOFBD_H
#define VGANOFBD_H

#include "nofverbs.h"
#include "verbqueue.h"

/* `file` is NAP_SYSTEM_FILE and the like; `node_name` (text, null: none) says whose TP load file.
 */
NB_USHORT vga_issue_open_file(NB_USHORT file, const NB_CHAR *node_name, NB_ULONG user_data,
                              VGA_COMPLETION completion);
NB_USHORT vga_issue_close_file(NB_ULONG target, NB_ULONG user_data, VGA_COMPLETION completion);

/* `node_name` has 128 bytes, padded with NULs. */
NB_USHORT vga_issue_connect_node(const NB_CHAR *node_name, NB_ULONG user_data,
                                 VGA_COMPLETION completion);
NB_USHORT vga_issue_disconnect_node(NB_ULONG target, NB_ULONG user_data, VGA_COMPLETION completion);

/* Asks for indications; their user data is `user_data`, too. */
NB_USHORT vga_issue_register_sink(NB_ULONG target, NB_USHORT indication, NB_ULONG user_data,
                                  VGA_COMPLETION completion);
NB_USHORT vga_issue_set_proc_mode(NB_ULONG target, NB_ULONG user_data, VGA_COMPLETION completion);

/* A query that answers inside its block: the opcode is one of kind NAP_KIND_RECORD. */
NB_USHORT vga_issue_query_record(NB_ULONG target, NB_USHORT opcode, NB_ULONG user_data,
                                 VGA_COMPLETION completion);

#endif
