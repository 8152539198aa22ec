/* Help windows: topics of a help volume, or manual pages.
 *
 * A help dialog fills a shell of its own, which the caller makes, gives a title and pops up; the
 * dialog is a widget of the toolkit's usual kind, with resources and callbacks, returned unmanaged.
 * The full dialog has contents, index, search and history; the quick one shows a topic beside the
 * window that it is about.  Nothing blocks: a manual page is formatted by a process of its own.
 *
 * A volume that is missing or damaged, or has no such topic, is no error of the caller: the window
 * opens and says so.  Texts are UTF-8.  Volumes are found in the folder share/help of the
 * installation (nba_prefix), in that of the locale LANG below it first; a name that begins with '/'
 * is a path. */
#ifndef HELP_H
#define HELP_H

#include "nbtypes.h"
#include <X11/Intrinsic.h>

NB_EXTERN_C_BEGIN

/* Resources that the caller sets, at creation or later; strings are copied.  Setting another
 * location, page or type shows it.  What is taste (fonts, colours, button texts) is set by resource
 * files; docs/help.md lists it. */
#define NB_HELP_VOLUME   "helpVolume" /* name of the volume */
#define NB_HELP_LOCATION "locationId" /* name of a topic, or one of the two below */
#define NB_HELP_TYPE     "helpType"   /* NB_HELP_TYPE_TOPIC (the default) or _MAN_PAGE */
#define NB_HELP_MAN_PAGE "manPage"    /* "name" or "name(section)" */

/* Callbacks; call data is an NB_HELP_CALLBACK. */
#define NB_HELP_CLOSE_CALLBACK "closeCallback" /* the operator closed the window */
#define NB_HELP_HYPER_LINK_CALLBACK                                                                \
    "hyperLinkCallback" /* a link that is the caller's to follow                                   \
                         */

/* Values of NB_HELP_TYPE: an unsigned char. */
#define NB_HELP_TYPE_TOPIC    0
#define NB_HELP_TYPE_MAN_PAGE 1

/* Locations of every volume: its first topic with the contents beside it, with the index, and with
 * the search, whose field has the keyboard. */
#define NB_HELP_HOME   "_home"
#define NB_HELP_INDEX  "_index"
#define NB_HELP_SEARCH "_search"

enum NB_HELP_REASON { NB_HELP_CLOSED, NB_HELP_LINK };

/* Links to other topics are followed in the same window by the library itself. */
enum NB_HELP_LINK_KIND {
    NB_HELP_LINK_NEW_WINDOW,  /* a topic, in a window of its own */
    NB_HELP_LINK_MAN_PAGE,    /* a manual page: "name(section)" */
    NB_HELP_LINK_APPLICATION, /* a word whose meaning the volume and the caller agree on */
};

/* The strings are valid during the call.  On closing only `reason` and `event` count.  The widget
 * may be destroyed in either callback. */
typedef struct nb_help_callback {
    NB_INT reason;
    XEvent *event; /* may be null */
    const NB_CHAR *volume;
    const NB_CHAR *location; /* topic, page or word */
    NB_INT link_kind;
} NB_HELP_CALLBACK;

/* Make a dialog in `parent`, a shell without children.  The shell pops down when the dialog is
 * closed; its window manager's close request is handled here, too. */
Widget DtCreateHelpDialog(Widget parent, NB_CHAR *name, ArgList args, Cardinal count);
Widget DtCreateHelpQuickDialog(Widget parent, NB_CHAR *name, ArgList args, Cardinal count);

/* The buttons of a quick dialog: to be relabelled, hidden, or given another activate callback
 * (remove the present ones first). */
enum NB_HELP_QUICK_BUTTON {
    NB_HELP_QUICK_CLOSE,
    NB_HELP_QUICK_BACK,   /* to the topic before; insensitive without one */
    NB_HELP_QUICK_WINDOW, /* asks by a link callback for the topic in a full window */
    NB_HELP_QUICK_MORE,   /* shows the volume's first topic */
};

/* Null for a widget that is no quick dialog, or a number that is no button. */
Widget nb_help_quick_button(Widget dialog, NB_INT which);

NB_EXTERN_C_END

#endif
