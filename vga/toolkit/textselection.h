/* Text that the program offers to others as the selection and on the clipboard: as UTF8_STRING,
 * TEXT, STRING and COMPOUND_TEXT, however long (the toolkit sends long texts in pieces).  Texts are
 * in the locale's characters.  Widgets are realized; what one offers ends when it is destroyed, or
 * when somebody else has something. */
#ifndef TEXTSELECTION_H
#define TEXTSELECTION_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>
#include <functional>
#include <string>

/* PRIMARY and CLIPBOARD, or the latter alone, are this text from now on; it is copied.  Returns 0
 * when they could not be had. */
NB_USHORT vga_own_text(Widget widget, const std::string &text);
NB_USHORT vga_own_clipboard(Widget widget, const std::string &text);

/* PRIMARY is from now on what `make` writes each time when somebody asks for it; an empty text is
 * refused.  Costs nothing while the widget offers such a text already. */
NB_VOID vga_offer_text(Widget widget, const std::function<std::string()> &make);

/* Ends what vga_offer_text began, so that `make` is not called any more. */
NB_VOID vga_withdraw_text(Widget widget);

#endif
