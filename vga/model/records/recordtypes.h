/* What each record type of the model declares as its own: keys, indexes, line, merge, dependants.
 * See VGA_RECORD_DEFAULTS (recordpattern.h) for what each part means. */
#ifndef RECORDTYPES_H
#define RECORDTYPES_H

#include "ntlname.h"
#include "partners.h"
#include "recordpattern.h"
#include "vgadsdel.h"
#include "vgadsutl.h"

/* Copies a key field out of a list entry; packed fields are never referred to in place. */
#define VGA_COPY_KEY(field, entry_field) memcpy(&(field), &(entry_field), sizeof(field))

template <> struct VGA_RECORD_TYPE<VGA_NODE> : VGA_RECORD_DEFAULTS<VGA_NODE> {
    static std::array<VGA_INDEX_LINK, 1> links(VGA_NODE &node) {
        return {vga_index(gvga_system->nodes, node.links, node.name)};
    }
    static NB_VOID init(VGA_NODE &node);
    static NB_VOID merged(VGA_NODE &kept, VGA_NODE &fresh);
    static VGA_LINE_PLACE line(VGA_NODE &node) {
        return {&gvga_system->node_viewer_root, nullptr, VGA_VIEWER_NODE, &node.links, 0};
    }
    static NB_VOID linked(VGA_NODE &node);
    static NB_VOID delete_children(VGA_NODE &node);
    static NB_VOID unlinked(VGA_NODE &node);
};

#include "connectivitytypes.h"
#include "lutypes.h"
#include "servicetypes.h"

#endif
