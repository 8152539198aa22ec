/* Lines of texts that are broken to fit. */
#ifndef WRAPTEXT_H
#define WRAPTEXT_H

#include "nbtypes.h"

/* Copies `text` with its lines broken at blanks, so that none has more than `width` columns unless
 * one word alone has; line ends in the text stay.  Columns are those of the locale's characters.
 * Returns memory from malloc; null without memory. */
NB_CHAR *vga_wrap_text(const NB_CHAR *text, NB_USHORT width);

#endif
