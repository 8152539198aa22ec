/* The comparators of the model's indexes and its look-ups.
 *
 * A comparator gets two keys of the stated layout, at any alignment, and returns a negative value,
 * 0 or a positive one.  "asc" keys are names in the local code page, compared without regard to
 * case over their whole width; "ebc" keys are EBCDIC names, compared as their local text. Composite
 * keys go field by field. */
#ifndef VGADSUTL_H
#define VGADSUTL_H

#include "vgamodel.h"

NB_INT vga_compare_asc4(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_asc8(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_asc10(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_asc14(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_asc16(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_node_name(const NB_VOID *a, const NB_VOID *b); /* 128 bytes, as asc */
NB_INT vga_compare_ebc8(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_ebc10(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_ebc17(const NB_VOID *a, const NB_VOID *b);

/* The keys point at pointers to 8-byte EBCDIC names. */
NB_INT vga_compare_lu(const NB_VOID *a, const NB_VOID *b);

NB_INT vga_compare_byte(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_ushort(const NB_VOID *a, const NB_VOID *b);
NB_INT vga_compare_ulong(const NB_VOID *a, const NB_VOID *b);

NB_INT vga_compare_mode(const NB_VOID *a, const NB_VOID *b);              /* VGA_MODE_KEY */
NB_INT vga_compare_plu(const NB_VOID *a, const NB_VOID *b);               /* VGA_PLU_KEY */
NB_INT vga_compare_directory_entries(const NB_VOID *a, const NB_VOID *b); /* VGA_DIR_KEY */
NB_INT vga_compare_rem_plu(const NB_VOID *a, const NB_VOID *b);           /* VGA_REM_PLU_KEY */
NB_INT vga_compare_rem_sess(const NB_VOID *a, const NB_VOID *b);          /* VGA_REM_SESS_KEY */

/* Look-ups by exact key; null when there is none.  Names as the model holds them. */
VGA_NODE *vga_find_node(const NB_CHAR *name); /* text of at most 128 bytes */
VGA_DLC *vga_find_dlc(const VGA_NODE *node, const NB_UCHAR *name);
VGA_PORT *vga_find_port(const VGA_NODE *node, const NB_UCHAR *name);
VGA_LS *vga_find_ls(const VGA_NODE *node, const NB_UCHAR *name);
VGA_LOCAL_PU *vga_find_local_pu(const VGA_NODE *node, const NB_UCHAR *name);
VGA_LU62 *vga_find_lu62_by_alias(const VGA_NODE *node, const NB_UCHAR *alias);
VGA_REM_SYS *vga_find_rem_sys(const VGA_NODE *node, const NB_UCHAR *fqcp_name);
VGA_REM_PLU *vga_find_rem_plu(const VGA_NODE *node, const NB_UCHAR *fqplu_name, NB_USHORT type);

/* 1 when the field holds nothing but EBCDIC blanks or NULs. */
NB_USHORT vga_blank_name(const NB_UCHAR *name, NB_USHORT width);

#endif
