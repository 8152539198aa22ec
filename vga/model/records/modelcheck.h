/* The checker of the model, for tests and for support.
 *
 * It looks at every record: that handle, owner, indexes and references agree, that the lists have a
 * line for each record that belongs there, in order, and nothing else, and that dialogs show the
 * records that refer to them.  It changes nothing.  Its cost is that of a walk of the model with
 * some look-ups a record: for the end of a test or of the program, not for its work. */
#ifndef MODELCHECK_H
#define MODELCHECK_H

#include "nbtypes.h"
#include <cstddef>
#include <string>
#include <vector>

struct VGA_MODEL_FINDINGS {
    size_t records = 0;
    std::vector<std::string> wrong; /* a line each: type and name of the record, and what it is */
};

/* REQUIRES: gvga_system. */
VGA_MODEL_FINDINGS vga_check_model(NB_VOID);

#endif
