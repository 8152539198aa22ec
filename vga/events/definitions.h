/* What is peculiar to definitions of single classes: for private use of completions. */
#ifndef DEFINITIONS_H
#define DEFINITIONS_H

#include "model.h"
#include "schema.h"

struct VGA_DEFINITION {
    const records::Schema *schema = nullptr;
    /* Sets what the node fills in by itself and the block does not carry. */
    NB_VOID (*fill)(NB_UCHAR *entry) = nullptr;
    /* Brings in line what the definition changed elsewhere.  `before` is the entry that the record
     * had; null: it is new. */
    NB_VOID (*joined)(NB_VOID *record, const NB_UCHAR *before) = nullptr;
    /* The verb was about a resource that the model does not have, perhaps because it still reads
     * its list: brings in line what that list does not bring.  Of a deletion the entry holds the
     * key only. */
    NB_VOID (*unread)(VGA_NODE *node, const NB_UCHAR *entry) = nullptr;
    /* Puts the entry in, in place of the list.  Returns the record, null without one. */
    NB_VOID *(*define)(VGA_NODE *node, const NB_UCHAR *entry) = nullptr;
};

/* The row of a schema; one with nothing peculiar for those that have none. */
const VGA_DEFINITION &vga_find_definition(const records::Schema *schema);

#endif
