/* The table of viewer types: what the lines of each kind show and do.  A type whose records this
 * release does not make has no functions yet. */
#ifndef VGAWTYPE_H
#define VGAWTYPE_H

#include "vgaviewr.h"
#include <array>

extern const std::array<VGA_VIEWER_DESC, VGA_VIEWER_TYPE_COUNT> gvga_viewer_types;

#endif
