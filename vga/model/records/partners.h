/* Partner LUs and the remote systems that they are on.
 *
 * Neither has a list of its own: entries of the directory, partners and modes in use name them, and
 * say, or do not say, at which control point they are.  A partner stands under the control point
 * that was heard of last, moves when another entry says otherwise, and stays while any entry names
 * it or a definition of it exists.  One whose control point nobody knows stands under the node's
 * placeholder.  A remote system goes when neither the directory nor a partner is left. */
#ifndef PARTNERS_H
#define PARTNERS_H

#include "model.h"

/* The record that holds `ref` names the partner of 17 bytes `fqplu_name` (EBCDIC) and of that type
 * (NAP_DIR_LU or NAP_DIR_WILDCARD_LU), and says that it is at the control point `fqcp_name` (blank:
 * does not say).  What it named before is forgotten.  Returns 0 without memory. */
NB_USHORT vga_name_partner(VGA_NODE *node, VGA_PARTNER_REF &ref, const NB_UCHAR *fqcp_name,
                           const NB_UCHAR *fqplu_name, NB_USHORT type);

/* The record names no partner any more. */
NB_VOID vga_forget_partner(VGA_PARTNER_REF &ref);

/* Returns the remote system of that name, made if need be; the node's placeholder for a blank name.
 * Null without memory. */
VGA_REM_SYS *vga_need_rem_sys(VGA_NODE *node, const NB_UCHAR *fqcp_name);

/* Returns the partner LU of that name wherever it stands, made under the placeholder if need be.
 * Null without memory. */
VGA_REM_PLU *vga_need_rem_plu(VGA_NODE *node, const NB_UCHAR *fqplu_name, NB_USHORT type);

/* The definition of the partner was deleted. */
NB_VOID vga_undefine_rem_plu(VGA_REM_PLU *plu);

/* The system goes if nothing says any more that it exists. */
NB_VOID vga_drop_unused_system(VGA_REM_SYS *system);

#endif
