#include "toolkit.h"
#include <Xm/Xm.h>

XtAppContext gvga_appcontext;
Widget gvga_toplevel;
Display *gvga_display;
Screen *gvga_screen;
Window gvga_root_window;
Atom gvga_close_atom;
MrmHierarchy gvga_uil_hierarchy;
XrmDatabase gvga_resource_database;
XrmDatabase gvga_local_database;
NB_CHAR gvga_local_db_file[301];
NB_USHORT gvga_display_dirty;

NB_VOID vga_null_timeout_proc(XtPointer, XtIntervalId *) {}

NB_VOID vga_add_null_timeout(NB_VOID) {
    if (gvga_appcontext != nullptr) {
        XtAppAddTimeOut(gvga_appcontext, 0, vga_null_timeout_proc, nullptr);
    }
}

NB_VOID vga_update_display(NB_VOID) {
    if (gvga_toplevel != nullptr && gvga_display_dirty) {
        gvga_display_dirty = 0;
        /* What is exposed is drawn, as far as the server has said so: XmUpdateDisplay would wait
         * for it to say more, on a distant display longer than the work that is to come. */
        XEvent event;
        while (XCheckMaskEvent(gvga_display, ExposureMask, &event)) {
            XtDispatchEvent(&event);
        }
    }
}
