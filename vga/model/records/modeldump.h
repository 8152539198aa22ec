/* The model as text, for support and for tests.
 *
 * A line a record: its type and what its fields hold, by the names that domain texts have for them,
 * in the order of the indexes; a record stands behind and below its owner, indented.  Fields that
 * hold nothing are left out, and so are passwords and whatever else a schema calls a secret.  Two
 * models of the same configuration and states have the same text. */
#ifndef MODELDUMP_H
#define MODELDUMP_H

#include "nbtypes.h"
#include <string>

/* REQUIRES: gvga_system. */
std::string vga_dump_model(NB_VOID);

#endif
