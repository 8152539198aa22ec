/* Help on the web: pages that the operator's own browser shows. */
#ifndef WEBHELP_H
#define WEBHELP_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

/* Callback of the help menus' web entries.  `client_data` is the entry's tag, a text: "1" or "2".
 * The command is the resource "*webBrowser", a blank and the address that is the entry's message,
 * each cut at 200 bytes; a message says so when its program is not there.  An unknown tag is an
 * assertion, and nothing is started. */
NB_VOID vga_menu_help_web(Widget widget, XtPointer client_data, XtPointer call_data);

#endif
