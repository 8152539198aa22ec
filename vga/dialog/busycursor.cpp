#include "busycursor.h"
#include "holders.h"
#include "nbproblem.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include <X11/cursorfont.h>

namespace {

Cursor hourglass; /* None until the first use */
NB_USHORT hourglass_on;

/* A bitmap of "cursor.uid", freed with this. */
struct BITMAP {
    BITMAP(MrmHierarchy hierarchy, const NB_CHAR *name) {
        found = MrmFetchBitmapLiteral(hierarchy, const_cast<NB_CHAR *>(name), gvga_screen,
                                      gvga_display, &pixmap, &width, &height) == MrmSUCCESS;
    }
    BITMAP(const BITMAP &) = delete;
    BITMAP &operator=(const BITMAP &) = delete;
    ~BITMAP() {
        if (found) {
            XFreePixmap(gvga_display, pixmap);
        }
    }
    bool found = false;
    Pixmap pixmap = None;
    Dimension width = 0;
    Dimension height = 0;
};

Cursor cursor_from(MrmHierarchy hierarchy, bool large) {
    BITMAP shape(hierarchy, large ? "hourg32_icon" : "hourg16_icon");
    BITMAP mask(hierarchy, large ? "hourg32m_icon" : "hourg16m_icon");
    if (!shape.found || !mask.found) {
        return None;
    }
    XColor black{}, white{};
    white.red = white.green = white.blue = 0xFFFF;
    black.flags = white.flags = DoRed | DoGreen | DoBlue;
    return XCreatePixmapCursor(gvga_display, shape.pixmap, mask.pixmap, &black, &white,
                               shape.width / 2U, shape.height / 2U);
}

Cursor fetch_cursor(NB_VOID) {
    NB_CHAR file[] = "cursor.uid";
    String files[] = {file};
    MrmHierarchy hierarchy = nullptr;
    VGA_NO_WARNINGS silence;
    if (MrmOpenHierarchyPerDisplay(gvga_display, 1, files, nullptr, &hierarchy) != MrmSUCCESS) {
        return None;
    }
    unsigned width = 0;
    unsigned height = 0;
    XQueryBestCursor(gvga_display, gvga_root_window, 32, 32, &width, &height);
    Cursor cursor = cursor_from(hierarchy, width >= 32 && height >= 32);
    MrmCloseHierarchy(hierarchy);
    return cursor;
}

/* A closed window is told too, or it would still be busy when it is opened again. */
NB_VOID set_cursor(VGA_DIALOG *desc, NB_VOID *) {
    for (Widget shell : {desc->shell, desc->modal_dlg.shell}) {
        if (shell == nullptr || !XtIsRealized(shell)) {
            continue;
        }
        if (hourglass_on == 0) {
            XUndefineCursor(gvga_display, XtWindow(shell));
        } else if (desc->in_use != 0) {
            XDefineCursor(gvga_display, XtWindow(shell), hourglass);
        }
    }
}

} // namespace

NB_VOID vga_create_hourglass(NB_VOID) {
    hourglass = fetch_cursor();
    if (hourglass == None) {
        nba_pd_print_problem(NB_PD_WINDOW, NB_PD_WINDOW_NO_CURSOR, "s", "cursor");
        hourglass = XCreateFontCursor(gvga_display, XC_watch);
    }
}

NB_VOID vga_display_hourglass(NB_USHORT on) {
    if (gvga_display == nullptr) {
        return;
    }
    if (hourglass == None) {
        vga_create_hourglass();
    }
    hourglass_on = on != 0;
    vga_for_each_dialog(set_cursor, nullptr);
    XFlush(gvga_display);
}

NB_VOID vga_hourglass_new_window(VGA_DIALOG *desc) {
    if (hourglass_on != 0) {
        set_cursor(desc, nullptr);
    }
}

VGA_HOURGLASS::VGA_HOURGLASS() : was_on(hourglass_on) {
    if (was_on == 0) {
        vga_display_hourglass(1);
    }
}

VGA_HOURGLASS::~VGA_HOURGLASS() {
    if (was_on == 0) {
        vga_display_hourglass(0);
    }
}
