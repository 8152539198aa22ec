/* The model half of a completion: what a verb that changed something makes of the model.  The
 * program's own verbs and the copies of other administrators' take the same way.
 *
 * One routine defines and one deletes, for every schema: the record is found by the key, its entry
 * made of the block and of what the record holds already, and the list's own functions put it in
 * or take it out.  What is peculiar to a class stands in definitions.cpp.  Every open window and
 * dialog is told.  A block about what the model does not have is reported and dropped, without a
 * report while its list is still being read. */
#ifndef COMPLETIONS_H
#define COMPLETIONS_H

#include "verbqueue.h"

/* Of any verb that changes: the completion routine of one's own verbs, or what it calls before the
 * dialog half.  Nothing for a verb that failed. */
NB_VOID vga_verb_completed(const VGA_PROCESS_STATE *work);

/* Copies of verbs that configure a node, configure the domain, and start and stop resources of a
 * node.  The user data is the handle of what registered for them; a stale one drops the copy. */
NB_VOID vga_process_node_config_ind(const VGA_PROCESS_STATE *work);
NB_VOID vga_process_system_config_ind(const VGA_PROCESS_STATE *work);
NB_VOID vga_process_node_manage_ind(const VGA_PROCESS_STATE *work);

/* The same routine, by the names of single verbs: a node may take the configuration over from now
 * on, or not any more. */
NB_VOID vga_process_add_backup(const VGA_PROCESS_STATE *work);
NB_VOID vga_process_delete_backup(const VGA_PROCESS_STATE *work);

/* 1 for a verb about the domain, 0 for one about a node. */
NB_USHORT vga_is_verb_of_domain(NB_USHORT opcode);

#endif
