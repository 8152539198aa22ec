/* What becomes of resources whose start or stop the node took up: told as one outcome (outcomes.h)
 * when the last of them has come to rest.  A link station or port that does not come up by itself
 * is told of by its status, so that one alone is not told of twice. */
#ifndef STARTWATCH_H
#define STARTWATCH_H

#include "hooks.h"
#include "startstop.h"

/* Begins; what has no states of its own is at rest. */
NB_VOID vga_watch_operated(const std::vector<VGA_RESOURCE> &resources, VGA_OPERATION operation);

/* Something became of a record: of a node, its state or connection. */
NB_VOID vga_watched_follow(const NB_VOID *record, VGA_RECORD_CHANGE what);

#endif
