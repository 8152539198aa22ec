/* Text that the program offers to others as the selection and on the clipboard. */
#ifndef TEXTSELECTION_H
#define TEXTSELECTION_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>
#include <string>

/* PRIMARY and CLIPBOARD are this text (in the locale's characters) from now on, until somebody else
 * has something.  `widget` is realized; the text is copied.  Returns 0 when it could not be had. */
NB_USHORT vga_own_text(Widget widget, const std::string &text);

#endif
