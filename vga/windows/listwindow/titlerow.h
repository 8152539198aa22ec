/* The row of a pane's title.  From the left: the title, the counts of the list in what room is
 * left, what ends its filter while one is on, and at the right end what explains the icons (the
 * key), as long as it has room.  While the field for finding is open (findbar.h), it has all that
 * is to the right of the title, and that place, too, where it would not fit.  The row is as high as
 * its highest part; the rule below it hangs on no part, so that any of them may come and go. */
#ifndef TITLEROW_H
#define TITLEROW_H

#include "listwindow.h"

/* Pixels that the row needs, and more with its key. */
NB_ULONG vga_listw_row_height(const VGA_LISTW_PANE &pane);
NB_ULONG vga_listw_key_height(const VGA_LISTW_PANE &pane);

/* Arranges the row in a window of that width, with the key only if it is wanted and fits. */
NB_VOID vga_listw_arrange_row(const VGA_LISTW_PANE &pane, NB_ULONG width, NB_USHORT key_wanted);

#endif
