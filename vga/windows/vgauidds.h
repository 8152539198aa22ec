/* The table of windows and dialogs, gvga_uid_desc.  A window of this release fills its row with its
 * functions and the size of its descriptor; a row that only has a number, a name and a kind is one
 * that cannot be opened. */
#ifndef VGAUIDDS_H
#define VGAUIDDS_H

#include "vgadgutl.h"

#endif
