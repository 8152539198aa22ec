/* The dialogs of what a node or the domain is set to, for the windows that open them. */
#ifndef SETTINGSDIALOGS_H
#define SETTINGSDIALOGS_H

#include "vgadgutl.h"

struct VGA_NODE;

/* Each returns 0 when there is no dialog to be had; why was shown. */

/* What a node is.  Of one that is not configured, what it will be. */
NB_USHORT vga_display_node_dialog(VGA_DIALOG *parent, VGA_NODE *node);

/* Which traces a node writes.  REQUIRES: it is configured, and not older than the domain. */
NB_USHORT vga_display_tracing_dialog(VGA_DIALOG *parent, VGA_NODE *node);

/* What the nodes of the domain write to their logs.  `node` is the one that the operator is at, or
 * null: the settings are those of all. */
NB_USHORT vga_display_logging_dialog(VGA_DIALOG *parent, VGA_NODE *node);

/* Says that a node is not configured, and opens the node dialog for it when the operator wants so.
 * Without a node, it is about the domain's first one of that state.  `flag`: puts it on the screen.
 * Returns 0 without such a node, too. */
NB_USHORT vga_display_start_help_dialog(VGA_NODE *node, NB_USHORT flag);

#endif
