/* The folded texts of lines (linepattern.h), kept from key to key while somebody types, so that the
 * text of a line is made once and a million lines are looked at in a moment.
 *
 * OWNS: the texts, until they are dropped. */
#ifndef LINETEXTS_H
#define LINETEXTS_H

#include "tree.h"
#include <memory>
#include <string_view>
#include <vector>

class VGA_LINE_TEXTS {
public:
    /* Writes a line's text, with its column stops and terminated, into VGA_VIEWER_TEXT_BUFFER + 1
     * bytes. */
    using WRITER = NB_VOID (*)(const VGA_VIEWER_ITEM *item, NB_CHAR *buffer);

    explicit VGA_LINE_TEXTS(WRITER writer) : write(writer) {}

    /* The line's text, good until they are dropped. */
    std::string_view of(VGA_VIEWER_ITEM *item);

    /* Frees all of them.  `root` is the list that the lines are in; one whose text changes, or that
     * leaves the list, forgets it (text_at 0). */
    NB_VOID drop(VGA_VIEWER_ROOT *root);

private:
    NB_ULONG keep(std::string_view text);

    WRITER write;
    std::vector<std::unique_ptr<NB_CHAR[]>> blocks = {};
    size_t used = 0; /* of the last one, in bytes */
};

#endif
