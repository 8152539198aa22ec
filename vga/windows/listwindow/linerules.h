/* What can be done with a line, by its viewer type: one row a type, for all windows.  What can be
 * started and stopped says startstop.h, what goes with a deletion says deletion.h. */
#ifndef LINERULES_H
#define LINERULES_H

#include "commands.h"
#include "messages.h"
#include <string>

struct VGA_LINE_RULE {
    VGA_VIEWER_TYPE type;
    NB_USHORT words = VGA_MSG_KIND_LINES; /* message for vga_counted: what such lines are */
    NB_USHORT properties = VGA_NO_DIALOG; /* dialog that shows and changes such a record */
    /* The same where it depends on the record, of which there may be none (null). */
    NB_USHORT (*properties_of)(const NB_VOID *record) = nullptr;
    NB_USHORT status = VGA_NO_DIALOG;
    const NB_CHAR *topic = nullptr; /* of the help; null: that of its properties, or status */
    NB_UCHAR can_copy = 1, can_delete = 1; /* flags */
    /* 0: no operator defined the record, so that it can be neither deleted nor copied.  Null: they
     * all are. */
    NB_USHORT (*is_defined)(const NB_VOID *record) = nullptr;
};

/* The row of a type; null: a title, or a line that nothing can be done with. */
const VGA_LINE_RULE *vga_line_rule(NB_SHORT type);

/* So many lines of a type: "link station" for one, else "4,000 link stations". */
std::string vga_lines_in_words(NB_SHORT type, NB_ULONG count);

/* The dialogs of a line; VGA_NO_DIALOG: its type has none.  This release may lack one that is
 * named: vga_is_written. */
NB_USHORT vga_properties_of(const VGA_LINE_RULE &rule, const NB_VOID *record);
NB_USHORT vga_is_written(NB_USHORT dialog_id);

/* The help topic of a line, of which the record may be missing; null: its type has none. */
const NB_CHAR *vga_topic_of(const VGA_LINE_RULE &rule, const NB_VOID *record);

/* The name of what a line stands for, in the locale's characters: its first column. */
std::string vga_line_name(const VGA_VIEWER_ITEM &item);

#endif
