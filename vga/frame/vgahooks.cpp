#include "vgahooks.h"

VGA_HOOKS gvga_hooks;
