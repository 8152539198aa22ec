/* Status classes: the resources whose status changes while the node runs.
 *
 * One row a class says what the status checks (vgadschk.h) and the indications must know alike: the
 * list that finds its records, the schema that says which bytes of the entry are its status, and
 * what follows from a change.  To add a class: add its VGA_STATUS_ID and its row.
 * The rows own nothing. */
#ifndef STATUSCLASSES_H
#define STATUSCLASSES_H

#include "listqueries.h"
#include "schema.h"

/* What an indication about a resource without a record leads to. */
#define VGA_UNKNOWN_REPORT 1 /* an exception record */
#define VGA_UNKNOWN_READ   2 /* the node made it by itself: its entry is read and added */

struct VGA_STATUS_CLASS {
    VGA_STATUS_ID id;
    NB_USHORT query;      /* opcode of the list */
    NB_USHORT indication; /* opcode */
    NB_USHORT chain;      /* VGA_NODE_CHAIN: the list's start-up flag */
    const records::Schema *schema;
    NB_USHORT unknown;       /* VGA_UNKNOWN_REPORT, VGA_UNKNOWN_READ or both */
    NB_USHORT detail;        /* of the exception record */
    NB_USHORT name_offset;   /* in the key, of the name that it shows */
    NB_USHORT name_width;    /* bytes */
    NB_USHORT kept_by_merge; /* flag: a merge carries the old status over */

    /* The bytes of the list entry that are its status. */
    const records::Place &status() const { return schema->det; }

    /* How its records are found and taken out. */
    const VGA_LIST &list() const { return *vga_find_list(query); }

    /* Takes over the first `length` bytes of the status (at most all of it).  Nothing
     * happens when they are as they were; else the lines that show them are redrawn, and windows
     * are told. */
    NB_VOID (*change)(NB_VOID *record, const NB_UCHAR *status, NB_USHORT length);
};

extern const VGA_STATUS_CLASS gvga_status_classes[VGA_STATUS_CLASSES];

/* The row of an indication's or a list's opcode, or null. */
const VGA_STATUS_CLASS *vga_find_status_class(NB_USHORT opcode);

#endif
