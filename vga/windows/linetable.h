/* The table of viewer types: what the lines of each kind show and do. */
#ifndef LINETABLE_H
#define LINETABLE_H

#include "linetypes.h"
#include "vgaviewr.h"
#include <array>

extern const std::array<VGA_VIEWER_DESC, VGA_VIEWER_TYPE_COUNT> gvga_viewer_types;

#endif
