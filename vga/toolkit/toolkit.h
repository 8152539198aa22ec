/* The toolkit's handles, and what the core asks of the toolkit.  Start-up (startup) sets them;
 * nobody else writes them, but for gvga_display_dirty. */
#ifndef TOOLKIT_H
#define TOOLKIT_H

#include "nbtypes.h"
#include <Mrm/MrmPublic.h>
#include <X11/Intrinsic.h>
#include <X11/Xresource.h>

#define VGA_CLASS "Quiladmin"

extern XtAppContext gvga_appcontext; /* null in a test without a display */
extern Widget gvga_toplevel;
extern Display *gvga_display;
extern Screen *gvga_screen;
extern Window gvga_root_window;
extern Atom gvga_close_atom; /* WM_DELETE_WINDOW */
extern MrmHierarchy gvga_uil_hierarchy;
extern XrmDatabase gvga_resource_database;
extern XrmDatabase gvga_local_database; /* the user's own file, already merged; null without one */
extern NB_CHAR gvga_local_db_file[301];

extern NB_USHORT gvga_display_dirty; /* something was drawn or exposed since the last update */

/* For the hooks `wake` and `flush` (hooks.h): adds a timer of no length with a routine that does
 * nothing; makes the screen current if it is dirty.  Both do nothing without a display. */
NB_VOID vga_add_null_timeout(NB_VOID);
NB_VOID vga_update_display(NB_VOID);

/* An empty timer routine: makes a blocked main loop go round. */
NB_VOID vga_null_timeout_proc(XtPointer data, XtIntervalId *id);

#endif
