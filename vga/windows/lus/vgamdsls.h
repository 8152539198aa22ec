/* The dialog of session limits: how many sessions a local LU may have with a partner in one mode,
 * and for how many of them each side is the contention winner.  The limits of the modes that
 * control points use among themselves can be looked at only. */
#ifndef VGAMDSLS_H
#define VGAMDSLS_H

#include "form.h"
#include "model.h"

/* What the dialog shows and changes. */
struct VGA_MDSLS_DATA {
    NAP_MODE_DATA mode;
    NB_USHORT max_limit; /* by the definition of the mode; 0 when the node has none */
};

struct VGA_MDSLS_DESC {
    VGA_FORM form;
    VGA_MDSLS_DATA shown, edited;
};

/* For the row in gvga_uid_desc. */
NB_USHORT vga_get_widgets_sess_limit(VGA_DIALOG *desc);

/* Opens the dialog for a mode in use, or raises the one that is open on it.  Null when there is
 * none to be had. */
VGA_FORM *vga_display_session_limits(VGA_DIALOG *parent, VGA_MODE *mode);

#endif
