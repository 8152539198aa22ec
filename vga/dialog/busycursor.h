/* The busy cursor. */
#ifndef BUSYCURSOR_H
#define BUSYCURSOR_H

#include "nbtypes.h"

struct VGA_DIALOG;

/* Makes the cursor from "cursor.uid", in the larger form where the display allows it.  Without that
 * file (a problem record) it is the server's watch.  Called by the first use. */
NB_VOID vga_create_hourglass(NB_VOID);

/* 1: the cursor over every open window and message box becomes the hourglass, at once.  0: it no
 * longer is. */
NB_VOID vga_display_hourglass(NB_USHORT on);

/* A window has come on the screen while the hourglass may be on. */
NB_VOID vga_hourglass_new_window(VGA_DIALOG *desc);

/* The hourglass is on while this lives, and as it was before afterwards. */
class VGA_HOURGLASS {
public:
    VGA_HOURGLASS();
    VGA_HOURGLASS(const VGA_HOURGLASS &) = delete;
    VGA_HOURGLASS &operator=(const VGA_HOURGLASS &) = delete;
    ~VGA_HOURGLASS();

private:
    NB_USHORT was_on;
};

#endif
