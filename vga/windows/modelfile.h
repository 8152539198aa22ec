/* What the program knew, for support: resource ".modelFile" names a file that gets the model, the
 * lists as they are shown, and what the model's checker says of both, when the orderly close
 * begins. No passwords are written. */
#ifndef MODELFILE_H
#define MODELFILE_H

#include "nbtypes.h"

/* Writes the file anew.  Nothing without a name for it or without a model; a file that cannot be
 * written is reported. */
NB_VOID vga_write_model_file(NB_VOID);

#endif
