/* What every UID file may name. */
#ifndef COMMONNAMES_H
#define COMMONNAMES_H

#include "nbtypes.h"

/* Registers the procedures that every UID file may name, and the common toolkit actions. */
NB_VOID vga_register_common_names(NB_VOID);

#endif
