/* Windows that list records which have neither lines nor a window of the table: they are part of
 * the window that opens them (gvga_part_desc), and close with it.
 *
 * A window lists the records of a node and, below, those of the selected one; it follows the model.
 * Its records are opened in forms where there is one, and deleted behind a question.  What lists
 * there are says one table (recordwindowtable.cpp); their titles, and those of their columns, stand
 * in resources/uil/recordwindows.uil as literals, called <list>_title and <list>_<field>. */
#ifndef RECORDWINDOW_H
#define RECORDWINDOW_H

#include "formrecords.h"

struct VGA_LIST_WINDOW;

struct VGA_RECORD_COLUMN {
    const records::FieldRow *field; /* of the record's entry */
    NB_USHORT width;                /* characters; never less than the title */
};

/* One list. */
struct VGA_RECORD_LIST {
    const NB_CHAR *name;
    const records::Schema *schema;
    /* What to know of the records, and the handles of those of an owner, in their order. */
    const VGA_FORM_TYPE *type;
    std::vector<NB_ULONG> (*handles)(const NB_VOID *owner);
    std::span<const VGA_RECORD_COLUMN> columns; /* the first tells records from each other */
    const NB_CHAR *form = nullptr;              /* that adds and changes one; null: none does */
    /* The message that says why the record cannot be deleted; null, or 0: it can. */
    NB_USHORT (*stays)(const NB_VOID *record) = nullptr;
};

/* A window: the node's list, and behind it those that belong to the selected record. */
struct VGA_RECORD_WINDOW {
    NB_CHAR name[VGA_UID_NAME_SIZE]; /* of its row, its description and its help topic */
    std::span<const VGA_RECORD_LIST> lists;
};

#define VGA_MOST_RECORD_LISTS 3 /* in a window: what the description has room for */

/* All of them (recordwindowtable.cpp). */
extern const std::span<const VGA_RECORD_WINDOW> gvga_record_windows;

/* Opens the window of that name over `parent`, for a node, or raises it. */
NB_VOID vga_show_record_window(const NB_CHAR *name, VGA_DIALOG *parent, VGA_NODE *node);

/* The same for the node of a list window: actions of its commands. */
NB_VOID vga_show_directory(VGA_LIST_WINDOW *window);
NB_VOID vga_show_connection_networks(VGA_LIST_WINDOW *window);
NB_VOID vga_show_partner_aliases(VGA_LIST_WINDOW *window);
NB_VOID vga_show_classes_of_service(VGA_LIST_WINDOW *window);

/* Slots of their rows of gvga_part_desc. */
NB_USHORT vga_record_window_get_widgets(VGA_DIALOG *desc);
NB_VOID vga_record_window_close_proc(VGA_DIALOG *desc);
NB_VOID vga_record_window_record_changed(VGA_DIALOG *desc, NB_VOID *item, VGA_RECORD_CHANGE what);

/* For `handles`: those of the records of an index of their owner. */
template <auto Index, auto Links> struct VGA_RECORDS_OF;
template <class Owner, class Record, AVL_TREE Owner::*Index, AVL_NODE Record::*Links>
struct VGA_RECORDS_OF<Index, Links> {
    static std::vector<NB_ULONG> handles(const NB_VOID *owner) {
        std::vector<NB_ULONG> found;
        vga_for_each(static_cast<const Owner *>(owner)->*Index, Links,
                     [&found](const Record &record) { found.push_back(record.handle); });
        return found;
    }
};

#endif
