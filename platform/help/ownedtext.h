/* Text of a help window that other windows can paste. */
#ifndef HELP_OWNEDTEXT_H
#define HELP_OWNEDTEXT_H

#include <X11/Intrinsic.h>

#include <string>

namespace help {

/* Makes the text, in UTF-8, the selection of that name (PRIMARY, CLIPBOARD).  `widget` is realized;
 * the text is gone with it. */
void own_text(Widget widget, const char *selection, const std::string &text);

/* The widget goes. */
void forget_text(Widget widget);

} // namespace help

#endif
