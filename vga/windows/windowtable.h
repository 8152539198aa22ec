/* The table of windows and dialogs, gvga_uid_desc.  A window of this release fills its row with its
 * functions and the size of its descriptor; the other rows are marked as coming later. */
#ifndef WINDOWTABLE_H
#define WINDOWTABLE_H

#include "dialogids.h"
#include "vgadgutl.h"

#endif
