/* List queries: how each list of the node is asked for, continued and turned into records.
 *
 * Every list follows one pattern; a row (lists.cpp) declares what is its own: the schema of its
 * entries, and the functions that make a record of one, find it again and take it out.  To add a
 * list: add its row. */
#ifndef LISTQUERIES_H
#define LISTQUERIES_H

#include "model.h"
#include "nofverbs.h"
#include "schema.h"
#include "verbqueue.h"
#include <functional>

enum VGA_ENTRY_RESULT : NB_USHORT {
    VGA_ENTRY_ADDED,
    VGA_ENTRY_SKIPPED, /* its owner is not in the model */
    VGA_ENTRY_NO_MEMORY
};

/* A record and the data that it was made of; both null: there is none. */
struct VGA_KNOWN {
    NB_VOID *record;
    const NB_UCHAR *entry;
};

struct VGA_LIST {
    NB_USHORT opcode;
    const records::Schema *schema; /* what an entry is */
    NB_USHORT of_domain = 0;       /* flag: of the domain; `node` is null below */
    records::Place owner = {};     /* in an entry, of the owner's name; width 0: needs none */

    /* Makes a record of an entry or merges it. */
    VGA_ENTRY_RESULT (*add)(VGA_NODE *node, const NB_UCHAR *entry) = nullptr;
    /* The record with that key, which has NAP_MAX_KEY bytes or is that of an entry. */
    VGA_KNOWN (*find)(VGA_NODE *node, const NB_UCHAR *key) = nullptr;
    /* Tells windows, deletes the record with what goes with it, and brings in line what stands for
     * it elsewhere.  Returns 0 when there is none. */
    NB_USHORT (*remove)(VGA_NODE *node, const NB_UCHAR *key) = nullptr;

    /* Bytes of an entry's key, behind its length; and of these the owner's, 0 when the list is not
     * kept under owners. */
    size_t key_length() const { return schema->key_size(); }
    size_t owner_length() const { return schema->owner_size(); }
};

/* The row of a list opcode, or null; and that of a verb that defines or deletes. */
const VGA_LIST *vga_find_list(NB_USHORT opcode);
const VGA_LIST *vga_find_changed_list(NB_USHORT opcode);

/* Where a list goes on: the key of the last entry received. */
struct VGA_LIST_POSITION {
    NB_USHORT received; /* flag: there was an entry */
    NB_UCHAR key[NAP_MAX_KEY];
};

/* How to start a list: with `key`, exactly that entry; else with `last`, the entries behind it;
 * else from the first.  `owner` (null: all) has owner_length() bytes. */
struct VGA_LIST_START {
    const NB_UCHAR *owner;
    const VGA_LIST_POSITION *last;
    const NB_UCHAR *key;
    NB_USHORT detail; /* NAP_DETAIL or NAP_SUMMARY */
};

/* Issues a list query.  Returns 1, or 0 when nothing was queued. */
NB_USHORT vga_issue_list(const VGA_LIST &list, NB_ULONG target, const VGA_LIST_START &start,
                         NB_ULONG user_data, VGA_COMPLETION completion);

/* Turns a completed list query into records.  Returns 1 and the position of the last entry, or 0
 * with the exit request made (164 for a failed query, 1 without memory), in the name of the build
 * and of the line of its step. */
NB_USHORT vga_process_list(const VGA_LIST &list, VGA_NODE *node, const NAP_VCB *vcb, NB_INT line,
                           VGA_LIST_POSITION *last);

/* Calls `visit` for every entry of a completed list query that can be right; the rest is reported.
 * The entry's key stands behind its length. */
NB_VOID vga_visit_entries(const VGA_LIST &list, const NAP_VCB *vcb,
                          const std::function<NB_VOID(const NB_UCHAR *entry)> &visit);

/* Finds the position of the last entry of an answer without looking into any: what follows can be
 * asked for before the entries are worked on. */
NB_VOID vga_find_list_end(const VGA_LIST &list, const NAP_VCB *vcb, VGA_LIST_POSITION *last);

/* 1 when the list has entries behind those that this answer brought.  A list that claims so but
 * brings nothing new ends there, with a report. */
NB_USHORT vga_list_goes_on(const VGA_LIST &list, const NAP_VCB *vcb, const VGA_LIST_POSITION &last);

/* 1 when the verb failed because the node behind its target died. */
NB_USHORT vga_node_is_gone(const NAP_VCB *vcb);

/* Reports an entry without an owner, or a name that no resource of the list has, unless such
 * reports are suppressed. */
NB_VOID vga_report_owner_missing(const VGA_LIST &list, const NB_UCHAR *entry);
NB_VOID vga_report_unknown(NB_USHORT opcode, const VGA_LIST &list, const NB_UCHAR *key);

/* Reports a verb that failed, unless such reports are suppressed. */
NB_VOID vga_report_failed_verb(const NAP_VCB *vcb);

/* Reports a verb of the build that failed, and requests the exit: 164 with its opcode. */
NB_VOID vga_query_failed(const NAP_VCB *vcb, const NB_CHAR *file, NB_INT line);

#endif
